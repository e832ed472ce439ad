#include "commands/graph_command.hpp"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "commands/lsdb_command.hpp"
#include "sources/sources.hpp"
#include "views/dot_text.hpp"
#include "views/graphviz.hpp"
#include "views/topology.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

[[noreturn]] void fail(const std::string &file, const char *what) {
  throw std::runtime_error("graph: " + file + ": " + what + ": " + std::strerror(errno));
}

void write_file(const std::string &file, const std::string &content) {
  const std::string beside = file + ".new";
  std::FILE *out = std::fopen(beside.c_str(), "wb");
  if (out == nullptr) fail(beside, "cannot be written");
  const bool written = std::fwrite(content.data(), 1, content.size(), out) == content.size();
  if (std::fclose(out) != 0 || !written) {
    const int reason = errno;
    std::remove(beside.c_str());
    errno = reason;
    fail(beside, "cannot be written");
  }
  if (std::rename(beside.c_str(), file.c_str()) != 0) {
    const int reason = errno;
    std::remove(beside.c_str());
    errno = reason;
    fail(file, "cannot be replaced");
  }
}

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

}  // namespace

void add_graph_options(CLI::App &command, GraphOptions &options) {
  CLI::Option_group *form = command.add_option_group("form");
  form->add_flag("--dot", options.dot, "In the language of Graphviz");
  form->add_flag("--svg", options.svg, "As a picture, laid out by Graphviz");
  form->require_option(1);
  command.add_option("-o,--output", options.file, "A file instead of standard output");
  command.add_flag("--stubs", options.stubs, "Stub networks and prefixes of links as well");
  command.add_option("--area", options.area, "Only this area, such as 0.0.0.1 or 1");
  CLI::Option *v2 = command.add_flag("--v2", options.v2, "OSPFv2 (the default if it is there)");
  command.add_flag("--v3", options.v3, "OSPFv3")->excludes(v2);
}

GraphOptions parse_graph_words(const std::vector<std::string> &words) {
  GraphOptions options;
  CLI::App command;
  add_graph_options(command, options);
  parse_words(command, "graph", words);
  return options;
}

Command add_graph_command(CLI::App &app) {
  CLI::App *command = app.add_subcommand("graph", "Draw the topology of router and network LSAs");
  const auto options = std::make_shared<GraphOptions>();
  const auto sources = std::make_shared<std::vector<std::string>>();
  add_graph_options(*command, *options);
  command->add_option("--from", *sources, source_help)->required();
  return {command, [options, sources] {
            Session session;
            const int status = load_sources(session, *sources);
            return std::max(status, run_graph(session, *options));
          }};
}

int run_graph(Session &session, const GraphOptions &options) {
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
  if (!options.file.empty()) {
    write_file(options.file, content);
  } else if (std::fwrite(content.data(), 1, content.size(), stdout) != content.size()) {
    fail("standard output", "cannot be written");
  }
  if (version == 2 && has_v3 && !options.v2) {
    std::fprintf(stderr, "ospf-harbor: graph: this is OSPFv2; --v3 draws OSPFv3\n");
  }
  return 0;
}

}  // namespace tool
