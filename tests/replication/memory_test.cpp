// Senders and followers over a bucket in memory: what a follower has is what its sender has, and
// whatever comes between leaves the follower with its last whole state.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "memory_bucket.hpp"
#include "ospf_replication/follower.hpp"
#include "ospf_replication/sender.hpp"
#include "ospf_replication/subjects.hpp"
#include "ospf_replication/tree_rows.hpp"
#include "ospf_tables/instance_rows.hpp"
#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/tree.hpp"
#include "random_changes.hpp"
#include "support/processes.hpp"
#include "support/random_tree.hpp"
#include "support/temporary_folder.hpp"

namespace replication_tests {

namespace {

using ospf_tables::Session;
constexpr std::chrono::milliseconds at_once{0};

class Replicated : public testing::Test {
 protected:
  void change(std::uint32_t seed, bool mixed = true) {
    from_.changing([&] {
      ospf_tables::clear_tree(from_);
      tree_exchange_tests::make_random_tree(from_, {.seed = seed, .mixed_variants = mixed});
    });
  }
  static std::string shown(Session &session) {
    std::string text;
    session.reading([&] { text = tree_exchange_tests::text_of(session); });
    return text;
  }
  // Until nothing comes any more.
  void settle() {
    for (int quiet = 0; quiet < 3;) quiet = follower_.turn(at_once) ? 0 : quiet + 1;
  }
  void expect_same() {
    EXPECT_EQ(shown(to_), shown(from_));
    Sums sums;
    to_.reading([&] { sums = sums_of(to_); });
    EXPECT_EQ(sums, follower_.sums());
    EXPECT_EQ(follower_.report().rows, sender_.report().rows);
    to_.reading([&] { EXPECT_EQ(stamp_of_followed(to_), follower_.report().stamp); });
    kelp_error error{};
    to_.reading(
        [&] { EXPECT_EQ(kelp_database_check(to_.database(), nullptr, nullptr, &error), 0); });
    EXPECT_STREQ(error.text, "");
  }
  std::uint64_t refused(Refusal kind) const {
    return follower_.report().refused[static_cast<std::size_t>(kind)];
  }
  // The follower says so of a message and shows what it showed.
  void expect_refused(const Letter &letter, Refusal kind) {
    const std::string before = shown(to_);
    const std::uint64_t count = refused(kind);
    const std::size_t told = told_.size();
    bucket_.add(letter);
    settle();
    EXPECT_GT(refused(kind), count) << letter.subject;
    EXPECT_GT(told_.size(), told);
    EXPECT_EQ(shown(to_), before);
  }
  void replicate() {
    sender_.turn();
    settle();
  }
  Letter some_row() const {
    for (const auto &[number, letter] : bucket_.messages()) {
      if (letter.subject.find(".area.") != letter.subject.npos) return letter;
    }
    ADD_FAILURE() << "no row";
    return {};
  }

  const TemporaryFolder folder_;
  Session from_{folder_.file("from"), Session::Missing::is_made};
  Session to_{folder_.file("to"), Session::Missing::is_made};
  MemoryBucket bucket_;
  MemoryInlet inlet_{bucket_};
  Sender sender_{from_, bucket_, "site"};
  std::vector<std::string> told_;
  Follower follower_{to_, inlet_, "site",
                     [this](const std::string &what) { told_.push_back(what); }};
};

TEST_F(Replicated, TreesOfEveryTableArriveAsTheyAre) {
  for (std::uint32_t seed = 1; seed <= 12; ++seed) {
    SCOPED_TRACE(seed);
    change(seed, seed % 2 == 0);
    replicate();
    expect_same();
  }
  EXPECT_EQ(follower_.report().transactions, 12u);
  EXPECT_EQ(sender_.report().snapshots, 1u);
  EXPECT_EQ(follower_.report().read_again, 0u);
  EXPECT_TRUE(told_.empty()) << told_.front();
}

TEST_F(Replicated, AnEmptyStoreEmptiesItsFollowers) {
  change(3);
  replicate();
  from_.changing([&] { ospf_tables::clear_tree(from_); });
  replicate();
  EXPECT_EQ(shown(to_), "");
  expect_same();
  // Under the names of rows that went there are tombstones, which rows take the place of.
  change(3);
  replicate();
  expect_same();
  EXPECT_FALSE(sender_.turn());
  EXPECT_EQ(sender_.report().snapshots, 1u);
}

TEST_F(Replicated, WhoComesLaterReadsWhatThereIs) {
  for (const std::uint32_t seed : {1u, 2u, 3u}) {
    change(seed);
    sender_.turn();
  }
  settle();
  EXPECT_EQ(follower_.report().transactions, 1u);
  expect_same();
}

TEST_F(Replicated, AFollowerThatBeginsAgainKeepsItsRows) {
  change(5);
  replicate();
  MemoryInlet inlet(bucket_);
  Follower again(to_, inlet, "site", [](const std::string &what) { FAIL() << what; });
  EXPECT_TRUE(again.turn(at_once));
  EXPECT_EQ(again.report().changed, 0u);
  EXPECT_EQ(again.sums(), follower_.sums());
}

TEST_F(Replicated, ALostMessageIsReadAgain) {
  change(1);
  replicate();
  bool lost = false;
  inlet_.loses = [&](const Letter &letter) {
    if (lost) return false;
    lost = letter.subject.find(".row.") != letter.subject.npos;
    return lost;
  };
  change(2);
  replicate();
  EXPECT_TRUE(lost);
  EXPECT_EQ(follower_.report().read_again, 1u);
  expect_same();
}

// A transaction that never comes together leaves the last one in place.
TEST_F(Replicated, WhatIsLostForGoodIsAskedFor) {
  change(1);
  replicate();
  const std::string before = shown(to_);
  change(2);
  sender_.turn();
  auto without = bucket_.messages();
  without.erase(without.begin());
  bucket_.restore(without, bucket_.last());
  settle();
  EXPECT_EQ(shown(to_), before);
  EXPECT_FALSE(follower_.report().is_whole);
  EXPECT_EQ(follower_.report().asked, 1u);
  sender_.turn();
  EXPECT_EQ(sender_.reason(), "a follower asked for it");
  settle();
  expect_same();
}

TEST_F(Replicated, APurgedOrOlderBucketIsFilledAnew) {
  change(1);
  replicate();
  const auto older = bucket_.messages();
  const std::uint64_t last = bucket_.last();
  change(2);
  replicate();
  std::this_thread::sleep_for(std::chrono::milliseconds(260));
  bucket_.restore({}, bucket_.last());
  EXPECT_TRUE(sender_.turn());
  EXPECT_EQ(sender_.report().snapshots, 2u);
  settle();
  expect_same();
  std::this_thread::sleep_for(std::chrono::milliseconds(260));
  bucket_.restore(older, last);
  EXPECT_TRUE(sender_.turn());
  EXPECT_EQ(sender_.report().snapshots, 3u);
  for (int turn = 0; turn < 3; ++turn) {
    try {
      follower_.turn(at_once);
    } catch (const CarrierFailure &) {
    }
  }
  settle();
  expect_same();
}

// Neither who went on nor who begins anew.
TEST_F(Replicated, AnOlderBucketIsNotFollowedBack) {
  std::vector<std::string> told;
  MemoryInlet inlet(bucket_);
  Follower again(to_, inlet, "site", [&](const std::string &what) { told.push_back(what); });
  const auto expect_stays = [&] {
    const std::string before = shown(to_);
    for (Follower *follower : {&follower_, &again}) {
      for (int turn = 0; turn < 3; ++turn) {
        try {
          EXPECT_FALSE(follower->turn(at_once));
        } catch (const CarrierFailure &) {
        }
      }
      EXPECT_EQ(shown(to_), before);
      EXPECT_FALSE(follower->report().is_whole);
    }
  };
  change(1);
  replicate();
  const auto older = bucket_.messages();
  const std::uint64_t last = bucket_.last();
  change(2);
  replicate();
  EXPECT_TRUE(told_.empty());
  bucket_.restore(older, last);
  expect_stays();
  EXPECT_FALSE(told_.empty());
  EXPECT_FALSE(told.empty());
  // What the sender had then it may have again, which is another epoch.
  change(1);
  sender_.turn();
  EXPECT_EQ(sender_.report().snapshots, 2u);
  EXPECT_TRUE(again.turn(at_once));
  EXPECT_EQ(shown(to_), shown(from_));
  // The epoch that is over.
  bucket_.restore(older, last);
  expect_stays();
}

// A process that lives on gives its place up with its follower.
TEST_F(Replicated, AFollowerThatHasEndedHoldsNoPlace) {
  change(1);
  sender_.turn();
  const auto another = [&] {
    return tool_tests::run_tool({"replicate", "--from", "nats://127.0.0.1:1", "--name", "site",
                                 "--store", folder_.file("to"), "--seconds", "0.1"});
  };
  {
    MemoryInlet inlet(bucket_);
    Follower follower(to_, inlet, "site", [](const std::string &what) { FAIL() << what; });
    EXPECT_TRUE(follower.turn(at_once));
    const tool_tests::Said said = another();
    EXPECT_EQ(said.status, 1);
    EXPECT_NE(said.err.find("has a follower already: process " + std::to_string(getpid())),
              std::string::npos)
        << said.err;
  }
  const tool_tests::Said said = another();
  EXPECT_EQ(said.status, 0) << said.err;
}

TEST_F(Replicated, ASenderWhoseStoreWasRestoredIsFollowed) {
  change(1);
  replicate();
  Session restored(folder_.file("restored"), Session::Missing::is_made);
  restored.changing([&] {
    tree_exchange_tests::make_random_tree(restored, {.seed = 1, .mixed_variants = true});
  });
  change(2);
  replicate();
  Sender sender(restored, bucket_, "site");
  sender.turn();
  settle();
  EXPECT_EQ(shown(to_), shown(restored));
  EXPECT_TRUE(told_.empty()) << told_.front();
}

// What was followed under another name says nothing of this one.
TEST_F(Replicated, AnotherNameIsFollowedFromItsBeginning) {
  Session other(folder_.file("other"), Session::Missing::is_made);
  other.changing([&] { tree_exchange_tests::make_random_tree(other, {.seed = 5}); });
  MemoryBucket bucket;
  Sender earlier(other, bucket, "other");
  earlier.turn();
  change(1);
  replicate();
  MemoryInlet inlet(bucket);
  Follower follower(to_, inlet, "other", [](const std::string &what) { FAIL() << what; });
  EXPECT_TRUE(follower.turn(at_once));
  EXPECT_EQ(shown(to_), shown(other));
}

TEST_F(Replicated, ATransactionThatIsCutAnywhereIsNeverShown) {
  change(1);
  replicate();
  for (std::size_t cut = 0; cut < 40; cut += 3) {
    const std::string before = shown(to_);
    change(static_cast<std::uint32_t>(cut) + 2);
    bucket_.fails_behind = cut;
    EXPECT_THROW(sender_.turn(), CarrierFailure);
    settle();
    EXPECT_EQ(shown(to_), before);
    bucket_.fails_behind = SIZE_MAX;
    replicate();
    expect_same();
  }
}

TEST_F(Replicated, ASenderWhoseEngineIsAwayCatchesUpInOneStep) {
  change(1);
  replicate();
  bucket_.away = true;
  for (const std::uint32_t seed : {2u, 3u, 4u}) {
    change(seed);
    EXPECT_THROW(sender_.turn(), CarrierFailure);
  }
  bucket_.away = false;
  replicate();
  EXPECT_EQ(follower_.report().transactions, 2u);
  expect_same();
}

TEST_F(Replicated, TombstonesNeverOutgrowTheRowsByMuch) {
  std::size_t most = 0;
  for (std::uint32_t seed = 1; seed <= 60; ++seed) {
    change(seed);
    replicate();
    most = std::max(most, bucket_.messages().size());
  }
  EXPECT_GT(sender_.report().snapshots, 1u);
  EXPECT_LT(most, 3000u);
  expect_same();
}

// Commits that come between the pieces are part of the transaction.
TEST_F(Replicated, ALargeTransactionGoesInPieces) {
  constexpr std::uint32_t rows = 10'000;
  Instance instance{.family = Family::ipv4, .router_id = 1, .areas = {{.id = 0, .interfaces = {}}}};
  Interface interface {};
  interface.name = "eth0";
  interface.network_type = 1;
  for (std::uint32_t number = 0; number < rows; ++number) {
    Neighbor neighbor{};
    neighbor.router_id = ospf_tables::dotted(0x0a000000 + number);
    neighbor.address = "192.0.2.1";
    interface.neighbors.push_back(neighbor);
  }
  instance.areas[0].interfaces.push_back(interface);
  from_.changing([&] {
    std::vector<std::unique_ptr<ospf_tables::NewInstance>> instances;
    instances.push_back(std::make_unique<ospf_tables::NewInstance>(from_, instance));
    add_instances(from_, instances);
  });
  RandomChanges changes(from_, 1);
  int puts = 0;
  bucket_.before_put = [&] {
    if (++puts <= 3) changes.commit();
  };
  sender_.turn();
  EXPECT_GE(puts, 3);
  EXPECT_EQ(sender_.report().transactions, 1u);
  EXPECT_EQ(bucket_.messages().rbegin()->second.subject, "ospf-harbor.site.commit");
  settle();
  EXPECT_EQ(follower_.report().transactions, 1u);
  EXPECT_LE(bucket_.most_at_once, rows / 2);
  std::size_t sent = 0;
  std::size_t come = 0;
  // What was committed while the last piece was put comes with the next transaction.
  replicate();
  from_.reading([&] { sent = state_of(from_); });
  to_.reading([&] { come = state_of(to_); });
  EXPECT_EQ(come, sent);
  EXPECT_TRUE(told_.empty()) << told_.front();
  EXPECT_EQ(sender_.report().snapshots, 1u);
}

TEST_F(Replicated, RowsThatOthersChangeInTheFollowersStoreAreMended) {
  change(1);
  replicate();
  const auto load = [&] {
    const tool_tests::Said said = tool_tests::run_tool(
        {"load", "frr", places::sample() + "/r1", "--store", folder_.file("to")});
    ASSERT_EQ(said.status, 0) << said.err;
  };
  // Between two transactions, and before a follower begins.
  load();
  EXPECT_NE(shown(to_), shown(from_));
  change(2);
  replicate();
  expect_same();
  EXPECT_EQ(follower_.report().read_again, 1u);
  load();
  MemoryInlet inlet(bucket_);
  Follower again(to_, inlet, "site", [](const std::string &what) { FAIL() << what; });
  EXPECT_TRUE(again.turn(at_once));
  EXPECT_EQ(shown(to_), shown(from_));
}

TEST_F(Replicated, WhatIsNoMessageIsRefused) {
  change(1);
  replicate();
  const Letter row = some_row();
  expect_refused({row.subject, {}}, Refusal::garbage);
  expect_refused({row.subject, Bytes(64, 'x')}, Refusal::garbage);
  expect_refused({"ospf-harbor.site.commit", row.body}, Refusal::garbage);
  expect_refused({"ospf-harbor.site.other", row.body}, Refusal::foreign);
  expect_refused({"ospf-harbor.site.row.ospf", row.body}, Refusal::foreign);
  expect_refused({"ospf-harbor.site.row.ospf.0.area.a_zz", row.body}, Refusal::foreign);
  expect_refused({row.subject, Bytes(largest_message + 1, 'O')}, Refusal::oversized);
  // All of it is taken away by the next snapshot.
  std::this_thread::sleep_for(std::chrono::milliseconds(260));
  replicate();
  expect_same();
  EXPECT_EQ(refused(Refusal::foreign), 3u);
}

TEST_F(Replicated, WhatWasThereBeforeIsRefused) {
  change(1);
  replicate();
  const auto before = bucket_.messages();
  change(2);
  replicate();
  std::uint64_t count = 0;
  for (const auto &[number, letter] : before) {
    bucket_.add(letter);
    ++count;
  }
  const std::string shown_before = shown(to_);
  settle();
  EXPECT_EQ(shown(to_), shown_before);
  EXPECT_GE(refused(Refusal::replayed), count - 1);
  std::this_thread::sleep_for(std::chrono::milliseconds(260));
  replicate();
  expect_same();
  // Of the epoch before, all of it.
  const std::uint64_t replayed = refused(Refusal::replayed);
  for (const auto &[number, letter] : before) bucket_.add(letter);
  settle();
  EXPECT_EQ(shown(to_), shown(from_));
  EXPECT_GE(refused(Refusal::replayed), replayed + before.size());
}

// Rows that people cannot tell apart by their names.
TEST_F(Replicated, RowsOfKeysWithOneTextArrive) {
  change(1);
  from_.changing([&] {
    ospf_tables::Instance instance{
        .family = ospf_tables::Family::ipv4, .router_id = 0x0a000001, .areas = {}};
    instance.areas.push_back({.id = 0, .interfaces = {}});
    for (const char end : {'b', 'c', '\0'}) {
      ospf_tables::Interface interface {};
      interface.name = std::string("a\0", 2) + end;
      interface.network_type = 1;
      instance.areas.back().interfaces.push_back(interface);
    }
    std::vector<std::unique_ptr<ospf_tables::NewInstance>> instances;
    instances.push_back(std::make_unique<ospf_tables::NewInstance>(from_, instance));
    ospf_tables::add_instances(from_, instances);
  });
  replicate();
  expect_same();
  EXPECT_TRUE(told_.empty()) << told_.front();
}

// A store in which each of several sites has its own tree.
TEST_F(Replicated, SitesOfOneStoreDoNotMeet) {
  struct Following {
    ospf_tables::Site site;
    MemoryInlet inlet;
    Follower follower;
    Following(const ospf_tables::Site &own, Session &session, MemoryBucket &bucket)
        : site(own),
          inlet(bucket),
          follower(session, inlet, "site", [](const std::string &what) { FAIL() << what; }) {}
  };
  const std::vector<ospf_tables::Site> sites{{0, 2}, {3, 1}, {3, 9}};
  std::vector<std::unique_ptr<Following>> all;
  for (const auto &site : sites) all.push_back(std::make_unique<Following>(site, to_, bucket_));
  const auto shown_of = [&](const ospf_tables::Site &site) {
    to_.set_site(site);
    return shown(to_);
  };
  for (std::uint32_t seed = 1; seed <= 3; ++seed) {
    const std::string before = shown(from_);
    change(seed);
    sender_.turn();
    for (const auto &each : all) {
      EXPECT_EQ(shown_of(all.back()->site), before);
      to_.set_site(each->site);
      for (int quiet = 0; quiet < 2;) quiet = each->follower.turn(at_once) ? 0 : quiet + 1;
      EXPECT_EQ(shown(to_), shown(from_));
    }
  }
  to_.reading([&] { EXPECT_EQ(ospf_tables::sites_of(to_), sites); });
  EXPECT_EQ(shown_of({}), "");
  to_.reading([&] { EXPECT_EQ(stamp_of_followed(to_), std::nullopt); });
  for (const auto &each : all) {
    to_.set_site(each->site);
    to_.reading([&] { EXPECT_EQ(stamp_of_followed(to_), each->follower.report().stamp); });
  }
  // One goes with all that it has, and no other.
  to_.set_site(sites[1]);
  to_.changing([&] { ospf_tables::clear_tree(to_); });
  EXPECT_EQ(shown(to_), "");
  for (const auto &site : {sites[0], sites[2]}) EXPECT_EQ(shown_of(site), shown(from_));
  to_.reading(
      [&] { EXPECT_EQ(kelp_database_check(to_.database(), nullptr, nullptr, nullptr), 0); });
}

// What a sender of another make could send: rows of the bucket's, changed, in an epoch of their own
// with a commit marker that fits them.
class Forged : public Replicated {
 protected:
  struct Row {
    std::string path;
    std::uint32_t references;
    Bytes image;
  };

  void SetUp() override {
    change(1, false);
    replicate();
    for (const auto &[number, letter] : bucket_.messages()) {
      if (!letter.subject.starts_with(subjects_.rows)) continue;
      const Message message = read_message(letter.body);
      epoch_ = message.stamp.epoch.number;
      rows_.push_back({letter.subject.substr(subjects_.rows.size()), message.references,
                       Bytes(message.image.begin(), message.image.end())});
    }
  }
  void publish() {
    const Stamp stamp{{++epoch_, 7}, 1};
    Sums sums;
    for (const Row &row : rows_) {
      sums.add(luid_of(row.image), digest_of(row.path, row.references, row.image));
      bucket_.add({subjects_.rows + row.path, row_message(stamp, row.references, row.image)});
    }
    bucket_.add({subjects_.commit,
                 commit_message({stamp, static_cast<std::uint32_t>(rows_.size()), sums})});
    settle();
  }
  // The first row of that kind.
  Row &row_of(const std::string &reference) {
    for (Row &row : rows_) {
      if (steps_of(row.path).back().reference == reference) return row;
    }
    ADD_FAILURE() << "no row of " << reference;
    return rows_.front();
  }
  void expect_unsound() {
    const std::string before = shown(to_);
    const std::uint64_t count = refused(Refusal::unsound);
    publish();
    EXPECT_GT(refused(Refusal::unsound), count);
    EXPECT_EQ(shown(to_), before);
    to_.reading([&] { EXPECT_EQ(stamp_of_followed(to_), follower_.report().stamp); });
    to_.reading(
        [&] { EXPECT_EQ(kelp_database_check(to_.database(), nullptr, nullptr, nullptr), 0); });
  }

  const Subjects subjects_{"site"};
  std::vector<Row> rows_;
  std::uint64_t epoch_ = 0;
};

// Fields behind those that are known, and a table that is not.
TEST_F(Forged, RowsOfANewerEditionArriveAsFarAsTheyAreKnown) {
  const std::string before = shown(to_);
  Row &area = row_of("area");
  constexpr std::size_t length = 12, variant = 43, jump = 45;
  const Bytes added = {1, 2, 3};
  area.image.insert(area.image.end(), added.begin(), added.end());
  area.image[length + 3] = static_cast<std::uint8_t>(area.image[length + 3] + added.size());
  area.image[jump + 3] = static_cast<std::uint8_t>(area.image[jump + 3] + added.size());
  ++area.image[variant];
  Row unknown{area.path + ".later_table.7", 0, area.image};
  unknown.image[30] ^= 0xff;  // the identity of its table
  Row below{unknown.path + ".later_still.8", 0, unknown.image};
  rows_.push_back(unknown);
  rows_.push_back(below);
  publish();
  EXPECT_TRUE(told_.empty()) << told_.front();
  EXPECT_EQ(follower_.report().rows, rows_.size());
  EXPECT_EQ(follower_.report().stamp.epoch.number, epoch_);
  EXPECT_EQ(shown(to_), before);
  // They go as they came.
  std::erase_if(rows_, [](const Row &row) { return row.path.find("later") != row.path.npos; });
  publish();
  EXPECT_TRUE(told_.empty()) << told_.front();
  EXPECT_EQ(follower_.report().rows, rows_.size());
}

// From a clock that was wrong, or from somebody who would be the last for ever.
TEST_F(Forged, AnEpochFromFarAheadGivesWayToTheSenders) {
  epoch_ = epoch_number_now() + 2 * std::uint64_t{86'400'000'000'000};
  publish();
  EXPECT_EQ(follower_.report().stamp.epoch.number, epoch_);
  std::this_thread::sleep_for(std::chrono::milliseconds(260));
  change(2, false);
  replicate();
  expect_same();
  EXPECT_FALSE(is_far_ahead(follower_.report().stamp.epoch.number));
  EXPECT_EQ(refused(Refusal::replayed), 0u);
}

TEST_F(Forged, RowsWithoutTheRowAboveThemAreRefused) {
  const std::string path = row_of("instance").path;
  std::erase_if(rows_, [&](const Row &row) { return row.path == path; });
  expect_unsound();
}

TEST_F(Forged, RowsWithoutATableAreRefused) {
  row_of("instance").references = 0;
  expect_unsound();
}

TEST_F(Forged, RowsWithAnotherKeyThanTheirPathAreRefused) {
  Row &area = row_of("area");
  const std::size_t key = area.path.rfind('.');
  const std::string before = area.path;
  const std::string after = before.substr(0, key) + ".1_2E2_2E3_2E4";
  for (Row &row : rows_) {
    if (row.path == before || row.path.starts_with(before + ".")) {
      row.path = after + row.path.substr(before.size());
    }
  }
  expect_unsound();
}

// A row that owns nothing but texts is read into the one that is there.
class ForgedNeighbor : public Forged {
 protected:
  void SetUp() override {
    Forged::SetUp();
    // One that has an address for a key.
    const auto found = std::ranges::find_if(rows_, [](const Row &row) {
      return steps_of(row.path).back().reference == "neighbor" && row.image[family] != 0;
    });
    ASSERT_NE(found, rows_.end());
    place_ = static_cast<std::size_t>(found - rows_.begin());
    before_ = row();
    record_ = record_now();
  }
  Row &row() { return rows_[place_]; }
  void *record_now() {
    void *record = nullptr;
    to_.reading([&] {
      for_each_row(to_, [&](const TreeRow &each) {
        if (each.path == before_.path) record = each.record;
      });
    });
    return record;
  }
  // What the follower shows is what one shows that has just come.
  void expect_as_new() {
    EXPECT_TRUE(told_.empty()) << told_.front();
    Session session(folder_.file("new"), Session::Missing::is_made);
    MemoryInlet inlet(bucket_);
    Follower follower(session, inlet, "site", [](const std::string &what) { FAIL() << what; });
    EXPECT_TRUE(follower.turn(at_once));
    EXPECT_EQ(shown(to_), shown(session));
    Sums sums;
    to_.reading([&] { sums = sums_of(to_); });
    EXPECT_EQ(sums, follower.sums());
  }

  static constexpr std::size_t length = 12, flags = 44, jump = 45, family = 49, key = 51;
  std::size_t place_ = 0;
  Row before_;
  void *record_ = nullptr;
};

TEST_F(ForgedNeighbor, ThatChangedStaysWhereItIs) {
  const std::string before = shown(to_);
  row().image.back() ^= 1;
  publish();
  EXPECT_NE(shown(to_), before);
  EXPECT_EQ(record_now(), record_);
  expect_as_new();
}

TEST_F(ForgedNeighbor, WithAnotherKeyIsRefusedAndTheRowAsItWas) {
  row().image[key] ^= 1;
  row().image.back() ^= 1;
  expect_unsound();
  row() = before_;
  row().image.back() ^= 1;
  publish();
  EXPECT_EQ(record_now(), record_);
}

// The reader of an image keeps flags that the row has, so that another row takes its place.
TEST_F(ForgedNeighbor, LeavesNothingOfWhatItWasBehind) {
  constexpr std::uint8_t carries_ra_data = 32, ra_data = 9;
  Bytes &image = row().image;
  image[flags] |= carries_ra_data;
  image.insert(image.begin() + jump, ra_data, 0);
  image[length + 3] = static_cast<std::uint8_t>(image[length + 3] + ra_data);
  publish();
  expect_as_new();
  row() = before_;
  row().image.back() ^= 1;
  publish();
  std::filesystem::remove(folder_.file("new"));
  expect_as_new();
}

TEST_F(Forged, ImagesThatTheCheckerRefusesNeverGetThere) {
  Row &area = row_of("area");
  area.image.back() ^= 0xff;
  area.image.pop_back();
  const std::string before = shown(to_);
  publish();
  EXPECT_GE(refused(Refusal::garbage), 1u);
  EXPECT_EQ(shown(to_), before);
}

}  // namespace

}  // namespace replication_tests
