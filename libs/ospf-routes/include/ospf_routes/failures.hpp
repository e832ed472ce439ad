// Every link and every router, failing alone: which pairs of routers can no longer reach each
// other, and for which the way becomes longer. Distances are those of OSPF: within an area the
// shortest path there, between areas through border routers and the backbone. Virtual links are
// taken to hold at the cost that they say.
#pragma once

#include <functional>
#include <vector>

#include "ospf_routes/routes.hpp"

namespace ospf_routes {

struct Failure {
  enum class Kind { link, attachment, router };
  Kind kind = Kind::link;
  RouterId from = 0;
  RouterId to = 0;            // of a link
  std::uint32_t network = 0;  // link-state ID, of an attachment and of a network of two as a link
  AreaId area = 0;            // not of a router
  // Ordered pairs of the routers that are left.
  std::uint64_t cut_off = 0;
  std::uint64_t longer = 0;
  std::uint64_t added = 0;       // cost, over all of `longer`
  std::uint32_t most_added = 0;  // of one pair
  // Routers that lose most of those that they reached.
  std::vector<RouterId> isolated;
};

// What cuts off most comes first, then what adds most. `progress` is called with how many of how
// many are done, and may be empty.
std::vector<Failure> all_failures(
    const Calculator &calculator,
    const std::function<void(std::size_t done, std::size_t all)> &progress = {});

}  // namespace ospf_routes
