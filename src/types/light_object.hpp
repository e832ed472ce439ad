#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::light_object {

inline constexpr std::array<Operation, 0> operations{};

}  // namespace harbor::light_object
