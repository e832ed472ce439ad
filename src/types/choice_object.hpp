// Order and hash of a choice as a whole: a structure whose selector says which of its arms count.
// Called by the structure rules, which stand for choices too. Order looks at the selected arms
// alone; the hash takes in every arm, so that equal choices may hash apart. Never reads a variant
// and never fails.
#pragma once

#include <kelp/hash.h>

#include "types/primitive.hpp"

namespace harbor::structure_values {

template <const Structure &T>
std::int32_t compare(const void *a, const void *b);
template <const Structure &T>
std::uint32_t hash(const void *object, std::uint32_t seed);

}  // namespace harbor::structure_values

namespace harbor::choice_object {

// The selector is the first field of a choice.
template <const Structure &T>
const std::uint32_t *selector_of(const void *object) {
  static_assert(T.is_choice() && T.fields[0]->kind == Kind::enumeration);
  return &place_of<T, *T.fields[0]>(object)->value;
}

template <const Structure &T, const Field &F>
const void *arm_of(const void *object) {
  return *place_of<T, F>(object);
}

template <const Field &F>
std::int32_t compare_arms(const void *a, const void *b) {
  if constexpr (F.held == Kind::structure) {
    return structure_values::compare<*F.structure>(a, b);
  } else if constexpr (F.held == Kind::text) {
    return kelp_vstring_compare(static_cast<const kelp_vstring *>(a),
                                static_cast<const kelp_vstring *>(b));
  } else {
    static_assert(F.held == Kind::u32);
    if (a == nullptr || b == nullptr) return (a != nullptr) - (b != nullptr);
    const std::uint32_t first = *static_cast<const std::uint32_t *>(a);
    const std::uint32_t second = *static_cast<const std::uint32_t *>(b);
    return (first > second) - (first < second);
  }
}

template <const Structure &T>
std::int32_t compare(const void *a, const void *b) {
  if (a == nullptr || b == nullptr) return (a != nullptr) - (b != nullptr);
  const std::uint32_t selected = *selector_of<T>(a);
  std::int32_t order = static_cast<std::int32_t>(selected - *selector_of<T>(b));
  for_each_field<T>([&]<const Field & F>() {
    if constexpr (F.kind == Kind::arm) {
      if (order == 0 && selected == F.selector) {
        order = compare_arms<F>(arm_of<T, F>(a), arm_of<T, F>(b));
      }
    }
  });
  return order;
}

// Required: the selector goes in once by itself and once more before each arm, and a null arm is
// hashed too, which leaves the seed as it is.
template <const Structure &T>
std::uint32_t hash(const void *object, std::uint32_t seed) {
  if (object == nullptr) return seed;
  const std::uint32_t *selector = selector_of<T>(object);
  seed = SuperFastHash(selector, sizeof *selector, seed);
  for_each_field<T>([&]<const Field & F>() {
    if constexpr (F.kind == Kind::arm) {
      seed = SuperFastHash(selector, sizeof *selector, seed);
      const void *arm = arm_of<T, F>(object);
      if constexpr (F.held == Kind::structure) {
        seed = structure_values::hash<*F.structure>(arm, seed);
      } else {
        using Value = typename Primitive<F.held>::value_type;
        seed = Primitive<F.held>::hash(static_cast<const Value *>(arm), seed);
      }
    }
  });
  return seed;
}

}  // namespace harbor::choice_object
