// The types and tables of the model. Written by the emitter from the schema; `make emit`
// renews it. An accessor that finds the object's variant too low fails with code 43.
#pragma once

// clang-format off

#include <ospf_harbor_oper.h>

#include <array>
#include <tuple>

#include <ospf_harbor/table.hpp>

namespace ospf_harbor {

// An address family.
enum class address_family : std::uint32_t {
  // IPv4.
  ADDR_FAMILY_IPV4 = 0,
  // IPv6.
  ADDR_FAMILY_IPV6 = 1,
};
template <>
inline constexpr std::array members_of<ospf_harbor::address_family>{
    named{ospf_harbor::address_family::ADDR_FAMILY_IPV4, "ADDR_FAMILY_IPV4"},
    named{ospf_harbor::address_family::ADDR_FAMILY_IPV6, "ADDR_FAMILY_IPV6"},
};

// How the address families run beside each other.
enum class operation_mode : std::uint32_t {
  // The address families know nothing of each other.
  OSPF_OP_MODE_SHIPS_IN_THE_NIGHT = 0,
};
template <>
inline constexpr std::array members_of<ospf_harbor::operation_mode>{
    named{ospf_harbor::operation_mode::OSPF_OP_MODE_SHIPS_IN_THE_NIGHT,
        "OSPF_OP_MODE_SHIPS_IN_THE_NIGHT"},
};

// How OSPF treats a network.
enum class network_type : std::uint32_t {
  // Many routers, reached by one packet to all.
  BROADCAST = 0,
  // Many routers, each reached by a packet of its own.
  NON_BROADCAST = 1,
  // A set of point-to-point links.
  POINT_TO_MULTIPOINT = 2,
  // Two routers.
  POINT_TO_POINT = 3,
};
template <>
inline constexpr std::array members_of<ospf_harbor::network_type>{
    named{ospf_harbor::network_type::BROADCAST, "BROADCAST"},
    named{ospf_harbor::network_type::NON_BROADCAST, "NON_BROADCAST"},
    named{ospf_harbor::network_type::POINT_TO_MULTIPOINT, "POINT_TO_MULTIPOINT"},
    named{ospf_harbor::network_type::POINT_TO_POINT, "POINT_TO_POINT"},
};

// Selector of ospf_authentication.
enum class auth_type : std::uint32_t {
  // IPsec; the arm is sa.
  OSPF_AUTH_IPSEC = 0,
  // Authentication trailer with a key chain; the arm is key_chain.
  OSPF_AUTH_TRAILER_KEY_CHAIN = 1,
  // Authentication trailer with a key; the arms are key_string and crypto_algorithm_val.
  OSPF_AUTH_TRAILER_KEY = 2,
  // No authentication; the arm is no_auth. Known from variant 1 on.
  OSPF_AUTH_TYPE_NONE = 3,
};
template <>
inline constexpr std::array members_of<ospf_harbor::auth_type>{
    named{ospf_harbor::auth_type::OSPF_AUTH_IPSEC, "OSPF_AUTH_IPSEC"},
    named{ospf_harbor::auth_type::OSPF_AUTH_TRAILER_KEY_CHAIN, "OSPF_AUTH_TRAILER_KEY_CHAIN"},
    named{ospf_harbor::auth_type::OSPF_AUTH_TRAILER_KEY, "OSPF_AUTH_TRAILER_KEY"},
    named{ospf_harbor::auth_type::OSPF_AUTH_TYPE_NONE, "OSPF_AUTH_TYPE_NONE"},
};

// State of the conversation with a neighbour. Held values run from 1 to 8; the wire and the
// limits count from 0.
enum class nbr_state_type : std::uint32_t {
  // Nothing heard.
  NBR_STATE_DOWN = 1,
  // Hellos are sent to a configured neighbour that is silent.
  NBR_STATE_ATTEMPT = 2,
  // A hello was heard that does not name this router.
  NBR_STATE_INIT = 3,
  // Both routers hear each other.
  NBR_STATE_TWO_WAY = 4,
  // The routers settle who leads the exchange.
  NBR_STATE_EXSTART = 5,
  // The routers describe their databases.
  NBR_STATE_EXCHANGE = 6,
  // Missing LSAs are being asked for.
  NBR_STATE_LOADING = 7,
  // The databases agree.
  NBR_STATE_FULL = 8,
};
template <>
inline constexpr std::array members_of<ospf_harbor::nbr_state_type>{
    named{ospf_harbor::nbr_state_type::NBR_STATE_DOWN, "NBR_STATE_DOWN"},
    named{ospf_harbor::nbr_state_type::NBR_STATE_ATTEMPT, "NBR_STATE_ATTEMPT"},
    named{ospf_harbor::nbr_state_type::NBR_STATE_INIT, "NBR_STATE_INIT"},
    named{ospf_harbor::nbr_state_type::NBR_STATE_TWO_WAY, "NBR_STATE_TWO_WAY"},
    named{ospf_harbor::nbr_state_type::NBR_STATE_EXSTART, "NBR_STATE_EXSTART"},
    named{ospf_harbor::nbr_state_type::NBR_STATE_EXCHANGE, "NBR_STATE_EXCHANGE"},
    named{ospf_harbor::nbr_state_type::NBR_STATE_LOADING, "NBR_STATE_LOADING"},
    named{ospf_harbor::nbr_state_type::NBR_STATE_FULL, "NBR_STATE_FULL"},
};

// The OSPFv2 option bits.
enum class lsa_flag_options : std::uint8_t {
  // Demand circuits are handled.
  LSA_FLAG_OPTIONS_DC = 0,
  // A type 7 LSA is to be translated.
  LSA_FLAG_OPTIONS_P = 1,
  // Multicast datagrams are forwarded.
  LSA_FLAG_OPTIONS_MC = 2,
  // AS-external LSAs are accepted.
  LSA_FLAG_OPTIONS_E = 3,
  // The up bit of the options.
  LSA_FLAG_OPTIONS_UPWARD = 4,
  // Multi-topology routing is in use.
  LSA_FLAG_OPTIONS_MT = 5,
  // The originator forwards traffic.
  LSA_FLAG_OPTIONS_R = 6,
  // Address families are supported.
  LSA_FLAG_OPTIONS_AF = 7,
};
template <>
inline constexpr std::array members_of<ospf_harbor::lsa_flag_options>{
    named{ospf_harbor::lsa_flag_options::LSA_FLAG_OPTIONS_DC, "LSA_FLAG_OPTIONS_DC"},
    named{ospf_harbor::lsa_flag_options::LSA_FLAG_OPTIONS_P, "LSA_FLAG_OPTIONS_P"},
    named{ospf_harbor::lsa_flag_options::LSA_FLAG_OPTIONS_MC, "LSA_FLAG_OPTIONS_MC"},
    named{ospf_harbor::lsa_flag_options::LSA_FLAG_OPTIONS_E, "LSA_FLAG_OPTIONS_E"},
    named{ospf_harbor::lsa_flag_options::LSA_FLAG_OPTIONS_UPWARD, "LSA_FLAG_OPTIONS_UPWARD"},
    named{ospf_harbor::lsa_flag_options::LSA_FLAG_OPTIONS_MT, "LSA_FLAG_OPTIONS_MT"},
    named{ospf_harbor::lsa_flag_options::LSA_FLAG_OPTIONS_R, "LSA_FLAG_OPTIONS_R"},
    named{ospf_harbor::lsa_flag_options::LSA_FLAG_OPTIONS_AF, "LSA_FLAG_OPTIONS_AF"},
};

namespace ospfv2 {
// The bits of an OSPFv2 router LSA. The members' prefix is spelt as the schema spells it.
enum class lsa_body_flags_options : std::uint8_t {
  // The router is an endpoint of a virtual link.
  OSPV2_LSA_BODY_FLAG_OPTIONS_V = 0,
  // The router is an AS boundary router.
  OSPV2_LSA_BODY_FLAG_OPTIONS_E = 1,
  // The router is an area border router.
  OSPV2_LSA_BODY_FLAG_OPTIONS_B = 2,
};
}  // namespace ospfv2
template <>
inline constexpr std::array members_of<ospf_harbor::ospfv2::lsa_body_flags_options>{
    named{ospf_harbor::ospfv2::lsa_body_flags_options::OSPV2_LSA_BODY_FLAG_OPTIONS_V,
        "OSPV2_LSA_BODY_FLAG_OPTIONS_V"},
    named{ospf_harbor::ospfv2::lsa_body_flags_options::OSPV2_LSA_BODY_FLAG_OPTIONS_E,
        "OSPV2_LSA_BODY_FLAG_OPTIONS_E"},
    named{ospf_harbor::ospfv2::lsa_body_flags_options::OSPV2_LSA_BODY_FLAG_OPTIONS_B,
        "OSPV2_LSA_BODY_FLAG_OPTIONS_B"},
};

namespace ospfv3 {
// The OSPFv3 option bits.
enum class lsa_flag_options : std::uint8_t {
  // Demand circuits are handled.
  OSPFV3_LSA_FLAG_DC = 0,
  // The originator forwards traffic.
  OSPFV3_LSA_FLAG_R = 1,
  // Type 7 LSAs are handled.
  OSPFV3_LSA_FLAG_N = 2,
  // AS-external LSAs are accepted.
  OSPFV3_LSA_FLAG_E = 3,
  // The router takes part in IPv6 routing.
  OSPFV3_LSA_FLAG_V6 = 4,
  // Address families are supported.
  OSPFV3_LSA_FLAG_AF = 5,
};
}  // namespace ospfv3
template <>
inline constexpr std::array members_of<ospf_harbor::ospfv3::lsa_flag_options>{
    named{ospf_harbor::ospfv3::lsa_flag_options::OSPFV3_LSA_FLAG_DC, "OSPFV3_LSA_FLAG_DC"},
    named{ospf_harbor::ospfv3::lsa_flag_options::OSPFV3_LSA_FLAG_R, "OSPFV3_LSA_FLAG_R"},
    named{ospf_harbor::ospfv3::lsa_flag_options::OSPFV3_LSA_FLAG_N, "OSPFV3_LSA_FLAG_N"},
    named{ospf_harbor::ospfv3::lsa_flag_options::OSPFV3_LSA_FLAG_E, "OSPFV3_LSA_FLAG_E"},
    named{ospf_harbor::ospfv3::lsa_flag_options::OSPFV3_LSA_FLAG_V6, "OSPFV3_LSA_FLAG_V6"},
    named{ospf_harbor::ospfv3::lsa_flag_options::OSPFV3_LSA_FLAG_AF, "OSPFV3_LSA_FLAG_AF"},
};

namespace ospfv3 {
// The bits of an OSPFv3 router LSA.
enum class lsa_body_flag_options : std::uint8_t {
  // The router is an endpoint of a virtual link.
  OSPFV3_LSA_BODY_FLAG_OPTIONS_V = 0,
  // The router is an AS boundary router.
  OSPFV3_LSA_BODY_FLAG_OPTIONS_E = 1,
  // The router is an area border router.
  OSPFV3_LSA_BODY_FLAG_OPTIONS_B = 2,
  // The router translates type 7 LSAs whatever others do.
  OSPFV3_LSA_BODY_FLAG_OPTIONS_NT = 3,
};
}  // namespace ospfv3
template <>
inline constexpr std::array members_of<ospf_harbor::ospfv3::lsa_body_flag_options>{
    named{ospf_harbor::ospfv3::lsa_body_flag_options::OSPFV3_LSA_BODY_FLAG_OPTIONS_V,
        "OSPFV3_LSA_BODY_FLAG_OPTIONS_V"},
    named{ospf_harbor::ospfv3::lsa_body_flag_options::OSPFV3_LSA_BODY_FLAG_OPTIONS_E,
        "OSPFV3_LSA_BODY_FLAG_OPTIONS_E"},
    named{ospf_harbor::ospfv3::lsa_body_flag_options::OSPFV3_LSA_BODY_FLAG_OPTIONS_B,
        "OSPFV3_LSA_BODY_FLAG_OPTIONS_B"},
    named{ospf_harbor::ospfv3::lsa_body_flag_options::OSPFV3_LSA_BODY_FLAG_OPTIONS_NT,
        "OSPFV3_LSA_BODY_FLAG_OPTIONS_NT"},
};

namespace ospfv2 {
class unknown_sub_tlv_ref;
}  // namespace ospfv2
namespace ospfv2 {
class link_tlv_ref;
}  // namespace ospfv2
namespace ospfv2 {
class unknown_tlv_ref;
}  // namespace ospfv2
namespace ospfv2 {
class external_ref;
}  // namespace ospfv2
namespace ospfv2 {
class topology_ref;
}  // namespace ospfv2
namespace ospfv2 {
class link_key_ref;
}  // namespace ospfv2
namespace ospfv2 {
class link_ref;
}  // namespace ospfv2
class link_scope_lsa_key_ref;
class lsa_options_ref;
namespace ospfv2 {
class lsa_body_flags_ref;
}  // namespace ospfv2
namespace ospfv2 {
class network_ref;
}  // namespace ospfv2
namespace ospfv2 {
class lsa_body_ref;
}  // namespace ospfv2
class lsa_header_ref;
namespace ospfv2 {
class header_ref;
}  // namespace ospfv2
namespace ospfv2 {
class lsa_ref;
}  // namespace ospfv2
namespace ospfv3 {
class lsa_options_ref;
}  // namespace ospfv3
namespace ospfv3 {
class header_ref;
}  // namespace ospfv3
namespace ospfv3 {
class lsa_body_flags_ref;
}  // namespace ospfv3
namespace ospfv3 {
class network_ref;
}  // namespace ospfv3
namespace ospfv3 {
class inter_area_prefix_ref;
}  // namespace ospfv3
namespace ospfv3 {
class inter_area_router_ref;
}  // namespace ospfv3
namespace ospfv3 {
class lsa_external_flags_ref;
}  // namespace ospfv3
namespace ospfv3 {
class lsa_external_ref;
}  // namespace ospfv3
namespace ospfv3 {
class nssa_ref;
}  // namespace ospfv3
namespace ospfv3 {
class link_data_ref;
}  // namespace ospfv3
namespace ospfv3 {
class intra_area_prefix_ref;
}  // namespace ospfv3
namespace ospfv3 {
class lsa_body_ref;
}  // namespace ospfv3
namespace ospfv3 {
class lsa_ref;
}  // namespace ospfv3
namespace ospfv3 {
class link_key_ref;
}  // namespace ospfv3
namespace ospfv3 {
class link_ref;
}  // namespace ospfv3
namespace ospfv3 {
class prefix_list_ref;
}  // namespace ospfv3
class multi_topology_ref;
class link_scope_lsa_ref;
class area_scope_lsa_key_ref;
class area_scope_lsa_ref;
class area_scope_lsas_ref;
class link_scope_lsas_ref;
class static_neighbor_ref;
class nbr_stat_ref;
class neighbor_ref;
class fast_reroute_ref;
class multi_area_ref;
class crypto_algorithm_ref;
class authentication_ref;
class ttl_security_ref;
class interface_ref;
class area_ref;
class instance_ref;
class ospf_ref;
class instance_rev1_key_ref;
class instance_rev1_ref;
class ospf_rev1_ref;
namespace ospfv2 {
// What identifies a link of an OSPFv2 router LSA.
struct link_key_value {
  // The link ID.
  std::uint32_t link_id{};
  // The link data.
  std::uint32_t link_data{};

  friend bool operator==(const link_key_value &, const link_key_value &) = default;
};
}  // namespace ospfv2
namespace ospfv3 {
// What identifies a link of an OSPFv3 router LSA.
struct link_key_value {
  // The advertising router's interface ID.
  std::uint32_t interface_id{};
  // The neighbour's interface ID.
  std::uint32_t neighbor_interface_id{};
  // The neighbour's router ID.
  std::uint32_t neighbor_router_id{};

  friend bool operator==(const link_key_value &, const link_key_value &) = default;
};
}  // namespace ospfv3
// What identifies an LSA of link scope among those of its type.
struct link_scope_lsa_key_value {
  // The link-state ID as a number.
  std::uint32_t lsa_id{};
  // Router ID of the advertising router.
  ospf_harbor::address adv_router{};

  friend bool operator==(const link_scope_lsa_key_value &,
      const link_scope_lsa_key_value &) = default;
};
// What identifies an LSA of area scope among those of its type.
struct area_scope_lsa_key_value {
  // The link-state ID as a number.
  std::uint32_t lsa_id{};
  // Router ID of the advertising router.
  ospf_harbor::address adv_router{};

  friend bool operator==(const area_scope_lsa_key_value &,
      const area_scope_lsa_key_value &) = default;
};
// What identifies an instance in the revised form.
struct instance_rev1_key_value {
  // The instance's address family.
  ospf_harbor::address_family af{};
  // The instance's router ID as a number.
  std::uint32_t router_id{};

  friend bool operator==(const instance_rev1_key_value &,
      const instance_rev1_key_value &) = default;
};

namespace schema {

struct ospfv2_unknown_sub_tlv {
  using c_type = ::ospfv2_unknown_sub_tlv;
  static constexpr const char *name = "ospfv2_unknown_sub_tlv";
  static constexpr auto create = &::ospfv2_unknown_sub_tlv_create;
  static constexpr auto destroy = &::ospfv2_unknown_sub_tlv_destroy;
  static constexpr auto compare = &::ospfv2_unknown_sub_tlv_compare;
  static constexpr auto hash = &::ospfv2_unknown_sub_tlv_hash;
  static constexpr auto print = &::ospfv2_unknown_sub_tlv_print;
  static constexpr auto to_xml = &::ospfv2_unknown_sub_tlv_to_xml;
  static constexpr auto from_xml = &::ospfv2_unknown_sub_tlv_from_xml;
  static constexpr auto marshal = &::ospfv2_unknown_sub_tlv_marshal;
  static constexpr auto unmarshal = &::ospfv2_unknown_sub_tlv_unmarshal;
  static constexpr auto length = &::ospfv2_unknown_sub_tlv_len;
  static constexpr auto adjust_variant = &::ospfv2_unknown_sub_tlv_adjust_variant;
};
struct ospfv2_link_tlv {
  using c_type = ::ospfv2_link_tlv;
  static constexpr const char *name = "ospfv2_link_tlv";
  static constexpr auto create = &::ospfv2_link_tlv_create;
  static constexpr auto destroy = &::ospfv2_link_tlv_destroy;
  static constexpr auto compare = &::ospfv2_link_tlv_compare;
  static constexpr auto hash = &::ospfv2_link_tlv_hash;
  static constexpr auto print = &::ospfv2_link_tlv_print;
  static constexpr auto to_xml = &::ospfv2_link_tlv_to_xml;
  static constexpr auto from_xml = &::ospfv2_link_tlv_from_xml;
  static constexpr auto marshal = &::ospfv2_link_tlv_marshal;
  static constexpr auto unmarshal = &::ospfv2_link_tlv_unmarshal;
  static constexpr auto length = &::ospfv2_link_tlv_len;
  static constexpr auto adjust_variant = &::ospfv2_link_tlv_adjust_variant;
};
struct ospfv2_unknown_tlv {
  using c_type = ::ospfv2_unknown_tlv;
  static constexpr const char *name = "ospfv2_unknown_tlv";
  static constexpr auto create = &::ospfv2_unknown_tlv_create;
  static constexpr auto destroy = &::ospfv2_unknown_tlv_destroy;
  static constexpr auto compare = &::ospfv2_unknown_tlv_compare;
  static constexpr auto hash = &::ospfv2_unknown_tlv_hash;
  static constexpr auto print = &::ospfv2_unknown_tlv_print;
  static constexpr auto to_xml = &::ospfv2_unknown_tlv_to_xml;
  static constexpr auto from_xml = &::ospfv2_unknown_tlv_from_xml;
  static constexpr auto marshal = &::ospfv2_unknown_tlv_marshal;
  static constexpr auto unmarshal = &::ospfv2_unknown_tlv_unmarshal;
  static constexpr auto length = &::ospfv2_unknown_tlv_len;
  static constexpr auto adjust_variant = &::ospfv2_unknown_tlv_adjust_variant;
};
struct ospfv2_external {
  using c_type = ::ospfv2_external;
  static constexpr const char *name = "ospfv2_external";
  static constexpr auto create = &::ospfv2_external_create;
  static constexpr auto destroy = &::ospfv2_external_destroy;
  static constexpr auto compare = &::ospfv2_external_compare;
  static constexpr auto hash = &::ospfv2_external_hash;
  static constexpr auto print = &::ospfv2_external_print;
  static constexpr auto to_xml = &::ospfv2_external_to_xml;
  static constexpr auto from_xml = &::ospfv2_external_from_xml;
  static constexpr auto marshal = &::ospfv2_external_marshal;
  static constexpr auto unmarshal = &::ospfv2_external_unmarshal;
  static constexpr auto length = &::ospfv2_external_len;
  static constexpr auto adjust_variant = &::ospfv2_external_adjust_variant;
};
struct ospfv2_topology {
  using c_type = ::ospfv2_topology;
  static constexpr const char *name = "ospfv2_topology";
  static constexpr auto create = &::ospfv2_topology_create;
  static constexpr auto destroy = &::ospfv2_topology_destroy;
  static constexpr auto compare = &::ospfv2_topology_compare;
  static constexpr auto hash = &::ospfv2_topology_hash;
  static constexpr auto print = &::ospfv2_topology_print;
  static constexpr auto to_xml = &::ospfv2_topology_to_xml;
  static constexpr auto from_xml = &::ospfv2_topology_from_xml;
  static constexpr auto marshal = &::ospfv2_topology_marshal;
  static constexpr auto unmarshal = &::ospfv2_topology_unmarshal;
  static constexpr auto length = &::ospfv2_topology_len;
  static constexpr auto adjust_variant = &::ospfv2_topology_adjust_variant;
};
struct ospfv2_link_key {
  using c_type = ::ospfv2_link_key;
  static constexpr const char *name = "ospfv2_link_key";
  static constexpr auto create = &::ospfv2_link_key_create;
  static constexpr auto destroy = &::ospfv2_link_key_destroy;
  static constexpr auto compare = &::ospfv2_link_key_compare;
  static constexpr auto hash = &::ospfv2_link_key_hash;
  static constexpr auto print = &::ospfv2_link_key_print;
  static constexpr auto to_xml = &::ospfv2_link_key_to_xml;
  static constexpr auto from_xml = &::ospfv2_link_key_from_xml;
  static constexpr auto marshal = &::ospfv2_link_key_marshal;
  static constexpr auto unmarshal = &::ospfv2_link_key_unmarshal;
  static constexpr auto length = &::ospfv2_link_key_len;
  static constexpr auto adjust_variant = &::ospfv2_link_key_adjust_variant;
};
struct ospfv2_link {
  using c_type = ::ospfv2_link;
  static constexpr const char *name = "ospfv2_link";
  static constexpr auto create = &::ospfv2_link_create;
  static constexpr auto destroy = &::ospfv2_link_destroy;
  static constexpr auto compare = &::ospfv2_link_compare;
  static constexpr auto hash = &::ospfv2_link_hash;
  static constexpr auto print = &::ospfv2_link_print;
  static constexpr auto to_xml = &::ospfv2_link_to_xml;
  static constexpr auto from_xml = &::ospfv2_link_from_xml;
  static constexpr auto marshal = &::ospfv2_link_marshal;
  static constexpr auto unmarshal = &::ospfv2_link_unmarshal;
  static constexpr auto length = &::ospfv2_link_len;
  static constexpr auto adjust_variant = &::ospfv2_link_adjust_variant;
};
struct link_scope_lsa_key {
  using c_type = ::link_scope_lsa_key;
  static constexpr const char *name = "link_scope_lsa_key";
  static constexpr auto create = &::link_scope_lsa_key_create;
  static constexpr auto destroy = &::link_scope_lsa_key_destroy;
  static constexpr auto compare = &::link_scope_lsa_key_compare;
  static constexpr auto hash = &::link_scope_lsa_key_hash;
  static constexpr auto print = &::link_scope_lsa_key_print;
  static constexpr auto to_xml = &::link_scope_lsa_key_to_xml;
  static constexpr auto from_xml = &::link_scope_lsa_key_from_xml;
  static constexpr auto marshal = &::link_scope_lsa_key_marshal;
  static constexpr auto unmarshal = &::link_scope_lsa_key_unmarshal;
  static constexpr auto length = &::link_scope_lsa_key_len;
  static constexpr auto adjust_variant = &::link_scope_lsa_key_adjust_variant;
};
struct lsa_options {
  using c_type = ::lsa_options;
  static constexpr const char *name = "lsa_options";
  static constexpr auto create = &::lsa_options_create;
  static constexpr auto destroy = &::lsa_options_destroy;
  static constexpr auto compare = &::lsa_options_compare;
  static constexpr auto hash = &::lsa_options_hash;
  static constexpr auto print = &::lsa_options_print;
  static constexpr auto to_xml = &::lsa_options_to_xml;
  static constexpr auto from_xml = &::lsa_options_from_xml;
  static constexpr auto marshal = &::lsa_options_marshal;
  static constexpr auto unmarshal = &::lsa_options_unmarshal;
  static constexpr auto length = &::lsa_options_len;
  static constexpr auto adjust_variant = &::lsa_options_adjust_variant;
};
struct ospfv2_lsa_body_flags {
  using c_type = ::ospfv2_lsa_body_flags;
  static constexpr const char *name = "ospfv2_lsa_body_flags";
  static constexpr auto create = &::ospfv2_lsa_body_flags_create;
  static constexpr auto destroy = &::ospfv2_lsa_body_flags_destroy;
  static constexpr auto compare = &::ospfv2_lsa_body_flags_compare;
  static constexpr auto hash = &::ospfv2_lsa_body_flags_hash;
  static constexpr auto print = &::ospfv2_lsa_body_flags_print;
  static constexpr auto to_xml = &::ospfv2_lsa_body_flags_to_xml;
  static constexpr auto from_xml = &::ospfv2_lsa_body_flags_from_xml;
  static constexpr auto marshal = &::ospfv2_lsa_body_flags_marshal;
  static constexpr auto unmarshal = &::ospfv2_lsa_body_flags_unmarshal;
  static constexpr auto length = &::ospfv2_lsa_body_flags_len;
  static constexpr auto adjust_variant = &::ospfv2_lsa_body_flags_adjust_variant;
};
struct ospfv2_network {
  using c_type = ::ospfv2_network;
  static constexpr const char *name = "ospfv2_network";
  static constexpr auto create = &::ospfv2_network_create;
  static constexpr auto destroy = &::ospfv2_network_destroy;
  static constexpr auto compare = &::ospfv2_network_compare;
  static constexpr auto hash = &::ospfv2_network_hash;
  static constexpr auto print = &::ospfv2_network_print;
  static constexpr auto to_xml = &::ospfv2_network_to_xml;
  static constexpr auto from_xml = &::ospfv2_network_from_xml;
  static constexpr auto marshal = &::ospfv2_network_marshal;
  static constexpr auto unmarshal = &::ospfv2_network_unmarshal;
  static constexpr auto length = &::ospfv2_network_len;
  static constexpr auto adjust_variant = &::ospfv2_network_adjust_variant;
};
struct ospfv2_lsa_body {
  using c_type = ::ospfv2_lsa_body;
  static constexpr const char *name = "ospfv2_lsa_body";
  static constexpr auto create = &::ospfv2_lsa_body_create;
  static constexpr auto destroy = &::ospfv2_lsa_body_destroy;
  static constexpr auto compare = &::ospfv2_lsa_body_compare;
  static constexpr auto hash = &::ospfv2_lsa_body_hash;
  static constexpr auto print = &::ospfv2_lsa_body_print;
  static constexpr auto to_xml = &::ospfv2_lsa_body_to_xml;
  static constexpr auto from_xml = &::ospfv2_lsa_body_from_xml;
  static constexpr auto marshal = &::ospfv2_lsa_body_marshal;
  static constexpr auto unmarshal = &::ospfv2_lsa_body_unmarshal;
  static constexpr auto length = &::ospfv2_lsa_body_len;
  static constexpr auto adjust_variant = &::ospfv2_lsa_body_adjust_variant;
};
struct lsa_header {
  using c_type = ::lsa_header;
  static constexpr const char *name = "lsa_header";
  static constexpr auto create = &::lsa_header_create;
  static constexpr auto destroy = &::lsa_header_destroy;
  static constexpr auto compare = &::lsa_header_compare;
  static constexpr auto hash = &::lsa_header_hash;
  static constexpr auto print = &::lsa_header_print;
  static constexpr auto to_xml = &::lsa_header_to_xml;
  static constexpr auto from_xml = &::lsa_header_from_xml;
  static constexpr auto marshal = &::lsa_header_marshal;
  static constexpr auto unmarshal = &::lsa_header_unmarshal;
  static constexpr auto length = &::lsa_header_len;
  static constexpr auto adjust_variant = &::lsa_header_adjust_variant;
};
struct ospfv2_header {
  using c_type = ::ospfv2_header;
  static constexpr const char *name = "ospfv2_header";
  static constexpr auto create = &::ospfv2_header_create;
  static constexpr auto destroy = &::ospfv2_header_destroy;
  static constexpr auto compare = &::ospfv2_header_compare;
  static constexpr auto hash = &::ospfv2_header_hash;
  static constexpr auto print = &::ospfv2_header_print;
  static constexpr auto to_xml = &::ospfv2_header_to_xml;
  static constexpr auto from_xml = &::ospfv2_header_from_xml;
  static constexpr auto marshal = &::ospfv2_header_marshal;
  static constexpr auto unmarshal = &::ospfv2_header_unmarshal;
  static constexpr auto length = &::ospfv2_header_len;
  static constexpr auto adjust_variant = &::ospfv2_header_adjust_variant;
};
struct ospfv2_lsa {
  using c_type = ::ospfv2_lsa;
  static constexpr const char *name = "ospfv2_lsa";
  static constexpr auto create = &::ospfv2_lsa_create;
  static constexpr auto destroy = &::ospfv2_lsa_destroy;
  static constexpr auto compare = &::ospfv2_lsa_compare;
  static constexpr auto hash = &::ospfv2_lsa_hash;
  static constexpr auto print = &::ospfv2_lsa_print;
  static constexpr auto to_xml = &::ospfv2_lsa_to_xml;
  static constexpr auto from_xml = &::ospfv2_lsa_from_xml;
  static constexpr auto marshal = &::ospfv2_lsa_marshal;
  static constexpr auto unmarshal = &::ospfv2_lsa_unmarshal;
  static constexpr auto length = &::ospfv2_lsa_len;
  static constexpr auto adjust_variant = &::ospfv2_lsa_adjust_variant;
};
struct ospfv3_lsa_options {
  using c_type = ::ospfv3_lsa_options;
  static constexpr const char *name = "ospfv3_lsa_options";
  static constexpr auto create = &::ospfv3_lsa_options_create;
  static constexpr auto destroy = &::ospfv3_lsa_options_destroy;
  static constexpr auto compare = &::ospfv3_lsa_options_compare;
  static constexpr auto hash = &::ospfv3_lsa_options_hash;
  static constexpr auto print = &::ospfv3_lsa_options_print;
  static constexpr auto to_xml = &::ospfv3_lsa_options_to_xml;
  static constexpr auto from_xml = &::ospfv3_lsa_options_from_xml;
  static constexpr auto marshal = &::ospfv3_lsa_options_marshal;
  static constexpr auto unmarshal = &::ospfv3_lsa_options_unmarshal;
  static constexpr auto length = &::ospfv3_lsa_options_len;
  static constexpr auto adjust_variant = &::ospfv3_lsa_options_adjust_variant;
};
struct ospfv3_header {
  using c_type = ::ospfv3_header;
  static constexpr const char *name = "ospfv3_header";
  static constexpr auto create = &::ospfv3_header_create;
  static constexpr auto destroy = &::ospfv3_header_destroy;
  static constexpr auto compare = &::ospfv3_header_compare;
  static constexpr auto hash = &::ospfv3_header_hash;
  static constexpr auto print = &::ospfv3_header_print;
  static constexpr auto to_xml = &::ospfv3_header_to_xml;
  static constexpr auto from_xml = &::ospfv3_header_from_xml;
  static constexpr auto marshal = &::ospfv3_header_marshal;
  static constexpr auto unmarshal = &::ospfv3_header_unmarshal;
  static constexpr auto length = &::ospfv3_header_len;
  static constexpr auto adjust_variant = &::ospfv3_header_adjust_variant;
};
struct ospfv3_lsa_body_flags {
  using c_type = ::ospfv3_lsa_body_flags;
  static constexpr const char *name = "ospfv3_lsa_body_flags";
  static constexpr auto create = &::ospfv3_lsa_body_flags_create;
  static constexpr auto destroy = &::ospfv3_lsa_body_flags_destroy;
  static constexpr auto compare = &::ospfv3_lsa_body_flags_compare;
  static constexpr auto hash = &::ospfv3_lsa_body_flags_hash;
  static constexpr auto print = &::ospfv3_lsa_body_flags_print;
  static constexpr auto to_xml = &::ospfv3_lsa_body_flags_to_xml;
  static constexpr auto from_xml = &::ospfv3_lsa_body_flags_from_xml;
  static constexpr auto marshal = &::ospfv3_lsa_body_flags_marshal;
  static constexpr auto unmarshal = &::ospfv3_lsa_body_flags_unmarshal;
  static constexpr auto length = &::ospfv3_lsa_body_flags_len;
  static constexpr auto adjust_variant = &::ospfv3_lsa_body_flags_adjust_variant;
};
struct ospfv3_network {
  using c_type = ::ospfv3_network;
  static constexpr const char *name = "ospfv3_network";
  static constexpr auto create = &::ospfv3_network_create;
  static constexpr auto destroy = &::ospfv3_network_destroy;
  static constexpr auto compare = &::ospfv3_network_compare;
  static constexpr auto hash = &::ospfv3_network_hash;
  static constexpr auto print = &::ospfv3_network_print;
  static constexpr auto to_xml = &::ospfv3_network_to_xml;
  static constexpr auto from_xml = &::ospfv3_network_from_xml;
  static constexpr auto marshal = &::ospfv3_network_marshal;
  static constexpr auto unmarshal = &::ospfv3_network_unmarshal;
  static constexpr auto length = &::ospfv3_network_len;
  static constexpr auto adjust_variant = &::ospfv3_network_adjust_variant;
};
struct ospfv3_inter_area_prefix {
  using c_type = ::ospfv3_inter_area_prefix;
  static constexpr const char *name = "ospfv3_inter_area_prefix";
  static constexpr auto create = &::ospfv3_inter_area_prefix_create;
  static constexpr auto destroy = &::ospfv3_inter_area_prefix_destroy;
  static constexpr auto compare = &::ospfv3_inter_area_prefix_compare;
  static constexpr auto hash = &::ospfv3_inter_area_prefix_hash;
  static constexpr auto print = &::ospfv3_inter_area_prefix_print;
  static constexpr auto to_xml = &::ospfv3_inter_area_prefix_to_xml;
  static constexpr auto from_xml = &::ospfv3_inter_area_prefix_from_xml;
  static constexpr auto marshal = &::ospfv3_inter_area_prefix_marshal;
  static constexpr auto unmarshal = &::ospfv3_inter_area_prefix_unmarshal;
  static constexpr auto length = &::ospfv3_inter_area_prefix_len;
  static constexpr auto adjust_variant = &::ospfv3_inter_area_prefix_adjust_variant;
};
struct ospfv3_inter_area_router {
  using c_type = ::ospfv3_inter_area_router;
  static constexpr const char *name = "ospfv3_inter_area_router";
  static constexpr auto create = &::ospfv3_inter_area_router_create;
  static constexpr auto destroy = &::ospfv3_inter_area_router_destroy;
  static constexpr auto compare = &::ospfv3_inter_area_router_compare;
  static constexpr auto hash = &::ospfv3_inter_area_router_hash;
  static constexpr auto print = &::ospfv3_inter_area_router_print;
  static constexpr auto to_xml = &::ospfv3_inter_area_router_to_xml;
  static constexpr auto from_xml = &::ospfv3_inter_area_router_from_xml;
  static constexpr auto marshal = &::ospfv3_inter_area_router_marshal;
  static constexpr auto unmarshal = &::ospfv3_inter_area_router_unmarshal;
  static constexpr auto length = &::ospfv3_inter_area_router_len;
  static constexpr auto adjust_variant = &::ospfv3_inter_area_router_adjust_variant;
};
struct ospfv3_lsa_external_flags {
  using c_type = ::ospfv3_lsa_external_flags;
  static constexpr const char *name = "ospfv3_lsa_external_flags";
  static constexpr auto create = &::ospfv3_lsa_external_flags_create;
  static constexpr auto destroy = &::ospfv3_lsa_external_flags_destroy;
  static constexpr auto compare = &::ospfv3_lsa_external_flags_compare;
  static constexpr auto hash = &::ospfv3_lsa_external_flags_hash;
  static constexpr auto print = &::ospfv3_lsa_external_flags_print;
  static constexpr auto to_xml = &::ospfv3_lsa_external_flags_to_xml;
  static constexpr auto from_xml = &::ospfv3_lsa_external_flags_from_xml;
  static constexpr auto marshal = &::ospfv3_lsa_external_flags_marshal;
  static constexpr auto unmarshal = &::ospfv3_lsa_external_flags_unmarshal;
  static constexpr auto length = &::ospfv3_lsa_external_flags_len;
  static constexpr auto adjust_variant = &::ospfv3_lsa_external_flags_adjust_variant;
};
struct ospfv3_lsa_external {
  using c_type = ::ospfv3_lsa_external;
  static constexpr const char *name = "ospfv3_lsa_external";
  static constexpr auto create = &::ospfv3_lsa_external_create;
  static constexpr auto destroy = &::ospfv3_lsa_external_destroy;
  static constexpr auto compare = &::ospfv3_lsa_external_compare;
  static constexpr auto hash = &::ospfv3_lsa_external_hash;
  static constexpr auto print = &::ospfv3_lsa_external_print;
  static constexpr auto to_xml = &::ospfv3_lsa_external_to_xml;
  static constexpr auto from_xml = &::ospfv3_lsa_external_from_xml;
  static constexpr auto marshal = &::ospfv3_lsa_external_marshal;
  static constexpr auto unmarshal = &::ospfv3_lsa_external_unmarshal;
  static constexpr auto length = &::ospfv3_lsa_external_len;
  static constexpr auto adjust_variant = &::ospfv3_lsa_external_adjust_variant;
};
struct ospfv3_nssa {
  using c_type = ::ospfv3_nssa;
  static constexpr const char *name = "ospfv3_nssa";
  static constexpr auto create = &::ospfv3_nssa_create;
  static constexpr auto destroy = &::ospfv3_nssa_destroy;
  static constexpr auto compare = &::ospfv3_nssa_compare;
  static constexpr auto hash = &::ospfv3_nssa_hash;
  static constexpr auto print = &::ospfv3_nssa_print;
  static constexpr auto to_xml = &::ospfv3_nssa_to_xml;
  static constexpr auto from_xml = &::ospfv3_nssa_from_xml;
  static constexpr auto marshal = &::ospfv3_nssa_marshal;
  static constexpr auto unmarshal = &::ospfv3_nssa_unmarshal;
  static constexpr auto length = &::ospfv3_nssa_len;
  static constexpr auto adjust_variant = &::ospfv3_nssa_adjust_variant;
};
struct ospfv3_link_data {
  using c_type = ::ospfv3_link_data;
  static constexpr const char *name = "ospfv3_link_data";
  static constexpr auto create = &::ospfv3_link_data_create;
  static constexpr auto destroy = &::ospfv3_link_data_destroy;
  static constexpr auto compare = &::ospfv3_link_data_compare;
  static constexpr auto hash = &::ospfv3_link_data_hash;
  static constexpr auto print = &::ospfv3_link_data_print;
  static constexpr auto to_xml = &::ospfv3_link_data_to_xml;
  static constexpr auto from_xml = &::ospfv3_link_data_from_xml;
  static constexpr auto marshal = &::ospfv3_link_data_marshal;
  static constexpr auto unmarshal = &::ospfv3_link_data_unmarshal;
  static constexpr auto length = &::ospfv3_link_data_len;
  static constexpr auto adjust_variant = &::ospfv3_link_data_adjust_variant;
};
struct ospfv3_intra_area_prefix {
  using c_type = ::ospfv3_intra_area_prefix;
  static constexpr const char *name = "ospfv3_intra_area_prefix";
  static constexpr auto create = &::ospfv3_intra_area_prefix_create;
  static constexpr auto destroy = &::ospfv3_intra_area_prefix_destroy;
  static constexpr auto compare = &::ospfv3_intra_area_prefix_compare;
  static constexpr auto hash = &::ospfv3_intra_area_prefix_hash;
  static constexpr auto print = &::ospfv3_intra_area_prefix_print;
  static constexpr auto to_xml = &::ospfv3_intra_area_prefix_to_xml;
  static constexpr auto from_xml = &::ospfv3_intra_area_prefix_from_xml;
  static constexpr auto marshal = &::ospfv3_intra_area_prefix_marshal;
  static constexpr auto unmarshal = &::ospfv3_intra_area_prefix_unmarshal;
  static constexpr auto length = &::ospfv3_intra_area_prefix_len;
  static constexpr auto adjust_variant = &::ospfv3_intra_area_prefix_adjust_variant;
};
struct ospfv3_lsa_body {
  using c_type = ::ospfv3_lsa_body;
  static constexpr const char *name = "ospfv3_lsa_body";
  static constexpr auto create = &::ospfv3_lsa_body_create;
  static constexpr auto destroy = &::ospfv3_lsa_body_destroy;
  static constexpr auto compare = &::ospfv3_lsa_body_compare;
  static constexpr auto hash = &::ospfv3_lsa_body_hash;
  static constexpr auto print = &::ospfv3_lsa_body_print;
  static constexpr auto to_xml = &::ospfv3_lsa_body_to_xml;
  static constexpr auto from_xml = &::ospfv3_lsa_body_from_xml;
  static constexpr auto marshal = &::ospfv3_lsa_body_marshal;
  static constexpr auto unmarshal = &::ospfv3_lsa_body_unmarshal;
  static constexpr auto length = &::ospfv3_lsa_body_len;
  static constexpr auto adjust_variant = &::ospfv3_lsa_body_adjust_variant;
};
struct ospfv3_lsa {
  using c_type = ::ospfv3_lsa;
  static constexpr const char *name = "ospfv3_lsa";
  static constexpr auto create = &::ospfv3_lsa_create;
  static constexpr auto destroy = &::ospfv3_lsa_destroy;
  static constexpr auto compare = &::ospfv3_lsa_compare;
  static constexpr auto hash = &::ospfv3_lsa_hash;
  static constexpr auto print = &::ospfv3_lsa_print;
  static constexpr auto to_xml = &::ospfv3_lsa_to_xml;
  static constexpr auto from_xml = &::ospfv3_lsa_from_xml;
  static constexpr auto marshal = &::ospfv3_lsa_marshal;
  static constexpr auto unmarshal = &::ospfv3_lsa_unmarshal;
  static constexpr auto length = &::ospfv3_lsa_len;
  static constexpr auto adjust_variant = &::ospfv3_lsa_adjust_variant;
};
struct ospfv3_link_key {
  using c_type = ::ospfv3_link_key;
  static constexpr const char *name = "ospfv3_link_key";
  static constexpr auto create = &::ospfv3_link_key_create;
  static constexpr auto destroy = &::ospfv3_link_key_destroy;
  static constexpr auto compare = &::ospfv3_link_key_compare;
  static constexpr auto hash = &::ospfv3_link_key_hash;
  static constexpr auto print = &::ospfv3_link_key_print;
  static constexpr auto to_xml = &::ospfv3_link_key_to_xml;
  static constexpr auto from_xml = &::ospfv3_link_key_from_xml;
  static constexpr auto marshal = &::ospfv3_link_key_marshal;
  static constexpr auto unmarshal = &::ospfv3_link_key_unmarshal;
  static constexpr auto length = &::ospfv3_link_key_len;
  static constexpr auto adjust_variant = &::ospfv3_link_key_adjust_variant;
};
struct ospfv3_link {
  using c_type = ::ospfv3_link;
  static constexpr const char *name = "ospfv3_link";
  static constexpr auto create = &::ospfv3_link_create;
  static constexpr auto destroy = &::ospfv3_link_destroy;
  static constexpr auto compare = &::ospfv3_link_compare;
  static constexpr auto hash = &::ospfv3_link_hash;
  static constexpr auto print = &::ospfv3_link_print;
  static constexpr auto to_xml = &::ospfv3_link_to_xml;
  static constexpr auto from_xml = &::ospfv3_link_from_xml;
  static constexpr auto marshal = &::ospfv3_link_marshal;
  static constexpr auto unmarshal = &::ospfv3_link_unmarshal;
  static constexpr auto length = &::ospfv3_link_len;
  static constexpr auto adjust_variant = &::ospfv3_link_adjust_variant;
};
struct ospfv3_prefix_list {
  using c_type = ::ospfv3_prefix_list;
  static constexpr const char *name = "ospfv3_prefix_list";
  static constexpr auto create = &::ospfv3_prefix_list_create;
  static constexpr auto destroy = &::ospfv3_prefix_list_destroy;
  static constexpr auto compare = &::ospfv3_prefix_list_compare;
  static constexpr auto hash = &::ospfv3_prefix_list_hash;
  static constexpr auto print = &::ospfv3_prefix_list_print;
  static constexpr auto to_xml = &::ospfv3_prefix_list_to_xml;
  static constexpr auto from_xml = &::ospfv3_prefix_list_from_xml;
  static constexpr auto marshal = &::ospfv3_prefix_list_marshal;
  static constexpr auto unmarshal = &::ospfv3_prefix_list_unmarshal;
  static constexpr auto length = &::ospfv3_prefix_list_len;
  static constexpr auto adjust_variant = &::ospfv3_prefix_list_adjust_variant;
};
struct multi_topology {
  using c_type = ::multi_topology;
  static constexpr const char *name = "multi_topology";
  static constexpr auto create = &::multi_topology_create;
  static constexpr auto destroy = &::multi_topology_destroy;
  static constexpr auto compare = &::multi_topology_compare;
  static constexpr auto hash = &::multi_topology_hash;
  static constexpr auto print = &::multi_topology_print;
  static constexpr auto to_xml = &::multi_topology_to_xml;
  static constexpr auto from_xml = &::multi_topology_from_xml;
  static constexpr auto marshal = &::multi_topology_marshal;
  static constexpr auto unmarshal = &::multi_topology_unmarshal;
  static constexpr auto length = &::multi_topology_len;
  static constexpr auto adjust_variant = &::multi_topology_adjust_variant;
};
struct link_scope_lsa {
  using c_type = ::link_scope_lsa;
  static constexpr const char *name = "link_scope_lsa";
  static constexpr auto create = &::link_scope_lsa_create;
  static constexpr auto destroy = &::link_scope_lsa_destroy;
  static constexpr auto compare = &::link_scope_lsa_compare;
  static constexpr auto hash = &::link_scope_lsa_hash;
  static constexpr auto print = &::link_scope_lsa_print;
  static constexpr auto to_xml = &::link_scope_lsa_to_xml;
  static constexpr auto from_xml = &::link_scope_lsa_from_xml;
  static constexpr auto marshal = &::link_scope_lsa_marshal;
  static constexpr auto unmarshal = &::link_scope_lsa_unmarshal;
  static constexpr auto length = &::link_scope_lsa_len;
  static constexpr auto adjust_variant = &::link_scope_lsa_adjust_variant;
};
struct area_scope_lsa_key {
  using c_type = ::area_scope_lsa_key;
  static constexpr const char *name = "area_scope_lsa_key";
  static constexpr auto create = &::area_scope_lsa_key_create;
  static constexpr auto destroy = &::area_scope_lsa_key_destroy;
  static constexpr auto compare = &::area_scope_lsa_key_compare;
  static constexpr auto hash = &::area_scope_lsa_key_hash;
  static constexpr auto print = &::area_scope_lsa_key_print;
  static constexpr auto to_xml = &::area_scope_lsa_key_to_xml;
  static constexpr auto from_xml = &::area_scope_lsa_key_from_xml;
  static constexpr auto marshal = &::area_scope_lsa_key_marshal;
  static constexpr auto unmarshal = &::area_scope_lsa_key_unmarshal;
  static constexpr auto length = &::area_scope_lsa_key_len;
  static constexpr auto adjust_variant = &::area_scope_lsa_key_adjust_variant;
};
struct area_scope_lsa {
  using c_type = ::area_scope_lsa;
  static constexpr const char *name = "area_scope_lsa";
  static constexpr auto create = &::area_scope_lsa_create;
  static constexpr auto destroy = &::area_scope_lsa_destroy;
  static constexpr auto compare = &::area_scope_lsa_compare;
  static constexpr auto hash = &::area_scope_lsa_hash;
  static constexpr auto print = &::area_scope_lsa_print;
  static constexpr auto to_xml = &::area_scope_lsa_to_xml;
  static constexpr auto from_xml = &::area_scope_lsa_from_xml;
  static constexpr auto marshal = &::area_scope_lsa_marshal;
  static constexpr auto unmarshal = &::area_scope_lsa_unmarshal;
  static constexpr auto length = &::area_scope_lsa_len;
  static constexpr auto adjust_variant = &::area_scope_lsa_adjust_variant;
};
struct area_scope_lsas {
  using c_type = ::area_scope_lsas;
  static constexpr const char *name = "area_scope_lsas";
  static constexpr auto create = &::area_scope_lsas_create;
  static constexpr auto destroy = &::area_scope_lsas_destroy;
  static constexpr auto compare = &::area_scope_lsas_compare;
  static constexpr auto hash = &::area_scope_lsas_hash;
  static constexpr auto print = &::area_scope_lsas_print;
  static constexpr auto to_xml = &::area_scope_lsas_to_xml;
  static constexpr auto from_xml = &::area_scope_lsas_from_xml;
  static constexpr auto marshal = &::area_scope_lsas_marshal;
  static constexpr auto unmarshal = &::area_scope_lsas_unmarshal;
  static constexpr auto length = &::area_scope_lsas_len;
  static constexpr auto adjust_variant = &::area_scope_lsas_adjust_variant;
};
struct link_scope_lsas {
  using c_type = ::link_scope_lsas;
  static constexpr const char *name = "link_scope_lsas";
  static constexpr auto create = &::link_scope_lsas_create;
  static constexpr auto destroy = &::link_scope_lsas_destroy;
  static constexpr auto compare = &::link_scope_lsas_compare;
  static constexpr auto hash = &::link_scope_lsas_hash;
  static constexpr auto print = &::link_scope_lsas_print;
  static constexpr auto to_xml = &::link_scope_lsas_to_xml;
  static constexpr auto from_xml = &::link_scope_lsas_from_xml;
  static constexpr auto marshal = &::link_scope_lsas_marshal;
  static constexpr auto unmarshal = &::link_scope_lsas_unmarshal;
  static constexpr auto length = &::link_scope_lsas_len;
  static constexpr auto adjust_variant = &::link_scope_lsas_adjust_variant;
};
struct ospf_static_neighbor {
  using c_type = ::ospf_static_neighbor;
  static constexpr const char *name = "ospf_static_neighbor";
  static constexpr auto create = &::ospf_static_neighbor_create;
  static constexpr auto destroy = &::ospf_static_neighbor_destroy;
  static constexpr auto compare = &::ospf_static_neighbor_compare;
  static constexpr auto hash = &::ospf_static_neighbor_hash;
  static constexpr auto print = &::ospf_static_neighbor_print;
  static constexpr auto to_xml = &::ospf_static_neighbor_to_xml;
  static constexpr auto from_xml = &::ospf_static_neighbor_from_xml;
  static constexpr auto marshal = &::ospf_static_neighbor_marshal;
  static constexpr auto unmarshal = &::ospf_static_neighbor_unmarshal;
  static constexpr auto length = &::ospf_static_neighbor_len;
  static constexpr auto adjust_variant = &::ospf_static_neighbor_adjust_variant;
};
struct ospf_nbr_stat {
  using c_type = ::ospf_nbr_stat;
  static constexpr const char *name = "ospf_nbr_stat";
  static constexpr auto create = &::ospf_nbr_stat_create;
  static constexpr auto destroy = &::ospf_nbr_stat_destroy;
  static constexpr auto compare = &::ospf_nbr_stat_compare;
  static constexpr auto hash = &::ospf_nbr_stat_hash;
  static constexpr auto print = &::ospf_nbr_stat_print;
  static constexpr auto to_xml = &::ospf_nbr_stat_to_xml;
  static constexpr auto from_xml = &::ospf_nbr_stat_from_xml;
  static constexpr auto marshal = &::ospf_nbr_stat_marshal;
  static constexpr auto unmarshal = &::ospf_nbr_stat_unmarshal;
  static constexpr auto length = &::ospf_nbr_stat_len;
  static constexpr auto adjust_variant = &::ospf_nbr_stat_adjust_variant;
};
struct ospf_neighbor {
  using c_type = ::ospf_neighbor;
  static constexpr const char *name = "ospf_neighbor";
  static constexpr auto create = &::ospf_neighbor_create;
  static constexpr auto destroy = &::ospf_neighbor_destroy;
  static constexpr auto compare = &::ospf_neighbor_compare;
  static constexpr auto hash = &::ospf_neighbor_hash;
  static constexpr auto print = &::ospf_neighbor_print;
  static constexpr auto to_xml = &::ospf_neighbor_to_xml;
  static constexpr auto from_xml = &::ospf_neighbor_from_xml;
  static constexpr auto marshal = &::ospf_neighbor_marshal;
  static constexpr auto unmarshal = &::ospf_neighbor_unmarshal;
  static constexpr auto length = &::ospf_neighbor_len;
  static constexpr auto adjust_variant = &::ospf_neighbor_adjust_variant;
};
struct fast_reroute {
  using c_type = ::fast_reroute;
  static constexpr const char *name = "fast_reroute";
  static constexpr auto create = &::fast_reroute_create;
  static constexpr auto destroy = &::fast_reroute_destroy;
  static constexpr auto compare = &::fast_reroute_compare;
  static constexpr auto hash = &::fast_reroute_hash;
  static constexpr auto print = &::fast_reroute_print;
  static constexpr auto to_xml = &::fast_reroute_to_xml;
  static constexpr auto from_xml = &::fast_reroute_from_xml;
  static constexpr auto marshal = &::fast_reroute_marshal;
  static constexpr auto unmarshal = &::fast_reroute_unmarshal;
  static constexpr auto length = &::fast_reroute_len;
  static constexpr auto adjust_variant = &::fast_reroute_adjust_variant;
};
struct multi_area {
  using c_type = ::multi_area;
  static constexpr const char *name = "multi_area";
  static constexpr auto create = &::multi_area_create;
  static constexpr auto destroy = &::multi_area_destroy;
  static constexpr auto compare = &::multi_area_compare;
  static constexpr auto hash = &::multi_area_hash;
  static constexpr auto print = &::multi_area_print;
  static constexpr auto to_xml = &::multi_area_to_xml;
  static constexpr auto from_xml = &::multi_area_from_xml;
  static constexpr auto marshal = &::multi_area_marshal;
  static constexpr auto unmarshal = &::multi_area_unmarshal;
  static constexpr auto length = &::multi_area_len;
  static constexpr auto adjust_variant = &::multi_area_adjust_variant;
};
struct ospf_crypto_algorithm {
  using c_type = ::ospf_crypto_algorithm;
  static constexpr const char *name = "ospf_crypto_algorithm";
  static constexpr auto create = &::ospf_crypto_algorithm_create;
  static constexpr auto destroy = &::ospf_crypto_algorithm_destroy;
  static constexpr auto compare = &::ospf_crypto_algorithm_compare;
  static constexpr auto hash = &::ospf_crypto_algorithm_hash;
  static constexpr auto print = &::ospf_crypto_algorithm_print;
  static constexpr auto to_xml = &::ospf_crypto_algorithm_to_xml;
  static constexpr auto from_xml = &::ospf_crypto_algorithm_from_xml;
  static constexpr auto marshal = &::ospf_crypto_algorithm_marshal;
  static constexpr auto unmarshal = &::ospf_crypto_algorithm_unmarshal;
  static constexpr auto length = &::ospf_crypto_algorithm_len;
  static constexpr auto adjust_variant = &::ospf_crypto_algorithm_adjust_variant;
};
struct ospf_authentication {
  using c_type = ::ospf_authentication;
  static constexpr const char *name = "ospf_authentication";
  static constexpr auto create = &::ospf_authentication_create;
  static constexpr auto destroy = &::ospf_authentication_destroy;
  static constexpr auto compare = &::ospf_authentication_compare;
  static constexpr auto hash = &::ospf_authentication_hash;
  static constexpr auto print = &::ospf_authentication_print;
  static constexpr auto to_xml = &::ospf_authentication_to_xml;
  static constexpr auto from_xml = &::ospf_authentication_from_xml;
  static constexpr auto marshal = &::ospf_authentication_marshal;
  static constexpr auto unmarshal = &::ospf_authentication_unmarshal;
  static constexpr auto length = &::ospf_authentication_len;
  static constexpr auto adjust_variant = &::ospf_authentication_adjust_variant;
};
struct ttl_security {
  using c_type = ::ttl_security;
  static constexpr const char *name = "ttl_security";
  static constexpr auto create = &::ttl_security_create;
  static constexpr auto destroy = &::ttl_security_destroy;
  static constexpr auto compare = &::ttl_security_compare;
  static constexpr auto hash = &::ttl_security_hash;
  static constexpr auto print = &::ttl_security_print;
  static constexpr auto to_xml = &::ttl_security_to_xml;
  static constexpr auto from_xml = &::ttl_security_from_xml;
  static constexpr auto marshal = &::ttl_security_marshal;
  static constexpr auto unmarshal = &::ttl_security_unmarshal;
  static constexpr auto length = &::ttl_security_len;
  static constexpr auto adjust_variant = &::ttl_security_adjust_variant;
};
struct ospf_interface {
  using c_type = ::ospf_interface;
  static constexpr const char *name = "ospf_interface";
  static constexpr auto create = &::ospf_interface_create;
  static constexpr auto destroy = &::ospf_interface_destroy;
  static constexpr auto compare = &::ospf_interface_compare;
  static constexpr auto hash = &::ospf_interface_hash;
  static constexpr auto print = &::ospf_interface_print;
  static constexpr auto to_xml = &::ospf_interface_to_xml;
  static constexpr auto from_xml = &::ospf_interface_from_xml;
  static constexpr auto marshal = &::ospf_interface_marshal;
  static constexpr auto unmarshal = &::ospf_interface_unmarshal;
  static constexpr auto length = &::ospf_interface_len;
  static constexpr auto adjust_variant = &::ospf_interface_adjust_variant;
};
struct ospf_area {
  using c_type = ::ospf_area;
  static constexpr const char *name = "ospf_area";
  static constexpr auto create = &::ospf_area_create;
  static constexpr auto destroy = &::ospf_area_destroy;
  static constexpr auto compare = &::ospf_area_compare;
  static constexpr auto hash = &::ospf_area_hash;
  static constexpr auto print = &::ospf_area_print;
  static constexpr auto to_xml = &::ospf_area_to_xml;
  static constexpr auto from_xml = &::ospf_area_from_xml;
  static constexpr auto marshal = &::ospf_area_marshal;
  static constexpr auto unmarshal = &::ospf_area_unmarshal;
  static constexpr auto length = &::ospf_area_len;
  static constexpr auto adjust_variant = &::ospf_area_adjust_variant;
};
struct ospf_instance {
  using c_type = ::ospf_instance;
  static constexpr const char *name = "ospf_instance";
  static constexpr auto create = &::ospf_instance_create;
  static constexpr auto destroy = &::ospf_instance_destroy;
  static constexpr auto compare = &::ospf_instance_compare;
  static constexpr auto hash = &::ospf_instance_hash;
  static constexpr auto print = &::ospf_instance_print;
  static constexpr auto to_xml = &::ospf_instance_to_xml;
  static constexpr auto from_xml = &::ospf_instance_from_xml;
  static constexpr auto marshal = &::ospf_instance_marshal;
  static constexpr auto unmarshal = &::ospf_instance_unmarshal;
  static constexpr auto length = &::ospf_instance_len;
  static constexpr auto adjust_variant = &::ospf_instance_adjust_variant;
};
struct ospf {
  using c_type = ::ospf;
  static constexpr const char *name = "ospf";
  static constexpr auto create = &::ospf_create;
  static constexpr auto destroy = &::ospf_destroy;
  static constexpr auto compare = &::ospf_compare;
  static constexpr auto hash = &::ospf_hash;
  static constexpr auto print = &::ospf_print;
  static constexpr auto to_xml = &::ospf_to_xml;
  static constexpr auto from_xml = &::ospf_from_xml;
  static constexpr auto marshal = &::ospf_marshal;
  static constexpr auto unmarshal = &::ospf_unmarshal;
  static constexpr auto length = &::ospf_len;
  static constexpr auto adjust_variant = &::ospf_adjust_variant;
};
struct ospf_instance_rev1_key {
  using c_type = ::ospf_instance_rev1_key;
  static constexpr const char *name = "ospf_instance_rev1_key";
  static constexpr auto create = &::ospf_instance_rev1_key_create;
  static constexpr auto destroy = &::ospf_instance_rev1_key_destroy;
  static constexpr auto compare = &::ospf_instance_rev1_key_compare;
  static constexpr auto hash = &::ospf_instance_rev1_key_hash;
  static constexpr auto print = &::ospf_instance_rev1_key_print;
  static constexpr auto to_xml = &::ospf_instance_rev1_key_to_xml;
  static constexpr auto from_xml = &::ospf_instance_rev1_key_from_xml;
  static constexpr auto marshal = &::ospf_instance_rev1_key_marshal;
  static constexpr auto unmarshal = &::ospf_instance_rev1_key_unmarshal;
  static constexpr auto length = &::ospf_instance_rev1_key_len;
  static constexpr auto adjust_variant = &::ospf_instance_rev1_key_adjust_variant;
};
struct ospf_instance_rev1 {
  using c_type = ::ospf_instance_rev1;
  static constexpr const char *name = "ospf_instance_rev1";
  static constexpr auto create = &::ospf_instance_rev1_create;
  static constexpr auto destroy = &::ospf_instance_rev1_destroy;
  static constexpr auto compare = &::ospf_instance_rev1_compare;
  static constexpr auto hash = &::ospf_instance_rev1_hash;
  static constexpr auto print = &::ospf_instance_rev1_print;
  static constexpr auto to_xml = &::ospf_instance_rev1_to_xml;
  static constexpr auto from_xml = &::ospf_instance_rev1_from_xml;
  static constexpr auto marshal = &::ospf_instance_rev1_marshal;
  static constexpr auto unmarshal = &::ospf_instance_rev1_unmarshal;
  static constexpr auto length = &::ospf_instance_rev1_len;
  static constexpr auto adjust_variant = &::ospf_instance_rev1_adjust_variant;
};
struct ospf_rev1 {
  using c_type = ::ospf_rev1;
  static constexpr const char *name = "ospf_rev1";
  static constexpr auto create = &::ospf_rev1_create;
  static constexpr auto destroy = &::ospf_rev1_destroy;
  static constexpr auto compare = &::ospf_rev1_compare;
  static constexpr auto hash = &::ospf_rev1_hash;
  static constexpr auto print = &::ospf_rev1_print;
  static constexpr auto to_xml = &::ospf_rev1_to_xml;
  static constexpr auto from_xml = &::ospf_rev1_from_xml;
  static constexpr auto marshal = &::ospf_rev1_marshal;
  static constexpr auto unmarshal = &::ospf_rev1_unmarshal;
  static constexpr auto length = &::ospf_rev1_len;
  static constexpr auto adjust_variant = &::ospf_rev1_adjust_variant;
};
struct tbl_ospfv2_unknown_sub_tlv {
  using c_type = ::tbl_ospfv2_unknown_sub_tlv_table;
  using record_type = ::tbl_ospfv2_unknown_sub_tlv_record;
  using object_type = ospf_harbor::ospfv2::unknown_sub_tlv_ref;
  using key_type = std::uint16_t;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_ospfv2_unknown_sub_tlv";
  static constexpr auto open = &::tbl_ospfv2_unknown_sub_tlv_table_open;
  static constexpr auto make = &::tbl_ospfv2_unknown_sub_tlv_table_open_auto_id;
  static constexpr auto free = &::tbl_ospfv2_unknown_sub_tlv_table_free;
  static constexpr auto count = &::tbl_ospfv2_unknown_sub_tlv_table_get_count;
  static constexpr auto create_record = &::tbl_ospfv2_unknown_sub_tlv_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospfv2_unknown_sub_tlv_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospfv2_unknown_sub_tlv_request_record_destroy;
  static constexpr auto insert = &::tbl_ospfv2_unknown_sub_tlv_insert;
  static constexpr auto first = &::tbl_ospfv2_unknown_sub_tlv_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospfv2_unknown_sub_tlv_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospfv2_unknown_sub_tlv_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospfv2_unknown_sub_tlv_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospfv2_unknown_sub_tlv_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospfv2_unknown_sub_tlv_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospfv2_unknown_sub_tlv_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospfv2_unknown_sub_tlv_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospfv2_unknown_sub_tlv_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospfv2_unknown_sub_tlv_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospfv2_unknown_sub_tlv_table_record_print;
  static constexpr auto to_xml = &::tbl_ospfv2_unknown_sub_tlv_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospfv2_unknown_sub_tlv_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospfv2_unknown_sub_tlv_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospfv2_unknown_sub_tlv_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospfv2_unknown_sub_tlv_table_record_len;
  static constexpr auto get = &::tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_get_field;
  static constexpr auto put = &::tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_set_field;
  static key_type key_of(const row<tbl_ospfv2_unknown_sub_tlv> &of);
  static void set_key(const row<tbl_ospfv2_unknown_sub_tlv> &of, const key_type &key);
  static void complete(const row<tbl_ospfv2_unknown_sub_tlv> &made);
};
struct tbl_ospfv2_unknown_tlv {
  using c_type = ::tbl_ospfv2_unknown_tlv_table;
  using record_type = ::tbl_ospfv2_unknown_tlv_record;
  using object_type = ospf_harbor::ospfv2::unknown_tlv_ref;
  using key_type = std::uint16_t;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_ospfv2_unknown_tlv";
  static constexpr auto open = &::tbl_ospfv2_unknown_tlv_table_open;
  static constexpr auto make = &::tbl_ospfv2_unknown_tlv_table_open_auto_id;
  static constexpr auto free = &::tbl_ospfv2_unknown_tlv_table_free;
  static constexpr auto count = &::tbl_ospfv2_unknown_tlv_table_get_count;
  static constexpr auto create_record = &::tbl_ospfv2_unknown_tlv_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospfv2_unknown_tlv_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospfv2_unknown_tlv_request_record_destroy;
  static constexpr auto insert = &::tbl_ospfv2_unknown_tlv_insert;
  static constexpr auto first = &::tbl_ospfv2_unknown_tlv_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospfv2_unknown_tlv_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospfv2_unknown_tlv_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospfv2_unknown_tlv_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospfv2_unknown_tlv_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospfv2_unknown_tlv_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospfv2_unknown_tlv_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospfv2_unknown_tlv_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospfv2_unknown_tlv_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospfv2_unknown_tlv_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospfv2_unknown_tlv_table_record_print;
  static constexpr auto to_xml = &::tbl_ospfv2_unknown_tlv_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospfv2_unknown_tlv_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospfv2_unknown_tlv_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospfv2_unknown_tlv_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospfv2_unknown_tlv_table_record_len;
  static constexpr auto get = &::tbl_ospfv2_unknown_tlv_ospfv2_unknown_tlv_get_field;
  static constexpr auto put = &::tbl_ospfv2_unknown_tlv_ospfv2_unknown_tlv_set_field;
  static key_type key_of(const row<tbl_ospfv2_unknown_tlv> &of);
  static void set_key(const row<tbl_ospfv2_unknown_tlv> &of, const key_type &key);
  static void complete(const row<tbl_ospfv2_unknown_tlv> &made);
};
struct tbl_ospfv2_external {
  using c_type = ::tbl_ospfv2_external_table;
  using record_type = ::tbl_ospfv2_external_record;
  using object_type = ospf_harbor::ospfv2::external_ref;
  using key_type = std::uint32_t;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_ospfv2_external";
  static constexpr auto open = &::tbl_ospfv2_external_table_open;
  static constexpr auto make = &::tbl_ospfv2_external_table_open_auto_id;
  static constexpr auto free = &::tbl_ospfv2_external_table_free;
  static constexpr auto count = &::tbl_ospfv2_external_table_get_count;
  static constexpr auto create_record = &::tbl_ospfv2_external_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospfv2_external_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospfv2_external_request_record_destroy;
  static constexpr auto insert = &::tbl_ospfv2_external_insert;
  static constexpr auto first = &::tbl_ospfv2_external_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospfv2_external_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospfv2_external_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospfv2_external_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospfv2_external_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospfv2_external_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospfv2_external_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospfv2_external_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospfv2_external_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospfv2_external_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospfv2_external_table_record_print;
  static constexpr auto to_xml = &::tbl_ospfv2_external_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospfv2_external_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospfv2_external_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospfv2_external_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospfv2_external_table_record_len;
  static constexpr auto get = &::tbl_ospfv2_external_ospfv2_external_get_field;
  static constexpr auto put = &::tbl_ospfv2_external_ospfv2_external_set_field;
  static key_type key_of(const row<tbl_ospfv2_external> &of);
  static void set_key(const row<tbl_ospfv2_external> &of, const key_type &key);
  static void complete(const row<tbl_ospfv2_external> &made);
};
struct tbl_ospfv2_topology {
  using c_type = ::tbl_ospfv2_topology_table;
  using record_type = ::tbl_ospfv2_topology_record;
  using object_type = ospf_harbor::ospfv2::topology_ref;
  using key_type = std::uint32_t;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_ospfv2_topology";
  static constexpr auto open = &::tbl_ospfv2_topology_table_open;
  static constexpr auto make = &::tbl_ospfv2_topology_table_open_auto_id;
  static constexpr auto free = &::tbl_ospfv2_topology_table_free;
  static constexpr auto count = &::tbl_ospfv2_topology_table_get_count;
  static constexpr auto create_record = &::tbl_ospfv2_topology_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospfv2_topology_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospfv2_topology_request_record_destroy;
  static constexpr auto insert = &::tbl_ospfv2_topology_insert;
  static constexpr auto first = &::tbl_ospfv2_topology_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospfv2_topology_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospfv2_topology_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospfv2_topology_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospfv2_topology_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospfv2_topology_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospfv2_topology_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospfv2_topology_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospfv2_topology_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospfv2_topology_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospfv2_topology_table_record_print;
  static constexpr auto to_xml = &::tbl_ospfv2_topology_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospfv2_topology_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospfv2_topology_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospfv2_topology_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospfv2_topology_table_record_len;
  static constexpr auto get = &::tbl_ospfv2_topology_ospfv2_topology_get_field;
  static constexpr auto put = &::tbl_ospfv2_topology_ospfv2_topology_set_field;
  static key_type key_of(const row<tbl_ospfv2_topology> &of);
  static void set_key(const row<tbl_ospfv2_topology> &of, const key_type &key);
  static void complete(const row<tbl_ospfv2_topology> &made);
};
struct tbl_ospfv2_link {
  using c_type = ::tbl_ospfv2_link_table;
  using record_type = ::tbl_ospfv2_link_record;
  using object_type = ospf_harbor::ospfv2::link_ref;
  using key_ref = ospf_harbor::ospfv2::link_key_ref;
  using key_type = ospf_harbor::ospfv2::link_key_value;
  static constexpr bool has_key_object = true;
  static constexpr const char *name = "tbl_ospfv2_link";
  static constexpr auto open = &::tbl_ospfv2_link_table_open;
  static constexpr auto make = &::tbl_ospfv2_link_table_open_auto_id;
  static constexpr auto free = &::tbl_ospfv2_link_table_free;
  static constexpr auto count = &::tbl_ospfv2_link_table_get_count;
  static constexpr auto create_record = &::tbl_ospfv2_link_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospfv2_link_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospfv2_link_request_record_destroy;
  static constexpr auto insert = &::tbl_ospfv2_link_insert;
  static constexpr auto first = &::tbl_ospfv2_link_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospfv2_link_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospfv2_link_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospfv2_link_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospfv2_link_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospfv2_link_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospfv2_link_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospfv2_link_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospfv2_link_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospfv2_link_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospfv2_link_table_record_print;
  static constexpr auto to_xml = &::tbl_ospfv2_link_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospfv2_link_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospfv2_link_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospfv2_link_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospfv2_link_table_record_len;
  static constexpr auto get = &::tbl_ospfv2_link_ospfv2_link_get_field;
  static constexpr auto put = &::tbl_ospfv2_link_ospfv2_link_set_field;
  static constexpr auto get_key = &::tbl_ospfv2_link_ospfv2_link_key_get_field;
  static constexpr auto put_key = &::tbl_ospfv2_link_ospfv2_link_key_set_field;
  static key_type key_of(const row<tbl_ospfv2_link> &of);
  static void set_key(const row<tbl_ospfv2_link> &of, const key_type &key);
  static void complete(const row<tbl_ospfv2_link> &made);
};
struct tbl_ospfv3_link {
  using c_type = ::tbl_ospfv3_link_table;
  using record_type = ::tbl_ospfv3_link_record;
  using object_type = ospf_harbor::ospfv3::link_ref;
  using key_ref = ospf_harbor::ospfv3::link_key_ref;
  using key_type = ospf_harbor::ospfv3::link_key_value;
  static constexpr bool has_key_object = true;
  static constexpr const char *name = "tbl_ospfv3_link";
  static constexpr auto open = &::tbl_ospfv3_link_table_open;
  static constexpr auto make = &::tbl_ospfv3_link_table_open_auto_id;
  static constexpr auto free = &::tbl_ospfv3_link_table_free;
  static constexpr auto count = &::tbl_ospfv3_link_table_get_count;
  static constexpr auto create_record = &::tbl_ospfv3_link_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospfv3_link_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospfv3_link_request_record_destroy;
  static constexpr auto insert = &::tbl_ospfv3_link_insert;
  static constexpr auto first = &::tbl_ospfv3_link_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospfv3_link_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospfv3_link_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospfv3_link_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospfv3_link_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospfv3_link_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospfv3_link_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospfv3_link_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospfv3_link_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospfv3_link_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospfv3_link_table_record_print;
  static constexpr auto to_xml = &::tbl_ospfv3_link_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospfv3_link_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospfv3_link_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospfv3_link_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospfv3_link_table_record_len;
  static constexpr auto get = &::tbl_ospfv3_link_ospfv3_link_get_field;
  static constexpr auto put = &::tbl_ospfv3_link_ospfv3_link_set_field;
  static constexpr auto get_key = &::tbl_ospfv3_link_ospfv3_link_key_get_field;
  static constexpr auto put_key = &::tbl_ospfv3_link_ospfv3_link_key_set_field;
  static key_type key_of(const row<tbl_ospfv3_link> &of);
  static void set_key(const row<tbl_ospfv3_link> &of, const key_type &key);
  static void complete(const row<tbl_ospfv3_link> &made);
};
struct tbl_ospfv3_prefix_list {
  using c_type = ::tbl_ospfv3_prefix_list_table;
  using record_type = ::tbl_ospfv3_prefix_list_record;
  using object_type = ospf_harbor::ospfv3::prefix_list_ref;
  using key_type = std::string_view;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_ospfv3_prefix_list";
  static constexpr auto open = &::tbl_ospfv3_prefix_list_table_open;
  static constexpr auto make = &::tbl_ospfv3_prefix_list_table_open_auto_id;
  static constexpr auto free = &::tbl_ospfv3_prefix_list_table_free;
  static constexpr auto count = &::tbl_ospfv3_prefix_list_table_get_count;
  static constexpr auto create_record = &::tbl_ospfv3_prefix_list_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospfv3_prefix_list_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospfv3_prefix_list_request_record_destroy;
  static constexpr auto insert = &::tbl_ospfv3_prefix_list_insert;
  static constexpr auto first = &::tbl_ospfv3_prefix_list_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospfv3_prefix_list_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospfv3_prefix_list_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospfv3_prefix_list_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospfv3_prefix_list_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospfv3_prefix_list_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospfv3_prefix_list_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospfv3_prefix_list_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospfv3_prefix_list_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospfv3_prefix_list_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospfv3_prefix_list_table_record_print;
  static constexpr auto to_xml = &::tbl_ospfv3_prefix_list_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospfv3_prefix_list_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospfv3_prefix_list_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospfv3_prefix_list_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospfv3_prefix_list_table_record_len;
  static constexpr auto get = &::tbl_ospfv3_prefix_list_ospfv3_prefix_list_get_field;
  static constexpr auto put = &::tbl_ospfv3_prefix_list_ospfv3_prefix_list_set_field;
  static key_type key_of(const row<tbl_ospfv3_prefix_list> &of);
  static void set_key(const row<tbl_ospfv3_prefix_list> &of, const key_type &key);
  static void complete(const row<tbl_ospfv3_prefix_list> &made);
};
struct tbl_ospfv3_ia_prefix_list {
  using c_type = ::tbl_ospfv3_ia_prefix_list_table;
  using record_type = ::tbl_ospfv3_ia_prefix_list_record;
  using object_type = ospf_harbor::ospfv3::prefix_list_ref;
  using key_type = std::string_view;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_ospfv3_ia_prefix_list";
  static constexpr auto open = &::tbl_ospfv3_ia_prefix_list_table_open;
  static constexpr auto make = &::tbl_ospfv3_ia_prefix_list_table_open_auto_id;
  static constexpr auto free = &::tbl_ospfv3_ia_prefix_list_table_free;
  static constexpr auto count = &::tbl_ospfv3_ia_prefix_list_table_get_count;
  static constexpr auto create_record = &::tbl_ospfv3_ia_prefix_list_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospfv3_ia_prefix_list_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospfv3_ia_prefix_list_request_record_destroy;
  static constexpr auto insert = &::tbl_ospfv3_ia_prefix_list_insert;
  static constexpr auto first = &::tbl_ospfv3_ia_prefix_list_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospfv3_ia_prefix_list_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospfv3_ia_prefix_list_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospfv3_ia_prefix_list_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospfv3_ia_prefix_list_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospfv3_ia_prefix_list_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospfv3_ia_prefix_list_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospfv3_ia_prefix_list_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospfv3_ia_prefix_list_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospfv3_ia_prefix_list_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospfv3_ia_prefix_list_table_record_print;
  static constexpr auto to_xml = &::tbl_ospfv3_ia_prefix_list_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospfv3_ia_prefix_list_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospfv3_ia_prefix_list_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospfv3_ia_prefix_list_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospfv3_ia_prefix_list_table_record_len;
  static constexpr auto get = &::tbl_ospfv3_ia_prefix_list_ospfv3_prefix_list_get_field;
  static constexpr auto put = &::tbl_ospfv3_ia_prefix_list_ospfv3_prefix_list_set_field;
  static key_type key_of(const row<tbl_ospfv3_ia_prefix_list> &of);
  static void set_key(const row<tbl_ospfv3_ia_prefix_list> &of, const key_type &key);
  static void complete(const row<tbl_ospfv3_ia_prefix_list> &made);
};
struct tbl_multi_topology {
  using c_type = ::tbl_multi_topology_table;
  using record_type = ::tbl_multi_topology_record;
  using object_type = ospf_harbor::multi_topology_ref;
  using key_type = std::string_view;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_multi_topology";
  static constexpr auto open = &::tbl_multi_topology_table_open;
  static constexpr auto make = &::tbl_multi_topology_table_open_auto_id;
  static constexpr auto free = &::tbl_multi_topology_table_free;
  static constexpr auto count = &::tbl_multi_topology_table_get_count;
  static constexpr auto create_record = &::tbl_multi_topology_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_multi_topology_destroy_record;
  static constexpr auto request_destroy = &::tbl_multi_topology_request_record_destroy;
  static constexpr auto insert = &::tbl_multi_topology_insert;
  static constexpr auto first = &::tbl_multi_topology_pkey_get_first;
  static constexpr auto first_of = &::tbl_multi_topology_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_multi_topology_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_multi_topology_pkey_get_last;
  static constexpr auto last_of = &::tbl_multi_topology_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_multi_topology_pkey_get_next;
  static constexpr auto next_of = &::tbl_multi_topology_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_multi_topology_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_multi_topology_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_multi_topology_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_multi_topology_table_record_print;
  static constexpr auto to_xml = &::tbl_multi_topology_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_multi_topology_table_record_from_xml;
  static constexpr auto marshal = &::tbl_multi_topology_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_multi_topology_table_record_unmarshal;
  static constexpr auto length = &::tbl_multi_topology_table_record_len;
  static constexpr auto get = &::tbl_multi_topology_multi_topology_get_field;
  static constexpr auto put = &::tbl_multi_topology_multi_topology_set_field;
  static key_type key_of(const row<tbl_multi_topology> &of);
  static void set_key(const row<tbl_multi_topology> &of, const key_type &key);
  static void complete(const row<tbl_multi_topology> &made);
};
struct tbl_link_scope_lsa {
  using c_type = ::tbl_link_scope_lsa_table;
  using record_type = ::tbl_link_scope_lsa_record;
  using object_type = ospf_harbor::link_scope_lsa_ref;
  using key_ref = ospf_harbor::link_scope_lsa_key_ref;
  using key_type = ospf_harbor::link_scope_lsa_key_value;
  static constexpr bool has_key_object = true;
  static constexpr const char *name = "tbl_link_scope_lsa";
  static constexpr auto open = &::tbl_link_scope_lsa_table_open;
  static constexpr auto make = &::tbl_link_scope_lsa_table_open_auto_id;
  static constexpr auto free = &::tbl_link_scope_lsa_table_free;
  static constexpr auto count = &::tbl_link_scope_lsa_table_get_count;
  static constexpr auto create_record = &::tbl_link_scope_lsa_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_link_scope_lsa_destroy_record;
  static constexpr auto request_destroy = &::tbl_link_scope_lsa_request_record_destroy;
  static constexpr auto insert = &::tbl_link_scope_lsa_insert;
  static constexpr auto first = &::tbl_link_scope_lsa_pkey_get_first;
  static constexpr auto first_of = &::tbl_link_scope_lsa_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_link_scope_lsa_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_link_scope_lsa_pkey_get_last;
  static constexpr auto last_of = &::tbl_link_scope_lsa_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_link_scope_lsa_pkey_get_next;
  static constexpr auto next_of = &::tbl_link_scope_lsa_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_link_scope_lsa_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_link_scope_lsa_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_link_scope_lsa_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_link_scope_lsa_table_record_print;
  static constexpr auto to_xml = &::tbl_link_scope_lsa_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_link_scope_lsa_table_record_from_xml;
  static constexpr auto marshal = &::tbl_link_scope_lsa_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_link_scope_lsa_table_record_unmarshal;
  static constexpr auto length = &::tbl_link_scope_lsa_table_record_len;
  static constexpr auto get = &::tbl_link_scope_lsa_link_scope_lsa_get_field;
  static constexpr auto put = &::tbl_link_scope_lsa_link_scope_lsa_set_field;
  static constexpr auto get_key = &::tbl_link_scope_lsa_link_scope_lsa_key_get_field;
  static constexpr auto put_key = &::tbl_link_scope_lsa_link_scope_lsa_key_set_field;
  static key_type key_of(const row<tbl_link_scope_lsa> &of);
  static void set_key(const row<tbl_link_scope_lsa> &of, const key_type &key);
  static void complete(const row<tbl_link_scope_lsa> &made);
};
struct tbl_area_scope_lsa {
  using c_type = ::tbl_area_scope_lsa_table;
  using record_type = ::tbl_area_scope_lsa_record;
  using object_type = ospf_harbor::area_scope_lsa_ref;
  using key_ref = ospf_harbor::area_scope_lsa_key_ref;
  using key_type = ospf_harbor::area_scope_lsa_key_value;
  static constexpr bool has_key_object = true;
  static constexpr const char *name = "tbl_area_scope_lsa";
  static constexpr auto open = &::tbl_area_scope_lsa_table_open;
  static constexpr auto make = &::tbl_area_scope_lsa_table_open_auto_id;
  static constexpr auto free = &::tbl_area_scope_lsa_table_free;
  static constexpr auto count = &::tbl_area_scope_lsa_table_get_count;
  static constexpr auto create_record = &::tbl_area_scope_lsa_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_area_scope_lsa_destroy_record;
  static constexpr auto request_destroy = &::tbl_area_scope_lsa_request_record_destroy;
  static constexpr auto insert = &::tbl_area_scope_lsa_insert;
  static constexpr auto first = &::tbl_area_scope_lsa_pkey_get_first;
  static constexpr auto first_of = &::tbl_area_scope_lsa_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_area_scope_lsa_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_area_scope_lsa_pkey_get_last;
  static constexpr auto last_of = &::tbl_area_scope_lsa_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_area_scope_lsa_pkey_get_next;
  static constexpr auto next_of = &::tbl_area_scope_lsa_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_area_scope_lsa_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_area_scope_lsa_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_area_scope_lsa_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_area_scope_lsa_table_record_print;
  static constexpr auto to_xml = &::tbl_area_scope_lsa_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_area_scope_lsa_table_record_from_xml;
  static constexpr auto marshal = &::tbl_area_scope_lsa_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_area_scope_lsa_table_record_unmarshal;
  static constexpr auto length = &::tbl_area_scope_lsa_table_record_len;
  static constexpr auto get = &::tbl_area_scope_lsa_area_scope_lsa_get_field;
  static constexpr auto put = &::tbl_area_scope_lsa_area_scope_lsa_set_field;
  static constexpr auto get_key = &::tbl_area_scope_lsa_area_scope_lsa_key_get_field;
  static constexpr auto put_key = &::tbl_area_scope_lsa_area_scope_lsa_key_set_field;
  static key_type key_of(const row<tbl_area_scope_lsa> &of);
  static void set_key(const row<tbl_area_scope_lsa> &of, const key_type &key);
  static void complete(const row<tbl_area_scope_lsa> &made);
};
struct tbl_area_scope_lsas {
  using c_type = ::tbl_area_scope_lsas_table;
  using record_type = ::tbl_area_scope_lsas_record;
  using object_type = ospf_harbor::area_scope_lsas_ref;
  using key_type = std::uint32_t;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_area_scope_lsas";
  static constexpr auto open = &::tbl_area_scope_lsas_table_open;
  static constexpr auto make = &::tbl_area_scope_lsas_table_open_auto_id;
  static constexpr auto free = &::tbl_area_scope_lsas_table_free;
  static constexpr auto count = &::tbl_area_scope_lsas_table_get_count;
  static constexpr auto create_record = &::tbl_area_scope_lsas_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_area_scope_lsas_destroy_record;
  static constexpr auto request_destroy = &::tbl_area_scope_lsas_request_record_destroy;
  static constexpr auto insert = &::tbl_area_scope_lsas_insert;
  static constexpr auto first = &::tbl_area_scope_lsas_pkey_get_first;
  static constexpr auto first_of = &::tbl_area_scope_lsas_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_area_scope_lsas_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_area_scope_lsas_pkey_get_last;
  static constexpr auto last_of = &::tbl_area_scope_lsas_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_area_scope_lsas_pkey_get_next;
  static constexpr auto next_of = &::tbl_area_scope_lsas_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_area_scope_lsas_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_area_scope_lsas_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_area_scope_lsas_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_area_scope_lsas_table_record_print;
  static constexpr auto to_xml = &::tbl_area_scope_lsas_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_area_scope_lsas_table_record_from_xml;
  static constexpr auto marshal = &::tbl_area_scope_lsas_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_area_scope_lsas_table_record_unmarshal;
  static constexpr auto length = &::tbl_area_scope_lsas_table_record_len;
  static constexpr auto get = &::tbl_area_scope_lsas_area_scope_lsas_get_field;
  static constexpr auto put = &::tbl_area_scope_lsas_area_scope_lsas_set_field;
  static key_type key_of(const row<tbl_area_scope_lsas> &of);
  static void set_key(const row<tbl_area_scope_lsas> &of, const key_type &key);
  static void complete(const row<tbl_area_scope_lsas> &made);
};
struct tbl_link_scope_lsas {
  using c_type = ::tbl_link_scope_lsas_table;
  using record_type = ::tbl_link_scope_lsas_record;
  using object_type = ospf_harbor::link_scope_lsas_ref;
  using key_type = std::uint32_t;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_link_scope_lsas";
  static constexpr auto open = &::tbl_link_scope_lsas_table_open;
  static constexpr auto make = &::tbl_link_scope_lsas_table_open_auto_id;
  static constexpr auto free = &::tbl_link_scope_lsas_table_free;
  static constexpr auto count = &::tbl_link_scope_lsas_table_get_count;
  static constexpr auto create_record = &::tbl_link_scope_lsas_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_link_scope_lsas_destroy_record;
  static constexpr auto request_destroy = &::tbl_link_scope_lsas_request_record_destroy;
  static constexpr auto insert = &::tbl_link_scope_lsas_insert;
  static constexpr auto first = &::tbl_link_scope_lsas_pkey_get_first;
  static constexpr auto first_of = &::tbl_link_scope_lsas_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_link_scope_lsas_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_link_scope_lsas_pkey_get_last;
  static constexpr auto last_of = &::tbl_link_scope_lsas_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_link_scope_lsas_pkey_get_next;
  static constexpr auto next_of = &::tbl_link_scope_lsas_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_link_scope_lsas_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_link_scope_lsas_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_link_scope_lsas_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_link_scope_lsas_table_record_print;
  static constexpr auto to_xml = &::tbl_link_scope_lsas_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_link_scope_lsas_table_record_from_xml;
  static constexpr auto marshal = &::tbl_link_scope_lsas_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_link_scope_lsas_table_record_unmarshal;
  static constexpr auto length = &::tbl_link_scope_lsas_table_record_len;
  static constexpr auto get = &::tbl_link_scope_lsas_link_scope_lsas_get_field;
  static constexpr auto put = &::tbl_link_scope_lsas_link_scope_lsas_set_field;
  static key_type key_of(const row<tbl_link_scope_lsas> &of);
  static void set_key(const row<tbl_link_scope_lsas> &of, const key_type &key);
  static void complete(const row<tbl_link_scope_lsas> &made);
};
struct tbl_ospf_static_neighbor {
  using c_type = ::tbl_ospf_static_neighbor_table;
  using record_type = ::tbl_ospf_static_neighbor_record;
  using object_type = ospf_harbor::static_neighbor_ref;
  using key_type = ospf_harbor::address;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_ospf_static_neighbor";
  static constexpr auto open = &::tbl_ospf_static_neighbor_table_open;
  static constexpr auto make = &::tbl_ospf_static_neighbor_table_open_auto_id;
  static constexpr auto free = &::tbl_ospf_static_neighbor_table_free;
  static constexpr auto count = &::tbl_ospf_static_neighbor_table_get_count;
  static constexpr auto create_record = &::tbl_ospf_static_neighbor_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospf_static_neighbor_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospf_static_neighbor_request_record_destroy;
  static constexpr auto insert = &::tbl_ospf_static_neighbor_insert;
  static constexpr auto first = &::tbl_ospf_static_neighbor_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospf_static_neighbor_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospf_static_neighbor_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospf_static_neighbor_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospf_static_neighbor_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospf_static_neighbor_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospf_static_neighbor_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospf_static_neighbor_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospf_static_neighbor_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospf_static_neighbor_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospf_static_neighbor_table_record_print;
  static constexpr auto to_xml = &::tbl_ospf_static_neighbor_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospf_static_neighbor_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospf_static_neighbor_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospf_static_neighbor_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospf_static_neighbor_table_record_len;
  static constexpr auto get = &::tbl_ospf_static_neighbor_ospf_static_neighbor_get_field;
  static constexpr auto put = &::tbl_ospf_static_neighbor_ospf_static_neighbor_set_field;
  static key_type key_of(const row<tbl_ospf_static_neighbor> &of);
  static void set_key(const row<tbl_ospf_static_neighbor> &of, const key_type &key);
  static void complete(const row<tbl_ospf_static_neighbor> &made);
};
struct tbl_ospf_neighbor {
  using c_type = ::tbl_ospf_neighbor_table;
  using record_type = ::tbl_ospf_neighbor_record;
  using object_type = ospf_harbor::neighbor_ref;
  using key_type = ospf_harbor::address;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_ospf_neighbor";
  static constexpr auto open = &::tbl_ospf_neighbor_table_open;
  static constexpr auto make = &::tbl_ospf_neighbor_table_open_auto_id;
  static constexpr auto free = &::tbl_ospf_neighbor_table_free;
  static constexpr auto count = &::tbl_ospf_neighbor_table_get_count;
  static constexpr auto create_record = &::tbl_ospf_neighbor_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospf_neighbor_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospf_neighbor_request_record_destroy;
  static constexpr auto insert = &::tbl_ospf_neighbor_insert;
  static constexpr auto first = &::tbl_ospf_neighbor_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospf_neighbor_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospf_neighbor_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospf_neighbor_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospf_neighbor_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospf_neighbor_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospf_neighbor_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospf_neighbor_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospf_neighbor_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospf_neighbor_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospf_neighbor_table_record_print;
  static constexpr auto to_xml = &::tbl_ospf_neighbor_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospf_neighbor_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospf_neighbor_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospf_neighbor_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospf_neighbor_table_record_len;
  static constexpr auto get = &::tbl_ospf_neighbor_ospf_neighbor_get_field;
  static constexpr auto put = &::tbl_ospf_neighbor_ospf_neighbor_set_field;
  static key_type key_of(const row<tbl_ospf_neighbor> &of);
  static void set_key(const row<tbl_ospf_neighbor> &of, const key_type &key);
  static void complete(const row<tbl_ospf_neighbor> &made);
};
struct tbl_ospf_interface {
  using c_type = ::tbl_ospf_interface_table;
  using record_type = ::tbl_ospf_interface_record;
  using object_type = ospf_harbor::interface_ref;
  using key_type = std::string_view;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_ospf_interface";
  static constexpr auto open = &::tbl_ospf_interface_table_open;
  static constexpr auto make = &::tbl_ospf_interface_table_open_auto_id;
  static constexpr auto free = &::tbl_ospf_interface_table_free;
  static constexpr auto count = &::tbl_ospf_interface_table_get_count;
  static constexpr auto create_record = &::tbl_ospf_interface_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospf_interface_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospf_interface_request_record_destroy;
  static constexpr auto insert = &::tbl_ospf_interface_insert;
  static constexpr auto first = &::tbl_ospf_interface_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospf_interface_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospf_interface_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospf_interface_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospf_interface_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospf_interface_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospf_interface_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospf_interface_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospf_interface_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospf_interface_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospf_interface_table_record_print;
  static constexpr auto to_xml = &::tbl_ospf_interface_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospf_interface_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospf_interface_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospf_interface_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospf_interface_table_record_len;
  static constexpr auto get = &::tbl_ospf_interface_ospf_interface_get_field;
  static constexpr auto put = &::tbl_ospf_interface_ospf_interface_set_field;
  static key_type key_of(const row<tbl_ospf_interface> &of);
  static void set_key(const row<tbl_ospf_interface> &of, const key_type &key);
  static void complete(const row<tbl_ospf_interface> &made);
};
struct tbl_ospf_area {
  using c_type = ::tbl_ospf_area_table;
  using record_type = ::tbl_ospf_area_record;
  using object_type = ospf_harbor::area_ref;
  using key_type = std::uint32_t;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_ospf_area";
  static constexpr auto open = &::tbl_ospf_area_table_open;
  static constexpr auto make = &::tbl_ospf_area_table_open_auto_id;
  static constexpr auto free = &::tbl_ospf_area_table_free;
  static constexpr auto count = &::tbl_ospf_area_table_get_count;
  static constexpr auto create_record = &::tbl_ospf_area_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospf_area_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospf_area_request_record_destroy;
  static constexpr auto insert = &::tbl_ospf_area_insert;
  static constexpr auto first = &::tbl_ospf_area_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospf_area_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospf_area_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospf_area_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospf_area_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospf_area_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospf_area_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospf_area_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospf_area_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospf_area_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospf_area_table_record_print;
  static constexpr auto to_xml = &::tbl_ospf_area_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospf_area_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospf_area_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospf_area_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospf_area_table_record_len;
  static constexpr auto get = &::tbl_ospf_area_ospf_area_get_field;
  static constexpr auto put = &::tbl_ospf_area_ospf_area_set_field;
  static key_type key_of(const row<tbl_ospf_area> &of);
  static void set_key(const row<tbl_ospf_area> &of, const key_type &key);
  static void complete(const row<tbl_ospf_area> &made);
};
struct tbl_ospf_instance {
  using c_type = ::tbl_ospf_instance_table;
  using record_type = ::tbl_ospf_instance_record;
  using object_type = ospf_harbor::instance_ref;
  using key_type = ospf_harbor::address_family;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_ospf_instance";
  static constexpr auto open = &::tbl_ospf_instance_table_open;
  static constexpr auto make = &::tbl_ospf_instance_table_open_auto_id;
  static constexpr auto free = &::tbl_ospf_instance_table_free;
  static constexpr auto count = &::tbl_ospf_instance_table_get_count;
  static constexpr auto create_record = &::tbl_ospf_instance_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospf_instance_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospf_instance_request_record_destroy;
  static constexpr auto insert = &::tbl_ospf_instance_insert;
  static constexpr auto first = &::tbl_ospf_instance_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospf_instance_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospf_instance_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospf_instance_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospf_instance_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospf_instance_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospf_instance_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospf_instance_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospf_instance_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospf_instance_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospf_instance_table_record_print;
  static constexpr auto to_xml = &::tbl_ospf_instance_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospf_instance_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospf_instance_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospf_instance_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospf_instance_table_record_len;
  static constexpr auto get = &::tbl_ospf_instance_ospf_instance_get_field;
  static constexpr auto put = &::tbl_ospf_instance_ospf_instance_set_field;
  static key_type key_of(const row<tbl_ospf_instance> &of);
  static void set_key(const row<tbl_ospf_instance> &of, const key_type &key);
  static void complete(const row<tbl_ospf_instance> &made);
};
struct tbl_ospf {
  using c_type = ::tbl_ospf_table;
  using record_type = ::tbl_ospf_record;
  using object_type = ospf_harbor::ospf_ref;
  using key_type = std::uint32_t;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_ospf";
  static constexpr auto open = &::tbl_ospf_table_open;
  static constexpr auto make = &::tbl_ospf_table_open_auto_id;
  static constexpr auto free = &::tbl_ospf_table_free;
  static constexpr auto count = &::tbl_ospf_table_get_count;
  static constexpr auto create_record = &::tbl_ospf_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospf_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospf_request_record_destroy;
  static constexpr auto insert = &::tbl_ospf_insert;
  static constexpr auto first = &::tbl_ospf_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospf_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospf_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospf_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospf_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospf_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospf_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospf_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospf_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospf_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospf_table_record_print;
  static constexpr auto to_xml = &::tbl_ospf_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospf_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospf_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospf_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospf_table_record_len;
  static constexpr auto get = &::tbl_ospf_ospf_get_field;
  static constexpr auto put = &::tbl_ospf_ospf_set_field;
  static key_type key_of(const row<tbl_ospf> &of);
  static void set_key(const row<tbl_ospf> &of, const key_type &key);
  static void complete(const row<tbl_ospf> &made);
};
struct tbl_ospf_instance_rev1 {
  using c_type = ::tbl_ospf_instance_rev1_table;
  using record_type = ::tbl_ospf_instance_rev1_record;
  using object_type = ospf_harbor::instance_rev1_ref;
  using key_ref = ospf_harbor::instance_rev1_key_ref;
  using key_type = ospf_harbor::instance_rev1_key_value;
  static constexpr bool has_key_object = true;
  static constexpr const char *name = "tbl_ospf_instance_rev1";
  static constexpr auto open = &::tbl_ospf_instance_rev1_table_open;
  static constexpr auto make = &::tbl_ospf_instance_rev1_table_open_auto_id;
  static constexpr auto free = &::tbl_ospf_instance_rev1_table_free;
  static constexpr auto count = &::tbl_ospf_instance_rev1_table_get_count;
  static constexpr auto create_record = &::tbl_ospf_instance_rev1_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospf_instance_rev1_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospf_instance_rev1_request_record_destroy;
  static constexpr auto insert = &::tbl_ospf_instance_rev1_insert;
  static constexpr auto first = &::tbl_ospf_instance_rev1_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospf_instance_rev1_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospf_instance_rev1_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospf_instance_rev1_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospf_instance_rev1_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospf_instance_rev1_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospf_instance_rev1_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospf_instance_rev1_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospf_instance_rev1_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospf_instance_rev1_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospf_instance_rev1_table_record_print;
  static constexpr auto to_xml = &::tbl_ospf_instance_rev1_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospf_instance_rev1_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospf_instance_rev1_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospf_instance_rev1_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospf_instance_rev1_table_record_len;
  static constexpr auto get = &::tbl_ospf_instance_rev1_ospf_instance_rev1_get_field;
  static constexpr auto put = &::tbl_ospf_instance_rev1_ospf_instance_rev1_set_field;
  static constexpr auto get_key = &::tbl_ospf_instance_rev1_ospf_instance_rev1_key_get_field;
  static constexpr auto put_key = &::tbl_ospf_instance_rev1_ospf_instance_rev1_key_set_field;
  static key_type key_of(const row<tbl_ospf_instance_rev1> &of);
  static void set_key(const row<tbl_ospf_instance_rev1> &of, const key_type &key);
  static void complete(const row<tbl_ospf_instance_rev1> &made);
};
struct tbl_ospf_rev1 {
  using c_type = ::tbl_ospf_rev1_table;
  using record_type = ::tbl_ospf_rev1_record;
  using object_type = ospf_harbor::ospf_rev1_ref;
  using key_type = std::uint32_t;
  static constexpr bool has_key_object = false;
  static constexpr const char *name = "tbl_ospf_rev1";
  static constexpr auto open = &::tbl_ospf_rev1_table_open;
  static constexpr auto make = &::tbl_ospf_rev1_table_open_auto_id;
  static constexpr auto free = &::tbl_ospf_rev1_table_free;
  static constexpr auto count = &::tbl_ospf_rev1_table_get_count;
  static constexpr auto create_record = &::tbl_ospf_rev1_create_record_w_src;
  static constexpr auto destroy_record = &::tbl_ospf_rev1_destroy_record;
  static constexpr auto request_destroy = &::tbl_ospf_rev1_request_record_destroy;
  static constexpr auto insert = &::tbl_ospf_rev1_insert;
  static constexpr auto first = &::tbl_ospf_rev1_pkey_get_first;
  static constexpr auto first_of = &::tbl_ospf_rev1_pkey_get_first_by_src;
  static constexpr auto first_of_all = &::tbl_ospf_rev1_pkey_get_first_ignore_src;
  static constexpr auto last = &::tbl_ospf_rev1_pkey_get_last;
  static constexpr auto last_of = &::tbl_ospf_rev1_pkey_get_last_by_src;
  static constexpr auto next = &::tbl_ospf_rev1_pkey_get_next;
  static constexpr auto next_of = &::tbl_ospf_rev1_pkey_get_next_by_src;
  static constexpr auto next_of_all = &::tbl_ospf_rev1_pkey_get_next_ignore_src;
  static constexpr auto previous = &::tbl_ospf_rev1_pkey_get_prev;
  static constexpr auto previous_of = &::tbl_ospf_rev1_pkey_get_prev_by_src;
  static constexpr auto print = &::tbl_ospf_rev1_table_record_print;
  static constexpr auto to_xml = &::tbl_ospf_rev1_table_record_to_xml;
  static constexpr auto from_xml = &::tbl_ospf_rev1_table_record_from_xml;
  static constexpr auto marshal = &::tbl_ospf_rev1_table_record_marshal;
  static constexpr auto unmarshal = &::tbl_ospf_rev1_table_record_unmarshal;
  static constexpr auto length = &::tbl_ospf_rev1_table_record_len;
  static constexpr auto get = &::tbl_ospf_rev1_ospf_rev1_get_field;
  static constexpr auto put = &::tbl_ospf_rev1_ospf_rev1_set_field;
  static key_type key_of(const row<tbl_ospf_rev1> &of);
  static void set_key(const row<tbl_ospf_rev1> &of, const key_type &key);
  static void complete(const row<tbl_ospf_rev1> &made);
};

}  // namespace schema

namespace ospfv2 {
// Sub-TLVs that no field covers, by type.
using unknown_sub_tlv_table = table_ref<schema::tbl_ospfv2_unknown_sub_tlv>;
using unknown_sub_tlv_row = row<schema::tbl_ospfv2_unknown_sub_tlv>;
using unknown_sub_tlv_tree = tree<schema::tbl_ospfv2_unknown_sub_tlv>;
}  // namespace ospfv2
namespace ospfv2 {
// TLVs that no field covers, by type.
using unknown_tlv_table = table_ref<schema::tbl_ospfv2_unknown_tlv>;
using unknown_tlv_row = row<schema::tbl_ospfv2_unknown_tlv>;
using unknown_tlv_tree = tree<schema::tbl_ospfv2_unknown_tlv>;
}  // namespace ospfv2
namespace ospfv2 {
// Entries of an external LSA, by topology.
using external_table = table_ref<schema::tbl_ospfv2_external>;
using external_row = row<schema::tbl_ospfv2_external>;
using external_tree = tree<schema::tbl_ospfv2_external>;
}  // namespace ospfv2
namespace ospfv2 {
// Metrics, by topology.
using topology_table = table_ref<schema::tbl_ospfv2_topology>;
using topology_row = row<schema::tbl_ospfv2_topology>;
using topology_tree = tree<schema::tbl_ospfv2_topology>;
}  // namespace ospfv2
namespace ospfv2 {
// Links of an OSPFv2 router LSA.
using link_table = table_ref<schema::tbl_ospfv2_link>;
using link_row = row<schema::tbl_ospfv2_link>;
using link_tree = tree<schema::tbl_ospfv2_link>;
}  // namespace ospfv2
namespace ospfv3 {
// Links of an OSPFv3 router LSA.
using link_table = table_ref<schema::tbl_ospfv3_link>;
using link_row = row<schema::tbl_ospfv3_link>;
using link_tree = tree<schema::tbl_ospfv3_link>;
}  // namespace ospfv3
namespace ospfv3 {
// Prefixes of a link LSA.
using prefix_list_table = table_ref<schema::tbl_ospfv3_prefix_list>;
using prefix_list_row = row<schema::tbl_ospfv3_prefix_list>;
using prefix_list_tree = tree<schema::tbl_ospfv3_prefix_list>;
}  // namespace ospfv3
namespace ospfv3 {
// Prefixes of an intra-area prefix LSA.
using ia_prefix_list_table = table_ref<schema::tbl_ospfv3_ia_prefix_list>;
using ia_prefix_list_row = row<schema::tbl_ospfv3_ia_prefix_list>;
using ia_prefix_list_tree = tree<schema::tbl_ospfv3_ia_prefix_list>;
}  // namespace ospfv3
// Topologies, by name.
using multi_topology_table = table_ref<schema::tbl_multi_topology>;
using multi_topology_row = row<schema::tbl_multi_topology>;
using multi_topology_tree = tree<schema::tbl_multi_topology>;
// LSAs of link scope.
using link_scope_lsa_table = table_ref<schema::tbl_link_scope_lsa>;
using link_scope_lsa_row = row<schema::tbl_link_scope_lsa>;
using link_scope_lsa_tree = tree<schema::tbl_link_scope_lsa>;
// LSAs of area scope.
using area_scope_lsa_table = table_ref<schema::tbl_area_scope_lsa>;
using area_scope_lsa_row = row<schema::tbl_area_scope_lsa>;
using area_scope_lsa_tree = tree<schema::tbl_area_scope_lsa>;
// Groups of area-scope LSAs.
using area_scope_lsas_table = table_ref<schema::tbl_area_scope_lsas>;
using area_scope_lsas_row = row<schema::tbl_area_scope_lsas>;
using area_scope_lsas_tree = tree<schema::tbl_area_scope_lsas>;
// Databases, by LS type.
using link_scope_lsas_table = table_ref<schema::tbl_link_scope_lsas>;
using link_scope_lsas_row = row<schema::tbl_link_scope_lsas>;
using link_scope_lsas_tree = tree<schema::tbl_link_scope_lsas>;
// Configured neighbours, by address.
using static_neighbor_table = table_ref<schema::tbl_ospf_static_neighbor>;
using static_neighbor_row = row<schema::tbl_ospf_static_neighbor>;
using static_neighbor_tree = tree<schema::tbl_ospf_static_neighbor>;
// Neighbours, by router ID.
using neighbor_table = table_ref<schema::tbl_ospf_neighbor>;
using neighbor_row = row<schema::tbl_ospf_neighbor>;
using neighbor_tree = tree<schema::tbl_ospf_neighbor>;
// Interfaces, by name.
using interface_table = table_ref<schema::tbl_ospf_interface>;
using interface_row = row<schema::tbl_ospf_interface>;
using interface_tree = tree<schema::tbl_ospf_interface>;
// Areas, by ID.
using area_table = table_ref<schema::tbl_ospf_area>;
using area_row = row<schema::tbl_ospf_area>;
using area_tree = tree<schema::tbl_ospf_area>;
// Instances, by address family.
using instance_table = table_ref<schema::tbl_ospf_instance>;
using instance_row = row<schema::tbl_ospf_instance>;
using instance_tree = tree<schema::tbl_ospf_instance>;
// The root; meant to hold one row, which nothing enforces.
using ospf_table = table_ref<schema::tbl_ospf>;
using ospf_row = row<schema::tbl_ospf>;
using ospf_tree = tree<schema::tbl_ospf>;
// Instances, by address family and router ID.
using instance_rev1_table = table_ref<schema::tbl_ospf_instance_rev1>;
using instance_rev1_row = row<schema::tbl_ospf_instance_rev1>;
using instance_rev1_tree = tree<schema::tbl_ospf_instance_rev1>;
// The root in its revised form; meant to hold one row, which nothing enforces.
using ospf_rev1_table = table_ref<schema::tbl_ospf_rev1>;
using ospf_rev1_row = row<schema::tbl_ospf_rev1>;
using ospf_rev1_tree = tree<schema::tbl_ospf_rev1>;

namespace ospfv2 {
// A sub-TLV of an opaque LSA in raw form.
class unknown_sub_tlv_ref : public object_ref<schema::ospfv2_unknown_sub_tlv> {
 public:
  using object_ref::object_ref;

  // The sub-TLV's type.
  std::uint16_t type() const { return read_<&::ospfv2_unknown_sub_tlv_type_get_value>("type"); }
  void set_type(std::uint16_t value) const {
    write_<&::ospfv2_unknown_sub_tlv_type_set_value>("type", value);
  }
  // The sub-TLV's length in octets as advertised, whatever value_len says.
  std::uint16_t length() const {
    return read_<&::ospfv2_unknown_sub_tlv_length_get_value>("length");
  }
  void set_length(std::uint16_t value) const {
    write_<&::ospfv2_unknown_sub_tlv_length_set_value>("length", value);
  }
  // The sub-TLV's octets.
  std::span<const std::uint8_t> value() const {
    return elements_<&::ospfv2_unknown_sub_tlv_value_len_get_value,
        &::ospfv2_unknown_sub_tlv_value_get>("value");
  }
  void set_value(std::span<const std::uint8_t> elements) const {
    write_elements_<&::ospfv2_unknown_sub_tlv_value_set_mem>("value", elements);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"type", 0, &unknown_sub_tlv_ref::type, &unknown_sub_tlv_ref::set_type});
    act(field{"length", 0, &unknown_sub_tlv_ref::length, &unknown_sub_tlv_ref::set_length});
    act(field{"value", 0, &unknown_sub_tlv_ref::value, &unknown_sub_tlv_ref::set_value});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using unknown_sub_tlv = owned<unknown_sub_tlv_ref>;
}  // namespace ospfv2

namespace ospfv2 {
// The link TLV of traffic engineering.
class link_tlv_ref : public object_ref<schema::ospfv2_link_tlv> {
 public:
  using object_ref::object_ref;

  // 1 point-to-point, 2 multi-access.
  std::uint8_t link_type() const {
    return read_<&::ospfv2_link_tlv_link_type_get_value>("link_type");
  }
  void set_link_type(std::uint8_t value) const {
    write_<&::ospfv2_link_tlv_link_type_set_value>("link_type", value);
  }
  // The neighbour's router ID, or the designated router's address.
  std::uint32_t link_id() const { return read_<&::ospfv2_link_tlv_link_id_get_value>("link_id"); }
  void set_link_id(std::uint32_t value) const {
    write_<&::ospfv2_link_tlv_link_id_set_value>("link_id", value);
  }
  // Addresses of the link's local interface.
  std::vector<ospf_harbor::address> local_if_ipv4_addr() const {
    return addresses_<&::ospfv2_link_tlv_local_if_ipv4_addr_num_get_value,
        &::ospfv2_link_tlv_local_if_ipv4_addr_get>("local_if_ipv4_addr");
  }
  void set_local_if_ipv4_addr(std::span<const ospf_harbor::address> elements) const {
    write_addresses_<&::ospfv2_link_tlv_local_if_ipv4_addr_remove_elements,
        &::ospfv2_link_tlv_local_if_ipv4_addr_set>("local_if_ipv4_addr", elements);
  }
  // Addresses of the link's remote interface.
  std::vector<ospf_harbor::address> local_remote_ipv4_addr() const {
    return addresses_<&::ospfv2_link_tlv_local_remote_ipv4_addr_num_get_value,
        &::ospfv2_link_tlv_local_remote_ipv4_addr_get>("local_remote_ipv4_addr");
  }
  void set_local_remote_ipv4_addr(std::span<const ospf_harbor::address> elements) const {
    write_addresses_<&::ospfv2_link_tlv_local_remote_ipv4_addr_remove_elements,
        &::ospfv2_link_tlv_local_remote_ipv4_addr_set>("local_remote_ipv4_addr", elements);
  }
  // The traffic-engineering metric.
  std::uint32_t te_metric() const {
    return read_<&::ospfv2_link_tlv_te_metric_get_value>("te_metric");
  }
  void set_te_metric(std::uint32_t value) const {
    write_<&::ospfv2_link_tlv_te_metric_set_value>("te_metric", value);
  }
  // The link's maximum bandwidth; the producer chooses the unit.
  double max_bandwidth() const {
    return read_<&::ospfv2_link_tlv_max_bandwidth_get_value>("max_bandwidth");
  }
  void set_max_bandwidth(double value) const {
    write_<&::ospfv2_link_tlv_max_bandwidth_set_value>("max_bandwidth", value);
  }
  // The bandwidth that may be reserved; the producer chooses the unit.
  double max_reservable_bandwidth() const {
    return read_<&::ospfv2_link_tlv_max_reservable_bandwidth_get_value>("max_reservable_bandwidth");
  }
  void set_max_reservable_bandwidth(double value) const {
    write_<&::ospfv2_link_tlv_max_reservable_bandwidth_set_value>("max_reservable_bandwidth",
        value);
  }
  // The bandwidth not yet reserved; the producer chooses the unit.
  double unreserved_bandwidth() const {
    return read_<&::ospfv2_link_tlv_unreserved_bandwidth_get_value>("unreserved_bandwidth");
  }
  void set_unreserved_bandwidth(double value) const {
    write_<&::ospfv2_link_tlv_unreserved_bandwidth_set_value>("unreserved_bandwidth", value);
  }
  // Administrative groups, one bit each.
  std::uint32_t admin_group() const {
    return read_<&::ospfv2_link_tlv_admin_group_get_value>("admin_group");
  }
  void set_admin_group(std::uint32_t value) const {
    write_<&::ospfv2_link_tlv_admin_group_set_value>("admin_group", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"link_type", 0, &link_tlv_ref::link_type, &link_tlv_ref::set_link_type});
    act(field{"link_id", 0, &link_tlv_ref::link_id, &link_tlv_ref::set_link_id});
    act(field{"local_if_ipv4_addr", 0, &link_tlv_ref::local_if_ipv4_addr,
        &link_tlv_ref::set_local_if_ipv4_addr});
    act(field{"local_remote_ipv4_addr", 0, &link_tlv_ref::local_remote_ipv4_addr,
        &link_tlv_ref::set_local_remote_ipv4_addr});
    act(field{"te_metric", 0, &link_tlv_ref::te_metric, &link_tlv_ref::set_te_metric});
    act(field{"max_bandwidth", 0, &link_tlv_ref::max_bandwidth, &link_tlv_ref::set_max_bandwidth});
    act(field{"max_reservable_bandwidth", 0, &link_tlv_ref::max_reservable_bandwidth,
        &link_tlv_ref::set_max_reservable_bandwidth});
    act(field{"unreserved_bandwidth", 0, &link_tlv_ref::unreserved_bandwidth,
        &link_tlv_ref::set_unreserved_bandwidth});
    act(field{"admin_group", 0, &link_tlv_ref::admin_group, &link_tlv_ref::set_admin_group});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using link_tlv = owned<link_tlv_ref>;
}  // namespace ospfv2

namespace ospfv2 {
// A TLV of an opaque LSA in raw form, with the fields of traffic engineering beside it.
class unknown_tlv_ref : public object_ref<schema::ospfv2_unknown_tlv> {
 public:
  using object_ref::object_ref;

  // The TLV's type.
  std::uint16_t type() const { return read_<&::ospfv2_unknown_tlv_type_get_value>("type"); }
  void set_type(std::uint16_t value) const {
    write_<&::ospfv2_unknown_tlv_type_set_value>("type", value);
  }
  // The TLV's length in octets as advertised, whatever value_num says.
  std::uint16_t length() const { return read_<&::ospfv2_unknown_tlv_length_get_value>("length"); }
  void set_length(std::uint16_t value) const {
    write_<&::ospfv2_unknown_tlv_length_set_value>("length", value);
  }
  // The TLV's octets.
  std::span<const std::uint8_t> value() const {
    return elements_<&::ospfv2_unknown_tlv_value_num_get_value,
        &::ospfv2_unknown_tlv_value_get>("value");
  }
  void set_value(std::span<const std::uint8_t> elements) const {
    write_elements_<&::ospfv2_unknown_tlv_value_set_mem>("value", elements);
  }
  // The address of a router address TLV.
  ospf_harbor::address router_address() const {
    return address_<&::ospfv2_unknown_tlv_router_address_get>("router_address");
  }
  void set_router_address(const ospf_harbor::address &value) const {
    write_address_<&::ospfv2_unknown_tlv_router_address_get,
        &::ospfv2_unknown_tlv_router_address_set>("router_address", value);
  }
  // The fields of a link TLV.
  ospf_harbor::ospfv2::link_tlv_ref tlv() const {
    return part_<ospf_harbor::ospfv2::link_tlv_ref, &::ospfv2_unknown_tlv_tlv_get>("tlv");
  }
  // Sub-TLVs that no field covers.
  ospf_harbor::ospfv2::unknown_sub_tlv_table unknown_sub_tlv() const {
    return ospf_harbor::ospfv2::unknown_sub_tlv_table(*session_,
        read_<&::ospfv2_unknown_tlv_unknown_sub_tlv_get_by_ref>("unknown_sub_tlv"));
  }
  void set_unknown_sub_tlv(ospf_harbor::ospfv2::unknown_sub_tlv_table target) const {
    write_<&::ospfv2_unknown_tlv_unknown_sub_tlv_set_by_ref>("unknown_sub_tlv", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv2::unknown_sub_tlv_row add_unknown_sub_tlv(
      const ospf_harbor::ospfv2::unknown_sub_tlv_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv2_unknown_sub_tlv,
        &::ospfv2_unknown_tlv_unknown_sub_tlv_get_by_ref,
        &::ospfv2_unknown_tlv_unknown_sub_tlv_set_by_ref>(*session_, object_, key);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"type", 0, &unknown_tlv_ref::type, &unknown_tlv_ref::set_type});
    act(field{"length", 0, &unknown_tlv_ref::length, &unknown_tlv_ref::set_length});
    act(field{"value", 0, &unknown_tlv_ref::value, &unknown_tlv_ref::set_value});
    act(field{"router_address", 0, &unknown_tlv_ref::router_address,
        &unknown_tlv_ref::set_router_address});
    act(field{"tlv", 0, &unknown_tlv_ref::tlv, nullptr});
    act(field{"unknown_sub_tlv", 0, &unknown_tlv_ref::unknown_sub_tlv,
        &unknown_tlv_ref::set_unknown_sub_tlv});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
    act(reference_field<schema::tbl_ospfv2_unknown_sub_tlv,
        &::ospfv2_unknown_tlv_unknown_sub_tlv_get_by_ref,
        &::ospfv2_unknown_tlv_unknown_sub_tlv_set_by_ref>{"unknown_sub_tlv"});
  }
};
using unknown_tlv = owned<unknown_tlv_ref>;
}  // namespace ospfv2

namespace ospfv2 {
// An OSPFv2 external route in one topology.
class external_ref : public object_ref<schema::ospfv2_external> {
 public:
  using object_ref::object_ref;

  // The topology's number; 0 is the default topology.
  std::uint32_t mt_id() const { return read_<&::ospfv2_external_mt_id_get_value>("mt_id"); }
  void set_mt_id(std::uint32_t value) const {
    write_<&::ospfv2_external_mt_id_set_value>("mt_id", value);
  }
  // The metric in that topology.
  std::uint32_t metric() const { return read_<&::ospfv2_external_metric_get_value>("metric"); }
  void set_metric(std::uint32_t value) const {
    write_<&::ospfv2_external_metric_set_value>("metric", value);
  }
  // Where traffic for the destination is to be sent; unset for the advertising router.
  ospf_harbor::address forwarding_address() const {
    return address_<&::ospfv2_external_forwarding_address_get>("forwarding_address");
  }
  void set_forwarding_address(const ospf_harbor::address &value) const {
    write_address_<&::ospfv2_external_forwarding_address_get,
        &::ospfv2_external_forwarding_address_set>("forwarding_address", value);
  }
  // The tag that the external route carries.
  std::uint32_t external_route_tag() const {
    return read_<&::ospfv2_external_external_route_tag_get_value>("external_route_tag");
  }
  void set_external_route_tag(std::uint32_t value) const {
    write_<&::ospfv2_external_external_route_tag_set_value>("external_route_tag", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"mt_id", 0, &external_ref::mt_id, &external_ref::set_mt_id});
    act(field{"metric", 0, &external_ref::metric, &external_ref::set_metric});
    act(field{"forwarding_address", 0, &external_ref::forwarding_address,
        &external_ref::set_forwarding_address});
    act(field{"external_route_tag", 0, &external_ref::external_route_tag,
        &external_ref::set_external_route_tag});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using external = owned<external_ref>;
}  // namespace ospfv2

namespace ospfv2 {
// A metric in one topology.
class topology_ref : public object_ref<schema::ospfv2_topology> {
 public:
  using object_ref::object_ref;

  // The topology's number; 0 is the default topology.
  std::uint32_t mt_id() const { return read_<&::ospfv2_topology_mt_id_get_value>("mt_id"); }
  void set_mt_id(std::uint32_t value) const {
    write_<&::ospfv2_topology_mt_id_set_value>("mt_id", value);
  }
  // The metric in that topology.
  std::uint16_t metric() const { return read_<&::ospfv2_topology_metric_get_value>("metric"); }
  void set_metric(std::uint16_t value) const {
    write_<&::ospfv2_topology_metric_set_value>("metric", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"mt_id", 0, &topology_ref::mt_id, &topology_ref::set_mt_id});
    act(field{"metric", 0, &topology_ref::metric, &topology_ref::set_metric});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using topology = owned<topology_ref>;
}  // namespace ospfv2

namespace ospfv2 {
// What identifies a link of an OSPFv2 router LSA.
class link_key_ref : public object_ref<schema::ospfv2_link_key> {
 public:
  using object_ref::object_ref;

  // The link ID.
  std::uint32_t link_id() const { return read_<&::ospfv2_link_key_link_id_get_value>("link_id"); }
  void set_link_id(std::uint32_t value) const {
    write_<&::ospfv2_link_key_link_id_set_value>("link_id", value);
  }
  // The link data.
  std::uint32_t link_data() const {
    return read_<&::ospfv2_link_key_link_data_get_value>("link_data");
  }
  void set_link_data(std::uint32_t value) const {
    write_<&::ospfv2_link_key_link_data_set_value>("link_data", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"link_id", 0, &link_key_ref::link_id, &link_key_ref::set_link_id});
    act(field{"link_data", 0, &link_key_ref::link_data, &link_key_ref::set_link_data});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using link_key = owned<link_key_ref>;
}  // namespace ospfv2

namespace ospfv2 {
// One link of an OSPFv2 router LSA.
class link_ref : public object_ref<schema::ospfv2_link> {
 public:
  using object_ref::object_ref;

  // The link's type: 1 point-to-point, 2 transit, 3 stub, 4 virtual.
  std::uint8_t type() const { return read_<&::ospfv2_link_type_get_value>("type"); }
  void set_type(std::uint8_t value) const { write_<&::ospfv2_link_type_set_value>("type", value); }
  // The link's metrics, one row for each topology.
  ospf_harbor::ospfv2::topology_table topology() const {
    return ospf_harbor::ospfv2::topology_table(*session_,
        read_<&::ospfv2_link_topology_get_by_ref>("topology"));
  }
  void set_topology(ospf_harbor::ospfv2::topology_table target) const {
    write_<&::ospfv2_link_topology_set_by_ref>("topology", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv2::topology_row add_topology(
      const ospf_harbor::ospfv2::topology_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv2_topology, &::ospfv2_link_topology_get_by_ref,
        &::ospfv2_link_topology_set_by_ref>(*session_, object_, key);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"type", 0, &link_ref::type, &link_ref::set_type});
    act(field{"topology", 0, &link_ref::topology, &link_ref::set_topology});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
    act(reference_field<schema::tbl_ospfv2_topology, &::ospfv2_link_topology_get_by_ref,
        &::ospfv2_link_topology_set_by_ref>{"topology"});
  }
};
using link = owned<link_ref>;
}  // namespace ospfv2

// What identifies an LSA of link scope among those of its type.
class link_scope_lsa_key_ref : public object_ref<schema::link_scope_lsa_key> {
 public:
  using object_ref::object_ref;

  // The link-state ID as a number.
  std::uint32_t lsa_id() const { return read_<&::link_scope_lsa_key_lsa_id_get_value>("lsa_id"); }
  void set_lsa_id(std::uint32_t value) const {
    write_<&::link_scope_lsa_key_lsa_id_set_value>("lsa_id", value);
  }
  // Router ID of the advertising router.
  ospf_harbor::address adv_router() const {
    return address_<&::link_scope_lsa_key_adv_router_get>("adv_router");
  }
  void set_adv_router(const ospf_harbor::address &value) const {
    write_address_<&::link_scope_lsa_key_adv_router_get,
        &::link_scope_lsa_key_adv_router_set>("adv_router", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"lsa_id", 0, &link_scope_lsa_key_ref::lsa_id, &link_scope_lsa_key_ref::set_lsa_id});
    act(field{"adv_router", 0, &link_scope_lsa_key_ref::adv_router,
        &link_scope_lsa_key_ref::set_adv_router});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using link_scope_lsa_key = owned<link_scope_lsa_key_ref>;

// The OSPFv2 option bits, one boolean each.
class lsa_options_ref : public object_ref<schema::lsa_options> {
 public:
  using object_ref::object_ref;

  // Demand circuits are handled.
  bool DC() const { return read_<&::lsa_options_DC_get_value>("DC") != 0; }
  void set_DC(bool value) const { write_<&::lsa_options_DC_set_value>("DC", value ? 1u : 0u); }
  // A type 7 LSA is to be translated.
  bool P() const { return read_<&::lsa_options_P_get_value>("P") != 0; }
  void set_P(bool value) const { write_<&::lsa_options_P_set_value>("P", value ? 1u : 0u); }
  // Multicast datagrams are forwarded.
  bool MC() const { return read_<&::lsa_options_MC_get_value>("MC") != 0; }
  void set_MC(bool value) const { write_<&::lsa_options_MC_set_value>("MC", value ? 1u : 0u); }
  // AS-external LSAs are accepted.
  bool E() const { return read_<&::lsa_options_E_get_value>("E") != 0; }
  void set_E(bool value) const { write_<&::lsa_options_E_set_value>("E", value ? 1u : 0u); }
  // The up bit of the options.
  bool Upward() const { return read_<&::lsa_options_Upward_get_value>("Upward") != 0; }
  void set_Upward(bool value) const {
    write_<&::lsa_options_Upward_set_value>("Upward", value ? 1u : 0u);
  }
  // Multi-topology routing is in use.
  bool MT() const { return read_<&::lsa_options_MT_get_value>("MT") != 0; }
  void set_MT(bool value) const { write_<&::lsa_options_MT_set_value>("MT", value ? 1u : 0u); }
  // The originator forwards traffic.
  bool R() const { return read_<&::lsa_options_R_get_value>("R") != 0; }
  void set_R(bool value) const { write_<&::lsa_options_R_set_value>("R", value ? 1u : 0u); }
  // Address families are supported.
  bool AF() const { return read_<&::lsa_options_AF_get_value>("AF") != 0; }
  void set_AF(bool value) const { write_<&::lsa_options_AF_set_value>("AF", value ? 1u : 0u); }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"DC", 0, &lsa_options_ref::DC, &lsa_options_ref::set_DC});
    act(field{"P", 0, &lsa_options_ref::P, &lsa_options_ref::set_P});
    act(field{"MC", 0, &lsa_options_ref::MC, &lsa_options_ref::set_MC});
    act(field{"E", 0, &lsa_options_ref::E, &lsa_options_ref::set_E});
    act(field{"Upward", 0, &lsa_options_ref::Upward, &lsa_options_ref::set_Upward});
    act(field{"MT", 0, &lsa_options_ref::MT, &lsa_options_ref::set_MT});
    act(field{"R", 0, &lsa_options_ref::R, &lsa_options_ref::set_R});
    act(field{"AF", 0, &lsa_options_ref::AF, &lsa_options_ref::set_AF});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using lsa_options = owned<lsa_options_ref>;

namespace ospfv2 {
// The bits of an OSPFv2 router LSA, one boolean each.
class lsa_body_flags_ref : public object_ref<schema::ospfv2_lsa_body_flags> {
 public:
  using object_ref::object_ref;

  // The router is an endpoint of a virtual link.
  bool V() const { return read_<&::ospfv2_lsa_body_flags_V_get_value>("V") != 0; }
  void set_V(bool value) const {
    write_<&::ospfv2_lsa_body_flags_V_set_value>("V", value ? 1u : 0u);
  }
  // The router is an AS boundary router.
  bool E() const { return read_<&::ospfv2_lsa_body_flags_E_get_value>("E") != 0; }
  void set_E(bool value) const {
    write_<&::ospfv2_lsa_body_flags_E_set_value>("E", value ? 1u : 0u);
  }
  // The router is an area border router.
  bool B() const { return read_<&::ospfv2_lsa_body_flags_B_get_value>("B") != 0; }
  void set_B(bool value) const {
    write_<&::ospfv2_lsa_body_flags_B_set_value>("B", value ? 1u : 0u);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"V", 0, &lsa_body_flags_ref::V, &lsa_body_flags_ref::set_V});
    act(field{"E", 0, &lsa_body_flags_ref::E, &lsa_body_flags_ref::set_E});
    act(field{"B", 0, &lsa_body_flags_ref::B, &lsa_body_flags_ref::set_B});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using lsa_body_flags = owned<lsa_body_flags_ref>;
}  // namespace ospfv2

namespace ospfv2 {
// What an OSPFv2 network LSA says.
class network_ref : public object_ref<schema::ospfv2_network> {
 public:
  using object_ref::object_ref;

  // The network's mask.
  ospf_harbor::address network_mask() const {
    return address_<&::ospfv2_network_network_mask_get>("network_mask");
  }
  void set_network_mask(const ospf_harbor::address &value) const {
    write_address_<&::ospfv2_network_network_mask_get,
        &::ospfv2_network_network_mask_set>("network_mask", value);
  }
  // Router IDs of the attached routers.
  std::span<const std::uint32_t> attached_router() const {
    return elements_<&::ospfv2_network_attached_router_num_get_value,
        &::ospfv2_network_attached_router_get>("attached_router");
  }
  void set_attached_router(std::span<const std::uint32_t> elements) const {
    write_elements_<&::ospfv2_network_attached_router_set_mem>("attached_router", elements);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"network_mask", 0, &network_ref::network_mask, &network_ref::set_network_mask});
    act(field{"attached_router", 0, &network_ref::attached_router,
        &network_ref::set_attached_router});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using network = owned<network_ref>;
}  // namespace ospfv2

namespace ospfv2 {
// The body of an OSPFv2 LSA: router, network, summary and external data side by side.
class lsa_body_ref : public object_ref<schema::ospfv2_lsa_body> {
 public:
  using object_ref::object_ref;

  // A router LSA's bits as booleans.
  ospf_harbor::ospfv2::lsa_body_flags_ref lsa_flags() const {
    return part_<ospf_harbor::ospfv2::lsa_body_flags_ref,
        &::ospfv2_lsa_body_lsa_flags_get>("lsa_flags");
  }
  // A router LSA's number of links, as advertised.
  std::uint16_t num_of_links() const {
    return read_<&::ospfv2_lsa_body_num_of_links_get_value>("num_of_links");
  }
  void set_num_of_links(std::uint16_t value) const {
    write_<&::ospfv2_lsa_body_num_of_links_set_value>("num_of_links", value);
  }
  // What a network LSA says.
  ospf_harbor::ospfv2::network_ref network() const {
    return part_<ospf_harbor::ospfv2::network_ref, &::ospfv2_lsa_body_network_get>("network");
  }
  // A summary LSA's network mask.
  ospf_harbor::address summary_mask() const {
    return address_<&::ospfv2_lsa_body_summary_mask_get>("summary_mask");
  }
  void set_summary_mask(const ospf_harbor::address &value) const {
    write_address_<&::ospfv2_lsa_body_summary_mask_get,
        &::ospfv2_lsa_body_summary_mask_set>("summary_mask", value);
  }
  // An external LSA's network mask.
  ospf_harbor::address external_mask() const {
    return address_<&::ospfv2_lsa_body_external_mask_get>("external_mask");
  }
  void set_external_mask(const ospf_harbor::address &value) const {
    write_address_<&::ospfv2_lsa_body_external_mask_get,
        &::ospfv2_lsa_body_external_mask_set>("external_mask", value);
  }
  // A router LSA's bits as a flag set; filling one form does not fill the other.
  ospf_harbor::flags<ospf_harbor::ospfv2::lsa_body_flags_options> body_flag_options() const {
    return this->template flags_<ospf_harbor::ospfv2::lsa_body_flags_options, 3,
        &::ospfv2_lsa_body_body_flag_options_get,
        &::ospfv2_lsa_body_flags_options_get_value>("body_flag_options");
  }
  void set_body_flag_options(ospf_harbor::flags<
      ospf_harbor::ospfv2::lsa_body_flags_options> value) const {
    write_flags_<ospf_harbor::ospfv2::lsa_body_flags_options, 3,
        &::ospfv2_lsa_body_body_flag_options_get,
        &::ospfv2_lsa_body_flags_options_set_value>("body_flag_options", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"lsa_flags", 0, &lsa_body_ref::lsa_flags, nullptr});
    act(field{"num_of_links", 0, &lsa_body_ref::num_of_links, &lsa_body_ref::set_num_of_links});
    act(field{"network", 0, &lsa_body_ref::network, nullptr});
    act(field{"summary_mask", 0, &lsa_body_ref::summary_mask, &lsa_body_ref::set_summary_mask});
    act(field{"external_mask", 0, &lsa_body_ref::external_mask, &lsa_body_ref::set_external_mask});
    act(field{"body_flag_options", 1, &lsa_body_ref::body_flag_options,
        &lsa_body_ref::set_body_flag_options});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using lsa_body = owned<lsa_body_ref>;
}  // namespace ospfv2

// The fields that the headers of both protocol versions share by name.
class lsa_header_ref : public object_ref<schema::lsa_header> {
 public:
  using object_ref::object_ref;

  // Age in seconds.
  std::uint16_t age() const { return read_<&::lsa_header_age_get_value>("age"); }
  void set_age(std::uint16_t value) const { write_<&::lsa_header_age_set_value>("age", value); }
  // The LS type with its function and scope bits, as the producer numbers it.
  std::uint16_t type() const { return read_<&::lsa_header_type_get_value>("type"); }
  void set_type(std::uint16_t value) const { write_<&::lsa_header_type_set_value>("type", value); }
  // Router ID of the advertising router.
  std::uint32_t adv_router() const {
    return read_<&::lsa_header_adv_router_get_value>("adv_router");
  }
  void set_adv_router(std::uint32_t value) const {
    write_<&::lsa_header_adv_router_set_value>("adv_router", value);
  }
  // The sequence number as text; the producer chooses the notation.
  std::string_view seq_num() const { return text_<&::lsa_header_seq_num_get>("seq_num"); }
  void set_seq_num(std::string_view value) const {
    write_text_<&::lsa_header_seq_num_set>("seq_num", value);
  }
  // The checksum as text; the producer chooses the notation.
  std::string_view checksum() const { return text_<&::lsa_header_checksum_get>("checksum"); }
  void set_checksum(std::string_view value) const {
    write_text_<&::lsa_header_checksum_set>("checksum", value);
  }
  // Length of the LSA in octets, header included.
  std::uint16_t length() const { return read_<&::lsa_header_length_get_value>("length"); }
  void set_length(std::uint16_t value) const {
    write_<&::lsa_header_length_set_value>("length", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"age", 0, &lsa_header_ref::age, &lsa_header_ref::set_age});
    act(field{"type", 0, &lsa_header_ref::type, &lsa_header_ref::set_type});
    act(field{"adv_router", 0, &lsa_header_ref::adv_router, &lsa_header_ref::set_adv_router});
    act(field{"seq_num", 0, &lsa_header_ref::seq_num, &lsa_header_ref::set_seq_num});
    act(field{"checksum", 0, &lsa_header_ref::checksum, &lsa_header_ref::set_checksum});
    act(field{"length", 0, &lsa_header_ref::length, &lsa_header_ref::set_length});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using lsa_header = owned<lsa_header_ref>;

namespace ospfv2 {
// The header of an OSPFv2 LSA.
class header_ref : public object_ref<schema::ospfv2_header> {
 public:
  using object_ref::object_ref;

  // The option bits as booleans.
  ospf_harbor::lsa_options_ref options() const {
    return part_<ospf_harbor::lsa_options_ref, &::ospfv2_header_options_get>("options");
  }
  // The link-state ID.
  ospf_harbor::address lsa_id() const { return address_<&::ospfv2_header_lsa_id_get>("lsa_id"); }
  void set_lsa_id(const ospf_harbor::address &value) const {
    write_address_<&::ospfv2_header_lsa_id_get, &::ospfv2_header_lsa_id_set>("lsa_id", value);
  }
  // First octet of an opaque LSA's link-state ID.
  std::uint8_t opaque_type() const {
    return read_<&::ospfv2_header_opaque_type_get_value>("opaque_type");
  }
  void set_opaque_type(std::uint8_t value) const {
    write_<&::ospfv2_header_opaque_type_set_value>("opaque_type", value);
  }
  // The other 24 bits of an opaque LSA's link-state ID.
  std::uint32_t opaque_id() const {
    return read_<&::ospfv2_header_opaque_id_get_value>("opaque_id");
  }
  void set_opaque_id(std::uint32_t value) const {
    write_<&::ospfv2_header_opaque_id_set_value>("opaque_id", value);
  }
  // Age in seconds.
  std::uint16_t age() const { return read_<&::ospfv2_header_age_get_value>("age"); }
  void set_age(std::uint16_t value) const { write_<&::ospfv2_header_age_set_value>("age", value); }
  // The LS type as the producer numbers it.
  std::uint16_t type() const { return read_<&::ospfv2_header_type_get_value>("type"); }
  void set_type(std::uint16_t value) const {
    write_<&::ospfv2_header_type_set_value>("type", value);
  }
  // Router ID of the advertising router.
  std::uint32_t adv_router() const {
    return read_<&::ospfv2_header_adv_router_get_value>("adv_router");
  }
  void set_adv_router(std::uint32_t value) const {
    write_<&::ospfv2_header_adv_router_set_value>("adv_router", value);
  }
  // The sequence number as text; the producer chooses the notation.
  std::string_view seq_num() const { return text_<&::ospfv2_header_seq_num_get>("seq_num"); }
  void set_seq_num(std::string_view value) const {
    write_text_<&::ospfv2_header_seq_num_set>("seq_num", value);
  }
  // The checksum as text; the producer chooses the notation.
  std::string_view checksum() const { return text_<&::ospfv2_header_checksum_get>("checksum"); }
  void set_checksum(std::string_view value) const {
    write_text_<&::ospfv2_header_checksum_set>("checksum", value);
  }
  // Length of the LSA in octets, header included.
  std::uint16_t length() const { return read_<&::ospfv2_header_length_get_value>("length"); }
  void set_length(std::uint16_t value) const {
    write_<&::ospfv2_header_length_set_value>("length", value);
  }
  // The option bits as a flag set; filling one form does not fill the other.
  ospf_harbor::flags<ospf_harbor::lsa_flag_options> flag_options() const {
    return this->template flags_<ospf_harbor::lsa_flag_options, 8,
        &::ospfv2_header_flag_options_get, &::lsa_flag_options_get_value>("flag_options");
  }
  void set_flag_options(ospf_harbor::flags<ospf_harbor::lsa_flag_options> value) const {
    write_flags_<ospf_harbor::lsa_flag_options, 8, &::ospfv2_header_flag_options_get,
        &::lsa_flag_options_set_value>("flag_options", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"options", 0, &header_ref::options, nullptr});
    act(field{"lsa_id", 0, &header_ref::lsa_id, &header_ref::set_lsa_id});
    act(field{"opaque_type", 0, &header_ref::opaque_type, &header_ref::set_opaque_type});
    act(field{"opaque_id", 0, &header_ref::opaque_id, &header_ref::set_opaque_id});
    act(field{"age", 0, &header_ref::age, &header_ref::set_age});
    act(field{"type", 0, &header_ref::type, &header_ref::set_type});
    act(field{"adv_router", 0, &header_ref::adv_router, &header_ref::set_adv_router});
    act(field{"seq_num", 0, &header_ref::seq_num, &header_ref::set_seq_num});
    act(field{"checksum", 0, &header_ref::checksum, &header_ref::set_checksum});
    act(field{"length", 0, &header_ref::length, &header_ref::set_length});
    act(field{"flag_options", 1, &header_ref::flag_options, &header_ref::set_flag_options});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using header = owned<header_ref>;
}  // namespace ospfv2

namespace ospfv2 {
// An OSPFv2 LSA: header and body.
class lsa_ref : public object_ref<schema::ospfv2_lsa> {
 public:
  using object_ref::object_ref;

  // The LSA's header.
  ospf_harbor::ospfv2::header_ref header() const {
    return part_<ospf_harbor::ospfv2::header_ref, &::ospfv2_lsa_header_get>("header");
  }
  // The LSA's body, with a place for every kind of LSA.
  ospf_harbor::ospfv2::lsa_body_ref lsa_body() const {
    return part_<ospf_harbor::ospfv2::lsa_body_ref, &::ospfv2_lsa_lsa_body_get>("lsa_body");
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"header", 0, &lsa_ref::header, nullptr});
    act(field{"lsa_body", 0, &lsa_ref::lsa_body, nullptr});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using lsa = owned<lsa_ref>;
}  // namespace ospfv2

namespace ospfv3 {
// The OSPFv3 option bits, one boolean each.
class lsa_options_ref : public object_ref<schema::ospfv3_lsa_options> {
 public:
  using object_ref::object_ref;

  // Demand circuits are handled.
  bool DC() const { return read_<&::ospfv3_lsa_options_DC_get_value>("DC") != 0; }
  void set_DC(bool value) const {
    write_<&::ospfv3_lsa_options_DC_set_value>("DC", value ? 1u : 0u);
  }
  // The originator is an active router.
  bool R() const { return read_<&::ospfv3_lsa_options_R_get_value>("R") != 0; }
  void set_R(bool value) const { write_<&::ospfv3_lsa_options_R_set_value>("R", value ? 1u : 0u); }
  // Type 7 LSAs are handled.
  bool N() const { return read_<&::ospfv3_lsa_options_N_get_value>("N") != 0; }
  void set_N(bool value) const { write_<&::ospfv3_lsa_options_N_set_value>("N", value ? 1u : 0u); }
  // AS-external LSAs are accepted.
  bool E() const { return read_<&::ospfv3_lsa_options_E_get_value>("E") != 0; }
  void set_E(bool value) const { write_<&::ospfv3_lsa_options_E_set_value>("E", value ? 1u : 0u); }
  // The router takes part in IPv6 routing.
  bool V6() const { return read_<&::ospfv3_lsa_options_V6_get_value>("V6") != 0; }
  void set_V6(bool value) const {
    write_<&::ospfv3_lsa_options_V6_set_value>("V6", value ? 1u : 0u);
  }
  // Address families are supported.
  bool AF() const { return read_<&::ospfv3_lsa_options_AF_get_value>("AF") != 0; }
  void set_AF(bool value) const {
    write_<&::ospfv3_lsa_options_AF_set_value>("AF", value ? 1u : 0u);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"DC", 0, &lsa_options_ref::DC, &lsa_options_ref::set_DC});
    act(field{"R", 0, &lsa_options_ref::R, &lsa_options_ref::set_R});
    act(field{"N", 0, &lsa_options_ref::N, &lsa_options_ref::set_N});
    act(field{"E", 0, &lsa_options_ref::E, &lsa_options_ref::set_E});
    act(field{"V6", 0, &lsa_options_ref::V6, &lsa_options_ref::set_V6});
    act(field{"AF", 0, &lsa_options_ref::AF, &lsa_options_ref::set_AF});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using lsa_options = owned<lsa_options_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// The header of an OSPFv3 LSA.
class header_ref : public object_ref<schema::ospfv3_header> {
 public:
  using object_ref::object_ref;

  // The link-state ID.
  ospf_harbor::address lsa_id() const { return address_<&::ospfv3_header_lsa_id_get>("lsa_id"); }
  void set_lsa_id(const ospf_harbor::address &value) const {
    write_address_<&::ospfv3_header_lsa_id_get, &::ospfv3_header_lsa_id_set>("lsa_id", value);
  }
  // The part of the header that both protocol versions share by name.
  ospf_harbor::lsa_header_ref lsa_header_val() const {
    return part_<ospf_harbor::lsa_header_ref,
        &::ospfv3_header_lsa_header_val_get>("lsa_header_val");
  }
  // The option bits as booleans.
  ospf_harbor::ospfv3::lsa_options_ref lsa_hdr_options() const {
    return part_<ospf_harbor::ospfv3::lsa_options_ref,
        &::ospfv3_header_lsa_hdr_options_get>("lsa_hdr_options");
  }
  // The option bits as a flag set; filling one form does not fill the other.
  ospf_harbor::flags<ospf_harbor::ospfv3::lsa_flag_options> lsa_flag_hdr_options() const {
    return this->template flags_<ospf_harbor::ospfv3::lsa_flag_options, 6,
        &::ospfv3_header_lsa_flag_hdr_options_get,
        &::ospfv3_lsa_flag_options_get_value>("lsa_flag_hdr_options");
  }
  void set_lsa_flag_hdr_options(ospf_harbor::flags<
      ospf_harbor::ospfv3::lsa_flag_options> value) const {
    write_flags_<ospf_harbor::ospfv3::lsa_flag_options, 6,
        &::ospfv3_header_lsa_flag_hdr_options_get,
        &::ospfv3_lsa_flag_options_set_value>("lsa_flag_hdr_options", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"lsa_id", 0, &header_ref::lsa_id, &header_ref::set_lsa_id});
    act(field{"lsa_header_val", 0, &header_ref::lsa_header_val, nullptr});
    act(field{"lsa_hdr_options", 0, &header_ref::lsa_hdr_options, nullptr});
    act(field{"lsa_flag_hdr_options", 1, &header_ref::lsa_flag_hdr_options,
        &header_ref::set_lsa_flag_hdr_options});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using header = owned<header_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// The bits of an OSPFv3 router LSA, one boolean each.
class lsa_body_flags_ref : public object_ref<schema::ospfv3_lsa_body_flags> {
 public:
  using object_ref::object_ref;

  // The router is an endpoint of a virtual link.
  bool V() const { return read_<&::ospfv3_lsa_body_flags_V_get_value>("V") != 0; }
  void set_V(bool value) const {
    write_<&::ospfv3_lsa_body_flags_V_set_value>("V", value ? 1u : 0u);
  }
  // The router is an AS boundary router.
  bool E() const { return read_<&::ospfv3_lsa_body_flags_E_get_value>("E") != 0; }
  void set_E(bool value) const {
    write_<&::ospfv3_lsa_body_flags_E_set_value>("E", value ? 1u : 0u);
  }
  // The router is an area border router.
  bool B() const { return read_<&::ospfv3_lsa_body_flags_B_get_value>("B") != 0; }
  void set_B(bool value) const {
    write_<&::ospfv3_lsa_body_flags_B_set_value>("B", value ? 1u : 0u);
  }
  // The router translates type 7 LSAs whatever others do.
  bool Nt() const { return read_<&::ospfv3_lsa_body_flags_Nt_get_value>("Nt") != 0; }
  void set_Nt(bool value) const {
    write_<&::ospfv3_lsa_body_flags_Nt_set_value>("Nt", value ? 1u : 0u);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"V", 0, &lsa_body_flags_ref::V, &lsa_body_flags_ref::set_V});
    act(field{"E", 0, &lsa_body_flags_ref::E, &lsa_body_flags_ref::set_E});
    act(field{"B", 0, &lsa_body_flags_ref::B, &lsa_body_flags_ref::set_B});
    act(field{"Nt", 0, &lsa_body_flags_ref::Nt, &lsa_body_flags_ref::set_Nt});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using lsa_body_flags = owned<lsa_body_flags_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// What an OSPFv3 network LSA says.
class network_ref : public object_ref<schema::ospfv3_network> {
 public:
  using object_ref::object_ref;

  // The option bits as booleans.
  ospf_harbor::ospfv3::lsa_options_ref lsa_net_options() const {
    return part_<ospf_harbor::ospfv3::lsa_options_ref,
        &::ospfv3_network_lsa_net_options_get>("lsa_net_options");
  }
  // Router IDs of the attached routers.
  std::span<const std::uint32_t> attached_router() const {
    return elements_<&::ospfv3_network_attached_router_num_get_value,
        &::ospfv3_network_attached_router_get>("attached_router");
  }
  void set_attached_router(std::span<const std::uint32_t> elements) const {
    write_elements_<&::ospfv3_network_attached_router_set_mem>("attached_router", elements);
  }
  // The option bits as a flag set; filling one form does not fill the other.
  ospf_harbor::flags<ospf_harbor::ospfv3::lsa_flag_options> lsa_flag_hdr_options() const {
    return this->template flags_<ospf_harbor::ospfv3::lsa_flag_options, 6,
        &::ospfv3_network_lsa_flag_hdr_options_get,
        &::ospfv3_lsa_flag_options_get_value>("lsa_flag_hdr_options");
  }
  void set_lsa_flag_hdr_options(ospf_harbor::flags<
      ospf_harbor::ospfv3::lsa_flag_options> value) const {
    write_flags_<ospf_harbor::ospfv3::lsa_flag_options, 6,
        &::ospfv3_network_lsa_flag_hdr_options_get,
        &::ospfv3_lsa_flag_options_set_value>("lsa_flag_hdr_options", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"lsa_net_options", 0, &network_ref::lsa_net_options, nullptr});
    act(field{"attached_router", 0, &network_ref::attached_router,
        &network_ref::set_attached_router});
    act(field{"lsa_flag_hdr_options", 1, &network_ref::lsa_flag_hdr_options,
        &network_ref::set_lsa_flag_hdr_options});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using network = owned<network_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// What an inter-area prefix LSA says.
class inter_area_prefix_ref : public object_ref<schema::ospfv3_inter_area_prefix> {
 public:
  using object_ref::object_ref;

  // Cost of the route to the prefix.
  std::uint32_t metric() const {
    return read_<&::ospfv3_inter_area_prefix_metric_get_value>("metric");
  }
  void set_metric(std::uint32_t value) const {
    write_<&::ospfv3_inter_area_prefix_metric_set_value>("metric", value);
  }
  // The prefix as text.
  std::string_view ia_prefix() const {
    return text_<&::ospfv3_inter_area_prefix_ia_prefix_get>("ia_prefix");
  }
  void set_ia_prefix(std::string_view value) const {
    write_text_<&::ospfv3_inter_area_prefix_ia_prefix_set>("ia_prefix", value);
  }
  // The prefix's options as text.
  std::string_view ia_prefix_options() const {
    return text_<&::ospfv3_inter_area_prefix_ia_prefix_options_get>("ia_prefix_options");
  }
  void set_ia_prefix_options(std::string_view value) const {
    write_text_<&::ospfv3_inter_area_prefix_ia_prefix_options_set>("ia_prefix_options", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"metric", 0, &inter_area_prefix_ref::metric, &inter_area_prefix_ref::set_metric});
    act(field{"ia_prefix", 0, &inter_area_prefix_ref::ia_prefix,
        &inter_area_prefix_ref::set_ia_prefix});
    act(field{"ia_prefix_options", 0, &inter_area_prefix_ref::ia_prefix_options,
        &inter_area_prefix_ref::set_ia_prefix_options});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using inter_area_prefix = owned<inter_area_prefix_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// What an inter-area router LSA says.
class inter_area_router_ref : public object_ref<schema::ospfv3_inter_area_router> {
 public:
  using object_ref::object_ref;

  // The destination router's option bits as booleans.
  ospf_harbor::ospfv3::lsa_options_ref lsa_ia_options() const {
    return part_<ospf_harbor::ospfv3::lsa_options_ref,
        &::ospfv3_inter_area_router_lsa_ia_options_get>("lsa_ia_options");
  }
  // Cost of the route to the router.
  std::uint32_t metric() const {
    return read_<&::ospfv3_inter_area_router_metric_get_value>("metric");
  }
  void set_metric(std::uint32_t value) const {
    write_<&::ospfv3_inter_area_router_metric_set_value>("metric", value);
  }
  // Router ID of the router described.
  std::uint32_t destination_router_id() const {
    return read_<&::ospfv3_inter_area_router_destination_router_id_get_value>(
        "destination_router_id");
  }
  void set_destination_router_id(std::uint32_t value) const {
    write_<&::ospfv3_inter_area_router_destination_router_id_set_value>("destination_router_id",
        value);
  }
  // The option bits as a flag set; filling one form does not fill the other.
  ospf_harbor::flags<ospf_harbor::ospfv3::lsa_flag_options> lsa_flag_hdr_options() const {
    return this->template flags_<ospf_harbor::ospfv3::lsa_flag_options, 6,
        &::ospfv3_inter_area_router_lsa_flag_hdr_options_get,
        &::ospfv3_lsa_flag_options_get_value>("lsa_flag_hdr_options");
  }
  void set_lsa_flag_hdr_options(ospf_harbor::flags<
      ospf_harbor::ospfv3::lsa_flag_options> value) const {
    write_flags_<ospf_harbor::ospfv3::lsa_flag_options, 6,
        &::ospfv3_inter_area_router_lsa_flag_hdr_options_get,
        &::ospfv3_lsa_flag_options_set_value>("lsa_flag_hdr_options", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"lsa_ia_options", 0, &inter_area_router_ref::lsa_ia_options, nullptr});
    act(field{"metric", 0, &inter_area_router_ref::metric, &inter_area_router_ref::set_metric});
    act(field{"destination_router_id", 0, &inter_area_router_ref::destination_router_id,
        &inter_area_router_ref::set_destination_router_id});
    act(field{"lsa_flag_hdr_options", 1, &inter_area_router_ref::lsa_flag_hdr_options,
        &inter_area_router_ref::set_lsa_flag_hdr_options});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using inter_area_router = owned<inter_area_router_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// The bits of an OSPFv3 AS-external LSA.
class lsa_external_flags_ref : public object_ref<schema::ospfv3_lsa_external_flags> {
 public:
  using object_ref::object_ref;

  // The metric is of type 2, larger than any cost inside the AS.
  bool E() const { return read_<&::ospfv3_lsa_external_flags_E_get_value>("E") != 0; }
  void set_E(bool value) const {
    write_<&::ospfv3_lsa_external_flags_E_set_value>("E", value ? 1u : 0u);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"E", 0, &lsa_external_flags_ref::E, &lsa_external_flags_ref::set_E});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using lsa_external_flags = owned<lsa_external_flags_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// What an OSPFv3 AS-external LSA says.
class lsa_external_ref : public object_ref<schema::ospfv3_lsa_external> {
 public:
  using object_ref::object_ref;

  // Cost of the route.
  std::uint32_t metric() const { return read_<&::ospfv3_lsa_external_metric_get_value>("metric"); }
  void set_metric(std::uint32_t value) const {
    write_<&::ospfv3_lsa_external_metric_set_value>("metric", value);
  }
  // The LSA's flag bits.
  ospf_harbor::ospfv3::lsa_external_flags_ref flags_val() const {
    return part_<ospf_harbor::ospfv3::lsa_external_flags_ref,
        &::ospfv3_lsa_external_flags_val_get>("flags_val");
  }
  // LS type of an LSA that belongs to this one; 0 for none.
  std::uint16_t referenced_ls_type() const {
    return read_<&::ospfv3_lsa_external_referenced_ls_type_get_value>("referenced_ls_type");
  }
  void set_referenced_ls_type(std::uint16_t value) const {
    write_<&::ospfv3_lsa_external_referenced_ls_type_set_value>("referenced_ls_type", value);
  }
  // The prefix as text.
  std::string_view external_prefix() const {
    return text_<&::ospfv3_lsa_external_external_prefix_get>("external_prefix");
  }
  void set_external_prefix(std::string_view value) const {
    write_text_<&::ospfv3_lsa_external_external_prefix_set>("external_prefix", value);
  }
  // The prefix's options as text.
  std::string_view external_prefix_options() const {
    return text_<&::ospfv3_lsa_external_external_prefix_options_get>("external_prefix_options");
  }
  void set_external_prefix_options(std::string_view value) const {
    write_text_<&::ospfv3_lsa_external_external_prefix_options_set>("external_prefix_options",
        value);
  }
  // Where traffic for the destination is to be sent; unset for the advertising router.
  ospf_harbor::address forwarding_address() const {
    return address_<&::ospfv3_lsa_external_forwarding_address_get>("forwarding_address");
  }
  void set_forwarding_address(const ospf_harbor::address &value) const {
    write_address_<&::ospfv3_lsa_external_forwarding_address_get,
        &::ospfv3_lsa_external_forwarding_address_set>("forwarding_address", value);
  }
  // The tag that the external route carries.
  std::uint32_t external_route_tag() const {
    return read_<&::ospfv3_lsa_external_external_route_tag_get_value>("external_route_tag");
  }
  void set_external_route_tag(std::uint32_t value) const {
    write_<&::ospfv3_lsa_external_external_route_tag_set_value>("external_route_tag", value);
  }
  // Link-state ID of the LSA referred to.
  std::uint32_t referenced_link_state_id() const {
    return read_<&::ospfv3_lsa_external_referenced_link_state_id_get_value>(
        "referenced_link_state_id");
  }
  void set_referenced_link_state_id(std::uint32_t value) const {
    write_<&::ospfv3_lsa_external_referenced_link_state_id_set_value>("referenced_link_state_id",
        value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"metric", 0, &lsa_external_ref::metric, &lsa_external_ref::set_metric});
    act(field{"flags_val", 0, &lsa_external_ref::flags_val, nullptr});
    act(field{"referenced_ls_type", 0, &lsa_external_ref::referenced_ls_type,
        &lsa_external_ref::set_referenced_ls_type});
    act(field{"external_prefix", 0, &lsa_external_ref::external_prefix,
        &lsa_external_ref::set_external_prefix});
    act(field{"external_prefix_options", 0, &lsa_external_ref::external_prefix_options,
        &lsa_external_ref::set_external_prefix_options});
    act(field{"forwarding_address", 0, &lsa_external_ref::forwarding_address,
        &lsa_external_ref::set_forwarding_address});
    act(field{"external_route_tag", 0, &lsa_external_ref::external_route_tag,
        &lsa_external_ref::set_external_route_tag});
    act(field{"referenced_link_state_id", 0, &lsa_external_ref::referenced_link_state_id,
        &lsa_external_ref::set_referenced_link_state_id});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using lsa_external = owned<lsa_external_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// What an OSPFv3 NSSA LSA says: an external LSA by another name.
class nssa_ref : public object_ref<schema::ospfv3_nssa> {
 public:
  using object_ref::object_ref;

  // The external data of the LSA.
  ospf_harbor::ospfv3::lsa_external_ref lsa_nssa_external() const {
    return part_<ospf_harbor::ospfv3::lsa_external_ref,
        &::ospfv3_nssa_lsa_nssa_external_get>("lsa_nssa_external");
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"lsa_nssa_external", 0, &nssa_ref::lsa_nssa_external, nullptr});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using nssa = owned<nssa_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// What a link LSA says.
class link_data_ref : public object_ref<schema::ospfv3_link_data> {
 public:
  using object_ref::object_ref;

  // The originator's router priority on the link.
  std::uint8_t rtr_priority() const {
    return read_<&::ospfv3_link_data_rtr_priority_get_value>("rtr_priority");
  }
  void set_rtr_priority(std::uint8_t value) const {
    write_<&::ospfv3_link_data_rtr_priority_set_value>("rtr_priority", value);
  }
  // The option bits as booleans.
  ospf_harbor::ospfv3::lsa_options_ref lsa_ld_options() const {
    return part_<ospf_harbor::ospfv3::lsa_options_ref,
        &::ospfv3_link_data_lsa_ld_options_get>("lsa_ld_options");
  }
  // The originator's link-local address on the link.
  ospf_harbor::address link_local_interface_address() const {
    return address_<&::ospfv3_link_data_link_local_interface_address_get>(
        "link_local_interface_address");
  }
  void set_link_local_interface_address(const ospf_harbor::address &value) const {
    write_address_<&::ospfv3_link_data_link_local_interface_address_get,
        &::ospfv3_link_data_link_local_interface_address_set>("link_local_interface_address",
        value);
  }
  // Number of prefixes as advertised; related to no table.
  std::uint32_t num_of_prefixes() const {
    return read_<&::ospfv3_link_data_num_of_prefixes_get_value>("num_of_prefixes");
  }
  void set_num_of_prefixes(std::uint32_t value) const {
    write_<&::ospfv3_link_data_num_of_prefixes_set_value>("num_of_prefixes", value);
  }
  // The option bits as a flag set; filling one form does not fill the other.
  ospf_harbor::flags<ospf_harbor::ospfv3::lsa_flag_options> lsa_flag_hdr_options() const {
    return this->template flags_<ospf_harbor::ospfv3::lsa_flag_options, 6,
        &::ospfv3_link_data_lsa_flag_hdr_options_get,
        &::ospfv3_lsa_flag_options_get_value>("lsa_flag_hdr_options");
  }
  void set_lsa_flag_hdr_options(ospf_harbor::flags<
      ospf_harbor::ospfv3::lsa_flag_options> value) const {
    write_flags_<ospf_harbor::ospfv3::lsa_flag_options, 6,
        &::ospfv3_link_data_lsa_flag_hdr_options_get,
        &::ospfv3_lsa_flag_options_set_value>("lsa_flag_hdr_options", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"rtr_priority", 0, &link_data_ref::rtr_priority, &link_data_ref::set_rtr_priority});
    act(field{"lsa_ld_options", 0, &link_data_ref::lsa_ld_options, nullptr});
    act(field{"link_local_interface_address", 0, &link_data_ref::link_local_interface_address,
        &link_data_ref::set_link_local_interface_address});
    act(field{"num_of_prefixes", 0, &link_data_ref::num_of_prefixes,
        &link_data_ref::set_num_of_prefixes});
    act(field{"lsa_flag_hdr_options", 1, &link_data_ref::lsa_flag_hdr_options,
        &link_data_ref::set_lsa_flag_hdr_options});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using link_data = owned<link_data_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// What an intra-area prefix LSA says.
class intra_area_prefix_ref : public object_ref<schema::ospfv3_intra_area_prefix> {
 public:
  using object_ref::object_ref;

  // LS type of an LSA that belongs to this one; 0 for none.
  std::uint16_t referenced_ls_type() const {
    return read_<&::ospfv3_intra_area_prefix_referenced_ls_type_get_value>("referenced_ls_type");
  }
  void set_referenced_ls_type(std::uint16_t value) const {
    write_<&::ospfv3_intra_area_prefix_referenced_ls_type_set_value>("referenced_ls_type", value);
  }
  // Link-state ID of the LSA referred to.
  std::uint32_t referenced_link_state_id() const {
    return read_<&::ospfv3_intra_area_prefix_referenced_link_state_id_get_value>(
        "referenced_link_state_id");
  }
  void set_referenced_link_state_id(std::uint32_t value) const {
    write_<&::ospfv3_intra_area_prefix_referenced_link_state_id_set_value>(
        "referenced_link_state_id", value);
  }
  // Advertising router of the LSA referred to.
  ospf_harbor::address referenced_adv_router() const {
    return address_<&::ospfv3_intra_area_prefix_referenced_adv_router_get>("referenced_adv_router");
  }
  void set_referenced_adv_router(const ospf_harbor::address &value) const {
    write_address_<&::ospfv3_intra_area_prefix_referenced_adv_router_get,
        &::ospfv3_intra_area_prefix_referenced_adv_router_set>("referenced_adv_router", value);
  }
  // Number of prefixes as advertised; related to no table.
  std::uint16_t num_of_prefixes() const {
    return read_<&::ospfv3_intra_area_prefix_num_of_prefixes_get_value>("num_of_prefixes");
  }
  void set_num_of_prefixes(std::uint16_t value) const {
    write_<&::ospfv3_intra_area_prefix_num_of_prefixes_set_value>("num_of_prefixes", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"referenced_ls_type", 0, &intra_area_prefix_ref::referenced_ls_type,
        &intra_area_prefix_ref::set_referenced_ls_type});
    act(field{"referenced_link_state_id", 0, &intra_area_prefix_ref::referenced_link_state_id,
        &intra_area_prefix_ref::set_referenced_link_state_id});
    act(field{"referenced_adv_router", 0, &intra_area_prefix_ref::referenced_adv_router,
        &intra_area_prefix_ref::set_referenced_adv_router});
    act(field{"num_of_prefixes", 0, &intra_area_prefix_ref::num_of_prefixes,
        &intra_area_prefix_ref::set_num_of_prefixes});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using intra_area_prefix = owned<intra_area_prefix_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// The body of an OSPFv3 LSA: all kinds side by side.
class lsa_body_ref : public object_ref<schema::ospfv3_lsa_body> {
 public:
  using object_ref::object_ref;

  // A router LSA's bits as booleans.
  ospf_harbor::ospfv3::lsa_body_flags_ref lsa_flags() const {
    return part_<ospf_harbor::ospfv3::lsa_body_flags_ref,
        &::ospfv3_lsa_body_lsa_flags_get>("lsa_flags");
  }
  // A router LSA's option bits as booleans.
  ospf_harbor::ospfv3::lsa_options_ref lsa_body_options() const {
    return part_<ospf_harbor::ospfv3::lsa_options_ref,
        &::ospfv3_lsa_body_lsa_body_options_get>("lsa_body_options");
  }
  // What a network LSA says.
  ospf_harbor::ospfv3::network_ref network() const {
    return part_<ospf_harbor::ospfv3::network_ref, &::ospfv3_lsa_body_network_get>("network");
  }
  // What an inter-area prefix LSA says.
  ospf_harbor::ospfv3::inter_area_prefix_ref prefix() const {
    return part_<ospf_harbor::ospfv3::inter_area_prefix_ref,
        &::ospfv3_lsa_body_prefix_get>("prefix");
  }
  // What an inter-area router LSA says.
  ospf_harbor::ospfv3::inter_area_router_ref ia_router() const {
    return part_<ospf_harbor::ospfv3::inter_area_router_ref,
        &::ospfv3_lsa_body_ia_router_get>("ia_router");
  }
  // What an AS-external LSA says.
  ospf_harbor::ospfv3::lsa_external_ref lsa_external() const {
    return part_<ospf_harbor::ospfv3::lsa_external_ref,
        &::ospfv3_lsa_body_lsa_external_get>("lsa_external");
  }
  // What an NSSA LSA says.
  ospf_harbor::ospfv3::nssa_ref nssa() const {
    return part_<ospf_harbor::ospfv3::nssa_ref, &::ospfv3_lsa_body_nssa_get>("nssa");
  }
  // What a link LSA says.
  ospf_harbor::ospfv3::link_data_ref link_data() const {
    return part_<ospf_harbor::ospfv3::link_data_ref, &::ospfv3_lsa_body_link_data_get>("link_data");
  }
  // What an intra-area prefix LSA says.
  ospf_harbor::ospfv3::intra_area_prefix_ref ia_prefix() const {
    return part_<ospf_harbor::ospfv3::intra_area_prefix_ref,
        &::ospfv3_lsa_body_ia_prefix_get>("ia_prefix");
  }
  // A router LSA's option bits as a flag set; filling one form does not fill the other.
  ospf_harbor::flags<ospf_harbor::ospfv3::lsa_flag_options> lsa_flag_options() const {
    return this->template flags_<ospf_harbor::ospfv3::lsa_flag_options, 6,
        &::ospfv3_lsa_body_lsa_flag_options_get,
        &::ospfv3_lsa_flag_options_get_value>("lsa_flag_options");
  }
  void set_lsa_flag_options(ospf_harbor::flags<ospf_harbor::ospfv3::lsa_flag_options> value) const {
    write_flags_<ospf_harbor::ospfv3::lsa_flag_options, 6, &::ospfv3_lsa_body_lsa_flag_options_get,
        &::ospfv3_lsa_flag_options_set_value>("lsa_flag_options", value);
  }
  // A router LSA's bits as a flag set; filling one form does not fill the other.
  ospf_harbor::flags<ospf_harbor::ospfv3::lsa_body_flag_options> lsa_body_flags() const {
    return this->template flags_<ospf_harbor::ospfv3::lsa_body_flag_options, 4,
        &::ospfv3_lsa_body_lsa_body_flags_get,
        &::ospfv3_lsa_body_flag_options_get_value>("lsa_body_flags");
  }
  void set_lsa_body_flags(ospf_harbor::flags<
      ospf_harbor::ospfv3::lsa_body_flag_options> value) const {
    write_flags_<ospf_harbor::ospfv3::lsa_body_flag_options, 4,
        &::ospfv3_lsa_body_lsa_body_flags_get,
        &::ospfv3_lsa_body_flag_options_set_value>("lsa_body_flags", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"lsa_flags", 0, &lsa_body_ref::lsa_flags, nullptr});
    act(field{"lsa_body_options", 0, &lsa_body_ref::lsa_body_options, nullptr});
    act(field{"network", 0, &lsa_body_ref::network, nullptr});
    act(field{"prefix", 0, &lsa_body_ref::prefix, nullptr});
    act(field{"ia_router", 0, &lsa_body_ref::ia_router, nullptr});
    act(field{"lsa_external", 0, &lsa_body_ref::lsa_external, nullptr});
    act(field{"nssa", 0, &lsa_body_ref::nssa, nullptr});
    act(field{"link_data", 0, &lsa_body_ref::link_data, nullptr});
    act(field{"ia_prefix", 0, &lsa_body_ref::ia_prefix, nullptr});
    act(field{"lsa_flag_options", 1, &lsa_body_ref::lsa_flag_options,
        &lsa_body_ref::set_lsa_flag_options});
    act(field{"lsa_body_flags", 1, &lsa_body_ref::lsa_body_flags,
        &lsa_body_ref::set_lsa_body_flags});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using lsa_body = owned<lsa_body_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// An OSPFv3 LSA: header and body.
class lsa_ref : public object_ref<schema::ospfv3_lsa> {
 public:
  using object_ref::object_ref;

  // The LSA's header.
  ospf_harbor::ospfv3::header_ref header() const {
    return part_<ospf_harbor::ospfv3::header_ref, &::ospfv3_lsa_header_get>("header");
  }
  // The LSA's body, with a place for every kind of LSA.
  ospf_harbor::ospfv3::lsa_body_ref lsa_body() const {
    return part_<ospf_harbor::ospfv3::lsa_body_ref, &::ospfv3_lsa_lsa_body_get>("lsa_body");
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"header", 0, &lsa_ref::header, nullptr});
    act(field{"lsa_body", 0, &lsa_ref::lsa_body, nullptr});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using lsa = owned<lsa_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// What identifies a link of an OSPFv3 router LSA.
class link_key_ref : public object_ref<schema::ospfv3_link_key> {
 public:
  using object_ref::object_ref;

  // The advertising router's interface ID.
  std::uint32_t interface_id() const {
    return read_<&::ospfv3_link_key_interface_id_get_value>("interface_id");
  }
  void set_interface_id(std::uint32_t value) const {
    write_<&::ospfv3_link_key_interface_id_set_value>("interface_id", value);
  }
  // The neighbour's interface ID.
  std::uint32_t neighbor_interface_id() const {
    return read_<&::ospfv3_link_key_neighbor_interface_id_get_value>("neighbor_interface_id");
  }
  void set_neighbor_interface_id(std::uint32_t value) const {
    write_<&::ospfv3_link_key_neighbor_interface_id_set_value>("neighbor_interface_id", value);
  }
  // The neighbour's router ID.
  std::uint32_t neighbor_router_id() const {
    return read_<&::ospfv3_link_key_neighbor_router_id_get_value>("neighbor_router_id");
  }
  void set_neighbor_router_id(std::uint32_t value) const {
    write_<&::ospfv3_link_key_neighbor_router_id_set_value>("neighbor_router_id", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"interface_id", 0, &link_key_ref::interface_id, &link_key_ref::set_interface_id});
    act(field{"neighbor_interface_id", 0, &link_key_ref::neighbor_interface_id,
        &link_key_ref::set_neighbor_interface_id});
    act(field{"neighbor_router_id", 0, &link_key_ref::neighbor_router_id,
        &link_key_ref::set_neighbor_router_id});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using link_key = owned<link_key_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// One link of an OSPFv3 router LSA.
class link_ref : public object_ref<schema::ospfv3_link> {
 public:
  using object_ref::object_ref;

  // The link's type: 1 point-to-point, 2 transit, 4 virtual.
  std::uint8_t type() const { return read_<&::ospfv3_link_type_get_value>("type"); }
  void set_type(std::uint8_t value) const { write_<&::ospfv3_link_type_set_value>("type", value); }
  // Cost of using the interface.
  std::uint16_t metric() const { return read_<&::ospfv3_link_metric_get_value>("metric"); }
  void set_metric(std::uint16_t value) const {
    write_<&::ospfv3_link_metric_set_value>("metric", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"type", 0, &link_ref::type, &link_ref::set_type});
    act(field{"metric", 0, &link_ref::metric, &link_ref::set_metric});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using link = owned<link_ref>;
}  // namespace ospfv3

namespace ospfv3 {
// A prefix of a link LSA or an intra-area prefix LSA.
class prefix_list_ref : public object_ref<schema::ospfv3_prefix_list> {
 public:
  using object_ref::object_ref;

  // The prefix as text.
  std::string_view prefix() const { return text_<&::ospfv3_prefix_list_prefix_get>("prefix"); }
  void set_prefix(std::string_view value) const {
    write_text_<&::ospfv3_prefix_list_prefix_set>("prefix", value);
  }
  // The prefix's options as text.
  std::string_view prefix_options() const {
    return text_<&::ospfv3_prefix_list_prefix_options_get>("prefix_options");
  }
  void set_prefix_options(std::string_view value) const {
    write_text_<&::ospfv3_prefix_list_prefix_options_set>("prefix_options", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"prefix", 0, &prefix_list_ref::prefix, &prefix_list_ref::set_prefix});
    act(field{"prefix_options", 0, &prefix_list_ref::prefix_options,
        &prefix_list_ref::set_prefix_options});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using prefix_list = owned<prefix_list_ref>;
}  // namespace ospfv3

// The name of a topology.
class multi_topology_ref : public object_ref<schema::multi_topology> {
 public:
  using object_ref::object_ref;

  // The topology's name; key of the table.
  std::string_view name() const { return text_<&::multi_topology_name_get>("name"); }
  void set_name(std::string_view value) const {
    write_text_<&::multi_topology_name_set>("name", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"name", 0, &multi_topology_ref::name, &multi_topology_ref::set_name});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using multi_topology = owned<multi_topology_ref>;

// An LSA of link scope, as received and in typed form for both protocol versions.
class link_scope_lsa_ref : public object_ref<schema::link_scope_lsa> {
 public:
  using object_ref::object_ref;

  // The producer has filled the typed fields from raw_data.
  bool decoded_completed() const {
    return read_<&::link_scope_lsa_decoded_completed_get_value>("decoded_completed") != 0;
  }
  void set_decoded_completed(bool value) const {
    write_<&::link_scope_lsa_decoded_completed_set_value>("decoded_completed", value ? 1u : 0u);
  }
  // The LSA as received, header first.
  std::span<const std::uint8_t> raw_data() const {
    return elements_<&::link_scope_lsa_raw_data_len_get_value,
        &::link_scope_lsa_raw_data_get>("raw_data");
  }
  void set_raw_data(std::span<const std::uint8_t> elements) const {
    write_elements_<&::link_scope_lsa_raw_data_set_mem>("raw_data", elements);
  }
  // The OSPF version that the LSA belongs to.
  std::uint32_t version() const { return read_<&::link_scope_lsa_version_get_value>("version"); }
  void set_version(std::uint32_t value) const {
    write_<&::link_scope_lsa_version_set_value>("version", value);
  }
  // The LSA in typed form, if it is of OSPFv2; zero else.
  ospf_harbor::ospfv2::lsa_ref ospfv2_lsa_val() const {
    return part_<ospf_harbor::ospfv2::lsa_ref,
        &::link_scope_lsa_ospfv2_lsa_val_get>("ospfv2_lsa_val");
  }
  // A router LSA's links.
  ospf_harbor::ospfv2::link_table ospfv2_links() const {
    return ospf_harbor::ospfv2::link_table(*session_,
        read_<&::link_scope_lsa_ospfv2_links_get_by_ref>("ospfv2_links"));
  }
  void set_ospfv2_links(ospf_harbor::ospfv2::link_table target) const {
    write_<&::link_scope_lsa_ospfv2_links_set_by_ref>("ospfv2_links", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv2::link_row add_ospfv2_link(
      const ospf_harbor::ospfv2::link_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv2_link, &::link_scope_lsa_ospfv2_links_get_by_ref,
        &::link_scope_lsa_ospfv2_links_set_by_ref>(*session_, object_, key);
  }
  // A summary LSA's metrics, one row for each topology.
  ospf_harbor::ospfv2::topology_table summary() const {
    return ospf_harbor::ospfv2::topology_table(*session_,
        read_<&::link_scope_lsa_summary_get_by_ref>("summary"));
  }
  void set_summary(ospf_harbor::ospfv2::topology_table target) const {
    write_<&::link_scope_lsa_summary_set_by_ref>("summary", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv2::topology_row add_summary(
      const ospf_harbor::ospfv2::topology_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv2_topology, &::link_scope_lsa_summary_get_by_ref,
        &::link_scope_lsa_summary_set_by_ref>(*session_, object_, key);
  }
  // An external LSA's entries, one row for each topology.
  ospf_harbor::ospfv2::external_table external() const {
    return ospf_harbor::ospfv2::external_table(*session_,
        read_<&::link_scope_lsa_external_get_by_ref>("external"));
  }
  void set_external(ospf_harbor::ospfv2::external_table target) const {
    write_<&::link_scope_lsa_external_set_by_ref>("external", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv2::external_row add_external(
      const ospf_harbor::ospfv2::external_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv2_external, &::link_scope_lsa_external_get_by_ref,
        &::link_scope_lsa_external_set_by_ref>(*session_, object_, key);
  }
  // TLVs that no field covers.
  ospf_harbor::ospfv2::unknown_tlv_table unknown_tlv() const {
    return ospf_harbor::ospfv2::unknown_tlv_table(*session_,
        read_<&::link_scope_lsa_unknown_tlv_get_by_ref>("unknown_tlv"));
  }
  void set_unknown_tlv(ospf_harbor::ospfv2::unknown_tlv_table target) const {
    write_<&::link_scope_lsa_unknown_tlv_set_by_ref>("unknown_tlv", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv2::unknown_tlv_row add_unknown_tlv(
      const ospf_harbor::ospfv2::unknown_tlv_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv2_unknown_tlv,
        &::link_scope_lsa_unknown_tlv_get_by_ref,
        &::link_scope_lsa_unknown_tlv_set_by_ref>(*session_, object_, key);
  }
  // The LSA in typed form, if it is of OSPFv3; zero else.
  ospf_harbor::ospfv3::lsa_ref ospfv3_lsa_val() const {
    return part_<ospf_harbor::ospfv3::lsa_ref,
        &::link_scope_lsa_ospfv3_lsa_val_get>("ospfv3_lsa_val");
  }
  // A router LSA's links.
  ospf_harbor::ospfv3::link_table ospfv3_links() const {
    return ospf_harbor::ospfv3::link_table(*session_,
        read_<&::link_scope_lsa_ospfv3_links_get_by_ref>("ospfv3_links"));
  }
  void set_ospfv3_links(ospf_harbor::ospfv3::link_table target) const {
    write_<&::link_scope_lsa_ospfv3_links_set_by_ref>("ospfv3_links", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv3::link_row add_ospfv3_link(
      const ospf_harbor::ospfv3::link_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv3_link, &::link_scope_lsa_ospfv3_links_get_by_ref,
        &::link_scope_lsa_ospfv3_links_set_by_ref>(*session_, object_, key);
  }
  // A link LSA's prefixes.
  ospf_harbor::ospfv3::prefix_list_table prefix_list() const {
    return ospf_harbor::ospfv3::prefix_list_table(*session_,
        read_<&::link_scope_lsa_prefix_list_get_by_ref>("prefix_list"));
  }
  void set_prefix_list(ospf_harbor::ospfv3::prefix_list_table target) const {
    write_<&::link_scope_lsa_prefix_list_set_by_ref>("prefix_list", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv3::prefix_list_row add_prefix_list(
      const ospf_harbor::ospfv3::prefix_list_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv3_prefix_list,
        &::link_scope_lsa_prefix_list_get_by_ref,
        &::link_scope_lsa_prefix_list_set_by_ref>(*session_, object_, key);
  }
  // An intra-area prefix LSA's prefixes.
  ospf_harbor::ospfv3::ia_prefix_list_table ia_prefix_list() const {
    return ospf_harbor::ospfv3::ia_prefix_list_table(*session_,
        read_<&::link_scope_lsa_ia_prefix_list_get_by_ref>("ia_prefix_list"));
  }
  void set_ia_prefix_list(ospf_harbor::ospfv3::ia_prefix_list_table target) const {
    write_<&::link_scope_lsa_ia_prefix_list_set_by_ref>("ia_prefix_list", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv3::ia_prefix_list_row add_ia_prefix_list(
      const ospf_harbor::ospfv3::ia_prefix_list_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv3_ia_prefix_list,
        &::link_scope_lsa_ia_prefix_list_get_by_ref,
        &::link_scope_lsa_ia_prefix_list_set_by_ref>(*session_, object_, key);
  }
  // The LSA's topology names.
  ospf_harbor::multi_topology_table multi_topology() const {
    return ospf_harbor::multi_topology_table(*session_,
        read_<&::link_scope_lsa_multi_topology_get_by_ref>("multi_topology"));
  }
  void set_multi_topology(ospf_harbor::multi_topology_table target) const {
    write_<&::link_scope_lsa_multi_topology_set_by_ref>("multi_topology", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::multi_topology_row add_multi_topology(
      const ospf_harbor::multi_topology_table::key_type &key) const {
    return detail::add_below<schema::tbl_multi_topology,
        &::link_scope_lsa_multi_topology_get_by_ref,
        &::link_scope_lsa_multi_topology_set_by_ref>(*session_, object_, key);
  }
  // The router address of traffic-engineering data.
  ospf_harbor::address router_address() const {
    return address_<&::link_scope_lsa_router_address_get>("router_address");
  }
  void set_router_address(const ospf_harbor::address &value) const {
    write_address_<&::link_scope_lsa_router_address_get,
        &::link_scope_lsa_router_address_set>("router_address", value);
  }
  // The link TLV of traffic-engineering data.
  ospf_harbor::ospfv2::link_tlv_ref tlv() const {
    return part_<ospf_harbor::ospfv2::link_tlv_ref, &::link_scope_lsa_tlv_get>("tlv");
  }
  // Sub-TLVs that no field covers.
  ospf_harbor::ospfv2::unknown_sub_tlv_table unknown_sub_tlv() const {
    return ospf_harbor::ospfv2::unknown_sub_tlv_table(*session_,
        read_<&::link_scope_lsa_unknown_sub_tlv_get_by_ref>("unknown_sub_tlv"));
  }
  void set_unknown_sub_tlv(ospf_harbor::ospfv2::unknown_sub_tlv_table target) const {
    write_<&::link_scope_lsa_unknown_sub_tlv_set_by_ref>("unknown_sub_tlv", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv2::unknown_sub_tlv_row add_unknown_sub_tlv(
      const ospf_harbor::ospfv2::unknown_sub_tlv_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv2_unknown_sub_tlv,
        &::link_scope_lsa_unknown_sub_tlv_get_by_ref,
        &::link_scope_lsa_unknown_sub_tlv_set_by_ref>(*session_, object_, key);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"decoded_completed", 0, &link_scope_lsa_ref::decoded_completed,
        &link_scope_lsa_ref::set_decoded_completed});
    act(field{"raw_data", 0, &link_scope_lsa_ref::raw_data, &link_scope_lsa_ref::set_raw_data});
    act(field{"version", 0, &link_scope_lsa_ref::version, &link_scope_lsa_ref::set_version});
    act(field{"ospfv2_lsa_val", 0, &link_scope_lsa_ref::ospfv2_lsa_val, nullptr});
    act(field{"ospfv2_links", 0, &link_scope_lsa_ref::ospfv2_links,
        &link_scope_lsa_ref::set_ospfv2_links});
    act(field{"summary", 0, &link_scope_lsa_ref::summary, &link_scope_lsa_ref::set_summary});
    act(field{"external", 0, &link_scope_lsa_ref::external, &link_scope_lsa_ref::set_external});
    act(field{"unknown_tlv", 0, &link_scope_lsa_ref::unknown_tlv,
        &link_scope_lsa_ref::set_unknown_tlv});
    act(field{"ospfv3_lsa_val", 0, &link_scope_lsa_ref::ospfv3_lsa_val, nullptr});
    act(field{"ospfv3_links", 0, &link_scope_lsa_ref::ospfv3_links,
        &link_scope_lsa_ref::set_ospfv3_links});
    act(field{"prefix_list", 0, &link_scope_lsa_ref::prefix_list,
        &link_scope_lsa_ref::set_prefix_list});
    act(field{"ia_prefix_list", 0, &link_scope_lsa_ref::ia_prefix_list,
        &link_scope_lsa_ref::set_ia_prefix_list});
    act(field{"multi_topology", 0, &link_scope_lsa_ref::multi_topology,
        &link_scope_lsa_ref::set_multi_topology});
    act(field{"router_address", 1, &link_scope_lsa_ref::router_address,
        &link_scope_lsa_ref::set_router_address});
    act(field{"tlv", 1, &link_scope_lsa_ref::tlv, nullptr});
    act(field{"unknown_sub_tlv", 1, &link_scope_lsa_ref::unknown_sub_tlv,
        &link_scope_lsa_ref::set_unknown_sub_tlv});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
    act(reference_field<schema::tbl_ospfv2_link, &::link_scope_lsa_ospfv2_links_get_by_ref,
        &::link_scope_lsa_ospfv2_links_set_by_ref>{"ospfv2_links"});
    act(reference_field<schema::tbl_ospfv2_topology, &::link_scope_lsa_summary_get_by_ref,
        &::link_scope_lsa_summary_set_by_ref>{"summary"});
    act(reference_field<schema::tbl_ospfv2_external, &::link_scope_lsa_external_get_by_ref,
        &::link_scope_lsa_external_set_by_ref>{"external"});
    act(reference_field<schema::tbl_ospfv2_unknown_tlv, &::link_scope_lsa_unknown_tlv_get_by_ref,
        &::link_scope_lsa_unknown_tlv_set_by_ref>{"unknown_tlv"});
    act(reference_field<schema::tbl_ospfv3_link, &::link_scope_lsa_ospfv3_links_get_by_ref,
        &::link_scope_lsa_ospfv3_links_set_by_ref>{"ospfv3_links"});
    act(reference_field<schema::tbl_ospfv3_prefix_list, &::link_scope_lsa_prefix_list_get_by_ref,
        &::link_scope_lsa_prefix_list_set_by_ref>{"prefix_list"});
    act(reference_field<schema::tbl_ospfv3_ia_prefix_list,
        &::link_scope_lsa_ia_prefix_list_get_by_ref,
        &::link_scope_lsa_ia_prefix_list_set_by_ref>{"ia_prefix_list"});
    act(reference_field<schema::tbl_multi_topology, &::link_scope_lsa_multi_topology_get_by_ref,
        &::link_scope_lsa_multi_topology_set_by_ref>{"multi_topology"});
    act(reference_field<schema::tbl_ospfv2_unknown_sub_tlv,
        &::link_scope_lsa_unknown_sub_tlv_get_by_ref,
        &::link_scope_lsa_unknown_sub_tlv_set_by_ref>{"unknown_sub_tlv"});
  }
};
using link_scope_lsa = owned<link_scope_lsa_ref>;

// What identifies an LSA of area scope among those of its type.
class area_scope_lsa_key_ref : public object_ref<schema::area_scope_lsa_key> {
 public:
  using object_ref::object_ref;

  // The link-state ID as a number.
  std::uint32_t lsa_id() const { return read_<&::area_scope_lsa_key_lsa_id_get_value>("lsa_id"); }
  void set_lsa_id(std::uint32_t value) const {
    write_<&::area_scope_lsa_key_lsa_id_set_value>("lsa_id", value);
  }
  // Router ID of the advertising router.
  ospf_harbor::address adv_router() const {
    return address_<&::area_scope_lsa_key_adv_router_get>("adv_router");
  }
  void set_adv_router(const ospf_harbor::address &value) const {
    write_address_<&::area_scope_lsa_key_adv_router_get,
        &::area_scope_lsa_key_adv_router_set>("adv_router", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"lsa_id", 0, &area_scope_lsa_key_ref::lsa_id, &area_scope_lsa_key_ref::set_lsa_id});
    act(field{"adv_router", 0, &area_scope_lsa_key_ref::adv_router,
        &area_scope_lsa_key_ref::set_adv_router});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using area_scope_lsa_key = owned<area_scope_lsa_key_ref>;

// An LSA of area scope, as received and in typed form for both protocol versions.
class area_scope_lsa_ref : public object_ref<schema::area_scope_lsa> {
 public:
  using object_ref::object_ref;

  // The producer has filled the typed fields from raw_data.
  bool decoded_completed() const {
    return read_<&::area_scope_lsa_decoded_completed_get_value>("decoded_completed") != 0;
  }
  void set_decoded_completed(bool value) const {
    write_<&::area_scope_lsa_decoded_completed_set_value>("decoded_completed", value ? 1u : 0u);
  }
  // The LSA as received, header first.
  std::span<const std::uint8_t> raw_data() const {
    return elements_<&::area_scope_lsa_raw_data_len_get_value,
        &::area_scope_lsa_raw_data_get>("raw_data");
  }
  void set_raw_data(std::span<const std::uint8_t> elements) const {
    write_elements_<&::area_scope_lsa_raw_data_set_mem>("raw_data", elements);
  }
  // The LSA in typed form, if it is of OSPFv2; zero else.
  ospf_harbor::ospfv2::lsa_ref ospfv2_lsa_val() const {
    return part_<ospf_harbor::ospfv2::lsa_ref,
        &::area_scope_lsa_ospfv2_lsa_val_get>("ospfv2_lsa_val");
  }
  // A router LSA's links.
  ospf_harbor::ospfv2::link_table links() const {
    return ospf_harbor::ospfv2::link_table(*session_,
        read_<&::area_scope_lsa_links_get_by_ref>("links"));
  }
  void set_links(ospf_harbor::ospfv2::link_table target) const {
    write_<&::area_scope_lsa_links_set_by_ref>("links", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv2::link_row add_link(
      const ospf_harbor::ospfv2::link_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv2_link, &::area_scope_lsa_links_get_by_ref,
        &::area_scope_lsa_links_set_by_ref>(*session_, object_, key);
  }
  // A summary LSA's metrics, one row for each topology.
  ospf_harbor::ospfv2::topology_table summary() const {
    return ospf_harbor::ospfv2::topology_table(*session_,
        read_<&::area_scope_lsa_summary_get_by_ref>("summary"));
  }
  void set_summary(ospf_harbor::ospfv2::topology_table target) const {
    write_<&::area_scope_lsa_summary_set_by_ref>("summary", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv2::topology_row add_summary(
      const ospf_harbor::ospfv2::topology_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv2_topology, &::area_scope_lsa_summary_get_by_ref,
        &::area_scope_lsa_summary_set_by_ref>(*session_, object_, key);
  }
  // An external LSA's entries, one row for each topology.
  ospf_harbor::ospfv2::external_table external() const {
    return ospf_harbor::ospfv2::external_table(*session_,
        read_<&::area_scope_lsa_external_get_by_ref>("external"));
  }
  void set_external(ospf_harbor::ospfv2::external_table target) const {
    write_<&::area_scope_lsa_external_set_by_ref>("external", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv2::external_row add_external(
      const ospf_harbor::ospfv2::external_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv2_external, &::area_scope_lsa_external_get_by_ref,
        &::area_scope_lsa_external_set_by_ref>(*session_, object_, key);
  }
  // The LSA in typed form, if it is of OSPFv3; zero else.
  ospf_harbor::ospfv3::lsa_ref ospfv3_lsa_val() const {
    return part_<ospf_harbor::ospfv3::lsa_ref,
        &::area_scope_lsa_ospfv3_lsa_val_get>("ospfv3_lsa_val");
  }
  // A router LSA's links.
  ospf_harbor::ospfv3::link_table ospfv3_links() const {
    return ospf_harbor::ospfv3::link_table(*session_,
        read_<&::area_scope_lsa_ospfv3_links_get_by_ref>("ospfv3_links"));
  }
  void set_ospfv3_links(ospf_harbor::ospfv3::link_table target) const {
    write_<&::area_scope_lsa_ospfv3_links_set_by_ref>("ospfv3_links", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv3::link_row add_ospfv3_link(
      const ospf_harbor::ospfv3::link_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv3_link, &::area_scope_lsa_ospfv3_links_get_by_ref,
        &::area_scope_lsa_ospfv3_links_set_by_ref>(*session_, object_, key);
  }
  // A link LSA's prefixes.
  ospf_harbor::ospfv3::prefix_list_table prefix_list() const {
    return ospf_harbor::ospfv3::prefix_list_table(*session_,
        read_<&::area_scope_lsa_prefix_list_get_by_ref>("prefix_list"));
  }
  void set_prefix_list(ospf_harbor::ospfv3::prefix_list_table target) const {
    write_<&::area_scope_lsa_prefix_list_set_by_ref>("prefix_list", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv3::prefix_list_row add_prefix_list(
      const ospf_harbor::ospfv3::prefix_list_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv3_prefix_list,
        &::area_scope_lsa_prefix_list_get_by_ref,
        &::area_scope_lsa_prefix_list_set_by_ref>(*session_, object_, key);
  }
  // An intra-area prefix LSA's prefixes.
  ospf_harbor::ospfv3::ia_prefix_list_table ia_prefix_list() const {
    return ospf_harbor::ospfv3::ia_prefix_list_table(*session_,
        read_<&::area_scope_lsa_ia_prefix_list_get_by_ref>("ia_prefix_list"));
  }
  void set_ia_prefix_list(ospf_harbor::ospfv3::ia_prefix_list_table target) const {
    write_<&::area_scope_lsa_ia_prefix_list_set_by_ref>("ia_prefix_list", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::ospfv3::ia_prefix_list_row add_ia_prefix_list(
      const ospf_harbor::ospfv3::ia_prefix_list_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospfv3_ia_prefix_list,
        &::area_scope_lsa_ia_prefix_list_get_by_ref,
        &::area_scope_lsa_ia_prefix_list_set_by_ref>(*session_, object_, key);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"decoded_completed", 0, &area_scope_lsa_ref::decoded_completed,
        &area_scope_lsa_ref::set_decoded_completed});
    act(field{"raw_data", 0, &area_scope_lsa_ref::raw_data, &area_scope_lsa_ref::set_raw_data});
    act(field{"ospfv2_lsa_val", 0, &area_scope_lsa_ref::ospfv2_lsa_val, nullptr});
    act(field{"links", 0, &area_scope_lsa_ref::links, &area_scope_lsa_ref::set_links});
    act(field{"summary", 0, &area_scope_lsa_ref::summary, &area_scope_lsa_ref::set_summary});
    act(field{"external", 0, &area_scope_lsa_ref::external, &area_scope_lsa_ref::set_external});
    act(field{"ospfv3_lsa_val", 0, &area_scope_lsa_ref::ospfv3_lsa_val, nullptr});
    act(field{"ospfv3_links", 0, &area_scope_lsa_ref::ospfv3_links,
        &area_scope_lsa_ref::set_ospfv3_links});
    act(field{"prefix_list", 0, &area_scope_lsa_ref::prefix_list,
        &area_scope_lsa_ref::set_prefix_list});
    act(field{"ia_prefix_list", 0, &area_scope_lsa_ref::ia_prefix_list,
        &area_scope_lsa_ref::set_ia_prefix_list});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
    act(reference_field<schema::tbl_ospfv2_link, &::area_scope_lsa_links_get_by_ref,
        &::area_scope_lsa_links_set_by_ref>{"links"});
    act(reference_field<schema::tbl_ospfv2_topology, &::area_scope_lsa_summary_get_by_ref,
        &::area_scope_lsa_summary_set_by_ref>{"summary"});
    act(reference_field<schema::tbl_ospfv2_external, &::area_scope_lsa_external_get_by_ref,
        &::area_scope_lsa_external_set_by_ref>{"external"});
    act(reference_field<schema::tbl_ospfv3_link, &::area_scope_lsa_ospfv3_links_get_by_ref,
        &::area_scope_lsa_ospfv3_links_set_by_ref>{"ospfv3_links"});
    act(reference_field<schema::tbl_ospfv3_prefix_list, &::area_scope_lsa_prefix_list_get_by_ref,
        &::area_scope_lsa_prefix_list_set_by_ref>{"prefix_list"});
    act(reference_field<schema::tbl_ospfv3_ia_prefix_list,
        &::area_scope_lsa_ia_prefix_list_get_by_ref,
        &::area_scope_lsa_ia_prefix_list_set_by_ref>{"ia_prefix_list"});
  }
};
using area_scope_lsa = owned<area_scope_lsa_ref>;

// A group of area-scope LSAs.
class area_scope_lsas_ref : public object_ref<schema::area_scope_lsas> {
 public:
  using object_ref::object_ref;

  // Key of the row.
  std::uint32_t lsa_id() const { return read_<&::area_scope_lsas_lsa_id_get_value>("lsa_id"); }
  void set_lsa_id(std::uint32_t value) const {
    write_<&::area_scope_lsas_lsa_id_set_value>("lsa_id", value);
  }
  // The row's LSAs.
  ospf_harbor::area_scope_lsa_table area_scope_lsa() const {
    return ospf_harbor::area_scope_lsa_table(*session_,
        read_<&::area_scope_lsas_area_scope_lsa_get_by_ref>("area_scope_lsa"));
  }
  void set_area_scope_lsa(ospf_harbor::area_scope_lsa_table target) const {
    write_<&::area_scope_lsas_area_scope_lsa_set_by_ref>("area_scope_lsa", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::area_scope_lsa_row add_area_scope_lsa(
      const ospf_harbor::area_scope_lsa_table::key_type &key) const {
    return detail::add_below<schema::tbl_area_scope_lsa,
        &::area_scope_lsas_area_scope_lsa_get_by_ref,
        &::area_scope_lsas_area_scope_lsa_set_by_ref>(*session_, object_, key);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"lsa_id", 0, &area_scope_lsas_ref::lsa_id, &area_scope_lsas_ref::set_lsa_id});
    act(field{"area_scope_lsa", 0, &area_scope_lsas_ref::area_scope_lsa,
        &area_scope_lsas_ref::set_area_scope_lsa});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
    act(reference_field<schema::tbl_area_scope_lsa, &::area_scope_lsas_area_scope_lsa_get_by_ref,
        &::area_scope_lsas_area_scope_lsa_set_by_ref>{"area_scope_lsa"});
  }
};
using area_scope_lsas = owned<area_scope_lsas_ref>;

// The databases of one LS type.
class link_scope_lsas_ref : public object_ref<schema::link_scope_lsas> {
 public:
  using object_ref::object_ref;

  // The LS type that the row gathers; key of the table.
  std::uint32_t lsa_type() const {
    return read_<&::link_scope_lsas_lsa_type_get_value>("lsa_type");
  }
  void set_lsa_type(std::uint32_t value) const {
    write_<&::link_scope_lsas_lsa_type_set_value>("lsa_type", value);
  }
  // The row's link-scope LSAs.
  ospf_harbor::link_scope_lsa_table link_scope_lsa_db() const {
    return ospf_harbor::link_scope_lsa_table(*session_,
        read_<&::link_scope_lsas_link_scope_lsa_db_get_by_ref>("link_scope_lsa_db"));
  }
  void set_link_scope_lsa_db(ospf_harbor::link_scope_lsa_table target) const {
    write_<&::link_scope_lsas_link_scope_lsa_db_set_by_ref>("link_scope_lsa_db", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::link_scope_lsa_row add_link_scope_lsa_db(
      const ospf_harbor::link_scope_lsa_table::key_type &key) const {
    return detail::add_below<schema::tbl_link_scope_lsa,
        &::link_scope_lsas_link_scope_lsa_db_get_by_ref,
        &::link_scope_lsas_link_scope_lsa_db_set_by_ref>(*session_, object_, key);
  }
  // The row's area-scope LSAs.
  ospf_harbor::area_scope_lsa_table area_scope_lsa_db() const {
    return ospf_harbor::area_scope_lsa_table(*session_,
        read_<&::link_scope_lsas_area_scope_lsa_db_get_by_ref>("area_scope_lsa_db"));
  }
  void set_area_scope_lsa_db(ospf_harbor::area_scope_lsa_table target) const {
    write_<&::link_scope_lsas_area_scope_lsa_db_set_by_ref>("area_scope_lsa_db", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::area_scope_lsa_row add_area_scope_lsa_db(
      const ospf_harbor::area_scope_lsa_table::key_type &key) const {
    return detail::add_below<schema::tbl_area_scope_lsa,
        &::link_scope_lsas_area_scope_lsa_db_get_by_ref,
        &::link_scope_lsas_area_scope_lsa_db_set_by_ref>(*session_, object_, key);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"lsa_type", 0, &link_scope_lsas_ref::lsa_type, &link_scope_lsas_ref::set_lsa_type});
    act(field{"link_scope_lsa_db", 0, &link_scope_lsas_ref::link_scope_lsa_db,
        &link_scope_lsas_ref::set_link_scope_lsa_db});
    act(field{"area_scope_lsa_db", 0, &link_scope_lsas_ref::area_scope_lsa_db,
        &link_scope_lsas_ref::set_area_scope_lsa_db});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
    act(reference_field<schema::tbl_link_scope_lsa,
        &::link_scope_lsas_link_scope_lsa_db_get_by_ref,
        &::link_scope_lsas_link_scope_lsa_db_set_by_ref>{"link_scope_lsa_db"});
    act(reference_field<schema::tbl_area_scope_lsa,
        &::link_scope_lsas_area_scope_lsa_db_get_by_ref,
        &::link_scope_lsas_area_scope_lsa_db_set_by_ref>{"area_scope_lsa_db"});
  }
};
using link_scope_lsas = owned<link_scope_lsas_ref>;

// A configured neighbour.
class static_neighbor_ref : public object_ref<schema::ospf_static_neighbor> {
 public:
  using object_ref::object_ref;

  // The neighbour's address; key of the table.
  ospf_harbor::address address() const {
    return address_<&::ospf_static_neighbor_address_get>("address");
  }
  void set_address(const ospf_harbor::address &value) const {
    write_address_<&::ospf_static_neighbor_address_get,
        &::ospf_static_neighbor_address_set>("address", value);
  }
  // Cost to the neighbour.
  std::uint16_t cost() const { return read_<&::ospf_static_neighbor_cost_get_value>("cost"); }
  void set_cost(std::uint16_t value) const {
    write_<&::ospf_static_neighbor_cost_set_value>("cost", value);
  }
  // Time between hellos to a neighbour that is down; the producer chooses the unit.
  std::uint16_t poll_interval() const {
    return read_<&::ospf_static_neighbor_poll_interval_get_value>("poll_interval");
  }
  void set_poll_interval(std::uint16_t value) const {
    write_<&::ospf_static_neighbor_poll_interval_set_value>("poll_interval", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"address", 0, &static_neighbor_ref::address, &static_neighbor_ref::set_address});
    act(field{"cost", 0, &static_neighbor_ref::cost, &static_neighbor_ref::set_cost});
    act(field{"poll_interval", 0, &static_neighbor_ref::poll_interval,
        &static_neighbor_ref::set_poll_interval});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using static_neighbor = owned<static_neighbor_ref>;

// Counters of a neighbour.
class nbr_stat_ref : public object_ref<schema::ospf_nbr_stat> {
 public:
  using object_ref::object_ref;

  // Number of neighbour events.
  std::uint32_t nbr_event_count() const {
    return read_<&::ospf_nbr_stat_nbr_event_count_get_value>("nbr_event_count");
  }
  void set_nbr_event_count(std::uint32_t value) const {
    write_<&::ospf_nbr_stat_nbr_event_count_set_value>("nbr_event_count", value);
  }
  // Length of the retransmission queue.
  std::uint32_t nbr_retrans_qlen() const {
    return read_<&::ospf_nbr_stat_nbr_retrans_qlen_get_value>("nbr_retrans_qlen");
  }
  void set_nbr_retrans_qlen(std::uint32_t value) const {
    write_<&::ospf_nbr_stat_nbr_retrans_qlen_set_value>("nbr_retrans_qlen", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"nbr_event_count", 0, &nbr_stat_ref::nbr_event_count,
        &nbr_stat_ref::set_nbr_event_count});
    act(field{"nbr_retrans_qlen", 0, &nbr_stat_ref::nbr_retrans_qlen,
        &nbr_stat_ref::set_nbr_retrans_qlen});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using nbr_stat = owned<nbr_stat_ref>;

// A neighbour heard on an interface.
class neighbor_ref : public object_ref<schema::ospf_neighbor> {
 public:
  using object_ref::object_ref;

  // The neighbour's router ID; key of the table.
  ospf_harbor::address neighbor_id() const {
    return address_<&::ospf_neighbor_neighbor_id_get>("neighbor_id");
  }
  void set_neighbor_id(const ospf_harbor::address &value) const {
    write_address_<&::ospf_neighbor_neighbor_id_get,
        &::ospf_neighbor_neighbor_id_set>("neighbor_id", value);
  }
  // The neighbour's address on the interface.
  ospf_harbor::address address() const { return address_<&::ospf_neighbor_address_get>("address"); }
  void set_address(const ospf_harbor::address &value) const {
    write_address_<&::ospf_neighbor_address_get, &::ospf_neighbor_address_set>("address", value);
  }
  // The designated router that the neighbour declares.
  ospf_harbor::address dr() const { return address_<&::ospf_neighbor_dr_get>("dr"); }
  void set_dr(const ospf_harbor::address &value) const {
    write_address_<&::ospf_neighbor_dr_get, &::ospf_neighbor_dr_set>("dr", value);
  }
  // The backup designated router that the neighbour declares.
  ospf_harbor::address bdr() const { return address_<&::ospf_neighbor_bdr_get>("bdr"); }
  void set_bdr(const ospf_harbor::address &value) const {
    write_address_<&::ospf_neighbor_bdr_get, &::ospf_neighbor_bdr_set>("bdr", value);
  }
  // State of the conversation with the neighbour.
  ospf_harbor::nbr_state_type state() const {
    return static_cast<ospf_harbor::nbr_state_type>(read_<&::ospf_neighbor_state_get_value>(
        "state"));
  }
  void set_state(ospf_harbor::nbr_state_type value) const {
    write_<&::ospf_neighbor_state_set_value>("state", static_cast<std::uint32_t>(value));
  }
  // The neighbour's counters.
  ospf_harbor::nbr_stat_ref stats() const {
    return part_<ospf_harbor::nbr_stat_ref, &::ospf_neighbor_stats_get>("stats");
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"neighbor_id", 0, &neighbor_ref::neighbor_id, &neighbor_ref::set_neighbor_id});
    act(field{"address", 0, &neighbor_ref::address, &neighbor_ref::set_address});
    act(field{"dr", 0, &neighbor_ref::dr, &neighbor_ref::set_dr});
    act(field{"bdr", 0, &neighbor_ref::bdr, &neighbor_ref::set_bdr});
    act(field{"state", 0, &neighbor_ref::state, &neighbor_ref::set_state});
    act(field{"stats", 1, &neighbor_ref::stats, nullptr});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using neighbor = owned<neighbor_ref>;

// Settings of fast reroute.
class fast_reroute_ref : public object_ref<schema::fast_reroute> {
 public:
  using object_ref::object_ref;

  // The interface is no candidate for a backup next hop.
  bool candidate_disabled() const {
    return read_<&::fast_reroute_candidate_disabled_get_value>("candidate_disabled") != 0;
  }
  void set_candidate_disabled(bool value) const {
    write_<&::fast_reroute_candidate_disabled_set_value>("candidate_disabled", value ? 1u : 0u);
  }
  // Loop-free alternates are computed.
  bool enabled() const { return read_<&::fast_reroute_enabled_get_value>("enabled") != 0; }
  void set_enabled(bool value) const {
    write_<&::fast_reroute_enabled_set_value>("enabled", value ? 1u : 0u);
  }
  // Remote loop-free alternates are computed.
  bool remote_lfa_enabled() const {
    return read_<&::fast_reroute_remote_lfa_enabled_get_value>("remote_lfa_enabled") != 0;
  }
  void set_remote_lfa_enabled(bool value) const {
    write_<&::fast_reroute_remote_lfa_enabled_set_value>("remote_lfa_enabled", value ? 1u : 0u);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"candidate_disabled", 0, &fast_reroute_ref::candidate_disabled,
        &fast_reroute_ref::set_candidate_disabled});
    act(field{"enabled", 0, &fast_reroute_ref::enabled, &fast_reroute_ref::set_enabled});
    act(field{"remote_lfa_enabled", 0, &fast_reroute_ref::remote_lfa_enabled,
        &fast_reroute_ref::set_remote_lfa_enabled});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using fast_reroute = owned<fast_reroute_ref>;

// Settings of a multi-area adjacency.
class multi_area_ref : public object_ref<schema::multi_area> {
 public:
  using object_ref::object_ref;

  // The other area's ID.
  std::uint32_t multi_area_id() const {
    return read_<&::multi_area_multi_area_id_get_value>("multi_area_id");
  }
  void set_multi_area_id(std::uint32_t value) const {
    write_<&::multi_area_multi_area_id_set_value>("multi_area_id", value);
  }
  // Output cost in the other area.
  std::uint16_t cost() const { return read_<&::multi_area_cost_get_value>("cost"); }
  void set_cost(std::uint16_t value) const { write_<&::multi_area_cost_set_value>("cost", value); }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"multi_area_id", 0, &multi_area_ref::multi_area_id,
        &multi_area_ref::set_multi_area_id});
    act(field{"cost", 0, &multi_area_ref::cost, &multi_area_ref::set_cost});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using multi_area = owned<multi_area_ref>;

// Algorithms that may be used; not exclusive of one another.
class crypto_algorithm_ref : public object_ref<schema::ospf_crypto_algorithm> {
 public:
  using object_ref::object_ref;

  // HMAC-SHA-1-12 may be used.
  bool hmac_sha1_12() const {
    return read_<&::ospf_crypto_algorithm_hmac_sha1_12_get_value>("hmac_sha1_12") != 0;
  }
  void set_hmac_sha1_12(bool value) const {
    write_<&::ospf_crypto_algorithm_hmac_sha1_12_set_value>("hmac_sha1_12", value ? 1u : 0u);
  }
  // HMAC-SHA-1-20 may be used.
  bool hmac_sha1_20() const {
    return read_<&::ospf_crypto_algorithm_hmac_sha1_20_get_value>("hmac_sha1_20") != 0;
  }
  void set_hmac_sha1_20(bool value) const {
    write_<&::ospf_crypto_algorithm_hmac_sha1_20_set_value>("hmac_sha1_20", value ? 1u : 0u);
  }
  // MD5 may be used.
  bool md5() const { return read_<&::ospf_crypto_algorithm_md5_get_value>("md5") != 0; }
  void set_md5(bool value) const {
    write_<&::ospf_crypto_algorithm_md5_set_value>("md5", value ? 1u : 0u);
  }
  // SHA-1 may be used.
  bool sha_1() const { return read_<&::ospf_crypto_algorithm_sha_1_get_value>("sha_1") != 0; }
  void set_sha_1(bool value) const {
    write_<&::ospf_crypto_algorithm_sha_1_set_value>("sha_1", value ? 1u : 0u);
  }
  // HMAC-SHA-1 may be used.
  bool hmac_sha_1() const {
    return read_<&::ospf_crypto_algorithm_hmac_sha_1_get_value>("hmac_sha_1") != 0;
  }
  void set_hmac_sha_1(bool value) const {
    write_<&::ospf_crypto_algorithm_hmac_sha_1_set_value>("hmac_sha_1", value ? 1u : 0u);
  }
  // HMAC-SHA-256 may be used.
  bool hmac_sha_256() const {
    return read_<&::ospf_crypto_algorithm_hmac_sha_256_get_value>("hmac_sha_256") != 0;
  }
  void set_hmac_sha_256(bool value) const {
    write_<&::ospf_crypto_algorithm_hmac_sha_256_set_value>("hmac_sha_256", value ? 1u : 0u);
  }
  // HMAC-SHA-384 may be used.
  bool hmac_sha_384() const {
    return read_<&::ospf_crypto_algorithm_hmac_sha_384_get_value>("hmac_sha_384") != 0;
  }
  void set_hmac_sha_384(bool value) const {
    write_<&::ospf_crypto_algorithm_hmac_sha_384_set_value>("hmac_sha_384", value ? 1u : 0u);
  }
  // HMAC-SHA-512 may be used.
  bool hmac_sha_512() const {
    return read_<&::ospf_crypto_algorithm_hmac_sha_512_get_value>("hmac_sha_512") != 0;
  }
  void set_hmac_sha_512(bool value) const {
    write_<&::ospf_crypto_algorithm_hmac_sha_512_set_value>("hmac_sha_512", value ? 1u : 0u);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"hmac_sha1_12", 0, &crypto_algorithm_ref::hmac_sha1_12,
        &crypto_algorithm_ref::set_hmac_sha1_12});
    act(field{"hmac_sha1_20", 0, &crypto_algorithm_ref::hmac_sha1_20,
        &crypto_algorithm_ref::set_hmac_sha1_20});
    act(field{"md5", 0, &crypto_algorithm_ref::md5, &crypto_algorithm_ref::set_md5});
    act(field{"sha_1", 0, &crypto_algorithm_ref::sha_1, &crypto_algorithm_ref::set_sha_1});
    act(field{"hmac_sha_1", 0, &crypto_algorithm_ref::hmac_sha_1,
        &crypto_algorithm_ref::set_hmac_sha_1});
    act(field{"hmac_sha_256", 0, &crypto_algorithm_ref::hmac_sha_256,
        &crypto_algorithm_ref::set_hmac_sha_256});
    act(field{"hmac_sha_384", 0, &crypto_algorithm_ref::hmac_sha_384,
        &crypto_algorithm_ref::set_hmac_sha_384});
    act(field{"hmac_sha_512", 0, &crypto_algorithm_ref::hmac_sha_512,
        &crypto_algorithm_ref::set_hmac_sha_512});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using crypto_algorithm = owned<crypto_algorithm_ref>;

// How packets are authenticated: a choice whose arms are held by pointer.
class authentication_ref : public object_ref<schema::ospf_authentication> {
 public:
  using object_ref::object_ref;

  // Which arm is selected.
  ospf_harbor::auth_type auth_type_selection() const {
    return static_cast<ospf_harbor::auth_type>(read_<
        &::ospf_authentication_auth_type_selection_get_value>("auth_type_selection"));
  }
  void set_auth_type_selection(ospf_harbor::auth_type value) const {
    write_<&::ospf_authentication_auth_type_selection_set_value>("auth_type_selection",
        static_cast<std::uint32_t>(value));
  }
  // Name of the IPsec security association.
  std::optional<std::string_view> sa() const {
    return text_arm_<&::ospf_authentication_sa_get>("sa");
  }
  void select_sa(std::string_view value) const {
    select_text_<&::ospf_authentication_sa_get, &::ospf_authentication_sa_set>("sa", value);
  }
  // Name of the key chain of an authentication trailer.
  std::optional<std::string_view> key_chain() const {
    return text_arm_<&::ospf_authentication_key_chain_get>("key_chain");
  }
  void select_key_chain(std::string_view value) const {
    select_text_<&::ospf_authentication_key_chain_get,
        &::ospf_authentication_key_chain_set>("key_chain", value);
  }
  // Key of an authentication trailer, as text and not masked.
  std::optional<std::string_view> key_string() const {
    return text_arm_<&::ospf_authentication_key_string_get>("key_string");
  }
  void select_key_string(std::string_view value) const {
    select_text_<&::ospf_authentication_key_string_get,
        &::ospf_authentication_key_string_set>("key_string", value);
  }
  // Algorithms that go with the key.
  ospf_harbor::crypto_algorithm_ref crypto_algorithm_val() const {
    return part_<ospf_harbor::crypto_algorithm_ref,
        &::ospf_authentication_crypto_algorithm_val_get>("crypto_algorithm_val");
  }
  void select_crypto_algorithm_val() const {
    select_<&::ospf_authentication_crypto_algorithm_val_get,
        &::ospf_authentication_crypto_algorithm_val_set, &::ospf_crypto_algorithm_create,
        &::ospf_crypto_algorithm_destroy>("crypto_algorithm_val", [](auto *) {});
  }
  // Stands for no authentication.
  std::optional<std::uint32_t> no_auth() const {
    return number_arm_<&::ospf_authentication_no_auth_get>("no_auth");
  }
  void select_no_auth(std::uint32_t value = 0) const {
    select_number_<&::ospf_authentication_no_auth_get,
        &::ospf_authentication_no_auth_set>("no_auth", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"auth_type_selection", 0, &authentication_ref::auth_type_selection,
        &authentication_ref::set_auth_type_selection});
    act(field{"sa", 0, &authentication_ref::sa, &authentication_ref::select_sa});
    act(field{"key_chain", 0, &authentication_ref::key_chain,
        &authentication_ref::select_key_chain});
    act(field{"key_string", 0, &authentication_ref::key_string,
        &authentication_ref::select_key_string});
    act(field{"crypto_algorithm_val", 0, &authentication_ref::crypto_algorithm_val,
        &authentication_ref::select_crypto_algorithm_val});
    act(field{"no_auth", 1, &authentication_ref::no_auth, &authentication_ref::select_no_auth});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using authentication = owned<authentication_ref>;

// Settings of the TTL check.
class ttl_security_ref : public object_ref<schema::ttl_security> {
 public:
  using object_ref::object_ref;

  // Packets with too small a TTL are dropped.
  bool enabled() const { return read_<&::ttl_security_enabled_get_value>("enabled") != 0; }
  void set_enabled(bool value) const {
    write_<&::ttl_security_enabled_set_value>("enabled", value ? 1u : 0u);
  }
  // Number of hops that a packet may have passed.
  std::uint8_t hops() const { return read_<&::ttl_security_hops_get_value>("hops"); }
  void set_hops(std::uint8_t value) const { write_<&::ttl_security_hops_set_value>("hops", value); }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"enabled", 0, &ttl_security_ref::enabled, &ttl_security_ref::set_enabled});
    act(field{"hops", 0, &ttl_security_ref::hops, &ttl_security_ref::set_hops});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using ttl_security = owned<ttl_security_ref>;

// An interface: settings, timers and state.
class interface_ref : public object_ref<schema::ospf_interface> {
 public:
  using object_ref::object_ref;

  // The interface's name; key of the table.
  std::string_view name() const { return text_<&::ospf_interface_name_get>("name"); }
  void set_name(std::string_view value) const {
    write_text_<&::ospf_interface_name_set>("name", value);
  }
  // How OSPF treats the network.
  ospf_harbor::network_type network_type() const {
    return static_cast<ospf_harbor::network_type>(read_<&::ospf_interface_network_type_get_value>(
        "network_type"));
  }
  void set_network_type(ospf_harbor::network_type value) const {
    write_<&::ospf_interface_network_type_set_value>("network_type",
        static_cast<std::uint32_t>(value));
  }
  // No protocol packets are sent or taken.
  bool passive() const { return read_<&::ospf_interface_passive_get_value>("passive") != 0; }
  void set_passive(bool value) const {
    write_<&::ospf_interface_passive_set_value>("passive", value ? 1u : 0u);
  }
  // The interface is treated as a demand circuit.
  bool demand_circuit() const {
    return read_<&::ospf_interface_demand_circuit_get_value>("demand_circuit") != 0;
  }
  void set_demand_circuit(bool value) const {
    write_<&::ospf_interface_demand_circuit_set_value>("demand_circuit", value ? 1u : 0u);
  }
  // Settings of a multi-area adjacency.
  ospf_harbor::multi_area_ref multi_area_val() const {
    return part_<ospf_harbor::multi_area_ref,
        &::ospf_interface_multi_area_val_get>("multi_area_val");
  }
  // Configured neighbours.
  ospf_harbor::static_neighbor_table static_neighbor() const {
    return ospf_harbor::static_neighbor_table(*session_,
        read_<&::ospf_interface_static_neighbor_get_by_ref>("static_neighbor"));
  }
  void set_static_neighbor(ospf_harbor::static_neighbor_table target) const {
    write_<&::ospf_interface_static_neighbor_set_by_ref>("static_neighbor", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::static_neighbor_row add_static_neighbor(
      const ospf_harbor::static_neighbor_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospf_static_neighbor,
        &::ospf_interface_static_neighbor_get_by_ref,
        &::ospf_interface_static_neighbor_set_by_ref>(*session_, object_, key);
  }
  // The node flag of the interface's prefix.
  bool node_flag() const { return read_<&::ospf_interface_node_flag_get_value>("node_flag") != 0; }
  void set_node_flag(bool value) const {
    write_<&::ospf_interface_node_flag_set_value>("node_flag", value ? 1u : 0u);
  }
  // Settings of fast reroute.
  ospf_harbor::fast_reroute_ref fast_reroute_val() const {
    return part_<ospf_harbor::fast_reroute_ref,
        &::ospf_interface_fast_reroute_val_get>("fast_reroute_val");
  }
  // Output cost.
  std::uint16_t cost() const { return read_<&::ospf_interface_cost_get_value>("cost"); }
  void set_cost(std::uint16_t value) const {
    write_<&::ospf_interface_cost_set_value>("cost", value);
  }
  // Time between hellos; the producer chooses the unit.
  std::uint16_t hello_interval() const {
    return read_<&::ospf_interface_hello_interval_get_value>("hello_interval");
  }
  void set_hello_interval(std::uint16_t value) const {
    write_<&::ospf_interface_hello_interval_set_value>("hello_interval", value);
  }
  // Silence after which a neighbour is down; the producer chooses the unit.
  std::uint16_t dead_interval() const {
    return read_<&::ospf_interface_dead_interval_get_value>("dead_interval");
  }
  void set_dead_interval(std::uint16_t value) const {
    write_<&::ospf_interface_dead_interval_set_value>("dead_interval", value);
  }
  // Time between retransmissions; the producer chooses the unit.
  std::uint16_t retransmit_interval() const {
    return read_<&::ospf_interface_retransmit_interval_get_value>("retransmit_interval");
  }
  void set_retransmit_interval(std::uint16_t value) const {
    write_<&::ospf_interface_retransmit_interval_set_value>("retransmit_interval", value);
  }
  // Estimated time to send an update; the producer chooses the unit.
  std::uint16_t transmit_delay() const {
    return read_<&::ospf_interface_transmit_delay_get_value>("transmit_delay");
  }
  void set_transmit_delay(std::uint16_t value) const {
    write_<&::ospf_interface_transmit_delay_set_value>("transmit_delay", value);
  }
  // A neighbour's MTU is not compared.
  bool mtu_ignore() const {
    return read_<&::ospf_interface_mtu_ignore_get_value>("mtu_ignore") != 0;
  }
  void set_mtu_ignore(bool value) const {
    write_<&::ospf_interface_mtu_ignore_set_value>("mtu_ignore", value ? 1u : 0u);
  }
  // Link-local signalling is on.
  bool lls() const { return read_<&::ospf_interface_lls_get_value>("lls") != 0; }
  void set_lls(bool value) const {
    write_<&::ospf_interface_lls_set_value>("lls", value ? 1u : 0u);
  }
  // The interface's prefixes are not advertised.
  bool prefix_suppression() const {
    return read_<&::ospf_interface_prefix_suppression_get_value>("prefix_suppression") != 0;
  }
  void set_prefix_suppression(bool value) const {
    write_<&::ospf_interface_prefix_suppression_set_value>("prefix_suppression", value ? 1u : 0u);
  }
  // Forwarding failures are detected by BFD.
  bool bfd() const { return read_<&::ospf_interface_bfd_get_value>("bfd") != 0; }
  void set_bfd(bool value) const {
    write_<&::ospf_interface_bfd_set_value>("bfd", value ? 1u : 0u);
  }
  // Settings of the TTL check.
  ospf_harbor::ttl_security_ref ttl_security_val() const {
    return part_<ospf_harbor::ttl_security_ref,
        &::ospf_interface_ttl_security_val_get>("ttl_security_val");
  }
  // OSPF runs on the interface.
  bool enable() const { return read_<&::ospf_interface_enable_get_value>("enable") != 0; }
  void set_enable(bool value) const {
    write_<&::ospf_interface_enable_set_value>("enable", value ? 1u : 0u);
  }
  // How packets are authenticated.
  ospf_harbor::authentication_ref authentication_val() const {
    return part_<ospf_harbor::authentication_ref,
        &::ospf_interface_authentication_val_get>("authentication_val");
  }
  // The interface state as free text.
  std::string_view state() const { return text_<&::ospf_interface_state_get>("state"); }
  void set_state(std::string_view value) const {
    write_text_<&::ospf_interface_state_set>("state", value);
  }
  // The hello timer when reported; the producer chooses the unit.
  std::uint32_t hello_timer() const {
    return read_<&::ospf_interface_hello_timer_get_value>("hello_timer");
  }
  void set_hello_timer(std::uint32_t value) const {
    write_<&::ospf_interface_hello_timer_set_value>("hello_timer", value);
  }
  // The wait timer when reported; the producer chooses the unit.
  std::uint32_t wait_timer() const {
    return read_<&::ospf_interface_wait_timer_get_value>("wait_timer");
  }
  void set_wait_timer(std::uint32_t value) const {
    write_<&::ospf_interface_wait_timer_set_value>("wait_timer", value);
  }
  // Address of the designated router.
  ospf_harbor::address dr() const { return address_<&::ospf_interface_dr_get>("dr"); }
  void set_dr(const ospf_harbor::address &value) const {
    write_address_<&::ospf_interface_dr_get, &::ospf_interface_dr_set>("dr", value);
  }
  // Address of the backup designated router.
  ospf_harbor::address bdr() const { return address_<&::ospf_interface_bdr_get>("bdr"); }
  void set_bdr(const ospf_harbor::address &value) const {
    write_address_<&::ospf_interface_bdr_get, &::ospf_interface_bdr_set>("bdr", value);
  }
  // Neighbours heard on the interface.
  ospf_harbor::neighbor_table neighbor() const {
    return ospf_harbor::neighbor_table(*session_,
        read_<&::ospf_interface_neighbor_get_by_ref>("neighbor"));
  }
  void set_neighbor(ospf_harbor::neighbor_table target) const {
    write_<&::ospf_interface_neighbor_set_by_ref>("neighbor", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::neighbor_row add_neighbor(const ospf_harbor::neighbor_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospf_neighbor, &::ospf_interface_neighbor_get_by_ref,
        &::ospf_interface_neighbor_set_by_ref>(*session_, object_, key);
  }
  // Link-state databases of the interface, one row for each LS type.
  ospf_harbor::link_scope_lsas_table link_scope_lsas() const {
    return ospf_harbor::link_scope_lsas_table(*session_,
        read_<&::ospf_interface_link_scope_lsas_get_by_ref>("link_scope_lsas"));
  }
  void set_link_scope_lsas(ospf_harbor::link_scope_lsas_table target) const {
    write_<&::ospf_interface_link_scope_lsas_set_by_ref>("link_scope_lsas", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::link_scope_lsas_row add_link_scope_lsas(
      const ospf_harbor::link_scope_lsas_table::key_type &key) const {
    return detail::add_below<schema::tbl_link_scope_lsas,
        &::ospf_interface_link_scope_lsas_get_by_ref,
        &::ospf_interface_link_scope_lsas_set_by_ref>(*session_, object_, key);
  }
  // The interface's topology names.
  ospf_harbor::multi_topology_table multi_topology() const {
    return ospf_harbor::multi_topology_table(*session_,
        read_<&::ospf_interface_multi_topology_get_by_ref>("multi_topology"));
  }
  void set_multi_topology(ospf_harbor::multi_topology_table target) const {
    write_<&::ospf_interface_multi_topology_set_by_ref>("multi_topology", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::multi_topology_row add_multi_topology(
      const ospf_harbor::multi_topology_table::key_type &key) const {
    return detail::add_below<schema::tbl_multi_topology,
        &::ospf_interface_multi_topology_get_by_ref,
        &::ospf_interface_multi_topology_set_by_ref>(*session_, object_, key);
  }
  // The router priority; 0 never becomes designated router.
  std::uint8_t priority() const { return read_<&::ospf_interface_priority_get_value>("priority"); }
  void set_priority(std::uint8_t value) const {
    write_<&::ospf_interface_priority_set_value>("priority", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"name", 0, &interface_ref::name, &interface_ref::set_name});
    act(field{"network_type", 0, &interface_ref::network_type, &interface_ref::set_network_type});
    act(field{"passive", 0, &interface_ref::passive, &interface_ref::set_passive});
    act(field{"demand_circuit", 0, &interface_ref::demand_circuit,
        &interface_ref::set_demand_circuit});
    act(field{"multi_area_val", 0, &interface_ref::multi_area_val, nullptr});
    act(field{"static_neighbor", 0, &interface_ref::static_neighbor,
        &interface_ref::set_static_neighbor});
    act(field{"node_flag", 0, &interface_ref::node_flag, &interface_ref::set_node_flag});
    act(field{"fast_reroute_val", 0, &interface_ref::fast_reroute_val, nullptr});
    act(field{"cost", 0, &interface_ref::cost, &interface_ref::set_cost});
    act(field{"hello_interval", 0, &interface_ref::hello_interval,
        &interface_ref::set_hello_interval});
    act(field{"dead_interval", 0, &interface_ref::dead_interval,
        &interface_ref::set_dead_interval});
    act(field{"retransmit_interval", 0, &interface_ref::retransmit_interval,
        &interface_ref::set_retransmit_interval});
    act(field{"transmit_delay", 0, &interface_ref::transmit_delay,
        &interface_ref::set_transmit_delay});
    act(field{"mtu_ignore", 0, &interface_ref::mtu_ignore, &interface_ref::set_mtu_ignore});
    act(field{"lls", 0, &interface_ref::lls, &interface_ref::set_lls});
    act(field{"prefix_suppression", 0, &interface_ref::prefix_suppression,
        &interface_ref::set_prefix_suppression});
    act(field{"bfd", 0, &interface_ref::bfd, &interface_ref::set_bfd});
    act(field{"ttl_security_val", 0, &interface_ref::ttl_security_val, nullptr});
    act(field{"enable", 0, &interface_ref::enable, &interface_ref::set_enable});
    act(field{"authentication_val", 0, &interface_ref::authentication_val, nullptr});
    act(field{"state", 0, &interface_ref::state, &interface_ref::set_state});
    act(field{"hello_timer", 0, &interface_ref::hello_timer, &interface_ref::set_hello_timer});
    act(field{"wait_timer", 0, &interface_ref::wait_timer, &interface_ref::set_wait_timer});
    act(field{"dr", 0, &interface_ref::dr, &interface_ref::set_dr});
    act(field{"bdr", 0, &interface_ref::bdr, &interface_ref::set_bdr});
    act(field{"neighbor", 0, &interface_ref::neighbor, &interface_ref::set_neighbor});
    act(field{"link_scope_lsas", 0, &interface_ref::link_scope_lsas,
        &interface_ref::set_link_scope_lsas});
    act(field{"multi_topology", 0, &interface_ref::multi_topology,
        &interface_ref::set_multi_topology});
    act(field{"priority", 1, &interface_ref::priority, &interface_ref::set_priority});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
    act(reference_field<schema::tbl_ospf_static_neighbor,
        &::ospf_interface_static_neighbor_get_by_ref,
        &::ospf_interface_static_neighbor_set_by_ref>{"static_neighbor"});
    act(reference_field<schema::tbl_ospf_neighbor, &::ospf_interface_neighbor_get_by_ref,
        &::ospf_interface_neighbor_set_by_ref>{"neighbor"});
    act(reference_field<schema::tbl_link_scope_lsas, &::ospf_interface_link_scope_lsas_get_by_ref,
        &::ospf_interface_link_scope_lsas_set_by_ref>{"link_scope_lsas"});
    act(reference_field<schema::tbl_multi_topology, &::ospf_interface_multi_topology_get_by_ref,
        &::ospf_interface_multi_topology_set_by_ref>{"multi_topology"});
  }
};
using interface = owned<interface_ref>;

// An area.
class area_ref : public object_ref<schema::ospf_area> {
 public:
  using object_ref::object_ref;

  // The area's ID as a number; key of the table.
  std::uint32_t area_id() const { return read_<&::ospf_area_area_id_get_value>("area_id"); }
  void set_area_id(std::uint32_t value) const {
    write_<&::ospf_area_area_id_set_value>("area_id", value);
  }
  // The area's interfaces.
  ospf_harbor::interface_table interfaces() const {
    return ospf_harbor::interface_table(*session_,
        read_<&::ospf_area_interfaces_get_by_ref>("interfaces"));
  }
  void set_interfaces(ospf_harbor::interface_table target) const {
    write_<&::ospf_area_interfaces_set_by_ref>("interfaces", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::interface_row add_interface(
      const ospf_harbor::interface_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospf_interface, &::ospf_area_interfaces_get_by_ref,
        &::ospf_area_interfaces_set_by_ref>(*session_, object_, key);
  }
  // Link-state databases of the area.
  ospf_harbor::area_scope_lsas_table area_scope_lsas() const {
    return ospf_harbor::area_scope_lsas_table(*session_,
        read_<&::ospf_area_area_scope_lsas_get_by_ref>("area_scope_lsas"));
  }
  void set_area_scope_lsas(ospf_harbor::area_scope_lsas_table target) const {
    write_<&::ospf_area_area_scope_lsas_set_by_ref>("area_scope_lsas", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::area_scope_lsas_row add_area_scope_lsas(
      const ospf_harbor::area_scope_lsas_table::key_type &key) const {
    return detail::add_below<schema::tbl_area_scope_lsas, &::ospf_area_area_scope_lsas_get_by_ref,
        &::ospf_area_area_scope_lsas_set_by_ref>(*session_, object_, key);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"area_id", 0, &area_ref::area_id, &area_ref::set_area_id});
    act(field{"interfaces", 0, &area_ref::interfaces, &area_ref::set_interfaces});
    act(field{"area_scope_lsas", 1, &area_ref::area_scope_lsas, &area_ref::set_area_scope_lsas});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
    act(reference_field<schema::tbl_ospf_interface, &::ospf_area_interfaces_get_by_ref,
        &::ospf_area_interfaces_set_by_ref>{"interfaces"});
    act(reference_field<schema::tbl_area_scope_lsas, &::ospf_area_area_scope_lsas_get_by_ref,
        &::ospf_area_area_scope_lsas_set_by_ref>{"area_scope_lsas"});
  }
};
using area = owned<area_ref>;

// A routing process of one address family.
class instance_ref : public object_ref<schema::ospf_instance> {
 public:
  using object_ref::object_ref;

  // The instance's address family.
  ospf_harbor::address_family af() const {
    return static_cast<ospf_harbor::address_family>(read_<&::ospf_instance_af_get_value>("af"));
  }
  void set_af(ospf_harbor::address_family value) const {
    write_<&::ospf_instance_af_set_value>("af", static_cast<std::uint32_t>(value));
  }
  // The instance's router ID as a number.
  std::uint32_t router_id() const {
    return read_<&::ospf_instance_router_id_get_value>("router_id");
  }
  void set_router_id(std::uint32_t value) const {
    write_<&::ospf_instance_router_id_set_value>("router_id", value);
  }
  // The instance's areas.
  ospf_harbor::area_table area() const {
    return ospf_harbor::area_table(*session_, read_<&::ospf_instance_area_get_by_ref>("area"));
  }
  void set_area(ospf_harbor::area_table target) const {
    write_<&::ospf_instance_area_set_by_ref>("area", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::area_row add_area(const ospf_harbor::area_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospf_area, &::ospf_instance_area_get_by_ref,
        &::ospf_instance_area_set_by_ref>(*session_, object_, key);
  }
  // Link-state databases of the instance, one row for each LS type.
  ospf_harbor::link_scope_lsas_table link_scope_lsas() const {
    return ospf_harbor::link_scope_lsas_table(*session_,
        read_<&::ospf_instance_link_scope_lsas_get_by_ref>("link_scope_lsas"));
  }
  void set_link_scope_lsas(ospf_harbor::link_scope_lsas_table target) const {
    write_<&::ospf_instance_link_scope_lsas_set_by_ref>("link_scope_lsas", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::link_scope_lsas_row add_link_scope_lsas(
      const ospf_harbor::link_scope_lsas_table::key_type &key) const {
    return detail::add_below<schema::tbl_link_scope_lsas,
        &::ospf_instance_link_scope_lsas_get_by_ref,
        &::ospf_instance_link_scope_lsas_set_by_ref>(*session_, object_, key);
  }
  // The instance's topology names.
  ospf_harbor::multi_topology_table multi_topology() const {
    return ospf_harbor::multi_topology_table(*session_,
        read_<&::ospf_instance_multi_topology_get_by_ref>("multi_topology"));
  }
  void set_multi_topology(ospf_harbor::multi_topology_table target) const {
    write_<&::ospf_instance_multi_topology_set_by_ref>("multi_topology", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::multi_topology_row add_multi_topology(
      const ospf_harbor::multi_topology_table::key_type &key) const {
    return detail::add_below<schema::tbl_multi_topology,
        &::ospf_instance_multi_topology_get_by_ref,
        &::ospf_instance_multi_topology_set_by_ref>(*session_, object_, key);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"af", 0, &instance_ref::af, &instance_ref::set_af});
    act(field{"router_id", 0, &instance_ref::router_id, &instance_ref::set_router_id});
    act(field{"area", 0, &instance_ref::area, &instance_ref::set_area});
    act(field{"link_scope_lsas", 0, &instance_ref::link_scope_lsas,
        &instance_ref::set_link_scope_lsas});
    act(field{"multi_topology", 0, &instance_ref::multi_topology,
        &instance_ref::set_multi_topology});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
    act(reference_field<schema::tbl_ospf_area, &::ospf_instance_area_get_by_ref,
        &::ospf_instance_area_set_by_ref>{"area"});
    act(reference_field<schema::tbl_link_scope_lsas, &::ospf_instance_link_scope_lsas_get_by_ref,
        &::ospf_instance_link_scope_lsas_set_by_ref>{"link_scope_lsas"});
    act(reference_field<schema::tbl_multi_topology, &::ospf_instance_multi_topology_get_by_ref,
        &::ospf_instance_multi_topology_set_by_ref>{"multi_topology"});
  }
};
using instance = owned<instance_ref>;

// The root of the model.
class ospf_ref : public object_ref<schema::ospf> {
 public:
  using object_ref::object_ref;

  // Key of a table that is meant to hold one row.
  std::uint32_t singleton_id() const {
    return read_<&::ospf_singleton_id_get_value>("singleton_id");
  }
  void set_singleton_id(std::uint32_t value) const {
    write_<&::ospf_singleton_id_set_value>("singleton_id", value);
  }
  // How the address families run beside each other.
  ospf_harbor::operation_mode op_mode() const {
    return static_cast<ospf_harbor::operation_mode>(read_<&::ospf_op_mode_get_value>("op_mode"));
  }
  void set_op_mode(ospf_harbor::operation_mode value) const {
    write_<&::ospf_op_mode_set_value>("op_mode", static_cast<std::uint32_t>(value));
  }
  // The instances, one for each address family.
  ospf_harbor::instance_table instance() const {
    return ospf_harbor::instance_table(*session_, read_<&::ospf_instance_get_by_ref>("instance"));
  }
  void set_instance(ospf_harbor::instance_table target) const {
    write_<&::ospf_instance_set_by_ref>("instance", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::instance_row add_instance(const ospf_harbor::instance_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospf_instance, &::ospf_instance_get_by_ref,
        &::ospf_instance_set_by_ref>(*session_, object_, key);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"singleton_id", 0, &ospf_ref::singleton_id, &ospf_ref::set_singleton_id});
    act(field{"op_mode", 0, &ospf_ref::op_mode, &ospf_ref::set_op_mode});
    act(field{"instance", 0, &ospf_ref::instance, &ospf_ref::set_instance});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
    act(reference_field<schema::tbl_ospf_instance, &::ospf_instance_get_by_ref,
        &::ospf_instance_set_by_ref>{"instance"});
  }
};
using ospf = owned<ospf_ref>;

// What identifies an instance in the revised form.
class instance_rev1_key_ref : public object_ref<schema::ospf_instance_rev1_key> {
 public:
  using object_ref::object_ref;

  // The instance's address family.
  ospf_harbor::address_family af() const {
    return static_cast<ospf_harbor::address_family>(read_<&::ospf_instance_rev1_key_af_get_value>(
        "af"));
  }
  void set_af(ospf_harbor::address_family value) const {
    write_<&::ospf_instance_rev1_key_af_set_value>("af", static_cast<std::uint32_t>(value));
  }
  // The instance's router ID as a number.
  std::uint32_t router_id() const {
    return read_<&::ospf_instance_rev1_key_router_id_get_value>("router_id");
  }
  void set_router_id(std::uint32_t value) const {
    write_<&::ospf_instance_rev1_key_router_id_set_value>("router_id", value);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"af", 0, &instance_rev1_key_ref::af, &instance_rev1_key_ref::set_af});
    act(field{"router_id", 0, &instance_rev1_key_ref::router_id,
        &instance_rev1_key_ref::set_router_id});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
  }
};
using instance_rev1_key = owned<instance_rev1_key_ref>;

// A routing process of one address family and router ID, both of which stand in its key.
class instance_rev1_ref : public object_ref<schema::ospf_instance_rev1> {
 public:
  using object_ref::object_ref;

  // The instance's areas.
  ospf_harbor::area_table area() const {
    return ospf_harbor::area_table(*session_, read_<&::ospf_instance_rev1_area_get_by_ref>("area"));
  }
  void set_area(ospf_harbor::area_table target) const {
    write_<&::ospf_instance_rev1_area_set_by_ref>("area", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::area_row add_area(const ospf_harbor::area_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospf_area, &::ospf_instance_rev1_area_get_by_ref,
        &::ospf_instance_rev1_area_set_by_ref>(*session_, object_, key);
  }
  // Link-state databases of the instance, one row for each LS type.
  ospf_harbor::link_scope_lsas_table link_scope_lsas() const {
    return ospf_harbor::link_scope_lsas_table(*session_,
        read_<&::ospf_instance_rev1_link_scope_lsas_get_by_ref>("link_scope_lsas"));
  }
  void set_link_scope_lsas(ospf_harbor::link_scope_lsas_table target) const {
    write_<&::ospf_instance_rev1_link_scope_lsas_set_by_ref>("link_scope_lsas", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::link_scope_lsas_row add_link_scope_lsas(
      const ospf_harbor::link_scope_lsas_table::key_type &key) const {
    return detail::add_below<schema::tbl_link_scope_lsas,
        &::ospf_instance_rev1_link_scope_lsas_get_by_ref,
        &::ospf_instance_rev1_link_scope_lsas_set_by_ref>(*session_, object_, key);
  }
  // The instance's topology names.
  ospf_harbor::multi_topology_table multi_topology() const {
    return ospf_harbor::multi_topology_table(*session_,
        read_<&::ospf_instance_rev1_multi_topology_get_by_ref>("multi_topology"));
  }
  void set_multi_topology(ospf_harbor::multi_topology_table target) const {
    write_<&::ospf_instance_rev1_multi_topology_set_by_ref>("multi_topology", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::multi_topology_row add_multi_topology(
      const ospf_harbor::multi_topology_table::key_type &key) const {
    return detail::add_below<schema::tbl_multi_topology,
        &::ospf_instance_rev1_multi_topology_get_by_ref,
        &::ospf_instance_rev1_multi_topology_set_by_ref>(*session_, object_, key);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"area", 0, &instance_rev1_ref::area, &instance_rev1_ref::set_area});
    act(field{"link_scope_lsas", 0, &instance_rev1_ref::link_scope_lsas,
        &instance_rev1_ref::set_link_scope_lsas});
    act(field{"multi_topology", 0, &instance_rev1_ref::multi_topology,
        &instance_rev1_ref::set_multi_topology});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
    act(reference_field<schema::tbl_ospf_area, &::ospf_instance_rev1_area_get_by_ref,
        &::ospf_instance_rev1_area_set_by_ref>{"area"});
    act(reference_field<schema::tbl_link_scope_lsas,
        &::ospf_instance_rev1_link_scope_lsas_get_by_ref,
        &::ospf_instance_rev1_link_scope_lsas_set_by_ref>{"link_scope_lsas"});
    act(reference_field<schema::tbl_multi_topology,
        &::ospf_instance_rev1_multi_topology_get_by_ref,
        &::ospf_instance_rev1_multi_topology_set_by_ref>{"multi_topology"});
  }
};
using instance_rev1 = owned<instance_rev1_ref>;

// The root of the model, revised form.
class ospf_rev1_ref : public object_ref<schema::ospf_rev1> {
 public:
  using object_ref::object_ref;

  // Key of a table that is meant to hold one row.
  std::uint32_t singleton_id() const {
    return read_<&::ospf_rev1_singleton_id_get_value>("singleton_id");
  }
  void set_singleton_id(std::uint32_t value) const {
    write_<&::ospf_rev1_singleton_id_set_value>("singleton_id", value);
  }
  // How the address families run beside each other.
  ospf_harbor::operation_mode op_mode() const {
    return static_cast<ospf_harbor::operation_mode>(read_<&::ospf_rev1_op_mode_get_value>(
        "op_mode"));
  }
  void set_op_mode(ospf_harbor::operation_mode value) const {
    write_<&::ospf_rev1_op_mode_set_value>("op_mode", static_cast<std::uint32_t>(value));
  }
  // The instances, one for each address family and router ID.
  ospf_harbor::instance_rev1_table instance() const {
    return ospf_harbor::instance_rev1_table(*session_,
        read_<&::ospf_rev1_instance_get_by_ref>("instance"));
  }
  void set_instance(ospf_harbor::instance_rev1_table target) const {
    write_<&::ospf_rev1_instance_set_by_ref>("instance", target.get());
  }
  // Adds a row to that table, which is made where there is none.
  ospf_harbor::instance_rev1_row add_instance(
      const ospf_harbor::instance_rev1_table::key_type &key) const {
    return detail::add_below<schema::tbl_ospf_instance_rev1, &::ospf_rev1_instance_get_by_ref,
        &::ospf_rev1_instance_set_by_ref>(*session_, object_, key);
  }
  // Calls act with a field of each of them: its name, the variant it came in, and its
  // accessors.
  template <typename Act>
  static void for_each_field(Act act) {
    act(field{"singleton_id", 0, &ospf_rev1_ref::singleton_id, &ospf_rev1_ref::set_singleton_id});
    act(field{"op_mode", 0, &ospf_rev1_ref::op_mode, &ospf_rev1_ref::set_op_mode});
    act(field{"instance", 0, &ospf_rev1_ref::instance, &ospf_rev1_ref::set_instance});
  }
  // Calls act with the reference_field of each field that refers to a table.
  template <typename Act>
  static void for_each_reference([[maybe_unused]] Act act) {
    act(reference_field<schema::tbl_ospf_instance_rev1, &::ospf_rev1_instance_get_by_ref,
        &::ospf_rev1_instance_set_by_ref>{"instance"});
  }
};
using ospf_rev1 = owned<ospf_rev1_ref>;

inline schema::tbl_ospfv2_unknown_sub_tlv::key_type schema::tbl_ospfv2_unknown_sub_tlv::key_of(
    const ospf_harbor::ospfv2::unknown_sub_tlv_row &of) {
  return of.object().type();
}
inline void schema::tbl_ospfv2_unknown_sub_tlv::set_key(
    const ospf_harbor::ospfv2::unknown_sub_tlv_row &of, const key_type &key) {
  of.object().set_type(key);
}
inline void schema::tbl_ospfv2_unknown_sub_tlv::complete(
    [[maybe_unused]] const ospf_harbor::ospfv2::unknown_sub_tlv_row &made) {
}

inline schema::tbl_ospfv2_unknown_tlv::key_type schema::tbl_ospfv2_unknown_tlv::key_of(
    const ospf_harbor::ospfv2::unknown_tlv_row &of) {
  return of.object().type();
}
inline void schema::tbl_ospfv2_unknown_tlv::set_key(const ospf_harbor::ospfv2::unknown_tlv_row &of,
    const key_type &key) {
  of.object().set_type(key);
}
inline void schema::tbl_ospfv2_unknown_tlv::complete(
    [[maybe_unused]] const ospf_harbor::ospfv2::unknown_tlv_row &made) {
}

inline schema::tbl_ospfv2_external::key_type schema::tbl_ospfv2_external::key_of(
    const ospf_harbor::ospfv2::external_row &of) {
  return of.object().mt_id();
}
inline void schema::tbl_ospfv2_external::set_key(const ospf_harbor::ospfv2::external_row &of,
    const key_type &key) {
  of.object().set_mt_id(key);
}
inline void schema::tbl_ospfv2_external::complete(
    [[maybe_unused]] const ospf_harbor::ospfv2::external_row &made) {
}

inline schema::tbl_ospfv2_topology::key_type schema::tbl_ospfv2_topology::key_of(
    const ospf_harbor::ospfv2::topology_row &of) {
  return of.object().mt_id();
}
inline void schema::tbl_ospfv2_topology::set_key(const ospf_harbor::ospfv2::topology_row &of,
    const key_type &key) {
  of.object().set_mt_id(key);
}
inline void schema::tbl_ospfv2_topology::complete(
    [[maybe_unused]] const ospf_harbor::ospfv2::topology_row &made) {
}

inline schema::tbl_ospfv2_link::key_type schema::tbl_ospfv2_link::key_of(
    const ospf_harbor::ospfv2::link_row &of) {
  const key_ref part(of.at(), get_key(of.at().handle(), 0, of.get()));
  return {part.link_id(), part.link_data()};
}
inline void schema::tbl_ospfv2_link::set_key(const ospf_harbor::ospfv2::link_row &of,
    const key_type &key) {
  const key_ref part(of.at(), get_key(of.at().handle(), 0, of.get()));
  part.set_link_id(key.link_id);
  part.set_link_data(key.link_data);
}
inline void schema::tbl_ospfv2_link::complete(
    [[maybe_unused]] const ospf_harbor::ospfv2::link_row &made) {
}

inline schema::tbl_ospfv3_link::key_type schema::tbl_ospfv3_link::key_of(
    const ospf_harbor::ospfv3::link_row &of) {
  const key_ref part(of.at(), get_key(of.at().handle(), 0, of.get()));
  return {part.interface_id(), part.neighbor_interface_id(), part.neighbor_router_id()};
}
inline void schema::tbl_ospfv3_link::set_key(const ospf_harbor::ospfv3::link_row &of,
    const key_type &key) {
  const key_ref part(of.at(), get_key(of.at().handle(), 0, of.get()));
  part.set_interface_id(key.interface_id);
  part.set_neighbor_interface_id(key.neighbor_interface_id);
  part.set_neighbor_router_id(key.neighbor_router_id);
}
inline void schema::tbl_ospfv3_link::complete(
    [[maybe_unused]] const ospf_harbor::ospfv3::link_row &made) {
}

inline schema::tbl_ospfv3_prefix_list::key_type schema::tbl_ospfv3_prefix_list::key_of(
    const ospf_harbor::ospfv3::prefix_list_row &of) {
  return of.object().prefix();
}
inline void schema::tbl_ospfv3_prefix_list::set_key(const ospf_harbor::ospfv3::prefix_list_row &of,
    const key_type &key) {
  of.object().set_prefix(key);
}
inline void schema::tbl_ospfv3_prefix_list::complete(
    [[maybe_unused]] const ospf_harbor::ospfv3::prefix_list_row &made) {
}

inline schema::tbl_ospfv3_ia_prefix_list::key_type schema::tbl_ospfv3_ia_prefix_list::key_of(
    const ospf_harbor::ospfv3::ia_prefix_list_row &of) {
  return of.object().prefix();
}
inline void schema::tbl_ospfv3_ia_prefix_list::set_key(
    const ospf_harbor::ospfv3::ia_prefix_list_row &of, const key_type &key) {
  of.object().set_prefix(key);
}
inline void schema::tbl_ospfv3_ia_prefix_list::complete(
    [[maybe_unused]] const ospf_harbor::ospfv3::ia_prefix_list_row &made) {
}

inline schema::tbl_multi_topology::key_type schema::tbl_multi_topology::key_of(
    const ospf_harbor::multi_topology_row &of) {
  return of.object().name();
}
inline void schema::tbl_multi_topology::set_key(const ospf_harbor::multi_topology_row &of,
    const key_type &key) {
  of.object().set_name(key);
}
inline void schema::tbl_multi_topology::complete(
    [[maybe_unused]] const ospf_harbor::multi_topology_row &made) {
}

inline schema::tbl_link_scope_lsa::key_type schema::tbl_link_scope_lsa::key_of(
    const ospf_harbor::link_scope_lsa_row &of) {
  const key_ref part(of.at(), get_key(of.at().handle(), 0, of.get()));
  return {part.lsa_id(), part.adv_router()};
}
inline void schema::tbl_link_scope_lsa::set_key(const ospf_harbor::link_scope_lsa_row &of,
    const key_type &key) {
  const key_ref part(of.at(), get_key(of.at().handle(), 0, of.get()));
  part.set_lsa_id(key.lsa_id);
  part.set_adv_router(key.adv_router);
}
inline void schema::tbl_link_scope_lsa::complete(
    [[maybe_unused]] const ospf_harbor::link_scope_lsa_row &made) {
}

inline schema::tbl_area_scope_lsa::key_type schema::tbl_area_scope_lsa::key_of(
    const ospf_harbor::area_scope_lsa_row &of) {
  const key_ref part(of.at(), get_key(of.at().handle(), 0, of.get()));
  return {part.lsa_id(), part.adv_router()};
}
inline void schema::tbl_area_scope_lsa::set_key(const ospf_harbor::area_scope_lsa_row &of,
    const key_type &key) {
  const key_ref part(of.at(), get_key(of.at().handle(), 0, of.get()));
  part.set_lsa_id(key.lsa_id);
  part.set_adv_router(key.adv_router);
}
inline void schema::tbl_area_scope_lsa::complete(
    [[maybe_unused]] const ospf_harbor::area_scope_lsa_row &made) {
}

inline schema::tbl_area_scope_lsas::key_type schema::tbl_area_scope_lsas::key_of(
    const ospf_harbor::area_scope_lsas_row &of) {
  return of.object().lsa_id();
}
inline void schema::tbl_area_scope_lsas::set_key(const ospf_harbor::area_scope_lsas_row &of,
    const key_type &key) {
  of.object().set_lsa_id(key);
}
inline void schema::tbl_area_scope_lsas::complete(
    [[maybe_unused]] const ospf_harbor::area_scope_lsas_row &made) {
}

inline schema::tbl_link_scope_lsas::key_type schema::tbl_link_scope_lsas::key_of(
    const ospf_harbor::link_scope_lsas_row &of) {
  return of.object().lsa_type();
}
inline void schema::tbl_link_scope_lsas::set_key(const ospf_harbor::link_scope_lsas_row &of,
    const key_type &key) {
  of.object().set_lsa_type(key);
}
inline void schema::tbl_link_scope_lsas::complete(
    [[maybe_unused]] const ospf_harbor::link_scope_lsas_row &made) {
}

inline schema::tbl_ospf_static_neighbor::key_type schema::tbl_ospf_static_neighbor::key_of(
    const ospf_harbor::static_neighbor_row &of) {
  return of.object().address();
}
inline void schema::tbl_ospf_static_neighbor::set_key(const ospf_harbor::static_neighbor_row &of,
    const key_type &key) {
  of.object().set_address(key);
}
inline void schema::tbl_ospf_static_neighbor::complete(
    [[maybe_unused]] const ospf_harbor::static_neighbor_row &made) {
}

inline schema::tbl_ospf_neighbor::key_type schema::tbl_ospf_neighbor::key_of(
    const ospf_harbor::neighbor_row &of) {
  return of.object().neighbor_id();
}
inline void schema::tbl_ospf_neighbor::set_key(const ospf_harbor::neighbor_row &of,
    const key_type &key) {
  of.object().set_neighbor_id(key);
}
inline void schema::tbl_ospf_neighbor::complete(
    [[maybe_unused]] const ospf_harbor::neighbor_row &made) {
  made.object().set_state(ospf_harbor::nbr_state_type::NBR_STATE_DOWN);
}

inline schema::tbl_ospf_interface::key_type schema::tbl_ospf_interface::key_of(
    const ospf_harbor::interface_row &of) {
  return of.object().name();
}
inline void schema::tbl_ospf_interface::set_key(const ospf_harbor::interface_row &of,
    const key_type &key) {
  of.object().set_name(key);
}
inline void schema::tbl_ospf_interface::complete(
    [[maybe_unused]] const ospf_harbor::interface_row &made) {
  const auto choice = made.object().authentication_val();
  if (::ospf_authentication_is_valid_cr(made.at().handle(), choice.get(), 5) != 0) {
    choice.select_no_auth();
  }
}

inline schema::tbl_ospf_area::key_type schema::tbl_ospf_area::key_of(
    const ospf_harbor::area_row &of) {
  return of.object().area_id();
}
inline void schema::tbl_ospf_area::set_key(const ospf_harbor::area_row &of, const key_type &key) {
  of.object().set_area_id(key);
}
inline void schema::tbl_ospf_area::complete([[maybe_unused]] const ospf_harbor::area_row &made) {
}

inline schema::tbl_ospf_instance::key_type schema::tbl_ospf_instance::key_of(
    const ospf_harbor::instance_row &of) {
  return of.object().af();
}
inline void schema::tbl_ospf_instance::set_key(const ospf_harbor::instance_row &of,
    const key_type &key) {
  of.object().set_af(key);
}
inline void schema::tbl_ospf_instance::complete(
    [[maybe_unused]] const ospf_harbor::instance_row &made) {
}

inline schema::tbl_ospf::key_type schema::tbl_ospf::key_of(const ospf_harbor::ospf_row &of) {
  return of.object().singleton_id();
}
inline void schema::tbl_ospf::set_key(const ospf_harbor::ospf_row &of, const key_type &key) {
  of.object().set_singleton_id(key);
}
inline void schema::tbl_ospf::complete([[maybe_unused]] const ospf_harbor::ospf_row &made) {
}

inline schema::tbl_ospf_instance_rev1::key_type schema::tbl_ospf_instance_rev1::key_of(
    const ospf_harbor::instance_rev1_row &of) {
  const key_ref part(of.at(), get_key(of.at().handle(), 0, of.get()));
  return {part.af(), part.router_id()};
}
inline void schema::tbl_ospf_instance_rev1::set_key(const ospf_harbor::instance_rev1_row &of,
    const key_type &key) {
  const key_ref part(of.at(), get_key(of.at().handle(), 0, of.get()));
  part.set_af(key.af);
  part.set_router_id(key.router_id);
}
inline void schema::tbl_ospf_instance_rev1::complete(
    [[maybe_unused]] const ospf_harbor::instance_rev1_row &made) {
}

inline schema::tbl_ospf_rev1::key_type schema::tbl_ospf_rev1::key_of(
    const ospf_harbor::ospf_rev1_row &of) {
  return of.object().singleton_id();
}
inline void schema::tbl_ospf_rev1::set_key(const ospf_harbor::ospf_rev1_row &of,
    const key_type &key) {
  of.object().set_singleton_id(key);
}
inline void schema::tbl_ospf_rev1::complete(
    [[maybe_unused]] const ospf_harbor::ospf_rev1_row &made) {
}

// Everything, for code that is generic over it.
using all_enumerations = std::tuple<
    ospf_harbor::address_family,
    ospf_harbor::operation_mode,
    ospf_harbor::network_type,
    ospf_harbor::auth_type,
    ospf_harbor::nbr_state_type>;
using all_flag_sets = std::tuple<
    ospf_harbor::lsa_flag_options,
    ospf_harbor::ospfv2::lsa_body_flags_options,
    ospf_harbor::ospfv3::lsa_flag_options,
    ospf_harbor::ospfv3::lsa_body_flag_options>;
using all_types = std::tuple<
    ospf_harbor::ospfv2::unknown_sub_tlv_ref,
    ospf_harbor::ospfv2::link_tlv_ref,
    ospf_harbor::ospfv2::unknown_tlv_ref,
    ospf_harbor::ospfv2::external_ref,
    ospf_harbor::ospfv2::topology_ref,
    ospf_harbor::ospfv2::link_key_ref,
    ospf_harbor::ospfv2::link_ref,
    ospf_harbor::link_scope_lsa_key_ref,
    ospf_harbor::lsa_options_ref,
    ospf_harbor::ospfv2::lsa_body_flags_ref,
    ospf_harbor::ospfv2::network_ref,
    ospf_harbor::ospfv2::lsa_body_ref,
    ospf_harbor::lsa_header_ref,
    ospf_harbor::ospfv2::header_ref,
    ospf_harbor::ospfv2::lsa_ref,
    ospf_harbor::ospfv3::lsa_options_ref,
    ospf_harbor::ospfv3::header_ref,
    ospf_harbor::ospfv3::lsa_body_flags_ref,
    ospf_harbor::ospfv3::network_ref,
    ospf_harbor::ospfv3::inter_area_prefix_ref,
    ospf_harbor::ospfv3::inter_area_router_ref,
    ospf_harbor::ospfv3::lsa_external_flags_ref,
    ospf_harbor::ospfv3::lsa_external_ref,
    ospf_harbor::ospfv3::nssa_ref,
    ospf_harbor::ospfv3::link_data_ref,
    ospf_harbor::ospfv3::intra_area_prefix_ref,
    ospf_harbor::ospfv3::lsa_body_ref,
    ospf_harbor::ospfv3::lsa_ref,
    ospf_harbor::ospfv3::link_key_ref,
    ospf_harbor::ospfv3::link_ref,
    ospf_harbor::ospfv3::prefix_list_ref,
    ospf_harbor::multi_topology_ref,
    ospf_harbor::link_scope_lsa_ref,
    ospf_harbor::area_scope_lsa_key_ref,
    ospf_harbor::area_scope_lsa_ref,
    ospf_harbor::area_scope_lsas_ref,
    ospf_harbor::link_scope_lsas_ref,
    ospf_harbor::static_neighbor_ref,
    ospf_harbor::nbr_stat_ref,
    ospf_harbor::neighbor_ref,
    ospf_harbor::fast_reroute_ref,
    ospf_harbor::multi_area_ref,
    ospf_harbor::crypto_algorithm_ref,
    ospf_harbor::authentication_ref,
    ospf_harbor::ttl_security_ref,
    ospf_harbor::interface_ref,
    ospf_harbor::area_ref,
    ospf_harbor::instance_ref,
    ospf_harbor::ospf_ref,
    ospf_harbor::instance_rev1_key_ref,
    ospf_harbor::instance_rev1_ref,
    ospf_harbor::ospf_rev1_ref>;
using all_tables = std::tuple<
    schema::tbl_ospfv2_unknown_sub_tlv,
    schema::tbl_ospfv2_unknown_tlv,
    schema::tbl_ospfv2_external,
    schema::tbl_ospfv2_topology,
    schema::tbl_ospfv2_link,
    schema::tbl_ospfv3_link,
    schema::tbl_ospfv3_prefix_list,
    schema::tbl_ospfv3_ia_prefix_list,
    schema::tbl_multi_topology,
    schema::tbl_link_scope_lsa,
    schema::tbl_area_scope_lsa,
    schema::tbl_area_scope_lsas,
    schema::tbl_link_scope_lsas,
    schema::tbl_ospf_static_neighbor,
    schema::tbl_ospf_neighbor,
    schema::tbl_ospf_interface,
    schema::tbl_ospf_area,
    schema::tbl_ospf_instance,
    schema::tbl_ospf,
    schema::tbl_ospf_instance_rev1,
    schema::tbl_ospf_rev1>;

}  // namespace ospf_harbor
