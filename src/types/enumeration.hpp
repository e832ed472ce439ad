#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::enumeration {

inline constexpr std::array<Operation, 0> operations{};

// Whether an object of this variant refuses the value. Values are compared unsigned, variants
// signed.
template <const model::Enumeration &E>
constexpr bool refuses(std::uint32_t value, std::int32_t variant) {
  const std::uint32_t tested = E.has_internal_range && value >= 1 && value <= 8 ? value - 1 : value;
  for (std::uint8_t limit = 0; limit < E.limit_count; ++limit) {
    if (tested >= E.limits[limit] && variant < limit + 1) return true;
  }
  return false;
}

}  // namespace harbor::enumeration
