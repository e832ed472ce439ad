// Address families, and the texts of addresses and prefixes (RFC 5952 for IPv6).
#include "ospf_decode/address.hpp"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

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

namespace {

// The text of an address or a prefix as it grows.
class Text {
 public:
  void add(char character) { room_[length_++] = character; }
  void add(unsigned value, int base = 10) {
    const auto written =
        std::to_chars(room_.data() + length_, room_.data() + room_.size(), value, base);
    length_ = static_cast<std::size_t>(written.ptr - room_.data());
  }
  void add_ipv4(std::uint32_t value);
  void add_ipv6(const Ipv6Bytes &value);
  std::string get() const { return {room_.data(), length_}; }

 private:
  std::array<char, 64> room_;
  std::size_t length_ = 0;
};

void Text::add_ipv4(std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    add(value >> shift & 0xff);
    if (shift != 0) add('.');
  }
}

void Text::add_ipv6(const Ipv6Bytes &value) {
  std::array<unsigned, 8> words{};
  for (std::size_t i = 0; i < words.size(); ++i) {
    words[i] = static_cast<unsigned>(value[2 * i]) << 8 | value[2 * i + 1];
  }
  // The first of the longest runs of zeroes gives way to "::".
  std::size_t gap = words.size();
  std::size_t longest = 1;
  for (std::size_t i = 0; i < words.size(); ++i) {
    std::size_t end = i;
    while (end < words.size() && words[end] == 0) ++end;
    if (end - i > longest) {
      gap = i;
      longest = end - i;
    }
    i = std::max(i, end);
  }
  // What begins with zeroes may hold an IPv4 address.
  if (gap == 0) {
    inet_ntop(AF_INET6, value.data(), room_.data() + length_, INET6_ADDRSTRLEN);
    length_ += std::strlen(room_.data() + length_);
    return;
  }
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i != 0) add(':');
    if (i == gap) {
      i += longest - 1;
      if (i + 1 == words.size()) add(':');
    } else {
      add(words[i], 16);
    }
  }
}

}  // namespace

std::string ipv4_text(std::uint32_t value) {
  Text text;
  text.add_ipv4(value);
  return text.get();
}

std::string ipv6_text(const Ipv6Bytes &value) {
  Text text;
  text.add_ipv6(value);
  return text.get();
}

std::string ip_text(const IpAddress &value) {
  return value.is_v6 ? ipv6_text(value.bytes) : ipv4_text(value.as_v4());
}

std::string prefix_text(const PrefixV3 &prefix, bool ipv4) {
  Text text;
  if (ipv4) {
    text.add_ipv4(IpAddress{prefix.address, false}.as_v4());
  } else {
    text.add_ipv6(prefix.address);
  }
  text.add('/');
  text.add(unsigned{prefix.length});
  return text.get();
}

}  // namespace ospf_decode
