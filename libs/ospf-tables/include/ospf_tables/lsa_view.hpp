// LSAs of the tables as plain values: one LsaView for a row of either kind, its body a value of the
// one type that its LS type calls for. Whoever lists, prints or draws LSAs reads them through this
// and never through getters of its own. The rows are not changed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "ospf_tables/session.hpp"
#include "ospf_tables/table_ops.hpp"

namespace ospf_tables {

enum class Scope { link, area, as };

// LS types in full, as they stand in headers.
enum LsTypeV2 : std::uint16_t {
  ls2_router = 1,
  ls2_network = 2,
  ls2_summary = 3,
  ls2_asbr_summary = 4,
  ls2_external = 5,
  ls2_nssa = 7,
  ls2_opaque_link = 9,
  ls2_opaque_area = 10,
  ls2_opaque_as = 11,
};
enum LsTypeV3 : std::uint16_t {
  ls3_router = 0x2001,
  ls3_network = 0x2002,
  ls3_inter_area_prefix = 0x2003,
  ls3_inter_area_router = 0x2004,
  ls3_external = 0x4005,
  ls3_nssa = 0x2007,
  ls3_link = 0x0008,
  ls3_intra_area_prefix = 0x2009,
};
enum RouterLinkType : std::uint8_t {
  link_point_to_point = 1,
  link_transit = 2,
  link_stub = 3,
  link_virtual = 4,
};

Scope scope_of(std::uint32_t version, std::uint16_t ls_type);

// Names of the bits that are set.
using BitNames = std::vector<const char *>;

struct TopologyMetric {
  std::uint32_t mt_id = 0;
  std::uint16_t metric = 0;
};

struct RouterLinkV2 {
  std::uint8_t type = 0;
  std::uint32_t link_id = 0;
  std::uint32_t link_data = 0;
  std::vector<TopologyMetric> metrics;

  std::uint16_t metric() const;  // of the base topology, 0 without one
};

struct RouterLinkV3 {
  std::uint8_t type = 0;
  std::uint16_t metric = 0;
  std::uint32_t interface_id = 0;
  std::uint32_t neighbor_interface_id = 0;
  std::uint32_t neighbor_router_id = 0;
};

struct PrefixView {
  std::string prefix;
  std::string options;
};

struct ExternalEntryV2 {
  std::uint32_t mt_id = 0;
  std::uint32_t metric = 0;
  std::optional<bool> type_2;  // empty when the octets do not tell
  std::string forwarding_address;
  std::uint32_t route_tag = 0;
};

struct SubTlvView {
  std::uint16_t type = 0;
  std::uint16_t length = 0;
  std::vector<std::uint8_t> value;
};

struct TeLinkView {
  std::uint8_t link_type = 0;
  std::uint32_t link_id = 0;
  std::vector<std::string> local_addresses;
  std::vector<std::string> remote_addresses;
  std::uint32_t te_metric = 0;
  double max_bandwidth = 0;
  double max_reservable_bandwidth = 0;
  double unreserved_bandwidth = 0;
  std::uint32_t admin_group = 0;

  bool is_set() const { return link_type != 0 || link_id != 0; }
};

struct TlvView {
  std::uint16_t type = 0;
  std::uint16_t length = 0;
  std::vector<std::uint8_t> value;
  std::string router_address;
  TeLinkView te_link;
  std::vector<SubTlvView> sub_tlvs;
};

// Bodies. The last one stands for LS types without typed fields.
struct RouterBodyV2 {
  BitNames flags;
  std::uint16_t num_of_links = 0;
  std::vector<RouterLinkV2> links;
};
struct NetworkBodyV2 {
  std::string mask;
  std::vector<std::uint32_t> attached_routers;
};
struct SummaryBodyV2 {  // of networks and of AS boundary routers
  std::string mask;
  std::vector<TopologyMetric> metrics;
};
struct ExternalBodyV2 {  // AS-external and NSSA
  std::string mask;
  std::vector<ExternalEntryV2> entries;
};
struct OpaqueBodyV2 {
  std::uint8_t opaque_type = 0;
  std::uint32_t opaque_id = 0;
  std::string router_address;
  TeLinkView te_link;
  std::vector<TlvView> tlvs;
  std::vector<SubTlvView> sub_tlvs;
};
struct RouterBodyV3 {
  BitNames flags;
  BitNames options;
  std::vector<RouterLinkV3> links;
};
struct NetworkBodyV3 {
  BitNames options;
  std::vector<std::uint32_t> attached_routers;
};
struct InterAreaPrefixBody {
  std::uint32_t metric = 0;
  PrefixView prefix;
};
struct InterAreaRouterBody {
  BitNames options;
  std::uint32_t metric = 0;
  std::uint32_t destination_router_id = 0;
};
struct ExternalBodyV3 {  // AS-external and NSSA
  std::uint32_t metric = 0;
  bool type_2 = false;
  std::uint16_t referenced_ls_type = 0;
  PrefixView prefix;
  std::string forwarding_address;
  std::uint32_t route_tag = 0;
  std::uint32_t referenced_link_state_id = 0;
};
struct LinkBodyV3 {
  std::uint8_t priority = 0;
  BitNames options;
  std::string link_local_address;
  std::uint32_t num_of_prefixes = 0;
  std::vector<PrefixView> prefixes;
};
struct IntraAreaPrefixBody {
  std::uint16_t referenced_ls_type = 0;
  std::uint32_t referenced_link_state_id = 0;
  std::string referenced_adv_router;
  std::uint16_t num_of_prefixes = 0;
  std::vector<PrefixView> prefixes;
};
struct OtherBody {
  std::vector<TlvView> tlvs;
};

using LsaBody = std::variant<OtherBody, RouterBodyV2, NetworkBodyV2, SummaryBodyV2, ExternalBodyV2,
                             OpaqueBodyV2, RouterBodyV3, NetworkBodyV3, InterAreaPrefixBody,
                             InterAreaRouterBody, ExternalBodyV3, LinkBodyV3, IntraAreaPrefixBody>;

struct LsaView {
  std::uint32_t version = 0;  // of OSPF: 2 or 3
  std::uint16_t type = 0;
  std::uint32_t link_state_id = 0;
  std::uint32_t adv_router = 0;
  std::uint16_t age = 0;
  std::string sequence;  // 0x and eight digits; else as the producer wrote it
  std::string checksum;  // 0x and four digits; else as the producer wrote it
  std::uint16_t length = 0;
  BitNames options;  // of the header: OSPFv2 only, as OSPFv3 has them in bodies
  bool decoded_completed = false;
  std::vector<std::uint8_t> raw_data;
  LsaBody body;

  Scope scope() const { return scope_of(version, type); }
};

// Reads one row. Throws LibraryFailure.
LsaView read_lsa(Session &session, tbl_link_scope_lsa_record *record);
LsaView read_lsa(Session &session, tbl_area_scope_lsa_record *record);

// Rows below an LSA's.
RouterLinkV2 read_row(Session &session, tbl_ospfv2_link_record *record);
TopologyMetric read_row(Session &session, tbl_ospfv2_topology_record *record);
ExternalEntryV2 read_row(Session &session, tbl_ospfv2_external_record *record);
TlvView read_row(Session &session, tbl_ospfv2_unknown_tlv_record *record);
SubTlvView read_row(Session &session, tbl_ospfv2_unknown_sub_tlv_record *record);
RouterLinkV3 read_row(Session &session, tbl_ospfv3_link_record *record);
PrefixView read_row(Session &session, tbl_ospfv3_prefix_list_record *record);
PrefixView read_row(Session &session, tbl_ospfv3_ia_prefix_list_record *record);

}  // namespace ospf_tables
