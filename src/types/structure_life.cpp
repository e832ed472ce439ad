#include "types/structure_life.hpp"

#include <kelp/oid.h>

#include <algorithm>

#include "types/state_mark.hpp"
#include "types/transfer.hpp"

namespace harbor::structure_life {

namespace {

using state_tracking::Tracking;
using state_tracking::tracking_of;

// The place of a field, as the type that its kind is stored as.
template <typename Value>
Value *at(const FieldFacts &field, void *object) {
  return reinterpret_cast<Value *>(bytes(object) + field.offset);
}

// Announces a store only where the caller's object is in shared use.
struct Notifier {
  kelp_handle *handle;
  std::uint32_t space_id;
  bool notify;

  void operator()(const void *address, std::size_t length) const {
    if (notify) announce(handle, space_id, address, length);
  }
  template <typename Value>
  void put(Value *place, Value value) const {
    (*this)(place, sizeof(Value));
    *place = value;
  }
};

// --- initialize ---------------------------------------------------------------------------------

// The bases of nested state bytes, or false when a nested child was given none. Nothing is to be
// traced where the parent's area already serves.
bool place_state(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                 void *object, void *&sttr_base, std::uint32_t *err) {
  const std::uint8_t flags = header_of(object)->obj_flags;
  const bool nested = (flags & OBJ_NESTED) != 0;
  const bool relocated = (flags & OBJ_STTR_RELOCATED) != 0;
  if (nested && sttr_base == nullptr) {
    fail(handle, KELP_ERR_INVALID, err, About(facts.record->type_name),
         "found no place for the state bytes of a nested object, expected one in its parent");
    trace(type_source, Level::error, facts.messages.base_missing);
    return false;
  }
  if (nested && !relocated) return true;
  if (!nested && sttr_base == nullptr) sttr_base = bytes(object) + facts.object_size;
  if (relocated) sttr_base = bytes(object) + kelplib_get_sttr_offset(handle, space_id, object);
  transfer::offset_update(facts, handle, space_id, object, sttr_base);
  return true;
}

void initialize_child(const FieldFacts &field, kelp_handle *handle, std::uint32_t space_id,
                      void *object, bool notify, std::int32_t skip_stats, void *sttr_base,
                      std::uint32_t *err) {
  void *child = bytes(object) + field.offset;
  switch (field.kind) {
    case Kind::structure:
      initialize(*field.structure, handle, space_id, child, field.structure->record, notify,
                 skip_stats, OBJ_NESTED, sttr_base, err);
      break;
    case Kind::enumeration:
    case Kind::flags:
      light_object::prepare(handle, space_id, header_of(child), field.light->record, notify,
                            OBJ_NESTED, err);
      break;
    case Kind::boolean:
      kelp_boolean_initialize(handle, space_id, static_cast<kelp_boolean *>(child),
                              Primitive<Kind::boolean>::record, notify, skip_stats, OBJ_NESTED,
                              sttr_base, err);
      break;
    case Kind::address:
      ip_address_initialize(handle, space_id, static_cast<ip_address *>(child),
                            Primitive<Kind::address>::record, notify, skip_stats, OBJ_NESTED,
                            sttr_base, err);
      break;
    case Kind::text:
      kelp_vstring_initialize(handle, space_id, static_cast<kelp_vstring *>(child),
                              Primitive<Kind::text>::record, notify, skip_stats, OBJ_NESTED,
                              sttr_base, err);
      break;
    default:
      break;
  }
}

// --- destroy ------------------------------------------------------------------------------------

// Removes the object's OID mapping: true when destroy may go on.
bool remove_mapping(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                    void *object, std::uint32_t *err) {
  const std::uint32_t gone = kelp_request_oid_mapping_destroy(handle, space_id, object, err);
  if (*err != 0) {
    trace(type_source, Level::error, facts.messages.mapping_not_removed, std::strerror(*err));
    store_failure(handle, *err, About(facts.record->type_name), "ending its OID mapping");
    return false;
  }
  if (gone == 0) {
    trace(type_source, Level::information, facts.messages.still_referenced);
    return false;
  }
  trace(type_source, Level::debug, facts.messages.mapping_removed);
  return true;
}

// Drops the references that an address or a text holds. One that cannot be dropped is traced and
// passed over.
template <Kind kind>
bool drop_references(const FieldFacts &field, kelp_handle *handle, std::uint32_t space_id,
                     void *object, std::uint32_t *err) {
  using Type = Primitive<kind>;
  auto *place = at<storage_of<kind>>(field, object);
  const std::uint32_t count = Type::get_oid_count(handle, space_id, place, err);
  if (count == 0) return true;
  auto **references = static_cast<void **>(__builtin_alloca(count * sizeof(void *)));
  Type::get_object_references(handle, space_id, place, references, count, err);
  if (*err != 0) {
    trace(type_source, Level::error, field.references_unknown, std::strerror(*err));
    return false;
  }
  for (std::uint32_t i = 0; i < count; ++i) {
    kelplib_lookup_and_update_oid_ref_count(handle, space_id, references[i], KELP_OID_DECREMENT,
                                            err);
    if (*err == 0) continue;
    trace(type_source, Level::error, field.reference_not_dropped,
          static_cast<const void *>(references[i]), std::strerror(*err));
    *err = 0;
  }
  return true;
}

// False when the object has to stay as it now is. An embedded enumeration or flag set owns nothing
// and is not counted, so that there is nothing to do for it.
bool end_field(const FieldFacts &field, kelp_handle *handle, std::uint32_t space_id, void *object,
               std::uint32_t *err) {
  switch (field.kind) {
    case Kind::reference:
      kelplib_oid_release_internal(handle, space_id, at<kelp_reference>(field, object), err);
      if (*err == 0) return true;
      trace(type_source, Level::error, field.reference_not_released, std::strerror(*err));
      return false;
    case Kind::address:
      if (!drop_references<Kind::address>(field, handle, space_id, object, err)) return false;
      ip_address_destroy_internal(handle, space_id, at<ip_address>(field, object), 0);
      return true;
    case Kind::text:
      if (!drop_references<Kind::text>(field, handle, space_id, object, err)) return false;
      kelp_vstring_destroy_internal(handle, space_id, at<kelp_vstring>(field, object), 0);
      return true;
    case Kind::array:
      array_field::remove(*field.array, handle, space_id, object);
      return true;
    case Kind::structure:
      destroy_internal(*field.structure, handle, space_id, bytes(object) + field.offset, false);
      return true;
    case Kind::arm:
      end_arm(field, handle, space_id, object);
      return true;
    default:
      return true;
  }
}

// Gives back the state bytes of array elements, which lie in blocks of their own.
// Required: their pointers are cleared without announcement.
void end_element_states(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                        void *object) {
  if (!state_tracking::is_tracked(object)) return;
  std::uint8_t *area = state_tracking::area_of(handle, space_id, object, facts.object_size);
  for (const FieldFacts &field : facts.fields) {
    if (field.kind != Kind::array) continue;
    std::uint8_t *&states = array_field::element_states_of(*field.array, area);
    if (states == nullptr) continue;
    handle->obj_free(handle->obj_pool, space_id, states);
    states = nullptr;
  }
}

}  // namespace

void end_arm(const FieldFacts &field, kelp_handle *handle, std::uint32_t space_id, void *object) {
  void **arm = at<void *>(field, object);
  if (*arm == nullptr) return;
  switch (field.held) {
    case Kind::text:
      kelp_vstring_destroy_internal(handle, space_id, static_cast<kelp_vstring *>(*arm), 1);
      break;
    case Kind::structure:
      destroy_internal(*field.structure, handle, space_id, *arm, true);
      break;
    default:
      u_int32_destroy_internal(handle, space_id, static_cast<std::uint32_t *>(*arm), 1);
      break;
  }
  store<void *>(handle, space_id, arm, nullptr);
}

std::size_t size(const StructureFacts &facts, const kelp_handle *handle) {
  const bool on = tracking_of(handle, facts.messages.corrupted_at_size) == Tracking::on;
  return facts.object_size + (on ? facts.state_size : 0);
}

void *create(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id) {
  register_trace(handle);
  return create_internal(facts, handle, space_id);
}

void *create_cr(const StructureFacts &facts, kelp_handle *handle) {
  register_trace(handle);
  return creation::in_chain(handle, [&](kelp_handle *chain, std::uint32_t space_id) {
    return create_internal(facts, chain, space_id);
  });
}

// Required: an object that cannot be prepared yields null in all forms, and leaves cr_err alone.
void *create_internal(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id) {
  if (creation::is_failed_chain(handle)) return facts.null_object;
  void *object = nullptr;
  if (structure_template::create(facts, handle, space_id, &object)) {
    return object != nullptr ? object : creation::without_memory(handle, facts.null_object);
  }
  const auto before = structure_template::Announced::through(handle);
  object = handle->obj_alloc(handle->obj_pool, space_id, size(facts, handle));
  if (object == nullptr) return creation::without_memory(handle, facts.null_object);
  std::memset(object, 0, size(facts, handle));
  const creation::ChainGoesOn chain(handle);
  std::uint32_t err = 0;
  initialize(facts, handle, space_id, object, facts.record, true, 0, 0, nullptr, &err);
  if (err == 0) {
    structure_template::keep(facts, handle, object, before);
    return object;
  }
  trace(type_source, Level::error, facts.messages.create_failed, std::strerror(err));
  handle->obj_free(handle->obj_pool, space_id, object);
  return nullptr;
}

void initialize(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                void *object, kelp_type_record *record, bool notify, std::int32_t skip_stats,
                std::uint8_t flags, void *sttr_base, std::uint32_t *err) {
  if (!begin(handle, err)) return;
  const Notifier changing{handle, space_id, notify};
  const std::int8_t variant = type_record_access::capped_variant(
      kelp::quick::domain_lookup_variant(handle, record, err), facts.variants);

  for (const FieldFacts &field : facts.fields) {
    if (field.kind != Kind::reference) continue;
    auto *reference = at<kelp_reference>(field, object);
    changing(&reference->target_type, sizeof reference->target_type);
    reference->target_type = type_record_access::record_for(handle, space_id, field.target);
  }

  kelp_object_header *header = header_of(object);
  changing.put(&header->created_variant, variant);
  changing.put(&header->variant, variant);
  kelp_type_record **tinfo = kelp::quick::get_manifested_type_info_ptr_mem(handle, object);
  changing(tinfo, sizeof *tinfo);
  *tinfo = type_record_access::record_for(handle, space_id, record);
  changing.put(&header->obj_flags, static_cast<std::uint8_t>(header->obj_flags | flags));
  if (tracking_of(handle, facts.messages.corrupted_at_flag) == Tracking::on) {
    changing.put(&header->obj_flags,
                 static_cast<std::uint8_t>(header->obj_flags | OBJ_STATE_TRACKED));
  }

  if (skip_stats == 0) {
    kelp_variant_entry &entry =
        type_record_access::entry_of(*tinfo, variant, facts.variants, facts.messages.creation);
    kelp::quick::type_stats_create_object(handle, space_id, *tinfo, &entry.create_count, err);
    if (tracking_of(handle, facts.messages.corrupted_at_state) == Tracking::on &&
        !place_state(facts, handle, space_id, object, sttr_base, err)) {
      return;
    }
  }
  for (const FieldFacts &field : facts.fields) {
    initialize_child(field, handle, space_id, object, notify, skip_stats, sttr_base, err);
  }
}

namespace {

void mark_embedded(kelp_handle *handle, std::uint32_t space_id, void *object) {
  std::uint8_t &flags = header_of(object)->obj_flags;
  store(handle, space_id, &flags, static_cast<std::uint8_t>(flags | OBJ_EMBEDDED));
}

void mark_children_embedded(const StructureFacts &facts, kelp_handle *handle,
                            std::uint32_t space_id, void *object) {
  for (const FieldFacts &field : facts.fields) {
    switch (field.kind) {
      case Kind::structure:
        set_instance_embedded(*field.structure, handle, space_id, bytes(object) + field.offset);
        break;
      case Kind::enumeration:
      case Kind::flags:
        light_object::mark_embedded(*field.light, handle, space_id, bytes(object) + field.offset);
        break;
      case Kind::boolean:
        kelp_boolean_set_instance_embedded(handle, space_id, at<kelp_boolean>(field, object));
        break;
      case Kind::address:
        ip_address_set_instance_embedded(handle, space_id, at<ip_address>(field, object));
        break;
      case Kind::text:
        kelp_vstring_set_instance_embedded(handle, space_id, at<kelp_vstring>(field, object));
        break;
      default:
        break;
    }
  }
}

}  // namespace

// Required: the children come first only where structures are among them. The null object is never
// written.
void set_instance_embedded(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                           void *object) {
  if (object == nullptr) {
    trace(type_source, Level::error, facts.messages.embedded_object_null);
    return;
  }
  if (object == facts.null_object) return;
  if (structure_template::mark_embedded(facts, handle, space_id, object)) return;
  const bool children_first =
      std::any_of(facts.fields.begin(), facts.fields.end(),
                  [](const FieldFacts &field) { return field.kind == Kind::structure; });
  if (!children_first) mark_embedded(handle, space_id, object);
  mark_children_embedded(facts, handle, space_id, object);
  if (children_first) mark_embedded(handle, space_id, object);
}

// An object that stays behind a failure is neither counted nor freed. What its fields gave back
// before is gone from them, so that a later destroy does not give it back twice.
void destroy_internal(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                      void *object, bool free_it) {
  if (object == nullptr || object == facts.null_object) return;
  if (free_it && structure_template::destroy(facts, handle, space_id, object)) return;
  kelp_object_header *header = header_of(object);
  std::uint32_t err = 0;
  if ((header->obj_flags & OBJ_OID_MAPPED) != 0 &&
      !remove_mapping(facts, handle, space_id, object, &err)) {
    return;
  }
  for (const FieldFacts &field : facts.fields) {
    if (!end_field(field, handle, space_id, object, &err)) return;
  }
  end_element_states(facts, handle, space_id, object);

  kelp_type_record *tinfo = kelp::quick::get_manifested_type_info(handle, object);
  type_record_access::require_record(tinfo, facts.messages.destruction);
  kelp_variant_entry &entry =
      type_record_access::entry_of(tinfo, kelp::quick::get_instance_variant(handle, object, 1, 0),
                                   facts.variants, facts.messages.destruction);
  // Required: the runtime is given the create counter here too and finds the other beside it.
  kelp::quick::type_stats_destroy_object(handle, space_id, tinfo, &entry.create_count, &err);

  if ((header->obj_flags & (OBJ_RA_DATA | OBJ_STTR_RELOCATED)) != 0 && handle != nullptr &&
      handle->hd_mapped != 0) {
    kelp_hd_mapping_destroy(handle, space_id, object, &err);
    if (err != 0) {
      trace(type_source, Level::error, facts.messages.distance_not_removed, std::strerror(err));
      store_failure(handle, err, About(facts.record->type_name),
                    "ending the mapping of its state bytes");
      return;
    }
  }
  if (!free_it) return;
  if ((header->obj_flags & OBJ_TINFO_BLOCK) != 0 && header->tinfo != nullptr) {
    handle->obj_free(handle->obj_pool, space_id, header->tinfo);
  }
  store<kelp_type_record *>(handle, space_id, &header->tinfo, nullptr);
  handle->obj_free(handle->obj_pool, space_id, object);
}

}  // namespace harbor::structure_life
