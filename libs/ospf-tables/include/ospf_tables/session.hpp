// The database of one run of the tool, with a handle that fills and reads it: a private one, or a
// store that other processes have open too. Calls of the library are checked here, so that every
// failure is told with what was being done.
#pragma once

#include <kelp/embed.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "ospf_tables/site.hpp"
#include "ospf_tables/told.hpp"

namespace ospf_tables {

// A call of the library that failed although the input was sound, such as for want of memory.
class LibraryFailure : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Session {
 public:
  enum class Missing { is_made, is_refused };

  Session();
  // On the store in a file. A store that this user cannot write to can be read all the same. Throws
  // LibraryFailure with the library's words.
  Session(const std::string &store, Missing missing);
  // What lies in a store stays there.
  ~Session();
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;

  kelp_database *database() const { return database_; }
  kelp_handle *handle() const { return handle_; }
  std::uint32_t *err() { return &err_; }

  bool is_store() const { return is_store_; }

  // Whose rows are read, made and ended from now on. is_named: what is shown of them says whose
  // they are.
  void set_site(const Site &site, bool is_named = false);
  const Site &site() const { return site_; }
  // The site, where what is shown is to name it.
  std::optional<Site> named_site() const {
    return is_site_named_ ? std::optional(site_) : std::nullopt;
  }
  // As set_site(), once and for all: no other site is looked for.
  void choose_site(const Site &site);
  bool is_site_chosen() const { return is_site_chosen_; }

  // Beside the tables; always empty on a store, which others change too.
  Told &told() { return told_; }
  // Beside the tables too: names that the user gave, or routers told in their answers.
  RouterNames &names() { return names_; }
  // Keys of instances that gave way to others since this was last asked for.
  std::vector<std::string> take_replaced() { return std::exchange(replaced_, {}); }
  void note_replaced(const std::string &key) { replaced_.push_back(key); }

  // Everything that reads a store runs within reading(), and what changes it within changing(): one
  // transaction, which other processes see whole when act has ended, or not at all when it throws.
  // What act made is gone before changing() returns. On a private database they only run act, and
  // so does reading() within either. Throw LibraryFailure when the lock or the commit fails.
  void reading(const std::function<void()> &act);
  void changing(const std::function<void()> &act);
  // As changing(), for who keeps addresses of rows from one time to the next: act is told whether
  // nobody has committed since the last time. The first time it may be told that somebody has.
  void changing_on(const std::function<void(bool alone)> &act);

  // Throws LibraryFailure when the error word is set, and clears it.
  void check(const char *what);
  // The same for a result that must not be null.
  template <typename Pointer>
  Pointer *checked(Pointer *pointer, const char *what) {
    check(what);
    if (pointer == nullptr) fail(what);
    return pointer;
  }

 private:
  [[noreturn]] void fail(const char *what);
  kelp_handle *new_handle();
  void transact(const std::function<void()> &act);
  void undo();

  kelp_database *database_ = nullptr;
  kelp_handle *handle_ = nullptr;
  // These two take turns in changing_on().
  kelp_handle *last_handle_ = nullptr;
  kelp_handle *next_handle_ = nullptr;
  std::uint32_t err_ = 0;
  Told told_;
  RouterNames names_;
  std::vector<std::string> replaced_;
  Site site_;
  bool is_site_named_ = false;
  bool is_site_chosen_ = false;
  bool is_store_ = false;
  bool is_locked_ = false;
};

}  // namespace ospf_tables
