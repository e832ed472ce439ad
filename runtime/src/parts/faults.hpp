// The outstanding faults of a database: which call of each kind is to fail. Tests set them through
// kelp_database_fail_after; in a program without tests each check is one load.
#pragma once

#include <atomic>
#include <cstdint>

#include "kelp/embed.h"

namespace kelp {

class Faults {
 public:
  void set(std::uint32_t fault, std::int64_t after) {
    if (fault < KELP_FAULT_COUNT) left_[fault].store(after < 0 ? kNone : after);
  }

  // Whether this call is the one to fail.
  bool strikes(std::uint32_t fault) {
    std::atomic<std::int64_t> &left = left_[fault];
    return left.load(std::memory_order_relaxed) != kNone && counts_down(left);
  }

 private:
  [[gnu::noinline]] static bool counts_down(std::atomic<std::int64_t> &left) {
    return left.fetch_sub(1) == 0;
  }

  // A fault that has struck leaves -1 behind, which is none outstanding.
  static constexpr std::int64_t kNone = -1;
  std::atomic<std::int64_t> left_[KELP_FAULT_COUNT] = {-1, -1, -1, -1, -1, -1, -1, -1};
};

}  // namespace kelp
