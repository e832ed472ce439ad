// The ways that packets take: from router to router as each one's own routing table has it. Every
// equal-cost path is one, with what each link costs and the area that it is in.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ospf_routes/routes.hpp"

namespace ospf_routes {

struct PathStep {
  RouterId router = 0;
  OwnInterface interface;          // that it leaves by
  std::optional<Address> address;  // of the next router, as far as databases tell
  AreaId area = 0;                 // of the link
  std::uint32_t cost = 0;          // of the link
};

enum class PathEnd {
  arrives,   // the destination is on a network of the last router, or its own
  leaves,    // the last router is the AS boundary router that announces the destination
  forwards,  // an address behind the last router that is no router of the databases
  no_route,  // the last router has no route
  loop,      // the last router was on the way already
};
const char *name_of(PathEnd end);

struct Path {
  std::vector<PathStep> steps;
  RouterId last = 0;
  PathEnd end = PathEnd::arrives;
  std::optional<Address> behind;  // of `forwards`

  std::uint32_t cost() const;  // of the links
  std::vector<RouterId> routers() const;
};

// Keeps the tables that it needed. The calculator must outlive it.
class Paths {
 public:
  explicit Paths(const Calculator &calculator) : calculator_(calculator) {}

  // At most `most` of them; `*more` tells whether there are others. In order of the routers.
  std::vector<Path> between(RouterId from, const Prefix &to, std::size_t most, bool *more);

  // The route that a router has to a prefix or, of several that cover it, to the longest.
  const Route *route(RouterId router, const Prefix &to);
  const RoutingTable &table(RouterId router);

  // What stands for a router as a destination: the longest prefix that is its own, the lowest of
  // several. Nothing for a router without one.
  std::optional<Prefix> prefix_of(RouterId router) const;
  // Routers that the prefix is attached to.
  std::vector<RouterId> routers_on(const Prefix &prefix);

 private:
  struct Walk;
  struct Neighbor {
    RouterId router = 0;
    AreaId area = 0;
    std::uint32_t cost = 0;
  };

  void walk(Walk &walk, RouterId router);
  std::optional<Neighbor> neighbor(RouterId router, const NextHop &hop) const;
  bool announces(RouterId router, const Prefix &to) const;

  const Calculator &calculator_;
  std::map<RouterId, RoutingTable> tables_;
};

// Whether every path back is one of the ways there, the other way round.
bool are_symmetric(const std::vector<Path> &there, const std::vector<Path> &back);

}  // namespace ospf_routes
