#include "types/transfer.hpp"

#include "types/state_mark.hpp"

namespace harbor::transfer {

namespace {

using state_tracking::Tracking;

// Copies the state bytes of source. The pointers to element state bytes are among them, so that
// source has to give them up.
void move_state(kelp_handle *handle, std::uint32_t space_id, void *destination, void *source,
                const StructureFacts &facts) {
  std::uint8_t *to = state_tracking::area_of(handle, space_id, destination, facts.object_size);
  std::uint8_t *from = state_tracking::area_of(handle, space_id, source, facts.object_size);
  offset_update(handle, space_id, destination, to, facts);
  announce(handle, space_id, to, facts.state_size);
  std::memcpy(to, from, facts.state_size);
  for (const FieldFacts &field : facts.fields) {
    if (field.kind != Kind::array) continue;
    std::uint8_t *&states = array_field::element_states_of(from, *field.array);
    store<std::uint8_t *>(handle, space_id, &states, nullptr);
  }
}

}  // namespace

// Required: the error word is not looked at on entry and the last error is not cleared. The state
// test follows the copy, and its failure leaves both objects with the same stores.
void set(kelp_handle *handle, std::uint32_t space_id, void *destination, void *source,
         std::uint32_t *err, const StructureFacts &facts) {
  kelplib_adjust_variant(
      handle, space_id, destination,
      destination == nullptr ? nullptr : kelp_get_manifested_type_info(destination),
      facts.variants - 1, err);
  if (destination == source) return;
  const std::uint8_t kept = header_of(destination)->obj_flags;
  announce(handle, space_id, destination, facts.object_size);
  std::memcpy(destination, source, facts.object_size);
  if (handle->sttr != nullptr) {
    // Where the state bytes lie is the one thing of the header that belongs to the place.
    std::uint8_t &flags = header_of(destination)->obj_flags;
    flags = static_cast<std::uint8_t>((flags & ~OBJ_STTR_RELOCATED) | (kept & OBJ_STTR_RELOCATED));
    if (state_tracking::tracking_of(handle, facts.messages.corrupted_at_transfer) == Tracking::on) {
      if (!state_tracking::require_tracked(handle, destination,
                                           facts.messages.not_tracked_at_transfer, err)) {
        return;
      }
      move_state(handle, space_id, destination, source, facts);
    }
  }
  post_copyout_cleanup(handle, space_id, destination, source, err, facts);
}

void post_copyout_cleanup(kelp_handle *handle, std::uint32_t space_id, void *destination,
                          void *source, std::uint32_t *err, const StructureFacts &facts) {
  for (const FieldFacts &field : facts.fields) {
    void *to = bytes(destination) + field.offset;
    void *from = bytes(source) + field.offset;
    switch (field.kind) {
      case Kind::structure:
        set(handle, space_id, to, from, err, *field.structure);
        break;
      case Kind::address:
        ip_address_set(handle, space_id, static_cast<ip_address *>(to),
                       static_cast<ip_address *>(from), err);
        break;
      case Kind::text:
        kelp_vstring_set(handle, space_id, static_cast<kelp_vstring *>(to),
                         static_cast<kelp_vstring *>(from), err);
        break;
      case Kind::array:
        store<void *>(handle, space_id, &array_field::store_of(source, *field.array), nullptr);
        store<std::uint32_t>(handle, space_id, &array_field::count_of(source, *field.array), 0);
        break;
      case Kind::arm:
        store<void *>(handle, space_id, static_cast<void **>(from), nullptr);
        break;
      default:
        break;
    }
  }
}

// A distance and not an address is told: object and area may be mapped elsewhere next time.
void offset_update(kelp_handle *handle, std::uint32_t space_id, void *object, void *sttr_base,
                   const StructureFacts &facts) {
  for (const FieldFacts &field : facts.fields) {
    if (field.kind != Kind::structure) continue;
    std::uint8_t *child = bytes(object) + field.offset;
    std::uint8_t *block = bytes(sttr_base) + field.block_place;
    const std::uintptr_t distance =
        reinterpret_cast<std::uintptr_t>(block) - reinterpret_cast<std::uintptr_t>(child);
    kelplib_update_sttr_offset(handle, space_id, child, static_cast<std::uint32_t>(distance));
    offset_update(handle, space_id, child, block, *field.structure);
  }
}

void offset_remove(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t *err,
                   const StructureFacts &facts) {
  for (const FieldFacts &field : facts.fields) {
    if (field.kind != Kind::structure) continue;
    std::uint8_t *child = bytes(object) + field.offset;
    kelp_hd_mapping_destroy(handle, space_id, child, err);
    offset_remove(handle, space_id, child, err, *field.structure);
  }
}

}  // namespace harbor::transfer
