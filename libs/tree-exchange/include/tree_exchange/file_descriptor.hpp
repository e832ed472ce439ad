// A file descriptor that is closed with its holder.
#pragma once

#include <unistd.h>

#include <utility>

namespace tree_exchange {

class FileDescriptor {
 public:
  explicit FileDescriptor(int number = -1) : number_(number) {}
  ~FileDescriptor() { close(); }
  FileDescriptor(FileDescriptor &&other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor &operator=(FileDescriptor &&other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }

  bool is_open() const { return number_ >= 0; }
  int get() const { return number_; }
  int close() { return is_open() ? ::close(std::exchange(number_, -1)) : 0; }

 private:
  int number_;
};

}  // namespace tree_exchange
