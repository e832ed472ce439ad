// Graphviz as a child process: a graph's text in, a picture out. No shell is involved.
#pragma once

#include <string>

namespace tool {

// Throws std::runtime_error with what Graphviz said, or with how to get it when it is missing.
std::string draw(const std::string &dot, const std::string &format);

}  // namespace tool
