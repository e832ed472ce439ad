// Octets as tests write them down: hexadecimal digits, in any groups.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

inline std::vector<std::uint8_t> from_hex(std::string_view digits) {
  std::vector<std::uint8_t> out;
  std::string octet;
  for (const char digit : digits) {
    if (digit != ' ') octet += digit;
    if (octet.size() < 2) continue;
    out.push_back(static_cast<std::uint8_t>(std::stoul(octet, nullptr, 16)));
    octet.clear();
  }
  return out;
}
