// The runtime's primitive types by field kind: one name for each operation of the seven families,
// so that a rule can be written once for all kinds. An operation that a primitive lacks is absent
// here too. form is how a value is written inline as a text that needs no escape.
#pragma once

#include <kelp/xml_elements.h>

#include <kelp/quick_text.hpp>
#include <string_view>

#include "module/object.hpp"

namespace harbor {

template <Kind kind>
struct Primitive;

#define HARBOR_PRIMITIVE_COMMON(family)                \
  static constexpr std::string_view name = #family;    \
  static constexpr auto set = &family##_set;           \
  static constexpr auto hash = &family##_hash;         \
  static constexpr auto print = &family##_print;       \
  static constexpr auto to_xml = &family##_to_xml;     \
  static constexpr auto from_xml = &family##_from_xml; \
  static constexpr auto read_element = &family##_read_element

#define HARBOR_PRIMITIVE_CALLED(family)              \
  static constexpr auto get = &family##_get;         \
  static constexpr auto len = &family##_len;         \
  static constexpr auto marshal = &family##_marshal; \
  static constexpr auto unmarshal = &family##_unmarshal

// The functions of a number, each done inline where that is allowed and there is nothing to say.
#define HARBOR_PRIMITIVE_VALUE(family, its_rule)                                                   \
  using rule = kelp::quick::its_rule;                                                              \
  using form = rule;                                                                               \
  static value_type *get(kelp_handle *handle, std::uint32_t space_id, const value_type *address,   \
                         std::uint32_t *err) {                                                     \
    if (kelp::quick::of(handle) != nullptr && *err == 0) return const_cast<value_type *>(address); \
    return family##_get(handle, space_id, address, err);                                           \
  }                                                                                                \
  static value_type get_value(kelp_handle *handle, std::uint32_t space_id,                         \
                              const value_type *address, std::uint32_t *err) {                     \
    if (kelp::quick::of(handle) != nullptr && *err == 0 && address != nullptr) return *address;    \
    return family##_get_value(handle, space_id, address, err);                                     \
  }                                                                                                \
  static void set_value(kelp_handle *handle, std::uint32_t space_id, value_type *address,          \
                        value_type value, std::uint32_t *err) {                                    \
    if (kelp::quick::of(handle) == nullptr ||                                                      \
        !kelp::quick::put_value<rule>(handle, space_id, address, value, err)) {                    \
      family##_set_value(handle, space_id, address, value, err);                                   \
    }                                                                                              \
  }                                                                                                \
  static std::uint32_t len(kelp_handle *handle, std::uint32_t space_id,                            \
                           const value_type *address) {                                            \
    return kelp::quick::of(handle) != nullptr ? rule::kImageSize                                   \
                                              : family##_len(handle, space_id, address);           \
  }                                                                                                \
  static std::uint32_t marshal(kelp_handle *handle, std::uint32_t space_id, void *buffer,          \
                               const value_type *address, std::int32_t length,                     \
                               std::uint32_t *err) {                                               \
    if (kelp::quick::of(handle) != nullptr &&                                                      \
        kelp::quick::put_image<rule>(buffer, address, length, err)) {                              \
      return rule::kImageSize;                                                                     \
    }                                                                                              \
    return family##_marshal(handle, space_id, buffer, address, length, err);                       \
  }                                                                                                \
  static std::uint32_t unmarshal(kelp_handle *handle, std::uint32_t space_id, const void *buffer,  \
                                 value_type *address, std::int32_t length, std::uint32_t reuse,    \
                                 std::uint32_t *err) {                                             \
    if (kelp::quick::of(handle) != nullptr &&                                                      \
        kelp::quick::take_image<rule>(handle, space_id, buffer, address, length, err)) {           \
      return rule::kImageSize;                                                                     \
    }                                                                                              \
    return family##_unmarshal(handle, space_id, buffer, address, length, reuse, err);              \
  }

#define HARBOR_PRIMITIVE_OBJECT(family)                                          \
  static constexpr auto compare = &family##_compare;                             \
  static constexpr auto initialize = &family##_initialize;                       \
  static constexpr auto set_instance_embedded = &family##_set_instance_embedded; \
  static constexpr kelp_type_record *record = &_##family##_type_info_internal

template <>
struct Primitive<Kind::u8> {
  using value_type = std::uint8_t;
  HARBOR_PRIMITIVE_COMMON(u_int8);
  HARBOR_PRIMITIVE_VALUE(u_int8, UnsignedRule<std::uint8_t>)
  static constexpr auto create = &u_int8_create;
  static constexpr auto read_row = &u_int8_read_row;
  static constexpr auto destroy = &u_int8_destroy;
  static constexpr auto size = &u_int8_sizeof;
};
template <>
struct Primitive<Kind::u16> {
  using value_type = std::uint16_t;
  HARBOR_PRIMITIVE_COMMON(u_int16);
  HARBOR_PRIMITIVE_VALUE(u_int16, UnsignedRule<std::uint16_t>)
};
template <>
struct Primitive<Kind::u32> {
  using value_type = std::uint32_t;
  HARBOR_PRIMITIVE_COMMON(u_int32);
  HARBOR_PRIMITIVE_VALUE(u_int32, UnsignedRule<std::uint32_t>)
  static constexpr auto create = &u_int32_create;
  static constexpr auto read_row = &u_int32_read_row;
  static constexpr auto destroy = &u_int32_destroy;
  static constexpr auto destroy_internal = &u_int32_destroy_internal;
  static constexpr auto size = &u_int32_sizeof;
};
template <>
struct Primitive<Kind::counter> : Primitive<Kind::u32> {};
template <>
struct Primitive<Kind::real> {
  using value_type = double;
  HARBOR_PRIMITIVE_COMMON(double);
  HARBOR_PRIMITIVE_VALUE(double, DoubleRule)
};
template <>
struct Primitive<Kind::boolean> {
  using value_type = kelp_boolean;
  HARBOR_PRIMITIVE_COMMON(kelp_boolean);
  HARBOR_PRIMITIVE_VALUE(kelp_boolean, BooleanRule)
  HARBOR_PRIMITIVE_OBJECT(kelp_boolean);
};
template <>
struct Primitive<Kind::address> {
  using value_type = ip_address;
  using rule = kelp::quick::AddressRule;
  using form = kelp::quick::AddressForm;
  HARBOR_PRIMITIVE_COMMON(ip_address);
  HARBOR_PRIMITIVE_CALLED(ip_address);
  HARBOR_PRIMITIVE_OBJECT(ip_address);
  static constexpr auto create = &ip_address_create;
  static constexpr auto destroy = &ip_address_destroy;
  static constexpr auto destroy_internal = &ip_address_destroy_internal;
  static constexpr auto size = &ip_address_sizeof;
  static constexpr auto get_oid_count = &ip_address_get_oid_count;
  static constexpr auto get_object_references = &ip_address_get_object_references;
};
template <>
struct Primitive<Kind::text> {
  using value_type = kelp_vstring;
  using rule = kelp::quick::TextRule;
  HARBOR_PRIMITIVE_COMMON(kelp_vstring);
  HARBOR_PRIMITIVE_CALLED(kelp_vstring);
  HARBOR_PRIMITIVE_OBJECT(kelp_vstring);
  static constexpr auto create = &kelp_vstring_create;
  static constexpr auto destroy_internal = &kelp_vstring_destroy_internal;
  static constexpr auto get_oid_count = &kelp_vstring_get_oid_count;
  static constexpr auto get_object_references = &kelp_vstring_get_object_references;
};

#undef HARBOR_PRIMITIVE_COMMON
#undef HARBOR_PRIMITIVE_CALLED
#undef HARBOR_PRIMITIVE_VALUE
#undef HARBOR_PRIMITIVE_OBJECT

constexpr bool is_primitive(Kind kind) {
  switch (kind) {
    case Kind::u8:
    case Kind::u16:
    case Kind::u32:
    case Kind::counter:
    case Kind::real:
    case Kind::boolean:
    case Kind::address:
    case Kind::text:
      return true;
    default:
      return false;
  }
}

}  // namespace harbor
