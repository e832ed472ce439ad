// A table of areas beside std::map and Boost's intrusive avl_set on the same keys: made and
// inserted, found, stepped from in any order, walked by steps, taken out and ended; and a table
// with keys of three numbers beside such an avl_set. Making a row is part of inserting it on every
// side, and ending it part of erasing it. Keys come in one seeded shuffled order.
#include <benchmark/benchmark.h>
#include <ospf_harbor_oper.h>

#include <algorithm>
#include <array>
#include <boost/intrusive/avl_set.hpp>
#include <map>
#include <memory>
#include <numeric>
#include <random>
#include <vector>

#include "resident_bytes.hpp"
#include "store.hpp"

namespace {

std::vector<std::uint32_t> keys(std::size_t count) {
  std::vector<std::uint32_t> list(count);
  std::iota(list.begin(), list.end(), 1u);
  std::shuffle(list.begin(), list.end(), std::mt19937(20));
  return list;
}

// --- the tables and their peers, with the same operations ---------------------------------------

// A record and an object for each key. Found is the record behind a position, which is how a table
// is asked for a key.
class Areas {
 public:
  using Row = tbl_ospf_area_record;
  Areas() : table_(tbl_ospf_area_table_open(store, 0, "areas", 0, &err)), position_(make(0)) {}
  ~Areas() {
    tbl_ospf_area_destroy_record(store, 0, position_, &err);
    tbl_ospf_area_table_free(store, 0, table_, &err);
    bench::require(err);
  }
  Row *insert(std::uint32_t key) {
    Row *row = make(key);
    tbl_ospf_area_insert(store, 0, table_, row, &err);
    return row;
  }
  void *get(std::uint32_t key) {
    ospf_area *area = tbl_ospf_area_ospf_area_get_field(store, 0, position_);
    ospf_area_area_id_set_value(store, 0, area, key - 1, &err);
    return next(position_);
  }
  Row *first() { return tbl_ospf_area_ospf_area_area_id_get_first(store, 0, table_, &err); }
  Row *next(Row *row) {
    return tbl_ospf_area_ospf_area_area_id_get_next(store, 0, table_, row, &err);
  }
  Row *behind(Row *row) { return next(row); }
  void erase(Row *row) { tbl_ospf_area_destroy_record(store, 0, row, &err); }

  bench::Store store;
  std::uint32_t err = 0;

 private:
  Row *make(std::uint32_t key) {
    Row *row = tbl_ospf_area_create_record(store, 0, &err);
    ospf_area *area = ospf_area_create(store, 0);
    ospf_area_area_id_set_value(store, 0, area, key, &err);
    tbl_ospf_area_ospf_area_set_field(store, 0, row, area);
    return row;
  }

  tbl_ospf_area_table *table_;
  Row *position_;
};

// A key object and a data object for each key, which is three numbers.
class Links {
 public:
  using Row = tbl_ospfv3_link_record;
  Links() : table_(tbl_ospfv3_link_table_open(store, 0, "links", 0, &err)), position_(make(0)) {}
  ~Links() {
    tbl_ospfv3_link_destroy_record(store, 0, position_, &err);
    tbl_ospfv3_link_table_free(store, 0, table_, &err);
    bench::require(err);
  }
  Row *insert(std::uint32_t key) {
    Row *row = make(key);
    tbl_ospfv3_link_insert(store, 0, table_, row, &err);
    return row;
  }
  void *get(std::uint32_t key) {
    set(tbl_ospfv3_link_ospfv3_link_key_get_field(store, 0, position_), key - 1);
    return behind(position_);
  }
  Row *behind(Row *row) {
    return tbl_ospfv3_link_ospfv3_link_key__get_next(store, 0, table_, row, &err);
  }
  void erase(Row *row) { tbl_ospfv3_link_destroy_record(store, 0, row, &err); }

  bench::Store store;
  std::uint32_t err = 0;

 private:
  Row *make(std::uint32_t key) {
    Row *row = tbl_ospfv3_link_create_record(store, 0, &err);
    ospfv3_link_key *object = ospfv3_link_key_create(store, 0);
    set(object, key);
    tbl_ospfv3_link_ospfv3_link_key_set_field(store, 0, row, object);
    tbl_ospfv3_link_ospfv3_link_set_field(store, 0, row, ospfv3_link_create(store, 0));
    return row;
  }
  void set(ospfv3_link_key *object, std::uint32_t key) {
    ospfv3_link_key_interface_id_set_value(store, 0, object, key / 1000, &err);
    ospfv3_link_key_neighbor_interface_id_set_value(store, 0, object, key % 1000, &err);
    ospfv3_link_key_neighbor_router_id_set_value(store, 0, object, 7, &err);
  }

  tbl_ospfv3_link_table *table_;
  Row *position_;
};

// As much as an area's object holds.
struct Value {
  std::uint8_t bytes[112];
};

class Map {
 public:
  using Row = std::pair<const std::uint32_t, Value>;
  Row *insert(std::uint32_t key) { return &*map_.try_emplace(key).first; }
  void *get(std::uint32_t key) { return &*map_.find(key); }
  Row *first() {
    at_ = map_.begin();
    return here();
  }
  Row *next(Row *) {
    ++at_;
    return here();
  }
  Row *behind(Row *row) {
    at_ = map_.upper_bound(row->first);
    return here();
  }
  void erase(Row *row) { map_.erase(row->first); }

 private:
  Row *here() { return at_ == map_.end() ? nullptr : &*at_; }
  std::map<std::uint32_t, Value> map_;
  std::map<std::uint32_t, Value>::iterator at_;
};

template <typename Key>
class IntrusiveSet {
 public:
  struct Row : boost::intrusive::avl_set_base_hook<> {
    explicit Row(const Key &its_key) : key(its_key) {}
    Key key;
    std::unique_ptr<Value> value = std::make_unique<Value>();
    friend bool operator<(const Row &a, const Row &b) { return a.key < b.key; }
  };
  Row *insert(std::uint32_t key) {
    auto *row = new Row(key_of(key));
    set_.insert(*row);
    return row;
  }
  void *get(std::uint32_t key) {
    return &*set_.find(key_of(key), [](const auto &a, const auto &b) { return of(a) < of(b); });
  }
  Row *first() { return set_.empty() ? nullptr : &*set_.begin(); }
  Row *next(Row *row) {
    const auto following = std::next(set_.iterator_to(*row));
    return following == set_.end() ? nullptr : &*following;
  }
  Row *behind(Row *row) { return next(row); }
  void erase(Row *row) {
    set_.erase(set_.iterator_to(*row));
    delete row;
  }

 private:
  static Key key_of(std::uint32_t key) {
    if constexpr (std::is_same_v<Key, std::uint32_t>) {
      return key;
    } else {
      return {key / 1000, key % 1000, 7};
    }
  }
  static const Key &of(const Key &key) { return key; }
  static const Key &of(const Row &row) { return row.key; }
  boost::intrusive::avl_set<Row> set_;
};
using AvlSet = IntrusiveSet<std::uint32_t>;
using AvlSetOfThree = IntrusiveSet<std::array<std::uint32_t, 3>>;

// --- the operations -----------------------------------------------------------------------------

template <typename Rows>
class Filled {
 public:
  explicit Filled(benchmark::State &state) : all(keys(static_cast<std::size_t>(state.range(0)))) {
    rows.reserve(all.size());
  }
  void insert() {
    for (const std::uint32_t key : all) rows.push_back(table.insert(key));
  }
  void erase() {
    for (auto *row : rows) table.erase(row);
    rows.clear();
  }
  std::vector<std::uint32_t> all;
  std::vector<typename Rows::Row *> rows;
  Rows table;
};

void count_rows(benchmark::State &state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename Rows>
void insert(benchmark::State &state) {
  for (auto _ : state) {
    state.PauseTiming();
    Filled<Rows> filled(state);
    const double before = bench::resident_bytes();
    state.ResumeTiming();
    filled.insert();
    state.PauseTiming();
    state.counters["resident_per_row"] =
        (bench::resident_bytes() - before) / static_cast<double>(filled.all.size());
    if constexpr (requires { filled.table.store.memory(); }) {
      state.counters["counted_per_row"] =
          static_cast<double>(filled.table.store.memory().used_bytes +
                              filled.table.store.memory().own_bytes) /
          static_cast<double>(filled.all.size());
    }
    filled.erase();
    state.ResumeTiming();
  }
  count_rows(state);
}

template <typename Rows>
void get(benchmark::State &state) {
  Filled<Rows> filled(state);
  filled.insert();
  for (auto _ : state) {
    for (const std::uint32_t key : filled.all) benchmark::DoNotOptimize(filled.table.get(key));
  }
  filled.erase();
  count_rows(state);
}

// The row behind each row, in the order in which they were made: single steps, none of which needs
// what the one before it gave, as those of a walk do.
template <typename Rows>
void step_from_any(benchmark::State &state) {
  Filled<Rows> filled(state);
  filled.insert();
  for (auto _ : state) {
    for (auto *row : filled.rows) benchmark::DoNotOptimize(filled.table.behind(row));
  }
  filled.erase();
  count_rows(state);
}

template <typename Rows>
void walk(benchmark::State &state) {
  Filled<Rows> filled(state);
  filled.insert();
  for (auto _ : state) {
    std::size_t steps = 0;
    for (auto *row = filled.table.first(); row != nullptr; row = filled.table.next(row)) ++steps;
    if (steps != filled.all.size()) state.SkipWithError("the walk missed rows");
  }
  filled.erase();
  count_rows(state);
}

template <typename Rows>
void erase(benchmark::State &state) {
  for (auto _ : state) {
    state.PauseTiming();
    Filled<Rows> filled(state);
    filled.insert();
    state.ResumeTiming();
    filled.erase();
  }
  count_rows(state);
}

#define ROWS(operation)                                                                            \
  BENCHMARK_TEMPLATE(operation, Areas)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);  \
  BENCHMARK_TEMPLATE(operation, AvlSet)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond); \
  BENCHMARK_TEMPLATE(operation, Map)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)
ROWS(insert);
ROWS(get);
ROWS(step_from_any);
ROWS(walk);
ROWS(erase);
#undef ROWS

#define LINKS(operation)                                                            \
  BENCHMARK_TEMPLATE(operation, Links)->Arg(100000)->Unit(benchmark::kMillisecond); \
  BENCHMARK_TEMPLATE(operation, AvlSetOfThree)->Arg(100000)->Unit(benchmark::kMillisecond)
LINKS(insert);
LINKS(get);
LINKS(step_from_any);
LINKS(erase);
#undef LINKS

}  // namespace
