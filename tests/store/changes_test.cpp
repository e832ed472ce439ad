// What a store tells of the blocks that commits changed: whoever committed, nothing of what was
// undone to who looks between, and that it does not know when too much came.
#include <kelp/changes.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "rows.hpp"

namespace {

using namespace store_test;

struct Change {
  const void *block;
  bool freed;
  bool operator==(const Change &) const = default;
};
using Changes = std::vector<Change>;

void hear(void *context, const void *block, uint32_t freed) {
  static_cast<Changes *>(context)->push_back({block, freed != 0});
}

// Work of another process, which was there before this one opened the store.
class Later {
 public:
  explicit Later(const std::function<int()> &work) {
    process_ = start([&] { return go_.take() == 0 ? 0 : work(); });
  }
  ~Later() {
    if (process_ == 0) return;
    kill(process_, SIGKILL);
    wait_for(process_);
  }
  int go() {
    go_.give();
    return wait_for(std::exchange(process_, 0));
  }

 private:
  Signal go_;
  pid_t process_ = 0;
};

class StoreChanges : public testing::Test {
 protected:
  // What is told under a lock, or the code.
  std::int32_t look(Changes &changes) {
    changes.clear();
    if (rows_.lock_read() != 0) return -1;
    const std::int32_t code =
        kelp_changes_since(rows_.handle, &place_, hear, &changes, &rows_.error);
    rows_.unlock();
    return code;
  }
  // The blocks of the rows' records, by their keys.
  std::map<std::uint16_t, std::vector<const void *>> blocks() {
    std::map<std::uint16_t, std::vector<const void *>> found;
    rows_.lock_read();
    std::uint32_t err = 0;
    auto *table = tbl_ospfv2_unknown_sub_tlv_table_open(rows_.handle, 0, "rows", 1, &err);
    auto *record = tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_type_get_first(rows_.handle, 0,
                                                                                    table, &err);
    while (record != nullptr && err == 0) {
      Changes told;
      EXPECT_EQ(kelp_record_blocks(rows_.handle, reinterpret_cast<kelp_record *>(record), hear,
                                   &told, &rows_.error),
                0)
          << rows_.error.text;
      const ospfv2_unknown_sub_tlv *row =
          tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_get_field(rows_.handle, 0, record);
      auto &own = found[ospfv2_unknown_sub_tlv_type_get_value(rows_.handle, 0, row, &err)];
      for (const Change &block : told) own.push_back(block.block);
      record = tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_type_get_next(rows_.handle, 0,
                                                                               table, record, &err);
    }
    rows_.unlock();
    return found;
  }
  static bool tells(const Changes &changes, const void *block, bool freed) {
    return std::count(changes.begin(), changes.end(), Change{block, freed}) != 0;
  }

  Folder folder_;
  Later puts_{[this] { return Rows(folder_.file()).commit({{2, "three"}}); }};
  Later erases_{[this] {
    Rows rows(folder_.file());
    if (rows.lock_write() != 0 || rows.erase(3) != 0) return 1;
    return rows.unlock();
  }};
  Later dies_{[this]() -> int {
    Rows rows(folder_.file());
    _exit(rows.lock_write() != 0 || rows.put(1, "other") != 0 ? 1 : 0);
  }};
  Rows rows_{folder_.file()};
  uint64_t place_ = 0;
};

TEST_F(StoreChanges, AreToldOfTheRowsThatChangedAlone) {
  ASSERT_EQ(rows_.commit({{1, "one"}, {2, "two"}, {3, some_bytes(3, 1000)}}), 0);
  Changes changes;
  EXPECT_EQ(look(changes), 75);
  EXPECT_EQ(look(changes), 0);
  EXPECT_EQ(changes, Changes{});
  const auto before = blocks();
  ASSERT_EQ(before.size(), 3u);
  // A record, its object and its octets.
  for (const auto &[key, own] : before) EXPECT_EQ(own.size(), 3u) << key;
  EXPECT_EQ(puts_.go(), 0);
  EXPECT_EQ(look(changes), 0);
  EXPECT_TRUE(tells(changes, before.at(2)[1], false));
  for (const void *block : before.at(1)) {
    EXPECT_FALSE(tells(changes, block, false) || tells(changes, block, true));
  }
  EXPECT_EQ(erases_.go(), 0);
  EXPECT_EQ(look(changes), 0);
  for (const void *block : before.at(3)) EXPECT_TRUE(tells(changes, block, true));
}

TEST_F(StoreChanges, OfWhatWasUndoneAreNotTold) {
  ASSERT_EQ(rows_.commit({{1, "one"}, {2, "two"}}), 0);
  Changes changes;
  look(changes);
  ASSERT_EQ(rows_.lock_write(), 0);
  rows_.put(1, "other");
  rows_.erase(2);
  ASSERT_EQ(rows_.rollback(), 0);
  EXPECT_EQ(dies_.go(), 0);
  EXPECT_EQ(look(changes), 0);
  EXPECT_EQ(changes, Changes{});
  ASSERT_EQ(rows_.commit({{1, "another"}}), 0);
  EXPECT_EQ(look(changes), 0);
  EXPECT_NE(changes, Changes{});
}

// Also when the many were undone, since they have taken the places of others.
TEST_F(StoreChanges, ThatAreTooManyAreNotKnown) {
  ASSERT_EQ(rows_.commit({{1, "one"}}), 0);
  Changes changes;
  look(changes);
  const auto many = [&] {
    for (int times = 0; times < 40'000; ++times) {
      ASSERT_EQ(rows_.put(2, "two"), 0u);
      ASSERT_EQ(rows_.erase(2), 0u);
    }
  };
  ASSERT_EQ(rows_.lock_write(), 0);
  many();
  ASSERT_EQ(rows_.rollback(), 0);
  EXPECT_EQ(look(changes), 0);
  EXPECT_EQ(changes, Changes{});
  ASSERT_EQ(rows_.commit({{1, "two"}}), 0);
  ASSERT_EQ(rows_.lock_write(), 0);
  many();
  ASSERT_EQ(rows_.rollback(), 0);
  EXPECT_EQ(look(changes), 75);
  EXPECT_EQ(look(changes), 0);
  ASSERT_EQ(rows_.lock_write(), 0);
  many();
  ASSERT_EQ(rows_.unlock(), 0);
  EXPECT_EQ(look(changes), 75);
  EXPECT_EQ(look(changes), 0);
}

TEST_F(StoreChanges, AreToldUnderALockOfAStore) {
  uint64_t place = 0;
  Changes changes;
  kelp_error error;
  EXPECT_EQ(kelp_changes_since(rows_.handle, &place, hear, &changes, &error), 1);
  EXPECT_STREQ(error.text, "kelp_changes_since: the handle holds no lock");
  EXPECT_EQ(kelp_changes_since(nullptr, &place, hear, &changes, &error), 22);
  ASSERT_EQ(rows_.lock_read(), 0);
  const kelp_record outside{};
  EXPECT_EQ(kelp_record_blocks(rows_.handle, &outside, hear, &changes, &error), 22);
  rows_.unlock();
  kelp_database *own = kelp_database_open_private("own", nullptr, nullptr);
  kelp_handle *handle = kelp_handle_create(own, nullptr, nullptr);
  EXPECT_EQ(kelp_changes_since(handle, &place, hear, &changes, &error), 22);
  EXPECT_STREQ(error.text, "kelp_changes_since: expected a handle of a database in a file");
  kelp_handle_destroy(handle);
  kelp_database_close(own, nullptr);
}

}  // namespace
