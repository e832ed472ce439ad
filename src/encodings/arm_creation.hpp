// A new object for an arm of a choice, as the readers of images and of XML make one for the
// selected arm. Called by both; it releases nothing that the slot held before.
#pragma once

#include "module/failure.hpp"
#include "types/primitive.hpp"
#include "types/structure_life.hpp"

namespace harbor {

template <const Field &F>
void *new_arm(kelp_handle *handle, std::uint32_t space_id) {
  if constexpr (F.held == Kind::structure) {
    return structure_life::create_internal<*F.structure>(handle, space_id);
  } else {
    return Primitive<F.held>::create(handle, space_id);
  }
}

// Announces the slot and stores a new object there; null with 12, the slot unchanged, when there is
// no memory.
template <const Field &F>
void *create_arm(kelp_handle *handle, std::uint32_t space_id, void **slot, std::uint32_t *err) {
  announce(handle, space_id, slot, sizeof(*slot));
  void *created = new_arm<F>(handle, space_id);
  if (created == nullptr) {
    fail(handle, KELP_ERR_NO_MEMORY, err, About(F));
  } else {
    *slot = created;
  }
  return created;
}

}  // namespace harbor
