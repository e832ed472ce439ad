#include "tables/insertion.hpp"

#include <kelp/core.h>
#include <kelp/database.h>

#include <cstring>

#include "module/failure.hpp"
#include "tables/record.hpp"

namespace harbor::insertion {

namespace {

// Required: the tenant is the caller's at this moment, which need not be the record's.
void count_for_tenant(kelp_handle *handle, std::uint32_t space_id, kelp_table *table,
                      const kelp_record *record, std::uint32_t direction, std::uint32_t *err) {
  std::uint16_t tenant = 0;
  mt_get_tenant_id(&tenant);
  if (tenant == 0) return;
  kelpdb_update_tenant_counter(handle, space_id, table, direction, tenant, record->src, err);
}

// The flags of a record that has just gone in, from those that it had.
std::uint32_t flags_after_insert(std::uint32_t flags, bool is_pkey) {
  flags = (flags | REC_IN_TABLE) & ~std::uint32_t{REC_PENDING_DESTROY | REC_PKEY};
  return is_pkey ? flags | REC_PKEY : flags;
}

}  // namespace

// Required: a null record gives 17 also over another code.
void insert(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
            void *table_object, void *record_object, std::uint32_t pkey, std::uint32_t *err) {
  if (record_object == nullptr) {
    return fail(handle, KELP_ERR_EXISTS, err, About(facts.name),
                "found a null record, expected one");
  }
  if (!begin(handle, err)) return;
  kelp_table *table = table_of(table_object);
  kelp_record *record = record_of(record_object);
  const std::uint32_t flags = record->rec_flags;
  if (e_avl_insert(handle->obj_pool, space_id, &table->avl_root, &record->avl_node, &table->avl_aux,
                   facts.tree.compare) == 0) {
    if (handle->quiet_insert == 0) report(facts, TableForm::insert_exists);
    key_words::Words key;
    facts.print_key(*record, key);
    return fail(handle, KELP_ERR_EXISTS, err, About(facts.name),
                "found a record of the same key (%s), tenant and source in the table '%s', "
                "expected none",
                key, table->tbl_name);
  }
  store(handle, space_id, &record->record_table, table);
  store(handle, space_id, &table->record_count, table->record_count + 1);
  if (record->src == KELP_SRC_SHADOW) {
    store(handle, space_id, &table->shadow_count, table->shadow_count + 1);
  }
  count_for_tenant(handle, space_id, table, record, 1, err);
  store(handle, space_id, &record->rec_flags, flags_after_insert(flags, pkey != 0));
  if (kelpdb_table_are_cursors_enabled(handle, space_id, table, err) != 0 &&
      kelpdb_table_implicit_write_cursor_enabled(handle, space_id, table, err) != 0) {
    kelpdb_enq_rec_move_write_cursor_internal(handle, space_id, table, record, err);
  }
}

std::uint32_t insert_cr(const TableFacts &facts, kelp_handle *handle, void *table, void *record,
                        std::uint32_t pkey) {
  insert(facts, handle, handle->cr_space_id, table, record, pkey, &handle->cr_err);
  return handle->cr_err;
}

// Required: a record that is not in the tree loses its table and its key mark all the same, and
// REC_IN_TABLE stays set on a deleted record.
void remove(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
            void *table_object, void *record_object, std::uint32_t *err) {
  if (!begin(handle, err)) return;
  kelp_table *table = table_of(table_object);
  kelp_record *record = record_of(record_object);
  if (kelpdb_table_are_cursors_enabled(handle, space_id, table, err) != 0 &&
      handle->collector_context == 0) {
    report(facts, TableForm::delete_on_replicated);
    return fail(handle, KELP_ERR_INVALID, err, About(facts.name, "delete"),
                "found cursors on the table '%s', expected a request to destroy the record",
                table->tbl_name);
  }
  const std::uint32_t flags = record->rec_flags;
  if (e_avl_delete(handle->obj_pool, space_id, &table->avl_root, &record->avl_node, &table->avl_aux,
                   facts.tree.compare) == 0) {
    report(facts, TableForm::delete_not_found);
    fail(handle, KELP_ERR_NOT_FOUND, err, About(facts.name, "delete"),
         "found the record not in the table '%s'", table->tbl_name);
  }
  store(handle, space_id, &record->record_table, static_cast<kelp_table *>(nullptr));
  if ((flags & REC_PKEY) != 0) {
    store(handle, space_id, &record->rec_flags, flags & ~std::uint32_t{REC_PKEY});
  }
  if (*err != 0) return;
  if (table->record_count == 0) return report(facts, TableForm::delete_count_zero);
  store(handle, space_id, &table->record_count, table->record_count - 1);
  if (record->src == KELP_SRC_SHADOW && table->shadow_count != 0) {
    store(handle, space_id, &table->shadow_count, table->shadow_count - 1);
  }
  // Required: no test for 0, since the count is the runtime's to raise.
  if ((record->rec_flags & REC_PENDING_DESTROY) != 0) {
    store(handle, space_id, &table->pending_destroy_count, table->pending_destroy_count - 1);
  }
  count_for_tenant(handle, space_id, table, record, 0, err);
}

std::uint32_t remove_cr(const TableFacts &facts, kelp_handle *handle, void *table, void *record,
                        std::uint32_t destroy_too) {
  remove(facts, handle, handle->cr_space_id, table, record, &handle->cr_err);
  if (destroy_too != 0) destroy_cr(facts, handle, record);
  return handle->cr_err;
}

namespace {

// The last holder is gone: out of the table, whatever the table says to that. Required: a delete
// that is refused is reported and forgotten, so that the record's node then stays in the tree.
void leave_table(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                 kelp_record *record, std::uint32_t *err) {
  if (record->record_table == nullptr || (record->rec_flags & REC_RUNTIME_REMOVED) != 0) return;
  remove(facts, handle, space_id, record->record_table, record, err);
  if (*err == 0) return;
  report(facts, TableForm::delete_while_destroying_failed, *err);
  *err = 0;
}

}  // namespace

// Required: at count 0 a destroy wraps to 0xFFFFFF and frees nothing.
void destroy(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id, void *object,
             std::uint32_t *err) {
  if (*err != 0) return;
  if (object == nullptr) {
    return fail(handle, KELP_ERR_NOT_FOUND, err, About(facts.name),
                "found a null record, expected one");
  }
  kelp_record *record = record_of(object);
  if (record == facts.null_record) return;
  const std::uint32_t count = (record->ref_word - 1) & record::reference_mask;
  store(handle, space_id, &record->ref_word, count);
  if (count != 0) return;
  // The objects are on their way from memory while the tree is mended.
  for (std::uint32_t at = 0; at < facts.object_count; ++at) {
    __builtin_prefetch(*object_slot(record, at), 1);
  }
  leave_table(facts, handle, space_id, record, err);
  for (std::uint32_t at = 0; at < facts.object_count; ++at) {
    facts.objects[at].destroy(handle, space_id, *object_slot(record, at));
  }
  const kelp_type_record *type = record->header.tinfo;
  const type_record_access::Site site =
      count_site(facts, TableForm::destroy_varinfo_null, TableForm::destroy_variant_above);
  type_record_access::require_record(type, site);
  type_record_access::announce_and_add_one(handle, space_id, type,
                                           only_entry(type, site).destroy_count);
  *err = 0;
  if ((record->rec_flags & REC_HD_MAPPED) != 0 && handle->hd_mapped != 0) {
    kelp_hd_mapping_destroy(handle, space_id, record, err);
    if (*err != 0) {
      const char *text = std::strerror(static_cast<int>(*err));
      report(facts, TableForm::hd_mapping_not_removed, text);
      store_failure(handle, *err, About(facts.name), "ending the mapping of the record");
      return;
    }
  }
  store(handle, space_id, &record->header.tinfo, static_cast<kelp_type_record *>(nullptr));
  handle->obj_free(handle->obj_pool, space_id, record);
}

void destroy_cr(const TableFacts &facts, kelp_handle *handle, void *record) {
  destroy(facts, handle, handle->cr_space_id, record, &handle->cr_err);
}

void request_destroy(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                     void *table_object, void *record_object, std::uint32_t *err) {
  if (!begin(handle, err)) return;
  const bool has_cursors =
      kelpdb_table_are_cursors_enabled(handle, space_id, table_of(table_object), err) != 0;
  if (record_object == nullptr || !has_cursors) {
    return fail(handle, KELP_ERR_INVALID, err, About(facts.name), "found %s",
                record_object == nullptr ? "a null record, expected one"
                                         : "a table without cursors, expected some");
  }
  kelpdb_request_record_destroy(handle, space_id, record_of(record_object), err);
  if (*err != 0) {
    report(facts, TableForm::request_destroy_failed);
    name_failure(handle, About(facts.name));
  }
}

std::uint32_t request_destroy_cr(const TableFacts &facts, kelp_handle *handle, void *table,
                                 void *record) {
  request_destroy(facts, handle, handle->cr_space_id, table, record, &handle->cr_err);
  return handle->cr_err;
}

}  // namespace harbor::insertion
