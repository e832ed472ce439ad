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
  // The record was inserted or changed. A record that is marked for destruction stays so.
  void change(kelp_table *table, kelp_record *record);
  // The record was marked for destruction. Both throw bad_alloc.
  void destroy(kelp_table *table, kelp_record *record);

  void forget(const kelp_record *record);

  // The table has gone: nothing is left to show.
  void close();

  // Moves a cursor over the next change.
  bool next(kelp_feed_cursor *cursor, kelp_feed_change *change);

  // False when kMostCursors are open already. Throws bad_alloc.
  bool add(kelp_feed_cursor *cursor);
  void remove(const kelp_feed_cursor *cursor);

  static constexpr std::size_t kMostCursors = 64;

  // Takes out the records marked for destruction that every cursor has passed, in the order of
  // their marking; waiting gets how many a cursor has still to pass. Throws bad_alloc.
  std::vector<kelp_record *> take_passed(std::uint32_t *waiting);

 private:
  struct Details {
    std::uint64_t seen_by = 0;  // one bit for each cursor that was shown the record
    bool destroyed = false;
  };
  using Records = RecordSequence<Details>;

  mutable std::mutex mutex_;
  Records records_;
  std::set<std::uint64_t> pending_;  // sequences of the records marked for destruction
  std::vector<const kelp_feed_cursor *> cursors_;
  std::uint64_t bits_in_use_ = 0;
};

}  // namespace kelp

struct kelp_feed_cursor {
  std::shared_ptr<kelp::Feed> feed;
  std::uint64_t position = 0;
  std::uint64_t bit = 0;  // its own among the feed's cursors
};
