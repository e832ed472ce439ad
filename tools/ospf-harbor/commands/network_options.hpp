// The options of commands that list parts of a network.
#pragma once

#include "commands/command.hpp"
#include "views/network_lists.hpp"

// For the description of a command that shows each site.
#define SITE_KEYS                                                               \
  "\nOf a store that several sites are followed into each is shown, unless\n"   \
  "--tenant or --source chooses one (a line then begins with the keys tenant\n" \
  "and source).\n"

namespace tool {

inline void add_network_options(CLI::App &command, NetworkFilter &filter) {
  CLI::Option *v2 = command.add_flag("--v2", filter.v2, "Only OSPFv2");
  command.add_flag("--v3", filter.v3, "Only OSPFv3")->excludes(v2);
  command.add_option("--area", filter.area, "Only this area, such as 0.0.0.1 or 1");
  command.add_option("--router", filter.router, "Only of this router, by its ID");
  command.add_option("--instance", filter.instance, "Only this instance ID, such as 64");
}

}  // namespace tool
