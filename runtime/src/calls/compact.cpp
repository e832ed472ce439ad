// Giving the disk back what a store does not use.
#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"
#include "database/transaction.hpp"

extern "C" int32_t kelp_database_compact(kelp_handle *handle, kelp_compaction *result,
                                         kelp_error *error) {
  constexpr const char *kFunction = "kelp_database_compact";
  kelp_compaction unwanted;
  kelp_compaction &bytes = result == nullptr ? unwanted : *result;
  bytes = {};
  if (handle == nullptr || handle->state->database->store == nullptr) {
    return kelp::fail(error, KELP_ERR_INVALID, "%s: expected a handle of a database in a file",
                      kFunction);
  }
  kelp::store::Store &store = *handle->state->database->store;
  if (const auto code = kelp::take_lock(handle, kelp::LockMode::write, kFunction, error)) {
    return code;
  }
  bytes.before = bytes.after = store.bytes_on_disk();
  kelp_error reason;
  const int32_t trimmed = store.trim(&reason);
  if (trimmed != 0) {
    kelp::end_lock(handle, kelp::Ending::rollback, nullptr);
    return kelp::fail(error, trimmed, "%s", reason.text);
  }
  if (const auto code = kelp::end_lock(handle, kelp::Ending::commit, error)) return code;
  // What that committed to be free is given back by a transaction behind it, which changes nothing:
  // a commit that fails would have needed it.
  if (const auto code = kelp::take_lock(handle, kelp::LockMode::write, kFunction, error)) {
    return code;
  }
  store.give_back();
  bytes.after = store.bytes_on_disk();
  return kelp::end_lock(handle, kelp::Ending::commit, error);
}
