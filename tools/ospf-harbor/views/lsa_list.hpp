// Listings of LSAs as text, the way routers show their databases: a line for each LSA under a
// heading for each part of a database, or each LSA in full.
#pragma once

#include <cstdio>
#include <vector>

#include "ospf_tables/lsdb_view.hpp"
#include "views/router_names.hpp"

namespace tool {

// One line an LSA, in aligned columns, and counts by type at the end.
void print_lsa_table(const std::vector<ospf_tables::LsdbEntry> &entries, const RouterNames &names,
                     std::FILE *out);

// Header and body of each LSA in indented lines, under the same headings.
void print_lsa_details(const std::vector<ospf_tables::LsdbEntry> &entries, const RouterNames &names,
                       std::FILE *out);

}  // namespace tool
