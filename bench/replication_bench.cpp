// What replication costs over a real engine, which this program starts and ends: one changed row
// from commit to commit, a snapshot and a resync of many rows, and rows a second to ten followers.
// Each stands beside plain puts and watches of the same messages through the client library, in the
// same run and acknowledged in the same way: the engine says that it has them at each thousandth
// message and at the last. What a follower does itself is measured without an engine too.
// HARBOR_BENCH_ROWS says of how many rows the large store is.
#include <benchmark/benchmark.h>
#include <nats/nats.h>
#include <signal.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "ospf_replication/followed_site.hpp"
#include "ospf_replication/follower.hpp"
#include "ospf_replication/jetstream.hpp"
#include "ospf_replication/sender.hpp"
#include "ospf_tables/instance_rows.hpp"
#include "ospf_tables/tree.hpp"
#include "replication/engine.hpp"
#include "support/temporary_folder.hpp"

namespace {

using namespace ospf_tables;
using namespace ospf_replication;
using Clock = std::chrono::steady_clock;
constexpr std::uint32_t areas = 50;

std::uint32_t row_count() {
  const char *asked = std::getenv("HARBOR_BENCH_ROWS");
  return asked == nullptr ? 100'000 : static_cast<std::uint32_t>(std::strtoul(asked, nullptr, 10));
}

// A store of about that many rows, most of them neighbours.
class Filled {
 public:
  Filled(const std::string &file, std::uint32_t rows) : session_(file, Session::Missing::is_made) {
    Instance instance{.family = Family::ipv4, .router_id = 1, .areas = {}};
    for (std::uint32_t area = 0; area < areas; ++area) {
      instance.areas.push_back({.id = area, .interfaces = {}});
      Interface interface {};
      interface.name = "eth0";
      interface.network_type = 1;
      for (std::uint32_t number = 0; number < rows / areas; ++number) {
        Neighbor neighbor{};
        neighbor.router_id = std::to_string(10 + number / 65536) + "." +
                             std::to_string(number / 256 % 256) + "." +
                             std::to_string(number % 256) + ".1";
        neighbor.address = "192.0.2.1";
        neighbor.state = 3;
        interface.neighbors.push_back(neighbor);
      }
      instance.areas.back().interfaces.push_back(interface);
    }
    session_.changing([&] {
      std::vector<std::unique_ptr<NewInstance>> instances;
      instances.push_back(std::make_unique<NewInstance>(session_, instance));
      add_instances(session_, instances);
      gather();
    });
  }

  Session &session() { return session_; }
  std::size_t size() const { return neighbors_.size(); }
  // Changes so many rows in one transaction to a new value, those behind the ones of the last.
  void change(std::size_t rows, std::uint32_t value) {
    session_.changing([&] {
      for (std::size_t left = rows; left > 0; --left) {
        auto *record = neighbors_[next_++ % neighbors_.size()];
        auto *object = ospf_neighbor_ops::get(session_.handle(), space, record);
        ospf_nbr_stat *stats =
            ospf_neighbor_stats_get(session_.handle(), space, object, session_.err());
        ospf_nbr_stat_nbr_event_count_set_value(session_.handle(), space, stats, value,
                                                session_.err());
      }
      session_.check("a neighbour");
    });
  }

 private:
  void gather() {
    kelp_handle *handle = session_.handle();
    std::uint32_t *err = session_.err();
    for_each_record<ospf_instance_rev1_ops>(session_, instances_of_root(session_), [&](auto *row) {
      auto *table = ospf_instance_rev1_area_get_by_ref(
          handle, space, ospf_instance_rev1_ops::get(handle, space, row), err);
      for_each_record<ospf_area_ops>(session_, table, [&](auto *area) {
        auto *interfaces = ospf_area_interfaces_get_by_ref(
            handle, space, ospf_area_ops::get(handle, space, area), err);
        for_each_record<ospf_interface_ops>(session_, interfaces, [&](auto *interface) {
          auto *neighbors = ospf_interface_neighbor_get_by_ref(
              handle, space, ospf_interface_ops::get(handle, space, interface), err);
          for_each_record<ospf_neighbor_ops>(
              session_, neighbors, [&](auto *neighbor) { neighbors_.push_back(neighbor); });
        });
      });
    });
  }

  Session session_;
  std::vector<tbl_ospf_neighbor_record *> neighbors_;
  std::size_t next_ = 0;
};

EngineOptions options_of(const replication_tests::Server &server) {
  EngineOptions options;
  options.url = replication_tests::url_of(server.port());
  return options;
}

// A follower on an empty store.
class Following {
 public:
  Following(const replication_tests::Server &server, const std::string &file)
      : engine_(options_of(server)),
        session_(file, Session::Missing::is_made),
        inlet_(make_inlet(engine_, "bench")),
        follower_(session_, *inlet_, "bench",
                  [](const std::string &what) { std::fprintf(stderr, "%s\n", what.c_str()); }) {}

  // Until it has that transaction.
  void reach(const Stamp &stamp) {
    while (follower_.report().stamp.epoch != stamp.epoch ||
           follower_.report().stamp.sequence < stamp.sequence) {
      follower_.turn(std::chrono::milliseconds(1000));
    }
  }

 private:
  Engine engine_;
  Session session_;
  std::unique_ptr<Inlet> inlet_;
  Follower follower_;
};

// Keeps what is put while it is asked to.
class KeepingOutlet : public Outlet {
 public:
  explicit KeepingOutlet(std::unique_ptr<Outlet> outlet) : outlet_(std::move(outlet)) {}

  BucketState open() override { return outlet_->open(); }
  BucketState state() override { return outlet_->state(); }
  std::optional<Bytes> last_commit() override { return outlet_->last_commit(); }
  std::uint64_t put(std::span<const Letter> letters, std::uint64_t last) override {
    if (keeps) kept.insert(kept.end(), letters.begin(), letters.end());
    return outlet_->put(letters, last);
  }
  void drop_before(std::uint64_t number) override { outlet_->drop_before(number); }
  std::optional<std::uint64_t> asked() override { return outlet_->asked(); }

  bool keeps = false;
  std::vector<Letter> kept;

 private:
  std::unique_ptr<Outlet> outlet_;
};

// A server with a store that is sent to it.
struct Site {
  explicit Site(std::uint32_t rows) : filled(folder.file("from"), rows) {
    while (!engine.is_connected()) std::this_thread::yield();
    sender.turn();
  }
  // The messages of what changed.
  std::vector<Letter> letters_of_change(std::size_t rows) {
    filled.change(rows, 1'000'000);
    outlet.keeps = true;
    sender.turn();
    outlet.keeps = false;
    return std::move(outlet.kept);
  }

  const TemporaryFolder folder;
  replication_tests::Server server{folder.path() / "engine"};
  Filled filled;
  Engine engine{options_of(server)};
  KeepingOutlet outlet{make_outlet(engine, "bench", "bench")};
  Sender sender{filled.session(), outlet, "bench"};
};

// A bucket in memory, of letters that all have subjects of their own or are of later transactions.
class MemoryOutlet : public Outlet {
 public:
  BucketState open() override { return state(); }
  BucketState state() override { return {messages, letters.size()}; }
  std::optional<Bytes> last_commit() override { return std::nullopt; }
  std::uint64_t put(std::span<const Letter> some, std::uint64_t) override {
    letters.insert(letters.end(), some.begin(), some.end());
    if (messages == 0) messages = some.size();
    return letters.size();
  }
  void drop_before(std::uint64_t) override {}
  std::optional<std::uint64_t> asked() override { return std::nullopt; }

  std::vector<Letter> letters;
  std::uint64_t messages = 0;
};

class MemoryInlet : public Inlet {
 public:
  explicit MemoryInlet(const std::vector<Letter> &letters) : letters_(letters) {}

  void begin() override { next_ = 0; }
  std::optional<Arrival> next(std::chrono::milliseconds) override {
    if (next_ == letters_.size()) return std::nullopt;
    const Letter &letter = letters_[next_++];
    return Arrival{letter.subject, letter.body, next_ == letters_.size()};
  }
  void ask(std::uint64_t) override {}

 private:
  const std::vector<Letter> &letters_;
  std::size_t next_ = 0;
};

void require(natsStatus status) {
  if (status == NATS_OK) return;
  std::fprintf(stderr, "the client library: %s\n", natsStatus_GetText(status));
  std::abort();
}

// A connection of the client library's own, with a stream beside that of the site.
class Plain {
 public:
  explicit Plain(const replication_tests::Server &server) {
    require(
        natsConnection_ConnectTo(&connection_, replication_tests::url_of(server.port()).c_str()));
    require(natsConnection_JetStream(&context_, connection_, nullptr));
  }
  ~Plain() {
    natsSubscription_Destroy(watch_);
    jsCtx_Destroy(context_);
    natsConnection_Destroy(connection_);
  }
  Plain(const Plain &) = delete;
  Plain &operator=(const Plain &) = delete;

  void make_stream() {
    const char *subjects[] = {"plain.>"};
    jsStreamConfig config;
    jsStreamConfig_Init(&config);
    config.Name = "plain";
    config.Subjects = subjects;
    config.SubjectsLen = 1;
    config.MaxMsgsPerSubject = 1;
    require(js_AddStream(nullptr, context_, &config, nullptr, nullptr));
  }
  // The number of the last.
  std::uint64_t put(const std::vector<Letter> &letters) {
    std::uint64_t last = 0;
    for (std::size_t at = 1; at <= letters.size(); ++at) {
      const std::string subject = "plain." + letters[at - 1].subject;
      const Bytes &body = letters[at - 1].body;
      const int size = static_cast<int>(body.size());
      if (at % 1000 != 0 && at != letters.size()) {
        require(natsConnection_Publish(connection_, subject.c_str(), body.data(), size));
        continue;
      }
      jsPubAck *made = nullptr;
      require(js_Publish(&made, context_, subject.c_str(), body.data(), size, nullptr, nullptr));
      last = made->Sequence;
      jsPubAck_Destroy(made);
    }
    return last;
  }
  void watch(const char *subjects) {
    jsSubOptions options;
    jsSubOptions_Init(&options);
    options.Ordered = true;
    require(js_SubscribeSync(&watch_, context_, subjects, nullptr, &options, nullptr));
  }
  // Reads until the message of that number came.
  void reach(std::uint64_t number) {
    for (std::uint64_t seen = 0; seen < number;) {
      natsMsg *come = nullptr;
      require(natsSubscription_NextMsg(&come, watch_, 10'000));
      jsMsgMetaData *data = nullptr;
      require(natsMsg_GetMetaData(&data, come));
      seen = data->Sequence.Stream;
      jsMsgMetaData_Destroy(data);
      natsMsg_Destroy(come);
    }
  }

 private:
  natsConnection *connection_ = nullptr;
  jsCtx *context_ = nullptr;
  natsSubscription *watch_ = nullptr;
};

double seconds_since(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

void tell(benchmark::State &state, std::vector<double> &times) {
  std::sort(times.begin(), times.end());
  state.counters["median_us"] = 1e6 * times[times.size() / 2];
  state.counters["p99_us"] = 1e6 * times[times.size() * 99 / 100];
}

// From the commit at the sender to the commit at the follower, both within this
// process.
void one_row(benchmark::State &state) {
  Site site(static_cast<std::uint32_t>(state.range(0)));
  Following following(site.server, site.folder.file("to"));
  following.reach(site.sender.report().stamp);
  std::vector<double> times;
  std::uint32_t value = 0;
  for (auto _ : state) {
    site.filled.change(1, ++value);
    const auto start = Clock::now();
    site.sender.turn();
    following.reach(site.sender.report().stamp);
    times.push_back(seconds_since(start));
    state.SetIterationTime(times.back());
  }
  tell(state, times);
}
BENCHMARK(one_row)->Arg(1000)->Iterations(500)->UseManualTime();
BENCHMARK(one_row)->Arg(100'000)->Iterations(500)->UseManualTime();

// The same where each of them is woken in a process of its own: this one commits to the sender's
// store, and is woken by the commit to the follower's.
void one_row_between_processes(benchmark::State &state) {
  const TemporaryFolder folder;
  const replication_tests::Server server(folder.path() / "engine");
  Filled filled(folder.file("from"), static_cast<std::uint32_t>(state.range(0)));
  Session to(folder.file("to"), Session::Missing::is_made);
  const auto replicates = [&](const std::string &direction, const std::string &store) {
    return std::make_unique<tool_tests::ToolProcess>(
        folder.path(), store + ".process",
        std::vector<std::string>{"replicate", direction, replication_tests::url_of(server.port()),
                                 "--name", "bench", "--store", folder.file(store)});
  };
  const auto sender = replicates("--to", "from");
  const auto follower = replicates("--from", "to");
  Stamp stamp;
  const auto reach_next = [&] {
    for (const Stamp before = stamp; stamp <= before;) {
      kelp_feed_wait(to.handle(), nullptr, 1000, nullptr);
      to.reading([&] { stamp = stamp_of_followed(to).value_or(before); });
    }
  };
  reach_next();
  std::vector<double> times;
  std::uint32_t value = 0;
  for (auto _ : state) {
    const auto start = Clock::now();
    filled.change(1, ++value);
    reach_next();
    times.push_back(seconds_since(start));
    state.SetIterationTime(times.back());
  }
  tell(state, times);
}
BENCHMARK(one_row_between_processes)->Arg(1000)->Iterations(500)->UseManualTime();
BENCHMARK(one_row_between_processes)->Arg(100'000)->Iterations(500)->UseManualTime();

void one_row_plainly(benchmark::State &state) {
  Site site(1000);
  const std::vector<Letter> letters = site.letters_of_change(1);
  Plain from(site.server);
  Plain to(site.server);
  from.make_stream();
  to.watch("plain.>");
  std::vector<double> times;
  for (auto _ : state) {
    const auto start = Clock::now();
    to.reach(from.put(letters));
    times.push_back(seconds_since(start));
    state.SetIterationTime(times.back());
  }
  tell(state, times);
}
BENCHMARK(one_row_plainly)->Iterations(500)->UseManualTime();

// An empty store until it holds all rows, and a snapshot of them.
void resync(benchmark::State &state) {
  Site site(row_count());
  int followers = 0;
  for (auto _ : state) {
    Following following(site.server, site.folder.file("to" + std::to_string(++followers)));
    const auto start = Clock::now();
    following.reach(site.sender.report().stamp);
    state.SetIterationTime(seconds_since(start));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(site.filled.size()));
}
BENCHMARK(resync)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

void resync_plainly(benchmark::State &state) {
  Site site(row_count());
  const std::uint64_t last = site.outlet.state().last;
  for (auto _ : state) {
    Plain to(site.server);
    const auto start = Clock::now();
    to.watch("ospf-harbor.bench.>");
    to.reach(last);
    state.SetIterationTime(seconds_since(start));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(site.filled.size()));
}
BENCHMARK(resync_plainly)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

void snapshot(benchmark::State &state) {
  Site site(row_count());
  for (auto _ : state) {
    Sender sender(site.filled.session(), site.outlet, "bench");
    const auto start = Clock::now();
    sender.turn();
    state.SetIterationTime(seconds_since(start));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(site.filled.size()));
}
BENCHMARK(snapshot)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

void snapshot_plainly(benchmark::State &state) {
  Site site(row_count());
  const std::vector<Letter> letters = site.letters_of_change(site.filled.size());
  Plain from(site.server);
  from.make_stream();
  for (auto _ : state) {
    const auto start = Clock::now();
    from.put(letters);
    state.SetIterationTime(seconds_since(start));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(letters.size()));
}
BENCHMARK(snapshot_plainly)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

// What a follower does itself: with rows that are new to it, and with rows that changed, in 50
// transactions. No engine, so that instructions can be counted.
void follow_from_memory(benchmark::State &state, std::uint32_t rows, std::uint32_t transactions) {
  const TemporaryFolder folder;
  Filled filled(folder.file("from"), rows);
  MemoryOutlet outlet;
  Sender sender(filled.session(), outlet, "bench");
  sender.turn();
  const std::size_t snapshot = outlet.letters.size();
  const std::size_t changed = filled.size() / std::max(transactions, 1u);
  for (std::uint32_t transaction = 1; transaction <= transactions; ++transaction) {
    filled.change(changed, transaction);
    sender.turn();
  }
  const auto follow = [](Follower &follower) {
    while (follower.turn(std::chrono::milliseconds(0))) {
    }
  };
  int followers = 0;
  for (auto _ : state) {
    Session session(folder.file("to" + std::to_string(++followers)), Session::Missing::is_made);
    MemoryInlet inlet(outlet.letters);
    Follower follower(session, inlet, "bench", [](const std::string &) {});
    if (transactions != 0) follower.turn(std::chrono::milliseconds(0));
    const auto start = Clock::now();
    follow(follower);
    state.SetIterationTime(seconds_since(start));
  }
  const std::size_t taken = transactions == 0 ? snapshot : outlet.letters.size() - snapshot;
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(taken));
}
void follow_new_rows(benchmark::State &state) { follow_from_memory(state, row_count(), 0); }
BENCHMARK(follow_new_rows)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);
void follow_changed_rows(benchmark::State &state) { follow_from_memory(state, row_count(), 50); }
BENCHMARK(follow_changed_rows)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

// What the process has in memory beside files.
double anonymous_bytes() {
  double kilobytes = 0;
  if (std::FILE *file = std::fopen("/proc/self/status", "r")) {
    char line[256];
    while (std::fgets(line, sizeof line, file) != nullptr) {
      if (std::sscanf(line, "RssAnon: %lf", &kilobytes) == 1) break;
    }
    std::fclose(file);
  }
  return kilobytes * 1024;
}

constexpr std::size_t rows_at_once = 2000;
constexpr std::uint32_t many_transactions = 50;
constexpr double many_rows = rows_at_once * double{many_transactions};

// Rows a second until ten followers, processes of their own, have all of them, and by how much the
// sender's memory grew at most, with an eleventh that is stopped.
void ten_followers(benchmark::State &state) {
  for (auto _ : state) {
    Site site(10'000);
    std::vector<std::unique_ptr<tool_tests::ToolProcess>> followers;
    for (int follower = 0; follower < 11; ++follower) {
      const std::string name = "to" + std::to_string(follower);
      followers.push_back(std::make_unique<tool_tests::ToolProcess>(
          site.folder.path(), name,
          std::vector<std::string>{"replicate", "--json", "--from",
                                   replication_tests::url_of(site.server.port()), "--name", "bench",
                                   "--store", site.folder.file(name)}));
    }
    const auto reach = [&](std::uint64_t sequence) {
      const std::string text = "\"sequence\":" + std::to_string(sequence) + ",";
      for (const auto &follower : followers) {
        while (follower->out().find(text) == std::string::npos) {
          std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
      }
    };
    const std::uint64_t first = site.sender.report().stamp.sequence;
    reach(first);
    const auto stopped = std::move(followers.back());
    followers.pop_back();
    kill(stopped->id(), SIGSTOP);
    const double before = anonymous_bytes();
    double most = before;
    const auto start = Clock::now();
    for (std::uint32_t transaction = 1; transaction <= many_transactions; ++transaction) {
      site.filled.change(rows_at_once, transaction);
      site.sender.turn();
      most = std::max(most, anonymous_bytes());
    }
    reach(first + many_transactions);
    const double time = seconds_since(start);
    state.SetIterationTime(time);
    state.counters["rows_per_second"] = many_rows / time;
    state.counters["grown_bytes"] = most - before;
  }
}
BENCHMARK(ten_followers)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

void ten_watches_plainly(benchmark::State &state) {
  for (auto _ : state) {
    Site site(10'000);
    const std::vector<Letter> letters = site.letters_of_change(rows_at_once);
    const std::uint64_t last = letters.size() * many_transactions;
    Plain from(site.server);
    from.make_stream();
    std::vector<std::unique_ptr<Plain>> watches;
    for (int watch = 0; watch < 10; ++watch) {
      watches.push_back(std::make_unique<Plain>(site.server));
      watches.back()->watch("plain.>");
    }
    const auto start = Clock::now();
    std::vector<std::thread> readers;
    for (const auto &watch : watches) readers.emplace_back([&] { watch->reach(last); });
    for (std::uint32_t transaction = 0; transaction < many_transactions; ++transaction) {
      from.put(letters);
    }
    for (std::thread &reader : readers) reader.join();
    const double time = seconds_since(start);
    state.SetIterationTime(time);
    state.counters["rows_per_second"] = many_rows / time;
  }
}
BENCHMARK(ten_watches_plainly)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
