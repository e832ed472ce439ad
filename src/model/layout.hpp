// Where everything lies in an object, computed from the rows: the fields behind the header, and the
// state bytes behind the fields. Sizes follow from the rows alone; model/sizes.hpp holds them
// against the published table.
#pragma once

#include "model/lists.hpp"

namespace harbor::model {

// The header is a pointer and three bytes; a structure's fields follow at their own alignment, an
// enumeration's value at the next 32-bit boundary, a flag set's byte at once.
inline constexpr std::uint32_t header_length = 11;
inline constexpr std::uint32_t flags_offset = 11;
inline constexpr std::uint32_t enumeration_value_offset = 12;
inline constexpr std::uint32_t enumeration_size = 16;
inline constexpr std::uint32_t flag_set_used_length = 16;
inline constexpr std::uint32_t flag_set_size = 24;
inline constexpr std::uint32_t address_size = 48;
inline constexpr std::uint32_t text_size = 16;
inline constexpr std::uint32_t oid_size = 40;
inline constexpr std::uint32_t reference_size = 8 + oid_size;

constexpr std::uint32_t round_up(std::uint32_t value, std::uint32_t step) {
  return (value + step - 1) / step * step;
}

constexpr std::uint32_t object_size(const Structure &type);

constexpr std::uint32_t width(Kind kind) {
  switch (kind) {
    case Kind::u8:
      return 1;
    case Kind::u16:
      return 2;
    case Kind::u32:
    case Kind::boolean:
    case Kind::counter:
      return 4;
    case Kind::real:
    case Kind::array:
    case Kind::arm:
      return 8;
    case Kind::address:
      return address_size;
    case Kind::text:
      return text_size;
    case Kind::enumeration:
      return enumeration_size;
    case Kind::flags:
      return flag_set_size;
    case Kind::reference:
      return reference_size;
    case Kind::structure:
      break;
  }
  return 0;
}

constexpr std::uint32_t width(const Field &field) {
  return field.kind == Kind::structure ? object_size(*field.structure) : width(field.kind);
}

constexpr std::uint32_t alignment(Kind kind) {
  switch (kind) {
    case Kind::u8:
      return 1;
    case Kind::u16:
      return 2;
    case Kind::u32:
    case Kind::boolean:
    case Kind::counter:
      return 4;
    default:
      return 8;
  }
}

// Offset of a field in its object.
constexpr std::uint32_t offset(const Structure &type, const Field &wanted) {
  std::uint32_t at = header_length;
  for (const Field *field : type.fields) {
    at = round_up(at, alignment(field->kind));
    if (field == &wanted) return at;
    at += width(*field);
  }
  return 0;
}

// The counter of an array: the field directly before it.
constexpr const Field &counter_of(const Structure &type, const Field &array) {
  const Field *before = &array;
  for (const Field *field : type.fields) {
    if (field == &array) break;
    before = field;
  }
  return *before;
}

// The field of a choice whose value says which arms count.
constexpr const Field &selector_of(const Structure &choice) {
  const Field *const *at = choice.fields.data();
  while ((*at)->kind != Kind::enumeration) ++at;
  return **at;
}

// Bytes that the fields of a variant reach, header included.
constexpr std::uint32_t used_length(const Structure &type, int variant) {
  std::uint32_t at = header_length;
  for (const Field *field : type.fields) {
    if (field->since > variant) continue;
    at = round_up(at, alignment(field->kind)) + width(*field);
  }
  return at;
}

constexpr std::uint32_t manifest_size(const Structure &type) {
  return round_up(used_length(type, type.variants - 1), 8);
}

// The allocated size without state tracking: the same for all variants, so that an object never
// moves when its variant changes.
constexpr std::uint32_t object_size(const Structure &type) {
  const std::uint32_t size = manifest_size(type);
  return size + (size <= 64 ? 8 : 16);
}

constexpr std::uint32_t alloc_slop(const Structure &type, int variant) {
  return object_size(type) - used_length(type, variant);
}

// --- state bytes ------------------------------------------------------------------------------
//
// One byte for a field, in field order; behind an array's byte an 8-aligned pointer to one byte per
// element; behind an embedded structure's byte that structure's own area. A counter has none.

constexpr bool has_state(const Field &field) { return field.kind != Kind::counter; }

constexpr std::uint32_t state_alignment(const Structure &type) {
  for (const Field *field : type.fields) {
    if (field->kind == Kind::array) return 8;
    if (field->kind == Kind::structure && state_alignment(*field->structure) == 8) return 8;
  }
  return 1;
}

constexpr std::uint32_t state_size(const Structure &type);

// Where the part that lies behind a field's own state byte begins, for a byte at place.
constexpr std::uint32_t behind_state_byte(const Field &field, std::uint32_t place) {
  if (field.kind == Kind::array) return round_up(place + 1, 8);
  if (field.kind == Kind::structure) return round_up(place + 1, state_alignment(*field.structure));
  return place + 1;
}

constexpr std::uint32_t end_of_state(const Field &field, std::uint32_t place) {
  const std::uint32_t behind = behind_state_byte(field, place);
  if (field.kind == Kind::array) return behind + 8;
  if (field.kind == Kind::structure) return behind + state_size(*field.structure);
  return behind;
}

// Place of a field's state byte in its structure's area.
constexpr std::uint32_t state_place(const Structure &type, const Field &wanted) {
  std::uint32_t at = 0;
  for (const Field *field : type.fields) {
    if (!has_state(*field)) continue;
    if (field == &wanted) return at;
    at = end_of_state(*field, at);
  }
  return 0;
}

// Place of an array's element state pointer, or of an embedded structure's block.
constexpr std::uint32_t state_block_place(const Structure &type, const Field &field) {
  return behind_state_byte(field, state_place(type, field));
}

constexpr std::uint32_t state_size(const Structure &type) {
  std::uint32_t at = 0;
  for (const Field *field : type.fields) {
    if (has_state(*field)) at = end_of_state(*field, at);
  }
  return round_up(at, state_alignment(type));
}

constexpr std::uint32_t tracked_size(const Structure &type) {
  return object_size(type) + state_size(type);
}

}  // namespace harbor::model
