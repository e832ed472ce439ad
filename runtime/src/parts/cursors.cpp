// Cursors in the feeds: taking a place, moving, and what becomes of those that nobody moves any
// more.
#include <cstdlib>
#include <new>

#include "base/failure.hpp"
#include "parts/feed.hpp"
#include "store/store.hpp"

namespace kelp {

using store::CursorSlot;
using store::CursorTable;
using store::FeedState;

store::CursorTable *OwnCursors::cursors(bool make) {
  if (table_ == nullptr && make) {
    table_.reset(static_cast<CursorTable *>(std::calloc(1, sizeof(CursorTable))));
  }
  return table_.get();
}

void OwnCursors::Freed::operator()(CursorTable *table) const { std::free(table); }

namespace {

// A free slot: one that was given back, or the next that was never taken; null for none.
CursorSlot *free_slot(CursorTable &table) {
  for (std::uint32_t i = 0; i < store::kCursorSlots; ++i) {
    if (store::load(table.slots[i].process) != 0) continue;
    if (i >= table.used) __atomic_store_n(&table.used, i + 1, __ATOMIC_SEQ_CST);
    return &table.slots[i];
  }
  return nullptr;
}

}  // namespace

void Feeds::drop_ended(const FeedTable *feed) {
  each_cursor(feed, [&](CursorSlot &slot) {
    if (places_->has_ended(store::load(slot.process))) {
      __atomic_store_n(&slot.process, 0u, __ATOMIC_SEQ_CST);
    }
  });
}

std::int32_t Feeds::open(kelp_feed_cursor *cursor, FeedTable *feed, kelp_error *error) {
  if (const auto code = places_->lock_places(error)) return code;
  const struct Unlock {
    store::CursorPlaces *places;
    ~Unlock() { places->unlock_places(); }
  } unlock{places_};
  const std::lock_guard lock(mutex_);
  CursorTable *table = places_->cursors(true);
  if (table == nullptr) throw std::bad_alloc();
  drop_ended(feed);
  std::uint64_t bits = 0;
  each_cursor(
      feed, [&](const CursorSlot &slot) { bits |= std::uint64_t{1} << (slot.bit % kMostCursors); });
  if (bits == UINT64_MAX) {
    return fail(error, KELP_ERR_AGAIN,
                "kelp_feed_cursor_open: %zu cursors are open on the table, expected fewer",
                kMostCursors);
  }
  CursorSlot *slot = free_slot(*table);
  if (slot == nullptr) {
    return fail(error, KELP_ERR_AGAIN,
                "kelp_feed_cursor_open: %u cursors are open on the database, expected fewer",
                store::kCursorSlots);
  }
  open_.push_back(cursor);
  slot->bit = static_cast<std::uint32_t>(__builtin_ctzll(~bits));
  slot->feed = feed->id;
  slot->position = 0;
  slot->opened_at = feed->sequence;
  slot->author = cursor->author;
  __atomic_store_n(&slot->process, places_->own_mark(), __ATOMIC_SEQ_CST);
  cursor->feeds = this;
  cursor->slot = slot;
  cursor->table = feed->table;
  if (store_ != nullptr && store_->is_writing()) cursor->stamp = store_->transaction();
  return 0;
}

void Feeds::close(kelp_feed_cursor *cursor) {
  const std::lock_guard lock(mutex_);
  std::erase(open_, cursor);
  // A child of the process that opened the store has no part in its cursors.
  if (store_ != nullptr && !store_->is_own()) return;
  __atomic_store_n(&cursor->slot->process, 0u, __ATOMIC_SEQ_CST);
}

// The entry behind the cursor's position. Where the cursor does not know its entry any more it is
// looked for from both ends of the feed, since most cursors stand near one of them.
FeedEntry *Feeds::following(kelp_feed_cursor *cursor, const FeedTable *feed) const {
  const std::uint64_t position = cursor->slot->position;
  FeedEntry *found = feed->order.first;
  if (cursor->entry != nullptr && cursor->version == feed->version) {
    found = cursor->entry->order.next;
  } else {
    FeedEntry *behind = nullptr;
    FeedEntry *from_end = feed->order.last;
    for (;;) {
      if (found == nullptr || found->sequence > position) break;
      if (from_end == nullptr || from_end->sequence <= position) {
        found = behind;
        break;
      }
      behind = from_end;
      found = found->order.next;
      from_end = from_end->order.previous;
    }
  }
  while (found != nullptr && found->state == FeedState::expected) found = found->order.next;
  return found;
}

bool Feeds::next(kelp_feed_cursor *cursor, FeedLook *look) {
  const std::lock_guard lock(mutex_);
  if (store_ != nullptr && !store_->is_locked()) return false;
  const FeedTable *feed = find_feed(cursor);
  if (feed == nullptr) return false;
  FeedEntry *entry = following(cursor, feed);
  if (entry == nullptr) return false;
  CursorSlot &slot = *cursor->slot;
  const std::uint64_t bit = std::uint64_t{1} << (slot.bit % kMostCursors);
  const bool noted = entry->sequence > slot.opened_at;
  look->seen = noted && (entry->seen_by & bit) != 0;
  look->foreign = noted ? (entry->foreign_to & bit) != 0 : entry->author != slot.author;
  look->bulk = entry->bulk != 0;
  look->commit = entry->commit;
  look->change.table = feed->table;
  look->change.record = entry->record;
  look->change.sequence = entry->sequence;
  look->change.kind = entry->state != FeedState::present ? KELP_FEED_DESTROYED
                      : look->seen                       ? KELP_FEED_MODIFIED
                                                         : KELP_FEED_INSERTED;
  if (store_ != nullptr && store_->is_writing() && cursor->stamp != store_->transaction()) {
    cursor->stamp = store_->transaction();
    cursor->position_before = slot.position;
  }
  slot.position = entry->sequence;
  cursor->entry = entry;
  cursor->version = feed->version;
  return true;
}

bool Feeds::has_next(kelp_feed_cursor *cursor) {
  const std::lock_guard lock(mutex_);
  const FeedTable *feed = find_feed(cursor);
  return feed != nullptr && following(cursor, feed) != nullptr;
}

kelp_table *Feeds::table_of(const kelp_feed_cursor *cursor) const {
  const std::lock_guard lock(mutex_);
  const FeedTable *feed = find_feed(cursor);
  return feed == nullptr ? nullptr : feed->table;
}

void Feeds::undo_moves() {
  const std::lock_guard lock(mutex_);
  for (kelp_feed_cursor *cursor : open_) {
    if (cursor->stamp != store_->transaction()) continue;
    cursor->slot->position = cursor->position_before;
    const FeedTable *feed = find_feed(cursor);
    if (feed != nullptr)
      cursor->slot->opened_at = std::min(cursor->slot->opened_at, feed->sequence);
  }
}

CursorTable *Feeds::signals() {
  const std::lock_guard lock(mutex_);
  return places_->cursors(true);
}

std::uint32_t Feeds::commits() {
  const std::lock_guard lock(mutex_);
  const CursorTable *table = places_->cursors(true);
  return table == nullptr ? 0 : store::load(table->commits);
}

// A private database is heard of at once; a store's commits are told by the store.
void Feeds::signal() {
  CursorTable *table = places_->cursors(false);
  if (table == nullptr) return;
  __atomic_fetch_add(&table->commits, 1u, __ATOMIC_SEQ_CST);
  if (store::load(table->listeners) != 0) store::futex_wake(&table->commits);
}

void Feeds::end_transaction() {
  if (store_ != nullptr) return;
  const std::lock_guard lock(mutex_);
  ++own_commit_;
  signal();
}

}  // namespace kelp
