#include "captured_tree.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdio>

#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/rows.hpp"

namespace captured {

namespace {

using ospf_tables::dotted;
using ospf_tables::space;

std::string dec(std::uint64_t number) { return std::to_string(number); }

std::string hex(std::uint64_t number) {
  char text[20];
  std::snprintf(text, sizeof text, "%llx", static_cast<unsigned long long>(number));
  return text;
}

std::string text_of(const ip_address *address) {
  char text[IP_ADDRESS_TEXT_SIZE] = "";
  ip_address_format(address, text, sizeof text);
  return text;
}

// A single-precision number's bits, out of the field that holds it as a double.
std::string float_bits(double value) {
  char text[9];
  std::snprintf(text, sizeof text, "%08x", std::bit_cast<std::uint32_t>(static_cast<float>(value)));
  return text;
}

// Reads fields, with each failure told at its place.
class Reader {
  kelp_handle *handle() const { return session_.handle(); }

  auto get(auto getter, auto *object, auto... more) {
    std::uint32_t err = 0;
    const auto result = getter(handle(), space, object, more..., &err);
    EXPECT_EQ(err, 0u);
    return result;
  }

 public:
  explicit Reader(ospf_tables::Session &session) : session_(session) {}

  Tree read() {
    tbl_ospf_instance_rev1_table *instances = nullptr;
    std::uint32_t err = 0;
    auto *roots = tbl_ospf_rev1_table_open(handle(), 0, "ospf", 1, &err);
    each<ospf_tables::ospf_rev1_ops>(roots, [&](ospf_rev1 *root, auto *) {
      instances = get(ospf_rev1_instance_get_by_ref, root);
    });
    each<ospf_tables::ospf_instance_rev1_ops>(instances, [&](ospf_instance_rev1 *object,
                                                             auto *record) {
      auto *key = ospf_tables::ospf_instance_rev1_ops::get_key(handle(), space, record);
      const std::uint32_t id = get(ospf_instance_rev1_key_router_id_get_value, key);
      place_ = Lsa{};
      place_.version = get(ospf_instance_rev1_key_af_get_value, key) == ADDR_FAMILY_IPV4 ? 2 : 3;
      if (id != 0) {
        EXPECT_EQ(id >> 16, 0xffu);
        place_.version = id >> 8 & 0xff;
        place_.instance_id = id & 0xff;
      }
      link_lsas(get(ospf_instance_rev1_link_scope_lsas_get_by_ref, object));
      each<ospf_tables::ospf_area_ops>(get(ospf_instance_rev1_area_get_by_ref, object),
                                       [&](ospf_area *area, auto *) { read_area(area); });
    });
    return std::move(tree_);
  }

 private:
  template <typename Ops, typename Act>
  void each(typename Ops::Table *table, Act act) {
    if (table == nullptr) return;
    ospf_tables::for_each_record<Ops>(session_, table, [&](typename Ops::Record *record) {
      act(Ops::get(handle(), space, record), record);
    });
  }

  void read_area(ospf_area *area) {
    place_.area = dotted(get(ospf_area_area_id_get_value, area));
    place_.interface.clear();
    tree_.areas.push_back(dec(place_.version) + ' ' + place_.area);
    each<ospf_tables::area_scope_lsas_ops>(
        get(ospf_area_area_scope_lsas_get_by_ref, area), [&](area_scope_lsas *lsas, auto *) {
          place_.container = get(area_scope_lsas_lsa_id_get_value, lsas);
          each<ospf_tables::area_scope_lsa_ops>(
              get(area_scope_lsas_area_scope_lsa_get_by_ref, lsas),
              [&](area_scope_lsa *row, auto *record) { area_row(row, record); });
        });
    each<ospf_tables::ospf_interface_ops>(
        get(ospf_area_interfaces_get_by_ref, area),
        [&](ospf_interface *row, auto *) { read_interface(row); });
    place_.area.clear();
  }

  void read_interface(ospf_interface *row) {
    Interface seen;
    seen.version = place_.version;
    seen.area = place_.area;
    seen.name = kelp_vstring_text(get(ospf_interface_name_get, row));
    seen.hello_interval = get(ospf_interface_hello_interval_get_value, row);
    seen.dead_interval = get(ospf_interface_dead_interval_get_value, row);
    seen.priority = get(ospf_interface_priority_get_value, row);
    seen.cost = get(ospf_interface_cost_get_value, row);
    seen.network_type = get(ospf_interface_network_type_get_value, row);
    seen.dr = text_of(get(ospf_interface_dr_get, row));
    seen.bdr = text_of(get(ospf_interface_bdr_get, row));
    seen.state = kelp_vstring_text(get(ospf_interface_state_get, row));
    ospf_authentication *authentication = get(ospf_interface_authentication_val_get, row);
    seen.authentication = get(ospf_authentication_auth_type_selection_get_value, authentication);
    if (auto *used = get(ospf_authentication_crypto_algorithm_val_get, authentication)) {
      if (get(ospf_crypto_algorithm_md5_get_value, used)) seen.algorithm = "md5";
      if (get(ospf_crypto_algorithm_hmac_sha_256_get_value, used)) seen.algorithm = "hmac_sha_256";
    }
    each<ospf_tables::ospf_neighbor_ops>(
        get(ospf_interface_neighbor_get_by_ref, row), [&](ospf_neighbor *neighbor, auto *) {
          seen.neighbors.push_back(text_of(get(ospf_neighbor_neighbor_id_get, neighbor)) + ' ' +
                                   text_of(get(ospf_neighbor_address_get, neighbor)) + ' ' +
                                   dec(get(ospf_neighbor_state_get_value, neighbor)));
        });
    each<ospf_tables::ospf_static_neighbor_ops>(
        get(ospf_interface_static_neighbor_get_by_ref, row),
        [&](ospf_static_neighbor *neighbor, auto *) {
          seen.static_neighbors.push_back(text_of(get(ospf_static_neighbor_address_get, neighbor)));
        });
    place_.interface = seen.name;
    tree_.interfaces.push_back(std::move(seen));
    link_lsas(get(ospf_interface_link_scope_lsas_get_by_ref, row));
    place_.interface.clear();
  }

  void link_lsas(tbl_link_scope_lsas_table *table) {
    each<ospf_tables::link_scope_lsas_ops>(table, [&](link_scope_lsas *lsas, auto *) {
      place_.container = get(link_scope_lsas_lsa_type_get_value, lsas);
      EXPECT_EQ(get(link_scope_lsas_area_scope_lsa_db_get_by_ref, lsas), nullptr);
      each<ospf_tables::link_scope_lsa_ops>(
          get(link_scope_lsas_link_scope_lsa_db_get_by_ref, lsas),
          [&](link_scope_lsa *row, auto *record) { link_row(row, record); });
    });
  }

  // What both kinds of row have, under one name.
  struct Parts {
    ospfv2_lsa *v2;
    ospfv3_lsa *v3;
    tbl_ospfv2_link_table *links;
    tbl_ospfv2_topology_table *summary;
    tbl_ospfv2_external_table *external;
    tbl_ospfv3_link_table *v3_links;
    tbl_ospfv3_prefix_list_table *prefixes;
    tbl_ospfv3_ia_prefix_list_table *ia_prefixes;
    link_scope_lsa *link_row = nullptr;
  };

#define READ_ROW(row_type, links_field)                                                  \
  Lsa lsa = place_;                                                                      \
  lsa.completed = get(row_type##_decoded_completed_get_value, row) != 0;                 \
  lsa.raw.resize(get(row_type##_raw_data_len_get_value, row));                           \
  for (std::uint32_t at = 0; at < lsa.raw.size(); ++at) {                                \
    lsa.raw[at] = get(row_type##_raw_data_get_value, row, at);                           \
  }                                                                                      \
  Parts parts{get(row_type##_ospfv2_lsa_val_get, row),                                   \
              get(row_type##_ospfv3_lsa_val_get, row),                                   \
              get(row_type##_##links_field##_get_by_ref, row),                           \
              get(row_type##_summary_get_by_ref, row),                                   \
              get(row_type##_external_get_by_ref, row),                                  \
              get(row_type##_ospfv3_links_get_by_ref, row),                              \
              get(row_type##_prefix_list_get_by_ref, row),                               \
              get(row_type##_ia_prefix_list_get_by_ref, row)};                           \
  row_type##_key *key = ospf_tables::row_type##_ops::get_key(handle(), space, record);   \
  const std::string key_text = dotted(get(row_type##_key_lsa_id_get_value, key)) + ' ' + \
                               text_of(get(row_type##_key_adv_router_get, key))

  template <typename Record>
  void area_row(area_scope_lsa *row, Record *record) {
    READ_ROW(area_scope_lsa, links);
    add(std::move(lsa), parts, key_text);
  }

  template <typename Record>
  void link_row(link_scope_lsa *row, Record *record) {
    READ_ROW(link_scope_lsa, ospfv2_links);
    lsa.is_link_row = true;
    lsa.row_version = get(link_scope_lsa_version_get_value, row);
    parts.link_row = row;
    add(std::move(lsa), parts, key_text);
  }

#undef READ_ROW

  void add(Lsa lsa, const Parts &parts, const std::string &key) {
    // The fields of the other version are as in a new object.
    EXPECT_EQ(lsa.version == 2 ? get(lsa_header_type_get_value, v3_header(parts))
                               : get(ospfv2_header_type_get_value, v2_header(parts)),
              0u);
    if (lsa.version == 2) {
      v2(lsa, parts, key);
    } else {
      v3(lsa, parts, key);
    }
    tree_.lsas.push_back(std::move(lsa));
  }

  ospfv2_header *v2_header(const Parts &parts) { return get(ospfv2_lsa_header_get, parts.v2); }
  lsa_header *v3_header(const Parts &parts) {
    return get(ospfv3_header_lsa_header_val_get, get(ospfv3_lsa_header_get, parts.v3));
  }

  // The text of a sequence number or checksum, of a settled form, as the reference has numbers.
  std::string hex_of(kelp_vstring *field, std::size_t digits) {
    const std::string text = kelp_vstring_text(field);
    EXPECT_EQ(text.substr(0, 2), "0x");
    EXPECT_EQ(text.size(), 2 + digits);
    return hex(std::stoul(text, nullptr, 16));
  }

  // --- OSPFv2 ------------------------------------------------------------------------------------

  unsigned v2_options(ospfv2_header *header) {
    lsa_options *options = get(ospfv2_header_options_get, header);
    EXPECT_EQ(get(lsa_options_Upward_get_value, options), 0u);
    EXPECT_EQ(get(lsa_options_R_get_value, options), 0u);
    EXPECT_EQ(get(lsa_options_AF_get_value, options), 0u);
    const unsigned dc = get(lsa_options_DC_get_value, options);
    const unsigned p = get(lsa_options_P_get_value, options);
    const unsigned mc = get(lsa_options_MC_get_value, options);
    const unsigned e = get(lsa_options_E_get_value, options);
    const unsigned mt = get(lsa_options_MT_get_value, options);
    EXPECT_EQ(get(ospfv2_header_flag_options_get_value, header),
              dc << 0 | p << 1 | mc << 2 | e << 3 | mt << 5);
    return dc << 5 | p << 3 | mc << 2 | e << 1 | mt;
  }

  void v2(Lsa &lsa, const Parts &parts, const std::string &key) {
    ospfv2_header *header = v2_header(parts);
    const unsigned type = get(ospfv2_header_type_get_value, header);
    const std::string id = text_of(get(ospfv2_header_lsa_id_get, header));
    const std::string router = dotted(get(ospfv2_header_adv_router_get_value, header));
    const std::string sequence = hex_of(get(ospfv2_header_seq_num_get, header), 8);
    const std::string checksum = hex_of(get(ospfv2_header_checksum_get, header), 4);
    EXPECT_EQ(key, id + ' ' + router);
    EXPECT_EQ(type, lsa.container);
    lsa.age = get(ospfv2_header_age_get_value, header);
    lsa.name = hex(type) + ' ' + id + ' ' + router + ' ' + sequence + ' ' + checksum;
    lsa.fields = "options=" + hex(v2_options(header)) + " type=" + hex(type) + " id=" + id +
                 " adv=" + router + " seq=" + sequence + " checksum=" + checksum +
                 " length=" + dec(get(ospfv2_header_length_get_value, header));
    const unsigned opaque = get(ospfv2_header_opaque_type_get_value, header);
    const unsigned opaque_id = get(ospfv2_header_opaque_id_get_value, header);
    if (type >= 9) {
      EXPECT_EQ(dotted(opaque << 24 | opaque_id), id);
    } else {
      EXPECT_EQ(opaque + opaque_id, 0u);
    }
    lsa.fields += v2_body(type, parts, opaque);
  }

  std::string v2_body(unsigned type, const Parts &parts, unsigned opaque) {
    ospfv2_lsa_body *body = get(ospfv2_lsa_lsa_body_get, parts.v2);
    switch (type) {
      case 1:
        return v2_router(body, parts);
      case 2: {
        ospfv2_network *network = get(ospfv2_lsa_body_network_get, body);
        std::string out =
            " mask=" + text_of(get(ospfv2_network_network_mask_get, network)) + " attached=";
        const std::uint32_t count = get(ospfv2_network_attached_router_num_get_value, network);
        for (std::uint32_t at = 0; at < count; ++at) {
          out += (at == 0 ? "" : ",") +
                 dotted(get(ospfv2_network_attached_router_get_value, network, at));
        }
        return out;
      }
      case 3:
      case 4:
        return " mask=" + text_of(get(ospfv2_lsa_body_summary_mask_get, body)) +
               topologies(parts.summary, " [", " ", "]");
      case 5:
      case 7: {
        std::string out = " mask=" + text_of(get(ospfv2_lsa_body_external_mask_get, body));
        each<ospf_tables::ospfv2_external_ops>(parts.external, [&](ospfv2_external *entry, auto *) {
          out += " [" + dec(get(ospfv2_external_mt_id_get_value, entry)) + ' ' +
                 dec(get(ospfv2_external_metric_get_value, entry)) + ' ' +
                 text_of(get(ospfv2_external_forwarding_address_get, entry)) + ' ' +
                 dec(get(ospfv2_external_external_route_tag_get_value, entry)) + ']';
        });
        return out;
      }
      default:
        return parts.link_row == nullptr ? "" : tlvs(parts.link_row, opaque);
    }
  }

  std::string topologies(tbl_ospfv2_topology_table *table, const char *before, const char *between,
                         const char *behind) {
    std::string out;
    each<ospf_tables::ospfv2_topology_ops>(table, [&](ospfv2_topology *topology, auto *) {
      out += before + dec(get(ospfv2_topology_mt_id_get_value, topology)) + between +
             dec(get(ospfv2_topology_metric_get_value, topology)) + behind;
    });
    return out;
  }

  std::string v2_router(ospfv2_lsa_body *body, const Parts &parts) {
    ospfv2_lsa_body_flags *flags = get(ospfv2_lsa_body_lsa_flags_get, body);
    const unsigned v = get(ospfv2_lsa_body_flags_V_get_value, flags);
    const unsigned e = get(ospfv2_lsa_body_flags_E_get_value, flags);
    const unsigned b = get(ospfv2_lsa_body_flags_B_get_value, flags);
    EXPECT_EQ(get(ospfv2_lsa_body_body_flag_options_get_value, body), v | e << 1 | b << 2);
    std::vector<std::string> links;
    each<ospf_tables::ospfv2_link_ops>(parts.links, [&](ospfv2_link *link, auto *record) {
      auto *key = ospf_tables::ospfv2_link_ops::get_key(handle(), space, record);
      links.push_back(" [" + dotted(get(ospfv2_link_key_link_id_get_value, key)) + ' ' +
                      dotted(get(ospfv2_link_key_link_data_get_value, key)) + ' ' +
                      dec(get(ospfv2_link_type_get_value, link)) +
                      topologies(get(ospfv2_link_topology_get_by_ref, link), " ", ":", "") + ']');
    });
    std::ranges::sort(links);
    std::string out = " flags=" + hex(b | e << 1 | v << 2) +
                      " links=" + dec(get(ospfv2_lsa_body_num_of_links_get_value, body));
    for (const std::string &link : links) out += link;
    return out;
  }

  std::string te_link(ospfv2_link_tlv *link) {
    const auto addresses = [&](auto count, auto get_address) {
      std::string out;
      for (std::uint32_t at = 0; at < get(count, link); ++at) {
        out += (at == 0 ? "" : ",") + text_of(get(get_address, link, at));
      }
      return out;
    };
    return " (type=" + dec(get(ospfv2_link_tlv_link_type_get_value, link)) +
           " id=" + dotted(get(ospfv2_link_tlv_link_id_get_value, link)) + " local=" +
           addresses(ospfv2_link_tlv_local_if_ipv4_addr_num_get_value,
                     ospfv2_link_tlv_local_if_ipv4_addr_get) +
           " remote=" +
           addresses(ospfv2_link_tlv_local_remote_ipv4_addr_num_get_value,
                     ospfv2_link_tlv_local_remote_ipv4_addr_get) +
           " metric=" + dec(get(ospfv2_link_tlv_te_metric_get_value, link)) +
           " max=" + float_bits(get(ospfv2_link_tlv_max_bandwidth_get_value, link)) +
           " reservable=" +
           float_bits(get(ospfv2_link_tlv_max_reservable_bandwidth_get_value, link)) +
           " unreserved=" + float_bits(get(ospfv2_link_tlv_unreserved_bandwidth_get_value, link)) +
           " group=" + hex(get(ospfv2_link_tlv_admin_group_get_value, link)) + ')';
  }

  std::string sub_tlvs(tbl_ospfv2_unknown_sub_tlv_table *table) {
    std::string out;
    each<ospf_tables::ospfv2_unknown_sub_tlv_ops>(table, [&](ospfv2_unknown_sub_tlv *sub, auto *) {
      out += " (" + dec(get(ospfv2_unknown_sub_tlv_type_get_value, sub)) + '/' +
             dec(get(ospfv2_unknown_sub_tlv_length_get_value, sub)) + " raw=";
      const std::uint32_t count = get(ospfv2_unknown_sub_tlv_value_len_get_value, sub);
      for (std::uint32_t at = 0; at < count; ++at) {
        char octet[3];
        std::snprintf(octet, sizeof octet, "%02x",
                      unsigned{get(ospfv2_unknown_sub_tlv_value_get_value, sub, at)});
        out += octet;
      }
      out += ')';
    });
    return out;
  }

  std::string tlvs(link_scope_lsa *row, unsigned opaque) {
    std::string out;
    if (opaque == 1) {
      out += " router=" + text_of(get(link_scope_lsa_router_address_get, row)) +
             te_link(get(link_scope_lsa_tlv_get, row)) +
             sub_tlvs(get(link_scope_lsa_unknown_sub_tlv_get_by_ref, row));
    }
    each<ospf_tables::ospfv2_unknown_tlv_ops>(
        get(link_scope_lsa_unknown_tlv_get_by_ref, row), [&](ospfv2_unknown_tlv *tlv, auto *) {
          out += " tlv=" + dec(get(ospfv2_unknown_tlv_type_get_value, tlv)) + '/' +
                 dec(get(ospfv2_unknown_tlv_length_get_value, tlv)) + " raw=";
          const std::uint32_t count = get(ospfv2_unknown_tlv_value_num_get_value, tlv);
          for (std::uint32_t at = 0; at < count; ++at) {
            char octet[3];
            std::snprintf(octet, sizeof octet, "%02x",
                          unsigned{get(ospfv2_unknown_tlv_value_get_value, tlv, at)});
            out += octet;
          }
          const std::string address = text_of(get(ospfv2_unknown_tlv_router_address_get, tlv));
          if (!address.empty()) out += " router=" + address;
          const std::string link = te_link(get(ospfv2_unknown_tlv_tlv_get, tlv));
          if (link.find("(type=0 ") == std::string::npos) out += link;
          out += sub_tlvs(get(ospfv2_unknown_tlv_unknown_sub_tlv_get_by_ref, tlv));
        });
    return out;
  }

  // --- OSPFv3 ------------------------------------------------------------------------------------

  // The boolean form, after it was held against the flag set of the same bits.
  unsigned v3_options(ospfv3_lsa_options *options, std::uint32_t flag_set) {
    const unsigned dc = get(ospfv3_lsa_options_DC_get_value, options);
    const unsigned r = get(ospfv3_lsa_options_R_get_value, options);
    const unsigned n = get(ospfv3_lsa_options_N_get_value, options);
    const unsigned e = get(ospfv3_lsa_options_E_get_value, options);
    const unsigned v6 = get(ospfv3_lsa_options_V6_get_value, options);
    const unsigned af = get(ospfv3_lsa_options_AF_get_value, options);
    EXPECT_EQ(flag_set, dc | r << 1 | n << 2 | e << 3 | v6 << 4 | af << 5);
    return v6 | e << 1 | n << 3 | r << 4 | dc << 5 | af << 8;
  }

  void v3(Lsa &lsa, const Parts &parts, const std::string &key) {
    ospfv3_header *whole = get(ospfv3_lsa_header_get, parts.v3);
    lsa_header *header = get(ospfv3_header_lsa_header_val_get, whole);
    EXPECT_EQ(v3_options(get(ospfv3_header_lsa_hdr_options_get, whole),
                         get(ospfv3_header_lsa_flag_hdr_options_get_value, whole)),
              0u);
    const unsigned type = get(lsa_header_type_get_value, header);
    const std::string id = text_of(get(ospfv3_header_lsa_id_get, whole));
    const std::string router = dotted(get(lsa_header_adv_router_get_value, header));
    const std::string sequence = hex_of(get(lsa_header_seq_num_get, header), 8);
    const std::string checksum = hex_of(get(lsa_header_checksum_get, header), 4);
    EXPECT_EQ(key, id + ' ' + router);
    EXPECT_EQ(type, lsa.container);
    lsa.age = get(lsa_header_age_get_value, header);
    lsa.name = hex(type) + ' ' + id + ' ' + router + ' ' + sequence + ' ' + checksum;
    lsa.fields = "options=0 type=" + hex(type) + " id=" + id + " adv=" + router +
                 " seq=" + sequence + " checksum=" + checksum +
                 " length=" + dec(get(lsa_header_length_get_value, header)) + v3_body(type, parts);
  }

  std::string v3_body(unsigned type, const Parts &parts) {
    ospfv3_lsa_body *body = get(ospfv3_lsa_lsa_body_get, parts.v3);
    switch (type) {
      case 0x2001:
        return v3_router(body, parts);
      case 0x2002:
        return v3_network(get(ospfv3_lsa_body_network_get, body));
      case 0x2003:
        return inter_area_prefix(get(ospfv3_lsa_body_prefix_get, body));
      case 0x2004:
        return inter_area_router(get(ospfv3_lsa_body_ia_router_get, body));
      case 0x4005:
        return external(get(ospfv3_lsa_body_lsa_external_get, body));
      case 0x2007:
        return external(
            get(ospfv3_nssa_lsa_nssa_external_get, get(ospfv3_lsa_body_nssa_get, body)));
      case 0x0008:
        return v3_link(get(ospfv3_lsa_body_link_data_get, body)) +
               prefixes<ospf_tables::ospfv3_prefix_list_ops>(parts.prefixes);
      case 0x2009:
        return intra_area_prefix(get(ospfv3_lsa_body_ia_prefix_get, body)) +
               prefixes<ospf_tables::ospfv3_ia_prefix_list_ops>(parts.ia_prefixes);
      default:
        return "";
    }
  }

  std::string v3_network(ospfv3_network *field) {
    std::string out = " options=" +
                      hex(v3_options(get(ospfv3_network_lsa_net_options_get, field),
                                     get(ospfv3_network_lsa_flag_hdr_options_get_value, field))) +
                      " attached=";
    const std::uint32_t count = get(ospfv3_network_attached_router_num_get_value, field);
    for (std::uint32_t at = 0; at < count; ++at) {
      out +=
          (at == 0 ? "" : ",") + dotted(get(ospfv3_network_attached_router_get_value, field, at));
    }
    return out;
  }

  std::string inter_area_prefix(ospfv3_inter_area_prefix *field) {
    return " metric=" + dec(get(ospfv3_inter_area_prefix_metric_get_value, field)) +
           prefix(get(ospfv3_inter_area_prefix_ia_prefix_get, field),
                  get(ospfv3_inter_area_prefix_ia_prefix_options_get, field));
  }

  std::string inter_area_router(ospfv3_inter_area_router *field) {
    return " options=" +
           hex(v3_options(get(ospfv3_inter_area_router_lsa_ia_options_get, field),
                          get(ospfv3_inter_area_router_lsa_flag_hdr_options_get_value, field))) +
           " metric=" + dec(get(ospfv3_inter_area_router_metric_get_value, field)) + " router=" +
           dotted(get(ospfv3_inter_area_router_destination_router_id_get_value, field));
  }

  std::string v3_link(ospfv3_link_data *field) {
    return " priority=" + dec(get(ospfv3_link_data_rtr_priority_get_value, field)) + " options=" +
           hex(v3_options(get(ospfv3_link_data_lsa_ld_options_get, field),
                          get(ospfv3_link_data_lsa_flag_hdr_options_get_value, field))) +
           " address=" + text_of(get(ospfv3_link_data_link_local_interface_address_get, field)) +
           " prefixes=" + dec(get(ospfv3_link_data_num_of_prefixes_get_value, field));
  }

  std::string intra_area_prefix(ospfv3_intra_area_prefix *field) {
    return " prefixes=" + dec(get(ospfv3_intra_area_prefix_num_of_prefixes_get_value, field)) +
           " ref=" + hex(get(ospfv3_intra_area_prefix_referenced_ls_type_get_value, field)) +
           " refid=" +
           dotted(get(ospfv3_intra_area_prefix_referenced_link_state_id_get_value, field)) +
           " refadv=" + text_of(get(ospfv3_intra_area_prefix_referenced_adv_router_get, field));
  }

  std::string prefix(kelp_vstring *text, kelp_vstring *options) {
    return " [" + std::string(kelp_vstring_text(text)) + ' ' + hex_of(options, 2) + ']';
  }

  template <typename Ops>
  std::string prefixes(typename Ops::Table *table) {
    std::vector<std::string> all;
    each<Ops>(table, [&](ospfv3_prefix_list *row, auto *) {
      all.push_back(prefix(get(ospfv3_prefix_list_prefix_get, row),
                           get(ospfv3_prefix_list_prefix_options_get, row)));
    });
    std::ranges::sort(all);
    std::string out;
    for (const std::string &one : all) out += one;
    return out;
  }

  std::string external(ospfv3_lsa_external *field) {
    const unsigned e =
        get(ospfv3_lsa_external_flags_E_get_value, get(ospfv3_lsa_external_flags_val_get, field));
    const std::string forward = text_of(get(ospfv3_lsa_external_forwarding_address_get, field));
    return " flags=" + hex(e << 2) +
           " metric=" + dec(get(ospfv3_lsa_external_metric_get_value, field)) +
           " ref=" + hex(get(ospfv3_lsa_external_referenced_ls_type_get_value, field)) +
           " refid=" + dotted(get(ospfv3_lsa_external_referenced_link_state_id_get_value, field)) +
           " forward=" + (forward.empty() ? "::" : forward) +
           " tag=" + dec(get(ospfv3_lsa_external_external_route_tag_get_value, field)) +
           prefix(get(ospfv3_lsa_external_external_prefix_get, field),
                  get(ospfv3_lsa_external_external_prefix_options_get, field));
  }

  std::string v3_router(ospfv3_lsa_body *body, const Parts &parts) {
    ospfv3_lsa_body_flags *flags = get(ospfv3_lsa_body_lsa_flags_get, body);
    const unsigned v = get(ospfv3_lsa_body_flags_V_get_value, flags);
    const unsigned e = get(ospfv3_lsa_body_flags_E_get_value, flags);
    const unsigned b = get(ospfv3_lsa_body_flags_B_get_value, flags);
    const unsigned nt = get(ospfv3_lsa_body_flags_Nt_get_value, flags);
    EXPECT_EQ(get(ospfv3_lsa_body_lsa_body_flags_get_value, body), v | e << 1 | b << 2 | nt << 3);
    std::vector<std::string> links;
    each<ospf_tables::ospfv3_link_ops>(parts.v3_links, [&](ospfv3_link *link, auto *record) {
      auto *key = ospf_tables::ospfv3_link_ops::get_key(handle(), space, record);
      links.push_back(" [" + dec(get(ospfv3_link_type_get_value, link)) + ' ' +
                      dec(get(ospfv3_link_metric_get_value, link)) + ' ' +
                      dec(get(ospfv3_link_key_interface_id_get_value, key)) + ' ' +
                      dec(get(ospfv3_link_key_neighbor_interface_id_get_value, key)) + ' ' +
                      dotted(get(ospfv3_link_key_neighbor_router_id_get_value, key)) + ']');
    });
    std::ranges::sort(links);
    std::string out = " flags=" + hex(b | e << 1 | v << 2 | nt << 4) + " options=" +
                      hex(v3_options(get(ospfv3_lsa_body_lsa_body_options_get, body),
                                     get(ospfv3_lsa_body_lsa_flag_options_get_value, body)));
    for (const std::string &link : links) out += link;
    return out;
  }

  ospf_tables::Session &session_;
  Lsa place_;  // where the rows at hand are
  Tree tree_;
};

}  // namespace

Tree read(ospf_tables::Session &session) { return Reader(session).read(); }

}  // namespace captured
