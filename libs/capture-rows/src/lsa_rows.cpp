#include "capture_rows/lsa_rows.hpp"

#include <algorithm>
#include <limits>
#include <string_view>

#include "ospf_tables/rows.hpp"

namespace capture_rows {

using namespace ospf_tables;

namespace {

using namespace ospf_decode;

// The two kinds of row under common names.
template <typename Ops>
struct LsaRow;

#define LSA_ROW(row, v2_links_field)                                             \
  template <>                                                                    \
  struct LsaRow<row##_ops> {                                                     \
    static constexpr auto set_id = &row##_key_lsa_id_set_value;                  \
    static constexpr auto set_router = &row##_key_adv_router_set;                \
    static constexpr auto set_completed = &row##_decoded_completed_set_value;    \
    static constexpr auto set_raw_data = &row##_raw_data_set_mem;                \
    static constexpr auto v2 = &row##_ospfv2_lsa_val_get;                        \
    static constexpr auto v3 = &row##_ospfv3_lsa_val_get;                        \
    static constexpr auto set_v2_links = &row##_##v2_links_field##_set_by_ref;   \
    static constexpr auto set_summary = &row##_summary_set_by_ref;               \
    static constexpr auto set_external = &row##_external_set_by_ref;             \
    static constexpr auto set_v3_links = &row##_ospfv3_links_set_by_ref;         \
    static constexpr auto set_prefix_list = &row##_prefix_list_set_by_ref;       \
    static constexpr auto set_ia_prefix_list = &row##_ia_prefix_list_set_by_ref; \
  };

LSA_ROW(area_scope_lsa, links)
LSA_ROW(link_scope_lsa, ospfv2_links)

#undef LSA_ROW

std::uint32_t count_of(std::size_t size) { return static_cast<std::uint32_t>(size); }

// Fills the row of one LSA. Its setters leave failures in the error word, which is looked at when
// tables are made and in the end.
template <typename Ops>
class RowFiller {
 public:
  RowFiller(Session &session, const LsaHeader &header, Bytes raw)
      : session_(session), record_(session) {
    NewKey<Ops> new_key(session_);
    typename Ops::Key *key = new_key;
    record_.put_key(new_key);
    set(Row::set_id, key, header.link_state_id);
    set_address(session_, key, Row::set_router, header.advertising_router);
    NewObject<Ops> new_object(session_);
    object_ = record_.put(new_object);
    set(Row::set_raw_data, object_, raw.data(), count_of(raw.size()));
  }

  void fill(const LsaV2 &lsa);
  void fill(const LsaV3 &lsa, bool holds_ipv4);

  typename Ops::Record *insert_into(typename Ops::Table *table, bool complete) {
    set(Row::set_completed, object_, complete && kept_ ? 1u : 0u);
    session_.check(Ops::name);
    return record_.insert_into(table);
  }

 private:
  using Row = LsaRow<Ops>;

  auto *at(auto get, auto *object) {
    return session_.checked(get(session_.handle(), space, object, session_.err()), Ops::name);
  }
  void set(auto setter, auto *object, auto... values) {
    setter(session_.handle(), space, object, values..., session_.err());
  }
  void flag(auto setter, auto *object, bool on) {
    if (on) set(setter, object, 1u);
  }
  void text(auto setter, auto *object, std::string_view value) {
    set_text(session_, object, setter, value);
  }
  // As many digits as a number of this width has.
  template <typename Number>
  void hex_text(auto setter, auto *object, Number value) {
    constexpr int bits = 8 * sizeof value;
    char digits[2 + bits / 4] = {'0', 'x'};
    for (int at = 0; at < bits / 4; ++at) {
      digits[2 + at] = "0123456789abcdef"[value >> (bits - 4 - 4 * at) & 15];
    }
    text(setter, object, {digits, sizeof digits});
  }
  void address(auto setter, auto *object, std::uint32_t ipv4) {
    set_address(session_, object, setter, ipv4);
  }
  void address(auto setter, auto *object, const Ipv6Bytes &bytes, bool holds_ipv4) {
    ip_address value = holds_ipv4 ? ip_address_make_ipv4(IpAddress{bytes, false}.as_v4())
                                  : ip_address_make_ipv6(bytes.data(), 0);
    set(setter, object, &value);
  }
  // A number into 16 bits.
  std::uint16_t narrow(std::uint32_t value) {
    constexpr std::uint32_t highest = std::numeric_limits<std::uint16_t>::max();
    kept_ &= value <= highest;
    return static_cast<std::uint16_t>(std::min(value, highest));
  }
  template <typename ChildOps>
  void insert(NewRecord<ChildOps> &record, typename ChildOps::Table *table) {
    kept_ &= record.insert_unless_taken(table);
  }

  void fill_header(ospfv2_header *header, const LsaV2 &lsa);
  void fill_options(ospfv2_header *header, std::uint8_t options);
  void fill_router_flags(ospfv2_lsa_body *body, std::uint8_t flags);
  void fill_links(const RouterBodyV2 &router);
  void add_topology(tbl_ospfv2_topology_table *table, const TopologyMetric &metric);
  void add_external(tbl_ospfv2_external_table *table, const ExternalEntryV2 &entry);
  void fill_tlvs(const LsaV2 &lsa);
  void add_tlv(tbl_ospfv2_unknown_tlv_table *&table, const Tlv &tlv, const TeLink *link);
  void fill_te_link(ospfv2_link_tlv *field, const TeLink &link);
  template <typename Object>
  void add_unknown_sub_tlvs(Object *object, const TeLink &link,
                            void (*set_table)(kelp_handle *, std::uint32_t, Object *,
                                              tbl_ospfv2_unknown_sub_tlv_table *, std::uint32_t *));

  void fill_header(ospfv3_header *header, const LsaHeader &from);
  void fill_options(ospfv3_lsa_options *field, std::uint32_t options);
  static std::uint32_t option_flags(std::uint32_t options);
  void fill_router(ospfv3_lsa_body *body, const RouterBodyV3 &router);
  void fill_network(ospfv3_network *field, const NetworkBodyV3 &network);
  void fill_inter_area_prefix(ospfv3_inter_area_prefix *field, const InterAreaPrefixBody &inter,
                              bool holds_ipv4);
  void fill_inter_area_router(ospfv3_inter_area_router *field, const InterAreaRouterBody &router);
  void fill_link(ospfv3_link_data *field, const LinkBodyV3 &link, bool holds_ipv4);
  void fill_intra_area_prefix(ospfv3_intra_area_prefix *field, const IntraAreaPrefixBody &intra,
                              bool holds_ipv4);
  void fill_external(ospfv3_lsa_external *field, const ExternalBodyV3 &external, bool holds_ipv4);
  template <typename ChildOps>
  void fill_prefixes(void (*set_table)(kelp_handle *, std::uint32_t, typename Ops::Object *,
                                       typename ChildOps::Table *, std::uint32_t *),
                     const std::vector<PrefixV3> &prefixes, bool holds_ipv4);

  Session &session_;
  NewRecord<Ops> record_;
  typename Ops::Object *object_ = nullptr;
  bool kept_ = true;  // whether all that was decoded and has a place got it
};

// --- OSPFv2 --------------------------------------------------------------------------------------

// The octet has no Upward, R or AF bit; of its own the model lacks O, DN and the one of LLS.
template <typename Ops>
void RowFiller<Ops>::fill_options(ospfv2_header *header, std::uint8_t options) {
  lsa_options *field = at(ospfv2_header_options_get, header);
  const bool dc = (options & option2_dc) != 0;
  const bool p = (options & option2_np) != 0;
  const bool mc = (options & option2_mc) != 0;
  const bool e = (options & option2_e) != 0;
  const bool mt = (options & option2_mt) != 0;
  flag(lsa_options_DC_set_value, field, dc);
  flag(lsa_options_P_set_value, field, p);
  flag(lsa_options_MC_set_value, field, mc);
  flag(lsa_options_E_set_value, field, e);
  flag(lsa_options_MT_set_value, field, mt);
  const unsigned flags = unsigned{dc} << LSA_FLAG_OPTIONS_DC | unsigned{p} << LSA_FLAG_OPTIONS_P |
                         unsigned{mc} << LSA_FLAG_OPTIONS_MC | unsigned{e} << LSA_FLAG_OPTIONS_E |
                         unsigned{mt} << LSA_FLAG_OPTIONS_MT;
  set(ospfv2_header_flag_options_set_value, header, flags);
}

template <typename Ops>
void RowFiller<Ops>::fill_header(ospfv2_header *header, const LsaV2 &lsa) {
  const LsaHeader &from = lsa.header;
  fill_options(header, from.options);
  address(ospfv2_header_lsa_id_set, header, from.link_state_id);
  if (lsa.is_opaque()) {
    set(ospfv2_header_opaque_type_set_value, header, lsa.opaque_type());
    set(ospfv2_header_opaque_id_set_value, header, lsa.opaque_id());
  }
  set(ospfv2_header_age_set_value, header, from.age);
  set(ospfv2_header_type_set_value, header, from.type);
  set(ospfv2_header_adv_router_set_value, header, from.advertising_router);
  hex_text(ospfv2_header_seq_num_set, header, from.sequence);
  hex_text(ospfv2_header_checksum_set, header, from.checksum);
  set(ospfv2_header_length_set_value, header, from.length);
}

template <typename Ops>
void RowFiller<Ops>::fill_router_flags(ospfv2_lsa_body *body, std::uint8_t flags) {
  ospfv2_lsa_body_flags *field = at(ospfv2_lsa_body_lsa_flags_get, body);
  const bool v = (flags & router_flag_v) != 0;
  const bool e = (flags & router_flag_e) != 0;
  const bool b = (flags & router_flag_b) != 0;
  flag(ospfv2_lsa_body_flags_V_set_value, field, v);
  flag(ospfv2_lsa_body_flags_E_set_value, field, e);
  flag(ospfv2_lsa_body_flags_B_set_value, field, b);
  set(ospfv2_lsa_body_body_flag_options_set_value, body,
      unsigned{v} << OSPV2_LSA_BODY_FLAG_OPTIONS_V | unsigned{e} << OSPV2_LSA_BODY_FLAG_OPTIONS_E |
          unsigned{b} << OSPV2_LSA_BODY_FLAG_OPTIONS_B);
}

template <typename Ops>
void RowFiller<Ops>::add_topology(tbl_ospfv2_topology_table *table, const TopologyMetric &metric) {
  NewRecord<ospfv2_topology_ops> record(session_);
  NewObject<ospfv2_topology_ops> new_object(session_);
  ospfv2_topology *object = record.put(new_object);
  set(ospfv2_topology_mt_id_set_value, object, metric.mt_id);
  set(ospfv2_topology_metric_set_value, object, narrow(metric.metric));
  insert(record, table);
}

template <typename Ops>
void RowFiller<Ops>::fill_links(const RouterBodyV2 &router) {
  if (router.links.empty()) return;
  auto *table = add_table<ospfv2_link_ops>(session_, object_, Row::set_v2_links);
  for (const RouterLinkV2 &link : router.links) {
    NewRecord<ospfv2_link_ops> record(session_);
    NewKey<ospfv2_link_ops> new_key(session_);
    ospfv2_link_key *key = new_key;
    record.put_key(new_key);
    set(ospfv2_link_key_link_id_set_value, key, link.link_id);
    set(ospfv2_link_key_link_data_set_value, key, link.link_data);
    NewObject<ospfv2_link_ops> new_object(session_);
    ospfv2_link *object = record.put(new_object);
    set(ospfv2_link_type_set_value, object, link.type);
    auto *topologies =
        add_table<ospfv2_topology_ops>(session_, object, ospfv2_link_topology_set_by_ref);
    for (const TopologyMetric &metric : router.metrics_of(link)) add_topology(topologies, metric);
    insert(record, table);
  }
}

template <typename Ops>
void RowFiller<Ops>::add_external(tbl_ospfv2_external_table *table, const ExternalEntryV2 &entry) {
  NewRecord<ospfv2_external_ops> record(session_);
  NewObject<ospfv2_external_ops> new_object(session_);
  ospfv2_external *object = record.put(new_object);
  set(ospfv2_external_mt_id_set_value, object, entry.mt_id);
  set(ospfv2_external_metric_set_value, object, entry.metric);
  address(ospfv2_external_forwarding_address_set, object, entry.forwarding_address);
  set(ospfv2_external_external_route_tag_set_value, object, entry.route_tag);
  insert(record, table);
}

// --- TLVs of opaque LSAs -------------------------------------------------------------------------

// Whether the typed fields say all of a sub-TLV.
bool is_held(const TeLink &link, const Tlv &sub) {
  if (!sub.typed) return false;
  if (sub.type != te_sub_unreserved) return true;
  const auto &all = link.unreserved_bandwidth;
  return std::adjacent_find(all.begin(), all.end(), std::not_equal_to<>()) == all.end();
}

template <typename Ops>
void RowFiller<Ops>::fill_te_link(ospfv2_link_tlv *field, const TeLink &link) {
  set(ospfv2_link_tlv_link_type_set_value, field, link.link_type);
  set(ospfv2_link_tlv_link_id_set_value, field, link.link_id);
  const auto put_addresses = [&](auto setter, const std::vector<std::uint32_t> &list) {
    for (std::uint32_t index = 0; index < list.size(); ++index) {
      ip_address value = ip_address_make_ipv4(list[index]);
      set(setter, field, index, &value);
    }
  };
  put_addresses(ospfv2_link_tlv_local_if_ipv4_addr_set, link.local_addresses);
  put_addresses(ospfv2_link_tlv_local_remote_ipv4_addr_set, link.remote_addresses);
  set(ospfv2_link_tlv_te_metric_set_value, field, link.metric);
  set(ospfv2_link_tlv_max_bandwidth_set_value, field, double{link.max_bandwidth});
  set(ospfv2_link_tlv_max_reservable_bandwidth_set_value, field,
      double{link.max_reservable_bandwidth});
  set(ospfv2_link_tlv_unreserved_bandwidth_set_value, field, double{link.unreserved_bandwidth[0]});
  set(ospfv2_link_tlv_admin_group_set_value, field, link.admin_group);
  // A typed sub-TLV that comes again replaces the first, but addresses add up.
  std::uint32_t seen = 0;
  for (const Tlv &sub : link.sub_tlvs) {
    if (!sub.typed || sub.type == te_sub_local_addresses || sub.type == te_sub_remote_addresses)
      continue;
    kept_ &= (seen >> sub.type & 1) == 0;
    seen |= 1u << sub.type;
  }
}

template <typename Ops>
template <typename Object>
void RowFiller<Ops>::add_unknown_sub_tlvs(Object *object, const TeLink &link,
                                          void (*set_table)(kelp_handle *, std::uint32_t, Object *,
                                                            tbl_ospfv2_unknown_sub_tlv_table *,
                                                            std::uint32_t *)) {
  tbl_ospfv2_unknown_sub_tlv_table *table = nullptr;
  for (const Tlv &sub : link.sub_tlvs) {
    if (is_held(link, sub)) continue;
    if (table == nullptr) {
      table = add_table<ospfv2_unknown_sub_tlv_ops>(session_, object, set_table);
    }
    NewRecord<ospfv2_unknown_sub_tlv_ops> record(session_);
    NewObject<ospfv2_unknown_sub_tlv_ops> new_object(session_);
    ospfv2_unknown_sub_tlv *row = record.put(new_object);
    set(ospfv2_unknown_sub_tlv_type_set_value, row, sub.type);
    set(ospfv2_unknown_sub_tlv_length_set_value, row, sub.length);
    set(ospfv2_unknown_sub_tlv_value_set_mem, row, sub.value.data(), count_of(sub.value.size()));
    insert(record, table);
  }
}

template <typename Ops>
void RowFiller<Ops>::add_tlv(tbl_ospfv2_unknown_tlv_table *&table, const Tlv &tlv,
                             const TeLink *link) {
  if constexpr (std::is_same_v<Ops, link_scope_lsa_ops>) {
    if (table == nullptr) {
      table = add_table<ospfv2_unknown_tlv_ops>(session_, object_,
                                                link_scope_lsa_unknown_tlv_set_by_ref);
    }
    NewRecord<ospfv2_unknown_tlv_ops> record(session_);
    NewObject<ospfv2_unknown_tlv_ops> new_object(session_);
    ospfv2_unknown_tlv *row = record.put(new_object);
    set(ospfv2_unknown_tlv_type_set_value, row, tlv.type);
    set(ospfv2_unknown_tlv_length_set_value, row, tlv.length);
    set(ospfv2_unknown_tlv_value_set_mem, row, tlv.value.data(), count_of(tlv.value.size()));
    if (link != nullptr) {
      fill_te_link(at(ospfv2_unknown_tlv_tlv_get, row), *link);
      add_unknown_sub_tlvs(row, *link, ospfv2_unknown_tlv_unknown_sub_tlv_set_by_ref);
    } else if (tlv.typed) {
      address(ospfv2_unknown_tlv_router_address_set, row, Cursor(tlv.value).u32());
    }
    insert(record, table);
  }
}

template <typename Ops>
void RowFiller<Ops>::fill_tlvs(const LsaV2 &lsa) {
  if constexpr (std::is_same_v<Ops, link_scope_lsa_ops>) {
    const bool is_te = lsa.opaque_type() == opaque_traffic_engineering;
    tbl_ospfv2_unknown_tlv_table *unknown = nullptr;
    bool has_router_address = false;
    std::size_t links = 0;
    for (Tlv tlv : lsa.opaque.tlvs) {
      if (is_te && tlv.type == te_tlv_link) {
        const TeLink &link = lsa.opaque.te_links()[links++];
        const bool is_first = links == 1;
        if (is_first) {
          fill_te_link(at(link_scope_lsa_tlv_get, object_), link);
          add_unknown_sub_tlvs(object_, link, link_scope_lsa_unknown_sub_tlv_set_by_ref);
        }
        if (!is_first || !tlv.typed) add_tlv(unknown, tlv, is_first ? nullptr : &link);
      } else if (is_te && tlv.type == te_tlv_router_address && tlv.typed && !has_router_address) {
        has_router_address = true;
        address(link_scope_lsa_router_address_set, object_, Cursor(tlv.value).u32());
      } else {
        tlv.typed &= is_te;
        add_tlv(unknown, tlv, nullptr);
      }
    }
  } else {
    // The area-scope row has no fields for what an opaque LSA says.
    kept_ = false;
  }
}

template <typename Ops>
void RowFiller<Ops>::fill(const LsaV2 &lsa) {
  if constexpr (std::is_same_v<Ops, link_scope_lsa_ops>) {
    set(link_scope_lsa_version_set_value, object_, 2u);
  }
  ospfv2_lsa *whole = at(Row::v2, object_);
  fill_header(at(ospfv2_lsa_header_get, whole), lsa);
  ospfv2_lsa_body *body = at(ospfv2_lsa_lsa_body_get, whole);
  switch (static_cast<LsaTypeV2>(lsa.header.type)) {
    case lsa2_router:
      fill_router_flags(body, lsa.router.flags);
      set(ospfv2_lsa_body_num_of_links_set_value, body, lsa.router.link_count);
      fill_links(lsa.router);
      break;
    case lsa2_network: {
      ospfv2_network *network = at(ospfv2_lsa_body_network_get, body);
      address(ospfv2_network_network_mask_set, network, lsa.network.mask);
      set(ospfv2_network_attached_router_set_mem, network, lsa.network.attached_routers.data(),
          count_of(lsa.network.attached_routers.size()));
      break;
    }
    case lsa2_summary:
    case lsa2_asbr_summary: {
      address(ospfv2_lsa_body_summary_mask_set, body, lsa.summary.mask);
      if (lsa.summary.metrics.empty()) break;
      auto *table = add_table<ospfv2_topology_ops>(session_, object_, Row::set_summary);
      for (const TopologyMetric &metric : lsa.summary.metrics) add_topology(table, metric);
      break;
    }
    case lsa2_as_external:
    case lsa2_nssa: {
      address(ospfv2_lsa_body_external_mask_set, body, lsa.external.mask);
      if (lsa.external.entries.empty()) break;
      auto *table = add_table<ospfv2_external_ops>(session_, object_, Row::set_external);
      for (const ExternalEntryV2 &entry : lsa.external.entries) add_external(table, entry);
      break;
    }
    case lsa2_opaque_link:
    case lsa2_opaque_area:
    case lsa2_opaque_as:
      fill_tlvs(lsa);
      break;
    case lsa2_group_membership:
    case lsa2_external_attributes:
      break;  // not decoded: the raw octets hold it
  }
}

// --- OSPFv3 --------------------------------------------------------------------------------------

template <typename Ops>
void RowFiller<Ops>::fill_header(ospfv3_header *header, const LsaHeader &from) {
  address(ospfv3_header_lsa_id_set, header, from.link_state_id);
  lsa_header *field = at(ospfv3_header_lsa_header_val_get, header);
  set(lsa_header_age_set_value, field, from.age);
  set(lsa_header_type_set_value, field, from.type);
  set(lsa_header_adv_router_set_value, field, from.advertising_router);
  hex_text(lsa_header_seq_num_set, field, from.sequence);
  hex_text(lsa_header_checksum_set, field, from.checksum);
  set(lsa_header_length_set_value, field, from.length);
}

template <typename Ops>
std::uint32_t RowFiller<Ops>::option_flags(std::uint32_t options) {
  const auto bit = [&](std::uint32_t option, unsigned place) {
    return (options & option) != 0 ? 1u << place : 0u;
  };
  return bit(option3_dc, OSPFV3_LSA_FLAG_DC) | bit(option3_r, OSPFV3_LSA_FLAG_R) |
         bit(option3_n, OSPFV3_LSA_FLAG_N) | bit(option3_e, OSPFV3_LSA_FLAG_E) |
         bit(option3_v6, OSPFV3_LSA_FLAG_V6) | bit(option3_af, OSPFV3_LSA_FLAG_AF);
}

template <typename Ops>
void RowFiller<Ops>::fill_options(ospfv3_lsa_options *field, std::uint32_t options) {
  flag(ospfv3_lsa_options_DC_set_value, field, (options & option3_dc) != 0);
  flag(ospfv3_lsa_options_R_set_value, field, (options & option3_r) != 0);
  flag(ospfv3_lsa_options_N_set_value, field, (options & option3_n) != 0);
  flag(ospfv3_lsa_options_E_set_value, field, (options & option3_e) != 0);
  flag(ospfv3_lsa_options_V6_set_value, field, (options & option3_v6) != 0);
  flag(ospfv3_lsa_options_AF_set_value, field, (options & option3_af) != 0);
}

template <typename Ops>
void RowFiller<Ops>::fill_router(ospfv3_lsa_body *body, const RouterBodyV3 &router) {
  ospfv3_lsa_body_flags *field = at(ospfv3_lsa_body_lsa_flags_get, body);
  const bool v = (router.flags & router_flag_v) != 0;
  const bool e = (router.flags & router_flag_e) != 0;
  const bool b = (router.flags & router_flag_b) != 0;
  const bool nt = (router.flags & router_flag_nt) != 0;
  flag(ospfv3_lsa_body_flags_V_set_value, field, v);
  flag(ospfv3_lsa_body_flags_E_set_value, field, e);
  flag(ospfv3_lsa_body_flags_B_set_value, field, b);
  flag(ospfv3_lsa_body_flags_Nt_set_value, field, nt);
  set(ospfv3_lsa_body_lsa_body_flags_set_value, body,
      unsigned{v} << OSPFV3_LSA_BODY_FLAG_OPTIONS_V |
          unsigned{e} << OSPFV3_LSA_BODY_FLAG_OPTIONS_E |
          unsigned{b} << OSPFV3_LSA_BODY_FLAG_OPTIONS_B |
          unsigned{nt} << OSPFV3_LSA_BODY_FLAG_OPTIONS_NT);
  fill_options(at(ospfv3_lsa_body_lsa_body_options_get, body), router.options);
  set(ospfv3_lsa_body_lsa_flag_options_set_value, body, option_flags(router.options));
  if (router.links.empty()) return;
  auto *table = add_table<ospfv3_link_ops>(session_, object_, Row::set_v3_links);
  for (const RouterLinkV3 &link : router.links) {
    NewRecord<ospfv3_link_ops> record(session_);
    NewKey<ospfv3_link_ops> new_key(session_);
    ospfv3_link_key *key = new_key;
    record.put_key(new_key);
    set(ospfv3_link_key_interface_id_set_value, key, link.interface_id);
    set(ospfv3_link_key_neighbor_interface_id_set_value, key, link.neighbor_interface_id);
    set(ospfv3_link_key_neighbor_router_id_set_value, key, link.neighbor_router_id);
    NewObject<ospfv3_link_ops> new_object(session_);
    ospfv3_link *object = record.put(new_object);
    set(ospfv3_link_type_set_value, object, link.type);
    set(ospfv3_link_metric_set_value, object, link.metric);
    insert(record, table);
  }
}

template <typename Ops>
void RowFiller<Ops>::fill_external(ospfv3_lsa_external *field, const ExternalBodyV3 &external,
                                   bool holds_ipv4) {
  set(ospfv3_lsa_external_metric_set_value, field, external.metric);
  flag(ospfv3_lsa_external_flags_E_set_value, at(ospfv3_lsa_external_flags_val_get, field),
       (external.flags & external3_e) != 0);
  set(ospfv3_lsa_external_referenced_ls_type_set_value, field, external.referenced_ls_type);
  text(ospfv3_lsa_external_external_prefix_set, field, prefix_text(external.prefix, holds_ipv4));
  hex_text(ospfv3_lsa_external_external_prefix_options_set, field, external.prefix.options);
  if ((external.flags & external3_f) != 0) {
    address(ospfv3_lsa_external_forwarding_address_set, field, external.forwarding_address,
            holds_ipv4);
  }
  set(ospfv3_lsa_external_external_route_tag_set_value, field, external.route_tag);
  set(ospfv3_lsa_external_referenced_link_state_id_set_value, field,
      external.referenced_link_state_id);
}

template <typename Ops>
template <typename ChildOps>
void RowFiller<Ops>::fill_prefixes(void (*set_table)(kelp_handle *, std::uint32_t,
                                                     typename Ops::Object *,
                                                     typename ChildOps::Table *, std::uint32_t *),
                                   const std::vector<PrefixV3> &prefixes, bool holds_ipv4) {
  if (prefixes.empty()) return;
  auto *table = add_table<ChildOps>(session_, object_, set_table);
  for (const PrefixV3 &prefix : prefixes) {
    NewRecord<ChildOps> record(session_);
    NewObject<ChildOps> new_object(session_);
    ospfv3_prefix_list *object = record.put(new_object);
    text(ospfv3_prefix_list_prefix_set, object, prefix_text(prefix, holds_ipv4));
    hex_text(ospfv3_prefix_list_prefix_options_set, object, prefix.options);
    insert(record, table);
  }
}

template <typename Ops>
void RowFiller<Ops>::fill_network(ospfv3_network *field, const NetworkBodyV3 &network) {
  fill_options(at(ospfv3_network_lsa_net_options_get, field), network.options);
  set(ospfv3_network_lsa_flag_hdr_options_set_value, field, option_flags(network.options));
  set(ospfv3_network_attached_router_set_mem, field, network.attached_routers.data(),
      count_of(network.attached_routers.size()));
}

template <typename Ops>
void RowFiller<Ops>::fill_inter_area_prefix(ospfv3_inter_area_prefix *field,
                                            const InterAreaPrefixBody &inter, bool holds_ipv4) {
  set(ospfv3_inter_area_prefix_metric_set_value, field, inter.metric);
  text(ospfv3_inter_area_prefix_ia_prefix_set, field, prefix_text(inter.prefix, holds_ipv4));
  hex_text(ospfv3_inter_area_prefix_ia_prefix_options_set, field, inter.prefix.options);
}

template <typename Ops>
void RowFiller<Ops>::fill_inter_area_router(ospfv3_inter_area_router *field,
                                            const InterAreaRouterBody &router) {
  fill_options(at(ospfv3_inter_area_router_lsa_ia_options_get, field), router.options);
  set(ospfv3_inter_area_router_lsa_flag_hdr_options_set_value, field, option_flags(router.options));
  set(ospfv3_inter_area_router_metric_set_value, field, router.metric);
  set(ospfv3_inter_area_router_destination_router_id_set_value, field,
      router.destination_router_id);
}

template <typename Ops>
void RowFiller<Ops>::fill_link(ospfv3_link_data *field, const LinkBodyV3 &link, bool holds_ipv4) {
  set(ospfv3_link_data_rtr_priority_set_value, field, link.priority);
  fill_options(at(ospfv3_link_data_lsa_ld_options_get, field), link.options);
  set(ospfv3_link_data_lsa_flag_hdr_options_set_value, field, option_flags(link.options));
  address(ospfv3_link_data_link_local_interface_address_set, field, link.link_local_address,
          holds_ipv4);
  set(ospfv3_link_data_num_of_prefixes_set_value, field, link.prefix_count);
  fill_prefixes<ospfv3_prefix_list_ops>(Row::set_prefix_list, link.prefixes, holds_ipv4);
}

template <typename Ops>
void RowFiller<Ops>::fill_intra_area_prefix(ospfv3_intra_area_prefix *field,
                                            const IntraAreaPrefixBody &intra, bool holds_ipv4) {
  set(ospfv3_intra_area_prefix_referenced_ls_type_set_value, field, intra.referenced_ls_type);
  set(ospfv3_intra_area_prefix_referenced_link_state_id_set_value, field,
      intra.referenced_link_state_id);
  address(ospfv3_intra_area_prefix_referenced_adv_router_set, field,
          intra.referenced_advertising_router);
  set(ospfv3_intra_area_prefix_num_of_prefixes_set_value, field, intra.prefix_count);
  fill_prefixes<ospfv3_ia_prefix_list_ops>(Row::set_ia_prefix_list, intra.prefixes, holds_ipv4);
}

template <typename Ops>
void RowFiller<Ops>::fill(const LsaV3 &lsa, bool holds_ipv4) {
  if constexpr (std::is_same_v<Ops, link_scope_lsa_ops>) {
    set(link_scope_lsa_version_set_value, object_, 3u);
  }
  ospfv3_lsa *whole = at(Row::v3, object_);
  fill_header(at(ospfv3_lsa_header_get, whole), lsa.header);
  ospfv3_lsa_body *body = at(ospfv3_lsa_lsa_body_get, whole);
  switch (static_cast<LsaTypeV3>(lsa.header.type)) {
    case lsa3_router:
      fill_router(body, lsa.router);
      break;
    case lsa3_network:
      fill_network(at(ospfv3_lsa_body_network_get, body), lsa.network);
      break;
    case lsa3_inter_area_prefix:
      fill_inter_area_prefix(at(ospfv3_lsa_body_prefix_get, body), lsa.inter_area_prefix,
                             holds_ipv4);
      break;
    case lsa3_inter_area_router:
      fill_inter_area_router(at(ospfv3_lsa_body_ia_router_get, body), lsa.inter_area_router);
      break;
    case lsa3_as_external:
      fill_external(at(ospfv3_lsa_body_lsa_external_get, body), lsa.external, holds_ipv4);
      break;
    case lsa3_nssa:
      fill_external(at(ospfv3_nssa_lsa_nssa_external_get, at(ospfv3_lsa_body_nssa_get, body)),
                    lsa.nssa, holds_ipv4);
      break;
    case lsa3_link:
      fill_link(at(ospfv3_lsa_body_link_data_get, body), lsa.link, holds_ipv4);
      break;
    case lsa3_intra_area_prefix:
      fill_intra_area_prefix(at(ospfv3_lsa_body_ia_prefix_get, body), lsa.intra_area_prefix,
                             holds_ipv4);
      break;
    case lsa3_grace:
      kept_ = false;  // the model has no types for its contents
      break;
  }
  kept_ &= find_type(3, lsa.header.type) != nullptr;
}

template <typename Ops, typename Lsa, typename... More>
typename Ops::Record *add_row(Session &session, typename Ops::Table *table, const Lsa &lsa,
                              More... more) {
  RowFiller<Ops> filler(session, lsa.header, lsa.raw);
  filler.fill(lsa, more...);
  return filler.insert_into(table, lsa.complete);
}

}  // namespace

tbl_area_scope_lsa_record *add_lsa(Session &session, tbl_area_scope_lsa_table *table,
                                   const LsaV2 &lsa) {
  return add_row<area_scope_lsa_ops>(session, table, lsa);
}

tbl_link_scope_lsa_record *add_lsa(Session &session, tbl_link_scope_lsa_table *table,
                                   const LsaV2 &lsa) {
  return add_row<link_scope_lsa_ops>(session, table, lsa);
}

tbl_area_scope_lsa_record *add_lsa(Session &session, tbl_area_scope_lsa_table *table,
                                   const LsaV3 &lsa, bool holds_ipv4) {
  return add_row<area_scope_lsa_ops>(session, table, lsa, holds_ipv4);
}

tbl_link_scope_lsa_record *add_lsa(Session &session, tbl_link_scope_lsa_table *table,
                                   const LsaV3 &lsa, bool holds_ipv4) {
  return add_row<link_scope_lsa_ops>(session, table, lsa, holds_ipv4);
}

}  // namespace capture_rows
