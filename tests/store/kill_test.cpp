// Processes that are killed: at any instruction of a commit, of a rollback, of growth, of what
// undoes a dead writer; at random times while a store is made, opened, closed, and made anew after
// a restart; and anywhere in a writer's life. Each kill is followed by a look through the store and
// at its rows: they are those of the last commit that was acknowledged, or of the one that was
// being made.
//
// HARBOR_STORE_KILLS says how many kills there are; without it 300.
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <random>

#include "rows.hpp"
#include "syncs.hpp"

namespace store_test {

namespace {

// A transaction of a few changes, the same for the same number.
struct Change {
  std::uint16_t key;
  bool erase;
  std::string bytes;
};

// Transactions from this number on bring new rows alone, which a feed hears of.
constexpr std::uint64_t kFollowed = 1000000;
constexpr std::uint16_t kFirstFollowedKey = 1000;

std::vector<Change> transaction(std::uint64_t number) {
  std::mt19937_64 random(number);
  if (number >= kFollowed) {
    std::vector<Change> rows(2);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const std::uint64_t key = kFirstFollowedKey + (number - kFollowed) * rows.size() + i;
      rows[i] = {static_cast<std::uint16_t>(key), false, some_bytes(random(), random() % 300)};
    }
    return rows;
  }
  std::vector<Change> changes(1 + random() % 6);
  for (Change &change : changes) {
    change.key = static_cast<std::uint16_t>(random() % 40);
    change.erase = random() % 4 == 0;
    const std::size_t length = random() % 16 == 0 ? random() % 100000 : random() % 600;
    change.bytes = change.erase ? "" : some_bytes(random(), length);
  }
  return changes;
}

void replay(Model &model, const std::vector<Change> &changes) {
  for (const Change &change : changes) {
    if (change.erase) {
      model.erase(change.key);
    } else {
      model[change.key] = change.bytes;
    }
  }
}

int write_changes(Rows &rows, const std::vector<Change> &changes) {
  for (const Change &change : changes) {
    const std::uint32_t err =
        change.erase ? rows.erase(change.key) : rows.put(change.key, change.bytes);
    if (err != 0 && !(change.erase && err == 2)) return static_cast<int>(err);
  }
  return 0;
}

void prepare(const std::string &path, Model &model, std::uint64_t number) {
  ASSERT_EQ(run([&] {
              Rows rows(path);
              if (rows.lock_write() != 0 || write_changes(rows, transaction(number)) != 0) return 1;
              return rows.unlock();
            }),
            0);
  replay(model, transaction(number));
}

kelp_table *table_of(Rows &rows) {
  std::uint32_t err = 0;
  return reinterpret_cast<kelp_table *>(
      tbl_ospfv2_unknown_sub_tlv_table_open(rows.handle, 0, "rows", 1, &err));
}

void follow(const std::string &path) {
  ASSERT_EQ(run([&] {
              Rows rows(path);
              rows.lock_write();
              const std::int32_t code =
                  kelp_table_enable_cursors(rows.handle, table_of(rows), 1, nullptr);
              return code != 0 ? code : rows.unlock();
            }),
            0);
}

// How many rows a new cursor is shown; 250 at most.
int rows_in_feed(const std::string &path) {
  return run([&] {
    Rows rows(path);
    rows.lock_read();
    kelp_feed_cursor *cursor = kelp_feed_cursor_open(rows.handle, table_of(rows), nullptr);
    kelp_feed_change change;
    int shown = 0;
    while (shown < 250 && kelp_feed_cursor_next(cursor, &change) != 0) ++shown;
    kelp_feed_cursor_close(cursor);
    rows.unlock();
    return shown;
  });
}

// Said by the process that is to be killed: a step begins, and when it is over, it has ended.
void mark() { raise(SIGSTOP); }

bool stands_still(pid_t process) {
  int status = 0;
  waitpid(process, &status, 0);
  return WIFSTOPPED(status);
}

pid_t start_traced(const std::function<int()> &work) {
  return start([&] {
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) return 1;
    return work();
  });
}

void end_traced(pid_t process) {
  kill(process, SIGKILL);
  wait_for(process);
}

// Steps on, at most so often and not beyond the next mark. How many instructions that were.
long step_on(pid_t process, long instructions) {
  long done = 0;
  int status = 0;
  while (done < instructions) {
    if (ptrace(PTRACE_SINGLESTEP, process, nullptr, nullptr) != 0) break;
    waitpid(process, &status, 0);
    if (!WIFSTOPPED(status) || WSTOPSIG(status) == SIGSTOP) break;
    ++done;
  }
  return done;
}

// Runs work to its first mark, then instruction by instruction, and kills it behind so many of
// them. How many it took, less when the step was over before; -1 when it never came to the mark.
long run_and_kill(const std::function<int()> &work, long instructions) {
  const pid_t process = start_traced(work);
  if (!stands_still(process)) return -1;
  const long done = step_on(process, instructions);
  end_traced(process);
  return done;
}

// Runs on to the next mark, or to where the process has asked the system so many times, at which it
// stands still before and after. How often that was.
long run_on(pid_t process, long calls) {
  long done = 0;
  int status = 0;
  while (done < calls) {
    if (ptrace(PTRACE_SYSCALL, process, nullptr, nullptr) != 0) break;
    waitpid(process, &status, 0);
    if (!WIFSTOPPED(status) || WSTOPSIG(status) == SIGSTOP) break;
    ++done;
  }
  return done;
}

// For work of more instructions than can be stepped through: from the first mark on to a call of
// the system, and then by so many instructions. How many calls it took; -1 when it never came to
// the mark.
long run_on_and_kill(const std::function<int()> &work, long calls, long instructions) {
  const pid_t process = start_traced(work);
  if (!stands_still(process)) return -1;
  const long done = run_on(process, calls);
  if (done == calls) step_on(process, instructions);
  end_traced(process);
  return done;
}

enum class Step { commit, rollback, mend, lock };

// A writer that takes the step between two marks.
int take_step(const std::string &path, Step step, std::uint64_t number) {
  Rows rows(path);
  // The first lock of a process looks through the types, which is not what is killed.
  if (step == Step::lock && (rows.lock_read() != 0 || rows.unlock() != 0)) return 2;
  if (step == Step::lock || step == Step::mend) mark();
  if (rows.lock_write() != 0) return 2;
  if (step == Step::lock || step == Step::mend) {
    mark();
    return 0;
  }
  if (write_changes(rows, transaction(number)) != 0) return 3;
  mark();
  if (step == Step::rollback) {
    rows.rollback();
  } else if (rows.unlock() != 0) {
    return 4;
  }
  mark();
  return 0;
}

long kills() {
  const char *wanted = std::getenv("HARBOR_STORE_KILLS");
  return wanted == nullptr ? 300 : std::max(1L, std::atol(wanted));
}

// Kills at many places of one step, spread over it at random.
void torture_step(Step step, bool ends_in_commit, long share, std::uint64_t first = 2) {
  std::mt19937_64 random(static_cast<std::uint64_t>(step) * 1000 + 1);
  const Folder folder(Folder::in_memory());
  const std::string path = folder.file();
  Model model;
  prepare(path, model, 1);
  if (first >= kFollowed) follow(path);
  const long length = run_and_kill([&] { return take_step(path, step, first); }, 100000000);
  ASSERT_GT(length, 0);
  std::string wrong = verify(path, {model});
  if (!wrong.empty() && ends_in_commit) {
    // The whole step was run: the commit is there.
    replay(model, transaction(first));
    wrong = verify(path, {model});
  }
  ASSERT_EQ(wrong, "");
  for (long i = 0; i < share; ++i) {
    const std::uint64_t number = first + 8 + static_cast<std::uint64_t>(i);
    const long at = static_cast<long>(random() % static_cast<std::uint64_t>(length + 1));
    ASSERT_GE(run_and_kill([&] { return take_step(path, step, number); }, at), 0);
    Model after = model;
    replay(after, transaction(number));
    // Either, and which of the two it is stays so.
    const bool old_one = verify(path, {model}).empty();
    if (!old_one) {
      ASSERT_TRUE(ends_in_commit) << "killed behind " << at << " of " << length;
      ASSERT_EQ(verify(path, {after}), "") << "killed behind " << at << " of " << length;
      model = after;
    }
    if (first < kFollowed) continue;
    const auto followed = std::distance(model.lower_bound(kFirstFollowedKey), model.end());
    ASSERT_EQ(rows_in_feed(path), std::min<long>(followed, 250)) << "killed behind " << at;
  }
}

TEST(StoreKill, WithinACommitThatAFeedHearsOf) {
  torture_step(Step::commit, true, kills() / 30, kFollowed);
}
TEST(StoreKill, WithinARollbackOfWhatAFeedHeard) {
  torture_step(Step::rollback, false, kills() / 60, kFollowed);
}
TEST(StoreKill, WithinACommit) { torture_step(Step::commit, true, kills() / 15); }
TEST(StoreKill, WithinARollback) { torture_step(Step::rollback, false, kills() / 30); }
TEST(StoreKill, WithinALock) { torture_step(Step::lock, false, kills() / 30); }

void leave_a_dead_writer(const std::string &path, std::uint64_t number) {
  ASSERT_EQ(run([&] {
              Rows rows(path);
              rows.lock_write();
              write_changes(rows, transaction(number));
              kill(getpid(), SIGKILL);
              return 0;
            }),
            1000 + SIGKILL);
}

// A writer dies, and so does who comes next, anywhere while undoing it, several times over.
TEST(StoreKill, WithinWhatUndoesADeadWriter) {
  std::mt19937_64 random(77);
  const Folder folder(Folder::in_memory());
  const std::string path = folder.file();
  Model model;
  prepare(path, model, 1);
  for (long turn = 0; turn < kills() / 30; ++turn) {
    const auto number = 100 + static_cast<std::uint64_t>(turn);
    leave_a_dead_writer(path, number);
    for (int again = 0; again < 3; ++again) {
      ASSERT_GE(run_and_kill([&] { return take_step(path, Step::mend, number); },
                             static_cast<long>(random() % 20000)),
                0);
    }
    ASSERT_EQ(verify(path, {model}), "") << "turn " << turn;
  }
}

// The store and its journal grow, each from where it asks the system for room.
TEST(StoreKill, WithinGrowth) {
  std::mt19937_64 random(78);
  const Folder folder(Folder::in_memory());
  const std::string path = folder.file();
  Model model;
  prepare(path, model, 1);
  for (long turn = 0; turn < kills() / 30; ++turn) {
    auto asked = static_cast<int>(random() % 4);
    const auto grow = [&] {
      Rows rows(path);
      if (rows.lock_write() != 0) return 1;
      before_room = [&] {
        if (asked-- == 0) mark();
      };
      // Of what was there, so that the journal grows too, and of what is new.
      for (const auto &[key, bytes] : model) rows.put(key, bytes + "longer");
      for (std::uint16_t key = 100; key < 250; ++key) rows.put(key, some_bytes(key, 40000));
      return 0;
    };
    ASSERT_GE(run_and_kill(grow, static_cast<long>(random() % 6000)), 0) << asked;
    ASSERT_EQ(verify(path, {model}), "") << "turn " << turn;
  }
}

// The rest of what happens to a store takes more instructions than can be stepped through: it is
// killed around its calls of the system. Each turn finds the store as prepare_turn leaves it, and
// leaves what is in model.
void torture_around_calls(const std::function<void()> &prepare_turn,
                          const std::function<int()> &work, const std::string &path,
                          const Model &model, long share) {
  std::mt19937_64 random(79);
  prepare_turn();
  const long most = run_on_and_kill(work, 1000000, 0);
  ASSERT_GT(most, 4);
  for (long turn = 0; turn < share; ++turn) {
    prepare_turn();
    const long calls = static_cast<long>(random() % static_cast<std::uint64_t>(most + 1));
    const long instructions = random() % 2 == 0 ? 0 : static_cast<long>(random() % 2000);
    ASSERT_GE(run_on_and_kill(work, calls, instructions), 0);
    ASSERT_EQ(verify(path, {model}), "") << "turn " << turn << ", killed " << instructions
                                         << " instructions behind call " << calls << " of " << most;
  }
}

// Opens a store and takes its first lock.
int open_and_lock(const std::string &path, std::uint32_t durability = KELP_DURABILITY_PROCESS) {
  kelp_store_options options;
  kelp_store_options_init(&options);
  options.durability = durability;
  mark();
  Rows rows(path, &options);
  if (!rows.is_open() || rows.lock_write() != 0) return 1;
  mark();
  return 0;
}

TEST(StoreKill, WhileItIsMade) {
  for (const std::uint32_t durability : {KELP_DURABILITY_PROCESS, KELP_DURABILITY_POWER}) {
    const Folder folder(Folder::in_memory());
    const auto remove_all = [&] {
      for (const auto &each : std::filesystem::directory_iterator(folder.path())) {
        std::filesystem::remove(each);
      }
    };
    torture_around_calls(
        remove_all, [&] { return open_and_lock(folder.file(), durability); }, folder.file(), {},
        kills() / 20);
  }
}

TEST(StoreKill, WhileItIsOpened) {
  const Folder folder(Folder::in_memory());
  const std::string path = folder.file();
  Model model;
  prepare(path, model, 1);
  std::uint64_t number = 1;
  // Every second time there is something to undo.
  const auto prepare_turn = [&] {
    if (++number % 2 == 0) leave_a_dead_writer(path, number);
  };
  torture_around_calls(
      prepare_turn, [&] { return open_and_lock(path); }, path, model, kills() / 15);
}

TEST(StoreKill, WhileItIsClosed) {
  for (const std::uint32_t durability : {KELP_DURABILITY_PROCESS, KELP_DURABILITY_POWER}) {
    const Folder folder(Folder::in_memory());
    const std::string path = folder.file();
    const Model model = {{1, "row"}};
    const auto close = [&] {
      kelp_store_options options;
      kelp_store_options_init(&options);
      options.durability = durability;
      {
        Rows rows(path, &options);
        if (rows.commit(model) != 0) return 1;
        mark();
      }
      mark();
      return 0;
    };
    torture_around_calls([] {}, close, path, model, kills() / 20);
  }
}

// Of a store that was in use when the machine stopped: the file is looked through, or made anew
// from the log of commits.
TEST(StoreKill, WhileItIsOpenedAfterARestart) {
  for (const std::uint32_t durability : {KELP_DURABILITY_PROCESS, KELP_DURABILITY_POWER}) {
    const Folder folder(Folder::in_memory());
    const std::string path = folder.file();
    const Model model = {{1, "row"}, {2, some_bytes(2, 100000)}};
    const auto stop_machine = [&] {
      ASSERT_EQ(run([&] {
                  kelp_store_options options;
                  kelp_store_options_init(&options);
                  options.durability = durability;
                  Rows rows(path, &options);
                  if (rows.commit(model) != 0) return 1;
                  kill(getpid(), SIGKILL);
                  return 0;
                }),
                1000 + SIGKILL);
      forget_run_of_machine(path);
    };
    torture_around_calls(
        stop_machine, [&] { return open_and_lock(path, durability); }, path, model, kills() / 20);
  }
}

// Several writers that report what they committed, killed at random times; the rows are those of a
// model that replays the reports, with at most one commit more for the one that was killed.
TEST(StoreKill, WritersAtRandomTimes) {
  std::mt19937_64 random(5);
  const Folder folder(Folder::in_memory());
  const std::string path = folder.file();
  Model model;
  prepare(path, model, 1);
  std::uint64_t next = 1000;
  for (long turn = 0; turn < kills() * 2 / 3; ++turn) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const std::uint64_t first = next;
    const pid_t writer = start([&]() -> int {
      Rows rows(path);
      for (std::uint64_t number = first;; ++number) {
        if (rows.lock_write() != 0 || write_changes(rows, transaction(number)) != 0) return 1;
        if (rows.unlock() != 0) return 2;
        if (write(ends[1], &number, sizeof number) != sizeof number) return 3;
      }
    });
    close(ends[1]);
    usleep(static_cast<useconds_t>(2000 + random() % 30000));
    kill(writer, SIGKILL);
    ASSERT_EQ(wait_for(writer), 1000 + SIGKILL);
    std::uint64_t number = 0;
    while (read(ends[0], &number, sizeof number) == sizeof number) {
      ASSERT_EQ(number, next);
      replay(model, transaction(number));
      next = number + 1;
    }
    close(ends[0]);
    if (verify(path, {model}).empty()) continue;
    replay(model, transaction(next));
    ASSERT_EQ(verify(path, {model}), "") << "turn " << turn;
    ++next;
  }
}

// Writers side by side, each with keys of its own, one of them killed and begun anew again and
// again. At the end each key holds what its writer committed last.
TEST(StoreKill, WritersBesideEachOther) {
  const Folder folder(Folder::in_memory());
  const std::string path = folder.file();
  constexpr int kWriters = 3;
  constexpr std::uint16_t kTurns = 60;
  std::vector<pid_t> writers;
  for (int writer = 0; writer < kWriters; ++writer) {
    writers.push_back(start([&path, writer] {
      Rows rows(path);
      for (std::uint16_t turn = 0; turn < kTurns; ++turn) {
        if (rows.lock_write() != 0) return 1;
        for (std::uint16_t i = 0; i < 3; ++i) {
          const auto key = static_cast<std::uint16_t>(writer * 10 + i);
          if (rows.put(key, some_bytes(turn, static_cast<std::size_t>(turn) * 7)) != 0) return 2;
        }
        if (turn % 5 == 4) {
          if (rows.put(static_cast<std::uint16_t>(writer * 10 + 9), "undone") != 0) return 3;
          if (rows.erase(static_cast<std::uint16_t>(writer * 10 + 9)) != 0) return 4;
        }
        if (rows.unlock() != 0) return 5;
      }
      return 0;
    }));
  }
  for (int turn = 0; turn < 20; ++turn) {
    const pid_t victim = start([&]() -> int {
      Rows rows(path);
      for (;;) {
        rows.lock_write();
        rows.put(500, "half");
        rows.put(501, some_bytes(1, 5000));
        rows.rollback();
        rows.lock_read();
        rows.all();
        rows.unlock();
      }
    });
    usleep(5000);
    kill(victim, SIGKILL);
    wait_for(victim);
  }
  for (const pid_t writer : writers) EXPECT_EQ(wait_for(writer), 0);
  Model expected;
  for (int writer = 0; writer < kWriters; ++writer) {
    for (int i = 0; i < 3; ++i) {
      expected[static_cast<std::uint16_t>(writer * 10 + i)] =
          some_bytes(kTurns - 1, static_cast<std::size_t>(kTurns - 1) * 7);
    }
  }
  EXPECT_EQ(verify(path, {expected}), "");
}

}  // namespace

}  // namespace store_test
