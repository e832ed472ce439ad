// Direct access to state bytes: reading and writing one, those of an array, and all of an object at
// once. Called by the forwarders of <type>_<field>_state_flag_get, _set and their array forms, and
// of <type>_set_all_state_tracking_flag. The state bytes of an object that has them can be used
// under a handle without a tracking descriptor too, but not under one that has tracking switched
// off. Reading tests no variant; the last error is never cleared; what the values other than 0 and
// 2 mean is the caller's affair.
//
// The rules stand in state_tracking.cpp, once for all fields; the templates bind a field's facts.
#pragma once

#include <span>

#include "module/operation.hpp"
#include "types/array_field.hpp"
#include "types/field_access.hpp"
#include "types/state_mark.hpp"

namespace harbor::state_tracking {

inline constexpr std::string_view reading_errors =
    "KELP_ERR_INVALID when the handle has tracking switched off or the object has no state bytes; "
    "0 then";
inline constexpr std::string_view writing_errors =
    "KELP_ERR_INVALID when the handle has tracking switched off or the object has no state bytes; "
    "KELP_ERR_EPOCH when the object's variant does not hold the field";

inline constexpr std::array operations{
    Operation{
        .suffix = "state_flag_get",
        .result = "uint8_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t *err",
        .rule = "state_tracking::state_flag_get",
        .brief = "Gives the state byte of $field: 0 not written, 2 written by a setter, any other "
                 "as a caller set it.",
        .errors = reading_errors,
    },
    Operation{
        .suffix = "state_flag_set",
        .result = "void",
        .arguments =
            "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t value, uint32_t *err",
        .rule = "state_tracking::state_flag_set",
        .brief = "Sets the state byte of $field to the low 8 bits of value.",
        .errors = writing_errors,
    },
};
inline constexpr std::array array_operations{
    Operation{
        .suffix = "state_flag_whole_get",
        .result = "uint8_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t *err",
        .rule = "state_tracking::state_flag_get",
        .brief = "Gives the state byte of $field as a whole.",
        .errors = reading_errors,
    },
    Operation{
        .suffix = "state_flag_whole_set",
        .result = "void",
        .arguments =
            "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t value, uint32_t *err",
        .rule = "state_tracking::state_flag_set",
        .brief = "Sets the state byte of $field as a whole to the low 8 bits of value.",
        .errors = writing_errors,
    },
    Operation{
        .suffix = "state_flag_get",
        .result = "uint8_t",
        .arguments =
            "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t index, uint32_t *err",
        .rule = "state_tracking::element_state_flag_get",
        .brief = "Gives the state byte of element index of $field, 0 while the elements have none "
                 "because they came without.",
        .errors =
            "KELP_ERR_INVALID when the handle has tracking switched off or the object has no state "
            "bytes, KELP_ERR_NOT_FOUND for an index that is not below the count; 0 then",
    },
    Operation{
        .suffix = "state_flag_set",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t index, uint32_t "
                     "value, uint32_t *err",
        .rule = "state_tracking::element_state_flag_set",
        .brief = "Sets the state byte of element index of $field to the low 8 bits of value. "
                 "Elements that came without state bytes get them first, all 0.",
        .errors =
            "KELP_ERR_INVALID when the handle has tracking switched off or the object has no state "
            "bytes, KELP_ERR_NOT_FOUND for an index that is not below the count, KELP_ERR_EPOCH "
            "when the object's variant does not hold the field, KELP_ERR_NO_MEMORY without memory",
    },
    Operation{
        .suffix = "state_flag_get_arr",
        .result = "void",
        .arguments =
            "kelp_handle *handle, uint32_t space_id, $T *object, uint64_t *out, uint32_t *err",
        .rule = "state_tracking::element_states_get",
        .brief = "Stores the address of the state bytes of the elements of $field, one for each "
                 "element, into out; 0 while the elements have none because they came without.",
        .errors = "KELP_ERR_INVALID when the handle has tracking switched off or the object has no "
                  "state bytes; out is unchanged then",
        .ownership = "the bytes belong to the object and are good until the array grows, is "
                     "replaced or moved",
    },
    Operation{
        .suffix = "state_flag_set_arr",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, const uint8_t *source, "
                     "uint32_t count, uint32_t *err",
        .rule = "state_tracking::element_states_set",
        .brief = "Copies count bytes from source over the beginning of the object's own state "
                 "bytes, unannounced, as far as the object has any; the state bytes of the "
                 "elements of $field, and the pointers to such among the object's own, stay as "
                 "they are. count must be that of the array.",
        .errors = "KELP_ERR_INVALID when the handle has tracking switched off or the object has no "
                  "state bytes, KELP_ERR_NOT_FOUND for another count than the array's, "
                  "KELP_ERR_EPOCH when the object's variant does not hold the field",
        .ownership = "source stays the caller's",
    },
};
inline constexpr std::array whole_operations{
    Operation{
        .suffix = "set_all_state_tracking_flag",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t value",
        .rule = "state_tracking::set_all_state_tracking_flag",
        .brief = "Sets every state byte of the object, those of embedded structures too, to the "
                 "low 8 bits of value, unannounced. Only for objects without array elements: the "
                 "pointers to the state bytes of elements are overwritten too. Does nothing unless "
                 "handle and object track state.",
    },
};

constexpr bool holds(const Field &field) {
  return field.kind != Kind::counter && field.kind != Kind::array;
}
constexpr bool holds_array(const Field &field) { return field.kind == Kind::array; }

inline constexpr FieldFamily family{"state_tracking", holds, operations};
inline constexpr FieldFamily array_family{"state_tracking (array)", holds_array, array_operations};
inline constexpr Family whole_family{"state_tracking (whole object)", whole_operations};

// --- what the rules know of a place -------------------------------------------------------------

// The messages of one place that reads or writes state bytes directly.
struct StateAccess {
  const Field *field;
  std::uint32_t corrupted_message;
  std::uint32_t not_tracked_message;
};

template <const Structure &T, const Field &F, messages::StateSite site>
inline constexpr StateAccess state_read{&F, messages::corrupted_at_state_get(T, F, site),
                                        messages::non_tracked_at_state_get(T, F, site)};
template <const Structure &T, const Field &F, messages::StateSite site>
inline constexpr StateAccess state_write{&F, messages::corrupted_at_state_set(T, F, site),
                                         messages::not_tracked_at_state_set(T, F, site)};

// --- the rules ----------------------------------------------------------------------------------

// The gate of all of them: an earlier failure stands; tracking that is switched off is 22, without
// a message; an object without state bytes is 22 with the place's message.
bool may_access(kelp_handle *handle, const void *object, const StateAccess &access,
                std::uint32_t *err);

template <const Structure &T>
std::uint8_t *area_of(kelp_handle *handle, std::uint32_t space_id, void *object) {
  return area_of(handle, space_id, object, model::object_size(T));
}

// The gate of a write, with what may stand between the gate and the variant: brings the object in
// line and asks for the field.
template <const Structure &T, const Field &F>
bool may_write(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t *err) {
  type_record_access::adjust_variant<T>(handle, space_id, object, err);
  return field_access::has_field<F>(handle, object, err);
}

template <const Structure &T, const Field &F>
std::uint8_t state_flag_get(kelp_handle *handle, std::uint32_t space_id, void *object,
                            std::uint32_t *err) {
  if (!may_access(handle, object, state_read<T, F, messages::StateSite::whole>, err)) return 0;
  return area_of<T>(handle, space_id, object)[model::state_place(T, F)];
}

template <const Structure &T, const Field &F>
void state_flag_set(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t value,
                    std::uint32_t *err) {
  if (!may_access(handle, object, state_write<T, F, messages::StateSite::whole>, err)) return;
  if (!may_write<T, F>(handle, space_id, object, err)) return;
  store(handle, space_id, area_of<T>(handle, space_id, object) + model::state_place(T, F),
        static_cast<std::uint8_t>(value));
}

template <const Structure &T, const Field &F>
std::uint32_t count_of(const void *object) {
  return *place_of<T, model::counter_of(T, F)>(object);
}

template <const Structure &T, const Field &F>
std::uint8_t *element_states(kelp_handle *handle, std::uint32_t space_id, void *object) {
  return array_field::element_states_of(array_field::facts<T, F>,
                                        area_of<T>(handle, space_id, object));
}

template <const Structure &T, const Field &F>
std::uint8_t element_state_flag_get(kelp_handle *handle, std::uint32_t space_id, void *object,
                                    std::uint32_t index, std::uint32_t *err) {
  if (!may_access(handle, object, state_read<T, F, messages::StateSite::element>, err)) return 0;
  if (index >= count_of<T, F>(object)) {
    fail(handle, KELP_ERR_NOT_FOUND, err, About(F), "found the index %u, expected one below %u",
         index, count_of<T, F>(object));
    return 0;
  }
  const std::uint8_t *states = element_states<T, F>(handle, space_id, object);
  return states == nullptr ? 0 : states[index];
}

template <const Structure &T, const Field &F>
void element_state_flag_set(kelp_handle *handle, std::uint32_t space_id, void *object,
                            std::uint32_t index, std::uint32_t value, std::uint32_t *err) {
  if (!may_access(handle, object, state_write<T, F, messages::StateSite::element>, err)) return;
  if (index >= count_of<T, F>(object)) {
    return fail(handle, KELP_ERR_NOT_FOUND, err, About(F),
                "found the index %u, expected one below %u", index, count_of<T, F>(object));
  }
  if (!may_write<T, F>(handle, space_id, object, err)) return;
  std::uint8_t *states =
      array_field::provide_element_states(array_field::facts<T, F>, handle, space_id, object);
  if (states == nullptr) return fail(handle, KELP_ERR_NO_MEMORY, err, About(F));
  store(handle, space_id, states + index, static_cast<std::uint8_t>(value));
}

template <const Structure &T, const Field &F>
void element_states_get(kelp_handle *handle, std::uint32_t space_id, void *object,
                        std::uint64_t *out, std::uint32_t *err) {
  if (!may_access(handle, object, state_read<T, F, messages::StateSite::element_array>, err)) {
    return;
  }
  *out = reinterpret_cast<std::uintptr_t>(element_states<T, F>(handle, space_id, object));
}

// The places in a type's state area where pointers to the state bytes of elements stand, those in
// the blocks of embedded structures too.
constexpr std::size_t pointer_count(const Structure &type) {
  std::size_t count = 0;
  for (const Field *field : type.fields) {
    if (field->kind == Kind::array) ++count;
    if (field->kind == Kind::structure) count += pointer_count(*field->structure);
  }
  return count;
}

constexpr void collect_pointers(const Structure &type, std::uint32_t start,
                                std::span<std::uint32_t> places, std::size_t &next) {
  for (const Field *field : type.fields) {
    if (field->kind != Kind::array && field->kind != Kind::structure) continue;
    const std::uint32_t place = start + model::state_block_place(type, *field);
    if (field->kind == Kind::array) {
      places[next++] = place;
    } else {
      collect_pointers(*field->structure, place, places, next);
    }
  }
}

template <const Structure &T>
inline constexpr auto pointer_places = [] {
  std::array<std::uint32_t, pointer_count(T)> places{};
  std::size_t next = 0;
  collect_pointers(T, 0, places, next);
  return places;
}();

// Copies bytes over the beginning of a state area, as far as it goes; the pointers in it stay.
void overwrite(std::span<std::uint8_t> area, std::span<const std::uint8_t> source,
               std::span<const std::uint32_t> pointers);

// Sets all state bytes of an object; arrays are those of its type.
void fill(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint8_t value,
          std::uint32_t object_size, std::uint32_t state_size,
          std::span<const array_field::ArrayFacts *const> arrays);

template <const Structure &T>
inline constexpr std::size_t array_count = [] {
  std::size_t count = 0;
  for (const Field *field : T.fields) count += holds_array(*field) ? 1 : 0;
  return count;
}();

template <const Structure &T>
inline constexpr auto arrays_of = [] {
  std::array<const array_field::ArrayFacts *, array_count<T>> arrays{};
  std::size_t next = 0;
  for_each_field<T>([&]<const Field & F>() {
    if constexpr (holds_array(F)) arrays[next++] = &array_field::facts<T, F>;
  });
  return arrays;
}();

// Required: the bytes go to the beginning of the object's own state bytes, not to those of the
// elements, and are not announced.
template <const Structure &T, const Field &F>
void element_states_set(kelp_handle *handle, std::uint32_t space_id, void *object,
                        const std::uint8_t *source, std::uint32_t count, std::uint32_t *err) {
  if (!may_access(handle, object, state_write<T, F, messages::StateSite::element_array>, err)) {
    return;
  }
  if (count != count_of<T, F>(object)) {
    return fail(handle, KELP_ERR_NOT_FOUND, err, About(F), "found a count of %u, expected %u",
                count, count_of<T, F>(object));
  }
  if (!may_write<T, F>(handle, space_id, object, err)) return;
  overwrite({area_of<T>(handle, space_id, object), model::state_size(T)}, {source, count},
            pointer_places<T>);
}

template <const Structure &T>
void set_all_state_tracking_flag(kelp_handle *handle, std::uint32_t space_id, void *object,
                                 std::uint32_t value) {
  fill(handle, space_id, object, static_cast<std::uint8_t>(value), model::object_size(T),
       model::state_size(T), arrays_of<T>);
}

}  // namespace harbor::state_tracking
