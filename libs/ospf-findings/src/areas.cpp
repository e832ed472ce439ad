// Areas that are split, areas that the backbone does not reach.
#include <algorithm>
#include <set>

#include "evidence.hpp"

namespace ospf_findings {

using namespace ospf_routes;
using namespace lsa_vocabulary;

namespace {

std::string some_routers(const std::vector<RouterId> &routers) {
  constexpr std::size_t most = 4;
  std::string text;
  for (std::size_t at = 0; at < std::min(most, routers.size()); ++at) {
    text += (text.empty() ? "" : ", ") + dotted(routers[at]);
  }
  if (routers.size() > most) text += " and " + std::to_string(routers.size() - most) + " more";
  return text;
}

void find_split(const Subject &subject, const Area &area, std::vector<Finding> &findings) {
  const Parts parts(area);
  std::vector<std::size_t> whole;
  for (std::size_t at = 0; at < parts.count(); ++at) {
    if (!parts.is_stale(at)) whole.push_back(at);
  }
  // What is left of a router that is gone does not split; but at least one part must be the area.
  if (whole.size() < 2) return;
  Finding found = finding(Severity::error, Kind::split_area, subject.database, area.id);
  found.where = "area " + dotted(area.id);
  found.what = "the area is in " + std::to_string(whole.size()) + " parts: ";
  for (std::size_t at = 0; at < whole.size(); ++at) {
    const std::vector<RouterId> &members = parts.members()[whole[at]];
    found.what += (at == 0 ? "" : "; ") + some_routers(members);
    found.routers.push_back(members.front());
    append(found.lsas, subject.evidence.of(area.id, members.front(), lsa2_router, lsa3_router));
  }
  findings.push_back(std::move(found));
}

bool names_unknown_routers(const Area &area) {
  std::set<RouterId> known;
  for (const RouterLsa &lsa : area.routers) known.insert(lsa.router);
  return std::ranges::any_of(area.routers, [&](const RouterLsa &lsa) {
    return std::ranges::any_of(lsa.links, [&](const RouterLink &link) {
      return link.type == LinkType::point_to_point && !known.contains(link.neighbor);
    });
  });
}

void find_without_backbone(const Subject &subject, std::vector<Finding> &findings) {
  const std::vector<Area> &areas = subject.database.areas;
  if (areas.size() < 2) return;
  std::set<RouterId> of_backbone;
  bool has_backbone = false;
  for (const Area &area : areas) {
    if (area.id != backbone) continue;
    has_backbone = !area.routers.empty();
    for (const RouterLsa &lsa : area.routers) of_backbone.insert(lsa.router);
  }
  // Where router-LSAs are missing the border router's may be among them.
  const bool lacks_some = !subject.calculator.lacks().empty();
  for (const Area &area : areas) {
    if (area.id == backbone || area.routers.empty() || names_unknown_routers(area)) continue;
    const bool reached = std::ranges::any_of(area.routers, [&](const RouterLsa &lsa) {
      return of_backbone.contains(lsa.router) || ((lacks_some || !has_backbone) && lsa.border);
    });
    if (reached) continue;
    Finding found =
        finding(Severity::error, Kind::area_without_backbone, subject.database, area.id);
    found.where = "area " + dotted(area.id);
    for (const RouterLsa &lsa : area.routers) {
      if (found.routers.empty() || found.routers.back() != lsa.router) {
        found.routers.push_back(lsa.router);
      }
    }
    found.what = "none of its routers (" + some_routers(found.routers) + ") is in the backbone";
    for (const RouterId router : found.routers) {
      append(found.lsas, subject.evidence.of(area.id, router, lsa2_router, lsa3_router));
    }
    findings.push_back(std::move(found));
  }
}

}  // namespace

void find_in_areas(const Subject &subject, std::vector<Finding> &findings) {
  for (const Area &area : subject.database.areas) find_split(subject, area, findings);
  find_without_backbone(subject, findings);
}

}  // namespace ospf_findings
