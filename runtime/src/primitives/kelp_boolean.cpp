// kelp_boolean: a 32-bit word in memory, one byte in an image. It has no header, so the operations
// that other embedded objects do on theirs do nothing here.
#include "kelp/quick.hpp"
#include "primitives/super_fast_hash.hpp"
#include "primitives/type_record.hpp"
#include "primitives/value_family.hpp"

namespace {

struct Boolean : kelp::quick::BooleanRule {
  static constexpr std::string_view kName = "kelp_boolean";
  static constexpr char kExpected[] = "true, false, 1 or 0";

  static uint32_t hash(kelp_boolean value, uint32_t seed) {
    const kelp_boolean truth = value != 0;
    return kelp::hash_bytes(&truth, sizeof truth, seed);
  }

  static bool parse(std::string_view text, kelp_boolean *value) {
    *value = text == "true" || text == "1";
    return *value != 0 || text == "false" || text == "0";
  }
};

kelp_variant_entry boolean_variant_entry = {0, sizeof(kelp_boolean), 0, 0, 0, 0, 0};
kelp_variant_info boolean_variant_info = {1, &boolean_variant_entry};

// Null below false below true.
int rank(const kelp_boolean *value) { return value == nullptr ? 0 : *value == 0 ? 1 : 2; }

}  // namespace

kelp_type_record _kelp_boolean_type_info_internal = kelp::primitive_type_record(
    "kelp_boolean", "6ae6582e2546bdfbb60769d34cb5ccbb", &boolean_variant_info);

KELP_EXPORT_NUMBER_FAMILY(kelp_boolean, Boolean)

int32_t kelp_boolean_compare(const kelp_boolean *a, const kelp_boolean *b) {
  return (rank(a) > rank(b)) - (rank(a) < rank(b));
}

void kelp_boolean_initialize(kelp_handle *, uint32_t, kelp_boolean *, kelp_type_record *, int32_t,
                             int32_t, uint8_t, void *, uint32_t *) {}

void kelp_boolean_set_instance_embedded(kelp_handle *, uint32_t, kelp_boolean *) {}
