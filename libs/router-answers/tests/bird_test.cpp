#include <ospf_harbor_oper/types.h>

#include "answers_folder.hpp"
#include "ospf_decode/lsa_v2.hpp"

namespace {

using namespace router_answers;

class Bird : public AnswersFolder {
 protected:
  Bird() {
    write("main-interface.txt",
          "main:\nInterface lan (10.90.0.0/24)\n\tType: broadcast\n\tArea: 0.0.0.7 (7)\n"
          "\tState: Backup\n\tPriority: 50\n\tCost: 10\n\tHello timer: 2\n\tWait timer: 8\n"
          "\tDead timer: 9\n\tRetransmit timer: 5\n\tDesignated router (ID): 10.0.0.1\n"
          "\tDesignated router (IP): 10.90.0.1\n"
          "Virtual link vlink0 to 10.0.0.5\n\tPeer IP: ::\n\tTransit area: 0.0.0.7 (7)\n"
          "\tState: PtP\n");
    write("main-neighbors.txt",
          "main:\nRouter ID   \tPri\t     State     \tDTime\tInterface  Router IP\n"
          "10.0.0.1  \t  9\tFull/DR   \t 7.8\tlan        10.90.0.1\n"
          "10.0.0.3  \t  1\t2-Way/Other\t 7.8\tlan        10.90.0.3\n");
    write("main-state-all.txt",
          "\narea 0.0.0.7\n\n\trouter 10.0.0.2\n\t\tdistance 0\n"
          "\t\tnetwork 10.90.0.0/24 metric 10\n\t\tstubnet 10.0.0.2/32 metric 0\n\n"
          "\tnetwork 10.90.0.0/24\n\t\tdr 10.0.0.1\n\t\tdistance 10\n\t\trouter 10.0.0.1\n"
          "\t\trouter 10.0.0.2\n\nother ASBRs\n\n\trouter 10.0.0.9\n"
          "\t\texternal 192.0.2.0/24 metric2 25 via 10.90.0.99 tag 0000000b\n");
    write("main-lsadb.txt",
          "\nGlobal\n\n Type   LS ID           Router          Sequence   Age  Checksum\n"
          " 0005  192.0.2.0       10.0.0.9       80000001    32    0001\n\n"
          "Area 0.0.0.7\n\n Type   LS ID           Router          Sequence   Age  Checksum\n"
          " 0001  10.0.0.2        10.0.0.2       80000002    22    0001\n"
          " 0002  10.90.0.1       10.0.0.1       80000003    23    0001\n"
          " 000a  4.0.0.0         10.0.0.1       80000003    23    0001\n");
  }

  void change(const std::string &file, const std::string &from, const std::string &to) {
    temporary_.change(file, from, to);
  }
};

TEST_F(Bird, InterfacesAndNeighbours) {
  const Router router = read();
  ASSERT_EQ(router.processes.size(), 1u);
  const Process &process = router.processes[0];
  EXPECT_EQ(process.version, 2);
  EXPECT_EQ(process.instance.family, ospf_tables::Family::ipv4);
  EXPECT_EQ(process.instance.router_id, 0x0a000002u);
  ASSERT_EQ(process.instance.areas.size(), 2u);
  const ospf_tables::Area &seven = process.instance.areas[0];
  EXPECT_EQ(seven.id, 7u);
  ASSERT_EQ(seven.interfaces.size(), 1u);
  const ospf_tables::Interface &lan = seven.interfaces[0];
  EXPECT_EQ(lan.name, "lan");
  EXPECT_EQ(lan.network_type, static_cast<std::uint32_t>(BROADCAST));
  EXPECT_EQ(lan.state, "Backup");
  EXPECT_EQ(lan.cost, 10);
  EXPECT_EQ(lan.priority, 50);
  EXPECT_EQ(lan.hello_interval, 2);
  EXPECT_EQ(lan.dead_interval, 9);
  EXPECT_EQ(lan.wait_timer, 8000u);
  EXPECT_EQ(lan.retransmit_interval, 5);
  EXPECT_EQ(lan.dr, "10.90.0.1");
  EXPECT_FALSE(lan.passive);
  ASSERT_EQ(lan.neighbors.size(), 2u);
  EXPECT_EQ(lan.neighbors[0].router_id, "10.0.0.1");
  EXPECT_EQ(lan.neighbors[0].address, "10.90.0.1");
  EXPECT_EQ(lan.neighbors[0].state, static_cast<std::uint32_t>(NBR_STATE_FULL));
  EXPECT_EQ(lan.neighbors[1].state, static_cast<std::uint32_t>(NBR_STATE_TWO_WAY));
  // A virtual link belongs to the backbone.
  EXPECT_EQ(process.instance.areas[1].id, 0u);
  EXPECT_EQ(process.instance.areas[1].interfaces.at(0).name, "vlink0");
}

TEST_F(Bird, AnInstanceIdMakesVersionAndFamily) {
  change("main-interface.txt", "(10.90.0.0/24)", "(IID 64)");
  const Process process = read().processes.at(0);
  EXPECT_EQ(process.version, 3);
  EXPECT_EQ(process.instance_id, 64);
  EXPECT_EQ(process.instance.family, ospf_tables::Family::ipv4);
}

TEST_F(Bird, LsasAreHeadersWithWhatTheStateSays) {
  const Process process = read().processes.at(0);
  using ospf_decode::Scope;
  const auto &lsas = process.database.lsas;
  ASSERT_EQ(lsas.size(), 4u);
  const HeldLsa &router = lsas.at({{Scope::area, 7, ""}, {1, 0x0a000002, 0x0a000002}});
  EXPECT_FALSE(router.exact);
  ASSERT_EQ(router.raw.size(), 24u + 2 * 12);
  // The link-state ID of the network that the prefix names.
  EXPECT_EQ((std::vector<std::uint8_t>(router.raw.begin() + 24, router.raw.begin() + 28)),
            (std::vector<std::uint8_t>{10, 90, 0, 1}));
  const HeldLsa &network = lsas.at({{Scope::area, 7, ""}, {2, 0x0a5a0001, 0x0a000001}});
  EXPECT_EQ(network.raw.size(), 32u);
  EXPECT_FALSE(lsas.at({{Scope::area, 7, ""}, {10, 0x04000000, 0x0a000001}}).has_body());
  const HeldLsa &external = lsas.at({{Scope::as, 0, ""}, {5, 0xc0000200, 0x0a000009}});
  EXPECT_EQ(
      (std::vector<std::uint8_t>(external.raw.begin() + 20, external.raw.end())),
      (std::vector<std::uint8_t>{255, 255, 255, 0, 0x80, 0, 0, 25, 10, 90, 0, 99, 0, 0, 0, 11}));
}

TEST_F(Bird, TheChecksumFindsTheOptions) {
  using ospf_decode::Scope;
  const LsaKey key{{Scope::as, 0, ""}, {5, 0xc0000200, 0x0a000009}};
  HeldLsa lsa = read().processes.at(0).database.lsas.at(key);
  lsa.raw[2] = 0x42;
  correct_checksum(lsa.raw);
  char digits[8];
  std::snprintf(digits, sizeof digits, "%04x", lsa.raw[16] << 8 | lsa.raw[17]);
  change("main-lsadb.txt", "32    0001", std::string("32    ") + digits);
  const HeldLsa found = read().processes.at(0).database.lsas.at(key);
  EXPECT_TRUE(found.exact);
  EXPECT_EQ(found.header.options, 0x42);
}

TEST_F(Bird, WithoutItsStateThereAreHeaders) {
  std::filesystem::remove(folder_ / "main-state-all.txt");
  expect_refused({"no router ID", "bird.conf"});
  write("bird.conf", "log stderr all;\nrouter id 10.0.0.2;\n");
  const Process process = read().processes.at(0);
  EXPECT_EQ(process.instance.router_id, 0x0a000002u);
  for (const auto &[key, lsa] : process.database.lsas) EXPECT_FALSE(lsa.has_body());
  EXPECT_EQ(process.database.lsas.size(), 4u);
}

TEST_F(Bird, BadAnswersAreRefusedByFileAndLine) {
  change("main-neighbors.txt", "Full/DR", "Fool/DR");
  expect_refused({"main-neighbors.txt", "line 3", "Fool/DR", "neighbour state"});
  change("main-neighbors.txt", "Fool/DR   \t 7.8\tlan ", "Full/DR   \t 7.8\tlen ");
  expect_refused({"main-neighbors.txt", "line 3", "an interface"});
  change("main-neighbors.txt", "len ", "lan ");
  change("main-lsadb.txt", "80000002", "8000000x");
  expect_refused({"main-lsadb.txt", "line 10", "8000000x", "sequence number"});
  change("main-lsadb.txt", "8000000x    22    0001", "80000002    22");
  expect_refused({"main-lsadb.txt", "line 10", "six columns"});
  change("main-lsadb.txt", "80000002    22", "80000002    22    0001");
  change("main-state-all.txt", "metric2 25", "metric2 16777216");
  expect_refused({"main-state-all.txt", "a metric"});
  change("main-state-all.txt", "metric2 16777216", "metric2 25");
  change("main-interface.txt", "Type: broadcast", "Type: star");
  expect_refused({"main-interface.txt", "line 3", "Type: star", "ptmp"});
}

}  // namespace
