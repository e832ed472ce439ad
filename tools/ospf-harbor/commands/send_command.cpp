#include "commands/send_command.hpp"

#include "tree_exchange/handover.hpp"
#include "views/notes.hpp"

namespace tool {

using namespace ospf_tables;
using namespace tree_exchange;

namespace {

std::chrono::milliseconds time_of(double seconds) {
  return std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
}

}  // namespace

int send_to(Session &session, const std::string &place, double seconds) {
  const Endpoint endpoint = parse_endpoint("send --to", place);
  if (nothing_is_loaded(session, "send")) return 1;
  const std::uint64_t rows = send_tree(session, endpoint, place, time_of(seconds));
  note("sent " + rows_text(rows) + " to " + place);
  return 0;
}

void receive_at(Session &session, const std::string &place, double seconds, std::uint64_t limit) {
  Listener listener(parse_endpoint("receive --at", place), place);
  note("receiving at " + listener.where());
  const std::uint64_t rows = receive_tree(session, listener, time_of(seconds), limit);
  note("received " + rows_text(rows) + " at " + listener.where());
}

}  // namespace tool
