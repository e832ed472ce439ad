// Records: their images beside a copy of as many bytes, with state bytes and without; tables made
// and freed; and rows whose key is an object of three numbers beside std::map on such keys, the
// making of a row included on both sides.
#include <benchmark/benchmark.h>
#include <ospf_harbor_oper.h>

#include <array>
#include <cstring>
#include <map>
#include <vector>

#include "store.hpp"

namespace {

// --- images -------------------------------------------------------------------------------------

class Record {
 public:
  explicit Record(std::uint32_t tracking)
      : store(tracking), record(tbl_ospf_area_create_record(store, 0, &err)) {
    ospf_area *area = ospf_area_create(store, 0);
    ospf_area_area_id_set_value(store, 0, area, 51, &err);
    tbl_ospf_area_ospf_area_set_field(store, 0, record, area);
    bench::require(err);
    image.resize(tbl_ospf_area_table_record_len(store, 0, record) + 64);
  }
  ~Record() { tbl_ospf_area_destroy_record(store, 0, record, &err); }
  std::uint32_t write() {
    return tbl_ospf_area_table_record_marshal(store, 0, image.data(), record,
                                              static_cast<std::int32_t>(image.size()), &err);
  }

  bench::Store store;
  std::uint32_t err = 0;
  tbl_ospf_area_record *record;
  std::vector<std::uint8_t> image;
};

void null_record_image(benchmark::State &state) {
  Record record(KELP_TRACKING_ABSENT);
  const std::uint32_t length = record.write();
  const std::vector<std::uint8_t> from = record.image;
  for (auto _ : state) {
    std::memcpy(record.image.data(), from.data(), length);
    benchmark::ClobberMemory();
  }
  state.counters["bytes"] = length;
}
BENCHMARK(null_record_image);

void record_image_written(benchmark::State &state) {
  Record record(static_cast<std::uint32_t>(state.range(0)));
  for (auto _ : state) state.counters["bytes"] = record.write();
  bench::require(record.err);
}
void record_image_read(benchmark::State &state) {
  Record record(static_cast<std::uint32_t>(state.range(0)));
  const auto length = static_cast<std::int32_t>(record.write());
  for (auto _ : state) {
    tbl_ospf_area_record *made = nullptr;
    tbl_ospf_area_table_record_unmarshal(record.store, 0, &made, record.image.data(), length, 0,
                                         &record.err);
    tbl_ospf_area_destroy_record(record.store, 0, made, &record.err);
  }
  bench::require(record.err);
}
#define TRACKED(operation) \
  BENCHMARK(operation)->ArgName("tracking")->Arg(KELP_TRACKING_ABSENT)->Arg(KELP_TRACKING_ON)
TRACKED(record_image_written);
TRACKED(record_image_read);
#undef TRACKED

// The image of an area as this edition writes it, and as a newer one would, whose fields behind
// those that are known here are jumped.
void area_image_read(benchmark::State &state) {
  bench::Store store;
  std::uint32_t err = 0;
  ospf_area *area = ospf_area_create(store, 0);
  const std::uint32_t length = ospf_area_len(store, 0, area);
  std::vector<std::uint8_t> image(length);
  ospf_area_marshal(store, 0, image.data(), area, static_cast<std::int32_t>(length), &err);
  const auto more = static_cast<std::uint8_t>(state.range(0));
  if (more != 0) {
    constexpr std::size_t variant = 0;
    constexpr std::size_t lowest_of_jump = 5;
    ++image[variant];
    image[lowest_of_jump] = static_cast<std::uint8_t>(image[lowest_of_jump] + more);
    image.resize(length + more, 0xEE);
  }
  const auto size = static_cast<std::int32_t>(image.size());
  for (auto _ : state) {
    if (ospf_area_unmarshal(store, 0, image.data(), area, size, 0, &err) != image.size()) {
      state.SkipWithError("not all of the image was read");
      break;
    }
  }
  ospf_area_destroy(store, 0, area);
  bench::require(err);
}
BENCHMARK(area_image_read)->ArgName("newer")->Arg(0)->Arg(16);

// --- tables -------------------------------------------------------------------------------------

// A new table beside so many others.
void table_open_and_free(benchmark::State &state) {
  bench::Store store;
  std::uint32_t err = 0;
  std::vector<tbl_ospf_area_table *> others;
  for (std::int64_t at = 0; at < state.range(0); ++at) {
    others.push_back(tbl_ospf_area_table_open_auto_id(store, 0, 0, &err));
  }
  for (auto _ : state) {
    tbl_ospf_area_table_free(store, 0, tbl_ospf_area_table_open_auto_id(store, 0, 0, &err), &err);
  }
  for (auto *table : others) tbl_ospf_area_table_free(store, 0, table, &err);
  bench::require(err);
}
BENCHMARK(table_open_and_free)->ArgName("others")->Arg(0)->Arg(100'000);

// A table that is there, by its name.
void table_found(benchmark::State &state) {
  bench::Store store;
  std::uint32_t err = 0;
  auto *table = tbl_ospf_area_table_open(store, 0, "areas", 0, &err);
  for (auto _ : state) {
    benchmark::DoNotOptimize(tbl_ospf_area_table_open(store, 0, "areas", 0, &err));
  }
  tbl_ospf_area_table_free(store, 0, table, &err);
  bench::require(err);
}
BENCHMARK(table_found);

// --- keys of several fields ---------------------------------------------------------------------

using Key = std::array<std::uint32_t, 3>;

// In an order that is not the keys'.
std::vector<Key> keys() {
  std::vector<Key> all;
  for (std::uint32_t at = 0; at < 100'000; ++at) {
    const std::uint32_t mixed = at * 2654435761u;
    all.push_back({mixed % 1000, mixed / 1000 % 100, at});
  }
  return all;
}

void null_composite_keys(benchmark::State &state) {
  const std::vector<Key> all = keys();
  for (auto _ : state) {
    std::map<Key, std::array<std::uint8_t, 32>> map;
    for (const Key &key : all) map.try_emplace(key);
    for (const Key &key : all) map.erase(key);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(all.size()));
}
BENCHMARK(null_composite_keys)->Unit(benchmark::kMillisecond);

void composite_keys(benchmark::State &state) {
  bench::Store store;
  std::uint32_t err = 0;
  const std::vector<Key> all = keys();
  auto *table = tbl_ospfv3_link_table_open(store, 0, "links", 0, &err);
  std::vector<tbl_ospfv3_link_record *> records;
  for (auto _ : state) {
    for (const Key &key : all) {
      auto *record = tbl_ospfv3_link_create_record(store, 0, &err);
      ospfv3_link_key *object = ospfv3_link_key_create(store, 0);
      ospfv3_link_key_interface_id_set_value(store, 0, object, key[0], &err);
      ospfv3_link_key_neighbor_interface_id_set_value(store, 0, object, key[1], &err);
      ospfv3_link_key_neighbor_router_id_set_value(store, 0, object, key[2], &err);
      tbl_ospfv3_link_ospfv3_link_key_set_field(store, 0, record, object);
      tbl_ospfv3_link_ospfv3_link_set_field(store, 0, record, ospfv3_link_create(store, 0));
      tbl_ospfv3_link_insert(store, 0, table, record, &err);
      records.push_back(record);
    }
    for (auto *record : records) tbl_ospfv3_link_destroy_record(store, 0, record, &err);
    records.clear();
  }
  tbl_ospfv3_link_table_free(store, 0, table, &err);
  bench::require(err);
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(all.size()));
}
BENCHMARK(composite_keys)->Unit(benchmark::kMillisecond);

}  // namespace
