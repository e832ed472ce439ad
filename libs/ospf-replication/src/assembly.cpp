#include "ospf_replication/assembly.hpp"

namespace ospf_replication {

namespace {

// Whose memory is kept for the next transaction.
constexpr std::size_t most_kept = 4096;
constexpr std::size_t largest_kept = 4096;  // bytes of an image

}  // namespace

Assembly::Assembly(const Epoch &epoch, const HadRows &had, const Sums &sums, bool from_nothing,
                   std::uint64_t passed)
    : epoch_(epoch), had_(had), from_nothing_(from_nothing), passed_(passed) {
  if (!from_nothing) sums_ = sums;
}

const Held *Assembly::waiting(const HashedPath &path) const {
  const auto known = waiting_.find(path);
  return known == waiting_.end() ? nullptr : known->second;
}

// Takes out of the sums what stood under a path.
void Assembly::forget(const Held &held, const Had *had) {
  if (held.sequence != 0) {
    if (!held.is_gone) sums_.take(held.luid, held.row);
    bytes_ -= held.image.size();
  } else if (!from_nothing_ && had != nullptr) {
    sums_.take(had->luid, had->row);
  }
}

// The row under a path that did not come yet.
Held &Assembly::held_under(const HashedPath &path) {
  if (waiting_.size() == rows_.size()) rows_.emplace_back();
  Held &held = rows_[waiting_.size()];
  held.path = path.path;
  held.hash = path.hash;
  held.sequence = 0;
  waiting_.emplace(HashedPath(held.path, held.hash), &held);
  return held;
}

void Assembly::take(const HashedPath &path, const RowPlaces::Place &place, const Message &message,
                    const Limits &limits) {
  const std::uint64_t sequence = message.stamp.sequence;
  const auto known = waiting_.find(path);
  const std::uint64_t before = known != waiting_.end() ? known->second->sequence
                               : from_nothing_         ? 1
                                                       : passed_ + 1;
  if (sequence < before) {
    throw Replayed("transaction " + std::to_string(sequence) + " again",
                   std::to_string(before) + " or a later one");
  }
  if (waiting_.size() >= limits.rows || bytes_ + message.image.size() > limits.bytes) {
    throw Oversized("more than " + std::to_string(limits.rows) + " rows or " +
                        std::to_string(limits.bytes) + " bytes without a commit",
                    "fewer");
  }
  const auto there = had_.find(path);
  const Had *had = there == had_.end() ? nullptr : &there->second;
  Held &held = known != waiting_.end() ? *known->second : held_under(path);
  forget(held, had);
  held.sequence = sequence;
  held.place = place;
  held.references = message.references;
  held.is_gone = message.kind == MessageKind::gone;
  held.image.clear();
  if (held.is_gone) return;
  held.row = digest_of(path.path, message.references, message.image);
  held.luid = luid_of(message.image);
  sums_.add(held.luid, held.row);
  if (had != nullptr && had->row == held.row) return;
  held.image.assign(message.image.begin(), message.image.end());
  bytes_ += held.image.size();
}

bool Assembly::is_whole(const Commit &commit) const {
  // Read from the first message on, the latest marker is met again, unless the bucket is one that
  // was before.
  const std::uint64_t next = from_nothing_ ? passed_ : passed_ + 1;
  if (commit.stamp.sequence < next) {
    throw Replayed("the commit of transaction " + std::to_string(commit.stamp.sequence) + " again",
                   std::to_string(next) + " or a later one");
  }
  return commit.sums == sums_;
}

void Assembly::has_passed(std::uint64_t sequence) {
  passed_ = sequence;
  from_nothing_ = false;
  for_each([](Held &held) {
    if (held.image.capacity() > largest_kept) Bytes().swap(held.image);
  });
  waiting_.clear();
  if (rows_.size() > most_kept) rows_.resize(most_kept);
  bytes_ = 0;
}

}  // namespace ospf_replication
