// Stores of durability `power` in a machine that stops at any moment: a layer keeps of each file
// what was synced, and what was not is lost or torn, sector by sector. What was acknowledged is
// there afterwards, whole; of the rest all or nothing.
//
// HARBOR_STORE_LOSSES says how many losses there are; without it 25.
#include <dirent.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>

#include "rows.hpp"
#include "syncs.hpp"

namespace store_test {

namespace {

namespace fs = std::filesystem;

std::string content(const fs::path &file) {
  std::string bytes(fs::exists(file) ? fs::file_size(file) : 0, '\0');
  std::ifstream(file, std::ios::binary)
      .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

// What a machine has on its disk: of each file what it had when it was synced last, and of the
// folder which file stood under which name.
class Disk {
 public:
  explicit Disk(const std::string &folder) : folder_(folder) {}

  void start() {
    after_sync = [this](int file) { note(file); };
  }

  // Once a sync was done, and before its caller hears of it.
  void note(int file) const {
    char name[64];
    char path[PATH_MAX];
    std::snprintf(name, sizeof name, "/proc/self/fd/%d", file);
    const ssize_t length = readlink(name, path, sizeof path - 1);
    if (length <= 0) return;
    const fs::path place(std::string(path, static_cast<std::size_t>(length)));
    std::error_code ignored;
    if (fs::is_directory(place, ignored)) {
      // A rename counts from here on.
      for (const char *each : {"store", "store-image"}) {
        if (fs::exists(place / each)) keep(place / each, each);
      }
    } else {
      keep(place, place.filename().string());
    }
  }

 private:
  void keep(const fs::path &place, const std::string &name) const {
    // Whole, since the process may be killed within.
    const fs::path half = fs::path(folder_) / ("half-" + name);
    fs::copy_file(place, half, fs::copy_options::overwrite_existing);
    fs::rename(half, fs::path(folder_) / name);
  }

  std::string folder_;
};

// What is found after the loss: of each sector the synced or the latest bytes.
class Loss {
 public:
  explicit Loss(std::uint64_t seed) : random_(seed) {}

  void make(const fs::path &now, const fs::path &synced, const fs::path &after) {
    tear(now / "store-redo", synced / "store-redo", after / "store-redo");
    // Names are changed as a whole.
    const bool renamed = random_() % 2 == 0 && fs::exists(now / "store-image");
    fs::copy_file((renamed ? now : synced) / "store-image", after / "store-image");
    garble(now / "store", after / "store");
    if (random_() % 2 == 0) garble(now / "store-log", after / "store-log");
  }

 private:
  static constexpr std::size_t kSector = 512;

  void tear(const fs::path &now, const fs::path &synced, const fs::path &after) {
    const std::string latest = content(now);
    std::string found = content(synced);
    const bool all_or_none = random_() % 4 == 0;
    const bool all = random_() % 2 == 0;
    if (latest.size() > found.size() && random_() % 2 == 0) found.resize(latest.size(), '\0');
    for (std::size_t at = 0; at < std::min(found.size(), latest.size()); at += kSector) {
      const std::size_t length = std::min(kSector, std::min(found.size(), latest.size()) - at);
      if (all_or_none ? all : random_() % 2 == 0) found.replace(at, length, latest, at, length);
    }
    std::ofstream(after, std::ios::binary) << found;
  }

  // The mapped file after another run of the machine: some pages written, some not, in no order.
  void garble(const fs::path &now, const fs::path &after) {
    std::string bytes = content(now);
    for (std::size_t at = 4096; at + 4096 <= bytes.size(); at += 4096) {
      if (random_() % 3 == 0) bytes.replace(at, 4096, 4096, static_cast<char>(random_() % 3));
    }
    for (int i = 128; i < 144; ++i) bytes[static_cast<std::size_t>(i)] = static_cast<char>(i);
    if (now.filename() == "store") {
      // Of what transactions change in the header too.
      for (std::size_t at = 192; at < 4096; at += 8) {
        if (random_() % 4 == 0) bytes[at] = static_cast<char>(random_());
      }
      if (random_() % 4 == 0) bytes.resize(bytes.size() - bytes.size() / 5);
    }
    std::ofstream(after, std::ios::binary) << bytes;
  }

  std::mt19937_64 random_;
};

kelp_store_options kept(std::uint64_t image_bytes) {
  kelp_store_options options;
  kelp_store_options_init(&options);
  options.durability = KELP_DURABILITY_POWER;
  options.image_bytes = image_bytes;
  return options;
}

// Transactions until the process is ended; the number of each is told when it was acknowledged.
struct Step {
  std::uint16_t key;
  std::size_t length;
};
std::vector<Step> steps_of(std::uint64_t number) {
  std::mt19937_64 random(number);
  std::vector<Step> steps(1 + random() % 4);
  for (Step &step : steps) {
    step.key = static_cast<std::uint16_t>(random() % 30);
    step.length = random() % 20 == 0 ? random() % 70000 : random() % 500;
  }
  return steps;
}
void replay(Model &model, std::uint64_t number) {
  for (const Step &step : steps_of(number)) model[step.key] = some_bytes(number, step.length);
}

int run_transactions(const std::string &path, const std::string &disk, std::uint64_t first,
                     std::uint64_t count, int acknowledged) {
  Disk layer(disk);
  layer.start();
  const kelp_store_options options = kept(std::uint64_t{200} << 10);
  Rows rows(path, &options);
  if (!rows.is_open()) return 1;
  for (std::uint64_t number = first; number < first + count; ++number) {
    if (rows.lock_write() != 0) return 2;
    for (const Step &step : steps_of(number)) {
      if (rows.put(step.key, some_bytes(number, step.length)) != 0) return 3;
    }
    // A transaction that is undone leaves nothing in the log.
    if (number % 7 == 3) {
      rows.rollback();
      if (rows.lock_write() != 0) return 4;
      for (const Step &step : steps_of(number)) {
        if (rows.put(step.key, some_bytes(number, step.length)) != 0) return 5;
      }
    }
    if (rows.unlock() != 0) return 6;
    if (write(acknowledged, &number, sizeof number) != sizeof number) return 7;
  }
  return 0;
}

TEST(StorePower, WhatWasAcknowledgedIsThereAfterALoss) {
  const char *wanted = std::getenv("HARBOR_STORE_LOSSES");
  const int turns = wanted != nullptr ? std::atoi(wanted) : 25;
  std::mt19937_64 random(5);
  const Folder first_folder(Folder::in_memory());
  const Folder first_disk(Folder::in_memory());
  std::string path = first_folder.file();
  std::string disk = fs::path(first_disk.file()).parent_path();
  std::vector<std::unique_ptr<Folder>> folders;
  Model model;
  std::uint64_t next = 1;
  int images = 0;
  for (int turn = 0; turn < turns; ++turn) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t writer = start([&] { return run_transactions(path, disk, next, 30, ends[1]); });
    close(ends[1]);
    const bool killed = turn % 3 != 0;
    std::uint64_t number = 0;
    std::uint64_t budget = random() % 20;
    while (read(ends[0], &number, sizeof number) == sizeof number) {
      ASSERT_EQ(number, next);
      replay(model, number);
      next = number + 1;
      if (killed && budget-- == 0) {
        usleep(static_cast<useconds_t>(random() % 3000));
        kill(writer, SIGKILL);
        budget = UINT64_MAX;
      }
    }
    close(ends[0]);
    const int status = wait_for(writer);
    ASSERT_TRUE(status == 0 || status == 1000 + SIGKILL) << status;
    images += fs::exists(path + "-image") ? 1 : 0;
    folders.push_back(std::make_unique<Folder>(Folder::in_memory()));
    const std::string after = folders.back()->file();
    folders.push_back(std::make_unique<Folder>(Folder::in_memory()));
    const std::string after_disk = fs::path(folders.back()->file()).parent_path();
    Loss(random()).make(fs::path(path).parent_path(), disk, fs::path(after).parent_path());
    for (const auto &each : fs::directory_iterator(fs::path(after).parent_path())) {
      fs::copy(each.path(), fs::path(after_disk) / each.path().filename());
    }
    const std::string old_one = verify(after, {model});
    if (!old_one.empty()) {
      // The one that was being made.
      replay(model, next);
      ASSERT_EQ(verify(after, {model}), "") << "turn " << turn << ", at first: " << old_one;
      ++next;
    }
    path = after;
    disk = after_disk;
    for (const auto &each : fs::directory_iterator(fs::path(path).parent_path())) {
      fs::copy(each.path(), fs::path(disk) / each.path().filename(),
               fs::copy_options::overwrite_existing);
    }
  }
  EXPECT_GT(images, 0);
  EXPECT_GT(next, static_cast<std::uint64_t>(turns));
}

int commit_one(const std::string &path, std::uint16_t key) {
  return run([&] {
    const kelp_store_options options = kept(std::uint64_t{1} << 20);
    Rows rows(path, &options);
    if (rows.lock_write() != 0 || rows.put(key, "row") != 0) return 1;
    return rows.unlock();
  });
}

TEST(StorePower, AnImageThatIsMissingOrAnotherStoresIsNamed) {
  const Folder folder(Folder::in_memory());
  const Folder other(Folder::in_memory());
  ASSERT_EQ(commit_one(folder.file(), 1), 0);
  ASSERT_EQ(commit_one(other.file(), 2), 0);
  forget_run_of_machine(folder.file());
  const auto refused = [&](const char *words) {
    return run([&] {
      Rows rows(folder.file());
      return !rows.is_open() && std::strstr(rows.error.text, words) != nullptr ? rows.error.code
                                                                               : 1;
    });
  };
  fs::rename(folder.file("store-image"), folder.file("kept"));
  EXPECT_EQ(refused("store-image"), 5);
  fs::copy(other.file("store-image"), folder.file("store-image"));
  EXPECT_EQ(refused("another store"), 5);
  fs::remove(folder.file("store-image"));
  fs::rename(folder.file("kept"), folder.file("store-image"));
  EXPECT_EQ(run([&] {
              kelp_store_options options;
              kelp_store_options_init(&options);
              options.read_only = 1;
              Rows rows(folder.file(), &options);
              return rows.is_open() ? 1 : rows.error.code;
            }),
            11);
  EXPECT_EQ(verify(folder.file(), {Model{{1, "row"}}}), "");
}

// A commit whose log cannot be synced is undone, here and after a loss.
TEST(StorePower, ACommitThatCannotBeSyncedIsUndone) {
  const Folder folder(Folder::in_memory());
  ASSERT_EQ(commit_one(folder.file(), 1), 0);
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              if (rows.lock_write() != 0 || rows.put(2, "not kept") != 0) return 1;
              fail_syncs_from(0, 1);
              if (rows.unlock() != 5) return 2;
              if (std::strstr(rows.error.text, "store-redo") == nullptr) return 3;
              rows.lock_read();
              const bool same = rows.all() == Model{{1, "row"}};
              rows.unlock();
              return same ? 0 : 4;
            }),
            0);
  forget_run_of_machine(folder.file());
  EXPECT_EQ(verify(folder.file(), {Model{{1, "row"}}}), "");
}

// A writer that dies between the log and the end of its commit is undone, and its record with it.
TEST(StorePower, ARecordOfADeadWriterCountsNoMoreOnceItWasUndone) {
  const Folder folder(Folder::in_memory());
  ASSERT_EQ(commit_one(folder.file(), 1), 0);
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              rows.lock_write();
              rows.put(2, "in doubt");
              after_sync = [](int) { _exit(9); };
              rows.unlock();
              return 0;
            }),
            9);
  EXPECT_EQ(verify(folder.file(), {Model{{1, "row"}}}), "");
  forget_run_of_machine(folder.file());
  EXPECT_EQ(verify(folder.file(), {Model{{1, "row"}}}), "");
  ASSERT_EQ(commit_one(folder.file(), 3), 0);
  forget_run_of_machine(folder.file());
  EXPECT_EQ(verify(folder.file(), {Model{{1, "row"}, {3, "row"}}}), "");
}

// What was lost is made anew again when the first try is killed.
TEST(StorePower, MakingItAnewCanBeKilled) {
  const Folder folder(Folder::in_memory());
  ASSERT_EQ(commit_one(folder.file(), 1), 0);
  ASSERT_EQ(commit_one(folder.file(), 2), 0);
  for (int after = 0; after < 4; ++after) {
    forget_run_of_machine(folder.file());
    const int status = run([&] {
      int left = after;
      after_sync = [&](int) {
        if (left-- == 0) _exit(9);
      };
      Rows rows(folder.file());
      return rows.is_open() ? 0 : 1;
    });
    EXPECT_TRUE(status == 9 || status == 0) << status;
    EXPECT_EQ(verify(folder.file(), {Model{{1, "row"}, {2, "row"}}}), "") << after;
  }
}

// Its spans have headers on pages that nothing else of the transaction changes.
TEST(StorePower, ABlockOfManySpansIsThereAfterALoss) {
  const Folder folder(Folder::in_memory());
  const Model expected = {{1, std::string(6000000, 'b')}, {2, "row"}};
  ASSERT_EQ(commit_one(folder.file(), 2), 0);
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              return rows.commit({{1, expected.at(1)}});
            }),
            0);
  forget_run_of_machine(folder.file());
  EXPECT_EQ(verify(folder.file(), {expected}), "");
}

TEST(StorePower, AFileKeepsTheDurabilityThatItWasMadeWith) {
  const Folder folder(Folder::in_memory());
  ASSERT_EQ(commit_one(folder.file(), 1), 0);
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              if (rows.lock_write() != 0 || rows.put(2, "row") != 0) return 1;
              return rows.unlock();
            }),
            0);
  forget_run_of_machine(folder.file());
  EXPECT_EQ(verify(folder.file(), {Model{{1, "row"}, {2, "row"}}}), "");
  EXPECT_EQ(run([&] {
              kelp_store_options options;
              kelp_store_options_init(&options);
              options.durability = 2;
              Rows rows(folder.file(), &options);
              return rows.is_open() ? 1 : rows.error.code;
            }),
            22);
}

}  // namespace

}  // namespace store_test
