// The topology that the databases of one instance describe, as a graph: routers, networks and the
// links between them. A link counts as whole only when both of its ends speak of it (RFC 2328,
// 16.1). Draws nothing.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "ospf_routes/database.hpp"
#include "views/network_lists.hpp"

namespace tool {

// Of a part of a topology that two sources were put together for.
enum class TopologyChange { none, came, went, changed };

struct TopologyRouter {
  std::set<std::uint32_t> areas;
  bool has_lsa = false;  // else others speak of it alone
  bool area_border = false;
  bool as_boundary = false;
  std::size_t externals = 0;  // that it announces, without a default route
  std::size_t nssa_externals = 0;
  std::set<std::string> defaults;  // what it announces the default route as
  TopologyChange change = TopologyChange::none;
  std::string before;  // its facts, where they have changed

  // "ABR, ASBR", and "3 externals, default"; empty when there is nothing to say.
  std::string roles() const;
  std::string announcements() const;
};

// A network with a designated router, as its network LSA identifies it: by area, link-state ID and,
// in OSPFv3, the advertising router.
using NetworkId = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>;

struct TopologyNetwork {
  bool has_lsa = false;
  bool non_broadcast = false;
  std::uint32_t designated_router = 0;  // its router ID, 0 when no LSA says it
  std::vector<std::string> prefixes;
  TopologyChange change = TopologyChange::none;
  std::uint32_t designated_before = 0;
};

enum class LinkKind { point_to_point, point_to_multipoint, virtual_link };

// Between two routers. An end that does not speak of the link has no cost.
struct TopologyLink {
  LinkKind kind = LinkKind::point_to_point;
  std::uint32_t area = 0;
  std::uint32_t routers[2] = {};
  std::optional<std::uint32_t> costs[2];
  std::uint32_t interfaces[2] = {};  // of each end, as its router LSA has it
  std::string addresses[2];          // of the interfaces, where LSAs tell them
  std::string prefix;                // of the link itself, where an end announces it
  TopologyChange change = TopologyChange::none;
  std::optional<std::uint32_t> costs_before[2];

  bool both_ways() const { return costs[0] && costs[1]; }
};

struct TopologyAttachment {
  NetworkId network;
  std::uint32_t router = 0;
  std::optional<std::uint32_t> cost;  // the router's, empty when it does not speak of the network
  bool listed = false;                // the network LSA lists the router
  std::string address;
  TopologyChange change = TopologyChange::none;
  std::optional<std::uint32_t> cost_before{};

  bool both_ways() const { return cost && listed; }
};

struct TopologyStub {
  std::uint32_t area = 0;
  std::uint32_t router = 0;
  std::string prefix;
  std::optional<std::uint32_t> cost;
  TopologyChange change = TopologyChange::none;
  std::optional<std::uint32_t> cost_before{};
};

struct Topology {
  InstanceName instance;
  bool is_difference = false;
  std::map<std::uint32_t, TopologyRouter> routers;
  std::map<NetworkId, TopologyNetwork> networks;
  std::vector<TopologyLink> links;
  std::vector<TopologyAttachment> attachments;
  std::vector<TopologyStub> stubs;
  std::map<std::uint32_t, std::string> areas;  // with their kinds, "" for one that nobody tells
  RouterNames names;
};

// What the databases say; of area kinds, names and non-broadcast networks they say nothing.
Topology topology_of(const ospf_routes::Database &database);

// Adds what is known of areas, interfaces and names.
void add_lists(Topology &topology, const NetworkLists &lists);

}  // namespace tool
