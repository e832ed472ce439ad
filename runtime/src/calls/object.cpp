// What modules ask about one object: its variant and flags, its type record, its type's identity,
// whether it may be taken hold of, and its counters.
#include <cstring>

#include "base/failure.hpp"
#include "database/handle_state.hpp"
#include "kelp/core.h"

namespace {

// What both counting calls ask of their arguments.
bool can_count(kelp_handle *handle, const kelp_type_record *record, const uint64_t *counter,
               uint32_t *err) {
  if (kelp::is_set(err)) return false;
  if (record != nullptr && counter != nullptr) return true;
  kelp::raise(handle, err, KELP_ERR_INVALID);
  return false;
}

}  // namespace

extern "C" int8_t kelp_get_instance_variant(const void *object, int32_t, int32_t) {
  return kelp::quick::variant_of(object);
}

extern "C" uint8_t kelp_get_instance_obj_flag(const void *object, int32_t, int32_t) {
  return kelp::quick::flags_of(object);
}

extern "C" kelp_type_record **kelp_get_manifested_type_info_ptr_mem(void *object) {
  return kelp::quick::record_place(object);
}

extern "C" kelp_type_record *kelp_get_manifested_type_info(const void *object) {
  if (object == nullptr) return nullptr;
  return *kelp_get_manifested_type_info_ptr_mem(const_cast<void *>(object));
}

extern "C" const uint8_t *kelp_get_luid(kelp_handle *handle, uint32_t space_id, const void *object,
                                        uint32_t *err) {
  (void)space_id;
  if (kelp::is_set(err)) return nullptr;
  const kelp_type_record *record = kelp_get_manifested_type_info(object);
  if (record == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return nullptr;
  }
  return record->md5;
}

extern "C" uint32_t kelplib_validate_object_flags(const void *object, int32_t refuse_embedded,
                                                  int32_t refuse_nested) {
  if (object == nullptr) return KELP_ERR_INVALID;
  const uint8_t flags = kelp::quick::flags_of(object);
  const bool refused = (refuse_embedded != 0 && (flags & OBJ_EMBEDDED) != 0) ||
                       (refuse_nested != 0 && (flags & OBJ_NESTED) != 0);
  return refused ? KELP_ERR_PERMISSION : 0;
}

extern "C" void kelplib_type_stats_create_object(kelp_handle *handle, uint32_t space_id,
                                                 const kelp_type_record *record,
                                                 uint64_t *create_count, uint32_t *err) {
  if (can_count(handle, record, create_count, err)) {
    kelp::quick::count(handle, space_id, record, create_count);
  }
}

extern "C" void kelplib_type_stats_destroy_object(kelp_handle *handle, uint32_t space_id,
                                                  const kelp_type_record *record,
                                                  uint64_t *create_count, uint32_t *err) {
  if (!can_count(handle, record, create_count, err)) return;
  kelp::quick::count(handle, space_id, record, kelp::quick::destroy_count_beside(create_count));
}

extern "C" uint8_t kelplib_type_header_get_state_tracking_flag(const void *image) {
  if (image == nullptr) return 0;
  constexpr std::size_t kFlagOffset = 1;
  return (static_cast<const uint8_t *>(image)[kFlagOffset] & OBJ_STATE_TRACKED) != 0 ? 1 : 0;
}
