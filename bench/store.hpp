// The database and handle that a benchmark works on: a private one, or a store in a file.
#pragma once

#include <kelp/embed.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace bench {

class Store {
 public:
  explicit Store(std::uint32_t tracking = KELP_TRACKING_ABSENT) {
    kelp_error error{};
    database_ = kelp_database_open_private("bench", nullptr, &error);
    make_handle(tracking, error);
  }
  explicit Store(const std::string &file, std::uint32_t durability = KELP_DURABILITY_PROCESS) {
    kelp_error error{};
    kelp_store_options options;
    kelp_store_options_init(&options);
    options.durability = durability;
    database_ = kelp_database_open_file(file.c_str(), &options, &error);
    make_handle(KELP_TRACKING_ABSENT, error);
  }
  ~Store() {
    kelp_handle_destroy(handle_);
    kelp_database_close(database_, nullptr);
  }
  Store(const Store &) = delete;
  Store &operator=(const Store &) = delete;
  operator kelp_handle *() const { return handle_; }

  void lock_read() { require_done(kelp_lock_read(handle_, &error_)); }
  void lock_write() { require_done(kelp_lock_write(handle_, &error_)); }
  void unlock() { require_done(kelp_unlock(handle_, &error_)); }

  kelp_memory_statistics memory() const {
    kelp_memory_statistics statistics{};
    kelp_database_memory(database_, &statistics);
    return statistics;
  }

 private:
  void make_handle(std::uint32_t tracking, kelp_error error) {
    kelp_handle_options options;
    kelp_handle_options_init(&options);
    options.state_tracking = tracking;
    handle_ = database_ == nullptr ? nullptr : kelp_handle_create(database_, &options, &error);
    error_ = error;
    require_done(handle_ != nullptr ? 0 : 1);
  }
  void require_done(std::int32_t code) const {
    if (code == 0) return;
    std::fprintf(stderr, "bench: %s\n", error_.text);
    std::abort();
  }

  kelp_database *database_;
  kelp_handle *handle_;
  kelp_error error_{};
};

// Ends the run when the error word is set: a benchmark of failures measures nothing.
inline void require(std::uint32_t err) {
  if (err == 0) return;
  std::fprintf(stderr, "bench: error word %u\n", err);
  std::abort();
}

}  // namespace bench
