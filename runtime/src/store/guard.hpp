// Keeps the process alive when a mapped file loses its end to another process: a page that has gone
// becomes a private page of zeroes, and the store that it belongs to is marked as damaged.
#pragma once

#include <atomic>
#include <cstddef>

namespace kelp::store {

// Has faults within the range set the flag. False when kMostRanges are guarded already, or the
// signal cannot be had.
bool guard_range(void *start, std::size_t length, std::atomic<bool> *hit);
void release_range(void *start);

inline constexpr std::size_t kMostRanges = 256;

}  // namespace kelp::store
