// The table of contents.
#include <functional>
#include <utility>

#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;
using kelp_test::Type;

class TocTest : public DatabaseTest {
 protected:
  kelp_table *make_table(const char *name) {
    auto *table = make<kelp_table>(&type.record);
    std::snprintf(table->tbl_name, sizeof table->tbl_name, "%s", name);
    return table;
  }
  kelp_table *make_table(std::uint64_t id) {
    auto *table = make<kelp_table>(&type.record);
    table->table_id = id;
    table->open_type = KELP_OPEN_BY_ID;
    return table;
  }
  kelp_table *find(const char *path) {
    return kelpdb_database_toc_get_table_root(handle, 0, path,
                                              static_cast<std::uint32_t>(std::strlen(path)), 0,
                                              type.record.md5, 16, 1, &err);
  }
  kelp_table *find(std::uint64_t id) {
    return kelpdb_database_toc_get_table_root(handle, 0, nullptr, 0, id, type.record.md5, 16, 0,
                                              &err);
  }
  void insert(kelp_table *table) { kelpdb_database_toc_insert(handle, 0, table, 0, &err); }
  void remove(kelp_table *table) { kelpdb_database_toc_delete(handle, 0, table, &err); }
  void mark_shared() {
    kelp_database_options options;
    kelp_database_options_init(&options);
    options.marked_shared = 1;
    reopen(options);
  }

  Type type{"tbl_thing", "table", 1};
};

TEST_F(TocTest, TablesAreFoundByNameOrId) {
  kelp_table *named = make_table("some/path");
  kelp_table *numbered = make_table(std::uint64_t{12});
  insert(named);
  insert(numbered);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(find("some/path"), named);
  EXPECT_EQ(find("some/pat"), nullptr);
  EXPECT_EQ(find(std::uint64_t{12}), numbered);
  EXPECT_EQ(find(std::uint64_t{0}), nullptr);
  EXPECT_EQ(err, 0u);
  release(named);
  release(numbered);
}

TEST_F(TocTest, TypesHaveNamesOfTheirOwn) {
  kelp_table *table = make_table("path");
  insert(table);
  const Type other("tbl_other", "table", 1, 99);
  EXPECT_EQ(
      kelpdb_database_toc_get_table_root(handle, 0, "path", 4, 0, other.record.md5, 16, 1, &err),
      nullptr);
  EXPECT_EQ(err, 0u);
  release(table);
}

TEST_F(TocTest, TakenNameIsRefused) {
  kelp_table *first = make_table("path");
  kelp_table *second = make_table("path");
  insert(first);
  insert(second);
  EXPECT_EQ(err, 17u);
  err = 0;
  insert(first);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(find("path"), first);
  release(first);
  release(second);
}

TEST_F(TocTest, TableEnteredUnderAnotherNameLosesTheFirst) {
  kelp_table *table = make_table("first");
  insert(table);
  std::snprintf(table->tbl_name, sizeof table->tbl_name, "other");
  insert(table);
  EXPECT_EQ(find("first"), nullptr);
  EXPECT_EQ(find("other"), table);
  std::snprintf(table->tbl_name, sizeof table->tbl_name, "first");
  insert(table);
  EXPECT_EQ(find("first"), table);
  EXPECT_EQ(find("other"), nullptr);
  EXPECT_EQ(err, 0u);
  release(table);
  EXPECT_EQ(find("first"), nullptr);
}

TEST_F(TocTest, BadArgumentsAreRefused) {
  insert(nullptr);
  EXPECT_EQ(err, 22u);
  err = 0;
  auto *untyped = make<kelp_table>();
  insert(untyped);
  EXPECT_EQ(err, 22u);
  err = 0;
  EXPECT_EQ(kelpdb_database_toc_get_table_root(handle, 0, "p", 1, 0, type.record.md5, 15, 1, &err),
            nullptr);
  EXPECT_EQ(err, 22u);
  release(untyped);
}

TEST_F(TocTest, DeletedTableIsNotFoundAndItsNameIsFree) {
  kelp_table *first = make_table("path");
  kelp_table *second = make_table("path");
  insert(first);
  remove(first);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(find("path"), nullptr);
  insert(second);
  EXPECT_EQ(find("path"), second);
  EXPECT_EQ(err, 0u);
  release(first);
  EXPECT_EQ(find("path"), second);
  release(second);
  EXPECT_EQ(find("path"), nullptr);
}

TEST_F(TocTest, DeleteOfATableThatWasNeverInIsNotFound) {
  kelp_table *table = make_table("path");
  remove(table);
  EXPECT_EQ(err, 2u);
  err = 0;
  kelpdb_database_toc_force_delete(handle, 0, table, &err);
  EXPECT_EQ(err, 0u);
  release(table);
}

TEST_F(TocTest, DeleteMayBeRepeatedUntilTheTableIsFreed) {
  kelp_table *table = make_table("path");
  insert(table);
  remove(table);
  remove(table);
  EXPECT_EQ(err, 0u);
  release(table);
  auto *fresh = make_table("path");
  remove(fresh);
  EXPECT_EQ(err, 2u);
  release(fresh);
}

TEST_F(TocTest, SharedDatabaseReportsTheSecondDelete) {
  mark_shared();
  kelp_lock_write(handle, nullptr);
  kelp_table *table = make_table("path");
  insert(table);
  remove(table);
  EXPECT_EQ(err, 0u);
  remove(table);
  EXPECT_EQ(err, 2u);
  release(table);
}

TEST_F(TocTest, ForcedDeleteTakesATableOut) {
  kelp_table *table = make_table("path");
  insert(table);
  kelpdb_database_toc_force_delete(handle, 0, table, &err);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(find("path"), nullptr);
  release(table);
}

TEST_F(TocTest, RootOfAPrivateDatabaseIsAlwaysThere) {
  kelp_toc_root *root = kelpdb_database_toc_open(handle, 0, &err);
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->flags & KELP_TOC_SHARED, 0);
  EXPECT_EQ(kelpdb_database_toc_open(handle, 0, &err), root);
}

TEST_F(TocTest, ReaderOfASharedDatabaseWaitsForTheWriter) {
  mark_shared();
  EXPECT_EQ(kelpdb_database_toc_open(handle, 0, &err), nullptr);
  kelp_lock_read(handle, nullptr);
  EXPECT_EQ(kelpdb_database_toc_open(handle, 0, &err), nullptr);
  EXPECT_EQ(err, 0u);
  kelp_unlock(handle, nullptr);
  kelp_lock_write(handle, nullptr);
  kelp_toc_root *root = kelpdb_database_toc_open(handle, 0, &err);
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->flags & KELP_TOC_SHARED, KELP_TOC_SHARED);
  kelp_unlock(handle, nullptr);
  EXPECT_EQ(kelpdb_database_toc_open(handle, 0, &err), root);
}

TEST_F(TocTest, ListStartsEmptyAndIsWalkable) {
  kelp_table_list *list = kelplib_database_table_toc_create(handle, KELP_SPACE_RUNTIME, &err);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->first, nullptr);
  EXPECT_EQ(list->last_link, &list->first);
  EXPECT_EQ(kelplib_database_table_toc_create(handle, KELP_SPACE_RUNTIME, &err), list);
  EXPECT_EQ(kelp_database_next_table(database, nullptr), nullptr);
  kelp_table *table = make_table("path");
  *list->last_link = table;
  list->last_link = &table->toc_next;
  EXPECT_EQ(kelp_database_next_table(database, nullptr), table);
  EXPECT_EQ(kelp_database_next_table(database, table), nullptr);
  EXPECT_EQ(memory().live_allocations, 1u);
  release(table);
}

TEST_F(TocTest, FaultsStrike) {
  kelp_table *table = make_table("path");
  const std::pair<std::uint32_t, std::function<void()>> calls[] = {
      {KELP_FAULT_TOC_OPEN, [&] { kelpdb_database_toc_open(handle, 0, &err); }},
      {KELP_FAULT_TOC_FIND, [&] { find("path"); }},
      {KELP_FAULT_TOC_INSERT, [&] { insert(table); }},
      {KELP_FAULT_TOC_DELETE, [&] { kelpdb_database_toc_force_delete(handle, 0, table, &err); }},
  };
  for (const auto &[fault, call] : calls) {
    kelp_database_fail_after(database, fault, 0);
    err = 0;
    call();
    EXPECT_EQ(err, 5u);
    err = 0;
    call();
    EXPECT_EQ(err, 0u);
  }
  release(table);
}

TEST_F(TocTest, NonZeroErrorWordStopsEverything) {
  kelp_table *table = make_table("path");
  err = 3;
  insert(table);
  EXPECT_EQ(kelpdb_database_toc_open(handle, 0, &err), nullptr);
  EXPECT_EQ(kelplib_database_table_toc_create(handle, 0, &err), nullptr);
  remove(table);
  EXPECT_EQ(err, 3u);
  err = 0;
  EXPECT_EQ(find("path"), nullptr);
  EXPECT_EQ(kelp_handle_last_error(handle, nullptr), 0);
  release(table);
}

}  // namespace
