// Record events: what a cursor is shown, told to the handlers of the table's module through its
// vft, with a call around what each transaction changed.
#include <vector>

#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"
#include "parts/finishers.hpp"

namespace kelp {

namespace {

using RecordEvent = void (*)(kelp_handle *, std::uint32_t, void *, kelp_record *, std::uint32_t *);
using TransferEvent = void (*)(kelp_handle *, std::uint32_t, kelp_record *, std::uint32_t *);
using GroupingEvent = void (*)(kelp_handle *, std::uint32_t, void *, std::uint32_t *, void *,
                               void *);
using FreeEvent = void (*)(kelp_handle *, std::uint32_t, void *, std::uint32_t, std::uint32_t *,
                           void *);

// The events of one dispatch. Each call gets a fresh error word, so that no handler's failure keeps
// the others from being called.
class Delivery {
 public:
  Delivery(kelp_handle *handle, const kelp_table_vft *vft, kelp_table *table, void *context,
           kelp_events_report *report)
      : handle_(handle), vft_(vft), table_(table), context_(context), report_(report) {}

  void take(const FeedLook &look) {
    const bool ended = look.change.kind == KELP_FEED_DESTROYED;
    // A row that came and went between two looks was never told of.
    if (!look.foreign || (ended && !look.seen)) return;
    if (open_ && group_.commit != look.commit) close();
    if (!open_) open(look.commit);
    ++group_.events;
    if (ended) {
      tell_end(look);
    } else if (look.change.kind == KELP_FEED_MODIFIED) {
      ++report_->modified;
      tell(KELP_VFT_RECORD_MODIFY_CB, look.change.record);
    } else {
      tell_start(look);
    }
  }

  // The end of the transaction that is being told.
  void close() {
    if (!open_) return;
    open_ = false;
    group_.at_end = 1;
    tell_group();
    for (const Ended &each : ended_) {
      ++report_->freed;
      std::uint32_t err = 0;
      slot<FreeEvent>(KELP_VFT_RECORD_FREE_CB)(handle_, handle_->cr_space_id, each.record,
                                               each.bulk ? 1 : 0, &err, context_);
      note(err);
    }
    ended_.clear();
  }

  std::uint32_t first_failure() const { return first_failure_; }

 private:
  struct Ended {
    kelp_record *record;
    bool bulk;
  };

  template <typename Function>
  Function slot(kelp_vft_slot number) const {
    return reinterpret_cast<Function>(vft_->operations[number - KELP_VFT_TABLE_OPEN]);
  }

  void open(std::uint64_t commit) {
    open_ = true;
    group_ = {table_, commit, 0, 0};
    ++report_->groups;
    tell_group();
  }

  void tell_group() {
    std::uint32_t err = 0;
    slot<GroupingEvent>(KELP_VFT_RECORD_GROUPING_CB)(handle_, handle_->cr_space_id, context_, &err,
                                                     table_, &group_);
    note(err);
  }

  void tell(kelp_vft_slot event, kelp_record *record) {
    std::uint32_t err = 0;
    slot<RecordEvent>(event)(handle_, handle_->cr_space_id, context_, record, &err);
    note(err);
  }

  void tell_transfer(kelp_vft_slot event, kelp_record *record) {
    std::uint32_t err = 0;
    slot<TransferEvent>(event)(handle_, handle_->cr_space_id, record, &err);
    note(err);
  }

  void tell_start(const FeedLook &look) {
    ++report_->created;
    if (look.bulk) {
      tell_transfer(KELP_VFT_RECORD_CREATE_DM_CB, look.change.record);
    } else {
      tell(KELP_VFT_RECORD_CREATE_CB, look.change.record);
    }
  }

  void tell_end(const FeedLook &look) {
    ++report_->deleted;
    ended_.push_back({look.change.record, look.bulk});
    if (look.bulk) {
      tell_transfer(KELP_VFT_RECORD_DELETE_DM_CB, look.change.record);
    } else {
      tell(KELP_VFT_RECORD_DELETE_CB, look.change.record);
    }
  }

  void note(std::uint32_t err) {
    if (err == 0) return;
    ++report_->failures;
    if (first_failure_ == 0) first_failure_ = err;
  }

  kelp_handle *handle_;
  const kelp_table_vft *vft_;
  kelp_table *table_;
  void *context_;
  kelp_events_report *report_;
  kelp_event_group group_ = {};
  bool open_ = false;
  std::vector<Ended> ended_;
  std::uint32_t first_failure_ = 0;
};

}  // namespace

}  // namespace kelp

extern "C" int32_t kelp_events_dispatch(kelp_handle *handle, kelp_feed_cursor *cursor,
                                        void *context, kelp_events_report *report,
                                        kelp_error *error) {
  constexpr const char *kFunction = "kelp_events_dispatch";
  kelp_events_report unwanted;
  kelp_events_report *counts = report == nullptr ? &unwanted : report;
  *counts = {};
  if (handle == nullptr || cursor == nullptr ||
      cursor->database != handle->state->database->serial) {
    return kelp::fail(error, KELP_ERR_INVALID,
                      "%s: expected a handle, and a cursor of its database", kFunction);
  }
  kelp_database &database = *handle->state->database;
  if (database.store != nullptr && handle->db_lock_state == 0) {
    return kelp::fail(error, KELP_ERR_PERMISSION, "%s: store '%s': this handle holds no lock",
                      kFunction, database.name.c_str());
  }
  kelp_table *table = database.feeds.table_of(cursor);
  if (table == nullptr) {
    return kelp::fail(error, KELP_ERR_NOT_FOUND,
                      "%s: database '%s': the table of the cursor has "
                      "gone",
                      kFunction, database.name.c_str());
  }
  const kelp_table_vft *vft = kelp::find_vft(handle, kelp_get_manifested_type_info(table));
  if (vft == nullptr) {
    return kelp::fail(error, KELP_ERR_NOT_FOUND,
                      "%s: database '%s': no vft of table '%.100s'; kelp_module_set_vft_lookup "
                      "names what finds it",
                      kFunction, database.name.c_str(), table->tbl_name);
  }
  std::uint32_t first_failure = 0;
  const bool done = kelp::without_exceptions([&] {
    kelp::Delivery delivery(handle, vft, table, context, counts);
    kelp::FeedLook look;
    while (cursor->feeds->next(cursor, &look)) delivery.take(look);
    delivery.close();
    first_failure = delivery.first_failure();
  });
  if (!done) return kelp::fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", kFunction);
  if (first_failure == 0) return kelp::succeed(error);
  return kelp::fail(error, static_cast<int32_t>(first_failure),
                    "%s: database '%s': %u handlers failed, the first with %u", kFunction,
                    database.name.c_str(), counts->failures, first_failure);
}
