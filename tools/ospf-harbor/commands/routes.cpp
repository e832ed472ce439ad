// `routes`: the routing tables that routers must have by the link-state databases.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <set>

#include "commands/route_options.hpp"
#include "views/progress.hpp"
#include "views/route_list.hpp"

namespace tool {

using namespace ospf_routes;

namespace {

struct RoutesOptions {
  InstanceChoice choice;
  WhatIf what_if;
  std::string router;  // a router ID, or "all"
  std::string prefix;
  bool json = false;
  bool rfc1583 = false;
  bool loads = false;
};

// Prints what is asked for of one router after the other, and says at the end when it was nothing.
class RouteListing {
 public:
  RouteListing(const RoutesOptions &options, const RouterNames &names)
      : options_(options), names_(names), wanted_(PrefixChoice::parse(options.prefix)) {}

  void add(const Database &database, RoutingTable table) {
    std::erase_if(table.routes, [&](const Route &route) { return !is_wanted(route, database); });
    if (table.routes.empty()) return;
    if (!options_.json) {
      begin();
      print_route_table(database, table, names_, stdout);
    }
    for (const Route &route : table.routes) {
      if (options_.json) std::printf("%s\n", json_line(database, table, route, names_).c_str());
    }
    any_ = true;
  }

  void add(const Database &database, const RoutingTable &before, const RoutingTable &after) {
    std::vector<RouteChange> changes = differences(before, after);
    std::erase_if(changes, [&](const RouteChange &change) {
      return !is_wanted(change.before != nullptr ? *change.before : *change.after, database);
    });
    if (changes.empty()) return;
    if (!options_.json) {
      begin();
      print_route_changes(database, before, after, changes, names_, stdout);
    }
    for (const RouteChange &change : changes) {
      if (options_.json) {
        std::printf("%s\n", json_line(database, before, after, change, names_).c_str());
      }
    }
    any_ = true;
  }

  bool any() const { return any_; }

  void tell_nothing() const {
    std::string hint;
    for (const std::string &prefix : near_) {
      hint += (hint.empty() ? "; near it: " : ", ") + prefix;
    }
    std::fprintf(stderr, "ospf-harbor: routes: no route%s%s%s\n",
                 options_.prefix.empty() ? "" : (" to " + options_.prefix).c_str(),
                 options_.what_if.is_asked() ? " changes" : "", hint.c_str());
  }

 private:
  bool is_wanted(const Route &route, const Database &database) {
    if (wanted_.meets(route.prefix, database.family)) return true;
    if (wanted_.is_near(route.prefix, database.family)) {
      near_.insert(text_of(route.prefix, database.family));
    }
    return false;
  }

  void begin() {
    if (any_) std::printf("\n");
  }

  const RoutesOptions &options_;
  const RouterNames &names_;
  PrefixChoice wanted_;
  std::set<std::string> near_;
  bool any_ = false;
};

// What a change means beside the routes.
void tell_rest(const RoutesOptions &options, const Database &database, const Calculator &before,
               const Calculator &after, const RouterNames &names) {
  if (!options.json) print_cut_off(database, before, after, names, stdout);
  if (options.json && !options.loads) return;
  const std::vector<LoadChange> added = added_loads(before, after);
  if (!options.json) print_added_loads(database, added, names, stdout);
  for (const LoadChange &change : added) {
    if (options.json) std::printf("%s\n", json_line(database, change, names).c_str());
  }
}

int list_routes(ospf_tables::Session &session, const RoutesOptions &options) {
  const std::vector<ospf_tables::LsdbEntry> lsas = ospf_tables::read_lsdb(session);
  const RouterNames names = router_names(session, lsas);
  const std::vector<Database> databases = chosen_databases(lsas, options.choice, "routes");
  RouteListing listing(options, names);
  const Rules rules{options.rfc1583};
  std::vector<Calculator> calculators;
  for (const Database &database : databases) calculators.emplace_back(database, rules);
  std::optional<RouterId> one;
  if (options.router != "all") one = router_named("--router", options.router, calculators);
  const std::vector<std::optional<Database>> changes = options.what_if.applied(databases, rules);
  for (std::size_t at = 0; at < databases.size(); ++at) {
    const Calculator &before = calculators[at];
    if (options.what_if.is_asked() && !changes[at]) continue;
    std::optional<Calculator> after;
    if (changes[at]) after.emplace(*changes[at], rules);
    std::vector<std::string> lacks = before.lacks();
    // Lines that scroll by on the same terminal are progress enough.
    Progress progress(isatty(STDOUT_FILENO) == 0);
    std::size_t done = 0;
    for (const RouterId router : before.routers()) {
      if (one && router != *one) continue;
      if (++done; progress.is_due()) {
        progress.show(std::to_string(done) + " of " + std::to_string(before.routers().size()) +
                      " routers");
      }
      RoutingTable table = before.table(router);
      if (one) lacks.insert(lacks.end(), table.lacks.begin(), table.lacks.end());
      if (after) {
        listing.add(databases[at], table, after->table(router));
      } else {
        listing.add(databases[at], std::move(table));
      }
    }
    if (after) tell_rest(options, databases[at], before, *after, names);
    tell_lacks("routes", databases[at], lacks);
  }
  if (listing.any()) return 0;
  listing.tell_nothing();
  return options.what_if.is_asked() && options.prefix.empty() ? 0 : 1;
}

Run set_up_routes(CLI::App &app) {
  const auto options = std::make_shared<RoutesOptions>();
  app.add_option("--router", options->router, "Whose routes: a router ID, or all")->required();
  app.add_option("--prefix", options->prefix, prefix_help);
  add_instance_options(app, options->choice);
  options->what_if.add_to(app);
  app.add_flag("--rfc1583", options->rfc1583,
               "Prefer externals as routers do that are compatible with RFC 1583");
  CLI::Option *json = app.add_flag("--json", options->json, "One JSON object a line");
  app.add_flag("--loads", options->loads,
               "With --json and a what-if also which links carry more shortest paths")
      ->needs(json);
  return [options](ospf_tables::Session *session) { return list_routes(*session, *options); };
}

constexpr char routes_description[] =
    R"(Calculates the routing table of a router, or of all, from the link-state
databases, as RFC 2328, RFC 3101, RFC 5340 and RFC 5838 have it. What the
databases lack is told on standard error.

With a what-if the routes that change are told, then which routers lose
routes and which links carry more shortest paths.

A line of --json has the keys router, router_name, version, instance, prefix,
kind (intra, inter, external-1, external-2, nssa-1 or nssa-2), cost,
type2_cost, tag, area and next_hops, each with address (null for what is
attached) and interface. With a what-if it has change (lost, gained, longer,
shorter or other-way), router, router_name, version, instance, prefix, before
and after; and with --loads there are lines whose change is load, with area,
from, from_name, to, to_name or network, before and after.
)";

constexpr char routes_example[] =
    R"($ ospf-harbor routes --router 10.252.0.1 --prefix 10.252.0.5/32 --v2 --from site.pcap
OSPFv2: routes of router 10.252.0.1
  Prefix         Kind            Cost    Type 2         Tag  Area             Next hops
  10.252.0.5/32  inter             30         -           -  0.0.0.0          10.60.12.2 by 10.60.12.1

$ ospf-harbor routes --router all --without 10.252.0.1--10.252.0.2 --from site.pcap
)";

}  // namespace

extern const Command routes_command;
const Command routes_command{
    "routes",           "Calculate the routing tables that routers must have",
    Needs::tree,        set_up_routes,
    Stands::everywhere, false,
    routes_description, routes_example};

}  // namespace tool
