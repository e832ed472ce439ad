#include "writer.hpp"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace emit {

namespace fs = std::filesystem;

namespace {

std::string read(const fs::path &path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

void Writer::file(const fs::path &relative, std::string_view text) {
  const fs::path path = root_ / relative;
  emitted_.push_back(path.lexically_normal());
  const bool exists = fs::exists(path);
  if (exists && read(path) == text) return;
  if (mode_ == Mode::check) {
    differences_.push_back((exists ? "differs: " : "missing: ") + relative.string());
    return;
  }
  fs::create_directories(path.parent_path());
  std::ofstream out(path, std::ios::binary);
  out << text;
  if (!out) throw std::runtime_error("cannot write " + path.string());
}

void Writer::note_strangers(const fs::path &folder) {
  const fs::path path = root_ / folder;
  if (!fs::exists(path)) return;
  for (const auto &entry : fs::recursive_directory_iterator(path)) {
    if (!entry.is_regular_file()) continue;
    const fs::path found = entry.path().lexically_normal();
    if (std::find(emitted_.begin(), emitted_.end(), found) != emitted_.end()) continue;
    if (mode_ == Mode::check) {
      differences_.push_back("not emitted any more: " + fs::relative(found, root_).string());
    } else {
      fs::remove(found);
    }
  }
}

}  // namespace emit
