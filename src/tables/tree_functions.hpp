// The exported functions of a table that its tree is given: tbl_<t>_<k>_avl_compare and
// tbl_<t>_<k>_avl_internal_walk. The emitter, which composes their names, fills one pair for each
// table.
#pragma once

#include <kelp/tree.h>

namespace harbor {

struct TreeFunctions {
  e_avl_comparator compare;
  e_avl_walker walk;
};

template <const auto &table>
inline constexpr TreeFunctions tree_functions_of{};

}  // namespace harbor
