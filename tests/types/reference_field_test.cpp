// By-reference fields: what a set counts, announces, traces and marks, and what the gets tell.
#include <kelp/oid.h>

#include <cstring>

#include "harness/harness.hpp"
#include "model/layout.hpp"
#include "ospf_harbor_oper.h"
#include "types/replaced_call.hpp"

namespace {

using harness::CallLog;
using harness::Store;
using harness::StoreOptions;
using harness::TraceLog;
using harness::WriteWatch;
namespace model = harbor::model;

using Names = std::vector<std::string>;

constexpr std::size_t interfaces_offset =
    model::offset(model::types::ospf_area, model::fields::ospf_area::interfaces);
constexpr std::size_t area_size = model::object_size(model::types::ospf_area);
// Of the field's state byte, in the area behind the object.
constexpr std::size_t interfaces_state = 1;

// A table as the runtime knows it: memory of the database with the type's record.
class Table {
 public:
  Table(Store &store, kelp_type_record &record) : store_(store) {
    kelp_handle *handle = store;
    table_ = static_cast<kelp_table *>(handle->obj_alloc(handle->obj_pool, 0, sizeof(kelp_table)));
    std::memset(static_cast<void *>(table_), 0, sizeof(kelp_table));
    table_->header.tinfo = &record;
  }
  ~Table() {
    kelp_handle *handle = store_;
    handle->obj_free(handle->obj_pool, 0, table_);
  }
  std::int64_t references() const { return kelp_handle_oid_references(store_, table_); }
  kelp_table *get() const { return table_; }
  template <typename Type>
  operator Type *() const {
    return reinterpret_cast<Type *>(table_);
  }

 private:
  Store &store_;
  kelp_table *table_;
};

// An area, whose first reference is to interfaces and whose second came with variant 1.
class Area : public harness::Single<ospf_area> {
 public:
  explicit Area(StoreOptions options = {}) : Single(ospf_area_create, ospf_area_destroy, options) {}
  kelp_reference &interfaces() {
    return *reinterpret_cast<kelp_reference *>(reinterpret_cast<char *>(object) +
                                               interfaces_offset);
  }
  std::uint8_t &state() {
    return *(reinterpret_cast<std::uint8_t *>(object) + area_size + interfaces_state);
  }
  void refer(tbl_ospf_interface_table *target) {
    store(ospf_area_interfaces_set_by_ref, object, target);
  }
  tbl_ospf_interface_table *referred() { return store(ospf_area_interfaces_get_by_ref, object); }
  // Gives the field the OID of nothing that the runtime knows.
  void refer_to_nothing_known() {
    interfaces().oid.handle_word = 4096;
    for (std::uint8_t i = 0; i < 16; ++i) {
      interfaces().oid.id[i] = static_cast<std::uint8_t>(i + 1);
      interfaces().oid.source[i] = static_cast<std::uint8_t>(0xA0 + i);
    }
  }
  void forget() { std::memset(&interfaces().oid, 0, sizeof(kelp_oid)); }
};

bool operator==(const kelp_oid &a, const kelp_oid &b) {
  return std::memcmp(&a, &b, sizeof(a)) == 0;
}

constexpr char missing_entry[] =
    "ospf_area interfaces set by ref: Could not get oid mapping entry using oid id";
constexpr char missing_for_clear[] =
    "ospf_area interfaces set by ref: Could not get oid id mapping for object "
    "0102030405060708090a0b0c0d0e0f10/a0a1a2a3a4a5a6a7a8a9aaabacadaeaf";

// --- get ----------------------------------------------------------------------------------------

TEST(GetByRef, AFreshObjectRefersToNothingWithoutAnError) {
  Area area;
  CallLog calls;
  EXPECT_EQ(area.referred(), nullptr);
  EXPECT_EQ(area.store.err, 0u);
  EXPECT_EQ(calls.count("kelp_oid_to_handle"), 0u);
}

TEST(GetByRef, GivesTheTableThatWasSet) {
  Area area;
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  area.refer(table);
  EXPECT_EQ(area.store.err, 0u);
  EXPECT_EQ(area.referred(), static_cast<tbl_ospf_interface_table *>(table));
  EXPECT_EQ(ospf_area_interfaces_get_by_ref_cr(area.store, area.object),
            static_cast<tbl_ospf_interface_table *>(table));
  area.refer(nullptr);
}

TEST(GetByRef, ATargetTypeChangedBehindTheFieldsBackIsInvalid) {
  Area area;
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  area.refer(table);
  kelp_type_record *const record = area.interfaces().target_type;
  area.interfaces().target_type = &_tbl_ospf_area_table_type_info_internal;
  EXPECT_EQ(area.referred(), nullptr);
  area.expect_failure(KELP_ERR_INVALID);
  area.interfaces().target_type = record;
  area.store.err = 0;
  area.refer(nullptr);
}

TEST(GetByRef, UnderSharedRecordsTheRuntimesCopyIsExpected) {
  Area area({.shared_tinfo = true});
  kelp_handle *handle = area.store;
  kelp_type_record *copy =
      kelp_type_info_ptr_get(handle, 0, &_tbl_ospf_interface_table_type_info_internal,
                             ospf_harbor_oper_typeinfo_initialize);
  ASSERT_NE(copy, &_tbl_ospf_interface_table_type_info_internal);
  EXPECT_EQ(area.interfaces().target_type, copy);
  Table table(area.store, *copy);
  area.refer(table);
  EXPECT_EQ(area.store.err, 0u);
  EXPECT_EQ(area.referred(), static_cast<tbl_ospf_interface_table *>(table));
  area.interfaces().target_type = &_tbl_ospf_interface_table_type_info_internal;
  EXPECT_EQ(area.referred(), nullptr);
  area.expect_failure(KELP_ERR_INVALID);
  area.interfaces().target_type = copy;
  area.store.err = 0;
  area.refer(nullptr);
}

TEST(GetByRef, AnOidThatNamesNothingFailsAsTheRuntimeSays) {
  Area area;
  area.refer_to_nothing_known();
  EXPECT_EQ(area.referred(), nullptr);
  area.expect_failure(KELP_ERR_NOT_FOUND);
  area.forget();
}

TEST(GetByRef, AFieldOfALaterVariantIsRefused) {
  Store store;
  store.set_variant("ospf_area", 0);
  OWNED(store, ospf_area, area);
  EXPECT_EQ(store(ospf_area_area_scope_lsas_get_by_ref, area), nullptr);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  store.err = 0;
  EXPECT_EQ(ospf_area_area_scope_lsas_get_by_ref_cr(store, area), nullptr);
  EXPECT_EQ(store.handle()->cr_err, KELP_ERR_EPOCH);
  store.handle()->cr_err = 0;
}

// --- set ----------------------------------------------------------------------------------------

TEST(SetByRef, TakesACountedReferenceAndMarksTheState) {
  Area area({.tracking = KELP_TRACKING_ON});
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  area.refer(table);
  EXPECT_EQ(area.store.err, 0u);
  EXPECT_EQ(table.references(), 1);
  EXPECT_EQ(area.state(), 2);
  area.refer(nullptr);
  EXPECT_EQ(table.references(), 0);
}

TEST(SetByRef, AnnouncesTheOidAsOneThenTheState) {
  Area area({.tracking = KELP_TRACKING_ON});
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  area.store(kelp_handle_to_oid, table.get(), KELP_OID_KIND_TABLE, 0);
  WriteWatch watch(area.store);
  ospf_area_interfaces_set_by_ref(area.store, 17, area.object, table, &area.store.err);
  const auto writes = watch.writes();
  ASSERT_EQ(writes.size(), 2u);
  EXPECT_EQ(writes[0].offset_in(area.object), static_cast<std::ptrdiff_t>(interfaces_offset + 8));
  EXPECT_EQ(writes[0].length, 40u);
  EXPECT_EQ(writes[1].offset_in(area.object),
            static_cast<std::ptrdiff_t>(area_size + interfaces_state));
  EXPECT_EQ(writes[1].length, 1u);
  for (const auto &write : writes) EXPECT_EQ(write.space_id, 17u);
  area.refer(nullptr);
}

TEST(SetByRef, TheSameTargetTwiceDropsTheEarlierReferenceFirst) {
  Area area;
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  area.refer(table);
  CallLog calls(area.store);
  area.refer(table);
  EXPECT_EQ(area.store.err, 0u);
  EXPECT_EQ(table.references(), 1);
  EXPECT_EQ(calls.only({"kelplib_oid_id_mapping_get", "kelplib_update_oid_ref_count",
                        "write_notify", "kelp_handle_to_oid"}),
            (Names{"kelplib_oid_id_mapping_get", "kelplib_update_oid_ref_count", "write_notify",
                   "kelp_handle_to_oid"}));
  area.refer(nullptr);
}

TEST(SetByRef, AnotherTargetTakesOverTheReference) {
  Area area;
  Table first(area.store, _tbl_ospf_interface_table_type_info_internal);
  Table second(area.store, _tbl_ospf_interface_table_type_info_internal);
  area.refer(first);
  area.refer(second);
  EXPECT_EQ(first.references(), 0);
  EXPECT_EQ(second.references(), 1);
  EXPECT_EQ(area.referred(), static_cast<tbl_ospf_interface_table *>(second));
  area.refer(nullptr);
}

TEST(SetByRef, ATargetOfAnotherTypeIsInvalidAndTheOldReferenceStays) {
  Area area({.tracking = KELP_TRACKING_ON});
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  Table other(area.store, _tbl_ospf_area_table_type_info_internal);
  area.refer(table);
  area.state() = 0;
  const kelp_oid before = area.interfaces().oid;
  TraceLog trace;
  area.refer(other);
  area.expect_failure(KELP_ERR_INVALID);
  EXPECT_TRUE(trace.empty());
  EXPECT_TRUE(area.interfaces().oid == before);
  EXPECT_EQ(table.references(), 1);
  EXPECT_EQ(other.references(), -1);
  EXPECT_EQ(area.state(), 0);
  area.store.err = 0;
  area.refer(nullptr);
}

TEST(SetByRef, ATargetInsideAnotherObjectIsNotPermitted) {
  Area area;
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  table.get()->header.obj_flags |= OBJ_NESTED;
  TraceLog trace;
  area.refer(table);
  area.expect_failure(KELP_ERR_PERMISSION);
  EXPECT_EQ(trace.texts(),
            (Names{"ospf_area interfaces set by ref: Cannot set reference to this object"}));
  EXPECT_TRUE(trace.has(3, trace.texts().front()));
  EXPECT_EQ(area.interfaces().oid.handle_word, 0u);
  EXPECT_EQ(table.references(), -1);
}

TEST(SetByRef, AnEmbeddedTargetIsPermitted) {
  Area area;
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  table.get()->header.obj_flags |= OBJ_EMBEDDED;
  area.refer(table);
  EXPECT_EQ(area.store.err, 0u);
  EXPECT_EQ(table.references(), 1);
  area.refer(nullptr);
}

TEST(SetByRef, NullOnAnEmptyFieldMovesNoCountAndStillAnnouncesTheOid) {
  Area area({.tracking = KELP_TRACKING_ON});
  WriteWatch watch(area.store);
  CallLog calls;
  area.refer(nullptr);
  EXPECT_EQ(area.store.err, 0u);
  ASSERT_EQ(watch.writes().size(), 1u);
  EXPECT_EQ(watch.writes()[0].offset_in(area.object),
            static_cast<std::ptrdiff_t>(interfaces_offset + 8));
  EXPECT_EQ(watch.writes()[0].length, 40u);
  EXPECT_EQ(calls.count("kelplib_oid_id_mapping_get"), 0u);
  EXPECT_EQ(calls.count("kelplib_update_oid_ref_count"), 0u);
  EXPECT_EQ(area.state(), 0);
}

TEST(SetByRef, NullEmptiesTheFieldAndMarksNoState) {
  Area area({.tracking = KELP_TRACKING_ON});
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  area.refer(table);
  area.state() = 0;
  area.refer(nullptr);
  EXPECT_EQ(area.store.err, 0u);
  EXPECT_EQ(table.references(), 0);
  EXPECT_TRUE(area.interfaces().oid == kelp_oid{});
  EXPECT_EQ(area.interfaces().target_type, &_tbl_ospf_interface_table_type_info_internal);
  EXPECT_EQ(area.state(), 0);
}

TEST(SetByRef, NullOverATargetThatIsGoneTellsItsOidAndEmptiesTheField) {
  Area area;
  area.refer_to_nothing_known();
  TraceLog trace;
  area.refer(nullptr);
  EXPECT_EQ(area.store.err, 0u);
  EXPECT_EQ(trace.texts(), (Names{missing_for_clear}));
  EXPECT_TRUE(trace.has(6, missing_for_clear));
  EXPECT_TRUE(area.interfaces().oid == kelp_oid{});
}

TEST(SetByRef, AnOidIsOnlyPrintedWhereInformationIsTraced) {
  Area area;
  area.refer_to_nothing_known();
  kelp_ospf_harbor_oper_trace_init();
  kelp_trace_set_level(nullptr, 3);
  {
    CallLog calls;
    area.refer(nullptr);
    EXPECT_EQ(calls.count("xlog_module_test"), 1u);
    EXPECT_EQ(calls.count("kelplib_oid_id_print"), 0u);
    EXPECT_EQ(calls.count("kelplib_oid_src_print"), 0u);
  }
  area.refer_to_nothing_known();
  kelp_trace_set_level(nullptr, 6);
  {
    CallLog calls;
    area.refer(nullptr);
    EXPECT_EQ(calls.count("kelplib_oid_id_print"), 1u);
    EXPECT_EQ(calls.count("kelplib_oid_src_print"), 1u);
  }
}

TEST(SetByRef, AnEarlierTargetThatIsGoneIsTracedAndNoFailure) {
  Area area;
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  area.refer_to_nothing_known();
  TraceLog trace;
  area.refer(table);
  EXPECT_EQ(area.store.err, 0u);
  EXPECT_EQ(trace.texts(), (Names{missing_entry}));
  EXPECT_TRUE(trace.has(3, missing_entry));
  EXPECT_EQ(table.references(), 1);
  area.refer(nullptr);
}

TEST(SetByRef, TheSentinelMovesNoCountAndMarksNoState) {
  Area area({.tracking = KELP_TRACKING_ON});
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  area.refer(table);
  area.state() = 0;
  const kelp_oid before = area.interfaces().oid;
  WriteWatch watch(area.store);
  CallLog calls;
  area.refer(static_cast<tbl_ospf_interface_table *>(KELP_OID_SENTINEL));
  EXPECT_EQ(area.store.err, 0u);
  EXPECT_FALSE(area.interfaces().oid == before);
  EXPECT_EQ(kelp_oid_id_is_zero(area.interfaces().oid.id), 0u);
  EXPECT_EQ(table.references(), 1);
  EXPECT_EQ(calls.count("kelplib_update_oid_ref_count"), 0u);
  EXPECT_EQ(calls.count("kelp_handle_to_oid"), 1u);
  ASSERT_EQ(watch.writes().size(), 1u);
  EXPECT_EQ(watch.writes()[0].length, 40u);
  EXPECT_EQ(area.state(), 0);
  EXPECT_EQ(area.referred(), nullptr);
  area.interfaces().oid = before;
  area.refer(nullptr);
}

TEST(SetByRef, ATargetThatGetsNoOidFailsAfterTheOldReferenceHasGone) {
  Area area({.tracking = KELP_TRACKING_ON});
  Table first(area.store, _tbl_ospf_interface_table_type_info_internal);
  Table second(area.store, _tbl_ospf_interface_table_type_info_internal);
  area.refer(first);
  area.state() = 0;
  kelp_database_fail_after(area.store.database(), KELP_FAULT_OID_MAPPING, 0);
  TraceLog trace;
  area.refer(second);
  area.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(trace.texts(), (Names{std::string("ospf_area interfaces set by ref: Handle to oid "
                                              "failed with error code ") +
                                  std::strerror(12)}));
  EXPECT_TRUE(trace.has(3, trace.texts().front()));
  EXPECT_EQ(first.references(), 0);
  EXPECT_TRUE(area.interfaces().oid == kelp_oid{}) << "what the runtime gave is stored";
  EXPECT_EQ(area.state(), 0);
}

// A lookup of the object's variant that fails leaves its code in the error word, which is looked at
// only where the earlier reference is looked up.
TEST(SetByRef, AnEarlierReferenceThatCannotBeLookedUpIsKept) {
  Area area;
  Table first(area.store, _tbl_ospf_interface_table_type_info_internal);
  Table second(area.store, _tbl_ospf_interface_table_type_info_internal);
  area.refer(first);
  const kelp_oid before = area.interfaces().oid;
  kelp_handle_fail_variant(area.store, "ospf_area", 13, nullptr);
  const auto expect_kept = [&](tbl_ospf_interface_table *target, const std::string &message) {
    TraceLog trace;
    area.refer(target);
    EXPECT_EQ(area.store.err, 13u);
    EXPECT_EQ(trace.texts(),
              (Names{"ospf_area interfaces set by ref: " + message + std::strerror(13)}));
    EXPECT_TRUE(trace.has(3, trace.texts().front()));
    EXPECT_TRUE(area.interfaces().oid == before);
    EXPECT_EQ(first.references(), 1);
    area.store.err = 0;
  };
  expect_kept(nullptr, "Failed to resolve existing oid id. Error ");
  expect_kept(second, "Failed to obtain existing oid mapping of object. Error ");
  kelp_handle_fail_variant(area.store, "ospf_area", 0, nullptr);
  area.refer(nullptr);
}

// The runtime's counts never fail by themselves.
void fail_to_count(kelp_handle *handle, std::uint32_t, kelp_oid_mapping *, std::uint32_t,
                   std::uint32_t *err) {
  *err = 13;
  kelp_store_err(handle, 13);
}

TEST(SetByRef, AnEarlierReferenceThatCannotBeDroppedIsKept) {
  Area area({.tracking = KELP_TRACKING_ON});
  Table first(area.store, _tbl_ospf_interface_table_type_info_internal);
  Table second(area.store, _tbl_ospf_interface_table_type_info_internal);
  area.refer(first);
  area.state() = 0;
  const kelp_oid before = area.interfaces().oid;
  const auto expect_kept = [&](tbl_ospf_interface_table *target, const std::string &message) {
    const harness::ReplacedCall replaced("kelplib_update_oid_ref_count", fail_to_count);
    TraceLog trace;
    WriteWatch watch(area.store);
    area.refer(target);
    area.expect_failure(13);
    EXPECT_EQ(trace.texts(), (Names{"ospf_area interfaces set by ref: " + message +
                                    " ref count "
                                    "on earlier reference. Error " +
                                    std::strerror(13)}));
    EXPECT_TRUE(trace.has(3, trace.texts().front()));
    EXPECT_TRUE(watch.all().empty());
    EXPECT_TRUE(area.interfaces().oid == before);
    EXPECT_EQ(area.state(), 0);
    area.store.err = 0;
  };
  expect_kept(nullptr, "Failed to decrement");
  expect_kept(second, "Failed to update");
  EXPECT_EQ(second.references(), -1);
  area.refer(nullptr);
}

TEST(SetByRef, AnUntrackedObjectTakesTheReferenceAndFails) {
  Area area;
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  kelp_handle *tracking = area.store.another_handle({.tracking = KELP_TRACKING_ON});
  TraceLog trace;
  ospf_area_interfaces_set_by_ref(tracking, 0, area.object, table, &area.store.err);
  EXPECT_EQ(area.store.err, KELP_ERR_INVALID);
  EXPECT_EQ(kelp_handle_last_error(tracking, nullptr), KELP_ERR_INVALID);
  EXPECT_TRUE(trace.has(3, "The object is not state tracked"));
  EXPECT_EQ(table.references(), 1);
  area.store.err = 0;
  area.refer(nullptr);
}

TEST(SetByRef, ACorruptTrackingModeEndsTheProcess) {
  Area area({.tracking = KELP_TRACKING_ON});
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  EXPECT_FATAL(
      {
        area.store.handle()->sttr->sttr_mode = 1;
        area.refer(table);
      },
      "Corrupted KELP Handle");
}

TEST(SetByRef, AnObjectBelowTheFloorMovesUpWhereTheDomainLetsIt) {
  Store store;
  store.set_variant("ospf_area", 0);
  ospf_area *area = ospf_area_create(store, 0);
  Table table(store, _tbl_area_scope_lsas_table_type_info_internal);
  store(ospf_area_area_scope_lsas_set_by_ref, area, table);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(table.references(), -1);
  store.err = 0;
  kelp_handle_clear_variant(store, "ospf_area");
  store(ospf_area_area_scope_lsas_set_by_ref, area, table);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(table.references(), 1);
  ospf_area_destroy(store, 0, area);
  EXPECT_EQ(table.references(), 0);
}

TEST(SetByRefCr, UsesTheHandlesSpaceAndErrorWord) {
  Area area;
  kelp_handle *handle = area.store;
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  Table other(area.store, _tbl_ospf_area_table_type_info_internal);
  kelp_handle_to_oid(handle, 0, table.get(), KELP_OID_KIND_TABLE, 0, &area.store.err);
  handle->cr_space_id = 23;
  {
    WriteWatch watch(handle);
    EXPECT_EQ(ospf_area_interfaces_set_by_ref_cr(handle, area.object, table), 0u);
    ASSERT_EQ(watch.writes().size(), 1u);
    EXPECT_EQ(watch.writes()[0].space_id, 23u);
  }
  EXPECT_EQ(ospf_area_interfaces_set_by_ref_cr(handle, area.object, other), KELP_ERR_INVALID);
  EXPECT_EQ(handle->cr_err, KELP_ERR_INVALID);
  handle->cr_err = 0;
  EXPECT_EQ(ospf_area_interfaces_set_by_ref_cr(handle, area.object, nullptr), 0u);
  EXPECT_EQ(table.references(), 0);
}

// --- the references of a whole object -----------------------------------------------------------

template <typename Object>
std::uint32_t count_of(Store &store, Object *(*create)(kelp_handle *, std::uint32_t),
                       std::uint32_t (*count)(kelp_handle *, std::uint32_t, const Object *,
                                              std::uint32_t *),
                       void (*destroy)(kelp_handle *, std::uint32_t, Object *)) {
  Object *object = create(store, 0);
  const std::uint32_t result = store(count, object);
  EXPECT_EQ(store.err, 0u);
  destroy(store, 0, object);
  return result;
}
#define COUNT_OF(type) count_of(store, type##_create, type##_get_oid_count, type##_destroy)

TEST(GetOidCount, IsTheNumberOfTheTypesOwnReferences) {
  Store store;
  EXPECT_EQ(COUNT_OF(ospfv2_unknown_tlv), 1u);
  EXPECT_EQ(COUNT_OF(ospfv2_link), 1u);
  EXPECT_EQ(COUNT_OF(link_scope_lsa), 9u);
  EXPECT_EQ(COUNT_OF(area_scope_lsa), 6u);
  EXPECT_EQ(COUNT_OF(area_scope_lsas), 1u);
  EXPECT_EQ(COUNT_OF(link_scope_lsas), 2u);
  EXPECT_EQ(COUNT_OF(ospf_interface), 4u);
  EXPECT_EQ(COUNT_OF(ospf_area), 2u);
  EXPECT_EQ(COUNT_OF(ospf_instance), 3u);
  EXPECT_EQ(COUNT_OF(ospf), 1u);
  EXPECT_EQ(COUNT_OF(ospf_instance_rev1), 3u);
  EXPECT_EQ(COUNT_OF(ospf_rev1), 1u);
  EXPECT_EQ(COUNT_OF(ospfv2_link_tlv), 0u);
  EXPECT_EQ(COUNT_OF(ospf_authentication), 0u);
}

TEST(GetOidCount, TracesAnErrorThatStandsAndANullObject) {
  Area area;
  TraceLog trace;
  kelp_store_err(area.store, 5);
  area.store.err = 5;
  EXPECT_EQ(area(ospf_area_get_oid_count), 0u);
  EXPECT_TRUE(trace.has(3, "Error already present in call to get object oid count"));
  area.expect_failure(5);
  trace.clear();
  area.store.err = 0;
  EXPECT_EQ(area.store(ospf_area_get_oid_count, nullptr), 0u);
  EXPECT_EQ(trace.texts(), (Names{"Invalid object passed in to get object oid count"}));
  EXPECT_TRUE(trace.has(3, trace.texts().front()));
  area.expect_failure(KELP_ERR_INVALID);
}

TEST(GetOidCount, KeepsTheHandlesLastError) {
  Area area;
  kelp_store_err(area.store, 5);
  EXPECT_EQ(area(ospf_area_get_oid_count), 2u);
  void *references[2];
  area(ospf_area_get_object_references, references, 2);
  EXPECT_EQ(area.store.last_error(), 5);
  EXPECT_EQ(area.store.err, 0u);
}

TEST(GetObjectReferences, GivesOneTableForEachFieldInOrder) {
  Area area;
  Table interfaces(area.store, _tbl_ospf_interface_table_type_info_internal);
  Table lsas(area.store, _tbl_area_scope_lsas_table_type_info_internal);
  void *references[2] = {&area, &area};
  area.refer(interfaces);
  // The size is not looked at.
  area(ospf_area_get_object_references, references, 0);
  EXPECT_EQ(references[0], interfaces.get());
  EXPECT_EQ(references[1], nullptr);
  area(ospf_area_area_scope_lsas_set_by_ref, lsas);
  area(ospf_area_get_object_references, references, 2);
  EXPECT_EQ(references[0], interfaces.get());
  EXPECT_EQ(references[1], lsas.get());
  EXPECT_EQ(area.store.err, 0u);
  area.refer(nullptr);
  area(ospf_area_area_scope_lsas_set_by_ref, nullptr);
}

TEST(GetObjectReferences, ReadsTheFieldsOfLaterVariantsToo) {
  Store store;
  store.set_variant("ospf_area", 0);
  OWNED(store, ospf_area, area);
  void *references[2] = {&store, &store};
  store(ospf_area_get_object_references, area, references, 2);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(references[0], nullptr);
  EXPECT_EQ(references[1], nullptr);
}

TEST(GetObjectReferences, AnOidWordBelow256IsNotResolved) {
  Area area;
  area.refer_to_nothing_known();
  area.interfaces().oid.handle_word = 255;
  void *references[2] = {&area, &area};
  CallLog calls;
  area(ospf_area_get_object_references, references, 2);
  EXPECT_EQ(area.store.err, 0u);
  EXPECT_EQ(calls.count("kelp_oid_to_handle"), 0u);
  EXPECT_EQ(references[0], nullptr);
  area.forget();
}

TEST(GetObjectReferences, AnUnresolvedOidLeavesItsOutputAndTheLaterOnesAlone) {
  Area area;
  area.refer_to_nothing_known();
  void *references[2] = {&area, &area};
  TraceLog trace;
  area(ospf_area_get_object_references, references, 2);
  area.expect_failure(KELP_ERR_NOT_FOUND);
  EXPECT_EQ(trace.texts(), (Names{"Failed to obtain resolve existing oid reference from object"}));
  EXPECT_TRUE(trace.has(3, trace.texts().front()));
  EXPECT_EQ(references[0], &area);
  EXPECT_EQ(references[1], &area);
  area.forget();
}

TEST(GetObjectReferences, TracesAnErrorThatStandsAndANullObject) {
  Area area;
  void *references[2] = {&area, &area};
  TraceLog trace;
  kelp_store_err(area.store, 5);
  area.store.err = 5;
  area(ospf_area_get_object_references, references, 2);
  EXPECT_EQ(trace.texts(), (Names{"Error present in call to get table references from object"}));
  EXPECT_TRUE(trace.has(3, trace.texts().front()));
  area.expect_failure(5);
  trace.clear();
  area.store.err = 0;
  area.store(ospf_area_get_object_references, nullptr, references, 2);
  EXPECT_EQ(trace.texts(), (Names{"Cannot get table references. Invalid object passed on"}));
  EXPECT_TRUE(trace.has(3, trace.texts().front()));
  area.expect_failure(KELP_ERR_INVALID);
  EXPECT_EQ(references[0], &area);
}

TEST(GetObjectReferences, ATypeWithoutReferencesOnlyTestsItsEntry) {
  Store store;
  OWNED(store, ospfv2_link_tlv, tlv);
  TraceLog trace;
  store(ospfv2_link_tlv_get_object_references, tlv, nullptr, 0);
  EXPECT_EQ(store.err, 0u);
  EXPECT_TRUE(trace.empty());
  store(ospfv2_link_tlv_get_object_references, nullptr, nullptr, 0);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  EXPECT_FALSE(trace.empty());
}

// --- destroy ------------------------------------------------------------------------------------

TEST(ByRefDestroy, AnObjectThatIsReferredToStaysWithAllItsFields) {
  Area area;
  Table table(area.store, _tbl_ospf_interface_table_type_info_internal);
  area.refer(table);
  area(kelp_handle_to_oid, KELP_OID_KIND_OBJECT, 1);
  ASSERT_EQ(area.store.err, 0u);
  const kelp_oid before = area.interfaces().oid;
  TraceLog trace;
  ospf_area_destroy(area.store, 0, area.object);
  EXPECT_TRUE(trace.has(6,
                        "ospf_area destroy: Object has references and will be cleaned up when all "
                        "of them are released"));
  EXPECT_TRUE(area.interfaces().oid == before);
  EXPECT_EQ(table.references(), 1);
  area(kelplib_lookup_and_update_oid_ref_count, KELP_OID_DECREMENT);
  EXPECT_EQ(area.store.err, 0u);
}

TEST(ByRefDestroy, ReleasesTheReferenceOfEachField) {
  Store store;
  Table table(store, _tbl_ospf_interface_table_type_info_internal);
  ospf_area *area = ospf_area_create(store, 0);
  store(ospf_area_interfaces_set_by_ref, area, table);
  EXPECT_EQ(table.references(), 1);
  ospf_area_destroy(store, 0, area);
  EXPECT_EQ(table.references(), 0);
}

}  // namespace
