// Records: their events, their making and their end, their fields, their places in a table, and
// their images.
#include <kelp/embed.h>

#include <array>

#include "messages/setting.hpp"
#include "messages/table_drivers.hpp"
#include "tables/table_fixture.hpp"

namespace messages {

namespace {

std::array<std::uint8_t, 65536> buffer;
constexpr std::int32_t buffer_space = 65000;

void enable_cursors(kelp_handle *handle, kelp_table *table) {
  EXPECT_EQ(kelp_table_enable_cursors(handle, table, 0, nullptr), 0);
}

// --- handlers ---------------------------------------------------------------------------------

constexpr char create_cb[] = "_table_record_create_cb";
constexpr char modify_cb[] = "_table_record_modify_cb";
constexpr char delete_cb[] = "_table_record_delete_cb";
constexpr char create_dm_cb[] = "_table_record_create_dm_cb";
constexpr char delete_dm_cb[] = "_table_record_delete_dm_cb";

void *const no_record = nullptr;

template <const char *suffix>
void record_event(const TableCase &table, std::uint32_t) {
  std::uint32_t err = 0;
  call<std::uint64_t>(table.operation(suffix), fresh(), space, no_record, no_record, &err);
}
template <const char *suffix>
void dm_event(const TableCase &table, std::uint32_t) {
  std::uint32_t err = 0;
  call<std::uint64_t>(table.operation(suffix), fresh(), space, no_record, &err);
}
void grouping_event(const TableCase &table, std::uint32_t) {
  std::uint32_t err = 0;
  call<std::uint64_t>(table.operation("_table_record_grouping_cb"), fresh(), space, no_record, &err,
                      no_record, no_record);
}
void free_event(const TableCase &table, std::uint32_t) {
  std::uint32_t err = 0;
  call<std::uint64_t>(table.operation("_table_record_free_cb"), fresh(), space, no_record, 0u, &err,
                      no_record);
}

// --- records ----------------------------------------------------------------------------------

void create_without_varinfo(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  table.record_record().varinfo = nullptr;
  table.empty_record(handle);
}

void create_above_variants(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  table.record_record().varinfo->n_variants = -1;
  arguments_are({"0", number(no_variants)});
  table.empty_record(handle);
}

void request_destroy_failed(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  kelp_record *record = table.record(handle);
  table.on_record("_insert", handle, rows, record);
  enable_cursors(handle, rows);
  const Failing failing("kelpdb_request_record_destroy", failure);
  EXPECT_EQ(table.on_record("_request_record_destroy", handle, rows, record), failure);
}

// Only the collector deletes from a table with cursors, so that the delete within fails.
void delete_while_destroying_failed(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  kelp_record *record = table.record(handle);
  table.on_record("_insert", handle, rows, record);
  enable_cursors(handle, rows);
  arguments_are({"22"});
  EXPECT_EQ(table.destroy(handle, record), 0u);
}

void destroy_without_varinfo(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_record *record = table.record(handle);
  table.record_record().varinfo = nullptr;
  table.destroy(handle, record);
}

void destroy_above_variants(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_record *record = table.record(handle);
  table.record_record().varinfo->n_variants = -1;
  arguments_are({"0", number(no_variants)});
  EXPECT_EQ(table.destroy(handle, record), 0u);
}

void destroy_without_record_type(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_record *record = table.record(handle);
  header(record).tinfo = nullptr;
  table.destroy(handle, record);
}
void destroy_with_wrong_record_type(const TableCase &table, std::uint32_t) {
  static kelp_type_record wrong{};
  kelp_handle *handle = fresh();
  kelp_record *record = table.record(handle);
  header(record).tinfo = &wrong;
  table.destroy(handle, record);
}

void hd_mapping_not_removed(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_record *record = table.record(handle);
  record->rec_flags |= REC_HD_MAPPED;
  handle->hd_mapped = 1;
  arguments_are({failure_text()});
  const Failing failing("kelp_hd_mapping_destroy", failure);
  EXPECT_EQ(table.destroy(handle, record), failure);
}

constexpr char set_field[] = "_set_field";
constexpr char free_and_set_field[] = "_free_and_set_field";

template <const char *suffix, std::uint8_t flag>
void object_refused(const TableCase &table, std::uint32_t object) {
  kelp_handle *handle = fresh();
  kelp_record *record = table.record(handle);
  const std::string type = table.object_type(object);
  void *refused = create(handle, type);
  header(refused).obj_flags |= flag;
  call<void>(table.operation("_" + type + suffix), handle, space, record, refused);
}

// --- insert and delete ------------------------------------------------------------------------

void insert_exists(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  EXPECT_EQ(table.on_record("_insert", handle, rows, table.record(handle)), 0u);
  EXPECT_EQ(table.on_record("_insert", handle, rows, table.record(handle)), 17u);
}

void delete_on_replicated(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  kelp_record *record = table.record(handle);
  table.on_record("_insert", handle, rows, record);
  enable_cursors(handle, rows);
  EXPECT_EQ(table.on_record("_delete", handle, rows, record), 22u);
}

void delete_not_found(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  EXPECT_EQ(table.on_record("_delete", handle, table.opened(handle), table.record(handle)), 2u);
}

void delete_count_zero(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  kelp_record *record = table.record(handle);
  table.on_record("_insert", handle, rows, record);
  rows->record_count = 0;
  EXPECT_EQ(table.on_record("_delete", handle, rows, record), 0u);
}

void invalid_get_flag(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_table *rows = table.opened(handle);
  arguments_are({"4"});
  std::string name = harness::key_prefix(table.schema());
  while (name.ends_with('_')) name.pop_back();  // one underscore here behind a composite key too
  call<void *>(name + "_get_cr", handle, rows, 4u, static_cast<void *>(nullptr), 0u, 0u);
}

// --- images -----------------------------------------------------------------------------------

template <typename... Arguments>
void expect_error_kept(const std::string &name, Arguments... arguments) {
  std::uint32_t err = failure;
  EXPECT_EQ(call<std::uint32_t>(name, arguments..., &err), 0u);
  EXPECT_EQ(err, failure);
}

constexpr char record_marshal[] = "_table_record_marshal";
constexpr char pkey_marshal[] = "_table_pkey_marshal";

template <const char *suffix>
void marshal_with_error(const TableCase &table, std::uint32_t) {
  kelp_handle *handle = fresh();
  kelp_record *record = table.record(handle);
  arguments_are({failure_text()});
  expect_error_kept(table.operation(suffix), handle, space, static_cast<void *>(buffer.data()),
                    record, buffer_space);
}

// The objects before this one are there.
void marshal_field_empty(const TableCase &table, std::uint32_t object) {
  kelp_handle *handle = fresh();
  kelp_record *record = table.empty_record(handle);
  for (std::uint32_t before = 0; before < object; ++before) table.give(handle, record, before);
  std::uint32_t err = 0;
  call<std::uint32_t>(table.operation("_table_record_marshal"), handle, space,
                      static_cast<void *>(buffer.data()), record, buffer_space, &err);
  EXPECT_EQ(err, KELP_ERR_NOT_FOUND);
}

void unmarshal_with_error(const TableCase &table, std::uint32_t) {
  kelp_record *record = nullptr;
  arguments_are({table.name(), failure_text()});
  expect_error_kept(table.operation("_table_record_unmarshal"), fresh(), space, &record,
                    static_cast<const void *>(buffer.data()), buffer_space, 0u);
}

void pkey_unmarshal_with_error(const TableCase &table, std::uint32_t) {
  void *pkey = nullptr;
  arguments_are({table.name(), failure_text()});
  expect_error_kept(table.operation("_table_pkey_unmarshal"), fresh(), space, &pkey,
                    static_cast<const void *>(buffer.data()), buffer_space);
}

constexpr std::array<OffsetDriver, 32> drivers{{
    {36, record_event<create_cb>},
    {36, dm_event<create_dm_cb>},
    {37, record_event<modify_cb>},
    {38, record_event<delete_cb>},
    {38, dm_event<delete_dm_cb>},
    {39, dm_event<create_dm_cb>},
    {40, dm_event<delete_dm_cb>},
    {41, grouping_event},
    {42, free_event},
    {43, create_without_varinfo},
    {44, create_above_variants},
    {46, request_destroy_failed},
    {47, delete_while_destroying_failed},
    {48, destroy_without_varinfo},
    {49, destroy_above_variants},
    {51, destroy_without_record_type},
    {51, destroy_with_wrong_record_type},
    {52, hd_mapping_not_removed},
    {53, object_refused<set_field, OBJ_EMBEDDED>},
    {53, object_refused<set_field, OBJ_NESTED>},
    {54, object_refused<free_and_set_field, OBJ_EMBEDDED>},
    {54, object_refused<free_and_set_field, OBJ_NESTED>},
    {55, insert_exists},
    {56, delete_on_replicated},
    {57, delete_not_found},
    {58, delete_count_zero},
    {59, invalid_get_flag},
    {60, marshal_with_error<record_marshal>},
    {61, marshal_field_empty},
    {62, marshal_with_error<pkey_marshal>},
    {63, unmarshal_with_error},
    {64, pkey_unmarshal_with_error},
}};

}  // namespace

std::span<const OffsetDriver> record_drivers() { return drivers; }

}  // namespace messages
