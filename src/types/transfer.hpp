#pragma once

#include <kelp/core.h>

#include <array>

#include "module/operation.hpp"
namespace harbor::transfer {

inline constexpr std::array<Operation, 0> operations{};
inline constexpr StructureFamily family{"transfer", operations};

template <const model::Structure &T>
void set(kelp_handle *handle, std::uint32_t space_id, void *destination, void *source,
         std::uint32_t *err);

}  // namespace harbor::transfer
