// Object fields: addresses, texts and embedded structures in place, and what their setters take
// from the source.
#include <cstring>

#include "types/object_view.hpp"

namespace {

using namespace harness;
using namespace fields::ospf_neighbor;

class Neighbor {
 public:
  explicit Neighbor(std::uint32_t tracking = KELP_TRACKING_ABSENT, std::int32_t variant = 1)
      : store({.tracking = tracking}) {
    store.set_variant("ospf_neighbor", variant);
    object = ospf_neighbor_create(store, 0);
  }
  ~Neighbor() { ospf_neighbor_destroy(store, 0, object); }
  std::uint8_t state(const model::Field &field) {
    return area(object, types::ospf_neighbor)[model::state_place(types::ospf_neighbor, field)];
  }

  Store store;
  ospf_neighbor *object;
};

TEST(ObjectField, GetGivesThePlaceInsideTheObject) {
  Neighbor neighbor;
  Store &store = neighbor.store;
  EXPECT_EQ(static_cast<void *>(ospf_neighbor_address_get(store, 0, neighbor.object, &store.err)),
            place(neighbor.object, types::ospf_neighbor, address));
  EXPECT_EQ(static_cast<void *>(ospf_neighbor_stats_get(store, 0, neighbor.object, &store.err)),
            place(neighbor.object, types::ospf_neighbor, stats));
  EXPECT_EQ(store.err, 0u);
}

TEST(ObjectField, AnAddressIsCopiedAnnounced) {
  Neighbor neighbor(KELP_TRACKING_ON);
  Store &store = neighbor.store;
  ip_address source = ip_address_make_ipv4(0x0a000001);
  WriteWatch watch(store);
  ospf_neighbor_address_set(store, 0, neighbor.object, &source, &store.err);
  const auto field_at = static_cast<std::ptrdiff_t>(model::offset(types::ospf_neighbor, address));
  const auto state_at = static_cast<std::ptrdiff_t>(
      model::object_size(types::ospf_neighbor) + model::state_place(types::ospf_neighbor, address));
  EXPECT_EQ(ranges_in(watch, neighbor.object), (Ranges{{field_at, 48}, {state_at, 1}}));
  EXPECT_EQ(
      ip_address_compare(ospf_neighbor_address_get(store, 0, neighbor.object, &store.err), &source),
      0);
  EXPECT_EQ(neighbor.state(address), 2);
  EXPECT_EQ(neighbor.state(dr), 0);
}

TEST(ObjectField, ATextMovesAndTheSourceIsLeftEmpty) {
  Store store;
  multi_topology *object = multi_topology_create(store, 0);
  kelp_vstring *source = kelp_vstring_create(store, 0);
  kelp_vstring_assign(store, 0, source, "blue", 4, &store.err);
  multi_topology_name_set(store, 0, object, source, &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_STREQ(kelp_vstring_text(multi_topology_name_get(store, 0, object, &store.err)), "blue");
  EXPECT_STREQ(kelp_vstring_text(source), "");
  kelp_vstring_destroy_internal(store, 0, source, 1);
  multi_topology_destroy(store, 0, object);
}

TEST(ObjectField, AnEmbeddedStructureGivesUpItsContentButNotItself) {
  Store store;
  ospfv2_lsa_body *object = ospfv2_lsa_body_create(store, 0);
  ospfv2_network *source = ospfv2_network_create(store, 0);
  ospfv2_network_attached_router_set_value(store, 0, source, 0, 5, &store.err);
  ospfv2_lsa_body_network_set(store, 0, object, source, &store.err);
  EXPECT_EQ(store.err, 0u);
  ospfv2_network *network = ospfv2_lsa_body_network_get(store, 0, object, &store.err);
  EXPECT_EQ(ospfv2_network_attached_router_get_value(store, 0, network, 0, &store.err), 5u);
  EXPECT_EQ(ospfv2_network_attached_router_num_get_value(store, 0, source, &store.err), 0u);
  ospfv2_network_destroy(store, 0, source);
  ospfv2_lsa_body_destroy(store, 0, object);
}

TEST(ObjectField, ASetErrorWordLeavesEverythingAlone) {
  Neighbor neighbor(KELP_TRACKING_ON);
  Store &store = neighbor.store;
  ospf_nbr_stat *source = ospf_nbr_stat_create(store, 0);
  ip_address address_source = ip_address_make_ipv4(1);
  {
    CallLog log(store);
    store.err = KELP_ERR_NO_ROOM;
    EXPECT_EQ(ospf_neighbor_stats_get(store, 0, neighbor.object, &store.err), nullptr);
    EXPECT_EQ(ospf_neighbor_address_get(store, 0, neighbor.object, &store.err), nullptr);
    ospf_neighbor_stats_set(store, 0, neighbor.object, source, &store.err);
    ospf_neighbor_address_set(store, 0, neighbor.object, &address_source, &store.err);
    EXPECT_TRUE(log.calls().empty());
    EXPECT_EQ(store.err, KELP_ERR_NO_ROOM);
  }
  ospf_nbr_stat_destroy(store, 0, source);
}

TEST(ObjectField, AFieldThatTheVariantLacksGives43AndIsNotWritten) {
  Neighbor neighbor(KELP_TRACKING_ABSENT, 0);
  Store &store = neighbor.store;
  EXPECT_EQ(ospf_neighbor_stats_get(store, 0, neighbor.object, &store.err), nullptr);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  store.err = 0;
  ospf_nbr_stat *source = ospf_nbr_stat_create(store, 0);
  ospf_nbr_stat_nbr_event_count_set_value(store, 0, source, 4, &store.err);
  {
    WriteWatch watch(store);
    ospf_neighbor_stats_set(store, 0, neighbor.object, source, &store.err);
    EXPECT_EQ(store.err, KELP_ERR_EPOCH);
    EXPECT_TRUE(watch.writes().empty());
  }
  store.err = 0;
  store.set_variant("ospf_neighbor", 1);
  ospf_neighbor_stats_set(store, 0, neighbor.object, source, &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(header(neighbor.object).variant, 1);
  auto *stored = ospf_neighbor_stats_get(store, 0, neighbor.object, &store.err);
  EXPECT_EQ(ospf_nbr_stat_nbr_event_count_get_value(store, 0, stored, &store.err), 4u);
  ospf_nbr_stat_destroy(store, 0, source);
}

TEST(ObjectField, AnUntrackedSourceFailsWithItsBytesCopiedAndTheFieldMarked) {
  Neighbor neighbor(KELP_TRACKING_ON);
  Store &store = neighbor.store;
  kelp_handle *plain = store.another_handle({});
  ospf_nbr_stat *source = ospf_nbr_stat_create(plain, 0);
  ospf_nbr_stat_nbr_event_count_set_value(plain, 0, source, 4, &store.err);
  TraceLog trace;
  ospf_neighbor_stats_set(store, 0, neighbor.object, source, &store.err);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  EXPECT_EQ(trace.texts(), (Names{"The object is not state tracked"}));
  void *stored = place(neighbor.object, types::ospf_neighbor, stats);
  EXPECT_EQ(at<std::uint32_t>(stored, model::offset(types::ospf_nbr_stat,
                                                    fields::ospf_nbr_stat::nbr_event_count)),
            4u);
  EXPECT_EQ(neighbor.state(stats), 2);
  ospf_nbr_stat_destroy(plain, 0, source);
}

TEST(ObjectField, AFailedWriteIsMarkedAllTheSame) {
  Neighbor neighbor(KELP_TRACKING_ON);
  Store &store = neighbor.store;
  ospf_neighbor_address_set(store, 0, neighbor.object, nullptr, &store.err);
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
  EXPECT_EQ(
      ip_address_compare(ospf_neighbor_dr_get(store, 0, neighbor.object, &store.err), &source), 0);
}

}  // namespace
