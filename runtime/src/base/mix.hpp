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

// Things that lie side by side are entered side by side: those of 64 KiB, which are given out in
// turn, fall into places that follow each other, so that many made or ended in turn touch little
// memory, and what lies in some memory is found by the addresses from which on the hash is another.
inline constexpr std::uintptr_t kSameHashBytes = 512;
inline std::uint64_t hash_of_address(std::uintptr_t number) {
  constexpr unsigned kSpanBits = 16;
  constexpr unsigned kPlaceBits = 7;
  static_assert(std::uintptr_t{1} << (kSpanBits - kPlaceBits) == kSameHashBytes);
  const std::uint64_t place = number >> (kSpanBits - kPlaceBits) & ((1u << kPlaceBits) - 1);
  return mix(number >> kSpanBits) << kPlaceBits | place;
}
inline std::uint64_t hash_of_address(const void *address) {
  return hash_of_address(reinterpret_cast<std::uintptr_t>(address));
}

// Numbers that count up are entered side by side, four in a place. The base tells from other things
// with numbers.
inline std::uint64_t hash_of_number(std::uint64_t base, std::uint64_t number) {
  return base + (number >> 2 ^ (number & 3) << 30);
}

}  // namespace kelp
