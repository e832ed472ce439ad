// Hands the tree of one process to another over a connection: the sender writes a tree stream and
// ends its side, the receiver answers with one line, "ok ROWS" or "refused" and why
// (docs/wire-format.md). The tree arrives whole or not at all, and both sides learn which.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "ospf_tables/session.hpp"
#include "tree_exchange/connection.hpp"
#include "tree_exchange/stream_format.hpp"

namespace tree_exchange {

// What a sender says first at a place that any user of the machine can reach: a TCP port. Empty for
// none.
using Token = std::string;

inline constexpr std::size_t longest_token = 64;
// 1 to that many printable characters of ASCII, none of them a blank.
bool is_token(const Token &token);
// One that nobody can guess.
Token new_token();

// Sends the session's tree and waits for the answer; the number of rows. Throws ConnectionFailure
// when there is no answer, or another one than "ok" with as many rows as were sent.
std::uint64_t send_tree(ospf_tables::Session &session, const Endpoint &endpoint,
                        const std::string &where, std::chrono::milliseconds time,
                        const Token &token = {});

struct Reception {
  std::chrono::milliseconds time;
  std::uint64_t limit = largest_stream;  // bytes of one tree
  std::uint64_t trees = 1;
  Token token;  // that every sender must give
  std::function<void(std::uint64_t rows)> taken;
  std::function<void(const std::string &why)> refused;  // told of each sender that brought no tree
};

// Takes so many trees into the session's, one sender's after the other's, and answers each. Many
// senders may write at once: one that is slow, goes away, or writes what is no tree costs itself
// alone. One that goes before its first byte is passed over. Throws ConnectionFailure when the time
// is over since the start, or since the last tree, and no sender is left that came within it; each
// has as much time again. A tree that was refused has changed nothing. False when a signal came
// that EndingSignals keeps.
bool receive_trees(ospf_tables::Session &session, Listener &listener, const Reception &reception);

}  // namespace tree_exchange
