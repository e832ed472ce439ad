// The values of enumeration objects and the variant rule.
#include <kelp/hash.h>

#include <climits>
#include <cstring>

#include "types/light_family.hpp"

namespace {

using harness::CallLog;
using harness::Store;
using harness::WriteWatch;
using light::Place;

constexpr std::uint32_t space = 7;

// The operations on values that all five enumerations have.
struct Values : light::Family {
  explicit Values(const harbor::model::Enumeration &enumeration)
      : Family{std::string(enumeration.name), true}, type(enumeration) {}

  const harbor::model::Enumeration &type;
  std::uint32_t (*get_value)(kelp_handle *, std::uint32_t, const void *,
                             std::uint32_t *) = light::operation(name, "get_value");
  void (*set_value)(kelp_handle *, std::uint32_t, void *, std::uint32_t,
                    std::uint32_t *) = light::operation(name, "set_value");
  std::uint32_t (*is_valid_cr)(kelp_handle *, std::int32_t) = light::operation(name, "is_valid_cr");
  std::uint32_t (*to_user)(std::uint32_t) = light::operation(name, "map_to_user_value");
  std::uint32_t (*to_internal)(std::uint32_t) = light::operation(name, "map_to_internal_value");
};

std::vector<Values> all() {
  std::vector<Values> result;
  for (const auto *type : harbor::model::all_enumerations) result.emplace_back(*type);
  return result;
}

TEST(EnumerationCompare, IsADifferenceThatWraps) {
  harbor::EnumerationObject a{};
  harbor::EnumerationObject b{};
  for (const Values &values : all()) {
    SCOPED_TRACE(values.name);
    a.value = 7;
    b.value = 2;
    EXPECT_EQ(values.compare(&a, &b), 5);
    EXPECT_EQ(values.compare(&b, &a), -5);
    EXPECT_EQ(values.compare(&a, &a), 0);
    a.value = 0x80000000u;
    b.value = 0;
    EXPECT_EQ(values.compare(&a, &b), INT_MIN);
    EXPECT_EQ(values.compare(&b, &a), INT_MIN);
  }
}

TEST(EnumerationHash, TakesTheFourBytesOfTheHeldValue) {
  harbor::EnumerationObject object{};
  for (const Values &values : all()) {
    SCOPED_TRACE(values.name);
    for (std::uint32_t value : {0u, 1u, 8u, 0xFFFFFFFFu}) {
      object.value = value;
      EXPECT_EQ(values.hash(&object, 99), SuperFastHash(&value, 4, 99));
    }
  }
}

TEST(EnumerationMapping, IsTheValueItselfButForTheNeighbourState) {
  for (const Values &values : all()) {
    SCOPED_TRACE(values.name);
    for (std::uint32_t value : {0u, 1u, 5u, 8u, 9u, 0xFFFFFFFFu}) {
      EXPECT_EQ(values.to_user(value), value);
      const bool shifted = values.name == "nbr_state_type" && value >= 1 && value <= 8;
      EXPECT_EQ(values.to_internal(value), shifted ? value - 1 : value);
    }
  }
}

TEST(EnumerationGetValue, GivesTheValueAndClearsTheLastError) {
  Store store;
  harbor::EnumerationObject object{};
  object.value = 123;
  for (const Values &values : all()) {
    kelp_store_err(store, 9);
    EXPECT_EQ(values.get_value(store, space, &object, &store.err), 123u);
    EXPECT_EQ(store.last_error(), 0);
  }
}

TEST(EnumerationGetValue, OfNullFailsOnce) {
  Store store;
  for (const Values &values : all()) {
    SCOPED_TRACE(values.name);
    store.err = 0;
    CallLog calls;
    EXPECT_EQ(values.get_value(store, space, nullptr, &store.err), 0u);
    EXPECT_EQ(store.err, KELP_ERR_INVALID);
    EXPECT_EQ(calls.calls(), (std::vector<std::string>{"kelp_clear_last_error", "kelp_store_err"}));
    EXPECT_EQ(store.last_error(), KELP_ERR_INVALID);
  }
}

TEST(EnumerationSetValue, StoresFourAnnouncedBytes) {
  Store store;
  for (const Values &values : all()) {
    SCOPED_TRACE(values.name);
    void *object = values.create(store, space);
    for (const auto &member : values.type.members) {
      WriteWatch watch(store);
      values.set_value(store, space, object, member.value, &store.err);
      EXPECT_EQ(store.err, 0u) << member.name;
      EXPECT_EQ(light::enumeration(object)->value, member.value);
      EXPECT_EQ(light::places(watch.writes(), object), (std::vector<Place>{{12, 4}}));
    }
    values.destroy(store, space, object);
  }
}

TEST(EnumerationSetValue, RefusesWhatTheVariantDoesNotKnowWithoutStoringAnError) {
  Store store;
  const auto refusal = light::refusal(store);
  for (const Values &values : all()) {
    SCOPED_TRACE(values.name);
    void *object = values.create(store, space);
    const std::uint32_t held = values.type.members.front().value;
    light::enumeration(object)->value = held;
    for (std::uint32_t value : {values.type.members.back().value + 1, 0xFFFFFFFFu}) {
      CallLog calls;
      WriteWatch watch(store);
      store.err = 0;
      values.set_value(store, space, object, value, &store.err);
      EXPECT_EQ(store.err, KELP_ERR_EPOCH) << value;
      EXPECT_EQ(light::enumeration(object)->value, held);
      EXPECT_TRUE(watch.writes().empty());
      EXPECT_EQ(light::stored(calls), refusal);
    }
    values.destroy(store, space, object);
  }
}

TEST(EnumerationSetValue, AcceptsAnyValueAtAVariantAboveTheLimits) {
  Store store;
  for (const Values &values : all()) {
    SCOPED_TRACE(values.name);
    void *object = values.create(store, space);
    light::header(object)->variant = 2;
    values.set_value(store, space, object, 0xFFFFFFFF, &store.err);
    EXPECT_EQ(store.err, 0u);
    EXPECT_EQ(light::enumeration(object)->value, 0xFFFFFFFFu);
    values.destroy(store, space, object);
  }
}

TEST(EnumerationSetValue, AdjustsTheObjectFirst) {
  Store store;
  store.set_variant("ospf_auth_type", 0);
  OWNED(store, ospf_auth_type, object);
  store.set_variant("ospf_auth_type", 1);
  CallLog calls;
  store(ospf_auth_type_set_value, object, OSPF_AUTH_TYPE_NONE);
  EXPECT_EQ(
      calls.only({"kelp_clear_last_error", "kelplib_adjust_variant", "kelp_get_instance_variant"}),
      (std::vector<std::string>{"kelp_clear_last_error", "kelplib_adjust_variant",
                                "kelp_get_instance_variant"}));
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(light::enumeration(object.get())->value, 3u);
  EXPECT_EQ(light::header(object.get())->variant, 1);
}

TEST(EnumerationSetValue, AddressFamilyTakesOneAndRefusesTwo) {
  Store store;
  OWNED(store, address_family, object);
  store(address_family_set_value, object, 2);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(light::enumeration(object.get())->value, 0u);
  store.err = 0;
  store(address_family_set_value, object, 1);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(light::enumeration(object.get())->value, 1u);
}

TEST(EnumerationSetValue, AuthTypeNoneNeedsVariantOne) {
  Store store;
  store.set_variant("ospf_auth_type", 0);
  OWNED(store, ospf_auth_type, object);
  store(ospf_auth_type_set_value, object, 3);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  store.err = 0;
  light::header(object.get())->variant = 1;
  store(ospf_auth_type_set_value, object, 3);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(light::enumeration(object.get())->value, 3u);
  store(ospf_auth_type_set_value, object, 4);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(light::enumeration(object.get())->value, 3u);
}

TEST(EnumerationSetValue, NeighbourStateTakesTheUnnamedZeroAndRefusesNine) {
  Store store;
  OWNED(store, nbr_state_type, object);
  light::enumeration(object.get())->value = 4;
  store(nbr_state_type_set_value, object, 0);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(light::enumeration(object.get())->value, 0u);
  store(nbr_state_type_set_value, object, 8);
  EXPECT_EQ(store.err, 0u);
  store(nbr_state_type_set_value, object, 9);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(light::enumeration(object.get())->value, 8u);
}

TEST(EnumerationSet, CopiesTheHeaderToo) {
  Store store;
  for (const Values &values : all()) {
    SCOPED_TRACE(values.name);
    void *destination = values.create(store, space);
    harbor::EnumerationObject source{};
    source.tinfo = values.record;
    source.variant = -2;
    source.created_variant = 5;
    source.obj_flags = OBJ_NESTED;
    source.value = values.type.members.front().value;
    WriteWatch watch(store);
    values.set(store, space, destination, &source, &store.err);
    EXPECT_EQ(light::places(watch.writes(), destination), (std::vector<Place>{{0, 16}}));
    EXPECT_EQ(std::memcmp(destination, &source, 16), 0);
    EXPECT_EQ(store.err, 0u);
    light::header(destination)->variant = 0;
    values.destroy(store, space, destination);
  }
}

TEST(EnumerationSet, RefusesByTheDestinationsVariantAndLeavesItAlone) {
  Store store;
  const auto refusal = light::refusal(store);
  for (const Values &values : all()) {
    SCOPED_TRACE(values.name);
    void *destination = values.create(store, space);
    std::vector<std::uint8_t> before(16);
    std::memcpy(before.data(), destination, 16);
    harbor::EnumerationObject source{};
    source.tinfo = values.record;
    source.variant = 9;
    source.value = values.type.members.back().value + 1;
    store.err = 0;
    CallLog calls(store);
    values.set(store, space, destination, &source, &store.err);
    EXPECT_EQ(store.err, KELP_ERR_EPOCH);
    EXPECT_EQ(calls.count("write_notify"), 0u);
    EXPECT_EQ(light::stored(calls), refusal);
    EXPECT_EQ(std::memcmp(destination, before.data(), 16), 0);
    values.destroy(store, space, destination);
  }
}

TEST(EnumerationSet, OntoItselfKeepsTheObject) {
  Store store;
  OWNED(store, address_family, object);
  light::enumeration(object.get())->value = 1;
  store(address_family_set, object, object);
  EXPECT_EQ(light::enumeration(object.get())->value, 1u);
  EXPECT_EQ(light::header(object.get())->tinfo, &_address_family_type_info_internal);
}

TEST(EnumerationIsValid, FollowsTheDomainsVariant) {
  Store store;
  for (const Values &values : all()) {
    SCOPED_TRACE(values.name);
    store.set_variant(values.name.c_str(), 0);
    const auto limit =
        static_cast<std::int32_t>(values.type.limits[0]) + (values.type.has_internal_range ? 1 : 0);
    EXPECT_EQ(values.is_valid_cr(store, limit - 1), 1u);
    EXPECT_EQ(values.is_valid_cr(store, limit), 0u);
    store.set_variant(values.name.c_str(), 1);
    EXPECT_EQ(values.is_valid_cr(store, limit), 1u);
  }
  EXPECT_EQ(store.handle()->cr_err, 0u);
}

TEST(EnumerationIsValid, AuthTypeFourNeedsAVariantThatTheTypeDoesNotHave) {
  Store store;
  store.set_variant("ospf_auth_type", 0);
  EXPECT_EQ(ospf_auth_type_is_valid_cr(store, 2), 1u);
  EXPECT_EQ(ospf_auth_type_is_valid_cr(store, 3), 0u);
  store.set_variant("ospf_auth_type", 1);
  EXPECT_EQ(ospf_auth_type_is_valid_cr(store, 3), 1u);
  EXPECT_EQ(ospf_auth_type_is_valid_cr(store, 4), 0u);
  store.set_variant("ospf_auth_type", 2);
  EXPECT_EQ(ospf_auth_type_is_valid_cr(store, 4), 1u);
}

TEST(EnumerationIsValid, CountsNegativeValuesAsValidThoughSetRefusesThem) {
  Store store;
  for (const Values &values : all()) {
    SCOPED_TRACE(values.name);
    EXPECT_EQ(values.is_valid_cr(store, -1), 1u);
    EXPECT_EQ(values.is_valid_cr(store, INT_MIN), 1u);
    void *object = values.create(store, space);
    store.err = 0;
    values.set_value(store, space, object, 0xFFFFFFFF, &store.err);
    EXPECT_EQ(store.err, KELP_ERR_EPOCH);
    values.destroy(store, space, object);
  }
}

TEST(EnumerationIsValid, LeavesALookupFailureInTheChain) {
  Store store;
  ASSERT_EQ(kelp_handle_fail_variant(store, "address_family", 5, nullptr), 0);
  EXPECT_EQ(address_family_is_valid_cr(store, 1), 1u);
  EXPECT_EQ(store.handle()->cr_err, 5u);
}

}  // namespace
