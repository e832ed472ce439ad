// Opening and closing databases, and the thread's current one.
#include <thread>

#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;

TEST(DatabaseOpenTest, BadNamesAndOptionsAreNamed) {
  kelp_error error;
  EXPECT_EQ(kelp_database_open_private(nullptr, nullptr, &error), nullptr);
  EXPECT_EQ(error.code, 22);
  EXPECT_STREQ(error.text,
               "kelp_database_open_private: a name of no bytes, expected 1 to 63 bytes");
  EXPECT_EQ(kelp_database_open_private(std::string(64, 'n').c_str(), nullptr, &error), nullptr);
  kelp_database_options options;
  kelp_database_options_init(&options);
  options.struct_size = 1;
  EXPECT_EQ(kelp_database_open_private("n", &options, &error), nullptr);
  EXPECT_NE(std::string(error.text).find("options of 1 bytes, expected"), std::string::npos);
}

TEST(DatabaseOpenTest, ErrorsMayBeNull) {
  EXPECT_EQ(kelp_database_open_private("", nullptr, nullptr), nullptr);
  EXPECT_EQ(kelp_database_close(nullptr, nullptr), 0);
}

class DatabaseCloseTest : public DatabaseTest {};

TEST_F(DatabaseCloseTest, OpenHandlesKeepADatabaseOpen) {
  kelp_error error;
  EXPECT_EQ(kelp_database_close(database, &error), 16);
  EXPECT_STREQ(error.text,
               "kelp_database_close: database 'test': 1 handles are open, expected none; "
               "kelp_handle_destroy ends them");
  EXPECT_STREQ(kelp_database_name(database), "test");
}

TEST_F(DatabaseCloseTest, OptionsReachTheDatabase) {
  kelp_database_options options;
  kelp_database_options_init(&options);
  options.marked_shared = 1;
  options.shared_tinfo = 1;
  options.memory_limit = 1 << 16;
  reopen(options);
  EXPECT_EQ(kelplib_db_is_shared(), 1u);
  EXPECT_EQ(handle->shared_tinfo, 1u);
  EXPECT_EQ(memory().limit_bytes, 1u << 16);
}

class CurrentDatabaseTest : public DatabaseTest {
 protected:
  CurrentDatabaseTest() {
    kelp_database_options options;
    kelp_database_options_init(&options);
    options.marked_shared = 1;
    shared = kelp_database_open_private("shared", &options, nullptr);
    shared_handle = kelp_handle_create(shared, nullptr, nullptr);
  }
  ~CurrentDatabaseTest() override {
    kelp_handle_destroy(shared_handle);
    kelp_database_close(shared, nullptr);
  }

  kelp_database *shared = nullptr;
  kelp_handle *shared_handle = nullptr;
};

TEST_F(CurrentDatabaseTest, FollowsTheHandleLastUsed) {
  EXPECT_EQ(kelplib_db_is_shared(), 1u);
  kelp_clear_last_error(handle);
  EXPECT_EQ(kelplib_db_is_shared(), 0u);
  kelp_store_err(shared_handle, 1);
  EXPECT_EQ(kelplib_db_is_shared(), 1u);
  kelp_lock_read(handle, nullptr);
  EXPECT_EQ(kelplib_db_is_shared(), 0u);
  kelp_unlock(handle, nullptr);
  kelp_database_make_current(shared);
  EXPECT_EQ(kelplib_db_is_shared(), 1u);
  EXPECT_EQ(kelp_database_current(), shared);
  kelp_database_make_current(nullptr);
  EXPECT_EQ(kelplib_db_is_shared(), 0u);
  EXPECT_EQ(kelp_database_current(), nullptr);
}

TEST_F(CurrentDatabaseTest, BelongsToTheThread) {
  kelp_database_make_current(shared);
  std::uint32_t elsewhere = 7;
  std::thread([&] { elsewhere = kelplib_db_is_shared(); }).join();
  EXPECT_EQ(elsewhere, 0u);
  EXPECT_EQ(kelplib_db_is_shared(), 1u);
}

TEST_F(CurrentDatabaseTest, ClosedDatabaseIsNoLongerCurrent) {
  kelp_database_options options;
  kelp_database_options_init(&options);
  options.marked_shared = 1;
  kelp_database *brief = kelp_database_open_private("brief", &options, nullptr);
  kelp_database_make_current(brief);
  EXPECT_EQ(kelplib_db_is_shared(), 1u);
  kelp_database_close(brief, nullptr);
  EXPECT_EQ(kelplib_db_is_shared(), 0u);
}

TEST(TenancyTest, TenantBelongsToTheThread) {
  std::uint16_t tenant = 99;
  mt_get_tenant_id(&tenant);
  EXPECT_EQ(tenant, 0u);
  kelp_tenant_set(5);
  mt_get_tenant_id(&tenant);
  EXPECT_EQ(tenant, 5u);
  std::uint16_t elsewhere = 99;
  std::thread([&] { mt_get_tenant_id(&elsewhere); }).join();
  EXPECT_EQ(elsewhere, 0u);
  kelp_tenant_set(0);
  mt_get_tenant_id(nullptr);
}

}  // namespace
