// The index of things in a database's memory, beside a map of the standard library: with hashes
// that differ, that are alike, and without memory to grow.
#include "store/index.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <map>
#include <random>
#include <set>
#include <vector>

namespace {

using kelp::store::Index;
using kelp::store::IndexNode;
using kelp::store::IndexRoot;

// Hears what is about to be changed, and knows what was there before.
class HeardMemory final : public kelp::store::Memory {
 public:
  HeardMemory() : Memory(true) {}
  ~HeardMemory() {
    for (void *block : blocks_) std::free(block);
  }
  void *take(std::size_t size) override {
    if (refuses) return nullptr;
    blocks_.push_back(std::malloc(size));
    return blocks_.back();
  }
  void give_back(void *) override {}

  // Undoes all that was announced since the last forget.
  void undo() {
    for (; !before_.empty(); before_.pop_back()) {
      std::memcpy(before_.back().address, before_.back().bytes.data(), before_.back().bytes.size());
    }
  }
  void forget() { before_.clear(); }

  bool refuses = false;

 private:
  struct Before {
    void *address;
    std::vector<std::byte> bytes;
  };
  void hear(const void *address, std::size_t length) override {
    const auto *at = static_cast<const std::byte *>(address);
    before_.push_back({const_cast<void *>(address), {at, at + length}});
  }
  std::vector<Before> before_;
  std::vector<void *> blocks_;
};

struct Thing {
  std::uint64_t hash = 0;
  IndexNode node{};
  int name = 0;
};

constexpr std::size_t kNode = offsetof(Thing, node);

class IndexTest : public ::testing::Test {
 protected:
  void insert(std::uint64_t hash) {
    Thing &made = things_.emplace_back();
    made.hash = hash;
    made.name = static_cast<int>(things_.size());
    index_.insert(&made.node, hash);
    model_.insert(&made);
  }
  void remove_any() {
    auto gone = model_.begin();
    std::advance(gone, random_() % model_.size());
    index_.remove(&(*gone)->node);
    model_.erase(gone);
  }
  // Everything that is in is found, nothing else is, and all of it is gone through once.
  void expect_same() {
    EXPECT_EQ(index_.count(), model_.size());
    std::set<const Thing *> visited;
    index_.each<Thing, kNode>(
        [&](const Thing &thing) { EXPECT_TRUE(visited.insert(&thing).second); });
    EXPECT_EQ(visited, std::set<const Thing *>(model_.begin(), model_.end()));
    for (const Thing &thing : things_) {
      const Thing *found = index_.find<Thing, kNode>(
          thing.hash, [&](const Thing &each) { return each.name == thing.name; });
      EXPECT_EQ(found, model_.count(const_cast<Thing *>(&thing)) != 0 ? &thing : nullptr);
    }
  }
  // Changes it at random, growing on the whole and then shrinking.
  void change(int times, std::uint64_t hashes, std::uint64_t step) {
    for (int i = 0; i < 2 * times; ++i) {
      const bool enters = i < times ? random_() % 3 != 0 : random_() % 3 == 0;
      if (model_.empty() || enters) {
        insert(random_() % hashes * step);
      } else {
        remove_any();
      }
      if (i % (times / 4) == 0) expect_same();
    }
    expect_same();
  }

  HeardMemory memory_;
  IndexRoot root_{};
  Index index_{memory_, root_};
  std::deque<Thing> things_;
  std::set<Thing *> model_;
  std::mt19937_64 random_{7};
};

TEST_F(IndexTest, HashesThatDiffer) { change(1200, UINT64_MAX, 1); }
TEST_F(IndexTest, HashesThatFollowEachOther) {
  for (std::uint64_t hash = 0; hash < 2000; ++hash) insert(hash);
  expect_same();
  change(400, 2000, 1);
}
TEST_F(IndexTest, FewHashesOfMany) { change(800, 20, UINT64_C(0x9e3779b97f4a7c15)); }
TEST_F(IndexTest, HashesThatAreAlikeInTheirLowHalves) { change(400, 40, UINT64_C(1) << 32); }
TEST_F(IndexTest, WhatNeverWasInStaysOut) {
  Thing never;
  index_.remove(&never.node);
  change(50, 100, 1);
  const std::uint64_t count = index_.count();
  index_.remove(&never.node);
  EXPECT_EQ(index_.count(), count);
  expect_same();
}

TEST_F(IndexTest, WithoutMemoryToGrow) {
  memory_.refuses = true;
  Thing never;
  EXPECT_THROW(index_.insert(&never.node, 1), std::bad_alloc);
  EXPECT_EQ(root_.buckets, 0u);
  EXPECT_EQ(root_.count, 0u);
  memory_.refuses = false;
  insert(1);
  memory_.refuses = true;
  change(400, UINT64_MAX, 1);
  EXPECT_EQ(root_.buckets, kelp::store::kFirstBuckets);
  memory_.refuses = false;
  change(400, UINT64_MAX, 1);
  EXPECT_GT(root_.buckets, kelp::store::kFirstBuckets);
}

// What is announced is enough to go back; with hashes that are alike up to some bit much moves at
// once.
TEST_F(IndexTest, AllThatChangesIsAnnounced) {
  const std::pair<std::uint64_t, std::uint64_t> ways[] = {{UINT64_MAX, 1}, {10, 3}, {1 << 20, 64}};
  for (const auto &[hashes, step] : ways) {
    root_ = {};
    things_.clear();
    model_.clear();
    for (int turn = 0; turn < 60; ++turn) {
      for (int i = 0; i < 5; ++i) insert(random_() % hashes * step);
      memory_.forget();
      const std::set<Thing *> before = model_;
      const std::size_t known = things_.size();
      for (int i = 0; i < 20; ++i) insert(random_() % hashes * step);
      for (int i = 0; i < 20; ++i) remove_any();
      memory_.undo();
      model_ = before;
      things_.resize(known);
      expect_same();
    }
  }
}

// Where the buckets lie.
TEST(IndexSegmentTest, EachBucketLiesInOne) {
  std::uint64_t number = 0;
  for (std::size_t segment = 0; segment < kelp::store::kIndexSegments; ++segment) {
    EXPECT_EQ(Index::segment_start(segment), number);
    EXPECT_LE(Index::segment_buckets(segment), kelp::store::kMostBuckets);
    EXPECT_EQ(Index::segment_of(number), segment);
    number += Index::segment_buckets(segment);
    EXPECT_EQ(Index::segment_of(number - 1), segment);
  }
  EXPECT_EQ(number, 8 * kelp::store::kMostBuckets);
}

}  // namespace
