#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::state_tracking {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr std::array<Operation, 0> array_operations{};
inline constexpr std::array<Operation, 0> whole_operations{};
constexpr bool holds(const model::Field &field) {
  return field.kind != model::Kind::counter && field.kind != model::Kind::array;
}
constexpr bool holds_array(const model::Field &field) { return field.kind == model::Kind::array; }
inline constexpr FieldFamily family{"state_tracking", holds, operations};
inline constexpr FieldFamily array_family{"state_tracking (array)", holds_array, array_operations};
inline constexpr StructureFamily whole_family{"state_tracking (whole object)", whole_operations};

}  // namespace harbor::state_tracking
