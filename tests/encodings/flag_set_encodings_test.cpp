// Image, text and XML of flag objects.
#include "encodings/flag_set_encodings.hpp"

#include <cstring>

#include "encodings/xml_forms.hpp"
#include "types/light_family.hpp"

namespace {

using encodings::Document;
using harness::CallLog;
using harness::Store;
using harness::TraceLog;
using harness::WriteWatch;
using light::Place;

constexpr std::uint32_t space = 7;
using Image = std::vector<std::uint8_t>;

// An object with its byte of flags, destroyed with the test.
class Options : public harness::Owned<lsa_flag_options> {
 public:
  Options(Store &store, std::uint8_t value)
      : Owned(store, lsa_flag_options_create, lsa_flag_options_destroy) {
    flags() = value;
  }
  ~Options() { header().variant = 0; }
  std::uint8_t &flags() const { return light::flags(get())->flags; }
  kelp_object_header &header() const { return *light::header(get()); }
};

// --- image -----------------------------------------------------------------------------------

TEST(FlagSetLen, IsSixAndAsksForTheVariant) {
  Store store;
  CallLog calls;
  EXPECT_EQ(lsa_flag_options_len(store, space, nullptr), 6u);
  EXPECT_EQ(calls.calls(), std::vector<std::string>{"kelp_get_instance_variant"});
  EXPECT_EQ(ospfv3_lsa_body_flag_options_len_cr(store, nullptr), 6u);
  store.handle()->cr_err = KELP_ERR_PERMISSION;
  EXPECT_EQ(ospfv3_lsa_body_flag_options_len_cr(store, nullptr), 0u);
}

TEST(FlagSetMarshal, WritesVariantJumpWordAndByte) {
  Store store;
  Options object(store, 0x09);
  Image image(6, 0xEE);
  EXPECT_EQ(store(lsa_flag_options_marshal, image.data(), object, 6), 6u);
  EXPECT_EQ(image, (Image{0, 0, 0, 0, 5, 0x09}));
  EXPECT_EQ(store.err, 0u);
}

TEST(FlagSetMarshal, CallsThePlatformInOrder) {
  Store store;
  Options object(store, 1);
  Image image(6);
  CallLog calls(store);
  store(lsa_flag_options_marshal, image.data(), object, 6);
  EXPECT_EQ(calls.calls(), (std::vector<std::string>{
                               "kelp_clear_last_error", "kelp_get_instance_variant",
                               "kelp_domain_lookup_variant", "_kelp_instance_variant_marshal",
                               "_kelp_variant_jump_marshal", "_kelp_variant_jump_marshal"}));
}

TEST(FlagSetMarshal, WithoutRoomForTheByteFailsAndStillPatchesTheJumpWord) {
  Store store;
  Options object(store, 0x09);
  Image image(6, 0xEE);
  EXPECT_EQ(store(lsa_flag_options_marshal, image.data(), object, 5), 5u);
  store.expect_failure(KELP_ERR_NO_ROOM);
  EXPECT_EQ(image, (Image{0, 0, 0, 0, 4, 0xEE}));
}

TEST(FlagSetMarshal, WithoutRoomForTheJumpWordStillWritesItInItsPlace) {
  Store store;
  Options object(store, 0x09);
  for (std::int32_t length = 1; length <= 4; ++length) {
    SCOPED_TRACE(length);
    Image image(6, 0xEE);
    store.err = 0;
    EXPECT_EQ(store(lsa_flag_options_marshal, image.data(), object, length), 1u);
    EXPECT_EQ(store.err, KELP_ERR_NO_ROOM);
    EXPECT_EQ(image, (Image{0, 0, 0, 0, 0, 0xEE}));
  }
}

TEST(FlagSetMarshal, OfAVariantAboveTheDomainsLeavesTheByteOutAndPatchesTheJumpWord) {
  Store store;
  Options object(store, 0x09);
  object.header().variant = 1;
  Image image(6, 0xEE);
  EXPECT_EQ(store(lsa_flag_options_marshal, image.data(), object, 6), 5u);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(image, (Image{0, 0, 0, 0, 4, 0xEE}));
}

TEST(FlagSetMarshal, LimitsTheVariantToZero) {
  Store store;
  store.set_variant("lsa_flag_options", 3);
  Options object(store, 0x09);
  ASSERT_EQ(object.header().variant, 3);
  Image image(6, 0xEE);
  store(lsa_flag_options_marshal, image.data(), object, 6);
  EXPECT_EQ(image[0], 0);
  EXPECT_EQ(store.err, 0u);
}

TEST(FlagSetMarshal, WithoutAnyLengthFailsWithTwelve) {
  Store store;
  Options object(store, 0x09);
  Image image(6, 0xEE);
  for (std::int32_t length : {0, -1}) {
    store.err = 0;
    EXPECT_EQ(store(lsa_flag_options_marshal, image.data(), object, length), 0u);
    store.expect_failure(KELP_ERR_NO_MEMORY);
  }
  EXPECT_EQ(image, Image(6, 0xEE));
}

TEST(FlagSetUnmarshal, TakesVariantRecordAndByteUnannounced) {
  Store store;
  alignas(8) std::uint8_t memory[24] = {};
  light::header(memory)->created_variant = 9;
  light::header(memory)->obj_flags = OBJ_NESTED;
  const Image image{4, 0, 0, 0, 5, 0x81};
  WriteWatch watch(store);
  EXPECT_EQ(store(lsa_flag_options_unmarshal, image.data(),
                  reinterpret_cast<lsa_flag_options *>(memory), 6, 1),
            6u);
  EXPECT_EQ(light::header(memory)->variant, 0) << "limited";
  EXPECT_EQ(light::header(memory)->created_variant, 9);
  EXPECT_EQ(light::header(memory)->obj_flags, OBJ_NESTED);
  EXPECT_EQ(light::header(memory)->tinfo, &_lsa_flag_options_type_info_internal);
  EXPECT_EQ(light::flags(memory)->flags, 0x81);
  EXPECT_TRUE(watch.all().empty());
  EXPECT_EQ(store.err, 0u);
}

TEST(FlagSetUnmarshal, TakesBitsThatTheSetDoesNotName) {
  Store store;
  alignas(8) std::uint8_t memory[24] = {};
  const Image image{0, 0, 0, 0, 5, 0xFF};
  store(ospfv2_lsa_body_flags_options_unmarshal, image.data(),
        reinterpret_cast<ospfv2_lsa_body_flags_options *>(memory), 6, 0);
  EXPECT_EQ(light::flags(memory)->flags, 0xFF);
  EXPECT_EQ(store.err, 0u);
}

TEST(FlagSetUnmarshal, PassesOverTheBytesOfALaterVariantAndTellsSo) {
  Store store;
  alignas(8) std::uint8_t memory[24] = {};
  const Image image{1, 0, 0, 0, 9, 0x03, 1, 2, 3, 4};
  TraceLog traced;
  EXPECT_EQ(store(lsa_flag_options_unmarshal, image.data(),
                  reinterpret_cast<lsa_flag_options *>(memory), 10, 0),
            10u);
  EXPECT_EQ(light::flags(memory)->flags, 0x03);
  EXPECT_EQ(traced.texts(), std::vector<std::string>{
                                "offset_jump read_len 6 offset_jump_base 1 _kelp_variant_jump 9"});
  EXPECT_EQ(traced.messages()[0].level, 6u);
  EXPECT_EQ(store.err, 0u);
}

TEST(FlagSetUnmarshal, EachSetHasAMessageOfItsOwn) {
  Store store;
  alignas(8) std::uint8_t memory[24] = {};
  const Image image{0, 0, 0, 0, 6, 0x01, 0};
  TraceLog traced;
  for (const auto *type : harbor::model::all_flag_sets) {
    std::uint32_t (*unmarshal)(kelp_handle *, std::uint32_t, const void *, void *, std::int32_t,
                               std::uint32_t, std::uint32_t *) =
        light::operation(std::string(type->name), "unmarshal");
    EXPECT_EQ(store(unmarshal, image.data(), memory, 7, 0), 7u);
  }
  ASSERT_EQ(traced.messages().size(), 4u);
  for (std::size_t at = 1; at < 4; ++at) {
    EXPECT_EQ(traced.messages()[at].index, traced.messages()[0].index + at);
  }
}

TEST(FlagSetUnmarshal, OfASmallerJumpWordKeepsThePosition) {
  Store store;
  alignas(8) std::uint8_t memory[24] = {};
  const Image image{0, 0, 0, 0, 4, 0x01};
  TraceLog traced;
  EXPECT_EQ(store(lsa_flag_options_unmarshal, image.data(),
                  reinterpret_cast<lsa_flag_options *>(memory), 6, 0),
            6u);
  EXPECT_TRUE(traced.empty());
}

TEST(FlagSetUnmarshal, TakesTheByteWithoutATestOfTheLength) {
  Store store;
  alignas(8) std::uint8_t memory[24] = {};
  const Image image{0, 0, 0, 0, 4, 0x01};
  EXPECT_EQ(store(lsa_flag_options_unmarshal, image.data(),
                  reinterpret_cast<lsa_flag_options *>(memory), 5, 0),
            6u);
  EXPECT_EQ(light::flags(memory)->flags, 0x01);
  EXPECT_EQ(store.err, 0u);
}

TEST(FlagSetUnmarshal, WithoutAnyLengthFailsWithTwelveAndStoresNothing) {
  Store store;
  alignas(8) std::uint8_t memory[24] = {};
  const Image image{0, 0, 0, 0, 5, 1};
  EXPECT_EQ(store(lsa_flag_options_unmarshal, image.data(),
                  reinterpret_cast<lsa_flag_options *>(memory), 0, 0),
            0u);
  store.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(light::header(memory)->tinfo, nullptr);
}

// --- text ------------------------------------------------------------------------------------

TEST(FlagSetPrint, ShowsEachSetFlagWithABlankBehindIt) {
  Store store;
  Options object(store, 0x09);
  char buffer[256] = {};
  const std::uint32_t written = store(lsa_flag_options_print, buffer, 2, "peer", object, 256);
  EXPECT_EQ(written, std::strlen(buffer));
  EXPECT_STREQ(buffer, "  peer@lsa_flag_options:LSA_FLAG_OPTIONS_DC LSA_FLAG_OPTIONS_E \n");
  object.flags() = 0;
  const std::uint32_t empty = store(lsa_flag_options_print, buffer, 0, "peer", object, 256);
  EXPECT_EQ(std::string(buffer, empty), "peer@lsa_flag_options:\n");
}

TEST(FlagSetPrint, ShowsBitSevenAndNothingBeyondTheNamedBits) {
  Store store;
  Options object(store, 0x80);
  char buffer[256];
  const std::uint32_t written = store(lsa_flag_options_print, buffer, 0, "o", object, 256);
  EXPECT_EQ(std::string(buffer, written), "o@lsa_flag_options:LSA_FLAG_OPTIONS_AF \n");

  harbor::FlagObject other{};
  other.flags = 0xF8;
  const std::uint32_t beyond =
      store(ospfv2_lsa_body_flags_options_print, buffer, 0, "o",
            reinterpret_cast<ospfv2_lsa_body_flags_options *>(&other), 256);
  EXPECT_EQ(std::string(buffer, beyond), "o@ospfv2_lsa_body_flags_options:\n");
}

TEST(FlagSetPrint, OfNullShowsAnErrorForEachBit) {
  Store store;
  char buffer[256];
  CallLog calls;
  const std::uint32_t written = store(lsa_flag_options_print, buffer, 0, "o", nullptr, 256);
  EXPECT_EQ(std::string(buffer, written), "o@lsa_flag_options:ERR ERR ERR ERR ERR ERR ERR ERR \n");
  EXPECT_EQ(calls.count("kelp_store_epoch_err"), 8u);
  EXPECT_EQ(store.err, 0u) << "the word is not touched";
  EXPECT_EQ(store.last_error(), KELP_ERR_EPOCH);
}

TEST(FlagSetPrint, OfTheChainTakesTheTypesNameAndTellsOfAFailure) {
  Store store;
  Options object(store, 0x02);
  char buffer[256] = {};
  const std::uint32_t written = lsa_flag_options_print_cr(store, object, buffer, 256);
  EXPECT_EQ(written, std::strlen(buffer));
  EXPECT_STREQ(buffer, "lsa_flag_options@lsa_flag_options:LSA_FLAG_OPTIONS_P \n");
  store.handle()->cr_err = 5;
  EXPECT_EQ(lsa_flag_options_print_cr(store, object, buffer, 256), 0xFFFFFFFFu);
}

TEST(FlagSetPrint, HasAWordForABitBeyondTheNamedOnes) {
  const auto &set = harbor::model::flag_sets::ospfv2_lsa_body_flags_options;
  EXPECT_EQ(harbor::flag_set_encodings::word_of(set, 2), "OSPV2_LSA_BODY_FLAG_OPTIONS_B");
  EXPECT_EQ(harbor::flag_set_encodings::word_of(set, 3), "UNKNOWN");
  const auto &elements =
      harbor::light_text::member_elements<harbor::model::flag_sets::ospfv2_lsa_body_flags_options>;
  EXPECT_STREQ(harbor::flag_set_encodings::element_of(elements, 2).text,
               "<OSPV2_LSA_BODY_FLAG_OPTIONS_B/>");
  EXPECT_STREQ(harbor::flag_set_encodings::element_of(elements, 3).text, "<error>UNKNOWN</error>");
}

// --- XML -------------------------------------------------------------------------------------

TEST(FlagSetToXml, HoldsAnEmptyElementForEachSetFlag) {
  Store store;
  Options object(store, 0x81);
  char buffer[256] = {};
  const std::uint32_t written = store(lsa_flag_options_to_xml, "o", buffer, object, 256, 2);
  EXPECT_EQ(written, std::strlen(buffer));
  EXPECT_STREQ(buffer, "<o><LSA_FLAG_OPTIONS_DC/><LSA_FLAG_OPTIONS_AF/></o>");
  object.flags() = 0;
  store(lsa_flag_options_to_xml, "o", buffer, object, 256, 0);
  EXPECT_STREQ(buffer, "<o></o>");
}

TEST(FlagSetToXml, OfNullHoldsAnErrorForEachBit) {
  Store store;
  char buffer[256];
  store(ospfv2_lsa_body_flags_options_to_xml, "o", buffer, nullptr, 256, 0);
  EXPECT_STREQ(buffer, "<o><error>ERR</error><error>ERR</error><error>ERR</error></o>");
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(store.last_error(), KELP_ERR_EPOCH);
}

TEST(FlagSetToXml, OfTheChainTakesTheTypesNameAndTellsOfAFailure) {
  Store store;
  Options object(store, 0x01);
  char buffer[256] = {};
  const std::uint32_t written = lsa_flag_options_toxml_cr(store, object, buffer, 256);
  EXPECT_EQ(written, std::strlen(buffer));
  EXPECT_STREQ(buffer, "<lsa_flag_options><LSA_FLAG_OPTIONS_DC/></lsa_flag_options>");
  EXPECT_EQ(lsa_flag_options_toxml_cr(store, object, buffer, 20), 0xFFFFFFFFu);
}

TEST(FlagSetFromXml, SetsEveryFlagThatIsThereAndKeepsTheOthers) {
  Store store;
  Options object(store, 0x40);
  Document document(
      "<o><LSA_FLAG_OPTIONS_AF/><LSA_FLAG_OPTIONS_DC/><OTHER/><LSA_FLAG_OPTIONS_MC/></o>");
  WriteWatch watch(store);
  lsa_flag_options_from_xml(store, space, "//o", document, object, &store.err, nullptr, 0);
  EXPECT_EQ(object.flags(), 0x40 | 0x80 | 0x01 | 0x04);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(light::places(watch.writes(), static_cast<lsa_flag_options *>(object)),
            (std::vector<Place>{{11, 1}, {11, 1}, {11, 1}}));
}

TEST(FlagSetFromXml, AsksForEveryFlagAndAdjustsForEachOneFound) {
  Store store;
  Options object(store, 0);
  Document document("<o><LSA_FLAG_OPTIONS_DC/></o>");
  CallLog calls(store);
  lsa_flag_options_from_xml(store, space, "//o", document, object, &store.err, nullptr, 0);
  EXPECT_EQ(calls.count("xml_get_element_value"), 8u);
  EXPECT_EQ(calls.count("kelp_store_err"), 7u);
  EXPECT_EQ(calls.only({"kelp_clear_last_error", "kelplib_adjust_variant",
                        "kelp_get_instance_variant", "write_notify"}),
            (std::vector<std::string>{"kelp_clear_last_error", "kelp_clear_last_error",
                                      "kelplib_adjust_variant", "kelp_get_instance_variant",
                                      "write_notify"}));
  EXPECT_EQ(store.last_error(), KELP_ERR_NOT_FOUND) << "of the last absent flag";
}

TEST(FlagSetFromXml, PassesOverANullObject) {
  Store store;
  Document document("<o><LSA_FLAG_OPTIONS_DC/></o>");
  CallLog calls(store);
  lsa_flag_options_from_xml(store, space, "//o", document, nullptr, &store.err, nullptr, 0);
  EXPECT_EQ(calls.count("write_notify"), 0u);
  EXPECT_EQ(store.err, 0u);
}

TEST(FlagSetFromXml, TellsThePathOfALookupThatFails) {
  Store store;
  Options object(store, 0x40);
  Document document("<o><LSA_FLAG_OPTIONS_DC/></o>");
  char message[64] = "untouched";
  CallLog calls;
  lsa_flag_options_from_xml(store, space, "o", document, object, &store.err, message, 64);
  store.expect_failure(KELP_ERR_INVALID);
  EXPECT_STREQ(message, "Failed xpath: o");
  EXPECT_EQ(object.flags(), 0x40);
  EXPECT_EQ(calls.count("xml_get_element_value"), 1u);
}

// --- an earlier failure ------------------------------------------------------------------------

}  // namespace
