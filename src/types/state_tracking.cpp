#include "types/state_tracking.hpp"

#include <algorithm>

namespace harbor::state_tracking {

bool may_access(kelp_handle *handle, const void *object, const StateAccess &access,
                std::uint32_t *err) {
  if (*err != 0) return false;
  if (tracking_of(handle, access.corrupted_message) == Tracking::off) {
    fail(handle, KELP_ERR_INVALID, err, About(*access.field),
         "found a handle with state tracking off, expected on or without it");
    return false;
  }
  return require_tracked(handle, object, *access.field, access.not_tracked_message, err);
}

void overwrite(std::span<std::uint8_t> area, std::span<const std::uint8_t> source,
               std::span<const std::uint32_t> pointers) {
  const std::size_t count = std::min(area.size(), source.size());
  for (std::size_t place = 0; place < count; ++place) {
    const bool in_pointer =
        std::any_of(pointers.begin(), pointers.end(), [&](std::uint32_t pointer) {
          return place >= pointer && place < pointer + sizeof(std::uint8_t *);
        });
    if (!in_pointer) area[place] = source[place];
  }
}

// Required: the whole area is filled with plain stores, the pointers to the state bytes of elements
// included, and a corrupted handle is passed over. The elements' bytes are then filled through the
// pointer that the fill has left: nothing happens for an empty array, and with elements the stores
// go where no valid pointer leads.
void fill(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint8_t value,
          std::uint32_t object_size, std::uint32_t state_size,
          std::span<const array_field::ArrayFacts *const> arrays) {
  if (handle->sttr == nullptr || handle->sttr->sttr_mode != STTR_MODE_ON || !is_tracked(object)) {
    return;
  }
  std::uint8_t *area = area_of(handle, space_id, object, object_size);
  std::memset(area, value, state_size);
  for (const array_field::ArrayFacts *array : arrays) {
    const std::uint32_t count = array_field::count_of(*array, object);
    std::uint8_t *states = array_field::element_states_of(*array, area);
    for (std::uint32_t i = 0; i < count; ++i) states[i] = value;
    if (!array->holds_addresses) continue;
    for (std::uint32_t i = 0; i < count; ++i) {
      auto *element = static_cast<ip_address *>(array_field::element_at(*array, object, i));
      ip_address_set_all_state_tracking_flag(handle, space_id, element, value);
    }
  }
}

}  // namespace harbor::state_tracking
