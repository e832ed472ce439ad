// Names in lines of JSON: of routers beside the keys that have their IDs, null for a router
// without; and of the site, in front.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>

#include "ospf_tables/site.hpp"
#include "views/router_names.hpp"

namespace tool {

// An object in one line. Names that packets or daemons brought may hold octets that are no UTF-8.
inline std::string line_of(const nlohmann::ordered_json &object) {
  return object.dump(-1, ' ', true, nlohmann::ordered_json::error_handler_t::replace);
}

// The object with whose it is, where that is to be named.
inline nlohmann::ordered_json of_site(const std::optional<ospf_tables::Site> &site,
                                      nlohmann::ordered_json object) {
  if (!site) return object;
  nlohmann::ordered_json named = {{"tenant", site->tenant}, {"source", site->source}};
  named.update(object);
  return named;
}

inline nlohmann::ordered_json name_or_null(std::uint32_t router, const RouterNames &names) {
  const auto name = names.find(router);
  return name == names.end() ? nlohmann::ordered_json(nullptr)
                             : nlohmann::ordered_json(name->second);
}

inline nlohmann::ordered_json names_or_null(const std::vector<std::uint32_t> &routers,
                                            const RouterNames &names) {
  auto list = nlohmann::ordered_json::array();
  for (const std::uint32_t router : routers) list.push_back(name_or_null(router, names));
  return list;
}

}  // namespace tool
