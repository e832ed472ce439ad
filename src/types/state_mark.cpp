#include "types/state_mark.hpp"

namespace harbor::state_tracking {

bool require_tracked(kelp_handle *handle, const void *object, const About &about,
                     std::uint32_t not_tracked_message, std::uint32_t *err) {
  if (is_tracked(object)) return true;
  fail(handle, KELP_ERR_INVALID, err, about,
       "found an object without state bytes, expected one made under a handle that tracks state");
  trace(type_source, Level::error, not_tracked_message);
  return false;
}

void mark(kelp_handle *handle, std::uint32_t space_id, void *object, const WritePlace &place,
          std::uint32_t *err) {
  if (tracking_of(handle, place.corrupted_message) != Tracking::on) return;
  if (!require_tracked(handle, object, *place.field, place.not_tracked_message, err)) return;
  store(handle, space_id, area_of(handle, space_id, object, place.object_size) + place.state_place,
        written);
}

}  // namespace harbor::state_tracking
