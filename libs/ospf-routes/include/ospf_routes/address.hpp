// Addresses and prefixes of both families in one form, so that no rule of the calculation asks
// which family it works for. An IPv4 address fills the front of the 128 bits, as it does on the
// wire of OSPFv3 instances that route IPv4; prefix lengths are the same in both then.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace ospf_routes {

using RouterId = std::uint32_t;
using AreaId = std::uint32_t;

inline constexpr AreaId backbone = 0;

enum class Family : std::uint8_t { ipv4, ipv6 };

constexpr unsigned width(Family family) { return family == Family::ipv4 ? 32 : 128; }

struct Address {
  std::uint64_t high = 0;
  std::uint64_t low = 0;

  auto operator<=>(const Address &) const = default;
  bool is_zero() const { return high == 0 && low == 0; }
};

constexpr Address ipv4_address(std::uint32_t number) { return {std::uint64_t{number} << 32, 0}; }
constexpr std::uint32_t ipv4_number(const Address &address) {
  return static_cast<std::uint32_t>(address.high >> 32);
}

// The first `length` bits of an address.
constexpr Address masked(const Address &address, unsigned length) {
  if (length >= 128) return address;
  if (length >= 64) {
    return {address.high, length == 64 ? 0 : address.low & ~std::uint64_t{0} << (128 - length)};
  }
  return {length == 0 ? 0 : address.high & ~std::uint64_t{0} << (64 - length), 0};
}

// Bits behind the length are zero.
struct Prefix {
  Address address;
  std::uint8_t length = 0;

  auto operator<=>(const Prefix &) const = default;
};

constexpr Prefix make_prefix(const Address &address, unsigned length) {
  return {masked(address, length), static_cast<std::uint8_t>(length)};
}
constexpr bool covers(const Prefix &prefix, const Address &address) {
  return masked(address, prefix.length) == prefix.address;
}
// A prefix covers itself.
constexpr bool covers(const Prefix &outer, const Prefix &inner) {
  return outer.length <= inner.length && covers(outer, inner.address);
}
// The length of a mask of IPv4, nothing for one with holes.
std::optional<unsigned> length_of_mask(std::uint32_t mask);

std::string text_of(const Address &address, Family family);
std::string text_of(const Prefix &prefix, Family family);
std::string dotted(std::uint32_t number);

std::optional<Address> parse_address(std::string_view text, Family family);
// Bits behind the length are cleared. Without a slash the length is that of a host.
std::optional<Prefix> parse_prefix(std::string_view text, Family family);
std::optional<std::uint32_t> parse_dotted(std::string_view text);

struct PrefixHash {
  std::size_t operator()(const Prefix &prefix) const {
    std::uint64_t mixed = (prefix.address.high ^ prefix.length) * 0x9e3779b97f4a7c15u;
    mixed = (mixed ^ mixed >> 29 ^ prefix.address.low) * 0xbf58476d1ce4e5b9u;
    return mixed ^ mixed >> 32;
  }
};

}  // namespace ospf_routes
