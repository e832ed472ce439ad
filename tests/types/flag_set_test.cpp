// The bits of flag objects.
#include <kelp/hash.h>

#include <cstring>

#include "types/light_family.hpp"

namespace {

using harness::CallLog;
using harness::Store;
using harness::WriteWatch;
using light::Place;

constexpr std::uint32_t space = 7;

// The operations on bits that all four flag sets have.
struct Bits : light::Family {
  explicit Bits(const harbor::model::FlagSet &flag_set)
      : Family{std::string(flag_set.name), false},
        count(static_cast<std::uint32_t>(flag_set.members.size())) {}

  std::uint32_t count;
  std::uint32_t (*in_range)(std::uint32_t) = light::operation(name, "in_range");
  std::uint32_t (*get_value)(kelp_handle *, std::uint32_t, const void *, std::uint32_t,
                             std::uint32_t *) = light::operation(name, "get_value");
  std::uint32_t (*get_cr)(kelp_handle *, const void *, std::uint32_t) = light::operation(name,
                                                                                         "get_cr");
  void (*set_value)(kelp_handle *, std::uint32_t, void *, std::uint32_t, std::uint32_t,
                    std::uint32_t *) = light::operation(name, "set_value");
  std::uint32_t (*set_cr)(kelp_handle *, void *, std::uint32_t,
                          std::uint32_t) = light::operation(name, "set_cr");
  std::uint32_t (*is_valid_cr)(kelp_handle *, std::uint32_t) = light::operation(name,
                                                                                "is_valid_cr");
};

std::vector<Bits> all() {
  std::vector<Bits> result;
  for (const auto *type : harbor::model::all_flag_sets) result.emplace_back(*type);
  return result;
}

TEST(FlagSetInRange, EndsAtTheLastNamedBit) {
  const std::vector<std::uint32_t> counts{8, 3, 6, 4};
  std::size_t at = 0;
  for (const Bits &bits : all()) {
    SCOPED_TRACE(bits.name);
    EXPECT_EQ(bits.count, counts[at++]);
    EXPECT_EQ(bits.in_range(0), 1u);
    EXPECT_EQ(bits.in_range(bits.count - 1), 1u);
    EXPECT_EQ(bits.in_range(bits.count), 0u);
    EXPECT_EQ(bits.in_range(0xFFFFFFFF), 0u);
  }
}

TEST(FlagSetCompare, TakesBytesAsUnsigned) {
  harbor::FlagObject a{};
  harbor::FlagObject b{};
  a.flags = 0x80;
  b.flags = 0x01;
  for (const Bits &bits : all()) {
    SCOPED_TRACE(bits.name);
    EXPECT_EQ(bits.compare(&a, &b), 0x7F);
    EXPECT_EQ(bits.compare(&b, &a), -0x7F);
    EXPECT_EQ(bits.compare(&a, &a), 0);
  }
}

TEST(FlagSetHash, TakesTheOneByte) {
  harbor::FlagObject object{};
  object.flags = 0xA5;
  const std::uint8_t byte = 0xA5;
  for (const Bits &bits : all()) {
    SCOPED_TRACE(bits.name);
    EXPECT_EQ(bits.hash(&object, 99), SuperFastHash(&byte, 1, 99));
  }
}

TEST(FlagSetGetValue, GivesTheMaskAndSpreadsTheSignOfBitSeven) {
  Store store;
  harbor::FlagObject object{};
  for (const Bits &bits : all()) {
    SCOPED_TRACE(bits.name);
    for (std::uint32_t bit = 0; bit < bits.count; ++bit) {
      object.flags = static_cast<std::uint8_t>(1u << bit);
      const std::uint32_t mask = bit == 7 ? 0xFFFFFF80u : 1u << bit;
      EXPECT_EQ(bits.get_value(store, space, &object, bit, &store.err), mask);
      EXPECT_EQ(bits.get_cr(store, &object, bit), mask);
      object.flags = static_cast<std::uint8_t>(~object.flags);
      EXPECT_EQ(bits.get_value(store, space, &object, bit, &store.err), 0u);
      EXPECT_EQ(bits.get_cr(store, &object, bit), 0u);
    }
  }
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(store.handle()->cr_err, 0u);
}

TEST(FlagSetGetValue, DoesNotClearTheLastError) {
  Store store;
  kelp_store_err(store, 9);
  harbor::FlagObject object{};
  store(lsa_flag_options_get_value, reinterpret_cast<lsa_flag_options *>(&object), 0);
  EXPECT_EQ(store.last_error(), 9);
}

TEST(FlagSetGetValue, OfABitBeyondTheSetOrOfNullFails) {
  Store store;
  const auto refusal = light::refusal(store);
  harbor::FlagObject object{};
  object.flags = 0xFF;
  for (const Bits &bits : all()) {
    SCOPED_TRACE(bits.name);
    CallLog calls;
    store.err = 0;
    EXPECT_EQ(bits.get_value(store, space, &object, bits.count, &store.err), 0u);
    EXPECT_EQ(store.err, KELP_ERR_EPOCH);
    EXPECT_EQ(light::stored(calls), refusal);
    calls.clear();
    store.err = 0;
    EXPECT_EQ(bits.get_value(store, space, nullptr, 0, &store.err), 0u);
    EXPECT_EQ(store.err, KELP_ERR_EPOCH);
    EXPECT_EQ(light::stored(calls), refusal);
    store.handle()->cr_err = 0;
    EXPECT_EQ(bits.get_cr(store, nullptr, 0), 0u);
    EXPECT_EQ(store.handle()->cr_err, KELP_ERR_EPOCH);
  }
}

TEST(FlagSetSetValue, ChangesOneAnnouncedByteAndKeepsTheOtherBits) {
  Store store;
  for (const Bits &bits : all()) {
    SCOPED_TRACE(bits.name);
    void *object = bits.create(store, space);
    for (std::uint32_t bit = 0; bit < bits.count; ++bit) {
      const auto mask = static_cast<std::uint8_t>(1u << bit);
      light::flags(object)->flags = static_cast<std::uint8_t>(~mask);
      WriteWatch watch(store);
      bits.set_value(store, space, object, bit, 2, &store.err);
      EXPECT_EQ(light::flags(object)->flags, 0xFF);
      bits.set_value(store, space, object, bit, 0, &store.err);
      EXPECT_EQ(light::flags(object)->flags, static_cast<std::uint8_t>(~mask));
      EXPECT_EQ(light::places(watch.writes(), object), (std::vector<Place>{{11, 1}, {11, 1}}));
    }
    bits.destroy(store, space, object);
  }
  EXPECT_EQ(store.err, 0u);
}

TEST(FlagSetSetValue, ThatFillsBitSevenReadsBackAsTheSpreadSign) {
  Store store;
  OWNED(store, lsa_flag_options, object);
  store(lsa_flag_options_set_value, object, LSA_FLAG_OPTIONS_AF, 1);
  EXPECT_EQ(store(lsa_flag_options_get_value, object, 7), 0xFFFFFF80u);
  store(lsa_flag_options_set_value, object, LSA_FLAG_OPTIONS_E, 1);
  EXPECT_EQ(store(lsa_flag_options_get_value, object, 3), 8u);
}

TEST(FlagSetSetValue, OfABitBeyondTheSetFailsAtVariantZero) {
  Store store;
  const auto refusal = light::refusal(store);
  for (const Bits &bits : all()) {
    SCOPED_TRACE(bits.name);
    void *object = bits.create(store, space);
    CallLog calls(store);
    store.err = 0;
    bits.set_value(store, space, object, bits.count, 1, &store.err);
    EXPECT_EQ(store.err, KELP_ERR_EPOCH);
    EXPECT_EQ(light::flags(object)->flags, 0);
    EXPECT_EQ(calls.count("write_notify"), 0u);
    EXPECT_EQ(light::stored(calls), refusal);
    store.err = 0;
    bits.set_value(store, space, nullptr, bits.count, 1, &store.err);
    EXPECT_EQ(store.err, KELP_ERR_EPOCH) << "a null object is at variant 0";
    bits.destroy(store, space, object);
  }
}

TEST(FlagSetSetValue, OfABitBeyondTheSetIsSilentAtALaterVariant) {
  Store store;
  for (const Bits &bits : all()) {
    SCOPED_TRACE(bits.name);
    void *object = bits.create(store, space);
    light::header(object)->variant = 1;
    CallLog calls(store);
    bits.set_value(store, space, object, bits.count, 1, &store.err);
    EXPECT_EQ(store.err, 0u);
    EXPECT_EQ(light::flags(object)->flags, 0);
    EXPECT_EQ(calls.count("write_notify"), 0u);
    EXPECT_EQ(calls.count("kelp_store_epoch_err"), 0u);
    bits.destroy(store, space, object);
  }
}

TEST(FlagSetSetValue, OfANamedBitOfNullIsSilent) {
  Store store;
  for (const Bits &bits : all()) {
    SCOPED_TRACE(bits.name);
    bits.set_value(store, space, nullptr, 0, 1, &store.err);
    EXPECT_EQ(store.err, 0u);
    EXPECT_EQ(store.last_error(), 0);
  }
}

TEST(FlagSetSetValue, AsksForTheVariantOnlyForABitBeyondTheSet) {
  Store store;
  OWNED(store, lsa_flag_options, object);
  CallLog calls;
  store(lsa_flag_options_set_value, object, 0, 1);
  EXPECT_EQ(
      calls.only({"kelp_clear_last_error", "kelplib_adjust_variant", "kelp_get_instance_variant"}),
      (std::vector<std::string>{"kelp_clear_last_error", "kelplib_adjust_variant"}));
}

TEST(FlagSetSetCr, GivesTheChainsErrorAndWorksInItsSpace) {
  Store store;
  store.handle()->cr_space_id = 31;
  for (const Bits &bits : all()) {
    SCOPED_TRACE(bits.name);
    void *object = bits.create(store, space);
    WriteWatch watch(store);
    EXPECT_EQ(bits.set_cr(store, object, 1, 1), 0u);
    EXPECT_EQ(light::flags(object)->flags, 2);
    ASSERT_EQ(watch.writes().size(), 1u);
    EXPECT_EQ(watch.writes()[0].space_id, 31u);
    EXPECT_EQ(bits.set_cr(store, object, bits.count, 1), KELP_ERR_EPOCH);
    store.handle()->cr_err = 0;
    bits.destroy(store, space, object);
  }
}

TEST(FlagSetSet, CopiesAllTwentyFourBytesAndLooksAtNoVariant) {
  Store store;
  for (const Bits &bits : all()) {
    SCOPED_TRACE(bits.name);
    void *destination = bits.create(store, space);
    alignas(8) std::uint8_t source[24];
    for (std::size_t at = 0; at < sizeof(source); ++at) {
      source[at] = static_cast<std::uint8_t>(0x30 + at);
    }
    light::header(source)->tinfo = bits.record;
    CallLog calls;
    WriteWatch watch(store);
    bits.set(store, space, destination, source, &store.err);
    EXPECT_EQ(calls.calls(), std::vector<std::string>{"kelp_clear_last_error"});
    EXPECT_EQ(light::places(watch.all(), destination), (std::vector<Place>{{0, 24}}));
    EXPECT_EQ(std::memcmp(destination, source, 24), 0);
    light::header(destination)->variant = 0;
    bits.destroy(store, space, destination);
  }
  EXPECT_EQ(store.err, 0u);
}

TEST(FlagSetIsValid, RefusesABitBeyondTheSetAtVariantZeroOnly) {
  Store store;
  for (const Bits &bits : all()) {
    SCOPED_TRACE(bits.name);
    EXPECT_EQ(bits.is_valid_cr(store, bits.count - 1), 1u);
    EXPECT_EQ(bits.is_valid_cr(store, bits.count), 0u);
    EXPECT_EQ(bits.is_valid_cr(store, 0xFFFFFFFF), 0u);
    store.set_variant(bits.name.c_str(), 1);
    EXPECT_EQ(bits.is_valid_cr(store, bits.count), 1u);
  }
  EXPECT_EQ(store.handle()->cr_err, 0u);
}

}  // namespace
