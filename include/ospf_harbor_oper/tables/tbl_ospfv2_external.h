/* tbl_ospfv2_external: Entries of an external LSA, by topology.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_TBL_OSPFV2_EXTERNAL_H
#define OSPF_HARBOR_OPER_TBL_OSPFV2_EXTERNAL_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

/* The table's identity: 16 bytes, the same as 32 hexadecimal digits, and its name. */
extern KELP_API const uint8_t table_tbl_ospfv2_external_luid[16];
extern KELP_API const char table_tbl_ospfv2_external_luid_text[33];
extern KELP_API const char table_tbl_ospfv2_external_name[64];

/* The table's operations, for those who know it only by its identity. */
extern KELP_API const kelp_table_vft tbl_ospfv2_external_table_vft;

/* Gives the 16-byte identity of the object's type, as kelp_get_luid does.
 * Errors: those of kelp_get_luid; null then
 * Ownership: the bytes belong to the type record and live as long
 * Lock: none is taken; the caller holds the database's lock
 * Family: ospf_harbor_oper_table (src/tables/ospf_harbor_oper_table.hpp) */
KELP_API const uint8_t *tbl_ospfv2_external_get_luid(kelp_handle *handle, uint32_t space_id,
                                                     const void *object, uint32_t *err);

/* Opens the table of that name. A name with a slash is the whole path, cut to 207 bytes; any
 * other gets the table's LUID behind a slash, in 207 bytes at most. A missing table is made when
 * read_only is 0, else null is given without an error.
 * Errors: KELP_ERR_TOO_LONG (7) when the name is too long; KELP_ERR_NO_MEMORY (12) without
 *   memory; those of the runtime's table of contents. Null then. Ends the process when a table is
 *   to be made without the write lock, or when the database is broken
 * Ownership: the table belongs to the database and lives until it is freed
 * Lock: none is taken; the caller holds the database's lock
 * Family: open (src/tables/open.hpp) */
KELP_API tbl_ospfv2_external_table *tbl_ospfv2_external_table_open(kelp_handle *handle,
    uint32_t space_id, const char *name, uint32_t read_only, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_open; neither locks. */
KELP_API tbl_ospfv2_external_table *tbl_ospfv2_external_table_open_unsafe(kelp_handle *handle,
    uint32_t space_id, const char *name, uint32_t read_only, uint32_t *err);

/* Opens the table of that id. A missing table is made when read_only is 0, else null is given
 * without an error.
 * Errors: KELP_ERR_TOO_LONG (7) when the name is too long; KELP_ERR_NO_MEMORY (12) without
 *   memory; those of the runtime's table of contents. Null then. Ends the process when a table is
 *   to be made without the write lock, or when the database is broken
 * Ownership: the table belongs to the database and lives until it is freed
 * Lock: none is taken; the caller holds the database's lock
 * Family: open (src/tables/open.hpp) */
KELP_API tbl_ospfv2_external_table *tbl_ospfv2_external_table_open_by_id(kelp_handle *handle,
    uint32_t space_id, uint64_t id, uint32_t read_only, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_open_by_id; neither locks. */
KELP_API tbl_ospfv2_external_table *tbl_ospfv2_external_table_open_by_id_unsafe(
    kelp_handle *handle, uint32_t space_id, uint64_t id, uint32_t read_only, uint32_t *err);

/* Makes a table under the next id of its type. With read_only it gives null and takes no id.
 * Errors: KELP_ERR_TOO_LONG (7) when the name is too long; KELP_ERR_NO_MEMORY (12) without
 *   memory; those of the runtime's table of contents. Null then. Ends the process when a table is
 *   to be made without the write lock, or when the database is broken
 * Ownership: the table belongs to the database and lives until it is freed
 * Lock: none is taken; the caller holds the database's lock
 * Family: open (src/tables/open.hpp) */
KELP_API tbl_ospfv2_external_table *tbl_ospfv2_external_table_open_auto_id(kelp_handle *handle,
    uint32_t space_id, uint32_t read_only, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_open_auto_id; neither locks. */
KELP_API tbl_ospfv2_external_table *tbl_ospfv2_external_table_open_auto_id_unsafe(
    kelp_handle *handle, uint32_t space_id, uint32_t read_only, uint32_t *err);

/* Opens the table of that name. A table that is made gets ior, when not null, as its OID, and is
 * entered as dynamic or static.
 * Errors: KELP_ERR_TOO_LONG (7) when the name is too long; KELP_ERR_NO_MEMORY (12) without
 *   memory; those of the runtime's table of contents. Null then. Ends the process when a table is
 *   to be made without the write lock, or when the database is broken
 * Ownership: the table belongs to the database and lives until it is freed
 * Lock: none is taken; the caller holds the database's lock
 * Family: open (src/tables/open.hpp) */
KELP_API tbl_ospfv2_external_table *tbl_ospfv2_external_table_open_by_ior_with_name(
    kelp_handle *handle, uint32_t space_id, const char *name, const kelp_oid *ior,
    uint32_t read_only, uint32_t dynamic, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_open_by_ior_with_name; neither locks. */
KELP_API tbl_ospfv2_external_table *tbl_ospfv2_external_table_open_by_ior_with_name_unsafe(
    kelp_handle *handle, uint32_t space_id, const char *name, const kelp_oid *ior,
    uint32_t read_only, uint32_t dynamic, uint32_t *err);

/* Opens the table of that id. A table that is made gets ior, when not null, as its OID, and is
 * entered as dynamic or static.
 * Errors: KELP_ERR_TOO_LONG (7) when the name is too long; KELP_ERR_NO_MEMORY (12) without
 *   memory; those of the runtime's table of contents. Null then. Ends the process when a table is
 *   to be made without the write lock, or when the database is broken
 * Ownership: the table belongs to the database and lives until it is freed
 * Lock: none is taken; the caller holds the database's lock
 * Family: open (src/tables/open.hpp) */
KELP_API tbl_ospfv2_external_table *tbl_ospfv2_external_table_open_by_ior_with_id(
    kelp_handle *handle, uint32_t space_id, uint64_t id, const kelp_oid *ior, uint32_t read_only,
    uint32_t dynamic, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_open_by_ior_with_id; neither locks. */
KELP_API tbl_ospfv2_external_table *tbl_ospfv2_external_table_open_by_ior_with_id_unsafe(
    kelp_handle *handle, uint32_t space_id, uint64_t id, const kelp_oid *ior, uint32_t read_only,
    uint32_t dynamic, uint32_t *err);

/* Opens a table by its name (open_type 0), by its id (1) or under the next id (2), with the
 * handle's cr_space_id and cr_err.
 * Errors: KELP_ERR_TOO_LONG (7) when the name is too long; KELP_ERR_NO_MEMORY (12) without
 *   memory; those of the runtime's table of contents. Null then. Ends the process when a table is
 *   to be made without the write lock, or when the database is broken
 * Ownership: the table belongs to the database and lives until it is freed
 * Lock: none is taken; the caller holds the database's lock
 * Family: open (src/tables/open.hpp) */
KELP_API tbl_ospfv2_external_table *tbl_ospfv2_external_table_open_cr(kelp_handle *handle,
    uint32_t read_only, uint32_t open_type, const char *name, uint64_t id);

/* Forgets the handle's last error when the error word is 0. Nothing else happens: the table stays
 * open.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: open (src/tables/open.hpp) */
KELP_API void tbl_ospfv2_external_table_close(kelp_handle *handle, uint32_t space_id,
                                              tbl_ospfv2_external_table *table, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_close; neither locks. */
KELP_API void tbl_ospfv2_external_table_close_unsafe(kelp_handle *handle, uint32_t space_id,
                                                     tbl_ospfv2_external_table *table,
                                                     uint32_t *err);

/* Closes the table; mode 2 then frees it by request, mode 1 directly, with the handle's
 * cr_space_id and cr_err.
 * Errors: those of tbl_ospfv2_external_request_table_free and tbl_ospfv2_external_table_free
 * Lock: none is taken; the caller holds the database's lock
 * Family: open (src/tables/open.hpp) */
KELP_API void tbl_ospfv2_external_table_close_cr(kelp_handle *handle,
                                                 tbl_ospfv2_external_table *table, uint32_t mode);

/* Takes the table out of the table of contents and frees it. Its records are not looked at: the
 * caller empties it first. In a shared database only the collector frees; for anyone else the
 * table leaves the table of contents and stays.
 * Errors: KELP_ERR_AGAIN (11) while references to the table remain: nothing is freed, and the
 *   call may be repeated; KELP_ERR_NOT_FOUND (2) when the ids of an id-opened table are not
 *   found; those of the runtime's table of contents
 * Ownership: the table is gone after success
 * Lock: none is taken; the caller holds the database's lock
 * Family: open (src/tables/open.hpp) */
KELP_API void tbl_ospfv2_external_table_free(kelp_handle *handle, uint32_t space_id,
                                             tbl_ospfv2_external_table *table, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_free; neither locks. */
KELP_API void tbl_ospfv2_external_table_free_unsafe(kelp_handle *handle, uint32_t space_id,
                                                    tbl_ospfv2_external_table *table,
                                                    uint32_t *err);

/* Takes the table out of the table of contents at once and frees it when cursors allow; with
 * cursors the collector finishes the free. Meant for tables with cursors in shared databases.
 * Errors: those of the runtime's table of contents, a table that is not in it excepted; those of
 *   tbl_ospfv2_external_table_free: for a table of a shared database without cursors, outside the
 *   collector, the call ends in KELP_ERR_NOT_FOUND (2), since the table has left the table of
 *   contents already, and the table stays
 * Ownership: the table may be gone after success
 * Lock: none is taken; the caller holds the database's lock
 * Family: open (src/tables/open.hpp) */
KELP_API void tbl_ospfv2_external_request_table_free(kelp_handle *handle, uint32_t space_id,
                                                     tbl_ospfv2_external_table *table,
                                                     uint32_t *err);

/* The same operation as tbl_ospfv2_external_request_table_free; neither locks. */
KELP_API void tbl_ospfv2_external_request_table_free_unsafe(kelp_handle *handle,
                                                            uint32_t space_id,
                                                            tbl_ospfv2_external_table *table,
                                                            uint32_t *err);

/* Makes a record of tbl_ospfv2_external with the default source and the calling thread's tenant.
 * It holds no object and is in no table. The error word is not looked at.
 * Errors: none is set: null without memory, and the error word as it was. On success the error
 *   word is set to 0, whatever it held
 * Ownership: the caller owns the record's first reference and gives it up by
 *   tbl_ospfv2_external_destroy_record
 * Lock: none is taken; the caller holds the database's lock
 * Family: record (src/tables/record.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_create_record(kelp_handle *handle,
    uint32_t space_id, uint32_t *err);

/* The same operation as tbl_ospfv2_external_create_record; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_create_record_unsafe(
    kelp_handle *handle, uint32_t space_id, uint32_t *err);

/* Makes a record of tbl_ospfv2_external with the source that the low byte of src gives: 1 is the
 * default, 255 marks a shadow record. It holds no object and is in no table. The error word is
 * not looked at.
 * Errors: none is set: null without memory, and the error word as it was. On success the error
 *   word is set to 0, whatever it held
 * Ownership: the caller owns the record's first reference and gives it up by
 *   tbl_ospfv2_external_destroy_record
 * Lock: none is taken; the caller holds the database's lock
 * Family: record (src/tables/record.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_create_record_w_src(kelp_handle *handle,
    uint32_t space_id, uint32_t src, uint32_t *err);

/* Makes a record of tbl_ospfv2_external with the handle's cr_space_id and cr_err; with_objects
 * non-zero makes the record's objects too. Without memory it gives the table's null record: it
 * may be handed on as any other, takes no object, no reference and no end, and stays zero. cr_err
 * is not looked at.
 * Errors: KELP_ERR_NO_MEMORY (12) as the handle's last error and in cr_err when there is no
 *   memory and cr_err was 0, also for an object of a record that could be made; on success cr_err
 *   is set to 0, whatever it held
 * Ownership: the caller owns the record's first reference and gives it up by
 *   tbl_ospfv2_external_record_destroy_cr; the null record belongs to the library
 * Lock: none is taken; the caller holds the database's lock
 * Family: record (src/tables/record.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_record_create_cr(kelp_handle *handle,
    uint32_t with_objects);

/* Takes a further reference and gives how many there were before; 0 for the table's null record,
 * which takes none. The error word is not looked at. Ends the process at 0xFFFFFF references.
 * Errors: KELP_ERR_NOT_FOUND (2) for a null record; 0 then
 * Ownership: each reference is given up by a tbl_ospfv2_external_destroy_record of its own
 * Lock: none is taken; the caller holds the database's lock
 * Family: record (src/tables/record.hpp) */
KELP_API uint32_t tbl_ospfv2_external_record_add_ref(kelp_handle *handle, uint32_t space_id,
                                                     tbl_ospfv2_external_record *record,
                                                     uint32_t *err);

/* The same operation as tbl_ospfv2_external_record_add_ref; neither locks. */
KELP_API uint32_t tbl_ospfv2_external_record_add_ref_unsafe(kelp_handle *handle,
                                                            uint32_t space_id,
                                                            tbl_ospfv2_external_record *record,
                                                            uint32_t *err);

/* Makes an object that stands for a primary key of tbl_ospfv2_external: a ospfv2_external, of
 * which only the key is to be filled.
 * Errors: those of ospfv2_external_create; null then
 * Ownership: the caller destroys the object by tbl_ospfv2_external_pkey_destroy
 * Lock: none is taken; the caller holds the database's lock
 * Family: record (src/tables/record.hpp) */
KELP_API ospfv2_external *tbl_ospfv2_external_pkey_create(kelp_handle *handle, uint32_t space_id);

/* The same operation as tbl_ospfv2_external_pkey_create; neither locks. */
KELP_API ospfv2_external *tbl_ospfv2_external_pkey_create_unsafe(kelp_handle *handle,
    uint32_t space_id);

/* Destroys a primary key object, as ospfv2_external_destroy does.
 * Errors: none
 * Ownership: the object is gone
 * Lock: none is taken; the caller holds the database's lock
 * Family: record (src/tables/record.hpp) */
KELP_API void tbl_ospfv2_external_pkey_destroy(kelp_handle *handle, uint32_t space_id,
                                               ospfv2_external *pkey);

/* The same operation as tbl_ospfv2_external_pkey_destroy; neither locks. */
KELP_API void tbl_ospfv2_external_pkey_destroy_unsafe(kelp_handle *handle, uint32_t space_id,
                                                      ospfv2_external *pkey);

/* The order of tbl_ospfv2_external, by the avl_node of two records: 0 when a sorts before b, 1
 * when they are equal, 2 when a sorts after b. Records are ordered by tenant, key and source,
 * ascending; a null node sorts first.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API uint32_t tbl_ospfv2_external_ospfv2_external_mt_id_avl_compare(const e_avl_node *a,
    const e_avl_node *b);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_search(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t *err);

/* The same operation as tbl_ospfv2_external_ospfv2_external_mt_id_search; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_search_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_search_w_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t src, uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_search_not_pending_destroy(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t src, uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_search_nearest(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_search_sub_first(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_search_internal(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t src, uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_next_by_key(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_next_by_key_not_pending_destroy(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t src, uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_next_by_key_w_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t src, uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_prev_by_key(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_prev_by_key_not_pending_destroy(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t src, uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, cr_err included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_search_cr(
    kelp_handle *handle, tbl_ospfv2_external_table *table, const void *key, uint32_t src,
    uint32_t get_flags);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_search(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, const void *key, uint32_t *err);

/* The same operation as tbl_ospfv2_external_search; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_search_unsafe(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, const void *key, uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_search_w_src(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, const void *key, uint32_t src,
    uint32_t *err);

/* The same operation as tbl_ospfv2_external_search_w_src; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_search_w_src_unsafe(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, const void *key, uint32_t src,
    uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_get_next_by_key(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, const void *key, uint32_t *err);

/* The same operation as tbl_ospfv2_external_get_next_by_key; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_get_next_by_key_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_get_next_by_key_w_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t src, uint32_t *err);

/* Gives null: records of tbl_ospfv2_external are not found by key. Walk the table instead. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_get_prev_by_key(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, const void *key, uint32_t *err);

/* The same operation as tbl_ospfv2_external_get_prev_by_key; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_get_prev_by_key_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, const void *key,
    uint32_t *err);

/* Gives null: a primary key object is not printed as such; ospfv2_external_print prints it. No
 * argument is looked at, the error word included.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: order (src/tables/order.hpp) */
KELP_API const char *tbl_ospfv2_external_pkey_print(kelp_handle *handle, uint32_t space_id,
                                                    const ospfv2_external *pkey, char *buffer,
                                                    uint32_t size, uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_print; neither locks. */
KELP_API const char *tbl_ospfv2_external_pkey_print_unsafe(kelp_handle *handle, uint32_t space_id,
                                                           const ospfv2_external *pkey,
                                                           char *buffer, uint32_t size,
                                                           uint32_t *err);

/* The step behind the others: the nearest record of the caller's tenant. filter_src non-zero
 * takes only the source src, src 0 refuses shadow records, skip_pending non-zero passes over
 * records that wait for their destruction, same_key non-zero ends at the first other key.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_next_internal(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t src, uint32_t filter_src, uint32_t skip_pending,
    uint32_t same_key, uint32_t *err);

/* The step behind the others: the nearest record of the caller's tenant. filter_src non-zero
 * takes only the source src, src 0 refuses shadow records, skip_pending non-zero passes over
 * records that wait for their destruction, same_key non-zero ends at the first other key.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_prev_internal(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t src, uint32_t filter_src, uint32_t skip_pending,
    uint32_t same_key, uint32_t *err);

/* Gives the next record of the caller's tenant with the default source, null at the end.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_next(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* Gives the previous record of the caller's tenant with the default source, null at the end.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_prev(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* Gives the next record of the caller's tenant with the source src, null at the end.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_next_by_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t src, uint32_t *err);

/* Gives the previous record of the caller's tenant with the source src, null at the end.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_prev_by_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t src, uint32_t *err);

/* Gives the next record of the caller's tenant with the source src that does not wait for its
 * destruction, null at the end.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_next_not_pending_destroy(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t src, uint32_t *err);

/* Gives the previous record of the caller's tenant with the source src that does not wait for its
 * destruction, null at the end.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_prev_not_pending_destroy(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t src, uint32_t *err);

/* Gives the next record of the caller's tenant whatever its source, shadow records included; null
 * at the end.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_next_ignore_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* Gives the previous record of the caller's tenant whatever its source, shadow records included;
 * null at the end.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_prev_ignore_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* Gives the first record of the caller's tenant with the default source, null when it has none.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_first(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t *err);

/* Gives the last record of the caller's tenant with the default source, null when it has none.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_last(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t *err);

/* Gives the first record of the caller's tenant with the source src, null when it has none.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_first_by_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t src,
    uint32_t *err);

/* Gives the last record of the caller's tenant with the source src, null when it has none.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_last_by_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t src,
    uint32_t *err);

/* Gives the first record of the caller's tenant with the source src that does not wait for its
 * destruction, null when it has none. src 0 takes any source but shadow records.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_first_not_pending_destroy(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t src,
    uint32_t *err);

/* Gives the last record of the caller's tenant with the source src that does not wait for its
 * destruction, null when it has none. src 0 takes only records whose source is 0.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_last_not_pending_destroy(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t src,
    uint32_t *err);

/* Gives the first record of the caller's tenant whatever its source, shadow records included;
 * null when it has none.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_first_ignore_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t *err);

/* Gives the record directly behind in the tree when it has the same key, else null. Neither
 * tenant nor source is looked at.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_sub_next(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* Gives the record directly before in the tree when it has the same key, else null. Neither
 * tenant nor source is looked at.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_sub_prev(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* Gives the shadow record of the record's key: the record itself when it is one, null when there
 * is none.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_shadow(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* Calls callback with each record of the table in order and with argument: of all tenants and
 * sources, waiting for destruction or not. A non-zero result of the callback ends the walk.
 * Nothing enters the replication cache.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API void tbl_ospfv2_external_ospfv2_external_mt_id_walk(tbl_ospfv2_external_table *table,
    ospf_harbor_oper_record_callback callback, void *argument, uint32_t *err);

/* What the tree's walk calls with each node: calls the callback in context with the node's record
 * and gives its result.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API uint32_t tbl_ospfv2_external_ospfv2_external_mt_id_avl_internal_walk(e_avl_node *node,
    void *context);

/* Does nothing: tbl_ospfv2_external has no unordered form.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API void tbl_ospfv2_external_ospfv2_external_mt_id_unordered_traversal(
    tbl_ospfv2_external_table *table, ospf_harbor_oper_record_callback callback, void *argument,
    uint32_t *err);

/* Gives the first (get_op 0), last (1), previous (2) or next (3) record of the caller's tenant
 * with the source src, 0 for the default, with the handle's cr_space_id and cr_err. Bit 0 of
 * get_flags takes any source, bit 1 takes records that wait for their destruction too. record is
 * the reference of 2 and 3.
 * Errors: KELP_ERR_INVALID (22) as the handle's last error for another get_op, with cr_err left
 *   alone
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_ospfv2_external_mt_id_get_cr(
    kelp_handle *handle, tbl_ospfv2_external_table *table, uint32_t get_op,
    tbl_ospfv2_external_record *record, uint8_t src, uint32_t get_flags);

/* Gives the next record of the caller's tenant with the default source, null at the end.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_next(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, tbl_ospfv2_external_record *record,
    uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_get_next; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_next_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* Gives the next record of the caller's tenant with the source src, null at the end.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_next_by_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t src, uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_get_next_by_src; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_next_by_src_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t src, uint32_t *err);

/* Gives the next record of the caller's tenant whatever its source, shadow records included; null
 * at the end.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_next_ignore_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_get_next_ignore_src; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_next_ignore_src_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* Gives the previous record of the caller's tenant with the default source, null at the end.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_prev(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, tbl_ospfv2_external_record *record,
    uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_get_prev; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_prev_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* Gives the previous record of the caller's tenant with the source src, null at the end.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_prev_by_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t src, uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_get_prev_by_src; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_prev_by_src_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t src, uint32_t *err);

/* Gives the previous record of the caller's tenant whatever its source, shadow records included;
 * null at the end.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_prev_ignore_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_get_prev_ignore_src; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_prev_ignore_src_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* Gives the first record of the caller's tenant with the default source, null when it has none.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_first(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_get_first; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_first_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t *err);

/* Gives the first record of the caller's tenant with the source src, null when it has none.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_first_by_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t src,
    uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_get_first_by_src; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_first_by_src_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t src,
    uint32_t *err);

/* Gives the first record of the caller's tenant whatever its source, shadow records included;
 * null when it has none.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_first_ignore_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_get_first_ignore_src; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_first_ignore_src_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t *err);

/* Gives the last record of the caller's tenant with the default source, null when it has none.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_last(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_get_last; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_last_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t *err);

/* Gives the last record of the caller's tenant with the source src, null when it has none.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_last_by_src(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t src,
    uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_get_last_by_src; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_last_by_src_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table, uint32_t src,
    uint32_t *err);

/* Gives the record directly behind in the tree when it has the same key, else null. Neither
 * tenant nor source is looked at.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_sub_next(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, tbl_ospfv2_external_record *record,
    uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_get_sub_next; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_sub_next_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* Gives the record directly before in the tree when it has the same key, else null. Neither
 * tenant nor source is looked at.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_sub_prev(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, tbl_ospfv2_external_record *record,
    uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_get_sub_prev; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_sub_prev_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* Gives the shadow record of the record's key: the record itself when it is one, null when there
 * is none.
 * Errors: none of its own; what the replication cache reports stays in the error word, and the
 *   record is given all the same
 * Ownership: no reference is taken
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_shadow(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, tbl_ospfv2_external_record *record,
    uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_get_shadow; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_pkey_get_shadow_unsafe(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_table *table,
    tbl_ospfv2_external_record *record, uint32_t *err);

/* Walks as the walk of the table's one key does, which has index 0, and gives what the walk ended
 * with: the first non-zero result of the callback, or 0. Any other key_index, and a non-zero
 * cr_err, gives 0 without a walk.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: traversal (src/tables/traversal.hpp) */
KELP_API uint32_t tbl_ospfv2_external_record_walk_cr(kelp_handle *handle,
                                                     tbl_ospfv2_external_table *table,
                                                     uint32_t key_index,
                                                     ospf_harbor_oper_record_callback callback,
                                                     void *argument);

/* Enters a record in the table, in the order of tenant, key and source. The record holds its
 * object before.
 * Errors: KELP_ERR_EXISTS (17) for a null record, also over another code, and when a record of
 *   the same tenant, key and source is in the table; the record is unchanged then
 * Ownership: no reference is taken: the caller's reference keeps the record alive
 * Lock: none is taken; the caller holds the database's lock
 * Family: insertion (src/tables/insertion.hpp) */
KELP_API void tbl_ospfv2_external_insert(kelp_handle *handle, uint32_t space_id,
                                         tbl_ospfv2_external_table *table,
                                         tbl_ospfv2_external_record *record, uint32_t *err);

/* The same operation as tbl_ospfv2_external_insert; neither locks. */
KELP_API void tbl_ospfv2_external_insert_unsafe(kelp_handle *handle, uint32_t space_id,
                                                tbl_ospfv2_external_table *table,
                                                tbl_ospfv2_external_record *record, uint32_t *err);

/* As tbl_ospfv2_external_insert for a record that carries a key and no data, which it marks.
 * Errors: KELP_ERR_EXISTS (17) for a null record, also over another code, and when a record of
 *   the same tenant, key and source is in the table; the record is unchanged then
 * Ownership: no reference is taken: the caller's reference keeps the record alive
 * Lock: none is taken; the caller holds the database's lock
 * Family: insertion (src/tables/insertion.hpp) */
KELP_API void tbl_ospfv2_external_pkey_insert(kelp_handle *handle, uint32_t space_id,
                                              tbl_ospfv2_external_table *table,
                                              tbl_ospfv2_external_record *record, uint32_t *err);

/* The same operation as tbl_ospfv2_external_pkey_insert; neither locks. */
KELP_API void tbl_ospfv2_external_pkey_insert_unsafe(kelp_handle *handle, uint32_t space_id,
                                                     tbl_ospfv2_external_table *table,
                                                     tbl_ospfv2_external_record *record,
                                                     uint32_t *err);

/* As tbl_ospfv2_external_insert, or with pkey non-zero as tbl_ospfv2_external_pkey_insert, with
 * the handle's cr_space_id and cr_err; gives cr_err.
 * Errors: KELP_ERR_EXISTS (17) for a null record, also over another code, and when a record of
 *   the same tenant, key and source is in the table; the record is unchanged then
 * Ownership: no reference is taken: the caller's reference keeps the record alive
 * Lock: none is taken; the caller holds the database's lock
 * Family: insertion (src/tables/insertion.hpp) */
KELP_API uint32_t tbl_ospfv2_external_insert_cr(kelp_handle *handle,
                                                tbl_ospfv2_external_table *table,
                                                tbl_ospfv2_external_record *record, uint32_t pkey);

/* Takes a record out of the table. The record stays, with its references.
 * Errors: KELP_ERR_INVALID (22) when the table is marked for replication and the caller is not
 *   the collector; KELP_ERR_NOT_FOUND (2) when the record is not in the table: it has then lost
 *   its table and its key mark, and no count changed
 * Lock: none is taken; the caller holds the database's lock
 * Family: insertion (src/tables/insertion.hpp) */
KELP_API void tbl_ospfv2_external_delete(kelp_handle *handle, uint32_t space_id,
                                         tbl_ospfv2_external_table *table,
                                         tbl_ospfv2_external_record *record, uint32_t *err);

/* The same operation as tbl_ospfv2_external_delete; neither locks. */
KELP_API void tbl_ospfv2_external_delete_unsafe(kelp_handle *handle, uint32_t space_id,
                                                tbl_ospfv2_external_table *table,
                                                tbl_ospfv2_external_record *record, uint32_t *err);

/* As tbl_ospfv2_external_delete with the handle's cr_space_id and cr_err; destroy non-zero then
 * gives up one reference as well. Gives cr_err.
 * Errors: KELP_ERR_INVALID (22) when the table is marked for replication and the caller is not
 *   the collector; KELP_ERR_NOT_FOUND (2) when the record is not in the table: it has then lost
 *   its table and its key mark, and no count changed
 * Ownership: with destroy the caller's reference is gone after success
 * Lock: none is taken; the caller holds the database's lock
 * Family: insertion (src/tables/insertion.hpp) */
KELP_API uint32_t tbl_ospfv2_external_delete_cr(kelp_handle *handle,
                                                tbl_ospfv2_external_table *table,
                                                tbl_ospfv2_external_record *record,
                                                uint32_t destroy);

/* Gives up one reference. With the last one the record leaves its table, its objects are
 * destroyed and it is freed; the table's null record is passed over. A table with cursors does
 * not let it go outside the collector: it is freed all the same, and its node stays in the tree,
 * which must not be walked then. Such a record ends by
 * tbl_ospfv2_external_request_record_destroy.
 * Errors: KELP_ERR_NOT_FOUND (2) for a null record; what the removal of its handle mapping
 *   reports: the record then stays allocated, with its objects gone. Ends the process when the
 *   record's type record is broken
 * Ownership: the caller's reference is gone; with the last one record and objects are
 * Lock: none is taken; the caller holds the database's lock
 * Family: insertion (src/tables/insertion.hpp) */
KELP_API void tbl_ospfv2_external_destroy_record(kelp_handle *handle, uint32_t space_id,
                                                 tbl_ospfv2_external_record *record, uint32_t *err);

/* The same operation as tbl_ospfv2_external_destroy_record; neither locks. */
KELP_API void tbl_ospfv2_external_destroy_record_unsafe(kelp_handle *handle, uint32_t space_id,
                                                        tbl_ospfv2_external_record *record,
                                                        uint32_t *err);

/* As tbl_ospfv2_external_destroy_record with the handle's cr_space_id and cr_err.
 * Errors: as tbl_ospfv2_external_destroy_record
 * Ownership: as tbl_ospfv2_external_destroy_record
 * Lock: none is taken; the caller holds the database's lock
 * Family: insertion (src/tables/insertion.hpp) */
KELP_API void tbl_ospfv2_external_record_destroy_cr(kelp_handle *handle,
                                                    tbl_ospfv2_external_record *record);

/* Marks a record of a table with cursors for destruction; it stays in the table until the
 * collector ends it.
 * Errors: KELP_ERR_INVALID (22) for a null record and for a table without cursors; those of
 *   kelpdb_request_record_destroy
 * Ownership: the caller's reference goes to the collector
 * Lock: none is taken; the caller holds the database's lock
 * Family: insertion (src/tables/insertion.hpp) */
KELP_API void tbl_ospfv2_external_request_record_destroy(kelp_handle *handle, uint32_t space_id,
                                                         tbl_ospfv2_external_table *table,
                                                         tbl_ospfv2_external_record *record,
                                                         uint32_t *err);

/* The same operation as tbl_ospfv2_external_request_record_destroy; neither locks. */
KELP_API void tbl_ospfv2_external_request_record_destroy_unsafe(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, tbl_ospfv2_external_record *record,
    uint32_t *err);

/* As tbl_ospfv2_external_request_record_destroy with the handle's cr_space_id and cr_err; gives
 * cr_err.
 * Errors: as tbl_ospfv2_external_request_record_destroy
 * Ownership: the caller's reference goes to the collector
 * Lock: none is taken; the caller holds the database's lock
 * Family: insertion (src/tables/insertion.hpp) */
KELP_API uint32_t tbl_ospfv2_external_request_record_destroy_cr(kelp_handle *handle,
    tbl_ospfv2_external_table *table, tbl_ospfv2_external_record *record);

/* Tells the application's create handler of a record, and gives what it returns.
 * Errors: none of its own: an error word that is set drops the event, a missing handler sets it
 *   to 0, and what a handler leaves in it stays
 * Lock: none is taken; the caller holds the database's lock
 * Family: handlers (src/tables/handlers.hpp) */
KELP_API uint64_t tbl_ospfv2_external_table_record_create_cb(kelp_handle *handle,
    uint32_t space_id, void *context, tbl_ospfv2_external_record *record, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_record_create_cb; neither locks. */
KELP_API uint64_t tbl_ospfv2_external_table_record_create_cb_unsafe(kelp_handle *handle,
    uint32_t space_id, void *context, tbl_ospfv2_external_record *record, uint32_t *err);

/* Tells the application's modify handler of a record, and gives what it returns.
 * Errors: none of its own: an error word that is set drops the event, a missing handler sets it
 *   to 0, and what a handler leaves in it stays
 * Lock: none is taken; the caller holds the database's lock
 * Family: handlers (src/tables/handlers.hpp) */
KELP_API uint64_t tbl_ospfv2_external_table_record_modify_cb(kelp_handle *handle,
    uint32_t space_id, void *context, tbl_ospfv2_external_record *record, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_record_modify_cb; neither locks. */
KELP_API uint64_t tbl_ospfv2_external_table_record_modify_cb_unsafe(kelp_handle *handle,
    uint32_t space_id, void *context, tbl_ospfv2_external_record *record, uint32_t *err);

/* Tells the application's delete handler of a record, and gives what it returns.
 * Errors: none of its own: an error word that is set drops the event, a missing handler sets it
 *   to 0, and what a handler leaves in it stays
 * Lock: none is taken; the caller holds the database's lock
 * Family: handlers (src/tables/handlers.hpp) */
KELP_API uint64_t tbl_ospfv2_external_table_record_delete_cb(kelp_handle *handle,
    uint32_t space_id, void *context, tbl_ospfv2_external_record *record, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_record_delete_cb; neither locks. */
KELP_API uint64_t tbl_ospfv2_external_table_record_delete_cb_unsafe(kelp_handle *handle,
    uint32_t space_id, void *context, tbl_ospfv2_external_record *record, uint32_t *err);

/* Tells the application's create_dm handler of a record, or else its create handler with a null
 * context, and gives what it returns.
 * Errors: none of its own: an error word that is set drops the event, a missing handler sets it
 *   to 0, and what a handler leaves in it stays
 * Lock: none is taken; the caller holds the database's lock
 * Family: handlers (src/tables/handlers.hpp) */
KELP_API uint64_t tbl_ospfv2_external_table_record_create_dm_cb(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_record *record, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_record_create_dm_cb; neither locks. */
KELP_API uint64_t tbl_ospfv2_external_table_record_create_dm_cb_unsafe(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_record *record, uint32_t *err);

/* Tells the application's delete_dm handler of a record, or else its delete handler with a null
 * context, and gives what it returns.
 * Errors: none of its own: an error word that is set drops the event, a missing handler sets it
 *   to 0, and what a handler leaves in it stays
 * Lock: none is taken; the caller holds the database's lock
 * Family: handlers (src/tables/handlers.hpp) */
KELP_API uint64_t tbl_ospfv2_external_table_record_delete_dm_cb(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_record *record, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_record_delete_dm_cb; neither locks. */
KELP_API uint64_t tbl_ospfv2_external_table_record_delete_dm_cb_unsafe(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_record *record, uint32_t *err);

/* Hands its arguments to the application's grouping handler, and gives what it returns.
 * Errors: none of its own: an error word that is set drops the event, a missing handler sets it
 *   to 0, and what a handler leaves in it stays
 * Lock: none is taken; the caller holds the database's lock
 * Family: handlers (src/tables/handlers.hpp) */
KELP_API uint64_t tbl_ospfv2_external_table_record_grouping_cb(kelp_handle *handle,
    uint32_t space_id, void *arg_a, uint32_t *err, void *arg_b, void *arg_c);

/* The same operation as tbl_ospfv2_external_table_record_grouping_cb; neither locks. */
KELP_API uint64_t tbl_ospfv2_external_table_record_grouping_cb_unsafe(kelp_handle *handle,
    uint32_t space_id, void *arg_a, uint32_t *err, void *arg_b, void *arg_c);

/* Hands its arguments to the application's free handler, and gives what it returns.
 * Errors: none of its own: an error word that is set drops the event, a missing handler sets it
 *   to 0, and what a handler leaves in it stays
 * Lock: none is taken; the caller holds the database's lock
 * Family: handlers (src/tables/handlers.hpp) */
KELP_API uint64_t tbl_ospfv2_external_table_record_free_cb(kelp_handle *handle, uint32_t space_id,
                                                           void *arg_a, uint32_t arg_u32,
                                                           uint32_t *err, void *arg_b);

/* The same operation as tbl_ospfv2_external_table_record_free_cb; neither locks. */
KELP_API uint64_t tbl_ospfv2_external_table_record_free_cb_unsafe(kelp_handle *handle,
    uint32_t space_id, void *arg_a, uint32_t arg_u32, uint32_t *err, void *arg_b);

/* Gives the record's ospfv2_external, null when it holds none. The record must not be null.
 * Errors: none
 * Ownership: the object stays the record's
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_fields (src/tables/record_fields.hpp) */
KELP_API ospfv2_external *tbl_ospfv2_external_ospfv2_external_get_field(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_record *record);

/* Takes the ospfv2_external out of the record and gives it. Its mark as embedded stays. The
 * record must not be null.
 * Errors: none
 * Ownership: the object is the caller's
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_fields (src/tables/record_fields.hpp) */
KELP_API ospfv2_external *tbl_ospfv2_external_ospfv2_external_get_field_detach(
    kelp_handle *handle, uint32_t space_id, tbl_ospfv2_external_record *record);

/* Places a ospfv2_external in the record and marks it as embedded. An object that the record held
 * is not destroyed.
 * Errors: no error word; an object that lives in a record or in another object, or a null one, is
 *   refused: the validator's code becomes the handle's last error, and the record stays as it was
 * Ownership: the object is the record's after success; the table's null record takes none
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_fields (src/tables/record_fields.hpp) */
KELP_API void tbl_ospfv2_external_ospfv2_external_set_field(kelp_handle *handle,
                                                            uint32_t space_id,
                                                            tbl_ospfv2_external_record *record,
                                                            ospfv2_external *object);

/* Destroys the ospfv2_external that the record holds, places the new one and marks it as
 * embedded. A refused object leaves the old one in place.
 * Errors: no error word; an object that lives in a record or in another object, or a null one, is
 *   refused: the validator's code becomes the handle's last error, and the record stays as it was
 * Ownership: the object is the record's after success; the table's null record takes none
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_fields (src/tables/record_fields.hpp) */
KELP_API void tbl_ospfv2_external_ospfv2_external_free_and_set_field(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_record *record, ospfv2_external *object);

/* Gives how many records the table holds: of the calling thread's tenant, or all of them when it
 * has none. 0 for a null table.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_fields (src/tables/record_fields.hpp) */
KELP_API uint32_t tbl_ospfv2_external_table_get_count(kelp_handle *handle, uint32_t space_id,
                                                      tbl_ospfv2_external_table *table);

/* The same operation as tbl_ospfv2_external_table_get_count; neither locks. */
KELP_API uint32_t tbl_ospfv2_external_table_get_count_unsafe(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table);

/* Gives how many records of the source src the calling thread's tenant has in the table. Without
 * a tenant only shadow records (src 255) are counted, and any other source gives 0. 0 for a null
 * table.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_fields (src/tables/record_fields.hpp) */
KELP_API uint32_t tbl_ospfv2_external_table_get_count_by_src(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, uint8_t src);

/* The same operation as tbl_ospfv2_external_table_get_count_by_src; neither locks. */
KELP_API uint32_t tbl_ospfv2_external_table_get_count_by_src_unsafe(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_table *table, uint8_t src);

/* As tbl_ospfv2_external_table_get_count with the handle's cr_space_id.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_fields (src/tables/record_fields.hpp) */
KELP_API uint32_t tbl_ospfv2_external_table_get_count_cr(kelp_handle *handle,
                                                         tbl_ospfv2_external_table *table);

/* Writes the record's text form into buffer, at most length bytes and none for a negative length,
 * and gives the bytes written. The closing brace stands behind a gap that keeps what the buffer
 * held: fill it with blanks first.
 * Errors: KELP_ERR_NO_ROOM (90) when less room is left than the object's image takes. A text is
 *   longer than that, and is cut without a failure: a result equal to length says that some may
 *   be missing, and the call is repeated with more room
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_encodings (src/tables/record_encodings.hpp) */
KELP_API uint32_t tbl_ospfv2_external_table_record_print(kelp_handle *handle, uint32_t space_id,
                                                         char *buffer,
                                                         const tbl_ospfv2_external_record *record,
                                                         int32_t length, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_record_print; neither locks. */
KELP_API uint32_t tbl_ospfv2_external_table_record_print_unsafe(kelp_handle *handle,
    uint32_t space_id, char *buffer, const tbl_ospfv2_external_record *record, int32_t length,
    uint32_t *err);

/* As tbl_ospfv2_external_table_record_print with the handle's cr_space_id and cr_err; 0xFFFFFFFF
 * when cr_err is set before or afterwards.
 * Errors: KELP_ERR_NO_ROOM (90) when less room is left than the object's image takes. A text is
 *   longer than that, and is cut without a failure: a result equal to length says that some may
 *   be missing, and the call is repeated with more room
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_encodings (src/tables/record_encodings.hpp) */
KELP_API uint32_t tbl_ospfv2_external_record_print_cr(kelp_handle *handle,
                                                      const tbl_ospfv2_external_record *record,
                                                      char *buffer, int32_t length);

/* Writes the record as an element named tbl_ospfv2_external into buffer, at most length bytes and
 * none for a negative length, and gives the bytes written.
 * Errors: those of the runtime's writers
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_encodings (src/tables/record_encodings.hpp) */
KELP_API uint32_t tbl_ospfv2_external_table_record_to_xml(kelp_handle *handle, uint32_t space_id,
                                                          char *buffer,
                                                          const tbl_ospfv2_external_record *record,
                                                          int32_t length, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_record_to_xml; neither locks. */
KELP_API uint32_t tbl_ospfv2_external_table_record_to_xml_unsafe(kelp_handle *handle,
    uint32_t space_id, char *buffer, const tbl_ospfv2_external_record *record, int32_t length,
    uint32_t *err);

/* As tbl_ospfv2_external_table_record_to_xml with the handle's cr_space_id and cr_err; 0xFFFFFFFF
 * when cr_err is set afterwards.
 * Errors: those of the runtime's writers, in cr_err
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_encodings (src/tables/record_encodings.hpp) */
KELP_API uint32_t tbl_ospfv2_external_record_toxml_cr(kelp_handle *handle,
                                                      const tbl_ospfv2_external_record *record,
                                                      char *buffer, int32_t length);

/* Makes a record from the elements of a document that are named after its objects. It is not
 * inserted. A missing element leaves its object empty. The error word is not looked at.
 * Errors: KELP_ERR_NO_MEMORY (12) without memory; what reading an element gives, with message
 *   told what was found and expected; null then, and what was made is left behind
 * Ownership: the record is the caller's
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_encodings (src/tables/record_encodings.hpp) */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_table_record_from_xml(
    kelp_handle *handle, uint32_t space_id, kelp_xml_document *document, uint32_t *err,
    char *message, int32_t message_size);

/* The same operation as tbl_ospfv2_external_table_record_from_xml; neither locks. */
KELP_API tbl_ospfv2_external_record *tbl_ospfv2_external_table_record_from_xml_unsafe(
    kelp_handle *handle, uint32_t space_id, kelp_xml_document *document, uint32_t *err,
    char *message, int32_t message_size);

/* Writes the record's image into buffer, which has length bytes, and gives the bytes written.
 * tbl_ospfv2_external_table_record_len gives a length that suffices, but for what is said there.
 * Errors: KELP_ERR_NO_ROOM (90) when buffer is too small; KELP_ERR_NOT_FOUND (2) when the record
 *   lacks an object; those of the objects' images
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_encodings (src/tables/record_encodings.hpp) */
KELP_API uint32_t tbl_ospfv2_external_table_record_marshal(kelp_handle *handle, uint32_t space_id,
                                                           void *buffer,
                                                           const tbl_ospfv2_external_record *record,
                                                           int32_t length, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_record_marshal; neither locks. */
KELP_API uint32_t tbl_ospfv2_external_table_record_marshal_unsafe(kelp_handle *handle,
    uint32_t space_id, void *buffer, const tbl_ospfv2_external_record *record, int32_t length,
    uint32_t *err);

/* As tbl_ospfv2_external_table_record_marshal with the handle's cr_space_id and cr_err;
 * 0xFFFFFFFF when cr_err is set afterwards.
 * Errors: as tbl_ospfv2_external_table_record_marshal, in cr_err
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_encodings (src/tables/record_encodings.hpp) */
KELP_API uint32_t tbl_ospfv2_external_record_marshal_cr(kelp_handle *handle,
                                                        const tbl_ospfv2_external_record *record,
                                                        void *buffer, int32_t length);

/* Reads an image of at most length bytes into *record, or with reuse 0 into a new record that
 * *record then holds, also after a failure. Gives the bytes read. Neither the LUID nor the header
 * is checked: check what comes from outside first.
 * Errors: KELP_ERR_NOT_FOUND (2) without a record or an object to fill, KELP_ERR_NO_MEMORY (12)
 *   without memory; those of the objects' images
 * Ownership: a new record is the caller's
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_encodings (src/tables/record_encodings.hpp) */
KELP_API uint32_t tbl_ospfv2_external_table_record_unmarshal(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_record **record, const void *buffer, int32_t length,
    uint32_t reuse, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_record_unmarshal; neither locks. */
KELP_API uint32_t tbl_ospfv2_external_table_record_unmarshal_unsafe(kelp_handle *handle,
    uint32_t space_id, tbl_ospfv2_external_record **record, const void *buffer, int32_t length,
    uint32_t reuse, uint32_t *err);

/* Gives a length that the record's image does not exceed, unless the handle tracks state and an
 * object does not, which takes a byte more for each array element, or an object carries attached
 * data, which takes 9 bytes more.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_encodings (src/tables/record_encodings.hpp) */
KELP_API uint32_t tbl_ospfv2_external_table_record_len(kelp_handle *handle, uint32_t space_id,
                                                       const tbl_ospfv2_external_record *record);

/* The same operation as tbl_ospfv2_external_table_record_len; neither locks. */
KELP_API uint32_t tbl_ospfv2_external_table_record_len_unsafe(kelp_handle *handle,
    uint32_t space_id, const tbl_ospfv2_external_record *record);

/* As tbl_ospfv2_external_table_record_len with the handle's cr_space_id; 0 when cr_err is set.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_encodings (src/tables/record_encodings.hpp) */
KELP_API uint32_t tbl_ospfv2_external_record_len_cr(kelp_handle *handle,
                                                    const tbl_ospfv2_external_record *record);

/* Writes the image of the record's key alone, without header and LUID, and gives the bytes
 * written. The record must hold the object with the key.
 * Errors: KELP_ERR_NO_ROOM (90) when the key does not fit in length bytes; those of the key's
 *   image
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_encodings (src/tables/record_encodings.hpp) */
KELP_API uint32_t tbl_ospfv2_external_table_pkey_marshal(kelp_handle *handle, uint32_t space_id,
                                                         void *buffer,
                                                         const tbl_ospfv2_external_record *record,
                                                         int32_t length, uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_pkey_marshal; neither locks. */
KELP_API uint32_t tbl_ospfv2_external_table_pkey_marshal_unsafe(kelp_handle *handle,
    uint32_t space_id, void *buffer, const tbl_ospfv2_external_record *record, int32_t length,
    uint32_t *err);

/* Reads a key's image of at most length bytes into a new pkey object, which *pkey then holds, and
 * gives the bytes read.
 * Errors: KELP_ERR_BAD_ADDRESS (14) for a null pkey, KELP_ERR_NO_MEMORY (12) without memory;
 *   those of the key's image
 * Ownership: the pkey object is the caller's, who gives it back with
 *   tbl_ospfv2_external_pkey_destroy
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_encodings (src/tables/record_encodings.hpp) */
KELP_API uint32_t tbl_ospfv2_external_table_pkey_unmarshal(kelp_handle *handle, uint32_t space_id,
                                                           ospfv2_external **pkey,
                                                           const void *buffer, int32_t length,
                                                           uint32_t *err);

/* The same operation as tbl_ospfv2_external_table_pkey_unmarshal; neither locks. */
KELP_API uint32_t tbl_ospfv2_external_table_pkey_unmarshal_unsafe(kelp_handle *handle,
    uint32_t space_id, ospfv2_external **pkey, const void *buffer, int32_t length, uint32_t *err);

/* Gives the length of the key's image. The record must hold the object with the key.
 * Errors: none
 * Lock: none is taken; the caller holds the database's lock
 * Family: record_encodings (src/tables/record_encodings.hpp) */
KELP_API uint32_t tbl_ospfv2_external_table_pkey_len(kelp_handle *handle, uint32_t space_id,
                                                     const tbl_ospfv2_external_record *record);

/* The same operation as tbl_ospfv2_external_table_pkey_len; neither locks. */
KELP_API uint32_t tbl_ospfv2_external_table_pkey_len_unsafe(kelp_handle *handle,
                                                            uint32_t space_id,
                                                            const tbl_ospfv2_external_record *record);

KELP_EXTERN_C_END

#endif
