// FRR's OSPFv3 databases: the hex dump ("show ipv6 ospf6 database dump"), which has every octet,
// and the JSON ("... database detail json", "... database json"), which has the fields of the types
// that the daemon knows.
#include <algorithm>
#include <optional>
#include <sstream>

#include "frr_words.hpp"
#include "ospf_decode/checksum.hpp"
#include "ospf_decode/lsa_v2.hpp"
#include "ospf_decode/lsa_v3.hpp"
#include "ospf_tables/input_error.hpp"
#include "ospf_tables/row_keys.hpp"
#include "router_answers/answer_file.hpp"
#include "router_answers/database.hpp"

namespace router_answers {

namespace {

using namespace ospf_decode;
using ospf_tables::InputError;

constexpr const char *forms[] = {"ipv6-ospf6-database-detail.json", "ipv6-ospf6-database.json"};
constexpr char dump_name[] = "ipv6-ospf6-database-dump.txt";

std::uint32_t id_in(const JsonView &lsa, const char *key) {
  return dotted_of(lsa.member(key, "a dotted quad"), "a dotted quad");
}

std::uint32_t number_in(const JsonView &lsa, const char *key, std::uint32_t highest) {
  return static_cast<std::uint32_t>(lsa.member(key, "a number").number(highest, "a number"));
}

std::uint32_t options_in(const JsonView &lsa) {
  return flags_of(lsa.member("options", "options"), 11, "eleven options between bars");
}

struct TypeName {
  const char *name;
  std::uint16_t type;
};

// In the detailed form, and as the list shortens them.
constexpr TypeName type_names[] = {
    {"Router", lsa3_router},
    {"Rtr", lsa3_router},
    {"Network", lsa3_network},
    {"Net", lsa3_network},
    {"Inter-Prefix", lsa3_inter_area_prefix},
    {"IAP", lsa3_inter_area_prefix},
    {"Inter-Router", lsa3_inter_area_router},
    {"IAR", lsa3_inter_area_router},
    {"AS-External", lsa3_as_external},
    {"As-External", lsa3_as_external},
    {"ASE", lsa3_as_external},
    {"NSSA", lsa3_nssa},
    {"Type-7", lsa3_nssa},
    {"Type7", lsa3_nssa},
    {"Link", lsa3_link},
    {"Lnk", lsa3_link},
    {"Intra-Prefix", lsa3_intra_area_prefix},
    {"INP", lsa3_intra_area_prefix},
};

// None for a type that the daemon has no name for either: only its dump has such LSAs.
std::optional<std::uint16_t> type_of(const JsonView &lsa) {
  const std::string text = lsa.member("type", "a type of LSA").text("a type of LSA");
  for (const TypeName &each : type_names) {
    if (text == each.name) return each.type;
  }
  return std::nullopt;
}

PrefixV3 prefix_in(const JsonView &of, const char *options_key) {
  PrefixV3 prefix = prefix_of(of.member("prefix", "a prefix"), "a prefix");
  prefix.options = static_cast<std::uint8_t>(
      flags_of(of.member(options_key, "prefix options"), 5, "five prefix options between bars"));
  return prefix;
}

LsaBody router_body(const JsonView &lsa) {
  static constexpr TypeName link_types[] = {{"Point-To-Point", router_link_point_to_point},
                                            {"Transit-Network", router_link_transit},
                                            {"Stub-Network", router_link_stub},
                                            {"Virtual-Link", router_link_virtual}};
  LsaBody body;
  body.u8(letters_of(lsa.member("bits", "flags"), 8, "eight flags")).u24(options_in(lsa));
  if (!lsa.has("lsaDescription")) return body;
  for (const JsonView &link : lsa.member("lsaDescription", "").elements("the links")) {
    const JsonView type = link.member("type", "a type of link");
    const std::string text = type.text("a type of link");
    const auto *known = std::find_if(std::begin(link_types), std::end(link_types),
                                     [&](const TypeName &each) { return text == each.name; });
    if (known == std::end(link_types)) {
      type.fail("a type of link (Point-To-Point, Transit-Network, Stub-Network, Virtual-Link)");
    }
    body.u8(known->type).u8(0).u16(number_in(link, "metric", UINT16_MAX));
    body.u32(id_in(link, "interfaceId")).u32(id_in(link, "neighborInterfaceId"));
    body.u32(id_in(link, "neighborRouterId"));
  }
  return body;
}

LsaBody network_body(const JsonView &lsa) {
  LsaBody body;
  body.u8(0).u24(options_in(lsa));
  if (!lsa.has("attachedRouter")) return body;
  for (const JsonView &router : lsa.member("attachedRouter", "").elements("the routers")) {
    body.u32(dotted_of(router, "a router ID"));
  }
  return body;
}

LsaBody inter_area_prefix_body(const JsonView &lsa) {
  LsaBody body;
  body.u32(number_in(lsa, "metric", 0xffffff)).prefix(prefix_in(lsa, "prefixOptions"));
  return body;
}

LsaBody inter_area_router_body(const JsonView &lsa) {
  LsaBody body;
  body.u8(0).u24(options_in(lsa)).u32(number_in(lsa, "metric", 0xffffff));
  body.u32(id_in(lsa, "destinationRouterId"));
  return body;
}

LsaBody external_body(const JsonView &lsa) {
  const std::uint32_t flags = letters_of(lsa.member("bits", "flags"), 3, "three flags");
  const std::uint32_t referenced = number_in(lsa, "referenceLsType", UINT16_MAX);
  LsaBody body;
  body.u8(flags).u24(number_in(lsa, "metric", 0xffffff));
  body.prefix(prefix_in(lsa, "prefixOptions"), static_cast<std::uint16_t>(referenced));
  if ((flags & external3_f) != 0) {
    body.bytes(address_v6_of(lsa.member("forwardingAddress", "an address"), "an IPv6 address"));
  }
  if ((flags & external3_t) != 0) body.u32(number_in(lsa, "tag", UINT32_MAX));
  if (referenced != 0) body.u32(lsa.has("referenceLsId") ? id_in(lsa, "referenceLsId") : 0);
  return body;
}

LsaBody link_body(const JsonView &lsa) {
  LsaBody body;
  body.u8(number_in(lsa, "priority", UINT8_MAX)).u24(options_in(lsa));
  body.bytes(address_v6_of(lsa.member("linkLocalAddress", "an address"), "an IPv6 address"));
  body.u32(number_in(lsa, "numberOfPrefix", UINT32_MAX));
  if (!lsa.has("prefix")) return body;
  for (const JsonView &prefix : lsa.member("prefix", "").elements("the prefixes")) {
    body.prefix(prefix_in(prefix, "prefixOption"));
  }
  return body;
}

LsaBody intra_area_prefix_body(const JsonView &lsa) {
  const JsonView reference = lsa.member("reference", "a type of LSA");
  const std::string text = reference.text("a type of LSA");
  if (text != "Router" && text != "Network") reference.fail("Router or Network");
  LsaBody body;
  body.u16(number_in(lsa, "numberOfPrefix", UINT16_MAX));
  body.u16(text == "Router" ? lsa3_router : lsa3_network).u32(id_in(lsa, "referenceId"));
  body.u32(id_in(lsa, "referenceAdv"));
  if (!lsa.has("prefix")) return body;
  for (const JsonView &prefix : lsa.member("prefix", "").elements("the prefixes")) {
    body.prefix(prefix_in(prefix, "prefixOption"),
                static_cast<std::uint16_t>(number_in(prefix, "metric", UINT16_MAX)));
  }
  return body;
}

LsaBody body_of(const JsonView &lsa, std::uint16_t type) {
  switch (type) {
    case lsa3_router:
      return router_body(lsa);
    case lsa3_network:
      return network_body(lsa);
    case lsa3_inter_area_prefix:
      return inter_area_prefix_body(lsa);
    case lsa3_inter_area_router:
      return inter_area_router_body(lsa);
    case lsa3_as_external:
    case lsa3_nssa:
      return external_body(lsa);
    case lsa3_link:
      return link_body(lsa);
    default:
      return intra_area_prefix_body(lsa);
  }
}

HeldLsa read_lsa(const JsonView &lsa, std::uint16_t type) {
  LsaHeader header;
  header.type = type;
  header.age = static_cast<std::uint16_t>(
      std::min<std::uint32_t>(number_in(lsa, "age", UINT16_MAX), max_age));
  // The list, which has a row for each link and prefix of an LSA, has keys of its own and neither
  // checksums nor lengths.
  if (lsa.has("lsId")) {
    header.link_state_id = id_in(lsa, "lsId");
    header.advertising_router = id_in(lsa, "advRouter");
    header.sequence = number_in(lsa, "seqNum", UINT32_MAX);
    return header_alone(3, header);
  }
  header.link_state_id = id_in(lsa, "linkStateId");
  header.advertising_router = id_in(lsa, "advertisingRouter");
  header.sequence = number_in(lsa, "lsSequenceNumber", UINT32_MAX);
  header.checksum = static_cast<std::uint16_t>(number_in(lsa, "checksum", UINT16_MAX));
  header.length = static_cast<std::uint16_t>(number_in(lsa, "length", UINT16_MAX));
  return put_together(3, header, body_of(lsa, header.type));
}

void read_scope(const JsonView &answer, const char *key, Scope scope, Database &database) {
  if (!answer.has(key)) return;
  for (const JsonView &part : answer.member(key, "").elements("the databases")) {
    Place place{scope, 0, ""};
    if (scope != Scope::as) {
      const JsonView area = part.member("areaId", "an area ID");
      place.area = area_of(area, area.text("an area ID"));
    }
    if (scope == Scope::link) {
      place.interface = part.member("interface", "an interface").text("an interface");
    }
    for (const JsonView &lsa : part.member("lsa", "LSAs").elements("a list of LSAs")) {
      if (const auto type = type_of(lsa)) database.add(place, read_lsa(lsa, *type));
    }
  }
}

// The dump: a heading for each database, "[TYPE Id:ID Adv:ROUTER]:" for each LSA, and its octets in
// words of eight hexadecimal digits.
class Dump {
 public:
  Dump(std::string file, Database &database) : file_(std::move(file)), database_(database) {}

  void read(const std::string &text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
      ++number_;
      const std::size_t start = line.find_first_not_of(" \t\r");
      if (start == std::string::npos) continue;
      line.erase(0, start);
      line.erase(line.find_last_not_of(" \t\r") + 1);
      if (line.ends_with("Database") || line.find(" Database (") != std::string::npos) {
        finish();
        heading(line);
      } else if (line[0] == '[') {
        finish();
      } else {
        words(line);
      }
    }
    finish();
  }

 private:
  [[noreturn]] void fail(const std::string &found, const char *expected) const {
    throw InputError(file_, "line " + std::to_string(number_), found, expected);
  }

  // "Area Scoped Link State Database (Area 0)", "I/F Scoped ... (I/F core in Area 0)", "AS Scoped
  // ...".
  void heading(const std::string &line) {
    const auto behind = [&](const char *word) {
      const std::size_t at = line.find(word);
      if (at == std::string::npos) return std::string();
      const std::size_t begin = at + std::char_traits<char>::length(word);
      return line.substr(begin, line.find_first_of(" )", begin) - begin);
    };
    place_ = {};
    has_place_ = true;
    if (line.starts_with("AS ")) {
      place_.scope = Scope::as;
      return;
    }
    const std::string area = behind("Area ");
    const std::string id = line.starts_with("Area Scoped") ? behind("(Area ") : area;
    const auto dotted = ospf_tables::parse_dotted(id);
    if (!dotted &&
        (id.empty() || id.size() > 10 || id.find_first_not_of("0123456789") != std::string::npos)) {
      fail("\"" + line + "\"", "the heading of a database with its area");
    }
    place_.area = dotted ? *dotted : static_cast<std::uint32_t>(std::stoull(id));
    if (line.starts_with("I/F ")) {
      place_.scope = Scope::link;
      place_.interface = behind("(I/F ");
    }
  }

  void words(const std::string &line) {
    std::istringstream words(line);
    for (std::string word; words >> word;) {
      if (word.size() > 8 || word.size() % 2 != 0 ||
          word.find_first_not_of("0123456789abcdef") != std::string::npos) {
        fail("\"" + word + "\"", "hexadecimal digits of an LSA");
      }
      for (std::size_t at = 0; at < word.size(); at += 2) {
        raw_.push_back(static_cast<std::uint8_t>(std::stoul(word.substr(at, 2), nullptr, 16)));
      }
    }
  }

  void finish() {
    if (raw_.empty()) return;
    if (!has_place_) fail("an LSA", "the heading of its database before it");
    if (raw_.size() < lsa_header_length) {
      fail(std::to_string(raw_.size()) + " octets", "an LSA of at least 20");
    }
    Cursor cursor(raw_);
    HeldLsa lsa;
    lsa.header = read_lsa_header_v3(cursor);
    if (lsa.header.length != raw_.size()) {
      fail(std::to_string(raw_.size()) + " octets", "as many as the LSA's header says");
    }
    lsa.exact = lsa_checksum_ok(raw_);
    lsa.raw = std::move(raw_);
    raw_.clear();
    database_.add(place_, std::move(lsa));
  }

  std::string file_;
  Database &database_;
  Place place_;
  bool has_place_ = false;
  std::vector<std::uint8_t> raw_;
  std::size_t number_ = 0;
};

}  // namespace

bool has_frr_v3(const std::string &folder) {
  return find_answer(folder, dump_name).has_value() ||
         std::any_of(std::begin(forms), std::end(forms),
                     [&](const char *form) { return find_answer(folder, form).has_value(); });
}

void read_frr_v3(const std::string &folder, Database &database) {
  if (const auto path = find_answer(folder, dump_name))
    Dump(*path, database).read(read_answer(*path));
  for (const char *form : forms) {
    const auto path = find_answer(folder, form);
    if (!path) continue;
    PassedOver passed_over;
    const JsonView answer = read_json(*path, passed_over);
    read_scope(answer, "areaScopedLinkStateDb", Scope::area, database);
    read_scope(answer, "interfaceScopedLinkStateDb", Scope::link, database);
    read_scope(answer, "asScopedLinkStateDb", Scope::as, database);
  }
}

}  // namespace router_answers
