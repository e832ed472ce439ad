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

// What the databases of routers differ in.
struct Difference {
  std::uint8_t version = 0;
  std::uint8_t instance_id = 0;
  std::uint16_t age = 0;  // of the youngest copy: what is young may still be on its way
  std::string text;       // a sentence
};

// Two routers that call themselves the same.
struct SharedId {
  std::uint8_t version = 0;
  std::uint8_t instance_id = 0;
  std::uint32_t router_id = 0;
  std::vector<std::string> names;
};

struct Network {
  std::vector<Process> processes;
  std::vector<Difference> differences;
  std::vector<SharedId> shared_ids;
};

Network one_network(const std::vector<Router> &routers);

}  // namespace router_answers
