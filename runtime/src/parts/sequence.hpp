// Records in the order of their latest entering, each once. The change feed and the replication
// cache are both made of this. A record whose memory goes is taken out (forget).
#pragma once

#include <cstdint>
#include <map>
#include <unordered_map>

#include "kelp/table.h"

namespace kelp {

template <typename Details>
class RecordSequence {
 public:
  struct Entry {
    kelp_table *table;
    kelp_record *record;
    Details details;
  };
  using Entries = std::map<std::uint64_t, Entry>;
  using Place = typename Entries::iterator;

  // Enters a record, or moves it to the end. Gives its new place. Throws bad_alloc.
  Place enter(kelp_table *table, kelp_record *record) {
    const auto known = places_.find(record);
    if (known != places_.end()) {
      auto node = entries_.extract(known->second);
      node.key() = ++last_;
      known->second = entries_.insert(entries_.end(), std::move(node));
      return known->second;
    }
    const auto place = entries_.emplace_hint(entries_.end(), last_ + 1, Entry{table, record, {}});
    try {
      places_.emplace(record, place);
    } catch (...) {
      entries_.erase(place);
      throw;
    }
    ++last_;
    return place;
  }

  // The place that the next record to enter or move gets.
  std::uint64_t next() const { return last_ + 1; }

  bool knows(const kelp_record *record) const { return places_.count(record) != 0; }

  Place find(const kelp_record *record) {
    const auto known = places_.find(record);
    return known == places_.end() ? entries_.end() : known->second;
  }

  Place find(std::uint64_t position) { return entries_.find(position); }

  void forget(const kelp_record *record) {
    const auto known = places_.find(record);
    if (known == places_.end()) return;
    entries_.erase(known->second);
    places_.erase(known);
  }

  // Takes all out; sequences go on rising.
  void clear() {
    entries_.clear();
    places_.clear();
  }

  const Entries &entries() const { return entries_; }
  Place end() { return entries_.end(); }
  // The first entry behind a place.
  Place after(std::uint64_t position) { return entries_.upper_bound(position); }
  typename Entries::const_iterator after(std::uint64_t position) const {
    return entries_.upper_bound(position);
  }

 private:
  Entries entries_;
  std::unordered_map<const kelp_record *, Place> places_;
  std::uint64_t last_ = 0;
};

}  // namespace kelp
