// Tags, parsing, and the walking of paths.
#include "kelp/xml.h"

#include <chrono>
#include <cstring>
#include <string>

#include "primitives/fixture.hpp"

namespace {

using kelp_test::Document;
using kelp_test::kSpace;

class XmlTest : public kelp_test::PrimitiveTest {
 protected:
  // What a writer left in a buffer of that size, with the bytes it says it wrote.
  template <class Writer>
  std::string written(uint32_t size, Writer writer) {
    char buffer[64];
    std::memset(buffer, '#', sizeof buffer);
    const uint32_t length = writer(buffer, size);
    EXPECT_LE(length, size);
    for (size_t i = size; i < sizeof buffer; ++i) EXPECT_EQ(buffer[i], '#') << "size " << size;
    if (length < size && err_ == 0) {
      EXPECT_EQ(buffer[length], '\0');
    }
    return std::string(buffer, length);
  }

  // Written whole from the size of whole upwards; below that nothing and error 90.
  template <class Writer>
  void expect_whole_or_nothing(const std::string &whole, Writer writer) {
    for (uint32_t size = 0; size < whole.size(); ++size) {
      EXPECT_EQ(written(size, writer), "");
      expect_failure(KELP_ERR_NO_ROOM);
    }
    for (uint32_t size = static_cast<uint32_t>(whole.size()); size < 60; ++size) {
      EXPECT_EQ(written(size, writer), whole);
    }
    err_ = 5;
    EXPECT_EQ(written(60, writer), "");
    EXPECT_EQ(err_, 5u);
    err_ = 0;
  }

  std::string value_at(const Document &document, const char *path, uint32_t expected_code = 0) {
    char value[128] = "unchanged";
    EXPECT_EQ(xml_get_element_value(document, path, value, sizeof value, 0), expected_code) << path;
    return value;
  }

  uint32_t count_at(const Document &document, const char *path) {
    uint32_t count = 999;
    EXPECT_EQ(xml_get_element_nodecount(document, path, &count), 0u) << path;
    return count;
  }

  std::string refusal(std::string_view text) {
    char message[256] = "";
    kelp_xml_document *document = kelp_xml_parse(text.data(), text.size(), message, sizeof message);
    EXPECT_EQ(document, nullptr) << text;
    kelp_xml_free(document);
    return message;
  }
};

TEST_F(XmlTest, StartTagWithoutState) {
  expect_whole_or_nothing("<cost>", [this](char *buffer, uint32_t size) {
    return start_tag(handle_, kSpace, buffer, "cost", size, 0, &err_);
  });
}

TEST_F(XmlTest, StartTagShowsAStateByteAsAnAttribute) {
  expect_whole_or_nothing("<cost state=\"2\">", [this](char *buffer, uint32_t size) {
    return start_tag(handle_, kSpace, buffer, "cost", size, 2, &err_);
  });
}

TEST_F(XmlTest, EndTag) {
  expect_whole_or_nothing("</cost>", [this](char *buffer, uint32_t size) {
    return end_tag(handle_, kSpace, buffer, "cost", size, &err_);
  });
}

TEST_F(XmlTest, EnumPrintCopiesSoManyBytesAsTheyAre) {
  expect_whole_or_nothing("<BROADCAST/>", [this](char *buffer, uint32_t size) {
    return xml_enum_print(handle_, kSpace, buffer, "<BROADCAST/>&c", size, 12, &err_);
  });
}

TEST_F(XmlTest, TagWithoutANameIsInvalid) {
  char buffer[16];
  EXPECT_EQ(start_tag(handle_, kSpace, buffer, nullptr, 16, 0, &err_), 0u);
  expect_failure(KELP_ERR_INVALID);
  EXPECT_EQ(end_tag(handle_, kSpace, buffer, "", 16, &err_), 0u);
  expect_failure(KELP_ERR_INVALID);
  EXPECT_EQ(xml_enum_print(handle_, kSpace, buffer, nullptr, 16, 0, &err_), 0u);
  expect_failure(KELP_ERR_INVALID);
}

TEST_F(XmlTest, DoubleSlashFindsTheFirstElementOfThatNameAtAnyDepth) {
  const Document document("<r><x><area>1</area></x><area>2</area></r>");
  EXPECT_EQ(value_at(document, "//area"), "1");
  EXPECT_EQ(value_at(document, "//r"), "");
  EXPECT_EQ(count_at(document, "//area"), 2u);
}

TEST_F(XmlTest, SlashFindsTheFirstChildOfThatNameAndNoGrandchild) {
  const Document document("<a><n><cost>1</cost></n><cost>2</cost><cost>3</cost></a>");
  EXPECT_EQ(value_at(document, "//a/cost"), "2");
  EXPECT_EQ(value_at(document, "//a/n/cost"), "1");
  EXPECT_EQ(count_at(document, "//a/cost"), 2u);
}

TEST_F(XmlTest, IndexFromOneFindsTheNthChildOfThatName) {
  const Document document("<a><v>x</v><w>-</w><v>y</v></a>");
  EXPECT_EQ(value_at(document, "//a/v[1]"), "x");
  EXPECT_EQ(value_at(document, "//a/v[2]"), "y");
  EXPECT_EQ(value_at(document, "//a/v[3]", KELP_ERR_NOT_FOUND), "unchanged");
  EXPECT_EQ(count_at(document, "//a/v[2]"), 1u);
  EXPECT_EQ(count_at(document, "//a/v[3]"), 0u);
}

TEST_F(XmlTest, IndexCountsForItsOwnPartAlone) {
  const Document document("<a><v><w>1</w></v><v><w>2</w><w>3</w></v></a>");
  EXPECT_EQ(value_at(document, "//a/v[2]/w"), "2");
  EXPECT_EQ(count_at(document, "//a/v[2]/w"), 2u);
}

TEST_F(XmlTest, AnotherRecordsElementIsNotTakenForAMissingOne) {
  const Document document("<r><a><x>1</x></a><a><y>2</y></a></r>");
  EXPECT_EQ(value_at(document, "//a/y", KELP_ERR_NOT_FOUND), "unchanged");
}

TEST_F(XmlTest, MissingElementsAreCodeTwoAndCountZero) {
  const Document document("<a><b/></a>");
  EXPECT_EQ(value_at(document, "//c", KELP_ERR_NOT_FOUND), "unchanged");
  EXPECT_EQ(value_at(document, "//a/c", KELP_ERR_NOT_FOUND), "unchanged");
  EXPECT_EQ(value_at(document, "//c/b", KELP_ERR_NOT_FOUND), "unchanged");
  EXPECT_EQ(count_at(document, "//c"), 0u);
  EXPECT_EQ(count_at(document, "//a/b/c"), 0u);
}

TEST_F(XmlTest, EveryOtherFormOfPathIsInvalid) {
  const Document document("<a><b/></a>");
  for (const char *path : {"",        "/",           "//",        "a",
                           "/a",      "///a",        "//a/",      "//a//b",
                           "//a[1]",  "//a/b[0]",    "//a/b[]",   "//a/b[x]",
                           "//a/b[1", "//a/b[-1]",   "//a/b[1]x", "//a/b[99999999999]",
                           "//*",     "//a/@x",      "//a/..",    "//a/.",
                           "//a b",   "//a/b[1][1]", "//a|//b",   "//a/text()"}) {
    EXPECT_EQ(value_at(document, path, KELP_ERR_INVALID), "unchanged");
    uint32_t count = 999;
    EXPECT_EQ(xml_get_element_nodecount(document, path, &count), 22u) << path;
    EXPECT_EQ(count, 999u);
  }
}

TEST_F(XmlTest, NullArgumentsAreInvalid) {
  const Document document("<a/>");
  uint32_t count = 0;
  EXPECT_EQ(xml_get_element_value(nullptr, "//a", nullptr, 0, 0), 22u);
  EXPECT_EQ(xml_get_element_value(document, nullptr, nullptr, 0, 0), 22u);
  EXPECT_EQ(xml_get_element_nodecount(nullptr, "//a", &count), 22u);
  EXPECT_EQ(xml_get_element_nodecount(document, nullptr, &count), 22u);
  EXPECT_EQ(xml_get_element_nodecount(document, "//a", nullptr), 22u);
}

TEST_F(XmlTest, PositionIsWhereAnElementBeginsInTheText) {
  const Document document("<a>\n  <b/><b>x</b>\n</a>");
  uint32_t line = 7;
  uint32_t column = 7;
  EXPECT_EQ(xml_get_element_position(document, "//a/c", &line, &column), 2u);
  EXPECT_EQ(xml_get_element_position(document, "a", &line, &column), 22u);
  EXPECT_EQ(xml_get_element_position(nullptr, "//a", &line, &column), 22u);
  EXPECT_EQ(line, 7u);
  EXPECT_EQ(column, 7u);
  EXPECT_EQ(xml_get_element_position(document, "//a/b[2]", &line, &column), 0u);
  EXPECT_EQ(line, 2u);
  EXPECT_EQ(column, 7u);
}

TEST_F(XmlTest, ValueIsCutToItsBufferAndTerminated) {
  const Document document("<a>0123456789</a>");
  char value[8];
  std::memset(value, '#', sizeof value);
  EXPECT_EQ(xml_get_element_value(document, "//a", value, 5, 0), 0u);
  EXPECT_EQ(std::string(value, 8), std::string("0123\0###", 8));
  EXPECT_EQ(xml_get_element_value(document, "//a", value, 0, 0), 0u);
  EXPECT_EQ(xml_get_element_value(document, "//a", nullptr, 8, 0), 0u);
}

TEST_F(XmlTest, ValueJoinsTextAroundCommentsAndSections) {
  const Document document("<a>x<!-- c -->&lt;y<![CDATA[<&>]]><b>no</b>z</a>");
  EXPECT_EQ(value_at(document, "//a"), "x<y<&>z");
}

TEST_F(XmlTest, CharacterReferencesAndTheFiveEntitiesAreRead) {
  const Document document("<a>&#65;&#x42;&amp;&lt;&gt;&quot;&apos;</a>");
  EXPECT_EQ(value_at(document, "//a"), "AB&<>\"'");
}

TEST_F(XmlTest, ByteOrderMarkAndDeclarationAreAccepted) {
  const Document document("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>1</a>\n");
  EXPECT_EQ(value_at(document, "//a"), "1");
}

TEST_F(XmlTest, DocumentTypeDeclarationsAreRefused) {
  EXPECT_EQ(refusal("<!DOCTYPE a [<!ENTITY x \"y\">]>\n<a>&x;</a>"),
            "XML document: found a document type declaration at line 1, column 1");
}

TEST_F(XmlTest, UnknownEntitiesAreRefusedWithTheirPlace) {
  EXPECT_EQ(refusal("<a>\n  <b>&x;</b></a>"),
            "XML document: found a reference to an unknown entity at line 2, column 6");
  refusal("<a>&#0;</a>");
  refusal("<a>&#xFFFE;</a>");
  refusal("<a>& </a>");
  refusal("<a b=\"&x;\"/>");
}

TEST_F(XmlTest, DeclarationsAndReferencesInsideSectionsAreText) {
  const Document document("<a><!-- <!DOCTYPE x> &x; --><![CDATA[<!DOCTYPE &x;]]></a>");
  EXPECT_EQ(value_at(document, "//a"), "<!DOCTYPE &x;");
  const Document instructed("<a>one, two and three<?say a little more of all, and then &x;?></a>");
  EXPECT_EQ(value_at(instructed, "//a"), "one, two and three");
}

TEST_F(XmlTest, WhatIsForbiddenIsFoundAtEveryPlaceInALine) {
  for (const std::string_view forbidden : {"<!DOCTYPE r>", "&x;", "\x01", "\x1F", "\x80", "\xFF"}) {
    for (std::size_t before = 0; before < 40; ++before) {
      const std::string text = "<a>\n" + std::string(before, 'x');
      const std::string whole = text + std::string(forbidden) + "yyyyyyyyyyyy</a>";
      char message[200] = "";
      EXPECT_EQ(kelp_xml_parse(whole.data(), whole.size(), message, sizeof message), nullptr);
      const std::string place = "line 2, column " + std::to_string(before + 1);
      EXPECT_NE(std::string(message).find(place), std::string::npos) << message;
    }
  }
  const Document document("<a>wow! a<b/>? &amp;!\x7F caf\xC3\xA9</a>");
  EXPECT_EQ(value_at(document, "//a"), "wow! a? &!\x7F caf\xC3\xA9");
}

TEST_F(XmlTest, BytesThatXmlCannotCarryAreRefused) {
  EXPECT_EQ(refusal("<a>\x01</a>"),
            "XML document: found a byte that XML cannot carry at line 1, column 4");
  refusal(std::string_view("<a>\0</a>", 8));
  refusal("<a>\xC0\x80</a>");
  refusal("<a>\xED\xA0\x80</a>");
  refusal("<a>\xF4\x90\x80\x80</a>");
  refusal("<a>\xE2\x82</a>");
  refusal("<a>\xFF</a>");
}

TEST_F(XmlTest, MalformedDocumentsAreRefusedWithAMessage) {
  for (const char *text : {"", " ", "<a>", "<a></b>", "<a/><b/>", "<a/>text", "text", "<a",
                           "<a x=1/>", "<a><!-- </a>", "<a><![CDATA[</a>", "<?xml"}) {
    EXPECT_NE(refusal(text), "") << text;
  }
  EXPECT_EQ(refusal("<a>\n <b></c>\n</a>").rfind("XML document: found ", 0), 0u);
}

TEST_F(XmlTest, MessagesAreCutToTheirBufferAndMayBeLeftOut) {
  char message[8];
  EXPECT_EQ(kelp_xml_parse("<a>", 3, message, sizeof message), nullptr);
  EXPECT_STREQ(message, "XML doc");
  EXPECT_EQ(kelp_xml_parse("<a>", 3, nullptr, 0), nullptr);
  EXPECT_EQ(kelp_xml_parse(nullptr, 0, nullptr, 0), nullptr);
}

TEST_F(XmlTest, NestingIsLimited) {
  const auto nested = [](int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i) text += "<n>";
    text += "in";
    for (int i = 0; i < depth; ++i) text += "</n>";
    return text;
  };
  const Document document(nested(KELP_XML_MAX_DEPTH));
  EXPECT_EQ(count_at(document, "//n"), static_cast<uint32_t>(KELP_XML_MAX_DEPTH));
  EXPECT_NE(refusal(nested(KELP_XML_MAX_DEPTH + 1)).find("nested too deep"), std::string::npos);
  EXPECT_NE(refusal(nested(1000000)), "");
}

TEST_F(XmlTest, EveryPrefixOfADocumentIsRefused) {
  const std::string whole =
      "<?xml version=\"1.0\"?><!-- c --><r a=\"1\"><x>&amp;\xC3\xA9</x><![CDATA[d]]></r>";
  for (size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(kelp_xml_parse(whole.data(), length, nullptr, 0), nullptr) << length;
  }
  const Document document(whole);
  EXPECT_EQ(value_at(document, "//r/x"), "&\xC3\xA9");
}

TEST_F(XmlTest, ReadingALongArrayTakesTimeInProportion) {
  constexpr int kElements = 200000;
  std::string text = "<r>";
  for (int i = 0; i < kElements; ++i) text += "<raw_data>1</raw_data>";
  text += "</r>";
  const auto start = std::chrono::steady_clock::now();
  const Document document(text);
  int found = 0;
  for (int i = 1; i <= kElements; ++i) {
    const std::string path = "//r/raw_data[" + std::to_string(i) + "]";
    found += xml_get_element_value(document, path.c_str(), nullptr, 0, 0) == 0;
  }
  const auto seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start);
  EXPECT_EQ(found, kElements);
  // Walking siblings would take 2 * 10^10 steps.
  EXPECT_LT(seconds.count(), 20.0);
}

}  // namespace
