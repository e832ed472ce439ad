// An open-addressed table of groups, at most half full, and the elements of each group in one run.
// The hash has a seed of the process, so that a document cannot be made to fall into one slot.
#include "xml/element_index.hpp"

#include <algorithm>
#include <bit>
#include <random>

namespace kelp {
namespace {

std::uint64_t process_seed() {
  static const std::uint64_t seed = [] {
    std::random_device random;
    return std::uint64_t{random()} << 32 | random();
  }();
  return seed;
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

std::uint32_t ElementIndex::hash_of(const Key &key) const {
  constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;
  std::uint64_t hash = (seed_ ^ reinterpret_cast<std::uintptr_t>(key.parent)) * odd;
  for (const char c : key.name) {
    hash = (std::rotl(hash, 5) ^ static_cast<unsigned char>(c)) * odd;
  }
  return static_cast<std::uint32_t>(hash >> 32);
}

std::uint32_t ElementIndex::slot_of(const Key &key, std::uint32_t hash) const {
  const auto mask = static_cast<std::uint32_t>(slots_.size() - 1);
  std::uint32_t slot = hash & mask;
  for (; slots_[slot] != 0; slot = (slot + 1) & mask) {
    const Group &group = groups_[slots_[slot] - 1];
    if (group.hash == hash && group.key == key) break;
  }
  return slot;
}

std::uint32_t ElementIndex::group_to_fill(const Key &key) {
  const std::uint32_t hash = hash_of(key);
  std::uint32_t &slot = slots_[slot_of(key, hash)];
  if (slot == 0) {
    groups_.push_back({key, hash});
    slot = static_cast<std::uint32_t>(groups_.size());
  }
  ++groups_[slot - 1].count;
  return slot - 1;
}

bool ElementIndex::build(const pugi::xml_document &tree, int max_depth, pugi::xml_node *too_deep) {
  seed_ = process_seed();
  std::vector<Node> elements;
  int depth = 1;
  for (pugi::xml_node node = tree.first_child(); node; node = following(node, &depth)) {
    if (node.type() != pugi::node_element) continue;
    if (depth > max_depth) {
      *too_deep = node;
      return false;
    }
    elements.push_back(node.internal_object());
  }
  // Every element is in two groups.
  slots_.assign(std::bit_ceil(std::max<std::size_t>(4 * elements.size(), 2)), 0);
  std::vector<std::uint32_t> places;
  places.reserve(2 * elements.size());
  for (const Node element : elements) {
    const pugi::xml_node node(element);
    const std::string_view name = node.name();
    places.push_back(group_to_fill({nullptr, name}));
    places.push_back(group_to_fill({node.parent().internal_object(), name}));
  }
  std::uint32_t first = 0;
  for (Group &group : groups_) {
    group.first = first;
    first += group.count;
    group.count = 0;
  }
  nodes_.resize(first);
  for (std::size_t at = 0; at < places.size(); ++at) {
    Group &group = groups_[places[at]];
    nodes_[group.first + group.count++] = elements[at / 2];
  }
  return true;
}

ElementIndex::Nodes ElementIndex::group(const Key &key) const {
  const std::uint32_t number = slots_[slot_of(key, hash_of(key))];
  if (number == 0) return {};
  const Group &group = groups_[number - 1];
  return {nodes_.data() + group.first, group.count};
}

}  // namespace kelp
