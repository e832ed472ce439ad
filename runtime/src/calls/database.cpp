// Opening and closing databases, and their memory as a program sees it.
#include "database/database.hpp"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

#include "base/failure.hpp"

namespace kelp {

namespace {

constexpr std::uint32_t kDefaultCacheEntries = 1024;
constexpr std::size_t kLongestName = 63;

// A table that is in the list, and whose memory is there.
bool is_live(kelp_database &database, const kelp_table *table) {
  std::size_t size = 0;
  return table != nullptr && database.objects.live_size(table, &size) && size >= sizeof *table;
}

// Names the tables that are left, as many as there is room for: by the name that they were opened
// with, or their id.
void add_tables(kelp_database &database, kelp_error *error) {
  if (error == nullptr || database.directory->table_list == nullptr) return;
  const char *between = "; tables that are left: ";
  const kelp_table *table = database.directory->table_list->first;
  for (; is_live(database, table); table = table->toc_next) {
    const std::size_t used = std::strlen(error->text);
    const kelp_type_record *record = kelp_get_manifested_type_info(table);
    char name[sizeof table->tbl_name + 2];
    if (table->open_type == KELP_OPEN_BY_NAME) {
      const std::string_view path(table->tbl_name,
                                  strnlen(table->tbl_name, sizeof table->tbl_name));
      std::snprintf(name, sizeof name, "'%.*s'",
                    static_cast<int>(std::min(path.rfind('/'), path.size())), path.data());
    } else {
      std::snprintf(name, sizeof name, "%" PRIu64, table->table_id);
    }
    char one[400];
    const int length =
        std::snprintf(one, sizeof one, "%s%s %s with %" PRIu32 " records", between,
                      record == nullptr ? "a table" : record->type_name, name, table->record_count);
    if (length < 0 ||
        used + static_cast<std::size_t>(length) + sizeof ", ..." > sizeof error->text) {
      std::snprintf(error->text + used, sizeof error->text - used, ", ...");
      return;
    }
    std::memcpy(error->text + used, one, static_cast<std::size_t>(length) + 1);
    between = ", ";
  }
}

}  // namespace

}  // namespace kelp

extern "C" void kelp_database_options_init(kelp_database_options *options) {
  if (options == nullptr) return;
  *options = {};
  options->struct_size = sizeof *options;
  options->replication_cache_entries = kelp::kDefaultCacheEntries;
}

extern "C" kelp_database *kelp_database_open_private(const char *name,
                                                     const kelp_database_options *options,
                                                     kelp_error *error) {
  constexpr const char *kFunction = "kelp_database_open_private";
  const std::size_t length = name == nullptr ? 0 : strnlen(name, kelp::kLongestName + 1);
  if (length == 0 || length > kelp::kLongestName) {
    kelp::fail(error, KELP_ERR_INVALID, "%s: a name of %s, expected 1 to %zu bytes", kFunction,
               length == 0 ? "no bytes" : "more bytes", kelp::kLongestName);
    return nullptr;
  }
  kelp_database_options defaults;
  kelp_database_options_init(&defaults);
  const kelp_database_options &wanted = options == nullptr ? defaults : *options;
  if (wanted.struct_size != sizeof wanted) {
    kelp::fail(error, KELP_ERR_INVALID,
               "%s: database '%s': options of %zu bytes, expected %zu; "
               "kelp_database_options_init sets this",
               kFunction, name, wanted.struct_size, sizeof wanted);
    return nullptr;
  }
  std::unique_ptr<kelp_database> database;
  const bool done = kelp::without_exceptions([&] {
    database = std::make_unique<kelp_database>();
    database->name = name;
    database->marked_shared = wanted.marked_shared != 0;
    database->shared_tinfo = wanted.shared_tinfo != 0;
    database->objects.set_limit(wanted.memory_limit);
    kelp::attach_parts(*database);
    kelp::watch_freed_blocks(*database);
    database->cache.set_capacity(wanted.replication_cache_entries);
    kelp::enter_open_database(*database);
  });
  if (!done) {
    kelp::fail(error, KELP_ERR_NO_MEMORY, "%s: database '%s': no memory", kFunction, name);
    return nullptr;
  }
  kelp::succeed(error);
  return database.release();
}

extern "C" void kelp_store_options_init(kelp_store_options *options) {
  if (options == nullptr) return;
  *options = {};
  options->struct_size = sizeof *options;
  options->create = 1;
  options->reserved_bytes = kelp::store::Options().reserved_bytes;
  options->file_mode = kelp::store::Options().mode;
  options->wait_ms = kelp::store::Options().wait_ms;
  options->replication_cache_entries = kelp::kDefaultCacheEntries;
  options->durability = KELP_DURABILITY_PROCESS;
  options->image_bytes = kelp::store::Options().image_bytes;
}

extern "C" kelp_database *kelp_database_open_file(const char *path,
                                                  const kelp_store_options *options,
                                                  kelp_error *error) {
  constexpr const char *kFunction = "kelp_database_open_file";
  if (path == nullptr || *path == '\0') {
    kelp::fail(error, KELP_ERR_INVALID, "%s: no path, expected a text", kFunction);
    return nullptr;
  }
  kelp_store_options wanted;
  kelp_store_options_init(&wanted);
  if (options != nullptr && options->struct_size != sizeof wanted) {
    kelp::fail(error, KELP_ERR_INVALID,
               "%s: store '%s': options of %zu bytes, expected %zu; kelp_store_options_init sets "
               "this",
               kFunction, path, options->struct_size, sizeof wanted);
    return nullptr;
  }
  if (options != nullptr) wanted = *options;
  if (wanted.durability > KELP_DURABILITY_POWER) {
    kelp::fail(error, KELP_ERR_INVALID, "%s: store '%s': durability %u, expected process or power",
               kFunction, path, wanted.durability);
    return nullptr;
  }
  std::unique_ptr<kelp_database> database;
  bool opened = false;
  const bool done = kelp::without_exceptions([&] {
    kelp::store::Options store_options;
    store_options.read_only = wanted.read_only != 0;
    store_options.create = wanted.create != 0;
    store_options.reserved_bytes = wanted.reserved_bytes;
    store_options.mode = wanted.file_mode;
    store_options.wait_ms = wanted.wait_ms;
    store_options.durability = wanted.durability;
    store_options.image_bytes = wanted.image_bytes;
    database = std::make_unique<kelp_database>();
    database->store = kelp::store::Store::open(path, store_options, error);
    if (database->store == nullptr) return;
    database->name = path;
    database->marked_shared = database->shared_tinfo = true;
    kelp::attach_parts(*database);
    kelp::watch_freed_blocks(*database);
    database->cache.set_capacity(wanted.replication_cache_entries);
    kelp::enter_open_database(*database);
    opened = true;
  });
  if (!done) {
    kelp::fail(error, KELP_ERR_NO_MEMORY, "%s: store '%s': no memory", kFunction, path);
    return nullptr;
  }
  if (!opened) return nullptr;
  kelp::succeed(error);
  return database.release();
}

extern "C" int32_t kelp_database_close(kelp_database *database, kelp_error *error) {
  if (database == nullptr) return kelp::succeed(error);
  {
    const std::lock_guard lock(database->handles_mutex);
    if (!database->handles.empty()) {
      return kelp::fail(error, KELP_ERR_BUSY,
                        "kelp_database_close: database '%s': %zu handles are open, expected none; "
                        "kelp_handle_destroy ends them",
                        database->name.c_str(), database->handles.size());
    }
  }
  if (database->store != nullptr) {
    const std::int32_t code = database->store->close(error);
    kelp::leave_open_databases(*database);
    delete database;
    return code;
  }
  kelp::ArenaStatistics left = database->objects.statistics();
  database->keys.each_pointer([&](const void *pointer) {
    std::size_t size = 0;
    if (!database->objects.live_size(pointer, &size)) return;
    --left.live_allocations;
    left.live_bytes -= size;
  });
  if (left.live_allocations == 0) {
    kelp::succeed(error);
  } else {
    kelp::fail(error, 0,
               "database '%s' was closed with %" PRIu64 " allocations of %" PRIu64
               " bytes still in use",
               database->name.c_str(), left.live_allocations, left.live_bytes);
    kelp::add_tables(*database, error);
  }
  kelp::leave_open_databases(*database);
  delete database;
  return 0;
}

extern "C" const char *kelp_database_name(const kelp_database *database) {
  return database == nullptr ? nullptr : database->name.c_str();
}

extern "C" void kelp_database_memory(const kelp_database *database,
                                     kelp_memory_statistics *statistics) {
  if (statistics == nullptr) return;
  *statistics = {};
  if (database == nullptr) return;
  const kelp::ArenaStatistics found = database->objects.statistics();
  statistics->live_allocations = found.live_allocations;
  statistics->live_bytes = found.live_bytes;
  statistics->used_bytes = found.used_bytes;
  statistics->peak_used_bytes = found.peak_used_bytes;
  statistics->reserved_bytes = found.reserved_bytes;
  statistics->limit_bytes = found.limit_bytes;
  statistics->total_allocations = found.total_allocations;
  statistics->failed_allocations = found.failed_allocations;
  if (database->store == nullptr) {
    statistics->own_bytes = database->system.statistics().used_bytes;
  } else {
    const kelp::store::Head &head = database->store->head();
    statistics->own_bytes = head.statistics.own_bytes + head.types_used;
  }
}

extern "C" int32_t kelp_database_set_memory_limit(kelp_database *database, size_t bytes,
                                                  kelp_error *error) {
  constexpr const char *kFunction = "kelp_database_set_memory_limit";
  if (database == nullptr) {
    return kelp::fail(error, KELP_ERR_INVALID, "%s: the database is null", kFunction);
  }
  if (!database->objects.set_limit(bytes)) {
    return kelp::fail(
        error, KELP_ERR_INVALID,
        "%s: database '%s': a limit of %zu bytes, expected at least the %" PRIu64 " that are used",
        kFunction, database->name.c_str(), bytes, database->objects.statistics().used_bytes);
  }
  return kelp::succeed(error);
}

extern "C" void kelp_database_fail_after(kelp_database *database, uint32_t fault, int64_t n) {
  if (database != nullptr) database->faults.set(fault, n);
}

extern "C" void kelp_database_fail_allocation_after(kelp_database *database, int64_t n) {
  kelp_database_fail_after(database, KELP_FAULT_ALLOCATION, n);
}
