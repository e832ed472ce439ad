// The tables of the model as the tool fills and reads them: one root row in tbl_ospf_rev1, below it
// the instances, their areas, interfaces and neighbours, tied together by reference.
#pragma once

#include <string>
#include <vector>

#include "network.hpp"
#include "session.hpp"

namespace tool {

// Puts an instance into the tree; one of the same address family and router ID gives way. On a
// failure the tree is as it was.
void add_instance(Session &session, const Instance &instance);

// Empties and frees every table.
void clear_tree(Session &session);

// One row on the way through the tree.
struct Row {
  std::string kind;  // "ospf", "instance", "area", "interface" or "neighbor"
  std::string key;   // as a path names it
  std::string text;  // the record's text form
  std::vector<Row> children;
};

// The whole tree, in the order of its traversal; empty when nothing is loaded.
std::vector<Row> read_tree(Session &session);

}  // namespace tool
