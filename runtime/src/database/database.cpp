// Which databases of the process are open, and what a database forgets with a block of its memory.
#include "database/database.hpp"

#include <pthread.h>

#include <atomic>
#include <cstring>
#include <map>
#include <new>

#include "base/undying.hpp"
#include "kelp/core.h"

namespace kelp {

namespace {

// The open databases by their serials. Never destroyed, so that threads which end late can look.
struct OpenDatabases {
  std::mutex mutex;
  std::map<std::uint64_t, kelp_database *> databases;
  std::uint64_t last = 0;
  std::atomic<std::uint64_t> closed{0};  // how many were closed
};

OpenDatabases &open_databases() { return undying<OpenDatabases>(); }

// Any block may be a record that a reader was given; of the others the database knows which it
// keeps something beside.
void forget_block(void *context, const void *block, std::size_t size, bool watched) {
  auto *database = static_cast<kelp_database *>(context);
  database->cache.forget(block);
  if (!watched) return;
  database->distances.drop_range(block, size);
  database->oids.remove_range(block, size);
  database->tenants.forget(block);
  database->feeds.forget(block);
  database->walked.forget(block);
  const auto *table = static_cast<const kelp_table *>(block);
  if (database->toc.forget(table)) database->cache.forget_table(table);
}

// All locks of a database, in the order in which they are taken when one is taken under another.
template <typename Visit>
void for_each_lock(kelp_database &database, const Visit &visit) {
  visit(database.roots_mutex);
  visit(database.handles_mutex);
  visit(database.objects.mutex());
  visit(database.distances.mutex());
  visit(database.oids.mutex());
  visit(database.toc.mutex());
  visit(database.tenants.mutex());
  visit(database.feeds.mutex());
  visit(database.cache.mutex());
  visit(database.walked.mutex());
  visit(database.types.mutex());
  visit(database.editions.mutex());
  visit(database.keys.mutex());
  visit(database.system.mutex());
}

// A fork waits until nobody is inside a database, so that the child finds each whole and unlocked.
void before_fork() {
  OpenDatabases &open = open_databases();
  open.mutex.lock();
  for (const auto &[serial, database] : open.databases) {
    database->registering.lock();
    database->lock.before_fork();
    for_each_lock(*database, [](auto &lock) { lock.lock(); });
  }
}

void after_fork_in_parent() {
  OpenDatabases &open = open_databases();
  for (const auto &[serial, database] : open.databases) {
    for_each_lock(*database, [](auto &lock) { lock.unlock(); });
    database->lock.after_fork();
    database->registering.unlock();
  }
  open.mutex.unlock();
}

void after_fork_in_child() {
  OpenDatabases &open = open_databases();
  for (const auto &[serial, database] : open.databases) {
    for_each_lock(*database, [](auto &lock) { lock.unlock(); });
    database->lock.after_fork_in_child();
    // It knows its owner by a number that the child's thread does not have.
    new (&database->registering) std::recursive_mutex;
    if (database->store == nullptr) {
      database->oids.part_from_parent();
    } else {
      database->store->part_from_parent();
    }
  }
  open.mutex.unlock();
}

// Without memory at the load of the library a fork is as it is without this.
[[maybe_unused]] const int at_fork =
    pthread_atfork(before_fork, after_fork_in_parent, after_fork_in_child);

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
      database.editions.forget();
      database.cache.clear();
      database.feeds.undo_moves();
    });
  } else {
    make_identity(identity);
    database.own_directory.next_oid = store::kFirstOid;
  }
  database.distances.attach(*database.memory, *database.directory);
  database.oids.attach(*database.memory, *database.directory, identity);
  database.toc.attach(*database.memory, *database.directory);
  database.tenants.attach(*database.memory, *database.directory);
  store::CursorPlaces &places = database.store != nullptr
                                    ? static_cast<store::CursorPlaces &>(*database.store)
                                    : database.own_cursors;
  database.feeds.attach(*database.memory, *database.directory, places, database.store.get());
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
  open.databases.emplace(open.last + 1, &database);
  database.serial = ++open.last;
}

void leave_open_databases(const kelp_database &database) {
  OpenDatabases &open = open_databases();
  const std::lock_guard lock(open.mutex);
  open.databases.erase(database.serial);
  open.closed.fetch_add(1);
}

// What a thread found last holds as long as none was closed since.
kelp_database *open_database(std::uint64_t serial) {
  struct Known {
    std::uint64_t serial = 0;
    std::uint64_t closed = 0;
    kelp_database *database = nullptr;
  };
  static thread_local Known known;
  OpenDatabases &open = open_databases();
  if (serial == 0) return nullptr;
  if (known.serial == serial && known.closed == open.closed.load()) return known.database;
  const std::lock_guard lock(open.mutex);
  const auto found = open.databases.find(serial);
  known = {serial, open.closed.load(), found == open.databases.end() ? nullptr : found->second};
  return known.database;
}

}  // namespace kelp
