// The rows of interfaces and neighbours. ospf_authentication is the only choice of the schema.
#pragma once

#include "model/edition.hpp"
#include "model/enumerations.hpp"

namespace harbor::model {

namespace fields::ospf_static_neighbor {
inline constexpr Field address =
    scalar("address", Kind::address, "The neighbour's address; key of the table.");
inline constexpr Field cost = scalar("cost", Kind::u16, "Cost to the neighbour.");
inline constexpr Field poll_interval =
    scalar("poll_interval", Kind::u16,
           "Time between hellos to a neighbour that is down; the producer chooses the unit.");
}  // namespace fields::ospf_static_neighbor
namespace types {
inline constexpr Structure ospf_static_neighbor =
    structure<fields::ospf_static_neighbor::address, fields::ospf_static_neighbor::cost,
              fields::ospf_static_neighbor::poll_interval>("ospf_static_neighbor",
                                                           "A configured neighbour.");
}  // namespace types

namespace fields::ospf_nbr_stat {
inline constexpr Field nbr_event_count =
    scalar("nbr_event_count", Kind::u32, "Number of neighbour events.");
inline constexpr Field nbr_retrans_qlen =
    scalar("nbr_retrans_qlen", Kind::u32, "Length of the retransmission queue.");
}  // namespace fields::ospf_nbr_stat
namespace types {
inline constexpr Structure ospf_nbr_stat =
    structure<fields::ospf_nbr_stat::nbr_event_count, fields::ospf_nbr_stat::nbr_retrans_qlen>(
        "ospf_nbr_stat", "Counters of a neighbour.");
}  // namespace types

namespace fields::ospf_neighbor {
inline constexpr Field neighbor_id =
    scalar("neighbor_id", Kind::address, "The neighbour's router ID; key of the table.");
inline constexpr Field address =
    scalar("address", Kind::address, "The neighbour's address on the interface.");
inline constexpr Field dr =
    scalar("dr", Kind::address, "The designated router that the neighbour declares.");
inline constexpr Field bdr =
    scalar("bdr", Kind::address, "The backup designated router that the neighbour declares.");
inline constexpr Field state =
    chosen("state", enumerations::nbr_state_type, "State of the conversation with the neighbour.");
inline constexpr Field stats =
    embedded("stats", types::ospf_nbr_stat, "The neighbour's counters.").from_variant(1);
}  // namespace fields::ospf_neighbor
namespace types {
inline constexpr Structure ospf_neighbor =
    structure<fields::ospf_neighbor::neighbor_id, fields::ospf_neighbor::address,
              fields::ospf_neighbor::dr, fields::ospf_neighbor::bdr, fields::ospf_neighbor::state,
              fields::ospf_neighbor::stats>("ospf_neighbor", "A neighbour heard on an interface.");
}  // namespace types

namespace fields::fast_reroute {
inline constexpr Field candidate_disabled = scalar(
    "candidate_disabled", Kind::boolean, "The interface is no candidate for a backup next hop.");
inline constexpr Field enabled =
    scalar("enabled", Kind::boolean, "Loop-free alternates are computed.");
inline constexpr Field remote_lfa_enabled =
    scalar("remote_lfa_enabled", Kind::boolean, "Remote loop-free alternates are computed.");
}  // namespace fields::fast_reroute
namespace types {
inline constexpr Structure fast_reroute =
    structure<fields::fast_reroute::candidate_disabled, fields::fast_reroute::enabled,
              fields::fast_reroute::remote_lfa_enabled>("fast_reroute",
                                                        "Settings of fast reroute.");
}  // namespace types

namespace fields::multi_area {
inline constexpr Field multi_area_id = scalar("multi_area_id", Kind::u32, "The other area's ID.");
inline constexpr Field cost = scalar("cost", Kind::u16, "Output cost in the other area.");
}  // namespace fields::multi_area
namespace types {
inline constexpr Structure multi_area =
    structure<fields::multi_area::multi_area_id, fields::multi_area::cost>(
        "multi_area", "Settings of a multi-area adjacency.");
}  // namespace types

namespace fields::ospf_crypto_algorithm {
inline constexpr Field hmac_sha1_12 =
    scalar("hmac_sha1_12", Kind::boolean, "HMAC-SHA-1-12 may be used.");
inline constexpr Field hmac_sha1_20 =
    scalar("hmac_sha1_20", Kind::boolean, "HMAC-SHA-1-20 may be used.");
inline constexpr Field md5 = scalar("md5", Kind::boolean, "MD5 may be used.");
inline constexpr Field sha_1 = scalar("sha_1", Kind::boolean, "SHA-1 may be used.");
inline constexpr Field hmac_sha_1 = scalar("hmac_sha_1", Kind::boolean, "HMAC-SHA-1 may be used.");
inline constexpr Field hmac_sha_256 =
    scalar("hmac_sha_256", Kind::boolean, "HMAC-SHA-256 may be used.");
inline constexpr Field hmac_sha_384 =
    scalar("hmac_sha_384", Kind::boolean, "HMAC-SHA-384 may be used.");
inline constexpr Field hmac_sha_512 =
    scalar("hmac_sha_512", Kind::boolean, "HMAC-SHA-512 may be used.");
}  // namespace fields::ospf_crypto_algorithm
namespace types {
inline constexpr Structure ospf_crypto_algorithm = structure<
    fields::ospf_crypto_algorithm::hmac_sha1_12, fields::ospf_crypto_algorithm::hmac_sha1_20,
    fields::ospf_crypto_algorithm::md5, fields::ospf_crypto_algorithm::sha_1,
    fields::ospf_crypto_algorithm::hmac_sha_1, fields::ospf_crypto_algorithm::hmac_sha_256,
    fields::ospf_crypto_algorithm::hmac_sha_384, fields::ospf_crypto_algorithm::hmac_sha_512>(
    "ospf_crypto_algorithm", "Algorithms that may be used; not exclusive of one another.");
}  // namespace types

namespace fields::ospf_authentication {
inline constexpr Field auth_type_selection =
    chosen("auth_type_selection", enumerations::ospf_auth_type, "Which arm is selected.");
inline constexpr Field sa = arm("sa", 0, Kind::text, "Name of the IPsec security association.");
inline constexpr Field key_chain =
    arm("key_chain", 1, Kind::text, "Name of the key chain of an authentication trailer.");
inline constexpr Field key_string =
    arm("key_string", 2, Kind::text, "Key of an authentication trailer, as text and not masked.");
inline constexpr Field crypto_algorithm_val = arm(
    "crypto_algorithm_val", 2, types::ospf_crypto_algorithm, "Algorithms that go with the key.");
inline constexpr Field no_auth =
    arm("no_auth", 3, Kind::u32, "Stands for no authentication.").from_variant(1);
}  // namespace fields::ospf_authentication
namespace types {
inline constexpr Structure ospf_authentication =
    structure<fields::ospf_authentication::auth_type_selection, fields::ospf_authentication::sa,
              fields::ospf_authentication::key_chain, fields::ospf_authentication::key_string,
              fields::ospf_authentication::crypto_algorithm_val,
              fields::ospf_authentication::no_auth>(
        "ospf_authentication",
        "How packets are authenticated: a choice whose arms are held by pointer.");
}  // namespace types

namespace fields::ttl_security {
inline constexpr Field enabled =
    scalar("enabled", Kind::boolean, "Packets with too small a TTL are dropped.");
inline constexpr Field hops =
    scalar("hops", Kind::u8, "Number of hops that a packet may have passed.");
}  // namespace fields::ttl_security
namespace types {
inline constexpr Structure ttl_security =
    structure<fields::ttl_security::enabled, fields::ttl_security::hops>(
        "ttl_security", "Settings of the TTL check.");
}  // namespace types

namespace fields::ospf_interface {
inline constexpr Field name = scalar("name", Kind::text, "The interface's name; key of the table.");
inline constexpr Field network_type =
    chosen("network_type", enumerations::ospf_network_type, "How OSPF treats the network.");
inline constexpr Field passive =
    scalar("passive", Kind::boolean, "No protocol packets are sent or taken.");
inline constexpr Field demand_circuit =
    scalar("demand_circuit", Kind::boolean, "The interface is treated as a demand circuit.");
inline constexpr Field multi_area_val =
    embedded("multi_area_val", types::multi_area, "Settings of a multi-area adjacency.");
inline constexpr Field static_neighbor =
    reference("static_neighbor", TableId::ospf_static_neighbor, "Configured neighbours.");
inline constexpr Field node_flag =
    scalar("node_flag", Kind::boolean, "The node flag of the interface's prefix.");
inline constexpr Field fast_reroute_val =
    embedded("fast_reroute_val", types::fast_reroute, "Settings of fast reroute.");
inline constexpr Field cost = scalar("cost", Kind::u16, "Output cost.");
inline constexpr Field hello_interval =
    scalar("hello_interval", Kind::u16, "Time between hellos; the producer chooses the unit.");
inline constexpr Field dead_interval =
    scalar("dead_interval", Kind::u16,
           "Silence after which a neighbour is down; the producer chooses the unit.");
inline constexpr Field retransmit_interval =
    scalar("retransmit_interval", Kind::u16,
           "Time between retransmissions; the producer chooses the unit.");
inline constexpr Field transmit_delay =
    scalar("transmit_delay", Kind::u16,
           "Estimated time to send an update; the producer chooses the unit.");
inline constexpr Field mtu_ignore =
    scalar("mtu_ignore", Kind::boolean, "A neighbour's MTU is not compared.");
inline constexpr Field lls = scalar("lls", Kind::boolean, "Link-local signalling is on.");
inline constexpr Field prefix_suppression =
    scalar("prefix_suppression", Kind::boolean, "The interface's prefixes are not advertised.");
inline constexpr Field bfd =
    scalar("bfd", Kind::boolean, "Forwarding failures are detected by BFD.");
inline constexpr Field ttl_security_val =
    embedded("ttl_security_val", types::ttl_security, "Settings of the TTL check.");
inline constexpr Field enable = scalar("enable", Kind::boolean, "OSPF runs on the interface.");
inline constexpr Field authentication_val =
    embedded("authentication_val", types::ospf_authentication, "How packets are authenticated.");
inline constexpr Field state = scalar("state", Kind::text, "The interface state as free text.");
inline constexpr Field hello_timer = scalar(
    "hello_timer", Kind::u32, "The hello timer when reported; the producer chooses the unit.");
inline constexpr Field wait_timer =
    scalar("wait_timer", Kind::u32, "The wait timer when reported; the producer chooses the unit.");
inline constexpr Field dr = scalar("dr", Kind::address, "Address of the designated router.");
inline constexpr Field bdr =
    scalar("bdr", Kind::address, "Address of the backup designated router.");
inline constexpr Field neighbor =
    reference("neighbor", TableId::ospf_neighbor, "Neighbours heard on the interface.");
inline constexpr Field link_scope_lsas =
    reference("link_scope_lsas", TableId::link_scope_lsas,
              "Link-state databases of the interface, one row for each LS type.");
inline constexpr Field multi_topology =
    reference("multi_topology", TableId::multi_topology, "The interface's topology names.");
inline constexpr Field priority =
    scalar("priority", Kind::u8, "The router priority; 0 never becomes designated router.")
        .from_variant(1);
}  // namespace fields::ospf_interface
namespace types {
inline constexpr Structure ospf_interface =
    structure<fields::ospf_interface::name, fields::ospf_interface::network_type,
              fields::ospf_interface::passive, fields::ospf_interface::demand_circuit,
              fields::ospf_interface::multi_area_val, fields::ospf_interface::static_neighbor,
              fields::ospf_interface::node_flag, fields::ospf_interface::fast_reroute_val,
              fields::ospf_interface::cost, fields::ospf_interface::hello_interval,
              fields::ospf_interface::dead_interval, fields::ospf_interface::retransmit_interval,
              fields::ospf_interface::transmit_delay, fields::ospf_interface::mtu_ignore,
              fields::ospf_interface::lls, fields::ospf_interface::prefix_suppression,
              fields::ospf_interface::bfd, fields::ospf_interface::ttl_security_val,
              fields::ospf_interface::enable, fields::ospf_interface::authentication_val,
              fields::ospf_interface::state, fields::ospf_interface::hello_timer,
              fields::ospf_interface::wait_timer, fields::ospf_interface::dr,
              fields::ospf_interface::bdr, fields::ospf_interface::neighbor,
              fields::ospf_interface::link_scope_lsas, fields::ospf_interface::multi_topology,
              fields::ospf_interface::priority>("ospf_interface",
                                                "An interface: settings, timers and state.");
}  // namespace types

}  // namespace harbor::model
