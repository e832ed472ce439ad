#include "sources/load_capture.hpp"

#include <memory>

#include "commands/show_after.hpp"
#include "commands/source_choice.hpp"

namespace tool {

namespace {

Run set_up_load_capture(CLI::App &app) {
  struct Options {
    CaptureOptions heard;
    ShowAfter show;
  };
  const auto options = std::make_shared<Options>();
  CLI::Option_group *source = app.add_option_group("source");
  source->add_option("FILE", options->heard.files, "Captures; - is standard input");
  CLI::Option *interface = source->add_option("-i", options->heard.interface,
                                              "Listen on an interface instead, without sending");
  source->require_option(1);
  app.add_option("--seconds", options->heard.seconds,
                 "How long to listen; until a signal without it")
      ->needs(interface);
  add_ages_option(app, options->heard.as_heard);
  app.add_flag("--json", options->heard.json, "What was read and loaded as one JSON object a line");
  options->show.add_to(app);
  return [options](ospf_tables::Session *session) {
    return options->show.run(*session, load_capture(*session, options->heard));
  };
}

}  // namespace

extern const Command load_capture_command;
const Command load_capture_command{"load capture",
                                   "Read the OSPF packets of captures (pcap, pcapng)",
                                   Needs::session, set_up_load_capture};

}  // namespace tool
