// The lock of a database: many readers or one writer, with writers before readers that come later.
// It knows which handle and thread holds it, so that a wait that could never end is refused.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>
#include <vector>

#include "kelp/base.h"

namespace kelp {

enum class LockMode : std::uint32_t { none = 0, read = 1, write = 2 };

class DatabaseLock {
 public:
  enum class Outcome { taken, held_by_handle, held_by_thread, timed_out, lost };

  // Waits until the lock can be had in this mode, for wait_ms milliseconds at most (UINT32_MAX:
  // without limit). *nested becomes true when the thread reads already. lost: the writer is a
  // thread of the process that this one was forked from, and does not exist here. Throws bad_alloc.
  Outcome take(const kelp_handle *handle, LockMode mode, std::uint32_t wait_ms, bool *nested);

  // False when the handle holds nothing.
  bool give_up(const kelp_handle *handle);

  // Around a fork, when nobody else may be inside. In the child the calling thread is alone.
  void before_fork() { mutex_.lock(); }
  void after_fork() { mutex_.unlock(); }
  void after_fork_in_child();

 private:
  struct Holder {
    const kelp_handle *handle;
    std::thread::id thread;
    LockMode mode;
  };

  template <typename Ready>
  bool wait(std::unique_lock<std::mutex> &lock, std::uint32_t wait_ms, Ready &&ready);

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Holder> holders_;
  std::uint32_t writers_waiting_ = 0;
  bool lost_ = false;
};

}  // namespace kelp
