// One input of the fuzz target: what it means, for the target, for the replay of its corpus and for
// what writes that.
//
// Messages, one behind the other: an octet of how many octets the subject has, the subject behind
// the site's name and dot, two octets of how many the message has, the message. A message that
// begins with "+" stands for a commit marker of the first epoch that came, with the sums that its
// rows have, so that rows get past the digests. What is committed must be what the digests say.
#pragma once

#include <string>
#include <vector>

#include "ospf_replication/follower.hpp"
#include "ospf_replication/tree_rows.hpp"
#include "ospf_tables/tree.hpp"

namespace ospf_replication {

class FuzzInlet : public Inlet {
 public:
  explicit FuzzInlet(ByteView input) : input_(input) {}

  void begin() override {}
  std::optional<Arrival> next(std::chrono::milliseconds) override {
    if (input_.empty() || input_.size() < 3u + input_[0]) return std::nullopt;
    const std::size_t subject = input_[0];
    latest_.subject =
        "ospf-harbor.s." +
        std::string(input_.begin() + 1, input_.begin() + 1 + static_cast<long>(subject));
    input_ = input_.subspan(1 + subject);
    const std::size_t length =
        std::min<std::size_t>(input_[0] * 256u + input_[1], input_.size() - 2);
    const ByteView body = input_.subspan(2, length);
    input_ = input_.subspan(2 + length);
    if (!body.empty() && body[0] == '+') {
      latest_ = {"ospf-harbor.s.commit", marker()};
    } else {
      latest_.body.assign(body.begin(), body.end());
      note(latest_);
    }
    return Arrival{latest_.subject, latest_.body, input_.empty()};
  }
  void ask(std::uint64_t) override {}

 private:
  void note(const Letter &letter) {
    constexpr std::string_view rows = "ospf-harbor.s.row.";
    if (!letter.subject.starts_with(rows)) return;
    try {
      const Message message = read_message(letter.body);
      const std::string path = letter.subject.substr(rows.size());
      if (rows_.empty()) stamp_ = message.stamp;
      if (message.stamp.epoch != stamp_.epoch) return;
      rows_.erase(path);
      stamp_.sequence = std::max(stamp_.sequence, message.stamp.sequence);
      if (message.kind == MessageKind::row) {
        rows_[path] = {luid_of(message.image), digest_of(path, message.references, message.image)};
      }
    } catch (const MessageFault &) {
    }
  }
  Bytes marker() const {
    Sums sums;
    for (const auto &[path, row] : rows_) sums.add(row.first, row.second);
    return commit_message({stamp_, 1, sums});
  }

  ByteView input_;
  Letter latest_;
  Stamp stamp_;
  std::map<std::string, std::pair<Luid, Digest>> rows_;
};

// What is wrong with how the input was taken; empty for nothing.
inline std::string run_fuzz_input(ByteView input) {
  ospf_tables::Session session;
  FuzzInlet inlet(input);
  Follower follower(session, inlet, "s", [](const std::string &) {});
  const auto unsound = [&] {
    return follower.report().refused[static_cast<std::size_t>(Refusal::unsound)];
  };
  for (int quiet = 0; quiet < 2;) {
    const bool is_committed = follower.turn(std::chrono::milliseconds(0));
    // Tables of a process alone keep what was done until a refusal; a store undoes that.
    if (unsound() != 0) return "";
    if (is_committed) {
      std::uint64_t rows = 0;
      for_each_row(session, [&](const TreeRow &) { ++rows; });
      // Rows that this edition has no table for are counted and not there.
      if (rows > follower.sums().rows()) return "there are more rows than were committed";
    } else {
      ++quiet;
    }
  }
  return "";
}

}  // namespace ospf_replication
