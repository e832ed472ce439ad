// The hooks behind a handle's function pointers.
#include "database/hooks.hpp"

#include <cstddef>

#include "base/failure.hpp"
#include "database/current.hpp"
#include "database/database.hpp"

namespace kelp {

namespace {

void *allocate(Pool *pool, Arena &memory, std::size_t size) {
  void *block = nullptr;
  if (pool->database->faults.strikes(KELP_FAULT_ALLOCATION)) {
    memory.note_refusal(size);
  } else {
    block = memory.allocate(size);
  }
  pool->refused |= block == nullptr;
  return block;
}

void *type_alloc(void *type_pool, std::uint32_t, std::size_t size) {
  Pool *pool = pool_of(type_pool);
  return pool == nullptr ? nullptr : allocate(pool, pool->database->system, size);
}

void *obj_alloc(void *obj_pool, std::uint32_t, std::size_t size) {
  Pool *pool = pool_of(obj_pool);
  return pool == nullptr ? nullptr : allocate(pool, pool->database->objects, size);
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

// Makes room for what follows the linking of a record: its tenant's counter and its place in the
// feed. A record for which there is none stays out of the tree.
bool before_link(Pool &pool, const e_avl_root *root, e_avl_node *node) {
  kelp_database &database = *pool.database;
  const std::uint16_t tenant = current_tenant();
  if (tenant == 0 && database.tables.empty()) return true;
  auto *table = const_cast<kelp_table *>(table_of(root));
  kelp_record *record = record_of(node);
  TableState *state = database.tables.find(table);
  const bool done = without_exceptions([&] {
    if (state == nullptr) {
      if (tenant == 0 || database.oids.find(table) == nullptr) return;
      state = database.tables.make(table);
      database.objects.watch(table);
    }
    if (tenant != 0) state->counts.try_emplace({tenant, record->src}, 0);
    if (state->feed == nullptr || !state->implicit_write_cursor) return;
    database.tables.note_record(record, state->feed);
    database.objects.watch(record);
    state->feed->expect(table, record);
  });
  pool.refused_link = !done;
  if (done) database.tables.record_linked(record);
  return done;
}

void after_unlink(Pool &pool, const e_avl_root *root, e_avl_node *node) {
  const TableState *state = pool.database->tables.find(table_of(root));
  if (state != nullptr && state->feed != nullptr) state->feed->record_left(record_of(node));
}

}  // namespace

void set_hooks(kelp_handle_state &state, kelp_database *database) {
  kelp_handle &handle = state.handle;
  state.pool.database = database;
  state.pool.before_link = before_link;
  state.pool.after_unlink = after_unlink;
  handle.type_alloc = type_alloc;
  handle.obj_alloc = obj_alloc;
  handle.obj_free = obj_free;
  handle.write_notify = write_notify;
  handle.counter_notify = counter_notify;
  handle.type_table_insert = type_table_insert;
  handle.type_table_lookup = type_table_lookup;
  handle.obj_pool = &state.pool;
  handle.type_pool = &state.pool;
  handle.type_table = &database->types;
}

}  // namespace kelp
