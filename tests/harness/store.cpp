// The database and handle of a test.
#include "harness/harness.hpp"
#include "harness/seen_calls.hpp"

namespace harness {

namespace {

kelp_handle *make_handle(kelp_database *database, const StoreOptions &options) {
  kelp_handle_options handle_options;
  kelp_handle_options_init(&handle_options);
  handle_options.state_tracking = options.tracking;
  handle_options.quiet_insert = options.quiet_insert ? 1 : 0;
  handle_options.collector_context = options.collector_context ? 1 : 0;
  handle_options.work_space_size = options.work_space_size;
  kelp_error error{};
  kelp_handle *handle = kelp_handle_create(database, &handle_options, &error);
  EXPECT_NE(handle, nullptr) << error.text;
  enter_handle(handle);
  return handle;
}

}  // namespace

Store::Store(StoreOptions options) : options_(options) {
  kelp_database_options database_options;
  kelp_database_options_init(&database_options);
  database_options.marked_shared = options.marked_shared ? 1 : 0;
  database_options.shared_tinfo = options.shared_tinfo ? 1 : 0;
  kelp_error error{};
  database_ = kelp_database_open_private("test", &database_options, &error);
  EXPECT_NE(database_, nullptr) << error.text;
  handle_ = make_handle(database_, options);
}

Store::~Store() {
  EXPECT_LE(live_allocations(), options_.may_leave) << "allocations left behind";
  others_.push_back(handle_);
  for (kelp_handle *handle : others_) {
    forget_handle(handle);
    kelp_handle_destroy(handle);
  }
  kelp_error error{};
  EXPECT_EQ(kelp_database_close(database_, &error), 0) << error.text;
}

kelp_handle *Store::another_handle(StoreOptions options) {
  others_.push_back(make_handle(database_, options));
  return others_.back();
}

void Store::set_variant(const char *type_name, std::int32_t variant) {
  kelp_error error{};
  EXPECT_EQ(kelp_handle_set_variant(handle_, type_name, variant, &error), 0) << error.text;
}

std::uint64_t Store::live_allocations() const {
  kelp_memory_statistics statistics{};
  kelp_database_memory(database_, &statistics);
  return statistics.live_allocations;
}

}  // namespace harness
