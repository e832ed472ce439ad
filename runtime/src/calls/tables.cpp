// What modules and programs keep and ask about one table: cursors on and off, and the counts of its
// records by tenant.
#include <cerrno>

#include "base/announce.hpp"
#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"

namespace kelp {

namespace {

// The table's state, made and tied to the table when it is missing; null without memory.
TableState *state_for(kelp_handle *handle, std::uint32_t space_id, kelp_table *table) {
  if (table->runtime_state != nullptr) return TableState::of(table);
  kelp_database &database = *handle->state->database;
  TableState *state = nullptr;
  if (!without_exceptions([&] { state = database.tables.make(table); })) return nullptr;
  database.objects.watch(table);
  announce(handle, &table->runtime_state, sizeof table->runtime_state, space_id);
  table->runtime_state = state;
  return state;
}

}  // namespace

}  // namespace kelp

using kelp::TableState;

extern "C" int32_t kelp_table_enable_cursors(kelp_handle *handle, kelp_table *table,
                                             uint32_t implicit_write_cursor, kelp_error *error) {
  constexpr const char *kFunction = "kelp_table_enable_cursors";
  if (handle == nullptr || table == nullptr) {
    return kelp::fail(error, KELP_ERR_INVALID, "%s: the %s is null", kFunction,
                      handle == nullptr ? "handle" : "table");
  }
  const kelp_database &database = *handle->state->database;
  if (database.store != nullptr) {
    return kelp::fail(error, ENOTSUP,
                      "%s: store '%s': the change feed of a database in a file is not kept",
                      kFunction, database.name.c_str());
  }
  TableState *state = kelp::state_for(handle, handle->cr_space_id, table);
  const bool done = state != nullptr && kelp::without_exceptions([&] {
                      if (state->feed == nullptr) state->feed = std::make_shared<kelp::Feed>();
                    });
  if (!done) return kelp::fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", kFunction);
  state->implicit_write_cursor = implicit_write_cursor != 0;
  return kelp::succeed(error);
}

extern "C" uint32_t kelpdb_table_are_cursors_enabled(kelp_handle *handle, uint32_t space_id,
                                                     const kelp_table *table, uint32_t *err) {
  (void)space_id;
  if (kelp::is_set(err)) return 0;
  if (table == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return 0;
  }
  const TableState *state = TableState::of(table);
  return state != nullptr && state->feed != nullptr ? 1 : 0;
}

extern "C" uint32_t kelpdb_table_implicit_write_cursor_enabled(kelp_handle *handle,
                                                               uint32_t space_id,
                                                               const kelp_table *table,
                                                               uint32_t *err) {
  if (kelpdb_table_are_cursors_enabled(handle, space_id, table, err) == 0) return 0;
  return TableState::of(table)->implicit_write_cursor ? 1 : 0;
}

extern "C" void kelpdb_update_tenant_counter(kelp_handle *handle, uint32_t space_id,
                                             kelp_table *table, uint32_t direction, uint16_t tenant,
                                             uint8_t src, uint32_t *err) {
  (void)space_id;
  if (kelp::is_set(err)) return;
  if (table == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return;
  }
  kelp_database &database = *handle->state->database;
  if (direction == 0) {
    database.tenants.subtract(table, tenant, src);
  } else if (kelp::without_exceptions([&] { database.tenants.add(table, tenant, src); })) {
    database.objects.watch(table);
  } else {
    kelp::raise(handle, err, KELP_ERR_NO_MEMORY);
  }
}

extern "C" void kelpdb_get_tenant_counter(kelp_handle *handle, uint32_t space_id,
                                          const kelp_table *table, uint32_t *count, uint16_t tenant,
                                          const uint8_t *src) {
  (void)space_id;
  if (count == nullptr) return;
  *count = table == nullptr || handle == nullptr
               ? 0
               : handle->state->database->tenants.get(table, tenant, src);
}
