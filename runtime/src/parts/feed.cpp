// The change feeds: entering records, and moving, ending and forgetting entries.
#include "parts/feed.hpp"

#include <algorithm>
#include <cstdlib>
#include <new>

#include "store/store.hpp"

namespace kelp {

using store::FeedLinks;
using store::FeedList;
using store::FeedState;

namespace {

std::uint64_t hash_of_followed(const void *object) {
  return store::mix(reinterpret_cast<std::uintptr_t>(object));
}

}  // namespace

void Feeds::attach(store::Memory &memory, store::Directory &directory, store::CursorPlaces &places,
                   store::Store *store) {
  memory_ = &memory;
  directory_ = &directory;
  places_ = &places;
  store_ = store;
}

// --- finding ---

FeedTable *Feeds::find_feed(const void *table) const {
  return feeds().find<FeedTable>(hash_of_followed(table),
                                 [&](const FeedTable &feed) { return feed.table == table; });
}

FeedTable *Feeds::find_feed(const kelp_feed_cursor *cursor) const {
  FeedTable *feed = find_feed(cursor->table);
  return feed != nullptr && feed->id == cursor->slot->feed ? feed : nullptr;
}

FeedEntry *Feeds::find_entry(const FeedTable *feed, const kelp_record *record) const {
  return entries().find<FeedEntry>(hash_of_followed(record), [&](const FeedEntry &entry) {
    return entry.record == record && entry.feed == feed;
  });
}

FeedTable *Feeds::find(const kelp_table *table) const {
  if (empty()) return nullptr;
  const std::lock_guard lock(mutex_);
  return find_feed(table);
}

// --- making ---

FeedTable *Feeds::make(kelp_table *table) {
  const std::lock_guard lock(mutex_);
  if (FeedTable *known = find_feed(table)) return known;
  auto *feed = static_cast<FeedTable *>(memory_->take(sizeof(FeedTable)));
  if (feed == nullptr) throw std::bad_alloc();
  *feed = {};
  feed->table = table;
  // A number that a rollback takes back is not given again: its transaction's stamp is not.
  const std::uint64_t number = directory_->next_feed + 1;
  feed->id = number ^ (store_ == nullptr ? 0 : std::uint64_t{store_->transaction()} << 32);
  try {
    feeds().insert(&feed->by_table, hash_of_followed(table));
  } catch (...) {
    memory_->give_back(feed);
    throw;
  }
  set(directory_->next_feed, number);
  return feed;
}

void Feeds::set_implicit(FeedTable *feed, bool implicit) {
  set(feed->implicit_write_cursor, implicit ? 1u : 0u);
}

FeedEntry *Feeds::make_entry(FeedTable *feed, kelp_record *record) {
  auto *entry = static_cast<FeedEntry *>(memory_->take(sizeof(FeedEntry)));
  if (entry == nullptr) throw std::bad_alloc();
  *entry = {};
  entry->feed = feed;
  entry->record = record;
  try {
    entries().insert(&entry->by_record, hash_of_followed(record));
  } catch (...) {
    memory_->give_back(entry);
    throw;
  }
  append(feed, entry);
  return entry;
}

// --- the order ---

void Feeds::link(FeedList &list, FeedLinks FeedEntry::*links, FeedEntry *entry) {
  memory_->touch(&(entry->*links), sizeof(FeedLinks));
  entry->*links = {nullptr, list.last};
  if (list.last == nullptr) {
    set(list.first, entry);
  } else {
    set((list.last->*links).next, entry);
  }
  set(list.last, entry);
}

void Feeds::unlink(FeedList &list, FeedLinks FeedEntry::*links, FeedEntry *entry) {
  const FeedLinks found = entry->*links;
  if (found.previous == nullptr) {
    set(list.first, found.next);
  } else {
    set((found.previous->*links).next, found.next);
  }
  if (found.next == nullptr) {
    set(list.last, found.previous);
  } else {
    set((found.next->*links).previous, found.previous);
  }
}

// Whatever cursors know of the order does not hold any more.
void Feeds::changed(FeedTable *feed) {
  const std::uint64_t stamp = store_ == nullptr ? 0 : std::uint64_t{store_->transaction()} << 32;
  set(feed->version, std::max(feed->version + 1, stamp));
  if (store_ == nullptr) signal();
}

void Feeds::append(FeedTable *feed, FeedEntry *entry) {
  set(feed->sequence, feed->sequence + 1);
  set(entry->sequence, feed->sequence);
  link(feed->order, &FeedEntry::order, entry);
  changed(feed);
}

// What each cursor has seen of the entry that is about to move: all, when it has passed the entry.
void Feeds::note_cursors(const FeedTable *feed, FeedEntry *entry, const Author &author) {
  std::uint64_t seen = 0;
  std::uint64_t foreign = 0;
  const bool fresh = entry->state == FeedState::expected;
  each_cursor(feed, [&](const store::CursorSlot &slot) {
    const std::uint64_t bit = std::uint64_t{1} << (slot.bit % kMostCursors);
    const bool noted = entry->sequence > slot.opened_at;
    const bool is_passed = slot.position >= entry->sequence;
    const bool seen_before = noted && (entry->seen_by & bit) != 0;
    const bool missed = noted ? (entry->foreign_to & bit) != 0 : entry->author != slot.author;
    if (!fresh && (is_passed ? entry->state == FeedState::present : seen_before)) seen |= bit;
    if (slot.author != author.handle || (!fresh && !is_passed && missed)) foreign |= bit;
  });
  set(entry->seen_by, seen);
  set(entry->foreign_to, foreign);
}

// The entry leaves the state that it is in, and what counts or links it there.
void Feeds::drop_state(FeedTable *feed, FeedEntry *entry) {
  if (entry->state == FeedState::gone) set(feed->gone, feed->gone - 1);
  if (entry->state != FeedState::marked) return;
  unlink(feed->waiting, &FeedEntry::waiting, entry);
  set(feed->marked, feed->marked - 1);
}

void Feeds::move_to_end(FeedTable *feed, FeedEntry *entry, FeedState state, const Author &author) {
  note_cursors(feed, entry, author);
  drop_state(feed, entry);
  unlink(feed->order, &FeedEntry::order, entry);
  append(feed, entry);
  set(entry->state, state);
  set(entry->author, author.handle);
  set(entry->bulk, author.bulk ? 1u : 0u);
  set(entry->commit, store_ == nullptr ? own_commit_ : store_->head().sequence + 1);
  if (state == FeedState::gone) set(feed->gone, feed->gone + 1);
  if (state != FeedState::marked) return;
  link(feed->waiting, &FeedEntry::waiting, entry);
  set(feed->marked, feed->marked + 1);
}

void Feeds::erase(FeedEntry *entry) {
  FeedTable *feed = entry->feed;
  drop_state(feed, entry);
  unlink(feed->order, &FeedEntry::order, entry);
  entries().remove(&entry->by_record);
  memory_->give_back(entry);
  changed(feed);
}

// --- what happens to records ---

void Feeds::change(FeedTable *feed, kelp_record *record, const Author &author) {
  const std::lock_guard lock(mutex_);
  FeedEntry *entry = find_entry(feed, record);
  if (entry == nullptr) entry = make_entry(feed, record);
  const bool marked = entry->state == FeedState::marked;
  if (marked && (record->rec_flags & REC_PENDING_DESTROY) != 0) return;
  move_to_end(feed, entry, FeedState::present, author);
}

void Feeds::destroy(FeedTable *feed, kelp_record *record, const Author &author) {
  const std::lock_guard lock(mutex_);
  FeedEntry *entry = find_entry(feed, record);
  if (entry == nullptr) entry = make_entry(feed, record);
  move_to_end(feed, entry, FeedState::marked, author);
}

void Feeds::expect(FeedTable *feed, kelp_record *record, const Author &author) {
  const std::lock_guard lock(mutex_);
  if (find_entry(feed, record) != nullptr) return;
  set(make_entry(feed, record)->author, author.handle);
}

void Feeds::record_linked(const kelp_record *record) {
  if (empty()) return;
  const std::lock_guard lock(mutex_);
  const auto is_marked = [&](const FeedEntry &entry) {
    return entry.record == record && entry.state == FeedState::marked;
  };
  while (FeedEntry *entry = entries().find<FeedEntry>(hash_of_followed(record), is_marked)) {
    drop_state(entry->feed, entry);
    set(entry->state, FeedState::gone);
    set(entry->feed->gone, entry->feed->gone + 1);
    changed(entry->feed);
  }
}

void Feeds::record_left(FeedTable *feed, const kelp_record *record, const Author &author) {
  const std::lock_guard lock(mutex_);
  FeedEntry *entry = find_entry(feed, record);
  if (entry == nullptr || entry->state == FeedState::marked || entry->state == FeedState::gone) {
    return;
  }
  bool followed = false;
  each_cursor(feed, [&](const store::CursorSlot &) { followed = true; });
  if (!followed || entry->state == FeedState::expected) {
    erase(entry);
  } else {
    move_to_end(feed, entry, FeedState::gone, author);
  }
}

// --- forgetting ---

void Feeds::forget_record(const kelp_record *record) {
  if (directory_->feed_entries.count == 0) return;
  const auto is_of_record = [&](const FeedEntry &entry) { return entry.record == record; };
  while (FeedEntry *entry = entries().find<FeedEntry>(hash_of_followed(record), is_of_record)) {
    erase(entry);
  }
}

void Feeds::forget_table(FeedTable *feed) {
  while (feed->order.first != nullptr) erase(feed->order.first);
  feeds().remove(&feed->by_table);
  memory_->give_back(feed);
}

void Feeds::forget(const void *object) {
  if (empty()) return;
  const std::lock_guard lock(mutex_);
  forget_record(static_cast<const kelp_record *>(object));
  if (FeedTable *feed = find_feed(object)) forget_table(feed);
}

// --- the collector's questions ---

// The place that the slowest cursor has reached.
std::uint64_t Feeds::passed(const FeedTable *feed) {
  std::uint64_t slowest = UINT64_MAX;
  each_cursor(feed,
              [&](const store::CursorSlot &slot) { slowest = std::min(slowest, slot.position); });
  return slowest;
}

bool Feeds::has_cursors(const FeedTable *feed) {
  const std::lock_guard lock(mutex_);
  drop_ended(feed);
  return passed(feed) != UINT64_MAX;
}

kelp_record *Feeds::take_passed(FeedTable *feed) {
  const std::lock_guard lock(mutex_);
  const std::uint64_t passed_by_all = passed(feed);
  while (feed->waiting.first != nullptr && feed->waiting.first->sequence <= passed_by_all) {
    kelp_record *record = feed->waiting.first->record;
    erase(feed->waiting.first);
    // A program whose hooks are its own moves records between trees without the feed's knowing.
    const bool elsewhere = record->record_table != nullptr && record->record_table != feed->table;
    if (!elsewhere && (record->rec_flags & REC_PENDING_DESTROY) != 0) return record;
  }
  return nullptr;
}

std::uint32_t Feeds::marked(const FeedTable *feed) const {
  const std::lock_guard lock(mutex_);
  return static_cast<std::uint32_t>(feed->marked);
}

void Feeds::tidy(FeedTable *feed) {
  const std::lock_guard lock(mutex_);
  drop_ended(feed);
  const std::uint64_t passed_by_all = passed(feed);
  for (FeedEntry *entry = feed->order.first; entry != nullptr && feed->gone != 0;) {
    FeedEntry *here = entry;
    entry = entry->order.next;
    if (here->sequence > passed_by_all) break;
    if (here->state == FeedState::gone) erase(here);
  }
}

}  // namespace kelp
