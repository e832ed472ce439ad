// How records come into being, references on them, and primary key objects.
#include "tables/table_fixture.hpp"

namespace {

using harness::AreaTable;
using harness::CallLog;
using harness::entry_of;
using harness::shell;
using harness::Store;
using harness::Tenant;
using harness::TraceLog;
using harness::WriteWatch;

void destroy(Store &store, tbl_ospf_area_record *record) {
  std::uint32_t word = 0;
  tbl_ospf_area_destroy_record(store, 0, record, &word);
  EXPECT_EQ(word, 0u);
}

TEST(Record, ACreateRunsWithAnErrorPresentAndClearsIt) {
  Store store;
  store.err = 9;
  auto *record = store(tbl_ospf_area_create_record);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(store.err, 0u);
  destroy(store, record);
}

TEST(Record, ANewRecordHasOneReferenceTheDefaultSourceAndNoTable) {
  Store store;
  const Tenant tenant(7);
  kelp_variant_entry &entry = entry_of(_tbl_ospf_area_table_record_type_info_internal);
  const std::uint64_t created = entry.create_count;
  kelp_record *record = shell(store(tbl_ospf_area_create_record));
  EXPECT_EQ(record->header.tinfo, &_tbl_ospf_area_table_record_type_info_internal);
  EXPECT_EQ(record->record_table, nullptr);
  EXPECT_EQ(record->ref_word, 1u);
  EXPECT_EQ(record->tenant_id, 7);
  EXPECT_EQ(record->rec_flags, 0u);
  EXPECT_EQ(record->src, 1);
  EXPECT_EQ(record->objects[0], nullptr);
  EXPECT_EQ(entry.create_count, created + 1);
  destroy(store, reinterpret_cast<tbl_ospf_area_record *>(record));
}

TEST(Record, TheTwoNamesOfCreateDoTheSame) {
  Store store;
  auto *record = store(tbl_ospf_area_create_record_unsafe);
  EXPECT_EQ(shell(record)->src, 1);
  destroy(store, record);
}

TEST(Record, OnlyTheLowByteOfTheSourceCounts) {
  Store store;
  auto *record = store(tbl_ospf_area_create_record_w_src, 0x1FF);
  EXPECT_EQ(shell(record)->src, 255);
  destroy(store, record);
}

TEST(Record, ACreateAnnouncesTheTypeRecordAndTheCounterAlone) {
  Store store;
  WriteWatch watch(store);
  auto *record = tbl_ospf_area_create_record(store, 21, &store.err);
  const auto writes = watch.writes();
  ASSERT_EQ(writes.size(), 1u);
  EXPECT_EQ(writes[0].offset_in(record), 0);
  EXPECT_EQ(writes[0].length, 8u);
  EXPECT_EQ(writes[0].space_id, 21u);
  const auto counters = watch.of_origin(KELP_WRITE_COUNTER);
  ASSERT_EQ(counters.size(), 1u);
  EXPECT_EQ(counters[0].address,
            &entry_of(_tbl_ospf_area_table_record_type_info_internal).create_count);
  EXPECT_EQ(counters[0].length, 1u);
  EXPECT_EQ(counters[0].space_id, 21u);
  destroy(store, record);
}

TEST(Record, ACreateAllocatesNotifiesCountsAndThenAsksForTheTenant) {
  Store store;
  tbl_ospf_area_record *record = nullptr;
  {
    const CallLog log(store);
    record = store(tbl_ospf_area_create_record);
    EXPECT_EQ(log.calls(),
              (std::vector<std::string>{"xlog_module_init_fn", "obj_alloc", "write_notify",
                                        "counter_notify", "mt_get_tenant_id"}));
  }
  destroy(store, record);
}

TEST(Record, WithoutMemoryACreateGivesNullAndLeavesTheErrorWord) {
  Store store;
  store.err = 9;
  store.fail_allocation(0);
  EXPECT_EQ(store(tbl_ospf_area_create_record), nullptr);
  EXPECT_EQ(store.err, 9u);
  CallLog log;
  store.fail_allocation(0);
  EXPECT_EQ(store(tbl_ospf_area_create_record), nullptr);
  EXPECT_EQ(log.count("kelp_store_err"), 0u);
}

TEST(Record, TheStoreIsAnnouncedBeforeTheRuntimeIsAskedForItsCopy) {
  Store store({.shared_tinfo = true});
  tbl_ospf_area_record *record = nullptr;
  {
    const CallLog log(store);
    record = store(tbl_ospf_area_create_record);
    EXPECT_EQ(log.only({"obj_alloc", "write_notify", "kelp_type_info_ptr_get", "counter_notify"}),
              (std::vector<std::string>{"obj_alloc", "write_notify", "kelp_type_info_ptr_get",
                                        "counter_notify"}));
  }
  destroy(store, record);
}

TEST(Record, UnderSharedTypeRecordsARecordPointsAtTheRuntimesCopy) {
  Store store({.shared_tinfo = true});
  auto *record = store(tbl_ospf_area_create_record);
  const kelp_type_record *type = shell(record)->header.tinfo;
  EXPECT_NE(type, &_tbl_ospf_area_table_record_type_info_internal);
  EXPECT_STREQ(type->type_name, "tbl_ospf_area_record");
  EXPECT_NE(type->plain_counters, 0u);
  EXPECT_EQ(type->varinfo->entries[0].create_count, 1u);
  destroy(store, record);
  EXPECT_EQ(type->varinfo->entries[0].destroy_count, 1u);
}

TEST(Record, ANegativeNumberOfVariantsIsToldAndTheCreateGoesOn) {
  Store store;
  kelp_variant_info &variants = *_tbl_ospf_area_table_record_type_info_internal.varinfo;
  variants.n_variants = -1;
  TraceLog traced;
  auto *record = store(tbl_ospf_area_create_record);
  ASSERT_NE(record, nullptr);
  EXPECT_TRUE(traced.has(6, "variant 0 requested only 4294967295 variants present"));
  variants.n_variants = 1;
  destroy(store, record);
}

TEST(Record, ZeroVariantsPassWithoutAMessage) {
  Store store;
  kelp_variant_info &variants = *_tbl_ospf_area_table_record_type_info_internal.varinfo;
  variants.n_variants = 0;
  const TraceLog traced;
  auto *record = store(tbl_ospf_area_create_record);
  variants.n_variants = 1;
  EXPECT_TRUE(traced.empty());
  destroy(store, record);
}

TEST(RecordDeathTest, ACreateWithoutVariantInfoEndsTheProcess) {
  Store store;
  EXPECT_FATAL(
      {
        _tbl_ospf_area_table_record_type_info_internal.varinfo = nullptr;
        store(tbl_ospf_area_create_record);
      },
      "varinfo is NULL");
}

TEST(Record, ACrCreateMakesTheObjectsWhenAskedTo) {
  Store store;
  store.handle()->cr_space_id = 5;
  auto *bare = tbl_ospf_area_record_create_cr(store, 0);
  EXPECT_EQ(shell(bare)->objects[0], nullptr);
  auto *full = tbl_ospf_area_record_create_cr(store, 1);
  const auto *area = static_cast<const kelp_object_header *>(shell(full)->objects[0]);
  ASSERT_NE(area, nullptr);
  EXPECT_STREQ(area->tinfo->type_name, "ospf_area");
  EXPECT_EQ(store.handle()->cr_create, 0u);
  EXPECT_EQ(shell(full)->src, 1);
  tbl_ospf_area_record_destroy_cr(store, bare);
  tbl_ospf_area_record_destroy_cr(store, full);
  EXPECT_EQ(store.handle()->cr_err, 0u);
}

TEST(Record, ACrCreateOfACompositeRecordMakesTheKeyThenTheData) {
  Store store;
  auto *record = tbl_ospfv2_link_record_create_cr(store, 1);
  const auto type_of = [&](int at) {
    void **objects = shell(record)->objects;
    return std::string(static_cast<kelp_object_header *>(objects[at])->tinfo->type_name);
  };
  EXPECT_EQ(type_of(0), "ospfv2_link_key");
  EXPECT_EQ(type_of(1), "ospfv2_link");
  tbl_ospfv2_link_record_destroy_cr(store, record);
  EXPECT_EQ(store.handle()->cr_err, 0u);
}

TEST(Record, ACrCreateWithoutMemoryGivesTheNullRecord) {
  Store store;
  store.fail_allocation(0);
  auto *null_record = tbl_ospf_area_record_create_cr(store, 0);
  ASSERT_NE(null_record, nullptr);
  EXPECT_EQ(store.last_error(), KELP_ERR_NO_MEMORY);
  EXPECT_EQ(store.handle()->cr_err, KELP_ERR_NO_MEMORY);
  EXPECT_EQ(store.handle()->cr_create, 0u);
  EXPECT_EQ(shell(null_record)->ref_word, 0u);
  EXPECT_EQ(shell(null_record)->header.tinfo, nullptr);
  EXPECT_EQ(store.live_allocations(), 0u);
  store.fail_allocation(0);
  EXPECT_EQ(tbl_ospf_area_record_create_cr(store, 0), null_record);
  store.fail_allocation(0);
  EXPECT_NE(static_cast<void *>(tbl_ospf_record_create_cr(store, 0)),
            static_cast<void *>(null_record));
}

TEST(Record, ACrCreateWithoutMemoryIsNotCounted) {
  Store store;
  kelp_variant_entry &entry = entry_of(_tbl_ospf_area_table_record_type_info_internal);
  const std::uint64_t created = entry.create_count;
  store.fail_allocation(0);
  tbl_ospf_area_record_create_cr(store, 1);
  EXPECT_EQ(entry.create_count, created);
}

TEST(Record, ACrCreateWithoutMemoryUnderAnErrorStoresNothingAndKeepsIt) {
  Store store;
  store.handle()->cr_err = 9;
  store.fail_allocation(0);
  const CallLog log;
  EXPECT_NE(tbl_ospf_area_record_create_cr(store, 0), nullptr);
  EXPECT_EQ(log.count("kelp_store_err"), 0u);
  EXPECT_EQ(store.handle()->cr_err, 9u);
}

TEST(Record, TheNullRecordIsNeverFreed) {
  Store store;
  store.fail_allocation(0);
  auto *null_record = tbl_ospf_area_record_create_cr(store, 0);
  store.handle()->cr_err = 0;
  CallLog log(store);
  tbl_ospf_area_record_destroy_cr(store, null_record);
  EXPECT_EQ(store.handle()->cr_err, 0u);
  EXPECT_EQ(log.count("obj_free"), 0u);
  EXPECT_EQ(shell(null_record)->header.tinfo, nullptr);
}

TEST(Record, AReferenceGivesTheCountBefore) {
  Store store;
  auto *record = store(tbl_ospf_area_create_record);
  {
    WriteWatch watch(store);
    EXPECT_EQ(tbl_ospf_area_record_add_ref(store, 3, record, &store.err), 1u);
    const auto writes = watch.writes();
    ASSERT_EQ(writes.size(), 1u);
    EXPECT_EQ(writes[0].address, &shell(record)->ref_word);
    EXPECT_EQ(writes[0].length, 4u);
    EXPECT_EQ(writes[0].space_id, 3u);
  }
  EXPECT_EQ(shell(record)->ref_word, 2u);
  EXPECT_EQ(store(tbl_ospf_area_record_add_ref_unsafe, record), 2u);
  shell(record)->ref_word = 1;
  destroy(store, record);
}

TEST(Record, AReferenceLooksAtNoErrorWord) {
  Store store;
  auto *record = store(tbl_ospf_area_create_record);
  store.err = 9;
  EXPECT_EQ(store(tbl_ospf_area_record_add_ref, record), 1u);
  EXPECT_EQ(store.err, 9u);
  shell(record)->ref_word = 1;
  destroy(store, record);
}

TEST(Record, TheHighByteOfTheReferenceWordGoesWithTheFirstChange) {
  Store store;
  auto *record = store(tbl_ospf_area_create_record);
  shell(record)->ref_word = 0xAB000005;
  EXPECT_EQ(store(tbl_ospf_area_record_add_ref, record), 5u);
  EXPECT_EQ(shell(record)->ref_word, 6u);
  shell(record)->ref_word = 1;
  destroy(store, record);
}

TEST(Record, AReferenceOnANullRecordGives2) {
  Store store;
  EXPECT_EQ(store(tbl_ospf_area_record_add_ref, nullptr), 0u);
  store.expect_failure(KELP_ERR_NOT_FOUND);
}

TEST(RecordDeathTest, AFullReferenceCountRefusesAnother) {
  Store store;
  auto *record = store(tbl_ospf_area_create_record);
  shell(record)->ref_word = 0xFFFFFF;
  EXPECT_DEATH(store(tbl_ospf_area_record_add_ref, record), "\\(\\(1 << 24\\) - 1\\) != __ref_cnt");
  EXPECT_DEATH(store(tbl_ospf_area_record_add_ref, record),
               "infra/kelp/_gen_kelp_noarch/ospf_harbor_oper/src/ospf_harbor_oper_table");
  shell(record)->ref_word = 0xFFFFFE;
  EXPECT_EQ(store(tbl_ospf_area_record_add_ref, record), 0xFFFFFEu);
  EXPECT_EQ(shell(record)->ref_word, 0xFFFFFFu);
  shell(record)->ref_word = 1;
  destroy(store, record);
}

TEST(Record, APkeyObjectIsOfTheRecordTypeOrOfTheKeyType) {
  Store store;
  ospf_area *area = tbl_ospf_area_pkey_create(store, 0);
  EXPECT_STREQ(reinterpret_cast<kelp_object_header *>(area)->tinfo->type_name, "ospf_area");
  tbl_ospf_area_pkey_destroy(store, 0, area);
  ospfv2_link_key *key = tbl_ospfv2_link_pkey_create_unsafe(store, 0);
  EXPECT_STREQ(reinterpret_cast<kelp_object_header *>(key)->tinfo->type_name, "ospfv2_link_key");
  tbl_ospfv2_link_pkey_destroy_unsafe(store, 0, key);
}

TEST(Record, EveryTablesRecordCanBeMadeAndEnded) {
  using Create = kelp_record *(kelp_handle *, std::uint32_t);
  using Destroy = void(kelp_handle *, kelp_record *);
  Store store;
  for (const std::string &name : harness::table_names()) {
    kelp_record *record = harness::function<Create>(name + "_record_create_cr")(store, 1);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->header.tinfo->type_name, name + "_record");
    EXPECT_NE(record->objects[0], nullptr);
    harness::function<Destroy>(name + "_record_destroy_cr")(store, record);
    EXPECT_EQ(store.handle()->cr_err, 0u) << name;
    EXPECT_EQ(store.live_allocations(), 0u) << name;
  }
}

}  // namespace
