/* Two arrays of all elements, sorted stably, so that equal keys keep document order: one by name, one
 * by parent and name. Look-ups are binary searches. */
#include "element_index.hpp"

#include <algorithm>
#include <functional>

namespace kelp {
namespace {

struct Key {
  const pugi::xml_node_struct *parent;
  std::string_view name;
};

std::string_view Name(pugi::xml_node_struct *node) { return pugi::xml_node(node).name(); }

Key KeyOf(pugi::xml_node_struct *node) {
  return {pugi::xml_node(node).parent().internal_object(), Name(node)};
}

bool Below(const Key &a, const Key &b) {
  if (a.parent != b.parent) return std::less<>()(a.parent, b.parent);
  return a.name < b.name;
}

/* The node that follows in document order, with *depth kept right; null at the end. */
pugi::xml_node Following(pugi::xml_node node, int *depth) {
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

bool ElementIndex::Build(const pugi::xml_document &tree, int max_depth, pugi::xml_node *too_deep) {
  int depth = 1;
  for (pugi::xml_node node = tree.first_child(); node; node = Following(node, &depth)) {
    if (node.type() != pugi::node_element) continue;
    if (depth > max_depth) {
      *too_deep = node;
      return false;
    }
    by_name_.push_back(node.internal_object());
  }
  by_parent_ = by_name_;
  std::ranges::stable_sort(by_name_, std::less<>(), Name);
  std::ranges::stable_sort(by_parent_, Below, KeyOf);
  return true;
}

ElementIndex::Nodes ElementIndex::Named(std::string_view name) const {
  const auto found = std::ranges::equal_range(by_name_, name, std::less<>(), Name);
  return {found.begin(), found.end()};
}

ElementIndex::Nodes ElementIndex::Children(pugi::xml_node parent, std::string_view name) const {
  const Key key = {parent.internal_object(), name};
  const auto found = std::ranges::equal_range(by_parent_, key, Below, KeyOf);
  return {found.begin(), found.end()};
}

}  // namespace kelp
