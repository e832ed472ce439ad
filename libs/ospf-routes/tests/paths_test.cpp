// Ways through networks made by hand, told as the routers that they lead over.
#include "ospf_routes/paths.hpp"

#include <gtest/gtest.h>

#include "ospf_routes/changes.hpp"
#include "ospf_routes/loads.hpp"
#include "small_network.hpp"

namespace {

using namespace ospf_routes;

std::string ways(const Database &database, const char *from, const char *to,
                 std::size_t most = 64) {
  const Calculator calculator(database);
  Paths paths(calculator);
  bool more = false;
  std::string text;
  for (const Path &path : paths.between(id(from), prefix(to), most, &more)) {
    for (const PathStep &step : path.steps) {
      text += dotted(step.router) + " " + std::to_string(step.cost) + " ";
    }
    text += dotted(path.last) + " " + name_of(path.end);
    if (path.behind) text += " " + text_of(*path.behind, Family::ipv4);
    text += "; ";
  }
  return text + (more ? "and more" : "");
}

TEST(Paths, EveryEqualWayIsOne) {
  const std::string one = "10.0.0.1 10 10.0.0.2 5 10.0.0.3 arrives; ";
  EXPECT_EQ(ways(small_network(), "10.0.0.1", "10.4.0.1/32"), one + one + one);
  EXPECT_EQ(ways(small_network(), "10.0.0.1", "10.4.0.1/32", 2), one + one + "and more");
  EXPECT_EQ(ways(small_network(), "10.0.0.3", "10.4.0.1/32"), "10.0.0.3 arrives; ");
  EXPECT_EQ(ways(small_network(), "10.0.0.3", "10.77.0.1/32"), "10.0.0.3 no-route; ");
}

TEST(Paths, ExternalsEndWhereTheyAreAnnouncedOrAtTheirForwardingAddress) {
  Database database = small_network();
  database.areas[0].routers[1].boundary = true;
  database.externals = {external("10.0.0.2", "192.0.2.0/24", 20, true)};
  EXPECT_EQ(ways(database, "10.0.0.3", "192.0.2.1/32"), "10.0.0.3 5 10.0.0.2 leaves; ");
  database.externals[0].forwarding = parse_address("10.4.0.77", Family::ipv4);
  EXPECT_EQ(ways(database, "10.0.0.1", "192.0.2.1/32", 1), "10.0.0.1 10 10.0.0.2 leaves; and more");
  EXPECT_EQ(ways(database, "10.0.0.3", "192.0.2.1/32"), "10.0.0.3 forwards 10.4.0.77; ");
}

TEST(Loads, EqualWaysShareWhatTheyCarry) {
  std::string text;
  for (const LinkLoad &load : link_loads(Calculator(small_network()))) {
    char line[96];
    std::snprintf(line, sizeof line, "%s to %s %.3f; ", dotted(load.from).c_str(),
                  dotted(load.network != 0 ? load.network : load.to).c_str(), load.carried);
    text += line;
  }
  // Of three equal ways one is a network, two are links side by side.
  EXPECT_EQ(text,
            "10.0.0.1 to 10.1.0.2 0.667; 10.0.0.1 to 10.0.0.2 1.333; 10.0.0.2 to 10.1.0.2 0.667; "
            "10.0.0.2 to 10.0.0.1 1.333; 10.0.0.2 to 10.0.0.3 2.000; 10.0.0.3 to 10.0.0.2 2.000; ");
}

TEST(Loads, WhatFailsIsCarriedByOthers) {
  const Calculator before(small_network());
  Database without = small_network();
  without.areas[0].networks.clear();
  const std::vector<LoadChange> added = added_loads(before, Calculator(without));
  ASSERT_EQ(added.size(), 2u);
  EXPECT_EQ(added[0].link.from, id("10.0.0.1"));
  EXPECT_EQ(added[0].link.to, id("10.0.0.2"));
  EXPECT_NEAR(added[0].before, 4.0 / 3, 1e-9);
  EXPECT_NEAR(added[0].link.carried, 2, 1e-9);
  EXPECT_EQ(added[1].link.from, id("10.0.0.2"));
}

TEST(Paths, RoutersStandForTheirLongestPrefix) {
  const Database database = small_network();
  const Calculator calculator(database);
  Paths paths(calculator);
  EXPECT_EQ(paths.prefix_of(id("10.0.0.1")), prefix("10.9.0.1/32"));
  EXPECT_EQ(paths.prefix_of(id("10.0.0.3")), prefix("10.4.0.0/24"));
  EXPECT_EQ(paths.prefix_of(id("10.0.0.2")), std::nullopt);
  EXPECT_EQ(paths.routers_on(prefix("10.1.0.7/32")),
            (std::vector<RouterId>{id("10.0.0.1"), id("10.0.0.2")}));
}

TEST(Paths, AWayBackByOthersIsToldFromTheSameOne) {
  // From the second to the third router it is nearer over the first; back it is not.
  Database database =
      changed(small_network(), {parse_change(Change::Kind::with_link, "10.0.0.1--10.0.0.3=1"),
                                parse_change(Change::Kind::cost, "10.0.0.2>10.0.0.3=50")});
  database.areas[0].routers[1].links.push_back(stub("10.8.0.2/32", 0));
  EXPECT_EQ(ways(database, "10.0.0.3", "10.8.0.2/32"), "10.0.0.3 5 10.0.0.2 arrives; ");
  const Calculator calculator(database);
  Paths paths(calculator);
  bool more = false;
  const auto there = paths.between(id("10.0.0.2"), prefix("10.4.0.1/32"), 64, &more);
  EXPECT_EQ(there.at(0).routers(),
            (std::vector<RouterId>{id("10.0.0.2"), id("10.0.0.1"), id("10.0.0.3")}));
  const auto back = paths.between(id("10.0.0.3"), prefix("10.8.0.2/32"), 64, &more);
  EXPECT_FALSE(are_symmetric(there, back));
  const auto one = paths.between(id("10.0.0.1"), prefix("10.4.0.1/32"), 64, &more);
  const auto two = paths.between(id("10.0.0.3"), prefix("10.9.0.1/32"), 64, &more);
  EXPECT_TRUE(are_symmetric(one, two));
}

}  // namespace
