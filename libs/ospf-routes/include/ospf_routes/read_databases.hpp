// The databases that routes are calculated from, out of the LSAs of the tables. LSAs of several
// routers' instances that are one instance of the protocol are put together: of each LSA the newest
// counts, and one that is at the end of its life counts as not there.
#pragma once

#include <vector>

#include "ospf_routes/database.hpp"
#include "ospf_tables/lsdb_view.hpp"

namespace ospf_routes {

// One for each version and instance ID, in their order. What rows do not say is read from the LSA's
// octets; where these are not there either, the database's `lacks` say so.
std::vector<Database> read_databases(const std::vector<ospf_tables::LsdbEntry> &entries);

}  // namespace ospf_routes
