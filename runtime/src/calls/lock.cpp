// Taking and giving up the lock of a handle's database.
#include <cerrno>

#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"
#include "database/transaction.hpp"

extern "C" int32_t kelp_lock_read(kelp_handle *handle, kelp_error *error) {
  return kelp::take_lock(handle, kelp::LockMode::read, "kelp_lock_read", error);
}

extern "C" int32_t kelp_lock_write(kelp_handle *handle, kelp_error *error) {
  return kelp::take_lock(handle, kelp::LockMode::write, "kelp_lock_write", error);
}

extern "C" int32_t kelp_unlock(kelp_handle *handle, kelp_error *error) {
  if (handle == nullptr || handle->db_lock_state == 0) {
    return kelp::fail(error, KELP_ERR_PERMISSION, "kelp_unlock: this handle holds no lock");
  }
  return kelp::end_lock(handle, kelp::Ending::commit, error);
}

extern "C" int32_t kelp_rollback(kelp_handle *handle, kelp_error *error) {
  constexpr const char *kFunction = "kelp_rollback";
  if (kelplib_database_is_write_locked(handle) == 0) {
    return kelp::fail(error, KELP_ERR_PERMISSION, "%s: this handle does not hold the write lock",
                      kFunction);
  }
  const kelp_database &database = *handle->state->database;
  if (database.store == nullptr) {
    return kelp::fail(error, ENOTSUP,
                      "%s: database '%s': a private database keeps nothing to undo writes with",
                      kFunction, database.name.c_str());
  }
  return kelp::end_lock(handle, kelp::Ending::rollback, error);
}

extern "C" uint32_t kelplib_database_is_write_locked(const kelp_handle *handle) {
  constexpr auto kWrite = static_cast<uint32_t>(kelp::LockMode::write);
  return handle != nullptr && handle->db_lock_state == kWrite ? 1 : 0;
}
