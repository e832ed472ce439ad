// Marks memory as out of bounds for the address sanitizer; nothing in a build without it.
#pragma once

#include <sanitizer/asan_interface.h>

#include <cstddef>

#include "base/sanitizers.hpp"

namespace kelp {

// Bytes kept free behind each block, so that an overrun does not land in the next one.
inline constexpr std::size_t kRedZone = kAddressSanitizer ? 16 : 0;

inline void poison(const void *address, std::size_t length) {
  (void)address, (void)length;
  ASAN_POISON_MEMORY_REGION(address, length);
}

inline void unpoison(const void *address, std::size_t length) {
  (void)address, (void)length;
  ASAN_UNPOISON_MEMORY_REGION(address, length);
}

}  // namespace kelp
