// The AVL tree. balance is the height of the right subtree less that of the left one and stays
// between -1 and 1; each store goes through a Writer, which declares it to the store first.
//
// A tree has a number from its first node until it is empty, and no other tree ever has it: each
// node takes it from its parent and loses it when it leaves. So whether a node hangs in a tree
// shows in the node and the top, and the way up is gone only where numbers do not tell.
#include <atomic>
#include <cstddef>

#include "base/pool.hpp"
#include "kelp/trace.h"
#include "kelp/tree.h"

namespace {

enum Order : uint32_t { kBefore = 0, kEqual = 1, kAfter = 2 };

// Makes the stores of one insertion or deletion.
class Writer {
 public:
  Writer(void *obj_pool, uint32_t space_id) : pool_(kelp::pool_of(obj_pool)), space_id_(space_id) {}

  template <typename Word>
  void set(Word &word, Word value) const {
    if (word == value) return;
    if (pool_ != nullptr) pool_->announce(&word, sizeof word, space_id_, KELP_WRITE_TREE);
    word = value;
  }

  void count(uint64_t *aux, int64_t change) const {
    if (aux != nullptr) set(*aux, *aux + static_cast<uint64_t>(change));
  }

  bool may_link(const e_avl_root *root, e_avl_node *node) const {
    return pool_ == nullptr || pool_->before_link == nullptr ||
           pool_->before_link(*pool_, root, node);
  }

  void unlinked(const e_avl_root *root, e_avl_node *node) const {
    if (pool_ != nullptr && pool_->after_unlink != nullptr) {
      pool_->after_unlink(*pool_, root, node);
    }
  }

  // Whether the next node goes behind the last one, as far as the one before tells.
  bool grows_at_end(const e_avl_root *root) const {
    return pool_ != nullptr && pool_->grown_at_end == root;
  }
  void note_growth(const e_avl_root *root, bool at_end) const {
    if (pool_ != nullptr) pool_->grown_at_end = at_end ? root : nullptr;
  }

  std::uint32_t number_for(const e_avl_node *first) const;
  bool tells(const e_avl_node *top, const e_avl_node *node) const;

 private:
  kelp::Pool *pool_;
  uint32_t space_id_;
};

// Set in the numbers that a store gives, which two stores may give alike.
constexpr std::uint32_t kOfStore = UINT32_C(1) << 31;

// A number for the tree that this node begins. Only trees of databases have one: who keeps a tree
// in memory that processes share, without a word to the runtime, cannot be told apart by it.
std::uint32_t Writer::number_for(const e_avl_node *first) const {
  if (pool_ == nullptr) return 0;
  if (pool_->number_tree != nullptr) {
    if (const std::uint32_t number = pool_->number_tree(*pool_, first)) return number | kOfStore;
  }
  static std::atomic<std::uint64_t> numbered{0};
  const std::uint64_t number = numbered.fetch_add(1, std::memory_order_relaxed) + 1;
  return number < kOfStore ? static_cast<std::uint32_t>(number) : 0;
}

// Whether the numbers of the two say that they hang in one tree. What a root holds may be anything:
// the memory of a table that was freed with its records is used again.
bool Writer::tells(const e_avl_node *top, const e_avl_node *node) const {
  if (node->tree == 0 || pool_ == nullptr || pool_->holds_beside == nullptr) return false;
  return pool_->holds_beside(*pool_, top, node) && top->parent == nullptr &&
         top->tree == node->tree;
}

// The pointer that holds the node: its parent's, or the root's.
e_avl_node *&holder_of(e_avl_root *root, const e_avl_node *node) {
  if (node->parent == nullptr) return root->top;
  return node->parent->left == node ? node->parent->left : node->parent->right;
}

// Puts replacement, which may be null, in the place of node.
void replace(const Writer &writer, e_avl_root *root, const e_avl_node *node,
             e_avl_node *replacement) {
  if (replacement != nullptr) writer.set(replacement->parent, node->parent);
  writer.set(holder_of(root, node), replacement);
}

// The child on the side named by direction, -1 for left and 1 for right.
e_avl_node *&child(e_avl_node *node, int32_t direction) {
  return direction < 0 ? node->left : node->right;
}

// Turns the subtree so that the child on the side of direction comes to its top. Balances are the
// caller's.
e_avl_node *rotate_up(const Writer &writer, e_avl_root *root, e_avl_node *top, int32_t direction) {
  e_avl_node *riser = child(top, direction);
  e_avl_node *inner = child(riser, -direction);
  replace(writer, root, top, riser);
  writer.set(child(top, direction), inner);
  if (inner != nullptr) writer.set(inner->parent, top);
  writer.set(child(riser, -direction), top);
  writer.set(top->parent, riser);
  return riser;
}

// Mends a subtree that is two higher on the side of direction; gives its new top.
e_avl_node *mend(const Writer &writer, e_avl_root *root, e_avl_node *top, int32_t direction) {
  e_avl_node *heavy = child(top, direction);
  if (heavy->balance != -direction) {
    // A single rotation. With heavy even, which only a deletion meets, the height stays as it was.
    const int32_t left_over = heavy->balance == 0 ? direction : 0;
    rotate_up(writer, root, top, direction);
    writer.set(top->balance, left_over);
    writer.set(heavy->balance, -left_over);
    return heavy;
  }
  e_avl_node *middle = child(heavy, -direction);
  rotate_up(writer, root, heavy, -direction);
  rotate_up(writer, root, top, direction);
  writer.set(top->balance, middle->balance == direction ? -direction : 0);
  writer.set(heavy->balance, middle->balance == -direction ? direction : 0);
  writer.set(middle->balance, 0);
  return middle;
}

int32_t side_of(const e_avl_node *parent, const e_avl_node *node) {
  return parent->left == node ? -1 : 1;
}

void rebalance_after_insert(const Writer &writer, e_avl_root *root, e_avl_node *node) {
  for (e_avl_node *parent = node->parent; parent != nullptr; node = parent, parent = node->parent) {
    const int32_t side = side_of(parent, node);
    if (parent->balance == side) {
      mend(writer, root, parent, side);
      return;
    }
    writer.set(parent->balance, parent->balance + side);
    if (parent->balance == 0) return;
  }
}

// The subtree of parent on this side has become one lower.
void rebalance_after_delete(const Writer &writer, e_avl_root *root, e_avl_node *parent,
                            int32_t side) {
  while (parent != nullptr) {
    e_avl_node *top = parent;
    if (parent->balance == -side) {
      top = mend(writer, root, parent, -side);
      if (top->balance != 0) return;
    } else {
      writer.set(parent->balance, parent->balance - side);
      if (parent->balance != 0) return;
    }
    parent = top->parent;
    if (parent != nullptr) side = side_of(parent, top);
  }
}

const e_avl_node *outermost(const e_avl_node *node, int32_t direction) {
  if (node == nullptr) return nullptr;
  for (;;) {
    const e_avl_node *further = direction < 0 ? node->left : node->right;
    if (further == nullptr) return node;
    node = further;
  }
}

// Whether the node hangs in this tree: its way up ends at this root. A parent that holds the node,
// a top that has none, and one number say so without going there; a copy of a node, a root that was
// left behind, and a node that entered a second tree fail one of them.
bool hangs_in(const Writer &writer, const e_avl_root *root, const e_avl_node *node) {
  const e_avl_node *top = root->top;
  const e_avl_node *parent = node->parent;
  if (parent != nullptr && top != nullptr && (parent->left == node || parent->right == node) &&
      writer.tells(top, node)) {
    return true;
  }
  while (node->parent != nullptr) node = node->parent;
  return top == node;
}

// Whether the node hangs in some tree, by its own links.
bool is_linked(const e_avl_root *root, const e_avl_node *node) {
  return node->parent != nullptr || node->left != nullptr || node->right != nullptr ||
         root->top == node;
}

// Asks for a node, and for what a comparison reads beside it when it is a record's, before it is
// known whether the descent goes there: the wait for one level so runs beside the comparison of the
// one above.
void fetch_ahead(const e_avl_node *node) {
  if (node == nullptr) return;
  constexpr std::size_t kTenant =
      offsetof(kelp_record, avl_node) - offsetof(kelp_record, tenant_id);
  constexpr std::size_t kObjects = offsetof(kelp_record, objects) - offsetof(kelp_record, avl_node);
  const char *at = reinterpret_cast<const char *>(node);
  __builtin_prefetch(at - kTenant);
  __builtin_prefetch(at + kObjects);
}

// Stands in both ways that a comparison may lead, so that the compiler makes a branch of it and no
// selection: the processor then guesses, and waits for the next levels while it waits for this one.
inline void go_on_by_guess() { asm volatile(""); }

// The nearest node on the side of direction of a position that is not in the tree.
const e_avl_node *nearest(const e_avl_root *root, const e_avl_node *position, int32_t direction,
                          e_avl_comparator compare) {
  const Order passed_by = direction > 0 ? kBefore : kAfter;
  const e_avl_node *best = nullptr;
  for (const e_avl_node *node = root->top; node != nullptr;) {
    fetch_ahead(node->left);
    fetch_ahead(node->right);
    // The node is wanted when the position sorts on its other side.
    if (compare(position, node) == passed_by) {
      go_on_by_guess();
      best = node;
      node = direction > 0 ? node->left : node->right;
    } else {
      go_on_by_guess();
      node = direction > 0 ? node->right : node->left;
    }
  }
  return best;
}

const e_avl_node *neighbour(const e_avl_root *root, const e_avl_node *node, int32_t direction,
                            e_avl_comparator compare) {
  if (root == nullptr || node == nullptr || root->top == nullptr) return nullptr;
  if (!is_linked(root, node)) {
    return compare == nullptr ? nullptr : nearest(root, node, direction, compare);
  }
  const e_avl_node *inward = direction < 0 ? node->left : node->right;
  if (inward != nullptr) return outermost(inward, -direction);
  while (node->parent != nullptr && side_of(node->parent, node) == direction) node = node->parent;
  return node->parent;
}

// Once: trees say nothing, so that their level does not matter.
void set_up_trace(const char *name, uint32_t *id_word) {
  static uint32_t level_word = 0;
  if (__atomic_load_n(id_word, __ATOMIC_RELAXED) == 0) {
    xlog_module_init_fn(name, id_word, &level_word);
  }
}

// Where a node is to hang.
struct Place {
  e_avl_node *parent;
  e_avl_node **holder;
};

// False when an equal node is there.
bool find_place(e_avl_root *root, const e_avl_node *node, e_avl_comparator compare, Place *place,
                bool *at_end) {
  *place = {nullptr, &root->top};
  *at_end = true;
  while (*place->holder != nullptr) {
    e_avl_node *parent = place->parent = *place->holder;
    fetch_ahead(parent->left);
    fetch_ahead(parent->right);
    const uint32_t order = compare(node, parent);
    if (order == kEqual) return false;
    if (order == kBefore) {
      go_on_by_guess();
      *at_end = false;
      place->holder = &parent->left;
    } else {
      go_on_by_guess();
      place->holder = &parent->right;
    }
  }
  return true;
}

// The same where nodes came in order up to now: one comparison, with the last one, mostly tells.
bool find_place_at_end(e_avl_root *root, const e_avl_node *node, e_avl_comparator compare,
                       Place *place, bool *at_end) {
  auto *last = const_cast<e_avl_node *>(outermost(root->top, 1));
  if (last == nullptr || compare(node, last) != kAfter) {
    return find_place(root, node, compare, place, at_end);
  }
  *place = {last, &last->right};
  *at_end = true;
  return true;
}

}  // namespace

extern "C" uint32_t e_avl_insert(void *obj_pool, uint32_t space_id, e_avl_root *root,
                                 e_avl_node *node, uint64_t *aux, e_avl_comparator compare) {
  if (root == nullptr || node == nullptr || compare == nullptr) return 0;
  const Writer writer(obj_pool, space_id);
  Place place;
  bool at_end;
  const bool found = writer.grows_at_end(root)
                         ? find_place_at_end(root, node, compare, &place, &at_end)
                         : find_place(root, node, compare, &place, &at_end);
  if (!found || !writer.may_link(root, node)) return 0;
  writer.set(node->tree, place.parent == nullptr ? writer.number_for(node) : place.parent->tree);
  writer.set<e_avl_node *>(node->left, nullptr);
  writer.set<e_avl_node *>(node->right, nullptr);
  writer.set(node->parent, place.parent);
  writer.set(node->balance, 0);
  writer.set(*place.holder, node);
  rebalance_after_insert(writer, root, node);
  writer.count(aux, 1);
  // In a small tree the guess is worth less than what is known of a large one.
  constexpr std::uint64_t kLarge = 8;
  if (aux != nullptr && *aux >= kLarge) writer.note_growth(root, at_end);
  return 1;
}

extern "C" uint32_t e_avl_delete(void *obj_pool, uint32_t space_id, e_avl_root *root,
                                 e_avl_node *node, uint64_t *aux, e_avl_comparator compare) {
  (void)compare;
  const Writer writer(obj_pool, space_id);
  if (root == nullptr || node == nullptr || !hangs_in(writer, root, node)) return 0;
  e_avl_node *lowered = node->parent;
  int32_t side = lowered == nullptr ? 0 : side_of(lowered, node);
  if (node->left != nullptr && node->right != nullptr) {
    // The successor takes the node's place, links and balance.
    auto *successor = const_cast<e_avl_node *>(outermost(node->right, -1));
    if (successor->parent == node) {
      lowered = successor;
      side = 1;
    } else {
      lowered = successor->parent;
      side = -1;
      replace(writer, root, successor, successor->right);
      writer.set(successor->right, node->right);
      writer.set(successor->right->parent, successor);
    }
    writer.set(successor->left, node->left);
    writer.set(successor->left->parent, successor);
    writer.set(successor->balance, node->balance);
    replace(writer, root, node, successor);
  } else {
    replace(writer, root, node, node->left != nullptr ? node->left : node->right);
  }
  writer.set<e_avl_node *>(node->left, nullptr);
  writer.set<e_avl_node *>(node->right, nullptr);
  writer.set<e_avl_node *>(node->parent, nullptr);
  writer.set(node->balance, 0);
  writer.set(node->tree, std::uint32_t{0});
  rebalance_after_delete(writer, root, lowered, side);
  writer.count(aux, -1);
  writer.unlinked(root, node);
  return 1;
}

extern "C" e_avl_node *e_avl_get_first(const e_avl_root *root) {
  return root == nullptr ? nullptr : const_cast<e_avl_node *>(outermost(root->top, -1));
}

extern "C" e_avl_node *e_avl_get_last(const e_avl_root *root) {
  return root == nullptr ? nullptr : const_cast<e_avl_node *>(outermost(root->top, 1));
}

extern "C" e_avl_node *e_avl_get_next(const e_avl_root *root, const e_avl_node *node,
                                      e_avl_comparator compare) {
  return const_cast<e_avl_node *>(neighbour(root, node, 1, compare));
}

extern "C" e_avl_node *e_avl_get_prev(const e_avl_root *root, const e_avl_node *node,
                                      e_avl_comparator compare) {
  return const_cast<e_avl_node *>(neighbour(root, node, -1, compare));
}

extern "C" uint32_t e_avl_walk(const e_avl_root *root, e_avl_walker walker, void *context) {
  if (walker == nullptr) return 0;
  for (e_avl_node *node = e_avl_get_first(root); node != nullptr;) {
    e_avl_node *following = e_avl_get_next(root, node, nullptr);
    if (const uint32_t result = walker(node, context)) return result;
    node = following;
  }
  return 0;
}

extern "C" void snap_avl_trace_init(void) {
  static uint32_t id_word = 0;
  set_up_trace("snap_avl", &id_word);
}

extern "C" void snap_gbt_trace_init(void) {
  static uint32_t id_word = 0;
  set_up_trace("snap_gbt", &id_word);
}
