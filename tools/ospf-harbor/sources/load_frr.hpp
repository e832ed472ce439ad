// `load frr`: the JSON of a routing daemon, one folder for each router, into the tables.
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

}  // namespace tool
