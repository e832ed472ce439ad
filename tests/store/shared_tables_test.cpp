// What holds of the tables of a shared database, each step in a process of its own.
#include <signal.h>

#include "rows.hpp"

namespace store_test {

namespace {

kelp_table *plain(tbl_ospf_area_table *table) { return reinterpret_cast<kelp_table *>(table); }

// A program with a store and a handle, and areas in it.
struct Areas : Rows {
  using Rows::Rows;

  tbl_ospf_area_table *open(bool read_only) {
    return tbl_ospf_area_table_open(handle, 0, "areas", read_only ? 1 : 0, &err);
  }
  std::uint32_t insert(std::uint32_t id) {
    tbl_ospf_area_record *record = tbl_ospf_area_create_record(handle, 0, &err);
    ospf_area *area = ospf_area_create(handle, 0);
    ospf_area_area_id_set_value(handle, 0, area, id, &err);
    tbl_ospf_area_ospf_area_set_field(handle, 0, record, area);
    tbl_ospf_area_insert(handle, 0, open(true), record, &err);
    return err;
  }
  tbl_ospf_area_record *first() {
    return tbl_ospf_area_ospf_area_area_id_get_first(handle, 0, open(true), &err);
  }
  kelp_collector_report collect() {
    kelp_collector_report report;
    kelp_collector_run(handle, &report, nullptr);
    return report;
  }
  std::uint64_t blocks() const {
    kelp_memory_statistics memory;
    kelp_database_memory(database, &memory);
    return memory.live_allocations;
  }

  std::uint32_t err = 0;
};

// A process that has a cursor on the areas until it is ended.
class Follower {
 public:
  explicit Follower(const std::string &file) {
    process_ = start([&] {
      Areas areas(file);
      areas.lock_read();
      kelp_feed_cursor *cursor =
          kelp_feed_cursor_open(areas.handle, plain(areas.open(true)), nullptr);
      areas.unlock();
      follows_.give(cursor != nullptr ? 'y' : 'n');
      ends_.take();
      kelp_feed_cursor_close(cursor);
      return 0;
    });
    EXPECT_EQ(follows_.take(), 'y');
  }
  ~Follower() { end(); }
  void end() {
    if (process_ == 0) return;
    ends_.give();
    EXPECT_EQ(wait_for(process_), 0);
    process_ = 0;
  }

 private:
  Signal follows_;
  Signal ends_;
  pid_t process_ = 0;
};

class StoreTables : public testing::Test {
 protected:
  // A transaction of another process; 0, or what it gives when it is not as it must be.
  int writing(const std::function<int(Areas &)> &work) const {
    return run([&] {
      Areas areas(folder_.file());
      if (areas.lock_write() != 0) return 100;
      const int wrong = work(areas);
      return areas.unlock() != 0 ? 101 : wrong;
    });
  }
  int reading(const std::function<int(Areas &)> &work) const {
    return run([&] {
      Areas areas(folder_.file());
      if (areas.lock_read() != 0) return 100;
      const int wrong = work(areas);
      return areas.unlock() != 0 ? 101 : wrong;
    });
  }
  void make_areas(std::initializer_list<std::uint32_t> ids = {}, bool followed = false) const {
    ASSERT_EQ(writing([&](Areas &areas) {
                tbl_ospf_area_table *table = areas.open(false);
                if (followed) {
                  kelp_table_enable_cursors(areas.handle, plain(table), 1, nullptr);
                }
                for (const std::uint32_t id : ids) areas.insert(id);
                return static_cast<int>(areas.err);
              }),
              0);
  }

  const Folder folder_{Folder::in_memory()};
};

TEST_F(StoreTables, NobodyMakesOneWithoutTheWriteLock) {
  for (const bool locked : {false, true}) {
    EXPECT_EQ(run([&] {
                Areas areas(folder_.file());
                if (locked) areas.lock_read();
                areas.open(false);
                return 0;
              }),
              1000 + SIGABRT);
  }
  EXPECT_EQ(reading([](Areas &areas) { return areas.open(true) != nullptr || areas.err != 0; }), 0);
}

TEST_F(StoreTables, AreOneObjectForAllWhoOpenThem) {
  make_areas();
  // Of the address what fits into a status.
  const auto part_of = [](const kelp_table *table) {
    return static_cast<int>(reinterpret_cast<std::uintptr_t>(table) >> 4 & 0x3f) + 1;
  };
  const int expected = reading([&](Areas &areas) { return part_of(plain(areas.open(true))); });
  EXPECT_EQ(writing([&](Areas &areas) {
              const std::uint64_t blocks = areas.blocks();
              const kelp_table *table = plain(areas.open(false));
              return areas.blocks() == blocks ? part_of(table) : 99;
            }),
            expected);
}

TEST_F(StoreTables, AFreeOutsideTheCollectorTakesTheNameAndLeavesTheRest) {
  make_areas();
  EXPECT_EQ(writing([](Areas &areas) {
              const std::uint64_t blocks = areas.blocks();
              tbl_ospf_area_table_free(areas.handle, 0, areas.open(true), &areas.err);
              if (areas.err != 0 || areas.blocks() != blocks) return 1;
              return areas.open(true) == nullptr ? 0 : 2;
            }),
            0);
  EXPECT_EQ(reading([](Areas &areas) { return areas.open(true) != nullptr || areas.err != 0; }), 0);
  EXPECT_EQ(writing([](Areas &areas) {
              const std::uint64_t blocks = areas.blocks();
              if (areas.collect().tables_freed != 1 || areas.blocks() >= blocks) return 1;
              return areas.collect().tables_freed == 0 ? 0 : 2;
            }),
            0);
  EXPECT_EQ(Areas(folder_.file()).check(), "");
}

TEST_F(StoreTables, ARequestedFreeWaitsForTheCursorsOfOtherProcesses) {
  make_areas({}, true);
  Follower follower(folder_.file());
  EXPECT_EQ(writing([](Areas &areas) {
              tbl_ospf_area_request_table_free(areas.handle, 0, areas.open(true), &areas.err);
              return static_cast<int>(areas.err);
            }),
            0);
  // The name can be another's at once.
  make_areas({7});
  EXPECT_EQ(writing([](Areas &areas) {
              const kelp_collector_report report = areas.collect();
              return report.tables_freed == 0 && report.tables_waiting == 1 ? 0 : 1;
            }),
            0);
  follower.end();
  EXPECT_EQ(writing([](Areas &areas) {
              const kelp_collector_report report = areas.collect();
              return report.tables_freed == 1 && report.tables_waiting == 0 ? 0 : 1;
            }),
            0);
  EXPECT_EQ(reading([](Areas &areas) { return areas.first() == nullptr ? 1 : 0; }), 0);
  EXPECT_EQ(Areas(folder_.file()).check(), "");
}

TEST_F(StoreTables, IdsGoOnFromTheHighestOfAnyProcess) {
  const auto open_by_id = [&](std::uint64_t id) {
    return writing([&](Areas &areas) {
      auto *table = tbl_ospf_area_table_open_by_id(areas.handle, 0, id, 0, &areas.err);
      return table == nullptr || plain(table)->table_id != id ? 1 : 0;
    });
  };
  const auto next_is = [&](std::uint64_t id) {
    return writing([&](Areas &areas) {
      auto *table = tbl_ospf_area_table_open_auto_id(areas.handle, 0, 0, &areas.err);
      return table == nullptr || plain(table)->table_id != id ? 1 : 0;
    });
  };
  EXPECT_EQ(open_by_id(10), 0);
  EXPECT_EQ(next_is(11), 0);
  EXPECT_EQ(open_by_id(2), 0);
  // What is freed, by the collector of a third process, is not given out again.
  EXPECT_EQ(writing([](Areas &areas) {
              auto *table = tbl_ospf_area_table_open_by_id(areas.handle, 0, 11, 1, &areas.err);
              tbl_ospf_area_table_free(areas.handle, 0, table, &areas.err);
              return static_cast<int>(areas.err);
            }),
            0);
  EXPECT_EQ(writing([](Areas &areas) { return areas.collect().tables_freed == 1 ? 0 : 1; }), 0);
  EXPECT_EQ(next_is(13), 0);
}

TEST_F(StoreTables, AKeyThatAnotherProcessPutInIsTaken) {
  make_areas({7});
  EXPECT_EQ(writing([](Areas &areas) {
              areas.handle->quiet_insert = 1;
              if (areas.insert(7) != 17) return 1;
              areas.err = 0;
              return plain(areas.open(true))->record_count == 1 ? 0 : 2;
            }),
            0);
}

TEST_F(StoreTables, WithCursorsOnlyTheCollectorDeletes) {
  make_areas({7}, true);
  Follower follower(folder_.file());
  EXPECT_EQ(writing([](Areas &areas) {
              tbl_ospf_area_delete(areas.handle, 0, areas.open(true), areas.first(), &areas.err);
              if (areas.err != 22) return 1;
              areas.err = 0;
              return areas.first() != nullptr ? 0 : 2;
            }),
            0);
  EXPECT_EQ(writing([](Areas &areas) {
              tbl_ospf_area_request_record_destroy(areas.handle, 0, areas.open(true), areas.first(),
                                                   &areas.err);
              return static_cast<int>(areas.err);
            }),
            0);
  const auto waits = [](Areas &areas) {
    const kelp_table *table = plain(areas.open(true));
    return table->record_count == 1 && table->pending_destroy_count == 1 ? 0 : 1;
  };
  EXPECT_EQ(reading(waits), 0);
  EXPECT_EQ(
      writing([&](Areas &areas) { return areas.collect().records_ended == 0 ? waits(areas) : 2; }),
      0);
  follower.end();
  EXPECT_EQ(writing([](Areas &areas) { return areas.collect().records_ended == 1 ? 0 : 1; }), 0);
  EXPECT_EQ(reading([](Areas &areas) {
              const kelp_table *table = plain(areas.open(true));
              return table->record_count == 0 && table->pending_destroy_count == 0 ? 0 : 1;
            }),
            0);
  EXPECT_EQ(Areas(folder_.file()).check(), "");
}

TEST_F(StoreTables, WithoutCursorsNothingIsPutOff) {
  make_areas({7});
  EXPECT_EQ(writing([](Areas &areas) {
              tbl_ospf_area_request_record_destroy(areas.handle, 0, areas.open(true), areas.first(),
                                                   &areas.err);
              return areas.err == 22 ? 0 : 1;
            }),
            0);
  EXPECT_EQ(writing([](Areas &areas) {
              tbl_ospf_area_delete_cr(areas.handle, areas.open(true), areas.first(), 1);
              return static_cast<int>(areas.handle->cr_err);
            }),
            0);
  EXPECT_EQ(reading([](Areas &areas) { return areas.first() == nullptr ? 0 : 1; }), 0);
}

}  // namespace

}  // namespace store_test
