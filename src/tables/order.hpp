#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::order {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr TableFamily family{"order", TableScope::table, operations};
inline constexpr std::array<Operation, 0> key_operations{};
inline constexpr TableFamily key_family{"order", TableScope::per_key, key_operations};

}  // namespace harbor::order
