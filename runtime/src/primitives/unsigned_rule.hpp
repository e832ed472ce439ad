// What the unsigned numbers have in common: big-endian images of their own width, decimal texts.
#pragma once

#include <charconv>
#include <limits>

#include "primitives/super_fast_hash.hpp"
#include "primitives/value_family.hpp"
#include "wire/byte_order.hpp"

namespace kelp {

template <class Unsigned>
struct UnsignedRule {
  using Value = Unsigned;
  static constexpr uint32_t kImageSize = sizeof(Value);
  static constexpr size_t kTextSize = std::numeric_limits<Value>::digits10 + 1;

  static uint32_t hash(Value value, uint32_t seed) {
    return hash_bytes(&value, sizeof value, seed);
  }

  static void encode(Value value, uint8_t *image) { store_big_endian(image, value); }

  static bool decode(const uint8_t *image, Value *value) {
    *value = load_big_endian<Value>(image);
    return true;
  }

  static size_t format(Value value, char *text) {
    return static_cast<size_t>(std::to_chars(text, text + kTextSize, value).ptr - text);
  }

  static bool parse(std::string_view text, Value *value) {
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, *value);
    return error == std::errc() && stop == end;
  }

  static void store(Writer writer, Value *address, Value value) { writer.store(address, value); }
};

}  // namespace kelp
