// What the commands of the group "store" share: the file that they work on.
#pragma once

#include <memory>
#include <string>

#include "commands/command.hpp"

namespace tool {

// Takes FILE from the command line, and runs act with it.
inline Run run_on_store_file(CLI::App &app, int (*act)(const std::string &file)) {
  const auto file = std::make_shared<std::string>();
  app.add_option("FILE", *file, "The store")->required();
  return [file, act](ospf_tables::Session *) { return act(*file); };
}

}  // namespace tool
