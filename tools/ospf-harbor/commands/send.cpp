#include <memory>

#include "commands/meeting.hpp"
#include "tree_exchange/handover.hpp"
#include "views/notes.hpp"

namespace tool {

namespace {

Run set_up_send(CLI::App &app) {
  const auto meeting = std::make_shared<Meeting>();
  meeting->add_to(app, "--to", places_help, "What the receiver at a TCP port said, or was given");
  return [meeting](ospf_tables::Session *session) {
    const tree_exchange::Endpoint endpoint = meeting->endpoint("send --to");
    if (nothing_is_loaded(*session, "send")) return 1;
    const std::uint64_t rows =
        tree_exchange::send_tree(*session, endpoint, meeting->place, meeting->time(),
                                 endpoint.is_unix ? tree_exchange::Token() : meeting->token);
    note("sent " + rows_text(rows) + " to " + meeting->place);
    return 0;
  };
}

}  // namespace

extern const Command send_command;
const Command send_command{"send", "Send the tree to a process that receives", Needs::tree,
                           set_up_send};

}  // namespace tool
