#include "answers_folder.hpp"
#include "ospf_decode/lsa_v2.hpp"
#include "ospf_decode/lsa_v3.hpp"

namespace {

using namespace router_answers;

using FrrV2 = AnswersFolder;
using FrrV3 = AnswersFolder;

// One external, as the daemon tells it.
std::string external(const std::string &options, const std::string &checksum) {
  return R"({"routerId":"10.0.0.1","asExternalLinkStates":[{"lsaAge":34,"options":")" + options +
         R"(","linkStateId":"192.0.2.0","advertisingRouter":"10.252.0.1",)"
         R"("lsaSeqNumber":"80000001","checksum":")" +
         checksum +
         R"(","length":36,"networkMask":24,"metricType":"E2 (larger",)"
         R"("tos":0,"metric":20,"forwardAddress":"0.0.0.0","externalRouteTag":1}]})";
}

const HeldLsa &only(const Router &router) {
  EXPECT_EQ(router.processes.size(), 1u);
  EXPECT_EQ(router.processes.at(0).database.lsas.size(), 1u);
  return router.processes.at(0).database.lsas.begin()->second;
}

TEST_F(FrrV2, AnExternalIsPutTogether) {
  write("ip-ospf-database-external.json", external("*|-|-|-|-|-|E|-", "0"));
  HeldLsa lsa = only(read());
  EXPECT_FALSE(lsa.exact);
  correct_checksum(lsa.raw);
  char digits[8];
  std::snprintf(digits, sizeof digits, "%x", lsa.raw[16] << 8 | lsa.raw[17]);
  write("ip-ospf-database-external.json", external("*|-|-|-|-|-|E|-", digits));
  const HeldLsa right = only(read());
  EXPECT_TRUE(right.exact);
  EXPECT_EQ(right.raw, lsa.raw);
  EXPECT_EQ(right.raw[2], 0x02);
}

// The daemon draws a star where the DN bit is; the checksum tells whether it is set.
TEST_F(FrrV2, TheDnBitFollowsFromTheChecksum) {
  write("ip-ospf-database-external.json", external("*|-|-|-|-|-|E|-", "0"));
  HeldLsa lsa = only(read());
  lsa.raw[2] = 0x82;
  correct_checksum(lsa.raw);
  char digits[8];
  std::snprintf(digits, sizeof digits, "%x", lsa.raw[16] << 8 | lsa.raw[17]);
  write("ip-ospf-database-external.json", external("*|-|-|-|-|-|E|-", digits));
  const HeldLsa right = only(read());
  EXPECT_TRUE(right.exact);
  EXPECT_EQ(right.raw[2], 0x82);
  EXPECT_EQ(right.header.options, 0x82);
}

TEST_F(FrrV2, LinksKeepTheirOrder) {
  std::string links;
  for (int n = 0; n < 12; ++n) {
    links += (n == 0 ? "" : ",") + ("\"link" + std::to_string(n)) +
             R"(":{"linkType":"Stub Network","networkAddress":"10.0.)" + std::to_string(n) +
             R"(.0","networkMask":"255.255.255.0","numOfTosMetrics":0,"tos0Metric":1})";
  }
  write("ip-ospf-database-router.json",
        R"({"routerLinkStates":{"areas":{"0.0.0.0":[{"lsaAge":1,"options":"*|-|-|-|-|-|E|-",)"
        R"("flags":0,"linkStateId":"10.0.0.1","advertisingRouter":"10.0.0.1",)"
        R"("lsaSeqNumber":"80000001","checksum":"1","length":168,"numOfLinks":12,)"
        R"("routerLinks":{)" +
            links + "}}]}}}");
  const HeldLsa lsa = only(read());
  ASSERT_EQ(lsa.raw.size(), 168u);
  for (std::size_t n = 0; n < 12; ++n) EXPECT_EQ(lsa.raw[24 + 12 * n + 2], n);
}

TEST_F(FrrV2, AnOpaqueLsaThatIsCutHasItsHeader) {
  const auto opaque = [&](const std::string &data) {
    write("ip-ospf-database-opaque-area.json",
          R"({"areaLocalOpaqueLsa":{"areas":{"0.0.0.0":[{"lsaAge":1,)"
          R"("options":"*|O|-|-|-|-|E|-","linkStateId":"1.0.0.1","advertisingRouter":"10.0.0.1",)"
          R"("lsaSeqNumber":"80000001","checksum":"1","length":28,"opaqueData":")" +
              data + R"("}]}}})");
    return only(read());
  };
  EXPECT_FALSE(opaque("0001").has_body());
  EXPECT_EQ(opaque("0001").header.length, 28);
  EXPECT_TRUE(opaque("0001000400010203").has_body());
  write("ip-ospf-database-opaque-area.json", "{}");
  EXPECT_TRUE(read().processes.at(0).database.lsas.empty());
}

// The list, a detailed form and the other form of the detailed form of one LSA.
TEST_F(FrrV2, TheBestOfSeveralAnswersStays) {
  write("ip-ospf-database.json",
        R"({"routerId":"10.0.0.1","areas":{},"asExternalLinkStates":[{"lsId":"192.0.2.0",)"
        R"("advertisedRouter":"10.252.0.1","lsaAge":34,"sequenceNumber":"80000001",)"
        R"("checksum":"1261"}]})");
  EXPECT_FALSE(only(read()).has_body());
  write("ip-ospf-database-external.json", external("*|-|-|-|-|-|E|-", "1261"));
  EXPECT_TRUE(only(read()).has_body());
}

TEST_F(FrrV2, BadAnswersAreRefusedByFileAndPlace) {
  const std::string right = external("*|-|-|-|-|-|E|-", "1261");
  const auto change = [&](const std::string &from, const std::string &to) {
    std::string text = right;
    text.replace(text.find(from), from.size(), to);
    write("ip-ospf-database-external.json", text);
  };
  const std::string place = "/asExternalLinkStates/0/";
  change("*|-|-|-|-|-|E|-", "*|-|-|-|-|E|-");
  expect_refused({"ip-ospf-database-external.json", place + "options", "eight options"});
  change("\"1261\"", "\"12610\"");
  expect_refused({place + "checksum", "12610", "hexadecimal"});
  change("\"networkMask\":24", "\"networkMask\":33");
  expect_refused({place + "networkMask", "33", "up to 32"});
  change("\"metric\":20,", "");
  expect_refused({place + "metric", "nothing"});
  change("E2 (", "E3 (");
  expect_refused({place + "metricType", "E1 or E2"});
  change("192.0.2.0", "192.0.2");
  expect_refused({place + "linkStateId", "192.0.2", "dotted quad"});
  change("\"lsaAge\":34", "\"lsaAge\":-1");
  expect_refused({place + "lsaAge", "-1"});
  write("ip-ospf-database-external.json", "");
  expect_refused({"ip-ospf-database-external.json", "JSON"});
}

TEST_F(FrrV2, TextIsRefusedByLine) {
  write("ip-ospf-database-external.txt",
        "                AS External Link States \n\n  LS age: 38\n  Options: 0x2  : *|-\n"
        "  Link State ID: 192.0.2\n");
  expect_refused({"ip-ospf-database-external.txt", "line 5", "192.0.2", "an address"});
  write("ip-ospf-database-external.txt", "      Router Link States\n\n  LS age: 38\n");
  expect_refused({"line 1", "the area"});
}

TEST_F(FrrV3, ADumpIsRefusedByLine) {
  const std::string heading = "\n        Area Scoped Link State Database (Area 0)\n\n";
  const std::string lsa =
      "[Router Id:0.0.0.0 Adv:10.252.0.1]:\n\n        00262001 00000000 0afc0001 80000002\n"
      "        69940028 02000113 0100000a 00000002\n        00000002 0afc0002\n";
  write("ipv6-ospf6-database-dump.txt", heading + lsa);
  const HeldLsa right = only(read());
  EXPECT_TRUE(right.exact);
  EXPECT_EQ(right.header.type, ospf_decode::lsa3_router);
  EXPECT_EQ(right.raw.size(), 40u);
  write("ipv6-ospf6-database-dump.txt", lsa);
  expect_refused({"ipv6-ospf6-database-dump.txt", "line 5", "heading"});
  write("ipv6-ospf6-database-dump.txt", heading + lsa + "        0000000x\n");
  expect_refused({"line 9", "0000000x", "hexadecimal"});
  write("ipv6-ospf6-database-dump.txt", heading + lsa + "        00000000\n");
  expect_refused({"44 octets", "as many as the LSA's header says"});
  write("ipv6-ospf6-database-dump.txt", "        Area Scoped Link State Database (Area x)\n");
  expect_refused({"line 1", "Area x"});
}

// The daemon has an instance ID for each interface, and one database that it sends by all of them.
TEST_F(FrrV3, InstanceIdsOfInterfacesAreProcessesOfTheirOwn) {
  const auto interface = [](const std::string &name, const char *area, int instance) {
    return '"' + name + R"(":{"attachedToArea":true,"areaId":")" + area + R"(","instanceId":)" +
           std::to_string(instance) +
           R"(,"type":"BROADCAST","cost":10,"timerIntervalsConfigHello":10,)"
           R"("timerIntervalsConfigDead":40,"timerIntervalsConfigRetransmit":5,)"
           R"("transmitDelaySec":1,"ospf6InterfaceState":"DR","priority":1})";
  };
  const auto lsa = [](const char *type, const char *id) {
    return std::string(R"({"lsa":[{"age":1,"type":")") + type + R"(","lsId":")" + id +
           R"(","advRouter":"10.0.0.1","seqNum":2147483649}])";
  };
  write("ipv6-ospf6.json", R"({"routerId":"10.0.0.1","areas":{"0.0.0.0":{},"0.0.0.1":{}}})");
  write("ipv6-ospf6-interface.json", '{' + interface("a", "0.0.0.0", 7) + '}');
  EXPECT_EQ(read().processes.at(0).instance_id, 7);
  write("ipv6-ospf6-interface.json", '{' + interface("a", "0.0.0.0", 0) + ',' +
                                         interface("b", "0.0.0.0", 7) + ',' +
                                         interface("c", "0.0.0.1", 7) + '}');
  write("ipv6-ospf6-database.json",
        R"({"interfaceScopedLinkStateDb":[)" + lsa("Lnk", "0.0.0.1") +
            R"(,"areaId":"0.0.0.0","interface":"a"},)" + lsa("Lnk", "0.0.0.2") +
            R"(,"areaId":"0.0.0.0","interface":"b"}],"areaScopedLinkStateDb":[)" +
            lsa("Rtr", "0.0.0.0") + R"(,"areaId":"0.0.0.0"},)" + lsa("Rtr", "0.0.0.0") +
            R"(,"areaId":"0.0.0.1"}],"asScopedLinkStateDb":[)" + lsa("ASE", "0.0.0.9") + "}]}");
  const Router router = read();
  ASSERT_EQ(router.processes.size(), 2u);
  const auto shape = [](const Process &process) {
    std::string text = std::to_string(process.instance_id);
    for (const auto &area : process.instance.areas) {
      text += " " + std::to_string(area.id) + ":";
      for (const auto &each : area.interfaces) text += each.name;
    }
    for (const auto &[key, held] : process.database.lsas) {
      text += " " + std::to_string(key.place.area) + key.place.interface + "/" +
              std::to_string(key.name.link_state_id);
    }
    return text;
  };
  EXPECT_EQ(shape(router.processes[0]), "0 0:a 0a/1 0/0 0/9");
  EXPECT_EQ(shape(router.processes[1]), "7 0:b 1:c 0b/2 0/0 1/0 0/9");
}

TEST_F(FrrV3, TypesWithoutANameArePassedOver) {
  write("ipv6-ospf6-database-detail.json",
        R"({"asScopedLinkStateDb":[{"lsa":[{"age":1,"type":"Unknown"}]}]})");
  EXPECT_TRUE(read().processes.at(0).database.lsas.empty());
}

TEST_F(FrrV3, APackedAnswerThatIsCutIsRefused) {
  const unsigned char packed[] = {0x1f, 0x8b, 0x08, 0, 0, 0, 0, 0, 0, 0x03, 0xab, 0x56};
  write("ipv6-ospf6-database.json.gz",
        std::string(reinterpret_cast<const char *>(packed), sizeof packed));
  expect_refused({"ipv6-ospf6-database.json.gz", "ends inside its packing"});
}

}  // namespace
