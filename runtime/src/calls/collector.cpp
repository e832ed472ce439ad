// The collector: ends the records, tables and objects whose end was put off, through the functions
// of their modules. It runs when a program calls it, never by itself.
#include <cstring>
#include <vector>

#include "base/failure.hpp"
#include "database/current.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"
#include "parts/finishers.hpp"

namespace kelp {

namespace {

using RecordFunction = void (*)(kelp_handle *, std::uint32_t, kelp_record *, std::uint32_t *);
using TableFunction = void (*)(kelp_handle *, std::uint32_t, kelp_table *, std::uint32_t *);
using TableRecordFunction = void (*)(kelp_handle *, std::uint32_t, kelp_table *, kelp_record *,
                                     std::uint32_t *);

template <typename Function>
Function slot(const kelp_table_vft *vft, kelp_vft_slot number) {
  return reinterpret_cast<Function>(vft->operations[number - KELP_VFT_TABLE_OPEN]);
}

// The thread's tenant while a thing of another tenant is ended, so that the counts of that one
// fall.
class AsTenant {
 public:
  explicit AsTenant(std::uint16_t tenant) : previous_(current_tenant()) {
    set_current_tenant(tenant);
  }
  ~AsTenant() { set_current_tenant(previous_); }
  AsTenant(const AsTenant &) = delete;
  AsTenant &operator=(const AsTenant &) = delete;

 private:
  std::uint16_t previous_;
};

// One run: the handle works in collector context while this exists. Whatever a module's function
// ends may end other things with it, so nothing is touched on the word of an earlier look.
class Run {
 public:
  Run(kelp_handle *handle, kelp_collector_report *report)
      : handle_(handle),
        database_(*handle->state->database),
        report_(report),
        previous_context_(handle->collector_context) {
    handle->collector_context = 1;
  }
  ~Run() {
    database_.walked.clear();
    handle_->collector_context = previous_context_;
  }
  Run(const Run &) = delete;
  Run &operator=(const Run &) = delete;

  void end_records() {
    for_each(tables(), [&](void *table) { end_records_of(static_cast<kelp_table *>(table)); });
  }

  void end_objects() {
    for_each(database_.oids.unreferenced(), [&](void *object) { end_object(object); });
  }

  void free_tables() {
    for_each(tables(), [&](void *table) { free_table(static_cast<kelp_table *>(table)); });
  }

  // The first type that could not be ended; empty when all could.
  const std::string &missing() const { return missing_; }

 private:
  std::vector<void *> tables() const {
    std::vector<void *> all;
    const kelp_table *table = nullptr;
    while (kelp_table *following = kelp_database_next_table(&database_, table)) {
      all.push_back(following);
      table = following;
    }
    return all;
  }

  // Visits the things that are still there when their turn comes.
  template <typename Visit>
  void for_each(const std::vector<void *> &things, const Visit &visit) {
    for (void *thing : things) {
      database_.walked.add(thing);
      database_.objects.watch(thing);
    }
    for (void *thing : things) {
      if (database_.walked.take(thing)) visit(thing);
    }
  }

  void end_records_of(kelp_table *table) {
    Feeds &feeds = database_.feeds;
    FeedTable *feed = Feeds::of(table);
    if (feed == nullptr) return;
    feeds.tidy(feed);
    if (feeds.marked(feed) == 0) return;
    const kelp_table_vft *vft = vft_of(table);
    if (vft == nullptr) return;
    while (kelp_record *record = feeds.take_passed(feed)) {
      const AsTenant tenant(record->tenant_id);
      // The record leaves the tree first, whoever else holds it: the holder's own destroy, later
      // and outside the collector, could not take it out any more.
      std::uint32_t err = 0;
      if (record->record_table == table) {
        slot<TableRecordFunction>(vft, KELP_VFT_DELETE)(handle_, handle_->cr_space_id, table,
                                                        record, &err);
      }
      err = 0;
      slot<RecordFunction>(vft, KELP_VFT_DESTROY_RECORD)(handle_, handle_->cr_space_id, record,
                                                         &err);
      ++report_->records_ended;
      // The table may go with its last record.
      if (feeds.find(table) != feed) return;
    }
    report_->records_waiting += feeds.marked(feed);
  }

  void end_object(void *object) {
    const kelp_oid_mapping *mapping = database_.oids.find(object);
    if (mapping == nullptr || !mapping->destroy_asked || mapping->references != 0) return;
    const kelp_type_record *type = kelp_get_manifested_type_info(object);
    if (type != nullptr && std::strncmp(type->kind, "table", sizeof type->kind) == 0) return;
    if (is_refused(type)) return;
    const kelp_object_destroyer destroy = find_destroyer(type);
    if (destroy == nullptr) {
      note_missing(type, "_destroy");
      return;
    }
    destroy(handle_, handle_->cr_space_id, object);
    ++report_->objects_ended;
  }

  void free_table(kelp_table *table) {
    const bool removed = database_.toc.place(table) == TableOfContents::Place::removed;
    const kelp_oid_mapping *mapping = database_.oids.find(table);
    if (!removed && (mapping == nullptr || !mapping->destroy_asked)) return;
    const FeedTable *feed = Feeds::of(table);
    const bool followed = feed != nullptr && database_.feeds.has_cursors(feed);
    const bool referenced = mapping != nullptr && mapping->references != 0;
    if (followed || referenced || table->record_count != 0) {
      ++report_->tables_waiting;
      return;
    }
    const kelp_table_vft *vft = vft_of(table);
    if (vft == nullptr) return;
    std::uint32_t err = 0;
    slot<TableFunction>(vft, KELP_VFT_TABLE_FREE)(handle_, handle_->cr_space_id, table, &err);
    ++(err == 0 ? report_->tables_freed : report_->tables_waiting);
  }

  const kelp_table_vft *vft_of(const kelp_table *table) {
    const kelp_type_record *type = kelp_get_manifested_type_info(table);
    if (is_refused(type)) return nullptr;
    const kelp_table_vft *vft = find_vft(handle_, type);
    if (vft == nullptr) note_missing(type, "'s vft");
    return vft;
  }

  // Of another edition of the schema, and ended by its programs.
  bool is_refused(const kelp_type_record *type) const {
    return type != nullptr && database_.editions.refusal(type->md5) != nullptr;
  }

  void note_missing(const kelp_type_record *type, const char *what) {
    if (!missing_.empty()) return;
    missing_ = type == nullptr
                   ? "(no type)"
                   : std::string(type->type_name, strnlen(type->type_name, sizeof type->type_name));
    missing_ += what;
  }

  kelp_handle *handle_;
  kelp_database &database_;
  kelp_collector_report *report_;
  std::uint32_t previous_context_;
  std::string missing_;
};

}  // namespace

}  // namespace kelp

extern "C" int32_t kelp_collector_run(kelp_handle *handle, kelp_collector_report *report,
                                      kelp_error *error) {
  constexpr const char *kFunction = "kelp_collector_run";
  kelp_collector_report unwanted;
  kelp_collector_report *counts = report == nullptr ? &unwanted : report;
  *counts = {};
  if (handle == nullptr) {
    return kelp::fail(error, KELP_ERR_INVALID, "%s: the handle is null", kFunction);
  }
  const kelp_database &database = *handle->state->database;
  if (database.marked_shared && kelplib_database_is_write_locked(handle) == 0) {
    return kelp::fail(error, KELP_ERR_PERMISSION,
                      "%s: database '%s' is shared: this handle holds %s, expected the write lock",
                      kFunction, database.name.c_str(),
                      handle->db_lock_state == 0 ? "no lock" : "the read lock");
  }
  std::string missing;
  const bool done = kelp::without_exceptions([&] {
    kelp::Run run(handle, counts);
    run.end_records();
    run.end_objects();
    run.free_tables();
    missing = run.missing();
  });
  if (!done) return kelp::fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", kFunction);
  if (!missing.empty()) {
    return kelp::fail(error, KELP_ERR_NOT_FOUND,
                      "%s: database '%s': no function for %s; kelp_module_set_vft_lookup or "
                      "kelp_type_set_destroyer names one",
                      kFunction, database.name.c_str(), missing.c_str());
  }
  return kelp::succeed(error);
}
