// A routing process of one address family, as it tells of itself or as it is heard from outside,
// checked and in plain structs before any of it enters a table. Times are in the units that the
// tables get; what a source cannot know stays at its default.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ospf_tables/told.hpp"

namespace ospf_tables {

enum class Family { ipv4, ipv6 };

struct Neighbor {
  std::string router_id;
  std::string address;
  std::string dr;
  std::string bdr;
  std::uint32_t state;  // enum nbr_state_type_value
  std::uint32_t events = 0;
  std::uint32_t retransmission_queue = 0;
  std::optional<std::uint8_t> priority = std::nullopt;
  std::string evidence = "";  // what the state rests on
};

// `key` stands for one whose algorithm is not known.
enum class Authentication {
  none,
  key,
  message_digest,
  hmac_sha_1,
  hmac_sha_256,
  hmac_sha_384,
  hmac_sha_512
};

struct Interface {
  std::string name;
  std::string address;      // its own, where the source tells it; no table has a field for it
  std::string prefix = "";  // "192.0.2.1/24" or "192.0.2.0/24", as the source has it
  std::optional<std::uint32_t> mtu = std::nullopt;
  std::string told_type;  // "virtual" or "loopback", which the model has no values for
  bool cost_known = true;
  bool silent = false;         // it was heard, but no more
  std::uint32_t network_type;  // enum ospf_network_type_value
  bool passive = false;
  bool enabled = true;
  bool mtu_ignored = false;
  bool demand_circuit = false;
  bool lls = false;
  bool authentication_known = true;
  Authentication authentication = Authentication::none;
  std::uint16_t cost = 0;
  std::uint16_t hello_interval = 0;       // seconds
  std::uint16_t dead_interval = 0;        // seconds
  std::uint16_t retransmit_interval = 0;  // seconds
  std::uint16_t transmit_delay = 0;       // seconds
  std::string state;
  std::uint32_t hello_timer = 0;  // milliseconds until the next hello
  std::uint32_t wait_timer = 0;   // milliseconds
  std::string dr;
  std::string bdr;
  std::uint8_t priority = 0;
  std::uint8_t instance_id = 0;  // of OSPFv3, where a process has several
  std::vector<Neighbor> neighbors;
  std::vector<std::string> static_neighbors;  // addresses, each once
};

struct Area {
  std::uint32_t id;
  std::vector<Interface> interfaces;
  std::string kind = "";  // "normal", "stub" or "nssa", where the source tells it
};

// One routing process of one address family.
struct Instance {
  Family family;
  std::uint32_t router_id;
  std::vector<Area> areas;
  std::optional<Ages> ages = std::nullopt;  // of the databases' LSAs
};

}  // namespace ospf_tables
