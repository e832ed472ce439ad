// The options of commands that draw: which form, and where to.
#pragma once

#include <string>

#include "commands/command.hpp"

namespace tool {

struct PictureOptions {
  bool dot = false;
  bool svg = false;
  std::string file;  // empty for standard output

  // Gives the group of the forms, of which one is asked for at most.
  CLI::Option_group *add_to(CLI::App &app);
  bool is_asked() const { return dot || svg; }
  // The picture of a text in the language of Graphviz. Throws InputError when it cannot be written.
  void put(const std::string &dot_text, std::size_t routers) const;
};

}  // namespace tool
