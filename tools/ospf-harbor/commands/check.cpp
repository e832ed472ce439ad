// `check`: what is wrong with a network, by its databases and, of captures, by what its routers
// sent.
#include <array>
#include <cstdio>
#include <memory>

#include "commands/route_options.hpp"
#include "commands/source_choice.hpp"
#include "ospf_findings/databases.hpp"
#include "ospf_findings/heard.hpp"
#include "ospf_routes/read_databases.hpp"
#include "ospf_tables/lsdb_view.hpp"
#include "views/finding_list.hpp"
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

// What routers' answers differ in is one finding, as it may be many lines of one reason.
void add_differences(const Heard &heard, std::vector<Finding> &findings) {
  if (heard.differences.empty()) return;
  Finding found;
  found.severity = Severity::notice;
  found.kind = ospf_findings::Kind::databases_differ;
  found.version = 2;
  found.what = heard.differences.front();
  if (heard.differences.size() > 1) {
    found.what +=
        "; and " + counted(heard.differences.size() - 1, "difference", "differences") + " more";
  }
  findings.push_back(std::move(found));
}

bool is_chosen(const Finding &finding, const std::vector<ospf_routes::Database> &databases) {
  return std::any_of(databases.begin(), databases.end(), [&](const auto &database) {
    return database.version == finding.version && database.instance == finding.instance;
  });
}

std::vector<Finding> all_findings(ospf_tables::Session &session, const CheckOptions &options,
                                  const Heard &heard) {
  const std::vector<ospf_tables::LsdbEntry> lsas = ospf_tables::read_lsdb(session);
  std::vector<ospf_routes::Database> databases = chosen_databases(session, options.choice, "check");
  std::vector<Finding> findings;
  // What has been heard says nothing of a network that is not.
  if (!options.what_if.is_asked()) {
    append(findings, ospf_findings::findings_of(lsas));
    if (heard.timeline != nullptr) {
      append(findings, ospf_findings::findings_of(*heard.timeline, heard.events));
    }
    add_differences(heard, findings);
    std::erase_if(findings, [&](const Finding &each) { return !is_chosen(each, databases); });
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
                    const Heard &heard) {
  const Severity least = parse_severity("--least", options.least);
  std::array<std::size_t, 3> counts{};
  for (const Finding &finding : findings) {
    ++counts[static_cast<std::size_t>(finding.severity)];
    if (finding.severity < least) continue;
    if (options.json) {
      std::printf("%s\n", json_line(finding, heard.captures).c_str());
    } else {
      print_finding(finding, heard.captures, stdout);
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
  int status = options.source.load(session, "check", &heard);
  session.reading([&] {
    const std::vector<Finding> findings = all_findings(session, options, heard);
    print_findings(findings, options, heard);
    for (const Finding &finding : findings) {
      if (finding.severity >= fail_on) status = 1;
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
answers ranges and virtual links are read.

An error makes routes wrong or missing; a warning does harm or will; a
notice is sound and yet worth a look. With a what-if the databases of the
network that would be are looked at, and nothing that was sent. The status
is 1 when something is found that is as bad as --fail-on says.

A line of --json has the keys severity, kind, version, instance, area,
routers, where, field (what interfaces differ in), what, lsas, packets (each
with file and packet, its number) and look_at.
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
