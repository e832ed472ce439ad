// Platform functions stand here under their own names, so that calls of the system's library come
// by: each is noted while a log lives, and goes on to the real one.
#include <dlfcn.h>
#include <kelp/database.h>
#include <kelp/hash.h>
#include <kelp/oid.h>
#include <kelp/primitives.h>
#include <kelp/text.h>
#include <kelp/tree.h>
#include <kelp/wire.h>
#include <kelp/xml.h>

#include <algorithm>
#include <type_traits>
#include <utility>

#include "harness/harness.hpp"
#include "harness/seen_calls.hpp"

namespace harness {

namespace {

std::vector<std::string> *noted = nullptr;

void note(const char *name) {
  if (noted != nullptr) noted->push_back(name);
}

void *next_symbol(const char *name) { return dlsym(RTLD_NEXT, name); }

// The hooks of the handle that a log watches, as they were.
kelp_handle hooks;

void *logged_alloc(void *pool, std::uint32_t space_id, std::size_t size) {
  note("obj_alloc");
  return hooks.obj_alloc(pool, space_id, size);
}
void logged_free(void *pool, std::uint32_t space_id, void *pointer) {
  note("obj_free");
  hooks.obj_free(pool, space_id, pointer);
}
void logged_write(void *pool, const void *address, std::size_t length, std::uint32_t space_id) {
  note("write_notify");
  hooks.write_notify(pool, address, length, space_id);
}
void logged_counter(void *pool, const void *address, std::size_t length, std::uint32_t space_id) {
  note("counter_notify");
  hooks.counter_notify(pool, address, length, space_id);
}

std::vector<std::string> &log() {
  static std::vector<std::string> calls;
  return calls;
}

// What Failing asked for; an empty name for nothing.
std::string failing_name;
std::uint32_t failing_code = 0;

// The error word of a call, which is its last argument.
std::uint32_t *word_in() { return nullptr; }
template <typename Last>
std::uint32_t *word_in(Last last) {
  if constexpr (std::is_same_v<Last, std::uint32_t *>) {
    return last;
  } else {
    return nullptr;
  }
}
template <typename First, typename Second, typename... Others>
std::uint32_t *word_in(First, Second second, Others... others) {
  return word_in(second, others...);
}

// A call of a platform function on its way to the real one.
template <typename Result, typename... Parameters>
struct Call {
  Call(const char *function, Result (*next)(Parameters...)) : name(function), real(next) {}
  const char *name;
  Result (*real)(Parameters...);
  Result operator()(Parameters... arguments) const {
    note(name);
    if (failing_name != name) return real(arguments...);
    std::uint32_t *word = word_in(arguments...);
    if (word != nullptr) *word = failing_code;
    if constexpr (std::is_arithmetic_v<Result>) {
      return word != nullptr ? Result{} : static_cast<Result>(failing_code);
    } else {
      return Result();
    }
  }
};

}  // namespace

CallLog::CallLog(kelp_handle *handle) : handle_(handle) {
  begin_seeing_calls();
  log().clear();
  noted = &log();
  if (handle == nullptr) return;
  hooks = *handle;
  handle->obj_alloc = logged_alloc;
  handle->obj_free = logged_free;
  handle->write_notify = logged_write;
  handle->counter_notify = logged_counter;
}

CallLog::~CallLog() {
  noted = nullptr;
  end_seeing_calls();
  if (handle_ == nullptr) return;
  handle_->obj_alloc = hooks.obj_alloc;
  handle_->obj_free = hooks.obj_free;
  handle_->write_notify = hooks.write_notify;
  handle_->counter_notify = hooks.counter_notify;
}

const std::vector<std::string> &CallLog::calls() const { return log(); }

std::size_t CallLog::count(const std::string &name) const {
  return static_cast<std::size_t>(std::count(log().begin(), log().end(), name));
}

std::vector<std::string> CallLog::only(const std::vector<std::string> &names) const {
  std::vector<std::string> result;
  for (const std::string &call : log()) {
    if (std::find(names.begin(), names.end(), call) != names.end()) result.push_back(call);
  }
  return result;
}

void CallLog::clear() { log().clear(); }

Failing::Failing(std::string name, std::uint32_t code) {
  begin_seeing_calls();
  failing_name = std::move(name);
  failing_code = code;
}

Failing::~Failing() {
  failing_name.clear();
  end_seeing_calls();
}

}  // namespace harness

#define HARNESS_INTERPOSE(result, name, parameters, arguments)                                     \
  result name parameters {                                                                         \
    static auto *const real = reinterpret_cast<result(*) parameters>(harness::next_symbol(#name)); \
    return harness::Call(#name, real) arguments;                                                   \
  }

extern "C" {
#include "harness/interposed.inc"
}
