// Recorded networks: every field against another decoder's answer, and the databases and
// neighbours against what the routers themselves said at the end.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "describe.hpp"
#include "ospf_decode/capture.hpp"
#include "ospf_decode/network.hpp"
#include "support/bytes.hpp"
#include "support/lines.hpp"
#include "support/places.hpp"

namespace ospf_decode::testing {
namespace {

// A recording is a directory of the test data.
class Recording : public ::testing::TestWithParam<const char *> {
 protected:
  std::string path(const std::string &name) const {
    return places::recordings() + '/' + GetParam() + '/' + name;
  }
  void decode(Visitor &visitor) {
    CaptureReader reader;
    ASSERT_TRUE(reader.open_file(path("all.pcap"))) << reader.error();
    FrameDecoder decoder(visitor);
    decode_capture(reader, decoder);
    EXPECT_EQ(decoder.errors().total(), 0u);
    EXPECT_EQ(decoder.other_frames(), 0u);
    EXPECT_GT(decoder.lsas(), 1000u);
  }
};

TEST_P(Recording, EveryFieldEqualsTheOtherDecoders) {
  Lines reference = read_lines(path("decoder.txt"));
  ASSERT_GT(reference.size(), 1000u);
  Describer own;
  decode(own);
  // Of some trailers the reference has the length only.
  std::set<std::string> length_only;
  for (const std::string &line : reference) {
    if (const auto at = line.find(" trailer=?"); at != std::string::npos) {
      length_only.insert(line.substr(0, at));
    }
  }
  for (std::string &line : own.lines) {
    const auto at = line.find(" trailer=");
    if (at == std::string::npos || !length_only.contains(line.substr(0, at))) continue;
    const auto digest = line.find("digest=") + std::string("digest=").size();
    const std::size_t length = 16 + (line.size() - digest) / 2;
    line = line.substr(0, at) + " trailer=?" + std::to_string(length);
  }
  std::ranges::sort(reference);
  std::ranges::sort(own.lines);
  Lines missing;
  Lines extra;
  std::ranges::set_difference(reference, own.lines, std::back_inserter(missing));
  std::ranges::set_difference(own.lines, reference, std::back_inserter(extra));
  for (std::size_t i = 0; i < std::min<std::size_t>(missing.size(), 5); ++i) {
    ADD_FAILURE() << "not decoded so: " << missing[i];
  }
  for (std::size_t i = 0; i < std::min<std::size_t>(extra.size(), 5); ++i) {
    ADD_FAILURE() << "decoded but not there: " << extra[i];
  }
  EXPECT_EQ(missing.size(), 0u);
  EXPECT_EQ(extra.size(), 0u);
  EXPECT_EQ(reference.size(), own.lines.size());
}

std::string lsa_text(const LsdbEntry &entry) {
  char text[120];
  std::snprintf(text, sizeof text, "%x %s %s %x %x", entry.header.type,
                ipv4_text(entry.header.link_state_id).c_str(),
                ipv4_text(entry.header.advertising_router).c_str(), entry.header.sequence,
                entry.header.checksum);
  return text;
}

// A line "router version place lsa" of what the routers hold.
struct HeldLsa {
  std::string router;
  std::string place;  // "version area", "version as" or "version segment"
  std::string lsa;

  bool is_of_link() const { return !place.ends_with(" as") && std::ranges::count(place, '.') != 3; }
};

std::vector<HeldLsa> held_lsas(const std::string &path) {
  std::vector<HeldLsa> out;
  for (const std::string &line : read_lines(path)) {
    std::istringstream words(line);
    HeldLsa held;
    std::string version;
    std::string place;
    words >> held.router >> version >> place;
    held.place = version + ' ' + place;
    std::getline(words >> std::ws, held.lsa);
    out.push_back(held);
  }
  return out;
}

using ByPlace = std::map<std::string, Lines>;

// The databases that were heard, and apart from them those of links.
std::pair<ByPlace, ByPlace> heard_lsas(const Network &network) {
  ByPlace wide;
  ByPlace links;
  for (const LsdbEntry *entry : network.lsdb().sorted()) {
    if (entry->gone_at(network.last_time()) || network.grace_over(*entry, network.last_time())) {
      continue;
    }
    const std::string version = std::to_string(entry->key.version) + ' ';
    switch (entry->key.scope) {
      case Scope::area:
        wide[version + ipv4_text(entry->key.domain)].push_back(lsa_text(*entry));
        break;
      case Scope::as:
        wide[version + "as"].push_back(lsa_text(*entry));
        break;
      case Scope::link:
        links[version + std::to_string(entry->key.domain)].push_back(lsa_text(*entry));
        break;
    }
  }
  return {wide, links};
}

// The contents without their names, in order.
std::vector<Lines> contents_of(ByPlace places) {
  std::vector<Lines> out;
  for (auto &[name, lsas] : places) {
    std::ranges::sort(lsas);
    out.push_back(lsas);
  }
  std::ranges::sort(out);
  return out;
}

TEST_P(Recording, TheDatabasesAreTheRouters) {
  Network network;
  decode(network);
  std::map<std::string, ByPlace> held;  // by place and router: each LSA that any router holds there
  ByPlace links;                        // by place and router
  for (const HeldLsa &each : held_lsas(path("databases.txt"))) {
    if (each.is_of_link()) {
      links[each.place + ' ' + each.router].push_back(each.lsa);
    } else {
      held[each.place][each.router].push_back(each.lsa);
    }
  }
  ASSERT_GT(held.size(), 5u);

  auto [own, own_links] = heard_lsas(network);
  // What no router has sent cannot be known.
  for (const HeldLsa &each : held_lsas(path("unsent.txt"))) {
    EXPECT_EQ(std::ranges::count(own[each.place], each.lsa), 0) << each.place << ' ' << each.lsa;
  }
  EXPECT_EQ(own.size(), held.size()) << "a database that no router has";
  for (auto &[place, routers] : held) {
    EXPECT_TRUE(own.contains(place)) << place;
    Lines &here = own[place];
    std::ranges::sort(here);
    for (auto &[router, lsas] : routers) {
      std::ranges::sort(lsas);
      EXPECT_EQ(here, lsas) << router << " at " << place;
    }
  }

  // A link is known to the routers by its interface and here by its number, so links go by their
  // contents, which several routers hold.
  std::vector<Lines> expected = contents_of(links);
  expected.erase(std::unique(expected.begin(), expected.end()), expected.end());
  EXPECT_EQ(contents_of(own_links), expected);
}

TEST_P(Recording, TheNeighborsAreTheRouters) {
  Network network;
  decode(network);
  Lines own;
  for (const Neighbor &neighbor : network.neighbors(network.last_time())) {
    const Interface &interface = network.interfaces()[neighbor.interface];
    own.push_back(ipv4_text(interface.router_id) + ' ' + std::to_string(interface.version) + ' ' +
                  ipv4_text(neighbor.router_id) + ' ' + ip_text(neighbor.address) + ' ' +
                  std::string(neighbor_state_text(neighbor.state)));
  }
  Lines reference = read_lines(path("neighbors.txt"));
  ASSERT_GT(reference.size(), 10u);
  std::ranges::sort(reference);
  std::ranges::sort(own);
  EXPECT_EQ(own, reference);
}

// All the bodies of a recording's packets, cut at every octet and damaged at every octet. Nothing
// but the sanitizers can say what is wrong, and that all is counted.
TEST_P(Recording, AnyCutOfAnyPacketDecodes) {
  CaptureReader reader;
  ASSERT_TRUE(reader.open_file(path("all.pcap")));
  std::map<std::string, Octets> samples;  // one of each version, type and length class
  Frame frame;
  while (reader.next(frame) == CaptureReader::Status::frame) {
    const Octets data(frame.data.begin(), frame.data.end());
    const bool v6 = data.at(12) == 0x86;
    const std::string kind = std::to_string(v6) + ' ' + std::to_string(data.at(v6 ? 55 : 35)) +
                             ' ' + std::to_string(std::bit_width(data.size()));
    samples.try_emplace(kind, data);
  }
  ASSERT_GT(samples.size(), 10u);
  std::size_t decoded = 0;
  for (const auto &[kind, data] : samples) {
    for (std::size_t length = 0; length < data.size(); ++length) {
      Bench cut;
      cut.frame(Octets(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(length)), 1,
                static_cast<std::uint32_t>(data.size() - length));
      EXPECT_GE(cut.errors(), 1u) << kind << " cut to " << length;
      Bench lying;
      lying.frame(Octets(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(length)));
      EXPECT_GE(lying.errors(), 1u) << kind << " of only " << length;
      Bench damaged;
      Octets spoilt = data;
      spoilt[length] ^= 0xff;
      damaged.frame(spoilt);
      decoded += damaged.seen.packets.size();
    }
  }
  EXPECT_GT(decoded, 0u);
}

INSTANTIATE_TEST_SUITE_P(All, Recording, ::testing::Values(OSPF_DECODE_RECORDINGS),
                         [](const auto &info) { return std::string(info.param); });

}  // namespace
}  // namespace ospf_decode::testing
