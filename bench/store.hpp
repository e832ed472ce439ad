// The database and handle that a benchmark works on.
#pragma once

#include <kelp/embed.h>

#include <cstdio>
#include <cstdlib>

namespace bench {

class Store {
 public:
  explicit Store(std::uint32_t tracking = KELP_TRACKING_ABSENT) {
    kelp_error error{};
    database_ = kelp_database_open_private("bench", nullptr, &error);
    kelp_handle_options options;
    kelp_handle_options_init(&options);
    options.state_tracking = tracking;
    handle_ = database_ == nullptr ? nullptr : kelp_handle_create(database_, &options, &error);
    if (handle_ != nullptr) return;
    std::fprintf(stderr, "bench: %s\n", error.text);
    std::abort();
  }
  ~Store() {
    kelp_handle_destroy(handle_);
    kelp_database_close(database_, nullptr);
  }
  Store(const Store &) = delete;
  Store &operator=(const Store &) = delete;
  operator kelp_handle *() const { return handle_; }
  kelp_memory_statistics memory() const {
    kelp_memory_statistics statistics{};
    kelp_database_memory(database_, &statistics);
    return statistics;
  }

 private:
  kelp_database *database_;
  kelp_handle *handle_;
};

// Ends the run when the error word is set: a benchmark of failures measures nothing.
inline void require(std::uint32_t err) {
  if (err == 0) return;
  std::fprintf(stderr, "bench: error word %u\n", err);
  std::abort();
}

}  // namespace bench
