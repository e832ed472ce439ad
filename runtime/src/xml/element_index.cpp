// Two arrays of all elements, sorted stably, so that equal keys keep document order: one by name,
// one by parent and name. Look-ups are binary searches.
#include "xml/element_index.hpp"

#include <algorithm>
#include <functional>

namespace kelp {
namespace {

using Node = pugi::xml_node_struct *;

// What both arrays are sorted by; by_name_ leaves the parent null.
struct Key {
  const pugi::xml_node_struct *parent;
  std::string_view name;

  bool operator<(const Key &other) const {
    if (parent != other.parent) return std::less<>()(parent, other.parent);
    return name < other.name;
  }
};

struct NameKey {
  static Key of(Node node) { return {nullptr, pugi::xml_node(node).name()}; }
};

struct ParentKey {
  static Key of(Node node) {
    const pugi::xml_node element(node);
    return {element.parent().internal_object(), element.name()};
  }
};

template <class KeyKind>
struct Below {
  bool operator()(Node a, Node b) const { return KeyKind::of(a) < KeyKind::of(b); }
  bool operator()(Node a, const Key &b) const { return KeyKind::of(a) < b; }
  bool operator()(const Key &a, Node b) const { return a < KeyKind::of(b); }
};

template <class KeyKind>
ElementIndex::Nodes equal(const std::vector<Node> &nodes, const Key &key) {
  const auto [first, last] = std::equal_range(nodes.begin(), nodes.end(), key, Below<KeyKind>());
  return {nodes.data() + (first - nodes.begin()), static_cast<size_t>(last - first)};
}

// The node that follows in document order, with *depth kept right; null at the end.
pugi::xml_node following(pugi::xml_node node, int *depth) {
  if (pugi::xml_node child = node.first_child()) {
    ++*depth;
    return child;
  }
  while (node && !node.next_sibling()) {
    node = node.parent();
    --*depth;
  }
  return node.next_sibling();
}

}  // namespace

bool ElementIndex::build(const pugi::xml_document &tree, int max_depth, pugi::xml_node *too_deep) {
  int depth = 1;
  for (pugi::xml_node node = tree.first_child(); node; node = following(node, &depth)) {
    if (node.type() != pugi::node_element) continue;
    if (depth > max_depth) {
      *too_deep = node;
      return false;
    }
    by_name_.push_back(node.internal_object());
  }
  by_parent_ = by_name_;
  std::stable_sort(by_name_.begin(), by_name_.end(), Below<NameKey>());
  std::stable_sort(by_parent_.begin(), by_parent_.end(), Below<ParentKey>());
  return true;
}

ElementIndex::Nodes ElementIndex::named(std::string_view name) const {
  return equal<NameKey>(by_name_, {nullptr, name});
}

ElementIndex::Nodes ElementIndex::children(pugi::xml_node parent, std::string_view name) const {
  return equal<ParentKey>(by_parent_, {parent.internal_object(), name});
}

}  // namespace kelp
