#include "ospf_tables/session.hpp"

#include <cerrno>
#include <memory>

#include "ospf_tables/tree.hpp"

namespace ospf_tables {

namespace {

kelp_database *opened_store(const std::string &path, Session::Missing missing) {
  kelp_store_options options{};
  kelp_store_options_init(&options);
  options.create = missing == Session::Missing::is_made ? 1 : 0;
  options.file_mode = 0660;  // the group too, where the umask lets it
  kelp_error error{};
  kelp_database *database = kelp_database_open_file(path.c_str(), &options, &error);
  // Opened for writing also by who only reads, since then a dead writer can be undone.
  if (database == nullptr && options.create == 0 && (error.code == EACCES || error.code == EROFS)) {
    options.read_only = 1;
    database = kelp_database_open_file(path.c_str(), &options, &error);
  }
  if (database == nullptr) throw LibraryFailure(error.text);
  return database;
}

}  // namespace

std::string text_of(const Site &site) {
  if (site.source == KELP_SRC_DEFAULT) return "tenant " + std::to_string(site.tenant);
  return (site.tenant == 0 ? "" : "tenant " + std::to_string(site.tenant) + ", ") + "source " +
         std::to_string(site.source);
}

Session::Session() {
  kelp_error error{};
  database_ = kelp_database_open_private("ospf-harbor", nullptr, &error);
  if (database_ == nullptr) throw LibraryFailure(error.text);
  handle_ = new_handle();
}

Session::Session(const std::string &store, Missing missing)
    : database_(opened_store(store, missing)), is_store_(true) {
  handle_ = new_handle();
}

Session::~Session() {
  if (!is_store_) {
    try {
      clear_tree(*this);
    } catch (const std::exception &) {
      // The database's memory goes as a whole.
    }
  }
  kelp_handle_destroy(handle_);
  kelp_handle_destroy(last_handle_);
  kelp_handle_destroy(next_handle_);
  kelp_database_close(database_, nullptr);
}

void Session::set_site(const Site &site, bool is_named) {
  kelp_tenant_set(site.tenant);
  site_ = site;
  is_site_named_ = is_named;
}

void Session::choose_site(const Site &site) {
  set_site(site);
  is_site_chosen_ = true;
}

kelp_handle *Session::new_handle() {
  kelp_error error{};
  kelp_handle *handle = kelp_handle_create(database_, nullptr, &error);
  if (handle != nullptr) return handle;
  if (handle_ == nullptr) kelp_database_close(database_, nullptr);
  throw LibraryFailure(error.text);
}

void Session::reading(const std::function<void()> &act) {
  if (!is_store_ || is_locked_) return act();
  kelp_error error{};
  if (kelp_lock_read(handle_, &error) != 0) throw LibraryFailure(error.text);
  kelp_tenant_set(site_.tenant);
  is_locked_ = true;
  const auto unlocked = [this](Session *) {
    is_locked_ = false;
    kelp_unlock(handle_, nullptr);
  };
  const std::unique_ptr<Session, decltype(unlocked)> lock(this, unlocked);
  act();
}

void Session::changing(const std::function<void()> &act) {
  if (!is_store_) return act();
  kelp_error error{};
  if (kelp_lock_write(handle_, &error) != 0) throw LibraryFailure(error.text);
  transact(act);
}

void Session::changing_on(const std::function<void(bool)> &act) {
  if (!is_store_) return act(true);
  if (last_handle_ == nullptr) last_handle_ = new_handle();
  if (next_handle_ == nullptr) next_handle_ = new_handle();
  kelp_error error{};
  if (kelp_lock_write(next_handle_, &error) != 0) throw LibraryFailure(error.text);
  // Nobody commits any more, and a handle without a lock tells of commits since it had one.
  const bool alone = kelp_feed_wait(last_handle_, nullptr, 0, nullptr) == ETIMEDOUT;
  std::swap(last_handle_, next_handle_);
  const auto given_back = [this, usual = handle_](Session *) { handle_ = usual; };
  const std::unique_ptr<Session, decltype(given_back)> turn(this, given_back);
  handle_ = last_handle_;
  transact([&] { act(alone); });
}

// The handle has the write lock.
void Session::transact(const std::function<void()> &act) {
  kelp_tenant_set(site_.tenant);
  is_locked_ = true;
  try {
    act();
  } catch (...) {
    undo();
    throw;
  }
  is_locked_ = false;
  kelp_error error{};
  if (kelp_unlock(handle_, &error) != 0) throw LibraryFailure(error.text);
}

// Undoing that fails leaves a transaction that whoever takes the lock next undoes.
void Session::undo() {
  is_locked_ = false;
  err_ = 0;
  kelp_rollback(handle_, nullptr);
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
