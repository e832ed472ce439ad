// A lock for what takes some tens of instructions: one exchange to take it, one store to give it
// up. Who meets it taken gives the processor to whoever has it.
#pragma once

#include <atomic>
#include <thread>

namespace kelp {

class ShortLock {
 public:
  void lock() {
    while (taken_.exchange(true, std::memory_order_acquire)) std::this_thread::yield();
  }
  void unlock() { taken_.store(false, std::memory_order_release); }

 private:
  std::atomic<bool> taken_{false};
};

}  // namespace kelp
