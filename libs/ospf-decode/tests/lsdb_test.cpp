// Which instance of an LSA stays, and what a flush leaves behind.
#include "ospf_decode/lsdb.hpp"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "support/bytes.hpp"

namespace ospf_decode::testing {
namespace {

LsaHeader header(std::uint32_t sequence, std::uint16_t checksum, std::uint16_t age) {
  LsaHeader out;
  out.type = 1;
  out.sequence = sequence;
  out.checksum = checksum;
  out.age = age;
  out.length = 20;
  return out;
}

int compare(const LsaHeader &a, const LsaHeader &b) {
  return compare_instances(a, a.age_seconds(), b, b.age_seconds());
}

TEST(Newer, ByTheSignedSequenceNumber) {
  EXPECT_GT(compare(header(0x80000002, 1, 9), header(0x80000001, 9, 1)), 0);
  EXPECT_GT(compare(header(0x00000001, 1, 9), header(0xffffffff, 9, 1)), 0);
  EXPECT_GT(compare(header(0x7fffffff, 1, 9), header(0x80000001, 9, 1)), 0);
}

TEST(Newer, ThenByTheUnsignedChecksum) {
  EXPECT_GT(compare(header(1, 0x8000, 9), header(1, 0x7fff, 1)), 0);
}

TEST(Newer, ThenTheOneAtMaxAge) {
  EXPECT_GT(compare(header(1, 1, 3600), header(1, 1, 1)), 0);
  EXPECT_EQ(compare(header(1, 1, 3600), header(1, 1, 3600)), 0);
}

TEST(Newer, ThenTheYoungerByMoreThanFifteenMinutes) {
  EXPECT_EQ(compare(header(1, 1, 901), header(1, 1, 1)), 0);
  EXPECT_LT(compare(header(1, 1, 902), header(1, 1, 1)), 0);
  EXPECT_GT(compare(header(1, 1, 1), header(1, 1, 902)), 0);
}

struct Db {
  Lsdb lsdb;
  LsdbKey key;
  Octets raw = Octets(20, 0);
  std::uint64_t packet = 0;

  Db() {
    key.version = 2;
    key.type = 1;
    key.link_state_id = 7;
    key.advertising_router = 7;
  }
  Lsdb::Outcome offer(const LsaHeader &header, int at_seconds) {
    raw[0] = static_cast<std::uint8_t>(header.sequence);
    return lsdb.offer(key, header, raw, true, at_seconds * second, ++packet);
  }
  const LsdbEntry &entry() const { return *lsdb.find(key); }
};

using Outcome = Lsdb::Outcome;

TEST(Lsdb, KeepsTheNewestWithItsBytesTimeAndPacket) {
  Db db;
  EXPECT_EQ(db.offer(header(0x80000001, 1, 5), 100), Outcome::installed);
  EXPECT_EQ(db.offer(header(0x80000001, 1, 6), 101), Outcome::duplicate);
  EXPECT_EQ(db.offer(header(0x80000003, 1, 1), 102), Outcome::replaced);
  EXPECT_EQ(db.offer(header(0x80000002, 1, 1), 103), Outcome::older);
  EXPECT_EQ(db.lsdb.size(), 1u);
  EXPECT_EQ(db.entry().header.sequence, 0x80000003u);
  EXPECT_EQ(db.entry().raw.at(0), 3);
  EXPECT_EQ(db.entry().received, 102 * second);
  EXPECT_EQ(db.entry().packet, 3u);
  EXPECT_EQ(db.entry().instances, 2u);
}

TEST(Lsdb, AgesAdvance) {
  Db db;
  db.offer(header(0x80000001, 1, 5), 100);
  EXPECT_EQ(db.entry().age_at(100 * second), 5);
  EXPECT_EQ(db.entry().age_at(160 * second), 65);
  EXPECT_EQ(db.entry().age_at(100000 * second), 3600);
  EXPECT_EQ(db.entry().age_at(50 * second), 5) << "a clock that goes back";
  EXPECT_FALSE(db.entry().gone_at(160 * second));
  EXPECT_TRUE(db.entry().gone_at(100 * second + 3595 * second));
}

TEST(Lsdb, DoNotAgeHoldsStill) {
  Db db;
  db.offer(header(0x80000001, 1, 0x8005), 100);
  EXPECT_EQ(db.entry().age_at(100000 * second), 5);
}

TEST(Lsdb, TheAgeThatIsComparedIsTheOneReached) {
  Db db;
  db.offer(header(0x80000001, 1, 5), 0);
  // As old as the held one is by now: the same instance, although 1500 seconds older than it was.
  EXPECT_EQ(db.offer(header(0x80000001, 1, 1505), 1500), Outcome::duplicate);
  EXPECT_EQ(db.offer(header(0x80000001, 1, 5), 1500), Outcome::replaced);
}

TEST(Lsdb, AFlushStaysAndIsGone) {
  Db db;
  db.offer(header(0x80000001, 1, 5), 100);
  EXPECT_EQ(db.offer(header(0x80000001, 1, 3600), 110), Outcome::flushed);
  EXPECT_TRUE(db.entry().flushed);
  EXPECT_TRUE(db.entry().gone_at(110 * second));
  EXPECT_EQ(db.offer(header(0x80000001, 1, 3600), 111), Outcome::duplicate);
}

TEST(Lsdb, AStragglerDoesNotUndoAFlush) {
  Db db;
  db.offer(header(0x80000005, 1, 100), 100);
  db.offer(header(0x80000005, 1, 3600), 110);
  EXPECT_EQ(db.offer(header(0x80000005, 1, 111), 111), Outcome::duplicate);
  EXPECT_EQ(db.offer(header(0x80000004, 1, 600), 112), Outcome::older);
  EXPECT_TRUE(db.entry().flushed);
}

TEST(Lsdb, WhatIsOriginatedAfterAFlushReplacesIt) {
  Db db;
  db.offer(header(0x80000005, 1, 100), 100);
  db.offer(header(0x80000005, 1, 3600), 110);
  EXPECT_EQ(db.offer(header(0x80000001, 9, 1), 120), Outcome::replaced);
  EXPECT_FALSE(db.entry().flushed);
  EXPECT_EQ(db.entry().header.sequence, 0x80000001u);
}

TEST(Lsdb, TheSequenceNumbersWrapThroughAFlush) {
  Db db;
  db.offer(header(0x7fffffff, 1, 100), 100);
  EXPECT_EQ(db.offer(header(0x7fffffff, 1, 3600), 110), Outcome::flushed);
  EXPECT_EQ(db.offer(header(0x80000001, 1, 1), 115), Outcome::replaced);
}

TEST(Lsdb, WhatOutlivedMaxAgeIsReplacedByWhatCameAfter) {
  Db db;
  db.offer(header(0x80000005, 1, 3000), 0);
  EXPECT_EQ(db.offer(header(0x80000001, 1, 500), 700), Outcome::older) << "originated at 200";
  EXPECT_EQ(db.offer(header(0x80000001, 1, 50), 700), Outcome::replaced) << "originated at 650";
}

TEST(Lsdb, TheOrderOfListings) {
  Db db;
  const auto put = [&](Scope scope, std::uint32_t domain, std::uint16_t type, std::uint32_t id) {
    LsdbKey key = db.key;
    key.scope = scope;
    key.domain = domain;
    key.type = type;
    key.link_state_id = id;
    db.lsdb.offer(key, header(0x80000001, 1, 1), db.raw, true, 0, 1);
  };
  put(Scope::as, 0, 5, 1);
  put(Scope::area, 1, 1, 1);
  put(Scope::area, 0, 3, 1);
  put(Scope::area, 0, 1, 2);
  put(Scope::area, 0, 1, 1);
  put(Scope::link, 4, 9, 1);
  std::vector<std::uint32_t> order;
  for (const LsdbEntry *entry : db.lsdb.sorted()) {
    order.push_back(entry->key.domain * 100 + entry->key.type * 10u + entry->key.link_state_id);
  }
  EXPECT_EQ(order, (std::vector<std::uint32_t>{491, 11, 12, 31, 111, 51}));
}

TEST(Lsdb, LinksThatAreOneShareTheirLsas) {
  Db db;
  const auto put = [&](std::uint32_t link, std::uint32_t sequence, std::uint32_t id) {
    LsdbKey key = db.key;
    key.version = 3;
    key.scope = Scope::link;
    key.type = 8;
    key.domain = link;
    key.link_state_id = id;
    db.lsdb.offer(key, header(sequence, 1, 1), db.raw, true, 0, 1);
  };
  put(5, 0x80000002, 1);
  put(3, 0x80000001, 1);
  put(5, 0x80000001, 2);
  put(3, 0x80000004, 3);
  put(6, 0x80000009, 1);
  db.lsdb.join_links(5, 3);
  EXPECT_EQ(db.lsdb.size(), 4u);
  const auto find = [&](std::uint32_t link, std::uint32_t id) {
    LsdbKey key = db.key;
    key.version = 3;
    key.scope = Scope::link;
    key.type = 8;
    key.domain = link;
    key.link_state_id = id;
    return db.lsdb.find(key);
  };
  ASSERT_NE(find(3, 1), nullptr);
  EXPECT_EQ(find(3, 1)->header.sequence, 0x80000002u);
  EXPECT_EQ(find(3, 1)->key.domain, 3u);
  EXPECT_NE(find(3, 2), nullptr);
  EXPECT_NE(find(3, 3), nullptr);
  EXPECT_EQ(find(5, 1), nullptr);
  EXPECT_NE(find(6, 1), nullptr);
  db.lsdb.join_links(6, 3);
  EXPECT_EQ(find(3, 1)->header.sequence, 0x80000009u);
}

// Offers to many links, some of which turn out to be one from time to time, beside a map of the
// newest sequence numbers and how many instances there were.
TEST(Lsdb, HoldsWhatAMapOfItsKeysHolds) {
  Db db;
  db.key.version = 3;
  db.key.scope = Scope::link;
  std::map<LsdbKey, std::pair<std::uint32_t, std::uint32_t>> expected;
  std::mt19937 random(7);
  std::set<LsdbKey> gone;
  std::uint32_t links = 40;
  for (int turn = 0; turn < 20000; ++turn) {
    db.key.domain = random() % links;
    db.key.link_state_id = random() % 200;
    const std::uint32_t sequence = 1 + random() % 1000;
    db.offer(header(sequence, 1, 1), 0);
    auto &[newest, instances] = expected[db.key];
    if (sequence > newest) {
      newest = sequence;
      ++instances;
    }
    if (turn % 1000 != 999) continue;
    const std::uint32_t to = random() % --links;
    db.lsdb.join_links(links, to);
    for (auto each = expected.begin(); each != expected.end();) {
      if (each->first.domain != links) {
        ++each;
        continue;
      }
      LsdbKey key = each->first;
      gone.insert(key);
      key.domain = to;
      auto &[joined, of_both] = expected[key];
      joined = std::max(joined, each->second.first);
      of_both += each->second.second;
      each = expected.erase(each);
    }
  }
  ASSERT_EQ(db.lsdb.size(), expected.size());
  std::size_t visited = 0;
  db.lsdb.for_each([&](const LsdbEntry &) { ++visited; });
  EXPECT_EQ(visited, expected.size());
  auto next = expected.begin();
  for (const LsdbEntry *entry : db.lsdb.sorted()) {
    ASSERT_EQ(entry->key, next->first);
    EXPECT_EQ(entry, db.lsdb.find(entry->key));
    EXPECT_EQ(entry->header.sequence, next->second.first);
    EXPECT_EQ(entry->instances, next->second.second);
    ++next;
  }
  for (const LsdbKey &key : gone) EXPECT_EQ(db.lsdb.find(key), nullptr);
}

}  // namespace
}  // namespace ospf_decode::testing
