// Handles: options, hooks, work space, last error, the write observer.
#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;
using kelp_test::Object;

class HandleTest : public DatabaseTest {};

TEST_F(HandleTest, DefaultsAreAPlainHandle) {
  EXPECT_EQ(handle->sttr, nullptr);
  EXPECT_EQ(handle->shared_tinfo, 0u);
  EXPECT_EQ(handle->cr_err, 0u);
  EXPECT_EQ(handle->cr_create, 0u);
  EXPECT_EQ(handle->cr_space_id, 0u);
  EXPECT_EQ(handle->hd_mapped, 0u);
  EXPECT_EQ(handle->db_lock_state, 0u);
  EXPECT_EQ(handle->collector_context, 0u);
  EXPECT_EQ(handle->force_toc_delete, 0u);
  EXPECT_EQ(handle->quiet_insert, 0u);
  EXPECT_STREQ(handle->db_name, "test");
  EXPECT_EQ(kelp_handle_database(handle), database);
}

TEST_F(HandleTest, OptionsReachTheHandle) {
  kelp_handle_options options;
  kelp_handle_options_init(&options);
  options.state_tracking = KELP_TRACKING_ON;
  options.tenant = 9;
  options.work_space_size = 100;
  options.collector_context = 1;
  options.quiet_insert = 1;
  options.space_id = 5;
  options.peer_stamp = 0xABCD;
  reopen(options);
  ASSERT_NE(handle->sttr, nullptr);
  EXPECT_EQ(handle->sttr->sttr_mode, static_cast<std::uint32_t>(STTR_MODE_ON));
  EXPECT_EQ(handle->collector_context, 1u);
  EXPECT_EQ(handle->quiet_insert, 1u);
  EXPECT_EQ(handle->cr_space_id, 5u);
  EXPECT_EQ(handle->peer_stamp, 0xABCDu);
  std::uint16_t tenant = 0;
  mt_get_tenant_id(&tenant);
  EXPECT_EQ(tenant, 9u);
  void *space = nullptr;
  std::uint32_t size = 0;
  kelplib_get_handle_ws(handle, &space, &size, &err);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(size, 100u);
  std::memset(space, 1, size);
}

TEST_F(HandleTest, TrackingOffIsPresentButOff) {
  kelp_handle_options options;
  kelp_handle_options_init(&options);
  options.state_tracking = KELP_TRACKING_OFF;
  reopen(options);
  ASSERT_NE(handle->sttr, nullptr);
  EXPECT_EQ(handle->sttr->sttr_mode, static_cast<std::uint32_t>(STTR_MODE_OFF));
}

TEST_F(HandleTest, BadOptionsAreNamed) {
  kelp_error error;
  kelp_handle_options options;
  kelp_handle_options_init(&options);
  options.state_tracking = 3;
  EXPECT_EQ(kelp_handle_create(database, &options, &error), nullptr);
  EXPECT_EQ(error.code, 22);
  EXPECT_STREQ(error.text, "kelp_handle_create: state tracking 3, expected absent, on or off");
  kelp_handle_options_init(&options);
  options.tenant = 70000;
  EXPECT_EQ(kelp_handle_create(database, &options, &error), nullptr);
  EXPECT_STREQ(error.text,
               "kelp_handle_create: tenant 70000, expected 0 to 65535 or KELP_TENANT_UNCHANGED");
  kelp_handle_options_init(&options);
  options.struct_size = 4;
  EXPECT_EQ(kelp_handle_create(database, &options, &error), nullptr);
  EXPECT_NE(std::string(error.text).find("options of 4 bytes, expected "), std::string::npos);
  EXPECT_EQ(kelp_handle_create(nullptr, nullptr, &error), nullptr);
  EXPECT_STREQ(error.text, "kelp_handle_create: the database is null");
}

TEST_F(HandleTest, WorkSpaceIsTheSameAtEachCall) {
  void *first = nullptr;
  void *second = nullptr;
  std::uint32_t size = 0;
  kelplib_get_handle_ws(handle, &first, &size, &err);
  kelplib_get_handle_ws(handle, &second, &size, &err);
  EXPECT_EQ(first, second);
  EXPECT_EQ(size, 256u * 1024u);
  err = 5;
  kelplib_get_handle_ws(handle, &first, &size, &err);
  EXPECT_EQ(first, nullptr);
  EXPECT_EQ(err, 5u);
}

TEST_F(HandleTest, LastErrorIsStoredAndCleared) {
  kelp_error error;
  EXPECT_EQ(kelp_handle_last_error(handle, &error), 0);
  kelp_store_err(handle, 17);
  EXPECT_EQ(kelp_handle_last_error(handle, &error), 17);
  EXPECT_STREQ(error.text, "handle on database 'test': File exists");
  handle->cr_err = 9;
  kelp_clear_last_error(handle);
  EXPECT_EQ(kelp_handle_last_error(handle, &error), 0);
  EXPECT_EQ(error.code, 0);
  EXPECT_EQ(handle->cr_err, 9u);
}

TEST_F(HandleTest, RefusedAllocationIsTheLastErrorUntilForgotten) {
  kelp_error error;
  kelp_database_fail_allocation_after(database, 0);
  EXPECT_EQ(handle->obj_alloc(handle->obj_pool, 0, 100), nullptr);
  EXPECT_EQ(kelp_handle_last_error(handle, &error), 12);
  EXPECT_NE(std::string(error.text).find("no memory for 100 bytes"), std::string::npos)
      << error.text;
  kelp_store_err(handle, 17);
  EXPECT_EQ(kelp_handle_last_error(handle, &error), 17);
  kelp_clear_last_error(handle);
  EXPECT_EQ(kelp_handle_last_error(handle, &error), 0);
}

TEST_F(HandleTest, AStoredCodeEndsAChainThatCreates) {
  kelp_store_err(handle, 12);
  EXPECT_EQ(handle->cr_err, 0u);
  handle->cr_create = 1;
  kelp_store_err(handle, 12);
  EXPECT_EQ(handle->cr_err, 12u);
  kelp_store_err(handle, 22);
  EXPECT_EQ(handle->cr_err, 12u) << "the first failure stands";
  EXPECT_EQ(kelp_handle_last_error(handle, nullptr), 22);
  handle->cr_create = 0;
  handle->cr_err = 0;
}

TEST_F(HandleTest, VariantMismatchSetsWordAndLastError) {
  kelp_error error;
  kelp_store_epoch_err(handle, 43, &err);
  EXPECT_EQ(err, 43u);
  EXPECT_EQ(kelp_handle_last_error(handle, &error), 43);
  EXPECT_NE(std::string(error.text).find("variant mismatch"), std::string::npos);
  kelp_clear_last_error(handle);
  kelp_store_epoch_err(handle, 5, nullptr);
  EXPECT_EQ(kelp_handle_last_error(handle, nullptr), 43);
  err = 0;
  kelp_store_epoch_err(handle, 5, &err);
  EXPECT_EQ(err, 43u);
  kelp_store_epoch_err(nullptr, 43, &err);
}

TEST_F(HandleTest, HooksCountAndShowWrites) {
  watch_writes();
  auto *object = make<Object>();
  handle->write_notify(handle->obj_pool, &object->value, 4, 3);
  handle->counter_notify(handle->obj_pool, &object->value, 1, 4);
  ASSERT_EQ(writes.size(), 2u);
  EXPECT_EQ(writes[0].address, &object->value);
  EXPECT_EQ(writes[0].length, 4u);
  EXPECT_EQ(writes[0].space_id, 3u);
  EXPECT_EQ(writes[0].origin, static_cast<std::uint32_t>(KELP_WRITE_MODULE));
  EXPECT_EQ(writes[1].origin, static_cast<std::uint32_t>(KELP_WRITE_COUNTER));
  EXPECT_EQ(writes[1].length, 1u);
  EXPECT_EQ(kelp_handle_write_count(handle, KELP_WRITE_MODULE), 1u);
  EXPECT_EQ(kelp_handle_write_count(handle, KELP_WRITE_COUNTER), 1u);
  EXPECT_EQ(kelp_handle_write_count(handle, 99), 0u);
  kelp_handle_set_write_observer(handle, nullptr, nullptr);
  handle->write_notify(handle->obj_pool, &object->value, 4, 3);
  EXPECT_EQ(writes.size(), 2u);
  EXPECT_EQ(kelp_handle_write_count(handle, KELP_WRITE_MODULE), 2u);
  release(object);
}

TEST_F(HandleTest, ObjectsOutliveTheHandleThatMadeThem) {
  kelp_handle *other = kelp_handle_create(database, nullptr, nullptr);
  void *object = other->obj_alloc(other->obj_pool, 0, 30);
  std::memset(object, 1, 30);
  kelp_handle_destroy(other);
  EXPECT_EQ(lumen_in_range(handle->obj_pool, object), 1u);
  EXPECT_EQ(std::string(30, 1), std::string(static_cast<char *>(object), 30));
  release(object);
}

TEST_F(HandleTest, NullHandlesArePassedOver) {
  kelp_clear_last_error(nullptr);
  kelp_store_err(nullptr, 3);
  kelp_handle_destroy(nullptr);
  EXPECT_EQ(kelp_handle_last_error(nullptr, nullptr), 0);
}

}  // namespace
