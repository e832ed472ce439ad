// Databases, sessions and locks, and what becomes of failures. A session is a handle with a word
// for errors. It throws a failure, or keeps the first one and lets everything after it do nothing,
// as the C functions do with a word that is set; what is called is the same in both.
//
// A session, and all that was made through it, is used by one thread at a time. Nothing here takes
// a lock but the two locks below.
#pragma once

#include <kelp/embed.h>

#include <cstdint>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace ospf_harbor {

// Why a call failed: an errno value and a sentence that names the type and field, or the table and
// key, what was found and what was expected.
class failure : public std::runtime_error {
 public:
  failure(int code, const std::string &text) : std::runtime_error(text), code_(code) {}
  explicit failure(const kelp_error &error) : failure(error.code, error.text) {}
  int code() const noexcept { return code_; }

 private:
  int code_;
};

enum class on_failure {
  throws,  // every failure, as a failure
  keeps    // the first one, for session::first_failure(); later calls do nothing
};

// A database, closed with it. Sessions on it end first: a database with open ones stays open.
class database {
 public:
  // In the memory of this process. Throws failure.
  explicit database(const char *name, const kelp_database_options *options = nullptr) {
    kelp_error error{};
    database_ = kelp_database_open_private(name, options, &error);
    if (database_ == nullptr) throw failure(error);
  }
  // In a file, which processes share. Throws failure.
  static database in_file(const char *path, const kelp_store_options *options = nullptr) {
    kelp_error error{};
    kelp_database *opened = kelp_database_open_file(path, options, &error);
    if (opened == nullptr) throw failure(error);
    return database(opened);
  }
  database(database &&other) noexcept : database_(std::exchange(other.database_, nullptr)) {}
  database &operator=(database &&other) noexcept {
    std::swap(database_, other.database_);
    return *this;
  }
  ~database() { kelp_database_close(database_, nullptr); }

  // Closes it and gives what was left in it, as a sentence; empty when nothing was. Throws failure,
  // and is open then.
  std::string close() {
    kelp_error error{};
    if (kelp_database_close(database_, &error) != 0) throw failure(error);
    database_ = nullptr;
    return error.text;
  }
  kelp_database *get() const noexcept { return database_; }

 private:
  explicit database(kelp_database *opened) : database_(opened) {}

  kelp_database *database_;
};

// A handle on a database. Objects, rows and tables hold its address, so it does not move.
class session {
 public:
  explicit session(const database &on, on_failure then = on_failure::throws,
                   const kelp_handle_options *options = nullptr)
      : throws_(then == on_failure::throws) {
    kelp_error error{};
    handle_ = kelp_handle_create(on.get(), options, &error);
    if (handle_ == nullptr) throw failure(error);
  }
  session(const session &) = delete;
  session &operator=(const session &) = delete;
  ~session() { kelp_handle_destroy(handle_); }

  kelp_handle *handle() const noexcept { return handle_; }
  bool ok() const noexcept { return word_ == 0; }
  // Of a session that keeps failures: the first one since the last forget().
  const std::optional<failure> &first_failure() const noexcept { return first_; }
  void forget() {
    word_ = 0;
    first_.reset();
  }

  // Calls a function that takes a handle and a space first and an error word last.
  template <auto function, typename... Arguments>
  auto call(Arguments... arguments) {
    using Result = decltype(function(handle_, 0, arguments..., &word_));
    if constexpr (std::is_void_v<Result>) {
      function(handle_, 0, arguments..., &word_);
      if (word_ != 0) [[unlikely]]
        failed();
    } else {
      const Result result = function(handle_, 0, arguments..., &word_);
      if (word_ != 0) [[unlikely]]
        failed();
      return result;
    }
  }

  // The same for one without a word, which gives null when it fails. Not called in a session that
  // has kept a failure.
  template <auto function>
  auto make() -> decltype(function(handle(), 0)) {
    if (word_ != 0) return nullptr;
    const auto made = function(handle_, 0);
    if (made == nullptr) [[unlikely]]
      fail_made_nothing();
    return made;
  }
  // Fails as one does that gave null and no code: with the code of the handle, or for want of
  // memory.
  void fail_made_nothing() {
    const std::int32_t code = kelp_handle_last_error(handle_, nullptr);
    fail(static_cast<std::uint32_t>(code != 0 ? code : KELP_ERR_NO_MEMORY), {});
  }

  // Fails with that code and, unless the text is empty, that text; else with what the library says.
  void fail(std::uint32_t code, const std::string &text) {
    word_ = code;
    failed(text);
  }

 private:
  [[gnu::noinline, gnu::cold]] void failed(const std::string &text = {}) {
    if (!throws_ && first_) return;
    kelp_error error{};
    if (text.empty()) kelp_handle_last_error(handle_, &error);
    failure why(static_cast<int>(word_), !text.empty() ? text
                                         : error.text[0] != '\0'
                                             ? error.text
                                             : "error " + std::to_string(word_));
    if (!throws_) {
      first_ = std::move(why);
      return;
    }
    word_ = 0;
    throw why;
  }

  kelp_handle *handle_;
  std::uint32_t word_ = 0;
  bool throws_;
  std::optional<failure> first_;
};

// The read lock of a session's database, for as long as it lives. Throws failure.
class read_lock {
 public:
  explicit read_lock(session &of) : session_(of) {
    kelp_error error{};
    if (kelp_lock_read(of.handle(), &error) != 0) throw failure(error);
  }
  read_lock(const read_lock &) = delete;
  read_lock &operator=(const read_lock &) = delete;
  ~read_lock() { kelp_unlock(session_.handle(), nullptr); }

 private:
  session &session_;
};

// The write lock. commit() ends it. Without that a store goes back to where it was, with all that
// was made since; a private database, which cannot, keeps what was done. Throws failure.
class write_lock {
 public:
  explicit write_lock(session &of) : session_(&of) {
    kelp_error error{};
    if (kelp_lock_write(of.handle(), &error) != 0) throw failure(error);
  }
  write_lock(const write_lock &) = delete;
  write_lock &operator=(const write_lock &) = delete;
  ~write_lock() {
    if (session_ == nullptr) return;
    if (kelp_rollback(session_->handle(), nullptr) != 0) kelp_unlock(session_->handle(), nullptr);
  }
  void commit() {
    kelp_error error{};
    session &committed = *std::exchange(session_, nullptr);
    if (kelp_unlock(committed.handle(), &error) != 0) throw failure(error);
  }

 private:
  session *session_;
};

// The tenant of the calling thread, put back at the end.
class tenant_scope {
 public:
  explicit tenant_scope(std::uint16_t tenant) {
    mt_get_tenant_id(&before_);
    kelp_tenant_set(tenant);
  }
  tenant_scope(const tenant_scope &) = delete;
  tenant_scope &operator=(const tenant_scope &) = delete;
  ~tenant_scope() { kelp_tenant_set(before_); }

 private:
  std::uint16_t before_ = 0;
};

}  // namespace ospf_harbor
