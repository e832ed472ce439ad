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

// Enters the elements of a tree in document order. With the options that documents are parsed with,
// all other nodes are texts, which have no name.
class ElementIndex::Walk : public pugi::xml_tree_walker {
 public:
  Walk(ElementIndex &index, std::size_t likely) : index_(index) { entries_.reserve(likely); }

  bool begin(pugi::xml_node &tree) override {
    levels_[0] = {element_of(tree), kNone};
    return true;
  }

  bool for_each(pugi::xml_node &node) override {
    const char *name = node.name();
    if (*name == '\0') return true;
    const auto depth = static_cast<std::size_t>(this->depth());
    if (depth == KELP_XML_MAX_DEPTH) {
      too_deep_ = node;
      return false;
    }
    const Node element = element_of(node);
    Level &level = levels_[depth];
    if (level.group == kNone || std::strcmp(index_.name_of(level.group), name) != 0) {
      level.group = index_.number_of_group(level.parent, index_.number_of_name(name));
    }
    levels_[depth + 1] = {element, kNone};
    entries_.push_back({element, level.group});
    return true;
  }

  std::span<const Entry> entries() const { return entries_; }
  pugi::xml_node too_deep() const { return too_deep_; }

 private:
  static constexpr std::uint32_t kNone = UINT32_MAX;
  // An element above the one that is entered, and the group of its last child.
  struct Level {
    Node parent;
    std::uint32_t group;
  };

  ElementIndex &index_;
  std::vector<Entry> entries_;
  pugi::xml_node too_deep_;
  Level levels_[KELP_XML_MAX_DEPTH + 1];
};

// Counts the elements of each name and group, and puts those of each group in a run.
void ElementIndex::gather(std::span<const Entry> entries) {
  for (const Entry &entry : entries) {
    Group &group = groups_[entry.group];
    ++group.count;
    Named &named = names_[group.name].elements;
    if (named.count++ == 0) named.first = entry.node;
  }
  std::uint32_t first = 0;
  for (Group &each : groups_) {
    each.first = first;
    first += each.count;
    each.count = 0;
  }
  nodes_.resize(first);
  for (const Entry &entry : entries) {
    Group &its = groups_[entry.group];
    nodes_[its.first + its.count++] = entry.node;
  }
}

bool ElementIndex::build(const pugi::xml_document &tree, std::size_t text_length,
                         pugi::xml_node *too_deep) {
  constexpr std::size_t kUsualElement = 24;  // bytes, with its tags
  seeds_ = process_seeds();
  const std::size_t likely = text_length / kUsualElement + 8;
  reserve(likely);
  Walk walk(*this, likely);
  if (!pugi::xml_node(tree).traverse(walk)) {
    *too_deep = walk.too_deep();
    return false;
  }
  gather(walk.entries());
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
