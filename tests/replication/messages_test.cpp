// The names of rows and the bytes of messages.
#include "ospf_replication/messages.hpp"

#include <gtest/gtest.h>

#include <set>

#include "ospf_replication/subjects.hpp"

namespace {

using namespace ospf_replication;

TEST(ReplicationSubjects, KeysAreTokensThatDiffer) {
  std::set<std::string> tokens{token_of("")};
  std::size_t keys = 1;
  for (int one = 0; one < 256; ++one) {
    const char first = static_cast<char>(one);
    for (const std::string &key :
         {std::string(1, first), std::string(2, first), "_" + std::string(1, first),
          std::string(1, first) + "41", std::string(300, first)}) {
      if (key == "__" && one == '_') continue;  // met twice
      ++keys;
      const std::string token = token_of(key);
      tokens.insert(token);
      EXPECT_LE(token.size(), longest_token);
      for (const char c : token)
        EXPECT_TRUE(std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_');
      const std::string path = "ospf.0.area." + token;
      const auto steps = steps_of(path);
      ASSERT_EQ(steps.size(), 2u) << path;
      EXPECT_EQ(steps[1].key, token);
      EXPECT_EQ(path_above(path), "ospf.0");
    }
  }
  EXPECT_EQ(tokens.size(), keys);
  EXPECT_EQ(token_of("ipv4,10.0.0.1"), "ipv4_2C10_2E0_2E0_2E1");
}

TEST(ReplicationSubjects, WhatIsNoPathIsNone) {
  for (const char *path : {"",         ".",           "ospf",      "ospf.",
                           "ospf.0.",  "ospf.0.area", ".0",        "ospf..area.1",
                           "ospf.*",   "ospf.>",      "ospf.a b",  "ospf._4",
                           "ospf._4g", "ospf._4a",    "ospf.__41", "ospf._-",
                           "ospf._-4", "ospf._-4g",   "ospf/x.0",  "ospf.0.a$.1"}) {
    EXPECT_TRUE(steps_of(path).empty()) << path;
  }
  EXPECT_TRUE(steps_of("ospf.0." + std::string(longest_token + 1, 'a') + ".1").empty());
  std::string deep = "a.1";
  while (deep.size() + 4 <= 4 * deepest_path) deep += ".a.1";
  EXPECT_FALSE(steps_of(deep).empty());
  EXPECT_TRUE(steps_of(deep + ".a.1").empty());
  EXPECT_EQ(path_above("ospf.0"), "");
}

TEST(ReplicationSubjects, SitesAreNamedByWordsAlone) {
  for (const char *name : {"paris", "a-b_9", "Z"}) EXPECT_TRUE(is_site_name(name));
  for (const char *name : {"", "a.b", "*", ">", "a b", "\xc3\xa9"})
    EXPECT_FALSE(is_site_name(name));
  EXPECT_FALSE(is_site_name(std::string(longest_site + 1, 'a')));
}

const Stamp stamp{{0x0102030405060708, 0x1112131415161718}, 0x2122232425262728};

TEST(ReplicationMessages, AreReadAsTheyWereWritten) {
  Bytes image(50);
  for (std::size_t at = 0; at < image.size(); ++at) image[at] = static_cast<std::uint8_t>(at);
  const Bytes row = row_message(stamp, 0x80000001, image);
  const Message read = read_message(row);
  EXPECT_EQ(read.kind, MessageKind::row);
  EXPECT_EQ(read.stamp.epoch, stamp.epoch);
  EXPECT_EQ(read.stamp.sequence, stamp.sequence);
  EXPECT_EQ(read.references, 0x80000001u);
  EXPECT_TRUE(std::equal(image.begin(), image.end(), read.image.begin(), read.image.end()));
  EXPECT_EQ(read_message(gone_message(stamp)).kind, MessageKind::gone);
  Commit commit{stamp, 9, {}};
  for (std::uint8_t table = 1; table < 5; ++table) {
    Luid luid{};
    luid[3] = table;
    commit.sums.set(luid, {table, {table, ~std::uint64_t{table}}});
  }
  const Message marker = read_message(commit_message(commit));
  EXPECT_EQ(marker.commit.changed, 9u);
  EXPECT_EQ(marker.commit.sums, commit.sums);
  EXPECT_EQ(marker.commit.sums.rows(), 10u);
}

// The bytes of a tombstone, as the document has them.
TEST(ReplicationMessages, LieAsTheyAreWrittenDown) {
  const Bytes bytes = gone_message(stamp);
  const Bytes expected = {'O',  'H',  'R',  '1',  'G',  0x01, 0x02, 0x03, 0x04, 0x05,
                          0x06, 0x07, 0x08, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17,
                          0x18, 0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x27, 0x28};
  EXPECT_EQ(bytes, expected);
}

TEST(ReplicationMessages, ThatAreCutOrLongerAreRefused) {
  Commit commit{stamp, 1, {}};
  commit.sums.set(Luid{1}, {1, {}});
  commit.sums.set(Luid{2}, {1, {}});
  for (const Bytes &whole :
       {gone_message(stamp), commit_message(commit), row_message(stamp, 0, Bytes(43))}) {
    for (std::size_t length = 0; length < whole.size(); ++length) {
      EXPECT_THROW(read_message(ByteView(whole).first(length)), MessageFault) << length;
    }
    Bytes longer = whole;
    longer.push_back(0);
    // A row's image goes to the end; the checker knows where it ends.
    if (whole[4] != 'R') {
      EXPECT_THROW(read_message(longer), MessageFault);
    }
    Bytes other = whole;
    other[4] = 'X';
    EXPECT_THROW(read_message(other), MessageFault);
    other[4] = whole[4];
    other[0] = 'o';
    EXPECT_THROW(read_message(other), MessageFault);
  }
  Bytes twice = commit_message(commit);
  std::copy_n(twice.end() - 80, 40, twice.end() - 40);
  EXPECT_THROW(read_message(twice), MessageFault);
}

TEST(ReplicationMessages, DigestsAddUpInAnyOrderAndCanBeTakenOut) {
  const Digest one{1, ~std::uint64_t{0}};
  const Digest two{5, 3};
  Digest sum = one;
  sum += two;
  EXPECT_EQ(sum, (Digest{7, 2}));
  sum -= one;
  EXPECT_EQ(sum, two);
  const Bytes image(50, 1);
  EXPECT_NE(digest_of("a.1", 0, image), digest_of("a.2", 0, image));
  EXPECT_NE(digest_of("a.1", 0, image), digest_of("a.1", 1, image));
  EXPECT_NE(digest_of("a.1", 0, image), digest_of("a.1", 0, Bytes(50, 2)));
}

}  // namespace
