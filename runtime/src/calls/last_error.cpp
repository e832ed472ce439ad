// The last error of a handle: remembering it, and telling it in words.
#include <cinttypes>
#include <cstring>

#include "base/failure.hpp"
#include "database/current.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"

extern "C" void kelp_clear_last_error(kelp_handle *handle) {
  if (handle == nullptr) return;
  handle->state->last_error = 0;
  kelp::set_current_database(handle->state->database);
}

extern "C" void kelp_store_err(kelp_handle *handle, uint32_t code) {
  if (handle == nullptr) return;
  handle->state->last_error = code;
  kelp::set_current_database(handle->state->database);
}

extern "C" void kelp_store_epoch_err(kelp_handle *handle, uint32_t code, uint32_t *err) {
  (void)code;
  kelp::raise(handle, err, KELP_ERR_EPOCH);
}

extern "C" int32_t kelp_handle_last_error(const kelp_handle *handle, kelp_error *error) {
  if (handle == nullptr || handle->state->last_error == 0) return kelp::succeed(error);
  const auto code = static_cast<int32_t>(handle->state->last_error);
  const kelp_database *database = handle->state->database;
  if (code == KELP_ERR_EPOCH) {
    return kelp::fail(
        error, code,
        "handle on database '%s': variant mismatch: the object or the handle's domain "
        "holds a lower variant than the field or value needs",
        database->name.c_str());
  }
  const kelp::Arena::Refusal refusal = database->objects.last_refusal();
  if (code == KELP_ERR_NO_MEMORY && refusal.asked_any) {
    if (refusal.limit == 0) {
      return kelp::fail(error, code,
                        "database '%s': no memory for %zu bytes: %" PRIu64
                        " bytes used, no limit set; the system refused",
                        database->name.c_str(), refusal.asked, refusal.used);
    }
    return kelp::fail(error, code,
                      "database '%s' is full: %zu bytes asked for, %" PRIu64
                      " bytes used of a limit of %" PRIu64
                      "; kelp_database_set_memory_limit raises it",
                      database->name.c_str(), refusal.asked, refusal.used, refusal.limit);
  }
  return kelp::fail(error, code, "handle on database '%s': %s", database->name.c_str(),
                    std::strerror(code));
}
