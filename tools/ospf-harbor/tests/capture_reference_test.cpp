// Recorded networks in the tables: the databases are those of the routers, and every field that the
// model holds is what another decoder says of the same packets. The recordings' reference files are
// the ones that the decoder's own tests use.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "captured_tree.hpp"
#include "ospf_decode/capture.hpp"
#include "ospf_tables/row_keys.hpp"
#include "sources/load_capture.hpp"
#include "support/lines.hpp"
#include "support/places.hpp"

namespace {

std::string value_of(const std::string &line, const std::string &name) {
  const std::size_t at = line.find(' ' + name + '=');
  if (at == std::string::npos) return "";
  const std::size_t begin = at + name.size() + 2;
  return line.substr(begin, line.find_first_of(" )", begin) - begin);
}

void keep_bits(std::string &line, const std::string &name, std::size_t from, unsigned bits) {
  const std::size_t at = line.find(' ' + name + '=', from);
  if (at == std::string::npos) return;
  const std::size_t begin = at + name.size() + 2;
  const std::size_t length = line.find_first_of(" ", begin) - begin;
  char text[16];
  std::snprintf(text, sizeof text, "%lx", std::stoul(line.substr(begin), nullptr, 16) & bits);
  line.replace(begin, std::min(length, line.size() - begin), text);
}

// The bracketed parts in the order of the rows' keys, which for prefixes is that of their texts.
void sort_brackets(std::string &line) {
  const std::size_t first = line.find(" [");
  if (first == std::string::npos) return;
  Lines parts;
  for (std::size_t at = first; at < line.size();) {
    const std::size_t end = line.find(']', at) + 1;
    parts.push_back(line.substr(at, end - at));
    at = end;
  }
  std::ranges::sort(parts);
  line.erase(first);
  for (const std::string &part : parts) line += part;
}

// A TLV list of the reference as the rows of a traffic-engineering LSA have it: one link TLV, the
// first of the unreserved bandwidths, and raw what has no field.
std::string engineering(const std::string &tlvs) {
  const auto or_zero = [&](const char *name, std::string zero) {
    const std::string value = value_of(tlvs, name);
    return value.empty() ? zero : value;
  };
  const auto sub = [&](const std::string &sub_tlv, const std::string &zero) {
    std::smatch found;
    return std::regex_search(tlvs, found, std::regex("\\(" + sub_tlv + "=([^ ),]*)"))
               ? found[1].str()
               : zero;
  };
  std::string out = " router=" + value_of(tlvs, "router") + " (type=" + sub("1/1 type", "0") +
                    " id=" + sub("2/4 id", "0.0.0.0") + " local=" + or_zero("local", "") +
                    " remote=" + or_zero("remote", "") + " metric=" + sub("5/4 metric", "0") +
                    " max=" + sub("6/4 bandwidth", "00000000") +
                    " reservable=" + sub("7/4 bandwidth", "00000000") +
                    " unreserved=" + sub("8/32 unreserved", "00000000") +
                    " group=" + sub("9/4 group", "0") + ')';
  std::smatch found;
  if (std::regex_search(tlvs, found, std::regex("unreserved=([0-9a-f,]*)"))) {
    std::string all = found[1];
    all.erase(std::remove(all.begin(), all.end(), ','), all.end());
    std::string first;
    for (int time = 0; time < 8; ++time) first += all.substr(0, 8);
    if (all != first) out += " (8/32 raw=" + all + ')';
  }
  const std::regex form(" \\([^ ]* raw=[^)]*\\)");
  for (std::sregex_iterator raw(tlvs.begin(), tlvs.end(), form), end; raw != end; ++raw) {
    out += raw->str();
  }
  return out;
}

// The TLVs of other opaque LSAs, whose values the rows have raw.
std::string raw_tlvs(std::string tlvs) {
  const auto octets = [](std::uint32_t number, int size) {
    char text[9];
    std::snprintf(text, sizeof text, "%0*x", 2 * size, number);
    return std::string(text);
  };
  std::string out;
  const std::regex tlv_form(" tlv=(\\S+)(?: (\\w+)=(\\S+))?");
  for (std::sregex_iterator tlv(tlvs.begin(), tlvs.end(), tlv_form), end; tlv != end; ++tlv) {
    const std::string name = (*tlv)[2];
    const std::string value = (*tlv)[3];
    out += " tlv=" + (*tlv)[1].str() + " raw=";
    if (name == "period") out += octets(static_cast<std::uint32_t>(std::stoul(value)), 4);
    if (name == "reason") out += octets(static_cast<std::uint32_t>(std::stoul(value)), 1);
    if (name == "capabilities") {
      // The reference has the first octet, and the routers set no bit behind it.
      out += octets(static_cast<std::uint32_t>(std::stoul(value, nullptr, 16)) << 24, 4);
    }
  }
  return out;
}

// What the model can hold of a reference line "age=... dna=... options=... ...", from the options
// on: bits and values that it has no place for are taken out.
std::string held_part(unsigned version, std::string line) {
  const unsigned type = static_cast<unsigned>(std::stoul(value_of(line, "type"), nullptr, 16));
  line = line.substr(line.find(" options="));
  const std::size_t length_at = line.find(" length=");
  const std::size_t behind = line.find(' ', length_at + 1);
  const std::size_t body = behind == std::string::npos ? line.size() : behind;
  if (version == 2) {
    std::string tail = line.substr(body);
    line.erase(body);
    keep_bits(line, "options", 0, 0x2f);
    if (type == 1) keep_bits(tail, "flags", 0, 0x07);
    if (type == 5 || type == 7) {
      tail = std::regex_replace(tail, std::regex("\\[(\\d+) \\d+ "), "[$1 ");
    }
    if (type >= 9) {
      tail = value_of(line, "id").starts_with("1.") ? engineering(tail) : raw_tlvs(tail);
    }
    return line.substr(1) + tail;
  }
  if (type == 0x2001) keep_bits(line, "flags", body, 0x17);
  if (type == 0x4005 || type == 0x2007) {
    keep_bits(line, "flags", body, 0x04);
    EXPECT_EQ(value_of(line, "ref"), "0") << "the reference does not tell what is referenced";
    line.replace(line.find(" ref=0"), 6, " ref=0 refid=0.0.0.0");
  }
  keep_bits(line, "options", body, 0x13b);
  if (type != 0x2001) line = std::regex_replace(line, std::regex(" \\d+\\]"), "]");
  sort_brackets(line);
  return line.substr(1);
}

class CapturedNetwork : public testing::TestWithParam<const char *> {
 protected:
  std::string path(const std::string &name) const {
    return places::recordings() + '/' + GetParam() + '/' + name;
  }
  captured::Tree load() {
    ospf_tables::Session session;
    EXPECT_EQ(tool::load_capture(session, {{path("all.pcap")}, "", 0, "", nullptr, false, true}),
              0);
    return captured::read(session);
  }
};

TEST_P(CapturedNetwork, EveryFieldOfEveryLsaIsWhatAnotherDecoderSays) {
  // By what names an instance of an LSA, all that the other decoder saw of it.
  std::map<std::string, std::string> version_of_packet;
  std::map<std::string, std::vector<std::pair<std::string, std::string>>> reference;  // age, rest
  const Lines lines = read_lines(path("decoder.txt"));
  for (const std::string &line : lines) {
    const std::string packet = line.substr(0, line.find(' '));
    if (line.find(" packet ") != std::string::npos) {
      version_of_packet[packet] = value_of(line, "version");
    }
  }
  for (const std::string &line : lines) {
    if (line.find(" lsa ") == std::string::npos) continue;
    EXPECT_EQ(value_of(line, "dna"), "0");
    const std::string version = version_of_packet.at(line.substr(0, line.find(' ')));
    const std::string name = version + ' ' + value_of(line, "type") + ' ' + value_of(line, "id") +
                             ' ' + value_of(line, "adv") + ' ' + value_of(line, "seq") + ' ' +
                             value_of(line, "checksum");
    reference[name].emplace_back(value_of(line, "age"),
                                 held_part(static_cast<unsigned>(std::stoul(version)), line));
  }
  const captured::Tree tree = load();
  ASSERT_GT(tree.lsas.size(), 100u);
  for (const captured::Lsa &lsa : tree.lsas) {
    SCOPED_TRACE("OSPFv" + std::to_string(lsa.version) + ' ' + lsa.area + lsa.interface + ' ' +
                 lsa.name);
    const auto seen = reference.find(std::to_string(lsa.version) + ' ' + lsa.name);
    ASSERT_NE(seen, reference.end());
    bool age_was_seen = false;
    for (const auto &[age, fields] : seen->second) {
      EXPECT_EQ(lsa.fields, fields);
      age_was_seen |= std::to_string(lsa.age) == age;
    }
    EXPECT_TRUE(age_was_seen) << lsa.age;
    EXPECT_TRUE(lsa.completed);
    EXPECT_EQ(lsa.is_link_row ? lsa.row_version : lsa.version, lsa.version);
    EXPECT_EQ(std::to_string(lsa.raw.size()), value_of(lsa.fields, "length"));
  }
}

TEST_P(CapturedNetwork, TheDatabasesAreThoseOfTheRouters) {
  // Each LSA that a router holds, by version and place; a link's, by what the link holds, as the
  // routers name it by their interfaces.
  std::map<std::string, std::map<std::string, Lines>> held;
  std::map<std::string, Lines> links;
  for (const std::string &line : read_lines(path("databases.txt"))) {
    std::istringstream words(line);
    std::string router, version, place, lsa;
    words >> router >> version >> place;
    std::getline(words >> std::ws, lsa);
    if (place == "as" || std::ranges::count(place, '.') == 3) {
      held[version + ' ' + place][router].push_back(lsa);
    } else {
      links[version + ' ' + place + ' ' + router].push_back(lsa);
    }
  }
  ASSERT_GT(held.size(), 5u);

  std::map<std::string, Lines> own;
  std::map<std::string, Lines> own_links;
  for (const captured::Lsa &lsa : load().lsas) {
    const std::string version = std::to_string(lsa.version) + ' ';
    const bool is_area_opaque = lsa.version == 2 && lsa.container == 10;
    if (lsa.area.empty()) {
      EXPECT_TRUE(lsa.is_link_row);
      own[version + "as"].push_back(lsa.name);
    } else if (lsa.interface.empty() || is_area_opaque) {
      EXPECT_EQ(lsa.is_link_row, is_area_opaque);
      own[version + lsa.area].push_back(lsa.name);
    } else {
      EXPECT_TRUE(lsa.is_link_row);
      own_links[version + lsa.interface].push_back(lsa.name);
    }
  }
  EXPECT_EQ(own.size(), held.size());
  for (auto &[place, routers] : held) {
    Lines &here = own[place];
    std::ranges::sort(here);
    for (auto &[router, lsas] : routers) {
      std::ranges::sort(lsas);
      EXPECT_EQ(here, lsas) << router << " at " << place;
    }
  }
  std::set<Lines> expected;
  for (auto &[name, lsas] : links) {
    std::ranges::sort(lsas);
    expected.insert(lsas);
  }
  std::set<Lines> found;
  for (auto &[name, lsas] : own_links) {
    std::ranges::sort(lsas);
    EXPECT_TRUE(found.insert(lsas).second) << "a link's database stands twice, at " << name;
  }
  EXPECT_EQ(found, expected);
}

TEST_P(CapturedNetwork, TheNeighborsAreThoseOfTheRouters) {
  static const std::map<std::string, std::uint32_t> states = {{"Full", NBR_STATE_FULL},
                                                              {"2-Way", NBR_STATE_TWO_WAY},
                                                              {"Down", NBR_STATE_DOWN},
                                                              {"Init", NBR_STATE_INIT},
                                                              {"Attempt", NBR_STATE_ATTEMPT}};
  Lines expected;
  for (const std::string &line : read_lines(path("neighbors.txt"))) {
    std::istringstream words(line);
    std::string router, version, neighbor, address, state;
    words >> router >> version >> neighbor >> address >> state;
    expected.push_back(router + ' ' + version + ' ' + neighbor + ' ' + address + ' ' +
                       std::to_string(states.at(state)));
  }
  ASSERT_GT(expected.size(), 10u);
  Lines own;
  for (const captured::Interface &interface : load().interfaces) {
    const std::string router = interface.name.substr(0, interface.name.find('@'));
    for (const std::string &neighbor : interface.neighbors) {
      own.push_back(router + ' ' + std::to_string(interface.version) + ' ' + neighbor);
    }
  }
  std::ranges::sort(expected);
  std::ranges::sort(own);
  EXPECT_EQ(own, expected);
}

TEST_P(CapturedNetwork, AnInterfaceHasWhatItsLastHelloSaid) {
  // The source address of each packet, which the reference does not have.
  std::map<std::string, std::string> sources;
  ospf_decode::CaptureReader reader;
  ASSERT_TRUE(reader.open_file(path("all.pcap")));
  ospf_decode::Frame frame;
  while (reader.next(frame) == ospf_decode::CaptureReader::Status::frame) {
    const bool v6 = frame.data[12] == 0x86;
    ospf_decode::Ipv6Bytes address{};
    std::copy_n(frame.data.begin() + (v6 ? 22 : 26), v6 ? 16 : 4, address.begin());
    sources[std::to_string(frame.number)] = ospf_decode::ip_text({address, v6});
  }
  std::map<std::string, std::string> routers;  // by packet
  std::map<std::string, std::string> hellos;   // by the interface's name without a virtual peer
  const Lines lines = read_lines(path("decoder.txt"));
  for (const std::string &line : lines) {
    if (line.find(" packet ") == std::string::npos) continue;
    routers[line.substr(0, line.find(' '))] =
        value_of(line, "version") + ' ' + value_of(line, "area") + ' ' + value_of(line, "router");
  }
  for (const std::string &line : lines) {
    if (line.find(" hello ") == std::string::npos) continue;
    const std::string packet = line.substr(0, line.find(' '));
    std::string name = routers.at(packet) + '@' + sources.at(packet);
    if (name[0] == '3') name += '%' + value_of(line, "interface");
    hellos[name] = "hello=" + value_of(line, "hello") + " dead=" + value_of(line, "dead") +
                   " priority=" + value_of(line, "priority") + " dr=" + value_of(line, "dr") +
                   " bdr=" + value_of(line, "bdr");
  }
  std::size_t compared = 0;
  for (const captured::Interface &interface : load().interfaces) {
    const std::string name = std::to_string(interface.version) + ' ' + interface.area + ' ' +
                             interface.name.substr(0, interface.name.find('>'));
    ASSERT_TRUE(hellos.contains(name)) << name;
    EXPECT_EQ("hello=" + std::to_string(interface.hello_interval) +
                  " dead=" + std::to_string(interface.dead_interval) +
                  " priority=" + std::to_string(interface.priority) + " dr=" + interface.dr +
                  " bdr=" + interface.bdr,
              hellos.at(name))
        << name;
    ++compared;
  }
  EXPECT_GT(compared, 20u);
}

INSTANTIATE_TEST_SUITE_P(Recordings, CapturedNetwork, testing::Values("campus", "transit"),
                         [](const auto &info) { return std::string(info.param); });

}  // namespace
