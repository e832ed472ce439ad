// The stored messages of the built library against what people agreed on: forms with their rows on
// both sides, and the layout of each table's block. Read back and stated without the catalogue that
// the library is built from.
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <set>

#include "support/agreed_schema.hpp"
#include "support/built_library.hpp"
#include "support/stated_forms.hpp"

namespace {

using library_sections::Message;
using library_sections::MessageTable;

using messages::StatedForm;

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
std::map<std::string_view, std::size_t> rows_of(const MessageTable &table,
                                                std::span<const StatedForm> forms) {
  std::map<std::string_view, std::size_t> rows;
  for (std::size_t i = 0; i < table.messages.size(); ++i) {
    std::size_t found = 0;
    for (const StatedForm &form : forms) {
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
  const auto rows = rows_of(side(0), messages::stated_type_forms());
  std::size_t sum = 0;
  for (const StatedForm &form : messages::stated_type_forms()) {
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
  ASSERT_EQ(references.size(), agreed::references.size());
  for (const StatedForm &form : messages::stated_type_forms()) {
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
    if (rows == references.size() || rows == structures.size() || rows == light.size()) {
      EXPECT_EQ(names.size(), rows) << form.text;
    }
    if (rows == light.size()) {
      for (const auto &one : names) EXPECT_TRUE(light.contains(one.front())) << one.front();
    }
  }
}

TEST(StoredMessagesTest, TableSideHasTheRowsOfItsForms) {
  const auto rows = rows_of(side(1), messages::stated_table_forms());
  std::size_t sum = 0;
  for (const StatedForm &form : messages::stated_table_forms()) {
    EXPECT_EQ(rows.contains(form.text) ? rows.at(form.text) : 0, form.rows) << form.text;
    sum += form.rows;
  }
  EXPECT_EQ(sum, side(1).messages.size());
}

TEST(StoredMessagesTest, EachTableHasItsBlock) {
  const auto block = messages::stated_block();
  std::size_t index = 0;
  for (const agreed::Table &table : agreed::tables) {
    ASSERT_EQ(index, table.base) << table.name;
    const auto expect = [&](std::string_view form, std::string_view object) {
      std::string text = replaced(form, "<table>", table.name);
      text = replaced(text, "<key>",
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
        expect(block[54].text, table.record_type);
        expect(block[53].text, table.record_type);
      }
      if (offset == 61 && table.composite) expect(block[61].text, table.key);
      expect(block[offset].text, table.record_type);
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

std::string conversions_of(std::string_view text) {
  std::string conversions;
  for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
    conversions += (conversions.empty() ? "" : " ") + std::string(text.substr(at, 2));
  }
  return conversions;
}

// By the conversions in each text, and in all as often as the forms have rows with them.
TEST(StoredMessagesTest, SignaturesFollowTheConversions) {
  const std::map<std::string, std::uint32_t> signatures{{"%s", 0},       {"", 1},      {"%u %u", 2},
                                                        {"%d %d %d", 3}, {"%p %s", 4}, {"%s %s", 5},
                                                        {"%d", 6},       {"%s %u", 7}};
  std::map<std::string, std::size_t> counts;
  for (const MessageTable &table : built::library().messages.tables) {
    for (const Message &message : table.messages) {
      const std::string conversions = conversions_of(message.text);
      ASSERT_TRUE(signatures.contains(conversions)) << message.text;
      EXPECT_EQ(message.signature(), signatures.at(conversions)) << message.text;
      ++counts[conversions];
    }
  }
  std::map<std::string, std::size_t> stated;
  for (const auto &forms : {messages::stated_type_forms(), messages::stated_table_forms()}) {
    for (const StatedForm &form : forms) stated[conversions_of(form.text)] += form.rows;
  }
  EXPECT_EQ(counts, stated);
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
