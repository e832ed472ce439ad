// Graphviz as a child process: a graph's text in, a picture or the places of its parts out. No
// shell is involved.
#pragma once

#include <string>
#include <vector>

namespace tool {

// Throws std::runtime_error with what Graphviz said, or with how to get it when it is missing.
std::string draw(const std::string &dot, const std::string &format);

// Where parts of a graph lie, in points, y growing downward.
struct NodePlace {
  double x = 0, y = 0;  // of the middle
  double width = 0, height = 0;
};
struct Layout {
  double width = 0, height = 0;
  std::vector<NodePlace> nodes;            // by the numbers behind the n of their IDs
  std::vector<std::vector<double>> edges;  // x, y, x, y ... of Bezier curves, three steps for each
};

// The same of the text that dot_text() makes.
Layout laid_out(const std::string &dot, std::size_t nodes, std::size_t edges);

}  // namespace tool
