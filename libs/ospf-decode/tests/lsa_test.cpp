// LSAs of both versions, from bytes to fields, good and bad.
#include <gtest/gtest.h>

#include "ospf_decode/lsa_v2.hpp"
#include "ospf_decode/lsa_v3.hpp"
#include "support/bytes.hpp"

namespace ospf_decode::testing {
namespace {

struct V2 {
  ErrorCounts errors;
  LsaV2 lsa;
  Octets raw;
  void decode(const LsaParts &parts, const Octets &body) {
    raw = make_lsa_v2(parts, body);
    decode_lsa_v2(raw, lsa, Report(errors, 1));
  }
};

struct V3 {
  ErrorCounts errors;
  LsaV3 lsa;
  Octets raw;
  void decode(const LsaParts &parts, const Octets &body) {
    raw = make_lsa_v3(parts, body);
    decode_lsa_v3(raw, lsa, Report(errors, 1));
  }
};

TEST(LsaV2, Header) {
  V2 v2;
  v2.decode(
      {.age = 0x8005, .options = 0x22, .type = 2, .id = 3, .router = 4, .sequence = 0x80000009},
      Writer().u32(0xffffff00).u32(7).u32(8));
  EXPECT_TRUE(v2.lsa.checksum_ok);
  EXPECT_TRUE(v2.lsa.complete);
  EXPECT_EQ(v2.lsa.header.age_seconds(), 5);
  EXPECT_TRUE(v2.lsa.header.do_not_age());
  EXPECT_EQ(v2.lsa.header.options, 0x22);
  EXPECT_EQ(v2.lsa.header.link_state_id, 3u);
  EXPECT_EQ(v2.lsa.header.advertising_router, 4u);
  EXPECT_EQ(v2.lsa.header.sequence, 0x80000009u);
  EXPECT_EQ(v2.lsa.header.length, 32);
  EXPECT_EQ(v2.lsa.raw.size(), 32u);
  EXPECT_EQ(v2.lsa.network.mask, 0xffffff00u);
  EXPECT_EQ(v2.lsa.network.attached_routers, (std::vector<std::uint32_t>{7, 8}));
}

TEST(LsaV2, RouterWithTopologies) {
  V2 v2;
  v2.decode({.type = 1}, Writer()
                             .u8(0x07)
                             .u8(0)
                             .u16(2)
                             .u32(1)
                             .u32(2)
                             .u8(1)
                             .u8(2)
                             .u16(10)
                             .u8(32)
                             .u8(0)
                             .u16(20)
                             .u8(127)
                             .u8(0)
                             .u16(30)
                             .u32(3)
                             .u32(4)
                             .u8(3)
                             .u8(0)
                             .u16(65535));
  ASSERT_TRUE(v2.lsa.complete);
  const RouterBodyV2 &router = v2.lsa.router;
  EXPECT_EQ(router.flags, router_flag_b | router_flag_e | router_flag_v);
  EXPECT_EQ(router.link_count, 2);
  ASSERT_EQ(router.links.size(), 2u);
  EXPECT_EQ(router.links[0].link_id, 1u);
  EXPECT_EQ(router.links[0].link_data, 2u);
  EXPECT_EQ(router.links[0].type, router_link_point_to_point);
  const auto first = router.metrics_of(router.links[0]);
  EXPECT_EQ(std::vector(first.begin(), first.end()),
            (std::vector<TopologyMetric>{{0, 10}, {32, 20}, {127, 30}}));
  const auto second_link = router.metrics_of(router.links[1]);
  EXPECT_EQ(std::vector(second_link.begin(), second_link.end()),
            (std::vector<TopologyMetric>{{0, 65535}}));
  EXPECT_EQ(v2.errors.total(), 0u);
}

TEST(LsaV2, ARouterThatAnnouncesMoreLinksThanItHas) {
  V2 v2;
  v2.decode({.type = 1}, Writer().u8(0).u8(0).u16(3).u32(1).u32(2).u8(1).u8(0).u16(10));
  EXPECT_FALSE(v2.lsa.complete);
  EXPECT_TRUE(v2.lsa.checksum_ok);
  EXPECT_EQ(v2.lsa.router.links.size(), 1u) << "what is there is kept";
  EXPECT_EQ(v2.errors[ErrorKind::lsa_body_short].count, 1u);
  v2.decode({.type = 1}, Writer().u8(0).u8(0).u16(1).u32(1).u32(2).u8(1).u8(255).u16(10));
  EXPECT_EQ(v2.lsa.router.links.size(), 0u);
  EXPECT_EQ(v2.errors[ErrorKind::lsa_body_short].count, 2u);
}

TEST(LsaV2, ARouterWithOctetsLeftOver) {
  V2 v2;
  v2.decode({.type = 1}, Writer().u8(0).u8(0).u16(0).u32(1));
  EXPECT_FALSE(v2.lsa.complete);
  EXPECT_EQ(v2.errors[ErrorKind::lsa_body_long].count, 1u);
}

TEST(LsaV2, SummariesOfBothKindsWithTopologies) {
  for (const unsigned type : {3u, 4u}) {
    V2 v2;
    v2.decode({.type = type}, Writer().u32(0xffff0000).u8(0).u24(0xabcdef).u8(5).u24(7));
    EXPECT_TRUE(v2.lsa.complete);
    EXPECT_EQ(v2.lsa.summary.mask, 0xffff0000u);
    EXPECT_EQ(v2.lsa.summary.metrics, (std::vector<TopologyMetric>{{0, 0xabcdef}, {5, 7}}));
  }
}

TEST(LsaV2, ExternalsOfBothKindsWithTopologies) {
  for (const unsigned type : {5u, 7u}) {
    V2 v2;
    v2.decode({.type = type}, Writer()
                                  .u32(0xffffff00)
                                  .u8(0x80)
                                  .u24(20)
                                  .u32(0x0a000063)
                                  .u32(300)
                                  .u8(0x21)
                                  .u24(9)
                                  .u32(0)
                                  .u32(1));
    EXPECT_TRUE(v2.lsa.complete);
    EXPECT_EQ(v2.lsa.external.mask, 0xffffff00u);
    EXPECT_EQ(v2.lsa.external.entries,
              (std::vector<ExternalEntryV2>{{0, true, 20, 0x0a000063, 300}, {33, false, 9, 0, 1}}));
  }
}

TEST(LsaV2, BodiesThatEndTooSoon) {
  for (const unsigned type : {1u, 2u, 3u, 4u, 5u, 7u}) {
    V2 v2;
    v2.decode({.type = type}, Octets(3, 1));
    EXPECT_FALSE(v2.lsa.complete) << type;
    EXPECT_EQ(v2.errors[ErrorKind::lsa_body_short].count, 1u) << type;
    EXPECT_EQ(v2.errors.total(), 1u) << type;
  }
}

TEST(LsaV2, BodiesWithOctetsLeftOver) {
  const std::map<unsigned, std::size_t> lengths = {{2, 10}, {3, 11}, {4, 9}, {5, 18}, {7, 27}};
  for (const auto &[type, length] : lengths) {
    V2 v2;
    v2.decode({.type = type}, Octets(length, 0));
    EXPECT_FALSE(v2.lsa.complete) << type;
    EXPECT_EQ(v2.errors[ErrorKind::lsa_body_long].count, 1u) << type;
  }
}

TEST(LsaV2, NothingOfTheLsaBeforeIsLeft) {
  V2 v2;
  v2.decode({.type = 1}, Writer().u8(7).u8(0).u16(1).u32(1).u32(2).u8(1).u8(0).u16(10));
  v2.decode({.type = 2}, Writer().u32(1).u32(2));
  v2.decode({.type = 3}, Writer().u32(1).u32(2));
  v2.decode({.type = 5}, Writer().u32(1).u32(2).u32(3).u32(4));
  v2.decode({.options = 0x42, .type = 10, .id = 0x01000007}, Writer().tlv(1, {1, 2, 3, 4}));
  EXPECT_TRUE(v2.lsa.router.links.empty());
  EXPECT_TRUE(v2.lsa.router.metrics.empty());
  EXPECT_EQ(v2.lsa.router.flags, 0);
  EXPECT_TRUE(v2.lsa.network.attached_routers.empty());
  EXPECT_EQ(v2.lsa.network.mask, 0u);
  EXPECT_TRUE(v2.lsa.summary.metrics.empty());
  EXPECT_TRUE(v2.lsa.external.entries.empty());
  EXPECT_EQ(v2.lsa.opaque.router_address, 0x01020304u);
  v2.decode({.type = 2}, Writer().u32(1).u32(2));
  EXPECT_TRUE(v2.lsa.opaque.tlvs.empty());
  EXPECT_FALSE(v2.lsa.opaque.has_router_address);
}

Octets te_link_value() {
  Writer unreserved;
  for (int i = 0; i < 8; ++i) unreserved.f32(static_cast<float>(i));
  return Writer()
      .tlv(1, {2})
      .tlv(2, Writer().u32(0x0a000002))
      .tlv(3, Writer().u32(0x0a000001).u32(0x0a000005))
      .tlv(4, Writer().u32(0x0a000002))
      .tlv(5, Writer().u32(300))
      .tlv(6, Writer().f32(1.25e9f))
      .tlv(7, Writer().f32(1e9f))
      .tlv(8, unreserved)
      .tlv(9, Writer().u32(0x80000005))
      .tlv(32768, {9, 8, 7});
}

TEST(TrafficEngineering, LinkTlv) {
  V2 v2;
  v2.decode({.options = 0x42, .type = 10, .id = 0x01000007}, Writer().tlv(2, te_link_value()));
  EXPECT_TRUE(v2.lsa.complete);
  EXPECT_TRUE(v2.lsa.is_opaque());
  EXPECT_EQ(v2.lsa.opaque_type(), opaque_traffic_engineering);
  EXPECT_EQ(v2.lsa.opaque_id(), 7u);
  ASSERT_EQ(v2.lsa.opaque.te_links().size(), 1u);
  const TeLink &link = v2.lsa.opaque.te_links()[0];
  EXPECT_EQ(link.present, 0x1ff);
  EXPECT_EQ(link.link_type, 2);
  EXPECT_EQ(link.link_id, 0x0a000002u);
  EXPECT_EQ(link.local_addresses, (std::vector<std::uint32_t>{0x0a000001, 0x0a000005}));
  EXPECT_EQ(link.remote_addresses, (std::vector<std::uint32_t>{0x0a000002}));
  EXPECT_EQ(link.metric, 300u);
  EXPECT_EQ(link.max_bandwidth, 1.25e9f);
  EXPECT_EQ(link.max_reservable_bandwidth, 1e9f);
  EXPECT_EQ(link.unreserved_bandwidth, (std::array<float, 8>{0, 1, 2, 3, 4, 5, 6, 7}));
  EXPECT_EQ(link.admin_group, 0x80000005u);
  ASSERT_EQ(link.sub_tlvs.size(), 10u);
  EXPECT_TRUE(link.sub_tlvs[8].typed);
  EXPECT_FALSE(link.sub_tlvs[9].typed);
  EXPECT_EQ(link.sub_tlvs[9].type, 32768);
  EXPECT_EQ(Octets(link.sub_tlvs[9].value.begin(), link.sub_tlvs[9].value.end()),
            (Octets{9, 8, 7}));
  EXPECT_EQ(v2.errors.total(), 0u);
}

TEST(TrafficEngineering, RouterAddressAndUnknownTlvs) {
  V2 v2;
  v2.decode({.options = 0x42, .type = 10, .id = 0x01000000},
            Writer().tlv(1, {10, 0, 0, 9}).tlv(77, {1, 2, 3, 4, 5}));
  EXPECT_TRUE(v2.lsa.complete);
  EXPECT_TRUE(v2.lsa.opaque.has_router_address);
  EXPECT_EQ(v2.lsa.opaque.router_address, 0x0a000009u);
  ASSERT_EQ(v2.lsa.opaque.tlvs.size(), 2u);
  EXPECT_TRUE(v2.lsa.opaque.tlvs[0].typed);
  EXPECT_EQ(v2.lsa.opaque.tlvs[1].type, 77);
  EXPECT_EQ(v2.lsa.opaque.tlvs[1].length, 5);
  EXPECT_FALSE(v2.lsa.opaque.tlvs[1].typed);
}

TEST(TrafficEngineering, SeveralLinks) {
  V2 v2;
  v2.decode({.options = 0x42, .type = 10, .id = 0x01000000},
            Writer().tlv(2, Writer().tlv(5, Writer().u32(1))).tlv(2, Writer().tlv(1, {1})));
  ASSERT_EQ(v2.lsa.opaque.te_links().size(), 2u);
  EXPECT_EQ(v2.lsa.opaque.te_links()[0].metric, 1u);
  EXPECT_EQ(v2.lsa.opaque.te_links()[1].metric, 0u);
  EXPECT_EQ(v2.lsa.opaque.te_links()[1].present, te_link_type);
}

TEST(TrafficEngineering, ATlvThatOverruns) {
  V2 v2;
  v2.decode({.options = 0x42, .type = 10, .id = 0x01000000},
            Writer().tlv(1, {10, 0, 0, 9}).u16(2).u16(9).u32(0));
  EXPECT_FALSE(v2.lsa.complete);
  EXPECT_EQ(v2.errors[ErrorKind::tlv_overrun].count, 1u);
  EXPECT_EQ(v2.lsa.opaque.router_address, 0x0a000009u) << "what came before is kept";
  EXPECT_EQ(v2.lsa.opaque.tlvs.size(), 1u);
}

TEST(TrafficEngineering, ASubTlvThatOverruns) {
  V2 v2;
  v2.decode({.options = 0x42, .type = 10, .id = 0x01000000},
            Writer().tlv(2, Writer().tlv(5, Writer().u32(4)).u16(6).u16(5).u32(0)));
  EXPECT_FALSE(v2.lsa.complete);
  EXPECT_EQ(v2.errors[ErrorKind::sub_tlv_overrun].count, 1u);
  ASSERT_EQ(v2.lsa.opaque.te_links().size(), 1u);
  EXPECT_EQ(v2.lsa.opaque.te_links()[0].metric, 4u);
  EXPECT_FALSE(v2.lsa.opaque.tlvs.at(0).typed);
}

TEST(TrafficEngineering, KnownTypesOfAnImpossibleLengthStayRaw) {
  for (unsigned type = 1; type <= 9; ++type) {
    V2 v2;
    v2.decode({.options = 0x42, .type = 10, .id = 0x01000000},
              Writer().tlv(2, Writer().tlv(type, Octets(6, 1))));
    EXPECT_EQ(v2.errors[ErrorKind::bad_tlv_length].count, 1u) << type;
    EXPECT_EQ(v2.lsa.opaque.te_links()[0].present, 0) << type;
    EXPECT_EQ(v2.lsa.opaque.te_links()[0].sub_tlvs.at(0).length, 6) << type;
    EXPECT_FALSE(v2.lsa.opaque.te_links()[0].sub_tlvs.at(0).typed) << type;
  }
  V2 v2;
  v2.decode({.options = 0x42, .type = 10, .id = 0x01000000}, Writer().tlv(1, Octets(8, 1)));
  EXPECT_EQ(v2.errors[ErrorKind::bad_tlv_length].count, 1u);
  EXPECT_FALSE(v2.lsa.opaque.has_router_address);
}

TEST(TrafficEngineering, PaddingMayBeMissingAtTheEnd) {
  V2 v2;
  v2.decode({.options = 0x42, .type = 10, .id = 0x01000000}, Writer().u16(9).u16(1).u8(5));
  EXPECT_TRUE(v2.lsa.complete);
  EXPECT_EQ(v2.lsa.opaque.tlvs.at(0).length, 1);
}

TEST(RouterInformation, OfVersion2) {
  V2 v2;
  v2.decode({.options = 0x42, .type = 11, .id = 0x04000000},
            Writer().tlv(1, {0x60, 0, 0, 1}).tlv(2, {0, 0, 0, 2}).tlv(7, {'r', '1'}).tlv(8, {0}));
  EXPECT_TRUE(v2.lsa.complete);
  const RouterInformation &info = v2.lsa.opaque.router_information;
  EXPECT_TRUE(info.has_informational);
  EXPECT_EQ(info.informational_capabilities, 0x60000001u);
  EXPECT_TRUE(info.has_functional);
  EXPECT_EQ(info.functional_capabilities, 2u);
  EXPECT_EQ(Octets(info.hostname.begin(), info.hostname.end()), (Octets{'r', '1'}));
  EXPECT_FALSE(v2.lsa.opaque.tlvs.at(3).typed);
}

TEST(RouterInformation, MoreThan32BitsStayRawToo) {
  V2 v2;
  v2.decode({.options = 0x42, .type = 10, .id = 0x04000000}, Writer().tlv(1, Octets(8, 0x11)));
  EXPECT_EQ(v2.lsa.opaque.router_information.informational_capabilities, 0x11111111u);
  EXPECT_FALSE(v2.lsa.opaque.tlvs.at(0).typed);
  EXPECT_EQ(v2.errors.total(), 0u);
}

TEST(Grace, OfVersion2) {
  V2 v2;
  v2.decode({.options = 0x42, .type = 9, .id = 0x03000000},
            Writer().tlv(1, {0, 0, 0, 60}).tlv(2, {1}).tlv(3, {10, 0, 0, 1}));
  EXPECT_TRUE(v2.lsa.complete);
  EXPECT_EQ(v2.lsa.opaque.grace.period, 60u);
  EXPECT_EQ(v2.lsa.opaque.grace.reason, 1);
  EXPECT_TRUE(v2.lsa.opaque.grace.has_address);
  EXPECT_EQ(v2.lsa.opaque.grace.interface_address, 0x0a000001u);
}

TEST(Opaque, OtherTypesAreRaw) {
  V2 v2;
  v2.decode({.options = 0x42, .type = 10, .id = 0xc8000000}, Octets(5, 0xff));
  EXPECT_FALSE(v2.lsa.complete);
  EXPECT_EQ(v2.lsa.raw.size(), 25u);
  EXPECT_EQ(v2.errors.total(), 0u);
  v2.decode({.options = 0x42, .type = 10, .id = 0x08000000}, Writer().tlv(1, {1}));
  EXPECT_TRUE(v2.lsa.complete);
  EXPECT_EQ(v2.lsa.opaque.tlvs.size(), 1u);
}

TEST(LsaV2, ABadChecksumLeavesTheBodyAlone) {
  Octets raw = make_lsa_v2({.type = 2}, Writer().u32(1).u32(2));
  raw[24] ^= 1;
  ErrorCounts errors;
  LsaV2 lsa;
  decode_lsa_v2(raw, lsa, Report(errors, 5));
  EXPECT_FALSE(lsa.checksum_ok);
  EXPECT_EQ(lsa.header.type, 2);
  EXPECT_TRUE(lsa.network.attached_routers.empty());
  EXPECT_EQ(errors[ErrorKind::bad_lsa_checksum].first_packet, 5u);
}

const Octets documentation_prefix = Writer().u32(0x20010db8).u32(0x00010000);  // 2001:db8:1::/48

TEST(LsaV3, Router) {
  V3 v3;
  v3.decode({.type = 0x2001}, Writer()
                                  .u8(0x13)
                                  .u24(0x13)
                                  .u8(1)
                                  .u8(0)
                                  .u16(10)
                                  .u32(5)
                                  .u32(6)
                                  .u32(7)
                                  .u8(4)
                                  .u8(0)
                                  .u16(20)
                                  .u32(8)
                                  .u32(9)
                                  .u32(10));
  EXPECT_TRUE(v3.lsa.complete);
  EXPECT_EQ(v3.lsa.router.flags, router_flag_b | router_flag_e | router_flag_nt);
  EXPECT_EQ(v3.lsa.router.options, 0x13u);
  ASSERT_EQ(v3.lsa.router.links.size(), 2u);
  EXPECT_EQ(v3.lsa.router.links[0].metric, 10);
  EXPECT_EQ(v3.lsa.router.links[0].interface_id, 5u);
  EXPECT_EQ(v3.lsa.router.links[0].neighbor_interface_id, 6u);
  EXPECT_EQ(v3.lsa.router.links[0].neighbor_router_id, 7u);
  EXPECT_EQ(v3.lsa.router.links[1].type, router_link_virtual);
}

TEST(LsaV3, Network) {
  V3 v3;
  v3.decode({.type = 0x2002}, Writer().u8(0).u24(0x33).u32(1).u32(2).u32(3));
  EXPECT_TRUE(v3.lsa.complete);
  EXPECT_EQ(v3.lsa.network.options, 0x33u);
  EXPECT_EQ(v3.lsa.network.attached_routers, (std::vector<std::uint32_t>{1, 2, 3}));
}

TEST(LsaV3, InterAreaPrefix) {
  V3 v3;
  v3.decode({.type = 0x2003},
            Writer().u8(0).u24(0x10001).u8(48).u8(0x0a).u16(0).bytes(documentation_prefix));
  EXPECT_TRUE(v3.lsa.complete);
  EXPECT_EQ(v3.lsa.inter_area_prefix.metric, 0x10001u);
  EXPECT_EQ(v3.lsa.inter_area_prefix.prefix.length, 48);
  EXPECT_EQ(v3.lsa.inter_area_prefix.prefix.options, prefix_p | prefix_la);
  EXPECT_EQ(prefix_text(v3.lsa.inter_area_prefix.prefix), "2001:db8:1::/48");
}

TEST(LsaV3, InterAreaRouter) {
  V3 v3;
  v3.decode({.type = 0x2004}, Writer().u32(0x13).u32(77).u32(0x0a000005));
  EXPECT_TRUE(v3.lsa.complete);
  EXPECT_EQ(v3.lsa.inter_area_router.options, 0x13u);
  EXPECT_EQ(v3.lsa.inter_area_router.metric, 77u);
  EXPECT_EQ(v3.lsa.inter_area_router.destination_router_id, 0x0a000005u);
}

TEST(LsaV3, ExternalWithAllThatMayFollow) {
  const Octets body = Writer()
                          .u8(7)
                          .u24(20)
                          .u8(48)
                          .u8(0)
                          .u16(0x2001)
                          .bytes(documentation_prefix)
                          .bytes(v6_source)
                          .u32(300)
                          .u32(12);
  V3 v3;
  v3.decode({.type = 0x4005}, body);
  EXPECT_TRUE(v3.lsa.complete);
  EXPECT_EQ(v3.lsa.external.flags, external3_e | external3_f | external3_t);
  EXPECT_EQ(v3.lsa.external.metric, 20u);
  EXPECT_EQ(ipv6_text(v3.lsa.external.forwarding_address), "fe80::1");
  EXPECT_EQ(v3.lsa.external.route_tag, 300u);
  EXPECT_EQ(v3.lsa.external.referenced_ls_type, 0x2001);
  EXPECT_EQ(v3.lsa.external.referenced_link_state_id, 12u);
  v3.decode({.type = 0x2007}, body);
  EXPECT_TRUE(v3.lsa.complete);
  EXPECT_EQ(v3.lsa.nssa.route_tag, 300u);
  EXPECT_EQ(v3.lsa.external.route_tag, 0u);
  EXPECT_EQ(v3.errors.total(), 0u);
}

TEST(LsaV3, ExternalWithNothingThatMayFollow) {
  V3 v3;
  v3.decode({.type = 0x4005}, Writer().u8(0).u24(1).u8(0).u8(0).u16(0));
  EXPECT_TRUE(v3.lsa.complete);
  EXPECT_EQ(prefix_text(v3.lsa.external.prefix), "::/0");
  // A flag without what it announces.
  v3.decode({.type = 0x4005}, Writer().u8(1).u24(1).u8(0).u8(0).u16(0));
  EXPECT_FALSE(v3.lsa.complete);
  EXPECT_EQ(v3.errors[ErrorKind::lsa_body_short].count, 1u);
}

TEST(LsaV3, Link) {
  V3 v3;
  v3.decode({.type = 0x0008}, Writer()
                                  .u8(9)
                                  .u24(0x13)
                                  .bytes(v6_source)
                                  .u32(2)
                                  .u8(48)
                                  .u8(0)
                                  .u16(0)
                                  .bytes(documentation_prefix)
                                  .u8(0)
                                  .u8(0)
                                  .u16(0));
  EXPECT_TRUE(v3.lsa.complete);
  EXPECT_EQ(v3.lsa.link.priority, 9);
  EXPECT_EQ(v3.lsa.link.options, 0x13u);
  EXPECT_EQ(ipv6_text(v3.lsa.link.link_local_address), "fe80::1");
  EXPECT_EQ(v3.lsa.link.prefix_count, 2u);
  ASSERT_EQ(v3.lsa.link.prefixes.size(), 2u);
  EXPECT_EQ(prefix_text(v3.lsa.link.prefixes[0]), "2001:db8:1::/48");
}

TEST(LsaV3, APrefixCountThatLies) {
  V3 v3;
  v3.decode({.type = 0x0008}, Writer().u32(0x13).bytes(v6_source).u32(0xffffffff).u32(0).u32(0));
  EXPECT_FALSE(v3.lsa.complete);
  EXPECT_EQ(v3.lsa.link.prefixes.size(), 2u);
  EXPECT_EQ(v3.errors[ErrorKind::lsa_body_short].count, 1u);
}

TEST(LsaV3, IntraAreaPrefix) {
  V3 v3;
  v3.decode({.type = 0x2009}, Writer()
                                  .u16(2)
                                  .u16(0x2002)
                                  .u32(5)
                                  .u32(6)
                                  .u8(48)
                                  .u8(2)
                                  .u16(10)
                                  .bytes(documentation_prefix)
                                  .u8(128)
                                  .u8(0)
                                  .u16(0)
                                  .bytes(v6_source));
  EXPECT_TRUE(v3.lsa.complete);
  const IntraAreaPrefixBody &body = v3.lsa.intra_area_prefix;
  EXPECT_EQ(body.referenced_ls_type, 0x2002);
  EXPECT_EQ(body.referenced_link_state_id, 5u);
  EXPECT_EQ(body.referenced_advertising_router, 6u);
  EXPECT_EQ(body.prefix_count, 2);
  ASSERT_EQ(body.prefixes.size(), 2u);
  EXPECT_EQ(body.prefixes[0].metric, 10);
  EXPECT_EQ(prefix_text(body.prefixes[1]), "fe80::1/128");
}

TEST(LsaV3, PrefixLengths) {
  for (unsigned length = 0; length <= 255; ++length) {
    V3 v3;
    v3.decode({.type = 0x2003},
              Writer().u32(1).u8(length).u8(0).u16(0).bytes(Octets((length + 31) / 32 * 4, 0xff)));
    if (length > 128) {
      EXPECT_FALSE(v3.lsa.complete) << length;
      EXPECT_EQ(v3.errors[ErrorKind::bad_prefix_length].count, 1u) << length;
      continue;
    }
    EXPECT_TRUE(v3.lsa.complete) << length;
    unsigned ones = 0;
    for (const std::uint8_t octet : v3.lsa.inter_area_prefix.prefix.address) {
      ones += static_cast<unsigned>(std::popcount(octet));
    }
    EXPECT_EQ(ones, length) << "bits beyond the length are cleared";
  }
}

TEST(LsaV3, PrefixesOfAnIpv4Family) {
  PrefixV3 prefix;
  prefix.address = {192, 0, 2, 0};
  prefix.length = 24;
  EXPECT_EQ(prefix_text(prefix, true), "192.0.2.0/24");
}

TEST(LsaV3, GraceAndRouterInformation) {
  V3 v3;
  v3.decode({.type = 0x000b}, Writer().tlv(1, {0, 0, 0, 120}).tlv(2, {3}));
  EXPECT_TRUE(v3.lsa.complete);
  EXPECT_EQ(v3.lsa.tlvs.grace.period, 120u);
  EXPECT_EQ(v3.lsa.tlvs.grace.reason, 3);
  for (const unsigned type : {0x800cu, 0xa00cu, 0xc00cu}) {
    v3.decode({.type = type}, Writer().tlv(1, {0x80, 0, 0, 0}));
    EXPECT_TRUE(v3.lsa.complete);
    EXPECT_EQ(v3.lsa.tlvs.router_information.informational_capabilities, 0x80000000u);
    EXPECT_FALSE(v3.lsa.tlvs.grace.has_period);
  }
}

TEST(LsaV3, UnknownFunctionCodesAreRaw) {
  V3 v3;
  v3.decode({.type = 0xa123}, Octets(9, 0));
  EXPECT_TRUE(v3.lsa.checksum_ok);
  EXPECT_FALSE(v3.lsa.complete);
  EXPECT_TRUE(v3.lsa.u_bit());
  EXPECT_EQ(v3.lsa.function_code(), 0x123);
  EXPECT_EQ(v3.errors.total(), 0u);
}

// Every LSA cut short at every octet, sealed again so that the checksum does not hide the body.
// Each start of the bodies, by type; `Decoded` is V2 or V3.
template <typename Decoded>
void expect_every_prefix_decodes(const std::map<unsigned, Octets> &bodies, LsaParts parts) {
  for (const auto &[type, body] : bodies) {
    parts.type = type;
    std::size_t complete = 0;
    for (std::size_t length = 0; length <= body.size(); ++length) {
      Decoded decoded;
      decoded.decode(parts,
                     Octets(body.begin(), body.begin() + static_cast<std::ptrdiff_t>(length)));
      EXPECT_TRUE(decoded.lsa.checksum_ok);
      if (!decoded.lsa.complete) {
        EXPECT_GE(decoded.errors.total(), 1u) << type << ' ' << length;
      }
      complete += decoded.lsa.complete;
    }
    EXPECT_GE(complete, 1u) << type;
    EXPECT_LT(complete, body.size()) << type;
  }
}

TEST(Truncation, EveryPrefixOfEveryKindDecodes) {
  const std::map<unsigned, Octets> v2_bodies = {
      {1, Writer().u8(7).u8(0).u16(2).u32(1).u32(2).u8(1).u8(1).u16(3).u32(4).u32(5).u32(6).u32(7)},
      {2, Writer().u32(1).u32(2).u32(3)},
      {3, Writer().u32(1).u32(2).u32(3)},
      {5, Writer().u32(1).u32(2).u32(3).u32(4).u32(5).u32(6).u32(7)},
      {10, Writer().tlv(1, {1, 2, 3, 4}).tlv(2, te_link_value())}};
  expect_every_prefix_decodes<V2>(v2_bodies, {.id = 0x01000000});
  const std::map<unsigned, Octets> v3_bodies = {
      {0x2001, Writer().zeros(36)},
      {0x2002, Writer().zeros(12)},
      {0x2003, Writer().u32(1).u8(48).u8(0).u16(0).u64(1)},
      {0x2004, Writer().zeros(12)},
      {0x4005, Writer().u8(7).u24(1).u8(48).u8(0).u16(1).u64(1).zeros(24)},
      {0x2007, Writer().u8(7).u24(1).u8(48).u8(0).u16(1).u64(1).zeros(24)},
      {0x0008, Writer().u32(1).zeros(16).u32(2).u8(48).u8(0).u16(0).u64(1).u8(64).u24(0).u64(2)},
      {0x2009, Writer().u16(2).u16(1).u64(0).u8(48).u8(0).u16(0).u64(1).u8(64).u24(0).u64(2)},
      {0x000b, Writer().tlv(1, {1, 2, 3, 4}).tlv(2, {1})},
      {0x800c, Writer().tlv(1, {1, 2, 3, 4}).tlv(7, {'a', 'b'})}};
  expect_every_prefix_decodes<V3>(v3_bodies, {});
}

}  // namespace
}  // namespace ospf_decode::testing
