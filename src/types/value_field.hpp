// Value fields: numbers, booleans, enumerations and flag sets that lie in place. Called by the
// forwarders of <type>_<field>_get, _get_value, _set and _set_value. Promises, in order: an earlier
// failure stands and nothing happens; a field that the object's variant lacks is never touched;
// each store is announced first; under state tracking the field's byte says that it was written.
//
// Counters of arrays are read by the same rules; only the array operations write them.
#pragma once

#include "module/operation.hpp"
#include "types/enumeration.hpp"
#include "types/field_access.hpp"
#include "types/flag_set.hpp"
#include "types/primitive.hpp"
#include "types/state_mark.hpp"

namespace harbor::value_field {

inline constexpr std::string_view getter_errors =
    "KELP_ERR_EPOCH when the object's variant does not hold the field; null then";

inline constexpr std::array operations{
    Operation{
        .suffix = "get",
        .result = "$F *",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t *err",
        .rule = "field_access::get",
        .brief = "Gives the place of $field inside the object. $meaning",
        .errors = getter_errors,
        .ownership = "the place belongs to the object",
    },
    Operation{
        .suffix = "get_value",
        .result = "$V",
        .arguments = "kelp_handle *handle, uint32_t space_id, const $T *object, uint32_t *err",
        .rule = "value_field::get_value",
        .brief = "Gives the value of $field, 0 for a null object. $meaning",
        .errors = "KELP_ERR_EPOCH when the object's variant does not hold the field; 0 then",
    },
    Operation{
        .suffix = "set",
        .result = "void",
        .arguments =
            "kelp_handle *handle, uint32_t space_id, $T *object, const $F *source, uint32_t *err",
        .rule = "value_field::set",
        .brief = "Copies source into $field. $meaning",
        .errors = "KELP_ERR_EPOCH when the object's variant does not hold the field or the value; "
                  "KELP_ERR_INVALID when the handle tracks state and the object does not, with the "
                  "value stored",
        .ownership = "source stays the caller's",
    },
    Operation{
        .suffix = "set_value",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, $V value, "
                     "uint32_t *err",
        .rule = "value_field::set_value",
        .brief = "Sets $field. $meaning",
        .errors = "KELP_ERR_EPOCH when the object's variant does not hold the field or the value; "
                  "KELP_ERR_NOT_FOUND for a null object; KELP_ERR_INVALID when the handle tracks "
                  "state and the object does not, with the value stored",
    },
};

constexpr bool holds(const Field &field) {
  return (is_primitive(field.kind) && field.kind != Kind::address && field.kind != Kind::text &&
          field.kind != Kind::counter) ||
         field.kind == Kind::enumeration || field.kind == Kind::flags;
}
constexpr bool is_counter(const Field &field) { return field.kind == Kind::counter; }

inline constexpr FieldFamily family{"value_field", holds, operations};
inline constexpr FieldFamily counter_family{"value_field (counter)", is_counter,
                                            std::span(operations).first(2)};

// --- the rules --------------------------------------------------------------------------------

// The value word of an embedded enumeration or flag object, widened.
template <const Structure &T, const Field &F>
std::uint32_t word_of(const void *object) {
  if constexpr (F.kind == Kind::enumeration) {
    return place_of<T, F>(object)->value;
  } else {
    return place_of<T, F>(object)->flags;
  }
}

// Required: a null object yields 0 without a failure.
template <const Structure &T, const Field &F>
[[gnu::noinline]] auto get_value_by_steps(kelp_handle *handle, std::uint32_t space_id,
                                          const void *object, std::uint32_t *err) {
  if constexpr (is_primitive(F.kind)) {
    using Type = Primitive<F.kind>;
    using Value = typename Type::value_type;
    if (!field_access::begin_read<F>(handle, object, err)) return Value{};
    const auto *place = object == nullptr ? nullptr : place_of<T, F>(object);
    const auto *value = Type::get(handle, space_id, place, err);
    return value == nullptr ? Value{} : Value{Type::get_value(handle, space_id, value, err)};
  } else {
    if (!field_access::begin_read<F>(handle, object, err)) return std::uint32_t{0};
    if (object == nullptr || !begin(handle, err)) return std::uint32_t{0};
    return word_of<T, F>(object);
  }
}

template <const Structure &T, const Field &F>
auto get_value(kelp_handle *handle, std::uint32_t space_id, const void *object,
               std::uint32_t *err) {
  if (!field_access::reads_quickly<F>(handle, object, err)) [[unlikely]]
    return get_value_by_steps<T, F>(handle, space_id, object, err);
  if constexpr (is_primitive(F.kind)) {
    return *place_of<T, F>(object);
  } else {
    return word_of<T, F>(object);
  }
}

// The write of set: an enumeration is range-tested, and it and a flag set are copied whole, header
// included.
template <const Structure &T, const Field &F>
void write(kelp_handle *handle, std::uint32_t space_id, void *object, const void *source,
           std::uint32_t *err) {
  auto *place = place_of<T, F>(object);
  if constexpr (is_primitive(F.kind)) {
    using Value = typename Primitive<F.kind>::value_type;
    Primitive<F.kind>::set(handle, space_id, place, static_cast<const Value *>(source), err);
  } else if constexpr (F.kind == Kind::enumeration) {
    const std::uint32_t value = static_cast<const EnumerationObject *>(source)->value;
    if (!enumeration::takes<*F.enumeration>(handle, space_id, place, value, err)) return;
    announce(handle, space_id, place, model::enumeration_size);
    std::memcpy(static_cast<void *>(place), source, model::enumeration_size);
  } else {
    if (!begin(handle, err)) return;
    announce(handle, space_id, place, model::flag_set_size);
    std::memcpy(static_cast<void *>(place), source, model::flag_set_size);
  }
}

// Required: the state byte is marked whatever the write ended in, also when a value was refused.
template <const Structure &T, const Field &F>
void set(kelp_handle *handle, std::uint32_t space_id, void *object, const void *source,
         std::uint32_t *err) {
  if (!field_access::begin_write<T, F>(handle, space_id, object, err)) return;
  write<T, F>(handle, space_id, object, source, err);
  if (*err != 0) [[unlikely]]
    name_failure(handle, About(F));
  state_tracking::mark(handle, space_id, object,
                       state_tracking::write_place<T, F, messages::WriteSite::set>, err);
}

// The site whose messages set_value uses: the two writers of a flag field share one.
template <const Field &F>
inline constexpr messages::WriteSite set_value_site =
    F.kind == Kind::flags ? messages::WriteSite::set : messages::WriteSite::set_value;

// What set_value stores of a value, and where.
template <const Structure &T, const Field &F>
auto *stored_place(void *object) {
  if constexpr (F.kind == Kind::enumeration) {
    return &place_of<T, F>(object)->value;
  } else if constexpr (F.kind == Kind::flags) {
    return &place_of<T, F>(object)->flags;
  } else {
    return place_of<T, F>(object);
  }
}
template <const Structure &T, const Field &F, typename Value>
void put(void *object, Value value) {
  auto *place = stored_place<T, F>(object);
  if constexpr (is_primitive(F.kind)) {
    *place = Primitive<F.kind>::rule::stored(value);
  } else {
    *place = static_cast<std::remove_pointer_t<decltype(place)>>(value);
  }
}

// Whether set_value has nothing to do but to announce and to store.
template <const Structure &T, const Field &F, typename Value>
bool stores_quickly(const kelp_handle *handle, const void *object, Value value,
                    const std::uint32_t *err) {
  if (!field_access::opens_quickly<T>(handle, object, err)) return false;
  if constexpr (F.kind == Kind::enumeration) {
    return enumeration::takes_as_it_is<*F.enumeration>(place_of<T, F>(object), value);
  } else {
    return true;
  }
}

// set_value opens as set does and then runs the whole read skeleton, so that the last error is
// cleared and the variant tested a second time. None of these exits marks the state.
template <const Structure &T, const Field &F, typename Value>
[[gnu::noinline]] void set_value_by_steps(kelp_handle *handle, std::uint32_t space_id, void *object,
                                          Value value, std::uint32_t *err) {
  if (stores_quickly<T, F>(handle, object, value, err)) {  // but somebody hears of it
    kelp::quick::forget_error(handle);
    announce(handle, space_id, stored_place<T, F>(object), sizeof *stored_place<T, F>(object));
    return put<T, F>(object, value);
  }
  if (!field_access::begin_write<T, F>(handle, space_id, object, err)) return;
  if (*err != 0) return;
  storage_of<F.kind> *place = nullptr;
  if (field_access::begin_read<F>(handle, object, err) && object != nullptr) {
    if constexpr (is_primitive(F.kind)) {
      place = Primitive<F.kind>::get(handle, space_id, place_of<T, F>(object), err);
    } else {
      place = place_of<T, F>(object);
    }
  }
  if (*err != 0) return;
  if (place == nullptr) {
    return fail(handle, KELP_ERR_NOT_FOUND, err, About(F), "found a null object, expected one");
  }
  if constexpr (is_primitive(F.kind)) {
    Primitive<F.kind>::set_value(handle, space_id, place, value, err);
  } else if constexpr (F.kind == Kind::enumeration) {
    if (enumeration::takes<*F.enumeration>(handle, space_id, place, value, err)) {
      store(handle, space_id, &place->value, std::uint32_t{value});
    }
  } else {
    store(handle, space_id, &place->flags, static_cast<std::uint8_t>(value));
  }
  state_tracking::mark(handle, space_id, object,
                       state_tracking::write_place<T, F, set_value_site<F>>, err);
}

template <const Structure &T, const Field &F, typename Value>
void set_value(kelp_handle *handle, std::uint32_t space_id, void *object, Value value,
               std::uint32_t *err) {
  if (!stores_quickly<T, F>(handle, object, value, err) ||
      kelp::quick::unheard_writes(handle) == nullptr) [[unlikely]] {
    return set_value_by_steps<T, F>(handle, space_id, object, value, err);
  }
  kelp::quick::forget_error(handle);
  ++*kelp::quick::unheard_writes(handle);
  put<T, F>(object, value);
}

}  // namespace harbor::value_field
