// Values of fields that are no numbers: addresses, and the bits of a flag set.
#pragma once

#include <kelp/primitives.h>

#include <compare>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ospf_harbor {

// An IP address of either family, or none, with a prefix length if it has one.
class address {
 public:
  address() = default;
  explicit address(const ip_address &value) : value_(value) { value_.header = {}; }
  // The IPv4 address with these 32 bits, most significant octet first.
  static address v4(std::uint32_t bits) { return address(ip_address_make_ipv4(bits)); }
  static address v6(std::span<const std::uint8_t, 16> octets, std::uint32_t zone = 0) {
    return address(ip_address_make_ipv6(octets.data(), zone));
  }
  // "10.0.0.1", "fe80::1", "10.0.0.0/8"; nothing for a text of another form.
  static std::optional<address> parse(std::string_view text) {
    ip_address value{};
    if (ip_address_parse(std::string(text).c_str(), &value) != 0) return std::nullopt;
    return address(value);
  }

  bool is_set() const { return value_.family != KELP_AF_UNSET; }
  bool is_v4() const { return value_.family == KELP_AF_IPV4; }
  bool is_v6() const { return value_.family == KELP_AF_IPV6; }
  // 4 or 16 octets in network order, none for an unset address.
  std::span<const std::uint8_t> octets() const {
    return std::span(value_.bytes).first(is_v4() ? 4u : is_v6() ? 16u : 0u);
  }
  // The 32 bits of an IPv4 address, 0 of any other.
  std::uint32_t to_v4() const {
    std::uint32_t bits = 0;
    if (is_v4()) {
      for (const std::uint8_t octet : octets()) bits = bits << 8 | octet;
    }
    return bits;
  }
  std::uint32_t zone() const { return value_.scope; }
  std::optional<std::uint8_t> prefix_length() const {
    if (value_.has_prefix == 0) return std::nullopt;
    return value_.prefix_length;
  }
  // Nothing when no such address has a prefix of that length.
  std::optional<address> with_prefix(std::uint8_t length) const {
    ip_address value = value_;
    if (ip_address_give_prefix(&value, length) != 0) return std::nullopt;
    return address(value);
  }
  std::string to_text() const {
    char text[IP_ADDRESS_TEXT_SIZE];
    return {text, ip_address_format(&value_, text, sizeof text)};
  }
  const ip_address &get() const { return value_; }

  friend bool operator==(const address &a, const address &b) {
    return ip_address_compare(&a.value_, &b.value_) == 0;
  }
  friend std::strong_ordering operator<=>(const address &a, const address &b) {
    return ip_address_compare(&a.value_, &b.value_) <=> 0;
  }

 private:
  ip_address value_{};
};

// The flags of a set, each a member of the enumeration Bit, whose values are bit numbers.
template <typename Bit>
class flags {
 public:
  constexpr flags() = default;
  constexpr flags(std::initializer_list<Bit> set) {
    for (const Bit bit : set) this->set(bit);
  }
  static constexpr flags of_mask(std::uint8_t mask) {
    flags result;
    result.mask_ = mask;
    return result;
  }
  constexpr bool test(Bit bit) const { return (mask_ >> static_cast<unsigned>(bit) & 1) != 0; }
  constexpr flags &set(Bit bit, bool on = true) {
    const unsigned place = 1u << static_cast<unsigned>(bit);
    mask_ = static_cast<std::uint8_t>(on ? mask_ | place : mask_ & ~place);
    return *this;
  }
  constexpr std::uint8_t mask() const { return mask_; }
  friend constexpr bool operator==(flags, flags) = default;

 private:
  std::uint8_t mask_ = 0;
};

}  // namespace ospf_harbor

template <>
struct std::hash<ospf_harbor::address> {
  std::size_t operator()(const ospf_harbor::address &value) const noexcept {
    return ip_address_hash(&value.get(), 0);
  }
};
