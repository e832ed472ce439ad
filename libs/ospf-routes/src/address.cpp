#include "ospf_routes/address.hpp"

#include <arpa/inet.h>

#include <bit>
#include <charconv>

namespace ospf_routes {

namespace {

void put(std::uint64_t number, unsigned char *octets) {
  for (int at = 0; at < 8; ++at) octets[at] = static_cast<unsigned char>(number >> (56 - 8 * at));
}

std::uint64_t get(const unsigned char *octets) {
  std::uint64_t number = 0;
  for (int at = 0; at < 8; ++at) number = number << 8 | octets[at];
  return number;
}

}  // namespace

std::optional<unsigned> length_of_mask(std::uint32_t mask) {
  const auto length = static_cast<unsigned>(std::countl_one(mask));
  if (length < 32 && mask << length != 0) return std::nullopt;
  return length;
}

std::string text_of(const Address &address, Family family) {
  unsigned char octets[16];
  put(address.high, octets);
  put(address.low, octets + 8);
  char text[INET6_ADDRSTRLEN];
  inet_ntop(family == Family::ipv4 ? AF_INET : AF_INET6, octets, text, sizeof text);
  return text;
}

std::string text_of(const Prefix &prefix, Family family) {
  return text_of(prefix.address, family) + "/" + std::to_string(prefix.length);
}

std::string dotted(std::uint32_t number) { return text_of(ipv4_address(number), Family::ipv4); }

std::optional<Address> parse_address(std::string_view text, Family family) {
  unsigned char octets[16] = {};
  if (inet_pton(family == Family::ipv4 ? AF_INET : AF_INET6, std::string(text).c_str(), octets) !=
      1) {
    return std::nullopt;
  }
  return Address{get(octets), get(octets + 8)};
}

std::optional<Prefix> parse_prefix(std::string_view text, Family family) {
  const std::size_t slash = text.find('/');
  const auto address = parse_address(text.substr(0, slash), family);
  if (!address) return std::nullopt;
  if (slash == text.npos) return make_prefix(*address, width(family));
  const std::string_view digits = text.substr(slash + 1);
  unsigned length = 0;
  const auto [end, error] = std::from_chars(digits.begin(), digits.end(), length);
  if (digits.empty() || error != std::errc() || end != digits.end() || length > width(family)) {
    return std::nullopt;
  }
  return make_prefix(*address, length);
}

std::optional<std::uint32_t> parse_dotted(std::string_view text) {
  const auto address = parse_address(text, Family::ipv4);
  if (!address) return std::nullopt;
  return ipv4_number(*address);
}

}  // namespace ospf_routes
