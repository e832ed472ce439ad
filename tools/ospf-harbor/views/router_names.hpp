// Names beside router IDs, in every view: what a list of the user's says, else what the routers
// said in their answers, else the host names that they announce (RFC 5642).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ospf_tables/lsdb_view.hpp"
#include "ospf_tables/told.hpp"

namespace tool {

using ospf_tables::RouterNames;

RouterNames router_names(ospf_tables::Session &session,
                         const std::vector<ospf_tables::LsdbEntry> &entries);

// The same for whoever has not read the databases.
RouterNames router_names(ospf_tables::Session &session);

// "10.0.0.1", or "10.0.0.1 core1" of a router that has a name.
std::string labelled(std::uint32_t router, const RouterNames &names);

// A sentence with names behind the IDs of these routers. Addresses, prefixes and link-state IDs
// that look like one have none: those behind "@", before "/" and before " of ".
std::string labelled(const std::string &sentence, const std::vector<std::uint32_t> &routers,
                     const RouterNames &names);

}  // namespace tool
