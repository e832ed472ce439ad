// What all field operations share: the read gate, the opening of a write, and the getter of every
// field that lies in its structure.
#pragma once

#include <kelp/core.h>

#include "module/failure.hpp"
#include "module/object.hpp"
#include "types/primitive.hpp"
#include "types/type_record_access.hpp"

namespace harbor::field_access {

[[gnu::cold]] void refuse_variant(const Field &field, kelp_handle *handle, const void *object,
                                  std::uint32_t *err);

// A variant below the field's floor refuses the access with 43.
template <const Field &F>
inline bool has_field(kelp_handle *handle, const void *object, std::uint32_t *err) {
  if (kelp::quick::get_instance_variant(handle, object, 1, plain_valued(F.kind)) >= F.since)
    return true;
  refuse_variant(F, handle, object, err);
  return false;
}

// Steps 1 to 3 of a read: an earlier failure stands, the last error is forgotten, the object's
// variant must hold the field.
template <const Field &F>
inline bool begin_read(kelp_handle *handle, const void *object, std::uint32_t *err) {
  return begin(handle, err) && has_field<F>(handle, object, err);
}

// Steps 1 to 3 done inline. False, with nothing done, where a call is to be made or there is
// something to say. The error word and the sign of the variant's distance from the field's floor
// are tested together: branches are what a getter spends.
template <const Field &F>
inline bool reads_quickly(kelp_handle *handle, const void *object, const std::uint32_t *err) {
  if (!kelp::quick::have_both(handle, object)) return false;
  const auto distance = static_cast<std::uint32_t>(header_of(object)->variant - F.since);
  if ((*err | distance >> 31) != 0) return false;
  kelp::quick::forget_error(handle);
  return true;
}

// Whether the opening of a write has nothing to do but to forget the last error, and no state is to
// be marked at its end: the object is at its type's highest variant, so that nothing is adjusted,
// and the handle does not track.
template <const Structure &T>
inline bool opens_quickly(const kelp_handle *handle, const void *object, const std::uint32_t *err) {
  if (!kelp::quick::have_both(handle, object)) return false;
  const kelp_object_header *header = header_of(object);
  const std::uint32_t unusual = static_cast<std::uint32_t>(header->variant ^ (T.variants - 1)) |
                                (header->obj_flags & OBJ_TINFO_BLOCK);
  return (*err | unusual) == 0 && handle->sttr == nullptr && kelp::quick::fixes_nothing(handle) &&
         header->tinfo != nullptr && header->tinfo->varinfo != nullptr;
}

// Steps 1 to 4 of a write. The structure is brought in line with its domain before anything is
// written to it; what the runtime leaves in the error word then is not looked at.
template <const Structure &T, const Field &F>
[[gnu::noinline]] bool begin_write_by_steps(kelp_handle *handle, std::uint32_t space_id,
                                            void *object, std::uint32_t *err) {
  if (!begin(handle, err)) return false;
  type_record_access::adjust_variant<T>(handle, space_id, object, err);
  return has_field<F>(handle, object, err);
}

template <const Structure &T, const Field &F>
inline bool begin_write(kelp_handle *handle, std::uint32_t space_id, void *object,
                        std::uint32_t *err) {
  if (!opens_quickly<T>(handle, object, err)) [[unlikely]]
    return begin_write_by_steps<T, F>(handle, space_id, object, err);
  kelp::quick::forget_error(handle);
  return true;
}

// The field inside the object; a primitive one by the runtime's getter.
template <const Structure &T, const Field &F>
[[gnu::noinline]] void *get_by_steps(kelp_handle *handle, std::uint32_t space_id, void *object,
                                     std::uint32_t *err) {
  if (!begin_read<F>(handle, object, err)) return nullptr;
  if constexpr (is_primitive(F.kind)) {
    return Primitive<F.kind>::get(handle, space_id, place_of<T, F>(object), err);
  } else {
    return place_of<T, F>(object);
  }
}

template <const Structure &T, const Field &F>
void *get(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t *err) {
  if (!reads_quickly<F>(handle, object, err)) [[unlikely]]
    return get_by_steps<T, F>(handle, space_id, object, err);
  return place_of<T, F>(object);
}

}  // namespace harbor::field_access
