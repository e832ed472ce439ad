#include <sstream>
#include <utility>
#include <vector>

#include "nats_objects.hpp"
#include "ospf_replication/jetstream.hpp"

namespace ospf_replication {

namespace {

constexpr int reconnect_wait = 100;    // milliseconds
constexpr int ping_interval = 2000;    // milliseconds
constexpr int connect_timeout = 2000;  // milliseconds
constexpr std::chrono::seconds patience{1};
constexpr int request_timeout = 1000;  // milliseconds

void note_connection(HeardOfConnection &heard) {
  const std::lock_guard lock(heard.mutex);
  ++heard.connections;
  heard.not_permitted.clear();
}

void hear_of_connection(natsConnection *, void *heard) {
  note_connection(*static_cast<HeardOfConnection *>(heard));
}

void hear_of_failure(natsConnection *connection, natsSubscription *, natsStatus status,
                     void *heard) {
  if (status != NATS_NOT_PERMITTED) return;
  const char *words = nullptr;
  natsConnection_GetLastError(connection, &words);
  auto &noted = *static_cast<HeardOfConnection *>(heard);
  const std::lock_guard lock(noted.mutex);
  noted.not_permitted = words == nullptr ? natsStatus_GetText(status) : words;
}

// Without users and their words of entry, which nobody else should read.
std::string shown_url(const std::string &urls) {
  std::string shown;
  std::istringstream in(urls);
  for (std::string url; std::getline(in, url, ',');) {
    const std::size_t scheme = url.find("://");
    const std::size_t start = scheme == url.npos ? 0 : scheme + 3;
    if (const std::size_t at = url.rfind('@'); at != url.npos) url.erase(start, at + 1 - start);
    shown += (shown.empty() ? "" : ",") + url;
  }
  return shown;
}

// A word of the client library about what an option could not do.
void require(const std::string &what, natsStatus status) {
  if (status != NATS_OK) throw Refused(what + ": " + words_of(status));
}

// Any of several, with commas between them.
void set_servers(natsOptions *options, const std::string &urls) {
  std::vector<std::string> each;
  std::istringstream in(urls);
  for (std::string url; std::getline(in, url, ',');) each.push_back(url);
  std::vector<const char *> list;
  for (const std::string &url : each) list.push_back(url.c_str());
  require(shown_url(urls),
          natsOptions_SetServers(options, list.data(), static_cast<int>(list.size())));
}

void set_security(natsOptions *options, const EngineOptions &asked) {
  if (!asked.credentials.empty()) {
    require(asked.credentials,
            natsOptions_SetUserCredentialsFromFiles(options, asked.credentials.c_str(), nullptr));
  }
  if (!asked.authorities.empty() || !asked.certificate.empty()) {
    require("TLS", natsOptions_SetSecure(options, true));
  }
  if (!asked.authorities.empty()) {
    require(asked.authorities,
            natsOptions_LoadCATrustedCertificates(options, asked.authorities.c_str()));
  }
  if (!asked.certificate.empty()) {
    require(asked.certificate, natsOptions_LoadCertificatesChain(options, asked.certificate.c_str(),
                                                                 asked.key.c_str()));
  }
}

}  // namespace

Engine::Engine(const EngineOptions &options) : options_(options) {
  require("options", natsOptions_Create(&settings_));
  try {
    set_servers(settings_, options.url);
    natsOptions_SetName(settings_, "ospf-harbor");
    natsOptions_SetMaxReconnect(settings_, -1);
    natsOptions_SetReconnectWait(settings_, reconnect_wait);
    natsOptions_SetReconnectJitter(settings_, reconnect_wait, reconnect_wait);
    natsOptions_SetPingInterval(settings_, ping_interval);
    natsOptions_SetTimeout(settings_, connect_timeout);
    natsOptions_SetReconnectedCB(settings_, hear_of_connection, &heard_);
    natsOptions_SetErrorHandler(settings_, hear_of_failure, &heard_);
    set_security(settings_, options);
  } catch (...) {
    natsOptions_Destroy(settings_);
    throw;
  }
  connect();
}

Engine::~Engine() {
  disconnect();
  natsOptions_Destroy(settings_);
}

void Engine::connect() {
  tried_ = Clock::now();
  note_connection(heard_);
  const natsStatus status = natsConnection_Connect(&connection_, settings_);
  if (status != NATS_OK) {
    why_ = ": " + ospf_replication::words_of(status);
    // The client library's way to say that the server went before it answered.
    if (why_.find("'PONG', got ''") != why_.npos) {
      why_ =
          ": the server ended the connection before it answered, as it does when it wants a "
          "certificate and is shown none that it believes";
    }
    connection_ = nullptr;
    return;
  }
  why_.clear();
  jsOptions defaults;
  jsOptions_Init(&defaults);
  defaults.Wait = request_timeout;
  require("JetStream", natsConnection_JetStream(&context_, connection_, &defaults));
}

void Engine::disconnect() {
  jsCtx_Destroy(std::exchange(context_, nullptr));
  if (connection_ == nullptr) return;
  natsConnection_Close(connection_);
  natsConnection_Destroy(std::exchange(connection_, nullptr));
}

// The client library connects again by itself where it was connected. A first connection is tried
// here, so that it is told why there is none.
void Engine::require_connection() {
  if (is_connected()) {
    tried_ = Clock::now();
    return;
  }
  const bool has_given_up =
      connection_ == nullptr || natsConnection_Status(connection_) == NATS_CONN_STATUS_CLOSED;
  if (has_given_up || Clock::now() - tried_ > patience) {
    disconnect();
    connect();
  }
  if (!is_connected()) throw CarrierFailure(shown_url(options_.url) + " is away" + why_);
}

std::string Engine::words_of(const CarrierFailure &failure) const {
  const std::lock_guard lock(heard_.mutex);
  return failure.what() + (heard_.not_permitted.empty() ? "" : "; " + heard_.not_permitted);
}

bool Engine::is_connected() const {
  return connection_ != nullptr && natsConnection_Status(connection_) == NATS_CONN_STATUS_CONNECTED;
}

}  // namespace ospf_replication
