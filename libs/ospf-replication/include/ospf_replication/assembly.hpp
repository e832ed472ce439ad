// What one epoch of a site is, put together from messages as they come. It touches no store: what
// is wrong is refused here, and what is whole is handed on.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "ospf_replication/messages.hpp"
#include "ospf_replication/tree_rows.hpp"

namespace ospf_replication {

struct Had;

// A row as the sender has it, under its path.
struct Held {
  std::string path;
  std::size_t hash = 0;
  RowPlaces::Place place;
  Digest row;
  Luid luid{};
  std::uint32_t references = 0;
  bool is_gone = false;
  std::uint64_t sequence = 0;   // of the transaction that brought it, from 1
  Bytes image;                  // empty when what the follower has is the same
  const Had *coming = nullptr;  // what the follower is to have of it, while that is brought about
};

// What the follower has of a row.
struct Had {
  Digest row;  // as the sender had it
  Luid luid{};
  // Where it lies in the follower's tree; null for rows that this edition has no table for.
  const tree_exchange::TableRule *rule = nullptr;
  void *record = nullptr;
  bool is_made_here = false;  // the record is this process's
  Digest stored;
  std::uint64_t children = 0;  // rows right below it
};
using HadRows = std::unordered_map<std::string, Had, PathHash, SamePath>;
using HadRow = HadRows::value_type;

// A message that has been there before.
class Replayed : public MessageFault {
  using MessageFault::MessageFault;
};

// More than a follower holds.
class Oversized : public MessageFault {
  using MessageFault::MessageFault;
};

struct Limits {
  std::size_t message = largest_message;
  std::size_t bytes = std::size_t{1} << 30;  // of messages that wait for their commit
  std::size_t rows = 20'000'000;
};

// Rows in the order in which they were added, and by their paths.
class HeldRows {
 public:
  HeldRows() = default;
  HeldRows(const HeldRows &) = delete;
  HeldRows &operator=(const HeldRows &) = delete;

  std::size_t size() const { return count_; }
  // Null for a path without one.
  Held *find(const HashedPath &path) const;
  // Under a path that has none. All but the path is left from some other row.
  Held &add(const HashedPath &path);
  template <typename Act>
  void for_each(Act act) {
    for (std::size_t at = 0; at < count_; ++at) act(rows_[at]);
  }
  // Keeps memory for the next ones, though not for as many as a snapshot has.
  void clear();

 private:
  struct Slot {
    std::size_t hash = 0;
    Held *held = nullptr;
  };
  void enter(Held &held);
  void widen(std::size_t slots);

  std::deque<Held> rows_;  // the first of them are there
  std::size_t count_ = 0;
  std::vector<Slot> slots_;  // a power of two of them, at most half of which are taken
};

class Assembly {
 public:
  // On what the follower has, or from nothing: then what it has only saves keeping images.
  Assembly(const Epoch &epoch, const HadRows &had, const Sums &sums, bool from_nothing,
           std::uint64_t passed);

  const Epoch &epoch() const { return epoch_; }
  bool from_nothing() const { return from_nothing_; }
  // In the order in which their paths came first, which is the tree's.
  HeldRows &waiting() { return waiting_; }
  const HeldRows &waiting() const { return waiting_; }
  const Sums &sums() const { return sums_; }
  // The latest transaction that was whole.
  std::uint64_t passed() const { return passed_; }

  // Takes a row or a tombstone of this epoch. Throws MessageFault.
  void take(const HashedPath &path, const RowPlaces::Place &place, const Message &message,
            const Limits &limits);
  // Whether the rows are those that the commit marker tells of. Throws MessageFault for one that
  // has passed.
  bool is_whole(const Commit &commit) const;
  // What waits is in the store from now on.
  void has_passed(std::uint64_t sequence);

 private:
  void forget(const Held *held, const Had *had);

  Epoch epoch_;
  const HadRows &had_;
  Sums sums_;
  bool from_nothing_;
  std::uint64_t passed_;
  HeldRows waiting_;
  std::size_t bytes_ = 0;
};

}  // namespace ospf_replication
