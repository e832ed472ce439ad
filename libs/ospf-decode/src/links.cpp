#include "ospf_decode/links.hpp"

#include <algorithm>

namespace ospf_decode {

std::uint32_t Links::node_of(const LinkName &name) {
  const auto [it, is_new] = nodes_.try_emplace(name, static_cast<std::uint32_t>(parents_.size()));
  if (is_new) parents_.push_back(it->second);
  return it->second;
}

std::uint32_t Links::root(std::uint32_t node) {
  while (parents_[node] != node) {
    parents_[node] = parents_[parents_[node]];
    node = parents_[node];
  }
  return node;
}

std::uint32_t Links::number_of(const LinkName &name) { return root(node_of(name)); }

void Links::join(const LinkName &a, const LinkName &b) {
  const std::uint32_t one = number_of(a);
  const std::uint32_t other = number_of(b);
  if (one == other) return;
  const std::uint32_t from = std::max(one, other);
  const std::uint32_t to = std::min(one, other);
  parents_[from] = to;
  joined_(from, to);
}

}  // namespace ospf_decode
