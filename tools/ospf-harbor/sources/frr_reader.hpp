// Reads the JSON that a routing daemon prints for one router: "show ip ospf", its interfaces and
// neighbours, and the IPv6 forms of the three. Nothing is kept of a router whose answers are not
// all sound.
#pragma once

#include <string>
#include <vector>

#include "ospf_tables/network.hpp"
#include "sources/json_view.hpp"

namespace tool {

// The instances, one for each address family of which the folder holds answers. Throws InputError.
std::vector<ospf_tables::Instance> read_frr(const std::string &folder, PassedOver &passed_over);

}  // namespace tool
