// Lists of a network: their keys, and names of routers beside IDs, a list's or those that routers
// tell.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>

#include "recording_test.hpp"

namespace {

class Lists : public tool_tests::RecordingTest {};

TEST_F(Lists, OfWhatACaptureGaveHaveItsSourcesAndInstances) {
  const std::string file = recording("dr-change") + "/cut.pcap";
  const Said said = run({"load", "capture", "--json", file});
  EXPECT_EQ(said.status, 1);
  const std::vector<ordered_json> all = lines(said.out);
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[0]["name"], file);
  EXPECT_EQ(all[0]["ospf_packets"], 634);
  EXPECT_EQ(all[0]["errors"].dump(), R"([{"kind":"cut_frame","count":11,"first_packet":76}])");
  EXPECT_EQ(all[1]["interfaces"], 12);
  EXPECT_EQ(all[2]["version"], 3);
}

class Names : public tool_tests::RecordingTest {};

TEST_F(Names, AreTheUsersElseTheRoutersOwn) {
  const std::string list = (folder_ / "names").string();
  std::ofstream(list) << "# the core\n\n10.247.0.1 core1 # first\n10.9.9.9\telsewhere\n";
  const std::string routers = recording("sr") + "/routers";
  std::map<std::string, std::string> names;
  for (const auto &line : lines(ask("routers --json --names " + list, routers).out)) {
    names[line["router"]] = line["router_name"];
  }
  EXPECT_EQ(names, (std::map<std::string, std::string>{{"10.247.0.1", "core1"},
                                                       {"10.247.0.2", "r2"},
                                                       {"10.247.0.3", "r3"},
                                                       {"10.247.0.4", "r4"}}));
  // Packets of these routers tell no names, the list does.
  const Said table = ask("lsdb --type router --names " + list, capture_of("sr"));
  EXPECT_NE(table.out.find("  10.247.0.1 core1        "), std::string::npos) << table.out;
  EXPECT_EQ(table.out.find("r2"), std::string::npos) << table.out;
  const Said detail = ask("lsdb --detail --type network --names " + list, capture_of("sr"));
  EXPECT_NE(detail.out.find("advertised by 10.247.0.1 core1\n"), std::string::npos) << detail.out;
  EXPECT_NE(detail.out.find("attached router 10.247.0.1 core1\n"), std::string::npos) << detail.out;
  for (const auto &lsa : lines(ask("lsdb --json --type network", routers).out)) {
    EXPECT_EQ(lsa["adv_router_name"], "r1");
  }
}

TEST_F(Names, ComeFromEachAnswerThatTellsThem) {
  const std::pair<const char *, const char *> answers[] = {
      {"running-config.txt", "frr version 8\n!\nhostname edge1\n hostname no\n"},
      {"bird.conf", "router id 1.1.1.1;\nhostname \"edge1\";\n"},
      {"status.txt", "BIRD 2.0.12\nRouter ID is 10.0.0.1\nHostname is edge1\n"}};
  for (const auto &[file, content] : answers) {
    const auto folder = folder_ / file;
    std::filesystem::copy(recording("sr") + "/routers/r1", folder);
    std::filesystem::remove(folder / "frr.conf");
    std::ofstream(folder / file) << content;
    std::map<std::string, ordered_json> names;
    for (const auto &line : lines(ask("routers --json", folder.string()).out)) {
      names[line["router"]] = line["router_name"];
    }
    EXPECT_EQ(names["10.247.0.1"], "edge1") << file;
    EXPECT_TRUE(names["10.247.0.2"].is_null()) << file;
  }
}

// Each command, what is in its text with names and what is in its first line of JSON.
TEST_F(Names, StandBesideTheRouterIdsOfEveryView) {
  const std::string list = (folder_ / "names").string();
  std::ofstream(list) << "10.245.0.1 core1\n10.245.0.13 edge13\n10.247.0.2 second\n";
  const struct {
    const char *command;
    std::string source;
    std::vector<std::string> text;
    std::map<std::string, ordered_json> json;
  } views[] = {
      {"routes --router 10.247.0.1",
       recording("sr") + "/routers",
       {"routes of router 10.247.0.1 r1\n"},
       {{"router_name", "r1"}}},
      {"routes --router 10.247.0.1 --without-router 10.247.0.2",
       recording("sr") + "/routers",
       {"routes of router 10.247.0.1 r1 that change\n", "\n  10.247.0.2 second     7   7\n"},
       {{"router_name", "r1"}}},
      {"path 10.247.0.1 10.247.0.2",
       recording("sr") + "/routers",
       {"from 10.247.0.1 r1 to 10.247.0.2/32", "\n  10.247.0.1 r1      by ",
        "\n  10.247.0.2 second  has it\n"},
       {{"first_name", "r1"}, {"last_name", "second"}}},
      {"failures --v2",
       recording("sr") + "/routers",
       {"  10.247.0.1 r1 on network 10.95.0.1  ", "  10.247.0.2 second -- 10.247.0.4 r4  ",
        "10.247.0.1 r1\n"},
       {{"from_name", "r1"}, {"to_name", nullptr}, {"isolated_names", {"r1"}}}},
      {"check",
       capture_of("mismatch"),
       {"10.245.0.1 core1@10.98.2.1 - 10.245.0.2@10.98.2.2", "2 s at 10.245.0.1 core1@10.98.2.1"},
       {{"routers", {"10.245.0.1", "10.245.0.2"}}, {"router_names", {"core1", nullptr}}}},
      {"events --kind neighbor_down,lsa_new",
       capture_of("mismatch"),
       {"Router 10.245.0.1 of 10.245.0.1 core1, 0x",
        "10.245.0.1 core1@10.98.13.1 - 10.245.0.13 edge13@10.98.13.2: one_way: 10.245.0.1 core1 no "
        "longer hears 10.245.0.13 edge13, nor"},
       {{"router_names", {"core1"}}}},
      {"show instance/ipv4,10.247.0.1",
       recording("sr") + "/routers/r1",
       {"instance/ipv4,10.247.0.1 r1\n", "/lan/neighbor/10.247.0.2 second\n",
        "/lsas/10/lsa/1.0.0.1,10.247.0.2 second\n", "/interface/lan\n", "/area/0.0.0.0\n"},
       {{"router_id", "10.247.0.1"}, {"router_name", "r1"}}},
      {"show neighbor",
       recording("sr") + "/routers/r1",
       {"neighbor/10.247.0.2 second\n"},
       {{"neighbor_id", "10.247.0.2"}, {"neighbor_name", "second"}}},
  };
  for (const auto &view : views) {
    const std::string command = view.command + (" --names " + list);
    const Said said = ask(command, view.source);
    for (const std::string &part : view.text) {
      EXPECT_NE(said.out.find(part), std::string::npos) << command << ": " << part << "\n"
                                                        << said.out;
    }
    const std::vector<ordered_json> all = lines(ask(command + " --json", view.source).out);
    ASSERT_FALSE(all.empty()) << command;
    for (const auto &[key, value] : view.json) {
      EXPECT_EQ(all[0].value(key, ordered_json("absent")), value) << command << ": " << key;
    }
  }
}

TEST_F(Names, StandBesideWhatDiffers) {
  const std::string list = (folder_ / "names").string();
  std::ofstream(list) << "10.254.0.4 border4\n10.254.0.5 core5\n";
  std::vector<std::string> words = {
      "diff",     capture_of("transit"), "--v2",    "--at", "1795359763", "--at", "1795359772",
      "--router", "10.254.0.4",          "--names", list};
  const Said said = run(words);
  EXPECT_EQ(said.status, 1) << said.err;
  for (const char *part :
       {"Router 10.254.0.5 of 10.254.0.5 core5 (v2", "10.254.0.2 to virtual 10.254.0.4 border4, 20",
        "10.254.0.5 core5 to 10.254.0.4 border4, 10", "10.254.0.5 core5: 10.101.54.0/30",
        "routes of router 10.254.0.4 border4 that change"}) {
    EXPECT_NE(said.out.find(part), std::string::npos) << part << "\n" << said.out;
  }
  words.push_back("--json");
  std::map<std::string, ordered_json> last;
  for (const auto &line : lines(run(words).out)) {
    if (line["diff"] != "lsa" || line["adv_router"] == "10.254.0.5") last[line["diff"]] = line;
  }
  EXPECT_EQ(last["lsa"]["adv_router_name"], "core5");
  EXPECT_EQ(last["cost"]["router_name"], "core5");
  EXPECT_EQ(last["cost"]["to_name"], "border4");
  EXPECT_TRUE(last["external"]["to_name"].is_null());
  EXPECT_EQ(last["route"]["router_name"], "border4");
}

TEST_F(Names, AListThatIsNoneIsRefusedWithItsLine) {
  const std::string list = (folder_ / "names").string();
  std::ofstream(list) << "10.0.0.1 a\nrouter1 b\n";
  const Said said = ask("routers --names " + list, capture_of("sr"));
  EXPECT_EQ(said.status, 1);
  EXPECT_EQ(said.out, "");
  EXPECT_NE(said.err.find("names: line 2: found \"router1 b\", expected a router ID and a name"),
            std::string::npos)
      << said.err;
  EXPECT_EQ(ask("routers --names " + list + "-none", capture_of("sr")).status, 1);
}

}  // namespace
