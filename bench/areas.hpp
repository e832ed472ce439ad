// A table of a million areas, a record and an object for each key. Keys come in one seeded shuffled
// order.
#pragma once

#include <ospf_harbor_oper.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "store.hpp"

namespace bench {

inline constexpr std::size_t area_count = 1'000'000;

inline const std::vector<std::uint32_t> &keys() {
  static const std::vector<std::uint32_t> shuffled = [] {
    std::vector<std::uint32_t> list(area_count);
    std::iota(list.begin(), list.end(), 0u);
    std::shuffle(list.begin(), list.end(), std::mt19937(20));
    return list;
  }();
  return shuffled;
}

class Areas {
 public:
  Areas() { open(); }
  // In a store, whose write lock is held as long as this lives.
  explicit Areas(const std::string &file) : store(file) {
    store.lock_write();
    open();
  }
  ~Areas() {
    tbl_ospf_area_table_free(store, 0, table, &err);
    require(err);
  }
  void make() {
    records.reserve(area_count);
    for (std::uint32_t key : keys()) {
      auto *record = tbl_ospf_area_create_record(store, 0, &err);
      ospf_area *area = ospf_area_create(store, 0);
      ospf_area_area_id_set_value(store, 0, area, key, &err);
      tbl_ospf_area_ospf_area_set_field(store, 0, record, area);
      records.push_back(record);
    }
  }
  void insert() {
    for (auto *record : records) tbl_ospf_area_insert(store, 0, table, record, &err);
  }
  // Gives the number of steps.
  std::size_t walk() {
    std::size_t steps = 0;
    for (auto *record = tbl_ospf_area_ospf_area_area_id_get_first(store, 0, table, &err);
         record != nullptr;
         record = tbl_ospf_area_ospf_area_area_id_get_next(store, 0, table, record, &err)) {
      ++steps;
    }
    return steps;
  }
  // The row behind each record, in the order in which they were made; gives the sum of their keys.
  std::uint64_t look_up() {
    std::uint64_t sum = 0;
    for (auto *record : records) {
      auto *next = tbl_ospf_area_ospf_area_area_id_get_next(store, 0, table, record, &err);
      if (next == nullptr) continue;
      ospf_area *area = tbl_ospf_area_ospf_area_get_field(store, 0, next);
      sum += ospf_area_area_id_get_value(store, 0, area, &err);
    }
    return sum;
  }
  void destroy() {
    for (auto *record : records) tbl_ospf_area_destroy_record(store, 0, record, &err);
    records.clear();
  }

  Store store;
  std::uint32_t err = 0;
  tbl_ospf_area_table *table = nullptr;
  std::vector<tbl_ospf_area_record *> records;

 private:
  void open() { table = tbl_ospf_area_table_open(store, 0, "areas", 0, &err); }
};

}  // namespace bench
