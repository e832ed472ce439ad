#include "router_answers/answer_file.hpp"

#include <sys/stat.h>
#include <zlib.h>

#include <array>
#include <cerrno>
#include <memory>

#include "ospf_tables/system_error.hpp"

namespace router_answers {

using ospf_tables::InputError;

namespace {

constexpr std::size_t longest = std::size_t{1} << 30;

bool is_file(const std::string &path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

}  // namespace

std::optional<std::string> find_answer(const std::string &folder, const std::string &name) {
  const std::string path = folder + '/' + name;
  if (is_file(path)) return path;
  if (is_file(path + ".gz")) return path + ".gz";
  return std::nullopt;
}

std::string read_answer(const std::string &path, const char *expected) {
  errno = 0;
  const std::unique_ptr<gzFile_s, int (*)(gzFile)> file(gzopen(path.c_str(), "rb"), gzclose_r);
  if (file == nullptr) {
    throw ospf_tables::cannot("open", path, errno);
  }
  std::string text;
  std::array<char, 65536> piece{};
  for (;;) {
    const int count = gzread(file.get(), piece.data(), piece.size());
    if (count < 0) throw InputError(path, "", "a file that cannot be unpacked", expected);
    if (count == 0) break;
    text.append(piece.data(), static_cast<std::size_t>(count));
    if (text.size() > longest) throw InputError(path, "", "more than 1 GiB", expected);
  }
  // A packed file that was cut ends like a whole one but for this.
  int state = Z_OK;
  gzerror(file.get(), &state);
  if (state != Z_OK) throw InputError(path, "", "a file that ends inside its packing", expected);
  return text;
}

}  // namespace router_answers
