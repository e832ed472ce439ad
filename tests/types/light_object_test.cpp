// The life of enumeration and flag objects. What holds for all nine types is tested on all nine.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <sstream>

#include "types/light_family.hpp"

namespace {

using harness::CallLog;
using harness::Store;
using harness::TraceLog;
using harness::WriteWatch;
using light::Place;

constexpr std::uint32_t space = 7;

// Keeps what is given back, so that a test can look at it; frees it at its end.
class KeptMemory {
 public:
  explicit KeptMemory(kelp_handle *handle) : handle_(handle), free_(handle->obj_free) {
    kept_ = nullptr;
    handle->obj_free = [](void *, std::uint32_t, void *pointer) { kept_ = pointer; };
  }
  ~KeptMemory() {
    handle_->obj_free = free_;
    if (kept_ != nullptr) free_(handle_->obj_pool, space, kept_);
  }
  static void *memory() { return kept_; }

 private:
  static inline void *kept_ = nullptr;
  kelp_handle *handle_;
  void (*free_)(void *, std::uint32_t, void *);
};

// The suffixes of a list in one text.
std::vector<std::string> words(const char *list) {
  std::istringstream in(list);
  return {std::istream_iterator<std::string>(in), {}};
}

TEST(LightExports, AreThoseOfAllNineAndThoseOfTheirKind) {
  const char *both =
      "variant_data_index_cap get_luid adjust_variant create create_internal create_cr initialize "
      "set_instance_embedded destroy destroy_internal destroy_cr sizeof get_oid_count "
      "get_object_references compare hash len len_cr get get_value set set_value marshal unmarshal "
      "print print_cr to_xml toxml_cr from_xml is_valid_cr";
  const char *of_enumerations = "map_to_user_value map_to_internal_value";
  const char *of_flag_sets = "in_range get_cr set_cr";
  EXPECT_EQ(words(both).size(), 30u);
  for (const light::Family &family : light::families()) {
    const auto exported = [&](const std::string &suffix) {
      return harness::is_exported(family.name + "_" + suffix);
    };
    for (const std::string &suffix : words(both)) EXPECT_TRUE(exported(suffix)) << suffix;
    for (const std::string &suffix : words(of_enumerations)) {
      EXPECT_EQ(exported(suffix), family.is_enumeration) << family.name << " " << suffix;
    }
    for (const std::string &suffix : words(of_flag_sets)) {
      EXPECT_EQ(exported(suffix), !family.is_enumeration) << family.name << " " << suffix;
    }
  }
}

TEST(LightValues, NullIsBelowAllAndHashesToTheSeedAndGetGivesTheObject) {
  Store store;
  alignas(8) std::uint8_t memory[24] = {};
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    EXPECT_EQ(family.compare(nullptr, nullptr), 0);
    EXPECT_EQ(family.compare(nullptr, memory), -1);
    EXPECT_EQ(family.compare(memory, nullptr), 1);
    EXPECT_EQ(family.hash(nullptr, 99), 99u);
    EXPECT_EQ(family.get(store, space, memory), memory);
    EXPECT_EQ(family.get(store, space, nullptr), nullptr);
  }
}

TEST(LightCreate, GivesAZeroedObjectAtTheDomainsVariant) {
  Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    const int highest = family.record->varinfo->n_variants - 1;
    void *object = family.create(store, space);
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(light::header(object)->tinfo, family.record);
    EXPECT_EQ(light::header(object)->variant, highest);
    EXPECT_EQ(light::header(object)->created_variant, highest);
    EXPECT_EQ(light::header(object)->obj_flags, 0);
    const auto *bytes = static_cast<const std::uint8_t *>(object);
    EXPECT_TRUE(std::all_of(bytes + 11, bytes + family.size, [](auto byte) { return byte == 0; }));
    family.destroy(store, space, object);
  }
}

TEST(LightCreate, AllocatesOnceAndAnnouncesTheHeaderInOrder) {
  Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    WriteWatch watch(store);
    void *object = family.create_internal(store, space);
    EXPECT_EQ(light::places(watch.writes(), object),
              (std::vector<Place>{{9, 1}, {8, 1}, {0, 8}, {10, 1}}));
    for (const auto &range : watch.all()) EXPECT_EQ(range.space_id, space);
    family.destroy(store, space, object);
  }
}

TEST(LightCreate, CallsThePlatformInOrder) {
  Store store;
  CallLog calls(store);
  OWNED(store, address_family, object);
  EXPECT_EQ(calls.calls(), (std::vector<std::string>{"obj_alloc", "kelp_domain_lookup_variant",
                                                     "write_notify", "write_notify", "write_notify",
                                                     "write_notify", "counter_notify"}));
}

TEST(LightCreate, CountsInTheEntryOfTheVariantAndAnnouncesOneByte) {
  Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    kelp_variant_entry &entry = family.entry(family.record->varinfo->n_variants - 1);
    const std::uint64_t created = entry.create_count;
    const std::uint64_t destroyed = entry.destroy_count;
    WriteWatch watch(store);
    void *object = family.create(store, space);
    EXPECT_EQ(entry.create_count, created + 1);
    EXPECT_EQ(entry.destroy_count, destroyed);
    const auto counted = watch.of_origin(KELP_WRITE_COUNTER);
    ASSERT_EQ(counted.size(), 1u);
    EXPECT_EQ(counted[0].address, &entry.create_count);
    EXPECT_EQ(counted[0].length, 1u);
    family.destroy(store, space, object);
  }
}

TEST(LightCreate, UnderSharedRecordsPointsAtTheCopyAndCountsThere) {
  Store store({.shared_tinfo = true});
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    const std::uint64_t static_count = family.entry(0).create_count;
    void *object = family.create(store, space);
    kelp_type_record *copy = light::header(object)->tinfo;
    ASSERT_NE(copy, family.record);
    EXPECT_STREQ(copy->type_name, family.name.c_str());
    EXPECT_NE(copy->plain_counters, 0u);
    EXPECT_EQ(copy->varinfo->entries[copy->varinfo->n_variants - 1].create_count, 1u);
    EXPECT_EQ(family.entry(0).create_count, static_count);
    family.destroy(store, space, object);
    EXPECT_EQ(copy->varinfo->entries[copy->varinfo->n_variants - 1].destroy_count, 1u);
  }
}

TEST(LightCreate, WithoutMemoryGivesNullAndStoresNoError) {
  Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    store.fail_allocation(0);
    CallLog calls;
    EXPECT_EQ(family.create(store, space), nullptr);
    EXPECT_TRUE(calls.calls().empty()) << "what is told is the allocator's refusal";
  }
}

TEST(LightCreate, OfAChainWithoutMemoryGivesTheNullObjectAndStoresTwelve) {
  Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    kelp_clear_last_error(store);
    store.handle()->cr_err = 0;
    store.fail_allocation(0);
    void *object = family.create_cr(store);
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(light::header(object)->tinfo, nullptr);
    EXPECT_EQ(store.last_error(), KELP_ERR_NO_MEMORY);
    EXPECT_EQ(store.handle()->cr_err, KELP_ERR_NO_MEMORY);
    EXPECT_EQ(store.handle()->cr_create, 0u);
  }
}

TEST(LightCreate, OfAFailedChainAllocatesNothing) {
  Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    store.handle()->cr_err = 5;
    CallLog calls(store);
    void *first = family.create_cr(store);
    EXPECT_EQ(family.create_cr(store), first);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(light::header(first)->tinfo, nullptr);
    EXPECT_TRUE(calls.calls().empty());
    EXPECT_EQ(store.handle()->cr_create, 0u);
    EXPECT_EQ(store.handle()->cr_err, 5u);
  }
}

TEST(LightCreate, OutsideAChainDoesNotLookAtItsError) {
  Store store;
  store.handle()->cr_err = 5;
  OWNED(store, address_family, object);
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(light::header(object.get())->tinfo, &_address_family_type_info_internal);
}

TEST(LightCreate, OfAChainWorksInTheChainsSpace) {
  Store store;
  store.handle()->cr_space_id = 31;
  WriteWatch watch(store);
  lsa_flag_options *object = lsa_flag_options_create_cr(store);
  for (const auto &range : watch.all()) EXPECT_EQ(range.space_id, 31u);
  watch.clear();
  lsa_flag_options_destroy_cr(store, object);
  ASSERT_EQ(watch.all().size(), 1u);
  EXPECT_EQ(watch.all()[0].space_id, 31u);
}

TEST(LightCreate, GoesOnWhenTheDomainFailsAndTellsSoWithoutAColon) {
  Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    ASSERT_EQ(kelp_handle_fail_variant(store, family.name.c_str(), 5, nullptr), 0);
    TraceLog traced;
    void *object = family.create(store, space);
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(light::header(object)->tinfo, family.record);
    ASSERT_EQ(traced.messages().size(), 1u);
    EXPECT_EQ(traced.messages()[0].level, 3u);
    EXPECT_EQ(traced.messages()[0].text, "error in " + family.name + " create " + std::strerror(5));
    family.destroy(store, space, object);
  }
}

TEST(LightCreate, FirstMessageOfTheTypeSideIsThatOfAddressFamily) {
  Store store;
  ASSERT_EQ(kelp_handle_fail_variant(store, "address_family", 5, nullptr), 0);
  TraceLog traced;
  address_family_destroy(store, space, address_family_create(store, space));
  ASSERT_EQ(traced.messages().size(), 1u);
  EXPECT_EQ(traced.messages()[0].index, 0u);
}

TEST(LightCreate, OfAVariantAboveTheRecordsIsToldAndCountedAtTheHighest) {
  Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    const int present = family.record->varinfo->n_variants;
    kelp_variant_entry &highest = family.entry(present - 1);
    const std::uint64_t created = highest.create_count;
    store.set_variant(family.name.c_str(), present + 1);
    TraceLog traced;
    void *object = family.create(store, space);
    EXPECT_EQ(light::header(object)->variant, present + 1);
    EXPECT_EQ(traced.texts(), std::vector<std::string>{
                                  "variant " + std::to_string(present + 1) + " requested only " +
                                  std::to_string(present) + " variants present"});
    EXPECT_TRUE(traced.has(6, traced.texts()[0]));
    EXPECT_EQ(highest.create_count, created + 1);
    traced.clear();
    family.destroy(store, space, object);
    EXPECT_EQ(traced.texts().size(), 1u) << "told again at the end";
  }
}

TEST(LightCreate, OfTheVariantThatTheRecordEndsAtIsNotTold) {
  Store store;
  store.set_variant("address_family", 1);
  TraceLog traced;
  address_family *object = address_family_create(store, space);
  EXPECT_EQ(light::header(object)->variant, 1);
  address_family_destroy(store, space, object);
  EXPECT_TRUE(traced.empty());
}

TEST(LightCreate, OfANegativeVariantCountsAtTheFirstEntry) {
  Store store;
  store.set_variant("lsa_flag_options", -3);
  kelp_variant_entry &entry = _lsa_flag_options_type_info_internal.varinfo->entries[0];
  const std::uint64_t created = entry.create_count;
  const std::uint64_t destroyed = entry.destroy_count;
  lsa_flag_options *object = lsa_flag_options_create(store, space);
  EXPECT_EQ(light::header(object)->variant, -3);
  lsa_flag_options_destroy(store, space, object);
  EXPECT_EQ(entry.create_count, created + 1);
  EXPECT_EQ(entry.destroy_count, destroyed + 1);
}

using LightObjectDeathTest = ::testing::Test;

TEST(LightObjectDeathTest, CreateWithoutVarinfoEndsTheProcess) {
  EXPECT_FATAL(
      {
        Store store;
        light::WithoutVarinfo without(_address_family_type_info_internal);
        address_family_create(store, space);
      },
      "varinfo is NULL");
}

TEST(LightInitialize, AnnouncesTheHeaderWhenAskedTo) {
  Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    alignas(8) std::uint8_t memory[24] = {};
    const std::uint64_t created = family.entry(0).create_count;
    WriteWatch watch(store);
    family.initialize(store, space, memory, family.record, 1, 0, OBJ_NESTED, nullptr, &store.err);
    EXPECT_EQ(light::places(watch.all(), memory),
              (std::vector<Place>{{9, 1}, {8, 1}, {0, 8}, {10, 1}}));
    EXPECT_EQ(light::header(memory)->tinfo, family.record);
    EXPECT_EQ(light::header(memory)->obj_flags, OBJ_NESTED);
    EXPECT_EQ(family.entry(0).create_count, created) << "an embedded object is not counted";
  }
  EXPECT_EQ(store.err, 0u);
}

TEST(LightInitialize, StoresTheSameUnannouncedOtherwise) {
  Store store;
  store.set_variant("address_family", 5);
  alignas(8) std::uint8_t memory[16] = {};
  light::header(memory)->obj_flags = OBJ_EMBEDDED;
  light::enumeration(memory)->value = 77;
  WriteWatch watch(store);
  store(address_family_initialize, reinterpret_cast<address_family *>(memory),
        &_address_family_type_info_internal, 0, 1, OBJ_NESTED, nullptr);
  EXPECT_TRUE(watch.all().empty());
  EXPECT_EQ(light::header(memory)->variant, 5) << "the variant is not limited";
  EXPECT_EQ(light::header(memory)->created_variant, 5);
  EXPECT_EQ(light::header(memory)->tinfo, &_address_family_type_info_internal);
  EXPECT_EQ(light::header(memory)->obj_flags, OBJ_EMBEDDED | OBJ_NESTED);
  EXPECT_EQ(light::enumeration(memory)->value, 77u);
}

TEST(LightInitialize, RunsUnderAnEarlierFailureAndClearsNoLastError) {
  Store store;
  store.err = 5;
  kelp_store_err(store, 9);
  alignas(8) std::uint8_t memory[24] = {};
  CallLog calls;
  store(lsa_flag_options_initialize, reinterpret_cast<lsa_flag_options *>(memory),
        &_lsa_flag_options_type_info_internal, 1, 0, 0, nullptr);
  EXPECT_EQ(light::header(memory)->tinfo, &_lsa_flag_options_type_info_internal);
  EXPECT_EQ(store.err, 5u);
  EXPECT_EQ(store.last_error(), 9);
  EXPECT_EQ(calls.calls(), std::vector<std::string>{"kelp_domain_lookup_variant"});
}

TEST(LightInitialize, HandsTheLookupsFailureToTheCallerAndStoresAllTheSame) {
  Store store;
  ASSERT_EQ(kelp_handle_fail_variant(store, "nbr_state_type", 5, nullptr), 0);
  alignas(8) std::uint8_t memory[16] = {};
  store(nbr_state_type_initialize, reinterpret_cast<nbr_state_type *>(memory),
        &_nbr_state_type_type_info_internal, 0, 0, 0, nullptr);
  EXPECT_EQ(store.err, 5u);
  EXPECT_EQ(light::header(memory)->tinfo, &_nbr_state_type_type_info_internal);
}

TEST(LightInitialize, UnderSharedRecordsStoresTheCopy) {
  Store store({.shared_tinfo = true});
  alignas(8) std::uint8_t memory[16] = {};
  CallLog calls;
  store(address_family_initialize, reinterpret_cast<address_family *>(memory),
        &_address_family_type_info_internal, 0, 0, 0, nullptr);
  EXPECT_EQ(calls.count("kelp_type_info_ptr_get"), 1u);
  EXPECT_NE(light::header(memory)->tinfo, &_address_family_type_info_internal);
  EXPECT_STREQ(light::header(memory)->tinfo->type_name, "address_family");
}

TEST(LightSetInstanceEmbedded, AnnouncesAndSetsTheBit) {
  Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    void *object = family.create(store, space);
    light::header(object)->obj_flags = OBJ_NESTED;
    WriteWatch watch(store);
    family.set_instance_embedded(store, space, object);
    EXPECT_EQ(light::places(watch.all(), object), (std::vector<Place>{{10, 1}}));
    EXPECT_EQ(light::header(object)->obj_flags, OBJ_NESTED | OBJ_EMBEDDED);
    family.destroy(store, space, object);
  }
}

TEST(LightSetInstanceEmbedded, TellsOfANullObject) {
  Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    TraceLog traced;
    CallLog calls(store);
    family.set_instance_embedded(store, space, nullptr);
    EXPECT_EQ(traced.texts(),
              std::vector<std::string>{"Invalid object handle passed to set embedded flag"});
    EXPECT_EQ(traced.messages()[0].level, 3u);
    EXPECT_TRUE(calls.calls().empty());
  }
}

TEST(LightDestroy, CountsAndFreesAndAnnouncesOnlyTheCounter) {
  Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    kelp_variant_entry &entry = family.entry(family.record->varinfo->n_variants - 1);
    void *object = family.create(store, space);
    const std::uint64_t created = entry.create_count;
    const std::uint64_t destroyed = entry.destroy_count;
    const std::uint64_t live = store.live_allocations();
    WriteWatch watch(store);
    family.destroy(store, space, object);
    EXPECT_EQ(entry.destroy_count, destroyed + 1);
    EXPECT_EQ(entry.create_count, created);
    EXPECT_EQ(store.live_allocations(), live - 1);
    ASSERT_EQ(watch.all().size(), 1u);
    EXPECT_EQ(watch.all()[0].origin, static_cast<std::uint32_t>(KELP_WRITE_COUNTER));
    EXPECT_EQ(watch.all()[0].address, &entry.destroy_count);
    EXPECT_EQ(watch.all()[0].length, 1u);
  }
}

TEST(LightDestroy, ClearsTheTypeRecordBeforeTheMemoryGoes) {
  Store store;
  KeptMemory kept(store);
  address_family *object = address_family_create(store, space);
  address_family_destroy(store, space, object);
  ASSERT_EQ(kept.memory(), object);
  EXPECT_EQ(light::header(object)->tinfo, nullptr);
}

TEST(LightDestroy, OfNullAndTheNullObjectCountsAndFreesNothing) {
  Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    store.handle()->cr_err = 5;
    void *null_object = family.create_cr(store);
    store.handle()->cr_err = 0;
    CallLog calls(store);
    TraceLog traced;
    const std::uint64_t destroyed = family.entry(0).destroy_count;
    for (void *object : {static_cast<void *>(nullptr), null_object}) {
      family.destroy(store, space, object);
      family.destroy_internal(store, space, object, 1);
      family.destroy_cr(store, object);
    }
    EXPECT_EQ(family.entry(0).destroy_count, destroyed);
    EXPECT_TRUE(calls.calls().empty());
    EXPECT_TRUE(traced.empty());
  }
}

TEST(LightDestroy, InternalWithoutFreeingDoesNothingAtAll) {
  Store store;
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    void *object = family.create(store, space);
    std::vector<std::uint8_t> before(family.size);
    std::memcpy(before.data(), object, family.size);
    const std::uint64_t destroyed = family.entry(0).destroy_count;
    CallLog calls(store);
    family.destroy_internal(store, space, object, 0);
    EXPECT_TRUE(calls.calls().empty());
    EXPECT_EQ(std::memcmp(before.data(), object, family.size), 0);
    EXPECT_EQ(family.entry(0).destroy_count, destroyed);
    family.destroy_internal(store, space, object, 1);
  }
}

TEST(LightDestroy, CountsAtTheVariantThatTheObjectThenHas) {
  Store store;
  store.set_variant("ospf_auth_type", 0);
  ospf_auth_type *object = ospf_auth_type_create(store, space);
  store.set_variant("ospf_auth_type", 1);
  store(ospf_auth_type_adjust_variant, object);
  kelp_variant_entry *entries = _ospf_auth_type_type_info_internal.varinfo->entries;
  const std::uint64_t at_0 = entries[0].destroy_count;
  const std::uint64_t at_1 = entries[1].destroy_count;
  ospf_auth_type_destroy(store, space, object);
  EXPECT_EQ(entries[0].destroy_count, at_0);
  EXPECT_EQ(entries[1].destroy_count, at_1 + 1);
}

TEST(LightDestroy, OfAChainIgnoresTheChainsError) {
  Store store;
  lsa_flag_options *object = lsa_flag_options_create(store, space);
  store.handle()->cr_err = 5;
  lsa_flag_options_destroy_cr(store, object);
  EXPECT_EQ(store.live_allocations(), 0u);
  EXPECT_EQ(store.handle()->cr_err, 5u);
}

TEST(LightObjectDeathTest, SecondDestroyOfMappedMemoryEndsTheProcess) {
  EXPECT_FATAL(
      {
        Store store;
        KeptMemory kept(store);
        address_family *object = address_family_create(store, space);
        address_family_destroy(store, space, object);
        address_family_destroy(store, space, object);
      },
      "tinfo is null or corrupted");
}

TEST(LightObjectDeathTest, DestroyUnderAWrongMagicEndsTheProcess) {
  EXPECT_FATAL(
      {
        Store store;
        lsa_flag_options *object = lsa_flag_options_create(store, space);
        _lsa_flag_options_type_info_internal.magic = 0xbeeff00c;
        lsa_flag_options_destroy(store, space, object);
      },
      "tinfo is null or corrupted");
}

TEST(LightObjectDeathTest, DestroyWithoutVarinfoEndsTheProcess) {
  EXPECT_FATAL(
      {
        Store store;
        ospf_auth_type *object = ospf_auth_type_create(store, space);
        light::WithoutVarinfo without(_ospf_auth_type_type_info_internal);
        ospf_auth_type_destroy(store, space, object);
      },
      "varinfo is NULL");
}

TEST(LightSizeof, IsSixteenForEnumerationsAndTwentyFourForFlagSets) {
  for (const light::Family &family : light::families()) {
    SCOPED_TRACE(family.name);
    EXPECT_EQ(family.size_of(), family.size);
    for (int variant = 0; variant < family.record->varinfo->n_variants; ++variant) {
      EXPECT_EQ(family.entry(variant).used_length + family.entry(variant).alloc_slop, family.size);
    }
  }
}

}  // namespace
