// What the manifest in the library's file says of a type beyond its record: the sizes of
// enumerations and flag sets by the rule of structures, and the second MD5 where it is stated. The
// emitter and the tests read it; no type's code does.
#pragma once

#include "model/layout.hpp"

namespace harbor::model {

constexpr std::uint32_t manifest_size(const Enumeration &) { return round_up(enumeration_size, 8); }
constexpr std::uint32_t manifest_size(const FlagSet &) { return round_up(flag_set_used_length, 8); }

// Empty where it is the MD5 of the definition.
constexpr std::string_view stated_manifest_md5(const Enumeration &type) {
  return &type == &enumerations::address_family ? "5a730a756af0b63bd1546cec964c5687" : "";
}

}  // namespace harbor::model
