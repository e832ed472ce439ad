// Texts of IPv6 are those of the system library's inet_ntop and inet_pton, with "%<zone>" and
// "/<prefix>" behind them.
#include "primitives/ip_address_value.hpp"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>
#include <cstring>

#include "wire/byte_order.hpp"

namespace kelp {

namespace {

char *put_octets(const uint8_t *octets, char *text) {
  for (int at = 0; at < 4; ++at) {
    if (at != 0) *text++ = '.';
    text = std::to_chars(text, text + 3, octets[at]).ptr;
  }
  return text;
}

}  // namespace

size_t format_address(const ip_address &address, char *text) {
  const ip_address value = canonical_address(address);
  if (value.family == KELP_AF_UNSET) return 0;
  char *end = text;
  if (value.family == KELP_AF_IPV6) {
    inet_ntop(AF_INET6, value.bytes, text, INET6_ADDRSTRLEN);
    end += std::strlen(text);
  } else {
    end = put_octets(value.bytes, text);
  }
  char *limit = text + IP_ADDRESS_TEXT_SIZE;
  if (value.scope != 0) {
    *end++ = '%';
    end = std::to_chars(end, limit, value.scope).ptr;
  }
  if (value.has_prefix != 0) {
    *end++ = '/';
    end = std::to_chars(end, limit, value.prefix_length).ptr;
  }
  return static_cast<size_t>(end - text);
}

namespace {

// Cuts what follows mark off *text and reads it as a number. False when it is none.
template <class Number>
bool take_suffix(std::string_view *text, char mark, Number *number, bool *there) {
  const size_t at = text->find(mark);
  *there = at != std::string_view::npos;
  if (!*there) return true;
  const std::string_view digits = text->substr(at + 1);
  const char *end = digits.data() + digits.size();
  *text = text->substr(0, at);
  const auto [stop, error] = std::from_chars(digits.data(), end, *number);
  return error == std::errc() && stop == end;
}

}  // namespace

bool parse_address(std::string_view text, ip_address *address) {
  ip_address value{};
  if (text.empty()) {
    *address = value;
    return true;
  }
  bool has_prefix = false;
  bool has_scope = false;
  if (!take_suffix(&text, '/', &value.prefix_length, &has_prefix)) return false;
  if (!take_suffix(&text, '%', &value.scope, &has_scope)) return false;
  value.has_prefix = has_prefix;
  const bool ipv6 = text.find(':') != std::string_view::npos;
  value.family = ipv6 ? KELP_AF_IPV6 : KELP_AF_IPV4;
  char terminated[INET6_ADDRSTRLEN] = "";
  if (text.size() >= sizeof terminated) return false;
  text.copy(terminated, text.size());
  if (inet_pton(ipv6 ? AF_INET6 : AF_INET, terminated, value.bytes) != 1) return false;
  if (has_scope && !ipv6) return false;
  if (has_prefix && value.prefix_length > address_bits(value.family)) return false;
  *address = value;
  return true;
}

}  // namespace kelp

uint32_t ip_address_parse(const char *text, ip_address *address) {
  if (text == nullptr || address == nullptr) return KELP_ERR_INVALID;
  return kelp::parse_address(text, address) ? 0 : static_cast<uint32_t>(KELP_ERR_INVALID);
}

ip_address ip_address_make_ipv4(uint32_t host_order) {
  ip_address address{};
  address.family = KELP_AF_IPV4;
  kelp::store_big_endian(address.bytes, host_order);
  return address;
}

ip_address ip_address_make_ipv6(const uint8_t bytes[16], uint32_t scope) {
  ip_address address{};
  address.family = KELP_AF_IPV6;
  std::memcpy(address.bytes, bytes, sizeof address.bytes);
  address.scope = scope;
  return address;
}

uint32_t ip_address_give_prefix(ip_address *address, uint8_t prefix_length) {
  if (address == nullptr) return KELP_ERR_INVALID;
  const uint8_t bits = kelp::address_bits(address->family);
  if (bits == 0 || prefix_length > bits) return KELP_ERR_INVALID;
  address->has_prefix = 1;
  address->prefix_length = prefix_length;
  return 0;
}

uint32_t ip_address_format(const ip_address *address, char *buffer, uint32_t size) {
  if (size == 0) return 0;
  char text[IP_ADDRESS_TEXT_SIZE];
  size_t length = address == nullptr ? 0 : kelp::format_address(*address, text);
  length = std::min<size_t>(length, size - 1);
  std::memcpy(buffer, text, length);
  buffer[length] = '\0';
  return static_cast<uint32_t>(length);
}
