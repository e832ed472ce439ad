// What one epoch of a site is, put together from messages as they come. It touches no store: what
// is wrong is refused here, and what is whole is handed on.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ospf_replication/messages.hpp"

namespace ospf_replication {

// A row as the sender has it.
struct Held {
  Digest row;
  Luid luid{};
  std::uint32_t references = 0;
  bool is_gone = false;
  std::uint64_t sequence = 0;  // of the transaction that brought it, from 1
  Bytes image;                 // empty when what the follower has is the same
};

// What the follower has of a row.
struct Had {
  Digest row;  // as the sender had it
  Luid luid{};
  // Where it lies in the follower's tree; null for rows that this edition has no table for.
  const tree_exchange::TableRule *rule = nullptr;
  void *record = nullptr;
  Digest stored;
  std::uint64_t children = 0;  // rows right below it
};
using HadRows = std::unordered_map<std::string, Had>;

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

class Assembly {
 public:
  // On what the follower has, or from nothing: then what it has only saves keeping images.
  Assembly(const Epoch &epoch, const HadRows &had, const Sums &sums, bool from_nothing,
           std::uint64_t passed);

  const Epoch &epoch() const { return epoch_; }
  bool from_nothing() const { return from_nothing_; }
  using Entry = std::pair<const std::string, Held>;
  const std::unordered_map<std::string, Held> &waiting() const { return waiting_; }
  // The same in the order in which their paths came first, which is the tree's.
  const std::vector<const Entry *> &in_order() const { return in_order_; }
  const Sums &sums() const { return sums_; }
  // The latest transaction that was whole.
  std::uint64_t passed() const { return passed_; }

  // Takes a row or a tombstone of this epoch. Throws MessageFault.
  void take(const std::string &path, const Message &message, const Limits &limits);
  // Whether the rows are those that the commit marker tells of. Throws MessageFault for one that
  // has passed.
  bool is_whole(const Commit &commit) const;
  // What waits is in the store from now on.
  void has_passed(std::uint64_t sequence);

 private:
  void forget(const Held &held, const Had *had);

  Epoch epoch_;
  const HadRows &had_;
  Sums sums_;
  bool from_nothing_;
  std::uint64_t passed_;
  std::unordered_map<std::string, Held> waiting_;
  std::vector<const Entry *> in_order_;
  std::size_t bytes_ = 0;
};

}  // namespace ospf_replication
