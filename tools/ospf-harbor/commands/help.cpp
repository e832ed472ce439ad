#include <memory>

#include "commands/commands.hpp"

namespace tool {

namespace {

Run set_up_help(CLI::App &app) {
  const auto words = std::make_shared<std::vector<std::string>>();
  app.add_option("COMMAND", *words, "The command; all of them without it");
  return [words](ospf_tables::Session *) { return print_help(*words); };
}

}  // namespace

extern const Command help_command;
const Command help_command{"help", "Say what a command does and which options it has",
                           Needs::nothing, set_up_help};

}  // namespace tool
