// The announced store: the handle's write_notify hears of the exact range before any byte changes.
// Every store of the runtime into an object goes through here.
#pragma once

#include <cstddef>
#include <cstdint>

#include "kelp/quick.hpp"

namespace kelp {

// Announces a store into an object's own bytes through the handle's hook.
inline void announce(kelp_handle *handle, const void *address, std::size_t length,
                     std::uint32_t space_id) {
  quick::write_notify(handle, address, length, space_id);
}

// Whose memory a store goes to.
struct Writer {
  kelp_handle *handle;
  uint32_t space_id;

  void announce(const void *address, size_t length) const {
    kelp::announce(handle, address, length, space_id);
  }

  template <class T>
  void store(T *address, T value) const {
    announce(address, sizeof(T));
    *address = value;
  }

  void *allocate(size_t size) const { return handle->obj_alloc(handle->obj_pool, space_id, size); }

  void free(void *pointer) const { handle->obj_free(handle->obj_pool, space_id, pointer); }
};

}  // namespace kelp
