// Writing, cutting and reading the redo log.
#include "store/redo.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "base/failure.hpp"
#include "store/index.hpp"

namespace kelp::store {

namespace {

constexpr std::uint64_t kRoomStep = std::uint64_t{4} << 20;

// Bytes on their way into the file, in large pieces, with their checksum.
class RecordWriter {
 public:
  RecordWriter(int file, std::uint64_t offset) : file_(file), offset_(offset) {
    buffer_.reserve(kPiece);
  }

  void put(const void *bytes, std::size_t length) {
    const auto *at = static_cast<const std::byte *>(bytes);
    sum_ = add_to_sum(sum_, at, length);
    if (buffer_.size() + length > kPiece) flush();
    buffer_.insert(buffer_.end(), at, at + length);
  }
  std::int32_t finish() {
    const std::uint64_t sum = sum_;
    put(&sum, sizeof sum);
    flush();
    return code_;
  }

  static std::uint64_t add_to_sum(std::uint64_t sum, const std::byte *at, std::size_t length) {
    for (std::size_t i = 0; i + 8 <= length; i += 8) {
      std::uint64_t word;
      std::memcpy(&word, at + i, sizeof word);
      sum = mix(sum ^ word);
    }
    return sum;
  }

 private:
  static constexpr std::size_t kPiece = std::size_t{1} << 20;

  void flush() {
    if (code_ == 0) code_ = write_at(file_, offset_, buffer_.data(), buffer_.size());
    offset_ += buffer_.size();
    buffer_.clear();
  }

  int file_;
  std::uint64_t offset_;
  std::uint64_t sum_ = 0;
  std::int32_t code_ = 0;
  std::vector<std::byte> buffer_;
};

}  // namespace

std::int32_t write_at(int file, std::uint64_t offset, const void *bytes, std::size_t length) {
  const auto *at = static_cast<const char *>(bytes);
  while (length != 0) {
    const ssize_t written = pwrite(file, at, length, static_cast<off_t>(offset));
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return written == 0 ? EIO : errno;
    at += written;
    offset += static_cast<std::uint64_t>(written);
    length -= static_cast<std::size_t>(written);
  }
  return 0;
}

std::int32_t Redo::fail_with(std::int32_t code, kelp_error *error) const {
  return fail(error, code, "store: '%s': %s", path_.c_str(), std::strerror(code));
}

std::int32_t Redo::open(const std::string &path, mode_t mode, const std::uint8_t (&id)[16],
                        kelp_error *error) {
  path_ = path;
  file_ = File(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, mode));
  struct stat found {};
  if (!file_ || fstat(file_.number(), &found) != 0) return fail_with(errno, error);
  size_ = static_cast<std::uint64_t>(found.st_size);
  RedoHead head{};
  const bool is_begun = size_ >= sizeof head && read(0, &head, sizeof head) &&
                        std::memcmp(head.magic, kRedoMagic, sizeof kRedoMagic) == 0;
  if (is_begun && head.layout == kLayoutVersion && std::memcmp(head.id, id, sizeof head.id) == 0) {
    return 0;
  }
  if (is_begun && head.layout != kLayoutVersion) {
    return fail(error, EINVAL, "store: '%s': layout %u, expected %u", path.c_str(), head.layout,
                kLayoutVersion);
  }
  head = {};
  std::memcpy(head.magic, kRedoMagic, sizeof kRedoMagic);
  head.layout = kLayoutVersion;
  std::memcpy(head.id, id, sizeof head.id);
  std::int32_t code = write_at(file_.number(), 0, &head, sizeof head);
  if (code == 0 && fdatasync(file_.number()) != 0) code = errno;
  if (code == 0) code = sync_folder_of(path.c_str());
  return code == 0 ? 0 : fail_with(code, error);
}

bool Redo::read(std::uint64_t offset, void *bytes, std::size_t length) const {
  return pread(file_.number(), bytes, length, static_cast<off_t>(offset)) ==
         static_cast<ssize_t>(length);
}

std::uint64_t Redo::record_bytes(std::size_t pages) {
  return sizeof(RedoRecord) + pages * (sizeof(std::uint64_t) + kPageBytes) + sizeof(std::uint64_t);
}

std::int32_t Redo::append(const RedoPlace &at, std::uint64_t next, std::uint64_t sequence,
                          const std::vector<std::uint64_t> &pages,
                          const std::function<const std::byte *(std::uint64_t)> &page_at,
                          kelp_error *error) {
  const std::uint64_t end = at.offset + record_bytes(pages.size());
  // Another process may have made it longer.
  struct stat found {};
  std::int32_t code = fstat(file_.number(), &found) == 0 ? 0 : errno;
  size_ = static_cast<std::uint64_t>(found.st_size);
  // Room that stands on the disk, so that a sync has the bytes alone to write.
  while (code == 0 && size_ < end) {
    const std::vector<std::byte> zeroes(kRoomStep);
    code = write_at(file_.number(), size_, zeroes.data(), zeroes.size());
    if (code == 0) size_ += zeroes.size();
  }
  if (code == 0) {
    RecordWriter writer(file_.number(), at.offset);
    const RedoRecord record{kRedoMark, sequence, at.number, next, pages.size()};
    writer.put(&record, sizeof record);
    writer.put(pages.data(), pages.size() * sizeof(std::uint64_t));
    for (const std::uint64_t page : pages) writer.put(page_at(page), kPageBytes);
    code = writer.finish();
  }
  if (code == 0 && fdatasync(file_.number()) != 0) code = errno;
  if (code == 0) return 0;
  return fail(error, code, "store: '%s': %llu bytes of a commit cannot be kept, %llu are free: %s",
              path_.c_str(), static_cast<unsigned long long>(end - at.offset),
              static_cast<unsigned long long>(free_room(file_.number())), std::strerror(code));
}

std::int32_t Redo::cut(std::uint64_t offset, kelp_error *error) {
  const RedoRecord nothing{};
  if (offset >= size_) return 0;
  std::int32_t code = write_at(file_.number(), offset, &nothing, sizeof nothing);
  if (code == 0 && fdatasync(file_.number()) != 0) code = errno;
  return code == 0 ? 0 : fail_with(code, error);
}

// Whether the whole record stands there.
bool Redo::is_record(const RedoPlace &at, std::uint64_t sequence, RedoRecord *record) const {
  if (!read(at.offset, record, sizeof *record) || record->mark != kRedoMark ||
      record->sequence != sequence || record->previous != at.number ||
      record->pages > size_ / kPageBytes || record_bytes(record->pages) > size_ - at.offset) {
    return false;
  }
  std::vector<std::byte> piece(std::size_t{1} << 20);
  std::uint64_t sum = 0;
  std::uint64_t left = record_bytes(record->pages) - sizeof sum;
  std::uint64_t offset = at.offset;
  while (left != 0) {
    const std::size_t length = std::min<std::uint64_t>(left, piece.size());
    if (!read(offset, piece.data(), length)) return false;
    sum = RecordWriter::add_to_sum(sum, piece.data(), length);
    offset += length;
    left -= length;
  }
  std::uint64_t said = 0;
  return read(offset, &said, sizeof said) && said == sum;
}

std::int32_t Redo::replay(
    RedoPlace at, std::uint64_t sequence,
    const std::function<std::int32_t(std::uint64_t, const std::byte *)> &apply, kelp_error *error) {
  RedoRecord record{};
  const RedoPlace start{kRedoStart, at.number};
  if (!is_record(at, sequence + 1, &record) && is_record(start, sequence + 1, &record)) at = start;
  std::vector<std::byte> page(kPageBytes);
  while (is_record(at, ++sequence, &record)) {
    const std::uint64_t table = at.offset + sizeof record;
    const std::uint64_t first = table + record.pages * sizeof(std::uint64_t);
    for (std::uint64_t i = 0; i < record.pages; ++i) {
      std::uint64_t offset = 0;
      if (!read(table + i * sizeof offset, &offset, sizeof offset) ||
          !read(first + i * kPageBytes, page.data(), kPageBytes)) {
        return fail_with(EIO, error);
      }
      if (const auto code = apply(offset, page.data())) return fail_with(code, error);
    }
    at = {at.offset + record_bytes(record.pages), record.number};
  }
  return 0;
}

}  // namespace kelp::store
