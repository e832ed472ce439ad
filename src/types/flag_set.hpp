#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::flag_set {

inline constexpr std::array<Operation, 0> operations{};

}  // namespace harbor::flag_set
