#include "types/light_object.hpp"

#include <cstring>

namespace harbor::light_object {

namespace {

// Both variants of the header, the created one first.
void store_variants(kelp_handle *handle, std::uint32_t space_id, kelp_object_header *object,
                    std::int8_t variant) {
  store(handle, space_id, &object->created_variant, variant);
  store(handle, space_id, &object->variant, variant);
}

}  // namespace

// A failed lookup does not stop the creation; its variant is stored as it came. The announcement of
// obj_flags is made although the byte stays 0.
void *create(const LightFacts &facts, kelp_handle *handle, std::uint32_t space_id) {
  if (creation::is_failed_chain(handle)) return facts.null_object;
  void *memory = handle->obj_alloc(handle->obj_pool, space_id, facts.size);
  if (memory == nullptr) return creation::without_memory(handle, facts.null_object);
  std::memset(memory, 0, facts.size);

  const creation::ChainGoesOn chain(handle);
  kelp_object_header *object = header_of(memory);
  std::uint32_t err = 0;
  const std::int8_t variant = kelp::quick::domain_lookup_variant(handle, facts.record, &err);
  store_variants(handle, space_id, object, variant);
  announce(handle, space_id, &object->tinfo, sizeof(object->tinfo));
  object->tinfo = type_record_access::record_for(handle, space_id, facts.record);
  announce(handle, space_id, &object->obj_flags, sizeof(object->obj_flags));
  if (err != 0) {
    trace(type_source, Level::error, facts.create_failed, std::strerror(static_cast<int>(err)));
  }

  kelp_variant_entry &entry =
      type_record_access::entry_of(object->tinfo, variant, facts.variants, facts.creation);
  type_record_access::announce_and_add_one(handle, space_id, object->tinfo, entry.create_count);
  return object;
}

// Required: the caller's error word is neither read nor does it stop anything, and the variant is
// not limited.
void prepare(kelp_handle *handle, std::uint32_t space_id, kelp_object_header *object,
             kelp_type_record *record, bool notify, std::uint8_t flags, std::uint32_t *err) {
  const std::int8_t variant = kelp::quick::domain_lookup_variant(handle, record, err);
  if (notify) {
    store_variants(handle, space_id, object, variant);
    announce(handle, space_id, &object->tinfo, sizeof(object->tinfo));
  } else {
    object->created_variant = variant;
    object->variant = variant;
  }
  object->tinfo = type_record_access::record_for(handle, space_id, record);
  if (notify) announce(handle, space_id, &object->obj_flags, sizeof(object->obj_flags));
  object->obj_flags |= flags;
}

void mark_embedded(const LightFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                   void *object) {
  if (object == nullptr) return trace(type_source, Level::error, facts.embedded_object_null);
  if (object == facts.null_object) return;
  std::uint8_t &flags = header_of(object)->obj_flags;
  store(handle, space_id, &flags, static_cast<std::uint8_t>(flags | OBJ_EMBEDDED));
}

// The type record is cleared before the memory goes back, so that a second destroy of memory that
// is still mapped meets require_record and frees nothing.
void end(const LightFacts &facts, kelp_handle *handle, std::uint32_t space_id, void *object) {
  if (object == nullptr || object == facts.null_object) return;
  kelp_object_header *header = header_of(object);
  const kelp_type_record *record = header->tinfo;
  type_record_access::require_record(record, facts.destruction);
  kelp_variant_entry &entry =
      type_record_access::entry_of(record, header->variant, facts.variants, facts.destruction);
  type_record_access::announce_and_add_one(handle, space_id, record, entry.destroy_count);
  header->tinfo = nullptr;
  handle->obj_free(handle->obj_pool, space_id, object);
}

}  // namespace harbor::light_object
