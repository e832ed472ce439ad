// Random trees for tests: rows in tables of every kind, each field of each row filled, tied
// together by their references.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "ospf_tables/session.hpp"

namespace tree_exchange_tests {

struct TreeShape {
  std::uint32_t seed = 1;
  // Objects at every variant, some with ra-data; else each at its highest and plain.
  bool mixed_variants = false;
  std::uint32_t most_rows = 2;  // of a table
  std::size_t least_rows = 20;  // of the tree
};

// Fills the session's tree, which is empty. The number of rows by the name of their table.
std::map<std::string, std::size_t> make_random_tree(ospf_tables::Session &session,
                                                    const TreeShape &shape);

// The rows of the session's tree as text, each with its path.
std::string text_of(ospf_tables::Session &session);

}  // namespace tree_exchange_tests
