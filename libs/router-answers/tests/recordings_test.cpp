// The databases that the routers of recorded networks tell, held against the capture of the same
// network: the packets are the judge.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "ospf_decode/capture.hpp"
#include "ospf_decode/frame_decoder.hpp"
#include "ospf_decode/network.hpp"
#include "router_answers/one_network.hpp"
#include "router_answers/router.hpp"
#include "support/places.hpp"
#include "support/temporary_folder.hpp"

namespace {

namespace fs = std::filesystem;
using namespace router_answers;
using ospf_decode::Bytes;
using Octets = std::vector<std::uint8_t>;

// Every LSA of any update, by what one instance is known by.
using Instance =
    std::tuple<int, int, std::uint16_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint16_t>;

class Updates : public ospf_decode::Visitor {
 public:
  std::map<Instance, std::set<Octets>> lsas;

  void on_lsa_v2(const ospf_decode::Packet &packet, const ospf_decode::LsaV2 &lsa) override {
    add(packet, lsa.header, lsa.raw);
  }
  void on_lsa_v3(const ospf_decode::Packet &packet, const ospf_decode::LsaV3 &lsa) override {
    add(packet, lsa.header, lsa.raw);
  }

 private:
  void add(const ospf_decode::Packet &packet, const ospf_decode::LsaHeader &header, Bytes raw) {
    lsas[{packet.version, packet.instance_id, header.type, header.link_state_id,
          header.advertising_router, header.sequence, header.checksum}]
        .insert(Octets(raw.begin() + 2, raw.end()));
  }
};

Updates updates_of(const fs::path &capture) {
  Updates updates;
  ospf_decode::CaptureReader reader;
  EXPECT_TRUE(reader.open_file(capture.string())) << reader.error();
  ospf_decode::FrameDecoder decoder(updates);
  ospf_decode::decode_capture(reader, decoder);
  return updates;
}

std::vector<Router> routers_of(const fs::path &recording) {
  std::vector<Router> routers;
  for (const auto &entry : fs::directory_iterator(recording / "routers")) {
    if (!is_router(entry.path().string())) continue;  // dead when the others were asked
    PassedOver passed_over;
    routers.push_back(read_router(entry.path().string(), passed_over));
  }
  return routers;
}

fs::path recordings() { return places::recordings(); }

std::vector<std::string> names() {
  std::vector<std::string> names;
  for (const auto &entry : fs::directory_iterator(recordings())) {
    if (entry.is_directory()) names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

// Those whose routers were all asked after the last change in the capture. Of sameid two routers
// never stop to replace one LSA; of domain a link failed just before the routers were asked.
std::vector<std::string> settled_names() {
  std::vector<std::string> settled = names();
  std::erase_if(settled, [](const auto &name) { return name == "sameid" || name == "domain"; });
  return settled;
}

class Recording : public testing::TestWithParam<std::string> {
 protected:
  fs::path folder_ = recordings() / GetParam();
};

class SettledRecording : public Recording {};

std::string text_of(const LsaKey &key, const Process &process) {
  char text[120];
  std::snprintf(text, sizeof text, "OSPFv%d/%d area %x type %x id %x of %x", process.version,
                process.instance_id, key.place.area, key.name.type, key.name.link_state_id,
                key.name.advertising_router);
  return text;
}

TEST_P(Recording, ExactBytesAreThoseOfThePackets) {
  const Updates updates = updates_of(folder_ / "all.pcap");
  std::size_t compared = 0;
  for (const Router &router : routers_of(folder_)) {
    for (const Process &process : router.processes) {
      for (const auto &[key, lsa] : process.database.lsas) {
        if (!lsa.exact) continue;
        const auto sent = updates.lsas.find({process.version, process.instance_id, key.name.type,
                                             key.name.link_state_id, key.name.advertising_router,
                                             lsa.header.sequence, lsa.header.checksum});
        if (sent == updates.lsas.end()) continue;  // a router may hold what it sends to nobody
        ++compared;
        EXPECT_TRUE(sent->second.contains(Octets(lsa.raw.begin() + 2, lsa.raw.end())))
            << router.name << ' ' << text_of(key, process);
      }
    }
  }
  // Where no adjacency comes up no LSA is on any wire.
  const bool is_silent = GetParam() == "strangers";
  EXPECT_EQ(compared >= 10, !is_silent) << compared;
}

// What is not exact is what the daemons leave out, and nothing else.
TEST_P(Recording, OnlyWhatADaemonLeavesOutIsNotExact) {
  for (const Router &router : routers_of(folder_)) {
    const bool bird = fs::exists(folder_ / "routers" / router.name / "bird.conf");
    const bool has_details =
        bird || fs::exists(folder_ / "routers" / router.name / "ip-ospf-database-router.json.gz") ||
        router.processes.front().version == 3;
    for (const Process &process : router.processes) {
      for (const auto &[key, lsa] : process.database.lsas) {
        if (lsa.exact || lsa.header.age_seconds() >= ospf_decode::max_age) continue;
        const std::uint16_t type = key.name.type;
        if (process.version == 2 && !has_details) continue;
        // FRR cuts the octets of long opaque LSAs; BIRD tells no router LSA whole, and no link LSA.
        const bool left_out = process.version == 2 ? type >= 9 || (bird && type == 1)
                                                   : bird && (type == 0x2001 || type == 0x0008);
        EXPECT_TRUE(left_out) << router.name << ' ' << text_of(key, process);
      }
    }
  }
}

// The newest of all routers is what was flooded last.
TEST_P(SettledRecording, OneNetworkIsTheDatabaseOfTheCapture) {
  ospf_decode::Network heard;
  ospf_decode::CaptureReader reader;
  ASSERT_TRUE(reader.open_file((folder_ / "all.pcap").string())) << reader.error();
  ospf_decode::FrameDecoder decoder(heard);
  ospf_decode::decode_capture(reader, decoder);

  using Key = std::tuple<int, int, std::uint32_t, std::uint16_t, std::uint32_t, std::uint32_t>;
  std::map<Key, std::pair<std::uint32_t, std::uint16_t>> expected;
  std::map<Key, std::pair<std::uint32_t, std::uint16_t>> told;
  std::set<Key> gone;
  for (const ospf_decode::LsdbEntry *entry : heard.lsdb().sorted()) {
    if (heard.grace_over(*entry, heard.last_time())) continue;
    const std::uint32_t area = entry->key.scope == ospf_decode::Scope::area ? entry->key.domain : 0;
    const Key key{entry->key.version, entry->key.instance_id,   area,
                  entry->key.type,    entry->key.link_state_id, entry->key.advertising_router};
    if (entry->gone_at(heard.last_time())) {
      gone.insert(key);
    } else {
      expected[key] = {entry->header.sequence, entry->header.checksum};
    }
  }
  const Network network = one_network(routers_of(folder_));
  for (const Process &process : network.processes) {
    for (const auto &[key, lsa] : process.database.lsas) {
      if (lsa.header.age_seconds() >= ospf_decode::max_age) continue;
      const std::uint32_t area = key.place.scope == ospf_decode::Scope::area ? key.place.area : 0;
      told[{process.version, process.instance_id, area, key.name.type, key.name.link_state_id,
            key.name.advertising_router}] = {lsa.header.sequence, lsa.header.checksum};
    }
  }
  // A router may keep what all others flushed; then it is told that these lack it. What it says of
  // a link whose other end has died is sent to nobody any more, and nobody else has to have it.
  constexpr std::uint16_t link_lsa = 0x0008;
  for (const Key &key : gone) {
    if (!told.contains(key) || std::get<3>(key) == link_lsa) continue;
    const std::string name = lsa_vocabulary::type_name(std::get<0>(key), std::get<3>(key)) + " " +
                             ospf_decode::ipv4_text(std::get<4>(key)) + " of " +
                             ospf_decode::ipv4_text(std::get<5>(key)) + ": ";
    EXPECT_TRUE(std::any_of(network.differences.begin(), network.differences.end(),
                            [&](const router_answers::Difference &difference) {
                              return difference.text.find(name) != std::string::npos &&
                                     difference.text.find(" lacks it") != std::string::npos;
                            }))
        << "flushed: OSPFv" << std::get<0>(key) << ' ' << name;
  }
  for (const auto &[key, instance] : expected) {
    const auto found = told.find(key);
    if (found == told.end()) {
      ADD_FAILURE() << "told by none: OSPFv" << std::get<0>(key) << " type " << std::hex
                    << std::get<3>(key) << " id " << std::get<4>(key) << " of " << std::get<5>(key);
    } else if (found->second.first <= instance.first) {
      // A router without neighbours holds newer ones of its own than it ever sent.
      EXPECT_EQ(found->second, instance)
          << "OSPFv" << std::get<0>(key) << " type " << std::hex << std::get<3>(key) << " id "
          << std::get<4>(key) << " of " << std::get<5>(key);
    }
  }
}

// A router's answers of some kinds alone.
Router read_only(const fs::path &router, const std::vector<std::string> &ends) {
  const TemporaryFolder temporary;
  const fs::path &folder = temporary.path();
  for (const auto &entry : fs::directory_iterator(router)) {
    const std::string name = entry.path().filename().string();
    const bool wanted = std::any_of(ends.begin(), ends.end(),
                                    [&](const std::string &end) { return name.ends_with(end); });
    if (wanted) fs::copy(entry.path(), folder / name);
  }
  Router out;
  if (is_router(folder.string())) {
    PassedOver passed_over;
    out = read_router(folder.string(), passed_over);
  }
  return out;
}

const Process *process_of(const Router &router, int version) {
  for (const Process &process : router.processes) {
    if (process.version == version) return &process;
  }
  return nullptr;
}

// Forms of one answer say the same where both say it exactly. Answers are given one after the
// other, so that instances may differ.
void expect_same(const Process &a, const Process &b, const std::string &router,
                 std::size_t &compared) {
  for (const auto &[key, lsa] : a.database.lsas) {
    const auto found = b.database.lsas.find(key);
    if (found == b.database.lsas.end()) continue;
    const HeldLsa &other = found->second;
    if (lsa.header.sequence != other.header.sequence) continue;
    if (lsa.header.checksum != other.header.checksum) continue;
    EXPECT_EQ(lsa.has_body() && !lsa.exact, false) << router << ' ' << text_of(key, a);
    if (!lsa.exact || !other.exact) continue;
    ++compared;
    EXPECT_EQ(Octets(lsa.raw.begin() + 2, lsa.raw.end()),
              Octets(other.raw.begin() + 2, other.raw.end()))
        << router << ' ' << text_of(key, a);
  }
}

TEST(FormsOfAnswers, TextAndDumpSayWhatJsonSays) {
  std::size_t texts = 0;
  std::size_t dumps = 0;
  for (const std::string &name : names()) {
    for (const auto &entry : fs::directory_iterator(recordings() / name / "routers")) {
      if (!fs::exists(entry.path() / "frr.conf")) continue;
      const Router json = read_only(entry.path(), {".json.gz"});
      const Router text = read_only(entry.path(), {".txt"});
      const std::string router = name + '/' + entry.path().filename().string();
      for (const int version : {2, 3}) {
        const Process *a = process_of(text, version);
        const Process *b = process_of(json, version);
        if (a != nullptr && b != nullptr) {
          expect_same(*a, *b, router, version == 2 ? texts : dumps);
        }
      }
    }
  }
  EXPECT_GT(texts, 500u);
  EXPECT_GT(dumps, 500u);
}

std::string suffix(const testing::TestParamInfo<std::string> &info) {
  std::string name = info.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Networks, Recording, testing::ValuesIn(names()), suffix);
INSTANTIATE_TEST_SUITE_P(Networks, SettledRecording, testing::ValuesIn(settled_names()), suffix);

}  // namespace
