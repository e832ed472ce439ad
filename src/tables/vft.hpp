#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::vft {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr TableFamily family{"vft", TableScope::table, operations};
inline constexpr std::array<Operation, 0> module_operations{};
inline constexpr ModuleFamily module_family{"vft", module_operations};

}  // namespace harbor::vft
