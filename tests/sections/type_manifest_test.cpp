// The type manifest of the built library, line by line and column by column: against the type
// records of the library that this program has loaded, and against the sizes that people agreed on.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <kelp/object.h>

#include <map>
#include <regex>
#include <set>

#include "support/agreed_schema.hpp"
#include "support/built_library.hpp"

namespace {

using library_sections::ManifestLine;

struct Expected {
  std::string name;
  std::string kind;  // as the manifest writes it
  int variants;
  unsigned size;
};

// The loaded record of a type, a table or a table's records.
const kelp_type_record *record(const std::string &name) {
  return static_cast<const kelp_type_record *>(
      dlsym(RTLD_DEFAULT, ("_" + name + "_type_info_internal").c_str()));
}

// By the MD5 of the loaded record.
std::map<std::string, Expected> expected_lines() {
  std::map<std::string, Expected> lines;
  const auto add = [&](const std::string &symbol, const Expected &expected) {
    const kelp_type_record *found = record(symbol);
    ASSERT_NE(found, nullptr) << symbol;
    EXPECT_STREQ(found->type_name, expected.name.c_str());
    EXPECT_EQ(found->varinfo->n_variants, expected.variants) << symbol;
    EXPECT_TRUE(lines.emplace(found->md5_text, expected).second) << symbol;
  };
  for (const agreed::Type &type : agreed::types) {
    add(std::string(type.name),
        {std::string(type.name), std::string(type.kind), type.variants, type.size});
  }
  for (const agreed::Table &table : agreed::tables) {
    const std::string name(table.name);
    add(name + "_table", {name, "tabl", 1, 0});
    add(name + "_table_record", {name + "_record", "trec", 1, 0});
  }
  return lines;
}

const std::vector<ManifestLine> &lines() { return built::library().halyard.manifest.lines; }

TEST(TypeManifestTest, EachRecordHasOneLineThatSaysWhatItIs) {
  const std::map<std::string, Expected> expected = expected_lines();
  ASSERT_EQ(lines().size(), expected.size());
  std::set<std::string> seen;
  for (const ManifestLine &line : lines()) {
    ASSERT_TRUE(expected.contains(line.md5)) << line.text;
    EXPECT_TRUE(seen.insert(line.md5).second) << line.text;
    const Expected &type = expected.at(line.md5);
    EXPECT_EQ(line.kind, type.kind) << type.name;
    EXPECT_EQ(line.highest_variant, static_cast<unsigned>(type.variants - 1)) << type.name;
    EXPECT_EQ(line.size, type.size) << type.name;
    char columns[128];
    std::snprintf(columns, sizeof columns, "%s:%s%s%03d:%05uN", line.md5.c_str(),
                  line.second_md5.c_str(), type.kind.c_str(), type.variants - 1, type.size);
    EXPECT_EQ(line.text, columns);
    EXPECT_EQ(line.text.size(), 79u);
  }
}

TEST(TypeManifestTest, KindsAndVariantsAreAsMany) {
  std::map<std::string, std::size_t> kinds;
  std::map<std::string, std::size_t> agreed_kinds{{"tabl", agreed::tables.size()},
                                                  {"trec", agreed::tables.size()}};
  std::map<int, int> variants;
  std::map<int, int> agreed_variants{{1, 2 * static_cast<int>(agreed::tables.size())}};
  for (const ManifestLine &line : lines()) {
    ++kinds[line.kind];
    ++variants[std::stoi(line.text.substr(69, 3)) + 1];
  }
  for (const agreed::Type &type : agreed::types) {
    ++agreed_kinds[std::string(type.kind)];
    ++agreed_variants[type.variants];
  }
  EXPECT_EQ(kinds, agreed_kinds);
  EXPECT_EQ(variants, agreed_variants);
}

TEST(TypeManifestTest, SecondMd5StandsNowhereElse) {
  std::set<std::string> first, second;
  for (const ManifestLine &line : lines()) {
    first.insert(line.md5);
    second.insert(line.second_md5);
  }
  EXPECT_EQ(first.size(), lines().size());
  EXPECT_EQ(second.size(), lines().size());
  for (const std::string &md5 : second) EXPECT_FALSE(first.contains(md5)) << md5;
}

TEST(TypeManifestTest, StatedLinesAndMd5sAreKept) {
  std::set<std::string> texts;
  std::map<std::string, std::string> kinds;
  for (const ManifestLine &line : lines()) {
    texts.insert(line.text);
    kinds[line.md5] = line.kind;
  }
  EXPECT_TRUE(texts.contains(
      "2b42e5c02e3225d440f9f5bec13c63de:5a730a756af0b63bd1546cec964c5687enum000:00016N"));
  EXPECT_EQ(kinds["0f58589be39f59b1ec820d0a75d12853"], "enum");
  for (const agreed::Table &table : agreed::tables) {
    EXPECT_EQ(kinds[std::string(table.luid)], "tabl") << table.name;
    EXPECT_EQ(kinds[std::string(table.record_md5)], "trec") << table.name;
  }
}

TEST(TypeManifestTest, SectionIsAsLongAsItsLines) {
  const std::string first = "# ospf_harbor_oper.minime\n";
  const auto section = built::library().file.bytes(built::library().file.require(".halyard"));
  const std::size_t manifest = first.size() + lines().size() * 80 + 1;
  const std::uint8_t head[8] = {static_cast<std::uint8_t>(manifest & 0xff),
                                static_cast<std::uint8_t>(manifest >> 8),
                                0,
                                0,
                                2,
                                0,
                                0,
                                0};
  EXPECT_EQ(library_sections::hex(section.first(8)), library_sections::hex(head));
  EXPECT_EQ(library_sections::text_of(section.subspan(8, first.size())), first);
  EXPECT_EQ(section[8 + manifest - 1], 0);
  EXPECT_EQ(section[8 + manifest + 4], 1);
}

TEST(BuildRecordTest, ItemsAreOfTheirForm) {
  const library_sections::BuildRecord &build = built::library().halyard.build;
  EXPECT_EQ(build.module, "ospf_harbor_oper");
  EXPECT_FALSE(build.built_by.empty());
  EXPECT_FALSE(build.on_host.empty());
  EXPECT_TRUE(std::regex_match(build.pid, std::regex("[0-9]+"))) << build.pid;
  EXPECT_TRUE(std::regex_search(
      build.at, std::regex("^[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}[.][0-9]{9}")))
      << build.at;
  EXPECT_NE(build.comment.find("tools/emit"), std::string::npos) << build.comment;
}

}  // namespace
