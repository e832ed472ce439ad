// Images as lines: what stands on them, and that nothing is left out of a bad image.
#include <gtest/gtest.h>

#include "samples.hpp"

namespace {

using namespace ospf_harbor_check_tests;
using Lines = std::vector<std::string>;

Lines lines_of(std::uint32_t kind, const char *name, const Bytes &image, std::uint32_t fault = 0) {
  Lines lines;
  const auto take = [](const char *line, void *context) {
    static_cast<Lines *>(context)->push_back(line);
  };
  EXPECT_EQ(
      ospf_harbor_check_annotate(kind, name, image.data(), image.size(), take, &lines, nullptr),
      fault);
  return lines;
}

TEST(Annotate, NamesEachByteOfAnObject) {
  EXPECT_EQ(lines_of(OSPF_HARBOR_CHECK_OBJECT, "ospf_authentication",
                     from_hex("01 08 00000015 01 00000001 02 00 00000002 6b31 02 00 00 00")),
            (Lines{
                "0000  01                       ospf_authentication variant: 1",
                "0001  08                       ospf_authentication flags: state bytes",
                "0002  00 00 00 15              ospf_authentication jump word: 21, to 0x17",
                "0006  01                         ospf_authentication.auth_type_selection "
                "variant: 1",
                "0007  00 00 00 01                ospf_authentication.auth_type_selection value: "
                "OSPF_AUTH_TRAILER_KEY_CHAIN",
                "000b  02                       ospf_authentication.auth_type_selection state: 2",
                "000c  00                       ospf_authentication.sa state: 0",
                "000d  00 00 00 02              ospf_authentication.key_chain text length: 2",
                "0011  6b 31                    ospf_authentication.key_chain text: \"k1\"",
                "0013  02                       ospf_authentication.key_chain state: 2",
                "0014  00                       ospf_authentication.key_string state: 0",
                "0015  00                       ospf_authentication.crypto_algorithm_val state: 0",
                "0016  00                       ospf_authentication.no_auth state: 0",
            }));
}

TEST(Annotate, ShowsABadImageWholeWithTheFaultInItsPlace) {
  const Lines lines =
      lines_of(OSPF_HARBOR_CHECK_OBJECT, "ospf_authentication",
               from_hex("01 08 00000014 01 00000001 02 00 00000002 6b31 02 00 00 00"),
               OSPF_HARBOR_FAULT_CUT);
  ASSERT_EQ(lines.size(), 14u);
  EXPECT_EQ(lines[11],
            "0015  00                       ospf_authentication.crypto_algorithm_val state: 0");
  EXPECT_EQ(lines[12],
            "! offset 0x16: ospf_authentication.no_auth state: found 0 bytes to the end of its "
            "object, expected 1");
  EXPECT_EQ(lines[13], "0016  00 ");
}

TEST(Annotate, ShowsAddressesOidsAndFlagsAsPeopleReadThem) {
  EXPECT_EQ(lines_of(OSPF_HARBOR_CHECK_KEY, "tbl_ospf_static_neighbor",
                     from_hex("06 40 fe800000000000000000000000000001 00000102")),
            (Lines{
                "0000  06                       ospf_static_neighbor.address family: IPv6",
                "0001  40                       ospf_static_neighbor.address prefix length: 64",
                "0002  fe 80 00 00 00 00 00 00  ospf_static_neighbor.address address: fe80::1",
                "000a  00 00 00 00 00 00 00 01 ",
                "0012  00 00 01 02              ospf_static_neighbor.address zone: 258",
            }));
  const Lines flags = lines_of(OSPF_HARBOR_CHECK_OBJECT, "ospfv2_lsa_body_flags_options",
                               from_hex("00 00000005 85"));
  EXPECT_EQ(flags.back(),
            "0005  85                       ospfv2_lsa_body_flags_options value: "
            "OSPV2_LSA_BODY_FLAG_OPTIONS_V OSPV2_LSA_BODY_FLAG_OPTIONS_B bit 7");
}

TEST(Annotate, ShowsTheFrameOfARecord) {
  const Input of{OSPF_HARBOR_CHECK_RECORD, "tbl_ospf_area"};
  const Lines lines = lines_of(of.kind, nullptr, Sample(of, KELP_TRACKING_ON, 5).image());
  ASSERT_GT(lines.size(), 10u);
  EXPECT_EQ(lines[0], "0000  bc                       record marker: 188");
  EXPECT_EQ(lines[2], "0007  01                       record tracking mark: 1");
  EXPECT_EQ(lines[7], "001b  82 c5 34 7a d6 5f 83 77  record luid: tbl_ospf_area");
  EXPECT_EQ(lines[10], "002c  08                       ospf_area flags: state bytes");
}

TEST(Annotate, ShowsAnImageOfNothingKnownAsItsBytes) {
  EXPECT_EQ(lines_of(OSPF_HARBOR_CHECK_OBJECT, "ospf_arena", {1, 2}, OSPF_HARBOR_FAULT_NAME),
            (Lines{"! name: found \"ospf_arena\", expected the name of a structure, an "
                   "enumeration or a flag set",
                   "0000  01 02 "}));
}

TEST(Annotate, CountsOffsetsOfLongImagesInEightDigits) {
  Bytes image(0x10001);
  EXPECT_EQ(
      lines_of(OSPF_HARBOR_CHECK_KEY, "tbl_ospf_interface", image, OSPF_HARBOR_FAULT_TRAILING)[0],
      "00000000  00 00 00 00              ospf_interface.name text length: 0");
}

}  // namespace
