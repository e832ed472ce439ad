#include "synthetic_network.hpp"

#include "capture_rows/lsa_rows.hpp"
#include "ospf_tables/instance_rows.hpp"
#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/rows.hpp"

namespace synthetic {

namespace decode = ospf_decode;

std::uint32_t address(const std::string &dotted) {
  return ospf_tables::parse_dotted(dotted).value();
}

decode::LsaV2 &Network::router(std::uint32_t area, const std::string &id, std::uint8_t flags,
                               const std::vector<Link> &links) {
  decode::LsaV2 lsa;
  lsa.header.type = decode::lsa2_router;
  lsa.header.link_state_id = lsa.header.advertising_router = address(id);
  lsa.router.flags = flags;
  lsa.router.link_count = static_cast<std::uint16_t>(links.size());
  for (const Link &link : links) {
    lsa.router.links.push_back({address(link.id), address(link.data), link.type,
                                static_cast<std::uint16_t>(lsa.router.metrics.size()), 1});
    lsa.router.metrics.push_back({0, link.metric});
  }
  return add(area, std::move(lsa));
}

decode::LsaV2 &Network::network(std::uint32_t area, const std::string &network,
                                const std::string &mask, const std::string &designated_router,
                                const std::vector<std::string> &attached) {
  decode::LsaV2 lsa;
  lsa.header.type = decode::lsa2_network;
  lsa.header.link_state_id = address(network);
  lsa.header.advertising_router = address(designated_router);
  lsa.network.mask = address(mask);
  for (const std::string &id : attached) lsa.network.attached_routers.push_back(address(id));
  return add(area, std::move(lsa));
}

decode::LsaV2 &Network::add(std::uint32_t area, decode::LsaV2 lsa) {
  lsa.complete = lsa.checksum_ok = true;
  lsa.header.sequence = 0x80000001;
  auto &list = v2_[area][lsa.header.type];
  list.push_back(std::move(lsa));
  return list.back();
}

decode::LsaV3 &Network::add(std::uint32_t area, decode::LsaV3 lsa) {
  lsa.complete = lsa.checksum_ok = true;
  lsa.header.sequence = 0x80000001;
  auto &list = v3_[area][lsa.header.type];
  list.push_back(std::move(lsa));
  return list.back();
}

template <typename Lsa>
void Network::load(ospf_tables::Session &session, const Areas<Lsa> &areas, bool ipv4) {
  if (areas.empty()) return;
  ospf_tables::Instance instance{
      ipv4 ? ospf_tables::Family::ipv4 : ospf_tables::Family::ipv6, 0, {}};
  ospf_tables::Databases databases;
  for (const auto &[area, types] : areas) {
    instance.areas.push_back({area, {}});
    auto &containers = databases.of_areas[area];
    containers = std::make_unique<ospf_tables::NewTable<ospf_tables::area_scope_lsas_ops>>(session);
    for (const auto &[type, lsas] : types) {
      ospf_tables::NewRecord<ospf_tables::area_scope_lsas_ops> record(session);
      ospf_tables::NewObject<ospf_tables::area_scope_lsas_ops> object(session);
      area_scope_lsas *container = record.put(object);
      area_scope_lsas_lsa_id_set_value(session.handle(), ospf_tables::space, container, type,
                                       session.err());
      auto *table = ospf_tables::add_table<ospf_tables::area_scope_lsa_ops>(
          session, container, area_scope_lsas_area_scope_lsa_set_by_ref);
      for (const Lsa &lsa : lsas) {
        if constexpr (std::is_same_v<Lsa, decode::LsaV2>) {
          capture_rows::add_lsa(session, table, lsa);
        } else {
          capture_rows::add_lsa(session, table, lsa, false);
        }
      }
      record.insert_into(*containers);
    }
  }
  std::vector<std::unique_ptr<ospf_tables::NewInstance>> instances;
  instances.push_back(std::make_unique<ospf_tables::NewInstance>(session, instance, databases));
  ospf_tables::add_instances(session, instances);
}

void Network::load(ospf_tables::Session &session) const {
  load(session, v2_, true);
  load(session, v3_, false);
}

namespace {

std::string router_id(std::size_t area, std::size_t number) {
  return "10.255." + std::to_string(area) + "." + std::to_string(number);
}

// Collects the links of each router and area, with addresses of their own.
class Links {
 public:
  void connect(std::uint32_t area, const std::string &a, const std::string &b) {
    const std::uint32_t network = address("172.16.0.0") + 4 * used_++;
    const auto cost = static_cast<std::uint16_t>(10 + used_ * 7 % 90);
    of_[{area, a}].push_back({1, b, ospf_tables::dotted(network + 1), cost});
    of_[{area, b}].push_back(
        {1, a, ospf_tables::dotted(network + 2), static_cast<std::uint16_t>(cost + 1)});
  }
  void attach(std::uint32_t area, const std::string &router, const std::string &designated,
              const std::string &own) {
    of_[{area, router}].push_back({2, designated, own, 10});
  }
  void give(Network &network) const {
    for (const auto &[key, links] : of_) {
      const bool border = key.second.ends_with(".1");
      network.router(key.first, key.second, border ? 1 : 0, links);
    }
  }

 private:
  std::uint32_t used_ = 0;
  std::map<std::pair<std::uint32_t, std::string>, std::vector<Link>> of_;
};

}  // namespace

Network large_network(std::size_t routers, std::size_t areas) {
  Network network;
  Links links;
  for (std::size_t area = 1; area <= areas; ++area) {
    const std::size_t here = routers / areas + (area <= routers % areas ? 1 : 0);
    const auto id = static_cast<std::uint32_t>(area);
    // The first router of each area is its border; these form a ring with two chords.
    links.connect(0, router_id(area, 1), router_id(area % areas + 1, 1));
    if (area <= 2 && areas > 5)
      links.connect(0, router_id(area, 1), router_id(area + areas / 2, 1));
    // A tree of three branches, some cross links, and a network of the last three.
    for (std::size_t at = 2; at <= here; ++at) {
      links.connect(id, router_id(area, (at - 2) / 3 + 1), router_id(area, at));
      if (at % 6 == 0) links.connect(id, router_id(area, at - 1), router_id(area, at));
    }
    if (here < 6) continue;
    const std::string prefix = "10." + std::to_string(area) + ".0.";
    std::vector<std::string> attached;
    for (std::size_t at = here - 2; at <= here; ++at) {
      attached.push_back(router_id(area, at));
      links.attach(id, attached.back(), prefix + std::to_string(here - 2),
                   prefix + std::to_string(at));
    }
    network.network(id, prefix + std::to_string(here - 2), "255.255.255.0", attached[0], attached);
  }
  links.give(network);
  return network;
}

}  // namespace synthetic
