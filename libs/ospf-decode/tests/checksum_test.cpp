#include "ospf_decode/checksum.hpp"

#include <gtest/gtest.h>

#include "support/bytes.hpp"

namespace ospf_decode::testing {
namespace {

// A summary LSA as a router sent it.
const Octets real_lsa = {0x00, 0x02, 0x02, 0x03, 0x0a, 0x00, 0x00, 0x00, 0x0a, 0xff,
                         0x00, 0x01, 0x80, 0x00, 0x00, 0x01, 0xec, 0x51, 0x00, 0x1c,
                         0xff, 0xff, 0xff, 0x00, 0x00, 0x00, 0x00, 0x0a};

TEST(LsaChecksum, HoldsForARealLsa) { EXPECT_TRUE(lsa_checksum_ok(real_lsa)); }

TEST(LsaChecksum, TheAgeTakesNoPart) {
  Octets older = real_lsa;
  older[0] = 0x0e;
  older[1] = 0x10;
  EXPECT_TRUE(lsa_checksum_ok(older));
}

TEST(LsaChecksum, EachOtherOctetTakesPart) {
  for (std::size_t i = 2; i < real_lsa.size(); ++i) {
    Octets spoilt = real_lsa;
    spoilt[i] ^= 0x01;
    EXPECT_FALSE(lsa_checksum_ok(spoilt)) << "octet " << i;
  }
}

TEST(LsaChecksum, ZeroIsNoChecksum) {
  // Sums of zero would come out right for an LSA of zeros.
  EXPECT_FALSE(lsa_checksum_ok(Octets(40, 0)));
}

TEST(LsaChecksum, TheWriterOfTheseTestsAgrees) {
  Octets again = real_lsa;
  put16(again, 16, 0);
  EXPECT_EQ(seal_lsa(again), real_lsa);
}

TEST(LsaChecksum, HoldsForLongLsas) {
  for (const std::size_t length : {4103u, 8206u, 65535u}) {
    Octets body(length - 20);
    for (std::size_t i = 0; i < body.size(); ++i) body[i] = static_cast<std::uint8_t>(255 - i % 7);
    EXPECT_TRUE(lsa_checksum_ok(make_lsa_v2({}, body))) << length;
  }
}

TEST(LsaChecksum, AShortOneIsBad) { EXPECT_FALSE(lsa_checksum_ok(Octets(17, 1))); }

TEST(InternetChecksum, TheExampleOfRfc1071) {
  InternetChecksum sum;
  sum.add(Octets{0x00, 0x01, 0xf2, 0x03, 0xf4, 0xf5, 0xf6, 0xf7});
  EXPECT_EQ(sum.value(), 0xffff - 0xddf2);
}

TEST(InternetChecksum, AnOddOctetCountsAsTheUpperHalf) {
  InternetChecksum sum;
  sum.add(Octets{0x12, 0x34, 0x56});
  EXPECT_EQ(sum.value(), 0xffff - (0x1234 + 0x5600));
}

TEST(InternetChecksum, EveryLengthAgreesWithTheTextbook) {
  Octets data;
  for (unsigned i = 0; i < 70; ++i) {
    InternetChecksum sum;
    sum.add(data);
    EXPECT_EQ(sum.value(), internet_checksum(data)) << i;
    data.push_back(static_cast<std::uint8_t>(i * 37 + 200));
  }
}

}  // namespace
}  // namespace ospf_decode::testing
