// The messages of the table side: every message of the block of every table is driven, or marked as
// never emitted, and stands at its offset.
#include <gtest/gtest.h>
#include <ospf_harbor_oper.h>

#include <set>

#include "messages/setting.hpp"
#include "messages/table_drivers.hpp"
#include "support/agreed_schema.hpp"

namespace messages {

namespace {

using harbor::model::Table;

std::uint32_t base_of(const Table &table) {
  for (const agreed::Table &agreed : agreed::tables) {
    if (agreed.name == "tbl_" + std::string(table.name)) return agreed.base;
  }
  ADD_FAILURE() << table.name << " has no base";
  return 0;
}

bool is_composite(const Table &table) { return table.key_structure != nullptr; }

// Which offsets stand once for each object of a record.
constexpr std::uint32_t set_field_refused = 53;
constexpr std::uint32_t free_and_set_field_refused = 54;
constexpr std::uint32_t marshal_field_empty = 61;
bool is_of_an_object(std::uint32_t offset) {
  return offset == set_field_refused || offset == free_and_set_field_refused ||
         offset == marshal_field_empty;
}

// A composite key repeats 53 and 54, then 61, and moves what follows.
std::uint32_t place_of(const Table &table, std::uint32_t offset, std::uint32_t object) {
  if (!is_composite(table)) return offset;
  if (offset < set_field_refused) return offset;
  if (offset <= free_and_set_field_refused) return offset + 2 * object;
  if (offset < marshal_field_empty) return offset + 2;
  if (offset == marshal_field_empty) return offset + 2 + object;
  return offset + 3;
}

std::string text_in(const Table &table, std::string_view form, std::uint32_t object) {
  const TableCase names(table);
  std::string text = filled(std::string(form), "<table>", names.name());
  text = filled(text, "<object>", names.object_type(object));
  return filled(text, "<key>",
                is_composite(table)
                    ? std::string(table.key_structure->name) + " "
                    : std::string(table.record->name) + " " + std::string(table.key->name));
}

// The places that emit the message at an offset; none for one that is never emitted.
std::vector<TableDriver> drivers_of(std::uint32_t offset) {
  std::vector<TableDriver> found;
  for (const auto drivers : {table_drivers(), record_drivers()}) {
    for (const OffsetDriver &driver : drivers) {
      if (driver.offset == offset) found.push_back(driver.drive);
    }
  }
  return found;
}

class TableMessages : public testing::TestWithParam<BlockMessage> {};

TEST_P(TableMessages, GoesOutForEveryTableAtItsOffset) {
  const BlockMessage &stated = GetParam();
  const auto drivers = drivers_of(stated.offset);
  EXPECT_EQ(drivers.empty(), stated.level == none);
  DrivenForm form(Side::tables, stated.text, stated.level);
  std::uint32_t rows = 0;
  for (const Table *table : harbor::model::all_tables) {
    const std::uint32_t objects = is_composite(*table) && is_of_an_object(stated.offset) ? 2 : 1;
    for (std::uint32_t object = 0; object < objects; ++object) {
      ++rows;
      const std::uint32_t index = base_of(*table) + place_of(*table, stated.offset, object);
      const std::string text = text_in(*table, stated.text, object);
      EXPECT_EQ(stored_text(Side::tables, index), text) << index;
      for (const TableDriver driver : drivers) {
        for (const char *twin : {"", "_unsafe"}) {
          form.drive_at(index, number(index), text,
                        [&] { driver(TableCase(*table, twin), object); });
        }
      }
    }
  }
  EXPECT_EQ(form.indices().size(), stated.level == none ? 0 : rows);
}

INSTANTIATE_TEST_SUITE_P(Offsets, TableMessages,
                         testing::ValuesIn(stated_block().begin(), stated_block().end()),
                         [](const testing::TestParamInfo<BlockMessage> &message) {
                           return std::to_string(message.param.offset);
                         });

// Every index is that of one message of one block, or of one of the two behind the blocks.
TEST(TableMessages, TheBlocksFillTheStore) {
  std::set<std::uint32_t> indices{vft_initializing.offset, vft_error_present.offset};
  std::size_t rows = 2;
  for (const Table *table : harbor::model::all_tables) {
    for (const BlockMessage &message : stated_block()) {
      const std::uint32_t objects = is_composite(*table) && is_of_an_object(message.offset) ? 2 : 1;
      for (std::uint32_t object = 0; object < objects; ++object) {
        indices.insert(base_of(*table) + place_of(*table, message.offset, object));
        ++rows;
      }
    }
  }
  EXPECT_EQ(stored_count(Side::tables), rows);
  EXPECT_EQ(indices.size(), rows);
  EXPECT_EQ(*indices.rbegin(), rows - 1);
}

TEST(TableMessages, EachFormHasItsRows) {
  std::uint32_t all = 0;
  for (const StatedForm &form : stated_table_forms()) {
    const FormPattern pattern(form.text);
    std::uint32_t rows = 0;
    for (std::uint32_t index = 0; index < stored_count(Side::tables); ++index) {
      if (pattern.matches(stored_text(Side::tables, index))) ++rows;
    }
    EXPECT_EQ(rows, form.rows) << form.text;
    all += rows;
  }
  EXPECT_EQ(all, stored_count(Side::tables));
}

void vft_initialized() {
  arguments_are({"ospf_harbor_oper"});
  EXPECT_EQ(ospf_harbor_oper_table_vft_init(), 0u);
  EXPECT_EQ(ospf_harbor_oper_table_vft_init(), 0u);
}

void vft_asked_for() {
  const kelp_table_vft *vft = nullptr;
  std::uint32_t err = 0;
  arguments_are({"ospf_harbor_oper"});
  ospf_harbor_oper_table_get_vft(fresh(), space, table_tbl_ospf_area_luid, &vft, &err);
  EXPECT_NE(vft, nullptr);
}

void vft_asked_for_with_an_error() {
  const kelp_table_vft *vft = nullptr;
  std::uint32_t err = failure;
  ospf_harbor_oper_table_get_vft(fresh(), space, table_tbl_ospf_area_luid, &vft, &err);
  EXPECT_EQ(vft, nullptr);
}

TEST(TableMessages, TheCopyOfTheFunctionTablesIsToldOnce) {
  DrivenForm form(Side::tables, vft_initializing.text, vft_initializing.level);
  for (const auto &start : {vft_initialized, vft_asked_for}) {
    form.drive_at(vft_initializing.offset, "vft", std::string(vft_initializing.text), start);
  }
  EXPECT_EQ(form.indices().size(), 1u);
}

TEST(TableMessages, AnErrorThatStandsWhenAFunctionTableIsAskedForIsTold) {
  DrivenForm form(Side::tables, vft_error_present.text, vft_error_present.level);
  form.drive_at(vft_error_present.offset, "error", std::string(vft_error_present.text),
                vft_asked_for_with_an_error);
  EXPECT_EQ(form.indices().size(), 1u);
}

}  // namespace

}  // namespace messages
