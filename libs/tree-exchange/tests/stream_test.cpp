// Tree streams: whole trees of every kind of row arrive as they left, and no bytes that are no
// sound tree change anything, wherever they are cut or changed.
#include <gtest/gtest.h>
#include <kelp/database.h>

#include <random>
#include <sstream>

#include "ospf_tables/rows.hpp"
#include "ospf_tables/tree.hpp"
#include "stream_maker.hpp"
#include "support/random_tree.hpp"
#include "tree_exchange/annotation.hpp"
#include "tree_exchange/tree_reader.hpp"
#include "tree_exchange/tree_writer.hpp"

namespace {

using namespace tree_exchange_tests;
using ospf_tables::Session;
using tree_exchange::Bytes;
using tree_exchange::ByteView;

std::uint64_t read(Session &session, ByteView bytes, std::size_t piece = SIZE_MAX) {
  tree_exchange::TreeReader reader(session, "sample");
  while (!bytes.empty()) {
    const ByteView now = bytes.first(std::min(piece, bytes.size()));
    reader.feed(now);
    bytes = bytes.subspan(now.size());
  }
  return reader.finish();
}

// The message with which the bytes are refused; empty when they are taken.
std::string refusal(Session &session, ByteView bytes) {
  try {
    read(session, bytes);
    return "";
  } catch (const ospf_tables::InputError &error) {
    return error.what();
  }
}

std::uint64_t live_allocations(Session &session) {
  kelp_memory_statistics memory{};
  kelp_database_memory(kelp_handle_database(session.handle()), &memory);
  return memory.live_allocations;
}

// The first table of a kind brings a block that stays with the database.
template <std::size_t at = 0>
void open_every_kind_once(Session &session) {
  if constexpr (at < std::tuple_size_v<ospf_tables::AllTables>) {
    const auto *rule =
        tree_exchange::rule_named(std::tuple_element_t<at, ospf_tables::AllTables>::name);
    rule->free(session, rule->open(session));
    open_every_kind_once<at + 1>(session);
  }
}

TEST(TreeStream, TreesOfEveryTableAndVariantArriveAsTheyLeft) {
  std::map<std::string, std::size_t> seen;
  for (std::uint32_t seed = 1; seed <= 12; ++seed) {
    Session from;
    std::size_t rows = 0;
    for (const auto &[table, count] :
         make_random_tree(from, {.seed = seed, .mixed_variants = true})) {
      seen[table] += count;
      rows += count;
    }
    const Bytes sent = stream_of(from);
    Session to;
    EXPECT_EQ(read(to, sent), rows) << "seed " << seed;
    EXPECT_EQ(text_of(to), text_of(from)) << "seed " << seed;
    EXPECT_EQ(stream_of(to), sent) << "seed " << seed;
  }
  // All but the two tables that no tree from the root of today has.
  EXPECT_EQ(seen.size(), std::tuple_size_v<ospf_tables::AllTables> - 2);
}

TEST(TreeStream, IsReadTheSameInPiecesOfAnySize) {
  Session from;
  make_random_tree(from, {.seed = 5});
  const Bytes sent = stream_of(from);
  for (const std::size_t piece : {1u, 2u, 3u, 7u, 64u, 1000u}) {
    Session to;
    read(to, sent, piece);
    EXPECT_EQ(stream_of(to), sent) << piece;
  }
}

TEST(TreeStream, CarriesNoReferenceOfTheSender) {
  Session from;
  make_random_tree(from, {.seed = 3});
  Session again;
  read(again, stream_of(from));
  // The identifiers of tables differ from database to database, so equal bytes hold none of them.
  EXPECT_EQ(stream_of(again), stream_of(from));
}

TEST(TreeStream, ReferencesOfASenderAreNotTakenForOnesOfHere) {
  Session session;
  make_random_tree(session, {.seed = 3});
  const std::string before = text_of(session);
  // Images with references of this very database, as a writer that leaves them in place sends.
  auto *roots = ospf_tables::root_table(session, false);
  std::uint32_t err = 0;
  auto *root = tbl_ospf_rev1_pkey_get_first(session.handle(), 0, roots, &err);
  Bytes image(1000);
  image.resize(
      tbl_ospf_rev1_table_record_marshal(session.handle(), 0, image.data(), root, 900, &err));
  ASSERT_EQ(err, 0u);
  auto *instances = ospf_rev1_instance_get_by_ref(
      session.handle(), 0, tbl_ospf_rev1_ospf_rev1_get_field(session.handle(), 0, root), &err);
  const std::int64_t references = kelp_handle_oid_references(session.handle(), instances);
  EXPECT_EQ(references, 1);
  StreamMaker stream;
  stream.table("", "tbl_ospf_rev1").row(image).close(1).end(1);
  EXPECT_EQ(refusal(session, stream.bytes()), "");
  EXPECT_EQ(kelp_handle_oid_references(session.handle(), instances), references);
  EXPECT_EQ(text_of(session), before);
}

TEST(TreeStream, AnEmptyTreeIsATree) {
  Session from;
  const Bytes sent = stream_of(from);
  EXPECT_EQ(sent, StreamMaker().table("", "tbl_ospf_rev1").close(0).end(0).bytes());
  Session to;
  EXPECT_EQ(read(to, sent), 0u);
  EXPECT_EQ(ospf_tables::root_table(to, false), nullptr);
}

TEST(TreeStream, AnInstanceOfTheSameKeyGivesWayAndTheOthersStay) {
  Session one;
  make_random_tree(one, {.seed = 21, .most_rows = 3});
  Session other;
  make_random_tree(other, {.seed = 22, .most_rows = 3});
  Session to;
  read(to, stream_of(one));
  const std::string first = text_of(to);
  read(to, stream_of(other));
  const std::string both = text_of(to);
  EXPECT_GT(both.size(), first.size());
  read(to, stream_of(one));
  EXPECT_EQ(text_of(to), both);
  read(to, stream_of(to));
  EXPECT_EQ(text_of(to), both);
}

TEST(TreeStream, LeavesNothingBehindWhenItIsRefused) {
  Session from;
  make_random_tree(from, {.seed = 7});
  const Bytes sent = stream_of(from);
  Session to;
  read(to, sent);
  open_every_kind_once(to);
  const std::uint64_t before = live_allocations(to);
  EXPECT_NE(refusal(to, ByteView(sent).first(sent.size() - 1)), "");
  EXPECT_EQ(live_allocations(to), before);
}

// A stream of a few kilobytes with many kinds of rows.
Bytes small_sample() {
  for (std::uint32_t seed = 100;; ++seed) {
    Session session;
    const auto rows =
        make_random_tree(session, {.seed = seed, .mixed_variants = true, .least_rows = 1});
    Bytes stream = stream_of(session);
    if (rows.size() >= 6 && stream.size() < 5000) return stream;
  }
}

class DamagedStream : public testing::Test {
 protected:
  DamagedStream() {
    make_random_tree(session_, {.seed = 2});
    before_ = text_of(session_);
    open_every_kind_once(session_);
    allocations_ = live_allocations(session_);
  }

  void expect_refused(ByteView bytes, const std::string &what) {
    const std::string message = refusal(session_, bytes);
    ASSERT_NE(message, "") << what;
    EXPECT_TRUE(message.starts_with("sample: offset 0x")) << message;
    EXPECT_NE(message.find("found "), std::string::npos) << message;
    EXPECT_NE(message.find(", expected "), std::string::npos) << message;
    EXPECT_EQ(message.find('\n'), std::string::npos) << message;
    ASSERT_EQ(live_allocations(session_), allocations_) << what;
  }
  void TearDown() override { EXPECT_EQ(text_of(session_), before_); }

  Session session_;
  std::string before_;
  std::uint64_t allocations_;
};

TEST_F(DamagedStream, EveryTruncationIsRefused) {
  const Bytes sample = small_sample();
  for (std::size_t length = 0; length < sample.size(); ++length) {
    expect_refused(ByteView(sample).first(length), "cut at " + std::to_string(length));
  }
}

TEST_F(DamagedStream, EveryByteIsUnderTheChecksum) {
  const Bytes sample = small_sample();
  std::mt19937 random(1);
  for (std::size_t at = 0; at < sample.size(); ++at) {
    Bytes changed = sample;
    changed[at] ^= static_cast<std::uint8_t>(1 + random() % 255);
    expect_refused(changed, "changed at " + std::to_string(at));
  }
}

// With the checksum repaired, what stands behind it has to judge: what is taken is a tree that goes
// on as it came.
TEST(ChangedStream, IsRefusedOrReadAndWrittenAgain) {
  const Bytes sample = small_sample();
  std::mt19937 random(2);
  std::size_t taken = 0;
  for (int round = 0; round < 3000; ++round) {
    Bytes changed = sample;
    for (std::uint32_t changes = 1 + random() % 3; changes > 0; --changes) {
      const std::size_t at = tree_exchange::stream_header_size +
                             random() % (sample.size() - tree_exchange::stream_header_size - 4);
      changed[at] = static_cast<std::uint8_t>(random() % 4 == 0 ? 255 : random());
    }
    repair_checksum(changed);
    Session to;
    if (refusal(to, changed) != "") {
      EXPECT_EQ(ospf_tables::root_table(to, false), nullptr);
      continue;
    }
    ++taken;
    const Bytes again = stream_of(to);
    Session further;
    EXPECT_EQ(refusal(further, again), "");
    EXPECT_EQ(stream_of(further), again);
  }
  EXPECT_GT(taken, 100u);
  EXPECT_LT(taken, 2900u);
}

class BadStream : public DamagedStream {
 protected:
  void expect(StreamMaker &stream, const std::string &text) {
    expect_refused(stream.bytes(), text);
    EXPECT_NE(refusal(session_, stream.bytes()).find(text), std::string::npos)
        << refusal(session_, stream.bytes());
  }
  static StreamMaker to_areas() {
    StreamMaker stream;
    stream.table("", "tbl_ospf_rev1").row(root_image());
    stream.table("instance", "tbl_ospf_instance_rev1").row(instance_image(1));
    stream.table("area", "tbl_ospf_area");
    return stream;
  }
};

TEST_F(BadStream, TheHandMadeStreamIsSoundUntilItIsSpoiled) {
  Session to;
  StreamMaker stream = to_areas();
  stream.row(area_image(1)).row(area_image(2)).close(2).close(1).close(1).end(4);
  EXPECT_EQ(refusal(to, stream.bytes()), "");
  EXPECT_NE(text_of(to).find("area/0.0.0.2"), std::string::npos);
}
TEST_F(BadStream, Text) {
  const std::string text = "<?xml version=\"1.0\"?>";
  expect_refused(Bytes(text.begin(), text.end()), "text");
}
TEST_F(BadStream, AnotherVersion) {
  StreamMaker stream = to_areas();
  stream.poke(9, 2);
  expect(stream, "offset 0x8: found format version 2, expected version 1");
}
TEST_F(BadStream, AnotherModule) {
  StreamMaker stream = to_areas();
  stream.poke(11, 'X');
  expect(stream, "found the module \"Xspf_harbor_oper\", expected ospf_harbor_oper");
}
TEST_F(BadStream, AnUnknownFrame) {
  StreamMaker stream = to_areas();
  stream.frame('X', {});
  expect(stream, "a frame of the kind 58, expected T (table), R (row), C (close) or E (end)");
}
TEST_F(BadStream, AHugeLengthIsRefusedBeforeItsBytesAreThere) {
  StreamMaker stream = to_areas();
  stream.raw({'R', 0xff, 0xff, 0xff, 0xff});
  expect(stream, "found a length of 4294967295, expected 43 to 16777216");
}
TEST_F(BadStream, ALengthThatNoFrameOfTheKindHas) {
  StreamMaker stream = to_areas();
  stream.frame('C', {0, 0, 0});
  expect(stream, "found a length of 3, expected 4 for a frame of the kind C");
}
TEST_F(BadStream, ANameLongerThanItsFrame) {
  StreamMaker stream;
  stream.frame('T', Bytes(17, 1));
  expect(stream, "found a name of 1 bytes, expected 0, which the frame holds");
}
TEST_F(BadStream, AnUnknownTable) {
  StreamMaker stream;
  stream.frame('T', Bytes(17, 0));
  expect(stream, "found the table identity 00000000000000000000000000000000");
}
TEST_F(BadStream, ATreeThatBeginsWithAnotherTable) {
  StreamMaker stream;
  stream.table("", "tbl_ospf_area");
  expect(stream, "found \"tbl_ospf_area\", expected tbl_ospf_rev1, where a tree begins");
}
TEST_F(BadStream, ARootUnderAReference) {
  StreamMaker stream;
  stream.table("instance", "tbl_ospf_rev1");
  expect(stream, "found \"tbl_ospf_rev1\" under a reference");
}
TEST_F(BadStream, ARowBeforeATable) {
  StreamMaker stream;
  stream.row(area_image(1));
  expect(stream, "found a row, expected the table of the root");
}
TEST_F(BadStream, ACloseBeforeATable) {
  StreamMaker stream;
  stream.close(0);
  expect(stream, "found a close, expected the table of the root");
}
TEST_F(BadStream, AnEndBeforeATable) {
  StreamMaker stream;
  stream.end(0);
  expect(stream, "found the end mark, expected the table of the root");
}
TEST_F(BadStream, ATableBeforeTheRowThatRefersToIt) {
  StreamMaker stream;
  stream.table("", "tbl_ospf_rev1").table("instance", "tbl_ospf_instance_rev1");
  expect(stream, "found a table, expected a row that refers to it");
}
TEST_F(BadStream, AReferenceThatTheRowDoesNotHave) {
  StreamMaker stream = to_areas();
  stream.row(area_image(1)).table("neighbor", "tbl_ospf_neighbor");
  expect(stream,
         "found the reference \"neighbor\", expected interfaces or area_scope_lsas of "
         "tbl_ospf_area");
}
TEST_F(BadStream, AReferenceToATableOfAnotherKind) {
  StreamMaker stream = to_areas();
  stream.row(area_image(1)).table("interfaces", "tbl_ospf_neighbor");
  expect(stream,
         "found \"tbl_ospf_neighbor\" under the reference \"interfaces\", expected "
         "tbl_ospf_interface");
}
TEST_F(BadStream, AReferenceTwice) {
  StreamMaker stream = to_areas();
  stream.row(area_image(1)).table("interfaces", "tbl_ospf_interface").close(0);
  stream.table("interfaces", "tbl_ospf_interface");
  expect(stream, "found the reference \"interfaces\" behind \"interfaces\"");
}
TEST_F(BadStream, ReferencesOutOfOrder) {
  StreamMaker stream = to_areas();
  stream.row(area_image(1)).table("area_scope_lsas", "tbl_area_scope_lsas").close(0);
  stream.table("interfaces", "tbl_ospf_interface");
  expect(stream, "expected each reference once and in field order");
}
TEST_F(BadStream, AReferenceOfALaterVariantThanTheRow) {
  StreamMaker stream = to_areas();
  stream.row(area_image(1, 0)).table("area_scope_lsas", "tbl_area_scope_lsas");
  expect(stream, "found the reference \"area_scope_lsas\" of a row at a variant without it");
}
TEST_F(BadStream, ARowOfAnotherTable) {
  StreamMaker stream = to_areas();
  stream.row(root_image());
  expect(stream, "expected");
}
TEST_F(BadStream, RowsOutOfOrder) {
  StreamMaker stream = to_areas();
  stream.row(area_image(2)).row(area_image(1));
  expect(stream, "found the row area/0.0.0.1 behind area/0.0.0.2, expected the order of the keys");
}
TEST_F(BadStream, AKeyTwice) {
  StreamMaker stream = to_areas();
  stream.row(area_image(1)).row(area_image(1));
  expect(stream, "found a second row area/0.0.0.1, expected each key once in a table");
}
TEST_F(BadStream, ASecondRoot) {
  StreamMaker stream;
  stream.table("", "tbl_ospf_rev1").row(root_image()).row(root_image());
  expect(stream, "found a second row of tbl_ospf_rev1, expected one root");
}
TEST_F(BadStream, ACloseWithAnotherCount) {
  StreamMaker stream = to_areas();
  stream.row(area_image(1)).close(2);
  expect(stream, "found a count of 2, expected 1, as many as rows of tbl_ospf_area came");
}
TEST_F(BadStream, AnEndInsideATable) {
  StreamMaker stream = to_areas();
  stream.end(2);
  expect(stream, "found the end mark, expected a close of tbl_ospf_area");
}
TEST_F(BadStream, AnEndWithAnotherCount) {
  StreamMaker stream = to_areas();
  stream.close(0).close(1).close(1).end(3);
  expect(stream, "found a count of 3, expected 2, as many as rows came");
}
TEST_F(BadStream, AFrameBehindTheTree) {
  StreamMaker stream = to_areas();
  stream.close(0).close(1).close(1).close(0);
  expect(stream, "found a frame behind the tree, expected the end mark");
}
TEST_F(BadStream, BytesBehindTheEnd) {
  StreamMaker stream = to_areas();
  stream.close(0).close(1).close(1).end(2).raw({0});
  expect(stream, "found more bytes behind the end mark, expected none");
}
TEST_F(BadStream, AnImageThatIsCutInItsFrame) {
  StreamMaker stream = to_areas();
  Bytes image = area_image(1);
  image.resize(image.size() - 10);
  stream.row(image);
  expect(stream, "expected");
}
TEST_F(BadStream, MoreBytesThanTheLimit) {
  Session from;
  make_random_tree(from, {.seed = 4});
  const Bytes sent = stream_of(from);
  tree_exchange::TreeReader reader(session_, "sample", 100);
  try {
    reader.feed(sent);
    FAIL();
  } catch (const tree_exchange::StreamError &error) {
    EXPECT_STREQ(error.what(),
                 "sample: offset 0x64: found more than 100 bytes, expected a tree of at most that "
                 "many");
  }
}

// The bytes that the lines of a dump show, and how many lines say what is wrong.
struct Shown {
  Bytes bytes;
  std::size_t findings = 0;
  std::size_t unnamed = 0;  // bytes on lines without a meaning of their own
};

Shown shown(ByteView bytes) {
  Shown result;
  tree_exchange::annotate_stream(bytes, [&](std::string_view line) {
    if (line.starts_with("! ")) {
      ++result.findings;
      return;
    }
    std::istringstream in{std::string(line)};
    std::string offset;
    in >> offset;
    EXPECT_EQ(std::stoul(offset, nullptr, 16), result.bytes.size()) << line;
    std::string columns = std::string(line).substr(offset.size() + 2, 3 * 8);
    std::istringstream pairs(columns);
    for (std::string pair; pairs >> pair;) {
      result.bytes.push_back(static_cast<std::uint8_t>(std::stoul(pair, nullptr, 16)));
    }
    if (line.size() <= offset.size() + 2 + 3 * 8) result.unnamed += 1;
  });
  return result;
}

TEST(AnnotatedStream, ShowsEveryByteOnceAndInOrder) {
  for (std::uint32_t seed = 1; seed <= 4; ++seed) {
    Session session;
    make_random_tree(session, {.seed = seed, .mixed_variants = true});
    const Bytes stream = stream_of(session);
    const Shown result = shown(stream);
    EXPECT_EQ(result.bytes, stream);
    EXPECT_EQ(result.findings, 0u);
  }
}

TEST(AnnotatedStream, ShowsBadBytesWholeWithOneFinding) {
  const Bytes sample = small_sample();
  std::mt19937 random(3);
  for (int round = 0; round < 300; ++round) {
    Bytes changed = sample;
    changed[random() % changed.size()] ^= static_cast<std::uint8_t>(1 + random() % 255);
    if (round % 3 == 0) changed.resize(random() % changed.size());
    const Shown result = shown(changed);
    EXPECT_EQ(result.bytes, changed);
    EXPECT_EQ(result.findings, 1u);
  }
}

TEST(AnnotatedStream, NamesFramesFieldsVariantsAndJumps) {
  StreamMaker stream;
  stream.table("", "tbl_ospf_rev1").row(root_image());
  stream.table("instance", "tbl_ospf_instance_rev1").row(instance_image(1));
  stream.table("area", "tbl_ospf_area").row(area_image(7)).close(1).close(1).close(1).end(3);
  std::string all;
  EXPECT_EQ(tree_exchange::annotate_stream(
                stream.bytes(), [&](std::string_view line) { all += std::string(line) + "\n"; }),
            "");
  for (const char *text :
       {"0000  89 4f 48 54 0d 0a 1a 0a  magic\n", "format version: 1\n", "reference: area\n",
        "table identity: tbl_ospf_area\n", "ospf_area variant: 1\n", "ospf_area.area_id value: 7\n",
        "ospf_area.interfaces OID id: none\n", "ospf_area jump word: ", "rows of the table: 1\n",
        "rows of the tree: 3\n", "checksum\n"}) {
    EXPECT_NE(all.find(text), std::string::npos) << text << all;
  }
}

}  // namespace
