#include "commands/route_options.hpp"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdio>
#include <set>

#include "ospf_routes/read_databases.hpp"
#include "ospf_tables/input_error.hpp"
#include "views/route_list.hpp"
#include "views/text_forms.hpp"

namespace tool {

using namespace ospf_routes;
using ospf_tables::InputError;

namespace {

std::optional<std::uint8_t> parse_instance(const std::string &text) {
  if (text.empty()) return std::nullopt;
  std::uint8_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw UsageError("--instance", "", "\"" + text + "\"", "a number from 0 to 255");
  }
  return number;
}

std::string list_of(const std::set<std::string> &names) {
  std::string list;
  for (const std::string &name : names) list += (list.empty() ? "" : ", ") + name;
  return list;
}

}  // namespace

bool InstanceChoice::meets(std::uint8_t of_version, std::uint8_t of_instance) const {
  const auto wanted = parse_instance(instance);
  return (v2 == v3 || of_version == (v2 ? 2 : 3)) && (!wanted || of_instance == *wanted);
}

void add_instance_options(CLI::App &command, InstanceChoice &choice) {
  CLI::Option *v2 = command.add_flag("--v2", choice.v2, "Only OSPFv2");
  command.add_flag("--v3", choice.v3, "Only OSPFv3")->excludes(v2);
  command.add_option("--instance", choice.instance, "Only this instance ID, such as 64");
}

void WhatIf::add_to(CLI::App &app) {
  const auto add = [&](const char *name, std::vector<std::string> &to, const char *type,
                       const char *help) {
    app.add_option(name, to, help)
        ->type_name(type)
        ->take_all()
        ->allow_extra_args(false)
        ->group("What if (each may be given several times)");
  };
  add("--without", without_, "R1--R2", "The link between two routers failed");
  add("--without-router", without_routers_, "R", "A router left");
  add("--cost", costs_, "R1>R2=N", "The cost from one router to another was N");
  add("--with", with_, "R1--R2=N", "There was a link of cost N between two routers");
}

bool WhatIf::is_asked() const {
  return !without_.empty() || !without_routers_.empty() || !costs_.empty() || !with_.empty();
}

std::vector<Change> WhatIf::changes() const {
  std::vector<Change> all;
  const auto add = [&](const char *option, Change::Kind kind,
                       const std::vector<std::string> &texts) {
    for (const std::string &text : texts) {
      try {
        all.push_back(parse_change(kind, text));
      } catch (const ChangeError &error) {
        throw UsageError(std::string(option) + ": " + error.what());
      }
    }
  };
  add("--without", Change::Kind::without_link, without_);
  add("--without-router", Change::Kind::without_router, without_routers_);
  add("--cost", Change::Kind::cost, costs_);
  add("--with", Change::Kind::with_link, with_);
  return all;
}

std::vector<std::optional<Database>> WhatIf::applied(const std::vector<Database> &databases,
                                                     Rules rules) const {
  std::vector<std::optional<Database>> after(databases.size());
  const std::vector<Change> all = changes();
  if (all.empty()) return after;
  std::optional<std::string> why;
  bool any = false;
  for (std::size_t at = 0; at < databases.size(); ++at) {
    try {
      after[at] = changed(databases[at], all, rules);
      any = true;
    } catch (const ChangeError &error) {
      if (!why) why = instance_name(databases[at]) + ": " + error.what();
    }
  }
  if (!any && why) throw InputError("what if", *why);
  return after;
}

void WhatIf::replace(std::vector<Database> &databases, Rules rules) const {
  if (!is_asked()) return;
  std::vector<Database> after;
  for (std::optional<Database> &each : applied(databases, rules)) {
    if (each) after.push_back(std::move(*each));
  }
  databases = std::move(after);
}

std::vector<Database> chosen_databases(const std::vector<ospf_tables::LsdbEntry> &lsas,
                                       const InstanceChoice &choice, const char *command) {
  std::vector<Database> databases = read_databases(lsas);
  std::set<std::string> there;
  for (const Database &database : databases) there.insert(instance_name(database));
  std::erase_if(databases, [&](const Database &database) {
    return !choice.meets(database.version, database.instance);
  });
  if (!databases.empty()) return databases;
  if (there.empty()) throw InputError(command, "no LSAs are loaded, and routes follow from them");
  throw InputError(command, "",
                   std::string("no LSAs of OSPFv") +
                       (choice.v3   ? "3"
                        : choice.v2 ? "2"
                                    : "2 or 3") +
                       (choice.instance.empty() ? "" : ", instance " + choice.instance),
                   "one of what is loaded: " + list_of(there));
}

RouterId router_named(const std::string &option, const std::string &text,
                      const std::vector<Calculator> &calculators) {
  const auto wanted = parse_dotted(text);
  if (!wanted) throw UsageError(option, "", "\"" + text + "\"", "a router ID such as 10.0.0.1");
  std::set<RouterId> routers;
  for (const Calculator &calculator : calculators) {
    const auto &all = calculator.routers();
    routers.insert(all.begin(), all.end());
  }
  if (routers.contains(*wanted)) return *wanted;
  throw InputError(option, "", "\"" + text + "\"",
                   routers.empty() ? "a router, and no router-LSA is loaded"
                                   : "a router with a router-LSA; the nearest are " +
                                         nearest_routers(*wanted, routers));
}

std::string nearest_prefixes(const std::string &text, const std::vector<Calculator> &calculators,
                             const std::vector<Database> &databases) {
  constexpr std::size_t most = 3;
  std::set<std::pair<int, std::string>> near;  // the bits that are not shared, and the prefix
  for (std::size_t at = 0; at < databases.size(); ++at) {
    const Family family = databases[at].family;
    const auto wanted = parse_prefix(text, family);
    if (!wanted) continue;
    for (const RouterId router : calculators[at].routers()) {
      for (const Route &route : calculators[at].table(router).routes) {
        const Address &address = route.prefix.address;
        const int high = std::countl_zero(address.high ^ wanted->address.high);
        const int low = high < 64 ? 0 : std::countl_zero(address.low ^ wanted->address.low);
        if (route.prefix.length != 0) near.emplace(-high - low, text_of(route.prefix, family));
      }
    }
  }
  std::string list;
  std::size_t count = 0;
  for (const auto &[shared, prefix] : near) {
    if (count++ == most) break;
    list += (list.empty() ? "" : ", ") + prefix;
  }
  return list;
}

void tell_lacks(const char *command, const Database &database,
                const std::vector<std::string> &lacks) {
  constexpr std::size_t most = 20;
  std::fflush(stdout);
  for (std::size_t at = 0; at < std::min(most, lacks.size()); ++at) {
    std::fprintf(stderr, "ospf-harbor: %s: incomplete: %s: %s\n", command,
                 instance_name(database).c_str(), lacks[at].c_str());
  }
  if (lacks.size() > most) {
    std::fprintf(stderr, "ospf-harbor: %s: incomplete: %s: and %zu more of that kind\n", command,
                 instance_name(database).c_str(), lacks.size() - most);
  }
}

}  // namespace tool
