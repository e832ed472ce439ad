// Texts: who owns them at each moment, and their three external forms.
#include <cstring>
#include <string>

#include "kelp/hash.h"
#include "primitives/fixture.hpp"

namespace {

using kelp_test::bytes_at;
using kelp_test::Document;
using kelp_test::ExactCopy;
using kelp_test::kSpace;

class PrimitiveVstringTest : public kelp_test::PrimitiveTest {
 protected:
  void destroy(kelp_vstring *vstring) {
    kelp_vstring_destroy_internal(handle_, kSpace, vstring, 0);
    announced_.clear();
  }

  std::string to_xml(const kelp_vstring *vstring) {
    char buffer[256];
    const uint32_t used = kelp_vstring_to_xml(handle_, kSpace, "n", buffer, vstring, 256, 0, &err_);
    return std::string(buffer, used);
  }

  std::string print(const kelp_vstring *vstring) {
    char buffer[256];
    const uint32_t used = kelp_vstring_print(handle_, kSpace, buffer, 0, "n", vstring, 256, &err_);
    return std::string(buffer, used);
  }
};

TEST_F(PrimitiveVstringTest, AssignCopiesAndTerminates) {
  kelp_vstring vstring = {};
  kelp_vstring_assign(handle_, kSpace, &vstring, "eth0..", 4, &err_);
  expect_announced(&vstring, 12);
  EXPECT_EQ(bytes_at(vstring.text, 5), std::string("eth0\0", 5));
  EXPECT_EQ(vstring.length, 4u);
  expect_success();
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, AssignGivesBackTheOldText) {
  kelp_vstring vstring = {};
  assign(&vstring, "first");
  assign(&vstring, "second");
  EXPECT_EQ(live_blocks_, 1);
  EXPECT_EQ(text_of(vstring), "second");
  assign(&vstring, "");
  EXPECT_EQ(live_blocks_, 0);
  EXPECT_EQ(vstring.text, nullptr);
  EXPECT_EQ(vstring.length, 0u);
}

TEST_F(PrimitiveVstringTest, AssignTakesAPartOfItsOwnText) {
  kelp_vstring vstring = {};
  assign(&vstring, "0123456789");
  kelp_vstring_assign(handle_, kSpace, &vstring, vstring.text + 3, 4, &err_);
  EXPECT_EQ(text_of(vstring), "3456");
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, AssignFailuresLeaveTheTextAlone) {
  kelp_vstring vstring = {};
  assign(&vstring, "kept");
  kelp_vstring_assign(handle_, kSpace, &vstring, nullptr, 3, &err_);
  expect_failure(KELP_ERR_INVALID);
  kelp_vstring_assign(handle_, kSpace, nullptr, "x", 1, &err_);
  expect_failure(KELP_ERR_INVALID);
  kelp_vstring_assign(handle_, kSpace, &vstring, "x", size_t{KELP_VSTRING_MAX_LENGTH} + 1, &err_);
  expect_failure(KELP_ERR_TOO_LONG);
  refuse_memory_ = true;
  kelp_vstring_assign(handle_, kSpace, &vstring, "x", 1, &err_);
  expect_failure(KELP_ERR_NO_MEMORY);
  refuse_memory_ = false;
  err_ = 43;
  kelp_vstring_assign(handle_, kSpace, &vstring, "x", 1, &err_);
  EXPECT_EQ(err_, 43u);
  err_ = 0;
  EXPECT_EQ(text_of(vstring), "kept");
  expect_nothing_announced();
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, TextIsNeverNull) {
  const kelp_vstring empty = {};
  EXPECT_STREQ(kelp_vstring_text(nullptr), "");
  EXPECT_STREQ(kelp_vstring_text(&empty), "");
}

TEST_F(PrimitiveVstringTest, SetMovesTheTextAndFreesTheOldOne) {
  kelp_vstring destination = {};
  kelp_vstring source = {};
  assign(&destination, "old");
  assign(&source, "new text");
  char *moved = source.text;
  kelp_vstring_set(handle_, kSpace, &destination, &source, &err_);
  EXPECT_EQ(destination.text, moved);
  EXPECT_EQ(text_of(destination), "new text");
  EXPECT_EQ(source.text, nullptr);
  EXPECT_EQ(source.length, 0u);
  EXPECT_EQ(live_blocks_, 1);
  ASSERT_EQ(announced_.size(), 2u);
  EXPECT_EQ(announced_[0].address, &destination);
  EXPECT_EQ(announced_[0].length, 12u);
  EXPECT_EQ(announced_[1].address, &source);
  EXPECT_EQ(announced_[1].length, 12u);
  EXPECT_EQ(announced_[1].bytes_before, bytes_at(&destination, 12));
  expect_success();
  destroy(&destination);
}

TEST_F(PrimitiveVstringTest, SetKeepsTheHeaderBytesOfBoth) {
  kelp_vstring destination = {};
  kelp_vstring source = {};
  destination.obj_flags = OBJ_NESTED;
  source.variant = 1;
  assign(&source, "x");
  kelp_vstring_set(handle_, kSpace, &destination, &source, &err_);
  EXPECT_EQ(destination.obj_flags, OBJ_NESTED);
  EXPECT_EQ(destination.variant, 0);
  EXPECT_EQ(source.variant, 1);
  destroy(&destination);
}

TEST_F(PrimitiveVstringTest, SetOfAnEmptyTextFreesTheOldOne) {
  kelp_vstring destination = {};
  kelp_vstring source = {};
  assign(&destination, "old");
  kelp_vstring_set(handle_, kSpace, &destination, &source, &err_);
  EXPECT_EQ(destination.text, nullptr);
  EXPECT_EQ(destination.length, 0u);
  EXPECT_EQ(live_blocks_, 0);
}

TEST_F(PrimitiveVstringTest, SetAfterACopyOfTheBytesOnlyEmptiesTheSource) {
  kelp_vstring source = {};
  assign(&source, "moved");
  kelp_vstring destination = source;
  kelp_vstring_set(handle_, kSpace, &destination, &source, &err_);
  EXPECT_EQ(text_of(destination), "moved");
  EXPECT_EQ(source.text, nullptr);
  EXPECT_EQ(source.length, 0u);
  expect_announced(&source, 12);
  EXPECT_EQ(live_blocks_, 1);
  destroy(&destination);
}

TEST_F(PrimitiveVstringTest, SetAfterACopyOfTheBytesEmptiesTheSourceUnderASetErrorWordToo) {
  kelp_vstring source = {};
  assign(&source, "moved");
  kelp_vstring destination = source;
  err_ = 43;
  kelp_vstring_set(handle_, kSpace, &destination, &source, &err_);
  EXPECT_EQ(err_, 43u);
  err_ = 0;
  EXPECT_EQ(source.text, nullptr);
  expect_announced(&source, 12);
  destroy(&destination);
  destroy(&source);
}

TEST_F(PrimitiveVstringTest, SetOfAnotherTextDoesNothingUnderASetErrorWord) {
  kelp_vstring destination = {};
  kelp_vstring source = {};
  assign(&destination, "old");
  assign(&source, "new");
  err_ = 43;
  kelp_vstring_set(handle_, kSpace, &destination, &source, &err_);
  kelp_vstring_set(handle_, kSpace, &destination, nullptr, &err_);
  EXPECT_EQ(err_, 43u);
  EXPECT_EQ(last_error(), 0u);
  err_ = 0;
  EXPECT_EQ(text_of(destination), "old");
  EXPECT_EQ(text_of(source), "new");
  expect_nothing_announced();
  destroy(&destination);
  destroy(&source);
}

TEST_F(PrimitiveVstringTest, SetOntoItselfKeepsTheText) {
  kelp_vstring vstring = {};
  assign(&vstring, "kept");
  kelp_vstring_set(handle_, kSpace, &vstring, &vstring, &err_);
  EXPECT_EQ(text_of(vstring), "kept");
  expect_nothing_announced();
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, SetOfNullIsInvalid) {
  kelp_vstring vstring = {};
  kelp_vstring_set(handle_, kSpace, &vstring, nullptr, &err_);
  expect_failure(KELP_ERR_INVALID);
  kelp_vstring_set(handle_, kSpace, nullptr, &vstring, &err_);
  expect_failure(KELP_ERR_INVALID);
}

TEST_F(PrimitiveVstringTest, GetGivesTheAddressAndNullForNull) {
  const kelp_vstring vstring = {};
  EXPECT_EQ(kelp_vstring_get(handle_, kSpace, &vstring, &err_), &vstring);
  EXPECT_EQ(kelp_vstring_get(handle_, kSpace, nullptr, &err_), nullptr);
  expect_success();
  err_ = 43;
  EXPECT_EQ(kelp_vstring_get(handle_, kSpace, &vstring, &err_), nullptr);
  err_ = 0;
}

TEST_F(PrimitiveVstringTest, DestroyOfAnEmbeddedTextFreesTheTextOnlyAndOnce) {
  kelp_vstring vstring = {};
  assign(&vstring, "text");
  kelp_vstring_destroy_internal(handle_, kSpace, &vstring, 0);
  expect_announced(&vstring, 12);
  EXPECT_EQ(vstring.text, nullptr);
  EXPECT_EQ(live_blocks_, 0);
  kelp_vstring_destroy_internal(handle_, kSpace, &vstring, 0);
  kelp_vstring_destroy_internal(handle_, kSpace, nullptr, 1);
  expect_nothing_announced();
}

TEST_F(PrimitiveVstringTest, TextsOfTheirOwnStartEmptyAndAreGivenBackWhole) {
  kelp_vstring *vstring = kelp_vstring_create(handle_, kSpace);
  ASSERT_NE(vstring, nullptr);
  EXPECT_EQ(bytes_at(vstring, sizeof *vstring), std::string(16, '\0'));
  assign(vstring, "text");
  EXPECT_EQ(live_blocks_, 2);
  kelp_vstring_destroy_internal(handle_, kSpace, vstring, 1);
  EXPECT_EQ(live_blocks_, 0);
  refuse_memory_ = true;
  EXPECT_EQ(kelp_vstring_create(handle_, kSpace), nullptr);
}

TEST_F(PrimitiveVstringTest, InitializeAnnouncesEachStoreOfTheHeader) {
  kelp_vstring vstring = {};
  vstring.variant = 3;
  kelp_vstring_initialize(handle_, kSpace, &vstring, &_kelp_vstring_type_info_internal, 1, 0,
                          OBJ_NESTED, nullptr, &err_);
  ASSERT_EQ(announced_.size(), 3u);
  EXPECT_EQ(announced_[0].address, &vstring.created_variant);
  EXPECT_EQ(announced_[1].address, &vstring.variant);
  EXPECT_EQ(announced_[2].address, &vstring.obj_flags);
  for (const auto &announcement : announced_) EXPECT_EQ(announcement.length, 1u);
  EXPECT_EQ(vstring.variant, 0);
  EXPECT_EQ(vstring.obj_flags, OBJ_NESTED);
  announced_.clear();
  kelp_vstring_initialize(handle_, kSpace, &vstring, nullptr, 0, 1, OBJ_EMBEDDED, nullptr, &err_);
  expect_nothing_announced();
  EXPECT_EQ(vstring.obj_flags, OBJ_NESTED | OBJ_EMBEDDED);
  kelp_vstring_initialize(handle_, kSpace, nullptr, nullptr, 0, 1, 0, nullptr, &err_);
  expect_failure(KELP_ERR_INVALID);
}

TEST_F(PrimitiveVstringTest, SetInstanceEmbeddedMarksTheFlags) {
  kelp_vstring vstring = {};
  kelp_vstring_set_instance_embedded(handle_, kSpace, &vstring);
  EXPECT_EQ(vstring.obj_flags, OBJ_EMBEDDED);
  expect_announced(&vstring.obj_flags, 1);
  kelp_vstring_set_instance_embedded(handle_, kSpace, nullptr);
  expect_nothing_announced();
}

TEST_F(PrimitiveVstringTest, HoldsNoReference) {
  kelp_vstring vstring = {};
  EXPECT_EQ(kelp_vstring_get_oid_count(handle_, kSpace, &vstring, &err_), 0u);
  kelp_vstring_get_object_references(handle_, kSpace, &vstring, nullptr, 0, &err_);
  expect_success();
  EXPECT_EQ(kelp_vstring_get_oid_count(handle_, kSpace, nullptr, &err_), 0u);
  expect_failure(KELP_ERR_INVALID);
  kelp_vstring_get_object_references(handle_, kSpace, nullptr, nullptr, 0, &err_);
  expect_failure(KELP_ERR_INVALID);
}

TEST_F(PrimitiveVstringTest, OrderIsThatOfUnsignedBytes) {
  const std::string ascending[] = {
      "", std::string(1, '\0'), "a", std::string("a\0", 2), "ab", "b", "\x80"};
  for (size_t i = 0; i < std::size(ascending); ++i) {
    for (size_t j = 0; j < std::size(ascending); ++j) {
      kelp_vstring a = {};
      kelp_vstring b = {};
      assign(&a, ascending[i]);
      assign(&b, ascending[j]);
      EXPECT_EQ(kelp_vstring_compare(&a, &b), i < j ? -1 : i > j) << i << " and " << j;
      EXPECT_EQ(kelp_vstring_hash(&a, 5) == kelp_vstring_hash(&b, 5), i == j);
      destroy(&a);
      destroy(&b);
    }
  }
}

TEST_F(PrimitiveVstringTest, NullSortsFirstAndHashesToTheSeed) {
  kelp_vstring empty = {};
  EXPECT_EQ(kelp_vstring_compare(nullptr, nullptr), 0);
  EXPECT_EQ(kelp_vstring_compare(nullptr, &empty), -1);
  EXPECT_EQ(kelp_vstring_compare(&empty, nullptr), 1);
  EXPECT_EQ(kelp_vstring_hash(nullptr, 5), 5u);
  EXPECT_EQ(kelp_vstring_hash(&empty, 5), SuperFastHash(nullptr, 0, 5));
  EXPECT_NE(kelp_vstring_hash(&empty, 5), 5u);
}

TEST_F(PrimitiveVstringTest, ImageIsALengthAndTheBytes) {
  kelp_vstring vstring = {};
  assign(&vstring, std::string("a\0b", 3));
  char image[8];
  std::memset(image, '#', sizeof image);
  EXPECT_EQ(kelp_vstring_len(handle_, kSpace, &vstring), 7u);
  EXPECT_EQ(kelp_vstring_marshal(handle_, kSpace, image, &vstring, 7, &err_), 7u);
  EXPECT_EQ(bytes_at(image, 8), std::string("\0\0\0\3a\0b#", 8));
  kelp_vstring back = {};
  EXPECT_EQ(kelp_vstring_unmarshal(handle_, kSpace, image, &back, 7, 0, &err_), 7u);
  EXPECT_EQ(text_of(back), std::string("a\0b", 3));
  expect_announced(&back, 12);
  expect_success();
  destroy(&vstring);
  destroy(&back);
}

TEST_F(PrimitiveVstringTest, ImageHasNoFinalNul) {
  kelp_vstring vstring = {};
  assign(&vstring, "eth0");
  char image[9];
  std::memset(image, '#', sizeof image);
  EXPECT_EQ(kelp_vstring_marshal(handle_, kSpace, image, &vstring, 9, &err_), 8u);
  EXPECT_EQ(bytes_at(image, 9), std::string("\0\0\0\4eth0#", 9));
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, ImageOfAnEmptyTextIsItsLength) {
  const kelp_vstring empty = {};
  char image[4];
  EXPECT_EQ(kelp_vstring_len(handle_, kSpace, &empty), 4u);
  EXPECT_EQ(kelp_vstring_len(handle_, kSpace, nullptr), 4u);
  EXPECT_EQ(kelp_vstring_marshal(handle_, kSpace, image, &empty, 4, &err_), 4u);
  kelp_vstring back = {};
  assign(&back, "old");
  EXPECT_EQ(kelp_vstring_unmarshal(handle_, kSpace, image, &back, 4, 0, &err_), 4u);
  EXPECT_EQ(back.text, nullptr);
  EXPECT_EQ(live_blocks_, 0);
}

TEST_F(PrimitiveVstringTest, ImagesAreBoundedAtEveryLength) {
  kelp_vstring vstring = {};
  assign(&vstring, "0123456789");
  char whole[14];
  ASSERT_EQ(kelp_vstring_marshal(handle_, kSpace, whole, &vstring, 14, &err_), 14u);
  for (int32_t length = -1; length < 14; ++length) {
    char image[14];
    std::memset(image, '#', sizeof image);
    EXPECT_EQ(kelp_vstring_marshal(handle_, kSpace, image, &vstring, length, &err_), 0u);
    expect_failure(KELP_ERR_NO_ROOM);
    EXPECT_EQ(bytes_at(image, 14), std::string(14, '#'));
    kelp_vstring back = {};
    const ExactCopy exact(whole, length);
    EXPECT_EQ(kelp_vstring_unmarshal(handle_, kSpace, exact.get(), &back, length, 0, &err_), 0u);
    expect_failure(KELP_ERR_NO_ROOM);
    EXPECT_EQ(back.text, nullptr);
  }
  EXPECT_EQ(live_blocks_, 1);
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, ALengthBeyondTheImageAllocatesNothing) {
  kelp_vstring back = {};
  EXPECT_EQ(kelp_vstring_unmarshal(handle_, kSpace, "\xFF\xFF\xFF\xFF....", &back, 8, 0, &err_),
            0u);
  expect_failure(KELP_ERR_NO_ROOM);
  EXPECT_EQ(kelp_vstring_unmarshal(handle_, kSpace, "\x7F\xFF\xFF\xFF....", &back, 8, 0, &err_),
            0u);
  expect_failure(KELP_ERR_NO_ROOM);
  EXPECT_EQ(live_blocks_, 0);
}

TEST_F(PrimitiveVstringTest, ImagesOfNullAreInvalid) {
  char image[8] = {};
  EXPECT_EQ(kelp_vstring_marshal(handle_, kSpace, image, nullptr, 8, &err_), 0u);
  expect_failure(KELP_ERR_INVALID);
  EXPECT_EQ(kelp_vstring_unmarshal(handle_, kSpace, image, nullptr, 8, 0, &err_), 0u);
  expect_failure(KELP_ERR_INVALID);
}

TEST_F(PrimitiveVstringTest, ReuseOverwritesATextOfTheSameLengthInPlace) {
  kelp_vstring vstring = {};
  assign(&vstring, "abc");
  char *kept = vstring.text;
  EXPECT_EQ(kelp_vstring_unmarshal(handle_, kSpace, "\0\0\0\3xyz", &vstring, 7, 1, &err_), 7u);
  EXPECT_EQ(vstring.text, kept);
  EXPECT_EQ(text_of(vstring), "xyz");
  ASSERT_EQ(announced_.size(), 1u);
  EXPECT_EQ(announced_[0].bytes_before, "abc");
  expect_announced(kept, 3);
  EXPECT_EQ(kelp_vstring_unmarshal(handle_, kSpace, "\0\0\0\2pq", &vstring, 6, 1, &err_), 6u);
  EXPECT_EQ(text_of(vstring), "pq");
  EXPECT_EQ(live_blocks_, 1);
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, WithoutReuseTheOldTextIsGivenBackAllTheSame) {
  kelp_vstring vstring = {};
  assign(&vstring, "abc");
  EXPECT_EQ(kelp_vstring_unmarshal(handle_, kSpace, "\0\0\0\3xyz", &vstring, 7, 0, &err_), 7u);
  EXPECT_EQ(text_of(vstring), "xyz");
  EXPECT_EQ(live_blocks_, 1);
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, ReadingWithoutMemoryKeepsTheOldText) {
  kelp_vstring vstring = {};
  assign(&vstring, "abc");
  const Document document("<n>new text</n>");
  refuse_memory_ = true;
  EXPECT_EQ(kelp_vstring_unmarshal(handle_, kSpace, "\0\0\0\2xy", &vstring, 6, 0, &err_), 0u);
  expect_failure(KELP_ERR_NO_MEMORY);
  kelp_vstring_from_xml(handle_, kSpace, "//n", document, &vstring, &err_, nullptr, 0);
  expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(text_of(vstring), "abc");
  expect_nothing_announced();
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, ASetErrorWordStopsEveryEncoding) {
  kelp_vstring vstring = {};
  assign(&vstring, "abc");
  const Document document("<n>x</n>");
  char buffer[32];
  std::memset(buffer, '#', sizeof buffer);
  err_ = 43;
  EXPECT_EQ(kelp_vstring_marshal(handle_, kSpace, buffer, &vstring, 32, &err_), 0u);
  EXPECT_EQ(kelp_vstring_unmarshal(handle_, kSpace, "\0\0\0\0", &vstring, 4, 0, &err_), 0u);
  EXPECT_EQ(kelp_vstring_print(handle_, kSpace, buffer, 0, "n", &vstring, 32, &err_), 0u);
  EXPECT_EQ(kelp_vstring_to_xml(handle_, kSpace, "n", buffer, &vstring, 32, 0, &err_), 0u);
  kelp_vstring_from_xml(handle_, kSpace, "//n", document, &vstring, &err_, nullptr, 0);
  EXPECT_EQ(err_, 43u);
  EXPECT_EQ(bytes_at(buffer, 32), std::string(32, '#'));
  EXPECT_EQ(text_of(vstring), "abc");
  EXPECT_EQ(last_error(), 0u);
  expect_nothing_announced();
  err_ = 0;
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, PrintsOneLineWhateverTheText) {
  kelp_vstring vstring = {};
  assign(&vstring, std::string("a\nb\r\t\\\0\x7F\xC3\xA9\"", 11));
  EXPECT_EQ(print(&vstring), "n@kelp_vstring:a\\nb\\r\\t\\\\\\x00\\x7f\xC3\xA9\"\n");
  EXPECT_EQ(print(nullptr), "n@kelp_vstring:\n");
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, PrintStopsAtEverySpace) {
  kelp_vstring vstring = {};
  assign(&vstring, "ab\n\x01yz");
  const std::string line = " n@kelp_vstring:ab\\n\\x01yz\n";
  for (uint32_t size = 0; size <= line.size() + 1; ++size) {
    char buffer[64];
    std::memset(buffer, '#', sizeof buffer);
    const uint32_t used =
        kelp_vstring_print(handle_, kSpace, buffer, 1, "n", &vstring, size, &err_);
    EXPECT_EQ(used, std::min<uint32_t>(size, static_cast<uint32_t>(line.size())));
    EXPECT_EQ(std::string(buffer, used), line.substr(0, used));
    for (size_t i = size; i < sizeof buffer; ++i) EXPECT_EQ(buffer[i], '#');
  }
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, ElementsEscapeMarkup) {
  kelp_vstring vstring = {};
  assign(&vstring, "a<b>&\"c\" d\re");
  EXPECT_EQ(to_xml(&vstring), "<n>a&lt;b&gt;&amp;\"c\" d&#13;e</n>");
  EXPECT_EQ(to_xml(nullptr), "<n></n>");
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, ElementsOfTextsThatXmlCannotCarryAreInHexadecimal) {
  kelp_vstring vstring = {};
  assign(&vstring, std::string("A\0\xFF", 3));
  EXPECT_EQ(to_xml(&vstring), "<n encoding=\"hex\">4100ff</n>");
  char buffer[64];
  kelp_vstring_to_xml(handle_, kSpace, "n", buffer, &vstring, 64, 2, &err_);
  EXPECT_STREQ(buffer, "<n state=\"2\" encoding=\"hex\">4100ff</n>");
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, EveryByteComesBackFromItsElement) {
  std::string texts[] = {"",
                         " ",
                         "  lead and trail\n",
                         "\r\n",
                         "]]>",
                         "<![CDATA[x]]>",
                         "&amp;",
                         "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80",
                         "\xEF\xBF\xBE",
                         "\\x41",
                         "\t"};
  const auto round_trip = [this](const std::string &text) {
    kelp_vstring vstring = {};
    kelp_vstring back = {};
    assign(&vstring, text);
    const Document document("<r>\n " + to_xml(&vstring) + " </r>");
    kelp_vstring_from_xml(handle_, kSpace, "//r/n", document, &back, &err_, nullptr, 0);
    expect_announced(&back, 12);
    EXPECT_EQ(text_of(back), text);
    expect_success();
    destroy(&vstring);
    destroy(&back);
  };
  for (const std::string &text : texts) round_trip(text);
  for (int byte = 0; byte < 256; ++byte) round_trip("x" + std::string(1, static_cast<char>(byte)));
}

TEST_F(PrimitiveVstringTest, ElementsAreWrittenWholeOrNotAtAll) {
  kelp_vstring vstring = {};
  assign(&vstring, "a&b");
  const std::string whole = "<n>a&amp;b</n>";
  for (uint32_t size = 0; size <= whole.size() + 1; ++size) {
    char buffer[32];
    std::memset(buffer, '#', sizeof buffer);
    const uint32_t used =
        kelp_vstring_to_xml(handle_, kSpace, "n", buffer, &vstring, size, 0, &err_);
    EXPECT_EQ(std::string(buffer, used), size < whole.size() ? "" : whole);
    for (size_t i = size; i < sizeof buffer; ++i) EXPECT_EQ(buffer[i], '#');
    if (size < whole.size()) {
      EXPECT_EQ(buffer[0], '#');
      expect_failure(KELP_ERR_NO_ROOM);
    }
  }
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, BadHexadecimalDigitsAreRefused) {
  kelp_vstring vstring = {};
  assign(&vstring, "kept");
  for (const char *digits : {"4", "4g", "41 42", "0x41"}) {
    const Document document("<n encoding=\"hex\">" + std::string(digits) + "</n>");
    char message[128];
    kelp_vstring_from_xml(handle_, kSpace, "//n", document, &vstring, &err_, message, 128);
    expect_failure(KELP_ERR_INVALID);
    EXPECT_EQ(std::string(message),
              "//n: found \"" + std::string(digits) +
                  "\" at line 1, column 1, expected pairs of hexadecimal digits");
  }
  EXPECT_EQ(text_of(vstring), "kept");
  expect_nothing_announced();
  destroy(&vstring);
}

TEST_F(PrimitiveVstringTest, AMissingElementIsCodeTwo) {
  const Document document("<r/>");
  kelp_vstring vstring = {};
  char message[16] = "same";
  kelp_vstring_from_xml(handle_, kSpace, "//r/n", document, &vstring, &err_, message, 16);
  expect_failure(KELP_ERR_NOT_FOUND);
  EXPECT_STREQ(message, "same");
  kelp_vstring_from_xml(handle_, kSpace, "//r/n", nullptr, &vstring, &err_, message, 16);
  expect_failure(KELP_ERR_INVALID);
  kelp_vstring_from_xml(handle_, kSpace, "//r", document, nullptr, &err_, message, 16);
  expect_failure(KELP_ERR_INVALID);
}

TEST_F(PrimitiveVstringTest, LongTextsAreQuotedShortAndEscapedInMessages) {
  const Document document("<n encoding=\"hex\">" + std::string(60, 'x') + "\n</n>");
  kelp_vstring vstring = {};
  char message[256];
  kelp_vstring_from_xml(handle_, kSpace, "//n", document, &vstring, &err_, message, 256);
  expect_failure(KELP_ERR_INVALID);
  EXPECT_EQ(std::string(message).rfind("//n: found \"" + std::string(40, 'x') + "\"... at", 0), 0u)
      << message;
}

}  // namespace
