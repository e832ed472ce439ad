// The canonical text of a definition: what is part of it changes its MD5, and what is not does not.
#include "definition.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "model/lists.hpp"

namespace {

using namespace harbor::model;

constexpr std::array members{Member{"ONE", 1, "The first."}, Member{"TWO", 2, "The second."}};
constexpr std::array renumbered{Member{"ONE", 1, "The first."}, Member{"TWO", 3, "The second."}};
constexpr std::array reworded{Member{"ONE", 1, "Number one."}, Member{"TWO", 2, "Number two."}};

constexpr Enumeration enumeration{"colour", 1, {2}, members, "A colour."};
constexpr FlagSet flag_set{"lights", 1, {2}, members, "What is lit."};
constexpr Structure room{"room", 1, {0, 0}, {}, "A room."};
constexpr Structure room_of_two_variants{"room", 2, {0, 0}, {}, "A room."};

std::string after(Enumeration changed, const std::function<void(Enumeration &)> &change) {
  change(changed);
  return emit::definition(changed);
}

TEST(Definition, OfAnEnumerationChangesWithItsNameVariantsLimitsRangeAndMembers) {
  const std::set<std::string> texts{
      emit::definition(enumeration),
      after(enumeration, [](Enumeration &type) { type.name = "color"; }),
      after(enumeration, [](Enumeration &type) { type.variants = 2; }),
      after(enumeration, [](Enumeration &type) { type.limits[0] = 3; }),
      after(enumeration, [](Enumeration &type) { type.has_internal_range = true; }),
      after(enumeration, [](Enumeration &type) { type.members = renumbered; }),
  };
  EXPECT_EQ(texts.size(), 6u);
}

TEST(Definition, IsNotChangedByWordsAboutIt) {
  const std::string text = emit::definition(enumeration);
  EXPECT_EQ(after(enumeration, [](Enumeration &type) { type.meaning = "A shade."; }), text);
  EXPECT_EQ(after(enumeration, [](Enumeration &type) { type.members = reworded; }), text);
}

TEST(Definition, OfAFlagSetChangesWithItsMembers) {
  FlagSet changed = flag_set;
  changed.members = renumbered;
  EXPECT_NE(emit::definition(changed), emit::definition(flag_set));
}

std::string with_field(const Field &field) {
  const std::array<const Field *, 1> fields{&field};
  return emit::definition(Structure{"house", 1, {1, 0}, fields, "A house."});
}

TEST(Definition, OfAStructureChangesWithWhatItsFieldsAre) {
  const std::set<std::string> texts{
      with_field(scalar("door", Kind::u8, "")),
      with_field(scalar("gate", Kind::u8, "")),
      with_field(scalar("door", Kind::u16, "")),
      with_field(scalar("door", Kind::u8, "").from_variant(1)),
      with_field(counter("door", "")),
      with_field(array("door", Kind::u8, "")),
      with_field(array("door", Kind::u32, "")),
      with_field(reference("door", TableId::ospf, "")),
      with_field(reference("door", TableId::ospf_area, "")),
      with_field(arm("door", 1, Kind::u8, "")),
      with_field(arm("door", 2, Kind::u8, "")),
      with_field(embedded("door", room, "")),
      with_field(embedded("door", room_of_two_variants, "")),
      with_field(chosen("door", enumeration, "")),
      with_field(flagged("door", flag_set, "")),
  };
  EXPECT_EQ(texts.size(), 15u);
}

// A stated MD5 stands for a type itself; what holds the type still follows its definition.
TEST(Definition, OfAStructureFollowsAnEnumerationWhoseMd5IsStated) {
  Enumeration stated = enumeration;
  stated.identity = "0123456789abcdef0123456789abcdef";
  const Field field{
      .name = "door", .kind = Kind::enumeration, .meaning = "", .enumeration = &stated};
  const std::string before = with_field(field);
  stated.members = renumbered;
  EXPECT_NE(with_field(field), before);
}

TEST(Definition, OfATableFollowsItsRecordAndItsKey) {
  const Table &table = tables::ospf_area;
  Table changed = table;
  changed.record = &types::ospf_instance;
  EXPECT_NE(emit::definition(changed), emit::definition(table));
  changed = table;
  changed.key = types::ospf_area.fields[1];
  EXPECT_NE(emit::definition(changed), emit::definition(table));
  changed = table;
  changed.key_structure = &types::ospfv2_link_key;
  EXPECT_NE(emit::definition(changed), emit::definition(table));
}

TEST(ManifestMd5, DiffersFromTheRecordsAndBetweenKinds) {
  const std::string text = emit::definition(enumeration);
  const std::set<std::string> all{emit::md5(text), emit::manifest_md5("table", text),
                                  emit::manifest_md5("table_record", text)};
  EXPECT_EQ(all.size(), 3u);
}

TEST(Md5, IsThePublishedFunctionInLowerCase) {
  EXPECT_EQ(emit::md5("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
}

}  // namespace
