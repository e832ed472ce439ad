// The change feed and its cursors.
#include "parts/feed.hpp"

#include <algorithm>

namespace kelp {

// A record that moves takes its mark along; one that is known needs no memory.
Feed::Records::Place Feed::move_to_end(kelp_table *table, kelp_record *record) {
  const auto known = records_.find(record);
  if (known == records_.end()) return records_.enter(table, record);
  if (known->second.details.state == State::gone) --gone_;
  if (known->second.details.state == State::marked) pending_.erase(known->first);
  return records_.enter(table, record);
}

void Feed::change(kelp_table *table, kelp_record *record) {
  const std::lock_guard lock(mutex_);
  const auto known = records_.find(record);
  const bool marked = known != records_.end() && known->second.details.state == State::marked;
  if (marked && (record->rec_flags & REC_PENDING_DESTROY) != 0) return;
  move_to_end(table, record)->second.details.state = State::present;
}

void Feed::destroy(kelp_table *table, kelp_record *record) {
  const std::lock_guard lock(mutex_);
  // First what may fail: a place in the order that comes next, whoever takes it.
  const auto mark = pending_.insert(records_.next()).first;
  try {
    move_to_end(table, record)->second.details.state = State::marked;
  } catch (...) {
    pending_.erase(mark);
    throw;
  }
}

void Feed::expect(kelp_table *table, kelp_record *record) {
  const std::lock_guard lock(mutex_);
  if (!records_.knows(record)) records_.enter(table, record);
}

void Feed::record_linked(const kelp_record *record) {
  const std::lock_guard lock(mutex_);
  const auto known = records_.find(record);
  if (known == records_.end() || known->second.details.state != State::marked) return;
  pending_.erase(known->first);
  known->second.details.state = State::gone;
  ++gone_;
}

void Feed::record_left(const kelp_record *record) {
  const std::lock_guard lock(mutex_);
  const auto known = records_.find(record);
  if (known == records_.end() || known->second.details.state == State::marked) return;
  if (known->second.details.state == State::gone) return;
  if (cursors_.empty() || known->second.details.state == State::expected) {
    records_.forget(record);
    return;
  }
  move_to_end(known->second.table, known->second.record)->second.details.state = State::gone;
  ++gone_;
}

void Feed::forget(const kelp_record *record) {
  const std::lock_guard lock(mutex_);
  const auto place = records_.find(record);
  if (place == records_.end()) return;
  if (place->second.details.state == State::gone) --gone_;
  pending_.erase(place->first);
  records_.forget(record);
}

void Feed::close() {
  const std::lock_guard lock(mutex_);
  records_ = {};
  pending_.clear();
  gone_ = 0;
  closed_ = true;
}

bool Feed::is_closed() const {
  const std::lock_guard lock(mutex_);
  return closed_;
}

bool Feed::next(kelp_feed_cursor *cursor, kelp_feed_change *change) {
  const std::lock_guard lock(mutex_);
  auto place = records_.after(cursor->position);
  while (place != records_.end() && place->second.details.state == State::expected) ++place;
  if (place == records_.end()) return false;
  Details &details = place->second.details;
  change->table = place->second.table;
  change->record = place->second.record;
  change->sequence = place->first;
  cursor->position = place->first;
  if (details.state != State::present) {
    change->kind = KELP_FEED_DESTROYED;
    details.seen_by &= ~cursor->bit;
    return true;
  }
  const bool shown_before = (details.seen_by & cursor->bit) != 0;
  change->kind = shown_before ? KELP_FEED_MODIFIED : KELP_FEED_INSERTED;
  details.seen_by |= cursor->bit;
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

bool Feed::has_cursors() const {
  const std::lock_guard lock(mutex_);
  return !cursors_.empty();
}

// The place that the slowest cursor has reached.
std::uint64_t Feed::passed() const {
  std::uint64_t slowest = UINT64_MAX;
  for (const kelp_feed_cursor *cursor : cursors_) slowest = std::min(slowest, cursor->position);
  return slowest;
}

kelp_record *Feed::take_passed(const kelp_table *table) {
  const std::lock_guard lock(mutex_);
  const std::uint64_t passed_by_all = passed();
  while (!pending_.empty() && *pending_.begin() <= passed_by_all) {
    const auto place = records_.find(*pending_.begin());
    kelp_record *record = place->second.record;
    pending_.erase(pending_.begin());
    records_.forget(record);
    // A program whose hooks are its own moves records between trees without the feed's knowing.
    const bool elsewhere = record->record_table != nullptr && record->record_table != table;
    if (!elsewhere && (record->rec_flags & REC_PENDING_DESTROY) != 0) return record;
  }
  return nullptr;
}

std::uint32_t Feed::marked() const {
  const std::lock_guard lock(mutex_);
  return static_cast<std::uint32_t>(pending_.size());
}

void Feed::tidy() {
  const std::lock_guard lock(mutex_);
  const std::uint64_t passed_by_all = passed();
  for (auto place = records_.after(0); gone_ != 0 && place != records_.end();) {
    const auto here = place++;
    if (here->first > passed_by_all) break;
    if (here->second.details.state != State::gone) continue;
    records_.forget(here->second.record);
    --gone_;
  }
}

}  // namespace kelp
