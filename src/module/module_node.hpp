// The module's place in the runtime's list of modules, a tail queue. The library links its node
// when it is loaded and takes it out when it is unloaded; the loader keeps the two apart, so that
// no lock is needed. Nothing else changes the node.
#pragma once

#include <kelp/object.h>

#include <cstdint>

namespace harbor::module_frame {

// linked: its low bit says that this node has been linked once.
inline void link_module(kelp_module_node &node, kelp_module_list &root, std::uint8_t &linked) {
  if ((linked & 1) != 0) return;
  node.next = nullptr;
  node.prev_link = root.tail_link;
  *root.tail_link = &node;
  root.tail_link = &node.next;
  root.count += 1;
  linked = 1;
}

// Required: the linked byte stays as it is, so that the same loaded image is never linked twice.
inline void unlink_module(kelp_module_node &node, kelp_module_list &root) {
  if (node.next == nullptr && node.prev_link == nullptr) return;
  if (node.next != nullptr) {
    node.next->prev_link = node.prev_link;
  } else {
    root.tail_link = node.prev_link;
  }
  *node.prev_link = node.next;
  node.next = nullptr;
  node.prev_link = nullptr;
  root.count -= 1;
}

}  // namespace harbor::module_frame
