// What modules and programs keep and ask about one table: cursors on and off, and the counts of its
// records by tenant.
#include "base/announce.hpp"
#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"

namespace kelp {

namespace {

// The table's feed, made and tied to the table when it is missing; null without memory.
FeedTable *feed_for(kelp_handle *handle, std::uint32_t space_id, kelp_table *table) {
  if (table->runtime_state != nullptr) return Feeds::of(table);
  kelp_database &database = *handle->state->database;
  FeedTable *feed = nullptr;
  if (!without_exceptions([&] { feed = database.feeds.make(table); })) return nullptr;
  database.objects.watch(table);
  announce(handle, &table->runtime_state, sizeof table->runtime_state, space_id);
  table->runtime_state = feed;
  return feed;
}

}  // namespace

}  // namespace kelp

using kelp::Feeds;
using kelp::FeedTable;

extern "C" int32_t kelp_table_enable_cursors(kelp_handle *handle, kelp_table *table,
                                             uint32_t implicit_write_cursor, kelp_error *error) {
  constexpr const char *kFunction = "kelp_table_enable_cursors";
  if (handle == nullptr || table == nullptr) {
    return kelp::fail(error, KELP_ERR_INVALID, "%s: the %s is null", kFunction,
                      handle == nullptr ? "handle" : "table");
  }
  kelp_database &database = *handle->state->database;
  if (database.store != nullptr && kelplib_database_is_write_locked(handle) == 0) {
    return kelp::fail(error, KELP_ERR_PERMISSION,
                      "%s: store '%s': this handle does not hold the write lock", kFunction,
                      database.name.c_str());
  }
  FeedTable *feed = kelp::feed_for(handle, handle->cr_space_id, table);
  if (feed == nullptr) return kelp::fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", kFunction);
  database.feeds.set_implicit(feed, implicit_write_cursor != 0);
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
  return Feeds::of(table) != nullptr ? 1 : 0;
}

extern "C" uint32_t kelpdb_table_implicit_write_cursor_enabled(kelp_handle *handle,
                                                               uint32_t space_id,
                                                               const kelp_table *table,
                                                               uint32_t *err) {
  if (kelpdb_table_are_cursors_enabled(handle, space_id, table, err) == 0) return 0;
  return Feeds::of(table)->implicit_write_cursor != 0 ? 1 : 0;
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
