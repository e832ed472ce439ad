// A follower's end of a stream: it is read in order, from its first message on, as fast as this
// follower takes it.
#include <algorithm>
#include <array>
#include <charconv>

#include "nats_objects.hpp"
#include "ospf_replication/jetstream.hpp"

namespace ospf_replication {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds look_every{1};
constexpr std::int64_t heartbeat = 1'000'000'000;  // nanoseconds

// What a message of a stream has as the subject for its acknowledgement tells, without the copies
// of names that the client library makes of it for each message. Tokens, from the front: $JS ACK
// STREAM CONSUMER DELIVERED NUMBER OF-CONSUMER TIME PENDING, with two more in front of STREAM
// (domain, account) where there is anything behind PENDING.
struct Delivery {
  std::uint64_t number = 0;  // in the stream
  std::uint64_t pending = 0;
};

std::optional<Delivery> delivery_of(natsMsg *message) {
  constexpr std::size_t least = 9;
  constexpr std::size_t most = 12;
  const char *reply = natsMsg_GetReply(message);
  if (reply == nullptr) return std::nullopt;
  std::string_view rest(reply);
  std::array<std::string_view, most> tokens;
  std::size_t count = 0;
  while (count < most && !rest.empty()) {
    const std::size_t end = std::min(rest.find('.'), rest.size());
    tokens[count++] = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  if (count < least || tokens[0] != "$JS" || tokens[1] != "ACK") return std::nullopt;
  const std::size_t shift = count > least ? 2 : 0;
  const auto number = [&](std::size_t at) {
    const std::string_view token = tokens[at + shift];
    std::uint64_t value = 0;
    std::from_chars(token.data(), token.data() + token.size(), value);
    return value;
  };
  return Delivery{number(5), number(8)};
}

class JetStreamInlet : public Inlet {
 public:
  JetStreamInlet(Engine &engine, const std::string &site) : engine_(engine), subjects_(site) {}

  void begin() override {
    reading_.reset();
    engine_.require_connection();
    connections_ = engine_.connections();
    seen_ = 0;
    created_ = 0;
    look();
    jsSubOptions options;
    jsSubOptions_Init(&options);
    options.Stream = subjects_.stream.c_str();
    options.Ordered = true;
    options.Config.Heartbeat = heartbeat;
    natsSubscription *made = nullptr;
    check(subjects_.stream, js_SubscribeSync(&made, engine_.stream_context(), subjects_.all.c_str(),
                                             nullptr, &options, nullptr));
    reading_.reset(made);
    looked_ = Clock::now();
  }

  std::optional<Arrival> next(std::chrono::milliseconds time) override {
    if (reading_ == nullptr) throw CarrierFailure("nothing is read");
    latest_.reset();
    natsMsg *made = nullptr;
    const natsStatus status = natsSubscription_NextMsg(&made, reading_.get(), time.count());
    latest_.reset(made);
    if (engine_.connections() != connections_) throw CarrierFailure("the connection was cut");
    if (status == NATS_TIMEOUT || status == NATS_MISSED_HEARTBEAT) {
      if (engine_.is_connected() && Clock::now() - looked_ >= look_every) look();
      return std::nullopt;
    }
    check(subjects_.stream, status);
    looked_ = Clock::now();
    return arrival_of(made);
  }

  void ask(std::uint64_t epoch) override {
    const std::string words = "snapshot " + std::to_string(epoch);
    natsConnection_PublishString(engine_.connection(), subjects_.service.c_str(), words.c_str());
  }

 private:
  // Whether the stream is still the one that is read, and nothing is there that did not come.
  void look() {
    jsStreamInfo *info = nullptr;
    check(subjects_.stream, js_GetStreamInfo(&info, engine_.stream_context(),
                                             subjects_.stream.c_str(), nullptr, nullptr));
    const StreamInfo own(info);
    looked_ = Clock::now();
    const bool is_same = created_ == 0 || created_ == info->Created;
    const std::uint64_t last = info->State.LastSeq;
    if (created_ != 0 && (!is_same || last < seen_)) {
      throw CarrierFailure("the bucket was replaced by another one");
    }
    // What comes at this moment is there by the next look.
    if (created_ != 0 && last > seen_ && last == last_at_look_ && info->State.Msgs != 0) {
      throw CarrierFailure("the bucket has what did not come");
    }
    last_at_look_ = last;
    created_ = info->Created;
  }

  Arrival arrival_of(natsMsg *message) {
    Arrival arrival;
    arrival.subject = natsMsg_GetSubject(message);
    arrival.body = {reinterpret_cast<const std::uint8_t *>(natsMsg_GetData(message)),
                    static_cast<std::size_t>(natsMsg_GetDataLength(message))};
    if (const auto delivery = delivery_of(message)) {
      seen_ = delivery->number;
      arrival.is_last = delivery->pending == 0;
    }
    return arrival;
  }

  Engine &engine_;
  Subjects subjects_;
  Subscription reading_;
  NatsMessage latest_;
  std::uint64_t connections_ = 0;
  std::uint64_t seen_ = 0;
  std::uint64_t last_at_look_ = 0;
  std::int64_t created_ = 0;
  Clock::time_point looked_{};
};

}  // namespace

std::unique_ptr<Inlet> make_inlet(Engine &engine, const std::string &site) {
  return std::make_unique<JetStreamInlet>(engine, site);
}

}  // namespace ospf_replication
