#include <iostream>
#include <memory>

#include "commands/command.hpp"
#include "views/inspection.hpp"

namespace tool {

namespace {

Run set_up_inspect(CLI::App &app) {
  const auto options = std::make_shared<InspectOptions>();
  app.add_option("LIBRARY", options->shared_object, "Such as libospf_harbor_oper.so")->required();
  app.add_flag("--messages", options->messages, "List every trace message");
  app.add_flag("--json", options->json, "One JSON object a line");
  return [options](ospf_tables::Session *) { return inspect(*options, std::cout, std::cerr); };
}

}  // namespace

extern const Command inspect_command;
const Command inspect_command{"inspect", "Print what a library's file carries for tools",
                              Needs::nothing, set_up_inspect};

}  // namespace tool
