// The collector: pending records, postponed frees of tables, objects whose last reference went.
#include "tables.hpp"

namespace {

using kelp_test::destroy_record;
using kelp_test::free_table;
using kelp_test::Object;
using kelp_test::TablesTest;
using kelp_test::Type;

class CollectorTest : public TablesTest {
 protected:
  void request(kelp_record *record) {
    kelpdb_request_record_destroy(handle, 0, record, &err);
    EXPECT_EQ(err, 0u);
  }
};

TEST_F(CollectorTest, NothingToDoIsNoFailure) {
  const kelp_collector_report report = collect();
  EXPECT_EQ(report.records_ended + report.records_waiting + report.tables_freed +
                report.tables_waiting + report.objects_ended,
            0u);
  EXPECT_EQ(handle->collector_context, 0u);
  free_now(table);
}

TEST_F(CollectorTest, RequestMarksTheRecordAndCountsIt) {
  kelp_table_enable_cursors(handle, table, 1, nullptr);
  kelp_record *record = insert(table, 1);
  watch_writes();
  kelpdb_request_record_destroy(handle, 5, record, &err);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(record->rec_flags, static_cast<std::uint32_t>(REC_IN_TABLE | REC_PENDING_DESTROY));
  EXPECT_EQ(table->pending_destroy_count, 1u);
  EXPECT_EQ(table->record_count, 1u);
  ASSERT_EQ(writes.size(), 2u);
  EXPECT_EQ(writes[0].address, &record->rec_flags);
  EXPECT_EQ(writes[0].length, 4u);
  EXPECT_EQ(writes[1].address, &table->pending_destroy_count);
  EXPECT_EQ(writes[1].length, 4u);
  EXPECT_EQ(writes[1].space_id, 5u);
  request(record);
  EXPECT_EQ(table->pending_destroy_count, 1u);
  EXPECT_EQ(writes.size(), 2u);
  EXPECT_EQ(collect().records_ended, 1u);
  EXPECT_EQ(table->pending_destroy_count, 0u);
  EXPECT_EQ(table->record_count, 0u);
  EXPECT_EQ(table->avl_root.top, nullptr);
  free_now(table);
  EXPECT_EQ(memory().live_allocations, 0u);
}

TEST_F(CollectorTest, RequestNeedsARecordInATableWithCursors) {
  kelp_record *record = insert(table, 1);
  kelpdb_request_record_destroy(handle, 0, record, &err);
  EXPECT_EQ(err, 22u);
  err = 0;
  kelpdb_request_record_destroy(handle, 0, nullptr, &err);
  EXPECT_EQ(err, 2u);
  err = 0;
  kelp_table *kept = record->record_table;
  record->record_table = nullptr;
  kelpdb_request_record_destroy(handle, 0, record, &err);
  EXPECT_EQ(err, 22u);
  record->record_table = kept;
  err = 0;
  EXPECT_EQ(record->rec_flags, static_cast<std::uint32_t>(REC_IN_TABLE));
  destroy_record(handle, 0, record, &err);
  free_now(table);
}

TEST_F(CollectorTest, RecordWaitsForEveryCursor) {
  kelp_table_enable_cursors(handle, table, 1, nullptr);
  kelp_feed_cursor *fast = kelp_feed_cursor_open(handle, table, nullptr);
  kelp_feed_cursor *slow = kelp_feed_cursor_open(handle, table, nullptr);
  request(insert(table, 1));
  kelp_feed_change change;
  ASSERT_EQ(kelp_feed_cursor_next(fast, &change), 1);
  kelp_collector_report report = collect();
  EXPECT_EQ(report.records_ended, 0u);
  EXPECT_EQ(report.records_waiting, 1u);
  EXPECT_EQ(table->record_count, 1u);
  ASSERT_EQ(kelp_feed_cursor_next(slow, &change), 1);
  EXPECT_EQ(change.kind, static_cast<std::uint32_t>(KELP_FEED_DESTROYED));
  report = collect();
  EXPECT_EQ(report.records_ended, 1u);
  EXPECT_EQ(report.records_waiting, 0u);
  kelp_feed_cursor_close(fast);
  kelp_feed_cursor_close(slow);
  free_now(table);
}

TEST_F(CollectorTest, ClosedCursorHoldsNothingBack) {
  kelp_table_enable_cursors(handle, table, 1, nullptr);
  kelp_feed_cursor *cursor = kelp_feed_cursor_open(handle, table, nullptr);
  request(insert(table, 1));
  EXPECT_EQ(collect().records_waiting, 1u);
  kelp_feed_cursor_close(cursor);
  EXPECT_EQ(collect().records_ended, 1u);
  free_now(table);
}

TEST_F(CollectorTest, HeldRecordLeavesTheTreeAndEndsWithItsHolder) {
  kelp_table_enable_cursors(handle, table, 1, nullptr);
  kelp_record *record = insert(table, 1);
  ++record->ref_word;
  request(record);
  EXPECT_EQ(collect().records_ended, 1u);
  EXPECT_EQ(table->avl_root.top, nullptr);
  EXPECT_EQ(table->record_count, 0u);
  EXPECT_EQ(record->ref_word, 1u);
  EXPECT_EQ(collect().records_ended, 0u);
  destroy_record(handle, 0, record, &err);
  free_now(table);
  EXPECT_EQ(memory().live_allocations, 0u);
}

TEST_F(CollectorTest, ManyRecordsEndInOneRun) {
  kelp_table_enable_cursors(handle, table, 1, nullptr);
  for (std::uintptr_t key = 1; key <= 500; ++key) {
    kelp_record *record = insert(table, key);
    if (key % 2 == 0) request(record);
  }
  EXPECT_EQ(collect().records_ended, 250u);
  EXPECT_EQ(table->record_count, 250u);
  while (table->avl_root.top != nullptr) {
    const auto *top = reinterpret_cast<const char *>(table->avl_root.top);
    request(
        reinterpret_cast<kelp_record *>(const_cast<char *>(top - offsetof(kelp_record, avl_node))));
    collect();
  }
  free_now(table);
}

TEST_F(CollectorTest, PostponedTableIsFreedAfterItsLastReference) {
  const kelp_oid oid = kelp_handle_to_oid(handle, 0, table, KELP_OID_KIND_TABLE, 1, &err);
  free_table(handle, 0, table, &err);
  EXPECT_EQ(err, 11u);
  err = 0;
  EXPECT_EQ(collect().tables_waiting, 1u);
  EXPECT_EQ(kelp_database_next_table(database, nullptr), table);
  auto *field = make<kelp_reference>();
  field->oid = oid;
  kelplib_oid_release_internal(handle, 0, field, &err);
  release(field);
  EXPECT_EQ(collect().tables_freed, 1u);
  EXPECT_EQ(kelp_database_next_table(database, nullptr), nullptr);
  EXPECT_EQ(memory().live_allocations, 0u);
}

TEST_F(CollectorTest, PostponedFreeCanBeRepeatedByTheCaller) {
  kelp_handle_to_oid(handle, 0, table, KELP_OID_KIND_TABLE, 1, &err);
  free_table(handle, 0, table, &err);
  EXPECT_EQ(err, 11u);
  err = 0;
  kelplib_lookup_and_update_oid_ref_count(handle, 0, table, KELP_OID_DECREMENT, &err);
  free_now(table);
  EXPECT_EQ(memory().live_allocations, 0u);
}

TEST_F(CollectorTest, TableWithRecordsWaits) {
  kelp_record *record = insert(table, 1);
  kelpdb_database_toc_delete(handle, 0, table, &err);
  EXPECT_EQ(collect().tables_waiting, 1u);
  destroy_record(handle, 0, record, &err);
  EXPECT_EQ(collect().tables_freed, 1u);
}

TEST_F(CollectorTest, SharedDatabaseLeavesTheFreeToTheCollector) {
  free_now(table);
  kelp_database_options options;
  kelp_database_options_init(&options);
  options.marked_shared = 1;
  reopen(options);
  EXPECT_EQ(kelp_collector_run(handle, nullptr, &error), 1);
  EXPECT_STREQ(error.text,
               "kelp_collector_run: database 'test' is shared: this handle holds no lock, expected "
               "the write lock");
  ASSERT_EQ(kelp_lock_write(handle, nullptr), 0);
  table = open_table("table");
  free_table(handle, 0, table, &err);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(kelp_database_next_table(database, nullptr), table);
  EXPECT_EQ(collect().tables_freed, 1u);
  EXPECT_EQ(kelp_database_next_table(database, nullptr), nullptr);
  EXPECT_EQ(memory().live_allocations, 0u);
}

int objects_ended = 0;

void end_object(kelp_handle *handle, std::uint32_t space_id, void *object) {
  ++objects_ended;
  std::uint32_t err = 0;
  if (kelp_request_oid_mapping_destroy(handle, space_id, object, &err) == 0) return;
  handle->obj_free(handle->obj_pool, space_id, object);
}

TEST_F(CollectorTest, ObjectEndsAfterItsLastReference) {
  free_now(table);
  objects_ended = 0;
  Type type("collected_thing");
  auto *object = make<Object>(&type.record);
  kelp_handle_to_oid(handle, 0, object, KELP_OID_KIND_OBJECT, 1, &err);
  EXPECT_EQ(kelp_request_oid_mapping_destroy(handle, 0, object, &err), 0u);
  EXPECT_EQ(collect().objects_ended, 0u);
  kelplib_lookup_and_update_oid_ref_count(handle, 0, object, KELP_OID_DECREMENT, &err);
  collect(2);
  EXPECT_EQ(std::string(error.text),
            "kelp_collector_run: database 'test': no function for collected_thing_destroy; "
            "kelp_module_set_vft_lookup or kelp_type_set_destroyer names one");
  ASSERT_EQ(kelp_type_set_destroyer("collected_thing", end_object, nullptr), 0);
  EXPECT_EQ(collect().objects_ended, 1u);
  EXPECT_EQ(objects_ended, 1);
  EXPECT_EQ(memory().live_allocations, 0u);
  kelp_type_set_destroyer("collected_thing", nullptr, nullptr);
}

TEST_F(CollectorTest, UnreferencedObjectIsLeftAloneWithoutARequest) {
  free_now(table);
  objects_ended = 0;
  Type type("kept_thing");
  auto *object = make<Object>(&type.record);
  kelp_handle_to_oid(handle, 0, object, KELP_OID_KIND_OBJECT, 1, &err);
  kelplib_lookup_and_update_oid_ref_count(handle, 0, object, KELP_OID_DECREMENT, &err);
  EXPECT_EQ(collect().objects_ended, 0u);
  release(object);
}

TEST_F(CollectorTest, CountsFallForTheTenantOfTheRecord) {
  kelp_table_enable_cursors(handle, table, 1, nullptr);
  kelp_tenant_set(7);
  request(insert(table, 1));
  kelp_record *kept = insert(table, 2);
  kelp_tenant_set(9);
  kelp_record *of_nine = insert(table, 3);
  const auto count = [&](std::uint16_t tenant) {
    std::uint32_t found = 0;
    kelpdb_get_tenant_counter(handle, 0, table, &found, tenant, nullptr);
    return found;
  };
  EXPECT_EQ(count(7), 2u);
  EXPECT_EQ(collect().records_ended, 1u);
  EXPECT_EQ(count(7), 1u);
  EXPECT_EQ(count(9), 1u);
  std::uint16_t tenant = 0;
  mt_get_tenant_id(&tenant);
  EXPECT_EQ(tenant, 9u);
  kelp_tenant_set(0);
  request(kept);
  request(of_nine);
  EXPECT_EQ(collect().records_ended, 2u);
  EXPECT_EQ(count(7) + count(9), 0u);
  free_now(table);
}

TEST_F(CollectorTest, CursorHoldsBackTheFreeOfItsTable) {
  kelp_table_enable_cursors(handle, table, 1, nullptr);
  kelp_feed_cursor *cursor = kelp_feed_cursor_open(handle, table, nullptr);
  kelpdb_database_toc_delete(handle, 0, table, &err);
  kelp_collector_report report = collect();
  EXPECT_EQ(report.tables_freed, 0u);
  EXPECT_EQ(report.tables_waiting, 1u);
  kelp_feed_cursor_close(cursor);
  EXPECT_EQ(collect().tables_freed, 1u);
  EXPECT_EQ(memory().live_allocations, 0u);
}

TEST_F(CollectorTest, CacheEntriesGoWithTheirTable) {
  kelp_table *other = open_table("other");
  kelp_record *record = insert(table, 1);
  kelprepl_add_to_cache(handle, 0, table, record, &err);
  kelp_record *of_other = insert(other, 1);
  kelprepl_add_to_cache(handle, 0, other, of_other, &err);
  handle->collector_context = 1;
  kelp_test::delete_record(handle, 0, table, record, &err);
  handle->collector_context = 0;
  free_now(table);
  std::uint64_t position = 0;
  kelp_cache_entry entry;
  ASSERT_EQ(kelp_replication_cache_next(handle, &position, &entry), 1);
  EXPECT_EQ(entry.table, other);
  EXPECT_EQ(kelp_replication_cache_next(handle, &position, &entry), 0);
  release(record);
  destroy_record(handle, 0, of_other, &err);
  free_now(other);
}

kelp_record *freed_with_it = nullptr;
std::vector<void *> ended_before;

// Ends a record as a module does that holds one object of another: with the first of a pair goes
// the second.
void destroy_pair(kelp_handle *handle, std::uint32_t space_id, kelp_record *record,
                  std::uint32_t *err) {
  ended_before.push_back(record);
  kelp_record *other = freed_with_it;
  freed_with_it = nullptr;
  destroy_record(handle, space_id, record, err);
  if (other == nullptr) return;
  kelp_test::delete_record(handle, space_id, other->record_table, other, err);
  handle->obj_free(handle->obj_pool, space_id, other);
}

void pair_vft(kelp_handle *handle, std::uint32_t space_id, const std::uint8_t *luid,
              const kelp_table_vft **vft, std::uint32_t *err) {
  static kelp_table_vft pairs;
  kelp_test::get_vft(handle, space_id, luid, vft, err);
  pairs = **vft;
  pairs.operations[KELP_VFT_DESTROY_RECORD - KELP_VFT_TABLE_OPEN] =
      reinterpret_cast<kelp_vft_word>(&destroy_pair);
  *vft = &pairs;
}

TEST_F(CollectorTest, RecordThatGoesWithAnotherIsNotTouched) {
  kelp_table_enable_cursors(handle, table, 1, nullptr);
  kelp_module_set_vft_lookup(kelp_test::kTableModule, pair_vft, nullptr);
  kelp_record *first = insert(table, 1);
  freed_with_it = insert(table, 2);
  request(first);
  request(freed_with_it);
  ended_before.clear();
  EXPECT_EQ(collect().records_ended, 1u);
  EXPECT_EQ(ended_before, std::vector<void *>{first});
  EXPECT_EQ(table->record_count, 0u);
  free_now(table);
  EXPECT_EQ(memory().live_allocations, 0u);
}

kelp_table *freed_table = nullptr;
void *in_its_place = nullptr;

// Ends a record and another table with it, whose memory goes to something else.
void destroy_with_table(kelp_handle *handle, std::uint32_t space_id, kelp_record *record,
                        std::uint32_t *err) {
  destroy_record(handle, space_id, record, err);
  free_table(handle, space_id, freed_table, err);
  in_its_place = handle->obj_alloc(handle->obj_pool, space_id, sizeof(kelp_table));
  std::memset(in_its_place, 0xEE, sizeof(kelp_table));
}

void table_vft(kelp_handle *handle, std::uint32_t space_id, const std::uint8_t *luid,
               const kelp_table_vft **vft, std::uint32_t *err) {
  static kelp_table_vft with_table;
  kelp_test::get_vft(handle, space_id, luid, vft, err);
  with_table = **vft;
  with_table.operations[KELP_VFT_DESTROY_RECORD - KELP_VFT_TABLE_OPEN] =
      reinterpret_cast<kelp_vft_word>(&destroy_with_table);
  *vft = &with_table;
}

TEST_F(CollectorTest, TableThatGoesWithARecordIsNotTouched) {
  kelp_table_enable_cursors(handle, table, 1, nullptr);
  kelp_module_set_vft_lookup(kelp_test::kTableModule, table_vft, nullptr);
  freed_table = open_table("other");
  request(insert(table, 1));
  EXPECT_EQ(collect().records_ended, 1u);
  release(in_its_place);
  free_now(table);
  EXPECT_EQ(memory().live_allocations, 0u);
}

void *paired_objects[2];

// Ends both of a pair, whichever comes first.
void end_both(kelp_handle *handle, std::uint32_t space_id, void *object) {
  ended_before.push_back(object);
  for (void *each : paired_objects) handle->obj_free(handle->obj_pool, space_id, each);
}

TEST_F(CollectorTest, ObjectThatGoesWithAnotherIsNotTouched) {
  free_now(table);
  Type type("paired_thing");
  kelp_type_set_destroyer("paired_thing", end_both, nullptr);
  for (void *&object : paired_objects) {
    object = make<Object>(&type.record);
    kelp_handle_to_oid(handle, 0, object, KELP_OID_KIND_OBJECT, 1, &err);
    EXPECT_EQ(kelp_request_oid_mapping_destroy(handle, 0, object, &err), 0u);
    kelplib_lookup_and_update_oid_ref_count(handle, 0, object, KELP_OID_DECREMENT, &err);
  }
  ended_before.clear();
  EXPECT_EQ(collect().objects_ended, 1u);
  EXPECT_EQ(ended_before.size(), 1u);
  EXPECT_EQ(memory().live_allocations, 0u);
  kelp_type_set_destroyer("paired_thing", nullptr, nullptr);
}

TEST_F(CollectorTest, MissingVftIsNamedAndLosesNoRecord) {
  kelp_table_enable_cursors(handle, table, 1, nullptr);
  request(insert(table, 1));
  kelp_module_set_vft_lookup(kelp_test::kTableModule, nullptr, nullptr);
  collect(2);
  EXPECT_NE(std::string(error.text).find("no function for tbl_thing's vft"), std::string::npos)
      << error.text;
  EXPECT_EQ(table->record_count, 1u);
  kelp_module_set_vft_lookup(kelp_test::kTableModule, kelp_test::get_vft, nullptr);
  EXPECT_EQ(collect().records_ended, 1u);
  free_now(table);
}

}  // namespace

// Found by its name, as the functions of a loaded module are.
extern "C" __attribute__((visibility("default"))) void named_module_table_get_vft(
    kelp_handle *handle, std::uint32_t space_id, const std::uint8_t *luid,
    const kelp_table_vft **vft, std::uint32_t *err) {
  kelp_test::get_vft(handle, space_id, luid, vft, err);
}

namespace {

TEST_F(CollectorTest, ModulesFunctionIsFoundByItsName) {
  std::snprintf(table_type.record.module_name, sizeof table_type.record.module_name,
                "named_module");
  kelpdb_database_toc_delete(handle, 0, table, &err);
  EXPECT_EQ(collect().tables_freed, 1u);
  EXPECT_EQ(memory().live_allocations, 0u);
}

TEST(FinishersTest, NamesAreNeeded) {
  kelp_error error;
  EXPECT_EQ(kelp_module_set_vft_lookup("", kelp_test::get_vft, &error), 22);
  EXPECT_STREQ(error.text, "kelp_module_set_vft_lookup: no name, expected a text");
  EXPECT_EQ(kelp_type_set_destroyer(nullptr, end_object, &error), 22);
}

}  // namespace
