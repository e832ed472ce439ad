// The system calls behind system.hpp.
#include "store/system.hpp"

#include <fcntl.h>
#include <linux/futex.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "base/failure.hpp"

namespace kelp::store {

namespace {

// The whole of a small file of /proc; empty when it cannot be read.
std::size_t read_small(const char *path, char *text, std::size_t size) {
  const File file(::open(path, O_RDONLY | O_CLOEXEC));
  if (!file) return 0;
  const ssize_t length = ::read(file.number(), text, size - 1);
  text[length < 0 ? 0 : length] = '\0';
  return length < 0 ? 0 : static_cast<std::size_t>(length);
}

}  // namespace

File &File::operator=(File &&other) noexcept {
  if (this != &other) {
    if (number_ >= 0) ::close(number_);
    number_ = other.release();
  }
  return *this;
}

File::~File() {
  if (number_ >= 0) ::close(number_);
}

void boot_identity(std::uint8_t (&boot)[16]) {
  std::memset(boot, 0, sizeof boot);
  char text[64];
  read_small("/proc/sys/kernel/random/boot_id", text, sizeof text);
  std::size_t digits = 0;
  for (const char *at = text; *at != '\0' && digits < 32; ++at) {
    unsigned value = 0;
    if (*at >= '0' && *at <= '9') {
      value = static_cast<unsigned>(*at - '0');
    } else if (*at >= 'a' && *at <= 'f') {
      value = static_cast<unsigned>(*at - 'a' + 10);
    } else {
      continue;
    }
    boot[digits / 2] = static_cast<std::uint8_t>(boot[digits / 2] << 4 | value);
    ++digits;
  }
}

std::uint64_t process_start(pid_t pid) {
  char path[64];
  char text[1024];
  std::snprintf(path, sizeof path, "/proc/%d/stat", static_cast<int>(pid));
  if (read_small(path, text, sizeof text) == 0) return 0;
  // The name in brackets may hold anything; fields are counted from the last bracket.
  const char *at = std::strrchr(text, ')');
  if (at == nullptr) return 0;
  char state = 0;
  long threads = 0;
  unsigned long long started = 0;
  const int found = std::sscanf(
      at + 1, " %c %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %ld %*s %llu",
      &state, &threads, &started);
  if (found != 3) return 0;
  // A first thread that has ended shows as a zombie while others of the process go on.
  const bool ended = state == 'X' || (state == 'Z' && threads <= 1);
  return ended ? 0 : started;
}

std::uint64_t now_since_1970() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * 1000000000 +
         static_cast<std::uint64_t>(now.tv_nsec);
}

std::uint64_t monotonic_ms() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * 1000 +
         static_cast<std::uint64_t>(now.tv_nsec) / 1000000;
}

void futex_wait(std::uint32_t *word, std::uint32_t value, std::uint64_t milliseconds) {
  timespec limit{static_cast<time_t>(milliseconds / 1000),
                 static_cast<long>(milliseconds % 1000 * 1000000)};
  syscall(SYS_futex, word, FUTEX_WAIT, value, &limit, nullptr, 0);
}

void futex_wake(std::uint32_t *word) {
  syscall(SYS_futex, word, FUTEX_WAKE, INT32_MAX, nullptr, nullptr, 0);
}

std::uint64_t free_room(int file) {
  struct statvfs found {};
  if (fstatvfs(file, &found) != 0) return 0;
  return static_cast<std::uint64_t>(found.f_bavail) * found.f_frsize;
}

std::int32_t provide_room(int file, const char *path, std::uint64_t from, std::uint64_t to,
                          kelp_error *error) {
  const auto offset = static_cast<off_t>(from);
  const auto length = static_cast<off_t>(to - from);
  int code = 0;
  do {
    code = fallocate(file, 0, offset, length) == 0 ? 0 : errno;
  } while (code == EINTR);
  // A file system without it has the zeroes written.
  if (code == EOPNOTSUPP) code = posix_fallocate(file, offset, length);
  if (code == 0) return 0;
  return fail(error, code, "store '%s': %" PRIu64 " bytes are needed, %" PRIu64 " are free: %s",
              path, to - from, free_room(file), std::strerror(code));
}

std::int32_t sync_folder_of(const char *path) {
  const std::string text(path);
  const std::size_t slash = text.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : text.substr(0, slash + 1);
  const File file(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return file && fsync(file.number()) == 0 ? 0 : errno;
}

}  // namespace kelp::store
