// The link-state databases that a router tells, from a folder with its answers: FRR's "show ip ospf
// database", the list and each detailed form, in JSON and as text, its "show ipv6 ospf6 database"
// in JSON and as a hex dump, BIRD's "show ospf lsadb" and "show ospf state all". Several answers
// about one LSA become one: the bytes that its checksum proves, else those with a body, else the
// header.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "ospf_decode/lsa_header.hpp"
#include "router_answers/lsa_bytes.hpp"

namespace router_answers {

// Where in a router's databases an LSA is held.
struct Place {
  ospf_decode::Scope scope = ospf_decode::Scope::area;
  std::uint32_t area = 0;  // of area and, where the router tells it, of link scope
  std::string interface;   // of link scope
  auto operator<=>(const Place &) const = default;
};

struct LsaKey {
  Place place;
  ospf_decode::LsaName name;
  auto operator<=>(const LsaKey &) const = default;
};

// The databases of one process.
struct Database {
  std::map<LsaKey, HeldLsa> lsas;

  // Takes an LSA, or what is better of it and the one that is there.
  void add(const Place &place, HeldLsa lsa);
};

// Adds what FRR's answers of a folder say. Throws InputError.
void read_frr_v2(const std::string &folder, Database &database);
void read_frr_v3(const std::string &folder, Database &database);

// Whether the folder has such answers.
bool has_frr_v2(const std::string &folder);
bool has_frr_v3(const std::string &folder);

}  // namespace router_answers
