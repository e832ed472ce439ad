// Keeps a store up with what is heard on an interface.
#include <memory>

#include "commands/command.hpp"
#include "sources/load_capture.hpp"

namespace tool {

namespace {

Run set_up_collect(CLI::App &app) {
  const auto options = std::make_shared<CaptureOptions>();
  app.add_option("-i", options->interface, "The interface to listen on, without sending")
      ->required();
  app.add_option("--seconds", options->seconds, "How long to listen; until a signal without it");
  return [options](ospf_tables::Session *session) {
    if (!session->is_store()) {
      throw UsageError("collect", "--store", "nothing", "the store to fill");
    }
    return collect_capture(*session, *options);
  };
}

}  // namespace

extern const Command collect_command;
const Command collect_command{
    "collect", "Listen on an interface, and commit to a store what changes at least once a second",
    Needs::session, set_up_collect, Stands::on_the_command_line};

}  // namespace tool
