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
  LoadedInstance counts;
};

using AllDatabases = std::map<InstanceName, std::unique_ptr<DatabaseRows>>;

// A network at one time: its areas, interfaces and neighbours, and where LSAs belong among them.
class Gathered {
 public:
  Gathered(Session &session, const decode::Network &network, decode::Time now, bool ages_as_heard)
      : session_(session), network_(network), now_(now), ages_as_heard_(ages_as_heard) {
    gather();
  }

  // Whether routers hold the LSA.
  bool holds(const decode::LsdbEntry &entry) const {
    return !entry.gone_at(now_) && !network_.grace_over(entry, now_);
  }

  // Each LSA was decoded when its packet was read, to see what is wrong with it, and is decoded
  // here once more: most of what is heard is refreshed or flushed before the end, and its octets
  // are a tenth of what its typed fields take. What is wrong with it was counted then.
  LsaRow add(const decode::LsdbEntry &entry, AllDatabases &databases) {
    decode::ErrorCounts counted_before;
    const decode::Report report(counted_before, entry.packet);
    if (entry.key.version == 2) {
      decode_lsa_v2(entry.raw, lsa_v2_, report);
      return add(entry, lsa_v2_, databases);
    }
    decode_lsa_v3(entry.raw, lsa_v3_, report);
    return add(entry, lsa_v3_, databases);
  }

  // The instances that the tree is to have, of which those with databases have these.
  std::map<InstanceName, std::unique_ptr<NewInstance>> instances(const AllDatabases &databases) {
    for (const auto &[name, rows] : databases) {
      for (const auto &[id, table] : rows->databases().of_areas) area(name, id);
    }
    std::map<InstanceName, std::unique_ptr<NewInstance>> rows;
    for (auto &[name, heard] : heard_) {
      Instance instance{};
      instance.family = routes_ipv4(name) ? Family::ipv4 : Family::ipv6;
      instance.router_id = observer_id(name);
      instance.ages = ospf_tables::Ages{ages_as_heard_, now_};
      for (auto &[id, area] : heard.areas) instance.areas.push_back(std::move(area));
      const auto of = databases.find(name);
      rows[name] = of == databases.end()
                       ? std::make_unique<NewInstance>(session_, instance)
                       : std::make_unique<NewInstance>(session_, instance, of->second->databases());
    }
    return rows;
  }

  std::vector<LoadedInstance> counts() const {
    std::vector<LoadedInstance> all;
    for (const auto &[name, heard] : heard_) all.push_back(heard.counts);
    return all;
  }

  // Whether the LSAs that had a place at that time have the same one now.
  bool has_places_of(const Gathered &earlier) const {
    return earlier.places_.size() <= places_.size() &&
           std::ranges::mismatch(earlier.places_, places_).in1 == earlier.places_.end() &&
           std::ranges::includes(first_of_area_, earlier.first_of_area_) &&
           std::ranges::includes(first_of_link_, earlier.first_of_link_);
  }

 private:
  struct Place {
    std::uint32_t area = 0;
    std::string name;
    bool operator==(const Place &) const = default;
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

  template <typename Lsa>
  LsaRow add(const decode::LsdbEntry &entry, Lsa &lsa, AllDatabases &databases) {
    if (!ages_as_heard_ && !lsa.header.do_not_age()) lsa.header.age = entry.age_at(now_);
    const decode::LsdbKey &key = entry.key;
    const InstanceName name{key.version, key.instance_id};
    ++heard(name).counts.lsas;
    auto &rows = databases[name];
    if (rows == nullptr) rows = std::make_unique<DatabaseRows>(session_, routes_ipv4(name));
    const auto add_at = [&](std::uint32_t index) {
      return rows->add_to_interface(places_[index].area, places_[index].name, lsa);
    };
    switch (key.scope) {
      case decode::Scope::as:
        return rows->add_to_as(lsa);
      case decode::Scope::link:
        return add_at(first_of_link_.at({name, key.domain}));
      case decode::Scope::area:
        break;
    }
    area(name, key.domain);
    if (key.version == 2 && key.type == decode::lsa2_opaque_area) {
      return add_at(first_of_area_.at({name, key.domain}));
    }
    return rows->add_to_area(key.domain, lsa);
  }

  Session &session_;
  const decode::Network &network_;
  decode::Time now_;
  bool ages_as_heard_;
  std::map<InstanceName, Heard> heard_;
  std::vector<Place> places_;  // by interface
  std::map<std::pair<InstanceName, std::uint32_t>, std::uint32_t> first_of_area_;
  std::map<std::pair<InstanceName, std::uint32_t>, std::uint32_t> first_of_link_;
  decode::LsaV2 lsa_v2_;
  decode::LsaV3 lsa_v3_;
};

void put_into_tree(Session &session, std::map<InstanceName, std::unique_ptr<NewInstance>> made) {
  std::vector<std::unique_ptr<NewInstance>> rows;
  for (auto &[name, instance] : made) rows.push_back(std::move(instance));
  add_instances(session, rows);
}

}  // namespace

std::vector<LoadedInstance> load_network(Session &session, const decode::Network &network) {
  return load_network(session, network, network.last_time());
}

std::vector<LoadedInstance> load_network(Session &session, const decode::Network &network,
                                         decode::Time now, bool ages_as_heard) {
  Gathered gathered(session, network, now, ages_as_heard);
  AllDatabases databases;
  const std::vector<const decode::LsdbEntry *> entries = network.lsdb().sorted();
  for (std::size_t at = 0; at < entries.size(); ++at) {
    // They lie in the order in which they were heard: those that come soon are asked for now.
    constexpr std::size_t ahead = 8;
    if (at + 2 * ahead < entries.size()) {
      const char *entry = reinterpret_cast<const char *>(entries[at + 2 * ahead]);
      __builtin_prefetch(entry);
      __builtin_prefetch(entry + sizeof *entries[at] - 1);
    }
    if (at + ahead < entries.size()) __builtin_prefetch(entries[at + ahead]->raw.data());
    if (gathered.holds(*entries[at])) gathered.add(*entries[at], databases);
  }
  put_into_tree(session, gathered.instances(databases));
  return gathered.counts();
}

class FollowedNetwork::Rows {
 public:
  Rows(Session &session, const decode::Network &network) : session_(session), network_(network) {}

  bool has_changed(decode::Time now) {
    // Rows stay while others come and go, so that no time is that of all ages.
    present_ = std::make_unique<Gathered>(session_, network_, now, true);
    fresh_.clear();
    gone_.clear();
    network_.lsdb().for_each([&](const decode::LsdbEntry &entry) {
      if (!present_->holds(entry)) {
        if (rows_.contains(entry.key)) gone_.push_back(entry.key);
      } else if (entry.packet > last_packet_) {
        fresh_.push_back(&entry);
      }
    });
    std::vector<std::uint64_t> words = words_of_others(now);
    const bool others_changed = words != words_;
    words_ = std::move(words);
    return !fresh_.empty() || !gone_.empty() || others_changed;
  }

  std::size_t update() {
    try {
      return change_tree();
    } catch (...) {
      forget();
      throw;
    }
  }

 private:
  std::size_t change_tree() {
    const bool is_known =
        earlier_ != nullptr && is_untouched() && present_->has_places_of(*earlier_);
    if (is_known) {
      for (const auto &[name, databases] : databases_) databases->take_back(records_.at(name));
      for (const decode::LsdbKey &key : gone_) remove(key);
    } else {
      forget();
      fresh_.clear();
      for (const decode::LsdbEntry *entry : network_.lsdb().sorted()) {
        if (present_->holds(*entry)) fresh_.push_back(entry);
      }
    }
    for (const decode::LsdbEntry *entry : fresh_) {
      if (is_known) remove(entry->key);
      rows_[entry->key] = present_->add(*entry, databases_);
      last_packet_ = std::max(last_packet_, entry->packet);
    }
    auto instances = present_->instances(databases_);
    for (const auto &[name, instance] : instances) records_[name] = instance->record();
    put_into_tree(session_, std::move(instances));
    earlier_ = std::move(present_);
    kelp_database_memory(session_.database(), &memory_);
    return fresh_.size() + gone_.size();
  }

  // As if nothing had been loaded.
  void forget() {
    earlier_ = nullptr;
    databases_.clear();
    records_.clear();
    rows_.clear();
    last_packet_ = 0;
  }

  void remove(const decode::LsdbKey &key) {
    const auto place = rows_.find(key);
    if (place == rows_.end()) return;
    databases_.at({key.version, key.instance_id})->remove(place->second);
    rows_.erase(place);
  }

  // Whoever makes or ends an object changes one of these numbers, and nobody else does.
  bool is_untouched() const {
    kelp_memory_statistics now{};
    kelp_database_memory(session_.database(), &now);
    return now.total_allocations == memory_.total_allocations &&
           now.live_allocations == memory_.live_allocations;
  }

  // What is told of neighbours and interfaces, without timers.
  std::vector<std::uint64_t> words_of_others(decode::Time now) const {
    std::vector<std::uint64_t> words;
    const auto add = [&](std::uint32_t high, std::uint32_t low) {
      words.push_back(std::uint64_t{high} << 32 | low);
    };
    for (const decode::Neighbor &neighbor : network_.neighbors(now)) {
      add(neighbor.router_id, static_cast<std::uint32_t>(neighbor.state));
      add(neighbor.designated_router, neighbor.backup_designated_router);
    }
    for (std::uint32_t at = 0; at < network_.interfaces().size(); ++at) {
      const decode::Hello &hello = network_.interfaces()[at].hello;
      add(hello.designated_router, hello.backup_designated_router);
      add(hello.hello_interval, hello.dead_interval);
      add(network_.interface_cost(at).value_or(0), hello.priority);
      add(static_cast<std::uint32_t>(network_.interface_state(at)),
          static_cast<std::uint32_t>(network_.network_type(at)));
    }
    return words;
  }

  Session &session_;
  const decode::Network &network_;
  std::unique_ptr<Gathered> present_;
  std::vector<const decode::LsdbEntry *> fresh_;  // to be added, in the place of what was there
  std::vector<decode::LsdbKey> gone_;
  std::vector<std::uint64_t> words_;
  // As of the last update.
  std::unique_ptr<Gathered> earlier_;
  AllDatabases databases_;
  std::map<InstanceName, tbl_ospf_instance_rev1_record *> records_;
  std::map<decode::LsdbKey, LsaRow> rows_;
  std::uint64_t last_packet_ = 0;
  kelp_memory_statistics memory_{};
};

FollowedNetwork::FollowedNetwork(Session &session, const decode::Network &network)
    : rows_(std::make_unique<Rows>(session, network)) {}
FollowedNetwork::~FollowedNetwork() = default;
bool FollowedNetwork::has_changed(decode::Time now) { return rows_->has_changed(now); }
std::size_t FollowedNetwork::update() { return rows_->update(); }

}  // namespace capture_rows
