// Structures as whole values: order, hash, field numbers, and the bulk forms.
#include <kelp/hash.h>
#include <kelp/oid.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "types/object_view.hpp"

namespace {

using namespace harness;

template <typename Value>
Value &field(void *object, const model::Structure &type, const model::Field &wanted) {
  return at<Value>(object, model::offset(type, wanted));
}

// --- compare ------------------------------------------------------------------------------------

TEST(StructureCompare, NullSortsFirst) {
  Store store;
  OWNED(store, ospfv2_topology, object);
  EXPECT_EQ(ospfv2_topology_compare(nullptr, nullptr), 0);
  EXPECT_EQ(ospfv2_topology_compare(nullptr, object), -1);
  EXPECT_EQ(ospfv2_topology_compare(object, nullptr), 1);
  EXPECT_EQ(ospfv2_topology_compare(object, object), 0);
}

TEST(StructureCompare, HeadersDoNotCount) {
  Store store;
  OWNED(store, ospfv2_topology, a);
  OWNED(store, ospfv2_topology, b);
  header(b).variant = -1;
  header(b).obj_flags = OBJ_EMBEDDED;
  EXPECT_EQ(ospfv2_topology_compare(a, b), 0);
}

TEST(StructureCompare, TheFirstFieldThatDiffersDecidesUnsigned) {
  Store store;
  OWNED(store, ospfv2_topology, a);
  OWNED(store, ospfv2_topology, b);
  store(ospfv2_topology_set_all, a, 1, 9);
  store(ospfv2_topology_set_all, b, 0xFFFFFFFF, 3);
  EXPECT_EQ(ospfv2_topology_compare(a, b), -1);
  EXPECT_EQ(ospfv2_topology_compare(b, a), 1);
  store(ospfv2_topology_set_all, b, 1, 0xFFFF);
  EXPECT_EQ(ospfv2_topology_compare(a, b), -1);
  EXPECT_EQ(store.err, 0u);
}

TEST(StructureCompare, FieldsOfALaterVariantCountOnEveryObject) {
  Store store;
  store.set_variant("ospf_area", 0);
  OWNED(store, ospf_area, a);
  OWNED(store, ospf_area, b);
  field<kelp_reference>(b, types::ospf_area, fields::ospf_area::area_scope_lsas).oid.id[0] = 1;
  EXPECT_LT(ospf_area_compare(a, b), 0);
  EXPECT_GT(ospf_area_compare(b, a), 0);
  field<kelp_reference>(b, types::ospf_area, fields::ospf_area::area_scope_lsas).oid.id[0] = 0;
}

TEST(StructureCompare, TargetTypesOfReferencesDoNotCount) {
  Store store;
  OWNED(store, ospf_area, a);
  OWNED(store, ospf_area, b);
  field<kelp_reference>(b, types::ospf_area, fields::ospf_area::interfaces).target_type = nullptr;
  EXPECT_EQ(ospf_area_compare(a, b), 0);
}

TEST(StructureCompare, EnumerationsGiveTheirDifference) {
  Store store;
  OWNED(store, ospf_instance_rev1_key, a);
  OWNED(store, ospf_instance_rev1_key, b);
  using namespace fields::ospf_instance_rev1_key;
  void *family = place(b, types::ospf_instance_rev1_key, af);
  at<std::uint32_t>(family, model::enumeration_value_offset) = 5;
  EXPECT_EQ(ospf_instance_rev1_key_compare(a, b), -5);
  EXPECT_EQ(ospf_instance_rev1_key_compare(b, a), 5);
  at<std::uint32_t>(family, model::enumeration_value_offset) = 0xFFFFFFFE;
  EXPECT_EQ(ospf_instance_rev1_key_compare(a, b), 2);
}

TEST(StructureCompare, FlagSetsGiveTheDifferenceOfUnsignedBytes) {
  Store store;
  OWNED(store, ospfv2_header, a);
  OWNED(store, ospfv2_header, b);
  void *options = place(a, types::ospfv2_header, fields::ospfv2_header::flag_options);
  at<std::uint8_t>(options, model::flags_offset) = 0x80;
  EXPECT_EQ(ospfv2_header_compare(a, b), 0x80);
  EXPECT_EQ(ospfv2_header_compare(b, a), -0x80);
}

TEST(StructureCompare, ArraysOfAnotherCountAreNotLookedAt) {
  Store store;
  OWNED(store, ospfv2_unknown_sub_tlv, a);
  OWNED(store, ospfv2_unknown_sub_tlv, b);
  const std::uint8_t high[] = {255};
  const std::uint8_t low[] = {0, 0};
  store(ospfv2_unknown_sub_tlv_value_set_mem, a, high, 1);
  EXPECT_EQ(ospfv2_unknown_sub_tlv_compare(a, b), 1);
  store(ospfv2_unknown_sub_tlv_value_set_mem, b, low, 2);
  EXPECT_EQ(ospfv2_unknown_sub_tlv_compare(a, b), -1);
  store(ospfv2_unknown_sub_tlv_value_set_mem, b, low, 1);
  EXPECT_GT(ospfv2_unknown_sub_tlv_compare(a, b), 0);
  EXPECT_EQ(store.err, 0u);
}

TEST(StructureCompare, ArraysOfNumbersFollowTheirBytesInMemory) {
  Store store;
  OWNED(store, ospfv2_network, a);
  OWNED(store, ospfv2_network, b);
  const std::uint32_t first[] = {0x0100};
  const std::uint32_t second[] = {0x0001};
  store(ospfv2_network_attached_router_set_mem, a, first, 1);
  store(ospfv2_network_attached_router_set_mem, b, second, 1);
  const int in_memory = std::memcmp(first, second, sizeof first);
  EXPECT_EQ(ospfv2_network_compare(a, b) < 0, in_memory < 0);
  EXPECT_EQ(ospfv2_network_compare(b, a) < 0, in_memory > 0);
}

TEST(StructureCompare, ArraysOfAddressesCompareElementByElement) {
  Store store;
  OWNED(store, ospfv2_link_tlv, a);
  OWNED(store, ospfv2_link_tlv, b);
  const auto put = [&](ospfv2_link_tlv *object, std::uint32_t index, std::uint32_t value) {
    ip_address address = ip_address_make_ipv4(value);
    store(ospfv2_link_tlv_local_if_ipv4_addr_set, object, index, &address);
  };
  put(a, 0, 1);
  put(a, 1, 2);
  put(b, 0, 1);
  put(b, 1, 3);
  EXPECT_EQ(ospfv2_link_tlv_compare(a, b), -1);
  put(b, 1, 2);
  EXPECT_EQ(ospfv2_link_tlv_compare(a, b), 0);
}

TEST(StructureCompare, NotANumberEqualsAllAndTheNextFieldDecides) {
  Store store;
  OWNED(store, ospfv2_link_tlv, a);
  OWNED(store, ospfv2_link_tlv, b);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  store(ospfv2_link_tlv_set_all, a, 0, 0, 0, nan, 1.0, 0, 0);
  store(ospfv2_link_tlv_set_all, b, 0, 0, 0, 7.0, 1.0, 0, 0);
  EXPECT_EQ(ospfv2_link_tlv_compare(a, b), 0);
  store(ospfv2_link_tlv_set_all, b, 0, 0, 0, 7.0, 2.0, 0, 0);
  EXPECT_EQ(ospfv2_link_tlv_compare(a, b), -1);
  EXPECT_EQ(ospfv2_link_tlv_compare(b, a), 1);
}

TEST(StructureCompare, EmbeddedStructuresCompareByTheirOwnFields) {
  Store store;
  OWNED(store, ospfv2_lsa, a);
  OWNED(store, ospfv2_lsa, b);
  void *body = place(b, types::ospfv2_lsa, fields::ospfv2_lsa::lsa_body);
  field<std::uint16_t>(body, types::ospfv2_lsa_body, fields::ospfv2_lsa_body::num_of_links) = 1;
  EXPECT_EQ(ospfv2_lsa_compare(a, b), -1);
  EXPECT_EQ(ospfv2_lsa_compare(b, a), 1);
}

// --- hash ---------------------------------------------------------------------------------------

TEST(StructureHash, NullGivesTheSeed) {
  EXPECT_EQ(ospfv2_topology_hash(nullptr, 17), 17u);
  EXPECT_EQ(ospf_authentication_hash(nullptr, 17), 17u);
}

TEST(StructureHash, EachFieldSeedsTheNext) {
  Store store;
  OWNED(store, ospfv2_topology, object);
  store(ospfv2_topology_set_all, object, 12, 34);
  const std::uint32_t mt_id = 12;
  const std::uint16_t metric = 34;
  EXPECT_EQ(ospfv2_topology_hash(object, 5), u_int16_hash(&metric, u_int32_hash(&mt_id, 5)));
}

TEST(StructureHash, OnlyTheFirstFourBytesOfAnOidCount) {
  Store store;
  OWNED(store, ospf_area, area);
  auto &interfaces =
      field<kelp_reference>(area, types::ospf_area, fields::ospf_area::interfaces).oid;
  const std::uint32_t empty = ospf_area_hash(area, 1);
  interfaces.id[3] = 9;
  interfaces.source[1] = 9;
  interfaces.handle_word = std::uint64_t{9} << 32;
  EXPECT_EQ(ospf_area_hash(area, 1), empty);
  interfaces.handle_word = 9;
  EXPECT_NE(ospf_area_hash(area, 1), empty);
  const std::uint32_t area_id = 0;
  kelp_oid other = {};
  EXPECT_EQ(ospf_area_hash(area, 1),
            SuperFastHash(&other, 4, SuperFastHash(&interfaces, 4, u_int32_hash(&area_id, 1))));
  interfaces = {};
}

TEST(StructureHash, ACountGoesInTwiceAndAnEmptyArrayIsHashedToo) {
  Store store;
  OWNED(store, ospfv2_unknown_sub_tlv, object);
  const std::uint16_t zero = 0;
  const std::uint32_t none = 0;
  std::uint32_t expected = u_int16_hash(&zero, u_int16_hash(&zero, 3));
  expected = u_int32_hash(&none, u_int32_hash(&none, expected));
  EXPECT_EQ(ospfv2_unknown_sub_tlv_hash(object, 3), SuperFastHash(nullptr, 0, expected));

  const std::uint8_t bytes[] = {1, 2, 3};
  const std::uint32_t count = 3;
  store(ospfv2_unknown_sub_tlv_value_set_mem, object, bytes, 3);
  expected = u_int16_hash(&zero, u_int16_hash(&zero, 3));
  expected = u_int32_hash(&count, u_int32_hash(&count, expected));
  EXPECT_EQ(ospfv2_unknown_sub_tlv_hash(object, 3), SuperFastHash(bytes, 3, expected));
}

TEST(StructureHash, ArraysOfWordsAndOfAddressesGoInByTheirElements) {
  Store store;
  OWNED(store, ospfv2_network, network);
  const std::uint32_t routers[] = {10, 20};
  const std::uint32_t count = 2;
  store(ospfv2_network_attached_router_set_mem, network, routers, 2);
  ip_address none = {};
  std::uint32_t expected = ip_address_hash(&none, 0);
  expected = u_int32_hash(&count, u_int32_hash(&count, expected));
  EXPECT_EQ(ospfv2_network_hash(network, 0), SuperFastHash(routers, 8, expected));

  OWNED(store, ospfv2_link_tlv, tlv);
  ip_address address = ip_address_make_ipv4(0x0a000001);
  store(ospfv2_link_tlv_local_if_ipv4_addr_set, tlv, 0, &address);
  const std::uint8_t link_type = 0;
  const std::uint32_t zero = 0;
  const std::uint32_t one = 1;
  const double bandwidth = 0;
  expected = u_int32_hash(&zero, u_int8_hash(&link_type, 0));
  expected = u_int32_hash(&one, u_int32_hash(&one, expected));
  expected = ip_address_hash(&address, expected);
  expected = u_int32_hash(&zero, u_int32_hash(&zero, expected));
  expected = u_int32_hash(&zero, expected);
  for (int i = 0; i < 3; ++i) expected = double_hash(&bandwidth, expected);
  EXPECT_EQ(ospfv2_link_tlv_hash(tlv, 0), u_int32_hash(&zero, expected));
}

TEST(StructureHash, AnLsasHeaderSeedsItsBody) {
  Store store;
  OWNED(store, ospfv2_lsa, object);
  auto *lsa_header =
      static_cast<ospfv2_header *>(place(object, types::ospfv2_lsa, fields::ospfv2_lsa::header));
  auto *body = static_cast<ospfv2_lsa_body *>(
      place(object, types::ospfv2_lsa, fields::ospfv2_lsa::lsa_body));
  EXPECT_EQ(ospfv2_lsa_hash(object, 8),
            ospfv2_lsa_body_hash(body, ospfv2_header_hash(lsa_header, 8)));
}

TEST(StructureHash, AFlagSetOfALaterVariantCountsOnEveryObject) {
  Store store;
  store.set_variant("ospfv2_header", 0);
  OWNED(store, ospfv2_header, object);
  const std::uint32_t before = ospfv2_header_hash(object, 0);
  void *options = place(object, types::ospfv2_header, fields::ospfv2_header::flag_options);
  at<std::uint8_t>(options, model::flags_offset) = 1;
  EXPECT_NE(ospfv2_header_hash(object, 0), before);
}

// --- is_valid_cr, get ---------------------------------------------------------------------------

TEST(StructureIsValid, TheBoundsOfTheSchemaDecide) {
  Store store;
  store.set_variant("ospf_area", 0);
  EXPECT_EQ(ospf_area_is_valid_cr(store, nullptr, 1), 1u);
  EXPECT_EQ(ospf_area_is_valid_cr(store, nullptr, 2), 0u);
  store.set_variant("ospf_area", 1);
  EXPECT_EQ(ospf_area_is_valid_cr(store, nullptr, 2), 1u);
  EXPECT_EQ(ospf_area_is_valid_cr(store, nullptr, 3), 1u);
  EXPECT_EQ(ospf_area_is_valid_cr(store, nullptr, 4), 0u);
  store.set_variant("ospf_area", 2);
  EXPECT_EQ(ospf_area_is_valid_cr(store, nullptr, 0xFFFFFFFF), 1u);
  store.set_variant("ospf_area", -1);
  EXPECT_EQ(ospf_area_is_valid_cr(store, nullptr, 0), 1u);
}

TEST(StructureIsValid, ATypeOfOneVariantHasOneBound) {
  Store store;
  EXPECT_EQ(ospfv3_nssa_is_valid_cr(store, nullptr, 0), 1u);
  EXPECT_EQ(ospfv3_nssa_is_valid_cr(store, nullptr, 1), 0u);
  store.set_variant("ospfv3_nssa", 1);
  EXPECT_EQ(ospfv3_nssa_is_valid_cr(store, nullptr, 1), 1u);
}

TEST(StructureIsValid, AFailedLookupGoesToCrErrAndItsVariantIsUsed) {
  Store store;
  ASSERT_EQ(kelp_handle_fail_variant(store, "ospf_area", 5, nullptr), 0);
  EXPECT_EQ(ospf_area_is_valid_cr(store, nullptr, 2), 1u);
  EXPECT_EQ(store.handle()->cr_err, 5u);
}

TEST(StructureGet, TheObjectComesBackUntested) {
  ospf_area *object = reinterpret_cast<ospf_area *>(std::uintptr_t{64});
  EXPECT_EQ(ospf_area_get(nullptr, 0, object), object);
  EXPECT_EQ(ospf_area_get(nullptr, 0, nullptr), nullptr);
}

// --- get_all, set_all ---------------------------------------------------------------------------

struct Interface {
  std::uint32_t network_type = 77;
  kelp_boolean passive = 77, demand_circuit = 77, node_flag = 77;
  std::uint16_t cost = 77, hello = 77, dead = 77, retransmit = 77, delay = 77;
  kelp_boolean mtu_ignore = 77, lls = 77, prefix_suppression = 77, bfd = 77, enable = 77;
  std::uint32_t hello_timer = 77, wait_timer = 77;
  std::uint8_t priority = 77;

  void get(Store &store, ospf_interface *object) {
    store(ospf_interface_get_all, object, &network_type, &passive, &demand_circuit, &node_flag,
          &cost, &hello, &dead, &retransmit, &delay, &mtu_ignore, &lls, &prefix_suppression, &bfd,
          &enable, &hello_timer, &wait_timer, &priority);
  }
};

void set_interface(Store &store, ospf_interface *object, std::uint32_t network_type) {
  store(ospf_interface_set_all, object, network_type, 1, 0, 1, 10, 11, 12, 13, 14, 1, 0, 1, 0, 1,
        15, 16, 17);
}

TEST(StructureBulk, AllValuesComeBackInFieldOrder) {
  Store store;
  OWNED(store, ospf_interface, object);
  set_interface(store, object, 3);
  ASSERT_EQ(store.err, 0u);
  Interface read;
  read.get(store, object);
  EXPECT_EQ(read.network_type, 3u);
  EXPECT_EQ(read.passive, 1u);
  EXPECT_EQ(read.demand_circuit, 0u);
  EXPECT_EQ(read.node_flag, 1u);
  EXPECT_EQ(read.cost, 10);
  EXPECT_EQ(read.delay, 14);
  EXPECT_EQ(read.mtu_ignore, 1u);
  EXPECT_EQ(read.enable, 1u);
  EXPECT_EQ(read.hello_timer, 15u);
  EXPECT_EQ(read.wait_timer, 16u);
  EXPECT_EQ(read.priority, 17);
  EXPECT_EQ(store(ospf_interface_wait_timer_get_value, object), 16u);
}

TEST(StructureBulk, AFloorThatTheVariantLacksIsPassedOverWithoutAnError) {
  Store store;
  store.set_variant("ospf_interface", 0);
  OWNED(store, ospf_interface, object);
  CallLog log(store);
  Interface read;
  read.get(store, object);
  EXPECT_EQ(read.network_type, 0u);
  EXPECT_EQ(read.priority, 77);
  EXPECT_EQ(log.count("kelp_get_instance_variant"), 2u);
  set_interface(store, object, 1);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(field<std::uint8_t>(object, types::ospf_interface, fields::ospf_interface::priority),
            0);
  EXPECT_EQ(field<std::uint16_t>(object, types::ospf_interface, fields::ospf_interface::cost), 10);
  header(object).variant = -1;
  Interface untouched;
  untouched.get(store, object);
  EXPECT_EQ(untouched.network_type, 77u);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(log.count("kelp_store_epoch_err"), 0u);
}

TEST(StructureBulk, SetAllAdjustsTheVariantFirst) {
  Store store;
  store.set_variant("ospf_interface", 0);
  OWNED(store, ospf_interface, object);
  store.set_variant("ospf_interface", 1);
  set_interface(store, object, 1);
  EXPECT_EQ(header(object).variant, 1);
  EXPECT_EQ(field<std::uint8_t>(object, types::ospf_interface, fields::ospf_interface::priority),
            17);
}

TEST(StructureBulk, ARefusedEnumerationStopsWhatFollows) {
  Store store;
  OWNED(store, ospf_interface, object);
  set_interface(store, object, 4);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(field<std::uint16_t>(object, types::ospf_interface, fields::ospf_interface::cost), 0);
  EXPECT_EQ(field<std::uint8_t>(object, types::ospf_interface, fields::ospf_interface::priority),
            0);
}

TEST(StructureBulk, ANullObjectReadsAsZeroes) {
  Store store;
  std::uint32_t mt_id = 77;
  std::uint16_t metric = 77;
  store(ospfv2_topology_get_all, nullptr, &mt_id, &metric);
  EXPECT_EQ(mt_id, 0u);
  EXPECT_EQ(metric, 0u);
  EXPECT_EQ(store.err, 0u);
}

TEST(StructureBulk, SetAllMarksNoState) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospf_interface, object);
  set_interface(store, object, 1);
  const std::vector<std::uint8_t> none(42, 0);
  EXPECT_EQ(std::memcmp(area(object, types::ospf_interface), none.data(), none.size()), 0);
}

TEST(StructureBulk, OnlyTheValueWordOfAnEnumerationIsAnnounced) {
  Store store;
  OWNED(store, ospf_instance_rev1_key, object);
  WriteWatch watch(store);
  store(ospf_instance_rev1_key_set_all, object, 1, 9);
  using namespace fields::ospf_instance_rev1_key;
  const auto af_at =
      static_cast<std::ptrdiff_t>(model::offset(types::ospf_instance_rev1_key, af)) + 12;
  const auto router_at =
      static_cast<std::ptrdiff_t>(model::offset(types::ospf_instance_rev1_key, router_id));
  EXPECT_EQ(ranges_in(watch, object), (Ranges{{af_at, 4}, {router_at, 4}}));
}

TEST(StructureBulk, CountersAreReadButNotWritten) {
  Store store;
  OWNED(store, ospfv2_network, object);
  const std::uint32_t routers[] = {1, 2};
  store(ospfv2_network_attached_router_set_mem, object, routers, 2);
  store(ospfv2_network_set_all, object);
  std::uint32_t count = 0;
  store(ospfv2_network_get_all, object, &count);
  EXPECT_EQ(count, 2u);
  EXPECT_EQ(store.err, 0u);
}

TEST(StructureBulk, AChoicesSelectorIsReadAndNothingOfItIsWritten) {
  Store store;
  OWNED(store, ospf_authentication, object);
  store(ospf_authentication_auth_type_selection_set_value, object, 2);
  WriteWatch watch(store);
  store(ospf_authentication_set_all, object);
  EXPECT_TRUE(watch.writes().empty());
  std::uint32_t selection = 0;
  store(ospf_authentication_get_all, object, &selection);
  EXPECT_EQ(selection, 2u);
}

// Flag sets have no place in the bulk forms: these take nothing but the object.
static_assert(std::is_same_v<decltype(&ospfv3_lsa_body_get_all),
                             void (*)(kelp_handle *, std::uint32_t, const ospfv3_lsa_body *,
                                      std::uint32_t *)>);
static_assert(
    std::is_same_v<decltype(&ospfv3_lsa_body_set_all),
                   void (*)(kelp_handle *, std::uint32_t, ospfv3_lsa_body *, std::uint32_t *)>);

}  // namespace
