// What a routing daemon says of itself, checked and in plain structs, before any of it enters a
// table. Times are in the units that the tables get.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tool {

enum class Family { ipv4, ipv6 };

struct Neighbor {
  std::string router_id;
  std::string address;
  std::string dr;
  std::string bdr;
  std::uint32_t state;  // enum nbr_state_type_value
  std::uint32_t events = 0;
  std::uint32_t retransmission_queue = 0;
};

enum class Authentication { none, message_digest, key };

struct Interface {
  std::string name;
  std::uint32_t network_type;  // enum ospf_network_type_value
  bool passive = false;
  bool enabled = true;
  bool mtu_ignored = false;
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
  std::vector<Neighbor> neighbors;
};

struct Area {
  std::uint32_t id;
  std::vector<Interface> interfaces;
};

// One routing process of one address family.
struct Instance {
  Family family;
  std::uint32_t router_id;
  std::vector<Area> areas;
};

// A dotted quad, nothing else.
std::optional<std::uint32_t> parse_dotted(const std::string &text);

}  // namespace tool
