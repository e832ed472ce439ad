#include <memory>

#include "commands/meeting.hpp"
#include "commands/show_after.hpp"
#include "tree_exchange/handover.hpp"
#include "views/notes.hpp"

namespace tool {

using namespace tree_exchange;

namespace {

struct ReceiveOptions {
  Meeting meeting;
  std::uint64_t limit = largest_stream;
  ShowAfter show;
};

// Says where it waits, takes one tree and adds it as an import does.
void receive(ospf_tables::Session &session, const ReceiveOptions &options) {
  Listener listener(options.meeting.endpoint("receive --at"), options.meeting.place);
  note("receiving at " + listener.where());
  const std::uint64_t rows = receive_tree(session, listener, options.meeting.time(), options.limit);
  note("received " + rows_text(rows) + " at " + listener.where());
}

Run set_up_receive(CLI::App &app) {
  const auto options = std::make_shared<ReceiveOptions>();
  options->meeting.add_to(app, "--at",
                          std::string(places_help) + "; PORT 0 lets the system choose");
  app.add_option("--limit", options->limit, "The most bytes that a tree may have")
      ->check(CLI::Range(std::uint64_t{1}, largest_stream));
  options->show.add_to(app);
  return [options](ospf_tables::Session *session) {
    receive(*session, *options);
    return options->show.run(*session);
  };
}

}  // namespace

extern const Command receive_command;
const Command receive_command{"receive", "Wait for a tree that another process sends",
                              Needs::session, set_up_receive};

}  // namespace tool
