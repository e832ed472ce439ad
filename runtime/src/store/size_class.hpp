// Size classes of blocks: multiples of 16 up to 128 bytes, then four to each doubling.
#pragma once

#include <bit>
#include <cstddef>

namespace kelp::store {

inline constexpr std::size_t kAlignment = 16;
inline constexpr std::size_t kLargestSlot = 16384;

constexpr std::size_t class_of(std::size_t size) {
  if (size <= 128) return size <= kAlignment ? 0 : (size - 1) / kAlignment;
  const std::size_t doubling = static_cast<std::size_t>(std::bit_width(size - 1)) - 1;
  const std::size_t quarter = (size - 1) >> (doubling - 2) & 3;
  return 8 + (doubling - 7) * 4 + quarter;
}

constexpr std::size_t class_bytes(std::size_t index) {
  if (index < 8) return (index + 1) * kAlignment;
  const std::size_t doubling = (index - 8) / 4 + 7;
  return (std::size_t{1} << doubling) + ((index - 8) % 4 + 1) * (std::size_t{1} << (doubling - 2));
}

}  // namespace kelp::store
