#include "ospf_replication/assembly.hpp"

namespace ospf_replication {

Assembly::Assembly(const Epoch &epoch, const HadRows &had, const Sums &sums, bool from_nothing,
                   std::uint64_t passed)
    : epoch_(epoch), had_(had), from_nothing_(from_nothing), passed_(passed) {
  if (!from_nothing) sums_ = sums;
}

// Takes out of the sums what stood under the path.
void Assembly::forget(const std::string &path) {
  if (const auto held = waiting_.find(path); held != waiting_.end()) {
    if (!held->second.is_gone) sums_.take(held->second.luid, held->second.row);
    bytes_ -= held->second.image.size();
  } else if (!from_nothing_) {
    if (const auto had = had_.find(path); had != had_.end()) {
      sums_.take(had->second.luid, had->second.row);
    }
  }
}

void Assembly::take(const std::string &path, const Message &message, const Limits &limits) {
  const std::uint64_t sequence = message.stamp.sequence;
  const auto waiting = waiting_.find(path);
  const std::uint64_t before = waiting != waiting_.end() ? waiting->second.sequence
                               : from_nothing_           ? 0
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
  Held held;
  held.sequence = sequence;
  held.references = message.references;
  held.is_gone = message.kind == MessageKind::gone;
  if (!held.is_gone) {
    held.row = digest_of(path, message.references, message.image);
    held.luid = luid_of(message.image);
  }
  forget(path);
  const auto had = had_.find(path);
  const bool is_same = had != had_.end() && !held.is_gone && had->second.row == held.row;
  if (!held.is_gone) {
    sums_.add(held.luid, held.row);
    if (!is_same) held.image.assign(message.image.begin(), message.image.end());
  }
  bytes_ += held.image.size();
  waiting_.insert_or_assign(path, std::move(held));
}

bool Assembly::is_whole(const Commit &commit) const {
  // Read from the first message on, the latest marker is met again.
  if (!from_nothing_ && commit.stamp.sequence <= passed_) {
    throw Replayed("the commit of transaction " + std::to_string(commit.stamp.sequence) + " again",
                   "one behind " + std::to_string(passed_));
  }
  return commit.sums == sums_;
}

void Assembly::has_passed(std::uint64_t sequence) {
  passed_ = sequence;
  from_nothing_ = false;
  waiting_.clear();
  bytes_ = 0;
}

}  // namespace ospf_replication
