#include "tree_exchange/files.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <filesystem>

#include "ospf_tables/system_error.hpp"
#include "piece_size.hpp"
#include "tree_exchange/file_descriptor.hpp"

namespace tree_exchange {

using namespace ospf_tables;

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const char *act, const std::string &path) { throw cannot(act, path, errno); }

// Gives pieces until `take` says that it has enough.
void read_until(const std::string &path, const std::function<bool(ByteView)> &take) {
  const char *place = path == "-" ? "/dev/stdin" : path.c_str();
  const FileDescriptor file(open(place, O_RDONLY | O_CLOEXEC));
  if (!file.is_open()) fail("open", path);
  Bytes piece(piece_size);
  while (true) {
    const ssize_t got = read(file.get(), piece.data(), piece.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) fail("read", path);
    if (got == 0 || !take(ByteView(piece).first(static_cast<std::size_t>(got)))) return;
  }
}

void write_all(int file, const std::string &path, ByteView bytes) {
  while (!bytes.empty()) {
    const ssize_t put = write(file, bytes.data(), bytes.size());
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) fail("write", path);
    bytes = bytes.subspan(static_cast<std::size_t>(put));
  }
}

// Files that writers aside left behind, which were ended before they could take them away.
void clear_left_behind(const fs::path &path) {
  const std::string start = path.filename().string() + ".new-";
  std::error_code error;
  for (const auto &entry : fs::directory_iterator(path.parent_path(), error)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(start)) continue;
    const char *digits = name.c_str() + start.size();
    pid_t writer = 0;
    const auto [end, wrong] = std::from_chars(digits, name.c_str() + name.size(), writer);
    if (wrong != std::errc() || *end != '\0' || writer <= 0) continue;
    if (kill(writer, 0) != 0 && errno == ESRCH) unlink(entry.path().c_str());
  }
}

// A file beside the one that is to be written, gone again unless it took its place. Its name tells
// who writes it, so that one that was left behind can be told from one at work.
class Replacement {
 public:
  explicit Replacement(const fs::path &path)
      : path_(path), aside_(path.string() + ".new-" + std::to_string(getpid())) {
    clear_left_behind(path_);
    unlink(aside_.c_str());
    file_ = FileDescriptor(open(aside_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file_.is_open()) fail("write", path_);
  }
  ~Replacement() {
    if (!placed_) unlink(aside_.c_str());
  }
  Replacement(const Replacement &) = delete;
  Replacement &operator=(const Replacement &) = delete;
  int get() const { return file_.get(); }

  // On the disk with all that it holds when this returns.
  void take_place(mode_t mode) {
    if (fchmod(file_.get(), mode) != 0 || fsync(file_.get()) != 0 || file_.close() != 0 ||
        rename(aside_.c_str(), path_.c_str()) != 0) {
      fail("write", path_);
    }
    placed_ = true;
    const FileDescriptor folder(
        open(path_.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.is_open() || fsync(folder.get()) != 0) fail("write", path_);
  }

 private:
  fs::path path_;
  std::string aside_;
  FileDescriptor file_;
  bool placed_ = false;
};

// Where a path leads to, through links, also when nothing is there yet. Empty when it leads to what
// a process holds open (/dev/stdout): that is written to as it is, and no name is replaced.
fs::path target_of(const std::string &path) {
  constexpr int most_links = 40;
  fs::path target = fs::absolute(path);
  std::error_code error;
  for (int links = 0;; ++links) {
    const fs::path folder = fs::weakly_canonical(target.parent_path(), error);
    if (!error) target = folder / target.filename();
    if (target.string().starts_with("/proc/")) return {};
    if (!fs::is_symlink(target, error)) return target;
    if (links == most_links) {
      errno = ELOOP;
      fail("write", path);
    }
    target = target.parent_path() / fs::read_symlink(target);
  }
}

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
  if (path == "-") return write_file("/dev/stdout", write);
  struct stat there;
  const bool exists = stat(path.c_str(), &there) == 0;
  const fs::path target = target_of(path);
  if (target.empty() || (exists && !S_ISREG(there.st_mode))) {
    const FileDescriptor file(open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (!file.is_open()) fail("write", path);
    write([&](ByteView bytes) { write_all(file.get(), path, bytes); });
    return;
  }
  Replacement file(target);
  write([&](ByteView bytes) { write_all(file.get(), path, bytes); });
  file.take_place(exists ? there.st_mode & 07777 : usual_mode());
}

}  // namespace tree_exchange
