// Open-addressed tables of names and of groups, at most half full, and the elements of each group
// in one run. Hashes have a seed of the process, so that a document cannot be made to fall into one
// slot.
#include "xml/element_index.hpp"

#include <random>

#include "base/mix.hpp"

namespace kelp {
namespace {

std::uint64_t process_seed() {
  static const std::uint64_t seed = [] {
    std::random_device random;
    return std::uint64_t{random()} << 32 | random();
  }();
  return seed;
}

// Calls enter(element, parent, depth) with each element below tree, in document order, until it is
// false.
template <typename Enter>
bool each_element(const pugi::xml_document &tree, const Enter &enter) {
  std::vector<pugi::xml_node> parents{tree};
  for (pugi::xml_node node = tree.first_child(); node;) {
    pugi::xml_node next;
    if (node.type() == pugi::node_element) {
      if (!enter(node, parents.back(), static_cast<int>(parents.size()))) return false;
      next = node.first_child();
      if (next) parents.push_back(node);
    }
    if (!next) next = node.next_sibling();
    while (!next && parents.size() > 1) {
      next = parents.back().next_sibling();
      parents.pop_back();
    }
    node = next;
  }
  return true;
}

}  // namespace

std::uint32_t ElementIndex::hash_of(std::string_view text) const {
  return static_cast<std::uint32_t>(kelp::hash_of(text.data(), text.size(), seed_));
}

std::uint32_t ElementIndex::group_hash(Node parent, std::uint32_t name) const {
  const std::uint64_t spread = name * UINT64_C(0x9E3779B97F4A7C15);
  return static_cast<std::uint32_t>(
      mix(seed_ ^ (reinterpret_cast<std::uintptr_t>(parent) + spread)));
}

std::uint32_t ElementIndex::slot_of_name(std::string_view text, std::uint32_t hash) const {
  const auto mask = static_cast<std::uint32_t>(name_slots_.size() - 1);
  std::uint32_t slot = hash & mask;
  for (; name_slots_[slot] != 0; slot = (slot + 1) & mask) {
    const Name &name = names_[name_slots_[slot] - 1];
    if (name.hash == hash && name.text == text) break;
  }
  return slot;
}

std::uint32_t ElementIndex::slot_of_group(Node parent, std::uint32_t name) const {
  const auto mask = static_cast<std::uint32_t>(group_slots_.size() - 1);
  std::uint32_t slot = group_hash(parent, name) & mask;
  for (; group_slots_[slot] != 0; slot = (slot + 1) & mask) {
    const Group &group = groups_[group_slots_[slot] - 1];
    if (group.parent == parent && group.name == name) break;
  }
  return slot;
}

// Room for one more number than count.
template <typename Hash>
void ElementIndex::make_room(Slots &slots, std::size_t count, const Hash &hash_of_number) {
  if (2 * (count + 1) <= slots.size()) return;
  Slots wider(slots.empty() ? 16 : 2 * slots.size());
  const std::size_t mask = wider.size() - 1;
  for (const std::uint32_t number : slots) {
    if (number == 0) continue;
    std::size_t slot = hash_of_number(number - 1) & mask;
    while (wider[slot] != 0) slot = (slot + 1) & mask;
    wider[slot] = number;
  }
  slots.swap(wider);
}

std::uint32_t ElementIndex::number_of_name(std::string_view text) {
  make_room(name_slots_, names_.size(), [&](std::uint32_t number) { return names_[number].hash; });
  const std::uint32_t hash = hash_of(text);
  std::uint32_t &slot = name_slots_[slot_of_name(text, hash)];
  if (slot == 0) {
    names_.push_back({text, hash, {}});
    slot = static_cast<std::uint32_t>(names_.size());
  }
  return slot - 1;
}

std::uint32_t ElementIndex::number_of_group(Node parent, std::uint32_t name) {
  make_room(group_slots_, groups_.size(), [&](std::uint32_t number) {
    return group_hash(groups_[number].parent, groups_[number].name);
  });
  std::uint32_t &slot = group_slots_[slot_of_group(parent, name)];
  if (slot == 0) {
    groups_.push_back({parent, name, 0, 0});
    slot = static_cast<std::uint32_t>(groups_.size());
  }
  return slot - 1;
}

bool ElementIndex::build(const pugi::xml_document &tree, int max_depth, pugi::xml_node *too_deep) {
  struct Element {
    Node node;
    std::uint32_t group;
  };
  seed_ = process_seed();
  std::vector<Element> elements;
  Node above = nullptr;  // of the element before, and its group
  std::uint32_t group = 0;
  const auto enter = [&](pugi::xml_node node, pugi::xml_node parent, int depth) {
    if (depth > max_depth) {
      *too_deep = node;
      return false;
    }
    const std::string_view text = node.name();
    if (elements.empty() || parent.internal_object() != above ||
        text != names_[groups_[group].name].text) {
      above = parent.internal_object();
      group = number_of_group(above, number_of_name(text));
    }
    Named &named = names_[groups_[group].name].elements;
    if (named.count++ == 0) named.first = node.internal_object();
    ++groups_[group].count;
    elements.push_back({node.internal_object(), group});
    return true;
  };
  if (!each_element(tree, enter)) return false;
  std::uint32_t first = 0;
  for (Group &each : groups_) {
    each.first = first;
    first += each.count;
    each.count = 0;
  }
  nodes_.resize(first);
  for (const Element &element : elements) {
    Group &its = groups_[element.group];
    nodes_[its.first + its.count++] = element.node;
  }
  return true;
}

ElementIndex::Named ElementIndex::named(std::string_view name) const {
  if (names_.empty()) return {};
  const std::uint32_t number = name_slots_[slot_of_name(name, hash_of(name))];
  return number == 0 ? Named{} : names_[number - 1].elements;
}

ElementIndex::Nodes ElementIndex::children(Node parent, std::string_view name,
                                           std::uint32_t *next) const {
  if (names_.empty()) return {};
  const std::uint32_t number = name_slots_[slot_of_name(name, hash_of(name))];
  if (number == 0) return {};
  const std::uint32_t place = group_slots_[slot_of_group(parent, number - 1)];
  if (place == 0) return {};
  *next = place;
  const Group &group = groups_[place - 1];
  return {nodes_.data() + group.first, group.count};
}

}  // namespace kelp
