#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::flag_set_encodings {

inline constexpr std::array<Operation, 0> operations{};

}  // namespace harbor::flag_set_encodings
