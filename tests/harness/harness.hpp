// What the tests of the system share: a database with a handle that must end empty, the ranges that
// a call announces, the platform calls that it makes in order, and the messages that it traces.
#pragma once

#include <gtest/gtest.h>
#include <kelp/core.h>
#include <kelp/embed.h>
#include <kelp/trace.h>

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "module/message_text.hpp"

namespace harness {

struct StoreOptions {
  std::uint32_t tracking = KELP_TRACKING_ABSENT;
  bool shared_tinfo = false;
  bool marked_shared = false;
  bool quiet_insert = false;
  bool collector_context = false;
  std::uint32_t work_space_size = 256 * 1024;
  // Allocations that may be live at the end: what the rules themselves leave behind.
  std::uint64_t may_leave = 0;
};

// A private database and one handle on it. At its end nothing may be allocated.
class Store {
 public:
  explicit Store(StoreOptions options = {});
  ~Store();
  Store(const Store &) = delete;
  Store &operator=(const Store &) = delete;

  kelp_handle *handle() const { return handle_; }
  operator kelp_handle *() const { return handle_; }
  kelp_database *database() const { return database_; }

  // A further handle on the same database; it ends with the store.
  kelp_handle *another_handle(StoreOptions options);

  static constexpr std::uint32_t space = 7;
  // Calls an exported function in that space, with the handle before the arguments and the error
  // word behind them where it takes one.
  template <typename Function, typename... Arguments>
  auto operator()(Function *function, Arguments &&...arguments) {
    if constexpr (std::is_invocable_v<Function *, kelp_handle *, std::uint32_t, Arguments...,
                                      std::uint32_t *>) {
      return function(handle_, space, std::forward<Arguments>(arguments)..., &err);
    } else {
      return function(handle_, space, std::forward<Arguments>(arguments)...);
    }
  }
  // Takes the failure that a call left in the word and as the handle's last error.
  void expect_failure(std::uint32_t code) {
    EXPECT_EQ(err, code);
    EXPECT_EQ(last_error(), static_cast<std::int32_t>(code));
    err = 0;
  }

  void set_variant(const char *type_name, std::int32_t variant);
  std::int32_t last_error() const { return kelp_handle_last_error(handle_, nullptr); }
  std::uint64_t live_allocations() const;
  // Fails the n-th allocation from now, counted from 0.
  void fail_allocation(std::int64_t n) { kelp_database_fail_allocation_after(database_, n); }

  // The word that tests pass last. It must be 0 again, or never set, unless the test says so.
  std::uint32_t err = 0;

 private:
  StoreOptions options_;
  kelp_database *database_ = nullptr;
  kelp_handle *handle_ = nullptr;
  std::vector<kelp_handle *> others_;
};

// An object that is made by a function of its type and ends with its scope by another.
template <typename Type>
class Owned {
 public:
  using Create = Type *(kelp_handle *, std::uint32_t);
  using Destroy = void(kelp_handle *, std::uint32_t, Type *);
  Owned(kelp_handle *handle, Create *create, Destroy *destroy)
      : handle_(handle), object_(create(handle, 0)), destroy_(destroy) {}
  ~Owned() { destroy_(handle_, 0, object_); }
  Owned(const Owned &) = delete;
  Owned &operator=(const Owned &) = delete;
  operator Type *() const { return object_; }
  Type *get() const { return object_; }

 private:
  kelp_handle *handle_;
  Type *object_;
  Destroy *destroy_;
};
#define OWNED(handle, type, name) harness::Owned name(handle, type##_create, type##_destroy)

// A store with one object in it, made at the variant that the domain then gives to the type.
template <typename Type>
class Single {
 public:
  Single(typename Owned<Type>::Create *create, typename Owned<Type>::Destroy *destroy,
         StoreOptions options = {}, const char *type = nullptr, std::int32_t variant = 0)
      : store(options), destroy_(destroy) {
    if (type != nullptr) store.set_variant(type, variant);
    object = create(store, 0);
  }
  ~Single() { destroy_(store, 0, object); }
  Single(const Single &) = delete;
  Single &operator=(const Single &) = delete;

  // Calls an exported function with the object as the first argument.
  template <typename Function, typename... Arguments>
  auto operator()(Function *function, Arguments &&...arguments) {
    return store(function, object, std::forward<Arguments>(arguments)...);
  }
  void expect_failure(std::uint32_t code) { store.expect_failure(code); }

  Store store;
  Type *object;

 private:
  typename Owned<Type>::Destroy *destroy_;
};

// One announced range, relative to an object when it lies in it.
struct Range {
  const void *address;
  std::size_t length;
  std::uint32_t space_id;
  std::uint32_t origin;
  std::ptrdiff_t offset_in(const void *object) const {
    return static_cast<const char *>(address) - static_cast<const char *>(object);
  }
};

// The writes announced through a handle while this lives.
class WriteWatch {
 public:
  explicit WriteWatch(kelp_handle *handle);
  ~WriteWatch();
  // Those that modules announce by write_notify, in order.
  std::vector<Range> writes() const { return of_origin(KELP_WRITE_MODULE); }
  std::vector<Range> of_origin(std::uint32_t origin) const;
  const std::vector<Range> &all() const { return ranges_; }
  void clear() { ranges_.clear(); }

 private:
  kelp_handle *handle_;
  std::vector<Range> ranges_;
};

// The platform functions that are called while this lives, by name, in order. Handle hooks appear
// as obj_alloc, obj_free, write_notify and counter_notify when a handle is given.
class CallLog {
 public:
  explicit CallLog(kelp_handle *handle = nullptr);
  ~CallLog();
  const std::vector<std::string> &calls() const;
  std::size_t count(const std::string &name) const;
  // The calls of the named functions alone.
  std::vector<std::string> only(const std::vector<std::string> &names) const;
  void clear();

 private:
  kelp_handle *handle_;
};

// While this lives, a platform function that the call log sees fails instead of doing anything: its
// error word becomes the code and its result 0 or null; one without an error word gives the code.
class Failing {
 public:
  Failing(std::string name, std::uint32_t code);
  ~Failing();
};

// One traced message, with its text filled in.
struct Traced {
  std::uint32_t level;  // 0, 3, 6 or 7
  std::string form;     // the stored text, conversions and all
  std::string text;     // with the arguments in it
  bool is_table_side;
  std::uint32_t index;
  bool operator==(const Traced &) const = default;
};

// The messages of the module that go out while this lives, all levels.
class TraceLog {
 public:
  TraceLog();
  ~TraceLog();
  const std::vector<Traced> &messages() const { return messages_; }
  std::vector<std::string> texts() const;
  // True when a message of this text went out at this level, once or more.
  bool has(std::uint32_t level, const std::string &text) const;
  bool empty() const { return messages_.empty(); }
  void clear() { messages_.clear(); }

 private:
  std::vector<Traced> messages_;
};

// An exported function of the system by its composed name; fails the test when there is none.
void *exported(const std::string &name);
template <typename Function>
Function *function(const std::string &name) {
  return reinterpret_cast<Function *>(exported(name));
}
bool is_exported(const std::string &name);

// The statement must abort with a fatal message of this text, given as a regular expression.
#define EXPECT_FATAL(statement, text)  \
  EXPECT_DEATH(                        \
      {                                \
        harness::FatalText fatal_text; \
        statement;                     \
      },                               \
      text)

// While this lives, the line that the runtime writes about a fatal message holds its text.
class FatalText {
 public:
  FatalText();
  ~FatalText();
};

}  // namespace harness
