// Distances from every router of an area, and what becomes of them when edges fail. Of a tree of
// shortest paths only what hung on a failed edge is calculated again.
#pragma once

#include <set>
#include <vector>

#include "area_graph.hpp"
#include "shortest_paths.hpp"

namespace ospf_routes {

class Distances {
 public:
  explicit Distances(const AreaGraph &graph);

  const AreaGraph &graph() const { return graph_; }
  // From a router to a vertex.
  std::uint32_t at(std::uint32_t router, std::uint32_t vertex) const {
    return rows_[std::size_t{router - graph_.first_router()} * graph_.size() + vertex];
  }

  // An edge by the vertex that it leaves and its place there.
  struct EdgeName {
    std::uint32_t from = 0;
    std::uint32_t to = 0;
    std::uint32_t link = none;
  };

  // Calls changed(root, vertex, distance) for each distance that is another without these edges.
  template <typename Changed>
  void without(const std::vector<EdgeName> &edges, Changed changed) {
    for (std::uint32_t root = graph_.first_router(); root < graph_.size(); ++root) {
      if (!find_affected(root, edges)) continue;
      find_distances(root, edges);
      for (const std::uint32_t vertex : affected_) {
        if (now_[vertex] != at(root, vertex)) changed(root, vertex, now_[vertex]);
        marks_[vertex] = false;
      }
    }
  }

 private:
  struct InEdge {
    std::uint32_t from;
    std::uint32_t cost;
    std::uint32_t link;
  };

  bool find_affected(std::uint32_t root, const std::vector<EdgeName> &edges);
  void find_distances(std::uint32_t root, const std::vector<EdgeName> &edges);
  bool leads_on(std::uint32_t root, std::uint32_t vertex) const {
    return vertex == root || !graph_.is_router(vertex) || graph_.router(vertex).forwards;
  }

  const AreaGraph &graph_;
  std::vector<std::uint32_t> rows_;
  std::vector<std::uint32_t> first_in_;
  std::vector<InEdge> in_;
  bool has_free_links_ = false;  // of cost 0 between routers
  DistanceHeap heap_;
  std::vector<bool> marks_;
  std::vector<bool> seen_;
  std::vector<std::uint32_t> affected_;
  std::vector<std::uint32_t> now_;
};

}  // namespace ospf_routes
