// The database's lock.
#include <atomic>
#include <chrono>
#include <thread>

#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;

class LockTest : public DatabaseTest {
 protected:
  LockTest() { other = kelp_handle_create(database, nullptr, nullptr); }
  ~LockTest() override { kelp_handle_destroy(other); }

  kelp_error error;
  kelp_handle *other = nullptr;
};

TEST_F(LockTest, StateFollowsTheLock) {
  EXPECT_EQ(kelplib_database_is_write_locked(handle), 0u);
  ASSERT_EQ(kelp_lock_read(handle, &error), 0);
  EXPECT_EQ(handle->db_lock_state, 1u);
  EXPECT_EQ(kelplib_database_is_write_locked(handle), 0u);
  ASSERT_EQ(kelp_unlock(handle, &error), 0);
  EXPECT_EQ(handle->db_lock_state, 0u);
  ASSERT_EQ(kelp_lock_write(handle, &error), 0);
  EXPECT_EQ(handle->db_lock_state, 2u);
  EXPECT_NE(kelplib_database_is_write_locked(handle), 0u);
  EXPECT_EQ(kelplib_database_is_write_locked(other), 0u);
  ASSERT_EQ(kelp_unlock(handle, &error), 0);
}

TEST_F(LockTest, WaitForOneselfIsRefused) {
  ASSERT_EQ(kelp_lock_read(handle, &error), 0);
  EXPECT_EQ(kelp_lock_read(handle, &error), 35);
  EXPECT_STREQ(error.text,
               "kelp_lock_read: database 'test': this handle holds the read lock already");
  EXPECT_EQ(kelp_lock_write(other, &error), 35);
  EXPECT_NE(std::string(error.text).find("would wait for itself"), std::string::npos);
  ASSERT_EQ(kelp_lock_read(other, &error), 0);
  ASSERT_EQ(kelp_unlock(other, &error), 0);
  ASSERT_EQ(kelp_unlock(handle, &error), 0);
  ASSERT_EQ(kelp_lock_write(handle, &error), 0);
  EXPECT_EQ(kelp_lock_read(other, &error), 35);
  ASSERT_EQ(kelp_unlock(handle, &error), 0);
}

TEST_F(LockTest, UnlockWithoutLockIsRefused) {
  EXPECT_EQ(kelp_unlock(handle, &error), 1);
  EXPECT_STREQ(error.text, "kelp_unlock: this handle holds no lock");
}

TEST_F(LockTest, HandleGivesUpItsLockAtItsEnd) {
  kelp_handle *brief = kelp_handle_create(database, nullptr, nullptr);
  ASSERT_EQ(kelp_lock_write(brief, &error), 0);
  kelp_handle_destroy(brief);
  EXPECT_EQ(kelp_lock_write(handle, &error), 0);
  EXPECT_EQ(kelp_unlock(handle, &error), 0);
}

TEST_F(LockTest, WritersExcludeEachOther) {
  int plain = 0;
  auto work = [&](kelp_handle *own) {
    for (int i = 0; i < 3000; ++i) {
      EXPECT_EQ(kelp_lock_write(own, nullptr), 0);
      ++plain;
      EXPECT_EQ(kelp_unlock(own, nullptr), 0);
    }
  };
  std::thread second(work, other);
  work(handle);
  second.join();
  EXPECT_EQ(plain, 6000);
}

TEST_F(LockTest, WriterWaitsForReaders) {
  ASSERT_EQ(kelp_lock_read(handle, &error), 0);
  std::atomic<bool> written = false;
  std::thread writer([&] {
    EXPECT_EQ(kelp_lock_write(other, nullptr), 0);
    written = true;
    EXPECT_EQ(kelp_unlock(other, nullptr), 0);
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_FALSE(written);
  // A second read of a thread that reads already does not queue behind the writer.
  kelp_handle *third = kelp_handle_create(database, nullptr, nullptr);
  ASSERT_EQ(kelp_lock_read(third, &error), 0);
  ASSERT_EQ(kelp_unlock(third, &error), 0);
  kelp_handle_destroy(third);
  ASSERT_EQ(kelp_unlock(handle, &error), 0);
  writer.join();
  EXPECT_TRUE(written);
}

// A reader that comes while a writer waits goes behind it.
TEST_F(LockTest, WriterGoesBeforeLaterReaders) {
  ASSERT_EQ(kelp_lock_read(handle, nullptr), 0);
  std::atomic<int> turn = 0;
  int writers_turn = 0;
  int readers_turn = 0;
  std::thread writer([&] {
    ASSERT_EQ(kelp_lock_write(other, nullptr), 0);
    writers_turn = ++turn;
    kelp_unlock(other, nullptr);
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  std::thread reader([&] {
    kelp_handle *late = kelp_handle_create(database, nullptr, nullptr);
    ASSERT_EQ(kelp_lock_read(late, nullptr), 0);
    readers_turn = ++turn;
    kelp_unlock(late, nullptr);
    kelp_handle_destroy(late);
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_EQ(turn, 0) << "the reader overtook the writer";
  kelp_unlock(handle, nullptr);
  writer.join();
  reader.join();
  EXPECT_EQ(writers_turn, 1);
  EXPECT_EQ(readers_turn, 2);
}

TEST_F(LockTest, LockingSetsTheTenantOfTheHandle) {
  kelp_handle_options options;
  kelp_handle_options_init(&options);
  options.tenant = 6;
  kelp_handle *tenant_handle = kelp_handle_create(database, &options, nullptr);
  kelp_tenant_set(1);
  ASSERT_EQ(kelp_lock_read(handle, &error), 0);
  std::uint16_t tenant = 0;
  mt_get_tenant_id(&tenant);
  EXPECT_EQ(tenant, 1u);
  ASSERT_EQ(kelp_lock_read(tenant_handle, &error), 0);
  mt_get_tenant_id(&tenant);
  EXPECT_EQ(tenant, 6u);
  kelp_handle_destroy(tenant_handle);
  ASSERT_EQ(kelp_unlock(handle, &error), 0);
}

}  // namespace
