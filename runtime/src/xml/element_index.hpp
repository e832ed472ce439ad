// Finds elements of a parsed document by parent and name without walking siblings. It is made once,
// when the document is parsed, so that a record of many fields or an array of many elements is read
// in time that grows with the document and not with its square.
#pragma once

#include <cstdint>
#include <pugixml.hpp>
#include <span>
#include <string_view>
#include <vector>

namespace kelp {

class ElementIndex {
 public:
  using Node = pugi::xml_node_struct *;
  using Nodes = std::span<const Node>;

  // Takes in every element below tree. False when one lies deeper than max_depth; *too_deep then is
  // that element.
  bool build(const pugi::xml_document &tree, int max_depth, pugi::xml_node *too_deep);

  // All elements of that name, in document order.
  Nodes named(std::string_view name) const { return group({nullptr, name}); }

  // The children of that name, in document order.
  Nodes children(pugi::xml_node parent, std::string_view name) const {
    return group({parent.internal_object(), name});
  }

 private:
  // Elements of one name below one parent, or anywhere when the parent is null.
  struct Key {
    const pugi::xml_node_struct *parent;
    std::string_view name;
    bool operator==(const Key &) const = default;
  };
  struct Group {
    Key key;
    std::uint32_t hash = 0;
    std::uint32_t first = 0;  // in nodes_
    std::uint32_t count = 0;
  };

  std::uint32_t hash_of(const Key &key) const;
  // The slot of the key's group, or the free one where it would go.
  std::uint32_t slot_of(const Key &key, std::uint32_t hash) const;
  std::uint32_t group_to_fill(const Key &key);
  Nodes group(const Key &key) const;

  std::uint64_t seed_ = 0;
  std::vector<std::uint32_t> slots_;  // number of a group and 1, 0 for a free slot
  std::vector<Group> groups_;
  std::vector<Node> nodes_;  // group by group, in document order within one
};

}  // namespace kelp
