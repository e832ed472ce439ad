#include "ospf_routes/failures.hpp"

#include <algorithm>
#include <deque>
#include <map>
#include <tuple>

#include "compiled.hpp"
#include "distances.hpp"

namespace ospf_routes {

namespace {

// Distances between all routers of all areas, as one matrix by the number of the router among the
// calculator's. A failure changes rows of areas; the matrix follows.
class Network {
 public:
  explicit Network(const Calculator &calculator)
      : compiled_(calculator.compiled()), size_(calculator.routers().size()) {
    for (const CompiledArea &area : compiled_.areas) {
      areas_.emplace_back(area.graph);
      std::vector<std::uint32_t> numbers;
      const AreaGraph &graph = area.graph;
      for (std::uint32_t vertex = graph.first_router(); vertex < graph.size(); ++vertex) {
        numbers.push_back(number_of(graph.router(vertex).id));
      }
      numbers_.push_back(std::move(numbers));
      rows_.emplace_back();
    }
    for (std::size_t area = 0; area < areas_.size(); ++area) {
      const AreaGraph &graph = areas_[area].graph();
      const std::size_t count = numbers_[area].size();
      rows_[area].resize(count * count);
      for (std::size_t a = 0; a < count; ++a) {
        for (std::size_t b = 0; b < count; ++b) {
          rows_[area][a * count + b] =
              areas_[area].at(graph.first_router() + static_cast<std::uint32_t>(a),
                              graph.first_router() + static_cast<std::uint32_t>(b));
        }
      }
    }
    find_borders();
    now_ = whole();
  }

  std::size_t size() const { return size_; }
  const std::vector<std::uint32_t> &distances() const { return now_; }

  using Edges = std::vector<std::pair<std::size_t, std::vector<Distances::EdgeName>>>;
  // By area. In one area the changes are told one by one; in several the matrix is made anew.
  template <typename Changed>
  void without(const Edges &edges, Changed changed) {
    if (areas_.size() == 1) {
      const AreaGraph &graph = areas_[0].graph();
      for (const auto &[area, names] : edges) {
        areas_[0].without(names, [&](std::uint32_t a, std::uint32_t b, std::uint32_t distance) {
          if (!graph.is_router(b)) return;
          changed(numbers_[0][a - graph.first_router()], numbers_[0][b - graph.first_router()],
                  distance);
        });
      }
      return;
    }
    std::vector<std::tuple<std::size_t, std::size_t, std::uint32_t>> before;
    for (const auto &[area, names] : edges) {
      const AreaGraph &graph = areas_[area].graph();
      const std::size_t count = numbers_[area].size();
      areas_[area].without(
          names, [&, area = area](std::uint32_t a, std::uint32_t b, std::uint32_t distance) {
            if (!graph.is_router(b)) return;
            const std::size_t at = (a - graph.first_router()) * count + (b - graph.first_router());
            before.emplace_back(area, at, rows_[area][at]);
            rows_[area][at] = distance;
          });
    }
    if (before.empty()) return;
    const std::vector<std::uint32_t> after = whole();
    for (std::size_t at = 0; at < after.size(); ++at) {
      if (after[at] != now_[at]) {
        changed(static_cast<std::uint32_t>(at / size_), static_cast<std::uint32_t>(at % size_),
                after[at]);
      }
    }
    for (const auto &[area, at, distance] : before) rows_[area][at] = distance;
  }

  std::uint32_t number_of(RouterId router) const {
    return static_cast<std::uint32_t>(
        std::lower_bound(compiled_.roots.begin(), compiled_.roots.end(), router) -
        compiled_.roots.begin());
  }

 private:
  void find_borders() {
    const auto zero = std::find_if(areas_.begin(), areas_.end(), [](const Distances &each) {
      return each.graph().id() == backbone;
    });
    if (zero == areas_.end()) return;
    backbone_ = static_cast<std::size_t>(zero - areas_.begin());
    place_in_backbone_.assign(size_, none);
    for (std::uint32_t at = 0; at < numbers_[*backbone_].size(); ++at) {
      place_in_backbone_[numbers_[*backbone_][at]] = at;
    }
    for (std::size_t area = 0; area < areas_.size(); ++area) {
      borders_.emplace_back();
      if (area == *backbone_) continue;
      for (std::size_t at = 0; at < numbers_[area].size(); ++at) {
        const std::uint32_t router = numbers_[area][at];
        const std::uint32_t there = zero->graph().vertex_of(compiled_.roots[router]);
        if (there == none) continue;
        const auto vertex = areas_[area].graph().first_router() + static_cast<std::uint32_t>(at);
        if (!areas_[area].graph().router(vertex).border) continue;
        borders_[area].push_back({at, there - zero->graph().first_router()});
      }
    }
  }

  static void improve(std::uint32_t &distance, std::uint64_t sum) {
    if (sum < distance) distance = static_cast<std::uint32_t>(sum);
  }

  // Distances between all routers, row by row. Within areas first; what is not reached there is
  // reached through border routers: out of the area, across the backbone, into the other one.
  std::vector<std::uint32_t> whole() const {
    std::vector<std::uint32_t> all(size_ * size_, unreachable);
    for (std::size_t router = 0; router < size_; ++router) all[router * size_ + router] = 0;
    for (std::size_t area = 0; area < areas_.size(); ++area) {
      const std::size_t count = numbers_[area].size();
      for (std::size_t a = 0; a < count; ++a) {
        std::uint32_t *row = &all[numbers_[area][a] * size_];
        for (std::size_t b = 0; b < count; ++b) {
          improve(row[numbers_[area][b]], rows_[area][a * count + b]);
        }
      }
    }
    if (!backbone_ || areas_.size() == 1) return all;
    const std::size_t width = numbers_[*backbone_].size();
    const std::vector<std::uint32_t> to_backbone = distances_to_backbone();
    for (std::size_t router = 0; router < size_; ++router) {
      const std::vector<std::uint32_t> across = across_backbone(&to_backbone[router * width]);
      for (std::size_t at = 0; at < size_; ++at) {
        std::uint32_t &distance = all[router * size_ + at];
        if (distance == unreachable) distance = across[at];
      }
    }
    return all;
  }

  // From every router to each of the backbone: to its own area's border routers, then across.
  std::vector<std::uint32_t> distances_to_backbone() const {
    const std::size_t width = numbers_[*backbone_].size();
    std::vector<std::uint32_t> distances(size_ * width, unreachable);
    for (std::size_t at = 0; at < width; ++at) {
      std::copy_n(&rows_[*backbone_][at * width], width,
                  &distances[numbers_[*backbone_][at] * width]);
    }
    for (std::size_t area = 0; area < areas_.size(); ++area) {
      if (area == *backbone_) continue;
      const std::size_t count = numbers_[area].size();
      for (std::size_t a = 0; a < count; ++a) {
        const std::uint32_t router = numbers_[area][a];
        if (place_in_backbone_[router] != none) continue;
        for (const Border &border : borders_[area]) {
          const std::uint64_t out = rows_[area][a * count + border.here];
          if (out == unreachable) continue;
          for (std::size_t at = 0; at < width; ++at) {
            const std::uint64_t across = rows_[*backbone_][border.there * width + at];
            if (across != unreachable) improve(distances[router * width + at], out + across);
          }
        }
      }
    }
    return distances;
  }

  // From one router to all, by way of the backbone; to_backbone: to each router of the backbone.
  std::vector<std::uint32_t> across_backbone(const std::uint32_t *to_backbone) const {
    std::vector<std::uint32_t> distances(size_, unreachable);
    for (std::size_t at = 0; at < numbers_[*backbone_].size(); ++at) {
      improve(distances[numbers_[*backbone_][at]], to_backbone[at]);
    }
    for (std::size_t area = 0; area < areas_.size(); ++area) {
      if (area == *backbone_) continue;
      const std::size_t count = numbers_[area].size();
      for (const Border &border : borders_[area]) {
        const std::uint64_t to = to_backbone[border.there];
        if (to == unreachable) continue;
        for (std::size_t b = 0; b < count; ++b) {
          // What the backbone itself reaches no other area leads to.
          const std::uint32_t place = place_in_backbone_[numbers_[area][b]];
          if (place != none && to_backbone[place] != unreachable) continue;
          const std::uint64_t into = rows_[area][border.here * count + b];
          if (into != unreachable) improve(distances[numbers_[area][b]], to + into);
        }
      }
    }
    return distances;
  }

  struct Border {
    std::size_t here;   // among the routers of its area
    std::size_t there;  // among those of the backbone
  };

  const Compiled &compiled_;
  std::size_t size_;
  std::deque<Distances> areas_;
  std::vector<std::vector<std::uint32_t>> numbers_;  // of the routers of each area
  std::vector<std::vector<std::uint32_t>> rows_;     // of each area, among its routers
  std::optional<std::size_t> backbone_;
  std::vector<std::uint32_t> place_in_backbone_;  // of each router, or none
  std::vector<std::vector<Border>> borders_;
  std::vector<std::uint32_t> now_;
};

using Edges = Network::Edges;
using EdgeName = Distances::EdgeName;

struct Scenario {
  Failure failure;
  Edges edges;
};

class Scenarios {
 public:
  explicit Scenarios(const Compiled &compiled) : compiled_(compiled) {
    for (std::size_t area = 0; area < compiled.areas.size(); ++area) add_links(area);
    for (const RouterId router : compiled.roots) add_router(router);
  }
  std::vector<Scenario> all;

 private:
  void add_links(std::size_t area) {
    const AreaGraph &graph = compiled_.areas[area].graph;
    const auto add = [&](Failure failure, std::vector<EdgeName> edges) {
      failure.area = graph.id();
      all.push_back({failure, {{area, std::move(edges)}}});
    };
    for (std::uint32_t from = graph.first_router(); from < graph.size(); ++from) {
      for (const Edge &edge : graph.edges(from)) {
        const GraphLink &link = graph.link(edge.link);
        if (link.type != LinkType::point_to_point) continue;
        std::vector<EdgeName> edges{{from, edge.to, edge.link}};
        if (link.other != none) {
          if (link.other < edge.link) continue;  // the other end has it
          edges.push_back({edge.to, from, link.other});
        }
        add({.from = graph.router(from).id, .to = graph.router(edge.to).id, .isolated = {}},
            std::move(edges));
      }
    }
    for (std::uint32_t network = 0; network < graph.first_router(); ++network) {
      const auto on = graph.edges(network);
      const std::uint32_t name = graph.network(network).identifier;
      if (on.size() == 2) {
        std::vector<EdgeName> edges = ways_of(graph, network, on[0].to);
        const std::vector<EdgeName> more = ways_of(graph, network, on[1].to);
        edges.insert(edges.end(), more.begin(), more.end());
        add({.from = graph.router(on[0].to).id,
             .to = graph.router(on[1].to).id,
             .network = name,
             .isolated = {}},
            std::move(edges));
        continue;
      }
      for (const Edge &each : on) {
        add({.kind = Failure::Kind::attachment,
             .from = graph.router(each.to).id,
             .network = name,
             .isolated = {}},
            ways_of(graph, network, each.to));
      }
    }
  }

  static std::vector<EdgeName> ways_of(const AreaGraph &graph, std::uint32_t network,
                                       std::uint32_t router) {
    std::vector<EdgeName> edges{{network, router, none}};
    for (const Edge &edge : graph.edges(router)) {
      if (edge.to == network) edges.push_back({router, network, edge.link});
    }
    return edges;
  }

  void add_router(RouterId router) {
    Scenario scenario;
    scenario.failure.kind = Failure::Kind::router;
    scenario.failure.from = router;
    for (std::size_t area = 0; area < compiled_.areas.size(); ++area) {
      const AreaGraph &graph = compiled_.areas[area].graph;
      const std::uint32_t vertex = graph.vertex_of(router);
      if (vertex == none) continue;
      std::vector<EdgeName> edges;
      for (const Edge &edge : graph.edges(vertex)) {
        edges.push_back({vertex, edge.to, edge.link});
        for (const Edge &back : graph.edges(edge.to)) {
          if (back.to == vertex) edges.push_back({edge.to, vertex, back.link});
        }
      }
      scenario.edges.emplace_back(area, std::move(edges));
    }
    all.push_back(std::move(scenario));
  }

  const Compiled &compiled_;
};

}  // namespace

std::vector<Failure> all_failures(
    const Calculator &calculator,
    const std::function<void(std::size_t done, std::size_t all)> &progress) {
  const std::vector<RouterId> &routers = calculator.routers();
  Network network(calculator);
  std::vector<Failure> found;
  std::vector<std::size_t> reached(routers.size());
  const std::vector<std::uint32_t> &before = network.distances();
  for (std::size_t at = 0; at < before.size(); ++at) {
    reached[at / network.size()] += before[at] != unreachable ? 1 : 0;
  }
  std::vector<std::size_t> lost(routers.size());
  Scenarios scenarios(calculator.compiled());
  for (std::size_t at = 0; at < scenarios.all.size(); ++at) {
    Failure failure = scenarios.all[at].failure;
    const bool is_router = failure.kind == Failure::Kind::router;
    const std::uint32_t gone = is_router ? network.number_of(failure.from) : none;
    std::fill(lost.begin(), lost.end(), 0);
    network.without(scenarios.all[at].edges,
                    [&](std::uint32_t a, std::uint32_t b, std::uint32_t distance) {
                      if (a == gone || b == gone) return;
                      if (distance == unreachable) {
                        ++failure.cut_off;
                        ++lost[a];
                        return;
                      }
                      // Between areas a way may also become shorter, when that within an area is
                      // gone.
                      const std::uint32_t old = before[std::size_t{a} * network.size() + b];
                      if (distance <= old) return;
                      ++failure.longer;
                      failure.added += distance - old;
                      failure.most_added = std::max(failure.most_added, distance - old);
                    });
    for (std::size_t router = 0; router < lost.size(); ++router) {
      if (lost[router] > 0 && 2 * lost[router] >= reached[router]) {
        failure.isolated.push_back(routers[router]);
      }
    }
    found.push_back(std::move(failure));
    if (progress) progress(at + 1, scenarios.all.size());
  }
  std::stable_sort(found.begin(), found.end(), [](const Failure &a, const Failure &b) {
    return std::tuple(b.cut_off, b.added) < std::tuple(a.cut_off, a.added);
  });
  return found;
}

}  // namespace ospf_routes
