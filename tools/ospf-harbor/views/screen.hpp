// Where output goes: how wide it is and whether colours mean something there.
#pragma once

#include <CLI/CLI.hpp>
#include <cstddef>
#include <string>

namespace tool {

struct Screen {
  std::size_t width = 0;  // in columns, 0 for no end
  bool colour = false;
};

// Adds --color, for commands that print tables.
void add_colour_option(CLI::App &command, std::string &when);

// Standard output: as wide as the terminal, else as COLUMNS says, else without an end. "auto" has
// colours on a terminal where NO_COLOR is not set.
Screen screen_of_output(const std::string &when);

}  // namespace tool
