// The lists of a network as JSON, one object a line, always with the same keys.
#include <nlohmann/json.hpp>

#include "ospf_tables/row_keys.hpp"
#include "views/named_json.hpp"
#include "views/network_tables.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

using Json = nlohmann::ordered_json;

Json text_or_null(const std::string &text) { return text.empty() ? Json(nullptr) : Json(text); }

template <typename Number>
Json number_or_null(const std::optional<Number> &number) {
  return number ? Json(*number) : Json(nullptr);
}

// A line of what belongs to an instance.
void print_line(const NetworkLists &lists, const InstanceName &instance, const Json &rest,
                std::FILE *out) {
  Json line = {{"version", instance.version}, {"instance", instance.instance_id}};
  line.update(rest);
  std::fprintf(out, "%s\n", line_of(of_site(lists.site, std::move(line))).c_str());
}

// The same of what belongs to an interface.
void print_line(const NetworkLists &lists, const InterfaceLine &interface, const Json &rest,
                std::FILE *out) {
  Json line = {{"area", dotted(interface.area)},
               {"router", dotted(interface.router)},
               {"router_name", name_or_null(interface.router, lists.names)},
               {"interface", interface.name}};
  line.update(rest);
  print_line(lists, interface.instance, line, out);
}

Json all_dotted(const std::set<std::uint32_t> &numbers) {
  Json list = Json::array();
  for (const std::uint32_t number : numbers) list.push_back(dotted(number));
  return list;
}

}  // namespace

bool print_neighbors_json(const NetworkLists &lists, std::FILE *out) {
  bool any = false;
  for (const InterfaceLine &of : lists.interfaces) {
    for (const NeighborLine &line : of.neighbors) {
      any = true;
      print_line(lists, of,
                 {{"neighbor_id", dotted(line.router_id)},
                  {"neighbor_name", name_or_null(line.router_id, lists.names)},
                  {"address", text_or_null(line.address)},
                  {"priority", number_or_null(line.priority)},
                  {"state", line.state_text()},
                  {"role", text_or_null(of.role_of(line))},
                  {"dr", text_or_null(line.dr)},
                  {"bdr", text_or_null(line.bdr)},
                  {"evidence", text_or_null(line.evidence)}},
                 out);
    }
  }
  return any;
}

bool print_interfaces_json(const NetworkLists &lists, std::FILE *out) {
  for (const InterfaceLine &line : lists.interfaces) {
    std::size_t full = 0;
    for (const NeighborLine &neighbor : line.neighbors) full += neighbor.is_full() ? 1 : 0;
    print_line(lists, line,
               {{"address", text_or_null(line.address)},
                {"type", text_or_null(line.type)},
                {"state", text_or_null(line.state)},
                {"cost", number_or_null(line.cost)},
                {"hello_interval", number_or_null(line.hello_interval)},
                {"dead_interval", number_or_null(line.dead_interval)},
                {"priority", number_or_null(line.priority)},
                {"dr", text_or_null(line.dr)},
                {"bdr", text_or_null(line.bdr)},
                {"passive", line.passive},
                {"neighbors", line.neighbors.size()},
                {"full", full}},
               out);
  }
  return !lists.interfaces.empty();
}

bool print_areas_json(const NetworkLists &lists, std::FILE *out) {
  for (const AreaLine &line : lists.areas) {
    print_line(lists, line.instance,
               {{"area", dotted(line.area)},
                {"kind", text_or_null(line.kind)},
                {"routers", all_dotted(line.routers)},
                {"border_routers", line.border_routers},
                {"as_boundary_routers", line.boundary_routers},
                {"interfaces", line.interfaces},
                {"neighbors", line.neighbors},
                {"full", line.full},
                {"lsas", line.lsas}},
               out);
  }
  return !lists.areas.empty();
}

bool print_routers_json(const NetworkLists &lists, std::FILE *out) {
  for (const RouterLine &line : lists.routers) {
    print_line(lists, line.instance,
               {{"router", dotted(line.router)},
                {"router_name", name_or_null(line.router, lists.names)},
                {"has_router_lsa", line.has_lsa},
                {"border", line.border},
                {"as_boundary", line.boundary},
                {"areas", all_dotted(line.areas)},
                {"interfaces", line.interfaces},
                {"neighbors", line.neighbors},
                {"full", line.full},
                {"lsas", line.lsas}},
               out);
  }
  return !lists.routers.empty();
}

}  // namespace tool
