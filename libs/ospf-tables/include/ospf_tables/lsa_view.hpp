// LSAs of the tables as plain values: one LsaView for a row of either kind, its body a value of the
// one type that its LS type calls for. Whoever lists, prints or draws LSAs reads them through this
// and never through getters of its own. The rows are not changed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "lsa_vocabulary/fields.hpp"
#include "lsa_vocabulary/types.hpp"
#include "ospf_tables/session.hpp"
#include "ospf_tables/table_ops.hpp"

namespace ospf_tables {

using namespace lsa_vocabulary;

// Names of the bits that are set.
using BitNames = std::vector<const char *>;

struct TopologyMetricView {
  std::uint32_t mt_id = 0;
  std::uint32_t metric = 0;
};

struct RouterLinkViewV2 {
  std::uint8_t type = 0;
  std::uint32_t link_id = 0;
  std::uint32_t link_data = 0;
  std::vector<TopologyMetricView> metrics;

  std::uint32_t metric() const;  // of the base topology, 0 without one
};

struct RouterLinkViewV3 {
  std::uint8_t type = 0;
  std::uint16_t metric = 0;
  std::uint32_t interface_id = 0;
  std::uint32_t neighbor_interface_id = 0;
  std::uint32_t neighbor_router_id = 0;
};

struct PrefixView {
  std::string prefix;
  std::string options;
  std::optional<std::uint32_t> metric{};  // of intra-area prefixes
};

struct ExternalEntryViewV2 {
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

// What the rows of each type keep, with what the octets say beyond the fields of the model. The
// last one stands for LS types without typed fields.
struct RouterViewV2 {
  BitNames flags;
  std::uint16_t num_of_links = 0;
  std::vector<RouterLinkViewV2> links;
};
struct NetworkViewV2 {
  std::string mask;
  std::vector<std::uint32_t> attached_routers;
};
struct SummaryViewV2 {  // of networks and of AS boundary routers
  std::string mask;
  std::vector<TopologyMetricView> metrics;
};
struct ExternalViewV2 {  // AS-external and NSSA
  std::string mask;
  std::vector<ExternalEntryViewV2> entries;
};
struct OpaqueViewV2 {
  std::uint8_t opaque_type = 0;
  std::uint32_t opaque_id = 0;
  std::string router_address;
  TeLinkView te_link;
  std::vector<TlvView> tlvs;
  std::vector<SubTlvView> sub_tlvs;
};
struct RouterViewV3 {
  BitNames flags;
  BitNames options;
  std::vector<RouterLinkViewV3> links;
};
struct NetworkViewV3 {
  BitNames options;
  std::vector<std::uint32_t> attached_routers;
};
struct InterAreaPrefixView {
  std::uint32_t metric = 0;
  PrefixView prefix;
};
struct InterAreaRouterView {
  BitNames options;
  std::uint32_t metric = 0;
  std::uint32_t destination_router_id = 0;
};
struct ExternalViewV3 {  // AS-external and NSSA
  std::uint32_t metric = 0;
  bool type_2 = false;
  std::uint16_t referenced_ls_type = 0;
  PrefixView prefix;
  std::string forwarding_address;
  std::optional<std::uint32_t> route_tag;
  std::uint32_t referenced_link_state_id = 0;
};
struct LinkViewV3 {
  std::uint8_t priority = 0;
  BitNames options;
  std::string link_local_address;
  std::uint32_t num_of_prefixes = 0;
  std::vector<PrefixView> prefixes;
};
struct IntraAreaPrefixView {
  std::uint16_t referenced_ls_type = 0;
  std::uint32_t referenced_link_state_id = 0;
  std::string referenced_adv_router;
  std::uint16_t num_of_prefixes = 0;
  std::vector<PrefixView> prefixes;
};
struct OtherView {
  std::vector<TlvView> tlvs;
};

using LsaBodyView =
    std::variant<OtherView, RouterViewV2, NetworkViewV2, SummaryViewV2, ExternalViewV2,
                 OpaqueViewV2, RouterViewV3, NetworkViewV3, InterAreaPrefixView,
                 InterAreaRouterView, ExternalViewV3, LinkViewV3, IntraAreaPrefixView>;

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
  LsaBodyView body;

  // Types without a scope stand among those of their area.
  Scope scope() const { return scope_of(version, type).value_or(Scope::area); }
};

// Reads one row. Throws LibraryFailure.
LsaView read_lsa(Session &session, tbl_link_scope_lsa_record *record);
LsaView read_lsa(Session &session, tbl_area_scope_lsa_record *record);
// The same without options, octets and body, for who looks at many.
LsaView read_lsa_front(Session &session, tbl_link_scope_lsa_record *record);
LsaView read_lsa_front(Session &session, tbl_area_scope_lsa_record *record);

// Rows below an LSA's.
RouterLinkViewV2 read_row(Session &session, tbl_ospfv2_link_record *record);
TopologyMetricView read_row(Session &session, tbl_ospfv2_topology_record *record);
ExternalEntryViewV2 read_row(Session &session, tbl_ospfv2_external_record *record);
TlvView read_row(Session &session, tbl_ospfv2_unknown_tlv_record *record);
SubTlvView read_row(Session &session, tbl_ospfv2_unknown_sub_tlv_record *record);
RouterLinkViewV3 read_row(Session &session, tbl_ospfv3_link_record *record);
PrefixView read_row(Session &session, tbl_ospfv3_prefix_list_record *record);
PrefixView read_row(Session &session, tbl_ospfv3_ia_prefix_list_record *record);

}  // namespace ospf_tables
