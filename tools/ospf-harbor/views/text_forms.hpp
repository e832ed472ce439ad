// Texts for people that several commands print.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/site.hpp"

namespace tool {

inline std::string counted(std::uint64_t count, const char *one, const char *many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

// Whose rows are meant, in front of what is said of them; empty where that is not to be named.
inline std::string site_part(const std::optional<ospf_tables::Site> &site) {
  return site ? text_of(*site) + ": " : "";
}

// Of these router IDs the three nearest to the one asked for, by how far off their numbers are;
// none when it is among them.
inline std::string nearest_routers(std::uint32_t wanted, const std::set<std::uint32_t> &routers) {
  if (routers.contains(wanted)) return {};
  std::set<std::pair<std::uint32_t, std::uint32_t>> near;
  for (const std::uint32_t each : routers) {
    near.emplace(std::max(each, wanted) - std::min(each, wanted), each);
    if (near.size() > 3) near.erase(std::prev(near.end()));
  }
  std::string text;
  for (const auto &[apart, each] : near) {
    text += (text.empty() ? "" : ", ") + ospf_tables::dotted(each);
  }
  return text;
}

}  // namespace tool
