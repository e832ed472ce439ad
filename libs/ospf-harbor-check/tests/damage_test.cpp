// Damaged images: every truncation, and every byte changed. Each is refused with a finding, or the
// library reads it without an error, to its end, and can write what it read.
#include "samples.hpp"

namespace {

using namespace ospf_harbor_check_tests;

struct Counted {
  std::uint32_t refused = 0;
  std::uint32_t read = 0;
};

// Longer images are read once for each change, to keep the tests within seconds.
constexpr std::size_t most_for_every_reading = 300;

void check_and_read(const Place &place, const Input &of, const Bytes &image, Counted &counted) {
  const Bytes before = image;
  const std::uint64_t allocations = place.live_allocations();
  ospf_harbor_check_result result;
  if (ospf_harbor_check_image(of.kind, of.name.c_str(), image.data(), image.size(), &result) !=
      OSPF_HARBOR_FAULT_NONE) {
    ++counted.refused;
    ASSERT_NE(result.text[0], '\0');
    ASSERT_NE(result.found[0], '\0');
    ASSERT_NE(result.expected[0], '\0');
    ASSERT_LE(result.offset, image.size());
    ASSERT_EQ(image, before);
    ASSERT_EQ(place.live_allocations(), allocations);
    return;
  }
  ++counted.read;
  const bool is_long = image.size() > most_for_every_reading;
  ASSERT_EQ(is_long ? read_once(place, of, image) : read_image(place, of, image), "");
}

// No cut image is a whole one: a writer with too little room leaves out a last state byte without
// an error, and that is refused too.
void try_truncations(const Place &place, const Input &of, const Bytes &image) {
  Counted counted;
  for (std::size_t size = 0; size < image.size(); ++size) {
    SCOPED_TRACE("cut at " + std::to_string(size));
    check_and_read(place, of, Bytes(image.begin(), image.begin() + static_cast<long>(size)),
                   counted);
    if (testing::Test::HasFatalFailure()) return;
  }
  EXPECT_EQ(counted.read, 0u);
}

void try_changes(const Place &place, const Input &of, const Bytes &image,
                 const std::vector<std::uint8_t> &differences) {
  Counted counted;
  Bytes changed = image;
  for (std::size_t at = 0; at < image.size(); ++at) {
    for (const std::uint8_t difference : differences) {
      SCOPED_TRACE("byte " + std::to_string(at) + " changed by " + std::to_string(difference));
      changed[at] = image[at] ^ difference;
      check_and_read(place, of, changed, counted);
      if (testing::Test::HasFatalFailure()) return;
    }
    changed[at] = image[at];
  }
  // A bare number as a key is good whatever its bytes.
  if (of.kind == OSPF_HARBOR_CHECK_KEY) return;
  EXPECT_GT(counted.refused, 0u);
  EXPECT_GT(counted.read, 0u);
}

// The highest bit makes numbers huge and variants negative, the lowest one moves them by one, all
// bits turn zero into the largest.
const std::vector<std::uint8_t> some_differences{0x01, 0x80, 0xFF};

std::vector<std::uint8_t> all_differences() {
  std::vector<std::uint8_t> all;
  for (int difference = 1; difference < 256; ++difference) {
    all.push_back(static_cast<std::uint8_t>(difference));
  }
  return all;
}

constexpr std::uint32_t trackings[] = {KELP_TRACKING_ABSENT, KELP_TRACKING_ON};

class Damaged : public testing::TestWithParam<Input> {};

TEST_P(Damaged, EveryTruncationIsRefusedAndEveryChangeIsRefusedOrRead) {
  for (const std::uint32_t tracking : trackings) {
    const Place place(tracking);
    const Bytes image = Sample(GetParam(), tracking, 7).image();
    try_truncations(place, GetParam(), image);
    try_changes(place, GetParam(), image, some_differences);
  }
}

INSTANTIATE_TEST_SUITE_P(AllImages, Damaged, testing::ValuesIn(all_inputs()), test_name);

// One image of each kind, with every other value in every byte.
class DamagedByEveryValue : public testing::TestWithParam<Input> {};

TEST_P(DamagedByEveryValue, IsRefusedOrRead) {
  for (const std::uint32_t tracking : trackings) {
    const Place place(tracking);
    try_changes(place, GetParam(), Sample(GetParam(), tracking, 11).image(), all_differences());
  }
}

INSTANTIATE_TEST_SUITE_P(OneOfEachKind, DamagedByEveryValue,
                         testing::Values(Input{OSPF_HARBOR_CHECK_OBJECT, "nbr_state_type"},
                                         Input{OSPF_HARBOR_CHECK_OBJECT, "lsa_flag_options"},
                                         Input{OSPF_HARBOR_CHECK_OBJECT, "ospfv2_network"},
                                         Input{OSPF_HARBOR_CHECK_OBJECT, "ospf_authentication"},
                                         Input{OSPF_HARBOR_CHECK_OBJECT, "ospf_area"},
                                         Input{OSPF_HARBOR_CHECK_RECORD,
                                               "tbl_ospf_static_neighbor"},
                                         Input{OSPF_HARBOR_CHECK_RECORD, "tbl_ospfv2_link"},
                                         Input{OSPF_HARBOR_CHECK_KEY, "tbl_ospf_area"},
                                         Input{OSPF_HARBOR_CHECK_KEY, "tbl_link_scope_lsas"},
                                         Input{OSPF_HARBOR_CHECK_KEY, "tbl_ospf_interface"},
                                         Input{OSPF_HARBOR_CHECK_KEY, "tbl_ospf_static_neighbor"},
                                         Input{OSPF_HARBOR_CHECK_KEY, "tbl_ospf_instance"},
                                         Input{OSPF_HARBOR_CHECK_KEY, "tbl_area_scope_lsa"}),
                         test_name);

}  // namespace
