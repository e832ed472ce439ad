// The sender's end of a stream. A sender answers under a subject beside the stream: who it is, so
// that a second one of the name is refused, and to who asks for a snapshot.
#include <charconv>
#include <chrono>
#include <cstring>
#include <mutex>
#include <random>

#include "nats_objects.hpp"
#include "ospf_replication/jetstream.hpp"

namespace ospf_replication {

namespace {

constexpr std::size_t letters_between_acks = 1000;
constexpr std::int64_t answer_time = 150;  // milliseconds
constexpr char snapshot_word[] = "snapshot ";
constexpr char who_word[] = "who ";

std::string_view text_of(natsMsg *message) {
  return {natsMsg_GetData(message), static_cast<std::size_t>(natsMsg_GetDataLength(message))};
}

std::uint64_t leading_number(std::string_view text) {
  std::uint64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

class JetStreamOutlet : public Outlet {
 public:
  JetStreamOutlet(Engine &engine, const std::string &site, const std::string &words)
      : engine_(engine), site_(site), subjects_(site) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    since_ = static_cast<std::uint64_t>(now.count());
    std::random_device device;
    name_ = std::to_string(since_) + " " + std::to_string(device()) + " " + words;
  }

  BucketState open() override {
    if (!engine_.is_connected()) throw CarrierFailure(engine_.options().url + " is away");
    refuse_second();
    answer();
    jsErrCode code{};
    jsStreamInfo *info = nullptr;
    natsStatus status =
        js_GetStreamInfo(&info, engine_.stream_context(), subjects_.stream.c_str(), nullptr, &code);
    if (status == NATS_NOT_FOUND) status = make(&info);
    check(subjects_.stream, status);
    const StreamInfo own(info);
    check_config(*info->Config);
    return {info->State.Msgs, info->State.LastSeq};
  }

  BucketState state() override {
    if (!engine_.is_connected()) throw CarrierFailure(engine_.options().url + " is away");
    jsStreamInfo *info = nullptr;
    check(subjects_.stream, js_GetStreamInfo(&info, engine_.stream_context(),
                                             subjects_.stream.c_str(), nullptr, nullptr));
    const StreamInfo own(info);
    return {info->State.Msgs, info->State.LastSeq};
  }

  std::optional<Bytes> last_commit() override { return last_commit_of(engine_, site_); }

  std::uint64_t put(std::span<const Letter> letters, std::uint64_t last) override {
    if (!engine_.is_connected()) throw CarrierFailure(engine_.options().url + " is away");
    const auto most = natsConnection_GetMaxPayload(engine_.connection());
    for (std::size_t at = 0; at < letters.size(); ++at) {
      const Letter &letter = letters[at];
      if (static_cast<std::int64_t>(letter.body.size()) > most) {
        throw CarrierFailure(letter.subject + ": a message of " +
                             std::to_string(letter.body.size()) + " bytes, of " +
                             std::to_string(most) + " that the server takes (max_payload)");
      }
      if ((at + 1) % letters_between_acks == 0 || at + 1 == letters.size()) {
        put_behind(letter, last + at);
      } else {
        check(letter.subject,
              natsConnection_Publish(engine_.connection(), letter.subject.c_str(),
                                     letter.body.data(), static_cast<int>(letter.body.size())));
      }
    }
    return last + letters.size();
  }

  void drop_before(std::uint64_t number) override {
    if (number <= 1) return;
    jsOptions options;
    jsOptions_Init(&options);
    options.Stream.Purge.Sequence = number;
    check(subjects_.stream,
          js_PurgeStream(engine_.stream_context(), subjects_.stream.c_str(), &options, nullptr));
  }

  std::optional<std::uint64_t> asked() override {
    const std::lock_guard lock(mutex_);
    return std::exchange(asked_, std::nullopt);
  }

 private:
  natsStatus make(jsStreamInfo **info) {
    const char *subjects[] = {subjects_.all.c_str()};
    jsStreamConfig config;
    jsStreamConfig_Init(&config);
    config.Name = subjects_.stream.c_str();
    config.Description = "rows of a store of ospf-harbor";
    config.Subjects = subjects;
    config.SubjectsLen = 1;
    config.MaxMsgsPerSubject = 1;
    config.Replicas = engine_.options().replicas;
    return js_AddStream(info, engine_.stream_context(), &config, nullptr, nullptr);
  }

  void check_config(const jsStreamConfig &config) const {
    if (config.MaxMsgsPerSubject == 1 && config.SubjectsLen == 1 &&
        config.Subjects[0] == subjects_.all) {
      return;
    }
    throw Refused("the stream " + subjects_.stream +
                  ": found one of another kind, expected the subject " + subjects_.all +
                  " with one message each");
  }

  // Only when all before this one came, and nothing between them, has the bucket this number.
  void put_behind(const Letter &letter, std::uint64_t last) {
    jsPubOptions options;
    jsPubOptions_Init(&options);
    options.ExpectLastSeq = last;
    jsErrCode code{};
    jsPubAck *made = nullptr;
    const natsStatus status =
        js_Publish(&made, engine_.stream_context(), letter.subject.c_str(), letter.body.data(),
                   static_cast<int>(letter.body.size()), &options, &code);
    const PublishAck ack(made);
    if (code == JSStreamWrongLastSequenceErr || (made != nullptr && made->Sequence != last + 1)) {
      throw BucketMoved("others put messages into " + subjects_.stream + ", or it lost some");
    }
    check(letter.subject, status);
  }

  // The one that came first stays.
  void refuse_second() {
    natsInbox *inbox = nullptr;
    check("an inbox", natsInbox_Create(&inbox));
    const std::unique_ptr<natsInbox, EndedBy<natsInbox_Destroy>> own_inbox(inbox);
    natsSubscription *made = nullptr;
    check("an inbox", natsConnection_SubscribeSync(&made, engine_.connection(), inbox));
    const Subscription replies(made);
    const std::string question = who_word + name_;
    check("a question",
          natsConnection_PublishRequestString(engine_.connection(), subjects_.service.c_str(),
                                              inbox, question.c_str()));
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(answer_time);
    for (;;) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
          end - std::chrono::steady_clock::now());
      natsMsg *reply = nullptr;
      if (left.count() <= 0 || natsSubscription_NextMsg(&reply, made, left.count()) != NATS_OK) {
        return;  // nobody, or nobody else
      }
      const NatsMessage own(reply);
      const std::string other(text_of(reply).substr(0, 300));
      if (other == name_ || leading_number(other) > since_) continue;
      const std::size_t words = other.find(' ', other.find(' ') + 1);
      throw Refused("the name " + site_ + " has a sender already: " +
                    (words == other.npos ? other : other.substr(words + 1)));
    }
  }

  void answer() {
    if (answering_ != nullptr) return;
    natsSubscription *made = nullptr;
    check(subjects_.service, natsConnection_Subscribe(&made, engine_.connection(),
                                                      subjects_.service.c_str(), hear, this));
    answering_.reset(made);
  }

  // On a thread of the client library.
  static void hear(natsConnection *connection, natsSubscription *, natsMsg *message, void *self) {
    const NatsMessage own(message);
    auto &outlet = *static_cast<JetStreamOutlet *>(self);
    const std::string_view text = text_of(message);
    if (text.starts_with(snapshot_word)) {
      const std::uint64_t epoch = leading_number(text.substr(std::strlen(snapshot_word)));
      const std::lock_guard lock(outlet.mutex_);
      outlet.asked_ = std::max(outlet.asked_.value_or(0), epoch);
    } else if (text.starts_with(who_word) && natsMsg_GetReply(message) != nullptr &&
               text.substr(std::strlen(who_word)) != outlet.name_) {
      natsConnection_PublishString(connection, natsMsg_GetReply(message), outlet.name_.c_str());
    }
  }

  Engine &engine_;
  std::string site_;
  Subjects subjects_;
  std::string name_;
  std::uint64_t since_ = 0;
  std::mutex mutex_;
  std::optional<std::uint64_t> asked_;
  Subscription answering_;
};

}  // namespace

std::unique_ptr<Outlet> make_outlet(Engine &engine, const std::string &site,
                                    const std::string &words) {
  return std::make_unique<JetStreamOutlet>(engine, site, words);
}

std::optional<Bytes> last_commit_of(Engine &engine, const std::string &site) {
  if (!engine.is_connected()) throw CarrierFailure(engine.options().url + " is away");
  const Subjects subjects(site);
  natsMsg *made = nullptr;
  const natsStatus status = js_GetLastMsg(&made, engine.stream_context(), subjects.stream.c_str(),
                                          subjects.commit.c_str(), nullptr, nullptr);
  const NatsMessage message(made);
  if (status == NATS_NOT_FOUND) return std::nullopt;
  check(subjects.stream, status);
  const auto *data = reinterpret_cast<const std::uint8_t *>(natsMsg_GetData(made));
  return Bytes(data, data + natsMsg_GetDataLength(made));
}

}  // namespace ospf_replication
