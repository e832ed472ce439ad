// `graph`: draws the topology of the databases of the tables.
#pragma once

#include <string>
#include <vector>

#include "commands/command.hpp"
#include "ospf_tables/session.hpp"
#include "views/lsdb_filter.hpp"

namespace tool {

struct GraphOptions {
  bool dot = false;
  bool svg = false;
  bool stubs = false;
  bool v2 = false;
  bool v3 = false;
  std::string area;
  std::string file;  // empty for standard output
};

// Everything but where the database comes from.
void add_graph_options(CLI::App &command, GraphOptions &options);

// With `--from`, whose sources are loaded first.
Command add_graph_command(CLI::App &app);

// The words behind "graph", as a line of `shell` has them. Throws InputError.
GraphOptions parse_graph_words(const std::vector<std::string> &words);

// Writes the graph; 1, with a word on standard error, when there is nothing to draw. Without a
// version asked for, OSPFv2 is drawn if it is there. A file that is there already is replaced when
// all of the new one is written. Throws std::runtime_error when Graphviz or the file fails.
int run_graph(ospf_tables::Session &session, const GraphOptions &options);

}  // namespace tool
