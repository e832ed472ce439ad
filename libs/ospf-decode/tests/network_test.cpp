// Interfaces, links and neighbour states as they follow from packets.
#include "ospf_decode/network.hpp"

#include <gtest/gtest.h>

#include "support/bytes.hpp"

namespace ospf_decode::testing {
namespace {

constexpr std::uint32_t all_routers = 0xe0000005;
constexpr std::uint32_t address_a = 0x0a000001;
constexpr std::uint32_t address_b = 0x0a000002;
constexpr std::uint32_t router_a = 0x01010101;
constexpr std::uint32_t router_b = 0x02020202;

struct Scene {
  Network network;
  FrameDecoder decoder{network};
  std::uint64_t number = 0;
  Time now = 1000 * second;

  void packet(std::uint32_t router, std::uint32_t source, unsigned type, const Octets &body,
              std::uint32_t destination = all_routers, std::uint32_t area = 0) {
    const Octets ip =
        make_ipv4({.source = source, .destination = destination},
                  make_packet_v2({.type = type, .router = router, .area = area}, body));
    Frame frame;
    frame.link_type = 101;
    frame.time = now;
    frame.number = ++number;
    frame.wire_length = static_cast<std::uint32_t>(ip.size());
    frame.data = ip;
    decoder.decode(frame);
    EXPECT_EQ(decoder.errors().total(), 0u);
  }
  void hello_a(std::initializer_list<std::uint32_t> neighbors, std::uint32_t dr = 0,
               std::uint32_t destination = all_routers) {
    packet(router_a, address_a, 1, make_hello_v2(neighbors, 0xffffff00, 2, dr), destination);
  }
  void hello_b(std::initializer_list<std::uint32_t> neighbors, std::uint32_t dr = 0,
               std::uint32_t destination = all_routers) {
    packet(router_b, address_b, 1, make_hello_v2(neighbors, 0xffffff00, 2, dr), destination);
  }
  void description(bool from_a, unsigned flags) {
    const Octets body = Writer().u16(1500).u8(2).u8(flags).u32(5);
    if (from_a) {
      packet(router_a, address_a, 2, body, address_b);
    } else {
      packet(router_b, address_b, 2, body, address_a);
    }
  }
  // How A has B.
  std::optional<Neighbor> a_has_b() const {
    for (const Neighbor &neighbor : network.neighbors(now)) {
      if (network.interfaces()[neighbor.interface].router_id == router_a &&
          neighbor.router_id == router_b) {
        return neighbor;
      }
    }
    return std::nullopt;
  }
  NeighborState state() const {
    const auto neighbor = a_has_b();
    return neighbor ? neighbor->state : NeighborState::down;
  }
};

TEST(Neighbors, ClimbToFull) {
  Scene scene;
  scene.hello_a({});
  EXPECT_FALSE(scene.a_has_b());
  scene.hello_b({});
  EXPECT_EQ(scene.state(), NeighborState::init);
  scene.hello_b({router_a});
  EXPECT_EQ(scene.state(), NeighborState::two_way);
  scene.hello_a({router_b});
  scene.description(true, 7);
  EXPECT_EQ(scene.state(), NeighborState::ex_start);
  scene.description(false, 7);
  scene.description(true, 2);
  EXPECT_EQ(scene.state(), NeighborState::exchange);
  scene.description(false, 1);
  EXPECT_EQ(scene.state(), NeighborState::exchange) << "A has more to say";
  scene.packet(router_a, address_a, 3, Writer().u32(1).u32(9).u32(9), address_b);
  scene.description(true, 0);
  EXPECT_EQ(scene.state(), NeighborState::loading);
  scene.packet(
      router_b, address_b, 4,
      make_update(1, {make_lsa_v2({.type = 1, .id = 9, .router = 9}, Writer().u8(0).u8(0).u16(0))}),
      address_a);
  EXPECT_EQ(scene.state(), NeighborState::full);
  EXPECT_EQ(scene.a_has_b()->evidence, Evidence::description);
  EXPECT_EQ(scene.a_has_b()->address, IpAddress::v4(address_b));
  EXPECT_EQ(scene.network.interfaces().at(0).mtu, 1500);
}

TEST(Neighbors, FallBackWhenTheyStartAgain) {
  Scene scene;
  scene.hello_a({router_b});
  scene.hello_b({router_a});
  scene.description(true, 0);
  scene.description(false, 0);
  ASSERT_EQ(scene.state(), NeighborState::full);
  scene.description(true, 7);
  EXPECT_EQ(scene.state(), NeighborState::ex_start);
  scene.now += 15 * second;
  scene.hello_b({});
  EXPECT_EQ(scene.state(), NeighborState::init);
  scene.now += 15 * second;
  scene.hello_b({router_a});
  EXPECT_EQ(scene.state(), NeighborState::two_way) << "the old exchange counts no more";
}

TEST(Neighbors, AreDownAfterTheDeadInterval) {
  Scene scene;
  scene.hello_a({router_b});
  scene.hello_b({router_a});
  scene.now += 40 * second;
  EXPECT_EQ(scene.state(), NeighborState::two_way);
  scene.now += second;
  EXPECT_EQ(scene.state(), NeighborState::down);
}

TEST(Neighbors, FullIsToldFromTheDatabase) {
  Scene scene;
  scene.hello_a({router_b});
  scene.hello_b({router_a});
  EXPECT_EQ(scene.state(), NeighborState::two_way);
  scene.packet(
      router_b, address_b, 4,
      make_update(
          1, {make_lsa_v2(
                 {.type = 1, .id = router_a, .router = router_a},
                 Writer().u8(0).u8(0).u16(1).u32(router_b).u32(address_a).u8(1).u8(0).u16(25))}));
  EXPECT_EQ(scene.state(), NeighborState::full);
  EXPECT_EQ(scene.a_has_b()->evidence, Evidence::database);
  EXPECT_EQ(scene.network.interface_cost(0), 25);
  EXPECT_FALSE(scene.network.interface_cost(1));
}

TEST(Neighbors, FullIsToldFromFloodingOnALinkOfTwo) {
  Scene scene;
  scene.hello_a({router_b});
  scene.hello_b({router_a});
  const Octets lsa = make_lsa_v2({.type = 1, .id = 9, .router = 9}, Writer().u8(0).u8(0).u16(0));
  scene.packet(router_b, address_b, 4, make_update(1, {lsa}));
  EXPECT_EQ(scene.state(), NeighborState::two_way) << "that was B's word";
  scene.packet(router_a, address_a, 5, Octets(lsa.begin(), lsa.begin() + 20));
  EXPECT_EQ(scene.state(), NeighborState::full);
  EXPECT_EQ(scene.a_has_b()->evidence, Evidence::flooding);
  // With a third router on the link it may have been meant for that one.
  scene.packet(0x03030303, 0x0a000003, 1, make_hello_v2({router_a, router_b}));
  EXPECT_EQ(scene.state(), NeighborState::two_way);
}

TEST(Neighbors, TheDesignatedRouterIsFullWithWhomItsNetworkLsaLists) {
  Scene scene;
  scene.hello_a({router_b}, address_a);
  scene.hello_b({router_a}, address_a);
  EXPECT_EQ(scene.state(), NeighborState::two_way);
  scene.packet(router_a, address_a, 4,
               make_update(1, {make_lsa_v2({.type = 2, .id = address_a, .router = router_a},
                                           Writer().u32(0xffffff00).u32(router_a).u32(router_b))}));
  EXPECT_EQ(scene.state(), NeighborState::full);
  EXPECT_EQ(scene.network.network_type(0), NetworkType::broadcast);
  EXPECT_EQ(scene.network.interface_state(0), InterfaceState::designated);
  EXPECT_EQ(scene.network.interface_state(1), InterfaceState::dr_other);
}

TEST(Neighbors, OneThatIsOnlyHeardByTheRouter) {
  Scene scene;
  scene.hello_a({router_b});
  ASSERT_TRUE(scene.a_has_b());
  EXPECT_EQ(scene.state(), NeighborState::init);
  EXPECT_FALSE(scene.a_has_b()->peer);
}

TEST(Neighbors, AttemptOnANonBroadcastNetwork) {
  Scene scene;
  scene.hello_a({}, address_a, 0x0a000009);
  const std::vector<Neighbor> neighbors = scene.network.neighbors(scene.now);
  ASSERT_EQ(neighbors.size(), 1u);
  EXPECT_EQ(neighbors[0].state, NeighborState::attempt);
  EXPECT_EQ(neighbors[0].address, IpAddress::v4(0x0a000009));
  EXPECT_EQ(scene.network.network_type(0), NetworkType::non_broadcast);
}

TEST(Interfaces, AreNonBroadcastFromWhenTheirHellosGoToOne) {
  Scene scene;
  scene.hello_a({}, address_a);
  EXPECT_EQ(scene.network.network_type(0), NetworkType::broadcast);
  scene.now += 41 * second;
  scene.hello_a({}, address_a, address_b);
  EXPECT_EQ(scene.network.network_type(0), NetworkType::non_broadcast);
}

TEST(Links, AVirtualLinkIsNotTheSubnet) {
  Scene scene;
  scene.hello_a({});
  scene.hello_b({});
  scene.packet(router_a, address_a, 1, make_hello_v2({}, 0), 0x0a000102);
  scene.packet(0x03030303, 0x0a000102, 1, make_hello_v2({router_a}, 0), address_a);
  const auto links = scene.network.links();
  ASSERT_EQ(links.size(), 2u);
  std::vector<std::size_t> sizes;
  for (const auto &[link, members] : links) sizes.push_back(members.size());
  EXPECT_EQ(sizes, (std::vector<std::size_t>{2, 2}));
  EXPECT_EQ(scene.network.network_type(2), NetworkType::virtual_link);
  // What is sent to the far end belongs to the virtual link.
  scene.packet(router_a, address_a, 2, Writer().u16(1400).u8(2).u8(7).u32(1), 0x0a000102);
  EXPECT_EQ(scene.network.interfaces()[2].mtu, 1400);
  EXPECT_FALSE(scene.network.interfaces()[0].mtu);
}

TEST(Links, UnnumberedInterfacesAreJoinedByWhatTheyList) {
  Scene scene;
  scene.packet(router_a, address_a, 1, make_hello_v2({}, 0xffffffff));
  scene.packet(router_b, 0x0a090909, 1, make_hello_v2({router_a}, 0xffffffff));
  EXPECT_EQ(scene.network.links().size(), 2u);
  scene.packet(router_a, address_a, 1, make_hello_v2({router_b}, 0xffffffff));
  EXPECT_EQ(scene.network.links().size(), 1u);
  EXPECT_EQ(scene.state(), NeighborState::two_way);
}

TEST(Links, ParallelUnnumberedLinksAreNotGuessedAt) {
  Scene scene;
  scene.packet(router_b, 0x0a090909, 1, make_hello_v2({router_a}, 0xffffffff));
  scene.packet(router_a, 0x0a080801, 1, make_hello_v2({}, 0xffffffff));
  scene.packet(router_a, 0x0a080802, 1, make_hello_v2({router_b}, 0xffffffff));
  scene.packet(router_a, 0x0a080801, 1, make_hello_v2({router_b}, 0xffffffff));
  EXPECT_EQ(scene.network.links().size(), 3u);
}

TEST(Links, APacketBeforeTheFirstHelloCountsForTheSameInterface) {
  Scene scene;
  scene.packet(router_a, address_a, 2, Writer().u16(1500).u8(2).u8(0).u32(5), address_b);
  scene.hello_a({});
  EXPECT_EQ(scene.network.interfaces().size(), 1u);
}

TEST(Areas, OptionsTellStubAndNssa) {
  Scene scene;
  scene.packet(router_a, address_a, 1, make_hello_v2({}, 0xffffff00, 0x02), all_routers, 0);
  scene.packet(router_a, 0x0a010001, 1, make_hello_v2({}, 0xffffff00, 0x00), all_routers, 1);
  scene.packet(router_a, 0x0a020001, 1, make_hello_v2({}, 0xffffff00, 0x08), all_routers, 2);
  const auto &areas = scene.network.areas();
  EXPECT_TRUE(areas.at({2, 0, 0}).external_capable);
  EXPECT_FALSE(areas.at({2, 0, 1}).external_capable);
  EXPECT_FALSE(areas.at({2, 0, 1}).nssa);
  EXPECT_TRUE(areas.at({2, 0, 2}).nssa);
  EXPECT_EQ(areas.at({2, 0, 2}).routers, (std::set<std::uint32_t>{router_a}));
}

TEST(Databases, AreKeyedByTheScopesDomain) {
  Scene scene;
  scene.packet(router_a, address_a, 1, make_hello_v2({}), all_routers, 6);
  const Octets body = Writer().u32(0xffffff00).u32(1);
  const Octets external = Writer().u32(0xffffff00).u32(1).u32(0).u32(0);
  const Octets grace = Writer().tlv(1, {0, 0, 0, 60});
  scene.packet(router_a, address_a, 4,
               make_update(3, {make_lsa_v2({.type = 3}, body), make_lsa_v2({.type = 5}, external),
                               make_lsa_v2({.type = 9, .id = 0x03000000}, grace)}),
               all_routers, 6);
  const auto entries = scene.network.lsdb().sorted();
  ASSERT_EQ(entries.size(), 3u);
  EXPECT_EQ(entries[0]->key.scope, Scope::link);
  EXPECT_EQ(entries[0]->key.domain, scene.network.link_of(0));
  EXPECT_EQ(entries[1]->key.scope, Scope::area);
  EXPECT_EQ(entries[1]->key.domain, 6u);
  EXPECT_EQ(entries[2]->key.scope, Scope::as);
  EXPECT_EQ(entries[2]->key.domain, 0u);
  EXPECT_FALSE(scene.network.grace_over(*entries[0], scene.now));
  EXPECT_TRUE(scene.network.grace_over(*entries[0], scene.now + 61 * second));
  EXPECT_FALSE(scene.network.grace_over(*entries[1], scene.now + 61 * second));
}

TEST(Databases, ABadLsaIsNotLoaded) {
  Network network;
  FrameDecoder decoder(network);
  Octets lsa = make_lsa_v2({.type = 2}, Writer().u32(1).u32(2));
  lsa[20] ^= 1;
  const Octets ip = make_ipv4({}, make_packet_v2({.type = 4}, make_update(1, {lsa})));
  Frame frame;
  frame.link_type = 101;
  frame.number = 1;
  frame.wire_length = static_cast<std::uint32_t>(ip.size());
  frame.data = ip;
  decoder.decode(frame);
  EXPECT_EQ(decoder.errors()[ErrorKind::bad_lsa_checksum].count, 1u);
  EXPECT_TRUE(network.lsdb().empty());
}

}  // namespace
}  // namespace ospf_decode::testing
