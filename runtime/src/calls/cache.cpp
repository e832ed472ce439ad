// The replication cache as modules fill it and programs read it.
#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"

extern "C" void kelprepl_add_to_cache(kelp_handle *handle, uint32_t space_id, kelp_table *table,
                                      kelp_record *record, uint32_t *err) {
  (void)space_id;
  if (kelp::is_set(err)) return;
  if (table == nullptr || record == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return;
  }
  kelp_database &database = *handle->state->database;
  if (!kelp::without_exceptions([&] { database.cache.enter(table, record); })) {
    kelp::raise(handle, err, KELP_ERR_NO_MEMORY);
  }
}

extern "C" int32_t kelp_replication_cache_next(kelp_handle *handle, uint64_t *position,
                                               kelp_cache_entry *entry) {
  if (handle == nullptr || position == nullptr || entry == nullptr) return 0;
  return handle->state->database->cache.next(position, entry) ? 1 : 0;
}

extern "C" uint64_t kelp_replication_cache_dropped(const kelp_handle *handle) {
  return handle == nullptr ? 0 : handle->state->database->cache.dropped();
}
