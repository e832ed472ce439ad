// Comparing type records.
#include "parts/kinship.hpp"

#include <algorithm>
#include <cstring>

namespace kelp {

namespace {

// What an object of a store may grow by, so that a program of a later edition finds room for its
// fields in objects that one of an earlier edition made.
constexpr std::uint32_t kRoomToGrow = 64;

template <std::size_t size>
bool is_same(const char (&one)[size], const char (&other)[size]) {
  return std::strncmp(one, other, size) == 0;
}

}  // namespace

bool is_structure(const kelp_type_record &record) {
  return std::strncmp(record.kind, "type", sizeof record.kind) == 0;
}

std::uint32_t object_bytes(const kelp_type_record &record) {
  const kelp_variant_info *info = record.varinfo;
  if (info == nullptr || info->n_variants < 1) return 0;
  return info->entries[0].used_length + info->entries[0].alloc_slop;
}

std::uint32_t room_of(const kelp_type_record &record) {
  return object_bytes(record) + (is_structure(record) ? kRoomToGrow : 0);
}

bool have_same_names(const kelp_type_record &one, const kelp_type_record &other) {
  return is_same(one.type_name, other.type_name) && is_same(one.module_name, other.module_name) &&
         is_same(one.kind, other.kind);
}

bool are_laid_out_alike(const kelp_type_record &one, const kelp_type_record &other) {
  if (one.varinfo == nullptr || other.varinfo == nullptr) return one.varinfo == other.varinfo;
  const int both = std::min(one.varinfo->n_variants, other.varinfo->n_variants);
  for (int i = 0; i < both; ++i) {
    if (one.varinfo->entries[i].used_length != other.varinfo->entries[i].used_length) return false;
  }
  return true;
}

bool is_edition_of(const kelp_type_record &record, const kelp_type_record_copy &copy) {
  return are_laid_out_alike(record, copy.record) && object_bytes(record) <= copy.runtime_word_a;
}

}  // namespace kelp
