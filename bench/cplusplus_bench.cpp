// What the C++ headers cost beyond the C functions that they call: the same rows read through both.
#include <benchmark/benchmark.h>

#include <ospf_harbor.hpp>
#include <string>

namespace {

// Interfaces enough for a million fields.
constexpr int rows_of_each = 50'000;

struct Interfaces {
  ospf_harbor::database data{"bench"};
  ospf_harbor::session at{data};
  ospf_harbor::interface_tree table{at};

  Interfaces() {
    for (int number = 0; number < rows_of_each; ++number) {
      const auto row = table.add("eth" + std::to_string(number));
      row->set_cost(static_cast<std::uint16_t>(number));
    }
  }
};

void read_fields_in_c(benchmark::State &state) {
  const Interfaces made;
  kelp_handle *handle = made.at.handle();
  for (auto _ : state) {
    std::uint64_t sum = 0;
    std::uint32_t err = 0;
    for (auto *record = tbl_ospf_interface_pkey_get_first(handle, 0, made.table.get(), &err);
         record != nullptr;
         record = tbl_ospf_interface_pkey_get_next(handle, 0, made.table.get(), record, &err)) {
      ospf_interface *object = tbl_ospf_interface_ospf_interface_get_field(handle, 0, record);
      sum += ospf_interface_cost_get_value(handle, 0, object, &err);
      sum += ospf_interface_hello_interval_get_value(handle, 0, object, &err);
      sum += ospf_interface_dead_interval_get_value(handle, 0, object, &err);
      sum += ospf_interface_retransmit_interval_get_value(handle, 0, object, &err);
      sum += ospf_interface_transmit_delay_get_value(handle, 0, object, &err);
      sum += ospf_interface_hello_timer_get_value(handle, 0, object, &err);
      sum += ospf_interface_wait_timer_get_value(handle, 0, object, &err);
      sum += ospf_interface_priority_get_value(handle, 0, object, &err);
      sum += ospf_interface_passive_get_value(handle, 0, object, &err) != 0;
      sum += ospf_interface_enable_get_value(handle, 0, object, &err) != 0;
      sum += ospf_interface_lls_get_value(handle, 0, object, &err) != 0;
      sum += ospf_interface_bfd_get_value(handle, 0, object, &err) != 0;
      sum += ospf_interface_mtu_ignore_get_value(handle, 0, object, &err) != 0;
      sum += ospf_interface_node_flag_get_value(handle, 0, object, &err) != 0;
      sum += ospf_interface_demand_circuit_get_value(handle, 0, object, &err) != 0;
      sum += ospf_interface_prefix_suppression_get_value(handle, 0, object, &err) != 0;
      sum += ospf_interface_network_type_get_value(handle, 0, object, &err);
      const kelp_vstring *name = ospf_interface_name_get(handle, 0, object, &err);
      sum += name->length;
      const kelp_vstring *text = ospf_interface_state_get(handle, 0, object, &err);
      sum += text->length;
      const ip_address *dr = ospf_interface_dr_get(handle, 0, object, &err);
      sum += dr->family;
    }
    if (err != 0) state.SkipWithError("a field could not be read");
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * rows_of_each * 20);
}
BENCHMARK(read_fields_in_c)->Unit(benchmark::kMillisecond);

void read_fields_in_cplusplus(benchmark::State &state) {
  const Interfaces made;
  for (auto _ : state) {
    std::uint64_t sum = 0;
    for (const auto row : made.table) {
      const auto object = row.object();
      sum += object.cost();
      sum += object.hello_interval();
      sum += object.dead_interval();
      sum += object.retransmit_interval();
      sum += object.transmit_delay();
      sum += object.hello_timer();
      sum += object.wait_timer();
      sum += object.priority();
      sum += object.passive();
      sum += object.enable();
      sum += object.lls();
      sum += object.bfd();
      sum += object.mtu_ignore();
      sum += object.node_flag();
      sum += object.demand_circuit();
      sum += object.prefix_suppression();
      sum += static_cast<std::uint32_t>(object.network_type());
      sum += object.name().size();
      sum += object.state().size();
      sum += object.dr().get().family;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * rows_of_each * 20);
}
BENCHMARK(read_fields_in_cplusplus)->Unit(benchmark::kMillisecond);

}  // namespace
