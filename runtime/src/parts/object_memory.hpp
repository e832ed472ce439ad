// The memory of a database: its objects', and what the runtime keeps beside them. Private memory,
// or a store's, where only the holder of the write lock is given any. What readers of a store make,
// keys to search by and copies, lies in memory of the process.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "parts/arena.hpp"
#include "store/memory.hpp"

namespace kelp {

namespace store {
class Store;
}

// The runtime's own things in a private database.
class SystemMemory final : public store::Memory {
 public:
  explicit SystemMemory(Arena &arena) : Memory(false), arena_(arena) {}
  void *take(std::size_t size) override { return arena_.allocate(size); }
  void give_back(void *block) override { arena_.free(block); }

 private:
  void hear(const void *, std::size_t) override {}
  Arena &arena_;
};

class ObjectMemory {
 public:
  // From here on the objects lie in a store.
  void attach(store::Store *store) { store_ = store; }

  void set_release_hook(Arena::ReleaseHook hook, void *context);

  // in_store says whether a store's memory is wanted, or memory of the process beside it. Null when
  // it is refused: last_refusal.
  void *allocate(std::size_t size, bool in_store) {
    return store_ != nullptr && in_store ? allocate_in_store(size) : arena_.allocate(size);
  }

  // False when the pointer is not a live block: nothing was done then.
  bool free(void *pointer);

  // Has the release hook told, when the block that holds the address is freed, that it was watched.
  BlockState watch(const void *address);

  // Whether all of the range lies in one live block.
  bool holds(const void *address, std::size_t length) const;

  // For the time of a fork, when nobody else may be inside.
  ShortLock &mutex() { return arena_.mutex(); }

  // Whether a live block of private memory begins there; size gets what was asked for.
  bool live_size(const void *block, std::size_t *size) const {
    return arena_.live_size(block, size);
  }

  void withhold(const void *address);
  ArenaStatistics statistics() const;
  bool set_limit(std::size_t bytes);

  struct Refusal : Arena::Refusal {
    std::string reason;  // a store's, in words
  };
  Refusal last_refusal() const;
  void note_refusal(std::size_t size) { arena_.note_refusal(size); }

 private:
  void *allocate_in_store(std::size_t size);
  bool is_in_store(const void *address) const;

  Arena arena_;
  store::Store *store_ = nullptr;
  Arena::ReleaseHook release_hook_ = nullptr;
  void *release_context_ = nullptr;
  std::uint64_t limit_ = 0;  // of a store, in this process
};

}  // namespace kelp
