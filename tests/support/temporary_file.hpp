// A file of one test in the test's own folder, gone with the object.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <span>
#include <string>

class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string &name)
      : path_(testing::TempDir() + "harbor_" + std::to_string(getpid()) + "_" + name) {
    std::remove(path_.c_str());
  }
  ~TemporaryFile() { std::remove(path_.c_str()); }
  TemporaryFile(const TemporaryFile &) = delete;
  TemporaryFile &operator=(const TemporaryFile &) = delete;

  const std::string &path() const { return path_; }

  // As a new file: cutting the old one back would have some file systems write it out each time.
  void write(std::span<const std::uint8_t> bytes) const {
    std::remove(path_.c_str());
    put(bytes, std::ios::trunc);
  }
  void append(std::span<const std::uint8_t> bytes) const { put(bytes, std::ios::app); }

 private:
  void put(std::span<const std::uint8_t> bytes, std::ios::openmode mode) const {
    std::ofstream file(path_, std::ios::binary | mode);
    file.write(reinterpret_cast<const char *>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(file.flush()) << path_;
  }

  std::string path_;
};
