// The replication cache of a database: the records that readers were given last, each once, as many
// as its capacity. The record entered longest ago gives way.
#pragma once

#include <cstdint>
#include <mutex>

#include "kelp/embed.h"
#include "parts/sequence.hpp"

namespace kelp {

class ReplicationCache {
 public:
  void set_capacity(std::uint32_t entries) { capacity_ = entries; }

  // True when the record is new here, so that its memory has to be watched. Throws bad_alloc.
  bool enter(kelp_table *table, kelp_record *record);

  bool next(std::uint64_t *position, kelp_cache_entry *entry) const;
  std::uint64_t dropped() const;
  void forget(const kelp_record *record);
  void forget_table(const kelp_table *table);
  void clear();

  // For the time of a fork, when nobody else may be inside.
  std::mutex &mutex() { return mutex_; }

 private:
  struct Details {
    std::uint64_t times = 0;
  };

  mutable std::mutex mutex_;
  RecordSequence<Details> records_;
  std::uint32_t capacity_ = 0;
  std::uint64_t dropped_ = 0;
};

}  // namespace kelp
