#include <iostream>
#include <memory>

#include "commands/command.hpp"
#include "traces/trace_printer.hpp"

namespace tool {

namespace {

Run set_up_trace(CLI::App &app) {
  const auto options = std::make_shared<TraceOptions>();
  app.add_option("FILE", options->file, "What --trace-file or kelp_trace_open_file wrote")
      ->required();
  app.add_option("--library", options->shared_object,
                 "The library whose messages they are; the one of this program without it");
  options->level = "information";
  CLI::Option *level =
      app.add_option("--level", options->level,
                     "Print this level and worse: fatal, error, information (without it) or debug, "
                     "which has what is routine");
  app.add_flag("--follow", options->follow, "Wait for more records, until interrupted");
  app.add_option("--seconds", options->seconds, "End following after so long")
      ->check(CLI::PositiveNumber);
  return [options, level](ospf_tables::Session *) {
    options->tells_hidden = level->count() == 0;
    return print_trace(*options, std::cout, std::cerr);
  };
}

}  // namespace

extern const Command trace_command;
const Command trace_command{"trace", "Print a file of binary trace records as text", Needs::nothing,
                            set_up_trace};

}  // namespace tool
