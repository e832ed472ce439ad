// The steps of by-reference fields, the same for all of them. Called by the rules of
// reference_field.hpp once the error word and the variant have been looked at.
#include "types/reference_field.hpp"

#include <cstring>

namespace harbor::reference_field {

namespace {

constexpr std::uint64_t lowest_resolvable_word = 256;
constexpr std::uint32_t information_level = static_cast<std::uint32_t>(Level::information) >> 24;
constexpr std::uint32_t printed_oid_part = 33;

// Required: an error that stands already when a step ends is traced as that step's own.
bool failed(const ReferenceFacts &reference, kelp_handle *handle, const std::uint32_t *err,
            std::uint32_t message) {
  if (*err == 0) return false;
  name_failure(handle, About(*reference.field));
  trace(type_source, Level::error, message, std::strerror(static_cast<int>(*err)));
  return true;
}

// Required: the OID is announced before the runtime is asked for it and stored whatever the runtime
// says.
void store_oid_of(kelp_handle *handle, std::uint32_t space_id, kelp_reference *field, void *target,
                  std::uint32_t add_reference, std::uint32_t *err) {
  announce(handle, space_id, &field->oid, sizeof(field->oid));
  field->oid =
      kelp_handle_to_oid(handle, space_id, target, KELP_OID_KIND_TABLE, add_reference, err);
}

void trace_missing(kelp_handle *handle, const kelp_oid &oid, std::uint32_t message) {
  if (xlog_module_test(trace_module(), information_level) == 0) return;
  char id[printed_oid_part];
  char source[printed_oid_part];
  std::uint32_t length = 0;
  kelplib_oid_id_print(handle, KELP_SPACE_RUNTIME, oid.id, id, sizeof(id), &length);
  kelplib_oid_src_print(handle, KELP_SPACE_RUNTIME, oid.source, source, sizeof(source), &length);
  trace(type_source, Level::information, message, static_cast<const char *>(id),
        static_cast<const char *>(source));
}

// Required: emptying a field marks no state, and an empty field is announced and zeroed again.
void empty(const ReferenceFacts &reference, kelp_handle *handle, std::uint32_t space_id,
           kelp_reference *field, std::uint32_t *err) {
  if (!kelp::quick::oid_id_is_zero(handle, field->oid.id)) {
    auto *mapping = kelplib_oid_id_mapping_get(handle, space_id, &field->oid, err);
    if (failed(reference, handle, err, reference.unresolved_for_clear)) return;
    if (mapping != nullptr) {
      kelplib_update_oid_ref_count(handle, space_id, mapping, KELP_OID_DECREMENT, err);
      if (failed(reference, handle, err, reference.not_dropped_for_clear)) return;
    } else {
      trace_missing(handle, field->oid, reference.missing_for_clear);
    }
  }
  announce(handle, space_id, &field->oid, sizeof(field->oid));
  field->oid = {};
}

// Gives up the reference that the field holds. A target that is gone is traced and no failure.
bool drop_earlier(const ReferenceFacts &reference, kelp_handle *handle, std::uint32_t space_id,
                  const kelp_reference *field, std::uint32_t *err) {
  if (kelp::quick::oid_id_is_zero(handle, field->oid.id)) return true;
  auto *mapping = kelplib_oid_id_mapping_get(handle, space_id, &field->oid, err);
  if (failed(reference, handle, err, reference.unresolved)) return false;
  if (mapping == nullptr) {
    trace(type_source, Level::error, reference.missing);
    return true;
  }
  kelplib_update_oid_ref_count(handle, space_id, mapping, KELP_OID_DECREMENT, err);
  return !failed(reference, handle, err, reference.not_dropped);
}

}  // namespace

void *resolve(const ReferenceFacts &reference, kelp_handle *handle, std::uint32_t space_id,
              const kelp_reference *field, std::uint32_t *err) {
  if (kelp::quick::oid_id_is_zero(handle, field->oid.id)) return nullptr;
  if (field->target_type != type_record_access::record_for(handle, space_id, reference.target)) {
    fail(handle, KELP_ERR_INVALID, err, About(*reference.field),
         "found a reference to something else, expected one to %s", reference.target->type_name);
    return nullptr;
  }
  return kelp_oid_to_handle(handle, space_id, &field->oid, err);
}

// Required: the sentinel drops no earlier reference, looks at no error and marks no state. A target
// of another type is refused without a message.
void refer(const ReferenceFacts &reference, kelp_handle *handle, std::uint32_t space_id,
           void *object, kelp_reference *field, void *target, std::uint32_t *err) {
  if (target == KELP_OID_SENTINEL) return store_oid_of(handle, space_id, field, target, 0, err);
  if (target == nullptr) return empty(reference, handle, space_id, field, err);
  if (kelp_get_manifested_type_info(target) != field->target_type) {
    return fail(handle, KELP_ERR_INVALID, err, About(*reference.field),
                "found an object of another type, expected %s", reference.target->type_name);
  }
  if (kelplib_validate_object_flags(target, 0, 1) != 0) {
    trace(type_source, Level::error, reference.target_refused);
    return fail(handle, KELP_ERR_PERMISSION, err, About(*reference.field),
                "found a nested object, expected one that can be referred to");
  }
  if (!drop_earlier(reference, handle, space_id, field, err)) return;
  store_oid_of(handle, space_id, field, target, 1, err);
  if (failed(reference, handle, err, reference.target_without_oid)) return;
  state_tracking::mark(handle, space_id, object, reference.write_place, err);
}

void resolve_all(kelp_handle *handle, std::uint32_t space_id, const void *object,
                 std::span<const ReferencePlace> places, void **references, std::uint32_t *err) {
  for (const ReferencePlace &place : places) {
    const auto *field = reinterpret_cast<const kelp_reference *>(bytes(object) + place.offset);
    void *table = nullptr;
    if (field->oid.handle_word >= lowest_resolvable_word) {
      table = kelp_oid_to_handle(handle, space_id, &field->oid, err);
      if (*err != 0) {
        trace(type_source, Level::error, place.unresolved);
        return;
      }
    }
    *references++ = table;
  }
}

}  // namespace harbor::reference_field
