#include "ospf_replication/assembly.hpp"

namespace ospf_replication {

Assembly::Assembly(const Epoch &epoch, const HadRows &had, const Sums &sums, bool from_nothing,
                   std::uint64_t passed)
    : epoch_(epoch), had_(had), from_nothing_(from_nothing), passed_(passed) {
  if (!from_nothing) sums_ = sums;
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

void Assembly::take(const std::string &path, const Message &message, const Limits &limits) {
  const std::uint64_t sequence = message.stamp.sequence;
  const auto known = waiting_.find(path);
  const std::uint64_t before = known != waiting_.end() ? known->second.sequence
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
  const auto entry = known != waiting_.end() ? known : waiting_.try_emplace(path).first;
  Held &held = entry->second;
  if (held.sequence == 0) in_order_.push_back(&*entry);
  forget(held, had);
  held.sequence = sequence;
  held.references = message.references;
  held.is_gone = message.kind == MessageKind::gone;
  held.image.clear();
  if (held.is_gone) return;
  held.row = digest_of(path, message.references, message.image);
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
  waiting_.clear();
  in_order_.clear();
  bytes_ = 0;
}

}  // namespace ospf_replication
