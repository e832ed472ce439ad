// The lookup from LUID to vft and the one copy that callers are handed.
#include <kelp/vft.h>

#include <algorithm>
#include <array>
#include <map>

#include "tables/table_fixture.hpp"

namespace {

using harness::Store;
using harness::TraceLog;
using Luid = std::array<std::uint8_t, 16>;

Luid luid_from(std::string_view text) {
  Luid luid;
  for (std::size_t at = 0; at < luid.size(); ++at) {
    luid[at] =
        static_cast<std::uint8_t>(std::stoi(std::string(text.substr(2 * at, 2)), nullptr, 16));
  }
  return luid;
}

std::vector<std::string> luids_in_order() {
  std::vector<std::string> luids;
  for (const auto *table : harbor::model::all_tables) luids.emplace_back(table->luid);
  std::sort(luids.begin(), luids.end());
  return luids;
}

const harbor::model::Table &table_with(const std::string &luid) {
  for (const auto *table : harbor::model::all_tables) {
    if (table->luid == luid) return *table;
  }
  ADD_FAILURE() << luid;
  return *harbor::model::all_tables[0];
}

TEST(Vft, LookupGivesThePlaceInTheOrderOfLuids) {
  const std::vector<std::string> luids = luids_in_order();
  ASSERT_EQ(luids.size(), harbor::model::all_tables.size());
  for (std::size_t at = 0; at < luids.size(); ++at) {
    EXPECT_EQ(ospf_harbor_oper_table_mrst_lookup(luid_from(luids[at]).data()),
              static_cast<std::int32_t>(at));
  }
}

TEST(Vft, LookupComparesTheSecondHalf) {
  for (const std::string &text : luids_in_order()) {
    Luid luid = luid_from(text);
    luid[15] ^= 1;
    EXPECT_EQ(ospf_harbor_oper_table_mrst_lookup(luid.data()), -1);
    luid[15] ^= 1;
    luid[8] ^= 0x80;
    EXPECT_EQ(ospf_harbor_oper_table_mrst_lookup(luid.data()), -1);
  }
}

TEST(Vft, LookupComparesTheFirstHalfOutsideTheSelector) {
  for (const std::string &text : luids_in_order()) {
    Luid luid = luid_from(text);
    luid[0] ^= 1;
    EXPECT_EQ(ospf_harbor_oper_table_mrst_lookup(luid.data()), -1);
  }
}

// The five bits behind the 35th lowest of the first eight bytes, big-endian.
std::uint32_t selector_of(const Luid &luid) { return ((luid[3] & 3u) << 3) | (luid[4] >> 5); }

TEST(Vft, ASelectorWithoutATableFindsNone) {
  std::vector<std::uint32_t> used;
  for (const std::string &text : luids_in_order()) used.push_back(selector_of(luid_from(text)));
  std::sort(used.begin(), used.end());
  used.erase(std::unique(used.begin(), used.end()), used.end());
  EXPECT_LT(used.size(), 32u);
  for (std::uint32_t selector = 0; selector < 32; ++selector) {
    if (std::find(used.begin(), used.end(), selector) != used.end()) continue;
    Luid luid{};
    luid[3] = static_cast<std::uint8_t>(selector >> 3);
    luid[4] = static_cast<std::uint8_t>(selector << 5);
    EXPECT_EQ(selector_of(luid), selector);
    EXPECT_EQ(ospf_harbor_oper_table_mrst_lookup(luid.data()), -1);
  }
}

TEST(Vft, TablesThatShareASelectorAreAllFound) {
  const std::vector<std::string> luids = luids_in_order();
  std::map<std::uint32_t, std::size_t> tables;
  for (const std::string &luid : luids) ++tables[selector_of(luid_from(luid))];
  std::size_t sharing = 0;
  for (std::size_t at = 0; at < luids.size(); ++at) {
    const Luid luid = luid_from(luids[at]);
    if (tables[selector_of(luid)] < 2) continue;
    EXPECT_EQ(ospf_harbor_oper_table_mrst_lookup(luid.data()), static_cast<std::int32_t>(at));
    ++sharing;
  }
  EXPECT_GE(sharing, 4u);
}

TEST(Vft, LookupTakesALuidAtAnyAddress) {
  std::uint8_t bytes[17];
  std::memcpy(bytes + 1, table_tbl_ospf_area_luid, 16);
  EXPECT_EQ(ospf_harbor_oper_table_mrst_lookup(bytes + 1),
            ospf_harbor_oper_table_mrst_lookup(table_tbl_ospf_area_luid));
  EXPECT_GE(ospf_harbor_oper_table_mrst_lookup(bytes + 1), 0);
}

TEST(Vft, GetWithAnErrorPresentLeavesTheOutputAndTellsAtDebug) {
  Store store;
  const kelp_table_vft *vft = &tbl_ospf_table_vft;
  kelp_store_err(store, 5);
  store.err = 9;
  const TraceLog traced;
  store(ospf_harbor_oper_table_get_vft, table_tbl_ospf_area_luid, &vft);
  EXPECT_EQ(vft, &tbl_ospf_table_vft);
  EXPECT_EQ(store.err, 9u);
  EXPECT_EQ(store.last_error(), 5);
  EXPECT_EQ(traced.texts(), std::vector<std::string>{
                                "Error already set when requesting ospf_harbor_oper table vft"});
  EXPECT_TRUE(traced.has(7, "Error already set when requesting ospf_harbor_oper table vft"));
}

TEST(Vft, GetOfAnUnknownLuidGivesNullAnd2) {
  Store store;
  const Luid unknown{};
  const kelp_table_vft *vft = &tbl_ospf_table_vft;
  store(ospf_harbor_oper_table_get_vft, unknown.data(), &vft);
  EXPECT_EQ(vft, nullptr);
  store.expect_failure(KELP_ERR_NOT_FOUND);
}

TEST(Vft, GetHandsOutTheCopyAndClearsTheLastError) {
  Store store;
  for (const std::string &luid : luids_in_order()) {
    kelp_store_err(store, 5);
    const kelp_table_vft *vft = nullptr;
    store(ospf_harbor_oper_table_get_vft, luid_from(luid).data(), &vft);
    EXPECT_EQ(store.err, 0u);
    EXPECT_EQ(store.last_error(), 0);
    const std::string name = "tbl_" + std::string(table_with(luid).name);
    const auto *constant =
        static_cast<const kelp_table_vft *>(harness::exported(name + "_table_vft"));
    EXPECT_NE(vft, constant);
    EXPECT_EQ(
        vft,
        &ospf_harbor_oper_table_lut[ospf_harbor_oper_table_mrst_lookup(luid_from(luid).data())]);
    EXPECT_EQ(std::memcmp(vft, constant, sizeof(kelp_table_vft)), 0) << name;
    EXPECT_EQ(vft->name, "table " + name);
    EXPECT_EQ(std::memcmp(vft->luid, luid_from(luid).data(), 16), 0);
  }
}

// What each word of a vft holds, behind "tbl_<t>_"; two are no functions, one is null.
constexpr const char *slot_names[] = {
    "luid",
    "name",
    "table_open_unsafe",
    "table_open_by_id_unsafe",
    "table_open_by_ior_with_name_unsafe",
    "table_open_by_ior_with_id_unsafe",
    "table_close_unsafe",
    "table_free_unsafe",
    "table_record_create_cb_unsafe",
    "table_record_modify_cb_unsafe",
    "table_record_delete_cb_unsafe",
    "table_record_create_dm_cb_unsafe",
    "table_record_delete_dm_cb_unsafe",
    "table_record_grouping_cb_unsafe",
    "table_record_free_cb_unsafe",
    "search_unsafe",
    "search_w_src_unsafe",
    "create_record_unsafe",
    "record_add_ref_unsafe",
    "destroy_record_unsafe",
    "insert_unsafe",
    "delete_unsafe",
    "pkey_insert_unsafe",
    "pkey_get_next_unsafe",
    "pkey_get_prev_unsafe",
    "pkey_get_first_unsafe",
    "pkey_get_last_unsafe",
    "table_get_count_unsafe",
    "table_get_count_by_src_unsafe",
    "pkey_get_first_by_src_unsafe",
    "pkey_get_first_ignore_src_unsafe",
    "pkey_get_next_by_src_unsafe",
    "pkey_get_next_ignore_src_unsafe",
    "table_record_print_unsafe",
    "table_record_to_xml_unsafe",
    "table_record_from_xml_unsafe",
    "",
    "request_record_destroy_unsafe",
    "table_record_marshal_unsafe",
    "table_record_unmarshal_unsafe",
    "table_record_len_unsafe",
    "table_pkey_marshal_unsafe",
    "table_pkey_unmarshal_unsafe",
    "table_pkey_len_unsafe",
    "pkey_destroy_unsafe",
    "get_next_by_key_unsafe",
    "get_prev_by_key_unsafe",
    "pkey_print_unsafe",
};

TEST(Vft, EverySlotOfEveryTableAndItsCopyHoldsTheFunctionOfItsName) {
  static_assert(std::size(slot_names) == KELP_VFT_WORDS &&
                sizeof(kelp_table_vft) == KELP_VFT_WORDS * sizeof(void *));
  ospf_harbor_oper_table_vft_init();
  for (const auto *table : harbor::model::all_tables) {
    const std::string name = "tbl_" + std::string(table->name);
    const auto *constant = static_cast<const void *const *>(harness::exported(name + "_table_vft"));
    const std::int32_t index =
        ospf_harbor_oper_table_mrst_lookup(luid_from(std::string(table->luid)).data());
    const auto *copy = reinterpret_cast<const void *const *>(
        &ospf_harbor_oper_table_lut[static_cast<std::size_t>(index)]);
    for (std::size_t slot = 0; slot < std::size(slot_names); ++slot) {
      const std::string rest(slot_names[slot]);
      const void *expected = slot < 2       ? harness::exported("table_" + name + "_" + rest)
                             : rest.empty() ? nullptr
                                            : harness::exported(name + "_" + rest);
      EXPECT_EQ(constant[slot], expected) << name << " slot " << slot;
      EXPECT_EQ(copy[slot], expected) << name << " slot " << slot << " of the copy";
    }
  }
}

TEST(Vft, Slot36IsNullInEveryCopy) {
  ospf_harbor_oper_table_vft_init();
  for (const kelp_table_vft &vft : ospf_harbor_oper_table_lut) {
    EXPECT_EQ(vft.operations[KELP_VFT_UNUSED - 2], nullptr);
    EXPECT_NE(vft.operations[KELP_VFT_TABLE_OPEN - 2], nullptr);
  }
}

TEST(Vft, TheFirstInitCopiesAndTellsAndTheSecondDoesNeither) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        harness::CallLog log;
        TraceLog traced;
        const bool first = ospf_harbor_oper_table_vft_init() == 0 &&
                           traced.has(7, "Initializing table vft for ospf_harbor_oper") &&
                           log.count("table_vft_cpy") == 1;
        traced.clear();
        const bool second = ospf_harbor_oper_table_vft_init() == 0 && traced.empty() &&
                            log.count("table_vft_cpy") == 1;
        std::exit(first && second ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

const kelp_table_vft *place_of_area() {
  return &ospf_harbor_oper_table_lut[ospf_harbor_oper_table_mrst_lookup(table_tbl_ospf_area_luid)];
}

TEST(Vft, AFailedCopyIsNotTriedAgainAndStillHandsOutAVft) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        Store store;
        const kelp_table_vft *vft = nullptr;
        {
          const harness::Failing failing("table_vft_cpy", 22);
          store(ospf_harbor_oper_table_get_vft, table_tbl_ospf_area_luid, &vft);
        }
        const bool first = store.err == 22 && store.last_error() == 22 && vft == place_of_area() &&
                           vft->name == nullptr;
        store.err = 0;
        store(ospf_harbor_oper_table_get_vft, table_tbl_ospf_area_luid, &vft);
        const bool second = store.err == 0 && vft->name == nullptr &&
                            ospf_harbor_oper_table_vft_init() == 0 && vft->name == nullptr;
        std::exit(first && second ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(Vft, AFailedInitGivesTheCode) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const harness::Failing failing("table_vft_cpy", 22);
        const bool first = ospf_harbor_oper_table_vft_init() == 22;
        std::exit(first && ospf_harbor_oper_table_vft_init() == 0 ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(Vft, IdentitiesOfATableAgree) {
  for (const auto *table : harbor::model::all_tables) {
    const std::string name = "tbl_" + std::string(table->name);
    const auto *luid =
        static_cast<const std::uint8_t *>(harness::exported("table_" + name + "_luid"));
    const auto *text = static_cast<const char *>(harness::exported("table_" + name + "_luid_text"));
    const auto *title = static_cast<const char *>(harness::exported("table_" + name + "_name"));
    const auto *type = static_cast<const kelp_type_record *>(
        harness::exported("_" + name + "_table_type_info_internal"));
    const auto *record_type = static_cast<const kelp_type_record *>(
        harness::exported("_" + name + "_table_record_type_info_internal"));
    EXPECT_EQ(std::memcmp(luid, luid_from(table->luid).data(), 16), 0);
    EXPECT_EQ(text, table->luid);
    EXPECT_EQ(title, "table " + name);
    EXPECT_EQ(std::memcmp(type->md5, luid, 16), 0);
    EXPECT_STREQ(type->type_name, name.c_str());
    EXPECT_STREQ(type->kind, "table");
    EXPECT_STREQ(record_type->md5_text, std::string(table->record_md5).c_str());
    EXPECT_STREQ(record_type->type_name, (name + "_record").c_str());
    EXPECT_STREQ(record_type->kind, "table_record");
    EXPECT_EQ(type->varinfo->n_variants, 1);
    EXPECT_EQ(record_type->varinfo->n_variants, 1);
  }
}

TEST(Vft, GetLuidHandsItsArgumentsOn) {
  harness::AreaTable areas;
  const std::uint8_t *luid = areas(tbl_ospf_area_get_luid, areas.table);
  EXPECT_EQ(std::memcmp(luid, table_tbl_ospf_area_luid, 16), 0);
  EXPECT_EQ(areas(tbl_ospf_area_get_luid, nullptr), nullptr);
  EXPECT_EQ(areas.err, KELP_ERR_INVALID);
}

}  // namespace
