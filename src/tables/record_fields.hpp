#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::record_fields {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr TableFamily family{"record_fields", TableScope::table, operations};
inline constexpr std::array<Operation, 0> object_operations{};
inline constexpr TableFamily object_family{"record_fields", TableScope::per_object,
                                           object_operations};

}  // namespace harbor::record_fields
