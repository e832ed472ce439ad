// Writes the tree of a session as a tree stream (docs/wire-format.md), piece by piece, so that the
// whole of it is never in memory. Files and sockets are sinks.
#pragma once

#include <cstdint>
#include <functional>

#include "tree_exchange/table_rules.hpp"

namespace tree_exchange {

using ByteSink = std::function<void(ByteView)>;

// Gives the number of rows. Throws LibraryFailure, and what the sink throws.
std::uint64_t write_tree(ospf_tables::Session &session, const ByteSink &sink);

}  // namespace tree_exchange
