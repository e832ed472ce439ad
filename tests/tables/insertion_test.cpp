// Putting records into a table, taking them out and ending them, and the counts that follow.
#include "tables/table_fixture.hpp"

namespace {

using harness::AreaTable;
using harness::CallLog;
using harness::entry_of;
using harness::Failing;
using harness::shell;
using harness::Store;
using harness::Tenant;
using harness::TraceLog;
using harness::WriteWatch;

using Record = tbl_ospf_area_record *;

constexpr char exists[] = "tbl_ospf_area insert record exists for ospf_area area_id";

std::vector<e_avl_node *> nodes_of(const AreaTable &areas) {
  std::vector<e_avl_node *> nodes;
  const e_avl_root *root = &shell(areas.table)->avl_root;
  for (e_avl_node *node = e_avl_get_first(root); node != nullptr;
       node = e_avl_get_next(root, node, tbl_ospf_area_ospf_area_area_id_avl_compare)) {
    nodes.push_back(node);
  }
  return nodes;
}

// --- insert --------------------------------------------------------------------------------------

TEST(Insertion, ASecondEqualRecordGives17AndIsUnchanged) {
  AreaTable areas;
  areas.inserted(1);
  const Record second = areas.record(1);
  TraceLog traced;
  WriteWatch watch(areas);
  areas(tbl_ospf_area_insert, areas.table, second);
  areas.expect_failure(KELP_ERR_EXISTS);
  EXPECT_EQ(shell(areas.table)->record_count, 1u);
  EXPECT_EQ(shell(second)->record_table, nullptr);
  EXPECT_EQ(shell(second)->rec_flags, 0u);
  EXPECT_TRUE(watch.writes().empty());
  EXPECT_EQ(traced.texts(), std::vector<std::string>{exists});
  EXPECT_TRUE(traced.has(3, exists));
  areas.destroy(second);
}

TEST(Insertion, ADuplicateOfAQuietHandleIsNotTold) {
  AreaTable areas({.quiet_insert = true});
  areas.inserted(1);
  const Record second = areas.record(1);
  const TraceLog traced;
  areas(tbl_ospf_area_insert, areas.table, second);
  areas.expect_failure(KELP_ERR_EXISTS);
  EXPECT_TRUE(traced.empty());
  areas.destroy(second);
}

TEST(Insertion, TheDuplicateMessageOfACompositeKeyEndsInABlank) {
  Store store;
  auto *table = store(tbl_ospfv2_link_table_open, "links", 0);
  const auto record = [&] { return tbl_ospfv2_link_record_create_cr(store, 1); };
  auto *first = record();
  auto *second = record();
  store(tbl_ospfv2_link_insert, table, first);
  const TraceLog traced;
  store(tbl_ospfv2_link_insert, table, second);
  EXPECT_EQ(store.err, KELP_ERR_EXISTS);
  EXPECT_EQ(traced.texts(),
            std::vector<std::string>{"tbl_ospfv2_link insert record exists for ospfv2_link_key "});
  store.err = 0;
  store(tbl_ospfv2_link_destroy_record, first);
  store(tbl_ospfv2_link_destroy_record, second);
  store(tbl_ospfv2_link_table_free, table);
  EXPECT_EQ(store.err, 0u);
}

TEST(Insertion, TheSameKeyGoesInOnceForEachSource) {
  AreaTable areas;
  areas.inserted(1, 1);
  areas.inserted(1, 255);
  EXPECT_EQ(shell(areas.table)->record_count, 2u);
  EXPECT_EQ(shell(areas.table)->shadow_count, 1u);
}

TEST(Insertion, TheSameKeyGoesInOnceForEachTenant) {
  AreaTable areas;
  areas.inserted_by(1, 1);
  areas.inserted_by(2, 1);
  EXPECT_EQ(shell(areas.table)->record_count, 2u);
}

TEST(Insertion, ANullRecordGives17OverAnotherCode) {
  AreaTable areas;
  areas.err = 9;
  areas(tbl_ospf_area_insert, areas.table, nullptr);
  areas.expect_failure(KELP_ERR_EXISTS);
}

TEST(Insertion, AnErrorPresentStopsAnInsert) {
  AreaTable areas;
  const Record record = areas.record(1);
  areas.err = 9;
  kelp_store_err(areas, 5);
  areas(tbl_ospf_area_insert, areas.table, record);
  EXPECT_EQ(areas.err, 9u);
  EXPECT_EQ(areas.last_error(), 5);
  EXPECT_EQ(shell(areas.table)->record_count, 0u);
  areas.destroy(record);
}

TEST(Insertion, AnInsertAnnouncesTableCountAndFlagsInThisOrder) {
  AreaTable areas;
  const Record record = areas.record(1, 255);
  WriteWatch watch(areas);
  tbl_ospf_area_insert(areas, 8, areas.table, record, &areas.err);
  const auto writes = watch.writes();
  ASSERT_EQ(writes.size(), 4u);
  EXPECT_EQ(writes[0].address, &shell(record)->record_table);
  EXPECT_EQ(writes[0].length, 8u);
  EXPECT_EQ(writes[1].address, &shell(areas.table)->record_count);
  EXPECT_EQ(writes[1].length, 4u);
  EXPECT_EQ(writes[2].address, &shell(areas.table)->shadow_count);
  EXPECT_EQ(writes[2].length, 4u);
  EXPECT_EQ(writes[3].address, &shell(record)->rec_flags);
  EXPECT_EQ(writes[3].length, 4u);
  for (const auto &write : writes) EXPECT_EQ(write.space_id, 8u);
  EXPECT_EQ(shell(record)->record_table, shell(areas.table));
  EXPECT_EQ(shell(record)->rec_flags, static_cast<std::uint32_t>(REC_IN_TABLE));
  EXPECT_EQ(shell(record)->ref_word, 1u);
}

TEST(Insertion, AnInsertCallsThePlatformInThisOrder) {
  AreaTable areas;
  const Record plain = areas.record(1), followed = areas.record(2);
  CallLog log;
  areas(tbl_ospf_area_insert, areas.table, plain);
  EXPECT_EQ(log.calls(),
            (std::vector<std::string>{"kelp_clear_last_error", "e_avl_insert", "mt_get_tenant_id",
                                      "kelpdb_table_are_cursors_enabled"}));
  areas.enable_cursors(true);
  log.clear();
  const Tenant five(5);
  areas(tbl_ospf_area_insert, areas.table, followed);
  const std::vector<std::string> in_order{
      "kelp_clear_last_error",
      "e_avl_insert",
      "mt_get_tenant_id",
      "kelpdb_update_tenant_counter",
      "kelpdb_table_implicit_write_cursor_enabled",
      "kelpdb_enq_rec_move_write_cursor_internal",
  };
  EXPECT_EQ(log.only(in_order), in_order);
  EXPECT_EQ(areas.err, 0u);
}

TEST(Insertion, CursorsWithoutAnImplicitWriteCursorQueueNothing) {
  AreaTable areas;
  areas.enable_cursors(false);
  const CallLog log;
  areas.inserted(1);
  EXPECT_EQ(log.count("kelpdb_table_implicit_write_cursor_enabled"), 1u);
  EXPECT_EQ(log.count("kelpdb_enq_rec_move_write_cursor_internal"), 0u);
}

TEST(Insertion, TheCountedTenantIsTheCallersAtTheInsert) {
  AreaTable areas;
  Record record = nullptr;
  {
    const Tenant four(4);
    record = areas.record(1);
  }
  {
    const Tenant five(5);
    areas(tbl_ospf_area_insert, areas.table, record);
    EXPECT_EQ(tbl_ospf_area_table_get_count(areas, 0, areas.table), 1u);
  }
  const Tenant four(4);
  EXPECT_EQ(shell(record)->tenant_id, 4);
  EXPECT_EQ(tbl_ospf_area_table_get_count(areas, 0, areas.table), 0u);
}

TEST(Insertion, TheKeyMarkFollowsTheLatestInsert) {
  AreaTable areas;
  const Record record = areas.record(1);
  areas(tbl_ospf_area_pkey_insert, areas.table, record);
  EXPECT_EQ(shell(record)->rec_flags, static_cast<std::uint32_t>(REC_IN_TABLE | REC_PKEY));
  areas(tbl_ospf_area_delete, areas.table, record);
  EXPECT_EQ(shell(record)->rec_flags, static_cast<std::uint32_t>(REC_IN_TABLE));
  shell(record)->rec_flags |= REC_PKEY;
  areas(tbl_ospf_area_insert_unsafe, areas.table, record);
  EXPECT_EQ(shell(record)->rec_flags, static_cast<std::uint32_t>(REC_IN_TABLE));
  EXPECT_EQ(areas.err, 0u);
}

TEST(Insertion, AnInsertClearsAPendingEndAndKeepsForeignFlags) {
  AreaTable areas;
  const Record record = areas.record(1);
  shell(record)->rec_flags = REC_PENDING_DESTROY | REC_HD_MAPPED;
  areas(tbl_ospf_area_insert, areas.table, record);
  EXPECT_EQ(shell(record)->rec_flags, static_cast<std::uint32_t>(REC_IN_TABLE | REC_HD_MAPPED));
}

TEST(Insertion, ACrInsertGivesCrErrAndTakesTheKeyMark) {
  AreaTable areas;
  const Record record = areas.record(1), twin = areas.record(1);
  EXPECT_EQ(tbl_ospf_area_insert_cr(areas, areas.table, record, 1), 0u);
  EXPECT_NE(shell(record)->rec_flags & REC_PKEY, 0u);
  EXPECT_EQ(tbl_ospf_area_insert_cr(areas, areas.table, twin, 0), 17u);
  EXPECT_EQ(areas.handle()->cr_err, KELP_ERR_EXISTS);
  EXPECT_EQ(tbl_ospf_area_insert_cr(areas, areas.table, twin, 0), 17u);
  areas.handle()->cr_err = 0;
  areas.destroy(twin);
}

// --- delete --------------------------------------------------------------------------------------

TEST(Insertion, ADeletedRecordLosesItsTableAndKeepsItsFlagAndItsReference) {
  AreaTable areas;
  const Record record = areas.inserted(1);
  WriteWatch watch(areas);
  tbl_ospf_area_delete(areas, 8, areas.table, record, &areas.err);
  EXPECT_EQ(areas.err, 0u);
  EXPECT_EQ(shell(record)->record_table, nullptr);
  EXPECT_EQ(shell(record)->rec_flags, static_cast<std::uint32_t>(REC_IN_TABLE));
  EXPECT_EQ(shell(record)->ref_word, 1u);
  EXPECT_EQ(shell(areas.table)->record_count, 0u);
  EXPECT_TRUE(nodes_of(areas).empty());
  const auto writes = watch.writes();
  ASSERT_EQ(writes.size(), 2u);
  EXPECT_EQ(writes[0].address, &shell(record)->record_table);
  EXPECT_EQ(writes[1].address, &shell(areas.table)->record_count);
  EXPECT_EQ(writes[1].space_id, 8u);
  areas.destroy(record);
}

TEST(Insertion, ADeleteOfAShadowLowersBothCounts) {
  AreaTable areas;
  const Record shadow = areas.inserted(1, 255);
  areas(tbl_ospf_area_delete_unsafe, areas.table, shadow);
  EXPECT_EQ(shell(areas.table)->record_count, 0u);
  EXPECT_EQ(shell(areas.table)->shadow_count, 0u);
  areas(tbl_ospf_area_insert, areas.table, shadow);
  shell(areas.table)->shadow_count = 0;
  areas(tbl_ospf_area_delete, areas.table, shadow);
  EXPECT_EQ(shell(areas.table)->shadow_count, 0u);
  EXPECT_EQ(areas.err, 0u);
  areas.destroy(shadow);
}

TEST(Insertion, ADeleteOfARecordThatWaitsLowersThePendingCountWithoutATestFor0) {
  AreaTable areas;
  const Record record = areas.inserted(1);
  shell(record)->rec_flags |= REC_PENDING_DESTROY;
  shell(areas.table)->pending_destroy_count = 0;
  areas(tbl_ospf_area_delete, areas.table, record);
  EXPECT_EQ(shell(areas.table)->pending_destroy_count, 0xFFFFFFFFu);
  shell(areas.table)->pending_destroy_count = 0;
  areas.destroy(record);
}

TEST(Insertion, ADeleteOfARecordThatIsNotInGives2AndChangesNoCount) {
  AreaTable areas;
  areas.inserted(1);
  const Record stranger = areas.record(2);
  shell(stranger)->rec_flags = REC_IN_TABLE | REC_PKEY;
  shell(stranger)->record_table = shell(areas.table);
  const TraceLog traced;
  const Tenant five(5);
  CallLog log;
  areas(tbl_ospf_area_delete, areas.table, stranger);
  areas.expect_failure(KELP_ERR_NOT_FOUND);
  EXPECT_EQ(shell(stranger)->record_table, nullptr);
  EXPECT_EQ(shell(stranger)->rec_flags, static_cast<std::uint32_t>(REC_IN_TABLE));
  EXPECT_EQ(shell(areas.table)->record_count, 1u);
  EXPECT_EQ(log.count("kelpdb_update_tenant_counter"), 0u);
  EXPECT_EQ(traced.texts(), std::vector<std::string>{
                                "tbl_ospf_area delete, record not found for ospf_area area_id"});
  areas.destroy(stranger);
}

// A table that was freed with its records in it, and the next one, which lies where it lay.
TEST(Insertion, RecordsOfAFreedTableAreNotInTheOneThatLiesInItsPlace) {
  AreaTable areas;
  std::vector<Record> stale, held;
  for (std::uint32_t id = 0; id < 10; ++id) stale.push_back(areas.inserted(id));
  areas(tbl_ospf_area_table_free, areas.table);
  // What was freed is given again, if not at once.
  std::vector<decltype(areas.table)> others;
  const auto open = [&] {
    const std::string name = std::to_string(others.size());
    return tbl_ospf_area_table_open(areas, 0, name.c_str(), 0, &areas.err);
  };
  for (auto *table = open(); table != areas.table; table = open()) {
    ASSERT_LT(others.size(), 10'000u);
    others.push_back(table);
  }
  for (std::uint32_t id = 0; id < 10; ++id) held.push_back(areas.inserted(id));
  for (const Record record : stale) {
    ASSERT_EQ(shell(record)->record_table, shell(areas.table));
    areas(tbl_ospf_area_delete, areas.table, record);
    areas.expect_failure(KELP_ERR_NOT_FOUND);
    EXPECT_EQ(shell(areas.table)->record_count, 10u);
  }
  // Each leads to others of its tree: none goes before all were refused.
  for (const Record record : stale) areas.destroy(record);
  for (const Record record : held) areas(tbl_ospf_area_delete, areas.table, record);
  EXPECT_EQ(areas.err, 0u);
  EXPECT_EQ(shell(areas.table)->record_count, 0u);
  for (const Record record : held) areas.destroy(record);
  for (auto *table : others) areas(tbl_ospf_area_table_free, table);
}

TEST(Insertion, ADeleteAtCount0IsToldAndNotReported) {
  AreaTable areas;
  const Record record = areas.inserted(1);
  shell(areas.table)->record_count = 0;
  const TraceLog traced;
  areas(tbl_ospf_area_delete, areas.table, record);
  EXPECT_EQ(areas.err, 0u);
  EXPECT_EQ(shell(areas.table)->record_count, 0u);
  EXPECT_EQ(traced.texts(),
            std::vector<std::string>{"tbl_ospf_area delete: record count already 0!"});
  areas.destroy(record);
}

TEST(Insertion, WithCursorsOnlyTheCollectorDeletes) {
  AreaTable areas;
  const Record record = areas.inserted(1);
  areas.enable_cursors(false);
  TraceLog traced;
  areas(tbl_ospf_area_delete, areas.table, record);
  areas.expect_failure(KELP_ERR_INVALID);
  EXPECT_EQ(nodes_of(areas).size(), 1u);
  EXPECT_EQ(shell(record)->record_table, shell(areas.table));
  constexpr char refused[] =
      "tbl_ospf_area_delete() cannot be direclty used when the table is marked for replication";
  EXPECT_TRUE(traced.has(3, refused));
  areas.err = 0;
  areas.handle()->collector_context = 1;
  areas(tbl_ospf_area_delete, areas.table, record);
  EXPECT_EQ(areas.err, 0u);
  EXPECT_TRUE(nodes_of(areas).empty());
  areas.destroy(record);
}

TEST(Insertion, AnErrorPresentStopsADelete) {
  AreaTable areas;
  const Record record = areas.inserted(1);
  areas.err = 9;
  areas(tbl_ospf_area_delete, areas.table, record);
  EXPECT_EQ(areas.err, 9u);
  EXPECT_EQ(nodes_of(areas).size(), 1u);
}

TEST(Insertion, ACrDeleteWithDestroyFreesARecordHeldOnce) {
  AreaTable areas;
  const std::uint64_t live = areas.live_allocations();
  const Record record = areas.inserted(1);
  EXPECT_EQ(tbl_ospf_area_delete_cr(areas, areas.table, record, 1), 0u);
  EXPECT_EQ(areas.live_allocations(), live);
  EXPECT_EQ(shell(areas.table)->record_count, 0u);
}

TEST(Insertion, ACrDeleteWithoutDestroyLeavesTheRecord) {
  AreaTable areas;
  const Record record = areas.inserted(1);
  EXPECT_EQ(tbl_ospf_area_delete_cr(areas, areas.table, record, 0), 0u);
  EXPECT_EQ(shell(record)->ref_word, 1u);
  areas.destroy(record);
}

TEST(Insertion, AFailedCrDeleteDestroysNothing) {
  AreaTable areas;
  const Record stranger = areas.record(1);
  EXPECT_EQ(tbl_ospf_area_delete_cr(areas, areas.table, stranger, 1), 2u);
  EXPECT_EQ(shell(stranger)->ref_word, 1u);
  areas.handle()->cr_err = 0;
  areas.destroy(stranger);
}

// --- destroy -------------------------------------------------------------------------------------

TEST(Insertion, ADestroyTakesTheRecordOutOfItsTable) {
  AreaTable areas;
  const std::uint64_t live = areas.live_allocations();
  kelp_variant_entry &entry = entry_of(_tbl_ospf_area_table_record_type_info_internal);
  const std::uint64_t destroyed = entry.destroy_count;
  const Record record = areas.inserted(1);
  areas(tbl_ospf_area_destroy_record, record);
  EXPECT_EQ(areas.err, 0u);
  EXPECT_EQ(shell(areas.table)->record_count, 0u);
  EXPECT_EQ(areas.live_allocations(), live);
  EXPECT_EQ(entry.destroy_count, destroyed + 1);
}

TEST(Insertion, TwoReferencesNeedTwoDestroys) {
  AreaTable areas;
  const Record record = areas.inserted(1);
  areas(tbl_ospf_area_record_add_ref, record);
  {
    WriteWatch watch(areas);
    tbl_ospf_area_destroy_record(areas, 8, record, &areas.err);
    const auto writes = watch.all();
    ASSERT_EQ(writes.size(), 1u);
    EXPECT_EQ(writes[0].address, &shell(record)->ref_word);
    EXPECT_EQ(writes[0].length, 4u);
    EXPECT_EQ(writes[0].space_id, 8u);
  }
  EXPECT_EQ(shell(record)->ref_word, 1u);
  EXPECT_EQ(nodes_of(areas).size(), 1u);
  areas(tbl_ospf_area_destroy_record_unsafe, record);
  EXPECT_TRUE(nodes_of(areas).empty());
}

TEST(Insertion, ADestroyAtCount0WrapsAndFreesNothing) {
  AreaTable areas;
  const Record record = areas.record(1);
  shell(record)->ref_word = 0xAA000000;
  const std::uint64_t live = areas.live_allocations();
  areas(tbl_ospf_area_destroy_record, record);
  EXPECT_EQ(shell(record)->ref_word, 0xFFFFFFu);
  EXPECT_EQ(areas.live_allocations(), live);
  shell(record)->ref_word = 1;
  areas.destroy(record);
}

TEST(Insertion, ADestroyOfNullGives2AndUnderAnErrorDoesNothing) {
  AreaTable areas;
  areas(tbl_ospf_area_destroy_record, nullptr);
  areas.expect_failure(KELP_ERR_NOT_FOUND);
  const Record record = areas.record(1);
  areas.err = 9;
  areas(tbl_ospf_area_destroy_record, record);
  EXPECT_EQ(areas.err, 9u);
  EXPECT_EQ(shell(record)->ref_word, 1u);
  areas.destroy(record);
}

TEST(Insertion, ADestroyOfAnEmptyRecordPasses) {
  AreaTable areas;
  const Record record = areas(tbl_ospf_area_create_record);
  tbl_ospf_area_record_destroy_cr(areas, record);
  EXPECT_EQ(areas.handle()->cr_err, 0u);
}

TEST(Insertion, ADestroyedRecordsTypeRecordIsCleared) {
  AreaTable areas;
  const Record record = areas.record(1);
  WriteWatch watch(areas);
  tbl_ospf_area_destroy_record(areas, 8, record, &areas.err);
  const auto writes = watch.writes();
  ASSERT_FALSE(writes.empty());
  EXPECT_EQ(writes.back().address, static_cast<void *>(record));
  EXPECT_EQ(writes.back().length, 8u);
  const auto counters = watch.of_origin(KELP_WRITE_COUNTER);
  ASSERT_FALSE(counters.empty());
  EXPECT_EQ(counters.back().address,
            &entry_of(_tbl_ospf_area_table_record_type_info_internal).destroy_count);
  EXPECT_EQ(counters.back().length, 1u);
}

TEST(Insertion, ACompositeRecordEndsItsKeyBeforeItsData) {
  Store store;
  auto *record = tbl_ospfv2_link_record_create_cr(store, 1);
  const void *key = tbl_ospfv2_link_ospfv2_link_key_get_field(store, 0, record);
  const void *link = tbl_ospfv2_link_ospfv2_link_get_field(store, 0, record);
  WriteWatch watch(store);
  store(tbl_ospfv2_link_destroy_record, record);
  std::vector<const void *> ended;
  for (const auto &write : watch.writes()) {
    if (write.address == key || write.address == link) ended.push_back(write.address);
  }
  EXPECT_EQ(ended, (std::vector<const void *>{key, link}));
}

TEST(Insertion, ADestroyUnderCursorsTellsOfTheRefusedDeleteAndGoesOn) {
  AreaTable areas;
  const Record record = areas.inserted(1);
  areas.enable_cursors(false);
  {
    TraceLog traced;
    areas(tbl_ospf_area_destroy_record, record);
    EXPECT_EQ(areas.err, 0u);
    EXPECT_EQ(traced.texts().at(0),
              "tbl_ospf_area_delete() cannot be direclty used when the table is marked for "
              "replication");
    EXPECT_TRUE(traced.has(3, "Error 22 deleting tbl_ospf_area record when destroying"));
  }
  EXPECT_EQ(shell(areas.table)->record_count, 1u);
  EXPECT_EQ(shell(areas.table)->avl_root.top, &shell(record)->avl_node);
  shell(areas.table)->avl_root.top = nullptr;
}

TEST(Insertion, ARecordThatTheRuntimeRemovedIsNotDeletedAgain) {
  AreaTable areas;
  const Record record = areas.record(1);
  shell(record)->record_table = shell(areas.table);
  shell(record)->rec_flags = REC_RUNTIME_REMOVED;
  const CallLog log;
  areas.destroy(record);
  EXPECT_EQ(log.count("e_avl_delete"), 0u);
}

TEST(Insertion, AHandleMappingIsRemovedOnlyWhereThereIsOne) {
  AreaTable areas;
  const Record unmarked = areas.record(1), unmapped = areas.record(2), mapped = areas.record(3);
  shell(unmapped)->rec_flags = shell(mapped)->rec_flags = REC_HD_MAPPED;
  CallLog log;
  areas.handle()->hd_mapped = 0;
  areas.destroy(unmapped);
  EXPECT_EQ(log.count("kelp_hd_mapping_destroy"), 0u);
  areas.handle()->hd_mapped = 1;
  areas.destroy(unmarked);
  EXPECT_EQ(log.count("kelp_hd_mapping_destroy"), 0u);
  areas.destroy(mapped);
  EXPECT_EQ(log.count("kelp_hd_mapping_destroy"), 1u);
}

TEST(Insertion, AHandleMappingThatStaysKeepsTheRecordAllocated) {
  AreaTable areas;
  const Record record = areas.record(1);
  shell(record)->rec_flags = REC_HD_MAPPED;
  areas.handle()->hd_mapped = 1;
  const std::uint64_t live = areas.live_allocations();
  {
    const TraceLog traced;
    const Failing failing("kelp_hd_mapping_destroy", 5);
    areas(tbl_ospf_area_destroy_record, record);
    EXPECT_EQ(areas.err, 5u);
    EXPECT_EQ(areas.last_error(), 5);
    EXPECT_TRUE(traced.has(3,
                           "tbl_ospf_area destroy: Failed to remove oid mapping for object. "
                           "Error Input/output error"));
  }
  EXPECT_EQ(areas.live_allocations(), live - 1);
  EXPECT_EQ(shell(record)->header.tinfo, &_tbl_ospf_area_table_record_type_info_internal);
  areas.handle()->obj_free(areas.handle()->obj_pool, 0, record);
  areas.handle()->hd_mapped = 0;
}

TEST(InsertionDeathTest, ADestroyOfABrokenRecordEndsTheProcess) {
  AreaTable areas;
  const Record record = areas(tbl_ospf_area_create_record);
  kelp_type_record broken = _tbl_ospf_area_table_record_type_info_internal;
  broken.magic = 0xbeeff00c;
  shell(record)->header.tinfo = &broken;
  EXPECT_FATAL(areas(tbl_ospf_area_destroy_record, record), "tinfo is null or corrupted");
  shell(record)->header.tinfo = nullptr;
  EXPECT_FATAL(areas(tbl_ospf_area_destroy_record, record), "tinfo is null or corrupted");
  broken.magic = KELP_TYPE_MAGIC;
  broken.varinfo = nullptr;
  shell(record)->header.tinfo = &broken;
  EXPECT_FATAL(areas(tbl_ospf_area_destroy_record, record), "varinfo is NULL");
  shell(record)->header.tinfo = &_tbl_ospf_area_table_record_type_info_internal;
  areas.destroy(record);
}

TEST(Insertion, ADestroyUnderANegativeNumberOfVariantsTellsSo) {
  AreaTable areas;
  const Record record = areas(tbl_ospf_area_create_record);
  kelp_variant_info &variants = *_tbl_ospf_area_table_record_type_info_internal.varinfo;
  variants.n_variants = -1;
  const TraceLog traced;
  areas.destroy(record);
  variants.n_variants = 1;
  EXPECT_TRUE(traced.has(6, "variant 0 requested only 4294967295 variants present"));
}

// --- request -------------------------------------------------------------------------------------

TEST(Insertion, ARequestOnATableWithoutCursorsGives22AndLeavesTheRecord) {
  AreaTable areas;
  const Record record = areas.inserted(1);
  areas(tbl_ospf_area_request_record_destroy, areas.table, record);
  areas.expect_failure(KELP_ERR_INVALID);
  EXPECT_EQ(shell(record)->rec_flags, static_cast<std::uint32_t>(REC_IN_TABLE));
  EXPECT_EQ(shell(areas.table)->pending_destroy_count, 0u);
}

TEST(Insertion, ARequestForANullRecordGives22) {
  AreaTable areas;
  areas.enable_cursors(false);
  const CallLog log;
  areas(tbl_ospf_area_request_record_destroy, areas.table, nullptr);
  EXPECT_EQ(areas.err, KELP_ERR_INVALID);
  EXPECT_EQ(log.count("kelpdb_table_are_cursors_enabled"), 1u);
  EXPECT_EQ(log.count("kelpdb_request_record_destroy"), 0u);
}

TEST(Insertion, ARequestUnderCursorsMarksTheRecordAndTheCollectorEndsIt) {
  AreaTable areas;
  const Record record = areas.inserted(1);
  areas.enable_cursors(false);
  areas(tbl_ospf_area_request_record_destroy_unsafe, areas.table, record);
  EXPECT_EQ(areas.err, 0u);
  EXPECT_NE(shell(record)->rec_flags & REC_PENDING_DESTROY, 0u);
  EXPECT_EQ(shell(areas.table)->pending_destroy_count, 1u);
  EXPECT_EQ(nodes_of(areas).size(), 1u);
  kelp_collector_report report{};
  EXPECT_EQ(kelp_collector_run(areas, &report, nullptr), 0);
  EXPECT_EQ(report.records_ended, 1u);
  EXPECT_EQ(shell(areas.table)->pending_destroy_count, 0u);
  EXPECT_EQ(shell(areas.table)->record_count, 0u);
}

TEST(Insertion, ARequestThatTheRuntimeRefusesIsTold) {
  AreaTable areas;
  areas.enable_cursors(false);
  const Record stranger = areas.record(1);
  const TraceLog traced;
  areas(tbl_ospf_area_request_record_destroy, areas.table, stranger);
  EXPECT_EQ(areas.err, KELP_ERR_INVALID);
  EXPECT_TRUE(traced.has(3, "tbl_ospf_area request destroy record failed"));
  areas.destroy(stranger);
}

TEST(Insertion, ACrRequestGivesCrErr) {
  AreaTable areas;
  const Record record = areas.inserted(1);
  EXPECT_EQ(tbl_ospf_area_request_record_destroy_cr(areas, areas.table, record), 22u);
  areas.handle()->cr_err = 9;
  const CallLog log;
  EXPECT_EQ(tbl_ospf_area_request_record_destroy_cr(areas, areas.table, record), 9u);
  EXPECT_TRUE(log.calls().empty());
  areas.handle()->cr_err = 0;
  areas.enable_cursors(false);
  EXPECT_EQ(tbl_ospf_area_request_record_destroy_cr(areas, areas.table, record), 0u);
}

}  // namespace
