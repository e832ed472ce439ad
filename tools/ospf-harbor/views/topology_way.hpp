// The parts of a topology that stand out since packets go over them.
#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "ospf_routes/paths.hpp"
#include "views/topology.hpp"

namespace tool {

// By their places in the topology.
struct WayOver {
  std::set<std::size_t> links;
  std::set<std::size_t> attachments;
  std::set<std::uint32_t> routers;
};

// What of a topology the paths go over. Of equal links side by side all are on the way.
WayOver way_over(const Topology &topology, const std::vector<ospf_routes::Path> &paths);

}  // namespace tool
