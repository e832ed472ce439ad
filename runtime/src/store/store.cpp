// Locks, transactions and what they save.
#include "store/store.hpp"

#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cinttypes>
#include <cstring>
#include <iterator>
#include <utility>

#include "base/failure.hpp"
#include "kelp/core.h"
#include "store/guard.hpp"

namespace kelp::store {

Store::~Store() { close(nullptr); }

std::uint64_t Store::deadline() const {
  return options_.wait_ms == UINT32_MAX ? UINT64_MAX : monotonic_ms() + options_.wait_ms;
}

// --- before a lock is given ---

std::int32_t Store::check_process(kelp_error *error) const {
  if (getpid() == pid_) return 0;
  return fail(
      error, KELP_ERR_PERMISSION,
      "store '%s': it was opened by process %d, of which this one is a child; a child opens "
      "the store itself",
      path_.c_str(), static_cast<int>(pid_));
}

// Whether the file still has what its header counts.
std::int32_t Store::check_size(kelp_error *error) const {
  struct stat found {};
  if (fstat(file_.number(), &found) != 0) {
    return fail(error, errno, "store '%s': %s", path_.c_str(), std::strerror(errno));
  }
  const bool was_cut = damaged_.load();
  const std::uint64_t expected =
      was_cut ? reserved_ : kHeapOffset + header_->head.spans * kSpanBytes;
  if (!was_cut && static_cast<std::uint64_t>(found.st_size) >= expected) return 0;
  return fail(error, EIO,
              "store '%s': the file was cut while it was open: %" PRIu64
              " bytes found, expected %" PRIu64,
              path_.c_str(), static_cast<std::uint64_t>(found.st_size),
              kHeapOffset + header_->head.spans * kSpanBytes);
}

// Undoes what a dead writer left. The write lock is held.
std::int32_t Store::mend(kelp_error *error) {
  if (journal_.length() == 0) return 0;
  if (options_.read_only) {
    return fail(error, KELP_ERR_AGAIN,
                "store '%s': a process died within a transaction; whoever opens it for writing "
                "next undoes that",
                path_.c_str());
  }
  if (undo()) {
    // Its record may be in the log, and is that of no commit.
    if (redo_.is_open()) {
      if (const auto code = redo_.cut(header_->head.redo_end, error)) return code;
    }
    struct stat found {};
    if (fstat(file_.number(), &found) != 0) {
      return fail(error, errno, "store '%s': %s", path_.c_str(), std::strerror(errno));
    }
    return check_header(*header_, static_cast<std::uint64_t>(found.st_size), error);
  }
  return fail(error, EIO,
              "store '%s': a process died within a transaction, and the journal '%s-log' that "
              "would undo it is damaged",
              path_.c_str(), path_.c_str());
}

void *Store::shared_place(std::uint64_t address) const {
  const std::uint64_t offset = address - reinterpret_cast<std::uintptr_t>(base_);
  if (offset - kTypesOffset < kTypesBytes) return types_ + (offset - kTypesOffset);
  return base_ + offset;
}

// Puts the old bytes back, the latest first. Safe to be killed in and begun again: the journal
// stays as it is until the end.
bool Store::undo() {
  struct stat found {};
  if (fstat(file_.number(), &found) != 0) return false;
  const auto size = static_cast<std::uint64_t>(found.st_size);
  const bool done = journal_.each_backwards([&](std::uint64_t address, const std::byte *bytes,
                                                std::uint64_t length) {
    const std::uint64_t offset = address - reinterpret_cast<std::uintptr_t>(base_);
    if (offset < offsetof(Header, head) || offset > size || length > size - offset) return false;
    // The types area is mapped twice, and an entry is within it or without.
    const bool in_types = offset - kTypesOffset < kTypesBytes;
    const std::uint64_t end = in_types ? kHeapOffset : offset < kTypesOffset ? kTypesOffset : size;
    if (length > end - offset) return false;
    std::memcpy(shared_place(address), bytes, length);
    return true;
  });
  if (!done || damaged_.load() || journal_.damaged().load()) return false;
  journal_.clear();
  return true;
}

// --- reading ---

std::int32_t Store::lock_read(bool nested, kelp_error *error) {
  if (const auto code = check_process(error)) return code;
  const std::uint64_t until = deadline();
  for (;;) {
    const Gate::Entry entry = gate_.lock_read(nested, until, error);
    if (entry == Gate::Entry::timed_out) return ETIMEDOUT;
    if (entry == Gate::Entry::entered) {
      if (nested || journal_.length() == 0) break;
      gate_.unlock_read();
    }
    // One thread of the process mends; the others find it done.
    const std::lock_guard alone(mending_);
    if (gate_.lock_write(until, error) != Gate::Entry::entered) return ETIMEDOUT;
    const std::int32_t code = mend(error);
    gate_.unlock_write();
    if (code != 0) return code;
  }
  if (const auto code = check_size(error)) {
    gate_.unlock_read();
    return code;
  }
  if (types_private_.load() && types_seen_.load() != header_->head.types_version) refresh_types();
  types_seen_.store(header_->head.types_version);
  return 0;
}

void Store::unlock_read() { gate_.unlock_read(); }

// --- writing ---

std::int32_t Store::lock_write(kelp_error *error) {
  if (const auto code = check_process(error)) return code;
  if (options_.read_only) {
    return fail(error, KELP_ERR_PERMISSION, "store '%s': it was opened for reading alone",
                path_.c_str());
  }
  if (gate_.lock_write(deadline(), error) != Gate::Entry::entered) return ETIMEDOUT;
  std::int32_t code = mend(error);
  if (code == 0) code = check_size(error);
  if (code != 0) {
    gate_.unlock_write();
    return code;
  }
  begin();
  return 0;
}

void Store::begin() {
  writing_ = true;
  failure_ = {};
  announced_ = false;
  noted_ = 0;
  const bool stale = types_private_.load() && types_seen_.load() != header_->head.types_version;
  if (stale || types_drifted_.load()) refresh_types();
  if (++header_->stamp == 0) {
    heap_.forget_stamps();
    header_->stamp = 1;
    next_image_ = 0;  // no record tells of that
  }
  save(&header_->head, sizeof header_->head);
  begun_length_ = journal_.length();
  begun_allocations_ = header_->head.statistics.total_allocations;
  begun_spans_ = header_->head.spans;
  heap_.begin(header_->stamp, header_->head.sequence != committed_);
}

std::uint32_t Store::number_tree() {
  constexpr std::uint64_t kMost = INT32_MAX;
  if (header_->trees >= kMost) return 0;
  return static_cast<std::uint32_t>(++header_->trees);
}

bool Store::has_changes() const {
  return journal_.length() != begun_length_ || types_pages_.any() ||
         header_->head.statistics.total_allocations != begun_allocations_ ||
         header_->head.spans != begun_spans_;
}

std::int32_t Store::commit(kelp_error *error) {
  if (failure_.code == 0 && damaged_.load()) check_size(&failure_);
  if (failure_.code == 0) {
    write_types();
    if (has_changes()) {
      ++header_->head.sequence;
      keep_commit();
      // Before the commit, so that nobody who dies behind it leaves others asleep: who wakes up
      // waits for the lock.
      announced_ = failure_.code == 0;
      if (announced_) {
        commit_changes();
        gate_.announce_commit();
      }
    }
  }
  if (failure_.code != 0) {
    const kelp_error reason = failure_;
    rollback();
    return fail(error, reason.code, "%s; the transaction was undone", reason.text);
  }
  committed_ = header_->head.sequence;
  journal_.clear();
  writing_ = false;
  types_pages_.reset();
  types_seen_.store(header_->head.types_version);
  forget_marks();
  keep_image();
  gate_.unlock_write();
  return 0;
}

void Store::refuse(std::int32_t code, const char *reason) {
  if (failure_.code == 0) fail(&failure_, code, "store '%s': %s", path_.c_str(), reason);
}

void Store::rollback() {
  const std::uint64_t grown = header_->head.spans;
  heap_.forget_fresh();
  if (private_now_) turn_shared();
  undo();
  writing_ = false;
  types_pages_.reset();
  refresh_types();
  if (!damaged_.load() && header_->head.spans < grown) {
    // What the file grew by goes back to the disk; without success it only stays longer.
    const std::uint64_t size = kHeapOffset + header_->head.spans * kSpanBytes;
    if (ftruncate(file_.number(), static_cast<off_t>(size)) != 0) errno = 0;
  }
  forget_marks();
  if (after_rollback_) after_rollback_();
  gate_.unlock_write();
}

void Store::save(const void *address, std::size_t length) {
  mark(address, length);
  if (private_now_) return;
  if (journal_.save(reinterpret_cast<std::uintptr_t>(address), address, length)) return;
  failure_ = journal_.failure();
  turn_private();
}

// Nobody hears of a failure here who could stop the store that was announced. So from now on the
// stores of this transaction go to private pages and never reach the file.
void Store::turn_private() {
  private_now_ = true;
  if (!remap(MAP_PRIVATE | MAP_NORESERVE)) {
    bassert("a store whose journal cannot grow: addresses for private pages", __FILE__, __LINE__);
  }
}

void Store::turn_shared() {
  private_now_ = false;
  if (!remap(MAP_SHARED)) {
    bassert("a store whose journal could not grow: its file mapped again", __FILE__, __LINE__);
  }
}

bool Store::remap(int flags) {
  const auto put = [&](std::uint64_t offset, std::uint64_t length) {
    return mmap(base_ + offset, length, PROT_READ | PROT_WRITE, flags | MAP_FIXED, file_.number(),
                static_cast<off_t>(offset)) != MAP_FAILED;
  };
  return put(0, kTypesOffset) && put(kHeapOffset, reserved_ - kHeapOffset);
}

bool Store::back(std::uint64_t spans) {
  if (kHeapOffset + spans * kSpanBytes > reserved_) {
    fail(&failure_, 0,
         "store '%s' is full: %" PRIu64 " bytes are needed, %" PRIu64 " are reserved for it",
         path_.c_str(), kHeapOffset + spans * kSpanBytes, reserved_);
    return false;
  }
  if (private_now_) return false;
  const std::uint64_t from = kHeapOffset + header_->head.spans * kSpanBytes;
  kelp_error reason;
  if (provide_room(file_.number(), path_.c_str(), from, kHeapOffset + spans * kSpanBytes,
                   &reason) != 0) {
    fail(&failure_, 0, "%s", reason.text);
    return false;
  }
  header_->head.spans = spans;
  return true;
}

// Written once, a page is clean memory to the fault that maps it, which has nothing to read then
// nor to look for on the disk. It is a saving alone: what fails here fails where the pages are
// used. A file that was cut meanwhile is not made longer.
void Store::provide_pages(std::uint64_t first, std::uint64_t spans) {
  static std::byte zeroes[kSpanBytes];
  constexpr std::size_t kPieces = 16;
  if (private_now_) return;
  struct stat found {};
  const std::uint64_t end = kHeapOffset + (first + spans) * kSpanBytes;
  if (fstat(file_.number(), &found) != 0 || static_cast<std::uint64_t>(found.st_size) < end) return;
  iovec pieces[kPieces];
  std::fill(std::begin(pieces), std::end(pieces), iovec{zeroes, kSpanBytes});
  for (std::uint64_t at = first; at < first + spans; at += kPieces) {
    const auto count = static_cast<int>(std::min<std::uint64_t>(kPieces, first + spans - at));
    if (pwritev(file_.number(), pieces, count, static_cast<off_t>(kHeapOffset + at * kSpanBytes)) <
        0) {
      return;
    }
  }
}

// --- what was changed ---

// Behind what was committed, where nobody looks: over the oldest that were committed.
void Store::note_change(const void *block, bool goes) {
  ChangeLog &log = gate_.changes();
  const std::uint64_t number = log.committed + noted_++;
  if (number >= kChangePlaces) {
    log.lost = std::max(log.lost, std::min(log.committed, number + 1 - kChangePlaces));
    std::atomic_signal_fence(std::memory_order_seq_cst);
  }
  log.blocks[number % kChangePlaces] = reinterpret_cast<std::uintptr_t>(block) | (goes ? 1 : 0);
}

// A transaction of more changes than there are places has written over its own.
void Store::commit_changes() {
  ChangeLog &log = gate_.changes();
  const std::uint64_t now = log.committed + noted_;
  if (now > kChangePlaces) log.lost = std::max(log.lost, now - kChangePlaces);
  log.committed = now;
}

bool Store::each_change(std::uint64_t *place,
                        const std::function<void(const void *, bool)> &heard) {
  const ChangeLog &log = gate_.changes();
  const std::uint64_t from = std::exchange(*place, log.committed + 1);
  if (from == 0 || from - 1 < log.lost || from > *place) return false;
  for (std::uint64_t number = from - 1; number < log.committed; ++number) {
    const std::uint64_t block = log.blocks[number % kChangePlaces];
    heard(reinterpret_cast<const void *>(block & ~std::uint64_t{1}), (block & 1) != 0);
  }
  return true;
}

// --- cursors ---

// The file's lock goes with its holder, and threads of the process would share it.
std::int32_t Store::lock_places(kelp_error *error) {
  if (const auto code = check_process(error)) return code;
  places_.lock();
  if (gate_.unsettle(deadline())) return 0;
  places_.unlock();
  return fail(error, ETIMEDOUT,
              "store '%s': another process opens or closes it, or a cursor in it; the wait is over",
              path_.c_str());
}

void Store::unlock_places() {
  gate_.settle();
  places_.unlock();
}

// --- memory ---

View Store::view() const { return {base_, kHeapOffset + header_->head.spans * kSpanBytes}; }

void Store::hear(const void *address, std::size_t length) {
  if (!writing_) return;
  const auto offset =
      reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(base_);
  if (offset < kTypesOffset || offset >= reserved_) return;  // the head is saved at the start
  if (in_types(address)) {
    touch_types(address, length);
  } else {
    heap_.save_range(address, length);
  }
}

void Store::give_back(void *block) {
  Block found;
  if (heap_.find(block, &found)) heap_.release(found);
}

void *Store::take_types(std::size_t size) {
  Head &head = header_->head;
  const std::size_t bytes = (size + 15) / 16 * 16;
  if (!writing_ || bytes > kTypesBytes - head.types_used) return nullptr;
  void *place = base_ + kTypesOffset + head.types_used;
  head.types_used += bytes;
  touch_types(place, size);
  return place;
}

void Store::touch_types(const void *address, std::size_t length) {
  types_private_.store(true, std::memory_order_relaxed);
  if (!writing_) {
    types_drifted_.store(true, std::memory_order_relaxed);
    return;
  }
  if (length == 0) return;
  const std::size_t first =
      static_cast<std::size_t>(static_cast<const std::byte *>(address) - base_) - kTypesOffset;
  // A counter is announced with the length 1; it lies at a multiple of 8, within a page.
  const std::size_t last = std::min(first + length - 1, kTypesBytes - 1);
  for (std::size_t page = first / kPageBytes; page <= last / kPageBytes; ++page) {
    types_pages_.set(page);
  }
}

// Writes what this transaction changed in the types area through to the file.
void Store::write_types() {
  if (types_pages_.none()) return;
  constexpr std::size_t kPiece = 64;
  for (std::size_t page = 0; page < types_pages_.size(); ++page) {
    if (!types_pages_.test(page)) continue;
    for (std::size_t at = page * kPageBytes; at < (page + 1) * kPageBytes; at += kPiece) {
      const std::byte *ours = base_ + kTypesOffset + at;
      if (std::memcmp(ours, types_ + at, kPiece) == 0) continue;
      if (!journal_.save(reinterpret_cast<std::uintptr_t>(ours), types_ + at, kPiece)) {
        failure_ = journal_.failure();
        return;
      }
      mark(ours, kPiece);
      std::memcpy(types_ + at, ours, kPiece);
    }
  }
  ++header_->head.types_version;
}

// Back to what stands in the file.
void Store::refresh_types() {
  madvise(base_ + kTypesOffset, kTypesBytes, MADV_DONTNEED);
  types_private_.store(false);
  types_drifted_.store(false);
}

}  // namespace kelp::store
