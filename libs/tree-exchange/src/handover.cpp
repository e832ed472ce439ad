#include "tree_exchange/handover.hpp"

#include <algorithm>

#include "piece_size.hpp"
#include "tree_exchange/tree_reader.hpp"
#include "tree_exchange/tree_writer.hpp"

namespace tree_exchange {

using namespace ospf_tables;

namespace {

constexpr std::size_t longest_answer = 2048;
constexpr std::chrono::seconds answer_time{2};
constexpr std::string_view accepted = "ok ";
constexpr std::string_view refused = "refused ";

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

// Tells the sender, and takes what it still writes, so that the answer is not lost with it. A
// sender that is gone by now is not told.
void answer(Connection &connection, const std::string &text, const Deadline &deadline) {
  std::string line = in_one_line(text).substr(0, longest_answer - 1) + "\n";
  try {
    const ByteView bytes(reinterpret_cast<const std::uint8_t *>(line.data()), line.size());
    connection.write_on(bytes, deadline);
    connection.end_writing();
    Bytes buffer(piece_size);
    std::uint64_t passed_over = 0;
    while (passed_over < largest_stream) {
      const ByteView piece = connection.read(buffer, deadline);
      if (piece.empty()) return;
      passed_over += piece.size();
    }
  } catch (const ConnectionFailure &) {
    // What was decided stands: only the sender does not learn of it.
  }
}

}  // namespace

std::uint64_t send_tree(Session &session, const Endpoint &endpoint, const std::string &where,
                        std::chrono::milliseconds time) {
  const Deadline deadline(time);
  Connection connection(endpoint, where, deadline);
  std::uint64_t rows = 0;
  try {
    rows = write_tree(session, [&](ByteView bytes) {
      if (!connection.write(bytes, deadline)) throw Interrupted{};
    });
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

std::uint64_t receive_tree(Session &session, Listener &listener, std::chrono::milliseconds time,
                           std::uint64_t limit) {
  const Deadline waiting(time);
  Bytes buffer(piece_size);
  while (true) {
    Connection connection = listener.accept(waiting);
    const Deadline deadline(time);
    try {
      ByteView piece = connection.read(buffer, deadline);
      if (piece.empty()) continue;
      std::uint64_t rows = 0;
      // The sender hears "ok" of what is committed.
      session.changing([&] {
        TreeReader reader(session, listener.where(), limit);
        for (; !piece.empty(); piece = connection.read(buffer, deadline)) reader.feed(piece);
        rows = reader.finish();
      });
      answer(connection, std::string(accepted) + std::to_string(rows), Deadline(answer_time));
      return rows;
    } catch (const std::exception &failure) {
      answer(connection, std::string(refused) + failure.what(), Deadline(answer_time));
      throw;
    }
  }
}

}  // namespace tree_exchange
