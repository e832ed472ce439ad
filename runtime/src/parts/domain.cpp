// Fixing variants and finding them again.
#include "parts/domain.hpp"

#include <algorithm>
#include <cstring>

namespace kelp {

namespace {

std::string_view name_of(const kelp_type_record *record) {
  return {record->type_name, strnlen(record->type_name, sizeof record->type_name)};
}

}  // namespace

const Domain::Fixed *Domain::find_among(const kelp_type_record *record) {
  const auto key = reinterpret_cast<std::uintptr_t>(record);
  Remembered &place = remembered_[(key >> 4 ^ key >> 11) % remembered_.size()];
  if (place.record != record) {
    const auto found = std::find_if(fixed_.begin(), fixed_.end(), [&](const Fixed &fixed) {
      return fixed.type_name == name_of(record);
    });
    place.record = record;
    place.place =
        found == fixed_.end() ? kNothing : static_cast<std::int32_t>(found - fixed_.begin());
  }
  return place.place == kNothing ? nullptr : &fixed_[static_cast<std::size_t>(place.place)];
}

Domain::Fixed &Domain::entry(std::string_view type_name) {
  forget();
  for (Fixed &fixed : fixed_) {
    if (fixed.type_name == type_name) return fixed;
  }
  Fixed fixed;
  fixed.type_name = type_name;
  fixed_.push_back(std::move(fixed));
  return fixed_.back();
}

void Domain::drop_empty() {
  forget();
  std::erase_if(fixed_,
                [](const Fixed &fixed) { return !fixed.has_variant && fixed.failure == 0; });
}

}  // namespace kelp
