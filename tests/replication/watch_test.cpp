// What a watch tells of a tree is what a walk through all of it would find, whoever changes it and
// however transactions end; and it looks at the rows that changed, not at the others.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <map>
#include <tuple>

#include "memory_bucket.hpp"
#include "ospf_replication/follower.hpp"
#include "ospf_replication/sender.hpp"
#include "ospf_replication/tree_watch.hpp"
#include "random_changes.hpp"
#include "support/processes.hpp"
#include "support/random_tree.hpp"
#include "support/temporary_folder.hpp"

namespace replication_tests {

namespace {

using namespace ospf_replication;

// Processes that change the store, each begun by one that was there before this one opened it.
class Others {
 public:
  enum Ending : std::uint32_t { dies, gives_up, commits };

  explicit Others(const std::string &store) {
    if (pipe(orders_) != 0 || pipe(done_) != 0) std::abort();
    process_ = fork();
    if (process_ != 0) return;
    close(orders_[1]);
    Order order{};
    while (read(orders_[0], &order, sizeof order) == ssize_t{sizeof order}) {
      const pid_t other = fork();
      if (other == 0) _exit(work(store, order));
      int status = -1;
      waitpid(other, &status, 0);
      if (write(done_[1], &status, sizeof status) < 0) break;
    }
    _exit(0);
  }
  ~Others() {
    close(orders_[0]);
    close(orders_[1]);
    waitpid(process_, nullptr, 0);
    close(done_[0]);
    close(done_[1]);
  }
  Others(const Others &) = delete;
  Others &operator=(const Others &) = delete;

  void change(std::uint32_t seed, Ending ending) {
    const Order order{seed, ending};
    ASSERT_EQ(write(orders_[1], &order, sizeof order), ssize_t{sizeof order});
    int status = -1;
    ASSERT_EQ(read(done_[0], &status, sizeof status), ssize_t{sizeof status});
    EXPECT_EQ(status, 0);
  }

 private:
  struct Order {
    std::uint32_t seed;
    Ending ending;
  };
  struct GivenUp {};

  static int work(const std::string &store, const Order &order) {
    try {
      Session session(store, Session::Missing::is_refused);
      session.changing([&] {
        RandomChanges changes(session, order.seed);
        for (int change = 0; change < 8; ++change) changes.change();
        if (order.ending == dies) _exit(0);
        if (order.ending == gives_up) throw GivenUp();
      });
    } catch (const GivenUp &) {
      return 0;
    } catch (const std::exception &) {
      return 1;
    }
    return 0;
  }

  int orders_[2];
  int done_[2];
  pid_t process_ = 0;
};

class Watched : public testing::Test {
 protected:
  // Address, references and digest of each row.
  using Picture = std::map<std::string, std::tuple<void *, std::uint32_t, std::uint64_t>>;

  static void enter(Picture &picture, const TreeRow &row) {
    picture[row.path] = {row.record, row.references, row.stored.low};
  }
  Picture all() {
    Picture picture;
    session_.reading(
        [&] { for_each_row(session_, [&](const TreeRow &row) { enter(picture, row); }); });
    return picture;
  }
  // Has the picture follow what the watch tells.
  void look() {
    session_.reading([&] {
      if (watch_.look()) {
        picture_.clear();
        ++at_all_;
      }
      for (const std::string &path : watch_.gone()) EXPECT_EQ(picture_.erase(path), 1u) << path;
      seen_ = 0;
      watch_.for_each([&](const TreeRow &row) {
        enter(picture_, row);
        ++seen_;
      });
    });
  }
  void expect_followed() {
    look();
    EXPECT_EQ(picture_, all());
    EXPECT_EQ(at_all_, 1);
  }

  const TemporaryFolder folder_;
  Others others_{folder_.file("store")};
  Session session_{folder_.file("store"), Session::Missing::is_made};
  TreeWatch watch_{session_};
  Picture picture_;
  int at_all_ = 0;
  std::size_t seen_ = 0;  // rows, in the latest look
};

TEST_F(Watched, RandomChangesAreFollowed) {
  RandomChanges changes(session_, 1);
  changes.commit();
  for (int look = 0; look < 120; ++look) {
    SCOPED_TRACE(look);
    expect_followed();
    for (int commit = 0; commit <= look % 4; ++commit) changes.commit();
  }
}

// A follower puts rows in the place of others and gives them the tables of those.
TEST_F(Watched, RowsOfEveryTableThatAFollowerPutsAreFollowed) {
  Session from(folder_.file("from"), Session::Missing::is_made);
  MemoryBucket bucket;
  MemoryInlet inlet(bucket);
  Sender sender(from, bucket, "site");
  Follower follower(session_, inlet, "site", [](const std::string &what) { FAIL() << what; });
  session_.changing([&] { root_table(session_, true); });
  for (std::uint32_t seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(seed);
    from.changing([&] {
      clear_tree(from);
      if (seed % 7 != 0) tree_exchange_tests::make_random_tree(from, {.seed = seed});
    });
    sender.turn();
    while (follower.turn(std::chrono::milliseconds(0))) continue;
    expect_followed();
  }
}

TEST_F(Watched, WhatOthersChangeAndUndoIsFollowed) {
  RandomChanges changes(session_, 2);
  changes.commit();
  look();
  for (std::uint32_t turn = 0; turn < 60; ++turn) {
    SCOPED_TRACE(turn);
    others_.change(turn, static_cast<Others::Ending>(turn % 3));
    if (turn % 4 == 0) changes.commit();
    expect_followed();
  }
}

class WatchedLsas : public Watched {
 protected:
  WatchedLsas() {
    session_.changing([&] { tree_exchange_tests::make_random_tree(session_, {.seed = 7}); });
    session_.reading([&] {
      for_each_row(session_, [&](const TreeRow &row) {
        if (row.rule.name != std::string(area_scope_lsa_ops::name)) return;
        auto *record = static_cast<area_scope_lsa_ops::Record *>(row.record);
        rows.push_back(area_scope_lsa_ops::get(session_.handle(), space, record));
      });
    });
  }

  std::vector<area_scope_lsa *> rows;
};

// An array lies in a block of its own, and is changed where it is.
TEST_F(WatchedLsas, WhatRowsOwnIsFollowed) {
  ASSERT_GT(rows.size(), 0u);
  const auto change = [&](std::uint32_t place, std::uint8_t value) {
    session_.changing([&] {
      for (area_scope_lsa *row : rows) {
        area_scope_lsa_raw_data_set_value(session_.handle(), space, row, place, value,
                                          session_.err());
      }
      session_.check("octets");
    });
  };
  change(500, 1);  // makes room
  look();
  for (std::uint8_t value = 2; value < 10; ++value) {
    change(500, value);
    expect_followed();
    EXPECT_EQ(seen_, rows.size());
  }
}

// Octets that were heard may be anything, the address of another row's object too.
TEST_F(WatchedLsas, ARowWhoseOctetsAreAnAddressHidesNoOther) {
  ASSERT_GT(rows.size(), 1u);
  const auto put = [&](area_scope_lsa *row, const void *octets, std::uint32_t count) {
    session_.changing([&] {
      area_scope_lsa_raw_data_set_mem(session_.handle(), space, row,
                                      static_cast<const std::uint8_t *>(octets), count,
                                      session_.err());
      session_.check("octets");
    });
  };
  for (area_scope_lsa *row : rows) {
    const area_scope_lsa *other = row == rows.front() ? rows.back() : rows.front();
    put(row, &other, sizeof other);
    look();
    for (area_scope_lsa *each : rows) {
      if (each == row) continue;
      session_.changing([&] {
        const bool completed = area_scope_lsa_decoded_completed_get_value(session_.handle(), space,
                                                                          each, session_.err());
        area_scope_lsa_decoded_completed_set_value(session_.handle(), space, each, !completed,
                                                   session_.err());
        session_.check("what is changed");
      });
      expect_followed();
    }
    put(row, "none", 4);
    expect_followed();
  }
}

TEST_F(Watched, WhatIsNotChangedIsNotLookedAt) {
  RandomChanges changes(session_, 4);
  for (int commit = 0; commit < 20; ++commit) changes.commit();
  look();
  EXPECT_GT(seen_, 20u);
  expect_followed();
  EXPECT_EQ(seen_, 0u);
  session_.changing([&] { RandomChanges(session_, 5).change_one(); });
  expect_followed();
  EXPECT_EQ(seen_, 1u);
}

// More than the store keeps of its changes.
TEST_F(Watched, WhatIsTooLongAgoIsLookedForEverywhere) {
  RandomChanges changes(session_, 6);
  changes.commit();
  look();
  for (int commit = 0; commit < 70'000; ++commit) {
    session_.changing([&] { changes.change_one(); });
  }
  changes.commit();
  look();
  EXPECT_EQ(at_all_, 2);
  EXPECT_EQ(picture_, all());
}

}  // namespace

}  // namespace replication_tests
