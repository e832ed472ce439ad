#include "views/json_lines.hpp"

#include <nlohmann/json.hpp>

#include "ospf_tables/field_reader.hpp"
#include "ospf_tables/row_keys.hpp"
#include "views/lsa_names.hpp"
#include "views/named_json.hpp"
#include "views/tlv_words.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

using Json = nlohmann::ordered_json;

Json or_null(const std::string &text) { return text.empty() ? Json(nullptr) : Json(text); }

Json dotted_all(const std::vector<std::uint32_t> &numbers) {
  Json list = Json::array();
  for (const std::uint32_t number : numbers) list.push_back(dotted(number));
  return list;
}

Json json_of(const TopologyMetricView &metric) {
  return {{"mt_id", metric.mt_id}, {"metric", metric.metric}};
}

template <typename View>
Json list_of(const std::vector<View> &views);

Json json_of(const RouterLinkViewV2 &link) {
  return {{"type", link.type},
          {"type_name", link_type_name(link.type)},
          {"link_id", dotted(link.link_id)},
          {"link_data", dotted(link.link_data)},
          {"metric", link.metric()},
          {"topology", list_of(link.metrics)}};
}

Json json_of(const RouterLinkViewV3 &link) {
  return {{"type", link.type},
          {"type_name", link_type_name(link.type)},
          {"metric", link.metric},
          {"interface_id", link.interface_id},
          {"neighbor_interface_id", link.neighbor_interface_id},
          {"neighbor_router_id", dotted(link.neighbor_router_id)}};
}

Json json_of(const PrefixView &prefix) {
  return {{"prefix", prefix.prefix},
          {"prefix_options", prefix.options},
          {"metric", prefix.metric ? Json(*prefix.metric) : Json(nullptr)}};
}

Json json_of(const ExternalEntryViewV2 &entry) {
  return {{"mt_id", entry.mt_id},
          {"metric", entry.metric},
          {"metric_type", entry.type_2 ? Json(*entry.type_2 ? 2 : 1) : Json(nullptr)},
          {"forwarding_address", or_null(entry.forwarding_address)},
          {"external_route_tag", entry.route_tag}};
}

Json json_of(const SubTlvView &tlv) {
  return {{"type", tlv.type}, {"length", tlv.length}, {"value", hex_text(tlv.value)}};
}

Json json_of(const TeLinkView &link) {
  if (!link.is_set()) return nullptr;
  return {{"link_type", link.link_type},
          {"link_id", dotted(link.link_id)},
          {"local_if_ipv4_addr", link.local_addresses},
          {"local_remote_ipv4_addr", link.remote_addresses},
          {"te_metric", link.te_metric},
          {"max_bandwidth", link.max_bandwidth},
          {"max_reservable_bandwidth", link.max_reservable_bandwidth},
          {"unreserved_bandwidth", link.unreserved_bandwidth},
          {"admin_group", link.admin_group}};
}

Json json_of(const TlvView &tlv) {
  return {{"type", tlv.type},
          {"length", tlv.length},
          {"value", hex_text(tlv.value)},
          {"router_address", or_null(tlv.router_address)},
          {"tlv", json_of(tlv.te_link)},
          {"unknown_sub_tlv", list_of(tlv.sub_tlvs)}};
}

template <typename View>
Json list_of(const std::vector<View> &views) {
  Json list = Json::array();
  for (const View &view : views) list.push_back(json_of(view));
  return list;
}

struct BodyJson {
  Json operator()(const OtherView &body) const { return {{"unknown_tlv", list_of(body.tlvs)}}; }
  Json operator()(const RouterViewV2 &body) const {
    return {{"lsa_flags", body.flags},
            {"num_of_links", body.num_of_links},
            {"links", list_of(body.links)}};
  }
  Json operator()(const NetworkViewV2 &body) const {
    return {{"network_mask", or_null(body.mask)},
            {"attached_router", dotted_all(body.attached_routers)}};
  }
  Json operator()(const SummaryViewV2 &body) const {
    return {{"summary_mask", or_null(body.mask)}, {"summary", list_of(body.metrics)}};
  }
  Json operator()(const ExternalViewV2 &body) const {
    return {{"external_mask", or_null(body.mask)}, {"external", list_of(body.entries)}};
  }
  Json operator()(const OpaqueViewV2 &body) const {
    return {{"opaque_type", body.opaque_type},
            {"opaque_id", body.opaque_id},
            {"router_address", or_null(body.router_address)},
            {"tlv", json_of(body.te_link)},
            {"unknown_tlv", list_of(body.tlvs)},
            {"unknown_sub_tlv", list_of(body.sub_tlvs)}};
  }
  Json operator()(const RouterViewV3 &body) const {
    return {{"lsa_flags", body.flags},
            {"lsa_body_options", body.options},
            {"links", list_of(body.links)}};
  }
  Json operator()(const NetworkViewV3 &body) const {
    return {{"lsa_net_options", body.options},
            {"attached_router", dotted_all(body.attached_routers)}};
  }
  Json operator()(const InterAreaPrefixView &body) const {
    return {{"metric", body.metric},
            {"ia_prefix", body.prefix.prefix},
            {"ia_prefix_options", body.prefix.options}};
  }
  Json operator()(const InterAreaRouterView &body) const {
    return {{"lsa_ia_options", body.options},
            {"metric", body.metric},
            {"destination_router_id", dotted(body.destination_router_id)}};
  }
  Json operator()(const ExternalViewV3 &body) const {
    return {{"metric", body.metric},
            {"metric_type", body.type_2 ? 2 : 1},
            {"referenced_ls_type", body.referenced_ls_type},
            {"external_prefix", body.prefix.prefix},
            {"external_prefix_options", body.prefix.options},
            {"forwarding_address", or_null(body.forwarding_address)},
            {"external_route_tag", body.route_tag ? Json(*body.route_tag) : Json(nullptr)},
            {"referenced_link_state_id", body.referenced_ls_type == 0
                                             ? Json(nullptr)
                                             : Json(dotted(body.referenced_link_state_id))}};
  }
  Json operator()(const LinkViewV3 &body) const {
    return {{"rtr_priority", body.priority},
            {"lsa_ld_options", body.options},
            {"link_local_interface_address", or_null(body.link_local_address)},
            {"num_of_prefixes", body.num_of_prefixes},
            {"prefix_list", list_of(body.prefixes)}};
  }
  Json operator()(const IntraAreaPrefixView &body) const {
    return {{"referenced_ls_type", body.referenced_ls_type},
            {"referenced_link_state_id", dotted(body.referenced_link_state_id)},
            {"referenced_adv_router", or_null(body.referenced_adv_router)},
            {"num_of_prefixes", body.num_of_prefixes},
            {"ia_prefix_list", list_of(body.prefixes)}};
  }
};

Json json_of(const LsaView &lsa) {
  Json body = std::visit(BodyJson{}, lsa.body);
  if (std::holds_alternative<OpaqueViewV2>(lsa.body) ||
      std::holds_alternative<OtherView>(lsa.body)) {
    body["tlvs"] = json_of(tlv_words(lsa));
    if (const TlvSays head = head_words(lsa); !head.empty()) body["head"] = tool::json_of(head);
  }
  return {{"version", lsa.version},
          {"scope", scope_name(lsa.scope())},
          {"type", lsa.type},
          {"type_name", type_name(lsa.version, lsa.type)},
          {"lsa_id", dotted(lsa.link_state_id)},
          {"adv_router", dotted(lsa.adv_router)},
          {"age", lsa.age},
          {"seq_num", lsa.sequence},
          {"checksum", lsa.checksum},
          {"length", lsa.length},
          {"options", lsa.options},
          {"decoded_completed", lsa.decoded_completed},
          {"body", std::move(body)},
          {"raw_data", hex_text(lsa.raw_data)}};
}

// The name of an enumeration's value, out of its text form "label@type:NAME"; null when the value
// has none.
template <typename Enumeration, typename Print>
Json member_name(Session &session, const Enumeration *value, Print print) {
  std::string text(256, ' ');
  const std::uint32_t length = print(session.handle(), space, text.data(), 0, "", value,
                                     static_cast<std::int32_t>(text.size()), session.err());
  text.resize(length);
  const std::size_t colon = text.find(':');
  const std::size_t end = text.find('\n');
  if (colon == std::string::npos || end == std::string::npos) return nullptr;
  return text.substr(colon + 1, end - colon - 1);
}

// What stands in a row itself and in its key, by table.
struct RowJson : FieldReader {
  template <typename Object, typename Get>
  Json address(Object *object, Get get) const {
    return or_null(key_word(value(object, get)));
  }
  template <typename Object, typename Get>
  Json quad(Object *object, Get get) const {
    return dotted(value(object, get));
  }
  template <typename Ops>
  typename Ops::Object *object(typename Ops::Record *record) const {
    return Ops::get(session.handle(), space, record);
  }

  Json of(ospf_rev1_ops, tbl_ospf_rev1_record *record) const {
    auto *root = object<ospf_rev1_ops>(record);
    return {{"singleton_id", value(root, ospf_rev1_singleton_id_get_value)},
            {"op_mode",
             member_name(session, value(root, ospf_rev1_op_mode_get), ospf_operation_mode_print)}};
  }
  Json of(ospf_ops, tbl_ospf_record *record) const {
    auto *root = object<ospf_ops>(record);
    return {{"singleton_id", value(root, ospf_singleton_id_get_value)},
            {"op_mode",
             member_name(session, value(root, ospf_op_mode_get), ospf_operation_mode_print)}};
  }
  Json of(ospf_instance_rev1_ops, tbl_ospf_instance_rev1_record *record) const {
    auto *key = ospf_instance_rev1_ops::get_key(session.handle(), space, record);
    return {{"af",
             member_name(session, value(key, ospf_instance_rev1_key_af_get), address_family_print)},
            {"router_id", quad(key, ospf_instance_rev1_key_router_id_get_value)}};
  }
  Json of(ospf_instance_ops, tbl_ospf_instance_record *record) const {
    auto *instance = object<ospf_instance_ops>(record);
    return {
        {"af", member_name(session, value(instance, ospf_instance_af_get), address_family_print)},
        {"router_id", quad(instance, ospf_instance_router_id_get_value)}};
  }
  Json of(ospf_area_ops, tbl_ospf_area_record *record) const {
    return {{"area_id", quad(object<ospf_area_ops>(record), ospf_area_area_id_get_value)}};
  }

  Json authentication(ospf_authentication *choice) const {
    const auto arm = [](const kelp_vstring *text) {
      return text == nullptr ? Json(nullptr) : Json(kelp_vstring_text(text));
    };
    Json algorithms = Json::array();
    if (auto *set = value(choice, ospf_authentication_crypto_algorithm_val_get); set != nullptr) {
      const auto add = [&](auto get, const char *name) {
        if (flag(set, get)) algorithms.push_back(name);
      };
      add(ospf_crypto_algorithm_hmac_sha1_12_get_value, "hmac_sha1_12");
      add(ospf_crypto_algorithm_hmac_sha1_20_get_value, "hmac_sha1_20");
      add(ospf_crypto_algorithm_md5_get_value, "md5");
      add(ospf_crypto_algorithm_sha_1_get_value, "sha_1");
      add(ospf_crypto_algorithm_hmac_sha_1_get_value, "hmac_sha_1");
      add(ospf_crypto_algorithm_hmac_sha_256_get_value, "hmac_sha_256");
      add(ospf_crypto_algorithm_hmac_sha_384_get_value, "hmac_sha_384");
      add(ospf_crypto_algorithm_hmac_sha_512_get_value, "hmac_sha_512");
    }
    return {{"auth_type_selection",
             member_name(session, value(choice, ospf_authentication_auth_type_selection_get),
                         ospf_auth_type_print)},
            {"sa", arm(value(choice, ospf_authentication_sa_get))},
            {"key_chain", arm(value(choice, ospf_authentication_key_chain_get))},
            {"key_string", arm(value(choice, ospf_authentication_key_string_get))},
            {"crypto_algorithm_val", algorithms}};
  }

  Json of(ospf_interface_ops, tbl_ospf_interface_record *record) const {
    auto *i = object<ospf_interface_ops>(record);
    auto *multi = value(i, ospf_interface_multi_area_val_get);
    auto *reroute = value(i, ospf_interface_fast_reroute_val_get);
    auto *ttl = value(i, ospf_interface_ttl_security_val_get);
    return {{"name", text(i, ospf_interface_name_get)},
            {"network_type", member_name(session, value(i, ospf_interface_network_type_get),
                                         ospf_network_type_print)},
            {"passive", flag(i, ospf_interface_passive_get_value)},
            {"demand_circuit", flag(i, ospf_interface_demand_circuit_get_value)},
            {"multi_area_val",
             {{"multi_area_id", quad(multi, multi_area_multi_area_id_get_value)},
              {"cost", value(multi, multi_area_cost_get_value)}}},
            {"node_flag", flag(i, ospf_interface_node_flag_get_value)},
            {"fast_reroute_val",
             {{"candidate_disabled", flag(reroute, fast_reroute_candidate_disabled_get_value)},
              {"enabled", flag(reroute, fast_reroute_enabled_get_value)},
              {"remote_lfa_enabled", flag(reroute, fast_reroute_remote_lfa_enabled_get_value)}}},
            {"cost", value(i, ospf_interface_cost_get_value)},
            {"hello_interval", value(i, ospf_interface_hello_interval_get_value)},
            {"dead_interval", value(i, ospf_interface_dead_interval_get_value)},
            {"retransmit_interval", value(i, ospf_interface_retransmit_interval_get_value)},
            {"transmit_delay", value(i, ospf_interface_transmit_delay_get_value)},
            {"mtu_ignore", flag(i, ospf_interface_mtu_ignore_get_value)},
            {"lls", flag(i, ospf_interface_lls_get_value)},
            {"prefix_suppression", flag(i, ospf_interface_prefix_suppression_get_value)},
            {"bfd", flag(i, ospf_interface_bfd_get_value)},
            {"ttl_security_val",
             {{"enabled", flag(ttl, ttl_security_enabled_get_value)},
              {"hops", value(ttl, ttl_security_hops_get_value)}}},
            {"enable", flag(i, ospf_interface_enable_get_value)},
            {"authentication_val", authentication(value(i, ospf_interface_authentication_val_get))},
            {"state", text(i, ospf_interface_state_get)},
            {"hello_timer", value(i, ospf_interface_hello_timer_get_value)},
            {"wait_timer", value(i, ospf_interface_wait_timer_get_value)},
            {"dr", address(i, ospf_interface_dr_get)},
            {"bdr", address(i, ospf_interface_bdr_get)},
            {"priority", value_if_held(i, ospf_interface_priority_get_value)}};
  }
  Json of(ospf_neighbor_ops, tbl_ospf_neighbor_record *record) const {
    auto *n = object<ospf_neighbor_ops>(record);
    auto *stats = value_if_held(n, ospf_neighbor_stats_get);
    return {
        {"neighbor_id", address(n, ospf_neighbor_neighbor_id_get)},
        {"address", address(n, ospf_neighbor_address_get)},
        {"dr", address(n, ospf_neighbor_dr_get)},
        {"bdr", address(n, ospf_neighbor_bdr_get)},
        {"state", member_name(session, value(n, ospf_neighbor_state_get), nbr_state_type_print)},
        {"stats",
         stats == nullptr
             ? Json(nullptr)
             : Json{{"nbr_event_count", value(stats, ospf_nbr_stat_nbr_event_count_get_value)},
                    {"nbr_retrans_qlen", value(stats, ospf_nbr_stat_nbr_retrans_qlen_get_value)}}}};
  }
  Json of(ospf_static_neighbor_ops, tbl_ospf_static_neighbor_record *record) const {
    auto *n = object<ospf_static_neighbor_ops>(record);
    return {{"address", address(n, ospf_static_neighbor_address_get)},
            {"cost", value(n, ospf_static_neighbor_cost_get_value)},
            {"poll_interval", value(n, ospf_static_neighbor_poll_interval_get_value)}};
  }
  Json of(area_scope_lsas_ops, tbl_area_scope_lsas_record *record) const {
    return {
        {"lsa_id", value(object<area_scope_lsas_ops>(record), area_scope_lsas_lsa_id_get_value)}};
  }
  Json of(link_scope_lsas_ops, tbl_link_scope_lsas_record *record) const {
    return {{"lsa_type",
             value(object<link_scope_lsas_ops>(record), link_scope_lsas_lsa_type_get_value)}};
  }
  Json of(multi_topology_ops, tbl_multi_topology_record *record) const {
    return {{"name", text(object<multi_topology_ops>(record), multi_topology_name_get)}};
  }
  Json of(area_scope_lsa_ops, tbl_area_scope_lsa_record *record) const {
    return json_of(read_lsa(session, record));
  }
  Json of(link_scope_lsa_ops, tbl_link_scope_lsa_record *record) const {
    return json_of(read_lsa(session, record));
  }
  template <typename Ops>
  Json of(Ops, typename Ops::Record *record) const {
    return json_of(read_row(session, record));
  }
};

template <typename Ops>
void add_fields(Session &session, const RowView &row, Json &line) {
  if (auto *record = record_of<Ops>(row); record != nullptr) {
    line.update(RowJson{{session}}.of(Ops{}, record));
  }
}

// Beside the ID of the router that a row is of.
void add_names(Json &line, const RouterNames &names) {
  constexpr std::pair<const char *, const char *> keys[] = {{"router_id", "router_name"},
                                                            {"neighbor_id", "neighbor_name"},
                                                            {"adv_router", "adv_router_name"}};
  for (const auto &[key, key_of_name] : keys) {
    if (!line.contains(key) || !line[key].is_string()) continue;
    const auto router = parse_dotted(line[key].get<std::string>());
    if (router) line[key_of_name] = name_or_null(*router, names);
  }
}

template <typename... Ops>
void add_fields_of_any(Session &session, const RowView &row, Json &line, std::tuple<Ops...> *) {
  (add_fields<Ops>(session, row, line), ...);
}

}  // namespace

std::string json_line(const LsdbEntry &entry, const RouterNames &names) {
  Json line = {{"kind", entry.kind},
               {"path", entry.path},
               {"instance", entry.instance},
               {"router_id", dotted(entry.router_id)},
               {"area", entry.area ? Json(dotted(*entry.area)) : Json(nullptr)},
               {"interface", entry.interface ? Json(*entry.interface) : Json(nullptr)}};
  const std::string ages = ages_text(entry);
  line["age_as"] = or_null(ages);
  line["adv_router_name"] = name_or_null(entry.lsa.adv_router, names);
  line.update(json_of(entry.lsa));
  return line_of(of_site(entry.site, std::move(line)));
}

std::string json_line(Session &session, const RowView &row, const RouterNames *names) {
  Json line = {{"kind", std::string(row.kind)}, {"path", row.path}};
  add_fields_of_any(session, row, line, static_cast<AllTables *>(nullptr));
  session.check("reading a row");
  if (names != nullptr) add_names(line, *names);
  return line_of(of_site(session.named_site(), std::move(line)));
}

}  // namespace tool
