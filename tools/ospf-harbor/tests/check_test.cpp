// `check` as a user runs it, on recorded networks: each kind of finding where a network has it, and
// nothing to warn of where the routers were well.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

#include "ospf_findings/finding.hpp"
#include "recording_test.hpp"

namespace {

using nlohmann::ordered_json;

class Check : public tool_tests::RecordingTest {
 protected:
  std::vector<ordered_json> found(const std::string &options, const std::string &source) {
    return lines(ask("check --json " + options, source).out);
  }
};

// Severity, kind, field (of a mismatch), version, and a part of where or what it says.
struct Expected {
  const char *severity;
  const char *kind;
  const char *field;
  int version;
  const char *part;
};

bool is(const ordered_json &finding, const Expected &expected) {
  const auto text = [&](const char *key) {
    return finding[key].is_null() ? std::string() : finding[key].get<std::string>();
  };
  return finding["severity"] == expected.severity && finding["kind"] == expected.kind &&
         text("field") == expected.field && finding["version"] == expected.version &&
         (text("where") + "|" + text("what")).find(expected.part) != std::string::npos;
}

void expect_all(const std::vector<ordered_json> &found, const std::vector<Expected> &expected) {
  for (const Expected &each : expected) {
    EXPECT_TRUE(std::any_of(found.begin(), found.end(),
                            [&](const ordered_json &finding) { return is(finding, each); }))
        << each.kind << " " << each.field << " " << each.part;
  }
}

TEST_F(Check, NeighboursThatDifferAreToldWithWhatTheyDifferIn) {
  const auto all = found("", capture_of("mismatch"));
  expect_all(
      all,
      {
          {"error", "interface_mismatch", "hello_interval", 2,
           "2 s at 10.245.0.1@10.98.2.1, 3 s at"},
          {"error", "interface_mismatch", "dead_interval", 2,
           "8 s at 10.245.0.1@10.98.3.1, 12 s at"},
          {"error", "interface_mismatch", "network_mask", 2, "255.255.255.128 at 10.245.0.4@"},
          {"error", "interface_mismatch", "mtu", 2, "1400 at 10.245.0.5@10.98.5.2"},
          {"error", "interface_mismatch", "area", 2, "0.0.0.6 at 10.245.0.6@10.98.6.2"},
          {"error", "interface_mismatch", "area_type", 2, "stub area at 10.245.0.7@10.98.7.2"},
          {"error", "interface_mismatch", "authentication", 2, "none at 10.245.0.8@10.98.8.2"},
          {"warning", "interface_mismatch", "authentication_key", 2, "10.245.0.9@10.98.9.2"},
          {"error", "interface_mismatch", "network_type", 2, "10.245.0.12@10.98.12.2"},
          {"error", "interface_mismatch", "network_type", 3, "elects none at 10.245.0.1@fe80"},
          {"error", "interface_mismatch", "hello_interval", 3, "3 s at 10.245.0.2@fe80"},
          {"error", "interface_mismatch", "dead_interval", 3, "12 s at 10.245.0.3@fe80"},
          {"error", "interface_mismatch", "mtu", 3, "1400 at 10.245.0.5@fe80"},
          {"error", "interface_mismatch", "area", 3, "0.0.0.6 at 10.245.0.6@fe80"},
          {"error", "interface_mismatch", "area_type", 3, "stub area at 10.245.0.7@fe80"},
          {"error", "interface_mismatch", "authentication", 3, "none at 10.245.0.8@fe80"},
          {"warning", "interface_mismatch", "authentication_key", 3, "10.245.0.9@fe80"},
          {"error", "duplicate_router_id", "router_id", 3, "802|both have 10.245.0.1"},
          {"error", "duplicate_router_id", "router_id", 2, "10.245.0.1@10.98.10.2"},
          {"error", "duplicate_address", "address", 2, "both have 10.98.11.1"},
          {"warning", "hello_one_way", "one_way", 2, "10.245.0.13@10.98.13.2 hears 10.245.0.1@"},
          {"warning", "hello_one_way", "one_way", 3, "10.245.0.13@fe80"},
          {"warning", "one_way_link", "", 2, "10.245.0.13 > 10.245.0.1"},
          {"warning", "one_way_link", "", 3, "10.245.0.13 > 10.245.0.1"},
          {"warning", "one_way_link", "", 2, "the network-LSA of 10.245.0.12 lists 10.245.0.1"},
      });
  // Nothing of the links that are right at the end.
  for (const ordered_json &finding : all) {
    for (const char *right : {"10.98.14.", "10.98.15.", "10.98.16."}) {
      EXPECT_EQ(finding.dump().find(right), std::string::npos) << finding;
    }
  }
}

// Those that each end says of itself, where no packet was heard.
const std::vector<Expected> told_by_routers = {
    {"error", "interface_mismatch", "hello_interval", 2, "3 s at 10.245.0.2@10.98.2.2"},
    {"error", "interface_mismatch", "dead_interval", 2, "12 s at 10.245.0.3@10.98.3.2"},
    {"error", "interface_mismatch", "network_mask", 2, "/25 at 10.245.0.4@10.98.4.2"},
    {"error", "interface_mismatch", "mtu", 2, "1400 at 10.245.0.5@10.98.5.2"},
    {"error", "interface_mismatch", "area", 2, "0.0.0.6 at 10.245.0.6@10.98.6.2"},
    {"error", "interface_mismatch", "area_type", 2, "takes none at 10.245.0.7@10.98.7.2"},
    {"error", "interface_mismatch", "authentication", 2, "MD5 at 10.245.0.1@10.98.8.1, none"},
    {"error", "duplicate_router_id", "router_id", 2, "10.245.0.1@10.98.10.2"},
    {"error", "duplicate_router_id", "", 2, "r1 and r10 have this router ID"},
    {"error", "duplicate_address", "address", 2, "both have 10.98.11.1"},
    {"error", "interface_mismatch", "network_type", 2, "10.245.0.12@10.98.12.2"},
    {"warning", "hello_one_way", "one_way", 2, "10.245.0.13@10.98.13.2 hears 10.245.0.1@"},
    {"error", "interface_mismatch", "hello_interval", 3, "3 s at 10.245.0.2@fe80"},
    {"error", "interface_mismatch", "dead_interval", 3, "12 s at 10.245.0.3@fe80"},
    {"error", "interface_mismatch", "mtu", 3, "1400 at 10.245.0.5@fe80"},
    {"error", "interface_mismatch", "area", 3, "0.0.0.6 at 10.245.0.6@fe80"},
    {"error", "interface_mismatch", "area_type", 3, "takes none at 10.245.0.7@fe80"},
    {"error", "interface_mismatch", "authentication", 3, "key at 10.245.0.1@fe80"},
    {"error", "interface_mismatch", "network_type", 3, "10.245.0.12@fe80"},
    {"warning", "hello_one_way", "one_way", 3, "10.245.0.13@fe80"},
};

TEST_F(Check, WhatRoutersSayOfThemselvesIsComparedToo) {
  const auto all = found("", recording("mismatch") + "/routers");
  expect_all(all, told_by_routers);
  // Each once, and nothing of the links that are right at the end.
  std::size_t between = 0;
  for (const ordered_json &finding : all) {
    between += finding["field"].is_null() ? 0 : 1;
    for (const char *right : {"10.98.9.", "10.98.14.", "10.98.15.", "10.98.16."}) {
      EXPECT_EQ(finding.dump().find(right), std::string::npos) << finding;
    }
  }
  EXPECT_EQ(between, told_by_routers.size() - 1);  // all but that of the two folders
}

// Neither a tree nor a store has the MTU; of a capture they have who faces whom in OSPFv2.
TEST_F(Check, TreesAndStoresAreComparedAsFarAsTheyGo) {
  const auto of_hellos = [](const std::vector<ordered_json> &all) {
    std::set<std::string> fields;
    for (const ordered_json &finding : all) {
      if (finding["field"].is_null()) continue;
      fields.insert(finding["field"].get<std::string>() + finding["version"].dump());
    }
    return fields;
  };
  const std::set<std::string> of_capture = {"hello_interval2", "dead_interval2", "area2",
                                            "network_type2",   "network_type3",  "router_id2",
                                            "address2",        "one_way2",       "one_way3"};
  std::set<std::string> of_answers = of_capture;
  // LSAs have masks.
  of_answers.insert(
      {"hello_interval3", "dead_interval3", "network_mask2", "area3", "area_type2", "area_type3"});
  for (const auto &[source, expected] : {std::pair(capture_of("mismatch"), of_capture),
                                         {recording("mismatch") + "/routers", of_answers}}) {
    const std::string name = std::to_string(expected.size());
    ask("export --image " + file(name + ".tree") + " --xml " + file(name + ".xml"), source);
    for (const char *form : {".tree", ".xml"}) {
      EXPECT_EQ(of_hellos(found("", file(name + form))), expected) << source << form;
    }
    run({"import", "--image", file(name + ".tree"), "--store", file(name + ".store")});
    const Said said = run({"check", "--json", "--store", file(name + ".store")});
    EXPECT_EQ(of_hellos(lines(said.out)), expected) << source << said.err;
  }
}

// The records of a capture whose frames `wanted` takes.
std::string part_of(const std::string &capture, const std::function<bool(const char *)> &wanted) {
  const std::string bytes = content_of(capture);
  std::string part = bytes.substr(0, 24);
  for (std::size_t at = 24; at + 16 <= bytes.size();) {
    std::uint32_t length = 0;
    std::memcpy(&length, bytes.data() + at + 8, sizeof length);
    if (wanted(bytes.data() + at + 16)) part += bytes.substr(at, 16 + length);
    at += 16 + length;
  }
  return part;
}

// Without OSPFv2 on the same ports only that one link was captured shows who faces whom.
TEST_F(Check, ACaptureOfOneLinkShowsWhoFacesWhomInOspfv3) {
  const auto of_link = [&](int number) {
    const std::string name = "link" + std::to_string(number) + ".pcap";
    put(name, part_of(capture_of("mismatch"), [&](const char *frame) {
          return frame[10] == number && frame[12] == '\x86' && frame[13] == '\xdd';
        }));
    return found("", file(name));
  };
  expect_all(of_link(0), {{"error", "interface_mismatch", "hello_interval", 3, "10.245.0.2@fe80"}});
  expect_all(of_link(1), {{"error", "interface_mismatch", "dead_interval", 3, "10.245.0.3@fe80"}});
  expect_all(of_link(4), {{"error", "interface_mismatch", "area", 3, "10.245.0.6@fe80"}});
  expect_all(of_link(5), {{"error", "interface_mismatch", "area_type", 3, "10.245.0.7@fe80"}});
  for (const ordered_json &finding : of_link(14)) {  // they are neighbours
    EXPECT_TRUE(finding["field"].is_null()) << finding;
  }
  // Of all links together nothing shows it.
  put("all.pcap", part_of(capture_of("mismatch"), [](const char *frame) {
        return frame[12] == '\x86' && frame[13] == '\xdd';
      }));
  for (const ordered_json &finding : found("", file("all.pcap"))) {
    EXPECT_NE(finding["field"], "hello_interval") << finding;
  }
}

TEST_F(Check, EndsOfALinkThatAreAloneEachInItsInstanceAreTold) {
  for (const std::string &source : {capture_of("strangers"), recording("strangers") + "/routers"}) {
    const auto strangers = found("", source);
    ASSERT_EQ(strangers.size(), 1u) << source;
    expect_all(strangers, {{"warning", "interface_mismatch", "instance_id", 3,
                            "0 at 10.241.0.1@fe80::ff:fe01:1, 1 at 10.241.0.2@fe80::ff:fe01:2"}});
  }
  // Instances that share a link and have neighbours each.
  for (const ordered_json &finding : found("", recording("instances") + "/routers")) {
    EXPECT_EQ(finding["kind"], "incomplete_database") << finding;
  }
}

// Which recording, or a part of it, shows a kind.
TEST_F(Check, EachKindIsInARecording) {
  const std::map<std::string, std::string> shown = {
      {"one_way_link", "mismatch/all.pcap"},
      {"interface_mismatch", "mismatch/all.pcap"},
      {"hello_one_way", "mismatch/all.pcap"},
      {"duplicate_router_id", "sameid/all.pcap"},
      {"duplicate_address", "mismatch/all.pcap"},
      {"databases_differ", "domain/routers"},
      {"virtual_link_without_transit", "parting/all.pcap --at 1795360194"},
      {"split_area", "domain/all.pcap"},
      {"area_without_backbone", "domain/all.pcap"},
      {"unreachable_forwarding_address", "domain/all.pcap"},
      {"equal_externals", "domain/all.pcap"},
      {"unused_range", "domain/routers"},
      {"overlapping_ranges", "domain/all.pcap"},
      {"flapping_lsa", "domain/all.pcap"},
      {"sequence_near_end", "forged/all.pcap --at 05:27:00"},
      {"wrong_checksum", "forged/all.pcap"},
      {"max_age_storm", "domain/all.pcap"},
      {"incomplete_database", "dr-change/late.pcap"}};
  std::map<std::string, std::set<std::string>> kinds;  // by source
  for (std::size_t at = 0; at < ospf_findings::kind_count; ++at) {
    const std::string kind = ospf_findings::name_of(static_cast<ospf_findings::Kind>(at));
    ASSERT_TRUE(shown.contains(kind)) << kind;
    const std::string &source = shown.at(kind);
    if (!kinds.contains(source)) {
      std::istringstream in("check --json --from " + places::recordings() + "/" + source);
      const Said said = run({std::istream_iterator<std::string>(in), {}});
      for (const ordered_json &finding : lines(said.out)) kinds[source].insert(finding["kind"]);
    }
    EXPECT_TRUE(kinds[source].contains(kind)) << kind << " in " << source;
  }
}

TEST_F(Check, ARouterIdThatTwoDistantRoutersHaveIsTold) {
  expect_all(found("", recording("sameid") + "/routers"),
             {{"error", "duplicate_router_id", "", 2, "10.243.0.14|r1 and r4 have this router ID"},
              {"error", "duplicate_router_id", "", 3, "|r1 and r4 have this router ID"}});
  expect_all(found("", capture_of("sameid")),
             {{"error", "duplicate_router_id", "", 2, "10.243.0.14|"},
              {"error", "duplicate_router_id", "router_id", 3, "both have 10.243.0.14"}});
}

TEST_F(Check, AreasExternalsRangesAndFlapsAreTold) {
  const auto heard = found("", capture_of("domain"));
  expect_all(
      heard,
      {
          {"error", "split_area", "", 2, "10.244.0.1, 10.244.0.6; 10.244.0.3, 10.244.0.7"},
          {"error", "split_area", "", 3, "area 0.0.0.7"},
          {"error", "area_without_backbone", "", 2, "area 0.0.0.8"},
          {"warning", "unreachable_forwarding_address", "", 2, "198.51.100.0/24"},
          {"warning", "flapping_lsa", "", 2, "Router 10.244.0.10 of 10.244.0.10 in area 0.0.0.5"},
          {"notice", "equal_externals", "", 2, "203.0.113.0/24"},
          {"notice", "overlapping_ranges", "", 2, "10.45.128.0/17 within it"},
          {"notice", "max_age_storm", "", 2, "16 LSAs of 3 routers"},
      });
  const auto told = found("--v2", recording("domain") + "/routers");
  expect_all(
      told,
      {
          {"notice", "databases_differ", "", 2, " lacks it, "},
          {"notice", "unused_range", "", 2, "10.99.0.0/16"},
          {"notice", "overlapping_ranges", "", 2, "10.244.0.2 is told to summarise 10.45.128.0/17"},
          {"warning", "virtual_link_without_transit", "", 2, "10.244.0.1 - 10.244.0.6"},
          {"warning", "virtual_link_without_transit", "", 2, "the area has no such router"},
      });
}

// What routers of stub areas and NSSAs keep to themselves is neither lacking elsewhere nor another
// source of a prefix.
TEST_F(Check, ExternalsThatAreSentToNobodyAreNoFinding) {
  const auto kinds = [&](const std::string &source) {
    std::multiset<std::string> all;
    for (const ordered_json &finding : found("", source)) {
      const std::string area = finding["area"].is_null() ? "" : finding["area"].get<std::string>();
      all.insert(finding["kind"].get<std::string>() + finding["version"].dump() + area);
    }
    return all;
  };
  EXPECT_EQ(kinds(recording("transit") + "/routers"), std::multiset<std::string>());
  EXPECT_EQ(kinds(recording("nssa") + "/routers"),
            (std::multiset<std::string>{"databases_differ2", "equal_externals20.0.0.1",
                                        "equal_externals30.0.0.1"}));
}

TEST_F(Check, AVirtualLinkWithoutATransitAreaIsTold) {
  // The transit area fails, and its ends have not calculated since.
  expect_all(found("--v2 --at 1795360194", capture_of("parting")),
             {{"error", "virtual_link_without_transit", "", 2, "10.238.0.2 - 10.238.0.4"}});
  // r2's way to r4 through the transit area goes by r3 or r5.
  expect_all(found("--v2 --without-router 10.252.0.3 --without 10.252.0.2--10.252.0.4",
                   capture_of("virtual")),
             {{"error", "virtual_link_without_transit", "", 2, "10.252.0.2 - 10.252.0.5"},
              {"error", "split_area", "", 2, "area 0.0.0.1"}});
}

TEST_F(Check, WrongChecksumsAndTheLastSequenceNumbersAreTold) {
  const std::string capture = capture_of("forged");
  const auto all = found("", capture);
  expect_all(all, {{"warning", "wrong_checksum", "", 2, "1 LSA with a wrong checksum"},
                   {"warning", "wrong_checksum", "", 2, "1 packet with a wrong checksum"}});
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all[0]["packets"].dump() + all[1]["packets"].dump(),
            "[{\"file\":\"" + capture + "\",\"packet\":191}]" + "[{\"file\":\"" + capture +
                "\",\"packet\":192}]");
  expect_all(found("--at 05:27:00", capture),
             {{"warning", "sequence_near_end", "", 2, "1 number is left"}});
}

TEST_F(Check, NothingIsToWarnOfWhereAllIsWell) {
  for (const char *name : {"bird-frr", "campus", "dr-change", "instances", "nbma", "nssa",
                           "refresh", "sr", "transit", "virtual"}) {
    const Said said = ask("check --least warning", capture_of(name));
    EXPECT_EQ(said.status, 0) << name;
    EXPECT_EQ(said.out.rfind("0 errors, 0 warnings, ", 0), 0u) << name << ": " << said.out;
    // r2 of dr-change holds LSAs that all others have flushed.
    if (std::string(name) == "dr-change") continue;
    const Said routers = ask("check --least warning", recording(name) + "/routers");
    EXPECT_EQ(routers.out.rfind("0 errors, 0 warnings, ", 0), 0u) << name << ": " << routers.out;
  }
}

TEST_F(Check, TheStatusFollowsTheWorst) {
  const std::string capture = capture_of("nssa");
  EXPECT_EQ(ask("check", capture).status, 0);
  EXPECT_EQ(ask("check --fail-on notice", capture).status, 1);
  EXPECT_EQ(ask("check --fail-on error", capture_of("domain")).status, 1);
  EXPECT_EQ(ask("check --fail-on error --v3", capture_of("sameid")).status, 1);
  // 1 is an answer: what cannot be read, or only in part, has 2, with what was found all the same.
  EXPECT_EQ(ask("check", "no.pcap").status, 2);
  const Said cut =
      ask("check --least error --fail-on notice", recording("dr-change") + "/cut.pcap");
  EXPECT_EQ(cut.status, 2) << cut.err;
  EXPECT_NE(cut.out.find(" notices\n"), std::string::npos) << cut.out;
  const Said wrong = ask("check --fail-on never", capture);
  EXPECT_EQ(wrong.status, 2);
  EXPECT_NE(wrong.err.find("notice, warning or error"), std::string::npos) << wrong.err;
}

TEST_F(Check, AFindingIsOneLineOfJson) {
  const auto all = found("--v2 --least error", capture_of("sameid"));
  ASSERT_EQ(all.size(), 1u);
  std::string keys;
  for (const auto &[key, value] : all[0].items()) keys += key + " ";
  EXPECT_EQ(keys,
            "severity kind version instance area routers router_names where field what lsas "
            "packets look_at ");
  EXPECT_EQ(all[0]["routers"], ordered_json({"10.243.0.14"}));
  EXPECT_EQ(all[0]["lsas"], ordered_json({"Router 10.243.0.14 of 10.243.0.14 in area 0.0.0.0"}));
}

TEST_F(Check, WhatIfLooksAtTheNetworkThatWouldBe) {
  const std::string capture = capture_of("virtual");
  const auto all = found("--v2 --without 10.252.0.1--10.252.0.2", capture);
  expect_all(all, {{"error", "split_area", "", 2, "area 0.0.0.0"}});
  EXPECT_EQ(ask("check --v2 --without 10.252.0.1--10.252.0.9", capture).status, 2);
}

TEST_F(Check, TheTextFitsATerminalAndNamesWhatShowsIt) {
  const Said said = ask("check --v2", capture_of("domain"));
  EXPECT_EQ(said.status, 1);
  std::istringstream in(said.out);
  for (std::string line; std::getline(in, line);) EXPECT_LE(line.size(), 80u) << line;
  EXPECT_NE(said.out.find(R"(error: area_without_backbone (OSPFv2, area 0.0.0.8)
  where    area 0.0.0.8
  what     none of its routers (10.244.0.7, 10.244.0.8) is in the backbone
  seen in  Router 10.244.0.7 of 10.244.0.7 in area 0.0.0.8; Router 10.244.0.8 of
           10.244.0.8 in area 0.0.0.8
  look at  a link or a virtual link from the area to the backbone
)"),
            std::string::npos)
      << said.out;
  EXPECT_TRUE(said.out.ends_with("\n\n2 errors, 7 warnings, 4 notices\n")) << said.out;
}

}  // namespace
