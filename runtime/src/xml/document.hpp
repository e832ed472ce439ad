// A parsed document and the look-up of one path in it. The exported look-ups and the from_xml
// operations of the primitives stand on Find; nobody changes a document after Parse.
#pragma once

#include <pugixml.hpp>
#include <string_view>
#include <vector>

#include "kelp/base.h"
#include "xml/element_index.hpp"

namespace kelp {

// Line and column of a byte, both from 1; columns count bytes.
struct Position {
  size_t line;
  size_t column;
};

// Where the lines of a text start.
class LineMap {
 public:
  explicit LineMap(std::string_view text);
  Position at(size_t offset) const;

 private:
  std::vector<size_t> starts_;
};

// What a path leads to.
struct Found {
  uint32_t code = 0;                   // 0, or 2 for no element, or 22 for a path of another form
  ElementIndex::Node first = nullptr;  // when code is 0
  uint32_t count = 0;                  // how many there are, see xml_get_element_nodecount
  ElementIndex::Nodes row;             // all of them, but for a name alone

  pugi::xml_node element() const { return node_of(first); }
};

}  // namespace kelp

struct kelp_xml_document {
  explicit kelp_xml_document(std::string_view text) : lines(text) {}

  kelp::Found find(std::string_view path) const;
  kelp::Position position_of(pugi::xml_node node) const;

  pugi::xml_document tree;
  kelp::LineMap lines;
  kelp::ElementIndex index;
  uint64_t serial = 0;  // no other document of the process ever has it
};
