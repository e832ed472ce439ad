// Taking and giving up the lock of a handle's database.
#include "base/failure.hpp"
#include "database/current.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"

namespace kelp {

namespace {

constexpr std::int32_t kDeadlock = 35;

std::int32_t take_lock(kelp_handle *handle, LockMode mode, const char *function,
                       kelp_error *error) {
  if (handle == nullptr) return fail(error, KELP_ERR_INVALID, "%s: the handle is null", function);
  kelp_database *database = handle->state->database;
  DatabaseLock::Outcome outcome{};
  if (!without_exceptions([&] { outcome = database->lock.take(handle, mode); })) {
    return fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", function);
  }
  if (outcome == DatabaseLock::Outcome::held_by_handle) {
    return fail(error, kDeadlock, "%s: database '%s': this handle holds the %s lock already",
                function, database->name.c_str(), handle->db_lock_state == 2 ? "write" : "read");
  }
  if (outcome == DatabaseLock::Outcome::held_by_thread) {
    return fail(error, kDeadlock,
                "%s: database '%s': the calling thread holds the lock through another handle and "
                "would wait for itself",
                function, database->name.c_str());
  }
  handle->db_lock_state = static_cast<std::uint32_t>(mode);
  handle->hd_mapped = database->distances.empty() ? 0 : 1;
  set_current_database(database);
  if (handle->state->tenant >= 0)
    set_current_tenant(static_cast<std::uint16_t>(handle->state->tenant));
  return succeed(error);
}

}  // namespace

}  // namespace kelp

extern "C" int32_t kelp_lock_read(kelp_handle *handle, kelp_error *error) {
  return kelp::take_lock(handle, kelp::LockMode::read, "kelp_lock_read", error);
}

extern "C" int32_t kelp_lock_write(kelp_handle *handle, kelp_error *error) {
  return kelp::take_lock(handle, kelp::LockMode::write, "kelp_lock_write", error);
}

extern "C" int32_t kelp_unlock(kelp_handle *handle, kelp_error *error) {
  if (handle == nullptr || !handle->state->database->lock.give_up(handle)) {
    return kelp::fail(error, KELP_ERR_PERMISSION, "kelp_unlock: this handle holds no lock");
  }
  handle->db_lock_state = 0;
  return kelp::succeed(error);
}

extern "C" uint32_t kelplib_database_is_write_locked(const kelp_handle *handle) {
  constexpr auto kWrite = static_cast<uint32_t>(kelp::LockMode::write);
  return handle != nullptr && handle->db_lock_state == kWrite ? 1 : 0;
}
