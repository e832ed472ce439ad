// The order of tables by tenant, key and source, and the lookups that find nothing.
#include <algorithm>

#include "tables/table_fixture.hpp"

namespace {

using harness::AreaTable;
using harness::shell;
using harness::Store;

using Comparator = std::uint32_t(const e_avl_node *, const e_avl_node *);
enum : std::uint32_t { before, equal, after };

std::uint32_t compare(tbl_ospf_area_record *a, tbl_ospf_area_record *b) {
  return tbl_ospf_area_ospf_area_area_id_avl_compare(&shell(a)->avl_node, &shell(b)->avl_node);
}

TEST(Order, ANullNodeSortsFirstInEveryTable) {
  kelp_record record{};
  for (const auto *table : harbor::model::all_tables) {
    auto *comparator = harness::function<Comparator>(harness::key_prefix(*table) + "avl_compare");
    ASSERT_NE(comparator, nullptr);
    EXPECT_EQ(comparator(nullptr, nullptr), equal);
    EXPECT_EQ(comparator(nullptr, &record.avl_node), before);
    EXPECT_EQ(comparator(&record.avl_node, nullptr), after);
  }
}

TEST(Order, SourceDecidesAfterTheKeyAndAShadowIsLast) {
  AreaTable areas;
  auto *plain = areas.record(7, 1);
  auto *shadow = areas.record(7, 255);
  EXPECT_EQ(compare(plain, shadow), before);
  EXPECT_EQ(compare(shadow, plain), after);
  EXPECT_EQ(compare(plain, plain), equal);
  areas.destroy(plain);
  areas.destroy(shadow);
}

TEST(Order, TheLowerTenantComesFirstWhateverTheKeys) {
  AreaTable areas;
  auto *low_tenant = areas.record(900, 1);
  auto *high_tenant = areas.record(1, 1);
  shell(low_tenant)->tenant_id = 4;
  shell(high_tenant)->tenant_id = 5;
  EXPECT_EQ(compare(low_tenant, high_tenant), before);
  EXPECT_EQ(compare(high_tenant, low_tenant), after);
  shell(high_tenant)->tenant_id = 0xFFFF;
  EXPECT_EQ(compare(low_tenant, high_tenant), before);
  areas.destroy(low_tenant);
  areas.destroy(high_tenant);
}

TEST(Order, IntegerKeysAreUnsigned) {
  AreaTable areas;
  auto *low = areas.record(1, 255);
  auto *high = areas.record(0xFFFFFFFF, 1);
  EXPECT_EQ(compare(low, high), before);
  EXPECT_EQ(compare(high, low), after);
  areas.destroy(low);
  areas.destroy(high);
}

// A record on the stack around an object, for tables whose shells need nothing else.
struct Shell {
  kelp_record record{};
  void *second_object = nullptr;
  explicit Shell(void *object, void *second = nullptr) {
    record.objects[0] = object;
    second_object = second;
    record.src = 1;
  }
  const e_avl_node *node() const { return &record.avl_node; }
};

TEST(Order, ANarrowIntegerKeyIsComparedWhole) {
  Store store;
  OWNED(store, ospfv2_unknown_tlv, low);
  OWNED(store, ospfv2_unknown_tlv, high);
  store(ospfv2_unknown_tlv_type_set_value, low, 0x00FF);
  store(ospfv2_unknown_tlv_type_set_value, high, 0xFF00);
  const Shell a(low), b(high);
  EXPECT_EQ(tbl_ospfv2_unknown_tlv_ospfv2_unknown_tlv_type_avl_compare(a.node(), b.node()), before);
  EXPECT_EQ(tbl_ospfv2_unknown_tlv_ospfv2_unknown_tlv_type_avl_compare(b.node(), a.node()), after);
}

ospf_interface *interface_named(Store &store, const char *name) {
  ospf_interface *made = ospf_interface_create(store, 0);
  kelp_vstring text{};
  text.text = const_cast<char *>(name);
  text.length = static_cast<std::uint32_t>(std::strlen(name));
  kelp_vstring *place = store(ospf_interface_name_get, made);
  place->text =
      static_cast<char *>(store.handle()->obj_alloc(store.handle()->obj_pool, 0, text.length + 1));
  std::memcpy(place->text, name, text.length + 1);
  place->length = text.length;
  return made;
}

TEST(Order, TextKeysAreComparedByTheirType) {
  Store store;
  auto *low = interface_named(store, "ge-0/0/1");
  auto *high = interface_named(store, "ge-0/0/2");
  const Shell a(low), b(high);
  const std::int32_t sign = kelp_vstring_compare(store(ospf_interface_name_get, low),
                                                 store(ospf_interface_name_get, high));
  ASSERT_LT(sign, 0);
  EXPECT_EQ(tbl_ospf_interface_ospf_interface_name_avl_compare(a.node(), b.node()), before);
  EXPECT_EQ(tbl_ospf_interface_ospf_interface_name_avl_compare(b.node(), a.node()), after);
  EXPECT_EQ(tbl_ospf_interface_ospf_interface_name_avl_compare(a.node(), a.node()), equal);
  ospf_interface_destroy(store, 0, low);
  ospf_interface_destroy(store, 0, high);
}

TEST(Order, AddressKeysAreComparedByTheirType) {
  Store store;
  OWNED(store, ospf_static_neighbor, low);
  OWNED(store, ospf_static_neighbor, high);
  ip_address address{};
  ASSERT_EQ(ip_address_parse("10.0.0.1", &address), 0u);
  store(ospf_static_neighbor_address_set, low, &address);
  ASSERT_EQ(ip_address_parse("10.0.0.2", &address), 0u);
  store(ospf_static_neighbor_address_set, high, &address);
  const Shell a(low), b(high);
  EXPECT_EQ(tbl_ospf_static_neighbor_ospf_static_neighbor_address_avl_compare(a.node(), b.node()),
            before);
  EXPECT_EQ(tbl_ospf_static_neighbor_ospf_static_neighbor_address_avl_compare(b.node(), a.node()),
            after);
}

TEST(Order, EnumerationKeysGiveADifferenceAndTheOrderOnlyItsSign) {
  Store store;
  OWNED(store, ospf_instance, low);
  OWNED(store, ospf_instance, high);
  store(ospf_instance_af_set_value, high, 1);
  ASSERT_EQ(store.err, 0u);
  const Shell a(low), b(high);
  EXPECT_EQ(tbl_ospf_instance_ospf_instance_af_avl_compare(a.node(), b.node()), before);
  EXPECT_EQ(tbl_ospf_instance_ospf_instance_af_avl_compare(b.node(), a.node()), after);
  EXPECT_EQ(tbl_ospf_instance_ospf_instance_af_avl_compare(b.node(), b.node()), equal);
}

TEST(Order, KeyObjectsAreComparedFieldByFieldAndANullOneSortsFirst) {
  Store store;
  OWNED(store, ospfv2_link_key, low);
  OWNED(store, ospfv2_link_key, high);
  store(ospfv2_link_key_link_id_set_value, low, 1);
  store(ospfv2_link_key_link_data_set_value, low, 9);
  store(ospfv2_link_key_link_id_set_value, high, 2);
  const Shell a(low), b(high), none(nullptr);
  const auto order = tbl_ospfv2_link_ospfv2_link_key__avl_compare;
  EXPECT_EQ(order(a.node(), b.node()), before);
  EXPECT_EQ(order(b.node(), a.node()), after);
  EXPECT_EQ(order(none.node(), a.node()), before);
  EXPECT_EQ(order(a.node(), none.node()), after);
  EXPECT_EQ(order(none.node(), none.node()), equal);
  store(ospfv2_link_key_link_id_set_value, high, 1);
  EXPECT_EQ(order(a.node(), b.node()), after);
}

TEST(Order, ATableIsOrderedByItsComparator) {
  AreaTable areas;
  auto *later = areas.inserted(2);
  auto *earlier = areas.inserted(1);
  EXPECT_EQ(e_avl_get_first(&shell(areas.table)->avl_root), &shell(earlier)->avl_node);
  EXPECT_EQ(e_avl_get_last(&shell(areas.table)->avl_root), &shell(later)->avl_node);
}

// Registers hold the address of an error word where the lookups' last arguments are; none is read.
TEST(Order, LookupsGiveNullAndLookAtNothing) {
  using Lookup = void *(void *, std::uint64_t, void *, void *, void *, void *);
  const std::vector<std::string> with_key{
      "search",
      "search_unsafe",
      "search_w_src",
      "search_not_pending_destroy",
      "search_nearest",
      "search_sub_first",
      "search_internal",
      "get_next_by_key",
      "get_next_by_key_not_pending_destroy",
      "get_next_by_key_w_src",
      "get_prev_by_key",
      "get_prev_by_key_not_pending_destroy",
  };
  const std::vector<std::string> of_table{
      "search",
      "search_unsafe",
      "search_w_src",
      "search_w_src_unsafe",
      "get_next_by_key",
      "get_next_by_key_unsafe",
      "get_next_by_key_w_src",
      "get_prev_by_key",
      "get_prev_by_key_unsafe",
      "pkey_print",
      "pkey_print_unsafe",
  };
  EXPECT_EQ(with_key.size() + 1 + of_table.size(), 24u);
  const harness::TraceLog traced;
  const harness::CallLog log;
  for (const auto *table : harbor::model::all_tables) {
    std::vector<std::string> names;
    const std::string prefix = harness::key_prefix(*table);
    for (const std::string &suffix : with_key) names.push_back(prefix + suffix);
    for (const std::string &suffix : of_table) {
      names.push_back("tbl_" + std::string(table->name) + "_" + suffix);
    }
    names.push_back(
        (table->key_structure != nullptr ? prefix.substr(0, prefix.size() - 1) : prefix) +
        "search_cr");
    for (const std::string &name : names) {
      std::uint32_t word = 9;
      auto *lookup = harness::function<Lookup>(name);
      ASSERT_NE(lookup, nullptr) << name;
      EXPECT_EQ(lookup(nullptr, 0, nullptr, nullptr, &word, &word), nullptr) << name;
      EXPECT_EQ(word, 9u) << name;
    }
  }
  EXPECT_TRUE(traced.empty());
  EXPECT_TRUE(log.calls().empty());
}

TEST(Order, AreaSearchGivesNullWithANullHandleAndAnError) {
  std::uint32_t word = 5;
  EXPECT_EQ(tbl_ospf_area_search(nullptr, 0, nullptr, nullptr, &word), nullptr);
  EXPECT_EQ(word, 5u);
}

TEST(Order, ACompositeKeyHasASingleUnderscoreOnlyInTwoNames) {
  EXPECT_TRUE(harness::is_exported("tbl_ospfv2_link_ospfv2_link_key_search_cr"));
  EXPECT_TRUE(harness::is_exported("tbl_ospfv2_link_ospfv2_link_key_get_cr"));
  EXPECT_FALSE(harness::is_exported("tbl_ospfv2_link_ospfv2_link_key__search_cr"));
  EXPECT_FALSE(harness::is_exported("tbl_ospfv2_link_ospfv2_link_key_get_next"));
  EXPECT_TRUE(harness::is_exported("tbl_ospfv2_link_ospfv2_link_key__get_next"));
}

}  // namespace
