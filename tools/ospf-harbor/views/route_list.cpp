#include "views/route_list.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "views/named_json.hpp"
#include "views/table.hpp"

namespace tool {

namespace {

using Json = nlohmann::ordered_json;
using namespace ospf_routes;

std::string interface_text(const OwnInterface &interface, Family family) {
  switch (interface.form) {
    case OwnInterface::Form::none:
      return "";
    case OwnInterface::Form::number:
      return "number " + std::to_string(interface.number);
    case OwnInterface::Form::address:
      break;
  }
  // OSPFv3 interfaces have link-local addresses, but where IPv4 is routed.
  return text_of(interface.address, family);
}

Json json_of(const NextHop &hop, Family family) {
  const std::string interface = interface_text(hop.interface, family);
  return {{"address", hop.address ? Json(text_of(*hop.address, family)) : Json(nullptr)},
          {"interface", interface.empty() ? Json(nullptr) : Json(interface)}};
}

// AS-externals belong to no area.
bool has_area(const Route &route) {
  return route.kind != Kind::external_1 && route.kind != Kind::external_2;
}

Json route_object(const Database &database, const RoutingTable &table, const Route &route,
                  const RouterNames &names) {
  Json hops = Json::array();
  for (const NextHop &hop : table.next_hops(route)) hops.push_back(json_of(hop, database.family));
  return {{"router", dotted(table.router)},
          {"router_name", name_or_null(table.router, names)},
          {"version", database.version},
          {"instance", database.instance},
          {"prefix", text_of(route.prefix, database.family)},
          {"kind", name_of(route.kind)},
          {"cost", route.cost},
          {"type2_cost", is_type_2(route.kind) ? Json(route.type2_cost) : Json(nullptr)},
          {"tag", is_external(route.kind) ? Json(route.tag) : Json(nullptr)},
          {"area", has_area(route) ? Json(dotted(route.area)) : Json(nullptr)},
          {"next_hops", hops}};
}

// The route without what stands in the line of its change.
Json route_or_null(const Database &database, const RoutingTable &table, const Route *route) {
  if (route == nullptr) return nullptr;
  Json whole = route_object(database, table, *route, {});
  for (const char *key : {"router", "router_name", "version", "instance", "prefix"})
    whole.erase(key);
  return whole;
}

std::string short_text(const Database &database, const RoutingTable &table, const Route *route) {
  if (route == nullptr) return "none";
  std::string text = std::string(name_of(route->kind)) + " " +
                     (is_type_2(route->kind) ? std::to_string(route->type2_cost) + "+" : "") +
                     std::to_string(route->cost);
  const char *between = " ";
  for (const NextHop &hop : table.next_hops(*route)) {
    text += between + next_hop_text(hop, database.family);
    between = "; ";
  }
  return text;
}

const Prefix &prefix_of(const RouteChange &change) {
  return (change.before != nullptr ? change.before : change.after)->prefix;
}

}  // namespace

std::string json_line(const Database &database, const RoutingTable &table, const Route &route,
                      const RouterNames &names) {
  return line_of(route_object(database, table, route, names));
}

std::string json_line(const Database &database, const RoutingTable &before,
                      const RoutingTable &after, const RouteChange &change,
                      const RouterNames &names) {
  const Json line = {{"change", name_of(change.difference)},
                     {"router", dotted(before.router)},
                     {"router_name", name_or_null(before.router, names)},
                     {"version", database.version},
                     {"instance", database.instance},
                     {"prefix", text_of(prefix_of(change), database.family)},
                     {"before", route_or_null(database, before, change.before)},
                     {"after", route_or_null(database, after, change.after)}};
  return line_of(line);
}

void print_route_changes(const Database &database, const RoutingTable &before,
                         const RoutingTable &after, const std::vector<RouteChange> &changes,
                         const RouterNames &names, std::FILE *out) {
  std::fprintf(out, "%s: routes of router %s that change\n", instance_name(database).c_str(),
               labelled(before.router, names).c_str());
  for (const RouteChange &change : changes) {
    std::fprintf(out, "  %-9s  %s\n    before  %s\n    after   %s\n", name_of(change.difference),
                 text_of(prefix_of(change), database.family).c_str(),
                 short_text(database, before, change.before).c_str(),
                 short_text(database, after, change.after).c_str());
  }
}

void print_cut_off(const Database &database, const Calculator &before, const Calculator &after,
                   const RouterNames &names, std::FILE *out) {
  Table rows({{"Router"}, {"Lost", true}, {"Of", true}});
  for (const RouterId router : before.routers()) {
    const RoutingTable one = before.table(router);
    const RoutingTable two = after.table(router);
    std::size_t lost = 0;
    for (const RouteChange &change : differences(one, two)) {
      lost += change.difference == Difference::lost ? 1 : 0;
    }
    if (lost == 0) continue;
    rows.add({labelled(router, names), std::to_string(lost), std::to_string(one.routes.size())});
  }
  if (rows.empty()) return;
  std::fprintf(out, "\n%s: routers that lose routes\n", instance_name(database).c_str());
  rows.print(out, {});
}

void print_added_loads(const Database &database, const std::vector<LoadChange> &changes,
                       const RouterNames &names, std::FILE *out) {
  constexpr std::size_t most = 10;
  if (changes.empty()) return;
  std::fprintf(out, "\n%s: links that carry more shortest paths between routers of an area\n",
               instance_name(database).c_str());
  Table rows({{"From"}, {"To"}, {"Area"}, {"Before", true}, {"After", true}});
  const auto paths = [](double carried) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", carried);
    return std::string(text);
  };
  for (std::size_t at = 0; at < std::min(most, changes.size()); ++at) {
    const LinkLoad &link = changes[at].link;
    rows.add({labelled(link.from, names),
              link.network != 0 ? "network " + dotted(link.network) : labelled(link.to, names),
              dotted(link.area), paths(changes[at].before), paths(link.carried)});
  }
  rows.print(out, {});
  if (changes.size() > most) std::fprintf(out, "  and %zu more\n", changes.size() - most);
}

std::string json_line(const Database &database, const LoadChange &change,
                      const RouterNames &names) {
  const LinkLoad &link = change.link;
  const Json line = {{"change", "load"},
                     {"version", database.version},
                     {"instance", database.instance},
                     {"area", dotted(link.area)},
                     {"from", dotted(link.from)},
                     {"from_name", name_or_null(link.from, names)},
                     {"to", link.to != 0 ? Json(dotted(link.to)) : Json(nullptr)},
                     {"to_name", name_or_null(link.to, names)},
                     {"network", link.network != 0 ? Json(dotted(link.network)) : Json(nullptr)},
                     {"before", change.before},
                     {"after", link.carried}};
  return line_of(line);
}

std::string instance_name(const Database &database) {
  std::string name = "OSPFv" + std::to_string(database.version);
  if (database.instance != 0) name += ", instance " + std::to_string(database.instance);
  return name;
}

std::string next_hop_text(const NextHop &hop, Family family) {
  const std::string interface = interface_text(hop.interface, family);
  const std::string by = interface.empty() ? "" : "by " + interface;
  if (hop.attached) return by.empty() ? "attached" : "attached, " + by;
  return (hop.address ? text_of(*hop.address, family) : "address unknown,") + " " + by;
}

void print_route_table(const Database &database, const RoutingTable &table,
                       const RouterNames &names, std::FILE *out) {
  int width = 6;
  for (const Route &route : table.routes) {
    width = std::max(width, static_cast<int>(text_of(route.prefix, database.family).size()));
  }
  std::fprintf(out, "%s: routes of router %s\n", instance_name(database).c_str(),
               labelled(table.router, names).c_str());
  std::fprintf(out, "  %-*s  %-10s  %8s  %8s  %10s  %-15s  %s\n", width, "Prefix", "Kind", "Cost",
               "Type 2", "Tag", "Area", "Next hops");
  for (const Route &route : table.routes) {
    std::fprintf(out, "  %-*s  %-10s  %8u  %8s  %10s  %-15s", width,
                 text_of(route.prefix, database.family).c_str(), name_of(route.kind), route.cost,
                 is_type_2(route.kind) ? std::to_string(route.type2_cost).c_str() : "-",
                 is_external(route.kind) ? std::to_string(route.tag).c_str() : "-",
                 has_area(route) ? dotted(route.area).c_str() : "-");
    const char *between = "  ";
    for (const NextHop &hop : table.next_hops(route)) {
      std::fprintf(out, "%s%s", between, next_hop_text(hop, database.family).c_str());
      between = "; ";
    }
    std::fprintf(out, "\n");
  }
}

}  // namespace tool
