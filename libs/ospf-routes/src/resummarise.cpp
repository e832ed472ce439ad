#include "resummarise.hpp"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

namespace ospf_routes {

namespace {

// The costs that a router may summarise into an area.
class Costs {
 public:
  Costs(const Calculator &calculator, RouterId router) : table_(calculator.table(router)) {}

  std::optional<std::uint32_t> to(const Prefix &prefix, AreaId into) const {
    const auto at = std::lower_bound(
        table_.routes.begin(), table_.routes.end(), prefix,
        [](const Route &route, const Prefix &wanted) { return route.prefix < wanted; });
    if (at == table_.routes.end() || at->prefix != prefix || !is_for(*at, into)) {
      return std::nullopt;
    }
    return at->cost;
  }

  // All that the router may say into an area, by prefix.
  std::map<Prefix, std::uint32_t> all(AreaId into) const {
    std::map<Prefix, std::uint32_t> found;
    for (const Route &route : table_.routes) {
      if (is_for(route, into)) found.emplace(route.prefix, route.cost);
    }
    return found;
  }

  std::optional<std::uint32_t> to_boundary(RouterId router, AreaId into) const {
    const auto at =
        std::find_if(table_.boundaries.begin(), table_.boundaries.end(),
                     [&](const BoundaryRoute &route) { return route.router == router; });
    if (at == table_.boundaries.end() || at->area == into || (!at->is_intra && into == backbone)) {
      return std::nullopt;
    }
    return at->cost;
  }

 private:
  // Routes between areas come from the backbone and do not go back there; nor does a route that the
  // area's own routers told.
  static bool is_for(const Route &route, AreaId into) {
    if (route.kind == Kind::intra) return route.area != into;
    return route.kind == Kind::inter && into != backbone && route.area != into;
  }

  RoutingTable table_;
};

std::set<RouterId> summarising(const Database &database) {
  std::set<RouterId> routers;
  for (const Area &area : database.areas) {
    for (const SummaryLsa &lsa : area.summaries) routers.insert(lsa.router);
    for (const BoundarySummaryLsa &lsa : area.boundaries) routers.insert(lsa.router);
  }
  return routers;
}

using AllCosts = std::map<RouterId, Costs>;
AllCosts costs_of(const Database &database, const std::set<RouterId> &routers, Rules rules) {
  const Calculator calculator(database, rules);
  AllCosts costs;
  for (const RouterId router : routers) costs.try_emplace(router, calculator, router);
  return costs;
}

template <typename Lsa, typename CostOf>
void follow(std::vector<Lsa> &lsas, const std::vector<Lsa> &given, const AllCosts &before,
            const AllCosts &after, CostOf cost_of) {
  lsas.clear();
  for (Lsa lsa : given) {
    if (cost_of(before.at(lsa.router), lsa) == lsa.metric) {
      const auto now = cost_of(after.at(lsa.router), lsa);
      if (!now) continue;
      lsa.metric = *now;
    }
    lsas.push_back(lsa);
  }
}

// Routers that said all that they had, each prefix by itself, say so of what they have now.
void add_new(Area &area, const std::vector<SummaryLsa> &given, const AllCosts &before,
             const AllCosts &after) {
  std::map<RouterId, std::map<Prefix, std::uint32_t>> said;
  for (const SummaryLsa &lsa : given) said[lsa.router][lsa.prefix] = lsa.metric;
  for (const auto &[router, of_router] : said) {
    const auto &summaries = of_router;
    const auto had = before.at(router).all(area.id);
    const bool said_all = std::all_of(had.begin(), had.end(), [&](const auto &each) {
      const auto at = summaries.find(each.first);
      return at != summaries.end() && at->second == each.second;
    });
    if (!said_all) continue;
    for (const auto &[prefix, cost] : after.at(router).all(area.id)) {
      if (!summaries.contains(prefix)) area.summaries.push_back({router, prefix, cost, 0});
    }
  }
}

bool same_summaries(const Database &a, const Database &b) {
  const auto metrics = [](const Database &database) {
    std::vector<std::pair<std::size_t, std::uint32_t>> all;
    for (const Area &area : database.areas) {
      for (const auto &lsa : area.summaries) all.emplace_back(area.summaries.size(), lsa.metric);
      for (const auto &lsa : area.boundaries) all.emplace_back(area.boundaries.size(), lsa.metric);
    }
    return all;
  };
  return metrics(a) == metrics(b);
}

}  // namespace

void resummarise(const Database &before, Database &after, Rules rules) {
  const std::set<RouterId> routers = summarising(after);
  const AllCosts old = costs_of(before, routers, rules);
  const Database given = after;
  // What is said into the backbone changes what is said out of it, and that, across transit areas,
  // may change both once more.
  constexpr int most_rounds = 4;
  for (int round = 0; round < most_rounds; ++round) {
    const Database last = after;
    const AllCosts now = costs_of(last, routers, rules);
    for (std::size_t at = 0; at < after.areas.size(); ++at) {
      Area &area = after.areas[at];
      follow(
          area.summaries, given.areas[at].summaries, old, now,
          [&](const Costs &costs, const SummaryLsa &lsa) { return costs.to(lsa.prefix, area.id); });
      add_new(area, given.areas[at].summaries, old, now);
      follow(area.boundaries, given.areas[at].boundaries, old, now,
             [&](const Costs &costs, const BoundarySummaryLsa &lsa) {
               return costs.to_boundary(lsa.boundary, area.id);
             });
    }
    if (same_summaries(last, after)) return;
  }
}

}  // namespace ospf_routes
