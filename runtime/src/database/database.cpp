// Which databases of the process are open, and what a database forgets with a block of its memory.
#include "database/database.hpp"

#include <set>

namespace kelp {

namespace {

// The serials of the open databases. Never destroyed, so that threads which end late can look.
struct OpenDatabases {
  std::mutex mutex;
  std::set<std::uint64_t> serials;
  std::uint64_t last = 0;
};

OpenDatabases &open_databases() {
  static auto *const open = new OpenDatabases;
  return *open;
}

void forget_block(void *context, const void *block, std::size_t size) {
  auto *database = static_cast<kelp_database *>(context);
  database->distances.drop_range(block, size);
  database->oids.remove_range(block, size);
  database->tables.forget(block);
  database->cache.forget(static_cast<const kelp_record *>(block));
  database->walked.forget(block);
  const auto *table = static_cast<const kelp_table *>(block);
  if (database->toc.forget(table)) database->cache.forget_table(table);
}

}  // namespace

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
