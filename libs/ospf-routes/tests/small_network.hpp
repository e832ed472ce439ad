// A network of three routers that tests of rules begin with, and short ways to say what is in one.
#pragma once

#include <vector>

#include "ospf_routes/database.hpp"

namespace ospf_routes {

inline RouterId id(const char *text) { return parse_dotted(text).value(); }
inline Prefix prefix(const char *text) { return parse_prefix(text, Family::ipv4).value(); }

inline RouterLink point_to_point(const char *to, const char *own, std::uint32_t metric) {
  return {.neighbor = id(to), .interface = id(own), .metric = metric, .stub = {}};
}
inline RouterLink transit(const char *network, const char *own, std::uint32_t metric) {
  return {.type = LinkType::transit,
          .neighbor_interface = id(network),
          .interface = id(own),
          .metric = metric,
          .stub = {}};
}
inline RouterLink stub(const char *network, std::uint32_t metric) {
  return {.type = LinkType::stub, .metric = metric, .stub = prefix(network)};
}
inline RouterLsa router(const char *name, std::vector<RouterLink> links) {
  return {.router = id(name), .link_state_id = id(name), .links = std::move(links)};
}
inline ExternalLsa external(const char *from, const char *to, std::uint32_t metric, bool type_2) {
  ExternalLsa lsa;
  lsa.router = id(from);
  lsa.prefix = prefix(to);
  lsa.metric = metric;
  lsa.type_2 = type_2;
  return lsa;
}

// Two routers on a network and by two links beside each other, and one behind the second.
inline Database small_network() {
  Database database;
  Area area;
  area.routers = {
      router("10.0.0.1",
             {transit("10.1.0.2", "10.1.0.1", 10), point_to_point("10.0.0.2", "10.2.0.1", 10),
              point_to_point("10.0.0.2", "10.2.0.5", 10), stub("10.9.0.1/32", 0)}),
      router(
          "10.0.0.2",
          {transit("10.1.0.2", "10.1.0.2", 10), point_to_point("10.0.0.1", "10.2.0.6", 10),
           point_to_point("10.0.0.1", "10.2.0.2", 10), point_to_point("10.0.0.3", "10.3.0.1", 5)}),
      router("10.0.0.3", {point_to_point("10.0.0.2", "10.3.0.2", 5), stub("10.4.0.0/24", 1)})};
  area.networks = {{id("10.0.0.2"), id("10.1.0.2"), 24, {id("10.0.0.1"), id("10.0.0.2")}}};
  database.areas = {area};
  return database;
}

}  // namespace ospf_routes
