// `failures`: what every link and every router, failing alone, would cut off or lengthen.
#include "ospf_routes/failures.hpp"

#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "commands/route_options.hpp"
#include "views/progress.hpp"
#include "views/route_list.hpp"

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

std::string failure_name(const Failure &failure) {
  std::string name = dotted(failure.from);
  if (failure.kind == Failure::Kind::link) name += "--" + dotted(failure.to);
  if (failure.network != 0) name += " on network " + dotted(failure.network);
  return name;
}

std::string json_of_failure(const Database &database, const Failure &failure) {
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
      {"to", failure.kind == Failure::Kind::link ? Json(dotted(failure.to)) : Json(nullptr)},
      {"network", failure.network != 0 ? Json(dotted(failure.network)) : Json(nullptr)},
      {"cut_off", failure.cut_off},
      {"longer", failure.longer},
      {"added", failure.added},
      {"most_added", failure.most_added},
      {"isolated", isolated}};
  return line.dump();
}

void print_failures(const Database &database, const std::vector<Failure> &found,
                    std::size_t count) {
  std::printf("%s: failures, %zu of %zu; pairs of routers that are cut off or farther apart\n",
              instance_name(database).c_str(), count, found.size());
  std::printf("  %-10s  %-34s  %-15s  %8s  %8s  %10s  %s\n", "Fails", "What", "Area", "Cut off",
              "Longer", "Most added", "Isolated");
  for (std::size_t at = 0; at < count; ++at) {
    const Failure &failure = found[at];
    std::string isolated;
    for (const RouterId router : failure.isolated) {
      isolated += (isolated.empty() ? "" : ", ") + dotted(router);
    }
    std::printf("  %-10s  %-34s  %-15s  %8llu  %8llu  %10u  %s\n", kind_name(failure.kind),
                failure_name(failure).c_str(),
                failure.kind == Failure::Kind::router ? "-" : dotted(failure.area).c_str(),
                static_cast<unsigned long long>(failure.cut_off),
                static_cast<unsigned long long>(failure.longer), failure.most_added,
                isolated.empty() ? "-" : isolated.c_str());
  }
}

int tell_failures(ospf_tables::Session &session, const FailuresOptions &options) {
  std::vector<Database> databases = chosen_databases(session, options.choice, "failures");
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
        std::printf("%s\n", json_of_failure(database, found[at]).c_str());
      }
    } else {
      if (any) std::printf("\n");
      print_failures(database, found, count);
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
instance, area, from, to, network, cut_off, longer, added, most_added and
isolated.
)";

constexpr char failures_example[] = R"($ ospf-harbor failures --v2 --json --from site.pcap | head -1
{"failure":"router","version":2,"instance":0,"area":null,"from":"10.252.0.5",
"to":null,"network":null,"cut_off":24,"longer":2,"added":10,"most_added":5,
"isolated":["10.252.0.6","10.252.0.8"]}
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
