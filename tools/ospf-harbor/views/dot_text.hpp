// A topology in the language of Graphviz. Colours stand for areas, and a legend says so; costs
// stand at the ends whose they are; a link that only one end speaks of is dashed; what is on the
// way of packets is thick.
#pragma once

#include <set>
#include <string>

#include "views/topology.hpp"

namespace tool {

// The parts of a topology that stand out since packets go over them, by their places in it.
struct WayOver {
  std::set<std::size_t> links;
  std::set<std::size_t> attachments;
  std::set<std::uint32_t> routers;
};

struct DotOptions {
  bool stubs = false;  // stub networks too, and the prefixes of point-to-point links
  WayOver way{};
};

std::string dot_text(const Topology &topology, const DotOptions &options);

}  // namespace tool
