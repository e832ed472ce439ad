// Waiting for the lock and giving it up.
#include "parts/lock.hpp"

#include <algorithm>
#include <chrono>
#include <new>

namespace kelp {

template <typename Ready>
bool DatabaseLock::wait(std::unique_lock<std::mutex> &lock, std::uint32_t wait_ms, Ready &&ready) {
  if (wait_ms != UINT32_MAX) {
    return changed_.wait_for(lock, std::chrono::milliseconds(wait_ms), ready);
  }
  changed_.wait(lock, ready);
  return true;
}

DatabaseLock::Outcome DatabaseLock::take(const kelp_handle *handle, LockMode mode,
                                         std::uint32_t wait_ms, bool *nested) {
  const std::thread::id self = std::this_thread::get_id();
  std::unique_lock lock(mutex_);
  if (lost_) return Outcome::lost;
  bool reads_already = false;
  for (const Holder &holder : holders_) {
    if (holder.handle == handle) return Outcome::held_by_handle;
    if (holder.thread != self) continue;
    if (mode == LockMode::write || holder.mode == LockMode::write) return Outcome::held_by_thread;
    reads_already = true;
  }
  holders_.reserve(holders_.size() + 1);
  bool had = true;
  if (mode == LockMode::write) {
    ++writers_waiting_;
    had = wait(lock, wait_ms, [&] { return holders_.empty(); });
    --writers_waiting_;
  } else {
    // A thread that reads already must not queue behind a writer that waits for that thread.
    had = wait(lock, wait_ms, [&] {
      const bool written = !holders_.empty() && holders_.front().mode == LockMode::write;
      return !written && (reads_already || writers_waiting_ == 0);
    });
  }
  if (!had) {
    lock.unlock();
    changed_.notify_all();
    return Outcome::timed_out;
  }
  holders_.push_back(Holder{handle, self, mode});
  *nested = reads_already;
  return Outcome::taken;
}

bool DatabaseLock::give_up(const kelp_handle *handle) {
  {
    const std::lock_guard lock(mutex_);
    const auto held = std::find_if(holders_.begin(), holders_.end(),
                                   [&](const Holder &holder) { return holder.handle == handle; });
    if (held == holders_.end()) return false;
    holders_.erase(held);
  }
  changed_.notify_all();
  return true;
}

void DatabaseLock::after_fork_in_child() {
  // Those who waited on it are not here.
  new (&changed_) std::condition_variable;
  writers_waiting_ = 0;
  const std::thread::id self = std::this_thread::get_id();
  std::erase_if(holders_, [&](const Holder &holder) {
    if (holder.thread == self) return false;
    lost_ = lost_ || holder.mode == LockMode::write;
    return true;
  });
  mutex_.unlock();
}

}  // namespace kelp
