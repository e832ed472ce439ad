#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::module_frame {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr ModuleFamily family{"module_frame", operations};

}  // namespace harbor::module_frame
