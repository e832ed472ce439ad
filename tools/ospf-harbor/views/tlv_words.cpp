#include "views/tlv_words.hpp"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "ospf_tables/input_error.hpp"
#include "ospf_tables/row_keys.hpp"
#include "views/lsa_names.hpp"
#include "views/text_forms.hpp"
#include "views/tlv_values.hpp"
#include "views/tlv_values_v3.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

constexpr std::size_t lsa_header_length = 20;
constexpr std::size_t tlv_header_length = 4;

using Json = nlohmann::ordered_json;
using Says = TlvSays;
using Read = void (*)(TlvValue &value, Says &says);

// --- values that several TLVs have ---

void read_quad(TlvValue &value, Says &says) { says.emplace_back("", value.quad()); }
void read_word(TlvValue &value, Says &says) { says.emplace_back("", value.number(4)); }
void read_octet(TlvValue &value, Says &says) { says.emplace_back("", value.number(1)); }
void read_nothing(TlvValue &, Says &) {}

void read_quads(TlvValue &value, Says &says) {
  Json list = Json::array();
  while (value.left() != 0) list.push_back(value.quad());
  says.emplace_back("", std::move(list));
}

void read_words(TlvValue &value, Says &says) {
  Json list = Json::array();
  while (value.left() != 0) list.push_back(value.number(4));
  says.emplace_back("", std::move(list));
}

void read_bits(TlvValue &value, Says &says) {
  std::string text = "0x";
  const Octets octets = value.rest();
  text += hex_text({octets.begin(), octets.end()});
  says.emplace_back("", std::move(text));
}

void read_bandwidth(TlvValue &value, Says &says) {
  if (value.left() == 4) {
    says.emplace_back("", value.real());
    return;
  }
  Json list = Json::array();
  while (value.left() != 0) list.push_back(value.real());
  says.emplace_back("", std::move(list));
}

// --- traffic engineering ---

void read_te_link_type(TlvValue &value, Says &says) {
  const std::uint32_t type = value.number(1);
  says.emplace_back("", name_or_number(name_of(te_link_types, type), type));
}

void read_identifiers(TlvValue &value, Says &says) {
  says.emplace_back("local", value.number(4));
  says.emplace_back("remote", value.number(4));
}

constexpr std::uint32_t anomalous_bit = 0x80000000;
constexpr std::uint32_t low_24_bits = 0xffffff;

void say_anomalous(std::uint32_t word, Says &says) {
  if ((word & anomalous_bit) != 0) says.emplace_back("flags", Json::array({"A"}));
}

void read_delay(TlvValue &value, Says &says) {
  const std::uint32_t word = value.number(4);
  says.emplace_back("", word & low_24_bits);
  say_anomalous(word, says);
}

void read_delays(TlvValue &value, Says &says) {
  const std::uint32_t least = value.number(4);
  says.emplace_back("least", least & low_24_bits);
  says.emplace_back("most", value.number(4) & low_24_bits);
  say_anomalous(least, says);
}

void read_loss(TlvValue &value, Says &says) {
  const std::uint32_t word = value.number(4);
  says.emplace_back("", (word & low_24_bits) * 0.000003);
  say_anomalous(word, says);
}

// --- graceful restart ---

void read_reason(TlvValue &value, Says &says) {
  const std::uint32_t reason = value.number(1);
  says.emplace_back("", name_or_number(name_of(grace_reasons, reason), reason));
}

// --- router information ---

// Bits are counted from the highest one.
void read_capabilities(TlvValue &value, Says &says) {
  static constexpr const char *names[] = {
      "graceful restart",    "graceful restart helper", "stub router",
      "traffic engineering", "point-to-point over LAN", "experimental traffic engineering"};
  Json list = Json::array();
  for (std::uint32_t at = 0; value.left() != 0; at += 32) {
    const std::uint32_t word = value.number(4);
    for (std::uint32_t bit = 0; bit < 32; ++bit) {
      if ((word & 0x80000000 >> bit) == 0) continue;
      const bool is_known = at + bit < std::size(names);
      list.push_back(is_known ? names[at + bit] : "bit " + std::to_string(at + bit));
    }
  }
  says.emplace_back("", std::move(list));
}

void read_name(TlvValue &value, Says &says) {
  const Octets octets = value.rest();
  says.emplace_back("", in_one_line(std::string(octets.begin(), octets.end())));
}

void read_algorithms(TlvValue &value, Says &says) {
  Json list = Json::array();
  while (value.left() != 0) list.push_back(algorithm_name(value.number(1)));
  says.emplace_back("", std::move(list));
}

void read_block(TlvValue &value, Says &says) {
  says.emplace_back("size", value.number(3));
  value.number(1);
}

void read_msds(TlvValue &value, Says &says) {
  Json list = Json::array();
  while (value.left() != 0) {
    const std::uint32_t type = value.number(1);
    const std::string depth = std::to_string(value.number(1));
    list.push_back(type == 1   ? "base MPLS imposition " + depth
                   : type == 2 ? "entropy readable label depth " + depth
                               : "type " + std::to_string(type) + " " + depth);
  }
  says.emplace_back("", std::move(list));
}

// --- extended prefixes and links, segment routing ---

std::string prefix_of(TlvValue &value, std::uint32_t length) {
  return dotted(value.number(std::min<std::size_t>(padded((length + 7) / 8), 4))) + "/" +
         std::to_string(length);
}

void read_prefix(TlvValue &value, Says &says) {
  const std::uint32_t route = value.number(1);
  static constexpr Named routes[] = {
      {0, "unspecified"}, {1, "intra-area"}, {3, "inter-area"}, {5, "external"}, {7, "NSSA"}};
  const std::uint32_t length = value.number(1);
  const std::uint32_t family = value.number(1);
  const std::uint32_t flags = value.number(1);
  says.emplace_back("", prefix_of(value, length));
  says.emplace_back("route", name_or_number(name_of(routes, route), route));
  says.emplace_back("flags", named_flags(flags, {{0x80, "A"}, {0x40, "N"}}));
  if (family != 0) says.emplace_back("family", family);
}

void read_prefix_range(TlvValue &value, Says &says) {
  const std::uint32_t length = value.number(1);
  const std::uint32_t family = value.number(1);
  const std::uint32_t size = value.number(2);
  const std::uint32_t flags = value.number(1);
  value.number(3);
  says.emplace_back("", prefix_of(value, length));
  says.emplace_back("size", size);
  says.emplace_back("flags", named_flags(flags, {{0x80, "IA"}}));
  if (family != 0) says.emplace_back("family", family);
}

void say_topology(std::uint32_t topology, Says &says) {
  if (topology != 0) says.emplace_back("topology", topology);
}

void read_prefix_sid(TlvValue &value, Says &says) {
  const std::uint32_t flags = value.number(1);
  value.number(1);
  const std::uint32_t topology = value.number(1);
  const std::uint32_t algorithm = value.number(1);
  read_sid(value, says);
  says.emplace_back("flags", named_flags(flags, prefix_sid_flags));
  says.emplace_back("algorithm", algorithm_name(algorithm));
  say_topology(topology, says);
}

void read_link(TlvValue &value, Says &says) {
  const std::uint32_t type = value.number(1);
  value.number(3);
  says.emplace_back("", name_or_number(name_of(router_link_types, type), type));
  says.emplace_back("ID", value.quad());
  says.emplace_back("data", value.quad());
}

template <bool on_lan>
void read_adjacency_sid(TlvValue &value, Says &says) {
  const std::uint32_t flags = value.number(1);
  value.number(1);
  const std::uint32_t topology = value.number(1);
  const std::uint32_t weight = value.number(1);
  if (on_lan) says.emplace_back("neighbour", value.quad());
  read_sid(value, says);
  says.emplace_back("flags", named_flags(flags, adjacency_sid_flags));
  says.emplace_back("weight", weight);
  say_topology(topology, says);
}

// --- the types ---

enum class Within {
  nothing,
  te,
  te_link,
  grace,
  information,
  block,
  prefix,
  in_prefix,
  link,
  in_link,
  extended_v3,
  in_extended_v3
};

struct KnownTlv {
  Within within;
  std::uint16_t type;
  const char *name;
  Read read;
  Within below = Within::nothing;  // whose TLVs follow what is read
  const char *unit = "";
};

constexpr KnownTlv known_tlvs[] = {
    {Within::te, te_tlv_router_address, "router address", read_quad},
    {Within::te, te_tlv_link, "link", read_nothing, Within::te_link},
    {Within::te, 3, "router address", read_address_v3},
    {Within::te_link, te_sub_link_type, "link type", read_te_link_type},
    {Within::te_link, te_sub_link_id, "link ID", read_quad},
    {Within::te_link, te_sub_local_addresses, "local address", read_quads},
    {Within::te_link, te_sub_remote_addresses, "remote address", read_quads},
    {Within::te_link, te_sub_metric, "metric", read_word},
    {Within::te_link, te_sub_max_bandwidth, "bandwidth", read_bandwidth, Within::nothing,
     "octets/s"},
    {Within::te_link, te_sub_max_reservable, "reservable bandwidth", read_bandwidth,
     Within::nothing, "octets/s"},
    {Within::te_link, te_sub_unreserved, "unreserved bandwidth by priority", read_bandwidth,
     Within::nothing, "octets/s"},
    {Within::te_link, te_sub_admin_group, "administrative group", read_bits},
    {Within::te_link, 11, "link identifiers", read_identifiers},
    {Within::te_link, 16, "shared risk link groups", read_words},
    {Within::te_link, 18, "neighbour", read_neighbor_v3},
    {Within::te_link, 19, "local address", read_addresses_v3},
    {Within::te_link, 20, "remote address", read_addresses_v3},
    {Within::te_link, 21, "remote AS", read_word},
    {Within::te_link, 22, "remote AS boundary router", read_quad},
    {Within::te_link, 24, "remote AS boundary router", read_address_v3},
    {Within::te_link, 26, "extended administrative group", read_bits},
    {Within::te_link, 27, "delay", read_delay, Within::nothing, "microseconds"},
    {Within::te_link, 28, "delay", read_delays, Within::nothing, "microseconds"},
    {Within::te_link, 29, "delay variation", read_delay, Within::nothing, "microseconds"},
    {Within::te_link, 30, "loss", read_loss, Within::nothing, "percent"},
    {Within::te_link, 31, "residual bandwidth", read_bandwidth, Within::nothing, "octets/s"},
    {Within::te_link, 32, "available bandwidth", read_bandwidth, Within::nothing, "octets/s"},
    {Within::te_link, 33, "utilized bandwidth", read_bandwidth, Within::nothing, "octets/s"},
    {Within::grace, grace_tlv_period, "grace period", read_word, Within::nothing, "seconds"},
    {Within::grace, grace_tlv_reason, "restart reason", read_reason},
    {Within::grace, grace_tlv_address, "interface address", read_quad},
    {Within::information, ri_tlv_informational, "capabilities", read_capabilities},
    {Within::information, ri_tlv_functional, "functional capabilities", read_bits},
    {Within::information, ri_tlv_hostname, "host name", read_name},
    {Within::information, 8, "SR algorithms", read_algorithms},
    {Within::information, 9, "SR global block", read_block, Within::block},
    {Within::information, 10, "administrative tags", read_words},
    {Within::information, 12, "MSD", read_msds},
    {Within::information, 14, "SR local block", read_block, Within::block},
    {Within::information, 15, "SR mapping server preference", read_octet},
    {Within::block, 1, "SID/label", read_sid},
    {Within::block, 7, "SID/label", read_sid},
    {Within::prefix, 1, "extended prefix", read_prefix, Within::in_prefix},
    {Within::prefix, 2, "extended prefix range", read_prefix_range, Within::in_prefix},
    {Within::in_prefix, 1, "SID/label", read_sid},
    {Within::in_prefix, 2, "Prefix-SID", read_prefix_sid},
    {Within::link, 1, "extended link", read_link, Within::in_link},
    {Within::in_link, 1, "SID/label", read_sid},
    {Within::in_link, 2, "Adj-SID", read_adjacency_sid<false>},
    {Within::in_link, 3, "LAN-Adj-SID", read_adjacency_sid<true>},
    {Within::in_link, 6, "MSD", read_msds},
    {Within::in_link, 8, "remote address", read_quad},
    {Within::in_link, 9, "link identifiers", read_identifiers},
    {Within::extended_v3, 1, "router link", read_router_link_v3, Within::in_extended_v3},
    {Within::extended_v3, 2, "attached routers", read_quads},
    {Within::extended_v3, 3, "inter-area prefix", read_prefix_v3, Within::in_extended_v3},
    {Within::extended_v3, 4, "inter-area router", read_router_v3, Within::in_extended_v3},
    {Within::extended_v3, 5, "external prefix", read_external_v3, Within::in_extended_v3},
    {Within::extended_v3, 6, "intra-area prefix", read_prefix_v3, Within::in_extended_v3},
    {Within::extended_v3, 7, "link-local address", read_address_v3, Within::in_extended_v3},
    {Within::extended_v3, 8, "link-local address", read_quad, Within::in_extended_v3},
    {Within::extended_v3, 9, "prefix range", read_prefix_range_v3, Within::in_extended_v3},
    {Within::in_extended_v3, 1, "forwarding address", read_address_v3},
    {Within::in_extended_v3, 2, "forwarding address", read_quad},
    {Within::in_extended_v3, 3, "tag", read_word},
    {Within::in_extended_v3, 4, "Prefix-SID", read_prefix_sid_v3},
    {Within::in_extended_v3, 5, "Adj-SID", read_adjacency_sid_v3<false>},
    {Within::in_extended_v3, 6, "LAN-Adj-SID", read_adjacency_sid_v3<true>},
    {Within::in_extended_v3, 7, "SID/label", read_sid},
};

std::vector<TlvWords> words_of(Octets octets, Within within);

TlvWords words_of(std::uint16_t type, Octets octets, Within within) {
  TlvWords words;
  words.type = type;
  words.length = static_cast<std::uint16_t>(octets.size());
  const auto kind = std::find_if(
      std::begin(known_tlvs), std::end(known_tlvs),
      [&](const KnownTlv &each) { return each.within == within && each.type == type; });
  if (kind != std::end(known_tlvs)) {
    TlvValue value(octets);
    kind->read(value, words.says);
    if (value.sound()) {
      words.name = kind->name;
      words.unit = kind->unit;
      if (kind->below != Within::nothing) words.sub_tlvs = words_of(value.rest(), kind->below);
      octets = value.rest();
    } else {
      words.says.clear();
    }
  }
  words.octets.assign(octets.begin(), octets.end());
  return words;
}

// What is left when a TLV runs past the end is one without a type.
std::vector<TlvWords> words_of(Octets octets, Within within) {
  std::vector<TlvWords> all;
  while (octets.size() >= tlv_header_length) {
    TlvValue header(octets.first(tlv_header_length));
    const auto type = static_cast<std::uint16_t>(header.number(2));
    const std::size_t length = header.number(2);
    octets = octets.subspan(tlv_header_length);
    const bool is_whole = length <= octets.size();
    all.push_back(words_of(type, octets.first(std::min(length, octets.size())), within));
    if (!is_whole) all.back().length = static_cast<std::uint16_t>(length);
    octets = octets.subspan(std::min(padded(length), octets.size()));
  }
  return all;
}

Within within_of(const LsaView &lsa) {
  if (const auto *opaque = std::get_if<OpaqueViewV2>(&lsa.body)) {
    switch (opaque->opaque_type) {
      case opaque_traffic_engineering:
      case opaque_inter_as_te:
        return Within::te;
      case opaque_grace:
        return Within::grace;
      case opaque_router_information:
        return Within::information;
      case opaque_extended_prefix:
        return Within::prefix;
      case opaque_extended_link:
        return Within::link;
      default:
        return Within::nothing;
    }
  }
  if (lsa.version != 3) return Within::nothing;
  if (lsa.type == lsa3_grace) return Within::grace;
  const unsigned function = lsa.type & lsa3_function_mask;
  if (is_extended_v3(lsa.type)) return Within::extended_v3;
  return function == lsa3_function_router_information ? Within::information
         : function == lsa3_function_te               ? Within::te
                                                      : Within::nothing;
}

// Of an LSA whose producer gave fields and no octets.
std::vector<TlvWords> words_of_rows(const std::vector<TlvView> &tlvs, Within within) {
  std::vector<TlvWords> all;
  for (const TlvView &tlv : tlvs) all.push_back(words_of(tlv.type, Octets(tlv.value), within));
  return all;
}

std::string text_of(const Json &value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_number_float()) {
    char text[40];
    std::snprintf(text, sizeof text, "%.10g", value.get<double>());
    return text;
  }
  if (!value.is_array()) return value.dump();
  std::string list;
  for (const Json &each : value) list += (list.empty() ? "" : ", ") + text_of(each);
  return list.empty() ? "none" : list;
}

}  // namespace

TlvSays head_words(const LsaView &lsa) {
  const Octets octets(lsa.raw_data);
  const std::size_t length = head_length_v3(lsa);
  TlvSays says;
  if (length == 0 || octets.size() < lsa_header_length + length) return says;
  TlvValue head(octets.subspan(lsa_header_length, length));
  read_head_v3(lsa.type, head, says);
  return says;
}

std::vector<TlvWords> tlv_words(const LsaView &lsa) {
  const Octets octets(lsa.raw_data);
  const auto *opaque = std::get_if<OpaqueViewV2>(&lsa.body);
  const Within within = within_of(lsa);
  if (octets.size() >= lsa_header_length) {
    if (opaque == nullptr && within == Within::nothing) return {};
    const std::size_t before = lsa_header_length + head_length_v3(lsa);
    return words_of(octets.subspan(std::min(before, octets.size())), within);
  }
  if (opaque != nullptr) return words_of_rows(opaque->tlvs, within);
  const auto *other = std::get_if<OtherView>(&lsa.body);
  return other == nullptr ? std::vector<TlvWords>() : words_of_rows(other->tlvs, within);
}

std::string text_of(const TlvSays &says) {
  std::string text;
  for (const auto &[name, value] : says) {
    text += (text.empty() ? "" : ", ") + std::string(name) + (*name == '\0' ? "" : " ") +
            text_of(value);
  }
  return text;
}

std::string text_of(const TlvWords &tlv) {
  const std::string octets = tlv.octets.empty() ? ""
                                                : counted(tlv.octets.size(), "octet", "octets") +
                                                      ": " + hex_text(tlv.octets);
  if (tlv.name.empty()) {
    return "TLV " + std::to_string(tlv.type) + (octets.empty() ? "" : ", ") + octets;
  }
  std::string text = text_of(tlv.says);
  if (*tlv.unit != '\0') text += " " + std::string(tlv.unit);
  if (!octets.empty()) text += (text.empty() ? "" : ", ") + octets;
  return tlv.name + (text.empty() ? "" : ": ") + text;
}

Json json_of(const TlvSays &says) {
  Json object = Json::object();
  for (const auto &[name, value] : says) object[*name == '\0' ? "value" : name] = value;
  return object;
}

Json json_of(const std::vector<TlvWords> &tlvs) {
  Json list = Json::array();
  for (const TlvWords &tlv : tlvs) {
    list.push_back({{"type", tlv.type},
                    {"name", tlv.name.empty() ? Json(nullptr) : Json(tlv.name)},
                    {"length", tlv.length},
                    {"unit", *tlv.unit == '\0' ? Json(nullptr) : Json(tlv.unit)},
                    {"says", json_of(tlv.says)},
                    {"octets", tlv.octets.empty() ? Json(nullptr) : Json(hex_text(tlv.octets))},
                    {"sub_tlvs", json_of(tlv.sub_tlvs)}});
  }
  return list;
}

}  // namespace tool
