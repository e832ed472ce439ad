// OSPFv2 LSAs (RFC 2328, 3101, 4915, 5250) as typed records.
//
// A LsaV2 has room for each kind of body side by side; only the one of its header's type is filled,
// the others are empty. It is meant to be decoded into again and again: its vectors keep their
// room, so that decoding allocates nothing once they have grown. Spans point into the octets given.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "lsa_vocabulary/fields.hpp"
#include "ospf_decode/cursor.hpp"
#include "ospf_decode/errors.hpp"
#include "ospf_decode/lsa_header.hpp"
#include "ospf_decode/tlv.hpp"

namespace ospf_decode {

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
