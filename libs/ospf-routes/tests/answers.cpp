// Reads databases with the routers to ask for, one JSON object a line, and writes the routing table
// of each router as one JSON object a line: the library's side of compare_random.py.
#include <iostream>

#include "json_database.hpp"
#include "ospf_routes/changes.hpp"
#include "ospf_routes/routes.hpp"

namespace {

using nlohmann::json;
using namespace ospf_routes;

json text_of(const OwnInterface &interface, Family family) {
  switch (interface.form) {
    case OwnInterface::Form::none:
      return nullptr;
    case OwnInterface::Form::number:
      return "number " + std::to_string(interface.number);
    default:
      return ospf_routes::text_of(interface.address, family);
  }
}

json routes_of(const RoutingTable &table, Family family) {
  json routes = json::array();
  for (const Route &route : table.routes) {
    json hops = json::array();
    for (const NextHop &hop : table.next_hops(route)) {
      hops.push_back({text_of(hop.interface, family),
                      hop.address ? json(ospf_routes::text_of(*hop.address, family)) : json()});
    }
    routes.push_back({ospf_routes::text_of(route.prefix, family), name_of(route.kind), route.cost,
                      route.type2_cost, route.tag, route.area, hops});
  }
  return {{"routes", routes}};
}

}  // namespace

int main() {
  std::ios::sync_with_stdio(false);
  for (std::string line; std::getline(std::cin, line);) {
    const json asked = json::parse(line);
    const Rules rules{asked["database"]["rfc1583"]};
    Database database = database_of(asked["database"]);
    if (asked.contains("change")) {
      const json &change = asked["change"];
      const std::string kind = change["kind"];
      database = changed(database,
                         {{kind == "without_link"     ? Change::Kind::without_link
                           : kind == "without_router" ? Change::Kind::without_router
                                                      : Change::Kind::cost,
                           change["from"], change["to"], change["metric"]}},
                         rules);
    }
    const Calculator calculator(database, rules);
    for (const json &root : asked["roots"]) {
      std::cout << routes_of(calculator.table(root), database.family).dump() << std::endl;
    }
  }
}
