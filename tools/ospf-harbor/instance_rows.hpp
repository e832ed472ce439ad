// Fills the tables with what a routing daemon says of itself: an instance row with its areas,
// interfaces and neighbours, below the one root row.
#pragma once

#include "network.hpp"
#include "session.hpp"

namespace tool {

// Puts an instance into the tree; one of the same address family and router ID gives way. On a
// failure the tree is as it was.
void add_instance(Session &session, const Instance &instance);

}  // namespace tool
