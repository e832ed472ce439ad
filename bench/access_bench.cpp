// Getters, setters, and objects made and destroyed, each beside a null line: the same loop over a
// plain struct behind calls that the compiler cannot see through.
#include <benchmark/benchmark.h>
#include <ospf_harbor_oper.h>

#include "store.hpp"

namespace {

struct Plain {
  std::uint32_t area_id;
};

[[gnu::noinline]] std::uint32_t plain_get(const Plain *object) {
  benchmark::ClobberMemory();
  return object->area_id;
}
[[gnu::noinline]] void plain_set(Plain *object, std::uint32_t value) {
  object->area_id = value;
  benchmark::ClobberMemory();
}

void null_getter(benchmark::State &state) {
  Plain object{51};
  for (auto _ : state) benchmark::DoNotOptimize(plain_get(&object));
}
BENCHMARK(null_getter);

void getter(benchmark::State &state) {
  bench::Store store;
  std::uint32_t err = 0;
  ospf_area *area = ospf_area_create(store, 0);
  for (auto _ : state) {
    benchmark::DoNotOptimize(ospf_area_area_id_get_value(store, 0, area, &err));
  }
  bench::require(err);
  ospf_area_destroy(store, 0, area);
}
BENCHMARK(getter);

void null_setter(benchmark::State &state) {
  Plain object{51};
  std::uint32_t value = 0;
  for (auto _ : state) plain_set(&object, ++value);
}
BENCHMARK(null_setter);

void setter(benchmark::State &state) {
  bench::Store store(static_cast<std::uint32_t>(state.range(0)));
  std::uint32_t err = 0;
  std::uint32_t value = 0;
  ospf_area *area = ospf_area_create(store, 0);
  for (auto _ : state) ospf_area_area_id_set_value(store, 0, area, ++value, &err);
  bench::require(err);
  ospf_area_destroy(store, 0, area);
}
BENCHMARK(setter)->ArgName("tracking")->Arg(KELP_TRACKING_ABSENT)->Arg(KELP_TRACKING_ON);

void null_create_destroy(benchmark::State &state) {
  const auto size = static_cast<std::size_t>(state.range(0));
  for (auto _ : state) {
    void *memory = std::calloc(1, size);
    benchmark::DoNotOptimize(memory);
    std::free(memory);
  }
}
BENCHMARK(null_create_destroy)->ArgName("bytes")->Arg(16)->Arg(624);

void create_destroy_address_family(benchmark::State &state) {
  bench::Store store;
  for (auto _ : state) address_family_destroy(store, 0, address_family_create(store, 0));
}
BENCHMARK(create_destroy_address_family);

void create_destroy_ospf_interface(benchmark::State &state) {
  bench::Store store(static_cast<std::uint32_t>(state.range(0)));
  for (auto _ : state) ospf_interface_destroy(store, 0, ospf_interface_create(store, 0));
}
BENCHMARK(create_destroy_ospf_interface)
    ->ArgName("tracking")
    ->Arg(KELP_TRACKING_ABSENT)
    ->Arg(KELP_TRACKING_ON);

}  // namespace
