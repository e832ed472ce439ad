// The commands of the tool over one session. They may be given together in one call, or one a line
// to `shell`, which keeps the session.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "ospf_tables/session.hpp"

namespace tool {

// Loads all folders, or none: InputError is thrown for the first that is not sound, with the tables
// as they were. Says what was loaded on `report`, unless that is null.
void load_frr(ospf_tables::Session &session, const std::vector<std::string> &folders,
              std::FILE *report = stdout);

// Prints the tree or a part of it, as text or as JSON; 1 when there is nothing at the path.
int show_path(ospf_tables::Session &session, const std::string &path, bool json = false);

// Reads commands from standard input until its end. The status of the last one that failed, or 0.
int run_shell(ospf_tables::Session &session);

}  // namespace tool
