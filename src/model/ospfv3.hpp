// The rows of OSPFv3: an LSA, its pieces, and the row types of the tables that hold what repeats in
// one. Spellings and widths that differ between like fields are the schema's own.
#pragma once

#include "model/edition.hpp"
#include "model/flag_sets.hpp"

namespace harbor::model {

namespace fields::lsa_header {
inline constexpr Field age = scalar("age", Kind::u16, "Age in seconds.");
inline constexpr Field type = scalar(
    "type", Kind::u16, "The LS type with its function and scope bits, as the producer numbers it.");
inline constexpr Field adv_router =
    scalar("adv_router", Kind::u32, "Router ID of the advertising router.");
inline constexpr Field seq_num = scalar(
    "seq_num", Kind::text, "The sequence number as text; the producer chooses the notation.");
inline constexpr Field checksum =
    scalar("checksum", Kind::text, "The checksum as text; the producer chooses the notation.");
inline constexpr Field length =
    scalar("length", Kind::u16, "Length of the LSA in octets, header included.");
}  // namespace fields::lsa_header
namespace types {
inline constexpr Structure lsa_header =
    structure<fields::lsa_header::age, fields::lsa_header::type, fields::lsa_header::adv_router,
              fields::lsa_header::seq_num, fields::lsa_header::checksum,
              fields::lsa_header::length>(
        "lsa_header", "The fields that the headers of both protocol versions share by name.");
}  // namespace types

namespace fields::ospfv3_lsa_options {
inline constexpr Field DC = scalar("DC", Kind::boolean, "Demand circuits are handled.");
inline constexpr Field R = scalar("R", Kind::boolean, "The originator is an active router.");
inline constexpr Field N = scalar("N", Kind::boolean, "Type 7 LSAs are handled.");
inline constexpr Field E = scalar("E", Kind::boolean, "AS-external LSAs are accepted.");
inline constexpr Field V6 = scalar("V6", Kind::boolean, "The router takes part in IPv6 routing.");
inline constexpr Field AF = scalar("AF", Kind::boolean, "Address families are supported.");
}  // namespace fields::ospfv3_lsa_options
namespace types {
inline constexpr Structure ospfv3_lsa_options =
    structure<fields::ospfv3_lsa_options::DC, fields::ospfv3_lsa_options::R,
              fields::ospfv3_lsa_options::N, fields::ospfv3_lsa_options::E,
              fields::ospfv3_lsa_options::V6, fields::ospfv3_lsa_options::AF>(
        "ospfv3_lsa_options", "The OSPFv3 option bits, one boolean each.");
}  // namespace types

namespace fields::ospfv3_header {
inline constexpr Field lsa_id = scalar("lsa_id", Kind::address, "The link-state ID.");
inline constexpr Field lsa_header_val =
    embedded("lsa_header_val", types::lsa_header,
             "The part of the header that both protocol versions share by name.");
inline constexpr Field lsa_hdr_options =
    embedded("lsa_hdr_options", types::ospfv3_lsa_options, "The option bits as booleans.");
inline constexpr Field lsa_flag_hdr_options =
    flagged("lsa_flag_hdr_options", flag_sets::ospfv3_lsa_flag_options,
            "The option bits as a flag set; filling one form does not fill the other.")
        .from_variant(1);
}  // namespace fields::ospfv3_header
namespace types {
inline constexpr Structure ospfv3_header =
    structure<fields::ospfv3_header::lsa_id, fields::ospfv3_header::lsa_header_val,
              fields::ospfv3_header::lsa_hdr_options, fields::ospfv3_header::lsa_flag_hdr_options>(
        "ospfv3_header", "The header of an OSPFv3 LSA.");
}  // namespace types

namespace fields::ospfv3_lsa_body_flags {
inline constexpr Field V =
    scalar("V", Kind::boolean, "The router is an endpoint of a virtual link.");
inline constexpr Field E = scalar("E", Kind::boolean, "The router is an AS boundary router.");
inline constexpr Field B = scalar("B", Kind::boolean, "The router is an area border router.");
inline constexpr Field Nt =
    scalar("Nt", Kind::boolean, "The router translates type 7 LSAs whatever others do.");
}  // namespace fields::ospfv3_lsa_body_flags
namespace types {
inline constexpr Structure ospfv3_lsa_body_flags =
    structure<fields::ospfv3_lsa_body_flags::V, fields::ospfv3_lsa_body_flags::E,
              fields::ospfv3_lsa_body_flags::B, fields::ospfv3_lsa_body_flags::Nt>(
        "ospfv3_lsa_body_flags", "The bits of an OSPFv3 router LSA, one boolean each.");
}  // namespace types

namespace fields::ospfv3_network {
inline constexpr Field lsa_net_options =
    embedded("lsa_net_options", types::ospfv3_lsa_options, "The option bits as booleans.");
inline constexpr Field attached_router_num =
    counter("attached_router_num", "Number of attached routers.");
inline constexpr Field attached_router =
    array("attached_router", Kind::u32, "Router IDs of the attached routers.");
inline constexpr Field lsa_flag_hdr_options =
    flagged("lsa_flag_hdr_options", flag_sets::ospfv3_lsa_flag_options,
            "The option bits as a flag set; filling one form does not fill the other.")
        .from_variant(1);
}  // namespace fields::ospfv3_network
namespace types {
inline constexpr Structure ospfv3_network =
    structure<fields::ospfv3_network::lsa_net_options, fields::ospfv3_network::attached_router_num,
              fields::ospfv3_network::attached_router,
              fields::ospfv3_network::lsa_flag_hdr_options>("ospfv3_network",
                                                            "What an OSPFv3 network LSA says.");
}  // namespace types

namespace fields::ospfv3_inter_area_prefix {
inline constexpr Field metric = scalar("metric", Kind::u32, "Cost of the route to the prefix.");
inline constexpr Field ia_prefix = scalar("ia_prefix", Kind::text, "The prefix as text.");
inline constexpr Field ia_prefix_options =
    scalar("ia_prefix_options", Kind::text, "The prefix's options as text.");
}  // namespace fields::ospfv3_inter_area_prefix
namespace types {
inline constexpr Structure ospfv3_inter_area_prefix =
    structure<fields::ospfv3_inter_area_prefix::metric, fields::ospfv3_inter_area_prefix::ia_prefix,
              fields::ospfv3_inter_area_prefix::ia_prefix_options>(
        "ospfv3_inter_area_prefix", "What an inter-area prefix LSA says.");
}  // namespace types

namespace fields::ospfv3_inter_area_router {
inline constexpr Field lsa_ia_options =
    embedded("lsa_ia_options", types::ospfv3_lsa_options,
             "The destination router's option bits as booleans.");
inline constexpr Field metric = scalar("metric", Kind::u32, "Cost of the route to the router.");
inline constexpr Field destination_router_id =
    scalar("destination_router_id", Kind::u32, "Router ID of the router described.");
inline constexpr Field lsa_flag_hdr_options =
    flagged("lsa_flag_hdr_options", flag_sets::ospfv3_lsa_flag_options,
            "The option bits as a flag set; filling one form does not fill the other.")
        .from_variant(1);
}  // namespace fields::ospfv3_inter_area_router
namespace types {
inline constexpr Structure ospfv3_inter_area_router =
    structure<fields::ospfv3_inter_area_router::lsa_ia_options,
              fields::ospfv3_inter_area_router::metric,
              fields::ospfv3_inter_area_router::destination_router_id,
              fields::ospfv3_inter_area_router::lsa_flag_hdr_options>(
        "ospfv3_inter_area_router", "What an inter-area router LSA says.");
}  // namespace types

namespace fields::ospfv3_lsa_external_flags {
inline constexpr Field E =
    scalar("E", Kind::boolean, "The metric is of type 2, larger than any cost inside the AS.");
}  // namespace fields::ospfv3_lsa_external_flags
namespace types {
inline constexpr Structure ospfv3_lsa_external_flags =
    structure<fields::ospfv3_lsa_external_flags::E>("ospfv3_lsa_external_flags",
                                                    "The bits of an OSPFv3 AS-external LSA.");
}  // namespace types

namespace fields::ospfv3_lsa_external {
inline constexpr Field metric = scalar("metric", Kind::u32, "Cost of the route.");
inline constexpr Field flags_val =
    embedded("flags_val", types::ospfv3_lsa_external_flags, "The LSA's flag bits.");
inline constexpr Field referenced_ls_type = scalar(
    "referenced_ls_type", Kind::u16, "LS type of an LSA that belongs to this one; 0 for none.");
inline constexpr Field external_prefix =
    scalar("external_prefix", Kind::text, "The prefix as text.");
inline constexpr Field external_prefix_options =
    scalar("external_prefix_options", Kind::text, "The prefix's options as text.");
inline constexpr Field forwarding_address =
    scalar("forwarding_address", Kind::address,
           "Where traffic for the destination is to be sent; unset for the advertising router.");
inline constexpr Field external_route_tag =
    scalar("external_route_tag", Kind::u32, "The tag that the external route carries.");
inline constexpr Field referenced_link_state_id =
    scalar("referenced_link_state_id", Kind::u32, "Link-state ID of the LSA referred to.");
}  // namespace fields::ospfv3_lsa_external
namespace types {
inline constexpr Structure ospfv3_lsa_external =
    structure<fields::ospfv3_lsa_external::metric, fields::ospfv3_lsa_external::flags_val,
              fields::ospfv3_lsa_external::referenced_ls_type,
              fields::ospfv3_lsa_external::external_prefix,
              fields::ospfv3_lsa_external::external_prefix_options,
              fields::ospfv3_lsa_external::forwarding_address,
              fields::ospfv3_lsa_external::external_route_tag,
              fields::ospfv3_lsa_external::referenced_link_state_id>(
        "ospfv3_lsa_external", "What an OSPFv3 AS-external LSA says.");
}  // namespace types

namespace fields::ospfv3_nssa {
inline constexpr Field lsa_nssa_external =
    embedded("lsa_nssa_external", types::ospfv3_lsa_external, "The external data of the LSA.");
}  // namespace fields::ospfv3_nssa
namespace types {
inline constexpr Structure ospfv3_nssa = structure<fields::ospfv3_nssa::lsa_nssa_external>(
    "ospfv3_nssa", "What an OSPFv3 NSSA LSA says: an external LSA by another name.");
}  // namespace types

namespace fields::ospfv3_link_data {
inline constexpr Field rtr_priority =
    scalar("rtr_priority", Kind::u8, "The originator's router priority on the link.");
inline constexpr Field lsa_ld_options =
    embedded("lsa_ld_options", types::ospfv3_lsa_options, "The option bits as booleans.");
inline constexpr Field link_local_interface_address =
    scalar("link_local_interface_address", Kind::address,
           "The originator's link-local address on the link.");
inline constexpr Field num_of_prefixes =
    scalar("num_of_prefixes", Kind::u32, "Number of prefixes as advertised; related to no table.");
inline constexpr Field lsa_flag_hdr_options =
    flagged("lsa_flag_hdr_options", flag_sets::ospfv3_lsa_flag_options,
            "The option bits as a flag set; filling one form does not fill the other.")
        .from_variant(1);
}  // namespace fields::ospfv3_link_data
namespace types {
inline constexpr Structure ospfv3_link_data =
    structure<fields::ospfv3_link_data::rtr_priority, fields::ospfv3_link_data::lsa_ld_options,
              fields::ospfv3_link_data::link_local_interface_address,
              fields::ospfv3_link_data::num_of_prefixes,
              fields::ospfv3_link_data::lsa_flag_hdr_options>("ospfv3_link_data",
                                                              "What a link LSA says.");
}  // namespace types

namespace fields::ospfv3_intra_area_prefix {
inline constexpr Field referenced_ls_type = scalar(
    "referenced_ls_type", Kind::u16, "LS type of an LSA that belongs to this one; 0 for none.");
inline constexpr Field referenced_link_state_id =
    scalar("referenced_link_state_id", Kind::u32, "Link-state ID of the LSA referred to.");
inline constexpr Field referenced_adv_router =
    scalar("referenced_adv_router", Kind::address, "Advertising router of the LSA referred to.");
inline constexpr Field num_of_prefixes =
    scalar("num_of_prefixes", Kind::u16, "Number of prefixes as advertised; related to no table.");
}  // namespace fields::ospfv3_intra_area_prefix
namespace types {
inline constexpr Structure ospfv3_intra_area_prefix =
    structure<fields::ospfv3_intra_area_prefix::referenced_ls_type,
              fields::ospfv3_intra_area_prefix::referenced_link_state_id,
              fields::ospfv3_intra_area_prefix::referenced_adv_router,
              fields::ospfv3_intra_area_prefix::num_of_prefixes>(
        "ospfv3_intra_area_prefix", "What an intra-area prefix LSA says.");
}  // namespace types

namespace fields::ospfv3_lsa_body {
inline constexpr Field lsa_flags =
    embedded("lsa_flags", types::ospfv3_lsa_body_flags, "A router LSA's bits as booleans.");
inline constexpr Field lsa_body_options = embedded("lsa_body_options", types::ospfv3_lsa_options,
                                                   "A router LSA's option bits as booleans.");
inline constexpr Field network =
    embedded("network", types::ospfv3_network, "What a network LSA says.");
inline constexpr Field prefix =
    embedded("prefix", types::ospfv3_inter_area_prefix, "What an inter-area prefix LSA says.");
inline constexpr Field ia_router =
    embedded("ia_router", types::ospfv3_inter_area_router, "What an inter-area router LSA says.");
inline constexpr Field lsa_external =
    embedded("lsa_external", types::ospfv3_lsa_external, "What an AS-external LSA says.");
inline constexpr Field nssa = embedded("nssa", types::ospfv3_nssa, "What an NSSA LSA says.");
inline constexpr Field link_data =
    embedded("link_data", types::ospfv3_link_data, "What a link LSA says.");
inline constexpr Field ia_prefix =
    embedded("ia_prefix", types::ospfv3_intra_area_prefix, "What an intra-area prefix LSA says.");
inline constexpr Field lsa_flag_options =
    flagged("lsa_flag_options", flag_sets::ospfv3_lsa_flag_options,
            "A router LSA's option bits as a flag set; filling one form does not fill the other.")
        .from_variant(1);
inline constexpr Field lsa_body_flags =
    flagged("lsa_body_flags", flag_sets::ospfv3_lsa_body_flag_options,
            "A router LSA's bits as a flag set; filling one form does not fill the other.")
        .from_variant(1);
}  // namespace fields::ospfv3_lsa_body
namespace types {
inline constexpr Structure ospfv3_lsa_body =
    structure<fields::ospfv3_lsa_body::lsa_flags, fields::ospfv3_lsa_body::lsa_body_options,
              fields::ospfv3_lsa_body::network, fields::ospfv3_lsa_body::prefix,
              fields::ospfv3_lsa_body::ia_router, fields::ospfv3_lsa_body::lsa_external,
              fields::ospfv3_lsa_body::nssa, fields::ospfv3_lsa_body::link_data,
              fields::ospfv3_lsa_body::ia_prefix, fields::ospfv3_lsa_body::lsa_flag_options,
              fields::ospfv3_lsa_body::lsa_body_flags>(
        "ospfv3_lsa_body", "The body of an OSPFv3 LSA: all kinds side by side.");
}  // namespace types

namespace fields::ospfv3_lsa {
inline constexpr Field header = embedded("header", types::ospfv3_header, "The LSA's header.");
inline constexpr Field lsa_body = embedded("lsa_body", types::ospfv3_lsa_body,
                                           "The LSA's body, with a place for every kind of LSA.");
}  // namespace fields::ospfv3_lsa
namespace types {
inline constexpr Structure ospfv3_lsa =
    structure<fields::ospfv3_lsa::header, fields::ospfv3_lsa::lsa_body>(
        "ospfv3_lsa", "An OSPFv3 LSA: header and body.");
}  // namespace types

namespace fields::ospfv3_link_key {
inline constexpr Field interface_id =
    scalar("interface_id", Kind::u32, "The advertising router's interface ID.");
inline constexpr Field neighbor_interface_id =
    scalar("neighbor_interface_id", Kind::u32, "The neighbour's interface ID.");
inline constexpr Field neighbor_router_id =
    scalar("neighbor_router_id", Kind::u32, "The neighbour's router ID.");
}  // namespace fields::ospfv3_link_key
namespace types {
inline constexpr Structure ospfv3_link_key =
    structure<fields::ospfv3_link_key::interface_id, fields::ospfv3_link_key::neighbor_interface_id,
              fields::ospfv3_link_key::neighbor_router_id>(
        "ospfv3_link_key", "What identifies a link of an OSPFv3 router LSA.");
}  // namespace types

namespace fields::ospfv3_link {
inline constexpr Field type =
    scalar("type", Kind::u8, "The link's type: 1 point-to-point, 2 transit, 4 virtual.");
inline constexpr Field metric = scalar("metric", Kind::u16, "Cost of using the interface.");
}  // namespace fields::ospfv3_link
namespace types {
inline constexpr Structure ospfv3_link =
    structure<fields::ospfv3_link::type, fields::ospfv3_link::metric>(
        "ospfv3_link", "One link of an OSPFv3 router LSA.");
}  // namespace types

namespace fields::ospfv3_prefix_list {
inline constexpr Field prefix = scalar("prefix", Kind::text, "The prefix as text.");
inline constexpr Field prefix_options =
    scalar("prefix_options", Kind::text, "The prefix's options as text.");
}  // namespace fields::ospfv3_prefix_list
namespace types {
inline constexpr Structure ospfv3_prefix_list =
    structure<fields::ospfv3_prefix_list::prefix, fields::ospfv3_prefix_list::prefix_options>(
        "ospfv3_prefix_list", "A prefix of a link LSA or an intra-area prefix LSA.");
}  // namespace types

}  // namespace harbor::model
