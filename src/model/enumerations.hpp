// The enumerations: their values, and the variant from which on each is known.
#pragma once

#include "model/edition.hpp"

namespace harbor::model::enumerations {

namespace members {
inline constexpr std::array<Member, 2> address_family{{
    {"ADDR_FAMILY_IPV4", 0, "IPv4."},
    {"ADDR_FAMILY_IPV6", 1, "IPv6."},
}};
inline constexpr std::array<Member, 1> ospf_operation_mode{{
    {"OSPF_OP_MODE_SHIPS_IN_THE_NIGHT", 0, "The address families know nothing of each other."},
}};
inline constexpr std::array<Member, 4> ospf_network_type{{
    {"BROADCAST", 0, "Many routers, reached by one packet to all."},
    {"NON_BROADCAST", 1, "Many routers, each reached by a packet of its own."},
    {"POINT_TO_MULTIPOINT", 2, "A set of point-to-point links."},
    {"POINT_TO_POINT", 3, "Two routers."},
}};
inline constexpr std::array<Member, 4> ospf_auth_type{{
    {"OSPF_AUTH_IPSEC", 0, "IPsec; the arm is sa."},
    {"OSPF_AUTH_TRAILER_KEY_CHAIN", 1,
     "Authentication trailer with a key chain; the arm is key_chain."},
    {"OSPF_AUTH_TRAILER_KEY", 2,
     "Authentication trailer with a key; the arms are key_string and crypto_algorithm_val."},
    {"OSPF_AUTH_TYPE_NONE", 3, "No authentication; the arm is no_auth. Known from variant 1 on.",
     1},
}};
inline constexpr std::array<Member, 8> nbr_state_type{{
    {"NBR_STATE_DOWN", 1, "Nothing heard."},
    {"NBR_STATE_ATTEMPT", 2, "Hellos are sent to a configured neighbour that is silent."},
    {"NBR_STATE_INIT", 3, "A hello was heard that does not name this router."},
    {"NBR_STATE_TWO_WAY", 4, "Both routers hear each other."},
    {"NBR_STATE_EXSTART", 5, "The routers settle who leads the exchange."},
    {"NBR_STATE_EXCHANGE", 6, "The routers describe their databases."},
    {"NBR_STATE_LOADING", 7, "Missing LSAs are being asked for."},
    {"NBR_STATE_FULL", 8, "The databases agree."},
}};
}  // namespace members

inline constexpr Enumeration address_family =
    enumeration<members::address_family>("address_family", "An address family.")
        .identified_by("2b42e5c02e3225d440f9f5bec13c63de");
inline constexpr Enumeration ospf_operation_mode = enumeration<members::ospf_operation_mode>(
    "ospf_operation_mode", "How the address families run beside each other.");
inline constexpr Enumeration ospf_network_type =
    enumeration<members::ospf_network_type>("ospf_network_type", "How OSPF treats a network.");
inline constexpr Enumeration ospf_auth_type =
    enumeration<members::ospf_auth_type>("ospf_auth_type", "Selector of ospf_authentication.")
        .identified_by("0f58589be39f59b1ec820d0a75d12853");
inline constexpr Enumeration nbr_state_type =
    enumeration<members::nbr_state_type>(
        "nbr_state_type",
        "State of the conversation with a neighbour. Held values run from 1 to 8; the wire and the "
        "limits count from 0.")
        .counted_from_one();

}  // namespace harbor::model::enumerations
