// Where emitted text goes: files that are written only when their text changes, or compared with
// what is checked in.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace emit {

class Writer {
 public:
  enum class Mode { write, check };

  Writer(std::filesystem::path root, Mode mode) : root_(std::move(root)), mode_(mode) {}

  // Writes the file, or in check mode notes it if what is there differs.
  void file(const std::filesystem::path &relative, std::string_view text);

  // In check mode also notes files of these folders that were not emitted.
  void note_strangers(const std::filesystem::path &folder);

  const std::vector<std::string> &differences() const { return differences_; }

 private:
  std::filesystem::path root_;
  Mode mode_;
  std::vector<std::filesystem::path> emitted_;
  std::vector<std::string> differences_;
};

}  // namespace emit
