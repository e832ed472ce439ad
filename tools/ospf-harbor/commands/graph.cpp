#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>

#include "commands/command.hpp"
#include "tree_exchange/files.hpp"
#include "views/dot_text.hpp"
#include "views/graphviz.hpp"
#include "views/lsdb_filter.hpp"
#include "views/topology.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

struct GraphOptions {
  bool dot = false;
  bool svg = false;
  bool stubs = false;
  bool v2 = false;
  bool v3 = false;
  std::string area;
  std::string file;  // empty for standard output
};

// A large picture takes seconds, which a terminal is told.
std::string drawn(const std::string &dot, std::size_t routers) {
  const bool tell = routers > 100 && isatty(STDERR_FILENO) == 1;
  if (tell) std::fprintf(stderr, "laying out %zu routers ...", routers);
  const std::string picture = draw(dot, "svg");
  if (tell) std::fprintf(stderr, "\r\033[K");
  return picture;
}

bool has_routers(const std::vector<LsdbEntry> &entries, std::uint32_t version) {
  return std::any_of(entries.begin(), entries.end(), [&](const LsdbEntry &entry) {
    return entry.lsa.version == version &&
           (version == 2 ? entry.lsa.type == lsa2_router : entry.lsa.type == lsa3_router);
  });
}

// Without a version asked for, OSPFv2 is drawn if it is there; 1, with a word on standard error,
// when there is nothing to draw.
int draw_graph(Session &session, const GraphOptions &options) {
  LsdbFilter filter;
  filter.area = options.area;
  const std::vector<LsdbEntry> entries = filtered(read_lsdb(session), filter);
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
  const Topology topology = build_topology(entries, version);
  const std::string dot = dot_text(topology, {options.stubs});
  const std::string content = options.svg ? drawn(dot, topology.routers.size()) : dot;
  if (options.file.empty()) {
    std::fwrite(content.data(), 1, content.size(), stdout);
  } else {
    tree_exchange::write_file(options.file, [&](const auto &put) {
      put({reinterpret_cast<const std::uint8_t *>(content.data()), content.size()});
    });
  }
  if (version == 2 && has_v3 && !options.v2) {
    std::fprintf(stderr, "ospf-harbor: graph: this is OSPFv2; --v3 draws OSPFv3\n");
  }
  return 0;
}

Run set_up_graph(CLI::App &app) {
  const auto options = std::make_shared<GraphOptions>();
  CLI::Option_group *form = app.add_option_group("form");
  form->add_flag("--dot", options->dot, "In the language of Graphviz");
  form->add_flag("--svg", options->svg, "As a picture, laid out by Graphviz");
  form->require_option(1);
  app.add_option("-o,--output", options->file, "A file instead of standard output");
  app.add_flag("--stubs", options->stubs, "Stub networks and prefixes of links as well");
  app.add_option("--area", options->area, "Only this area, such as 0.0.0.1 or 1");
  CLI::Option *v2 = app.add_flag("--v2", options->v2, "OSPFv2 (the default if it is there)");
  app.add_flag("--v3", options->v3, "OSPFv3")->excludes(v2);
  return [options](Session *session) { return draw_graph(*session, *options); };
}

}  // namespace

extern const Command graph_command;
const Command graph_command{"graph", "Draw the topology of router and network LSAs", Needs::tree,
                            set_up_graph};

}  // namespace tool
