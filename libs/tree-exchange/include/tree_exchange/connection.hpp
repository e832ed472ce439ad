// Stream sockets between two processes, with a time by which all must be done: no call here waits
// longer, is cut short by a signal, or raises one when the other side has gone.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

#include "tree_exchange/endpoint.hpp"
#include "tree_exchange/file_descriptor.hpp"
#include "tree_exchange/table_rules.hpp"

namespace tree_exchange {

class Deadline {
 public:
  explicit Deadline(std::chrono::milliseconds time)
      : end_(std::chrono::steady_clock::now() + time) {}
  // For poll(); 0 when the time is over.
  int milliseconds_left() const;

 private:
  std::chrono::steady_clock::time_point end_;
};

// Waiting or the connection came to an end; says so in one line.
class ConnectionFailure : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Connection {
 public:
  // Connects. `where` stands in messages.
  Connection(const Endpoint &endpoint, std::string where, const Deadline &deadline);
  // Takes over a connected socket.
  Connection(FileDescriptor socket, std::string where);

  // Some bytes, at least one; none at the end of what the other side writes.
  ByteView read(Bytes &buffer, const Deadline &deadline);

  // Writes all. False when the other side has said something, or has gone, before that: it is to be
  // read now.
  bool write(ByteView bytes, const Deadline &deadline);
  // Writes all whatever the other side says meanwhile; false when it has gone.
  bool write_on(ByteView bytes, const Deadline &deadline);

  // For poll().
  int socket() const { return socket_.get(); }

  // Nothing more will be written.
  void end_writing();

 private:
  [[noreturn]] void fail(const std::string &found, const char *expected) const;
  bool write_while(short events, ByteView bytes, const Deadline &deadline);
  short wait(short events, const Deadline &deadline, const char *expected) const;

  FileDescriptor socket_;
  std::string where_;
};

// A place to be connected to. A Unix socket has the permissions 0600 and is removed with the
// listener; one that nobody listens at any more is replaced.
class Listener {
 public:
  Listener(const Endpoint &endpoint, const std::string &where);
  ~Listener();
  Listener(const Listener &) = delete;
  Listener &operator=(const Listener &) = delete;

  // As a sender names it: with the port that the system chose.
  const std::string &where() const { return where_; }
  // For poll().
  int socket() const { return socket_.get(); }
  // A connection that waits to be taken, or none. name: of it, for messages.
  std::optional<Connection> accept_now(const std::string &name);

 private:
  std::string path_;  // of a Unix socket
  dev_t device_ = 0;  // which file it was made as
  ino_t inode_ = 0;
  FileDescriptor socket_;
  std::string where_;
};

}  // namespace tree_exchange
