// "show ip ospf database" and its detailed forms as vtysh prints them.
#pragma once

#include <string>

#include "router_answers/database.hpp"

namespace router_answers {

// Throws InputError.
void read_frr_text_v2(const std::string &path, Database &database);

}  // namespace router_answers
