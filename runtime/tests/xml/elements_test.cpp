// Elements that are found without paths: the same ones as by paths, in any order, and their values.
#include <string>
#include <vector>

#include "kelp/xml_elements.h"
#include "primitives/fixture.hpp"

namespace {

using kelp_test::Document;
using kelp_test::kSpace;

class XmlElementsTest : public kelp_test::PrimitiveTest {
 protected:
  // The values of the children of that tag, as they are found from where next says.
  static std::vector<uint32_t> values(const Document &document, const kelp_xml_element *parent,
                                      std::string_view tag, uint32_t *next) {
    const kelp_xml_row row = kelp_xml_children(document, parent, tag.data(), tag.size(), next);
    std::vector<uint32_t> values(row.count);
    EXPECT_EQ(u_int32_read_row(&row, values.data()), row.count);
    return values;
  }
};

TEST_F(XmlElementsTest, FindGivesTheFirstElementAtAPath) {
  const Document document("<r><a><b>1</b></a><a><b>2</b><b>3</b></a></r>");
  const auto value_at = [&](const char *path) {
    uint32_t value = 0;
    const kelp_xml_element *element = kelp_xml_find(document, path);
    EXPECT_NE(element, nullptr) << path;
    if (element != nullptr) {
      EXPECT_EQ(u_int32_read_element(handle_, kSpace, element, &value), 1u);
    }
    return value;
  };
  EXPECT_EQ(value_at("//b"), 1u);
  EXPECT_EQ(value_at("//r/a/b"), 1u);
  EXPECT_EQ(value_at("//r/a[2]/b"), 2u);
  EXPECT_EQ(value_at("//r/a[2]/b[2]"), 3u);
  for (const char *path : {"//c", "//a/c", "//a[3]", "r", "", "//r/"}) {
    EXPECT_EQ(kelp_xml_find(document, path), nullptr) << path;
  }
  EXPECT_EQ(kelp_xml_find(document, nullptr), nullptr);
  EXPECT_EQ(kelp_xml_find(nullptr, "//r"), nullptr);
}

TEST_F(XmlElementsTest, ChildrenAreFoundWhereverTheLookStarts) {
  const Document document(
      "<r><a>1</a><b>2</b><a>3</a><c><a>4</a><b>5</b></c><bb>6</bb><b>7</b></r>");
  const kelp_xml_element *root = kelp_xml_find(document, "//r");
  const kelp_xml_element *inner = kelp_xml_find(document, "//r/c");
  for (uint32_t start = 0; start < 12; ++start) {
    uint32_t next = start;
    EXPECT_EQ(values(document, root, "a", &next), (std::vector<uint32_t>{1, 3}));
    EXPECT_EQ(values(document, root, "b", &next), (std::vector<uint32_t>{2, 7}));
    next = start;
    EXPECT_EQ(values(document, inner, "b", &next), std::vector<uint32_t>{5});
    EXPECT_EQ(values(document, inner, "a", &next), std::vector<uint32_t>{4});
    EXPECT_EQ(values(document, inner, "bb", &next), std::vector<uint32_t>{});
    EXPECT_EQ(values(document, root, "bb", &next), std::vector<uint32_t>{6});
    EXPECT_EQ(values(document, root, "z", &next), std::vector<uint32_t>{});
    next = UINT32_MAX - start;
    EXPECT_EQ(values(document, inner, "a", &next), std::vector<uint32_t>{4});
  }
}

TEST_F(XmlElementsTest, EmptyChildrenAreToldUpToTheRoom) {
  const Document document("<r><a/>text<b></b><!-- c --><c x='1'/></r>");
  const char *tags[3] = {};
  const kelp_xml_element *root = kelp_xml_find(document, "//r");
  ASSERT_EQ(kelp_xml_empty_children(root, tags, 3), 3u);
  EXPECT_STREQ(tags[0], "a");
  EXPECT_STREQ(tags[1], "b");
  EXPECT_STREQ(tags[2], "c");
  EXPECT_EQ(kelp_xml_empty_children(root, tags, 2), UINT32_MAX);
  EXPECT_EQ(kelp_xml_empty_children(kelp_xml_find(document, "//a"), tags, 0), 0u);
  for (const char *text : {"<r><a/><b>1</b></r>", "<r><a><b/></a></r>"}) {
    const Document other(text);
    EXPECT_EQ(kelp_xml_empty_children(kelp_xml_find(other, "//r"), tags, 3), UINT32_MAX) << text;
  }
}

// What a path would refuse, or would have to join, is left to it without a word.
TEST_F(XmlElementsTest, ElementsThatAreNoValueChangeAndSayNothing) {
  for (const char *text : {"<v>z</v>", "<v><w>1</w></v>", "<v>1<!-- c -->2</v>",
                           "<v><![CDATA[1]]></v>", "<v>256.5</v>"}) {
    const Document document(text);
    const kelp_xml_element *element = kelp_xml_find(document, "//v");
    uint8_t u8 = 9;
    EXPECT_EQ(u_int8_read_element(handle_, kSpace, element, &u8), 0u) << text;
    EXPECT_EQ(u8, 9u);
    kelp_boolean boolean = 1;
    EXPECT_EQ(kelp_boolean_read_element(handle_, kSpace, element, &boolean), 0u) << text;
    EXPECT_EQ(boolean, 1u);
    ip_address address = ip_address_make_ipv4(9);
    EXPECT_EQ(ip_address_read_element(handle_, kSpace, element, &address), 0u) << text;
    EXPECT_EQ(address.bytes[3], 9u);
    EXPECT_EQ(kelp_handle_last_error(handle_, nullptr), 0);
  }
  const Document document("<r><v>6</v><v encoding='hex'>41</v></r>");
  const kelp_xml_element *element = kelp_xml_find(document, "//v");
  EXPECT_EQ(u_int8_read_element(handle_, kSpace, element, nullptr), 0u);
  kelp_vstring vstring{};
  EXPECT_EQ(kelp_vstring_read_element(handle_, kSpace, element, &vstring, &err_), 1u);
  EXPECT_STREQ(vstring.text, "6");
  element = kelp_xml_find(document, "//r/v[2]");
  EXPECT_EQ(kelp_vstring_read_element(handle_, kSpace, element, &vstring, &err_), 0u);
  EXPECT_STREQ(vstring.text, "6");
  kelp_vstring_destroy_internal(handle_, kSpace, &vstring, 0);
}

}  // namespace
