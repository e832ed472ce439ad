#include "ospf_routes/read_databases.hpp"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <map>
#include <tuple>

#include "ospf_tables/observed.hpp"

namespace ospf_routes {

namespace {

using namespace ospf_tables;

constexpr std::uint16_t age_mask = 0x7fff;  // without the DoNotAge bit
constexpr std::uint16_t max_age = 3600;
constexpr std::uint16_t highest_short_metric = 0xffff;

bool has(const BitNames &names, const char *name) {
  return std::any_of(names.begin(), names.end(),
                     [&](const char *each) { return std::strcmp(each, name) == 0; });
}

std::int32_t sequence_of(const LsaView &lsa) {
  std::uint32_t number = 0;
  const std::string &text = lsa.sequence;
  if (text.size() > 2) std::from_chars(text.data() + 2, text.data() + text.size(), number, 16);
  return static_cast<std::int32_t>(number);
}

// What an instance of the protocol is known by. Instances that captures gave tell the instance ID
// in their router ID; those that routers gave are instance 0.
using InstanceKey = std::pair<std::uint32_t, std::uint8_t>;
InstanceKey instance_of(const LsdbEntry &entry) {
  return {entry.lsa.version,
          ospf_tables::instance_name(entry.router_id, entry.lsa.version == 2).instance_id};
}

class DatabaseReader {
 public:
  explicit DatabaseReader(Database &database) : database_(database) {}

  void add(const LsdbEntry &entry) {
    lsa_ = &entry.lsa;
    area_ = entry.area ? &area(*entry.area) : nullptr;
    if (lsa_->scope() == Scope::as) {
      if (const auto *v2 = std::get_if<ExternalViewV2>(&lsa_->body))
        add_to(database_.externals, *v2);
      if (const auto *v3 = std::get_if<ExternalViewV3>(&lsa_->body))
        add_to(database_.externals, *v3);
      return;
    }
    if (area_ == nullptr) return;
    std::visit([&](const auto &body) { add_body(body); }, lsa_->body);
  }

 private:
  Area &area(AreaId id) {
    const auto at = std::find_if(database_.areas.begin(), database_.areas.end(),
                                 [&](const Area &each) { return each.id == id; });
    if (at != database_.areas.end()) return *at;
    database_.areas.push_back({});
    database_.areas.back().id = id;
    return database_.areas.back();
  }

  void lack(const std::string &what) {
    database_.lacks.push_back((area_ == nullptr ? "" : "area " + dotted(area_->id) + ": ") +
                              lsa_vocabulary::type_name(lsa_->version, lsa_->type) + " " +
                              dotted(lsa_->link_state_id) + " of " + dotted(lsa_->adv_router) +
                              ": " + what);
  }

  std::optional<Prefix> prefix(const std::string &text) {
    auto found = parse_prefix(text, database_.family);
    if (!found) lack("\"" + text + "\" is no prefix, so it is left out");
    return found;
  }

  std::optional<Prefix> masked_id(const std::string &mask) {
    const auto number = parse_dotted(mask);
    const auto length = number ? length_of_mask(*number) : std::nullopt;
    if (!length) {
      lack("its mask \"" + mask + "\" is none, so it is left out");
      return std::nullopt;
    }
    return make_prefix(ipv4_address(lsa_->link_state_id), *length);
  }

  static std::uint8_t options_of(const PrefixView &prefix) {
    std::uint32_t number = 0;
    const std::string &text = prefix.options;
    if (text.starts_with("0x")) {
      std::from_chars(text.data() + 2, text.data() + text.size(), number, 16);
    }
    return static_cast<std::uint8_t>(number);
  }

  // Where IPv4 is routed an address may stand as one of either family.
  std::optional<Address> address(const std::string &text) const {
    if (const auto found = parse_address(text, database_.family)) return found;
    return parse_address(text, Family::ipv6);
  }

  std::optional<Address> forwarding(const std::string &text) const {
    const auto found = address(text);
    return found && !found->is_zero() ? found : std::nullopt;
  }

  void add_body(const OtherView &) {}
  void add_body(const OpaqueViewV2 &) {}

  void add_body(const RouterViewV2 &body) {
    RouterLsa lsa{.router = lsa_->adv_router,
                  .link_state_id = lsa_->link_state_id,
                  .border = has(body.flags, "B"),
                  .boundary = has(body.flags, "E"),
                  .virtual_end = has(body.flags, "V"),
                  .takes_externals = has(lsa_->options, "E"),
                  .links = {}};
    if (!lsa_->decoded_completed && body.links.size() < body.num_of_links) {
      lack("not all of its links are known");
    }
    for (const RouterLinkViewV2 &link : body.links) {
      add_link(lsa, link.type, link.link_id, link.link_data, link.metric());
    }
    area_->routers.push_back(std::move(lsa));
  }

  void add_link(RouterLsa &lsa, std::uint8_t type, std::uint32_t id, std::uint32_t data,
                std::uint32_t metric) {
    switch (type) {
      case router_link_stub:
        if (const auto length = length_of_mask(data)) {
          lsa.links.push_back({.type = LinkType::stub,
                               .metric = metric,
                               .stub = make_prefix(ipv4_address(id), *length)});
        } else {
          lack("the mask " + dotted(data) + " of its stub " + dotted(id) + " has holes");
        }
        return;
      case router_link_transit:
        lsa.links.push_back({.type = LinkType::transit,
                             .neighbor_interface = id,
                             .interface = data,
                             .metric = metric,
                             .stub = {}});
        return;
      case router_link_point_to_point:
      case router_link_virtual:
        lsa.links.push_back({.type = LinkType{type},
                             .neighbor = id,
                             .interface = data,
                             .metric = metric,
                             .stub = {}});
        return;
      default:
        lack("a link of it is of type " + std::to_string(type) + ", which is none");
    }
  }

  void add_body(const RouterViewV3 &body) {
    RouterLsa lsa{.router = lsa_->adv_router,
                  .link_state_id = lsa_->link_state_id,
                  .border = has(body.flags, "B"),
                  .boundary = has(body.flags, "E"),
                  .virtual_end = has(body.flags, "V"),
                  .takes_externals = has(body.options, "E"),
                  .forwards = has(body.options, "R"),
                  .in_family = database_.family == Family::ipv4 || has(body.options, "V6"),
                  .links = {}};
    if (!lsa_->decoded_completed) lack("not all of its links are known");
    for (const RouterLinkViewV3 &link : body.links) {
      if (link.type != router_link_point_to_point && link.type != router_link_transit &&
          link.type != router_link_virtual) {
        lack("a link of it is of type " + std::to_string(link.type) + ", which is none");
        continue;
      }
      lsa.links.push_back({.type = LinkType{link.type},
                           .neighbor = link.neighbor_router_id,
                           .neighbor_interface = link.neighbor_interface_id,
                           .interface = link.interface_id,
                           .metric = link.metric,
                           .stub = {}});
    }
    area_->routers.push_back(std::move(lsa));
  }

  void add_body(const NetworkViewV2 &body) {
    if (const auto network = masked_id(body.mask)) {
      area_->networks.push_back(
          {lsa_->adv_router, lsa_->link_state_id, network->length, body.attached_routers});
    }
  }
  void add_body(const NetworkViewV3 &body) {
    area_->networks.push_back({lsa_->adv_router, lsa_->link_state_id, 0, body.attached_routers});
  }

  // Fields hold 16 of the 24 bits; the octets, where they are there, all.
  std::uint32_t metric_of(const SummaryViewV2 &body) {
    for (const TopologyMetricView &each : body.metrics) {
      if (each.mt_id != 0) continue;
      if (each.metric == highest_short_metric && lsa_->raw_data.empty()) {
        lack("its metric is 65535 or more");
      }
      return each.metric;
    }
    lack("its metric is not known");
    return infinite_metric;
  }

  void add_body(const SummaryViewV2 &body) {
    if (lsa_->type == lsa2_asbr_summary) {
      area_->boundaries.push_back({lsa_->adv_router, lsa_->link_state_id, metric_of(body)});
    } else if (const auto network = masked_id(body.mask)) {
      area_->summaries.push_back({lsa_->adv_router, *network, metric_of(body), 0});
    }
  }
  void add_body(const InterAreaPrefixView &body) {
    if (const auto network = prefix(body.prefix.prefix)) {
      area_->summaries.push_back(
          {lsa_->adv_router, *network, body.metric, options_of(body.prefix)});
    }
  }
  void add_body(const InterAreaRouterView &body) {
    area_->boundaries.push_back({lsa_->adv_router, body.destination_router_id, body.metric});
  }

  void add_body(const ExternalViewV2 &body) { add_to(area_->nssa, body); }
  void add_body(const ExternalViewV3 &body) { add_to(area_->nssa, body); }

  void add_to(std::vector<ExternalLsa> &list, const ExternalViewV2 &body) {
    const auto network = masked_id(body.mask);
    if (!network) return;
    for (const ExternalEntryViewV2 &entry : body.entries) {
      if (entry.mt_id != 0) continue;
      if (!entry.type_2) lack("the type of its metric is not known and taken to be 2");
      list.push_back({lsa_->adv_router, *network, entry.metric, entry.type_2.value_or(true),
                      forwarding(entry.forwarding_address), entry.route_tag, 0,
                      has(lsa_->options, "P")});
    }
  }
  void add_to(std::vector<ExternalLsa> &list, const ExternalViewV3 &body) {
    const auto network = prefix(body.prefix.prefix);
    if (!network) return;
    const std::uint8_t options = options_of(body.prefix);
    list.push_back({lsa_->adv_router, *network, body.metric, body.type_2,
                    forwarding(body.forwarding_address), body.route_tag.value_or(0), options,
                    (options & prefix_propagate) != 0});
  }

  void add_body(const LinkViewV3 &body) {
    const auto own = address(body.link_local_address);
    if (!own) {
      lack("\"" + body.link_local_address + "\" is no address");
      return;
    }
    LinkLsa lsa{lsa_->adv_router, lsa_->link_state_id, *own, {}};
    for (const PrefixView &each : body.prefixes) {
      if (const auto found = prefix(each.prefix)) lsa.prefixes.push_back(*found);
    }
    area_->links.push_back(std::move(lsa));
  }

  void add_body(const IntraAreaPrefixView &body) {
    const auto router = parse_dotted(body.referenced_adv_router);
    if (!router ||
        (body.referenced_ls_type != lsa3_router && body.referenced_ls_type != lsa3_network)) {
      lack("what it refers to is neither a router nor a network");
      return;
    }
    IntraAreaPrefixLsa lsa{lsa_->adv_router,
                           body.referenced_ls_type == lsa3_network,
                           *router,
                           body.referenced_link_state_id,
                           {}};
    bool has_metrics = true;
    for (const PrefixView &each : body.prefixes) {
      has_metrics &= each.metric.has_value();
      if (const auto found = prefix(each.prefix)) {
        lsa.prefixes.push_back({*found, options_of(each), each.metric.value_or(0)});
      }
    }
    if (!has_metrics) lack("the metrics of its prefixes are not known and taken to be 0");
    area_->prefix_lsas.push_back(std::move(lsa));
  }

  Database &database_;
  Area *area_ = nullptr;
  const LsaView *lsa_ = nullptr;
};

}  // namespace

std::vector<Database> read_databases(const std::vector<LsdbEntry> &entries) {
  using LsaKey = std::tuple<InstanceKey, std::optional<std::uint32_t>, std::uint16_t, std::uint32_t,
                            std::uint32_t>;
  std::map<LsaKey, const LsdbEntry *> newest;
  for (const LsdbEntry &entry : entries) {
    const LsaView &lsa = entry.lsa;
    const auto [at, is_first] = newest.try_emplace(
        {instance_of(entry), entry.area, lsa.type, lsa.link_state_id, lsa.adv_router}, &entry);
    if (is_first) continue;
    const LsaView &known = at->second->lsa;
    // Of two of one sequence number that at the end of its life is the newer.
    const auto order = [](const LsaView &each) {
      return std::pair(sequence_of(each), (each.age & age_mask) >= max_age);
    };
    if (order(known) < order(lsa)) {
      at->second = &entry;
    }
  }
  std::vector<Database> databases;
  std::optional<InstanceKey> last;
  for (const auto &[key, entry] : newest) {
    const InstanceKey instance = std::get<0>(key);
    if (last != instance) {
      last = instance;
      databases.push_back({});
      databases.back().version = static_cast<std::uint8_t>(instance.first);
      databases.back().instance = instance.second;
      databases.back().family = entry->instance.starts_with("ipv4,") ? Family::ipv4 : Family::ipv6;
    }
    if ((entry->lsa.age & age_mask) < max_age) DatabaseReader(databases.back()).add(*entry);
  }
  return databases;
}

}  // namespace ospf_routes
