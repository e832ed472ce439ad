// The options of commands that fill the tables: the tree shown when they have.
#pragma once

#include <algorithm>

#include "commands/command.hpp"
#include "views/show.hpp"

namespace tool {

struct ShowAfter {
  bool wanted = false;
  std::string path;

  void add_to(CLI::App &command) {
    command.add_flag("--show", wanted, "Show the tree afterwards");
    command.add_option("--path", path, "What to show of it, such as area/0.0.0.0/interface/eth0");
  }
  // status: of the filling.
  int run(ospf_tables::Session &session, int status = 0) const {
    if (wanted || !path.empty()) {
      session.reading([&] { status = std::max(status, show_path(session, path)); });
    }
    return status;
  }
};

}  // namespace tool
