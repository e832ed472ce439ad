// The variants of one handle: fixed values by type name, and the highest variant for all others.
// Asked for with every object that is made, so fixed values are found again by the address of the
// type record; a handle without any answers from the record alone.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kelp/object.h"

namespace kelp {

class Domain {
 public:
  struct Fixed {
    std::string type_name;
    bool has_variant = false;
    std::int8_t variant = 0;
    std::uint32_t failure = 0;  // code that lookups report, 0 for none
  };

  // What is fixed for the record's type; null for nothing.
  const Fixed *find(const kelp_type_record *record) {
    return fixed_.empty() ? nullptr : find_among(record);
  }

  bool is_empty() const { return fixed_.empty(); }

  // The entry of a type, made when it is missing. Throws bad_alloc.
  Fixed &entry(std::string_view type_name);

  // Takes out what fixes neither a variant nor a failure.
  void drop_empty();

 private:
  struct Remembered {
    const kelp_type_record *record = nullptr;
    std::int32_t place = kNothing;
  };
  static constexpr std::int32_t kNothing = -1;

  const Fixed *find_among(const kelp_type_record *record);

  void forget() { remembered_.fill({}); }

  std::vector<Fixed> fixed_;
  std::array<Remembered, 128> remembered_ = {};
};

}  // namespace kelp
