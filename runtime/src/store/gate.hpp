// The lock of a store among processes: one writer or many readers, in a table of processes in a
// file that all map. Nobody is trusted to live: whoever waits asks whether the holder still does,
// and takes over from a dead one.
//
// A writer makes itself the owner first, which keeps later readers out, and then waits for the
// readers that are in. A reader enters itself first and then looks for an owner. Either sees the
// other.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstdint>
#include <string>

#include "store/layout.hpp"
#include "store/system.hpp"

namespace kelp::store {

class Gate {
 public:
  Gate() = default;
  Gate(const Gate &) = delete;
  Gate &operator=(const Gate &) = delete;
  ~Gate();

  // Opens the file, made when it is missing, and keeps others from opening or closing the same
  // store until settle. Waits at most until the deadline (monotonic_ms).
  std::int32_t open(const std::string &path, mode_t mode, std::uint64_t deadline,
                    kelp_error *error);
  // Maps the table, which is begun anew for another store or run of the machine, and enters this
  // process.
  std::int32_t enter(const std::uint8_t (&id)[16], kelp_error *error);
  void settle();
  // The same exclusion for closing; false when it could not be had.
  bool unsettle(std::uint64_t deadline);
  void leave();

  // Whether no other living process is entered. Only between open or unsettle, and settle.
  bool alone();

  enum class Entry { entered, timed_out, owner_died };

  // On timed_out the error names who holds the lock, since when. What a dead writer left is the
  // caller's to mend.
  Entry lock_write(std::uint64_t deadline, kelp_error *error);
  void unlock_write();

  // nested: the calling thread reads already, and passes a writer that waits for it. owner_died: a
  // dead writer stands in the way, which only a write lock takes over from.
  Entry lock_read(bool nested, std::uint64_t deadline, kelp_error *error);
  void unlock_read();

  // Where the cursors of all processes stand.
  CursorTable &cursors() { return table_->cursors; }
  // What the commits of all processes changed. Written by the holder of the write lock, read under
  // either.
  ChangeLog &changes() { return table_->changes; }
  // The number by which this process's things in the table go, and whether another's has ended.
  std::uint32_t own_mark() const;
  bool has_ended(std::uint32_t mark) const {
    return mark == 0 || mark > kProcessSlots || is_dead(table_->slots[mark - 1]);
  }
  // Tells those who wait for changes that a commit is about to be.
  void announce_commit();
  // Whether this process reads.
  bool is_reading() const { return load(slot_->readers) != 0; }

  bool is_entered() const { return table_ != nullptr && slot_ != nullptr; }
  std::atomic<bool> &damaged() { return damaged_; }

 private:
  bool is_dead(const ProcessSlot &slot) const;
  bool take_ownership(std::uint64_t deadline);
  bool drain(std::uint64_t deadline, const ProcessSlot **holder);
  void wait(std::uint32_t *word, std::uint32_t value, std::uint64_t deadline);
  void name_holder(const ProcessSlot *holder, const char *what, std::uint64_t since,
                   kelp_error *error) const;
  std::int32_t claim_slot(kelp_error *error);
  void drop_cursors(std::uint32_t mark);

  std::string path_;
  File file_;
  LockTable *table_ = nullptr;
  ProcessSlot *slot_ = nullptr;
  std::atomic<bool> damaged_{false};
};

}  // namespace kelp::store
