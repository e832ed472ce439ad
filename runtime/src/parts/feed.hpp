// The change feeds of a database, one for each table that is marked for replication: each record
// that was inserted, changed or marked for destruction, once, at the place of its latest change.
// Cursors are places in it.
//
// Feeds and their entries lie in the database's memory, and what transactions do to them is undone
// with these. Cursors do not: readers move them. So what a cursor has seen is noted by whoever
// changes an entry next, from where the cursor stands then.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "kelp/embed.h"
#include "store/cursor_places.hpp"
#include "store/layout.hpp"
#include "store/memory.hpp"
#include "store/system.hpp"

namespace kelp {

namespace store {
class Store;
}

using store::FeedEntry;
using store::FeedTable;

// Who changes a record.
struct Author {
  std::uint64_t handle = 0;  // the handle's number, which no other of any process has
  bool bulk = false;         // it carries a bulk transfer
};

// A change as a cursor sees it.
struct FeedLook {
  kelp_feed_change change;
  std::uint64_t commit;
  bool seen;     // the cursor was shown the record as there before
  bool foreign;  // another handle than the cursor's had a part in it
  bool bulk;
};

// The cursors of a private database, made with the first one. Guarded by the feeds' lock.
class OwnCursors final : public store::CursorPlaces {
 public:
  store::CursorTable *cursors(bool make) override;
  std::uint32_t own_mark() const override { return 1; }
  bool has_ended(std::uint32_t) const override { return false; }
  std::int32_t lock_places(kelp_error *) override { return 0; }
  void unlock_places() override {}

 private:
  struct Freed {
    void operator()(store::CursorTable *table) const;
  };
  std::unique_ptr<store::CursorTable, Freed> table_;
};

class Feeds {
 public:
  // A null store is that of a private database.
  void attach(store::Memory &memory, store::Directory &directory, store::CursorPlaces &places,
              store::Store *store);

  // The table's feed, null when it has none; the address need not be a table's.
  FeedTable *find(const kelp_table *table) const;
  static FeedTable *of(const kelp_table *table) {
    return static_cast<FeedTable *>(table->runtime_state);
  }

  // The table's feed, made when it is missing. Throws bad_alloc.
  FeedTable *make(kelp_table *table);
  void set_implicit(FeedTable *feed, bool implicit);

  // The record was inserted or changed. One that is marked for destruction stays so, unless it has
  // lost its mark by being inserted anew.
  void change(FeedTable *feed, kelp_record *record, const Author &author);
  // The record was marked for destruction.
  void destroy(FeedTable *feed, kelp_record *record, const Author &author);
  // The record is about to be inserted: change will need no memory then. All three throw bad_alloc.
  void expect(FeedTable *feed, kelp_record *record, const Author &author);

  // The record is about to hang in a tree, of any table: its mark is gone.
  void record_linked(const kelp_record *record);
  // The record has left the tree of this table.
  void record_left(FeedTable *feed, const kelp_record *record, const Author &author);

  // The memory of a table or a record has gone.
  void forget(const void *object);

  static constexpr std::size_t kMostCursors = 64;

  // Opens a cursor in front of everything. 11 when there are too many, else as the error says.
  // Throws bad_alloc.
  std::int32_t open(kelp_feed_cursor *cursor, FeedTable *feed, kelp_error *error);
  void close(kelp_feed_cursor *cursor);

  // Moves a cursor over the next change.
  bool next(kelp_feed_cursor *cursor, FeedLook *look);
  // Whether there is one.
  bool has_next(kelp_feed_cursor *cursor);
  // Null when the cursor's table has gone.
  kelp_table *table_of(const kelp_feed_cursor *cursor) const;

  bool has_cursors(const FeedTable *feed);

  // Takes out the first record of the table that is marked for destruction and that every cursor
  // has passed; null when there is none. Marks that do not hold any more are passed over.
  kelp_record *take_passed(FeedTable *feed);
  // How many records are marked for destruction.
  std::uint32_t marked(const FeedTable *feed) const;
  // Forgets the records that left the tree and that every cursor has passed, and the cursors of
  // processes that have ended.
  void tidy(FeedTable *feed);

  // Whether there is anything to keep up with.
  bool empty() const { return directory_->feeds.count == 0; }

  // What the process did with its cursors in a transaction that was undone did not happen either.
  void undo_moves();

  // Where the word is that rises with each commit; null without memory.
  store::CursorTable *signals();
  // How many commits were heard of, as far as that is counted.
  std::uint32_t commits();
  // A write lock of a private database has ended.
  void end_transaction();

  // For the time of a fork, when nobody else may be inside.
  std::mutex &mutex() { return mutex_; }

 private:
  store::Index feeds() const { return {*memory_, directory_->feeds}; }
  store::Index entries() const { return {*memory_, directory_->feed_entries}; }

  FeedTable *find_feed(const void *table) const;
  FeedTable *find_feed(const kelp_feed_cursor *cursor) const;
  FeedEntry *find_entry(const FeedTable *feed, const kelp_record *record) const;
  FeedEntry *make_entry(FeedTable *feed, kelp_record *record);
  void append(FeedTable *feed, FeedEntry *entry);
  void move_to_end(FeedTable *feed, FeedEntry *entry, store::FeedState state, const Author &author);
  void note_cursors(const FeedTable *feed, FeedEntry *entry, const Author &author);
  void drop_state(FeedTable *feed, FeedEntry *entry);
  void erase(FeedEntry *entry);
  void link(store::FeedList &list, store::FeedLinks FeedEntry::*links, FeedEntry *entry);
  void unlink(store::FeedList &list, store::FeedLinks FeedEntry::*links, FeedEntry *entry);
  FeedEntry *following(kelp_feed_cursor *cursor, const FeedTable *feed) const;
  void forget_record(const kelp_record *record);
  void forget_table(FeedTable *feed);
  void changed(FeedTable *feed);
  void signal();
  std::uint64_t passed(const FeedTable *feed);
  void drop_ended(const FeedTable *feed);
  template <typename Visit>
  void each_cursor(const FeedTable *feed, Visit &&visit);
  template <typename Word>
  void set(Word &word, Word value) {
    memory_->set(word, value);
  }

  mutable std::mutex mutex_;
  store::Memory *memory_ = nullptr;
  store::Directory *directory_ = nullptr;
  store::CursorPlaces *places_ = nullptr;
  store::Store *store_ = nullptr;
  std::uint64_t own_commit_ = 1;  // of a private database: what the running transaction will be
  std::vector<kelp_feed_cursor *> open_;
};

template <typename Visit>
void Feeds::each_cursor(const FeedTable *feed, Visit &&visit) {
  store::CursorTable *table = places_->cursors(false);
  if (table == nullptr) return;
  const std::uint32_t used = std::min(store::load(table->used), store::kCursorSlots);
  for (std::uint32_t i = 0; i < used; ++i) {
    store::CursorSlot &slot = table->slots[i];
    if (store::load(slot.process) != 0 && slot.feed == feed->id) visit(slot);
  }
}

}  // namespace kelp

struct kelp_feed_cursor {
  kelp::Feeds *feeds = nullptr;
  std::uint64_t database = 0;  // its serial
  kelp::store::CursorSlot *slot = nullptr;
  const kelp_table *table = nullptr;
  // The entry passed last, as long as the feed has this version.
  kelp::FeedEntry *entry = nullptr;
  std::uint64_t version = 0;
  // Where it stood when the transaction of this stamp began.
  std::uint32_t stamp = 0;
  std::uint64_t position_before = 0;
  std::uint64_t author = 0;
};
