// The announced store: the handle's write_notify hears of the exact range before any byte changes.
// Every store of the primitives into an object goes through here.
#pragma once

#include "kelp/handle.h"

namespace kelp {

// Whose memory a store goes to.
struct Writer {
  kelp_handle *handle;
  uint32_t space_id;

  void announce(const void *address, size_t length) const {
    handle->write_notify(handle->obj_pool, address, length, space_id);
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
