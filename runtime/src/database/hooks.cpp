// The hooks behind a handle's function pointers.
#include "database/hooks.hpp"

#include <cstddef>
#include <cstring>
#include <span>

#include "base/failure.hpp"
#include "database/current.hpp"
#include "database/database.hpp"

namespace kelp {

namespace {

[[gnu::noinline]] void *refuse(Pool &pool, std::size_t size) {
  pool.database->objects.note_refusal(size);
  pool.quick->last_error.refused = true;
  return nullptr;
}

// A store's objects are made under its write lock. A reader's lie beside it, for as long as the
// process wants them; without a lock nobody could say which of the two is meant.
[[gnu::noinline]] void *allocate_by_lock(Pool &pool, std::size_t size) {
  kelp_database &database = *pool.database;
  const std::uint32_t lock = pool.handle->db_lock_state;
  if (lock == 0 || database.faults.strikes(KELP_FAULT_ALLOCATION)) return refuse(pool, size);
  const bool in_store = lock == static_cast<std::uint32_t>(LockMode::write);
  const std::size_t room = in_store ? database.editions.room_for(size) : size;
  void *block = database.objects.allocate(room, in_store);
  if (block == nullptr) {
    pool.quick->last_error.refused = true;
  } else {
    // Whoever asked clears what it knows of.
    std::memset(static_cast<std::byte *>(block) + size, 0, room - size);
  }
  return block;
}

void *obj_alloc(void *obj_pool, std::uint32_t, std::size_t size) {
  Pool *pool = pool_of(obj_pool);
  if (pool == nullptr) return nullptr;
  kelp_database &database = *pool->database;
  if (database.store != nullptr) return allocate_by_lock(*pool, size);
  if (database.faults.strikes(KELP_FAULT_ALLOCATION)) return refuse(*pool, size);
  void *block = database.objects.allocate(size, false);
  if (block == nullptr) [[unlikely]]
    pool->quick->last_error.refused = true;
  return block;
}

void *type_alloc(void *type_pool, std::uint32_t, std::size_t size) {
  Pool *pool = pool_of(type_pool);
  if (pool == nullptr) return nullptr;
  kelp_database &database = *pool->database;
  void *memory =
      database.faults.strikes(KELP_FAULT_ALLOCATION) ? nullptr : take_type_memory(database, size);
  return memory == nullptr ? refuse(*pool, size) : memory;
}

// Has the inline form know of memory that needs to be put by no more.
void know_put_by(kelp_quick &quick, std::span<const std::byte> put_by) {
  quick.put_by = put_by.data();
  quick.put_by_size = put_by.size();
}

void hear_write_in_heap(Pool *pool, const void *address, std::size_t length) {
  store::Store &store = *pool->database->store;
  Editions &editions = pool->database->editions;
  const bool hears = editions.hears_writes();
  if (hears) editions.hear_write(store, address, length);
  const std::span<const std::byte> put_by = store.heap().save_block(address);
  if (hears) return;
  pool->handle->state->put_by_around(address) = put_by;
  know_put_by(*pool->quick, put_by);
}

void hear_write(Pool *pool, const void *address, std::size_t length) {
  const std::span<const std::byte> known = pool->handle->state->put_by_around(address);
  if (reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(known.data()) <
      known.size()) {
    return know_put_by(*pool->quick, known);
  }
  store::Store &store = *pool->database->store;
  if (!store.holds(address)) return;
  if (store.in_types(address)) {
    store.touch_types(address, length);
  } else if (pool->handle->db_lock_state == static_cast<std::uint32_t>(LockMode::write)) {
    hear_write_in_heap(pool, address, length);
  } else {
    bassert("what lies in a store is changed under the store's write lock", __FILE__, __LINE__);
  }
}

void obj_free(void *obj_pool, std::uint32_t, void *pointer) {
  if (pointer == nullptr) return;
  Pool *pool = pool_of(obj_pool);
  if (pool == nullptr || !pool->database->objects.free(pointer)) {
    bassert("obj_free: the pointer is a live block of this database", __FILE__, __LINE__);
  }
}

void write_notify(void *obj_pool, const void *address, std::size_t length, std::uint32_t space_id) {
  if (Pool *pool = pool_of(obj_pool)) pool->announce(address, length, space_id, KELP_WRITE_MODULE);
}

void counter_notify(void *obj_pool, const void *address, std::size_t length,
                    std::uint32_t space_id) {
  if (Pool *pool = pool_of(obj_pool)) pool->announce(address, length, space_id, KELP_WRITE_COUNTER);
}

void type_table_insert(void *type_table, std::uint32_t, const char *key,
                       kelp_type_record_copy *copy) {
  if (type_table == nullptr || key == nullptr) return;
  // Without memory the copy is not entered, and kelp_type_info_ptr_get reports that it is missing.
  without_exceptions([&] { static_cast<TypeTable *>(type_table)->insert(key, copy); });
}

kelp_type_record_copy *type_table_lookup(void *type_table, std::uint32_t, const char *key) {
  if (type_table == nullptr || key == nullptr) return nullptr;
  kelp_type_record_copy *copy = nullptr;
  without_exceptions([&] { copy = static_cast<const TypeTable *>(type_table)->find(key); });
  return copy;
}

// What a root and a node lie in when the tree is a table's; else an address that nothing is known
// of.
const kelp_table *table_of(const e_avl_root *root) {
  return reinterpret_cast<const kelp_table *>(reinterpret_cast<const char *>(root) -
                                              offsetof(kelp_table, avl_root));
}
kelp_record *record_of(e_avl_node *node) {
  return reinterpret_cast<kelp_record *>(reinterpret_cast<char *>(node) -
                                         offsetof(kelp_record, avl_node));
}

const Author &author_of(const Pool &pool) { return pool.handle->state->author; }

// Makes room for what follows the linking of a record: its tenant's counter and its place in the
// feed. A record for which there is none stays out of the tree.
bool before_link(Pool &pool, const e_avl_root *root, e_avl_node *node) {
  kelp_database &database = *pool.database;
  if (database.store != nullptr && database.store->holds(root) && !database.store->holds(node)) {
    bassert("a record that enters a table of a store was made under the store's write lock",
            __FILE__, __LINE__);
  }
  const std::uint16_t tenant = current_tenant();
  if (tenant == 0 && database.feeds.empty()) return true;
  auto *table = const_cast<kelp_table *>(table_of(root));
  kelp_record *record = record_of(node);
  FeedTable *feed = database.feeds.find(table);
  const bool done = without_exceptions([&] {
    if (tenant != 0 && (feed != nullptr || database.oids.find(table) != nullptr)) {
      database.tenants.expect(table, tenant);
      database.objects.watch(table);
    }
    if (feed == nullptr || feed->implicit_write_cursor == 0) return;
    database.objects.watch(record);
    database.feeds.expect(feed, record, author_of(pool));
  });
  pool.quick->last_error.refused_link = !done;
  if (done) database.feeds.record_linked(record);
  return done;
}

void after_unlink(Pool &pool, const e_avl_root *root, e_avl_node *node) {
  Feeds &feeds = pool.database->feeds;
  if (FeedTable *feed = feeds.find(table_of(root))) {
    feeds.record_left(feed, record_of(node), author_of(pool));
  }
}

std::uint32_t number_tree(Pool &pool, const e_avl_node *first) {
  store::Store &store = *pool.database->store;
  return store.is_writing() && store.holds(first) ? store.number_tree() : 0;
}

bool holds_beside(const Pool &pool, const e_avl_node *top, const e_avl_node *node) {
  const kelp_database &database = *pool.database;
  const store::Store *store = database.store.get();
  if (store != nullptr && store->holds(top) != store->holds(node)) return false;
  return database.objects.holds(top, sizeof *top);
}

}  // namespace

bool has_own_hooks(const kelp_handle_state &state) {
  const kelp_handle &handle = state.handle;
  return handle.write_notify == state.own_write_notify &&
         handle.counter_notify == state.own_counter_notify && handle.type_alloc == type_alloc &&
         handle.type_table_insert == type_table_insert &&
         handle.type_table_lookup == type_table_lookup && handle.obj_pool == &state.pool &&
         handle.type_pool == &state.pool && handle.type_table == &state.database->types;
}

void set_hooks(kelp_handle_state &state, kelp_database *database) {
  kelp_handle &handle = state.handle;
  state.pool.database = database;
  state.pool.quick = &state.quick;
  state.pool.handle = &handle;
  state.pool.before_link = before_link;
  state.pool.after_unlink = after_unlink;
  state.pool.holds_beside = holds_beside;
  if (database->store != nullptr) {
    state.pool.hear = hear_write;
    state.pool.number_tree = number_tree;
  }
  handle.type_alloc = type_alloc;
  handle.obj_alloc = obj_alloc;
  handle.obj_free = obj_free;
  handle.write_notify = state.own_write_notify = write_notify;
  handle.counter_notify = state.own_counter_notify = counter_notify;
  handle.type_table_insert = type_table_insert;
  handle.type_table_lookup = type_table_lookup;
  handle.obj_pool = &state.pool;
  handle.type_pool = &state.pool;
  handle.type_table = &database->types;
}

}  // namespace kelp
