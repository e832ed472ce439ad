// Stands before the C library and fails one call of a kind: the n-th of malloc, mmap, write or
// fsync from now on. A program links it or preloads it; in the latter case FAILING_CALL=malloc:3 in
// its environment says which call since the beginning of main fails, and FAILING_CALL=count:FILE
// that none does and that how many there were is written to the file.
#include "fault/failing_calls.hpp"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
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

std::atomic<long> counted[failing::kinds] = {};
const char *report = nullptr;

bool strikes(failing::Kind kind) {
  counted[kind].fetch_add(1, std::memory_order_relaxed);
  std::atomic<long> &calls = left[kind];
  if (calls.load(std::memory_order_relaxed) < 0) return false;
  return calls.fetch_sub(1) == 0;
}

void read_environment() {
  const char *wanted = std::getenv("FAILING_CALL");
  if (wanted == nullptr) return;
  for (unsigned kind = 0; kind < failing::kinds; ++kind) {
    counted[kind] = 0;
    const std::size_t length = std::strlen(kNames[kind]);
    if (std::strncmp(wanted, kNames[kind], length) != 0 || wanted[length] != ':') continue;
    left[kind] = std::strtol(wanted + length + 1, nullptr, 10);
  }
  if (std::strncmp(wanted, "count:", 6) == 0) report = wanted + 6;
}

__attribute__((destructor)) void write_report() {
  if (report == nullptr) return;
  const int file = open(report, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  for (unsigned kind = 0; kind < failing::kinds; ++kind) {
    dprintf(file, "%ld\n", counted[kind].load());
  }
  close(file);
}

using Main = int(int, char **, char **);
Main *program_main = nullptr;

int begin_main(int count, char **words, char **environment) {
  read_environment();
  return program_main(count, words, environment);
}

}  // namespace

void failing::fail_after(Kind kind, long calls) { left[kind] = calls; }

bool failing::has_struck(Kind kind) { return left[kind] == -1; }

// What runs before main, the loader and the constructors of libraries, is nobody's to mend.
extern "C" int __libc_start_main(Main *main, int count, char **words, void (*init)(),
                                 void (*fini)(), void (*loader_fini)(), void *stack_end) {
  program_main = main;
  const auto next =
      reinterpret_cast<decltype(&__libc_start_main)>(dlsym(RTLD_NEXT, "__libc_start_main"));
  return next(begin_main, count, words, init, fini, loader_fini, stack_end);
}

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
