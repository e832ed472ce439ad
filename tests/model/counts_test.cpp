// How many things the schema has, stated once as numbers. Everywhere else they are counted. A
// number that moves here moves what released readers know by its place.
#include <gtest/gtest.h>
#include <kelp/base.h>

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

// What the makers of types derive, against what is stated of each type that has a later variant.
struct Bounds {
  const model::Structure &type;
  std::uint32_t first;
  std::uint32_t last;
};
const Bounds bounds[] = {
    {model::types::ospfv2_lsa_body, 5, 7},
    {model::types::ospfv2_header, 10, 12},
    {model::types::ospfv3_header, 3, 5},
    {model::types::ospfv3_network, 3, 5},
    {model::types::ospfv3_inter_area_router, 3, 5},
    {model::types::ospfv3_link_data, 4, 6},
    {model::types::ospfv3_lsa_body, 9, 12},
    {model::types::link_scope_lsa, 14, 18},
    {model::types::ospf_neighbor, 5, 7},
    {model::types::ospf_authentication, 5, 7},
    {model::types::ospf_interface, 28, 30},
    {model::types::ospf_area, 2, 4},
};

TEST(Variants, AreAsManyAsTheFieldsNeedWithTheirBounds) {
  std::size_t later = 0;
  for (const model::Structure *type : model::structures) later += type->variants > 1 ? 1 : 0;
  EXPECT_EQ(later, std::size(bounds));
  for (const Bounds &stated : bounds) {
    EXPECT_EQ(stated.type.variants, 2) << stated.type.name;
    EXPECT_EQ(stated.type.valid_bounds[0], stated.first) << stated.type.name;
    EXPECT_EQ(stated.type.valid_bounds[1], stated.last) << stated.type.name;
  }
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
