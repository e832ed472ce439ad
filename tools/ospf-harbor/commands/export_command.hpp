// `export`: the tree of the session into a file, as a tree stream, as XML or as the text of `show`.
#pragma once

#include <string>

#include "ospf_tables/session.hpp"

namespace tool {

enum class TreeForm { image, xml, text };

// The status: 1 when nothing is loaded. Throws InputError, with the file as it was.
int export_tree(ospf_tables::Session &session, TreeForm form, const std::string &file);

}  // namespace tool
