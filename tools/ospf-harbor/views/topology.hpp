// The topology that router and network LSAs of one version describe, as a graph: routers, networks
// and the links between them. A link counts as whole only when both of its ends speak of it
// (RFC 2328, 16.1). Built from plain LSAs; draws nothing.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "ospf_tables/lsdb_view.hpp"

namespace tool {

struct TopologyRouter {
  std::set<std::uint32_t> areas;
  bool has_lsa = false;  // else others speak of it alone
  bool area_border = false;
  bool as_boundary = false;
};

// A network with a designated router, as its network LSA identifies it: by area, link-state ID and,
// in OSPFv3, the advertising router.
using NetworkId = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>;

struct TopologyNetwork {
  bool has_lsa = false;
  std::uint32_t designated_router = 0;  // its router ID, 0 when no LSA says it
  std::vector<std::string> prefixes;
};

enum class LinkKind { point_to_point, virtual_link };

// Between two routers. An end that does not speak of the link has no cost.
struct TopologyLink {
  LinkKind kind = LinkKind::point_to_point;
  std::uint32_t area = 0;
  std::uint32_t routers[2] = {};
  std::optional<std::uint32_t> costs[2];
  std::string prefix;  // of the link itself, where an end announces it

  bool both_ways() const { return costs[0] && costs[1]; }
};

struct TopologyAttachment {
  NetworkId network;
  std::uint32_t router = 0;
  std::optional<std::uint32_t> cost;  // the router's, empty when it does not speak of the network
  bool listed = false;                // the network LSA lists the router

  bool both_ways() const { return cost && listed; }
};

struct TopologyStub {
  std::uint32_t area = 0;
  std::uint32_t router = 0;
  std::string prefix;
  std::optional<std::uint32_t> cost;
};

struct Topology {
  std::uint32_t version = 2;
  std::map<std::uint32_t, TopologyRouter> routers;
  std::map<NetworkId, TopologyNetwork> networks;
  std::vector<TopologyLink> links;
  std::vector<TopologyAttachment> attachments;
  std::vector<TopologyStub> stubs;
  std::set<std::uint32_t> areas;
};

// Of all entries of that version; LSAs at the end of their life (age 3600) do not count, and of
// several instances of one LSA, as the databases of several routers hold them, the first does.
// OSPFv3 instances on the same links are networks of their own: one of them is built.
Topology build_topology(const std::vector<ospf_tables::LsdbEntry> &entries, std::uint32_t version,
                        std::uint8_t instance_id = 0);

}  // namespace tool
