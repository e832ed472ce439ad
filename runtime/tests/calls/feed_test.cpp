// The change feed and its cursors.
#include <utility>

#include "tables.hpp"

namespace {

using kelp_test::TablesTest;

class FeedTest : public TablesTest {
 protected:
  FeedTest() { kelp_table_enable_cursors(handle, table, 1, nullptr); }
  ~FeedTest() override {
    kelp_feed_cursor_close(cursor);
    for (kelp_record *record : records) kelpdb_request_record_destroy(handle, 0, record, &err);
    collect();
    if (table != nullptr) free_now(table);
  }

  kelp_record *add(std::uintptr_t key) {
    records.push_back(insert(table, key));
    return records.back();
  }
  void open_cursor() { cursor = kelp_feed_cursor_open(handle, table, nullptr); }
  void change(kelp_record *record) {
    EXPECT_EQ(kelp_feed_record_changed(handle, table, record, nullptr), 0);
  }
  void request(kelp_record *record) {
    kelpdb_request_record_destroy(handle, 0, record, &err);
    EXPECT_EQ(err, 0u);
  }

  // The kinds and keys of all changes up to now, as "+1 ~2 -3".
  std::string changes() {
    std::string text;
    kelp_feed_change next;
    while (kelp_feed_cursor_next(cursor, &next) != 0) {
      EXPECT_EQ(next.table, table);
      text += text.empty() ? "" : " ";
      text += next.kind == KELP_FEED_INSERTED ? "+" : next.kind == KELP_FEED_MODIFIED ? "~" : "-";
      text += std::to_string(reinterpret_cast<std::uintptr_t>(next.record->objects[0]));
    }
    return text;
  }

  std::vector<kelp_record *> records;
  kelp_feed_cursor *cursor = nullptr;
};

TEST_F(FeedTest, ChangesComeInTheirOrder) {
  open_cursor();
  EXPECT_EQ(changes(), "");
  add(2);
  add(1);
  EXPECT_EQ(changes(), "+2 +1");
  EXPECT_EQ(changes(), "");
  change(records[0]);
  request(records[1]);
  EXPECT_EQ(changes(), "~2 -1");
}

TEST_F(FeedTest, NewCursorStartsWithWhatIsThere) {
  add(1);
  add(2);
  change(records[0]);
  open_cursor();
  EXPECT_EQ(changes(), "+2 +1");
}

TEST_F(FeedTest, EachCursorIsShownTheInsertFirst) {
  add(1);
  open_cursor();
  EXPECT_EQ(changes(), "+1");
  change(records[0]);
  kelp_feed_cursor *first = cursor;
  open_cursor();
  EXPECT_EQ(changes(), "+1");
  std::swap(first, cursor);
  EXPECT_EQ(changes(), "~1");
  kelp_feed_cursor_close(first);
  change(records[0]);
  kelp_feed_cursor_close(cursor);
  open_cursor();
  EXPECT_EQ(changes(), "+1");
}

TEST_F(FeedTest, CursorsOfATableAreLimited) {
  std::vector<kelp_feed_cursor *> cursors;
  for (int i = 0; i < 64; ++i) {
    cursors.push_back(kelp_feed_cursor_open(handle, table, nullptr));
    EXPECT_NE(cursors.back(), nullptr);
  }
  kelp_error refusal;
  EXPECT_EQ(kelp_feed_cursor_open(handle, table, &refusal), nullptr);
  EXPECT_EQ(refusal.code, 11);
  EXPECT_STREQ(refusal.text,
               "kelp_feed_cursor_open: 64 cursors are open on the table, expected fewer");
  kelp_feed_cursor_close(cursors[10]);
  cursors[10] = kelp_feed_cursor_open(handle, table, nullptr);
  EXPECT_NE(cursors[10], nullptr);
  for (kelp_feed_cursor *each : cursors) kelp_feed_cursor_close(each);
}

TEST_F(FeedTest, ChangesOfOneRecordAreOneChange) {
  open_cursor();
  add(1);
  for (int i = 0; i < 1000; ++i) change(records[0]);
  EXPECT_EQ(changes(), "+1");
  for (int i = 0; i < 1000; ++i) change(records[0]);
  EXPECT_EQ(changes(), "~1");
}

TEST_F(FeedTest, DestroyedRecordStaysDestroyed) {
  open_cursor();
  add(1);
  request(records[0]);
  change(records[0]);
  EXPECT_EQ(changes(), "-1");
}

TEST_F(FeedTest, SequenceRises) {
  open_cursor();
  add(1);
  kelp_feed_change first;
  kelp_feed_change second;
  ASSERT_EQ(kelp_feed_cursor_next(cursor, &first), 1);
  change(records[0]);
  ASSERT_EQ(kelp_feed_cursor_next(cursor, &second), 1);
  EXPECT_LT(first.sequence, second.sequence);
  EXPECT_EQ(first.record, second.record);
}

TEST_F(FeedTest, WithoutImplicitCursorInsertsAreSilent) {
  kelp_table_enable_cursors(handle, table, 0, nullptr);
  open_cursor();
  add(1);
  EXPECT_EQ(changes(), "");
  change(records[0]);
  EXPECT_EQ(changes(), "+1");
}

TEST_F(FeedTest, EndedRecordIsForgotten) {
  add(1);
  request(records[0]);
  records.clear();
  collect();
  open_cursor();
  EXPECT_EQ(changes(), "");
}

TEST_F(FeedTest, RecordFreedBehindItsBackIsForgotten) {
  kelp_record *record = insert(table, 1);
  handle->collector_context = 1;
  kelp_test::delete_record(handle, 0, table, record, &err);
  handle->collector_context = 0;
  release(record);
  open_cursor();
  EXPECT_EQ(changes(), "");
}

TEST_F(FeedTest, ReportedRecordIsForgottenWithItsMemory) {
  kelp_table_enable_cursors(handle, table, 0, nullptr);
  open_cursor();
  kelp_record *record = insert(table, 1);
  change(record);
  handle->collector_context = 1;
  kelp_test::delete_record(handle, 0, table, record, &err);
  handle->collector_context = 0;
  release(record);
  EXPECT_EQ(changes(), "");
}

// What all cursors have passed is dropped in the collector's run: a later cursor sees none of it.
TEST_F(FeedTest, LaterCursorIsNotShownWhatLeftBeforeIt) {
  open_cursor();
  add(1);
  add(2);
  handle->collector_context = 1;
  kelp_test::delete_record(handle, 0, table, records[0], &err);
  handle->collector_context = 0;
  EXPECT_EQ(changes(), "+2 -1");
  collect();
  kelp_feed_cursor *first = cursor;
  open_cursor();
  EXPECT_EQ(changes(), "+2");
  kelp_feed_cursor_close(first);
  insert_again(table, records[0]);
}

// Between the link into the tree and the module's word.
TEST_F(FeedTest, RecordIsNotShownBeforeItsModuleReportsIt) {
  open_cursor();
  add(1);
  auto *record = make<kelp_record>(&record_type.record);
  record->ref_word = 1;
  record->objects[0] = reinterpret_cast<void *>(2);
  e_avl_insert(handle->obj_pool, 0, &table->avl_root, &record->avl_node, &table->avl_aux,
               kelp_test::compare_records);
  record->record_table = table;
  ++table->record_count;
  records.push_back(record);
  EXPECT_EQ(changes(), "+1");
  change(record);
  EXPECT_EQ(changes(), "+2");
}

// As a program may do whose hooks are its own.
TEST_F(FeedTest, RecordThatMovedUnheardIsNotEndedHere) {
  kelp_table other = {};
  add(1);
  request(records[0]);
  records[0]->record_table = &other;
  EXPECT_EQ(collect().records_ended, 0u);
  records[0]->record_table = table;
  records[0]->rec_flags = REC_IN_TABLE;
  table->pending_destroy_count = 0;
}

TEST_F(FeedTest, RecordOfAnotherTableIsRefused) {
  kelp_table *other = open_table("other");
  kelp_table_enable_cursors(handle, other, 1, nullptr);
  add(1);
  kelp_error refusal;
  EXPECT_EQ(kelp_feed_record_changed(handle, other, records[0], &refusal), 22);
  kelpdb_enq_rec_move_write_cursor_internal(handle, 0, other, records[0], &err);
  EXPECT_EQ(err, 22u);
  err = 0;
  kelp_feed_cursor *others = kelp_feed_cursor_open(handle, other, nullptr);
  kelp_feed_change next;
  EXPECT_EQ(kelp_feed_cursor_next(others, &next), 0);
  kelp_feed_cursor_close(others);
  free_now(other);
}

TEST_F(FeedTest, RecordThatMovedToAnotherTableIsForgottenByBoth) {
  kelp_table *other = open_table("other");
  kelp_table_enable_cursors(handle, other, 1, nullptr);
  open_cursor();
  kelp_record *record = insert(table, 1);
  handle->collector_context = 1;
  kelp_test::delete_record(handle, 0, table, record, &err);
  insert_again(other, record);
  kelp_test::delete_record(handle, 0, other, record, &err);
  handle->collector_context = 0;
  release(record);
  EXPECT_EQ(changes(), "");
  kelp_feed_cursor *others = kelp_feed_cursor_open(handle, other, nullptr);
  kelp_feed_change next;
  EXPECT_EQ(kelp_feed_cursor_next(others, &next), 0);
  kelp_feed_cursor_close(others);
  free_now(other);
}

TEST_F(FeedTest, RecordThatLeftTheTreeIsShownAsDestroyed) {
  open_cursor();
  add(1);
  EXPECT_EQ(changes(), "+1");
  handle->collector_context = 1;
  kelp_test::delete_record(handle, 0, table, records[0], &err);
  handle->collector_context = 0;
  EXPECT_EQ(changes(), "-1");
  insert_again(table, records[0]);
  EXPECT_EQ(changes(), "+1");
}

TEST_F(FeedTest, RecordInsertedAnewIsNotMarkedAnyMore) {
  open_cursor();
  add(1);
  ++records[0]->ref_word;
  for (int round = 0; round < 3; ++round) {
    request(records[0]);
    handle->collector_context = 1;
    kelp_test::delete_record(handle, 0, table, records[0], &err);
    handle->collector_context = 0;
    insert_again(table, records[0]);
    EXPECT_EQ(changes(), round == 0 ? "+1" : "~1");
  }
  EXPECT_EQ(collect().records_ended, 0u);
  request(records[0]);
  EXPECT_EQ(changes(), "-1");
  EXPECT_EQ(collect().records_ended, 1u);
  EXPECT_EQ(records[0]->ref_word, 1u);
  release(records[0]);
  records.clear();
}

TEST_F(FeedTest, RequestOfAnotherTableEndsNothingHere) {
  kelp_table *other = open_table("other");
  kelp_table_enable_cursors(handle, other, 1, nullptr);
  kelp_feed_cursor *others = kelp_feed_cursor_open(handle, other, nullptr);
  add(1);
  request(records[0]);
  handle->collector_context = 1;
  kelp_test::delete_record(handle, 0, table, records[0], &err);
  handle->collector_context = 0;
  insert_again(other, records[0]);
  EXPECT_EQ(collect().records_ended, 0u);
  EXPECT_EQ(records[0]->record_table, other);
  request(records[0]);
  EXPECT_EQ(collect().records_ended, 0u) << "the other table's cursor has not passed it";
  kelp_feed_cursor_close(others);
  EXPECT_EQ(collect().records_ended, 1u);
  records.clear();
  free_now(other);
}

TEST_F(FeedTest, BitOfAClosedCursorIsForgotten) {
  add(1);
  open_cursor();
  EXPECT_EQ(changes(), "+1");
  kelp_feed_cursor_close(cursor);
  open_cursor();
  change(records[0]);
  EXPECT_EQ(changes(), "+1");
}

TEST_F(FeedTest, BitsOfClosedCursorsServeAgain) {
  add(1);
  for (int i = 0; i < 70; ++i) {
    open_cursor();
    kelp_feed_cursor_close(cursor);
  }
  open_cursor();
  EXPECT_EQ(changes(), "+1");
  change(records[0]);
  EXPECT_EQ(changes(), "~1");
}

TEST_F(FeedTest, FeedOfAFreedTableShowsNothing) {
  add(1);
  open_cursor();
  kelp_record *record = records[0];
  records.clear();
  handle->collector_context = 1;
  ++record->ref_word;
  free_now(table);
  handle->collector_context = 0;
  kelp_feed_change next;
  EXPECT_EQ(kelp_feed_cursor_next(cursor, &next), 0);
  release(record);
}

TEST_F(FeedTest, CursorOfAFreedTableShowsNothing) {
  add(1);
  open_cursor();
  request(records[0]);
  changes();
  records.clear();
  collect();
  free_now(table);
  kelp_feed_change next;
  EXPECT_EQ(kelp_feed_cursor_next(cursor, &next), 0);
}

TEST_F(FeedTest, FeedNeedsCursorsAndARecord) {
  kelp_table *plain = open_table("plain");
  kelp_error error;
  EXPECT_EQ(kelp_feed_cursor_open(handle, plain, &error), nullptr);
  EXPECT_EQ(error.code, 22);
  EXPECT_EQ(kelp_feed_cursor_open(handle, nullptr, &error), nullptr);
  EXPECT_EQ(kelp_feed_record_changed(handle, table, nullptr, &error), 22);
  EXPECT_STREQ(error.text,
               "kelp_feed_record_changed: expected a record of the table, and a table marked for "
               "replication");
  kelpdb_enq_rec_move_write_cursor_internal(handle, 0, nullptr, nullptr, &err);
  EXPECT_EQ(err, 22u);
  err = 0;
  free_now(plain);
  EXPECT_EQ(kelp_feed_cursor_next(nullptr, nullptr), 0);
}

}  // namespace
