// Image, text and XML of enumeration objects.
#include <cstring>

#include "encodings/xml_forms.hpp"
#include "types/light_family.hpp"

namespace {

using encodings::Document;
using harness::CallLog;
using harness::Store;
using harness::WriteWatch;
using light::Place;

constexpr std::uint32_t space = 7;
using Image = std::vector<std::uint8_t>;

// An object of the type at its domain's variant, with a value.
template <typename Type>
struct Held : harness::Owned<Type> {
  Held(kelp_handle *handle, Type *(*create)(kelp_handle *, std::uint32_t),
       void (*destroy)(kelp_handle *, std::uint32_t, Type *), std::uint32_t value = 0)
      : harness::Owned<Type>(handle, create, destroy) {
    set(value);
  }
  void set(std::uint32_t value) const { light::enumeration(this->get())->value = value; }
  std::uint32_t value() const { return light::enumeration(this->get())->value; }
};
#define HELD(handle, type, value) Held object(handle, type##_create, type##_destroy, value)

// --- image -----------------------------------------------------------------------------------

TEST(EnumerationLen, IsFive) {
  Store store;
  EXPECT_EQ(address_family_len(store, space), 5u);
  EXPECT_EQ(nbr_state_type_len(store, space), 5u);
  EXPECT_EQ(ospf_auth_type_len_cr(store), 5u);
  store.handle()->cr_err = KELP_ERR_PERMISSION;
  EXPECT_EQ(ospf_auth_type_len_cr(store), 0u);
}

TEST(EnumerationMarshal, WritesVariantAndValue) {
  Store store;
  HELD(store, ospf_auth_type, 3);
  Image image(5, 0xEE);
  EXPECT_EQ(store(ospf_auth_type_marshal, image.data(), object, 5), 5u);
  EXPECT_EQ(image, (Image{1, 0, 0, 0, 3}));
  EXPECT_EQ(store.err, 0u);
}

TEST(EnumerationMarshal, CallsThePlatformInOrder) {
  Store store;
  OWNED(store, address_family, object);
  Image image(5);
  CallLog calls(store);
  store(address_family_marshal, image.data(), object, 5);
  EXPECT_EQ(calls.calls(),
            (std::vector<std::string>{"kelp_clear_last_error", "kelp_get_instance_variant",
                                      "kelp_domain_lookup_variant",
                                      "_kelp_instance_variant_marshal", "u_int32_marshal"}));
}

TEST(EnumerationMarshal, OfAVariantAboveTheDomainsFailsAndIsLowered) {
  Store store;
  const auto refusal = light::refusal(store);
  HELD(store, ospf_auth_type, 2);
  store.set_variant("ospf_auth_type", 0);
  Image image(5, 0xEE);
  CallLog calls;
  const std::uint32_t written = store(ospf_auth_type_marshal, image.data(), object, 5);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(image[0], 0) << "the domain's variant";
  EXPECT_EQ(light::stored(calls), refusal);
  EXPECT_EQ(calls.count("u_int32_marshal"), 1u) << "marshalling goes on";
  EXPECT_LE(written, 5u);
  EXPECT_EQ(light::header(object.get())->variant, 1) << "the object keeps its variant";
}

TEST(EnumerationMarshal, LimitsTheVariantToTheTypesHighest) {
  Store store;
  store.set_variant("ospf_auth_type", 5);
  store.set_variant("address_family", 5);
  OWNED(store, ospf_auth_type, two);
  OWNED(store, address_family, one);
  Image image(5);
  store(ospf_auth_type_marshal, image.data(), two, 5);
  EXPECT_EQ(image[0], 1);
  store(address_family_marshal, image.data(), one, 5);
  EXPECT_EQ(image[0], 0);
  EXPECT_EQ(store.err, 0u);
}

TEST(EnumerationMarshal, WithoutAnyLengthFailsWithTwelve) {
  Store store;
  OWNED(store, address_family, object);
  Image image(5, 0xEE);
  for (std::int32_t length : {0, -1}) {
    store.err = 0;
    EXPECT_EQ(store(address_family_marshal, image.data(), object, length), 0u);
    store.expect_failure(KELP_ERR_NO_MEMORY);
  }
  EXPECT_EQ(image, Image(5, 0xEE));
}

TEST(EnumerationMarshal, OfAShortLengthFailsInThePrimitives) {
  Store store;
  HELD(store, address_family, 1);
  for (std::int32_t length = 1; length <= 4; ++length) {
    Image image(5, 0xEE);
    store.err = 0;
    EXPECT_EQ(store(address_family_marshal, image.data(), object, length), 1u);
    EXPECT_EQ(store.err, KELP_ERR_NO_ROOM);
    EXPECT_EQ(image, (Image{0, 0xEE, 0xEE, 0xEE, 0xEE}));
  }
}

TEST(EnumerationUnmarshal, TakesTheVariantTheRecordAndTheValue) {
  Store store;
  alignas(8) std::uint8_t memory[16] = {};
  auto *object = reinterpret_cast<ospf_auth_type *>(memory);
  light::header(memory)->created_variant = 9;
  light::header(memory)->obj_flags = OBJ_NESTED;
  const Image image{1, 0, 0, 0, 3};
  EXPECT_EQ(store(ospf_auth_type_unmarshal, image.data(), object, 5, 0), 5u);
  EXPECT_EQ(light::header(memory)->variant, 1);
  EXPECT_EQ(light::header(memory)->created_variant, 9) << "left as it was";
  EXPECT_EQ(light::header(memory)->obj_flags, OBJ_NESTED);
  EXPECT_EQ(light::header(memory)->tinfo, &_ospf_auth_type_type_info_internal);
  EXPECT_EQ(light::enumeration(memory)->value, 3u);
}

TEST(EnumerationUnmarshal, AppliesNoVariantRule) {
  Store store;
  alignas(8) std::uint8_t memory[16] = {};
  const Image image{0, 0, 0, 0, 77};
  store(address_family_unmarshal, image.data(), reinterpret_cast<address_family *>(memory), 5, 0);
  EXPECT_EQ(light::enumeration(memory)->value, 77u);
  EXPECT_EQ(store.err, 0u);
}

TEST(EnumerationUnmarshal, LimitsALaterVariantToTheTypesHighest) {
  Store store;
  alignas(8) std::uint8_t memory[16] = {};
  const Image image{2, 0, 0, 0, 1};
  store(ospf_auth_type_unmarshal, image.data(), reinterpret_cast<ospf_auth_type *>(memory), 5, 0);
  EXPECT_EQ(light::header(memory)->variant, 1);
  store(address_family_unmarshal, image.data(), reinterpret_cast<address_family *>(memory), 5, 0);
  EXPECT_EQ(light::header(memory)->variant, 0);
}

TEST(EnumerationUnmarshal, UnderSharedRecordsStoresTheCopy) {
  Store store({.shared_tinfo = true});
  alignas(8) std::uint8_t memory[16] = {};
  const Image image{0, 0, 0, 0, 1};
  store(address_family_unmarshal, image.data(), reinterpret_cast<address_family *>(memory), 5, 0);
  EXPECT_NE(light::header(memory)->tinfo, &_address_family_type_info_internal);
  EXPECT_STREQ(light::header(memory)->tinfo->type_name, "address_family");
}

// What the value was each time it was announced.
struct Announced {
  const std::uint32_t *value;
  std::vector<std::uint32_t> seen;
  static void observe(void *context, const void *address, std::size_t length, std::uint32_t,
                      std::uint32_t) {
    auto *announced = static_cast<Announced *>(context);
    EXPECT_EQ(address, announced->value) << "only the value is announced";
    EXPECT_EQ(length, 4u);
    announced->seen.push_back(*announced->value);
  }
};

TEST(EnumerationUnmarshal, AnnouncesTheValueBetweenItsTwoStores) {
  Store store;
  alignas(8) std::uint8_t memory[16] = {};
  light::enumeration(memory)->value = 55;
  Announced announced{&light::enumeration(memory)->value, {}};
  const Image image{0, 0, 0, 0, 6};
  kelp_handle_set_write_observer(store, Announced::observe, &announced);
  store(nbr_state_type_unmarshal, image.data(), reinterpret_cast<nbr_state_type *>(memory), 5, 0);
  kelp_handle_set_write_observer(store, nullptr, nullptr);
  EXPECT_EQ(announced.seen, (std::vector<std::uint32_t>{55, 6}))
      << "the primitive's own announcement, then that of the second store";
  EXPECT_EQ(light::enumeration(memory)->value, 7u);
}

TEST(EnumerationUnmarshal, WithoutAnyLengthFailsWithTwelveAndStoresNothing) {
  Store store;
  alignas(8) std::uint8_t memory[16] = {};
  const Image image{1, 0, 0, 0, 1};
  for (std::int32_t length : {0, -1}) {
    store.err = 0;
    EXPECT_EQ(store(ospf_auth_type_unmarshal, image.data(),
                    reinterpret_cast<ospf_auth_type *>(memory), length, 0),
              0u);
    store.expect_failure(KELP_ERR_NO_MEMORY);
    EXPECT_EQ(light::header(memory)->tinfo, nullptr);
  }
}

TEST(EnumerationUnmarshal, OfAShortLengthKeepsTheHeldValue) {
  Store store;
  alignas(8) std::uint8_t memory[16] = {};
  light::enumeration(memory)->value = 3;
  const Image image{0, 0, 0, 0, 6};
  EXPECT_EQ(store(nbr_state_type_unmarshal, image.data(),
                  reinterpret_cast<nbr_state_type *>(memory), 4, 0),
            1u);
  EXPECT_EQ(store.err, KELP_ERR_NO_ROOM);
  EXPECT_EQ(light::enumeration(memory)->value, 3u);
}

TEST(EnumerationImage, NeighbourStateTravelsByItsInternalRange) {
  Store store;
  HELD(store, nbr_state_type, 0);
  struct {
    std::uint32_t held;
    std::uint8_t wire;
    std::uint32_t back;
  } const cases[] = {{8, 7, 8}, {1, 0, 1}, {0, 0, 1}, {9, 9, 9}};
  for (const auto &at : cases) {
    SCOPED_TRACE(at.held);
    Image image(5, 0xEE);
    object.set(at.held);
    store(nbr_state_type_marshal, image.data(), object, 5);
    EXPECT_EQ(image, (Image{0, 0, 0, 0, at.wire}));
    EXPECT_EQ(object.value(), at.held) << "the object keeps its value";
    store(nbr_state_type_unmarshal, image.data(), object, 5, 0);
    EXPECT_EQ(object.value(), at.back);
  }
  EXPECT_EQ(store.err, 0u);
}

// --- text ------------------------------------------------------------------------------------

TEST(EnumerationPrint, ShowsTheNameOnALineOfItsOwn) {
  Store store;
  HELD(store, ospf_network_type, 3);
  char buffer[128] = {};
  const std::uint32_t written = store(ospf_network_type_print, buffer, 4, "peer", object, 128);
  EXPECT_STREQ(buffer, "    peer@ospf_network_type:POINT_TO_POINT\n");
  EXPECT_EQ(written, std::strlen(buffer));
}

TEST(EnumerationPrint, LeavesTheLineOfAValueWithoutNameOpen) {
  Store store;
  HELD(store, address_family, 7);
  char buffer[128] = {};
  const std::uint32_t written = store(address_family_print, buffer, 0, "name", object, 128);
  EXPECT_STREQ(buffer, "name@address_family:Enum value out of range");
  EXPECT_EQ(written, std::strlen(buffer));
}

TEST(EnumerationPrint, ShowsTheHeldValueOfANeighbourState) {
  Store store;
  HELD(store, nbr_state_type, 0);
  const auto shown = [&] {
    char buffer[128];
    return std::string(buffer, store(nbr_state_type_print, buffer, 0, "s", object, 128));
  };
  for (const auto &member : harbor::model::enumerations::nbr_state_type.members) {
    object.set(member.value);
    EXPECT_EQ(shown(), "s@nbr_state_type:" + std::string(member.name) + "\n");
  }
  object.set(0);
  EXPECT_EQ(shown(), "s@nbr_state_type:Enum value out of range");
}

TEST(EnumerationPrint, StopsAtTheSpaceThatItGets) {
  Store store;
  OWNED(store, address_family, object);
  char buffer[32];
  std::memset(buffer, '#', sizeof(buffer));
  EXPECT_EQ(store(address_family_print, buffer, 2, "peer", object, 10), 10u);
  EXPECT_EQ(std::string(buffer, 12), "  peer@add##");
}

TEST(EnumerationPrint, OfTheChainTakesTheTypesNameAndTellsOfAFailure) {
  Store store;
  OWNED(store, ospf_auth_type, object);
  char buffer[128] = {};
  const std::uint32_t written = ospf_auth_type_print_cr(store, object, buffer, 128);
  EXPECT_EQ(written, std::strlen(buffer));
  EXPECT_STREQ(buffer, "ospf_auth_type@ospf_auth_type:OSPF_AUTH_IPSEC\n");
  store.handle()->cr_err = 5;
  std::strcpy(buffer, "kept");
  EXPECT_EQ(ospf_auth_type_print_cr(store, object, buffer, 128), 0xFFFFFFFFu);
  EXPECT_STREQ(buffer, "kept");
}

// --- XML -------------------------------------------------------------------------------------

TEST(EnumerationToXml, HoldsOneEmptyElementNamedAfterTheValue) {
  Store store;
  char buffer[128] = {};
  HELD(store, ospf_network_type, 3);
  const std::uint32_t written = store(ospf_network_type_to_xml, "type", buffer, object, 128, 2);
  EXPECT_STREQ(buffer, "<type><POINT_TO_POINT/></type>") << "without the state byte";
  EXPECT_EQ(written, std::strlen(buffer));
  object.set(4);
  store(ospf_network_type_to_xml, "type", buffer, object, 128, 0);
  EXPECT_STREQ(buffer, "<type><ospf_network_type value out of range/></type>");
}

TEST(EnumerationToXml, CallsThePlatformInOrder) {
  Store store;
  OWNED(store, address_family, object);
  char buffer[128];
  CallLog calls;
  store(address_family_to_xml, "af", buffer, object, 128, 0);
  EXPECT_EQ(calls.calls(), (std::vector<std::string>{"kelp_clear_last_error", "start_tag",
                                                     "xml_enum_print", "end_tag"}));
}

TEST(EnumerationToXml, OfTheChainTakesTheTypesNameAndTellsOfAFailure) {
  Store store;
  char buffer[128] = {};
  HELD(store, address_family, 1);
  const std::uint32_t written = address_family_toxml_cr(store, object, buffer, 128);
  EXPECT_EQ(written, std::strlen(buffer));
  EXPECT_STREQ(buffer, "<address_family><ADDR_FAMILY_IPV6/></address_family>");
  EXPECT_EQ(address_family_toxml_cr(store, object, buffer, 20), 0xFFFFFFFFu) << "no room";
  EXPECT_NE(store.handle()->cr_err, 0u);
}

TEST(EnumerationFromXml, TakesTheValueOfTheChildThatIsThere) {
  Store store;
  OWNED(store, nbr_state_type, object);
  for (const auto &member : harbor::model::enumerations::nbr_state_type.members) {
    Document document("<state><" + std::string(member.name) + "/></state>");
    nbr_state_type_from_xml(store, space, "//state", document, object, &store.err, nullptr, 0);
    EXPECT_EQ(light::enumeration(object.get())->value, member.value);
    EXPECT_EQ(store.err, 0u);
  }
}

TEST(EnumerationFromXml, WithBothChildrenTakesTheFirstNameAndLooksNoFurther) {
  Store store;
  HELD(store, address_family, 1);
  Document document("<af><ADDR_FAMILY_IPV6/><ADDR_FAMILY_IPV4/></af>");
  CallLog calls;
  address_family_from_xml(store, space, "//af", document, object, &store.err, nullptr, 0);
  EXPECT_EQ(object.value(), 0u);
  EXPECT_EQ(calls.count("xml_get_element_value"), 1u);
}

TEST(EnumerationFromXml, WithoutAKnownChildLeavesTheValueAndTheWordAtZero) {
  Store store;
  HELD(store, address_family, 1);
  Document document("<af><SOMETHING_ELSE/></af>");
  CallLog calls;
  address_family_from_xml(store, space, "//af", document, object, &store.err, nullptr, 0);
  EXPECT_EQ(object.value(), 1u);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(store.last_error(), KELP_ERR_NOT_FOUND) << "each absent name is stored";
  EXPECT_EQ(calls.count("kelp_store_err"), 2u);
}

TEST(EnumerationFromXml, NeitherAnnouncesNorAdjusts) {
  Store store;
  store.set_variant("ospf_auth_type", 0);
  OWNED(store, ospf_auth_type, object);
  Document document("<a><OSPF_AUTH_TYPE_NONE/></a>");
  CallLog calls(store);
  ospf_auth_type_from_xml(store, space, "//a", document, object, &store.err, nullptr, 0);
  EXPECT_EQ(light::enumeration(object.get())->value, 3u);
  EXPECT_EQ(calls.count("write_notify"), 0u);
  EXPECT_EQ(calls.count("kelplib_adjust_variant"), 0u);
}

TEST(EnumerationFromXml, TellsThePathOfALookupThatFails) {
  Store store;
  HELD(store, address_family, 1);
  Document document("<af><ADDR_FAMILY_IPV4/></af>");
  char message[64] = "untouched";
  CallLog calls;
  address_family_from_xml(store, space, "af", document, object, &store.err, message, 64);
  EXPECT_EQ(store.err, KELP_ERR_INVALID) << "no form of path that the runtime takes";
  EXPECT_EQ(store.last_error(), KELP_ERR_INVALID);
  EXPECT_STREQ(message, "Failed xpath: af");
  EXPECT_EQ(object.value(), 1u);
  EXPECT_EQ(calls.count("xml_get_element_value"), 1u);

  store.err = 0;
  address_family_from_xml(store, space, "af", document, object, &store.err, nullptr, 0);
  EXPECT_EQ(store.err, KELP_ERR_INVALID) << "also without a message buffer";
  store.err = 0;
  address_family_from_xml(store, space, "af", document, object, &store.err, message, 8);
  EXPECT_STREQ(message, "Failed ") << "cut at the buffer's size";
}

// --- an earlier failure ------------------------------------------------------------------------

}  // namespace
