// The vocabulary of the schema: what an enumeration, a flag set, a structure, a field and a table
// are. The rows themselves stand in the other headers of this folder; families of operations, the
// emitter and the tests read them. Everything here is constexpr data: no behaviour, no platform.
//
// A structure lists its fields by reference, so that each field is a named constant of its own and
// shows by that name in a debugger and in compiler messages.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace harbor::model {

struct Structure;

// How a field is held and which operations it gets.
enum class Kind : std::uint8_t {
  u8,
  u16,
  u32,
  real,         // double
  boolean,      // kelp_boolean
  address,      // ip_address
  text,         // kelp_vstring
  enumeration,  // embedded enumeration object
  flags,        // embedded flag object
  structure,    // embedded structure
  counter,      // u32, element count of the array that follows it
  array,        // pointer to a separately allocated element store
  reference,    // by-reference field: a table, by OID
  arm,          // alternative of a choice: pointer to a separately allocated object
};

// The tables, in the order in which their families and their trace messages are laid down.
enum class TableId : std::uint8_t {
  ospfv2_unknown_sub_tlv,
  ospfv2_unknown_tlv,
  ospfv2_external,
  ospfv2_topology,
  ospfv2_link,
  ospfv3_link,
  ospfv3_prefix_list,
  ospfv3_ia_prefix_list,
  multi_topology,
  link_scope_lsa,
  area_scope_lsa,
  area_scope_lsas,
  link_scope_lsas,
  ospf_static_neighbor,
  ospf_neighbor,
  ospf_interface,
  ospf_area,
  ospf_instance,
  ospf,
  ospf_instance_rev1,
  ospf_rev1,
  none,
};

struct Member {
  std::string_view name;
  std::uint32_t value;
  std::string_view meaning;
  std::uint8_t since = 0;  // the lowest variant that knows the value or the bit
};

// No type of any edition has more variants than that.
inline constexpr std::size_t most_variants = 3;

// One number for each variant of a type; what is behind its variants is 0.
using Limits = std::array<std::uint32_t, most_variants>;

// limits[v] is how many members an object of variant v knows, and so the first number that it
// refuses. Where has_internal_range is set the named values start at 1 while the wire and the
// limits count from 0.
struct Enumeration {
  std::string_view name;
  std::uint8_t variants;
  Limits limits;
  std::span<const Member> members;
  std::string_view meaning;
  bool has_internal_range = false;
  std::string_view identity = {};  // the MD5 that identifies the type, where it is stated

  constexpr Enumeration counted_from_one() const {
    Enumeration shifted = *this;
    shifted.has_internal_range = true;
    return shifted;
  }
  constexpr Enumeration identified_by(std::string_view md5) const {
    Enumeration identified = *this;
    identified.identity = md5;
    return identified;
  }
};

// Bit n of the byte is members[n]; limits as an enumeration's.
struct FlagSet {
  std::string_view name;
  std::uint8_t variants;
  Limits limits;
  std::span<const Member> members;
  std::string_view meaning;
};

struct Field {
  std::string_view name;
  Kind kind;
  std::string_view meaning;
  std::uint8_t since = 0;                    // the floor: the lowest variant that holds the field
  Kind held = Kind::u8;                      // array: its element; arm: what the pointer points at
  const Structure *structure = nullptr;      // structure, or arm that holds one
  const Enumeration *enumeration = nullptr;  // enumeration
  const FlagSet *flag_set = nullptr;         // flags
  TableId table = TableId::none;             // reference
  std::uint32_t selector = 0;                // arm: the selector value that selects it

  constexpr Field from_variant(std::uint8_t variant) const {
    Field later = *this;
    later.since = variant;
    return later;
  }
};

// valid_bounds: the thresholds of is_valid: valid_bounds[v] is the first field number that needs a
// variant above v.
struct Structure {
  std::string_view name;
  std::uint8_t variants;
  Limits valid_bounds;
  std::span<const Field *const> fields;
  std::string_view meaning;

  constexpr bool is_choice() const {
    for (const Field *field : fields) {
      if (field->kind == Kind::arm) return true;
    }
    return false;
  }
};

// How a table's key is found: an integer field of the record's object, a field with a type of its
// own, or a key object beside the data object.
enum class Shape : std::uint8_t { inline_key, typed_key, composite_key };

struct Table {
  std::string_view name;  // without the tbl_ prefix
  TableId id;
  const Structure *record;
  const Field *key;                // inline and typed shapes
  const Structure *key_structure;  // composite shape
  std::string_view luid;           // 32 hexadecimal digits
  std::string_view record_md5;
  std::string_view meaning;

  constexpr Shape shape() const {
    if (key_structure != nullptr) return Shape::composite_key;
    return key->kind == Kind::u16 || key->kind == Kind::u32 ? Shape::inline_key : Shape::typed_key;
  }
};

// --- makers of rows -------------------------------------------------------------------------

consteval Field scalar(std::string_view name, Kind kind, std::string_view meaning) {
  return {.name = name, .kind = kind, .meaning = meaning};
}
consteval Field chosen(std::string_view name, const Enumeration &type, std::string_view meaning) {
  return {.name = name, .kind = Kind::enumeration, .meaning = meaning, .enumeration = &type};
}
consteval Field flagged(std::string_view name, const FlagSet &type, std::string_view meaning) {
  return {.name = name, .kind = Kind::flags, .meaning = meaning, .flag_set = &type};
}
consteval Field embedded(std::string_view name, const Structure &type, std::string_view meaning) {
  return {.name = name, .kind = Kind::structure, .meaning = meaning, .structure = &type};
}
consteval Field counter(std::string_view name, std::string_view meaning) {
  return {.name = name, .kind = Kind::counter, .meaning = meaning};
}
// An array stands directly behind its counter.
consteval Field array(std::string_view name, Kind element, std::string_view meaning) {
  return {.name = name, .kind = Kind::array, .meaning = meaning, .held = element};
}
consteval Field reference(std::string_view name, TableId table, std::string_view meaning) {
  return {.name = name, .kind = Kind::reference, .meaning = meaning, .table = table};
}
consteval Field arm(std::string_view name, std::uint32_t selector, Kind held,
                    std::string_view meaning) {
  return {.name = name, .kind = Kind::arm, .meaning = meaning, .held = held, .selector = selector};
}
consteval Field arm(std::string_view name, std::uint32_t selector, const Structure &held,
                    std::string_view meaning) {
  return {.name = name,
          .kind = Kind::arm,
          .meaning = meaning,
          .held = Kind::structure,
          .structure = &held,
          .selector = selector};
}

template <const Field &...F>
inline constexpr std::array<const Field *, sizeof...(F)> field_list{&F...};

}  // namespace harbor::model
