#include "ospf_findings/databases.hpp"

#include <algorithm>
#include <set>
#include <tuple>
#include <unordered_map>

#include "evidence.hpp"

namespace ospf_findings {

using namespace ospf_routes;
using namespace lsa_vocabulary;

namespace {

std::string text(const Subject &subject, const Prefix &prefix) {
  return text_of(prefix, subject.database.family);
}

// Whether a route within the AS leads to the address, as it must for externals to be forwarded.
bool leads_to(const RoutingTable &table, const Address &address) {
  return std::ranges::any_of(table.routes, [&](const Route &route) {
    return !is_external(route.kind) && covers(route.prefix, address);
  });
}

// Those that take the external: with an LSA in an area that does.
std::set<RouterId> takers(const Database &database, const Area *nssa) {
  std::set<RouterId> all;
  for (const Area &area : database.areas) {
    for (const RouterLsa &lsa : area.routers) {
      if (nssa != nullptr ? &area == nssa : lsa.takes_externals) all.insert(lsa.router);
    }
  }
  return all;
}

class ExternalFinder {
 public:
  ExternalFinder(const Subject &subject, std::vector<Finding> &findings)
      : subject_(subject), findings_(findings) {}

  void look(const std::vector<ExternalLsa> &lsas, const Area *nssa) {
    nssa_ = nssa;
    takers_ = takers(subject_.database, nssa);
    for (const ExternalLsa &lsa : lsas) {
      if (lsa.metric >= infinite_metric) continue;
      if (lsa.forwarding) look_at_forwarding(lsa);
    }
    look_for_equals(lsas);
  }

 private:
  std::vector<std::string> shown_by(const ExternalLsa &lsa) const {
    return subject_.evidence.of_prefix(nssa_ == nullptr ? std::nullopt : std::optional(nssa_->id),
                                       lsa.router, nssa_ == nullptr ? lsa2_as_external : lsa2_nssa,
                                       nssa_ == nullptr ? lsa3_as_external : lsa3_nssa, lsa.prefix);
  }

  const RoutingTable &table(RouterId router) {
    const auto known = tables_.find(router);
    if (known != tables_.end()) return known->second;
    return tables_.emplace(router, subject_.calculator.table(router)).first->second;
  }

  // An address by how many routers cannot reach it; each is asked once.
  const std::vector<RouterId> &without_way(const Address &address) {
    const auto [at, is_new] = without_way_.try_emplace({nssa_, address});
    if (is_new) {
      for (const RouterId router : takers_) {
        if (!leads_to(table(router), address)) at->second.push_back(router);
      }
    }
    return at->second;
  }

  void look_at_forwarding(const ExternalLsa &lsa) {
    const std::vector<RouterId> &lost = without_way(*lsa.forwarding);
    if (lost.empty()) return;
    Finding found =
        finding(Severity::warning, Kind::unreachable_forwarding_address, subject_.database,
                nssa_ == nullptr ? std::nullopt : std::optional(nssa_->id));
    found.routers = {lsa.router};
    found.where = text(subject_, lsa.prefix);
    found.what = "its forwarding address " + text_of(*lsa.forwarding, subject_.database.family) +
                 " is out of reach for " + std::to_string(lost.size()) + " of " +
                 std::to_string(takers_.size()) + " routers, " + dotted(lost.front()) +
                 " among them: they have no route by it";
    found.lsas = shown_by(lsa);
    findings_.push_back(std::move(found));
  }

  void look_for_equals(const std::vector<ExternalLsa> &lsas) {
    using Key = std::tuple<Prefix, bool, std::uint32_t>;
    std::map<Key, std::vector<const ExternalLsa *>> same;
    for (const ExternalLsa &lsa : lsas) {
      // Those of a router that has no area for them are sent to nobody.
      if (lsa.metric < infinite_metric && takers_.contains(lsa.router)) {
        same[{lsa.prefix, lsa.type_2, lsa.metric}].push_back(&lsa);
      }
    }
    for (const auto &[key, those] : same) {
      std::set<RouterId> routers;
      std::set<std::optional<Address>> ways;
      for (const ExternalLsa *lsa : those) {
        routers.insert(lsa->router);
        ways.insert(lsa->forwarding);
      }
      if (routers.size() < 2 || (ways.size() == 1 && those.front()->forwarding)) continue;
      Finding found = finding(Severity::notice, Kind::equal_externals, subject_.database,
                              nssa_ == nullptr ? std::nullopt : std::optional(nssa_->id));
      found.routers.assign(routers.begin(), routers.end());
      found.where = text(subject_, those.front()->prefix);
      found.what = std::to_string(routers.size()) + " routers announce it, each with type " +
                   (std::get<1>(key) ? "2" : "1") + " and metric " +
                   std::to_string(std::get<2>(key));
      for (const ExternalLsa *lsa : those) append(found.lsas, shown_by(*lsa));
      findings_.push_back(std::move(found));
    }
  }

  const Subject &subject_;
  std::vector<Finding> &findings_;
  const Area *nssa_ = nullptr;
  std::set<RouterId> takers_;
  std::unordered_map<RouterId, RoutingTable> tables_;
  std::map<std::pair<const Area *, Address>, std::vector<RouterId>> without_way_;
};

// Prefixes that a border router announces and that no router of the databases has: ranges. Those
// that it has routes for within an area of its own stand for themselves.
void find_overlaps(const Subject &subject, const Area &area, std::vector<Finding> &findings) {
  std::map<RouterId, std::vector<const SummaryLsa *>> by_router;
  for (const SummaryLsa &lsa : area.summaries) {
    if (lsa.prefix.length != 0 && lsa.metric < infinite_metric) {
      by_router[lsa.router].push_back(&lsa);
    }
  }
  for (auto &[router, lsas] : by_router) {
    std::sort(lsas.begin(), lsas.end(),
              [](const SummaryLsa *a, const SummaryLsa *b) { return a->prefix < b->prefix; });
    std::vector<std::pair<const SummaryLsa *, const SummaryLsa *>> pairs;
    std::vector<const SummaryLsa *> open;
    for (const SummaryLsa *lsa : lsas) {
      while (!open.empty() && !covers(open.back()->prefix, lsa->prefix)) open.pop_back();
      for (const SummaryLsa *outer : open) {
        if (outer->prefix != lsa->prefix) pairs.emplace_back(outer, lsa);
      }
      open.push_back(lsa);
    }
    if (pairs.empty()) continue;
    const RoutingTable table = subject.calculator.table(router);
    std::set<Prefix> routed;
    for (const Route &route : table.routes) {
      if (!is_external(route.kind)) routed.insert(route.prefix);
    }
    for (const auto &[outer, inner] : pairs) {
      if (routed.contains(outer->prefix) || routed.contains(inner->prefix)) continue;
      Finding found =
          finding(Severity::notice, Kind::overlapping_ranges, subject.database, area.id);
      found.routers = {router};
      found.where = text(subject, outer->prefix);
      found.what =
          dotted(router) + " summarises " + text(subject, inner->prefix) + " within it as well";
      for (const SummaryLsa *lsa : {outer, inner}) {
        append(found.lsas, subject.evidence.of_prefix(area.id, router, lsa2_summary,
                                                      lsa3_inter_area_prefix, lsa->prefix));
      }
      findings.push_back(std::move(found));
    }
  }
}

}  // namespace

void find_in_prefixes(const Subject &subject, std::vector<Finding> &findings) {
  ExternalFinder externals(subject, findings);
  externals.look(subject.database.externals, nullptr);
  for (const Area &area : subject.database.areas) {
    externals.look(area.nssa, &area);
    find_overlaps(subject, area, findings);
  }
}

std::vector<Finding> findings_of(const Database &database, const Calculator &calculator,
                                 const std::vector<ospf_tables::LsdbEntry> &lsas) {
  const Evidence evidence(database, lsas);
  const Subject subject{database, calculator, evidence};
  std::vector<Finding> findings;
  // Links that a source could not tell would be taken to be missing.
  if (database.lacks.empty()) {
    find_in_links(subject, findings);
    find_in_areas(subject, findings);
  }
  find_in_prefixes(subject, findings);
  const std::vector<std::string> &lacks = calculator.lacks();
  if (!lacks.empty()) {
    Finding found = finding(Severity::notice, Kind::incomplete_database, database, std::nullopt);
    found.what = lacks.front();
    if (lacks.size() > 1) {
      found.what += "; and " + std::to_string(lacks.size() - 1) + " more of that kind";
    }
    findings.push_back(std::move(found));
  }
  return findings;
}

}  // namespace ospf_findings
