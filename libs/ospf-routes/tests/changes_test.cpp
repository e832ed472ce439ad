// What-ifs: how they are read, what is refused and by what name, and what they make of a database.
// That the routes afterwards are right is held against a second implementation by
// compare_random.py --changes.
#include "ospf_routes/changes.hpp"

#include <gtest/gtest.h>

#include "small_network.hpp"

namespace {

using namespace ospf_routes;
using Kind = Change::Kind;

std::string error_of(const std::function<void()> &act) {
  try {
    act();
  } catch (const ChangeError &error) {
    return error.what();
  }
  return "none";
}

std::string parse_error(Kind kind, const char *text) {
  return error_of([&] { parse_change(kind, text); });
}

TEST(Changes, AreReadAndPrintedInOneForm) {
  EXPECT_EQ(text_of(parse_change(Kind::without_link, "10.0.0.1--10.0.0.2")), "10.0.0.1--10.0.0.2");
  EXPECT_EQ(text_of(parse_change(Kind::without_router, "10.0.0.1")), "10.0.0.1");
  EXPECT_EQ(text_of(parse_change(Kind::cost, "10.0.0.1>10.0.0.2=7")), "10.0.0.1>10.0.0.2=7");
  EXPECT_EQ(text_of(parse_change(Kind::with_link, "10.0.0.1--10.0.0.2=65535")),
            "10.0.0.1--10.0.0.2=65535");
}

TEST(Changes, ThatMakeNoSenseAreRefusedByName) {
  EXPECT_EQ(parse_error(Kind::without_link, "10.0.0.1-10.0.0.2"),
            "\"10.0.0.1-10.0.0.2\" names no two routers, expected 10.0.0.1--10.0.0.2");
  EXPECT_EQ(parse_error(Kind::without_link, "10.0.0.1--10.0.0.1"),
            "\"10.0.0.1--10.0.0.1\": the two are one router");
  EXPECT_EQ(parse_error(Kind::without_router, "r1"),
            "\"r1\": \"r1\" is no router ID such as 10.0.0.1");
  EXPECT_EQ(parse_error(Kind::with_link, "10.0.0.1--10.0.0.2"),
            "\"10.0.0.1--10.0.0.2\" has no cost, expected 10.0.0.1--10.0.0.2=7");
  for (const char *cost : {"-3", "0", "65536", "99999999999999999999", "", "7x"}) {
    const std::string text = std::string("10.0.0.1>10.0.0.2=") + cost;
    EXPECT_EQ(parse_error(Kind::cost, text.c_str()),
              "\"" + text + "\": \"" + cost + "\" is no cost, which is a number from 1 to 65535");
  }
}

TEST(Changes, ThatContradictEachOtherAreRefused) {
  const Change link = parse_change(Kind::without_link, "10.0.0.1--10.0.0.2");
  const Change back = parse_change(Kind::without_link, "10.0.0.2--10.0.0.1");
  const Change gone = parse_change(Kind::without_router, "10.0.0.2");
  const Change cost = parse_change(Kind::cost, "10.0.0.2>10.0.0.1=3");
  const Change other = parse_change(Kind::cost, "10.0.0.2>10.0.0.1=4");
  const auto refused = [](std::vector<Change> changes) {
    return error_of([&] { check_changes(changes); });
  };
  EXPECT_EQ(refused({link, back}),
            "\"10.0.0.1--10.0.0.2\" and \"10.0.0.2--10.0.0.1\": the link is named twice");
  EXPECT_EQ(refused({link, cost}),
            "\"10.0.0.1--10.0.0.2\" and \"10.0.0.2>10.0.0.1=3\": the link is gone");
  EXPECT_EQ(refused({cost, gone}), "\"10.0.0.2\" and \"10.0.0.2>10.0.0.1=3\": the router is gone");
  EXPECT_EQ(refused({cost, other}),
            "\"10.0.0.2>10.0.0.1=3\" and \"10.0.0.2>10.0.0.1=4\": the cost is given twice");
  EXPECT_EQ(refused({cost, parse_change(Kind::cost, "10.0.0.1>10.0.0.2=3")}), "none");
}

TEST(Changes, OfWhatIsNotThereAreRefusedWithWhatIs) {
  const Database database = small_network();
  const auto refused = [&](Kind kind, const char *text) {
    return error_of([&] { changed(database, {parse_change(kind, text)}); });
  };
  EXPECT_EQ(refused(Kind::without_router, "10.0.0.9"),
            "\"10.0.0.9\": there is no router-LSA of 10.0.0.9; the nearest are 10.0.0.3, 10.0.0.2, "
            "10.0.0.1");
  EXPECT_EQ(refused(Kind::without_link, "10.0.0.1--10.0.0.3"),
            "\"10.0.0.1--10.0.0.3\": there is no link between the two; 10.0.0.1 has those to "
            "10.0.0.2, network 10.1.0.2");
  EXPECT_EQ(refused(Kind::cost, "10.0.0.1>10.0.0.3=3"),
            "\"10.0.0.1>10.0.0.3=3\": the first has no link to the second; 10.0.0.1 has those "
            "to 10.0.0.2, network 10.1.0.2");
}

// Of the first router to the network behind the third.
std::string way(const Database &database) {
  const RoutingTable table = Calculator(database).table(id("10.0.0.1"));
  for (const Route &route : table.routes) {
    if (route.prefix != prefix("10.4.0.0/24")) continue;
    std::string text = std::to_string(route.cost);
    for (const NextHop &hop : table.next_hops(route)) {
      text += " " + (hop.address ? text_of(*hop.address, Family::ipv4) : "-");
    }
    return text;
  }
  return "none";
}

std::string way_after(std::initializer_list<std::pair<Kind, const char *>> changes) {
  std::vector<Change> all;
  for (const auto &[kind, text] : changes) all.push_back(parse_change(kind, text));
  return way(changed(small_network(), all));
}

TEST(Changes, LinksGoPointToPointOnesFirstThenNetworksOfTwo) {
  EXPECT_EQ(way(small_network()), "16 10.1.0.2 10.2.0.2 10.2.0.6");
  EXPECT_EQ(way_after({{Kind::without_link, "10.0.0.1--10.0.0.2"}}), "16 10.1.0.2");
  Database database = small_network();
  const Change link = parse_change(Kind::without_link, "10.0.0.2--10.0.0.1");
  EXPECT_EQ(way(changed(changed(database, {link}), {link})), "none");
  database = changed(database, {link});
  database.areas[0].routers[2].links.push_back(transit("10.1.0.2", "10.1.0.3", 1));
  database.areas[0].networks[0].attached.push_back(id("10.0.0.3"));
  EXPECT_EQ(error_of([&] { changed(database, {link}); }),
            "\"10.0.0.2--10.0.0.1\": the two are on a network with others, which has no link of "
            "theirs alone");
}

TEST(Changes, CostsAndNewLinksAndLeavingRoutersCount) {
  EXPECT_EQ(way_after({{Kind::cost, "10.0.0.1>10.0.0.2=3"}}), "9 10.1.0.2 10.2.0.2 10.2.0.6");
  EXPECT_EQ(way_after({{Kind::cost, "10.0.0.2>10.0.0.1=3"}}), "16 10.1.0.2 10.2.0.2 10.2.0.6");
  EXPECT_EQ(way_after({{Kind::with_link, "10.0.0.1--10.0.0.3=2"}}), "3 -");
  EXPECT_EQ(
      way_after({{Kind::with_link, "10.0.0.1--10.0.0.3=2"}, {Kind::without_router, "10.0.0.2"}}),
      "3 -");
  EXPECT_EQ(way_after({{Kind::without_router, "10.0.0.2"}}), "none");
}

TEST(Changes, ThePrefixOfALinkGoesWithIt) {
  Database database = small_network();
  for (const int at : {1, 2}) {
    database.areas[0].routers[at].links.push_back(stub("10.3.0.0/30", 5));
  }
  const auto has = [](const Database &each) {
    for (const Route &route : Calculator(each).table(id("10.0.0.1")).routes) {
      if (route.prefix == prefix("10.3.0.0/30")) return true;
    }
    return false;
  };
  EXPECT_TRUE(has(database));
  EXPECT_FALSE(has(changed(database, {parse_change(Kind::without_link, "10.0.0.2--10.0.0.3")})));
}

TEST(Differences, SayWhatBecameOfEachRoute) {
  const Database before = small_network();
  const auto told = [&](Kind kind, const char *text) {
    const Database after = changed(before, {parse_change(kind, text)});
    const RoutingTable one = Calculator(before).table(id("10.0.0.1"));
    const RoutingTable two = Calculator(after).table(id("10.0.0.1"));
    std::string all;
    for (const RouteChange &change : differences(one, two)) {
      const Route &route = change.before != nullptr ? *change.before : *change.after;
      all +=
          std::string(name_of(change.difference)) + " " + text_of(route.prefix, Family::ipv4) + " ";
    }
    EXPECT_TRUE(differences(one, one).empty());
    EXPECT_EQ(all.empty(), same_routes(one, two));
    return all;
  };
  EXPECT_EQ(told(Kind::without_router, "10.0.0.2"), "lost 10.4.0.0/24 ");
  EXPECT_EQ(told(Kind::without_link, "10.0.0.1--10.0.0.2"), "other-way 10.4.0.0/24 ");
  EXPECT_EQ(told(Kind::cost, "10.0.0.1>10.0.0.2=12"), "longer 10.1.0.0/24 longer 10.4.0.0/24 ");
  EXPECT_EQ(told(Kind::cost, "10.0.0.2>10.0.0.3=4"), "shorter 10.4.0.0/24 ");
  EXPECT_EQ(told(Kind::cost, "10.0.0.3>10.0.0.2=4"), "");
}

}  // namespace
