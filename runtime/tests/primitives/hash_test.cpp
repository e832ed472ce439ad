// SuperFastHash against values from an implementation of the published algorithm in another
// language.
#include "kelp/hash.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

struct Vector {
  std::string data;
  uint32_t seed;
  uint32_t hash;
};

std::string all_bytes() {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes.push_back(static_cast<char>(i));
  return bytes;
}

const Vector kVectors[] = {
    {"", 0x00000000, 0x00000000},
    {"", 0x00000001, 0x32c8009b},
    {"", 0xdeadbeef, 0x5e6f6221},
    {"a", 0x00000000, 0x93642e87},
    {"a", 0x00000001, 0x115ea782},
    {"\x80", 0x00000001, 0xf30533c4},
    {"\xff", 0xffffffff, 0xd13d52de},
    {"ab", 0x00000002, 0x516b8b44},
    {"abc", 0x00000003, 0xd2be198a},
    {"ab\xf3", 0x00000003, 0x3b0f79b2},
    {"abcd", 0x00000004, 0xdad8b8db},
    {"abcde", 0x00000005, 0x51ed072e},
    {"abcdef", 0x00000006, 0x963b9dda},
    {"abcdefg", 0x00000007, 0xf071c3ed},
    {"The quick brown fox jumps over the lazy dog", 0x0000002b, 0x05bf7ce3},
    {all_bytes(), 0x00000100, 0xe4eef917},
    {std::string(4, '\0'), 0x00000000, 0x00000000},
    {std::string("\n\0\0\0", 4), 0x12345678, 0xfd54b1c3},
};

TEST(Hash, EqualsThePublishedAlgorithmForEveryRemainderOfTheLength) {
  for (const Vector &vector : kVectors) {
    EXPECT_EQ(
        SuperFastHash(vector.data.data(), static_cast<uint32_t>(vector.data.size()), vector.seed),
        vector.hash)
        << vector.data;
  }
}

TEST(Hash, DoesNotDependOnTheAlignmentOfTheAddress) {
  char buffer[64 + 8];
  const Vector &fox = kVectors[14];
  for (size_t shift = 0; shift < 8; ++shift) {
    std::memcpy(buffer + shift, fox.data.data(), fox.data.size());
    EXPECT_EQ(SuperFastHash(buffer + shift, static_cast<uint32_t>(fox.data.size()), fox.seed),
              fox.hash);
  }
}

TEST(Hash, OfNoBytesStillDependsOnTheSeed) {
  EXPECT_EQ(SuperFastHash(nullptr, 0, 1), SuperFastHash("", 0, 1));
  EXPECT_NE(SuperFastHash(nullptr, 0, 1), SuperFastHash(nullptr, 0, 2));
}

TEST(Hash, ReadsNothingThroughANullAddressWhateverTheLength) {
  EXPECT_EQ(SuperFastHash(nullptr, 12, 5), SuperFastHash(nullptr, 0, 5));
}

}  // namespace
