// By-reference fields: a record refers to a table by an OID that the runtime counts and resolves.
// Called by the forwarders of <type>_<field>_get_by_ref and _set_by_ref, and of
// <type>_get_oid_count and <type>_get_object_references. Promises: the 40 bytes of an OID are
// announced and written as one; an earlier reference is given up before a new one is taken; only a
// reference that was really taken marks the field's state.
//
// The steps stand in reference_field.cpp. Nothing here is held across them: the counts are the
// runtime's, and the caller keeps other writers of the object away.
#pragma once

#include <kelp/oid.h>

#include "module/operation.hpp"
#include "module/type_record.hpp"
#include "types/field_access.hpp"
#include "types/state_mark.hpp"
#include "types/type_record_access.hpp"

namespace harbor::reference_field {

inline constexpr std::string_view getter_brief =
    "Gives the table that $field refers to, null for an empty reference. $meaning";
inline constexpr std::string_view getter_errors =
    "KELP_ERR_EPOCH when the object's variant does not hold the field; KELP_ERR_INVALID when the "
    "field was made for tables of another type; what the runtime sets for an OID that names "
    "nothing; null then";
inline constexpr std::string_view getter_ownership =
    "the table stays the database's; the reference is the object's";
inline constexpr std::string_view setter_brief =
    "Makes $field refer to target; null empties it. $meaning";
inline constexpr std::string_view setter_errors =
    "KELP_ERR_EPOCH when the object's variant does not hold the field; KELP_ERR_INVALID for a "
    "target of another type than the field's, with the old reference kept; KELP_ERR_PERMISSION for "
    "a target that lives inside another object; KELP_ERR_INVALID when the handle tracks state and "
    "the object does not, with the reference taken; what the runtime sets";
inline constexpr std::string_view setter_ownership =
    "the object takes a counted reference and gives up the earlier one; target stays the "
    "database's";

inline constexpr std::array operations{
    Operation{
        .suffix = "get_by_ref",
        .result = "$P *",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t *err",
        .rule = "reference_field::get_by_ref",
        .brief = getter_brief,
        .errors = getter_errors,
        .ownership = getter_ownership,
    },
    Operation{
        .suffix = "get_by_ref_cr",
        .result = "$P *",
        .arguments = "kelp_handle *handle, $T *object",
        .rule = "reference_field::get_by_ref_cr",
        .brief = getter_brief,
        .errors = getter_errors,
        .ownership = getter_ownership,
    },
    Operation{
        .suffix = "set_by_ref",
        .result = "void",
        .arguments =
            "kelp_handle *handle, uint32_t space_id, $T *object, $P *target, uint32_t *err",
        .rule = "reference_field::set_by_ref",
        .brief = setter_brief,
        .errors = setter_errors,
        .ownership = setter_ownership,
    },
    Operation{
        .suffix = "set_by_ref_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, $T *object, $P *target",
        .rule = "reference_field::set_by_ref_cr",
        .brief = setter_brief,
        .errors = setter_errors,
        .ownership = setter_ownership,
    },
};

inline constexpr std::array whole_operations{
    type_record_access::get_oid_count_operation,
    Operation{
        .suffix = "get_object_references",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, const $T *object, "
                     "void **references, uint32_t size, uint32_t *err",
        .rule = "reference_field::get_object_references",
        .brief = "Writes the table of each by-reference field of $type to references, in field "
                 "order, null for an empty one. references has room for as many as "
                 "$type_get_oid_count gives; size is not looked at.",
        .errors = "KELP_ERR_INVALID for a null object; what the runtime sets for an OID that names "
                  "nothing, with this output and the later ones left alone",
        .ownership = "the tables stay the database's",
    },
};

constexpr bool holds(const Field &field) { return field.kind == Kind::reference; }
inline constexpr FieldFamily family{"reference_field", holds, operations};
inline constexpr Family whole_family{"reference_field (whole object)", whole_operations};

// --- what the rules know of a field -------------------------------------------------------------

struct ReferenceFacts {
  const Field *field;
  kelp_type_record *target;  // the static record of the table that the field may refer to
  std::uint32_t unresolved_for_clear;
  std::uint32_t missing_for_clear;
  std::uint32_t not_dropped_for_clear;
  std::uint32_t target_refused;
  std::uint32_t unresolved;
  std::uint32_t not_dropped;
  std::uint32_t missing;
  std::uint32_t target_without_oid;
  state_tracking::WritePlace write_place;
};

template <const Structure &T, const Field &F>
inline constexpr ReferenceFacts facts{
    .field = &F,
    .target = type_record<model::table(F.table)>,
    .unresolved_for_clear =
        messages::of_reference(messages::TypeForm::existing_oid_unresolved, T, F),
    .missing_for_clear =
        messages::of_reference(messages::TypeForm::mapping_missing_for_clear, T, F),
    .not_dropped_for_clear = messages::of_reference(messages::TypeForm::clear_not_dropped, T, F),
    .target_refused = messages::of_reference(messages::TypeForm::target_refused, T, F),
    .unresolved = messages::of_reference(messages::TypeForm::existing_mapping_unknown, T, F),
    .not_dropped = messages::of_reference(messages::TypeForm::earlier_not_dropped, T, F),
    .missing = messages::of_reference(messages::TypeForm::mapping_entry_missing, T, F),
    .target_without_oid = messages::of_reference(messages::TypeForm::target_without_oid, T, F),
    .write_place = state_tracking::write_place<T, F, messages::WriteSite::set>,
};

// The table that a field refers to, once the variant has been looked at.
void *resolve(const ReferenceFacts &reference, kelp_handle *handle, std::uint32_t space_id,
              const kelp_reference *field, std::uint32_t *err);

// Makes a field refer to a target, empties it for null, or stores the OID of nothing for the
// sentinel, once the variant has been looked at.
void refer(const ReferenceFacts &reference, kelp_handle *handle, std::uint32_t space_id,
           void *object, kelp_reference *field, void *target, std::uint32_t *err);

// --- the references of a whole object -----------------------------------------------------------

struct ReferencePlace {
  std::uint32_t offset;
  std::uint32_t unresolved;
};

template <const Structure &T>
inline constexpr auto reference_places = [] {
  std::array<ReferencePlace, type_record_access::reference_count<T>()> places{};
  std::size_t at = 0;
  for (const Field *field : T.fields) {
    if (!holds(*field)) continue;
    places[at++] = {
        model::offset(T, *field),
        messages::of_reference(messages::TypeForm::reference_unresolved, T, *field),
    };
  }
  return places;
}();

void resolve_all(kelp_handle *handle, std::uint32_t space_id, const void *object,
                 std::span<const ReferencePlace> places, void **references, std::uint32_t *err);

// --- the rules ----------------------------------------------------------------------------------

template <const Structure &T, const Field &F>
void *get_by_ref(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t *err) {
  if (!field_access::begin_read<F>(handle, object, err)) return nullptr;
  return resolve(facts<T, F>, handle, space_id, place_of<T, F>(object), err);
}

template <const Structure &T, const Field &F>
void *get_by_ref_cr(kelp_handle *handle, void *object) {
  return get_by_ref<T, F>(handle, handle->cr_space_id, object, &handle->cr_err);
}

template <const Structure &T, const Field &F>
void set_by_ref(kelp_handle *handle, std::uint32_t space_id, void *object, void *target,
                std::uint32_t *err) {
  if (!field_access::begin_write<T, F>(handle, space_id, object, err)) return;
  refer(facts<T, F>, handle, space_id, object, place_of<T, F>(object), target, err);
}

template <const Structure &T, const Field &F>
std::uint32_t set_by_ref_cr(kelp_handle *handle, void *object, void *target) {
  set_by_ref<T, F>(handle, handle->cr_space_id, object, target, &handle->cr_err);
  return handle->cr_err;
}

// Required: the handle's last error is not cleared, and the variant is not looked at.
template <const Structure &T>
void get_object_references(kelp_handle *handle, std::uint32_t space_id, const void *object,
                           void **references, std::uint32_t, std::uint32_t *err) {
  if (!type_record_access::may_ask_references<T>(handle, object, err)) return;
  resolve_all(handle, space_id, object, reference_places<T>, references, err);
}

}  // namespace harbor::reference_field
