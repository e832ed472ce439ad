// The small operations that every data type has for its record's sake, on the nine light types.
#include "types/type_record_access.hpp"

#include "types/light_family.hpp"

namespace {

using harbor::type_record_access::capped_variant;

TEST(CappedVariant, OneVariantLooksAtTheLowByteAlone) {
  EXPECT_EQ(address_family_variant_data_index_cap(0), 0);
  EXPECT_EQ(address_family_variant_data_index_cap(1), 0);
  EXPECT_EQ(address_family_variant_data_index_cap(5), 0);
  EXPECT_EQ(address_family_variant_data_index_cap(127), 0);
  EXPECT_EQ(address_family_variant_data_index_cap(128), -128);
  EXPECT_EQ(address_family_variant_data_index_cap(-1), -1);
  EXPECT_EQ(address_family_variant_data_index_cap(255), -1);
  EXPECT_EQ(address_family_variant_data_index_cap(256), 0);
}

TEST(CappedVariant, TwoVariantsCompareTheWholeNumber) {
  EXPECT_EQ(ospf_auth_type_variant_data_index_cap(0), 0);
  EXPECT_EQ(ospf_auth_type_variant_data_index_cap(1), 1);
  EXPECT_EQ(ospf_auth_type_variant_data_index_cap(2), 1);
  EXPECT_EQ(ospf_auth_type_variant_data_index_cap(5), 1);
  EXPECT_EQ(ospf_auth_type_variant_data_index_cap(128), 1);
  EXPECT_EQ(ospf_auth_type_variant_data_index_cap(256), 1);
  EXPECT_EQ(ospf_auth_type_variant_data_index_cap(-1), -1);
  EXPECT_EQ(ospf_auth_type_variant_data_index_cap(-128), -128);
}

TEST(CappedVariant, TheTwoShapesFallToTheTypesThatHaveThem) {
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    EXPECT_EQ(family.cap(256), family.name == "ospf_auth_type" ? 1 : 0);
  }
}

TEST(GetLuid, GivesTheRecordsIdentity) {
  harness::Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    void *object = family.create(store, 7);
    harness::CallLog calls;
    EXPECT_EQ(family.get_luid(store, 7, object, &store.err), family.record->md5);
    EXPECT_EQ(calls.count("kelp_get_luid"), 1u);
    family.destroy(store, 7, object);
  }
  EXPECT_EQ(store.err, 0u);
}

TEST(GetLuid, HandsOnTheFailure) {
  harness::Store store;
  EXPECT_EQ(store(address_family_get_luid, nullptr), nullptr);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
}

TEST(AdjustVariant, BringsTheObjectUpToTheDomain) {
  harness::Store store;
  store.set_variant("ospf_auth_type", 0);
  OWNED(store, ospf_auth_type, object);
  ASSERT_EQ(light::header(object.get())->variant, 0);
  store.set_variant("ospf_auth_type", 1);
  store(ospf_auth_type_adjust_variant, object);
  EXPECT_EQ(light::header(object.get())->variant, 1);
}

TEST(AdjustVariant, StopsAtTheHighestVariantOfTheType) {
  harness::Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    store.set_variant(family.name.c_str(), 0);
    void *object = family.create(store, 7);
    store.set_variant(family.name.c_str(), 9);
    family.adjust_variant(store, 7, object, &store.err);
    EXPECT_EQ(light::header(object)->variant, family.name == "ospf_auth_type" ? 1 : 0);
    family.destroy(store, 7, object);
  }
  EXPECT_EQ(store.err, 0u);
}

TEST(AdjustVariant, PassesOverANullObject) {
  harness::Store store;
  harness::CallLog calls;
  store(lsa_flag_options_adjust_variant, nullptr);
  EXPECT_EQ(calls.calls(), std::vector<std::string>{"kelplib_adjust_variant"});
  EXPECT_EQ(store.err, 0u);
}

TEST(ReferenceQuestions, LightTypesHoldNoReference) {
  harness::Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    void *object = family.create(store, 7);
    void *untouched = &store;
    harness::CallLog calls;
    harness::TraceLog traced;
    EXPECT_EQ(family.get_oid_count(store, 7, object, &store.err), 0u);
    family.get_object_references(store, 7, object, &untouched, 1, &store.err);
    EXPECT_EQ(untouched, &store);
    EXPECT_EQ(store.err, 0u);
    EXPECT_TRUE(calls.calls().empty());
    EXPECT_TRUE(traced.empty());
    family.destroy(store, 7, object);
  }
}

TEST(ReferenceQuestions, AnEarlierFailureIsToldAndStands) {
  harness::Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    store.err = 5;
    harness::CallLog calls;
    harness::TraceLog traced;
    EXPECT_EQ(family.get_oid_count(store, 7, nullptr, &store.err), 0u);
    family.get_object_references(store, 7, nullptr, nullptr, 0, &store.err);
    EXPECT_EQ(store.err, 5u);
    EXPECT_EQ(calls.count("kelp_store_err"), 0u);
    ASSERT_EQ(traced.messages().size(), 2u);
    EXPECT_EQ(traced.messages()[0].level, 3u);
    EXPECT_EQ(traced.messages()[0].text, "Error already present in call to get object oid count");
    EXPECT_EQ(traced.messages()[1].level, 3u);
    EXPECT_EQ(traced.messages()[1].text,
              "Error present in call to get table references from object");
  }
}

TEST(ReferenceQuestions, ANullObjectIsToldAndFails) {
  harness::Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    harness::CallLog calls;
    harness::TraceLog traced;
    store.err = 0;
    EXPECT_EQ(family.get_oid_count(store, 7, nullptr, &store.err), 0u);
    EXPECT_EQ(store.err, KELP_ERR_INVALID);
    store.err = 0;
    family.get_object_references(store, 7, nullptr, nullptr, 0, &store.err);
    store.expect_failure(KELP_ERR_INVALID);
    EXPECT_EQ(calls.calls(), (std::vector<std::string>{"kelp_store_err", "kelp_store_err"}));
    EXPECT_TRUE(traced.has(3, "Invalid object passed in to get object oid count"));
    EXPECT_TRUE(traced.has(3, "Cannot get table references. Invalid object passed on"));
  }
}

TEST(ReferenceQuestions, EachTypeHasMessagesOfItsOwn) {
  harness::Store store;
  std::vector<std::uint32_t> indices;
  for (const light::Family &family : light::families()) {
    harness::TraceLog traced;
    store.err = 5;
    family.get_oid_count(store, 7, nullptr, &store.err);
    ASSERT_EQ(traced.messages().size(), 1u);
    indices.push_back(traced.messages()[0].index);
  }
  for (std::size_t at = 1; at < indices.size(); ++at) EXPECT_EQ(indices[at], indices[0] + at);
}

}  // namespace
