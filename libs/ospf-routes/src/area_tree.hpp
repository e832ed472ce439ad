// The shortest paths from one router through one area, with the next hops that lead there.
#pragma once

#include <set>

#include "compiled.hpp"
#include "shortest_paths.hpp"

namespace ospf_routes {

// What a root knows of itself beside the graphs.
class Root {
 public:
  Root(const Compiled &compiled, RouterId router);

  RouterId id() const { return id_; }
  bool is_border() const { return is_border_; }
  // Of the area at this position; none when the root has no router-LSA there.
  std::uint32_t vertex(std::size_t area) const { return vertices_[area]; }
  bool has_address(const Address &address) const { return addresses_.contains(address); }

  OwnInterface interface_of(const CompiledArea &area, const GraphLink &link) const;
  // That an own prefix stands on, as far as databases tell.
  OwnInterface interface_of(const CompiledArea &area, const Prefix &prefix) const;

 private:
  void find_addresses(const CompiledArea &area, std::uint32_t vertex);

  const Compiled &compiled_;
  RouterId id_;
  bool is_border_ = false;
  std::vector<std::uint32_t> vertices_;
  std::set<Address> addresses_;
};

// The address of a router's interface by what its link says, or what its link-LSA says in OSPFv3.
std::optional<Address> address_of(const Compiled &compiled, const CompiledArea &area,
                                  RouterId router, std::uint32_t interface);

class AreaTree {
 public:
  // `others` are the trees of the areas that virtual links may cross; null but for the backbone.
  AreaTree(const Compiled &compiled, const Root &root, std::size_t area, HopSets &hops,
           DistanceHeap &heap, const std::vector<AreaTree> *others);

  const CompiledArea &area() const { return area_; }
  const AreaGraph &graph() const { return area_.graph; }
  std::uint32_t root_vertex() const { return root_vertex_; }
  std::uint32_t distance(std::uint32_t vertex) const { return distances_[vertex]; }
  bool reaches(std::uint32_t vertex) const { return distances_[vertex] != unreachable; }
  // The set of next hops to a vertex; empty for the root itself.
  std::uint32_t hops_to(std::uint32_t vertex) const;
  // Some router that is reached ends a virtual link here (RFC 2328, 16.1).
  bool is_transit() const { return is_transit_; }
  // Another router is next to the root here.
  bool has_neighbor() const { return has_neighbor_; }
  // Interfaces without a known address, of routers next to the root.
  const std::set<std::pair<RouterId, std::uint32_t>> &without_address() const {
    return without_address_;
  }

 private:
  void reached(std::uint32_t from, const Edge &edge, bool is_shorter);
  std::uint32_t first_hops(const Edge &edge);
  std::uint32_t hops_across(std::uint32_t network, std::uint32_t router);
  std::uint32_t virtual_hops(const GraphLink &link, std::uint32_t cost) const;
  std::optional<Address> address_next_to_root(RouterId router, std::uint32_t interface);

  const Compiled &compiled_;
  const Root &root_;
  const CompiledArea &area_;
  HopSets &hops_;
  const std::vector<AreaTree> *others_;
  std::uint32_t root_vertex_;
  bool is_transit_ = false;
  bool has_neighbor_ = false;
  std::vector<std::uint32_t> distances_;
  // By vertex: next hops that lead through another router.
  std::vector<std::uint32_t> through_;
  // By vertex, of networks that the root itself is on with a shortest path: its interfaces there.
  std::unordered_map<std::uint32_t, std::vector<OwnInterface>> direct_;
  std::set<std::pair<RouterId, std::uint32_t>> without_address_;
};

}  // namespace ospf_routes
