// Neighbours, interfaces, areas and routers for people and for programs: tables of one line a
// thing, the overview of all four, and JSON lines.
#pragma once

#include <cstdio>

#include "views/network_lists.hpp"
#include "views/screen.hpp"

namespace tool {

// Each gives whether there was anything to show.
bool print_neighbors(const NetworkLists &lists, const Screen &screen, std::FILE *out);
bool print_interfaces(const NetworkLists &lists, const Screen &screen, std::FILE *out);
bool print_areas(const NetworkLists &lists, const Screen &screen, std::FILE *out);
bool print_routers(const NetworkLists &lists, const Screen &screen, std::FILE *out);

// Areas, routers and neighbours; of many routers and neighbours those alone that ask for attention,
// with the number of the others.
bool print_overview(const NetworkLists &lists, const Screen &screen, std::FILE *out);

bool print_neighbors_json(const NetworkLists &lists, std::FILE *out);
bool print_interfaces_json(const NetworkLists &lists, std::FILE *out);
bool print_areas_json(const NetworkLists &lists, std::FILE *out);
bool print_routers_json(const NetworkLists &lists, std::FILE *out);

}  // namespace tool
