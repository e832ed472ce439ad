// Entering records in the replication cache and reading it.
#include "parts/cache.hpp"

#include <algorithm>
#include <bit>
#include <mutex>

namespace kelp {

// Twice as many places as there may be records, up to a bound; then the lists at the places get
// longer.
void ReplicationCache::make_places() {
  const std::uint64_t count = std::min(
      std::bit_ceil(std::max<std::uint64_t>(2 * std::uint64_t{capacity_}, 2)), kMostPlaces);
  slots_.resize(1);
  owned_places_.reset(new Place[count]());
  places_shift_ = 64 - static_cast<unsigned>(std::countr_zero(count));
  places_.store(owned_places_.get(), std::memory_order_release);
}

ReplicationCache::Number ReplicationCache::find(const void *record) const {
  Number number = owned_places_[place_of(record)].load(std::memory_order_relaxed);
  while (number != kNone && slots_[number].record != record) number = slots_[number].next;
  return number;
}

void ReplicationCache::unlink(Number number) {
  const Slot &gone = slot(number);
  slot(gone.older).newer = gone.newer;
  slot(gone.newer).older = gone.older;
}

void ReplicationCache::link_newest(Number number) {
  Slot &made = slot(number);
  Slot &ends = slot(kNone);
  made.older = ends.older;
  made.newer = kNone;
  slot(ends.older).newer = number;
  ends.older = number;
  made.sequence = ++last_;
}

// Takes a record out of the list at its place and of that by age.
void ReplicationCache::take_out(Number number) {
  Place &place = owned_places_[place_of(slot(number).record)];
  Number before = place.load(std::memory_order_relaxed);
  if (before == number) {
    place.store(slot(number).next, std::memory_order_relaxed);
  } else {
    while (slot(before).next != number) before = slot(before).next;
    slot(before).next = slot(number).next;
  }
  unlink(number);
  --count_;
}

void ReplicationCache::remove(Number number) {
  take_out(number);
  slot(number) = {};
  slot(number).next = free_;
  free_ = number;
}

// A slot that is in no list: the oldest record's when the cache is full. Whose place is looked at
// when the next one is taken is known now.
ReplicationCache::Number ReplicationCache::take_slot() {
  if (count_ >= capacity_) {
    const Number oldest = slot(kNone).newer;
    __builtin_prefetch(&owned_places_[place_of(slot(slot(oldest).newer).record)]);
    take_out(oldest);
    slot(oldest).times = 0;
    ++dropped_;
    return oldest;
  }
  if (free_ == kNone) {
    slots_.emplace_back();
    return static_cast<Number>(slots_.size() - 1);
  }
  const Number number = free_;
  free_ = slot(number).next;
  return number;
}

void ReplicationCache::enter(kelp_table *table, kelp_record *record) {
  const std::lock_guard lock(mutex_);
  if (capacity_ == 0) return;
  if (owned_places_ == nullptr) make_places();
  Number number = find(record);
  if (number != kNone) {
    unlink(number);
  } else {
    number = take_slot();
    Place &place = owned_places_[place_of(record)];
    slot(number).record = record;
    slot(number).next = place.load(std::memory_order_relaxed);
    place.store(number, std::memory_order_relaxed);
    ++count_;
  }
  slot(number).table = table;
  ++slot(number).times;
  link_newest(number);
}

// The first entry behind a position. Readers go on where they were; who asks for another place
// looks from the oldest on.
bool ReplicationCache::next(std::uint64_t *position, kelp_cache_entry *entry) const {
  const std::lock_guard lock(mutex_);
  if (owned_places_ == nullptr) return false;
  const bool goes_on =
      *position != 0 && read_last_ != kNone && slots_[read_last_].sequence == *position;
  Number number = slots_[goes_on ? read_last_ : kNone].newer;
  while (number != kNone && slots_[number].sequence <= *position) number = slots_[number].newer;
  if (number == kNone) return false;
  const Slot &found = slots_[number];
  *entry = {found.table, found.record, found.times, found.sequence};
  *position = found.sequence;
  read_last_ = number;
  return true;
}

std::uint64_t ReplicationCache::dropped() const {
  const std::lock_guard lock(mutex_);
  return dropped_;
}

void ReplicationCache::forget_record(const void *record) {
  const std::lock_guard lock(mutex_);
  if (const Number number = find(record); number != kNone) remove(number);
}

void ReplicationCache::forget_table(const kelp_table *table) {
  const std::lock_guard lock(mutex_);
  if (owned_places_ == nullptr) return;
  for (Number number = slot(kNone).newer; number != kNone;) {
    const Number here = number;
    number = slot(here).newer;
    if (slot(here).table == table) remove(here);
  }
}

void ReplicationCache::clear() {
  const std::lock_guard lock(mutex_);
  if (owned_places_ == nullptr) return;
  while (slot(kNone).newer != kNone) remove(slot(kNone).newer);
}

}  // namespace kelp
