// Routers' answers as a source: processes, interfaces, neighbours and databases out of the folders
// of one or several routers, into the tables of this run.
#pragma once

#include <string>
#include <vector>

#include "ospf_tables/session.hpp"
#include "sources/heard.hpp"

namespace tool {

// One router's processes stand under its own router ID, those of OSPFv3 instances other than 0 as
// captures have them; several routers are one network. In what routers differ is told on standard
// error or, like how they are configured, to who asks for it. Throws InputError; the tree is then
// as it was.
void load_routers(ospf_tables::Session &session, const std::vector<std::string> &folders,
                  Heard *heard = nullptr);

}  // namespace tool
