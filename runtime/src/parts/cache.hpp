// The replication cache of a database: the records that readers were given last, each once, as many
// as its capacity. The record entered longest ago gives way.
//
// Every step of a reader enters a record, and every freed block is asked for here. So it is flat:
// an array of slots that hang in one list by the order of their entering, and a table of the slots
// by their records, made once, which says without a lock that a block was never entered.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "kelp/embed.h"
#include "parts/short_lock.hpp"

namespace kelp {

class ReplicationCache {
 public:
  // Required: before the first record is entered.
  void set_capacity(std::uint32_t entries) { capacity_ = entries; }

  // Throws bad_alloc.
  void enter(kelp_table *table, kelp_record *record);

  bool next(std::uint64_t *position, kelp_cache_entry *entry) const;
  std::uint64_t dropped() const;

  // The memory of what may be a record has gone.
  void forget(const void *block) {
    const Place *places = places_.load(std::memory_order_acquire);
    if (places == nullptr || places[place_of(block)].load(std::memory_order_relaxed) == kNone)
      return;
    forget_record(block);
  }
  void forget_table(const kelp_table *table);
  void clear();

  // For the time of a fork, when nobody else may be inside.
  ShortLock &mutex() { return mutex_; }

 private:
  using Number = std::uint32_t;       // of a slot, from 1
  using Place = std::atomic<Number>;  // the first slot of those whose records fall there
  static constexpr Number kNone = 0;
  static constexpr std::uint64_t kMostPlaces = std::uint64_t{1} << 16;

  struct Slot {
    kelp_table *table = nullptr;
    kelp_record *record = nullptr;
    std::uint64_t times = 0;
    std::uint64_t sequence = 0;
    Number newer = kNone;
    Number older = kNone;
    Number next = kNone;  // at the same place, or free
  };

  std::size_t place_of(const void *record) const {
    const auto value = reinterpret_cast<std::uintptr_t>(record);
    return (value >> 4) * UINT64_C(0x9E3779B97F4A7C15) >> places_shift_;
  }
  Slot &slot(Number number) { return slots_[number]; }
  Number find(const void *record) const;
  Number take_slot();
  void make_places();
  void forget_record(const void *record);
  void unlink(Number number);
  void link_newest(Number number);
  void take_out(Number number);
  void remove(Number number);

  mutable ShortLock mutex_;
  std::atomic<Place *> places_{nullptr};
  std::unique_ptr<Place[]> owned_places_;
  unsigned places_shift_ = 63;
  std::vector<Slot> slots_;  // the first is nobody's: newest and oldest hang there
  Number free_ = kNone;
  mutable Number read_last_ = kNone;  // where a reader that comes again goes on
  std::uint32_t count_ = 0;
  std::uint64_t last_ = 0;
  std::uint32_t capacity_ = 0;
  std::uint64_t dropped_ = 0;
};

}  // namespace kelp
