// Address families, and the texts of addresses and prefixes (RFC 5952 for IPv6).
#include "ospf_decode/address.hpp"

#include <arpa/inet.h>

#include <algorithm>
#include <array>

namespace ospf_decode {

IpAddress IpAddress::v4(std::uint32_t value) {
  IpAddress out;
  out.bytes[0] = static_cast<std::uint8_t>(value >> 24);
  out.bytes[1] = static_cast<std::uint8_t>(value >> 16);
  out.bytes[2] = static_cast<std::uint8_t>(value >> 8);
  out.bytes[3] = static_cast<std::uint8_t>(value);
  return out;
}

std::uint32_t IpAddress::as_v4() const {
  return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
         static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

bool IpAddress::is_multicast() const {
  return is_v6 ? bytes[0] == 0xff : (bytes[0] & 0xf0) == 0xe0;
}

bool IpAddress::is_link_local() const {
  return is_v6 && bytes[0] == 0xfe && (bytes[1] & 0xc0) == 0x80;
}

std::string ipv4_text(std::uint32_t value) {
  std::string out;
  for (int shift = 24; shift >= 0; shift -= 8) {
    if (!out.empty()) out += '.';
    out += std::to_string(value >> shift & 0xff);
  }
  return out;
}

std::string ipv6_text(const Ipv6Bytes &value) {
  std::array<char, INET6_ADDRSTRLEN> text{};
  return inet_ntop(AF_INET6, value.data(), text.data(), text.size()) ? text.data() : "";
}

std::string ip_text(const IpAddress &value) {
  return value.is_v6 ? ipv6_text(value.bytes) : ipv4_text(value.as_v4());
}

std::string prefix_text(const PrefixV3 &prefix, bool ipv4) {
  const std::string address =
      ipv4 ? ipv4_text(IpAddress{prefix.address, false}.as_v4()) : ipv6_text(prefix.address);
  return address + '/' + std::to_string(prefix.length);
}

}  // namespace ospf_decode
