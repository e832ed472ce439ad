#include "nats_objects.hpp"
#include "ospf_replication/jetstream.hpp"

namespace ospf_replication {

namespace {

constexpr int reconnect_wait = 100;    // milliseconds
constexpr int ping_interval = 2000;    // milliseconds
constexpr int connect_timeout = 2000;  // milliseconds
constexpr int request_timeout = 1000;  // milliseconds

void count(natsConnection *, void *connections) {
  ++*static_cast<std::atomic<std::uint64_t> *>(connections);
}

// A word of the client library about what an option could not do.
void require(const std::string &what, natsStatus status) {
  if (status == NATS_OK) return;
  const char *words = nats_GetLastError(nullptr);
  throw Refused(what + ": " +
                (words != nullptr && *words != '\0' ? words : natsStatus_GetText(status)));
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
  natsOptions *made = nullptr;
  require("options", natsOptions_Create(&made));
  const Options own(made);
  require(options.url, natsOptions_SetURL(made, options.url.c_str()));
  natsOptions_SetName(made, "ospf-harbor");
  natsOptions_SetMaxReconnect(made, -1);
  natsOptions_SetReconnectWait(made, reconnect_wait);
  natsOptions_SetReconnectJitter(made, reconnect_wait, reconnect_wait);
  natsOptions_SetPingInterval(made, ping_interval);
  natsOptions_SetTimeout(made, connect_timeout);
  natsOptions_SetReconnectedCB(made, count, &connections_);
  natsOptions_SetRetryOnFailedConnect(made, true, count, &connections_);
  set_security(made, options);
  const natsStatus status = natsConnection_Connect(&connection_, made);
  if (status != NATS_OK && status != NATS_NOT_YET_CONNECTED) require(options.url, status);
  jsOptions defaults;
  jsOptions_Init(&defaults);
  defaults.Wait = request_timeout;
  const natsStatus made_context = natsConnection_JetStream(&context_, connection_, &defaults);
  if (made_context == NATS_OK) return;
  natsConnection_Destroy(connection_);
  require("JetStream", made_context);
}

Engine::~Engine() {
  jsCtx_Destroy(context_);
  natsConnection_Close(connection_);
  natsConnection_Destroy(connection_);
}

bool Engine::is_connected() const {
  return natsConnection_Status(connection_) == NATS_CONN_STATUS_CONNECTED;
}

}  // namespace ospf_replication
