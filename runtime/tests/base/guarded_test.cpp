// The guarded memory calls.
#include <unistd.h>

#include <cstdio>

#include "kelp/trace.h"
#include "support.hpp"

namespace {

TEST(GuardedTest, CopyBehavesLikeMemcpy) {
  char target[8] = "zzzzzzz";
  EXPECT_EQ(__memcpy_to_buf(target, "abc", 3), target);
  EXPECT_STREQ(target, "abczzzz");
}

TEST(GuardedTest, OverlappingCopyKeepsTheSource) {
  char text[] = "abcdef";
  __memcpy_to_buf(text + 1, text, 5);
  EXPECT_STREQ(text, "aabcde");
}

TEST(GuardedTest, NoBytesNeedNoPointers) {
  EXPECT_EQ(__memcpy_to_buf(nullptr, nullptr, 0), nullptr);
  EXPECT_EQ(__memset_to_buf(nullptr, 1, 0), nullptr);
  EXPECT_EQ(__strncpy_to_buf(nullptr, nullptr, 0), nullptr);
}

TEST(GuardedTest, SetFillsExactlyTheLength) {
  char target[4] = "abc";
  EXPECT_EQ(__memset_to_buf(target, 'x', 2), target);
  EXPECT_STREQ(target, "xxc");
}

TEST(GuardedTest, TextCopyFillsUpWithNuls) {
  char target[6] = {'z', 'z', 'z', 'z', 'z', 'z'};
  EXPECT_EQ(__strncpy_to_buf(target, "ab", 5), target);
  EXPECT_EQ(std::memcmp(target, "ab\0\0\0z", 6), 0);
}

TEST(GuardedTest, TextCopyOfFullLengthHasNoNul) {
  char target[4] = {'z', 'z', 'z', 'z'};
  __strncpy_to_buf(target, "abcdef", 3);
  EXPECT_EQ(std::memcmp(target, "abcz", 4), 0);
}

TEST(GuardedDeathTest, NullPointersEndTheProcess) {
  char target[4] = {};
  EXPECT_DEATH(__memcpy_to_buf(target, nullptr, 1), "__memcpy_to_buf: destination and source");
  EXPECT_DEATH(__memcpy_to_buf(nullptr, target, 1), "__memcpy_to_buf: destination and source");
  EXPECT_DEATH(__memset_to_buf(nullptr, 0, 1), "__memset_to_buf: destination is not null");
  EXPECT_DEATH(__strncpy_to_buf(target, nullptr, 1), "__strncpy_to_buf: destination and source");
}

TEST(AssertionDeathTest, NamesTheExpressionAndThePlace) {
  EXPECT_DEATH(bassert("((1 << 24) - 1) != __ref_cnt", "dir/source", 77),
               "assertion failed: \\(\\(1 << 24\\) - 1\\) != __ref_cnt, at dir/source:77");
}

TEST(AssertionDeathTest, KeepsWhatWasTraced) {
  const std::string path = testing::TempDir() + "kelp_assertion_" + std::to_string(getpid());
  EXPECT_DEATH(
      {
        constexpr std::uint8_t source[16] = {1};
        kelp_trace_open_file(path.c_str(), nullptr);
        __XLf_0(source, 7, 0, 0x3000000);
        bassert("no", "source", 1);
      },
      "assertion failed: no");
  kelp_trace_file_report report = {};
  EXPECT_EQ(kelp_trace_scan_file(path.c_str(), nullptr, nullptr, &report, nullptr), 0);
  EXPECT_EQ(report.records, 1u);
  std::remove(path.c_str());
}

}  // namespace
