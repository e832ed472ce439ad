// The collector: ends the records, tables and objects whose end was put off, through the functions
// of their modules. It runs when a program calls it, never by itself.
#include <cstring>
#include <vector>

#include "base/failure.hpp"
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

// One run: the handle works in collector context while this exists.
class Run {
 public:
  Run(kelp_handle *handle, kelp_collector_report *report)
      : handle_(handle),
        database_(*handle->state->database),
        report_(report),
        previous_context_(handle->collector_context) {
    handle->collector_context = 1;
  }
  ~Run() { handle_->collector_context = previous_context_; }
  Run(const Run &) = delete;
  Run &operator=(const Run &) = delete;

  void end_records() {
    for (kelp_table *table : tables()) {
      const TableState *state = TableState::of(table);
      if (state != nullptr && state->feed != nullptr) end_records_of(table, *state->feed);
    }
  }

  void free_tables() {
    for (kelp_table *table : tables()) {
      const bool removed = database_.toc.place(table) == TableOfContents::Place::removed;
      const kelp_oid_mapping *mapping = database_.oids.find(table);
      if (!removed && (mapping == nullptr || !mapping->destroy_asked)) continue;
      const bool referenced = mapping != nullptr && mapping->references != 0;
      if (referenced || table->record_count != 0) {
        ++report_->tables_waiting;
        continue;
      }
      const auto *vft = vft_of(table);
      if (vft == nullptr) continue;
      std::uint32_t err = 0;
      slot<TableFunction>(vft, KELP_VFT_TABLE_FREE)(handle_, handle_->cr_space_id, table, &err);
      if (err == 0) {
        ++report_->tables_freed;
      } else {
        ++report_->tables_waiting;
      }
    }
  }

  void end_objects() {
    for (const kelp_oid_mapping *mapping : database_.oids.unreferenced()) {
      void *object = mapping->object;
      const kelp_type_record *type = kelp_get_manifested_type_info(object);
      if (type != nullptr && std::strncmp(type->kind, "table", sizeof type->kind) == 0) continue;
      const kelp_object_destroyer destroy = find_destroyer(type);
      if (destroy == nullptr) {
        note_missing(type, "_destroy");
        continue;
      }
      destroy(handle_, handle_->cr_space_id, object);
      ++report_->objects_ended;
    }
  }

  // The first type that could not be ended; empty when all could.
  const std::string &missing() const { return missing_; }

 private:
  std::vector<kelp_table *> tables() const {
    std::vector<kelp_table *> all;
    const kelp_table *table = nullptr;
    while (kelp_table *following = kelp_database_next_table(&database_, table)) {
      all.push_back(following);
      table = following;
    }
    return all;
  }

  const kelp_table_vft *vft_of(const kelp_table *table) {
    const kelp_type_record *type = kelp_get_manifested_type_info(table);
    const kelp_table_vft *vft = find_vft(handle_, type);
    if (vft == nullptr) note_missing(type, "'s vft");
    return vft;
  }

  void note_missing(const kelp_type_record *type, const char *what) {
    if (!missing_.empty()) return;
    missing_ = type == nullptr
                   ? "(no type)"
                   : std::string(type->type_name, strnlen(type->type_name, sizeof type->type_name));
    missing_ += what;
  }

  void end_records_of(kelp_table *table, Feed &feed) {
    if (table->pending_destroy_count == 0) return;
    const kelp_table_vft *vft = vft_of(table);
    if (vft == nullptr) return;
    std::uint32_t waiting = 0;
    for (kelp_record *record : feed.take_passed(&waiting)) {
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
    }
    report_->records_waiting += waiting;
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
