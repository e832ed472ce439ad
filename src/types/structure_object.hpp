#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::structure_object {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr StructureFamily family{"structure_object", operations};

}  // namespace harbor::structure_object
