// The options of commands that fill the tables: what is shown when they have.
#pragma once

#include <algorithm>

#include "commands/command.hpp"
#include "views/show.hpp"

namespace tool {

struct ShowAfter {
  bool wanted = false;
  bool tree = false;
  std::string path;

  void add_to(CLI::App &command) {
    command.add_flag("--show", wanted, "Show an overview afterwards");
    command.add_flag("--tree", tree, "Show all rows afterwards");
    command.add_option("--path", path, "Show these rows, such as area/0.0.0.0/interface/eth0");
  }
  // status: of the filling.
  int run(ospf_tables::Session &session, int status = 0) const {
    session.reading([&] {
      if (wanted) status = std::max(status, show_overview(session, "auto"));
      if (tree || !path.empty()) status = std::max(status, show_path(session, path));
    });
    return status;
  }
};

}  // namespace tool
