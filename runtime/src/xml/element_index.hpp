// Finds elements of a parsed document by parent and name without walking siblings. It is made once,
// when the document is parsed, so that a record of many fields or an array of many elements is read
// in time that grows with the document and not with its square.
//
// Names are numbered: a name is hashed once for each element, and once for all elements of an
// array, which follow each other under one name.
#pragma once

#include <array>
#include <cstdint>
#include <pugixml.hpp>
#include <span>
#include <string_view>
#include <vector>

#include "kelp/xml_elements.h"

namespace kelp {

// An element goes out of the runtime under a name of its own.
inline const kelp_xml_element *element_of(pugi::xml_node node) {
  return reinterpret_cast<const kelp_xml_element *>(node.internal_object());
}
inline pugi::xml_node node_of(const kelp_xml_element *element) {
  auto *node = const_cast<kelp_xml_element *>(element);
  return pugi::xml_node(reinterpret_cast<pugi::xml_node_struct *>(node));
}

class ElementIndex {
 public:
  using Node = const kelp_xml_element *;
  using Nodes = std::span<const Node>;

  // Takes in every element below tree, which was parsed from a text of that length. False when one
  // lies deeper than KELP_XML_MAX_DEPTH; *too_deep then is that element.
  bool build(const pugi::xml_document &tree, std::size_t text_length, pugi::xml_node *too_deep);

  // How many elements of a name there are, and the first in document order; null for none.
  struct Named {
    Node first = nullptr;
    std::uint32_t count = 0;
  };
  Named named(std::string_view name) const;

  // The children of that name, in document order. *next gets the number of the group that is likely
  // to be asked for behind them.
  Nodes children(Node parent, std::string_view name, std::uint32_t *next) const;

  // The same when they are the group of that number, else none.
  Nodes group(std::uint32_t number, Node parent, std::string_view name) const {
    if (number >= groups_.size()) return {};
    const Group &group = groups_[number];
    if (group.parent != parent || names_[group.name].text != name) return {};
    return {nodes_.data() + group.first, group.count};
  }

 private:
  struct Name {
    std::string_view text;
    std::uint32_t hash = 0;
    Named elements;
  };
  // Elements of one name below one parent.
  struct Group {
    Node parent = nullptr;
    std::uint32_t name = 0;
    std::uint32_t first = 0;  // in nodes_
    std::uint32_t count = 0;
  };
  // An element and the number of its group.
  struct Entry {
    Node node;
    std::uint32_t group;
  };
  class Walk;
  // Numbers and 1, by hash; 0 for a free slot. A power of two, at most half full.
  using Slots = std::vector<std::uint32_t>;

  void reserve(std::size_t elements);
  void gather(std::span<const Entry> entries);
  std::uint32_t hash_of(std::string_view text) const;
  // Ends with a NUL, as the parser leaves it.
  const char *name_of(std::uint32_t group) const { return names_[groups_[group].name].text.data(); }
  std::uint32_t slot_of_name(std::string_view text, std::uint32_t hash) const;
  std::uint32_t slot_of_group(Node parent, std::uint32_t name) const;
  std::uint32_t number_of_name(std::string_view text);
  std::uint32_t number_of_group(Node parent, std::uint32_t name);
  template <typename Hash>
  static void make_room(Slots &slots, std::size_t count, const Hash &hash_of_number);
  std::uint32_t group_hash(Node parent, std::uint32_t name) const;

  std::array<std::uint64_t, 2> seeds_ = {};
  Slots name_slots_;
  Slots group_slots_;
  std::vector<Name> names_;
  std::vector<Group> groups_;
  std::vector<Node> nodes_;  // group by group, in document order within one
};

}  // namespace kelp
