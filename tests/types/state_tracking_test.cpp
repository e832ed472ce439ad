// Direct access to state bytes: the gate, each form for fields and arrays, and all bytes at once.
#include <cstring>

#include "types/object_view.hpp"

namespace {

using namespace harness;

constexpr char not_tracked[] = "The object is not state tracked";
constexpr char non_tracked[] = "The object is non state tracked";

// An area made under a tracking handle.
class Area : public Single<ospf_area> {
 public:
  explicit Area(std::uint32_t tracking = KELP_TRACKING_ON)
      : Single(ospf_area_create, ospf_area_destroy, {.tracking = tracking}) {}
  std::uint8_t *states() { return area(object, types::ospf_area); }
};

// A network with three routers, made under a tracking handle.
class Network : public Single<ospfv2_network> {
 public:
  explicit Network(std::uint32_t tracking = KELP_TRACKING_ON)
      : Single(ospfv2_network_create, ospfv2_network_destroy, {.tracking = tracking}) {
    const std::uint32_t routers[] = {1, 2, 3};
    store(ospfv2_network_attached_router_set_mem, object, routers, 3);
  }
  std::uint8_t *states() { return area(object, types::ospfv2_network); }
  std::uint8_t *element_states() { return at<std::uint8_t *>(states(), 8); }
};

TEST(StateFlag, AFreshObjectIsUnwrittenAndASetterMarksItsFieldAlone) {
  Area area;
  Store &store = area.store;
  EXPECT_EQ(area(ospf_area_area_id_state_flag_get), 0);
  EXPECT_EQ(area(ospf_area_interfaces_state_flag_get), 0);
  area(ospf_area_area_id_set_value, 5);
  EXPECT_EQ(area(ospf_area_area_id_state_flag_get), 2);
  EXPECT_EQ(area(ospf_area_interfaces_state_flag_get), 0);
  EXPECT_EQ(area(ospf_area_area_scope_lsas_state_flag_get), 0);
  EXPECT_EQ(store.err, 0u);
}

TEST(StateFlag, TheLowEightBitsAreStoredAnnounced) {
  Area area;
  WriteWatch watch(area.store);
  area(ospf_area_area_scope_lsas_state_flag_set, 0x1234);
  EXPECT_EQ(area.states()[2], 0x34);
  EXPECT_EQ(ranges_in(watch, area.object), (Ranges{{130, 1}}));
  EXPECT_EQ(area.store.err, 0u);
}

TEST(StateFlag, TheLastErrorIsNeverCleared) {
  Area area;
  area.states()[0] = 7;
  CallLog log(area.store);
  EXPECT_EQ(area(ospf_area_area_id_state_flag_get), 7);
  EXPECT_TRUE(log.calls().empty());
  area(ospf_area_area_id_state_flag_set, 1);
  EXPECT_EQ(log.count("kelp_clear_last_error"), 0u);
}

TEST(StateFlag, AHandleWithoutADescriptorReadsAndWrites) {
  Area area;
  kelp_handle *plain = area.store.another_handle({});
  area.states()[1] = 9;
  EXPECT_EQ(ospf_area_interfaces_state_flag_get(plain, 0, area.object, &area.store.err), 9);
  ospf_area_interfaces_state_flag_set(plain, 0, area.object, 4, &area.store.err);
  EXPECT_EQ(area.states()[1], 4);
  EXPECT_EQ(area.store.err, 0u);
}

TEST(StateFlag, SwitchedOffTrackingFailsWithoutAMessage) {
  Area area;
  kelp_handle *off = area.store.another_handle({.tracking = KELP_TRACKING_OFF});
  area.states()[0] = 9;
  TraceLog trace;
  EXPECT_EQ(ospf_area_area_id_state_flag_get(off, 0, area.object, &area.store.err), 0);
  EXPECT_EQ(area.store.err, KELP_ERR_INVALID);
  EXPECT_EQ(kelp_handle_last_error(off, nullptr), KELP_ERR_INVALID);
  area.store.err = 0;
  ospf_area_area_id_state_flag_set(off, 0, area.object, 4, &area.store.err);
  EXPECT_EQ(area.store.err, KELP_ERR_INVALID);
  EXPECT_EQ(area.states()[0], 9);
  EXPECT_TRUE(trace.empty());
}

TEST(StateFlag, AnUntrackedObjectFailsWithTheMessageOfReadersOrOfWriters) {
  for (const std::uint32_t tracking : {KELP_TRACKING_ABSENT, KELP_TRACKING_ON}) {
    Area area(KELP_TRACKING_ABSENT);
    kelp_handle *handle = area.store.another_handle({.tracking = tracking});
    TraceLog trace;
    CallLog log(handle);
    EXPECT_EQ(ospf_area_area_id_state_flag_get(handle, 0, area.object, &area.store.err), 0);
    EXPECT_EQ(area.store.err, KELP_ERR_INVALID);
    area.store.err = 0;
    ospf_area_area_id_state_flag_set(handle, 0, area.object, 4, &area.store.err);
    EXPECT_EQ(area.store.err, KELP_ERR_INVALID);
    EXPECT_EQ(log.calls(), (Names{"kelp_store_err", "kelp_store_err"}));
    EXPECT_EQ(trace.texts(), (Names{non_tracked, not_tracked}));
    EXPECT_EQ(trace.messages()[0].level, 3u);
    EXPECT_EQ(trace.messages()[1].level, 3u);
  }
}

TEST(StateFlag, ACorruptedHandleEndsTheProcess) {
  Area area;
  EXPECT_FATAL(
      {
        area.store.handle()->sttr->sttr_mode = 0xEEEF;
        area(ospf_area_area_id_state_flag_get);
      },
      "Corrupted KELP Handle");
  EXPECT_FATAL(
      {
        area.store.handle()->sttr->sttr_mode = 0xEEEF;
        area(ospf_area_area_id_state_flag_set, 1);
      },
      "Corrupted KELP Handle");
}

TEST(StateFlag, ReadingTestsNoVariantAndWritingDoes) {
  Store store({.tracking = KELP_TRACKING_ON});
  store.set_variant("ospf_area", 0);
  OWNED(store, ospf_area, object);
  EXPECT_EQ(store(ospf_area_area_scope_lsas_state_flag_get, object), 0);
  EXPECT_EQ(store.err, 0u);
  store(ospf_area_area_scope_lsas_state_flag_set, object, 6);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(area(object.get(), types::ospf_area)[2], 0);
  store.err = 0;
  store.set_variant("ospf_area", 1);
  store(ospf_area_area_scope_lsas_state_flag_set, object, 6);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(header(object.get()).variant, 1);
  EXPECT_EQ(area(object.get(), types::ospf_area)[2], 6);
}

TEST(StateFlag, ANestedObjectsBytesLieInTheOutermostParent) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospf_interface, object);
  auto *settings = static_cast<ttl_security *>(
      place(object.get(), types::ospf_interface, fields::ospf_interface::ttl_security_val));
  store(ttl_security_hops_set_value, settings, 5);
  EXPECT_EQ(area(object.get(), types::ospf_interface)[24], 2);
  EXPECT_EQ(area(object.get(), types::ospf_interface)[22], 0);
  store(ttl_security_enabled_state_flag_set, settings, 9);
  EXPECT_EQ(area(object.get(), types::ospf_interface)[23], 9);
  EXPECT_EQ(store(ttl_security_hops_state_flag_get, settings), 2);
  EXPECT_EQ(store.err, 0u);
}

// --- arrays -------------------------------------------------------------------------------------

TEST(ArrayStateFlag, TheWholeHasAByteOfItsOwn) {
  Network network;
  Store &store = network.store;
  EXPECT_EQ(network(ospfv2_network_attached_router_state_flag_whole_get), 2);
  network(ospfv2_network_attached_router_state_flag_whole_set, 0x105);
  EXPECT_EQ(network.states()[1], 5);
  EXPECT_EQ(network.element_states()[0], 0);
  EXPECT_EQ(store.err, 0u);
}

TEST(ArrayStateFlag, AnElementsByteIsStoredAnnounced) {
  Network network;
  Store &store = network.store;
  WriteWatch watch(store);
  network(ospfv2_network_attached_router_state_flag_set, 2, 0x107);
  ASSERT_EQ(watch.writes().size(), 1u);
  EXPECT_EQ(watch.writes()[0].address, network.element_states() + 2);
  EXPECT_EQ(watch.writes()[0].length, 1u);
  EXPECT_EQ(network(ospfv2_network_attached_router_state_flag_get, 2), 7);
  EXPECT_EQ(network(ospfv2_network_attached_router_state_flag_get, 1), 0);
  EXPECT_EQ(store.err, 0u);
}

TEST(ArrayStateFlag, AnIndexAtTheCountIsRefused) {
  Network network;
  Store &store = network.store;
  EXPECT_EQ(network(ospfv2_network_attached_router_state_flag_get, 3), 0);
  store.expect_failure(KELP_ERR_NOT_FOUND);
  CallLog log(store);
  network(ospfv2_network_attached_router_state_flag_set, 3, 1);
  EXPECT_EQ(store.err, KELP_ERR_NOT_FOUND);
  EXPECT_EQ(log.calls(), (Names{"kelp_store_err"}));
}

TEST(ArrayStateFlag, TheElementsBytesAreHandedOutInPlace) {
  Network network;
  std::uint64_t address = 0;
  network(ospfv2_network_attached_router_state_flag_get_arr, &address);
  EXPECT_EQ(address, reinterpret_cast<std::uintptr_t>(network.element_states()));
  EXPECT_EQ(network.store.err, 0u);
}

TEST(ArrayStateFlag, BytesForTheElementsGoToTheBeginningOfTheObjectsArea) {
  Network network;
  Store &store = network.store;
  const std::uint8_t source[] = {11, 12, 13};
  network.element_states()[1] = 6;
  std::uint8_t *const elements = network.element_states();
  WriteWatch watch(store);
  network(ospfv2_network_attached_router_state_flag_set_arr, source, 3);
  EXPECT_EQ(store.err, 0u);
  EXPECT_TRUE(watch.writes().empty());
  EXPECT_EQ(std::memcmp(network.states(), source, 3), 0);
  EXPECT_EQ(network.element_states(), elements);
  const std::uint8_t kept[] = {0, 6, 0};
  EXPECT_EQ(std::memcmp(elements, kept, 3), 0);
}

TEST(ArrayStateFlag, AnotherCountThanTheArraysIsRefused) {
  Network network;
  Store &store = network.store;
  const std::uint8_t source[] = {11, 12, 13, 14};
  for (const std::uint32_t count : {2u, 4u}) {
    store.err = 0;
    network(ospfv2_network_attached_router_state_flag_set_arr, source, count);
    store.expect_failure(KELP_ERR_NOT_FOUND);
    EXPECT_EQ(network.states()[0], 0);
  }
}

TEST(ArrayStateFlag, EachFormHasTheGate) {
  Network network(KELP_TRACKING_ABSENT);
  Store &store = network.store;
  kelp_handle *off = store.another_handle({.tracking = KELP_TRACKING_OFF});
  ospfv2_network *object = network.object;
  std::uint8_t source[3] = {};
  std::uint64_t out = 1;
  const auto run = [&](kelp_handle *handle) {
    const auto expect_refused = [&] {
      EXPECT_EQ(store.err, KELP_ERR_INVALID);
      store.err = 0;
    };
    ospfv2_network_attached_router_state_flag_whole_get(handle, 0, object, &store.err);
    expect_refused();
    ospfv2_network_attached_router_state_flag_get(handle, 0, object, 9, &store.err);
    expect_refused();
    ospfv2_network_attached_router_state_flag_get_arr(handle, 0, object, &out, &store.err);
    expect_refused();
    ospfv2_network_attached_router_state_flag_whole_set(handle, 0, object, 1, &store.err);
    expect_refused();
    ospfv2_network_attached_router_state_flag_set(handle, 0, object, 9, 1, &store.err);
    expect_refused();
    ospfv2_network_attached_router_state_flag_set_arr(handle, 0, object, source, 9, &store.err);
    expect_refused();
  };
  TraceLog trace;
  run(off);
  EXPECT_TRUE(trace.empty());
  run(store);
  EXPECT_EQ(trace.texts(),
            (Names{non_tracked, non_tracked, non_tracked, not_tracked, not_tracked, not_tracked}));
  EXPECT_EQ(out, 1u);
}

TEST(ArrayStateFlag, EachPlaceHasAMessageOfItsOwn) {
  Network network(KELP_TRACKING_ABSENT);
  Store &store = network.store;
  std::uint64_t out = 0;
  TraceLog trace;
  network(ospfv2_network_attached_router_state_flag_whole_get);
  store.err = 0;
  network(ospfv2_network_attached_router_state_flag_get, 0);
  store.err = 0;
  network(ospfv2_network_attached_router_state_flag_get_arr, &out);
  ASSERT_EQ(trace.messages().size(), 3u);
  EXPECT_EQ(trace.messages()[1].index, trace.messages()[0].index + 1);
  EXPECT_EQ(trace.messages()[2].index, trace.messages()[0].index + 2);
}

// --- all bytes at once --------------------------------------------------------------------------

TEST(AllStateFlags, EveryByteIsFilledUnannouncedNestedBlocksIncluded) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospf_interface, object);
  CallLog log(store);
  ospf_interface_set_all_state_tracking_flag(store, 0, object, 0x103);
  EXPECT_TRUE(log.calls().empty());
  const std::vector<std::uint8_t> filled(42, 3);
  EXPECT_EQ(std::memcmp(area(object.get(), types::ospf_interface), filled.data(), filled.size()),
            0);
}

TEST(AllStateFlags, EmptyArraysAreLeftWithThePatternInTheirPointers) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospfv2_link_tlv, object);
  ospfv2_link_tlv_set_all_state_tracking_flag(store, 0, object, 2);
  std::uint8_t *states = area(object.get(), types::ospfv2_link_tlv);
  EXPECT_EQ(at<std::uint64_t>(states, 8), 0x0202020202020202u);
  EXPECT_EQ(at<std::uint64_t>(states, 24), 0x0202020202020202u);
  EXPECT_EQ(states[39], 2);
  EXPECT_EQ(store(ospfv2_link_tlv_local_if_ipv4_addr_state_flag_whole_get, object), 2);
  // No valid pointer is left there, so that destroy must not meet it.
  at<std::uint64_t>(states, 8) = 0;
  at<std::uint64_t>(states, 24) = 0;
}

TEST(AllStateFlags, ANestedObjectFillsItsBlockAlone) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospf_interface, object);
  auto *settings = static_cast<fast_reroute *>(
      place(object.get(), types::ospf_interface, fields::ospf_interface::fast_reroute_val));
  fast_reroute_set_all_state_tracking_flag(store, 0, settings, 7);
  const std::uint8_t *states = area(object.get(), types::ospf_interface);
  const std::uint8_t around[] = {0, 7, 7, 7, 0};
  EXPECT_EQ(std::memcmp(states + 9, around, sizeof around), 0);
}

TEST(AllStateFlags, OnlyATrackingHandleAndATrackedObjectDoAnything) {
  Area tracked;
  kelp_handle *plain = tracked.store.another_handle({});
  kelp_handle *off = tracked.store.another_handle({.tracking = KELP_TRACKING_OFF});
  kelp_handle *corrupted = tracked.store.another_handle({.tracking = KELP_TRACKING_ON});
  corrupted->sttr->sttr_mode = 1;
  TraceLog trace;
  for (kelp_handle *handle : {plain, off, corrupted}) {
    ospf_area_set_all_state_tracking_flag(handle, 0, tracked.object, 5);
  }
  EXPECT_EQ(tracked.states()[0], 0);
  header(tracked.object).obj_flags = 0;
  ospf_area_set_all_state_tracking_flag(tracked.store, 0, tracked.object, 5);
  EXPECT_EQ(tracked.states()[0], 0);
  header(tracked.object).obj_flags = OBJ_STATE_TRACKED;
  ospf_area_set_all_state_tracking_flag(tracked.store, 0, tracked.object, 5);
  EXPECT_EQ(tracked.states()[0], 5);
  EXPECT_TRUE(trace.empty());
  corrupted->sttr->sttr_mode = STTR_MODE_ON;
}

}  // namespace
