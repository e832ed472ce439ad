// `ospf-harbor replicate` in processes of its own, over a real engine that is killed, purged and
// put back to an older disk, on ways that are cut and slow: followers show whole states of their
// sender alone, and in the end the last.
#include <gtest/gtest.h>
#include <nats/nats.h>
#include <sys/un.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <unordered_set>

#include "ospf_replication/followed_site.hpp"
#include "ospf_replication/jetstream.hpp"
#include "random_changes.hpp"
#include "replicate_test.hpp"
#include "support/temporary_folder.hpp"

namespace replication_tests {

namespace {

using tool_tests::ToolProcess;
using Clock = std::chrono::steady_clock;

// A store with what replicates it, which can be killed and started again.
class Replicating {
 public:
  Replicating(const TemporaryFolder &folder, std::string name, std::string direction,
              std::string url, std::string site, std::vector<std::string> more = {})
      : folder_(folder),
        name_(std::move(name)),
        direction_(std::move(direction)),
        url_(std::move(url)),
        site_(std::move(site)),
        more_(std::move(more)),
        session_(folder.file(name_), Session::Missing::is_made) {
    start();
  }

  void start() {
    std::vector<std::string> words = {"replicate", direction_,         url_, "--name", site_,
                                      "--store",   folder_.file(name_)};
    words.insert(words.end(), more_.begin(), more_.end());
    process_ = std::make_unique<ToolProcess>(folder_.path(),
                                             name_ + "-" + std::to_string(++starts_), words);
  }
  void kill() { process_.reset(); }
  Session &session() { return session_; }
  const std::string &site() const { return site_; }
  std::size_t state() {
    std::size_t state = 0;
    session_.reading([&] { state = state_of(session_); });
    return state;
  }
  // The state with how far it says that it is; of what is followed.
  std::pair<std::size_t, ospf_replication::Stamp> stamped_state() {
    std::pair<std::size_t, ospf_replication::Stamp> both;
    session_.reading([&] {
      both = {state_of(session_),
              ospf_replication::stamp_of_followed(session_).value_or(both.second)};
    });
    return both;
  }
  ToolProcess &process() { return *process_; }

 private:
  const TemporaryFolder &folder_;
  std::string name_;
  std::string direction_;
  std::string url_;
  std::string site_;
  std::vector<std::string> more_;
  Session session_;
  int starts_ = 0;
  std::unique_ptr<ToolProcess> process_;
};

ospf_replication::EngineOptions options_of(std::uint16_t port) {
  ospf_replication::EngineOptions options;
  options.url = url_of(port);
  return options;
}

void purge(std::uint16_t port, const std::string &site) {
  const ospf_replication::Engine engine(options_of(port));
  js_PurgeStream(engine.stream_context(), ospf_replication::Subjects(site).stream.c_str(), nullptr,
                 nullptr);
}

// Two senders and three followers; one of each is reached through a proxy.
class Network {
 public:
  explicit Network(std::uint32_t seed) : random_(seed) {
    for (std::size_t at = 0; at < 2; ++at) {
      changes_.push_back(std::make_unique<RandomChanges>(senders_[at]->session(), seed + at));
      states_[senders_[at]->site()].push_back(senders_[at]->state());
    }
  }

  void trouble() {
    for (std::uint32_t left = 1 + random_() % 5; left > 0; --left) {
      step();
      look();
    }
    proxy_.slow_down(false);
  }

  // Nothing changes any more: how long it takes until all show the same.
  std::chrono::milliseconds settle() {
    const auto start = Clock::now();
    bool same = false;
    while (!same && Clock::now() - start < std::chrono::seconds(30)) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      look();
      same = true;
      for (const auto &follower : followers_) same &= follower->state() == last_of(*follower);
    }
    EXPECT_TRUE(same);
    for (const auto &follower : followers_) {
      if (same) break;
      EXPECT_EQ(follower->state(), last_of(*follower))
          << follower->process().err() << senders_[0]->process().err()
          << senders_[1]->process().err();
    }
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
  }

 private:
  std::size_t last_of(Replicating &follower) {
    for (const auto &sender : senders_) {
      if (sender->site() == follower.site()) return sender->state();
    }
    return 0;
  }

  // No follower shows what its sender never had, or had before what was shown already.
  void look() {
    for (std::size_t at = 0; at < followers_.size(); ++at) {
      Replicating &follower = *followers_[at];
      const auto [state, stamp] = follower.stamped_state();
      const std::vector<std::size_t> &states = states_[follower.site()];
      const auto from = states.begin() + static_cast<std::ptrdiff_t>(reached_[at]);
      const auto found = std::find(from, states.end(), state);
      EXPECT_NE(found, states.end())
          << (std::count(states.begin(), from, state) == 0 ? "what its sender never had"
                                                           : "what is over")
          << "\n"
          << follower.process().err();
      if (found != states.end()) reached_[at] = static_cast<std::size_t>(found - states.begin());
      EXPECT_GE(stamp, stamps_[at]) << follower.process().err();
      stamps_[at] = stamp;
    }
  }

  void step() {
    switch (random_() % 12) {
      case 0: {
        Replicating &sender = *senders_[random_() % 2];
        sender.kill();
        sender.start();
        return;
      }
      case 1: {
        Replicating &follower = *followers_[random_() % 3];
        follower.kill();
        follower.start();
        return;
      }
      case 2:
        return restart_server();
      case 3:
        proxy_.cut();
        return;
      case 4:
        proxy_.slow_down(true);
        return;
      case 5:
        return purge(server_.port(), random_() % 2 == 0 ? "a" : "b");
      default: {
        const std::size_t sender = random_() % 2;
        for (std::uint32_t commits = 1 + random_() % 4; commits > 0; --commits) {
          states_[senders_[sender]->site()].push_back(changes_[sender]->commit());
        }
        return;
      }
    }
  }

  // With an older disk now and then, which some time nobody is there to fill anew.
  void restart_server() {
    server_.kill();
    const std::filesystem::path copy = folder_.path() / "older";
    const bool has_copy = std::filesystem::exists(copy);
    bool is_left_alone = false;
    if (random_() % 2 == 0) {
      std::filesystem::remove_all(copy);
      std::filesystem::copy(server_.disk(), copy, std::filesystem::copy_options::recursive);
    } else if (has_copy) {
      std::filesystem::remove_all(server_.disk());
      std::filesystem::copy(copy, server_.disk(), std::filesystem::copy_options::recursive);
      is_left_alone = random_() % 3 != 0;
    }
    if (!is_left_alone) return server_.start();
    for (const auto &sender : senders_) sender->kill();
    server_.start();
    Replicating &follower = *followers_[random_() % 3];
    follower.kill();
    follower.start();
    for (int looks = 0; looks < 100; ++looks) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      look();
    }
    for (const auto &sender : senders_) sender->start();
  }

  std::mt19937 random_;
  const TemporaryFolder folder_;
  Server server_{folder_.path() / "engine"};
  Proxy proxy_{server_.port()};
  std::vector<std::unique_ptr<Replicating>> senders_ = [this] {
    std::vector<std::unique_ptr<Replicating>> made;
    made.push_back(
        std::make_unique<Replicating>(folder_, "from-a", "--to", url_of(server_.port()), "a"));
    made.push_back(
        std::make_unique<Replicating>(folder_, "from-b", "--to", url_of(proxy_.port()), "b"));
    return made;
  }();
  std::vector<std::unique_ptr<Replicating>> followers_ = [this] {
    std::vector<std::unique_ptr<Replicating>> made;
    made.push_back(
        std::make_unique<Replicating>(folder_, "to-1", "--from", url_of(server_.port()), "a"));
    made.push_back(
        std::make_unique<Replicating>(folder_, "to-2", "--from", url_of(proxy_.port()), "a"));
    made.push_back(
        std::make_unique<Replicating>(folder_, "to-3", "--from", url_of(server_.port()), "b"));
    return made;
  }();
  std::vector<std::unique_ptr<RandomChanges>> changes_;
  std::map<std::string, std::vector<std::size_t>> states_;  // of each sender, in order
  // Of each follower: a place in these, and how far it said that it was.
  std::array<std::size_t, 3> reached_{};
  std::array<ospf_replication::Stamp, 3> stamps_{};
};

TEST(ReplicationRounds, FollowersShowWholeStatesAndInTheEndTheLast) {
  const char *asked = std::getenv("HARBOR_REPLICATION_ROUNDS");
  const int rounds = asked == nullptr ? 30 : std::atoi(asked);
  const char *seed = std::getenv("HARBOR_REPLICATION_SEED");
  Network network(seed == nullptr ? 1 : static_cast<std::uint32_t>(std::atoi(seed)));
  std::vector<std::chrono::milliseconds> times;
  for (int round = 0; round < rounds && !testing::Test::HasFailure(); ++round) {
    SCOPED_TRACE(round);
    network.trouble();
    times.push_back(network.settle());
  }
  // What is the same stays so.
  std::this_thread::sleep_for(std::chrono::seconds(1));
  network.settle();
  std::ranges::sort(times);
  const auto late = times.end() - std::ranges::upper_bound(times, std::chrono::seconds(2));
  std::printf(
      "%zu rounds; the same again after %lld ms in the middle, %lld ms at most, %lld times later "
      "than 2 s\n",
      times.size(), static_cast<long long>(times[times.size() / 2].count()),
      static_cast<long long>(times.back().count()), static_cast<long long>(late));
}

// Three servers that keep three copies, of which one after the other is killed.
TEST(ReplicationCluster, GoesOnWhileOneOfThreeServersIsDown) {
  const TemporaryFolder folder;
  std::vector<std::uint16_t> ports;
  std::string routes;
  for (int server = 0; server < 3; ++server) {
    ports.push_back(free_port());
    routes += (server == 0 ? "" : ",") + url_of(ports.back());
  }
  std::vector<std::unique_ptr<Server>> servers;
  std::string urls;
  for (const std::uint16_t port : ports) {
    const std::string name = "engine" + std::to_string(servers.size());
    servers.push_back(std::make_unique<Server>(
        folder.path() / name,
        std::vector<std::string>{"--name", name, "--cluster_name", "three", "--cluster",
                                 url_of(port), "--routes", routes}));
    urls += (urls.empty() ? "" : ",") + url_of(servers.back()->port());
  }
  Replicating sender(folder, "from", "--to", urls, "site", {"--replicas", "3"});
  Replicating follower(folder, "to", "--from", urls, "site");
  RandomChanges changes(sender.session(), 5);
  std::unordered_set<std::size_t> states{sender.state()};
  const auto catches_up = [&] {
    // Servers on a busy machine may need more than one election.
    const auto end = Clock::now() + std::chrono::minutes(4);
    while (follower.state() != sender.state() && Clock::now() < end) {
      EXPECT_TRUE(states.contains(follower.state()));
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(follower.state(), sender.state())
        << sender.process().err() << follower.process().err();
  };
  states.insert(changes.commit());
  catches_up();
  for (const auto &server : servers) {
    server->kill();
    for (int commits = 0; commits < 5; ++commits) states.insert(changes.commit());
    catches_up();
    server->start();
    states.insert(changes.commit());
    catches_up();
  }
}

TEST_F(Replicate, ASecondSenderOfANameIsRefused) {
  expect_done({"load", "frr", sample_, "--store", file("from")});
  ToolProcess sender(folder_, "sender", words("--to", "from"));
  ASSERT_TRUE(says(sender, "the bucket holds the store")) << sender.err();
  expect_done({"load", "frr", other_sample_, "--store", file("other")});
  expect_refused(words("--to", "other"),
                 {"replicate: the name site has a sender already: process " +
                  std::to_string(sender.id()) + " with " + file("from")});
  kill(sender.id(), SIGTERM);
  EXPECT_EQ(sender.wait(), 0);
  // Its place is free again.
  std::vector<std::string> other = words("--to", "other");
  other.insert(other.end(), {"--seconds", "1"});
  expect_done(other);
}

TEST_F(Replicate, ASecondFollowerIntoOnePlaceIsRefused) {
  expect_done({"load", "frr", sample_, "--store", file("from")});
  ToolProcess sender(folder_, "sender", words("--to", "from"));
  auto follower = std::make_unique<ToolProcess>(folder_, "follower", words("--from", "to"));
  ASSERT_TRUE(says(*follower, "the store holds what the sender sent")) << follower->err();
  const std::string holder = std::to_string(follower->id());
  expect_refused(words("--from", "to"),
                 {"replicate: " + file("to") + ": tenant 0 has a follower already: process " +
                  holder + ", which follows site"});
  // Stopped, it still holds its place.
  kill(follower->id(), SIGSTOP);
  expect_refused(words("--from", "to"), {"process " + holder});
  std::vector<std::string> beside = words("--from", "to");
  beside.insert(beside.end(), {"--source", "2", "--seconds", "1"});
  expect_done(beside);
  const std::string shown = run({"show", "--store", file("from")}).out;
  EXPECT_EQ(run({"show", "--store", file("to"), "--source", "2"}).out, shown);
  // Killed, it does not; nor once it has ended.
  follower.reset();
  follower = std::make_unique<ToolProcess>(folder_, "second", words("--from", "to"));
  ASSERT_TRUE(says(*follower, "the store holds what the sender sent")) << follower->err();
  kill(follower->id(), SIGTERM);
  EXPECT_EQ(follower->wait(), 0);
  std::vector<std::string> third = words("--from", "to");
  third.insert(third.end(), {"--seconds", "1"});
  expect_done(third);
}

// While the sender is away, and so nobody takes it out again.
TEST_F(Replicate, WhatOthersPutIntoTheBucketIsToldAndCounted) {
  expect_done({"load", "frr", sample_, "--store", file("from")});
  auto sender = std::make_unique<ToolProcess>(folder_, "sender", words("--to", "from"));
  std::vector<std::string> follows = words("--from", "to");
  follows.push_back("--json");
  const ToolProcess follower(folder_, "follower", follows);
  const auto prints = [&](const std::string &text, std::size_t from) {
    for (int tries = 0; tries < 3000; ++tries) {
      if (follower.out().find(text, from) != std::string::npos) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  };
  const std::string works = "\"state\":\"works\"";
  ASSERT_TRUE(prints(works, 0)) << follower.out();
  sender.reset();
  const std::string before = run({"show", "--tree", "--store", file("to")}).out;

  ospf_replication::Engine engine(options_of(server_.port()));
  const ospf_replication::Subjects subjects("site");
  const auto put = [&](const std::string &subject, const void *bytes, std::size_t size) {
    EXPECT_EQ(
        natsConnection_Publish(engine.connection(), subject.c_str(), bytes, static_cast<int>(size)),
        NATS_OK);
  };
  const auto commit = ospf_replication::last_commit_of(engine, "site");
  ASSERT_TRUE(commit);
  put(subjects.rows + "ospf.1", "garbage", 7);
  put("ospf-harbor.site.elsewhere", commit->data(), commit->size());
  put(subjects.commit, commit->data(), commit->size());
  for (const char *kind : {"garbage", "foreign", "replayed"}) {
    EXPECT_TRUE(prints(std::string("refused as ") + kind, 0)) << kind << follower.out();
  }
  EXPECT_EQ(run({"show", "--tree", "--store", file("to")}).out, before);

  const std::size_t told = follower.out().size();
  sender = std::make_unique<ToolProcess>(folder_, "again", words("--to", "from"));
  ASSERT_TRUE(prints(works, told)) << follower.out();
  for (const char *kind : {"garbage", "foreign", "replayed"}) {
    const std::string none = '"' + std::string(kind) + "\":0";
    EXPECT_EQ(follower.out().find(none, told), std::string::npos) << follower.out();
  }
  EXPECT_EQ(run({"show", "--tree", "--store", file("to")}).out, before);
}

TEST_F(Replicate, StatusComparesBothEnds) {
  expect_done({"load", "frr", sample_, "--store", file("from")});
  std::vector<std::string> status = words("--from", "to");
  status.push_back("--status");
  expect_refused(status, {"found no commit of site"});
  ToolProcess sender(folder_, "sender", words("--to", "from"));
  ASSERT_TRUE(says(sender, "the bucket holds the store")) << sender.err();
  const Said differs = run(status);
  EXPECT_EQ(differs.status, 1);
  EXPECT_NE(differs.out.find(" differs\n"), std::string::npos) << differs.out;
  ToolProcess follower(folder_, "follower", words("--from", "to"));
  ASSERT_TRUE(says(follower, "the store holds what the sender sent")) << follower.err();
  const Said same = run(status);
  EXPECT_EQ(same.status, 0) << same.out;
  EXPECT_EQ(same.out.find("differs"), std::string::npos) << same.out;
  EXPECT_EQ(run({"show", "--store", file("to")}).out, run({"show", "--store", file("from")}).out);
  kill(follower.id(), SIGTERM);
  EXPECT_EQ(follower.wait(), 0);
}

TEST_F(Replicate, WatchTellsWhatASiteSends) {
  expect_done({"load", "frr", sample_, "--store", file("from")});
  ToolProcess sender(folder_, "sender", words("--to", "from"));
  ToolProcess watch(folder_, "watch",
                    {"watch", "--from", url_of(server_.port()), "--name", "site", "--json"});
  ASSERT_TRUE(says(watch, "watching ")) << watch.err();
  ToolProcess watch_of_store(folder_, "watch-store", {"watch", "--store", file("from"), "--json"});
  ASSERT_TRUE(says(watch_of_store, "watching ")) << watch_of_store.err();
  expect_done({"load", "frr", other_sample_, "--store", file("from")});
  const auto without_time = [](const std::string &line) {
    return line.substr(line.find("change"));
  };
  EXPECT_EQ(without_time(watch.line(0)), without_time(watch_of_store.line(0)));
  expect_wrong_words({"watch", "--from", "nats://hub", "--name", "a b"}, {"found \"a b\""});
  expect_wrong_words({"watch", "--from", "nats://hub", "--name", "a", "--store", file("from")},
                     {"watch: --store and --from: found both"});
}

// What the manager of services hears.
TEST_F(Replicate, TellsTheManagerOfServices) {
  const int manager = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string place = file("notify");
  place.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(manager, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
  const timeval limit{20, 0};
  setsockopt(manager, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
  const auto hear = [&] {
    char bytes[512];
    const ssize_t length = recv(manager, bytes, sizeof bytes, 0);
    return std::string(bytes, length < 0 ? 0 : static_cast<std::size_t>(length));
  };
  setenv("NOTIFY_SOCKET", place.c_str(), 1);
  ToolProcess sender(folder_, "sender", words("--to", "from"));
  unsetenv("NOTIFY_SOCKET");
  EXPECT_EQ(hear(), "STATUS=sending site: the bucket holds the store");
  EXPECT_EQ(hear(), "READY=1");
  server_.kill();
  EXPECT_TRUE(hear().starts_with("STATUS=sending site: "));
  kill(sender.id(), SIGTERM);
  std::string last;
  for (std::string heard = hear(); !heard.empty() && last != "STOPPING=1"; heard = hear()) {
    last = heard;
    if (last == "STOPPING=1") break;
  }
  EXPECT_EQ(last, "STOPPING=1");
  EXPECT_EQ(sender.wait(), 0);
  close(manager);
}

TEST_F(Replicate, WaitsForAnEngineThatIsNotThereYet) {
  expect_done({"load", "frr", sample_, "--store", file("from")});
  server_.kill();
  ToolProcess sender(folder_, "sender", words("--to", "from"));
  ToolProcess follower(folder_, "follower", words("--from", "to"));
  ASSERT_TRUE(says(sender, " is away")) << sender.err();
  server_.start();
  EXPECT_TRUE(says(follower, "the store holds what the sender sent")) << follower.err();
}

}  // namespace

}  // namespace replication_tests
