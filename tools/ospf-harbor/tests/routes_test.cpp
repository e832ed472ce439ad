// `routes`, `path` and `failures` as a user runs them: what they refuse and how, what they print.
// That the routes are right is held against routers by routes.recorded_networks.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "recording_test.hpp"

namespace {

using nlohmann::ordered_json;

class Routes : public tool_tests::RecordingTest {
 protected:
  Said ask(const std::string &line, const std::string &name) {
    return RecordingTest::ask(line, capture_of(name));
  }

  void expect_refused(const std::string &line, const std::string &name, int status,
                      const std::string &why) {
    const Said said = ask(line, name);
    EXPECT_EQ(said.status, status) << line;
    EXPECT_EQ(said.out, "") << line;
    EXPECT_NE(said.err.find(why), std::string::npos) << line << ": " << said.err;
  }
};

TEST_F(Routes, OneRouteIsOneLineOfJson) {
  const Said said = ask("routes --router 10.251.0.5 --v2 --prefix 100.64.0.0/24 --json", "nssa");
  EXPECT_EQ(said.status, 0);
  EXPECT_EQ(
      said.out,
      "{\"router\":\"10.251.0.5\",\"router_name\":null,\"version\":2,\"instance\":0,"
      "\"prefix\":\"100.64.0.0/"
      "24\",\"kind\":\"nssa-1\",\"cost\":60,\"type2_cost\":null,\"tag\":41,\"area\":\"0.0.0.1\","
      "\"next_hops\":[{\"address\":\"10.51.45.99\",\"interface\":\"10.51.45.5\"}]}\n");
}

TEST_F(Routes, PrefixesAreExactLongerOrCovering) {
  const auto count = [&](const char *prefix) {
    const std::string line = std::string("routes --router 10.251.0.5 --v2 --json --prefix ");
    return lines(ask(line + prefix, "nssa").out).size();
  };
  EXPECT_EQ(count("203.0.113.0/26"), 1u);
  EXPECT_EQ(count("203.0.113.0/24+"), 2u);
  EXPECT_EQ(count("203.0.113.1@"), 2u);
  EXPECT_EQ(count("@203.0.113.1"), 2u);
  const Said none = ask("routes --router 10.251.0.5 --v2 --prefix 203.0.113.0/25", "nssa");
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.err,
            "ospf-harbor: routes: no route to 203.0.113.0/25; near it: 0.0.0.0/0, 203.0.113.0/26, "
            "203.0.113.64/26\n");
}

TEST_F(Routes, WhatIsNotThereIsToldWithTheNearest) {
  expect_refused("routes --router 10.251.0.33", "nssa", 1,
                 "ospf-harbor: --router: found \"10.251.0.33\", expected a router with a "
                 "router-LSA; the nearest are 10.251.0.6, 10.251.0.5, 10.251.0.4\n");
  expect_refused("routes --router all --without 10.251.0.4--10.251.0.3", "nssa", 1,
                 "ospf-harbor: what if: OSPFv2: \"10.251.0.4--10.251.0.3\": there is no link "
                 "between the two; 10.251.0.4 has those to 10.251.0.1, network 10.51.45.4\n");
  expect_refused("routes --router all --instance 9", "nssa", 1,
                 "one of what is loaded: OSPFv2, OSPFv3");
  expect_refused("routes --router all --instance x", "nssa", 2, "a number from 0 to 255");
  expect_refused("routes --router r1", "nssa", 2, "a router ID such as 10.0.0.1");
}

// Every command that takes what-ifs refuses what cannot be, by the words that were said.
TEST_F(Routes, WhatIfsThatCannotBeAreRefusedByEveryCommand) {
  struct Refused {
    const char *what_if;
    int status;
    const char *why;
  };
  const Refused all[] = {
      {"--without-router 10.252.0.99", 1,
       "\"10.252.0.99\": there is no router-LSA of 10.252.0.99; the nearest are 10.252.0.8, "},
      {"--without 10.252.0.1--10.252.0.6", 1,
       "there is no link between the two; 10.252.0.1 has those to 10.252.0.2\n"},
      {"--cost 10.252.0.1>10.252.0.6=3", 1, "the first has no link to the second; "},
      {"--with 10.252.0.1--10.252.0.8=3", 1, "the two have no area in common"},
      {"--with 10.252.0.1--10.252.0.77=3", 1, "no router-LSA of 10.252.0.77; the nearest"},
      {"--cost 10.252.0.1>10.252.0.2=-3", 2,
       "\"-3\" is no cost, which is a number from 1 to 65535"},
      {"--cost 10.252.0.1>10.252.0.2=99999999999999", 2, "\"99999999999999\" is no cost"},
      {"--with 10.252.0.1--10.252.0.2=0", 2, "\"0\" is no cost"},
      {"--with 10.252.0.1--10.252.0.1=3", 2, "the two are one router"},
      {"--without r1--r2", 2, "\"r1\" is no router ID such as 10.0.0.1"},
      {"--without 10.252.0.1--10.252.0.2 --cost 10.252.0.1>10.252.0.2=3", 1,
       "\"10.252.0.1--10.252.0.2\" and \"10.252.0.1>10.252.0.2=3\": the link is gone"},
      {"--without-router 10.252.0.2 --with 10.252.0.1--10.252.0.2=3", 1, "the router is gone"},
      {"--cost 10.252.0.1>10.252.0.2=3 --cost 10.252.0.1>10.252.0.2=4", 1,
       "the cost is given twice"}};
  for (const char *command :
       {"routes --router all", "path 10.252.0.1 10.252.0.6", "graph --dot", "check", "failures"}) {
    for (const Refused &each : all) {
      // Where 1 says that something was found, whatever is refused has 2.
      const int status = std::string(command) == "check" ? 2 : each.status;
      expect_refused(std::string(command) + " --v2 " + each.what_if, "virtual", status, each.why);
    }
  }
}

TEST_F(Routes, EndsThatAreNotThereAreToldWithTheNearest) {
  expect_refused("path 203.0.113.77 10.252.0.1 --v2", "virtual", 1,
                 "ospf-harbor: FROM: found \"203.0.113.77\", expected a router ID, an address or a "
                 "prefix that routers of these databases have; the nearest are ");
  const Said to = ask("path 10.252.0.1 192.0.3.1 --v2", "virtual");
  EXPECT_EQ(to.status, 1);
  EXPECT_EQ(to.err,
            "ospf-harbor: path: no way from 10.252.0.1 to 192.0.3.1; prefixes near it: "
            "192.0.2.0/24, 198.51.100.0/24, 10.252.0.1/32\n");
  expect_refused("path r1 10.252.0.1 --v2", "virtual", 1, "found \"r1\", expected a router ID");
}

// A capture that begins when all is up: what it lacks is told, whatever is asked.
TEST_F(Routes, WhatACaptureThatBeginsLateLacksIsTold) {
  const std::string late = recording("dr-change") + "/late.pcap";
  const std::string lacks =
      "incomplete: OSPFv2: area 0.0.0.2: no router-LSA of 10.246.0.5, "
      "which that of 10.246.0.6 names";
  for (const char *command :
       {"routes --router 10.246.0.6", "path 10.246.0.6 10.96.56.0/30", "failures", "graph --dot"}) {
    const Said said = RecordingTest::ask(std::string(command) + " --v2", late);
    EXPECT_EQ(said.status, 0) << command;
    EXPECT_NE(said.err.find(lacks), std::string::npos) << command << ": " << said.err;
  }
  // What is behind the router that is missing is not guessed.
  const Said behind = RecordingTest::ask("path 10.246.0.6 10.246.0.1 --v2", late);
  EXPECT_EQ(behind.status, 1);
  EXPECT_NE(behind.err.find("incomplete: "), std::string::npos) << behind.err;
  const Said diff = run({"diff", late, late, "--v2", "--router", "10.246.0.6"});
  EXPECT_EQ(diff.status, 0);
  EXPECT_NE(diff.err.find(lacks), std::string::npos) << diff.err;
}

TEST_F(Routes, WhatIfTellsWhichRoutesChange) {
  const Said said =
      ask("routes --router 10.251.0.3 --v2 --json --without 10.251.0.4--10.251.0.1", "nssa");
  EXPECT_EQ(said.status, 0);
  const auto all = lines(said.out);
  ASSERT_FALSE(all.empty()) << said.err;
  EXPECT_EQ(all[0]["change"], "longer");
  EXPECT_EQ(all[0]["prefix"], "10.251.0.4/32");
  EXPECT_EQ(all[0]["before"]["cost"], 20);
  EXPECT_EQ(all[0]["after"]["cost"], 30);
}

TEST_F(Routes, WhatIfTellsWhichLinksCarryMore) {
  const std::string line = "routes --router 10.252.0.2 --v2 --without 10.252.0.2--10.252.0.3";
  const Said text = ask(line, "virtual");
  EXPECT_NE(
      text.out.find("OSPFv2: links that carry more shortest paths between routers of an area"),
      std::string::npos)
      << text.out;
  const auto all = lines(ask(line + " --json --loads", "virtual").out);
  const auto load = std::find_if(all.begin(), all.end(), [](const ordered_json &each) {
    return each["change"] == "load" && each["from"] == "10.252.0.2";
  });
  ASSERT_NE(load, all.end());
  // Of the two ways through the transit area one is left.
  EXPECT_EQ((*load)["network"], "10.60.24.4");
  EXPECT_GT((*load)["after"].get<double>(), (*load)["before"].get<double>());
}

TEST_F(Routes, PathsAreToldHopByHopWithTheAreasTheyEnter) {
  const Said said = ask("path 10.252.0.1 10.252.0.6 --v2", "virtual");
  EXPECT_EQ(said.status, 0);
  EXPECT_EQ(said.out.substr(0, said.out.find("\n\n") + 1),
            "OSPFv2: from 10.252.0.1 to 10.252.0.6/32, cost 40\n"
            "  10.252.0.1       by 10.60.12.1 to 10.60.12.2, cost 10, in area 0.0.0.0\n"
            "  10.252.0.2       by 10.60.23.2 to 10.60.23.3, cost 10, enters area 0.0.0.1\n"
            "  10.252.0.3       by 10.60.35.3 to 10.60.35.5, cost 10\n"
            "  10.252.0.5       by 10.60.56.5 to 10.60.56.6, cost 10, enters area 0.0.0.2\n"
            "  10.252.0.6       has it\n");
  const auto paths = lines(ask("path 10.252.0.1 10.252.0.6 --v2 --json", "virtual").out);
  ASSERT_EQ(paths.size(), 2u);
  EXPECT_EQ(paths[1]["hops"][1]["address"], "10.60.24.4");
  EXPECT_EQ(ask("path 10.252.0.1 10.9.9.9 --v2", "virtual").status, 1);
}

// The edges of a picture that are on the way, as "tail -- head", and those of a network.
std::set<std::string> thick_edges(const std::string &dot) {
  std::set<std::string> edges;
  std::istringstream in(dot);
  for (std::string line; std::getline(in, line);) {
    const std::size_t end = line.find(" [");
    if (line.find(" -- ") == line.npos || end == line.npos) continue;
    const std::size_t width = line.find("penwidth=\"") + 10;
    if (std::stod(line.substr(width)) > 5) edges.insert(line.substr(2, end - 2));
  }
  return edges;
}

TEST_F(Routes, AWayStandsOutInThePictureOfTheNetwork) {
  const Said said = ask("path 10.252.0.1 10.252.0.6 --v2 --dot", "virtual");
  EXPECT_EQ(said.status, 0) << said.err;
  // Over the two equal ways through the transit area, by links and by networks.
  const std::set<std::string> expected = {"\"router 10.252.0.1\" -- \"router 10.252.0.2\"",
                                          "\"router 10.252.0.2\" -- \"network 0.0.0.1 10.60.23.3\"",
                                          "\"router 10.252.0.2\" -- \"network 0.0.0.1 10.60.24.4\"",
                                          "\"router 10.252.0.3\" -- \"network 0.0.0.1 10.60.23.3\"",
                                          "\"router 10.252.0.3\" -- \"network 0.0.0.1 10.60.35.5\"",
                                          "\"router 10.252.0.4\" -- \"network 0.0.0.1 10.60.24.4\"",
                                          "\"router 10.252.0.4\" -- \"network 0.0.0.1 10.60.45.5\"",
                                          "\"router 10.252.0.5\" -- \"network 0.0.0.1 10.60.35.5\"",
                                          "\"router 10.252.0.5\" -- \"network 0.0.0.1 10.60.45.5\"",
                                          "\"router 10.252.0.5\" -- \"router 10.252.0.6\""};
  EXPECT_EQ(thick_edges(said.out), expected);
  const Said svg = ask("path 10.252.0.1 10.252.0.6 --v2 --svg", "virtual");
  EXPECT_EQ(svg.status, 0);
  EXPECT_NE(svg.out.find("thick: the way"), std::string::npos);
  EXPECT_EQ(ask("path 10.252.0.1 10.252.0.6 --v2 --dot --json", "virtual").status, 2);
}

TEST_F(Routes, APictureShowsTheNetworkThatWouldBe) {
  const auto edges = [&](const std::string &options) {
    std::set<std::string> all;
    std::istringstream in(ask("graph --dot --v2 " + options, "virtual").out);
    for (std::string line; std::getline(in, line);) {
      const std::size_t end = line.find(" [");
      if (line.find(" -- ") != line.npos) all.insert(line.substr(2, end - 2));
    }
    return all;
  };
  const std::set<std::string> now = edges("");
  const std::string link = "\"router 10.252.0.1\" -- \"router 10.252.0.2\"";
  ASSERT_TRUE(now.contains(link));
  std::set<std::string> expected = now;
  expected.erase(link);
  EXPECT_EQ(edges("--without 10.252.0.1--10.252.0.2"), expected);
  // A cost that is what it was changes nothing.
  EXPECT_EQ(edges("--cost 10.252.0.1>10.252.0.2=10"), now);
}

TEST_F(Routes, FailuresComeByWhatTheyCutOff) {
  const auto found = lines(ask("failures --v2 --json", "virtual").out);
  ASSERT_GT(found.size(), 9u);
  EXPECT_EQ(found[0]["failure"], "router");
  EXPECT_EQ(found[0]["from"], "10.252.0.5");
  EXPECT_EQ(found[0]["isolated"], ordered_json({"10.252.0.6", "10.252.0.8"}));
}

}  // namespace
