// The change feed and its cursors.
#include "parts/feed.hpp"

#include <algorithm>

namespace kelp {

void Feed::change(kelp_table *table, kelp_record *record) {
  const std::lock_guard lock(mutex_);
  const auto known = records_.find(record);
  if (known != records_.end() && known->second.details.destroyed) return;
  records_.enter(table, record);
}

void Feed::destroy(kelp_table *table, kelp_record *record) {
  const std::lock_guard lock(mutex_);
  const bool known = records_.knows(record);
  const auto place = records_.enter(table, record);
  try {
    pending_.insert(place->first);
  } catch (...) {
    if (!known) records_.forget(record);
    throw;
  }
  place->second.details.destroyed = true;
}

void Feed::forget(const kelp_record *record) {
  const std::lock_guard lock(mutex_);
  const auto place = records_.find(record);
  if (place == records_.end()) return;
  pending_.erase(place->first);
  records_.forget(record);
}

void Feed::close() {
  const std::lock_guard lock(mutex_);
  records_ = {};
  pending_.clear();
}

bool Feed::next(kelp_feed_cursor *cursor, kelp_feed_change *change) {
  const std::lock_guard lock(mutex_);
  const auto place = records_.after(cursor->position);
  if (place == records_.end()) return false;
  Details &details = place->second.details;
  change->table = place->second.table;
  change->record = place->second.record;
  change->sequence = place->first;
  if (details.destroyed) {
    change->kind = KELP_FEED_DESTROYED;
  } else {
    const bool shown_before = (details.seen_by & cursor->bit) != 0;
    change->kind = shown_before ? KELP_FEED_MODIFIED : KELP_FEED_INSERTED;
  }
  details.seen_by |= cursor->bit;
  cursor->position = place->first;
  return true;
}

bool Feed::add(kelp_feed_cursor *cursor) {
  const std::lock_guard lock(mutex_);
  if (cursors_.size() == kMostCursors) return false;
  cursors_.push_back(cursor);
  cursor->bit = ~bits_in_use_ & (bits_in_use_ + 1);  // the lowest free one
  bits_in_use_ |= cursor->bit;
  return true;
}

void Feed::remove(const kelp_feed_cursor *cursor) {
  const std::lock_guard lock(mutex_);
  std::erase(cursors_, cursor);
  bits_in_use_ &= ~cursor->bit;
  for (auto place = records_.after(0); place != records_.end(); ++place) {
    place->second.details.seen_by &= ~cursor->bit;
  }
}

std::vector<kelp_record *> Feed::take_passed(std::uint32_t *waiting) {
  const std::lock_guard lock(mutex_);
  std::uint64_t passed = UINT64_MAX;
  for (const kelp_feed_cursor *cursor : cursors_) passed = std::min(passed, cursor->position);
  std::vector<kelp_record *> taken;
  const auto end = pending_.upper_bound(passed);
  for (auto sequence = pending_.begin(); sequence != end; ++sequence) {
    taken.push_back(records_.entries().at(*sequence).record);
  }
  pending_.erase(pending_.begin(), end);
  for (const kelp_record *record : taken) records_.forget(record);
  *waiting = static_cast<std::uint32_t>(pending_.size());
  return taken;
}

}  // namespace kelp
