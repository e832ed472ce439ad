// Entering records in the replication cache and reading it.
#include "parts/cache.hpp"

#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"

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

void ReplicationCache::forget(const kelp_record *record) {
  const std::lock_guard lock(mutex_);
  records_.forget(record);
}

}  // namespace kelp

extern "C" void kelprepl_add_to_cache(kelp_handle *handle, uint32_t space_id, kelp_table *table,
                                      kelp_record *record, uint32_t *err) {
  (void)space_id;
  if (kelp::is_set(err)) return;
  if (table == nullptr || record == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return;
  }
  kelp_database &database = *handle->state->database;
  bool fresh = false;
  if (!kelp::without_exceptions([&] { fresh = database.cache.enter(table, record); })) {
    kelp::raise(handle, err, KELP_ERR_NO_MEMORY);
  }
  if (fresh) database.objects.watch(record);
}

extern "C" int32_t kelp_replication_cache_next(kelp_handle *handle, uint64_t *position,
                                               kelp_cache_entry *entry) {
  if (handle == nullptr || position == nullptr || entry == nullptr) return 0;
  return handle->state->database->cache.next(position, entry) ? 1 : 0;
}

extern "C" uint64_t kelp_replication_cache_dropped(const kelp_handle *handle) {
  return handle == nullptr ? 0 : handle->state->database->cache.dropped();
}
