// Listings of link-state databases: what is printed is held against what the routers of two
// recorded networks said of their own databases, and the forms against short goldens.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "commands/commands.hpp"
#include "ospf_tables/input_error.hpp"
#include "sources/load_frr.hpp"
#include "sources/sources.hpp"
#include "support/places.hpp"
#include "synthetic_network.hpp"
#include "views/lsa_detail.hpp"
#include "views/lsa_list.hpp"
#include "views/show.hpp"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

int run_lsdb(ospf_tables::Session &session, std::vector<std::string> words) {
  words.insert(words.begin(), "lsdb");
  return tool::run_words(session, words);
}

const fs::path recordings = places::recordings();

// A recorded network in the tables, read once for all tests.
ospf_tables::Session &recorded(const std::string &name) {
  static std::map<std::string, std::unique_ptr<ospf_tables::Session>> sessions;
  std::unique_ptr<ospf_tables::Session> &session = sessions[name];
  if (session == nullptr) {
    session = std::make_unique<ospf_tables::Session>();
    EXPECT_EQ(tool::load_sources(*session, {(recordings / name / "all.pcap").string()}), 0);
  }
  return *session;
}

std::vector<std::string> lines_of(const std::string &text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

struct Answer {
  int status;
  std::string out;
  std::string err;
};

template <typename Act>
Answer answer_of(Act act) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const int status = act();
  std::fflush(stdout);
  return {status, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

Answer lsdb(ospf_tables::Session &session, const std::vector<std::string> &words) {
  return answer_of([&] { return run_lsdb(session, words); });
}

std::vector<json> json_lines(const std::string &text) {
  std::vector<json> result;
  for (const std::string &line : lines_of(text)) result.push_back(json::parse(line));
  return result;
}

const std::map<std::string, std::string> types_by_name[] = {{{"Router", "1"},
                                                             {"Network", "2"},
                                                             {"Summary", "3"},
                                                             {"ASBR-Sum", "4"},
                                                             {"External", "5"},
                                                             {"NSSA", "7"},
                                                             {"Opaque-link", "9"},
                                                             {"Opaque-area", "a"},
                                                             {"Opaque-AS", "b"}},
                                                            {{"Router", "2001"},
                                                             {"Network", "2002"},
                                                             {"Inter-Prefix", "2003"},
                                                             {"Inter-Router", "2004"},
                                                             {"NSSA-Ext", "2007"},
                                                             {"Intra-Prefix", "2009"},
                                                             {"AS-Ext", "4005"},
                                                             {"Link", "8"}}};

std::string without_zeroes(const std::string &hexadecimal) {
  std::ostringstream text;
  text << std::hex << std::stoul(hexadecimal, nullptr, 16);
  return text.str();
}

using Database = std::map<std::string, std::set<std::string>>;  // by version and place

// The printed table, in the words of databases.txt. Links have no names in common with it, so they
// are one place.
Database printed_database(const std::string &table) {
  Database database;
  std::string version;
  std::string place;
  for (const std::string &line : lines_of(table)) {
    std::istringstream words(line);
    std::string type, id, router, age, sequence, checksum, length;
    if (line.starts_with("OSPFv") && line.find(", ") == 6) {
      version = line.substr(5, 1);
      const std::string title = line.substr(0, line.find(", ages as of "));
      EXPECT_LT(title.size(), line.size()) << line;
      place = title.ends_with("autonomous system")         ? "as"
              : title.find(", link ") != std::string::npos ? "link"
                                                           : title.substr(title.rfind(' ') + 1);
    } else if (line.starts_with("  ") && !line.starts_with("  Type")) {
      words >> type >> id >> router >> age >> sequence >> checksum >> length;
      EXPECT_EQ(sequence.size(), 10u) << line;
      EXPECT_EQ(checksum.size(), 6u) << line;
      const auto &types = types_by_name[version == "2" ? 0 : 1];
      EXPECT_TRUE(types.contains(type)) << line;
      const std::string lsa = types.at(type) + " " + id + " " + router + " " + sequence.substr(2) +
                              " " + without_zeroes(checksum);
      EXPECT_TRUE(database[version + " " + place].insert(lsa).second) << "twice: " << line;
    }
  }
  return database;
}

Database routers_databases(const fs::path &folder) {
  Database database;
  const auto read = [&](const char *file, auto act) {
    std::ifstream in(folder / file);
    EXPECT_TRUE(in.good());
    for (std::string router, version, place, lsa; in >> router >> version >> place;) {
      std::getline(in >> std::ws, lsa);
      const bool is_link = place != "as" && place.find('.') == std::string::npos;
      act(database[version + " " + (is_link ? "link" : place)], lsa);
    }
  };
  read("databases.txt", [](auto &lsas, const std::string &lsa) { lsas.insert(lsa); });
  read("unsent.txt", [](auto &lsas, const std::string &lsa) { lsas.erase(lsa); });
  return database;
}

class RecordedListing : public testing::TestWithParam<const char *> {};
INSTANTIATE_TEST_SUITE_P(Networks, RecordedListing, testing::Values("campus", "transit"),
                         [](const auto &info) { return std::string(info.param); });

TEST_P(RecordedListing, IsTheRoutersOwnFinalDatabases) {
  const Answer listing = lsdb(recorded(GetParam()), {});
  EXPECT_EQ(listing.status, 0);
  EXPECT_EQ(listing.err, "");
  const Database expected = routers_databases(recordings / GetParam());
  ASSERT_GT(expected.size(), 5u);
  EXPECT_EQ(printed_database(listing.out), expected);
}

TEST_P(RecordedListing, CountsAtTheEndAreThoseOfTheLines) {
  const std::vector<std::string> lines = lines_of(lsdb(recorded(GetParam()), {}).out);
  for (const std::string version : {"2", "3"}) {
    std::size_t count = 0;
    bool inside = false;
    std::string total;
    for (const std::string &line : lines) {
      if (line.starts_with("OSPFv")) inside = line.substr(5, 1) == version;
      if (inside && line.starts_with("  ") && !line.starts_with("  Type")) ++count;
      if (line.starts_with("OSPFv" + version + ": ")) total = line;
    }
    EXPECT_TRUE(total.starts_with("OSPFv" + version + ": " + std::to_string(count) + " LSAs ("))
        << count << " against " << total;
  }
}

TEST_P(RecordedListing, JsonHoldsTheSameLsasAndTheSameKeysInEveryLine) {
  ospf_tables::Session &session = recorded(GetParam());
  Database database;
  const std::vector<json> lines = json_lines(lsdb(session, {"--json"}).out);
  for (const json &lsa : lines) {
    std::set<std::string> keys;
    for (const auto &[key, value] : lsa.items()) keys.insert(key);
    EXPECT_EQ(keys,
              (std::set<std::string>{"kind",     "path",       "instance", "router_id",
                                     "area",     "interface",  "age_as",   "adv_router_name",
                                     "version",  "scope",      "type",     "type_name",
                                     "lsa_id",   "adv_router", "age",      "seq_num",
                                     "checksum", "length",     "options",  "decoded_completed",
                                     "body",     "raw_data"}));
    const std::string place =
        lsa["scope"] == "area" ? lsa["area"].get<std::string>() : lsa["scope"].get<std::string>();
    std::ostringstream text;
    text << std::hex << lsa["type"].get<int>() << ' ' << lsa["lsa_id"].get<std::string>() << ' '
         << lsa["adv_router"].get<std::string>() << ' '
         << lsa["seq_num"].get<std::string>().substr(2) << ' '
         << without_zeroes(lsa["checksum"].get<std::string>());
    database[std::to_string(lsa["version"].get<int>()) + " " + place].insert(text.str());
    EXPECT_EQ(lsa["raw_data"].get<std::string>().size(), 2 * lsa["length"].get<std::size_t>());
    EXPECT_TRUE(lsa["path"].get<std::string>().starts_with(
        "instance/" + lsa["instance"].get<std::string>() + "/"));
  }
  EXPECT_EQ(database, routers_databases(recordings / GetParam()));
}

TEST_P(RecordedListing, DetailHasEveryLsaWithItsHeader) {
  ospf_tables::Session &session = recorded(GetParam());
  const std::string detail = lsdb(session, {"--detail"}).out;
  const std::vector<json> all = json_lines(lsdb(session, {"--json"}).out);
  for (const json &lsa : all) {
    const std::string title = "\n  " + lsa["type_name"].get<std::string>() + " LSA " +
                              lsa["lsa_id"].get<std::string>() + ", advertised by " +
                              lsa["adv_router"].get<std::string>() + "\n";
    EXPECT_NE(detail.find(title), std::string::npos) << title;
  }
  EXPECT_EQ(detail.find("unknown"), std::string::npos);
}

// --- forms ---------------------------------------------------------------------------------------

TEST(LsdbTable, AShortListing) {
  EXPECT_EQ(lsdb(recorded("campus"), {"--area", "2", "--v2", "--type", "router"}).out,
            "OSPFv2, area 0.0.0.2, ages as of 2026-11-21T04:27:04Z\n"
            "  Type          Link-state ID    Adv. router           Age  Sequence    Checksum  "
            "Length\n"
            "  Router        10.255.0.3       10.255.0.3             31  0x80000009  0x8d1e    "
            "    48\n"
            "  Router        10.255.0.6       10.255.0.6             31  0x8000000a  0xcf27    "
            "    72\n"
            "\n"
            "OSPFv2: 2 LSAs (2 Router)\n");
}

// The body of the first LSA, without title and header.
std::string detail(const std::vector<std::string> &words) {
  std::vector<std::string> all = words;
  all.push_back("--detail");
  const std::vector<std::string> lines = lines_of(lsdb(recorded("campus"), all).out);
  std::string body;
  for (std::size_t at = 4; at < lines.size() && !lines[at].empty(); ++at) {
    body += lines[at].substr(4) + "\n";
  }
  return body;
}

TEST(LsdbDetail, OfEachTypeOfVersion2InTheWordsOfTheField) {
  EXPECT_EQ(detail({"--v2", "--area", "0", "--type", "router"}),
            "flags B; 4 links\n"
            "stub network 10.255.0.1/32, metric 0\n"
            "transit network, designated router's address 10.0.0.1, own address 10.0.0.1, metric "
            "10\n"
            "point-to-point to router 10.255.0.2, own address 10.0.12.1, metric 20\n"
            "stub network 10.0.12.0/30, metric 20\n");
  EXPECT_EQ(detail({"--v2", "--area", "0", "--type", "network"}),
            "network 10.0.0.0/24\n"
            "attached router 10.255.0.1\n"
            "attached router 10.255.0.2\n"
            "attached router 10.255.0.3\n");
  EXPECT_EQ(detail({"--v2", "--area", "0", "--type", "summary"}),
            "network 10.1.0.0/16, metric 130\n");
  EXPECT_EQ(detail({"--v2", "--area", "0", "--type", "asbr-sum"}),
            "AS boundary router 10.255.0.2, metric 100\n");
  EXPECT_EQ(detail({"--type", "external"}),
            "network 0.0.0.0/0\n"
            "metric 100 of type 1, tag 0\n");
  EXPECT_EQ(detail({"--area", "1", "--type", "opaque-area"}),
            "opaque type 1 (traffic engineering), opaque ID 2\n"
            "router address: 10.255.0.4\n"
            "link\n"
            "  link type: point-to-point\n"
            "  link ID: 10.255.0.1\n"
            "  local address: 10.1.14.2\n"
            "  remote address: 10.1.14.1\n"
            "  metric: 300\n"
            "  bandwidth: 1250000000 octets/s\n"
            "  reservable bandwidth: 1000000000 octets/s\n"
            "  unreserved bandwidth by priority: 1000000000, 1000000000, 1000000000, 1000000000, "
            "1000000000, 1000000000, 1000000000, 1000000000 octets/s\n"
            "  administrative group: 0x80000005\n");
  EXPECT_EQ(detail({"--area", "0", "--type", "opaque-area", "--adv-router", "10.255.0.2"}),
            "opaque type 4 (router information), opaque ID 0\n"
            "capabilities: traffic engineering\n");
}

TEST(LsdbDetail, OfEachTypeOfVersion3InTheWordsOfTheField) {
  EXPECT_EQ(detail({"--v3", "--area", "0", "--type", "network"}),
            "options R E V6\n"
            "attached router 10.255.0.1\n"
            "attached router 10.255.0.2\n"
            "attached router 10.255.0.3\n");
  EXPECT_EQ(detail({"--v3", "--area", "2", "--type", "router"}),
            "flags B; options R V6; 1 link\n"
            "point-to-point from interface 3 to interface 2 of router 10.255.0.6, metric 5\n");
  EXPECT_EQ(detail({"--type", "inter-prefix"}), "prefix 2001:db8:1::/48, metric 170\n");
  EXPECT_EQ(detail({"--type", "inter-router"}),
            "AS boundary router 10.255.0.2, metric 100; options R E V6\n");
  EXPECT_EQ(detail({"--type", "link", "--area", "2"}),
            "priority 1, link-local address fe80::ff:fe00:601; options R V6\n"
            "1 prefix:\n"
            "  2001:db8:2:36::/64\n");
  EXPECT_EQ(detail({"--type", "intra-prefix", "--area", "2"}),
            "refers to Router 0.0.0.0 of router 10.255.0.3\n"
            "1 prefix:\n"
            "  2001:db8:2:36::/64, metric 5\n");
  EXPECT_EQ(detail({"--type", "as-ext", "--adv-router", "10.255.0.2"}),
            "prefix ::/0\n"
            "metric 100 of type 1\n");
}

TEST(LsdbDetail, OfNssaLsas) {
  const std::string v2 = lsdb(recorded("transit"), {"--type", "nssa", "--detail"}).out;
  EXPECT_NE(v2.find("options P E\n    network 198.51.100.48/28\n"), std::string::npos) << v2;
  EXPECT_NE(v2.find("metric 60 of type 1, forwarding address 10.254.0.6, tag 63\n"),
            std::string::npos)
      << v2;
  const std::string v3 = lsdb(recorded("transit"), {"--type", "nssa-ext", "--detail"}).out;
  EXPECT_NE(v3.find("    prefix 2001:db8:"), std::string::npos) << v3;
  EXPECT_NE(v3.find(", prefix options P\n"), std::string::npos) << v3;
}

TEST(LsdbDetail, OfTopologiesWithMetricsOfTheirOwn) {
  synthetic::Network network;
  auto &router = network.router(0, "10.0.0.1", 4, {{4, "10.0.0.2", "192.0.2.1", 7}});
  router.router.metrics.push_back({32, 70});
  router.router.links[0].metric_count = 2;
  ospf_decode::LsaV2 summary;
  summary.header = {0x8000 | 12, 0, 3, synthetic::address("10.9.0.0"),
                    synthetic::address("10.0.0.1")};
  summary.summary.mask = synthetic::address("255.255.128.0");
  summary.summary.metrics = {{0, 5}, {2, 6}};
  network.add(0, summary);
  ospf_tables::Session session;
  network.load(session);
  const std::string detail = lsdb(session, {"--detail"}).out;
  EXPECT_NE(detail.find("    flags V; 1 link\n"
                        "    virtual link to router 10.0.0.2, own address 192.0.2.1, metric 7\n"
                        "      topology 32: metric 70\n"),
            std::string::npos)
      << detail;
  EXPECT_NE(detail.find("    age DNA 12, "), std::string::npos) << detail;
  EXPECT_NE(detail.find("    network 10.9.0.0/17, metric 5\n    topology 2: metric 6\n"),
            std::string::npos)
      << detail;
}

TEST(LsdbDetail, OfATypeWithoutFieldsShowsItsOctets) {
  ospf_tables::LsaView lsa;
  lsa.version = 3;
  lsa.type = 0xa00f;
  for (int octet = 0; octet < 36; ++octet) {
    lsa.raw_data.push_back(static_cast<std::uint8_t>(octet));
  }
  const std::string detail = tool::detail_of(lsa);
  EXPECT_TRUE(detail.starts_with("  0xa00f LSA 0.0.0.0, advertised by 0.0.0.0\n")) << detail;
  EXPECT_NE(detail.find("      000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f\n"
                        "      20212223\n"),
            std::string::npos)
      << detail;
}

TEST(LsdbDetail, OctetsOfAHostNameThatAreNoTextDoNotReachTheTerminal) {
  ospf_tables::LsaView lsa;
  lsa.version = 2;
  lsa.type = ospf_tables::lsa2_opaque_area;
  lsa.decoded_completed = true;
  ospf_tables::OpaqueViewV2 body;
  body.opaque_type = 4;
  body.tlvs.push_back({7, 4, {'r', 0x1b, '[', '1'}, "", {}, {}});
  lsa.body = body;
  EXPECT_NE(tool::detail_of(lsa).find("host name: r\\x1b[1\n"), std::string::npos);
}

TEST(LsdbJson, BodiesHaveTheFieldsOfTheModel) {
  const auto body = [](const std::vector<std::string> &words) {
    std::vector<std::string> all = words;
    all.push_back("--json");
    return json_lines(lsdb(recorded("campus"), all).out).at(0)["body"];
  };
  EXPECT_EQ(body({"--v2", "--area", "0", "--type", "1"})["links"][1],
            (json{{"type", 2},
                  {"type_name", "transit"},
                  {"link_id", "10.0.0.1"},
                  {"link_data", "10.0.0.1"},
                  {"metric", 10},
                  {"topology", {{{"mt_id", 0}, {"metric", 10}}}}}));
  EXPECT_EQ(body({"--v2", "--type", "network"}),
            (json{{"network_mask", "255.255.255.0"},
                  {"attached_router", {"10.255.0.1", "10.255.0.2", "10.255.0.3"}}}));
  EXPECT_EQ(body({"--type", "External"})["external"][0], (json{{"mt_id", 0},
                                                               {"metric", 100},
                                                               {"metric_type", 1},
                                                               {"forwarding_address", "0.0.0.0"},
                                                               {"external_route_tag", 0}}));
  EXPECT_EQ(body({"--type", "0x2004"})["destination_router_id"], "10.255.0.2");
  const json opaque = body({"--type", "Opaque-area"});
  EXPECT_EQ(opaque["router_address"], "10.255.0.1");
  EXPECT_EQ(opaque["tlv"]["local_if_ipv4_addr"], json({"10.0.0.1"}));
  EXPECT_EQ(opaque["unknown_sub_tlv"][0]["length"], 32);
}

TEST(LsdbJson, BodiesHaveWhatOctetsSayBeyondTheModel) {
  const auto all = json_lines(lsdb(recorded("campus"), {"--json"}).out);
  std::set<json> options;
  for (const json &lsa : all) {
    if (lsa["type_name"] == "Opaque-area") options.insert(lsa["options"]);
    if (lsa["type_name"] != "AS-Ext") continue;
    EXPECT_TRUE(lsa["body"]["referenced_link_state_id"].is_null());
    const int flags = std::stoi(lsa["raw_data"].get<std::string>().substr(40, 2), nullptr, 16);
    EXPECT_EQ(lsa["body"]["external_route_tag"].is_null(), (flags & 1) == 0) << lsa;
  }
  EXPECT_EQ(options, (std::set<json>{json::array({"E", "O"})}));
}

// Two links of one ID and one address, of which the rows hold one, and a metric of 24 bits.
TEST(LsdbJson, LinksThatAreEqualAndMetricsOf24BitsAreAllThere) {
  synthetic::Network network;
  auto &router = network.router(0, "10.0.0.1", 0,
                                {{1, "10.0.0.2", "0.0.0.7", 5}, {1, "10.0.0.2", "0.0.0.7", 6}});
  const std::vector<std::uint8_t> links = {0, 1, 0, 1,  10, 0, 0, 1, 10, 0, 0, 1, 128, 0, 0, 1,
                                           0, 0, 0, 48, 0,  0, 0, 2, 10, 0, 0, 2, 0,   0, 0, 7,
                                           1, 0, 0, 5,  10, 0, 0, 2, 0,  0, 0, 7, 1,   0, 0, 6};
  router.raw = links;
  ospf_decode::LsaV2 summary;
  summary.header = {12, 0, 3, synthetic::address("10.9.0.0"), synthetic::address("10.0.0.1")};
  summary.summary.mask = synthetic::address("255.255.0.0");
  summary.summary.metrics = {{0, 0xffffff}};
  const std::vector<std::uint8_t> infinity = {0,   12,  0,   3, 10, 9,   0,   0,  10, 0,
                                              0,   1,   128, 0, 0,  1,   0,   0,  0,  28,
                                              255, 255, 0,   0, 0,  255, 255, 255};
  summary.raw = infinity;
  network.add(0, summary);
  ospf_tables::Session session;
  network.load(session);
  const auto lines = json_lines(lsdb(session, {"--json"}).out);
  ASSERT_EQ(lines.size(), 2u);
  std::vector<int> metrics;
  for (const json &link : lines[0]["body"]["links"]) metrics.push_back(link["metric"]);
  EXPECT_EQ(metrics, (std::vector<int>{5, 6}));
  EXPECT_EQ(lines[1]["body"]["summary"][0]["metric"], 16777215);
}

TEST(ShowJson, EveryRowIsAnObjectWithKindPathAndFields) {
  ospf_tables::Session session;
  tool::load_frr(session, {(fs::path(places::sample()) / "r1").string()}, nullptr);
  const Answer answer = answer_of([&] { return tool::show_path(session, "", true); });
  EXPECT_EQ(answer.status, 0);
  std::map<std::string, std::size_t> kinds;
  for (const json &row : json_lines(answer.out)) {
    ++kinds[row["kind"]];
    ASSERT_TRUE(row.contains("path"));
    const std::string path = row["path"];
    if (row["kind"] == "interface") {
      EXPECT_TRUE(path.ends_with("/interface/" + row["name"].get<std::string>()));
      EXPECT_TRUE(row["cost"].is_number_unsigned());
      EXPECT_TRUE(row["passive"].is_boolean());
      EXPECT_TRUE(row["authentication_val"].is_object());
    } else if (row["kind"] == "neighbor") {
      EXPECT_EQ(row["state"], "NBR_STATE_FULL");
      EXPECT_TRUE(row["stats"]["nbr_event_count"].is_number_unsigned());
    } else if (row["kind"] == "instance") {
      EXPECT_EQ(row["router_id"], "10.255.0.1");
      EXPECT_TRUE(row["af"] == "ADDR_FAMILY_IPV4" || row["af"] == "ADDR_FAMILY_IPV6");
    }
  }
  EXPECT_EQ(kinds["ospf"], 1u);
  EXPECT_EQ(kinds["instance"], 2u);
  EXPECT_GE(kinds["area"], 4u);
  EXPECT_GT(kinds["interface"], 4u);
  EXPECT_GT(kinds["neighbor"], 4u);
}

TEST(ShowJson, AnLsaHoldsItsRowsUnlessThePathNamesThem) {
  ospf_tables::Session &session = recorded("campus");
  const auto rows = [&](const std::string &path) {
    return json_lines(answer_of([&] { return tool::show_path(session, path, true); }).out);
  };
  const std::vector<json> lsas = rows("instance/ipv4,0.0.0.0/area/0/area-lsas/1");
  ASSERT_EQ(lsas.size(), 4u);
  EXPECT_EQ(lsas[0]["lsa_id"], 1);
  EXPECT_EQ(lsas[1]["kind"], "area-lsa");
  EXPECT_EQ(lsas[1]["body"]["links"].size(), 4u);
  const std::vector<json> links = rows(lsas[1]["path"].get<std::string>() + "/link");
  std::size_t direct = 0;
  for (const json &link : links) direct += link["kind"] == "link" ? 1 : 0;
  EXPECT_EQ(direct, 4u);
  EXPECT_EQ(links[0]["type_name"], "transit");
}

// --- filters and wrong input ---------------------------------------------------------------------

TEST(LsdbFilter, EachOptionNarrowsTheListing) {
  ospf_tables::Session &session = recorded("campus");
  const auto lines = [&](std::vector<std::string> words) {
    words.push_back("--json");
    return json_lines(lsdb(session, words).out);
  };
  const std::size_t all = lines({}).size();
  for (const json &lsa : lines({"--area", "0.0.0.1"})) EXPECT_EQ(lsa["area"], "0.0.0.1");
  EXPECT_EQ(lines({"--area", "1"}).size(), lines({"--area", "0.0.0.1"}).size());
  for (const json &lsa : lines({"--type", "ASBR-SUM"})) EXPECT_EQ(lsa["type"], 4);
  EXPECT_EQ(lines({"--type", "0x2001"}).size() + lines({"--type", "1"}).size(),
            lines({"--type", "router"}).size());
  for (const json &lsa : lines({"--adv-router", "10.255.0.3"})) {
    EXPECT_EQ(lsa["adv_router"], "10.255.0.3");
  }
  EXPECT_EQ(lines({"--v2"}).size() + lines({"--v3"}).size(), all);
  EXPECT_EQ(lines({"--family", "ipv6"}).size(), lines({"--v3"}).size());
  EXPECT_EQ(
      lines({"--v3", "--area", "0", "--type", "network", "--adv-router", "10.255.0.1"}).size(), 1u);
  // Names for both versions, and several.
  EXPECT_EQ(lines({"--type", "external"}).size(),
            lines({"--type", "5"}).size() + lines({"--type", "0x4005"}).size());
  EXPECT_EQ(lines({"--type", "external", "--type", "router"}).size(),
            lines({"--type", "external"}).size() + lines({"--type", "router"}).size());
  const std::vector<json> te = lines({"--type", "te"});
  EXPECT_FALSE(te.empty());
  EXPECT_LT(te.size(), lines({"--type", "opaque"}).size());
  for (const json &lsa : te) EXPECT_EQ(lsa["body"]["opaque_type"], 1);
  // Who originates it: the network itself, what is within it, what covers it.
  const auto who = [&](const std::string &prefix) {
    std::set<std::string> found;
    for (const json &lsa : lines({"--prefix", prefix})) {
      found.insert(lsa["type_name"].get<std::string>() + " " + lsa["lsa_id"].get<std::string>() +
                   " " + lsa["adv_router"].get<std::string>());
    }
    return found;
  };
  using Found = std::set<std::string>;
  EXPECT_EQ(who("172.16.8.0/30"), (Found{"External 172.16.8.0 10.255.0.3"}));
  EXPECT_EQ(who("172.16.8.0/24"), Found{});
  EXPECT_EQ(who("172.16.8.0/24+"),
            (Found{"External 172.16.8.0 10.255.0.3", "External 172.16.8.128 10.255.0.3"}));
  EXPECT_EQ(who("172.16.5.1@"),
            (Found{"External 0.0.0.0 10.255.0.2", "External 172.16.4.0 10.255.0.3",
                   "Summary 0.0.0.0 10.255.0.3"}));
  EXPECT_EQ(who("10.1.45.0/24"), (Found{"Network 10.1.45.4 10.255.0.4"}));
  EXPECT_EQ(who("10.255.0.4/32"),
            (Found{"Router 10.255.0.4 10.255.0.4", "Summary 10.255.0.4 10.255.0.1",
                   "Summary 10.255.0.4 10.255.0.2", "Summary 10.255.0.4 10.255.0.3"}));
  EXPECT_FALSE(who("2001:db8::/32+").empty());
  for (const json &lsa : lines({"--ls-id", "10.255.0.3"})) EXPECT_EQ(lsa["lsa_id"], "10.255.0.3");
  const std::vector<json> young = lines({"--newer-than", "40"});
  EXPECT_FALSE(young.empty());
  EXPECT_LT(young.size(), all);
  for (const json &lsa : young) EXPECT_LT(lsa["age"].get<int>() & 0x7fff, 40);
}

TEST(LsdbFilter, InstancesAreCountedAndChosenEachAlone) {
  ospf_tables::Session &session = recorded("instances");
  const std::string all = lsdb(session, {}).out;
  std::size_t sum = 0;
  for (const std::string instance : {"0", "1", "64"}) {
    const std::string part = lsdb(session, {"--instance", instance}).out;
    const std::string title = "OSPFv3" + (instance == "0" ? "" : ", instance " + instance) + ": ";
    const std::size_t at = part.rfind(title);
    ASSERT_NE(at, std::string::npos) << instance;
    EXPECT_NE(all.find("\n" + part.substr(at)), std::string::npos) << instance;
    sum += json_lines(lsdb(session, {"--instance", instance, "--json"}).out).size();
  }
  EXPECT_EQ(sum, json_lines(lsdb(session, {"--json"}).out).size());
}

TEST(LsdbFilter, WhatNoLsaCanMeetIsRefused) {
  ospf_tables::Session session;
  const auto refused = [&](const std::vector<std::string> &words, const std::string &part) {
    try {
      run_lsdb(session, words);
      ADD_FAILURE() << words[0] << " was taken";
    } catch (const ospf_tables::InputError &failure) {
      EXPECT_NE(std::string(failure.what()).find(part), std::string::npos) << failure.what();
    }
  };
  refused({"--area", "0.0.0"}, "--area: found \"0.0.0\", expected an area such as");
  refused({"--area", "4294967296"}, "found \"4294967296\"");
  refused({"--type", "rooter"}, "expected one of external, nssa, summary");
  refused({"--type", "70000"}, "found \"70000\"");
  refused({"--adv-router", "r1"}, "expected a router ID such as");
  refused({"--ls-id", "10.0.0"}, "expected a dotted quad or a number");
  refused({"--instance", "256"}, "expected a number from 0 to 255");
  refused({"--newer-than", "4000"}, "expected seconds, at most 3600");
  refused({"--family", "ipx"}, "expected ipv4 or ipv6");
  refused({"--prefix", "10.0.0.0/33"}, "expected a prefix such as");
  refused({"--v2", "--v3"}, "lsdb: --v2 excludes --v3");
  refused({"--detail", "--json"}, "lsdb: --detail excludes --json");
  refused({"--colour"}, "lsdb: The following argument was not expected: --colour");
}

TEST(Lsdb, NothingToListIsSaidWithStatusOne) {
  ospf_tables::Session session;
  const Answer empty = lsdb(session, {});
  EXPECT_EQ(empty.status, 1);
  EXPECT_EQ(empty.out, "");
  EXPECT_EQ(empty.err, "ospf-harbor: lsdb: no LSAs are loaded\n");
  tool::load_frr(session, {(fs::path(places::sample()) / "r1").string()}, nullptr);
  EXPECT_EQ(lsdb(session, {"--json"}).status, 1);
  const Answer none = lsdb(recorded("campus"), {"--type", "nssa"});
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.err, "ospf-harbor: lsdb: none of 153 LSAs is what the options ask for\n");
}

// --- sources -------------------------------------------------------------------------------------

TEST(Sources, AreToldApartByWhatIsThere) {
  ospf_tables::Session session;
  const std::string out =
      answer_of([&] {
        return tool::load_sources(session, {(fs::path(places::sample()) / "r1").string(),
                                            (recordings / "campus").string()});
      }).out;
  EXPECT_EQ(out, "");
  EXPECT_EQ(lsdb(session, {}).status, 0);
  EXPECT_EQ(answer_of([&] { return tool::show_path(session, "instance/ipv4,10.255.0.1"); }).status,
            0);
}

TEST(Sources, AFolderWithNeitherIsRefused) {
  ospf_tables::Session session;
  EXPECT_THROW(tool::load_sources(session, {places::project() + "/docs"}), ospf_tables::InputError);
}

TEST(Sources, AFileOfNoKnownKindIsRefusedByName) {
  ospf_tables::Session session;
  const std::string file = (recordings / "campus/README.md").string();
  try {
    tool::load_sources(session, {file});
    FAIL() << "it was taken for a source";
  } catch (const ospf_tables::InputError &refused) {
    EXPECT_EQ(refused.what(), file +
                                  ": found a file of no known kind, expected a capture (pcap or "
                                  "pcapng), a tree stream or a tree's XML");
  }
}

}  // namespace
