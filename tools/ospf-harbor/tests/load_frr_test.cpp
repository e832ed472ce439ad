// The road from a daemon's JSON into the tables: what is loaded is held against the JSON itself,
// read here on its own, and bad input of every kind is refused in one line with nothing changed.
#include "sources/load_frr.hpp"

#include <gtest/gtest.h>
#include <kelp/primitives.h>
#include <ospf_harbor_oper.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>

#include "ospf_tables/instance_rows.hpp"
#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/tree.hpp"
#include "router_answers/frr_reader.hpp"
#include "shown.hpp"
#include "support/places.hpp"
#include "support/temporary_folder.hpp"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

const fs::path sample = places::sample();

json read(const fs::path &path) { return json::parse(std::ifstream(path)); }

// Everything of the tree that the JSON can be held against, by path.
struct Tree {
  struct SeenNeighbor {
    std::uint32_t state;
    std::string address, dr, bdr;
    std::uint32_t events, queue;
  };
  struct SeenInterface {
    std::uint32_t network_type;
    std::uint16_t cost, hello, dead, retransmit, delay;
    std::uint8_t priority;
    std::string state, dr, bdr;
    std::uint32_t hello_timer, wait_timer;
    kelp_boolean passive, enable, mtu_ignore;
    std::uint32_t authentication;
    std::map<std::string, SeenNeighbor> neighbors;
  };
  std::map<std::uint32_t, std::map<std::string, SeenInterface>> areas;
};

std::string text_of(const ip_address *address) {
  char text[80] = "";
  ip_address_format(address, text, sizeof text);
  return text;
}

Tree::SeenInterface seen(kelp_handle *h, ospf_interface *i) {
  std::uint32_t err = 0;
  Tree::SeenInterface s{};
  s.network_type = ospf_interface_network_type_get_value(h, 0, i, &err);
  s.cost = ospf_interface_cost_get_value(h, 0, i, &err);
  s.hello = ospf_interface_hello_interval_get_value(h, 0, i, &err);
  s.dead = ospf_interface_dead_interval_get_value(h, 0, i, &err);
  s.retransmit = ospf_interface_retransmit_interval_get_value(h, 0, i, &err);
  s.delay = ospf_interface_transmit_delay_get_value(h, 0, i, &err);
  s.priority = ospf_interface_priority_get_value(h, 0, i, &err);
  s.state = kelp_vstring_text(ospf_interface_state_get(h, 0, i, &err));
  s.dr = text_of(ospf_interface_dr_get(h, 0, i, &err));
  s.bdr = text_of(ospf_interface_bdr_get(h, 0, i, &err));
  s.hello_timer = ospf_interface_hello_timer_get_value(h, 0, i, &err);
  s.wait_timer = ospf_interface_wait_timer_get_value(h, 0, i, &err);
  s.passive = ospf_interface_passive_get_value(h, 0, i, &err);
  s.enable = ospf_interface_enable_get_value(h, 0, i, &err);
  s.mtu_ignore = ospf_interface_mtu_ignore_get_value(h, 0, i, &err);
  s.authentication = ospf_authentication_auth_type_selection_get_value(
      h, 0, ospf_interface_authentication_val_get(h, 0, i, &err), &err);
  auto *table = ospf_interface_neighbor_get_by_ref(h, 0, i, &err);
  for (auto *r = tbl_ospf_neighbor_ospf_neighbor_neighbor_id_get_first(h, 0, table, &err);
       r != nullptr;
       r = tbl_ospf_neighbor_ospf_neighbor_neighbor_id_get_next(h, 0, table, r, &err)) {
    ospf_neighbor *n = tbl_ospf_neighbor_ospf_neighbor_get_field(h, 0, r);
    ospf_nbr_stat *stats = ospf_neighbor_stats_get(h, 0, n, &err);
    s.neighbors[text_of(ospf_neighbor_neighbor_id_get(h, 0, n, &err))] = {
        ospf_neighbor_state_get_value(h, 0, n, &err),
        text_of(ospf_neighbor_address_get(h, 0, n, &err)),
        text_of(ospf_neighbor_dr_get(h, 0, n, &err)),
        text_of(ospf_neighbor_bdr_get(h, 0, n, &err)),
        ospf_nbr_stat_nbr_event_count_get_value(h, 0, stats, &err),
        ospf_nbr_stat_nbr_retrans_qlen_get_value(h, 0, stats, &err)};
  }
  EXPECT_EQ(err, 0u);
  return s;
}

Tree read_instance(ospf_tables::Session &session, std::uint32_t family, const std::string &router) {
  kelp_handle *h = session.handle();
  std::uint32_t err = 0;
  Tree tree;
  bool found = false;
  auto *roots = tbl_ospf_rev1_table_open(h, 0, "ospf", 1, &err);
  EXPECT_NE(roots, nullptr);
  auto *root = tbl_ospf_rev1_ospf_rev1_singleton_id_get_first(h, 0, roots, &err);
  auto *instances =
      ospf_rev1_instance_get_by_ref(h, 0, tbl_ospf_rev1_ospf_rev1_get_field(h, 0, root), &err);
  for (auto *i = tbl_ospf_instance_rev1_ospf_instance_rev1_key__get_first(h, 0, instances, &err);
       i != nullptr;
       i = tbl_ospf_instance_rev1_ospf_instance_rev1_key__get_next(h, 0, instances, i, &err)) {
    auto *key = tbl_ospf_instance_rev1_ospf_instance_rev1_key_get_field(h, 0, i);
    if (ospf_instance_rev1_key_af_get_value(h, 0, key, &err) != family) continue;
    if (ospf_tables::dotted(ospf_instance_rev1_key_router_id_get_value(h, 0, key, &err)) !=
        router) {
      continue;
    }
    EXPECT_FALSE(found) << "two instances of one key";
    found = true;
    auto *areas = ospf_instance_rev1_area_get_by_ref(
        h, 0, tbl_ospf_instance_rev1_ospf_instance_rev1_get_field(h, 0, i), &err);
    for (auto *a = tbl_ospf_area_ospf_area_area_id_get_first(h, 0, areas, &err); a != nullptr;
         a = tbl_ospf_area_ospf_area_area_id_get_next(h, 0, areas, a, &err)) {
      ospf_area *area = tbl_ospf_area_ospf_area_get_field(h, 0, a);
      auto &interfaces = tree.areas[ospf_area_area_id_get_value(h, 0, area, &err)];
      auto *table = ospf_area_interfaces_get_by_ref(h, 0, area, &err);
      for (auto *r = tbl_ospf_interface_ospf_interface_name_get_first(h, 0, table, &err);
           r != nullptr;
           r = tbl_ospf_interface_ospf_interface_name_get_next(h, 0, table, r, &err)) {
        ospf_interface *interface = tbl_ospf_interface_ospf_interface_get_field(h, 0, r);
        interfaces[kelp_vstring_text(ospf_interface_name_get(h, 0, interface, &err))] =
            seen(h, interface);
      }
    }
  }
  EXPECT_TRUE(found) << router;
  EXPECT_EQ(err, 0u);
  return tree;
}

std::uint32_t area_number(std::string text) {
  text = text.substr(0, text.find(" ["));
  if (text.find('.') == std::string::npos) return static_cast<std::uint32_t>(std::stoul(text));
  std::uint32_t number = 0;
  std::istringstream in(text);
  for (std::string octet; std::getline(in, octet, '.');) {
    number = number << 8 | static_cast<std::uint32_t>(std::stoul(octet));
  }
  return number;
}

std::uint32_t state_number(const std::string &text) {
  if (text.starts_with("Full")) return NBR_STATE_FULL;
  if (text.starts_with("2-Way") || text == "Twoway") return NBR_STATE_TWO_WAY;
  if (text.starts_with("Init")) return NBR_STATE_INIT;
  ADD_FAILURE() << "the sample has no state " << text;
  return 0;
}

std::uint32_t type_number(const std::string &text) {
  return text == "POINTOPOINT" ? POINT_TO_POINT : BROADCAST;
}

std::string value_or_empty(const json &object, const char *key) {
  return object.contains(key) ? object[key].get<std::string>() : std::string();
}

class LoadedSample : public testing::TestWithParam<std::string> {
 protected:
  LoadedSample() { tool::load_frr(session_, {(sample / GetParam()).string()}); }
  ospf_tables::Session session_;
};

TEST_P(LoadedSample, HoldsWhatTheIpv4AnswersSay) {
  const fs::path folder = sample / GetParam();
  const json process = read(folder / "ip-ospf.json");
  const json interfaces = read(folder / "ip-ospf-interface.json")["interfaces"];
  const json neighbors = read(folder / "ip-ospf-neighbor-detail.json")["neighbors"];
  const Tree tree = read_instance(session_, ADDR_FAMILY_IPV4, process["routerId"]);
  ASSERT_EQ(tree.areas.size(), process["areas"].size());
  std::size_t count = 0;
  for (const auto &[area, list] : tree.areas) count += list.size();
  EXPECT_EQ(count, interfaces.size());
  std::size_t expected_neighbors = 0;
  for (const auto &[name, j] : interfaces.items()) {
    SCOPED_TRACE(name);
    const auto &i = tree.areas.at(area_number(j["area"])).at(name);
    EXPECT_EQ(i.network_type, type_number(j["networkType"]));
    EXPECT_EQ(i.cost, j["cost"].get<int>());
    EXPECT_EQ(i.hello, j["timerMsecs"].get<int>() / 1000);
    EXPECT_EQ(i.dead, j["timerDeadSecs"].get<int>());
    EXPECT_EQ(i.retransmit, j["timerRetransmitSecs"].get<int>());
    EXPECT_EQ(i.delay, j["transmitDelaySecs"].get<int>());
    EXPECT_EQ(i.priority, j["priority"].get<int>());
    EXPECT_EQ(i.state, j["state"].get<std::string>());
    EXPECT_EQ(i.dr, value_or_empty(j, "drAddress"));
    EXPECT_EQ(i.bdr, value_or_empty(j, "bdrAddress"));
    EXPECT_EQ(i.hello_timer, j.value("timerHelloInMsecs", 0u));
    EXPECT_EQ(i.wait_timer, j["timerWaitSecs"].get<unsigned>() * 1000);
    EXPECT_EQ(i.passive, j.value("timerPassiveIface", false) ? 1u : 0u);
    EXPECT_EQ(i.enable, j["ospfEnabled"].get<bool>() ? 1u : 0u);
    EXPECT_EQ(i.authentication, j.contains("authentication") ? std::uint32_t{OSPF_AUTH_TRAILER_KEY}
                                                             : std::uint32_t{OSPF_AUTH_TYPE_NONE});
    EXPECT_EQ(i.neighbors.size(), j["nbrCount"].get<std::size_t>());
    expected_neighbors += i.neighbors.size();
  }
  std::size_t listed = 0;
  for (const auto &[id, list] : neighbors.items()) {
    for (const json &j : list) {
      ++listed;
      const auto &n = tree.areas.at(area_number(j["areaId"]))
                          .at(j["ifaceName"].get<std::string>())
                          .neighbors.at(id);
      EXPECT_EQ(n.state, state_number(j["nbrState"]));
      EXPECT_EQ(n.address, j["ifaceAddress"].get<std::string>());
      EXPECT_EQ(n.dr, j["routerDesignatedId"].get<std::string>());
      EXPECT_EQ(n.bdr, j["routerDesignatedBackupId"].get<std::string>());
      EXPECT_EQ(n.events, j["stateChangeCounter"].get<unsigned>());
      EXPECT_EQ(n.queue, j["linkStateRetransmissionListCounter"].get<unsigned>());
    }
  }
  EXPECT_EQ(listed, expected_neighbors);
}

TEST_P(LoadedSample, HoldsWhatTheIpv6AnswersSay) {
  const fs::path folder = sample / GetParam();
  const json process = read(folder / "ipv6-ospf6.json");
  const json interfaces = read(folder / "ipv6-ospf6-interface.json");
  const json neighbors = read(folder / "ipv6-ospf6-neighbor-detail.json");
  const Tree tree = read_instance(session_, ADDR_FAMILY_IPV6, process["routerId"]);
  ASSERT_EQ(tree.areas.size(), process["areas"].size());
  std::size_t count = 0;
  std::size_t attached = 0;
  for (const auto &[area, list] : tree.areas) count += list.size();
  for (const auto &[name, j] : interfaces.items()) {
    if (!j.value("attachedToArea", false)) continue;
    ++attached;
    SCOPED_TRACE(name);
    const auto &i = tree.areas.at(area_number(j["areaId"])).at(name);
    EXPECT_EQ(i.network_type,
              type_number(j.contains("operatingAsType") ? j["operatingAsType"] : j["type"]));
    EXPECT_EQ(i.cost, j["cost"].get<int>());
    EXPECT_EQ(i.hello, j["timerIntervalsConfigHello"].get<int>());
    EXPECT_EQ(i.dead, j["timerIntervalsConfigDead"].get<int>());
    EXPECT_EQ(i.retransmit, j["timerIntervalsConfigRetransmit"].get<int>());
    EXPECT_EQ(i.delay, j["transmitDelaySec"].get<int>());
    EXPECT_EQ(i.priority, j["priority"].get<int>());
    EXPECT_EQ(i.state, j["ospf6InterfaceState"].get<std::string>());
    EXPECT_EQ(i.dr, value_or_empty(j, "dr"));
    EXPECT_EQ(i.bdr, value_or_empty(j, "bdr"));
    EXPECT_EQ(i.mtu_ignore, j["mtuMismatchDetection"] == "disabled" ? 1u : 0u);
    EXPECT_EQ(i.authentication, j["authInfo"]["authType"] == "NULL"
                                    ? std::uint32_t{OSPF_AUTH_TYPE_NONE}
                                    : std::uint32_t{OSPF_AUTH_TRAILER_KEY});
  }
  EXPECT_EQ(count, attached);
  std::size_t held = 0;
  for (const auto &[area, list] : tree.areas) {
    for (const auto &[name, interface] : list) held += interface.neighbors.size();
  }
  EXPECT_EQ(held, neighbors.size());
  for (const auto &[key, j] : neighbors.items()) {
    const auto &n = tree.areas.at(area_number(j["area"]))
                        .at(j["interface"].get<std::string>())
                        .neighbors.at(key.substr(0, key.find('%')));
    EXPECT_EQ(n.state, state_number(j["neighborState"]));
    EXPECT_EQ(n.address, j["linkLocalAddress"].get<std::string>());
    EXPECT_EQ(n.dr, j["neighborDRouter"].get<std::string>());
    EXPECT_EQ(n.bdr, j["neighborBdRouter"].get<std::string>());
    EXPECT_EQ(n.queue, j["reTransListCount"].get<unsigned>());
  }
}

INSTANTIATE_TEST_SUITE_P(Campus, LoadedSample, testing::Values("r1", "r2", "r3", "r4", "r5", "r6"));

// --- the tree as it is shown -------------------------------------------------------------------

TEST(Show, PrintsEveryRowOfTheTree) {
  ospf_tables::Session session;
  tool::load_frr(session, {(sample / "r1").string()});
  const std::string all = shown(session, "");
  EXPECT_NE(all.find("record@tbl_ospf_rev1: {"), std::string::npos);
  EXPECT_NE(all.find("instance/ipv4,10.255.0.1/area/0.0.0.0/interface/core/neighbor/10.255.0.2"),
            std::string::npos);
  EXPECT_NE(all.find("instance/ipv6,10.255.0.1/area/0.0.0.1"), std::string::npos);
  EXPECT_NE(all.find("state@nbr_state_type:NBR_STATE_FULL"), std::string::npos);
}

TEST(Show, APathNarrowsToRowsAndWhatIsBelowThem) {
  ospf_tables::Session session;
  tool::load_frr(session, {(sample / "r1").string()});
  const std::string part = shown(session, "instance/ipv4,10.255.0.1/area/0.0.0.0/interface/core");
  EXPECT_EQ(part.find("tbl_ospf_area"), std::string::npos);
  EXPECT_NE(part.find("tbl_ospf_interface"), std::string::npos);
  EXPECT_NE(part.find("neighbor/10.255.0.2"), std::string::npos);
  EXPECT_EQ(part.find("interface/to-r2"), std::string::npos);
  EXPECT_EQ(shown(session, "area/0/interface/core"), shown(session, "area/0.0.0.0/interface/core"));
  EXPECT_TRUE(shown(session, "area/9.9.9.9").empty());
}

TEST(Show, APathThatNoTreeCanHaveIsRefused) {
  ospf_tables::Session session;
  tool::load_frr(session, {(sample / "r1").string()});
  EXPECT_THROW(tool::show(session, "areas/0.0.0.0", stdout), ospf_tables::InputError);
  EXPECT_THROW(tool::show(session, "interface/core/area/0.0.0.0", stdout), ospf_tables::InputError);
}

TEST(Load, ARouterLoadedAgainTakesThePlaceOfTheFirst) {
  ospf_tables::Session session;
  tool::load_frr(session, {(sample / "r1").string()});
  const std::string once = shown(session, "");
  tool::load_frr(session, {(sample / "r1").string()});
  EXPECT_EQ(shown(session, ""), once);
}

TEST(Load, SeveralRoutersStandSideBySide) {
  ospf_tables::Session session;
  tool::load_frr(session, {(sample / "r1").string(), (sample / "r2").string()});
  const std::string all = shown(session, "");
  EXPECT_NE(all.find("instance/ipv4,10.255.0.1\n"), std::string::npos);
  EXPECT_NE(all.find("instance/ipv4,10.255.0.2\n"), std::string::npos);
}

// --- bad input -----------------------------------------------------------------------------------

class BadInput : public testing::Test {
 protected:
  BadInput() {
    for (const auto &entry : fs::directory_iterator(sample / "r1")) {
      fs::copy(entry.path(), folder_ / entry.path().filename());
    }
    tool::load_frr(session_, {(sample / "r2").string()});
    before_ = shown(session_, "");
  }

  void change(const char *file, const std::string &from, const std::string &to) {
    temporary_.change(file, from, to);
  }

  // Loading fails with one line that holds all of these, and the tree is as it was.
  void expect_refused(const std::vector<std::string> &parts) {
    try {
      tool::load_frr(session_, {folder_.string()});
      ADD_FAILURE() << "was loaded";
    } catch (const ospf_tables::InputError &failure) {
      const std::string line = failure.what();
      for (const std::string &part : parts) {
        EXPECT_NE(line.find(part), std::string::npos) << part << " is not in: " << line;
      }
      if (!line.starts_with("cannot open ")) {
        EXPECT_NE(line.find("found "), std::string::npos) << line;
        EXPECT_NE(line.find("expected "), std::string::npos) << line;
      }
      EXPECT_EQ(line.find('\n'), std::string::npos) << line;
    }
    EXPECT_EQ(shown(session_, ""), before_);
  }

  const TemporaryFolder temporary_;
  const fs::path &folder_ = temporary_.path();
  ospf_tables::Session session_;
  std::string before_;
};

TEST_F(BadInput, AMissingFolder) {
  fs::remove_all(folder_);
  expect_refused({folder_.string()});
}
TEST_F(BadInput, AFolderWithoutTheExpectedFiles) {
  for (const auto &entry : fs::directory_iterator(folder_)) fs::remove(entry.path());
  expect_refused({folder_.string(), "ip-ospf.json"});
}
TEST_F(BadInput, AFileInPlaceOfAFolder) {
  fs::remove_all(folder_);
  std::ofstream(folder_) << "{}";
  expect_refused({folder_.string(), "a folder"});
}
TEST_F(BadInput, AMissingFile) {
  fs::remove(folder_ / "ip-ospf-interface.json");
  expect_refused({"ip-ospf-interface.json", "No such file"});
}
TEST_F(BadInput, MalformedJson) {
  change("ip-ospf-interface.json", "\"ifUp\":true,", "\"ifUp\":tru,");
  expect_refused({"ip-ospf-interface.json", "line 4, column"});
}
TEST_F(BadInput, ACutFile) {
  std::ofstream(folder_ / "ipv6-ospf6.json") << "{\"routerId\": \"1.2";
  expect_refused({"ipv6-ospf6.json", "line 1"});
}
TEST_F(BadInput, AValueOfTheWrongType) {
  change("ip-ospf-interface.json", "\"cost\":10", "\"cost\":\"ten\"");
  expect_refused({"ip-ospf-interface.json", "/interfaces/core/cost", "the text \"ten\""});
}
TEST_F(BadInput, ANumberThatDoesNotFit) {
  change("ip-ospf-interface.json", "\"cost\":10", "\"cost\":70000");
  expect_refused({"/interfaces/core/cost", "70000", "65535"});
}
TEST_F(BadInput, ANumberThatNothingHolds) {
  change("ip-ospf-interface.json", "\"cost\":10", "\"cost\":65E536");
  expect_refused({"ip-ospf-interface.json: line ", "\"65E536\"", "a number of a usual size"});
}
TEST_F(BadInput, AMissingValue) {
  change("ip-ospf-interface.json", "\"cost\":10", "\"kost\":10");
  expect_refused({"/interfaces/core/cost", "nothing"});
}
TEST_F(BadInput, AnUnknownNeighbourState) {
  change("ip-ospf-neighbor-detail.json", "Full\\/Backup", "Fool\\/Backup");
  expect_refused({"ip-ospf-neighbor-detail.json", "nbrState", "Fool", "Loading, Full"});
}
TEST_F(BadInput, AnUnknownIpv6NeighbourState) {
  change("ipv6-ospf6-neighbor-detail.json", "\"neighborState\":\"Full\"",
         "\"neighborState\":\"Fool\"");
  expect_refused({"ipv6-ospf6-neighbor-detail.json", "neighborState", "Fool"});
}
TEST_F(BadInput, AnUnknownAreaId) {
  change("ip-ospf-interface.json", "\"area\":\"0.0.0.0\"", "\"area\":\"0.0.0.9\"");
  expect_refused({"ip-ospf-interface.json", "area", "0.0.0.9", "0.0.0.0, 0.0.0.1"});
}
TEST_F(BadInput, AnAreaIdThatIsNone) {
  change("ip-ospf-interface.json", "\"area\":\"0.0.0.0\"", "\"area\":\"zero\"");
  expect_refused({"area", "zero", "dotted quad"});
}
TEST_F(BadInput, ANeighbourOnAnUnknownInterface) {
  change("ip-ospf-neighbor-detail.json", "\"ifaceName\":\"core\"", "\"ifaceName\":\"cure\"");
  expect_refused({"ifaceName", "cure"});
}
TEST_F(BadInput, AnAddressThatIsNone) {
  change("ip-ospf-neighbor-detail.json", "\"ifaceAddress\":\"10.0.0.2\"",
         "\"ifaceAddress\":\"10.0.0\"");
  expect_refused({"ifaceAddress", "10.0.0"});
}
TEST_F(BadInput, UnknownKeysArePassedOverAndCounted) {
  router_answers::PassedOver plain;
  router_answers::read_frr(folder_.string(), plain);
  change("ip-ospf-interface.json", "\"ifUp\":true,", "\"ifUp\":true, \"fromTheFuture\":1,");
  router_answers::PassedOver more;
  router_answers::read_frr(folder_.string(), more);
  EXPECT_EQ(more.values, plain.values + 1);
  EXPECT_TRUE(more.keys.contains("fromTheFuture"));
}

}  // namespace
