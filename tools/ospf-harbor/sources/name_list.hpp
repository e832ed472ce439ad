// A list of router names that the user gives: a line a router, "10.0.0.1 core1"; what is behind a #
// says nothing.
#pragma once

#include <string>

#include "ospf_tables/told.hpp"

namespace tool {

// Adds the names, or puts them in the place of others. Throws InputError, and then adds none.
void read_names(const std::string &file, ospf_tables::RouterNames &names);

}  // namespace tool
