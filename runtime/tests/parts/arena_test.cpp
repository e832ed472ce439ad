// The object memory, through the hooks of a handle.
#include <sys/mman.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <set>
#include <thread>

#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;

class ArenaTest : public DatabaseTest {
 protected:
  // Whether the system gives memory ahead of its use.
  const bool populates_ = [] {
#ifdef MADV_POPULATE_WRITE
    constexpr std::size_t kPage = 4096;
    void *page = mmap(nullptr, kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    const bool done = madvise(page, kPage, MADV_POPULATE_WRITE) == 0;
    munmap(page, kPage);
    return done;
#else
    return false;
#endif
  }();
};

TEST_F(ArenaTest, BlockOfNoBytesHasAnAddressOfItsOwn) {
  void *first = allocate(0);
  void *second = allocate(0);
  EXPECT_NE(first, nullptr);
  EXPECT_NE(second, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(memory().live_allocations, 2u);
  EXPECT_EQ(memory().live_bytes, 0u);
  release(first);
  release(second);
  EXPECT_EQ(memory().live_allocations, 0u);
}

TEST_F(ArenaTest, FreeOfNullDoesNothing) {
  release(nullptr);
  EXPECT_EQ(memory().total_allocations, 0u);
}

TEST_F(ArenaTest, EverySizeIsAlignedAndWritableToItsLastByte) {
  std::vector<void *> blocks;
  for (std::size_t size = 0; size < 20000; size += size < 600 ? 1 : 97) {
    auto *block = static_cast<unsigned char *>(allocate(size));
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0u);
    std::memset(block, 0xA5, size);
    blocks.push_back(block);
  }
  for (void *block : blocks) release(block);
  EXPECT_EQ(memory().live_allocations, 0u);
  EXPECT_EQ(memory().live_bytes, 0u);
  EXPECT_EQ(memory().used_bytes, 0u);
}

TEST_F(ArenaTest, ABlockTakesAtMostSixPercentMoreThanItWasAskedFor) {
  void *least = allocate(1);
  const std::uint64_t beside = memory().used_bytes - 16;  // kept free, under a sanitizer
  release(least);
  for (std::size_t size = 257; size < 20000; ++size) {
    void *block = allocate(size);
    EXPECT_LE(memory().used_bytes, (size + beside) * 106 / 100) << size;
    EXPECT_GE(memory().used_bytes, size);
    release(block);
  }
}

TEST_F(ArenaTest, BlocksKeepTheirContentWhileOthersComeAndGo) {
  std::mt19937 random(12345);
  struct Held {
    unsigned char *block;
    std::size_t size;
    unsigned char mark;
  };
  std::vector<Held> held;
  for (int step = 0; step < 40000; ++step) {
    if (held.size() < 500 || random() % 2 == 0) {
      const std::size_t size = random() % 100 == 0 ? random() % 70000 : random() % 700;
      auto *block = static_cast<unsigned char *>(allocate(size));
      ASSERT_NE(block, nullptr);
      const auto mark = static_cast<unsigned char>(random());
      std::memset(block, mark, size);
      held.push_back({block, size, mark});
    } else {
      const std::size_t at = random() % held.size();
      std::swap(held[at], held.back());
      const Held gone = held.back();
      held.pop_back();
      EXPECT_TRUE(std::all_of(gone.block, gone.block + gone.size,
                              [&](unsigned char byte) { return byte == gone.mark; }));
      release(gone.block);
    }
  }
  std::size_t live_bytes = 0;
  for (const Held &each : held) live_bytes += each.size;
  EXPECT_EQ(memory().live_allocations, held.size());
  EXPECT_EQ(memory().live_bytes, live_bytes);
  for (const Held &each : held) release(each.block);
  EXPECT_EQ(memory().used_bytes, 0u);
}

// Nor is much of a span left over behind the last of its blocks.
TEST_F(ArenaTest, BlocksFillTheirSpans) {
  void *least = allocate(1);
  const std::uint64_t beside = memory().used_bytes - 16;
  release(least);
  for (const std::size_t size : {1264, 1808, 2176, 2512, 3104}) {
    shut();
    open();
    const std::size_t count = (std::size_t{16} << 20) / size;
    std::vector<void *> blocks;
    for (std::size_t i = 0; i < count; ++i) blocks.push_back(allocate(size - beside));
    EXPECT_LE(memory().reserved_bytes, count * (size + 16) + (std::size_t{1} << 20)) << size;
    for (void *block : blocks) release(block);
  }
}

TEST_F(ArenaTest, CountsWhatWasUsedAtMostAndHowOften) {
  void *first = allocate(100);
  void *second = allocate(3000);
  const std::uint64_t both = memory().used_bytes;
  EXPECT_EQ(memory().peak_used_bytes, both);
  release(second);
  EXPECT_EQ(memory().peak_used_bytes, both);
  second = allocate(200);
  release(first);
  release(second);
  EXPECT_EQ(memory().peak_used_bytes, both);
  EXPECT_EQ(memory().total_allocations, 3u);
  EXPECT_EQ(memory().live_allocations, 0u);
}

// Whether the system has given the page of an address.
bool is_resident(const void *address) {
  constexpr std::uintptr_t kPage = 4096;
  const auto page = reinterpret_cast<std::uintptr_t>(address) / kPage * kPage;
  unsigned char state = 0;
  return mincore(reinterpret_cast<void *>(page), 1, &state) == 0 && (state & 1) != 0;
}

// Pages of which a class has few come as they are touched; older systems give all of them so.
TEST_F(ArenaTest, MemoryComesAheadOnlyWhereAClassHasMuch) {
  constexpr std::size_t kSpan = 65536;
  constexpr std::size_t kSize = 4000;
  const auto last_page_of = [](const void *block) {
    return reinterpret_cast<const char *>((reinterpret_cast<std::uintptr_t>(block) | (kSpan - 1)));
  };
  std::vector<void *> blocks;
  std::uintptr_t span = 0;
  std::uint32_t begun = 0;
  while (begun < 20) {
    void *block = allocate(kSize);
    blocks.push_back(block);
    const std::uintptr_t now = reinterpret_cast<std::uintptr_t>(block) / kSpan;
    if (now == span) continue;
    span = now;
    ++begun;
    if (begun <= 16) {
      EXPECT_FALSE(is_resident(last_page_of(block))) << begun;
    } else if (populates_) {
      EXPECT_TRUE(is_resident(last_page_of(block))) << begun;
    }
  }
  for (void *block : blocks) release(block);
}

TEST_F(ArenaTest, LargeBlocksGoBackToTheSystem) {
  const std::uint64_t before = memory().reserved_bytes;
  void *block = allocate(3 * 1024 * 1024);
  ASSERT_NE(block, nullptr);
  std::memset(block, 1, 3 * 1024 * 1024);
  EXPECT_GE(memory().reserved_bytes, before + 3 * 1024 * 1024);
  release(block);
  EXPECT_EQ(memory().reserved_bytes, before);
}

// Of the address space, not of memory alone.
TEST_F(ArenaTest, LargeBlocksCostTheirSize) {
  const auto address_space = [] {
    std::ifstream file("/proc/self/statm");
    std::size_t pages = 0;
    file >> pages;
    return pages * 4096;
  };
  constexpr std::size_t kBlocks = 500;
  const std::size_t before = address_space();
  std::vector<void *> blocks;
  for (std::size_t i = 0; i < kBlocks; ++i) blocks.push_back(allocate(20000));
  EXPECT_LT(address_space() - before, kBlocks * 32768 + (std::size_t{4} << 20));
  EXPECT_LE(memory().reserved_bytes, kBlocks * 24576);
  for (void *block : blocks) {
    EXPECT_EQ(lumen_in_range(handle->obj_pool, block), 1u);
    release(block);
    EXPECT_EQ(lumen_in_range(handle->obj_pool, block), 0u);
  }
  EXPECT_EQ(memory().reserved_bytes, 0u);
}

TEST_F(ArenaTest, HeadOfALargeBlockIsNotInTheStore) {
  for (const std::size_t size : {20000, 100000, 3000000}) {
    auto *block = static_cast<char *>(allocate(size));
    EXPECT_EQ(lumen_in_range(handle->obj_pool, block - 1), 0u);
    EXPECT_EQ(lumen_in_range(handle->obj_pool, block - 64), 0u);
    EXPECT_EQ(lumen_in_range(handle->obj_pool, block - 65), 0u);
    EXPECT_EQ(lumen_in_range(handle->obj_pool, block + size - 1), 1u);
    EXPECT_EQ(lumen_in_range(handle->obj_pool, block + size), 0u);
    EXPECT_EQ(lumen_set_range(handle->obj_pool, block - 1, 2, 0), 0u);
    kelp_handle_to_oid(handle, 0, block - 64, KELP_OID_KIND_OBJECT, 0, &err);
    EXPECT_EQ(err, 14u) << "there is no object";
    err = 0;
    EXPECT_EQ(lumen_set_range(handle->obj_pool, block, size, 0), 1u);
    release(block);
  }
}

// At the edge: the last byte of a limit can be had, one more cannot.
TEST_F(ArenaTest, LimitCanBeUsedUp) {
  void *first = allocate(1000);
  const std::uint64_t of_one = memory().used_bytes;
  ASSERT_EQ(kelp_database_set_memory_limit(database, 3 * of_one, nullptr), 0);
  void *second = allocate(1000);
  void *third = allocate(1000);
  EXPECT_NE(second, nullptr);
  EXPECT_NE(third, nullptr);
  EXPECT_EQ(memory().used_bytes, memory().limit_bytes);
  EXPECT_EQ(allocate(0), nullptr);
  EXPECT_EQ(kelp_database_set_memory_limit(database, 3 * of_one - 1, nullptr), 22);
  EXPECT_EQ(kelp_database_set_memory_limit(database, 3 * of_one, nullptr), 0);
  release(third);
  EXPECT_EQ(kelp_database_set_memory_limit(database, 3 * of_one - 1, nullptr), 0);
  EXPECT_EQ(allocate(1000), nullptr);
  release(first);
  release(second);
}

TEST_F(ArenaTest, EmptiedSpansServeOtherSizes) {
  std::vector<void *> blocks;
  for (int i = 0; i < 4000; ++i) blocks.push_back(allocate(200));
  const std::uint64_t reserved = memory().reserved_bytes;
  for (void *block : blocks) release(block);
  blocks.clear();
  for (int i = 0; i < 2000; ++i) blocks.push_back(allocate(300));
  EXPECT_EQ(memory().reserved_bytes, reserved);
  for (void *block : blocks) release(block);
}

TEST_F(ArenaTest, ImpossibleSizeIsRefused) {
  EXPECT_EQ(allocate(SIZE_MAX), nullptr);
  EXPECT_EQ(allocate(SIZE_MAX / 2), nullptr);
  EXPECT_EQ(memory().failed_allocations, 2u);
}

TEST_F(ArenaTest, LimitRefusesAndSaysWhatRaisesIt) {
  kelp_error error;
  ASSERT_EQ(kelp_database_set_memory_limit(database, 4096, &error), 0);
  std::vector<void *> blocks;
  while (void *block = allocate(100)) blocks.push_back(block);
  EXPECT_GT(blocks.size(), 10u);
  EXPECT_LE(memory().used_bytes, 4096u);
  kelp_store_err(handle, 12);
  EXPECT_EQ(kelp_handle_last_error(handle, &error), 12);
  const std::string text = error.text;
  EXPECT_NE(text.find("'test' is full"), std::string::npos) << text;
  EXPECT_NE(text.find("100 bytes asked for"), std::string::npos) << text;
  EXPECT_NE(text.find(std::to_string(memory().used_bytes) + " bytes used"), std::string::npos)
      << text;
  EXPECT_NE(text.find("limit of 4096"), std::string::npos) << text;
  EXPECT_NE(text.find("kelp_database_set_memory_limit"), std::string::npos) << text;

  EXPECT_EQ(kelp_database_set_memory_limit(database, 100, &error), 22);
  EXPECT_NE(std::string(error.text).find("a limit of 100 bytes"), std::string::npos) << error.text;
  EXPECT_EQ(memory().limit_bytes, 4096u);

  ASSERT_EQ(kelp_database_set_memory_limit(database, 8192, &error), 0);
  void *more = allocate(100);
  EXPECT_NE(more, nullptr);
  release(more);
  for (void *block : blocks) release(block);
}

TEST_F(ArenaTest, FaultStrikesTheChosenAllocationOnce) {
  kelp_database_fail_allocation_after(database, 2);
  void *first = allocate(10);
  void *second = allocate(10);
  EXPECT_NE(first, nullptr);
  EXPECT_NE(second, nullptr);
  EXPECT_EQ(allocate(10), nullptr);
  void *third = allocate(10);
  EXPECT_NE(third, nullptr);
  kelp_database_fail_allocation_after(database, 0);
  kelp_database_fail_allocation_after(database, -1);
  void *fourth = allocate(10);
  EXPECT_NE(fourth, nullptr);
  for (void *block : {first, second, third, fourth}) release(block);
}

TEST_F(ArenaTest, CloseReportsWhatIsStillInUse) {
  allocate(24);
  allocate(0);
  expected_close_text = "database 'test' was closed with 2 allocations of 24 bytes still in use";
}

// What stands under a key is the store's own; what merely stood under one is not.
TEST_F(ArenaTest, CloseDoesNotReportWhatStandsUnderAKey) {
  void *root = allocate(32);
  lumen_set_key(handle->obj_pool, "root", root);
  lumen_set_key(handle->obj_pool, "the same", root);
  void *forgotten = allocate(20);
  void *freed = allocate(32);
  lumen_set_key(handle->obj_pool, "freed", freed);
  release(freed);
  lumen_set_key(handle->obj_pool, "forgotten", forgotten);
  lumen_set_key(handle->obj_pool, "forgotten", nullptr);
  expected_close_text = "database 'test' was closed with 1 allocations of 20 bytes still in use";
}

TEST_F(ArenaTest, ThreadsAllocateTogether) {
  std::vector<std::thread> threads;
  for (int number = 0; number < 4; ++number) {
    threads.emplace_back([&] {
      kelp_handle *own = kelp_handle_create(database, nullptr, nullptr);
      std::vector<void *> blocks;
      for (int i = 0; i < 2000; ++i) blocks.push_back(own->obj_alloc(own->obj_pool, 0, 64));
      for (void *block : blocks) own->obj_free(own->obj_pool, 0, block);
      kelp_handle_destroy(own);
    });
  }
  for (std::thread &thread : threads) thread.join();
  EXPECT_EQ(memory().live_allocations, 0u);
  EXPECT_EQ(memory().total_allocations, 8000u);
}

TEST_F(ArenaTest, ReadersOfTheStoreKnowLiveBlocksOnly) {
  auto *block = static_cast<char *>(allocate(40));
  EXPECT_NE(lumen_in_range(handle->obj_pool, block), 0u);
  EXPECT_NE(lumen_in_range(handle->obj_pool, block + 39), 0u);
  EXPECT_EQ(lumen_in_range(handle->obj_pool, block + 40), 0u);
  EXPECT_EQ(lumen_in_range(handle->obj_pool, &block), 0u);
  EXPECT_EQ(lumen_in_range(handle->obj_pool, nullptr), 0u);
  release(block);
  EXPECT_EQ(lumen_in_range(handle->obj_pool, block), 0u);
}

// A block that a database kept under a key, which is closed when this returns. The database knows
// none of the earlier ones.
void *kept_by_a_passing_database(const std::vector<void *> &earlier) {
  kelp_database *database = kelp_database_open_private("addresses", nullptr, nullptr);
  kelp_handle *handle = kelp_handle_create(database, nullptr, nullptr);
  void *kept = handle->obj_alloc(handle->obj_pool, 0, 3000);
  EXPECT_EQ(lumen_set_key(handle->obj_pool, "kept", kept), 1u);
  EXPECT_EQ(lumen_in_range(handle->obj_pool, kept), 1u);
  for (int i = 0; i < 1000; ++i) handle->obj_alloc(handle->obj_pool, 0, 3000);
  for (void *block : earlier) EXPECT_EQ(lumen_in_range(handle->obj_pool, block), 0u);
  kelp_handle_destroy(handle);
  kelp_database_close(database, nullptr);
  return kept;
}

TEST(StoreAddresses, KeptUnderAKeyDoNotComeBackInALaterStore) {
  std::vector<void *> earlier;
  for (int i = 0; i < 5; ++i) earlier.push_back(kept_by_a_passing_database(earlier));
}

TEST(StoreAddresses, OfADatabaseThatKeptNothingComeBack) {
  constexpr std::size_t databases = 1000;
  std::set<void *> seen;
  for (std::size_t i = 0; i < databases; ++i) {
    kelp_database *database = kelp_database_open_private("addresses", nullptr, nullptr);
    kelp_handle *handle = kelp_handle_create(database, nullptr, nullptr);
    seen.insert(handle->obj_alloc(handle->obj_pool, 0, 3000));
    kelp_handle_destroy(handle);
    kelp_database_close(database, nullptr);
  }
  EXPECT_LT(seen.size(), databases / 2);
}

using ArenaDeathTest = ArenaTest;

TEST_F(ArenaDeathTest, SecondFreeEndsTheProcess) {
  void *block = allocate(32);
  release(block);
  EXPECT_DEATH(release(block), "obj_free: the pointer is a live block of this database");
}

TEST_F(ArenaDeathTest, FreeOfForeignMemoryEndsTheProcess) {
  int local = 0;
  EXPECT_DEATH(release(&local), "obj_free: the pointer is a live block of this database");
}

TEST_F(ArenaDeathTest, FreeOfAnInnerAddressEndsTheProcess) {
  auto *block = static_cast<char *>(allocate(64));
  EXPECT_DEATH(release(block + 16), "obj_free: the pointer is a live block of this database");
  release(block);
}

#if defined(__SANITIZE_ADDRESS__)
TEST_F(ArenaDeathTest, UseAfterFreeIsCaught) {
  auto *block = static_cast<volatile char *>(allocate(48));
  release(const_cast<char *>(block));
  EXPECT_DEATH(block[0] = 1, "use-after-poison");
}

TEST_F(ArenaDeathTest, OverrunIsCaught) {
  auto *block = static_cast<volatile char *>(allocate(48));
  EXPECT_DEATH(block[48] = 1, "use-after-poison");
  release(const_cast<char *>(block));
}
#endif

}  // namespace
