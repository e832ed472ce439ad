// Making and ending handles: options, work space and write observer.
#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "base/failure.hpp"
#include "database/current.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"
#include "database/hooks.hpp"
#include "database/quick.hpp"
#include "database/transaction.hpp"
#include "kelp/core.h"

namespace kelp {

namespace {

constexpr std::uint32_t kDefaultWorkSpace = 256 * 1024;

void fill_in(kelp_handle_state &state, kelp_database *database,
             const kelp_handle_options &options) {
  kelp_handle &handle = state.handle;
  state.database = database;
  set_hooks(state, database);
  state.tenant = options.tenant;
  state.work_space_size = options.work_space_size;
  handle.shared_tinfo = database->shared_tinfo ? 1 : 0;
  handle.domain.variants = &state.domain;
  handle.cr_space_id = options.space_id;
  if (options.state_tracking != KELP_TRACKING_ABSENT) {
    state.sttr.sttr_mode =
        options.state_tracking == KELP_TRACKING_ON ? STTR_MODE_ON : STTR_MODE_OFF;
    handle.sttr = &state.sttr;
  }
  handle.hd_mapped = database->distances.empty() ? 0 : 1;
  handle.db_name = database->name.c_str();
  handle.collector_context = options.collector_context;
  handle.quiet_insert = options.quiet_insert;
  handle.peer_stamp = options.peer_stamp;
  handle.state = &state;
  if (are_own_functions()) handle.quick = quick::word_of(database->serial);
  settle_quick(state);
  std::uint8_t number[16];
  make_identity(number);
  std::memcpy(&state.author.handle, number, sizeof state.author.handle);
}

// 0 when the options can be followed, else the code that error got.
std::int32_t check_options(const kelp_handle_options &options, const char *function,
                           kelp_error *error) {
  if (options.struct_size != sizeof options) {
    return fail(error, KELP_ERR_INVALID,
                "%s: options of %zu bytes, expected %zu; kelp_handle_options_init sets this",
                function, options.struct_size, sizeof options);
  }
  if (options.state_tracking > KELP_TRACKING_OFF) {
    return fail(error, KELP_ERR_INVALID, "%s: state tracking %u, expected absent, on or off",
                function, options.state_tracking);
  }
  if (options.tenant < KELP_TENANT_UNCHANGED || options.tenant > UINT16_MAX) {
    return fail(error, KELP_ERR_INVALID,
                "%s: tenant %d, expected 0 to 65535 or KELP_TENANT_UNCHANGED", function,
                options.tenant);
  }
  return 0;
}

}  // namespace

}  // namespace kelp

extern "C" void kelp_handle_options_init(kelp_handle_options *options) {
  if (options == nullptr) return;
  *options = {};
  options->struct_size = sizeof *options;
  options->tenant = KELP_TENANT_UNCHANGED;
  options->work_space_size = kelp::kDefaultWorkSpace;
}

extern "C" kelp_handle *kelp_handle_create(kelp_database *database,
                                           const kelp_handle_options *options, kelp_error *error) {
  constexpr const char *kFunction = "kelp_handle_create";
  if (database == nullptr) {
    kelp::fail(error, KELP_ERR_INVALID, "%s: the database is null", kFunction);
    return nullptr;
  }
  kelp_handle_options defaults;
  kelp_handle_options_init(&defaults);
  const kelp_handle_options &wanted = options == nullptr ? defaults : *options;
  if (kelp::check_options(wanted, kFunction, error) != 0) return nullptr;
  std::unique_ptr<kelp_handle_state> state;
  const bool done = kelp::without_exceptions([&] {
    state = std::make_unique<kelp_handle_state>();
    kelp::fill_in(*state, database, wanted);
    const std::lock_guard lock(database->handles_mutex);
    database->handles.push_back(&state->handle);
  });
  if (!done) {
    kelp::fail(error, KELP_ERR_NO_MEMORY, "%s: database '%s': no memory", kFunction,
               database->name.c_str());
    return nullptr;
  }
  kelp::set_current_database(database);
  if (state->tenant >= 0) kelp::set_current_tenant(static_cast<uint16_t>(state->tenant));
  kelp::succeed(error);
  return &state.release()->handle;
}

extern "C" void kelp_handle_destroy(kelp_handle *handle) {
  if (handle == nullptr) return;
  kelp_database *database = handle->state->database;
  kelp::give_up_lock(handle);
  {
    const std::lock_guard lock(database->handles_mutex);
    std::erase(database->handles, handle);
  }
  delete handle->state;
}

extern "C" kelp_database *kelp_handle_database(const kelp_handle *handle) {
  return handle == nullptr ? nullptr : handle->state->database;
}

extern "C" void kelplib_get_handle_ws(kelp_handle *handle, void **buffer, uint32_t *size,
                                      uint32_t *err) {
  if (buffer != nullptr) *buffer = nullptr;
  if (size != nullptr) *size = 0;
  if (kelp::is_set(err)) return;
  if (handle == nullptr || buffer == nullptr || size == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return;
  }
  kelp_handle_state &state = *handle->state;
  if (state.work_space == nullptr) {
    state.work_space.reset(new (std::nothrow) std::byte[state.work_space_size]);
    if (state.work_space == nullptr) {
      kelp::raise(handle, err, KELP_ERR_NO_MEMORY);
      return;
    }
  }
  *buffer = state.work_space.get();
  *size = state.work_space_size;
}

extern "C" void kelp_handle_set_write_observer(kelp_handle *handle, kelp_write_observer observer,
                                               void *context) {
  if (handle == nullptr) return;
  handle->state->pool.observer = observer;
  handle->state->pool.observer_context = context;
  kelp::settle_quick(*handle->state);
}

extern "C" void kelp_handle_set_inline(kelp_handle *handle, uint32_t on) {
  if (handle != nullptr)
    handle->quick = kelp::quick::word_of(on != 0 ? kelp::database_of(handle).serial : 0);
}

extern "C" uint64_t kelp_handle_write_count(const kelp_handle *handle, uint32_t origin) {
  if (handle == nullptr || origin > KELP_WRITE_RANGE) return 0;
  return handle->state->quick.write_counts[origin];
}
