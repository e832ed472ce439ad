/* The database side: table of contents, table ids, cursors and per-tenant counts of tables, the
 * declarations of writes to the store, tenancy, and the cache of records that readers were given.
 *
 * All of it is called by modules' table families. The caller holds the database's lock; the
 * functions here take none but short ones of their own. Functions with an error word do nothing on
 * a non-zero word, and store a code that they set as the handle's last error. */
#ifndef KELP_DATABASE_H
#define KELP_DATABASE_H

#include <kelp/handle.h>
#include <kelp/table.h>
#include <kelp/vft.h>

KELP_EXTERN_C_BEGIN

/* Copies count vft records. 0, or 22 for a null pointer with a count above 0. The ranges must not
 * overlap. */
KELP_API uint32_t table_vft_cpy(void *destination, const void *source, uint32_t count);

/* --- the database of a handle --- */

/* 1 when the calling thread's current database is marked shared, else 0; 0 without a current one.
 * The current database is that of the handle last made, locked, or given to kelp_clear_last_error
 * or kelp_store_err by this thread, or what kelp_database_make_current said last. */
KELP_API uint32_t kelplib_db_is_shared(void);

/* Non-zero when the handle holds the write lock of its database. */
KELP_API uint32_t kelplib_database_is_write_locked(const kelp_handle *handle);

/* --- the table of contents --- */

/* The head of the database's list of tables; made on the first call. */
KELP_API kelp_table_list *kelplib_database_table_toc_create(kelp_handle *handle, uint32_t space_id,
                                                            uint32_t *err);

/* The root of the table of contents. It is made on the first call by a handle that may write: any
 * handle of a database that is not shared, the holder of the write lock of one that is. Before that
 * a reader gets null, without an error. */
KELP_API kelp_toc_root *kelpdb_database_toc_open(kelp_handle *handle, uint32_t space_id,
                                                 uint32_t *err);

/* The table of the type with this LUID (16 bytes, luid_length 16) that has the path of path_length
 * bytes (by_name 1) or the id (by_name 0); null without an error when there is none. */
KELP_API kelp_table *kelpdb_database_toc_get_table_root(kelp_handle *handle, uint32_t space_id,
                                                        const char *path, uint32_t path_length,
                                                        uint64_t id, const uint8_t *luid,
                                                        uint32_t luid_length, uint32_t by_name,
                                                        uint32_t *err);

/* Enters a table under its type's LUID and its tbl_name (open_type 0) or table_id. dynamic says
 * whether the id was given out and is not looked at. 17 when another table stands there, 22 for a table that is null or has no type
 * record, 12 without memory. */
KELP_API void kelpdb_database_toc_insert(kelp_handle *handle, uint32_t space_id, kelp_table *table,
                                         uint32_t dynamic, uint32_t *err);

/* Takes a table out, so that it is not found any more and its name can be used again. 2 when it is
 * not in. In a database that is not shared, a table that was taken out and is not freed yet may be
 * taken out again without an error: so a free that had to wait for references can be repeated, and
 * a requested free can go on to the free itself. */
KELP_API void kelpdb_database_toc_delete(kelp_handle *handle, uint32_t space_id, kelp_table *table,
                                         uint32_t *err);

/* Takes a table out wherever it stands; not being in is no error. */
KELP_API void kelpdb_database_toc_force_delete(kelp_handle *handle, uint32_t space_id,
                                               kelp_table *table, uint32_t *err);

/* --- cursors --- */

/* Non-zero when the table is marked for replication (kelp_table_enable_cursors). */
KELP_API uint32_t kelpdb_table_are_cursors_enabled(kelp_handle *handle, uint32_t space_id,
                                                   const kelp_table *table, uint32_t *err);

/* Non-zero when inserts into the table move the write cursor by themselves. */
KELP_API uint32_t kelpdb_table_implicit_write_cursor_enabled(kelp_handle *handle, uint32_t space_id,
                                                             const kelp_table *table,
                                                             uint32_t *err);

/* Moves the write cursor over a record: the change feed shows it as inserted or modified to every
 * cursor that has not passed this point. 22 for a null table or record, a record that is not in
 * the table, or a table without cursors; 12, which an insert through the handle's own pool never
 * meets: it makes room first. */
KELP_API void kelpdb_enq_rec_move_write_cursor_internal(kelp_handle *handle, uint32_t space_id,
                                                        kelp_table *table, kelp_record *record,
                                                        uint32_t *err);

/* Marks a record for destruction: sets REC_PENDING_DESTROY, adds 1 to the table's
 * pending_destroy_count, both announced to write_notify, and shows the record as destroyed in the
 * change feed. The record stays in the tree until kelp_collector_run ends it, after every cursor
 * has passed it. A record that is marked already stays as it is, without an error. 2 for a null
 * record, 22 for one in no table or in a table without cursors. */
KELP_API void kelpdb_request_record_destroy(kelp_handle *handle, uint32_t space_id,
                                            kelp_record *record, uint32_t *err);

/* --- counts by tenant --- */

/* Adds 1 (direction 1) to, or takes 1 (direction 0) from, the table's counter of the tenant and
 * source. A counter at 0 stays 0. 12 without memory, which an insert through the handle's own pool
 * never meets: it makes room first. */
KELP_API void kelpdb_update_tenant_counter(kelp_handle *handle, uint32_t space_id,
                                           kelp_table *table, uint32_t direction, uint16_t tenant,
                                           uint8_t src, uint32_t *err);

/* Writes the tenant's count to *count: of the source *src, or of all sources when src is null. 0
 * when nothing was counted. */
KELP_API void kelpdb_get_tenant_counter(kelp_handle *handle, uint32_t space_id,
                                        const kelp_table *table, uint32_t *count, uint16_t tenant,
                                        const uint8_t *src);

/* Writes the calling thread's tenant, 0 for none, to *tenant (kelp_tenant_set). */
KELP_API void mt_get_tenant_id(uint16_t *tenant);

/* --- the replication cache --- */

/* Enters a record that a reader was given in the database's replication cache: once per record,
 * and at most as many as the database option replication_cache_entries, the oldest giving way.
 * 22 for a null table or record. */
KELP_API void kelprepl_add_to_cache(kelp_handle *handle, uint32_t space_id, kelp_table *table,
                                    kelp_record *record, uint32_t *err);

/* --- the store behind obj_pool --- */

/* Declares bytes about to be written. 1 on success, 0 when the range is not wholly the store's. */
KELP_API uint32_t lumen_set_range(void *obj_pool, const void *address, size_t length,
                                  uint32_t space_id);

/* The pointer stored under the key, or null. */
KELP_API void *lumen_get_key(void *obj_pool, const char *key);

/* Stores a pointer under the key; null takes the key out. 1 on success, 0 on failure. */
KELP_API uint32_t lumen_set_key(void *obj_pool, const char *key, void *pointer);

/* Non-zero when the pointer lies in memory that the store has given out. */
KELP_API uint32_t lumen_in_range(void *obj_pool, const void *pointer);

/* Writes the calling thread's last failure of a lumen_ call to standard error, with what, where,
 * found and expected. */
KELP_API void lumen_perror(void);

KELP_EXTERN_C_END

#endif
