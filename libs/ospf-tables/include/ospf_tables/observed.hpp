// How an instance of the tree is known: by OSPF version and instance ID, and by its router where it
// is a router's own. Who listens to a network, or puts several routers' answers together, is no
// router: such an instance has the router ID 0.0.0.0, or 0.255.VERSION.ID for instance IDs other
// than 0, which the key of a row would not tell apart.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>

namespace ospf_tables {

struct InstanceName {
  std::uint8_t version = 0;
  std::uint8_t instance_id = 0;
  auto operator<=>(const InstanceName &) const = default;
};

constexpr std::uint32_t observer_id(InstanceName name) {
  return name.instance_id == 0 ? 0
                               : 0x00ff0000u | std::uint32_t{name.version} << 8 | name.instance_id;
}

// Whether the instance is a network as seen from outside, and no router's own.
constexpr bool is_observed(std::uint32_t router_id) {
  return router_id == 0 || router_id >> 16 == 0x00ff;
}

// ipv4: the address family of the key. An OSPFv3 instance that routes IPv4 (RFC 5838) has always
// an ID other than 0.
constexpr InstanceName instance_name(std::uint32_t router_id, bool ipv4) {
  if (router_id >> 16 == 0x00ff) {
    return {static_cast<std::uint8_t>(router_id >> 8), static_cast<std::uint8_t>(router_id)};
  }
  return {static_cast<std::uint8_t>(ipv4 ? 2 : 3), 0};
}

}  // namespace ospf_tables
