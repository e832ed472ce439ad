#include "views/lsdb_filter.hpp"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <optional>

#include "ospf_tables/observed.hpp"
#include "ospf_tables/row_keys.hpp"
#include "usage_error.hpp"
#include "views/lsa_names.hpp"
#include "views/prefix_choice.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

std::optional<std::uint32_t> parse_number(const std::string &text) {
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  const char *begin = text.data() + (hexadecimal ? 2 : 0);
  const char *end = text.data() + text.size();
  std::uint32_t number = 0;
  const auto [rest, error] = std::from_chars(begin, end, number, hexadecimal ? 16 : 10);
  if (begin == end || error != std::errc() || rest != end) return std::nullopt;
  return number;
}

bool same_name(const std::string &a, const std::string &b) {
  return strcasecmp(a.c_str(), b.c_str()) == 0;
}

// Names that people type for LSAs of either version.
struct TypeAlias {
  const char *name;
  bool (*meets)(const LsaView &lsa);
};

bool is_one_of(const LsaView &lsa, LsaTypeV2 v2, LsaTypeV3 v3) {
  return lsa.version == 2 ? lsa.type == v2 : lsa.type == v3;
}

const OpaqueViewV2 *opaque_of(const LsaView &lsa) { return std::get_if<OpaqueViewV2>(&lsa.body); }

constexpr TypeAlias type_aliases[] = {
    {"external",
     [](const LsaView &lsa) { return is_one_of(lsa, lsa2_as_external, lsa3_as_external); }},
    {"nssa", [](const LsaView &lsa) { return is_one_of(lsa, lsa2_nssa, lsa3_nssa); }},
    {"summary",
     [](const LsaView &lsa) { return is_one_of(lsa, lsa2_summary, lsa3_inter_area_prefix); }},
    {"asbr",
     [](const LsaView &lsa) { return is_one_of(lsa, lsa2_asbr_summary, lsa3_inter_area_router); }},
    {"opaque", [](const LsaView &lsa) { return opaque_of(lsa) != nullptr; }},
    {"te",
     [](const LsaView &lsa) {
       if (lsa.version == 3) return (lsa.type & lsa3_function_mask) == lsa3_function_te;
       const OpaqueViewV2 *opaque = opaque_of(lsa);
       return opaque != nullptr && opaque->opaque_type == opaque_traffic_engineering;
     }},
};

std::string list_of_aliases() {
  std::string list;
  for (const TypeAlias &alias : type_aliases)
    list.append(list.empty() ? "" : ", ").append(alias.name);
  return list;
}

struct TypeWanted {
  std::string name;
  std::optional<std::uint32_t> number;
  const TypeAlias *alias = nullptr;

  bool meets(const LsaView &lsa) const {
    if (alias != nullptr) return alias->meets(lsa);
    return number ? lsa.type == *number : same_name(type_name(lsa.version, lsa.type), name);
  }
};

TypeWanted parse_type(const std::string &text) {
  TypeWanted wanted{text, parse_number(text)};
  for (const TypeAlias &alias : type_aliases) {
    if (same_name(alias.name, text)) wanted.alias = &alias;
  }
  if (wanted.alias != nullptr) return wanted;
  if (wanted.number && *wanted.number <= 0xffff) return wanted;
  const std::string names = list_of_type_names();
  std::size_t at = 0;
  while (!wanted.number && at < names.size()) {
    const std::size_t end = std::min(names.find(", ", at), names.size());
    if (same_name(names.substr(at, end - at), text)) return wanted;
    at = end + 2;
  }
  throw UsageError(
      "--type", "", "\"" + text + "\"",
      "one of " + list_of_aliases() + ", " + names + ", or an LS type of 16 bits such as 0x2001");
}

// The prefixes that an LSA tells of, as texts.
struct PrefixesOf {
  const LsaView &lsa;

  using Texts = std::vector<std::string>;

  Texts own(const std::string &mask) const { return {prefix_text(lsa.link_state_id, mask)}; }
  static Texts all(const std::vector<PrefixView> &prefixes) {
    Texts texts;
    for (const PrefixView &each : prefixes) texts.push_back(each.prefix);
    return texts;
  }

  Texts operator()(const RouterViewV2 &body) const {
    Texts texts;
    for (const RouterLinkViewV2 &link : body.links) {
      if (link.type != router_link_stub) continue;
      texts.push_back(prefix_text(link.link_id, dotted(link.link_data)));
    }
    return texts;
  }
  Texts operator()(const NetworkViewV2 &body) const { return own(body.mask); }
  Texts operator()(const SummaryViewV2 &body) const {
    return lsa.type == lsa2_summary ? own(body.mask) : Texts();
  }
  Texts operator()(const ExternalViewV2 &body) const { return own(body.mask); }
  Texts operator()(const InterAreaPrefixView &body) const { return {body.prefix.prefix}; }
  Texts operator()(const ExternalViewV3 &body) const { return {body.prefix.prefix}; }
  Texts operator()(const LinkViewV3 &body) const { return all(body.prefixes); }
  Texts operator()(const IntraAreaPrefixView &body) const { return all(body.prefixes); }
  template <typename Body>
  Texts operator()(const Body &) const {
    return {};
  }
};

bool has_prefix(const LsaView &lsa, const PrefixChoice &wanted) {
  if (wanted.match == PrefixChoice::Match::all) return true;
  return std::ranges::any_of(std::visit(PrefixesOf{lsa}, lsa.body), [&](const std::string &text) {
    const auto family =
        text.find(':') == text.npos ? ospf_routes::Family::ipv4 : ospf_routes::Family::ipv6;
    const auto prefix = ospf_routes::parse_prefix(text, family);
    return prefix && wanted.meets(*prefix, family);
  });
}

}  // namespace

std::uint32_t parse_area(const std::string &text) {
  if (const auto area = parse_dotted(text)) return *area;
  if (const auto area = parse_number(text)) return *area;
  throw UsageError("--area", "", "\"" + text + "\"", "an area such as 0.0.0.1 or 1");
}

void add_filter_options(CLI::App &command, LsdbFilter &filter) {
  command.add_option("--area", filter.area, "Only this area, such as 0.0.0.1 or 1");
  command
      .add_option("--type", filter.types,
                  "Only LSAs of this type, of both versions as " + list_of_aliases() +
                      ", by number, or as one of " + list_of_type_names() +
                      "; several times for any of several")
      ->take_all()
      ->allow_extra_args(false);
  command.add_option("--ls-id", filter.ls_id, "Only LSAs of this link-state ID");
  command.add_option("--prefix", filter.prefix, prefix_help);
  command.add_option("--newer-than", filter.newer_than, "Only LSAs younger than so many seconds");
  command.add_option("--adv-router", filter.adv_router, "Only LSAs of this advertising router");
  command.add_option("--instance", filter.instance, "Only this instance ID, such as 64");
  command.add_option("--family", filter.family, "Only instances of ipv4 or of ipv6");
  CLI::Option *v2 = command.add_flag("--v2", filter.v2, "Only OSPFv2");
  command.add_flag("--v3", filter.v3, "Only OSPFv3")->excludes(v2);
}

std::vector<LsdbEntry> filtered(std::vector<LsdbEntry> entries, const LsdbFilter &filter) {
  std::optional<std::uint32_t> area;
  if (!filter.area.empty()) area = parse_area(filter.area);
  std::vector<TypeWanted> types;
  for (const std::string &type : filter.types) types.push_back(parse_type(type));
  const PrefixChoice prefix = PrefixChoice::parse(filter.prefix);
  const auto number = [](const char *option, const std::string &text, std::uint32_t highest,
                         const char *expected) -> std::optional<std::uint32_t> {
    if (text.empty()) return std::nullopt;
    const auto value = parse_number(text);
    if (!value || *value > highest) throw UsageError(option, "", "\"" + text + "\"", expected);
    return value;
  };
  const auto instance = number("--instance", filter.instance, 255, "a number from 0 to 255");
  const auto age = number("--newer-than", filter.newer_than, 3600, "seconds, at most 3600");
  std::optional<std::uint32_t> id = parse_dotted(filter.ls_id);
  if (!id) id = number("--ls-id", filter.ls_id, 0xffffffff, "a dotted quad or a number");
  std::optional<std::uint32_t> router;
  if (!filter.adv_router.empty()) {
    router = parse_dotted(filter.adv_router);
    if (!router) {
      throw UsageError("--adv-router", "", "\"" + filter.adv_router + "\"",
                       "a router ID such as 10.0.0.1");
    }
  }
  if (!filter.family.empty() && filter.family != "ipv4" && filter.family != "ipv6") {
    throw UsageError("--family", "", "\"" + filter.family + "\"", "ipv4 or ipv6");
  }
  std::erase_if(entries, [&](const LsdbEntry &entry) {
    if (filter.v2 != filter.v3 && entry.lsa.version != (filter.v2 ? 2 : 3)) return true;
    if (!filter.family.empty() && !entry.instance.starts_with(filter.family + ",")) return true;
    if (instance &&
        instance_name(entry.router_id, entry.lsa.version == 2).instance_id != *instance) {
      return true;
    }
    if (area && entry.area != area) return true;
    if (id && entry.lsa.link_state_id != *id) return true;
    if (age && (entry.lsa.age & 0x7fff) >= *age) return true;
    const bool is_meant = types.empty() || std::ranges::any_of(types, [&](const TypeWanted &type) {
                            return type.meets(entry.lsa);
                          });
    if (!is_meant || !has_prefix(entry.lsa, prefix)) return true;
    return router && entry.lsa.adv_router != *router;
  });
  return entries;
}

}  // namespace tool
