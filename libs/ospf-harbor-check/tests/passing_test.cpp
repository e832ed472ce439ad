// What the library writes passes, is shown without a gap, and is read: every structure,
// enumeration, flag set, record and key, at both variants, with state bytes and without.
#include "samples.hpp"

namespace {

using namespace ospf_harbor_check_tests;

constexpr std::uint32_t samples_each = 12;

// The spans of an image, one after the other from its first byte to its last.
void expect_covered(const Input &of, const Bytes &image) {
  std::size_t end = 0;
  const auto see = [](const ospf_harbor_image_span *span, void *context) {
    auto &end = *static_cast<std::size_t *>(context);
    EXPECT_EQ(span->offset, end) << span->path << " " << span->name;
    EXPECT_GE(span->length, 1u) << span->path << " " << span->name;
    EXPECT_NE(span->path[0], '\0');
    end += span->length;
  };
  ospf_harbor_check_result result;
  EXPECT_EQ(ospf_harbor_check_walk(of.kind, of.name.c_str(), image.data(), image.size(), see, &end,
                                   &result),
            static_cast<std::uint32_t>(OSPF_HARBOR_FAULT_NONE))
      << result.text;
  EXPECT_EQ(end, image.size());
  EXPECT_EQ(result.skipped, 0u);
  EXPECT_STREQ(result.name, of.name.c_str());
  EXPECT_STREQ(result.text, "");
}

class Passing : public testing::TestWithParam<Input> {};

TEST_P(Passing, EveryImageOfTheLibraryPassesAndIsRead) {
  for (const std::uint32_t tracking : {KELP_TRACKING_ABSENT, KELP_TRACKING_ON}) {
    for (std::uint32_t seed = 1; seed <= samples_each; ++seed) {
      const Bytes image = Sample(GetParam(), tracking, seed).image();
      ASSERT_FALSE(image.empty());
      expect_covered(GetParam(), image);
      for (const std::uint32_t readers : {KELP_TRACKING_ABSENT, KELP_TRACKING_ON}) {
        const Place place(readers);
        EXPECT_EQ(read_image(place, GetParam(), image), "") << "seed " << seed;
        // Element states of an array of the same count are left behind when it is read again.
        if (readers == KELP_TRACKING_ABSENT) {
          EXPECT_EQ(place.live_allocations(), 0u);
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AllImages, Passing, testing::ValuesIn(all_inputs()), test_name);

TEST(Check, ARecordOfAnyTableIsKnownByItsIdentity) {
  const Input of{OSPF_HARBOR_CHECK_RECORD, "tbl_ospf_area"};
  const Bytes image = Sample(of, KELP_TRACKING_ABSENT, 3).image();
  ospf_harbor_check_result result;
  EXPECT_EQ(ospf_harbor_check_image(of.kind, nullptr, image.data(), image.size(), &result), 0u);
  EXPECT_STREQ(result.name, "tbl_ospf_area");
  EXPECT_STREQ(ospf_harbor_check_table_of(image.data(), image.size()), "tbl_ospf_area");
  EXPECT_EQ(ospf_harbor_check_table_of(image.data(), 42), nullptr);
  EXPECT_EQ(ospf_harbor_check_frame_length(image.data(), 16), image.size());
  EXPECT_EQ(ospf_harbor_check_frame_length(image.data(), 15), 0u);
}

TEST(Check, AResultNeedNotBeGiven) {
  const Bytes image{0, 0, 0, 0, 1};
  EXPECT_EQ(
      ospf_harbor_check_image(OSPF_HARBOR_CHECK_OBJECT, "address_family", image.data(), 5, nullptr),
      0u);
  EXPECT_EQ(
      ospf_harbor_check_image(OSPF_HARBOR_CHECK_OBJECT, "address_family", image.data(), 4, nullptr),
      static_cast<std::uint32_t>(OSPF_HARBOR_FAULT_CUT));
}

}  // namespace
