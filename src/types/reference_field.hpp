#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::reference_field {

inline constexpr std::array<Operation, 0> operations{};
constexpr bool holds(const model::Field &field) { return field.kind == model::Kind::reference; }
inline constexpr FieldFamily family{"reference_field", holds, operations};

}  // namespace harbor::reference_field
