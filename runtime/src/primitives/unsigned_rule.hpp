/* What the unsigned numbers have in common: big-endian images of their own width, decimal texts. */
#ifndef KELP_PRIMITIVES_UNSIGNED_RULE_HPP
#define KELP_PRIMITIVES_UNSIGNED_RULE_HPP

#include <charconv>
#include <limits>

#include "../wire/byte_order.hpp"
#include "super_fast_hash.hpp"
#include "value_family.hpp"

namespace kelp {

template <class Unsigned>
struct UnsignedRule {
  using Value = Unsigned;
  static constexpr uint32_t kImageSize = sizeof(Value);
  static constexpr size_t kTextSize = std::numeric_limits<Value>::digits10 + 1;

  static uint32_t Hash(Value value, uint32_t seed) {
    return HashBytes(&value, sizeof value, seed);
  }

  static void Encode(Value value, uint8_t *image) { StoreBigEndian(image, value); }

  static bool Decode(const uint8_t *image, Value *value) {
    *value = LoadBigEndian<Value>(image);
    return true;
  }

  static size_t Format(Value value, char *text) {
    return static_cast<size_t>(std::to_chars(text, text + kTextSize, value).ptr - text);
  }

  static bool Parse(std::string_view text, Value *value) {
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, *value);
    return error == std::errc() && stop == end;
  }

  static void Store(Writer writer, Value *address, Value value) { writer.Store(address, value); }
};

}  // namespace kelp

#endif
