// Structures and choices as whole values: order, hash, the validity of field numbers, and the bulk
// forms that read or write all plain values at once. Called by the forwarders of <type>_compare,
// _hash, _is_valid_cr, _get, _get_all and _set_all, and for embedded structures by the same rules.
// Order and hash go through all fields in their declared order, whatever variant the objects are
// at, and never fail; the bulk forms test the variant once for all fields of one floor, and mark no
// state.
#pragma once

#include <kelp/oid.h>

#include <tuple>

#include "module/operation.hpp"
#include "module/type_record.hpp"
#include "types/choice_object.hpp"
#include "types/value_field.hpp"

namespace harbor::structure_values {

inline constexpr std::array operations{
    Operation{
        .suffix = "compare",
        .result = "int32_t",
        .arguments = "const $T *a, const $T *b",
        .rule = "structure_values::compare",
        .brief = "Orders two objects by their fields, the first difference deciding: below, at or "
                 "above 0 as a sorts before, with or after b. Null sorts first. Headers do not "
                 "count.",
    },
    Operation{
        .suffix = "hash",
        .result = "uint32_t",
        .arguments = "const $T *object, uint32_t seed",
        .rule = "structure_values::hash",
        .brief = "Gives the hash of the object's fields, seeded with seed; a null object gives the "
                 "seed.",
    },
    Operation{
        .suffix = "is_valid_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, const $T *object, uint32_t field_number",
        .rule = "structure_values::is_valid_cr",
        .brief = "1 when the variant that the handle's domain gives to $type holds the field of "
                 "that number, counted from 0 in declared order, else 0. The object is not looked "
                 "at.",
        .errors = "those of the domain's lookup, in the handle's cr_err",
    },
    Operation{
        .suffix = "get",
        .result = "$T *",
        .arguments = "kelp_handle *handle, uint32_t space_id, const $T *object",
        .rule = "structure_values::get",
        .brief = "Gives the object itself.",
        .ownership = "as the object's",
    },
    Operation{
        .suffix = "get_all",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, const $T *object, $gettersuint32_t "
                     "*err",
        .rule = "structure_values::get_all",
        .brief = "Reads the numbers, booleans, enumerations and array counts of the object, each "
                 "into the argument of its name. Arguments of fields that the object's variant "
                 "lacks are left as they are, without an error.",
        .ownership = "the places that are written to are the caller's",
    },
    Operation{
        .suffix = "set_all",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, $settersuint32_t *err",
        .rule = "structure_values::set_all",
        .brief = "Writes the numbers, booleans and enumerations of the object, each from the "
                 "argument of its name. Fields that the object's variant lacks are passed over, "
                 "without an error. No state byte changes.",
        .errors = "KELP_ERR_EPOCH for an enumeration's value that its variant does not hold; the "
                  "arguments behind it are not written then",
    },
};
inline constexpr Family family{"structure_values", operations};

// --- which fields the bulk forms carry ----------------------------------------------------------

// Flag sets have no plain value to carry.
constexpr bool is_read_in_bulk(const Field &field) {
  switch (field.kind) {
    case Kind::u8:
    case Kind::u16:
    case Kind::u32:
    case Kind::real:
    case Kind::boolean:
    case Kind::enumeration:
    case Kind::counter:
      return true;
    default:
      return false;
  }
}

// Counters belong to the array operations, and the selector of a choice moves with its arms.
constexpr bool is_written_in_bulk(const Structure &type, const Field &field) {
  return is_read_in_bulk(field) && field.kind != Kind::counter && !type.is_choice();
}

// The emitter composes the arguments of a bulk form by this.
constexpr bool is_in_bulk(const Structure &type, const Field &field, bool written) {
  return written ? is_written_in_bulk(type, field) : is_read_in_bulk(field);
}

// --- order --------------------------------------------------------------------------------------

template <typename Value>
constexpr std::int32_t three_way(Value a, Value b) {
  return (a > b) - (b > a);
}

// The elements of two arrays whose counts are equal.
// Required: numbers are ordered as bytes in memory, not as numbers.
template <const Structure &T, const Field &F>
std::int32_t compare_elements(const void *a, const void *b) {
  const std::uint32_t count = *place_of<T, model::counter_of(T, F)>(a);
  if (count == 0) return 0;
  using Element = typename Primitive<F.held>::value_type;
  const auto *first = static_cast<const Element *>(*place_of<T, F>(a));
  const auto *second = static_cast<const Element *>(*place_of<T, F>(b));
  if constexpr (F.held == Kind::address) {
    std::int32_t order = 0;
    for (std::uint32_t i = 0; i < count && order == 0; ++i) {
      order = ip_address_compare(first + i, second + i);
    }
    return order;
  } else {
    return std::memcmp(first, second, count * sizeof(Element));
  }
}

template <const Structure &T, const Field &F>
std::int32_t compare_field(const void *a, const void *b) {
  const auto *first = place_of<T, F>(a);
  const auto *second = place_of<T, F>(b);
  if constexpr (F.kind == Kind::structure) {
    return compare<*F.structure>(first, second);
  } else if constexpr (F.kind == Kind::enumeration) {
    return static_cast<std::int32_t>(first->value - second->value);
  } else if constexpr (F.kind == Kind::flags) {
    return first->flags - second->flags;
  } else if constexpr (F.kind == Kind::reference) {
    return kelplib_oid_compare(&first->oid, &second->oid);
  } else if constexpr (F.kind == Kind::array) {
    return compare_elements<T, F>(a, b);
  } else if constexpr (F.kind == Kind::boolean || F.kind == Kind::address || F.kind == Kind::text) {
    return Primitive<F.kind>::compare(first, second);
  } else {
    return three_way(*first, *second);
  }
}

template <const Structure &T>
std::int32_t compare(const void *a, const void *b) {
  if constexpr (T.is_choice()) {
    return choice_object::compare<T>(a, b);
  } else {
    if (a == nullptr || b == nullptr) return three_way(a != nullptr, b != nullptr);
    std::int32_t order = 0;
    for_each_field<T>([&]<const Field & F>() {
      if (order == 0) order = compare_field<T, F>(a, b);
    });
    return order;
  }
}

// --- hash ---------------------------------------------------------------------------------------

// Required: the count goes in once more here, behind its own field; and an empty array still passes
// through SuperFastHash.
template <const Structure &T, const Field &F>
std::uint32_t hash_elements(const void *object, std::uint32_t seed) {
  const std::uint32_t *count = place_of<T, model::counter_of(T, F)>(object);
  seed = u_int32_hash(count, seed);
  using Element = typename Primitive<F.held>::value_type;
  const auto *elements = static_cast<const Element *>(*place_of<T, F>(object));
  if constexpr (F.held == Kind::address) {
    for (std::uint32_t i = 0; i < *count; ++i) seed = ip_address_hash(elements + i, seed);
    return seed;
  } else {
    constexpr std::uint32_t width = sizeof(Element);
    return SuperFastHash(elements, *count * width, seed);
  }
}

template <const Structure &T, const Field &F>
std::uint32_t hash_field(const void *object, std::uint32_t seed) {
  const auto *place = place_of<T, F>(object);
  if constexpr (F.kind == Kind::structure) {
    return hash<*F.structure>(place, seed);
  } else if constexpr (F.kind == Kind::enumeration) {
    return SuperFastHash(&place->value, sizeof place->value, seed);
  } else if constexpr (F.kind == Kind::flags) {
    return SuperFastHash(&place->flags, sizeof place->flags, seed);
  } else if constexpr (F.kind == Kind::reference) {
    // Required: the first four bytes of the OID alone.
    return SuperFastHash(&place->oid, 4, seed);
  } else if constexpr (F.kind == Kind::array) {
    return hash_elements<T, F>(object, seed);
  } else {
    return Primitive<F.kind>::hash(place, seed);
  }
}

template <const Structure &T>
std::uint32_t hash(const void *object, std::uint32_t seed) {
  if constexpr (T.is_choice()) {
    return choice_object::hash<T>(object, seed);
  } else {
    if (object == nullptr) return seed;
    for_each_field<T>([&]<const Field & F>() { seed = hash_field<T, F>(object, seed); });
    return seed;
  }
}

// --- the other whole-object operations ----------------------------------------------------------

// Required: the bounds of the schema decide, whether or not a field has that number.
template <const Structure &T>
std::uint32_t is_valid_cr(kelp_handle *handle, const void *, std::uint32_t field_number) {
  const std::int8_t variant =
      kelp::quick::domain_lookup_variant(handle, type_record<T>, &handle->cr_err);
  std::int8_t needed = 0;
  for (std::uint8_t bound = 0; bound < T.variants; ++bound) {
    if (field_number >= T.valid_bounds[bound]) needed = static_cast<std::int8_t>(bound + 1);
  }
  return needed == 0 || variant >= needed ? 1 : 0;
}

template <const Structure &>
void *get(kelp_handle *, std::uint32_t, const void *object) {
  return const_cast<void *>(object);
}

// --- the bulk forms -----------------------------------------------------------------------------

// Place of a field's argument among those of the bulk form.
constexpr std::size_t bulk_place(const Structure &type, const Field &wanted, bool written) {
  std::size_t place = 0;
  for (const Field *field : type.fields) {
    if (field == &wanted) break;
    if (is_in_bulk(type, *field, written)) ++place;
  }
  return place;
}

constexpr bool has_floor_in_bulk(const Structure &type, std::uint8_t floor, bool written) {
  for (const Field *field : type.fields) {
    if (field->since == floor && is_in_bulk(type, *field, written)) return true;
  }
  return false;
}

// Calls act<F>() for the fields of the bulk form, one floor after the other. The variant is tested
// once for each floor that has fields; a floor that it does not reach is passed over in silence.
template <const Structure &T, bool written, typename Act>
void for_each_in_bulk(const kelp_handle *handle, const void *object, Act act) {
  const auto visit = [&]<std::uint8_t floor>() {
    if constexpr (has_floor_in_bulk(T, floor, written)) {
      if (kelp::quick::get_instance_variant(handle, object, 1, 0) < floor) return;
      for_each_field<T>([&]<const Field & F>() {
        if constexpr (F.since == floor && is_in_bulk(T, F, written)) {
          act.template operator()<F>();
        }
      });
    }
  };
  for_each_floor<T>(T.variants - 1, visit);
}

// The value of a field as get_value gives it, 0 for a null object, without its tests.
template <const Structure &T, const Field &F>
auto read(kelp_handle *handle, std::uint32_t space_id, const void *object, std::uint32_t *err) {
  const auto *place = object == nullptr ? nullptr : place_of<T, F>(object);
  if constexpr (F.kind == Kind::enumeration) {
    return place == nullptr ? std::uint32_t{0} : place->value;
  } else {
    using Type = Primitive<F.kind>;
    using Value = typename Type::value_type;
    const auto *value = Type::get(handle, space_id, place, err);
    return value == nullptr ? Value{} : Value{Type::get_value(handle, space_id, value, err)};
  }
}

// The arguments are the places in the order of the fields, then the error word.
template <const Structure &T, typename... Arguments>
void get_all(kelp_handle *handle, std::uint32_t space_id, const void *object,
             Arguments *...arguments) {
  const std::tuple<Arguments *...> places{arguments...};
  std::uint32_t *err = std::get<sizeof...(Arguments) - 1>(places);
  if (!begin(handle, err)) return;
  for_each_in_bulk<T, false>(handle, object, [&]<const Field & F>() {
    *std::get<bulk_place(T, F, false)>(places) = read<T, F>(handle, space_id, object, err);
  });
}

// The arguments are the values in the order of the fields, then the error word.
// Required: no state byte is marked.
template <const Structure &T, typename... Arguments>
void set_all(kelp_handle *handle, std::uint32_t space_id, void *object, Arguments... arguments) {
  const std::tuple<Arguments...> values{arguments...};
  std::uint32_t *err = std::get<sizeof...(Arguments) - 1>(values);
  if (!begin(handle, err)) return;
  type_record_access::adjust_variant<T>(handle, space_id, object, err);
  for_each_in_bulk<T, true>(handle, object, [&]<const Field & F>() {
    const auto value = std::get<bulk_place(T, F, true)>(values);
    auto *place = place_of<T, F>(object);
    if constexpr (F.kind == Kind::enumeration) {
      if (enumeration::takes<*F.enumeration>(handle, space_id, place, value, err)) {
        store<std::uint32_t>(handle, space_id, &place->value, value);
      }
    } else {
      Primitive<F.kind>::set_value(handle, space_id, place, value, err);
    }
  });
}

}  // namespace harbor::structure_values
