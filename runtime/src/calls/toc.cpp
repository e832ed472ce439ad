// The table of contents as modules call it, and the list of the tables.
#include <cstring>

#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"

namespace kelp {

namespace {

constexpr std::size_t kLuidBytes = 16;

// The key under which a table is entered; its luid is null when the table has no type record.
TableOfContents::Key key_of(const kelp_table *table) {
  const kelp_type_record *record = kelp_get_manifested_type_info(table);
  return {record == nullptr ? nullptr : record->md5, table->open_type == KELP_OPEN_BY_NAME,
          std::string_view(table->tbl_name, strnlen(table->tbl_name, sizeof table->tbl_name)),
          table->table_id};
}

// The handle's database, for an operation on its table of contents. Null, with nothing to do, when
// the word is set already or by a fault that is to strike there.
kelp_database *begin(kelp_handle *handle, kelp_fault fault, uint32_t *err) {
  if (is_set(err)) return nullptr;
  kelp_database &database = database_of(handle);
  if (!database.faults.strikes(fault)) return &database;
  raise(handle, err, KELP_ERR_INPUT_OUTPUT);
  return nullptr;
}

// A block of the system memory, zeroed, made once and then the same. False without memory.
template <typename Root>
bool make_once(kelp_database &database, Root *&root) {
  const std::lock_guard lock(database.roots_mutex);
  if (root != nullptr) return true;
  if (database.store != nullptr && !database.store->is_writing()) return false;
  auto *made = static_cast<Root *>(database.memory->take(sizeof(Root)));
  if (made == nullptr) return false;
  *made = Root{};
  database.memory->set(root, made);
  return true;
}

}  // namespace

}  // namespace kelp

using kelp::TableOfContents;

extern "C" kelp_table_list *kelplib_database_table_toc_create(kelp_handle *handle,
                                                              uint32_t space_id, uint32_t *err) {
  (void)space_id;
  if (kelp::is_set(err)) return nullptr;
  kelp_database &database = kelp::database_of(handle);
  // A reader who comes before the first writer finds a list without tables.
  if (database.store != nullptr && !database.store->is_writing() &&
      database.directory->table_list == nullptr) {
    database.no_tables.last_link = &database.no_tables.first;
    return &database.no_tables;
  }
  if (!kelp::make_once(database, database.directory->table_list)) {
    kelp::raise(handle, err, KELP_ERR_NO_MEMORY);
    return nullptr;
  }
  if (database.directory->table_list->last_link == nullptr) {
    database.memory->set(database.directory->table_list->last_link,
                         &database.directory->table_list->first);
  }
  return database.directory->table_list;
}

extern "C" kelp_toc_root *kelpdb_database_toc_open(kelp_handle *handle, uint32_t space_id,
                                                   uint32_t *err) {
  (void)space_id;
  kelp_database *database = kelp::begin(handle, KELP_FAULT_TOC_OPEN, err);
  if (database == nullptr) return nullptr;
  const bool may_write = !database->marked_shared || kelplib_database_is_write_locked(handle) != 0;
  if (!may_write) return database->directory->toc_root;
  if (!kelp::make_once(*database, database->directory->toc_root)) {
    kelp::raise(handle, err, KELP_ERR_NO_MEMORY);
    return nullptr;
  }
  uint8_t &flags = database->directory->toc_root->flags;
  if (database->marked_shared && (flags & KELP_TOC_SHARED) == 0) {
    database->memory->set(flags, static_cast<uint8_t>(flags | KELP_TOC_SHARED));
  }
  return database->directory->toc_root;
}

extern "C" kelp_table *kelpdb_database_toc_get_table_root(kelp_handle *handle, uint32_t space_id,
                                                          const char *path, uint32_t path_length,
                                                          uint64_t id, const uint8_t *luid,
                                                          uint32_t luid_length, uint32_t by_name,
                                                          uint32_t *err) {
  (void)space_id;
  kelp_database *database = kelp::begin(handle, KELP_FAULT_TOC_FIND, err);
  if (database == nullptr) return nullptr;
  if (luid == nullptr || luid_length != kelp::kLuidBytes || (by_name != 0 && path == nullptr)) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return nullptr;
  }
  if (kelp::refuses(handle, luid, err)) return nullptr;
  kelp_table *table = nullptr;
  const bool done = kelp::without_exceptions([&] {
    const std::string_view name =
        by_name != 0 ? std::string_view(path, path_length) : std::string_view();
    table = database->toc.find({luid, by_name != 0, name, id});
  });
  if (!done) kelp::raise(handle, err, KELP_ERR_NO_MEMORY);
  return table;
}

extern "C" void kelpdb_database_toc_insert(kelp_handle *handle, uint32_t space_id,
                                           kelp_table *table, uint32_t dynamic, uint32_t *err) {
  (void)space_id, (void)dynamic;
  kelp_database *database = kelp::begin(handle, KELP_FAULT_TOC_INSERT, err);
  if (database == nullptr) return;
  if (table == nullptr || kelp_get_manifested_type_info(table) == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return;
  }
  bool entered = false;
  const bool done =
      kelp::without_exceptions([&] { entered = database->toc.insert(kelp::key_of(table), table); });
  if (!done) {
    kelp::raise(handle, err, KELP_ERR_NO_MEMORY);
  } else if (!entered) {
    kelp::raise(handle, err, KELP_ERR_EXISTS);
  } else {
    database->objects.watch(table);
    kelp::expect_counting(*database, table);
  }
}

extern "C" void kelpdb_database_toc_delete(kelp_handle *handle, uint32_t space_id,
                                           kelp_table *table, uint32_t *err) {
  (void)space_id;
  kelp_database *database = kelp::begin(handle, KELP_FAULT_TOC_DELETE, err);
  if (database == nullptr) return;
  const TableOfContents::Place place = database->toc.remove(table);
  const bool again = place == TableOfContents::Place::removed && !database->marked_shared;
  if (place != TableOfContents::Place::entered && !again) {
    kelp::raise(handle, err, KELP_ERR_NOT_FOUND);
  }
}

extern "C" void kelpdb_database_toc_force_delete(kelp_handle *handle, uint32_t space_id,
                                                 kelp_table *table, uint32_t *err) {
  (void)space_id;
  kelp_database *database = kelp::begin(handle, KELP_FAULT_TOC_DELETE, err);
  if (database == nullptr) return;
  database->toc.remove(table);
}

extern "C" kelp_table *kelp_database_next_table(const kelp_database *database,
                                                const kelp_table *table) {
  if (table != nullptr) return table->toc_next;
  if (database == nullptr || database->directory->table_list == nullptr) return nullptr;
  return database->directory->table_list->first;
}
