#include "capture_rows/network_rows.hpp"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "capture_rows/database_rows.hpp"
#include "ospf_tables/instance_rows.hpp"
#include "ospf_tables/observed.hpp"

namespace capture_rows {

using namespace ospf_tables;

namespace {

namespace decode = ospf_decode;

bool routes_ipv4(InstanceName name) {
  return name.version == 2 || (name.instance_id >= 64 && name.instance_id < 128);
}

std::uint16_t narrow(std::uint32_t seconds) {
  return static_cast<std::uint16_t>(
      std::min<std::uint32_t>(seconds, std::numeric_limits<std::uint16_t>::max()));
}

Authentication authentication_of(const decode::Interface &from) {
  switch (from.auth_kind) {
    case decode::AuthKind::none:
      return Authentication::none;
    case decode::AuthKind::simple:
      return Authentication::key;
    case decode::AuthKind::cryptographic:
    case decode::AuthKind::trailer:
      break;
  }
  // The algorithm is the one whose digests are that long.
  switch (from.auth_digest_length) {
    case 16:
      return Authentication::message_digest;
    case 20:
      return Authentication::hmac_sha_1;
    case 32:
      return Authentication::hmac_sha_256;
    case 48:
      return Authentication::hmac_sha_384;
    case 64:
      return Authentication::hmac_sha_512;
    default:
      return Authentication::key;
  }
}

// A virtual link is an unnumbered point-to-point link; of an interface that sent no hello the type
// is not known, and the field stays at its first value.
std::uint32_t type_of(decode::NetworkType type) {
  switch (type) {
    case decode::NetworkType::unknown:
    case decode::NetworkType::broadcast:
      return BROADCAST;
    case decode::NetworkType::non_broadcast:
      return NON_BROADCAST;
    case decode::NetworkType::point_to_multipoint:
      return POINT_TO_MULTIPOINT;
    case decode::NetworkType::point_to_point:
    case decode::NetworkType::virtual_link:
      return POINT_TO_POINT;
  }
  return BROADCAST;
}

std::string name_of(const decode::Interface &from) {
  std::string name = decode::ipv4_text(from.router_id) + '@' + decode::ip_text(from.address);
  if (from.version == 3 && from.hello_count != 0) {
    name += '%' + std::to_string(from.hello.interface_id);
  }
  if (from.vlan != 0) name += '.' + std::to_string(from.vlan);
  if (from.is_virtual) name += '>' + decode::ip_text(from.virtual_peer);
  return name;
}

// Milliseconds until the next hello is due.
std::uint32_t hello_timer(const decode::Interface &from, decode::Time now) {
  const decode::Time due = from.last_hello + from.hello.hello_interval * decode::second;
  return due <= now ? 0 : static_cast<std::uint32_t>((due - now) / (decode::second / 1000));
}

Interface interface_of(const decode::Network &network, std::uint32_t index, decode::Time now) {
  const decode::Interface &from = network.interfaces()[index];
  Interface to{};
  to.name = name_of(from);
  to.network_type = type_of(network.network_type(index));
  const std::optional<std::uint16_t> cost = network.interface_cost(index);
  to.cost = cost.value_or(0);
  to.cost_known = cost.has_value();
  to.address = decode::ip_text(from.address);
  if (from.is_virtual) to.told_type = "virtual";
  to.silent = network.interface_state(index) == decode::InterfaceState::down;
  to.authentication = authentication_of(from);
  to.state = decode::interface_state_text(network.interface_state(index));
  if (from.hello_count == 0) return to;
  to.demand_circuit = from.demand_circuit();
  to.lls = from.lls;
  to.hello_interval = from.hello.hello_interval;
  to.dead_interval = narrow(from.hello.dead_interval);
  to.hello_timer = hello_timer(from, now);
  to.dr = decode::ipv4_text(from.hello.designated_router);
  to.bdr = decode::ipv4_text(from.hello.backup_designated_router);
  to.priority = from.hello.priority;
  if (!from.is_virtual && !from.multicasts_hellos()) {
    for (const auto &[target, last] : from.hello_targets) {
      to.static_neighbors.push_back(decode::ip_text(target));
    }
  }
  return to;
}

Neighbor neighbor_of(const decode::Network &network, const decode::Neighbor &from) {
  Neighbor to{};
  to.evidence = decode::evidence_text(from.evidence);
  if (from.peer && network.interfaces()[*from.peer].hello_count != 0) {
    to.priority = network.interfaces()[*from.peer].hello.priority;
  }
  to.router_id = decode::ipv4_text(from.router_id);
  // Of a neighbour that was not heard nothing but its router ID is known, or its address.
  if (!from.address.is_zero()) to.address = decode::ip_text(from.address);
  if (from.peer) {
    to.dr = decode::ipv4_text(from.designated_router);
    to.bdr = decode::ipv4_text(from.backup_designated_router);
  }
  to.state = static_cast<std::uint32_t>(from.state);
  return to;
}

static_assert(static_cast<std::uint32_t>(decode::NeighborState::down) == NBR_STATE_DOWN &&
              static_cast<std::uint32_t>(decode::NeighborState::full) == NBR_STATE_FULL);

// One instance on its way into the tables.
struct Heard {
  std::map<std::uint32_t, Area> areas;
  std::unique_ptr<DatabaseRows> databases;  // none without an LSA
  LoadedInstance counts;
};

class Loader {
 public:
  Loader(Session &session, const decode::Network &network, decode::Time now)
      : session_(session), network_(network), now_(now) {}

  std::vector<LoadedInstance> load() {
    gather();
    fill_databases();
    std::vector<std::unique_ptr<NewInstance>> rows;
    std::vector<LoadedInstance> counts;
    for (auto &[name, heard] : heard_) {
      Instance instance{};
      instance.family = routes_ipv4(name) ? Family::ipv4 : Family::ipv6;
      instance.router_id = observer_id(name);
      for (auto &[id, area] : heard.areas) instance.areas.push_back(std::move(area));
      rows.push_back(
          heard.databases == nullptr
              ? std::make_unique<NewInstance>(session_, instance)
              : std::make_unique<NewInstance>(session_, instance, heard.databases->databases()));
      counts.push_back(heard.counts);
    }
    add_instances(session_, rows);
    return counts;
  }

 private:
  struct Place {
    std::uint32_t area = 0;
    std::string name;
  };

  Heard &heard(InstanceName name) {
    Heard &heard = heard_[name];
    heard.counts.version = name.version;
    heard.counts.instance_id = name.instance_id;
    return heard;
  }

  Area &area(InstanceName name, std::uint32_t id) {
    Heard &of = heard(name);
    const auto [place, is_new] = of.areas.try_emplace(id);
    place->second.id = id;
    of.counts.areas += is_new ? 1 : 0;
    return place->second;
  }

  void gather() {
    for (const auto &[key, facts] : network_.areas()) {
      Area &added = area({key.version, key.instance_id}, key.area_id);
      if (!facts.hello_seen) continue;
      added.kind = facts.nssa ? "nssa" : facts.external_capable ? "normal" : "stub";
    }
    std::map<std::uint32_t, std::vector<Neighbor>> neighbors;
    for (const decode::Neighbor &neighbor : network_.neighbors(now_)) {
      std::vector<Neighbor> &list = neighbors[neighbor.interface];
      // The rows' key is the router ID: of several that are not known yet one has a row.
      const Neighbor to = neighbor_of(network_, neighbor);
      const bool is_known = std::ranges::any_of(
          list, [&](const Neighbor &other) { return other.router_id == to.router_id; });
      if (!is_known) list.push_back(to);
    }
    std::set<std::pair<InstanceName, std::pair<std::uint32_t, std::string>>> names;
    for (std::uint32_t index = 0; index < network_.interfaces().size(); ++index) {
      const decode::Interface &from = network_.interfaces()[index];
      const InstanceName name{from.version, from.instance_id};
      Interface to = interface_of(network_, index, now_);
      const std::string base = to.name;
      for (int number = 2; !names.insert({name, {from.area_id, to.name}}).second; ++number) {
        to.name = base + '+' + std::to_string(number);
      }
      places_.push_back({from.area_id, to.name});
      to.neighbors = std::move(neighbors[index]);
      Area &of = area(name, from.area_id);
      LoadedInstance &counts = heard(name).counts;
      ++counts.interfaces;
      counts.neighbors += to.neighbors.size();
      first_of_area_.try_emplace({name, from.area_id}, index);
      first_of_link_.try_emplace({name, network_.link_of(index)}, index);
      of.interfaces.push_back(std::move(to));
    }
  }

  void fill_databases() {
    for (const decode::LsdbEntry *entry : network_.lsdb().sorted()) {
      if (entry->gone_at(now_) || network_.grace_over(*entry, now_)) continue;
      // Each LSA was decoded when its packet was read, to see what is wrong with it, and is decoded
      // here once more: most of what is heard is refreshed or flushed before the end, and its
      // octets are a tenth of what its typed fields take. What is wrong with it was counted then.
      decode::ErrorCounts counted_before;
      const decode::Report report(counted_before, entry->packet);
      if (entry->key.version == 2) {
        decode_lsa_v2(entry->raw, lsa_v2_, report);
        add(entry->key, lsa_v2_);
      } else {
        decode_lsa_v3(entry->raw, lsa_v3_, report);
        add(entry->key, lsa_v3_);
      }
    }
  }

  template <typename Lsa>
  void add(const decode::LsdbKey &key, const Lsa &lsa) {
    const InstanceName name{key.version, key.instance_id};
    Heard &of = heard(name);
    ++of.counts.lsas;
    if (of.databases == nullptr) {
      of.databases = std::make_unique<DatabaseRows>(session_, routes_ipv4(name));
    }
    const auto add_at = [&](std::uint32_t index) {
      of.databases->add_to_interface(places_[index].area, places_[index].name, lsa);
    };
    switch (key.scope) {
      case decode::Scope::as:
        of.databases->add_to_as(lsa);
        return;
      case decode::Scope::link:
        add_at(first_of_link_.at({name, key.domain}));
        return;
      case decode::Scope::area:
        break;
    }
    area(name, key.domain);
    if (key.version == 2 && key.type == decode::lsa2_opaque_area) {
      add_at(first_of_area_.at({name, key.domain}));
    } else {
      of.databases->add_to_area(key.domain, lsa);
    }
  }

  Session &session_;
  const decode::Network &network_;
  decode::Time now_;
  std::map<InstanceName, Heard> heard_;
  std::vector<Place> places_;  // by interface
  std::map<std::pair<InstanceName, std::uint32_t>, std::uint32_t> first_of_area_;
  std::map<std::pair<InstanceName, std::uint32_t>, std::uint32_t> first_of_link_;
  decode::LsaV2 lsa_v2_;
  decode::LsaV3 lsa_v3_;
};

}  // namespace

std::vector<LoadedInstance> load_network(Session &session, const decode::Network &network) {
  return load_network(session, network, network.last_time());
}

std::vector<LoadedInstance> load_network(Session &session, const decode::Network &network,
                                         decode::Time now) {
  return Loader(session, network, now).load();
}

}  // namespace capture_rows
