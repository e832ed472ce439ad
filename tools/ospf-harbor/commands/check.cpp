// `check`: what is wrong with a network, by its databases and, of captures, by what its routers
// sent.
#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <tuple>

#include "commands/route_options.hpp"
#include "commands/source_choice.hpp"
#include "ospf_findings/databases.hpp"
#include "ospf_findings/heard.hpp"
#include "ospf_findings/interfaces.hpp"
#include "ospf_routes/read_databases.hpp"
#include "ospf_tables/lsdb_view.hpp"
#include "views/finding_list.hpp"
#include "views/network_lists.hpp"
#include "views/text_forms.hpp"

namespace tool {

using ospf_findings::Finding;
using ospf_findings::Severity;

namespace {

struct CheckOptions {
  SourceChoice source;
  InstanceChoice choice;
  WhatIf what_if;
  std::string fail_on = "warning";
  std::string least = "notice";
  bool json = false;
};

Severity parse_severity(const char *option, const std::string &text) {
  for (const Severity each : {Severity::notice, Severity::warning, Severity::error}) {
    if (text == ospf_findings::name_of(each)) return each;
  }
  throw UsageError(option, "", "\"" + text + "\"", "notice, warning or error");
}

void append(std::vector<Finding> &to, std::vector<Finding> from) {
  std::move(from.begin(), from.end(), std::back_inserter(to));
}

std::string name_of(const InterfaceLine &line) {
  if (line.is_observed) return line.name.substr(0, line.name.find('%'));
  return ospf_routes::dotted(line.router) + " " + line.name;
}

// What people call an interface of one that was observed has its address in it.
std::string address_of(const InterfaceLine &line) {
  if (!line.address.empty() || !line.is_observed) return line.address;
  const std::string behind = line.name.substr(line.name.find('@') + 1);
  return behind.substr(0, behind.find_first_of("%>+"));
}

ospf_findings::InterfaceFacts facts_of(const InterfaceLine &line) {
  const auto family =
      line.instance.version == 2 ? ospf_routes::Family::ipv4 : ospf_routes::Family::ipv6;
  ospf_findings::InterfaceFacts facts;
  facts.version = line.instance.version;
  facts.instance = line.instance.instance_id;
  facts.area = line.area;
  facts.router = line.router;
  facts.name = name_of(line);
  facts.address = ospf_routes::parse_address(address_of(line), family);
  const auto prefix = ospf_routes::parse_prefix(line.prefix, family);
  if (prefix && prefix->length < ospf_routes::width(family)) facts.prefixes = {*prefix};
  if (!line.type.empty()) {
    facts.elects = line.type == "broadcast" || line.type == "non-broadcast";
  }
  facts.hello_interval = line.hello_interval;
  facts.dead_interval = line.dead_interval;
  if (!line.mtu_ignored) facts.mtu = line.mtu;
  facts.authentication = line.authentication;
  for (const NeighborLine &neighbor : line.neighbors) {
    facts.neighbors.push_back({neighbor.router_id,
                               ospf_routes::parse_address(neighbor.address, family),
                               neighbor.state >= NBR_STATE_INIT,
                               neighbor.state >= NBR_STATE_TWO_WAY, neighbor.is_full()});
  }
  return facts;
}

// Prefixes of OSPFv3 links, by the row of the interface that announces them: its area, its name and
// its router.
using LinkPrefixes = std::map<std::tuple<std::uint32_t, std::string, std::uint32_t>,
                              std::vector<ospf_routes::Prefix>>;

LinkPrefixes link_prefixes(const std::vector<ospf_tables::LsdbEntry> &lsas) {
  LinkPrefixes prefixes;
  for (const ospf_tables::LsdbEntry &entry : lsas) {
    const auto *link = std::get_if<ospf_tables::LinkViewV3>(&entry.lsa.body);
    if (link == nullptr || !entry.interface) continue;
    auto &its = prefixes[{entry.area.value_or(0), *entry.interface, entry.lsa.adv_router}];
    for (const ospf_tables::PrefixView &each : link->prefixes) {
      const auto prefix = ospf_routes::parse_prefix(each.prefix, ospf_routes::Family::ipv6);
      if (prefix) its.push_back(*prefix);
    }
  }
  return prefixes;
}

// Virtual links have no link of their own, and an interface without neighbours has nobody to differ
// from.
bool takes_part(const InterfaceLine &line) {
  return !line.silent && !line.passive && line.type != "virtual" && line.type != "loopback" &&
         line.state != "Down" && line.state != "Loopback";
}

std::vector<Finding> between_interfaces(ospf_tables::Session &session,
                                        const std::vector<ospf_tables::LsdbEntry> &lsas,
                                        const std::vector<ospf_routes::Database> &databases) {
  NetworkFilter all;
  all.all = true;
  const LinkPrefixes prefixes = link_prefixes(lsas);
  std::vector<ospf_findings::InterfaceFacts> interfaces;
  for (const InterfaceLine &line : read_network(session, all).interfaces) {
    if (!takes_part(line)) continue;
    interfaces.push_back(facts_of(line));
    const auto its = prefixes.find({line.area, line.name, line.router});
    if (its != prefixes.end()) interfaces.back().prefixes = its->second;
  }
  return ospf_findings::findings_of(std::move(interfaces), databases);
}

std::vector<Finding> all_findings(ospf_tables::Session &session,
                                  const std::vector<ospf_tables::LsdbEntry> &lsas,
                                  const CheckOptions &options, const Heard &heard) {
  // Routers that do not become neighbours send hellos alone, and those show why.
  const bool hellos_alone = lsas.empty() && heard.timeline != nullptr;
  std::vector<ospf_routes::Database> databases;
  if (!hellos_alone) databases = chosen_databases(lsas, options.choice, "check");
  std::vector<Finding> findings;
  // What has been heard says nothing of a network that is not.
  if (!options.what_if.is_asked()) {
    append(findings, ospf_findings::findings_of(lsas));
    if (heard.timeline != nullptr) {
      append(findings, ospf_findings::findings_of(*heard.timeline, heard.events));
    } else {
      append(findings, between_interfaces(session, lsas, databases));
    }
    append(findings, heard.between_routers);
    std::erase_if(findings, [&](const Finding &each) {
      return !options.choice.meets(each.version, each.instance);
    });
  }
  options.what_if.replace(databases, {});
  for (const ospf_routes::Database &database : databases) {
    const ospf_routes::Calculator calculator(database);
    append(findings, ospf_findings::findings_of(database, calculator, lsas));
    append(findings, ospf_findings::findings_of(heard.configurations, database, calculator));
  }
  ospf_findings::sort_findings(findings);
  return findings;
}

void print_findings(const std::vector<Finding> &findings, const CheckOptions &options,
                    const Heard &heard, const RouterNames &names) {
  const Severity least = parse_severity("--least", options.least);
  std::array<std::size_t, 3> counts{};
  for (const Finding &finding : findings) {
    ++counts[static_cast<std::size_t>(finding.severity)];
    if (finding.severity < least) continue;
    if (options.json) {
      std::printf("%s\n", json_line(finding, heard.captures, names).c_str());
    } else {
      print_finding(finding, heard.captures, names, stdout);
      std::printf("\n");
    }
  }
  if (options.json) return;
  std::printf("%s, %s, %s\n", counted(counts[2], "error", "errors").c_str(),
              counted(counts[1], "warning", "warnings").c_str(),
              counted(counts[0], "notice", "notices").c_str());
}

int check_network(ospf_tables::Session &session, const CheckOptions &options) {
  const Severity fail_on = parse_severity("--fail-on", options.fail_on);
  parse_severity("--least", options.least);
  Heard heard;
  // 1 says that something was found, so what is read only in part has 2.
  int status = options.source.load(session, "check", &heard) == 0 ? 0 : 2;
  session.reading([&] {
    const std::vector<ospf_tables::LsdbEntry> lsas = ospf_tables::read_lsdb(session);
    const std::vector<Finding> findings = all_findings(session, lsas, options, heard);
    print_findings(findings, options, heard, router_names(session, lsas));
    for (const Finding &finding : findings) {
      if (finding.severity >= fail_on) status = std::max(status, 1);
    }
  });
  return status;
}

Run set_up_check(CLI::App &app) {
  const auto options = std::make_shared<CheckOptions>();
  options->source.add_to(app);
  add_instance_options(app, options->choice);
  app.add_option("--fail-on", options->fail_on,
                 "The status is 1 when something is found that is as bad as this, or worse: "
                 "notice, warning (without it) or error");
  app.add_option("--least", options->least, "Show only what is as bad as this, or worse");
  app.add_flag("--json", options->json, "One JSON object a line");
  options->what_if.add_to(app);
  return [options](ospf_tables::Session *session) { return check_network(*session, *options); };
}

constexpr char check_description[] =
    R"(Looks at the link-state databases and, of captures, at what the routers
sent: links that one end tells of, interfaces of neighbours that differ in
timers, masks, MTU, area, type or authentication, router IDs and addresses
that two routers have, databases that differ between routers, virtual links
without a transit area, areas that are split or without backbone, forwarding
addresses that are out of reach, externals of two routers at one cost,
ranges that are unused or overlap, LSAs that flap, sequence numbers that
end, wrong checksums. Of a router's configuration frr.conf beside its
answers ranges and virtual links are read. Without packets the interfaces of
neighbours are compared by what routers said of themselves; trees and stores
hold no MTU, masks as far as LSAs show them, and of authentication only that
there is one.

An error makes routes wrong or missing; a warning does harm or will; a
notice is sound and yet worth a look. With a what-if the databases of the
network that would be are looked at, and nothing that was sent. The status
is 1 when something is found that is as bad as --fail-on says, and 2 for
trouble, such as a source that cannot be read, or only in part.

A line of --json has the keys severity, kind, version, instance, area,
routers, router_names, where, field (what interfaces differ in), what, lsas,
packets (each with file and packet, its number) and look_at.
)";

constexpr char check_example[] = R"($ ospf-harbor check --v2 --least error --from site.pcap
error: duplicate_router_id (OSPFv2, area 0.0.0.0)
  where    10.243.0.14
  what     its router-LSA goes between contents that share no neighbour, 11
           times in 65 s: two routers have this ID
  seen in  Router 10.243.0.14 of 10.243.0.14 in area 0.0.0.0; packet 25, 25,
           136, 192, 255, 298, 365, 402
  look at  the router IDs that are configured on the routers named

1 error, 1 warning, 0 notices
)";

}  // namespace

extern const Command check_command;
const Command check_command{"check",
                            "Tell what is wrong with the network, and what may be",
                            Needs::told,
                            set_up_check,
                            Stands::everywhere,
                            false,
                            check_description,
                            check_example};

}  // namespace tool
