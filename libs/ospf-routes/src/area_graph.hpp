// The graph of one area (RFC 2328, 16.1): routers and networks with the links that both of their
// ends speak of. Built once for all roots; never changed after. Networks come before routers, each
// in the order of their identifiers, so that of two vertices at one distance the lower number is
// the one to take first.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "ospf_routes/database.hpp"

namespace ospf_routes {

inline constexpr std::uint32_t none = 0xffffffff;

struct Edge {
  std::uint32_t to = 0;
  std::uint32_t cost = 0;
  std::uint32_t link = none;  // of the router that it leaves; none from a network
};

// A link of a router-LSA that leads to a vertex.
struct GraphLink {
  LinkType type = LinkType::point_to_point;
  std::uint32_t to = none;
  std::uint32_t interface = 0;  // own, as in the LSA
  std::uint32_t other = none;   // the link of the other router that is its other end
};

struct GraphRouter {
  RouterId id = 0;
  std::uint32_t first_link = 0;  // of AreaGraph::links; its links end where those of the next begin
  bool border = false;
  bool boundary = false;
  bool virtual_end = false;
  bool takes_externals = false;
  bool forwards = true;
};

struct GraphNetwork {
  RouterId router = 0;           // 0 in OSPFv2
  std::uint32_t identifier = 0;  // link-state ID
  std::uint32_t length = 0;      // of the prefix, in OSPFv2 alone
};

// Where an area's prefixes hang on the graph.
struct VertexPrefix {
  std::uint32_t vertex = 0;
  std::uint32_t metric = 0;
  Prefix prefix;
};

class AreaGraph {
 public:
  // Sentences on what is missing are added to `lacks`.
  AreaGraph(const Area &area, std::uint8_t version, std::vector<std::string> &lacks);

  AreaId id() const { return id_; }
  std::uint32_t size() const {
    return static_cast<std::uint32_t>(networks_.size() + routers_.size());
  }
  bool is_router(std::uint32_t vertex) const { return vertex >= networks_.size(); }
  const GraphRouter &router(std::uint32_t vertex) const {
    return routers_[vertex - networks_.size()];
  }
  const GraphNetwork &network(std::uint32_t vertex) const { return networks_[vertex]; }
  std::span<const GraphNetwork> networks() const { return networks_; }
  std::uint32_t first_router() const { return static_cast<std::uint32_t>(networks_.size()); }

  std::uint32_t vertex_of(RouterId router) const;  // none when it has no router-LSA
  std::uint32_t vertex_of_network(RouterId router, std::uint32_t identifier) const;

  std::span<const Edge> edges(std::uint32_t vertex) const {
    return {edges_.data() + first_edge_[vertex], edges_.data() + first_edge_[vertex + 1]};
  }
  std::span<const GraphLink> links(std::uint32_t vertex) const;
  const GraphLink &link(std::uint32_t number) const { return links_[number]; }
  std::span<const VertexPrefix> prefixes() const { return prefixes_; }

 private:
  struct LsaLink {
    std::uint32_t router;  // position in routers_
    const RouterLink *link;
  };

  void add_routers(const Area &area);
  void add_networks(const Area &area, std::uint8_t version);
  void add_links(const Area &area, std::vector<std::string> &lacks);
  void pair_links(std::uint8_t version);
  void add_edges(std::uint8_t version);
  void add_prefixes_v2(const Area &area);
  void add_prefixes_v3(const Area &area, std::vector<std::string> &lacks);
  std::string where() const;

  AreaId id_;
  std::vector<GraphRouter> routers_;
  std::vector<GraphNetwork> networks_;
  std::vector<std::vector<RouterId>> attached_;  // by network, sorted; until the edges are made
  std::vector<GraphLink> links_;
  std::vector<std::uint32_t> link_costs_;     // as links_
  std::vector<std::uint32_t> link_from_;      // as links_, the vertex
  std::vector<std::uint32_t> link_neighbor_;  // as links_, OSPFv3: interface ID of the other end
  std::vector<std::uint32_t> first_edge_;
  std::vector<Edge> edges_;
  std::vector<VertexPrefix> prefixes_;
};

}  // namespace ospf_routes
