// The typed view of objects in memory: header, enumeration and flag objects, and the place of a
// field as its schema row gives it. Every store that the rules announce goes through announce().
#pragma once

#include <kelp/handle.h>
#include <kelp/primitive_layout.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <kelp/quick.hpp>
#include <utility>

#include "model/layout.hpp"

namespace harbor {

using model::Field;
using model::Kind;
using model::Structure;

struct EnumerationObject {
  kelp_type_record *tinfo;
  std::int8_t variant;
  std::int8_t created_variant;
  std::uint8_t obj_flags;
  std::uint32_t value;
};
static_assert(sizeof(EnumerationObject) == model::enumeration_size);
static_assert(offsetof(EnumerationObject, value) == model::enumeration_value_offset);

struct FlagObject {
  kelp_type_record *tinfo;
  std::int8_t variant;
  std::int8_t created_variant;
  std::uint8_t obj_flags;
  std::uint8_t flags;
};
static_assert(offsetof(FlagObject, flags) == model::flags_offset);

static_assert(sizeof(ip_address) == model::address_size);
static_assert(sizeof(kelp_vstring) == model::text_size);
static_assert(sizeof(kelp_reference) == model::reference_size);
static_assert(sizeof(kelp_oid) == model::oid_size);

// An array field as it lies behind its counter.
using ElementStore = void *;

inline std::uint8_t *bytes(void *object) { return static_cast<std::uint8_t *>(object); }
inline const std::uint8_t *bytes(const void *object) {
  return static_cast<const std::uint8_t *>(object);
}

inline kelp_object_header *header_of(void *object) {
  return static_cast<kelp_object_header *>(object);
}
inline const kelp_object_header *header_of(const void *object) {
  return static_cast<const kelp_object_header *>(object);
}

// Tells the store behind the handle which bytes are about to change.
inline void announce(kelp_handle *handle, std::uint32_t space_id, const void *address,
                     std::size_t length) {
  kelp::quick::write_notify(handle, address, length, space_id);
}

// Announces and stores one value.
template <typename Value>
inline void store(kelp_handle *handle, std::uint32_t space_id, Value *place, Value value) {
  announce(handle, space_id, place, sizeof(Value));
  *place = value;
}

// What a field of a kind is stored as.
template <Kind kind>
struct Storage {
  using type = void;
};
template <>
struct Storage<Kind::u8> {
  using type = std::uint8_t;
};
template <>
struct Storage<Kind::u16> {
  using type = std::uint16_t;
};
template <>
struct Storage<Kind::u32> {
  using type = std::uint32_t;
};
template <>
struct Storage<Kind::counter> {
  using type = std::uint32_t;
};
template <>
struct Storage<Kind::real> {
  using type = double;
};
template <>
struct Storage<Kind::boolean> {
  using type = kelp_boolean;
};
template <>
struct Storage<Kind::address> {
  using type = ip_address;
};
template <>
struct Storage<Kind::text> {
  using type = kelp_vstring;
};
template <>
struct Storage<Kind::enumeration> {
  using type = EnumerationObject;
};
template <>
struct Storage<Kind::flags> {
  using type = FlagObject;
};
template <>
struct Storage<Kind::reference> {
  using type = kelp_reference;
};
template <>
struct Storage<Kind::array> {
  using type = ElementStore;
};
template <>
struct Storage<Kind::arm> {
  using type = void *;
};
template <>
struct Storage<Kind::structure> {
  using type = std::uint8_t;
};
template <Kind kind>
using storage_of = typename Storage<kind>::type;

// The place of a field. The object is not tested: a null one gives an address that no rule may
// read or write.
template <const Structure &T, const Field &F>
inline storage_of<F.kind> *place_of(void *object) {
  return reinterpret_cast<storage_of<F.kind> *>(reinterpret_cast<std::uintptr_t>(object) +
                                                model::offset(T, F));
}
template <const Structure &T, const Field &F>
inline const storage_of<F.kind> *place_of(const void *object) {
  return reinterpret_cast<const storage_of<F.kind> *>(reinterpret_cast<std::uintptr_t>(object) +
                                                      model::offset(T, F));
}

// The third argument of kelp_get_instance_variant for a field: 1 where the value stands plainly.
constexpr std::int32_t plain_valued(Kind kind) {
  return kind == Kind::boolean || kind == Kind::enumeration || kind == Kind::flags ? 1 : 0;
}

// Calls act.template operator()<F>() for every field of T in order.
template <const Structure &T, typename Act>
constexpr void for_each_field(Act act) {
  [&]<std::size_t... I>(std::index_sequence<I...>) {
    (act.template operator()<*T.fields[I]>(), ...);
  }
  (std::make_index_sequence<T.fields.size()>());
}

// Calls act.template operator()<floor>() for the floors of T that the variant reaches, from 0 up,
// until one answers false; says whether all answered true.
template <const Structure &T, typename Act>
constexpr bool every_floor(std::int8_t variant, Act act) {
  return [&]<std::size_t... floor>(std::index_sequence<floor...>) {
    return ((variant < static_cast<std::int8_t>(floor) ||
             act.template operator()<static_cast<std::uint8_t>(floor)>()) &&
            ...);
  }
  (std::make_index_sequence<T.variants>());
}

// The same for all floors that the variant reaches, whatever they end in.
template <const Structure &T, typename Act>
constexpr void for_each_floor(std::int8_t variant, Act act) {
  every_floor<T>(variant, [&]<std::uint8_t floor>() {
    act.template operator()<floor>();
    return true;
  });
}

}  // namespace harbor
