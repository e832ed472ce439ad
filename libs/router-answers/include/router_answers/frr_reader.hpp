// Reads the JSON that a routing daemon prints for one router: "show ip ospf", its interfaces and
// neighbours, and the IPv6 forms of the three, each packed (.gz) or not. Nothing is kept of a
// router whose answers are not all sound.
#pragma once

#include <string>
#include <vector>

#include "ospf_tables/network.hpp"
#include "router_answers/json_view.hpp"

namespace router_answers {

// Whether the folder has an answer about a process.
bool has_frr_process(const std::string &folder);

// Answers about interfaces and neighbours that are not there.
enum class Missing { refused, left_out };

// The instances, one for each address family of which the folder holds answers. Throws InputError.
std::vector<ospf_tables::Instance> read_frr(const std::string &folder, PassedOver &passed_over,
                                            Missing missing = Missing::refused);

}  // namespace router_answers
