// The ordered lists of everything in the schema. The order of structures, enumerations, flag sets
// and tables here is the order of the type records, and with it of all per-type numbering.
#pragma once

#include "model/tables.hpp"

namespace harbor::model {

inline constexpr std::array structures{
    &types::ospfv2_unknown_sub_tlv,
    &types::ospfv2_link_tlv,
    &types::ospfv2_unknown_tlv,
    &types::ospfv2_external,
    &types::ospfv2_topology,
    &types::ospfv2_link_key,
    &types::ospfv2_link,
    &types::link_scope_lsa_key,
    &types::lsa_options,
    &types::ospfv2_lsa_body_flags,
    &types::ospfv2_network,
    &types::ospfv2_lsa_body,
    &types::lsa_header,
    &types::ospfv2_header,
    &types::ospfv2_lsa,
    &types::ospfv3_lsa_options,
    &types::ospfv3_header,
    &types::ospfv3_lsa_body_flags,
    &types::ospfv3_network,
    &types::ospfv3_inter_area_prefix,
    &types::ospfv3_inter_area_router,
    &types::ospfv3_lsa_external_flags,
    &types::ospfv3_lsa_external,
    &types::ospfv3_nssa,
    &types::ospfv3_link_data,
    &types::ospfv3_intra_area_prefix,
    &types::ospfv3_lsa_body,
    &types::ospfv3_lsa,
    &types::ospfv3_link_key,
    &types::ospfv3_link,
    &types::ospfv3_prefix_list,
    &types::multi_topology,
    &types::link_scope_lsa,
    &types::area_scope_lsa_key,
    &types::area_scope_lsa,
    &types::area_scope_lsas,
    &types::link_scope_lsas,
    &types::ospf_static_neighbor,
    &types::ospf_nbr_stat,
    &types::ospf_neighbor,
    &types::fast_reroute,
    &types::multi_area,
    &types::ospf_crypto_algorithm,
    &types::ospf_authentication,
    &types::ttl_security,
    &types::ospf_interface,
    &types::ospf_area,
    &types::ospf_instance,
    &types::ospf,
    &types::ospf_instance_rev1_key,
    &types::ospf_instance_rev1,
    &types::ospf_rev1,
};

inline constexpr std::array all_enumerations{
    &enumerations::address_family,    &enumerations::ospf_operation_mode,
    &enumerations::ospf_network_type, &enumerations::ospf_auth_type,
    &enumerations::nbr_state_type,
};

inline constexpr std::array all_flag_sets{
    &flag_sets::lsa_flag_options,
    &flag_sets::ospfv2_lsa_body_flags_options,
    &flag_sets::ospfv3_lsa_flag_options,
    &flag_sets::ospfv3_lsa_body_flag_options,
};

inline constexpr std::array all_tables{
    &tables::ospfv2_unknown_sub_tlv,
    &tables::ospfv2_unknown_tlv,
    &tables::ospfv2_external,
    &tables::ospfv2_topology,
    &tables::ospfv2_link,
    &tables::ospfv3_link,
    &tables::ospfv3_prefix_list,
    &tables::ospfv3_ia_prefix_list,
    &tables::multi_topology,
    &tables::link_scope_lsa,
    &tables::area_scope_lsa,
    &tables::area_scope_lsas,
    &tables::link_scope_lsas,
    &tables::ospf_static_neighbor,
    &tables::ospf_neighbor,
    &tables::ospf_interface,
    &tables::ospf_area,
    &tables::ospf_instance,
    &tables::ospf,
    &tables::ospf_instance_rev1,
    &tables::ospf_rev1,
};

// A table's number is its place in the list; a name in TableId without a table does not compile.
static_assert(all_tables.size() == static_cast<std::size_t>(TableId::none));
static_assert([] {
  for (std::size_t at = 0; at < all_tables.size(); ++at) {
    if (all_tables[at]->id != static_cast<TableId>(at)) return false;
  }
  return true;
}());

// A type record for each type, and two for each table: its own and that of its records.
inline constexpr std::size_t record_count =
    structures.size() + all_enumerations.size() + all_flag_sets.size() + 2 * all_tables.size();

constexpr const Table &table(TableId id) { return *all_tables[static_cast<std::size_t>(id)]; }

}  // namespace harbor::model
