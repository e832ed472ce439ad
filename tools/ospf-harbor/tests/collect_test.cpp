// A store that is kept up with what is heard: packets of a recorded network are sent on the
// loopback of a network namespace of the test's own, while one process collects, one watches and
// others look.
#include <arpa/inet.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <cstring>
#include <nlohmann/json.hpp>
#include <set>

#include "support/bytes.hpp"
#include "support/processes.hpp"

namespace {

using tool_tests::ProcessTest;
using tool_tests::ToolProcess;

// A network namespace with a loopback alone, for as long as this lives.
class OwnNetwork {
 public:
  OwnNetwork() : before_(open("/proc/self/ns/net", O_RDONLY)) {
    if (before_ < 0 || unshare(CLONE_NEWNET) != 0) return;
    const int any = socket(AF_INET, SOCK_DGRAM, 0);
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    request.ifr_flags = IFF_UP | IFF_LOOPBACK | IFF_RUNNING;
    is_up_ = ioctl(any, SIOCSIFFLAGS, &request) == 0;
    close(any);
    sender_ = socket(AF_PACKET, SOCK_RAW, htons(0x0003));
    sockaddr_ll place{};
    place.sll_family = AF_PACKET;
    place.sll_ifindex = static_cast<int>(if_nametoindex("lo"));
    is_up_ = is_up_ && bind(sender_, reinterpret_cast<sockaddr *>(&place), sizeof place) == 0;
  }
  ~OwnNetwork() {
    close(sender_);
    EXPECT_EQ(setns(before_, CLONE_NEWNET), 0);
    close(before_);
  }
  OwnNetwork(const OwnNetwork &) = delete;
  OwnNetwork &operator=(const OwnNetwork &) = delete;

  bool is_up() const { return is_up_; }

  void send_frame(const ospf_decode::testing::Octets &frame) {
    EXPECT_EQ(send(sender_, frame.data(), frame.size(), 0), static_cast<ssize_t>(frame.size()));
  }
  // Sends the frames of a capture from one of them to another, in groups, so that nothing is lost.
  void replay(const std::string &capture, std::size_t from, std::size_t to) {
    const std::string bytes = content_of(capture);
    std::size_t number = 0;
    for (std::size_t at = 24; at + 16 <= bytes.size(); ++number) {
      std::uint32_t length = 0;
      std::memcpy(&length, bytes.data() + at + 8, sizeof length);
      at += 16;
      if (number >= from && number < to) {
        ASSERT_EQ(send(sender_, bytes.data() + at, length, 0), static_cast<ssize_t>(length));
        if (number % 20 == 19) std::this_thread::sleep_for(std::chrono::milliseconds(25));
      }
      at += length;
    }
  }

 private:
  int before_ = -1;
  int sender_ = -1;
  bool is_up_ = false;
};

class Collecting : public ProcessTest {
 protected:
  static constexpr std::size_t kAll = 1000000;

  template <typename Done>
  static bool wait_until(Done done) {
    for (int tries = 0; tries < 250; ++tries) {
      if (done()) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
  }
  static bool says(const ToolProcess &process, const char *text) {
    return wait_until([&] { return process.err().find(text) != std::string::npos; });
  }
  std::vector<std::string> on_store(std::vector<std::string> words) const {
    words.insert(words.end(), {"--store", store_});
    return words;
  }
  // On which link an interface stands is judged by times, which are others here.
  static bool counts(const std::string &path) { return path.find("/interface/") == path.npos; }
  // The LSAs of a listing as paths with their sequence numbers.
  std::set<std::string> lsas(const std::vector<std::string> &words) {
    const Said said = run(words);
    EXPECT_EQ(said.status, 0) << said.err;
    std::set<std::string> found;
    std::istringstream in(said.out);
    for (std::string line; std::getline(in, line);) {
      const auto lsa = nlohmann::json::parse(line);
      const std::string path = lsa["path"];
      if (counts(path)) found.insert(path + " " + lsa["seq_num"].get<std::string>());
    }
    return found;
  }
  // What a watch has said, folded: paths of LSAs with their latest sequence numbers.
  static std::set<std::string> folded(const std::string &lines) {
    std::map<std::string, std::string> there;
    std::istringstream in(lines);
    for (std::string line; std::getline(in, line);) {
      const auto change = nlohmann::json::parse(line);
      if (!change.contains("seq_num")) continue;
      const std::string path = change["path"];
      if (change["change"] == "aged out") {
        there.erase(path);
      } else {
        EXPECT_EQ(there.contains(path), change["change"] == "newer") << line;
        there[path] = change["seq_num"];
      }
    }
    std::set<std::string> found;
    for (const auto &[path, sequence] : there) {
      if (counts(path)) found.insert(path + " " + sequence);
    }
    return found;
  }

  const std::string store_ = file("store");
  const std::string capture_ = places::sample() + "/all.pcap";
};

// A network namespace is root's to make.
using CollectingAsRoot = Collecting;

TEST_F(CollectingAsRoot, KeepsAStoreUpWithWhatIsHeardAndOthersWatch) {
  OwnNetwork network;
  ASSERT_TRUE(network.is_up());
  ToolProcess watch(folder_, "watch", on_store({"watch", "--json"}));
  ASSERT_TRUE(says(watch, "watching 0 rows")) << watch.err();
  ToolProcess neighbors(folder_, "neighbors", on_store({"watch", "area/0.0.0.0/interface"}));
  ASSERT_TRUE(says(neighbors, "watching 0 rows")) << neighbors.err();
  ToolProcess collect(folder_, "collect", on_store({"collect", "-i", "lo"}));
  ASSERT_TRUE(says(collect, "listening on lo")) << collect.err();
  network.replay(capture_, 0, 700);
  // Within about a second the first half is there for others, while collect goes on.
  ASSERT_TRUE(
      wait_until([&] { return watch.out().find("\"change\":\"new\"") != std::string::npos; }));
  ASSERT_TRUE(wait_until([&] { return run(on_store({"lsdb"})).status == 0; }));
  network.replay(capture_, 700, kAll);
  const std::set<std::string> expected = lsas({"lsdb", "--json", "--from", capture_});
  EXPECT_GT(expected.size(), 100u);
  EXPECT_TRUE(wait_until([&] { return lsas(on_store({"lsdb", "--json"})) == expected; }));
  kill(collect.id(), SIGTERM);
  EXPECT_EQ(collect.wait(), 0) << collect.err();
  EXPECT_NE(collect.out().find("2024 packets"), std::string::npos) << collect.out();
  EXPECT_TRUE(wait_until([&] { return folded(watch.out()) == expected; }));
  EXPECT_NE(watch.out().find("\"change\":\"newer\""), std::string::npos);
  EXPECT_TRUE(wait_until([&] {
    return neighbors.out().find("/neighbor/10.255.0.2: state Full") != std::string::npos;
  })) << neighbors.out();
  EXPECT_EQ(neighbors.out().find("/area-lsa/"), std::string::npos);
  const Said check = run({"store", "check", store_});
  EXPECT_EQ(check.status, 0) << check.out;
}

// A hello of 192.0.2.N, router 10.0.0.N, with a hello interval of one second and a dead interval of
// two, that lists the other of two.
ospf_decode::testing::Octets hello_of(std::uint32_t number) {
  using namespace ospf_decode::testing;
  const Writer body = Writer()
                          .u32(0xffffff00)
                          .u16(1)
                          .u8(2)
                          .u8(1)
                          .u32(2)
                          .u32(0)
                          .u32(0)
                          .u32(0x0a000000 + (3 - number));
  PacketParts parts;
  parts.router = 0x0a000000 + number;
  Ip4Parts ip;
  ip.source = 0xc0000200 + number;
  return make_ethernet(0x0800, make_ipv4(ip, make_packet_v2(parts, body)));
}

TEST_F(Collecting, EventsAreToldAsTheyHappenAndTimersWhenTheyEnd) {
  OwnNetwork network;
  ASSERT_TRUE(network.is_up());
  ToolProcess events(folder_, "events", {"events", "-i", "lo", "--json"});
  const auto says = [&](const char *text) { return events.out().find(text) != std::string::npos; };
  // Neighbours that have heard each other for a dead interval are taken to be Full.
  ASSERT_TRUE(wait_until([&] {
    for (const std::uint32_t number : {1u, 2u}) network.send_frame(hello_of(number));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return says("\"neighbor_up\"");
  })) << events.out()
      << events.err();
  const std::string last = events.out();
  EXPECT_EQ(last.find("neighbor_down"), std::string::npos) << last;
  // Now both are silent, and nothing comes that could tell.
  ASSERT_TRUE(wait_until([&] { return says("\"dead_timer\""); })) << events.out();
  const auto down = nlohmann::json::parse(events.out().substr(last.size()));
  EXPECT_EQ(down["kind"], "neighbor_down");
  EXPECT_TRUE(down["packet"].is_null());
  // What real daemons sent, as far as it does not hang on times.
  network.replay(places::recordings() + "/mismatch/all.pcap", 0, 400);
  EXPECT_TRUE(wait_until([&] { return says("\"lsa_new\"") && says("\"hello_interval\""); }));
  kill(events.id(), SIGINT);
  EXPECT_EQ(events.wait(), 0) << events.err();
}

TEST_F(Collecting, TellsInstancesThatComeAndGo) {
  expect_done({"load", "frr", sample_, "--store", store_});
  ToolProcess watch(folder_, "watch", on_store({"watch", "--seconds", "2"}));
  ASSERT_TRUE(says(watch, "watching ")) << watch.err();
  expect_done({"load", "frr", other_sample_, "--store", store_});
  // What changes nothing is not told.
  expect_done({"load", "frr", other_sample_, "--store", store_});
  EXPECT_EQ(watch.wait(), 0) << watch.err();
  const std::string said = watch.out();
  EXPECT_NE(said.find(" new instance/ipv4,10.255.0.2\n"), std::string::npos) << said;
  EXPECT_EQ(said.find("10.255.0.1/"), std::string::npos) << said;
  EXPECT_EQ(said.find(" gone "), std::string::npos) << said;
  const auto lines = static_cast<std::size_t>(std::count(said.begin(), said.end(), '\n'));
  std::set<std::string> paths;
  std::istringstream in(said);
  for (std::string time, what, path, rest; in >> time >> what >> path && std::getline(in, rest);) {
    paths.insert(path);
  }
  EXPECT_EQ(paths.size(), lines);
}

TEST_F(Collecting, NeedsAStoreAndAnInterface) {
  expect_wrong_words({"watch"}, {"watch: --store: found nothing"});
  expect_wrong_words({"collect", "-i", "lo"}, {"collect: --store: found nothing"});
  expect_refused(on_store({"collect", "-i", "none0"}), {"collect: cannot listen on none0: "});
}

}  // namespace
