// Whole records beside plain structs and memcpy: an LSA filled with raw data and destroyed, an
// array replaced as a whole, and a full LSA compared and hashed.
#include <benchmark/benchmark.h>
#include <kelp/hash.h>
#include <kelp/primitives.h>
#include <ospf_harbor_oper.h>

#include <array>
#include <cstring>
#include <numeric>
#include <vector>

#include "store.hpp"

namespace {

constexpr std::size_t raw_size = 600;
constexpr std::size_t router_count = 1000;

std::vector<std::uint8_t> raw_data() {
  std::vector<std::uint8_t> data(raw_size);
  std::iota(data.begin(), data.end(), std::uint8_t{1});
  return data;
}

// --- an LSA made, filled and destroyed ----------------------------------------------------------

// The null line: two blocks of the sizes that the record takes, one of them filled.
void null_fill_destroy(benchmark::State &state) {
  bench::Store store(static_cast<std::uint32_t>(state.range(0)));
  const std::vector<std::uint8_t> data = raw_data();
  const std::size_t size = link_scope_lsa_sizeof(store);
  for (auto _ : state) {
    void *object = std::calloc(1, size);
    void *raw = std::malloc(raw_size);
    std::memcpy(raw, data.data(), raw_size);
    benchmark::DoNotOptimize(object);
    benchmark::DoNotOptimize(raw);
    std::free(raw);
    std::free(object);
  }
}
BENCHMARK(null_fill_destroy)->ArgName("tracking")->Arg(KELP_TRACKING_ABSENT)->Arg(KELP_TRACKING_ON);

void fill_destroy_link_scope_lsa(benchmark::State &state) {
  bench::Store store(static_cast<std::uint32_t>(state.range(0)));
  const std::vector<std::uint8_t> data = raw_data();
  std::uint32_t err = 0;
  const auto before = store.memory().total_allocations;
  for (auto _ : state) {
    link_scope_lsa *lsa = link_scope_lsa_create(store, 0);
    link_scope_lsa_decoded_completed_set_value(store, 0, lsa, 1, &err);
    link_scope_lsa_version_set_value(store, 0, lsa, 2, &err);
    link_scope_lsa_raw_data_set_mem(store, 0, lsa, data.data(), raw_size, &err);
    link_scope_lsa_destroy(store, 0, lsa);
  }
  bench::require(err);
  state.counters["allocations"] = static_cast<double>(store.memory().total_allocations - before) /
                                  static_cast<double>(state.iterations());
}
BENCHMARK(fill_destroy_link_scope_lsa)
    ->ArgName("tracking")
    ->Arg(KELP_TRACKING_ABSENT)
    ->Arg(KELP_TRACKING_ON);

// --- an array replaced as a whole ---------------------------------------------------------------

std::array<std::uint32_t, router_count> routers() {
  std::array<std::uint32_t, router_count> values;
  std::iota(values.begin(), values.end(), 0x0A000001u);
  return values;
}

void null_set_mem(benchmark::State &state) {
  const auto values = routers();
  std::vector<std::uint32_t> held(router_count);
  for (auto _ : state) {
    std::memcpy(held.data(), values.data(), sizeof values);
    benchmark::DoNotOptimize(held.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * sizeof values));
}
BENCHMARK(null_set_mem);

// With the block given back and taken anew, as every replacement does.
void null_set_mem_anew(benchmark::State &state) {
  const auto values = routers();
  void *held = nullptr;
  for (auto _ : state) {
    std::free(held);
    held = std::malloc(sizeof values);
    std::memcpy(held, values.data(), sizeof values);
    benchmark::DoNotOptimize(held);
    benchmark::ClobberMemory();
  }
  std::free(held);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * sizeof values));
}
BENCHMARK(null_set_mem_anew);

void attached_router_set_mem(benchmark::State &state) {
  bench::Store store(static_cast<std::uint32_t>(state.range(0)));
  const auto values = routers();
  std::uint32_t err = 0;
  ospfv2_network *network = ospfv2_network_create(store, 0);
  for (auto _ : state) {
    ospfv2_network_attached_router_set_mem(store, 0, network, values.data(), router_count, &err);
  }
  bench::require(err);
  ospfv2_network_destroy(store, 0, network);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * sizeof values));
}
BENCHMARK(attached_router_set_mem)
    ->ArgName("tracking")
    ->Arg(KELP_TRACKING_ABSENT)
    ->Arg(KELP_TRACKING_ON);

// --- a full LSA compared and hashed -------------------------------------------------------------

// The bytes of a record without its pointers, and its raw data in place.
struct PlainLsa {
  std::vector<std::uint8_t> fields;
  std::array<std::uint8_t, raw_size> raw;
};

PlainLsa plain_lsa(std::size_t size) {
  PlainLsa lsa;
  lsa.fields.assign(size, 0x5A);
  const std::vector<std::uint8_t> data = raw_data();
  std::memcpy(lsa.raw.data(), data.data(), raw_size);
  return lsa;
}

[[gnu::noinline]] int plain_compare(const PlainLsa &a, const PlainLsa &b) {
  const int order = std::memcmp(a.fields.data(), b.fields.data(), a.fields.size());
  return order != 0 ? order : std::memcmp(a.raw.data(), b.raw.data(), raw_size);
}
[[gnu::noinline]] std::uint32_t plain_hash(const PlainLsa &lsa, std::uint32_t seed) {
  seed = SuperFastHash(lsa.fields.data(), static_cast<std::uint32_t>(lsa.fields.size()), seed);
  return SuperFastHash(lsa.raw.data(), raw_size, seed);
}

// An area's LSA with its raw data, and with values in both typed forms.
class Lsa {
 public:
  explicit Lsa(kelp_handle *handle) : handle_(handle), object_(area_scope_lsa_create(handle, 0)) {
    const std::vector<std::uint8_t> data = raw_data();
    std::uint32_t err = 0;
    area_scope_lsa_decoded_completed_set_value(handle_, 0, object_, 1, &err);
    area_scope_lsa_raw_data_set_mem(handle_, 0, object_, data.data(), raw_size, &err);
    fill_ospfv2(&err);
    fill_ospfv3(&err);
    bench::require(err);
  }
  ~Lsa() { area_scope_lsa_destroy(handle_, 0, object_); }
  Lsa(const Lsa &) = delete;
  Lsa &operator=(const Lsa &) = delete;
  const area_scope_lsa *get() const { return object_; }

 private:
  static std::array<std::uint32_t, 32> some_routers() {
    std::array<std::uint32_t, 32> values;
    std::iota(values.begin(), values.end(), 0x0A000001u);
    return values;
  }
  void fill_ospfv2(std::uint32_t *err) {
    const auto values = some_routers();
    ospfv2_lsa *lsa = area_scope_lsa_ospfv2_lsa_val_get(handle_, 0, object_, err);
    ospfv2_lsa_body *body = ospfv2_lsa_lsa_body_get(handle_, 0, lsa, err);
    ospfv2_network *network = ospfv2_lsa_body_network_get(handle_, 0, body, err);
    ospfv2_network_attached_router_set_mem(handle_, 0, network, values.data(), values.size(), err);
  }
  void fill_ospfv3(std::uint32_t *err) {
    const auto values = some_routers();
    ospfv3_lsa *lsa = area_scope_lsa_ospfv3_lsa_val_get(handle_, 0, object_, err);
    ospfv3_lsa_body *body = ospfv3_lsa_lsa_body_get(handle_, 0, lsa, err);
    ospfv3_network *network = ospfv3_lsa_body_network_get(handle_, 0, body, err);
    ospfv3_network_attached_router_set_mem(handle_, 0, network, values.data(), values.size(), err);
  }

  kelp_handle *handle_;
  area_scope_lsa *object_;
};

void null_compare(benchmark::State &state) {
  bench::Store store;
  const PlainLsa a = plain_lsa(area_scope_lsa_sizeof(store));
  const PlainLsa b = a;
  for (auto _ : state) benchmark::DoNotOptimize(plain_compare(a, b));
}
BENCHMARK(null_compare);

void compare_area_scope_lsa(benchmark::State &state) {
  bench::Store store;
  const Lsa a(store);
  const Lsa b(store);
  if (area_scope_lsa_compare(a.get(), b.get()) != 0) state.SkipWithError("the two differ");
  for (auto _ : state) benchmark::DoNotOptimize(area_scope_lsa_compare(a.get(), b.get()));
}
BENCHMARK(compare_area_scope_lsa);

void null_hash(benchmark::State &state) {
  bench::Store store;
  const PlainLsa lsa = plain_lsa(area_scope_lsa_sizeof(store));
  for (auto _ : state) benchmark::DoNotOptimize(plain_hash(lsa, 1));
}
BENCHMARK(null_hash);

void hash_area_scope_lsa(benchmark::State &state) {
  bench::Store store;
  const Lsa lsa(store);
  for (auto _ : state) benchmark::DoNotOptimize(area_scope_lsa_hash(lsa.get(), 1));
}
BENCHMARK(hash_area_scope_lsa);

}  // namespace
