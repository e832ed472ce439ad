// Numbers as the file's sections hold them.
#pragma once

#include <cstdint>
#include <string>

namespace emit {

inline void append_u16(std::string &bytes, std::uint16_t value) {
  bytes += static_cast<char>(value & 0xff);
  bytes += static_cast<char>(value >> 8);
}

inline void append_u32(std::string &bytes, std::uint32_t value) {
  append_u16(bytes, static_cast<std::uint16_t>(value & 0xffff));
  append_u16(bytes, static_cast<std::uint16_t>(value >> 16));
}

}  // namespace emit
