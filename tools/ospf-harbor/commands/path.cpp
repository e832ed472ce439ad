// `path`: the ways that packets take from one router, prefix or address to another.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "commands/picture_options.hpp"
#include "commands/route_options.hpp"
#include "ospf_routes/paths.hpp"
#include "views/named_json.hpp"
#include "views/network_lists.hpp"
#include "views/route_list.hpp"
#include "views/topology_way.hpp"

namespace tool {

using namespace ospf_routes;
using ospf_tables::InputError;

namespace {

// Of more paths than these nobody reads the list.
constexpr std::size_t most_paths = 64;

struct PathOptions {
  InstanceChoice choice;
  WhatIf what_if;
  PictureOptions picture;
  std::string from;
  std::string to;
  bool json = false;
  bool rfc1583 = false;
};

// An end of the way: a prefix, and the routers that are on it.
struct WayEnd {
  Prefix prefix;
  std::vector<RouterId> routers;
};

// What a text stands for in one database: a router ID, an address or a prefix. A text that may be a
// router ID and an address is the router, if there is one.
std::optional<WayEnd> end_named(const std::string &text, const Database &database,
                                const Calculator &calculator, Paths &paths) {
  const auto router = parse_dotted(text);
  const std::vector<RouterId> &routers = calculator.routers();
  if (router && std::binary_search(routers.begin(), routers.end(), *router)) {
    const auto own = paths.prefix_of(*router);
    return own ? std::optional(WayEnd{*own, {*router}}) : std::nullopt;
  }
  const auto prefix = parse_prefix(text, database.family);
  if (!prefix) return std::nullopt;
  return WayEnd{*prefix, paths.routers_on(*prefix)};
}

using Json = nlohmann::ordered_json;

class PathReport {
 public:
  PathReport(const PathOptions &options, const Database &database, Paths &paths,
             const RouterNames &names)
      : options_(options), database_(database), paths_(paths), names_(names) {}

  // Whether there is a way.
  bool tell(const WayEnd &from, const WayEnd &to) {
    bool any = false;
    for (const RouterId router : from.routers) {
      bool more = false;
      const std::vector<Path> there = paths_.between(router, to.prefix, most_paths, &more);
      for (const Path &path : there) {
        const std::optional<bool> symmetric = is_symmetric(there, path, router);
        if (options_.json) {
          std::printf("%s\n", json(router, path, symmetric).c_str());
        } else {
          print(router, to, path, symmetric);
        }
        any |= path.end != PathEnd::no_route && path.end != PathEnd::loop;
      }
      if (more) {
        std::fprintf(stderr, "ospf-harbor: path: there are more than %zu paths; these are some\n",
                     most_paths);
      }
    }
    return any;
  }

 private:
  // Whether the last router's way back is the same. Nothing when the first has no prefix to come
  // back to.
  std::optional<bool> is_symmetric(const std::vector<Path> &there, const Path &path,
                                   RouterId first) {
    const auto own = paths_.prefix_of(first);
    if (!own || path.end == PathEnd::no_route || path.end == PathEnd::loop) return std::nullopt;
    std::vector<Path> of_this_end;
    for (const Path &each : there) {
      if (each.last == path.last) of_this_end.push_back(each);
    }
    bool more = false;
    return are_symmetric(of_this_end, paths_.between(path.last, *own, most_paths, &more));
  }

  std::string text(const OwnInterface &interface) const {
    const std::string whole = next_hop_text({interface, std::nullopt, true}, database_.family);
    return whole == "attached" ? "" : whole.substr(std::string("attached, by ").size());
  }

  std::string json(RouterId from, const Path &path, std::optional<bool> symmetric) const {
    Json hops = Json::array();
    for (const PathStep &step : path.steps) {
      hops.push_back({{"router", dotted(step.router)},
                      {"router_name", name_or_null(step.router, names_)},
                      {"interface", text(step.interface)},
                      {"address", step.address ? Json(text_of(*step.address, database_.family))
                                               : Json(nullptr)},
                      {"area", dotted(step.area)},
                      {"cost", step.cost}});
    }
    const Json line = {
        {"from", options_.from},
        {"to", options_.to},
        {"version", database_.version},
        {"instance", database_.instance},
        {"first", dotted(from)},
        {"first_name", name_or_null(from, names_)},
        {"last", dotted(path.last)},
        {"last_name", name_or_null(path.last, names_)},
        {"end", name_of(path.end)},
        {"behind", path.behind ? Json(text_of(*path.behind, database_.family)) : Json(nullptr)},
        {"cost", path.cost()},
        {"symmetric", symmetric ? Json(*symmetric) : Json(nullptr)},
        {"hops", hops}};
    return line_of(line);
  }

  void print(RouterId from, const WayEnd &to, const Path &path, std::optional<bool> symmetric) {
    std::printf("%s%s: from %s to %s, cost %u\n", any_ ? "\n" : "",
                instance_name(database_).c_str(), labelled(from, names_).c_str(),
                text_of(to.prefix, database_.family).c_str(), path.cost());
    any_ = true;
    std::optional<AreaId> area;
    const int width = width_of_routers(path);
    for (const PathStep &step : path.steps) {
      const std::string address =
          step.address ? " to " + text_of(*step.address, database_.family) : "";
      std::printf("  %-*s  by %s%s, cost %u", width, labelled(step.router, names_).c_str(),
                  text(step.interface).c_str(), address.c_str(), step.cost);
      if (area != step.area) {
        std::printf(", %s area %s", area ? "enters" : "in", dotted(step.area).c_str());
      }
      area = step.area;
      std::printf("\n");
    }
    std::printf("  %-*s  %s\n", width, labelled(path.last, names_).c_str(), end_text(path).c_str());
    if (symmetric && !*symmetric) print_way_back(from, path.last);
  }

  int width_of_routers(const Path &path) const {
    std::size_t width = 15;
    for (const RouterId router : path.routers()) {
      width = std::max(width, labelled(router, names_).size());
    }
    return static_cast<int>(width);
  }

  void print_way_back(RouterId from, RouterId last) {
    bool more = false;
    std::printf("  the way back is another one:\n");
    for (const Path &path :
         paths_.between(last, paths_.prefix_of(from).value(), most_paths, &more)) {
      const char *before = "    ";
      for (const RouterId router : path.routers()) {
        std::printf("%s%s", before, labelled(router, names_).c_str());
        before = " > ";
      }
      std::printf(", cost %u\n", path.cost());
    }
  }

  std::string end_text(const Path &path) const {
    switch (path.end) {
      case PathEnd::arrives:
        return "has it";
      case PathEnd::leaves:
        return "announces it from outside";
      case PathEnd::forwards:
        return "sends it to " +
               (path.behind ? text_of(*path.behind, database_.family) : "a router") +
               ", which no router-LSA has";
      case PathEnd::loop:
        return "was on the way already: packets circle";
      default:
        return "has no route";
    }
  }

  const PathOptions &options_;
  const Database &database_;
  Paths &paths_;
  const RouterNames &names_;
  bool any_ = false;
};

[[noreturn]] void fail_on_end(const char *which, const std::string &text,
                              const std::vector<Calculator> &calculators,
                              const std::vector<Database> &databases) {
  const std::string near = nearest_prefixes(text, calculators, databases);
  if (near.empty() && parse_dotted(text)) router_named(which, text, calculators);
  throw InputError(which, "", "\"" + text + "\"",
                   "a router ID, an address or a prefix that routers of these databases have" +
                       (near.empty() ? "" : "; the nearest are " + near));
}

// Pictures of networks with the ways in them.
class PathPictures {
 public:
  PathPictures(ospf_tables::Session &session, const std::vector<ospf_tables::LsdbEntry> &lsas,
               const PathOptions &options)
      : options_(options), lsas_(lsas) {
    if (options.picture.is_asked()) lists_ = read_network(session, {});
  }

  // Whether there is a way in this one.
  bool add(const Database &database, Paths &paths, const WayEnd &from, const WayEnd &to) {
    if (!pictures_.empty() && !options_.picture.takes_all()) {
      std::fprintf(stderr, "ospf-harbor: path: this is %s; %s has both ends too\n",
                   title_of(pictures_.front().picture.instance).c_str(),
                   instance_name(database).c_str());
      return false;
    }
    std::vector<Path> all;
    bool more = false;
    for (const RouterId router : from.routers) {
      for (Path &path : paths.between(router, to.prefix, most_paths, &more)) {
        all.push_back(std::move(path));
      }
    }
    Topology topology = topology_of(database);
    add_lists(topology, lists_);
    Picture picture =
        picture_of(topology, {false, options_.picture.shows_addresses(), way_over(topology, all)});
    picture.title += "; from " + options_.from + " to " + options_.to;
    pictures_.push_back({std::move(picture), page_lsas(lsas_, topology.instance)});
    return std::ranges::any_of(all, [](const Path &path) {
      return path.end != PathEnd::no_route && path.end != PathEnd::loop;
    });
  }

  void put() const {
    if (!pictures_.empty()) options_.picture.put(pictures_);
  }

 private:
  const PathOptions &options_;
  const std::vector<ospf_tables::LsdbEntry> &lsas_;
  NetworkLists lists_;
  std::vector<PagePicture> pictures_;
};

int tell_paths(ospf_tables::Session &session, const PathOptions &options) {
  const std::vector<ospf_tables::LsdbEntry> lsas = ospf_tables::read_lsdb(session);
  const RouterNames names = router_names(session, lsas);
  std::vector<Database> databases = chosen_databases(lsas, options.choice, "path");
  const Rules rules{options.rfc1583};
  options.what_if.replace(databases, rules);
  std::vector<Calculator> calculators;
  for (const Database &database : databases) calculators.emplace_back(database, rules);
  bool any = false;
  PathPictures pictures(session, lsas, options);
  bool from_found = false;
  bool to_found = false;
  for (std::size_t at = 0; at < databases.size(); ++at) {
    Paths paths(calculators[at]);
    const auto from = end_named(options.from, databases[at], calculators[at], paths);
    const auto to = end_named(options.to, databases[at], calculators[at], paths);
    from_found |= from && !from->routers.empty();
    to_found |= to.has_value();
    tell_lacks("path", databases[at], calculators[at].lacks());
    if (!from || !to || from->routers.empty()) continue;
    if (options.picture.is_asked()) {
      any |= pictures.add(databases[at], paths, *from, *to);
      continue;
    }
    any |= PathReport(options, databases[at], paths, names).tell(*from, *to);
  }
  if (!from_found) fail_on_end("FROM", options.from, calculators, databases);
  if (!to_found) fail_on_end("TO", options.to, calculators, databases);
  pictures.put();
  if (any) return 0;
  const std::string near = nearest_prefixes(options.to, calculators, databases);
  std::fflush(stdout);
  std::fprintf(stderr, "ospf-harbor: path: no way from %s to %s%s\n", options.from.c_str(),
               options.to.c_str(), near.empty() ? "" : ("; prefixes near it: " + near).c_str());
  return 1;
}

Run set_up_path(CLI::App &app) {
  const auto options = std::make_shared<PathOptions>();
  app.add_option("FROM", options->from, "A router ID, an address or a prefix")->required();
  app.add_option("TO", options->to, "The same")->required();
  add_instance_options(app, options->choice);
  options->what_if.add_to(app);
  app.add_flag("--rfc1583", options->rfc1583,
               "Prefer externals as routers do that are compatible with RFC 1583");
  CLI::Option *json =
      app.add_flag("--json", options->json, "One JSON object a line, one line a path");
  CLI::Option_group *form = options->picture.add_to(app);
  form->require_option(0, 1);
  for (CLI::Option *each : form->get_options()) json->excludes(each);
  return [options](ospf_tables::Session *session) { return tell_paths(*session, *options); };
}

constexpr char path_description[] =
    R"(Tells every equal-cost way, hop by hop, with what each link costs and the
areas that it enters, and where the way back is another one. --dot, --svg,
--png, --pdf and --html draw the network with the ways in it.

A line of --json is one way: from, to, version, instance, first, first_name,
last, last_name, end (arrives, leaves, forwards, no-route or loop), behind,
cost, symmetric and hops, each with router, router_name, interface, address,
area and cost.
)";

constexpr char path_example[] = R"($ ospf-harbor path 10.252.0.1 10.252.0.6 --v2 --from site.pcap
OSPFv2: from 10.252.0.1 to 10.252.0.6/32, cost 40
  10.252.0.1       by 10.60.12.1 to 10.60.12.2, cost 10, in area 0.0.0.0
  10.252.0.2       by 10.60.23.2 to 10.60.23.3, cost 10, enters area 0.0.0.1
  10.252.0.3       by 10.60.35.3 to 10.60.35.5, cost 10
  10.252.0.5       by 10.60.56.5 to 10.60.56.6, cost 10, enters area 0.0.0.2
  10.252.0.6       has it

OSPFv2: from 10.252.0.1 to 10.252.0.6/32, cost 40
  10.252.0.1       by 10.60.12.1 to 10.60.12.2, cost 10, in area 0.0.0.0
  10.252.0.2       by 10.60.24.2 to 10.60.24.4, cost 10, enters area 0.0.0.1
  10.252.0.4       by 10.60.45.4 to 10.60.45.5, cost 10
  10.252.0.5       by 10.60.56.5 to 10.60.56.6, cost 10, enters area 0.0.0.2
  10.252.0.6       has it
)";

}  // namespace

extern const Command path_command;
const Command path_command{"path",
                           "Tell the ways that packets take, hop by hop",
                           Needs::tree,
                           set_up_path,
                           Stands::everywhere,
                           false,
                           path_description,
                           path_example};

}  // namespace tool
