// Hostile images made by hand, at least one for each thing that the checker refuses: what it says,
// and where.
#include <ospf_harbor_oper/multi_area.h>

#include "samples.hpp"

namespace {

using namespace ospf_harbor_check_tests;

struct Expected {
  std::uint32_t fault;
  std::size_t offset;
  std::string text;
};

void expect_refused(std::uint32_t kind, const char *name, const Bytes &image,
                    const Expected &expected) {
  ospf_harbor_check_result result;
  EXPECT_EQ(ospf_harbor_check_image(kind, name, image.data(), image.size(), &result),
            expected.fault);
  EXPECT_EQ(result.fault, expected.fault);
  EXPECT_EQ(result.offset, expected.offset);
  EXPECT_EQ(result.text, expected.text);
}

void expect_object_refused(const char *name, const std::string &digits, const Expected &expected) {
  expect_refused(OSPF_HARBOR_CHECK_OBJECT, name, from_hex(digits), expected);
}

std::size_t skipped_of_passing(const char *name, const std::string &digits) {
  const Bytes image = from_hex(digits);
  ospf_harbor_check_result result;
  EXPECT_EQ(
      ospf_harbor_check_image(OSPF_HARBOR_CHECK_OBJECT, name, image.data(), image.size(), &result),
      0u)
      << result.text;
  const Place place(KELP_TRACKING_ABSENT);
  EXPECT_EQ(read_image(place, {OSPF_HARBOR_CHECK_OBJECT, name}, image), "");
  return result.skipped;
}

// Where the jump word of the object at a path is.
std::size_t jump_word_of(const Input &of, const Bytes &image, const std::string &path) {
  struct Search {
    std::string path;
    std::size_t found = 0;
  } search{path};
  const auto see = [](const ospf_harbor_image_span *span, void *context) {
    auto &search = *static_cast<Search *>(context);
    if (span->piece == OSPF_HARBOR_SPAN_JUMP && search.path == span->path) {
      search.found = span->offset;
    }
  };
  ospf_harbor_check_walk(of.kind, of.name.c_str(), image.data(), image.size(), see, &search,
                         nullptr);
  EXPECT_NE(search.found, 0u) << path;
  return search.found;
}

// A record of an area, whole: its frame and an object of variant 0 without state bytes.
constexpr std::size_t object_at = 43;
Bytes area_record() {
  Bytes image = from_hex(
      "bc ffffffffffff 00 00000000 0000005d 0000000000000000000000"
      "82c5347ad65f8377a99c123367eb25f8"
      "00 00 00000030 0000000a");
  image.resize(image.size() + 40);
  return image;
}

Bytes area_record_with(std::size_t at, std::uint8_t byte) {
  Bytes image = area_record();
  image[at] = byte;
  return image;
}

void expect_record_refused(const Bytes &image, const Expected &expected) {
  expect_refused(OSPF_HARBOR_CHECK_RECORD, "tbl_ospf_area", image, expected);
}

TEST(Names, AnUnknownTypeOrTableIsRefused) {
  expect_object_refused("ospf_arena", "00",
                        {OSPF_HARBOR_FAULT_NAME, 0,
                         "name: found \"ospf_arena\", expected the name of a structure, an "
                         "enumeration or a flag set"});
  expect_refused(OSPF_HARBOR_CHECK_KEY, "ospf_area", {0},
                 {OSPF_HARBOR_FAULT_NAME, 0,
                  "name: found \"ospf_area\", expected the name of a table, such as "
                  "tbl_ospf_area"});
  expect_refused(OSPF_HARBOR_CHECK_OBJECT, nullptr, {0},
                 {OSPF_HARBOR_FAULT_NAME, 0,
                  "name: found \"\", expected the name of a structure, an enumeration or a flag "
                  "set"});
}

TEST(Sizes, MoreThanAReaderCanBeToldIsRefused) {
  const std::uint8_t byte = 0;
  ospf_harbor_check_result result;
  // No byte is looked at.
  EXPECT_EQ(ospf_harbor_check_image(OSPF_HARBOR_CHECK_OBJECT, "ospf_area", &byte,
                                    std::size_t{1} << 31, &result),
            static_cast<std::uint32_t>(OSPF_HARBOR_FAULT_SIZE));
  EXPECT_STREQ(result.text,
               "offset 0x0: ospf_area image: found 2147483648 bytes, expected at most 2147483647");
}

TEST(Sizes, AnEmptyImageIsCut) {
  expect_object_refused("ospf_area", "",
                        {OSPF_HARBOR_FAULT_CUT, 0,
                         "offset 0x0: ospf_area variant: found 0 bytes to the end of the image, "
                         "expected 1"});
}

TEST(Frames, AnotherMarkerIsRefused) {
  expect_record_refused(
      area_record_with(0, 189),
      {OSPF_HARBOR_FAULT_MARKER, 0, "offset 0x0: tbl_ospf_area marker: found 189, expected 188"});
}

TEST(Frames, ReservedBytesAreAllSet) {
  expect_record_refused(area_record_with(4, 0),
                        {OSPF_HARBOR_FAULT_RESERVED, 4,
                         "offset 0x4: tbl_ospf_area reserved bytes: found 0, expected 255"});
}

TEST(Frames, TheTrackingMarkIsWhatTheFirstObjectSays) {
  expect_record_refused(area_record_with(7, 1),
                        {OSPF_HARBOR_FAULT_TRACKING_MARK, 7,
                         "offset 0x7: tbl_ospf_area tracking mark: found 1, expected 0, as "
                         "the first object has no state bytes"});
}

TEST(Frames, TheLengthIsThatOfTheBytes) {
  expect_record_refused(area_record_with(15, 0x5e),
                        {OSPF_HARBOR_FAULT_FRAME_LENGTH, 12,
                         "offset 0xc: tbl_ospf_area length: found 94, expected 93, the "
                         "bytes of the image"});
}

TEST(Frames, TheFillIsNotLookedAt) {
  Bytes image = area_record();
  image[16] = 7;
  ospf_harbor_check_result result;
  EXPECT_EQ(ospf_harbor_check_image(OSPF_HARBOR_CHECK_RECORD, "tbl_ospf_area", image.data(),
                                    image.size(), &result),
            0u);
}

TEST(Frames, AnUnknownIdentityIsRefused) {
  Bytes image = area_record();
  image[27] = 0;
  expect_refused(OSPF_HARBOR_CHECK_RECORD, nullptr, image,
                 {OSPF_HARBOR_FAULT_LUID, 27,
                  "offset 0x1b: record luid: found 00c5347ad65f8377a99c123367eb25f8, expected the "
                  "identity of a table"});
}

TEST(Frames, TheIdentityOfAnotherTableIsRefused) {
  expect_refused(OSPF_HARBOR_CHECK_RECORD, "tbl_ospf", area_record(),
                 {OSPF_HARBOR_FAULT_LUID, 27,
                  "offset 0x1b: tbl_ospf luid: found 82c5347ad65f8377a99c123367eb25f8, "
                  "tbl_ospf_area, expected 9c0b0ab1eee446159760dca6685d0bde, tbl_ospf"});
}

TEST(Frames, AFrameWithoutAnObjectIsCut) {
  Bytes image = area_record();
  image.resize(object_at);
  image[15] = object_at;
  expect_record_refused(image, {OSPF_HARBOR_FAULT_CUT, object_at,
                                "offset 0x2b: ospf_area variant: found 0 bytes to the end of the "
                                "image, expected 1"});
}

TEST(Variants, ANegativeOneIsRefused) {
  expect_object_refused("multi_area", "ff 00 00000004",
                        {OSPF_HARBOR_FAULT_VARIANT, 0,
                         "offset 0x0: multi_area variant: found -1, expected 0 to 127"});
  expect_object_refused("address_family", "80 00000000",
                        {OSPF_HARBOR_FAULT_VARIANT, 0,
                         "offset 0x0: address_family variant: found -128, expected 0 to 127"});
}

// Why it is refused: the reader keeps it, and the object is of no use from then on.
TEST(Variants, ANegativeOneThatIsReadMakesTheObjectRefuseItsFields) {
  const Bytes image = from_hex("ff 00 00000004");
  const Place place(KELP_TRACKING_ABSENT);
  multi_area *object = multi_area_create(place, 0);
  std::uint32_t err = 0;
  EXPECT_EQ(multi_area_unmarshal(place, 0, image.data(), object, 6, 0, &err), 6u);
  EXPECT_EQ(err, 0u);
  multi_area_cost_get_value(place, 0, object, &err);
  EXPECT_EQ(err, 43u);
  multi_area_destroy(place, 0, object);
}

TEST(Variants, AHigherOneIsTheHighestKnownWithBytesToSkip) {
  EXPECT_EQ(skipped_of_passing("multi_area", "05 00 0000000d 00000001 0002 aabbcc"), 3u);
  EXPECT_EQ(skipped_of_passing("address_family", "05 00000001"), 0u);
  EXPECT_EQ(skipped_of_passing("lsa_flag_options", "05 00000007 09 aabb"), 2u);
}

TEST(Flags, ABitThatDoesNotTravelIsRefused) {
  expect_object_refused("multi_area", "00 29 0000000a 00000001 0002",
                        {OSPF_HARBOR_FAULT_FLAGS, 1,
                         "offset 0x1: multi_area flags: found 0x29, expected no bits but 0x08 and "
                         "0x20"});
}

TEST(Flags, AnRaDataBlockIsPassedOver) {
  EXPECT_EQ(skipped_of_passing("multi_area", "00 20 010203040506070809 0000000a 00000001 0002"),
            0u);
  expect_object_refused("multi_area", "00 20 0102030405060708",
                        {OSPF_HARBOR_FAULT_CUT, 2,
                         "offset 0x2: multi_area ra-data: found 8 bytes to the end of the image, "
                         "expected 9"});
}

TEST(Flags, ObjectsOfOneImageAgreeInHavingStateBytes) {
  // An unknown TLV's embedded link TLV begins behind type, length, an empty value and an address.
  const std::string head = "00 00 00000067 0001 0002 00000000 ";
  const std::string address = "00 ff 00000000000000000000000000000000 00000000 ";
  Bytes image = from_hex(head + address + "00 08 00000004");
  image.resize(2 + 0x67);
  ospf_harbor_check_result result;
  EXPECT_EQ(ospf_harbor_check_image(OSPF_HARBOR_CHECK_OBJECT, "ospfv2_unknown_tlv", image.data(),
                                    image.size(), &result),
            static_cast<std::uint32_t>(OSPF_HARBOR_FAULT_MIXED_TRACKING))
      << result.text;
  EXPECT_STREQ(result.found, "an object with state bytes");
  EXPECT_STREQ(result.piece, "flags");
  EXPECT_STREQ(result.path, "ospfv2_unknown_tlv.tlv");
}

TEST(JumpWords, ANegativeOneIsRefused) {
  expect_object_refused("multi_area", "00 00 fffffffe 00000001 0002",
                        {OSPF_HARBOR_FAULT_JUMP, 2,
                         "offset 0x2: multi_area jump word: found -2, expected 4 to 10 (what "
                         "remains)"});
}

TEST(JumpWords, OneThatDoesNotCoverItselfIsRefused) {
  expect_object_refused("multi_area", "00 00 00000003 00000001 0002",
                        {OSPF_HARBOR_FAULT_JUMP, 2,
                         "offset 0x2: multi_area jump word: found 3, expected 4 to 10 (what "
                         "remains)"});
}

TEST(JumpWords, OneThatLeadsOutOfTheImageIsRefused) {
  expect_object_refused("multi_area", "00 00 0000000b 00000001 0002",
                        {OSPF_HARBOR_FAULT_JUMP, 2,
                         "offset 0x2: multi_area jump word: found 11, expected 4 to 10 (what "
                         "remains)"});
}

// The options of a header, whose jump word reaches one byte behind the header.
TEST(JumpWords, OneThatLeadsOutOfTheObjectAroundItIsRefused) {
  const Input of{OSPF_HARBOR_CHECK_OBJECT, "ospfv2_lsa"};
  Bytes image = Sample(of, KELP_TRACKING_ABSENT, 2).image();
  const std::size_t header = jump_word_of(of, image, "ospfv2_lsa.header");
  const std::size_t options = jump_word_of(of, image, "ospfv2_lsa.header.options");
  const std::size_t room = header + image[header + 2] * 256u + image[header + 3] - options;
  image[options + 2] = static_cast<std::uint8_t>((room + 1) >> 8);
  image[options + 3] = static_cast<std::uint8_t>(room + 1);
  ospf_harbor_check_result result;
  EXPECT_EQ(ospf_harbor_check_image(of.kind, of.name.c_str(), image.data(), image.size(), &result),
            static_cast<std::uint32_t>(OSPF_HARBOR_FAULT_JUMP));
  EXPECT_EQ(result.offset, options);
  EXPECT_STREQ(result.path, "ospfv2_lsa.header.options");
  EXPECT_EQ(result.found, std::to_string(room + 1));
  EXPECT_EQ(result.expected, "4 to " + std::to_string(room) + " (what remains)");
}

TEST(JumpWords, OneThatIsShortOfTheFieldsIsRefused) {
  expect_object_refused("multi_area", "00 00 00000009 00000001 0002",
                        {OSPF_HARBOR_FAULT_CUT, 10,
                         "offset 0xa: multi_area.cost value: found 1 bytes to the end of its "
                         "object, expected 2"});
}

TEST(JumpWords, OneOfAFlagSetLeavesRoomForTheFlags) {
  expect_object_refused("lsa_flag_options", "00 00000004 09",
                        {OSPF_HARBOR_FAULT_CUT, 5,
                         "offset 0x5: lsa_flag_options value: found 0 bytes to the end of its "
                         "object, expected 1"});
}

TEST(Counts, OneBeyondWhatRemainsIsRefused) {
  const std::string address = "00 ff 00000000000000000000000000000000 00000000 ";
  expect_object_refused("ospfv2_network", "00 00 00000022 " + address + "ffffffff 00000001",
                        {OSPF_HARBOR_FAULT_COUNT, 28,
                         "offset 0x1c: ospfv2_network.attached_router count: found 4294967295, "
                         "expected at most 1 (what remains)"});
  EXPECT_EQ(skipped_of_passing("ospfv2_network", "00 00 00000022 " + address + "00000001 00000001"),
            0u);
}

// Each element has a state byte, and the whole array one.
TEST(Counts, StateBytesOfElementsTakeRoomToo) {
  const std::string address = "00 ff 00000000000000000000000000000000 00000000 02 ";
  expect_object_refused("ospfv2_network",
                        "00 08 00000028 " + address + "00000002 00000001 00000002 02",
                        {OSPF_HARBOR_FAULT_COUNT, 29,
                         "offset 0x1d: ospfv2_network.attached_router count: found 2, expected at "
                         "most 1 (what remains)"});
}

TEST(Texts, ALengthBeyondWhatRemainsIsRefused) {
  expect_refused(OSPF_HARBOR_CHECK_KEY, "tbl_ospf_interface", from_hex("7fffffff 65746830"),
                 {OSPF_HARBOR_FAULT_TEXT_LENGTH, 0,
                  "offset 0x0: ospf_interface.name text length: found 2147483647, expected at most "
                  "4 (what remains)"});
}

TEST(Addresses, AnUnknownFamilyIsRefused) {
  expect_refused(OSPF_HARBOR_CHECK_KEY, "tbl_ospf_static_neighbor",
                 from_hex("05 ff 0a000001000000000000000000000000 00000000"),
                 {OSPF_HARBOR_FAULT_ADDRESS, 0,
                  "offset 0x0: ospf_static_neighbor.address family: found 5, expected 0, 4 or 6"});
}

TEST(Addresses, APrefixLengthBeyondTheFamilysIsRefused) {
  expect_refused(OSPF_HARBOR_CHECK_KEY, "tbl_ospf_static_neighbor",
                 from_hex("04 21 0a000001000000000000000000000000 00000000"),
                 {OSPF_HARBOR_FAULT_ADDRESS, 1,
                  "offset 0x1: ospf_static_neighbor.address prefix length: found 33, expected at "
                  "most 32, or 255 for none"});
  expect_refused(OSPF_HARBOR_CHECK_KEY, "tbl_ospf_static_neighbor",
                 from_hex("00 00 00000000000000000000000000000000 00000000"),
                 {OSPF_HARBOR_FAULT_ADDRESS, 1,
                  "offset 0x1: ospf_static_neighbor.address prefix length: found 0, expected 255 "
                  "for none"});
}

TEST(Booleans, AThirdValueIsRefused) {
  expect_object_refused("ttl_security", "00 00 00000006 02 01",
                        {OSPF_HARBOR_FAULT_BOOLEAN, 6,
                         "offset 0x6: ttl_security.enabled value: found 2, expected 0 or 1"});
}

TEST(Oids, OneThatIsCutIsRefused) {
  Bytes image = area_record();
  image.pop_back();
  image[15] = 0x5c;
  image[object_at + 5] = 0x2f;
  expect_record_refused(image, {OSPF_HARBOR_FAULT_CUT, object_at + 34,
                                "offset 0x4d: ospf_area.interfaces OID source: found 15 bytes to "
                                "the end of the image, expected 16"});
}

// What a writer makes that had no room for the last byte, and that a reader would pass over.
TEST(StateBytes, AMissingLastOneIsRefused) {
  expect_object_refused("multi_area", "00 08 0000000b 00000001 02 0002",
                        {OSPF_HARBOR_FAULT_CUT, 13,
                         "offset 0xd: multi_area.cost state: found 0 bytes to the end of the "
                         "image, expected 1"});
}

TEST(Choices, TheSelectedArmIsThere) {
  expect_object_refused("ospf_authentication", "00 00 00000009 00 00000001",
                        {OSPF_HARBOR_FAULT_CUT, 11,
                         "offset 0xb: ospf_authentication.key_chain text length: found 0 bytes to "
                         "the end of the image, expected 4"});
}

TEST(Choices, ASelectorOfNoArmHasNone) {
  EXPECT_EQ(skipped_of_passing("ospf_authentication", "01 00 00000009 01 00000009"), 0u);
}

TEST(Choices, AnArmAboveTheVariantIsNotThere) {
  EXPECT_EQ(skipped_of_passing("ospf_authentication", "00 00 00000009 00 00000003"), 0u);
  EXPECT_EQ(skipped_of_passing("ospf_authentication", "01 00 0000000d 01 00000003 00000007"), 0u);
}

TEST(Trailing, BytesBehindTheImageAreRefused) {
  expect_object_refused("address_family", "00 00000001 0000",
                        {OSPF_HARBOR_FAULT_TRAILING, 5,
                         "offset 0x5: address_family skipped: found 2 bytes behind the end, "
                         "expected none"});
}

// Values that are unknown here are those of newer writers.
TEST(Values, UnknownOnesOfEnumerationsAndFlagSetsPass) {
  EXPECT_EQ(skipped_of_passing("ospf_network_type", "00 00000063"), 0u);
  EXPECT_EQ(skipped_of_passing("ospfv2_lsa_body_flags_options", "00 00000005 ff"), 0u);
}

}  // namespace
