// Giving the disk back what the heap does not use. Blocks stay where they are, since objects hold
// addresses that their modules alone know of; so it is whole spans that are given back: those at
// the end by cutting the file, those between by holes. A span in a hole gets its room again before
// it is given out, so that a full disk is an error then, as it is when the file grows.
//
// A process that dies anywhere in between leaves a store that is whole: free spans hold nothing,
// and the word that says that they may be holes is on the disk before the first of them.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/failure.hpp"
#include "store/store.hpp"

namespace kelp::store {

std::int32_t Store::trim(kelp_error *error) {
  if (header_->was_compacted == 0) {
    header_->was_compacted = 1;
    if (fdatasync(file_.number()) != 0) {
      return fail(error, errno, "store '%s': it cannot be synced: %s", path_.c_str(),
                  std::strerror(errno));
    }
  }
  heap_.trim();
  return 0;
}

// A disk that makes no holes keeps what lies between.
void Store::give_back() {
  heap_.each_free_run([this](std::uint64_t first, std::uint64_t spans) {
    fallocate(file_.number(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE,
              static_cast<off_t>(kHeapOffset + first * kSpanBytes),
              static_cast<off_t>(spans * kSpanBytes));
  });
  const std::uint64_t size = kHeapOffset + header_->head.spans * kSpanBytes;
  if (ftruncate(file_.number(), static_cast<off_t>(size)) != 0) errno = 0;
}

std::uint64_t Store::bytes_on_disk() const {
  constexpr std::uint64_t kUnit = 512;  // of st_blocks
  struct stat found {};
  if (fstat(file_.number(), &found) != 0) return 0;
  return static_cast<std::uint64_t>(found.st_blocks) * kUnit;
}

bool Store::back_again(std::uint64_t first, std::uint64_t spans) {
  if (header_->was_compacted == 0 || private_now_) return true;
  const std::uint64_t from = kHeapOffset + first * kSpanBytes;
  kelp_error reason;
  if (provide_room(file_.number(), path_.c_str(), from, from + spans * kSpanBytes, &reason) == 0) {
    return true;
  }
  fail(&failure_, 0, "%s", reason.text);
  return false;
}

}  // namespace kelp::store
