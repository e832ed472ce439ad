#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::open {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr TableFamily family{"open", TableScope::table, operations};

}  // namespace harbor::open
