// Dijkstra's calculation on the graph of one area (RFC 2328, 16.1). The queue is a binary heap of
// single numbers, distance before vertex: a popped entry that a shorter one has overtaken is passed
// over. What is done at each relaxation is the caller's, so that plain distances cost nothing more.
#pragma once

#include <algorithm>
#include <functional>
#include <vector>

#include "area_graph.hpp"

namespace ospf_routes {

inline constexpr std::uint32_t unreachable = 0xffffffff;

class DistanceHeap {
 public:
  bool empty() const { return entries_.empty(); }
  void clear() { entries_.clear(); }
  void push(std::uint32_t distance, std::uint32_t vertex) {
    entries_.push_back(std::uint64_t{distance} << 32 | vertex);
    std::push_heap(entries_.begin(), entries_.end(), std::greater<>());
  }
  std::pair<std::uint32_t, std::uint32_t> pop() {
    std::pop_heap(entries_.begin(), entries_.end(), std::greater<>());
    const std::uint64_t entry = entries_.back();
    entries_.pop_back();
    return {static_cast<std::uint32_t>(entry >> 32), static_cast<std::uint32_t>(entry)};
  }

 private:
  std::vector<std::uint64_t> entries_;
};

// Fills `distances`, one for each vertex. `usable(edge, from)` passes over links that are not to
// count. `reached(from, edge, is_shorter)` is called for each edge of a shortest path so far: when
// is_shorter, what was said of the edge's end before no longer holds.
template <typename Usable, typename Reached>
void shortest_paths(const AreaGraph &graph, std::uint32_t root, DistanceHeap &heap,
                    std::vector<std::uint32_t> &distances, Usable usable, Reached reached) {
  distances.assign(graph.size(), unreachable);
  std::vector<bool> done(graph.size());
  heap.clear();
  distances[root] = 0;
  heap.push(0, root);
  while (!heap.empty()) {
    const auto [distance, vertex] = heap.pop();
    if (done[vertex]) continue;
    done[vertex] = true;
    // A router that does not forward is reached, but leads nowhere.
    if (vertex != root && graph.is_router(vertex) && !graph.router(vertex).forwards) continue;
    for (const Edge &edge : graph.edges(vertex)) {
      if (done[edge.to] || !usable(edge, vertex)) continue;
      const std::uint32_t length = distance + edge.cost;
      if (length > distances[edge.to]) continue;
      const bool is_shorter = length < distances[edge.to];
      if (is_shorter) {
        distances[edge.to] = length;
        heap.push(length, edge.to);
      }
      reached(vertex, edge, is_shorter);
    }
  }
}

}  // namespace ospf_routes
