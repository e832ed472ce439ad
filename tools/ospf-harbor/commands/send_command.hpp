// `send` and `receive`: the tree of one process into another.
#pragma once

#include <cstdint>
#include <string>

#include "ospf_tables/session.hpp"

namespace tool {

// The status: 1 when nothing is loaded. Throws InputError for a place that is not on this machine,
// ConnectionFailure when the tree did not arrive.
int send_to(ospf_tables::Session &session, const std::string &place, double seconds);

// Says where it waits, takes one tree and adds it as an import does. Throws InputError and
// ConnectionFailure with the tables as they were.
void receive_at(ospf_tables::Session &session, const std::string &place, double seconds,
                std::uint64_t limit);

}  // namespace tool
