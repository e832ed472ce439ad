// `neighbors`, `interfaces`, `areas`, `routers`: one line a thing.
#include <memory>

#include "commands/command.hpp"
#include "commands/network_options.hpp"
#include "views/network_tables.hpp"
#include "views/text_forms.hpp"

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
    const bool any = options->json ? print_json(lists, stdout)
                                   : print(lists, screen_of_output(options->colour), stdout);
    if (any) return 0;
    std::fprintf(stderr, "ospf-harbor: %s: %sthere are none that the options ask for\n",
                 name.c_str(), site_part(session->named_site()).c_str());
    return 1;
  };
}

constexpr char neighbors_description[] =
    R"(Lists what each router says of its neighbours, or what packets show of them.
A star behind a state marks one that is inferred from something else than
the conversation itself.

A line of --json has the keys version, instance, area, router, router_name,
interface, neighbor_id, neighbor_name, address, priority, state (such as Full
or 2-Way), role (DR, Backup or DROther), dr and bdr as the neighbour declares
them, and evidence (answer, hello, exchange, database, flooding, role or
lasting). What nobody tells is null.
)" SITE_KEYS;

constexpr char interfaces_description[] =
    R"(Lists the interfaces of each router. Those of captures are named by router
and address.

A line of --json has the keys version, instance, area, router, router_name,
interface, address, type, state, cost, hello_interval, dead_interval,
priority, dr, bdr, passive, neighbors and full, which are counts. What nobody
tells is null.
)" SITE_KEYS;

constexpr char areas_description[] =
    R"(Lists the areas, with what router LSAs say of their kind.

A line of --json has the keys version, instance, area, kind (normal, stub,
totally stubby, NSSA or totally NSSA), routers (their IDs), border_routers,
as_boundary_routers, interfaces, neighbors, full and lsas, which are counts.
)" SITE_KEYS;

constexpr char routers_description[] =
    R"(Lists the routers that have LSAs, interfaces or neighbours.

A line of --json has the keys version, instance, router, router_name,
has_router_lsa, border, as_boundary, areas (their IDs), interfaces,
neighbors, full and lsas, which are counts.
)" SITE_KEYS;

constexpr Command list_command(const char *name, const char *sentence, Run (*set_up)(CLI::App &app),
                               const char *description) {
  return {name,  sentence,    Needs::tree, set_up,     Stands::everywhere,
          false, description, nullptr,     Sites::each};
}

}  // namespace

extern const Command neighbors_command, interfaces_command, areas_command, routers_command;
const Command neighbors_command =
    list_command("neighbors", "List neighbours and their states",
                 set_up_list<print_neighbors, print_neighbors_json>, neighbors_description);
const Command interfaces_command =
    list_command("interfaces", "List interfaces and their states",
                 set_up_list<print_interfaces, print_interfaces_json>, interfaces_description);
const Command areas_command =
    list_command("areas", "List areas, their kinds and what is in them",
                 set_up_list<print_areas, print_areas_json>, areas_description);
const Command routers_command =
    list_command("routers", "List routers and what they are",
                 set_up_list<print_routers, print_routers_json>, routers_description);

}  // namespace tool
