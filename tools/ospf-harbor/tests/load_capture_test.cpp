// The command `load capture` on captures made of bytes: each kind of LSA goes into the fields that
// are its, what cannot be kept is told by decoded_completed, and bad input of every kind is counted
// while the rest is loaded.
#include "sources/load_capture.hpp"

#include <gtest/gtest.h>
#include <ospf_harbor_oper/types.h>

#include <algorithm>
#include <chrono>

#include "capture_file.hpp"
#include "captured_tree.hpp"
#include "commands/commands.hpp"
#include "ospf_decode/lsa_v3.hpp"
#include "ospf_tables/input_error.hpp"
#include "shown.hpp"
#include "support/processes.hpp"

namespace {

using captured::CaptureFile;
using namespace ospf_decode;
using namespace ospf_decode::testing;

struct Outcome {
  int status;
  std::string out, err;
};

Outcome load(ospf_tables::Session &session, const std::vector<std::string> &files) {
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  Outcome outcome{tool::load_capture(session, {files, "", 0}), "", ""};
  outcome.out = ::testing::internal::GetCapturedStdout();
  outcome.err = ::testing::internal::GetCapturedStderr();
  return outcome;
}

constexpr std::uint32_t router = 0x0a000001;

// --- every kind of LSA ---------------------------------------------------------------------------

struct KindOfLsa {
  const char *name;
  unsigned version;
  LsaParts parts;
  Octets body;
  const char *fields = "";           // behind the header's, as captured_tree.hpp has them
  bool is_link_row = false;          // link_scope_lsa, else area_scope_lsa
  bool completed = true;             // all that was heard is in the fields
  std::vector<std::string> printed;  // lines of the rows' text
};

void PrintTo(const KindOfLsa &kind, std::ostream *out) { *out << kind.name; }

const Octets prefix_64 = Writer().u8(64).u8(prefix_la).u16(7).u32(0x20010db8).u32(0x000a0000).get();
const Octets prefix_128 = Writer().u8(128).u8(0).u16(9).u32(0x20010db8).zeros(11).u8(1).get();

Octets te_link(bool even_bandwidths) {
  Writer priorities;
  for (int priority = 0; priority < 8; ++priority) {
    priorities.f32(even_bandwidths || priority < 4 ? 2000.0f : 1000.0f);
  }
  return Writer()
      .tlv(1, {2})
      .tlv(2, Writer().u32(0x0a000002))
      .tlv(3, Writer().u32(0x0a000001).u32(0x0a000101))
      .tlv(4, Writer().u32(0x0a000002))
      .tlv(5, Writer().u32(70000))
      .tlv(6, Writer().f32(4000.0f))
      .tlv(7, Writer().f32(3000.0f))
      .tlv(8, priorities)
      .tlv(9, Writer().u32(0x80000001))
      .tlv(99, {1, 2, 3})
      .get();
}

const std::vector<KindOfLsa> kinds_of_lsa = {
    {
        .name = "RouterV2",
        .version = 2,
        .parts = {.type = 1},
        .body = from_hex("07 00 0002"
                         "0a000002 0a000001 01 02 000a  01 00 0014  40 00 ffff"
                         "c0a80100 ffffff00 03 00 0001"),
        .fields = " flags=7 links=2 [10.0.0.2 10.0.0.1 1 0:10 1:20 64:65535]"
                  " [192.168.1.0 255.255.255.0 3 0:1]",
        .printed = {"num_of_links@u_int16:2", "V@kelp_boolean:true",
                    "body_flag_options@ospfv2_lsa_body_flags_options:OSPV2_LSA_BODY_FLAG_OPTIONS_V "
                    "OSPV2_LSA_BODY_FLAG_OPTIONS_E OSPV2_LSA_BODY_FLAG_OPTIONS_B",
                    "link_id@u_int32:167772162", "link_data@u_int32:167772161", "mt_id@u_int32:64",
                    "metric@u_int16:65535"},
    },
    {
        .name = "NetworkV2",
        .version = 2,
        .parts = {.type = 2},
        .body = from_hex("fffffffc 0a000001 0a000002"),
        .fields = " mask=255.255.255.252 attached=10.0.0.1,10.0.0.2",
        .printed = {"network_mask@ip_address:255.255.255.252", "attached_router_num@u_int32:2",
                    "attached_router[1]@u_int32:167772162"},
    },
    {
        .name = "SummaryV2",
        .version = 2,
        .parts = {.type = 3},
        .body = from_hex("ffff0000 0000001e  05 00001f"),
        .fields = " mask=255.255.0.0 [0 30] [5 31]",
        .printed = {"summary_mask@ip_address:255.255.0.0", "mt_id@u_int32:5", "metric@u_int16:31"},
    },
    {
        .name = "AsbrSummaryV2",
        .version = 2,
        .parts = {.type = 4},
        .body = from_hex("00000000 00000028"),
        .fields = " mask=0.0.0.0 [0 40]",
        .printed = {"summary_mask@ip_address:0.0.0.0", "metric@u_int16:40"},
    },
    {
        .name = "ExternalV2",
        .version = 2,
        .parts = {.type = 5},
        .body = from_hex("ff000000"
                         "80 123456 0a000009 0000004d"
                         "06 000005 00000000 0000004e"),
        .fields = " mask=255.0.0.0 [0 1193046 10.0.0.9 77] [6 5 0.0.0.0 78]",
        .is_link_row = true,
        .printed = {"version@u_int32:2", "external_mask@ip_address:255.0.0.0",
                    "metric@u_int32:1193046", "forwarding_address@ip_address:10.0.0.9",
                    "external_route_tag@u_int32:78"},
    },
    {
        .name = "NssaV2",
        .version = 2,
        .parts = {.options = 0x08, .type = 7},
        .body = from_hex("ffffff00 80 000001 0a000007 00000005"),
        .fields = " mask=255.255.255.0 [0 1 10.0.0.7 5]",
        .printed = {"P@kelp_boolean:true", "flag_options@lsa_flag_options:LSA_FLAG_OPTIONS_P",
                    "forwarding_address@ip_address:10.0.0.7"},
    },
    {
        .name = "OpaqueLinkV2",
        .version = 2,
        .parts = {.type = 9, .id = 0x08000005},
        .body = Writer().tlv(1, {1, 2, 3, 4, 5}).tlv(40000, {}),
        .fields = " tlv=1/5 raw=0102030405 tlv=40000/0 raw=",
        .is_link_row = true,
        .printed = {"opaque_type@u_int8:8", "opaque_id@u_int32:5", "type@u_int16:40000",
                    "value_num@u_int32:5", "value[4]@u_int8:5"},
    },
    {
        .name = "OpaqueAreaV2",
        .version = 2,
        .parts = {.type = 10, .id = 0x01000001},
        .body = Writer().tlv(1, Writer().u32(router)).tlv(2, te_link(false)).tlv(9, {0xab}),
        .fields =
            " router=10.0.0.1 (type=2 id=10.0.0.2 local=10.0.0.1,10.0.1.1 remote=10.0.0.2 "
            "metric=70000 max=457a0000 reservable=453b8000 unreserved=44fa0000 group=80000001)"
            " (8/32 raw=44fa000044fa000044fa000044fa0000447a0000447a0000447a0000447a0000)"
            " (99/3 raw=010203) tlv=9/1 raw=ab",
        .is_link_row = true,
        .printed = {"router_address@ip_address:10.0.0.1", "link_type@u_int8:2",
                    "te_metric@u_int32:70000", "local_if_ipv4_addr[1]@ip_address:10.0.1.1",
                    "local_remote_ipv4_addr[0]@ip_address:10.0.0.2", "max_bandwidth@double:4000",
                    "max_reservable_bandwidth@double:3000", "unreserved_bandwidth@double:2000",
                    "admin_group@u_int32:2147483649", "type@u_int16:99", "value_len@u_int32:3"},
    },
    {
        .name = "OpaqueAsV2",
        .version = 2,
        .parts = {.type = 11, .id = 0x04000000},
        .body = Writer().tlv(1, from_hex("60000000")).tlv(7, {'r', '1'}),
        .fields = " tlv=1/4 raw=60000000 tlv=7/2 raw=7231",
        .is_link_row = true,
        .printed = {"opaque_type@u_int8:4", "length@u_int16:4", "value[0]@u_int8:96"},
    },
    {
        .name = "RouterV3",
        .version = 3,
        .parts = {.type = lsa3_router, .id = 0},
        .body = from_hex("17 000133"
                         "01 00 000a 00000003 00000004 0a000002"
                         "02 00 000b 00000005 00000006 0a000003"),
        .fields = " flags=17 options=133 [1 10 3 4 10.0.0.2] [2 11 5 6 10.0.0.3]",
        .printed = {"Nt@kelp_boolean:true",
                    "OSPFV3_LSA_FLAG_DC OSPFV3_LSA_FLAG_R OSPFV3_LSA_FLAG_E "
                    "OSPFV3_LSA_FLAG_V6 OSPFV3_LSA_FLAG_AF",
                    "OSPFV3_LSA_BODY_FLAG_OPTIONS_NT", "interface_id@u_int32:5",
                    "neighbor_interface_id@u_int32:6", "neighbor_router_id@u_int32:167772163",
                    "metric@u_int16:11"},
    },
    {
        .name = "NetworkV3",
        .version = 3,
        .parts = {.type = lsa3_network, .id = 5},
        .body = from_hex("00 000013 0a000001 0a000002"),
        .fields = " options=13 attached=10.0.0.1,10.0.0.2",
        .printed = {"attached_router_num@u_int32:2", "attached_router[0]@u_int32:167772161",
                    "lsa_flag_hdr_options@ospfv3_lsa_flag_options:OSPFV3_LSA_FLAG_R"},
    },
    {
        .name = "InterAreaPrefixV3",
        .version = 3,
        .parts = {.type = lsa3_inter_area_prefix, .id = 6},
        .body = Writer().u32(70000).bytes(prefix_64),
        .fields = " metric=70000 [2001:db8:a::/64 2]",
        .printed = {"metric@u_int32:70000", "ia_prefix@kelp_vstring:2001:db8:a::/64",
                    "ia_prefix_options@kelp_vstring:0x02"},
    },
    {
        .name = "InterAreaRouterV3",
        .version = 3,
        .parts = {.type = lsa3_inter_area_router, .id = 7},
        .body = from_hex("00 00001b 00 013880 0a000008"),
        .fields = " options=1b metric=80000 router=10.0.0.8",
        .printed = {"N@kelp_boolean:true", "metric@u_int32:80000",
                    "destination_router_id@u_int32:167772168"},
    },
    {
        .name = "ExternalV3",
        .version = 3,
        .parts = {.type = lsa3_as_external, .id = 8},
        .body = Writer()
                    .u8(external3_e | external3_f | external3_t)
                    .u24(90)
                    .bytes(from_hex("40 00 2001 20010db8 000b0000"
                                    "fe800000 00000000 00000000 00000009"))
                    .u32(4711)
                    .u32(3),
        .fields = " flags=4 metric=90 ref=2001 refid=0.0.0.3 forward=fe80::9 tag=4711 "
                  "[2001:db8:b::/64 0]",
        .is_link_row = true,
        .printed = {"version@u_int32:3", "metric@u_int32:90", "referenced_ls_type@u_int16:8193",
                    "external_prefix@kelp_vstring:2001:db8:b::/64",
                    "external_prefix_options@kelp_vstring:0x00",
                    "forwarding_address@ip_address:fe80::9", "external_route_tag@u_int32:4711",
                    "referenced_link_state_id@u_int32:3"},
    },
    {
        .name = "NssaV3",
        .version = 3,
        .parts = {.type = lsa3_nssa, .id = 9},
        .body = from_hex("00 00005b 00 08 0000"),
        .fields = " flags=0 metric=91 ref=0 refid=0.0.0.0 forward=:: tag=0 [::/0 8]",
        .printed = {"lsa_nssa_external@ospfv3_lsa_external", "metric@u_int32:91",
                    "external_prefix@kelp_vstring:::/0",
                    "external_prefix_options@kelp_vstring:0x08"},
    },
    {
        .name = "LinkV3",
        .version = 3,
        .parts = {.type = lsa3_link, .id = 10},
        .body = Writer()
                    .bytes(from_hex("64 000013 fe800000 00000000 00000000 00000001 00000002"))
                    .bytes(prefix_64)
                    .bytes(prefix_128),
        .fields = " priority=100 options=13 address=fe80::1 prefixes=2 [2001:db8::1/128 0]"
                  " [2001:db8:a::/64 2]",
        .is_link_row = true,
        .printed = {"rtr_priority@u_int8:100", "link_local_interface_address@ip_address:fe80::1",
                    "num_of_prefixes@u_int32:2", "prefix@kelp_vstring:2001:db8::1/128"},
    },
    {
        .name = "IntraAreaPrefixV3",
        .version = 3,
        .parts = {.type = lsa3_intra_area_prefix, .id = 11},
        .body = Writer()
                    .bytes(from_hex("0002 2002 00000005 0a000004"))
                    .bytes(prefix_64)
                    .bytes(prefix_128),
        .fields = " prefixes=2 ref=2002 refid=0.0.0.5 refadv=10.0.0.4"
                  " [2001:db8::1/128 0] [2001:db8:a::/64 2]",
        .printed = {"referenced_ls_type@u_int16:8194", "referenced_link_state_id@u_int32:5",
                    "referenced_adv_router@ip_address:10.0.0.4", "num_of_prefixes@u_int16:2",
                    "prefix@kelp_vstring:2001:db8:a::/64", "prefix_options@kelp_vstring:0x02"},
    },
    // Kinds that have no typed fields stay whole as raw data.
    {
        .name = "GroupMembershipV2",
        .version = 2,
        .parts = {.type = 6},
        .body = from_hex("00000001 00000002"),
        .completed = false,
        .printed = {"type@u_int16:6"},
    },
    {
        .name = "UnknownOpaqueV2",
        .version = 2,
        .parts = {.type = 10, .id = 0xc8000001},
        .body = from_hex("01020304"),
        .is_link_row = true,
        .completed = false,
        .printed = {"opaque_type@u_int8:200"},
    },
    {
        .name = "UnknownLinkScopeV3",
        .version = 3,
        .parts = {.type = 0x8123, .id = 12},
        .body = from_hex("01020304"),
        .is_link_row = true,
        .completed = false,
        .printed = {"type@u_int16:33059"},
    },
    {
        .name = "UnknownAreaScopeV3",
        .version = 3,
        .parts = {.type = 0xa123, .id = 13},
        .body = from_hex("01020304"),
        .completed = false,
        .printed = {"type@u_int16:41251"},
    },
    {
        .name = "UnknownAsScopeV3",
        .version = 3,
        .parts = {.type = 0xc123, .id = 14},
        .body = from_hex("01020304"),
        .is_link_row = true,
        .completed = false,
        .printed = {"type@u_int16:49443"},
    },
};

std::string dotted_of(std::uint32_t value) { return ipv4_text(value); }

class EveryKindOfLsa : public ::testing::TestWithParam<KindOfLsa> {};

TEST_P(EveryKindOfLsa, GoesFromBytesIntoItsFieldsAndIsPrinted) {
  const KindOfLsa &kind = GetParam();
  CaptureFile file;
  Octets lsa;
  if (kind.version == 2) {
    lsa = make_lsa_v2(kind.parts, kind.body);
    file.update_v2({lsa});
  } else {
    lsa = make_lsa_v3(kind.parts, kind.body);
    file.update_v3({lsa});
  }
  ospf_tables::Session session;
  const Outcome outcome = load(session, {file.path()});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  const captured::Tree tree = captured::read(session);
  ASSERT_EQ(tree.lsas.size(), 1u);
  const captured::Lsa &row = tree.lsas[0];
  char header[160];
  std::snprintf(header, sizeof header,
                "options=%x type=%x id=%s adv=10.0.0.1 seq=80000001 checksum=%x length=%zu",
                kind.version == 2 ? kind.parts.options : 0, kind.parts.type,
                dotted_of(kind.parts.id).c_str(), lsa[16] << 8 | lsa[17], lsa.size());
  EXPECT_EQ(row.fields, header + std::string(kind.fields));
  EXPECT_EQ(row.version, kind.version);
  EXPECT_EQ(row.container, kind.parts.type);
  EXPECT_EQ(row.is_link_row, kind.is_link_row);
  EXPECT_EQ(row.completed, kind.completed);
  EXPECT_EQ(row.raw, lsa);
  EXPECT_EQ(row.age, 1u);
  const std::string text = shown(session);
  for (const std::string &printed : kind.printed) {
    EXPECT_NE(text.find(printed), std::string::npos) << printed;
  }
}

INSTANTIATE_TEST_SUITE_P(Types, EveryKindOfLsa, ::testing::ValuesIn(kinds_of_lsa),
                         [](const auto &info) { return std::string(info.param.name); });

// --- what a row can hold only in part ------------------------------------------------------------

captured::Lsa only_lsa(const CaptureFile &file, int status = 0) {
  ospf_tables::Session session;
  const Outcome outcome = load(session, {file.path()});
  EXPECT_EQ(outcome.status, status) << outcome.err;
  const captured::Tree tree = captured::read(session);
  EXPECT_EQ(tree.lsas.size(), 1u);
  return tree.lsas.empty() ? captured::Lsa{} : tree.lsas[0];
}

std::string body_of(const captured::Lsa &lsa) {
  const std::size_t at = lsa.fields.find(' ', lsa.fields.find("length="));
  return at == std::string::npos ? "" : lsa.fields.substr(at);
}

TEST(CapturedLsa, OfLinksThatComeTwiceTheFirstStays) {
  Writer body;
  body.u8(0).u8(0).u16(3);
  for (const unsigned metric : {10u, 20u, 30u}) {
    body.u32(metric == 30 ? 6 : 5).u32(6).u8(4).u8(0).u16(metric);
  }
  CaptureFile file;
  file.update_v2({make_lsa_v2({}, body)});
  const captured::Lsa lsa = only_lsa(file);
  EXPECT_EQ(body_of(lsa), " flags=0 links=3 [0.0.0.5 0.0.0.6 4 0:10] [0.0.0.6 0.0.0.6 4 0:30]");
  EXPECT_FALSE(lsa.completed);
}

TEST(CapturedLsa, OfTopologiesAndPrefixesThatComeTwiceTheFirstStays) {
  CaptureFile summary;
  summary.update_v2({make_lsa_v2({.type = 3}, Writer().u32(0).u32(1).u8(7).u24(2).u8(7).u24(3))});
  const captured::Lsa metrics = only_lsa(summary);
  EXPECT_EQ(body_of(metrics), " mask=0.0.0.0 [0 1] [7 2]");
  EXPECT_FALSE(metrics.completed);

  CaptureFile prefixes;
  prefixes.update_v3({make_lsa_v3(
      {.type = lsa3_intra_area_prefix},
      Writer().u16(2).u16(lsa3_router).u32(0).u32(router).bytes(prefix_64).bytes(prefix_64))});
  const captured::Lsa intra = only_lsa(prefixes);
  EXPECT_EQ(body_of(intra),
            " prefixes=2 ref=2001 refid=0.0.0.0 refadv=10.0.0.1 [2001:db8:a::/64 2]");
  EXPECT_FALSE(intra.completed);
}

TEST(CapturedLsa, AMetricBeyond16BitsStaysAtTheHighest) {
  CaptureFile file;
  file.update_v2({make_lsa_v2({.type = 3}, Writer().u32(0xff000000).u32(0xffffff))});
  const captured::Lsa lsa = only_lsa(file);
  EXPECT_EQ(body_of(lsa), " mask=255.0.0.0 [0 65535]");
  EXPECT_FALSE(lsa.completed);
}

TEST(CapturedLsa, UnreservedBandwidthsThatAgreeNeedNoRawForm) {
  CaptureFile file;
  file.update_v2({make_lsa_v2({.type = 10, .id = 0x01000002}, Writer().tlv(2, te_link(true)))});
  const captured::Lsa lsa = only_lsa(file);
  EXPECT_NE(body_of(lsa).find("unreserved=44fa0000"), std::string::npos);
  EXPECT_EQ(body_of(lsa).find("(8/32"), std::string::npos);
  EXPECT_TRUE(lsa.completed);
}

TEST(CapturedLsa, ASecondLinkTlvIsTypedAmongTheUnknownOnes) {
  CaptureFile file;
  file.update_v2({make_lsa_v2(
      {.type = 10, .id = 0x01000003},
      Writer().tlv(2, Writer().tlv(1, {1})).tlv(2, Writer().tlv(1, {2}).tlv(200, {7})))});
  const captured::Lsa lsa = only_lsa(file);
  const std::string rest =
      " id=0.0.0.0 local= remote= metric=0 max=00000000 reservable=00000000 unreserved=00000000 "
      "group=0)";
  EXPECT_EQ(body_of(lsa), " router= (type=1" + rest +
                              " tlv=2/16 raw=000100010200000000c8000107000000 (type=2" + rest +
                              " (200/1 raw=07)");
  EXPECT_TRUE(lsa.completed);
}

TEST(CapturedLsa, ASubTlvThatReplacesAnotherIsNotKept) {
  CaptureFile file;
  file.update_v2(
      {make_lsa_v2({.type = 10, .id = 0x01000004},
                   Writer().tlv(2, Writer().tlv(5, Writer().u32(1)).tlv(5, Writer().u32(2))))});
  EXPECT_FALSE(only_lsa(file).completed);
}

TEST(CapturedLsa, KeepsTheDoNotAgeBitOfItsAge) {
  CaptureFile file;
  file.update_v2({make_lsa_v2({.age = 0x8007, .type = 2}, Writer().u32(0).u32(1))});
  EXPECT_EQ(only_lsa(file).age, 0x8007u);
}

// --- instances and places ------------------------------------------------------------------------

TEST(CapturedInstance, OneStandsForEachVersionAndInstanceId) {
  CaptureFile file;
  const Octets lsa_v2 = make_lsa_v2({.type = 2}, Writer().u32(0).u32(1));
  const Octets lsa_v3 = make_lsa_v3({.type = lsa3_inter_area_prefix},
                                    Writer().u32(1).u8(24).u8(0).u16(0).u32(0xc0000200));
  file.update_v2({lsa_v2}).update_v2({lsa_v2}, {.instance = 5});
  file.update_v3({lsa_v3}).update_v3({lsa_v3}, {.instance = 64});
  ospf_tables::Session session;
  const Outcome outcome = load(session, {file.path()});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_NE(outcome.out.find("loaded OSPFv3 instance 64 as heard: 1 area, 1 interface, "
                             "0 neighbours, 1 LSA"),
            std::string::npos)
      << outcome.out;
  const std::string text = shown(session);
  for (const char *key : {"ipv4,0.0.0.0", "ipv4,0.255.2.5", "ipv6,0.0.0.0", "ipv4,0.255.3.64"}) {
    EXPECT_NE(text.find(std::string("instance/") + key + "\n"), std::string::npos) << key;
  }
  // Instances 64 to 127 route IPv4, whose prefixes stand in the front of the field.
  EXPECT_NE(shown(session, "instance/ipv4,0.255.3.64").find(":192.0.2.0/24\n"), std::string::npos);
  EXPECT_NE(shown(session, "instance/ipv6,0.0.0.0").find(":c000:200::/24\n"), std::string::npos);
}

TEST(CapturedInstance, AreaOpaqueLsasOfOneNameAreKeptApartByArea) {
  CaptureFile file;
  const auto lsa = [](std::uint32_t address) {
    return make_lsa_v2({.type = 10, .id = 0x01000001}, Writer().tlv(1, Writer().u32(address)));
  };
  file.update_v2({lsa(1)}, {.area = 0});
  file.frame(make_ethernet(
      0x0800, make_ipv4({.source = 0x0a000101},
                        make_packet_v2({.type = 4, .area = 1}, make_update(1, {lsa(2)})))));
  ospf_tables::Session session;
  EXPECT_EQ(load(session, {file.path()}).status, 0);
  const captured::Tree tree = captured::read(session);
  ASSERT_EQ(tree.lsas.size(), 2u);
  EXPECT_EQ(tree.lsas[0].area, "0.0.0.0");
  EXPECT_EQ(tree.lsas[0].interface, "10.0.0.1@10.0.0.1");
  EXPECT_EQ(tree.lsas[1].area, "0.0.0.1");
  EXPECT_EQ(tree.lsas[1].interface, "10.0.0.1@10.0.1.1");
}

TEST(CapturedInstance, AnAreaOpaqueLsaStaysInTheAreaThatItWasHeardIn) {
  CaptureFile file;
  // The hello of area 2 comes from another interface of that address.
  file.update_v2({make_lsa_v2({.type = 10, .id = 0x01000001}, Writer().tlv(2, te_link(true)))},
                 {.area = 1});
  file.ipv4(make_packet_v2({.type = 1, .area = 2}, make_hello_v2()));
  const captured::Lsa lsa = only_lsa(file);
  EXPECT_EQ(lsa.area, "0.0.0.1");
  EXPECT_EQ(lsa.interface, "10.0.0.1@10.0.0.1");
  EXPECT_TRUE(lsa.is_link_row);
  EXPECT_TRUE(lsa.completed);
}

TEST(CapturedInterface, OfANonBroadcastNetworkHasTheRoutersThatItCallsByAddress) {
  CaptureFile file;
  const Octets hello = make_packet_v2({.type = 1}, make_hello_v2());
  for (const std::uint32_t target : {0x0a000002u, 0x0a000003u}) {
    file.frame(make_ethernet(0x0800, make_ipv4({.destination = target}, hello)));
  }
  ospf_tables::Session session;
  EXPECT_EQ(load(session, {file.path()}).status, 0);
  const captured::Tree tree = captured::read(session);
  ASSERT_EQ(tree.interfaces.size(), 1u);
  EXPECT_EQ(tree.interfaces[0].static_neighbors,
            (std::vector<std::string>{"10.0.0.2", "10.0.0.3"}));
  EXPECT_EQ(tree.interfaces[0].authentication, std::uint32_t{OSPF_AUTH_TYPE_NONE});
}

TEST(CapturedInterface, TellsTheAlgorithmByTheLengthOfItsDigests) {
  ospf_tables::Session session;
  EXPECT_EQ(load(session, {places::recordings() + "/campus/all.pcap"}).status, 0);
  std::vector<std::string> algorithms;
  for (const captured::Interface &interface : captured::read(session).interfaces) {
    if (interface.authentication == OSPF_AUTH_TRAILER_KEY) {
      algorithms.push_back(std::to_string(interface.version) + ' ' + interface.algorithm);
    }
  }
  std::ranges::sort(algorithms);
  algorithms.erase(std::unique(algorithms.begin(), algorithms.end()), algorithms.end());
  EXPECT_EQ(algorithms, (std::vector<std::string>{"2 md5", "3 hmac_sha_256"}));
}

// --- loading -------------------------------------------------------------------------------------

TEST(LoadCapture, AgainTakesThePlaceOfTheFirst) {
  const std::string campus = places::recordings() + "/campus/all.pcap";
  ospf_tables::Session session;
  EXPECT_EQ(load(session, {campus}).status, 0);
  const std::string once = shown(session);
  EXPECT_EQ(load(session, {campus}).status, 0);
  EXPECT_EQ(shown(session), once);
}

TEST(LoadCapture, SeveralFilesAreReadInTheOrderOfTime) {
  CaptureFile early;
  CaptureFile late;
  early.time = 1000;
  late.time = 1010;
  early.update_v2({make_lsa_v2({.type = 2, .sequence = 0x80000001}, Writer().u32(0).u32(1))});
  late.update_v2(
      {make_lsa_v2({.age = 3600, .type = 2, .sequence = 0x80000002}, Writer().u32(0).u32(1))});
  // The flush comes last in either order of the files.
  for (const auto &files :
       {std::vector{early.path(), late.path()}, std::vector{late.path(), early.path()}}) {
    ospf_tables::Session session;
    EXPECT_EQ(load(session, files).status, 0);
    EXPECT_TRUE(captured::read(session).lsas.empty());
  }
}

TEST(LoadCapture, WithoutMemoryLeavesTheTreeAsItWas) {
  ospf_tables::Session session;
  EXPECT_EQ(load(session, {places::recordings() + "/campus/all.pcap"}).status, 0);
  const std::string before = shown(session);
  kelp_memory_statistics used{};
  kelp_database_memory(session.database(), &used);
  const std::string transit = places::recordings() + "/transit/all.pcap";
  for (const std::size_t more : {100u, 10'000u, 100'000u, 300'000u, 900'000u}) {
    ASSERT_EQ(kelp_database_set_memory_limit(session.database(), used.used_bytes + more, nullptr),
              0);
    EXPECT_THROW(tool::load_capture(session, {{transit}, "", 0}), ospf_tables::LibraryFailure)
        << more;
    EXPECT_EQ(shown(session), before) << more;
    kelp_memory_statistics after{};
    kelp_database_memory(session.database(), &after);
    EXPECT_EQ(after.used_bytes, used.used_bytes) << more;
  }
  ASSERT_EQ(kelp_database_set_memory_limit(session.database(), 0, nullptr), 0);
  EXPECT_EQ(load(session, {transit}).status, 0);
  EXPECT_NE(shown(session), before);
}

TEST(LoadCapture, SaysWhatItReadAndNothingElse) {
  CaptureFile file;
  file.update_v2({make_lsa_v2({.type = 2}, Writer().u32(0).u32(1))});
  file.frame(make_ethernet(0x0806, Octets(28)));
  ospf_tables::Session session;
  const Outcome outcome = load(session, {file.path()});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out, "read " + file.path() +
                             ": 2 packets, 1 of OSPF with 1 LSA\n"
                             "loaded OSPFv2 as heard: 1 area, 1 interface, 0 neighbours, 1 LSA\n");
}

TEST(LoadCapture, TakesFilesOrAnInterface) {
  ospf_tables::Session session;
  const auto refused = [&](std::vector<std::string> words) {
    words.insert(words.begin(), {"load", "capture"});
    EXPECT_THROW(tool::run_words(session, words), tool::UsageError);
  };
  refused({});
  refused({"-i"});
  refused({"-i", "eth0", "--seconds", "7x"});
  refused({"a.pcap", "-i", "eth0"});
  refused({"a.pcap", "--seconds", "7"});
}

// What the program itself prints where no terminal is, and its exit status.
TEST(LoadCapture, AsAProgramShowsAPathAndNoProgress) {
  CaptureFile file;
  file.update_v2({make_lsa_v2({.type = 2, .id = 9}, Writer().u32(0xff000000).u32(1))});
  const auto run = [](std::vector<std::string> words) {
    words.insert(words.begin(), {"load", "capture"});
    return tool_tests::run_tool(words);
  };
  const tool_tests::Said said = run({file.path(), "--path", "area-lsas/2"});
  EXPECT_EQ(said.status, 0) << said.err;
  EXPECT_NE(said.out.find("network_mask@ip_address:255.0.0.0"), std::string::npos) << said.out;
  EXPECT_EQ((said.out + said.err).find('\r'), std::string::npos);
  EXPECT_EQ(run({file.path(), "/nowhere/no.pcap", "--show"}).status, 1);
  EXPECT_EQ(run({}).status, 2);
}

// --- bad input -----------------------------------------------------------------------------------

class BadCapture : public ::testing::Test {
 protected:
  BadCapture() { load(session_, {good_.path()}); }

  struct Good : CaptureFile {
    Good() { update_v2({make_lsa_v2({.type = 2}, Writer().u32(0xff000000).u32(1))}); }
  };

  // Loads `file` after a good one: status 1, one line on standard error that holds all the parts,
  // and `lsas` in the tree.
  void expect_complaint(const std::string &file, const std::vector<std::string> &parts,
                        std::size_t lsas) {
    const std::string before = shown(session_);
    const Outcome outcome = load(session_, {file});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
    EXPECT_TRUE(outcome.err.starts_with("ospf-harbor: load capture: " + file + ": ") ||
                outcome.err.starts_with("ospf-harbor: load capture: cannot open " + file + ": "))
        << outcome.err;
    for (const std::string &part : parts) {
      EXPECT_NE(outcome.err.find(part), std::string::npos) << part << " is not in: " << outcome.err;
    }
    if (outcome.out.empty()) {
      EXPECT_EQ(shown(session_), before);
    }
    EXPECT_EQ(captured::read(session_).lsas.size(), lsas);
  }

  Good good_;
  ospf_tables::Session session_;
};

// A part of a packet has no sum to check.
TEST_F(BadCapture, WithPacketsThatTheSnapLengthCut) {
  const std::string file = places::recordings() + "/dr-change/cut.pcap";
  expect_complaint(file, {"cut_frame: 11, first in packet 76"}, 0);
}

const Octets fine = make_lsa_v2({.type = 2, .id = 9}, Writer().u32(0xff000000).u32(1));

TEST_F(BadCapture, ThatIsNotThere) {
  expect_complaint("/nowhere/no.pcap", {"cannot open /nowhere/no.pcap: No such file or directory"},
                   1);
}

TEST_F(BadCapture, ThatIsEmpty) {
  CaptureFile file;
  file.replace({});
  expect_complaint(file.path(), {"cannot open ", "a capture is pcap or pcapng"}, 1);
}

TEST_F(BadCapture, ThatIsNoCapture) {
  CaptureFile file;
  file.replace(Octets(100, 'x'));
  expect_complaint(file.path(), {"unknown file format", "a capture is pcap or pcapng"}, 1);
}

TEST_F(BadCapture, WithoutPackets) {
  CaptureFile file;
  expect_complaint(file.path(), {"found no OSPF packet in 0 packets"}, 1);
}

TEST_F(BadCapture, WithoutOspf) {
  CaptureFile file;
  file.frame(make_ethernet(0x0806, Octets(28)))
      .frame(make_ethernet(0x0800, make_ipv4({.protocol = 6}, Octets(20))));
  expect_complaint(file.path(), {"found no OSPF packet in 2 packets"}, 1);
}

TEST_F(BadCapture, OfAnotherLinkType) {
  CaptureFile file(147);
  file.frame(Octets(60));
  const Outcome outcome = load(session_, {file.path()});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("foreign_link_type: 1, first in packet 1"), std::string::npos)
      << outcome.err;
  EXPECT_EQ(captured::read(session_).lsas.size(), 1u);
}

TEST_F(BadCapture, ThatEndsInsideAPacketIsLoadedUpToThere) {
  CaptureFile file;
  file.update_v2({fine}).update_v2({fine});
  Octets content = file.content();
  content.resize(content.size() - 10);
  file.replace(content);
  expect_complaint(file.path(), {"damaged_capture: 1, first in packet 2", "truncated"}, 1);
}

TEST_F(BadCapture, WithAFrameThatWasCutLoadsTheRest) {
  CaptureFile file;
  Octets packet =
      make_ethernet(0x0800, make_ipv4({}, make_packet_v2({.type = 4}, make_update(1, {fine}))));
  packet.resize(packet.size() - 4);
  file.update_v2({fine}).frame(packet, 4);
  const Outcome outcome = load(session_, {file.path()});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("cut_frame: 1, first in packet 2"), std::string::npos) << outcome.err;
  EXPECT_EQ(captured::read(session_).lsas.size(), 1u);
}

TEST_F(BadCapture, WithAnLsaWhoseLengthLies) {
  Octets lying = make_lsa_v2({.type = 2, .id = 7}, Writer().u32(0).u32(1));
  put16(lying, 18, 4000);
  CaptureFile file;
  file.update_v2({fine}).update_v2({lying});
  expect_complaint(file.path(), {"lying_lsa_length: 1, first in packet 2"}, 1);
}

TEST_F(BadCapture, WithAnLsaWhoseChecksumIsBadLoadsTheOthersOfItsPacket) {
  Octets spoilt = make_lsa_v2({.type = 2, .id = 7}, Writer().u32(0).u32(1));
  spoilt.back() ^= 0xff;
  CaptureFile file;
  file.update_v2({spoilt, fine});
  expect_complaint(file.path(), {"bad_lsa_checksum: 1, first in packet 1"}, 1);
  EXPECT_EQ(captured::read(session_).lsas[0].name.substr(0, 9), "2 0.0.0.9");
}

TEST_F(BadCapture, WithATlvThatOverrunsKeepsWhatCameBefore) {
  CaptureFile file;
  file.update_v2({make_lsa_v2({.type = 10, .id = 0x01000001},
                              Writer().tlv(1, Writer().u32(router)).u16(2).u16(4000).u32(0))});
  expect_complaint(file.path(), {"tlv_overrun: 1, first in packet 1"}, 1);
  const captured::Lsa lsa = captured::read(session_).lsas[0];
  EXPECT_NE(lsa.fields.find("router=10.0.0.1"), std::string::npos) << lsa.fields;
  EXPECT_FALSE(lsa.completed);
}

TEST_F(BadCapture, WithASubTlvThatOverrunsKeepsTheTlvRaw) {
  CaptureFile file;
  file.update_v2({make_lsa_v2({.type = 10, .id = 0x01000001},
                              Writer().tlv(2, Writer().tlv(1, {2}).u16(2).u16(400)))});
  expect_complaint(file.path(), {"sub_tlv_overrun: 1, first in packet 1"}, 1);
  const captured::Lsa lsa = captured::read(session_).lsas[0];
  EXPECT_NE(lsa.fields.find("(type=2 "), std::string::npos) << lsa.fields;
  EXPECT_NE(lsa.fields.find(" tlv=2/12 raw=000100010200000000020190"), std::string::npos)
      << lsa.fields;
  EXPECT_FALSE(lsa.completed);
}

TEST_F(BadCapture, WithABodyThatIsShortKeepsItRaw) {
  CaptureFile file;
  file.update_v2({make_lsa_v2({}, Writer().u8(0).u8(0).u16(5).u32(1).u32(2).u8(3).u8(0).u16(4))});
  expect_complaint(file.path(), {"lsa_body_short: 1, first in packet 1"}, 1);
  const captured::Lsa lsa = captured::read(session_).lsas[0];
  EXPECT_EQ(body_of(lsa), " flags=0 links=5 [0.0.0.1 0.0.0.2 3 0:4]");
  EXPECT_FALSE(lsa.completed);
}

TEST_F(BadCapture, CountsEachKindWithThePacketOfTheFirst) {
  Octets spoilt = fine;
  spoilt.back() ^= 0xff;
  Octets lying = fine;
  put16(lying, 18, 4);
  CaptureFile file;
  file.update_v2({fine}).update_v2({spoilt, spoilt}).update_v2({lying}).update_v2({spoilt});
  const Outcome outcome = load(session_, {file.path()});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("bad_lsa_checksum: 3, first in packet 2"), std::string::npos)
      << outcome.err;
  EXPECT_NE(outcome.err.find("lying_lsa_length: 1, first in packet 3"), std::string::npos)
      << outcome.err;
}

TEST_F(BadCapture, AmongGoodOnesDoesNotKeepThemOut) {
  CaptureFile other;
  other.update_v2({fine});
  const Outcome outcome = load(session_, {good_.path(), "/nowhere/no.pcap", other.path()});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("/nowhere/no.pcap"), std::string::npos);
  EXPECT_EQ(captured::read(session_).lsas.size(), 2u);
}

TEST_F(BadCapture, OfAnInterfaceThatIsNotThere) {
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(tool::load_capture(session_, {{}, "no-such-if0", 1}), 1);
  const std::string err = ::testing::internal::GetCapturedStderr();
  EXPECT_NE(err.find("cannot listen on no-such-if0: "), std::string::npos) << err;
}

// Whether one may listen there or not, nothing is heard and it ends in time.
TEST_F(BadCapture, OfALinkOnWhichNothingIsSaid) {
  const std::string before = shown(session_);
  ::testing::internal::CaptureStderr();
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(tool::load_capture(session_, {{}, "lo", 1}), 1);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
  const std::string err = ::testing::internal::GetCapturedStderr();
  EXPECT_NE(err.find("load capture: lo: found "), std::string::npos) << err;
  EXPECT_EQ(shown(session_), before);
}

}  // namespace
