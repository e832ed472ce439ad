// The newer edition's library at work in one process: types with three variants, and a flag set and
// enumerations with more than the product has, under the rules that all editions share.
#include <gtest/gtest.h>
#include <kelp/embed.h>
#include <kelp/primitives.h>
#include <kelp/xml.h>
#include <ospf_harbor_check.h>
#include <ospf_harbor_oper.h>

#include <string>

namespace {

static_assert(OSPF_AREA_HIGHEST_VARIANT == 2 && OSPF_AREA_SPF_RUNS_SINCE == 2);
static_assert(OSPFV3_LSA_BODY_FLAG_OPTIONS_HIGHEST_VARIANT == 1);

class ThirdVariant : public testing::Test {
 protected:
  ThirdVariant()
      : database(kelp_database_open_private("newer", nullptr, nullptr)),
        handle(kelp_handle_create(database, nullptr, nullptr)) {}
  ~ThirdVariant() override {
    kelp_handle_destroy(handle);
    kelp_error error{};
    EXPECT_EQ(kelp_database_close(database, &error), 0);
    EXPECT_STREQ(error.text, "");
  }

  ospf_area *area_at(std::int32_t variant) {
    kelp_handle_set_variant(handle, "ospf_area", variant, nullptr);
    ospf_area *area = ospf_area_create(handle, 0);
    ospf_area_area_id_set_value(handle, 0, area, 10, &err);
    if (variant == 2) ospf_area_spf_runs_set_value(handle, 0, area, 7, &err);
    return area;
  }

  kelp_database *database;
  kelp_handle *handle;
  std::uint32_t err = 0;
};

TEST_F(ThirdVariant, AHigherNumberIsLimitedToTheHighestVariant) {
  EXPECT_EQ(ospf_area_variant_data_index_cap(1), 1);
  EXPECT_EQ(ospf_area_variant_data_index_cap(2), 2);
  EXPECT_EQ(ospf_area_variant_data_index_cap(3), 2);
  EXPECT_EQ(ospf_area_variant_data_index_cap(256), 2);
  EXPECT_EQ(ospf_area_variant_data_index_cap(-1), -1);
}

TEST_F(ThirdVariant, TheLengthGrowsWithEachVariant) {
  const std::uint32_t lengths[] = {6 + 4 + 40, 6 + 4 + 40 + 40, 6 + 4 + 40 + 40 + 4};
  for (std::int32_t variant = 0; variant < 3; ++variant) {
    ospf_area *area = area_at(variant);
    EXPECT_EQ(ospf_area_len(handle, 0, area), lengths[variant]);
    ospf_area_destroy(handle, 0, area);
  }
}

TEST_F(ThirdVariant, TheCheckerPassesOverNoFieldOfAnyVariant) {
  for (std::int32_t variant = 0; variant < 3; ++variant) {
    ospf_area *area = area_at(variant);
    std::uint8_t image[256];
    const std::uint32_t length = ospf_area_marshal(handle, 0, image, area, sizeof image, &err);
    ospf_harbor_check_result result;
    EXPECT_EQ(ospf_harbor_check_walk(
                  OSPF_HARBOR_CHECK_OBJECT, "ospf_area", image, length,
                  [](const ospf_harbor_image_span *, void *) {}, nullptr, &result),
              0u)
        << result.text;
    EXPECT_EQ(result.skipped, 0u) << variant;
    ospf_area_destroy(handle, 0, area);
  }
}

TEST_F(ThirdVariant, TheTextIsClosedAtTheHighestVariantAlone) {
  const std::string texts[] = {"x@ospf_area: {\n  area_id@u_int32:10\n",
                               "x@ospf_area: {\n  area_id@u_int32:10\n",
                               "x@ospf_area: {\n  area_id@u_int32:10\n  spf_runs@u_int32:7\n}\n"};
  for (std::int32_t variant = 0; variant < 3; ++variant) {
    ospf_area *area = area_at(variant);
    std::string buffer(256, ' ');
    const std::uint32_t length = ospf_area_print(handle, 0, buffer.data(), 0, "x", area, 256, &err);
    EXPECT_EQ(buffer.substr(0, length), texts[variant]);
    EXPECT_EQ(err, 0u);
    ospf_area_destroy(handle, 0, area);
  }
}

TEST_F(ThirdVariant, XmlCarriesTheFieldsOfTheVariantAndReadsThoseOfAll) {
  const std::string elements[] = {"<x><area_id>10</area_id></x>", "<x><area_id>10</area_id></x>",
                                  "<x><area_id>10</area_id><spf_runs>7</spf_runs></x>"};
  for (std::int32_t variant = 0; variant < 3; ++variant) {
    ospf_area *area = area_at(variant);
    std::string buffer(256, ' ');
    const std::uint32_t length =
        ospf_area_to_xml(handle, 0, "x", buffer.data(), area, 256, 0, &err);
    EXPECT_EQ(buffer.substr(0, length), elements[variant]);
    ospf_area_destroy(handle, 0, area);
  }
  kelp_xml_document *document = kelp_xml_parse(elements[2].data(), elements[2].size(), nullptr, 0);
  kelp_handle_clear_variant(handle, "ospf_area");
  ospf_area *area = ospf_area_create(handle, 0);
  ospf_area_from_xml(handle, 0, "//x", document, area, &err, nullptr, 0);
  EXPECT_EQ(ospf_area_area_id_get_value(handle, 0, area, &err), 10u);
  EXPECT_EQ(ospf_area_spf_runs_get_value(handle, 0, area, &err), 7u);
  EXPECT_EQ(err, 0u);
  ospf_area_destroy(handle, 0, area);
  kelp_xml_free(document);
}

TEST_F(ThirdVariant, TheBulkFormsStopAtTheObjectsVariant) {
  std::uint32_t id = 99;
  std::uint32_t runs = 99;
  ospf_area *lower = area_at(1);
  ospf_area_get_all(handle, 0, lower, &id, &runs, &err);
  EXPECT_EQ(id, 10u);
  EXPECT_EQ(runs, 99u);
  EXPECT_EQ(ospf_area_spf_runs_get_value(handle, 0, lower, &err), 0u);
  EXPECT_EQ(err, KELP_ERR_EPOCH);
  err = 0;
  ospf_area *higher = area_at(2);
  ospf_area_set_all(handle, 0, higher, 11, 12, &err);
  ospf_area_get_all(handle, 0, higher, &id, &runs, &err);
  EXPECT_EQ(id, 11u);
  EXPECT_EQ(runs, 12u);
  EXPECT_EQ(err, 0u);
  ospf_area_destroy(handle, 0, lower);
  ospf_area_destroy(handle, 0, higher);
}

// Fields 0 and 1 came first, 2 with variant 1, 3 with variant 2.
TEST_F(ThirdVariant, TheDomainTellsWhichFieldsAreValid) {
  const std::uint32_t valid[3][4] = {{1, 1, 0, 0}, {1, 1, 1, 0}, {1, 1, 1, 1}};
  for (std::int32_t variant = 0; variant < 3; ++variant) {
    kelp_handle_set_variant(handle, "ospf_area", variant, nullptr);
    for (std::uint32_t field = 0; field < 4; ++field) {
      EXPECT_EQ(ospf_area_is_valid_cr(handle, nullptr, field), valid[variant][field])
          << variant << " " << field;
    }
  }
}

TEST_F(ThirdVariant, ANewValueNeedsTheVariantThatBroughtIt) {
  kelp_handle_set_variant(handle, "ospf_auth_type", 1, nullptr);
  ospf_auth_type *type = ospf_auth_type_create(handle, 0);
  ospf_auth_type_set_value(handle, 0, type, OSPF_AUTH_KEY_RING, &err);
  EXPECT_EQ(err, KELP_ERR_EPOCH);
  EXPECT_EQ(ospf_auth_type_is_valid_cr(handle, OSPF_AUTH_KEY_RING), 0u);
  EXPECT_EQ(ospf_auth_type_is_valid_cr(handle, OSPF_AUTH_TYPE_NONE), 1u);
  err = 0;
  kelp_handle_clear_variant(handle, "ospf_auth_type");
  ospf_auth_type_set_value(handle, 0, type, OSPF_AUTH_KEY_RING, &err);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(ospf_auth_type_get_value(handle, 0, type, &err), 4u);
  ospf_auth_type_set_value(handle, 0, type, 5, &err);
  EXPECT_EQ(err, KELP_ERR_EPOCH);
  ospf_auth_type_destroy(handle, 0, type);
}

TEST_F(ThirdVariant, ANewBitNeedsTheVariantThatBroughtIt) {
  constexpr std::uint32_t added = OSPFV3_LSA_BODY_FLAG_OPTIONS_W;
  kelp_handle_set_variant(handle, "ospfv3_lsa_body_flag_options", 0, nullptr);
  ospfv3_lsa_body_flag_options *flags = ospfv3_lsa_body_flag_options_create(handle, 0);
  ospfv3_lsa_body_flag_options_set_value(handle, 0, flags, 0, 1, &err);
  EXPECT_EQ(err, 0u);
  ospfv3_lsa_body_flag_options_set_value(handle, 0, flags, added, 1, &err);
  EXPECT_EQ(err, KELP_ERR_EPOCH);
  err = 0;
  EXPECT_EQ(ospfv3_lsa_body_flag_options_is_valid_cr(handle, added), 0u);
  kelp_handle_clear_variant(handle, "ospfv3_lsa_body_flag_options");
  EXPECT_EQ(ospfv3_lsa_body_flag_options_is_valid_cr(handle, added), 1u);
  ospfv3_lsa_body_flag_options_set_value(handle, 0, flags, added, 1, &err);
  EXPECT_EQ(ospfv3_lsa_body_flag_options_get_value(handle, 0, flags, added, &err), 1u << added);
  EXPECT_EQ(err, 0u);
  ospfv3_lsa_body_flag_options_set_value(handle, 0, flags, added + 1, 1, &err);
  EXPECT_EQ(err, KELP_ERR_EPOCH);
  ospfv3_lsa_body_flag_options_destroy(handle, 0, flags);
}

TEST_F(ThirdVariant, ANewArmIsSelectedByItsValue) {
  ospf_authentication *choice = ospf_authentication_create(handle, 0);
  kelp_vstring *name = kelp_vstring_create(handle, 0);
  kelp_vstring_assign(handle, 0, name, "ring", 4, &err);
  ospf_authentication_key_ring_set(handle, 0, choice, name, &err);
  EXPECT_EQ(ospf_authentication_auth_type_selection_get_value(handle, 0, choice, &err),
            static_cast<std::uint32_t>(OSPF_AUTH_KEY_RING));
  std::string buffer(512, ' ');
  const std::uint32_t length =
      ospf_authentication_to_xml(handle, 0, "x", buffer.data(), choice, 512, 0, &err);
  EXPECT_NE(buffer.substr(0, length).find("ring"), std::string::npos);
  EXPECT_EQ(ospf_authentication_compare(choice, choice), 0);
  EXPECT_EQ(err, 0u);
  ospf_authentication_destroy(handle, 0, choice);
}

}  // namespace
