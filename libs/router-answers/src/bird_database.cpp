#include "bird_database.hpp"

#include <algorithm>
#include <array>
#include <functional>

#include "ospf_decode/lsa_v2.hpp"
#include "ospf_decode/lsa_v3.hpp"
#include "ospf_tables/row_keys.hpp"
#include "prefix_text.hpp"

namespace router_answers {

using namespace ospf_decode;
using ospf_tables::parse_dotted;

std::optional<std::uint32_t> BirdState::own_router_id() const {
  for (const auto &[area, nodes] : areas) {
    for (const BirdNode &node : nodes) {
      if (node.own && node.network.empty()) return node.router;
    }
  }
  return std::nullopt;
}

namespace {

// "external 192.0.2.0/24 metric2 20 via 10.0.0.1 tag 0000000b": pairs of words behind the target.
BirdNode::Line line_of(const TextAnswer &text, const TextLine &line) {
  BirdNode::Line out;
  out.word = line.words[0];
  if (line.words.size() < 2) text.fail(line, "what the LSA says, such as a prefix and a metric");
  out.target = line.words[1];
  for (std::size_t at = 2; at + 1 < line.words.size(); at += 2) {
    const std::string &name = line.words[at];
    const std::string &value = line.words[at + 1];
    if (name == "metric" || name == "metric2") {
      out.metric = text.decimal(line, value, 0xffffff, "a metric");
      out.type_2 = name == "metric2";
    } else if (name == "via") {
      out.via = value;
    } else if (name == "tag") {
      out.tag = text.hexadecimal(line, value, UINT32_MAX, "a tag in hexadecimal digits");
    }
  }
  return out;
}

}  // namespace

BirdState read_bird_state(const TextAnswer &text) {
  BirdState state;
  std::vector<BirdNode> *area = nullptr;
  for (const TextLine &line : text.lines()) {
    const std::string &word = line.words[0];
    if (line.depth == 0) {
      area = nullptr;
      if (word == "area" && line.words.size() == 2) {
        area = &state.areas[text.dotted(line, line.words[1], "an area ID")];
      } else if (line.text == "other ASBRs") {
        area = &state.asbrs;
      }
    } else if (area == nullptr) {
      continue;
    } else if (line.depth == 1) {
      if (line.words.size() < 2) text.fail(line, "a router or a network");
      BirdNode node;
      if (word == "router") {
        node.router = text.dotted(line, line.words[1], "a router ID");
      } else {
        node.network = line.words[1];
      }
      area->push_back(std::move(node));
    } else {
      if (area->empty()) text.fail(line, "a router or a network before it");
      BirdNode &node = area->back();
      if (word == "distance") {
        node.own = line.text == "distance 0";
      } else if (word == "dr" && line.words.size() > 1) {
        node.router = text.dotted(line, line.words[1], "a router ID");
      } else if (word != "unreachable") {
        node.lines.push_back(line_of(text, line));
      }
    }
  }
  return state;
}

namespace {

constexpr std::uint32_t options_v2[] = {0x02, 0x42, 0x00, 0x40, 0x22, 0x62, 0x0a,
                                        0x4a, 0x08, 0x48, 0x12, 0x52, 0x82, 0xc2};
constexpr std::uint32_t options_v3[] = {0x13, 0x113, 0x33, 0x133, 0x11, 0x111, 0x19, 0x119,
                                        0x31, 0x131, 0x12, 0x112, 0x10, 0x110, 0x18, 0x118};

std::uint32_t mask_of(std::uint8_t length) {
  return length == 0 ? 0 : ~std::uint32_t{0} << (32 - length);
}

std::uint32_t ipv4_of(const PrefixV3 &prefix) {
  return std::uint32_t{prefix.address[0]} << 24 | std::uint32_t{prefix.address[1]} << 16 |
         std::uint32_t{prefix.address[2]} << 8 | prefix.address[3];
}

// "[10.0.0.1-2]": the designated router and its interface ID.
std::optional<std::pair<std::uint32_t, std::uint32_t>> network_of(const std::string &text) {
  const std::size_t dash = text.find('-');
  if (text.size() < 4 || text.front() != '[' || text.back() != ']' || dash == std::string::npos) {
    return std::nullopt;
  }
  const auto router = parse_dotted(text.substr(1, dash - 1));
  const std::string number = text.substr(dash + 1, text.size() - dash - 2);
  if (!router || number.empty() || number.size() > 10 ||
      number.find_first_not_of("0123456789") != std::string::npos) {
    return std::nullopt;
  }
  return std::pair(*router, static_cast<std::uint32_t>(std::stoull(number)));
}

// Tries what an LSA may have said, until the checksum agrees; of tries that all fail the first
// stays, as far as it is known to be of this LSA.
class Attempts {
 public:
  Attempts(std::uint8_t version, const LsaHeader &header) : version_(version), header_(header) {}

  bool done() const { return best_ && best_->exact; }
  // `sure`: the words are of this LSA, so that without a better try they stand, though not exact.
  void attempt(const LsaBody &body, bool sure, std::uint8_t options = 0) {
    if (done()) return;
    header_.options = options;
    HeldLsa lsa = put_together(version_, header_, body);
    if (lsa.exact || (sure && !best_)) best_ = std::move(lsa);
  }
  HeldLsa result() {
    if (best_) return std::move(*best_);
    header_.options = 0;
    return header_alone(version_, header_);
  }

 private:
  std::uint8_t version_;
  LsaHeader header_;
  std::optional<HeldLsa> best_;
};

class Builder {
 public:
  Builder(std::uint8_t version, const BirdState &state) : version_(version), state_(state) {}

  HeldLsa build(const Place &place, const LsaHeader &header) {
    Attempts attempts(version_, header);
    if (version_ == 2) {
      build_v2(place.area, header, attempts);
    } else {
      build_v3(place.area, header, attempts);
    }
    return attempts.result();
  }

 private:
  using Line = BirdNode::Line;

  template <typename Act>
  void for_each_node(std::uint32_t area, Act act) const {
    const auto found = state_.areas.find(area);
    if (found == state_.areas.end()) return;
    for (const BirdNode &node : found->second) act(node);
  }

  // The lines of a word under the LSA's router, in one area or in all.
  std::vector<const Line *> lines_of(const LsaHeader &header, std::optional<std::uint32_t> area,
                                     const char *word) const {
    std::vector<const Line *> out;
    const auto gather = [&](const std::vector<BirdNode> &nodes) {
      for (const BirdNode &node : nodes) {
        if (!node.network.empty() || node.router != header.advertising_router) continue;
        for (const Line &line : node.lines) {
          if (line.word == word) out.push_back(&line);
        }
      }
    };
    for (const auto &[id, nodes] : state_.areas) {
      if (!area || *area == id) gather(nodes);
    }
    if (!area) gather(state_.asbrs);
    return out;
  }

  void build_v2(std::uint32_t area, const LsaHeader &header, Attempts &attempts) const {
    switch (header.type) {
      case lsa2_router:
        return router_v2(area, header, attempts);
      case lsa2_network:
        return network_v2(area, header, attempts);
      case lsa2_summary:
        return summary_v2(area, header, attempts);
      case lsa2_asbr_summary:
        for (const Line *line : lines_of(header, area, "xrouter")) {
          if (parse_dotted(line->target) != header.link_state_id) continue;
          LsaBody body;
          body.u32(0).u32(line->metric);
          for (const std::uint32_t options : options_v2) {
            attempts.attempt(body, true, static_cast<std::uint8_t>(options));
          }
        }
        return;
      case lsa2_as_external:
        return external_v2(lines_of(header, std::nullopt, "external"), header, attempts);
      case lsa2_nssa:
        return external_v2(lines_of(header, area, "nssa-ext"), header, attempts);
      default:
        return;
    }
  }

  // Flags, link data and the order of links are not told.
  void router_v2(std::uint32_t area, const LsaHeader &header, Attempts &attempts) const {
    for_each_node(area, [&](const BirdNode &node) {
      if (!node.network.empty() || node.router != header.advertising_router) return;
      LsaBody links;
      std::uint32_t count = 0;
      const auto put = [&](std::uint32_t id, std::uint32_t data, RouterLinkType type,
                           std::uint32_t metric) {
        links.u32(id).u32(data).u8(type).u8(0).u16(metric);
        ++count;
      };
      for (const Line &line : node.lines) {
        const auto router = parse_dotted(line.target);
        const auto prefix = parse_prefix(line.target);
        if (line.word == "router" && router) {
          put(*router, 0, router_link_point_to_point, line.metric);
        } else if (line.word == "vlink" && router) {
          put(*router, 0, router_link_virtual, line.metric);
        } else if (line.word == "stubnet" && prefix) {
          put(ipv4_of(*prefix), mask_of(prefix->length), router_link_stub, line.metric);
        } else if (line.word == "network" && prefix) {
          put(network_id(area, line.target).value_or(0), 0, router_link_transit, line.metric);
        }
      }
      LsaBody body;
      body.u8(router_flags(header)).u8(0).u16(count).bytes(links.octets());
      attempts.attempt(body, true, option2_e);
    });
  }

  // What a router must be to have originated what it has.
  std::uint32_t router_flags(const LsaHeader &header) const {
    const auto has = [&](const char *word) {
      return !lines_of(header, std::nullopt, word).empty();
    };
    return (has("xnetwork") || has("xrouter") ? std::uint32_t{router_flag_b} : 0u) |
           (has("external") || has("nssa-ext") ? std::uint32_t{router_flag_e} : 0u);
  }

  // The link-state ID of a network: the address of its designated router, by the prefix.
  std::optional<std::uint32_t> network_id(std::uint32_t area, const std::string &prefix) const {
    const auto found = network_ids_.find({area, prefix});
    return found == network_ids_.end() ? std::nullopt : std::optional(found->second);
  }

  void network_v2(std::uint32_t area, const LsaHeader &header, Attempts &attempts) const {
    for_each_node(area, [&](const BirdNode &node) {
      const auto prefix = parse_prefix(node.network);
      if (!prefix || node.router != header.advertising_router ||
          (header.link_state_id & mask_of(prefix->length)) != ipv4_of(*prefix)) {
        return;
      }
      LsaBody body;
      body.u32(mask_of(prefix->length));
      for (const Line &line : node.lines) {
        if (const auto router = parse_dotted(line.target); router && line.word == "router") {
          body.u32(*router);
        }
      }
      for (const std::uint32_t options : options_v2) {
        attempts.attempt(body, true, static_cast<std::uint8_t>(options));
      }
    });
  }

  // Prefixes of several lengths may fit one link-state ID (its host bits may be set): the checksum
  // tells which; when it cannot, only a single one is taken.
  template <typename Put>
  void by_prefix(const std::vector<const Line *> &lines, const LsaHeader &header,
                 Attempts &attempts, Put put) const {
    std::vector<const Line *> fitting;
    for (const Line *line : lines) {
      const auto prefix = parse_prefix(line->target);
      if (prefix && (header.link_state_id & mask_of(prefix->length)) == ipv4_of(*prefix)) {
        fitting.push_back(line);
      }
    }
    for (const Line *line : fitting) {
      const LsaBody body = put(*line, *parse_prefix(line->target));
      for (const std::uint32_t options : options_v2) {
        attempts.attempt(body, fitting.size() == 1, static_cast<std::uint8_t>(options));
      }
    }
  }

  void summary_v2(std::uint32_t area, const LsaHeader &header, Attempts &attempts) const {
    by_prefix(lines_of(header, area, "xnetwork"), header, attempts,
              [](const Line &line, const PrefixV3 &prefix) {
                LsaBody body;
                body.u32(mask_of(prefix.length)).u32(line.metric);
                return body;
              });
  }

  void external_v2(const std::vector<const Line *> &lines, const LsaHeader &header,
                   Attempts &attempts) const {
    by_prefix(lines, header, attempts, [](const Line &line, const PrefixV3 &prefix) {
      LsaBody body;
      body.u32(mask_of(prefix.length)).u8(line.type_2 ? 0x80 : 0).u24(line.metric);
      body.u32(parse_dotted(line.via).value_or(0)).u32(line.tag);
      return body;
    });
  }

  void build_v3(std::uint32_t area, const LsaHeader &header, Attempts &attempts) const {
    switch (header.type) {
      case lsa3_router:
        return router_v3(area, header, attempts);
      case lsa3_network:
        return network_v3(area, header, attempts);
      case lsa3_inter_area_prefix:
        for (const Line *line : lines_of(header, area, "xnetwork")) {
          if (auto prefix = parse_prefix(line->target)) {
            try_prefix_options(attempts, [&](std::uint8_t options) {
              prefix->options = options;
              LsaBody body;
              body.u32(line->metric).prefix(*prefix);
              return body;
            });
          }
        }
        return;
      case lsa3_inter_area_router:
        for (const Line *line : lines_of(header, area, "xrouter")) {
          for (const std::uint32_t options : options_v3) {
            LsaBody body;
            body.u32(options).u32(line->metric).u32(parse_dotted(line->target).value_or(0));
            attempts.attempt(body, false);
          }
        }
        return;
      case lsa3_as_external:
        return external_v3(lines_of(header, std::nullopt, "external"), attempts);
      case lsa3_nssa:
        return external_v3(lines_of(header, area, "nssa-ext"), attempts);
      case lsa3_intra_area_prefix:
        return intra_area_prefix(area, header, attempts);
      default:
        return;
    }
  }

  template <typename Put>
  static void try_prefix_options(Attempts &attempts, Put put) {
    for (const std::uint8_t options : {0, int{prefix_la}, int{prefix_p}, int{prefix_dn}}) {
      attempts.attempt(put(options), false);
    }
  }

  // Interface IDs are not told, but for the one of a network's designated router.
  void router_v3(std::uint32_t area, const LsaHeader &header, Attempts &attempts) const {
    for_each_node(area, [&](const BirdNode &node) {
      if (!node.network.empty() || node.router != header.advertising_router) return;
      LsaBody body;
      body.u8(router_flags(header)).u24(option3_v6 | option3_e | option3_r);
      for (const Line &line : node.lines) {
        const auto router = parse_dotted(line.target);
        const auto network = network_of(line.target);
        if ((line.word == "router" || line.word == "vlink") && router) {
          body.u8(line.word == "router" ? router_link_point_to_point : router_link_virtual);
          body.u8(0).u16(line.metric).u32(0).u32(0).u32(*router);
        } else if (line.word == "network" && network) {
          body.u8(router_link_transit).u8(0).u16(line.metric).u32(0);
          body.u32(network->second).u32(network->first);
        }
      }
      attempts.attempt(body, true);
    });
  }

  void network_v3(std::uint32_t area, const LsaHeader &header, Attempts &attempts) const {
    for_each_node(area, [&](const BirdNode &node) {
      const auto name = network_of(node.network);
      if (!name || *name != std::pair(header.advertising_router, header.link_state_id)) return;
      for (const std::uint32_t options : options_v3) {
        LsaBody body;
        body.u32(options);
        for (const Line &line : node.lines) {
          if (const auto router = parse_dotted(line.target); router && line.word == "router") {
            body.u32(*router);
          }
        }
        attempts.attempt(body, true);
      }
    });
  }

  void external_v3(const std::vector<const Line *> &lines, Attempts &attempts) const {
    for (const Line *line : lines) {
      auto prefix = parse_prefix(line->target);
      if (!prefix) continue;
      const auto via = parse_prefix(line->via + "/128");
      const auto via_v4 = parse_prefix(line->via + "/32");
      const std::uint32_t flags = (line->type_2 ? std::uint32_t{external3_e} : 0u) |
                                  (line->via.empty() ? 0u : std::uint32_t{external3_f}) |
                                  (line->tag == 0 ? 0u : std::uint32_t{external3_t});
      try_prefix_options(attempts, [&](std::uint8_t options) {
        prefix->options = options;
        LsaBody body;
        body.u8(flags).u24(line->metric).prefix(*prefix);
        if (via || via_v4) body.bytes(via ? via->address : via_v4->address);
        if (line->tag != 0) body.u32(line->tag);
        return body;
      });
    }
  }

  // Those of a router are its stub networks, those of a network its addresses; which it is says the
  // link-state ID, that of the network LSA or any other.
  void intra_area_prefix(std::uint32_t area, const LsaHeader &header, Attempts &attempts) const {
    for_each_node(area, [&](const BirdNode &node) {
      const auto network = network_of(node.network);
      const bool of_network =
          network && *network == std::pair(header.advertising_router, header.link_state_id);
      const bool of_router = node.network.empty() && node.router == header.advertising_router;
      if (!of_network && !of_router) return;
      std::vector<std::pair<PrefixV3, std::uint32_t>> prefixes;
      for (const Line &line : node.lines) {
        const auto prefix = parse_prefix(line.target);
        if (prefix && line.word == (of_network ? "address" : "stubnet")) {
          prefixes.emplace_back(*prefix, line.metric);
        }
      }
      // A host's prefix may have the LA bit.
      for (const std::uint8_t of_hosts : {int{prefix_la}, 0}) {
        LsaBody body;
        body.u16(static_cast<std::uint32_t>(prefixes.size()));
        body.u16(of_network ? lsa3_network : lsa3_router);
        body.u32(of_network ? header.link_state_id : 0).u32(header.advertising_router);
        for (auto [prefix, metric] : prefixes) {
          if (prefix.length == 128) prefix.options = of_hosts;
          body.prefix(prefix, static_cast<std::uint16_t>(metric));
        }
        attempts.attempt(body, of_network || header.link_state_id == 0);
      }
    });
  }

 public:
  void know_network(std::uint32_t area, const LsaHeader &header) {
    for_each_node(area, [&](const BirdNode &node) {
      const auto prefix = parse_prefix(node.network);
      if (prefix && node.router == header.advertising_router &&
          (header.link_state_id & mask_of(prefix->length)) == ipv4_of(*prefix)) {
        network_ids_[{area, node.network}] = header.link_state_id;
      }
    });
  }

 private:
  std::uint8_t version_;
  const BirdState &state_;
  std::map<std::pair<std::uint32_t, std::string>, std::uint32_t> network_ids_;
};

struct Row {
  Place place;
  LsaHeader header;
};

std::vector<Row> rows_of(const TextAnswer &text, std::uint8_t version) {
  std::vector<Row> rows;
  std::optional<Place> place;
  for (const TextLine &line : text.lines()) {
    const std::string &word = line.words[0];
    if (word == "Type") continue;  // the columns' names
    if (word == "Global") {
      place = Place{Scope::as, 0, ""};
    } else if (word == "Area" && line.words.size() > 1) {
      place = Place{Scope::area, text.dotted(line, line.words[1], "an area ID"), ""};
    } else if (word == "Link" && line.words.size() > 1) {
      place = Place{Scope::link, 0, line.words[1]};
    } else if (line.words.size() == 6 && place) {
      Row row{*place, {}};
      row.header.type = static_cast<std::uint16_t>(
          text.hexadecimal(line, word, version == 2 ? 0xff : 0xffff, "an LS type"));
      row.header.link_state_id = text.dotted(line, line.words[1], "a link-state ID");
      row.header.advertising_router = text.dotted(line, line.words[2], "a router ID");
      row.header.sequence = text.hexadecimal(line, line.words[3], UINT32_MAX, "a sequence number");
      row.header.age = static_cast<std::uint16_t>(std::min<std::uint32_t>(
          text.decimal(line, line.words[4], UINT16_MAX, "an age"), max_age));
      row.header.checksum = static_cast<std::uint16_t>(
          text.hexadecimal(line, line.words[5], UINT16_MAX, "a checksum"));
      rows.push_back(row);
    } else {
      text.fail(line, "Global, Area, Link, or the six columns of an LSA");
    }
  }
  return rows;
}

}  // namespace

void read_bird_lsadb(const TextAnswer &text, std::uint8_t version, const BirdState &state,
                     Database &database) {
  Builder builder(version, state);
  const std::vector<Row> rows = rows_of(text, version);
  for (const Row &row : rows) {
    if (version == 2 && row.header.type == lsa2_network) {
      builder.know_network(row.place.area, row.header);
    }
  }
  for (const Row &row : rows) database.add(row.place, builder.build(row.place, row.header));
}

}  // namespace router_answers
