// Value fields: numbers, booleans, enumerations and flag sets in place, with their failures, their
// announced writes and their state bytes.
#include <cstring>

#include "types/object_view.hpp"

namespace {

using namespace harness;
using namespace fields::ospf_interface;

// An interface under the given tracking, at the given variant.
class Interface {
 public:
  explicit Interface(std::uint32_t tracking = KELP_TRACKING_ABSENT, std::int32_t variant = 1)
      : store({.tracking = tracking}) {
    store.set_variant("ospf_interface", variant);
    object = ospf_interface_create(store, 0);
  }
  ~Interface() { ospf_interface_destroy(store, 0, object); }

  static std::ptrdiff_t offset(const model::Field &field) {
    return static_cast<std::ptrdiff_t>(model::offset(types::ospf_interface, field));
  }
  std::uint8_t state(const model::Field &field) {
    return area(object, types::ospf_interface)[model::state_place(types::ospf_interface, field)];
  }
  std::uint32_t type_word() {
    return at<std::uint32_t>(object, model::offset(types::ospf_interface, network_type) +
                                         model::enumeration_value_offset);
  }

  Store store;
  ospf_interface *object;
};

TEST(ValueField, EachKindKeepsItsValue) {
  Interface interface;
  Store &store = interface.store;
  ospf_interface *object = interface.object;
  ospf_interface_cost_set_value(store, 0, object, 0xFFFF, &store.err);
  ospf_interface_hello_timer_set_value(store, 0, object, 0xFFFFFFFF, &store.err);
  ospf_interface_priority_set_value(store, 0, object, 0xFF, &store.err);
  ospf_interface_bfd_set_value(store, 0, object, 1, &store.err);
  ospf_interface_network_type_set_value(store, 0, object, POINT_TO_POINT, &store.err);
  EXPECT_EQ(ospf_interface_cost_get_value(store, 0, object, &store.err), 0xFFFF);
  EXPECT_EQ(ospf_interface_hello_timer_get_value(store, 0, object, &store.err), 0xFFFFFFFFu);
  EXPECT_EQ(ospf_interface_priority_get_value(store, 0, object, &store.err), 0xFF);
  EXPECT_EQ(ospf_interface_bfd_get_value(store, 0, object, &store.err), 1u);
  EXPECT_EQ(ospf_interface_network_type_get_value(store, 0, object, &store.err), 3u);
  EXPECT_EQ(store.err, 0u);

  ospfv2_link_tlv *tlv = ospfv2_link_tlv_create(store, 0);
  const double bandwidth = 1.5;
  ospfv2_link_tlv_max_bandwidth_set(store, 0, tlv, &bandwidth, &store.err);
  EXPECT_EQ(ospfv2_link_tlv_max_bandwidth_get_value(store, 0, tlv, &store.err), 1.5);
  ospfv2_link_tlv_destroy(store, 0, tlv);
}

TEST(ValueField, GetGivesThePlaceInsideTheObject) {
  Interface interface;
  Store &store = interface.store;
  char *object = reinterpret_cast<char *>(interface.object);
  EXPECT_EQ(static_cast<void *>(ospf_interface_cost_get(store, 0, interface.object, &store.err)),
            object + Interface::offset(cost));
  EXPECT_EQ(
      static_cast<void *>(ospf_interface_network_type_get(store, 0, interface.object, &store.err)),
      object + Interface::offset(network_type));
}

TEST(ValueField, ASetErrorWordLeavesEverythingAlone) {
  Interface interface(KELP_TRACKING_ON);
  Store &store = interface.store;
  ospf_interface *object = interface.object;
  const std::uint16_t source = 9;
  store.err = KELP_ERR_NO_ROOM;
  CallLog log(store);
  EXPECT_EQ(ospf_interface_cost_get(store, 0, object, &store.err), nullptr);
  EXPECT_EQ(ospf_interface_cost_get_value(store, 0, object, &store.err), 0);
  EXPECT_EQ(ospf_interface_network_type_get_value(store, 0, object, &store.err), 0u);
  ospf_interface_cost_set(store, 0, object, &source, &store.err);
  ospf_interface_cost_set_value(store, 0, object, 9, &store.err);
  ospf_interface_network_type_set_value(store, 0, object, 1, &store.err);
  EXPECT_TRUE(log.calls().empty());
  EXPECT_EQ(store.err, KELP_ERR_NO_ROOM);
  EXPECT_EQ(interface.state(cost), 0);
}

TEST(ValueField, ReadingAFieldThatTheVariantLacksGives43) {
  Interface interface(KELP_TRACKING_ABSENT, 0);
  Store &store = interface.store;
  CallLog log(store);
  EXPECT_EQ(ospf_interface_priority_get(store, 0, interface.object, &store.err), nullptr);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  store.err = 0;
  EXPECT_EQ(ospf_interface_priority_get_value(store, 0, interface.object, &store.err), 0);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(log.count("kelp_store_epoch_err"), 2u);
  EXPECT_EQ(header(interface.object).variant, 0);
}

TEST(ValueField, ASetterFirstMovesTheObjectUp) {
  Interface interface(KELP_TRACKING_ABSENT, 0);
  Store &store = interface.store;
  ospf_interface_priority_set_value(store, 0, interface.object, 5, &store.err);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(at<std::uint8_t>(interface.object, model::offset(types::ospf_interface, priority)), 0);
  store.err = 0;
  store.set_variant("ospf_interface", 1);
  ospf_interface_priority_set_value(store, 0, interface.object, 5, &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(header(interface.object).variant, 1);
  EXPECT_EQ(ospf_interface_priority_get_value(store, 0, interface.object, &store.err), 5);
}

TEST(ValueField, ANullObjectReadsAsZeroWithoutAFailure) {
  Store store;
  EXPECT_EQ(ospf_interface_cost_get_value(store, 0, nullptr, &store.err), 0);
  EXPECT_EQ(ospf_interface_bfd_get_value(store, 0, nullptr, &store.err), 0u);
  EXPECT_EQ(ospf_interface_network_type_get_value(store, 0, nullptr, &store.err), 0u);
  EXPECT_EQ(store.err, 0u);
}

TEST(ValueField, SettingAValueOfANullObjectGives2) {
  Store store({.tracking = KELP_TRACKING_ON});
  ospf_interface_cost_set_value(store, 0, nullptr, 9, &store.err);
  EXPECT_EQ(store.err, KELP_ERR_NOT_FOUND);
  EXPECT_EQ(store.last_error(), KELP_ERR_NOT_FOUND);
  store.err = 0;
  ospf_interface_network_type_set_value(store, 0, nullptr, 1, &store.err);
  EXPECT_EQ(store.err, KELP_ERR_NOT_FOUND);
}

TEST(ValueField, ExactlyTheBytesThatChangeAreAnnounced) {
  Interface interface(KELP_TRACKING_ON);
  Store &store = interface.store;
  const std::uint16_t source = 9;
  const auto state_at = [](const model::Field &field) {
    return static_cast<std::ptrdiff_t>(model::object_size(types::ospf_interface) +
                                       model::state_place(types::ospf_interface, field));
  };
  WriteWatch watch(store);
  ospf_interface_cost_set(store, 0, interface.object, &source, &store.err);
  EXPECT_EQ(ranges_in(watch, interface.object),
            (Ranges{{Interface::offset(cost), 2}, {state_at(cost), 1}}));
  watch.clear();
  ospf_interface_network_type_set_value(store, 0, interface.object, 1, &store.err);
  EXPECT_EQ(ranges_in(watch, interface.object),
            (Ranges{{Interface::offset(network_type) + 12, 4}, {state_at(network_type), 1}}));
  watch.clear();
  ospf_network_type *other = ospf_network_type_create(store, 0);
  watch.clear();
  ospf_interface_network_type_set(store, 0, interface.object, other, &store.err);
  EXPECT_EQ(ranges_in(watch, interface.object),
            (Ranges{{Interface::offset(network_type), 16}, {state_at(network_type), 1}}));
  ospf_network_type_destroy(store, 0, other);
}

TEST(ValueField, SetValueRunsTheReadingStepsAgain) {
  Interface interface;
  Store &store = interface.store;
  CallLog log(store);
  ospf_interface_cost_set_value(store, 0, interface.object, 9, &store.err);
  EXPECT_EQ(log.only({"kelp_clear_last_error", "kelplib_adjust_variant",
                      "kelp_get_instance_variant", "u_int16_get", "u_int16_set_value"}),
            (Names{"kelp_clear_last_error", "kelplib_adjust_variant", "kelp_get_instance_variant",
                   "kelp_clear_last_error", "kelp_get_instance_variant", "u_int16_get",
                   "u_int16_set_value"}));
}

TEST(ValueField, AWholeEnumerationIsCopiedHeaderIncluded) {
  Interface interface;
  Store &store = interface.store;
  ospf_network_type *source = ospf_network_type_create(store, 0);
  ospf_network_type_set_value(store, 0, source, NON_BROADCAST, &store.err);
  header(source).obj_flags = OBJ_EMBEDDED;
  ospf_interface_network_type_set(store, 0, interface.object, source, &store.err);
  EXPECT_EQ(interface.type_word(), 1u);
  EXPECT_EQ(flags_of(place(interface.object, types::ospf_interface, network_type)), OBJ_EMBEDDED);
  ospf_network_type_destroy(store, 0, source);
}

TEST(ValueField, ARefusedEnumerationKeepsItsValueAndIsMarkedAllTheSame) {
  Interface interface(KELP_TRACKING_ON);
  Store &store = interface.store;
  ospf_interface_network_type_set_value(store, 0, interface.object, 4, &store.err);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(interface.type_word(), 0u);
  EXPECT_EQ(interface.state(network_type), 2);

  Interface second(KELP_TRACKING_ON);
  ospf_network_type *source = ospf_network_type_create(second.store, 0);
  at<std::uint32_t>(source, model::enumeration_value_offset) = 4;
  WriteWatch watch(second.store);
  ospf_interface_network_type_set(second.store, 0, second.object, source, &second.store.err);
  EXPECT_EQ(second.store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(second.type_word(), 0u);
  EXPECT_EQ(second.state(network_type), 2);
  EXPECT_EQ(watch.writes().size(), 1u);
  ospf_network_type_destroy(second.store, 0, source);
}

TEST(ValueField, AFailedWriteIsMarkedAllTheSame) {
  Interface interface(KELP_TRACKING_ON);
  Store &store = interface.store;
  ospf_interface_cost_set(store, 0, interface.object, nullptr, &store.err);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  EXPECT_EQ(interface.state(cost), 2);
}

TEST(ValueField, ALaterVariantOfAnEnumerationTakesItsLaterValue) {
  Store store;
  store.set_variant("ospf_auth_type", 0);
  ospf_authentication *object = ospf_authentication_create(store, 0);
  ospf_authentication_auth_type_selection_set_value(store, 0, object, 3, &store.err);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  store.err = 0;
  store.set_variant("ospf_auth_type", 1);
  ospf_authentication_auth_type_selection_set_value(store, 0, object, 3, &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(ospf_authentication_auth_type_selection_get_value(store, 0, object, &store.err), 3u);
  ospf_authentication_destroy(store, 0, object);
}

TEST(ValueField, AFlagSetIsReadAndCopiedWhole) {
  Store store({.tracking = KELP_TRACKING_ON});
  ospfv2_header *object = ospfv2_header_create(store, 0);
  lsa_flag_options *source = lsa_flag_options_create(store, 0);
  lsa_flag_options_set_value(store, 0, source, LSA_FLAG_OPTIONS_AF, 1, &store.err);
  const auto field_at = static_cast<std::ptrdiff_t>(
      model::offset(types::ospfv2_header, fields::ospfv2_header::flag_options));
  const auto state_at = static_cast<std::ptrdiff_t>(
      model::object_size(types::ospfv2_header) +
      model::state_place(types::ospfv2_header, fields::ospfv2_header::flag_options));
  WriteWatch watch(store);
  ospfv2_header_flag_options_set(store, 0, object, source, &store.err);
  EXPECT_EQ(ranges_in(watch, object), (Ranges{{field_at, 24}, {state_at, 1}}));
  EXPECT_EQ(ospfv2_header_flag_options_get_value(store, 0, object, &store.err), 0x80u);
  watch.clear();
  ospfv2_header_flag_options_set_value(store, 0, object, 0x21, &store.err);
  EXPECT_EQ(ranges_in(watch, object), (Ranges{{field_at + 11, 1}, {state_at, 1}}));
  EXPECT_EQ(ospfv2_header_flag_options_get_value(store, 0, object, &store.err), 0x21u);
  EXPECT_EQ(store.err, 0u);
  lsa_flag_options_destroy(store, 0, source);
  ospfv2_header_destroy(store, 0, object);
}

TEST(ValueField, OnlyATrackingHandleMarksOrLooksAtTheObjectsFlag) {
  for (const std::uint32_t tracking : {KELP_TRACKING_ABSENT, KELP_TRACKING_OFF}) {
    Interface interface(KELP_TRACKING_ON);
    Store &store = interface.store;
    kelp_handle *handle = store.another_handle({.tracking = tracking});
    ospf_interface_cost_set_value(handle, 0, interface.object, 9, &store.err);
    EXPECT_EQ(store.err, 0u);
    EXPECT_EQ(interface.state(cost), 0);
    Interface untracked(KELP_TRACKING_ABSENT);
    kelp_handle *other = untracked.store.another_handle({.tracking = tracking});
    ospf_interface_cost_set_value(other, 0, untracked.object, 9, &untracked.store.err);
    EXPECT_EQ(untracked.store.err, 0u);
  }
}

TEST(ValueField, AnUntrackedObjectTakesTheValueAndFails) {
  Interface interface;
  Store &store = interface.store;
  kelp_handle *tracking = store.another_handle({.tracking = KELP_TRACKING_ON});
  TraceLog trace;
  ospf_interface_cost_set_value(tracking, 0, interface.object, 9, &store.err);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  EXPECT_EQ(kelp_handle_last_error(tracking, nullptr), KELP_ERR_INVALID);
  EXPECT_EQ(trace.texts(), (Names{"The object is not state tracked"}));
  EXPECT_EQ(trace.messages()[0].level, 3u);
  store.err = 0;
  EXPECT_EQ(ospf_interface_cost_get_value(store, 0, interface.object, &store.err), 9);
  const std::uint16_t source = 10;
  ospf_interface_cost_set(tracking, 0, interface.object, &source, &store.err);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  store.err = 0;
  EXPECT_EQ(ospf_interface_cost_get_value(store, 0, interface.object, &store.err), 10);
}

TEST(ValueField, ACorruptedHandleEndsTheProcess) {
  Interface interface(KELP_TRACKING_ON);
  EXPECT_FATAL(
      {
        interface.store.handle()->sttr->sttr_mode = 7;
        ospf_interface_cost_set_value(interface.store, 0, interface.object, 1,
                                      &interface.store.err);
      },
      "Corrupted KELP Handle");
}

TEST(ValueField, ACounterIsReadByTheSameRules) {
  Store store;
  ospfv2_network *object = ospfv2_network_create(store, 0);
  const std::uint32_t routers[] = {1, 2};
  ospfv2_network_attached_router_set_mem(store, 0, object, routers, 2, &store.err);
  EXPECT_EQ(ospfv2_network_attached_router_num_get_value(store, 0, object, &store.err), 2u);
  EXPECT_EQ(*ospfv2_network_attached_router_num_get(store, 0, object, &store.err), 2u);
  EXPECT_EQ(ospfv2_network_attached_router_num_get_value(store, 0, nullptr, &store.err), 0u);
  EXPECT_FALSE(is_exported("ospfv2_network_attached_router_num_set_value"));
  ospfv2_network_destroy(store, 0, object);
}

}  // namespace
