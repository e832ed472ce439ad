// What the tests of tables share: records of a few tables with their keys set, and tables that end
// empty and freed with the test.
#pragma once

#include <kelp/database.h>
#include <kelp/oid.h>
#include <kelp/primitives.h>
#include <kelp/table.h>
#include <kelp/tree.h>
#include <ospf_harbor_oper.h>

#include <cstring>
#include <string>
#include <vector>

#include "harness/harness.hpp"
#include "model/lists.hpp"

namespace harness {

inline kelp_table *shell(tbl_ospf_area_table *table) {
  return reinterpret_cast<kelp_table *>(table);
}
inline kelp_table *shell(void *table) { return static_cast<kelp_table *>(table); }
inline kelp_record *shell(tbl_ospf_area_record *record) {
  return reinterpret_cast<kelp_record *>(record);
}
inline kelp_record *shell(tbl_ospfv2_link_record *record) {
  return reinterpret_cast<kelp_record *>(record);
}

// The one variant entry of a table's or record's type.
inline kelp_variant_entry &entry_of(kelp_type_record &type) { return type.varinfo->entries[0]; }

// The calling thread's tenant while this lives.
class Tenant {
 public:
  explicit Tenant(std::uint16_t tenant) { kelp_tenant_set(tenant); }
  ~Tenant() { kelp_tenant_set(0); }
};

// A store with an open table of areas. At its end the records still in the table are destroyed and
// the table is freed.
class AreaTable : public Store {
 public:
  explicit AreaTable(StoreOptions options = {}) : Store(options) {
    if (options.marked_shared) {
      EXPECT_EQ(kelp_lock_write(handle(), nullptr), 0);
    }
    table = tbl_ospf_area_table_open(handle(), 0, "areas", 0, &err);
    EXPECT_NE(table, nullptr);
    EXPECT_EQ(err, 0u);
  }
  ~AreaTable() {
    std::uint32_t word = 0;
    if (table == nullptr) return;
    handle()->collector_context = 1;
    while (e_avl_node *node = e_avl_get_first(&shell(table)->avl_root)) {
      auto *record = reinterpret_cast<kelp_record *>(reinterpret_cast<char *>(node) -
                                                     offsetof(kelp_record, avl_node));
      record->ref_word = 1;
      tbl_ospf_area_destroy_record(handle(), 0, reinterpret_cast<tbl_ospf_area_record *>(record),
                                   &word);
      EXPECT_EQ(word, 0u);
    }
    handle()->force_toc_delete = 1;
    tbl_ospf_area_table_free(handle(), 0, table, &word);
    EXPECT_EQ(word, 0u);
  }

  // A record with its area, in no table.
  tbl_ospf_area_record *record(std::uint32_t area_id, std::uint32_t src = KELP_SRC_DEFAULT) {
    std::uint32_t word = 0;
    tbl_ospf_area_record *made = tbl_ospf_area_create_record_w_src(handle(), 0, src, &word);
    ospf_area *area = ospf_area_create(handle(), 0);
    ospf_area_area_id_set_value(handle(), 0, area, area_id, &word);
    tbl_ospf_area_ospf_area_set_field(handle(), 0, made, area);
    EXPECT_EQ(word, 0u);
    return made;
  }
  // The same, in the table.
  tbl_ospf_area_record *inserted(std::uint32_t area_id, std::uint32_t src = KELP_SRC_DEFAULT) {
    tbl_ospf_area_record *made = record(area_id, src);
    std::uint32_t word = 0;
    tbl_ospf_area_insert(handle(), 0, table, made, &word);
    EXPECT_EQ(word, 0u);
    return made;
  }
  // The same, as a tenant that is the caller's for the moment.
  tbl_ospf_area_record *inserted_by(std::uint16_t tenant, std::uint32_t area_id,
                                    std::uint32_t src = KELP_SRC_DEFAULT) {
    const Tenant caller(tenant);
    return inserted(area_id, src);
  }
  void destroy(tbl_ospf_area_record *record) {
    std::uint32_t word = 0;
    tbl_ospf_area_destroy_record(handle(), 0, record, &word);
    EXPECT_EQ(word, 0u);
  }
  void enable_cursors(bool implicit_write_cursor) {
    EXPECT_EQ(
        kelp_table_enable_cursors(handle(), shell(table), implicit_write_cursor ? 1 : 0, nullptr),
        0);
  }
  // How often a record stands in the replication cache.
  bool is_cached(const tbl_ospf_area_record *record) const {
    std::uint64_t position = 0;
    kelp_cache_entry entry;
    while (kelp_replication_cache_next(handle(), &position, &entry) == 1) {
      if (entry.record == reinterpret_cast<const kelp_record *>(record)) return true;
    }
    return false;
  }

  tbl_ospf_area_table *table = nullptr;
};

// tbl_<t> for each table of the schema.
inline std::vector<std::string> table_names() {
  std::vector<std::string> names;
  for (const auto *table : harbor::model::all_tables) {
    names.push_back("tbl_" + std::string(table->name));
  }
  return names;
}

// <k> with the underscore that follows it in names.
inline std::string key_prefix(const harbor::model::Table &table) {
  const std::string name = "tbl_" + std::string(table.name) + "_";
  if (table.key_structure != nullptr) return name + std::string(table.key_structure->name) + "__";
  return name + std::string(table.record->name) + "_" + std::string(table.key->name) + "_";
}

}  // namespace harness
