// Routing tables for people and as JSON lines.
#pragma once

#include <cstdio>
#include <string>

#include "ospf_routes/changes.hpp"
#include "ospf_routes/loads.hpp"
#include "ospf_routes/routes.hpp"
#include "views/router_names.hpp"

namespace tool {

// One route as one object of JSON in one line.
std::string json_line(const ospf_routes::Database &database, const ospf_routes::RoutingTable &table,
                      const ospf_routes::Route &route, const RouterNames &names);

// The name of an instance in headings, such as "OSPFv3, instance 64".
std::string instance_name(const ospf_routes::Database &database);

// "10.0.0.2 by 10.0.0.1" or "attached, by 10.0.0.1".
std::string next_hop_text(const ospf_routes::NextHop &hop, ospf_routes::Family family);

void print_route_table(const ospf_routes::Database &database,
                       const ospf_routes::RoutingTable &table, const RouterNames &names,
                       std::FILE *out);

// A change of one route: `change`, the router and the prefix, and the route before and after.
std::string json_line(const ospf_routes::Database &database,
                      const ospf_routes::RoutingTable &before,
                      const ospf_routes::RoutingTable &after,
                      const ospf_routes::RouteChange &change, const RouterNames &names);

void print_route_changes(const ospf_routes::Database &database,
                         const ospf_routes::RoutingTable &before,
                         const ospf_routes::RoutingTable &after,
                         const std::vector<ospf_routes::RouteChange> &changes,
                         const RouterNames &names, std::FILE *out);

// Routers that lost routes, with how many; nothing when none did.
void print_cut_off(const ospf_routes::Database &database, const ospf_routes::Calculator &before,
                   const ospf_routes::Calculator &after, const RouterNames &names, std::FILE *out);

// Links that carry more shortest paths afterwards, the most added first; nothing when none does.
void print_added_loads(const ospf_routes::Database &database,
                       const std::vector<ospf_routes::LoadChange> &changes,
                       const RouterNames &names, std::FILE *out);
std::string json_line(const ospf_routes::Database &database, const ospf_routes::LoadChange &change,
                      const RouterNames &names);

}  // namespace tool
