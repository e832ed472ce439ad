// Size classes of blocks: multiples of 16 that fill a span, each at most 6 % above what is asked.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace kelp::store {

inline constexpr std::size_t kAlignment = 16;
inline constexpr std::size_t kLargestSlot = 16384;
inline constexpr std::size_t kSpanBytes = 65536;  // of memory that is cut into slots of one class
inline constexpr std::size_t kSlotHead = 8;  // what a store keeps of each, in front of them all

constexpr std::size_t slots_of_span(std::size_t bytes) {
  return (kSpanBytes - kAlignment) / (bytes + kSlotHead);
}

// The class above one of so many bytes: the largest of which a span holds one less.
constexpr std::size_t next_class_bytes(std::size_t bytes) {
  const std::size_t fewer = slots_of_span(bytes) - 1;
  const std::size_t filling =
      ((kSpanBytes - kAlignment) / fewer - kSlotHead) / kAlignment * kAlignment;
  const std::size_t most = (bytes + 1) * 106 / 100 / kAlignment * kAlignment;
  const std::size_t next = std::max(std::min(filling, most), bytes + kAlignment);
  return std::min(next, kLargestSlot);
}

inline constexpr std::size_t kClasses = [] {
  std::size_t count = 1;
  for (std::size_t bytes = kAlignment; bytes < kLargestSlot; ++count) {
    bytes = next_class_bytes(bytes);
  }
  return count;
}();

struct SizeClasses {
  std::array<std::uint16_t, kClasses> bytes{};
  std::array<std::uint8_t, kLargestSlot / kAlignment + 1> of_units{};  // by size / 16, rounded up

  constexpr SizeClasses() {
    std::size_t unit = 0;
    for (std::size_t index = 0, size = kAlignment; index < kClasses; ++index) {
      bytes[index] = static_cast<std::uint16_t>(size);
      for (; unit * kAlignment <= size; ++unit) of_units[unit] = static_cast<std::uint8_t>(index);
      size = next_class_bytes(size);
    }
  }
};
static_assert(kClasses <= 255);
inline constexpr SizeClasses kSizeClasses;

// At most kLargestSlot.
constexpr std::size_t class_of(std::size_t size) {
  return kSizeClasses.of_units[(size + kAlignment - 1) / kAlignment];
}

constexpr std::size_t class_bytes(std::size_t index) { return kSizeClasses.bytes[index]; }

}  // namespace kelp::store
