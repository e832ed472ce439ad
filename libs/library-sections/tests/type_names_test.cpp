// Names of types out of the exported type records, and what is said of symbols that lie.
#include "library_sections/type_names.hpp"

#include <gtest/gtest.h>

#include <random>

#include "library_sections/error.hpp"
#include "support/sample_library.hpp"

namespace {

using library_sections::ElfFile;
using library_sections::Error;

constexpr std::size_t record_bytes = 4 + 16 + 33 + 64;

std::string record(const std::string &name, const std::string &digits) {
  std::string bytes;
  sample::put32(bytes, 0xbeeff00d);
  for (std::size_t i = 0; i < 32; i += 2) {
    bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
  }
  bytes += digits + '\0' + name;
  bytes.resize(record_bytes);
  return bytes;
}

const std::string first_md5 = "2b42e5c02e3225d440f9f5bec13c63de";
const std::string second_md5 = "0f58589be39f59b1ec820d0a75d12853";

struct Symbol {
  std::string name;
  std::uint64_t section;
  std::uint64_t value;
};

// Data with two records, as section 1, and the symbols.
std::vector<sample::Section> library(const std::vector<Symbol> &symbols) {
  std::string names(1, '\0');
  std::string table(24, '\0');
  for (const Symbol &symbol : symbols) {
    sample::put32(table, names.size());
    sample::put16(table, 0x11);
    sample::put16(table, symbol.section);
    sample::put64(table, symbol.value);
    sample::put64(table, record_bytes);
    names += symbol.name + '\0';
  }
  return {{".data", "1234" + record("first", first_md5) + record("second", second_md5), 3, 1},
          {".dynsym", table, 2, 11},
          {".dynstr", names, 2, 3}};
}

const std::vector<Symbol> good_symbols{{"_first_type_info_internal", 1, 4},
                                       {"_other_type_info_internal", 0, 0},
                                       {"first_create", 1, 7},
                                       {"_second_type_info_internal", 1, 4 + record_bytes}};

std::string complaint(const std::vector<sample::Section> &sections) {
  const sample::File file = sample::elf(sections);
  try {
    library_sections::read_type_names(ElfFile(file));
  } catch (const Error &error) {
    return error.what();
  }
  return "no complaint";
}

TEST(TypeNamesTest, RecordsThatAreDefinedGiveNames) {
  const sample::File file = sample::elf(library(good_symbols));
  EXPECT_EQ(library_sections::read_type_names(ElfFile(file)),
            (std::map<std::string, std::string>{{first_md5, "first"}, {second_md5, "second"}}));
}

TEST(TypeNamesTest, FileWithoutSymbolsHasNoNames) {
  const sample::File file = sample::Library().file();
  EXPECT_TRUE(library_sections::read_type_names(ElfFile(file)).empty());
}

TEST(TypeNamesTest, SymbolsThatLieAreRefused) {
  const auto of = [](std::uint64_t section, std::uint64_t value) {
    return complaint(library({{"_x_type_info_internal", section, value}}));
  };
  EXPECT_EQ(of(9, 4), "type record _x_type_info_internal: found section 9, expected one of 5");
  EXPECT_EQ(of(1, 5),
            "type record _x_type_info_internal in section .data, byte 5: magic: found f0efbe2b, "
            "expected 0df0efbe");
  EXPECT_EQ(of(1, 5000),
            "type record _x_type_info_internal in section .data, byte 5000: magic: found 0 bytes "
            "left, expected 4 (the file is cut or damaged)");
  EXPECT_NE(of(1, UINT64_MAX), "no complaint");
  std::vector<sample::Section> sections = library(good_symbols);
  sample::section(sections, ".data").bytes[4 + 20] = 'x';
  EXPECT_NE(complaint(sections).find("byte 24: MD5 as text: found \"xb42"), std::string::npos);
  sections = library(good_symbols);
  sample::section(sections, ".dynstr").bytes.resize(3);
  EXPECT_NE(complaint(sections).find("expected at most the 3 bytes of section .dynstr"),
            std::string::npos);
}

TEST(TypeNamesTest, EveryByteMayChange) {
  const sample::File good = sample::elf(library(good_symbols));
  std::mt19937 random(11);
  int refused = 0;
  for (std::size_t round = 0; round < 4000; ++round) {
    sample::File file = good;
    file[round % file.size()] ^= static_cast<std::uint8_t>(random() % 255 + 1);
    file[random() % file.size()] = static_cast<std::uint8_t>(random());
    try {
      library_sections::read_type_names(ElfFile(file));
    } catch (const Error &) {
      ++refused;
    }
  }
  EXPECT_GT(refused, 1000);
}

}  // namespace
