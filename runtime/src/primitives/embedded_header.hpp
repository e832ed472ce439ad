// What the primitives with a header of their own share: variants, flags, and the fact that they
// refer to nothing. The header is a kelp_object_header or the last bytes of a kelp_vstring.
#pragma once

#include "base/announce.hpp"
#include "base/failure.hpp"

namespace kelp {

// Stores that are announced only on request, as an initialize operation's notify argument asks.
struct InitialStore {
  Writer writer;
  bool notify;

  template <class T>
  void operator()(T *address, T value) const {
    if (notify) writer.announce(address, sizeof(T));
    *address = value;
  }
};

template <class Header>
void initialize_variants(const InitialStore &store, Header *header) {
  store(&header->created_variant, int8_t{0});
  store(&header->variant, int8_t{0});
}

template <class Header>
void initialize_flags(const InitialStore &store, Header *header, uint8_t flags) {
  store(&header->obj_flags, static_cast<uint8_t>(header->obj_flags | flags));
}

template <class Header>
void set_embedded(Writer writer, Header *header) {
  writer.store(&header->obj_flags, static_cast<uint8_t>(header->obj_flags | OBJ_EMBEDDED));
}

// The whole of get_oid_count and get_object_references.
inline void test_object(kelp_handle *handle, const void *object, uint32_t *err) {
  if (*err == 0 && object == nullptr) raise(handle, err, KELP_ERR_INVALID);
}

}  // namespace kelp
