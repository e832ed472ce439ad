// The rows of areas, instances and roots, which tie the tables into one tree. The rev1 forms are
// types of their own beside the first ones, not variants of them.
#pragma once

#include "model/edition.hpp"
#include "model/enumerations.hpp"

namespace harbor::model {

namespace fields::ospf_area {
inline constexpr Field area_id =
    scalar("area_id", Kind::u32, "The area's ID as a number; key of the table.");
inline constexpr Field interfaces =
    reference("interfaces", TableId::ospf_interface, "The area's interfaces.");
inline constexpr Field area_scope_lsas =
    reference("area_scope_lsas", TableId::area_scope_lsas, "Link-state databases of the area.")
        .from_variant(1);
}  // namespace fields::ospf_area
namespace types {
inline constexpr Structure ospf_area =
    structure<fields::ospf_area::area_id, fields::ospf_area::interfaces,
              fields::ospf_area::area_scope_lsas>("ospf_area", "An area.");
}  // namespace types

namespace fields::ospf_instance {
inline constexpr Field af =
    chosen("af", enumerations::address_family, "The instance's address family.");
inline constexpr Field router_id =
    scalar("router_id", Kind::u32, "The instance's router ID as a number.");
inline constexpr Field area = reference("area", TableId::ospf_area, "The instance's areas.");
inline constexpr Field link_scope_lsas =
    reference("link_scope_lsas", TableId::link_scope_lsas,
              "Link-state databases of the instance, one row for each LS type.");
inline constexpr Field multi_topology =
    reference("multi_topology", TableId::multi_topology, "The instance's topology names.");
}  // namespace fields::ospf_instance
namespace types {
inline constexpr Structure ospf_instance =
    structure<fields::ospf_instance::af, fields::ospf_instance::router_id,
              fields::ospf_instance::area, fields::ospf_instance::link_scope_lsas,
              fields::ospf_instance::multi_topology>("ospf_instance",
                                                     "A routing process of one address family.");
}  // namespace types

namespace fields::ospf {
inline constexpr Field singleton_id =
    scalar("singleton_id", Kind::u32, "Key of a table that is meant to hold one row.");
inline constexpr Field op_mode = chosen("op_mode", enumerations::ospf_operation_mode,
                                        "How the address families run beside each other.");
inline constexpr Field instance =
    reference("instance", TableId::ospf_instance, "The instances, one for each address family.");
}  // namespace fields::ospf
namespace types {
inline constexpr Structure ospf =
    structure<fields::ospf::singleton_id, fields::ospf::op_mode, fields::ospf::instance>(
        "ospf", "The root of the model.");
}  // namespace types

namespace fields::ospf_instance_rev1_key {
inline constexpr Field af =
    chosen("af", enumerations::address_family, "The instance's address family.");
inline constexpr Field router_id =
    scalar("router_id", Kind::u32, "The instance's router ID as a number.");
}  // namespace fields::ospf_instance_rev1_key
namespace types {
inline constexpr Structure ospf_instance_rev1_key =
    structure<fields::ospf_instance_rev1_key::af, fields::ospf_instance_rev1_key::router_id>(
        "ospf_instance_rev1_key", "What identifies an instance in the revised form.");
}  // namespace types

namespace fields::ospf_instance_rev1 {
inline constexpr Field area = reference("area", TableId::ospf_area, "The instance's areas.");
inline constexpr Field link_scope_lsas =
    reference("link_scope_lsas", TableId::link_scope_lsas,
              "Link-state databases of the instance, one row for each LS type.");
inline constexpr Field multi_topology =
    reference("multi_topology", TableId::multi_topology, "The instance's topology names.");
}  // namespace fields::ospf_instance_rev1
namespace types {
inline constexpr Structure ospf_instance_rev1 =
    structure<fields::ospf_instance_rev1::area, fields::ospf_instance_rev1::link_scope_lsas,
              fields::ospf_instance_rev1::multi_topology>(
        "ospf_instance_rev1",
        "A routing process of one address family and router ID, both of which stand in its key.");
}  // namespace types

namespace fields::ospf_rev1 {
inline constexpr Field singleton_id =
    scalar("singleton_id", Kind::u32, "Key of a table that is meant to hold one row.");
inline constexpr Field op_mode = chosen("op_mode", enumerations::ospf_operation_mode,
                                        "How the address families run beside each other.");
inline constexpr Field instance =
    reference("instance", TableId::ospf_instance_rev1,
              "The instances, one for each address family and router ID.");
}  // namespace fields::ospf_rev1
namespace types {
inline constexpr Structure ospf_rev1 =
    structure<fields::ospf_rev1::singleton_id, fields::ospf_rev1::op_mode,
              fields::ospf_rev1::instance>("ospf_rev1", "The root of the model, revised form.");
}  // namespace types

}  // namespace harbor::model
