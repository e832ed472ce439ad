#include "ospf_routes/loads.hpp"

#include <algorithm>
#include <map>
#include <tuple>

#include "compiled.hpp"
#include "shortest_paths.hpp"

namespace ospf_routes {

namespace {

// What is added of less than this is an error of rounding.
constexpr double least = 1e-6;

class AreaLoads {
 public:
  explicit AreaLoads(const AreaGraph &graph)
      : graph_(graph), before_(graph.size()), ways_(graph.size()), share_(graph.size()) {
    for (std::uint32_t root = graph.first_router(); root < graph.size(); ++root) add_root(root);
  }

  const std::map<std::pair<std::uint32_t, std::uint32_t>, double> &carried() const {
    return carried_;
  }

 private:
  // Counts the ways from near to far, and brings what they share back from far to near.
  void add_root(std::uint32_t root) {
    for (auto &each : before_) each.clear();
    std::vector<std::uint32_t> order;
    shortest_paths(
        graph_, root, heap_, distances_, [](const Edge &, std::uint32_t) { return true; },
        [&](std::uint32_t from, const Edge &edge, bool is_shorter) {
          if (order.empty() || order.back() != from) order.push_back(from);
          if (is_shorter) before_[edge.to].clear();
          before_[edge.to].push_back(from);
        });
    std::vector<bool> leads_on(graph_.size());
    for (const std::uint32_t vertex : order) leads_on[vertex] = true;
    for (std::uint32_t vertex = 0; vertex < graph_.size(); ++vertex) {
      if (!leads_on[vertex] && distances_[vertex] != unreachable) order.push_back(vertex);
    }
    for (const std::uint32_t vertex : order) {
      ways_[vertex] = vertex == root ? 1 : 0;
      for (const std::uint32_t from : before_[vertex]) ways_[vertex] += ways_[from];
      share_[vertex] = vertex != root && graph_.is_router(vertex) ? 1 : 0;
    }
    for (auto at = order.rbegin(); at != order.rend(); ++at) {
      for (const std::uint32_t from : before_[*at]) {
        const double part = share_[*at] * ways_[from] / ways_[*at];
        share_[from] += part;
        if (graph_.is_router(from)) carried_[{from, *at}] += part;
      }
    }
  }

  const AreaGraph &graph_;
  DistanceHeap heap_;
  std::vector<std::uint32_t> distances_;
  std::vector<std::vector<std::uint32_t>> before_;
  std::vector<double> ways_;
  std::vector<double> share_;
  std::map<std::pair<std::uint32_t, std::uint32_t>, double> carried_;
};

auto load_key(const LinkLoad &load) {
  return std::tuple(load.area, load.from, load.to, load.network);
}

}  // namespace

std::vector<LinkLoad> link_loads(const Calculator &calculator) {
  std::vector<LinkLoad> loads;
  for (const CompiledArea &area : calculator.compiled().areas) {
    const AreaGraph &graph = area.graph;
    const AreaLoads area_loads(graph);
    for (const auto &[ends, carried] : area_loads.carried()) {
      LinkLoad load{.area = graph.id(), .from = graph.router(ends.first).id, .carried = carried};
      if (graph.is_router(ends.second)) {
        load.to = graph.router(ends.second).id;
      } else {
        load.network = graph.network(ends.second).identifier;
        load.to = graph.network(ends.second).router;
      }
      loads.push_back(load);
    }
  }
  std::ranges::sort(loads, {}, load_key);
  return loads;
}

std::vector<LoadChange> added_loads(const Calculator &before, const Calculator &after) {
  std::map<decltype(load_key(LinkLoad())), double> known;
  for (const LinkLoad &load : link_loads(before)) known[load_key(load)] = load.carried;
  std::vector<LoadChange> changes;
  for (const LinkLoad &load : link_loads(after)) {
    const auto at = known.find(load_key(load));
    const double was = at == known.end() ? 0 : at->second;
    if (load.carried > was + least) changes.push_back({load, was});
  }
  std::ranges::stable_sort(changes, std::greater<>(),
                           [](const LoadChange &each) { return each.link.carried - each.before; });
  return changes;
}

}  // namespace ospf_routes
