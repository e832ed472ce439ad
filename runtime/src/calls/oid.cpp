// The OID functions that modules call.
#include "kelp/oid.h"

#include <cstring>

#include "base/announce.hpp"
#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"
#include "parts/oid_registry.hpp"

namespace kelp {

namespace {

// Required: a field that was given the sentinel is not empty, and resolves to nothing.
kelp_oid sentinel_oid() {
  kelp_oid oid = {};
  oid.handle_word = 1;
  std::memset(oid.id, 0xFF, sizeof oid.id);
  return oid;
}

// The object's mapping, made when it is missing; null with the error word set.
kelp_oid_mapping *mapping_for(kelp_handle *handle, std::uint32_t space_id, void *object,
                              const kelp_oid *wanted, std::uint32_t *err) {
  if (object == nullptr || (wanted != nullptr && kelp_oid_id_is_zero(wanted->id) != 0)) {
    raise(handle, err, KELP_ERR_INVALID);
    return nullptr;
  }
  kelp_database &database = database_of(handle);
  if (kelp_oid_mapping *known = database.oids.find(object)) return known;
  if (database.faults.strikes(KELP_FAULT_OID_MAPPING)) {
    raise(handle, err, KELP_ERR_NO_MEMORY);
    return nullptr;
  }
  if (database.objects.watch(object) == BlockState::dead) {
    raise(handle, err, KELP_ERR_BAD_ADDRESS);
    return nullptr;
  }
  kelp_oid_mapping *made = nullptr;
  if (!without_exceptions([&] { made = database.oids.add(object, wanted); })) {
    raise(handle, err, KELP_ERR_NO_MEMORY);
    return nullptr;
  }
  if (made == nullptr) {
    raise(handle, err, KELP_ERR_EXISTS);
    return nullptr;
  }
  auto *header = static_cast<kelp_object_header *>(object);
  announce(handle, &header->obj_flags, sizeof header->obj_flags, space_id);
  header->obj_flags |= OBJ_OID_MAPPED;
  return made;
}

// Required: a count of 0 stays 0 without a failure. Cloned and unmarshalled objects carry
// references that were never counted, and dropping theirs must not keep the objects from ending.
void move_count(kelp_handle *handle, kelp_oid_mapping *mapping, std::uint32_t direction) {
  OidRegistry &oids = database_of(handle).oids;
  if (direction != KELP_OID_DECREMENT) {
    oids.set_references(mapping, mapping->references + 1);
  } else if (mapping->references > 0) {
    oids.set_references(mapping, mapping->references - 1);
  }
}

void print_hex(const std::uint8_t *part, char *buffer, std::uint32_t size, std::uint32_t *length) {
  constexpr char kDigits[] = "0123456789abcdef";
  constexpr std::uint32_t kFull = 32;
  const std::uint32_t shown = size == 0 || buffer == nullptr ? 0
                              : size - 1 < kFull             ? size - 1
                                                             : kFull;
  for (std::uint32_t i = 0; i < shown; ++i) {
    const unsigned byte = part == nullptr ? 0 : part[i / 2];
    buffer[i] = kDigits[i % 2 == 0 ? byte >> 4 : byte & 15];
  }
  if (size != 0 && buffer != nullptr) buffer[shown] = '\0';
  if (length != nullptr) *length = shown;
}

}  // namespace

}  // namespace kelp

extern "C" uint32_t kelp_oid_id_is_zero(const uint8_t *id) {
  return id == nullptr || kelp::quick::is_zero(id) ? 1 : 0;
}

extern "C" void *kelp_oid_to_handle(kelp_handle *handle, uint32_t space_id, const kelp_oid *oid,
                                    uint32_t *err) {
  (void)space_id;
  if (kelp::is_set(err)) return nullptr;
  if (oid == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return nullptr;
  }
  constexpr uint64_t kLowestResolvable = 256;
  if (oid->handle_word < kLowestResolvable || kelp_oid_id_is_zero(oid->id) != 0) return nullptr;
  const kelp_oid_mapping *mapping = kelp::database_of(handle).oids.find(*oid);
  if (mapping != nullptr) {
    const kelp_type_record *type = kelp_get_manifested_type_info(mapping->object);
    if (type != nullptr && kelp::refuses(handle, type->md5, err)) return nullptr;
    return mapping->object;
  }
  kelp::raise(handle, err, KELP_ERR_NOT_FOUND);
  return nullptr;
}

extern "C" kelp_oid kelp_handle_to_oid(kelp_handle *handle, uint32_t space_id, void *object,
                                       uint32_t, uint32_t add_reference, uint32_t *err) {
  if (object == KELP_OID_SENTINEL) return kelp::sentinel_oid();
  if (kelp::is_set(err)) return {};
  kelp_oid_mapping *mapping = kelp::mapping_for(handle, space_id, object, nullptr, err);
  if (mapping == nullptr) return {};
  if (add_reference != 0) kelp::move_count(handle, mapping, KELP_OID_INCREMENT);
  return mapping->oid;
}

extern "C" uint32_t kelp_oid_mapping_create(kelp_handle *handle, uint32_t space_id, void *object,
                                            uint32_t, uint32_t, const kelp_oid *ior,
                                            uint32_t *err) {
  if (kelp::is_set(err)) return 0;
  return kelp::mapping_for(handle, space_id, object, ior, err) != nullptr ? 1 : 0;
}

extern "C" uint32_t kelp_request_oid_mapping_destroy(kelp_handle *handle, uint32_t space_id,
                                                     void *object, uint32_t *err) {
  if (kelp::is_set(err)) return 0;
  if (object == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return 0;
  }
  kelp::OidRegistry &oids = kelp::database_of(handle).oids;
  kelp_oid_mapping *mapping = oids.find(object);
  if (mapping == nullptr) return 1;
  if (mapping->references != 0) {
    oids.ask_destroy(mapping);
    return 0;
  }
  oids.remove(object);
  kelp::expect_counting(kelp::database_of(handle), object);
  auto *header = static_cast<kelp_object_header *>(object);
  kelp::announce(handle, &header->obj_flags, sizeof header->obj_flags, space_id);
  header->obj_flags = static_cast<uint8_t>(header->obj_flags & ~OBJ_OID_MAPPED);
  return 1;
}

extern "C" int32_t kelplib_oid_compare(const kelp_oid *a, const kelp_oid *b) {
  if (a == nullptr || b == nullptr) return a == b ? 0 : a == nullptr ? -1 : 1;
  int order = std::memcmp(a->id, b->id, sizeof a->id);
  if (order == 0) order = std::memcmp(a->source, b->source, sizeof a->source);
  if (order != 0) return order < 0 ? -1 : 1;
  // Compared too, since hashes are made of it and equal OIDs must hash alike.
  if (a->handle_word == b->handle_word) return 0;
  return a->handle_word < b->handle_word ? -1 : 1;
}

extern "C" void kelplib_oid_release_internal(kelp_handle *handle, uint32_t space_id,
                                             kelp_reference *field, uint32_t *err) {
  if (kelp::is_set(err)) return;
  if (field == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return;
  }
  if (kelp_oid_id_is_zero(field->oid.id) != 0) return;
  if (kelp_oid_mapping *mapping = kelp::database_of(handle).oids.find(field->oid)) {
    kelp::move_count(handle, mapping, KELP_OID_DECREMENT);
  }
  kelp::announce(handle, &field->oid, sizeof field->oid, space_id);
  field->oid = {};
}

extern "C" kelp_oid_mapping *kelplib_oid_id_mapping_get(kelp_handle *handle, uint32_t space_id,
                                                        const kelp_oid *oid, uint32_t *err) {
  (void)space_id;
  if (kelp::is_set(err)) return nullptr;
  if (oid == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return nullptr;
  }
  return kelp::database_of(handle).oids.find(*oid);
}

extern "C" void kelplib_oid_id_print(kelp_handle *, uint32_t, const uint8_t *id, char *buffer,
                                     uint32_t size, uint32_t *length) {
  kelp::print_hex(id, buffer, size, length);
}

extern "C" void kelplib_oid_src_print(kelp_handle *, uint32_t, const uint8_t *source, char *buffer,
                                      uint32_t size, uint32_t *length) {
  kelp::print_hex(source, buffer, size, length);
}

extern "C" void kelplib_update_oid_ref_count(kelp_handle *handle, uint32_t space_id,
                                             kelp_oid_mapping *mapping, uint32_t direction,
                                             uint32_t *err) {
  (void)space_id;
  if (kelp::is_set(err)) return;
  if (mapping == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return;
  }
  kelp::move_count(handle, mapping, direction);
}

extern "C" void kelplib_lookup_and_update_oid_ref_count(kelp_handle *handle, uint32_t space_id,
                                                        const void *object, uint32_t direction,
                                                        uint32_t *err) {
  (void)space_id;
  if (kelp::is_set(err)) return;
  kelp_oid_mapping *mapping = kelp::database_of(handle).oids.find(object);
  if (mapping == nullptr) {
    kelp::raise(handle, err, KELP_ERR_NOT_FOUND);
    return;
  }
  kelp::move_count(handle, mapping, direction);
}

extern "C" int64_t kelp_handle_oid_references(const kelp_handle *handle, const void *object) {
  if (handle == nullptr) return -1;
  const kelp_oid_mapping *mapping = handle->state->database->oids.find(object);
  return mapping == nullptr ? -1 : static_cast<int64_t>(mapping->references);
}
