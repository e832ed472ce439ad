#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::reference_field {

inline constexpr std::array<Operation, 0> operations{};
constexpr bool holds(const model::Field &field) { return field.kind == model::Kind::reference; }
inline constexpr FieldFamily family{"reference_field", holds, operations};

inline constexpr std::array<Operation, 0> whole_operations{};
inline constexpr StructureFamily whole_family{"reference_field (whole object)", whole_operations};

}  // namespace harbor::reference_field
