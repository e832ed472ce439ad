// Sends what changes in a store to an engine that carries it to others, or follows a site from
// there.
#include <csignal>
#include <memory>
#include <thread>

#include "commands/command.hpp"
#include "commands/engine_words.hpp"
#include "commands/service_notes.hpp"
#include "ospf_replication/follower.hpp"
#include "ospf_replication/jetstream.hpp"
#include "ospf_replication/sender.hpp"
#include "ospf_replication/tree_rows.hpp"
#include "sources/on_ending_signals.hpp"
#include "views/notes.hpp"

namespace tool {

using namespace ospf_tables;
using namespace ospf_replication;

namespace {

constexpr char replicate_name[] = "replicate";
using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds turn_time{100};
constexpr std::chrono::milliseconds pause_time{200};

struct ReplicateOptions {
  std::string to;
  std::string from;
  EngineWords engine;
  bool status = false;
  bool json = false;
  double seconds = 0;
};

volatile std::sig_atomic_t end_asked = 0;

// A run ends behind the turn in which a signal came.
void ask_for_the_end(int) { end_asked = 1; }

// What both directions do around their turns: until the end, through the engine's absences.
class Replication {
 public:
  Replication(const ReplicateOptions &options, Engine &engine, const char *direction)
      : options_(options),
        engine_(engine),
        notes_(replicate_name, direction, options.engine.site, options.json) {}

  // turn says what became of it, in words for people and as fields.
  void run(const std::function<void(ServiceNotes &)> &turn) {
    end_asked = 0;
    const OnEndingSignals signals(ask_for_the_end);
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                        std::chrono::duration<double>(options_.seconds));
    while (end_asked == 0 && (options_.seconds <= 0 || Clock::now() < end)) {
      try {
        turn(notes_);
      } catch (const CarrierFailure &failure) {
        notes_.waits(engine_.words_of(failure));
        std::this_thread::sleep_for(pause_time);
      } catch (const LibraryFailure &failure) {
        // A disk that is full, or a lock that is held for long.
        notes_.waits(failure.what());
        std::this_thread::sleep_for(5 * pause_time);
      }
    }
    notes_.ends();
  }

 private:
  const ReplicateOptions &options_;
  Engine &engine_;
  ServiceNotes notes_;
};

nlohmann::ordered_json numbers_of(const Stamp &stamp, std::uint64_t rows, std::uint64_t changed,
                                  std::uint64_t transactions) {
  return {{"epoch", std::to_string(stamp.epoch.number)},
          {"sequence", stamp.sequence},
          {"rows", rows},
          {"changed", changed},
          {"transactions", transactions}};
}

void send_store(Session &session, const ReplicateOptions &options) {
  Engine engine(options.engine.engine);
  const std::string words =
      "process " + std::to_string(getpid()) + " with " + kelp_database_name(session.database());
  const auto outlet = make_outlet(engine, options.engine.site, words);
  Sender sender(session, *outlet, options.engine.site);
  std::uint64_t snapshots = 0;
  Replication(options, engine, "sending").run([&](ServiceNotes &notes) {
    if (sender.turn()) {
      const SenderReport &report = sender.report();
      if (report.snapshots != snapshots) {
        notes.tell("sent a snapshot of " + rows_text(report.rows) + " (" + sender.reason() + ")");
      }
      snapshots = report.snapshots;
      auto numbers = numbers_of(report.stamp, report.rows, report.changed, report.transactions);
      numbers["snapshots"] = report.snapshots;
      notes.works("the bucket holds the store", numbers);
    }
    kelp_feed_wait(session.handle(), nullptr, turn_time.count(), nullptr);
  });
}

nlohmann::ordered_json numbers_of(const FollowerReport &report) {
  auto numbers = numbers_of(report.stamp, report.rows, report.changed, report.transactions);
  numbers["read_again"] = report.read_again;
  numbers["asked"] = report.asked;
  for (std::size_t kind = 0; kind < refusal_kinds; ++kind) {
    numbers["refused"][name_of(static_cast<Refusal>(kind))] = report.refused[kind];
  }
  return numbers;
}

void follow_site(Session &session, const ReplicateOptions &options) {
  Engine engine(options.engine.engine);
  const auto inlet = make_inlet(engine, options.engine.site);
  ServiceNotes *telling = nullptr;
  Follower follower(session, *inlet, options.engine.site, [&](const std::string &what) {
    if (telling != nullptr) telling->tell(what);
  });
  Replication(options, engine, "following").run([&](ServiceNotes &notes) {
    telling = &notes;
    if (follower.turn(turn_time)) {
      notes.works("the store holds what the sender sent", numbers_of(follower.report()));
    }
  });
}

// Whether the engine's latest commit and the store say the same, table by table.
int compare(Session &session, const ReplicateOptions &options) {
  Engine engine(options.engine.engine);
  // One that is not there yet may come.
  for (int tries = 0; tries < 10 && !engine.is_connected(); ++tries) {
    std::this_thread::sleep_for(turn_time);
    try {
      engine.require_connection();
    } catch (const CarrierFailure &) {
      // The last one is told below.
    }
  }
  std::optional<Bytes> bytes;
  try {
    bytes = last_commit_of(engine, options.engine.site);
  } catch (const CarrierFailure &failure) {
    throw InputError(replicate_name, engine.words_of(failure));
  }
  if (!bytes) {
    throw InputError(replicate_name,
                     "found no commit of " + options.engine.site + ", expected one");
  }
  const Message message = read_message(*bytes);
  if (message.kind != MessageKind::commit) throw MessageFault("a row", "a commit marker");
  const Sums &there = message.commit.sums;
  Sums here;
  session.reading([&] { here = sums_of(session); });
  const auto print = [&](const Luid &luid, const TableSum &sum_here, const TableSum &sum_there) {
    const auto *rule = tree_exchange::rule_with_luid(luid);
    const std::string name = rule == nullptr ? "a table of a newer edition" : rule->name;
    const bool same = sum_here == sum_there;
    if (options.json) {
      const nlohmann::ordered_json line{{"table", name},
                                        {"same", same},
                                        {"rows", sum_here.rows},
                                        {"digest", text_of(sum_here.digest)},
                                        {"rows_of_the_commit", sum_there.rows},
                                        {"digest_of_the_commit", text_of(sum_there.digest)}};
      std::printf("%s\n", line.dump().c_str());
    } else {
      std::printf("%-34s %10llu %10llu  %s\n", name.c_str(),
                  static_cast<unsigned long long>(sum_here.rows),
                  static_cast<unsigned long long>(sum_there.rows), same ? "same" : "differs");
    }
  };
  if (!options.json) std::printf("%-34s %10s %10s\n", "table", "here", "sent");
  std::map<Luid, std::pair<TableSum, TableSum>> both;
  for (const auto &[luid, sum] : here.tables()) both[luid].first = sum;
  for (const auto &[luid, sum] : there.tables()) both[luid].second = sum;
  for (const auto &[luid, sums] : both) print(luid, sums.first, sums.second);
  return here == there ? 0 : 1;
}

void check_options(const ReplicateOptions &options) {
  if (options.to.empty() == options.from.empty()) {
    throw UsageError(replicate_name, "--to and --from", options.to.empty() ? "neither" : "both",
                     "one of them");
  }
  options.engine.check(replicate_name);
}

int replicate(Session &session, const ReplicateOptions &options) {
  if (!session.is_store()) {
    throw UsageError(replicate_name, "--store", "nothing", "the store to send or to fill");
  }
  try {
    if (options.status) return compare(session, options);
    options.to.empty() ? follow_site(session, options) : send_store(session, options);
    return 0;
  } catch (const Refused &refused) {
    throw InputError(replicate_name, refused.what());
  } catch (const CarrierFailure &failure) {
    throw InputError(replicate_name, failure.what());
  } catch (const MessageFault &fault) {
    throw InputError(replicate_name, fault.what());
  }
}

Run set_up_replicate(CLI::App &app) {
  const auto options = std::make_shared<ReplicateOptions>();
  app.add_option("--to", options->to, "The engine to send the store to, nats://HOST[:PORT]");
  app.add_option("--from", options->from, "The engine to fill the store from");
  app.add_flag("--status", options->status,
               "Compare the store with what was sent last, table by table, and end");
  app.add_flag("--json", options->json, "One JSON object a line");
  app.add_option("--seconds", options->seconds, "How long to run; until a signal without it");
  options->engine.add_to(app);
  app.add_option("--replicas", options->engine.engine.replicas,
                 "On how many servers a cluster keeps what is sent")
      ->check(CLI::Range(1, 5));
  return [options](Session *session) {
    check_options(*options);
    options->engine.engine.url = options->to.empty() ? options->from : options->to;
    return replicate(*session, *options);
  };
}

}  // namespace

extern const Command replicate_command;
const Command replicate_command{
    replicate_name,
    "Send what changes in a store to other machines, or follow one, over NATS JetStream",
    Needs::session, set_up_replicate, Stands::on_the_command_line};

}  // namespace tool
