// The numbers and bits that LSAs are made of beside their types: kinds of router links, options,
// flags, and the types of TLVs, with the names that people use for them.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lsa_vocabulary {

// A number and its name.
struct Named {
  std::uint32_t number;
  const char *name;
};

// The name of a number in such a list; null when it has none.
template <std::size_t n>
constexpr const char *name_of(const Named (&list)[n], std::uint32_t number) {
  for (const Named &each : list) {
    if (each.number == number) return each.name;
  }
  return nullptr;
}

// --- links of router LSAs ---

enum RouterLinkType : std::uint8_t {
  router_link_point_to_point = 1,
  router_link_transit = 2,
  router_link_stub = 3,  // OSPFv2 only
  router_link_virtual = 4,
};

inline constexpr Named router_link_types[] = {
    {router_link_point_to_point, "point-to-point"},
    {router_link_transit, "transit"},
    {router_link_stub, "stub"},
    {router_link_virtual, "virtual"},
};

// Flags of a router LSA, the same bits in both versions.
enum RouterFlag : std::uint8_t {
  router_flag_b = 0x01,
  router_flag_e = 0x02,
  router_flag_v = 0x04,
  router_flag_w = 0x08,
  router_flag_nt = 0x10,
};

// --- options ---

enum OptionV2 : std::uint8_t {
  option2_mt = 0x01,
  option2_e = 0x02,
  option2_mc = 0x04,
  option2_np = 0x08,  // N in a hello, P in a type-7 LSA
  option2_l = 0x10,   // LLS block (a hello's or a description's)
  option2_dc = 0x20,
  option2_o = 0x40,
  option2_dn = 0x80,
};

enum OptionV3 : std::uint32_t {
  option3_v6 = 0x000001,
  option3_e = 0x000002,
  option3_n = 0x000008,
  option3_r = 0x000010,
  option3_dc = 0x000020,
  option3_af = 0x000100,
  option3_l = 0x000200,   // LLS block
  option3_at = 0x000400,  // authentication trailer
};

enum ExternalFlagV3 : std::uint8_t {
  external3_t = 0x01,  // a route tag follows
  external3_f = 0x02,  // a forwarding address follows
  external3_e = 0x04,  // metric of type 2
};

enum PrefixOption : std::uint8_t {
  prefix_nu = 0x01,
  prefix_la = 0x02,
  prefix_mc = 0x04,
  prefix_p = 0x08,
  prefix_dn = 0x10,
};

inline constexpr Named prefix_options[] = {
    {prefix_nu, "NU"}, {prefix_la, "LA"}, {prefix_mc, "MC"}, {prefix_p, "P"}, {prefix_dn, "DN"},
};

// --- opaque LSAs and TLVs ---

enum OpaqueType : std::uint8_t {
  opaque_traffic_engineering = 1,
  opaque_grace = 3,
  opaque_router_information = 4,
  opaque_l1vpn = 5,
  opaque_inter_as_te = 6,
  opaque_extended_prefix = 7,
  opaque_extended_link = 8,
};

inline constexpr Named opaque_types[] = {
    {opaque_traffic_engineering, "traffic engineering"},
    {opaque_grace, "grace"},
    {opaque_router_information, "router information"},
    {opaque_l1vpn, "L1VPN"},
    {opaque_inter_as_te, "inter-AS traffic engineering"},
    {opaque_extended_prefix, "extended prefix"},
    {opaque_extended_link, "extended link"},
};

// TLVs of traffic engineering, and the sub-TLVs of its link TLV.
enum TeTlvType : std::uint16_t { te_tlv_router_address = 1, te_tlv_link = 2 };
enum TeSubTlvType : std::uint16_t {
  te_sub_link_type = 1,
  te_sub_link_id = 2,
  te_sub_local_addresses = 3,
  te_sub_remote_addresses = 4,
  te_sub_metric = 5,
  te_sub_max_bandwidth = 6,
  te_sub_max_reservable = 7,
  te_sub_unreserved = 8,
  te_sub_admin_group = 9,
};

// The link type of a TE link (sub-TLV 1).
enum TeLinkType : std::uint8_t { te_link_point_to_point = 1, te_link_multi_access = 2 };
inline constexpr Named te_link_types[] = {
    {te_link_point_to_point, "point-to-point"},
    {te_link_multi_access, "multi-access"},
};

enum RouterInformationTlvType : std::uint16_t {
  ri_tlv_informational = 1,
  ri_tlv_functional = 2,
  ri_tlv_hostname = 7,
};

enum GraceTlvType : std::uint16_t {
  grace_tlv_period = 1,
  grace_tlv_reason = 2,
  grace_tlv_address = 3,
};
inline constexpr Named grace_reasons[] = {
    {0, "unknown"},
    {1, "software restart"},
    {2, "software reload or upgrade"},
    {3, "switch to redundant control processor"},
};

}  // namespace lsa_vocabulary
