#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::insertion {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr TableFamily family{"insertion", TableScope::table, operations};

}  // namespace harbor::insertion
