// A _cr create without memory: the chain has failed, and nothing that follows in it writes the null
// object or null record that the create gave, which outlive every database of the process.
#include <kelp/table.h>

#include <algorithm>

#include "whole_schema/composed_call.hpp"

namespace whole_schema {

namespace {

struct NullThing {
  const std::uint8_t *memory;
  std::size_t size;
  bool is_zero() const {
    return std::all_of(memory, memory + size, [](std::uint8_t byte) { return byte == 0; });
  }
};

// The create fails; then every other _cr operation of the unit runs on what it gave.
void expect_chain_ends(harness::Store &store, const emit::Unit &unit, const std::string &create,
                       const std::string &c_type, std::size_t size, std::uint32_t with_objects) {
  SCOPED_TRACE(unit.name);
  kelp_handle *handle = store;
  store.fail_allocation(0);
  void *given = call<void *>(create, handle, with_objects);
  ASSERT_NE(given, nullptr);
  const NullThing thing{static_cast<const std::uint8_t *>(given), size};
  EXPECT_EQ(handle->cr_err, KELP_ERR_NO_MEMORY);
  EXPECT_EQ(handle->cr_create, 0u);
  EXPECT_EQ(store.last_error(), KELP_ERR_NO_MEMORY);
  EXPECT_TRUE(thing.is_zero());
  std::vector<std::uint8_t> memory(1 << 14);
  std::size_t tried = 0;
  for (const emit::Function &function : unit.functions) {
    // A record create does not look at cr_err, and what it gives is a record again.
    if (!function.name.ends_with("_cr") || function.name.ends_with("_record_create_cr")) continue;
    // The null thing stands wherever the function takes one of its C type.
    call_composed(function, [&](const std::string &parameter) {
      if (parameter.starts_with("kelp_handle *")) return word_of(handle);
      if (parameter.starts_with(c_type + " *") || parameter.starts_with("const " + c_type + " *")) {
        return word_of(given);
      }
      return parameter.find('*') == std::string::npos ? 1 : word_of(memory.data());
    });
    EXPECT_TRUE(thing.is_zero()) << function.name;
    EXPECT_EQ(handle->cr_err, KELP_ERR_NO_MEMORY) << function.name;
    ++tried;
  }
  EXPECT_GT(tried, 4u);
  EXPECT_EQ(store.live_allocations(), 0u);
  handle->cr_err = 0;
}

void *null_object_of(harness::Store &store, const std::string &type) {
  store.fail_allocation(0);
  void *object = call<void *>(type + "_create_cr", store.handle());
  store.handle()->cr_err = 0;
  return object;
}

}  // namespace

TEST(NullObject, AChainWithoutMemoryEndsAndNeverWritesWhatItWasGiven) {
  for (const std::uint32_t tracking : {KELP_TRACKING_ABSENT, KELP_TRACKING_ON}) {
    harness::Store store({.tracking = tracking});
    for (const auto *type : harbor::model::structures) {
      const std::string name(type->name);
      expect_chain_ends(store, emit::unit_of(*type), name + "_create_cr", name,
                        harbor::model::object_size(*type), 0);
    }
    for (const auto *type : harbor::model::all_enumerations) {
      const std::string name(type->name);
      expect_chain_ends(store, emit::unit_of(*type), name + "_create_cr", name,
                        harbor::model::enumeration_size, 0);
    }
    for (const auto *type : harbor::model::all_flag_sets) {
      const std::string name(type->name);
      expect_chain_ends(store, emit::unit_of(*type), name + "_create_cr", name,
                        harbor::model::flag_set_size, 0);
    }
    for (const auto *table : harbor::model::all_tables) {
      const std::string name = "tbl_" + std::string(table->name);
      for (const std::uint32_t with_objects : {0u, 1u}) {
        expect_chain_ends(
            store, emit::unit_of(*table), name + "_record_create_cr", name + "_record",
            sizeof(kelp_record) + (table->key_structure != nullptr ? 8 : 0), with_objects);
      }
    }
  }
}

TEST(NullObject, AnEarlierFailureOfTheChainStands) {
  harness::Store store;
  kelp_handle *handle = store;
  for (const auto *table : harbor::model::all_tables) {
    const std::string name = "tbl_" + std::string(table->name);
    handle->cr_err = 9;
    store.fail_allocation(0);
    harness::CallLog log;
    const auto *record =
        call<const kelp_record *>(name + "_record_create_cr", handle, std::uint32_t{1});
    EXPECT_EQ(handle->cr_err, 9u) << name;
    EXPECT_EQ(log.count("kelp_store_err"), 0u) << name;
    EXPECT_EQ(record->header.tinfo, nullptr) << name;
  }
  handle->cr_err = 0;
}

TEST(NullObject, AnObjectWithoutMemoryInARecordThatWasMadeEndsTheChainToo) {
  harness::Store store;
  kelp_handle *handle = store;
  for (const auto *table : harbor::model::all_tables) {
    const std::string name = "tbl_" + std::string(table->name);
    SCOPED_TRACE(name);
    const std::string first(table->key_structure != nullptr ? table->key_structure->name
                                                            : table->record->name);
    store.fail_allocation(1);
    auto *record = call<kelp_record *>(name + "_record_create_cr", handle, std::uint32_t{1});
    EXPECT_EQ(handle->cr_err, KELP_ERR_NO_MEMORY);
    EXPECT_EQ(record->ref_word, 1u);
    handle->cr_err = 0;
    EXPECT_EQ(record->objects[0], null_object_of(store, first));
    call<void>(name + "_record_destroy_cr", handle, record);
    EXPECT_EQ(handle->cr_err, 0u);
    EXPECT_EQ(store.live_allocations(), 0u);
  }
}

TEST(NullObject, IsNotMarkedAsEmbedded) {
  harness::Store store;
  const auto expect_unmarked = [&](std::string_view name) {
    void *object = null_object_of(store, std::string(name));
    harness::WriteWatch watch(store);
    call<void>(std::string(name) + "_set_instance_embedded", store.handle(), std::uint32_t{0},
               object);
    EXPECT_TRUE(watch.all().empty()) << name;
    EXPECT_EQ(static_cast<kelp_object_header *>(object)->obj_flags, 0) << name;
  };
  for (const auto *type : harbor::model::structures) expect_unmarked(type->name);
  for (const auto *type : harbor::model::all_enumerations) expect_unmarked(type->name);
  for (const auto *type : harbor::model::all_flag_sets) expect_unmarked(type->name);
}

TEST(NullRecord, TakesNoObjectNoReferenceAndNoEnd) {
  harness::Store store;
  kelp_handle *handle = store;
  for (const auto *table : harbor::model::all_tables) {
    const std::string name = "tbl_" + std::string(table->name);
    SCOPED_TRACE(name);
    store.fail_allocation(0);
    auto *record = call<kelp_record *>(name + "_record_create_cr", handle, std::uint32_t{0});
    handle->cr_err = 0;
    const NullThing thing{reinterpret_cast<const std::uint8_t *>(record), sizeof(kelp_record)};
    std::vector<std::string> objects;
    if (table->key_structure != nullptr) objects.emplace_back(table->key_structure->name);
    objects.emplace_back(table->record->name);
    for (const std::string &object_name : objects) {
      Object object(handle, object_name);
      for (const char *form : {"_set_field", "_free_and_set_field"}) {
        call<void>(name + "_" + object_name + form, handle, std::uint32_t{0}, record, object.get());
        EXPECT_TRUE(thing.is_zero()) << form;
      }
      EXPECT_EQ(static_cast<kelp_object_header *>(object.get())->obj_flags & OBJ_EMBEDDED, 0);
    }
    EXPECT_EQ(
        call<std::uint32_t>(name + "_record_add_ref", handle, std::uint32_t{0}, record, &store.err),
        0u);
    call<void>(name + "_record_destroy_cr", handle, record);
    EXPECT_EQ(handle->cr_err, 0u);
    EXPECT_TRUE(thing.is_zero());
  }
}

// Required: what only leaves a last error behind while an object is prepared is no failure of the
// chain.
TEST(NullObject, ADomainThatGivesNoVariantDoesNotEndTheChain) {
  harness::Store store;
  kelp_handle *handle = store;
  const harness::Failing failing("kelp_domain_lookup_variant", 5);
  EXPECT_EQ(call<void *>("ospf_area_create_cr", handle), nullptr);
  EXPECT_EQ(handle->cr_err, 0u);
}

TEST(NullObject, ALookUpThatStoresItsFailureDoesNotEndTheChain) {
  harness::Store store;
  kelp_handle *handle = store;
  EXPECT_EQ(kelp_handle_fail_variant(handle, "ospf_area", 5, nullptr), 0);
  EXPECT_EQ(call<void *>("ospf_area_create_cr", handle), nullptr);
  EXPECT_EQ(handle->cr_err, 0u);
  EXPECT_EQ(kelp_handle_fail_variant(handle, "address_family", 5, nullptr), 0);
  void *family = call<void *>("address_family_create_cr", handle);
  EXPECT_EQ(handle->cr_err, 0u);
  ASSERT_NE(family, nullptr);
  call<void>("address_family_destroy_cr", handle, family);
}

}  // namespace whole_schema
