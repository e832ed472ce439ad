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
constexpr std::int64_t bytes_of_headers = 128;  // beside a message that has to come behind another
constexpr std::int64_t answer_time = 150;       // milliseconds
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

// What both the sender and the client library's thread that answers for it know.
struct Answers {
  std::mutex mutex;
  std::optional<std::uint64_t> asked;
  std::string name;
};

class JetStreamOutlet : public Outlet {
 public:
  JetStreamOutlet(Engine &engine, const std::string &site, const std::string &words)
      : engine_(engine), site_(site), subjects_(site) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    since_ = static_cast<std::uint64_t>(now.count());
    std::random_device device;
    name_ = std::to_string(since_) + " " + std::to_string(device()) + " " + words;
    answers_->name = name_;
  }

  BucketState open() override {
    engine_.require_connection();
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
    engine_.require_connection();
    jsStreamInfo *info = nullptr;
    check(subjects_.stream, js_GetStreamInfo(&info, engine_.stream_context(),
                                             subjects_.stream.c_str(), nullptr, nullptr));
    const StreamInfo own(info);
    return {info->State.Msgs, info->State.LastSeq};
  }

  std::optional<Bytes> last_commit() override { return last_commit_of(engine_, site_); }

  std::uint64_t put(std::span<const Letter> letters, std::uint64_t last) override {
    engine_.require_connection();
    refuse_too_long(letters);
    for (std::size_t at = 0; at < letters.size(); ++at) {
      const Letter &letter = letters[at];
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
    const std::lock_guard lock(answers_->mutex);
    return std::exchange(answers_->asked, std::nullopt);
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

  // The server cuts the connection of who sends more than it takes, and would again each time.
  void refuse_too_long(std::span<const Letter> letters) const {
    const auto most = natsConnection_GetMaxPayload(engine_.connection()) - bytes_of_headers;
    std::size_t count = 0;
    const Letter *longest = nullptr;
    for (const Letter &letter : letters) {
      if (static_cast<std::int64_t>(letter.body.size()) <= most) continue;
      ++count;
      if (longest == nullptr || letter.body.size() > longest->body.size()) longest = &letter;
    }
    if (longest == nullptr) return;
    throw Refused("found " + std::to_string(count) +
                  " messages that are too long for the server, the longest with " +
                  std::to_string(longest->body.size()) + " bytes for " + longest->subject +
                  ", expected at most " + std::to_string(most) +
                  " (its max_payload); nothing is sent before it takes them");
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
    // Connected again, the client library keeps a subscription; a connection made anew has none.
    if (answering_ != nullptr && answers_on_ == engine_.connections()) return;
    answers_on_ = engine_.connections();
    answering_.reset();
    // Ends with the subscription's last message, which may come behind this object's end.
    auto own = std::make_unique<std::shared_ptr<Answers>>(answers_);
    natsSubscription *made = nullptr;
    check(subjects_.service, natsConnection_Subscribe(&made, engine_.connection(),
                                                      subjects_.service.c_str(), hear, own.get()));
    answering_.reset(made);
    check(subjects_.service, natsSubscription_SetOnCompleteCB(made, forget, own.get()));
    own.release();
  }

  static void forget(void *answers) { delete static_cast<std::shared_ptr<Answers> *>(answers); }

  // On a thread of the client library.
  static void hear(natsConnection *connection, natsSubscription *, natsMsg *message, void *shared) {
    const NatsMessage own(message);
    Answers &answers = **static_cast<std::shared_ptr<Answers> *>(shared);
    const std::string_view text = text_of(message);
    if (text.starts_with(snapshot_word)) {
      const std::uint64_t epoch = leading_number(text.substr(std::strlen(snapshot_word)));
      const std::lock_guard lock(answers.mutex);
      answers.asked = std::max(answers.asked.value_or(0), epoch);
    } else if (text.starts_with(who_word) && natsMsg_GetReply(message) != nullptr &&
               text.substr(std::strlen(who_word)) != answers.name) {
      natsConnection_PublishString(connection, natsMsg_GetReply(message), answers.name.c_str());
    }
  }

  Engine &engine_;
  std::string site_;
  Subjects subjects_;
  std::string name_;
  std::uint64_t since_ = 0;
  std::shared_ptr<Answers> answers_ = std::make_shared<Answers>();
  std::uint64_t answers_on_ = 0;
  Subscription answering_;
};

}  // namespace

std::unique_ptr<Outlet> make_outlet(Engine &engine, const std::string &site,
                                    const std::string &words) {
  return std::make_unique<JetStreamOutlet>(engine, site, words);
}

std::optional<Bytes> last_commit_of(Engine &engine, const std::string &site) {
  engine.require_connection();
  const Subjects subjects(site);
  natsMsg *made = nullptr;
  jsErrCode code{};
  const natsStatus status = js_GetLastMsg(&made, engine.stream_context(), subjects.stream.c_str(),
                                          subjects.commit.c_str(), nullptr, &code);
  const NatsMessage message(made);
  if (status == NATS_NOT_FOUND || code == JSStreamNotFoundErr || code == JSNoMessageFoundErr) {
    return std::nullopt;
  }
  check(subjects.stream, status);
  const auto *data = reinterpret_cast<const std::uint8_t *>(natsMsg_GetData(made));
  return Bytes(data, data + natsMsg_GetDataLength(made));
}

}  // namespace ospf_replication
