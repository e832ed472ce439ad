// The replication cache.
#include <algorithm>

#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;

class CacheTest : public DatabaseTest {
 protected:
  CacheTest() {
    kelp_database_options options;
    kelp_database_options_init(&options);
    options.replication_cache_entries = 3;
    reopen(options);
  }
  ~CacheTest() override {
    for (kelp_record *record : records) release(record);
  }

  kelp_record *record(std::size_t number) {
    while (records.size() <= number) records.push_back(make<kelp_record>());
    return records[number];
  }
  void enter(std::size_t number) {
    kelprepl_add_to_cache(handle, 0, &table, record(number), &err);
    EXPECT_EQ(err, 0u);
  }
  // The numbers of the entered records in order, with how often each was.
  std::string content() {
    std::string text;
    std::uint64_t position = 0;
    kelp_cache_entry entry;
    while (kelp_replication_cache_next(handle, &position, &entry) != 0) {
      EXPECT_EQ(entry.table, &table);
      EXPECT_EQ(entry.sequence, position);
      const auto place = std::find(records.begin(), records.end(), entry.record);
      text += std::to_string(place - records.begin()) + "x" + std::to_string(entry.times) + " ";
    }
    return text;
  }

  kelp_table table = {};
  std::vector<kelp_record *> records;
};

TEST_F(CacheTest, EachRecordStandsOnceAtItsLatestPlace) {
  EXPECT_EQ(content(), "");
  enter(0);
  enter(1);
  enter(0);
  EXPECT_EQ(content(), "1x1 0x2 ");
}

TEST_F(CacheTest, AReaderGoesOnWhereItWasWhateverHasGoneSince) {
  for (std::size_t i = 0; i < 3; ++i) enter(i);
  std::uint64_t position = 0;
  kelp_cache_entry entry;
  ASSERT_NE(kelp_replication_cache_next(handle, &position, &entry), 0);
  EXPECT_EQ(entry.record, records[0]);
  release(records[0]);
  release(records[1]);
  ASSERT_NE(kelp_replication_cache_next(handle, &position, &entry), 0);
  EXPECT_EQ(entry.record, records[2]);
  release(records[2]);
  records.clear();
  // What was read last has gone too, and its place is another's.
  enter(0);
  position = 0;
  ASSERT_NE(kelp_replication_cache_next(handle, &position, &entry), 0);
  EXPECT_EQ(entry.record, records[0]);
  EXPECT_EQ(kelp_replication_cache_next(handle, &position, &entry), 0);
  release(records[0]);
  records.clear();
  position = 0;
  EXPECT_EQ(kelp_replication_cache_next(handle, &position, &entry), 0);
  record(1);
  enter(0);
  enter(1);
  EXPECT_EQ(content(), "0x1 1x1 ");
}

TEST_F(CacheTest, OldestGivesWay) {
  for (std::size_t i = 0; i < 5; ++i) enter(i);
  EXPECT_EQ(content(), "2x1 3x1 4x1 ");
  EXPECT_EQ(kelp_replication_cache_dropped(handle), 2u);
}

TEST_F(CacheTest, ReaderGoesOnWhereItStopped) {
  enter(0);
  std::uint64_t position = 0;
  kelp_cache_entry entry;
  ASSERT_EQ(kelp_replication_cache_next(handle, &position, &entry), 1);
  EXPECT_EQ(kelp_replication_cache_next(handle, &position, &entry), 0);
  enter(1);
  ASSERT_EQ(kelp_replication_cache_next(handle, &position, &entry), 1);
  EXPECT_EQ(entry.record, records[1]);
  enter(0);
  ASSERT_EQ(kelp_replication_cache_next(handle, &position, &entry), 1);
  EXPECT_EQ(entry.record, records[0]);
}

TEST_F(CacheTest, FreedRecordIsForgotten) {
  enter(0);
  enter(1);
  release(records[0]);
  records[0] = make<kelp_record>();
  EXPECT_EQ(content(), "1x1 ");
}

TEST_F(CacheTest, RecordStandsThereWithItsLatestTable) {
  kelp_table other = {};
  kelprepl_add_to_cache(handle, 0, &other, record(0), &err);
  enter(0);
  EXPECT_EQ(content(), "0x2 ");
}

TEST_F(CacheTest, CapacityOfNoneTurnsItOff) {
  kelp_database_options options;
  kelp_database_options_init(&options);
  options.replication_cache_entries = 0;
  reopen(options);
  enter(0);
  EXPECT_EQ(content(), "");
}

TEST_F(CacheTest, NullArgumentsAreRefused) {
  kelprepl_add_to_cache(handle, 0, &table, nullptr, &err);
  EXPECT_EQ(err, 22u);
  err = 0;
  kelprepl_add_to_cache(handle, 0, nullptr, record(0), &err);
  EXPECT_EQ(err, 22u);
  kelprepl_add_to_cache(handle, 0, &table, record(0), &err);
  EXPECT_EQ(content(), "");
}

}  // namespace
