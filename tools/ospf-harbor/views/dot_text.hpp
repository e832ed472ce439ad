// A topology in the language of Graphviz. Colours stand for areas, and a legend says so; costs
// stand at the ends whose they are; a link that only one end speaks of is dashed.
#pragma once

#include <string>

#include "views/topology.hpp"

namespace tool {

struct DotOptions {
  bool stubs = false;  // stub networks too, and the prefixes of point-to-point links
};

std::string dot_text(const Topology &topology, const DotOptions &options);

}  // namespace tool
