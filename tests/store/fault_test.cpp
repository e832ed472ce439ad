// What the system refuses a store: room on the disk, addresses, syncing. The program puts functions
// of its own in front of the system's, which fail the n-th call of a process.
#include <dlfcn.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "rows.hpp"

namespace {

// Which call fails, counted from 0; negative for none. Set in processes that a test starts.
long fallocate_fails = -1;
long mmap_fails = -1;
long sync_fails = -1;
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
  static const auto real = next<int (*)(int, int, off_t, off_t)>("fallocate");
  return real(file, mode, offset, length);
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

extern "C" int fdatasync(int file) {
  if (strikes(sync_fails)) {
    errno = EIO;
    return -1;
  }
  static const auto real = next<int (*)(int)>("fdatasync");
  return real(file);
}

namespace store_test {

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
              sync_fails = 0;
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

}  // namespace

}  // namespace store_test
