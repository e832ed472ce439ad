// Lists of a network: their keys, and names of routers beside IDs, a list's or those that routers tell.
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
