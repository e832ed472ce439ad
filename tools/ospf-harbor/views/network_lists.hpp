// Areas, routers, interfaces and neighbours of the tables as plain lists, whatever they came from:
// what tables, JSON and the overview show. Changes nothing.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "ospf_tables/lsdb_view.hpp"
#include "ospf_tables/observed.hpp"
#include "ospf_tables/session.hpp"

namespace tool {

using ospf_tables::InstanceName;
using ospf_tables::RouterNames;

struct NeighborLine {
  std::uint32_t router_id = 0;
  std::string address;                   // empty where nobody tells it
  std::optional<std::uint8_t> priority;  // the neighbour's
  std::uint32_t state = 0;               // enum nbr_state_type_value
  std::string dr;                        // as the neighbour declares them; empty for none
  std::string bdr;
  std::string evidence;  // empty where nobody tells it

  const char *state_text() const;
  bool is_full() const;
  // Whether the state follows from something else than the conversation itself.
  bool is_inferred() const;
};

struct InterfaceLine {
  InstanceName instance;
  bool is_observed = false;  // in a network seen from outside, where rows are named ROUTER@...
  std::uint32_t area = 0;
  std::uint32_t router = 0;
  std::string name;     // of the row
  std::string address;  // empty where nobody tells it
  std::string prefix;   // of its link, the same
  std::optional<std::uint32_t> mtu;
  bool mtu_ignored = false;
  std::string authentication;  // "none", "key" or an algorithm; empty if not known
  std::string type;            // empty if not known
  std::string state;
  std::optional<std::uint32_t> cost;
  std::optional<std::uint16_t> hello_interval;
  std::optional<std::uint16_t> dead_interval;
  std::optional<std::uint8_t> priority;
  std::string dr;
  std::string bdr;
  bool passive = false;
  bool silent = false;  // it was heard, but no more
  std::vector<NeighborLine> neighbors;

  // What the interface's router would call it, in few columns.
  std::string short_name() const;
  // "DR", "Backup" or "DROther"; empty where there are none.
  const char *role_of(const NeighborLine &neighbor) const;
};

struct AreaLine {
  InstanceName instance;
  std::uint32_t area = 0;
  std::string kind;  // "normal", "stub", "totally stubby", "NSSA", "totally NSSA"; may be empty
  std::set<std::uint32_t> routers;
  std::size_t border_routers = 0;
  std::size_t boundary_routers = 0;
  std::size_t interfaces = 0;
  std::size_t neighbors = 0;
  std::size_t full = 0;
  std::size_t lsas = 0;
};

struct RouterLine {
  InstanceName instance;
  std::uint32_t router = 0;
  bool has_lsa = false;
  bool border = false;
  bool boundary = false;
  std::set<std::uint32_t> areas;
  std::size_t interfaces = 0;
  std::size_t neighbors = 0;
  std::size_t full = 0;
  std::size_t lsas = 0;  // that it originated
};

struct NetworkLists {
  std::vector<AreaLine> areas;
  std::vector<RouterLine> routers;
  std::vector<InterfaceLine> interfaces;  // by instance, area and router
  RouterNames names;
  std::optional<ospf_tables::Site> site;  // whose they are, where that is to be named
  std::size_t down = 0;                   // neighbours that are left out
};

// Which of it is wanted.
struct NetworkFilter {
  bool v2 = false;
  bool v3 = false;
  std::string area;
  std::string router;
  std::string instance;
  bool all = false;  // neighbours and interfaces that are Down as well
};

// Throws UsageError for a filter that nothing can meet, and LibraryFailure.
NetworkLists read_network(ospf_tables::Session &session, const NetworkFilter &filter);

// "OSPFv3", "OSPFv3, instance 64".
std::string title_of(const InstanceName &instance);

}  // namespace tool
