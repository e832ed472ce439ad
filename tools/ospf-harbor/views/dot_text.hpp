// A picture in the language of Graphviz. Colours stand for areas, or for what changed, and a legend
// says so; costs stand at the ends whose they are.
#pragma once

#include <string>

#include "views/picture.hpp"

namespace tool {

// How a graph of its size is drawn. With more routers names and costs get smaller, and the engine
// is the one that is made for many nodes. Lines go around nodes that they have nothing to do with,
// until that takes too long to find out (seconds at 200 routers, with their number cubed): then
// they pass behind.
struct DotStyle {
  std::size_t routers;  // up to which it is for
  const char *engine;
  const char *layout;  // attributes of the graph for that engine
  const char *cost_distance;
  int router_font;
  int network_font;
  int cost_font;
  int legend_font;
  double line_width;
};

const DotStyle &dot_style(const Picture &picture);

// Nodes and lines have the IDs "n0", "n1" ... and "e0", "e1" ..., by their places in the picture.
std::string dot_text(const Picture &picture);

}  // namespace tool
