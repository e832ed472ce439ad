// The carrier: a stream of NATS JetStream for each site, which keeps the latest message under each
// subject.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "ospf_replication/carrier.hpp"
#include "ospf_replication/subjects.hpp"

typedef struct __natsConnection natsConnection;
typedef struct __natsOptions natsOptions;
typedef struct __jsCtx jsCtx;

namespace ospf_replication {

struct EngineOptions {
  std::string url;          // nats://HOST[:PORT] or tls://..., several with commas between
  std::string credentials;  // a file of the engine's user
  std::string authorities;  // PEM files: whom to believe, and who this is
  std::string certificate;
  std::string key;
  int replicas = 1;  // of a stream that is made
};

// What the client library tells on a thread of its own.
struct HeardOfConnection {
  std::atomic<std::uint64_t> connections{0};
  mutable std::mutex mutex;
  std::string not_permitted;  // what the server said last, on this connection
};

// A connection that comes back by itself. The engine need not be there yet.
class Engine {
 public:
  // Throws Refused for options that can never work.
  explicit Engine(const EngineOptions &options);
  ~Engine();
  Engine(const Engine &) = delete;
  Engine &operator=(const Engine &) = delete;

  bool is_connected() const;
  // Throws CarrierFailure when it is not.
  void require_connection();
  // Rises whenever the connection was made anew.
  std::uint64_t connections() const { return heard_.connections; }
  // The failure's words, with what the server did not permit on this connection, if it told so.
  std::string words_of(const CarrierFailure &failure) const;
  const EngineOptions &options() const { return options_; }
  natsConnection *connection() const { return connection_; }
  jsCtx *stream_context() const { return context_; }

 private:
  using Clock = std::chrono::steady_clock;
  void connect();
  void disconnect();

  EngineOptions options_;
  std::string why_;  // it could not be connected to
  Clock::time_point tried_{};
  HeardOfConnection heard_;
  natsOptions *settings_ = nullptr;
  natsConnection *connection_ = nullptr;
  jsCtx *context_ = nullptr;
};

// words: who this is, for a second sender of the name.
std::unique_ptr<Outlet> make_outlet(Engine &engine, const std::string &site,
                                    const std::string &words);
std::unique_ptr<Inlet> make_inlet(Engine &engine, const std::string &site);
// The commit marker of a site; none when there is none. Throws CarrierFailure.
std::optional<Bytes> last_commit_of(Engine &engine, const std::string &site);

}  // namespace ospf_replication
