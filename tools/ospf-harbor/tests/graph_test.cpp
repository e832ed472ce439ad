// Pictures of topologies: the graph that two recorded networks give is held against what is known
// of them, both-ways checks and awkward cases are made up, and what Graphviz makes of the text is
// read back.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>
#include <sstream>

#include "commands/commands.hpp"
#include "ospf_routes/read_databases.hpp"
#include "ospf_tables/input_error.hpp"
#include "ospf_tables/row_keys.hpp"
#include "sources/sources.hpp"
#include "support/places.hpp"
#include "support/temporary_folder.hpp"
#include "synthetic_network.hpp"
#include "views/dot_text.hpp"
#include "views/graphviz.hpp"
#include "views/picture_page.hpp"
#include "views/topology_difference.hpp"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using synthetic::address;

// Of an instance of what a session holds; an empty one if it has none such.
tool::Topology topology_in(ospf_tables::Session &session, const tool::InstanceName &instance) {
  tool::Topology topology;
  for (const auto &database : ospf_routes::read_databases(ospf_tables::read_lsdb(session))) {
    if (tool::InstanceName{database.version, database.instance} == instance) {
      topology = tool::topology_of(database);
    }
  }
  tool::add_lists(topology, tool::read_network(session, {}));
  return topology;
}

tool::Topology recorded(const std::string &name, std::uint8_t version,
                        std::uint8_t instance_id = 0) {
  ospf_tables::Session session;
  tool::load_sources(session, {places::recordings() + "/" + name + "/all.pcap"});
  return topology_in(session, {version, instance_id});
}

tool::Topology topology_of(const synthetic::Network &network, std::uint8_t version = 2) {
  ospf_tables::Session session;
  network.load(session);
  return topology_in(session, {version, 0});
}

std::string dot_of(const tool::Topology &topology, const tool::PictureChoice &choice = {}) {
  return tool::dot_text(tool::picture_of(topology, choice));
}

std::string cost_text(std::optional<std::uint32_t> cost) {
  return cost ? std::to_string(*cost) : "-";
}

// A line for each edge, without an order of ends or edges.
std::set<std::string> edges_of(const tool::Topology &topology) {
  std::set<std::string> edges;
  for (const tool::TopologyLink &link : topology.links) {
    const bool turned = link.routers[0] > link.routers[1];
    const auto end = [&](int which) {
      const int at = turned ? 1 - which : which;
      return ospf_tables::dotted(link.routers[at]) + " " + cost_text(link.costs[at]);
    };
    edges.insert(end(0) + " - " + end(1) + " in " + ospf_tables::dotted(link.area) +
                 (link.kind == tool::LinkKind::virtual_link ? " virtual" : ""));
  }
  for (const tool::TopologyAttachment &each : topology.attachments) {
    edges.insert(ospf_tables::dotted(each.router) + " " + cost_text(each.cost) + " - network " +
                 topology.networks.at(each.network).prefixes.at(0) + " in " +
                 ospf_tables::dotted(std::get<0>(each.network)) + (each.listed ? "" : " unlisted"));
  }
  return edges;
}

TEST(Topology, OfCampusIsTheOneOfItsDrawing) {
  const std::set<std::string> point_to_point = {
      "10.255.0.1 20 - 10.255.0.2 20 in 0.0.0.0", "10.255.0.1 30 - 10.255.0.4 30 in 0.0.0.1",
      "10.255.0.2 30 - 10.255.0.5 30 in 0.0.0.1", "10.255.0.3 5 - 10.255.0.6 5 in 0.0.0.2"};
  for (const std::uint8_t version : {2, 3}) {
    const std::string core = version == 2 ? "10.0.0.0/24" : "2001:db8:0:a::/64";
    const std::string r4r5 = version == 2 ? "10.1.45.0/24" : "2001:db8:1:45::/64";
    std::set<std::string> expected = point_to_point;
    for (const char *router : {"1", "2", "3"}) {
      expected.insert(std::string("10.255.0.") + router + " 10 - network " + core + " in 0.0.0.0");
    }
    for (const char *router : {"4", "5"}) {
      expected.insert(std::string("10.255.0.") + router + " 40 - network " + r4r5 + " in 0.0.0.1");
    }
    const tool::Topology campus = recorded("campus", version);
    EXPECT_EQ(edges_of(campus), expected) << "OSPFv" << int{version};
    EXPECT_EQ(campus.routers.size(), 6u);
    EXPECT_EQ(campus.areas.size(), 3u);
    const auto &routers = campus.routers;
    EXPECT_EQ(routers.at(address("10.255.0.1")).areas, (std::set<std::uint32_t>{0, 1}));
    EXPECT_TRUE(routers.at(address("10.255.0.1")).area_border);
    EXPECT_FALSE(routers.at(address("10.255.0.1")).as_boundary);
    EXPECT_TRUE(routers.at(address("10.255.0.3")).area_border);
    EXPECT_TRUE(routers.at(address("10.255.0.3")).as_boundary);
    EXPECT_FALSE(routers.at(address("10.255.0.5")).area_border);
    EXPECT_TRUE(routers.at(address("10.255.0.5")).as_boundary);
    EXPECT_EQ(campus.networks.begin()->second.designated_router, address("10.255.0.1"));
  }
}

TEST(Topology, PrefixesOfPointToPointLinksAreNoStubs) {
  for (const std::uint8_t version : {2, 3}) {
    const tool::Topology campus = recorded("campus", version);
    const std::string prefix = version == 2 ? "10.0.12.0/30" : "2001:db8:0:12::/64";
    const bool on_link = std::any_of(campus.links.begin(), campus.links.end(),
                                     [&](const auto &link) { return link.prefix == prefix; });
    const bool as_stub = std::any_of(campus.stubs.begin(), campus.stubs.end(),
                                     [&](const auto &stub) { return stub.prefix == prefix; });
    EXPECT_TRUE(on_link) << prefix;
    EXPECT_FALSE(as_stub) << prefix;
    EXPECT_GE(campus.stubs.size(), 6u);  // a loopback for each router
  }
}

TEST(Topology, OfTransitHasAVirtualLinkAndFiveAreas) {
  const tool::Topology transit = recorded("transit", 2);
  EXPECT_TRUE(edges_of(transit).contains("10.254.0.2 87 - 10.254.0.4 20 in 0.0.0.0 virtual"));
  EXPECT_EQ(transit.areas.size(), 5u);
  EXPECT_EQ(transit.routers.at(address("10.254.0.4")).areas, (std::set<std::uint32_t>{0, 1, 3}));
  for (const auto &link : transit.links) EXPECT_TRUE(link.both_ways());
}

// Routers of the recording by the instances that its configurations have.
TEST(Topology, OfInstancesOnOneLinkIsEachItsOwn) {
  const std::map<std::uint8_t, std::size_t> routers{{0, 4}, {1, 2}, {64, 3}};
  for (const auto &[instance, count] : routers) {
    SCOPED_TRACE(int{instance});
    const tool::Topology topology = recorded("instances", 3, instance);
    EXPECT_EQ(topology.routers.size(), count);
    EXPECT_FALSE(topology.attachments.empty());
    for (const auto &attachment : topology.attachments) EXPECT_TRUE(attachment.both_ways());
    for (const auto &link : topology.links) EXPECT_TRUE(link.both_ways());
  }
}

TEST(Topology, KnowsTheKindsOfAreasNetworksAndLinks) {
  for (const std::uint8_t version : {2, 3}) {
    SCOPED_TRACE(int{version});
    const std::map<std::uint32_t, std::string> kinds{
        {0, "normal"}, {1, "NSSA"}, {2, "totally stubby"}};
    EXPECT_EQ(recorded("nssa", version).areas, kinds);
    const tool::Topology nbma = recorded("nbma", version);
    ASSERT_EQ(nbma.networks.size(), 1u);
    EXPECT_TRUE(nbma.networks.begin()->second.non_broadcast);
    EXPECT_FALSE(nbma.links.empty());
    for (const auto &link : nbma.links) {
      EXPECT_EQ(link.kind, tool::LinkKind::point_to_multipoint);
    }
    for (const auto &[id, network] : recorded("campus", version).networks) {
      EXPECT_FALSE(network.non_broadcast);
    }
    for (const auto &link : recorded("campus", version).links) {
      EXPECT_EQ(link.kind, tool::LinkKind::point_to_point);
    }
  }
}

TEST(Topology, CountsWhatRoutersAnnounceFromOutside) {
  const tool::Topology topology = recorded("nssa", 2);
  const auto announced = [&](const char *router) {
    return topology.routers.at(address(router)).announcements();
  };
  EXPECT_EQ(announced("10.251.0.1"), "1 external, 1 NSSA, default into 0.0.0.1");
  EXPECT_EQ(announced("10.251.0.2"), "3 externals, default into 0.0.0.1");
  EXPECT_EQ(announced("10.251.0.3"), "default into 0.0.0.2");
  EXPECT_EQ(announced("10.251.0.4"), "5 NSSA");
  EXPECT_EQ(announced("10.251.0.6"), "");
  EXPECT_EQ(recorded("campus", 2).routers.at(address("10.255.0.2")).announcements(), "default");
}

TEST(Topology, ALinkOfOneEndAloneIsNotWhole) {
  synthetic::Network network;
  network.router(0, "10.0.0.1", 0,
                 {{1, "10.0.0.2", "192.0.2.1", 5}, {1, "10.0.0.3", "192.0.2.5", 6}});
  network.router(0, "10.0.0.2", 0, {});
  const tool::Topology topology = topology_of(network);
  EXPECT_EQ(edges_of(topology), (std::set<std::string>{"10.0.0.1 5 - 10.0.0.2 - in 0.0.0.0",
                                                       "10.0.0.1 6 - 10.0.0.3 - in 0.0.0.0"}));
  EXPECT_TRUE(topology.routers.at(address("10.0.0.2")).has_lsa);
  EXPECT_FALSE(topology.routers.at(address("10.0.0.3")).has_lsa);
  const std::string dot = dot_of(topology);
  EXPECT_NE(dot.find("style=\"dashed\""), std::string::npos);
  EXPECT_NE(dot.find("style=\"filled,rounded,dashed\""), std::string::npos);
}

TEST(Topology, ALinkInTwoAreasIsTwoHalves) {
  synthetic::Network network;
  network.router(0, "10.0.0.1", 0, {{1, "10.0.0.2", "192.0.2.1", 5}});
  network.router(1, "10.0.0.2", 0, {{1, "10.0.0.1", "192.0.2.2", 5}});
  for (const auto &link : topology_of(network).links) EXPECT_FALSE(link.both_ways());
}

TEST(Topology, ParallelLinksFindTheirOtherEndsByAddress) {
  synthetic::Network network;
  network.router(0, "10.0.0.1", 0,
                 {{1, "10.0.0.2", "192.0.2.1", 1},
                  {1, "10.0.0.2", "192.0.2.10", 3},
                  {1, "10.0.0.2", "192.0.2.17", 5}});
  network.router(0, "10.0.0.2", 0,
                 {{1, "10.0.0.1", "192.0.2.9", 4}, {1, "10.0.0.1", "192.0.2.2", 2}});
  EXPECT_EQ(edges_of(topology_of(network)),
            (std::set<std::string>{"10.0.0.1 1 - 10.0.0.2 2 in 0.0.0.0",
                                   "10.0.0.1 3 - 10.0.0.2 4 in 0.0.0.0",
                                   "10.0.0.1 5 - 10.0.0.2 - in 0.0.0.0"}));
}

ospf_decode::LsaV3 router_v3(const std::string &id,
                             const std::vector<ospf_decode::RouterLinkV3> &links) {
  ospf_decode::LsaV3 lsa;
  lsa.header.type = ospf_decode::lsa3_router;
  lsa.header.advertising_router = address(id);
  lsa.router.links = links;
  return lsa;
}

TEST(Topology, OfOspfv3MatchesLinksByInterfaces) {
  synthetic::Network network;
  const std::uint32_t a = address("10.0.0.1");
  const std::uint32_t b = address("10.0.0.2");
  network.add(0, router_v3("10.0.0.1", {{1, 1, 11, 21, b}, {1, 3, 12, 22, b}, {1, 5, 13, 99, b}}));
  network.add(0, router_v3("10.0.0.2", {{1, 4, 22, 12, a}, {1, 2, 21, 11, a}}));
  EXPECT_EQ(edges_of(topology_of(network, 3)),
            (std::set<std::string>{"10.0.0.1 1 - 10.0.0.2 2 in 0.0.0.0",
                                   "10.0.0.1 3 - 10.0.0.2 4 in 0.0.0.0",
                                   "10.0.0.1 5 - 10.0.0.2 - in 0.0.0.0"}));
}

TEST(Topology, NetworksAreCheckedBothWays) {
  synthetic::Network network;
  network.router(0, "10.0.0.1", 0, {{2, "192.0.2.1", "192.0.2.1", 5}});
  network.router(0, "10.0.0.2", 0, {{2, "192.0.2.1", "192.0.2.2", 6}});
  network.router(0, "10.0.0.3", 0, {});
  network.network(0, "192.0.2.1", "255.255.255.0", "10.0.0.1", {"10.0.0.1", "10.0.0.3"});
  EXPECT_EQ(edges_of(topology_of(network)),
            (std::set<std::string>{"10.0.0.1 5 - network 192.0.2.0/24 in 0.0.0.0",
                                   "10.0.0.2 6 - network 192.0.2.0/24 in 0.0.0.0 unlisted",
                                   "10.0.0.3 - - network 192.0.2.0/24 in 0.0.0.0"}));
}

TEST(Topology, ANetworkThatOnlyRoutersSpeakOfIsThere) {
  synthetic::Network network;
  network.router(0, "10.0.0.1", 0, {{2, "192.0.2.1", "192.0.2.1", 5}});
  const tool::Topology topology = topology_of(network);
  ASSERT_EQ(topology.networks.size(), 1u);
  EXPECT_FALSE(topology.networks.begin()->second.has_lsa);
  EXPECT_NE(dot_of(topology).find("style=\"filled,dashed\""), std::string::npos);
}

TEST(Topology, LsasAtTheEndOfTheirLifeDoNotCount) {
  synthetic::Network network;
  network.router(0, "10.0.0.1", 0, {}).header.age = 3600;
  network.router(0, "10.0.0.2", 0, {}).header.age = 0x8000 | 3599;
  const tool::Topology topology = topology_of(network);
  EXPECT_EQ(topology.routers.size(), 1u);
  EXPECT_TRUE(topology.routers.contains(address("10.0.0.2")));
}

// --- what Graphviz reads -------------------------------------------------------------------------

json read_back(const std::string &dot) { return json::parse(tool::draw(dot, "json")); }

TEST(Dot, IsReadBackByGraphvizAsItWasMeant) {
  const json graph = read_back(dot_of(recorded("transit", 2)));
  std::map<int, json> nodes;
  std::map<std::string, json> by_name;
  for (const json &node : graph["objects"]) {
    nodes[node["_gvid"]] = node;
    EXPECT_FALSE(by_name.contains(node["name"])) << "drawn twice";
    by_name[node["name"]] = node;
  }
  EXPECT_EQ(nodes.size(), 9u);  // eight routers, a network
  const json &border = by_name.at("router 10.254.0.4");
  EXPECT_EQ(border["style"], "filled");
  const std::string stripes = border["label"];
  std::size_t cells = 0;  // of three areas
  for (std::size_t at = 0; (at = stripes.find("<TD BGCOLOR=", at)) != stripes.npos; ++at) ++cells;
  EXPECT_EQ(cells, 3u);
  EXPECT_NE(border["label"].get<std::string>().find("ABR"), std::string::npos);
  EXPECT_EQ(by_name.at("router 10.254.0.1")["peripheries"], "2");
  EXPECT_FALSE(by_name.at("router 10.254.0.5").contains("peripheries"));

  std::size_t virtual_links = 0;
  EXPECT_EQ(graph["edges"].size(), 9u);
  for (const json &edge : graph["edges"]) {
    const std::string tail = nodes.at(edge["tail"])["name"];
    const std::string head = nodes.at(edge["head"])["name"];
    EXPECT_NE(edge["taillabel"].get<std::string>().find("</FONT>"), std::string::npos);
    EXPECT_EQ(edge.contains("headlabel"), head.starts_with("router "));
    if (edge["style"] != "dotted") continue;
    ++virtual_links;
    const bool turned = tail == "router 10.254.0.4";
    EXPECT_NE(edge[turned ? "headlabel" : "taillabel"].get<std::string>().find(">87<"),
              std::string::npos);
    EXPECT_NE(edge[turned ? "taillabel" : "headlabel"].get<std::string>().find(">20<"),
              std::string::npos);
  }
  EXPECT_EQ(virtual_links, 1u);
  const std::string legend = graph["label"];
  for (const char *text : {"8 routers, 1 network, 5 areas", "area 0.0.0.4", "dotted: virtual"}) {
    EXPECT_NE(legend.find(text), std::string::npos) << text;
  }
}

TEST(Dot, EdgesHaveTheColourOfTheirArea) {
  const json graph = read_back(dot_of(recorded("campus", 2)));
  std::set<std::string> colours;
  for (const json &edge : graph["edges"]) colours.insert(edge["color"]);
  EXPECT_EQ(colours.size(), 3u);
}

TEST(Dot, StubsAreDrawnWhenTheyAreAskedFor) {
  const tool::Topology campus = recorded("campus", 3);
  EXPECT_EQ(dot_of(campus).find("2001:db8:ff::1/128"), std::string::npos);
  const std::string dot = dot_of(campus, {.stubs = true});
  EXPECT_NE(dot.find("2001:db8:ff::1/128"), std::string::npos);
  EXPECT_NE(dot.find(">2001:db8:0:12::/64</FONT>"), std::string::npos);
  read_back(dot);
}

TEST(Dot, AddressesAreDrawnWhenTheyAreAskedFor) {
  for (const auto &[version, own] :
       {std::pair(2, ">20<BR/>10.0.12.1<"), std::pair(3, "<BR/>fe80::")}) {
    const tool::Topology campus = recorded("campus", static_cast<std::uint8_t>(version));
    EXPECT_EQ(dot_of(campus).find(own), std::string::npos);
    const std::string dot = dot_of(campus, {.addresses = true});
    EXPECT_NE(dot.find(own), std::string::npos);
    read_back(dot);
  }
}

TEST(Dot, KindsAndNamesAndCountsStandInWords) {
  tool::Topology nssa = recorded("nssa", 2);
  nssa.names[address("10.251.0.4")] = "inside";
  const std::string dot = dot_of(nssa);
  for (const char *text :
       {">area 0.0.0.1, NSSA<", ">area 0.0.0.2, totally stubby<", "<B>inside</B>", ">10.251.0.4<",
        ">DR inside<", ">5 NSSA<", ">3 externals, default into"}) {
    EXPECT_NE(dot.find(text), std::string::npos) << text;
  }
  const std::string nbma = dot_of(recorded("nbma", 2));
  EXPECT_NE(nbma.find(">NBMA<"), std::string::npos);
  EXPECT_NE(nbma.find(":white:"), std::string::npos);
  EXPECT_NE(nbma.find("double line: point-to-multipoint"), std::string::npos);
}

// --- differences ---------------------------------------------------------------------------------

// A change of a cost, of a designated router, a router that goes and one that comes.
tool::Topology difference() {
  synthetic::Network before;
  before.router(0, "10.0.0.1", 0,
                {{1, "10.0.0.2", "192.0.2.1", 5}, {2, "198.51.100.1", "198.51.100.1", 3}});
  before.router(0, "10.0.0.2", 0,
                {{1, "10.0.0.1", "192.0.2.2", 6},
                 {1, "10.0.0.3", "192.0.2.5", 7},
                 {2, "198.51.100.1", "198.51.100.2", 3}});
  before.router(0, "10.0.0.3", 0, {{1, "10.0.0.2", "192.0.2.6", 7}});
  before.network(0, "198.51.100.1", "255.255.255.0", "10.0.0.1", {"10.0.0.1", "10.0.0.2"});
  synthetic::Network after;
  after.router(0, "10.0.0.1", 2,
               {{1, "10.0.0.2", "192.0.2.1", 9}, {2, "198.51.100.2", "198.51.100.1", 3}});
  after.router(0, "10.0.0.2", 0,
               {{1, "10.0.0.1", "192.0.2.2", 6},
                {1, "10.0.0.4", "192.0.2.9", 8},
                {2, "198.51.100.2", "198.51.100.2", 3}});
  after.router(0, "10.0.0.4", 0, {{1, "10.0.0.2", "192.0.2.10", 8}});
  after.network(0, "198.51.100.2", "255.255.255.0", "10.0.0.2", {"10.0.0.1", "10.0.0.2"});
  return tool::difference_of(topology_of(before), topology_of(after));
}

TEST(Difference, TellsWhatCameWentAndChanged) {
  using tool::TopologyChange;
  const tool::Topology both = difference();
  const std::map<std::string, TopologyChange> routers{{"10.0.0.1", TopologyChange::changed},
                                                      {"10.0.0.2", TopologyChange::none},
                                                      {"10.0.0.3", TopologyChange::went},
                                                      {"10.0.0.4", TopologyChange::came}};
  ASSERT_EQ(both.routers.size(), routers.size());
  for (const auto &[id, change] : routers) {
    EXPECT_EQ(both.routers.at(address(id)).change, change) << id;
  }
  ASSERT_EQ(both.networks.size(), 1u);
  const tool::TopologyNetwork &network = both.networks.begin()->second;
  EXPECT_EQ(network.change, TopologyChange::changed);
  EXPECT_EQ(network.designated_before, address("10.0.0.1"));
  ASSERT_EQ(both.attachments.size(), 2u);
  for (const auto &each : both.attachments) EXPECT_EQ(each.change, TopologyChange::none);
  std::map<std::uint32_t, TopologyChange> links;  // by the end that is not 10.0.0.2
  for (const auto &link : both.links) {
    links[link.routers[link.routers[0] == address("10.0.0.2") ? 1 : 0]] = link.change;
  }
  const std::map<std::uint32_t, TopologyChange> expected{
      {address("10.0.0.1"), TopologyChange::changed},
      {address("10.0.0.3"), TopologyChange::went},
      {address("10.0.0.4"), TopologyChange::came}};
  EXPECT_EQ(links, expected);
}

TEST(Difference, OfANetworkAndItselfIsNone) {
  const tool::Topology transit = recorded("transit", 2);
  const tool::Topology both = tool::difference_of(transit, transit);
  EXPECT_EQ(both.links.size(), transit.links.size());
  const std::string dot = dot_of(both);
  for (const char *change : {"<I>came", "<I>went", "<I>changed"}) {
    EXPECT_EQ(dot.find(change), std::string::npos) << change;
  }
}

TEST(Difference, IsDrawnInColoursAndInWords) {
  const std::string dot = dot_of(difference());
  read_back(dot);
  for (const char *text :
       {">5 &gt; 9<", "<B>10.0.0.3</B> <I>went</I>", "<B>10.0.0.4</B> <I>came</I>",
        ">before: DR 10.0.0.1<", ">before: nothing special<", ">went</FONT>"}) {
    EXPECT_NE(dot.find(text), std::string::npos) << text;
  }
  EXPECT_NE(dot.find("color=\"" + tool::colours_of(tool::TopologyChange::went).line),
            std::string::npos);
}

// --- the page ------------------------------------------------------------------------------------

constexpr char data_begin[] = "<script type=\"application/json\" id=\"data\">";

json data_of(const std::string &page) {
  const std::size_t at = page.find(data_begin) + sizeof data_begin - 1;
  return json::parse(page.substr(at, page.find("</script>", at) - at));
}

std::size_t count_of(const std::string &what, const std::string &text) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(what, at)) != text.npos; ++at) ++count;
  return count;
}

TEST(Page, HasEveryPartWithItsPlaceAndItsLsas) {
  ospf_tables::Session session;
  tool::load_sources(session, {places::recordings() + "/nssa/all.pcap"});
  const auto lsas = ospf_tables::read_lsdb(session);
  const tool::Topology topology = topology_in(session, {2, 0});
  const json data = data_of(tool::page_of(
      {{tool::picture_of(topology, {}), tool::page_lsas(lsas, {2, 0})},
       {tool::picture_of(topology_in(session, {3, 0}), {}), tool::page_lsas(lsas, {3, 0})}}));
  ASSERT_EQ(data.size(), 2u);
  EXPECT_EQ(data[1]["name"], "OSPFv3");
  const json &picture = data[0];
  EXPECT_EQ(picture["nodes"].size(), topology.routers.size() + topology.networks.size());
  EXPECT_EQ(picture["edges"].size(), topology.links.size() + topology.attachments.size());
  EXPECT_EQ(picture["areas"][1]["title"], "area 0.0.0.1, NSSA");
  const auto titles = [&](const json &part) {
    std::multiset<std::string> titles;
    for (const std::size_t at : part["lsas"]) titles.insert(picture["lsas"][at]["title"]);
    return titles;
  };
  for (const json &node : picture["nodes"]) {
    EXPECT_GT(node["width"], 10);
    if (node["title"] != "10.251.0.4") continue;
    const auto own = titles(node);
    EXPECT_EQ(own.count("Router LSA 10.251.0.4, advertised by 10.251.0.4"), 1u);
    EXPECT_EQ(own.count("Network LSA 10.51.45.4, advertised by 10.251.0.4"), 1u);
    EXPECT_EQ(own.size(), 7u);  // and five of what is outside
  }
  for (const json &edge : picture["edges"]) {
    EXPECT_GE(edge["points"].size(), 8u);
    EXPECT_EQ(titles(edge).size(), 2u);
  }
}

TEST(Page, TakesNothingFromAnywhereAndRunsNothingOfTheData) {
  tool::Topology topology;
  topology.areas = {{0, ""}};
  topology.instance.version = 2;
  topology.routers[1].areas = {0};
  const std::string awkward = "</script><img src=x onerror=alert(1)><!--<script>";
  topology.names[1] = awkward;
  topology.networks[{0, 1, 0}].prefixes = {awkward};
  const std::string page = tool::page_of({{tool::picture_of(topology, {}), {}}});
  EXPECT_EQ(count_of("<script", page), 2u);
  EXPECT_EQ(count_of("</script>", page), 2u);
  EXPECT_EQ(count_of("<!--", page), 0u);
  EXPECT_EQ(page.find("<img"), std::string::npos);
  EXPECT_EQ(data_of(page)[0]["nodes"][0]["title"], awkward);
  for (const char *way : {"://", "url(", "@import", "innerHTML", "eval(", "src="}) {
    EXPECT_EQ(page.find(way), page.find(way, page.find(data_begin))) << way;  // in data alone
  }
  EXPECT_NE(page.find("default-src 'none'"), std::string::npos);
}

TEST(Page, HasThePlacesThatItsScriptAsksFor) {
  const std::string page = tool::page_of({{tool::picture_of(recorded("campus", 2), {}), {}}});
  std::size_t asked = 0;
  const std::string call = "byId('";
  for (std::size_t at = 0; (at = page.find(call, at)) != page.npos; ++asked) {
    at += call.size();
    const std::string id = page.substr(at, page.find('\'', at) - at);
    if (id == "area-names") continue;  // which the script makes
    EXPECT_EQ(count_of("id=\"" + id + "\"", page), 1u) << id;
  }
  EXPECT_GT(asked, 20u);
}

TEST(Dot, TextsFromOutsideAreEscaped) {
  tool::Topology topology;
  topology.areas = {{0, ""}};
  topology.instance.version = 2;
  topology.routers[1].areas = {0};
  const std::string awkward = "\"<b>&\\\n]; x [label=\"";
  topology.names[1] = awkward;
  topology.networks[{0, 1, 0}].prefixes = {awkward};
  topology.stubs.push_back({0, 1, awkward, 3, {}, {}});
  const json graph = read_back(dot_of(topology, {.stubs = true}));
  EXPECT_EQ(graph["objects"].size(), 3u);
  pugi::xml_document picture;
  const std::string svg = tool::draw(dot_of(topology, {.stubs = true}), "svg");
  ASSERT_TRUE(picture.load_string(svg.c_str()));
  EXPECT_NE(svg.find("&lt;b&gt;&amp;"), std::string::npos);
}

TEST(Svg, IsWellFormedAndShowsEveryRouter) {
  const std::string svg = tool::draw(dot_of(recorded("campus", 2)), "svg");
  pugi::xml_document picture;
  const pugi::xml_parse_result result = picture.load_string(svg.c_str());
  ASSERT_TRUE(result) << result.description();
  std::multiset<std::string> texts;
  for (const auto &found : picture.select_nodes("//*[local-name()='text']")) {
    texts.insert(found.node().text().get());
  }
  for (int router = 1; router <= 6; ++router) {
    EXPECT_EQ(texts.count("10.255.0." + std::to_string(router)), 1u) << router;
  }
  EXPECT_EQ(texts.count("10.0.0.0/24"), 1u);
  EXPECT_EQ(texts.count("20"), 2u);
  EXPECT_EQ(texts.count("area 0.0.0.2, stub"), 1u);
}

struct Box {
  double left, bottom, right, top;
  bool overlaps(const Box &other) const {
    return left < other.right && other.left < right && bottom < other.top && other.bottom < top;
  }
};

TEST(Layout, OfTwoHundredRoutersOverlapsNowhere) {
  std::string dot = dot_of(topology_of(synthetic::large_network(200, 10)));
  // Where lines run changes no place of a node, and straight ones are found at once.
  const std::string routed = "splines=\"true\"";
  ASSERT_NE(dot.find(routed), std::string::npos);
  dot.replace(dot.find(routed), routed.size(), "splines=\"line\"");
  const json graph = read_back(dot);
  std::vector<Box> boxes;
  for (const json &node : graph["objects"]) {
    double x = 0;
    double y = 0;
    char comma = 0;
    std::istringstream(node["pos"].get<std::string>()) >> x >> comma >> y;
    const double width = std::stod(node["width"].get<std::string>()) * 72;
    const double height = std::stod(node["height"].get<std::string>()) * 72;
    boxes.push_back({x - width / 2, y - height / 2, x + width / 2, y + height / 2});
  }
  EXPECT_EQ(boxes.size(), 210u);
  for (std::size_t a = 0; a < boxes.size(); ++a) {
    for (std::size_t b = 0; b < a; ++b) EXPECT_FALSE(boxes[a].overlaps(boxes[b])) << a << ' ' << b;
  }
}

TEST(Layout, IsTheSameForTheSameDatabase) {
  EXPECT_EQ(dot_of(recorded("campus", 2)), dot_of(recorded("campus", 2)));
}

// --- the command ---------------------------------------------------------------------------------

class GraphCommand : public testing::Test {
 protected:
  GraphCommand() {
    synthetic::Network network;
    network.router(0, "10.0.0.1", 0, {{1, "10.0.0.2", "192.0.2.1", 5}});
    network.router(0, "10.0.0.2", 0, {{1, "10.0.0.1", "192.0.2.2", 5}});
    network.load(session_);
  }

  int run(const std::vector<std::string> &words) {
    std::vector<std::string> line{"graph"};
    line.insert(line.end(), words.begin(), words.end());
    return tool::run_words(session_, line);
  }

  const TemporaryFolder temporary_;
  const fs::path &folder_ = temporary_.path();
  ospf_tables::Session session_;
};

TEST_F(GraphCommand, WritesFilesOfEachKind) {
  const std::map<std::string, std::string> begins{{"dot", "graph \"OSPFv2\" {"},
                                                  {"svg", "<?xml "},
                                                  {"png", "\x89PNG\r\n"},
                                                  {"pdf", "%PDF-"},
                                                  {"html", "<!DOCTYPE html>"}};
  for (const auto &[form, begin] : begins) {
    const fs::path file = folder_ / ("a." + form);
    EXPECT_EQ(run({"--" + form, "-o", file}), 0);
    EXPECT_TRUE(content_of(file).starts_with(begin)) << form;
  }
  pugi::xml_document picture;
  EXPECT_TRUE(picture.load_file((folder_ / "a.svg").c_str()));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()), 5);
}

TEST_F(GraphCommand, DrawsHowTwoSourcesDiffer) {
  const std::string recording = places::recordings() + "/domain/";
  const std::string before = recording + "before.pcap";
  EXPECT_EQ(run({"--dot", "-o", folder_ / "a", "--diff", recording + "all.pcap", before}), 0);
  EXPECT_NE(content_of(folder_ / "a").find("<B>10.244.0.8</B> <I>went</I>"), std::string::npos);
  EXPECT_EQ(run({"--html", "-o", folder_ / "a", "--diff", recording + "all.pcap", before}), 0);
  std::set<std::string> changes;
  const json data = data_of(content_of(folder_ / "a"));
  for (const json &lsa : data[0]["lsas"]) changes.insert(lsa["change"]);
  EXPECT_TRUE(changes.contains("went"));
  // Two times of one capture, and one and the end.
  EXPECT_EQ(run({"--dot", "-o", folder_ / "a", "--diff", before, before, "--at", "+0.5"}), 0);
  EXPECT_NE(content_of(folder_ / "a").find("</B> <I>"), std::string::npos);
  EXPECT_EQ(
      run({"--dot", "-o", folder_ / "a", "--diff", before, before, "--at", "+6", "--at", "+6"}), 0);
  EXPECT_EQ(content_of(folder_ / "a").find("</B> <I>"), std::string::npos);
  EXPECT_THROW(run({"--dot", "--diff", before, recording + "all.pcap", "--at", "+1"}),
               tool::UsageError);
  EXPECT_THROW(run({"--dot", "--diff", before}), tool::UsageError);
  EXPECT_THROW(run({"--dot", "--diff", before, before, "--from", before}), tool::UsageError);
  EXPECT_THROW(run({"--dot", "--diff", before, before, "--without-router", "10.244.0.8"}),
               tool::UsageError);
}

TEST_F(GraphCommand, AHyphenIsStandardOutput) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(run({"--dot", "-o", "-"}), 0);
  EXPECT_TRUE(testing::internal::GetCapturedStdout().starts_with("graph \"OSPFv2\" {"));
  EXPECT_FALSE(fs::exists("-"));
}

TEST_F(GraphCommand, NothingToDrawIsSaidWithStatusOne) {
  const auto message = [&](const std::vector<std::string> &words) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(run(words), 1);
    return testing::internal::GetCapturedStderr();
  };
  EXPECT_EQ(message({"--dot", "--v3"}), "ospf-harbor: graph: no OSPFv3 router LSAs are loaded\n");
  EXPECT_EQ(message({"--dot", "--area", "7"}),
            "ospf-harbor: graph: no router LSAs of area 7 are loaded\n");
}

TEST_F(GraphCommand, WrongOptionsAreRefused) {
  EXPECT_THROW(run({}), tool::UsageError);
  EXPECT_THROW(run({"--dot", "--svg"}), tool::UsageError);
  EXPECT_THROW(run({"--dot", "--area", "x"}), tool::UsageError);
}

TEST_F(GraphCommand, WithoutGraphvizItSaysHowToGetItAndKeepsTheFileThatWasThere) {
  std::ofstream(folder_ / "a.svg") << "before";
  const std::string path = getenv("PATH");
  setenv("PATH", folder_.c_str(), 1);
  std::string message;
  try {
    run({"--svg", "-o", folder_ / "a.svg"});
  } catch (const std::runtime_error &failure) {
    message = failure.what();
  }
  setenv("PATH", path.c_str(), 1);
  EXPECT_NE(message.find("install the package graphviz"), std::string::npos) << message;
  EXPECT_EQ(content_of(folder_ / "a.svg"), "before");
}

TEST_F(GraphCommand, WhatGraphvizSaysOfAFailureIsPassedOn) {
  EXPECT_THROW(
      {
        try {
          tool::draw("graph {", "svg");
        } catch (const std::runtime_error &failure) {
          EXPECT_NE(std::string(failure.what()).find("syntax error"), std::string::npos)
              << failure.what();
          throw;
        }
      },
      std::runtime_error);
}

TEST_F(GraphCommand, AFileThatCannotBeWrittenIsNamed) {
  const std::string file = folder_ / "no-such-folder" / "a.dot";
  try {
    run({"--dot", "-o", file});
    ADD_FAILURE() << "was written";
  } catch (const std::runtime_error &failure) {
    EXPECT_NE(std::string(failure.what()).find(file), std::string::npos) << failure.what();
  }
}

}  // namespace
