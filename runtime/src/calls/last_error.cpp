// The last error of a handle: remembering it, and telling it in words.
#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "base/failure.hpp"
#include "database/current.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"

namespace {

// A create that finds no memory gives null and stores no code; what the allocator refused since the
// handle forgot its last error says why all the same.
std::int32_t last_code(const kelp_handle *handle) {
  if (handle == nullptr) return 0;
  const kelp_quick_error &last = handle->state->quick.last_error;
  if (last.code == 0 && last.refused) return KELP_ERR_NO_MEMORY;
  return static_cast<std::int32_t>(last.code);
}

}  // namespace

extern "C" void kelp_clear_last_error(kelp_handle *handle) {
  if (handle != nullptr)
    kelp::quick::forget_error(handle->state->quick, kelp::database_of(handle).serial);
}

extern "C" void kelp_store_err(kelp_handle *handle, uint32_t code) {
  if (handle == nullptr) return;
  handle->state->quick.last_error.code = code;
  handle->state->error_subject[0] = '\0';
  handle->state->error_text[0] = '\0';
  if (handle->cr_create != 0 && handle->cr_err == 0) handle->cr_err = code;
  kelp::set_current_database(handle->state->database);
}

extern "C" void kelp_store_epoch_err(kelp_handle *handle, uint32_t code, uint32_t *err) {
  (void)code;
  if (err != nullptr) *err = KELP_ERR_EPOCH;
  kelp_store_err(handle, KELP_ERR_EPOCH);
}

extern "C" void kelp_describe_err(kelp_handle *handle, const char *subject, const char *text) {
  if (handle == nullptr) return;
  kelp_handle_state &state = *handle->state;
  const auto add = [](char *words, std::size_t size, const char *more) {
    if (*words != '\0' || more == nullptr) return;
    const std::size_t length = strnlen(more, size - 1);
    std::memcpy(words, more, length);
    words[length] = '\0';
  };
  add(state.error_subject, sizeof state.error_subject, subject);
  add(state.error_text, sizeof state.error_text, text);
}

namespace {

// What the runtime knows of the code itself.
std::int32_t explain(const kelp_handle *handle, std::int32_t code, kelp_error *error) {
  const kelp_database *database = handle->state->database;
  const bool is_described = handle->state->error_text[0] != '\0';
  if (code == KELP_ERR_EPOCH && !is_described) {
    return kelp::fail(
        error, code,
        "handle on database '%s': variant mismatch: the object or the handle's domain "
        "holds a lower variant than the field or value needs",
        database->name.c_str());
  }
  if (code == KELP_ERR_EXISTS && handle->state->quick.last_error.refused_link) {
    return kelp::fail(
        error, code,
        "handle on database '%s': no memory to follow the record in its table: it was "
        "not inserted, and %d stands for that",
        database->name.c_str(), code);
  }
  const kelp::ObjectMemory::Refusal refusal = database->objects.last_refusal();
  if (code == KELP_ERR_NO_MEMORY && database->store != nullptr && handle->db_lock_state == 0) {
    return kelp::fail(error, code,
                      "store '%s': no memory for %zu bytes without a lock: objects of a store are "
                      "made under its write lock, keys and copies for a reader under the read lock",
                      database->name.c_str(), refusal.asked);
  }
  if (code == KELP_ERR_NO_MEMORY && !refusal.reason.empty()) {
    return kelp::fail(error, code, "%s", refusal.reason.c_str());
  }
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
  return kelp::fail(error, code, "handle on database '%s'%s%s", database->name.c_str(),
                    is_described ? "" : ": ", is_described ? "" : std::strerror(code));
}

// Puts the handle's words in front of the text, which is cut at its end.
void put_before(kelp_error *error, const char *subject, const char *text) {
  char words[sizeof error->text];
  auto add = [&, used = std::size_t{0}](const char *more, const char *behind) mutable {
    for (const char *part : {more, *more == '\0' ? "" : behind}) {
      const std::size_t length = std::min(std::strlen(part), sizeof words - 1 - used);
      std::memcpy(words + used, part, length);
      used += length;
      words[used] = '\0';
    }
  };
  add(subject, ": ");
  add(text, ": ");
  add(error->text, "");
  std::memcpy(error->text, words, sizeof words);
}

}  // namespace

extern "C" int32_t kelp_handle_last_error(const kelp_handle *handle, kelp_error *error) {
  const int32_t code = last_code(handle);
  if (code == 0) return kelp::succeed(error);
  explain(handle, code, error);
  const kelp_handle_state &state = *handle->state;
  const bool is_told = state.quick.last_error.code != 0;
  if (error != nullptr && is_told) put_before(error, state.error_subject, state.error_text);
  return code;
}
