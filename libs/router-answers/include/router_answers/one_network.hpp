// Several routers' answers as one network, in the form that a capture of it has: a process for each
// version and instance ID with the areas and interfaces of all routers, these named ROUTER@ADDRESS
// (or @NAME where a router does not tell the address), and one database.
//
// Of an LSA that several routers hold the newest stays (RFC 2328, 13.1), of one instance that was
// read more than once the bytes that its checksum proves. LSAs that only some routers of an area
// hold, or hold in different instances, are told; answers are given one after the other, so that a
// difference may be one of time.
#pragma once

#include <string>
#include <vector>

#include "router_answers/router.hpp"

namespace router_answers {

struct Network {
  std::vector<Process> processes;
  std::vector<std::string> differences;  // a sentence each
};

Network one_network(const std::vector<Router> &routers);

}  // namespace router_answers
