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
  store(ospfv2_network_attached_router_set_mem, network, routers.data(),
        static_cast<std::uint32_t>(routers.size()));
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
  store(ospfv2_network_clone, source, &destination, work.data(), work.size());
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
  OWNED(store, ospf_authentication, source);
  kelp_vstring *chain = kelp_vstring_create(store, 0);
  store(kelp_vstring_assign, chain, "chain", 5);
  store(ospf_authentication_key_chain_set, source, chain);
  ospf_authentication *copy = ospf_authentication_clone_cr(store, source);
  ASSERT_NE(copy, nullptr);
  const kelp_vstring *cloned = store(ospf_authentication_key_chain_get, copy);
  ASSERT_NE(cloned, nullptr);
  EXPECT_NE(cloned, chain);
  EXPECT_STREQ(kelp_vstring_text(cloned), "chain");
  EXPECT_EQ(ospf_authentication_compare(source, copy), 0);
  ospf_authentication_destroy(store, 0, copy);
}

TEST(Clone, StateBytesComeAlongWhenTheHandleTracks) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospfv2_network, source);
  const std::uint32_t router = 7;
  store(ospfv2_network_attached_router_set, source, 1, &router);
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
  ospfv2_network_destroy(store, 0, copy);
}

TEST(Clone, KeepsTheVariantOfTheSourceAboveTheDomains) {
  Store store;
  OWNED(store, ospf_area, source);
  ASSERT_EQ(kelp_get_instance_variant(source, 1, 0), 1);
  store.set_variant("ospf_area", 0);
  ospf_area *copy = ospf_area_clone_cr(store, source);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(kelp_get_instance_variant(copy, 1, 0), 1);
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
  store(ospf_area_interfaces_set_by_ref, source,
        reinterpret_cast<tbl_ospf_interface_table *>(table));
  EXPECT_EQ(kelp_handle_oid_references(handle, table), 1);
  ospf_area *copy = ospf_area_clone_cr(handle, source);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(kelp_handle_oid_references(handle, table), 1) << "the clone's reference is uncounted";
  EXPECT_EQ(store(ospf_area_interfaces_get_by_ref, copy),
            reinterpret_cast<tbl_ospf_interface_table *>(table));
  EXPECT_EQ(store.err, 0u);
  ospf_area_destroy(store, 0, copy);
  EXPECT_EQ(kelp_handle_oid_references(handle, table), 0) << "and its destroy drops one";
  ospf_area_destroy(store, 0, source);
  handle->obj_free(handle->obj_pool, 0, table);
}

TEST(Clone, ObjectFlagsOfTheSourceAreDropped) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospf_area, source);
  ospf_area_set_instance_embedded(store, 0, source);
  const auto flags_of = [](const ospf_area *area) {
    return reinterpret_cast<const kelp_object_header *>(area)->obj_flags;
  };
  ASSERT_EQ(flags_of(source.get()), OBJ_EMBEDDED | OBJ_STATE_TRACKED);
  ospf_area *copy = ospf_area_clone_cr(store, source);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(flags_of(copy), OBJ_STATE_TRACKED);
  ospf_area_destroy(store, 0, copy);
}

TEST(CloneInternal, AGivenDestinationIsOverwrittenInPlace) {
  Store store({.may_leave = 1});  // the destination's old element block is replaced, not released
  WorkBuffer work;
  ospfv2_network *source = make_network(store, {1, 2});
  ospfv2_network *destination = make_network(store, {9});
  ospfv2_network *const held = destination;
  store(ospfv2_network_clone_internal, source, &destination, work.data(), work.size());
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(destination, held);
  EXPECT_EQ(routers_of(held), (Words{1, 2}));
  ospfv2_network_destroy(store, 0, source);
  ospfv2_network_destroy(store, 0, destination);
}

TEST(CloneInternal, RegistersTheModuleForTraceOnlyWhenItMakesTheObject) {
  Store store;
  WorkBuffer work;
  OWNED(store, ospf_area, source);
  ospf_area *destination = nullptr;
  {
    CallLog calls;
    store(ospf_area_clone_internal, source, &destination, work.data(), work.size());
    EXPECT_EQ(calls.count("xlog_module_init_fn"), 1u);
  }
  {
    CallLog calls;
    store(ospf_area_clone_internal, source, &destination, work.data(), work.size());
    EXPECT_EQ(calls.count("xlog_module_init_fn"), 0u);
  }
  EXPECT_EQ(store.err, 0u);
  ospf_area_destroy(store, 0, destination);
}

// --- failures -----------------------------------------------------------------------------------

TEST(CloneFailure, ANullDestinationOrWorkBufferIsNotFoundAndNothingIsDone) {
  Store store;
  WorkBuffer work;
  OWNED(store, ospf_area, source);
  ospf_area *destination = source;
  const auto expect_refused = [&] { store.expect_failure(KELP_ERR_NOT_FOUND); };
  store(ospf_area_clone_internal, source, nullptr, work.data(), work.size());
  expect_refused();
  store(ospf_area_clone, source, nullptr, work.data(), work.size());
  expect_refused();
  store(ospf_area_clone_internal, source, &destination, nullptr, work.size());
  expect_refused();
  EXPECT_EQ(destination, source);
  store(ospf_area_clone, source, &destination, nullptr, work.size());
  expect_refused();
  EXPECT_EQ(destination, nullptr);
}

TEST(CloneFailure, AnObjectThatCannotBeMadeIsNoMemory) {
  Store store;
  WorkBuffer work;
  OWNED(store, ospf_area, source);
  ospf_area *destination = nullptr;
  store.fail_allocation(0);
  store(ospf_area_clone_internal, source, &destination, work.data(), work.size());
  store.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(destination, nullptr);
}

TEST(CloneFailure, AWorkBufferThatIsTooSmallFailsInTheWriterAndKeepsTheDestination) {
  Store store;
  WorkBuffer work;
  OWNED(store, ospf_area, source);
  ospf_area *destination = source;
  store(ospf_area_clone_internal, source, &destination, work.data(), 20);
  store.expect_failure(KELP_ERR_NO_ROOM);
  EXPECT_EQ(destination, source);
}

// Reading the image needs a block for the elements; without it the object goes again.
TEST(CloneFailure, AnImageThatCannotBeReadEndsTheNewObject) {
  Store store;
  ospfv2_network *source = make_network(store, {1, 2});
  store.fail_allocation(1);
  EXPECT_EQ(ospfv2_network_clone_cr(store, source), nullptr);
  EXPECT_EQ(store.handle()->cr_err, KELP_ERR_NO_MEMORY);
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
  store(ospfv2_network_clone_internal, source, &destination, work.data(), work.size());
  EXPECT_EQ(store.err, KELP_ERR_NO_MEMORY);
  EXPECT_EQ(destination, nullptr);
  EXPECT_EQ(calls.count("kelplib_type_stats_destroy_object"), 1u);
  EXPECT_LT(store.live_allocations(), live);
  ospfv2_network_destroy(store, 0, source);
}

// --- the forms with the handle's work space -----------------------------------------------------

TEST(CloneCr, UsesTheHandlesWorkSpaceAndErrorWord) {
  Store store;
  kelp_handle *handle = store;
  OWNED(store, ospf_area, source);
  handle->cr_err = 5;
  EXPECT_EQ(ospf_area_clone_cr(handle, source), nullptr);
  EXPECT_EQ(handle->cr_err, 5u);
  handle->cr_err = 0;
  CallLog calls;
  ospf_area *copy = ospf_area_clone_cr(handle, source);
  EXPECT_NE(copy, nullptr);
  EXPECT_EQ(calls.count("kelplib_get_handle_ws"), 1u);
  ospf_area_destroy(store, 0, copy);
}

TEST(CloneCr, AWorkSpaceThatIsTooSmallFails) {
  Store store({.work_space_size = 16});
  OWNED(store, ospf_area, source);
  EXPECT_EQ(ospf_area_clone_cr(store, source), nullptr);
  EXPECT_EQ(store.handle()->cr_err, KELP_ERR_NO_ROOM);
  store.handle()->cr_err = 0;
}

TEST(CopyCr, OverwritesTheDestinationAtItsAddress) {
  Store store;
  OWNED(store, ospf_area, source);
  OWNED(store, ospf_area, destination);
  store(ospf_area_area_id_set_value, source, 17);
  store(ospf_area_area_id_set_value, destination, 4);
  const std::uint64_t live = store.live_allocations();
  ospf_area_copy_cr(store, source, destination);
  EXPECT_EQ(store.handle()->cr_err, 0u);
  EXPECT_EQ(store.live_allocations(), live);
  EXPECT_EQ(store(ospf_area_area_id_get_value, destination), 17u);
  EXPECT_EQ(ospf_area_compare(source, destination), 0);
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

}  // namespace
