// How many bytes go from or to a file or a connection at once.
#pragma once

#include <cstddef>

namespace tree_exchange {

constexpr std::size_t piece_size = 1 << 16;

}  // namespace tree_exchange
