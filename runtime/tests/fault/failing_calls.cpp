// Stands before the C library and fails one call of a kind: the n-th of malloc, mmap, write or
// fsync from now on. A program links it or preloads it; in the latter case FAILING_CALL=malloc:3 in
// its environment says which call of the whole process fails.
#include "fault/failing_calls.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

constexpr const char *kNames[failing::kinds] = {"malloc", "mmap", "write", "fsync"};
std::atomic<long> left[failing::kinds] = {-1, -1, -1, -1};  // -1: none is to fail

bool strikes(failing::Kind kind) {
  std::atomic<long> &calls = left[kind];
  if (calls.load(std::memory_order_relaxed) < 0) return false;
  return calls.fetch_sub(1) == 0;
}

__attribute__((constructor)) void read_environment() {
  const char *wanted = std::getenv("FAILING_CALL");
  if (wanted == nullptr) return;
  for (unsigned kind = 0; kind < failing::kinds; ++kind) {
    const std::size_t length = std::strlen(kNames[kind]);
    if (std::strncmp(wanted, kNames[kind], length) != 0 || wanted[length] != ':') continue;
    left[kind] = std::strtol(wanted + length + 1, nullptr, 10);
  }
}

}  // namespace

void failing::fail_after(Kind kind, long calls) { left[kind] = calls; }

bool failing::has_struck(Kind kind) { return left[kind] == -1; }

extern "C" void *malloc(std::size_t size) {
  if (!strikes(failing::malloc_calls)) return __libc_malloc(size);
  errno = ENOMEM;
  return nullptr;
}

extern "C" void *calloc(std::size_t count, std::size_t size) {
  if (!strikes(failing::malloc_calls)) return __libc_calloc(count, size);
  errno = ENOMEM;
  return nullptr;
}

extern "C" void *realloc(void *block, std::size_t size) {
  if (!strikes(failing::malloc_calls)) return __libc_realloc(block, size);
  errno = ENOMEM;
  return nullptr;
}

extern "C" void *aligned_alloc(std::size_t alignment, std::size_t size) {
  if (!strikes(failing::malloc_calls)) return __libc_memalign(alignment, size);
  errno = ENOMEM;
  return nullptr;
}

extern "C" void *mmap(void *address, std::size_t length, int protection, int flags, int file,
                      off_t offset) {
  if (strikes(failing::mmap_calls)) {
    errno = ENOMEM;
    return MAP_FAILED;
  }
  return reinterpret_cast<void *>(
      syscall(SYS_mmap, address, length, protection, flags, file, offset));
}

extern "C" ssize_t write(int file, const void *bytes, std::size_t length) {
  if (!strikes(failing::write_calls)) return syscall(SYS_write, file, bytes, length);
  errno = ENOSPC;
  return -1;
}

extern "C" int fsync(int file) {
  if (!strikes(failing::fsync_calls)) return static_cast<int>(syscall(SYS_fsync, file));
  errno = EIO;
  return -1;
}
