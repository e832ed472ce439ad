// A table of a million areas beside std::map and Boost's intrusive avl_set on the same keys: made
// and inserted, walked, destroyed. Keys come in one seeded shuffled order.
#include <benchmark/benchmark.h>

#include <boost/intrusive/avl_set.hpp>
#include <map>
#include <vector>

#include "areas.hpp"

namespace {

using bench::Areas;
using bench::keys;
constexpr std::size_t count = bench::area_count;

// --- our table: a record and an object for each key
// -----------------------------------------------

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
    if (areas.walk() != count) state.SkipWithError("the walk missed records");
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
