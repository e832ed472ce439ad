// Processes that know different editions of the schema exchange images: each of the older, the
// current and the newer one writes every type and every record, and each of them reads what any
// wrote. Writers and readers that track state meet those that do not. What must come out is stated
// in statement.cpp, from the rows that the peers describe.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "evolution/statement.hpp"

namespace evolution {

namespace {

const std::vector<std::string> editions{"older", "current", "newer"};
constexpr std::uint32_t rounds = 5;
constexpr std::uint32_t writer_salt = 1;
constexpr std::uint32_t holder_salt = 2;

// Each writer leaves out the elements of arrays in one round.
std::uint32_t written_length(std::uint32_t round) { return round == 2 ? 0 : 3; }

// All types and tables, in an order of their own; every edition has the same.
std::vector<std::string> names(const Edition &edition) {
  std::vector<std::string> all;
  for (const Light &type : edition.lights) all.push_back(type.name);
  for (const Structure &type : edition.structures) all.push_back(type.name);
  for (const Table &table : edition.tables) all.push_back(table.name);
  return all;
}
bool is_table(const std::string &name) { return name.starts_with("tbl_"); }

std::string digits_of(const Bytes &bytes) {
  std::string digits;
  for (const std::uint8_t byte : bytes) {
    digits += "0123456789abcdef"[byte >> 4];
    digits += "0123456789abcdef"[byte & 15];
  }
  return digits;
}

// The lines about each object, by its name.
std::map<std::string, std::vector<std::string>> by_object(const std::vector<std::string> &lines) {
  std::map<std::string, std::vector<std::string>> objects;
  std::string name;
  for (const std::string &line : lines) {
    if (line.starts_with("object ")) {
      name = line.substr(7);
    } else {
      objects[name].push_back(line);
    }
  }
  return objects;
}

// One difference is told in full: later lines differ for the same reason.
void expect_lines(const std::vector<std::string> &told, const std::vector<std::string> &stated,
                  const std::string &what) {
  for (std::size_t at = 0; at < std::max(told.size(), stated.size()); ++at) {
    const std::string line = at < told.size() ? told[at] : "(nothing)";
    const std::string wanted = at < stated.size() ? stated[at] : "(nothing)";
    EXPECT_EQ(line, wanted) << what << ", line " << at;
    if (line != wanted) return;
  }
}

// Every object filled, as one input for a peer.
std::vector<std::string> writing_steps(const Writing &writing) {
  std::vector<std::string> steps;
  for (const std::string &name : names(writing.contents.edition())) {
    steps.push_back("object " + name);
    const auto fill = writing.contents.steps(name, writing.tracked);
    steps.insert(steps.end(), fill.begin(), fill.end());
    const auto &lights = writing.contents.edition().lights;
    const bool is_light = std::any_of(lights.begin(), lights.end(),
                                      [&](const Light &type) { return type.name == name; });
    if (writing.ra_data && !is_light) steps.push_back("ra-data");
    steps.push_back("end");
  }
  return steps;
}

// Has the writer's process write all images into the file, and holds them against the statement.
void write_images(const Writing &writing, const std::string &file) {
  const Edition &edition = writing.contents.edition();
  const std::vector<std::string> lines = run(
      edition, std::string("write ") + (writing.tracked ? "on" : "off"), writing_steps(writing));
  write_lines(file, lines);
  std::map<std::string, std::string> images;
  for (const std::string &line : lines) {
    images[line.substr(0, line.find(' '))] = line.substr(line.find(' ') + 1);
  }
  EXPECT_EQ(images.size(), names(edition).size());
  for (const Light &type : edition.lights) {
    EXPECT_EQ(images[type.name], digits_of(image(writing, type, type.name))) << type.name;
  }
  for (const Structure &type : edition.structures) {
    EXPECT_EQ(images[type.name], digits_of(image(writing, type, "", true))) << type.name;
  }
  for (const Table &table : edition.tables) {
    std::string objects;
    for (const std::string &object : table.objects) {
      objects += digits_of(image(writing, edition.structure(object), object + ".", true));
    }
    const std::string &written = images[table.name];
    ASSERT_GT(written.size(), 2u * 43) << table.name;
    EXPECT_EQ(written.substr(2 * 27, 2 * 16), table.luid) << table.name;
    EXPECT_EQ(written.substr(2 * 43), objects) << table.name;
  }
}

// Has the reader's process read them all, into new objects or into such that hold something.
void read_images(const Writing &writing, const Reading &reading, const std::string &file) {
  std::vector<std::string> steps;
  for (const std::string &name : names(reading.edition)) {
    steps.push_back("object " + name);
    const bool is_held = reading.held != nullptr && !is_table(name);
    if (is_held) {
      const auto fill = reading.held->steps(name, reading.tracked);
      steps.insert(steps.end(), fill.begin(), fill.end());
    }
    steps.push_back(is_held ? "end reuse" : "end");
  }
  auto told = by_object(
      run(reading.edition,
          std::string("read ") + (reading.tracked ? "on" : "off") + " '" + file + "'", steps));
  EXPECT_EQ(told.size(), names(reading.edition).size());
  for (const std::string &name : names(reading.edition)) {
    const Reading one{reading.edition, reading.tracked, is_table(name) ? nullptr : reading.held};
    expect_lines(told[name], report(writing, one, name), name);
  }
}

class Exchange : public testing::TestWithParam<std::pair<std::string, std::string>> {
 protected:
  const Edition &writer() const { return edition(GetParam().first); }
  const Edition &reader() const { return edition(GetParam().second); }

  // What the destination holds has arrays of another length where their states are told anew.
  void exchange(std::uint32_t round, bool writer_tracks, bool reader_tracks) {
    SCOPED_TRACE("round " + std::to_string(round));
    const Contents sent(writer(), writer_salt, round, written_length(round));
    const Writing writing{sent, writer_tracks, round == 3};
    const std::string file = temporary("images");
    write_images(writing, file);
    const bool keeps_element_states = reader_tracks && !writer_tracks;
    const Contents held(reader(), holder_salt, round,
                        round % 2 == 1 && !keeps_element_states ? 2 : 3);
    read_images(writing, {reader(), reader_tracks, round == 0 ? nullptr : &held}, file);
  }
};

TEST_P(Exchange, UntrackedImagesAreReadWithoutTracking) {
  for (std::uint32_t round = 0; round < rounds; ++round) exchange(round, false, false);
}

TEST_P(Exchange, TrackedImagesBringTheirStatesToATrackingReader) {
  for (std::uint32_t round = 0; round < rounds; ++round) exchange(round, true, true);
}

TEST_P(Exchange, AnUntrackedReaderPassesOverTheStatesOfATrackedImage) {
  for (std::uint32_t round = 0; round < rounds; ++round) exchange(round, true, false);
}

TEST_P(Exchange, ATrackingReaderKeepsItsStatesWhenTheImageHasNone) {
  for (std::uint32_t round = 0; round < rounds; ++round) exchange(round, false, true);
}

std::vector<std::pair<std::string, std::string>> ordered_pairs() {
  std::vector<std::pair<std::string, std::string>> pairs;
  for (const std::string &writer : editions) {
    for (const std::string &reader : editions) pairs.emplace_back(writer, reader);
  }
  return pairs;
}

INSTANTIATE_TEST_SUITE_P(AllPairs, Exchange, testing::ValuesIn(ordered_pairs()),
                         [](const auto &info) {
                           return info.param.first + "To" + info.param.second;
                         });

// --- the statement itself, held against numbers -------------------------------------------------

// The messages of one reading, by the statement and by the peer alike.
std::vector<std::string> messages(const std::string &writer, const std::string &reader,
                                  const std::string &name, bool tracked) {
  const Contents sent(edition(writer), writer_salt, 0, 3);
  const Writing writing{sent, tracked, false};
  const std::string file = temporary("images");
  write_images(writing, file);
  const auto told =
      by_object(run(edition(reader),
                    std::string("read ") + (tracked ? "on" : "off") + " '" + file + "'",
                    {"object " + name, "end"}))
          .at(name);
  const auto stated = report(writing, {edition(reader), tracked, nullptr}, name);
  EXPECT_EQ(told, stated);
  std::vector<std::string> found;
  for (const std::string &line : told) {
    if (line.starts_with("trace ")) found.push_back(line);
  }
  return found;
}

std::string passed_over(int position, int jump_at, int jump) {
  return "trace 6 offset_jump read_len " + std::to_string(position) + " offset_jump_base " +
         std::to_string(jump_at) + " _kelp_variant_jump " + std::to_string(jump);
}

using Lines = std::vector<std::string>;

// 2 bytes of frame, 4 of jump word, area_id, one identifier, another at variant 1, spf_runs at 2.
TEST(EvolutionNumbers, AnAreaEndsForEachReaderWhereItsFieldsEnd) {
  EXPECT_EQ(messages("newer", "newer", "ospf_area", false), Lines{});
  EXPECT_EQ(messages("newer", "current", "ospf_area", false), Lines{passed_over(90, 2, 92)});
  EXPECT_EQ(messages("newer", "older", "ospf_area", false), Lines{passed_over(50, 2, 92)});
  EXPECT_EQ(messages("current", "older", "ospf_area", false), Lines{passed_over(50, 2, 88)});
  EXPECT_EQ(messages("older", "newer", "ospf_area", false), Lines{});
}

TEST(EvolutionNumbers, StateBytesArePassedOverWithTheirFields) {
  EXPECT_EQ(messages("newer", "current", "ospf_area", true), Lines{passed_over(93, 2, 96)});
}

// The nested counters end at 14 of 18 bytes, their parent at 123 + 14 + 4 where its text begins.
TEST(EvolutionNumbers, ANestedTypePassesOverItsOwnAndItsParentGoesOn) {
  const Lines both{passed_over(14, 2, 16),
                   passed_over(6 + 4 * 22 + 5 + 18, 2, 4 + 4 * 22 + 5 + 18 + 13)};
  EXPECT_EQ(messages("newer", "current", "ospf_neighbor", false), both);
  // A reader that knows no counters passes over them and the text in one.
  EXPECT_EQ(messages("newer", "older", "ospf_neighbor", false),
            Lines{passed_over(6 + 4 * 22 + 5, 2, 4 + 4 * 22 + 5 + 18 + 13)});
}

// Wherever the network lies: three parents know nothing of its new field.
TEST(EvolutionNumbers, ADeeplyNestedTypePassesOverItsOwnInParentsThatAreTheSame) {
  const int known = 6 + 22 + 4 + 3 * 4;
  EXPECT_EQ(messages("newer", "current", "area_scope_lsa", false),
            Lines{passed_over(known, 2, known - 2 + 22)});
}

TEST(EvolutionNumbers, AFlagSetWithMoreBitsHasAnImageOfTheSameLength) {
  EXPECT_EQ(messages("newer", "current", "ospfv3_lsa_body_flag_options", false), Lines{});
  EXPECT_EQ(messages("newer", "current", "ospfv3_lsa_body", false), Lines{});
}

// --- the editions -------------------------------------------------------------------------------

TEST(Editions, TheOlderOneIsTheCurrentOneWithoutVariant1) {
  std::set<std::string> with_two;
  for (const Structure &type : edition("current").structures) {
    const Structure &older = edition("older").structure(type.name);
    if (type.variants == 2) with_two.insert(type.name);
    EXPECT_EQ(older.variants, 1) << type.name;
    std::vector<std::string> kept, held;
    for (const Field &field : type.fields) {
      if (field.since == 0) kept.push_back(field.name);
    }
    for (const Field &field : older.fields) held.push_back(field.name);
    EXPECT_EQ(held, kept) << type.name;
  }
  EXPECT_EQ(with_two.size(), 12u);
  EXPECT_EQ(edition("older").light("ospf_auth_type").members.size(), 3u);
  for (const Light &type : edition("older").lights) EXPECT_EQ(type.variants, 1) << type.name;
}

TEST(Editions, TheNewerOneAddsAVariantWithEachAddition) {
  std::set<std::string> grown;
  const auto grew = [&](const auto &type, const auto &newer) {
    if (newer.variants == type.variants) return;
    EXPECT_EQ(newer.variants, type.variants + 1) << type.name;
    grown.insert(type.name);
  };
  for (const Structure &type : edition("current").structures) {
    const Structure &newer = edition("newer").structure(type.name);
    grew(type, newer);
    EXPECT_EQ(newer.fields.size() > type.fields.size(), newer.variants > type.variants);
    for (std::size_t at = type.fields.size(); at < newer.fields.size(); ++at) {
      EXPECT_EQ(newer.fields[at].since, type.variants) << newer.fields[at].name;
    }
  }
  for (const Light &type : edition("current").lights) {
    const Light &newer = edition("newer").light(type.name);
    grew(type, newer);
    EXPECT_EQ(newer.members.size() > type.members.size(), newer.variants > type.variants);
  }
  EXPECT_EQ(grown, (std::set<std::string>{"link_scope_lsa", "multi_topology", "ospf_area",
                                          "ospf_auth_type", "ospf_authentication", "ospf_nbr_stat",
                                          "ospf_neighbor", "ospf_network_type", "ospfv2_network",
                                          "ospfv3_lsa_body_flag_options"}));
}

}  // namespace

}  // namespace evolution
