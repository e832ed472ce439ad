// The memory of a private store: blocks of any size out of large chunks, without a call of the
// system's allocator for each.
//
// Small blocks come from 64 KiB spans of equal slots, one size class to a span; blocks above
// kLargestSlot are taken from the system directly, each at its size. Each slot has a mark, so
// that a block is never freed twice and the runtime learns when memory goes beside which it keeps
// something (watch). Freed memory is poisoned for the address sanitizer, and so is the part of a
// slot beyond what was asked for. It has a lock of its own; under it the release hook runs, which
// therefore must not call back into the arena.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "parts/short_lock.hpp"
#include "store/size_class.hpp"

namespace kelp {

struct ArenaStatistics {
  std::uint64_t live_allocations = 0;
  std::uint64_t live_bytes = 0;
  std::uint64_t used_bytes = 0;
  std::uint64_t peak_used_bytes = 0;
  std::uint64_t reserved_bytes = 0;
  std::uint64_t limit_bytes = 0;
  std::uint64_t total_allocations = 0;
  std::uint64_t failed_allocations = 0;
};

enum class BlockState { foreign, dead, live };

class Arena {
 public:
  // Called with a block just before it is freed.
  using ReleaseHook = void (*)(void *context, const void *block, std::size_t size, bool watched);

  static constexpr std::size_t kLargestBlock = std::size_t{1} << 38;  // 256 GiB

  Arena() = default;
  Arena(const Arena &) = delete;
  Arena &operator=(const Arena &) = delete;
  ~Arena();

  void set_release_hook(ReleaseHook hook, void *context);

  // A block of at least size bytes, aligned to 16; null above kLargestBlock, or when the limit or
  // the system refuses. A block of 0 bytes has an address of its own.
  void *allocate(std::size_t size);

  // False when the pointer is not a live block of this arena: nothing was done then.
  bool free(void *pointer);

  // Has the release hook told, when the block that holds the address is freed, that it was watched.
  BlockState watch(const void *address);

  // Whether all of the range lies in one live block.
  bool holds(const void *address, std::size_t length) const;

  // Whether a live block begins there; size gets what was asked for.
  bool live_size(const void *block, std::size_t *size) const;

  // Required: keeps the address, and those around it, out of every later arena of the process. A
  // module remembers where a block lies that it keeps under a key, and asks a store whether that
  // lies in it; one at the addresses of an earlier store would say yes.
  void withhold(const void *address);

  ArenaStatistics statistics() const;

  // False, with the limit as it was, when more is used than bytes. 0 is no limit.
  bool set_limit(std::size_t bytes);

  // How the last refused allocation came about.
  struct Refusal {
    std::size_t asked = 0;
    std::uint64_t used = 0;
    std::uint64_t limit = 0;  // 0: the system had none
    bool asked_any = false;   // whether one was refused at all
  };
  Refusal last_refusal() const;
  void note_refusal(std::size_t size);

  // For the time of a fork, when nobody else may be inside.
  ShortLock &mutex() { return mutex_; }

 private:
  struct Span;
  struct Chunk;
  struct Block;  // a block that was found by an address

  static constexpr std::size_t kChunkBytes = std::size_t{1} << 20;
  static constexpr std::size_t kSpanBytes = store::kSpanBytes;
  static constexpr std::size_t kSpansPerChunk = kChunkBytes / kSpanBytes;

  void *take_slot(Span *span, std::size_t size);
  void *allocate_by_steps(std::size_t size);
  void *allocate_slot(std::size_t size, std::size_t class_index);
  void *allocate_large(std::size_t size);
  Span *begin_span(std::size_t class_index);
  Span *take_free_span();
  void retire_span(Span *span);
  Chunk *add_chunk(std::size_t bytes, bool large);
  void drop_large(Chunk *chunk);
  static void end_chunk(Chunk *chunk);
  Chunk *chunk_of(const void *address) const;
  static std::size_t place_of(std::uintptr_t number, std::size_t places);
  void enter_chunk(Chunk *chunk);
  bool find(const void *address, Block *block) const;
  bool within_limit(std::size_t bytes) const;
  void count_in(std::size_t asked, std::size_t used);
  void count_out(std::size_t asked, std::size_t used);
  void note_peak();
  void refuse(std::size_t asked);

  mutable ShortLock mutex_;
  std::vector<Chunk *> chunks_;  // an open table by address / kChunkBytes, at most half full
  std::size_t chunk_count_ = 0;
  std::map<std::uintptr_t, Chunk *> large_;    // by address
  Span *available_[store::kClasses] = {};      // spans with a free slot
  std::uint32_t spans_[store::kClasses] = {};  // how many there are
  Span *free_spans_ = nullptr;
  ArenaStatistics statistics_;  // the peak up to what was freed last, without total_allocations
  std::uint64_t freed_ = 0;
  Refusal refusal_;
  ReleaseHook release_hook_ = nullptr;
  void *release_context_ = nullptr;
};

}  // namespace kelp
