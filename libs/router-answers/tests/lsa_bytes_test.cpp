#include "router_answers/lsa_bytes.hpp"

#include <gtest/gtest.h>

#include "ospf_decode/checksum.hpp"

namespace {

using namespace router_answers;
using Octets = std::vector<std::uint8_t>;

// An AS-external LSA for 192.0.2.0/24 as a router sent it.
const Octets external = {0x00, 0x01, 0x02, 0x05, 0xc0, 0x00, 0x02, 0x00, 0x0a, 0xf2, 0x00, 0x02,
                         0x7f, 0xff, 0xff, 0xfc, 0x00, 0x00, 0x00, 0x24, 0xff, 0xff, 0xff, 0x00,
                         0x80, 0x00, 0x00, 0x14, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};

ospf_decode::LsaHeader header_of(const Octets &lsa) {
  ospf_decode::Cursor cursor(lsa);
  return ospf_decode::read_lsa_header_v2(cursor);
}

Octets with_checksum(Octets lsa) {
  correct_checksum(lsa);
  return lsa;
}

LsaBody external_body(std::uint32_t metric) {
  LsaBody body;
  return body.u32(0xffffff00).u8(0x80).u24(metric).u32(0).u32(0);
}

TEST(CorrectChecksum, IsTheOneThatReceiversAccept) {
  Octets lsa = external;
  for (int round = 0; round < 2000; ++round) {
    lsa[24 + round % 12] = static_cast<std::uint8_t>(round * 37);
    lsa.resize(36 + static_cast<std::size_t>(round % 90), static_cast<std::uint8_t>(round));
    correct_checksum(lsa);
    ASSERT_TRUE(ospf_decode::lsa_checksum_ok(lsa)) << round;
    lsa[20] ^= 0x40;
    ASSERT_FALSE(ospf_decode::lsa_checksum_ok(lsa)) << round;
    lsa.resize(36);
  }
}

TEST(PutTogether, IsExactWhenTheChecksumAgrees) {
  const Octets sent = with_checksum(external);
  const HeldLsa lsa = put_together(2, header_of(sent), external_body(20));
  EXPECT_TRUE(lsa.exact);
  EXPECT_TRUE(lsa.has_body());
  EXPECT_EQ(lsa.raw, sent);
}

TEST(PutTogether, IsNotExactWhenAFieldDiffers) {
  const HeldLsa lsa = put_together(2, header_of(with_checksum(external)), external_body(21));
  EXPECT_FALSE(lsa.exact);
  EXPECT_EQ(lsa.header.length, 36);
}

TEST(PutTogether, IsNotExactWhenTheLengthDiffers) {
  ospf_decode::LsaHeader header = header_of(with_checksum(external));
  header.length = 48;
  EXPECT_FALSE(put_together(2, header, external_body(20)).exact);
  header.length = 0;  // not told
  EXPECT_TRUE(put_together(2, header, external_body(20)).exact);
}

TEST(HeaderAlone, HasNoBody) {
  const HeldLsa lsa = header_alone(2, header_of(with_checksum(external)));
  EXPECT_FALSE(lsa.exact);
  EXPECT_FALSE(lsa.has_body());
  EXPECT_EQ(lsa.header.length, 36);
}

TEST(Prefix, TakesWholeWords) {
  ospf_decode::PrefixV3 prefix;
  prefix.address = {0x20, 0x01, 0x0d, 0xb8, 0x00, 0x01};
  prefix.options = 0x08;
  const auto octets = [&](std::uint8_t length) {
    prefix.length = length;
    LsaBody body;
    return body.prefix(prefix, 0x1234).octets();
  };
  EXPECT_EQ(octets(0), (Octets{0, 0x08, 0x12, 0x34}));
  EXPECT_EQ(octets(32), (Octets{32, 0x08, 0x12, 0x34, 0x20, 0x01, 0x0d, 0xb8}));
  EXPECT_EQ(octets(33).size(), 12u);
  EXPECT_EQ(octets(128).size(), 20u);
}

}  // namespace
