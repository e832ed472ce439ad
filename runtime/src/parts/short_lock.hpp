// A lock for what takes some tens of instructions: one exchange to take it, one store to give it
// up. Who meets it taken gives the processor to whoever has it. In a process of one thread there is
// nobody to meet: it is taken by a store, which a thread that comes later finds. Nobody who has it
// may make one.
#pragma once

#include <sys/single_threaded.h>

#include <atomic>
#include <thread>

namespace kelp {

class ShortLock {
 public:
  void lock() {
    while (!try_lock()) std::this_thread::yield();
  }
  bool try_lock() {
    if (__libc_single_threaded == 0) return !taken_.exchange(true, std::memory_order_acquire);
    taken_.store(true, std::memory_order_relaxed);
    return true;
  }
  void unlock() { taken_.store(false, std::memory_order_release); }

 private:
  std::atomic<bool> taken_{false};
};

}  // namespace kelp
