// The order of a table's records: tenant, then key, then source, all ascending. The comparator of
// every tree and the key tests of traversals are made of this. It runs once for each level of a
// tree on an insert, so all that a table binds is a constant here.
//
// A record of an inline-key or typed-key table holds its object before it enters a tree: the object
// pointer is not tested. A composite-key table's key objects may be null; the key type's compare
// sorts a null one first.
#pragma once

#include <kelp/table.h>

#include "module/object.hpp"
#include "types/enumeration.hpp"
#include "types/primitive.hpp"
#include "types/structure_values.hpp"

namespace harbor::key_order {

template <typename Number>
constexpr std::int32_t three_way(Number a, Number b) {
  return (a > b) - (a < b);
}

// Below, equal to or above 0. Only the sign counts: some key types give a difference.
template <const model::Table &T>
std::int32_t compare(const kelp_record &a, const kelp_record &b) {
  if constexpr (T.shape() == model::Shape::composite_key) {
    return structure_values::compare<*T.key_structure>(a.objects[0], b.objects[0]);
  } else {
    const auto *x = place_of<*T.record, *T.key>(static_cast<const void *>(a.objects[0]));
    const auto *y = place_of<*T.record, *T.key>(static_cast<const void *>(b.objects[0]));
    if constexpr (T.shape() == model::Shape::inline_key) {
      if (*x == *y) [[unlikely]]
        return 0;
      return *x < *y ? -1 : 1;
    } else if constexpr (T.key->kind == Kind::enumeration) {
      return enumeration::compare<*T.key->enumeration>(x, y);
    } else {
      return Primitive<T.key->kind>::compare(x, y);
    }
  }
}

inline const kelp_record &record_at(const e_avl_node *node) {
  return *reinterpret_cast<const kelp_record *>(reinterpret_cast<std::uintptr_t>(node) -
                                                offsetof(kelp_record, avl_node));
}

// A null node sorts before any other. Required: key_only leaves tenant and source out; nothing asks
// for that, and it stays part of the comparator.
template <const model::Table &T>
std::int32_t compare_nodes(const e_avl_node *a, const e_avl_node *b, bool key_only) {
  if (a == nullptr || b == nullptr) [[unlikely]]
    return three_way(a != nullptr, b != nullptr);
  const kelp_record &x = record_at(a);
  const kelp_record &y = record_at(b);
  if (!key_only && x.tenant_id != y.tenant_id) [[unlikely]] {
    return three_way(x.tenant_id, y.tenant_id);
  }
  const std::int32_t keys = compare<T>(x, y);
  if (keys != 0) [[likely]]
    return keys < 0 ? -1 : 1;
  return key_only ? 0 : three_way(x.src, y.src);
}

}  // namespace harbor::key_order
