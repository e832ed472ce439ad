// Questions of the form "what if": changes to databases as routers would make them if a link failed
// or came, a router left or a cost were another. The routes afterwards are those of the changed
// database; nothing else is remembered.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "ospf_routes/routes.hpp"

namespace ospf_routes {

struct Change {
  enum class Kind { without_link, without_router, cost, with_link };
  Kind kind = Kind::without_link;
  RouterId from = 0;
  RouterId to = 0;           // not of without_router
  std::uint32_t metric = 0;  // of cost and with_link
};

// A change that makes no sense, in itself or for these databases. The text says what and why.
class ChangeError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

inline constexpr std::uint32_t highest_link_metric = 0xffff;

// "10.0.0.1--10.0.0.2" without a link, "10.0.0.1" without a router, "10.0.0.1>10.0.0.2=7" for a
// cost, "10.0.0.1--10.0.0.2=7" with a link. Throws ChangeError.
Change parse_change(Change::Kind kind, std::string_view text);
std::string text_of(const Change &change);

// Refuses changes that contradict each other. Throws ChangeError.
void check_changes(const std::vector<Change> &changes);

// - Without a link: all point-to-point links between the two are gone, with the prefixes that stand
// on
//   them; without one, networks that the two have for themselves; else the virtual link.
// - Without a router: all of its LSAs are gone. Networks that it was the designated router of stay.
// - A cost: of all links of the first router to the second one, or to networks that both are on.
// - With a link: a point-to-point link without addresses, in the backbone if both are there, else
// in
//   the lowest area that both are in.
// Then border routers summarise what they have after the change, as far as they summarised each
// prefix by itself before. Throws ChangeError for what is not there.
Database changed(const Database &database, const std::vector<Change> &changes, Rules rules = {});

enum class Difference { lost, gained, longer, shorter, other_way };
const char *name_of(Difference difference);

struct RouteChange {
  Difference difference = Difference::lost;
  const Route *before = nullptr;  // of the first table, null if gained
  const Route *after = nullptr;   // of the second, null if lost
};

// What differs, by prefix. Longer and shorter are told by kind first, then by cost.
std::vector<RouteChange> differences(const RoutingTable &before, const RoutingTable &after);

}  // namespace ospf_routes
