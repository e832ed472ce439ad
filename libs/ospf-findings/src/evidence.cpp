#include "evidence.hpp"

#include <iterator>

#include "ospf_tables/row_keys.hpp"

namespace ospf_findings {

using namespace ospf_routes;

std::string lsa_name(std::uint32_t version, std::uint16_t type, std::uint32_t id,
                     std::uint32_t adv_router, std::optional<std::uint32_t> area) {
  std::string name =
      lsa_vocabulary::type_name(version, type) + " " + dotted(id) + " of " + dotted(adv_router);
  if (area) name += " in area " + dotted(*area);
  return name;
}

std::string lsa_name(const ospf_tables::LsdbEntry &entry) {
  return lsa_name(entry.lsa.version, entry.lsa.type, entry.lsa.link_state_id, entry.lsa.adv_router,
                  entry.area);
}

std::uint8_t instance_id_of(const ospf_tables::LsdbEntry &entry) {
  const bool tells = entry.router_id >> 16 == 0x00ff;
  return static_cast<std::uint8_t>(tells ? entry.router_id & 0xff : 0);
}

Evidence::Evidence(const Database &database, const std::vector<ospf_tables::LsdbEntry> &lsas)
    : database_(database) {
  for (const ospf_tables::LsdbEntry &entry : lsas) {
    if (entry.lsa.version == database.version && instance_id_of(entry) == database.instance) {
      by_router_.emplace(entry.lsa.adv_router, &entry);
    }
  }
}

template <typename Meets>
std::vector<std::string> Evidence::those(std::optional<AreaId> area, RouterId router,
                                         std::uint16_t type_v2, std::uint16_t type_v3,
                                         const Meets &meets) const {
  std::vector<std::string> names;
  const std::uint16_t type = database_.version == 2 ? type_v2 : type_v3;
  const auto [first, end] = by_router_.equal_range(router);
  for (auto at = first; at != end; ++at) {
    const ospf_tables::LsdbEntry &entry = *at->second;
    if (entry.lsa.type != type || entry.area != area || !meets(entry.lsa)) continue;
    std::string name = lsa_name(entry);
    if (std::find(names.begin(), names.end(), name) == names.end()) {
      names.push_back(std::move(name));
    }
  }
  return names;
}

std::vector<std::string> Evidence::of(std::optional<AreaId> area, RouterId router,
                                      std::uint16_t type_v2, std::uint16_t type_v3,
                                      std::optional<std::uint32_t> id) const {
  return those(area, router, type_v2, type_v3,
               [&](const ospf_tables::LsaView &lsa) { return !id || lsa.link_state_id == *id; });
}

namespace {

std::optional<Prefix> prefix_of(const ospf_tables::LsaView &lsa, Family family) {
  const auto by_mask = [&](const std::string &mask) -> std::optional<Prefix> {
    const auto number = parse_dotted(mask);
    const auto length = number ? length_of_mask(*number) : std::nullopt;
    if (!length) return std::nullopt;
    return make_prefix(ipv4_address(lsa.link_state_id), *length);
  };
  if (const auto *v2 = std::get_if<ospf_tables::SummaryViewV2>(&lsa.body)) {
    return by_mask(v2->mask);
  }
  if (const auto *v2 = std::get_if<ospf_tables::ExternalViewV2>(&lsa.body)) {
    return by_mask(v2->mask);
  }
  if (const auto *v3 = std::get_if<ospf_tables::InterAreaPrefixView>(&lsa.body)) {
    return parse_prefix(v3->prefix.prefix, family);
  }
  if (const auto *v3 = std::get_if<ospf_tables::ExternalViewV3>(&lsa.body)) {
    return parse_prefix(v3->prefix.prefix, family);
  }
  return std::nullopt;
}

}  // namespace

std::vector<std::string> Evidence::of_prefix(std::optional<AreaId> area, RouterId router,
                                             std::uint16_t type_v2, std::uint16_t type_v3,
                                             const Prefix &prefix) const {
  return those(area, router, type_v2, type_v3, [&](const ospf_tables::LsaView &lsa) {
    return prefix_of(lsa, database_.family) == prefix;
  });
}

Finding finding(Severity severity, Kind kind, const Database &database,
                std::optional<AreaId> area) {
  Finding found;
  found.severity = severity;
  found.kind = kind;
  found.version = database.version;
  found.instance = database.instance;
  found.area = area;
  return found;
}

void append(std::vector<std::string> &to, std::vector<std::string> from) {
  std::move(from.begin(), from.end(), std::back_inserter(to));
}

}  // namespace ospf_findings
