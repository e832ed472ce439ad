// `neighbors`, `interfaces`, `areas`, `routers`: one line a thing.
#include <memory>

#include "commands/command.hpp"
#include "commands/network_options.hpp"
#include "views/network_tables.hpp"

namespace tool {

namespace {

using Print = bool (*)(const NetworkLists &, const Screen &, std::FILE *);
using PrintJson = bool (*)(const NetworkLists &, std::FILE *);

template <Print print, PrintJson print_json>
Run set_up_list(CLI::App &app) {
  struct Options {
    NetworkFilter filter;
    std::string colour = "auto";
    bool json = false;
  };
  const auto options = std::make_shared<Options>();
  add_network_options(app, options->filter);
  if (print == print_neighbors || print == print_interfaces) {
    app.add_flag("--all", options->filter.all, "Also those that are Down, which routers forget");
  }
  add_colour_option(app, options->colour);
  app.add_flag("--json", options->json, "One JSON object a line");
  return [options, name = app.get_name()](ospf_tables::Session *session) {
    const NetworkLists lists = read_network(*session, options->filter);
    const bool any = options->json
                         ? print_json(lists, stdout)
                         : print(lists, screen_of_output(options->colour), stdout);
    if (any) return 0;
    std::fprintf(stderr, "ospf-harbor: %s: there are none that the options ask for\n",
                 name.c_str());
    return 1;
  };
}

}  // namespace

extern const Command neighbors_command, interfaces_command, areas_command, routers_command;
const Command neighbors_command{"neighbors", "List neighbours and their states", Needs::tree,
                                set_up_list<print_neighbors, print_neighbors_json>};
const Command interfaces_command{"interfaces", "List interfaces and their states", Needs::tree,
                                 set_up_list<print_interfaces, print_interfaces_json>};
const Command areas_command{"areas", "List areas, their kinds and what is in them", Needs::tree,
                            set_up_list<print_areas, print_areas_json>};
const Command routers_command{"routers", "List routers and what they are", Needs::tree,
                              set_up_list<print_routers, print_routers_json>};

}  // namespace tool
