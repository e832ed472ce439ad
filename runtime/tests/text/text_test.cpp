// The writers of readable text at and around the limits of the space.
#include "kelp/text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

struct Buffer {
  char bytes[32];
  uint32_t err = 0;

  Buffer() { std::memset(bytes, '#', sizeof bytes); }
  std::string all() const { return std::string(bytes, sizeof bytes); }
  std::string untouched_from(size_t at) const { return std::string(bytes + at, sizeof bytes - at); }
};

std::string hashes(size_t count) { return std::string(count, '#'); }

TEST(Text, PrintSpaceWritesTheBlanksAndNothingBehindThem) {
  Buffer buffer;
  EXPECT_EQ(kelp_print_space(nullptr, 0, buffer.bytes, 4, 32, &buffer.err), 4u);
  EXPECT_EQ(buffer.all(), "    " + hashes(28));
}

TEST(Text, PrintSpaceStopsAtTheSpace) {
  Buffer buffer;
  EXPECT_EQ(kelp_print_space(nullptr, 0, buffer.bytes, 4, 3, &buffer.err), 3u);
  EXPECT_EQ(buffer.all(), "   " + hashes(29));
  EXPECT_EQ(kelp_print_space(nullptr, 0, buffer.bytes, 4, 0, &buffer.err), 0u);
  EXPECT_EQ(buffer.err, 0u);
}

TEST(Text, PrintSpaceDoesNothingUnderASetErrorWord) {
  Buffer buffer;
  buffer.err = 5;
  EXPECT_EQ(kelp_print_space(nullptr, 0, buffer.bytes, 4, 32, &buffer.err), 0u);
  EXPECT_EQ(buffer.all(), hashes(32));
  EXPECT_EQ(buffer.err, 5u);
}

TEST(Text, SnprintfReturnsTheBytesWrittenAndLeavesWhatIsBehindThem) {
  Buffer buffer;
  EXPECT_EQ(kelp_snprintf(nullptr, 0, buffer.bytes, 32, &buffer.err, "%s@%s:", "peer", "lsa"), 9u);
  EXPECT_EQ(buffer.all(), "peer@lsa:" + hashes(23));
}

TEST(Text, SnprintfWritesANumberAndLeavesWhatIsBehindIt) {
  Buffer buffer;
  EXPECT_EQ(kelp_snprintf(nullptr, 0, buffer.bytes, 32, &buffer.err, "%d of %s", 12, "34"), 8u);
  EXPECT_EQ(buffer.all(), "12 of 34" + hashes(24));
}

TEST(Text, SnprintfNeverWritesPastAnySpace) {
  const std::string text = "0123456789";
  for (uint32_t size = 0; size <= 12; ++size) {
    Buffer buffer;
    const uint32_t fits = std::min<uint32_t>(size, 10);
    EXPECT_EQ(kelp_snprintf(nullptr, 0, buffer.bytes, size, &buffer.err, "%s", text.c_str()), fits);
    EXPECT_EQ(buffer.all(), text.substr(0, fits) + hashes(32 - fits)) << "size " << size;
    EXPECT_EQ(buffer.err, 0u);
  }
}

TEST(Text, SnprintfOfALongTextStopsAtTheSpaceAndLeavesWhatIsBehindIt) {
  const std::string text(2000, 'x');
  for (uint32_t size : {1u, 100u, 1999u, 2000u, 2001u, 2100u}) {
    std::string buffer(2200, '#');
    uint32_t err = 0;
    const uint32_t used = kelp_snprintf(nullptr, 0, buffer.data(), size, &err, "%s", text.c_str());
    EXPECT_LE(used, size);
    EXPECT_GE(used, std::min(size - 1, 2000u));
    EXPECT_EQ(buffer, text.substr(0, used) + std::string(2200 - used, '#')) << "size " << size;
  }
}

TEST(Text, SnprintfWritesASignThatStandsTwiceOnce) {
  Buffer buffer;
  EXPECT_EQ(kelp_snprintf(nullptr, 0, buffer.bytes, 32, &buffer.err, "%s: 5%% of %s", "a", "b"),
            10u);
  EXPECT_EQ(buffer.all(), "a: 5% of b" + hashes(22));
}

TEST(Text, SnprintfOfALongLineWithANumberStopsAtTheSpaceAndLeavesWhatIsBehindIt) {
  const std::string line = "7 " + std::string(2000, 'x');
  for (uint32_t size : {1u, 100u, 2001u, 2002u, 2003u, 2100u}) {
    std::string buffer(2200, '#');
    uint32_t err = 0;
    const uint32_t used =
        kelp_snprintf(nullptr, 0, buffer.data(), size, &err, "%d %s", 7, line.c_str() + 2);
    EXPECT_EQ(used, std::min(size - 1, 2002u));
    EXPECT_EQ(buffer, line.substr(0, used) + std::string(2200 - used, '#')) << "size " << size;
  }
}

TEST(Text, SnprintfDoesNothingUnderASetErrorWord) {
  Buffer buffer;
  buffer.err = 90;
  EXPECT_EQ(kelp_snprintf(nullptr, 0, buffer.bytes, 32, &buffer.err, "%d", 1), 0u);
  EXPECT_EQ(buffer.all(), hashes(32));
}

TEST(Text, CallsInARowStayInsideTheSpaceWhenEachGetsWhatIsLeft) {
  for (uint32_t size = 0; size < 24; ++size) {
    Buffer buffer;
    uint32_t used = kelp_print_space(nullptr, 0, buffer.bytes, 3, size, &buffer.err);
    for (int i = 0; i < 4; ++i) {
      used += kelp_snprintf(nullptr, 0, buffer.bytes + used, size - used, &buffer.err, "abcd");
      ASSERT_LE(used, size);
    }
    EXPECT_EQ(buffer.untouched_from(size), hashes(32 - size)) << "size " << size;
  }
}

}  // namespace
