// What modules and programs keep and ask about one table: cursors on and off, and the counts of its
// records by tenant.
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
  if (kelp::is_set(err)) return;
  if (table == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return;
  }
  const bool add = direction != 0;
  TableState *state = add ? kelp::state_for(handle, space_id, table) : TableState::of(table);
  if (!add && state == nullptr) return;
  const bool done = state != nullptr && kelp::without_exceptions([&] {
                      const std::pair key(tenant, src);
                      if (add) {
                        ++state->counts[key];
                        return;
                      }
                      const auto count = state->counts.find(key);
                      if (count == state->counts.end()) return;
                      if (--count->second == 0) state->counts.erase(count);
                    });
  if (!done) kelp::raise(handle, err, KELP_ERR_NO_MEMORY);
}

extern "C" void kelpdb_get_tenant_counter(kelp_handle *handle, uint32_t space_id,
                                          const kelp_table *table, uint32_t *count, uint16_t tenant,
                                          const uint8_t *src) {
  (void)handle, (void)space_id;
  if (count == nullptr) return;
  *count = 0;
  const TableState *state = table == nullptr ? nullptr : TableState::of(table);
  if (state == nullptr) return;
  const uint8_t lowest = src == nullptr ? uint8_t{0} : *src;
  const uint8_t highest = src == nullptr ? uint8_t{UINT8_MAX} : *src;
  const auto end = state->counts.upper_bound({tenant, highest});
  for (auto place = state->counts.lower_bound({tenant, lowest}); place != end; ++place) {
    *count += place->second;
  }
}
