// Setting and taking off the arms of a choice, the same for all arms. Called by the rules of
// choice.hpp once the error word and the variant have been looked at.
#include "types/choice.hpp"

namespace harbor::choice {

namespace {

using state_tracking::Tracking;

void **arm_of(const ArmFacts &place, void *object) {
  return reinterpret_cast<void **>(bytes(object) + place.arm_offset);
}

std::uint32_t *selector_of(const ArmFacts &place, void *object) {
  return reinterpret_cast<std::uint32_t *>(bytes(object) + place.selector_offset);
}

void store_state(kelp_handle *handle, std::uint32_t space_id, void *object,
                 const state_tracking::WritePlace &place, std::uint8_t state) {
  std::uint8_t *area = state_tracking::area_of(handle, space_id, object, place.object_size);
  store(handle, space_id, area + place.state_place, state);
}

bool tracks(kelp_handle *handle, const state_tracking::WritePlace &place) {
  return state_tracking::tracking_of(handle, place.corrupted_message) == Tracking::on;
}

}  // namespace

// Required: the earlier arm is not released, the selector's value is stored without the
// enumeration's own range test, its state byte is not marked, and arm and selector are set before
// tracking is looked at. A structure as the arm is read there, null or not.
void attach(const ArmFacts &place, kelp_handle *handle, std::uint32_t space_id, void *object,
            void *arm, std::uint32_t *err) {
  store(handle, space_id, arm_of(place, object), arm);
  store(handle, space_id, selector_of(place, object), place.selector);
  if (!tracks(handle, place.set_place)) return;
  if (!state_tracking::require_tracked(handle, object, *place.set_place.field,
                                       place.set_place.not_tracked_message, err)) {
    return;
  }
  if (place.holds_tracked_object &&
      !state_tracking::require_tracked(handle, arm, *place.set_place.field, place.arm_not_tracked,
                                       err)) {
    return;
  }
  store_state(handle, space_id, object, place.set_place, state_tracking::written);
}

// Required: the selector becomes 0 whichever arm is taken off, so that the choice then selects its
// first arm, which is not there.
void *detach(const ArmFacts &place, kelp_handle *handle, std::uint32_t space_id, void *object,
             std::uint32_t *err) {
  if (object == nullptr || *selector_of(place, object) != place.selector) return nullptr;
  void *const arm = *arm_of(place, object);
  store(handle, space_id, arm_of(place, object), static_cast<void *>(nullptr));
  store(handle, space_id, selector_of(place, object), std::uint32_t{0});
  if (tracks(handle, place.detach_place)) {
    if (!state_tracking::require_tracked(handle, object, *place.detach_place.field,
                                         place.detach_place.not_tracked_message, err)) {
      return nullptr;
    }
    store_state(handle, space_id, object, place.detach_place, 0);
  }
  return arm;
}

}  // namespace harbor::choice
