// Cursors on tables and counts by tenant.
#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;
using kelp_test::Type;

class TableStateTest : public DatabaseTest {
 protected:
  TableStateTest() : table(make<kelp_table>(&type.record)) {}
  ~TableStateTest() override {
    if (table != nullptr) release(table);
  }
  std::uint32_t count(std::uint16_t tenant, const std::uint8_t *src = nullptr) {
    std::uint32_t found = 12345;
    kelpdb_get_tenant_counter(handle, 0, table, &found, tenant, src);
    return found;
  }
  void move(std::uint32_t direction, std::uint16_t tenant, std::uint8_t src) {
    kelpdb_update_tenant_counter(handle, 0, table, direction, tenant, src, &err);
  }

  Type type{"tbl_thing", "table", 1};
  kelp_table *table;
};

TEST_F(TableStateTest, CursorsAreOffUntilEnabled) {
  EXPECT_EQ(kelpdb_table_are_cursors_enabled(handle, 0, table, &err), 0u);
  EXPECT_EQ(kelpdb_table_implicit_write_cursor_enabled(handle, 0, table, &err), 0u);
  ASSERT_EQ(kelp_table_enable_cursors(handle, table, 0, nullptr), 0);
  EXPECT_NE(kelpdb_table_are_cursors_enabled(handle, 0, table, &err), 0u);
  EXPECT_EQ(kelpdb_table_implicit_write_cursor_enabled(handle, 0, table, &err), 0u);
  ASSERT_EQ(kelp_table_enable_cursors(handle, table, 1, nullptr), 0);
  EXPECT_NE(kelpdb_table_implicit_write_cursor_enabled(handle, 0, table, &err), 0u);
  EXPECT_EQ(err, 0u);
}

TEST_F(TableStateTest, EnablingAnnouncesTheTablesWord) {
  watch_writes();
  ASSERT_EQ(kelp_table_enable_cursors(handle, table, 0, nullptr), 0);
  ASSERT_EQ(writes.size(), 1u);
  EXPECT_EQ(writes[0].address, &table->runtime_state);
}

TEST_F(TableStateTest, NullTablesAreRefused) {
  kelp_error error;
  EXPECT_EQ(kelp_table_enable_cursors(handle, nullptr, 0, &error), 22);
  EXPECT_STREQ(error.text, "kelp_table_enable_cursors: the table is null");
  EXPECT_EQ(kelpdb_table_are_cursors_enabled(handle, 0, nullptr, &err), 0u);
  EXPECT_EQ(err, 22u);
}

TEST_F(TableStateTest, CountsAreKeptByTenantAndSource) {
  move(1, 5, 1);
  move(1, 5, 1);
  move(1, 5, 255);
  move(1, 6, 0);
  const std::uint8_t one = 1;
  const std::uint8_t shadow = 255;
  const std::uint8_t none = 0;
  EXPECT_EQ(count(5), 3u);
  EXPECT_EQ(count(5, &one), 2u);
  EXPECT_EQ(count(5, &shadow), 1u);
  EXPECT_EQ(count(5, &none), 0u);
  EXPECT_EQ(count(6, &none), 1u);
  EXPECT_EQ(count(4), 0u);
  move(0, 5, 1);
  EXPECT_EQ(count(5, &one), 1u);
  EXPECT_EQ(err, 0u);
}

TEST_F(TableStateTest, CountAtZeroStaysThere) {
  move(0, 5, 1);
  EXPECT_EQ(count(5), 0u);
  move(1, 5, 1);
  move(0, 5, 1);
  move(0, 5, 1);
  EXPECT_EQ(count(5), 0u);
  EXPECT_EQ(err, 0u);
}

TEST_F(TableStateTest, CountOfANullTableIsZero) {
  std::uint32_t found = 9;
  kelpdb_get_tenant_counter(handle, 0, nullptr, &found, 1, nullptr);
  EXPECT_EQ(found, 0u);
  kelpdb_update_tenant_counter(handle, 0, nullptr, 1, 1, 1, &err);
  EXPECT_EQ(err, 22u);
}

TEST_F(TableStateTest, FreedTableTakesItsStateAlong) {
  move(1, 5, 1);
  release(table);
  table = make<kelp_table>(&type.record);
  EXPECT_EQ(count(5), 0u);
}

TEST(VftTest, CopiesWholeRecords) {
  kelp_table_vft source[2];
  kelp_table_vft target[3];
  std::memset(source, 0x5a, sizeof source);
  std::memset(target, 0xa5, sizeof target);
  EXPECT_EQ(sizeof source[0], 8u * KELP_VFT_WORDS);
  EXPECT_EQ(table_vft_cpy(target, source, 2), 0u);
  EXPECT_EQ(std::memcmp(target, source, sizeof source), 0);
  unsigned char untouched[sizeof target[2]];
  std::memset(untouched, 0xa5, sizeof untouched);
  EXPECT_EQ(std::memcmp(&target[2], untouched, sizeof untouched), 0);
  EXPECT_EQ(table_vft_cpy(nullptr, source, 1), 22u);
  EXPECT_EQ(table_vft_cpy(target, nullptr, 1), 22u);
  EXPECT_EQ(table_vft_cpy(nullptr, nullptr, 0), 0u);
}

}  // namespace
