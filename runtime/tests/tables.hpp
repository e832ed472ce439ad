// A small module of tables for the tests of the collector and the feed: the three operations that
// the runtime calls through a vft, with the rules of real modules as far as they concern the
// runtime.
#pragma once

#include "kelp/tree.h"
#include "support.hpp"

namespace kelp_test {

inline constexpr const char *kTableModule = "table_test_module";

inline std::uint32_t compare_records(const e_avl_node *a, const e_avl_node *b) {
  constexpr std::size_t kPlace = offsetof(kelp_record, avl_node);
  const auto key = [](const e_avl_node *node) {
    const auto *record =
        reinterpret_cast<const kelp_record *>(reinterpret_cast<const char *>(node) - kPlace);
    return reinterpret_cast<std::uintptr_t>(record->objects[0]);
  };
  return key(a) < key(b) ? 0 : key(a) == key(b) ? 1 : 2;
}

inline void delete_record(kelp_handle *handle, std::uint32_t space_id, kelp_table *table,
                          kelp_record *record, std::uint32_t *err) {
  if (*err != 0) return;
  if (kelpdb_table_are_cursors_enabled(handle, space_id, table, err) != 0 &&
      handle->collector_context == 0) {
    *err = 22;
    return;
  }
  if (e_avl_delete(handle->obj_pool, space_id, &table->avl_root, &record->avl_node, &table->avl_aux,
                   compare_records) == 0) {
    *err = 2;
  }
  record->record_table = nullptr;
  if (*err != 0) return;
  --table->record_count;
  if ((record->rec_flags & REC_PENDING_DESTROY) != 0) --table->pending_destroy_count;
  std::uint16_t tenant = 0;
  mt_get_tenant_id(&tenant);
  if (tenant != 0)
    kelpdb_update_tenant_counter(handle, space_id, table, 0, tenant, record->src, err);
}

inline void destroy_record(kelp_handle *handle, std::uint32_t space_id, kelp_record *record,
                           std::uint32_t *err) {
  if (*err != 0) return;
  if (--record->ref_word != 0) return;
  if (record->record_table != nullptr) {
    delete_record(handle, space_id, record->record_table, record, err);
    *err = 0;
  }
  handle->obj_free(handle->obj_pool, space_id, record);
}

inline void free_table(kelp_handle *handle, std::uint32_t space_id, kelp_table *table,
                       std::uint32_t *err) {
  if (*err != 0) return;
  const kelp_toc_root *root = kelpdb_database_toc_open(handle, space_id, err);
  if ((root->flags & KELP_TOC_SHARED) == 0) {
    kelpdb_database_toc_delete(handle, space_id, table, err);
    if (*err != 0) return;
  } else if (handle->collector_context == 0) {
    kelpdb_database_toc_delete(handle, space_id, table, err);
    return;
  }
  if (kelp_request_oid_mapping_destroy(handle, space_id, table, err) == 0) {
    if (*err == 0) *err = 11;
    return;
  }
  kelp_table_list *list = kelplib_database_table_toc_create(handle, KELP_SPACE_RUNTIME, err);
  if (table->toc_next != nullptr) {
    table->toc_next->toc_prev = table->toc_prev;
  } else {
    list->last_link = table->toc_prev;
  }
  *table->toc_prev = table->toc_next;
  handle->obj_free(handle->obj_pool, space_id, table);
}

inline void get_vft(kelp_handle *, std::uint32_t, const std::uint8_t *, const kelp_table_vft **vft,
                    std::uint32_t *) {
  static kelp_table_vft the_vft = [] {
    kelp_table_vft made = {};
    made.operations[KELP_VFT_TABLE_FREE - KELP_VFT_TABLE_OPEN] =
        reinterpret_cast<kelp_vft_word>(&free_table);
    made.operations[KELP_VFT_DESTROY_RECORD - KELP_VFT_TABLE_OPEN] =
        reinterpret_cast<kelp_vft_word>(&destroy_record);
    made.operations[KELP_VFT_DELETE - KELP_VFT_TABLE_OPEN] =
        reinterpret_cast<kelp_vft_word>(&delete_record);
    return made;
  }();
  *vft = &the_vft;
}

// A database with one table, in the list, the table of contents and the OID mapping.
class TablesTest : public DatabaseTest {
 protected:
  TablesTest() {
    kelp_module_set_vft_lookup(kTableModule, get_vft, nullptr);
    table = open_table("table");
  }
  ~TablesTest() override { kelp_module_set_vft_lookup(kTableModule, nullptr, nullptr); }

  kelp_table *open_table(const char *name) {
    auto *made = make<kelp_table>(&table_type.record);
    std::snprintf(made->tbl_name, sizeof made->tbl_name, "%s", name);
    kelp_table_list *list = kelplib_database_table_toc_create(handle, KELP_SPACE_RUNTIME, &err);
    made->toc_prev = list->last_link;
    *list->last_link = made;
    list->last_link = &made->toc_next;
    kelp_oid_mapping_create(handle, 0, made, KELP_OID_KIND_TABLE, 0, nullptr, &err);
    kelpdb_database_toc_open(handle, 0, &err);
    kelpdb_database_toc_insert(handle, 0, made, 0, &err);
    EXPECT_EQ(err, 0u);
    return made;
  }

  kelp_record *insert(kelp_table *into, std::uintptr_t key) {
    auto *record = make<kelp_record>(&record_type.record);
    record->ref_word = 1;
    record->src = KELP_SRC_DEFAULT;
    mt_get_tenant_id(&record->tenant_id);
    record->objects[0] = reinterpret_cast<void *>(key);
    EXPECT_EQ(e_avl_insert(handle->obj_pool, 0, &into->avl_root, &record->avl_node, &into->avl_aux,
                           compare_records),
              1u);
    record->record_table = into;
    record->rec_flags |= REC_IN_TABLE;
    ++into->record_count;
    if (record->tenant_id != 0) {
      kelpdb_update_tenant_counter(handle, 0, into, 1, record->tenant_id, record->src, &err);
    }
    if (kelpdb_table_implicit_write_cursor_enabled(handle, 0, into, &err) != 0) {
      kelpdb_enq_rec_move_write_cursor_internal(handle, 0, into, record, &err);
    }
    EXPECT_EQ(err, 0u);
    return record;
  }

  // Inserts a record that was taken out, as modules do.
  void insert_again(kelp_table *into, kelp_record *record) {
    EXPECT_EQ(e_avl_insert(handle->obj_pool, 0, &into->avl_root, &record->avl_node, &into->avl_aux,
                           compare_records),
              1u);
    record->record_table = into;
    record->rec_flags = REC_IN_TABLE;
    ++into->record_count;
    if (kelpdb_table_implicit_write_cursor_enabled(handle, 0, into, &err) != 0) {
      kelpdb_enq_rec_move_write_cursor_internal(handle, 0, into, record, &err);
    }
    EXPECT_EQ(err, 0u);
  }

  void free_now(kelp_table *&gone) {
    free_table(handle, 0, gone, &err);
    EXPECT_EQ(err, 0u);
    gone = nullptr;
  }

  kelp_collector_report collect(std::int32_t expected = 0) {
    kelp_collector_report report;
    EXPECT_EQ(kelp_collector_run(handle, &report, &error), expected) << error.text;
    return report;
  }

  Type table_type{"tbl_thing", "table", 1, 7, kTableModule};
  Type record_type{"tbl_thing_record", "table_record", 1, 40, kTableModule};
  kelp_table *table = nullptr;
  kelp_error error = {};
};

}  // namespace kelp_test
