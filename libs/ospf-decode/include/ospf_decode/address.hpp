// Addresses, prefixes and times as the decoders hand them out, and their texts.
//
// OSPF's 32-bit identifiers and IPv4 addresses are plain host-order numbers; an IpAddress is either
// family, in network order. A Time is nanoseconds since the epoch by the capture's clock.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <string>

namespace ospf_decode {

using Time = std::int64_t;
inline constexpr Time second = 1'000'000'000;

using Ipv6Bytes = std::array<std::uint8_t, 16>;

struct IpAddress {
  Ipv6Bytes bytes{};  // IPv4: the first four
  bool is_v6 = false;

  static IpAddress v4(std::uint32_t value);
  static IpAddress v6(const Ipv6Bytes &value) { return {value, true}; }

  std::uint32_t as_v4() const;
  bool is_multicast() const;
  bool is_link_local() const;  // fe80::/10 only
  bool is_zero() const { return bytes == Ipv6Bytes{}; }
  auto operator<=>(const IpAddress &) const = default;
};

// An OSPFv3 prefix: the octets beyond what the length needs are zero.
struct PrefixV3 {
  Ipv6Bytes address{};
  std::uint8_t length = 0;
  std::uint8_t options = 0;
  std::uint16_t metric = 0;  // of an intra-area-prefix LSA; elsewhere the field is reserved

  bool operator==(const PrefixV3 &) const = default;
};

std::string ipv4_text(std::uint32_t value);
std::string ipv6_text(const Ipv6Bytes &value);
std::string ip_text(const IpAddress &value);
// "2001:db8::/32"; `ipv4` for instances of an IPv4 address family, whose prefixes hold IPv4.
std::string prefix_text(const PrefixV3 &prefix, bool ipv4 = false);

}  // namespace ospf_decode
