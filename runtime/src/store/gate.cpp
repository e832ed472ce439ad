// Entering the table, taking and giving up the lock, and taking over from the dead.
#include "store/gate.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <ctime>

#include "base/failure.hpp"
#include "store/guard.hpp"

namespace kelp::store {

namespace {

constexpr std::uint64_t kSlice = 20;  // milliseconds between two looks at whether a holder lives
constexpr int kSpins = 100;

bool flock_until(int file, std::uint64_t deadline) {
  for (;;) {
    if (flock(file, LOCK_EX | LOCK_NB) == 0) return true;
    if (errno != EWOULDBLOCK && errno != EINTR) return false;
    if (monotonic_ms() >= deadline) {
      errno = ETIMEDOUT;
      return false;
    }
    const timespec pause{0, 2000000};
    nanosleep(&pause, nullptr);
  }
}

void relax() { __builtin_ia32_pause(); }

}  // namespace

Gate::~Gate() { leave(); }

std::int32_t Gate::open(const std::string &path, mode_t mode, std::uint64_t deadline,
                        kelp_error *error) {
  path_ = path;
  file_ = File(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, mode));
  if (!file_) {
    return fail(error, errno,
                "store: '%s': %s; who reads or writes a store has to be able to write its locks",
                path.c_str(), std::strerror(errno));
  }
  if (!flock_until(file_.number(), deadline)) {
    return fail(error, errno, "store: '%s': another process is opening or closing the store: %s",
                path.c_str(), std::strerror(errno));
  }
  return 0;
}

std::int32_t Gate::enter(const std::uint8_t (&id)[16], kelp_error *error) {
  struct stat found {};
  if (fstat(file_.number(), &found) != 0) {
    return fail(error, errno, "store: '%s': %s", path_.c_str(), std::strerror(errno));
  }
  if (static_cast<std::size_t>(found.st_size) < sizeof(LockTable)) {
    if (const auto code =
            provide_room(file_.number(), path_.c_str(), 0, sizeof(LockTable), error)) {
      return code;
    }
  }
  void *mapped =
      mmap(nullptr, sizeof(LockTable), PROT_READ | PROT_WRITE, MAP_SHARED, file_.number(), 0);
  if (mapped == MAP_FAILED) {
    return fail(error, errno, "store: '%s': it cannot be mapped: %s", path_.c_str(),
                std::strerror(errno));
  }
  table_ = static_cast<LockTable *>(mapped);
  guard_range(table_, sizeof(LockTable), &damaged_);
  std::uint8_t boot[16];
  boot_identity(boot);
  const bool known = std::memcmp(table_->magic, kLockMagic, sizeof kLockMagic) == 0 &&
                     table_->layout == kLayoutVersion &&
                     std::memcmp(table_->boot, boot, sizeof boot) == 0 &&
                     std::memcmp(table_->id, id, sizeof table_->id) == 0;
  if (!known) {
    // Places of changes that nobody counted need not be empty.
    std::memset(static_cast<void *>(table_), 0, offsetof(LockTable, changes.blocks));
    table_->layout = kLayoutVersion;
    std::memcpy(table_->boot, boot, sizeof boot);
    std::memcpy(table_->id, id, sizeof table_->id);
    std::atomic_signal_fence(std::memory_order_seq_cst);
    std::memcpy(table_->magic, kLockMagic, sizeof kLockMagic);
  }
  return claim_slot(error);
}

std::int32_t Gate::claim_slot(kelp_error *error) {
  const std::uint32_t owner = load(table_->owner);
  for (std::uint32_t i = 0; i < kProcessSlots; ++i) {
    ProcessSlot &slot = table_->slots[i];
    // The slot of a dead owner names what is to be taken over, and stays until that is done.
    if (owner == i + 1) continue;
    // A writer clears the readers of the dead, and might do so to the slot's next process.
    if (slot.pid != 0 && (slot.readers != 0 || !is_dead(slot))) continue;
    __atomic_store_n(&slot.pid, 0u, __ATOMIC_SEQ_CST);
    drop_cursors(i + 1);
    slot.started = process_start(getpid());
    slot.since = 0;
    std::atomic_signal_fence(std::memory_order_seq_cst);
    __atomic_store_n(&slot.pid, static_cast<std::uint32_t>(getpid()), __ATOMIC_SEQ_CST);
    if (table_->slots_used <= i) __atomic_store_n(&table_->slots_used, i + 1, __ATOMIC_SEQ_CST);
    slot_ = &slot;
    return 0;
  }
  return fail(error, EAGAIN, "store: '%s': %u processes have the store open, expected fewer",
              path_.c_str(), kProcessSlots);
}

void Gate::settle() { flock(file_.number(), LOCK_UN); }

bool Gate::unsettle(std::uint64_t deadline) { return flock_until(file_.number(), deadline); }

bool Gate::alone() {
  const std::uint32_t used = std::min(load(table_->slots_used), kProcessSlots);
  for (std::uint32_t i = 0; i < used; ++i) {
    const ProcessSlot &slot = table_->slots[i];
    if (&slot != slot_ && slot.pid != 0 && !is_dead(slot)) return false;
  }
  return true;
}

void Gate::leave() {
  // A child that was forked has its parent's, which stays.
  if (slot_ != nullptr && load(slot_->pid) == static_cast<std::uint32_t>(getpid())) {
    __atomic_store_n(&slot_->readers, 0u, __ATOMIC_SEQ_CST);
    __atomic_store_n(&slot_->pid, 0u, __ATOMIC_SEQ_CST);
  }
  slot_ = nullptr;
  if (table_ != nullptr) {
    release_range(table_);
    munmap(table_, sizeof(LockTable));
    table_ = nullptr;
  }
  file_ = File();
}

bool Gate::is_dead(const ProcessSlot &slot) const {
  const auto pid = static_cast<pid_t>(load(slot.pid));
  if (pid == 0) return true;
  const std::uint64_t started = process_start(pid);
  return started == 0 || started != slot.started;
}

void Gate::drop_cursors(std::uint32_t mark) {
  CursorTable &cursors = table_->cursors;
  const std::uint32_t used = std::min(load(cursors.used), kCursorSlots);
  for (std::uint32_t i = 0; i < used; ++i) {
    CursorSlot &slot = cursors.slots[i];
    if (load(slot.process) == mark) __atomic_store_n(&slot.process, 0u, __ATOMIC_SEQ_CST);
  }
}

void Gate::announce_commit() {
  CursorTable &cursors = table_->cursors;
  __atomic_fetch_add(&cursors.commits, 1u, __ATOMIC_SEQ_CST);
  if (load(cursors.listeners) != 0) futex_wake(&cursors.commits);
}

std::uint32_t Gate::own_mark() const {
  return static_cast<std::uint32_t>(slot_ - table_->slots) + 1;
}

void Gate::wait(std::uint32_t *word, std::uint32_t value, std::uint64_t deadline) {
  const std::uint64_t now = monotonic_ms();
  const std::uint64_t left = deadline > now ? deadline - now : 0;
  __atomic_fetch_add(&table_->waiters, 1u, __ATOMIC_SEQ_CST);
  futex_wait(word, value, std::min(left + 1, kSlice));
  __atomic_fetch_sub(&table_->waiters, 1u, __ATOMIC_SEQ_CST);
}

// Makes this process the owner; false at the deadline.
bool Gate::take_ownership(std::uint64_t deadline) {
  const std::uint32_t mine = own_mark();
  for (int turn = 0;; ++turn) {
    std::uint32_t found = 0;
    if (__atomic_compare_exchange_n(&table_->owner, &found, mine, false, __ATOMIC_SEQ_CST,
                                    __ATOMIC_SEQ_CST)) {
      return true;
    }
    if (turn < kSpins) {
      relax();
      continue;
    }
    const bool valid = found <= kProcessSlots;
    if (found == mine || !valid || is_dead(table_->slots[found - 1])) {
      if (__atomic_compare_exchange_n(&table_->owner, &found, mine, false, __ATOMIC_SEQ_CST,
                                      __ATOMIC_SEQ_CST)) {
        return true;
      }
      continue;
    }
    if (monotonic_ms() >= deadline) return false;
    wait(&table_->owner, found, deadline);
  }
}

// Waits until no living process reads; false at the deadline.
bool Gate::drain(std::uint64_t deadline, const ProcessSlot **holder) {
  const std::uint32_t used = std::min(load(table_->slots_used), kProcessSlots);
  for (std::uint32_t i = 0; i < used; ++i) {
    ProcessSlot &slot = table_->slots[i];
    for (int turn = 0;; ++turn) {
      const std::uint32_t readers = load(slot.readers);
      if (readers == 0) break;
      if (turn < kSpins) {
        relax();
        continue;
      }
      if (is_dead(slot)) {
        __atomic_store_n(&slot.readers, 0u, __ATOMIC_SEQ_CST);
        break;
      }
      if (monotonic_ms() >= deadline) {
        *holder = &slot;
        return false;
      }
      wait(&slot.readers, readers, deadline);
    }
  }
  return true;
}

void Gate::name_holder(const ProcessSlot *holder, const char *what, std::uint64_t since,
                       kelp_error *error) const {
  char when[32] = "unknown";
  const auto seconds = static_cast<time_t>(since / 1000000000);
  tm parts{};
  if (since != 0 && gmtime_r(&seconds, &parts) != nullptr) {
    std::strftime(when, sizeof when, "%Y-%m-%dT%H:%M:%SZ", &parts);
  }
  fail(error, ETIMEDOUT, "store: '%s': process %u has held the %s lock since %s; the wait is over",
       path_.c_str(), holder == nullptr ? 0 : load(holder->pid), what, when);
}

Gate::Entry Gate::lock_write(std::uint64_t deadline, kelp_error *error) {
  if (!take_ownership(deadline)) {
    const std::uint32_t owner = load(table_->owner);
    name_holder(owner == 0 || owner > kProcessSlots ? nullptr : &table_->slots[owner - 1], "write",
                table_->owned_since, error);
    return Entry::timed_out;
  }
  table_->owned_since = now_since_1970();
  const ProcessSlot *holder = nullptr;
  if (drain(deadline, &holder)) return Entry::entered;
  name_holder(holder, "read", holder->since, error);
  unlock_write();
  return Entry::timed_out;
}

void Gate::unlock_write() {
  __atomic_store_n(&table_->owner, 0u, __ATOMIC_SEQ_CST);
  if (load(table_->waiters) != 0) futex_wake(&table_->owner);
}

Gate::Entry Gate::lock_read(bool nested, std::uint64_t deadline, kelp_error *error) {
  for (int turn = 0;; ++turn) {
    if (__atomic_fetch_add(&slot_->readers, 1u, __ATOMIC_SEQ_CST) == 0) {
      slot_->since = now_since_1970();
    }
    const std::uint32_t owner = load(table_->owner);
    if (owner == 0 || nested) return Entry::entered;
    unlock_read();
    if (turn < kSpins) {
      relax();
      continue;
    }
    if (owner == own_mark() || owner > kProcessSlots || is_dead(table_->slots[owner - 1])) {
      return Entry::owner_died;
    }
    if (monotonic_ms() >= deadline) {
      name_holder(&table_->slots[owner - 1], "write", table_->owned_since, error);
      return Entry::timed_out;
    }
    wait(&table_->owner, owner, deadline);
  }
}

void Gate::unlock_read() {
  if (__atomic_sub_fetch(&slot_->readers, 1u, __ATOMIC_SEQ_CST) == 0 && load(table_->owner) != 0) {
    futex_wake(&slot_->readers);
  }
}

}  // namespace kelp::store
