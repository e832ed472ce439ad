// Routers' answers as a source: what lsdb shows without a capture is what it shows of the
// capture of the same network.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <tuple>

#include "ospf_tables/lsdb_view.hpp"
#include "ospf_tables/session.hpp"
#include "sources/sources.hpp"
#include "support/places.hpp"

namespace {

namespace fs = std::filesystem;
using ospf_tables::LsdbEntry;
using ospf_tables::Session;

const fs::path recordings = places::recordings();

using Key = std::tuple<std::string, std::optional<std::uint32_t>, std::uint16_t, std::uint32_t,
                       std::uint32_t>;
using Lsas = std::map<Key, ospf_tables::LsaView>;

Lsas lsas_of(const fs::path &source) {
  Session session;
  EXPECT_EQ(tool::load_sources(session, {source.string()}), 0) << source;
  Lsas lsas;
  for (LsdbEntry &entry : ospf_tables::read_lsdb(session)) {
    const Key key{entry.instance, entry.area, entry.lsa.type, entry.lsa.link_state_id,
                  entry.lsa.adv_router};
    lsas.emplace(key, std::move(entry.lsa));
  }
  return lsas;
}

class Answers : public testing::TestWithParam<const char *> {};

// The octets but for the age, when the answers give all of them.
TEST_P(Answers, HaveTheLsasOfTheCapture) {
  const Lsas captured = lsas_of(recordings / GetParam() / "all.pcap");
  const Lsas told = lsas_of(recordings / GetParam() / "routers");
  ASSERT_GT(captured.size(), 5u);
  std::size_t whole = 0;
  for (const auto &[key, lsa] : captured) {
    const auto found = told.find(key);
    const std::string name = std::get<0>(key) + " type " + std::to_string(lsa.type) + " id " +
                             std::to_string(lsa.link_state_id) + " of " +
                             std::to_string(lsa.adv_router);
    if (found == told.end()) {
      ADD_FAILURE() << name << " is not there";
      continue;
    }
    const ospf_tables::LsaView &other = found->second;
    EXPECT_EQ(other.sequence, lsa.sequence) << name;
    EXPECT_EQ(other.checksum, lsa.checksum) << name;
    if (!other.decoded_completed) continue;
    ++whole;
    EXPECT_EQ(other.length, lsa.length) << name;
    EXPECT_EQ(other.options, lsa.options) << name;
    EXPECT_TRUE(std::equal(lsa.raw_data.begin() + 2, lsa.raw_data.end(), other.raw_data.begin() + 2,
                           other.raw_data.end()))
        << name;
  }
  // Long opaque LSAs and what BIRD leaves out are few beside the rest.
  EXPECT_GT(whole * 10, captured.size() * 7);
}

INSTANTIATE_TEST_SUITE_P(Networks, Answers,
                         testing::Values("campus", "nssa", "virtual", "nbma", "bird-frr",
                                         "refresh"));

// Of three instances each is a database of its own, as in a capture.
TEST(Answers, KeepInstancesApart) {
  const Lsas captured = lsas_of(recordings / "instances/all.pcap");
  const Lsas told = lsas_of(recordings / "instances/routers");
  std::set<std::string> captured_instances;
  std::set<std::string> told_instances;
  for (const auto &[key, lsa] : captured) {
    captured_instances.insert(std::get<0>(key));
    EXPECT_TRUE(told.contains(key)) << std::get<0>(key) << " type " << lsa.type;
  }
  // Beside these there are link LSAs of interfaces that lead nowhere, which no capture has.
  for (const auto &[key, lsa] : told) {
    told_instances.insert(std::get<0>(key));
    EXPECT_TRUE(captured.contains(key) || lsa.type == lsa_vocabulary::lsa3_link)
        << std::get<0>(key);
  }
  EXPECT_EQ(told_instances, captured_instances);
  EXPECT_EQ(told_instances,
            (std::set<std::string>{"ipv4,0.255.3.64", "ipv6,0.0.0.0", "ipv6,0.255.3.1"}));
}

TEST(Answers, OfOneRouterStandUnderItsOwnId) {
  for (const char *router : {"virtual/routers/b5", "virtual/routers/r3"}) {
    const Lsas lsas = lsas_of(recordings / router);
    const std::string id = std::string(router).ends_with('5') ? "10.252.0.5" : "10.252.0.3";
    ASSERT_FALSE(lsas.empty());
    for (const auto &[key, lsa] : lsas) {
      EXPECT_TRUE(std::get<0>(key) == "ipv4," + id || std::get<0>(key) == "ipv6," + id)
          << std::get<0>(key);
    }
  }
}

}  // namespace
