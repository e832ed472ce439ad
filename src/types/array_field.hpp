#pragma once

#include <array>

#include "module/operation.hpp"

namespace harbor::array_field {

inline constexpr std::array<Operation, 0> number_operations{};
inline constexpr std::array<Operation, 0> address_operations{};
constexpr bool holds_numbers(const model::Field &field) {
  return field.kind == model::Kind::array && field.held != model::Kind::address;
}
constexpr bool holds_addresses(const model::Field &field) {
  return field.kind == model::Kind::array && field.held == model::Kind::address;
}
inline constexpr FieldFamily number_family{"array_field", holds_numbers, number_operations};
inline constexpr FieldFamily address_family{"array_field (addresses)", holds_addresses,
                                            address_operations};

}  // namespace harbor::array_field
