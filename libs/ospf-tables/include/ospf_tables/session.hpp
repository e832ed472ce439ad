// The database of one run of the tool: a private one, with a handle that fills and reads it. Calls
// of the library are checked here, so that every failure is told with what was being done.
#pragma once

#include <kelp/embed.h>

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

namespace ospf_tables {

// A call of the library that failed although the input was sound, such as for want of memory.
class LibraryFailure : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Session {
 public:
  Session();
  ~Session();
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;

  kelp_database *database() const { return database_; }
  kelp_handle *handle() const { return handle_; }
  std::uint32_t *err() { return &err_; }

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

  kelp_database *database_ = nullptr;
  kelp_handle *handle_ = nullptr;
  std::uint32_t err_ = 0;
};

}  // namespace ospf_tables
