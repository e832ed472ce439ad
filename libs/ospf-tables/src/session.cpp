#include "ospf_tables/session.hpp"

#include "ospf_tables/tree.hpp"

namespace ospf_tables {

Session::Session() {
  kelp_error error{};
  database_ = kelp_database_open_private("ospf-harbor", nullptr, &error);
  if (database_ == nullptr) throw LibraryFailure(error.text);
  handle_ = kelp_handle_create(database_, nullptr, &error);
  if (handle_ == nullptr) {
    kelp_database_close(database_, nullptr);
    throw LibraryFailure(error.text);
  }
}

Session::~Session() {
  try {
    clear_tree(*this);
  } catch (const LibraryFailure &) {
    // The database's memory goes as a whole.
  }
  kelp_handle_destroy(handle_);
  kelp_database_close(database_, nullptr);
}

void Session::check(const char *what) {
  if (err_ != 0) fail(what);
}

void Session::fail(const char *what) {
  kelp_error error{};
  kelp_handle_last_error(handle_, &error);
  err_ = 0;
  throw LibraryFailure(std::string(what) + ": " + error.text);
}

}  // namespace ospf_tables
