// Stores in two processes and more: what one commits the others read, what is undone nobody does,
// and who waits for whom.
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <thread>

#include "rows.hpp"

namespace store_test {

namespace {

kelp_store_options options_with(std::uint32_t wait_ms) {
  kelp_store_options options;
  kelp_store_options_init(&options);
  options.wait_ms = wait_ms;
  return options;
}

TEST(Store, WhatOneProcessCommitsAnotherReads) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              if (!rows.is_open() || rows.lock_write() != 0) return 1;
              if (rows.put(1, "one") != 0 || rows.put(2, std::string(20000, 'x')) != 0) return 2;
              return rows.unlock();
            }),
            0);
  EXPECT_EQ(verify(folder.file(), {Model{{1, "one"}, {2, std::string(20000, 'x')}}}), "");
}

TEST(Store, JournalsTakeNoAddressThatAStoreMayNeed) {
  const Folder folder;
  // The thread sanitizer leaves a program nothing in front of those.
  const bool any = dlsym(RTLD_DEFAULT, "__tsan_init") != nullptr;
  const std::uint64_t lowest = any ? UINT64_MAX : 0x7e9000000000;
  const std::string first = folder.file() + "-one", second = folder.file() + "-two";
  Rows one(first), two(second);
  ASSERT_TRUE(one.is_open());
  ASSERT_TRUE(two.is_open());
  std::ifstream maps("/proc/self/maps");
  std::size_t journals = 0;
  for (std::string line; std::getline(maps, line);) {
    if (!line.ends_with("-log")) continue;
    ++journals;
    EXPECT_LE(std::stoull(line.substr(line.find('-') + 1), nullptr, 16), lowest) << line;
  }
  EXPECT_EQ(journals, 2u);
}

TEST(Store, ARollbackLeavesWhatWasCommitted) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              if (rows.lock_write() != 0 || rows.put(1, "one") != 0 || rows.put(2, "two") != 0)
                return 1;
              if (rows.unlock() != 0 || rows.lock_write() != 0) return 2;
              rows.put(1, "changed");
              rows.put(3, std::string(100000, 'y'));
              rows.erase(2);
              for (std::uint16_t key = 100; key < 400; ++key) rows.put(key, some_bytes(key, key));
              if (rows.rollback() != 0) return 3;
              rows.lock_read();
              const Model found = rows.all();
              rows.unlock();
              return found == Model{{1, "one"}, {2, "two"}} ? 0 : 4;
            }),
            0);
  EXPECT_EQ(verify(folder.file(), {Model{{1, "one"}, {2, "two"}}}), "");
}

// What one transaction has put by is put by again in the next, though it is the same object.
TEST(Store, ARollbackTakesBackWritesToWhatTheCommitBeforeItWroteToo) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              std::uint32_t err = 0;
              if (rows.lock_write() != 0) return 1;
              auto *table = tbl_ospf_area_table_open(rows.handle, 0, "areas", 0, &err);
              auto *record = tbl_ospf_area_create_record(rows.handle, 0, &err);
              ospf_area *area = ospf_area_create(rows.handle, 0);
              tbl_ospf_area_ospf_area_set_field(rows.handle, 0, record, area);
              tbl_ospf_area_insert(rows.handle, 0, table, record, &err);
              if (err != 0 || rows.unlock() != 0) return 2;
              const auto write = [&](std::uint32_t id) {
                ospf_area_area_id_set_value(rows.handle, 0, area, id, &err);
                ospf_area_area_id_set_value(rows.handle, 0, area, id + 1, &err);
              };
              rows.lock_write();
              write(10);
              if (rows.unlock() != 0) return 3;
              rows.lock_write();
              write(20);
              if (rows.rollback() != 0) return 4;
              rows.lock_read();
              const std::uint32_t id = ospf_area_area_id_get_value(rows.handle, 0, area, &err);
              rows.unlock();
              return err == 0 && id == 11 ? 0 : 5;
            }),
            0);
}

// What the runtime keeps beside the objects lies in the store too, and is told; the check of each
// store holds the number against the blocks.
TEST(Store, TellsWhatTheRuntimeKeepsBesideTheObjects) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              if (rows.commit({{1, "one"}}) != 0) return 1;
              kelp_memory_statistics before;
              kelp_database_memory(rows.database, &before);
              std::uint32_t err = 0;
              rows.lock_write();
              for (int at = 0; at < 100; ++at) {
                tbl_ospf_area_table_open_auto_id(rows.handle, 0, 0, &err);
              }
              if (err != 0 || rows.unlock() != 0) return 2;
              kelp_memory_statistics after;
              kelp_database_memory(rows.database, &after);
              if (after.own_bytes < before.own_bytes + 100 * sizeof(kelp_oid)) return 3;
              return rows.check().empty() ? 0 : 4;
            }),
            0);
}

TEST(Store, AHandleThatIsDestroyedWithTheWriteLockUndoes) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              if (rows.commit({{1, "one"}}) != 0) return 1;
              if (rows.lock_write() != 0 || rows.put(1, "changed") != 0) return 2;
              return 0;
            }),
            0);
  EXPECT_EQ(verify(folder.file(), {Model{{1, "one"}}}), "");
}

TEST(Store, AReaderWhoComesBeforeTheFirstWriterFindsNothing) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              std::uint32_t err = 0;
              if (!rows.is_open() || rows.lock_read() != 0) return 1;
              const bool none =
                  tbl_ospf_area_table_open(rows.handle, 0, "areas", 1, &err) == nullptr;
              rows.unlock();
              return none && err == 0 ? 0 : 2;
            }),
            0);
}

// A process with a store open and a lock on it, where it stays until a signal comes.
class Holder {
 public:
  Holder(const std::string &path, const std::function<void(Rows &)> &hold) {
    Signal ready;
    id_ = start([&] {
      Rows rows(path);
      hold(rows);
      ready.give();
      pause();
      return 0;
    });
    ready.take();
  }
  Holder(const Holder &) = delete;
  Holder &operator=(const Holder &) = delete;
  ~Holder() { end(); }

  pid_t id() const { return id_; }
  void stop() const { kill(id_, SIGSTOP); }
  void end() {
    if (id_ == 0) return;
    kill(id_, SIGKILL);
    EXPECT_EQ(wait_for(id_), 1000 + SIGKILL);
    id_ = 0;
  }

 private:
  pid_t id_ = 0;
};

TEST(Store, ADeadWriterIsUndoneByWhoComesNext) {
  const Folder folder;
  const std::string path = folder.file();
  ASSERT_EQ(run([&] {
              Rows rows(path);
              return rows.commit({{1, "one"}});
            }),
            0);
  Holder writer(path, [](Rows &rows) {
    rows.lock_write();
    rows.put(1, "half");
    rows.put(2, "done");
  });
  writer.end();
  EXPECT_EQ(verify(path, {Model{{1, "one"}}}), "");
}

TEST(Store, ADeadReaderHoldsNobodyUp) {
  const Folder folder;
  const std::string path = folder.file();
  Holder reader(path, [](Rows &rows) { rows.lock_read(); });
  reader.end();
  EXPECT_EQ(run([&] {
              Rows rows(path);
              return rows.lock_write() != 0 ? 1 : rows.unlock();
            }),
            0);
}

// Each of the two ways to wait in vain names the one who is waited for.
void expect_wait_in_vain(bool holder_writes, bool waiter_writes) {
  const Folder folder;
  const std::string path = folder.file();
  Holder holder(path, [&](Rows &rows) { holder_writes ? rows.lock_write() : rows.lock_read(); });
  holder.stop();
  EXPECT_EQ(run([&] {
              const kelp_store_options options = options_with(100);
              Rows rows(path, &options);
              const std::int32_t code = waiter_writes ? rows.lock_write() : rows.lock_read();
              const std::string expected = "process " + std::to_string(holder.id()) +
                                           " has held the " + (holder_writes ? "write" : "read") +
                                           " lock since 20";
              if (std::strstr(rows.error.text, expected.c_str()) == nullptr) {
                std::fprintf(stderr, "'%s'\n", rows.error.text);
                return 1;
              }
              return code == 110 ? 0 : 2;
            }),
            0);
  holder.end();
}

TEST(Store, AStoppedWriterIsNamedToAWriter) { expect_wait_in_vain(true, true); }
TEST(Store, AStoppedWriterIsNamedToAReader) { expect_wait_in_vain(true, false); }
TEST(Store, AStoppedReaderIsNamedToAWriter) { expect_wait_in_vain(false, true); }

TEST(Store, ReadersOfSeveralProcessesReadBesideEachOther) {
  const Folder folder;
  const std::string path = folder.file();
  Holder reader(path, [](Rows &rows) { rows.lock_read(); });
  EXPECT_EQ(run([&] {
              const kelp_store_options options = options_with(0);
              Rows rows(path, &options);
              return rows.lock_read();
            }),
            0);
  reader.end();
}

TEST(Store, AReaderMakesKeysBesideTheStore) {
  const Folder folder;
  const std::string path = folder.file();
  EXPECT_EQ(run([&] {
              Rows rows(path);
              if (rows.commit({{1, "one"}}) != 0) return 1;
              kelp_memory_statistics before;
              kelp_database_memory(rows.database, &before);
              std::uint32_t err = 0;
              if (ospf_area_create(rows.handle, 0) != nullptr) return 2;
              kelp_vstring text = {};
              kelp_vstring_assign(rows.handle, 0, &text, "text", 4, &err);
              if (kelp_handle_last_error(rows.handle, &rows.error) != 12) return 3;
              if (std::strstr(rows.error.text, "without a lock") == nullptr) return 4;
              if (rows.lock_read() != 0) return 5;
              ospf_area *area = ospf_area_create(rows.handle, 0);
              if (area == nullptr) return 6;
              err = 0;
              ospf_area_area_id_set_value(rows.handle, 0, area, 7, &err);
              if (err != 0 || ospf_area_area_id_get_value(rows.handle, 0, area, &err) != 7)
                return 7;
              rows.unlock();
              ospf_area_destroy(rows.handle, 0, area);
              kelp_memory_statistics after;
              kelp_database_memory(rows.database, &after);
              return before.total_allocations == after.total_allocations ? 0 : 8;
            }),
            0);
  EXPECT_EQ(verify(path, {Model{{1, "one"}}}), "");
}

TEST(Store, AChangeWithoutTheWriteLockEndsTheProcess) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              rows.commit({{1, "one"}});
              rows.lock_read();
              if (freopen("/dev/null", "w", stderr) == nullptr) return 1;
              return static_cast<int>(rows.put(1, "changed"));
            }),
            1000 + SIGABRT);
  EXPECT_EQ(verify(folder.file(), {Model{{1, "one"}}}), "");
}

TEST(Store, TablesByIdCountOnInAnotherProcess) {
  const Folder folder;
  const auto open_one = [&](std::uint64_t expected, bool undo) {
    return [&folder, expected, undo] {
      Rows rows(folder.file());
      std::uint32_t err = 0;
      if (rows.lock_write() != 0) return 1;
      auto *table = tbl_ospf_area_table_open_auto_id(rows.handle, 0, 0, &err);
      if (table == nullptr || err != 0) return 2;
      if (reinterpret_cast<kelp_table *>(table)->table_id != expected) return 3;
      return undo ? rows.rollback() : rows.unlock();
    };
  };
  EXPECT_EQ(run(open_one(0, true)), 0);
  EXPECT_EQ(run(open_one(0, false)), 0);
  EXPECT_EQ(run(open_one(1, true)), 0);
  EXPECT_EQ(run(open_one(1, false)), 0);
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              std::uint32_t err = 0;
              // A root that was undone is found again under its key, not where it lay.
              for (int turn = 0; turn < 2; ++turn) {
                rows.lock_write();
                auto *table = tbl_ospf_interface_table_open_auto_id(rows.handle, 0, 0, &err);
                if (table == nullptr || reinterpret_cast<kelp_table *>(table)->table_id != 0)
                  return 1;
                rows.rollback();
                rows.lock_write();
                auto *other = tbl_ospf_neighbor_table_open_auto_id(rows.handle, 0, 0, &err);
                if (other == nullptr || reinterpret_cast<kelp_table *>(other)->table_id != 0)
                  return 2;
                rows.rollback();
              }
              rows.lock_write();
              auto *one = tbl_ospf_neighbor_table_open_auto_id(rows.handle, 0, 0, &err);
              auto *two = tbl_ospf_interface_table_open_auto_id(rows.handle, 0, 0, &err);
              if (reinterpret_cast<kelp_table *>(one)->table_id != 0) return 3;
              if (reinterpret_cast<kelp_table *>(two)->table_id != 0) return 4;
              return rows.unlock();
            }),
            0);
}

// Three areas in a table of the store: the two below the top know their tree by its number.
struct Areas {
  explicit Areas(kelp_handle *its_handle, const char *name = "areas") : handle(its_handle) {
    table = tbl_ospf_area_table_open(handle, 0, name, 0, &err);
    for (std::uint32_t id = 0; id < 3; ++id) {
      records[id] = tbl_ospf_area_create_record(handle, 0, &err);
      ospf_area *area = ospf_area_create(handle, 0);
      ospf_area_area_id_set_value(handle, 0, area, id, &err);
      tbl_ospf_area_ospf_area_set_field(handle, 0, records[id], area);
      tbl_ospf_area_insert(handle, 0, table, records[id], &err);
    }
  }
  std::uint32_t number() const {
    return reinterpret_cast<kelp_record *>(records[0])->avl_node.tree;
  }
  std::uint32_t refusal(Areas &others) {
    std::uint32_t code = 0;
    tbl_ospf_area_delete(handle, 0, table, others.records[0], &code);
    return code;
  }
  kelp_handle *handle;
  std::uint32_t err = 0;
  tbl_ospf_area_table *table;
  tbl_ospf_area_record *records[3];
};

TEST(Store, NoTwoTreesOfAStoreHaveOneNumber) {
  const Folder folder;
  const auto numbered = [&](const char *name, std::uint32_t expected, bool undo) {
    return run([&] {
      Rows rows(folder.file());
      if (rows.lock_write() != 0) return 1;
      const Areas areas(rows.handle, name);
      if (areas.err != 0) return 2;
      if ((areas.number() & INT32_MAX) != expected) return 3;
      return undo ? rows.rollback() : rows.unlock();
    });
  };
  EXPECT_EQ(numbered("undone", 1, true), 0);
  EXPECT_EQ(numbered("one", 2, false), 0);
  EXPECT_EQ(numbered("two", 3, false), 0);
}

// Each store numbers its trees from the start, and another one's records are not its own.
TEST(Store, RecordsOfAnotherStoreAreNotInItsTables) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows one(folder.file("one")), other(folder.file("other"));
              if (one.lock_write() != 0 || other.lock_write() != 0) return 1;
              Areas areas(one.handle), others(other.handle);
              if (areas.number() == 0 || areas.number() != others.number()) return 2;
              if (areas.refusal(others) != KELP_ERR_NOT_FOUND) return 3;
              others.handle = one.handle;
              if (others.refusal(areas) != KELP_ERR_NOT_FOUND) return 4;
              std::uint32_t err = 0;
              tbl_ospf_area_delete(one.handle, 0, areas.table, areas.records[2], &err);
              if (err != 0) return 5;
              return one.unlock() != 0 || other.unlock() != 0 ? 6 : 0;
            }),
            0);
}

TEST(Store, ReferencesHoldAcrossProcesses) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              std::uint32_t err = 0;
              rows.lock_write();
              auto *areas = tbl_ospf_area_table_open(rows.handle, 0, "areas", 0, &err);
              auto *interfaces = tbl_ospf_interface_table_open_auto_id(rows.handle, 0, 0, &err);
              auto *record = tbl_ospf_area_create_record(rows.handle, 0, &err);
              ospf_area *area = ospf_area_create(rows.handle, 0);
              ospf_area_area_id_set_value(rows.handle, 0, area, 51, &err);
              ospf_area_interfaces_set_by_ref(rows.handle, 0, area, interfaces, &err);
              tbl_ospf_area_ospf_area_set_field(rows.handle, 0, record, area);
              tbl_ospf_area_insert(rows.handle, 0, areas, record, &err);
              return err != 0 ? 1 : rows.unlock();
            }),
            0);
  const auto look = [&](std::int64_t references, bool drop) {
    return [&folder, references, drop] {
      Rows rows(folder.file());
      std::uint32_t err = 0;
      if (rows.lock_write() != 0) return 1;
      auto *areas = tbl_ospf_area_table_open(rows.handle, 0, "areas", 1, &err);
      auto *record = tbl_ospf_area_ospf_area_area_id_get_first(rows.handle, 0, areas, &err);
      ospf_area *area = tbl_ospf_area_ospf_area_get_field(rows.handle, 0, record);
      auto *interfaces = ospf_area_interfaces_get_by_ref(rows.handle, 0, area, &err);
      if (interfaces == nullptr || err != 0) return 2;
      if (kelp_handle_oid_references(rows.handle, interfaces) != references) return 3;
      if (drop) tbl_ospf_area_destroy_record(rows.handle, 0, record, &err);
      return rows.rollback();
    };
  };
  EXPECT_EQ(run(look(1, true)), 0);
  EXPECT_EQ(run(look(1, false)), 0);
  EXPECT_EQ(run([&] { return Rows(folder.file()).check().empty() ? 0 : 1; }), 0);
}

TEST(Store, TenantsAreCountedAcrossProcesses) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              kelp_tenant_set(7);
              rows.commit({{1, "one"}});
              rows.lock_write();
              rows.put(2, "two");
              return rows.rollback();
            }),
            0);
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              std::uint32_t err = 0;
              kelp_tenant_set(7);
              rows.lock_read();
              auto *table = tbl_ospfv2_unknown_sub_tlv_table_open(rows.handle, 0, "rows", 1, &err);
              std::uint32_t count = 9;
              kelpdb_get_tenant_counter(rows.handle, 0, reinterpret_cast<kelp_table *>(table),
                                        &count, 7, nullptr);
              return count == 1 ? 0 : 1;
            }),
            0);
}

TEST(Store, TheTypesCountWhatIsCommitted) {
  const Folder folder;
  const auto counts = [](Rows &rows) {
    std::uint32_t err = 0;
    auto *table = tbl_ospfv2_unknown_sub_tlv_table_open(rows.handle, 0, "rows", 1, &err);
    auto *record = tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_type_get_first(rows.handle, 0,
                                                                                    table, &err);
    const auto *row =
        tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_get_field(rows.handle, 0, record);
    const kelp_type_record *type = kelp_get_manifested_type_info(row);
    return type->varinfo->entries[0].create_count - type->varinfo->entries[0].destroy_count;
  };
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              rows.lock_write();
              for (std::uint16_t key = 0; key < 5; ++key) rows.put(key, "row");
              if (counts(rows) != 5) return 1;
              rows.unlock();
              rows.lock_write();
              rows.put(9, "row");
              rows.erase(1);
              rows.erase(2);
              rows.rollback();
              rows.lock_read();
              if (counts(rows) != 5) return 2;
              // What a reader makes is counted for itself, until it looks again.
              ospfv2_unknown_sub_tlv *own = ospfv2_unknown_sub_tlv_create(rows.handle, 0);
              rows.unlock();
              rows.lock_write();
              const bool same = counts(rows) == 5;
              ospfv2_unknown_sub_tlv_destroy(rows.handle, 0, own);
              rows.rollback();
              return same ? 0 : 3;
            }),
            0);
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              rows.lock_read();
              return counts(rows) == 5 ? 0 : 1;
            }),
            0);
}

TEST(Store, AProcessOpensAFileOnceAndItsChildNotAtAll) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              Rows again(folder.file());
              if (again.is_open() || again.error.code != 16) return 1;
              const pid_t child = fork();
              if (child == 0) {
                const bool refused = rows.lock_read() == 1 && rows.lock_write() == 1;
                _exit(refused ? 0 : 1);
              }
              return wait_for(child);
            }),
            0);
}

// What a child does with the store that its parent opened is refused in words, takes nothing from
// the parent, and a store of the child's own works.
TEST(Store, AChildIsToldWhyAndItsParentGoesOn) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              if (rows.lock_write() != 0 || rows.put(1, "one") != 0) return 1;
              const pid_t child = fork();
              if (child == 0) {
                alarm(20);
                const std::string expected = "it was opened by process " +
                                             std::to_string(getppid()) +
                                             ", of which this one is a child; a child opens the "
                                             "store itself";
                kelp_error error{};
                const auto refused = [&](std::int32_t code) {
                  return code == KELP_ERR_PERMISSION &&
                         std::string(error.text).find(expected) != std::string::npos;
                };
                if (!refused(kelp_lock_read(rows.handle, &error))) _exit(1);
                if (!refused(kelp_lock_write(rows.handle, &error))) _exit(2);
                if (!refused(kelp_unlock(rows.handle, &error))) _exit(3);
                if (ospfv2_unknown_sub_tlv_create(rows.handle, 0) != nullptr) _exit(4);
                kelp_handle_destroy(rows.handle);
                rows.handle = nullptr;
                if (kelp_database_close(rows.database, &error) != 0) _exit(5);
                rows.database = nullptr;
                _exit(0);
              }
              if (const int status = wait_for(child); status != 0) return 10 + status;
              if (rows.put(2, "two") != 0 || rows.unlock() != 0) return 2;
              return 0;
            }),
            0);
  EXPECT_EQ(verify(folder.file(), {Model{{1, "one"}, {2, "two"}}}), "");
}

TEST(Store, ThreadsOfOneProcessShareAStore) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              const auto write = [&](std::uint16_t first) {
                kelp_handle *own = kelp_handle_create(rows.database, nullptr, nullptr);
                for (std::uint16_t turn = 0; turn < 50; ++turn) {
                  kelp_lock_write(own, nullptr);
                  std::uint32_t err = 0;
                  auto *table = tbl_ospfv2_unknown_sub_tlv_table_open(own, 0, "rows", 0, &err);
                  auto *record = tbl_ospfv2_unknown_sub_tlv_create_record(own, 0, &err);
                  auto *row = ospfv2_unknown_sub_tlv_create(own, 0);
                  ospfv2_unknown_sub_tlv_type_set_value(
                      own, 0, row, static_cast<std::uint16_t>(first + turn), &err);
                  tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_set_field(own, 0, record, row);
                  tbl_ospfv2_unknown_sub_tlv_insert(own, 0, table, record, &err);
                  kelp_unlock(own, nullptr);
                }
                kelp_handle_destroy(own);
              };
              const auto read = [&] {
                kelp_handle *own = kelp_handle_create(rows.database, nullptr, nullptr);
                for (int turn = 0; turn < 200; ++turn) {
                  kelp_lock_read(own, nullptr);
                  std::uint32_t err = 0;
                  auto *table = tbl_ospfv2_unknown_sub_tlv_table_open(own, 0, "rows", 1, &err);
                  if (table != nullptr) tbl_ospfv2_unknown_sub_tlv_table_get_count(own, 0, table);
                  kelp_unlock(own, nullptr);
                }
                kelp_handle_destroy(own);
              };
              std::thread one(write, std::uint16_t{0});
              std::thread two(write, std::uint16_t{1000});
              std::thread three(read);
              std::thread four(read);
              one.join();
              two.join();
              three.join();
              four.join();
              rows.lock_read();
              return rows.all().size() == 100 ? 0 : 1;
            }),
            0);
}

TEST(Store, APrivateDatabaseCannotBeUndone) {
  kelp_error error;
  kelp_database *database = kelp_database_open_private("private", nullptr, &error);
  kelp_handle *handle = kelp_handle_create(database, nullptr, &error);
  EXPECT_EQ(kelp_rollback(handle, &error), 1);
  ASSERT_EQ(kelp_lock_write(handle, &error), 0);
  EXPECT_EQ(kelp_rollback(handle, &error), 95);
  EXPECT_EQ(kelp_unlock(handle, &error), 0);
  kelp_handle_destroy(handle);
  EXPECT_EQ(kelp_database_close(database, &error), 0);
}

// --- trust ---

// Opening a file that was changed so gives the code and the words, and leaves the file as it was.
void expect_refused(const std::function<void(std::string &)> &change, std::int32_t code,
                    const char *words) {
  const Folder folder;
  const std::string path = folder.file();
  ASSERT_EQ(run([&] {
              Rows rows(path);
              rows.lock_write();
              rows.put(1, "one");
              return rows.unlock();
            }),
            0);
  std::string bytes = content_of(path);
  change(bytes);
  std::ofstream(path, std::ios::binary) << bytes;
  const std::string lock = content_of(path + "-lock");
  EXPECT_EQ(run([&] {
              Rows rows(path);
              if (rows.is_open()) return 1;
              if (rows.error.code != code || std::strstr(rows.error.text, words) == nullptr) {
                std::fprintf(stderr, "%d: %s\n", rows.error.code, rows.error.text);
                return 2;
              }
              return 0;
            }),
            0);
  EXPECT_EQ(content_of(path), bytes);
}

TEST(StoreTrust, AForeignFile) {
  expect_refused([](std::string &bytes) { bytes.replace(0, 4, "GIF8"); }, 22, "'GIF8' found");
}
TEST(StoreTrust, AnEmptyFile) {
  expect_refused([](std::string &bytes) { bytes.clear(); }, 22, "0 bytes found");
}
TEST(StoreTrust, AFileOfZeroes) {
  expect_refused([](std::string &bytes) { bytes.assign(bytes.size(), '\0'); }, 22, "'....' found");
}
TEST(StoreTrust, ANewerLayout) {
  expect_refused([](std::string &bytes) { bytes[16] = 7; }, 22, "layout 7 found, expected 6");
}
TEST(StoreTrust, AnOlderLayout) {
  expect_refused([](std::string &bytes) { bytes[16] = 1; }, 22, "layout 1 found, expected 6");
}
TEST(StoreTrust, AnotherByteOrder) {
  expect_refused([](std::string &bytes) { std::swap(bytes[20], bytes[23]); }, 22,
                 "byte order mark");
}
TEST(StoreTrust, AGarbledHeader) {
  expect_refused([](std::string &bytes) { bytes[40] ^= 1; }, 22, "checksum");
}
TEST(StoreTrust, ACutFile) {
  expect_refused([](std::string &bytes) { bytes.resize(bytes.size() - 65536); }, 22, "was cut");
}

TEST(StoreTrust, AMissingFileThatIsNotToBeMadeLeavesNothing) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              kelp_store_options options = options_with(100);
              options.create = 0;
              Rows rows(folder.file(), &options);
              return rows.error.code;
            }),
            2);
  EXPECT_NE(access(folder.file("store-lock").c_str(), F_OK), 0);
}

TEST(StoreTrust, AReaderWritesNothing) {
  const Folder folder;
  ASSERT_EQ(run([&] {
              Rows rows(folder.file());
              rows.lock_write();
              rows.put(1, "one");
              return rows.unlock();
            }),
            0);
  const std::string before = content_of(folder.file());
  EXPECT_EQ(run([&] {
              kelp_store_options options = options_with(100);
              options.read_only = 1;
              Rows rows(folder.file(), &options);
              if (rows.lock_write() != 1) return 1;
              if (rows.lock_read() != 0) return 2;
              ospfv2_unknown_sub_tlv *own = ospfv2_unknown_sub_tlv_create(rows.handle, 0);
              ospfv2_unknown_sub_tlv_destroy(rows.handle, 0, own);
              return rows.all() == Model{{1, "one"}} ? 0 : 3;
            }),
            0);
  EXPECT_EQ(content_of(folder.file()), before);
}

TEST(StoreTrust, AFileThatIsCutWhileItIsOpenIsAnError) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              rows.lock_write();
              for (std::uint16_t key = 0; key < 500; ++key) rows.put(key, some_bytes(key, 3000));
              rows.unlock();
              if (truncate(folder.file().c_str(), 1200000) != 0) return 1;
              if (rows.lock_read() != 5) return 2;
              return std::strstr(rows.error.text, "was cut") == nullptr ? 3 : 0;
            }),
            0);
}

TEST(StoreTrust, AFileThatIsCutUnderALockIsAnErrorAndNoSignal) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              rows.lock_write();
              for (std::uint16_t key = 0; key < 500; ++key) rows.put(key, some_bytes(key, 3000));
              rows.unlock();
              rows.lock_write();
              if (truncate(folder.file().c_str(), 1200000) != 0) return 1;
              char *memory =
                  reinterpret_cast<char *>(rows.handle->obj_alloc(rows.handle->obj_pool, 0, 60000));
              if (memory != nullptr) std::memset(memory, 1, 60000);
              const std::int32_t code = rows.unlock();
              return code == 5 ? 0 : 2;
            }),
            0);
}

}  // namespace

}  // namespace store_test

// In the child, what knows its owner by a number of the parent's thread is made anew, which
// ThreadSanitizer does not see: it takes the mutex for one that is still held.
extern "C" const char *__tsan_default_suppressions();
extern "C" const char *__tsan_default_suppressions() { return "deadlock:before_fork\n"; }
