// What a watch tells of a tree is what a walk through all of it would find, whoever changes it and
// however transactions end; and it looks at the rows that changed, not at the others.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <fstream>
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

// A word of a file that others change, such as those of docs/store.md.
class Word {
 public:
  Word(const std::string &path, std::size_t offset) : offset_(offset) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    mapped_ = mmap(nullptr, offset_ + sizeof(std::uint64_t), PROT_READ, MAP_SHARED, file, 0);
    close(file);
    if (mapped_ == MAP_FAILED) std::abort();
  }
  ~Word() { munmap(mapped_, offset_ + sizeof(std::uint64_t)); }
  Word(const Word &) = delete;
  Word &operator=(const Word &) = delete;
  std::uint64_t value() const {
    return *reinterpret_cast<const volatile std::uint64_t *>(static_cast<const char *>(mapped_) +
                                                             offset_);
  }

 private:
  std::size_t offset_;
  void *mapped_;
};

// Processes that change the store, each begun by one that was there before this one opened it.
class Others {
 public:
  enum Ending : std::uint32_t { dies, gives_up, commits, is_killed };

  explicit Others(const std::string &store) {
    if (pipe(orders_) != 0 || pipe(done_) != 0) std::abort();
    process_ = fork();
    if (process_ != 0) return;
    close(orders_[1]);
    Order order{};
    while (read(orders_[0], &order, sizeof order) == ssize_t{sizeof order}) {
      const pid_t other = fork();
      if (other == 0) _exit(work(store, order));
      Reply reply{};
      if (order.ending == is_killed) reply.steps = kill_in_commit(store, other, order.steps);
      waitpid(other, &reply.status, 0);
      if (write(done_[1], &reply, sizeof reply) < 0) break;
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

  void change(std::uint32_t seed, Ending ending) { EXPECT_EQ(ask({seed, ending, 0}).status, 0); }
  // Kills a writer in its commit, so many instructions behind the one that counts what it changed,
  // or as soon as it has committed. Gives how many those were.
  long kill_in_commit(std::uint32_t seed, long steps) {
    const Reply reply = ask({seed, is_killed, steps});
    EXPECT_EQ(reply.status, SIGKILL);
    return reply.steps;
  }

 private:
  struct Order {
    std::uint32_t seed;
    Ending ending;
    long steps;
  };
  struct Reply {
    int status;
    long steps;
  };
  struct GivenUp {};
  static constexpr std::size_t counted_place = 327'744;
  static constexpr std::size_t page_size = 4096;

  Reply ask(const Order &order) {
    Reply reply{-1, 0};
    EXPECT_EQ(write(orders_[1], &order, sizeof order), ssize_t{sizeof order});
    EXPECT_EQ(read(done_[0], &reply, sizeof reply), ssize_t{sizeof reply});
    return reply;
  }

  // What a writer does that is to be killed: it stands still where it is about to count what it
  // changed, which is the first that it stores in that page again.
  static void stop_before_counting(const std::string &store) {
    static void *page = nullptr;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; page == nullptr && std::getline(maps, line);) {
      std::uintptr_t start = 0, offset = 0;
      std::sscanf(line.c_str(), "%lx-%*x %*s %lx", &start, &offset);
      if (line.ends_with(store + "-lock")) {
        page = reinterpret_cast<void *>(start + counted_place / page_size * page_size - offset);
      }
    }
    signal(SIGSEGV, [](int) {
      mprotect(page, page_size, PROT_READ | PROT_WRITE);
      raise(SIGSTOP);
    });
    ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    mprotect(page, page_size, PROT_READ);
  }

  // From where the process stands still on, each instruction is looked at.
  static long kill_in_commit(const std::string &store, pid_t process, long most) {
    int status = 0;
    waitpid(process, &status, 0);
    ptrace(PTRACE_CONT, process, nullptr, SIGSEGV);
    waitpid(process, &status, 0);
    const Word counted(store + "-lock", counted_place);
    const Word to_be_undone(store + "-log", 40);
    const std::uint64_t before = counted.value();
    long steps = -1;
    for (;;) {
      if (counted.value() != before) ++steps;
      if (!WIFSTOPPED(status) || steps == most || to_be_undone.value() == 0) break;
      if (ptrace(PTRACE_SINGLESTEP, process, nullptr, nullptr) != 0) break;
      waitpid(process, &status, 0);
    }
    kill(process, SIGKILL);
    return steps;
  }

  static int work(const std::string &store, const Order &order) {
    try {
      Session session(store, Session::Missing::is_refused);
      session.changing([&] {
        RandomChanges changes(session, order.seed);
        for (int change = 0; change < 8; ++change) changes.change();
        if (order.ending == dies) _exit(0);
        if (order.ending == gives_up) throw GivenUp();
        if (order.ending != is_killed) return;
        stop_before_counting(store);
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

// A writer counts what it changed before it commits: of one that dies in between more is told than
// changed.
TEST_F(Watched, WhatWasCountedAndNotCommittedIsFollowed) {
  RandomChanges changes(session_, 3);
  for (int commit = 0; commit < 5; ++commit) changes.commit();
  look();
  const long instructions = others_.kill_in_commit(1, LONG_MAX);
  ASSERT_GT(instructions, 0);
  expect_followed();
  constexpr std::uint32_t kills = 24;
  for (std::uint32_t turn = 0; turn < kills; ++turn) {
    SCOPED_TRACE(turn);
    const Picture before = all();
    const long steps = instructions * turn / kills;
    EXPECT_EQ(others_.kill_in_commit(turn + 2, steps), steps);
    look();
    EXPECT_EQ(picture_, before);
    EXPECT_EQ(picture_, all());
    if (turn % 4 == 0) changes.commit();
  }
  expect_followed();
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
