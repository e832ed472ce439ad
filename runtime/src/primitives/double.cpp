/* double: bandwidths. The image is the IEEE 754 bit pattern as a 64-bit number, so every NaN survives;
 * the text is the shortest that reads back to the same number. */
#include <bit>
#include <charconv>

#include "../wire/byte_order.hpp"
#include "super_fast_hash.hpp"
#include "value_family.hpp"

namespace {

struct Double {
  using Value = double;
  static constexpr std::string_view kName = "double";
  static constexpr char kExpected[] = "a decimal number, inf or nan";
  static constexpr uint32_t kImageSize = sizeof(uint64_t);
  static constexpr size_t kTextSize = 32;

  static uint32_t Hash(double value, uint32_t seed) {
    if (value == 0.0) value = 0.0; /* -0.0 compares equal to 0.0 */
    return kelp::HashBytes(&value, sizeof value, seed);
  }

  static void Encode(double value, uint8_t *image) {
    kelp::StoreBigEndian(image, std::bit_cast<uint64_t>(value));
  }

  static bool Decode(const uint8_t *image, double *value) {
    *value = std::bit_cast<double>(kelp::LoadBigEndian<uint64_t>(image));
    return true;
  }

  static size_t Format(double value, char *text) {
    return static_cast<size_t>(std::to_chars(text, text + kTextSize, value).ptr - text);
  }

  static bool Parse(std::string_view text, double *value) {
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, *value);
    return error == std::errc() && stop == end;
  }

  static void Store(kelp::Writer writer, double *address, double value) {
    writer.Store(address, value);
  }
};

}  // namespace

KELP_EXPORT_NUMBER_FAMILY(double, Double)
