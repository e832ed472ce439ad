// The types of LSAs: one row each, with number, scope and names. Decoder, rows and views speak of a
// type by the row's constant and know its scope and its names from the row alone.
//
// A new type is a row. What has a body of its own then names it where bodies differ:
// the decoder (decode_body), the rows (RowFiller::fill) and the view of rows (read_body).
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

namespace lsa_vocabulary {

enum class Scope : std::uint8_t { link, area, as };

// A row: constant, number, scope, short name as listings and filters have it, long name as the
// documents that define the type have it.
#define LSA_TYPES_V2(ROW)                                                        \
  ROW(router, 1, area, "Router", "router-LSA")                                   \
  ROW(network, 2, area, "Network", "network-LSA")                                \
  ROW(summary, 3, area, "Summary", "summary-LSA of a network")                   \
  ROW(asbr_summary, 4, area, "ASBR-Sum", "summary-LSA of an AS boundary router") \
  ROW(as_external, 5, as, "External", "AS-external-LSA")                         \
  ROW(group_membership, 6, area, "Group", "group-membership-LSA")                \
  ROW(nssa, 7, area, "NSSA", "NSSA-LSA")                                         \
  ROW(external_attributes, 8, as, "Ext-Attr", "external-attributes-LSA")         \
  ROW(opaque_link, 9, link, "Opaque-link", "opaque LSA of a link")               \
  ROW(opaque_area, 10, area, "Opaque-area", "opaque LSA of an area")             \
  ROW(opaque_as, 11, as, "Opaque-AS", "opaque LSA of the AS")

// Numbers in full, as they stand in headers: the function code with its scope bits.
#define LSA_TYPES_V3(ROW)                                                       \
  ROW(router, 0x2001, area, "Router", "router-LSA")                             \
  ROW(network, 0x2002, area, "Network", "network-LSA")                          \
  ROW(inter_area_prefix, 0x2003, area, "Inter-Prefix", "inter-area-prefix-LSA") \
  ROW(inter_area_router, 0x2004, area, "Inter-Router", "inter-area-router-LSA") \
  ROW(as_external, 0x4005, as, "AS-Ext", "AS-external-LSA")                     \
  ROW(nssa, 0x2007, area, "NSSA-Ext", "NSSA-LSA")                               \
  ROW(link, 0x0008, link, "Link", "link-LSA")                                   \
  ROW(intra_area_prefix, 0x2009, area, "Intra-Prefix", "intra-area-prefix-LSA") \
  ROW(grace, 0x000b, link, "Grace", "grace-LSA")

enum LsaTypeV2 : std::uint16_t {
#define CONSTANT(name, number, ...) lsa2_##name = number,
  LSA_TYPES_V2(CONSTANT)
#undef CONSTANT
};

enum LsaTypeV3 : std::uint16_t {
#define CONSTANT(name, number, ...) lsa3_##name = number,
  LSA_TYPES_V3(CONSTANT)
#undef CONSTANT
};

inline constexpr std::uint16_t lsa3_unknown_bit = 0x8000;  // U: flood it as if it were known
inline constexpr std::uint16_t lsa3_scope_mask = 0x6000;
inline constexpr std::uint16_t lsa3_function_mask = 0x1fff;

// OSPFv3 LSAs that hold TLVs and little or nothing else, by their function code, in any scope.
enum LsaFunctionV3 : std::uint16_t {
  lsa3_function_te = 10,
  lsa3_function_router_information = 12,
  lsa3_function_e_router = 33,
  lsa3_function_e_network = 34,
  lsa3_function_e_inter_area_prefix = 35,
  lsa3_function_e_inter_area_router = 36,
  lsa3_function_e_as_external = 37,
  lsa3_function_e_nssa = 39,
  lsa3_function_e_link = 40,
  lsa3_function_e_intra_area_prefix = 41,
};

struct LsaFunctionName {
  std::uint16_t number;
  const char *name;
};

inline constexpr LsaFunctionName lsa3_function_names[] = {
    {lsa3_function_te, "Intra-TE"},
    {lsa3_function_router_information, "Router-Info"},
    {lsa3_function_e_router, "E-Router"},
    {lsa3_function_e_network, "E-Network"},
    {lsa3_function_e_inter_area_prefix, "E-Inter-Prefix"},
    {lsa3_function_e_inter_area_router, "E-Inter-Router"},
    {lsa3_function_e_as_external, "E-AS-Ext"},
    {lsa3_function_e_nssa, "E-NSSA"},
    {lsa3_function_e_link, "E-Link"},
    {lsa3_function_e_intra_area_prefix, "E-Intra-Prefix"},
};

struct LsaType {
  std::uint8_t version;
  std::uint16_t number;
  Scope scope;
  const char *name;
  const char *long_name;
};

inline constexpr LsaType lsa_types[] = {
#define TYPE(name, number, scope, short_name, long_name) \
  {2, number, Scope::scope, short_name, long_name},
    LSA_TYPES_V2(TYPE)
#undef TYPE
#define TYPE(name, number, scope, short_name, long_name) \
  {3, number, Scope::scope, short_name, long_name},
        LSA_TYPES_V3(TYPE)
#undef TYPE
};
#undef LSA_TYPES_V2
#undef LSA_TYPES_V3

// The row of a type; null for one that has none.
constexpr const LsaType *find_type(std::uint32_t version, std::uint16_t number) {
  for (const LsaType &type : lsa_types) {
    if (type.version == version && type.number == number) return &type;
  }
  return nullptr;
}

// Short: "Router", "ASBR-Sum"; four hexadecimal digits for a type without a name.
inline std::string type_name(std::uint32_t version, std::uint16_t number) {
  if (const LsaType *type = find_type(version, number)) return type->name;
  for (const LsaFunctionName &each : lsa3_function_names) {
    if (version == 3 && each.number == (number & lsa3_function_mask)) return each.name;
  }
  char text[8];
  std::snprintf(text, sizeof text, "0x%04x", number);
  return text;
}

// The flooding scope of an LS type, none for OSPFv2 types that mean nothing and for the OSPFv3
// scope that is reserved. An OSPFv3 type says its scope itself, but one whose function code has no
// definition, without the U bit, is flooded on its link only.
constexpr std::optional<Scope> scope_of(std::uint32_t version, std::uint16_t number) {
  if (version == 2) {
    const LsaType *type = find_type(2, number);
    return type == nullptr ? std::nullopt : std::optional(type->scope);
  }
  constexpr Scope scopes[] = {Scope::link, Scope::area, Scope::as};
  const unsigned said = (number & lsa3_scope_mask) >> 13;
  if (said == 3) return std::nullopt;
  const unsigned function = number & lsa3_function_mask;
  const bool defined = (function >= 1 && function <= 13) || (function >= 33 && function <= 41);
  const bool kept_here = (number & lsa3_unknown_bit) == 0 && !defined;
  return kept_here ? Scope::link : scopes[said];
}

constexpr const char *scope_name(Scope scope) {
  constexpr const char *names[] = {"link", "area", "as"};
  return names[static_cast<std::size_t>(scope)];
}

}  // namespace lsa_vocabulary
