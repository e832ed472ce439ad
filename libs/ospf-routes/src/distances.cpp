#include "distances.hpp"

#include <algorithm>

namespace ospf_routes {

namespace {

bool fails(const std::vector<Distances::EdgeName> &edges, std::uint32_t from, std::uint32_t to,
           std::uint32_t link) {
  return std::any_of(edges.begin(), edges.end(), [&](const Distances::EdgeName &edge) {
    return edge.from == from && edge.to == to && edge.link == link;
  });
}

}  // namespace

Distances::Distances(const AreaGraph &graph)
    : graph_(graph), marks_(graph.size()), seen_(graph.size()), now_(graph.size()) {
  std::vector<std::uint32_t> row;
  rows_.reserve(std::size_t{graph.size() - graph.first_router()} * graph.size());
  for (std::uint32_t root = graph.first_router(); root < graph.size(); ++root) {
    shortest_paths(
        graph, root, heap_, row, [](const Edge &, std::uint32_t) { return true; },
        [](std::uint32_t, const Edge &, bool) {});
    rows_.insert(rows_.end(), row.begin(), row.end());
  }
  std::vector<std::vector<InEdge>> in(graph.size());
  for (std::uint32_t from = 0; from < graph.size(); ++from) {
    for (const Edge &edge : graph.edges(from)) {
      in[edge.to].push_back({from, edge.cost, edge.link});
      has_free_links_ |= edge.cost == 0 && graph.is_router(from);
    }
  }
  first_in_.push_back(0);
  for (const std::vector<InEdge> &each : in) {
    in_.insert(in_.end(), each.begin(), each.end());
    first_in_.push_back(static_cast<std::uint32_t>(in_.size()));
  }
}

// The vertices all of whose shortest paths from the root go over a failed edge, in affected_ and
// marks_; false when there is none. They are looked at from near to far, so that those before a
// vertex are known when it is its turn. Free links would spoil that order: then all that is reached
// counts.
bool Distances::find_affected(std::uint32_t root, const std::vector<EdgeName> &edges) {
  affected_.clear();
  heap_.clear();
  const auto is_tight = [&](std::uint32_t from, std::uint32_t to, std::uint32_t cost) {
    const std::uint32_t before = at(root, from);
    return before != unreachable && leads_on(root, from) && before + cost == at(root, to);
  };
  std::vector<std::uint32_t> touched;
  const auto look_at = [&](std::uint32_t vertex) {
    if (seen_[vertex] || vertex == root) return;
    seen_[vertex] = true;
    touched.push_back(vertex);
    heap_.push(at(root, vertex), vertex);
  };
  for (const EdgeName &edge : edges) {
    for (const Edge &each : graph_.edges(edge.from)) {
      if (each.to == edge.to && each.link == edge.link && is_tight(edge.from, edge.to, each.cost)) {
        look_at(edge.to);
      }
    }
  }
  if (!heap_.empty() && has_free_links_) {
    for (std::uint32_t vertex = 0; vertex < graph_.size(); ++vertex) {
      if (at(root, vertex) != unreachable) look_at(vertex);
    }
  }
  while (!heap_.empty()) {
    const std::uint32_t vertex = heap_.pop().second;
    bool is_held = false;
    for (std::uint32_t each = first_in_[vertex]; each < first_in_[vertex + 1] && !is_held; ++each) {
      const InEdge &in = in_[each];
      is_held = !marks_[in.from] && is_tight(in.from, vertex, in.cost) &&
                !fails(edges, in.from, vertex, in.link);
    }
    if (is_held && !has_free_links_) continue;
    marks_[vertex] = true;
    affected_.push_back(vertex);
    for (const Edge &edge : graph_.edges(vertex)) {
      if (is_tight(vertex, edge.to, edge.cost)) look_at(edge.to);
    }
  }
  for (const std::uint32_t vertex : touched) seen_[vertex] = false;
  return !affected_.empty();
}

void Distances::find_distances(std::uint32_t root, const std::vector<EdgeName> &edges) {
  heap_.clear();
  for (const std::uint32_t vertex : affected_) {
    std::uint32_t best = unreachable;
    for (std::uint32_t each = first_in_[vertex]; each < first_in_[vertex + 1]; ++each) {
      const InEdge &in = in_[each];
      if (marks_[in.from] || at(root, in.from) == unreachable || !leads_on(root, in.from) ||
          fails(edges, in.from, vertex, in.link)) {
        continue;
      }
      best = std::min(best, at(root, in.from) + in.cost);
    }
    now_[vertex] = best;
    if (best != unreachable) heap_.push(best, vertex);
  }
  while (!heap_.empty()) {
    const auto [distance, vertex] = heap_.pop();
    if (distance != now_[vertex] || !leads_on(root, vertex)) continue;
    for (const Edge &edge : graph_.edges(vertex)) {
      if (!marks_[edge.to] || fails(edges, vertex, edge.to, edge.link)) continue;
      if (distance + edge.cost < now_[edge.to]) {
        now_[edge.to] = distance + edge.cost;
        heap_.push(now_[edge.to], edge.to);
      }
    }
  }
}

}  // namespace ospf_routes
