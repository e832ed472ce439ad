// The hooks behind a handle's function pointers.
#include "database/hooks.hpp"

#include "base/failure.hpp"
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

}  // namespace

void set_hooks(kelp_handle_state &state, kelp_database *database) {
  kelp_handle &handle = state.handle;
  state.pool.database = database;
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
