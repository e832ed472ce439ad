// The life of structures: creation under each tracking mode, preparation of children, marking as
// embedded, and destroy with all that can hold it back.
#include <kelp/oid.h>

#include <algorithm>
#include <cstring>

#include "model/lists.hpp"
#include "types/object_view.hpp"
#include "types/replaced_call.hpp"

namespace {

using namespace harness;

constexpr char failed_code_text[] = "Input/output error";
constexpr std::uint32_t failed_code = 5;

void *area_of_space(kelp_handle *handle) { return ospf_area_create(handle, 0); }
void end(kelp_handle *handle, void *area) {
  ospf_area_destroy(handle, 0, static_cast<ospf_area *>(area));
}

std::size_t area_size(std::uint32_t tracking) {
  Store store({.tracking = tracking});
  return ospf_area_sizeof(store);
}

TEST(StructureSize, StateBytesCountOnlyUnderATrackingHandle) {
  EXPECT_EQ(area_size(KELP_TRACKING_ABSENT), 128u);
  EXPECT_EQ(area_size(KELP_TRACKING_OFF), 128u);
  EXPECT_EQ(area_size(KELP_TRACKING_ON), 131u);
}

TEST(StructureSize, ACorruptedHandleEndsTheProcess) {
  Store store({.tracking = KELP_TRACKING_ON});
  EXPECT_FATAL(
      {
        store.handle()->sttr->sttr_mode = 1;
        ospf_area_sizeof(store);
      },
      "Corrupted KELP Handle");
}

// --- create -------------------------------------------------------------------------------------

TEST(StructureCreate, TheObjectIsZeroButForItsHeaderAndItsTargetTypes) {
  Store store;
  void *area = area_of_space(store);
  ASSERT_NE(area, nullptr);
  EXPECT_EQ(header(area).tinfo, &_ospf_area_type_info_internal);
  EXPECT_EQ(header(area).variant, 1);
  EXPECT_EQ(header(area).created_variant, 1);
  EXPECT_EQ(flags_of(area), 0);
  auto &interfaces =
      at<kelp_reference>(area, model::offset(types::ospf_area, fields::ospf_area::interfaces));
  auto &databases =
      at<kelp_reference>(area, model::offset(types::ospf_area, fields::ospf_area::area_scope_lsas));
  EXPECT_EQ(interfaces.target_type, &_tbl_ospf_interface_table_type_info_internal);
  EXPECT_EQ(databases.target_type, &_tbl_area_scope_lsas_table_type_info_internal);
  interfaces.target_type = nullptr;
  databases.target_type = nullptr;
  const std::vector<char> rest(128 - 11, 0);
  EXPECT_EQ(std::memcmp(place(area, 11), rest.data(), rest.size()), 0);
  end(store, area);
}

TEST(StructureCreate, OnlyATrackingHandleGivesStateBytes) {
  for (const auto &[tracking, flags] : {std::pair{KELP_TRACKING_ON, OBJ_STATE_TRACKED},
                                        std::pair{KELP_TRACKING_OFF, kelp_object_flag{}}}) {
    Store store({.tracking = static_cast<std::uint32_t>(tracking)});
    void *area = area_of_space(store);
    EXPECT_EQ(flags_of(area), flags);
    end(store, area);
  }
}

TEST(StructureCreate, StoresAreAnnouncedOneByOneWithTheirExactRanges) {
  Store store({.tracking = KELP_TRACKING_ON});
  WriteWatch watch(store);
  void *area = area_of_space(store);
  EXPECT_EQ(ranges_in(watch, area),
            (Ranges{{16, 8}, {64, 8}, {9, 1}, {8, 1}, {0, 8}, {10, 1}, {10, 1}}));
  end(store, area);
}

TEST(StructureCreate, TheStepsComeInOrder) {
  Store store;
  CallLog log(store);
  void *area = area_of_space(store);
  const Names expected{"xlog_module_init_fn",
                       "obj_alloc",
                       "kelp_clear_last_error",
                       "kelp_domain_lookup_variant",
                       "write_notify",
                       "write_notify",
                       "write_notify",
                       "write_notify",
                       "kelp_get_manifested_type_info_ptr_mem",
                       "write_notify",
                       "write_notify",
                       "kelplib_type_stats_create_object",
                       "counter_notify"};
  EXPECT_EQ(log.only(expected), expected);
  log.clear();
  void *second = ospf_area_create_internal(store, 0);
  EXPECT_EQ(log.count("xlog_module_init_fn"), 0u);
  end(store, area);
  end(store, second);
}

TEST(StructureCreate, SharedTypeRecordsAreTheDatabasesOwn) {
  Store store({.shared_tinfo = true});
  void *area = area_of_space(store);
  ASSERT_NE(area, nullptr);
  EXPECT_NE(header(area).tinfo, &_ospf_area_type_info_internal);
  EXPECT_STREQ(header(area).tinfo->type_name, "ospf_area");
  auto &interfaces =
      at<kelp_reference>(area, model::offset(types::ospf_area, fields::ospf_area::interfaces));
  EXPECT_NE(interfaces.target_type, &_tbl_ospf_interface_table_type_info_internal);
  EXPECT_STREQ(interfaces.target_type->type_name, "tbl_ospf_interface");
  end(store, area);
}

TEST(StructureCreate, AnObjectIsCountedAtItsVariantAndItsChildrenAtTheirs) {
  Store store;
  store.set_variant("ospfv2_header", 0);
  const Counts lsa = counts(_ospfv2_lsa_type_info_internal, 0);
  const Counts old_header = counts(_ospfv2_header_type_info_internal, 0);
  const Counts new_body = counts(_ospfv2_lsa_body_type_info_internal, 1);
  const Counts network = counts(_ospfv2_network_type_info_internal, 0);
  const Counts flags = counts(_lsa_flag_options_type_info_internal, 0);
  ospfv2_lsa *object = ospfv2_lsa_create(store, 0);
  EXPECT_EQ(counts(_ospfv2_lsa_type_info_internal, 0).first, lsa.first + 1);
  EXPECT_EQ(counts(_ospfv2_header_type_info_internal, 0).first, old_header.first + 1);
  EXPECT_EQ(counts(_ospfv2_lsa_body_type_info_internal, 1).first, new_body.first + 1);
  EXPECT_EQ(counts(_ospfv2_network_type_info_internal, 0).first, network.first + 1);
  EXPECT_EQ(counts(_lsa_flag_options_type_info_internal, 0), flags);
  ospfv2_lsa_destroy(store, 0, object);
  EXPECT_EQ(counts(_ospfv2_header_type_info_internal, 0).second, old_header.second + 1);
  EXPECT_EQ(counts(_ospfv2_network_type_info_internal, 0).second, network.second + 1);
  EXPECT_EQ(counts(_lsa_flag_options_type_info_internal, 0), flags);
}

TEST(StructureCreate, WithoutMemoryTheResultIsNullAndNoErrorIsStored) {
  Store store;
  store.fail_allocation(0);
  CallLog log(store);
  EXPECT_EQ(ospf_area_create(store, 0), nullptr);
  EXPECT_EQ(log.count("kelp_store_err"), 0u);
  EXPECT_EQ(store.handle()->cr_create, 0u);
}

TEST(StructureCreate, WithoutMemoryAChainGetsTheNullObject) {
  Store store;
  store.fail_allocation(0);
  ospf_area *null_object = ospf_area_create_cr(store);
  ASSERT_NE(null_object, nullptr);
  EXPECT_EQ(header(null_object).tinfo, nullptr);
  EXPECT_EQ(store.last_error(), KELP_ERR_NO_MEMORY);
  EXPECT_EQ(store.handle()->cr_err, KELP_ERR_NO_MEMORY);
  EXPECT_EQ(store.handle()->cr_create, 0u);
  ospf_area_destroy(store, 0, null_object);
  ospf_area_destroy_cr(store, null_object);
  ospf_area_destroy_internal(store, 0, null_object, 1);
}

TEST(StructureCreate, AFailedChainAllocatesNothing) {
  Store store;
  store.handle()->cr_err = KELP_ERR_INVALID;
  CallLog log(store);
  ospf_area *null_object = ospf_area_create_cr(store);
  ASSERT_NE(null_object, nullptr);
  EXPECT_EQ(header(null_object).tinfo, nullptr);
  EXPECT_EQ(log.calls(), (Names{"xlog_module_init_fn"}));
  EXPECT_EQ(store.handle()->cr_create, 0u);
  EXPECT_EQ(store.handle()->cr_err, KELP_ERR_INVALID);
  store.handle()->cr_err = 0;
}

TEST(StructureCreate, AChainsSpaceIsPassedOn) {
  Store store;
  store.handle()->cr_space_id = 7;
  WriteWatch watch(store);
  ospf_area *area = ospf_area_create_cr(store);
  ospf_area_destroy_cr(store, area);
  ASSERT_FALSE(watch.writes().empty());
  for (const Range &range : watch.writes()) EXPECT_EQ(range.space_id, 7u);
}

TEST(StructureCreate, AFailedPreparationYieldsNullInBothForms) {
  Store store;
  ASSERT_EQ(kelp_handle_fail_variant(store, "ospf_area", failed_code, nullptr), 0);
  TraceLog trace;
  const Counts before = counts(_ospf_area_type_info_internal, 1);
  EXPECT_EQ(ospf_area_create(store, 0), nullptr);
  EXPECT_EQ(trace.texts(), (Names{std::string("error in ospf_area create: ") + failed_code_text}));
  EXPECT_EQ(ospf_area_create_cr(store), nullptr);
  EXPECT_EQ(store.handle()->cr_err, 0u);
  EXPECT_EQ(store.handle()->cr_create, 0u);
  EXPECT_EQ(counts(_ospf_area_type_info_internal, 1), before);
  EXPECT_TRUE(trace.has(3, std::string("error in ospf_area create: ") + failed_code_text));
}

// --- initialize ---------------------------------------------------------------------------------

alignas(8) thread_local char memory[4096];

ospf_area *zeroed_area() {
  std::memset(memory, 0, sizeof memory);
  return reinterpret_cast<ospf_area *>(memory);
}

TEST(StructureInitialize, WithoutNotifyNothingIsAnnounced) {
  Store store;
  std::memset(memory, 0, sizeof memory);
  WriteWatch watch(store);
  auto *object = reinterpret_cast<ospf_interface *>(memory);
  store(ospf_interface_initialize, object, &_ospf_interface_type_info_internal, 0, 1, 0, nullptr);
  EXPECT_TRUE(watch.writes().empty());
  EXPECT_EQ(header(object).tinfo, &_ospf_interface_type_info_internal);
  EXPECT_EQ(store.err, 0u);
}

TEST(StructureInitialize, SkippedStatisticsLeaveOutCountsAndStateForChildrenToo) {
  Store store({.tracking = KELP_TRACKING_ON});
  std::memset(memory, 0, sizeof memory);
  const Counts before = counts(_ospfv2_network_type_info_internal, 0);
  CallLog log(store);
  auto *object = reinterpret_cast<ospfv2_lsa *>(memory);
  store(ospfv2_lsa_initialize, object, &_ospfv2_lsa_type_info_internal, 1, 1, OBJ_NESTED, nullptr);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(flags_of(object), OBJ_NESTED | OBJ_STATE_TRACKED);
  EXPECT_EQ(counts(_ospfv2_network_type_info_internal, 0), before);
  EXPECT_EQ(log.count("kelplib_type_stats_create_object"), 0u);
  EXPECT_EQ(log.count("kelplib_update_sttr_offset"), 0u);
}

TEST(StructureInitialize, ANestedObjectWithoutABaseFailsUnderATrackingHandle) {
  Store store({.tracking = KELP_TRACKING_ON});
  ospf_area *area = zeroed_area();
  TraceLog trace;
  store(ospf_area_initialize, area, &_ospf_area_type_info_internal, 1, 0, OBJ_NESTED, nullptr);
  store.expect_failure(KELP_ERR_INVALID);
  EXPECT_EQ(flags_of(area), OBJ_NESTED | OBJ_STATE_TRACKED);
  ASSERT_EQ(trace.messages().size(), 1u);
  EXPECT_TRUE(trace.has(3,
                        "sttr_base can not be NULL in NESTED case. Please check the parent object "
                        "and provide the correct state tracking base pointer"));
}

TEST(StructureInitialize, ANestedObjectInItsParentsAreaTellsNoDistances) {
  Store store({.tracking = KELP_TRACKING_ON});
  std::memset(memory, 0, sizeof memory);
  auto *object = reinterpret_cast<ospfv3_nssa *>(memory);
  CallLog log(store);
  store(ospfv3_nssa_initialize, object, &_ospfv3_nssa_type_info_internal, 1, 0, OBJ_NESTED,
        memory + 2048);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(log.count("kelplib_update_sttr_offset"), 0u);
}

TEST(StructureInitialize, TheVariantIsLimitedToTheTypesHighest) {
  Store store;
  store.set_variant("ospf_area", 5);
  store.set_variant("ospfv2_topology", 3);
  void *area = area_of_space(store);
  EXPECT_EQ(header(area).variant, 1);
  EXPECT_EQ(header(area).created_variant, 1);
  end(store, area);
  OWNED(store, ospfv2_topology, topology);
  EXPECT_EQ(header(topology.get()).variant, 0);
}

// A record of ospf_area whose variants the test chooses.
struct OwnRecord {
  kelp_variant_entry entries[2] = {};
  kelp_variant_info info{2, entries};
  kelp_type_record record = _ospf_area_type_info_internal;
  OwnRecord() { record.varinfo = &info; }
};

TEST(StructureInitialize, AVariantAboveThoseOfTheRecordIsToldAndCountedAllTheSame) {
  Store store;
  store.set_variant("ospf_area", 1);
  OwnRecord own;
  own.info.n_variants = 0;
  TraceLog trace;
  ospf_area *area = zeroed_area();
  store(ospf_area_initialize, area, &own.record, 1, 0, 0, nullptr);
  EXPECT_TRUE(trace.has(6, "variant 1 requested only 0 variants present"));
  EXPECT_EQ(own.entries[1].create_count, 1u);
  trace.clear();
  own.info.n_variants = 1;
  area = zeroed_area();
  store(ospf_area_initialize, area, &own.record, 1, 0, 0, nullptr);
  EXPECT_TRUE(trace.empty());
}

TEST(StructureInitialize, ARecordWithoutVariantInfoEndsTheProcess) {
  Store store;
  OwnRecord own;
  own.record.varinfo = nullptr;
  EXPECT_FATAL(store(ospf_area_initialize, zeroed_area(), &own.record, 1, 0, 0, nullptr),
               "varinfo is NULL");
}

TEST(StructureInitialize, ChildrenAreNestedAndFindTheirBlocksInTheParentsArea) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospf_interface, object);
  const auto block_of = [&](const model::Field &field) {
    void *child = place(object.get(), types::ospf_interface, field);
    EXPECT_EQ(flags_of(child), OBJ_NESTED | OBJ_STATE_TRACKED | OBJ_STTR_RELOCATED) << field.name;
    return static_cast<std::uint8_t *>(child) + kelplib_get_sttr_offset(store, 0, child) -
           area(object.get(), types::ospf_interface);
  };
  using namespace fields::ospf_interface;
  for (const model::Field *field :
       {&multi_area_val, &fast_reroute_val, &ttl_security_val, &authentication_val}) {
    EXPECT_EQ(block_of(*field), model::state_block_place(types::ospf_interface, *field))
        << field->name;
  }
  EXPECT_EQ(flags_of(object.get()), OBJ_STATE_TRACKED);
  // Enumerations and addresses have no state bytes of their own.
  EXPECT_EQ(flags_of(place(object.get(), types::ospf_interface, network_type)), OBJ_NESTED);
  EXPECT_EQ(flags_of(place(object.get(), types::ospf_interface, dr)), OBJ_NESTED);
}

TEST(StructureInitialize, BlocksAreFoundAtAnyDepth) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, link_scope_lsa, object);
  void *lsa = place(object.get(), types::link_scope_lsa, fields::link_scope_lsa::ospfv3_lsa_val);
  void *body = place(lsa, types::ospfv3_lsa, fields::ospfv3_lsa::lsa_body);
  void *nssa = place(body, types::ospfv3_lsa_body, fields::ospfv3_lsa_body::nssa);
  void *external = place(nssa, types::ospfv3_nssa, fields::ospfv3_nssa::lsa_nssa_external);
  void *flags = place(external, types::ospfv3_lsa_external, fields::ospfv3_lsa_external::flags_val);
  const std::size_t expected =
      model::state_block_place(types::link_scope_lsa, fields::link_scope_lsa::ospfv3_lsa_val) +
      model::state_block_place(types::ospfv3_lsa, fields::ospfv3_lsa::lsa_body) +
      model::state_block_place(types::ospfv3_lsa_body, fields::ospfv3_lsa_body::nssa) +
      model::state_block_place(types::ospfv3_nssa, fields::ospfv3_nssa::lsa_nssa_external) +
      model::state_block_place(types::ospfv3_lsa_external, fields::ospfv3_lsa_external::flags_val);
  const auto *found = static_cast<std::uint8_t *>(flags) + kelplib_get_sttr_offset(store, 0, flags);
  EXPECT_EQ(found, area(object.get(), types::link_scope_lsa) + expected);
}

TEST(StructureInitialize, WithoutTrackingChildrenAreOnlyNested) {
  Store store({.tracking = KELP_TRACKING_OFF});
  CallLog log(store);
  OWNED(store, ospf_interface, object);
  EXPECT_EQ(
      flags_of(place(object.get(), types::ospf_interface, fields::ospf_interface::multi_area_val)),
      OBJ_NESTED);
  EXPECT_EQ(log.count("kelplib_update_sttr_offset"), 0u);
}

// --- set_instance_embedded ----------------------------------------------------------------------

TEST(StructureEmbedded, ANullObjectIsTracedAndPassedOver) {
  Store store;
  TraceLog trace;
  CallLog log(store);
  ospf_area_set_instance_embedded(store, 0, nullptr);
  EXPECT_TRUE(log.calls().empty());
  ASSERT_EQ(trace.messages().size(), 1u);
  EXPECT_TRUE(trace.has(3, "Invalid object pointer passed in to set instance flag"));
}

// The object's own mark comes before all within it, or behind them when structures are among them.
void expect_order(const model::Structure &type, std::ptrdiff_t start, const Ranges &marks) {
  const auto own = std::find(marks.begin(), marks.end(), Ranges::value_type{start + 10, 1});
  ASSERT_NE(own, marks.end()) << type.name;
  const auto end = start + static_cast<std::ptrdiff_t>(model::object_size(type));
  bool has_structure = false;
  for (const model::Field *field : type.fields) {
    if (field->kind != model::Kind::structure) continue;
    has_structure = true;
    const auto offset = static_cast<std::ptrdiff_t>(model::offset(type, *field));
    expect_order(*field->structure, start + offset, marks);
  }
  for (auto mark = marks.begin(); mark != marks.end(); ++mark) {
    if (mark == own || mark->first < start || mark->first >= end) continue;
    EXPECT_EQ(mark < own, has_structure) << type.name << " at " << mark->first - start;
  }
}

TEST(StructureEmbedded, EveryTypeWithoutEmbeddedStructuresIsMarkedBeforeItsChildren) {
  Store store;
  for (const model::Structure *type : model::structures) {
    const std::string name(type->name);
    void *object = function<void *(kelp_handle *, std::uint32_t)>(name + "_create")(store, 0);
    {
      WriteWatch watch(store);
      function<void(kelp_handle *, std::uint32_t, void *)>(name + "_set_instance_embedded")(
          store, 0, object);
      expect_order(*type, 0, ranges_in(watch, object));
    }
    function<void(kelp_handle *, std::uint32_t, void *)>(name + "_destroy")(store, 0, object);
  }
}

TEST(StructureEmbedded, StructuresAreMarkedBeforeTheirOwner) {
  Store store;
  OWNED(store, ospfv2_lsa_body, object);
  WriteWatch watch(store);
  ospfv2_lsa_body_set_instance_embedded(store, 0, object);
  using namespace fields::ospfv2_lsa_body;
  const auto flags_at = [](const model::Field &field) {
    return static_cast<std::ptrdiff_t>(model::offset(types::ospfv2_lsa_body, field)) + 10;
  };
  const auto in_network = static_cast<std::ptrdiff_t>(
      model::offset(types::ospfv2_lsa_body, network) +
      model::offset(types::ospfv2_network, fields::ospfv2_network::network_mask));
  EXPECT_EQ(ranges_in(watch, object), (Ranges{{flags_at(lsa_flags), 1},
                                              {flags_at(network), 1},
                                              {in_network + 10, 1},
                                              {flags_at(summary_mask), 1},
                                              {flags_at(external_mask), 1},
                                              {flags_at(body_flag_options), 1},
                                              {10, 1}}));
  EXPECT_EQ(flags_of(object.get()), OBJ_EMBEDDED);
  EXPECT_EQ(flags_of(place(object.get(), types::ospfv2_lsa_body, network)),
            OBJ_NESTED | OBJ_EMBEDDED);
}

// --- destroy ------------------------------------------------------------------------------------

TEST(StructureDestroy, NullIsPassedOver) {
  Store store;
  CallLog log(store);
  ospf_area_destroy(store, 0, nullptr);
  ospf_area_destroy_cr(store, nullptr);
  ospf_area_destroy_internal(store, 0, nullptr, 1);
  EXPECT_TRUE(log.calls().empty());
}

TEST(StructureDestroy, TheTypeRecordIsAnnouncedAndClearedBeforeTheMemoryGoes) {
  Store store;
  void *area = area_of_space(store);
  static kelp_type_record *seen;
  static void (*real_free)(void *, std::uint32_t, void *);
  seen = &_ospf_area_type_info_internal;
  real_free = store.handle()->obj_free;
  store.handle()->obj_free = [](void *pool, std::uint32_t space_id, void *object) {
    seen = header(object).tinfo;
    real_free(pool, space_id, object);
  };
  {
    WriteWatch watch(store);
    end(store, area);
    EXPECT_EQ(ranges_in(watch, area), (Ranges{{0, 8}}));
  }
  store.handle()->obj_free = real_free;
  EXPECT_EQ(seen, nullptr);
}

TEST(StructureDestroy, TheStepsComeInOrder) {
  Store store;
  void *area = area_of_space(store);
  CallLog log(store);
  end(store, area);
  const Names steps{"kelplib_oid_release_internal",
                    "kelp_get_manifested_type_info",
                    "kelplib_type_stats_destroy_object",
                    "counter_notify",
                    "write_notify",
                    "obj_free"};
  Names expected = steps;
  expected.insert(expected.begin(), steps[0]);
  EXPECT_EQ(log.only(steps), expected);
}

TEST(StructureDestroy, AnObjectIsCountedAtTheVariantThatItThenHas) {
  Store store;
  store.set_variant("ospf_area", 0);
  const Counts first = counts(_ospf_area_type_info_internal, 0);
  const Counts second = counts(_ospf_area_type_info_internal, 1);
  void *area = area_of_space(store);
  header(area).variant = 1;
  end(store, area);
  EXPECT_EQ(counts(_ospf_area_type_info_internal, 0), (Counts{first.first + 1, first.second}));
  EXPECT_EQ(counts(_ospf_area_type_info_internal, 1), (Counts{second.first, second.second + 1}));
}

TEST(StructureDestroy, FreeItZeroDoesAllButTheFreeing) {
  Store store;
  ospfv2_lsa *object = ospfv2_lsa_create(store, 0);
  const Counts lsa = counts(_ospfv2_lsa_type_info_internal, 0);
  const Counts body = counts(_ospfv2_lsa_body_type_info_internal, 1);
  WriteWatch watch(store);
  ospfv2_lsa_destroy_internal(store, 0, object, 0);
  EXPECT_TRUE(watch.writes().empty());
  EXPECT_EQ(counts(_ospfv2_lsa_type_info_internal, 0).second, lsa.second + 1);
  EXPECT_EQ(counts(_ospfv2_lsa_body_type_info_internal, 1).second, body.second + 1);
  EXPECT_EQ(header(object).tinfo, &_ospfv2_lsa_type_info_internal);
  store.handle()->obj_free(store.handle()->obj_pool, 0, object);
}

TEST(StructureDestroy, AMissingOrForeignTypeRecordEndsTheProcess) {
  Store store;
  void *area = area_of_space(store);
  EXPECT_FATAL(
      {
        header(area).tinfo = nullptr;
        end(store, area);
      },
      "tinfo is null or corrupted");
  EXPECT_FATAL(
      {
        OwnRecord own;
        own.record.magic = 0xbeeff00e;
        header(area).tinfo = &own.record;
        end(store, area);
      },
      "tinfo is null or corrupted");
  EXPECT_FATAL(
      {
        OwnRecord own;
        own.record.varinfo = nullptr;
        header(area).tinfo = &own.record;
        end(store, area);
      },
      "varinfo is NULL");
  end(store, area);
}

TEST(StructureDestroy, AVariantAboveThoseOfTheRecordIsTold) {
  Store store;
  void *area = area_of_space(store);
  OwnRecord own;
  header(area).tinfo = &own.record;
  header(area).variant = 3;
  TraceLog trace;
  end(store, area);
  EXPECT_EQ(trace.texts(), (Names{"variant 3 requested only 2 variants present"}));
  EXPECT_EQ(own.entries[1].destroy_count, 1u);
}

TEST(StructureDestroy, AReferencedObjectStaysUntilTheReferenceGoes) {
  Store store;
  void *area = area_of_space(store);
  store(kelp_handle_to_oid, area, KELP_OID_KIND_OBJECT, 1);
  ASSERT_EQ(store.err, 0u);
  const Counts before = counts(_ospf_area_type_info_internal, 1);
  std::vector<char> image(128);
  std::memcpy(image.data(), area, image.size());
  {
    TraceLog trace;
    end(store, area);
    EXPECT_EQ(trace.texts(),
              (Names{"ospf_area destroy: Object has references and will be cleaned up when all of "
                     "them are released"}));
    EXPECT_EQ(trace.messages()[0].level, 6u);
  }
  EXPECT_EQ(std::memcmp(image.data(), area, image.size()), 0);
  EXPECT_EQ(counts(_ospf_area_type_info_internal, 1), before);
  store(kelplib_lookup_and_update_oid_ref_count, area, KELP_OID_DECREMENT);
  TraceLog trace;
  end(store, area);
  EXPECT_EQ(trace.texts(), (Names{"ospf_area destroy: Successfully removed OID mapping"}));
  EXPECT_EQ(trace.messages()[0].level, 7u);
  EXPECT_EQ(counts(_ospf_area_type_info_internal, 1), (Counts{before.first, before.second + 1}));
}

TEST(StructureDestroy, AMappingThatCannotBeRemovedKeepsTheObject) {
  Store store;
  void *area = area_of_space(store);
  const Counts before = counts(_ospf_area_type_info_internal, 1);
  header(area).obj_flags = OBJ_OID_MAPPED;
  {
    ReplacedCall failing(
        "kelp_request_oid_mapping_destroy",
        +[](kelp_handle *, std::uint32_t, void *, std::uint32_t *err) {
          *err = failed_code;
          return std::uint32_t{1};
        });
    TraceLog trace;
    CallLog log(store);
    end(store, area);
    EXPECT_EQ(trace.texts(),
              (Names{std::string("ospf_area destroy: Failed to remove oid mapping for object. "
                                 "Error ") +
                     failed_code_text}));
    EXPECT_EQ(trace.messages()[0].level, 3u);
    EXPECT_EQ(log.calls(), (Names{"kelp_store_err"}));
  }
  EXPECT_EQ(store.last_error(), static_cast<std::int32_t>(failed_code));
  EXPECT_EQ(counts(_ospf_area_type_info_internal, 1), before);
  header(area).obj_flags = 0;
  end(store, area);
}

TEST(StructureDestroy, ReferencesOfFieldsAreReleased) {
  Store store;
  void *area = area_of_space(store);
  void *target = area_of_space(store);
  auto &interfaces =
      at<kelp_reference>(area, model::offset(types::ospf_area, fields::ospf_area::interfaces));
  interfaces.oid = store(kelp_handle_to_oid, target, KELP_OID_KIND_OBJECT, 1);
  EXPECT_EQ(kelp_handle_oid_references(store, target), 1);
  end(store, area);
  EXPECT_EQ(kelp_handle_oid_references(store, target), 0);
  end(store, target);
}

TEST(StructureDestroy, AReferenceThatCannotBeReleasedKeepsTheObject) {
  Store store;
  void *area = area_of_space(store);
  const Counts before = counts(_ospf_area_type_info_internal, 1);
  {
    ReplacedCall failing(
        "kelplib_oid_release_internal", +[](kelp_handle *, std::uint32_t, kelp_reference *,
                                            std::uint32_t *err) { *err = failed_code; });
    TraceLog trace;
    CallLog log(store);
    end(store, area);
    EXPECT_EQ(trace.texts(),
              (Names{std::string("ospf_area destroy: Failed to release oid reference for "
                                 "interfaces oid. Error ") +
                     failed_code_text}));
    EXPECT_EQ(trace.messages()[0].level, 3u);
    EXPECT_TRUE(log.calls().empty());
  }
  EXPECT_EQ(counts(_ospf_area_type_info_internal, 1), before);
  end(store, area);
}

// Two references in every text: the first names an object that has a mapping, the second none.
void *referenced[2];
std::uint32_t two_references(kelp_handle *, std::uint32_t, const kelp_vstring *, std::uint32_t *) {
  return 2;
}
void give_references(kelp_handle *, std::uint32_t, const kelp_vstring *, void **array,
                     std::uint32_t, std::uint32_t *) {
  array[0] = referenced[1];
  array[1] = referenced[0];
}

TEST(StructureDestroy, ReferencesThatATextHoldsAreDroppedAndAFailureIsPassedOver) {
  Store store;
  multi_topology *object = multi_topology_create(store, 0);
  void *target = area_of_space(store);
  store(kelp_handle_to_oid, target, KELP_OID_KIND_OBJECT, 1);
  referenced[0] = target;
  referenced[1] = object;
  {
    ReplacedCall count("kelp_vstring_get_oid_count", two_references);
    ReplacedCall give("kelp_vstring_get_object_references", give_references);
    TraceLog trace;
    multi_topology_destroy(store, 0, object);
    EXPECT_EQ(trace.texts(),
              (Names{"multi_topology destroy: Failed to decrement ref count of oid pointer. Error "
                     "No such file or directory"}));
    EXPECT_EQ(trace.messages()[0].level, 3u);
  }
  EXPECT_EQ(kelp_handle_oid_references(store, target), 0);
  end(store, target);
}

TEST(StructureDestroy, ReferencesThatATextDoesNotGiveKeepTheObject) {
  Store store;
  OWNED(store, multi_topology, object);
  {
    ReplacedCall count("kelp_vstring_get_oid_count", two_references);
    ReplacedCall give(
        "kelp_vstring_get_object_references",
        +[](kelp_handle *, std::uint32_t, const kelp_vstring *, void **, std::uint32_t,
            std::uint32_t *err) { *err = failed_code; });
    TraceLog trace;
    CallLog log(store);
    multi_topology_destroy(store, 0, object);
    EXPECT_EQ(trace.texts(),
              (Names{std::string("multi_topology destroy: Failed to get oid references from "
                                 "object. Error ") +
                     failed_code_text}));
    EXPECT_TRUE(log.calls().empty());
  }
}

TEST(StructureDestroy, TextsGiveBackTheirStorage) {
  Store store;
  ospf_interface *object = ospf_interface_create(store, 0);
  auto *name = static_cast<kelp_vstring *>(
      place(object, types::ospf_interface, fields::ospf_interface::name));
  store(kelp_vstring_assign, name, "eth0", 4);
  EXPECT_EQ(store.live_allocations(), 2u);
  ospf_interface_destroy(store, 0, object);
  EXPECT_EQ(store.live_allocations(), 0u);
}

TEST(StructureDestroy, ElementStatesAreClearedUnannouncedAfterTheArray) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospfv2_network, object);
  const std::uint32_t routers[] = {1, 2, 3};
  store(ospfv2_network_attached_router_set_mem, object, routers, 3);
  EXPECT_EQ(store.live_allocations(), 3u);
  using namespace fields::ospfv2_network;
  const auto count_at =
      static_cast<std::ptrdiff_t>(model::offset(types::ospfv2_network, attached_router_num));
  const auto store_at =
      static_cast<std::ptrdiff_t>(model::offset(types::ospfv2_network, attached_router));
  {
    WriteWatch watch(store);
    ospfv2_network_destroy_internal(store, 0, object, 0);
    EXPECT_EQ(ranges_in(watch, object), (Ranges{{store_at, 8}, {count_at, 4}}));
  }
  EXPECT_EQ(at<void *>(area(object.get(), types::ospfv2_network), 8), nullptr);
  EXPECT_EQ(area(object.get(), types::ospfv2_network)[1], 2);
  EXPECT_EQ(store.live_allocations(), 1u);
}

TEST(StructureDestroy, AddressesOfAnArrayEndInPlaceBeforeTheirBlockGoes) {
  Store store;
  ospfv2_link_tlv *object = ospfv2_link_tlv_create(store, 0);
  ip_address address = ip_address_make_ipv4(0x0a000001);
  for (std::uint32_t index = 0; index < 2; ++index) {
    store(ospfv2_link_tlv_local_if_ipv4_addr_set, object, index, &address);
  }
  CallLog log(store);
  ospfv2_link_tlv_destroy(store, 0, object);
  EXPECT_EQ(log.only({"ip_address_destroy_internal", "obj_free"}),
            (Names{"ip_address_destroy_internal", "ip_address_destroy_internal", "obj_free",
                   "obj_free"}));
}

TEST(StructureDestroy, ArmsEndInFieldOrderWhetherSelectedOrNot) {
  Store store;
  OWNED(store, ospf_authentication, object);
  using namespace fields::ospf_authentication;
  const auto arm_at = [](const model::Field &field) {
    return static_cast<std::ptrdiff_t>(model::offset(types::ospf_authentication, field));
  };
  store(ospf_authentication_sa_set, object, kelp_vstring_create(store, 0));
  store(ospf_authentication_crypto_algorithm_val_set, object,
        ospf_crypto_algorithm_create(store, 0));
  store(ospf_authentication_no_auth_set, object, u_int32_create(store, 0));
  ASSERT_EQ(store.err, 0u);
  {
    WriteWatch watch(store);
    CallLog log(store);
    ospf_authentication_destroy_internal(store, 0, object, 0);
    EXPECT_EQ(log.only({"kelp_vstring_destroy_internal", "kelplib_type_stats_destroy_object",
                        "u_int32_destroy_internal"}),
              (Names{"kelp_vstring_destroy_internal", "kelplib_type_stats_destroy_object",
                     "u_int32_destroy_internal", "kelplib_type_stats_destroy_object"}));
    Ranges arms;
    for (const auto &range : ranges_in(watch, object)) {
      if (range.first >= 0 && range.first < 88) arms.push_back(range);
    }
    EXPECT_EQ(arms,
              (Ranges{{arm_at(sa), 8}, {arm_at(crypto_algorithm_val), 8}, {arm_at(no_auth), 8}}));
  }
  for (const model::Field *field : types::ospf_authentication.fields) {
    if (field->kind != model::Kind::arm) continue;
    EXPECT_EQ(at<void *>(object.get(), model::offset(types::ospf_authentication, *field)), nullptr);
  }
  EXPECT_EQ(store.live_allocations(), 1u);
}

TEST(StructureDestroy, DistancesOfChildrenAreForgotten) {
  Store store({.tracking = KELP_TRACKING_ON});
  ospf_neighbor *object = ospf_neighbor_create(store, 0);
  EXPECT_NE(store.handle()->hd_mapped, 0u);
  CallLog log(store);
  ospf_neighbor_destroy(store, 0, object);
  EXPECT_EQ(log.count("kelp_hd_mapping_destroy"), 1u);
  EXPECT_EQ(store.handle()->hd_mapped, 0u);
}

TEST(StructureDestroy, AnAttachedObjectIsForgottenOnlyUnderAHandleWithMappings) {
  Store store;
  void *area = area_of_space(store);
  header(area).obj_flags = OBJ_RA_DATA;
  {
    CallLog log(store);
    ospf_area_destroy_internal(store, 0, static_cast<ospf_area *>(area), 0);
    EXPECT_EQ(log.count("kelp_hd_mapping_destroy"), 0u);
    store.handle()->hd_mapped = 1;
    ospf_area_destroy_internal(store, 0, static_cast<ospf_area *>(area), 0);
    EXPECT_EQ(log.count("kelp_hd_mapping_destroy"), 1u);
  }
  end(store, area);
}

TEST(StructureDestroy, AMappingThatCannotBeForgottenKeepsTheObjectButCounts) {
  Store store;
  void *area = area_of_space(store);
  header(area).obj_flags = OBJ_RA_DATA;
  store.handle()->hd_mapped = 1;
  const Counts before = counts(_ospf_area_type_info_internal, 1);
  {
    ReplacedCall failing(
        "kelp_hd_mapping_destroy",
        +[](kelp_handle *, std::uint32_t, void *, std::uint32_t *err) { *err = failed_code; });
    TraceLog trace;
    end(store, area);
    EXPECT_EQ(trace.texts(),
              (Names{std::string("ospf_area destroy: Failed to remove oid mapping for object. "
                                 "Error ") +
                     failed_code_text}));
  }
  EXPECT_EQ(store.last_error(), static_cast<std::int32_t>(failed_code));
  EXPECT_EQ(counts(_ospf_area_type_info_internal, 1).second, before.second + 1);
  EXPECT_EQ(header(area).tinfo, &_ospf_area_type_info_internal);
  end(store, area);
}

TEST(StructureDestroy, ARelocatedTrackedObjectIsAskedForItsArea) {
  Store store({.tracking = KELP_TRACKING_ON});
  void *area = area_of_space(store);
  kelplib_update_sttr_offset(store, 0, area, 128);
  CallLog log(store);
  end(store, area);
  EXPECT_EQ(log.only({"kelplib_get_sttr_offset", "kelp_hd_mapping_destroy"}),
            (Names{"kelplib_get_sttr_offset", "kelp_hd_mapping_destroy"}));
}

TEST(StructureDestroy, ATypeRecordBlockGoesWithTheObject) {
  Store store;
  void *area = area_of_space(store);
  auto *block = static_cast<kelp_tinfo_block *>(
      store.handle()->obj_alloc(store.handle()->obj_pool, 0, sizeof(kelp_tinfo_block)));
  block->tinfo = &_ospf_area_type_info_internal;
  at<void *>(area, 0) = block;
  header(area).obj_flags = OBJ_TINFO_BLOCK;
  EXPECT_EQ(store.live_allocations(), 2u);
  end(store, area);
  EXPECT_EQ(store.live_allocations(), 0u);
}

}  // namespace
