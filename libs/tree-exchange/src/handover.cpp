#include "tree_exchange/handover.hpp"

#include "answer.hpp"
#include "ospf_tables/input_error.hpp"
#include "tree_exchange/tree_writer.hpp"

namespace tree_exchange {

using namespace ospf_tables;

namespace {

// The receiver spoke, or went, before the stream was written.
struct Interrupted {};

std::string read_answer(Connection &connection, const Deadline &deadline) {
  std::string answer;
  Bytes buffer(longest_answer);
  while (answer.size() < longest_answer && answer.find('\n') == std::string::npos) {
    const ByteView piece = connection.read(buffer, deadline);
    if (piece.empty()) break;
    answer.append(piece.begin(), piece.end());
  }
  const std::size_t end = answer.find('\n');
  return end == std::string::npos ? "" : answer.substr(0, end);
}

}  // namespace

std::uint64_t send_tree(Session &session, const Endpoint &endpoint, const std::string &where,
                        std::chrono::milliseconds time, const Token &token) {
  const Deadline deadline(time);
  Connection connection(endpoint, where, deadline);
  std::uint64_t rows = 0;
  try {
    const auto write = [&](ByteView bytes) {
      if (!connection.write(bytes, deadline)) throw Interrupted{};
    };
    if (!token.empty()) write(bytes_of(token_line(token)));
    rows = write_tree(session, write);
    connection.end_writing();
  } catch (const Interrupted &) {
    // The answer says why.
  }
  const std::string line = read_answer(connection, deadline);
  if (line == std::string(accepted) + std::to_string(rows)) return rows;
  if (line.starts_with(refused)) {
    throw ConnectionFailure(
        in_one_line(where + ": the receiver refused the tree: " + line.substr(refused.size())));
  }
  throw ConnectionFailure(in_one_line(
      where + ": found " + (line.empty() ? "the end of the connection" : "\"" + line + "\"") +
      ", expected the answer \"ok " + std::to_string(rows) + "\" or \"refused\" and why"));
}

}  // namespace tree_exchange
