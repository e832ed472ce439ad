// The XML form of structures: what is written, what is read back, and what stays as it was.
#include <ospf_harbor_oper.h>

#include "encodings/xml_forms.hpp"
#include "model/lists.hpp"

namespace {

using namespace encodings;
using harness::CallLog;
using harness::Store;
using harness::TraceLog;
using harness::WriteWatch;
namespace types = harbor::model::types;

// --- writing -------------------------------------------------------------------------------------

TEST(Xml, AnAreaIsItsValuesWithoutReferences) {
  Store store;
  const Object<ospf_area> area(store, types::ospf_area);
  store(ospf_area_area_id_set_value, area, 10);
  EXPECT_EQ(xml_of(store, area, &store.err), "<x><area_id>10</area_id></x>");
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, ATypeOfReferencesAloneIsAnEmptyElement) {
  Store store;
  const Object<ospf_instance_rev1> instance(store, types::ospf_instance_rev1);
  EXPECT_EQ(xml_of(store, instance, &store.err), "<x></x>");
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, AnObjectOfANegativeVariantIsAnEmptyElement) {
  Store store;
  const Object<ospfv2_topology> object(store, types::ospfv2_topology);
  header(object).variant = -1;
  EXPECT_EQ(xml_of(store, object, &store.err), "<x></x>");
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, FieldsAreWrittenInOrderAndAnEmbeddedStructureAsAnElement) {
  Store store;
  const Object<ospf_neighbor> neighbor(store, types::ospf_neighbor);
  ip_address address = ip_address_make_ipv4(0x0A000001);
  store(ospf_neighbor_neighbor_id_set, neighbor, &address);
  EXPECT_EQ(xml_of(store, neighbor, &store.err),
            "<x><neighbor_id>10.0.0.1</neighbor_id><address></address><dr></dr><bdr></bdr>"
            "<state><nbr_state_type value out of range/></state>"
            "<stats><nbr_event_count>0</nbr_event_count><nbr_retrans_qlen>0</nbr_retrans_qlen>"
            "</stats></x>");
  store(ospf_neighbor_state_set_value, neighbor, 8);
  EXPECT_NE(xml_of(store, neighbor, &store.err).find("<state><NBR_STATE_FULL/></state>"),
            std::string::npos);
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, AnObjectOfVariant0LacksTheLaterFieldAndIsClosed) {
  Store store;
  const Object<ospf_interface> object(store, types::ospf_interface);
  const std::string whole = xml_of(store, object, &store.err);
  EXPECT_TRUE(whole.ends_with("<bdr></bdr><priority>0</priority></x>")) << whole;
  header(object).variant = 0;
  const std::string lower = xml_of(store, object, &store.err);
  EXPECT_TRUE(lower.ends_with("<bdr></bdr></x>")) << lower;
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, ALinkScopeLsaOfVariant0IsACompleteElement) {
  Store store;
  const Object<link_scope_lsa> object(store, types::link_scope_lsa);
  header(object).variant = 0;
  const std::string text = xml_of(store, object, &store.err);
  EXPECT_TRUE(text.ends_with("</ospfv3_lsa_val></x>"));
  EXPECT_NE(text.find("<raw_data_len>0</raw_data_len><version>0</version><ospfv2_lsa_val>"),
            std::string::npos);
  EXPECT_EQ(text.find("<raw_data>"), std::string::npos);
  EXPECT_EQ(text.find("router_address"), std::string::npos);
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, AnArrayIsItsCounterAndOneElementEach) {
  Store store;
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  const std::uint32_t routers[] = {7, 8};
  store(ospfv2_network_attached_router_set_mem, network, routers, 2);
  EXPECT_EQ(xml_of(store, network, &store.err),
            "<x><network_mask></network_mask><attached_router_num>2</attached_router_num>"
            "<attached_router>7</attached_router><attached_router>8</attached_router></x>");
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, FlagSetsAreOneEmptyElementForEachSetBit) {
  Store store;
  const Object<ospfv2_lsa_body> body(store, types::ospfv2_lsa_body);
  store(ospfv2_lsa_body_body_flag_options_set_value, body, 5);
  EXPECT_TRUE(xml_of(store, body, &store.err)
                  .ends_with("<body_flag_options><OSPV2_LSA_BODY_FLAG_OPTIONS_V/>"
                             "<OSPV2_LSA_BODY_FLAG_OPTIONS_B/></body_flag_options></x>"));
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, StateBytesGoToTheElementsOfPlainAndEmbeddedFields) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospf_neighbor> neighbor(store, types::ospf_neighbor);
  std::uint32_t &err = store.err;
  ospf_neighbor_state_set_value(store, 0, neighbor, 8, &err);
  ospf_neighbor_dr_state_flag_set(store, 0, neighbor, 3, &err);
  ospf_neighbor_stats_state_flag_set(store, 0, neighbor, 4, &err);
  auto *stats = ospf_neighbor_stats_get(store, 0, neighbor, &err);
  ospf_nbr_stat_nbr_event_count_set_value(store, 0, stats, 5, &err);
  // The enumeration's element carries none, although its field was written.
  EXPECT_EQ(xml_of(store, neighbor, &err, 4096, 9),
            "<x state=\"9\"><neighbor_id></neighbor_id><address></address><dr state=\"3\"></dr>"
            "<bdr></bdr><state><NBR_STATE_FULL/></state><stats state=\"4\">"
            "<nbr_event_count state=\"2\">5</nbr_event_count>"
            "<nbr_retrans_qlen>0</nbr_retrans_qlen></stats></x>");
  EXPECT_EQ(err, 0u);
}

TEST(Xml, ElementsOfAnArrayCarryTheirOwnStateAndTheCounterNone) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  store(ospfv2_network_attached_router_set_value, network, 1, 8);
  EXPECT_EQ(xml_of(store, network, &store.err),
            "<x><network_mask></network_mask><attached_router_num>2</attached_router_num>"
            "<attached_router>0</attached_router>"
            "<attached_router state=\"2\">8</attached_router></x>");
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, WithTrackingOffNoStateIsAskedFor) {
  Store store({.tracking = KELP_TRACKING_OFF});
  const Object<ospf_area> area(store, types::ospf_area);
  EXPECT_EQ(xml_of(store, area, &store.err), "<x><area_id>0</area_id></x>");
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, AnUntrackedObjectUnderATrackingHandleEndsBehindItsOpeningTag) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospf> object(store.another_handle({}), types::ospf);
  TraceLog trace;
  CallLog calls;
  EXPECT_EQ(xml_of(store, object, &store.err), "<x>");
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  EXPECT_TRUE(trace.has(3, "The object is non state tracked"));
  EXPECT_EQ(trace.messages().size(), 1u);
  EXPECT_EQ(calls.count("end_tag"), 1u);
  EXPECT_EQ(calls.count("start_tag"), 1u);
}

TEST(Xml, ArmsAreElementsNamedAfterTheSelectorWithAHyphen) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  const std::string head = "<x><auth_type_selection>";
  EXPECT_EQ(xml_of(store, choice, &store.err),
            head + "<OSPF_AUTH_IPSEC/></auth_type_selection></x>");
  store(ospf_authentication_sa_set, choice, text_arm(store, "one"));
  EXPECT_EQ(xml_of(store, choice, &store.err),
            head +
                "<OSPF_AUTH_IPSEC/></auth_type_selection>"
                "<auth_type_selection-sa>one</auth_type_selection-sa></x>");
  store(ospf_authentication_key_chain_set, choice, text_arm(store, "two"));
  EXPECT_EQ(xml_of(store, choice, &store.err),
            head +
                "<OSPF_AUTH_TRAILER_KEY_CHAIN/></auth_type_selection>"
                "<auth_type_selection-key_chain>two</auth_type_selection-key_chain></x>");
  auto *algorithm = ospf_crypto_algorithm_create(store, 0);
  store(ospf_authentication_crypto_algorithm_val_set, choice, algorithm);
  const std::string key_without_text = xml_of(store, choice, &store.err);
  EXPECT_TRUE(key_without_text.starts_with(head + "<OSPF_AUTH_TRAILER_KEY/></auth_type_selection>"
                                                  "<auth_type_selection-crypto_algorithm_val>"
                                                  "<hmac_sha1_12>false</hmac_sha1_12>"))
      << key_without_text;
  store(ospf_authentication_key_string_set, choice, text_arm(store, "key"));
  EXPECT_NE(xml_of(store, choice, &store.err)
                .find("<auth_type_selection-key_string>key</auth_type_selection-key_string>"
                      "<auth_type_selection-crypto_algorithm_val>"),
            std::string::npos);
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, TheArmOfVariant1IsWrittenFromVariant1On) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  store(ospf_authentication_no_auth_set, choice, u_int32_create(store, 0));
  const std::string selector =
      "<x><auth_type_selection><OSPF_AUTH_TYPE_NONE/></auth_type_selection>";
  EXPECT_EQ(xml_of(store, choice, &store.err),
            selector + "<auth_type_selection-no_auth>0</auth_type_selection-no_auth></x>");
  header(choice).variant = 0;
  EXPECT_EQ(xml_of(store, choice, &store.err), selector + "</x>");
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, TheStateOfAnArmGoesToItsElement) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  store(ospf_authentication_sa_set, choice, text_arm(store, "one"));
  EXPECT_EQ(xml_of(store, choice, &store.err),
            "<x><auth_type_selection><OSPF_AUTH_IPSEC/></auth_type_selection>"
            "<auth_type_selection-sa state=\"2\">one</auth_type_selection-sa></x>");
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, AfterAFailureTheClosingTagIsAskedForAndAddsNothing) {
  Store store;
  const Object<ospf_area> area(store, types::ospf_area);
  CallLog calls;
  EXPECT_EQ(xml_of(store, area, &store.err, 10), "<x>");
  EXPECT_EQ(store.err, KELP_ERR_NO_ROOM);
  EXPECT_EQ(calls.count("u_int32_to_xml"), 1u);
  EXPECT_EQ(calls.count("end_tag"), 1u);
}

TEST(Xml, TheCrFormUsesTheTypesName) {
  Store store;
  const Object<ospf_area> area(store, types::ospf_area);
  std::string buffer(128, '#');
  const std::uint32_t length = ospf_area_toxml_cr(store, area, buffer.data(), 128);
  EXPECT_EQ(buffer.substr(0, length), "<ospf_area><area_id>0</area_id></ospf_area>");
  EXPECT_EQ(ospf_area_toxml_cr(store, area, buffer.data(), 12), 0xFFFFFFFFu);
  EXPECT_EQ(store.handle()->cr_err, KELP_ERR_NO_ROOM);
}

class XmlDeathTest : public testing::Test {};

TEST_F(XmlDeathTest, ACorruptedHandleEndsTheWriter) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospf_area> area(store, types::ospf_area);
  EXPECT_FATAL(
      {
        store.handle()->sttr->sttr_mode = 0x1234;
        xml_of(store, area, &store.err);
      },
      "Corrupted KELP Handle");
}

// --- reading -------------------------------------------------------------------------------------

TEST(Xml, AMissingRootIs2) {
  Store store;
  const Object<ospf_instance_rev1> instance(store, types::ospf_instance_rev1);
  CallLog calls;
  read(store, instance, "<y/>", &store.err);
  store.expect_failure(KELP_ERR_NOT_FOUND);
  EXPECT_EQ(calls.count("kelp_store_err"), 1u);
  store.err = 0;
  read(store, instance, "<x/>", &store.err);
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, ARootThatCannotBeAskedForIs2) {
  Store store;
  const Object<ospf_area> area(store, types::ospf_area);
  const Document document("<x/>");
  ospf_area_from_xml(store, 0, "x[last()]", document, area, &store.err, nullptr, 0);
  store.expect_failure(KELP_ERR_NOT_FOUND);
}

TEST(Xml, AMissingElementLeavesItsFieldAndAnUnknownOneIsPassedOver) {
  Store store;
  const Object<ospf_static_neighbor> object(store, types::ospf_static_neighbor);
  store(ospf_static_neighbor_cost_set_value, object, 5);
  read(store, object, "<x><colour>red</colour><poll_interval>30</poll_interval></x>", &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(store(ospf_static_neighbor_cost_get_value, object), 5u);
  EXPECT_EQ(store(ospf_static_neighbor_poll_interval_get_value, object), 30u);
}

TEST(Xml, EmbeddedStructuresAreReadAndAMissingOneIsNoFailure) {
  Store store;
  const Object<ospf_neighbor> object(store, types::ospf_neighbor);
  read(store, object, "<x><stats><nbr_retrans_qlen>4</nbr_retrans_qlen></stats></x>", &store.err);
  EXPECT_EQ(store.err, 0u);
  auto *stats = store(ospf_neighbor_stats_get, object);
  EXPECT_EQ(store(ospf_nbr_stat_nbr_retrans_qlen_get_value, stats), 4u);
  read(store, object, "<x><address>10.0.0.9</address></x>", &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(store(ospf_nbr_stat_nbr_retrans_qlen_get_value, stats), 4u);
}

TEST(Xml, FieldsOfVariant1AreReadWhateverTheObjectsVariant) {
  Store store;
  store.set_variant("ospf_interface", 0);
  const Object<ospf_interface> object(store, types::ospf_interface);
  read(store, object, "<x><priority>9</priority></x>", &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(header(object).variant, 0);
  EXPECT_EQ(field<std::uint8_t>(object, types::ospf_interface, "priority"), 9);
}

TEST(Xml, AnArrayHasTheElementsThatAreThereWhateverItsCounterSays) {
  Store store;
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  CallLog calls;
  read(store, network,
       "<x><attached_router_num>5</attached_router_num><attached_router>7</attached_router>"
       "<attached_router>8</attached_router></x>",
       &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(calls.count("u_int32_create"), 3u);
  EXPECT_EQ(calls.count("u_int32_destroy"), 3u);
  EXPECT_EQ(store(ospfv2_network_attached_router_num_get_value, network), 2u);
  EXPECT_EQ(store(ospfv2_network_attached_router_get_value, network, 0), 7u);
  EXPECT_EQ(store(ospfv2_network_attached_router_get_value, network, 1), 8u);
}

TEST(Xml, ElementsReadOverwriteTheirIndexesOnly) {
  Store store;
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  const std::uint32_t routers[] = {1, 2, 3};
  store(ospfv2_network_attached_router_set_mem, network, routers, 3);
  read(store, network, "<x><attached_router>7</attached_router></x>", &store.err);
  EXPECT_EQ(store(ospfv2_network_attached_router_num_get_value, network), 3u);
  EXPECT_EQ(store(ospfv2_network_attached_router_get_value, network, 0), 7u);
  EXPECT_EQ(store(ospfv2_network_attached_router_get_value, network, 2), 3u);
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, BytesAndAddressesOfArraysAreReadFromIndex1On) {
  Store store;
  const Object<ospfv2_unknown_tlv> tlv(store, types::ospfv2_unknown_tlv);
  read(store, tlv,
       "<x><value>1</value><value>255</value><tlv><local_if_ipv4_addr>10.0.0.1"
       "</local_if_ipv4_addr><local_if_ipv4_addr>10.0.0.2</local_if_ipv4_addr></tlv></x>",
       &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(store(ospfv2_unknown_tlv_value_num_get_value, tlv), 2u);
  EXPECT_EQ(store(ospfv2_unknown_tlv_value_get_value, tlv, 1), 255u);
  auto *link = store(ospfv2_unknown_tlv_tlv_get, tlv);
  EXPECT_EQ(store(ospfv2_link_tlv_local_if_ipv4_addr_num_get_value, link), 2u);
  char text[IP_ADDRESS_TEXT_SIZE];
  ip_address_format(store(ospfv2_link_tlv_local_if_ipv4_addr_get, link, 1), text, sizeof text);
  EXPECT_STREQ(text, "10.0.0.2");
}

TEST(Xml, AFailedFieldEndsTheReadingAndKeepsWhatCameBefore) {
  Store store;
  const Object<ospf_static_neighbor> object(store, types::ospf_static_neighbor);
  char message[128] = "";
  read(store, object,
       "<x><address>10.0.0.9</address><cost>many</cost><poll_interval>30</poll_interval></x>",
       &store.err, message, sizeof message);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  EXPECT_NE(std::string(message).find("//x/cost"), std::string::npos) << message;
  store.err = 0;
  ip_address expected = ip_address_make_ipv4(0x0A000009);
  EXPECT_EQ(ip_address_compare(store(ospf_static_neighbor_address_get, object), &expected), 0);
  EXPECT_EQ(store(ospf_static_neighbor_poll_interval_get_value, object), 0u);
}

TEST(Xml, AFailedElementEndsTheReadingAndKeepsTheElementsBeforeIt) {
  Store store;
  const Object<ospfv2_unknown_sub_tlv> tlv(store, types::ospfv2_unknown_sub_tlv);
  read(store, tlv, "<x><value>1</value><value>300</value><value>2</value></x>", &store.err);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  store.err = 0;
  EXPECT_EQ(store(ospfv2_unknown_sub_tlv_value_len_get_value, tlv), 1u);
}

TEST(Xml, AFailureInsideAnEmbeddedStructureEndsTheWholeReading) {
  Store store;
  const Object<ospf_interface> object(store, types::ospf_interface);
  read(store, object,
       "<x><multi_area_val><cost>-1</cost></multi_area_val><hello_timer>5</hello_timer></x>",
       &store.err);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  store.err = 0;
  EXPECT_EQ(store(ospf_interface_hello_timer_get_value, object), 0u);
}

TEST(Xml, WithoutMemoryForATemporaryElementTheReadingEndsWith12) {
  Store store;
  const Object<ospfv2_network> network(store, types::ospfv2_network);
  store.fail_allocation(0);
  read(store, network, "<x><attached_router>7</attached_router></x>", &store.err);
  store.expect_failure(KELP_ERR_NO_MEMORY);
}

TEST(Xml, WhereMemoryEndsWithinAnArrayTheElementsBeforeItAreKept) {
  Store store;
  const auto sub_tlv_of = [&store](std::size_t octets, const auto &look) {
    const Object<ospfv2_unknown_sub_tlv> tlv(store, types::ospfv2_unknown_sub_tlv);
    std::string document = "<x>";
    for (std::size_t at = 0; at < octets; ++at) document += "<value>7</value>";
    read(store, tlv, document + "</x>", &store.err);
    look(tlv);
  };
  // What the first array of a type changes lasts.
  sub_tlv_of(2, [&](const auto &) { ASSERT_EQ(store.err, 0u); });
  kelp_memory_statistics before{};
  kelp_database_memory(store.database(), &before);
  ASSERT_EQ(kelp_database_set_memory_limit(store.database(), before.used_bytes + 1000, nullptr), 0);
  sub_tlv_of(4000, [&](const auto &tlv) {
    store.expect_failure(KELP_ERR_NO_MEMORY);
    const auto count = store(ospfv2_unknown_sub_tlv_value_len_get_value, tlv);
    ASSERT_GT(count, 100u);
    EXPECT_LT(count, 1000u);
    EXPECT_EQ(*store(ospfv2_unknown_sub_tlv_value_get, tlv, count - 1), 7u);
  });
}

TEST(Xml, AnArrayThatCannotTakeItsElementEndsTheReading) {
  Store store({.tracking = KELP_TRACKING_ON});
  const Object<ospfv2_network> network(store.another_handle({}), types::ospfv2_network);
  read(store, network, "<x><attached_router>7</attached_router></x>", &store.err);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
}

TEST(Xml, AnEnumerationWithoutAKnownMemberKeepsItsValue) {
  Store store;
  const Object<ospf_interface> object(store, types::ospf_interface);
  store(ospf_interface_network_type_set_value, object, 3);
  read(store, object, "<x><network_type><CAROUSEL/></network_type></x>", &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(store(ospf_interface_network_type_get_value, object), 3u);
  read(store, object, "<x><network_type><NON_BROADCAST/></network_type></x>", &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(store(ospf_interface_network_type_get_value, object), 1u);
}

TEST(Xml, ReadingAFlagSetOnlyAddsBits) {
  Store store;
  const Object<ospfv2_header> object(store, types::ospfv2_header);
  store(ospfv2_header_flag_options_set_value, object, 1);
  read(store, object, "<x><flag_options><LSA_FLAG_OPTIONS_E/></flag_options></x>", &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(store(ospfv2_header_flag_options_get_value, object), 9u);
}

TEST(Xml, ASelectedArmIsAnnouncedMadeAndRead) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  WriteWatch watch(store);
  read(store, choice,
       "<x><auth_type_selection><OSPF_AUTH_TRAILER_KEY/></auth_type_selection>"
       "<auth_type_selection-sa>no</auth_type_selection-sa>"
       "<auth_type_selection-key_string>key</auth_type_selection-key_string>"
       "<auth_type_selection-crypto_algorithm_val><md5>true</md5><sha_1>true</sha_1>"
       "</auth_type_selection-crypto_algorithm_val></x>",
       &store.err);
  EXPECT_EQ(store.err, 0u);
  const void *slot = &field<void *>(choice, types::ospf_authentication, "key_string");
  const auto writes = watch.writes();
  EXPECT_EQ(
      std::count_if(writes.begin(), writes.end(),
                    [&](const auto &range) { return range.address == slot && range.length == 8; }),
      1);
  EXPECT_STREQ(kelp_vstring_text(store(ospf_authentication_key_string_get, choice)), "key");
  EXPECT_EQ(store(ospf_authentication_sa_get, choice), nullptr);
  auto *algorithm = store(ospf_authentication_crypto_algorithm_val_get, choice);
  ASSERT_NE(algorithm, nullptr);
  EXPECT_EQ(store(ospf_crypto_algorithm_md5_get_value, algorithm), 1u);
  EXPECT_EQ(store(ospf_crypto_algorithm_sha_1_get_value, algorithm), 1u);
  const std::string text = xml_of(store, choice, &store.err);
  EXPECT_NE(text.find("<md5>true</md5><sha_1>true</sha_1>"), std::string::npos);
  EXPECT_EQ(store.err, 0u);
}

TEST(Xml, ASelectedArmWithoutAnElementIsMadeAndStaysEmpty) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  read(store, choice, "<x><auth_type_selection><OSPF_AUTH_TYPE_NONE/></auth_type_selection></x>",
       &store.err);
  EXPECT_EQ(store.err, 0u);
  const auto *arm = store(ospf_authentication_no_auth_get, choice);
  ASSERT_NE(arm, nullptr);
  EXPECT_EQ(*arm, 0u);
}

TEST(Xml, AnArmThatWasThereIsForgotten) {
  Store store({.may_leave = 2});
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  kelp_vstring *before = text_arm(store, "old");
  store(ospf_authentication_sa_set, choice, before);
  read(store, choice, "<x><auth_type_selection-sa>new</auth_type_selection-sa></x>", &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_STREQ(kelp_vstring_text(before), "old");
  EXPECT_STREQ(kelp_vstring_text(store(ospf_authentication_sa_get, choice)), "new");
  kelp_vstring_destroy_internal(store, 0, before, 1);
}

TEST(Xml, WithoutMemoryForAnArmTheReadingEndsWith12) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  store.fail_allocation(0);
  read(store, choice, "<x><auth_type_selection-sa>new</auth_type_selection-sa></x>", &store.err);
  store.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(field<void *>(choice, types::ospf_authentication, "sa"), nullptr);
}

TEST(Xml, OnlyTheReaderOfTheChoiceRegistersTheTrace) {
  Store store;
  const Object<ospf_authentication> choice(store, types::ospf_authentication);
  const Object<ospf_area> area(store, types::ospf_area);
  CallLog calls;
  read(store, area, "<x/>", &store.err);
  EXPECT_EQ(calls.count("xlog_module_init_fn"), 0u);
  read(store, choice, "<x/>", &store.err);
  EXPECT_EQ(calls.count("xlog_module_init_fn"), 1u);
}

TEST(Xml, APathBeyond255BytesIsCutWithoutAMessage) {
  for (const bool fits : {true, false}) {
    Store store;
    const Object<ospfv2_topology> object(store, types::ospfv2_topology);
    const std::string tag(fits ? 247 : 248, 'a');
    const Document document("<" + tag + "><mt_id>7</mt_id><mt_i>8</mt_i></" + tag + ">");
    char message[64] = "unchanged";
    ospfv2_topology_from_xml(store, 0, ("//" + tag).c_str(), document, object, &store.err, message,
                             sizeof message);
    EXPECT_EQ(store.err, 0u);
    EXPECT_STREQ(message, "unchanged");
    EXPECT_EQ(store(ospfv2_topology_mt_id_get_value, object), fits ? 7u : 8u);
  }
}

// XML carries no variants.
void copy_variants(const void *source, void *destination, const Structure &type) {
  header(destination).variant = static_cast<const kelp_object_header *>(source)->variant;
  for (const Field *field : type.fields) {
    if (field->kind != Kind::structure) continue;
    const std::uint32_t at = harbor::model::offset(type, *field);
    copy_variants(static_cast<const std::uint8_t *>(source) + at,
                  static_cast<std::uint8_t *>(destination) + at, *field->structure);
  }
}

TEST(Xml, WhatIsWrittenIsReadBackForEveryStructure) {
  for (const Structure *type : harbor::model::structures) {
    Store store;
    const Object<> object(store, *type);
    const Object<> copy(store, *type);
    Filler(store, 7).fill(object, *type);
    const std::string text = xml_of(store, object, &store.err);
    ASSERT_EQ(store.err, 0u) << type->name;
    read(store, copy, text, &store.err);
    EXPECT_EQ(store.err, 0u) << type->name << " " << text;
    copy_variants(object, copy, *type);
    EXPECT_EQ(xml_of(store, copy, &store.err), text) << type->name;
    EXPECT_EQ(store.err, 0u) << type->name;
  }
}

}  // namespace
