// Which databases of the process are open, and what a database forgets with a block of its memory.
#include "database/database.hpp"

#include <cstring>
#include <set>

#include "base/undying.hpp"
#include "kelp/core.h"

namespace kelp {

namespace {

// The serials of the open databases. Never destroyed, so that threads which end late can look.
struct OpenDatabases {
  std::mutex mutex;
  std::set<std::uint64_t> serials;
  std::uint64_t last = 0;
};

OpenDatabases &open_databases() { return undying<OpenDatabases>(); }

void forget_block(void *context, const void *block, std::size_t size) {
  auto *database = static_cast<kelp_database *>(context);
  database->distances.drop_range(block, size);
  database->oids.remove_range(block, size);
  database->tenants.forget(block);
  database->tables.forget(block);
  database->cache.forget(static_cast<const kelp_record *>(block));
  database->walked.forget(block);
  const auto *table = static_cast<const kelp_table *>(block);
  if (database->toc.forget(table)) database->cache.forget_table(table);
}

}  // namespace

void attach_parts(kelp_database &database) {
  std::uint8_t identity[16];
  if (database.store != nullptr) {
    std::memcpy(identity, database.store->id(), sizeof identity);
    database.memory = database.store.get();
    database.directory = &database.store->head().directory;
    database.objects.attach(database.store.get());
    database.store->on_rollback([&database] {
      database.types.forget_remembered();
      database.cache.clear();
    });
  } else {
    make_identity(identity);
    database.own_directory.next_oid = store::kFirstOid;
  }
  database.distances.attach(*database.memory, *database.directory);
  database.oids.attach(*database.memory, *database.directory, identity);
  database.toc.attach(*database.memory, *database.directory);
  database.tenants.attach(*database.memory, *database.directory);
  database.types.attach(*database.memory, *database.directory);
  database.keys.attach(*database.memory, *database.directory, identity);
}

void *take_type_memory(kelp_database &database, std::size_t size) {
  return database.store != nullptr ? database.store->take_types(size)
                                   : database.system.allocate(size);
}

void expect_counting(kelp_database &database, const void *object) {
  if (database.store == nullptr) return;
  const kelp_type_record *record = kelp_get_manifested_type_info(object);
  if (record == nullptr || record->varinfo == nullptr) return;
  const kelp_variant_info &info = *record->varinfo;
  if (info.n_variants <= 0 || !database.store->in_types(info.entries)) return;
  database.store->touch_types(
      info.entries, static_cast<std::size_t>(info.n_variants) * sizeof(kelp_variant_entry));
}

void watch_freed_blocks(kelp_database &database) {
  database.objects.set_release_hook(forget_block, &database);
}

void enter_open_database(kelp_database &database) {
  OpenDatabases &open = open_databases();
  const std::lock_guard lock(open.mutex);
  open.serials.insert(open.last + 1);
  database.serial = ++open.last;
}

void leave_open_databases(const kelp_database &database) {
  OpenDatabases &open = open_databases();
  const std::lock_guard lock(open.mutex);
  open.serials.erase(database.serial);
}

bool database_is_open(std::uint64_t serial) {
  OpenDatabases &open = open_databases();
  const std::lock_guard lock(open.mutex);
  return open.serials.count(serial) != 0;
}

}  // namespace kelp
