// Finds elements of a parsed document by parent and name without walking siblings. It is made once,
// when the document is parsed, so that a record of many fields or an array of many elements is read
// in time that grows with the document and not with its square.
#pragma once

#include <pugixml.hpp>
#include <span>
#include <string_view>
#include <vector>

namespace kelp {

class ElementIndex {
 public:
  using Nodes = std::span<pugi::xml_node_struct *const>;

  // Takes in every element below tree. False when one lies deeper than max_depth; *too_deep then is
  // that element.
  bool build(const pugi::xml_document &tree, int max_depth, pugi::xml_node *too_deep);

  // All elements of that name, in document order.
  Nodes named(std::string_view name) const;

  // The children of that name, in document order.
  Nodes children(pugi::xml_node parent, std::string_view name) const;

 private:
  std::vector<pugi::xml_node_struct *> by_name_;
  std::vector<pugi::xml_node_struct *> by_parent_;
};

}  // namespace kelp
