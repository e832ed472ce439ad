// Reads what BIRD's client prints of one OSPF protocol, files named after the protocol and the
// command: NAME-interface.txt, NAME-neighbors.txt, NAME-lsadb.txt and NAME-state-all.txt ("show
// ospf interface NAME", ..., "show ospf state all NAME"), packed or not.
//
// "lsadb" has the header of each LSA but for options and length. "state all" has what LSAs say in
// words of its own and not in their order: of links neither the data nor, in OSPFv3, the interface
// IDs, of routers neither flags nor options. What it tells of networks, summaries and externals is
// enough to put most of them together exactly, as the checksum proves; router LSAs never are, and
// OSPFv3 link LSAs are not in it at all.
#pragma once

#include <string>
#include <vector>

#include "router_answers/router.hpp"

namespace router_answers {

// The protocols that the folder has answers of.
std::vector<std::string> bird_protocols(const std::string &folder);

// Throws InputError.
Process read_bird(const std::string &folder, const std::string &protocol);

}  // namespace router_answers
