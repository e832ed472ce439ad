// A tree as one XML document: every kind of row comes back as it left, and what is wrong changes
// nothing. And the seeds of the stream's fuzz target, replayed.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "../fuzz/fuzz_input.hpp"
#include "support/places.hpp"
#include "support/random_tree.hpp"
#include "tree_exchange/tree_xml.hpp"
#include "xml_scanner.hpp"

namespace {

using namespace tree_exchange_tests;
using ospf_tables::Session;

std::string xml_of(Session &session) {
  std::string document;
  tree_exchange::write_tree_xml(session, [&](std::string_view text) { document += text; });
  return document;
}

TEST(TreeXml, TreesOfEveryTableComeBackAsTheyLeft) {
  for (std::uint32_t seed = 1; seed <= 6; ++seed) {
    Session from;
    std::size_t rows = 0;
    for (const auto &[table, count] : make_random_tree(from, {.seed = seed})) rows += count;
    const std::string document = xml_of(from);
    Session to;
    ASSERT_EQ(tree_exchange::read_tree_xml(to, "sample", document), rows) << "seed " << seed;
    EXPECT_EQ(xml_of(to), document) << "seed " << seed;
    EXPECT_EQ(text_of(to), text_of(from)) << "seed " << seed;
  }
}

TEST(TreeXml, ChangedDocumentsAreRefusedOrReadAndChangeNothingInBetween) {
  Session from;
  make_random_tree(from, {.seed = 9, .most_rows = 1, .least_rows = 8});
  const std::string document = xml_of(from);
  std::mt19937 random(1);
  Session to;
  make_random_tree(to, {.seed = 2, .most_rows = 1});
  const std::string before = text_of(to);
  std::size_t refused = 0;
  for (int round = 0; round < 300; ++round) {
    std::string changed = document;
    changed[random() % changed.size()] = "<>/\"a0 "[random() % 7];
    if (round % 4 == 0) changed.resize(random() % changed.size());
    Session aside;
    try {
      tree_exchange::read_tree_xml(aside, "sample", changed);
      continue;
    } catch (const ospf_tables::InputError &error) {
      EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
      ++refused;
    }
    EXPECT_THROW(tree_exchange::read_tree_xml(to, "sample", changed), ospf_tables::InputError);
  }
  EXPECT_EQ(text_of(to), before);
  EXPECT_GT(refused, 100u);
}

TEST(TreeXml, CommentsInstructionsAndBlanksArePassedOver) {
  Session from;
  make_random_tree(from, {.seed = 4});
  const std::string document = xml_of(from);
  std::string spaced;
  for (std::size_t at = 0; at < document.size(); ++at) {
    spaced += document[at];
    if (document.compare(at, 6, "\n    <") == 0) spaced += "<!-- <row> --><?note </row>?>\r\n\t";
  }
  Session to;
  tree_exchange::read_tree_xml(to, "sample", spaced);
  EXPECT_EQ(xml_of(to), document);
}

TEST(XmlScanner, TellsTagsAttributesAndTextsApart) {
  const std::string text =
      "<?xml version='1.0'?>\n<a x = '1>' y=\"/\"><!-- <b> -->t<b/><![CDATA[<c>]]></a >";
  tree_exchange::XmlScanner scanner(text);
  const tree_exchange::XmlEvent a = scanner.next();
  EXPECT_EQ(a.piece, tree_exchange::XmlPiece::open);
  EXPECT_EQ(a.name, "a");
  EXPECT_EQ(a.begin, text.find("<a"));
  ASSERT_EQ(a.attributes.size(), 2u);
  EXPECT_EQ(a.attribute("x"), "1>");
  EXPECT_EQ(a.attribute("y"), "/");
  EXPECT_FALSE(a.empty);
  EXPECT_EQ(scanner.next().piece, tree_exchange::XmlPiece::text);
  const tree_exchange::XmlEvent b = scanner.next();
  EXPECT_EQ(b.name, "b");
  EXPECT_TRUE(b.empty);
  EXPECT_EQ(scanner.next().piece, tree_exchange::XmlPiece::text);
  EXPECT_EQ(scanner.next().piece, tree_exchange::XmlPiece::close);
  EXPECT_EQ(scanner.next().piece, tree_exchange::XmlPiece::end);
}

TEST(StreamCorpus, EverySeedIsTakenAsItShouldBe) {
  std::size_t seeds = 0;
  for (const auto &entry : std::filesystem::directory_iterator(
           places::project() + "/libs/tree-exchange/fuzz/corpus/stream")) {
    std::ifstream in(entry.path(), std::ios::binary);
    const tree_exchange::Bytes input{std::istreambuf_iterator<char>(in), {}};
    EXPECT_EQ(tree_exchange::run_fuzz_input(input), "") << entry.path();
    ++seeds;
  }
  EXPECT_GE(seeds, 10u);
}

}  // namespace
