// Changes of a table as one reader is shown them: a place behind what it has seen, which goes over
// each row that came, changed or went since, each once. Rows of a table that is followed are ended
// by request (request_end), and go when every reader has passed them and somebody runs the
// collector.
#pragma once

#include <optional>
#include <ospf_harbor/table.hpp>

namespace ospf_harbor {

enum class change_kind : std::uint32_t {
  inserted = KELP_FEED_INSERTED,
  modified = KELP_FEED_MODIFIED,
  destroyed = KELP_FEED_DESTROYED,
};

template <typename Table>
struct change {
  change_kind kind;
  row<Table> of;  // can be read, when it was destroyed too, until the lock is given up
};

namespace detail {

inline void check(session &at, std::int32_t code, const kelp_error &error) {
  if (code != 0) at.fail(static_cast<std::uint32_t>(code), error.text);
}

template <typename Table>
kelp_table *plain(const table_ref<Table> &table) {
  return reinterpret_cast<kelp_table *>(table.get());
}

}  // namespace detail

// Marks a table to be followed, whose inserts are heard of from then on. In a store it needs the
// write lock.
template <typename Table>
void follow(const table_ref<Table> &table) {
  kelp_error error{};
  detail::check(table.at(),
                kelp_table_enable_cursors(table.at().handle(), detail::plain(table), 1, &error),
                error);
}

// Says that a row's object was changed: a setter alone is heard of by nobody.
template <typename Table>
void tell_changed(const table_ref<Table> &table, const row<Table> &which) {
  kelp_error error{};
  detail::check(table.at(),
                kelp_feed_record_changed(table.at().handle(), detail::plain(table),
                                         reinterpret_cast<kelp_record *>(which.get()), &error),
                error);
}

// Asks for the end of a row, and of nothing below it.
template <typename Table>
void request_end(const table_ref<Table> &table, const row<Table> &which) {
  table.at().template call<Table::request_destroy>(table.get(), which.get());
}

// Ends what every reader has passed. In a store it needs the write lock.
inline void collect(session &at) {
  kelp_error error{};
  detail::check(at, kelp_collector_run(at.handle(), nullptr, &error), error);
}

// One reader of a table that is followed. It begins in front of everything: first each row that is
// there comes as inserted. Ends before its session.
template <typename Table>
class feed {
 public:
  // In a store under a lock.
  explicit feed(const table_ref<Table> &table) : session_(&table.at()) {
    kelp_error error{};
    cursor_ = kelp_feed_cursor_open(session_->handle(), detail::plain(table), &error);
    if (cursor_ == nullptr) session_->fail(static_cast<std::uint32_t>(error.code), error.text);
  }
  feed(const feed &) = delete;
  feed &operator=(const feed &) = delete;
  ~feed() { kelp_feed_cursor_close(cursor_); }

  explicit operator bool() const { return cursor_ != nullptr; }

  // Moves over the next change and gives it; none when there is none now. Under the read lock.
  std::optional<change<Table>> next() {
    kelp_feed_change found{};
    if (cursor_ == nullptr || kelp_feed_cursor_next(cursor_, &found) == 0) return std::nullopt;
    return change<Table>{
        static_cast<change_kind>(found.kind),
        {*session_, reinterpret_cast<typename Table::record_type *>(found.record)}};
  }

  // Sleeps until there is a change, or for so long. False when the time is over. The session holds
  // no lock meanwhile.
  bool wait(std::uint32_t milliseconds) {
    kelp_error error{};
    const std::int32_t code = kelp_feed_wait(session_->handle(), cursor_, milliseconds, &error);
    if (code == KELP_ERR_TIMED_OUT) return false;
    detail::check(*session_, code, error);
    return code == 0;
  }

 private:
  session *session_;
  kelp_feed_cursor *cursor_ = nullptr;
};

}  // namespace ospf_harbor
