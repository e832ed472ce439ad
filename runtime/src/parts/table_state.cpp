// Making table states, and dropping them with the memory of their tables.
#include "parts/table_state.hpp"

#include <algorithm>

namespace kelp {

TableState *TableStates::find(const kelp_table *table) const {
  if (empty()) return nullptr;
  const std::lock_guard lock(mutex_);
  const auto found = states_.find(table);
  return found == states_.end() ? nullptr : found->second.get();
}

TableState *TableStates::make(const kelp_table *table) {
  const std::lock_guard lock(mutex_);
  const auto known = states_.find(table);
  if (known != states_.end()) return known->second.get();
  auto fresh = std::make_unique<TableState>();
  TableState *made = fresh.get();
  states_.emplace(table, std::move(fresh));
  ++count_;
  return made;
}

void TableStates::note_record(const kelp_record *record, const std::shared_ptr<Feed> &feed) {
  const std::lock_guard lock(mutex_);
  Feeds &feeds = record_feeds_[record];
  if (std::find(feeds.begin(), feeds.end(), feed) != feeds.end()) return;
  // A table that was freed meanwhile has nothing to show any more.
  std::erase_if(feeds, [](const std::shared_ptr<Feed> &known) { return known->is_closed(); });
  feeds.push_back(feed);
}

void TableStates::record_linked(const kelp_record *record) {
  if (empty()) return;
  const std::lock_guard lock(mutex_);
  const auto known = record_feeds_.find(record);
  if (known == record_feeds_.end()) return;
  for (const std::shared_ptr<Feed> &feed : known->second) feed->record_linked(record);
}

void TableStates::forget(const void *object) {
  const std::lock_guard lock(mutex_);
  const auto record = record_feeds_.find(object);
  if (record != record_feeds_.end()) {
    for (const std::shared_ptr<Feed> &feed : record->second) {
      feed->forget(static_cast<const kelp_record *>(object));
    }
    record_feeds_.erase(record);
  }
  const auto state = states_.find(object);
  if (state == states_.end()) return;
  if (state->second->feed != nullptr) state->second->feed->close();
  states_.erase(state);
  --count_;
}

void TableStates::lock() {
  mutex_.lock();
  for (const auto &[table, state] : states_) {
    if (state->feed != nullptr) state->feed->mutex().lock();
  }
}

void TableStates::unlock() {
  for (const auto &[table, state] : states_) {
    if (state->feed != nullptr) state->feed->mutex().unlock();
  }
  mutex_.unlock();
}

}  // namespace kelp
