// A database: its memory, and everything that the runtime keeps beside the objects in it.
//
// Order of the short locks inside: the memory's first, then that of whatever is told of a freed
// block. So nothing here may call the object memory while it holds a lock of its own.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "kelp/embed.h"
#include "parts/arena.hpp"
#include "parts/cache.hpp"
#include "parts/distances.hpp"
#include "parts/faults.hpp"
#include "parts/lock.hpp"
#include "parts/oid_registry.hpp"
#include "parts/survivors.hpp"
#include "parts/table_state.hpp"
#include "parts/toc.hpp"
#include "parts/type_table.hpp"

struct kelp_database {
  std::string name;
  std::uint64_t serial = 0;  // no other database of the process ever has it
  bool marked_shared = false;
  bool shared_tinfo = false;
  kelp::Faults faults;

  // What is told of freed blocks stands before the memory, so that it outlives it.
  kelp::Distances distances;
  kelp::OidRegistry oids;
  kelp::TableOfContents toc;
  kelp::TableStates tables;
  kelp::ReplicationCache cache;
  kelp::Survivors walked;  // by the collector

  kelp::Arena system;   // type records, the table of contents' roots
  kelp::Arena objects;  // what modules allocate
  kelp::TypeTable types;

  std::mutex roots_mutex;
  kelp_table_list *table_list = nullptr;
  kelp_toc_root *toc_root = nullptr;

  mutable std::mutex keys_mutex;
  std::unordered_map<std::string, void *> keys;  // of the store

  kelp::DatabaseLock lock;

  mutable std::mutex handles_mutex;
  std::vector<kelp_handle *> handles;
};

namespace kelp {

// Has the database forget what it keeps beside a block of its object memory when that is freed.
void watch_freed_blocks(kelp_database &database);

// Gives the database its serial and counts it among the open ones. Throws bad_alloc.
void enter_open_database(kelp_database &database);
void leave_open_databases(const kelp_database &database);

// Whether the database with this serial is still open.
bool database_is_open(std::uint64_t serial);

}  // namespace kelp
