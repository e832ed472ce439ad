#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::traversal {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr TableFamily family{"traversal", TableScope::table, operations};
inline constexpr std::array<Operation, 0> key_operations{};
inline constexpr TableFamily key_family{"traversal", TableScope::per_key, key_operations};

}  // namespace harbor::traversal
