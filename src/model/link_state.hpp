// The rows of the link-state databases: an LSA as received and in typed form for both versions of
// the protocol at once, the keys of such rows, and the rows that group them.
#pragma once

#include "model/edition.hpp"
#include "model/ospfv2.hpp"
#include "model/ospfv3.hpp"

namespace harbor::model {

namespace fields::link_scope_lsa_key {
inline constexpr Field lsa_id = scalar("lsa_id", Kind::u32, "The link-state ID as a number.");
inline constexpr Field adv_router =
    scalar("adv_router", Kind::address, "Router ID of the advertising router.");
}  // namespace fields::link_scope_lsa_key
namespace types {
inline constexpr Structure link_scope_lsa_key =
    structure<fields::link_scope_lsa_key::lsa_id, fields::link_scope_lsa_key::adv_router>(
        "link_scope_lsa_key", "What identifies an LSA of link scope among those of its type.");
}  // namespace types

namespace fields::multi_topology {
inline constexpr Field name = scalar("name", Kind::text, "The topology's name; key of the table.");
}  // namespace fields::multi_topology
namespace types {
inline constexpr Structure multi_topology =
    structure<fields::multi_topology::name>("multi_topology", "The name of a topology.");
}  // namespace types

namespace fields::link_scope_lsa {
inline constexpr Field decoded_completed = scalar(
    "decoded_completed", Kind::boolean, "The producer has filled the typed fields from raw_data.");
inline constexpr Field raw_data_len = counter("raw_data_len", "Number of octets in raw_data.");
inline constexpr Field raw_data = array("raw_data", Kind::u8, "The LSA as received, header first.");
inline constexpr Field version =
    scalar("version", Kind::u32, "The OSPF version that the LSA belongs to.");
inline constexpr Field ospfv2_lsa_val = embedded(
    "ospfv2_lsa_val", types::ospfv2_lsa, "The LSA in typed form, if it is of OSPFv2; zero else.");
inline constexpr Field ospfv2_links =
    reference("ospfv2_links", TableId::ospfv2_link, "A router LSA's links.");
inline constexpr Field summary = reference("summary", TableId::ospfv2_topology,
                                           "A summary LSA's metrics, one row for each topology.");
inline constexpr Field external = reference(
    "external", TableId::ospfv2_external, "An external LSA's entries, one row for each topology.");
inline constexpr Field unknown_tlv =
    reference("unknown_tlv", TableId::ospfv2_unknown_tlv, "TLVs that no field covers.");
inline constexpr Field ospfv3_lsa_val = embedded(
    "ospfv3_lsa_val", types::ospfv3_lsa, "The LSA in typed form, if it is of OSPFv3; zero else.");
inline constexpr Field ospfv3_links =
    reference("ospfv3_links", TableId::ospfv3_link, "A router LSA's links.");
inline constexpr Field prefix_list =
    reference("prefix_list", TableId::ospfv3_prefix_list, "A link LSA's prefixes.");
inline constexpr Field ia_prefix_list = reference("ia_prefix_list", TableId::ospfv3_ia_prefix_list,
                                                  "An intra-area prefix LSA's prefixes.");
inline constexpr Field multi_topology =
    reference("multi_topology", TableId::multi_topology, "The LSA's topology names.");
inline constexpr Field router_address =
    scalar("router_address", Kind::address, "The router address of traffic-engineering data.")
        .from_variant(1);
inline constexpr Field tlv =
    embedded("tlv", types::ospfv2_link_tlv, "The link TLV of traffic-engineering data.")
        .from_variant(1);
inline constexpr Field unknown_sub_tlv =
    reference("unknown_sub_tlv", TableId::ospfv2_unknown_sub_tlv, "Sub-TLVs that no field covers.")
        .from_variant(1);
}  // namespace fields::link_scope_lsa
namespace types {
inline constexpr Structure link_scope_lsa =
    structure<fields::link_scope_lsa::decoded_completed, fields::link_scope_lsa::raw_data_len,
              fields::link_scope_lsa::raw_data, fields::link_scope_lsa::version,
              fields::link_scope_lsa::ospfv2_lsa_val, fields::link_scope_lsa::ospfv2_links,
              fields::link_scope_lsa::summary, fields::link_scope_lsa::external,
              fields::link_scope_lsa::unknown_tlv, fields::link_scope_lsa::ospfv3_lsa_val,
              fields::link_scope_lsa::ospfv3_links, fields::link_scope_lsa::prefix_list,
              fields::link_scope_lsa::ia_prefix_list, fields::link_scope_lsa::multi_topology,
              fields::link_scope_lsa::router_address, fields::link_scope_lsa::tlv,
              fields::link_scope_lsa::unknown_sub_tlv>(
        "link_scope_lsa",
        "An LSA of link scope, as received and in typed form for both protocol versions.");
}  // namespace types

namespace fields::area_scope_lsa_key {
inline constexpr Field lsa_id = scalar("lsa_id", Kind::u32, "The link-state ID as a number.");
inline constexpr Field adv_router =
    scalar("adv_router", Kind::address, "Router ID of the advertising router.");
}  // namespace fields::area_scope_lsa_key
namespace types {
inline constexpr Structure area_scope_lsa_key =
    structure<fields::area_scope_lsa_key::lsa_id, fields::area_scope_lsa_key::adv_router>(
        "area_scope_lsa_key", "What identifies an LSA of area scope among those of its type.");
}  // namespace types

namespace fields::area_scope_lsa {
inline constexpr Field decoded_completed = scalar(
    "decoded_completed", Kind::boolean, "The producer has filled the typed fields from raw_data.");
inline constexpr Field raw_data_len = counter("raw_data_len", "Number of octets in raw_data.");
inline constexpr Field raw_data = array("raw_data", Kind::u8, "The LSA as received, header first.");
inline constexpr Field ospfv2_lsa_val = embedded(
    "ospfv2_lsa_val", types::ospfv2_lsa, "The LSA in typed form, if it is of OSPFv2; zero else.");
inline constexpr Field links = reference("links", TableId::ospfv2_link, "A router LSA's links.");
inline constexpr Field summary = reference("summary", TableId::ospfv2_topology,
                                           "A summary LSA's metrics, one row for each topology.");
inline constexpr Field external = reference(
    "external", TableId::ospfv2_external, "An external LSA's entries, one row for each topology.");
inline constexpr Field ospfv3_lsa_val = embedded(
    "ospfv3_lsa_val", types::ospfv3_lsa, "The LSA in typed form, if it is of OSPFv3; zero else.");
inline constexpr Field ospfv3_links =
    reference("ospfv3_links", TableId::ospfv3_link, "A router LSA's links.");
inline constexpr Field prefix_list =
    reference("prefix_list", TableId::ospfv3_prefix_list, "A link LSA's prefixes.");
inline constexpr Field ia_prefix_list = reference("ia_prefix_list", TableId::ospfv3_ia_prefix_list,
                                                  "An intra-area prefix LSA's prefixes.");
}  // namespace fields::area_scope_lsa
namespace types {
inline constexpr Structure area_scope_lsa =
    structure<fields::area_scope_lsa::decoded_completed, fields::area_scope_lsa::raw_data_len,
              fields::area_scope_lsa::raw_data, fields::area_scope_lsa::ospfv2_lsa_val,
              fields::area_scope_lsa::links, fields::area_scope_lsa::summary,
              fields::area_scope_lsa::external, fields::area_scope_lsa::ospfv3_lsa_val,
              fields::area_scope_lsa::ospfv3_links, fields::area_scope_lsa::prefix_list,
              fields::area_scope_lsa::ia_prefix_list>(
        "area_scope_lsa",
        "An LSA of area scope, as received and in typed form for both protocol versions.");
}  // namespace types

namespace fields::area_scope_lsas {
inline constexpr Field lsa_id = scalar("lsa_id", Kind::u32, "Key of the row.");
inline constexpr Field area_scope_lsa =
    reference("area_scope_lsa", TableId::area_scope_lsa, "The row's LSAs.");
}  // namespace fields::area_scope_lsas
namespace types {
inline constexpr Structure area_scope_lsas =
    structure<fields::area_scope_lsas::lsa_id, fields::area_scope_lsas::area_scope_lsa>(
        "area_scope_lsas", "A group of area-scope LSAs.");
}  // namespace types

namespace fields::link_scope_lsas {
inline constexpr Field lsa_type =
    scalar("lsa_type", Kind::u32, "The LS type that the row gathers; key of the table.");
inline constexpr Field link_scope_lsa_db =
    reference("link_scope_lsa_db", TableId::link_scope_lsa, "The row's link-scope LSAs.");
inline constexpr Field area_scope_lsa_db =
    reference("area_scope_lsa_db", TableId::area_scope_lsa, "The row's area-scope LSAs.");
}  // namespace fields::link_scope_lsas
namespace types {
inline constexpr Structure link_scope_lsas =
    structure<fields::link_scope_lsas::lsa_type, fields::link_scope_lsas::link_scope_lsa_db,
              fields::link_scope_lsas::area_scope_lsa_db>("link_scope_lsas",
                                                          "The databases of one LS type.");
}  // namespace types

}  // namespace harbor::model
