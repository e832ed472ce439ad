// A real engine for tests, and a way to it that can be cut and slowed down.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <atomic>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "support/processes.hpp"

namespace replication_tests {

inline sockaddr_in loopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

// A listening socket at a port that the system chose.
inline std::pair<int, std::uint16_t> listening_socket() {
  const int own = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = loopback(0);
  bind(own, reinterpret_cast<sockaddr *>(&address), sizeof address);
  listen(own, 64);
  socklen_t length = sizeof address;
  getsockname(own, reinterpret_cast<sockaddr *>(&address), &length);
  return {own, ntohs(address.sin_port)};
}

inline int connected_socket(std::uint16_t port) {
  const int own = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = loopback(port);
  if (connect(own, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0) return own;
  close(own);
  return -1;
}

// Below those that the system gives to who connects: one that tries a port of those again and again
// while nobody listens would be given it, meet itself, and keep the server from coming back.
inline std::uint16_t free_port() {
  std::mt19937 random(std::random_device{}());
  for (;;) {
    const auto port = static_cast<std::uint16_t>(15000 + random() % 15000);
    const int own = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopback(port);
    const bool is_free =
        bind(own, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    close(own);
    if (is_free) return port;
  }
}

inline std::string url_of(std::uint16_t port) { return "nats://127.0.0.1:" + std::to_string(port); }

// One server, which keeps its place when it is started again.
class Server {
 public:
  // more: further words of its command line.
  explicit Server(const std::filesystem::path &folder, std::vector<std::string> more = {})
      : folder_(folder), more_(std::move(more)) {
    std::filesystem::create_directories(folder_);
    start();
  }

  void start() {
    std::vector<std::string> words = {"/usr/bin/env", "nats-server", "-a",
                                      "127.0.0.1",    "-p",          std::to_string(port_),
                                      "-js",          "-sd",         disk().string()};
    words.insert(words.end(), more_.begin(), more_.end());
    process_ =
        std::make_unique<tool_tests::Process>(folder_, "server" + std::to_string(++starts_), words);
    for (int tries = 0; tries < 1000; ++tries) {
      if (const int own = connected_socket(port_); own >= 0) {
        close(own);
        return;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ADD_FAILURE() << "the server does not listen: " << process_->err();
  }
  // At once, with whatever it has not written yet.
  void kill() { process_.reset(); }

  std::uint16_t port() const { return port_; }
  std::filesystem::path disk() const { return folder_ / "disk"; }

 private:
  std::filesystem::path folder_;
  std::vector<std::string> more_;
  std::uint16_t port_ = free_port();
  int starts_ = 0;
  std::unique_ptr<tool_tests::Process> process_;
};

// Carries bytes between those who connect here and the server.
class Proxy {
 public:
  explicit Proxy(std::uint16_t server) : server_(server) {
    std::tie(listener_, port_) = listening_socket();
    thread_ = std::thread([this] { run(); });
  }
  ~Proxy() {
    ends_ = true;
    thread_.join();
    close(listener_);
  }
  Proxy(const Proxy &) = delete;
  Proxy &operator=(const Proxy &) = delete;

  std::uint16_t port() const { return port_; }
  void cut() { cuts_ = true; }
  void slow_down(bool slow) { slow_ = slow; }

 private:
  struct Way {
    int from;
    int to;
  };

  void run() {
    while (!ends_) {
      if (cuts_.exchange(false)) close_all();
      std::vector<pollfd> places{{listener_, POLLIN, 0}};
      for (const Way &way : ways_) places.push_back({way.from, POLLIN, 0});
      if (poll(places.data(), places.size(), 20) <= 0) continue;
      const std::vector<Way> ways = ways_;
      for (std::size_t at = 0; at < ways.size(); ++at) {
        if (places[at + 1].revents != 0 && !carry(ways[at])) {
          close_all();
          break;
        }
      }
      if (places[0].revents != 0) take_connection();
    }
    close_all();
  }
  void take_connection() {
    const int near = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    const int far = connected_socket(server_);
    if (far < 0) {
      close(near);
      return;
    }
    ways_.push_back({near, far});
    ways_.push_back({far, near});
  }
  bool carry(const Way &way) {
    char bytes[4096];
    const ssize_t length = recv(way.from, bytes, slow_ ? 256 : sizeof bytes, 0);
    if (length <= 0) return false;
    if (slow_) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return send(way.to, bytes, static_cast<std::size_t>(length), MSG_NOSIGNAL) == length;
  }
  void close_all() {
    for (std::size_t at = 0; at < ways_.size(); at += 2) {
      close(ways_[at].from);
      close(ways_[at].to);
    }
    ways_.clear();
  }

  std::uint16_t server_;
  std::uint16_t port_ = 0;
  int listener_ = -1;
  std::vector<Way> ways_;
  std::atomic<bool> ends_{false};
  std::atomic<bool> cuts_{false};
  std::atomic<bool> slow_{false};
  std::thread thread_;
};

}  // namespace replication_tests
