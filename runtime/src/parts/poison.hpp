// Marks memory as out of bounds for the address sanitizer; nothing in a build without it.
#pragma once

#include <sanitizer/asan_interface.h>

#include <cstddef>

namespace kelp {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kAddressSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool kAddressSanitizer = true;
#else
inline constexpr bool kAddressSanitizer = false;
#endif
#else
inline constexpr bool kAddressSanitizer = false;
#endif

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
