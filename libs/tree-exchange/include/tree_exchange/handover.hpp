// Hands the tree of one process to another over a connection: the sender writes a tree stream and
// ends its side, the receiver answers with one line, "ok ROWS" or "refused" and why
// (docs/wire-format.md). The tree arrives whole or not at all, and both sides learn which.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "ospf_tables/session.hpp"
#include "tree_exchange/connection.hpp"
#include "tree_exchange/stream_format.hpp"

namespace tree_exchange {

// Sends the session's tree and waits for the answer; the number of rows. Throws ConnectionFailure
// when there is no answer, or another one than "ok" with as many rows as were sent.
std::uint64_t send_tree(ospf_tables::Session &session, const Endpoint &endpoint,
                        const std::string &where, std::chrono::milliseconds time);

// Waits for a sender, takes its tree into the session's and answers; the number of rows. A
// connection that closes before its first byte is passed over. Throws, with the session's tree as
// it was: StreamError for bytes that are no sound tree, ConnectionFailure when no sender comes in
// the time, or one that does not end its stream in as much time again.
std::uint64_t receive_tree(ospf_tables::Session &session, Listener &listener,
                           std::chrono::milliseconds time, std::uint64_t limit = largest_stream);

}  // namespace tree_exchange
