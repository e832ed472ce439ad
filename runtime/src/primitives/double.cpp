// double: bandwidths. The image is the IEEE 754 bit pattern as a 64-bit number, so every NaN
// survives; the text is the shortest that reads back to the same number.
#include <bit>
#include <charconv>

#include "primitives/super_fast_hash.hpp"
#include "primitives/value_family.hpp"
#include "wire/byte_order.hpp"

namespace {

struct Double {
  using Value = double;
  static constexpr std::string_view kName = "double";
  static constexpr char kExpected[] = "a decimal number, inf or nan";
  static constexpr uint32_t kImageSize = sizeof(uint64_t);
  static constexpr size_t kTextSize = 32;

  static uint32_t hash(double value, uint32_t seed) {
    if (value == 0.0) value = 0.0;  // -0.0 compares equal to 0.0
    return kelp::hash_bytes(&value, sizeof value, seed);
  }

  static void encode(double value, uint8_t *image) {
    kelp::store_big_endian(image, std::bit_cast<uint64_t>(value));
  }

  static bool decode(const uint8_t *image, double *value) {
    *value = std::bit_cast<double>(kelp::load_big_endian<uint64_t>(image));
    return true;
  }

  static size_t format(double value, char *text) {
    return static_cast<size_t>(std::to_chars(text, text + kTextSize, value).ptr - text);
  }

  static bool parse(std::string_view text, double *value) {
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, *value);
    return error == std::errc() && stop == end;
  }

  static void store(kelp::Writer writer, double *address, double value) {
    writer.store(address, value);
  }
};

}  // namespace

KELP_EXPORT_NUMBER_FAMILY(double, Double)
