// One router as the answers of its folder tell it: a process for each OSPF version and OSPFv3
// instance, with areas, interfaces, neighbours and link-state databases. FRR's answers are files
// named after their command, "ip-ospf-neighbor-detail.json"; BIRD's after protocol and command,
// "NAME-lsadb.txt", NAME being that of the protocol. Each may be packed (.gz).
#pragma once

#include <string>
#include <vector>

#include "ospf_tables/network.hpp"
#include "router_answers/database.hpp"
#include "router_answers/json_view.hpp"

namespace router_answers {

struct Process {
  std::uint8_t version = 0;
  std::uint8_t instance_id = 0;
  ospf_tables::Instance instance{};
  Database database;
};

struct Router {
  std::string name;  // of its folder
  std::vector<Process> processes;
};

// Whether the folder has answers that are read here.
bool is_router(const std::string &folder);

// The host name that the router tells: of its configuration (frr.conf, running-config.txt,
// bird.conf) or BIRD's status (status.txt); empty without them. Throws InputError.
std::string host_name(const std::string &folder);

// Throws InputError when an answer is not sound; nothing is kept of such a router.
Router read_router(const std::string &folder, PassedOver &passed_over);

}  // namespace router_answers
