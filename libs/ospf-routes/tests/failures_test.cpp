// Failures against the databases without what failed, calculated afresh: every router has a
// loopback, and what its table says of the others' loopbacks is who reaches whom at what cost.
#include "ospf_routes/failures.hpp"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "ospf_routes/changes.hpp"

namespace {

using namespace ospf_routes;

RouterId router_id(std::uint32_t number) { return 0x0a000000 + number; }

struct Network {
  Database database;
  std::mt19937 random;
  std::uint32_t next_subnet = 0x0b000000;
  std::set<std::pair<RouterId, RouterId>> pairs;

  explicit Network(unsigned seed) : random(seed) {}

  std::uint32_t number(std::uint32_t from, std::uint32_t to) {
    return std::uniform_int_distribution<std::uint32_t>(from, to)(random);
  }

  void add_area(AreaId id, const std::set<std::uint32_t> &members) {
    Area area;
    area.id = id;
    for (const std::uint32_t member : members) {
      RouterLsa lsa{.router = router_id(member), .link_state_id = router_id(member), .links = {}};
      const Prefix own = make_prefix(ipv4_address(lsa.router), 32);
      lsa.links.push_back({.type = LinkType::stub, .stub = own});
      area.routers.push_back(lsa);
    }
    const auto count = static_cast<std::uint32_t>(area.routers.size());
    for (std::uint32_t at = 1; at < count; ++at) link(area, number(0, at - 1), at);
    for (std::uint32_t extra = number(0, count); extra > 0; --extra) {
      const std::uint32_t one = number(0, count - 1);
      const std::uint32_t two = number(0, count - 1);
      if (one != two) link(area, one, two);
    }
    if (count > 3) add_network(area);
    database.areas.push_back(area);
  }

  void link(Area &area, std::uint32_t one, std::uint32_t two) {
    RouterLsa &a = area.routers[one];
    RouterLsa &b = area.routers[two];
    if (!pairs.insert(std::minmax(a.router, b.router)).second) return;
    const std::uint32_t subnet = next_subnet += 4;
    a.links.push_back(
        {.neighbor = b.router, .interface = subnet + 1, .metric = number(1, 5), .stub = {}});
    b.links.push_back(
        {.neighbor = a.router, .interface = subnet + 2, .metric = number(1, 5), .stub = {}});
  }

  void add_network(Area &area) {
    const std::uint32_t subnet = next_subnet += 16;
    NetworkLsa network{area.routers[0].router, subnet + 1, 28, {}};
    for (std::uint32_t at = 0; at < 3; ++at) {
      area.routers[at].links.push_back({.type = LinkType::transit,
                                        .neighbor_interface = subnet + 1,
                                        .interface = subnet + 1 + at,
                                        .metric = number(1, 5),
                                        .stub = {}});
      network.attached.push_back(area.routers[at].router);
    }
    area.networks.push_back(network);
  }

  // Every border router says all that it has: first into the backbone, then out of it.
  void summarise() {
    std::map<RouterId, int> areas;
    for (const Area &area : database.areas) {
      for (const RouterLsa &lsa : area.routers) ++areas[lsa.router];
    }
    for (Area &area : database.areas) {
      for (RouterLsa &lsa : area.routers) lsa.border = areas[lsa.router] > 1;
    }
    for (const bool into_backbone : {true, false}) {
      const Calculator calculator(database);
      for (Area &area : database.areas) {
        if ((area.id == backbone) != into_backbone) continue;
        for (const RouterLsa &lsa : area.routers) {
          if (!lsa.border) continue;
          const RoutingTable table = calculator.table(lsa.router);
          for (const Route &route : table.routes) {
            const bool goes = route.kind == Kind::intra ? route.area != area.id
                                                        : !into_backbone && route.area != area.id;
            if (goes) area.summaries.push_back({lsa.router, route.prefix, route.cost, 0});
          }
        }
      }
    }
  }
};

using Costs = std::map<std::pair<RouterId, RouterId>, std::uint32_t>;
Costs costs_between(const Database &database, const std::vector<RouterId> &routers) {
  const Calculator calculator(database);
  Costs costs;
  for (const RouterId router : routers) {
    for (const Route &route : calculator.table(router).routes) {
      const RouterId to = ipv4_number(route.prefix.address);
      if (route.prefix.length == 32 && to != router) costs[{router, to}] = route.cost;
    }
  }
  return costs;
}

struct Counts {
  std::uint64_t cut_off = 0, longer = 0, added = 0;
  std::uint32_t most_added = 0;
  bool operator==(const Counts &) const = default;
};
std::ostream &operator<<(std::ostream &out, const Counts &counts) {
  return out << counts.cut_off << " cut off, " << counts.longer << " longer by " << counts.added
             << ", at most " << counts.most_added;
}

Counts compare(const Costs &before, const Costs &after, RouterId gone) {
  Counts counts;
  for (const auto &[pair, cost] : before) {
    if (pair.first == gone || pair.second == gone) continue;
    const auto now = after.find(pair);
    if (now == after.end()) {
      ++counts.cut_off;
    } else if (now->second > cost) {
      ++counts.longer;
      counts.added += now->second - cost;
      counts.most_added = std::max(counts.most_added, now->second - cost);
    }
  }
  return counts;
}

// Compares every failure, and gives how many cut something off.
std::size_t expect_as_afresh(const Network &network) {
  const Calculator calculator(network.database);
  const Costs before = costs_between(network.database, calculator.routers());
  std::size_t cutting = 0;
  for (const Failure &failure : all_failures(calculator)) {
    if (failure.kind == Failure::Kind::attachment) continue;
    const bool is_router = failure.kind == Failure::Kind::router;
    const Change change{is_router ? Change::Kind::without_router : Change::Kind::without_link,
                        failure.from, failure.to, 0};
    const Costs after = costs_between(changed(network.database, {change}), calculator.routers());
    const Counts ours{failure.cut_off, failure.longer, failure.added, failure.most_added};
    EXPECT_EQ(ours, compare(before, after, is_router ? failure.from : 0)) << text_of(change);
    cutting += failure.cut_off > 0 ? 1 : 0;
  }
  return cutting;
}

TEST(Failures, OfOneAreaAreWhatTheDatabaseWithoutThemSays) {
  std::size_t cutting = 0;
  for (unsigned seed = 1; seed <= 15; ++seed) {
    SCOPED_TRACE(seed);
    Network network(seed);
    std::set<std::uint32_t> members;
    for (std::uint32_t at = 1; at <= 6 + seed; ++at) members.insert(at);
    network.add_area(0, members);
    cutting += expect_as_afresh(network);
  }
  EXPECT_GT(cutting, 20u);
}

TEST(Failures, OfSeveralAreasAreWhatTheDatabasesWithoutThemSay) {
  std::size_t cutting = 0;
  for (unsigned seed = 1; seed <= 12; ++seed) {
    SCOPED_TRACE(seed);
    Network network(seed);
    network.add_area(0, {1, 2, 3, 4, 5});
    network.add_area(1, {1, 2, 10, 11, 12, 13});
    network.add_area(2, {4, 20, 21, 22});
    network.summarise();
    cutting += expect_as_afresh(network);
  }
  EXPECT_GT(cutting, 20u);
}

TEST(Failures, NameWhoIsIsolatedAndComeByWhatTheyCut) {
  Network network(1);
  Area area;
  for (const std::uint32_t at : {1u, 2u, 3u}) {
    area.routers.push_back({.router = router_id(at), .link_state_id = router_id(at), .links = {}});
  }
  network.link(area, 0, 1);
  network.link(area, 1, 2);
  network.database.areas.push_back(area);
  std::size_t told = 0;
  const std::vector<Failure> found =
      all_failures(Calculator(network.database), [&](std::size_t done, std::size_t all) {
        EXPECT_EQ(++told, done);
        EXPECT_EQ(all, 5u);
      });
  ASSERT_EQ(found.size(), 5u);
  EXPECT_EQ(found[0].cut_off, 4u);
  EXPECT_EQ(found[0].isolated, (std::vector<RouterId>{router_id(1)}));
  EXPECT_EQ(found[2].kind, Failure::Kind::router);
  EXPECT_EQ(found[2].from, router_id(2));
  EXPECT_EQ(found[2].cut_off, 2u);
  EXPECT_EQ(found[4].cut_off, 0u);
}

}  // namespace
