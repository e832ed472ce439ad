// Prefixes as daemons write them.
#pragma once

#include <optional>
#include <string>

#include "ospf_decode/address.hpp"

namespace router_answers {

// "2001:db8::/32" and "10.0.0.0/8", an IPv4 address in the first four octets; none for anything
// else.
std::optional<ospf_decode::PrefixV3> parse_prefix(const std::string &text);

}  // namespace router_answers
