// Enumeration objects: their values, and which of them an object takes. Called by the forwarders of
// the enumerations and by everything that writes an enumeration field. Promises, in order: an
// earlier failure stands; the object is brought in line with its domain; a value that the object's
// variant does not know is refused with 43 and nothing is stored; each store is announced first.
//
// nbr_state_type has two ranges: its named values run from 1 to 8, the wire and the variant rule
// count from 0. What is held, compared, hashed and shown is always the named value.
#pragma once

#include <array>

#include "module/failure.hpp"
#include "module/object.hpp"
#include "module/operation.hpp"
#include "types/type_record_access.hpp"

namespace harbor::enumeration {

inline constexpr std::array operations{
    Operation{
        .suffix = "map_to_user_value",
        .result = "uint32_t",
        .arguments = "uint32_t value",
        .rule = "enumeration::map_to_user_value",
        .brief = "Gives value, unchanged.",
    },
    Operation{
        .suffix = "map_to_internal_value",
        .result = "uint32_t",
        .arguments = "uint32_t value",
        .rule = "enumeration::map_to_internal_value",
        .brief = "Gives the number that the wire and the variant rule count $type by: value "
                 "itself, but for nbr_state_type, where 1 to 8 become 0 to 7.",
    },
    Operation{
        .suffix = "compare",
        .result = "int32_t",
        .arguments = "const $T *a, const $T *b",
        .rule = "enumeration::compare",
        .brief = "Orders two objects by value; null stands below all. Only the sign of the result "
                 "means something: it is a 32-bit difference that wraps.",
    },
    Operation{
        .suffix = "hash",
        .result = "uint32_t",
        .arguments = "const $T *object, uint32_t seed",
        .rule = "enumeration::hash",
        .brief = "Gives the hash of the value's 4 bytes, which is the next seed; a null object "
                 "gives the seed.",
    },
    Operation{
        .suffix = "get",
        .result = "$T *",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object",
        .rule = "enumeration::get",
        .brief = "Gives object.",
    },
    Operation{
        .suffix = "get_value",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, const $T *object, uint32_t *err",
        .rule = "enumeration::get_value",
        .brief = "Gives the value that the object holds.",
        .errors = "KELP_ERR_INVALID for a null object; 0 then",
    },
    Operation{
        .suffix = "set",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *destination, const $T *source, "
                     "uint32_t *err",
        .rule = "enumeration::set",
        .brief = "Copies source over destination, all 16 bytes: destination gets the variants, the "
                 "flags and the type record of source too. Neither may be null.",
        .errors = "KELP_ERR_EPOCH when destination's variant does not know the value; destination "
                  "is unchanged then",
        .ownership = "source stays the caller's",
    },
    Operation{
        .suffix = "set_value",
        .result = "void",
        .arguments =
            "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t value, uint32_t *err",
        .rule = "enumeration::set_value",
        .brief = "Sets the value of the object, which may not be null.",
        .errors = "KELP_ERR_EPOCH when the object's variant does not know the value; the object is "
                  "unchanged then",
    },
    Operation{
        .suffix = "is_valid_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, int32_t value",
        .rule = "enumeration::is_valid_cr",
        .brief = "Gives 1 when objects of the handle's domain take the value, else 0. A negative "
                 "value counts as valid.",
        .errors = "those of kelp_domain_lookup_variant, in cr_err",
    },
};
inline constexpr Family family{"enumeration", operations};

// --- values -----------------------------------------------------------------------------------

// The number that the wire and the variant rule count by.
constexpr std::uint32_t internal_value(const model::Enumeration &type, std::uint32_t value) {
  return type.has_internal_range && value >= 1 && value <= type.members.size() ? value - 1 : value;
}
template <const model::Enumeration &E>
constexpr std::uint32_t map_to_internal_value(std::uint32_t value) {
  return internal_value(E, value);
}

// Required: it is no inverse of map_to_internal_value, for nbr_state_type neither.
template <const model::Enumeration &E>
constexpr std::uint32_t map_to_user_value(std::uint32_t value) {
  return value;
}

// Whether an object of this variant refuses the value.
template <const model::Enumeration &E>
constexpr bool refuses(std::uint32_t value, std::int32_t variant) {
  return type_record_access::refuses_member<E>(map_to_internal_value<E>(value), variant);
}

// --- the rules --------------------------------------------------------------------------------

std::int32_t compare_values(const EnumerationObject *a, const EnumerationObject *b);
std::uint32_t hash_value(const EnumerationObject *object, std::uint32_t seed);
std::uint32_t value_of(const model::Enumeration &type, kelp_handle *handle,
                       const EnumerationObject *object, std::uint32_t *err);
void copy_whole(kelp_handle *handle, std::uint32_t space_id, void *destination, const void *source);

template <const model::Enumeration &E>
std::int32_t compare(const void *a, const void *b) {
  return compare_values(static_cast<const EnumerationObject *>(a),
                        static_cast<const EnumerationObject *>(b));
}

template <const model::Enumeration &E>
std::uint32_t hash(const void *object, std::uint32_t seed) {
  return hash_value(static_cast<const EnumerationObject *>(object), seed);
}

template <const model::Enumeration &E>
void *get(kelp_handle *, std::uint32_t, void *object) {
  return object;
}

template <const model::Enumeration &E>
std::uint32_t get_value(kelp_handle *handle, std::uint32_t, const void *object,
                        std::uint32_t *err) {
  return value_of(E, handle, static_cast<const EnumerationObject *>(object), err);
}

// Brings the object in line and asks whether it then takes the value: 43 when not. What the runtime
// leaves in the error word is not looked at.
template <const model::Enumeration &E>
bool accepts(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t value,
             std::uint32_t *err) {
  type_record_access::adjust_variant<E>(handle, space_id, object, err);
  if (!refuses<E>(value, kelp::quick::get_instance_variant(handle, object, 0, 1))) return true;
  fail_variant(handle, err, About(E.name),
               "found the value %u, expected one that the object's variant has", value);
  return false;
}

// The same as an operation's opening.
template <const model::Enumeration &E>
bool takes(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t value,
           std::uint32_t *err) {
  return begin(handle, err) && accepts<E>(handle, space_id, object, value, err);
}

// Whether the object, at its highest variant, takes the value: nothing is brought in line then.
template <const model::Enumeration &E>
bool takes_as_it_is(const EnumerationObject *object, std::uint32_t value) {
  return object->variant >= E.variants - 1 && object->tinfo != nullptr &&
         object->tinfo->varinfo != nullptr && !refuses<E>(value, object->variant);
}

// Required: the header comes along.
template <const model::Enumeration &E>
void set(kelp_handle *handle, std::uint32_t space_id, void *destination, const void *source,
         std::uint32_t *err) {
  if (!begin(handle, err)) return;
  const std::uint32_t value = static_cast<const EnumerationObject *>(source)->value;
  if (!accepts<E>(handle, space_id, destination, value, err)) return;
  copy_whole(handle, space_id, destination, source);
}

template <const model::Enumeration &E>
void set_value(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t value,
               std::uint32_t *err) {
  if (!takes<E>(handle, space_id, object, value, err)) return;
  store(handle, space_id, &static_cast<EnumerationObject *>(object)->value, value);
}

// Required: the value is compared signed here, unlike where it is set, so that a negative one is
// always valid.
template <const model::Enumeration &E>
std::uint32_t is_valid_cr(kelp_handle *handle, std::int32_t value) {
  const std::int8_t variant =
      kelp::quick::domain_lookup_variant(handle, type_record<E>, &handle->cr_err);
  return value < 0 || !refuses<E>(static_cast<std::uint32_t>(value), variant) ? 1 : 0;
}

}  // namespace harbor::enumeration
