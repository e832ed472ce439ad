// The flag sets: the name of each bit, from bit 0 up.
#pragma once

#include "model/edition.hpp"

namespace harbor::model::flag_sets {

namespace members {
inline constexpr std::array<Member, 8> lsa_flag_options{{
    {"LSA_FLAG_OPTIONS_DC", 0, "Demand circuits are handled."},
    {"LSA_FLAG_OPTIONS_P", 1, "A type 7 LSA is to be translated."},
    {"LSA_FLAG_OPTIONS_MC", 2, "Multicast datagrams are forwarded."},
    {"LSA_FLAG_OPTIONS_E", 3, "AS-external LSAs are accepted."},
    {"LSA_FLAG_OPTIONS_UPWARD", 4, "The up bit of the options."},
    {"LSA_FLAG_OPTIONS_MT", 5, "Multi-topology routing is in use."},
    {"LSA_FLAG_OPTIONS_R", 6, "The originator forwards traffic."},
    {"LSA_FLAG_OPTIONS_AF", 7, "Address families are supported."},
}};
inline constexpr std::array<Member, 3> ospfv2_lsa_body_flags_options{{
    {"OSPV2_LSA_BODY_FLAG_OPTIONS_V", 0, "The router is an endpoint of a virtual link."},
    {"OSPV2_LSA_BODY_FLAG_OPTIONS_E", 1, "The router is an AS boundary router."},
    {"OSPV2_LSA_BODY_FLAG_OPTIONS_B", 2, "The router is an area border router."},
}};
inline constexpr std::array<Member, 6> ospfv3_lsa_flag_options{{
    {"OSPFV3_LSA_FLAG_DC", 0, "Demand circuits are handled."},
    {"OSPFV3_LSA_FLAG_R", 1, "The originator forwards traffic."},
    {"OSPFV3_LSA_FLAG_N", 2, "Type 7 LSAs are handled."},
    {"OSPFV3_LSA_FLAG_E", 3, "AS-external LSAs are accepted."},
    {"OSPFV3_LSA_FLAG_V6", 4, "The router takes part in IPv6 routing."},
    {"OSPFV3_LSA_FLAG_AF", 5, "Address families are supported."},
}};
inline constexpr std::array<Member, 4> ospfv3_lsa_body_flag_options{{
    {"OSPFV3_LSA_BODY_FLAG_OPTIONS_V", 0, "The router is an endpoint of a virtual link."},
    {"OSPFV3_LSA_BODY_FLAG_OPTIONS_E", 1, "The router is an AS boundary router."},
    {"OSPFV3_LSA_BODY_FLAG_OPTIONS_B", 2, "The router is an area border router."},
    {"OSPFV3_LSA_BODY_FLAG_OPTIONS_NT", 3, "The router translates type 7 LSAs whatever others do."},
}};
}  // namespace members

inline constexpr FlagSet lsa_flag_options =
    flag_set<members::lsa_flag_options>("lsa_flag_options", "The OSPFv2 option bits.");
inline constexpr FlagSet ospfv2_lsa_body_flags_options =
    flag_set<members::ospfv2_lsa_body_flags_options>(
        "ospfv2_lsa_body_flags_options",
        "The bits of an OSPFv2 router LSA. The members' prefix is spelt as the schema spells it.");
inline constexpr FlagSet ospfv3_lsa_flag_options = flag_set<members::ospfv3_lsa_flag_options>(
    "ospfv3_lsa_flag_options", "The OSPFv3 option bits.");
inline constexpr FlagSet ospfv3_lsa_body_flag_options =
    flag_set<members::ospfv3_lsa_body_flag_options>("ospfv3_lsa_body_flag_options",
                                                    "The bits of an OSPFv3 router LSA.");

}  // namespace harbor::model::flag_sets
