#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::choice {

inline constexpr std::array<Operation, 0> arm_operations{};
constexpr bool is_arm(const model::Field &field) { return field.kind == model::Kind::arm; }
inline constexpr FieldFamily arm_family{"choice", is_arm, arm_operations};

}  // namespace harbor::choice
