#include "ospf_findings/configured.hpp"

#include <algorithm>
#include <charconv>
#include <sstream>

#include "evidence.hpp"

namespace ospf_findings {

using namespace ospf_routes;

namespace {

std::optional<AreaId> area_of(const std::string &text) {
  if (const auto area = parse_dotted(text)) return area;
  AreaId number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

const Area *area_in(const Database &database, AreaId id) {
  const auto at = std::ranges::find(database.areas, id, &Area::id);
  return at == database.areas.end() ? nullptr : &*at;
}

Finding finding_at(Severity severity, Kind kind, const Database &database,
                   const Configuration &configuration, AreaId area) {
  Finding found = finding(severity, kind, database, area);
  found.routers = {configuration.router};
  return found;
}

void look_at_ranges(const Configuration &configuration, const Database &database,
                    const Calculator &calculator, std::vector<Finding> &findings) {
  if (configuration.ranges.empty()) return;
  const RoutingTable table = calculator.table(configuration.router);
  for (const Configuration::Range &range : configuration.ranges) {
    const bool used = std::ranges::any_of(table.routes, [&](const Route &route) {
      return route.kind == ospf_routes::Kind::intra && route.area == range.area &&
             covers(range.prefix, route.prefix);
    });
    if (!used) {
      Finding found =
          finding_at(Severity::notice, Kind::unused_range, database, configuration, range.area);
      found.where = text_of(range.prefix, database.family);
      found.what = dotted(configuration.router) +
                   " is told to summarise it, and nothing in the "
                   "area is within it";
      findings.push_back(std::move(found));
    }
    for (const Configuration::Range &inner : configuration.ranges) {
      if (inner.area != range.area || inner.prefix == range.prefix ||
          !covers(range.prefix, inner.prefix)) {
        continue;
      }
      Finding found = finding_at(Severity::notice, Kind::overlapping_ranges, database,
                                 configuration, range.area);
      found.where = text_of(range.prefix, database.family);
      found.what = dotted(configuration.router) + " is told to summarise " +
                   text_of(inner.prefix, database.family) + " within it as well";
      findings.push_back(std::move(found));
    }
  }
}

void look_at_virtual_links(const Configuration &configuration, const Database &database,
                           std::vector<Finding> &findings) {
  for (const Configuration::VirtualLink &link : configuration.virtual_links) {
    const Area *area = area_in(database, link.transit);
    std::string why;
    if (area == nullptr) {
      why = "the databases have no such area";
    } else if (std::ranges::find(area->routers, link.peer, &RouterLsa::router) ==
               area->routers.end()) {
      why = "the area has no such router";
    } else if (!Parts(*area).connects(configuration.router, link.peer)) {
      why = "the area does not connect the two";
    } else {
      continue;
    }
    Finding found = finding_at(Severity::warning, Kind::virtual_link_without_transit, database,
                               configuration, link.transit);
    found.routers.push_back(link.peer);
    found.where = dotted(configuration.router) + " - " + dotted(link.peer);
    found.what =
        "a virtual link is told to go through area " + dotted(link.transit) + ", and " + why;
    findings.push_back(std::move(found));
  }
}

}  // namespace

Configuration read_frr_configuration(std::istream &in) {
  Configuration configuration;
  bool within = false;
  for (std::string line; std::getline(in, line);) {
    std::istringstream words(line);
    std::string first;
    std::string second;
    words >> first >> second;
    if (!line.empty() && line.front() != ' ') {
      within = first == "router" && second == "ospf";
      continue;
    }
    if (!within) continue;
    std::string third;
    std::string fourth;
    words >> third >> fourth;
    if ((first == "ospf" && second == "router-id") || first == "router-id") {
      configuration.router = parse_dotted(first == "ospf" ? third : second).value_or(0);
    }
    const auto area = first == "area" ? area_of(second) : std::nullopt;
    if (!area) continue;
    if (third == "range") {
      const auto prefix = parse_prefix(fourth, Family::ipv4);
      if (prefix) configuration.ranges.push_back({*area, *prefix});
    } else if (third == "virtual-link") {
      const auto peer = parse_dotted(fourth);
      const bool known =
          peer && std::ranges::any_of(configuration.virtual_links, [&](const auto &each) {
            return each.transit == *area && each.peer == *peer;
          });
      if (peer && !known) configuration.virtual_links.push_back({*area, *peer});
    }
  }
  return configuration;
}

std::vector<Finding> findings_of(const std::vector<Configuration> &configurations,
                                 const Database &database, const Calculator &calculator) {
  std::vector<Finding> findings;
  if (database.version != 2 || database.instance != 0) return findings;
  for (const Configuration &configuration : configurations) {
    look_at_ranges(configuration, database, calculator, findings);
    if (database.lacks.empty()) look_at_virtual_links(configuration, database, findings);
  }
  return findings;
}

}  // namespace ospf_findings
