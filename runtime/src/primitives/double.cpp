// double: bandwidths. The image is the IEEE 754 bit pattern as a 64-bit number, so every NaN
// survives; the text is the shortest that reads back to the same number.
#include <charconv>

#include "kelp/quick.hpp"
#include "primitives/super_fast_hash.hpp"
#include "primitives/value_family.hpp"

namespace {

struct Double : kelp::quick::DoubleRule {
  static constexpr std::string_view kName = "double";
  static constexpr char kExpected[] = "a decimal number, inf or nan";

  static uint32_t hash(double value, uint32_t seed) {
    if (value == 0.0) value = 0.0;  // -0.0 compares equal to 0.0
    return kelp::hash_bytes(&value, sizeof value, seed);
  }

  static bool parse(std::string_view text, double *value) {
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, *value);
    return error == std::errc() && stop == end;
  }
};

}  // namespace

KELP_EXPORT_NUMBER_FAMILY(double, Double)
