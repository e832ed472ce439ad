// What `show` prints: the rows of the tree, all of them or those that a path names.
#pragma once

#include <cstdio>
#include <functional>
#include <string>

#include "ospf_tables/session.hpp"
#include "ospf_tables/tree.hpp"

namespace tool {

// A path names rows by kind and key, from the top down, and may leave levels out:
// "area/0.0.0.0/interface/eth0", or "area" for all areas. Throws UsageError for one that no tree
// can have. Gives how many rows were printed.
std::size_t show(ospf_tables::Session &session, const std::string &path, std::FILE *out);

// The same rows as JSON, one object a line. The rows below an LSA are part of its object, unless
// the path asks for them.
std::size_t show_json(ospf_tables::Session &session, const std::string &path, std::FILE *out);

// Calls visit with the same rows, each before those below it; false passes over what is below.
void visit_path(ospf_tables::Session &session, const std::string &path,
                const std::function<bool(const ospf_tables::RowView &row)> &visit);

// Areas, routers and neighbours, with colours as `colour` says. The status.
int show_overview(ospf_tables::Session &session, const std::string &colour);

// Prints the tree or a part of it to standard output; 1, with a word on standard error, when there
// is nothing at the path.
int show_path(ospf_tables::Session &session, const std::string &path, bool json = false);

}  // namespace tool
