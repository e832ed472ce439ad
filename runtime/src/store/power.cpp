// What a store of durability `power` does beside the others: keeping each commit on the disk,
// images now and then, and making the file anew after the machine was started again.
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/failure.hpp"
#include "store/store.hpp"

namespace kelp::store {

namespace {

std::int32_t copy_file(int from, int to, std::uint64_t size) {
  std::vector<std::byte> piece(std::size_t{1} << 20);
  for (std::uint64_t at = 0; at < size;) {
    const std::size_t wanted = std::min<std::uint64_t>(size - at, piece.size());
    const ssize_t length = pread(from, piece.data(), wanted, static_cast<off_t>(at));
    if (length < 0 && errno == EINTR) continue;
    if (length <= 0) return length == 0 ? EIO : errno;
    if (const auto code = write_at(to, at, piece.data(), static_cast<std::size_t>(length))) {
      return code;
    }
    at += static_cast<std::uint64_t>(length);
  }
  return 0;
}

// The file takes the place of another, on the disk too.
std::int32_t put_in_place(int file, const std::string &name, const std::string &place) {
  if (fdatasync(file) != 0 || std::rename(name.c_str(), place.c_str()) != 0) return errno;
  return sync_folder_of(place.c_str());
}

}  // namespace

// --- at each commit ---

void Store::mark(const void *address, std::size_t length) {
  if (!redo_.is_open() || length == 0) return;
  const auto offset =
      reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(base_);
  if (offset >= reserved_) return;
  const std::uint64_t last = (offset + length - 1) / kPageBytes;
  try {
    if (last >= is_marked_.size()) is_marked_.resize(last + last / 2 + 1);
    for (std::uint64_t page = offset / kPageBytes; page <= last; ++page) {
      if (is_marked_[page]) continue;
      is_marked_[page] = true;
      marked_.push_back(page * kPageBytes);
    }
  } catch (const std::bad_alloc &) {
    refuse(ENOMEM, "no memory for the list of what a commit has to keep");
  }
}

void Store::forget_marks() {
  for (const std::uint64_t offset : marked_) is_marked_[offset / kPageBytes] = false;
  marked_.clear();
}

// The state as the file is to have it once this transaction is committed goes to the log.
void Store::keep_commit() {
  if (!redo_.is_open()) return;
  mark(header_, sizeof *header_);
  if (failure_.code != 0) return;
  Head &head = header_->head;
  const RedoPlace at{head.redo_end, head.redo_number};
  std::uint64_t number = 0;
  if (getrandom(&number, sizeof number, 0) != sizeof number) number = mix(at.number + 1);
  head.redo_end = at.offset + Redo::record_bytes(marked_.size());
  head.redo_number = number;
  std::sort(marked_.begin(), marked_.end());
  const auto page_at = [this](std::uint64_t offset) -> const std::byte * {
    const bool in_types = offset - kTypesOffset < kTypesBytes;
    return in_types ? types_ + (offset - kTypesOffset) : base_ + offset;
  };
  std::int32_t code = KELP_ERR_NO_MEMORY;
  const bool done = without_exceptions([&] {
    code =
        redo_broken_ ? EIO : redo_.append(at, number, head.sequence, marked_, page_at, &failure_);
  });
  if (done && code == 0) return;
  // What may have reached the disk must not come back after it was said to be undone.
  redo_broken_ = redo_broken_ || redo_.cut(at.offset, nullptr) != 0;
  if (failure_.code != 0) return;
  refuse(code, done ? "its log cannot be written any more; open it anew"
                    : "no memory for what a commit keeps");
}

// An image of the state that was committed last, from which the log goes on at its start.
void Store::keep_image() {
  if (!redo_.is_open() || header_->head.redo_end < next_image_) return;
  kelp_error error{};
  const std::uint64_t size = kHeapOffset + header_->head.spans * kSpanBytes;
  if (write_image(&error) == 0) {
    header_->head.redo_end = kRedoStart;
    next_image_ = std::max(options_.image_bytes, size / 2);
  } else {
    // It is tried again when the log has grown as much once more.
    next_image_ = header_->head.redo_end + std::max(options_.image_bytes, size / 2);
  }
}

std::int32_t Store::write_image(kelp_error *error) {
  const std::string name = path_ + "-image-new";
  File image(
      ::open(name.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, options_.mode));
  if (!image) return fail(error, errno, "store '%s': %s", name.c_str(), std::strerror(errno));
  const std::uint64_t size = kHeapOffset + header_->head.spans * kSpanBytes;
  std::int32_t code = write_at(image.number(), 0, base_, kTypesOffset);
  if (code == 0) code = write_at(image.number(), kTypesOffset, types_, kTypesBytes);
  if (code == 0) {
    code = write_at(image.number(), kHeapOffset, base_ + kHeapOffset, size - kHeapOffset);
  }
  if (code == 0 && damaged_.load()) code = EIO;
  if (code == 0) code = put_in_place(image.number(), name, path_ + "-image");
  if (code == 0) return 0;
  unlink(name.c_str());
  return fail(error, code, "store '%s-image': %s", path_.c_str(), std::strerror(code));
}

// --- after a restart of the machine ---

// Makes the file anew from its image and its log. Killed in between, it is begun again: the old
// file stays until the new one is whole.
std::int32_t Store::recover(const Identity &identity, kelp_error *error) {
  if (options_.read_only) {
    return fail(
        error, KELP_ERR_AGAIN,
        "store '%s': the machine was started again; whoever opens it for writing next makes "
        "it anew from what was synced",
        path_.c_str());
  }
  const std::string image_name = path_ + "-image";
  const std::string name = path_ + "-new";
  const File image(::open(image_name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
  struct stat found {};
  Header header{};
  if (!image || fstat(image.number(), &found) != 0 ||
      pread(image.number(), &header, sizeof header, 0) != sizeof header ||
      std::memcmp(&header.identity, &identity, sizeof identity) != 0) {
    return fail(error, EIO,
                "store '%s': the machine was started again, and '%s', from which it is to be made "
                "anew, is missing or that of another store",
                path_.c_str(), image_name.c_str());
  }
  if (const auto code = check_header(header, static_cast<std::uint64_t>(found.st_size), error)) {
    return code;
  }
  File made(
      ::open(name.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, options_.mode));
  std::int32_t code = made ? 0 : errno;
  if (code == 0) {
    code = copy_file(image.number(), made.number(), static_cast<std::uint64_t>(found.st_size));
  }
  if (code == 0) code = redo_.open(path_ + "-redo", options_.mode, identity.id, error);
  const auto apply = [&](std::uint64_t offset, const std::byte *page) -> std::int32_t {
    if (offset % kPageBytes != 0 || offset >= identity.reserved_bytes) return EINVAL;
    return write_at(made.number(), offset, page, kPageBytes);
  };
  if (code == 0) {
    code = redo_.replay({header.head.redo_end, header.head.redo_number}, header.head.sequence,
                        apply, error);
  }
  if (code == 0 && pread(made.number(), &header, sizeof header, 0) != sizeof header) code = EIO;
  if (code == 0) {
    // Spans that nobody wrote to are in no record.
    const std::uint64_t size = kHeapOffset + header.head.spans * kSpanBytes;
    if (fstat(made.number(), &found) != 0) code = errno;
    if (code == 0 && static_cast<std::uint64_t>(found.st_size) < size) {
      code = provide_room(made.number(), name.c_str(), 0, size, error);
    }
  }
  // The journal is that of the file that was lost.
  if (code == 0 && unlink((path_ + "-log").c_str()) != 0 && errno != ENOENT) code = errno;
  if (code == 0) code = put_in_place(made.number(), name, path_);
  if (code == 0) return succeed(error);
  unlink(name.c_str());
  if (error == nullptr || error->code != code) {
    fail(error, code, "store '%s': it cannot be made anew from its image and log: %s",
         path_.c_str(), std::strerror(code));
  }
  return code;
}

}  // namespace kelp::store
