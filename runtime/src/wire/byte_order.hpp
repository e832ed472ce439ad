// Numbers in network byte order at any address. Every multi-byte number of an image goes through
// these two.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kelp {

template <class T>
void store_big_endian(uint8_t *at, T value) {
  for (size_t i = sizeof(T); i-- > 0;) {
    at[i] = static_cast<uint8_t>(value);
    if constexpr (sizeof(T) > 1) value = static_cast<T>(value >> 8);
  }
}

template <class T>
T load_big_endian(const uint8_t *at) {
  T value = 0;
  for (size_t i = 0; i < sizeof(T); ++i) {
    if constexpr (sizeof(T) > 1) value = static_cast<T>(value << 8);
    value = static_cast<T>(value | at[i]);
  }
  return value;
}

}  // namespace kelp
