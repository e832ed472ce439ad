#include "types/transfer.hpp"

#include "types/state_mark.hpp"

namespace harbor::transfer {

namespace {

using state_tracking::Tracking;

constexpr std::uint8_t state_memory_flags = OBJ_STATE_TRACKED | OBJ_STTR_RELOCATED;

// Copies an object byte by byte from the front, but for the flags of it and its children that say
// what memory there is for state bytes: they belong to the place.
class ContentCopy {
 public:
  ContentCopy(void *destination, const void *source)
      : destination_(bytes(destination)), source_(bytes(source)) {}

  void flags_within(const StructureFacts &facts, std::size_t place) {
    const std::size_t flags = place + offsetof(kelp_object_header, obj_flags);
    up_to(flags);
    destination_[flags] = static_cast<std::uint8_t>((source_[flags] & ~state_memory_flags) |
                                                    (destination_[flags] & state_memory_flags));
    done_ = flags + 1;
    for (const FieldFacts &field : facts.fields) {
      if (field.kind == Kind::structure) flags_within(*field.structure, place + field.offset);
    }
  }
  void up_to(std::size_t place) const {
    std::memcpy(destination_ + done_, source_ + done_, place - done_);
  }

 private:
  std::uint8_t *destination_;
  const std::uint8_t *source_;
  std::size_t done_ = 0;
};

void copy_content(const StructureFacts &facts, void *destination, const void *source) {
  ContentCopy copy(destination, source);
  copy.flags_within(facts, 0);
  copy.up_to(facts.object_size);
}

// The elements of the destination, at any depth, are no longer those that its state bytes are
// about.
void drop_element_states(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                         void *object) {
  if (!state_tracking::is_tracked(object)) return;
  for (const FieldFacts &field : facts.fields) {
    if (field.kind == Kind::array) {
      array_field::drop_element_states(*field.array, handle, space_id, object);
    } else if (field.kind == Kind::structure) {
      drop_element_states(*field.structure, handle, space_id, bytes(object) + field.offset);
    }
  }
}

// Copies the state bytes of source. The pointers to element state bytes are among them, so that
// source has to give them up.
void move_state(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                void *destination, void *source) {
  std::uint8_t *to = state_tracking::area_of(handle, space_id, destination, facts.object_size);
  std::uint8_t *from = state_tracking::area_of(handle, space_id, source, facts.object_size);
  offset_update(facts, handle, space_id, destination, to);
  announce(handle, space_id, to, facts.state_size);
  std::memcpy(to, from, facts.state_size);
  for (const FieldFacts &field : facts.fields) {
    if (field.kind != Kind::array) continue;
    std::uint8_t *&states = array_field::element_states_of(*field.array, from);
    store<std::uint8_t *>(handle, space_id, &states, nullptr);
  }
}

}  // namespace

// Required: the error word is not looked at on entry and the last error is not cleared. The state
// test follows the copy, looks at the source alone, and its failure leaves both objects with the
// same stores.
void set(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
         void *destination, void *source, std::uint32_t *err) {
  kelplib_adjust_variant(
      handle, space_id, destination,
      destination == nullptr ? nullptr : kelp::quick::get_manifested_type_info(handle, destination),
      facts.variants - 1, err);
  if (destination == source) return;
  announce(handle, space_id, destination, facts.object_size);
  copy_content(facts, destination, source);
  const bool tracking =
      state_tracking::tracking_of(handle, facts.messages.corrupted_at_transfer) == Tracking::on;
  if (tracking && state_tracking::is_tracked(source) && state_tracking::is_tracked(destination)) {
    move_state(facts, handle, space_id, destination, source);
  } else {
    drop_element_states(facts, handle, space_id, destination);
  }
  if (tracking && !state_tracking::is_tracked(source) &&
      !state_tracking::require_tracked(handle, source, About(facts.record->type_name),
                                       facts.messages.not_tracked_at_transfer, err)) {
    return;
  }
  post_copyout_cleanup(facts, handle, space_id, destination, source, err);
}

void post_copyout_cleanup(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                          void *destination, void *source, std::uint32_t *err) {
  for (const FieldFacts &field : facts.fields) {
    void *to = bytes(destination) + field.offset;
    void *from = bytes(source) + field.offset;
    switch (field.kind) {
      case Kind::structure:
        set(*field.structure, handle, space_id, to, from, err);
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
        store<void *>(handle, space_id, &array_field::store_of(*field.array, source), nullptr);
        store<std::uint32_t>(handle, space_id, &array_field::count_of(*field.array, source), 0);
        break;
      case Kind::arm:
        store<void *>(handle, space_id, static_cast<void **>(from), nullptr);
        break;
      default:
        break;
    }
  }
}

// A distance and not an address is given: object and area may be mapped elsewhere next time.
void offset_update(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                   void *object, void *sttr_base) {
  for (const FieldFacts &field : facts.fields) {
    if (field.kind != Kind::structure) continue;
    std::uint8_t *child = bytes(object) + field.offset;
    std::uint8_t *block = bytes(sttr_base) + field.block_place;
    const std::uintptr_t distance =
        reinterpret_cast<std::uintptr_t>(block) - reinterpret_cast<std::uintptr_t>(child);
    kelplib_update_sttr_offset(handle, space_id, child, static_cast<std::uint32_t>(distance));
    offset_update(*field.structure, handle, space_id, child, block);
  }
}

void offset_remove(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                   void *object, std::uint32_t *err) {
  for (const FieldFacts &field : facts.fields) {
    if (field.kind != Kind::structure) continue;
    std::uint8_t *child = bytes(object) + field.offset;
    kelp_hd_mapping_destroy(handle, space_id, child, err);
    offset_remove(*field.structure, handle, space_id, child, err);
  }
}

}  // namespace harbor::transfer
