// What the unsigned numbers have in common: big-endian images of their own width, decimal texts.
#pragma once

#include <charconv>

#include "kelp/quick.hpp"
#include "primitives/super_fast_hash.hpp"
#include "primitives/value_family.hpp"

namespace kelp {

template <class Unsigned>
struct UnsignedRule : quick::UnsignedRule<Unsigned> {
  using Value = Unsigned;
  static uint32_t hash(Value value, uint32_t seed) {
    return hash_bytes(&value, sizeof value, seed);
  }

  static bool parse(std::string_view text, Value *value) {
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, *value);
    return error == std::errc() && stop == end;
  }
};

}  // namespace kelp
