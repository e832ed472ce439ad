#include "views/topology_way.hpp"

namespace tool {

namespace {

using namespace ospf_routes;

bool over_link(const Topology &topology, const PathStep &step, RouterId next, WayOver &way) {
  bool any = false;
  for (std::size_t at = 0; at < topology.links.size(); ++at) {
    const TopologyLink &link = topology.links[at];
    if (link.area != step.area || link.kind == LinkKind::virtual_link) continue;
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
