// What every type says of its variants: up to which field number a domain's variant answers for,
// and which index a variant has. tests/model/counts_test.cpp states the numbers.
#include <algorithm>

#include "model/lists.hpp"
#include "types/replaced_call.hpp"
#include "whole_schema/erased.hpp"

namespace {

using whole_schema::call;

std::int8_t variant_of_the_domain = 0;
std::int8_t give_variant(kelp_handle *, const kelp_domain *, const kelp_type_record *,
                         std::uint32_t *) {
  return variant_of_the_domain;
}

TEST(Thresholds, OfEveryStructureStandAsTheyAre) {
  harness::Store store;
  kelp_handle *handle = store;
  const harness::ReplacedCall domain("kelp_domain_lookup_variant", give_variant);
  for (const auto *type : harbor::model::structures) {
    const std::string name(type->name);
    // The lowest variant that answers for a field; any does for those of variant 0.
    const auto needed = [&](std::uint32_t field) {
      int variant = type->variants;
      while (variant > 0 && field < type->valid_bounds[static_cast<std::size_t>(variant - 1)]) {
        --variant;
      }
      return variant == 0 ? -128 : variant;
    };
    for (int variant = -1; variant <= type->variants; ++variant) {
      variant_of_the_domain = static_cast<std::int8_t>(variant);
      for (std::uint32_t field = 0; field < 40; ++field) {
        EXPECT_EQ(call<std::uint32_t>(name + "_is_valid_cr", handle,
                                      static_cast<const void *>(nullptr), field),
                  variant >= needed(field) ? 1u : 0u)
            << name << ", field " << field << ", variant " << variant;
      }
      EXPECT_EQ(call<std::uint32_t>(name + "_is_valid_cr", handle,
                                    static_cast<const void *>(nullptr), UINT32_MAX),
                variant >= type->variants ? 1u : 0u)
          << name;
    }
  }
  EXPECT_EQ(handle->cr_err, 0u);
}

TEST(Thresholds, NoVariantAboveATypesHighestHasAnIndex) {
  const auto expect = [](std::string_view type, int variants) {
    const int highest = variants - 1;
    const std::string name = std::string(type) + "_variant_data_index_cap";
    const auto cap = [&](std::int32_t variant) {
      return static_cast<std::int8_t>(call<std::int32_t>(name, variant));
    };
    for (int variant = 0; variant <= 4; ++variant) {
      EXPECT_EQ(cap(variant), std::min(variant, highest)) << name;
    }
    EXPECT_EQ(cap(-1), -1) << name;
    EXPECT_EQ(cap(-128), -128) << name;
    EXPECT_EQ(cap(127), highest) << name;
    EXPECT_EQ(cap(256), highest) << name;
    // The low byte is negative: where it alone counts it passes.
    EXPECT_EQ(cap(0x180), highest > 0 ? highest : -128) << name;
    EXPECT_EQ(cap(INT32_MAX), highest > 0 ? highest : -1) << name;
  };
  for (const auto *type : harbor::model::structures) expect(type->name, type->variants);
  for (const auto *type : harbor::model::all_enumerations) expect(type->name, type->variants);
  for (const auto *type : harbor::model::all_flag_sets) expect(type->name, type->variants);
}

}  // namespace
