// `diff` as a user runs it. That it says of two times what `events` tells between them is held by
// diff.says_what_events_tell, its text by Examples.
#include <gtest/gtest.h>

#include "recording_test.hpp"

namespace {

using nlohmann::ordered_json;

class Diff : public tool_tests::RecordingTest {
 protected:
  Said ask(const std::vector<std::string> &words) {
    std::vector<std::string> all{"diff"};
    all.insert(all.end(), words.begin(), words.end());
    return run(all);
  }
};

TEST_F(Diff, OfASourceWithItselfSaysNothing) {
  for (const char *name : {"campus", "nssa", "virtual", "instances", "nbma", "sr"}) {
    for (const char *source : {"/all.pcap", "/routers"}) {
      const std::string place = recording(name) + source;
      const Said said = ask({place, place, "--every-field"});
      EXPECT_EQ(said.status, 0) << place << ": " << said.out;
      EXPECT_EQ(said.out, "");
    }
  }
}

TEST_F(Diff, EachDifferenceIsALineOfJson) {
  const auto one_of = [](const std::vector<ordered_json> &all, const char *subject,
                         const char *change, const char *router) {
    for (const ordered_json &line : all) {
      const char *whose = line.contains("adv_router") ? "adv_router" : "router";
      if (line["diff"] == subject && line["change"] == change && line[whose] == router) return line;
    }
    ADD_FAILURE() << subject << " " << change << " " << router;
    return ordered_json(ordered_json::object());
  };
  // r1, the designated router of four, dies.
  const auto dies = lines(ask({capture_of("dr-change"), "--v2", "--at", "05:30:52", "--at",
                               "05:31:02", "--router", "10.246.0.4", "--json"})
                              .out);
  EXPECT_EQ(one_of(dies, "adjacency", "went", "10.246.0.2").dump(),
            R"({"diff":"adjacency","change":"went","version":2,"instance":0,"area":"0.0.0.0",)"
            R"("router":"10.246.0.2","router_name":null,"to":"network 10.96.0.1","to_name":null,)"
            R"("prefix":null,"before":"up","after":null})");
  EXPECT_EQ(one_of(dies, "lsa", "came", "10.246.0.2")["type_name"], "Network");
  EXPECT_EQ(one_of(dies, "route", "lost", "10.246.0.4")["prefix"], "10.246.0.1/32");
  // A cost changes, and two externals are withdrawn.
  const auto cheap = lines(
      ask({capture_of("transit"), "--v2", "--at", "1795359763", "--at", "1795359772", "--json"})
          .out);
  const ordered_json cost = one_of(cheap, "cost", "changed", "10.254.0.5");
  ASSERT_TRUE(cost.contains("before"));
  EXPECT_EQ(cost["before"], "10");
  EXPECT_EQ(cost["after"], "77");
  EXPECT_EQ(one_of(cheap, "prefix", "changed", "10.254.0.5")["prefix"], "10.101.54.0/30");
  EXPECT_EQ(one_of(cheap, "external", "went", "10.254.0.6")["prefix"], "198.51.100.16/28");
  const ordered_json lsa = one_of(cheap, "lsa", "changed", "10.254.0.5");
  ASSERT_TRUE(lsa.contains("fields") && !lsa["fields"].empty());
  EXPECT_EQ(
      lsa["fields"][0].dump(),
      R"({"field":"body.links[10.101.54.0,255.255.255.252,3].metric","before":10,"after":77})");
}

TEST_F(Diff, TroubleIsStatusTwo) {
  const std::string capture = capture_of("forged");
  EXPECT_EQ(ask({capture, file("none")}).status, 2);
  EXPECT_EQ(ask({capture, capture, "--at", "05:27:01"}).status, 2);
  EXPECT_EQ(ask({capture}).status, 2);
  const Said router = ask({capture, capture, "--router", "10.9.9.9"});
  EXPECT_EQ(router.status, 2);
  EXPECT_NE(router.err.find("the nearest are"), std::string::npos) << router.err;
  EXPECT_EQ(ask({capture, "--at", "+900", "--at", "+901"}).status, 2);
}

}  // namespace
