// What the store asks of the system: this run of the machine, processes and whether they live,
// futexes, disk room that is really there, and the time.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "kelp/embed.h"

namespace kelp::store {

// The identity of this run of the machine; zeroes where the system does not tell.
void boot_identity(std::uint8_t (&boot)[16]);

// When a process started, in the system's ticks; 0 when there is none, or only what is left of it
// until its parent asks for its status.
std::uint64_t process_start(pid_t pid);

std::uint64_t now_since_1970();  // nanoseconds
std::uint64_t monotonic_ms();

// Sleeps while the word holds the value, at most so long. Wakes all that sleep on it.
void futex_wait(std::uint32_t *word, std::uint32_t value, std::uint64_t milliseconds);
void futex_wake(std::uint32_t *word);

inline std::uint32_t load(const std::uint32_t &word) {
  return __atomic_load_n(&word, __ATOMIC_SEQ_CST);
}

// Has the bytes of the file from one offset to another stand on the disk, so that storing there
// cannot fail. On failure the text names the file, what was needed and what is free.
std::int32_t provide_room(int file, const char *path, std::uint64_t from, std::uint64_t to,
                          kelp_error *error);

// Bytes free on the file's disk.
std::uint64_t free_room(int file);

std::int32_t sync_folder_of(const char *path);

// A file descriptor that closes itself.
class File {
 public:
  File() = default;
  explicit File(int number) : number_(number) {}
  File(File &&other) noexcept : number_(other.release()) {}
  File &operator=(File &&other) noexcept;
  ~File();

  int number() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }
  int release() {
    const int number = number_;
    number_ = -1;
    return number;
  }

 private:
  int number_ = -1;
};

}  // namespace kelp::store
