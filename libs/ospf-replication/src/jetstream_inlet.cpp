// A follower's end of a stream: it is read in order, from its first message on, as fast as this
// follower takes it.
#include "nats_objects.hpp"
#include "ospf_replication/jetstream.hpp"

namespace ospf_replication {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds look_every{1};
constexpr std::int64_t heartbeat = 1'000'000'000;  // nanoseconds

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
    natsMsg *made = nullptr;
    const natsStatus status = natsSubscription_NextMsg(&made, reading_.get(), time.count());
    const NatsMessage message(made);
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
    const auto *data = reinterpret_cast<const std::uint8_t *>(natsMsg_GetData(message));
    arrival.body.assign(data, data + natsMsg_GetDataLength(message));
    jsMsgMetaData *made = nullptr;
    if (natsMsg_GetMetaData(&made, message) == NATS_OK) {
      const MetaData meta(made);
      seen_ = made->Sequence.Stream;
      arrival.is_last = made->NumPending == 0;
    }
    return arrival;
  }

  Engine &engine_;
  Subjects subjects_;
  Subscription reading_;
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
