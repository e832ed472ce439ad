// Packets: headers, checksums, authentication, LLS, and the bodies that are not LSAs.
#include <gtest/gtest.h>

#include "lsa_vocabulary/types.hpp"
#include "support/bytes.hpp"

namespace ospf_decode::testing {
namespace {

Octets hello_v3(unsigned options = 0x13) {
  return Writer().u32(7).u8(1).u24(options).u16(10).u16(40).u32(8).u32(9).u32(0x0a000002);
}

TEST(Hello, OfVersion2) {
  Bench bench;
  bench.ipv4(make_packet_v2({}, make_hello_v2({3, 4}, 0xfffffffc, 0x42, 5, 6)));
  ASSERT_EQ(bench.seen.hellos.size(), 1u);
  const Hello &hello = bench.seen.hellos[0];
  EXPECT_EQ(hello.network_mask, 0xfffffffcu);
  EXPECT_EQ(hello.hello_interval, 10);
  EXPECT_EQ(hello.dead_interval, 40u);
  EXPECT_EQ(hello.options, 0x42u);
  EXPECT_EQ(hello.priority, 1);
  EXPECT_EQ(hello.designated_router, 5u);
  EXPECT_EQ(hello.backup_designated_router, 6u);
  EXPECT_EQ(hello.neighbors, (std::vector<std::uint32_t>{3, 4}));
  EXPECT_EQ(bench.seen.checksum_states.at(0), ChecksumState::good);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Hello, OfVersion3) {
  Bench bench;
  bench.ipv6(make_packet_v3({.instance = 65}, hello_v3()));
  ASSERT_EQ(bench.seen.hellos.size(), 1u);
  const Hello &hello = bench.seen.hellos[0];
  EXPECT_EQ(hello.interface_id, 7u);
  EXPECT_EQ(hello.options, 0x13u);
  EXPECT_EQ(hello.hello_interval, 10);
  EXPECT_EQ(hello.dead_interval, 40u);
  EXPECT_EQ(hello.designated_router, 8u);
  EXPECT_EQ(hello.neighbors, (std::vector<std::uint32_t>{0x0a000002}));
  EXPECT_EQ(bench.seen.instances.at(0), 65);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Header, InstanceOfVersion2IsTheUpperHalfOfTheAuthenticationType) {
  Bench bench;
  bench.ipv4(make_packet_v2({.instance = 3}, make_hello_v2()));
  EXPECT_EQ(bench.seen.instances.at(0), 3);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Header, WhatIsShortIsCounted) {
  Bench bench;
  bench.ipv4(Octets{2, 1, 0});
  bench.ipv6(Octets(15, 3));
  EXPECT_EQ(bench.count(ErrorKind::short_packet), 2u);
}

TEST(Header, UnsupportedVersions) {
  Bench bench;
  Octets one = make_packet_v2({}, make_hello_v2());
  one[0] = 1;
  bench.ipv4(one);
  bench.ipv6(make_packet_v2({}, make_hello_v2()));  // OSPFv2 is not said over IPv6
  EXPECT_EQ(bench.count(ErrorKind::unsupported_version), 2u);
  EXPECT_TRUE(bench.seen.packets.empty());
}

TEST(Header, UnknownTypes) {
  Bench bench;
  bench.ipv4(make_packet_v2({.type = 0}, {}));
  bench.ipv4(make_packet_v2({.type = 6}, {}));
  EXPECT_EQ(bench.count(ErrorKind::unknown_packet_type), 2u);
}

TEST(Header, LengthsThatLie) {
  Bench bench;
  Octets beyond = make_packet_v2({}, make_hello_v2());
  put16(beyond, 2, static_cast<unsigned>(beyond.size() + 1));
  bench.ipv4(beyond);
  Octets below = make_packet_v2({}, make_hello_v2());
  put16(below, 2, 23);
  bench.ipv4(below);
  EXPECT_EQ(bench.count(ErrorKind::lying_packet_length), 2u);
  EXPECT_TRUE(bench.seen.packets.empty());
}

TEST(Header, ABadChecksumIsCountedAndNothingLoaded) {
  Bench bench;
  Octets v2 = make_packet_v2({}, make_hello_v2());
  v2[30] ^= 4;
  bench.ipv4(v2);
  Octets v3 = make_packet_v3({}, hello_v3());
  v3[20] ^= 4;
  bench.ipv6(v3);
  EXPECT_EQ(bench.count(ErrorKind::bad_packet_checksum), 2u);
  EXPECT_TRUE(bench.seen.hellos.empty());
  EXPECT_EQ(bench.seen.checksum_states,
            (std::vector<ChecksumState>{ChecksumState::bad, ChecksumState::bad}));
}

TEST(Header, OctetsThatNothingAnnouncesAreCounted) {
  Bench bench;
  bench.ipv4(Writer().bytes(make_packet_v2({}, make_hello_v2())).zeros(8));
  EXPECT_EQ(bench.count(ErrorKind::trailing_octets), 1u);
  EXPECT_EQ(bench.seen.hellos.size(), 1u);
}

TEST(Version3, IsSaidOverIpv4Too) {
  Octets packet = make_packet_v3({}, hello_v3());
  put16(packet, 12, 0);
  const Octets pseudo = Writer()
                            .u32(0x0a000001)
                            .u32(0xe0000005)
                            .u32(static_cast<std::uint32_t>(packet.size()))
                            .u32(89)
                            .bytes(packet);
  put16(packet, 12, internet_checksum(pseudo));
  Bench bench;
  bench.ipv4(packet);
  EXPECT_EQ(bench.seen.hellos.size(), 1u);
  EXPECT_EQ(bench.errors(), 0u);
}

// A hello with cryptographic authentication: no checksum, digest behind the packet.
Octets cryptographic(unsigned digest_said, std::size_t digest_there, unsigned options = 2) {
  const Octets body = make_hello_v2({}, 0xffffff00, options);
  return Writer()
      .u8(2)
      .u8(1)
      .u16(static_cast<unsigned>(24 + body.size()))
      .u32(1)
      .u32(0)
      .u16(0)
      .u16(2)
      .u16(0)
      .u8(7)
      .u8(digest_said)
      .u32(99)
      .bytes(body)
      .zeros(digest_there);
}

TEST(Authentication, CryptographicStandsInForTheChecksum) {
  Bench bench;
  bench.ipv4(cryptographic(16, 16));
  EXPECT_EQ(bench.seen.hellos.size(), 1u);
  EXPECT_EQ(bench.seen.auth_kinds.at(0), AuthKind::cryptographic);
  EXPECT_EQ(bench.seen.digests.at(0), 16u);
  EXPECT_EQ(bench.seen.checksum_states.at(0), ChecksumState::unchecked);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Authentication, AllDigestLengthsThatAreDefined) {
  Bench bench;
  for (const unsigned length : {16u, 20u, 32u, 48u, 64u}) bench.ipv4(cryptographic(length, length));
  EXPECT_EQ(bench.seen.hellos.size(), 5u);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Authentication, ATrailerThatIsCutOrImpossibleIsCounted) {
  Bench bench;
  bench.ipv4(cryptographic(16, 15));
  bench.ipv4(cryptographic(0, 0));
  bench.ipv4(cryptographic(17, 17));
  EXPECT_EQ(bench.count(ErrorKind::bad_auth_trailer), 3u);
  EXPECT_TRUE(bench.seen.hellos.empty());
}

TEST(Authentication, TheFieldOfASimplePasswordIsOutsideTheChecksum) {
  Octets packet = make_packet_v2({}, make_hello_v2());
  // The type is summed, the password is not.
  packet[15] = 1;
  put16(packet, 12, 0);
  put16(packet, 12, internet_checksum(packet));
  for (std::size_t i = 16; i < 24; ++i) packet[i] = 'x';
  Bench bench;
  bench.ipv4(packet);
  EXPECT_EQ(bench.seen.hellos.size(), 1u);
  EXPECT_EQ(bench.seen.auth_kinds.at(0), AuthKind::simple);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Authentication, UnknownTypesAreCounted) {
  Octets packet = make_packet_v2({}, make_hello_v2());
  packet[15] = 3;
  Bench bench;
  bench.ipv4(packet);
  EXPECT_EQ(bench.count(ErrorKind::unknown_auth_type), 1u);
}

Octets trailer_v3(unsigned length, std::size_t digest) {
  return Writer().u16(1).u16(length).u16(0).u16(12).u64(5).zeros(digest);
}

Octets without_checksum(Octets packet) {
  put16(packet, 12, 0);
  return packet;
}

TEST(Authentication, TrailerOfVersion3) {
  Bench bench;
  const Octets hello = without_checksum(make_packet_v3({}, hello_v3(0x413)));
  bench.ipv6(Writer().bytes(hello).bytes(trailer_v3(48, 32)));
  EXPECT_EQ(bench.seen.hellos.size(), 1u);
  EXPECT_EQ(bench.seen.auth_kinds.at(0), AuthKind::trailer);
  EXPECT_EQ(bench.seen.digests.at(0), 32u);
  // A packet without options does not announce it.
  bench.ipv6(
      Writer().bytes(without_checksum(make_packet_v3({.type = 5}, {}))).bytes(trailer_v3(48, 32)));
  EXPECT_EQ(bench.seen.auth_kinds.at(1), AuthKind::trailer);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Authentication, ATrailerOfVersion3ThatIsAnnouncedMustBeThere) {
  Bench bench;
  bench.ipv6(make_packet_v3({}, hello_v3(0x413)));
  bench.ipv6(Writer().bytes(make_packet_v3({}, hello_v3(0x413))).bytes(trailer_v3(47, 32)));
  EXPECT_EQ(bench.count(ErrorKind::bad_auth_trailer), 2u);
  EXPECT_TRUE(bench.seen.hellos.empty());
}

Octets lls_block(std::uint32_t extended_options) {
  Octets block = Writer().u16(0).u16(3).u16(1).u16(4).u32(extended_options);
  put16(block, 0, internet_checksum(block));
  return block;
}

TEST(Lls, BehindAHello) {
  Bench bench;
  bench.ipv4(
      Writer().bytes(make_packet_v2({}, make_hello_v2({}, 0xffffff00, 0x12))).bytes(lls_block(1)));
  EXPECT_EQ(bench.seen.lls.at(0), true);
  EXPECT_EQ(bench.seen.lls_options.at(0), 1u);
  bench.ipv6(Writer().bytes(make_packet_v3({}, hello_v3(0x213))).bytes(lls_block(2)));
  EXPECT_EQ(bench.seen.lls_options.at(1), 2u);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Lls, BehindADigest) {
  Bench bench;
  // Under cryptographic authentication the block's checksum is zero.
  bench.ipv4(Writer().bytes(cryptographic(16, 16, 0x12)).u16(0).u16(3).u16(1).u16(4).u32(1));
  EXPECT_EQ(bench.seen.lls.at(0), true);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Lls, BeforeATrailer) {
  Bench bench;
  bench.ipv6(Writer()
                 .bytes(without_checksum(make_packet_v3({}, hello_v3(0x613))))
                 .u16(0)
                 .u16(3)
                 .u16(1)
                 .u16(4)
                 .u32(1)
                 .bytes(trailer_v3(36, 20)));
  EXPECT_EQ(bench.seen.lls.at(0), true);
  EXPECT_EQ(bench.seen.auth_kinds.at(0), AuthKind::trailer);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Lls, FaultsAreCountedAndTheHelloLoaded) {
  const Octets hello = make_packet_v2({}, make_hello_v2({}, 0xffffff00, 0x12));
  Bench bench;
  bench.ipv4(hello);  // announced and absent
  Octets bad_sum = lls_block(1);
  bad_sum[0] ^= 1;
  bench.ipv4(Writer().bytes(hello).bytes(bad_sum));
  bench.ipv4(Writer().bytes(hello).u16(0).u16(9).zeros(8));       // longer than what is there
  bench.ipv4(Writer().bytes(hello).u16(0).u16(2).u16(1).u16(4));  // a TLV that overruns
  EXPECT_EQ(bench.count(ErrorKind::bad_lls), 4u);
  EXPECT_EQ(bench.seen.hellos.size(), 4u);
  EXPECT_EQ(bench.seen.lls, (std::vector<bool>{false, false, false, false}));
}

Octets header_octets(const Octets &lsa) { return Octets(lsa.begin(), lsa.begin() + 20); }

TEST(Description, OfVersion2) {
  const Octets lsa = make_lsa_v2({.age = 77, .type = 3, .id = 5}, Octets(8, 0));
  Bench bench;
  bench.ipv4(make_packet_v2(
      {.type = 2}, Writer().u16(1500).u8(0x42).u8(0x07).u32(123).bytes(header_octets(lsa))));
  ASSERT_EQ(bench.seen.descriptions.size(), 1u);
  const DatabaseDescription &dd = bench.seen.descriptions[0];
  EXPECT_EQ(dd.mtu, 1500);
  EXPECT_EQ(dd.options, 0x42u);
  EXPECT_EQ(dd.flags, description_init | description_more | description_master);
  EXPECT_EQ(dd.sequence, 123u);
  ASSERT_EQ(dd.headers.size(), 1u);
  EXPECT_EQ(dd.headers[0].age, 77);
  EXPECT_EQ(dd.headers[0].type, 3);
  EXPECT_EQ(dd.headers[0].length, 28);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Description, OfVersion3) {
  const Octets lsa = make_lsa_v3({.type = 0x2009}, Octets(12, 0));
  Bench bench;
  bench.ipv6(make_packet_v3(
      {.type = 2},
      Writer().u8(0).u24(0x13).u16(1400).u8(0).u8(3).u32(9).bytes(header_octets(lsa))));
  ASSERT_EQ(bench.seen.descriptions.size(), 1u);
  EXPECT_EQ(bench.seen.descriptions[0].mtu, 1400);
  EXPECT_EQ(bench.seen.descriptions[0].flags, 3);
  EXPECT_EQ(bench.seen.descriptions[0].headers.at(0).type, 0x2009);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Request, OfBothVersions) {
  Bench bench;
  bench.ipv4(make_packet_v2({.type = 3}, Writer().u32(1).u32(2).u32(3).u32(5).u32(6).u32(7)));
  bench.ipv6(make_packet_v3({.type = 3}, Writer().u16(0).u16(0x2001).u32(0).u32(9)));
  EXPECT_EQ(bench.seen.requests, (std::vector<LsaName>{{1, 2, 3}, {5, 6, 7}, {0x2001, 0, 9}}));
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Acknowledgement, OfBothVersions) {
  Bench bench;
  bench.ipv4(make_packet_v2({.type = 5}, header_octets(make_lsa_v2({.type = 5}, {}))));
  bench.ipv6(make_packet_v3({.type = 5}, header_octets(make_lsa_v3({.type = 0x4005}, {}))));
  ASSERT_EQ(bench.seen.acknowledgements.size(), 2u);
  EXPECT_EQ(bench.seen.acknowledgements[0].type, 5);
  EXPECT_EQ(bench.seen.acknowledgements[1].type, 0x4005);
  EXPECT_EQ(bench.errors(), 0u);
}

TEST(Body, OfAnImpossibleLengthIsCounted) {
  Bench bench;
  bench.ipv4(make_packet_v2({.type = 1}, Octets(18, 0)));
  bench.ipv4(make_packet_v2({.type = 1}, Octets(22, 0)));
  bench.ipv4(make_packet_v2({.type = 2}, Octets(8 + 19, 0)));
  bench.ipv4(make_packet_v2({.type = 3}, Octets(13, 0)));
  bench.ipv4(make_packet_v2({.type = 4}, Octets(3, 0)));
  bench.ipv4(make_packet_v2({.type = 5}, Octets(21, 0)));
  EXPECT_EQ(bench.count(ErrorKind::bad_packet_body), 6u);
  EXPECT_EQ(bench.errors(), 6u);
  EXPECT_TRUE(bench.seen.hellos.empty());
}

const Octets network_lsa = make_lsa_v2({.type = 2}, Writer().u32(0xffffff00).u32(1));

TEST(Update, CountAndContentsMustAgree) {
  Bench bench;
  bench.ipv4(make_packet_v2({.type = 4}, make_update(2, {network_lsa})));
  bench.ipv4(make_packet_v2({.type = 4}, make_update(1, {network_lsa, network_lsa})));
  bench.ipv4(make_packet_v2({.type = 4}, make_update(0xffffffff, {network_lsa})));
  EXPECT_EQ(bench.count(ErrorKind::lsa_count_mismatch), 3u);
  EXPECT_EQ(bench.seen.lsas.size(), 3u) << "what is there is loaded";
  EXPECT_EQ(bench.errors(), 3u);
}

TEST(Update, LengthsOfLsasThatLie) {
  for (const unsigned length : {0u, 19u, 65535u}) {
    Octets lying = network_lsa;
    put16(lying, 18, length);
    Bench bench;
    bench.ipv4(make_packet_v2({.type = 4}, make_update(2, {network_lsa, lying})));
    EXPECT_EQ(bench.count(ErrorKind::lying_lsa_length), 1u) << length;
    EXPECT_EQ(bench.errors(), 1u) << length;
    EXPECT_EQ(bench.seen.lsas.size(), 1u) << "the one before it is loaded";
  }
}

TEST(Update, ABadLsaChecksumIsShownAndTheNextIsLoaded) {
  Octets spoilt = network_lsa;
  spoilt[21] ^= 0x10;
  Bench bench;
  bench.ipv4(make_packet_v2({.type = 4}, make_update(2, {spoilt, network_lsa})));
  EXPECT_EQ(bench.count(ErrorKind::bad_lsa_checksum), 1u);
  EXPECT_EQ(bench.seen.lsa_good, (std::vector<bool>{false, true}));
}

TEST(Update, UnknownTypesAndAgesAreCounted) {
  std::uint8_t unknown = 1;
  while (lsa_vocabulary::find_type(2, unknown) != nullptr) ++unknown;
  Bench bench;
  bench.ipv4(make_packet_v2({.type = 4}, make_update(1, {make_lsa_v2({.type = unknown}, {})})));
  bench.ipv6(make_packet_v3({.type = 4}, make_update(1, {make_lsa_v3({.type = 0xe00e}, {})})));
  EXPECT_EQ(bench.count(ErrorKind::unknown_lsa_type), 2u);
  bench.ipv4(make_packet_v2({.type = 4}, make_update(1, {make_lsa_v2({.age = 3601, .type = 2},
                                                                     Writer().u32(0).u32(1))})));
  EXPECT_EQ(bench.count(ErrorKind::bad_lsa_age), 1u);
  EXPECT_EQ(bench.errors(), 3u);
}

TEST(Errors, EachKindHasANameAndASentence) {
  std::map<std::string, int> names;
  for (std::size_t i = 0; i < error_kind_count; ++i) {
    const auto kind = static_cast<ErrorKind>(i);
    EXPECT_FALSE(error_name(kind).empty());
    EXPECT_FALSE(error_text(kind).empty());
    ++names[std::string(error_name(kind))];
  }
  EXPECT_EQ(names.size(), error_kind_count);
  EXPECT_EQ(error_name(ErrorKind::bad_tlv_length), "bad_tlv_length");
  EXPECT_EQ(error_name(ErrorKind::cut_frame), "cut_frame");
}

TEST(Errors, TheFirstPacketIsKept) {
  ErrorCounts counts;
  counts.add(ErrorKind::tlv_overrun, 17);
  counts.add(ErrorKind::tlv_overrun, 3);
  EXPECT_EQ(counts[ErrorKind::tlv_overrun].count, 2u);
  EXPECT_EQ(counts[ErrorKind::tlv_overrun].first_packet, 17u);
  EXPECT_EQ(counts.total(), 2u);
}

}  // namespace
}  // namespace ospf_decode::testing
