#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::image {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr StructureFamily family{"image", operations};

}  // namespace harbor::image
