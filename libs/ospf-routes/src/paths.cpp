#include "ospf_routes/paths.hpp"

#include <algorithm>
#include <set>

#include "area_tree.hpp"

namespace ospf_routes {

const char *name_of(PathEnd end) {
  constexpr const char *names[] = {"arrives", "leaves", "forwards", "no-route", "loop"};
  return names[static_cast<int>(end)];
}

std::uint32_t Path::cost() const {
  std::uint32_t sum = 0;
  for (const PathStep &step : steps) sum += step.cost;
  return sum;
}

std::vector<RouterId> Path::routers() const {
  std::vector<RouterId> all;
  for (const PathStep &step : steps) all.push_back(step.router);
  all.push_back(last);
  return all;
}

struct Paths::Walk {
  const Prefix &to;
  std::size_t most;
  bool *more;
  std::vector<Path> found;
  std::vector<PathStep> steps;

  bool is_full() const { return found.size() == most; }
  void end(RouterId router, PathEnd end, std::optional<Address> behind = std::nullopt) {
    if (is_full()) {
      *more = true;
    } else {
      found.push_back({steps, router, end, behind});
    }
  }
};

const RoutingTable &Paths::table(RouterId router) {
  const auto at = tables_.find(router);
  if (at != tables_.end()) return at->second;
  return tables_.emplace(router, calculator_.table(router)).first->second;
}

const Route *Paths::route(RouterId router, const Prefix &to) {
  const Route *best = nullptr;
  for (const Route &each : table(router).routes) {
    if (!covers(each.prefix, to)) continue;
    if (best == nullptr || best->prefix.length < each.prefix.length) best = &each;
  }
  return best;
}

std::optional<Prefix> Paths::prefix_of(RouterId router) const {
  std::optional<Prefix> best;
  for (const CompiledArea &area : calculator_.compiled().areas) {
    const std::uint32_t vertex = area.graph.vertex_of(router);
    if (vertex == none) continue;
    for (const VertexPrefix &each : area.graph.prefixes()) {
      if (each.vertex != vertex) continue;
      if (!best || best->length < each.prefix.length ||
          (best->length == each.prefix.length && each.prefix < *best)) {
        best = each.prefix;
      }
    }
  }
  return best;
}

std::vector<RouterId> Paths::routers_on(const Prefix &prefix) {
  std::vector<RouterId> found;
  for (const RouterId router : calculator_.routers()) {
    const Route *way = route(router, prefix);
    if (way == nullptr) continue;
    const auto hops = table(router).next_hops(*way);
    if (std::any_of(hops.begin(), hops.end(), [](const NextHop &hop) { return hop.attached; })) {
      found.push_back(router);
    }
  }
  return found;
}

bool Paths::announces(RouterId router, const Prefix &to) const {
  const auto &all = calculator_.compiled().externals;
  return std::any_of(all.begin(), all.end(), [&](const CompiledExternal &each) {
    return each.lsa->router == router && covers(each.lsa->prefix, to);
  });
}

// The router at the other end of a next hop.
std::optional<Paths::Neighbor> Paths::neighbor(RouterId router, const NextHop &hop) const {
  const Compiled &compiled = calculator_.compiled();
  const Root root(compiled, router);
  for (const CompiledArea &area : compiled.areas) {
    const AreaGraph &graph = area.graph;
    const std::uint32_t vertex = graph.vertex_of(router);
    if (vertex == none) continue;
    for (const Edge &edge : graph.edges(vertex)) {
      const GraphLink &link = graph.link(edge.link);
      if (link.type == LinkType::virtual_link || root.interface_of(area, link) != hop.interface) {
        continue;
      }
      if (link.type == LinkType::point_to_point) {
        const RouterId other = graph.router(edge.to).id;
        const auto address = link.other == none ? std::nullopt
                                                : address_of(compiled, area, other,
                                                             graph.link(link.other).interface);
        if (address == hop.address) return Neighbor{other, graph.id(), edge.cost};
        continue;
      }
      for (const Edge &out : graph.edges(edge.to)) {
        for (const GraphLink &there : graph.links(out.to)) {
          const RouterId other = graph.router(out.to).id;
          if (there.to == edge.to && other != router &&
              address_of(compiled, area, other, there.interface) == hop.address) {
            return Neighbor{other, graph.id(), edge.cost};
          }
        }
      }
    }
  }
  return std::nullopt;
}

void Paths::walk(Walk &walk, RouterId router) {
  if (walk.is_full()) {
    *walk.more = true;
    return;
  }
  const bool again = std::any_of(walk.steps.begin(), walk.steps.end(),
                                 [&](const PathStep &step) { return step.router == router; });
  if (again) return walk.end(router, PathEnd::loop);
  const Route *way = route(router, walk.to);
  // What a router announces itself it has from elsewhere, so a shorter route does not count.
  if (announces(router, walk.to) &&
      (way == nullptr || is_external(way->kind) || way->prefix.length == 0)) {
    return walk.end(router, PathEnd::leaves);
  }
  if (way == nullptr) return walk.end(router, PathEnd::no_route);
  for (const NextHop &hop : table(router).next_hops(*way)) {
    if (hop.attached) {
      walk.end(router, PathEnd::arrives);
      continue;
    }
    const auto next = neighbor(router, hop);
    if (!next) {
      walk.end(router, PathEnd::forwards, hop.address);
      continue;
    }
    walk.steps.push_back({router, hop.interface, hop.address, next->area, next->cost});
    this->walk(walk, next->router);
    walk.steps.pop_back();
  }
}

std::vector<Path> Paths::between(RouterId from, const Prefix &to, std::size_t most, bool *more) {
  *more = false;
  Walk walk{to, most, more, {}, {}};
  this->walk(walk, from);
  std::stable_sort(walk.found.begin(), walk.found.end(),
                   [](const Path &a, const Path &b) { return a.routers() < b.routers(); });
  return std::move(walk.found);
}

bool are_symmetric(const std::vector<Path> &there, const std::vector<Path> &back) {
  std::set<std::vector<RouterId>> ways;
  std::set<std::vector<RouterId>> reversed;
  for (const Path &path : there) ways.insert(path.routers());
  for (const Path &path : back) {
    std::vector<RouterId> routers = path.routers();
    std::reverse(routers.begin(), routers.end());
    reversed.insert(std::move(routers));
  }
  return ways == reversed;
}

}  // namespace ospf_routes
