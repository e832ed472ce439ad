/* The embedding API: what a program calls to run modules of types: databases, handles, locks,
 * tenants, the collector, the change feed, and aids for tests.
 *
 * A function that can fail takes a kelp_error last, which may be null. It gives 0, or the code that
 * error->code holds then; error->text says what failed, where, what was found and what was
 * expected. Functions that make something give null on failure.
 *
 * A database and its handles may be used by several threads, each with a handle of its own, under
 * the locks below. One handle is used by one thread at a time.
 *
 * After fork the child has a copy of every private database, with its handles and cursors, and may
 * use all of it: a fork waits until nobody is inside the runtime. Only the thread that forked is
 * there: read locks of other threads are given up in the child, and a database that another thread
 * held the write lock of, and may have changed half, gives no lock any more (1). New OIDs of the
 * child differ from those of its parent. A store that the parent has open gives the child no lock (1,
 * with a text that says so); the child opens it itself. */
#ifndef KELP_EMBED_H
#define KELP_EMBED_H

#include <kelp/database.h>
#include <kelp/handle.h>
#include <kelp/primitives.h>
#include <kelp/table.h>

KELP_EXTERN_C_BEGIN

typedef struct kelp_error {
  int32_t code; /* 0 when there is no failure, else errno */
  char text[512];
} kelp_error;

/* --- databases --- */

typedef struct kelp_database_options {
  size_t struct_size;     /* set by kelp_database_options_init */
  uint32_t marked_shared; /* non-zero: follow the rules of a shared database */
  uint32_t shared_tinfo;  /* non-zero: objects point at the database's own type records */
  size_t memory_limit;    /* bytes that objects may take, 0 for no limit */
  uint32_t replication_cache_entries; /* records in the replication cache, 0 turns it off */
} kelp_database_options;

/* Fills in the defaults: not shared, static type records, no limit, 1024 cache entries. */
KELP_API void kelp_database_options_init(kelp_database_options *options);

/* Opens a new, empty database in the memory of this process. name (not empty, at most 63 bytes) is
 * for messages and need not be unique. options may be null. marked_shared makes the database ask
 * for locks and collector as one that several processes share does; its memory stays private. The
 * caller closes it. 22 for a bad name or options of another size, 12 without memory. */
KELP_API kelp_database *kelp_database_open_private(const char *name,
                                                   const kelp_database_options *options,
                                                   kelp_error *error);

/* What a store's commits survive: the end of any process, or also the machine's stopping at any
 * moment. */
enum kelp_durability { KELP_DURABILITY_PROCESS = 0, KELP_DURABILITY_POWER = 1 };

typedef struct kelp_store_options {
  size_t struct_size;                 /* set by kelp_store_options_init */
  uint32_t read_only;                 /* non-zero: read locks alone can be had */
  uint32_t create;                    /* non-zero: a file that is missing is made */
  uint64_t reserved_bytes;            /* of addresses, which a new file can grow to */
  uint32_t file_mode;                 /* of files that are made */
  uint32_t wait_ms;                   /* how long to wait for a lock, UINT32_MAX without limit */
  uint32_t replication_cache_entries; /* as kelp_database_options has it */
  uint32_t durability; /* of a new file: enum kelp_durability; a file keeps what it was made with */
  uint64_t image_bytes; /* with KELP_DURABILITY_POWER: bytes of log, at least, between two images */
} kelp_store_options;

/* Fills in the defaults: reading and writing, made when missing, 64 GiB, 0600, 10 s, 1024,
 * KELP_DURABILITY_PROCESS, 16 MiB. */
KELP_API void kelp_store_options_init(kelp_store_options *options);

/* Opens a store: a database in a file, which processes share. Beside the file lie path-log, what a
 * transaction needs to be undone, and path-lock, the locks and who has it open; the three belong
 * together. options may be null. The database follows the rules of a shared one, and:
 *
 * - The write lock begins a transaction. kelp_unlock commits it, kelp_rollback undoes it, and so
 * does whoever comes next after a process that died with it. What was committed survives the end of
 *   every process. With KELP_DURABILITY_POWER it is on the disk when kelp_unlock gives 0, and is
 * there after a crash of the machine or a loss of power; path-redo and path-image belong to such a
 * store. Without, a store that was in use is looked through before it is opened again.
 * - Objects are made under the write lock. Under the read lock obj_alloc gives memory of the
 * process, for keys and copies; without a lock it gives none.
 * - What lies in the store is changed under the write lock, or the process ends.
 * - The file is mapped at the same addresses in every process. An object's address holds in all, as
 *   long as the reader has the lock under which it was found.
 * - Programs of several editions of a schema may use it at once: a newer one adjusts an older one's
 *   objects, an older one reads newer ones as far as it knows. What they cannot share is refused with
 *   22 where it is met: types whose objects are laid out otherwise, and tables of them, are those of
 *   the edition that came first; objects that track state are those of one edition. A transaction is
 *   refused with 43 that would move a newer object as a whole, or end one whose later fields own
 *   something.
 * - The feeds of tables that are marked for replication, their cursors and the records that wait
 * for the collector are shared: a cursor hears of what every process commits, and goes with the
 *   process that opened it.
 *
 * The caller closes it. 16 when this process has it open already, 17 when something lies at its
 * addresses, 22 for a file that is no store of this version or was cut, 2 when it is missing and
 * not to be made, 5 when it was damaged, 28 without room, 110 when another process opens or closes
 * it for longer than wait_ms, 13 and others as the system gives them. A file that is refused is not
 * changed.
 */
KELP_API kelp_database *kelp_database_open_file(const char *path, const kelp_store_options *options,
                                                kelp_error *error);

/* Closes a database and frees all that is in it; a store stays in its file, which is synced when no
 * other process has it open. 16 while handles are open: nothing is closed then, and the text names
 * how many. On success the text is empty, or says how many allocations of how many bytes were still
 * in use, and names the tables that are left with the number of their records; what stands under a
 * key of the store (the roots of table ids) is the store's own and not counted. A null database is
 * no error. */
KELP_API int32_t kelp_database_close(kelp_database *database, kelp_error *error);

/* The database's name, of a store its path; lives as long as the database. */
KELP_API const char *kelp_database_name(const kelp_database *database);

/* Makes a database (or none, for null) the calling thread's current one: kelplib_db_is_shared. */
KELP_API void kelp_database_make_current(kelp_database *database);

/* The calling thread's current database, null when there is none or it was closed since. What works
 * with a database of its own puts the caller's back with it. */
KELP_API kelp_database *kelp_database_current(void);

/* What the objects of a database take, and beside them what the runtime keeps of them. */
typedef struct kelp_memory_statistics {
  uint64_t live_allocations;
  uint64_t live_bytes; /* as they were asked for */
  uint64_t used_bytes; /* as they were given, rounded up to their size class */
  uint64_t peak_used_bytes;
  uint64_t reserved_bytes; /* taken from the system */
  uint64_t limit_bytes;    /* 0 for none */
  uint64_t total_allocations;
  uint64_t failed_allocations;
  /* Of the runtime's own, as they were given: type records, the table of contents, OIDs, feeds. All
   * above is of objects alone. */
  uint64_t own_bytes;
} kelp_memory_statistics;

KELP_API void kelp_database_memory(const kelp_database *database,
                                   kelp_memory_statistics *statistics);

/* Sets the bytes that objects may take (used_bytes), 0 for no limit. 22 when more is used already:
 * the limit stays as it was. */
KELP_API int32_t kelp_database_set_memory_limit(kelp_database *database, size_t bytes,
                                                kelp_error *error);

/* Hears of one thing that is wrong in a store. */
typedef void (*kelp_check_finding)(void *context, const char *text);

/* Looks through a store: its allocator, indexes, tables, trees, counts, and what points from one to
 * the other. finding, which may be null, is called with each thing that is wrong, up to 1,000.
 * Values of fields are not judged. Hold a lock. 0 when it is sound, 5 with their number when
 * something is wrong, 22 for a private database, 12. */
KELP_API int32_t kelp_database_check(kelp_database *database, kelp_check_finding finding,
                                     void *context, kelp_error *error);

/* Bytes that a store's file takes on the disk. */
typedef struct kelp_compaction {
  uint64_t before;
  uint64_t after;
} kelp_compaction;

/* Gives the disk back what a store does not use: pieces of 64 KiB without any live block, those at
 * the end by cutting the file, the others by holes in it. Others may have the store open and wait as
 * for any writer. Rows stay where they are, so that addresses, OIDs, feeds and cursors hold. A
 * process that dies in it leaves the store whole. result may be null. The handle holds no lock. 22
 * for a private database, and what kelp_lock_write and kelp_unlock give. */
KELP_API int32_t kelp_database_compact(kelp_handle *handle, kelp_compaction *result,
                                       kelp_error *error);

/* The table after the given one in the database's list, the first for null; null at the end. */
KELP_API kelp_table *kelp_database_next_table(const kelp_database *database,
                                              const kelp_table *table);

/* --- handles --- */

enum kelp_handle_tracking { KELP_TRACKING_ABSENT = 0, KELP_TRACKING_ON = 1, KELP_TRACKING_OFF = 2 };

enum { KELP_TENANT_UNCHANGED = -1 };

typedef struct kelp_handle_options {
  size_t struct_size;       /* set by kelp_handle_options_init */
  uint32_t state_tracking;  /* enum kelp_handle_tracking */
  int32_t tenant;           /* 0 to 65535: making and locking the handle sets the thread's tenant */
  uint32_t work_space_size; /* bytes of kelplib_get_handle_ws */
  uint32_t collector_context;
  uint32_t quiet_insert;
  uint32_t space_id; /* cr_space_id */
  uint32_t peer_stamp;
} kelp_handle_options;

/* Fills in the defaults: no state tracking, the thread's tenant unchanged, 256 KiB of work space,
 * no collector context, duplicates traced, space 0. */
KELP_API void kelp_handle_options_init(kelp_handle_options *options);

/* Makes a handle on a database, with every type at its highest variant. options may be null. The
 * caller destroys it; objects made through it stay and can be used through other handles. Makes the
 * database the current one. 22 for a bad argument, 12 without memory. */
KELP_API kelp_handle *kelp_handle_create(kelp_database *database,
                                         const kelp_handle_options *options, kelp_error *error);

/* Destroys a handle, giving up the lock that it holds; what it wrote to a store and did not commit
 * is undone. A null handle is passed over. */
KELP_API void kelp_handle_destroy(kelp_handle *handle);

/* The handle's database. */
KELP_API kelp_database *kelp_handle_database(const kelp_handle *handle);

/* Fixes the variant that the handle's domain gives to the type of that name (1 to 63 bytes), above
 * the highest that its module knows included. The name need not be known. 22 for a bad argument. */
KELP_API int32_t kelp_handle_set_variant(kelp_handle *handle, const char *type_name,
                                         int32_t variant, kelp_error *error);

/* Goes back to the highest variant of the type. */
KELP_API void kelp_handle_clear_variant(kelp_handle *handle, const char *type_name);

/* The code that the handle stored last, 0 for none. error, when not null, gets it with a text that
 * names the type and field, or the table, and the rule that failed, with what was found and
 * expected, as in "route.cost: set_value: found a null object, expected one"; after an
 * allocation that failed it says what is used, what the limit is and what raises it.
 * Where nothing was stored but an allocation was refused since the handle last forgot its error, as
 * after a create that gave null, the code is 12. */
KELP_API int32_t kelp_handle_last_error(const kelp_handle *handle, kelp_error *error);

/* --- locks --- */

/* Take the database's lock: for reading with other readers, for writing alone. They wait for
 * whoever holds it; writers go before readers that come later. They set the handle's db_lock_state,
 * make the database the current one and set the thread's tenant when the handle has one.
 * 35 when the handle has the lock already, or when the wait could never end because the calling
 * thread itself holds the lock through another handle. In a store also 110 when the wait took
 * longer than wait_ms, with the process that holds the lock and since when; 1 for writing what was
 * opened for reading, or in a child of the process that opened it; 22 when the store has objects of
 * a type in another size than a module of this process; 5 when another process cut the file; 11
 * when it was opened for reading and a dead writer's transaction has to be undone first. */
KELP_API int32_t kelp_lock_read(kelp_handle *handle, kelp_error *error);
KELP_API int32_t kelp_lock_write(kelp_handle *handle, kelp_error *error);

/* Gives up the lock that the handle holds. 1 when it holds none. In a store the write lock ends
 * with a commit: when that fails everything since the lock was taken has been undone, and the lock
 * is given up all the same. 28 without room for what undoing needs, 5 when another process cut the
 * file. */
KELP_API int32_t kelp_unlock(kelp_handle *handle, kelp_error *error);

/* Undoes everything since the handle took the write lock of a store, and gives it up. Whatever the
 * program still holds of what it made or found since then is gone. 1 without the write lock, 95 on
 * a private database, which keeps its lock. Stores that the contract makes without announcing them
 * are undone when anything else in the same block, or in the record that holds the object, was
 * announced before; docs/store.md lists what is not. */
KELP_API int32_t kelp_rollback(kelp_handle *handle, kelp_error *error);

/* --- tenants --- */

/* Sets the calling thread's tenant (mt_get_tenant_id); 0, the value to begin with, is none. */
KELP_API void kelp_tenant_set(uint16_t tenant);

/* --- tables and the change feed --- */

/* Marks a table for replication: the runtime's cursors follow it, records are destroyed by request
 * only, and the collector ends them. implicit_write_cursor non-zero: inserts enter the feed by
 * themselves; else kelp_feed_record_changed does. Calling it again changes only that. A table stays
 * marked until it is freed. In a store it needs the write lock, 1 without; the mark and all that
 * enters the feed are part of the transaction, and a rollback takes them back. 22, 12. */
KELP_API int32_t kelp_table_enable_cursors(kelp_handle *handle, kelp_table *table,
                                           uint32_t implicit_write_cursor, kelp_error *error);

enum kelp_feed_kind { KELP_FEED_INSERTED = 1, KELP_FEED_MODIFIED = 2, KELP_FEED_DESTROYED = 3 };

typedef struct kelp_feed_change {
  kelp_table *table;
  kelp_record *record;
  uint32_t kind;     /* enum kelp_feed_kind, as this cursor sees it */
  uint64_t sequence; /* rises with every change of the table */
} kelp_feed_change;

/* A reader's place in the changes of one table. */
typedef struct kelp_feed_cursor kelp_feed_cursor;

/* Opens a cursor in front of everything: first it shows each record that the feed knows, as
 * inserted, then what changes. The feed keeps one entry for each record, its latest change, so it
 * never outgrows the table. 22 for a table without cursors, 11 when 64 are open on the table or
 * 4,096 on the database, 12; in a store 1 without a lock, and 110 when another process opens or
 * closes it for longer than wait_ms. The caller closes it; a process that ends without that leaves
 * nothing behind. A rollback takes the cursor back to where the transaction found it. */
KELP_API kelp_feed_cursor *kelp_feed_cursor_open(kelp_handle *handle, kelp_table *table,
                                                 kelp_error *error);

/* Moves over the next change and writes it to *change: 1, or 0 when there is none now, or when the
 * table has been freed. A record that came and went since the last look is shown as destroyed. It
 * stays allocated until the collector runs after every cursor has moved over it, so that a record
 * shown as destroyed can still be read. A record that is taken out of its table in collector
 * context is shown as destroyed too, as long as its memory lasts, and one that is inserted again as
 * inserted. Hold the read lock; in a store 0 without a lock. */
KELP_API int32_t kelp_feed_cursor_next(kelp_feed_cursor *cursor, kelp_feed_change *change);

/* Closes a cursor. A cursor left open holds back the collector. Null is passed over. */
KELP_API void kelp_feed_cursor_close(kelp_feed_cursor *cursor);

/* Sleeps until the cursor has something to move over, or timeout_ms have passed (UINT32_MAX:
 * without limit). With a null cursor: until anybody has committed since this handle took or gave up
 * a lock last. The handle must hold no lock, and takes the read lock to look. It sleeps in the
 * kernel and is woken by the commit, of whichever process. 0 when there is something, 110 when the
 * time is over, 2 when the cursor's table has gone, 35 when the handle holds a lock, 22 for a
 * cursor of another database, else as kelp_lock_read. */
KELP_API int32_t kelp_feed_wait(kelp_handle *handle, kelp_feed_cursor *cursor, uint32_t timeout_ms,
                                kelp_error *error);

/* Enters a record of the table in its feed after the record's objects were changed. 22 as for
 * kelpdb_enq_rec_move_write_cursor_internal; 1 in a store without the write lock. */
KELP_API int32_t kelp_feed_record_changed(kelp_handle *handle, kelp_table *table,
                                          kelp_record *record, kelp_error *error);

/* Says whether what the handle enters in feeds from here on is part of a bulk transfer: rows that
 * come or go as a whole, as from a file or a peer, and not one by one. Those who hear of it get the
 * create_dm and delete_dm events. */
KELP_API void kelp_handle_set_bulk_transfer(kelp_handle *handle, uint32_t bulk);

/* --- record events ---
 *
 * What a cursor is shown can be told to handlers: the functions that a module's tables call in the
 * slots 8 to 14 of their vft (kelp/vft.h), if the program defines them. The runtime calls none by
 * itself; kelp_events_dispatch does, on the thread and under the lock of its caller. The handlers
 * of one table and their arguments:
 *
 * - grouping(handle, space_id, context, err, table, group): before and after what one transaction
 *   changed in the table. group is a kelp_event_group. Of a transaction whose rows were all changed
 *   again later nothing is told.
 * - create(handle, space_id, context, record, err): the row is new to this cursor.
 * - modify(handle, space_id, context, record, err): it was told of before, and has changed.
 * - delete(handle, space_id, context, record, err): it was told of, and has been marked for
 *   destruction or has left the table. It can still be read.
 * - create_dm, delete_dm(handle, space_id, record, err): the same for rows that a bulk transfer
 *   (kelp_handle_set_bulk_transfer) brought or took. Without these handlers create and delete are
 *   called, with a null context.
 * - free(handle, space_id, record, bulk, err, context): the last word of a row that was told as
 *   deleted, behind the closing grouping: this cursor does not hold the record back any more, and
 *   whoever runs the collector next ends its memory. bulk is 1 when a bulk transfer took the row.
 *   The record can be read until the lock is given up.
 *
 * context is what kelp_events_dispatch was given. err is 0 at each call; what a handler leaves
 * there is counted and does not keep the others from being called. */

typedef struct kelp_event_group {
  kelp_table *table;
  uint64_t commit; /* rises with each transaction; the same in all tables of the database */
  uint32_t at_end; /* 0 before what the transaction changed, 1 after it */
  uint32_t events; /* told in between, so far */
} kelp_event_group;

typedef struct kelp_events_report {
  uint32_t created;
  uint32_t modified;
  uint32_t deleted;
  uint32_t freed;
  uint32_t groups;
  uint32_t failures; /* calls that left a code in their error word */
} kelp_events_report;

/* Moves the cursor over all that others have changed and calls the handlers of its table. What was
 * changed only by the handle that opened the cursor is passed over, and so is a row that came and
 * went since the last look. Hold the read lock, or the write lock when handlers change rows; a
 * handler gives up no lock. report may be null. 0; the first code that a handler left, when
 * everything was told all the same; 22 for a cursor of another database, 1 in a store without a
 * lock, 2 when the table has gone or its vft is not found, 12. */
KELP_API int32_t kelp_events_dispatch(kelp_handle *handle, kelp_feed_cursor *cursor, void *context,
                                      kelp_events_report *report, kelp_error *error);

/* A record in the replication cache. */
typedef struct kelp_cache_entry {
  kelp_table *table;
  kelp_record *record;
  uint64_t times;    /* how often it was entered since it came in */
  uint64_t sequence; /* rises with every entering; the latest one of this record */
} kelp_cache_entry;

/* Writes the entry that was entered next after *position (0 to begin with) to *entry and moves
 * *position to it: 1, or 0 when there is none. */
KELP_API int32_t kelp_replication_cache_next(kelp_handle *handle, uint64_t *position,
                                             kelp_cache_entry *entry);

/* How many entries gave way to newer ones since the database was opened. */
KELP_API uint64_t kelp_replication_cache_dropped(const kelp_handle *handle);

/* --- the collector --- */

/* A module's function that finds the vft of a table by its LUID (16 bytes). */
typedef void (*kelp_vft_lookup)(kelp_handle *handle, uint32_t space_id, const uint8_t *luid,
                                const kelp_table_vft **vft, uint32_t *err);

/* Tells the runtime where the tables of a module are found; null takes it back. Without this it
 * looks for the function "<module name>_table_get_vft" in the process. 22 for a bad name, 12. */
KELP_API int32_t kelp_module_set_vft_lookup(const char *module_name, kelp_vft_lookup lookup,
                                            kelp_error *error);

/* Ends an object of a type that is no table, as "<type name>_destroy" does. */
typedef void (*kelp_object_destroyer)(kelp_handle *handle, uint32_t space_id, void *object);

/* Tells the runtime how objects of a type are ended; null takes it back. Without this it looks for
 * the function "<type name>_destroy" in the process. 22 for a bad name, 12. */
KELP_API int32_t kelp_type_set_destroyer(const char *type_name, kelp_object_destroyer destroyer,
                                         kelp_error *error);

typedef struct kelp_collector_report {
  uint32_t records_ended;
  uint32_t records_waiting; /* a cursor has not passed them yet */
  uint32_t tables_freed;
  uint32_t tables_waiting; /* records, cursors or references remain */
  uint32_t objects_ended;
} kelp_collector_report;

/* Finishes what was put off: ends the pending records that every cursor has passed, frees the
 * tables whose free was requested or had to wait for references, and ends the objects whose last
 * reference has gone. Works with collector_context set, and with the tenant of each record that it
 * ends, so that the counts of that tenant fall. A record that has left the table in which its end
 * was asked for is ended only if it is in no other one. A database marked shared must be write
 * locked through this handle: 1 otherwise. report may be null. 2 when the function that ends a
 * thing is not found; the rest is done all the same. */
KELP_API int32_t kelp_collector_run(kelp_handle *handle, kelp_collector_report *report,
                                    kelp_error *error);

/* --- bundles --- */

/* Calls every registered bundle handler (kelp/core.h) with the bytes, in the order in which they
 * were registered. Gives how many were called. */
KELP_API uint32_t kelp_bundle_deliver(const void *bundle, size_t length);

/* --- aids for tests --- */

/* Where an announced write comes from. */
enum kelp_write_origin {
  KELP_WRITE_MODULE = 0,  /* write_notify, called by a module or for an object's own bytes */
  KELP_WRITE_COUNTER = 1, /* counter_notify */
  KELP_WRITE_TREE = 2,    /* the links of a tree */
  KELP_WRITE_RANGE = 3    /* lumen_set_range */
};

/* Hears of every write before it is made. */
typedef void (*kelp_write_observer)(void *context, const void *address, size_t length,
                                    uint32_t space_id, uint32_t origin);

/* Sets the observer of the writes announced through the handle's pool; null ends that. */
KELP_API void kelp_handle_set_write_observer(kelp_handle *handle, kelp_write_observer observer,
                                             void *context);

/* How many writes of an origin were announced through the handle since it was made. */
KELP_API uint64_t kelp_handle_write_count(const kelp_handle *handle, uint32_t origin);

/* Has modules do the runtime's small work of this handle themselves (non-zero), as they do where no
 * function of the runtime is replaced in the process, or call the runtime for each piece of it (0). */
KELP_API void kelp_handle_set_inline(kelp_handle *handle, uint32_t on);

/* What can be made to fail. */
enum kelp_fault {
  KELP_FAULT_ALLOCATION = 0,  /* obj_alloc and type_alloc give null */
  KELP_FAULT_RANGE = 1,       /* lumen_set_range gives 0 */
  KELP_FAULT_SET_KEY = 2,     /* lumen_set_key gives 0 */
  KELP_FAULT_OID_MAPPING = 3, /* an OID mapping cannot be made: 12 */
  KELP_FAULT_TOC_OPEN = 4,    /* kelpdb_database_toc_open: 5 */
  KELP_FAULT_TOC_FIND = 5,    /* kelpdb_database_toc_get_table_root: 5 */
  KELP_FAULT_TOC_INSERT = 6,  /* kelpdb_database_toc_insert: 5 */
  KELP_FAULT_TOC_DELETE = 7,  /* kelpdb_database_toc_delete and its forced form: 5 */
  KELP_FAULT_COUNT = 8
};

/* Lets n calls of a kind succeed and fails the one after, once: n 0 fails the next one. A negative
 * n takes an outstanding fault back. */
KELP_API void kelp_database_fail_after(kelp_database *database, uint32_t fault, int64_t n);

/* The same for allocations. */
KELP_API void kelp_database_fail_allocation_after(kelp_database *database, int64_t n);

/* Makes the handle's lookups of that type's variant fail with code, in addition to giving the
 * variant; 0 takes it back. */
KELP_API int32_t kelp_handle_fail_variant(kelp_handle *handle, const char *type_name, uint32_t code,
                                          kelp_error *error);

/* The reference count of an object's OID mapping; -1 when it has none. */
KELP_API int64_t kelp_handle_oid_references(const kelp_handle *handle, const void *object);

KELP_EXTERN_C_END

#endif
