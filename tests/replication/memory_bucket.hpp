// A bucket in memory, which forgets, cuts and takes what others put there when a test says so.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <string>

#include "ospf_replication/carrier.hpp"

namespace replication_tests {

using namespace ospf_replication;

class MemoryBucket : public Outlet {
 public:
  BucketState open() override { return state(); }
  BucketState state() override {
    if (away) throw CarrierFailure("away");
    return {messages_.size(), last_};
  }
  std::optional<Bytes> last_commit() override {
    for (const auto &[number, letter] : messages_) {
      if (letter.subject.ends_with(".commit")) return letter.body;
    }
    return std::nullopt;
  }
  std::uint64_t put(std::span<const Letter> letters, std::uint64_t last) override {
    if (before_put) before_put();
    most_at_once = std::max(most_at_once, letters.size());
    std::size_t put = 0;
    for (const Letter &letter : letters) {
      if (away || put++ == fails_behind) throw CarrierFailure("cut");
      if (last_ != last) throw BucketMoved("moved");
      add(letter);
      last = last_;
    }
    return last_;
  }
  void drop_before(std::uint64_t number) override {
    messages_.erase(messages_.begin(), messages_.lower_bound(number));
  }
  std::optional<std::uint64_t> asked() override { return std::exchange(asked_, std::nullopt); }

  // Anybody's message.
  void add(const Letter &letter) {
    std::erase_if(messages_,
                  [&](const auto &entry) { return entry.second.subject == letter.subject; });
    messages_.emplace(++last_, letter);
  }
  const std::map<std::uint64_t, Letter> &messages() const { return messages_; }
  void ask(std::uint64_t epoch) { asked_ = epoch; }
  void restore(const std::map<std::uint64_t, Letter> &messages, std::uint64_t last) {
    messages_ = messages;
    last_ = last;
  }
  std::uint64_t last() const { return last_; }

  std::function<void()> before_put;
  std::size_t most_at_once = 0;  // letters
  bool away = false;
  std::size_t fails_behind = SIZE_MAX;

 private:
  std::map<std::uint64_t, Letter> messages_;
  std::uint64_t last_ = 0;
  std::optional<std::uint64_t> asked_;
};

class MemoryInlet : public Inlet {
 public:
  explicit MemoryInlet(MemoryBucket &bucket) : bucket_(bucket) {}

  void begin() override {
    seen_ = 0;
    ++begins;
  }
  std::optional<Arrival> next(std::chrono::milliseconds) override {
    if (bucket_.last() < seen_) throw CarrierFailure("another bucket");
    for (;;) {
      const auto found = bucket_.messages().upper_bound(seen_);
      if (found == bucket_.messages().end()) return std::nullopt;
      seen_ = found->first;
      if (loses && loses(found->second)) continue;
      return Arrival{found->second.subject, found->second.body,
                     std::next(found) == bucket_.messages().end()};
    }
  }
  void ask(std::uint64_t epoch) override { bucket_.ask(epoch); }

  std::function<bool(const Letter &)> loses;
  int begins = 0;

 private:
  MemoryBucket &bucket_;
  std::uint64_t seen_ = 0;
};

}  // namespace replication_tests
