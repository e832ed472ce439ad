// Sections of ELF files: what is found, and what is said of files that are none or are damaged.
#include "library_sections/elf_file.hpp"

#include <gtest/gtest.h>

#include "library_sections/error.hpp"
#include "support/sample_library.hpp"

namespace {

using library_sections::ElfFile;
using library_sections::Error;
using library_sections::text_of;

std::string complaint(const sample::File &file) {
  try {
    ElfFile reader(file);
  } catch (const Error &error) {
    return error.what();
  }
  return "no complaint";
}

sample::File small() { return sample::elf({{".one", "first", 2, 1}, {".two", "second", 0, 1}}); }

void set(sample::File &file, std::size_t at, std::uint64_t value, int width) {
  for (int i = 0; i < width; ++i) file[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

TEST(ElfFileTest, SectionsAreFoundByName) {
  const sample::File file = small();
  const ElfFile reader(file);
  EXPECT_EQ(text_of(reader.bytes(reader.require(".one"))), "first");
  EXPECT_EQ(text_of(reader.bytes(reader.require(".two"))), "second");
  EXPECT_TRUE(reader.require(".one").loaded());
  EXPECT_FALSE(reader.require(".two").loaded());
}

TEST(ElfFileTest, MissingAndDoubleSectionsAreNamed) {
  const sample::File file = sample::elf({{".one", "a", 0, 1}, {".one", "b", 0, 1}});
  const ElfFile reader(file);
  const auto required = [&](const char *name) {
    try {
      reader.require(name);
    } catch (const Error &error) {
      return std::string(error.what());
    }
    return std::string();
  };
  EXPECT_EQ(required(".two"), "section .two: found none, expected one such section");
  EXPECT_EQ(required(".one"), "section .one: found 2, expected one such section");
}

TEST(ElfFileTest, ForeignFilesAreRefused) {
  EXPECT_EQ(complaint({}),
            "file, byte 0: magic of an ELF file: found an empty file, expected 7f454c46");
  EXPECT_EQ(complaint({'#', '!', '/', 'b', 'i', 'n'}),
            "file, byte 0: magic of an ELF file: found 23212f62, expected 7f454c46");
  sample::File file = small();
  file[4] = 1;
  EXPECT_EQ(complaint(file), "ELF header, byte 4: class: found 1 (32-bit), expected 2 (64-bit)");
  file = small();
  file[5] = 2;
  EXPECT_EQ(complaint(file),
            "ELF header, byte 5: byte order: found 2 (big-endian), expected 1 (little-endian)");
}

TEST(ElfFileTest, HeaderThatLiesIsRefusedWithItsPlace) {
  const std::uint64_t size = small().size();
  sample::File file = small();
  set(file, 40, 0, 8);
  EXPECT_EQ(complaint(file),
            "ELF header, byte 40: offset of the section table: found 0, expected a table");
  set(file, 40, size + 1, 8);
  EXPECT_EQ(complaint(file), "ELF header, byte 40: offset of the section table: found " +
                                 std::to_string(size + 1) + ", expected at most the file's " +
                                 std::to_string(size) + " bytes (the file is cut or damaged)");
  set(file, 40, UINT64_MAX, 8);
  EXPECT_NE(complaint(file).find("found 18446744073709551615"), std::string::npos);
  file = small();
  set(file, 58, 40, 2);
  EXPECT_EQ(complaint(file),
            "ELF header, byte 58: bytes of an entry of the section table: found 40, expected 64");
  file = small();
  set(file, 60, 5, 2);
  EXPECT_NE(complaint(file).find("number of entries: found 5, expected at most 4"),
            std::string::npos);
  file = small();
  set(file, 62, 4, 2);
  EXPECT_EQ(complaint(file),
            "ELF header, byte 62: section that holds the names: found 4, expected less than 4");
}

// Counts that the header has no room for stand in the first entry of the table.
TEST(ElfFileTest, LargeCountsStandInTheFirstEntry) {
  sample::File file = small();
  const std::size_t table = file.size() - 4 * 64;
  set(file, 60, 0, 2);
  set(file, 62, 0xffff, 2);
  set(file, table + 32, 4, 8);
  set(file, table + 40, 3, 4);
  const ElfFile reader(file);
  EXPECT_EQ(text_of(reader.bytes(reader.require(".two"))), "second");
  set(file, table + 32, UINT64_MAX / 64, 8);
  EXPECT_NE(complaint(file).find("number of entries: found 288230376151711743"), std::string::npos);
}

TEST(ElfFileTest, SectionOutsideTheFileIsRefusedWhenItsBytesAreWanted) {
  sample::File file = small();
  const std::size_t entry = file.size() - 3 * 64;  // of .one
  set(file, entry + 24, UINT64_MAX - 2, 8);
  const ElfFile reader(file);
  EXPECT_EQ(text_of(reader.bytes(reader.require(".two"))), "second");
  try {
    reader.bytes(reader.require(".one"));
    FAIL() << "bytes outside the file";
  } catch (const Error &error) {
    EXPECT_EQ(std::string(error.what()),
              "section .one: found 5 bytes at byte 18446744073709551613, expected a range within "
              "the file's " +
                  std::to_string(file.size()) + " bytes (the file is cut or damaged)");
  }
}

TEST(ElfFileTest, SectionsWithoutPlainBytesAreRefused) {
  const sample::File file = sample::elf({{".empty", "", 3, 8}, {".packed", "abc", 0x800, 1}});
  const ElfFile reader(file);
  EXPECT_THROW(reader.bytes(reader.require(".empty")), Error);
  EXPECT_THROW(reader.bytes(reader.require(".packed")), Error);
}

TEST(ElfFileTest, NameOutsideTheNamesIsRefused) {
  sample::File file = small();
  set(file, file.size() - 3 * 64, 100000, 4);
  EXPECT_EQ(complaint(file),
            "section names, byte 100000: name of a section: found an offset behind 21 bytes, "
            "expected a name that ends in a NUL");
}

TEST(ElfFileTest, EveryCutIsRefused) {
  const sample::File file = small();
  for (std::size_t length = 0; length < file.size(); ++length) {
    EXPECT_NE(complaint({file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length)}),
              "no complaint")
        << length;
  }
}

TEST(BytesTest, TextsAreMadeFitForATerminal) {
  EXPECT_EQ(library_sections::escaped("plain \\ text"), "plain \\ text");
  EXPECT_EQ(library_sections::escaped("a\nb\tc\rd\x1b[31m\x7f\xc3\xa4"),
            "a\\nb\\tc\\rd\\x1b[31m\\x7f\\xc3\\xa4");
}

TEST(BytesTest, FilesThatCannotBeReadAreNamed) {
  for (const auto &[path, said] :
       {std::pair("/nonexistent/library", "cannot open /nonexistent/library: "),
        std::pair("/", "cannot read /: ")}) {
    try {
      library_sections::read_file(path);
      ADD_FAILURE() << path;
    } catch (const Error &error) {
      EXPECT_EQ(std::string(error.what()).find(said), 0u) << error.what();
    }
  }
}

}  // namespace
