// Objects of the model as tests look into them: their header, their fields at the places that the
// layout gives, and how many of a type were made and ended.
#pragma once

#include <kelp/primitives.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "harness/harness.hpp"
#include "model/layout.hpp"
#include "ospf_harbor_oper.h"

namespace harness {

namespace model = harbor::model;
namespace fields = harbor::model::fields;
namespace types = harbor::model::types;

template <typename Value>
Value &at(void *object, std::size_t offset) {
  return *reinterpret_cast<Value *>(static_cast<char *>(object) + offset);
}
inline void *place(void *object, std::size_t offset) {
  return static_cast<char *>(object) + offset;
}
inline void *place(void *object, const model::Structure &type, const model::Field &field) {
  return place(object, model::offset(type, field));
}

inline kelp_object_header &header(void *object) { return at<kelp_object_header>(object, 0); }
inline std::uint8_t flags_of(void *object) { return header(object).obj_flags; }

// The state bytes of an object that stands alone.
inline std::uint8_t *area(void *object, const model::Structure &type) {
  return &at<std::uint8_t>(object, model::object_size(type));
}

// Created and destroyed objects of a variant, in the static record.
using Counts = std::pair<std::uint64_t, std::uint64_t>;
inline Counts counts(const kelp_type_record &record, int variant) {
  const kelp_variant_entry &entry = record.varinfo->entries[variant];
  return {entry.create_count, entry.destroy_count};
}

// Offset in the object and length of each announced write.
using Ranges = std::vector<std::pair<std::ptrdiff_t, std::size_t>>;
inline Ranges ranges_in(const WriteWatch &watch, const void *object) {
  Ranges ranges;
  for (const Range &range : watch.writes()) {
    ranges.emplace_back(range.offset_in(object), range.length);
  }
  return ranges;
}

using Names = std::vector<std::string>;

}  // namespace harness
