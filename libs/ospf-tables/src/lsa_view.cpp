#include "ospf_tables/lsa_view.hpp"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "lsa_octets.hpp"
#include "ospf_tables/field_reader.hpp"
#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/rows.hpp"

namespace ospf_tables {

namespace {

// The texts of sequence numbers and checksums in one form, whoever produced them.
std::string hexadecimal(const std::string &text, int digits) {
  // As most are already.
  const auto is_plain = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); };
  if (text.size() == static_cast<std::size_t>(digits) + 2 && text.starts_with("0x") &&
      std::all_of(text.begin() + 2, text.end(), is_plain)) {
    return text;
  }
  std::string_view number = text;
  if (number.starts_with("0x") || number.starts_with("0X")) number.remove_prefix(2);
  std::uint32_t value = 0;
  const auto [end, error] =
      std::from_chars(number.data(), number.data() + number.size(), value, 16);
  if (number.empty() || error != std::errc() || end != number.data() + number.size()) return text;
  char form[16];
  std::snprintf(form, sizeof form, "0x%0*x", digits, value);
  return form;
}

// All rows of a table that a row refers to, which may be none.
template <typename Ops>
auto read_rows(Session &session, typename Ops::Table *table) {
  std::vector<decltype(read_row(session, static_cast<typename Ops::Record *>(nullptr)))> rows;
  if (table == nullptr) return rows;
  for_each_record<Ops>(session, table, [&](typename Ops::Record *record) {
    rows.push_back(read_row(session, record));
  });
  return rows;
}

struct LsaReader : FieldReader {
  BitNames options(lsa_options *object) const {
    BitNames names;
    if (flag(object, lsa_options_DC_get_value)) names.push_back("DC");
    if (flag(object, lsa_options_P_get_value)) names.push_back("P");
    if (flag(object, lsa_options_MC_get_value)) names.push_back("MC");
    if (flag(object, lsa_options_E_get_value)) names.push_back("E");
    if (flag(object, lsa_options_Upward_get_value)) names.push_back("Upward");
    if (flag(object, lsa_options_MT_get_value)) names.push_back("MT");
    if (flag(object, lsa_options_R_get_value)) names.push_back("R");
    if (flag(object, lsa_options_AF_get_value)) names.push_back("AF");
    return names;
  }

  BitNames options(ospfv3_lsa_options *object) const {
    BitNames names;
    if (flag(object, ospfv3_lsa_options_DC_get_value)) names.push_back("DC");
    if (flag(object, ospfv3_lsa_options_R_get_value)) names.push_back("R");
    if (flag(object, ospfv3_lsa_options_N_get_value)) names.push_back("N");
    if (flag(object, ospfv3_lsa_options_E_get_value)) names.push_back("E");
    if (flag(object, ospfv3_lsa_options_V6_get_value)) names.push_back("V6");
    if (flag(object, ospfv3_lsa_options_AF_get_value)) names.push_back("AF");
    return names;
  }

  template <typename Object, typename Get>
  std::string address(Object *object, Get get) const {
    return key_word(value(object, get));
  }

  template <typename Object, typename Count, typename Get>
  std::vector<std::string> addresses(Object *object, Count count, Get get) const {
    std::vector<std::string> result;
    for (std::uint32_t at = 0, end = value(object, count); at < end; ++at) {
      result.push_back(key_word(get(session.handle(), space, object, at, session.err())));
    }
    return result;
  }

  TeLinkView te_link(ospfv2_link_tlv *tlv) const {
    TeLinkView link;
    if (tlv == nullptr) return link;
    link.link_type = value(tlv, ospfv2_link_tlv_link_type_get_value);
    link.link_id = value(tlv, ospfv2_link_tlv_link_id_get_value);
    link.local_addresses = addresses(tlv, ospfv2_link_tlv_local_if_ipv4_addr_num_get_value,
                                     ospfv2_link_tlv_local_if_ipv4_addr_get);
    link.remote_addresses = addresses(tlv, ospfv2_link_tlv_local_remote_ipv4_addr_num_get_value,
                                      ospfv2_link_tlv_local_remote_ipv4_addr_get);
    link.te_metric = value(tlv, ospfv2_link_tlv_te_metric_get_value);
    link.max_bandwidth = value(tlv, ospfv2_link_tlv_max_bandwidth_get_value);
    link.max_reservable_bandwidth = value(tlv, ospfv2_link_tlv_max_reservable_bandwidth_get_value);
    link.unreserved_bandwidth = value(tlv, ospfv2_link_tlv_unreserved_bandwidth_get_value);
    link.admin_group = value(tlv, ospfv2_link_tlv_admin_group_get_value);
    return link;
  }

  // The fields that the two kinds of row name differently, or that one of them lacks.
  std::uint32_t version(link_scope_lsa *row) const {
    return value(row, link_scope_lsa_version_get_value);
  }
  std::uint32_t version(area_scope_lsa *) const { return 0; }
  tbl_ospfv2_link_table *links(link_scope_lsa *row) const {
    return value(row, link_scope_lsa_ospfv2_links_get_by_ref);
  }
  tbl_ospfv2_link_table *links(area_scope_lsa *row) const {
    return value(row, area_scope_lsa_links_get_by_ref);
  }
  void tlvs(link_scope_lsa *row, OpaqueViewV2 &body) const {
    body.router_address = key_word(value_if_held(row, link_scope_lsa_router_address_get));
    body.te_link = te_link(value_if_held(row, link_scope_lsa_tlv_get));
    body.tlvs = unknown_tlvs(row);
    body.sub_tlvs = read_rows<ospfv2_unknown_sub_tlv_ops>(
        session, value_if_held(row, link_scope_lsa_unknown_sub_tlv_get_by_ref));
  }
  void tlvs(area_scope_lsa *, OpaqueViewV2 &) const {}
  std::vector<TlvView> unknown_tlvs(link_scope_lsa *row) const {
    return read_rows<ospfv2_unknown_tlv_ops>(session,
                                             value(row, link_scope_lsa_unknown_tlv_get_by_ref));
  }
  std::vector<TlvView> unknown_tlvs(area_scope_lsa *) const { return {}; }

  LsaBodyView router(ospfv2_lsa_body *body, tbl_ospfv2_link_table *links) const {
    RouterViewV2 router;
    ospfv2_lsa_body_flags *flags = value(body, ospfv2_lsa_body_lsa_flags_get);
    if (flag(flags, ospfv2_lsa_body_flags_V_get_value)) router.flags.push_back("V");
    if (flag(flags, ospfv2_lsa_body_flags_E_get_value)) router.flags.push_back("E");
    if (flag(flags, ospfv2_lsa_body_flags_B_get_value)) router.flags.push_back("B");
    router.num_of_links = value(body, ospfv2_lsa_body_num_of_links_get_value);
    router.links = read_rows<ospfv2_link_ops>(session, links);
    return router;
  }

  LsaBodyView network(ospfv2_lsa_body *body) const {
    ospfv2_network *network = value(body, ospfv2_lsa_body_network_get);
    return NetworkViewV2{
        address(network, ospfv2_network_network_mask_get),
        elements<std::uint32_t>(network, ospfv2_network_attached_router_num_get_value,
                                ospfv2_network_attached_router_get_mem)};
  }

  LsaBodyView external(ospfv2_lsa_body *body, tbl_ospfv2_external_table *table,
                       const std::vector<std::uint8_t> &raw) const {
    ExternalViewV2 external{address(body, ospfv2_lsa_body_external_mask_get),
                            read_rows<ospfv2_external_ops>(session, table)};
    // The model has no field for the type of metric. It is the highest bit of an entry's first
    // octet, whose other bits are the topology; entries of 12 octets follow header and mask.
    for (ExternalEntryViewV2 &entry : external.entries) {
      for (std::size_t at = 24; at + 12 <= raw.size() && !entry.type_2; at += 12) {
        if ((raw[at] & 0x7f) == entry.mt_id) entry.type_2 = (raw[at] & 0x80) != 0;
      }
    }
    return external;
  }

  LsaBodyView router(ospfv3_lsa_body *body, tbl_ospfv3_link_table *links) const {
    RouterViewV3 router;
    ospfv3_lsa_body_flags *flags = value(body, ospfv3_lsa_body_lsa_flags_get);
    if (flag(flags, ospfv3_lsa_body_flags_V_get_value)) router.flags.push_back("V");
    if (flag(flags, ospfv3_lsa_body_flags_E_get_value)) router.flags.push_back("E");
    if (flag(flags, ospfv3_lsa_body_flags_B_get_value)) router.flags.push_back("B");
    if (flag(flags, ospfv3_lsa_body_flags_Nt_get_value)) router.flags.push_back("Nt");
    router.options = options(value(body, ospfv3_lsa_body_lsa_body_options_get));
    router.links = read_rows<ospfv3_link_ops>(session, links);
    return router;
  }

  LsaBodyView network(ospfv3_lsa_body *body) const {
    ospfv3_network *network = value(body, ospfv3_lsa_body_network_get);
    return NetworkViewV3{
        options(value(network, ospfv3_network_lsa_net_options_get)),
        elements<std::uint32_t>(network, ospfv3_network_attached_router_num_get_value,
                                ospfv3_network_attached_router_get_mem)};
  }

  LsaBodyView inter_area_prefix(ospfv3_lsa_body *body) const {
    ospfv3_inter_area_prefix *prefix = value(body, ospfv3_lsa_body_prefix_get);
    return InterAreaPrefixView{value(prefix, ospfv3_inter_area_prefix_metric_get_value),
                               {text(prefix, ospfv3_inter_area_prefix_ia_prefix_get),
                                text(prefix, ospfv3_inter_area_prefix_ia_prefix_options_get)}};
  }

  LsaBodyView inter_area_router(ospfv3_lsa_body *body) const {
    ospfv3_inter_area_router *router = value(body, ospfv3_lsa_body_ia_router_get);
    return InterAreaRouterView{
        options(value(router, ospfv3_inter_area_router_lsa_ia_options_get)),
        value(router, ospfv3_inter_area_router_metric_get_value),
        value(router, ospfv3_inter_area_router_destination_router_id_get_value)};
  }

  LsaBodyView external(ospfv3_lsa_external *external) const {
    ExternalViewV3 result;
    result.metric = value(external, ospfv3_lsa_external_metric_get_value);
    result.type_2 = flag(value(external, ospfv3_lsa_external_flags_val_get),
                         ospfv3_lsa_external_flags_E_get_value);
    result.referenced_ls_type = value(external, ospfv3_lsa_external_referenced_ls_type_get_value);
    result.prefix = {text(external, ospfv3_lsa_external_external_prefix_get),
                     text(external, ospfv3_lsa_external_external_prefix_options_get)};
    result.forwarding_address = address(external, ospfv3_lsa_external_forwarding_address_get);
    if (const std::uint32_t tag = value(external, ospfv3_lsa_external_external_route_tag_get_value);
        tag != 0) {
      result.route_tag = tag;
    }
    result.referenced_link_state_id =
        value(external, ospfv3_lsa_external_referenced_link_state_id_get_value);
    return result;
  }

  LsaBodyView link(ospfv3_lsa_body *body, tbl_ospfv3_prefix_list_table *prefixes) const {
    ospfv3_link_data *data = value(body, ospfv3_lsa_body_link_data_get);
    return LinkViewV3{value(data, ospfv3_link_data_rtr_priority_get_value),
                      options(value(data, ospfv3_link_data_lsa_ld_options_get)),
                      address(data, ospfv3_link_data_link_local_interface_address_get),
                      value(data, ospfv3_link_data_num_of_prefixes_get_value),
                      read_rows<ospfv3_prefix_list_ops>(session, prefixes)};
  }

  LsaBodyView intra_area_prefix(ospfv3_lsa_body *body,
                                tbl_ospfv3_ia_prefix_list_table *prefixes) const {
    ospfv3_intra_area_prefix *prefix = value(body, ospfv3_lsa_body_ia_prefix_get);
    return IntraAreaPrefixView{
        value(prefix, ospfv3_intra_area_prefix_referenced_ls_type_get_value),
        value(prefix, ospfv3_intra_area_prefix_referenced_link_state_id_get_value),
        address(prefix, ospfv3_intra_area_prefix_referenced_adv_router_get),
        value(prefix, ospfv3_intra_area_prefix_num_of_prefixes_get_value),
        read_rows<ospfv3_ia_prefix_list_ops>(session, prefixes)};
  }
};

// The getters of the fields that both kinds of row have under the same name.
#define LSA_ROW(row_type)                                                              \
  struct row_type##_fields {                                                           \
    static constexpr auto decoded = &row_type##_decoded_completed_get_value;           \
    static constexpr auto raw_data_len = &row_type##_raw_data_len_get_value;           \
    static constexpr auto raw_data = &row_type##_raw_data_get_mem;                     \
    static constexpr auto v2 = &row_type##_ospfv2_lsa_val_get;                         \
    static constexpr auto v3 = &row_type##_ospfv3_lsa_val_get;                         \
    static constexpr auto summary = &row_type##_summary_get_by_ref;                    \
    static constexpr auto external = &row_type##_external_get_by_ref;                  \
    static constexpr auto v3_links = &row_type##_ospfv3_links_get_by_ref;              \
    static constexpr auto prefixes = &row_type##_prefix_list_get_by_ref;               \
    static constexpr auto intra_area_prefixes = &row_type##_ia_prefix_list_get_by_ref; \
  }
LSA_ROW(link_scope_lsa);
LSA_ROW(area_scope_lsa);
#undef LSA_ROW

template <typename Fields, typename Row>
LsaBodyView read_body_v2(const LsaReader &read, Row *row, ospfv2_lsa *lsa, const LsaView &view) {
  ospfv2_lsa_body *body = read.value(lsa, ospfv2_lsa_lsa_body_get);
  switch (static_cast<LsaTypeV2>(view.type)) {
    case lsa2_router:
      return read.router(body, read.links(row));
    case lsa2_network:
      return read.network(body);
    case lsa2_summary:
    case lsa2_asbr_summary:
      return SummaryViewV2{
          read.address(body, ospfv2_lsa_body_summary_mask_get),
          read_rows<ospfv2_topology_ops>(read.session, read.value(row, Fields::summary))};
    case lsa2_as_external:
    case lsa2_nssa:
      return read.external(body, read.value(row, Fields::external), view.raw_data);
    case lsa2_opaque_link:
    case lsa2_opaque_area:
    case lsa2_opaque_as: {
      OpaqueViewV2 opaque;
      ospfv2_header *header = read.value(lsa, ospfv2_lsa_header_get);
      opaque.opaque_type = read.value(header, ospfv2_header_opaque_type_get_value);
      opaque.opaque_id = read.value(header, ospfv2_header_opaque_id_get_value);
      read.tlvs(row, opaque);
      return opaque;
    }
    case lsa2_group_membership:
    case lsa2_external_attributes:
      break;
  }
  return OtherView{read.unknown_tlvs(row)};
}

template <typename Fields, typename Row>
LsaBodyView read_body_v3(const LsaReader &read, Row *row, ospfv3_lsa *lsa, const LsaView &view) {
  ospfv3_lsa_body *body = read.value(lsa, ospfv3_lsa_lsa_body_get);
  switch (static_cast<LsaTypeV3>(view.type)) {
    case lsa3_router:
      return read.router(body, read.value(row, Fields::v3_links));
    case lsa3_network:
      return read.network(body);
    case lsa3_inter_area_prefix:
      return read.inter_area_prefix(body);
    case lsa3_inter_area_router:
      return read.inter_area_router(body);
    case lsa3_as_external:
      return read.external(read.value(body, ospfv3_lsa_body_lsa_external_get));
    case lsa3_nssa:
      return read.external(read.value(read.value(body, ospfv3_lsa_body_nssa_get),
                                      ospfv3_nssa_lsa_nssa_external_get));
    case lsa3_link:
      return read.link(body, read.value(row, Fields::prefixes));
    case lsa3_intra_area_prefix:
      return read.intra_area_prefix(body, read.value(row, Fields::intra_area_prefixes));
    case lsa3_grace:
      break;
  }
  return OtherView{read.unknown_tlvs(row)};
}

// What stands in front of the LSA's body, which is left out.
template <typename Fields, typename Ops>
LsaView read_front(Session &session, typename Ops::Record *record) {
  const LsaReader read{{session}};
  LsaView view;
  auto *row = Ops::get(session.handle(), space, record);
  auto *key = Ops::get_key(session.handle(), space, record);
  if (row == nullptr || key == nullptr) throw LibraryFailure("an LSA's row is without its object");
  if constexpr (std::is_same_v<Ops, link_scope_lsa_ops>) {
    view.link_state_id = read.value(key, link_scope_lsa_key_lsa_id_get_value);
  } else {
    view.link_state_id = read.value(key, area_scope_lsa_key_lsa_id_get_value);
  }
  ospfv2_header *header2 = read.value(read.value(row, Fields::v2), ospfv2_lsa_header_get);
  lsa_header *header3 = read.value(read.value(read.value(row, Fields::v3), ospfv3_lsa_header_get),
                                   ospfv3_header_lsa_header_val_get);
  // Rows of one kind do not say their version: then the header that was filled does.
  view.version = read.version(row);
  if (view.version != 2 && view.version != 3) {
    view.version = read.value(header3, lsa_header_type_get_value) != 0 ? 3 : 2;
  }
  if (view.version == 2) {
    view.type = read.value(header2, ospfv2_header_type_get_value);
    view.adv_router = read.value(header2, ospfv2_header_adv_router_get_value);
    view.age = read.value(header2, ospfv2_header_age_get_value);
    view.sequence = hexadecimal(read.text(header2, ospfv2_header_seq_num_get), 8);
    view.checksum = hexadecimal(read.text(header2, ospfv2_header_checksum_get), 4);
    view.length = read.value(header2, ospfv2_header_length_get_value);
  } else {
    view.type = read.value(header3, lsa_header_type_get_value);
    view.adv_router = read.value(header3, lsa_header_adv_router_get_value);
    view.age = read.value(header3, lsa_header_age_get_value);
    view.sequence = hexadecimal(read.text(header3, lsa_header_seq_num_get), 8);
    view.checksum = hexadecimal(read.text(header3, lsa_header_checksum_get), 4);
    view.length = read.value(header3, lsa_header_length_get_value);
  }
  session.check("reading the header of an LSA");
  return view;
}

template <typename Fields, typename Ops>
LsaView read_record(Session &session, typename Ops::Record *record) {
  const LsaReader read{{session}};
  LsaView view = read_front<Fields, Ops>(session, record);
  auto *row = Ops::get(session.handle(), space, record);
  view.decoded_completed = read.flag(row, Fields::decoded);
  view.raw_data = read.elements<std::uint8_t>(row, Fields::raw_data_len, Fields::raw_data);
  if (view.version == 2) {
    ospfv2_lsa *v2 = read.value(row, Fields::v2);
    view.options =
        read.options(read.value(read.value(v2, ospfv2_lsa_header_get), ospfv2_header_options_get));
    view.body = read_body_v2<Fields>(read, row, v2, view);
  } else {
    view.body = read_body_v3<Fields>(read, row, read.value(row, Fields::v3), view);
  }
  session.check("reading an LSA");
  add_from_octets(view);
  return view;
}

template <typename Ops>
struct RowReader : FieldReader {
  typename Ops::Object *object;
  RowReader(Session &given, typename Ops::Record *record)
      : FieldReader{given}, object(Ops::get(given.handle(), space, record)) {}
};

}  // namespace

std::uint32_t RouterLinkViewV2::metric() const {
  const auto base = std::find_if(metrics.begin(), metrics.end(),
                                 [](const TopologyMetricView &each) { return each.mt_id == 0; });
  return base == metrics.end() ? 0 : base->metric;
}

LsaView read_lsa_front(Session &session, tbl_link_scope_lsa_record *record) {
  return read_front<link_scope_lsa_fields, link_scope_lsa_ops>(session, record);
}
LsaView read_lsa_front(Session &session, tbl_area_scope_lsa_record *record) {
  return read_front<area_scope_lsa_fields, area_scope_lsa_ops>(session, record);
}

LsaView read_lsa(Session &session, tbl_link_scope_lsa_record *record) {
  return read_record<link_scope_lsa_fields, link_scope_lsa_ops>(session, record);
}
LsaView read_lsa(Session &session, tbl_area_scope_lsa_record *record) {
  return read_record<area_scope_lsa_fields, area_scope_lsa_ops>(session, record);
}

RouterLinkViewV2 read_row(Session &session, tbl_ospfv2_link_record *record) {
  const RowReader<ospfv2_link_ops> read(session, record);
  ospfv2_link_key *key = ospfv2_link_ops::get_key(session.handle(), space, record);
  return {read.value(read.object, ospfv2_link_type_get_value),
          read.value(key, ospfv2_link_key_link_id_get_value),
          read.value(key, ospfv2_link_key_link_data_get_value),
          read_rows<ospfv2_topology_ops>(session,
                                         read.value(read.object, ospfv2_link_topology_get_by_ref))};
}

TopologyMetricView read_row(Session &session, tbl_ospfv2_topology_record *record) {
  const RowReader<ospfv2_topology_ops> read(session, record);
  return {read.value(read.object, ospfv2_topology_mt_id_get_value),
          read.value(read.object, ospfv2_topology_metric_get_value)};
}

ExternalEntryViewV2 read_row(Session &session, tbl_ospfv2_external_record *record) {
  const RowReader<ospfv2_external_ops> read(session, record);
  return {read.value(read.object, ospfv2_external_mt_id_get_value),
          read.value(read.object, ospfv2_external_metric_get_value), std::nullopt,
          key_word(read.value(read.object, ospfv2_external_forwarding_address_get)),
          read.value(read.object, ospfv2_external_external_route_tag_get_value)};
}

TlvView read_row(Session &session, tbl_ospfv2_unknown_tlv_record *record) {
  const RowReader<ospfv2_unknown_tlv_ops> read(session, record);
  return {read.value(read.object, ospfv2_unknown_tlv_type_get_value),
          read.value(read.object, ospfv2_unknown_tlv_length_get_value),
          read.elements<std::uint8_t>(read.object, ospfv2_unknown_tlv_value_num_get_value,
                                      ospfv2_unknown_tlv_value_get_mem),
          key_word(read.value(read.object, ospfv2_unknown_tlv_router_address_get)),
          LsaReader{{session}}.te_link(read.value(read.object, ospfv2_unknown_tlv_tlv_get)),
          read_rows<ospfv2_unknown_sub_tlv_ops>(
              session, read.value(read.object, ospfv2_unknown_tlv_unknown_sub_tlv_get_by_ref))};
}

SubTlvView read_row(Session &session, tbl_ospfv2_unknown_sub_tlv_record *record) {
  const RowReader<ospfv2_unknown_sub_tlv_ops> read(session, record);
  return {read.value(read.object, ospfv2_unknown_sub_tlv_type_get_value),
          read.value(read.object, ospfv2_unknown_sub_tlv_length_get_value),
          read.elements<std::uint8_t>(read.object, ospfv2_unknown_sub_tlv_value_len_get_value,
                                      ospfv2_unknown_sub_tlv_value_get_mem)};
}

RouterLinkViewV3 read_row(Session &session, tbl_ospfv3_link_record *record) {
  const RowReader<ospfv3_link_ops> read(session, record);
  ospfv3_link_key *key = ospfv3_link_ops::get_key(session.handle(), space, record);
  return {read.value(read.object, ospfv3_link_type_get_value),
          read.value(read.object, ospfv3_link_metric_get_value),
          read.value(key, ospfv3_link_key_interface_id_get_value),
          read.value(key, ospfv3_link_key_neighbor_interface_id_get_value),
          read.value(key, ospfv3_link_key_neighbor_router_id_get_value)};
}

PrefixView read_row(Session &session, tbl_ospfv3_prefix_list_record *record) {
  const RowReader<ospfv3_prefix_list_ops> read(session, record);
  return {read.text(read.object, ospfv3_prefix_list_prefix_get),
          read.text(read.object, ospfv3_prefix_list_prefix_options_get)};
}

PrefixView read_row(Session &session, tbl_ospfv3_ia_prefix_list_record *record) {
  const RowReader<ospfv3_ia_prefix_list_ops> read(session, record);
  return {read.text(read.object, ospfv3_prefix_list_prefix_get),
          read.text(read.object, ospfv3_prefix_list_prefix_options_get)};
}

}  // namespace ospf_tables
