// Names of routers: the host names that they announce themselves (RFC 5642).
#pragma once

#include <vector>

#include "ospf_tables/lsdb_view.hpp"
#include "views/network_lists.hpp"

namespace tool {

RouterNames announced_names(const std::vector<ospf_tables::LsdbEntry> &entries);

}  // namespace tool
