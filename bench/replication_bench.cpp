// What replication costs over a real engine, which this program starts and ends: one changed row
// from commit to commit, a resync of many rows, and rows a second to several followers; each beside
// plain puts and watches of the same messages through the client library, in the same run.
// HARBOR_BENCH_ROWS says of how many rows the large store is.
#include <benchmark/benchmark.h>
#include <nats/nats.h>

#include <algorithm>
#include <cstdlib>
#include <thread>

#include "ospf_replication/follower.hpp"
#include "ospf_replication/jetstream.hpp"
#include "ospf_replication/sender.hpp"
#include "ospf_tables/instance_rows.hpp"
#include "ospf_tables/tree.hpp"
#include "replication/engine.hpp"
#include "resident_bytes.hpp"
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
  // Changes so many rows in one transaction, each to the same new value.
  void change(std::size_t rows, std::uint32_t value) {
    session_.changing([&] {
      for (std::size_t at = 0; at < rows; ++at) {
        auto *object = ospf_neighbor_ops::get(session_.handle(), space, neighbors_[at]);
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

// A server with a store that is sent to it.
struct Site {
  explicit Site(std::uint32_t rows) : filled(folder.file("from"), rows) {
    while (!engine.is_connected()) std::this_thread::yield();
    sender.turn();
  }

  const TemporaryFolder folder;
  replication_tests::Server server{folder.path() / "engine"};
  Filled filled;
  Engine engine{options_of(server)};
  std::unique_ptr<Outlet> outlet = make_outlet(engine, "bench", "bench");
  Sender sender{filled.session(), *outlet, "bench"};
};

double seconds_since(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

void tell(benchmark::State &state, std::vector<double> &times) {
  std::sort(times.begin(), times.end());
  state.counters["median_us"] = 1e6 * times[times.size() / 2];
  state.counters["p99_us"] = 1e6 * times[times.size() * 99 / 100];
}

// From the commit at the sender to the commit at the follower. What wakes each of them, when they
// are processes, is measured with stores.
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
  state.counters["sent"] = static_cast<double>(site.sender.report().transactions);
}
BENCHMARK(one_row)->Arg(1000)->Iterations(500)->UseManualTime();
BENCHMARK(one_row)->Arg(100'000)->Iterations(30)->UseManualTime();

// The same two messages, put and acknowledged, and watched.
void one_row_plainly(benchmark::State &state) {
  const TemporaryFolder folder;
  replication_tests::Server server(folder.path() / "engine");
  natsConnection *connection = nullptr;
  jsCtx *context = nullptr;
  natsSubscription *watch = nullptr;
  natsConnection_ConnectTo(&connection, replication_tests::url_of(server.port()).c_str());
  natsConnection_JetStream(&context, connection, nullptr);
  const char *subjects[] = {"plain.>"};
  jsStreamConfig config;
  jsStreamConfig_Init(&config);
  config.Name = "plain";
  config.Subjects = subjects;
  config.SubjectsLen = 1;
  config.MaxMsgsPerSubject = 1;
  js_AddStream(nullptr, context, &config, nullptr, nullptr);
  jsSubOptions options;
  jsSubOptions_Init(&options);
  options.Ordered = true;
  js_SubscribeSync(&watch, context, "plain.>", nullptr, &options, nullptr);
  const Bytes row(200);
  const Bytes commit(250);
  std::vector<double> times;
  for (auto _ : state) {
    const auto start = Clock::now();
    natsConnection_Publish(connection, "plain.row", row.data(), static_cast<int>(row.size()));
    js_Publish(nullptr, context, "plain.commit", commit.data(), static_cast<int>(commit.size()),
               nullptr, nullptr);
    for (int message = 0; message < 2; ++message) {
      natsMsg *come = nullptr;
      natsSubscription_NextMsg(&come, watch, 5000);
      natsMsg_Destroy(come);
    }
    times.push_back(seconds_since(start));
    state.SetIterationTime(times.back());
  }
  tell(state, times);
  natsSubscription_Destroy(watch);
  jsCtx_Destroy(context);
  natsConnection_Destroy(connection);
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

void snapshot(benchmark::State &state) {
  Site site(row_count());
  for (auto _ : state) {
    Sender sender(site.filled.session(), *site.outlet, "bench");
    const auto start = Clock::now();
    sender.turn();
    state.SetIterationTime(seconds_since(start));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(site.filled.size()));
}
BENCHMARK(snapshot)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

// Rows a second until ten followers, processes of their own, have all of them, and what the sender
// takes in memory meanwhile, with one more reader that stands still.
void ten_followers(benchmark::State &state) {
  constexpr std::size_t at_once = 2000;
  constexpr std::uint32_t transactions = 50;
  for (auto _ : state) {
    Site site(10'000);
    Engine stopped_engine(options_of(site.server));
    const auto stopped = make_inlet(stopped_engine, "bench");
    while (!stopped_engine.is_connected()) std::this_thread::yield();
    stopped->begin();
    std::vector<std::unique_ptr<tool_tests::ToolProcess>> followers;
    for (int follower = 0; follower < 10; ++follower) {
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
    const double before = bench::resident_bytes();
    const auto start = Clock::now();
    for (std::uint32_t transaction = 1; transaction <= transactions; ++transaction) {
      site.filled.change(at_once, transaction);
      site.sender.turn();
    }
    reach(first + transactions);
    const double time = seconds_since(start);
    state.SetIterationTime(time);
    state.counters["rows_per_second"] = at_once * transactions / time;
    state.counters["grown_bytes"] = bench::resident_bytes() - before;
  }
}
BENCHMARK(ten_followers)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
