// Every structure with every field at a value of its own, read back field by field, in bulk and by
// state, on handles that track state, do not, or have it switched off, at both variants.
#include "whole_schema/distinct.hpp"

namespace whole_schema {

namespace {

class DistinctValues : public testing::TestWithParam<Case> {
 protected:
  DistinctValues() { set_all_variants(store_, GetParam().variant); }
  harness::Store store_{{.tracking = GetParam().tracking}};
  // References lead to tables that outlive the objects and end before the store.
  Targets targets_{store_};
};

}  // namespace

TEST_P(DistinctValues, AreReadBackByGettersInBulkAndByState) {
  std::size_t fields = 0;
  for (const Structure *type : harbor::model::structures) {
    fields += type->fields.size();
    for (std::uint32_t round = 0; round < rounds; ++round) {
      SCOPED_TRACE(std::string(type->name) + " round " + std::to_string(round));
      Object object(store_, *type);
      Distinct distinct(store_, round, GetParam().tracking == KELP_TRACKING_ON, &targets_);
      distinct.fill(object.get(), *type);
      distinct.expect(object.get(), *type);
      const std::int32_t highest = type->variants > 1 ? GetParam().variant : 0;
      EXPECT_EQ(object.bytes()[8], highest) << "no setter moves the object from its variant";
      if (HasFailure()) return;
    }
  }
  EXPECT_GT(fields, 250u);
}

INSTANTIATE_TEST_SUITE_P(Handles, DistinctValues, all_cases, name_of_case);

}  // namespace whole_schema
