#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::structure {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr StructureFamily family{"structure", operations};

}  // namespace harbor::structure
