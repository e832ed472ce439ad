// The feeds of several tables against a plain model of what they shall show: records that come,
// change, are asked to end, leave, come again into the same table or another, and are freed, with
// cursors opened and closed and the collector run in between.
#include <algorithm>
#include <memory>
#include <random>
#include <set>

#include "tables.hpp"

namespace {

using kelp_test::compare_records;
using kelp_test::TablesTest;

enum class State { present, marked, gone };

// What a feed knows of a record, and the cursors that were shown it as there.
struct Known {
  kelp_record *record;
  std::uint64_t place;
  State state;
  std::set<int> shown;
};

struct Cursor {
  int number;
  std::uint64_t place;
  kelp_feed_cursor *real;
};

// A table with the feed that it should have.
struct Followed {
  kelp_table *table;
  bool implicit;
  std::vector<Known> known;
  std::vector<Cursor> cursors;
  std::uint64_t last = 0;

  Known *find(const kelp_record *record) {
    for (Known &each : known) {
      if (each.record == record) return &each;
    }
    return nullptr;
  }
  void forget(const kelp_record *record) {
    std::erase_if(known, [&](const Known &each) { return each.record == record; });
  }
  Known &move(kelp_record *record, State state) {
    if (find(record) == nullptr) known.push_back({record, 0, state, {}});
    Known &moved = *find(record);
    moved.place = ++last;
    moved.state = state;
    return moved;
  }
  std::uint64_t passed() const {
    std::uint64_t slowest = UINT64_MAX;
    for (const Cursor &cursor : cursors) slowest = std::min(slowest, cursor.place);
    return slowest;
  }
};

class FeedModelTest : public TablesTest {
 protected:
  static constexpr std::size_t kMostRecords = 24;

  FeedModelTest() {
    followed = {{table, true, {}, {}}, {open_table("b"), true, {}, {}}};
    followed.push_back({open_table("c"), false, {}, {}});
    for (const Followed &each : followed) {
      kelp_table_enable_cursors(handle, each.table, each.implicit ? 1 : 0, nullptr);
    }
  }

  std::uint64_t below(std::uint64_t limit) { return random() % limit; }
  Followed &any_table() { return followed[below(followed.size())]; }
  kelp_record *any_record() { return records.empty() ? nullptr : records[below(records.size())]; }
  Followed *table_of(const kelp_record *record) {
    for (Followed &each : followed) {
      if (each.table == record->record_table) return &each;
    }
    return nullptr;
  }

  void put(kelp_record *record, Followed &into) {
    ASSERT_EQ(e_avl_insert(handle->obj_pool, 0, &into.table->avl_root, &record->avl_node,
                           &into.table->avl_aux, compare_records),
              1u);
    record->record_table = into.table;
    ++into.table->record_count;
    record->rec_flags = REC_IN_TABLE;
    for (Followed &each : followed) {
      Known *known = each.find(record);
      if (known != nullptr && known->state == State::marked) known->state = State::gone;
    }
    if (!into.implicit) return;
    kelpdb_enq_rec_move_write_cursor_internal(handle, 0, into.table, record, &err);
    ASSERT_EQ(err, 0u);
    into.move(record, State::present);
  }

  void create() {
    if (records.size() == kMostRecords) return;
    auto *record = make<kelp_record>(&record_type.record);
    record->ref_word = 1;
    record->objects[0] = reinterpret_cast<void *>(++last_key);
    records.push_back(record);
    put(record, any_table());
  }

  void left(kelp_record *record, Followed &from) {
    Known *known = from.find(record);
    if (known == nullptr || known->state != State::present) return;
    if (from.cursors.empty()) {
      from.forget(record);
    } else {
      from.move(record, State::gone);
    }
  }

  void drop_reference(kelp_record *record) {
    if (record->ref_word != 1) return;
    for (Followed &each : followed) each.forget(record);
    std::erase(records, record);
  }

  void remove(kelp_record *record) {
    Followed *from = table_of(record);
    if (from == nullptr) return;
    handle->collector_context = 1;
    kelp_test::delete_record(handle, 0, from->table, record, &err);
    handle->collector_context = 0;
    ASSERT_EQ(err, 0u);
    left(record, *from);
  }

  void end_by_hand(kelp_record *record) {
    if (table_of(record) != nullptr) return;
    drop_reference(record);
    kelp_test::destroy_record(handle, 0, record, &err);
    ASSERT_EQ(err, 0u);
  }

  void change(kelp_record *record) {
    Followed &wanted = any_table();
    const bool right = table_of(record) == &wanted;
    ASSERT_EQ(kelp_feed_record_changed(handle, wanted.table, record, nullptr), right ? 0 : 22);
    if (!right || (record->rec_flags & REC_PENDING_DESTROY) != 0) return;
    wanted.move(record, State::present);
  }

  void request(kelp_record *record) {
    Followed *from = table_of(record);
    if (from == nullptr) return;
    const bool again = (record->rec_flags & REC_PENDING_DESTROY) != 0;
    kelpdb_request_record_destroy(handle, 0, record, &err);
    ASSERT_EQ(err, 0u);
    if (!again) from->move(record, State::marked);
  }

  void open_cursor() {
    Followed &at = any_table();
    if (at.cursors.size() == 3) return;
    at.cursors.push_back({++last_cursor, 0, kelp_feed_cursor_open(handle, at.table, nullptr)});
  }

  void close_cursor() {
    Followed &at = any_table();
    if (at.cursors.empty()) return;
    const std::size_t which = below(at.cursors.size());
    kelp_feed_cursor_close(at.cursors[which].real);
    for (Known &each : at.known) each.shown.erase(at.cursors[which].number);
    at.cursors.erase(at.cursors.begin() + static_cast<std::ptrdiff_t>(which));
  }

  void look() {
    Followed &at = any_table();
    if (at.cursors.empty()) return;
    Cursor &cursor = at.cursors[below(at.cursors.size())];
    Known *first = nullptr;
    for (Known &each : at.known) {
      if (each.place > cursor.place && (first == nullptr || each.place < first->place)) {
        first = &each;
      }
    }
    kelp_feed_change shown;
    ASSERT_EQ(kelp_feed_cursor_next(cursor.real, &shown), first == nullptr ? 0 : 1);
    if (first == nullptr) return;
    cursor.place = first->place;
    ASSERT_EQ(shown.record, first->record);
    ASSERT_EQ(shown.table, at.table);
    if (first->state != State::present) {
      ASSERT_EQ(shown.kind, static_cast<std::uint32_t>(KELP_FEED_DESTROYED));
      first->shown.erase(cursor.number);
      return;
    }
    const bool fresh = first->shown.insert(cursor.number).second;
    ASSERT_EQ(shown.kind,
              static_cast<std::uint32_t>(fresh ? KELP_FEED_INSERTED : KELP_FEED_MODIFIED));
  }

  void run_collector() {
    std::uint32_t ended = 0;
    std::uint32_t waiting = 0;
    for (Followed &at : followed) {
      const std::uint64_t passed = at.passed();
      std::erase_if(at.known, [&](const Known &each) {
        return each.state == State::gone && each.place <= passed;
      });
      std::vector<Known> due;
      for (const Known &each : at.known) {
        if (each.state == State::marked && each.place > passed) ++waiting;
        if (each.state == State::marked && each.place <= passed) due.push_back(each);
      }
      for (const Known &each : due) {
        at.forget(each.record);
        drop_reference(each.record);
        ++ended;
      }
    }
    const kelp_collector_report report = collect();
    ASSERT_EQ(report.records_ended, ended);
    ASSERT_EQ(report.records_waiting, waiting);
  }

  void one_operation() {
    const std::uint64_t what = below(100);
    kelp_record *record = any_record();
    if (what < 15) return create();
    if (what < 35) return look();
    if (what < 38) return open_cursor();
    if (what < 40) return close_cursor();
    if (what < 44) return run_collector();
    if (record == nullptr) return;
    if (what < 58) return request(record);
    if (what < 70) return change(record);
    if (what < 82) return remove(record);
    if (what < 94 && record->record_table == nullptr) return put(record, any_table());
    if (what < 97) {
      ++record->ref_word;
    } else {
      end_by_hand(record);
    }
  }

  void end_all() {
    for (Followed &at : followed) {
      for (const Cursor &cursor : at.cursors) kelp_feed_cursor_close(cursor.real);
      at.cursors.clear();
    }
    run_collector();
    const std::vector<kelp_record *> left_over = records;
    for (kelp_record *record : left_over) {
      remove(record);
      record->ref_word = 1;
      end_by_hand(record);
    }
    for (Followed &at : followed) free_now(at.table);
    EXPECT_EQ(memory().live_allocations, 0u);
  }

  std::mt19937_64 random{20};
  std::vector<Followed> followed;
  std::vector<kelp_record *> records;
  std::uintptr_t last_key = 0;
  int last_cursor = 0;
};

TEST_F(FeedModelTest, MillionOperationsShowWhatTheModelSays) {
  for (int i = 0; i < 1000000; ++i) {
    one_operation();
    if (HasFatalFailure()) FAIL() << "in operation " << i;
  }
  end_all();
}

}  // namespace
