// The options of `export`, `import`, `dump`, `send` and `receive`. The command line and the lines
// of `shell` are parsed by the same rules.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ospf_tables/session.hpp"

namespace CLI {
class App;
}

namespace tool {

using ExchangeCommand = std::function<int(ospf_tables::Session &session)>;

// Adds them to the tool's commands; parsing sets *chosen when one of them is given.
void add_exchange_commands(CLI::App &app, ExchangeCommand *chosen);

// Runs a line of `shell` when it is one of them; false when it is none. Throws InputError for
// options that are wrong.
bool run_exchange_line(ospf_tables::Session &session, const std::vector<std::string> &words,
                       int *status);

}  // namespace tool
