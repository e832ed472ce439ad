#include <algorithm>
#include <cstdio>
#include <memory>
#include <set>

#include "commands/picture_options.hpp"
#include "commands/route_options.hpp"
#include "views/database_topology.hpp"
#include "views/dot_text.hpp"
#include "views/lsdb_filter.hpp"
#include "views/network_lists.hpp"
#include "views/topology.hpp"

namespace tool {

using ospf_tables::LsdbEntry;

namespace {

struct GraphOptions {
  PictureOptions picture;
  WhatIf what_if;
  bool stubs = false;
  bool v2 = false;
  bool v3 = false;
  LsdbFilter filter;  // of it the area, the instance and the family
};

// The network that would be.
Topology changed_topology(ospf_tables::Session &session, const GraphOptions &options,
                          const InstanceName &instance) {
  std::vector<ospf_routes::Database> databases = chosen_databases(
      session,
      {instance.version == 2, instance.version == 3, std::to_string(instance.instance_id)},
      "graph");
  options.what_if.replace(databases, {});
  ospf_routes::Database &database = databases.front();
  if (!options.filter.area.empty()) {
    const std::uint32_t only = parse_area(options.filter.area);
    std::erase_if(database.areas, [&](const ospf_routes::Area &area) { return area.id != only; });
  }
  return topology_of(database);
}

// Instances that have router LSAs.
std::set<InstanceName> drawable(const std::vector<LsdbEntry> &entries, const GraphOptions &options) {
  std::set<InstanceName> instances;
  for (const LsdbEntry &entry : entries) {
    const bool v2 = entry.lsa.version == 2;
    const std::uint16_t router = v2 ? std::uint16_t{lsa_vocabulary::lsa2_router}
                                    : std::uint16_t{lsa_vocabulary::lsa3_router};
    if (entry.lsa.type != router || (options.v2 && !v2) || (options.v3 && v2)) continue;
    instances.insert(ospf_tables::instance_name(entry.router_id, v2));
  }
  return instances;
}

// Which others could be drawn, with the words that ask for them.
void tell_others(const std::set<InstanceName> &instances) {
  std::string others;
  for (const InstanceName &other : instances) {
    if (other == *instances.begin()) continue;
    others += (others.empty() ? "" : ", ") + std::string("--v") + std::to_string(other.version);
    if (other.instance_id != 0) others += " --instance " + std::to_string(other.instance_id);
  }
  if (others.empty()) return;
  std::fprintf(stderr, "ospf-harbor: graph: this is %s; others are drawn by %s\n",
               title_of(*instances.begin()).c_str(), others.c_str());
}

// The first instance of those asked for is drawn, which is OSPFv2's if it is there; 1, with a word
// on standard error, when there is nothing to draw.
int draw_graph(ospf_tables::Session &session, const GraphOptions &options) {
  const std::vector<LsdbEntry> entries =
      filtered(ospf_tables::read_lsdb(session), options.filter);
  const std::set<InstanceName> instances = drawable(entries, options);
  if (instances.empty()) {
    const std::string where = options.filter.area.empty() ? "" : " of area " + options.filter.area;
    const std::string which =
        options.v2 || options.v3 ? std::string("OSPFv") + (options.v2 ? "2" : "3") + " router"
                                 : "router";
    std::fprintf(stderr, "ospf-harbor: graph: no %s LSAs%s are loaded\n", which.c_str(),
                 where.c_str());
    return 1;
  }
  const InstanceName &instance = *instances.begin();
  const Topology topology = options.what_if.is_asked()
                                ? changed_topology(session, options, instance)
                                : build_topology(entries, instance.version, instance.instance_id);
  options.picture.put(dot_text(topology, {options.stubs, {}}), topology.routers.size());
  tell_others(instances);
  return 0;
}

Run set_up_graph(CLI::App &app) {
  const auto options = std::make_shared<GraphOptions>();
  options->picture.add_to(app)->require_option(1);
  app.add_flag("--stubs", options->stubs, "Stub networks and prefixes of links as well");
  app.add_option("--area", options->filter.area, "Only this area, such as 0.0.0.1 or 1");
  app.add_option("--instance", options->filter.instance, "This instance ID, such as 64");
  app.add_option("--family", options->filter.family, "An instance of ipv4 or of ipv6");
  CLI::Option *v2 = app.add_flag("--v2", options->v2, "OSPFv2 (the default if it is there)");
  app.add_flag("--v3", options->v3, "OSPFv3")->excludes(v2);
  options->what_if.add_to(app);
  return [options](ospf_tables::Session *session) { return draw_graph(*session, *options); };
}

}  // namespace

extern const Command graph_command;
const Command graph_command{"graph", "Draw the topology of router and network LSAs", Needs::tree,
                            set_up_graph};

}  // namespace tool
