// `graph`: the topology of a network as a picture, or how it differs from another.
#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <set>

#include "commands/picture_options.hpp"
#include "commands/route_options.hpp"
#include "commands/source_choice.hpp"
#include "ospf_routes/read_databases.hpp"
#include "views/lsdb_filter.hpp"
#include "views/network_lists.hpp"
#include "views/topology_difference.hpp"

namespace tool {

using ospf_routes::Database;
using ospf_tables::LsdbEntry;

namespace {

struct GraphOptions {
  SourceChoice source;
  std::vector<std::string> difference;  // the two sources of one
  PictureOptions picture;
  WhatIf what_if;
  bool stubs = false;
  std::string area;
  LsdbFilter filter;  // of it the versions, the instance and the family
};

InstanceName name_of(const Database &database) { return {database.version, database.instance}; }

// What is drawn of a source.
struct Network {
  std::vector<LsdbEntry> lsas;
  std::vector<Database> databases;  // those that have routers
  NetworkLists lists;

  void read(ospf_tables::Session &session, const GraphOptions &options) {
    lsas = filtered(ospf_tables::read_lsdb(session), options.filter);
    databases = ospf_routes::read_databases(lsas);
    lists = read_network(session, {});
    for (Database &database : databases) {
      std::erase_if(database.areas, [&](const ospf_routes::Area &area) {
        return !options.area.empty() && area.id != parse_area(options.area);
      });
    }
    std::erase_if(databases, [](const Database &database) {
      return std::ranges::all_of(database.areas,
                                 [](const auto &area) { return area.routers.empty(); });
    });
  }

  Topology topology(const InstanceName &instance) const {
    const auto at = std::ranges::find(databases, instance, name_of);
    Topology topology = at == databases.end() ? Topology{} : topology_of(*at);
    topology.instance = instance;
    add_lists(topology, lists);
    return topology;
  }
};

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

int tell_nothing(const GraphOptions &options) {
  const std::string where = options.area.empty() ? "" : " of area " + options.area;
  std::string which;
  if (options.filter.v2) which = "OSPFv2 ";
  if (options.filter.v3) which = "OSPFv3 ";
  std::fprintf(stderr, "ospf-harbor: graph: no %srouter LSAs%s are loaded\n", which.c_str(),
               where.c_str());
  return 1;
}

// Of the instances that were asked for, which are OSPFv2's first, a page has all and a picture the
// first; 1, with a word on standard error, when there is nothing to draw.
template <typename MakePicture>
int draw_instances(const std::set<InstanceName> &instances, const GraphOptions &options,
                   MakePicture make) {
  if (instances.empty()) return tell_nothing(options);
  std::vector<PagePicture> pictures;
  for (const InstanceName &instance : instances) {
    if (pictures.empty() || options.picture.takes_all()) pictures.push_back(make(instance));
  }
  options.picture.put(pictures);
  if (!options.picture.takes_all()) tell_others(instances);
  return 0;
}

std::set<InstanceName> instances_of(const std::vector<Database> &databases) {
  std::set<InstanceName> instances;
  for (const Database &database : databases) instances.insert(name_of(database));
  return instances;
}

int draw_network(ospf_tables::Session &session, const GraphOptions &options) {
  Network network;
  session.reading([&] { network.read(session, options); });
  const std::set<InstanceName> instances = instances_of(network.databases);
  if (!instances.empty() && !options.picture.takes_all()) network.databases.resize(1);
  options.what_if.replace(network.databases, {});
  for (const Database &database : network.databases) {
    tell_lacks("graph", database, ospf_routes::Calculator(database).lacks());
  }
  return draw_instances(instances, options, [&](const InstanceName &instance) {
    return PagePicture{picture_of(network.topology(instance),
                                  {options.stubs, options.picture.shows_addresses(), {}}),
                       page_lsas(network.lsas, instance)};
  });
}

// The two sides of a difference: each with a time of its own, or one capture until a time and until
// its end. Two times stand in lines of one text.
std::array<SourceChoice, 2> sides_of(const GraphOptions &options) {
  if (options.what_if.is_asked() || !options.source.sources.empty()) {
    throw UsageError("graph", "--diff", "it beside --from or a what-if", "one of them");
  }
  const std::string &times = options.source.at;
  const std::size_t line = times.find('\n');
  if (!times.empty() && line == times.npos && options.difference[0] != options.difference[1]) {
    throw UsageError("graph", "--at", "one time for two sources", "none, or one for each");
  }
  std::array<SourceChoice, 2> sides{options.source, options.source};
  for (const std::size_t side : {0u, 1u}) sides.at(side).sources = {options.difference.at(side)};
  sides[0].at = times.substr(0, line);
  sides[1].at = line == times.npos ? "" : times.substr(line + 1);
  return sides;
}

int draw_difference(const GraphOptions &options) {
  const std::array<SourceChoice, 2> sides = sides_of(options);
  Network networks[2];
  int status = 0;
  std::set<InstanceName> instances;
  for (const std::size_t side : {0u, 1u}) {
    ospf_tables::Session session;
    status = std::max(status, sides.at(side).load(session, "graph"));
    networks[side].read(session, options);
    instances.merge(instances_of(networks[side].databases));
  }
  const int drawn = draw_instances(instances, options, [&](const InstanceName &instance) {
    const Topology both =
        difference_of(networks[0].topology(instance), networks[1].topology(instance));
    return PagePicture{picture_of(both, {options.stubs, options.picture.shows_addresses(), {}}),
                       page_lsas(networks[0].lsas, networks[1].lsas, instance)};
  });
  return std::max(status, drawn);
}

int draw_graph(ospf_tables::Session &session, const GraphOptions &options) {
  if (!options.area.empty()) parse_area(options.area);
  if (!options.difference.empty()) return draw_difference(options);
  const int status = options.source.load(session, "graph");
  return std::max(status, draw_network(session, options));
}

Run set_up_graph(CLI::App &app) {
  const auto options = std::make_shared<GraphOptions>();
  options->source.add_to(app);
  app.get_option("--at")->multi_option_policy(CLI::MultiOptionPolicy::Join);
  options->picture.add_to(app)->require_option(1);
  app.add_option("--diff", options->difference,
                 "In place of --from two sources, or one twice with one or two of --at: what came, "
                 "went and changed from the first to the second")
      ->type_name("A B")
      ->expected(2);
  app.add_flag("--stubs", options->stubs, "Stub networks and prefixes of links as well");
  app.add_option("--area", options->area, "Only this area, such as 0.0.0.1 or 1");
  app.add_option("--instance", options->filter.instance, "This instance ID, such as 64");
  app.add_option("--family", options->filter.family, "An instance of ipv4 or of ipv6");
  CLI::Option *v2 = app.add_flag("--v2", options->filter.v2, "OSPFv2 (the default if it is there)");
  app.add_flag("--v3", options->filter.v3, "OSPFv3")->excludes(v2);
  options->what_if.add_to(app);
  return [options](ospf_tables::Session *session) { return draw_graph(*session, *options); };
}

constexpr char graph_description[] =
    R"(Draws what router and network LSAs say: routers with the colours of their
areas, their names, roles and how much they announce from outside; networks
with their designated router; links with the cost at each end. --diff draws
two sources as one picture, with what came, went and changed in colours of
their own and in words. A page of --html holds every version and instance
and all LSAs, which a click on a router, network or line shows.
)";

}  // namespace

extern const Command graph_command;
const Command graph_command{"graph",
                            "Draw the topology of router and network LSAs",
                            Needs::told,
                            set_up_graph,
                            Stands::everywhere,
                            false,
                            graph_description};

}  // namespace tool
