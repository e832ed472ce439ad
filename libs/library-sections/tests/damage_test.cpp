// Files that anything may have happened to: every cut of a small library, and thousands of changes
// to it, end in what the file says or in an Error, and in nothing else.
#include <gtest/gtest.h>

#include <random>

#include "library_sections/error.hpp"
#include "library_sections/halyard.hpp"
#include "library_sections/messages.hpp"
#include "support/sample_library.hpp"

namespace {

using library_sections::ElfFile;
using library_sections::Error;

// How many of the two readings were refused. Anything but an Error escapes and fails the test.
int refusals(const sample::File &bytes) {
  int count = 0;
  try {
    const ElfFile file(bytes);
    try {
      library_sections::read_messages(file);
    } catch (const Error &error) {
      EXPECT_NE(std::string(error.what()).find(": found "), std::string::npos) << error.what();
      ++count;
    }
    try {
      library_sections::read_halyard(file);
    } catch (const Error &error) {
      EXPECT_NE(std::string(error.what()).find(": found "), std::string::npos) << error.what();
      ++count;
    }
  } catch (const Error &error) {
    EXPECT_NE(std::string(error.what()).find(": found "), std::string::npos) << error.what();
    count = 2;
  }
  return count;
}

TEST(DamageTest, WholeFileIsSound) { EXPECT_EQ(refusals(sample::Library().file()), 0); }

TEST(DamageTest, EveryCutIsRefused) {
  const sample::File file = sample::Library().file();
  for (std::size_t length = 0; length < file.size(); ++length) {
    // A copy of its own, so that a byte read behind the cut is seen.
    EXPECT_EQ(refusals({file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length)}), 2)
        << length;
  }
}

TEST(DamageTest, EveryCutOfEachSectionIsRefused) {
  const std::vector<sample::Section> sections = sample::Library().sections();
  for (std::size_t which = 0; which < sections.size(); ++which) {
    for (std::size_t length = 0; length < sections[which].bytes.size(); ++length) {
      std::vector<sample::Section> cut = sections;
      cut[which].bytes.resize(length);
      EXPECT_EQ(refusals(sample::elf(cut)), 1) << sections[which].name << " " << length;
    }
  }
}

TEST(DamageTest, EveryByteMayChange) {
  const sample::File file = sample::Library().file();
  for (std::size_t at = 0; at < file.size(); ++at) {
    for (const int change : {0x01, 0x80, 0xff}) {
      sample::File changed = file;
      changed[at] = static_cast<std::uint8_t>(changed[at] ^ change);
      refusals(changed);
    }
  }
}

TEST(DamageTest, ManyBytesMayChangeAtOnce) {
  const sample::File file = sample::Library().file();
  std::mt19937 random(20240511);
  int refused = 0;
  for (int round = 0; round < 5000; ++round) {
    sample::File changed = file;
    for (std::size_t change = random() % 8 + 1; change > 0; --change) {
      // Half of the changes go to the header and the section table, where they do most.
      const bool table = random() % 2 == 0;
      const std::size_t back = random() % (7 * 64 + 64);
      const std::size_t at =
          table ? (back < 64 ? back : file.size() - (back - 63)) : random() % file.size();
      changed[at] = static_cast<std::uint8_t>(random());
    }
    refused += refusals(changed) != 0 ? 1 : 0;
  }
  EXPECT_GT(refused, 3000);
}

}  // namespace
