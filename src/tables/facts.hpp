// What differs between tables, as one constant record for each: the argument that binds a table
// rule to its table.
#pragma once

#include "model/tables.hpp"

namespace harbor {

struct TableFacts {
  const model::Table *table;
};

template <const model::Table &T>
inline constexpr TableFacts facts_of{&T};

}  // namespace harbor
