// What the system refuses a store: room on the disk, addresses, syncing. The program puts functions
// of its own in front of the system's, which fail the n-th call of a process.
#include <dlfcn.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "rows.hpp"
#include "syncs.hpp"

namespace {

// Which call fails, counted from 0; negative for none. Set in processes that a test starts.
long fallocate_fails = -1;
long mmap_fails = -1;
long write_fails = -1;
long sync_fails = -1;
long syncs_that_fail = 0;
bool fails_on = false;  // and all that follow

bool strikes(long &left) {
  if (left < 0) return false;
  if (left == 0) {
    if (!fails_on) left = -1;
    return true;
  }
  --left;
  return false;
}

bool sync_strikes() {
  if (sync_fails > 0) {
    --sync_fails;
    return false;
  }
  if (sync_fails < 0 || syncs_that_fail == 0) return false;
  --syncs_that_fail;
  return true;
}

template <typename Function>
Function next(const char *name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" int fallocate(int file, int mode, off_t offset, off_t length) {
  if (strikes(fallocate_fails)) {
    errno = ENOSPC;
    return -1;
  }
  if (store_test::before_room) store_test::before_room();
  static const auto real = next<int (*)(int, int, off_t, off_t)>("fallocate");
  return real(file, mode, offset, length);
}

extern "C" ssize_t pwrite(int file, const void *bytes, size_t length, off_t offset) {
  if (strikes(write_fails)) {
    errno = ENOSPC;
    return -1;
  }
  static const auto real = next<ssize_t (*)(int, const void *, size_t, off_t)>("pwrite");
  return real(file, bytes, length, offset);
}

extern "C" void *mmap(void *address, size_t length, int protection, int flags, int file,
                      off_t offset) __THROW {
  if (file >= 0 && strikes(mmap_fails)) {
    errno = ENOMEM;
    return MAP_FAILED;
  }
  static const auto real = next<void *(*)(void *, size_t, int, int, int, off_t)>("mmap");
  return real(address, length, protection, flags, file, offset);
}

namespace {

int synced(int file, const char *name) {
  if (sync_strikes()) {
    errno = EIO;
    return -1;
  }
  const int result = next<int (*)(int)>(name)(file);
  if (result == 0 && store_test::after_sync) store_test::after_sync(file);
  return result;
}

}  // namespace

extern "C" int fdatasync(int file) { return synced(file, "fdatasync"); }
extern "C" int fsync(int file) { return synced(file, "fsync"); }

namespace store_test {

std::function<void(int)> after_sync;
std::function<void()> before_room;

void fail_syncs_from(long n, long count) {
  sync_fails = n;
  syncs_that_fail = count;
}

namespace {

const Model kBefore = {{1, "one"}, {2, std::string(5000, 'z')}};

void prepare(const std::string &path) {
  ASSERT_EQ(run([&] {
              Rows rows(path);
              if (rows.lock_write() != 0) return 1;
              for (const auto &[key, bytes] : kBefore) rows.put(key, bytes);
              return rows.unlock();
            }),
            0);
}

// Ends rows, changes all there was, and adds a megabyte and more.
void change_much(Rows &rows) {
  rows.put(1, std::string(30000, 'c'));
  rows.erase(2);
  for (std::uint16_t key = 10; key < 60; ++key) rows.put(key, some_bytes(key, 40000));
}

// Each call that asks for room fails in turn. Whatever the program did, either it was told, or all
// of it is there.
TEST(StoreFault, NoRoomAtAnyCall) {
  for (const bool from_there_on : {false, true}) {
    bool went_through = false;
    for (long n = 0; n < 60 && !went_through; ++n) {
      const Folder folder(Folder::in_memory());
      prepare(folder.file());
      Model after;
      const int result = run([&] {
        Rows rows(folder.file());
        if (rows.lock_write() != 0) return 1;
        fails_on = from_there_on;
        fallocate_fails = n;
        std::uint32_t err = rows.put(3, "three");
        for (std::uint16_t key = 10; key < 60 && err == 0; ++key) {
          err = rows.put(key, some_bytes(key, 40000));
        }
        const bool untouched = fallocate_fails > 0;
        kelp_handle_last_error(rows.handle, &rows.error);
        if (err == 12 && std::strstr(rows.error.text, "are needed") == nullptr) return 2;
        const std::int32_t code = err == 0 ? rows.unlock() : rows.rollback();
        if (code != 0 && code != 28) return 3;
        if (code == 28 && std::strstr(rows.error.text, "undone") == nullptr) return 4;
        return untouched ? 100 : err == 0 && code == 0 ? 101 : 102;
      });
      ASSERT_GE(result, 100) << "n " << n;
      went_through = result == 100;
      Model full = kBefore;
      full[3] = "three";
      for (std::uint16_t key = 10; key < 60; ++key) full[key] = some_bytes(key, 40000);
      ASSERT_EQ(verify(folder.file(), {result == 102 ? kBefore : full}), "") << "n " << n;
    }
    EXPECT_TRUE(went_through);
  }
}

// The journal cannot grow: nobody hears of it at the announced write, so the commit says so, and
// the file has what it had. Killed before that, too.
TEST(StoreFault, AJournalWithoutRoomFailsTheCommit) {
  const Folder folder(Folder::in_memory());
  prepare(folder.file());
  ASSERT_EQ(run([&] {
              Rows rows(folder.file());
              rows.lock_write();
              rows.put(5, std::string(3000000, 'b'));
              return rows.unlock();
            }),
            0);
  Model before = kBefore;
  before[5] = std::string(3000000, 'b');
  for (const bool killed : {false, true}) {
    EXPECT_EQ(run([&] {
                Rows rows(folder.file());
                rows.lock_write();
                fails_on = true;
                fallocate_fails = 0;
                rows.erase(5);  // its bytes are more than the journal has room for
                rows.put(1, "changed behind that");
                rows.erase(2);
                if (killed) _exit(28);
                const std::int32_t code = rows.unlock();
                if (std::strstr(rows.error.text, "-log") == nullptr) return 1;
                if (std::strstr(rows.error.text, "are free") == nullptr) return 2;
                fallocate_fails = -1;
                rows.lock_write();
                const bool same = rows.all() == before;
                rows.rollback();
                return same ? code : 3;
              }),
              28);
    EXPECT_EQ(verify(folder.file(), {before}), "");
  }
}

TEST(StoreFault, NoAddressesAtAnyCall) {
  const Folder folder(Folder::in_memory());
  prepare(folder.file());
  bool opened = false;
  for (long n = 0; n < 20 && !opened; ++n) {
    const int result = run([&] {
      mmap_fails = n;
      Rows rows(folder.file());
      if (!rows.is_open()) return rows.error.code == 12 ? 100 : 1;
      return 101;
    });
    ASSERT_GE(result, 100) << "n " << n;
    opened = result == 101;
    ASSERT_EQ(verify(folder.file(), {kBefore}), "") << "n " << n;
  }
  EXPECT_TRUE(opened);
}

TEST(StoreFault, AnotherMappingAtItsAddressesIsNamed) {
  const Folder folder(Folder::in_memory());
  prepare(folder.file());
  EXPECT_EQ(run([&] {
              std::uint64_t address = 0;
              FILE *file = std::fopen(folder.file().c_str(), "rb");
              std::fseek(file, 24, SEEK_SET);
              if (std::fread(&address, sizeof address, 1, file) != 1) return 1;
              mmap(reinterpret_cast<void *>(address), 4096, PROT_NONE,
                   MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0);
              Rows rows(folder.file());
              if (rows.is_open()) return 2;
              return std::strstr(rows.error.text, "something lies there") != nullptr
                         ? rows.error.code
                         : 3;
            }),
            17);
}

TEST(StoreFault, ACloseThatCannotSyncSaysSo) {
  const Folder folder(Folder::in_memory());
  EXPECT_EQ(run([&] {
              kelp_error error;
              kelp_database *database =
                  kelp_database_open_file(folder.file().c_str(), nullptr, &error);
              fail_syncs_from(0, 1);
              const std::int32_t code = kelp_database_close(database, &error);
              return std::strstr(error.text, "synced") != nullptr ? code : 1;
            }),
            5);
}

// Room of a file system of its own: everything, and then nothing.
TEST(StoreFault, AFullDisk) {
  const Folder folder(Folder::in_memory());
  const std::string path = folder.file();
  prepare(path);
  const Model before = kBefore;
  EXPECT_EQ(run([&] {
              kelp_store_options options;
              kelp_store_options_init(&options);
              Rows rows(path, &options);
              rows.lock_write();
              change_much(rows);
              fails_on = true;
              fallocate_fails = 0;
              std::uint32_t err = 0;
              for (std::uint16_t key = 100; key < 2000 && err == 0; ++key) {
                err = rows.put(key, some_bytes(key, 60000));
              }
              kelp_handle_last_error(rows.handle, &rows.error);
              if (err != 12 || std::strstr(rows.error.text, "are free") == nullptr) return 1;
              return rows.rollback();
            }),
            0);
  EXPECT_EQ(verify(path, {before}), "");
}

// --- a small file system, and others' folders ---

kelp_store_options with_durability(std::uint32_t durability) {
  kelp_store_options options;
  kelp_store_options_init(&options);
  options.durability = durability;
  return options;
}

// Rows until the disk is full; how many of them were committed, one by one.
int fill_up(Rows &rows, bool *told) {
  for (std::uint16_t key = 0; key < 2000; ++key) {
    if (rows.lock_write() != 0) return -1;
    const std::uint32_t err = rows.put(key, some_bytes(key, 20000));
    if (err != 0) {
      kelp_handle_last_error(rows.handle, &rows.error);
      *told = err == 12 && std::strstr(rows.error.text, "are free") != nullptr;
      rows.rollback();
      return key;
    }
    if (const std::int32_t code = rows.unlock(); code != 0) {
      *told = code == 28 && std::strstr(rows.error.text, "free") != nullptr;
      return key;
    }
  }
  return -1;
}

// In a file system of 12 MiB, which only the process sees: full is an error, what was committed is
// there, and what is ended makes room again.
int use_small_disk(const std::string &folder, std::uint32_t durability) {
  if (unshare(CLONE_NEWNS) != 0 || mount("", "/", "", MS_REC | MS_PRIVATE, nullptr) != 0) return 1;
  if (mount("small", folder.c_str(), "tmpfs", 0, "size=12m") != 0) return 2;
  const kelp_store_options options = with_durability(durability);
  Rows rows(folder + "/store", &options);
  if (!rows.is_open()) return 3;
  bool told = false;
  const int committed = fill_up(rows, &told);
  if (committed <= 0) return 4;
  if (!told) return 5;
  Model expected;
  for (int key = 0; key < committed; ++key) {
    const auto number = static_cast<std::uint16_t>(key);
    expected[number] = some_bytes(number, 20000);
  }
  if (rows.lock_read() != 0 || rows.all() != expected) return 6;
  rows.unlock();
  if (!rows.check().empty()) return 7;
  // What is freed can be had again, as far as the log of its commit finds room.
  if (durability == KELP_DURABILITY_POWER) return 0;
  if (rows.lock_write() != 0 || rows.erase(0) != 0 || rows.unlock() != 0) return 8;
  if (rows.lock_write() != 0 || rows.put(0, some_bytes(7, 19000)) != 0) return 9;
  return rows.unlock();
}

TEST(StoreFaultAsRoot, AFileSystemThatIsFull) {
  for (const std::uint32_t durability : {KELP_DURABILITY_PROCESS, KELP_DURABILITY_POWER}) {
    const Folder folder;
    const std::string path = folder.file("");
    EXPECT_EQ(run([&] { return use_small_disk(path, durability); }), 0) << durability;
  }
}

// Each write that fails while a store is made leaves none behind.
TEST(StoreFault, WritesThatFailWhileAStoreIsMade) {
  for (const std::uint32_t durability : {KELP_DURABILITY_PROCESS, KELP_DURABILITY_POWER}) {
    bool made = false;
    for (long n = 0; n < 6 && !made; ++n) {
      const Folder folder(Folder::in_memory());
      const int result = run([&] {
        write_fails = n;
        const kelp_store_options options = with_durability(durability);
        Rows rows(folder.file(), &options);
        if (rows.is_open()) return 101;
        return rows.error.code == 28 && rows.error.text[0] != '\0' ? 100 : 1;
      });
      ASSERT_GE(result, 100) << "n " << n;
      made = result == 101;
      EXPECT_NE(access(folder.file("store-new").c_str(), F_OK), 0);
      EXPECT_NE(access(folder.file("store-image-new").c_str(), F_OK), 0);
      ASSERT_EQ(verify(folder.file(), {Model{}}), "") << "n " << n;
    }
    EXPECT_TRUE(made);
  }
}

// A commit whose log cannot be written, at any of its writes, is undone.
TEST(StoreFault, WritesThatFailInACommit) {
  const Folder folder(Folder::in_memory());
  const kelp_store_options options = with_durability(KELP_DURABILITY_POWER);
  ASSERT_EQ(run([&] {
              Rows rows(folder.file(), &options);
              return rows.commit({{1, "one"}});
            }),
            0);
  for (long n = 0; n < 2; ++n) {
    EXPECT_EQ(run([&] {
                Rows rows(folder.file());
                if (rows.lock_write() != 0 || rows.put(2, std::string(2500000, 'x')) != 0) return 1;
                write_fails = n;
                const std::int32_t code = rows.unlock();
                if (std::strstr(rows.error.text, "cannot be kept") == nullptr) return 2;
                return code;
              }),
              28);
    EXPECT_EQ(verify(folder.file(), {Model{{1, "one"}}}), "");
  }
}

constexpr uid_t kNobody = 65534;

// What a process of another user meets: 0 when it can read and write, else the code.
int as_nobody(const std::string &path, bool read_only, const char *words = "") {
  return run([&]() -> int {
    if (setgid(kNobody) != 0 || setuid(kNobody) != 0) return 200;
    umask(0);
    kelp_store_options options;
    kelp_store_options_init(&options);
    options.read_only = read_only ? 1 : 0;
    Rows rows(path, &options);
    if (!rows.is_open()) {
      return std::strstr(rows.error.text, words) != nullptr ? rows.error.code : 201;
    }
    if (rows.lock_read() != 0 || rows.all() != kBefore || rows.unlock() != 0) return 202;
    if (read_only) return rows.lock_write() == 1 ? 0 : 203;
    if (rows.lock_write() != 0 || rows.put(1, "one") != 0) return 204;
    return rows.unlock();
  });
}

void set_modes(const std::string &path, mode_t database, mode_t beside) {
  ASSERT_EQ(chmod(path.c_str(), database), 0);
  ASSERT_EQ(chmod((path + "-lock").c_str(), beside), 0);
  ASSERT_EQ(chmod((path + "-log").c_str(), beside), 0);
}

TEST(StoreFaultAsRoot, AnotherUserMayWhatTheModesOfTheFilesSay) {
  const Folder folder;
  const std::string path = folder.file();
  ASSERT_EQ(chmod(folder.file("").c_str(), 0755), 0);
  prepare(path);
  EXPECT_EQ(as_nobody(path, false, path.c_str()), 13);  // 0600
  set_modes(path, 0644, 0644);
  EXPECT_EQ(as_nobody(path, false, path.c_str()), 13);
  EXPECT_EQ(as_nobody(path, true, "to write its locks"), 13);
  set_modes(path, 0644, 0666);
  EXPECT_EQ(as_nobody(path, true), 0);
  EXPECT_EQ(as_nobody(path, false, path.c_str()), 13);
  // A folder in which it can make nothing is no hindrance to one that is there.
  set_modes(path, 0666, 0666);
  EXPECT_EQ(as_nobody(path, false), 0);
  EXPECT_EQ(as_nobody(folder.file("other"), false, "other"), 13);
  EXPECT_EQ(verify(path, {kBefore}), "");
}

}  // namespace

}  // namespace store_test
