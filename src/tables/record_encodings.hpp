#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::record_encodings {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr TableFamily family{"record_encodings", TableScope::table, operations};

}  // namespace harbor::record_encodings
