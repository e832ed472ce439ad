// The stored messages of the built library against what people agreed on: forms with their rows on
// both sides, and the layout of each table's block. Read back and stated without the catalogue that
// the library is built from.
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <set>

#include "agreed_schema.hpp"
#include "support/built_library.hpp"

namespace {

using library_sections::Message;
using library_sections::MessageTable;

struct Form {
  std::string_view text;  // <...> stands for a name
  std::size_t rows;
};

constexpr std::array<Form, 36> type_forms{{
    {"Corrupted KELP Handle", 1339},
    {"The object is not state tracked", 714},
    {"The object is non state tracked", 261},
    {"varinfo is NULL", 122},
    {"variant %u requested only %u variants present", 122},
    {"<type> destroy: Failed to remove oid mapping for object. Error %s", 104},
    {"<type> destroy: Failed to get oid references from object. Error %s", 67},
    {"<type> destroy: Failed to decrement ref count of oid %p. Error %s", 67},
    {"Error already present in call to get object oid count", 61},
    {"Invalid object passed in to get object oid count", 61},
    {"Error present in call to get table references from object", 61},
    {"Cannot get table references. Invalid object passed on", 61},
    {"tinfo is null or corrupted", 61},
    {"offset_jump read_len %d offset_jump_base %d _kelp_variant_jump %d", 56},
    {"error in <type> create: %s", 52},
    {"sttr_base can not be NULL in NESTED case. Please check the parent object and provide the "
     "correct state tracking base pointer",
     52},
    {"Invalid object pointer passed in to set instance flag", 52},
    {"<type> destroy: Object has references and will be cleaned up when all of them are released",
     52},
    {"<type> destroy: Successfully removed OID mapping", 52},
    {"KELP handle and object state tracking mis-match", 52},
    {"Failed to obtain resolve existing oid reference from object", 34},
    {"<type> destroy: Failed to release oid reference for <field> oid. Error %s", 34},
    {"<type> <field> set by ref: Failed to resolve existing oid id. Error %s", 34},
    {"<type> <field> set by ref: Could not get oid id mapping for object %s/%s", 34},
    {"<type> <field> set by ref: Failed to decrement ref count on earlier reference. Error %s", 34},
    {"<type> <field> set by ref: Cannot set reference to this object", 34},
    {"<type> <field> set by ref: Failed to obtain existing oid mapping of object. Error %s", 34},
    {"<type> <field> set by ref: Failed to update ref count on earlier reference. Error %s", 34},
    {"<type> <field> set by ref: Could not get oid mapping entry using oid id", 34},
    {"<type> <field> set by ref: Handle to oid failed with error code %s", 34},
    {"kelp_stats_inc failed %s", 18},
    {"error in <type> create %s", 9},
    {"Invalid object handle passed to set embedded flag", 9},
    {"Reallocating resource for <type>", 8},
    {"The val object is not state tracked", 1},
    {"type variant cached info is NULL during usage dump", 1},
}};

constexpr std::array<Form, 48> table_forms{{
    {"lumen internal error", 168},
    {"varinfo is NULL", 84},
    {"variant %u requested only %u variants present", 84},
    {"kelp_stats_inc failed %s", 84},
    {"kelp database toc find returned error: %s", 42},
    {"tbl_<t> table free: Failed to delete table entry from TOC. Error: %s", 42},
    {"Error present in call to table marshal: %s", 42},
    {"Object is either nested or already embedded. Cannot set such objects into the record", 26},
    {"Object is either nested or already embedded in a record. Cannot set such objects into the "
     "record",
     26},
    {"Failed to marshal <t> record: Field <k> is empty", 26},
    {"tbl_<t> insert record exists for <t> <k>", 21},
    {"tbl_<t> delete, record not found for <t> <k>", 21},
    {"tbl_<t>_delete() cannot be direclty used when the table is marked for replication", 21},
    {"default ospf_harbor_oper_tbl_<t>_record create handler called", 21},
    {"default ospf_harbor_oper_tbl_<t>_record modify handler called", 21},
    {"default ospf_harbor_oper_tbl_<t>_record delete handler called", 21},
    {"default ospf_harbor_oper_tbl_<t>_record create DM handler called", 21},
    {"default ospf_harbor_oper_tbl_<t>_record delete DM handler called", 21},
    {"default ospf_harbor_oper_tbl_<t>_record grouping handler called", 21},
    {"default ospf_harbor_oper_tbl_<t>_record free handler called", 21},
    {"unknow key:%d", 21},
    {"Opening table in create mode while not holding a write lock", 21},
    {"Failed to open TOC. Error %s", 21},
    {"Failed to open toc root for database %s", 21},
    {"Could not find TOC root in DB %s. Lock type: RD_LOCK, Open type: %u", 21},
    {"Setting tbi root failed\\n", 21},
    {"reader cannot allocate table ID root\\n", 21},
    {"Failed to create mapping for <t> table", 21},
    {"Failed to insert %s table <t> into the TOC", 21},
    {"Failed to get toc root while freeing tablle. Error %s", 21},
    {"Failed to get TOC root while freeing table. Error %s", 21},
    {"Failed to perform toc delete for table <t>. Error %s", 21},
    {"Failed to destroy <t> table, Error %s", 21},
    {"tbl_<t> table free: Failed to force delete table entry from TOC. Error: %s", 21},
    {"tbl_<t> table free: Failed to request oid mapping destroy for table. Error %s", 21},
    {"tbl_<t> table free: Successfully removed OID mapping for <t>", 21},
    {"APPLICATION ERROR! Table <t> in SHARED DB should be freed by requesting table free by the "
     "GC. Please free the table via toc delete or mark the DB as non-shared",
     21},
    {"APPLICATION ERROR! KELp_REQUEST_TABLE_FREE should only be used for SHARED databases", 21},
    {"tbl_<t> request destroy record failed", 21},
    {"Error %d deleting <t> record when destroying", 21},
    {"tinfo is null or corrupted", 21},
    {"<t> destroy: Failed to remove oid mapping for object. Error %s", 21},
    {"tbl_<t> delete: record count already 0!", 21},
    {"invalid record get flag %d", 21},
    {"Error present in call to %s unmarshal: %s", 21},
    {"Error present in call to %s pkey unmarshal: %s", 21},
    {"Initializing table vft for %s", 1},
    {"Error already set when requesting ospf_harbor_oper table vft", 1},
}};

// One table's block, by offset. A table with composite keys repeats 53 and 54, and has 61 once for
// the key's type and once for the record's.
constexpr std::array<std::string_view, 65> block{{
    "unknow key:%d",
    "Opening table in create mode while not holding a write lock",
    "Failed to open TOC. Error %s",
    "Failed to open toc root for database %s",
    "Could not find TOC root in DB %s. Lock type: RD_LOCK, Open type: %u",
    "kelp database toc find returned error: %s",
    "reader cannot allocate table ID root\\n",
    "Setting tbi root failed\\n",
    "kelp database toc find returned error: %s",
    "lumen internal error",
    "lumen internal error",
    "lumen internal error",
    "lumen internal error",
    "lumen internal error",
    "Failed to create mapping for <table> table",
    "Failed to insert %s table <table> into the TOC",
    "varinfo is NULL",
    "variant %u requested only %u variants present",
    "kelp_stats_inc failed %s",
    "Failed to get toc root while freeing tablle. Error %s",
    "<table> table free: Failed to force delete table entry from TOC. Error: %s",
    "APPLICATION ERROR! Table <table> in SHARED DB should be freed by requesting table free by the "
    "GC. Please free the table via toc delete or mark the DB as non-shared",
    "<table> table free: Failed to delete table entry from TOC. Error: %s",
    "<table> table free: Failed to delete table entry from TOC. Error: %s",
    "<table> table free: Failed to request oid mapping destroy for table. Error %s",
    "<table> table free: Successfully removed OID mapping for <table>",
    "lumen internal error",
    "lumen internal error",
    "lumen internal error",
    "varinfo is NULL",
    "variant %u requested only %u variants present",
    "kelp_stats_inc failed %s",
    "APPLICATION ERROR! KELp_REQUEST_TABLE_FREE should only be used for SHARED databases",
    "Failed to get TOC root while freeing table. Error %s",
    "Failed to perform toc delete for table <table>. Error %s",
    "Failed to destroy <table> table, Error %s",
    "default ospf_harbor_oper_<table>_record create handler called",
    "default ospf_harbor_oper_<table>_record modify handler called",
    "default ospf_harbor_oper_<table>_record delete handler called",
    "default ospf_harbor_oper_<table>_record create DM handler called",
    "default ospf_harbor_oper_<table>_record delete DM handler called",
    "default ospf_harbor_oper_<table>_record grouping handler called",
    "default ospf_harbor_oper_<table>_record free handler called",
    "varinfo is NULL",
    "variant %u requested only %u variants present",
    "kelp_stats_inc failed %s",
    "<table> request destroy record failed",
    "Error %d deleting <table> record when destroying",
    "varinfo is NULL",
    "variant %u requested only %u variants present",
    "kelp_stats_inc failed %s",
    "tinfo is null or corrupted",
    "<table> destroy: Failed to remove oid mapping for object. Error %s",
    "Object is either nested or already embedded. Cannot set such objects into the record",
    "Object is either nested or already embedded in a record. Cannot set such objects into the "
    "record",
    "<table> insert record exists for <object> <key>",
    "<table>_delete() cannot be direclty used when the table is marked for replication",
    "<table> delete, record not found for <object> <key>",
    "<table> delete: record count already 0!",
    "invalid record get flag %d",
    "Error present in call to table marshal: %s",
    "Failed to marshal <table> record: Field <object> is empty",
    "Error present in call to table marshal: %s",
    "Error present in call to %s unmarshal: %s",
    "Error present in call to %s pkey unmarshal: %s",
}};

// What the names of a form stand for in a text; nothing when the text is not of the form. A name
// may be empty: the key field of a composite key is.
std::optional<std::vector<std::string>> match(std::string_view form, std::string_view text) {
  constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789_";
  const std::size_t begin = form.find('<');
  if (begin == std::string_view::npos) {
    return form == text ? std::optional<std::vector<std::string>>(std::in_place) : std::nullopt;
  }
  if (text.substr(0, begin) != form.substr(0, begin)) return std::nullopt;
  form.remove_prefix(form.find('>') + 1);
  text.remove_prefix(begin);
  const std::size_t most = std::min(text.find_first_not_of(letters), text.size());
  for (std::size_t length = most + 1; length-- > 0;) {
    std::optional<std::vector<std::string>> rest = match(form, text.substr(length));
    if (!rest) continue;
    rest->insert(rest->begin(), std::string(text.substr(0, length)));
    return rest;
  }
  return std::nullopt;
}

const MessageTable &side(std::size_t source) { return built::library().messages.tables.at(source); }

std::string replaced(std::string_view form, std::string_view name, std::string_view value) {
  std::string text(form);
  for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at)) {
    text.replace(at, name.size(), value);
  }
  return text;
}

// Counts the texts of each form, and says so when a text has no form or more than one.
template <std::size_t count>
std::map<std::string_view, std::size_t> rows_of(const MessageTable &table,
                                                const std::array<Form, count> &forms) {
  std::map<std::string_view, std::size_t> rows;
  for (std::size_t i = 0; i < table.messages.size(); ++i) {
    std::size_t found = 0;
    for (const Form &form : forms) {
      if (form.text.empty() || !match(form.text, table.messages[i].text)) continue;
      ++rows[form.text];
      ++found;
    }
    EXPECT_EQ(found, 1u) << i << " " << table.messages[i].text;
  }
  return rows;
}

TEST(StoredMessagesTest, SectionsAreLoadedOrNotAsAgreed) {
  std::size_t tables = 0;
  for (const library_sections::Section &section : built::library().file.sections()) {
    if (section.name.starts_with(".xlog_luids_")) {
      ++tables;
      EXPECT_TRUE(section.loaded()) << section.name;
    }
  }
  EXPECT_EQ(tables, 2u);
  for (const char *name : {".xlog_format_strings", ".xlog_decoder", ".halyard"}) {
    EXPECT_FALSE(built::library().file.require(name).loaded()) << name;
  }
  EXPECT_EQ(built::library().file.require(".xlog_decoder").size, 27u);
}

TEST(StoredMessagesTest, TypeSideHasTheRowsOfItsForms) {
  const auto rows = rows_of(side(0), type_forms);
  std::size_t sum = 0;
  for (const Form &form : type_forms) {
    EXPECT_EQ(rows.contains(form.text) ? rows.at(form.text) : 0, form.rows) << form.text;
    sum += form.rows;
  }
  EXPECT_EQ(sum, side(0).messages.size());
}

TEST(StoredMessagesTest, TypeSideBeginsAndEndsAsAgreed) {
  EXPECT_EQ(side(0).messages.front().text, "error in address_family create %s");
  EXPECT_EQ(side(0).messages.back().text, "type variant cached info is NULL during usage dump");
}

TEST(StoredMessagesTest, NamesInTypeTextsAreTypesAndTheirReferences) {
  std::set<std::string_view> structures, light;
  for (const agreed::Type &type : agreed::types) {
    (type.kind == "type" ? structures : light).insert(type.name);
  }
  std::set<std::pair<std::string, std::string>> references;
  for (const agreed::Reference &reference : agreed::references) {
    references.emplace(reference.type, reference.field);
  }
  ASSERT_EQ(references.size(), 34u);
  for (const Form &form : type_forms) {
    std::set<std::vector<std::string>> names;
    std::size_t rows = 0;
    for (const Message &message : side(0).messages) {
      const auto found = match(form.text, message.text);
      if (!found || found->empty()) continue;
      names.insert(*found);
      ++rows;
      const std::string &type = found->front();
      EXPECT_TRUE(structures.contains(type) || light.contains(type)) << message.text;
      if (found->size() == 2) {
        EXPECT_TRUE(references.contains({found->at(0), found->at(1)})) << message.text;
      }
    }
    if (rows == 34) {
      EXPECT_EQ(names.size(), 34u) << form.text;
    }
    if (rows == 52) {
      EXPECT_EQ(names.size(), 52u) << form.text;
    }
    if (rows == 9) {
      for (const auto &one : names) {
        EXPECT_TRUE(light.contains(one.front())) << one.front();
      }
      EXPECT_EQ(names.size(), 9u);
    }
  }
}

TEST(StoredMessagesTest, TableSideHasTheRowsOfItsForms) {
  const auto rows = rows_of(side(1), table_forms);
  std::size_t sum = 0;
  for (const Form &form : table_forms) {
    EXPECT_EQ(rows.contains(form.text) ? rows.at(form.text) : 0, form.rows) << form.text;
    sum += form.rows;
  }
  EXPECT_EQ(sum, side(1).messages.size());
}

TEST(StoredMessagesTest, EachTableHasItsBlock) {
  std::size_t index = 0;
  for (const agreed::Table &table : agreed::tables) {
    ASSERT_EQ(index, table.base) << table.name;
    const auto expect = [&](std::string_view form, std::string_view object) {
      std::string text = replaced(form, "<table>", table.name);
      text = replaced(text, "<object> <key>",
                      table.composite ? std::string(table.key) + " "
                                      : std::string(object) + " " + std::string(table.key));
      text = replaced(text, "<object>", object);
      ASSERT_LT(index, side(1).messages.size());
      EXPECT_EQ(side(1).messages[index].text, text) << index;
      ++index;
    };
    for (std::size_t offset = 0; offset < block.size(); ++offset) {
      // The key field first, the data field second.
      if (offset == 54 && table.composite) {
        expect(block[54], table.record_type);
        expect(block[53], table.record_type);
      }
      if (offset == 61 && table.composite) expect(block[61], table.key);
      expect(block[offset], table.record_type);
    }
  }
  ASSERT_EQ(index + 2, side(1).messages.size());
  EXPECT_EQ(side(1).messages[index].text, "Initializing table vft for %s");
  EXPECT_EQ(side(1).messages[index + 1].text,
            "Error already set when requesting ospf_harbor_oper table vft");
}

// The shifts of a table with composite keys, as call sites of such a table count them.
TEST(StoredMessagesTest, CompositeKeysShiftTheOffsets) {
  const auto at = [](std::size_t base, std::size_t offset) {
    return side(1).messages.at(base + offset).text;
  };
  EXPECT_EQ(at(260, 57), "tbl_ospfv2_link insert record exists for ospfv2_link_key ");
  EXPECT_EQ(at(260, 58),
            "tbl_ospfv2_link_delete() cannot be direclty used when the table is marked for "
            "replication");
  EXPECT_EQ(at(260, 63),
            "Failed to marshal tbl_ospfv2_link record: Field ospfv2_link_key is empty");
  EXPECT_EQ(at(260, 64), "Failed to marshal tbl_ospfv2_link record: Field ospfv2_link is empty");
  EXPECT_EQ(at(260, 65), "Error present in call to table marshal: %s");
  EXPECT_EQ(at(260, 67), "Error present in call to %s pkey unmarshal: %s");
  EXPECT_EQ(at(1052, 55), "tbl_ospf_area insert record exists for ospf_area area_id");
  EXPECT_EQ(at(1052, 21),
            "APPLICATION ERROR! Table tbl_ospf_area in SHARED DB should be freed by requesting "
            "table free by the GC. Please free the table via toc delete or mark the DB as "
            "non-shared");
}

// By the conversions in each text, and in all as often as agreed.
TEST(StoredMessagesTest, SignaturesFollowTheConversions) {
  const std::map<std::string, std::pair<std::uint32_t, std::size_t>> agreed{
      {"%s", {0, 875}},   {"", {1, 3873}},    {"%u %u", {2, 206}}, {"%d %d %d", {3, 56}},
      {"%p %s", {4, 67}}, {"%s %s", {5, 76}}, {"%d", {6, 63}},     {"%s %u", {7, 21}}};
  std::map<std::uint32_t, std::size_t> counts;
  for (const MessageTable &table : built::library().messages.tables) {
    for (const Message &message : table.messages) {
      std::string conversions;
      for (std::size_t at = message.text.find('%'); at != std::string::npos;
           at = message.text.find('%', at + 1)) {
        conversions += (conversions.empty() ? "" : " ") + message.text.substr(at, 2);
      }
      ASSERT_TRUE(agreed.contains(conversions)) << message.text;
      EXPECT_EQ(message.signature(), agreed.at(conversions).first) << message.text;
      ++counts[message.signature()];
    }
  }
  for (const auto &[conversions, expected] : agreed) {
    EXPECT_EQ(counts[expected.first], expected.second) << conversions;
  }
}

TEST(StoredMessagesTest, LowBitsDifferFromMessageToMessage) {
  std::set<std::uint32_t> seen;
  std::size_t messages = 0;
  for (const MessageTable &table : built::library().messages.tables) {
    for (const Message &message : table.messages) {
      seen.insert(message.attributes & 0xffff);
      ++messages;
    }
  }
  EXPECT_EQ(seen.size(), messages);
}

// What the forms and the names make of it, counted without the lengths in the entries.
TEST(StoredMessagesTest, LengthsAddUpToTheTexts) {
  std::size_t bytes = 0;
  for (const MessageTable &table : built::library().messages.tables) {
    for (const Message &message : table.messages) bytes += 1 + message.text.size();
  }
  EXPECT_EQ(built::library().messages.text_bytes, bytes);
  EXPECT_EQ(bytes, 229430u);
}

}  // namespace
