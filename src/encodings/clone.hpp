#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::clone {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr StructureFamily family{"clone", operations};

}  // namespace harbor::clone
