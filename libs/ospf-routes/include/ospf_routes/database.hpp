// What the calculation reads: the link-state databases of one instance of OSPF, by area and for the
// whole autonomous system, as plain values that both versions of the protocol share. LSAs at the
// end of their life are not in it. Filled from tables, from tests, or by hand; changed by what-ifs.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ospf_routes/address.hpp"

namespace ospf_routes {

// Metrics of summaries and externals that say "unreachable".
inline constexpr std::uint32_t infinite_metric = 0xffffff;

// Interfaces of OSPFv2 are addresses; numbers below this are indices of those that have none.
inline constexpr std::uint32_t lowest_address = 0x01000000;

enum class LinkType : std::uint8_t { point_to_point = 1, transit = 2, stub = 3, virtual_link = 4 };

// A link in a router-LSA. OSPFv2 has the designated router's address where OSPFv3 has the router ID
// and interface ID of the designated router: a network is known by the pair (neighbor,
// neighbor_interface), whose first is 0 in OSPFv2.
struct RouterLink {
  LinkType type = LinkType::point_to_point;
  RouterId neighbor = 0;
  std::uint32_t neighbor_interface = 0;  // in OSPFv2 of transit links alone
  std::uint32_t interface = 0;  // own: in OSPFv2 the address, or the index when it has none
  std::uint32_t metric = 0;
  Prefix stub;  // of stub links, in OSPFv2 alone
};

struct RouterLsa {
  RouterId router = 0;
  std::uint32_t link_state_id = 0;  // OSPFv3: a router may have several LSAs, which add up
  bool border = false;              // B
  bool boundary = false;            // E of the flags
  bool virtual_end = false;         // V
  bool takes_externals = true;      // E of the options: clear in stub areas and in NSSAs
  bool forwards = true;             // R of OSPFv3
  bool in_family = true;            // V6 where the instance is one of IPv6
  std::vector<RouterLink> links;
};

struct NetworkLsa {
  RouterId router = 0;
  std::uint32_t link_state_id = 0;
  std::uint8_t length = 0;  // of the prefix, in OSPFv2 alone; 32 hides a transit-only network
  std::vector<RouterId> attached;
};

// Options of a prefix, OSPFv3 alone.
inline constexpr std::uint8_t prefix_no_unicast = 0x01;     // NU
inline constexpr std::uint8_t prefix_local_address = 0x02;  // LA
inline constexpr std::uint8_t prefix_propagate = 0x08;      // P

struct SummaryLsa {
  RouterId router = 0;
  Prefix prefix;
  std::uint32_t metric = 0;
  std::uint8_t options = 0;
};

struct BoundarySummaryLsa {
  RouterId router = 0;
  RouterId boundary = 0;  // the AS boundary router that it leads to
  std::uint32_t metric = 0;
};

struct ExternalLsa {  // and NSSA-LSA
  RouterId router = 0;
  Prefix prefix;
  std::uint32_t metric = 0;
  bool type_2 = false;
  std::optional<Address> forwarding;
  std::uint32_t tag = 0;
  std::uint8_t options = 0;
  bool propagate = false;  // P: of NSSA-LSAs, in either version
};

struct LinkLsa {
  RouterId router = 0;
  std::uint32_t interface = 0;
  Address address;  // link-local, or that of the interface where IPv4 is routed
  std::vector<Prefix> prefixes;
};

struct IntraAreaPrefix {
  Prefix prefix;
  std::uint8_t options = 0;
  std::uint32_t metric = 0;
};

struct IntraAreaPrefixLsa {
  RouterId router = 0;
  bool of_network = false;  // else of a router
  RouterId referenced_router = 0;
  std::uint32_t referenced_id = 0;
  std::vector<IntraAreaPrefix> prefixes;
};

struct Area {
  AreaId id = 0;
  std::vector<RouterLsa> routers;
  std::vector<NetworkLsa> networks;
  std::vector<SummaryLsa> summaries;
  std::vector<BoundarySummaryLsa> boundaries;
  std::vector<ExternalLsa> nssa;
  std::vector<LinkLsa> links;                   // OSPFv3
  std::vector<IntraAreaPrefixLsa> prefix_lsas;  // OSPFv3
};

struct Database {
  std::uint8_t version = 2;  // of OSPF
  Family family = Family::ipv4;
  std::uint8_t instance = 0;
  std::vector<Area> areas;
  std::vector<ExternalLsa> externals;
  // What the source of the LSAs could not tell, one sentence each.
  std::vector<std::string> lacks;
};

}  // namespace ospf_routes
