#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::xml {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr StructureFamily family{"xml", operations};

}  // namespace harbor::xml
