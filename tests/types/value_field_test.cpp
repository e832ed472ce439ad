// Value fields: numbers, booleans, enumerations and flag sets in place, with their failures, their
// announced writes and their state bytes.
#include <cstring>

#include "types/object_view.hpp"

namespace {

using namespace harness;
using namespace fields::ospf_interface;

// An interface under the given tracking, at the given variant.
class Interface : public Single<ospf_interface> {
 public:
  explicit Interface(std::uint32_t tracking = KELP_TRACKING_ABSENT, std::int32_t variant = 1)
      : Single(ospf_interface_create, ospf_interface_destroy, {.tracking = tracking},
               "ospf_interface", variant) {}

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
};

TEST(ValueField, EachKindKeepsItsValue) {
  Interface interface;
  Store &store = interface.store;
  ospf_interface *object = interface.object;
  store(ospf_interface_cost_set_value, object, 0xFFFF);
  store(ospf_interface_hello_timer_set_value, object, 0xFFFFFFFF);
  store(ospf_interface_priority_set_value, object, 0xFF);
  store(ospf_interface_bfd_set_value, object, 1);
  store(ospf_interface_network_type_set_value, object, POINT_TO_POINT);
  EXPECT_EQ(store(ospf_interface_cost_get_value, object), 0xFFFF);
  EXPECT_EQ(store(ospf_interface_hello_timer_get_value, object), 0xFFFFFFFFu);
  EXPECT_EQ(store(ospf_interface_priority_get_value, object), 0xFF);
  EXPECT_EQ(store(ospf_interface_bfd_get_value, object), 1u);
  EXPECT_EQ(store(ospf_interface_network_type_get_value, object), 3u);
  EXPECT_EQ(store.err, 0u);

  OWNED(store, ospfv2_link_tlv, tlv);
  const double bandwidth = 1.5;
  store(ospfv2_link_tlv_max_bandwidth_set, tlv, &bandwidth);
  EXPECT_EQ(store(ospfv2_link_tlv_max_bandwidth_get_value, tlv), 1.5);
}

TEST(ValueField, GetGivesThePlaceInsideTheObject) {
  Interface interface;
  char *object = reinterpret_cast<char *>(interface.object);
  EXPECT_EQ(static_cast<void *>(interface(ospf_interface_cost_get)),
            object + Interface::offset(cost));
  EXPECT_EQ(static_cast<void *>(interface(ospf_interface_network_type_get)),
            object + Interface::offset(network_type));
}

TEST(ValueField, ReadingAFieldThatTheVariantLacksGives43) {
  Interface interface(KELP_TRACKING_ABSENT, 0);
  Store &store = interface.store;
  CallLog log(store);
  EXPECT_EQ(interface(ospf_interface_priority_get), nullptr);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  store.err = 0;
  EXPECT_EQ(interface(ospf_interface_priority_get_value), 0);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(log.count("kelp_store_epoch_err"), 2u);
  EXPECT_EQ(header(interface.object).variant, 0);
}

TEST(ValueField, ASetterFirstMovesTheObjectUp) {
  Interface interface(KELP_TRACKING_ABSENT, 0);
  Store &store = interface.store;
  interface(ospf_interface_priority_set_value, 5);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(at<std::uint8_t>(interface.object, model::offset(types::ospf_interface, priority)), 0);
  store.err = 0;
  store.set_variant("ospf_interface", 1);
  interface(ospf_interface_priority_set_value, 5);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(header(interface.object).variant, 1);
  EXPECT_EQ(interface(ospf_interface_priority_get_value), 5);
}

TEST(ValueField, ANullObjectReadsAsZeroWithoutAFailure) {
  Store store;
  EXPECT_EQ(store(ospf_interface_cost_get_value, nullptr), 0);
  EXPECT_EQ(store(ospf_interface_bfd_get_value, nullptr), 0u);
  EXPECT_EQ(store(ospf_interface_network_type_get_value, nullptr), 0u);
  EXPECT_EQ(store.err, 0u);
}

TEST(ValueField, SettingAValueOfANullObjectGives2) {
  Store store({.tracking = KELP_TRACKING_ON});
  store(ospf_interface_cost_set_value, nullptr, 9);
  store.expect_failure(KELP_ERR_NOT_FOUND);
  store(ospf_interface_network_type_set_value, nullptr, 1);
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
  interface(ospf_interface_cost_set, &source);
  EXPECT_EQ(ranges_in(watch, interface.object),
            (Ranges{{Interface::offset(cost), 2}, {state_at(cost), 1}}));
  watch.clear();
  interface(ospf_interface_network_type_set_value, 1);
  EXPECT_EQ(ranges_in(watch, interface.object),
            (Ranges{{Interface::offset(network_type) + 12, 4}, {state_at(network_type), 1}}));
  watch.clear();
  OWNED(store, ospf_network_type, other);
  watch.clear();
  interface(ospf_interface_network_type_set, other);
  EXPECT_EQ(ranges_in(watch, interface.object),
            (Ranges{{Interface::offset(network_type), 16}, {state_at(network_type), 1}}));
}

TEST(ValueField, SetValueRunsTheReadingStepsAgain) {
  Interface interface;
  Store &store = interface.store;
  CallLog log(store);
  interface(ospf_interface_cost_set_value, 9);
  EXPECT_EQ(log.only({"kelp_clear_last_error", "kelplib_adjust_variant",
                      "kelp_get_instance_variant", "u_int16_get", "u_int16_set_value"}),
            (Names{"kelp_clear_last_error", "kelplib_adjust_variant", "kelp_get_instance_variant",
                   "kelp_clear_last_error", "kelp_get_instance_variant", "u_int16_get",
                   "u_int16_set_value"}));
}

TEST(ValueField, AWholeEnumerationIsCopiedHeaderIncluded) {
  Interface interface;
  Store &store = interface.store;
  OWNED(store, ospf_network_type, source);
  store(ospf_network_type_set_value, source, NON_BROADCAST);
  header(source.get()).obj_flags = OBJ_EMBEDDED;
  interface(ospf_interface_network_type_set, source);
  EXPECT_EQ(interface.type_word(), 1u);
  EXPECT_EQ(flags_of(place(interface.object, types::ospf_interface, network_type)), OBJ_EMBEDDED);
}

TEST(ValueField, ARefusedEnumerationKeepsItsValueAndIsMarkedAllTheSame) {
  Interface interface(KELP_TRACKING_ON);
  Store &store = interface.store;
  interface(ospf_interface_network_type_set_value, 4);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(interface.type_word(), 0u);
  EXPECT_EQ(interface.state(network_type), 2);

  Interface second(KELP_TRACKING_ON);
  OWNED(second.store, ospf_network_type, source);
  at<std::uint32_t>(source.get(), model::enumeration_value_offset) = 4;
  WriteWatch watch(second.store);
  second(ospf_interface_network_type_set, source);
  EXPECT_EQ(second.store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(second.type_word(), 0u);
  EXPECT_EQ(second.state(network_type), 2);
  EXPECT_EQ(watch.writes().size(), 1u);
}

TEST(ValueField, AFailedWriteIsMarkedAllTheSame) {
  Interface interface(KELP_TRACKING_ON);
  Store &store = interface.store;
  interface(ospf_interface_cost_set, nullptr);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  EXPECT_EQ(interface.state(cost), 2);
}

TEST(ValueField, ALaterVariantOfAnEnumerationTakesItsLaterValue) {
  Store store;
  store.set_variant("ospf_auth_type", 0);
  OWNED(store, ospf_authentication, object);
  store(ospf_authentication_auth_type_selection_set_value, object, 3);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  store.err = 0;
  store.set_variant("ospf_auth_type", 1);
  store(ospf_authentication_auth_type_selection_set_value, object, 3);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(store(ospf_authentication_auth_type_selection_get_value, object), 3u);
}

TEST(ValueField, AFlagSetIsReadAndCopiedWhole) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospfv2_header, object);
  OWNED(store, lsa_flag_options, source);
  store(lsa_flag_options_set_value, source, LSA_FLAG_OPTIONS_AF, 1);
  const auto field_at = static_cast<std::ptrdiff_t>(
      model::offset(types::ospfv2_header, fields::ospfv2_header::flag_options));
  const auto state_at = static_cast<std::ptrdiff_t>(
      model::object_size(types::ospfv2_header) +
      model::state_place(types::ospfv2_header, fields::ospfv2_header::flag_options));
  WriteWatch watch(store);
  store(ospfv2_header_flag_options_set, object, source);
  EXPECT_EQ(ranges_in(watch, object), (Ranges{{field_at, 24}, {state_at, 1}}));
  EXPECT_EQ(store(ospfv2_header_flag_options_get_value, object), 0x80u);
  watch.clear();
  store(ospfv2_header_flag_options_set_value, object, 0x21);
  EXPECT_EQ(ranges_in(watch, object), (Ranges{{field_at + 11, 1}, {state_at, 1}}));
  EXPECT_EQ(store(ospfv2_header_flag_options_get_value, object), 0x21u);
  EXPECT_EQ(store.err, 0u);
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
  EXPECT_EQ(interface(ospf_interface_cost_get_value), 9);
  const std::uint16_t source = 10;
  ospf_interface_cost_set(tracking, 0, interface.object, &source, &store.err);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  store.err = 0;
  EXPECT_EQ(interface(ospf_interface_cost_get_value), 10);
}

TEST(ValueField, ACorruptedHandleEndsTheProcess) {
  Interface interface(KELP_TRACKING_ON);
  EXPECT_FATAL(
      {
        interface.store.handle()->sttr->sttr_mode = 7;
        interface(ospf_interface_cost_set_value, 1);
      },
      "Corrupted KELP Handle");
}

TEST(ValueField, ACounterIsReadByTheSameRules) {
  Store store;
  OWNED(store, ospfv2_network, object);
  const std::uint32_t routers[] = {1, 2};
  store(ospfv2_network_attached_router_set_mem, object, routers, 2);
  EXPECT_EQ(store(ospfv2_network_attached_router_num_get_value, object), 2u);
  EXPECT_EQ(*store(ospfv2_network_attached_router_num_get, object), 2u);
  EXPECT_EQ(store(ospfv2_network_attached_router_num_get_value, nullptr), 0u);
  EXPECT_FALSE(is_exported("ospfv2_network_attached_router_num_set_value"));
}

}  // namespace
