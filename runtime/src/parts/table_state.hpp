// What the runtime keeps for one table beside the table object: whether cursors follow it, its
// change feed, and the counts of its records by tenant and source. A table without any of it has
// none, and its runtime_state is null.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "kelp/table.h"
#include "parts/feed.hpp"

namespace kelp {

struct TableState {
  std::shared_ptr<Feed> feed;  // null while the table is not marked for replication
  bool implicit_write_cursor = false;
  std::map<std::pair<std::uint16_t, std::uint8_t>, std::uint32_t> counts;  // by tenant and source

  static TableState *of(const kelp_table *table) {
    return static_cast<TableState *>(table->runtime_state);
  }
};

// The table states of a database, and which feed knows which record.
class TableStates {
 public:
  // The table's state, made when it is missing. Throws bad_alloc.
  TableState *make(const kelp_table *table);

  // Throws bad_alloc.
  void note_record(const kelp_record *record, const std::shared_ptr<Feed> &feed);

  // The memory of a table or a record has gone.
  void forget(const void *object);

 private:
  std::mutex mutex_;
  std::unordered_map<const void *, std::unique_ptr<TableState>> states_;
  std::unordered_map<const void *, std::shared_ptr<Feed>> record_feeds_;
};

}  // namespace kelp
