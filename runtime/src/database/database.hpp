// A database: its memory, and everything that the runtime keeps beside the objects in it.
//
// Order of the short locks inside: the memory's first, then that of whatever hears of a freed
// block. So nothing here may call the object memory while it holds a lock of its own.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "database/editions.hpp"
#include "kelp/embed.h"
#include "parts/arena.hpp"
#include "parts/cache.hpp"
#include "parts/distances.hpp"
#include "parts/faults.hpp"
#include "parts/feed.hpp"
#include "parts/keys.hpp"
#include "parts/lock.hpp"
#include "parts/object_memory.hpp"
#include "parts/oid_registry.hpp"
#include "parts/survivors.hpp"
#include "parts/tenant_counts.hpp"
#include "parts/toc.hpp"
#include "parts/type_table.hpp"
#include "store/store.hpp"

struct kelp_database {
  std::string name;
  std::uint64_t serial = 0;  // no other database of the process ever has it
  bool marked_shared = false;
  bool shared_tinfo = false;
  kelp::Faults faults;

  // Null for a private database. Private or not, the parts below keep their things in memory, and
  // find them by directory.
  std::unique_ptr<kelp::store::Store> store;
  kelp::store::Directory own_directory = {};
  kelp::store::Directory *directory = &own_directory;
  kelp::Arena system;  // of a private database: type records, and what the parts keep
  kelp::SystemMemory own_memory{system};
  kelp::store::Memory *memory = &own_memory;

  // What hears of freed blocks stands before the memory, so that it outlives it.
  kelp::Distances distances;
  kelp::OidRegistry oids;
  kelp::TableOfContents toc;
  kelp::TenantCounts tenants;
  kelp::OwnCursors own_cursors;
  kelp::Feeds feeds;
  kelp::ReplicationCache cache;
  kelp::Survivors walked;  // by the collector

  kelp::ObjectMemory objects;  // what modules allocate
  kelp::TypeTable types;
  kelp::Editions editions;  // of a store
  kelp::Keys keys;
  std::recursive_mutex registering;  // of a module's type records, one thread at a time

  std::mutex roots_mutex;
  kelp_table_list no_tables = {};
  std::atomic<std::uint64_t> seen_sequence{0};  // of a store's commits, when it was locked last
  std::atomic<bool> schema_checked{false};

  kelp::DatabaseLock lock;

  mutable std::mutex handles_mutex;
  std::vector<kelp_handle *> handles;
};

namespace kelp {

// Ties the parts to the database's memory: private, or that of its store.
void attach_parts(kelp_database &database);

// Memory for type records and their variant info; it goes with the database.
void *take_type_memory(kelp_database &database, std::size_t size);

// The object is about to be counted in its type's entry without a word: tables are.
void expect_counting(kelp_database &database, const void *object);

// Has the database forget what it keeps beside a block of its object memory when that is freed.
void watch_freed_blocks(kelp_database &database);

// Gives the database its serial and counts it among the open ones. Throws bad_alloc.
void enter_open_database(kelp_database &database);
void leave_open_databases(const kelp_database &database);

// The open database with this serial, null when there is none.
kelp_database *open_database(std::uint64_t serial);

}  // namespace kelp
