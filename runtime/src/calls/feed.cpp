// The change feed as modules fill it and programs read it: moving the write cursor, putting off the
// end of records, and cursors.
#include "base/announce.hpp"
#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"

namespace kelp {

namespace {

// Whether the record is the table's and may enter its feed; raises 22 when not.
bool check_feed(kelp_handle *handle, const kelp_table *table, const kelp_record *record,
                std::uint32_t *err) {
  const TableState *state = table == nullptr ? nullptr : TableState::of(table);
  const bool has_feed = state != nullptr && state->feed != nullptr;
  if (has_feed && record != nullptr && record->record_table == table) return true;
  raise(handle, err, KELP_ERR_INVALID);
  return false;
}

// Enters a record in its table's feed by one of the feed's functions, and watches its memory.
bool enter_feed(kelp_handle *handle, kelp_table *table, kelp_record *record,
                void (Feed::*enter)(kelp_table *, kelp_record *), std::uint32_t *err) {
  kelp_database &database = *handle->state->database;
  const std::shared_ptr<Feed> feed = TableState::of(table)->feed;
  const bool done = without_exceptions([&] {
    database.tables.note_record(record, feed);
    (feed.get()->*enter)(table, record);
  });
  if (!done) {
    raise(handle, err, KELP_ERR_NO_MEMORY);
    return false;
  }
  database.objects.watch(record);
  return true;
}

}  // namespace

}  // namespace kelp

extern "C" void kelpdb_enq_rec_move_write_cursor_internal(kelp_handle *handle, uint32_t space_id,
                                                          kelp_table *table, kelp_record *record,
                                                          uint32_t *err) {
  (void)space_id;
  if (kelp::is_set(err) || !kelp::check_feed(handle, table, record, err)) return;
  kelp::enter_feed(handle, table, record, &kelp::Feed::change, err);
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
  if (!kelp::enter_feed(handle, table, record, &kelp::Feed::destroy, err)) return;
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
  return kelp::fail(error, static_cast<int32_t>(err),
                    err == KELP_ERR_NO_MEMORY
                        ? "%s: no memory"
                        : "%s: expected a record of the table, and a table marked for replication",
                    kFunction);
}

extern "C" kelp_feed_cursor *kelp_feed_cursor_open(kelp_handle *handle, kelp_table *table,
                                                   kelp_error *error) {
  constexpr const char *kFunction = "kelp_feed_cursor_open";
  const kelp::TableState *state =
      handle == nullptr || table == nullptr ? nullptr : kelp::TableState::of(table);
  if (state == nullptr || state->feed == nullptr) {
    kelp::fail(error, KELP_ERR_INVALID,
               "%s: expected a table that kelp_table_enable_cursors has marked", kFunction);
    return nullptr;
  }
  std::unique_ptr<kelp_feed_cursor> cursor;
  bool has_room = true;
  const bool done = kelp::without_exceptions([&] {
    cursor = std::make_unique<kelp_feed_cursor>();
    cursor->feed = state->feed;
    has_room = cursor->feed->add(cursor.get());
  });
  if (!has_room) {
    kelp::fail(error, KELP_ERR_AGAIN, "%s: %zu cursors are open on the table, expected fewer",
               kFunction, kelp::Feed::kMostCursors);
    return nullptr;
  }
  if (!done) {
    kelp::fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", kFunction);
    return nullptr;
  }
  kelp::succeed(error);
  return cursor.release();
}

extern "C" int32_t kelp_feed_cursor_next(kelp_feed_cursor *cursor, kelp_feed_change *change) {
  if (cursor == nullptr || change == nullptr) return 0;
  return cursor->feed->next(cursor, change) ? 1 : 0;
}

extern "C" void kelp_feed_cursor_close(kelp_feed_cursor *cursor) {
  if (cursor == nullptr) return;
  cursor->feed->remove(cursor);
  delete cursor;
}
