// Type records as the rules meet them: which record an object gets, the limit that a variant number
// is put under, the variant entry that counts an object, and the small operations that every data
// type has for its record's sake. Called by the lifecycle of light objects and of structures, by
// all who store a type record pointer, and by the tables, which bring their own messages.
//
// A record that is missing or broken ends the process: it means corrupted memory or a mismatched
// build. Nothing here stores into an object.
#pragma once

#include <kelp/core.h>

#include <type_traits>

#include "module/module.hpp"
#include "module/object.hpp"
#include "module/operation.hpp"
#include "module/trace.hpp"
#include "module/type_record.hpp"

namespace harbor::type_record_access {

// --- facts about types -------------------------------------------------------------------------

template <const auto &T>
inline constexpr bool is_structure = std::is_same_v<decltype(T), const Structure &>;

// The number of by-reference fields of the type itself, those of embedded objects not counted.
template <const auto &T>
constexpr std::uint32_t reference_count() {
  std::uint32_t count = 0;
  if constexpr (is_structure<T>) {
    for (const Field *field : T.fields) count += messages::reference_rows(*field);
  }
  return count;
}

// --- variants ----------------------------------------------------------------------------------

// A variant number limited to the highest variant of a type with that many variants.
// Required: negative numbers pass, and the two shapes differ in width. With one variant only the
// low 8 bits count, so that 256 is 0; with more the whole number is compared, so that 256 is the
// highest.
constexpr std::int8_t capped_variant(std::int32_t variant, std::uint8_t variants) {
  const auto low_byte = static_cast<std::int8_t>(variant);
  if (variants == 1) return low_byte > 0 ? std::int8_t{0} : low_byte;
  const std::int32_t highest = variants - 1;
  return variant > highest ? static_cast<std::int8_t>(highest) : low_byte;
}

// Whether an object of this variant refuses a member, by the number that the variant rule counts a
// value by or by its bit, because a later variant brought it. Numbers are compared unsigned,
// variants signed. Required: what no variant knows is refused only up to the highest variant.
template <const auto &T>
constexpr bool refuses_member(std::uint32_t number, std::int32_t variant) {
  for (std::uint8_t known = 0; known < T.variants; ++known) {
    if (number >= T.limits[known] && variant < known + 1) return true;
  }
  return false;
}

// --- records -----------------------------------------------------------------------------------

// The record that objects made under this handle point at: the static one, or the runtime's copy.
inline kelp_type_record *record_for(kelp_handle *handle, std::uint32_t space_id,
                                    kelp_type_record *static_record) {
  if (handle->shared_tinfo == 0) return static_record;
  return kelp_type_info_ptr_get(handle, space_id, static_record,
                                ospf_harbor_oper_typeinfo_initialize);
}

// The messages of one place that goes to a variant entry. tinfo_corrupted counts only where an
// object ends.
struct Site {
  const TraceSource *source;
  std::uint32_t varinfo_null;
  std::uint32_t variant_above;
  std::uint32_t tinfo_corrupted;
};

enum class End : std::uint8_t { creation = 0, destruction = 1 };

template <const auto &T, End end>
inline constexpr Site site_of{
    &type_source,
    messages::of_type_end(messages::TypeForm::varinfo_null, T, static_cast<std::uint32_t>(end)),
    messages::of_type_end(messages::TypeForm::variant_above, T, static_cast<std::uint32_t>(end)),
    messages::of_type(messages::TypeForm::tinfo_corrupted, T)};

// Ends the process when the record is null or its magic is wrong.
void require_record(const kelp_type_record *record, const Site &site);

// The entry of a variant of a type with that many variants; a variant above the record's is traced
// and limited. Ends the process when the record has no variant info.
kelp_variant_entry &entry_of(const kelp_type_record *record, std::int32_t variant,
                             std::uint8_t variants, const Site &site);

// Adds 1 to a counter of an entry: plainly where a store puts writers in order, else atomically.
void add_one(const kelp_type_record *record, std::uint64_t &counter);

// The same, announced first.
// Required: the announced length is 1, though a counter has 8 bytes.
void announce_and_add_one(kelp_handle *handle, std::uint32_t space_id,
                          const kelp_type_record *record, std::uint64_t &counter);

// --- operations of every data type ---------------------------------------------------------------
//
// The rows and the rules for enumerations, flag sets and structures alike.

inline constexpr Operation variant_data_index_cap_operation{
    .suffix = "variant_data_index_cap",
    .result = "int32_t",
    .arguments = "int32_t variant",
    .rule = "type_record_access::variant_data_index_cap",
    .brief =
        "Gives the variant number limited to the highest variant of $type. Negative numbers "
        "pass as they are.",
};
inline constexpr Operation get_luid_operation{
    .suffix = "get_luid",
    .result = "const uint8_t *",
    .arguments = "kelp_handle *handle, uint32_t space_id, const $T *object, uint32_t *err",
    .rule = "type_record_access::get_luid",
    .brief = "Gives the 16-byte identity of the object's type, as kelp_get_luid does.",
    .errors = "those of kelp_get_luid; null then",
    .ownership = "the bytes belong to the type record and live as long",
};
inline constexpr Operation adjust_variant_operation{
    .suffix = "adjust_variant",
    .result = "void",
    .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t *err",
    .rule = "type_record_access::adjust_variant",
    .brief =
        "Brings the object to the variant that the handle's domain gives to its type, as far "
        "as $type has it. A null object is passed over.",
    .errors = "those of kelplib_adjust_variant",
};
inline constexpr Operation get_oid_count_operation{
    .suffix = "get_oid_count",
    .result = "uint32_t",
    .arguments = "kelp_handle *handle, uint32_t space_id, const $T *object, uint32_t *err",
    .rule = "type_record_access::get_oid_count",
    .brief =
        "Gives the number of by-reference fields of $type, whatever the object's variant: the "
        "slots that $type_get_object_references fills.",
    .errors = "KELP_ERR_INVALID for a null object; 0 then",
};

template <const auto &T>
std::int8_t variant_data_index_cap(std::int32_t variant) {
  return capped_variant(variant, T.variants);
}

template <const auto &T>
const std::uint8_t *get_luid(kelp_handle *handle, std::uint32_t space_id, const void *object,
                             std::uint32_t *err) {
  return kelp_get_luid(handle, space_id, object, err);
}

// The record that an object points at, null for a null object. Structures may hold it in a block of
// their own; the light types never do.
template <const auto &T>
const kelp_type_record *record_of(const kelp_handle *handle, const void *object) {
  if (object == nullptr) return nullptr;
  if constexpr (is_structure<T>) {
    return kelp::quick::get_manifested_type_info(handle, object);
  } else {
    return header_of(object)->tinfo;
  }
}

template <const auto &T>
void adjust_variant(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t *err) {
  kelp::quick::adjust_variant(handle, space_id, object, record_of<T>(handle, object),
                              T.variants - 1, err);
}

// Whether a writer of images has nothing to say of the object and may write its frame inline: what
// is not null stands at a variant of its type, has its record in place and carries no ra-data.
inline bool is_ordinary(const void *object) {
  const kelp_object_header *header = header_of(object);
  const kelp_type_record *record = header->tinfo;
  return (header->obj_flags & (OBJ_TINFO_BLOCK | OBJ_RA_DATA)) == 0 && record != nullptr &&
         record->varinfo != nullptr && header->variant >= 0 &&
         header->variant <= kelp::quick::highest_variant(record);
}

// The entry tests of the two operations that ask an object for its references. They are traced,
// and clear no last error.
bool may_ask(std::string_view type, kelp_handle *handle, const void *object,
             std::uint32_t error_present, std::uint32_t object_null, std::uint32_t *err);

template <const auto &T>
bool may_ask_references(kelp_handle *handle, const void *object, std::uint32_t *err) {
  return may_ask(T.name, handle, object,
                 messages::of_type(messages::TypeForm::references_error_present, T),
                 messages::of_type(messages::TypeForm::references_object_null, T), err);
}

template <const auto &T>
std::uint32_t get_oid_count(kelp_handle *handle, std::uint32_t, const void *object,
                            std::uint32_t *err) {
  if (!may_ask(T.name, handle, object,
               messages::of_type(messages::TypeForm::count_error_present, T),
               messages::of_type(messages::TypeForm::count_object_null, T), err)) {
    return 0;
  }
  return reference_count<T>();
}

}  // namespace harbor::type_record_access
