// Entering records in the replication cache and reading it.
#include "parts/cache.hpp"

namespace kelp {

bool ReplicationCache::enter(kelp_table *table, kelp_record *record) {
  const std::lock_guard lock(mutex_);
  if (capacity_ == 0) return false;
  const bool fresh = !records_.knows(record);
  if (fresh && records_.entries().size() >= capacity_) {
    records_.forget(records_.entries().begin()->second.record);
    ++dropped_;
  }
  const auto place = records_.enter(table, record);
  place->second.table = table;
  ++place->second.details.times;
  return fresh;
}

bool ReplicationCache::next(std::uint64_t *position, kelp_cache_entry *entry) const {
  const std::lock_guard lock(mutex_);
  const auto place = records_.after(*position);
  if (place == records_.entries().end()) return false;
  *entry = {place->second.table, place->second.record, place->second.details.times, place->first};
  *position = place->first;
  return true;
}

std::uint64_t ReplicationCache::dropped() const {
  const std::lock_guard lock(mutex_);
  return dropped_;
}

void ReplicationCache::clear() {
  const std::lock_guard lock(mutex_);
  records_.clear();
}

void ReplicationCache::forget(const kelp_record *record) {
  const std::lock_guard lock(mutex_);
  records_.forget(record);
}

void ReplicationCache::forget_table(const kelp_table *table) {
  const std::lock_guard lock(mutex_);
  for (auto place = records_.after(0); place != records_.end();) {
    const auto here = place++;
    if (here->second.table == table) records_.forget(here->second.record);
  }
}

}  // namespace kelp
