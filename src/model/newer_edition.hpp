// What the newer edition of the schema adds: to each type named here one variant, and what comes
// with it. No product is built from it. It shows what an addition takes, and is the peer from the
// future in the tests that let editions talk to one another.
#pragma once

#include "model/schema.hpp"

namespace harbor::model {

namespace fields {
namespace ospf_area {
inline constexpr Field spf_runs =
    scalar("spf_runs", Kind::u32, "Number of times that routes were computed.").from_variant(2);
}
namespace ospf_neighbor {
inline constexpr Field description =
    scalar("description", Kind::text, "What the operator calls the neighbour.").from_variant(2);
}
namespace ospf_nbr_stat {
inline constexpr Field nbr_reset_count =
    scalar("nbr_reset_count", Kind::u32, "Number of conversations begun anew.").from_variant(1);
}
namespace ospfv2_network {
inline constexpr Field designated_router =
    scalar("designated_router", Kind::address, "The network's designated router.").from_variant(1);
}
namespace multi_topology {
inline constexpr Field number =
    scalar("number", Kind::u16, "The topology's number.").from_variant(1);
}
namespace link_scope_lsa {
inline constexpr Field digest_len =
    counter("digest_len", "Number of octets in digest.").from_variant(2);
inline constexpr Field digest =
    array("digest", Kind::u8, "A digest of the LSA as received.").from_variant(2);
}  // namespace link_scope_lsa
namespace ospf_authentication {
inline constexpr Field key_ring =
    arm("key_ring", 4, Kind::text, "Name of the key ring that peers negotiate with.")
        .from_variant(2);
}
}  // namespace fields

namespace newer_edition {

struct NewFields {
  std::string_view type;
  std::span<const Field *const> fields;
};
struct NewMember {
  std::string_view type;
  Member member;
};

inline constexpr std::array<NewFields, 7> new_fields{{
    {"ospf_area", field_list<fields::ospf_area::spf_runs>},
    {"ospf_neighbor", field_list<fields::ospf_neighbor::description>},
    {"ospf_nbr_stat", field_list<fields::ospf_nbr_stat::nbr_reset_count>},
    {"ospfv2_network", field_list<fields::ospfv2_network::designated_router>},
    {"multi_topology", field_list<fields::multi_topology::number>},
    {"link_scope_lsa",
     field_list<fields::link_scope_lsa::digest_len, fields::link_scope_lsa::digest>},
    {"ospf_authentication", field_list<fields::ospf_authentication::key_ring>},
}};

inline constexpr std::array<NewMember, 3> new_members{{
    {"ospf_auth_type", {"OSPF_AUTH_KEY_RING", 4, "Negotiated keys; the arm is key_ring.", 2}},
    {"ospf_network_type", {"HYBRID", 4, "Broadcast, with a cost for each neighbour.", 1}},
    {"ospfv3_lsa_body_flag_options",
     {"OSPFV3_LSA_BODY_FLAG_OPTIONS_W", 4, "The router is a wild-card multicast receiver.", 1}},
}};

}  // namespace newer_edition

}  // namespace harbor::model
