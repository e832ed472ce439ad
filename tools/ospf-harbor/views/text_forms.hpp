// Texts for people that several commands print.
#pragma once

#include <cstdint>
#include <string>

namespace tool {

inline std::string counted(std::uint64_t count, const char *one, const char *many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace tool
