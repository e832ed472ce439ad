// What obj_pool and type_pool point at: the way from a hook's first argument to the database, and
// the place where the writes announced through one handle are counted and shown to an observer.
//
// Hooks may be given pools that are not the runtime's (a program may put its own hooks into a
// handle); pool_of tells them apart by the first word.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "kelp/embed.h"
#include "kelp/quick.hpp"
#include "kelp/tree.h"

namespace kelp {

struct Pool {
  static constexpr std::uint64_t kMagic = UINT64_C(0x6c6f6f70706c656b);  // "kelppool"

  std::uint64_t magic = kMagic;
  kelp_database *database = nullptr;
  const kelp_handle *handle = nullptr;
  kelp_write_observer observer = nullptr;
  void *observer_context = nullptr;
  kelp_quick *quick = nullptr;

  // What the database has to do when a tree changes: before a node is linked, where false keeps it
  // out, and after one was taken out. Null for none.
  bool (*before_link)(Pool &pool, const e_avl_root *root, e_avl_node *node) = nullptr;
  void (*after_unlink)(Pool &pool, const e_avl_root *root, e_avl_node *node) = nullptr;
  // A number for the tree that this node begins, which all processes of a store give alike; 0 when
  // the database has none to give. Null for none.
  std::uint32_t (*number_tree)(Pool &pool, const e_avl_node *first) = nullptr;
  // Whether the top, of which nothing is known, lies in memory of the database that may be read,
  // and in a store when the node does. Null for never.
  bool (*holds_beside)(const Pool &pool, const e_avl_node *top, const e_avl_node *node) = nullptr;
  // The tree into which a node went behind the last one, when it was the latest that got any.
  const e_avl_root *grown_at_end = nullptr;
  // Of a database in a store: hears of each write before it is made.
  void (*hear)(Pool *pool, const void *address, std::size_t length) = nullptr;

  void announce(const void *address, std::size_t length, std::uint32_t space_id,
                kelp_write_origin origin) {
    ++quick->write_counts[origin];
    if (observer != nullptr) observer(observer_context, address, length, space_id, origin);
    if (hear != nullptr) hear(this, address, length);
  }
};

// The pool, or null for a pointer to something else.
inline Pool *pool_of(void *pointer) {
  if (pointer == nullptr) return nullptr;
  std::uint64_t magic;
  std::memcpy(&magic, pointer, sizeof magic);
  return magic == Pool::kMagic ? static_cast<Pool *>(pointer) : nullptr;
}

}  // namespace kelp
