// Variants of a handle's domain and adjusting objects to them.
#include <memory>

#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;
using kelp_test::Object;
using kelp_test::Type;

class DomainTest : public DatabaseTest {
 protected:
  std::int8_t lookup(const kelp_type_record *record) {
    return kelp_domain_lookup_variant(handle, &handle->domain, record, &err);
  }
};

TEST_F(DomainTest, HighestVariantUnlessFixed) {
  const Type one("one", "type", 1);
  const Type two("two", "type", 2);
  EXPECT_EQ(lookup(&one.record), 0);
  EXPECT_EQ(lookup(&two.record), 1);
  ASSERT_EQ(kelp_handle_set_variant(handle, "two", 0, nullptr), 0);
  EXPECT_EQ(lookup(&two.record), 0);
  EXPECT_EQ(lookup(&one.record), 0);
  ASSERT_EQ(kelp_handle_set_variant(handle, "two", 5, nullptr), 0);
  EXPECT_EQ(lookup(&two.record), 5);
  kelp_handle_clear_variant(handle, "two");
  EXPECT_EQ(lookup(&two.record), 1);
  EXPECT_EQ(err, 0u);
}

TEST_F(DomainTest, StaticRecordAndCopyAgreeByName) {
  const Type original("same", "type", 2, 1);
  const Type copy("same", "type", 2, 1);
  ASSERT_EQ(kelp_handle_set_variant(handle, "same", 0, nullptr), 0);
  EXPECT_EQ(lookup(&original.record), 0);
  EXPECT_EQ(lookup(&copy.record), 0);
}

TEST_F(DomainTest, ManyFixedTypesAreKeptApart) {
  std::vector<std::unique_ptr<Type>> types;
  for (int i = 0; i < 300; ++i) {
    types.push_back(std::make_unique<Type>("type_" + std::to_string(i)));
    ASSERT_EQ(kelp_handle_set_variant(handle, types.back()->record.type_name, i % 100, nullptr), 0);
  }
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 300; ++i) {
      EXPECT_EQ(lookup(&types[static_cast<std::size_t>(i)]->record), i % 100);
    }
  }
}

TEST_F(DomainTest, AnotherHandleHasItsOwnVariants) {
  const Type two("two");
  kelp_handle *other = kelp_handle_create(database, nullptr, nullptr);
  ASSERT_EQ(kelp_handle_set_variant(other, "two", 0, nullptr), 0);
  EXPECT_EQ(lookup(&two.record), 1);
  EXPECT_EQ(kelp_domain_lookup_variant(other, &other->domain, &two.record, &err), 0);
  kelp_handle_destroy(other);
}

TEST_F(DomainTest, RecordWithoutVariantInfoFails) {
  Type broken("broken");
  broken.record.varinfo = nullptr;
  EXPECT_EQ(lookup(&broken.record), 0);
  EXPECT_EQ(err, 22u);
  err = 7;
  EXPECT_EQ(lookup(nullptr), 0);
  EXPECT_EQ(err, 7u);
}

TEST_F(DomainTest, FailureThatWasAskedForStillGivesTheVariant) {
  const Type two("two");
  ASSERT_EQ(kelp_handle_fail_variant(handle, "two", 5, nullptr), 0);
  EXPECT_EQ(lookup(&two.record), 1);
  EXPECT_EQ(err, 5u);
  EXPECT_EQ(kelp_handle_last_error(handle, nullptr), 5);
  err = 9;
  EXPECT_EQ(lookup(&two.record), 1);
  EXPECT_EQ(err, 9u);
  err = 0;
  ASSERT_EQ(kelp_handle_fail_variant(handle, "two", 0, nullptr), 0);
  lookup(&two.record);
  EXPECT_EQ(err, 0u);
}

TEST_F(DomainTest, BadNamesAndVariantsAreNamed) {
  kelp_error error;
  EXPECT_EQ(kelp_handle_set_variant(handle, "", 0, &error), 22);
  EXPECT_STREQ(error.text, "kelp_handle_set_variant: a type name of 0 bytes, expected 1 to 63");
  EXPECT_EQ(kelp_handle_set_variant(handle, std::string(64, 'x').c_str(), 0, &error), 22);
  EXPECT_EQ(kelp_handle_set_variant(handle, "t", 128, &error), 22);
  EXPECT_STREQ(error.text,
               "kelp_handle_set_variant: variant 128 of type 't', expected -128 to 127");
  EXPECT_EQ(kelp_handle_set_variant(nullptr, "t", 0, &error), 22);
}

TEST_F(DomainTest, AdjustRaisesAndAnnouncesTheVariantByte) {
  Type type("two");
  auto *object = make<Object>(&type.record);
  watch_writes();
  kelplib_adjust_variant(handle, 8, object, &type.record, 1, &err);
  EXPECT_EQ(object->header.variant, 1);
  EXPECT_EQ(object->header.created_variant, 0);
  ASSERT_EQ(writes.size(), 1u);
  EXPECT_EQ(writes[0].address, &object->header.variant);
  EXPECT_EQ(writes[0].length, 1u);
  EXPECT_EQ(writes[0].space_id, 8u);
  EXPECT_EQ(err, 0u);
  kelplib_adjust_variant(handle, 8, object, &type.record, 1, &err);
  EXPECT_EQ(writes.size(), 1u);
  release(object);
}

TEST_F(DomainTest, AdjustNeverLowers) {
  Type type("two");
  auto *object = make<Object>(&type.record);
  object->header.variant = 1;
  kelp_handle_set_variant(handle, "two", 0, nullptr);
  kelplib_adjust_variant(handle, 0, object, &type.record, 1, &err);
  EXPECT_EQ(object->header.variant, 1);
  release(object);
}

TEST_F(DomainTest, AdjustStopsAtTheHighestOfTheCaller) {
  Type type("many", "type", 4);
  auto *object = make<Object>(&type.record);
  kelplib_adjust_variant(handle, 0, object, &type.record, 1, &err);
  EXPECT_EQ(object->header.variant, 1);
  release(object);
}

TEST_F(DomainTest, AdjustToleratesNullAndRespectsTheErrorWord) {
  Type type("two");
  kelplib_adjust_variant(handle, 0, nullptr, nullptr, 1, &err);
  EXPECT_EQ(err, 0u);
  auto *object = make<Object>(&type.record);
  err = 4;
  kelplib_adjust_variant(handle, 0, object, &type.record, 1, &err);
  EXPECT_EQ(object->header.variant, 0);
  EXPECT_EQ(err, 4u);
  err = 0;
  kelp_handle_fail_variant(handle, "two", 5, nullptr);
  kelplib_adjust_variant(handle, 0, object, &type.record, 1, &err);
  EXPECT_EQ(object->header.variant, 0);
  EXPECT_EQ(err, 5u);
  release(object);
}

}  // namespace
