// Making table states, and dropping them with the memory of their tables.
#include "parts/table_state.hpp"

namespace kelp {

TableState *TableStates::make(const kelp_table *table) {
  const std::lock_guard lock(mutex_);
  std::unique_ptr<TableState> &state = states_[table];
  if (state == nullptr) state = std::make_unique<TableState>();
  return state.get();
}

void TableStates::note_record(const kelp_record *record, const std::shared_ptr<Feed> &feed) {
  const std::lock_guard lock(mutex_);
  record_feeds_[record] = feed;
}

void TableStates::forget(const void *object) {
  const std::lock_guard lock(mutex_);
  const auto record = record_feeds_.find(object);
  if (record != record_feeds_.end()) {
    record->second->forget(static_cast<const kelp_record *>(object));
    record_feeds_.erase(record);
  }
  const auto state = states_.find(object);
  if (state != states_.end()) {
    if (state->second != nullptr && state->second->feed != nullptr) state->second->feed->close();
    states_.erase(state);
  }
}

}  // namespace kelp
