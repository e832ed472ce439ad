// The feed of a table in a store: what one process commits the cursors of others hear of, once, and
// nothing of what was undone; records wait for the cursors of living processes; who waits is woken;
// and handlers are told by the vft of the table.
#include <kelp/vft.h>
#include <signal.h>
#include <unistd.h>

#include <cstring>
#include <functional>
#include <memory>

#include "rows.hpp"

namespace {

// What the handlers of this program's process were told, one word for each call.
std::string heard;
std::uint32_t handler_fails = 0;

void hear(const std::string &what) { heard += (heard.empty() ? "" : " ") + what; }

using Row = tbl_ospfv2_unknown_sub_tlv_record;

std::string key_of(kelp_handle *handle, Row *record) {
  std::uint32_t err = 0;
  const ospfv2_unknown_sub_tlv *row =
      tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_get_field(handle, 0, record);
  return std::to_string(ospfv2_unknown_sub_tlv_type_get_value(handle, 0, row, &err));
}

const char *place(void *context) { return context == nullptr ? "" : static_cast<char *>(context); }

}  // namespace

#define HANDLER(name) ospf_harbor_oper_tbl_ospfv2_unknown_sub_tlv_table_record_##name##_handler

extern "C" uint64_t HANDLER(create)(kelp_handle *handle, uint32_t, void *context, Row *row,
                                    uint32_t *err) {
  hear(std::string("create") + place(context) + key_of(handle, row));
  *err = handler_fails;
  return 0;
}
extern "C" uint64_t HANDLER(modify)(kelp_handle *handle, uint32_t, void *context, Row *row,
                                    uint32_t *) {
  hear(std::string("modify") + place(context) + key_of(handle, row));
  return 0;
}
extern "C" uint64_t HANDLER(delete)(kelp_handle *handle, uint32_t, void *context, Row *row,
                                    uint32_t *) {
  hear(std::string("delete") + place(context) + key_of(handle, row));
  return 0;
}
extern "C" uint64_t HANDLER(delete_dm)(kelp_handle *handle, uint32_t, Row *row, uint32_t *) {
  hear("delete_dm" + key_of(handle, row));
  return 0;
}
extern "C" uint64_t HANDLER(grouping)(kelp_handle *, uint32_t, void *context, uint32_t *,
                                      void *table, void *group) {
  const auto *about = static_cast<const kelp_event_group *>(group);
  if (about->table != table || std::strcmp(place(context), "@") != 0) hear("wrong");
  hear(about->at_end != 0 ? std::to_string(about->events) + ")" : "(");
  return 0;
}
extern "C" uint64_t HANDLER(free)(kelp_handle *handle, uint32_t, void *record, uint32_t bulk,
                                  uint32_t *, void *context) {
  hear(std::string("free") + place(context) + std::to_string(bulk) +
       key_of(handle, static_cast<Row *>(record)));
  return 0;
}

namespace store_test {

namespace {

// A program whose rows are followed by cursors.
class Followed : public Rows {
 public:
  explicit Followed(const std::string &path) : Rows(path) {}
  ~Followed() { kelp_feed_cursor_close(cursor); }

  kelp_table *table() {
    std::uint32_t err = 0;
    return reinterpret_cast<kelp_table *>(
        tbl_ospfv2_unknown_sub_tlv_table_open(handle, 0, "rows", 1, &err));
  }
  kelp_record *record(std::uint16_t key) {
    std::uint32_t err = 0;
    auto *rows = reinterpret_cast<tbl_ospfv2_unknown_sub_tlv_table *>(table());
    auto *at =
        tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_type_get_first(handle, 0, rows, &err);
    while (at != nullptr && err == 0 && key_of(handle, at) != std::to_string(key)) {
      at = tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_type_get_next(handle, 0, rows, at,
                                                                           &err);
    }
    return reinterpret_cast<kelp_record *>(at);
  }
  // Puts a row, and says so when it was there.
  std::uint32_t set(std::uint16_t key, const std::string &bytes) {
    kelp_record *known = record(key);
    if (const std::uint32_t err = put(key, bytes)) return err;
    return known == nullptr ? 0
                            : static_cast<std::uint32_t>(
                                  kelp_feed_record_changed(handle, table(), known, &error));
  }
  std::uint32_t request(std::uint16_t key) {
    std::uint32_t err = 0;
    tbl_ospfv2_unknown_sub_tlv_request_record_destroy(
        handle, 0, reinterpret_cast<tbl_ospfv2_unknown_sub_tlv_table *>(table()),
        reinterpret_cast<Row *>(record(key)), &err);
    return err;
  }
  bool follow() {
    lock_read();
    cursor = kelp_feed_cursor_open(handle, table(), &error);
    kelp_unlock(handle, nullptr);
    return cursor != nullptr;
  }
  // What the cursor is shown: + for inserted, ~ for modified, - for destroyed.
  std::string shown() {
    lock_read();
    std::string all = shown_now();
    unlock();
    return all;
  }
  std::string shown_now() {
    std::string all;
    kelp_feed_change change;
    while (all.size() < 1000 && kelp_feed_cursor_next(cursor, &change) != 0) {
      all += " +~-"[change.kind];
      all += key_of(handle, reinterpret_cast<Row *>(change.record));
    }
    return all;
  }
  // What the handlers are told.
  std::string told(kelp_events_report *report = nullptr) {
    heard.clear();
    char context[] = "@";
    lock_read();
    code = kelp_events_dispatch(handle, cursor, context, report, &error);
    kelp_unlock(handle, nullptr);
    return heard;
  }
  // One transaction of another process.
  static int commit(const std::string &path, const std::function<std::uint32_t(Followed &)> &work,
                    bool rolls_back = false) {
    return run([&]() -> int {
      Followed other(path);
      if (other.lock_write() != 0) return 101;
      const std::uint32_t err = work(other);
      if (err != 0) return static_cast<int>(err);
      return rolls_back ? other.rollback() : other.unlock();
    });
  }

  kelp_feed_cursor *cursor = nullptr;
  std::int32_t code = 0;
};

// A process that has work done by processes of its own, for tests that have the store open
// themselves: a child of theirs could not open it.
class Others {
 public:
  using Work = std::uint32_t (*)(Followed &);

  explicit Others(const std::string &path) {
    if (pipe(asked_) != 0 || pipe(answered_) != 0) std::abort();
    process_ = start([&] {
      close(asked_[1]);
      Request request{};
      while (read(asked_[0], &request, sizeof request) == sizeof request) {
        const int result = request.dies ? die(path, request.work)
                                        : Followed::commit(path, request.work, request.rolls_back);
        if (write(answered_[1], &result, sizeof result) != sizeof result) return 1;
      }
      return 0;
    });
    close(asked_[0]);
  }
  ~Others() {
    close(asked_[1]);
    wait_for(process_);
    close(answered_[0]);
    close(answered_[1]);
  }

  struct Request {
    Work work;
    bool rolls_back;
    bool dies;
  };
  int ask(const Request &request) {
    int result = 0;
    if (write(asked_[1], &request, sizeof request) != sizeof request) return 200;
    return read(answered_[0], &result, sizeof result) == sizeof result ? result : 201;
  }

 private:
  // Ends within its transaction.
  static int die(const std::string &path, Work work) {
    return run([&]() -> int {
      Followed other(path);
      other.lock_write();
      _exit(static_cast<int>(work(other)));
    });
  }

  int asked_[2] = {-1, -1};
  int answered_[2] = {-1, -1};
  pid_t process_ = 0;
};

class StoreFeed : public testing::Test {
 protected:
  StoreFeed() : path(folder.file()) {
    EXPECT_EQ(Followed::commit(path,
                               [](Followed &other) -> std::uint32_t {
                                 if (const auto err = other.put(1, "one")) return err;
                                 const auto code = kelp_table_enable_cursors(
                                     other.handle, other.table(), 1, &other.error);
                                 return code != 0 ? 102 : other.put(2, "two");
                               }),
              0);
    others = std::make_unique<Others>(path);
  }
  ~StoreFeed() override {
    EXPECT_EQ(run([&] {
                const std::string findings = Rows(path).check();
                std::fputs(findings.c_str(), stderr);
                return findings.empty() ? 0 : 1;
              }),
              0);
  }
  // One transaction of another process: committed, undone, or ended by its death.
  int commit(Others::Work work) { return others->ask({work, false, false}); }
  int undo(Others::Work work) { return others->ask({work, true, false}); }
  int die_in(Others::Work work) { return others->ask({work, false, true}); }

  const Folder folder;
  const std::string path;
  std::unique_ptr<Others> others;
};

TEST_F(StoreFeed, ACursorHearsOfWhatOthersCommit) {
  Followed rows(path);
  ASSERT_TRUE(rows.follow()) << rows.error.text;
  EXPECT_EQ(rows.shown(), "+2");  // the first row was there before the feed
  EXPECT_EQ(rows.shown(), "");
  EXPECT_EQ(commit([](Followed &other) { return other.put(3, "three"); }), 0);
  EXPECT_EQ(commit([](Followed &other) { return other.set(2, "changed"); }), 0);
  EXPECT_EQ(rows.shown(), "+3~2");
  EXPECT_EQ(commit([](Followed &other) { return other.set(3, "a") | other.set(3, "b"); }), 0);
  EXPECT_EQ(commit([](Followed &other) { return other.request(2); }), 0);
  EXPECT_EQ(rows.shown(), "~3-2");
}

TEST_F(StoreFeed, ARollbackTakesBackWhatTheFeedHeard) {
  Followed rows(path);
  ASSERT_TRUE(rows.follow());
  EXPECT_EQ(rows.shown(), "+2");
  EXPECT_EQ(undo([](Followed &other) {
              return other.put(3, "three") | other.set(2, "changed") | other.request(2);
            }),
            0);
  EXPECT_EQ(rows.shown(), "");
  EXPECT_EQ(commit([](Followed &other) { return other.put(4, "four"); }), 0);
  EXPECT_EQ(rows.shown(), "+4");
}

TEST_F(StoreFeed, ADeadWritersChangesAreNotHeardOf) {
  Followed rows(path);
  ASSERT_TRUE(rows.follow());
  EXPECT_EQ(rows.shown(), "+2");
  EXPECT_EQ(die_in([](Followed &other) { return other.put(3, "three") | other.set(2, "x"); }), 0);
  EXPECT_EQ(rows.shown(), "");
  EXPECT_EQ(commit([](Followed &other) { return other.set(2, "again"); }), 0);
  EXPECT_EQ(rows.shown(), "~2");
}

// A cursor that moves within a transaction goes back with it, and so does one that it opened.
TEST_F(StoreFeed, ARollbackTakesTheCursorsBackToo) {
  Followed rows(path);
  ASSERT_TRUE(rows.follow());
  EXPECT_EQ(rows.shown(), "+2");
  ASSERT_EQ(rows.lock_write(), 0);
  EXPECT_EQ(rows.set(2, "x") | rows.put(3, "y"), 0U);
  EXPECT_EQ(rows.shown_now(), "~2+3");
  Followed *second = &rows;
  kelp_feed_cursor *first = rows.cursor;
  second->cursor = kelp_feed_cursor_open(rows.handle, rows.table(), &rows.error);
  EXPECT_EQ(second->shown_now(), "+2+3");
  EXPECT_EQ(rows.rollback(), 0);
  EXPECT_EQ(rows.shown(), "+2");
  EXPECT_EQ(commit([](Followed &other) { return other.put(5, "five") | other.set(2, "z"); }), 0);
  EXPECT_EQ(rows.shown(), "+5~2");
  kelp_feed_cursor_close(rows.cursor);
  rows.cursor = first;
  EXPECT_EQ(rows.shown(), "+5~2");
}

TEST_F(StoreFeed, TheMarkOfATableIsPartOfTheTransaction) {
  const Folder other_folder;
  EXPECT_EQ(Followed::commit(
                other_folder.file(),
                [](Followed &other) -> std::uint32_t {
                  if (other.put(1, "one") != 0) return 103;
                  return kelp_table_enable_cursors(other.handle, other.table(), 1, nullptr) != 0;
                },
                true),
            0);
  Followed rows(other_folder.file());
  ASSERT_EQ(rows.lock_write(), 0);
  EXPECT_EQ(rows.put(1, "one"), 0U);
  std::uint32_t err = 0;
  EXPECT_EQ(kelpdb_table_are_cursors_enabled(rows.handle, 0, rows.table(), &err), 0U);
  EXPECT_EQ(rows.unlock(), 0);
  EXPECT_EQ(rows.lock_read(), 0);
  EXPECT_EQ(kelp_table_enable_cursors(rows.handle, rows.table(), 1, &rows.error), 1);
  EXPECT_NE(std::strstr(rows.error.text, "write lock"), nullptr);
  rows.unlock();
}

std::uint32_t collect(Followed &other, std::uint32_t ended, std::uint32_t waiting) {
  kelp_collector_report report;
  if (kelp_collector_run(other.handle, &report, &other.error) != 0) return 104;
  return report.records_ended == ended && report.records_waiting == waiting
             ? 0
             : 50 + report.records_ended * 10 + report.records_waiting;
}

// Whoever runs the collector ends what others asked to end, when every cursor has passed it.
TEST_F(StoreFeed, RecordsWaitInTheFileForEveryCursor) {
  {
    Followed rows(path);
    ASSERT_TRUE(rows.follow());
    EXPECT_EQ(commit([](Followed &other) { return other.request(2); }), 0);
    EXPECT_EQ(commit([](Followed &other) { return collect(other, 0, 1); }), 0);
    EXPECT_EQ(rows.shown(), "-2");
    EXPECT_EQ(commit([](Followed &other) { return collect(other, 1, 0); }), 0);
  }
  EXPECT_EQ(verify(path, {Model{{1, "one"}}}), "");
}

// The slot of one of them goes to the process that comes next; the other stays that of a dead one.
TEST_F(StoreFeed, DeadProcessesCursorsHoldNothingBack) {
  for (const bool killed : {true, false}) {
    Signal ready;
    std::vector<pid_t> readers;
    for (int i = 0; i < 2; ++i) {
      readers.push_back(start([&] {
        auto *rows = new Followed(path);  // nobody closes its cursor
        const bool follows = rows->follow();
        ready.give();
        if (killed && follows) pause();
        _exit(follows ? 7 : 1);
        return 0;
      }));
      ready.take();
    }
    for (const pid_t reader : readers) {
      if (killed) kill(reader, SIGKILL);
      EXPECT_EQ(wait_for(reader), killed ? 1000 + SIGKILL : 7);
    }
    const std::uint16_t key = killed ? 2 : 3;
    const auto change = [&](Followed &other) { return other.set(key, "x") | other.request(key); };
    EXPECT_EQ(Followed::commit(path, change), 0);
    EXPECT_EQ(commit([](Followed &other) { return collect(other, 1, 0); }), 0) << killed;
  }
}

TEST_F(StoreFeed, AClosedStoreTakesItsCursorsAlong) {
  Followed rows(path);
  ASSERT_TRUE(rows.follow());
  kelp_feed_cursor *left = rows.cursor;
  kelp_handle_destroy(rows.handle);
  rows.handle = nullptr;
  EXPECT_EQ(kelp_database_close(rows.database, nullptr), 0);
  rows.database = nullptr;
  kelp_feed_change change;
  EXPECT_EQ(kelp_feed_cursor_next(left, &change), 0);
  kelp_feed_cursor_close(left);
  rows.cursor = nullptr;
  EXPECT_EQ(commit([](Followed &other) { return other.request(2); }), 0);
  EXPECT_EQ(commit([](Followed &other) { return collect(other, 1, 0); }), 0);
}

TEST_F(StoreFeed, ManyProcessesHaveCursorsUpToALimit) {
  Signal ready;
  Signal go;
  std::vector<pid_t> readers;
  for (int i = 0; i < 8; ++i) {
    readers.push_back(start([&]() -> int {
      Followed rows(path);
      std::vector<kelp_feed_cursor *> cursors;
      rows.lock_read();
      for (int n = 0; n < 8; ++n) {
        cursors.push_back(kelp_feed_cursor_open(rows.handle, rows.table(), &rows.error));
      }
      rows.unlock();
      ready.give(cursors.back() != nullptr ? '+' : '-');
      go.take();
      // Each is shown the same, whoever else looks.
      int wrong = 0;
      for (kelp_feed_cursor *cursor : cursors) {
        rows.cursor = cursor;
        if (rows.shown() != "+2") ++wrong;
        kelp_feed_cursor_close(cursor);
      }
      rows.cursor = nullptr;
      return wrong;
    }));
  }
  for (std::size_t i = 0; i < readers.size(); ++i) EXPECT_EQ(ready.take(), '+');
  Followed rows(path);
  EXPECT_FALSE(rows.follow());
  EXPECT_EQ(rows.error.code, 11);
  for (std::size_t i = 0; i < readers.size(); ++i) go.give();
  for (const pid_t reader : readers) EXPECT_EQ(wait_for(reader), 0);
  EXPECT_TRUE(rows.follow());
}

TEST_F(StoreFeed, ANewCursorKnowsNothingOfTheOneBefore) {
  Followed rows(path);
  ASSERT_TRUE(rows.follow());
  EXPECT_EQ(rows.shown(), "+2");
  EXPECT_EQ(commit([](Followed &other) { return other.set(2, "x"); }), 0);
  kelp_feed_cursor_close(rows.cursor);
  ASSERT_TRUE(rows.follow());
  EXPECT_EQ(rows.shown(), "+2");
}

TEST_F(StoreFeed, WhoWaitsIsWokenByTheCommit) {
  Signal ready;
  const pid_t reader = start([&]() -> int {
    Followed rows(path);
    if (!rows.follow() || rows.shown() != "+2") return 1;
    if (kelp_feed_wait(rows.handle, rows.cursor, 0, &rows.error) != 110) return 2;
    if (kelp_feed_wait(rows.handle, nullptr, 0, &rows.error) != 110) return 3;
    ready.give();
    alarm(20);
    if (kelp_feed_wait(rows.handle, rows.cursor, UINT32_MAX, &rows.error) != 0) return 4;
    if (kelp_feed_wait(rows.handle, nullptr, UINT32_MAX, &rows.error) != 0) return 5;
    return rows.shown() == "~2" ? 0 : 6;
  });
  EXPECT_EQ(ready.take(), '.');
  usleep(20000);  // so that it sleeps by then; it hears of it even when it does not
  EXPECT_EQ(undo([](Followed &other) { return other.set(2, "undone"); }), 0);
  EXPECT_EQ(commit([](Followed &other) { return other.set(2, "x"); }), 0);
  EXPECT_EQ(wait_for(reader), 0);
}

TEST_F(StoreFeed, WaitingHoldsNoLockAndNamesWhatIsWrong) {
  Followed rows(path);
  ASSERT_TRUE(rows.follow());
  rows.lock_read();
  EXPECT_EQ(kelp_feed_wait(rows.handle, rows.cursor, 0, &rows.error), 35);
  rows.unlock();
  EXPECT_EQ(kelp_feed_wait(nullptr, rows.cursor, 0, &rows.error), 22);
  EXPECT_EQ(kelp_feed_wait(rows.handle, rows.cursor, 0, &rows.error), 0);
  rows.shown();
  EXPECT_EQ(kelp_feed_wait(rows.handle, rows.cursor, 30, &rows.error), 110);
  EXPECT_NE(std::strstr(rows.error.text, "within 30 ms"), nullptr);
  kelp_feed_change change;
  EXPECT_EQ(kelp_feed_cursor_next(rows.cursor, &change), 0);  // without a lock
}

// --- events ---

TEST_F(StoreFeed, HandlersAreToldOfWhatOthersCommitted) {
  Followed rows(path);
  ASSERT_TRUE(rows.follow());
  EXPECT_EQ(rows.told(), "( create@2 1)");
  EXPECT_EQ(rows.told(), "");
  EXPECT_EQ(commit([](Followed &other) { return other.put(3, "3") | other.set(2, "x"); }), 0);
  EXPECT_EQ(commit([](Followed &other) { return other.put(4, "four"); }), 0);
  EXPECT_EQ(rows.told(), "( create@3 modify@2 2) ( create@4 1)");
  EXPECT_EQ(commit([](Followed &other) { return other.request(3) | other.set(4, "x"); }), 0);
  kelp_events_report report;
  EXPECT_EQ(rows.told(&report), "( delete@3 modify@4 2) free@03");
  EXPECT_EQ(report.deleted * 100 + report.modified * 10 + report.freed, 111U);
  EXPECT_EQ(report.created + report.failures, 0U);
  EXPECT_EQ(report.groups, 1U);
}

TEST_F(StoreFeed, HandlersAreNotToldOfWhatTheirOwnHandleDid) {
  Followed rows(path);
  ASSERT_TRUE(rows.follow());
  EXPECT_EQ(rows.told(), "( create@2 1)");
  ASSERT_EQ(rows.lock_write(), 0);
  EXPECT_EQ(rows.set(2, "mine") | rows.put(3, "mine"), 0U);
  ASSERT_EQ(rows.unlock(), 0);
  EXPECT_EQ(rows.told(), "");
  // What another did before that is told, though the latest change is its own.
  EXPECT_EQ(commit([](Followed &other) { return other.set(3, "theirs"); }), 0);
  ASSERT_EQ(rows.lock_write(), 0);
  EXPECT_EQ(rows.set(3, "mine again"), 0U);
  ASSERT_EQ(rows.unlock(), 0);
  EXPECT_EQ(rows.told(), "( modify@3 1)");
}

TEST_F(StoreFeed, WhatABulkTransferBringsAndTakesHasEventsOfItsOwn) {
  Followed rows(path);
  ASSERT_TRUE(rows.follow());
  EXPECT_EQ(rows.told(), "( create@2 1)");
  EXPECT_EQ(commit([](Followed &other) {
              kelp_handle_set_bulk_transfer(other.handle, 1);
              return other.put(3, "3") | other.request(2);
            }),
            0);
  // Without a create_dm handler create is called, with no context.
  EXPECT_EQ(rows.told(), "( create3 delete_dm2 2) free@12");
}

TEST_F(StoreFeed, ARowThatCameAndWentIsNotTold) {
  Followed rows(path);
  ASSERT_TRUE(rows.follow());
  EXPECT_EQ(rows.told(), "( create@2 1)");
  EXPECT_EQ(commit([](Followed &other) { return other.put(3, "3"); }), 0);
  EXPECT_EQ(commit([](Followed &other) { return other.request(3); }), 0);
  EXPECT_EQ(rows.told(), "");
}

TEST_F(StoreFeed, AHandlersFailureIsToldAndStopsNobody) {
  Followed rows(path);
  ASSERT_TRUE(rows.follow());
  EXPECT_EQ(commit([](Followed &other) { return other.put(3, "3"); }), 0);
  handler_fails = 5;
  kelp_events_report report;
  EXPECT_EQ(rows.told(&report), "( create@2 1) ( create@3 1)");
  handler_fails = 0;
  EXPECT_EQ(rows.code, 5);
  EXPECT_EQ(report.failures, 2U);
  EXPECT_NE(std::strstr(rows.error.text, "2 handlers failed"), nullptr);
}

}  // namespace

}  // namespace store_test
