// XML documents in front of the readers: what the library writes passes and is read, and for each
// thing that is refused where it stands.
#include "samples.hpp"

namespace {

using namespace ospf_harbor_check_tests;

std::uint32_t check(const Input &of, const std::string &text, ospf_harbor_check_result &result,
                    std::size_t limit = 0) {
  return ospf_harbor_check_xml(of.kind, of.name.c_str(), text.data(), text.size(), limit, &result);
}

void expect_refused(const Input &of, const std::string &text, std::uint32_t fault,
                    const std::string &said) {
  ospf_harbor_check_result result;
  EXPECT_EQ(check(of, text, result), fault);
  EXPECT_EQ(result.text, said);
}

const Input multi_area{OSPF_HARBOR_CHECK_OBJECT, "multi_area"};
const Input area_record{OSPF_HARBOR_CHECK_RECORD, "tbl_ospf_area"};

class PassingDocument : public testing::TestWithParam<Input> {};

TEST_P(PassingDocument, IsRead) {
  for (const std::uint32_t tracking : {KELP_TRACKING_ABSENT, KELP_TRACKING_ON}) {
    for (std::uint32_t seed = 1; seed <= 4; ++seed) {
      const std::string text = Sample(GetParam(), tracking, seed).document();
      // What stands for a value without a name is no element.
      if (text.find(" value out of range/>") != std::string::npos) continue;
      ospf_harbor_check_result result;
      EXPECT_EQ(check(GetParam(), text, result), 0u) << result.text;
      const Place place(tracking);
      EXPECT_EQ(read_document(place, GetParam(), text), "") << text;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AllForms, PassingDocument, testing::ValuesIn([] {
                           std::vector<Input> inputs = all_inputs();
                           std::erase_if(inputs, [](const Input &of) {
                             return of.kind == OSPF_HARBOR_CHECK_KEY;
                           });
                           return inputs;
                         }()),
                         test_name);

TEST(Documents, AKeyHasNone) {
  ospf_harbor_check_result result;
  EXPECT_EQ(check({OSPF_HARBOR_CHECK_KEY, "tbl_ospf_area"}, "<a/>", result),
            static_cast<std::uint32_t>(OSPF_HARBOR_FAULT_NAME));
}

TEST(Documents, TheLimitOfSizeIsTheCallers) {
  const std::string text = "<multi_area></multi_area>";
  ospf_harbor_check_result result;
  EXPECT_EQ(check(multi_area, text, result, text.size()), 0u);
  EXPECT_EQ(check(multi_area, text, result, text.size() - 1),
            static_cast<std::uint32_t>(OSPF_HARBOR_FAULT_SIZE));
  EXPECT_STREQ(result.text, "document: found 25 bytes, expected at most 24");
}

TEST(Documents, OneThatIsNotWellFormedIsRefusedAtItsPlace) {
  ospf_harbor_check_result result;
  EXPECT_EQ(check(multi_area, "<multi_area>\n  <cost>1</cots>\n</multi_area>", result),
            static_cast<std::uint32_t>(OSPF_HARBOR_FAULT_DOCUMENT));
  EXPECT_EQ(result.line, 2u);
  EXPECT_NE(result.column, 0u);
}

TEST(Documents, ADocumentTypeIsRefused) {
  expect_refused(multi_area, "<!DOCTYPE a [<!ENTITY b \"c\">]><multi_area>&b;</multi_area>",
                 OSPF_HARBOR_FAULT_DOCUMENT,
                 "line 1, column 1: document: found a document type declaration, expected a "
                 "well-formed document with one root element, without a document type");
}

TEST(Documents, DepthIsLimited) {
  std::string text = "<multi_area>";
  for (int i = 0; i < 200; ++i) text += "<a>";
  for (int i = 0; i < 200; ++i) text += "</a>";
  ospf_harbor_check_result result;
  EXPECT_EQ(check(multi_area, text + "</multi_area>", result),
            static_cast<std::uint32_t>(OSPF_HARBOR_FAULT_DOCUMENT));
  EXPECT_STREQ(result.found, "an element nested too deep");
}

TEST(Documents, TheObjectIsThereOnce) {
  expect_refused(multi_area, "<other/>", OSPF_HARBOR_FAULT_ELEMENT,
                 "//multi_area: found 0, expected one element in the whole document");
  expect_refused(multi_area, "<a>\n<multi_area/><multi_area/></a>", OSPF_HARBOR_FAULT_ELEMENT,
                 "line 2, column 1: //multi_area: found 2, expected one element in the whole "
                 "document");
}

TEST(Documents, ARecordsObjectStandsRightInIt) {
  ospf_harbor_check_result result;
  EXPECT_EQ(check(area_record, "<tbl_ospf_area><ospf_area/></tbl_ospf_area>", result), 0u);
  expect_refused(area_record, "<tbl_ospf_area><a><ospf_area/></a></tbl_ospf_area>",
                 OSPF_HARBOR_FAULT_ELEMENT,
                 "line 1, column 19: //ospf_area: found it somewhere else, expected it right in "
                 "tbl_ospf_area");
  expect_refused(area_record, "<ospf_area/>", OSPF_HARBOR_FAULT_ELEMENT,
                 "//tbl_ospf_area: found 0, expected one element in the whole document");
}

TEST(Documents, AFieldStandsOnce) {
  expect_refused(multi_area, "<multi_area><cost>1</cost>\n<cost>2</cost></multi_area>",
                 OSPF_HARBOR_FAULT_ELEMENT,
                 "line 2, column 1: //multi_area/cost[2]: found 2, expected one element, as it is "
                 "no array");
}

TEST(Documents, AnEnumerationHasOneValue) {
  expect_refused({OSPF_HARBOR_CHECK_OBJECT, "address_family"},
                 "<address_family><ADDR_FAMILY_IPV4/><ADDR_FAMILY_IPV6/></address_family>",
                 OSPF_HARBOR_FAULT_ELEMENT,
                 "line 1, column 36: //address_family/ADDR_FAMILY_IPV6: found ADDR_FAMILY_IPV6 "
                 "beside ADDR_FAMILY_IPV4, expected one value");
}

TEST(Documents, ATextThatIsNoValueIsRefused) {
  expect_refused(multi_area, "<multi_area>\n<cost>65536</cost></multi_area>",
                 OSPF_HARBOR_FAULT_VALUE,
                 "line 2, column 1: //multi_area/cost: found \"65536\", expected a decimal number "
                 "from 0 to 65535");
  ospf_harbor_check_result result;
  EXPECT_EQ(check({OSPF_HARBOR_CHECK_OBJECT, "ospfv2_network"},
                  "<ospfv2_network><attached_router>1</attached_router>"
                  "<attached_router>one</attached_router></ospfv2_network>",
                  result),
            static_cast<std::uint32_t>(OSPF_HARBOR_FAULT_VALUE));
  EXPECT_STREQ(result.path, "//ospfv2_network/attached_router[2]");
}

TEST(Documents, OnlyTheSelectedArmIsLookedAt) {
  const Input choice{OSPF_HARBOR_CHECK_OBJECT, "ospf_authentication"};
  const std::string selector =
      "<ospf_authentication><auth_type_selection><OSPF_AUTH_TYPE_NONE/></auth_type_selection>";
  const std::string end = "</ospf_authentication>";
  ospf_harbor_check_result result;
  EXPECT_EQ(
      check(choice, selector + "<auth_type_selection-no_auth>x</auth_type_selection-no_auth>" + end,
            result),
      static_cast<std::uint32_t>(OSPF_HARBOR_FAULT_VALUE));
  EXPECT_STREQ(result.path, "//ospf_authentication/auth_type_selection-no_auth");
  EXPECT_EQ(
      check(choice,
            selector + "<auth_type_selection-sa encoding=\"hex\">x</auth_type_selection-sa>" + end,
            result),
      0u)
      << result.text;
}

TEST(Documents, AnArrayIsNoLongerThanAnLsa) {
  std::string text = "<ospfv2_network>";
  for (int i = 0; i < 16385; ++i) text += "<attached_router>1</attached_router>";
  ospf_harbor_check_result result;
  EXPECT_EQ(check({OSPF_HARBOR_CHECK_OBJECT, "ospfv2_network"}, text + "</ospfv2_network>", result),
            static_cast<std::uint32_t>(OSPF_HARBOR_FAULT_COUNT));
  EXPECT_STREQ(result.found, "16385 elements");
  EXPECT_STREQ(result.expected, "at most 16384 (the longest LSA)");
}

TEST(Documents, TheThreadsCurrentDatabaseStays) {
  const harness::Store store({.marked_shared = true});
  kelp_database_make_current(store.database());
  ospf_harbor_check_result result;
  EXPECT_EQ(check(multi_area, "<multi_area><cost>1</cost></multi_area>", result), 0u);
  EXPECT_EQ(kelp_database_current(), store.database());
  EXPECT_EQ(check(multi_area, "<multi_area><cost>x</cost></multi_area>", result),
            static_cast<std::uint32_t>(OSPF_HARBOR_FAULT_VALUE));
  EXPECT_EQ(kelp_database_current(), store.database());
}

TEST(Documents, ElementsThatTheSchemaDoesNotNamePass) {
  const std::string text = "<multi_area><cost>1</cost><newer>2</newer><newer/></multi_area>";
  ospf_harbor_check_result result;
  EXPECT_EQ(check(multi_area, text, result), 0u) << result.text;
  const Place place(KELP_TRACKING_ABSENT);
  EXPECT_EQ(read_document(place, multi_area, text), "");
}

}  // namespace
