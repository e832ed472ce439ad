// The change feed of one table: each record that was inserted, changed or marked for destruction,
// once, at the place of its latest change. Cursors are places in it.
//
// A feed is shared by its table and its open cursors: when the table goes first, the cursors find
// it closed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <set>
#include <vector>

#include "kelp/embed.h"
#include "parts/sequence.hpp"

namespace kelp {

class Feed {
 public:
  // The record was inserted or changed. One that is marked for destruction stays so, unless it has
  // lost its mark by being inserted anew.
  void change(kelp_table *table, kelp_record *record);
  // The record was marked for destruction.
  void destroy(kelp_table *table, kelp_record *record);
  // The record is about to be inserted: change will need no memory then. All three throw bad_alloc.
  void expect(kelp_table *table, kelp_record *record);

  // The record is about to hang in a tree, of this table or another: its mark is gone.
  void record_linked(const kelp_record *record);
  // The record has left the tree of this table.
  void record_left(const kelp_record *record);

  // The memory of the record has gone.
  void forget(const kelp_record *record);

  // The table has gone: nothing is left to show.
  void close();
  bool is_closed() const;

  // Moves a cursor over the next change.
  bool next(kelp_feed_cursor *cursor, kelp_feed_change *change);

  // False when kMostCursors are open already. Throws bad_alloc.
  bool add(kelp_feed_cursor *cursor);
  void remove(const kelp_feed_cursor *cursor);

  bool has_cursors() const;

  static constexpr std::size_t kMostCursors = 64;

  // Takes out the first record of the table that is marked for destruction and that every cursor
  // has passed; null when there is none. Marks that do not hold any more are passed over.
  kelp_record *take_passed(const kelp_table *table);

  // How many records are marked for destruction.
  std::uint32_t marked() const;

  // Forgets the records that left the tree and that every cursor has passed.
  void tidy();

  // For the time of a fork, when nobody else may be inside.
  std::mutex &mutex() { return mutex_; }

 private:
  enum class State : std::uint8_t {
    expected,  // not shown to anybody yet
    present,
    marked,  // for destruction
    gone     // out of the tree
  };
  struct Details {
    std::uint64_t seen_by = 0;  // one bit for each cursor that was shown the record as there
    State state = State::expected;
  };
  using Records = RecordSequence<Details>;

  Records::Place move_to_end(kelp_table *table, kelp_record *record);
  std::uint64_t passed() const;

  mutable std::mutex mutex_;
  Records records_;
  std::size_t gone_ = 0;             // records in this state
  std::set<std::uint64_t> pending_;  // sequences of the records marked for destruction
  std::vector<const kelp_feed_cursor *> cursors_;
  std::uint64_t bits_in_use_ = 0;
  bool closed_ = false;
};

}  // namespace kelp

struct kelp_feed_cursor {
  std::shared_ptr<kelp::Feed> feed;
  std::uint64_t position = 0;
  std::uint64_t bit = 0;  // its own among the feed's cursors
};
