#include "views/show.hpp"

#include <filesystem>
#include <memory>

#include "commands/command.hpp"
#include "views/screen.hpp"

namespace tool {

namespace {

Run set_up_show(CLI::App &app) {
  struct Options {
    std::string path;
    bool json = false;
    bool tree = false;
    std::string colour = "auto";
  };
  const auto options = std::make_shared<Options>();
  // A file stands where a path could: it is a source then.
  app.validate_positionals();
  app.add_option(
         "PATH", options->path,
         "Rows by kind and key, such as area/0.0.0.0/interface/eth0; without it an overview "
         "of areas, routers and neighbours")
      ->check([](const std::string &word) {
        return word == "-" || std::filesystem::exists(word) ? "a source" : "";
      });
  app.add_flag("--tree", options->tree, "All rows, without a path too");
  app.add_flag("--json", options->json, "Rows as one JSON object a line");
  add_colour_option(app, options->colour);
  return [options](ospf_tables::Session *session) {
    const bool rows = options->tree || options->json || !options->path.empty();
    if (!rows) return show_overview(*session, options->colour);
    return show_path(*session, options->path, options->json);
  };
}

}  // namespace

extern const Command show_command;
const Command show_command{"show",
                           "Print an overview, or rows of the tree",
                           Needs::tree,
                           set_up_show,
                           Stands::everywhere,
                           false,
                           nullptr,
                           nullptr,
                           Sites::each};

}  // namespace tool
