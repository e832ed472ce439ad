// Registering type records: copies, their variant info, and finding them.
#include <chrono>
#include <thread>

#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;
using kelp_test::Type;

// What the module of these tests registers, in the manner of a module.
std::vector<kelp_type_record *> registered;
int initializer_calls = 0;

void initialize(kelp_handle *handle, std::uint32_t space_id, std::uint32_t *err) {
  ++initializer_calls;
  for (kelp_type_record *record : registered) {
    kelp_type_record_copy *copy =
        handle->type_table_lookup(handle->type_table, space_id, record->md5_text);
    const std::uint32_t is_new = copy == nullptr ? 1 : 0;
    if (copy == nullptr) {
      copy = static_cast<kelp_type_record_copy *>(
          handle->type_alloc(handle->type_pool, KELP_SPACE_RUNTIME, sizeof *copy));
      if (copy == nullptr) {
        *err = 12;
        kelp_store_err(handle, 12);
        return;
      }
      std::memset(copy, 0, sizeof *copy);
      copy->record = *record;
      copy->record.plain_counters = handle->shared_tinfo;
      handle->type_table_insert(handle->type_table, space_id, copy->record.md5_text, copy);
    }
    kelp_update_variant_info(handle, space_id, copy, record, is_new);
  }
}

class TypeTableTest : public DatabaseTest {
 protected:
  TypeTableTest() {
    kelp_database_options options;
    kelp_database_options_init(&options);
    options.shared_tinfo = 1;
    reopen(options);
    registered = {&first.record, &second.record};
    initializer_calls = 0;
  }

  kelp_type_record *get(kelp_type_record *record) {
    return kelp_type_info_ptr_get(handle, 0, record, initialize);
  }

  Type first{"first", "type", 2, 10};
  Type second{"second", "type", 1, 60};
};

TEST_F(TypeTableTest, UnknownRecordRegistersTheModuleOnce) {
  kelp_type_record *copy = get(&first.record);
  ASSERT_NE(copy, &first.record);
  EXPECT_EQ(initializer_calls, 1);
  EXPECT_STREQ(copy->md5_text, first.record.md5_text);
  EXPECT_NE(copy->plain_counters, 0u);
  EXPECT_EQ(get(&first.record), copy);
  EXPECT_NE(get(&second.record), copy);
  EXPECT_EQ(initializer_calls, 1);
}

TEST_F(TypeTableTest, CopyHasVariantInfoOfItsOwn) {
  first.entries[1].create_count = 99;
  kelp_type_record *copy = get(&first.record);
  ASSERT_NE(copy->varinfo, first.record.varinfo);
  EXPECT_EQ(copy->varinfo->n_variants, 2);
  EXPECT_EQ(copy->varinfo->entries[1].used_length, 24u);
  EXPECT_EQ(copy->varinfo->entries[1].create_count, 0u);
}

TEST_F(TypeTableTest, RefreshKeepsCountersAndTakesNewVariants) {
  kelp_type_record *copy = get(&first.record);
  copy->varinfo->entries[0].create_count = 3;
  copy->varinfo->entries[1].destroy_count = 4;
  Type newer("first", "type", 3, 10);
  newer.entries[0].used_length = 500;
  kelp_update_variant_info(handle, 0, reinterpret_cast<kelp_type_record_copy *>(copy),
                           &newer.record, 0);
  EXPECT_EQ(copy->varinfo->n_variants, 3);
  EXPECT_EQ(copy->varinfo->entries[0].create_count, 3u);
  EXPECT_EQ(copy->varinfo->entries[1].destroy_count, 4u);
  EXPECT_EQ(copy->varinfo->entries[0].used_length, 500u);
  EXPECT_EQ(copy->varinfo->entries[2].create_count, 0u);
  // An older module's record takes nothing away.
  kelp_update_variant_info(handle, 0, reinterpret_cast<kelp_type_record_copy *>(copy),
                           &first.record, 0);
  EXPECT_EQ(copy->varinfo->n_variants, 3);
}

TEST_F(TypeTableTest, WithoutSharedTinfoTheStaticRecordIsTheAnswer) {
  handle->shared_tinfo = 0;
  EXPECT_EQ(get(&first.record), &first.record);
  EXPECT_EQ(initializer_calls, 0);
  handle->shared_tinfo = 1;
}

TEST_F(TypeTableTest, FailedRegistrationAnswersWithTheStaticRecord) {
  kelp_database_fail_allocation_after(database, 0);
  EXPECT_EQ(get(&first.record), &first.record);
  EXPECT_EQ(kelp_handle_last_error(handle, nullptr), 12);
  EXPECT_EQ(handle->type_table_lookup(handle->type_table, 0, first.record.md5_text), nullptr);
  EXPECT_NE(get(&first.record), &first.record);
}

TEST_F(TypeTableTest, UnregisteredRecordAnswersWithItself) {
  Type stranger("stranger", "type", 1, 200);
  EXPECT_EQ(get(&stranger.record), &stranger.record);
  EXPECT_EQ(kelp_handle_last_error(handle, nullptr), 2);
  EXPECT_EQ(kelp_type_info_ptr_get(handle, 0, nullptr, initialize), nullptr);
}

TEST_F(TypeTableTest, AddressUsedAgainByAnotherTypeIsNoticed) {
  kelp_type_record *copy = get(&first.record);
  std::memcpy(first.record.md5, second.record.md5, sizeof first.record.md5);
  std::memcpy(first.record.md5_text, second.record.md5_text, sizeof first.record.md5_text);
  EXPECT_NE(get(&first.record), copy);
  EXPECT_EQ(get(&first.record), get(&second.record));
}

TEST_F(TypeTableTest, ReplacedCopyIsNotGivenAnyMore) {
  kelp_type_record *copy = get(&first.record);
  EXPECT_EQ(get(&first.record), copy);
  auto *other = static_cast<kelp_type_record_copy *>(
      handle->type_alloc(handle->type_pool, KELP_SPACE_RUNTIME, sizeof(kelp_type_record_copy)));
  std::memset(other, 0, sizeof *other);
  other->record = first.record;
  handle->type_table_insert(handle->type_table, 0, first.record.md5_text, other);
  EXPECT_EQ(get(&first.record), &other->record);
}

void initialize_slowly(kelp_handle *handle, std::uint32_t space_id, std::uint32_t *err) {
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  initialize(handle, space_id, err);
}

// Modules look, find nothing, and enter a copy; two threads at it at once must not enter two.
TEST_F(TypeTableTest, ThreadsAreGivenOneCopy) {
  kelp_type_record *found[4] = {};
  std::vector<std::thread> threads;
  for (kelp_type_record *&each : found) {
    threads.emplace_back([&each, this] {
      kelp_handle *own = kelp_handle_create(database, nullptr, nullptr);
      each = kelp_type_info_ptr_get(own, 0, &first.record, initialize_slowly);
      kelp_handle_destroy(own);
    });
  }
  for (std::thread &thread : threads) thread.join();
  for (const kelp_type_record *each : found) EXPECT_EQ(each, found[0]);
  EXPECT_NE(found[0], &first.record);
  EXPECT_EQ(initializer_calls, 1);
}

TEST_F(TypeTableTest, CopiesAreNotCountedAsObjects) {
  get(&first.record);
  EXPECT_EQ(memory().live_allocations, 0u);
}

}  // namespace
