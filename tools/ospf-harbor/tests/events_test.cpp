// `events` as a user runs it, on recorded networks, held against what was done to them; and what a
// timeline tells of packets that no recording has.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "ospf_events/timeline.hpp"
#include "recording_test.hpp"
#include "sources/time_point.hpp"

namespace {

using nlohmann::ordered_json;

class Events : public tool_tests::RecordingTest {
 protected:
  Said ask(const std::string &line, const std::string &name) {
    return RecordingTest::ask(line, capture_of(name));
  }
  std::vector<ordered_json> told(const std::string &options, const std::string &name) {
    return lines(ask("events --json " + options, name).out);
  }
};

// The first event of a kind and reason whose routers are these, in any order.
const ordered_json *event_of(const std::vector<ordered_json> &all, const char *kind,
                             const char *why, std::vector<std::string> routers) {
  std::sort(routers.begin(), routers.end());
  for (const ordered_json &event : all) {
    auto its = event["routers"].get<std::vector<std::string>>();
    std::sort(its.begin(), its.end());
    const std::string reason = event["why"].is_null() ? "" : event["why"].get<std::string>();
    if (event["kind"] == kind && reason == why && its == routers) return &event;
  }
  return nullptr;
}

ospf_decode::Time time_of(const ordered_json &event) {
  return tool::parse_time(event["time"].get<std::string>(), 0);
}

// Between `from` and `to` seconds since 1970.
void expect_at(const ordered_json *event, double from, double to, const char *what) {
  ASSERT_NE(event, nullptr) << what;
  const double at = static_cast<double>(time_of(*event)) / 1e9;
  EXPECT_GE(at, from) << what;
  EXPECT_LE(at, to) << what;
}

TEST_F(Events, ANeighbourThatDiesIsDownAfterItsDeadIntervalAndUpWhenItIsBack) {
  const auto all = told("--kind neighbor,restart --v2 --router 10.245.0.14", "mismatch");
  const auto *down = event_of(all, "neighbor_down", "dead_timer", {"10.245.0.1", "10.245.0.14"});
  // It died at 1795325220.678 and said its last up to two seconds before; it was back at
  // 1795325234.687.
  expect_at(down, 1795325226.6, 1795325228.7, "down");
  ASSERT_NE(down, nullptr);
  EXPECT_TRUE((*down)["packet"].is_null());
  ASSERT_EQ(all.back()["kind"], "neighbor_up");
  expect_at(&all.back(), 1795325234.6, 1795325241.4, "up again");
}

TEST_F(Events, WhatARouterLeavesBehindAgesOutAnHourLater) {
  const auto all =
      told("--kind neighbor_down,lsa_aged_out,lsa_flushed --router 10.239.0.3", "ageing");
  std::multiset<std::string> ended;
  for (const ordered_json &event : all) {
    if (event["kind"] == "neighbor_down") {
      EXPECT_EQ(event["why"], "dead_timer");
      // It died at 1795359765.237, five seconds behind its last hellos.
      expect_at(&event, 1795359800.2, 1795359800.4, "down");
      continue;
    }
    EXPECT_EQ(event["kind"], "lsa_aged_out") << event;
    EXPECT_EQ(event["what"], "not refreshed for an hour");
    // The first of them was made at 1795359749.
    expect_at(&event, 1795363345.0, 1795363365.0, "aged out");
    ended.insert(event["lsa"]["type_name"].get<std::string>() + event["version"].dump());
  }
  EXPECT_EQ(ended, (std::multiset<std::string>{"AS-Ext3", "External2", "Intra-Prefix3", "Link3",
                                               "Router2", "Router3"}));
}

TEST_F(Events, ANeighbourThatIsNotHeardIsDownAtTheHelloThatTellsSo) {
  for (const char *version : {"--v2", "--v3"}) {
    const auto all = told(std::string("--kind neighbor ") + version, "mismatch");
    const auto *down = event_of(all, "neighbor_down", "one_way", {"10.245.0.1", "10.245.0.13"});
    // The hub stops to hear it at 1795325220.655; the dead interval is eight seconds.
    expect_at(down, 1795325226.6, 1795325230.7, version);
    ASSERT_NE(down, nullptr);
    EXPECT_TRUE((*down)["packet"].is_number());
  }
}

TEST_F(Events, WhatNeighboursDifferInIsToldOnce) {
  const auto all = told("--kind mismatch --v2", "mismatch");
  const std::vector<std::pair<const char *, const char *>> expected = {
      {"hello_interval", "10.245.0.2"}, {"dead_interval", "10.245.0.3"},
      {"network_mask", "10.245.0.4"},   {"mtu", "10.245.0.5"},
      {"area", "10.245.0.6"},           {"area_type", "10.245.0.7"},
      {"authentication", "10.245.0.8"}, {"authentication_key", "10.245.0.9"},
      {"address", "10.245.0.11"},       {"network_type", "10.245.0.12"},
      {"one_way", "10.245.0.13"}};
  for (const auto &[field, router] : expected) {
    EXPECT_NE(event_of(all, "mismatch", field, {"10.245.0.1", router}), nullptr) << field;
  }
  EXPECT_NE(event_of(all, "mismatch", "router_id", {"10.245.0.1", "10.245.0.1"}), nullptr);
  EXPECT_EQ(all.size(), expected.size() + 1);
}

TEST_F(Events, NeighboursOfOspfv3DifferTooThoughTheyTakeNothingFromEachOther) {
  const auto all = told("--kind mismatch --v3", "mismatch");
  const std::vector<std::pair<const char *, const char *>> expected = {
      {"hello_interval", "10.245.0.2"},
      {"dead_interval", "10.245.0.3"},
      {"mtu", "10.245.0.5"},
      {"area", "10.245.0.6"},
      {"area_type", "10.245.0.7"},
      {"authentication", "10.245.0.8"},
      {"authentication_key", "10.245.0.9"},
      {"network_type", "10.245.0.12"},
      {"one_way", "10.245.0.13"}};
  for (const auto &[field, router] : expected) {
    EXPECT_NE(event_of(all, "mismatch", field, {"10.245.0.1", router}), nullptr) << field;
  }
  EXPECT_NE(event_of(all, "mismatch", "router_id", {"10.245.0.1", "10.245.0.1"}), nullptr);
  const auto strangers = told("--kind mismatch", "strangers");
  ASSERT_EQ(strangers.size(), 1u);
  EXPECT_EQ(strangers[0]["why"], "instance_id");
  EXPECT_EQ(strangers[0]["what"], "0 and 1");
  // Before a router has an ID it says 0, which is none.
  EXPECT_TRUE(told("--kind mismatch", "domain").empty());
}

TEST_F(Events, EachKindIsInARecording) {
  const std::map<std::string, std::string> shown = {
      {"neighbor_up", "forged"},    {"neighbor_down", "forged"},
      {"mismatch", "strangers"},    {"dr_change", "instances"},
      {"lsa_new", "forged"},        {"lsa_changed", "forged"},
      {"lsa_refreshed", "refresh"}, {"lsa_flushed", "forged"},
      {"lsa_aged_out", "ageing"},   {"max_age_storm", "dr-change"},
      {"restart", "forged"},        {"graceful_restart", "forged"},
      {"sequence_wrap", "forged"},  {"retransmission", "instances"},
      {"bad_checksum", "forged"}};
  std::map<std::string, std::set<std::string>> kinds;  // by recording
  for (std::size_t at = 0; at < ospf_events::event_kind_count; ++at) {
    const std::string kind = ospf_events::name_of(static_cast<ospf_events::EventKind>(at));
    ASSERT_TRUE(shown.contains(kind)) << kind;
    const std::string &name = shown.at(kind);
    if (!kinds.contains(name)) {
      for (const ordered_json &event : told("", name)) kinds[name].insert(event["kind"]);
    }
    EXPECT_TRUE(kinds[name].contains(kind)) << kind << " in " << name;
  }
}

// Each way to go down has its reason.
TEST_F(Events, NeighboursThatComeToDifferAreDownForThat) {
  const auto all = told("--kind neighbor_down", "parting");
  for (const char *router : {"10.238.0.6", "10.238.0.7", "10.238.0.8"}) {
    for (const int version : {2, 3}) {
      std::vector<ordered_json> its;
      for (const ordered_json &event : all) {
        const bool is_its = event["routers"].dump().find(router) != std::string::npos;
        if (is_its && event["version"] == version) its.push_back(event);
      }
      ASSERT_EQ(its.size(), 1u) << router;
      EXPECT_EQ(its[0]["why"], "mismatch");
      const std::string field = router[9] == '6'   ? "hello_interval"
                                : router[9] == '7' ? "area"
                                                   : "authentication";
      EXPECT_TRUE(its[0]["what"].get<std::string>().ends_with("they differ in " + field)) << its[0];
    }
  }
}

TEST_F(Events, ANeighbourThatBeginsTheExchangeAnewIsDown) {
  const auto all = told("--kind neighbor_down --v2", "campus");
  EXPECT_TRUE(std::any_of(all.begin(), all.end(), [](const ordered_json &event) {
    return event["why"] == "exchange_again";
  }));
}

TEST_F(Events, TheNextDesignatedRouterIsToldWhenTheFirstDies) {
  const auto all = told("--kind dr_change --v2 --since 05:30:52", "dr-change");
  ASSERT_GE(all.size(), 2u);
  EXPECT_EQ(all[0]["why"], "designated");
  EXPECT_EQ(all[0]["what"], "the designated router is 10.96.0.2, was 10.96.0.1");
  expect_at(&all[0], 1795325457.8, 1795325461.0, "r2 takes over");
  EXPECT_EQ(all[1]["why"], "backup");
  EXPECT_EQ(all[1]["what"], "the backup is 10.96.0.3, was 10.96.0.2");
}

TEST_F(Events, ManyFlushesAtOnceAreAStorm) {
  const auto all = told("--kind max_age_storm --since 05:31:30", "dr-change");
  ASSERT_EQ(all.size(), 1u);
  EXPECT_NE(all[0]["what"].get<std::string>().find("42 LSAs of 3 routers flushed"),
            std::string::npos);
  expect_at(&all[0], 1795325496.8, 1795325497.2, "r3 withdraws 40 externals");
}

TEST_F(Events, RestartsWrapsAndWrongChecksumsAreTold) {
  const auto all =
      told("--kind restart,graceful_restart,sequence_wrap,bad_checksum,neighbor", "forged");
  expect_at(event_of(all, "restart", "", {"10.242.0.1"}), 1795325256.8, 1795325260.0, "killed");
  expect_at(event_of(all, "graceful_restart", "", {"10.242.0.1"}), 1795325270.4, 1795325271.5,
            "gracefully");
  const auto *wrap = event_of(all, "sequence_wrap", "", {"10.242.0.3"});
  expect_at(wrap, 1795325228.0, 1795325229.5, "wrap");
  ASSERT_NE(wrap, nullptr);
  EXPECT_EQ((*wrap)["lsa"]["lsa_id"], "192.0.2.0");
  EXPECT_EQ((*wrap)["lsa"]["seq_num"], "0x80000001");
  const auto *lsa = event_of(all, "bad_checksum", "lsa", {"10.242.0.2", "10.242.0.2"});
  ASSERT_NE(lsa, nullptr);
  EXPECT_EQ((*lsa)["packet"], 191);
  const auto *packet = event_of(all, "bad_checksum", "packet", {"10.242.0.2"});
  ASSERT_NE(packet, nullptr);
  EXPECT_EQ((*packet)["packet"], 192);
}

TEST_F(Events, LsasThatAreNotAcknowledgedAreSentAgain) {
  // Multicasts to r15 are lost from 1795325241.4 to 1795325250.5, and a cost changes.
  const auto all = told("--kind retransmission --v2 --since 05:27:22", "mismatch");
  const auto is_to_r15 = [](const ordered_json &event) {
    return event["where"].get<std::string>().find("10.245.0.1@10.98.15.1 -") == 0;
  };
  const auto first = std::find_if(all.begin(), all.end(), is_to_r15);
  ASSERT_NE(first, all.end());
  expect_at(&*first, 1795325242.0, 1795325262.0, "sent again");
}

TEST_F(Events, QuietNetworksRefreshAndDoNothingElse) {
  const auto all = told("--since 05:15:30", "refresh");
  EXPECT_EQ(all.size(), 9u);
  for (const ordered_json &event : all) EXPECT_EQ(event["kind"], "lsa_refreshed") << event;
}

TEST_F(Events, OneEventIsOneLine) {
  const Said text = ask("events --kind sequence_wrap,neighbor_down", "forged");
  EXPECT_EQ(text.status, 1);  // a checksum is wrong
  EXPECT_EQ(text.out,
            "2026-11-22\n"
            "05:27:08.651    142 v2 sequence_wrap    External 192.0.2.0 of 10.242.0.3, 0x80000001: "
            "its sequence numbers begin anew, behind the last one\n"
            "05:27:36.965    206 v2 neighbor_down    10.242.0.1@10.94.1.1 - 10.242.0.2@10.94.1.2: "
            "one_way: 10.242.0.1 no longer hears 10.242.0.2, nor anybody there\n"
            "05:27:53.655    268 v2 neighbor_down    10.242.0.1@10.94.1.1 - 10.242.0.2@10.94.1.2: "
            "exchange_again: 10.242.0.1 begins to exchange databases anew\n");
  const auto all = told("--kind sequence_wrap", "forged");
  ASSERT_EQ(all.size(), 1u);
  std::string keys;
  for (const auto &[key, value] : all[0].items()) keys += key + " ";
  EXPECT_EQ(keys,
            "time kind file packet version instance area routers router_names where why what lsa ");
}

TEST_F(Events, NothingIsToldWithTheNearestRouters) {
  const Said router = ask("events --router 10.242.0.9", "forged");
  EXPECT_EQ(router.status, 1);
  EXPECT_EQ(router.out, "");
  EXPECT_NE(
      router.err.find("ospf-harbor: events: nothing of that happened; the nearest routers are "
                      "10.242.0.3, 10.242.0.2, 10.242.0.1\n"),
      std::string::npos)
      << router.err;
  const Said kind = ask("events --kind max_age_storm --router 10.242.0.3", "forged");
  EXPECT_EQ(kind.status, 1);
  EXPECT_NE(kind.err.find("events: nothing of that happened\n"), std::string::npos) << kind.err;
}

TEST_F(Events, WhatCannotBeMeantIsRefused) {
  const auto refused = [&](const std::string &line, const char *why) {
    const Said said = ask(line, "forged");
    EXPECT_EQ(said.status, 2) << line;
    EXPECT_NE(said.err.find(why), std::string::npos) << said.err;
  };
  refused("events --kind lost", "expected one of neighbor_up, neighbor_down, ");
  refused("events --router r1", "found \"r1\"");
  refused("events --since yesterday", "found \"yesterday\"");
  refused("events --at 25:00:00", "found \"25:00:00\"");
  const Said before = ask("events --at 2026-11-21T00:00:00Z", "forged");
  EXPECT_EQ(before.status, 1);
  EXPECT_NE(before.err.find("expected a time not before the first packet, 2026-11-22T05:26"),
            std::string::npos)
      << before.err;
  const Said behind = ask("events --at +100000", "forged");
  EXPECT_EQ(behind.status, 1);
  EXPECT_NE(behind.err.find("not behind the last packet"), std::string::npos) << behind.err;
  const Said answers = run({"lsdb", "--at", "+1", "--from", places::sample() + "/r1"});
  EXPECT_EQ(answers.status, 2);
  EXPECT_NE(answers.err.find("captures, which alone tell of times"), std::string::npos)
      << answers.err;
}

TEST_F(Events, ViewsShowTheDatabasesAsTheyStoodThen) {
  // r3's external is there from 1795325191 on, its metric is 23 at 1795325230.
  const Said early = ask("lsdb --type External --json --at +0", "forged");
  EXPECT_EQ(early.status, 1);
  EXPECT_NE(early.err.find("no LSAs are loaded"), std::string::npos) << early.err;
  const Said then = ask("lsdb --type External --json --at 1795325233", "forged");
  EXPECT_EQ(ordered_json::parse(then.out)["body"]["external"][0]["metric"], 23);
  const Said clock = ask("lsdb --type External --json --at 05:27:13", "forged");
  EXPECT_EQ(clock.out, then.out);
  const Said date = ask("lsdb --type External --json --at 2026-11-22T05:27:13.000Z", "forged");
  EXPECT_EQ(date.out, then.out);
}

TEST(Timeline, AnLsaThatNobodyRefreshesAgesOut) {
  std::vector<ospf_events::Event> events;
  ospf_events::Timeline timeline([&](const ospf_events::Event &event) { events.push_back(event); });
  ospf_decode::Packet packet;
  packet.version = 2;
  packet.type = ospf_decode::PacketType::update;
  packet.router_id = 0x0a000001;
  packet.datagram.time = 1000 * ospf_decode::second;
  packet.datagram.number = 1;
  packet.datagram.source = ospf_decode::IpAddress::v4(0x0a000001);
  std::vector<std::uint8_t> octets(24);
  ospf_decode::LsaV2 lsa;
  lsa.header.age = 3590;
  lsa.header.type = ospf_decode::lsa2_router;
  lsa.header.link_state_id = lsa.header.advertising_router = 0x0a000002;
  lsa.header.sequence = 0x80000005;
  lsa.checksum_ok = true;
  lsa.raw = octets;
  timeline.on_packet(packet);
  timeline.on_lsa_v2(packet, lsa);
  timeline.finish(1009 * ospf_decode::second);
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0].kind, ospf_events::EventKind::lsa_new);
  timeline.finish(1020 * ospf_decode::second);
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[1].kind, ospf_events::EventKind::lsa_aged_out);
  EXPECT_EQ(events[1].time, 1010 * ospf_decode::second);
}

}  // namespace
