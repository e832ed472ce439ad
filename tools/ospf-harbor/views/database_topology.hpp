// The topology of databases that routes are calculated from, which may be those of a what-if, and
// the parts of it that paths go over.
#pragma once

#include <vector>

#include "ospf_routes/database.hpp"
#include "ospf_routes/paths.hpp"
#include "views/dot_text.hpp"
#include "views/topology.hpp"

namespace tool {

Topology topology_of(const ospf_routes::Database &database);

// What of a topology the paths go over. Of equal links side by side all are on the way.
WayOver way_over(const Topology &topology, const std::vector<ospf_routes::Path> &paths);

}  // namespace tool
