#include "area_tree.hpp"

#include <tuple>

namespace ospf_routes {

namespace {

OwnInterface by_address(const Address &address) {
  return {OwnInterface::Form::address, 0, address};
}

}  // namespace

std::optional<Address> address_of(const Compiled &compiled, const CompiledArea &area,
                                  RouterId router, std::uint32_t interface) {
  if (compiled.database.version == 2) {
    if (interface < lowest_address) return std::nullopt;
    return ipv4_address(interface);
  }
  const LinkLsa *link = area.link_of(router, interface);
  if (link == nullptr) return std::nullopt;
  return link->address;
}

Root::Root(const Compiled &compiled, RouterId router) : compiled_(compiled), id_(router) {
  for (const CompiledArea &area : compiled.areas) {
    const std::uint32_t vertex = area.graph.vertex_of(router);
    vertices_.push_back(vertex);
    if (vertex == none) continue;
    is_border_ |= area.graph.router(vertex).border;
    find_addresses(area, vertex);
  }
}

void Root::find_addresses(const CompiledArea &area, std::uint32_t vertex) {
  if (compiled_.database.version == 2) {
    for (const GraphLink &link : area.graph.links(vertex)) {
      if (link.interface >= lowest_address) addresses_.insert(ipv4_address(link.interface));
    }
  }
  const unsigned host = width(compiled_.database.family);
  for (const CompiledPrefix &each : area.prefixes) {
    if (each.vertex != vertex) continue;
    const Prefix &prefix = compiled_.prefixes[each.prefix];
    if (prefix.length == host) addresses_.insert(prefix.address);
  }
}

OwnInterface Root::interface_of(const CompiledArea &area, const GraphLink &link) const {
  if (const auto address = address_of(compiled_, area, id_, link.interface)) {
    return by_address(*address);
  }
  return {OwnInterface::Form::number, link.interface, {}};
}

OwnInterface Root::interface_of(const CompiledArea &area, const Prefix &prefix) const {
  if (compiled_.database.version == 3) {
    for (const LinkLsa &lsa : area.links) {
      if (lsa.router != id_) continue;
      for (const Prefix &own : lsa.prefixes) {
        if (own == prefix) return by_address(lsa.address);
      }
    }
  } else {
    for (const GraphLink &link : area.graph.links(area.graph.vertex_of(id_))) {
      if (link.interface >= lowest_address && covers(prefix, ipv4_address(link.interface))) {
        return by_address(ipv4_address(link.interface));
      }
    }
  }
  if (prefix.length == width(compiled_.database.family)) return by_address(prefix.address);
  return {};
}

AreaTree::AreaTree(const Compiled &compiled, const Root &root, std::size_t area, HopSets &hops,
                   DistanceHeap &heap, const std::vector<AreaTree> *others)
    : compiled_(compiled),
      root_(root),
      area_(compiled.areas[area]),
      hops_(hops),
      others_(others),
      root_vertex_(root.vertex(area)),
      through_(area_.graph.size()) {
  shortest_paths(
      graph(), root_vertex_, heap, distances_, [](const Edge &, std::uint32_t) { return true; },
      [&](std::uint32_t from, const Edge &edge, bool is_shorter) {
        reached(from, edge, is_shorter);
      });
  for (std::uint32_t vertex = graph().first_router(); vertex < graph().size(); ++vertex) {
    if (!reaches(vertex)) continue;
    is_transit_ |= graph().router(vertex).virtual_end;
    has_neighbor_ |= vertex != root_vertex_;
  }
}

std::uint32_t AreaTree::hops_to(std::uint32_t vertex) const {
  const auto direct = direct_.find(vertex);
  if (direct == direct_.end()) return through_[vertex];
  std::vector<NextHop> attached;
  for (const OwnInterface &interface : direct->second) {
    attached.push_back({interface, std::nullopt, true});
  }
  return hops_.join(through_[vertex], hops_.add(std::move(attached)));
}

void AreaTree::reached(std::uint32_t from, const Edge &edge, bool is_shorter) {
  if (is_shorter) {
    through_[edge.to] = 0;
    direct_.erase(edge.to);
  }
  std::uint32_t set = 0;
  if (from == root_vertex_) {
    if (!graph().is_router(edge.to)) {
      direct_[edge.to].push_back(root_.interface_of(area_, graph().link(edge.link)));
      return;
    }
    set = first_hops(edge);
  } else {
    set = through_[from];
    if (direct_.contains(from)) set = hops_.join(set, hops_across(from, edge.to));
  }
  through_[edge.to] = hops_.join(through_[edge.to], set);
}

// Over a link from the root to another router.
std::uint32_t AreaTree::first_hops(const Edge &edge) {
  const GraphLink &link = graph().link(edge.link);
  if (link.type == LinkType::virtual_link) return virtual_hops(link, edge.cost);
  std::optional<Address> address;
  if (link.other != none) {
    address = address_next_to_root(graph().router(edge.to).id, graph().link(link.other).interface);
  }
  return hops_.add({{root_.interface_of(area_, link), address, false}});
}

// From a network that the root is on to a router there.
std::uint32_t AreaTree::hops_across(std::uint32_t network, std::uint32_t router) {
  std::vector<NextHop> found;
  for (const GraphLink &link : graph().links(router)) {
    if (link.type != LinkType::transit || link.to != network) continue;
    const auto address = address_next_to_root(graph().router(router).id, link.interface);
    for (const OwnInterface &interface : direct_[network]) {
      found.push_back({interface, address, false});
    }
  }
  return hops_.add(std::move(found));
}

// A virtual link leads where the paths through its transit area lead. Databases do not say which
// area that is: the one that has the link's own address, else the one whose paths cost what the
// link says.
std::uint32_t AreaTree::virtual_hops(const GraphLink &link, std::uint32_t cost) const {
  const AreaTree *best = nullptr;
  std::tuple<bool, bool, std::uint32_t> best_misfit;
  std::uint32_t best_vertex = none;
  const RouterId end = graph().router(link.to).id;
  for (const AreaTree &tree : *others_) {
    const std::uint32_t vertex = tree.graph().vertex_of(end);
    if (vertex == none || !tree.reaches(vertex)) continue;
    bool has_address = false;
    for (const GraphLink &own : tree.graph().links(tree.root_vertex())) {
      has_address |= own.interface == link.interface;
    }
    const std::tuple misfit(!has_address, tree.distance(vertex) != cost, tree.distance(vertex));
    if (best != nullptr && best_misfit <= misfit) continue;
    best = &tree;
    best_misfit = misfit;
    best_vertex = vertex;
  }
  return best == nullptr ? 0 : best->hops_to(best_vertex);
}

std::optional<Address> AreaTree::address_next_to_root(RouterId router, std::uint32_t interface) {
  auto address = address_of(compiled_, area_, router, interface);
  if (!address) without_address_.emplace(router, interface);
  return address;
}

}  // namespace ospf_routes
