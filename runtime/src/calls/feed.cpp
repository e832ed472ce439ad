// The change feed as modules fill it and programs read it: moving the write cursor, putting off the
// end of records, cursors, and sleeping until something changed.
#include <algorithm>
#include <cerrno>
#include <memory>

#include "base/announce.hpp"
#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"
#include "database/transaction.hpp"

namespace kelp {

namespace {

// Whether the record is the table's and may enter its feed; raises 22 when not, and 1 in a store
// without its write lock.
bool check_feed(kelp_handle *handle, const kelp_table *table, const kelp_record *record,
                std::uint32_t *err) {
  const FeedTable *feed = table == nullptr ? nullptr : Feeds::of(table);
  if (feed == nullptr || record == nullptr || record->record_table != table) {
    raise(handle, err, KELP_ERR_INVALID);
    return false;
  }
  const bool in_store = handle->state->database->store != nullptr;
  if (!in_store || kelplib_database_is_write_locked(handle) != 0) return true;
  raise(handle, err, KELP_ERR_PERMISSION);
  return false;
}

// Enters a record in its table's feed by one of the feeds' functions, and watches its memory.
bool enter_feed(kelp_handle *handle, kelp_table *table, kelp_record *record,
                void (Feeds::*enter)(FeedTable *, kelp_record *, const Author &),
                std::uint32_t *err) {
  kelp_database &database = *handle->state->database;
  const bool done = without_exceptions(
      [&] { (database.feeds.*enter)(Feeds::of(table), record, handle->state->author); });
  if (!done) {
    raise(handle, err, KELP_ERR_NO_MEMORY);
    return false;
  }
  database.objects.watch(record);
  return true;
}

// Whether the cursor's database is still there.
bool is_usable(const kelp_feed_cursor *cursor) {
  return cursor != nullptr && open_database(cursor->database) != nullptr;
}

// What there is for whoever waits: 0 for a change, 11 for none yet, or the code that error got.
std::int32_t look_for_change(kelp_handle *handle, kelp_feed_cursor *cursor, std::uint32_t commits,
                             kelp_error *error) {
  constexpr const char *kFunction = "kelp_feed_wait";
  kelp_handle_state &state = *handle->state;
  if (cursor == nullptr) return commits != state.heard ? 0 : KELP_ERR_AGAIN;
  const std::uint32_t heard = state.heard;
  if (const auto code = take_lock(handle, LockMode::read, kFunction, error)) return code;
  const bool is_open = state.database->feeds.table_of(cursor) != nullptr;
  const bool changed = is_open && state.database->feeds.has_next(cursor);
  end_lock(handle, Ending::commit, nullptr);
  state.heard = heard;
  if (is_open) return changed ? 0 : KELP_ERR_AGAIN;
  return fail(error, KELP_ERR_NOT_FOUND, "%s: the table of the cursor has gone", kFunction);
}

}  // namespace

}  // namespace kelp

extern "C" void kelpdb_enq_rec_move_write_cursor_internal(kelp_handle *handle, uint32_t space_id,
                                                          kelp_table *table, kelp_record *record,
                                                          uint32_t *err) {
  (void)space_id;
  if (kelp::is_set(err) || !kelp::check_feed(handle, table, record, err)) return;
  kelp::enter_feed(handle, table, record, &kelp::Feeds::change, err);
}

extern "C" void kelpdb_request_record_destroy(kelp_handle *handle, uint32_t space_id,
                                              kelp_record *record, uint32_t *err) {
  if (kelp::is_set(err)) return;
  if (record == nullptr) {
    kelp::raise(handle, err, KELP_ERR_NOT_FOUND);
    return;
  }
  kelp_table *table = record->record_table;
  if (!kelp::check_feed(handle, table, record, err)) return;
  if ((record->rec_flags & REC_PENDING_DESTROY) != 0) return;
  if (!kelp::enter_feed(handle, table, record, &kelp::Feeds::destroy, err)) return;
  kelp::announce(handle, &record->rec_flags, sizeof record->rec_flags, space_id);
  record->rec_flags |= REC_PENDING_DESTROY;
  kelp::announce(handle, &table->pending_destroy_count, sizeof table->pending_destroy_count,
                 space_id);
  ++table->pending_destroy_count;
}

extern "C" int32_t kelp_feed_record_changed(kelp_handle *handle, kelp_table *table,
                                            kelp_record *record, kelp_error *error) {
  constexpr const char *kFunction = "kelp_feed_record_changed";
  if (handle == nullptr) {
    return kelp::fail(error, KELP_ERR_INVALID, "%s: the handle is null", kFunction);
  }
  uint32_t err = 0;
  kelpdb_enq_rec_move_write_cursor_internal(handle, handle->cr_space_id, table, record, &err);
  if (err == 0) return kelp::succeed(error);
  const char *reason = "expected a record of the table, and a table marked for replication";
  if (err == KELP_ERR_NO_MEMORY) reason = "no memory";
  if (err == KELP_ERR_PERMISSION) reason = "this handle does not hold the store's write lock";
  return kelp::fail(error, static_cast<int32_t>(err), "%s: %s", kFunction, reason);
}

extern "C" void kelp_handle_set_bulk_transfer(kelp_handle *handle, uint32_t bulk) {
  if (handle != nullptr) handle->state->author.bulk = bulk != 0;
}

extern "C" kelp_feed_cursor *kelp_feed_cursor_open(kelp_handle *handle, kelp_table *table,
                                                   kelp_error *error) {
  constexpr const char *kFunction = "kelp_feed_cursor_open";
  if (handle == nullptr || table == nullptr || kelp::Feeds::of(table) == nullptr) {
    kelp::fail(error, KELP_ERR_INVALID,
               "%s: expected a table that kelp_table_enable_cursors has marked", kFunction);
    return nullptr;
  }
  kelp_database &database = *handle->state->database;
  if (database.store != nullptr && handle->db_lock_state == 0) {
    kelp::fail(error, KELP_ERR_PERMISSION, "%s: store '%s': this handle holds no lock", kFunction,
               database.name.c_str());
    return nullptr;
  }
  std::unique_ptr<kelp_feed_cursor> cursor;
  std::int32_t code = 0;
  const bool done = kelp::without_exceptions([&] {
    cursor = std::make_unique<kelp_feed_cursor>();
    cursor->database = database.serial;
    cursor->author = handle->state->author.handle;
    code = database.feeds.open(cursor.get(), kelp::Feeds::of(table), error);
  });
  if (!done) kelp::fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", kFunction);
  if (!done || code != 0) return nullptr;
  kelp::succeed(error);
  return cursor.release();
}

extern "C" int32_t kelp_feed_cursor_next(kelp_feed_cursor *cursor, kelp_feed_change *change) {
  if (change == nullptr || !kelp::is_usable(cursor)) return 0;
  kelp::FeedLook look;
  if (!cursor->feeds->next(cursor, &look)) return 0;
  *change = look.change;
  return 1;
}

extern "C" void kelp_feed_cursor_close(kelp_feed_cursor *cursor) {
  if (cursor == nullptr) return;
  if (kelp::is_usable(cursor)) cursor->feeds->close(cursor);
  delete cursor;
}

extern "C" int32_t kelp_feed_wait(kelp_handle *handle, kelp_feed_cursor *cursor,
                                  uint32_t timeout_ms, kelp_error *error) {
  constexpr const char *kFunction = "kelp_feed_wait";
  if (handle == nullptr || (cursor != nullptr && !kelp::is_usable(cursor))) {
    return kelp::fail(error, KELP_ERR_INVALID,
                      "%s: expected a handle, and a cursor of an open "
                      "database or none",
                      kFunction);
  }
  kelp_database &database = *handle->state->database;
  if (cursor != nullptr && cursor->database != database.serial) {
    return kelp::fail(error, KELP_ERR_INVALID, "%s: the cursor is one of another database",
                      kFunction);
  }
  if (handle->db_lock_state != 0) {
    return kelp::fail(error, KELP_ERR_DEADLOCK,
                      "%s: database '%s': this handle holds the lock, and what it waits for could "
                      "never come",
                      kFunction, database.name.c_str());
  }
  kelp::store::CursorTable *table = database.feeds.signals();
  if (table == nullptr) return kelp::fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", kFunction);
  const std::uint64_t now = kelp::store::monotonic_ms();
  const std::uint64_t deadline = timeout_ms == UINT32_MAX ? UINT64_MAX : now + timeout_ms;
  for (;;) {
    // What comes behind this number ends the sleep below.
    const std::uint32_t commits = kelp::store::load(table->commits);
    const std::int32_t code = kelp::look_for_change(handle, cursor, commits, error);
    if (code == 0) return kelp::succeed(error);
    if (code != KELP_ERR_AGAIN) return code;
    const std::uint64_t time = kelp::store::monotonic_ms();
    if (time >= deadline) {
      return kelp::fail(error, ETIMEDOUT, "%s: database '%s': nothing changed within %u ms",
                        kFunction, database.name.c_str(), timeout_ms);
    }
    constexpr std::uint64_t kLongest = UINT64_C(1) << 40;
    __atomic_fetch_add(&table->listeners, 1u, __ATOMIC_SEQ_CST);
    kelp::store::futex_wait(&table->commits, commits, std::min(deadline - time, kLongest));
    __atomic_fetch_sub(&table->listeners, 1u, __ATOMIC_SEQ_CST);
  }
}
