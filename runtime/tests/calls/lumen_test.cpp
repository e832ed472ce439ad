// The store behind obj_pool: ranges, keys, the last failure.
#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;
using kelp_test::Object;

class LumenTest : public DatabaseTest {
 protected:
  std::string reported() {
    testing::internal::CaptureStderr();
    lumen_perror();
    return testing::internal::GetCapturedStderr();
  }
};

TEST_F(LumenTest, RangeInsideABlockIsDeclared) {
  auto *object = make<Object>();
  watch_writes();
  EXPECT_EQ(lumen_set_range(handle->obj_pool, &object->value, 4, 9), 1u);
  ASSERT_EQ(writes.size(), 1u);
  EXPECT_EQ(writes[0].address, &object->value);
  EXPECT_EQ(writes[0].length, 4u);
  EXPECT_EQ(writes[0].space_id, 9u);
  EXPECT_EQ(writes[0].origin, static_cast<std::uint32_t>(KELP_WRITE_RANGE));
  release(object);
}

TEST_F(LumenTest, RangeOutsideIsRefusedAndExplained) {
  auto *object = make<Object>();
  EXPECT_EQ(lumen_set_range(handle->obj_pool, object, sizeof *object + 1, 0), 0u);
  EXPECT_NE(reported().find("expected a range inside one block"), std::string::npos);
  EXPECT_EQ(lumen_set_range(nullptr, object, 4, 0), 0u);
  EXPECT_EQ(reported(), "lumen_set_range: a null pool, expected the obj_pool of a handle\n");
  std::uint64_t foreign = 5;
  EXPECT_EQ(lumen_set_range(&foreign, object, 4, 0), 0u);
  EXPECT_NE(reported().find("a pool of something else"), std::string::npos);
  release(object);
}

TEST_F(LumenTest, ListHeadLiesInTheStore) {
  kelp_table_list *list = kelplib_database_table_toc_create(handle, KELP_SPACE_RUNTIME, &err);
  EXPECT_EQ(lumen_set_range(handle->obj_pool, &list->last_link, 8, 0), 1u);
}

TEST_F(LumenTest, KeysHoldPointers) {
  int first = 0;
  int second = 0;
  EXPECT_EQ(lumen_get_key(handle->obj_pool, "key"), nullptr);
  EXPECT_NE(lumen_set_key(handle->obj_pool, "key", &first), 0u);
  EXPECT_EQ(lumen_get_key(handle->obj_pool, "key"), &first);
  EXPECT_NE(lumen_set_key(handle->obj_pool, "key", &second), 0u);
  EXPECT_EQ(lumen_get_key(handle->obj_pool, "key"), &second);
  EXPECT_EQ(lumen_get_key(handle->obj_pool, "ke"), nullptr);
  EXPECT_NE(lumen_set_key(handle->obj_pool, "key", nullptr), 0u);
  EXPECT_EQ(lumen_get_key(handle->obj_pool, "key"), nullptr);
  EXPECT_EQ(lumen_set_key(handle->obj_pool, "", &first), 0u);
  EXPECT_EQ(lumen_set_key(nullptr, "key", &first), 0u);
}

TEST_F(LumenTest, KeysAreTheDatabases) {
  int word = 0;
  lumen_set_key(handle->obj_pool, "key", &word);
  kelp_handle *same = kelp_handle_create(database, nullptr, nullptr);
  EXPECT_EQ(lumen_get_key(same->obj_pool, "key"), &word);
  kelp_handle_destroy(same);
  kelp_database *other = kelp_database_open_private("other", nullptr, nullptr);
  kelp_handle *stranger = kelp_handle_create(other, nullptr, nullptr);
  EXPECT_EQ(lumen_get_key(stranger->obj_pool, "key"), nullptr);
  void *block = allocate(8);
  EXPECT_EQ(lumen_in_range(stranger->obj_pool, block), 0u);
  release(block);
  kelp_handle_destroy(stranger);
  kelp_database_close(other, nullptr);
}

TEST_F(LumenTest, FaultsStrike) {
  auto *object = make<Object>();
  int word = 0;
  kelp_database_fail_after(database, KELP_FAULT_RANGE, 1);
  EXPECT_EQ(lumen_set_range(handle->obj_pool, object, 4, 0), 1u);
  EXPECT_EQ(lumen_set_range(handle->obj_pool, object, 4, 0), 0u);
  EXPECT_EQ(lumen_set_range(handle->obj_pool, object, 4, 0), 1u);
  kelp_database_fail_after(database, KELP_FAULT_SET_KEY, 0);
  EXPECT_EQ(lumen_set_key(handle->obj_pool, "key", &word), 0u);
  EXPECT_EQ(lumen_get_key(handle->obj_pool, "key"), nullptr);
  EXPECT_NE(lumen_set_key(handle->obj_pool, "key", &word), 0u);
  release(object);
}

// A module that remembers the block for one of the two would take it for the other's.
TEST_F(LumenTest, WhatStoodUnderTwoKeysIsNotConfirmedAgain) {
  void *block = allocate(32);
  EXPECT_EQ(lumen_set_key(handle->obj_pool, "one", block), 1u);
  EXPECT_EQ(lumen_in_range(handle->obj_pool, block), 1u);
  EXPECT_EQ(lumen_set_key(handle->obj_pool, "one", nullptr), 1u);
  EXPECT_EQ(lumen_set_key(handle->obj_pool, "other", block), 1u);
  EXPECT_EQ(lumen_in_range(handle->obj_pool, block), 0u);
  EXPECT_EQ(lumen_set_key(handle->obj_pool, "other", nullptr), 1u);
  EXPECT_EQ(lumen_set_key(handle->obj_pool, "one", block), 1u);
  EXPECT_EQ(lumen_in_range(handle->obj_pool, block), 0u);
  EXPECT_EQ(lumen_set_key(handle->obj_pool, "one", nullptr), 1u);
  release(block);
}

}  // namespace
