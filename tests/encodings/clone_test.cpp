// Clone and copy through the image: what becomes a store of its own, what is copied as it stands,
// and what is left after a failure.
#include <kelp/oid.h>
#include <kelp/primitives.h>

#include <cstring>

#include "harness/harness.hpp"
#include "model/layout.hpp"
#include "ospf_harbor_oper.h"

namespace {

using harness::CallLog;
using harness::Store;
using harness::TraceLog;
namespace model = harbor::model;

using Words = std::vector<std::uint32_t>;

constexpr std::size_t routers_offset =
    model::offset(model::types::ospfv2_network, model::fields::ospfv2_network::attached_router);
constexpr std::size_t network_size = model::object_size(model::types::ospfv2_network);

void *store_of(const ospfv2_network *object) {
  void *store;
  std::memcpy(&store, reinterpret_cast<const char *>(object) + routers_offset, sizeof(store));
  return store;
}
Words routers_of(const ospfv2_network *object) {
  std::uint32_t count;
  std::memcpy(&count, reinterpret_cast<const char *>(object) + routers_offset - 8, sizeof(count));
  const auto *values = static_cast<const std::uint32_t *>(store_of(object));
  return count == 0 ? Words{} : Words(values, values + count);
}

ospfv2_network *make_network(Store &store, const Words &routers) {
  ospfv2_network *network = ospfv2_network_create(store, 0);
  ospfv2_network_attached_router_set_mem(store, 0, network, routers.data(),
                                         static_cast<std::uint32_t>(routers.size()), &store.err);
  EXPECT_EQ(store.err, 0u);
  return network;
}

class WorkBuffer {
 public:
  explicit WorkBuffer(std::size_t size = 4096) : bytes_(size) {}
  void *data() { return bytes_.data(); }
  std::uint32_t size() const { return static_cast<std::uint32_t>(bytes_.size()); }

 private:
  std::vector<std::uint8_t> bytes_;
};

// --- clone --------------------------------------------------------------------------------------

TEST(Clone, ADestinationThatHoldsAnObjectIsIgnoredAndANewOneMade) {
  Store store;
  WorkBuffer work;
  ospfv2_network *source = make_network(store, {1, 2});
  ospfv2_network *held = make_network(store, {9});
  ospfv2_network *destination = held;
  ospfv2_network_clone(store, 0, source, &destination, work.data(), work.size(), &store.err);
  EXPECT_EQ(store.err, 0u);
  ASSERT_NE(destination, nullptr);
  EXPECT_NE(destination, held);
  EXPECT_NE(destination, source);
  EXPECT_EQ(routers_of(held), (Words{9}));
  EXPECT_EQ(routers_of(destination), (Words{1, 2}));
  for (ospfv2_network *object : {source, held, destination}) {
    ospfv2_network_destroy(store, 0, object);
  }
}

TEST(Clone, AnArrayGetsEqualContentInAStoreOfItsOwn) {
  Store store;
  ospfv2_network *source = make_network(store, {1, 2, 3});
  ospfv2_network *copy = ospfv2_network_clone_cr(store, source);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(store.handle()->cr_err, 0u);
  EXPECT_EQ(ospfv2_network_compare(source, copy), 0);
  EXPECT_EQ(routers_of(copy), (Words{1, 2, 3}));
  EXPECT_NE(store_of(copy), store_of(source));
  ospfv2_network_destroy(store, 0, source);
  EXPECT_EQ(routers_of(copy), (Words{1, 2, 3}));
  ospfv2_network_destroy(store, 0, copy);
}

TEST(Clone, AnArmGetsEqualContentInAnObjectOfItsOwn) {
  Store store;
  ospf_authentication *source = ospf_authentication_create(store, 0);
  kelp_vstring *chain = kelp_vstring_create(store, 0);
  kelp_vstring_assign(store, 0, chain, "chain", 5, &store.err);
  ospf_authentication_key_chain_set(store, 0, source, chain, &store.err);
  ospf_authentication *copy = ospf_authentication_clone_cr(store, source);
  ASSERT_NE(copy, nullptr);
  const kelp_vstring *cloned = ospf_authentication_key_chain_get(store, 0, copy, &store.err);
  ASSERT_NE(cloned, nullptr);
  EXPECT_NE(cloned, chain);
  EXPECT_STREQ(kelp_vstring_text(cloned), "chain");
  EXPECT_EQ(ospf_authentication_compare(source, copy), 0);
  ospf_authentication_destroy(store, 0, source);
  ospf_authentication_destroy(store, 0, copy);
}

TEST(Clone, StateBytesComeAlongWhenTheHandleTracks) {
  Store store({.tracking = KELP_TRACKING_ON});
  ospfv2_network *source = ospfv2_network_create(store, 0);
  const std::uint32_t router = 7;
  ospfv2_network_attached_router_set(store, 0, source, 1, &router, &store.err);
  ospfv2_network *copy = ospfv2_network_clone_cr(store, source);
  ASSERT_NE(copy, nullptr);
  const auto *area = reinterpret_cast<const std::uint8_t *>(copy) + network_size;
  EXPECT_EQ(area[0], 0);
  EXPECT_EQ(area[1], 2);
  std::uint8_t *states;
  std::memcpy(&states, area + 8, sizeof(states));
  ASSERT_NE(states, nullptr);
  EXPECT_EQ(states[0], 0);
  EXPECT_EQ(states[1], 2);
  ospfv2_network_destroy(store, 0, source);
  ospfv2_network_destroy(store, 0, copy);
}

TEST(Clone, KeepsTheVariantOfTheSourceAboveTheDomains) {
  Store store;
  ospf_area *source = ospf_area_create(store, 0);
  ASSERT_EQ(kelp_get_instance_variant(source, 1, 0), 1);
  store.set_variant("ospf_area", 0);
  ospf_area *copy = ospf_area_clone_cr(store, source);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(kelp_get_instance_variant(copy, 1, 0), 1);
  ospf_area_destroy(store, 0, source);
  ospf_area_destroy(store, 0, copy);
}

TEST(Clone, OidsAreCopiedAsBareValues) {
  Store store;
  kelp_handle *handle = store;
  auto *table =
      static_cast<kelp_table *>(handle->obj_alloc(handle->obj_pool, 0, sizeof(kelp_table)));
  std::memset(static_cast<void *>(table), 0, sizeof(kelp_table));
  table->header.tinfo = &_tbl_ospf_interface_table_type_info_internal;
  ospf_area *source = ospf_area_create(store, 0);
  ospf_area_interfaces_set_by_ref(store, 0, source,
                                  reinterpret_cast<tbl_ospf_interface_table *>(table), &store.err);
  EXPECT_EQ(kelp_handle_oid_references(handle, table), 1);
  ospf_area *copy = ospf_area_clone_cr(handle, source);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(kelp_handle_oid_references(handle, table), 1) << "the clone's reference is uncounted";
  EXPECT_EQ(ospf_area_interfaces_get_by_ref(store, 0, copy, &store.err),
            reinterpret_cast<tbl_ospf_interface_table *>(table));
  EXPECT_EQ(store.err, 0u);
  ospf_area_destroy(store, 0, copy);
  EXPECT_EQ(kelp_handle_oid_references(handle, table), 0) << "and its destroy drops one";
  ospf_area_destroy(store, 0, source);
  handle->obj_free(handle->obj_pool, 0, table);
}

TEST(Clone, ObjectFlagsOfTheSourceAreDropped) {
  Store store({.tracking = KELP_TRACKING_ON});
  ospf_area *source = ospf_area_create(store, 0);
  ospf_area_set_instance_embedded(store, 0, source);
  const auto flags_of = [](const ospf_area *area) {
    return reinterpret_cast<const kelp_object_header *>(area)->obj_flags;
  };
  ASSERT_EQ(flags_of(source), OBJ_EMBEDDED | OBJ_STATE_TRACKED);
  ospf_area *copy = ospf_area_clone_cr(store, source);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(flags_of(copy), OBJ_STATE_TRACKED);
  ospf_area_destroy(store, 0, source);
  ospf_area_destroy(store, 0, copy);
}

TEST(CloneInternal, AGivenDestinationIsOverwrittenInPlace) {
  Store store({.may_leave = 1});  // the destination's old element block is replaced, not released
  WorkBuffer work;
  ospfv2_network *source = make_network(store, {1, 2});
  ospfv2_network *destination = make_network(store, {9});
  ospfv2_network *const held = destination;
  ospfv2_network_clone_internal(store, 0, source, &destination, work.data(), work.size(),
                                &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(destination, held);
  EXPECT_EQ(routers_of(held), (Words{1, 2}));
  ospfv2_network_destroy(store, 0, source);
  ospfv2_network_destroy(store, 0, destination);
}

TEST(CloneInternal, RegistersTheModuleForTraceOnlyWhenItMakesTheObject) {
  Store store;
  WorkBuffer work;
  ospf_area *source = ospf_area_create(store, 0);
  ospf_area *destination = nullptr;
  {
    CallLog calls;
    ospf_area_clone_internal(store, 0, source, &destination, work.data(), work.size(), &store.err);
    EXPECT_EQ(calls.count("xlog_module_init_fn"), 1u);
  }
  {
    CallLog calls;
    ospf_area_clone_internal(store, 0, source, &destination, work.data(), work.size(), &store.err);
    EXPECT_EQ(calls.count("xlog_module_init_fn"), 0u);
  }
  EXPECT_EQ(store.err, 0u);
  ospf_area_destroy(store, 0, source);
  ospf_area_destroy(store, 0, destination);
}

// --- failures -----------------------------------------------------------------------------------

TEST(CloneFailure, ANullDestinationOrWorkBufferIsNotFoundAndNothingIsDone) {
  Store store;
  WorkBuffer work;
  ospf_area *source = ospf_area_create(store, 0);
  ospf_area *destination = source;
  const auto expect_refused = [&] {
    EXPECT_EQ(store.err, 2u);
    EXPECT_EQ(store.last_error(), 2);
    store.err = 0;
  };
  ospf_area_clone_internal(store, 0, source, nullptr, work.data(), work.size(), &store.err);
  expect_refused();
  ospf_area_clone(store, 0, source, nullptr, work.data(), work.size(), &store.err);
  expect_refused();
  ospf_area_clone_internal(store, 0, source, &destination, nullptr, work.size(), &store.err);
  expect_refused();
  EXPECT_EQ(destination, source);
  ospf_area_clone(store, 0, source, &destination, nullptr, work.size(), &store.err);
  expect_refused();
  EXPECT_EQ(destination, nullptr);
  ospf_area_destroy(store, 0, source);
}

TEST(CloneFailure, AnErrorThatStandsIsLeftAlone) {
  Store store;
  WorkBuffer work;
  ospf_area *source = ospf_area_create(store, 0);
  ospf_area *destination = source;
  kelp_store_err(store, 5);
  store.err = 5;
  CallLog calls(store);
  ospf_area_clone_internal(store, 0, source, &destination, work.data(), work.size(), &store.err);
  EXPECT_TRUE(calls.calls().empty());
  EXPECT_EQ(store.err, 5u);
  EXPECT_EQ(store.last_error(), 5);
  EXPECT_EQ(destination, source);
  ospf_area_destroy(store, 0, source);
}

TEST(CloneFailure, AnObjectThatCannotBeMadeIsNoMemory) {
  Store store;
  WorkBuffer work;
  ospf_area *source = ospf_area_create(store, 0);
  ospf_area *destination = nullptr;
  store.fail_allocation(0);
  ospf_area_clone_internal(store, 0, source, &destination, work.data(), work.size(), &store.err);
  EXPECT_EQ(store.err, 12u);
  EXPECT_EQ(store.last_error(), 12);
  EXPECT_EQ(destination, nullptr);
  ospf_area_destroy(store, 0, source);
}

TEST(CloneFailure, AWorkBufferThatIsTooSmallFailsInTheWriterAndKeepsTheDestination) {
  Store store;
  WorkBuffer work;
  ospf_area *source = ospf_area_create(store, 0);
  ospf_area *destination = source;
  ospf_area_clone_internal(store, 0, source, &destination, work.data(), 20, &store.err);
  EXPECT_EQ(store.err, 90u);
  EXPECT_EQ(store.last_error(), 90);
  EXPECT_EQ(destination, source);
  ospf_area_destroy(store, 0, source);
}

// Reading the image needs a block for the elements; without it the object goes again.
TEST(CloneFailure, AnImageThatCannotBeReadEndsTheNewObject) {
  Store store;
  ospfv2_network *source = make_network(store, {1, 2});
  store.fail_allocation(1);
  EXPECT_EQ(ospfv2_network_clone_cr(store, source), nullptr);
  EXPECT_EQ(store.handle()->cr_err, 12u);
  store.handle()->cr_err = 0;
  ospfv2_network_destroy(store, 0, source);
}

TEST(CloneFailure, AnImageThatCannotBeReadEndsTheGivenDestinationToo) {
  Store store({.may_leave = 1});  // the destination's old element block
  WorkBuffer work;
  ospfv2_network *source = make_network(store, {1, 2});
  ospfv2_network *destination = make_network(store, {9});
  const std::uint64_t live = store.live_allocations();
  CallLog calls;
  store.fail_allocation(0);
  ospfv2_network_clone_internal(store, 0, source, &destination, work.data(), work.size(),
                                &store.err);
  EXPECT_EQ(store.err, 12u);
  EXPECT_EQ(destination, nullptr);
  EXPECT_EQ(calls.count("kelplib_type_stats_destroy_object"), 1u);
  EXPECT_LT(store.live_allocations(), live);
  ospfv2_network_destroy(store, 0, source);
}

// --- the forms with the handle's work space -----------------------------------------------------

TEST(CloneCr, UsesTheHandlesWorkSpaceAndErrorWord) {
  Store store;
  kelp_handle *handle = store;
  ospf_area *source = ospf_area_create(store, 0);
  handle->cr_err = 5;
  EXPECT_EQ(ospf_area_clone_cr(handle, source), nullptr);
  EXPECT_EQ(handle->cr_err, 5u);
  handle->cr_err = 0;
  CallLog calls;
  ospf_area *copy = ospf_area_clone_cr(handle, source);
  EXPECT_NE(copy, nullptr);
  EXPECT_EQ(calls.count("kelplib_get_handle_ws"), 1u);
  ospf_area_destroy(store, 0, source);
  ospf_area_destroy(store, 0, copy);
}

TEST(CloneCr, AWorkSpaceThatIsTooSmallFails) {
  Store store({.work_space_size = 16});
  ospf_area *source = ospf_area_create(store, 0);
  EXPECT_EQ(ospf_area_clone_cr(store, source), nullptr);
  EXPECT_EQ(store.handle()->cr_err, 90u);
  store.handle()->cr_err = 0;
  ospf_area_destroy(store, 0, source);
}

TEST(CopyCr, OverwritesTheDestinationAtItsAddress) {
  Store store;
  ospf_area *source = ospf_area_create(store, 0);
  ospf_area *destination = ospf_area_create(store, 0);
  ospf_area_area_id_set_value(store, 0, source, 17, &store.err);
  ospf_area_area_id_set_value(store, 0, destination, 4, &store.err);
  const std::uint64_t live = store.live_allocations();
  ospf_area_copy_cr(store, source, destination);
  EXPECT_EQ(store.handle()->cr_err, 0u);
  EXPECT_EQ(store.live_allocations(), live);
  EXPECT_EQ(ospf_area_area_id_get_value(store, 0, destination, &store.err), 17u);
  EXPECT_EQ(ospf_area_compare(source, destination), 0);
  ospf_area_destroy(store, 0, source);
  ospf_area_destroy(store, 0, destination);
}

TEST(CopyCr, ReplacesElementBlocksWithoutReleasingThem) {
  Store store({.may_leave = 1});
  ospfv2_network *source = make_network(store, {1, 2});
  ospfv2_network *destination = make_network(store, {9});
  void *const old_block = store_of(destination);
  const std::uint64_t live = store.live_allocations();
  ospfv2_network_copy_cr(store, source, destination);
  EXPECT_EQ(store.handle()->cr_err, 0u);
  EXPECT_NE(store_of(destination), old_block);
  EXPECT_EQ(routers_of(destination), (Words{1, 2}));
  EXPECT_EQ(store.live_allocations(), live + 1);
  ospfv2_network_destroy(store, 0, source);
  ospfv2_network_destroy(store, 0, destination);
}

// --- the transfer, which copies nothing ---------------------------------------------------------

TEST(Transfer, OntoItselfOnlyAdjustsTheVariant) {
  Store store;
  store.set_variant("ospf_area", 0);
  ospf_area *area = ospf_area_create(store, 0);
  kelp_handle_clear_variant(store, "ospf_area");
  harness::WriteWatch watch(store);
  ospf_area_set(store, 0, area, area, &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(kelp_get_instance_variant(area, 1, 0), 1);
  ASSERT_EQ(watch.writes().size(), 1u);
  EXPECT_EQ(watch.writes()[0].offset_in(area), 8);
  EXPECT_EQ(watch.writes()[0].length, 1u);
  ospf_area_destroy(store, 0, area);
}

TEST(Transfer, LeavesTheSourceItsValuesAndTakesItsArrays) {
  Store store;
  ospfv2_unknown_sub_tlv *source = ospfv2_unknown_sub_tlv_create(store, 0);
  ospfv2_unknown_sub_tlv *destination = ospfv2_unknown_sub_tlv_create(store, 0);
  ospfv2_unknown_sub_tlv_length_set_value(store, 0, source, 8, &store.err);
  ospfv2_unknown_sub_tlv_value_set_value(store, 0, source, 1, 7, &store.err);
  const std::uint8_t *element = ospfv2_unknown_sub_tlv_value_get(store, 0, source, 0, &store.err);
  ospfv2_unknown_sub_tlv_set(store, 0, destination, source, &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(ospfv2_unknown_sub_tlv_value_get(store, 0, destination, 0, &store.err), element);
  EXPECT_EQ(ospfv2_unknown_sub_tlv_value_len_get_value(store, 0, destination, &store.err), 2u);
  EXPECT_EQ(ospfv2_unknown_sub_tlv_value_len_get_value(store, 0, source, &store.err), 0u);
  EXPECT_EQ(ospfv2_unknown_sub_tlv_length_get_value(store, 0, source, &store.err), 8u);
  ospfv2_unknown_sub_tlv_destroy(store, 0, source);
  ospfv2_unknown_sub_tlv_destroy(store, 0, destination);
}

TEST(Transfer, LeavesTheSourceWithoutArms) {
  Store store;
  ospf_authentication *source = ospf_authentication_create(store, 0);
  ospf_authentication *destination = ospf_authentication_create(store, 0);
  kelp_vstring *chain = kelp_vstring_create(store, 0);
  ospf_authentication_key_chain_set(store, 0, source, chain, &store.err);
  ospf_authentication_set(store, 0, destination, source, &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(ospf_authentication_key_chain_get(store, 0, destination, &store.err), chain);
  EXPECT_EQ(ospf_authentication_key_chain_get(store, 0, source, &store.err), nullptr);
  EXPECT_EQ(ospf_authentication_auth_type_selection_get_value(store, 0, source, &store.err), 1u);
  ospf_authentication_destroy(store, 0, source);
  ospf_authentication_destroy(store, 0, destination);
}

TEST(Transfer, TakesTheStateBytesAndKeepsNestedBlocksInTheDestination) {
  Store store({.tracking = KELP_TRACKING_ON});
  ospf_interface *source = ospf_interface_create(store, 0);
  ospf_interface *destination = ospf_interface_create(store, 0);
  multi_area *nested = ospf_interface_multi_area_val_get(store, 0, source, &store.err);
  multi_area_cost_set_value(store, 0, nested, 4, &store.err);
  ospf_interface_cost_set_value(store, 0, source, 3, &store.err);
  ospf_interface_set(store, 0, destination, source, &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(ospf_interface_cost_state_flag_get(store, 0, destination, &store.err), 2);
  multi_area *moved = ospf_interface_multi_area_val_get(store, 0, destination, &store.err);
  EXPECT_EQ(multi_area_cost_state_flag_get(store, 0, moved, &store.err), 2);
  multi_area_multi_area_id_set_value(store, 0, moved, 1, &store.err);
  EXPECT_EQ(multi_area_multi_area_id_state_flag_get(store, 0, moved, &store.err), 2);
  EXPECT_EQ(multi_area_multi_area_id_state_flag_get(store, 0, nested, &store.err), 0);
  const char *area =
      reinterpret_cast<const char *>(moved) + kelplib_get_sttr_offset(store, 0, moved);
  const char *behind = reinterpret_cast<const char *>(destination) +
                       model::object_size(model::types::ospf_interface);
  EXPECT_EQ(area, behind + 5);
  EXPECT_EQ(store.err, 0u);
  ospf_interface_destroy(store, 0, source);
  ospf_interface_destroy(store, 0, destination);
}

TEST(Transfer, FromAnUntrackedToATrackedObjectIsRefusedAfterTheCopy) {
  Store store({.tracking = KELP_TRACKING_ON});
  kelp_handle *untracked = store.another_handle({});
  ospf_area *source = ospf_area_create(untracked, 0);
  ospf_area *destination = ospf_area_create(store, 0);
  ospf_area_area_id_set_value(untracked, 0, source, 17, &store.err);
  TraceLog trace;
  ospf_area_set(store, 0, destination, source, &store.err);
  EXPECT_EQ(store.err, 22u);
  EXPECT_EQ(store.last_error(), 22);
  EXPECT_TRUE(trace.has(3, "The object is not state tracked"));
  store.err = 0;
  EXPECT_EQ(ospf_area_area_id_get_value(store, 0, destination, &store.err), 17u);
  ospf_area_destroy(store, 0, source);
  ospf_area_destroy(store, 0, destination);
}

}  // namespace
