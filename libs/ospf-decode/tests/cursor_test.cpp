// Reading bytes: network order, and nothing past the end.
#include "ospf_decode/cursor.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace ospf_decode {
namespace {

const std::vector<std::uint8_t> digits = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};

TEST(Cursor, ReadsInNetworkOrder) {
  Cursor cursor(digits);
  EXPECT_EQ(cursor.u8(), 0x01);
  EXPECT_EQ(cursor.u16(), 0x0203);
  EXPECT_EQ(cursor.u24(), 0x040506u);
  EXPECT_EQ(cursor.position(), 6u);
  EXPECT_EQ(cursor.u32(), 0x0708090au);
  EXPECT_TRUE(cursor.ok());
  EXPECT_TRUE(cursor.at_end());
}

TEST(Cursor, ReadsSixtyFourBits) {
  Cursor cursor(digits);
  EXPECT_EQ(cursor.u64(), 0x0102030405060708u);
}

TEST(Cursor, ReadsAFloat) {
  const std::vector<std::uint8_t> one = {0x3f, 0x80, 0, 0};
  EXPECT_EQ(Cursor(one).f32(), 1.0f);
}

TEST(Cursor, AFailedReadLatchesAndYieldsZero) {
  Cursor cursor(digits);
  cursor.skip(8);
  EXPECT_EQ(cursor.u32(), 0u);
  EXPECT_FALSE(cursor.ok());
  EXPECT_EQ(cursor.remaining(), 0u);
  EXPECT_EQ(cursor.u8(), 0) << "two octets are left, but the cursor has failed";
  EXPECT_TRUE(cursor.bytes(1).empty());
  EXPECT_EQ(cursor.array<2>(), (std::array<std::uint8_t, 2>{}));
}

TEST(Cursor, ASubCursorEndsWhereItsPartEnds) {
  Cursor cursor(digits);
  Cursor part = cursor.sub(3);
  EXPECT_EQ(cursor.position(), 3u);
  EXPECT_EQ(part.u32(), 0u);
  EXPECT_FALSE(part.ok());
  EXPECT_TRUE(cursor.ok());
  EXPECT_EQ(cursor.u8(), 4);
}

TEST(Cursor, ASubCursorThatIsNotThereFailsBoth) {
  Cursor cursor(digits);
  Cursor part = cursor.sub(11);
  EXPECT_FALSE(part.ok());
  EXPECT_FALSE(cursor.ok());
}

TEST(Cursor, AHugeCountDoesNotWrap) {
  Cursor cursor(digits);
  cursor.skip(4);
  cursor.skip(static_cast<std::size_t>(-2));
  EXPECT_FALSE(cursor.ok());
}

TEST(Cursor, RestTakesAllThatIsLeft) {
  Cursor cursor(digits);
  cursor.skip(7);
  EXPECT_EQ(cursor.rest().size(), 3u);
  EXPECT_TRUE(cursor.at_end());
  EXPECT_TRUE(cursor.ok());
}

TEST(Cursor, AnEmptyOneIsAtItsEnd) {
  Cursor cursor;
  EXPECT_TRUE(cursor.at_end());
  EXPECT_EQ(cursor.u8(), 0);
  EXPECT_FALSE(cursor.ok());
}

}  // namespace
}  // namespace ospf_decode
