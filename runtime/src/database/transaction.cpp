// Taking and ending the lock: first among the threads of the process, then among processes.
#include "database/transaction.hpp"

#include <cerrno>
#include <cinttypes>
#include <string>

#include "base/failure.hpp"
#include "database/current.hpp"
#include "database/database.hpp"
#include "database/editions.hpp"
#include "database/handle_state.hpp"

namespace kelp {

namespace {

// Every object is read by its type record, and the schema is held against them.
std::int32_t check_types(const kelp_database &database, kelp_error *error) {
  std::string first;
  const std::uint64_t findings =
      store::check_types(database.store->view(), [&](const std::string &text) {
        if (first.empty()) first = text;
      });
  if (findings == 0) return 0;
  return fail(error, EIO, "store '%s': %" PRIu64 " things in its types are damaged, the first: %s",
              database.name.c_str(), findings, first.c_str());
}

// What the store's types are to this process.
std::int32_t meet_types(kelp_handle *handle, kelp_error *error) {
  kelp_database &database = *handle->state->database;
  std::int32_t code = 0;
  const bool done = without_exceptions([&] {
    // At the first lock, since opening waits for no writer.
    if (!database.schema_checked.load()) {
      code = check_types(database, error);
      if (code == 0) code = check_schema(database, error);
      if (code != 0) return;
      database.schema_checked.store(true);
    }
    database.editions.look(database.types, database.store->head());
    code = database.editions.join(handle, error);
  });
  if (done) return code;
  return fail(error, KELP_ERR_NO_MEMORY, "store '%s': no memory", database.name.c_str());
}

// The store's lock; nested says that the thread reads already.
std::int32_t take_store(kelp_handle *handle, LockMode mode, bool nested, kelp_error *error) {
  kelp_database &database = *handle->state->database;
  store::Store &store = *database.store;
  std::int32_t code =
      mode == LockMode::write ? store.lock_write(error) : store.lock_read(nested, error);
  if (code != 0) return code;
  if ((code = meet_types(handle, error)) != 0) {
    mode == LockMode::write ? store.rollback() : store.unlock_read();
    return code;
  }
  // What others committed may have ended records that readers were given.
  const std::uint64_t sequence = store.head().sequence;
  if (database.seen_sequence.exchange(sequence) != sequence) database.cache.clear();
  return 0;
}

}  // namespace

std::int32_t take_lock(kelp_handle *handle, LockMode mode, const char *function,
                       kelp_error *error) {
  if (handle == nullptr) return fail(error, KELP_ERR_INVALID, "%s: the handle is null", function);
  kelp_database *database = handle->state->database;
  // A forked child has the state of its parent's locks, of which none is its own.
  if (database->store != nullptr) {
    if (const auto code = database->store->check_process(error)) return code;
  }
  const std::uint32_t wait_ms =
      database->store == nullptr ? UINT32_MAX : database->store->wait_ms();
  DatabaseLock::Outcome outcome{};
  bool nested = false;
  if (!without_exceptions([&] { outcome = database->lock.take(handle, mode, wait_ms, &nested); })) {
    return fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", function);
  }
  if (outcome == DatabaseLock::Outcome::held_by_handle) {
    return fail(error, KELP_ERR_DEADLOCK,
                "%s: database '%s': this handle holds the %s lock already", function,
                database->name.c_str(), handle->db_lock_state == 2 ? "write" : "read");
  }
  if (outcome == DatabaseLock::Outcome::held_by_thread) {
    return fail(error, KELP_ERR_DEADLOCK,
                "%s: database '%s': the calling thread holds the lock through another handle and "
                "would wait for itself",
                function, database->name.c_str());
  }
  if (outcome == DatabaseLock::Outcome::lost) {
    return fail(error, KELP_ERR_PERMISSION,
                "%s: database '%s': another thread was writing when this process was forked, and "
                "may have changed it half; open a database of this process",
                function, database->name.c_str());
  }
  if (outcome == DatabaseLock::Outcome::timed_out) {
    return fail(error, ETIMEDOUT,
                "%s: store '%s': another thread of this process holds the lock; the wait is over",
                function, database->name.c_str());
  }
  if (database->store != nullptr) {
    if (const auto code = take_store(handle, mode, nested, error)) {
      database->lock.give_up(handle);
      return code;
    }
  }
  handle->db_lock_state = static_cast<std::uint32_t>(mode);
  handle->state->forget_put_by();
  handle->state->heard = database->feeds.commits();
  handle->hd_mapped = database->distances.empty() ? 0 : 1;
  set_current_database(database);
  if (handle->state->tenant >= 0)
    set_current_tenant(static_cast<std::uint16_t>(handle->state->tenant));
  return succeed(error);
}

std::int32_t end_lock(kelp_handle *handle, Ending ending, kelp_error *error) {
  kelp_database &database = *handle->state->database;
  std::int32_t code = succeed(error);
  if (database.store != nullptr) {
    store::Store &store = *database.store;
    if ((code = store.check_process(error)) != 0) {
      // The lock is the parent's, and stays with it.
    } else if (handle->db_lock_state == static_cast<std::uint32_t>(LockMode::read)) {
      store.unlock_read();
    } else if (ending == Ending::rollback) {
      store.rollback();
    } else {
      database.editions.check_moved(store);
      code = store.commit(error);
      // Nobody else's commit can have been heard of since the lock was taken.
      if (store.was_announced()) ++handle->state->heard;
      if (code == 0) database.seen_sequence.store(store.committed());
    }
  }
  if (database.store == nullptr &&
      handle->db_lock_state == static_cast<std::uint32_t>(LockMode::write)) {
    database.feeds.end_transaction();
    handle->state->heard = database.feeds.commits();
  }
  handle->db_lock_state = 0;
  handle->state->forget_put_by();
  database.lock.give_up(handle);
  return code;
}

void give_up_lock(kelp_handle *handle) {
  if (handle->db_lock_state != 0) end_lock(handle, Ending::rollback, nullptr);
}

}  // namespace kelp
