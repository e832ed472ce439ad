// `diff`: what two sources, or two times of one capture, say differently: LSAs, then what that
// means for the network, and for the routes of a router.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "commands/route_options.hpp"
#include "commands/source_choice.hpp"
#include "ospf_routes/facts.hpp"
#include "ospf_routes/read_databases.hpp"
#include "ospf_tables/lsdb_view.hpp"
#include "views/lsa_differences.hpp"
#include "views/named_json.hpp"
#include "views/route_list.hpp"

namespace tool {

using namespace ospf_routes;
using ospf_tables::LsdbEntry;

namespace {

struct DiffOptions {
  std::vector<std::string> sources;
  std::vector<std::string> times;
  std::string router;
  bool v2 = false;
  bool v3 = false;
  bool every_field = false;
  bool json = false;
  std::string names;
};

// One side: the tables of a source, as far as the databases go.
struct Side {
  ospf_tables::Session session;
  std::vector<LsdbEntry> lsas;
  std::vector<Database> databases;
  RouterNames names;

  void load(const std::string &source, const std::string &at, const DiffOptions &options) {
    load_sources(session, {source}, {at, nullptr});
    if (!options.names.empty()) read_names(options.names, session.names());
    session.reading([&] { lsas = ospf_tables::read_lsdb(session); });
    names = router_names(session, lsas);
    std::erase_if(lsas, [&](const LsdbEntry &entry) {
      return options.v2 != options.v3 && entry.lsa.version != (options.v2 ? 2u : 3u);
    });
    databases = read_databases(lsas);
  }
};

// Which source and which time each side is.
struct Sides {
  std::string sources[2];
  std::string times[2];
};

Sides sides_of(const DiffOptions &options) {
  Sides sides;
  const std::size_t count = options.sources.size();
  const std::size_t times = options.times.size();
  if (count == 1 && times == 0) {
    throw UsageError("diff", "", "one source and no --at",
                     "two sources, or one capture and one or two times of it");
  }
  if (count == 2 && times == 1) {
    throw UsageError("diff", "--at", "one time for two sources", "none, or one for each");
  }
  sides.sources[0] = options.sources.front();
  sides.sources[1] = options.sources.back();
  // One time of one capture is held against its end.
  for (std::size_t at = 0; at < times; ++at) sides.times[at] = options.times[at];
  return sides;
}

nlohmann::ordered_json json_or_null(const std::string &text) {
  return text.empty() ? nlohmann::ordered_json(nullptr) : nlohmann::ordered_json(text);
}

// The other router of an adjacency or a cost, which may be one over a virtual link; not a network.
std::optional<RouterId> other_router(const FactChange &change) {
  if (change.other.starts_with("network ")) return std::nullopt;
  return parse_dotted(change.other.substr(change.other.rfind(' ') + 1));
}

std::string json_line(const Database &database, const FactChange &change,
                      const RouterNames &names) {
  using Json = nlohmann::ordered_json;
  const auto other = other_router(change);
  const Json line = {
      {"diff", name_of(change.subject)},
      {"change", name_of(change.change)},
      {"version", database.version},
      {"instance", database.instance},
      {"area", change.area ? Json(dotted(*change.area)) : Json(nullptr)},
      {"router", dotted(change.router)},
      {"router_name", name_or_null(change.router, names)},
      {"to", json_or_null(change.other)},
      {"to_name", other ? name_or_null(*other, names) : Json(nullptr)},
      {"prefix", change.prefix ? Json(text_of(*change.prefix, database.family)) : Json(nullptr)},
      {"before", json_or_null(change.before)},
      {"after", json_or_null(change.after)}};
  return line_of(line);
}

void print_fact_change(const Database &database, const FactChange &change,
                       const RouterNames &names) {
  std::string text = labelled(change.router, names);
  if (!change.other.empty()) {
    text += " to " + labelled(change.other, {other_router(change).value_or(0)}, names);
  }
  if (change.prefix) text += ": " + text_of(*change.prefix, database.family);
  if (change.subject != FactChange::Subject::adjacency) {
    if (change.change == FactChange::Change::changed) {
      text += ", " + change.before + " before, " + change.after + " after";
    } else {
      text += ", " + change.before + change.after;
    }
  }
  if (change.area) text += " (area " + dotted(*change.area) + ")";
  std::printf("  %-7s  %-9s  %s\n", name_of(change.change), name_of(change.subject), text.c_str());
}

class DiffListing {
 public:
  DiffListing(const DiffOptions &options, const RouterNames &names)
      : options_(options), names_(names) {}

  void add_lsas(const Side &before, const Side &after) {
    const auto changes = lsa_changes(before.lsas, after.lsas, options_.every_field);
    if (changes.empty()) return;
    begin("link-state databases");
    for (const LsaChange &change : changes) {
      if (options_.json) {
        std::printf("%s\n", tool::json_line(change, names_).c_str());
      } else {
        print_lsa_change(change, names_, stdout);
      }
    }
  }

  void add_facts(const Database &before, const Database &after) {
    const auto changes = fact_changes(before, after);
    if (changes.empty()) return;
    begin(instance_name(before) + ": network");
    for (const FactChange &change : changes) {
      if (options_.json) {
        std::printf("%s\n", json_line(before, change, names_).c_str());
      } else {
        print_fact_change(before, change, names_);
      }
    }
  }

  void add_routes(const Database &before, const Database &after, RouterId router) {
    const RoutingTable one = Calculator(before).table(router);
    const RoutingTable other = Calculator(after).table(router);
    const auto changes = differences(one, other);
    if (changes.empty()) return;
    if (!options_.json) {
      begin("");
      print_route_changes(before, one, other, changes, names_, stdout);
    }
    any_ = true;
    for (const RouteChange &change : changes) {
      if (!options_.json) break;
      auto line =
          nlohmann::ordered_json::parse(tool::json_line(before, one, other, change, names_));
      nlohmann::ordered_json first = {{"diff", "route"}};
      first.update(line);
      std::printf("%s\n", line_of(first).c_str());
    }
  }

  bool any() const { return any_; }

 private:
  void begin(const std::string &heading) {
    if (!options_.json && any_) std::printf("\n");
    if (!options_.json && !heading.empty()) std::printf("%s\n", heading.c_str());
    any_ = true;
  }

  const DiffOptions &options_;
  const RouterNames &names_;
  bool any_ = false;
};

// Both sides' instances, one that a side lacks as an empty one.
std::vector<std::pair<Database, Database>> paired(const Side &before, const Side &after) {
  std::vector<std::pair<Database, Database>> pairs;
  const auto same = [](const Database &a, const Database &b) {
    return a.version == b.version && a.instance == b.instance;
  };
  const auto empty = [](const Database &like) {
    return Database{like.version, like.family, like.instance, {}, {}, {}};
  };
  for (const Database &one : before.databases) {
    const auto other = std::ranges::find_if(after.databases,
                                            [&](const Database &each) { return same(one, each); });
    pairs.emplace_back(one, other != after.databases.end() ? *other : empty(one));
  }
  for (const Database &other : after.databases) {
    const bool known = std::ranges::any_of(before.databases,
                                           [&](const Database &each) { return same(other, each); });
    if (!known) pairs.emplace_back(empty(other), other);
  }
  return pairs;
}

RouterId router_of_either(const std::string &text, const Side &before, const Side &after) {
  std::vector<Calculator> calculators;
  for (const Side *side : {&before, &after}) {
    for (const Database &database : side->databases) calculators.emplace_back(database);
  }
  return router_named("--router", text, calculators);
}

int tell_differences(const DiffOptions &options) {
  const Sides sides = sides_of(options);
  Side before;
  Side after;
  before.load(sides.sources[0], sides.times[0], options);
  after.load(sides.sources[1], sides.times[1], options);
  std::optional<RouterId> router;
  if (!options.router.empty()) router = router_of_either(options.router, before, after);
  // A router that the later side names otherwise has that name.
  RouterNames names = after.names;
  names.insert(before.names.begin(), before.names.end());
  DiffListing listing(options, names);
  listing.add_lsas(before, after);
  for (const auto &[one, other] : paired(before, after)) {
    listing.add_facts(one, other);
    if (!router) continue;
    listing.add_routes(one, other, *router);
    std::vector<std::string> lacks = Calculator(one).lacks();
    const Calculator second(other);
    for (const std::string &each : second.lacks()) {
      if (std::ranges::find(lacks, each) == lacks.end()) lacks.push_back(each);
    }
    tell_lacks("diff", one, lacks);
  }
  return listing.any() ? 1 : 0;
}

Run set_up_diff(CLI::App &app) {
  const auto options = std::make_shared<DiffOptions>();
  app.add_option("SOURCE", options->sources,
                 "Two of what --from takes elsewhere, or one capture and times of it")
      ->required()
      ->expected(1, 2);
  app.add_option("--at", options->times,
                 "A time for each source, or one or two of one capture; the second is its end "
                 "without it")
      ->expected(1)
      ->take_all()
      ->allow_extra_args(false);
  app.add_option("--router", options->router, "Also how the routes of this router differ");
  CLI::Option *v2 = app.add_flag("--v2", options->v2, "Only OSPFv2");
  app.add_flag("--v3", options->v3, "Only OSPFv3")->excludes(v2);
  app.add_flag("--every-field", options->every_field,
               "Also ages, sequence numbers and checksums of LSAs");
  add_names_option(app, options->names);
  app.add_flag("--json", options->json, "One JSON object a line");
  return [options](ospf_tables::Session *) { return tell_differences(*options); };
}

constexpr char diff_description[] =
    R"(Tells which LSAs came, went or changed, with the fields that changed as lsdb
--json names them; then what that means: adjacencies, costs, prefixes and
externals; then, with --router, the routes of that router. Ages, sequence
numbers and checksums are left aside unless --every-field is given.

The status is 0 when both say the same, 1 when they differ and 2 for
trouble, such as a source that cannot be read.

A line of --json has the key diff: lsa (change, version, instance, area,
scope, type, type_name, lsa_id, adv_router, adv_router_name and fields, each
with field, before and after), adjacency, cost, prefix or external (change,
version, instance, area, router, router_name, to, to_name, prefix, before and
after), or route, with the keys of a change of routes --json.
)";

constexpr char diff_example[] =
    R"($ ospf-harbor diff site.pcap --at 05:27:01 --at 05:27:13 --router 10.242.0.1
link-state databases
  changed  External 192.0.2.0 of 10.242.0.3 (v2)
           body.external[0].metric
             before  22
             after   23

OSPFv2: network
  changed  external   10.242.0.3: 192.0.2.0/24, type 2, metric 22 before, type 2, metric 23 after

OSPFv2: routes of router 10.242.0.1 that change
  longer     192.0.2.0/24
    before  external-2 22+20 10.94.1.2 by 10.94.1.1
    after   external-2 23+20 10.94.1.2 by 10.94.1.1
)";

}  // namespace

extern const Command diff_command;
const Command diff_command{"diff",
                           "Tell what two sources, or two times of a capture, say differently",
                           Needs::nothing,
                           set_up_diff,
                           Stands::everywhere,
                           false,
                           diff_description,
                           diff_example};

}  // namespace tool
