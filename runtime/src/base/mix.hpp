// Hashes of the runtime's own tables. Those of a store's file are made of these too, so they never
// change.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kelp {

inline std::uint64_t mix(std::uint64_t value) {
  value = (value ^ value >> 33) * UINT64_C(0xff51afd7ed558ccd);
  value = (value ^ value >> 33) * UINT64_C(0xc4ceb9fe1a85ec53);
  return value ^ value >> 33;
}

inline std::uint64_t hash_of(const void *bytes, std::size_t length, std::uint64_t seed = 0) {
  const auto *at = static_cast<const unsigned char *>(bytes);
  std::uint64_t hash = mix(seed ^ (length + 1));
  while (length >= 8) {
    std::uint64_t word;
    std::memcpy(&word, at, sizeof word);
    hash = mix(hash ^ word);
    at += 8;
    length -= 8;
  }
  std::uint64_t rest = 0;
  std::memcpy(&rest, at, length);
  return mix(hash ^ rest);
}

// Things that lie side by side are entered side by side: those of a page fall into sixteen places
// that follow each other, so that many made or ended in turn touch little memory.
inline std::uint64_t hash_of_address(const void *address) {
  constexpr unsigned kPageBits = 12;
  constexpr unsigned kPlaceBits = 4;
  const auto number = reinterpret_cast<std::uintptr_t>(address);
  const std::uint64_t place = number >> (kPageBits - kPlaceBits) & ((1u << kPlaceBits) - 1);
  return mix(number >> kPageBits) << kPlaceBits | place;
}

}  // namespace kelp
