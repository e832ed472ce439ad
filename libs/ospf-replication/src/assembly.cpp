#include "ospf_replication/assembly.hpp"

namespace ospf_replication {

namespace {

// Rows whose memory is kept for the next transaction, and bytes of their images.
constexpr std::size_t most_kept = 4096;
constexpr std::size_t largest_kept = 4096;

}  // namespace

Held *HeldRows::find(const HashedPath &path) const {
  if (slots_.empty()) return nullptr;
  for (std::size_t at = path.hash;; ++at) {
    const Slot &slot = slots_[at & (slots_.size() - 1)];
    if (slot.held == nullptr) return nullptr;
    if (slot.hash == path.hash && slot.held->path == path.path) return slot.held;
  }
}

Held &HeldRows::add(const HashedPath &path) {
  if (2 * (count_ + 1) > slots_.size()) widen(slots_.empty() ? 64 : 2 * slots_.size());
  if (count_ == rows_.size()) rows_.emplace_back();
  Held &held = rows_[count_++];
  held.path = path.path;
  held.hash = path.hash;
  enter(held);
  return held;
}

void HeldRows::enter(Held &held) {
  std::size_t at = held.hash;
  while (slots_[at & (slots_.size() - 1)].held != nullptr) ++at;
  slots_[at & (slots_.size() - 1)] = {held.hash, &held};
}

void HeldRows::widen(std::size_t slots) {
  slots_.assign(slots, {});
  for_each([&](Held &held) { enter(held); });
}

void HeldRows::clear() {
  for_each([](Held &held) {
    if (held.image.capacity() > largest_kept) Bytes().swap(held.image);
  });
  count_ = 0;
  if (rows_.size() > most_kept) {
    rows_.resize(most_kept);
    std::vector<Slot>().swap(slots_);
  } else {
    slots_.assign(slots_.size(), {});
  }
}

Assembly::Assembly(const Epoch &epoch, const HadRows &had, const Sums &sums, bool from_nothing,
                   std::uint64_t passed)
    : epoch_(epoch), had_(had), from_nothing_(from_nothing), passed_(passed) {
  if (!from_nothing) sums_ = sums;
}

// Takes out of the sums what stood under a path.
void Assembly::forget(const Held *held, const Had *had) {
  if (held != nullptr) {
    if (!held->is_gone) sums_.take(held->luid, held->row);
    bytes_ -= held->image.size();
  } else if (!from_nothing_ && had != nullptr) {
    sums_.take(had->luid, had->row);
  }
}

void Assembly::take(const HashedPath &path, const RowPlaces::Place &place, const Message &message,
                    const Limits &limits) {
  const std::uint64_t sequence = message.stamp.sequence;
  Held *known = waiting_.find(path);
  const std::uint64_t before = known != nullptr ? known->sequence : from_nothing_ ? 1 : passed_ + 1;
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
  forget(known, had);
  Held &held = known != nullptr ? *known : waiting_.add(path);
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
  waiting_.clear();
  bytes_ = 0;
}

}  // namespace ospf_replication
