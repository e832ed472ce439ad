#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::handlers {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr TableFamily family{"handlers", TableScope::table, operations};

}  // namespace harbor::handlers
