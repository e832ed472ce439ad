#include "tables/open.hpp"

#include <kelp/core.h>
#include <kelp/database.h>
#include <kelp/oid.h>

#include <atomic>
#include <cstdio>
#include <cstring>

#include "module/failure.hpp"

namespace harbor::open {

namespace {

using type_record_access::add_one;
using type_record_access::record_for;

// A name path, or the key of a TBI root, with its NUL.
constexpr std::size_t path_size = sizeof(kelp_table::tbl_name);
static_assert(path_size == 208);

struct Path {
  char text[path_size];
};

// Reports what a platform operation left in the error word, with the code's text.
void report_code(const TableFacts &facts, TableForm form, const std::uint32_t *err) {
  report(facts, form, static_cast<const char *>(std::strerror(static_cast<int>(*err))));
}
bool failed(const TableFacts &facts, kelp_handle *handle, TableForm form,
            const std::uint32_t *err) {
  if (*err == 0) return false;
  report_code(facts, form, err);
  name_failure(handle, About(facts.name));
  return true;
}

// A text of 208 characters or more does not fit: code 7.
bool fits(const TableFacts &facts, kelp_handle *handle, int length, std::uint32_t *err) {
  if (length < static_cast<int>(path_size)) return true;
  fail(handle, KELP_ERR_TOO_LONG, err, About(facts.name, "open"),
       "found a name of %d characters with the table's identity, expected fewer than %zu", length,
       path_size);
  return false;
}

// Declares bytes about to be written to the store; a refusal means that the store is broken.
void declare(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
             const void *address, std::size_t length, TableForm form) {
  if (lumen_set_range(handle->obj_pool, address, length, space_id) == 1) return;
  lumen_perror();
  die(facts, form);
}

// --- ids -----------------------------------------------------------------------------------------

// The TBI root of this type of table in the handle's store, null when the store has none or, with
// code 7, when its key is too long. Required: the last one found is shared by all threads and by
// all handles, and stands as long as the store says that the address is its own. It is read once:
// another thread may put the root of another database there at any moment.
kelp_tbi_root *find_id_root(const TableFacts &facts, kelp_handle *handle, Path &key,
                            std::uint32_t *err) {
  const std::atomic_ref<kelp_tbi_root *> cache(*facts.tbi_cache);
  kelp_tbi_root *const cached = cache.load(std::memory_order_relaxed);
  if (cached != nullptr && lumen_in_range(handle->obj_pool, cached) != 0) return cached;
  const int length = std::snprintf(key.text, path_size, "__kelp_TBI__%s", facts.luid_text);
  if (!fits(facts, handle, length, err)) return nullptr;
  auto *const kept = static_cast<kelp_tbi_root *>(lumen_get_key(handle->obj_pool, key.text));
  cache.store(kept, std::memory_order_relaxed);
  return kept;
}

// The same, made by a writer when it is missing. A store that cannot keep the key is reported, and
// the open goes on with a root that nobody else will find.
kelp_tbi_root *find_or_make_id_root(const TableFacts &facts, kelp_handle *handle,
                                    std::uint32_t read_only, std::uint32_t *err) {
  Path key;
  kelp_tbi_root *root = find_id_root(facts, handle, key, err);
  if (root != nullptr || *err != 0) return root;
  if (read_only != 0) {
    report(facts, TableForm::reader_cannot_allocate_id_root);
    return nullptr;
  }
  root = static_cast<kelp_tbi_root *>(
      handle->obj_alloc(handle->obj_pool, KELP_SPACE_RUNTIME, sizeof(kelp_tbi_root)));
  std::atomic_ref(*facts.tbi_cache).store(root, std::memory_order_relaxed);
  if (root == nullptr) {
    fail(handle, KELP_ERR_NO_MEMORY, err, About(facts.name, "open"));
    return nullptr;
  }
  std::memset(root, 0, sizeof(kelp_tbi_root));
  if (lumen_set_key(handle->obj_pool, key.text, root) == 0) {
    report(facts, TableForm::id_root_not_set);
  }
  return root;
}

// Required: these writes are not declared to the store.
void take_id(kelp_tbi_root *root, kelp_table *table, std::uint64_t id) {
  if (id > root->tbi_next_id) root->tbi_next_id = id;
  table->table_id = id;
  ++root->tbi_table_count;
  ++root->tbi_next_id;
}

// --- the steps of an open ----------------------------------------------------------------------

// Whoever makes a table must hold the write lock, unless the database is private to the process.
void require_write_lock(const TableFacts &facts, const kelp_handle *handle,
                        std::uint32_t read_only) {
  if (read_only != 0) return;
  if (handle->db_lock_state == 1 || (handle->db_lock_state == 0 && kelplib_db_is_shared() == 1)) {
    die(facts, TableForm::create_without_write_lock);
  }
}

bool is_write_locked(const kelp_handle *handle) {
  return kelplib_db_is_shared() != 1 || kelplib_database_is_write_locked(handle) != 0;
}

// False when the open ends here. A reader that comes before the writer is reported, without
// an error.
bool open_toc(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
              std::uint32_t read_only, bool write_locked, std::uint32_t *err) {
  const kelp_toc_root *root = kelpdb_database_toc_open(handle, space_id, err);
  if (failed(facts, handle, TableForm::toc_not_opened, err)) return false;
  if (root != nullptr) return true;
  if (write_locked) die(facts, TableForm::toc_root_missing_for_writer, handle->db_name);
  report(facts, TableForm::toc_root_missing_for_reader, handle->db_name, read_only);
  return false;
}

// A name with a slash is the path itself, cut without complaint; any other gets the LUID.
bool make_path(const TableFacts &facts, kelp_handle *handle, const char *name, Path &path,
               std::uint32_t *err) {
  if (name != nullptr && std::strchr(name, '/') != nullptr) {
    std::snprintf(path.text, path_size, "%s", name);
    return true;
  }
  return fits(facts, handle,
              std::snprintf(path.text, path_size, "%s/%s", name == nullptr ? "(null)" : name,
                            facts.luid_text),
              err);
}

kelp_table *find_by_name(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                         const Path &path, std::uint32_t *err) {
  kelp_table *found = kelpdb_database_toc_get_table_root(
      handle, space_id, path.text, static_cast<std::uint32_t>(std::strlen(path.text)), 0,
      facts.luid, luid_length, 1, err);
  return failed(facts, handle, TableForm::find_by_name_failed, err) ? nullptr : found;
}

kelp_table *find_by_id(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                       std::uint64_t id, std::uint32_t *err) {
  kelp_table *found = kelpdb_database_toc_get_table_root(handle, space_id, nullptr, 0, id,
                                                         facts.luid, luid_length, 0, err);
  return failed(facts, handle, TableForm::find_by_id_failed, err) ? nullptr : found;
}

// The new table, zeroed, with the word that the runtime's collector keeps declared. Required: that
// declaration is made without a look at whether the handle has a store.
kelp_table *allocate(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                     std::uint32_t *err) {
  auto *table = static_cast<kelp_table *>(
      handle->obj_alloc(handle->obj_pool, KELP_SPACE_RUNTIME, sizeof(kelp_table)));
  if (table == nullptr) {
    fail(handle, KELP_ERR_NO_MEMORY, err, About(facts.name, "open"));
    return nullptr;
  }
  std::memset(static_cast<void *>(table), 0, sizeof(kelp_table));
  declare(facts, handle, KELP_SPACE_RUNTIME, &table->gc_word, sizeof(table->gc_word),
          TableForm::lumen_gc_word);
  table->gc_word = 0;
  table->header.tinfo = record_for(handle, space_id, facts.type);
  return table;
}

// One write to the database's list of tables, declared when the handle has a store.
template <typename Link>
void set_link(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id, Link *place,
              Link value, TableForm form) {
  if (handle->obj_pool != nullptr) declare(facts, handle, space_id, place, sizeof(Link), form);
  *place = value;
}

void link_last(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
               kelp_table_list *list, kelp_table *table) {
  const auto set = [&](auto *place, auto value, TableForm form) {
    set_link(facts, handle, space_id, place, value, form);
  };
  set(&table->toc_next, static_cast<kelp_table *>(nullptr), TableForm::lumen_link_next);
  set(&table->toc_prev, list->last_link, TableForm::lumen_link_prev);
  set(table->toc_prev, table, TableForm::lumen_link_last);
  set(&list->last_link, &table->toc_next, TableForm::lumen_link_head);
}

void unlink(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
            kelp_table_list *list, kelp_table *table) {
  const auto set = [&](auto *place, auto value, TableForm form) {
    set_link(facts, handle, space_id, place, value, form);
  };
  if (table->toc_next != nullptr) {
    set(&table->toc_next->toc_prev, table->toc_prev, TableForm::lumen_unlink_successor);
  } else {
    set(&list->last_link, table->toc_prev, TableForm::lumen_unlink_head);
  }
  set(table->toc_prev, table->toc_next, TableForm::lumen_unlink_predecessor);
}

// Makes the table that was not found. Required: a table that the table of contents refuses stays
// linked and mapped, and no counter is announced here.
kelp_table *make(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                 const Request &request, const Path &path, kelp_tbi_root *id_root,
                 kelp_table_list *list, std::uint32_t *err) {
  kelp_table *table = allocate(facts, handle, space_id, err);
  if (table == nullptr) return nullptr;
  table->open_type = request.open_type;
  if (id_root != nullptr) {
    take_id(id_root, table, request.id);
  } else {
    std::memcpy(table->tbl_name, path.text, std::strlen(path.text) + 1);
  }
  link_last(facts, handle, space_id, list, table);
  if (kelp_oid_mapping_create(handle, space_id, table, KELP_OID_KIND_TABLE, request.dynamic,
                              request.ior, err) == 0 ||
      *err != 0) {
    die(facts, TableForm::mapping_not_created);
  }
  kelpdb_database_toc_insert(handle, space_id, table, request.dynamic, err);
  if (*err != 0) {
    report(facts, TableForm::toc_insert_failed, request.dynamic != 0 ? "dynamic" : "static");
    return nullptr;
  }
  const kelp_type_record *type = table->header.tinfo;
  add_one(type, only_entry(type, count_site(facts, TableForm::open_varinfo_null,
                                            TableForm::open_variant_above))
                    .create_count);
  *err = 0;
  return table;
}

}  // namespace

void *open(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id, Request request,
           std::uint32_t *err) {
  if (!begin(handle, err)) return nullptr;
  require_write_lock(facts, handle, request.read_only);
  const bool write_locked = is_write_locked(handle);
  register_trace(handle);
  snap_avl_trace_init();
  snap_gbt_trace_init();
  kelp_table_list *list = kelplib_database_table_toc_create(handle, KELP_SPACE_RUNTIME, err);
  if (*err != 0) return nullptr;
  if (!open_toc(facts, handle, space_id, request.read_only, write_locked, err)) return nullptr;

  Path path{};
  kelp_tbi_root *id_root = nullptr;
  kelp_table *found = nullptr;
  if (request.open_type == KELP_OPEN_BY_NAME) {
    if (!make_path(facts, handle, request.name, path, err)) return nullptr;
    found = find_by_name(facts, handle, space_id, path, err);
  } else {
    id_root = find_or_make_id_root(facts, handle, request.read_only, err);
    if (id_root == nullptr) return nullptr;
    if (request.open_type == KELP_OPEN_BY_ID) {
      found = find_by_id(facts, handle, space_id, request.id, err);
    } else if (request.open_type == KELP_OPEN_AUTO_ID) {
      request.id = id_root->tbi_next_id;
    }
  }
  if (*err != 0) return nullptr;
  if (request.read_only != 0 || found != nullptr) return found;
  return make(facts, handle, space_id, request, path, id_root, list, err);
}

void *open_cr(const TableFacts &facts, kelp_handle *handle, std::uint32_t read_only,
              std::uint32_t open_type, const char *name, std::uint64_t id) {
  const std::uint32_t dynamic = open_type == KELP_OPEN_AUTO_ID ? 1 : 0;
  return open(
      facts, handle, handle->cr_space_id,
      {.name = name, .read_only = read_only, .id = id, .dynamic = dynamic, .open_type = open_type},
      &handle->cr_err);
}

void close(const TableFacts &, kelp_handle *handle, std::uint32_t, void *, std::uint32_t *err) {
  begin(handle, err);
}

// Required: the free is called whatever cr_err holds.
void close_cr(const TableFacts &facts, kelp_handle *handle, void *table, std::uint32_t mode) {
  begin(handle, &handle->cr_err);
  if (mode == 2) request_free(facts, handle, handle->cr_space_id, table, &handle->cr_err);
  if (mode == 1) free(facts, handle, handle->cr_space_id, table, &handle->cr_err);
}

namespace {

// Takes the table out of the table of contents, by the way that the database and the caller ask
// for. False when the free ends here. An application that frees a table of a shared database only
// gets that far: the rest is the collector's.
bool leave_toc(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
               const kelp_toc_root *root, kelp_table *table, std::uint32_t *err) {
  if (handle->force_toc_delete == 1) {
    kelpdb_database_toc_force_delete(handle, space_id, table, err);
    return !failed(facts, handle, TableForm::force_delete_failed, err);
  }
  if ((root->flags & KELP_TOC_SHARED) == 0) {
    kelpdb_database_toc_delete(handle, space_id, table, err);
    return !failed(facts, handle, TableForm::toc_delete_failed, err);
  }
  if (handle->collector_context != 0) return true;
  report(facts, TableForm::free_of_shared_table);
  kelpdb_database_toc_delete(handle, space_id, table, err);
  failed(facts, handle, TableForm::toc_delete_failed_on_shared, err);
  return false;
}

// False when references to the table remain or are not known.
bool drop_mapping(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                  kelp_table *table, std::uint32_t *err) {
  kelp::quick::clear_last_error(handle);
  const std::uint32_t removed = kelp_request_oid_mapping_destroy(handle, space_id, table, err);
  if (failed(facts, handle, TableForm::mapping_not_removed, err)) return false;
  if (removed == 0) {
    fail(handle, KELP_ERR_AGAIN, err, About(facts.name, "free"),
         "found references to the table '%s', expected none left", table->tbl_name);
    return false;
  }
  report(facts, TableForm::mapping_removed);
  return true;
}

// Required: tbi_next_id stays, so that an id is not given out twice.
bool give_up_id(const TableFacts &facts, kelp_handle *handle, const kelp_table *table,
                std::uint32_t *err) {
  if (table->open_type != KELP_OPEN_BY_ID && table->open_type != KELP_OPEN_AUTO_ID) return true;
  Path key;
  kelp_tbi_root *root = find_id_root(facts, handle, key, err);
  if (*err != 0) return false;
  if (root == nullptr) {
    fail(handle, KELP_ERR_NOT_FOUND, err, About(facts.name, "free"),
         "found no ids of tables of this type in the database, expected that of this table");
    return false;
  }
  --root->tbi_table_count;
  return true;
}

}  // namespace

void free(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id, void *object,
          std::uint32_t *err) {
  if (*err != 0) return;
  kelp_table *table = table_of(object);
  const kelp_toc_root *root = kelpdb_database_toc_open(handle, space_id, err);
  if (root == nullptr || *err != 0) return report_code(facts, TableForm::free_root_missing, err);
  if (!leave_toc(facts, handle, space_id, root, table, err)) return;
  if (!drop_mapping(facts, handle, space_id, table, err)) return;
  if (!give_up_id(facts, handle, table, err)) return;
  kelp_table_list *list = kelplib_database_table_toc_create(handle, KELP_SPACE_RUNTIME, err);
  if (*err != 0) return;
  unlink(facts, handle, space_id, list, table);
  const kelp_type_record *type = table->header.tinfo;
  add_one(type, only_entry(type, count_site(facts, TableForm::free_varinfo_null,
                                            TableForm::free_variant_above))
                    .destroy_count);
  *err = 0;
  handle->obj_free(handle->obj_pool, space_id, table);
}

void request_free(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                  void *object, std::uint32_t *err) {
  if (*err != 0) return;
  kelp_table *table = table_of(object);
  if (kelplib_db_is_shared() == 0) report(facts, TableForm::request_on_private);
  const kelp_toc_root *root = kelpdb_database_toc_open(handle, space_id, err);
  if (root == nullptr || *err != 0) {
    return report_code(facts, TableForm::request_root_missing, err);
  }
  kelpdb_database_toc_delete(handle, space_id, table, err);
  if (*err == KELP_ERR_NOT_FOUND) *err = 0;
  if (failed(facts, handle, TableForm::request_delete_failed, err)) return;
  if (kelpdb_table_are_cursors_enabled(handle, space_id, table, err) != 0) return;
  free(facts, handle, space_id, table, err);
  failed(facts, handle, TableForm::request_free_failed, err);
}

}  // namespace harbor::open
