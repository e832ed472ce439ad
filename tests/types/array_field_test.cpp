// Array fields: growth, replacement and release of the element blocks and of the state bytes beside
// them, their announced writes, their failures, and the trace of the first growth.
#include <kelp/primitives.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <numeric>

#include "harness/harness.hpp"
#include "model/layout.hpp"
#include "ospf_harbor_oper.h"

namespace {

using harness::CallLog;
using harness::Single;
using harness::Store;
using harness::TraceLog;
using harness::WriteWatch;
namespace model = harbor::model;

using Words = std::vector<std::uint32_t>;
using Bytes = std::vector<std::uint8_t>;
using Names = std::vector<std::string>;

constexpr char not_tracked[] = "The object is not state tracked";

// The growth of a field is traced once in the life of a process, so what is said about it is asked
// in a process of its own.
#define EXPECT_IN_FRESH_PROCESS(statement)                 \
  GTEST_FLAG_SET(death_test_style, "threadsafe");          \
  EXPECT_EXIT(                                             \
      {                                                    \
        statement;                                         \
        std::_Exit(::testing::Test::HasFailure() ? 1 : 0); \
      },                                                   \
      ::testing::ExitedWithCode(0), "")

// Where an array lies in its object, and its state bytes behind the object.
struct Place {
  std::size_t count;
  std::size_t store;
  std::size_t object_size;
  std::size_t whole_state;
  std::size_t element_states;
};

// The state places are those of the layout that other processes rely on.
constexpr Place routers{
    model::offset(model::types::ospfv2_network, model::fields::ospfv2_network::attached_router_num),
    model::offset(model::types::ospfv2_network, model::fields::ospfv2_network::attached_router),
    model::object_size(model::types::ospfv2_network), 1, 8};
constexpr Place local_addresses{
    model::offset(model::types::ospfv2_link_tlv,
                  model::fields::ospfv2_link_tlv::local_if_ipv4_addr_num),
    model::offset(model::types::ospfv2_link_tlv,
                  model::fields::ospfv2_link_tlv::local_if_ipv4_addr),
    model::object_size(model::types::ospfv2_link_tlv), 2, 8};

template <typename Value>
Value &at(void *object, std::size_t offset) {
  return *reinterpret_cast<Value *>(static_cast<char *>(object) + offset);
}
std::uint32_t &count_of(void *object, const Place &place) {
  return at<std::uint32_t>(object, place.count);
}
void *&store_of(void *object, const Place &place) { return at<void *>(object, place.store); }
std::uint8_t &whole_state(void *object, const Place &place) {
  return at<std::uint8_t>(object, place.object_size + place.whole_state);
}
std::uint8_t *&element_states(void *object, const Place &place) {
  return at<std::uint8_t *>(object, place.object_size + place.element_states);
}
Bytes states_of(void *object, const Place &place) {
  const std::uint8_t *states = element_states(object, place);
  return states == nullptr ? Bytes{} : Bytes(states, states + count_of(object, place));
}

// The sizes that obj_alloc is asked for while this lives. Blocks come full of 0xCC, so that what is
// not zeroed shows; refuse makes it give null.
class AllocationLog {
 public:
  explicit AllocationLog(kelp_handle *handle) : handle_(handle), real_(handle->obj_alloc) {
    current = this;
    handle->obj_alloc = [](void *pool, std::uint32_t space_id, std::size_t size) -> void * {
      current->sizes.push_back(size);
      if (current->refuse) return nullptr;
      void *block = current->real_(pool, space_id, size);
      if (block != nullptr) std::memset(block, 0xCC, size);
      return block;
    };
  }
  ~AllocationLog() { handle_->obj_alloc = real_; }
  std::vector<std::size_t> sizes;
  bool refuse = false;

 private:
  static inline AllocationLog *current = nullptr;
  kelp_handle *handle_;
  void *(*real_)(void *, std::uint32_t, std::size_t);
};
using Sizes = std::vector<std::size_t>;

// An OSPFv2 network with router IDs, under the given tracking.
class Network : public Single<ospfv2_network> {
 public:
  explicit Network(std::uint32_t tracking = KELP_TRACKING_ABSENT)
      : Single(ospfv2_network_create, ospfv2_network_destroy, {.tracking = tracking}) {}

  void fill(const Words &values) {
    replace(values);
    ASSERT_EQ(store.err, 0u);
  }
  void set(std::uint32_t index, std::uint32_t value) {
    store(ospfv2_network_attached_router_set, object, index, &value);
  }
  void set_value(std::uint32_t index, std::uint32_t value) {
    store(ospfv2_network_attached_router_set_value, object, index, value);
  }
  void replace(const Words &values) {
    store(ospfv2_network_attached_router_set_mem, object, values.data(),
          static_cast<std::uint32_t>(values.size()));
  }
  // What lies in the block, past all rules.
  Words content() {
    const auto *values = static_cast<const std::uint32_t *>(store_of(object, routers));
    return values == nullptr ? Words{} : Words(values, values + count_of(object, routers));
  }
  Bytes states() { return states_of(object, routers); }
  // The object's own bytes, its state bytes included.
  Bytes image() {
    const auto *bytes = reinterpret_cast<const std::uint8_t *>(object);
    return Bytes(bytes, bytes + ospfv2_network_sizeof(store));
  }
};

// An object without state bytes under a handle that tracks.
class UntrackedNetwork : public Network {
 public:
  UntrackedNetwork() { tracking = store.another_handle({.tracking = KELP_TRACKING_ON}); }
  void expect_refusal(std::uint32_t code) {
    EXPECT_EQ(store.err, code);
    EXPECT_EQ(kelp_handle_last_error(tracking, nullptr), static_cast<std::int32_t>(code));
  }
  kelp_handle *tracking;
};

// A link TLV with its two arrays of addresses.
class LinkTlv : public Single<ospfv2_link_tlv> {
 public:
  explicit LinkTlv(std::uint32_t tracking = KELP_TRACKING_ABSENT)
      : Single(ospfv2_link_tlv_create, ospfv2_link_tlv_destroy, {.tracking = tracking}) {}
  void set(std::uint32_t index, std::uint32_t address) {
    ip_address source = ip_address_make_ipv4(address);
    store(ospfv2_link_tlv_local_if_ipv4_addr_set, object, index, &source);
  }
  std::uint32_t address(std::uint32_t index) {
    const ip_address *element = store(ospfv2_link_tlv_local_if_ipv4_addr_get, object, index);
    if (element == nullptr || element->family != KELP_AF_IPV4) return 0;
    const std::uint8_t *bytes = element->bytes;
    return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
           static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
  }
};

// --- reading ------------------------------------------------------------------------------------

TEST(ArrayFieldGet, AnIndexEqualToTheCountIsNotFound) {
  Network network;
  network.fill({7, 8});
  EXPECT_EQ(network(ospfv2_network_attached_router_get, 2), nullptr);
  network.expect_failure(KELP_ERR_NOT_FOUND);
  EXPECT_EQ(network(ospfv2_network_attached_router_get_value, 2), 0u);
  network.expect_failure(KELP_ERR_NOT_FOUND);
  EXPECT_EQ(network.content(), (Words{7, 8}));
}

TEST(ArrayFieldGet, GivesThePlaceOfTheElementInTheBlock) {
  Network network;
  network.fill({7, 8, 9});
  const std::uint32_t *place = network(ospfv2_network_attached_router_get, 2);
  EXPECT_EQ(place, static_cast<std::uint32_t *>(store_of(network.object, routers)) + 2);
  EXPECT_EQ(network(ospfv2_network_attached_router_get_value, 1), 8u);
  EXPECT_EQ(network.store.err, 0u);
}

TEST(ArrayFieldGet, AnEmptyArrayHasNoElement) {
  LinkTlv tlv;
  EXPECT_EQ(tlv(ospfv2_link_tlv_local_if_ipv4_addr_get, 0), nullptr);
  tlv.store.expect_failure(KELP_ERR_NOT_FOUND);
}

TEST(ArrayFieldGetValue, TestsErrorWordAndVariantTwice) {
  Network network;
  network.fill({7});
  CallLog calls;
  network(ospfv2_network_attached_router_get_value, 0);
  EXPECT_EQ(calls.calls(), (Names{"kelp_clear_last_error", "kelp_get_instance_variant",
                                  "kelp_clear_last_error", "kelp_get_instance_variant",
                                  "u_int32_sizeof", "u_int32_get", "u_int32_get_value"}));
}

TEST(ArrayFieldGetMem, ACountOfZeroSucceedsAndCopiesNothing) {
  Network network;
  std::uint32_t destination = 5;
  network(ospfv2_network_attached_router_get_mem, &destination, 0);
  EXPECT_EQ(network.store.err, 0u);
  network.fill({7, 8});
  network(ospfv2_network_attached_router_get_mem, &destination, 0);
  EXPECT_EQ(network.store.err, 0u);
  EXPECT_EQ(destination, 5u);
}

TEST(ArrayFieldGetMem, TheStoredCountCopiesAllInOneBlock) {
  Network network;
  network.fill({7, 8, 9});
  Words destination(4, 5);
  WriteWatch watch(network.store);
  CallLog calls;
  network(ospfv2_network_attached_router_get_mem, destination.data(), 3);
  EXPECT_EQ(network.store.err, 0u);
  EXPECT_EQ(destination, (Words{7, 8, 9, 5}));
  EXPECT_EQ(calls.count("u_int32_get") + calls.count("u_int32_get_value"), 0u);
  EXPECT_TRUE(watch.all().empty());
}

TEST(ArrayFieldGetMem, ACountAboveTheStoredOneIsInvalidAndCopiesNothing) {
  Network network;
  network.fill({7, 8});
  Words destination(3, 5);
  network(ospfv2_network_attached_router_get_mem, destination.data(), 3);
  network.expect_failure(KELP_ERR_INVALID);
  EXPECT_EQ(destination, Words(3, 5));
}

TEST(ArrayFieldGet, AVariantBelowTheFloorIsRefused) {
  Network network;
  network.fill({7});
  at<std::int8_t>(network.object, 8) = -1;
  EXPECT_EQ(network(ospfv2_network_attached_router_get, 0), nullptr);
  network.expect_failure(KELP_ERR_EPOCH);
  std::uint32_t destination = 5;
  network(ospfv2_network_attached_router_get_mem, &destination, 1);
  network.expect_failure(KELP_ERR_EPOCH);
  EXPECT_EQ(destination, 5u);
  at<std::int8_t>(network.object, 8) = 0;
}

// --- the growing write --------------------------------------------------------------------------

TEST(ArrayFieldSet, AnIndexFarPastTheCountKeepsOldElementsAndLeavesZeroesBetween) {
  Network network(KELP_TRACKING_ON);
  const AllocationLog dirty(network.store);
  network.set(0, 7);
  network.set(1, 8);
  network.set(5, 9);
  EXPECT_EQ(network.store.err, 0u);
  EXPECT_EQ(network.content(), (Words{7, 8, 0, 0, 0, 9}));
  EXPECT_EQ(network.states(), (Bytes{2, 2, 0, 0, 0, 2}));
  EXPECT_EQ(whole_state(network.object, routers), 2);
  EXPECT_EQ(network(ospfv2_network_attached_router_num_get_value), 6u);
}

TEST(ArrayFieldSet, OnlyTheWrittenIndexOfAReplacedArrayIsMarked) {
  Network network(KELP_TRACKING_ON);
  network.fill({1, 2});
  network.set(4, 9);
  EXPECT_EQ(network.content(), (Words{1, 2, 0, 0, 9}));
  EXPECT_EQ(network.states(), (Bytes{0, 0, 0, 0, 2}));
}

TEST(ArrayFieldSet, ANullSourcePastTheEndGrowsAndMarksNothing) {
  Network network(KELP_TRACKING_ON);
  const AllocationLog dirty(network.store);
  network(ospfv2_network_attached_router_set, 2, nullptr);
  EXPECT_EQ(network.store.err, 0u);
  EXPECT_EQ(network.content(), Words(3, 0));
  EXPECT_EQ(network.states(), Bytes(3, 0));
  EXPECT_EQ(whole_state(network.object, routers), 0);
}

TEST(ArrayFieldSet, AnIndexBelowTheCountAllocatesNothingAndTracesNothing) {
  Network network(KELP_TRACKING_ON);
  network.fill({1, 2});
  AllocationLog allocations(network.store);
  TraceLog trace;
  network.set(1, 9);
  EXPECT_TRUE(allocations.sizes.empty());
  EXPECT_TRUE(trace.empty());
  EXPECT_EQ(network.content(), (Words{1, 9}));
  EXPECT_EQ(network.states(), (Bytes{0, 2}));
}

TEST(ArrayFieldSet, GrowsToExactlyOneMoreThanTheIndex) {
  Network network(KELP_TRACKING_ON);
  AllocationLog allocations(network.store);
  network.set(0, 1);
  network.set(1, 2);
  network.set(5, 3);
  EXPECT_EQ(allocations.sizes, (Sizes{4, 1, 8, 2, 24, 6}));
}

void expect_growth_traced_once() {
  TraceLog trace;
  LinkTlv tlv;
  const ip_address address = ip_address_make_ipv4(1);
  ip_address source = address;
  tlv.set(0, 1);
  EXPECT_TRUE(trace.empty()) << "the first allocation is no growth";
  tlv.set(1, 2);
  EXPECT_EQ(trace.texts(), (Names{"Reallocating resource for ospfv2_link_tlv"}));
  EXPECT_EQ(trace.messages().front().level, 3u);
  const std::uint32_t index = trace.messages().front().index;
  trace.clear();
  tlv.set(2, 3);
  LinkTlv other;
  other.set(0, 1);
  other.set(1, 2);
  EXPECT_TRUE(trace.empty()) << "later growth of the field is silent in every object";

  tlv(ospfv2_link_tlv_local_remote_ipv4_addr_set, 0, &source);
  EXPECT_TRUE(trace.empty());
  tlv(ospfv2_link_tlv_local_remote_ipv4_addr_set, 1, &source);
  EXPECT_EQ(trace.texts(), (Names{"Reallocating resource for ospfv2_link_tlv"}));
  EXPECT_EQ(trace.messages().front().index, index + 1) << "each field has a message of its own";
  EXPECT_EQ(tlv.store.err, 0u);
}

TEST(ArrayFieldSet, TheFirstGrowthOfEachFieldIsTracedOnceInAProcess) {
  EXPECT_IN_FRESH_PROCESS(expect_growth_traced_once());
}

void expect_growth_traced_before_failed_allocation() {
  Network network;
  network.fill({1});
  TraceLog trace;
  network.store.fail_allocation(0);
  network.set(1, 2);
  network.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(trace.texts(), (Names{"Reallocating resource for ospfv2_network"}));
  network.store.err = 0;
  trace.clear();
  network.set(1, 2);
  EXPECT_TRUE(trace.empty());
}

TEST(ArrayFieldSet, AGrowthThatFindsNoMemoryIsTracedAllTheSame) {
  EXPECT_IN_FRESH_PROCESS(expect_growth_traced_before_failed_allocation());
}

TEST(ArrayFieldSet, TheVeryFirstElementAllocatesWithoutATrace) {
  EXPECT_IN_FRESH_PROCESS({
    TraceLog trace;
    Network network;
    network.set(3, 1);
    EXPECT_EQ(network.content(), (Words{0, 0, 0, 1}));
    EXPECT_TRUE(trace.empty());
  });
}

// What the growth of a tracked array does, in order, with the ranges that it announces.
TEST(ArrayFieldSet, AnnouncesPointerCountStatesElementAndMarksInOrder) {
  Network network(KELP_TRACKING_ON);
  network.fill({1, 2});
  char *const object = reinterpret_cast<char *>(network.object);
  WriteWatch watch(network.store);
  std::uint32_t value = 9;
  ospfv2_network_attached_router_set(network.store, 17, network.object, 3, &value,
                                     &network.store.err);
  const auto writes = watch.writes();
  ASSERT_EQ(writes.size(), 6u);
  const auto expect_write = [&](std::size_t n, const void *address, std::size_t length) {
    EXPECT_EQ(writes[n].address, address) << n;
    EXPECT_EQ(writes[n].length, length) << n;
    EXPECT_EQ(writes[n].space_id, 17u) << n;
  };
  expect_write(0, object + routers.store, 8);
  expect_write(1, object + routers.count, 4);
  expect_write(2, object + routers.object_size + routers.element_states, 8);
  expect_write(3, static_cast<std::uint32_t *>(store_of(network.object, routers)) + 3, 4);
  expect_write(4, object + routers.object_size + routers.whole_state, 1);
  expect_write(5, element_states(network.object, routers) + 3, 1);
}

TEST(ArrayFieldSet, FreesTheOldBlockBeforeTheCountChanges) {
  Network network;
  network.fill({1});
  CallLog calls(network.store);
  network.set(1, 2);
  EXPECT_EQ(calls.only({"obj_alloc", "obj_free", "write_notify", "u_int32_set"}),
            (Names{"obj_alloc", "write_notify", "obj_free", "write_notify", "u_int32_set",
                   "write_notify"}));
}

TEST(ArrayFieldSet, FreesTheOldStatesAfterTheNewOnesAreFilled) {
  Network network(KELP_TRACKING_ON);
  network.set(0, 1);
  CallLog calls(network.store);
  network.set(1, 2);
  EXPECT_EQ(
      calls.only({"obj_alloc", "obj_free", "write_notify", "u_int32_set"}),
      (Names{"obj_alloc", "write_notify", "obj_free", "write_notify", "write_notify", "obj_alloc",
             "obj_free", "u_int32_set", "write_notify", "write_notify", "write_notify"}));
}

TEST(ArrayFieldSet, AdjustsTheVariantBeforeItLooksAtIt) {
  Network network;
  network.fill({1});
  at<std::int8_t>(network.object, 8) = -1;
  network.set(0, 4);
  EXPECT_EQ(network.store.err, 0u);
  EXPECT_EQ(at<std::int8_t>(network.object, 8), 0);
  EXPECT_EQ(network.content(), (Words{4}));
}

TEST(ArrayFieldSet, AFailedAllocationOfTheBlockLeavesTheArrayAsItWas) {
  for (const std::uint32_t tracking : {KELP_TRACKING_ABSENT, KELP_TRACKING_OFF, KELP_TRACKING_ON}) {
    Network network(tracking);
    network.set(0, 7);
    const Bytes before = network.image();
    network.store.fail_allocation(0);
    network.set(3, 9);
    network.expect_failure(KELP_ERR_NO_MEMORY);
    EXPECT_EQ(network.image(), before);
    EXPECT_EQ(network.content(), (Words{7}));
    network.store.err = 0;
  }
}

TEST(ArrayFieldSet, AFailedAllocationOfTheStatesLeavesThemNullBesideTheGrownBlock) {
  Network network(KELP_TRACKING_ON);
  network.set(0, 7);
  network.store.fail_allocation(1);
  network.set(3, 9);
  network.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(network.content(), (Words{7, 0, 0, 0})) << "the element itself is not written";
  EXPECT_EQ(element_states(network.object, routers), nullptr);
  network.store.err = 0;
  network.set(3, 9);
  EXPECT_EQ(network.store.err, 0u);
  EXPECT_EQ(network.content(), (Words{7, 0, 0, 9}));
  EXPECT_EQ(element_states(network.object, routers), nullptr);
  network.set(4, 1);
  EXPECT_EQ(network.states(), (Bytes{0, 0, 0, 0, 2}));
}

TEST(ArrayFieldSet, ATrackingHandleRefusesAnUntrackedObjectBeforeAnyChange) {
  UntrackedNetwork network;
  network.fill({7});
  const Bytes before = network.image();
  const std::uint32_t value = 9;
  for (const std::uint32_t index : {0u, 3u}) {
    TraceLog trace;
    WriteWatch watch(network.tracking);
    ospfv2_network_attached_router_set(network.tracking, 0, network.object, index, &value,
                                       &network.store.err);
    network.expect_refusal(KELP_ERR_INVALID);
    EXPECT_EQ(trace.texts(), (Names{not_tracked}));
    EXPECT_TRUE(trace.has(3, not_tracked));
    EXPECT_TRUE(watch.all().empty());
    EXPECT_EQ(network.image(), before);
    EXPECT_EQ(network.content(), (Words{7}));
    network.store.err = 0;
  }
}

TEST(ArrayFieldSet, WithoutTrackingNoStateIsLookedAt) {
  Network network(KELP_TRACKING_ON);
  network.set(0, 7);
  kelp_handle *off = network.store.another_handle({.tracking = KELP_TRACKING_OFF});
  const std::uint32_t value = 9;
  at<std::uint8_t>(network.object, 10) &= static_cast<std::uint8_t>(~OBJ_STATE_TRACKED);
  ospfv2_network_attached_router_set(off, 0, network.object, 0, &value, &network.store.err);
  at<std::uint8_t>(network.object, 10) |= OBJ_STATE_TRACKED;
  EXPECT_EQ(network.store.err, 0u);
  EXPECT_EQ(network.content(), (Words{9}));
  EXPECT_EQ(network.states(), (Bytes{2}));
}

TEST(ArrayFieldSet, ACorruptTrackingModeEndsTheProcess) {
  Network network(KELP_TRACKING_ON);
  const std::uint32_t value = 1;
  EXPECT_FATAL(
      {
        network.store.handle()->sttr->sttr_mode = 1;
        network(ospfv2_network_attached_router_set, 0, &value);
      },
      "Corrupted KELP Handle");
}

TEST(ArrayFieldSet, AnEmbeddedObjectMarksItsBlockInTheParentsArea) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospfv2_lsa_body, body);
  ospfv2_network *network = store(ospfv2_lsa_body_network_get, body);
  ASSERT_NE(network, nullptr);
  const std::uint32_t value = 9;
  store(ospfv2_network_attached_router_set, network, 1, &value);
  EXPECT_EQ(store.err, 0u);
  std::uint8_t *area =
      reinterpret_cast<std::uint8_t *>(network) + kelplib_get_sttr_offset(store, 0, network);
  EXPECT_GE(area, reinterpret_cast<std::uint8_t *>(body.get()) +
                      model::object_size(model::types::ospfv2_lsa_body));
  EXPECT_EQ(area[routers.whole_state], 2);
  const std::uint8_t *states = at<std::uint8_t *>(area, routers.element_states);
  ASSERT_NE(states, nullptr);
  EXPECT_EQ(Bytes(states, states + 2), (Bytes{0, 2}));
}

TEST(ArrayFieldSetCr, UsesTheHandlesSpaceAndErrorWord) {
  Network network;
  kelp_handle *handle = network.store;
  handle->cr_space_id = 23;
  WriteWatch watch(handle);
  EXPECT_EQ(ospfv2_network_attached_router_set_cr(handle, network.object, 1, 9), 0u);
  EXPECT_EQ(network.content(), (Words{0, 9}));
  ASSERT_FALSE(watch.writes().empty());
  for (const auto &write : watch.writes()) EXPECT_EQ(write.space_id, 23u);

  network.store.fail_allocation(0);
  EXPECT_EQ(ospfv2_network_attached_router_set_cr(handle, network.object, 2, 9),
            KELP_ERR_NO_MEMORY);
  EXPECT_EQ(handle->cr_err, KELP_ERR_NO_MEMORY);
  EXPECT_EQ(ospfv2_network_attached_router_set_cr(handle, network.object, 0, 9), KELP_ERR_NO_MEMORY)
      << "a failure stands";
  EXPECT_EQ(network.content(), (Words{0, 9}));
  handle->cr_err = 0;
}

TEST(ArrayFieldSet, ByteArraysGrowByBytes) {
  Store store;
  OWNED(store, ospfv2_unknown_sub_tlv, tlv);
  AllocationLog allocations(store);
  store(ospfv2_unknown_sub_tlv_value_set_value, tlv, 4, 0xAB);
  EXPECT_EQ(ospfv2_unknown_sub_tlv_value_set_cr(store, tlv, 6, 0xCD), 0u);
  EXPECT_EQ(allocations.sizes, (Sizes{5, 7}));
  Bytes content(7);
  store(ospfv2_unknown_sub_tlv_value_get_mem, tlv, content.data(), 7);
  EXPECT_EQ(content, (Bytes{0, 0, 0, 0, 0xAB, 0, 0xCD}));
  EXPECT_EQ(store(ospfv2_unknown_sub_tlv_value_len_get_value, tlv), 7u);
  EXPECT_EQ(store.err, 0u);
}

// --- set_value ----------------------------------------------------------------------------------

TEST(ArrayFieldSetValue, WritesAnElementThatIsThereAndMarksIt) {
  Network network(KELP_TRACKING_ON);
  network.fill({1, 2});
  AllocationLog allocations(network.store);
  network.set_value(1, 9);
  EXPECT_EQ(network.store.err, 0u);
  EXPECT_TRUE(allocations.sizes.empty());
  EXPECT_EQ(network.content(), (Words{1, 9}));
  EXPECT_EQ(network.states(), (Bytes{0, 2}));
}

TEST(ArrayFieldSetValue, GrowsAsSetDoesAndMarksTheWrittenElement) {
  Network network(KELP_TRACKING_ON);
  network.set_value(2, 9);
  EXPECT_EQ(network.store.err, 0u);
  EXPECT_EQ(network.content(), (Words{0, 0, 9}));
  EXPECT_EQ(network.states(), (Bytes{0, 0, 2}));
  EXPECT_EQ(whole_state(network.object, routers), 2);
}

TEST(ArrayFieldSetValue, AFailedGrowthIsReportedAndWritesNothing) {
  Network network(KELP_TRACKING_ON);
  network.set_value(0, 7);
  const Bytes before = network.image();
  network.store.fail_allocation(0);
  network.set_value(1, 9);
  network.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(network.image(), before);
  EXPECT_EQ(network.content(), (Words{7}));
}

TEST(ArrayFieldSetValue, AnUntrackedObjectGetsTheValueOfAnElementThatIsThere) {
  UntrackedNetwork network;
  network.fill({7});
  TraceLog trace;
  ospfv2_network_attached_router_set_value(network.tracking, 0, network.object, 0, 9,
                                           &network.store.err);
  network.expect_refusal(KELP_ERR_INVALID);
  EXPECT_EQ(trace.texts(), (Names{not_tracked}));
  EXPECT_EQ(network.content(), (Words{9}));
  network.store.err = 0;
  ospfv2_network_attached_router_set_value(network.tracking, 0, network.object, 1, 9,
                                           &network.store.err);
  network.expect_refusal(KELP_ERR_INVALID);
  EXPECT_EQ(network.content(), (Words{9})) << "the array does not grow";
}

TEST(ArrayFieldSetValue, ABlockThatIsMissingUnderACountIsMadeAnew) {
  Network network(KELP_TRACKING_ON);
  network.fill({1, 2, 3});
  network.store.fail_allocation(0);
  network.replace({4});
  network.expect_failure(KELP_ERR_NO_MEMORY);
  network.set_value(0, 9);
  EXPECT_EQ(network.store.err, 0u);
  EXPECT_EQ(network.content(), (Words{9}));
  EXPECT_EQ(network.states(), (Bytes{2}));
}

// --- replacing the whole ------------------------------------------------------------------------

TEST(ArrayFieldSetMem, MarksTheArrayAndNoElement) {
  Network network(KELP_TRACKING_ON);
  const AllocationLog dirty(network.store);
  network.set(0, 1);
  network.set(1, 2);
  network.replace({4, 5, 6});
  EXPECT_EQ(network.store.err, 0u);
  EXPECT_EQ(network.content(), (Words{4, 5, 6}));
  EXPECT_EQ(whole_state(network.object, routers), 2);
  EXPECT_EQ(network.states(), Bytes(3, 0));
}

TEST(ArrayFieldSetMem, NothingAsksForABlockOfZeroBytes) {
  Network network;
  network.fill({1, 2});
  AllocationLog allocations(network.store);
  network.replace({});
  EXPECT_EQ(allocations.sizes, (Sizes{0}));
  EXPECT_EQ(network.store.err, 0u);
  EXPECT_EQ(count_of(network.object, routers), 0u);
}

TEST(ArrayFieldSetMem, ANullAnswerForNothingIsNoMemoryAndKeepsTheCount) {
  Network network;
  network.fill({1, 2});
  {
    AllocationLog allocations(network.store);
    allocations.refuse = true;
    network.replace({});
  }
  network.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(count_of(network.object, routers), 2u);
  EXPECT_EQ(store_of(network.object, routers), nullptr);
  network.store.err = 0;
}

TEST(ArrayFieldSetMem, AFailedAllocationLeavesANullBlockUnderTheOldCount) {
  for (const std::uint32_t tracking : {KELP_TRACKING_ABSENT, KELP_TRACKING_OFF, KELP_TRACKING_ON}) {
    Network network(tracking);
    network.fill({1, 2, 3});
    network.store.fail_allocation(0);
    network.replace({4, 5});
    network.expect_failure(KELP_ERR_NO_MEMORY);
    EXPECT_EQ(store_of(network.object, routers), nullptr);
    EXPECT_EQ(count_of(network.object, routers), 3u);
    network.store.err = 0;
    EXPECT_EQ(network(ospfv2_network_attached_router_get, 0), nullptr);
    EXPECT_EQ(network.store.err, 0u) << "the index test passes";
  }
}

TEST(ArrayFieldSetMem, AfterAFailedAllocationSetMakesABlockAnewWithoutATrace) {
  Network network(KELP_TRACKING_ON);
  network.fill({1, 2, 3});
  network.store.fail_allocation(0);
  network.replace({4, 5});
  network.expect_failure(KELP_ERR_NO_MEMORY);
  TraceLog trace;
  network.set(0, 9);
  EXPECT_EQ(network.store.err, 0u);
  EXPECT_TRUE(trace.empty());
  EXPECT_EQ(network.content(), (Words{9}));
  EXPECT_EQ(network.states(), (Bytes{2}));
}

TEST(ArrayFieldSetMem, AFailedAllocationOfTheStatesLeavesThemNullBesideTheNewElements) {
  Network network(KELP_TRACKING_ON);
  network.fill({1, 2, 3});
  network.store.fail_allocation(1);
  network.replace({4, 5});
  network.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(network.content(), (Words{4, 5}));
  EXPECT_EQ(whole_state(network.object, routers), 2);
  EXPECT_EQ(element_states(network.object, routers), nullptr);
  network.store.err = 0;
}

TEST(ArrayFieldSetMem, AnUntrackedObjectGetsABlockThatStaysUnfilled) {
  UntrackedNetwork network;
  network.fill({7, 7, 7});
  TraceLog trace;
  AllocationLog allocations(network.tracking);
  const Words values{1, 2};
  ospfv2_network_attached_router_set_mem(network.tracking, 0, network.object, values.data(), 2,
                                         &network.store.err);
  network.expect_refusal(KELP_ERR_INVALID);
  EXPECT_EQ(trace.texts(), (Names{not_tracked}));
  EXPECT_TRUE(trace.has(3, not_tracked));
  EXPECT_EQ(allocations.sizes, (Sizes{8}));
  EXPECT_NE(store_of(network.object, routers), nullptr);
  EXPECT_EQ(count_of(network.object, routers), 3u);
  count_of(network.object, routers) = 2;
  EXPECT_NE(network.content(), values);
}

TEST(ArrayFieldSetMem, FreesTheOldBlockBeforeItAsksForTheNewOne) {
  Network network(KELP_TRACKING_ON);
  network.fill({1});
  CallLog calls(network.store);
  network.replace({2, 3});
  EXPECT_EQ(calls.only({"obj_alloc", "obj_free", "write_notify"}),
            (Names{"obj_free", "write_notify", "obj_alloc", "write_notify", "write_notify",
                   "obj_free", "write_notify", "obj_alloc"}));
}

TEST(ArrayFieldSetMem, AnnouncesPointerCountWholeStateAndStatePointer) {
  Network network(KELP_TRACKING_ON);
  WriteWatch watch(network.store);
  const Words values{2, 3};
  ospfv2_network_attached_router_set_mem(network.store, 17, network.object, values.data(), 2,
                                         &network.store.err);
  std::vector<std::pair<std::ptrdiff_t, std::size_t>> ranges;
  for (const auto &write : watch.writes()) {
    ranges.emplace_back(write.offset_in(network.object), write.length);
    EXPECT_EQ(write.space_id, 17u);
  }
  const auto offset = [](std::size_t place) { return static_cast<std::ptrdiff_t>(place); };
  EXPECT_EQ(ranges, (std::vector<std::pair<std::ptrdiff_t, std::size_t>>{
                        {offset(routers.store), 8},
                        {offset(routers.count), 4},
                        {offset(routers.object_size + routers.whole_state), 1},
                        {offset(routers.object_size + routers.element_states), 8}}));
}

// The count is not limited by what the block can hold: the size is cut to 32 bits.
TEST(ArrayFieldSetMem, TheSizeOfTheBlockIsTruncatedTo32Bits) {
  Network network;
  AllocationLog allocations(network.store);
  const std::uint32_t value = 7;
  network(ospfv2_network_attached_router_set_mem, &value, 0x40000001);
  EXPECT_EQ(network.store.err, 0u);
  EXPECT_EQ(allocations.sizes, (Sizes{4}));
  EXPECT_EQ(count_of(network.object, routers), 0x40000001u);
  ospfv2_network_attached_router_remove_elements(network.store, 0, network.object);
}

TEST(ArrayFieldSetMem, ACorruptTrackingModeEndsTheProcess) {
  Network network(KELP_TRACKING_ON);
  EXPECT_FATAL(
      {
        network.store.handle()->sttr->sttr_mode = 1;
        network.replace({1});
      },
      "Corrupted KELP Handle");
}

TEST(ArrayFieldSetMemCr, UsesTheHandlesSpaceAndErrorWord) {
  Network network;
  kelp_handle *handle = network.store;
  handle->cr_space_id = 23;
  const Words values{1, 2};
  {
    WriteWatch watch(handle);
    EXPECT_EQ(ospfv2_network_attached_router_set_mem_cr(handle, network.object, values.data(), 2),
              0u);
    ASSERT_EQ(watch.writes().size(), 2u);
    for (const auto &write : watch.writes()) EXPECT_EQ(write.space_id, 23u);
  }
  EXPECT_EQ(network.content(), values);
  handle->cr_err = 5;
  EXPECT_EQ(ospfv2_network_attached_router_set_mem_cr(handle, network.object, nullptr, 0), 5u);
  EXPECT_EQ(network.content(), values);
  handle->cr_err = 0;
}

// --- removal ------------------------------------------------------------------------------------

TEST(ArrayFieldRemoveElements, TwiceInARowIsHarmlessAndTheCountIsZero) {
  Network network;
  network.fill({1, 2});
  for (int round = 0; round < 2; ++round) {
    ospfv2_network_attached_router_remove_elements(network.store, 0, network.object);
    EXPECT_EQ(network(ospfv2_network_attached_router_num_get_value), 0u);
    EXPECT_EQ(store_of(network.object, routers), nullptr);
  }
  EXPECT_EQ(network.store.err, 0u);
}

TEST(ArrayFieldRemoveElements, ANullObjectIsPassedOver) {
  Store store;
  CallLog calls(store);
  ospfv2_network_attached_router_remove_elements(store, 0, nullptr);
  ospfv2_link_tlv_local_if_ipv4_addr_remove_elements(store, 0, nullptr);
  EXPECT_TRUE(calls.calls().empty());
}

TEST(ArrayFieldRemoveElements, FreesTheBlockThenAnnouncesPointerAndCount) {
  Network network(KELP_TRACKING_ON);
  network.fill({1, 2});
  CallLog calls(network.store);
  WriteWatch watch(network.store);
  ospfv2_network_attached_router_remove_elements(network.store, 17, network.object);
  EXPECT_EQ(calls.calls(), (Names{"obj_free", "write_notify", "write_notify"}));
  const auto writes = watch.writes();
  ASSERT_EQ(writes.size(), 2u);
  EXPECT_EQ(writes[0].offset_in(network.object), static_cast<std::ptrdiff_t>(routers.store));
  EXPECT_EQ(writes[0].length, 8u);
  EXPECT_EQ(writes[1].offset_in(network.object), static_cast<std::ptrdiff_t>(routers.count));
  EXPECT_EQ(writes[1].length, 4u);
}

TEST(ArrayFieldRemoveElements, LeavesTheStatesForTheNextGrowthToRelease) {
  Network network(KELP_TRACKING_ON);
  network.set(0, 1);
  network.set(1, 2);
  std::uint8_t *const states = element_states(network.object, routers);
  ospfv2_network_attached_router_remove_elements(network.store, 0, network.object);
  EXPECT_EQ(element_states(network.object, routers), states);
  EXPECT_EQ(whole_state(network.object, routers), 2);
  const std::uint64_t live = network.store.live_allocations();
  CallLog calls(network.store);
  network.set(1, 9);
  EXPECT_EQ(calls.only({"obj_alloc", "obj_free"}), (Names{"obj_alloc", "obj_alloc", "obj_free"}));
  EXPECT_EQ(network.states(), (Bytes{0, 2}));
  EXPECT_EQ(network.store.live_allocations(), live + 1);
}

TEST(ArrayFieldRemoveElements, LooksAtNoErrorWord) {
  Network network;
  network.fill({1});
  kelp_store_err(network.store, 5);
  ospfv2_network_attached_router_remove_elements(network.store, 0, network.object);
  EXPECT_EQ(network.store.last_error(), 5);
  EXPECT_EQ(count_of(network.object, routers), 0u);
}

// --- addresses ----------------------------------------------------------------------------------

TEST(AddressArray, GrowsWithUnsetAddressesBetweenAndKeepsTheOldOnes) {
  LinkTlv tlv(KELP_TRACKING_ON);
  const AllocationLog dirty(tlv.store);
  tlv.set(0, 0x0A000001);
  tlv.set(3, 0x0A000004);
  EXPECT_EQ(tlv.store.err, 0u);
  EXPECT_EQ(tlv.address(0), 0x0A000001u);
  EXPECT_EQ(tlv.address(1), 0u);
  EXPECT_EQ(tlv.address(2), 0u);
  EXPECT_EQ(tlv.address(3), 0x0A000004u);
  EXPECT_EQ(states_of(tlv.object, local_addresses), (Bytes{2, 0, 0, 2}));
  EXPECT_EQ(whole_state(tlv.object, local_addresses), 2);
}

TEST(AddressArray, GrowthAsksForExactlyOneMoreThanTheIndex) {
  LinkTlv tlv;
  AllocationLog allocations(tlv.store);
  tlv.set(0, 1);
  tlv.set(2, 1);
  EXPECT_EQ(allocations.sizes, (Sizes{48, 144}));
}

TEST(AddressArray, GrowthSettlesEachMovedElementBeforeTheOldBlockGoes) {
  LinkTlv tlv;
  tlv.set(1, 1);
  CallLog calls(tlv.store);
  tlv.set(2, 3);
  EXPECT_EQ(calls.only({"obj_alloc", "obj_free", "ip_address_post_copyout_cleanup",
                        "kelp_hd_mapping_destroy", "ip_address_set"}),
            (Names{"obj_alloc", "ip_address_post_copyout_cleanup",
                   "ip_address_post_copyout_cleanup", "obj_free", "ip_address_set"}));
}

TEST(AddressArray, TrackedGrowthForgetsTheMappingOfEachOldElement) {
  LinkTlv tlv(KELP_TRACKING_ON);
  tlv.set(1, 1);
  CallLog calls(tlv.store);
  tlv.set(2, 3);
  EXPECT_EQ(calls.only({"obj_free", "ip_address_post_copyout_cleanup", "kelp_hd_mapping_destroy"}),
            (Names{"ip_address_post_copyout_cleanup", "kelp_hd_mapping_destroy",
                   "ip_address_post_copyout_cleanup", "kelp_hd_mapping_destroy", "obj_free",
                   "obj_free"}));
}

TEST(AddressArray, SetMovesTheSource) {
  LinkTlv tlv;
  CallLog calls(tlv.store);
  tlv.set(0, 1);
  EXPECT_EQ(calls.count("ip_address_set"), 1u);
  EXPECT_EQ(calls.count("ip_address_clone_internal"), 0u);
}

TEST(AddressArray, TheTransferFlagDecidesBetweenMoveAndCopy) {
  LinkTlv tlv;
  ip_address source = ip_address_make_ipv4(0x0A000001);
  {
    CallLog calls(tlv.store);
    EXPECT_EQ(ospfv2_link_tlv_local_if_ipv4_addr_set_cr(tlv.store, tlv.object, 0, &source, 1), 0u);
    EXPECT_EQ(calls.only({"kelplib_get_handle_ws", "ip_address_clone_internal", "ip_address_set"}),
              (Names{"ip_address_set"}));
  }
  {
    CallLog calls(tlv.store);
    EXPECT_EQ(ospfv2_link_tlv_local_if_ipv4_addr_set_cr(tlv.store, tlv.object, 1, &source, 0), 0u);
    EXPECT_EQ(calls.only({"kelplib_get_handle_ws", "ip_address_clone_internal", "ip_address_set"}),
              (Names{"kelplib_get_handle_ws", "ip_address_clone_internal"}));
  }
  EXPECT_EQ(tlv.address(0), 0x0A000001u);
  EXPECT_EQ(tlv.address(1), 0x0A000001u);
}

TEST(AddressArray, ANullSourceOnlyGrows) {
  LinkTlv tlv(KELP_TRACKING_ON);
  tlv(ospfv2_link_tlv_local_if_ipv4_addr_set, 1, nullptr);
  EXPECT_EQ(tlv.store.err, 0u);
  EXPECT_EQ(count_of(tlv.object, local_addresses), 2u);
  EXPECT_EQ(states_of(tlv.object, local_addresses), Bytes(2, 0));
  EXPECT_EQ(whole_state(tlv.object, local_addresses), 0);
}

TEST(AddressArray, RemovalEndsEachElementInPlaceBeforeTheBlockGoes) {
  LinkTlv tlv;
  tlv.set(1, 1);
  CallLog calls(tlv.store);
  ospfv2_link_tlv_local_if_ipv4_addr_remove_elements(tlv.store, 0, tlv.object);
  EXPECT_EQ(calls.only({"ip_address_destroy_internal", "obj_free", "write_notify"}),
            (Names{"ip_address_destroy_internal", "ip_address_destroy_internal", "obj_free",
                   "write_notify", "write_notify"}));
  EXPECT_EQ(count_of(tlv.object, local_addresses), 0u);
}

TEST(AddressArray, AFailedAllocationLeavesTheArrayAsItWas) {
  LinkTlv tlv(KELP_TRACKING_ON);
  tlv.set(0, 0x0A000001);
  void *const block = store_of(tlv.object, local_addresses);
  tlv.store.fail_allocation(0);
  tlv.set(1, 2);
  tlv.store.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(store_of(tlv.object, local_addresses), block);
  EXPECT_EQ(count_of(tlv.object, local_addresses), 1u);
  EXPECT_EQ(states_of(tlv.object, local_addresses), (Bytes{2}));
}

}  // namespace
