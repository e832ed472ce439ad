// Whose rows are meant where one database holds the trees of several networks: each site's rows
// have a tenant and a source of their own, so that the tables keep them apart and no reader of one
// meets another's.
#pragma once

#include <kelp/table.h>

#include <compare>
#include <cstdint>
#include <string>

namespace ospf_tables {

struct Site {
  std::uint16_t tenant = 0;
  std::uint8_t source = KELP_SRC_DEFAULT;
  auto operator<=>(const Site &) const = default;
};

// "tenant 2", "source 3", "tenant 2, source 3"; "tenant 0" for the one that rows have by default.
std::string text_of(const Site &site);

}  // namespace ospf_tables
