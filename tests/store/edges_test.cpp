// Where a store could give way without anybody's noticing at once: what a rollback brings back
// beside rows, large blocks, lists that grow long, and what other processes leave behind.
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "rows.hpp"

namespace store_test {

namespace {

constexpr std::size_t large = 200000;  // bytes of a block with spans of its own

std::uint64_t used_bytes(const Rows &rows) {
  kelp_memory_statistics memory;
  kelp_database_memory(rows.database, &memory);
  return memory.used_bytes;
}

TEST(StoreEdges, ARollbackIsDoneWhenItReturns) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              rows.commit({{1, "one"}});
              const std::uint64_t before = used_bytes(rows);
              const std::uint64_t size = std::filesystem::file_size(folder.file());
              rows.lock_write();
              for (std::uint16_t key = 2; key < 50; ++key) rows.put(key, some_bytes(key, large));
              if (used_bytes(rows) == before) return 1;
              rows.rollback();
              if (std::filesystem::file_size(folder.file()) != size) return 2;
              return used_bytes(rows) == before ? 0 : 3;
            }),
            0);
}

// The first transaction of all enters the types, too; the next one has to do that again.
TEST(StoreEdges, TypesOfAnUndoneTransactionAreEnteredAnew) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              rows.lock_write();
              rows.put(1, "undone");
              rows.rollback();
              rows.lock_write();
              rows.put(2, "two");
              return rows.unlock();
            }),
            0);
  EXPECT_EQ(verify(folder.file(), {Model{{2, "two"}}}), "");
}

TEST(StoreEdges, ALargeBlockThatWasEndedComesBackWhole) {
  const Folder folder;
  const std::string bytes = some_bytes(7, large);
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              rows.commit({{1, bytes}});
              rows.lock_write();
              rows.erase(1);
              rows.rollback();
              rows.lock_read();
              const bool same = rows.all() == Model{{1, bytes}};
              rows.unlock();
              return same ? 0 : 1;
            }),
            0);
  EXPECT_EQ(verify(folder.file(), {Model{{1, bytes}}}), "");
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              rows.lock_write();
              rows.erase(1);
              return rows.unlock();
            }),
            0);
  EXPECT_EQ(verify(folder.file(), {Model{}}), "");
}

TEST(StoreEdges, ABlockLongerThanAnyIsRefused) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              rows.lock_write();
              void *pool = rows.handle->obj_pool;
              constexpr std::size_t longest = std::size_t{1023} * 65536;
              kelp_memory_statistics before;
              kelp_memory_statistics after;
              kelp_database_memory(rows.database, &before);
              if (rows.handle->obj_alloc(pool, 0, longest + 1) != nullptr) return 1;
              kelp_database_memory(rows.database, &after);
              if (before.reserved_bytes != after.reserved_bytes) return 3;
              void *block = rows.handle->obj_alloc(pool, 0, longest);
              if (block == nullptr) return 2;
              rows.handle->obj_free(pool, 0, block);
              return rows.unlock();
            }),
            0);
  EXPECT_EQ(verify(folder.file(), {Model{}}), "");
}

// Many spans of one class, each full, give up a slot: they stand in the class's list together, and
// leave it again.
TEST(StoreEdges, SpansOfAClassComeAndGo) {
  const Folder folder;
  Model model;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              rows.lock_write();
              for (std::uint16_t key = 0; key < 600; ++key) {
                model[key] = some_bytes(key, 1000);
                rows.put(key, model[key]);
              }
              rows.unlock();
              rows.lock_write();
              for (std::uint16_t key = 0; key < 600; key += 7) rows.erase(key);
              rows.rollback();
              return 0;
            }),
            0);
  for (std::uint16_t key = 0; key < 600; ++key) model[key] = some_bytes(key, 1000);
  EXPECT_EQ(verify(folder.file(), {model}), "");
  const auto erase = [&](std::uint16_t step) {
    for (std::uint16_t key = 0; key < 600; key = static_cast<std::uint16_t>(key + step)) {
      model.erase(key);
    }
    EXPECT_EQ(run([&] {
                Rows rows(folder.file());
                rows.lock_write();
                for (std::uint16_t key = 0; key < 600; key = static_cast<std::uint16_t>(key + step))
                  rows.erase(key);
                return rows.unlock();
              }),
              0);
    EXPECT_EQ(verify(folder.file(), {model}), "") << step;
  };
  erase(7);
  erase(2);
  erase(1);
}

// The indexes grow in a transaction that is undone, and shrink in one that is not.
// What a transaction has the file grow by is its own; what was there before is not.
TEST(StoreEdges, ARollbackTakesBackWhatWasWrittenBehindGrowth) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              if (rows.commit({{1, "one"}, {2, "two"}}) != 0) return 1;
              rows.lock_write();
              for (std::uint16_t key = 10; key < 60; ++key) rows.put(key, some_bytes(key, 40000));
              rows.put(1, "other");
              rows.erase(2);
              if (rows.rollback() != 0) return 2;
              rows.lock_read();
              return rows.all() == Model{{1, "one"}, {2, "two"}} ? 0 : 3;
            }),
            0);
  EXPECT_EQ(verify(folder.file(), {Model{{1, "one"}, {2, "two"}}}), "");
}

// Two processes in turns: what the one has the file grow by the other uses too.
TEST(StoreEdges, WhatOneProcessGrewOthersUse) {
  const Folder folder;
  constexpr std::size_t kBytes = 20000;  // a span each
  constexpr std::uint16_t kAtOnce = 24;
  constexpr std::uint16_t kTurns = 12;
  Signal turns[2];
  const auto take_turns = [&](std::uint16_t number) {
    Rows rows(folder.file());
    for (std::uint16_t turn = number; turn < kTurns; turn += 2) {
      if (turns[number].take() == 0) return 1;
      if (rows.lock_write() != 0) return 2;
      for (std::uint16_t at = 0; at < kAtOnce; ++at) {
        const auto key = static_cast<std::uint16_t>(turn * kAtOnce + at);
        if (rows.put(key, some_bytes(key, kBytes)) != 0) return 3;
      }
      if (rows.unlock() != 0) return 4;
      turns[1 - number].give();
    }
    return 0;
  };
  const pid_t one = start([&] { return take_turns(0); });
  const pid_t other = start([&] { return take_turns(1); });
  turns[0].give();
  EXPECT_EQ(wait_for(one), 0);
  EXPECT_EQ(wait_for(other), 0);
  Model expected;
  for (std::uint16_t key = 0; key < kTurns * kAtOnce; ++key)
    expected[key] = some_bytes(key, kBytes);
  EXPECT_EQ(verify(folder.file(), {expected}), "");
}

TEST(StoreEdges, IndexesGrowAndShrink) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              std::uint32_t err = 0;
              const auto open = [&](int count) {
                rows.lock_write();
                for (int i = 0; i < count; ++i)
                  tbl_ospf_area_table_open_auto_id(rows.handle, 0, 0, &err);
              };
              const auto is_whole = [&](std::uint64_t from) {
                if (!rows.check().empty()) return false;
                rows.lock_read();
                bool whole = true;
                for (std::uint64_t id = 0; id < 300; ++id) {
                  whole &= (tbl_ospf_area_table_open_by_id(rows.handle, 0, id, 1, &err) !=
                            nullptr) == (id >= from && id < 200);
                }
                rows.unlock();
                return whole;
              };
              open(200);
              rows.unlock();
              open(400);
              rows.rollback();
              if (err != 0 || !is_whole(0)) return 1;
              rows.lock_write();
              for (std::uint64_t id = 0; id < 150; ++id) {
                auto *table = tbl_ospf_area_table_open_by_id(rows.handle, 0, id, 1, &err);
                tbl_ospf_area_table_free(rows.handle, 0, table, &err);
              }
              rows.unlock();
              return err == 0 && is_whole(150) ? 0 : 2;
            }),
            0);
}

TEST(StoreEdges, TextsOfARecordThatWasEndedComeBack) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              kelp_handle *handle = rows.handle;
              std::uint32_t err = 0;
              rows.lock_write();
              auto *table = tbl_ospf_interface_table_open_auto_id(handle, 0, 0, &err);
              auto *record = tbl_ospf_interface_create_record(handle, 0, &err);
              ospf_interface *made = ospf_interface_create(handle, 0);
              kelp_vstring_assign(handle, 0, ospf_interface_name_get(handle, 0, made, &err),
                                  "an interface with a name", 24, &err);
              tbl_ospf_interface_ospf_interface_set_field(handle, 0, record, made);
              tbl_ospf_interface_insert(handle, 0, table, record, &err);
              rows.unlock();
              rows.lock_write();
              tbl_ospf_interface_destroy_record(handle, 0, record, &err);
              rows.rollback();
              if (err != 0 || !rows.check().empty()) return 1;
              rows.lock_read();
              ospf_interface *kept = tbl_ospf_interface_ospf_interface_get_field(handle, 0, record);
              const char *name = kelp_vstring_text(ospf_interface_name_get(handle, 0, kept, &err));
              return kept == made && std::strcmp(name, "an interface with a name") == 0 ? 0 : 2;
            }),
            0);
}

// Objects that track state lose the place of their elements' state before they go.
TEST(StoreEdges, ElementStatesOfARecordThatWasEndedComeBack) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              kelp_handle_options options;
              kelp_handle_options_init(&options);
              options.state_tracking = KELP_TRACKING_ON;
              kelp_handle *handle = kelp_handle_create(rows.database, &options, nullptr);
              std::uint32_t err = 0;
              kelp_lock_write(handle, nullptr);
              auto *table = tbl_ospfv2_unknown_sub_tlv_table_open(handle, 0, "rows", 0, &err);
              auto *record = tbl_ospfv2_unknown_sub_tlv_create_record(handle, 0, &err);
              auto *row = ospfv2_unknown_sub_tlv_create(handle, 0);
              ospfv2_unknown_sub_tlv_value_set_value(handle, 0, row, 0, 5, &err);
              ospfv2_unknown_sub_tlv_value_state_flag_set(handle, 0, row, 0, 7, &err);
              tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_set_field(handle, 0, record, row);
              tbl_ospfv2_unknown_sub_tlv_insert(handle, 0, table, record, &err);
              kelp_unlock(handle, nullptr);
              kelp_lock_write(handle, nullptr);
              tbl_ospfv2_unknown_sub_tlv_destroy_record(handle, 0, record, &err);
              kelp_rollback(handle, nullptr);
              kelp_lock_read(handle, nullptr);
              const bool whole =
                  ospfv2_unknown_sub_tlv_value_state_flag_get(handle, 0, row, 0, &err) == 7;
              kelp_handle_destroy(handle);
              return err == 0 && whole ? 0 : 1;
            }),
            0);
}

TEST(StoreEdges, ARecordMadeWithoutTheWriteLockEntersNoTable) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              std::uint32_t err = 0;
              rows.commit({{1, "one"}});
              rows.lock_read();
              auto *record = tbl_ospfv2_unknown_sub_tlv_create_record(rows.handle, 0, &err);
              auto *row = ospfv2_unknown_sub_tlv_create(rows.handle, 0);
              tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_set_field(rows.handle, 0, record,
                                                                          row);
              rows.unlock();
              rows.lock_write();
              if (freopen("/dev/null", "w", stderr) == nullptr) return 1;
              auto *table = tbl_ospfv2_unknown_sub_tlv_table_open(rows.handle, 0, "rows", 1, &err);
              tbl_ospfv2_unknown_sub_tlv_insert(rows.handle, 0, table, record, &err);
              return 2;
            }),
            1000 + SIGABRT);
  EXPECT_EQ(verify(folder.file(), {Model{{1, "one"}}}), "");
}

TEST(StoreEdges, TheCacheIsEmptyAfterARollback) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              std::uint32_t err = 0;
              rows.lock_write();
              rows.put(1, "one");
              auto *table = tbl_ospfv2_unknown_sub_tlv_table_open(rows.handle, 0, "rows", 1, &err);
              auto *record = tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_type_get_first(
                  rows.handle, 0, table, &err);
              kelprepl_add_to_cache(rows.handle, 0, reinterpret_cast<kelp_table *>(table),
                                    reinterpret_cast<kelp_record *>(record), &err);
              rows.rollback();
              rows.lock_read();
              std::uint64_t position = 0;
              kelp_cache_entry entry;
              return kelp_replication_cache_next(rows.handle, &position, &entry);
            }),
            0);
}

// What stands in the cache of a process after another has had the write lock.
std::int32_t cached_after(const std::function<void(Rows &)> &work) {
  const Folder folder;
  const std::string path = folder.file();
  Signal entered;
  Signal changed;
  const pid_t reader = start([&] {
    Rows rows(path);
    std::uint32_t err = 0;
    rows.commit({{1, "one"}});
    rows.lock_read();
    auto *table = tbl_ospfv2_unknown_sub_tlv_table_open(rows.handle, 0, "rows", 1, &err);
    auto *record = tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_type_get_first(rows.handle, 0,
                                                                                    table, &err);
    kelprepl_add_to_cache(rows.handle, 0, reinterpret_cast<kelp_table *>(table),
                          reinterpret_cast<kelp_record *>(record), &err);
    rows.unlock();
    entered.give();
    changed.take();
    rows.lock_read();
    std::uint64_t position = 0;
    kelp_cache_entry entry;
    return kelp_replication_cache_next(rows.handle, &position, &entry);
  });
  entered.take();
  EXPECT_EQ(run([&] {
              Rows rows(path);
              rows.lock_write();
              work(rows);
              return rows.unlock();
            }),
            0);
  changed.give();
  return wait_for(reader);
}

// What another process has committed may have ended the records that the cache names.
TEST(StoreEdges, TheCacheIsEmptyAfterACommitOfAnotherProcess) {
  EXPECT_EQ(cached_after([](Rows &rows) { rows.put(2, "two"); }), 0);
}
TEST(StoreEdges, TheCacheStaysWhenTheOtherChangedNothing) {
  EXPECT_EQ(cached_after([](Rows &) {}), 1);
}

// A process that has counted objects of its own still sees what others count.
TEST(StoreEdges, CountsOfOthersAreSeenBesideOnesOwn) {
  const Folder folder;
  const std::string path = folder.file();
  const auto put = [&](std::uint16_t key) {
    Rows rows(path);
    rows.lock_write();
    rows.put(key, "row");
    return rows.unlock();
  };
  ASSERT_EQ(run([&] { return put(1); }), 0);
  Signal counted;
  Signal changed;
  const pid_t reader = start([&] {
    Rows rows(path);
    rows.lock_read();
    auto *own = ospfv2_unknown_sub_tlv_create(rows.handle, 0);
    const kelp_variant_entry &entry = kelp_get_manifested_type_info(own)->varinfo->entries[0];
    ospfv2_unknown_sub_tlv_destroy(rows.handle, 0, own);
    rows.unlock();
    counted.give();
    changed.take();
    rows.lock_read();
    return static_cast<int>(entry.create_count - entry.destroy_count);
  });
  counted.take();
  EXPECT_EQ(run([&] { return put(2); }), 0);
  changed.give();
  EXPECT_EQ(wait_for(reader), 2);
}

// A writer that waits for a reader goes before the readers who come later.
TEST(StoreEdges, AWaitingWriterGoesBeforeLaterReaders) {
  const Folder folder;
  const std::string path = folder.file();
  Signal reading;
  Signal end;
  const pid_t reader = start([&] {
    Rows rows(path);
    rows.lock_read();
    reading.give();
    end.take();
    return rows.unlock();
  });
  reading.take();
  const pid_t writer = start([&] {
    Rows rows(path);
    return rows.lock_write() != 0 ? 1 : rows.unlock();
  });
  EXPECT_EQ(run([&] {
              kelp_store_options options;
              kelp_store_options_init(&options);
              options.wait_ms = 20;
              Rows rows(path, &options);
              for (int turn = 0; turn < 500; ++turn) {
                if (rows.lock_read() == 110) return 0;
                rows.unlock();
                usleep(1000);
              }
              return 1;
            }),
            0);
  end.give();
  EXPECT_EQ(wait_for(reader), 0);
  EXPECT_EQ(wait_for(writer), 0);
}

// A process that opens the store, takes the read lock and is killed. Gives its id.
pid_t dead_reader(const std::string &path) {
  Signal reading;
  const pid_t reader = start([&] {
    Rows rows(path);
    rows.lock_read();
    reading.give();
    pause();
    return 0;
  });
  reading.take();
  kill(reader, SIGKILL);
  wait_for(reader);
  return reader;
}

// Whoever was given the dead process's number since does not read in its place.
TEST(StoreEdges, ADeadReadersNumberMayBeInUseAgain) {
  const Folder folder;
  // Who has a number is known by when it started, which the system counts in hundredths of a
  // second.
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  const auto dead = static_cast<std::uint32_t>(dead_reader(folder.file()));
  const auto living = static_cast<std::uint32_t>(getpid());
  const std::string file = folder.file("store-lock");
  std::string table = content_of(file);
  const std::string number(reinterpret_cast<const char *>(&dead), sizeof dead);
  const std::size_t at = table.find(number);
  ASSERT_NE(at, table.npos);
  std::memcpy(table.data() + at, &living, sizeof living);
  std::ofstream(file, std::ios::binary | std::ios::in) << table;
  EXPECT_EQ(run([&] {
              kelp_store_options options;
              kelp_store_options_init(&options);
              options.wait_ms = 200;
              Rows rows(folder.file(), &options);
              return rows.lock_write() != 0 ? 1 : rows.unlock();
            }),
            0);
}

// The file says whether all of it was synced when the last living process closed it.
TEST(StoreEdges, TheDeadDoNotKeepAStoreOpen) {
  const Folder folder;
  Signal open;
  Signal end;
  const pid_t last = start([&] {
    Rows rows(folder.file());
    open.give();
    end.take();
    return 0;
  });
  open.take();
  constexpr std::size_t clean_at = 144;
  EXPECT_EQ(content_of(folder.file())[clean_at], 0);
  dead_reader(folder.file());
  end.give();
  EXPECT_EQ(wait_for(last), 0);
  EXPECT_EQ(content_of(folder.file())[clean_at], 1);
}

// --- a journal that does not belong there ---

pid_t killed_writer(const std::string &path) {
  Signal writing;
  const pid_t writer = start([&] {
    Rows rows(path);
    rows.lock_write();
    rows.put(1, "half");
    writing.give();
    pause();
    return 0;
  });
  writing.take();
  kill(writer, SIGKILL);
  wait_for(writer);
  return writer;
}

// What is said when the store is opened, with the code.
std::string refusal(const std::string &path) {
  Rows rows(path);
  return rows.is_open() ? "" : std::to_string(rows.error.code) + " " + rows.error.text;
}

TEST(StoreEdges, TheJournalOfAnotherStoreIsRefused) {
  const Folder folder;
  killed_writer(folder.file("other"));
  EXPECT_EQ(run([&] { return refusal(folder.file()).empty() ? 0 : 1; }), 0);
  const std::string journal = content_of(folder.file("other-log"));
  std::ofstream(folder.file("store-log"), std::ios::binary) << journal;
  EXPECT_EQ(run([&] {
              const std::string said = refusal(folder.file());
              return said.starts_with("22 ") && said.find("of another store") != said.npos ? 0 : 1;
            }),
            0);
  EXPECT_EQ(content_of(folder.file("store-log")), journal);
}

TEST(StoreEdges, AJournalOfAnotherLayoutIsRefused) {
  const Folder folder;
  killed_writer(folder.file());
  std::string journal = content_of(folder.file("store-log"));
  journal[16] = 9;
  std::ofstream(folder.file("store-log"), std::ios::binary) << journal;
  EXPECT_EQ(run([&] {
              const std::string said = refusal(folder.file());
              return said.starts_with("22 ") && said.find("layout 9") != said.npos ? 0 : 1;
            }),
            0);
  EXPECT_EQ(content_of(folder.file("store-log")), journal);
}

}  // namespace

}  // namespace store_test
