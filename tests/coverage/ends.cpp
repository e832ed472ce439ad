// Preloaded where runs are counted: a process that ends without the C library's knowing, by _exit
// or abort, as children of tests do, writes its counts all the same. One that is killed does not.
#include <dlfcn.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>

namespace {

constexpr int kMost = 64;
void (*writers[kMost])();
int known = 0;

void write_counts() {
  for (int i = 0; i < known; ++i) writers[i]();
  known = 0;
}

[[noreturn]] void end(int status) {
  write_counts();
  for (;;) syscall(SYS_exit_group, status);
}

}  // namespace

extern "C" {

void harbor_counts_are_written_by(void (*write)()) {
  for (int i = 0; i < known; ++i) {
    if (writers[i] == write) return;
  }
  if (known < kMost) writers[known++] = write;
}

void _exit(int status) { end(status); }
void _Exit(int status) { end(status); }

void abort() {
  write_counts();
  reinterpret_cast<void (*)()>(dlsym(RTLD_NEXT, "abort"))();
  for (;;) {
  }
}
}
