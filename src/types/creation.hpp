// What create operations of all types share: the null object that stands in for an object in a
// chain of _cr calls, what a create without memory gives, and the frame of the _cr form. Called by
// the lifecycle of light objects and of structures. Nothing here knows how an object is prepared.
#pragma once

#include <kelp/core.h>

#include <type_traits>

#include "module/object.hpp"

namespace harbor::creation {

// The bytes of an object without state tracking, the same for all variants of its type.
template <const auto &T>
constexpr std::uint32_t untracked_size() {
  using Type = std::remove_cvref_t<decltype(T)>;
  if constexpr (std::is_same_v<Type, model::Enumeration>) {
    return model::enumeration_size;
  } else if constexpr (std::is_same_v<Type, model::FlagSet>) {
    return model::flag_set_size;
  } else {
    return model::object_size(T);
  }
}

// One for each type, all zero. It is no valid object: its type record pointer is null, destroy
// knows it by its address, and nothing ever writes to it.
template <const auto &T>
alignas(8) inline constinit std::uint8_t null_object[untracked_size<T>()] = {};

// A chain of _cr calls that has failed allocates nothing more.
inline bool is_failed_chain(const kelp_handle *handle) {
  return handle->cr_create != 0 && handle->cr_err != 0;
}

// What a create gives when there is no memory: null, or the null object in a chain.
// Required: the ordinary form stores no error, and neither form sets the handle's cr_err.
inline void *without_memory(kelp_handle *handle, void *null_object) {
  if (handle->cr_create == 0) return nullptr;
  if (handle->cr_err == 0) kelp_store_err(handle, KELP_ERR_NO_MEMORY);
  return null_object;
}

// The frame of a _cr create around the create itself, which is called with the handle's space.
template <typename Create>
void *in_chain(kelp_handle *handle, Create create) {
  handle->cr_create = 1;
  void *object = create(handle, handle->cr_space_id);
  handle->cr_create = 0;
  return object;
}

}  // namespace harbor::creation
