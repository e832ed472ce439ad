// What LSAs of OSPFv3 say that hold TLVs: their octets stand here as the documents draw them.
#include "views/tlv_words.hpp"

#include <gtest/gtest.h>

#include "views/lsa_detail.hpp"
#include "views/lsa_names.hpp"

namespace {

using ospf_tables::LsaView;

LsaView lsa_of(std::uint16_t type, const std::string &hex) {
  LsaView lsa;
  lsa.version = 3;
  lsa.type = type;
  lsa.decoded_completed = true;
  lsa.raw_data.resize(20);
  std::string digits;
  for (const char c : hex) {
    if (c == ' ') continue;
    digits += c;
    if (digits.size() < 2) continue;
    lsa.raw_data.push_back(static_cast<std::uint8_t>(std::stoul(digits, nullptr, 16)));
    digits.clear();
  }
  lsa.body = ospf_tables::OtherView{};
  return lsa;
}

// What is told behind the two lines of the header.
std::string told(std::uint16_t type, const std::string &hex) {
  const std::string text = tool::detail_of(lsa_of(type, hex));
  return text.substr(text.find('\n', text.find('\n') + 1) + 1);
}

TEST(TlvWords, OfATrafficEngineeringLsaOfOspfv3) {
  EXPECT_EQ(told(0xa00a,
                 "0003 0010 20010db8000000000000000000000001"
                 "0002 0044 0001 0001 01000000 0012 0008 00000007 0a000002"
                 "0013 0010 fe800000000000000000000000000001"
                 "0014 0010 fe800000000000000000000000000002 0005 0004 0000000a"),
            "    router address: 2001:db8::1\n"
            "    link\n"
            "      link type: point-to-point\n"
            "      neighbour: interface 7, router 10.0.0.2\n"
            "      local address: fe80::1\n"
            "      remote address: fe80::2\n"
            "      metric: 10\n");
}

TEST(TlvWords, OfAnExtendedRouterLsaWithSegments) {
  EXPECT_EQ(told(0xa021,
                 "03000113"
                 "0001 002c 0100000a 00000005 00000006 0a000002"
                 "0005 0007 60010000 003a98 00"
                 "0006 000c 00000000 0a000003 00000009"),
            "    flags B, E, options V6, E, R, AF\n"
            "    router link: point-to-point, metric 10, interface 5, neighbour's interface 6, "
            "neighbour 10.0.0.2\n"
            "      Adj-SID: label 15000, flags V, L, weight 1\n"
            "      LAN-Adj-SID: neighbour 10.0.0.3, index 9, flags none, weight 0\n");
  EXPECT_EQ(told(0xa022, "00000813 0002 0008 0a000001 0a000002"),
            "    options V6, E, R, 0x800\n"
            "    attached routers: 10.0.0.1, 10.0.0.2\n");
}

TEST(TlvWords, OfExtendedLsasOfPrefixes) {
  EXPECT_EQ(told(0xa029,
                 "0000 a021 00000000 0a000001"
                 "0006 0024 00000001 40020000 20010db800000001"
                 "0004 0008 50010000 00000064 0007 0003 00ffff 00"),
            "    refers to E-Router, ID 0.0.0.0, of router 10.0.0.1\n"
            "    intra-area prefix: 2001:db8:0:1::/64, options LA, metric 1\n"
            "      Prefix-SID: index 100, flags NP, E, algorithm strict SPF\n"
            "      SID/label: label 65535\n");
  EXPECT_EQ(told(0xa023, "0003 000c 00000014 20000000 20010db8"),
            "    inter-area prefix: 2001:db8::/32, options none, metric 20\n");
  EXPECT_EQ(told(0xa024, "0004 000c 00000013 0000001e 0a000009"),
            "    inter-area router: 10.0.0.9, options V6, E, R, metric 30\n");
  EXPECT_EQ(told(0xc025,
                 "0005 0028 04000064 00000000"
                 "0001 0010 20010db8000000000000000000000009 0003 0004 0000002a"),
            "    external prefix: ::/0, options none, metric 100, metric type 2\n"
            "      forwarding address: 2001:db8::9\n"
            "      tag: 42\n");
  EXPECT_EQ(told(0xa027, "0009 000c 18000004 80000000 0a010200"),
            "    prefix range: 10.1.2.0/24, size 4, flags IA\n");
}

TEST(TlvWords, OfAnExtendedLinkLsa) {
  EXPECT_EQ(told(0x8028, "01000013 0007 0010 fe800000000000000000000000000001 0008 0004 0a000001"),
            "    priority 1, options V6, E, R\n"
            "    link-local address: fe80::1\n"
            "    link-local address: 10.0.0.1\n");
}

TEST(TlvWords, KeepTheOctetsOfWhatIsNotSound) {
  // A prefix of more bits than an address has, a router link that is cut, a type that nobody has.
  EXPECT_EQ(told(0xa023, "0003 0008 00000014 81000000"), "    TLV 3, 8 octets: 0000001481000000\n");
  EXPECT_EQ(told(0xa021, "00000013 0001 0004 0100000a"),
            "    flags none, options V6, E, R\n    TLV 1, 4 octets: 0100000a\n");
  EXPECT_EQ(told(0xa021, "00000013 00ff 0001 2a000000"),
            "    flags none, options V6, E, R\n    TLV 255, 1 octet: 2a\n");
  EXPECT_EQ(told(0xa021, "0000"), "");
}

TEST(TlvWords, StandInJsonWithWhatIsBeforeThem) {
  const LsaView lsa = lsa_of(0xa022, "00000013 0002 0004 0a000001");
  EXPECT_EQ(tool::json_of(tool::head_words(lsa)).dump(), R"({"options":["V6","E","R"]})");
  EXPECT_EQ(tool::json_of(tool::tlv_words(lsa))[0]["says"].dump(), R"({"value":["10.0.0.1"]})");
  EXPECT_TRUE(tool::head_words(lsa_of(0xa00c, "0001 0004 80000000")).empty());
}

TEST(TlvWords, TypesOfOspfv3HaveNames) {
  EXPECT_EQ(tool::type_name(3, 0xa021), "E-Router");
  EXPECT_EQ(tool::type_name(3, 0xc025), "E-AS-Ext");
  EXPECT_EQ(tool::type_name(3, 0xa00a), "Intra-TE");
  EXPECT_EQ(tool::type_name(3, 0x800c), "Router-Info");
  EXPECT_EQ(tool::type_name(3, 0xa026), "0xa026");
  EXPECT_EQ(tool::type_name(2, 33), "0x0021");
  EXPECT_NE(tool::list_of_type_names().find(", E-Intra-Prefix"), std::string::npos);
}

}  // namespace
