// How many shortest paths each link carries: of every pair of routers of an area one path, which
// equal-cost ways share as often as they lead on.
#pragma once

#include <vector>

#include "ospf_routes/routes.hpp"

namespace ospf_routes {

// Of a router's way to another one or onto a network; links side by side are one.
struct LinkLoad {
  AreaId area = 0;
  RouterId from = 0;
  RouterId to = 0;            // or
  std::uint32_t network = 0;  // the link-state ID of a network
  double carried = 0;         // paths

  bool same_link(const LinkLoad &other) const {
    return area == other.area && from == other.from && to == other.to && network == other.network;
  }
};

// By area, router and what it leads to.
std::vector<LinkLoad> link_loads(const Calculator &calculator);

struct LoadChange {
  LinkLoad link;  // `carried`: afterwards
  double before = 0;
};

// Links that carry more paths than before, the most added first.
std::vector<LoadChange> added_loads(const Calculator &before, const Calculator &after);

}  // namespace ospf_routes
