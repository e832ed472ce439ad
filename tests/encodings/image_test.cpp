// Images of structures: the worked ones byte for byte, what happens at the end of a buffer, and how
// reader and writer of different variants and different tracking meet.
#include <ospf_harbor_oper.h>

#include "model/lists.hpp"
#include "support/objects.hpp"

namespace {

using namespace encodings;
using harness::CallLog;
using harness::Store;
using harness::TraceLog;
using harness::WriteWatch;
namespace types = harbor::model::types;

const std::string empty_oid(80, '0');
constexpr std::uint8_t untouched = 0xA5;

// A buffer whose bytes behind the stated length can be looked at.
struct Buffer {
  explicit Buffer(std::size_t size = 4096) : bytes(size, untouched) {}
  explicit Buffer(const Bytes &image) : bytes(image) { bytes.resize(image.size() + 64, untouched); }
  Bytes first(std::size_t count) const {
    return Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
  }
  void *data() { return bytes.data(); }
  Bytes bytes;
};

template <typename Type>
Bytes image_of(kelp_handle *handle, const Object<Type> &object, std::uint32_t *err) {
  using Marshal = std::uint32_t(kelp_handle *, std::uint32_t, void *, const void *, std::int32_t,
                                std::uint32_t *);
  Buffer buffer;
  const std::uint32_t used =
      object.template call<Marshal>("marshal")(handle, 0, buffer.data(), object, 2048, err);
  return buffer.first(used);
}

// --- the worked images ---------------------------------------------------------------------------

TEST(Image, AnAreaOfVariant1HasItsIdAndBothReferences) {
  Store store;
  const Object<ospf_area> area(store, types::ospf_area);
  store(ospf_area_area_id_set_value, area, 10);
  auto &interfaces = field<kelp_reference>(area, types::ospf_area, "interfaces").oid;
  interfaces.handle_word = 0x0102030405060708;
  interfaces.id[0] = 0x11;
  interfaces.source[15] = 0x22;
  const Bytes expected = from_hex("01 00 00000058 0000000a 0102030405060708 11" +
                                  std::string(30, '0') + std::string(30, '0') + "22" + empty_oid);
  EXPECT_EQ(image_of(store, area, &store.err), expected);
  EXPECT_EQ(ospf_area_len(store, 0, area), expected.size());
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, AnAreaOfVariant0LacksTheReferenceOfVariant1) {
  Store store;
  store.set_variant("ospf_area", 0);
  const Object<ospf_area> area(store, types::ospf_area);
  store(ospf_area_area_id_set_value, area, 10);
  EXPECT_EQ(image_of(store, area, &store.err), from_hex("00 00 00000030 0000000a" + empty_oid));
  EXPECT_EQ(ospf_area_len(store, 0, area), 50u);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, ATrackedAreaHasAStateByteBehindEachField) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospf_area> area(store, types::ospf_area);
  store(ospf_area_area_id_set_value, area, 10);
  store(ospf_area_interfaces_state_flag_set, area, 7);
  store(ospf_area_area_scope_lsas_state_flag_set, area, 9);
  EXPECT_EQ(image_of(store, area, &store.err),
            from_hex("01 08 0000005b 0000000a 02" + empty_oid + "07" + empty_oid + "09"));
  EXPECT_EQ(ospf_area_len(store, 0, area), 93u);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, ANetworkHasItsMaskTheCountAndTheElements) {
  Store store;
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  ip_address mask = ip_address_make_ipv4(0xFFFFFF00);
  store(ospfv2_network_network_mask_set, network, &mask);
  const std::uint32_t routers[] = {1, 0x0A000001};
  store(ospfv2_network_attached_router_set_mem, network, routers, 2);
  EXPECT_EQ(image_of(store, network, &store.err),
            from_hex("00 00 00000026 04ff ffffff00 000000000000000000000000 00000000"
                     "00000002 00000001 0a000001"));
  EXPECT_EQ(ospfv2_network_len(store, 0, network), 40u);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, AChoiceHasItsSelectorAndTheSelectedArms) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  store(ospf_authentication_key_string_set, choice, text_arm(store, "key"));
  auto *algorithm = ospf_crypto_algorithm_create(store, 0);
  store(ospf_crypto_algorithm_md5_set_value, algorithm, 1);
  store(ospf_authentication_crypto_algorithm_val_set, choice, algorithm);
  EXPECT_EQ(image_of(store, choice, &store.err),
            from_hex("01 00 0000001e 01 00000002 00000003 6b6579"
                     "00 00 0000000c 00 00 01 00 00 00 00 00"));
  EXPECT_EQ(ospf_authentication_len(store, 0, choice), 32u);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, ATrackedChoiceHasAStateByteForEverySlot) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  store(ospf_authentication_key_chain_set, choice, text_arm(store, "k"));
  EXPECT_EQ(image_of(store, choice, &store.err),
            from_hex("01 08 00000014 01 00000001 00  00  00000001 6b 02  00 00 00"));
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, AnInterfaceKeepsItsReferenceInTheMiddle) {
  Store store;
  const Object<ospf_interface> object(store, types::ospf_interface);
  store(ospf_authentication_no_auth_set, store(ospf_interface_authentication_val_get, object),
        u_int32_create(store, 0));
  const std::string unset = "00ff" + std::string(40, '0');
  EXPECT_EQ(image_of(store, object, &store.err),
            from_hex("01 00 00000124 00000000 00 00000000 00 00"
                     "00 00 0000000a 00000000 0000" +
                     empty_oid +
                     "00 00 00 00000007 00 00 00 0000 0000 0000 0000 0000 00 00 00 00"
                     "00 00 00000006 00 00  00  01 00 0000000d 01 00000003 00000000" +
                     "00000000 00000000 00000000" + unset + unset + empty_oid + empty_oid +
                     empty_oid + "00"));
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, LengthsOfTheSmallestImages) {
  Store store;
  EXPECT_EQ(address_family_len(store, 0), 5u);
  EXPECT_EQ(lsa_flag_options_len(store, 0, nullptr), 6u);
  EXPECT_EQ(ospfv2_lsa_body_flags_options_len(store, 0, nullptr), 6u);
  EXPECT_EQ(ospfv3_lsa_flag_options_len(store, 0, nullptr), 6u);
  EXPECT_EQ(ospfv3_lsa_body_flag_options_len(store, 0, nullptr), 6u);
  const Object<ospfv2_topology> object(store, types::ospfv2_topology);
  header(object).variant = -1;
  EXPECT_EQ(ospfv2_topology_len(store, 0, object), 6u);
  EXPECT_EQ(image_of(store, object, &store.err), from_hex("ff 00 00000004"));
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, AnLsaWithOnlyOspfv3FieldsCarriesTheWholeOspfv2Part) {
  Store store;
  const Object<link_scope_lsa> object(store, types::link_scope_lsa);
  const Object<ospfv2_lsa> part(store, types::ospfv2_lsa);
  const std::uint32_t before = ospfv2_lsa_len(store, 0, part);
  store(link_scope_lsa_version_set_value, object, 3);
  const Bytes image = image_of(store, object, &store.err);
  EXPECT_EQ(store.err, 0u);
  const Bytes empty_part = image_of(store, part, &store.err);
  ASSERT_EQ(empty_part.size(), before);
  // Frame, decoded_completed, raw_data_len and version stand before it.
  EXPECT_EQ(Bytes(image.begin() + 15, image.begin() + 15 + before), empty_part);
}

// --- variants ------------------------------------------------------------------------------------

TEST(Image, ANewerWritersFieldsAreJumpedByATypeOfOneVariant) {
  Store store;
  TraceLog trace;
  const Object<ospfv2_topology> object(store, types::ospfv2_topology);
  Buffer buffer(from_hex("01 00 0000000f 00000007 0008 aabbccddee"));
  EXPECT_EQ(store(ospfv2_topology_unmarshal, buffer.data(), object, 17, 0), 17u);
  EXPECT_EQ(header(object).variant, 0);
  EXPECT_EQ(store(ospfv2_topology_mt_id_get_value, object), 7u);
  EXPECT_EQ(store(ospfv2_topology_metric_get_value, object), 8u);
  EXPECT_EQ(trace.texts(), std::vector<std::string>{
                               "offset_jump read_len 12 offset_jump_base 2 _kelp_variant_jump 15"});
  EXPECT_EQ(trace.messages().front().level, 6u);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(store.last_error(), 0);
}

TEST(Image, AVariantAboveTheHighestIsReadAsTheHighest) {
  Store store;
  TraceLog trace;
  const Object<ospf_area> area(store, types::ospf_area);
  Buffer buffer(from_hex("02 00 0000005b 0000000a" + empty_oid + empty_oid + "010203"));
  EXPECT_EQ(store(ospf_area_unmarshal, buffer.data(), area, 93, 0), 93u);
  EXPECT_EQ(header(area).variant, 1);
  EXPECT_EQ(store(ospf_area_area_id_get_value, area), 10u);
  EXPECT_TRUE(trace.has(6, "offset_jump read_len 90 offset_jump_base 2 _kelp_variant_jump 91"));
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, AnImageOfVariant0LowersTheObjectAndKeepsItsLaterFields) {
  Store store;
  const Object<ospf_area> area(store, types::ospf_area);
  auto &later = field<kelp_reference>(area, types::ospf_area, "area_scope_lsas").oid;
  later.handle_word = 77;
  Buffer buffer(from_hex("00 00 00000030 0000000a" + empty_oid));
  EXPECT_EQ(store(ospf_area_unmarshal, buffer.data(), area, 50, 0), 50u);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(header(area).variant, 0);
  EXPECT_EQ(later.handle_word, 77u);
  EXPECT_EQ(store(ospf_area_area_scope_lsas_get_by_ref, area), nullptr);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
}

// The calls of one mismatch alone; the runtime's own are among them.
std::vector<std::string> calls_of_a_mismatch(Store &store) {
  std::uint32_t err = 0;
  CallLog calls;
  kelp_store_epoch_err(store, 43, &err);
  return calls.calls();
}

TEST(Image, AnObjectAboveTheDomainIsWrittenAtTheDomainsVariantAndRefused) {
  Store store;
  const Object<ospf_area> area(store, types::ospf_area);
  store.set_variant("ospf_area", 0);
  const auto expected = calls_of_a_mismatch(store);
  Buffer buffer;
  CallLog calls;
  const std::uint32_t used = store(ospf_area_marshal, buffer.data(), area, 200);
  EXPECT_EQ(calls.only({"kelp_store_epoch_err", "kelp_store_err"}), expected);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  // Nothing but the frame is written under the set word, and the jump word is patched.
  EXPECT_EQ(buffer.first(used), from_hex("00 00 00000004"));
}

TEST(Image, AnEmbeddedEnumerationOrFlagSetAboveTheDomainIsRefused) {
  Store store;
  const Object<ospf_neighbor> neighbor(store, types::ospf_neighbor);
  const Object<ospfv2_lsa_body> body(store, types::ospfv2_lsa_body);
  field<kelp_object_header>(neighbor, types::ospf_neighbor, "state").variant = 3;
  field<kelp_object_header>(body, types::ospfv2_lsa_body, "body_flag_options").variant = 3;
  Buffer buffer;
  store(ospf_neighbor_marshal, buffer.data(), neighbor, 2000);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  store.err = 0;
  store(ospfv2_lsa_body_marshal, buffer.data(), body, 2000);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
}

TEST(Image, MarshalForCloneWritesAnObjectAboveTheDomainAsItIs) {
  Store store;
  const Object<ospf_area> area(store, types::ospf_area);
  store.set_variant("ospf_area", 0);
  Buffer buffer;
  EXPECT_EQ(store(ospf_area_marshal_for_clone, buffer.data(), area, 200), 90u);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(buffer.bytes[0], 1);
}

TEST(Image, MarshalForCloneStillRefusesAnEmbeddedObjectAboveTheDomain) {
  Store store;
  const Object<ospfv2_lsa> lsa(store, types::ospfv2_lsa);
  store.set_variant("ospfv2_header", 0);
  Buffer buffer;
  store(ospfv2_lsa_marshal_for_clone, buffer.data(), lsa, 2000);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(buffer.bytes[6], 0);
}

TEST(Image, ALinkScopeLsaOfVariant0EndsBehindItsReferences) {
  Store store;
  store.set_variant("link_scope_lsa", 0);
  const Object<link_scope_lsa> lower(store, types::link_scope_lsa);
  const Bytes image = image_of(store, lower, &store.err);
  EXPECT_EQ(image[0], 0);
  header(lower).variant = 1;
  const Object<ospfv2_link_tlv> tlv(store, types::ospfv2_link_tlv);
  EXPECT_EQ(link_scope_lsa_len(store, 0, lower),
            image.size() + 22 + ospfv2_link_tlv_len(store, 0, tlv) + 40);
  EXPECT_EQ(store.err, 0u);
}

// --- flags and ra-data ---------------------------------------------------------------------------

TEST(Image, OnlyTwoObjectFlagsGoOnTheWire) {
  Store store;
  const Object<ospfv2_topology> object(store, types::ospfv2_topology);
  header(object).obj_flags = OBJ_EMBEDDED | OBJ_NESTED | OBJ_STTR_RELOCATED;
  EXPECT_EQ(image_of(store, object, &store.err)[1], 0);
  header(object).obj_flags = 0;
}

TEST(Image, OtherFlagsInAnImageAreNotTaken) {
  Store store;
  const Object<ospfv2_topology> object(store, types::ospfv2_topology);
  Buffer buffer(from_hex("00 d7 0000000a 00000007 0008"));
  EXPECT_EQ(store(ospfv2_topology_unmarshal, buffer.data(), object, 12, 0), 12u);
  EXPECT_EQ(header(object).obj_flags, 0);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, AnRaDataBlockIsWrittenZeroedAndDroppedByTheReader) {
  Store store;
  const Object<ospfv2_topology> object(store, types::ospfv2_topology);
  store(ospfv2_topology_mt_id_set_value, object, 7);
  header(object).obj_flags |= OBJ_RA_DATA;
  const Bytes image = image_of(store, object, &store.err);
  EXPECT_EQ(image, from_hex("00 20 000000000000000000 0000000a 00000007 0000"));
  EXPECT_EQ(ospfv2_topology_len(store, 0, object), image.size() - 9);
  const Object<ospfv2_topology> copy(store, types::ospfv2_topology);
  Buffer buffer(from_hex("00 20 112233445566778899 0000000a 00000009 0000"));
  EXPECT_EQ(store(ospfv2_topology_unmarshal, buffer.data(), copy, 21, 0), 21u);
  EXPECT_EQ(store(ospfv2_topology_mt_id_get_value, copy), 9u);
  EXPECT_EQ(header(copy).obj_flags, OBJ_RA_DATA);
  EXPECT_EQ(store.err, 0u);
}

// --- state bytes ---------------------------------------------------------------------------------

TEST(Image, AnUntrackedObjectGetsZeroStateBytesUnderATrackingHandle) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospfv2_topology> object(store.another_handle({}), types::ospfv2_topology);
  EXPECT_EQ(image_of(store, object, &store.err), from_hex("00 08 0000000c 00000000 00 0000 00"));
}

TEST(Image, ATrackingReaderOfAnUntrackedImageKeepsItsStateBytes) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospfv2_topology> object(store, types::ospfv2_topology);
  store(ospfv2_topology_metric_state_flag_set, object, 5);
  Buffer buffer(from_hex("00 00 0000000a 00000007 0008"));
  EXPECT_EQ(store(ospfv2_topology_unmarshal, buffer.data(), object, 12, 0), 12u);
  EXPECT_EQ(header(object).obj_flags & OBJ_STATE_TRACKED, OBJ_STATE_TRACKED);
  EXPECT_EQ(store(ospfv2_topology_mt_id_state_flag_get, object), 0);
  EXPECT_EQ(store(ospfv2_topology_metric_state_flag_get, object), 5);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, ATrackingReaderTakesTheStateBytesAndAnnouncesEach) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospfv2_topology> object(store, types::ospfv2_topology);
  Buffer buffer(from_hex("00 08 0000000c 00000007 02 0008 03"));
  WriteWatch watch(store);
  EXPECT_EQ(ospfv2_topology_unmarshal(store, 3, buffer.data(), object, 14, 0, &store.err), 14u);
  const auto writes = watch.writes();
  ASSERT_EQ(writes.size(), 4u);
  EXPECT_EQ(writes[1].address, object.area());
  EXPECT_EQ(writes[1].length, 1u);
  EXPECT_EQ(writes[1].space_id, 3u);
  EXPECT_EQ(writes[3].address, object.area() + 1);
  EXPECT_EQ(object.area()[0], 2);
  EXPECT_EQ(object.area()[1], 3);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, AnUntrackedReaderPassesOverStateBytesToTheWritersEnd) {
  Store tracked({.tracking = KELP_TRACKING_ON});
  const Object<ospfv2_network> network(tracked, types::ospfv2_network);
  const std::uint32_t routers[] = {1, 2, 3};
  tracked(ospfv2_network_attached_router_set_mem, network, routers, 3);
  const Bytes image = image_of(tracked, network, &tracked.err);
  for (const std::uint32_t tracking : {KELP_TRACKING_ABSENT, KELP_TRACKING_OFF}) {
    Store store({.tracking = tracking});
    TraceLog trace;
    const Object<ospfv2_network> copy(store, types::ospfv2_network);
    Buffer buffer(image);
    EXPECT_EQ(store(ospfv2_network_unmarshal, buffer.data(), copy,
                    static_cast<std::int32_t>(image.size()), 0),
              image.size());
    EXPECT_EQ(header(copy).obj_flags, 0);
    EXPECT_EQ(ospfv2_network_compare(network, copy), 0);
    EXPECT_TRUE(trace.empty());
    EXPECT_EQ(store.err, 0u);
  }
}

TEST(Image, AnEmptyArrayHasNoStateByteAlthoughLenCountsOne) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  store(ospfv2_network_attached_router_state_flag_whole_set, network, 9);
  const Bytes image = image_of(store, network, &store.err);
  EXPECT_EQ(image, from_hex("00 08 0000001f 00ff" + std::string(40, '0') + "00 00000000"));
  EXPECT_EQ(ospfv2_network_len(store, 0, network), image.size() + 1);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, LenOfAnUntrackedObjectUnderATrackingHandleCountsNoElementStates) {
  Store store({.tracking = KELP_TRACKING_ON});
  kelp_handle *untracked = store.another_handle({});
  const Object<ospfv2_network> network(untracked, types::ospfv2_network);
  const std::uint32_t routers[] = {1, 2, 3};
  ospfv2_network_attached_router_set_mem(untracked, 0, network, routers, 3, &store.err);
  EXPECT_EQ(image_of(store, network, &store.err).size(), ospfv2_network_len(store, 0, network) + 3);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, ElementsThatCameWithoutStatesAreWrittenWithZeroStates) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  Buffer buffer(from_hex("00 00 00000022 00ff" + std::string(40, '0') + "00000001 00000005"));
  EXPECT_EQ(store(ospfv2_network_unmarshal, buffer.data(), network, 36, 0), 36u);
  EXPECT_EQ(image_of(store, network, &store.err),
            from_hex("00 08 00000025 00ff" + std::string(40, '0') + "00 00000001 00000005 00 00"));
  EXPECT_EQ(store.err, 0u);
}

// --- the end of the buffer -----------------------------------------------------------------------

TEST(Image, WithoutRoomTheStateByteOfAPlainFieldFallsBehindTheBuffer) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospfv2_topology> object(store, types::ospfv2_topology);
  store(ospfv2_topology_metric_set_value, object, 8);
  Buffer buffer;
  EXPECT_EQ(store(ospfv2_topology_marshal, buffer.data(), object, 13), 13u);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(buffer.first(15), from_hex("00 08 0000000b 00000000 00 0008 02 a5"));
}

TEST(Image, WithRoomForOneByteTheStateByteOfAPlainFieldIsInTheImage) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospfv2_topology> object(store, types::ospfv2_topology);
  Buffer buffer;
  EXPECT_EQ(store(ospfv2_topology_marshal, buffer.data(), object, 14), 14u);
  EXPECT_EQ(buffer.first(15), from_hex("00 08 0000000c 00000000 00 0000 00 a5"));
}

TEST(Image, TheStateByteOfAReferenceNeedsRoomForTwo) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospf_area> area(store, types::ospf_area);
  Buffer exact;
  EXPECT_EQ(store(ospf_area_marshal, exact.data(), area, 93), 92u);
  EXPECT_EQ(exact.bytes[92], untouched);
  EXPECT_EQ(exact.bytes[5], 0x5a);
  Buffer roomy;
  EXPECT_EQ(store(ospf_area_marshal, roomy.data(), area, 94), 93u);
  EXPECT_EQ(roomy.bytes[92], 0);
  EXPECT_EQ(roomy.bytes[5], 0x5b);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, TheStateByteOfAnArmNeedsRoomForTwo) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  store(ospf_authentication_key_chain_set, choice, text_arm(store, "k"));
  Buffer buffer;
  EXPECT_EQ(store(ospf_authentication_marshal, buffer.data(), choice, 22), 21u);
  EXPECT_EQ(store(ospf_authentication_marshal, buffer.data(), choice, 23), 22u);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, AReaderAtTheExactEndTakesNoStateByteOfAPlainField) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospfv2_topology> object(store, types::ospfv2_topology);
  object.area()[1] = 9;
  Buffer buffer(from_hex("00 08 0000000b 00000000 01 0008 02"));
  EXPECT_EQ(store(ospfv2_topology_unmarshal, buffer.data(), object, 13, 0), 13u);
  EXPECT_EQ(object.area()[0], 1);
  EXPECT_EQ(object.area()[1], 9);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, AReaderOfAnExactImageJumpsOverTheStateByteOfALastReference) {
  Store store({.tracking = KELP_TRACKING_ON});
  Store untracked;
  TraceLog trace;
  const Bytes image = from_hex("01 08 0000005b 0000000a 02" + empty_oid + "03" + empty_oid + "04");
  const Object<ospf_area> area(store, types::ospf_area);
  Buffer buffer(image);
  EXPECT_EQ(store(ospf_area_unmarshal, buffer.data(), area, 93, 0), 93u);
  EXPECT_EQ(area.area()[1], 3);
  EXPECT_EQ(area.area()[2], 0);
  const Object<ospf_area> other(untracked, types::ospf_area);
  EXPECT_EQ(ospf_area_unmarshal(untracked, 0, buffer.data(), other, 93, 0, &store.err), 93u);
  const std::string jumped = "offset_jump read_len 92 offset_jump_base 2 _kelp_variant_jump 91";
  EXPECT_EQ(trace.texts(), (std::vector<std::string>{jumped, jumped}));
  EXPECT_EQ(store(ospf_area_unmarshal, buffer.data(), area, 94, 0), 93u);
  EXPECT_EQ(area.area()[2], 4);
  EXPECT_EQ(trace.messages().size(), 2u);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, ElementStatesAreCutToTheRoom) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  const std::uint32_t routers[] = {1, 2, 3};
  store(ospfv2_network_attached_router_set_mem, network, routers, 3);
  for (std::uint32_t i = 0; i < 3; ++i) {
    store(ospfv2_network_attached_router_state_flag_set, network, i, 4 + i);
  }
  EXPECT_EQ(image_of(store, network, &store.err).size(), 49u);
  Buffer buffer;
  EXPECT_EQ(store(ospfv2_network_marshal, buffer.data(), network, 47), 47u);
  EXPECT_EQ(Bytes(buffer.bytes.begin() + 45, buffer.bytes.begin() + 49), from_hex("02 04 a5 a5"));
  EXPECT_EQ(buffer.bytes[5], 45);
  EXPECT_EQ(store.err, 0u);

  const Object<ospfv2_network> copy(store, types::ospfv2_network);
  EXPECT_EQ(store(ospfv2_network_unmarshal, buffer.data(), copy, 47, 0), 47u);
  EXPECT_EQ(store(ospfv2_network_attached_router_state_flag_whole_get, copy), 2);
  EXPECT_EQ(store(ospfv2_network_attached_router_state_flag_get, copy, 0), 4);
  EXPECT_EQ(store(ospfv2_network_attached_router_state_flag_get, copy, 1), 0);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, AByteArrayLongerThanTheRoomIsCutWith90) {
  Store store;
  const Object<ospfv2_unknown_sub_tlv> object(store, types::ospfv2_unknown_sub_tlv);
  const std::uint8_t value[] = {1, 2, 3, 4, 5};
  store(ospfv2_unknown_sub_tlv_value_set_mem, object, value, 5);
  Buffer buffer;
  CallLog calls;
  EXPECT_EQ(store(ospfv2_unknown_sub_tlv_marshal, buffer.data(), object, 16), 16u);
  store.expect_failure(KELP_ERR_NO_ROOM);
  EXPECT_EQ(calls.count("kelp_store_err"), 1u);
  EXPECT_EQ(buffer.first(17), from_hex("00 00 0000000e 0000 0000 00000005 01 02 a5"));
}

TEST(Image, AShortBufferLeavesTheTailOfAByteArrayZeroWithoutAFailure) {
  Store store;
  const Object<ospfv2_unknown_sub_tlv> object(store, types::ospfv2_unknown_sub_tlv);
  Buffer buffer(from_hex("00 00 0000000e 0000 0000 00000005 01 02"));
  EXPECT_EQ(store(ospfv2_unknown_sub_tlv_unmarshal, buffer.data(), object, 16, 0), 16u);
  std::uint8_t value[5];
  store(ospfv2_unknown_sub_tlv_value_get_mem, object, value, 5);
  EXPECT_EQ(Bytes(value, value + 5), from_hex("01 02 00 00 00"));
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, AnEmbeddedObjectAtTheVeryEndOfTheBufferIs12) {
  Store store;
  const Object<ospfv2_lsa> lsa(store, types::ospfv2_lsa);
  Buffer buffer;
  EXPECT_EQ(store(ospfv2_lsa_marshal, buffer.data(), lsa, 6), 6u);
  EXPECT_EQ(store.err, KELP_ERR_NO_MEMORY);
  EXPECT_EQ(buffer.first(7), from_hex("00 00 00000004 a5"));
  store.err = 0;
  Buffer image(from_hex("00 00 00000004"));
  EXPECT_EQ(store(ospfv2_lsa_unmarshal, image.data(), lsa, 6, 0), 6u);
  EXPECT_EQ(store.err, KELP_ERR_NO_MEMORY);
}

TEST(Image, AnEnumerationAtTheVeryEndOfTheBufferIs12) {
  Store store;
  const Object<ospf_instance> instance(store, types::ospf_instance);
  Buffer buffer;
  EXPECT_EQ(store(ospf_instance_marshal, buffer.data(), instance, 6), 6u);
  store.expect_failure(KELP_ERR_NO_MEMORY);
}

TEST(Image, TheJumpWordIsPatchedAfterAFailure) {
  Store store;
  const Object<ospf_area> area(store, types::ospf_area);
  Buffer buffer;
  EXPECT_EQ(store(ospf_area_marshal, buffer.data(), area, 20), 10u);
  EXPECT_EQ(store.err, KELP_ERR_NO_ROOM);
  EXPECT_EQ(buffer.first(11), from_hex("01 00 00000008 00000000 a5"));
}

TEST(Image, TheJumpWordIsPatchedWithFourBytesOfRoomWhateverThereIs) {
  Store store;
  const Object<ospf_area> area(store, types::ospf_area);
  Buffer buffer;
  EXPECT_EQ(store(ospf_area_marshal, buffer.data(), area, 3), 2u);
  EXPECT_EQ(store.err, KELP_ERR_NO_ROOM);
  EXPECT_EQ(buffer.first(7), from_hex("01 00 00000000 a5"));
}

TEST(Image, ALengthBelowOneIs12) {
  Store store;
  const Object<ospf_area> area(store, types::ospf_area);
  Buffer buffer;
  for (const std::int32_t length : {0, -1}) {
    CallLog calls;
    EXPECT_EQ(store(ospf_area_marshal, buffer.data(), area, length), 0u);
    EXPECT_EQ(store.err, KELP_ERR_NO_MEMORY);
    store.err = 0;
    EXPECT_EQ(store(ospf_area_unmarshal, buffer.data(), area, length, 0), 0u);
    EXPECT_EQ(store.err, KELP_ERR_NO_MEMORY);
    store.err = 0;
    EXPECT_EQ(calls.count("kelp_store_err"), 2u);
  }
  EXPECT_EQ(buffer.first(1)[0], untouched);
}

// --- arrays --------------------------------------------------------------------------------------

const std::string network_head = "00 00 00000026 00ff" + std::string(40, '0');

TEST(Image, AnArrayOfTheSameCountReusesItsStore) {
  Store store;
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  const std::uint32_t routers[] = {1, 2};
  store(ospfv2_network_attached_router_set_mem, network, routers, 2);
  auto *&elements = field<std::uint32_t *>(network, types::ospfv2_network, "attached_router");
  const auto *before = elements;
  Buffer buffer(from_hex(network_head + "00000002 00000007 00000008"));
  EXPECT_EQ(store(ospfv2_network_unmarshal, buffer.data(), network, 40, 1), 40u);
  EXPECT_EQ(elements, before);
  EXPECT_EQ(elements[0], 7u);
  EXPECT_EQ(elements[1], 8u);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, AnArrayOfAnotherCountReplacesItsStoreUnderReuse) {
  Store store;
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  const std::uint32_t routers[] = {1, 2, 3};
  store(ospfv2_network_attached_router_set_mem, network, routers, 3);
  const auto live = store.live_allocations();
  const auto *slot = &field<std::uint32_t *>(network, types::ospfv2_network, "attached_router");
  Buffer buffer(from_hex(network_head + "00000002 00000007 00000008"));
  WriteWatch watch(store);
  EXPECT_EQ(store(ospfv2_network_unmarshal, buffer.data(), network, 40, 1), 40u);
  const auto writes = watch.writes();
  EXPECT_EQ(std::count_if(writes.begin(), writes.end(),
                          [&](const auto &range) {
                            return range.address == slot && range.length == sizeof(*slot);
                          }),
            2);
  EXPECT_EQ(store.live_allocations(), live);
  EXPECT_EQ(store(ospfv2_network_attached_router_num_get_value, network), 2u);
  EXPECT_EQ(store(ospfv2_network_attached_router_get_value, network, 1), 8u);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, WithoutReuseAStoreIsAllocatedWhateverTheObjectHolds) {
  Store store({.may_leave = 1});
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  const std::uint32_t routers[] = {1, 2};
  store(ospfv2_network_attached_router_set_mem, network, routers, 2);
  const auto live = store.live_allocations();
  Buffer buffer(from_hex(network_head + "00000002 00000007 00000008"));
  EXPECT_EQ(store(ospfv2_network_unmarshal, buffer.data(), network, 40, 0), 40u);
  EXPECT_EQ(store.live_allocations(), live + 1);
}

TEST(Image, AnEmptyArrayInTheImageLeavesTheStoreAlone) {
  Store store;
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  const std::uint32_t routers[] = {1, 2};
  store(ospfv2_network_attached_router_set_mem, network, routers, 2);
  const auto *before = field<std::uint32_t *>(network, types::ospfv2_network, "attached_router");
  Buffer buffer(from_hex("00 00 0000001e 00ff" + std::string(40, '0') + "00000000"));
  EXPECT_EQ(store(ospfv2_network_unmarshal, buffer.data(), network, 32, 1), 32u);
  EXPECT_EQ(store(ospfv2_network_attached_router_num_get_value, network), 0u);
  EXPECT_EQ(field<std::uint32_t *>(network, types::ospfv2_network, "attached_router"), before);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, ElementStatesOfTheSameCountAreAllocatedAnewAndTheOldOnesLeftBehind) {
  Store store({.tracking = KELP_TRACKING_ON, .may_leave = 1});
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  const std::uint32_t routers[] = {1, 2};
  store(ospfv2_network_attached_router_set_mem, network, routers, 2);
  Buffer same(image_of(store, network, &store.err));
  auto live = store.live_allocations();
  EXPECT_EQ(store(ospfv2_network_unmarshal, same.data(), network, 60, 1), 44u);
  EXPECT_EQ(store.live_allocations(), live + 1);
  const std::uint32_t more[] = {1, 2, 3};
  const Object<ospfv2_network> larger(store, types::ospfv2_network);
  store(ospfv2_network_attached_router_set_mem, larger, more, 3);
  Buffer other(image_of(store, larger, &store.err));
  live = store.live_allocations();
  EXPECT_EQ(store(ospfv2_network_unmarshal, other.data(), network, 60, 1), 49u);
  EXPECT_EQ(store.live_allocations(), live);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, ReuseReachesTheArraysOfEmbeddedObjects) {
  Store store;
  const Object<ospfv2_lsa> lsa(store, types::ospfv2_lsa);
  std::uint32_t &err = store.err;
  auto *body = ospfv2_lsa_lsa_body_get(store, 0, lsa, &err);
  auto *network = ospfv2_lsa_body_network_get(store, 0, body, &err);
  const std::uint32_t routers[] = {1, 2};
  ospfv2_network_attached_router_set_mem(store, 0, network, routers, 2, &err);
  Buffer buffer(image_of(store, lsa, &err));
  const auto live = store.live_allocations();
  ospfv2_lsa_unmarshal(store, 0, buffer.data(), lsa, 2000, 1, &err);
  EXPECT_EQ(store.live_allocations(), live);
  EXPECT_EQ(err, 0u);
}

TEST(Image, WithoutMemoryForElementsTheReaderEndsAtOnce) {
  Store store;
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  Buffer buffer(from_hex(network_head + "00000002 00000007 00000008"));
  header(network).variant = 0;
  store.fail_allocation(0);
  EXPECT_EQ(store(ospfv2_network_unmarshal, buffer.data(), network, 40, 0), 0u);
  store.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(field<std::uint32_t *>(network, types::ospfv2_network, "attached_router"), nullptr);
  EXPECT_EQ(field<std::uint32_t>(network, types::ospfv2_network, "attached_router_num"), 2u);
}

TEST(Image, WithoutMemoryForElementStatesTheReaderEndsAtOnce) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospfv2_network> source(store, types::ospfv2_network);
  const std::uint32_t routers[] = {1, 2};
  store(ospfv2_network_attached_router_set_mem, source, routers, 2);
  Buffer buffer(image_of(store, source, &store.err));
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  store.fail_allocation(1);
  EXPECT_EQ(store(ospfv2_network_unmarshal, buffer.data(), network, 60, 0), 0u);
  EXPECT_EQ(store.err, KELP_ERR_NO_MEMORY);
  EXPECT_EQ(store(ospfv2_network_attached_router_num_get_value, network), 0u);
  store.err = 0;
  EXPECT_EQ(store(ospfv2_network_attached_router_get_value, network, 0), 0u);
}

TEST(Image, ACountThatCannotBeReadLeavesTheArrayAlone) {
  Store store;
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  const std::uint32_t routers[] = {1, 2};
  store(ospfv2_network_attached_router_set_mem, network, routers, 2);
  Buffer buffer(from_hex("00 00 0000001c 00ff" + std::string(40, '0') + "0000"));
  EXPECT_EQ(store(ospfv2_network_unmarshal, buffer.data(), network, 30, 1), 30u);
  EXPECT_EQ(store.err, KELP_ERR_NO_ROOM);
  store.err = 0;
  EXPECT_EQ(store(ospfv2_network_attached_router_num_get_value, network), 2u);
  EXPECT_EQ(store(ospfv2_network_attached_router_get_value, network, 1), 2u);
}

// --- the choice ----------------------------------------------------------------------------------

TEST(Image, ASelectorOfNoArmHasOnlyTheStateBytesOfTheEmptySlots) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  auto &selector = *reinterpret_cast<std::uint32_t *>(
      &field<std::uint8_t[16]>(choice, types::ospf_authentication, "auth_type_selection")[12]);
  selector = 7;
  EXPECT_EQ(image_of(store, choice, &store.err),
            from_hex("01 08 0000000f 01 00000007 00 00 00 00 00 00"));
  EXPECT_EQ(ospf_authentication_len(store, 0, choice), 17u);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, ASelectedArmThatIsMissingIs2AndTheImageGoesOn) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  Buffer buffer;
  CallLog calls;
  const std::uint32_t used = store(ospf_authentication_marshal, buffer.data(), choice, 200);
  store.expect_failure(KELP_ERR_NOT_FOUND);
  EXPECT_EQ(calls.count("kelp_store_err"), 1u);
  EXPECT_EQ(buffer.first(used), from_hex("01 08 0000000f 01 00000000 00 00 00 00 00 00"));
}

TEST(Image, AKeyWithoutItsTextIs2) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  store(ospf_authentication_crypto_algorithm_val_set, choice,
        ospf_crypto_algorithm_create(store, 0));
  Buffer buffer;
  store(ospf_authentication_marshal, buffer.data(), choice, 200);
  EXPECT_EQ(store.err, KELP_ERR_NOT_FOUND);
}

TEST(Image, TheArmOfVariant1HasNoSlotInAnImageOfVariant0) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  store(ospf_authentication_no_auth_set, choice, u_int32_create(store, 0));
  EXPECT_EQ(image_of(store, choice, &store.err),
            from_hex("01 08 00000013 01 00000003 00 00 00 00 00 00000000 02"));
  header(choice).variant = 0;
  EXPECT_EQ(image_of(store, choice, &store.err),
            from_hex("00 08 0000000e 01 00000003 00 00 00 00 00"));
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, TheReaderMakesTheSelectedArmsAndAnnouncesTheirSlots) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  Buffer buffer(from_hex(
      "01 00 0000001e 01 00000002 00000003 6b6579 00 00 0000000c 00 00 01 01 00 00 00 00"));
  WriteWatch watch(store);
  EXPECT_EQ(store(ospf_authentication_unmarshal, buffer.data(), choice, 32, 0), 32u);
  for (const char *arm : {"key_string", "crypto_algorithm_val"}) {
    const void *slot = &field<void *>(choice, types::ospf_authentication, arm);
    const auto writes = watch.writes();
    EXPECT_EQ(std::count_if(
                  writes.begin(), writes.end(),
                  [&](const auto &range) { return range.address == slot && range.length == 8; }),
              1)
        << arm;
  }
  EXPECT_STREQ(kelp_vstring_text(store(ospf_authentication_key_string_get, choice)), "key");
  auto *algorithm = store(ospf_authentication_crypto_algorithm_val_get, choice);
  EXPECT_EQ(store(ospf_crypto_algorithm_md5_get_value, algorithm), 1u);
  EXPECT_EQ(store(ospf_crypto_algorithm_sha_1_get_value, algorithm), 1u);
  EXPECT_EQ(store(ospf_authentication_sa_get, choice), nullptr);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, TheReaderFillsAnArmThatIsThere) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  kelp_vstring *arm = text_arm(store, "old");
  store(ospf_authentication_sa_set, choice, arm);
  Buffer buffer(from_hex("01 00 0000000d 01 00000000 00000003 6e6577"));
  buffer.bytes[5] = 0x10;
  EXPECT_EQ(store(ospf_authentication_unmarshal, buffer.data(), choice, 40, 0), 18u);
  EXPECT_EQ(store(ospf_authentication_sa_get, choice), arm);
  EXPECT_STREQ(kelp_vstring_text(arm), "new");
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, WithoutMemoryForAnArmTheReaderEndsAtOnce) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  Buffer buffer(from_hex("01 00 00000010 01 00000000 00000003 6e6577"));
  store.fail_allocation(0);
  EXPECT_EQ(store(ospf_authentication_unmarshal, buffer.data(), choice, 18, 0), 0u);
  store.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(field<void *>(choice, types::ospf_authentication, "sa"), nullptr);
}

TEST(Image, TheReaderLeavesTheArmsAtTheFirstError) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  // The text of key_string is longer than the image; the algorithm behind it is not made.
  Buffer buffer(from_hex("01 00 0000000f 01 00000002 00000009 6b65"));
  EXPECT_EQ(store(ospf_authentication_unmarshal, buffer.data(), choice, 17, 0), 17u);
  EXPECT_EQ(store.err, KELP_ERR_NO_ROOM);
  EXPECT_NE(field<void *>(choice, types::ospf_authentication, "key_string"), nullptr);
  EXPECT_EQ(field<void *>(choice, types::ospf_authentication, "crypto_algorithm_val"), nullptr);
}

TEST(Image, OnlyTheReaderOfTheChoiceRegistersTheTrace) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  const Object<ospf_area> area(store, types::ospf_area);
  Buffer buffer(from_hex("00 00 00000004"));
  CallLog calls;
  store(ospf_authentication_unmarshal, buffer.data(), choice, 6, 0);
  EXPECT_EQ(calls.count("xlog_module_init_fn"), 1u);
  store.err = 0;
  store(ospf_area_unmarshal, buffer.data(), area, 6, 0);
  EXPECT_EQ(calls.count("xlog_module_init_fn"), 1u);
}

// --- the header of the object --------------------------------------------------------------------

TEST(Image, TheReadersHeaderStoresAreNotAnnounced) {
  Store store;
  const Object<ospf_area> area(store, types::ospf_area);
  kelp_type_record *record = header(area).tinfo;
  header(area).variant = 0;
  header(area).tinfo = nullptr;
  Buffer buffer(from_hex("01 00 00000058 0000000a" + empty_oid + empty_oid));
  WriteWatch watch(store);
  EXPECT_EQ(store(ospf_area_unmarshal, buffer.data(), area, 90, 0), 90u);
  const auto writes = watch.writes();
  ASSERT_EQ(writes.size(), 3u);
  EXPECT_EQ(writes[0].offset_in(area), 12);
  EXPECT_EQ(writes[0].length, 4u);
  EXPECT_EQ(writes[1].offset_in(area), 24);
  EXPECT_EQ(writes[1].length, 40u);
  EXPECT_EQ(writes[2].offset_in(area), 72);
  EXPECT_EQ(writes[2].length, 40u);
  EXPECT_EQ(header(area).variant, 1);
  EXPECT_EQ(header(area).tinfo, record);
  EXPECT_EQ(store.err, 0u);
}

TEST(Image, UnderSharedTypeRecordsTheReaderStoresTheRuntimesCopy) {
  Store store({.shared_tinfo = true});
  const Object<ospf_area> area(store, types::ospf_area);
  kelp_type_record *copy = header(area).tinfo;
  EXPECT_NE(copy, &_ospf_area_type_info_internal);
  header(area).tinfo = &_ospf_area_type_info_internal;
  Buffer buffer(from_hex("01 00 00000058 0000000a" + empty_oid + empty_oid));
  EXPECT_EQ(store(ospf_area_unmarshal, buffer.data(), area, 90, 0), 90u);
  EXPECT_EQ(header(area).tinfo, copy);
}

// --- length --------------------------------------------------------------------------------------

TEST(Image, LenOfANullObjectIsThatOfEmptyFieldsOfVariant0) {
  Store store({.tracking = KELP_TRACKING_ON});
  EXPECT_EQ(ospf_area_len(store, 0, nullptr), 50u);
  EXPECT_EQ(ospfv2_network_len(store, 0, nullptr), 32u);
  EXPECT_EQ(ospf_authentication_len(store, 0, nullptr), 11u);
  EXPECT_EQ(ospfv3_inter_area_prefix_len(store, 0, nullptr), 18u);
}

TEST(Image, LenCrIs0OnceTheHandleHasAnError) {
  Store store;
  const Object<ospf_area> area(store, types::ospf_area);
  EXPECT_EQ(ospf_area_len_cr(store, area), 90u);
  store.handle()->cr_err = KELP_ERR_NO_MEMORY;
  EXPECT_EQ(ospf_area_len_cr(store, area), 0u);
  EXPECT_EQ(store.handle()->cr_err, KELP_ERR_NO_MEMORY);
}

TEST(Image, ANullObjectIs22) {
  Store store;
  Buffer buffer;
  EXPECT_EQ(store(ospf_area_marshal, buffer.data(), nullptr, 90), 6u);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  EXPECT_EQ(buffer.first(7), from_hex("00 00 00000004 a5"));
  store.err = 0;
  EXPECT_EQ(store(ospf_area_unmarshal, buffer.data(), nullptr, 90, 0), 0u);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
}

// --- what ends the process -----------------------------------------------------------------------

class ImageDeathTest : public testing::Test {
 protected:
  ImageDeathTest() : area_(store_, types::ospf_area), buffer_(from_hex("01 00 00000004")) {}
  void corrupt() { store_.handle()->sttr->sttr_mode = 0x1234; }
  Store store_{{.tracking = KELP_TRACKING_ON}};
  const Object<ospf_area> area_;
  Buffer buffer_;
};

TEST_F(ImageDeathTest, ACorruptedHandleEndsTheWriter) {
  EXPECT_FATAL(
      {
        corrupt();
        store_(ospf_area_marshal, buffer_.data(), area_, 200);
      },
      "Corrupted KELP Handle");
}

TEST_F(ImageDeathTest, ACorruptedHandleEndsTheReader) {
  EXPECT_FATAL(
      {
        corrupt();
        store_(ospf_area_unmarshal, buffer_.data(), area_, 6, 0);
      },
      "Corrupted KELP Handle");
}

TEST_F(ImageDeathTest, ACorruptedHandleEndsTheLength) {
  EXPECT_FATAL(
      {
        corrupt();
        ospf_area_len(store_, 0, area_);
      },
      "Corrupted KELP Handle");
}

TEST_F(ImageDeathTest, AnUntrackedObjectUnderATrackingHandleEndsTheReader) {
  EXPECT_FATAL(
      {
        header(area_).obj_flags = 0;
        store_(ospf_area_unmarshal, buffer_.data(), area_, 6, 0);
      },
      "KELP handle and object state tracking mis-match");
}

}  // namespace
