#include "area_graph.hpp"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

namespace ospf_routes {

namespace {

auto key_of(const GraphNetwork &network) { return std::pair(network.router, network.identifier); }

// The router-LSAs of an area that count, by router; of two of one name the first.
std::vector<const RouterLsa *> counted_routers(const Area &area) {
  std::vector<const RouterLsa *> lsas;
  for (const RouterLsa &lsa : area.routers) {
    if (lsa.in_family) lsas.push_back(&lsa);
  }
  const auto key = [](const RouterLsa *lsa) { return std::pair(lsa->router, lsa->link_state_id); };
  std::stable_sort(lsas.begin(), lsas.end(),
                   [&](const RouterLsa *a, const RouterLsa *b) { return key(a) < key(b); });
  lsas.erase(std::unique(lsas.begin(), lsas.end(),
                         [&](const RouterLsa *a, const RouterLsa *b) { return key(a) == key(b); }),
             lsas.end());
  return lsas;
}

}  // namespace

AreaGraph::AreaGraph(const Area &area, std::uint8_t version, std::vector<std::string> &lacks)
    : id_(area.id) {
  add_routers(area);
  add_networks(area, version);
  add_links(area, lacks);
  pair_links(version);
  add_edges(version);
  if (version == 2) {
    add_prefixes_v2(area);
  } else {
    add_prefixes_v3(area, lacks);
  }
}

std::string AreaGraph::where() const { return "area " + dotted(id_) + ": "; }

std::uint32_t AreaGraph::vertex_of(RouterId router) const {
  const auto at = std::lower_bound(routers_.begin(), routers_.end(), router,
                                   [](const GraphRouter &a, RouterId id) { return a.id < id; });
  if (at == routers_.end() || at->id != router) return none;
  return first_router() + static_cast<std::uint32_t>(at - routers_.begin());
}

std::uint32_t AreaGraph::vertex_of_network(RouterId router, std::uint32_t identifier) const {
  const auto wanted = std::pair(router, identifier);
  const auto at = std::lower_bound(
      networks_.begin(), networks_.end(), wanted,
      [](const GraphNetwork &network, const auto &key) { return key_of(network) < key; });
  if (at == networks_.end() || key_of(*at) != wanted) return none;
  return static_cast<std::uint32_t>(at - networks_.begin());
}

std::span<const GraphLink> AreaGraph::links(std::uint32_t vertex) const {
  const std::size_t at = vertex - networks_.size();
  const std::size_t end = at + 1 < routers_.size() ? routers_[at + 1].first_link : links_.size();
  return {links_.data() + routers_[at].first_link, links_.data() + end};
}

void AreaGraph::add_routers(const Area &area) {
  for (const RouterLsa *lsa : counted_routers(area)) {
    if (routers_.empty() || routers_.back().id != lsa->router) {
      routers_.push_back({.id = lsa->router, .forwards = true});
    }
    GraphRouter &router = routers_.back();
    router.border |= lsa->border;
    router.boundary |= lsa->boundary;
    router.virtual_end |= lsa->virtual_end;
    router.takes_externals |= lsa->takes_externals;
    router.forwards &= lsa->forwards;
  }
}

void AreaGraph::add_networks(const Area &area, std::uint8_t version) {
  std::vector<std::pair<GraphNetwork, const NetworkLsa *>> found;
  for (const NetworkLsa &lsa : area.networks) {
    found.push_back({{version == 2 ? 0 : lsa.router, lsa.link_state_id, lsa.length}, &lsa});
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const auto &a, const auto &b) { return key_of(a.first) < key_of(b.first); });
  for (const auto &[network, lsa] : found) {
    if (!networks_.empty() && key_of(networks_.back()) == key_of(network)) continue;
    networks_.push_back(network);
    attached_.push_back(lsa->attached);
    std::sort(attached_.back().begin(), attached_.back().end());
  }
}

void AreaGraph::add_links(const Area &area, std::vector<std::string> &lacks) {
  std::set<std::string> missing;
  RouterId last = 0;
  std::uint32_t from = none;
  for (const RouterLsa *lsa : counted_routers(area)) {
    if (from == none || lsa->router != last) {
      from = from == none ? first_router() : from + 1;
      last = lsa->router;
      routers_[from - networks_.size()].first_link = static_cast<std::uint32_t>(links_.size());
    }
    for (const RouterLink &link : lsa->links) {
      if (link.type == LinkType::stub) continue;
      const bool transit = link.type == LinkType::transit;
      const std::uint32_t to = transit ? vertex_of_network(link.neighbor, link.neighbor_interface)
                                       : vertex_of(link.neighbor);
      if (to == none) {
        missing.insert(transit ? where() + "no network-LSA " + dotted(link.neighbor_interface) +
                                     (link.neighbor != 0 ? " of " + dotted(link.neighbor) : "") +
                                     ", which the router-LSA of " + dotted(lsa->router) + " names"
                               : where() + "no router-LSA of " + dotted(link.neighbor) +
                                     ", which that of " + dotted(lsa->router) + " names");
      }
      links_.push_back({link.type, to, link.interface, none});
      link_costs_.push_back(link.metric);
      link_from_.push_back(from);
      link_neighbor_.push_back(link.neighbor_interface);
    }
  }
  for (std::size_t at = 0; at < networks_.size(); ++at) {
    for (const RouterId router : attached_[at]) {
      if (vertex_of(router) != none) continue;
      missing.insert(where() + "no router-LSA of " + dotted(router) + ", which network-LSA " +
                     dotted(networks_[at].identifier) + " lists");
    }
  }
  lacks.insert(lacks.end(), missing.begin(), missing.end());
}

// Finds the other end of each link between two routers. In OSPFv3 each end names the interface of
// the other. In OSPFv2 nothing does, but the addresses of the ends of one link differ in their last
// bits alone, so of several links between two routers the nearest addresses are taken together.
void AreaGraph::pair_links(std::uint8_t version) {
  // By both routers and the type, so that the links of one pair are neighbours in the list.
  std::vector<std::tuple<std::uint32_t, std::uint32_t, LinkType, std::uint32_t>> halves;
  for (std::uint32_t at = 0; at < links_.size(); ++at) {
    const GraphLink &link = links_[at];
    if (link.type == LinkType::transit || link.to == none) continue;
    const auto [low, high] = std::minmax(link_from_[at], link.to);
    halves.emplace_back(low, high, link.type, at);
  }
  std::sort(halves.begin(), halves.end());
  const auto pair_of = [](const auto &half) {
    return std::tuple(std::get<0>(half), std::get<1>(half), std::get<2>(half));
  };
  for (auto begin = halves.begin(); begin != halves.end();) {
    const auto end = std::find_if(
        begin, halves.end(), [&](const auto &half) { return pair_of(half) != pair_of(*begin); });
    std::vector<std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>> candidates;
    for (auto a = begin; a != end; ++a) {
      const std::uint32_t one = std::get<3>(*a);
      if (link_from_[one] != std::get<0>(*a)) continue;
      for (auto b = begin; b != end; ++b) {
        const std::uint32_t two = std::get<3>(*b);
        if (one == two || link_from_[two] != links_[one].to || links_[two].to != link_from_[one]) {
          continue;
        }
        if (version == 2) {
          candidates.emplace_back(links_[one].interface ^ links_[two].interface, one, two);
        } else if (links_[one].interface == link_neighbor_[two] &&
                   links_[two].interface == link_neighbor_[one]) {
          candidates.emplace_back(0, one, two);
        }
      }
    }
    std::sort(candidates.begin(), candidates.end());
    for (const auto &[apart, one, two] : candidates) {
      if (links_[one].other != none || links_[two].other != none) continue;
      links_[one].other = two;
      links_[two].other = one;
    }
    begin = end;
  }
}

// A link between routers counts when there is a link back: in OSPFv3 its other end, in OSPFv2,
// where ends do not name each other, any.
void AreaGraph::add_edges(std::uint8_t version) {
  std::vector<std::pair<std::uint32_t, std::uint32_t>> ways;
  std::vector<std::vector<Edge>> edges(size());
  std::vector<std::uint32_t> last_router(networks_.size(), none);
  for (std::uint32_t at = 0; at < links_.size(); ++at) {
    const GraphLink &link = links_[at];
    if (link.to != none && link.type != LinkType::transit)
      ways.emplace_back(link_from_[at], link.to);
  }
  std::sort(ways.begin(), ways.end());
  for (std::uint32_t at = 0; at < links_.size(); ++at) {
    const GraphLink &link = links_[at];
    const std::uint32_t from = link_from_[at];
    if (link.to == none) continue;
    if (link.type != LinkType::transit) {
      if (version == 2 ? !std::binary_search(ways.begin(), ways.end(), std::pair(link.to, from))
                       : link.other == none) {
        continue;
      }
      edges[from].push_back({link.to, link_costs_[at], at});
      continue;
    }
    const std::vector<RouterId> &listed = attached_[link.to];
    if (!std::binary_search(listed.begin(), listed.end(), router(from).id)) continue;
    edges[from].push_back({link.to, link_costs_[at], at});
    if (last_router[link.to] == from) continue;  // a second interface on the network
    last_router[link.to] = from;
    edges[link.to].push_back({from, 0, none});
  }
  first_edge_.push_back(0);
  for (const std::vector<Edge> &each : edges) {
    edges_.insert(edges_.end(), each.begin(), each.end());
    first_edge_.push_back(static_cast<std::uint32_t>(edges_.size()));
  }
  attached_ = {};
}

void AreaGraph::add_prefixes_v2(const Area &area) {
  for (std::uint32_t at = 0; at < networks_.size(); ++at) {
    // A mask of a host says that the network carries transit alone (RFC 6860).
    if (networks_[at].length == 32) continue;
    prefixes_.push_back(
        {at, 0, make_prefix(ipv4_address(networks_[at].identifier), networks_[at].length)});
  }
  for (const RouterLsa *lsa : counted_routers(area)) {
    for (const RouterLink &link : lsa->links) {
      if (link.type != LinkType::stub) continue;
      prefixes_.push_back({vertex_of(lsa->router), link.metric, link.stub});
    }
  }
}

void AreaGraph::add_prefixes_v3(const Area &area, std::vector<std::string> &lacks) {
  std::set<std::string> missing;
  for (const IntraAreaPrefixLsa &lsa : area.prefix_lsas) {
    if (lsa.referenced_router != lsa.router) continue;
    const std::uint32_t vertex = lsa.of_network
                                     ? vertex_of_network(lsa.referenced_router, lsa.referenced_id)
                                     : vertex_of(lsa.referenced_router);
    if (vertex == none) {
      missing.insert(where() + "no " + (lsa.of_network ? "network-LSA" : "router-LSA") + " of " +
                     dotted(lsa.referenced_router) + ", which its intra-area-prefix-LSA refers to");
      continue;
    }
    for (const IntraAreaPrefix &entry : lsa.prefixes) {
      if ((entry.options & prefix_no_unicast) != 0) continue;
      prefixes_.push_back({vertex, entry.metric, entry.prefix});
    }
  }
  lacks.insert(lacks.end(), missing.begin(), missing.end());
}

}  // namespace ospf_routes
