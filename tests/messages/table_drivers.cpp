// Opening and freeing tables: each failure on the way, and what is told without one.
#include "messages/table_drivers.hpp"

#include <kelp/embed.h>

#include <array>

#include "messages/setting.hpp"

namespace messages {

namespace {

harness::Store &shared_store() {
  auto &store = *new harness::Store({.marked_shared = true});
  EXPECT_EQ(kelp_lock_write(store, nullptr), 0);
  return store;
}
harness::Store &private_store() { return *new harness::Store; }

// --- open -------------------------------------------------------------------------------------

void unknown_key(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  arguments_are({"1"});
  call<std::uint32_t>(table.operation("_record_walk_cr"), handle, rows, 1u,
                      static_cast<void *>(nullptr), static_cast<void *>(nullptr));
}

void create_under_a_read_lock(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  handle->db_lock_state = 1;
  table.open(handle);
}
void create_without_a_lock(const TableCase &table, std::uint32_t) {
  table.open(fresh({.marked_shared = true}));
}

void toc_not_opened(const TableCase &table, std::uint32_t) {
  arguments_are({failure_text()});
  const Failing failing("kelpdb_database_toc_open", failure);
  EXPECT_EQ(table.open(fresh()), failure);
}

void toc_root_missing_for_writer(const TableCase &table, std::uint32_t) {
  arguments_are({"test"});
  const Failing failing("kelpdb_database_toc_open", 0);
  table.open(fresh());
}

void toc_root_missing_for_reader(const TableCase &table, std::uint32_t) {
  arguments_are({"test", "1"});
  EXPECT_EQ(table.open(fresh({.marked_shared = true}), 1), 0u);
}

void find_by_name_failed(const TableCase &table, std::uint32_t) {
  arguments_are({failure_text()});
  const Failing failing("kelpdb_database_toc_get_table_root", failure);
  EXPECT_EQ(table.open(fresh()), failure);
}

void find_by_id_failed(const TableCase &table, std::uint32_t) {
  arguments_are({failure_text()});
  const Failing failing("kelpdb_database_toc_get_table_root", failure);
  EXPECT_EQ(table.open_by_id(fresh()), failure);
}

void reader_without_ids(const TableCase &table, std::uint32_t) {
  EXPECT_EQ(table.open_by_id(fresh(), 1), 0u);
}

void ids_not_kept(const TableCase &table, std::uint32_t) {
  const Failing failing("lumen_set_key", 0);
  EXPECT_EQ(table.open_by_id(fresh()), 0u);
}

// The first declaration is that of the new table, the next four are those of its links.
template <int number>
void declaration_refused(const TableCase &table, std::uint32_t) {
  harness::Store &store = private_store();
  kelp_database_fail_after(store.database(), KELP_FAULT_RANGE, number);
  table.open(store);
}

void mapping_not_created(const TableCase &table, std::uint32_t) {
  const Failing failing("kelp_oid_mapping_create", failure);
  table.open(fresh());
}
// Without an error, which is a failure all the same.
void mapping_not_given(const TableCase &table, std::uint32_t) {
  const Failing failing("kelp_oid_mapping_create", 0);
  table.open(fresh());
}

void toc_refuses_static(const TableCase &table, std::uint32_t) {
  arguments_are({"static"});
  const Failing failing("kelpdb_database_toc_insert", failure);
  EXPECT_EQ(table.open(fresh()), failure);
}
void toc_refuses_dynamic(const TableCase &table, std::uint32_t) {
  arguments_are({"dynamic"});
  const Failing failing("kelpdb_database_toc_insert", failure);
  std::uint32_t err = 0;
  call<kelp_table *>(table.operation("_table_open_auto_id"), fresh(), space, 0u, &err);
  EXPECT_EQ(err, failure);
}

void open_without_varinfo(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  table.table_record().varinfo = nullptr;
  table.open(handle);
}

void open_above_variants(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  table.table_record().varinfo->n_variants = -1;
  arguments_are({"0", number(no_variants)});
  EXPECT_EQ(table.open(handle), 0u);
}

// --- free -------------------------------------------------------------------------------------

void free_without_root(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  arguments_are({failure_text()});
  const Failing failing("kelpdb_database_toc_open", failure);
  EXPECT_EQ(table.free(handle, rows), failure);
}

void force_delete_failed(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  handle->force_toc_delete = 1;
  arguments_are({failure_text()});
  const Failing failing("kelpdb_database_toc_force_delete", failure);
  EXPECT_EQ(table.free(handle, rows), failure);
}

void free_of_shared_table(const TableCase &table, std::uint32_t) {
  harness::Store &store = shared_store();
  EXPECT_EQ(table.free(store, table.opened(store)), 0u);
}

void delete_failed_on_shared(const TableCase &table, std::uint32_t) {
  harness::Store &store = shared_store();
  kelp_table *rows = table.opened(store);
  arguments_are({failure_text()});
  const Failing failing("kelpdb_database_toc_delete", failure);
  EXPECT_EQ(table.free(store, rows), failure);
}

void delete_failed(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  arguments_are({failure_text()});
  const Failing failing("kelpdb_database_toc_delete", failure);
  EXPECT_EQ(table.free(handle, rows), failure);
}

void mapping_not_removed(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  arguments_are({failure_text()});
  const Failing failing("kelp_request_oid_mapping_destroy", failure);
  EXPECT_EQ(table.free(handle, rows), failure);
}

void mapping_removed(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  EXPECT_EQ(table.free(handle, table.opened(handle)), 0u);
}

// A successor's link, or the head of the list; then the link of what stands before.
template <int number, bool has_successor>
void unlink_refused(const TableCase &table, std::uint32_t) {
  harness::Store &store = private_store();
  kelp_table *rows = table.opened(store);
  if (has_successor) table.opened(store, "more");
  kelp_database_fail_after(store.database(), KELP_FAULT_RANGE, number);
  table.free(store, rows);
}

void free_without_varinfo(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  table.table_record().varinfo = nullptr;
  table.free(handle, rows);
}

void free_above_variants(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  table.table_record().varinfo->n_variants = -1;
  arguments_are({"0", number(no_variants)});
  EXPECT_EQ(table.free(handle, rows), 0u);
}

void request_on_private(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  table.request_free(handle, table.opened(handle));
}

void request_without_root(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  arguments_are({failure_text()});
  const Failing failing("kelpdb_database_toc_open", failure);
  EXPECT_EQ(table.request_free(handle, rows), failure);
}

void request_delete_failed(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  arguments_are({failure_text()});
  const Failing failing("kelpdb_database_toc_delete", failure);
  EXPECT_EQ(table.request_free(handle, rows), failure);
}

// The free itself is the collector's here, and fails at the mapping.
void request_free_failed(const TableCase &table, std::uint32_t) {
  harness::Store &store = shared_store();
  kelp_table *rows = table.opened(store);
  store.handle()->collector_context = 1;
  arguments_are({failure_text()});
  const Failing failing("kelp_request_oid_mapping_destroy", failure);
  EXPECT_EQ(table.request_free(store, rows), failure);
}

constexpr std::array<OffsetDriver, 38> drivers{{
    {0, unknown_key},
    {1, create_under_a_read_lock},
    {1, create_without_a_lock},
    {2, toc_not_opened},
    {3, toc_root_missing_for_writer},
    {4, toc_root_missing_for_reader},
    {5, find_by_name_failed},
    {6, reader_without_ids},
    {7, ids_not_kept},
    {8, find_by_id_failed},
    {9, declaration_refused<0>},
    {10, declaration_refused<1>},
    {11, declaration_refused<2>},
    {12, declaration_refused<3>},
    {13, declaration_refused<4>},
    {14, mapping_not_created},
    {14, mapping_not_given},
    {15, toc_refuses_static},
    {15, toc_refuses_dynamic},
    {16, open_without_varinfo},
    {17, open_above_variants},
    {19, free_without_root},
    {20, force_delete_failed},
    {21, free_of_shared_table},
    {22, delete_failed_on_shared},
    {23, delete_failed},
    {24, mapping_not_removed},
    {25, mapping_removed},
    {26, unlink_refused<0, true>},
    {27, unlink_refused<0, false>},
    {28, unlink_refused<1, false>},
    {28, unlink_refused<1, true>},
    {29, free_without_varinfo},
    {30, free_above_variants},
    {32, request_on_private},
    {33, request_without_root},
    {34, request_delete_failed},
    {35, request_free_failed},
}};

}  // namespace

std::span<const OffsetDriver> table_drivers() { return drivers; }

}  // namespace messages
