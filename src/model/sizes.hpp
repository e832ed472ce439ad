// The sizes that are published for every type, held against what the layout computes from the rows
// when the emitter is compiled. A row here changes only with the binary contract, which is that of
// the current edition.
#pragma once

#include "model/layout.hpp"

#if !defined(HARBOR_OLDER_EDITION) && !defined(HARBOR_NEWER_EDITION)

namespace harbor::model {

// Used length of variant 0 and of the highest variant, allocated size without and with state
// tracking, size in the manifest.
consteval bool has_sizes(const Structure &type, std::uint32_t first, std::uint32_t last,
                         std::uint32_t untracked, std::uint32_t tracked, std::uint32_t manifest) {
  return used_length(type, 0) == first && used_length(type, type.variants - 1) == last &&
         object_size(type) == untracked && tracked_size(type) == tracked &&
         manifest_size(type) == manifest && alloc_slop(type, 0) == untracked - first;
}

static_assert(has_sizes(types::ospfv2_unknown_sub_tlv, 32, 32, 40, 56, 32));
static_assert(has_sizes(types::ospfv2_link_tlv, 84, 84, 104, 144, 88));
static_assert(has_sizes(types::ospfv2_unknown_tlv, 232, 232, 248, 320, 232));
static_assert(has_sizes(types::ospfv2_external, 76, 76, 96, 100, 80));
static_assert(has_sizes(types::ospfv2_topology, 18, 18, 32, 34, 24));
static_assert(has_sizes(types::ospfv2_link_key, 20, 20, 32, 34, 24));
static_assert(has_sizes(types::ospfv2_link, 64, 64, 72, 74, 64));
static_assert(has_sizes(types::link_scope_lsa_key, 64, 64, 72, 74, 64));
static_assert(has_sizes(types::lsa_options, 44, 44, 56, 64, 48));
static_assert(has_sizes(types::ospfv2_lsa_body_flags, 24, 24, 32, 35, 24));
static_assert(has_sizes(types::ospfv2_network, 80, 80, 96, 112, 80));
static_assert(has_sizes(types::ospfv2_lsa_body, 248, 272, 288, 320, 272));
static_assert(has_sizes(types::lsa_header, 58, 58, 72, 78, 64));
static_assert(has_sizes(types::ospfv2_header, 170, 200, 216, 235, 200));
static_assert(has_sizes(types::ospfv2_lsa, 520, 520, 536, 592, 520));
static_assert(has_sizes(types::ospfv3_lsa_options, 36, 36, 48, 54, 40));
static_assert(has_sizes(types::ospfv3_header, 184, 208, 224, 240, 208));
static_assert(has_sizes(types::ospfv3_lsa_body_flags, 28, 28, 40, 44, 32));
static_assert(has_sizes(types::ospfv3_network, 80, 104, 120, 144, 104));
static_assert(has_sizes(types::ospfv3_inter_area_prefix, 48, 48, 56, 59, 48));
static_assert(has_sizes(types::ospfv3_inter_area_router, 72, 96, 112, 122, 96));
static_assert(has_sizes(types::ospfv3_lsa_external_flags, 16, 16, 24, 25, 16));
static_assert(has_sizes(types::ospfv3_lsa_external, 136, 136, 152, 161, 136));
static_assert(has_sizes(types::ospfv3_nssa, 168, 168, 184, 194, 168));
static_assert(has_sizes(types::ospfv3_link_data, 116, 144, 160, 171, 144));
static_assert(has_sizes(types::ospfv3_intra_area_prefix, 74, 74, 96, 100, 80));
static_assert(has_sizes(types::ospfv3_lsa_body, 984, 1032, 1048, 1144, 1032));
static_assert(has_sizes(types::ospfv3_lsa, 1288, 1288, 1304, 1424, 1288));
static_assert(has_sizes(types::ospfv3_link_key, 24, 24, 32, 35, 24));
static_assert(has_sizes(types::ospfv3_link, 14, 14, 24, 26, 16));
static_assert(has_sizes(types::ospfv3_prefix_list, 48, 48, 56, 58, 48));
static_assert(has_sizes(types::multi_topology, 32, 32, 40, 41, 32));
static_assert(has_sizes(types::link_scope_lsa, 2264, 2464, 2480, 2744, 2464));
static_assert(has_sizes(types::area_scope_lsa_key, 64, 64, 72, 74, 64));
static_assert(has_sizes(types::area_scope_lsa, 2160, 2160, 2176, 2392, 2160));
static_assert(has_sizes(types::area_scope_lsas, 64, 64, 72, 74, 64));
static_assert(has_sizes(types::link_scope_lsas, 112, 112, 128, 131, 112));
static_assert(has_sizes(types::ospf_static_neighbor, 68, 68, 88, 91, 72));
static_assert(has_sizes(types::ospf_nbr_stat, 20, 20, 32, 34, 24));
static_assert(has_sizes(types::ospf_neighbor, 224, 256, 272, 280, 256));
static_assert(has_sizes(types::fast_reroute, 24, 24, 32, 35, 24));
static_assert(has_sizes(types::multi_area, 18, 18, 32, 34, 24));
static_assert(has_sizes(types::ospf_crypto_algorithm, 44, 44, 56, 64, 48));
static_assert(has_sizes(types::ospf_authentication, 64, 72, 88, 94, 72));
static_assert(has_sizes(types::ttl_security, 17, 17, 32, 34, 24));
static_assert(has_sizes(types::ospf_interface, 600, 601, 624, 666, 608));
static_assert(has_sizes(types::ospf_area, 64, 112, 128, 131, 112));
static_assert(has_sizes(types::ospf_instance, 184, 184, 200, 205, 184));
static_assert(has_sizes(types::ospf, 80, 80, 96, 99, 80));
static_assert(has_sizes(types::ospf_instance_rev1_key, 36, 36, 48, 50, 40));
static_assert(has_sizes(types::ospf_instance_rev1, 160, 160, 176, 179, 160));
static_assert(has_sizes(types::ospf_rev1, 80, 80, 96, 99, 80));

// State areas: where the byte of a field lies, and the block or element pointer behind it.
static_assert(state_place(types::ospf_area, fields::ospf_area::area_id) == 0);
static_assert(state_place(types::ospf_area, fields::ospf_area::interfaces) == 1);
static_assert(state_place(types::ospf_area, fields::ospf_area::area_scope_lsas) == 2);
static_assert(state_size(types::ospf_area) == 3);

static_assert(state_place(types::ospfv2_network, fields::ospfv2_network::network_mask) == 0);
static_assert(state_place(types::ospfv2_network, fields::ospfv2_network::attached_router) == 1);
static_assert(state_block_place(types::ospfv2_network, fields::ospfv2_network::attached_router) ==
              8);
static_assert(state_size(types::ospfv2_network) == 16);

namespace link_tlv_places {
using namespace fields::ospfv2_link_tlv;
inline constexpr const Structure &type = types::ospfv2_link_tlv;
static_assert(state_place(type, link_type) == 0);
static_assert(state_place(type, link_id) == 1);
static_assert(state_place(type, local_if_ipv4_addr) == 2);
static_assert(state_block_place(type, local_if_ipv4_addr) == 8);
static_assert(state_place(type, local_remote_ipv4_addr) == 16);
static_assert(state_block_place(type, local_remote_ipv4_addr) == 24);
static_assert(state_place(type, te_metric) == 32);
static_assert(state_place(type, max_bandwidth) == 33);
static_assert(state_place(type, max_reservable_bandwidth) == 34);
static_assert(state_place(type, unreserved_bandwidth) == 35);
static_assert(state_place(type, admin_group) == 36);
static_assert(state_size(type) == 40);
}  // namespace link_tlv_places

namespace unknown_tlv_places {
using namespace fields::ospfv2_unknown_tlv;
inline constexpr const Structure &owner = types::ospfv2_unknown_tlv;
static_assert(state_place(owner, type) == 0);
static_assert(state_place(owner, length) == 1);
static_assert(state_place(owner, value) == 2);
static_assert(state_block_place(owner, value) == 8);
static_assert(state_place(owner, router_address) == 16);
static_assert(state_place(owner, tlv) == 17);
static_assert(state_block_place(owner, tlv) == 24);
static_assert(state_place(owner, unknown_sub_tlv) == 64);
static_assert(state_size(owner) == 72);
}  // namespace unknown_tlv_places

namespace authentication_places {
using namespace fields::ospf_authentication;
inline constexpr const Structure &type = types::ospf_authentication;
static_assert(state_place(type, auth_type_selection) == 0);
static_assert(state_place(type, sa) == 1);
static_assert(state_place(type, key_chain) == 2);
static_assert(state_place(type, key_string) == 3);
static_assert(state_place(type, crypto_algorithm_val) == 4);
static_assert(state_place(type, no_auth) == 5);
static_assert(state_size(type) == 6);
}  // namespace authentication_places

namespace interface_places {
using namespace fields::ospf_interface;
inline constexpr const Structure &type = types::ospf_interface;
static_assert(state_place(type, name) == 0);
static_assert(state_place(type, network_type) == 1);
static_assert(state_place(type, passive) == 2);
static_assert(state_place(type, demand_circuit) == 3);
static_assert(state_place(type, multi_area_val) == 4);
static_assert(state_block_place(type, multi_area_val) == 5);
static_assert(state_place(type, static_neighbor) == 7);
static_assert(state_place(type, node_flag) == 8);
static_assert(state_place(type, fast_reroute_val) == 9);
static_assert(state_block_place(type, fast_reroute_val) == 10);
static_assert(state_place(type, cost) == 13);
static_assert(state_place(type, hello_interval) == 14);
static_assert(state_place(type, dead_interval) == 15);
static_assert(state_place(type, retransmit_interval) == 16);
static_assert(state_place(type, transmit_delay) == 17);
static_assert(state_place(type, mtu_ignore) == 18);
static_assert(state_place(type, lls) == 19);
static_assert(state_place(type, prefix_suppression) == 20);
static_assert(state_place(type, bfd) == 21);
static_assert(state_place(type, ttl_security_val) == 22);
static_assert(state_block_place(type, ttl_security_val) == 23);
static_assert(state_place(type, enable) == 25);
static_assert(state_place(type, authentication_val) == 26);
static_assert(state_block_place(type, authentication_val) == 27);
static_assert(state_place(type, state) == 33);
static_assert(state_place(type, hello_timer) == 34);
static_assert(state_place(type, wait_timer) == 35);
static_assert(state_place(type, dr) == 36);
static_assert(state_place(type, bdr) == 37);
static_assert(state_place(type, neighbor) == 38);
static_assert(state_place(type, link_scope_lsas) == 39);
static_assert(state_place(type, multi_topology) == 40);
static_assert(state_place(type, priority) == 41);
static_assert(state_size(type) == 42);
}  // namespace interface_places

}  // namespace harbor::model

#endif
