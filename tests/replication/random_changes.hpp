// Random transactions on a store: instances that come as a whole and give way, single rows that
// change, and rows that go with all below them.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "ospf_tables/instance_rows.hpp"
#include "ospf_tables/rows.hpp"
#include "ospf_tables/tree.hpp"
#include "tree_exchange/tree_writer.hpp"

namespace replication_tests {

using namespace ospf_tables;

// All that the tree holds, as bytes.
inline std::size_t state_of(Session &session) {
  std::string bytes;
  tree_exchange::write_tree(
      session, [&](tree_exchange::ByteView piece) { bytes.append(piece.begin(), piece.end()); });
  return std::hash<std::string>()(bytes);
}

class RandomChanges {
 public:
  RandomChanges(Session &session, std::uint32_t seed) : session_(session), random_(seed) {}

  // One transaction; the state that it leaves.
  std::size_t commit() {
    std::size_t state = 0;
    session_.changing([&] {
      for (std::uint32_t left = 1 + random_() % 6; left > 0; --left) change();
      state = state_of(session_);
    });
    return state;
  }

  // Within a transaction: the cost of one interface.
  void change_one() {
    if (interfaces_.empty()) gather();
    auto *row = ospf_interface_ops::get(session_.handle(), space, interfaces_.front());
    const std::uint16_t cost =
        ospf_interface_cost_get_value(session_.handle(), space, row, session_.err());
    ospf_interface_cost_set_value(session_.handle(), space, row,
                                  static_cast<std::uint16_t>(cost + 1), session_.err());
    session_.check("an interface");
  }

  // Within a transaction.
  void change() {
    gather();
    switch (below(7)) {
      case 0:
        if (areas_.size() < 12) add_instance();
        return;
      case 1:
        return end<ospf_area_ops>(areas_);
      case 2:
        return end<ospf_interface_ops>(interfaces_);
      case 3:
        return end<ospf_neighbor_ops>(neighbors_);
      case 4:
        for (auto *record : some(neighbors_)) {
          ospf_neighbor_state_set_value(session_.handle(), space,
                                        ospf_neighbor_ops::get(session_.handle(), space, record),
                                        below(8), session_.err());
        }
        return session_.check("a neighbour");
      default:
        if (interfaces_.empty()) return add_instance();
        for (auto *record : some(interfaces_)) {
          ospf_interface_cost_set_value(session_.handle(), space,
                                        ospf_interface_ops::get(session_.handle(), space, record),
                                        static_cast<std::uint16_t>(below(60000)), session_.err());
        }
        return session_.check("an interface");
    }
  }

 private:
  std::uint32_t below(std::uint32_t n) { return random_() % n; }

  void gather() {
    areas_.clear();
    interfaces_.clear();
    neighbors_.clear();
    kelp_handle *handle = session_.handle();
    for_each_record<ospf_instance_rev1_ops>(session_, instances_of_root(session_), [&](auto *row) {
      auto *areas = ospf_instance_rev1_area_get_by_ref(
          handle, space, ospf_instance_rev1_ops::get(handle, space, row), session_.err());
      for_each_record<ospf_area_ops>(session_, areas, [&](auto *area) {
        areas_.push_back(area);
        auto *interfaces = ospf_area_interfaces_get_by_ref(
            handle, space, ospf_area_ops::get(handle, space, area), session_.err());
        for_each_record<ospf_interface_ops>(session_, interfaces, [&](auto *interface) {
          interfaces_.push_back(interface);
          auto *neighbors = ospf_interface_neighbor_get_by_ref(
              handle, space, ospf_interface_ops::get(handle, space, interface), session_.err());
          for_each_record<ospf_neighbor_ops>(
              session_, neighbors, [&](auto *neighbor) { neighbors_.push_back(neighbor); });
        });
      });
    });
  }

  template <typename Record>
  std::vector<Record *> some(const std::vector<Record *> &records) {
    std::vector<Record *> chosen;
    for (Record *record : records) {
      if (below(3) == 0) chosen.push_back(record);
    }
    return chosen;
  }

  template <typename Ops>
  void end(const std::vector<typename Ops::Record *> &records) {
    if (records.size() > 1) end_record<Ops>(session_, records[below(records.size())]);
  }

  void add_instance() {
    Instance instance{.family = below(2) == 0 ? Family::ipv4 : Family::ipv6,
                      .router_id = 0x0a000001 + below(4),
                      .areas = {}};
    for (std::uint32_t area = 0; area <= below(4); ++area) {
      instance.areas.push_back({.id = area, .interfaces = {}});
      for (std::uint32_t number = 0; number <= below(6); ++number) {
        Interface interface {};
        interface.name = "eth" + std::to_string(number) + "." + std::to_string(below(3));
        interface.network_type = 1;
        for (std::uint32_t neighbor = 0; neighbor < below(4); ++neighbor) {
          Neighbor heard{};
          heard.router_id = "10.1.0." + std::to_string(neighbor + 1);
          heard.address = "192.0.2." + std::to_string(below(200) + 1);
          heard.state = below(8);
          interface.neighbors.push_back(heard);
        }
        instance.areas.back().interfaces.push_back(interface);
      }
    }
    std::vector<std::unique_ptr<NewInstance>> instances;
    instances.push_back(std::make_unique<NewInstance>(session_, instance));
    add_instances(session_, instances);
  }

  Session &session_;
  std::mt19937 random_;
  std::vector<tbl_ospf_area_record *> areas_;
  std::vector<tbl_ospf_interface_record *> interfaces_;
  std::vector<tbl_ospf_neighbor_record *> neighbors_;
};

}  // namespace replication_tests
