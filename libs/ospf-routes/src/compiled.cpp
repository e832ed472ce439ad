#include "compiled.hpp"

#include <algorithm>
#include <set>

namespace ospf_routes {

namespace {

template <typename Value>
void sort_unique(std::vector<Value> &values) {
  std::sort(values.begin(), values.end());
  values.erase(std::unique(values.begin(), values.end()), values.end());
}

template <typename Value>
std::uint32_t position(const std::vector<Value> &sorted, const Value &value) {
  const auto at = std::lower_bound(sorted.begin(), sorted.end(), value);
  if (at == sorted.end() || *at != value) return none;
  return static_cast<std::uint32_t>(at - sorted.begin());
}

auto link_key(const LinkLsa &lsa) { return std::pair(lsa.router, lsa.interface); }

}  // namespace

const LinkLsa *CompiledArea::link_of(RouterId router, std::uint32_t interface) const {
  const auto wanted = std::pair(router, interface);
  const auto at =
      std::lower_bound(links.begin(), links.end(), wanted,
                       [](const LinkLsa &lsa, const auto &key) { return link_key(lsa) < key; });
  return at == links.end() || link_key(*at) != wanted ? nullptr : &*at;
}

Compiled::Compiled(const Database &given, Rules given_rules)
    : database(given), rules(given_rules), lacks(given.lacks) {
  std::stable_sort(database.areas.begin(), database.areas.end(),
                   [](const Area &a, const Area &b) { return a.id < b.id; });
  number_all();
  for (const Area &area : database.areas) add_area(area);
  for (const ExternalLsa &lsa : database.externals) add_external(lsa, none);
  std::stable_sort(externals.begin(), externals.end(),
                   [](const auto &a, const auto &b) { return a.prefix < b.prefix; });
}

void Compiled::number_all() {
  const auto add_externals = [&](const std::vector<ExternalLsa> &lsas) {
    for (const ExternalLsa &lsa : lsas) {
      prefixes.push_back(lsa.prefix);
      routers.push_back(lsa.router);
    }
  };
  for (const Area &area : database.areas) {
    for (const RouterLsa &lsa : area.routers) {
      routers.push_back(lsa.router);
      if (lsa.in_family) roots.push_back(lsa.router);
      for (const RouterLink &link : lsa.links) {
        if (link.type == LinkType::stub) prefixes.push_back(link.stub);
      }
    }
    for (const NetworkLsa &lsa : area.networks) {
      if (database.version != 2) break;  // those of OSPFv3 say no prefix
      prefixes.push_back(make_prefix(ipv4_address(lsa.link_state_id), lsa.length));
    }
    for (const IntraAreaPrefixLsa &lsa : area.prefix_lsas) {
      for (const IntraAreaPrefix &entry : lsa.prefixes) prefixes.push_back(entry.prefix);
    }
    for (const SummaryLsa &lsa : area.summaries) prefixes.push_back(lsa.prefix);
    for (const BoundarySummaryLsa &lsa : area.boundaries) routers.push_back(lsa.boundary);
    add_externals(area.nssa);
  }
  add_externals(database.externals);
  sort_unique(prefixes);
  sort_unique(routers);
  sort_unique(roots);

  // A prefix stands behind those that cover it.
  std::vector<std::uint32_t> open;
  for (std::uint32_t at = 0; at < prefixes.size(); ++at) {
    while (!open.empty() && !covers(prefixes[open.back()], prefixes[at])) open.pop_back();
    covering.push_back(open.empty() ? none : open.back());
    open.push_back(at);
  }
}

std::uint32_t Compiled::prefix_number(const Prefix &prefix) const {
  return position(prefixes, prefix);
}

std::uint32_t Compiled::router_number(RouterId router) const { return position(routers, router); }

std::uint32_t Compiled::covering_of(const Address &address) const {
  const auto behind = std::upper_bound(prefixes.begin(), prefixes.end(), Prefix{address, 128});
  if (behind == prefixes.begin()) return none;
  auto at = static_cast<std::uint32_t>(behind - prefixes.begin() - 1);
  while (at != none && !covers(prefixes[at], address)) at = covering[at];
  return at;
}

void Compiled::add_area(const Area &area) {
  areas.push_back({AreaGraph(area, database.version, lacks), {}, {}, {}, {}, area.links});
  CompiledArea &compiled = areas.back();
  const AreaGraph &graph = compiled.graph;
  std::stable_sort(compiled.links.begin(), compiled.links.end(),
                   [](const LinkLsa &a, const LinkLsa &b) { return link_key(a) < link_key(b); });
  for (const VertexPrefix &each : graph.prefixes()) {
    compiled.prefixes.push_back({each.vertex, prefix_number(each.prefix), each.metric});
  }
  std::set<RouterId> missing;
  const auto border_of = [&](RouterId router) {
    const std::uint32_t vertex = graph.vertex_of(router);
    if (vertex == none) missing.insert(router);
    return vertex != none && graph.router(vertex).border ? vertex : none;
  };
  for (const SummaryLsa &lsa : area.summaries) {
    const std::uint32_t border = border_of(lsa.router);
    if (lsa.metric >= infinite_metric || (lsa.options & prefix_no_unicast) != 0) continue;
    const std::uint32_t prefix = prefix_number(lsa.prefix);
    compiled.summarised.emplace_back(lsa.router, prefix);
    if (border != none) compiled.summaries.push_back({prefix, border, lsa.metric});
  }
  for (const BoundarySummaryLsa &lsa : area.boundaries) {
    const std::uint32_t border = border_of(lsa.router);
    if (lsa.metric >= infinite_metric || border == none) continue;
    compiled.boundaries.push_back({router_number(lsa.boundary), border, lsa.metric});
  }
  sort_unique(compiled.summarised);
  for (const RouterId router : missing) {
    lacks.push_back("area " + dotted(area.id) + ": no router-LSA of " + dotted(router) +
                    ", which summarises into it");
  }
  const auto number = static_cast<std::uint32_t>(areas.size() - 1);
  for (const ExternalLsa &lsa : area.nssa) add_external(lsa, number);
}

void Compiled::add_external(const ExternalLsa &lsa, std::uint32_t area) {
  if (lsa.metric >= infinite_metric || (lsa.options & prefix_no_unicast) != 0) return;
  externals.push_back({prefix_number(lsa.prefix), router_number(lsa.router), area,
                       lsa.forwarding ? covering_of(*lsa.forwarding) : none, &lsa});
}

}  // namespace ospf_routes
