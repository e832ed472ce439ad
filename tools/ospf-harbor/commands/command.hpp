// A command of the tool: what it adds to the command line, and what runs when it was given. Each
// command that stands in a file of its own has a function `Command add_<name>_command(CLI::App &)`,
// which main calls before it parses; run() gives the exit status and may throw.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace tool {

struct Command {
  CLI::App *app;
  std::function<int()> run;
};

}  // namespace tool
