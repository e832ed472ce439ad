// `import`, and `--from` of other commands: trees out of files into the session's tree. What
// arrives is added; an instance of the same key gives way to it. A file that is not sound changes
// nothing.
#pragma once

#include <string>
#include <vector>

#include "export_command.hpp"
#include "session.hpp"

namespace tool {

// Throws InputError.
void import_tree(Session &session, TreeForm form, const std::string &file);

// Loads each source for what it is: a folder of a routing daemon's answers, a tree stream, or a
// tree's XML. Throws InputError for the first that is not sound or not known.
void load_sources(Session &session, const std::vector<std::string> &sources);

}  // namespace tool
