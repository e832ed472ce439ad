// The types of LSAs: one row each, with number, scope and names. Decoder, rows and views speak of a
// type by the constants here and know its scope and its names from the row alone.
//
// A new type is a constant and a row. What has a body of its own then names it where bodies differ:
// the decoder (decode_body), the rows (RowFiller::fill) and the view of rows (read_body).
#pragma once

#include <cstdint>
#include <optional>

namespace lsa_vocabulary {

enum class Scope : std::uint8_t { link, area, as };

enum LsaTypeV2 : std::uint16_t {
  lsa2_router = 1,
  lsa2_network = 2,
  lsa2_summary = 3,
  lsa2_asbr_summary = 4,
  lsa2_as_external = 5,
  lsa2_group_membership = 6,
  lsa2_nssa = 7,
  lsa2_external_attributes = 8,
  lsa2_opaque_link = 9,
  lsa2_opaque_area = 10,
  lsa2_opaque_as = 11,
};

// In full, as they stand in headers: the function code with its scope bits.
enum LsaTypeV3 : std::uint16_t {
  lsa3_router = 0x2001,
  lsa3_network = 0x2002,
  lsa3_inter_area_prefix = 0x2003,
  lsa3_inter_area_router = 0x2004,
  lsa3_as_external = 0x4005,
  lsa3_nssa = 0x2007,
  lsa3_link = 0x0008,
  lsa3_intra_area_prefix = 0x2009,
  lsa3_grace = 0x000b,
};

inline constexpr std::uint16_t lsa3_unknown_bit = 0x8000;  // U: flood it as if it were known
inline constexpr std::uint16_t lsa3_scope_mask = 0x6000;
inline constexpr std::uint16_t lsa3_function_mask = 0x1fff;
inline constexpr std::uint16_t lsa3_function_router_information = 12;  // in any scope

struct LsaType {
  std::uint8_t version;
  std::uint16_t number;
  Scope scope;
  const char *name;       // short, as listings and filters have it
  const char *long_name;  // as the documents that define the type have it
};

inline constexpr LsaType lsa_types[] = {
    {2, lsa2_router, Scope::area, "Router", "router-LSA"},
    {2, lsa2_network, Scope::area, "Network", "network-LSA"},
    {2, lsa2_summary, Scope::area, "Summary", "summary-LSA of a network"},
    {2, lsa2_asbr_summary, Scope::area, "ASBR-Sum", "summary-LSA of an AS boundary router"},
    {2, lsa2_as_external, Scope::as, "External", "AS-external-LSA"},
    {2, lsa2_group_membership, Scope::area, "Group", "group-membership-LSA"},
    {2, lsa2_nssa, Scope::area, "NSSA", "NSSA-LSA"},
    {2, lsa2_external_attributes, Scope::as, "Ext-Attr", "external-attributes-LSA"},
    {2, lsa2_opaque_link, Scope::link, "Opaque-link", "opaque LSA of a link"},
    {2, lsa2_opaque_area, Scope::area, "Opaque-area", "opaque LSA of an area"},
    {2, lsa2_opaque_as, Scope::as, "Opaque-AS", "opaque LSA of the AS"},
    {3, lsa3_router, Scope::area, "Router", "router-LSA"},
    {3, lsa3_network, Scope::area, "Network", "network-LSA"},
    {3, lsa3_inter_area_prefix, Scope::area, "Inter-Prefix", "inter-area-prefix-LSA"},
    {3, lsa3_inter_area_router, Scope::area, "Inter-Router", "inter-area-router-LSA"},
    {3, lsa3_as_external, Scope::as, "AS-Ext", "AS-external-LSA"},
    {3, lsa3_nssa, Scope::area, "NSSA-Ext", "NSSA-LSA"},
    {3, lsa3_link, Scope::link, "Link", "link-LSA"},
    {3, lsa3_intra_area_prefix, Scope::area, "Intra-Prefix", "intra-area-prefix-LSA"},
    {3, lsa3_grace, Scope::link, "Grace", "grace-LSA"},
};

// The row of a type; null for one that has none.
constexpr const LsaType *find_type(std::uint32_t version, std::uint16_t number) {
  for (const LsaType &type : lsa_types) {
    if (type.version == version && type.number == number) return &type;
  }
  return nullptr;
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
