#include "values.hpp"

#include <arpa/inet.h>
#include <kelp/primitive_layout.h>

#include <bit>
#include <cstdio>

namespace ospf_harbor_check {

std::uint64_t number_in(Bytes bytes) {
  std::uint64_t number = 0;
  for (const std::uint8_t byte : bytes) number = number << 8 | byte;
  return number;
}

// Named values of an internal range start at 1, those on the wire at 0.
std::uint32_t held_value(const harbor::model::Enumeration &type, std::uint32_t wire) {
  return type.has_internal_range && wire < type.members.size() ? wire + 1 : wire;
}

void put_real(TextBuffer &text, Bytes bytes) {
  char digits[32];
  const auto value = std::bit_cast<double>(number_in(bytes));
  const int length = std::snprintf(digits, sizeof digits, "%.17g", value);
  text.put({digits, static_cast<std::size_t>(length)});
}

void put_quoted(TextBuffer &text, Bytes bytes) {
  text.put("\"");
  for (const std::uint8_t byte : bytes) {
    const char c = static_cast<char>(byte);
    if (c == '"' || c == '\\') {
      text.put("\\").put({&c, 1});
    } else if (byte >= ' ' && byte < 0x7F) {
      text.put({&c, 1});
    } else {
      text.put("\\x").hexadecimal(byte);
    }
  }
  text.put("\"");
}

void put_digits(TextBuffer &text, Bytes bytes) {
  for (const std::uint8_t byte : bytes) text.hexadecimal(byte);
}

void put_address(TextBuffer &text, std::uint8_t family, Bytes bytes) {
  char form[INET6_ADDRSTRLEN];
  if (family == KELP_AF_UNSET) return;
  const int inet_family = family == KELP_AF_IPV6 ? AF_INET6 : AF_INET;
  if (inet_ntop(inet_family, bytes.data(), form, sizeof form) != nullptr) text.put(form);
}

void put_member(TextBuffer &text, const harbor::model::Enumeration &type, std::uint32_t wire) {
  const std::uint32_t held = held_value(type, wire);
  for (const auto &member : type.members) {
    if (member.value == held) {
      text.put(member.name);
      return;
    }
  }
  text.number(wire).put(", no known value");
}

void put_members(TextBuffer &text, const harbor::model::FlagSet &type, std::uint8_t flags) {
  if (flags == 0) text.put("none");
  for (std::uint32_t bit = 0; bit < 8; ++bit) {
    if ((flags >> bit & 1) == 0) continue;
    if (text.size() != 0) text.put(" ");
    if (bit < type.members.size()) {
      text.put(type.members[bit].name);
    } else {
      text.put("bit ").number(bit);
    }
  }
}

}  // namespace ospf_harbor_check
