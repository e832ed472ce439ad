#include "sources/load_frr.hpp"

#include <memory>

#include "commands/show_after.hpp"

namespace tool {

namespace {

Run set_up_load_frr(CLI::App &app) {
  struct Options {
    std::vector<std::string> folders;
    ShowAfter show;
  };
  const auto options = std::make_shared<Options>();
  app.add_option("FOLDER", options->folders, "One folder for each router")->required();
  options->show.add_to(app);
  return [options](ospf_tables::Session *session) {
    load_frr(*session, options->folders);
    return options->show.run(*session);
  };
}

}  // namespace

extern const Command load_frr_command;
const Command load_frr_command{
    "load frr", "Read the JSON that a routing daemon prints (ip-ospf*.json, ipv6-ospf6*.json)",
    Needs::session, set_up_load_frr};

}  // namespace tool
