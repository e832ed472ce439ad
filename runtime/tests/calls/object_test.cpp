// Questions about one object, and its counters.
#include <atomic>
#include <thread>

#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;
using kelp_test::Object;
using kelp_test::Type;

class ObjectTest : public DatabaseTest {};

TEST_F(ObjectTest, VariantAndFlagsAreReadFromTheHeader) {
  Object object = {};
  object.header.variant = -3;
  object.header.obj_flags = 0x4A;
  EXPECT_EQ(kelp_get_instance_variant(&object, 1, 0), -3);
  EXPECT_EQ(kelp_get_instance_variant(&object, 0, 1), -3);
  EXPECT_EQ(kelp_get_instance_obj_flag(&object, 1, 0), 0x4A);
  EXPECT_EQ(kelp_get_instance_variant(nullptr, 1, 1), 0);
  EXPECT_EQ(kelp_get_instance_obj_flag(nullptr, 1, 0), 0);
}

TEST_F(ObjectTest, TypeRecordIsSeenThroughABlock) {
  Type type("t");
  Object object = {};
  object.header.tinfo = &type.record;
  EXPECT_EQ(kelp_get_manifested_type_info(&object), &type.record);
  EXPECT_EQ(kelp_get_manifested_type_info_ptr_mem(&object), &object.header.tinfo);

  kelp_tinfo_block block = {&type.record};
  void *first_word = &block;
  std::memcpy(&object.header.tinfo, &first_word, sizeof first_word);
  object.header.obj_flags = OBJ_TINFO_BLOCK;
  EXPECT_EQ(kelp_get_manifested_type_info(&object), &type.record);
  EXPECT_EQ(kelp_get_manifested_type_info_ptr_mem(&object), &block.tinfo);

  object.header.tinfo = nullptr;
  EXPECT_EQ(kelp_get_manifested_type_info(&object), nullptr);
  EXPECT_EQ(kelp_get_manifested_type_info(nullptr), nullptr);
}

TEST_F(ObjectTest, LuidIsTheTypesIdentity) {
  Type type("t");
  Object object = {};
  object.header.tinfo = &type.record;
  EXPECT_EQ(kelp_get_luid(handle, 0, &object, &err), type.record.md5);
  EXPECT_EQ(kelp_get_luid(handle, 0, nullptr, &err), nullptr);
  EXPECT_EQ(err, 22u);
  EXPECT_EQ(kelp_get_luid(handle, 0, &object, &err), nullptr);
}

TEST_F(ObjectTest, FlagsRefuseWhatTheCallerNames) {
  Object object = {};
  EXPECT_EQ(kelplib_validate_object_flags(&object, 0, 1), 0u);
  EXPECT_EQ(kelplib_validate_object_flags(&object, 1, 1), 0u);
  object.header.obj_flags = OBJ_EMBEDDED;
  EXPECT_EQ(kelplib_validate_object_flags(&object, 0, 1), 0u);
  EXPECT_EQ(kelplib_validate_object_flags(&object, 1, 1), 1u);
  object.header.obj_flags = OBJ_NESTED;
  EXPECT_EQ(kelplib_validate_object_flags(&object, 0, 1), 1u);
  EXPECT_EQ(kelplib_validate_object_flags(&object, 1, 1), 1u);
  EXPECT_EQ(kelplib_validate_object_flags(&object, 0, 0), 0u);
  EXPECT_EQ(kelplib_validate_object_flags(nullptr, 0, 1), 22u);
}

TEST_F(ObjectTest, CountersRiseInTheGivenEntry) {
  Type type("t");
  watch_writes();
  for (const std::uint32_t plain : {0u, 1u}) {
    type.record.plain_counters = plain;
    kelplib_type_stats_create_object(handle, 2, &type.record, &type.entries[1].create_count, &err);
    kelplib_type_stats_destroy_object(handle, 2, &type.record, &type.entries[1].create_count, &err);
  }
  EXPECT_EQ(type.entries[1].create_count, 2u);
  EXPECT_EQ(type.entries[1].destroy_count, 2u);
  EXPECT_EQ(type.entries[1].reserved_counter, 0u);
  EXPECT_EQ(type.entries[0].create_count, 0u);
  ASSERT_EQ(writes.size(), 4u);
  EXPECT_EQ(writes[0].address, &type.entries[1].create_count);
  EXPECT_EQ(writes[1].address, &type.entries[1].destroy_count);
  EXPECT_EQ(writes[0].length, 1u);
  EXPECT_EQ(writes[0].space_id, 2u);
  EXPECT_EQ(writes[0].origin, static_cast<std::uint32_t>(KELP_WRITE_COUNTER));
  EXPECT_EQ(err, 0u);
}

// No count is lost between threads, each with a handle of its own. They count until one has met the
// other at work often enough, which on a busy machine takes its time.
TEST_F(ObjectTest, CountersAreOfAllThreads) {
  constexpr std::uint64_t most = 5'000'000;
  constexpr int enough = 100'000;
  Type type("t");
  std::atomic<std::uint64_t> made[2] = {0, 0};
  std::atomic<bool> is_enough = false;
  const auto count = [&](kelp_handle *own, int self) {
    std::uint32_t error = 0;
    std::uint64_t last = 0;
    int met = 0;
    for (std::uint64_t turn = 1; !is_enough && turn <= most; ++turn) {
      kelplib_type_stats_create_object(own, 0, &type.record, &type.entries[0].create_count, &error);
      made[self].store(turn, std::memory_order_relaxed);
      const std::uint64_t now = made[1 - self].load(std::memory_order_relaxed);
      if (now != last && ++met == enough) is_enough = true;
      last = now;
    }
    EXPECT_EQ(error, 0u);
  };
  kelp_handle *other = kelp_handle_create(database, nullptr, nullptr);
  ASSERT_NE(other, nullptr);
  std::thread second(count, other, 1);
  count(handle, 0);
  second.join();
  kelp_handle_destroy(other);
  EXPECT_EQ(type.entries[0].create_count, made[0] + made[1]);
}

TEST_F(ObjectTest, CountersNeedRecordAndEntry) {
  Type type("t");
  kelplib_type_stats_create_object(handle, 0, nullptr, &type.entries[0].create_count, &err);
  EXPECT_EQ(err, 22u);
  kelplib_type_stats_create_object(handle, 0, &type.record, &type.entries[0].create_count, &err);
  EXPECT_EQ(type.entries[0].create_count, 0u);
  err = 0;
  kelplib_type_stats_destroy_object(handle, 0, &type.record, nullptr, &err);
  EXPECT_EQ(err, 22u);
}

TEST_F(ObjectTest, TrackingMarkOfAnImage) {
  const std::uint8_t tracked[] = {0, 0x28};
  const std::uint8_t plain[] = {8, 0x20};
  EXPECT_EQ(kelplib_type_header_get_state_tracking_flag(tracked), 1);
  EXPECT_EQ(kelplib_type_header_get_state_tracking_flag(plain), 0);
  EXPECT_EQ(kelplib_type_header_get_state_tracking_flag(nullptr), 0);
}

TEST_F(ObjectTest, ModuleListIsEmptyAndEndsAtItsHead) {
  EXPECT_EQ(kelp_module_tot_root.count, 0u);
  EXPECT_EQ(kelp_module_tot_root.first, nullptr);
  EXPECT_EQ(kelp_module_tot_root.tail_link, &kelp_module_tot_root.first);
}

}  // namespace
