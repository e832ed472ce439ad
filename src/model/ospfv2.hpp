// The rows of OSPFv2: an LSA, its pieces, and the row types of the tables that hold what repeats in
// one. ospfv2_lsa_body is no choice: every kind of LSA has its place in it, side by side.
#pragma once

#include "model/edition.hpp"
#include "model/enumerations.hpp"
#include "model/flag_sets.hpp"

namespace harbor::model {

namespace fields::ospfv2_unknown_sub_tlv {
inline constexpr Field type = scalar("type", Kind::u16, "The sub-TLV's type.");
inline constexpr Field length = scalar(
    "length", Kind::u16, "The sub-TLV's length in octets as advertised, whatever value_len says.");
inline constexpr Field value_len = counter("value_len", "Number of octets in value.");
inline constexpr Field value = array("value", Kind::u8, "The sub-TLV's octets.");
}  // namespace fields::ospfv2_unknown_sub_tlv
namespace types {
inline constexpr Structure ospfv2_unknown_sub_tlv =
    structure<fields::ospfv2_unknown_sub_tlv::type, fields::ospfv2_unknown_sub_tlv::length,
              fields::ospfv2_unknown_sub_tlv::value_len, fields::ospfv2_unknown_sub_tlv::value>(
        "ospfv2_unknown_sub_tlv", "A sub-TLV of an opaque LSA in raw form.");
}  // namespace types

namespace fields::ospfv2_link_tlv {
inline constexpr Field link_type =
    scalar("link_type", Kind::u8, "1 point-to-point, 2 multi-access.");
inline constexpr Field link_id =
    scalar("link_id", Kind::u32, "The neighbour's router ID, or the designated router's address.");
inline constexpr Field local_if_ipv4_addr_num =
    counter("local_if_ipv4_addr_num", "Number of local addresses.");
inline constexpr Field local_if_ipv4_addr =
    array("local_if_ipv4_addr", Kind::address, "Addresses of the link's local interface.");
inline constexpr Field local_remote_ipv4_addr_num =
    counter("local_remote_ipv4_addr_num", "Number of remote addresses.");
inline constexpr Field local_remote_ipv4_addr =
    array("local_remote_ipv4_addr", Kind::address, "Addresses of the link's remote interface.");
inline constexpr Field te_metric =
    scalar("te_metric", Kind::u32, "The traffic-engineering metric.");
inline constexpr Field max_bandwidth = scalar(
    "max_bandwidth", Kind::real, "The link's maximum bandwidth; the producer chooses the unit.");
inline constexpr Field max_reservable_bandwidth =
    scalar("max_reservable_bandwidth", Kind::real,
           "The bandwidth that may be reserved; the producer chooses the unit.");
inline constexpr Field unreserved_bandwidth =
    scalar("unreserved_bandwidth", Kind::real,
           "The bandwidth not yet reserved; the producer chooses the unit.");
inline constexpr Field admin_group =
    scalar("admin_group", Kind::u32, "Administrative groups, one bit each.");
}  // namespace fields::ospfv2_link_tlv
namespace types {
inline constexpr Structure ospfv2_link_tlv = structure<
    fields::ospfv2_link_tlv::link_type, fields::ospfv2_link_tlv::link_id,
    fields::ospfv2_link_tlv::local_if_ipv4_addr_num, fields::ospfv2_link_tlv::local_if_ipv4_addr,
    fields::ospfv2_link_tlv::local_remote_ipv4_addr_num,
    fields::ospfv2_link_tlv::local_remote_ipv4_addr, fields::ospfv2_link_tlv::te_metric,
    fields::ospfv2_link_tlv::max_bandwidth, fields::ospfv2_link_tlv::max_reservable_bandwidth,
    fields::ospfv2_link_tlv::unreserved_bandwidth, fields::ospfv2_link_tlv::admin_group>(
    "ospfv2_link_tlv", "The link TLV of traffic engineering.");
}  // namespace types

namespace fields::ospfv2_unknown_tlv {
inline constexpr Field type = scalar("type", Kind::u16, "The TLV's type.");
inline constexpr Field length = scalar(
    "length", Kind::u16, "The TLV's length in octets as advertised, whatever value_num says.");
inline constexpr Field value_num = counter("value_num", "Number of octets in value.");
inline constexpr Field value = array("value", Kind::u8, "The TLV's octets.");
inline constexpr Field router_address =
    scalar("router_address", Kind::address, "The address of a router address TLV.");
inline constexpr Field tlv = embedded("tlv", types::ospfv2_link_tlv, "The fields of a link TLV.");
inline constexpr Field unknown_sub_tlv =
    reference("unknown_sub_tlv", TableId::ospfv2_unknown_sub_tlv, "Sub-TLVs that no field covers.");
}  // namespace fields::ospfv2_unknown_tlv
namespace types {
inline constexpr Structure ospfv2_unknown_tlv =
    structure<fields::ospfv2_unknown_tlv::type, fields::ospfv2_unknown_tlv::length,
              fields::ospfv2_unknown_tlv::value_num, fields::ospfv2_unknown_tlv::value,
              fields::ospfv2_unknown_tlv::router_address, fields::ospfv2_unknown_tlv::tlv,
              fields::ospfv2_unknown_tlv::unknown_sub_tlv>(
        "ospfv2_unknown_tlv",
        "A TLV of an opaque LSA in raw form, with the fields of traffic engineering beside it.");
}  // namespace types

namespace fields::ospfv2_external {
inline constexpr Field mt_id =
    scalar("mt_id", Kind::u32, "The topology's number; 0 is the default topology.");
inline constexpr Field metric = scalar("metric", Kind::u32, "The metric in that topology.");
inline constexpr Field forwarding_address =
    scalar("forwarding_address", Kind::address,
           "Where traffic for the destination is to be sent; unset for the advertising router.");
inline constexpr Field external_route_tag =
    scalar("external_route_tag", Kind::u32, "The tag that the external route carries.");
}  // namespace fields::ospfv2_external
namespace types {
inline constexpr Structure ospfv2_external =
    structure<fields::ospfv2_external::mt_id, fields::ospfv2_external::metric,
              fields::ospfv2_external::forwarding_address,
              fields::ospfv2_external::external_route_tag>(
        "ospfv2_external", "An OSPFv2 external route in one topology.");
}  // namespace types

namespace fields::ospfv2_topology {
inline constexpr Field mt_id =
    scalar("mt_id", Kind::u32, "The topology's number; 0 is the default topology.");
inline constexpr Field metric = scalar("metric", Kind::u16, "The metric in that topology.");
}  // namespace fields::ospfv2_topology
namespace types {
inline constexpr Structure ospfv2_topology =
    structure<fields::ospfv2_topology::mt_id, fields::ospfv2_topology::metric>(
        "ospfv2_topology", "A metric in one topology.");
}  // namespace types

namespace fields::ospfv2_link_key {
inline constexpr Field link_id = scalar("link_id", Kind::u32, "The link ID.");
inline constexpr Field link_data = scalar("link_data", Kind::u32, "The link data.");
}  // namespace fields::ospfv2_link_key
namespace types {
inline constexpr Structure ospfv2_link_key =
    structure<fields::ospfv2_link_key::link_id, fields::ospfv2_link_key::link_data>(
        "ospfv2_link_key", "What identifies a link of an OSPFv2 router LSA.");
}  // namespace types

namespace fields::ospfv2_link {
inline constexpr Field type =
    scalar("type", Kind::u8, "The link's type: 1 point-to-point, 2 transit, 3 stub, 4 virtual.");
inline constexpr Field topology = reference("topology", TableId::ospfv2_topology,
                                            "The link's metrics, one row for each topology.");
}  // namespace fields::ospfv2_link
namespace types {
inline constexpr Structure ospfv2_link =
    structure<fields::ospfv2_link::type, fields::ospfv2_link::topology>(
        "ospfv2_link", "One link of an OSPFv2 router LSA.");
}  // namespace types

namespace fields::lsa_options {
inline constexpr Field DC = scalar("DC", Kind::boolean, "Demand circuits are handled.");
inline constexpr Field P = scalar("P", Kind::boolean, "A type 7 LSA is to be translated.");
inline constexpr Field MC = scalar("MC", Kind::boolean, "Multicast datagrams are forwarded.");
inline constexpr Field E = scalar("E", Kind::boolean, "AS-external LSAs are accepted.");
inline constexpr Field Upward = scalar("Upward", Kind::boolean, "The up bit of the options.");
inline constexpr Field MT = scalar("MT", Kind::boolean, "Multi-topology routing is in use.");
inline constexpr Field R = scalar("R", Kind::boolean, "The originator forwards traffic.");
inline constexpr Field AF = scalar("AF", Kind::boolean, "Address families are supported.");
}  // namespace fields::lsa_options
namespace types {
inline constexpr Structure lsa_options =
    structure<fields::lsa_options::DC, fields::lsa_options::P, fields::lsa_options::MC,
              fields::lsa_options::E, fields::lsa_options::Upward, fields::lsa_options::MT,
              fields::lsa_options::R, fields::lsa_options::AF>(
        "lsa_options", "The OSPFv2 option bits, one boolean each.");
}  // namespace types

namespace fields::ospfv2_lsa_body_flags {
inline constexpr Field V =
    scalar("V", Kind::boolean, "The router is an endpoint of a virtual link.");
inline constexpr Field E = scalar("E", Kind::boolean, "The router is an AS boundary router.");
inline constexpr Field B = scalar("B", Kind::boolean, "The router is an area border router.");
}  // namespace fields::ospfv2_lsa_body_flags
namespace types {
inline constexpr Structure ospfv2_lsa_body_flags =
    structure<fields::ospfv2_lsa_body_flags::V, fields::ospfv2_lsa_body_flags::E,
              fields::ospfv2_lsa_body_flags::B>(
        "ospfv2_lsa_body_flags", "The bits of an OSPFv2 router LSA, one boolean each.");
}  // namespace types

namespace fields::ospfv2_network {
inline constexpr Field network_mask = scalar("network_mask", Kind::address, "The network's mask.");
inline constexpr Field attached_router_num =
    counter("attached_router_num", "Number of attached routers.");
inline constexpr Field attached_router =
    array("attached_router", Kind::u32, "Router IDs of the attached routers.");
}  // namespace fields::ospfv2_network
namespace types {
inline constexpr Structure ospfv2_network =
    structure<fields::ospfv2_network::network_mask, fields::ospfv2_network::attached_router_num,
              fields::ospfv2_network::attached_router>("ospfv2_network",
                                                       "What an OSPFv2 network LSA says.");
}  // namespace types

namespace fields::ospfv2_lsa_body {
inline constexpr Field lsa_flags =
    embedded("lsa_flags", types::ospfv2_lsa_body_flags, "A router LSA's bits as booleans.");
inline constexpr Field num_of_links =
    scalar("num_of_links", Kind::u16, "A router LSA's number of links, as advertised.");
inline constexpr Field network =
    embedded("network", types::ospfv2_network, "What a network LSA says.");
inline constexpr Field summary_mask =
    scalar("summary_mask", Kind::address, "A summary LSA's network mask.");
inline constexpr Field external_mask =
    scalar("external_mask", Kind::address, "An external LSA's network mask.");
inline constexpr Field body_flag_options =
    flagged("body_flag_options", flag_sets::ospfv2_lsa_body_flags_options,
            "A router LSA's bits as a flag set; filling one form does not fill the other.")
        .from_variant(1);
}  // namespace fields::ospfv2_lsa_body
namespace types {
inline constexpr Structure ospfv2_lsa_body =
    structure<fields::ospfv2_lsa_body::lsa_flags, fields::ospfv2_lsa_body::num_of_links,
              fields::ospfv2_lsa_body::network, fields::ospfv2_lsa_body::summary_mask,
              fields::ospfv2_lsa_body::external_mask, fields::ospfv2_lsa_body::body_flag_options>(
        "ospfv2_lsa_body",
        "The body of an OSPFv2 LSA: router, network, summary and external data side by side.");
}  // namespace types

namespace fields::ospfv2_header {
inline constexpr Field options =
    embedded("options", types::lsa_options, "The option bits as booleans.");
inline constexpr Field lsa_id = scalar("lsa_id", Kind::address, "The link-state ID.");
inline constexpr Field opaque_type =
    scalar("opaque_type", Kind::u8, "First octet of an opaque LSA's link-state ID.");
inline constexpr Field opaque_id =
    scalar("opaque_id", Kind::u32, "The other 24 bits of an opaque LSA's link-state ID.");
inline constexpr Field age = scalar("age", Kind::u16, "Age in seconds.");
inline constexpr Field type = scalar("type", Kind::u16, "The LS type as the producer numbers it.");
inline constexpr Field adv_router =
    scalar("adv_router", Kind::u32, "Router ID of the advertising router.");
inline constexpr Field seq_num = scalar(
    "seq_num", Kind::text, "The sequence number as text; the producer chooses the notation.");
inline constexpr Field checksum =
    scalar("checksum", Kind::text, "The checksum as text; the producer chooses the notation.");
inline constexpr Field length =
    scalar("length", Kind::u16, "Length of the LSA in octets, header included.");
inline constexpr Field flag_options =
    flagged("flag_options", flag_sets::lsa_flag_options,
            "The option bits as a flag set; filling one form does not fill the other.")
        .from_variant(1);
}  // namespace fields::ospfv2_header
namespace types {
inline constexpr Structure ospfv2_header =
    structure<fields::ospfv2_header::options, fields::ospfv2_header::lsa_id,
              fields::ospfv2_header::opaque_type, fields::ospfv2_header::opaque_id,
              fields::ospfv2_header::age, fields::ospfv2_header::type,
              fields::ospfv2_header::adv_router, fields::ospfv2_header::seq_num,
              fields::ospfv2_header::checksum, fields::ospfv2_header::length,
              fields::ospfv2_header::flag_options>("ospfv2_header", "The header of an OSPFv2 LSA.");
}  // namespace types

namespace fields::ospfv2_lsa {
inline constexpr Field header = embedded("header", types::ospfv2_header, "The LSA's header.");
inline constexpr Field lsa_body = embedded("lsa_body", types::ospfv2_lsa_body,
                                           "The LSA's body, with a place for every kind of LSA.");
}  // namespace fields::ospfv2_lsa
namespace types {
inline constexpr Structure ospfv2_lsa =
    structure<fields::ospfv2_lsa::header, fields::ospfv2_lsa::lsa_body>(
        "ospfv2_lsa", "An OSPFv2 LSA: header and body.");
}  // namespace types

}  // namespace harbor::model
