#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::text {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr StructureFamily family{"text", operations};

}  // namespace harbor::text
