// Writes the tree of a session as a tree stream (docs/wire-format.md), piece by piece, so that the
// whole of it is never in memory. Files and sockets are sinks.
#pragma once

#include <cstdint>
#include <functional>

#include "table_rules.hpp"

namespace tool {

using ByteSink = std::function<void(ByteView)>;

// Gives the number of rows. Throws LibraryFailure, and what the sink throws.
std::uint64_t write_tree(Session &session, const ByteSink &sink);

}  // namespace tool
