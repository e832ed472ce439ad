// A table of a million areas beside std::map and Boost's intrusive avl_set on the same keys: made
// and inserted, walked, destroyed. Keys come in one seeded shuffled order.
#include <benchmark/benchmark.h>
#include <ospf_harbor_oper.h>

#include <algorithm>
#include <boost/intrusive/avl_set.hpp>
#include <map>
#include <numeric>
#include <random>
#include <vector>

#include "store.hpp"

namespace {

constexpr std::size_t count = 1'000'000;

const std::vector<std::uint32_t> &keys() {
  static const std::vector<std::uint32_t> shuffled = [] {
    std::vector<std::uint32_t> list(count);
    std::iota(list.begin(), list.end(), 0u);
    std::shuffle(list.begin(), list.end(), std::mt19937(20));
    return list;
  }();
  return shuffled;
}

// --- our table: a record and an object for each key
// -----------------------------------------------

class Areas {
 public:
  Areas() : table(tbl_ospf_area_table_open(store, 0, "areas", 0, &err)) {}
  ~Areas() {
    tbl_ospf_area_table_free(store, 0, table, &err);
    bench::require(err);
  }
  void make() {
    records.reserve(count);
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
  void destroy() {
    for (auto *record : records) tbl_ospf_area_destroy_record(store, 0, record, &err);
    records.clear();
  }

  bench::Store store;
  std::uint32_t err = 0;
  tbl_ospf_area_table *table;
  std::vector<tbl_ospf_area_record *> records;
};

void insert_ospf_area(benchmark::State &state) {
  for (auto _ : state) {
    state.PauseTiming();
    Areas areas;
    areas.make();
    const auto before = areas.store.memory().total_allocations;
    state.ResumeTiming();
    areas.insert();
    state.PauseTiming();
    const auto memory = areas.store.memory();
    state.counters["allocations_per_insert"] =
        static_cast<double>(memory.total_allocations - before) / count;
    state.counters["bytes_per_row"] = static_cast<double>(memory.used_bytes) / count;
    areas.destroy();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * count));
}
BENCHMARK(insert_ospf_area)->Unit(benchmark::kMillisecond)->Iterations(2);

void walk_ospf_area(benchmark::State &state) {
  Areas areas;
  areas.make();
  areas.insert();
  for (auto _ : state) {
    std::size_t steps = 0;
    for (auto *record =
             tbl_ospf_area_ospf_area_area_id_get_first(areas.store, 0, areas.table, &areas.err);
         record != nullptr; record = tbl_ospf_area_ospf_area_area_id_get_next(
                                areas.store, 0, areas.table, record, &areas.err)) {
      ++steps;
    }
    if (steps != count) state.SkipWithError("the walk missed records");
  }
  areas.destroy();
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * count));
}
BENCHMARK(walk_ospf_area)->Unit(benchmark::kMillisecond)->Iterations(2);

void destroy_ospf_area(benchmark::State &state) {
  for (auto _ : state) {
    state.PauseTiming();
    Areas areas;
    areas.make();
    areas.insert();
    state.ResumeTiming();
    areas.destroy();
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * count));
}
BENCHMARK(destroy_ospf_area)->Unit(benchmark::kMillisecond)->Iterations(2);

// --- std::map
// ---------------------------------------------------------------------------------------

struct Value {
  std::uint8_t bytes[128];
};

void insert_std_map(benchmark::State &state) {
  for (auto _ : state) {
    std::map<std::uint32_t, Value> map;
    for (std::uint32_t key : keys()) map.try_emplace(key);
    state.PauseTiming();
    map.clear();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * count));
}
BENCHMARK(insert_std_map)->Unit(benchmark::kMillisecond)->Iterations(2);

void walk_std_map(benchmark::State &state) {
  std::map<std::uint32_t, Value> map;
  for (std::uint32_t key : keys()) map.try_emplace(key);
  for (auto _ : state) {
    for (auto &entry : map) benchmark::DoNotOptimize(&entry);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * count));
}
BENCHMARK(walk_std_map)->Unit(benchmark::kMillisecond)->Iterations(2);

void destroy_std_map(benchmark::State &state) {
  for (auto _ : state) {
    state.PauseTiming();
    std::map<std::uint32_t, Value> map;
    for (std::uint32_t key : keys()) map.try_emplace(key);
    state.ResumeTiming();
    for (std::uint32_t key : keys()) map.erase(key);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * count));
}
BENCHMARK(destroy_std_map)->Unit(benchmark::kMillisecond)->Iterations(2);

// --- Boost's intrusive AVL tree
// ---------------------------------------------------------------------

struct Node : boost::intrusive::avl_set_base_hook<> {
  std::uint32_t key;
  Value value;
  friend bool operator<(const Node &a, const Node &b) { return a.key < b.key; }
};

std::vector<Node *> nodes() {
  std::vector<Node *> list;
  list.reserve(count);
  for (std::uint32_t key : keys()) {
    list.push_back(new Node);
    list.back()->key = key;
  }
  return list;
}

void insert_boost_avl_set(benchmark::State &state) {
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<Node *> list = nodes();
    boost::intrusive::avl_set<Node> set;
    state.ResumeTiming();
    for (Node *node : list) set.insert(*node);
    state.PauseTiming();
    set.clear();
    for (Node *node : list) delete node;
    state.ResumeTiming();
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * count));
}
BENCHMARK(insert_boost_avl_set)->Unit(benchmark::kMillisecond)->Iterations(2);

void walk_boost_avl_set(benchmark::State &state) {
  std::vector<Node *> list = nodes();
  boost::intrusive::avl_set<Node> set;
  for (Node *node : list) set.insert(*node);
  for (auto _ : state) {
    for (Node &node : set) benchmark::DoNotOptimize(&node);
  }
  set.clear();
  for (Node *node : list) delete node;
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * count));
}
BENCHMARK(walk_boost_avl_set)->Unit(benchmark::kMillisecond)->Iterations(2);

void destroy_boost_avl_set(benchmark::State &state) {
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<Node *> list = nodes();
    boost::intrusive::avl_set<Node> set;
    for (Node *node : list) set.insert(*node);
    state.ResumeTiming();
    for (Node *node : list) {
      set.erase(set.iterator_to(*node));
      delete node;
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * count));
}
BENCHMARK(destroy_boost_avl_set)->Unit(benchmark::kMillisecond)->Iterations(2);

}  // namespace
