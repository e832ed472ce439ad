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

TEST(Text, SnprintfReturnsTheBytesWrittenAndTerminates) {
  Buffer buffer;
  EXPECT_EQ(kelp_snprintf(nullptr, 0, buffer.bytes, 32, &buffer.err, "%s@%s:", "peer", "lsa"), 9u);
  EXPECT_EQ(buffer.all(), std::string("peer@lsa:\0", 10) + hashes(22));
}

TEST(Text, SnprintfNeverWritesPastAnySpace) {
  const std::string text = "0123456789";
  for (uint32_t size = 0; size <= 12; ++size) {
    Buffer buffer;
    const uint32_t fits = size == 0 ? 0 : std::min<uint32_t>(size - 1, 10);
    EXPECT_EQ(kelp_snprintf(nullptr, 0, buffer.bytes, size, &buffer.err, "%s", text.c_str()), fits);
    EXPECT_EQ(std::string(buffer.bytes, fits), text.substr(0, fits));
    if (size > 0) {
      EXPECT_EQ(buffer.bytes[fits], '\0');
    }
    const size_t end = size == 0 ? 0 : fits + 1;
    EXPECT_EQ(buffer.untouched_from(end), hashes(32 - end)) << "size " << size;
    EXPECT_EQ(buffer.err, 0u);
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
