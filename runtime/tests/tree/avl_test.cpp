// The AVL tree: order, shape, links, and what it announces.
#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <random>
#include <span>

#include "kelp/trace.h"
#include "kelp/tree.h"
#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;

struct Item {
  e_avl_node node = {};
  int key = 0;
};

const Item *item_of(const e_avl_node *node) { return reinterpret_cast<const Item *>(node); }

int comparisons = 0;

std::uint32_t compare(const e_avl_node *a, const e_avl_node *b) {
  ++comparisons;
  const int left = item_of(a)->key;
  const int right = item_of(b)->key;
  return left < right ? 0 : left == right ? 1 : 2;
}

// Checks balance, parents and order below the node; gives its height.
int check(const e_avl_node *node, const e_avl_node *parent) {
  if (node == nullptr) return 0;
  EXPECT_EQ(node->parent, parent);
  if (node->left != nullptr) {
    EXPECT_LT(item_of(node->left)->key, item_of(node)->key);
  }
  if (node->right != nullptr) {
    EXPECT_GT(item_of(node->right)->key, item_of(node)->key);
  }
  const int left = check(node->left, node);
  const int right = check(node->right, node);
  EXPECT_EQ(node->balance, right - left);
  EXPECT_LE(std::abs(right - left), 1);
  return 1 + std::max(left, right);
}

class AvlTest : public ::testing::Test {
 protected:
  std::uint32_t insert(Item &item) {
    return e_avl_insert(nullptr, 0, &root, &item.node, &aux, compare);
  }
  std::uint32_t remove(Item &item) {
    return e_avl_delete(nullptr, 0, &root, &item.node, &aux, compare);
  }
  std::vector<int> forward() const {
    std::vector<int> keys;
    for (const e_avl_node *node = e_avl_get_first(&root); node != nullptr;
         node = e_avl_get_next(&root, node, compare)) {
      keys.push_back(item_of(node)->key);
    }
    return keys;
  }

  e_avl_root root = {};
  std::uint64_t aux = 0;
};

TEST_F(AvlTest, EmptyTreeHasNoNodes) {
  Item item;
  EXPECT_EQ(e_avl_get_first(&root), nullptr);
  EXPECT_EQ(e_avl_get_last(&root), nullptr);
  EXPECT_EQ(e_avl_get_next(&root, &item.node, compare), nullptr);
  EXPECT_EQ(remove(item), 0u);
}

TEST_F(AvlTest, EqualNodeIsRefusedAndChangesNothing) {
  Item first;
  Item second;
  EXPECT_EQ(insert(first), 1u);
  EXPECT_EQ(insert(second), 0u);
  EXPECT_EQ(insert(first), 0u);
  EXPECT_EQ(aux, 1u);
  EXPECT_EQ(second.node.parent, nullptr);
  EXPECT_EQ(root.top, &first.node);
}

TEST_F(AvlTest, DeleteTakesOutThisNodeOnly) {
  Item first;
  Item twin;
  insert(first);
  EXPECT_EQ(remove(twin), 0u);
  EXPECT_EQ(aux, 1u);
  EXPECT_EQ(remove(first), 1u);
  EXPECT_EQ(remove(first), 0u);
  EXPECT_EQ(aux, 0u);
  EXPECT_EQ(root.top, nullptr);
}

TEST_F(AvlTest, NodeOfAnotherTreeIsNotDeleted) {
  std::vector<Item> items(3);
  for (int i = 0; i < 3; ++i) items[static_cast<std::size_t>(i)].key = i;
  for (Item &item : items) insert(item);
  e_avl_root other = {};
  Item alone;
  e_avl_insert(nullptr, 0, &other, &alone.node, nullptr, compare);
  EXPECT_EQ(e_avl_delete(nullptr, 0, &other, &items[0].node, nullptr, compare), 0u);
  EXPECT_EQ(e_avl_delete(nullptr, 0, &root, &alone.node, &aux, compare), 0u);
  EXPECT_EQ(aux, 3u);
}

TEST_F(AvlTest, ChangedKeyDoesNotHideANodeFromDelete) {
  std::vector<Item> items(50);
  for (int i = 0; i < 50; ++i) {
    items[static_cast<std::size_t>(i)].key = i;
    insert(items[static_cast<std::size_t>(i)]);
  }
  items[10].key = 1000;
  EXPECT_EQ(remove(items[10]), 1u);
  check(root.top, nullptr);
  EXPECT_EQ(forward().size(), 49u);
}

TEST_F(AvlTest, RandomInsertsAndDeletesKeepShapeAndOrder) {
  std::mt19937 random(2024);
  std::map<int, std::unique_ptr<Item>> held;
  for (int step = 0; step < 6000; ++step) {
    const int key = static_cast<int>(random() % 700);
    const auto found = held.find(key);
    if (found == held.end()) {
      auto item = std::make_unique<Item>();
      item->key = key;
      ASSERT_EQ(insert(*item), 1u);
      held.emplace(key, std::move(item));
    } else {
      ASSERT_EQ(remove(*found->second), 1u);
      EXPECT_EQ(found->second->node.parent, nullptr);
      EXPECT_EQ(found->second->node.left, nullptr);
      EXPECT_EQ(found->second->node.right, nullptr);
      held.erase(found);
    }
    if (step % 100 == 0) {
      check(root.top, nullptr);
      std::vector<int> keys;
      for (const auto &[each, item] : held) keys.push_back(each);
      EXPECT_EQ(forward(), keys);
    }
    ASSERT_EQ(aux, held.size());
  }
  while (!held.empty()) {
    ASSERT_EQ(remove(*held.begin()->second), 1u);
    held.erase(held.begin());
  }
  EXPECT_EQ(root.top, nullptr);
}

TEST_F(AvlTest, HeightIsBoundForSortedInput) {
  std::vector<Item> items(20000);
  for (std::size_t i = 0; i < items.size(); ++i) {
    items[i].key = static_cast<int>(i);
    insert(items[i]);
  }
  const double bound = 1.4405 * std::log2(static_cast<double>(items.size()) + 2.0);
  EXPECT_LE(check(root.top, nullptr), bound);
}

TEST_F(AvlTest, HeightIsBoundAfterDeletingFromOneSide) {
  std::vector<Item> items(8192);
  for (std::size_t i = 0; i < items.size(); ++i) {
    items[i].key = static_cast<int>(i);
    insert(items[i]);
  }
  for (std::size_t i = 0; i < 7000; ++i) remove(items[i]);
  const double bound = 1.4405 * std::log2(1192.0 + 2.0);
  EXPECT_LE(check(root.top, nullptr), bound);
}

TEST_F(AvlTest, StepsCompareNothingAndGoBothWays) {
  std::vector<Item> items(1000);
  for (std::size_t i = 0; i < items.size(); ++i) {
    items[i].key = static_cast<int>(i * 7919 % 1000);
    insert(items[i]);
  }
  comparisons = 0;
  int expected = 0;
  for (const e_avl_node *node = e_avl_get_first(&root); node != nullptr;
       node = e_avl_get_next(&root, node, compare)) {
    EXPECT_EQ(item_of(node)->key, expected++);
  }
  EXPECT_EQ(expected, 1000);
  for (const e_avl_node *node = e_avl_get_last(&root); node != nullptr;
       node = e_avl_get_prev(&root, node, compare)) {
    EXPECT_EQ(item_of(node)->key, --expected);
  }
  EXPECT_EQ(expected, 0);
  EXPECT_EQ(comparisons, 0);
}

TEST_F(AvlTest, NodeInNoTreeIsAPosition) {
  std::vector<Item> items(20);
  for (int i = 0; i < 20; ++i) {
    items[static_cast<std::size_t>(i)].key = 10 * i;
    insert(items[static_cast<std::size_t>(i)]);
  }
  for (int key = -5; key <= 200; ++key) {
    Item position;
    position.key = key;
    const e_avl_node *next = e_avl_get_next(&root, &position.node, compare);
    const e_avl_node *prev = e_avl_get_prev(&root, &position.node, compare);
    const int above = key < 0 ? 0 : (key / 10 + 1) * 10;
    const int below = key <= 0 ? -1 : (key - 1) / 10 * 10;
    if (above > 190) {
      EXPECT_EQ(next, nullptr);
    } else {
      ASSERT_NE(next, nullptr);
      EXPECT_EQ(item_of(next)->key, above);
    }
    if (below < 0) {
      EXPECT_EQ(prev, nullptr);
    } else {
      ASSERT_NE(prev, nullptr);
      EXPECT_EQ(item_of(prev)->key, std::min(below, 190));
    }
  }
}

TEST_F(AvlTest, DeletedNodeCanBeStoodOn) {
  std::vector<Item> items(5);
  for (int i = 0; i < 5; ++i) {
    items[static_cast<std::size_t>(i)].key = i;
    insert(items[static_cast<std::size_t>(i)]);
  }
  remove(items[2]);
  EXPECT_EQ(e_avl_get_next(&root, &items[2].node, compare), &items[3].node);
  EXPECT_EQ(e_avl_get_prev(&root, &items[2].node, compare), &items[1].node);
}

struct Walk {
  e_avl_root *root;
  std::vector<int> keys;
  int stop_at;
  bool deletes;
};

std::uint32_t walk_step(e_avl_node *node, void *context) {
  auto *walk = static_cast<Walk *>(context);
  const int key = item_of(node)->key;
  walk->keys.push_back(key);
  if (walk->deletes) e_avl_delete(nullptr, 0, walk->root, node, nullptr, compare);
  return key == walk->stop_at ? 42 : 0;
}

TEST_F(AvlTest, WalkGoesInOrderAndStopsOnAResult) {
  std::vector<Item> items(6);
  for (int i = 0; i < 6; ++i) {
    items[static_cast<std::size_t>(i)].key = 5 - i;
    insert(items[static_cast<std::size_t>(i)]);
  }
  Walk whole{&root, {}, -1, false};
  EXPECT_EQ(e_avl_walk(&root, walk_step, &whole), 0u);
  EXPECT_EQ(whole.keys, (std::vector<int>{0, 1, 2, 3, 4, 5}));
  Walk partial{&root, {}, 2, false};
  EXPECT_EQ(e_avl_walk(&root, walk_step, &partial), 42u);
  EXPECT_EQ(partial.keys, (std::vector<int>{0, 1, 2}));
}

TEST_F(AvlTest, WalkerMayDeleteItsNode) {
  std::vector<Item> items(64);
  for (int i = 0; i < 64; ++i) {
    items[static_cast<std::size_t>(i)].key = i;
    insert(items[static_cast<std::size_t>(i)]);
  }
  Walk walk{&root, {}, -1, true};
  e_avl_walk(&root, walk_step, &walk);
  EXPECT_EQ(walk.keys.size(), 64u);
  EXPECT_EQ(root.top, nullptr);
}

class AvlInStoreTest : public DatabaseTest {};

// Every byte of root, nodes and aux that changes was announced before.
TEST_F(AvlInStoreTest, EachStoreIsAnnounced) {
  struct Store {
    e_avl_root root;
    std::uint64_t aux;
    Item items[64];
  };
  auto *store = make<Store>();
  for (int i = 0; i < 64; ++i) store->items[i].key = i * 37 % 64;
  watch_writes();
  auto unannounced = [&](const Store &before) {
    std::vector<bool> covered(sizeof(Store));
    const char *base = reinterpret_cast<const char *>(store);
    for (const kelp_test::Write &write : writes) {
      EXPECT_EQ(write.origin, static_cast<std::uint32_t>(KELP_WRITE_TREE));
      EXPECT_EQ(write.space_id, 3u);
      const auto at = static_cast<std::size_t>(static_cast<const char *>(write.address) - base);
      for (std::size_t i = 0; i < write.length; ++i) covered.at(at + i) = true;
    }
    int missed = 0;
    for (std::size_t i = 0; i < sizeof(Store); ++i) {
      if (base[i] != reinterpret_cast<const char *>(&before)[i] && !covered[i]) ++missed;
    }
    return missed;
  };
  for (const bool inserting : {true, false}) {
    for (Item &item : store->items) {
      writes.clear();
      const Store before = *store;
      if (inserting) {
        ASSERT_EQ(e_avl_insert(handle->obj_pool, 3, &store->root, &item.node, &store->aux, compare),
                  1u);
      } else {
        ASSERT_EQ(e_avl_delete(handle->obj_pool, 3, &store->root, &item.node, &store->aux, compare),
                  1u);
      }
      EXPECT_EQ(unannounced(before), 0);
    }
  }
  release(store);
}

// --- which tree a node hangs in ---

// Trees of a database, whose nodes have the number of their tree.
class AvlNumberTest : public DatabaseTest {
 protected:
  struct Tree {
    e_avl_root root = {};
    std::uint64_t aux = 0;
  };
  std::uint32_t insert(Tree &tree, Item &item) {
    return e_avl_insert(handle->obj_pool, 0, &tree.root, &item.node, &tree.aux, compare);
  }
  std::uint32_t remove(Tree &tree, Item &item) {
    return e_avl_delete(handle->obj_pool, 0, &tree.root, &item.node, &tree.aux, compare);
  }
  // Items with the keys from..., in the tree.
  std::span<Item> filled(Tree &tree, int from, int count) {
    const auto length = static_cast<std::size_t>(count);
    blocks_.push_back(handle->obj_alloc(handle->obj_pool, 0, length * sizeof(Item)));
    const std::span<Item> items(static_cast<Item *>(blocks_.back()), length);
    for (Item &item : items) {
      item = {};
      item.key = from++;
      EXPECT_EQ(insert(tree, item), 1u);
    }
    return items;
  }
  void TearDown() override {
    for (void *block : blocks_) release(block);
    DatabaseTest::TearDown();
  }
  void expect_refused(Tree &tree, Item &item) {
    const std::uint64_t count = tree.aux;
    const e_avl_root root = tree.root;
    const e_avl_node node = item.node;
    EXPECT_EQ(remove(tree, item), 0u);
    EXPECT_EQ(tree.aux, count);
    EXPECT_EQ(tree.root.top, root.top);
    EXPECT_EQ(std::memcmp(&item.node, &node, sizeof node), 0);
  }

 private:
  std::vector<void *> blocks_;
};

TEST_F(AvlNumberTest, ATreeHasOneNumberAndNoOtherTreeHasIt) {
  Tree one, other;
  const std::span<Item> items = filled(one, 0, 100), others = filled(other, 0, 3);
  ASSERT_NE(items[0].node.tree, 0u);
  for (const Item &item : items) EXPECT_EQ(item.node.tree, items[0].node.tree);
  EXPECT_NE(others[0].node.tree, items[0].node.tree);
  const std::uint32_t number = items[0].node.tree;
  for (Item &item : items) {
    EXPECT_EQ(remove(one, item), 1u);
    EXPECT_EQ(item.node.tree, 0u);
  }
  EXPECT_EQ(insert(one, items[5]), 1u);
  EXPECT_NE(items[5].node.tree, number);
  EXPECT_NE(items[5].node.tree, others[0].node.tree);
}

TEST_F(AvlNumberTest, TheWayUpIsNotGone) {
  Tree tree;
  const std::span<Item> items = filled(tree, 0, 127);
  // Of a whole tree of seven levels: a leaf, whose parent has another one, and who is two above it.
  Item &leaf = items[0];
  e_avl_node *above = leaf.node.parent->parent;
  e_avl_node *kept = above->parent;
  above->parent = nullptr;
  EXPECT_EQ(remove(tree, leaf), 1u);
  above->parent = kept;
  check(tree.root.top, nullptr);
}

TEST_F(AvlNumberTest, NodesOfOtherTreesAreRefused) {
  Tree one, other, empty;
  const std::span<Item> items = filled(one, 0, 20), others = filled(other, 100, 20);
  for (Item &item : items) expect_refused(other, item);
  for (Item &item : others) expect_refused(one, item);
  for (Item &item : others) expect_refused(empty, item);
  Item never, zeroed;
  std::memset(&zeroed.node, 0, sizeof zeroed.node);
  expect_refused(one, never);
  expect_refused(one, zeroed);
  expect_refused(empty, zeroed);
}

// A table that was freed with its records, and one that came to lie in its place.
TEST_F(AvlNumberTest, NodesOfATreeThatWasForgottenAreRefused) {
  Tree tree;
  const std::span<Item> stale = filled(tree, 0, 20);
  tree = {};
  for (Item &item : stale) expect_refused(tree, item);
  const std::span<Item> items = filled(tree, 0, 20);
  for (Item &item : stale) expect_refused(tree, item);
  for (Item &item : items) EXPECT_EQ(remove(tree, item), 1u);
}

// The memory of a table that was freed holds something else.
TEST_F(AvlNumberTest, WhatARootHoldsIsNotTakenForANode) {
  Tree tree;
  const std::span<Item> items = filled(tree, 0, 20);
  tree.root.top = reinterpret_cast<e_avl_node *>(0x10);
  for (Item &item : items) expect_refused(tree, item);
}

// The first tree's top then has the number of the second one, and a parent there.
TEST_F(AvlNumberTest, ANodeInTwoTreesHangsInTheSecond) {
  Tree one, other;
  const std::span<Item> items = filled(one, 0, 3), others = filled(other, 10, 20);
  Item &top = items[1];
  ASSERT_EQ(one.root.top, &top.node);
  EXPECT_EQ(insert(other, top), 1u);
  for (Item &item : others) expect_refused(one, item);
  expect_refused(one, top);
  for (Item &item : others) EXPECT_EQ(remove(other, item), 1u);
  EXPECT_EQ(remove(other, top), 1u);
  EXPECT_EQ(other.aux, 0u);
}

TEST_F(AvlNumberTest, ACopyOfANodeIsNotTakenForIt) {
  Tree tree;
  const std::span<Item> items = filled(tree, 0, 3);
  Item leaf = items[0], top = items[1];
  expect_refused(tree, top);
  // The parent of the copy leaves, so that the way up from it ends there.
  EXPECT_EQ(remove(tree, items[1]), 1u);
  expect_refused(tree, leaf);
  EXPECT_EQ(tree.aux, 2u);
}

TEST_F(AvlNumberTest, ARootThatWasLeftBehindHoldsNothing) {
  Tree tree;
  const std::span<Item> items = filled(tree, 0, 3);
  Tree moved = tree;
  const std::span<Item> more = filled(moved, 3, 30);
  ASSERT_NE(moved.root.top, tree.root.top);
  for (Item &item : more) expect_refused(tree, item);
  for (Item &item : items) EXPECT_EQ(remove(moved, item), 1u);
  for (Item &item : more) EXPECT_EQ(remove(moved, item), 1u);
  EXPECT_EQ(moved.root.top, nullptr);
}

// Without a database there is no number, and the way up tells.
TEST_F(AvlNumberTest, ATreeOfNoDatabaseHasNoNumber) {
  Tree bare;
  std::vector<Item> items(20);
  for (int i = 0; i < 20; ++i) {
    items[static_cast<std::size_t>(i)].key = i;
    e_avl_insert(nullptr, 0, &bare.root, &items[static_cast<std::size_t>(i)].node, nullptr,
                 compare);
  }
  Tree tree;
  const std::span<Item> others = filled(tree, 0, 20);
  for (Item &item : items) {
    EXPECT_EQ(item.node.tree, 0u);
    expect_refused(tree, item);
  }
  // Nor are two without one the same, where they lie in a database.
  const std::span<Item> held = filled(tree, 100, 40);
  Tree pair[2];
  for (std::size_t i = 0; i < held.size(); ++i) {
    EXPECT_EQ(remove(tree, held[i]), 1u);
    e_avl_insert(nullptr, 0, &pair[i % 2].root, &held[i].node, nullptr, compare);
  }
  for (std::size_t i = 0; i < held.size(); ++i) expect_refused(pair[(i + 1) % 2], held[i]);
  for (Item &item : others) {
    EXPECT_EQ(e_avl_delete(nullptr, 0, &bare.root, &item.node, nullptr, compare), 0u);
  }
  for (Item &item : items) {
    EXPECT_EQ(e_avl_delete(nullptr, 0, &bare.root, &item.node, nullptr, compare), 1u);
  }
  for (Item &item : others) EXPECT_EQ(remove(tree, item), 1u);
}

// --- nodes that come in order ---

class AvlOrderTest : public DatabaseTest {
 protected:
  static constexpr int kItems = 300;
  struct Store {
    e_avl_root root;
    std::uint64_t aux;
    Item items[kItems];
    std::ptrdiff_t place_of(const void *address) const {
      return static_cast<const char *>(address) - reinterpret_cast<const char *>(this);
    }
  };
  struct Insertion {
    std::uint32_t result;
    std::vector<std::pair<std::ptrdiff_t, std::size_t>> announced;  // where in the store, how much
    bool operator==(const Insertion &) const = default;
  };

  void SetUp() override {
    DatabaseTest::SetUp();
    watch_writes();
    for (Store *&store : stores_) store = make<Store>();
  }
  void TearDown() override {
    for (Store *store : stores_) release(store);
    DatabaseTest::TearDown();
  }
  std::uint32_t insert(Store &store, Item &item) {
    return e_avl_insert(handle->obj_pool, 0, &store.root, &item.node, &store.aux, compare);
  }
  Insertion inserted(Store &store, Item &item) {
    writes.clear();
    Insertion made{insert(store, item), {}};
    for (const kelp_test::Write &write : writes) {
      made.announced.emplace_back(store.place_of(write.address), write.length);
    }
    return made;
  }
  // Inserts items with these keys into two trees. Into the second one each goes behind a node of a
  // third one, so that its place is looked for from the top.
  void expect_same(const std::vector<int> &keys) {
    Store *at_once = stores_[0], *apart = stores_[1], *third = stores_[2];
    for (int i = 0; i < kItems; ++i) third->items[i].key = i;
    int next = 0;
    while (next < 10) insert(*third, third->items[next++]);
    std::vector<Insertion> insertions;
    for (std::size_t i = 0; i < keys.size(); ++i) {
      at_once->items[i].key = apart->items[i].key = keys[i];
      insertions.push_back(inserted(*at_once, at_once->items[i]));
    }
    for (std::size_t i = 0; i < keys.size(); ++i) {
      EXPECT_EQ(insert(*third, third->items[next++]), 1u);
      EXPECT_EQ(insertions[i], inserted(*apart, apart->items[i])) << i;
    }
    check(at_once->root.top, nullptr);
    EXPECT_EQ(at_once->aux, apart->aux);
    for (std::size_t i = 0; i < keys.size(); ++i) {
      const e_avl_node &one = at_once->items[i].node;
      const e_avl_node &other = apart->items[i].node;
      EXPECT_EQ(one.balance, other.balance);
      for (const auto link : {&e_avl_node::parent, &e_avl_node::left, &e_avl_node::right}) {
        ASSERT_EQ(one.*link == nullptr, other.*link == nullptr);
        if (one.*link == nullptr) continue;
        EXPECT_EQ(at_once->place_of(one.*link), apart->place_of(other.*link));
      }
    }
  }
  static std::vector<int> ascending(int count) {
    std::vector<int> keys;
    for (int key = 0; key < count; ++key) keys.push_back(10 * key);
    return keys;
  }

 private:
  Store *stores_[3] = {};
};

TEST_F(AvlOrderTest, NodesInOrderGoWhereTheyGoFromTheTop) { expect_same(ascending(250)); }

TEST_F(AvlOrderTest, SoDoThoseThatComeBetween) {
  std::vector<int> keys = ascending(250);
  for (std::size_t at = 20; at < keys.size(); at += 7) keys[at] = keys[at / 2] + 5;
  for (std::size_t at = 30; at < keys.size(); at += 11) std::swap(keys[at], keys[at - 1]);
  expect_same(keys);
}

TEST_F(AvlOrderTest, NodesInTheOtherOrder) {
  std::vector<int> keys = ascending(250);
  std::reverse(keys.begin(), keys.end());
  expect_same(keys);
}

TEST_F(AvlOrderTest, WhatIsThereIsRefused) {
  std::vector<int> keys = ascending(100);
  for (std::size_t at = 20; at < keys.size(); at += 3) keys[at] = keys[at - 1];
  for (std::size_t at = 30; at < keys.size(); at += 11) keys[at] = keys[at / 2];
  expect_same(keys);
}

TEST_F(AvlOrderTest, ANodeBehindTheLastOneTakesOneComparison) {
  auto *large = make<Store>();
  auto *small = make<Store>();
  for (int i = 0; i < kItems; ++i) {
    large->items[i].key = small->items[i].key = i;
    comparisons = 0;
    EXPECT_EQ(insert(*large, large->items[i]), 1u);
    if (i > 10) {
      EXPECT_EQ(comparisons, 1) << i;
    }
    // What a little tree gets in between changes nothing.
    if (i % 40 == 39) insert(*small, small->items[i]);
  }
  release(small);
  release(large);
}

int times_registered(const char *name) {
  int times = 0;
  for (std::uint16_t id = 1; kelp_trace_module_name(id) != nullptr; ++id) {
    if (std::strcmp(kelp_trace_module_name(id), name) == 0) ++times;
  }
  return times;
}

TEST(AvlTraceTest, TreeModulesRegisterOnce) {
  for (int i = 0; i < 2; ++i) {
    snap_avl_trace_init();
    snap_gbt_trace_init();
  }
  EXPECT_EQ(times_registered("snap_avl"), 1);
  EXPECT_EQ(times_registered("snap_gbt"), 1);
}

}  // namespace
