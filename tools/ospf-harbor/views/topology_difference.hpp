// Two topologies of one instance as one: what both have, what came and what went, each part with
// how it changed.
#pragma once

#include "views/topology.hpp"

namespace tool {

Topology difference_of(const Topology &before, const Topology &after);

}  // namespace tool
