// The text form of structures: what stands where, to the byte, with the gap in front of a nested
// closing brace.
#include <ospf_harbor_oper.h>

#include "model/lists.hpp"
#include "support/objects.hpp"

namespace {

using namespace encodings;
using harness::CallLog;
using harness::Store;
namespace types = harbor::model::types;

using Print = std::uint32_t(kelp_handle *, std::uint32_t, char *, std::uint32_t, const char *,
                            const void *, std::uint32_t, std::uint32_t *);

// Shows through wherever the text leaves the buffer as it was.
constexpr char filling = '#';

template <typename Type>
std::string text_of(kelp_handle *handle, const Object<Type> &object, std::uint32_t *err,
                    std::uint32_t indent = 0, const char *label = "x") {
  std::string buffer(64 * 1024, filling);
  const std::uint32_t length =
      object.template call<Print>("print")(handle, 0, buffer.data(), indent, label, object,
                                           static_cast<std::uint32_t>(buffer.size()), err);
  return buffer.substr(0, length);
}

// The gap of a block's closing line: what the buffer held.
std::string gap(std::size_t indent) { return std::string(indent, filling); }

TEST(Text, AnAreaShowsItsValuesAndNoReference) {
  Store store;
  const Object<ospf_area> area(store, types::ospf_area);
  store(ospf_area_area_id_set_value, area, 10);
  EXPECT_EQ(text_of(store, area, &store.err), "x@ospf_area: {\n  area_id@u_int32:10\n}\n");
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, ANestedStructureIsABlockOfItsOwnAtTwoMore) {
  Store store;
  const Object<ospf_neighbor> neighbor(store, types::ospf_neighbor);
  ip_address address = ip_address_make_ipv4(0x0A000001);
  store(ospf_neighbor_neighbor_id_set, neighbor, &address);
  store(ospf_neighbor_state_set_value, neighbor, 8);
  auto *stats = store(ospf_neighbor_stats_get, neighbor);
  store(ospf_nbr_stat_nbr_event_count_set_value, stats, 5);
  EXPECT_EQ(text_of(store, neighbor, &store.err),
            "x@ospf_neighbor: {\n"
            "  neighbor_id@ip_address:10.0.0.1\n"
            "  address@ip_address:\n"
            "  dr@ip_address:\n"
            "  bdr@ip_address:\n"
            "  state@nbr_state_type:NBR_STATE_FULL\n"
            "  stats@ospf_nbr_stat: {\n"
            "    nbr_event_count@u_int32:5\n"
            "    nbr_retrans_qlen@u_int32:0\n" +
                gap(2) + "}\n}\n");
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, TheBlanksOfTheClosingLineFallOnTheStartOfTheObject) {
  Store store;
  const Object<ospf_nbr_stat> object(store, types::ospf_nbr_stat);
  EXPECT_EQ(text_of(store, object, &store.err, 4),
            "    x@ospf_nbr_stat: {\n"
            "      nbr_event_count@u_int32:0\n"
            "      nbr_retrans_qlen@u_int32:0\n" +
                gap(4) + "}\n");
  // A start that was overwritten in the meantime gets its blanks back: the last call but one of the
  // writer goes there.
  CallLog calls;
  text_of(store, object, &store.err, 4);
  const auto writers = calls.only({"kelp_print_space", "u_int32_print"});
  EXPECT_EQ(writers, (std::vector<std::string>{"kelp_print_space", "u_int32_print", "u_int32_print",
                                               "kelp_print_space"}));
  EXPECT_EQ(store.err, 0u);
}

std::vector<std::string> lines_of(const std::string &text) {
  std::vector<std::string> lines;
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t end = text.find('\n', at);
    lines.push_back(text.substr(at, end - at));
    at = end == std::string::npos ? text.size() : end + 1;
  }
  return lines;
}

TEST(Text, AnInterfaceOfVariant0EndsBehindBdrWithoutAClosingLine) {
  Store store;
  store.set_variant("ospf_interface", 0);
  const Object<ospf_interface> object(store, types::ospf_interface);
  const auto lines = lines_of(text_of(store, object, &store.err));
  EXPECT_EQ(lines.front(), "x@ospf_interface: {");
  EXPECT_EQ(lines.back(), "  bdr@ip_address:");
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, AnInterfaceOfVariant1HasItsPriorityAndAClosingLine) {
  Store store;
  const Object<ospf_interface> object(store, types::ospf_interface);
  store(ospf_interface_priority_set_value, object, 9);
  const auto lines = lines_of(text_of(store, object, &store.err));
  ASSERT_GE(lines.size(), 3u);
  EXPECT_EQ(lines[lines.size() - 3], "  bdr@ip_address:");
  EXPECT_EQ(lines[lines.size() - 2], "  priority@u_int8:9");
  EXPECT_EQ(lines.back(), "}");
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, ABlockLeftOpenIsFollowedByWhatStandsAroundIt) {
  Store store;
  store.set_variant("ospfv2_header", 0);
  const Object<ospfv2_lsa> lsa(store, types::ospfv2_lsa);
  const std::string text = text_of(store, lsa, &store.err);
  EXPECT_NE(text.find("    length@u_int16:0\n  lsa_body@ospfv2_lsa_body: {\n"), std::string::npos);
  EXPECT_EQ(text.find("flag_options@lsa_flag_options"), std::string::npos);
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, ALsaBodyShowsItsFlagSetsOnlyAtVariant1) {
  Store store;
  const Object<ospfv2_lsa_body> body(store, types::ospfv2_lsa_body);
  store(ospfv2_lsa_body_body_flag_options_set_value, body, 2);
  auto lines = lines_of(text_of(store, body, &store.err));
  EXPECT_EQ(lines.back(), "}");
  EXPECT_EQ(lines[lines.size() - 2],
            "  body_flag_options@ospfv2_lsa_body_flags_options:OSPV2_LSA_BODY_FLAG_OPTIONS_E ");
  header(body).variant = 0;
  lines = lines_of(text_of(store, body, &store.err));
  EXPECT_EQ(lines.back(), "  external_mask@ip_address:");

  const Object<ospfv3_lsa_body> other(store, types::ospfv3_lsa_body);
  lines = lines_of(text_of(store, other, &store.err));
  EXPECT_EQ(lines[lines.size() - 3], "  lsa_flag_options@ospfv3_lsa_flag_options:");
  EXPECT_EQ(lines[lines.size() - 2], "  lsa_body_flags@ospfv3_lsa_body_flag_options:");
  EXPECT_EQ(lines.back(), "}");
  header(other).variant = 0;
  EXPECT_EQ(lines_of(text_of(store, other, &store.err)).back(), gap(2) + "}");
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, LinkDataOfVariant0EndsBehindItsPrefixesWhileAPrefixAlwaysCloses) {
  Store store;
  const Object<ospfv3_link_data> data(store, types::ospfv3_link_data);
  header(data).variant = 0;
  EXPECT_EQ(lines_of(text_of(store, data, &store.err)).back(), "  num_of_prefixes@u_int32:0");
  const Object<ospfv3_inter_area_prefix> prefix(store, types::ospfv3_inter_area_prefix);
  EXPECT_EQ(lines_of(text_of(store, prefix, &store.err)).back(), "}");
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, AnNssaShowsItsExternalPartAsANestedBlock) {
  Store store;
  const Object<ospfv3_nssa> nssa(store, types::ospfv3_nssa);
  const auto lines = lines_of(text_of(store, nssa, &store.err));
  EXPECT_EQ(lines[1], "  lsa_nssa_external@ospfv3_lsa_external: {");
  EXPECT_EQ(lines[2], "    metric@u_int32:0");
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, ALinkScopeLsaWithoutRawDataShowsTheCounterAlone) {
  Store store;
  const Object<link_scope_lsa> object(store, types::link_scope_lsa);
  const std::string text = text_of(store, object, &store.err);
  EXPECT_NE(text.find("  raw_data_len@u_int32:0\n  version@u_int32:0\n"), std::string::npos);
  EXPECT_EQ(text.find("raw_data["), std::string::npos);
  EXPECT_EQ(lines_of(text).back(), "}");
  header(object).variant = 0;
  const std::string lower = text_of(store, object, &store.err);
  EXPECT_EQ(lower.find("router_address"), std::string::npos);
  EXPECT_NE(lines_of(lower).back(), "}");
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, AnLsaOfOneVersionShowsThePartOfTheOtherWithItsZeroes) {
  Store store;
  const Object<link_scope_lsa> object(store, types::link_scope_lsa);
  store(link_scope_lsa_version_set_value, object, 3);
  const std::string text = text_of(store, object, &store.err);
  EXPECT_NE(text.find("  ospfv2_lsa_val@ospfv2_lsa: {\n    header@ospfv2_header: {\n"),
            std::string::npos);
  EXPECT_NE(text.find("      opaque_type@u_int8:0\n"), std::string::npos);
}

TEST(Text, AddressesOfAnArrayAreNumberedFrom0BehindTheirCounter) {
  Store store;
  const Object<ospfv2_link_tlv> tlv(store, types::ospfv2_link_tlv);
  for (std::uint32_t i = 0; i < 3; ++i) {
    ip_address address = ip_address_make_ipv4(0x0A000001 + i);
    store(ospfv2_link_tlv_local_if_ipv4_addr_set, tlv, i, &address);
  }
  EXPECT_NE(text_of(store, tlv, &store.err)
                .find("  local_if_ipv4_addr_num@u_int32:3\n"
                      "  local_if_ipv4_addr[0]@ip_address:10.0.0.1\n"
                      "  local_if_ipv4_addr[1]@ip_address:10.0.0.2\n"
                      "  local_if_ipv4_addr[2]@ip_address:10.0.0.3\n"
                      "  local_remote_ipv4_addr_num@u_int32:0\n"
                      "  te_metric@u_int32:0\n"),
            std::string::npos);
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, EveryByteOfAnArrayIsAnEntry) {
  Store store;
  const Object<ospfv2_unknown_sub_tlv> tlv(store, types::ospfv2_unknown_sub_tlv);
  store(ospfv2_unknown_sub_tlv_length_set_value, tlv, 8);
  const std::uint8_t value[] = {1, 2, 255};
  store(ospfv2_unknown_sub_tlv_value_set_mem, tlv, value, 3);
  EXPECT_EQ(text_of(store, tlv, &store.err),
            "x@ospfv2_unknown_sub_tlv: {\n"
            "  type@u_int16:0\n"
            "  length@u_int16:8\n"
            "  value_len@u_int32:3\n"
            "  value[0]@u_int8:1\n"
            "  value[1]@u_int8:2\n"
            "  value[2]@u_int8:255\n"
            "}\n");
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, AStateThatIsNoMemberLeavesItsLineOpen) {
  Store store;
  const Object<ospf_neighbor> neighbor(store, types::ospf_neighbor);
  EXPECT_NE(text_of(store, neighbor, &store.err)
                .find("  state@nbr_state_type:Enum value out of range  stats@ospf_nbr_stat: {\n"),
            std::string::npos);
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, ATypeOfReferencesAloneHasAnOpeningAndAClosingLine) {
  Store store;
  const Object<ospf_instance_rev1> instance(store, types::ospf_instance_rev1);
  EXPECT_EQ(text_of(store, instance, &store.err), "x@ospf_instance_rev1: {\n}\n");
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, AnObjectOfANegativeVariantIsOnlyOpened) {
  Store store;
  const Object<ospfv2_topology> object(store, types::ospfv2_topology);
  header(object).variant = -1;
  EXPECT_EQ(text_of(store, object, &store.err), "x@ospfv2_topology: {\n");
  EXPECT_EQ(store.err, 0u);
}

// --- the choice ----------------------------------------------------------------------------------

const std::string choice_head = "x@ospf_authentication: {\n  auth_type_selection@ospf_auth_type:";

TEST(Text, ASelectedArmIsLabelledWithItsSelectorAndADot) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  EXPECT_EQ(text_of(store, choice, &store.err), choice_head + "OSPF_AUTH_IPSEC\n}\n");
  store(ospf_authentication_sa_set, choice, text_arm(store, "one"));
  EXPECT_EQ(text_of(store, choice, &store.err),
            choice_head + "OSPF_AUTH_IPSEC\n  auth_type_selection.sa@kelp_vstring:one\n}\n");
  store(ospf_authentication_key_chain_set, choice, text_arm(store, "two"));
  EXPECT_EQ(text_of(store, choice, &store.err),
            choice_head +
                "OSPF_AUTH_TRAILER_KEY_CHAIN\n"
                "  auth_type_selection.key_chain@kelp_vstring:two\n}\n");
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, AKeyIsShownBeforeItsAlgorithmAndEachOnlyWhenThere) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  auto *algorithm = ospf_crypto_algorithm_create(store, 0);
  store(ospf_crypto_algorithm_md5_set_value, algorithm, 1);
  store(ospf_authentication_crypto_algorithm_val_set, choice, algorithm);
  const std::string shown_algorithm =
      "  auth_type_selection.crypto_algorithm_val@ospf_crypto_algorithm: {\n"
      "    hmac_sha1_12@kelp_boolean:false\n"
      "    hmac_sha1_20@kelp_boolean:false\n"
      "    md5@kelp_boolean:true\n"
      "    sha_1@kelp_boolean:false\n"
      "    hmac_sha_1@kelp_boolean:false\n"
      "    hmac_sha_256@kelp_boolean:false\n"
      "    hmac_sha_384@kelp_boolean:false\n"
      "    hmac_sha_512@kelp_boolean:false\n" +
      gap(2) + "}\n}\n";
  EXPECT_EQ(text_of(store, choice, &store.err),
            choice_head + "OSPF_AUTH_TRAILER_KEY\n" + shown_algorithm);
  store(ospf_authentication_key_string_set, choice, text_arm(store, "secret"));
  EXPECT_EQ(text_of(store, choice, &store.err),
            choice_head +
                "OSPF_AUTH_TRAILER_KEY\n"
                "  auth_type_selection.key_string@kelp_vstring:secret\n" +
                shown_algorithm);
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, TheArmOfVariant1IsShownFromVariant1On) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  store(ospf_authentication_no_auth_set, choice, u_int32_create(store, 0));
  EXPECT_EQ(text_of(store, choice, &store.err),
            choice_head + "OSPF_AUTH_TYPE_NONE\n  auth_type_selection.no_auth@u_int32:0\n}\n");
  header(choice).variant = 0;
  EXPECT_EQ(text_of(store, choice, &store.err), choice_head + "OSPF_AUTH_TYPE_NONE\n");
  EXPECT_EQ(store.err, 0u);
}

// --- room and the _cr form -----------------------------------------------------------------------

// How a caller notices that a text was cut: the result equals the room, and never else.
TEST(Text, ACutTextFillsAllOfItsRoom) {
  for (const Structure *type : harbor::model::structures) {
    SCOPED_TRACE(type->name);
    Store store;
    const Object<> object(store, *type);
    std::string buffer(1 << 14, filling);
    const auto print = [&](std::uint32_t size) {
      return object.call<Print>("print")(store, 0, buffer.data(), 2, "x", object.get(), size,
                                         &store.err);
    };
    const std::uint32_t whole = print(1 << 14);
    ASSERT_GT(whole, 10u);
    for (std::uint32_t size = 1; size <= whole; ++size) ASSERT_EQ(print(size), size);
    for (std::uint32_t size = whole + 1; size < whole + 20; ++size) ASSERT_EQ(print(size), whole);
    EXPECT_EQ(store.err, 0u);
  }
}

TEST(Text, AShortBufferCutsTheTextWithoutAFailure) {
  Store store;
  const Object<ospfv2_topology> object(store, types::ospfv2_topology);
  const std::string opening = "x@ospfv2_topology: {\n";
  for (std::uint32_t size = 1; size <= 80; ++size) {
    std::string buffer(128, filling);
    const std::uint32_t length = store(ospfv2_topology_print, buffer.data(), 0, "x", object, size);
    EXPECT_LE(length, size);
    const std::size_t kept = std::min<std::size_t>(size - 1, opening.size());
    EXPECT_EQ(buffer.substr(0, kept), opening.substr(0, kept)) << size;
    EXPECT_EQ(buffer.substr(size), std::string(128 - size, filling)) << size;
  }
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, WithoutSpaceNothingIsWritten) {
  Store store;
  const Object<ospf_neighbor> object(store, types::ospf_neighbor);
  std::string buffer(16, filling);
  EXPECT_EQ(store(ospf_neighbor_print, buffer.data(), 2, "x", object, 0), 0u);
  EXPECT_EQ(buffer, std::string(16, filling));
  EXPECT_EQ(store.err, 0u);
}

TEST(Text, ThePrintCrFormUsesTheTypesNameAsLabel) {
  Store store;
  const Object<ospf_static_neighbor> object(store, types::ospf_static_neighbor);
  std::string buffer(256, filling);
  const std::uint32_t length = ospf_static_neighbor_print_cr(store, object, buffer.data(), 256);
  EXPECT_EQ(buffer.substr(0, length),
            "ospf_static_neighbor@ospf_static_neighbor: {\n"
            "  address@ip_address:\n  cost@u_int16:0\n  poll_interval@u_int16:0\n}\n");
}

TEST(Text, ThePrintCrFormGivesAllOnesOnceTheHandleHasAnError) {
  Store store;
  const Object<ospf_static_neighbor> object(store, types::ospf_static_neighbor);
  std::string buffer(16, filling);
  store.handle()->cr_err = KELP_ERR_NO_MEMORY;
  EXPECT_EQ(ospf_static_neighbor_print_cr(store, object, buffer.data(), 16), 0xFFFFFFFFu);
  EXPECT_EQ(buffer, std::string(16, filling));
  EXPECT_EQ(store.handle()->cr_err, KELP_ERR_NO_MEMORY);
}

TEST(Text, StateTrackingDoesNotShow) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospf_area> area(store, types::ospf_area);
  EXPECT_EQ(text_of(store, area, &store.err), "x@ospf_area: {\n  area_id@u_int32:0\n}\n");
  EXPECT_EQ(store.err, 0u);
}

}  // namespace
