// Rows of the tables as JSON objects for `--json`: one object a line, always the same keys in the
// same order for a kind of row, named as the model names its fields. Numbers that stand for
// addresses or identifiers are dotted quads, octets are hexadecimal text, what is not there is
// null.
#pragma once

#include <string>

#include "ospf_tables/lsdb_view.hpp"
#include "ospf_tables/tree.hpp"
#include "views/router_names.hpp"

namespace tool {

// An LSA of a database with its place in it.
std::string json_line(const ospf_tables::LsdbEntry &entry, const RouterNames &names = {});

// Any row of the tree: its kind, its path and its fields. An LSA holds the rows below it.
// `names`: null for who does not ask for names.
std::string json_line(ospf_tables::Session &session, const ospf_tables::RowView &row,
                      const RouterNames *names = nullptr);

}  // namespace tool
