// `ospf-harbor inspect`: what it prints of the built library and of a small one, and what it says
// of files that are damaged.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>
#include <sstream>

#include "ospf_tables/input_error.hpp"
#include "support/built_library.hpp"
#include "support/places.hpp"
#include "support/sample_library.hpp"
#include "support/temporary_file.hpp"
#include "views/inspection.hpp"

namespace {

// How many the built library's file has, read past the command.
std::size_t type_count() { return built::library().halyard.manifest.lines.size(); }
std::size_t message_count() {
  std::size_t count = 0;
  for (const auto &table : built::library().messages.tables) count += table.messages.size();
  return count;
}

struct Printed {
  int status = -1;
  std::string out;
  std::string complaints;
};

Printed inspect(const std::string &path, bool messages = false, bool json = false) {
  std::ostringstream out, complaints;
  Printed printed;
  printed.status = tool::inspect({path, messages, json}, out, complaints);
  printed.out = out.str();
  printed.complaints = complaints.str();
  return printed;
}

std::string refusal(const std::string &path) {
  try {
    inspect(path);
  } catch (const ospf_tables::InputError &error) {
    return error.what();
  }
  return "no refusal";
}

TEST(InspectTest, SmallLibraryIsPrintedWhole) {
  const TemporaryFile file("small.so");
  const sample::Library library;
  file.write(library.file());
  const Printed printed = inspect(file.path(), true);
  EXPECT_EQ(printed.status, 0);
  EXPECT_EQ(printed.complaints, "");
  const std::string sizes = std::to_string(library.texts().size()) + " bytes of text, " +
                            std::to_string(sample::compressed(library.texts()).size()) +
                            " as bzip2\n";
  EXPECT_EQ(printed.out,
            "Module sample\n"
            "\n"
            "Build record\n"
            "  built by  someone\n"
            "  on host   here\n"
            "  pid       12\n"
            "  at        2026-01-02 03:04:05.000000006 UTC\n"
            "  comment   made for a test\n"
            "\n"
            "Type manifest of sample: 2 types\n"
            "  KIND  VARIANTS   SIZE  MD5                               SECOND MD5                 "
            "       NAME\n"
            "  enum         1     16  2b42e5c02e3225d440f9f5bec13c63de  "
            "5a730a756af0b63bd1546cec964c5687  -\n"
            "  type         2    272  0f58589be39f59b1ec820d0a75d12853  "
            "00112233445566778899aabbccddeeff  -\n"
            "\n"
            "Trace messages: 8 in 2 tables, " +
                sizes +
                "  SOURCE  MESSAGES  IDENTITY\n"
                "       0         4  101112131415161718191a1b1c1d1e1f\n"
                "       1         4  f0efeeedecebeae9e8e7e6e5e4e3e2e1\n"
                "\n"
                "  SIGNATURE  EMITTER  CONVERSIONS    SOURCE 0    SOURCE 1\n"
                "          0  __XLf_1   %s                    1           0\n"
                "          1  __XLf_0   none                  1           0\n"
                "          2  __XLf_44  %u %u                 1           0\n"
                "          3  __XLf_444 %d %d %d              1           0\n"
                "          4  __XLf_51  %p %s                 0           1\n"
                "          5  __XLf_11  %s %s                 0           1\n"
                "          6  __XLf_4   %d                    0           1\n"
                "          7  __XLf_14  %s %u                 0           1\n"
                "\n"
                "  SOURCE  INDEX  SIGNATURE  TEXT\n"
                "       0      0          0  error in thing create %s\n"
                "       0      1          1  Corrupted Handle\n"
                "       0      2          2  variant %u requested only %u variants present\n"
                "       0      3          3  read_len %d base %d jump %d\n"
                "       1      0          4  reference to %p lost. Error %s\n"
                "       1      1          5  no mapping for %s/%s\n"
                "       1      2          6  unknown key:%d\n"
                "       1      3          7  no root in DB %s. Open type: %u\n"
                "\n");
}

TEST(InspectTest, BuiltLibraryIsSound) {
  const Printed printed = inspect(places::library());
  EXPECT_EQ(printed.status, 0);
  EXPECT_EQ(printed.complaints, "");
  EXPECT_NE(printed.out.find("Type manifest of ospf_harbor_oper: " + std::to_string(type_count()) +
                             " types\n"),
            std::string::npos);
  EXPECT_NE(
      printed.out.find("Trace messages: " + std::to_string(message_count()) + " in 2 tables, "),
      std::string::npos);
  EXPECT_NE(printed.out.find("  enum         1     16  2b42e5c02e3225d440f9f5bec13c63de  "
                             "5a730a756af0b63bd1546cec964c5687  address_family\n"),
            std::string::npos);
  EXPECT_NE(printed.out.find("  tbl_ospf_area_record\n"), std::string::npos);
}

TEST(InspectTest, JsonIsOneObjectALine) {
  const Printed printed = inspect(places::library(), true, true);
  EXPECT_EQ(printed.status, 0);
  std::map<std::string, std::size_t> whats;
  std::istringstream lines(printed.out);
  nlohmann::json last;
  for (std::string line; std::getline(lines, line);) {
    last = nlohmann::json::parse(line);
    ++whats[last["what"].get<std::string>()];
  }
  EXPECT_EQ(whats, (std::map<std::string, std::size_t>{{"build", 1},
                                                       {"type", type_count()},
                                                       {"message_table", 2},
                                                       {"message", message_count()}}));
  EXPECT_EQ(last["text"], "Error already set when requesting ospf_harbor_oper table vft");
  EXPECT_EQ(last["index"], built::library().messages.tables.back().messages.size() - 1);
  EXPECT_EQ(last["signature"], "0");
}

TEST(InspectTest, ForeignFilesAreNamed) {
  EXPECT_EQ(refusal("/nonexistent.so"), "cannot open /nonexistent.so: No such file or directory");
  const TemporaryFile file("foreign.so");
  const std::string text = "just text";
  file.write({reinterpret_cast<const std::uint8_t *>(text.data()), text.size()});
  EXPECT_EQ(refusal(file.path()), file.path() +
                                      ": file, byte 0: magic of an ELF file: found 6a757374, "
                                      "expected 7f454c46");
}

// The other parts are shown all the same.
TEST(InspectTest, DamagedPartIsNamedAndTheOthersShown) {
  const TemporaryFile file("damaged.so");
  std::vector<sample::Section> sections = sample::Library().sections();
  sample::section(sections, ".halyard").bytes.resize(40);
  file.write(sample::elf(sections));
  Printed printed = inspect(file.path());
  EXPECT_EQ(printed.status, 1);
  EXPECT_EQ(
      printed.complaints,
      "ospf-harbor: " + file.path() +
          ": section .halyard, byte 0: length of a record: found 177, expected at most the 32 "
          "bytes left\n");
  EXPECT_NE(printed.out.find("Trace messages: 8 in 2 tables"), std::string::npos);

  file.write(sample::elf({sections.back()}));
  printed = inspect(file.path());
  EXPECT_EQ(printed.status, 1);
  EXPECT_NE(printed.complaints.find("sections .xlog_luids_*: found none"), std::string::npos);
  EXPECT_EQ(printed.out, "");
}

// What a file says of itself does not reach the terminal as it stands.
TEST(InspectTest, ControlCharactersAreShownEscaped) {
  const TemporaryFile file("control.so");
  sample::Library library;
  library.build.replace(library.build.find("someone"), 7, "\x1b[2J\xff!!");
  library.sources[0].messages[1].text = "line\nbreak";
  file.write(library.file());
  const Printed text = inspect(file.path(), true);
  EXPECT_NE(text.out.find("  built by  \\x1b[2J\\xff!!\n"), std::string::npos);
  EXPECT_NE(text.out.find("  line\\nbreak\n"), std::string::npos);
  const Printed json = inspect(file.path(), true, true);
  EXPECT_EQ(json.status, 0);
  EXPECT_EQ(json.out.find('\x1b'), std::string::npos);
}

TEST(InspectTest, DamagedFilesNeverDoHarm) {
  const TemporaryFile file("changed.so");
  const sample::File good = sample::Library().file();
  const auto try_file = [&](const sample::File &bytes) {
    file.write(bytes);
    try {
      const Printed printed = inspect(file.path(), true, bytes.size() % 2 == 0);
      EXPECT_EQ(printed.status == 0, printed.complaints.empty());
      return printed.status != 0;
    } catch (const ospf_tables::InputError &) {
      return true;
    }
  };
  for (std::size_t length = 0; length < good.size(); ++length) {
    EXPECT_TRUE(try_file({good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length)}))
        << length;
  }
  std::mt19937 random(7);
  int refused = 0;
  for (int round = 0; round < 3000; ++round) {
    sample::File changed = good;
    for (std::size_t change = random() % 4 + 1; change > 0; --change) {
      changed[random() % changed.size()] = static_cast<std::uint8_t>(random());
    }
    refused += try_file(changed) ? 1 : 0;
  }
  EXPECT_GT(refused, 1000);
}

}  // namespace
