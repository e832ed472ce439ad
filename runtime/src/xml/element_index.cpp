// Open-addressed tables of names and of groups, at most half full, and the elements of each group
// in one run. Hashes have a seed of the process, so that a document cannot be made to fall into one
// slot.
#include "xml/element_index.hpp"

#include <algorithm>
#include <bit>
#include <cstring>
#include <random>

namespace kelp {
namespace {

using Seeds = std::array<std::uint64_t, 2>;

const Seeds &process_seeds() {
  static const Seeds seeds = [] {
    std::random_device random;
    const auto word = [&] { return std::uint64_t{random()} << 32 | random(); };
    return Seeds{word(), word()};
  }();
  return seeds;
}

__extension__ typedef unsigned __int128 Wide;

// Both halves of the product.
std::uint64_t fold(std::uint64_t a, std::uint64_t b) {
  const Wide product = Wide{a} * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

template <typename Word>
Word load(const char *at) {
  Word word;
  std::memcpy(&word, at, sizeof word);
  return word;
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

// Texts are hashed sixteen bytes at a time; the last of them may overlap those before.
std::uint32_t ElementIndex::hash_of(std::string_view text) const {
  const char *at = text.data();
  std::size_t left = text.size();
  std::uint64_t hash = seeds_[1] ^ left;
  for (; left > 16; left -= 16, at += 16) {
    hash = fold(load<std::uint64_t>(at) ^ seeds_[0], load<std::uint64_t>(at + 8) ^ hash);
  }
  std::uint64_t first = 0;
  std::uint64_t last = 0;
  if (left >= 8) {
    first = load<std::uint64_t>(at);
    last = load<std::uint64_t>(at + left - 8);
  } else if (left >= 4) {
    first = load<std::uint32_t>(at);
    last = load<std::uint32_t>(at + left - 4);
  } else if (left > 0) {
    first = static_cast<unsigned char>(at[0]);
    const auto byte = [at](std::size_t place) {
      return static_cast<std::uint64_t>(static_cast<unsigned char>(at[place]));
    };
    last = byte(left / 2) << 8 | byte(left - 1);
  }
  return static_cast<std::uint32_t>(fold(first ^ seeds_[0], last ^ hash));
}

std::uint32_t ElementIndex::group_hash(Node parent, std::uint32_t name) const {
  const auto address = reinterpret_cast<std::uintptr_t>(parent);
  return static_cast<std::uint32_t>(fold(address ^ seeds_[0], name ^ seeds_[1]));
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

// Room for the elements of a usual document from the start.
void ElementIndex::reserve(std::size_t elements) {
  constexpr std::size_t kMost = 4096;
  const std::size_t likely = std::min(elements, kMost);
  names_.reserve(likely);
  groups_.reserve(likely);
  name_slots_.resize(std::bit_ceil(2 * likely));
  group_slots_.resize(name_slots_.size());
}

bool ElementIndex::build(const pugi::xml_document &tree, std::size_t text_length, int max_depth,
                         pugi::xml_node *too_deep) {
  constexpr std::size_t kUsualElement = 16;  // bytes, with its tags
  struct Element {
    Node node;
    std::uint32_t group;
  };
  seeds_ = process_seeds();
  const std::size_t likely = text_length / kUsualElement + 8;
  reserve(likely);
  std::vector<Element> elements;
  elements.reserve(likely);
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
