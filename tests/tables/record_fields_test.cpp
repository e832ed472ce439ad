// The objects that records hold, and the counts of tables.
#include "tables/table_fixture.hpp"

namespace {

using harness::AreaTable;
using harness::CallLog;
using harness::shell;
using harness::Store;
using harness::Tenant;
using harness::TraceLog;
using harness::WriteWatch;

constexpr char set_refused[] =
    "Object is either nested or already embedded. Cannot set such objects into the record";
constexpr char free_and_set_refused[] =
    "Object is either nested or already embedded in a record. Cannot set such objects into the "
    "record";

std::uint8_t flags_of(const void *object) {
  return static_cast<const kelp_object_header *>(object)->obj_flags;
}

struct AreaRecord : Store {
  AreaRecord() : record(tbl_ospf_area_create_record(handle(), 0, &err)) {}
  ~AreaRecord() {
    err = 0;
    tbl_ospf_area_destroy_record(handle(), 0, record, &err);
    EXPECT_EQ(err, 0u);
  }
  ospf_area *held() { return tbl_ospf_area_ospf_area_get_field(handle(), 0, record); }
  tbl_ospf_area_record *record;
};

TEST(RecordFields, SetPlacesTheObjectAndMarksItEmbedded) {
  AreaRecord store;
  ospf_area *area = ospf_area_create(store, 0);
  WriteWatch watch(store);
  tbl_ospf_area_ospf_area_set_field(store, 6, store.record, area);
  EXPECT_EQ(store.held(), area);
  EXPECT_EQ(flags_of(area) & OBJ_EMBEDDED, OBJ_EMBEDDED);
  const auto writes = watch.writes();
  ASSERT_EQ(writes.size(), 2u);
  EXPECT_EQ(writes[0].address, &shell(store.record)->objects[0]);
  EXPECT_EQ(writes[0].length, 8u);
  EXPECT_EQ(writes[0].space_id, 6u);
  EXPECT_EQ(writes[1].offset_in(area), offsetof(kelp_object_header, obj_flags));
}

TEST(RecordFields, AnEmbeddedObjectIsRefusedAndTheRecordStaysAsItWas) {
  AreaRecord store;
  ospf_area *held = ospf_area_create(store, 0);
  OWNED(store, ospf_area, taken);
  tbl_ospf_area_ospf_area_set_field(store, 0, store.record, held);
  ospf_area_set_instance_embedded(store, 0, taken);
  TraceLog traced;
  WriteWatch watch(store);
  tbl_ospf_area_ospf_area_set_field(store, 0, store.record, taken);
  EXPECT_EQ(store.held(), held);
  EXPECT_EQ(store.last_error(),
            static_cast<std::int32_t>(kelplib_validate_object_flags(taken, 1, 1)));
  EXPECT_NE(store.last_error(), 0);
  EXPECT_EQ(traced.texts(), std::vector<std::string>{set_refused});
  EXPECT_TRUE(traced.has(3, set_refused));
  EXPECT_TRUE(watch.all().empty());
}

TEST(RecordFields, ANestedObjectIsRefused) {
  AreaRecord store;
  OWNED(store, ospf_area, area);
  reinterpret_cast<kelp_object_header *>(area.get())->obj_flags |= OBJ_NESTED;
  tbl_ospf_area_ospf_area_set_field(store, 0, store.record, area);
  EXPECT_EQ(store.held(), nullptr);
  EXPECT_NE(store.last_error(), 0);
  reinterpret_cast<kelp_object_header *>(area.get())->obj_flags = 0;
}

TEST(RecordFields, ANullObjectIsRefused) {
  AreaRecord store;
  ospf_area *held = ospf_area_create(store, 0);
  tbl_ospf_area_ospf_area_set_field(store, 0, store.record, held);
  tbl_ospf_area_ospf_area_free_and_set_field(store, 0, store.record, nullptr);
  EXPECT_EQ(store.held(), held);
  EXPECT_EQ(store.last_error(), KELP_ERR_INVALID);
}

TEST(RecordFields, SetOverwritesAnOldObjectWithoutDestroyingIt) {
  AreaRecord store;
  OWNED(store, ospf_area, old);
  tbl_ospf_area_ospf_area_set_field(store, 0, store.record, old);
  const std::uint64_t live = store.live_allocations();
  tbl_ospf_area_ospf_area_set_field(store, 0, store.record, ospf_area_create(store, 0));
  EXPECT_EQ(store.live_allocations(), live + 1);
}

TEST(RecordFields, FreeAndSetDestroysTheOldObject) {
  AreaRecord store;
  tbl_ospf_area_ospf_area_free_and_set_field(store, 0, store.record, ospf_area_create(store, 0));
  const std::uint64_t live = store.live_allocations();
  ospf_area *area = ospf_area_create(store, 0);
  tbl_ospf_area_ospf_area_free_and_set_field(store, 0, store.record, area);
  EXPECT_EQ(store.live_allocations(), live);
  EXPECT_EQ(store.held(), area);
  EXPECT_EQ(flags_of(area) & OBJ_EMBEDDED, OBJ_EMBEDDED);
}

TEST(RecordFields, FreeAndSetOfARefusedObjectLeavesTheOldOne) {
  AreaRecord store;
  ospf_area *held = ospf_area_create(store, 0);
  OWNED(store, ospf_area, taken);
  tbl_ospf_area_ospf_area_set_field(store, 0, store.record, held);
  ospf_area_set_instance_embedded(store, 0, taken);
  const TraceLog traced;
  const std::uint64_t live = store.live_allocations();
  tbl_ospf_area_ospf_area_free_and_set_field(store, 0, store.record, taken);
  EXPECT_EQ(store.live_allocations(), live);
  EXPECT_EQ(store.held(), held);
  EXPECT_EQ(traced.texts(), std::vector<std::string>{free_and_set_refused});
  EXPECT_TRUE(traced.has(3, free_and_set_refused));
}

TEST(RecordFields, DetachGivesTheObjectUpAndLeavesItsMark) {
  AreaRecord store;
  OWNED(store, ospf_area, area);
  tbl_ospf_area_ospf_area_set_field(store, 0, store.record, area);
  WriteWatch watch(store);
  EXPECT_EQ(tbl_ospf_area_ospf_area_get_field_detach(store, 4, store.record), area);
  EXPECT_EQ(store.held(), nullptr);
  EXPECT_EQ(flags_of(area.get()) & OBJ_EMBEDDED, OBJ_EMBEDDED);
  const auto writes = watch.writes();
  ASSERT_EQ(writes.size(), 1u);
  EXPECT_EQ(writes[0].address, &shell(store.record)->objects[0]);
  EXPECT_EQ(writes[0].length, 8u);
  EXPECT_EQ(writes[0].space_id, 4u);
}

TEST(RecordFields, DetachOfNothingGivesNull) {
  AreaRecord store;
  EXPECT_EQ(tbl_ospf_area_ospf_area_get_field_detach(store, 0, store.record), nullptr);
}

TEST(RecordFieldsDeathTest, GetOfANullRecordFaults) {
  AreaRecord store;
  EXPECT_DEATH(tbl_ospf_area_ospf_area_get_field(store, 0, nullptr), "");
}

TEST(RecordFields, ACompositeRecordHasItsKeyThenItsData) {
  Store store;
  auto *record = store(tbl_ospfv2_link_create_record);
  auto *key = ospfv2_link_key_create(store, 0);
  auto *link = ospfv2_link_create(store, 0);
  tbl_ospfv2_link_ospfv2_link_set_field(store, 0, record, link);
  EXPECT_EQ(tbl_ospfv2_link_ospfv2_link_key_get_field(store, 0, record), nullptr);
  tbl_ospfv2_link_ospfv2_link_key_set_field(store, 0, record, key);
  EXPECT_EQ(tbl_ospfv2_link_ospfv2_link_key_get_field(store, 0, record), key);
  EXPECT_EQ(tbl_ospfv2_link_ospfv2_link_get_field(store, 0, record), link);
  EXPECT_EQ(shell(record)->objects[0], static_cast<void *>(key));
  store(tbl_ospfv2_link_destroy_record, record);
  EXPECT_EQ(store.err, 0u);
}

TEST(RecordFields, ACompositeTableHasItsRefusalsTwice) {
  Store store;
  auto *record = store(tbl_ospfv2_link_create_record);
  TraceLog traced;
  tbl_ospfv2_link_ospfv2_link_key_set_field(store, 0, record, nullptr);
  tbl_ospfv2_link_ospfv2_link_key_free_and_set_field(store, 0, record, nullptr);
  tbl_ospfv2_link_ospfv2_link_set_field(store, 0, record, nullptr);
  tbl_ospfv2_link_ospfv2_link_free_and_set_field(store, 0, record, nullptr);
  std::vector<std::uint32_t> offsets;
  for (const auto &message : traced.messages()) {
    EXPECT_TRUE(message.is_table_side);
    offsets.push_back(message.index - 260);
  }
  EXPECT_EQ(offsets, (std::vector<std::uint32_t>{53, 54, 55, 56}));
  EXPECT_EQ(traced.texts(), (std::vector<std::string>{set_refused, free_and_set_refused,
                                                      set_refused, free_and_set_refused}));
  store(tbl_ospfv2_link_destroy_record, record);
}

TEST(RecordFields, CountsOfANullTableAreZero) {
  Store store;
  EXPECT_EQ(tbl_ospf_area_table_get_count(store, 0, nullptr), 0u);
  EXPECT_EQ(tbl_ospf_area_table_get_count_by_src(store, 0, nullptr, 255), 0u);
  EXPECT_EQ(tbl_ospf_area_table_get_count_cr(store, nullptr), 0u);
}

TEST(RecordFields, WithoutATenantTheCountIsTheTables) {
  AreaTable areas;
  areas.inserted(1);
  areas.inserted_by(5, 2);
  areas.inserted(3, 255);
  EXPECT_EQ(tbl_ospf_area_table_get_count(areas, 0, areas.table), 3u);
  EXPECT_EQ(tbl_ospf_area_table_get_count_unsafe(areas, 0, areas.table), 3u);
  EXPECT_EQ(tbl_ospf_area_table_get_count_cr(areas, areas.table), 3u);
}

TEST(RecordFields, WithATenantTheCountIsTheTenants) {
  AreaTable areas;
  areas.inserted(1);
  areas.inserted_by(5, 2);
  areas.inserted_by(5, 3, 2);
  const Tenant five(5);
  EXPECT_EQ(tbl_ospf_area_table_get_count(areas, 0, areas.table), 2u);
  EXPECT_EQ(tbl_ospf_area_table_get_count_by_src(areas, 0, areas.table, 2), 1u);
  EXPECT_EQ(tbl_ospf_area_table_get_count_by_src(areas, 0, areas.table, 1), 1u);
  EXPECT_EQ(tbl_ospf_area_table_get_count_by_src(areas, 0, areas.table, 9), 0u);
}

TEST(RecordFields, WithoutATenantOnlyShadowsAreCountedBySource) {
  AreaTable areas;
  areas.inserted(1);
  areas.inserted(2);
  areas.inserted(2, 255);
  EXPECT_EQ(tbl_ospf_area_table_get_count_by_src(areas, 0, areas.table, 1), 0u);
  EXPECT_EQ(tbl_ospf_area_table_get_count_by_src(areas, 0, areas.table, 255), 1u);
  EXPECT_EQ(tbl_ospf_area_table_get_count_by_src_unsafe(areas, 0, areas.table, 255), 1u);
}

}  // namespace
