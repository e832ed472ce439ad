// Giving the disk back what a store does not use: what stays, what others see of it, what a kill
// leaves, and room that is had again or is an error.
#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "rows.hpp"

namespace store_test {

namespace {

constexpr std::uint16_t kRows = 60;
constexpr std::size_t kRowBytes = 100000;

std::string bytes_of(std::uint16_t key) { return some_bytes(key, kRowBytes); }

// What is left of the rows: some in the middle, so that there is something before and behind them.
Model left_rows() {
  Model rows;
  for (std::uint16_t key = 20; key < 24; ++key) rows[key] = bytes_of(key);
  return rows;
}

// Makes all rows and ends those that are not left; 0 when it went well.
int make_and_end(Rows &rows) {
  Model all;
  for (std::uint16_t key = 0; key < kRows; ++key) all[key] = bytes_of(key);
  if (rows.commit(all) != 0 || rows.lock_write() != 0) return 1;
  for (std::uint16_t key = 0; key < kRows; ++key) {
    if (left_rows().count(key) == 0 && rows.erase(key) != 0) return 2;
  }
  return rows.unlock();
}

// Empty when the process finds these rows, and nothing wrong.
std::string judge(Rows &rows, const Model &expected) {
  if (rows.lock_read() != 0) return rows.error.text;
  const bool found = rows.all() == expected;
  rows.unlock();
  return found ? rows.check() : "other rows";
}

std::uint64_t on_disk(const std::string &path) {
  struct stat found {};
  EXPECT_EQ(stat(path.c_str(), &found), 0);
  return static_cast<std::uint64_t>(found.st_blocks) * 512;
}

constexpr std::uint64_t kSmall = 3 << 20;  // what is left, with the types
constexpr std::uint64_t kLarge = 6 << 20;  // all rows

TEST(StoreCompact, GivesBackWhatIsNotUsedAndKeepsTheRest) {
  const Folder folder;
  const std::string path = folder.file();
  Rows rows(path);
  ASSERT_EQ(make_and_end(rows), 0);
  const std::uintmax_t size = std::filesystem::file_size(path);
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  kelp_compaction bytes{};
  ASSERT_EQ(kelp_database_compact(rows.handle, &bytes, &rows.error), 0) << rows.error.text;
  EXPECT_GT(bytes.before, kLarge);
  EXPECT_LT(bytes.after, kSmall);
  EXPECT_EQ(bytes.after, on_disk(path));
  EXPECT_LT(std::filesystem::file_size(path), size);
  EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
  EXPECT_EQ(judge(rows, left_rows()), "");
  ASSERT_EQ(kelp_database_compact(rows.handle, nullptr, &rows.error), 0) << rows.error.text;
  EXPECT_LE(on_disk(path), bytes.after);
}

// A span of each size stays divided when its last block is freed.
TEST(StoreCompact, SpansThatWereDividedAreGivenBackToo) {
  const Folder folder;
  Rows rows(folder.file());
  ASSERT_EQ(rows.commit({{0, "stays"}}), 0);
  const std::uint64_t before = on_disk(folder.file());
  Model sizes;
  for (std::uint16_t key = 1; key <= 40; ++key) sizes[key] = some_bytes(key, key * 400u);
  ASSERT_EQ(rows.commit(sizes), 0);
  ASSERT_EQ(rows.lock_write(), 0);
  for (const auto &[key, bytes] : sizes) ASSERT_EQ(rows.erase(key), 0u);
  ASSERT_EQ(rows.unlock(), 0);
  ASSERT_EQ(kelp_database_compact(rows.handle, nullptr, &rows.error), 0) << rows.error.text;
  EXPECT_LE(on_disk(folder.file()), before);
  EXPECT_EQ(judge(rows, {{0, "stays"}}), "");
}

TEST(StoreCompact, RoomIsHadAgain) {
  const Folder folder;
  const std::string path = folder.file();
  Rows rows(path);
  ASSERT_EQ(make_and_end(rows), 0);
  ASSERT_EQ(kelp_database_compact(rows.handle, nullptr, &rows.error), 0) << rows.error.text;
  Model all = left_rows();
  for (std::uint16_t key = 100; key < 100 + kRows; ++key) all[key] = bytes_of(key);
  ASSERT_EQ(rows.commit(all), 0) << rows.error.text;
  EXPECT_GT(on_disk(path), kLarge);
  EXPECT_EQ(judge(rows, all), "");
  ASSERT_EQ(rows.lock_write(), 0);
  ASSERT_EQ(rows.put(200, bytes_of(200)), 0u);
  ASSERT_EQ(rows.rollback(), 0);
  EXPECT_EQ(judge(rows, all), "");
}

TEST(StoreCompact, OthersGoOn) {
  const Folder folder;
  const std::string path = folder.file();
  Signal compacted, looked;
  const pid_t other = start([&] {
    Rows rows(path);
    if (make_and_end(rows) != 0) return 1;
    looked.give();
    if (compacted.take() == 0) return 2;
    if (rows.lock_read() != 0 || rows.all() != left_rows() || rows.unlock() != 0) return 3;
    Model more = left_rows();
    for (std::uint16_t key = 100; key < 120; ++key) more[key] = bytes_of(key);
    if (rows.commit(more) != 0) return 4;
    return rows.lock_read() == 0 && rows.all() == more ? rows.unlock() : 5;
  });
  ASSERT_NE(looked.take(), 0);
  {
    Rows rows(path);
    ASSERT_EQ(kelp_database_compact(rows.handle, nullptr, &rows.error), 0) << rows.error.text;
    compacted.give();
    EXPECT_EQ(wait_for(other), 0);
    EXPECT_EQ(rows.check(), "");
  }
}

TEST(StoreCompact, ItWaitsAsWritersDo) {
  const Folder folder;
  Signal locked;
  const pid_t other = start([&] {
    kelp_store_options options;
    kelp_store_options_init(&options);
    options.wait_ms = 50;
    if (locked.take() == 0) return 1;
    Rows waiting(folder.file(), &options);
    return kelp_database_compact(waiting.handle, nullptr, &waiting.error);
  });
  Rows rows(folder.file());
  ASSERT_EQ(rows.lock_read(), 0);
  EXPECT_EQ(kelp_database_compact(rows.handle, nullptr, &rows.error), 35);
  rows.unlock();
  ASSERT_EQ(rows.lock_write(), 0);
  locked.give();
  EXPECT_EQ(wait_for(other), 110);
  rows.unlock();
  kelp_error error{};
  kelp_database *own = kelp_database_open_private("own", nullptr, nullptr);
  kelp_handle *handle = kelp_handle_create(own, nullptr, nullptr);
  EXPECT_EQ(kelp_database_compact(handle, nullptr, &error), 22);
  kelp_handle_destroy(handle);
  kelp_database_close(own, nullptr);
}

// Compacts in a process that is killed where it enters or leaves the system for the n-th time;
// false when it was done before.
bool compact_killed(const std::string &path, int n) {
  const pid_t process = start([&] {
    Rows rows(path);
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) return 1;
    raise(SIGSTOP);
    return kelp_database_compact(rows.handle, nullptr, &rows.error);
  });
  int status = 0;
  waitpid(process, &status, 0);
  for (int i = 0; i < n && WIFSTOPPED(status); ++i) {
    if (ptrace(PTRACE_SYSCALL, process, nullptr, nullptr) != 0) break;
    waitpid(process, &status, 0);
  }
  if (!WIFSTOPPED(status)) {
    EXPECT_EQ(status, 0);
    return false;
  }
  kill(process, SIGKILL);
  waitpid(process, &status, 0);
  return true;
}

TEST(StoreCompact, AKillAtAnyCallToTheSystemLeavesTheStoreWhole) {
  const Folder folder(Folder::in_memory());
  const std::string path = folder.file();
  ASSERT_EQ(run([&] {
              Rows rows(path);
              return make_and_end(rows);
            }),
            0);
  const Folder copy(Folder::in_memory());
  int calls = 0;
  for (bool killed = true; killed; ++calls) {
    for (const char *file : {"store", "store-log", "store-lock"}) {
      std::filesystem::copy_file(folder.file(file), copy.file(file),
                                 std::filesystem::copy_options::overwrite_existing);
    }
    killed = compact_killed(copy.file(), calls);
    ASSERT_EQ(verify(copy.file(), {left_rows()}), "") << calls;
  }
  EXPECT_GT(calls, 10);
  EXPECT_LT(on_disk(copy.file()), kSmall);
}

// The file is made anew from what stands beside it.
TEST(StoreCompact, WhatSurvivesPowerDoesSoBehindIt) {
  const Folder folder;
  const std::string path = folder.file();
  Model expected = left_rows();
  expected[300] = "behind it";
  {
    kelp_store_options options;
    kelp_store_options_init(&options);
    options.durability = KELP_DURABILITY_POWER;
    Rows rows(path, &options);
    ASSERT_EQ(make_and_end(rows), 0);
    ASSERT_EQ(kelp_database_compact(rows.handle, nullptr, &rows.error), 0) << rows.error.text;
    ASSERT_EQ(rows.commit({{300, "behind it"}}), 0);
  }
  EXPECT_EQ(verify(path, {expected}), "");
  const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  constexpr off_t kBoot = 128;
  ASSERT_EQ(pwrite(file, "another run here", 16, kBoot), 16);
  close(file);
  EXPECT_EQ(verify(path, {expected}), "");
}

// In a file system that only the process sees: room that was given back and taken by others is an
// error when it is needed, and the transaction is undone.
int fill_behind(const std::string &folder) {
  if (unshare(CLONE_NEWNS) != 0 || mount("", "/", "", MS_REC | MS_PRIVATE, nullptr) != 0) return 1;
  if (mount("small", folder.c_str(), "tmpfs", 0, "size=24m") != 0) return 2;
  Rows rows(folder + "/store");
  if (!rows.is_open() || make_and_end(rows) != 0) return 3;
  if (kelp_database_compact(rows.handle, nullptr, &rows.error) != 0) return 4;
  const int taken = open((folder + "/other").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
  const std::string piece(1 << 16, 'x');
  while (write(taken, piece.data(), piece.size()) > 0) {
  }
  Model more;
  for (std::uint16_t key = 100; key < 100 + kRows; ++key) more[key] = bytes_of(key);
  if (rows.commit(more) == 0) return 5;
  rows.rollback();
  if (rows.lock_read() != 0 || rows.all() != left_rows() || rows.unlock() != 0) return 6;
  if (!rows.check().empty()) return 7;
  if (kelp_database_compact(rows.handle, nullptr, &rows.error) != 0) return 8;
  close(taken);
  unlink((folder + "/other").c_str());
  if (rows.commit(more) != 0) return 9;
  return rows.check().empty() ? 0 : 10;
}

TEST(StoreCompactAsRoot, AFullDiskIsAnErrorWhenRoomIsNeededAgain) {
  const Folder folder;
  EXPECT_EQ(run([&] { return fill_behind(folder.file("")); }), 0);
}

}  // namespace

}  // namespace store_test
