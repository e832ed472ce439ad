// Opening, growing and writing the journal.
#include "store/journal.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cinttypes>
#include <cstring>

#include "base/failure.hpp"
#include "base/sanitizers.hpp"
#include "store/guard.hpp"
#include "store/layout.hpp"

namespace kelp::store {

namespace {

// Below the addresses of stores. Where the system chooses, a mapping of this size may come to lie
// in front of what loaders have, where a store that is opened later has to be. Under the thread
// sanitizer no address there is a program's.
void *map_below_stores(int file, std::uint64_t bytes) {
  constexpr std::uint64_t places = 32;
  const std::uint64_t stride = (bytes + kSpanBytes - 1) / kSpanBytes * kSpanBytes;
  for (std::uint64_t place = 1; !kThreadSanitizer && place <= places; ++place) {
    void *wanted = reinterpret_cast<void *>(kLowestAddress - place * stride);
    void *found =
        mmap(wanted, bytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED_NOREPLACE, file, 0);
    if (found == wanted) return found;
    if (found != MAP_FAILED) munmap(found, bytes);
  }
  return mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
}

}  // namespace

Journal::~Journal() { close(); }

std::int32_t Journal::open(const std::string &path, mode_t mode, const std::uint8_t (&id)[16],
                           kelp_error *error) {
  path_ = path;
  file_ = File(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, mode));
  struct stat found {};
  if (!file_ || fstat(file_.number(), &found) != 0) {
    return fail(error, errno, "store: '%s': %s", path.c_str(), std::strerror(errno));
  }
  auto size = static_cast<std::uint64_t>(found.st_size);
  if (size < kEntriesOffset + kFirstRoom) {
    const std::uint64_t wanted = kEntriesOffset + kFirstRoom;
    if (const auto code = provide_room(file_.number(), path.c_str(), 0, wanted, error)) {
      return code;
    }
    size = wanted;
  }
  capacity_ = std::min(size - kEntriesOffset, kReserved);
  void *mapped = map_below_stores(file_.number(), kEntriesOffset + kReserved);
  if (mapped == MAP_FAILED) {
    return fail(error, errno, "store: '%s': %" PRIu64 " bytes of addresses for it: %s",
                path.c_str(), kEntriesOffset + kReserved, std::strerror(errno));
  }
  head_ = static_cast<JournalHead *>(mapped);
  guard_range(head_, kEntriesOffset + kReserved, &damaged_);
  const bool begun = std::memcmp(head_->magic, kJournalMagic, sizeof kJournalMagic) == 0;
  const bool same = begun && std::memcmp(head_->id, id, sizeof head_->id) == 0;
  if (begun && head_->layout != kLayoutVersion) {
    return fail(error, EINVAL, "store: '%s': layout %u, expected %u", path.c_str(), head_->layout,
                kLayoutVersion);
  }
  if (begun && !same && head_->length != 0) {
    return fail(error, EINVAL,
                "store: '%s': it holds an unfinished transaction of another store; the database "
                "and its journal belong together",
                path.c_str());
  }
  if (same) return 0;
  // A file of zeroes is one that was being made.
  static constexpr char kNothing[sizeof kJournalMagic] = {};
  if (!begun && std::memcmp(head_->magic, kNothing, sizeof kNothing) != 0) {
    return fail(error, EINVAL, "store: '%s': it is no journal", path.c_str());
  }
  head_->length = 0;
  head_->layout = kLayoutVersion;
  std::memcpy(head_->id, id, sizeof head_->id);
  std::atomic_signal_fence(std::memory_order_seq_cst);
  std::memcpy(head_->magic, kJournalMagic, sizeof kJournalMagic);
  return 0;
}

void Journal::close() {
  if (head_ == nullptr) return;
  release_range(head_);
  munmap(head_, kEntriesOffset + kReserved);
  head_ = nullptr;
  file_ = File();
}

bool Journal::grow(std::uint64_t need) {
  // Another process may have made it longer.
  struct stat found {};
  if (fstat(file_.number(), &found) == 0 && found.st_size >= 0) {
    const auto size = static_cast<std::uint64_t>(found.st_size);
    if (size > kEntriesOffset) capacity_ = std::min(size - kEntriesOffset, kReserved);
    if (need <= capacity_) return true;
  }
  if (need > kReserved) {
    fail(&failure_, ENOSPC, "store: '%s': a transaction changes more than %" PRIu64 " bytes",
         path_.c_str(), kReserved);
    return false;
  }
  const std::uint64_t step = std::clamp(capacity_, kFirstRoom, kLargestStep);
  for (const std::uint64_t wanted : {std::max(need, capacity_ + step), need}) {
    const std::uint64_t to = kEntriesOffset + std::min(wanted, kReserved);
    if (provide_room(file_.number(), path_.c_str(), kEntriesOffset + capacity_, to, &failure_) ==
        0) {
      capacity_ = to - kEntriesOffset;
      return true;
    }
  }
  return false;
}

bool Journal::save(std::uint64_t address, const void *bytes, std::size_t size) {
  const std::uint64_t start = length();
  const std::uint64_t padded = (size + 7) / 8 * 8;
  const std::uint64_t end = start + padded + sizeof(JournalEntry);
  if (end > capacity_ && !grow(end)) return false;
  std::byte *at = entries() + start;
  std::memcpy(at, bytes, size);
  const JournalEntry entry{address, size};
  std::memcpy(at + padded, &entry, sizeof entry);
  // Whoever finds the length finds the entry, and the caller's store comes after both.
  __atomic_store_n(&head_->length, end, __ATOMIC_RELEASE);
  std::atomic_signal_fence(std::memory_order_seq_cst);
  return true;
}

void Journal::clear() {
  std::atomic_signal_fence(std::memory_order_seq_cst);
  const bool long_one = head_->length > kKeptRoom;
  __atomic_store_n(&head_->length, std::uint64_t{0}, __ATOMIC_RELEASE);
  std::atomic_signal_fence(std::memory_order_seq_cst);
  if (long_one && ftruncate(file_.number(), static_cast<off_t>(kEntriesOffset + kKeptRoom)) == 0) {
    capacity_ = kKeptRoom;
  }
}

}  // namespace kelp::store
