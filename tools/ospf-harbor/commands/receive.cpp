#include <memory>

#include "commands/meeting.hpp"
#include "commands/show_after.hpp"
#include "tree_exchange/ending_signals.hpp"
#include "tree_exchange/handover.hpp"
#include "views/notes.hpp"

namespace tool {

using namespace tree_exchange;

namespace {

struct ReceiveOptions {
  Meeting meeting;
  std::uint64_t limit = largest_stream;
  std::uint64_t trees = 1;
  ShowAfter show;
};

// Says where it waits, takes the trees and adds each as an import does. A socket file is taken away
// before a signal ends the process.
bool receive(ospf_tables::Session &session, const ReceiveOptions &options) {
  const Endpoint endpoint = options.meeting.endpoint("receive --at");
  const EndingSignals signals;
  Listener listener(endpoint, options.meeting.place);
  Reception reception{.time = options.meeting.time(),
                      .limit = options.limit,
                      .trees = options.trees,
                      .token = {},
                      .taken = {},
                      .refused = {}};
  if (!endpoint.is_unix) {
    reception.token = options.meeting.token;
    if (reception.token.empty()) {
      reception.token = new_token();
      note("token: " + reception.token +
           " (any user of this machine can connect to a TCP port: senders give it with --token)");
    }
  }
  note("receiving at " + listener.where());
  reception.taken = [&](std::uint64_t rows) {
    note("received " + rows_text(rows) + " at " + listener.where());
  };
  reception.refused = [](const std::string &why) { note("ospf-harbor: receive: " + why); };
  return receive_trees(session, listener, reception);
}

Run set_up_receive(CLI::App &app) {
  const auto options = std::make_shared<ReceiveOptions>();
  options->meeting.add_to(app, "--at", std::string(places_help) + "; PORT 0 lets the system choose",
                          "What senders to a TCP port must give; without it one is made and said");
  app.add_option("--limit", options->limit, "The most bytes that a tree may have")
      ->check(CLI::Range(std::uint64_t{1}, largest_stream));
  app.add_option("--trees", options->trees, "End after so many trees instead of the first")
      ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{UINT32_MAX}));
  options->show.add_to(app);
  return [options](ospf_tables::Session *session) {
    return receive(*session, *options) ? options->show.run(*session) : 1;
  };
}

}  // namespace

extern const Command receive_command;
const Command receive_command{"receive", "Wait for trees that other processes send", Needs::session,
                              set_up_receive};

}  // namespace tool
