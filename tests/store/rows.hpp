// What the tests of stores share: a folder of their own, a program that keeps rows of one table in
// a store, and processes that are such programs.
#pragma once

#include <gtest/gtest.h>
#include <kelp/core.h>
#include <kelp/embed.h>
#include <kelp/primitives.h>
#include <ospf_harbor_oper.h>
#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/temporary_folder.hpp"

namespace store_test {

// A folder with a store.
struct Folder : TemporaryFolder {
  using TemporaryFolder::TemporaryFolder;

  // Where files are synced at once, if there is such a place.
  static std::filesystem::path in_memory();

  std::string file(const std::string &name = "store") const { return TemporaryFolder::file(name); }
};

// What the rows hold, by their key.
using Model = std::map<std::uint16_t, std::string>;

// A program with a store open, and a table of rows in it. Each row has a key and some bytes.
class Rows {
 public:
  explicit Rows(const std::string &path, const kelp_store_options *options = nullptr);
  Rows(const Rows &) = delete;
  Rows &operator=(const Rows &) = delete;
  ~Rows();

  bool is_open() const { return handle != nullptr; }

  // 0, or the code.
  std::int32_t lock_write() { return kelp_lock_write(handle, &error); }
  std::int32_t lock_read() { return kelp_lock_read(handle, &error); }
  std::int32_t unlock() { return kelp_unlock(handle, &error); }
  std::int32_t rollback() { return kelp_rollback(handle, &error); }

  // Under the write lock; 0, or the error word.
  std::uint32_t put(std::uint16_t key, const std::string &bytes);
  std::uint32_t erase(std::uint16_t key);
  // A transaction that puts these; 0, or what went wrong first.
  std::int32_t commit(const Model &rows);
  // Under either lock.
  Model all();
  // The findings of kelp_database_check under the read lock, one a line.
  std::string check();

  kelp_database *database = nullptr;
  kelp_handle *handle = nullptr;
  kelp_error error = {};

 private:
  tbl_ospfv2_unknown_sub_tlv_table *table(bool read_only);
  tbl_ospfv2_unknown_sub_tlv_record *find(std::uint16_t key);
};

// A process that runs work and ends with its result; what it prints goes where the test's goes.
pid_t start(const std::function<int()> &work);
// Its exit status, or 1000 and the signal.
int wait_for(pid_t process);
// Both.
int run(const std::function<int()> &work);

// A pipe between processes, one byte for each step.
class Signal {
 public:
  Signal();
  ~Signal();
  void give(char what = '.');
  // 0 at the end of the other side.
  char take();

 private:
  int ends_[2] = {-1, -1};
};

// Reads the store in a process of its own and gives what is wrong with it: findings, or rows that
// are not as expected. Empty when all is well.
std::string verify(const std::string &path, const std::vector<Model> &expected);

// Has the store look as if it was opened last before the machine was started again.
void forget_run_of_machine(const std::string &path);

std::string some_bytes(std::uint64_t seed, std::size_t length);

}  // namespace store_test
