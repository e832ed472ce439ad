// Appending records to a file.
#include "trace/file.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "trace/record.hpp"

namespace kelp::trace {

int File::open(const char *path) {
  const int opened = ::open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
  if (opened < 0) return errno;
  close();
  descriptor_ = opened;
  return 0;
}

void File::add(const std::uint8_t *record, std::size_t length) {
  if (length > kBuffer - used_) write_out();
  std::memcpy(buffer_ + used_, record, length);
  used_ += length;
}

void File::write_out() {
  std::size_t written = 0;
  while (written < used_) {
    const ssize_t now = ::write(descriptor_, buffer_ + written, used_ - written);
    if (now >= 0) {
      written += static_cast<std::size_t>(now);
    } else if (errno != EINTR) {
      loss_.code = errno;
      count_lost(written);
      break;
    }
  }
  used_ = 0;
}

// A record of which a part was written is lost with those behind it.
void File::count_lost(std::size_t written) {
  for (std::size_t at = 0; at < used_;) {
    at += record_length(buffer_ + at);
    if (at > written) ++loss_.records;
  }
}

void File::close() {
  if (!is_open()) return;
  write_out();
  if (::close(descriptor_) != 0 && loss_.code == 0) loss_.code = errno;
  descriptor_ = -1;
}

File::Loss File::take_loss() {
  const Loss taken = loss_;
  loss_ = {};
  return taken;
}

}  // namespace kelp::trace
