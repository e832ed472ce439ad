#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::enumeration_encodings {

inline constexpr std::array<Operation, 0> operations{};

}  // namespace harbor::enumeration_encodings
