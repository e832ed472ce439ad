#include "ospf_replication/sender.hpp"

#include <algorithm>
#include <cstdint>
#include <random>
#include <utility>

namespace ospf_replication {

using namespace ospf_tables;

namespace {

constexpr std::chrono::milliseconds judge_every{250};
constexpr std::uint64_t free_tombstones = 1000;
constexpr std::size_t letters_of_piece = 4000;

std::uint64_t random_word() {
  std::random_device device;
  return std::uint64_t{device()} << 32 | device();
}

}  // namespace

void Sender::need_snapshot(const std::string &reason) {
  if (!snapshot_is_due_) reason_ = reason;
  snapshot_is_due_ = true;
}

bool Sender::turn() {
  try {
    if (const auto above = outlet_.asked()) {
      asked_ = *above;
      need_snapshot("a follower asked for it");
    }
    if (!snapshot_is_due_) judge_bucket();
    const bool all = snapshot_is_due_;
    if (all) begin_epoch();
    return send(all);
  } catch (const CarrierFailure &failure) {
    need_snapshot(failure.what());
    throw;
  } catch (const Refused &refused) {
    need_snapshot(refused.what());
    throw;
  }
}

// Another one's message, a purge, and an engine that came back without what it had acknowledged
// all leave other numbers than these.
void Sender::judge_bucket() {
  if (Clock::now() - judged_ < judge_every) return;
  const BucketState now = outlet_.state();
  judged_ = Clock::now();
  if (now == bucket_) return;
  need_snapshot("the bucket has " + std::to_string(now.messages) + " messages up to number " +
                std::to_string(now.last) + ", not " + std::to_string(bucket_.messages) +
                " up to number " + std::to_string(bucket_.last));
}

void Sender::begin_epoch() {
  bucket_ = outlet_.open();
  std::uint64_t above = std::max(asked_, next_.epoch.number);
  if (const auto bytes = outlet_.last_commit()) {
    try {
      above = std::max(above, read_message(*bytes).stamp.epoch.number);
    } catch (const MessageFault &) {
      // What is no marker has no epoch.
    }
  }
  if (is_far_ahead(above)) above = 0;
  next_ = {{std::max(epoch_number_now(), above + 1), random_word()}, 0};
}

void Sender::gather(std::vector<Letter> &letters) {
  ++look_;
  looked_at_all_ = watch_.look();
  for (const std::string &path : watch_.gone()) {
    if (const auto place = sent_.find(path); place != sent_.end()) place->second.went = look_;
  }
  const std::vector<const void *> due = std::exchange(due_, {});
  watch_.for_each([&](const TreeRow &row) { look_at_row(row, letters); });
  gather_gone(letters);
  for (const void *record : due) {
    if (is_full(letters)) {
      due_.push_back(record);
    } else {
      watch_.visit(record, [&](const TreeRow &row) { gather_row(row, letters); });
    }
  }
}

void Sender::look_at_row(const TreeRow &row, std::vector<Letter> &letters) {
  if (row.path.size() > longest_path) {
    throw LibraryFailure(row.path.substr(0, 200) + "...: the path of a row has " +
                         std::to_string(row.path.size()) + " bytes, of " +
                         std::to_string(longest_path) + " that can be sent");
  }
  const auto [place, is_new] = sent_.try_emplace(row.path);
  Sent &sent = place->second;
  const void *before = std::exchange(sent.record, row.record);
  const bool is_another = !is_new && before != row.record && sent.went != look_;
  if (sent.seen == look_ || (is_another && !looked_at_all_)) {
    throw LibraryFailure("two rows are named " + row.path + ", and cannot be told apart");
  }
  sent.seen = look_;
  if (sent.epoch == next_.epoch.number && sent.stored == row.stored) return;
  if (is_full(letters) && watch_.can_visit()) {
    due_.push_back(row.record);
  } else {
    gather_row(row, letters);
  }
}

void Sender::gather_row(const TreeRow &row, std::vector<Letter> &letters) {
  Sent &sent = sent_.at(row.path);
  const Bytes image = row.rule.image(session_, row.record);
  const Digest digest = digest_of(row.path, row.references, image);
  sent.stored = row.stored;
  if (std::exchange(sent.epoch, next_.epoch.number) == next_.epoch.number && sent.row == digest) {
    return;
  }
  leave(sent);
  sent.row = digest;
  sent.luid = luid_of(image);
  sent.is_counted = true;
  sums_.add(sent.luid, digest);
  tombstones_.erase(row.path);
  letters.push_back({subjects_.rows + row.path, row_message(next_, row.references, image)});
}

void Sender::gather_gone(std::vector<Letter> &letters) {
  if (looked_at_all_) {
    std::erase_if(
        sent_, [&](const auto &entry) { return forget_gone(entry.first, entry.second, letters); });
    return;
  }
  for (const std::string &path : watch_.gone()) {
    const auto place = sent_.find(path);
    if (place != sent_.end() && forget_gone(path, place->second, letters)) sent_.erase(place);
  }
}

// False for a row that is there.
bool Sender::forget_gone(const std::string &path, const Sent &sent, std::vector<Letter> &letters) {
  if (sent.seen == look_) return false;
  leave(sent);
  if (sent.epoch == next_.epoch.number) {
    letters.push_back({subjects_.rows + path, gone_message(next_)});
    tombstones_.insert(path);
  }
  return true;
}

void Sender::leave(const Sent &sent) {
  if (sent.is_counted) sums_.take(sent.luid, sent.row);
}

// What is committed while pieces are sent may leave something due again and again: then the rest
// is sent at once.
void Sender::send_pieces(bool all, std::uint32_t &changed) {
  due_.clear();
  if (all) {
    watch_.forget();
    tombstones_.clear();
  }
  std::size_t pieces = 0;
  do {
    piece_ = pieces++ > 4 + 2 * sent_.size() / letters_of_piece ? SIZE_MAX : letters_of_piece;
    std::vector<Letter> letters;
    try {
      session_.reading([&] { gather(letters); });
    } catch (...) {
      // What was noted as sent was not.
      need_snapshot("a look at the store failed");
      throw;
    }
    changed += static_cast<std::uint32_t>(letters.size());
    if (due_.empty() && (all || changed != 0)) {
      letters.push_back({subjects_.commit, commit_message({next_, changed, sums_})});
    }
    if (!letters.empty()) bucket_.last = outlet_.put(letters, bucket_.last);
  } while (!due_.empty());
}

bool Sender::send(bool all) {
  ++next_.sequence;
  const std::uint64_t last = bucket_.last;
  std::uint32_t changed = 0;
  send_pieces(all, changed);
  if (changed == 0 && !all) {
    --next_.sequence;
    return false;
  }
  if (all) {
    outlet_.drop_before(last + 1);
    snapshot_is_due_ = false;
    asked_ = 0;
    ++report_.snapshots;
  }
  bucket_.messages = sums_.rows() + tombstones_.size() + 1;
  judged_ = Clock::now();
  report_.stamp = next_;
  report_.rows = sums_.rows();
  report_.changed += changed;
  ++report_.transactions;
  if (tombstones_.size() > sums_.rows() + free_tombstones) need_snapshot("the tombstones of rows");
  return true;
}

}  // namespace ospf_replication
