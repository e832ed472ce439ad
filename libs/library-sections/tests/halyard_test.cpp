// The type manifest and the build record: what is read, and where a malformed line is wrong.
#include "library_sections/halyard.hpp"

#include <gtest/gtest.h>

#include "library_sections/error.hpp"
#include "support/sample_library.hpp"

namespace {

using library_sections::Error;

library_sections::Halyard read(const std::string &section) {
  const sample::File file = sample::elf({{".halyard", section, 0, 1}});
  return library_sections::read_halyard(library_sections::ElfFile(file));
}

std::string complaint(const std::string &section) {
  try {
    read(section);
  } catch (const Error &error) {
    return error.what();
  }
  return "no complaint";
}

// The first line of a type begins here in the section, behind a header and "# sample.minime\n".
constexpr std::size_t first_line = 8 + 16;

std::string with_line(const std::string &line) {
  sample::Library library;
  library.manifest = "# sample.minime\n" + line + "\n";
  return complaint(library.halyard());
}

const std::string good_line =
    "2b42e5c02e3225d440f9f5bec13c63de:5a730a756af0b63bd1546cec964c5687enum000:00016N";

std::string with_column(std::size_t column, char value) {
  std::string line = good_line;
  line[column - 1] = value;
  return with_line(line);
}

std::string at(std::size_t column) {
  return "section .halyard, byte " + std::to_string(first_line + column - 1) +
         ": manifest line 2, column " + std::to_string(column) + ": found ";
}

TEST(HalyardTest, ManifestAndBuildRecordAreRead) {
  const library_sections::Halyard halyard = read(sample::Library().halyard());
  EXPECT_EQ(halyard.manifest.module, "sample");
  ASSERT_EQ(halyard.manifest.lines.size(), 2u);
  const library_sections::ManifestLine &line = halyard.manifest.lines[0];
  EXPECT_EQ(line.text, good_line);
  EXPECT_EQ(line.md5, "2b42e5c02e3225d440f9f5bec13c63de");
  EXPECT_EQ(line.second_md5, "5a730a756af0b63bd1546cec964c5687");
  EXPECT_EQ(line.kind, "enum");
  EXPECT_EQ(line.highest_variant, 0u);
  EXPECT_EQ(line.size, 16u);
  EXPECT_EQ(halyard.manifest.lines[1].kind, "type");
  EXPECT_EQ(halyard.manifest.lines[1].highest_variant, 1u);
  EXPECT_EQ(halyard.manifest.lines[1].size, 272u);
  EXPECT_EQ(halyard.build.module, "sample");
  EXPECT_EQ(halyard.build.built_by, "someone");
  EXPECT_EQ(halyard.build.on_host, "here");
  EXPECT_EQ(halyard.build.pid, "12");
  EXPECT_EQ(halyard.build.at, "2026-01-02 03:04:05.000000006 UTC");
  EXPECT_EQ(halyard.build.comment, "made for a test");
}

TEST(HalyardTest, MalformedLineIsNamedWithItsColumn) {
  const std::string hexadecimal = ", expected a lower-case hexadecimal digit";
  EXPECT_EQ(with_column(1, 'G'), at(1) + "\"G\"" + hexadecimal);
  EXPECT_EQ(with_column(32, 'E'), at(32) + "\"E\"" + hexadecimal);
  EXPECT_EQ(with_column(33, ';'), at(33) + "\";\", expected \":\"");
  EXPECT_EQ(with_column(65, ' '), at(65) + "\" \"" + hexadecimal);
  EXPECT_EQ(with_column(66, 'E'), at(66) + "\"Enum\", expected enum, type, flag, tabl or trec");
  EXPECT_EQ(with_column(70, '-'), at(70) + "\"-\", expected a decimal digit");
  EXPECT_EQ(with_column(73, '0'), at(73) + "\"0\", expected \":\"");
  EXPECT_EQ(with_column(78, 'x'), at(78) + "\"x\", expected a decimal digit");
  EXPECT_EQ(with_column(79, '\x1b'), at(79) + "\"\\x1b\", expected \"N\"");
  EXPECT_EQ(with_line(good_line + " "), at(80) + "\" \", expected the line's end");
  for (std::size_t length = 0; length < good_line.size(); ++length) {
    EXPECT_NE(with_line(good_line.substr(0, length)), "no complaint") << length;
  }
  EXPECT_EQ(with_line(good_line.substr(0, 76)),
            at(77) + "the line's end, expected a decimal digit");
}

TEST(HalyardTest, ManifestNeedsItsFirstLineAndItsLastNewline) {
  sample::Library library;
  for (const char *first : {"# .minime\n", "sample.minime\n", "# sample\n", "\n"}) {
    library.manifest = first;
    EXPECT_NE(complaint(library.halyard()).find("manifest line 1, column 1: found"),
              std::string::npos)
        << first;
  }
  library.manifest = "# sample.minime\n" + good_line;
  EXPECT_EQ(complaint(library.halyard()), at(80) + "end of the text, expected a newline");
}

TEST(HalyardTest, BuildRecordNeedsItsItemsInOrder) {
  const sample::Library good;
  sample::Library library;
  const std::size_t begin = 8 + good.manifest.size() + 1 + 8;
  library.build = "sample\nbuilt by: someone\npid: 12\n";
  EXPECT_EQ(
      complaint(library.halyard()),
      "section .halyard, byte " + std::to_string(begin + 25) +
          ": build record line 3, column 1: found \"pid: 12\", expected \"on host: \" and its "
          "value");
  for (std::size_t length = 0; length < good.build.find("made for"); ++length) {
    library.build = good.build.substr(0, length);
    if (library.build.ends_with("comment: ")) continue;
    EXPECT_NE(complaint(library.halyard()), "no complaint") << library.build;
  }
  library.build = good.build + "signed: by nobody\n";
  EXPECT_NE(
      complaint(library.halyard())
          .find("build record line 7, column 1: found \"signed: by nobody\", expected the end"),
      std::string::npos);
  library.build = good.build.substr(0, good.build.size() - 1);
  EXPECT_EQ(complaint(library.halyard()), "no complaint");
}

TEST(HalyardTest, RecordsAreTwoAndInOrder) {
  const sample::Library library;
  std::string section = library.halyard();
  section[4] = 1;
  EXPECT_EQ(complaint(section),
            "section .halyard, byte 4: type of a record: found 1, expected 2 (manifest)");
  section = library.halyard() + "x";
  EXPECT_NE(complaint(section).find("end of the section: found 1 more bytes, expected none"),
            std::string::npos);
  section = library.halyard().substr(0, 8 + library.manifest.size() + 1);
  EXPECT_NE(complaint(section).find("length of a record: found 0 bytes left, expected 4"),
            std::string::npos);
  section = library.halyard();
  section[3] = 1;
  EXPECT_NE(complaint(section).find("section .halyard, byte 0: length of a record: found "),
            std::string::npos);
}

TEST(HalyardTest, TextsEndInTheirOnlyNul) {
  sample::Library library;
  library.manifest[20] = '\0';
  EXPECT_EQ(complaint(library.halyard()),
            "section .halyard, byte 28: manifest: found a NUL before its end, expected one NUL, at "
            "its end");
  std::string section = sample::Library().halyard();
  section.back() = 'x';
  EXPECT_NE(complaint(section).find("build record: found no NUL, expected one NUL"),
            std::string::npos);
}

}  // namespace
