#include "tree_exchange/connection.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>

#include "ospf_tables/input_error.hpp"

namespace tree_exchange {

using namespace ospf_tables;

namespace {

FileDescriptor new_socket(const Endpoint &endpoint, const std::string &where) {
  FileDescriptor made(
      socket(endpoint.address.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!made.is_open()) throw InputError(where, "", std::strerror(errno), "a socket");
  return made;
}

// A socket file that nobody listens at is left over from a process that was ended.
void remove_stale(const Endpoint &endpoint, const std::string &where) {
  struct stat there;
  if (lstat(endpoint.path.c_str(), &there) != 0) return;
  if (!S_ISSOCK(there.st_mode)) {
    throw InputError(where, "", "a file that is no socket", "a new name, or a socket left over");
  }
  const FileDescriptor probe = new_socket(endpoint, where);
  if (connect(probe.get(), endpoint.get(), endpoint.size) == 0 || errno != ECONNREFUSED) {
    throw InputError(where, "", "a socket that is in use", "a name that no one listens at");
  }
  unlink(endpoint.path.c_str());
}

}  // namespace

int Deadline::milliseconds_left() const {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
      end_ - std::chrono::steady_clock::now());
  if (left.count() <= 0) return 0;
  return left.count() > INT_MAX ? INT_MAX : static_cast<int>(left.count());
}

Connection::Connection(FileDescriptor socket, std::string where)
    : socket_(std::move(socket)), where_(std::move(where)) {}

Connection::Connection(const Endpoint &endpoint, std::string where, const Deadline &deadline)
    : Connection(new_socket(endpoint, where), where) {
  constexpr char expected[] = "a process that receives";
  if (connect(socket_.get(), endpoint.get(), endpoint.size) == 0) return;
  // A full queue of a Unix socket is told at once, and is not waited for.
  if (errno != EINPROGRESS && errno != EINTR) fail(std::strerror(errno), expected);
  wait(POLLOUT, deadline, expected);
  int error = 0;
  socklen_t size = sizeof error;
  if (getsockopt(socket_.get(), SOL_SOCKET, SO_ERROR, &error, &size) != 0) error = errno;
  if (error != 0) fail(std::strerror(error), expected);
}

void Connection::fail(const std::string &found, const char *expected) const {
  throw ConnectionFailure(where_ + ": found " + found + ", expected " + expected);
}

short Connection::wait(short events, const Deadline &deadline, const char *expected) const {
  pollfd waiting{socket_.get(), events, 0};
  while (true) {
    const int ready = poll(&waiting, 1, deadline.milliseconds_left());
    if (ready > 0) return waiting.revents;
    if (ready < 0 && errno != EINTR) fail(std::strerror(errno), expected);
    if (ready == 0) fail("nothing in the time that was given", expected);
  }
}

ByteView Connection::read(Bytes &buffer, const Deadline &deadline) {
  constexpr char expected[] = "more from the other side";
  while (true) {
    wait(POLLIN, deadline, expected);
    const ssize_t got = recv(socket_.get(), buffer.data(), buffer.size(), 0);
    if (got >= 0) return ByteView(buffer).first(static_cast<std::size_t>(got));
    if (errno != EINTR && errno != EAGAIN) fail(std::strerror(errno), expected);
  }
}

bool Connection::write(ByteView bytes, const Deadline &deadline) {
  return write_while(POLLOUT | POLLIN, bytes, deadline);
}

bool Connection::write_on(ByteView bytes, const Deadline &deadline) {
  return write_while(POLLOUT, bytes, deadline);
}

bool Connection::write_while(short events, ByteView bytes, const Deadline &deadline) {
  constexpr char expected[] = "the other side to take more";
  while (!bytes.empty()) {
    if ((wait(events, deadline, expected) & POLLIN) != 0) return false;
    const ssize_t put = send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (put >= 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(put));
    } else if (errno == EPIPE || errno == ECONNRESET) {
      return false;
    } else if (errno != EINTR && errno != EAGAIN) {
      fail(std::strerror(errno), expected);
    }
  }
  return true;
}

void Connection::end_writing() { shutdown(socket_.get(), SHUT_WR); }

Listener::Listener(const Endpoint &endpoint, const std::string &where) : where_(where) {
  constexpr int waiting_senders = 64;
  if (endpoint.is_unix) remove_stale(endpoint, where);
  socket_ = new_socket(endpoint, where);
  if (!endpoint.is_unix) {
    const int on = 1;
    setsockopt(socket_.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  }
  // The file has its permissions from the start, so that no one else can connect in between.
  const mode_t mask = umask(0177);
  const int bound = bind(socket_.get(), endpoint.get(), endpoint.size);
  const int why = errno;
  umask(mask);
  if (bound != 0) throw InputError(where, "", std::strerror(why), "a place to receive at");
  if (endpoint.is_unix) {
    struct stat made;
    if (lstat(endpoint.path.c_str(), &made) == 0) {
      path_ = endpoint.path;
      device_ = made.st_dev;
      inode_ = made.st_ino;
    }
  }
  if (listen(socket_.get(), waiting_senders) != 0) {
    throw InputError(where, "", std::strerror(errno), "a place to receive at");
  }
  if (!endpoint.is_unix) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    getsockname(socket_.get(), reinterpret_cast<sockaddr *>(&address), &size);
    where_ = tcp_text(address);
  }
}

Listener::~Listener() {
  struct stat there;
  if (!path_.empty() && lstat(path_.c_str(), &there) == 0 && there.st_dev == device_ &&
      there.st_ino == inode_) {
    unlink(path_.c_str());
  }
}

std::optional<Connection> Listener::accept_now(const std::string &name) {
  FileDescriptor taken(accept4(socket_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
  if (taken.is_open()) return Connection(std::move(taken), name);
  if (errno == EINTR || errno == EAGAIN || errno == ECONNABORTED || errno == EPROTO) return {};
  throw ConnectionFailure(where_ + ": " + std::strerror(errno));
}

}  // namespace tree_exchange
