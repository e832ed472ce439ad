// Waiting for the lock and giving it up.
#include "parts/lock.hpp"

#include <algorithm>

namespace kelp {

DatabaseLock::Outcome DatabaseLock::take(const kelp_handle *handle, LockMode mode) {
  const std::thread::id self = std::this_thread::get_id();
  std::unique_lock lock(mutex_);
  bool reads_already = false;
  for (const Holder &holder : holders_) {
    if (holder.handle == handle) return Outcome::held_by_handle;
    if (holder.thread != self) continue;
    if (mode == LockMode::write || holder.mode == LockMode::write) return Outcome::held_by_thread;
    reads_already = true;
  }
  holders_.reserve(holders_.size() + 1);
  if (mode == LockMode::write) {
    ++writers_waiting_;
    changed_.wait(lock, [&] { return holders_.empty(); });
    --writers_waiting_;
  } else {
    // A thread that reads already must not queue behind a writer that waits for that thread.
    changed_.wait(lock, [&] {
      const bool written = !holders_.empty() && holders_.front().mode == LockMode::write;
      return !written && (reads_already || writers_waiting_ == 0);
    });
  }
  holders_.push_back(Holder{handle, self, mode});
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

}  // namespace kelp
