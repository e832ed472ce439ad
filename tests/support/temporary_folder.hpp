// A folder of its own for a test, gone with the object, and the contents of files.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>

inline std::string content_of(const std::filesystem::path &file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

class TemporaryFolder {
 public:
  // In `beside`, or where temporary files are kept.
  explicit TemporaryFolder(
      const std::filesystem::path &beside = std::filesystem::temp_directory_path()) {
    std::string name = (beside / "harbor-test-").string() + std::string(6, 'X');
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder like " + name);
    path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder &) = delete;
  TemporaryFolder &operator=(const TemporaryFolder &) = delete;

  const std::filesystem::path &path() const { return path_; }
  std::string file(const std::string &name) const { return (path_ / name).string(); }
  void put(const std::string &name, const std::string &content) const {
    std::ofstream(path_ / name, std::ios::binary) << content;
  }
  // The first `from` of a file becomes `to`.
  void change(const std::string &name, const std::string &from, const std::string &to) const {
    std::string content = content_of(path_ / name);
    const std::size_t at = content.find(from);
    if (at == content.npos) throw std::runtime_error(name + " does not hold: " + from);
    put(name, content.replace(at, from.size(), to));
  }

 private:
  std::filesystem::path path_;
};
