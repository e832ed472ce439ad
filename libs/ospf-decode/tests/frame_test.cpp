// Links, IP, tunnels and fragments: the way from a frame to an OSPF packet.
#include <gtest/gtest.h>

#include "support/bytes.hpp"

namespace ospf_decode::testing {
namespace {

const Octets hello_v2 = make_packet_v2({}, make_hello_v2());
const Octets hello_v3 =
    make_packet_v3({}, Writer().u32(7).u8(1).u24(0x13).u16(10).u16(40).u32(0).u32(0));
const Octets ip_v2 = make_ipv4({}, hello_v2);
const Octets ip_v3 = make_ipv6(89, hello_v3);

void expect_one_hello(const Bench &bench) {
  EXPECT_EQ(bench.seen.hellos.size(), 1u);
  EXPECT_EQ(bench.errors(), 0u);
}

struct LinkCase {
  const char *name;
  int link_type;
  Octets header;
  bool v6;
};

class Links : public ::testing::TestWithParam<LinkCase> {};

TEST_P(Links, AHelloIsFound) {
  Bench bench;
  const Octets &ip = GetParam().v6 ? ip_v3 : ip_v2;
  bench.frame(Writer().bytes(GetParam().header).bytes(ip), GetParam().link_type);
  expect_one_hello(bench);
}

TEST_P(Links, AFrameThatEndsInItsHeaderIsCounted) {
  Bench bench;
  for (std::size_t length = 0; length < GetParam().header.size(); ++length) {
    bench.frame(Octets(GetParam().header.begin(),
                       GetParam().header.begin() + static_cast<std::ptrdiff_t>(length)),
                GetParam().link_type);
  }
  EXPECT_EQ(bench.count(ErrorKind::short_link_header), GetParam().header.size());
  EXPECT_EQ(bench.errors(), GetParam().header.size());
}

INSTANTIATE_TEST_SUITE_P(
    All, Links,
    ::testing::Values(
        LinkCase{"ethernet", 1, Writer().zeros(12).u16(0x0800), false},
        LinkCase{"ethernet_v6", 1, Writer().zeros(12).u16(0x86dd), true},
        LinkCase{"vlan", 1, Writer().zeros(12).u16(0x8100).u16(0xe064).u16(0x0800), false},
        LinkCase{"vlan_stacked", 1,
                 Writer().zeros(12).u16(0x88a8).u16(7).u16(0x8100).u16(9).u16(0x86dd), true},
        LinkCase{"cooked", 113, Writer().zeros(14).u16(0x0800), false},
        LinkCase{"cooked_vlan", 113, Writer().zeros(14).u16(0x8100).u16(5).u16(0x0800), false},
        LinkCase{"cooked_2", 276, Writer().u16(0x86dd).zeros(18), true},
        LinkCase{"null_little", 0, Writer().u32(0x02000000), false},
        LinkCase{"null_big", 0, Writer().u32(2), false},
        LinkCase{"null_v6_darwin", 0, Writer().u32(0x1e000000), true},
        LinkCase{"loop", 108, Writer().u32(24), true}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(RawLinks, TheVersionIsInTheFirstOctet) {
  for (const int link_type : {12, 14, 101, 228}) {
    Bench bench;
    bench.frame(ip_v2, link_type);
    expect_one_hello(bench);
  }
  for (const int link_type : {12, 14, 101, 229}) {
    Bench bench;
    bench.frame(ip_v3, link_type);
    expect_one_hello(bench);
  }
}

TEST(Link, StackedVlanNumbersAreTold) {
  Bench bench;
  bench.frame(
      Writer().zeros(12).u16(0x88a8).u16(7).u16(0x8100).u16(0x6009).u16(0x0800).bytes(ip_v2));
  ASSERT_EQ(bench.seen.vlans.size(), 1u);
  EXPECT_EQ(bench.seen.vlans[0], 7u << 12 | 9u);
}

TEST(Link, AForeignLinkTypeIsCounted) {
  Bench bench;
  bench.frame(ip_v2, 105);
  EXPECT_EQ(bench.count(ErrorKind::foreign_link_type), 1u);
  EXPECT_TRUE(bench.seen.packets.empty());
}

TEST(Link, OtherProtocolsArePassedOver) {
  Bench bench;
  bench.frame(make_ethernet(0x0806, Octets(28, 0)));  // ARP
  bench.frame(make_ethernet(40, Octets(40, 0x42)));   // an 802.3 length
  bench.ipv4(Octets(20, 0), {.protocol = 6});
  EXPECT_EQ(bench.decoder.other_frames(), 3u);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Ipv4, EthernetPaddingIsNotPartOfThePacket) {
  Bench bench;
  bench.frame(Writer().bytes(make_ethernet(0x0800, ip_v2)).zeros(6));
  expect_one_hello(bench);
}

TEST(Ipv4, OptionsAreSteppedOver) {
  Octets header = Writer().u8(0x46).u8(0).u16(static_cast<unsigned>(24 + hello_v2.size())).u32(0);
  header =
      Writer().bytes(header).u8(1).u8(89).u16(0).u32(0x0a000001).u32(0xe0000005).u32(0x94040000);
  put16(header, 10, internet_checksum(header));
  Bench bench;
  bench.frame(make_ethernet(0x0800, Writer().bytes(header).bytes(hello_v2)));
  expect_one_hello(bench);
}

TEST(Ipv4, ABadHeaderChecksumIsCountedAndNotLoaded) {
  Octets spoilt = ip_v2;
  spoilt[8] ^= 0x40;
  Bench bench;
  bench.frame(make_ethernet(0x0800, spoilt));
  EXPECT_EQ(bench.count(ErrorKind::bad_ip_checksum), 1u);
  EXPECT_TRUE(bench.seen.hellos.empty());
}

TEST(Ipv4, AChecksumLeftToTheCardIsNotChecked) {
  Octets offloaded = ip_v2;
  put16(offloaded, 10, 0);
  Bench bench;
  bench.frame(make_ethernet(0x0800, offloaded));
  expect_one_hello(bench);
}

TEST(Ipv4, LengthsThatLieAreCounted) {
  Bench bench;
  Octets short_header = ip_v2;
  short_header[0] = 0x44;
  bench.frame(make_ethernet(0x0800, short_header));
  Octets short_total = ip_v2;
  put16(short_total, 2, 19);
  bench.frame(make_ethernet(0x0800, short_total));
  EXPECT_EQ(bench.count(ErrorKind::bad_ip_header), 2u);
  EXPECT_EQ(bench.first(ErrorKind::bad_ip_header), 1u);
}

TEST(Ipv6, ExtensionHeadersAreSteppedOver) {
  const Octets chain = Writer()
                           .u8(60)
                           .u8(0)
                           .zeros(6)  // hop by hop
                           .u8(43)
                           .u8(1)
                           .zeros(14)  // destination options
                           .u8(51)
                           .u8(0)
                           .zeros(6)  // routing
                           .u8(89)
                           .u8(4)
                           .zeros(22)  // authentication header
                           .bytes(hello_v3);
  Bench bench;
  bench.ipv6(chain, 0);
  expect_one_hello(bench);
}

TEST(Ipv6, AnAtomicFragmentIsAWhole) {
  Bench bench;
  bench.ipv6(Writer().u8(89).u8(0).u16(0).u32(1).bytes(hello_v3), 44);
  expect_one_hello(bench);
}

TEST(Ipv6, AChainThatRunsOutIsCounted) {
  Bench bench;
  bench.ipv6(Writer().u8(89).u8(9).zeros(6), 0);
  EXPECT_EQ(bench.count(ErrorKind::bad_ip_header), 1u);
}

TEST(Gre, CarriesBothVersions) {
  Bench bench;
  bench.ipv4(Writer().u16(0).u16(0x0800).bytes(ip_v2), {.protocol = 47});
  bench.ipv4(Writer().u16(0).u16(0x86dd).bytes(ip_v3), {.protocol = 47});
  bench.ipv6(Writer().u16(0).u16(0x0800).bytes(ip_v2), 47);
  EXPECT_EQ(bench.seen.hellos.size(), 3u);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Gre, KeySequenceAndChecksumAreSteppedOver) {
  Octets gre = Writer().u16(0xb000).u16(0x0800).u32(0).u32(99).u32(1).bytes(ip_v2);
  put16(gre, 4, internet_checksum(gre));
  Bench bench;
  bench.ipv4(gre, {.protocol = 47});
  expect_one_hello(bench);

  gre[5] ^= 1;
  bench.ipv4(gre, {.protocol = 47});
  EXPECT_EQ(bench.count(ErrorKind::bad_gre_header), 1u);
  EXPECT_EQ(bench.first(ErrorKind::bad_gre_header), 2u);
}

TEST(Gre, BridgedEthernetIsFollowed) {
  Bench bench;
  bench.ipv4(Writer().u16(0).u16(0x6558).bytes(make_ethernet(0x0800, ip_v2)), {.protocol = 47});
  expect_one_hello(bench);
}

TEST(Gre, SourceRoutesAndShortHeadersAreCountedVersionOneIsNot) {
  Bench bench;
  bench.ipv4(Writer().u16(0x4000).u16(0x0800).u32(0).bytes(ip_v2), {.protocol = 47});
  bench.ipv4(Writer().u16(0x2000).u16(0x0800).u16(0), {.protocol = 47});
  EXPECT_EQ(bench.count(ErrorKind::bad_gre_header), 2u);
  bench.ipv4(Writer().u16(0x3001).u16(0x880b).u32(0).u32(0), {.protocol = 47});
  EXPECT_EQ(bench.errors(), 2u);
}

TEST(Tunnel, IpInIpIsFollowedToALimit) {
  Bench bench;
  Octets nested = ip_v2;
  for (int i = 0; i < 4; ++i) nested = make_ipv4({.protocol = 4}, nested);
  bench.frame(make_ethernet(0x0800, nested));
  expect_one_hello(bench);
  bench.frame(make_ethernet(0x0800, make_ipv4({.protocol = 4}, nested)));
  EXPECT_EQ(bench.count(ErrorKind::tunnel_too_deep), 1u);
  EXPECT_EQ(bench.seen.hellos.size(), 1u);
}

// A long update, to be cut into fragments.
Octets long_update() {
  Writer body;
  body.u8(0).u8(0).u16(8);
  for (unsigned i = 0; i < 8; ++i) body.u32(i).u32(i).u8(3).u8(0).u16(i);
  const Octets lsa = make_lsa_v2({}, body);
  return make_packet_v2({.type = 4}, make_update(1, {lsa}));
}

Octets part(const Octets &whole, std::size_t begin, std::size_t end) {
  return Octets(whole.begin() + static_cast<std::ptrdiff_t>(begin),
                whole.begin() + static_cast<std::ptrdiff_t>(end));
}

TEST(Fragments, ComeTogetherInAnyOrder) {
  const Octets whole = long_update();
  Bench bench;
  bench.ipv4(part(whole, 128, whole.size()), {.fragment = 16});
  bench.ipv4(part(whole, 0, 64), {.fragment = 0x2000});
  EXPECT_TRUE(bench.seen.packets.empty());
  bench.ipv4(part(whole, 64, 128), {.fragment = 0x2008});
  EXPECT_EQ(bench.seen.lsas.size(), 1u);
  ASSERT_EQ(bench.seen.packets.size(), 1u);
  EXPECT_EQ(bench.seen.packets[0], 3u) << "the packet is numbered after its last fragment";
  bench.decoder.finish();
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Fragments, OfIpv6ComeTogether) {
  const Octets lsa = make_lsa_v3({.type = 0x2001}, Writer().u32(0x13).zeros(64));
  const Octets whole = make_packet_v3({.type = 4}, make_update(1, {lsa}));
  Bench bench;
  bench.ipv6(Writer().u8(89).u8(0).u16(1).u32(5).bytes(part(whole, 0, 48)), 44);
  bench.ipv6(Writer().u8(89).u8(0).u16(48).u32(5).bytes(part(whole, 48, whole.size())), 44);
  EXPECT_EQ(bench.seen.lsas.size(), 1u);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Fragments, OneSeenTwiceIsTakenOnce) {
  const Octets whole = long_update();
  Bench bench;
  bench.ipv4(part(whole, 0, 64), {.fragment = 0x2000});
  bench.ipv4(part(whole, 0, 64), {.fragment = 0x2000});
  bench.ipv4(part(whole, 64, whole.size()), {.fragment = 8});
  EXPECT_EQ(bench.seen.lsas.size(), 1u);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Fragments, ThatOverlapGiveTheDatagramUp) {
  const Octets whole = long_update();
  Bench bench;
  bench.ipv4(part(whole, 0, 64), {.fragment = 0x2000});
  bench.ipv4(part(whole, 56, whole.size()), {.fragment = 7});
  EXPECT_EQ(bench.count(ErrorKind::bad_fragment), 1u);
  EXPECT_TRUE(bench.seen.lsas.empty());
  bench.decoder.finish();
  EXPECT_EQ(bench.errors(), 1u);
}

TEST(Fragments, BehindTheLastGiveTheDatagramUp) {
  Bench bench;
  bench.ipv4(Octets(8, 0), {.fragment = 8});
  bench.ipv4(Octets(8, 0), {.fragment = 0x2000 | 20});
  EXPECT_EQ(bench.count(ErrorKind::bad_fragment), 1u);
  bench.ipv4(Octets(8, 0), {.id = 2, .fragment = 0x2000 | 20});
  bench.ipv4(Octets(8, 0), {.id = 2, .fragment = 8});
  EXPECT_EQ(bench.count(ErrorKind::bad_fragment), 2u);
  bench.decoder.finish();
  EXPECT_EQ(bench.errors(), 2u);
}

TEST(Fragments, BeyondSixtyFourKibAreRefused) {
  Bench bench;
  bench.ipv4(Octets(64, 0), {.fragment = 0x1fff});
  EXPECT_EQ(bench.count(ErrorKind::bad_fragment), 1u);
}

TEST(Fragments, OfUnevenLengthAreRefusedUnlessTheyAreLast) {
  Bench bench;
  bench.ipv4(Octets(63, 0), {.fragment = 0x2000});
  EXPECT_EQ(bench.count(ErrorKind::bad_fragment), 1u);
}

TEST(Fragments, WaitForAWhileOnly) {
  const Octets whole = long_update();
  Bench bench;
  bench.ipv4(part(whole, 0, 64), {.fragment = 0x2000});
  bench.time += 61 * second;
  bench.ipv4(part(whole, 64, whole.size()), {.fragment = 8});
  EXPECT_EQ(bench.count(ErrorKind::fragments_missing), 1u);
  EXPECT_EQ(bench.first(ErrorKind::fragments_missing), 1u);
  bench.decoder.finish();
  EXPECT_EQ(bench.count(ErrorKind::fragments_missing), 2u);
  EXPECT_TRUE(bench.seen.lsas.empty());
}

TEST(Fragments, HoldBoundedMemory) {
  ErrorCounts errors;
  Reassembler fragments(errors);
  const Octets data(1024, 0);
  for (unsigned id = 0; id < 5000; ++id) {
    IpPacket packet;
    packet.protocol = ip_ospf;
    packet.is_fragment = true;
    packet.more_fragments = true;
    packet.fragment_id = id;
    packet.fragment_offset = 60000;
    packet.payload = data;
    EXPECT_FALSE(fragments.add(packet, 0, 0, id + 1));
    EXPECT_LE(fragments.waiting(), 256u);
    EXPECT_LE(fragments.octets(), 4u << 20);
  }
  EXPECT_GT(fragments.waiting(), 10u);
  EXPECT_EQ(errors[ErrorKind::fragment_limit].count, 5000 - fragments.waiting());
  EXPECT_EQ(errors[ErrorKind::fragment_limit].first_packet, 1u) << "the oldest goes first";
}

TEST(Fragments, OfOtherProtocolsAreNotKept) {
  Bench bench;
  bench.ipv4(Octets(64, 0), {.protocol = 17, .fragment = 0x2000});
  bench.decoder.finish();
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Fragments, OfATunnelledPacketAreFollowed) {
  const Octets gre = Writer().u16(0).u16(0x0800).bytes(make_ipv4({}, long_update()));
  Bench bench;
  bench.ipv4(part(gre, 0, 64), {.protocol = 47, .fragment = 0x2000});
  bench.ipv4(part(gre, 64, gre.size()), {.protocol = 47, .fragment = 8});
  EXPECT_EQ(bench.seen.lsas.size(), 1u);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(CutFrame, IsCountedOnceAndWhatIsWholeIsLoaded) {
  const Octets first = make_lsa_v2({.type = 2}, Writer().u32(0xffffff00).u32(1).u32(2));
  const Octets second_lsa = make_lsa_v2({.type = 2, .id = 2}, Writer().u32(0xffffff00).u32(1));
  const Octets frame = make_ethernet(
      0x0800, make_ipv4({}, make_packet_v2({.type = 4}, make_update(2, {first, second_lsa}))));
  Bench bench;
  bench.frame(part(frame, 0, frame.size() - 3), 1, 3);
  EXPECT_EQ(bench.count(ErrorKind::cut_frame), 1u);
  EXPECT_EQ(bench.errors(), 1u);
  EXPECT_EQ(bench.seen.lsas.size(), 1u);
  EXPECT_EQ(bench.seen.checksum_states.at(0), ChecksumState::unchecked);
}

TEST(CutFrame, AnyCutOfAHelloYieldsNoHello) {
  const Octets frame =
      make_ethernet(0x0800, make_ipv4({}, make_packet_v2({}, make_hello_v2({1, 2}))));
  for (std::size_t length = 0; length < frame.size(); ++length) {
    Bench bench;
    bench.frame(part(frame, 0, length), 1, static_cast<std::uint32_t>(frame.size() - length));
    EXPECT_TRUE(bench.seen.hellos.empty()) << length;
    EXPECT_EQ(bench.count(ErrorKind::cut_frame), 1u) << length;
    EXPECT_EQ(bench.errors(), 1u) << length;
  }
}

TEST(CutFrame, OfAnotherProtocolIsNoError) {
  Bench bench;
  bench.frame(make_ethernet(0x0800, make_ipv4({.protocol = 17}, Octets(40, 0))), 1, 1000);
  EXPECT_EQ(bench.errors(), 0u);
}

}  // namespace
}  // namespace ospf_decode::testing
