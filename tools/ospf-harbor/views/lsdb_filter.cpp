#include "views/lsdb_filter.hpp"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <optional>

#include "ospf_tables/row_keys.hpp"
#include "usage_error.hpp"
#include "views/lsa_names.hpp"

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

struct TypeWanted {
  std::string name;
  std::optional<std::uint32_t> number;

  bool meets(const LsaView &lsa) const {
    return number ? lsa.type == *number : same_name(type_name(lsa.version, lsa.type), name);
  }
};

TypeWanted parse_type(const std::string &text) {
  TypeWanted wanted{text, parse_number(text)};
  if (wanted.number && *wanted.number <= 0xffff) return wanted;
  const std::string names = list_of_type_names();
  std::size_t at = 0;
  while (!wanted.number && at < names.size()) {
    const std::size_t end = std::min(names.find(", ", at), names.size());
    if (same_name(names.substr(at, end - at), text)) return wanted;
    at = end + 2;
  }
  throw UsageError("--type", "", "\"" + text + "\"",
                   "one of " + names + ", or an LS type of 16 bits such as 0x2001");
}

}  // namespace

std::uint32_t parse_area(const std::string &text) {
  if (const auto area = parse_dotted(text)) return *area;
  if (const auto area = parse_number(text)) return *area;
  throw UsageError("--area", "", "\"" + text + "\"", "an area such as 0.0.0.1 or 1");
}

void add_filter_options(CLI::App &command, LsdbFilter &filter) {
  command.add_option("--area", filter.area, "Only this area, such as 0.0.0.1 or 1");
  command.add_option("--type", filter.type,
                     "Only LSAs of this type, by number or as one of " + list_of_type_names());
  command.add_option("--adv-router", filter.adv_router, "Only LSAs of this advertising router");
  command.add_option("--family", filter.family, "Only instances of ipv4 or of ipv6");
  CLI::Option *v2 = command.add_flag("--v2", filter.v2, "Only OSPFv2");
  command.add_flag("--v3", filter.v3, "Only OSPFv3")->excludes(v2);
}

std::vector<LsdbEntry> filtered(std::vector<LsdbEntry> entries, const LsdbFilter &filter) {
  std::optional<std::uint32_t> area;
  if (!filter.area.empty()) area = parse_area(filter.area);
  std::optional<TypeWanted> type;
  if (!filter.type.empty()) type = parse_type(filter.type);
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
    if (area && entry.area != area) return true;
    if (type && !type->meets(entry.lsa)) return true;
    return router && entry.lsa.adv_router != *router;
  });
  return entries;
}

}  // namespace tool
