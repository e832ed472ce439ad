// Object fields: addresses, texts and embedded structures in place, and what their setters take
// from the source.
#include <cstring>

#include "types/object_view.hpp"

namespace {

using namespace harness;
using namespace fields::ospf_neighbor;

class Neighbor : public Single<ospf_neighbor> {
 public:
  explicit Neighbor(std::uint32_t tracking = KELP_TRACKING_ABSENT, std::int32_t variant = 1)
      : Single(ospf_neighbor_create, ospf_neighbor_destroy, {.tracking = tracking}, "ospf_neighbor",
               variant) {}
  std::uint8_t state(const model::Field &field) {
    return area(object, types::ospf_neighbor)[model::state_place(types::ospf_neighbor, field)];
  }
};

TEST(ObjectField, GetGivesThePlaceInsideTheObject) {
  Neighbor neighbor;
  Store &store = neighbor.store;
  EXPECT_EQ(static_cast<void *>(neighbor(ospf_neighbor_address_get)),
            place(neighbor.object, types::ospf_neighbor, address));
  EXPECT_EQ(static_cast<void *>(neighbor(ospf_neighbor_stats_get)),
            place(neighbor.object, types::ospf_neighbor, stats));
  EXPECT_EQ(store.err, 0u);
}

TEST(ObjectField, AnAddressIsCopiedAnnounced) {
  Neighbor neighbor(KELP_TRACKING_ON);
  Store &store = neighbor.store;
  ip_address source = ip_address_make_ipv4(0x0a000001);
  WriteWatch watch(store);
  neighbor(ospf_neighbor_address_set, &source);
  const auto field_at = static_cast<std::ptrdiff_t>(model::offset(types::ospf_neighbor, address));
  const auto state_at = static_cast<std::ptrdiff_t>(
      model::object_size(types::ospf_neighbor) + model::state_place(types::ospf_neighbor, address));
  EXPECT_EQ(ranges_in(watch, neighbor.object), (Ranges{{field_at, 48}, {state_at, 1}}));
  EXPECT_EQ(ip_address_compare(neighbor(ospf_neighbor_address_get), &source), 0);
  EXPECT_EQ(neighbor.state(address), 2);
  EXPECT_EQ(neighbor.state(dr), 0);
}

TEST(ObjectField, ATextMovesAndTheSourceIsLeftEmpty) {
  Store store;
  OWNED(store, multi_topology, object);
  kelp_vstring *source = kelp_vstring_create(store, 0);
  store(kelp_vstring_assign, source, "blue", 4);
  store(multi_topology_name_set, object, source);
  EXPECT_EQ(store.err, 0u);
  EXPECT_STREQ(kelp_vstring_text(store(multi_topology_name_get, object)), "blue");
  EXPECT_STREQ(kelp_vstring_text(source), "");
  kelp_vstring_destroy_internal(store, 0, source, 1);
}

TEST(ObjectField, AnEmbeddedStructureGivesUpItsContentButNotItself) {
  Store store;
  OWNED(store, ospfv2_lsa_body, object);
  OWNED(store, ospfv2_network, source);
  store(ospfv2_network_attached_router_set_value, source, 0, 5);
  store(ospfv2_lsa_body_network_set, object, source);
  EXPECT_EQ(store.err, 0u);
  ospfv2_network *network = store(ospfv2_lsa_body_network_get, object);
  EXPECT_EQ(store(ospfv2_network_attached_router_get_value, network, 0), 5u);
  EXPECT_EQ(store(ospfv2_network_attached_router_num_get_value, source), 0u);
}

TEST(ObjectField, AFieldThatTheVariantLacksGives43AndIsNotWritten) {
  Neighbor neighbor(KELP_TRACKING_ABSENT, 0);
  Store &store = neighbor.store;
  EXPECT_EQ(neighbor(ospf_neighbor_stats_get), nullptr);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  store.err = 0;
  OWNED(store, ospf_nbr_stat, source);
  store(ospf_nbr_stat_nbr_event_count_set_value, source, 4);
  {
    WriteWatch watch(store);
    neighbor(ospf_neighbor_stats_set, source);
    EXPECT_EQ(store.err, KELP_ERR_EPOCH);
    EXPECT_TRUE(watch.writes().empty());
  }
  store.err = 0;
  store.set_variant("ospf_neighbor", 1);
  neighbor(ospf_neighbor_stats_set, source);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(header(neighbor.object).variant, 1);
  auto *stored = neighbor(ospf_neighbor_stats_get);
  EXPECT_EQ(store(ospf_nbr_stat_nbr_event_count_get_value, stored), 4u);
}

TEST(ObjectField, AnUntrackedSourceFailsWithItsBytesCopiedAndTheFieldMarked) {
  Neighbor neighbor(KELP_TRACKING_ON);
  Store &store = neighbor.store;
  kelp_handle *plain = store.another_handle({});
  OWNED(plain, ospf_nbr_stat, source);
  ospf_nbr_stat_nbr_event_count_set_value(plain, 0, source, 4, &store.err);
  TraceLog trace;
  neighbor(ospf_neighbor_stats_set, source);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  EXPECT_EQ(trace.texts(), (Names{"The object is not state tracked"}));
  void *stored = place(neighbor.object, types::ospf_neighbor, stats);
  EXPECT_EQ(at<std::uint32_t>(stored, model::offset(types::ospf_nbr_stat,
                                                    fields::ospf_nbr_stat::nbr_event_count)),
            4u);
  EXPECT_EQ(neighbor.state(stats), 2);
}

TEST(ObjectField, AFailedWriteIsMarkedAllTheSame) {
  Neighbor neighbor(KELP_TRACKING_ON);
  Store &store = neighbor.store;
  neighbor(ospf_neighbor_address_set, nullptr);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  EXPECT_EQ(neighbor.state(address), 2);
}

TEST(ObjectField, AnUntrackedOwnerTakesTheContentAndFails) {
  Neighbor neighbor;
  Store &store = neighbor.store;
  kelp_handle *tracking = store.another_handle({.tracking = KELP_TRACKING_ON});
  ip_address source = ip_address_make_ipv4(7);
  TraceLog trace;
  ospf_neighbor_dr_set(tracking, 0, neighbor.object, &source, &store.err);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  EXPECT_EQ(trace.texts(), (Names{"The object is not state tracked"}));
  store.err = 0;
  EXPECT_EQ(ip_address_compare(neighbor(ospf_neighbor_dr_get), &source), 0);
}

}  // namespace
