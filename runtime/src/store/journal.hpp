// The journal of a transaction: the old bytes of what it changes, in a mapped file of their own, so
// that whoever finds them can put them back. An entry counts once the length behind it is stored;
// storing the length 0 is the commit.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

#include "store/layout.hpp"
#include "store/system.hpp"

namespace kelp::store {

class Journal {
 public:
  Journal() = default;
  Journal(const Journal &) = delete;
  Journal &operator=(const Journal &) = delete;
  ~Journal();

  // Opens or makes the file. Entries of another store are refused.
  std::int32_t open(const std::string &path, mode_t mode, const std::uint8_t (&id)[16],
                    kelp_error *error);
  void close();

  // Keeps length bytes, which now lie at bytes, as those of the address. False without room, with
  // the reason in failure().
  bool save(std::uint64_t address, const void *bytes, std::size_t length);

  std::uint64_t length() const {
    return head_ == nullptr ? 0 : __atomic_load_n(&head_->length, __ATOMIC_ACQUIRE);
  }

  // Calls put_back(address, bytes, length) with the entries, the latest first; false when an entry
  // is not what save writes, or put_back refuses.
  template <typename PutBack>
  bool each_backwards(PutBack &&put_back) const {
    std::uint64_t end = length();
    if (end > capacity_ || end % 8 != 0) return false;
    while (end != 0) {
      if (end < sizeof(JournalEntry)) return false;
      const std::byte *at = entries() + end - sizeof(JournalEntry);
      const auto *entry = reinterpret_cast<const JournalEntry *>(at);
      if (entry->length > end) return false;
      const std::uint64_t padded = (entry->length + 7) / 8 * 8;
      if (padded + sizeof(JournalEntry) > end) return false;
      if (!put_back(entry->address, at - padded, entry->length)) return false;
      end -= padded + sizeof(JournalEntry);
    }
    return true;
  }

  // The commit, or the end of a rollback.
  void clear();

  const kelp_error &failure() const { return failure_; }
  std::atomic<bool> &damaged() { return damaged_; }

 private:
  std::byte *entries() const { return reinterpret_cast<std::byte *>(head_) + kEntriesOffset; }
  bool grow(std::uint64_t need);

  static constexpr std::uint64_t kReserved = UINT64_C(64) << 30;
  static constexpr std::uint64_t kFirstRoom = std::uint64_t{1} << 20;
  static constexpr std::uint64_t kKeptRoom = std::uint64_t{16} << 20;
  static constexpr std::uint64_t kLargestStep = std::uint64_t{64} << 20;

  std::string path_;
  File file_;
  JournalHead *head_ = nullptr;
  std::uint64_t capacity_ = 0;  // bytes of entries that stand on the disk
  kelp_error failure_ = {};
  std::atomic<bool> damaged_{false};
};

}  // namespace kelp::store
