// `failures`: what every link and every router, failing alone, would cut off or lengthen.
#include "ospf_routes/failures.hpp"

#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "commands/route_options.hpp"
#include "views/named_json.hpp"
#include "views/progress.hpp"
#include "views/route_list.hpp"
#include "views/table.hpp"

namespace tool {

using namespace ospf_routes;

namespace {

struct FailuresOptions {
  InstanceChoice choice;
  WhatIf what_if;
  std::size_t most = 20;
  bool all = false;
  bool json = false;
};

const char *kind_name(Failure::Kind kind) {
  constexpr const char *names[] = {"link", "attachment", "router"};
  return names[static_cast<int>(kind)];
}

std::string failure_name(const Failure &failure, const RouterNames &names) {
  std::string name = labelled(failure.from, names);
  const char *between = name == dotted(failure.from) ? "--" : " -- ";
  if (failure.kind == Failure::Kind::link) name += between + labelled(failure.to, names);
  if (failure.network != 0) name += " on network " + dotted(failure.network);
  return name;
}

std::string json_of_failure(const Database &database, const Failure &failure,
                            const RouterNames &names) {
  using Json = nlohmann::ordered_json;
  const bool is_router = failure.kind == Failure::Kind::router;
  Json isolated = Json::array();
  for (const RouterId router : failure.isolated) isolated.push_back(dotted(router));
  const Json line = {
      {"failure", kind_name(failure.kind)},
      {"version", database.version},
      {"instance", database.instance},
      {"area", is_router ? Json(nullptr) : Json(dotted(failure.area))},
      {"from", dotted(failure.from)},
      {"from_name", name_or_null(failure.from, names)},
      {"to", failure.kind == Failure::Kind::link ? Json(dotted(failure.to)) : Json(nullptr)},
      {"to_name", name_or_null(failure.to, names)},
      {"network", failure.network != 0 ? Json(dotted(failure.network)) : Json(nullptr)},
      {"cut_off", failure.cut_off},
      {"longer", failure.longer},
      {"added", failure.added},
      {"most_added", failure.most_added},
      {"isolated", isolated},
      {"isolated_names", names_or_null(failure.isolated, names)}};
  return line_of(line);
}

void print_failures(const Database &database, const std::vector<Failure> &found, std::size_t count,
                    const RouterNames &names) {
  std::printf("%s: failures, %zu of %zu; pairs of routers that are cut off or farther apart\n",
              instance_name(database).c_str(), count, found.size());
  Table rows({{"Fails"},
              {"What"},
              {"Area"},
              {"Cut off", true},
              {"Longer", true},
              {"Most added", true},
              {"Isolated"}});
  for (std::size_t at = 0; at < count; ++at) {
    const Failure &failure = found[at];
    std::string isolated;
    for (const RouterId router : failure.isolated) {
      isolated += (isolated.empty() ? "" : ", ") + labelled(router, names);
    }
    rows.add({kind_name(failure.kind), failure_name(failure, names),
              failure.kind == Failure::Kind::router ? "-" : dotted(failure.area),
              std::to_string(failure.cut_off), std::to_string(failure.longer),
              std::to_string(failure.most_added), isolated.empty() ? "-" : isolated});
  }
  rows.print(stdout, {});
}

int tell_failures(ospf_tables::Session &session, const FailuresOptions &options) {
  const std::vector<ospf_tables::LsdbEntry> lsas = ospf_tables::read_lsdb(session);
  const RouterNames names = router_names(session, lsas);
  std::vector<Database> databases = chosen_databases(lsas, options.choice, "failures");
  options.what_if.replace(databases, {});
  bool any = false;
  for (const Database &database : databases) {
    const Calculator calculator(database);
    Progress progress;
    const std::vector<Failure> found =
        all_failures(calculator, [&](std::size_t done, std::size_t all) {
          if (!progress.is_due()) return;
          progress.show(std::to_string(done) + " of " + std::to_string(all) + " failures");
        });
    progress.clear();
    // All that cut something off, and of the others those that add most.
    std::size_t count = 0;
    while (count < found.size() && (options.all || found[count].cut_off > 0 ||
                                    (count < options.most && found[count].longer > 0))) {
      ++count;
    }
    if (options.json) {
      for (std::size_t at = 0; at < count; ++at) {
        std::printf("%s\n", json_of_failure(database, found[at], names).c_str());
      }
    } else {
      if (any) std::printf("\n");
      print_failures(database, found, count, names);
    }
    any = true;
    tell_lacks("failures", database, calculator.lacks());
  }
  return 0;
}

Run set_up_failures(CLI::App &app) {
  const auto options = std::make_shared<FailuresOptions>();
  add_instance_options(app, options->choice);
  options->what_if.add_to(app);
  CLI::Option *all = app.add_flag("--all", options->all, "Also failures that change nothing");
  app.add_option("--most", options->most,
                 "How many to list, beside all that cut something off; 20 without it")
      ->excludes(all);
  app.add_flag("--json", options->json, "One JSON object a line");
  return [options](ospf_tables::Session *session) { return tell_failures(*session, *options); };
}

constexpr char failures_description[] =
    R"(Takes away each link and each router alone, and tells how many pairs of the
routers that are left no longer reach each other or are farther apart. What
cuts off most comes first.

A line of --json has the keys failure (link, attachment or router), version,
instance, area, from, from_name, to, to_name, network, cut_off, longer, added,
most_added, isolated and isolated_names.
)";

constexpr char failures_example[] = R"($ ospf-harbor failures --v2 --json --from site.pcap | head -1
{"failure":"router","version":2,"instance":0,"area":null,"from":"10.252.0.5",
"from_name":null,"to":null,"to_name":null,"network":null,"cut_off":24,"longer":2,
"added":10,"most_added":5,"isolated":["10.252.0.6","10.252.0.8"],
"isolated_names":[null,null]}
)";

}  // namespace

extern const Command failures_command;
const Command failures_command{
    "failures",
    "Tell what each link and each router, failing alone, would cut off or lengthen",
    Needs::tree,
    set_up_failures,
    Stands::everywhere,
    false,
    failures_description,
    failures_example};

}  // namespace tool
