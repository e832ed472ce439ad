#include "views/show.hpp"

#include <memory>

#include "commands/command.hpp"

namespace tool {

namespace {

Run set_up_show(CLI::App &app) {
  struct Options {
    std::string path;
    bool json = false;
  };
  const auto options = std::make_shared<Options>();
  app.add_option("PATH", options->path,
                 "Rows by kind and key, such as area/0.0.0.0/interface/eth0; all without it");
  app.add_flag("--json", options->json, "One JSON object a line");
  return [options](ospf_tables::Session *session) {
    return show_path(*session, options->path, options->json);
  };
}

}  // namespace

extern const Command show_command;
const Command show_command{"show", "Print the tree, or a part of it", Needs::tree, set_up_show};

}  // namespace tool
