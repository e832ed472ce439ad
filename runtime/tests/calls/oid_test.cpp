// OIDs: mappings both ways, reference counts, and objects whose end is put off.
#include "kelp/oid.h"

#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;
using kelp_test::Object;
using kelp_test::Type;

class OidTest : public DatabaseTest {
 protected:
  kelp_oid oid_of(void *object, std::uint32_t add_reference = 0) {
    return kelp_handle_to_oid(handle, 0, object, KELP_OID_KIND_TABLE, add_reference, &err);
  }
  void *resolve(const kelp_oid &oid) { return kelp_oid_to_handle(handle, 0, &oid, &err); }
  std::int64_t references(const void *object) { return kelp_handle_oid_references(handle, object); }

  Type type{"thing"};
};

TEST_F(OidTest, MappingWorksBothWays) {
  auto *object = make<Object>(&type.record);
  watch_writes();
  EXPECT_NE(kelp_oid_mapping_create(handle, 4, object, KELP_OID_KIND_TABLE, 0, nullptr, &err), 0u);
  EXPECT_EQ(object->header.obj_flags, OBJ_OID_MAPPED);
  ASSERT_EQ(writes.size(), 1u);
  EXPECT_EQ(writes[0].address, &object->header.obj_flags);
  EXPECT_EQ(writes[0].length, 1u);
  EXPECT_EQ(writes[0].space_id, 4u);
  const kelp_oid oid = oid_of(object);
  EXPECT_GE(oid.handle_word, 256u);
  EXPECT_EQ(kelp_oid_id_is_zero(oid.id), 0u);
  EXPECT_EQ(kelp_oid_id_is_zero(oid.source), 0u);
  EXPECT_EQ(resolve(oid), object);
  EXPECT_EQ(references(object), 0);
  EXPECT_EQ(err, 0u);
  release(object);
}

// A mapping is counted beside the objects, as long as it is there.
TEST_F(OidTest, MappingsAreToldAsWhatTheRuntimeKeeps) {
  release(make<Object>(&type.record));
  std::vector<Object *> objects;
  for (int i = 0; i < 100; ++i) objects.push_back(make<Object>(&type.record));
  const kelp_memory_statistics before = memory();
  for (Object *object : objects) oid_of(object);
  const kelp_memory_statistics mapped = memory();
  EXPECT_EQ(mapped.used_bytes, before.used_bytes);
  EXPECT_EQ(mapped.live_allocations, before.live_allocations);
  EXPECT_GE(mapped.own_bytes, before.own_bytes + 100 * sizeof(kelp_oid));
  const std::uint64_t of_mappings = 100 * sizeof(kelp_oid);
  for (Object *object : objects) release(object);
  EXPECT_LE(memory().own_bytes, mapped.own_bytes - of_mappings);
}

TEST_F(OidTest, OidsAreUnique) {
  std::vector<Object *> objects;
  std::vector<kelp_oid> oids;
  for (int i = 0; i < 100; ++i) {
    objects.push_back(make<Object>(&type.record));
    oids.push_back(oid_of(objects.back()));
  }
  for (std::size_t i = 0; i < oids.size(); ++i) {
    EXPECT_EQ(resolve(oids[i]), objects[i]);
    for (std::size_t j = 0; j < i; ++j) EXPECT_NE(kelplib_oid_compare(&oids[i], &oids[j]), 0);
  }
  for (Object *object : objects) release(object);
}

TEST_F(OidTest, EmptyOidResolvesToNothingWithoutAnError) {
  EXPECT_EQ(resolve(kelp_oid{}), nullptr);
  kelp_oid low = {};
  low.handle_word = 255;
  low.id[3] = 1;
  EXPECT_EQ(resolve(low), nullptr);
  EXPECT_EQ(err, 0u);
}

TEST_F(OidTest, UnknownOidIsNotFound) {
  kelp_oid unknown = {};
  unknown.handle_word = 256;
  unknown.id[0] = 1;
  EXPECT_EQ(resolve(unknown), nullptr);
  EXPECT_EQ(err, 2u);
  err = 0;
  EXPECT_EQ(kelplib_oid_id_mapping_get(handle, 0, &unknown, &err), nullptr);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(kelp_oid_to_handle(handle, 0, nullptr, &err), nullptr);
  EXPECT_EQ(err, 22u);
}

TEST_F(OidTest, SentinelIsNeitherEmptyNorResolvable) {
  err = 9;
  const kelp_oid oid = oid_of(KELP_OID_SENTINEL);
  EXPECT_EQ(err, 9u);
  err = 0;
  EXPECT_EQ(kelp_oid_id_is_zero(oid.id), 0u);
  EXPECT_LT(oid.handle_word, 256u);
  EXPECT_EQ(resolve(oid), nullptr);
  EXPECT_EQ(kelplib_oid_id_mapping_get(handle, 0, &oid, &err), nullptr);
  EXPECT_EQ(err, 0u);
}

TEST_F(OidTest, FailuresGiveAnEmptyOid) {
  EXPECT_EQ(oid_of(nullptr).handle_word, 0u);
  EXPECT_EQ(err, 22u);
  auto *object = make<Object>(&type.record);
  EXPECT_EQ(oid_of(object).handle_word, 0u);
  EXPECT_EQ(references(object), -1);
  err = 0;
  release(object);
  EXPECT_EQ(oid_of(object).handle_word, 0u);
  EXPECT_EQ(err, 14u);
}

TEST_F(OidTest, FaultMakesMappingFail) {
  auto *object = make<Object>(&type.record);
  kelp_database_fail_after(database, KELP_FAULT_OID_MAPPING, 0);
  EXPECT_EQ(kelp_oid_mapping_create(handle, 0, object, KELP_OID_KIND_TABLE, 0, nullptr, &err), 0u);
  EXPECT_EQ(err, 12u);
  EXPECT_EQ(object->header.obj_flags, 0);
  release(object);
}

TEST_F(OidTest, ReferencesAreCounted) {
  auto *object = make<Object>(&type.record);
  const kelp_oid oid = oid_of(object, 1);
  oid_of(object, 1);
  EXPECT_EQ(references(object), 2);
  kelp_oid_mapping *mapping = kelplib_oid_id_mapping_get(handle, 0, &oid, &err);
  ASSERT_NE(mapping, nullptr);
  kelplib_update_oid_ref_count(handle, 0, mapping, KELP_OID_DECREMENT, &err);
  EXPECT_EQ(references(object), 1);
  kelplib_lookup_and_update_oid_ref_count(handle, 0, object, KELP_OID_INCREMENT, &err);
  EXPECT_EQ(references(object), 2);
  kelplib_lookup_and_update_oid_ref_count(handle, 0, object, KELP_OID_DECREMENT, &err);
  kelplib_lookup_and_update_oid_ref_count(handle, 0, object, KELP_OID_DECREMENT, &err);
  EXPECT_EQ(references(object), 0);
  kelplib_lookup_and_update_oid_ref_count(handle, 0, object, KELP_OID_DECREMENT, &err);
  EXPECT_EQ(references(object), 0);
  EXPECT_EQ(err, 0u);
  kelplib_update_oid_ref_count(handle, 0, nullptr, KELP_OID_DECREMENT, &err);
  EXPECT_EQ(err, 22u);
  err = 0;
  Object unmapped = {};
  kelplib_lookup_and_update_oid_ref_count(handle, 0, &unmapped, KELP_OID_DECREMENT, &err);
  EXPECT_EQ(err, 2u);
  release(object);
}

TEST_F(OidTest, ReleaseDropsTheReferenceAndEmptiesTheField) {
  auto *object = make<Object>(&type.record);
  auto *field = make<kelp_reference>();
  field->target_type = &type.record;
  field->oid = oid_of(object, 1);
  watch_writes();
  kelplib_oid_release_internal(handle, 7, field, &err);
  EXPECT_EQ(references(object), 0);
  EXPECT_EQ(kelp_oid_id_is_zero(field->oid.id), 1u);
  EXPECT_EQ(field->target_type, &type.record);
  ASSERT_EQ(writes.size(), 1u);
  EXPECT_EQ(writes[0].address, &field->oid);
  EXPECT_EQ(writes[0].length, 40u);
  kelplib_oid_release_internal(handle, 7, field, &err);
  EXPECT_EQ(writes.size(), 1u);
  EXPECT_EQ(err, 0u);
  kelplib_oid_release_internal(handle, 7, nullptr, &err);
  EXPECT_EQ(err, 22u);
  release(field);
  release(object);
}

TEST_F(OidTest, ReleaseOfForeignReferenceIsNoError) {
  auto *field = make<kelp_reference>();
  field->oid.handle_word = 500;
  field->oid.id[0] = 9;
  kelplib_oid_release_internal(handle, 0, field, &err);
  EXPECT_EQ(err, 0u);
  release(field);
}

TEST_F(OidTest, MappingStaysWhileReferencesRemain) {
  auto *object = make<Object>(&type.record);
  const kelp_oid oid = oid_of(object, 1);
  EXPECT_EQ(kelp_request_oid_mapping_destroy(handle, 0, object, &err), 0u);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(object->header.obj_flags, OBJ_OID_MAPPED);
  EXPECT_EQ(resolve(oid), object);
  kelplib_lookup_and_update_oid_ref_count(handle, 0, object, KELP_OID_DECREMENT, &err);
  EXPECT_NE(kelp_request_oid_mapping_destroy(handle, 0, object, &err), 0u);
  EXPECT_EQ(object->header.obj_flags, 0);
  EXPECT_EQ(resolve(oid), nullptr);
  EXPECT_EQ(err, 2u);
  err = 0;
  EXPECT_NE(kelp_request_oid_mapping_destroy(handle, 0, object, &err), 0u);
  EXPECT_EQ(kelp_request_oid_mapping_destroy(handle, 0, nullptr, &err), 0u);
  EXPECT_EQ(err, 22u);
  release(object);
}

TEST_F(OidTest, FreedMemoryTakesItsMappingAlong) {
  auto *object = make<Object>(&type.record);
  const kelp_oid oid = oid_of(object, 1);
  release(object);
  EXPECT_EQ(resolve(oid), nullptr);
  EXPECT_EQ(err, 2u);
  EXPECT_EQ(references(object), -1);
}

TEST_F(OidTest, ObjectCanTakeOverAnOid) {
  auto *object = make<Object>(&type.record);
  auto *other = make<Object>(&type.record);
  kelp_oid foreign = {};
  foreign.handle_word = 9999;
  foreign.id[5] = 77;
  foreign.source[0] = 3;
  EXPECT_NE(kelp_oid_mapping_create(handle, 0, object, KELP_OID_KIND_TABLE, 1, &foreign, &err), 0u);
  EXPECT_EQ(resolve(foreign), object);
  const kelp_oid own = oid_of(object);
  EXPECT_EQ(kelplib_oid_compare(&own, &foreign), 0);
  EXPECT_EQ(kelp_oid_mapping_create(handle, 0, other, KELP_OID_KIND_TABLE, 1, &foreign, &err), 0u);
  EXPECT_EQ(err, 17u);
  err = 0;
  const kelp_oid empty = {};
  EXPECT_EQ(kelp_oid_mapping_create(handle, 0, other, KELP_OID_KIND_TABLE, 1, &empty, &err), 0u);
  EXPECT_EQ(err, 22u);
  release(object);
  release(other);
}

TEST_F(OidTest, SecondMappingIsTheFirst) {
  auto *object = make<Object>(&type.record);
  kelp_oid_mapping_create(handle, 0, object, KELP_OID_KIND_TABLE, 0, nullptr, &err);
  const kelp_oid oid = oid_of(object, 1);
  EXPECT_NE(kelp_oid_mapping_create(handle, 0, object, KELP_OID_KIND_TABLE, 0, nullptr, &err), 0u);
  const kelp_oid again = oid_of(object);
  EXPECT_EQ(kelplib_oid_compare(&oid, &again), 0);
  EXPECT_EQ(references(object), 1);
  release(object);
}

TEST_F(OidTest, CompareOrdersByIdThenSourceThenWord) {
  kelp_oid a = {};
  kelp_oid b = {};
  EXPECT_EQ(kelplib_oid_compare(&a, &b), 0);
  b.handle_word = 1;
  EXPECT_EQ(kelplib_oid_compare(&a, &b), -1);
  a.source[15] = 1;
  EXPECT_EQ(kelplib_oid_compare(&a, &b), 1);
  b.id[15] = 1;
  EXPECT_EQ(kelplib_oid_compare(&a, &b), -1);
  EXPECT_EQ(kelplib_oid_compare(nullptr, &b), -1);
  EXPECT_EQ(kelplib_oid_compare(&a, nullptr), 1);
  EXPECT_EQ(kelplib_oid_compare(nullptr, nullptr), 0);
}

TEST_F(OidTest, PrintsHexadecimalWithinTheBuffer) {
  std::uint8_t part[16];
  for (int i = 0; i < 16; ++i) part[i] = static_cast<std::uint8_t>(i * 17);
  char buffer[33];
  std::uint32_t length = 0;
  kelplib_oid_id_print(handle, KELP_SPACE_RUNTIME, part, buffer, sizeof buffer, &length);
  EXPECT_STREQ(buffer, "00112233445566778899aabbccddeeff");
  EXPECT_EQ(length, 32u);
  kelplib_oid_src_print(handle, KELP_SPACE_RUNTIME, part, buffer, 6, &length);
  EXPECT_STREQ(buffer, "00112");
  EXPECT_EQ(length, 5u);
  kelplib_oid_id_print(handle, 0, nullptr, buffer, 33, nullptr);
  EXPECT_STREQ(buffer, "00000000000000000000000000000000");
  buffer[0] = 'x';
  kelplib_oid_id_print(handle, 0, part, buffer, 0, &length);
  EXPECT_EQ(buffer[0], 'x');
  EXPECT_EQ(length, 0u);
}

TEST_F(OidTest, NonZeroErrorWordStopsEverything) {
  auto *object = make<Object>(&type.record);
  const kelp_oid oid = oid_of(object, 1);
  auto *field = make<kelp_reference>();
  field->oid = oid;
  err = 5;
  EXPECT_EQ(resolve(oid), nullptr);
  EXPECT_EQ(oid_of(object, 1).handle_word, 0u);
  EXPECT_EQ(kelp_request_oid_mapping_destroy(handle, 0, object, &err), 0u);
  kelplib_oid_release_internal(handle, 0, field, &err);
  kelplib_lookup_and_update_oid_ref_count(handle, 0, object, 0, &err);
  EXPECT_EQ(err, 5u);
  EXPECT_EQ(references(object), 1);
  EXPECT_EQ(kelplib_oid_compare(&field->oid, &oid), 0);
  EXPECT_EQ(kelp_handle_last_error(handle, nullptr), 0);
  release(field);
  release(object);
}

TEST_F(OidTest, MappingGoesWithTheMemoryThatHoldsItsObject) {
  auto *block = static_cast<char *>(allocate(256));
  std::memset(block, 0, 256);
  void *nested = block + 64;
  void *last = block + 240;
  const kelp_oid first = kelp_handle_to_oid(handle, 0, nested, KELP_OID_KIND_OBJECT, 0, &err);
  const kelp_oid second = kelp_handle_to_oid(handle, 0, last, KELP_OID_KIND_OBJECT, 0, &err);
  auto *apart = make<Object>();
  const kelp_oid kept = kelp_handle_to_oid(handle, 0, apart, KELP_OID_KIND_OBJECT, 0, &err);
  ASSERT_EQ(err, 0u);
  release(block);
  EXPECT_EQ(kelp_oid_to_handle(handle, 0, &first, &err), nullptr);
  EXPECT_EQ(err, 2u);
  err = 0;
  EXPECT_EQ(kelp_oid_to_handle(handle, 0, &second, &err), nullptr);
  EXPECT_EQ(err, 2u);
  err = 0;
  EXPECT_EQ(kelp_oid_to_handle(handle, 0, &kept, &err), apart);
  release(apart);
}

// Of blocks side by side, with objects at both ends and between, every second one goes.
TEST_F(OidTest, MappingsOfTheMemoryBesideStay) {
  constexpr std::size_t kBytes = 1000;
  std::vector<char *> blocks(20);
  std::vector<std::pair<void *, kelp_oid>> objects[2];
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    blocks[i] = static_cast<char *>(allocate(kBytes));
    std::memset(blocks[i], 0, kBytes);
    for (const std::size_t place : {0, 16, 496, 768, 984}) {
      void *object = blocks[i] + place;
      objects[i % 2].emplace_back(object, oid_of(object));
    }
  }
  for (std::size_t i = 1; i < blocks.size(); i += 2) release(blocks[i]);
  for (const auto &[object, oid] : objects[1]) {
    EXPECT_EQ(resolve(oid), nullptr);
    EXPECT_EQ(err, 2u);
    err = 0;
    EXPECT_EQ(references(object), -1);
  }
  for (const auto &[object, oid] : objects[0]) {
    EXPECT_EQ(resolve(oid), object);
    EXPECT_EQ(references(object), 0);
  }
  for (std::size_t i = 0; i < blocks.size(); i += 2) release(blocks[i]);
}

}  // namespace
