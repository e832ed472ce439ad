// Sends what changes in a store: the difference between what the bucket holds and what the tree
// holds at one moment is one transaction. So a sender that was away, or whose engine was, catches
// up in one step. Which rows may differ is what the store tells of its commits. Of a large
// transaction some messages at a time are made, each time under a read lock and with what was
// committed meanwhile, until nothing is left.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "ospf_replication/carrier.hpp"
#include "ospf_replication/subjects.hpp"
#include "ospf_replication/tree_watch.hpp"
#include "ospf_tables/session.hpp"

namespace ospf_replication {

struct SenderReport {
  Stamp stamp;  // of the latest transaction that the bucket has
  std::uint64_t rows = 0;
  std::uint64_t transactions = 0;
  std::uint64_t snapshots = 0;
  std::uint64_t changed = 0;  // messages of rows that were sent
};

class Sender {
 public:
  Sender(ospf_tables::Session &session, Outlet &outlet, const std::string &site)
      : session_(session), outlet_(outlet), subjects_(site), watch_(session) {}

  // Looks at the store and the bucket, and sends what is due. Gives whether anything was sent.
  // Throws CarrierFailure, after which the next turn sends a snapshot, Refused and LibraryFailure.
  bool turn();

  const SenderReport &report() const { return report_; }
  // Why the latest snapshot was sent.
  const std::string &reason() const { return reason_; }

 private:
  using Clock = std::chrono::steady_clock;
  struct Sent {
    Digest stored;
    Digest row;
    Luid luid{};
    std::uint64_t epoch = 0;  // the number of the one in which it was sent
    const void *record = nullptr;
    std::uint64_t seen = 0;   // the look that found it
    std::uint64_t went = 0;   // the look that found it gone
    bool is_counted = false;  // in the sums
  };

  void judge_bucket();
  void begin_epoch();
  bool send(bool all);
  void send_pieces(bool all, std::uint32_t &changed);
  void gather(std::vector<Letter> &letters);
  void look_at_row(const TreeRow &row, std::vector<Letter> &letters);
  void gather_row(const TreeRow &row, std::vector<Letter> &letters);
  void gather_gone(std::vector<Letter> &letters);
  bool forget_gone(const std::string &path, const Sent &sent, std::vector<Letter> &letters);
  bool is_full(const std::vector<Letter> &letters) const { return letters.size() >= piece_; }
  void leave(const Sent &sent);
  void need_snapshot(const std::string &reason);

  ospf_tables::Session &session_;
  Outlet &outlet_;
  Subjects subjects_;
  TreeWatch watch_;
  std::unordered_map<std::string, Sent> sent_;
  bool looked_at_all_ = false;  // in the latest look
  // Records of rows that differ and for which the piece that was made had no room.
  std::vector<const void *> due_;
  std::size_t piece_ = 0;  // most messages of rows that are made at once
  Sums sums_;
  BucketState bucket_;  // as it was left
  Clock::time_point judged_{};
  std::uint64_t look_ = 0;
  std::unordered_set<std::string> tombstones_;  // paths under which the bucket has one
  std::uint64_t asked_ = 0;
  bool snapshot_is_due_ = true;
  std::string reason_ = "a new sender";
  Stamp next_;
  SenderReport report_;
};

}  // namespace ospf_replication
