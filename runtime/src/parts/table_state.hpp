// What the runtime keeps for one table beside the table object: whether cursors follow it, its
// change feed. A table without any of it has none, and its runtime_state is null.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "kelp/table.h"
#include "parts/feed.hpp"

namespace kelp {

struct TableState {
  std::shared_ptr<Feed> feed;  // null while the table is not marked for replication
  bool implicit_write_cursor = false;

  static TableState *of(const kelp_table *table) {
    return static_cast<TableState *>(table->runtime_state);
  }
};

// The table states of a database, and which feeds know which record: that of its table, and those
// of tables that it was in before, until their cursors have seen it go.
class TableStates {
 public:
  // The table's state, null when it has none. The address need not be a table's.
  TableState *find(const kelp_table *table) const;

  // The table's state, made when it is missing. Throws bad_alloc.
  TableState *make(const kelp_table *table);

  // The record is known to the feed from now on. Throws bad_alloc.
  void note_record(const kelp_record *record, const std::shared_ptr<Feed> &feed);

  // The record is about to hang in a tree: the feeds that know it drop its mark.
  void record_linked(const kelp_record *record);

  // Whether there is anything to keep up with.
  bool empty() const { return count_.load(std::memory_order_relaxed) == 0; }

  // The memory of a table or a record has gone.
  void forget(const void *object);

  // For the time of a fork, when nobody else may be inside these and the feeds.
  void lock();
  void unlock();

 private:
  using Feeds = std::vector<std::shared_ptr<Feed>>;

  mutable std::mutex mutex_;
  std::unordered_map<const void *, std::unique_ptr<TableState>> states_;
  std::unordered_map<const void *, Feeds> record_feeds_;
  std::atomic<std::size_t> count_ = 0;  // of states
};

}  // namespace kelp
