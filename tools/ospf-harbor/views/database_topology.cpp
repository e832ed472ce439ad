#include "views/database_topology.hpp"

#include <algorithm>

namespace tool {

namespace {

using namespace ospf_routes;

class TopologyBuilder {
 public:
  explicit TopologyBuilder(const Database &database) : database_(database) {
    topology_.version = database.version;
  }

  Topology build() {
    for (const Area &area : database_.areas) {
      area_ = &area;
      if (!area.routers.empty()) topology_.areas.insert(area.id);
      for (const NetworkLsa &lsa : area.networks) add_network(lsa);
      for (const RouterLsa &lsa : area.routers) add_router(lsa);
      for (const IntraAreaPrefixLsa &lsa : area.prefix_lsas) add_prefixes(lsa);
    }
    return std::move(topology_);
  }

 private:
  NetworkId network_id(std::uint32_t id, RouterId router) const {
    return {area_->id, id, database_.version == 2 ? 0 : router};
  }

  TopologyRouter &router(RouterId id) {
    TopologyRouter &router = topology_.routers[id];
    router.areas.insert(area_->id);
    return router;
  }

  void add_network(const NetworkLsa &lsa) {
    const NetworkId id = network_id(lsa.link_state_id, lsa.router);
    TopologyNetwork &network = topology_.networks[id];
    network.has_lsa = true;
    network.designated_router = lsa.router;
    if (database_.version == 2) {
      network.prefixes.push_back(
          text_of(make_prefix(ipv4_address(lsa.link_state_id), lsa.length), database_.family));
    }
    for (const RouterId each : lsa.attached) {
      router(each);
      attachment(id, each).listed = true;
    }
  }

  TopologyAttachment &attachment(const NetworkId &network, RouterId router) {
    for (TopologyAttachment &each : topology_.attachments) {
      if (each.network == network && each.router == router) return each;
    }
    topology_.attachments.push_back({network, router, std::nullopt, false});
    return topology_.attachments.back();
  }

  void add_router(const RouterLsa &lsa) {
    TopologyRouter &own = router(lsa.router);
    own.has_lsa = true;
    own.area_border |= lsa.border;
    own.as_boundary |= lsa.boundary;
    for (const RouterLink &link : lsa.links) {
      switch (link.type) {
        case LinkType::stub:
          add_stub(lsa.router, link.stub, link.metric);
          break;
        case LinkType::transit: {
          const NetworkId id = network_id(link.neighbor_interface, link.neighbor);
          topology_.networks[id];
          attachment(id, lsa.router).cost = link.metric;
          break;
        }
        default:
          add_link(lsa.router, link);
      }
    }
  }

  // With the first link of the other end that nothing has been put together with.
  void add_link(RouterId from, const RouterLink &link) {
    router(link.neighbor);
    const LinkKind kind =
        link.type == LinkType::virtual_link ? LinkKind::virtual_link : LinkKind::point_to_point;
    for (TopologyLink &each : topology_.links) {
      if (each.area == area_->id && each.kind == kind && each.routers[0] == link.neighbor &&
          each.routers[1] == from && !each.costs[1]) {
        each.costs[1] = link.metric;
        return;
      }
    }
    TopologyLink added;
    added.kind = kind;
    added.area = area_->id;
    added.routers[0] = from;
    added.routers[1] = link.neighbor;
    added.costs[0] = link.metric;
    topology_.links.push_back(added);
  }

  void add_stub(RouterId router, const Prefix &prefix, std::uint32_t cost) {
    topology_.stubs.push_back({area_->id, router, text_of(prefix, database_.family), cost});
  }

  void add_prefixes(const IntraAreaPrefixLsa &lsa) {
    for (const IntraAreaPrefix &each : lsa.prefixes) {
      if (!lsa.of_network) {
        add_stub(lsa.referenced_router, each.prefix, each.metric);
        continue;
      }
      const auto at = topology_.networks.find(network_id(lsa.referenced_id, lsa.referenced_router));
      if (at != topology_.networks.end()) {
        at->second.prefixes.push_back(text_of(each.prefix, database_.family));
      }
    }
  }

  const Database &database_;
  const Area *area_ = nullptr;
  Topology topology_;
};

bool over_link(const Topology &topology, const PathStep &step, RouterId next, WayOver &way) {
  bool any = false;
  for (std::size_t at = 0; at < topology.links.size(); ++at) {
    const TopologyLink &link = topology.links[at];
    if (link.area != step.area || link.kind != LinkKind::point_to_point) continue;
    for (const int end : {0, 1}) {
      if (link.routers[end] == step.router && link.routers[1 - end] == next &&
          link.costs[end] == step.cost) {
        way.links.insert(at);
        any = true;
      }
    }
  }
  return any;
}

void over_network(const Topology &topology, const PathStep &step, RouterId next, WayOver &way) {
  for (std::size_t at = 0; at < topology.attachments.size(); ++at) {
    const TopologyAttachment &from = topology.attachments[at];
    if (from.router != step.router || std::get<0>(from.network) != step.area ||
        from.cost != step.cost) {
      continue;
    }
    for (std::size_t other = 0; other < topology.attachments.size(); ++other) {
      const TopologyAttachment &to = topology.attachments[other];
      if (to.router == next && to.network == from.network) {
        way.attachments.insert(at);
        way.attachments.insert(other);
      }
    }
  }
}

}  // namespace

Topology topology_of(const Database &database) { return TopologyBuilder(database).build(); }

WayOver way_over(const Topology &topology, const std::vector<Path> &paths) {
  WayOver way;
  for (const Path &path : paths) {
    for (std::size_t at = 0; at < path.steps.size(); ++at) {
      const PathStep &step = path.steps[at];
      const RouterId next = at + 1 < path.steps.size() ? path.steps[at + 1].router : path.last;
      way.routers.insert(step.router);
      if (!over_link(topology, step, next, way)) over_network(topology, step, next, way);
    }
    way.routers.insert(path.last);
  }
  return way;
}

}  // namespace tool
