// The things that a walk over a database still has to visit. Ending one may end others with it, so
// each is asked for just before its turn; those whose memory goes are forgotten.
#pragma once

#include <cstddef>
#include <mutex>
#include <unordered_set>

namespace kelp {

class Survivors {
 public:
  // Throws bad_alloc.
  void add(const void *thing) {
    const std::lock_guard lock(mutex_);
    things_.insert(thing);
  }

  // Whether it is there to be visited; it is no more afterwards.
  bool take(const void *thing) {
    const std::lock_guard lock(mutex_);
    return things_.erase(thing) != 0;
  }

  // The memory of the thing has gone.
  void forget(const void *thing) { take(thing); }

  void clear() {
    const std::lock_guard lock(mutex_);
    things_.clear();
  }

  // For the time of a fork, when nobody else may be inside.
  std::mutex &mutex() { return mutex_; }

 private:
  std::mutex mutex_;
  std::unordered_set<const void *> things_;
};

}  // namespace kelp
