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

// What a create gives when there is no memory: null, or the null object in a chain, which then has
// failed: while cr_create is set, the runtime puts a code that is stored into cr_err too.
// Required: the ordinary form stores no error.
inline void *without_memory(kelp_handle *handle, void *null_object) {
  if (handle->cr_create == 0) return nullptr;
  if (handle->cr_err == 0) kelp_store_err(handle, KELP_ERR_NO_MEMORY);
  return null_object;
}

// While this lives, what is stored as the last error does not end a chain.
// Required: a failed look-up of the variant, or a preparation that fails, leaves cr_err alone.
class ChainGoesOn {
 public:
  explicit ChainGoesOn(kelp_handle *handle) : handle_(handle), cr_err_(handle->cr_err) {}
  ~ChainGoesOn() {
    if (handle_->cr_create != 0) handle_->cr_err = cr_err_;
  }
  ChainGoesOn(const ChainGoesOn &) = delete;
  ChainGoesOn &operator=(const ChainGoesOn &) = delete;

 private:
  kelp_handle *handle_;
  std::uint32_t cr_err_;
};

// The frame of a _cr create around the create itself, which is called with the handle's space.
template <typename Create>
void *in_chain(kelp_handle *handle, Create create) {
  handle->cr_create = 1;
  void *object = create(handle, handle->cr_space_id);
  handle->cr_create = 0;
  return object;
}

}  // namespace harbor::creation
