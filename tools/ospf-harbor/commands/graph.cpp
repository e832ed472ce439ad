#include <algorithm>
#include <cstdio>
#include <memory>

#include "commands/picture_options.hpp"
#include "commands/route_options.hpp"
#include "views/database_topology.hpp"
#include "views/dot_text.hpp"
#include "views/lsdb_filter.hpp"
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
  std::string area;
};

// The network that would be.
Topology changed_topology(ospf_tables::Session &session, const GraphOptions &options,
                          std::uint32_t version) {
  std::vector<ospf_routes::Database> databases =
      chosen_databases(session, {version == 2, version == 3, ""}, "graph");
  options.what_if.replace(databases, {});
  ospf_routes::Database &database = databases.front();
  if (!options.area.empty()) {
    const std::uint32_t only = parse_area(options.area);
    std::erase_if(database.areas, [&](const ospf_routes::Area &area) { return area.id != only; });
  }
  return topology_of(database);
}

bool has_routers(const std::vector<LsdbEntry> &entries, std::uint32_t version) {
  return std::any_of(entries.begin(), entries.end(), [&](const LsdbEntry &entry) {
    return entry.lsa.version == version &&
           (version == 2 ? entry.lsa.type == lsa_vocabulary::lsa2_router
                         : entry.lsa.type == lsa_vocabulary::lsa3_router);
  });
}

// Without a version asked for, OSPFv2 is drawn if it is there; 1, with a word on standard error,
// when there is nothing to draw.
int draw_graph(ospf_tables::Session &session, const GraphOptions &options) {
  LsdbFilter filter;
  filter.area = options.area;
  const std::vector<LsdbEntry> entries = filtered(ospf_tables::read_lsdb(session), filter);
  const bool has_v2 = has_routers(entries, 2);
  const bool has_v3 = has_routers(entries, 3);
  const std::uint32_t version = options.v3 || (!options.v2 && !has_v2) ? 3 : 2;
  if (!(version == 2 ? has_v2 : has_v3)) {
    const std::string where = options.area.empty() ? "" : " of area " + options.area;
    const std::string which =
        options.v2 || options.v3 ? "OSPFv" + std::to_string(version) + " router" : "router";
    std::fprintf(stderr, "ospf-harbor: graph: no %s LSAs%s are loaded\n", which.c_str(),
                 where.c_str());
    return 1;
  }
  const Topology topology = options.what_if.is_asked() ? changed_topology(session, options, version)
                                                       : build_topology(entries, version);
  options.picture.put(dot_text(topology, {options.stubs, {}}), topology.routers.size());
  if (version == 2 && has_v3 && !options.v2) {
    std::fprintf(stderr, "ospf-harbor: graph: this is OSPFv2; --v3 draws OSPFv3\n");
  }
  return 0;
}

Run set_up_graph(CLI::App &app) {
  const auto options = std::make_shared<GraphOptions>();
  options->picture.add_to(app)->require_option(1);
  app.add_flag("--stubs", options->stubs, "Stub networks and prefixes of links as well");
  app.add_option("--area", options->area, "Only this area, such as 0.0.0.1 or 1");
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
