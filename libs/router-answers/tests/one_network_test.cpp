#include "router_answers/one_network.hpp"

#include <gtest/gtest.h>

namespace {

using namespace router_answers;
using ospf_decode::Scope;

HeldLsa lsa_of(std::uint32_t originator, std::uint32_t sequence, std::uint16_t age = 10,
               bool exact = true) {
  ospf_decode::LsaHeader header;
  header.type = 1;
  header.link_state_id = header.advertising_router = originator;
  header.sequence = sequence;
  header.checksum = 0x1234;
  header.age = age;
  HeldLsa lsa = header_alone(2, header);
  lsa.exact = exact;
  return lsa;
}

Router router_of(const std::string &name, std::uint32_t id) {
  Process process;
  process.version = 2;
  process.instance = {ospf_tables::Family::ipv4, id, {{0, {}}}};
  ospf_tables::Interface interface {};
  interface.name = "lan";
  interface.address = "10.1.0." + std::to_string(id);
  process.instance.areas[0].interfaces.push_back(interface);
  return {name, {process}};
}

const Place backbone{Scope::area, 0, ""};
const LsaKey key_of_one{backbone, {1, 1, 1}};

TEST(OneNetwork, HasTheInterfacesOfAllRouters) {
  Router second = router_of("r2", 2);
  second.processes[0].instance.areas[0].interfaces[0].address.clear();
  const Network network = one_network({router_of("r1", 1), second});
  ASSERT_EQ(network.processes.size(), 1u);
  const ospf_tables::Instance &instance = network.processes[0].instance;
  EXPECT_EQ(instance.router_id, 0u);
  ASSERT_EQ(instance.areas.size(), 1u);
  ASSERT_EQ(instance.areas[0].interfaces.size(), 2u);
  EXPECT_EQ(instance.areas[0].interfaces[0].name, "0.0.0.1@10.1.0.1");
  EXPECT_EQ(instance.areas[0].interfaces[1].name, "0.0.0.2@lan");
}

TEST(OneNetwork, OtherInstancesStandApart) {
  Router router = router_of("r1", 1);
  router.processes.push_back(router.processes[0]);
  router.processes[1].version = 3;
  router.processes[1].instance_id = 64;
  const Network network = one_network({router});
  ASSERT_EQ(network.processes.size(), 2u);
  EXPECT_EQ(network.processes[1].instance.router_id, 0x00ff0340u);
}

TEST(OneNetwork, TheNewestStaysAndTheOthersAreTold) {
  std::vector<Router> routers = {router_of("r1", 1), router_of("r2", 2), router_of("r3", 3)};
  routers[0].processes[0].database.add(backbone, lsa_of(1, 0x80000002));
  routers[1].processes[0].database.add(backbone, lsa_of(1, 0x80000003));
  routers[2].processes[0].database.add(backbone, lsa_of(3, 0x80000001));
  routers[0].processes[0].database.add(backbone, lsa_of(3, 0x80000001));
  routers[1].processes[0].database.add(backbone, lsa_of(3, 0x80000001));
  const Network network = one_network(routers);
  EXPECT_EQ(network.processes[0].database.lsas.at(key_of_one).header.sequence, 0x80000003u);
  ASSERT_EQ(network.differences.size(), 2u);
  EXPECT_EQ(network.differences[0].text,
            "OSPFv2 area 0.0.0.0, Router 0.0.0.1 of 0.0.0.1: r1 has 0x80000002 "
            "(checksum 0x1234), the newest is 0x80000003 (checksum 0x1234) of r2");
  EXPECT_EQ(network.differences[1].text,
            "OSPFv2 area 0.0.0.0, Router 0.0.0.1 of 0.0.0.1: r3 lacks it, r2 has "
            "0x80000003");
}

TEST(OneNetwork, ExactBytesAreTakenOfOneInstance) {
  std::vector<Router> routers = {router_of("r1", 1), router_of("r2", 2)};
  routers[0].processes[0].database.add(backbone, lsa_of(1, 0x80000002, 10, false));
  routers[1].processes[0].database.add(backbone, lsa_of(1, 0x80000002, 12, true));
  const Network network = one_network(routers);
  EXPECT_TRUE(network.processes[0].database.lsas.at(key_of_one).exact);
  EXPECT_TRUE(network.differences.empty());
}

// LSAs of the AS are not sent into stub areas and NSSAs, and those that a router there makes stay
// with it.
TEST(OneNetwork, RoutersThatTakeNoExternalsDoNotLackThem) {
  std::vector<Router> routers = {router_of("r1", 1), router_of("r2", 2), router_of("r3", 3)};
  const Place as{Scope::as, 0, ""};
  routers[0].processes[0].database.add(as, lsa_of(1, 0x80000002));
  routers[1].processes[0].database.add(as, lsa_of(1, 0x80000002));
  routers[2].processes[0].database.add(as, lsa_of(3, 0x80000001));
  EXPECT_EQ(one_network(routers).differences.size(), 3u);
  for (const char *kind : {"nssa", "stub"}) {
    routers[2].processes[0].instance.areas[0].kind = kind;
    const Network network = one_network(routers);
    EXPECT_TRUE(network.differences.empty()) << kind;
    EXPECT_EQ(network.processes[0].database.lsas.size(), 2u);
  }
}

// Of copies that differ in their age alone the one at MaxAge is the newer.
TEST(OneNetwork, AFlushedLsaReplacesItsCopies) {
  std::vector<Router> routers = {router_of("r1", 1), router_of("r2", 2)};
  routers[0].processes[0].database.add(backbone, lsa_of(1, 0x80000002, 10, true));
  routers[1].processes[0].database.add(backbone, lsa_of(1, 0x80000002, 3600, false));
  const Network network = one_network(routers);
  EXPECT_EQ(network.processes[0].database.lsas.at(key_of_one).header.age, 3600);
}

// A flushed LSA is newer than what it flushes; that others have dropped it already is no
// difference.
TEST(OneNetwork, AFlushedLsaIsNoDifference) {
  std::vector<Router> routers = {router_of("r1", 1), router_of("r2", 2)};
  routers[0].processes[0].database.add(backbone, lsa_of(1, 0x80000002, 3600));
  routers[1].processes[0].database.add(backbone, lsa_of(2, 0x80000002));
  routers[0].processes[0].database.add(backbone, lsa_of(2, 0x80000002));
  EXPECT_TRUE(one_network(routers).differences.empty());
}

}  // namespace
