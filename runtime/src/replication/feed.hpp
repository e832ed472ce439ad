// The change feed of one table: each record that was inserted, changed or marked for destruction,
// once, at the place of its latest change. Cursors are places in it.
//
// A feed is shared by its table and its open cursors: when the table goes first, the cursors find
// it closed.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <set>
#include <vector>

#include "kelp/embed.h"
#include "replication/sequence.hpp"

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

  // Moves a cursor's position over the next change.
  bool next(std::uint64_t *position, kelp_feed_change *change) const;

  void add(const kelp_feed_cursor *cursor);
  void remove(const kelp_feed_cursor *cursor);

  // Takes out the records marked for destruction that every cursor has passed, in the order of
  // their marking; waiting gets how many a cursor has still to pass. Throws bad_alloc.
  std::vector<kelp_record *> take_passed(std::uint32_t *waiting);

 private:
  struct Details {
    std::uint64_t first = 0;  // the sequence at which the record came in
    bool destroyed = false;
  };
  using Records = RecordSequence<Details>;

  void note_first(Records::Entries::iterator place);

  mutable std::mutex mutex_;
  Records records_;
  std::set<std::uint64_t> pending_;  // sequences of the records marked for destruction
  std::vector<const kelp_feed_cursor *> cursors_;
};

}  // namespace kelp

struct kelp_feed_cursor {
  std::shared_ptr<kelp::Feed> feed;
  std::uint64_t position = 0;
};
