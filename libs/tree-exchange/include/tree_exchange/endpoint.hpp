// Where two processes meet: a Unix socket, or a TCP port on loopback. Nothing else is accepted, so
// that a tree is never offered to, or taken from, another machine.
#pragma once

#include <sys/socket.h>

#include <string>

namespace tree_exchange {

struct Endpoint {
  bool is_unix = false;
  std::string path;  // of a Unix socket
  sockaddr_storage address{};
  socklen_t size = 0;

  const sockaddr *get() const { return reinterpret_cast<const sockaddr *>(&address); }
};

// "unix:PATH", "tcp:127.0.0.1:PORT" or "tcp:[::1]:PORT". option: for messages, such as "send --to".
// Throws InputError for all other texts.
Endpoint parse_endpoint(const std::string &option, const std::string &text);

// The text of a TCP endpoint with the port that the system chose.
std::string tcp_text(const sockaddr_storage &address);

}  // namespace tree_exchange
