// How many things the schema has, stated once as numbers. Everywhere else they are counted. A
// number that moves here moves what released readers know by its place.
#include <gtest/gtest.h>
#include <kelp/base.h>

#include <algorithm>
#include <map>

#include "model/edition.hpp"
#include "model/lists.hpp"
#include "module/messages.hpp"
#include "tables/handlers.hpp"

namespace {

namespace messages = harbor::messages;
namespace model = harbor::model;

TEST(Counts, OfTheSchema) {
  EXPECT_EQ(model::structures.size(), 52u);
  EXPECT_EQ(model::all_enumerations.size(), 5u);
  EXPECT_EQ(model::all_flag_sets.size(), 4u);
  EXPECT_EQ(model::all_tables.size(), 21u);
  EXPECT_EQ(model::record_count, 103u);
  EXPECT_EQ(harbor::handlers::operations.size(), 7u);
}

TEST(Counts, OfTheMessages) {
  EXPECT_EQ(messages::type_message_count, 3855u);
  EXPECT_EQ(messages::table_message_count, 1382u);
  EXPECT_EQ(messages::type_message_count + messages::table_message_count, 5237u);
  EXPECT_EQ(messages::rows_over(messages::TypeOver::tracking_mode), 1339u);
  EXPECT_EQ(messages::rows_over(messages::TypeOver::state_mark), 714u);
  EXPECT_EQ(messages::rows_over(messages::TypeOver::state_read), 261u);
  EXPECT_EQ(messages::block_length(model::tables::ospf_area), 65u);
  EXPECT_EQ(messages::block_length(model::tables::ospf_instance_rev1), 68u);
  EXPECT_EQ(messages::block_base(model::tables::ospf_area), 1052u);
  EXPECT_EQ(messages::block_base(model::tables::ospf_rev1), 1315u);
}

// What the makers of types derive, against what is stated: for each variant the first field number
// that needs the next.
const std::map<std::string_view, model::Limits> bounds{
    {"ospfv2_unknown_sub_tlv", {4}},
    {"ospfv2_link_tlv", {11}},
    {"ospfv2_unknown_tlv", {7}},
    {"ospfv2_external", {4}},
    {"ospfv2_topology", {2}},
    {"ospfv2_link_key", {2}},
    {"ospfv2_link", {2}},
    {"link_scope_lsa_key", {2}},
    {"lsa_options", {8}},
    {"ospfv2_lsa_body_flags", {3}},
    {"ospfv2_network", {3}},
    {"ospfv2_lsa_body", {5, 7}},
    {"lsa_header", {6}},
    {"ospfv2_header", {10, 12}},
    {"ospfv2_lsa", {2}},
    {"ospfv3_lsa_options", {6}},
    {"ospfv3_header", {3, 5}},
    {"ospfv3_lsa_body_flags", {4}},
    {"ospfv3_network", {3, 5}},
    {"ospfv3_inter_area_prefix", {3}},
    {"ospfv3_inter_area_router", {3, 5}},
    {"ospfv3_lsa_external_flags", {1}},
    {"ospfv3_lsa_external", {8}},
    {"ospfv3_nssa", {1}},
    {"ospfv3_link_data", {4, 6}},
    {"ospfv3_intra_area_prefix", {4}},
    {"ospfv3_lsa_body", {9, 12}},
    {"ospfv3_lsa", {2}},
    {"ospfv3_link_key", {3}},
    {"ospfv3_link", {2}},
    {"ospfv3_prefix_list", {2}},
    {"multi_topology", {1}},
    {"link_scope_lsa", {14, 18}},
    {"area_scope_lsa_key", {2}},
    {"area_scope_lsa", {11}},
    {"area_scope_lsas", {2}},
    {"link_scope_lsas", {3}},
    {"ospf_static_neighbor", {3}},
    {"ospf_nbr_stat", {2}},
    {"ospf_neighbor", {5, 7}},
    {"fast_reroute", {3}},
    {"multi_area", {2}},
    {"ospf_crypto_algorithm", {8}},
    {"ospf_authentication", {5, 7}},
    {"ttl_security", {2}},
    {"ospf_interface", {28, 30}},
    {"ospf_area", {2, 4}},
    {"ospf_instance", {5}},
    {"ospf", {3}},
    {"ospf_instance_rev1_key", {2}},
    {"ospf_instance_rev1", {3}},
    {"ospf_rev1", {3}},
};

TEST(Variants, AreAsManyAsTheFieldsNeedWithTheirBounds) {
  EXPECT_EQ(model::structures.size(), bounds.size());
  for (const model::Structure *type : model::structures) {
    const model::Limits &stated = bounds.at(type->name);
    EXPECT_EQ(type->variants, std::find(stated.begin(), stated.end(), 0u) - stated.begin())
        << type->name;
    EXPECT_EQ(type->valid_bounds, stated) << type->name;
  }
}

TEST(Variants, OneEnumerationHasASecond) {
  for (const model::Enumeration *type : model::all_enumerations) {
    EXPECT_EQ(type->variants, type == &model::enumerations::ospf_auth_type ? 2 : 1) << type->name;
  }
  for (const model::FlagSet *type : model::all_flag_sets)
    EXPECT_EQ(type->variants, 1) << type->name;
}

TEST(Variants, OfATypeFollowItsFieldsHoweverMany) {
  static constexpr model::Field first = model::scalar("first", model::Kind::u8, "");
  static constexpr model::Field second =
      model::scalar("second", model::Kind::u8, "").from_variant(1);
  static constexpr model::Field third = model::scalar("third", model::Kind::u8, "").from_variant(2);
  static constexpr model::Structure type =
      model::structure<first, second, second, third>("made_for_this", "");
  EXPECT_EQ(type.variants, 3);
  EXPECT_EQ(type.valid_bounds, (model::Limits{1, 3, 5}));
}

TEST(Variants, OfAnEnumerationFollowItsMembers) {
  static constexpr std::array<model::Member, 4> members{
      {{"A", 0, ""}, {"B", 1, ""}, {"C", 2, "", 1}, {"D", 3, "", 2}}};
  static constexpr model::Enumeration type = model::enumeration<members>("made_for_this", "");
  EXPECT_EQ(type.variants, 3);
  EXPECT_EQ(type.limits, (model::Limits{2, 3, 4}));
}

// The numbers of error words, which are the contract; tests elsewhere use the names.
TEST(Codes, AreTheseNumbers) {
  EXPECT_EQ(KELP_ERR_PERMISSION, 1);
  EXPECT_EQ(KELP_ERR_NOT_FOUND, 2);
  EXPECT_EQ(KELP_ERR_TOO_LONG, 7);
  EXPECT_EQ(KELP_ERR_AGAIN, 11);
  EXPECT_EQ(KELP_ERR_NO_MEMORY, 12);
  EXPECT_EQ(KELP_ERR_BAD_ADDRESS, 14);
  EXPECT_EQ(KELP_ERR_EXISTS, 17);
  EXPECT_EQ(KELP_ERR_INVALID, 22);
  EXPECT_EQ(KELP_ERR_EPOCH, 43);
  EXPECT_EQ(KELP_ERR_NO_ROOM, 90);
}

}  // namespace
