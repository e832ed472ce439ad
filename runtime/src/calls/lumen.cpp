// The store as modules see it: declaring ranges, keys, and what lies in it. Failures are kept for
// lumen_perror, by thread.
#include <cinttypes>
#include <cstdio>

#include "base/failure.hpp"
#include "base/pool.hpp"
#include "database/database.hpp"

namespace {

thread_local kelp_error t_failure = {};

const char *name_of(const kelp::Pool *pool) { return pool->database->name.c_str(); }

// The pool, or null with the failure noted.
kelp::Pool *pool_for(void *obj_pool, const char *function) {
  kelp::Pool *pool = kelp::pool_of(obj_pool);
  if (pool == nullptr) {
    kelp::fail(&t_failure, KELP_ERR_INVALID, "%s: %s, expected the obj_pool of a handle", function,
               obj_pool == nullptr ? "a null pool" : "a pool of something else");
  }
  return pool;
}

bool in_store(const kelp::Pool *pool, const void *address, size_t length) {
  return pool->database->objects.holds(address, length) ||
         pool->database->system.holds(address, length);
}

}  // namespace

extern "C" uint32_t lumen_set_range(void *obj_pool, const void *address, size_t length,
                                    uint32_t space_id) {
  kelp::Pool *pool = pool_for(obj_pool, "lumen_set_range");
  if (pool == nullptr) return 0;
  if (pool->database->faults.strikes(KELP_FAULT_RANGE)) {
    kelp::fail(&t_failure, KELP_ERR_INVALID, "lumen_set_range: store '%s': a fault was asked for",
               name_of(pool));
    return 0;
  }
  if (!in_store(pool, address, length)) {
    kelp::fail(&t_failure, KELP_ERR_BAD_ADDRESS,
               "lumen_set_range: store '%s': %zu bytes at %p, expected a range inside one block of "
               "the store",
               name_of(pool), length, address);
    return 0;
  }
  pool->announce(address, length, space_id, KELP_WRITE_RANGE);
  return 1;
}

// What stands under a key is about to be changed, perhaps without a word.
static void save_kept(const kelp::Pool *pool, const void *pointer) {
  kelp_database &database = *pool->database;
  if (database.store != nullptr && pool->handle->db_lock_state == 2) {
    database.store->heap().save_block(pointer);
  }
}

extern "C" void *lumen_get_key(void *obj_pool, const char *key) {
  kelp::Pool *pool = pool_for(obj_pool, "lumen_get_key");
  if (pool == nullptr || key == nullptr) return nullptr;
  void *found = nullptr;
  if (!kelp::without_exceptions([&] { found = pool->database->keys.find(key); })) {
    kelp::fail(&t_failure, KELP_ERR_NO_MEMORY, "lumen_get_key: no memory");
  }
  if (found != nullptr) save_kept(pool, found);
  return found;
}

extern "C" uint32_t lumen_set_key(void *obj_pool, const char *key, void *pointer) {
  kelp::Pool *pool = pool_for(obj_pool, "lumen_set_key");
  if (pool == nullptr) return 0;
  if (key == nullptr || *key == '\0') {
    kelp::fail(&t_failure, KELP_ERR_INVALID, "lumen_set_key: store '%s': no key, expected a text",
               name_of(pool));
    return 0;
  }
  if (pool->database->store != nullptr && pool->handle->db_lock_state != 2) {
    kelp::fail(&t_failure, KELP_ERR_PERMISSION,
               "lumen_set_key: store '%s': expected a handle that holds the write lock",
               name_of(pool));
    return 0;
  }
  if (pool->database->faults.strikes(KELP_FAULT_SET_KEY)) {
    kelp::fail(&t_failure, KELP_ERR_INVALID, "lumen_set_key: store '%s': a fault was asked for",
               name_of(pool));
    return 0;
  }
  if (!kelp::without_exceptions([&] { pool->database->keys.set(key, pointer); })) {
    kelp::fail(&t_failure, KELP_ERR_NO_MEMORY, "lumen_set_key: no memory");
    return 0;
  }
  pool->database->objects.withhold(pointer);
  pool->database->system.withhold(pointer);
  return 1;
}

extern "C" uint32_t lumen_in_range(void *obj_pool, const void *pointer) {
  kelp::Pool *pool = pool_for(obj_pool, "lumen_in_range");
  if (pool == nullptr || !in_store(pool, pointer, 1)) return 0;
  if (!pool->database->keys.confirms(pointer)) return 0;
  save_kept(pool, pointer);
  return 1;
}

extern "C" void lumen_perror(void) {
  std::fprintf(stderr, "%s\n",
               t_failure.code == 0 ? "lumen: no failure on this thread" : t_failure.text);
}
