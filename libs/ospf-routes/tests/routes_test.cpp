// Rules of the calculation, one by one, on databases made by hand. What many rules make together is
// held against a second implementation by compare_random.py.
#include "ospf_routes/routes.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "small_network.hpp"

namespace {

using namespace ospf_routes;

const Route *find(const RoutingTable &table, const char *wanted) {
  const auto at = std::find_if(table.routes.begin(), table.routes.end(),
                               [&](const Route &route) { return route.prefix == prefix(wanted); });
  return at == table.routes.end() ? nullptr : &*at;
}

// "kind cost hop hop", a hop as address@interface, "-" for what is not known.
std::string route_to(const Database &database, const char *router, const char *wanted,
                     Rules rules = {}) {
  const RoutingTable table = Calculator(database, rules).table(id(router));
  const Route *route = find(table, wanted);
  if (route == nullptr) return "none";
  std::string text = std::string(name_of(route->kind)) + " " + std::to_string(route->cost);
  for (const NextHop &hop : table.next_hops(*route)) {
    text +=
        " " + (hop.address ? text_of(*hop.address, Family::ipv4) : "-") + "@" +
        (hop.interface.form == OwnInterface::Form::address
             ? text_of(hop.interface.address, Family::ipv4)
         : hop.interface.form == OwnInterface::Form::number ? std::to_string(hop.interface.number)
                                                            : "-");
  }
  return text;
}

TEST(Address, PrefixesAreMaskedAndReadStrictly) {
  EXPECT_EQ(text_of(parse_prefix("10.1.2.3/8", Family::ipv4).value(), Family::ipv4), "10.0.0.0/8");
  EXPECT_EQ(text_of(parse_prefix("2001:db8::1/65", Family::ipv6).value(), Family::ipv6),
            "2001:db8::/65");
  EXPECT_EQ(text_of(parse_prefix("10.1.2.3", Family::ipv4).value(), Family::ipv4), "10.1.2.3/32");
  for (const char *bad : {"", "10.0.0.0/", "10.0.0.0/33", "10.0.0.0/8x", "10.0.0/8", "::/0"}) {
    EXPECT_FALSE(parse_prefix(bad, Family::ipv4)) << bad;
  }
  EXPECT_EQ(length_of_mask(0xffffff00), 24u);
  EXPECT_EQ(length_of_mask(0xffffffff), 32u);
  EXPECT_EQ(length_of_mask(0), 0u);
  EXPECT_FALSE(length_of_mask(0xff00ff00));
}

TEST(Routes, AllEqualWaysAreTaken) {
  EXPECT_EQ(route_to(small_network(), "10.0.0.1", "10.4.0.0/24"),
            "intra 16 10.1.0.2@10.1.0.1 10.2.0.2@10.2.0.1 10.2.0.6@10.2.0.5");
}

TEST(Routes, OwnNetworksHaveNoAddressBehindThem) {
  EXPECT_EQ(route_to(small_network(), "10.0.0.1", "10.1.0.0/24"), "intra 10 -@10.1.0.1");
  EXPECT_EQ(route_to(small_network(), "10.0.0.1", "10.9.0.1/32"), "intra 0 -@10.9.0.1");
  EXPECT_EQ(route_to(small_network(), "10.0.0.3", "10.4.0.0/24"), "intra 1 -@-");
}

TEST(Routes, ALinkCountsWhenBothEndsSpeakOfIt) {
  Database database = small_network();
  database.areas[0].routers[2].links.erase(database.areas[0].routers[2].links.begin());
  EXPECT_EQ(route_to(database, "10.0.0.1", "10.4.0.0/24"), "none");
  database = small_network();
  database.areas[0].networks[0].attached = {id("10.0.0.1")};
  EXPECT_EQ(route_to(database, "10.0.0.1", "10.4.0.0/24"),
            "intra 16 10.2.0.2@10.2.0.1 10.2.0.6@10.2.0.5");
}

TEST(Routes, ANetworkWithTheMaskOfAHostIsForTransitAlone) {
  Database database = small_network();
  database.areas[0].networks[0].length = 32;
  EXPECT_EQ(route_to(database, "10.0.0.1", "10.1.0.2/32"), "none");
  EXPECT_EQ(route_to(database, "10.0.0.3", "10.9.0.1/32"), "intra 15 10.3.0.1@10.3.0.2");
}

TEST(Routes, OverALinkWithoutAddressesTheInterfaceIsNamedByItsNumber) {
  Database database = small_network();
  database.areas[0].routers[1].links[3].interface = 7;
  database.areas[0].routers[2].links[0].interface = 9;
  EXPECT_EQ(route_to(database, "10.0.0.3", "10.9.0.1/32"), "intra 15 -@9");
  EXPECT_EQ(
      Calculator(database).table(id("10.0.0.3")).lacks,
      std::vector<std::string>{"area 0.0.0.0: no address of next hop 10.0.0.2: the link has no "
                               "address"});
}

TEST(Routes, ARouterThatDoesNotForwardIsAnEnd) {
  Database database = small_network();
  database.areas[0].routers[1].forwards = false;
  EXPECT_EQ(route_to(database, "10.0.0.1", "10.4.0.0/24"), "none");
  EXPECT_EQ(route_to(database, "10.0.0.2", "10.4.0.0/24"), "intra 6 10.3.0.2@10.3.0.1");
}

TEST(Routes, TypeOneGoesBeforeTypeTwoAndALowerTypeTwoCostBeforeANearerRouter) {
  Database database = small_network();
  database.areas[0].routers[1].boundary = true;
  database.areas[0].routers[2].boundary = true;
  database.externals = {external("10.0.0.2", "192.0.2.0/24", 20, true),
                        external("10.0.0.3", "192.0.2.0/24", 19, true)};
  EXPECT_EQ(route_to(database, "10.0.0.1", "192.0.2.0/24").substr(0, 13), "external-2 15");
  database.externals.push_back(external("10.0.0.3", "192.0.2.0/24", 5000, false));
  EXPECT_EQ(route_to(database, "10.0.0.1", "192.0.2.0/24").substr(0, 15), "external-1 5015");
  database.externals[2].metric = infinite_metric;
  EXPECT_EQ(route_to(database, "10.0.0.1", "192.0.2.0/24").substr(0, 13), "external-2 15");
}

TEST(Routes, AForwardingAddressOnAnOwnNetworkIsTheNextHop) {
  Database database = small_network();
  database.areas[0].routers[1].boundary = true;
  database.externals = {external("10.0.0.2", "192.0.2.0/24", 20, true)};
  database.externals[0].forwarding = parse_address("10.1.0.99", Family::ipv4);
  EXPECT_EQ(route_to(database, "10.0.0.1", "192.0.2.0/24"), "external-2 10 10.1.0.99@10.1.0.1");
  // One of its own leads nowhere, and one that nobody has neither.
  database.externals[0].forwarding = parse_address("10.1.0.1", Family::ipv4);
  EXPECT_EQ(route_to(database, "10.0.0.1", "192.0.2.0/24"), "none");
  database.externals[0].forwarding = parse_address("10.77.0.1", Family::ipv4);
  EXPECT_EQ(route_to(database, "10.0.0.1", "192.0.2.0/24"), "none");
}

// The first router becomes a border router to an area 1, where the third one is another.
Database two_areas() {
  Database database = small_network();
  for (const std::size_t at : {0u, 2u}) database.areas[0].routers[at].border = true;
  Area area;
  area.id = 1;
  area.routers = {router("10.0.0.1", {point_to_point("10.0.0.3", "10.5.0.1", 100)}),
                  router("10.0.0.3", {point_to_point("10.0.0.1", "10.5.0.2", 100)})};
  for (RouterLsa &lsa : area.routers) lsa.border = lsa.boundary = true;
  database.areas.push_back(area);
  return database;
}

TEST(Routes, ABorderRouterBelievesSummariesOfTheBackboneAlone) {
  Database database = two_areas();
  database.areas[1].summaries = {{id("10.0.0.3"), prefix("10.6.0.0/16"), 1, 0}};
  EXPECT_EQ(route_to(database, "10.0.0.1", "10.6.0.0/16"), "none");
  database.areas[0].summaries = {{id("10.0.0.3"), prefix("10.6.0.0/16"), 1, 0}};
  EXPECT_EQ(route_to(database, "10.0.0.1", "10.6.0.0/16").substr(0, 8), "inter 16");
  // But not of a range that it summarises itself.
  database.areas[0].summaries.push_back({id("10.0.0.1"), prefix("10.6.0.0/16"), 7, 0});
  EXPECT_EQ(route_to(database, "10.0.0.1", "10.6.0.0/16"), "none");
}

TEST(Routes, ABorderRouterWhoseBackboneIsCutOffLooksIntoEveryArea) {
  Database database = two_areas();
  database.areas[1].summaries = {{id("10.0.0.3"), prefix("10.6.0.0/16"), 1, 0}};
  database.areas[0].routers = {router("10.0.0.1", {stub("10.9.0.1/32", 0)})};
  database.areas[0].routers[0].border = true;
  EXPECT_EQ(route_to(database, "10.0.0.1", "10.6.0.0/16"), "inter 101 10.5.0.2@10.5.0.1");
}

TEST(Routes, APathWithinAnotherAreaGoesBeforeTheBackboneUnlessRfc1583IsFollowed) {
  Database database = two_areas();
  database.areas[0].routers[2].boundary = true;
  database.externals = {external("10.0.0.3", "192.0.2.0/24", 1, true)};
  EXPECT_EQ(route_to(database, "10.0.0.1", "192.0.2.0/24"), "external-2 100 10.5.0.2@10.5.0.1");
  EXPECT_EQ(route_to(database, "10.0.0.1", "192.0.2.0/24", {true}).substr(0, 13), "external-2 15");
  // An area that takes no AS-externals shows no way to them.
  for (RouterLsa &lsa : database.areas[1].routers) lsa.takes_externals = false;
  EXPECT_EQ(route_to(database, "10.0.0.1", "192.0.2.0/24").substr(0, 13), "external-2 15");
}

TEST(Routes, TheDefaultOfAnNssaBindsABorderRouterWithThePBitAlone) {
  Database database = two_areas();
  database.areas[1].nssa = {external("10.0.0.3", "0.0.0.0/0", 1, true)};
  EXPECT_EQ(route_to(database, "10.0.0.1", "0.0.0.0/0"), "none");
  database.areas[1].nssa[0].propagate = true;
  EXPECT_EQ(route_to(database, "10.0.0.1", "0.0.0.0/0"), "nssa-2 100 10.5.0.2@10.5.0.1");
  database.areas[1].summaries = {{id("10.0.0.1"), prefix("0.0.0.0/0"), 1, 0}};
  EXPECT_EQ(route_to(database, "10.0.0.1", "0.0.0.0/0"), "none");
}

TEST(Routes, AVirtualLinkLeadsWhereItsTransitAreaLeadsAndShorterWaysThereAreTaken) {
  Database database = two_areas();
  // The backbone falls apart but for a virtual link.
  database.areas[0].routers[1].links.pop_back();
  database.areas[0].routers[2].links[0] = {.type = LinkType::virtual_link,
                                           .neighbor = id("10.0.0.1"),
                                           .interface = id("10.5.0.2"),
                                           .metric = 100,
                                           .stub = {}};
  database.areas[0].routers[0].links.push_back({.type = LinkType::virtual_link,
                                                .neighbor = id("10.0.0.3"),
                                                .interface = id("10.5.0.1"),
                                                .metric = 100,
                                                .stub = {}});
  EXPECT_EQ(route_to(database, "10.0.0.1", "10.4.0.0/24"), "intra 101 10.5.0.2@10.5.0.1");
  // Another border router of the transit area is nearer.
  database.areas[1].routers[0].links.push_back(point_to_point("10.0.0.8", "10.8.0.1", 3));
  database.areas[1].routers.push_back(
      router("10.0.0.8", {point_to_point("10.0.0.1", "10.8.0.2", 3)}));
  database.areas[1].routers.back().border = true;
  database.areas[1].summaries = {{id("10.0.0.8"), prefix("10.4.0.0/24"), 4, 0}};
  EXPECT_EQ(route_to(database, "10.0.0.1", "10.4.0.0/24"), "intra 101 10.5.0.2@10.5.0.1");
  database.areas[1].routers[0].virtual_end = true;
  EXPECT_EQ(route_to(database, "10.0.0.1", "10.4.0.0/24"), "intra 7 10.8.0.2@10.8.0.1");
}

TEST(Routes, WhatDatabasesLackIsSaid) {
  Database database = small_network();
  database.lacks = {"the source knew no metrics"};
  database.areas[0].routers.pop_back();
  database.areas[0].networks.clear();
  const std::vector<std::string> lacks = Calculator(database).lacks();
  const std::vector<std::string> expected = {
      "the source knew no metrics",
      "area 0.0.0.0: no network-LSA 10.1.0.2, which the router-LSA of 10.0.0.1 names",
      "area 0.0.0.0: no network-LSA 10.1.0.2, which the router-LSA of 10.0.0.2 names",
      "area 0.0.0.0: no router-LSA of 10.0.0.3, which that of 10.0.0.2 names"};
  EXPECT_EQ(lacks, expected);
  EXPECT_EQ(Calculator(small_network()).lacks(), std::vector<std::string>());
}

TEST(Routes, ARouterThatIsNotThereHasNone) {
  EXPECT_TRUE(Calculator(small_network()).table(id("10.0.0.9")).routes.empty());
  EXPECT_TRUE(Calculator(Database{}).routers().empty());
}

}  // namespace
