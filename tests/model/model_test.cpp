// What the schema's own choices mean for those who use it: which rows are one key and which are
// two, which values stand beside each other unrelated, and how a run of calls shows its first
// failure.
#include <gtest/gtest.h>
#include <kelp/primitives.h>
#include <ospf_harbor_oper.h>

#include "harness/harness.hpp"

namespace {

using harness::Store;

TEST(FailureProtocol, TheWordOfASequenceHoldsTheFirstFailure) {
  Store store;
  ospf_interface *interface = ospf_interface_create(store, 0);
  ospf_interface_network_type_set_value(store, 0, interface, 9, &store.err);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  ospf_interface_cost_set_value(store, 0, nullptr, 5, &store.err);  // 2 by itself
  ospf_interface_cost_set_value(store, 0, interface, 5, &store.err);
  EXPECT_EQ(store.err, KELP_ERR_EPOCH);
  EXPECT_EQ(store.last_error(), KELP_ERR_EPOCH);
  store.err = 0;
  EXPECT_EQ(ospf_interface_cost_get_value(store, 0, interface, &store.err), 0);
  ospf_interface_destroy(store, 0, interface);
}

TEST(StaticNeighbor, CostTellsObjectsApartButNotRows) {
  Store store;
  auto *table = tbl_ospf_static_neighbor_table_open(store, 0, "static", 0, &store.err);
  tbl_ospf_static_neighbor_record *records[2];
  ospf_static_neighbor *objects[2];
  for (int at = 0; at < 2; ++at) {
    records[at] = tbl_ospf_static_neighbor_create_record(store, 0, &store.err);
    objects[at] = ospf_static_neighbor_create(store, 0);
    ip_address address = ip_address_make_ipv4(0x0A000001);
    ospf_static_neighbor_address_set(store, 0, objects[at], &address, &store.err);
    ospf_static_neighbor_cost_set_value(store, 0, objects[at], static_cast<std::uint16_t>(10 + at),
                                        &store.err);
    tbl_ospf_static_neighbor_ospf_static_neighbor_set_field(store, 0, records[at], objects[at]);
  }
  EXPECT_NE(ospf_static_neighbor_compare(objects[0], objects[1]), 0);
  tbl_ospf_static_neighbor_insert(store, 0, table, records[0], &store.err);
  EXPECT_EQ(store.err, 0u);
  tbl_ospf_static_neighbor_insert(store, 0, table, records[1], &store.err);
  EXPECT_EQ(store.err, KELP_ERR_EXISTS);
  store.err = 0;
  for (auto *record : records) {
    tbl_ospf_static_neighbor_destroy_record(store, 0, record, &store.err);
  }
  tbl_ospf_static_neighbor_table_free(store, 0, table, &store.err);
  EXPECT_EQ(store.err, 0u);
}

TEST(Instance, TheFirstFormHasOneRowForEachAddressFamily) {
  Store store;
  auto *table = tbl_ospf_instance_table_open(store, 0, "instances", 0, &store.err);
  tbl_ospf_instance_record *records[2];
  for (std::uint32_t at = 0; at < 2; ++at) {
    records[at] = tbl_ospf_instance_create_record(store, 0, &store.err);
    ospf_instance *object = ospf_instance_create(store, 0);
    ospf_instance_af_set_value(store, 0, object, ADDR_FAMILY_IPV6, &store.err);
    ospf_instance_router_id_set_value(store, 0, object, at, &store.err);
    tbl_ospf_instance_ospf_instance_set_field(store, 0, records[at], object);
    EXPECT_EQ(store.err, 0u);
    tbl_ospf_instance_insert(store, 0, table, records[at], &store.err);
  }
  EXPECT_EQ(store.err, KELP_ERR_EXISTS);
  EXPECT_EQ(tbl_ospf_instance_table_get_count(store, 0, table), 1u);
  store.err = 0;
  for (auto *record : records) tbl_ospf_instance_destroy_record(store, 0, record, &store.err);
  tbl_ospf_instance_table_free(store, 0, table, &store.err);
}

TEST(Instance, TheRevisedFormHasOneRowForEachFamilyAndRouter) {
  Store store;
  auto *table = tbl_ospf_instance_rev1_table_open(store, 0, "instances", 0, &store.err);
  tbl_ospf_instance_rev1_record *records[2];
  ospf_instance_rev1 *objects[2];
  for (std::uint32_t at = 0; at < 2; ++at) {
    records[at] = tbl_ospf_instance_rev1_create_record(store, 0, &store.err);
    ospf_instance_rev1_key *key = ospf_instance_rev1_key_create(store, 0);
    ospf_instance_rev1_key_af_set_value(store, 0, key, ADDR_FAMILY_IPV6, &store.err);
    ospf_instance_rev1_key_router_id_set_value(store, 0, key, at, &store.err);
    objects[at] = ospf_instance_rev1_create(store, 0);
    tbl_ospf_instance_rev1_ospf_instance_rev1_key_set_field(store, 0, records[at], key);
    tbl_ospf_instance_rev1_ospf_instance_rev1_set_field(store, 0, records[at], objects[at]);
    tbl_ospf_instance_rev1_insert(store, 0, table, records[at], &store.err);
  }
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(tbl_ospf_instance_rev1_table_get_count(store, 0, table), 2u);
  EXPECT_EQ(ospf_instance_rev1_compare(objects[0], objects[1]), 0) << "whatever their keys";
  for (auto *record : records) {
    tbl_ospf_instance_rev1_destroy_record(store, 0, record, &store.err);
  }
  tbl_ospf_instance_rev1_table_free(store, 0, table, &store.err);
  EXPECT_EQ(store.err, 0u);
}

TEST(Area, AFreshOneRefersToNoDatabases) {
  Store store;
  ospf_area *area = ospf_area_create(store, 0);
  EXPECT_EQ(ospf_area_area_scope_lsas_get_by_ref(store, 0, area, &store.err), nullptr);
  EXPECT_EQ(store.err, 0u);
  ospf_area_destroy(store, 0, area);
}

TEST(Interface, AFreshOneIsABroadcastOneWithIpsec) {
  Store store;
  ospf_interface *interface = ospf_interface_create(store, 0);
  EXPECT_EQ(ospf_interface_network_type_get_value(store, 0, interface, &store.err),
            std::uint32_t{BROADCAST});
  ospf_authentication *field =
      ospf_interface_authentication_val_get(store, 0, interface, &store.err);
  EXPECT_EQ(ospf_authentication_auth_type_selection_get_value(store, 0, field, &store.err),
            std::uint32_t{OSPF_AUTH_IPSEC});
  EXPECT_EQ(ospf_interface_neighbor_get_by_ref(store, 0, interface, &store.err), nullptr);
  EXPECT_EQ(store.err, 0u);
  ospf_interface_destroy(store, 0, interface);
}

TEST(CryptoAlgorithm, TwoMayBeTrueAtOnce) {
  Store store;
  ospf_crypto_algorithm *object = ospf_crypto_algorithm_create(store, 0);
  ospf_crypto_algorithm_md5_set_value(store, 0, object, 1, &store.err);
  ospf_crypto_algorithm_sha_1_set_value(store, 0, object, 1, &store.err);
  EXPECT_EQ(ospf_crypto_algorithm_md5_get_value(store, 0, object, &store.err), 1u);
  EXPECT_EQ(ospf_crypto_algorithm_sha_1_get_value(store, 0, object, &store.err), 1u);
  EXPECT_EQ(store.err, 0u);
  ospf_crypto_algorithm_destroy(store, 0, object);
}

TEST(UnknownSubTlv, LengthAndCounterAreIndependent) {
  Store store;
  ospfv2_unknown_sub_tlv *object = ospfv2_unknown_sub_tlv_create(store, 0);
  const std::uint8_t bytes[3] = {1, 2, 3};
  ospfv2_unknown_sub_tlv_length_set_value(store, 0, object, 8, &store.err);
  ospfv2_unknown_sub_tlv_value_set_mem(store, 0, object, bytes, 3, &store.err);
  EXPECT_EQ(ospfv2_unknown_sub_tlv_length_get_value(store, 0, object, &store.err), 8);
  EXPECT_EQ(ospfv2_unknown_sub_tlv_value_len_get_value(store, 0, object, &store.err), 3u);
  EXPECT_EQ(store.err, 0u);
  ospfv2_unknown_sub_tlv_destroy(store, 0, object);
}

TEST(LinkScopeLsa, RowsThatDifferOnlyInRawBytesAreDifferent) {
  Store store;
  link_scope_lsa *rows[2] = {link_scope_lsa_create(store, 0), link_scope_lsa_create(store, 0)};
  for (std::uint8_t at = 0; at < 2; ++at) {
    link_scope_lsa_raw_data_set_mem(store, 0, rows[at], &at, 1, &store.err);
  }
  EXPECT_LT(link_scope_lsa_compare(rows[0], rows[1]), 0);
  EXPECT_NE(link_scope_lsa_hash(rows[0], 7), link_scope_lsa_hash(rows[1], 7));
  link_scope_lsa_decoded_completed_set_value(store, 0, rows[0], 0, &store.err);
  link_scope_lsa_version_set_value(store, 0, rows[0], 3, &store.err);
  EXPECT_EQ(store.err, 0u) << "typed fields stand beside a decoded_completed that is false";
  for (link_scope_lsa *row : rows) link_scope_lsa_destroy(store, 0, row);
}

}  // namespace
