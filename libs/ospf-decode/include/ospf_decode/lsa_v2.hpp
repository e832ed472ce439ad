// OSPFv2 LSAs (RFC 2328, 3101, 4915, 5250) as typed records.
//
// A LsaV2 has room for each kind of body side by side; only the one of its header's type is filled,
// the others are empty. It is meant to be decoded into again and again: its vectors keep their
// room, so that decoding allocates nothing once they have grown. Spans point into the octets given.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "ospf_decode/cursor.hpp"
#include "ospf_decode/errors.hpp"
#include "ospf_decode/lsa_header.hpp"
#include "ospf_decode/tlv.hpp"

namespace ospf_decode {

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

enum OpaqueType : std::uint8_t {
  opaque_traffic_engineering = 1,
  opaque_grace = 3,
  opaque_router_information = 4,
  opaque_l1vpn = 5,
  opaque_inter_as_te = 6,
  opaque_extended_prefix = 7,
  opaque_extended_link = 8,
};

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

// Flags of a router LSA, the same bits in both versions.
enum RouterFlag : std::uint8_t {
  router_flag_b = 0x01,
  router_flag_e = 0x02,
  router_flag_v = 0x04,
  router_flag_w = 0x08,
  router_flag_nt = 0x10,
};

enum RouterLinkType : std::uint8_t {
  router_link_point_to_point = 1,
  router_link_transit = 2,
  router_link_stub = 3,  // OSPFv2 only
  router_link_virtual = 4,
};

// A metric of one topology; before RFC 4915 the number was a type of service.
struct TopologyMetric {
  std::uint8_t mt_id = 0;
  std::uint32_t metric = 0;
  bool operator==(const TopologyMetric &) const = default;
};

struct RouterLinkV2 {
  std::uint32_t link_id = 0;
  std::uint32_t link_data = 0;
  std::uint8_t type = 0;
  std::uint16_t first_metric = 0;  // into RouterBodyV2::metrics; topology 0 comes first
  std::uint16_t metric_count = 0;
};

struct RouterBodyV2 {
  std::uint8_t flags = 0;
  std::uint16_t link_count = 0;  // as the LSA says
  std::vector<RouterLinkV2> links;
  std::vector<TopologyMetric> metrics;

  std::span<const TopologyMetric> metrics_of(const RouterLinkV2 &link) const {
    return std::span(metrics).subspan(link.first_metric, link.metric_count);
  }
};

struct NetworkBodyV2 {
  std::uint32_t mask = 0;
  std::vector<std::uint32_t> attached_routers;
};

struct SummaryBodyV2 {
  std::uint32_t mask = 0;
  std::vector<TopologyMetric> metrics;
};

struct ExternalEntryV2 {
  std::uint8_t mt_id = 0;
  bool type_2 = false;  // the E bit
  std::uint32_t metric = 0;
  std::uint32_t forwarding_address = 0;
  std::uint32_t route_tag = 0;
  bool operator==(const ExternalEntryV2 &) const = default;
};

// AS-external and NSSA alike.
struct ExternalBodyV2 {
  std::uint32_t mask = 0;
  std::vector<ExternalEntryV2> entries;
};

struct LsaV2 {
  LsaHeader header;
  Bytes raw;                 // header and body
  bool checksum_ok = false;  // false: the body is not decoded, and the LSA is not to be loaded
  bool complete = false;     // the body's typed fields hold all of it
  RouterBodyV2 router;
  NetworkBodyV2 network;
  SummaryBodyV2 summary;
  ExternalBodyV2 external;
  TlvContent opaque;

  std::uint8_t opaque_type() const { return static_cast<std::uint8_t>(header.link_state_id >> 24); }
  std::uint32_t opaque_id() const { return header.link_state_id & 0xffffff; }
  bool is_opaque() const {
    return header.type >= lsa2_opaque_link && header.type <= lsa2_opaque_as;
  }
};

// `raw` is one LSA, header included, as long as its header says.
void decode_lsa_v2(Bytes raw, LsaV2 &out, const Report &report);

}  // namespace ospf_decode
