#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::record {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr TableFamily family{"record", TableScope::table, operations};

}  // namespace harbor::record
