// The last step of every setter: the field's state byte becomes 2. Setters of all kinds end here,
// with the facts of their field as constants.
#pragma once

#include "module/failure.hpp"
#include "module/object.hpp"
#include "module/trace.hpp"

namespace harbor::state_tracking {

inline constexpr std::uint8_t written = 2;

// What a handle says about tracking. The three tests come in this order, each time afresh.
enum class Tracking { absent, off, on };

inline Tracking tracking_of(const kelp_handle *handle, std::uint32_t corrupted_message) {
  if (handle->sttr == nullptr) return Tracking::absent;
  if (handle->sttr->sttr_mode == STTR_MODE_ON) return Tracking::on;
  if (handle->sttr->sttr_mode == STTR_MODE_OFF) return Tracking::off;
  die(type_source, corrupted_message);
}

inline bool is_tracked(const void *object) {
  return (header_of(object)->obj_flags & OBJ_STATE_TRACKED) != 0;
}

// The object's state bytes: directly behind its fields, or where the runtime says.
inline std::uint8_t *area_of(kelp_handle *handle, std::uint32_t space_id, void *object,
                             std::uint32_t object_size) {
  if ((header_of(object)->obj_flags & OBJ_STTR_RELOCATED) != 0) {
    return bytes(object) + kelplib_get_sttr_offset(handle, space_id, object);
  }
  return bytes(object) + object_size;
}

// One place that writes a field and marks its state.
struct WritePlace {
  const Field *field;
  std::uint32_t object_size;
  std::uint32_t state_place;
  std::uint32_t corrupted_message;
  std::uint32_t not_tracked_message;
};

template <const Structure &T, const Field &F, messages::WriteSite site>
inline constexpr WritePlace write_place{&F, model::object_size(T), model::state_place(T, F),
                                        messages::corrupted_at_write(T, F, site),
                                        messages::not_tracked_at_write(T, F, site)};

// Fails with 22 and the place's message when the object has no state bytes.
bool require_tracked(kelp_handle *handle, const void *object, const About &about,
                     std::uint32_t not_tracked_message, std::uint32_t *err);
inline bool require_tracked(kelp_handle *handle, const void *object, const Field &field,
                            std::uint32_t not_tracked_message, std::uint32_t *err) {
  return is_tracked(object) ||
         require_tracked(handle, object, About(field), not_tracked_message, err);
}

// Marks under a tracking handle; under any other nothing is looked at.
void mark(kelp_handle *handle, std::uint32_t space_id, void *object, const WritePlace &place,
          std::uint32_t *err);

}  // namespace harbor::state_tracking
