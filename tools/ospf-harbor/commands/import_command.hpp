// `import`: trees out of files into the session's tree. What arrives is added; an instance of the
// same key gives way to it. A file that is not sound changes nothing.
#pragma once

#include <string>

#include "commands/export_command.hpp"
#include "ospf_tables/session.hpp"

namespace tool {

// Throws InputError.
void import_tree(ospf_tables::Session &session, TreeForm form, const std::string &file);

}  // namespace tool
