// The databases in the form that tables are calculated from: graphs of areas, and every prefix and
// router as a number, so that a calculation touches arrays alone. Built once, then only read.
#pragma once

#include <unordered_map>

#include "area_graph.hpp"
#include "ospf_routes/routes.hpp"

namespace ospf_routes {

struct CompiledSummary {
  std::uint32_t prefix = 0;  // a number of Compiled::prefixes
  std::uint32_t border = 0;  // vertex of the router that says it
  std::uint32_t metric = 0;
};

struct CompiledBoundary {
  std::uint32_t boundary = 0;  // a number of Compiled::routers
  std::uint32_t border = 0;    // vertex
  std::uint32_t metric = 0;
};

struct CompiledPrefix {
  std::uint32_t vertex = 0;
  std::uint32_t prefix = 0;
  std::uint32_t metric = 0;
};

struct CompiledExternal {
  std::uint32_t prefix = 0;
  std::uint32_t router = 0;       // a number of Compiled::routers
  std::uint32_t area = none;      // of NSSA-LSAs: a position in Compiled::areas
  std::uint32_t covering = none;  // the longest known prefix over the forwarding address
  const ExternalLsa *lsa = nullptr;
};

struct CompiledArea {
  AreaGraph graph;
  std::vector<CompiledPrefix> prefixes;
  std::vector<CompiledSummary> summaries;
  std::vector<CompiledBoundary> boundaries;
  // What each router summarises into the area: sorted pairs of router and prefix.
  std::vector<std::pair<RouterId, std::uint32_t>> summarised;
  // Of OSPFv3, by router and interface.
  std::vector<LinkLsa> links;

  const LinkLsa *link_of(RouterId router, std::uint32_t interface) const;
};

class Compiled {
 public:
  Compiled(const Database &given, Rules rules);
  Compiled(const Compiled &) = delete;  // externals point into the database
  Compiled &operator=(const Compiled &) = delete;

  Database database;
  Rules rules;
  std::vector<Prefix> prefixes;             // sorted
  std::vector<std::uint32_t> covering;      // of each prefix the next shorter one, or none
  std::vector<RouterId> routers;            // that any LSA names as its source or its aim; sorted
  std::vector<RouterId> roots;              // those with a router-LSA; sorted
  std::vector<CompiledArea> areas;          // by ID
  std::vector<CompiledExternal> externals;  // by prefix
  std::vector<std::string> lacks;

  std::uint32_t prefix_number(const Prefix &prefix) const;
  std::uint32_t router_number(RouterId router) const;
  // The longest known prefix over an address.
  std::uint32_t covering_of(const Address &address) const;

 private:
  void number_all();
  void add_area(const Area &area);
  void add_external(const ExternalLsa &lsa, std::uint32_t area);
};

}  // namespace ospf_routes
