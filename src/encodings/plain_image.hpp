// The image of an object of which there is nothing to say, written in one pass without a call: the
// handle tracks no state, every object in it stands at a variant of its type and carries nothing
// but its fields, what a choice selects is there, and the buffer has room for all. Called by
// image::write before it goes by its rules. Promises: what is written is what the rules write, and
// where anything is out of the ordinary null is the answer, with nothing stored outside the buffer
// and nothing in it that the rules would not put there too; they then begin anew and know what to
// say.
#pragma once

#include "encodings/field_walk.hpp"
#include "encodings/light_encodings.hpp"
#include "types/array_field.hpp"
#include "types/type_record_access.hpp"

namespace harbor::plain_image {

// Whether the handle lets images be written here.
inline bool is_plain(const kelp_handle *handle, const std::uint32_t *err) {
  return *err == 0 && handle != nullptr && handle->sttr == nullptr &&
         kelp::quick::fixes_nothing(handle);
}

inline bool has_room(const std::uint8_t *at, const std::uint8_t *end, std::uint64_t size) {
  return size <= static_cast<std::uint64_t>(end - at);
}

// --- what always has the same length ------------------------------------------------------------

// Variant, flags and jump word.
inline constexpr std::uint32_t frame_length =
    KELP_WIRE_VARIANT_SIZE + KELP_WIRE_OBJ_FLAG_SIZE + KELP_WIRE_JUMP_SIZE;

// The bytes of such a field, 0 for any other.
template <const Field &F>
constexpr std::uint32_t fixed_length() {
  if constexpr (light_encodings::is_light(F.kind)) {
    return light_encodings::image_length<light_encodings::type_of<F>()>();
  } else if constexpr (F.kind == Kind::reference) {
    return KELP_WIRE_OID_SIZE;
  } else if constexpr (is_primitive(F.kind) && F.kind != Kind::text) {
    return Primitive<F.kind>::rule::kImageSize;
  } else {
    return 0;
  }
}

// The bytes of the row of such fields that begins with one of the floor.
template <const Structure &T, std::uint8_t floor, std::size_t first>
constexpr std::uint32_t row_length() {
  if constexpr (first == field_walk::places_of_floor<T, floor>.size()) {
    return 0;
  } else if constexpr (constexpr std::uint32_t length =
                           fixed_length<field_walk::field_at<T, floor, first>>();
                       length == 0) {
    return 0;
  } else {
    return length + row_length<T, floor, first + 1>();
  }
}

template <const Structure &T, std::uint8_t floor, std::size_t at>
constexpr bool begins_row() {
  if constexpr (at == 0) {
    return true;
  } else {
    return fixed_length<field_walk::field_at<T, floor, at - 1>>() == 0;
  }
}

template <const Structure &T, const Field &F>
[[gnu::always_inline]] inline bool put_fixed(std::uint8_t *at, const void *object) {
  const auto *place = place_of<T, F>(object);
  if constexpr (light_encodings::is_light(F.kind)) {
    if (!type_record_access::is_ordinary(place)) return false;
    light_encodings::encode<light_encodings::type_of<F>()>(place, at);
  } else if constexpr (F.kind == Kind::reference) {
    kelp::quick::encode_oid(place->oid, at);
  } else {
    Primitive<F.kind>::rule::encode(*place, at);
  }
  return true;
}

// --- the writer ---------------------------------------------------------------------------------
//
// Each function goes from `at` and gives where it came to, or null.

template <const Structure &T>
std::uint8_t *write(std::uint8_t *at, const std::uint8_t *end, const void *object);

template <Kind kind>
[[gnu::always_inline]] inline std::uint8_t *put_value(
    std::uint8_t *at, const std::uint8_t *end, const typename Primitive<kind>::value_type *value) {
  using Rule = typename Primitive<kind>::rule;
  if constexpr (kind == Kind::text) {
    const std::string_view text = Rule::bytes_of(value);
    const std::uint64_t length = Rule::image_size(text);
    if (!has_room(at, end, length)) return nullptr;
    Rule::encode(text, at);
    return at + length;
  } else {
    if (!has_room(at, end, Rule::kImageSize)) return nullptr;
    Rule::encode(*value, at);
    return at + Rule::kImageSize;
  }
}

template <const Structure &T, const Field &F>
std::uint8_t *put_array(std::uint8_t *at, const std::uint8_t *end, const void *object) {
  using Element = typename Primitive<F.held>::value_type;
  const std::uint32_t count = field_walk::count_of<T, F>(object);
  if (count == 0) return at;
  const auto *elements = field_walk::elements_of<T, F, Element>(object);
  if (elements == nullptr) return nullptr;
  if constexpr (F.held == Kind::u8) {
    if (!has_room(at, end, count)) return nullptr;
    std::memcpy(at, elements, count);
    return at + count;
  } else {
    for (std::uint32_t index = 0; index < count && at != nullptr; ++index) {
      at = put_value<F.held>(at, end, elements + index);
    }
    return at;
  }
}

template <const Structure &T, const Field &F>
[[gnu::always_inline]] inline std::uint8_t *put_field(std::uint8_t *at, const std::uint8_t *end,
                                                      const void *object) {
  if constexpr (F.kind == Kind::array) {
    return put_array<T, F>(at, end, object);
  } else if constexpr (F.kind == Kind::arm) {
    if (!field_walk::is_selected<T, F>(object)) return at;
    const void *held = *place_of<T, F>(object);
    if (held == nullptr) return nullptr;
    if constexpr (F.held == Kind::structure) {
      return write<*F.structure>(at, end, held);
    } else {
      using Value = typename Primitive<F.held>::value_type;
      return put_value<F.held>(at, end, static_cast<const Value *>(held));
    }
  } else if constexpr (F.kind == Kind::structure) {
    return write<*F.structure>(at, end, place_of<T, F>(object));
  } else {
    return put_value<F.kind>(at, end, place_of<T, F>(object));
  }
}

// A row of fields of fixed length has its room tested where it begins.
template <const Structure &T, std::uint8_t floor, std::size_t number>
[[gnu::always_inline]] inline bool put(std::uint8_t *&at, const std::uint8_t *end,
                                       const void *object) {
  constexpr const Field &field = field_walk::field_at<T, floor, number>;
  constexpr std::uint32_t length = fixed_length<field>();
  if constexpr (length == 0) {
    at = put_field<T, field>(at, end, object);
    return at != nullptr;
  } else {
    if (begins_row<T, floor, number>() && !has_room(at, end, row_length<T, floor, number>()))
      return false;
    if (!put_fixed<T, field>(at, object)) return false;
    at += length;
    return true;
  }
}

template <const Structure &T, std::uint8_t floor>
[[gnu::always_inline]] inline bool put_floor(std::uint8_t *&at, const std::uint8_t *end,
                                             const void *object) {
  return [&]<std::size_t... I>(std::index_sequence<I...>) __attribute__((always_inline)) {
    return (put<T, floor, I>(at, end, object) && ...);
  }
  (std::make_index_sequence<field_walk::places_of_floor<T, floor>.size()>());
}

template <const Structure &T>
[[gnu::noinline]] std::uint8_t *write(std::uint8_t *at, const std::uint8_t *end,
                                      const void *object) {
  if (object == nullptr || !has_room(at, end, frame_length) ||
      !type_record_access::is_ordinary(object)) {
    return nullptr;
  }
  const std::int8_t variant =
      type_record_access::capped_variant(header_of(object)->variant, T.variants);
  at[0] = static_cast<std::uint8_t>(variant);
  at[1] = 0;
  std::uint8_t *const jump = at + KELP_WIRE_VARIANT_SIZE + KELP_WIRE_OBJ_FLAG_SIZE;
  at += frame_length;
  if (!every_floor<T>(
          variant, [&]<std::uint8_t floor>() __attribute__((always_inline)) {
            return put_floor<T, floor>(at, end, object);
          })) {
    return nullptr;
  }
  kelp::quick::store_big_endian(jump, static_cast<std::uint32_t>(at - jump));
  return at;
}

}  // namespace harbor::plain_image
