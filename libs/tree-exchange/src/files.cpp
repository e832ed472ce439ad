#include "tree_exchange/files.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "ospf_tables/input_error.hpp"
#include "piece_size.hpp"
#include "tree_exchange/file_descriptor.hpp"

namespace tree_exchange {

using namespace ospf_tables;

namespace {

[[noreturn]] void fail(const std::string &path, const char *expected) {
  throw InputError(path, "", std::strerror(errno), expected);
}

// Gives pieces until `take` says that it has enough.
void read_until(const std::string &path, const std::function<bool(ByteView)> &take) {
  constexpr char expected[] = "a file that can be read";
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.is_open()) fail(path, expected);
  Bytes piece(piece_size);
  while (true) {
    const ssize_t got = read(file.get(), piece.data(), piece.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) fail(path, expected);
    if (got == 0 || !take(ByteView(piece).first(static_cast<std::size_t>(got)))) return;
  }
}

void write_all(int file, const std::string &path, ByteView bytes) {
  while (!bytes.empty()) {
    const ssize_t put = write(file, bytes.data(), bytes.size());
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) fail(path, "a file that can be written");
    bytes = bytes.subspan(static_cast<std::size_t>(put));
  }
}

// A file beside the one that is to be written, gone again unless it took its place.
class Replacement {
 public:
  explicit Replacement(const std::string &path)
      : path_(path), aside_(path + ".XXXXXX"), file_(mkostemp(aside_.data(), O_CLOEXEC)) {
    if (!file_.is_open()) fail(path_, "a folder that can be written to");
  }
  ~Replacement() {
    if (!placed_) unlink(aside_.c_str());
  }
  Replacement(const Replacement &) = delete;
  Replacement &operator=(const Replacement &) = delete;
  int get() const { return file_.get(); }

  void take_place(mode_t mode) {
    if (fchmod(file_.get(), mode) != 0 || file_.close() != 0 ||
        rename(aside_.c_str(), path_.c_str()) != 0) {
      fail(path_, "a file that can be written");
    }
    placed_ = true;
  }

 private:
  const std::string &path_;
  std::string aside_;
  FileDescriptor file_;
  bool placed_ = false;
};

mode_t usual_mode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

}  // namespace

void read_pieces(const std::string &path, std::uint64_t limit,
                 const std::function<void(ByteView)> &take) {
  std::uint64_t size = 0;
  read_until(path, [&](ByteView piece) {
    size += piece.size();
    if (size > limit) {
      throw InputError(path, "", "more than " + std::to_string(limit) + " bytes",
                       "a file of at most that many");
    }
    take(piece);
    return true;
  });
}

Bytes read_file(const std::string &path, std::uint64_t limit) {
  Bytes bytes;
  read_pieces(path, limit,
              [&](ByteView piece) { bytes.insert(bytes.end(), piece.begin(), piece.end()); });
  return bytes;
}

Bytes first_bytes(const std::string &path, std::size_t size) {
  Bytes bytes;
  read_until(path, [&](ByteView piece) {
    bytes.insert(bytes.end(), piece.begin(), piece.end());
    return bytes.size() < size;
  });
  if (bytes.size() > size) bytes.resize(size);
  return bytes;
}

void write_file(const std::string &path,
                const std::function<void(const std::function<void(ByteView)> &)> &write) {
  struct stat there;
  const bool exists = stat(path.c_str(), &there) == 0;
  if (exists && !S_ISREG(there.st_mode)) {
    const FileDescriptor file(open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (!file.is_open()) fail(path, "a file that can be written");
    write([&](ByteView bytes) { write_all(file.get(), path, bytes); });
    return;
  }
  Replacement file(path);
  write([&](ByteView bytes) { write_all(file.get(), path, bytes); });
  file.take_place(exists ? there.st_mode & 07777 : usual_mode());
}

}  // namespace tree_exchange
