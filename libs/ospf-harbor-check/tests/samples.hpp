// Objects, records and keys with random contents, made by the library, and their images.
#pragma once

#include "reading.hpp"
#include "support/objects.hpp"

namespace ospf_harbor_check_tests {

class Sample {
 public:
  Sample(const Input &of, std::uint32_t tracking, std::uint32_t seed)
      : of_(of), place_(tracking), held_(place_, of_) {
    for (const Read::Held &held : held_.make()) {
      if (held.structure != nullptr) {
        encodings::Filler(place_, seed).fill(held.object, *held.structure);
        continue;
      }
      auto *bytes = static_cast<std::uint8_t *>(held.object);
      if (is_enumeration()) {
        bytes[harbor::model::enumeration_value_offset] = static_cast<std::uint8_t>(1 + seed % 8);
      } else {
        bytes[harbor::model::flags_offset] = static_cast<std::uint8_t>(seed);
      }
    }
  }

  Bytes image() const { return held_.image(); }
  std::string document() const { return held_.document(); }

 private:
  bool is_enumeration() const {
    for (const auto *type : harbor::model::all_enumerations) {
      if (of_.name == type->name) return true;
    }
    return false;
  }

  Input of_;
  Place place_;
  Read held_;
};

// All that has an image.
inline std::vector<Input> all_inputs() {
  std::vector<Input> inputs;
  for (const std::uint32_t kind :
       {OSPF_HARBOR_CHECK_OBJECT, OSPF_HARBOR_CHECK_RECORD, OSPF_HARBOR_CHECK_KEY}) {
    for (const std::string &name : names_of(kind)) inputs.push_back({kind, name});
  }
  return inputs;
}

inline std::string test_name(const testing::TestParamInfo<Input> &info) {
  constexpr const char *kinds[] = {"object_", "record_", "key_"};
  return kinds[info.param.kind] + info.param.name;
}

}  // namespace ospf_harbor_check_tests
