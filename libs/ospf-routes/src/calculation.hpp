// One calculation of a routing table, stage by stage as RFC 2328, 16 has them. Lives for one table.
#pragma once

#include "area_tree.hpp"

namespace ospf_routes {

class Calculation {
 public:
  Calculation(const Compiled &compiled, RouterId router);
  RoutingTable run();

 private:
  struct Entry {
    bool present = false;
    Kind kind = Kind::intra;
    AreaId area = 0;
    std::uint32_t cost = 0;
    std::uint32_t type2_cost = 0;
    std::uint32_t tag = 0;
    std::uint32_t hops = 0;
  };
  // A path to an AS boundary router through one area.
  struct BoundaryPath {
    std::uint32_t cost = unreachable;
    std::uint32_t hops = 0;
    bool is_intra = false;
  };
  using BoundaryPaths = std::vector<BoundaryPath>;  // by number of the router

  void grow_trees();
  void add_intra_area(const AreaTree &tree);
  void offer(Entry &entry, const Entry &path);
  bool backbone_is_active() const;
  bool is_summarised_by_root(const AreaTree &tree, std::uint32_t prefix) const;
  void add_inter_area(const AreaTree &tree);
  void add_boundaries(const AreaTree &tree, bool with_summaries);
  void improve_by_transit(const AreaTree &tree);
  BoundaryPaths &boundary_paths(const AreaTree &tree) { return boundaries_[&tree - trees_.data()]; }
  void choose_boundaries();
  void add_externals();
  struct ExternalPath;
  bool path_of(const CompiledExternal &external, ExternalPath &path);
  bool is_passed_over(const CompiledExternal &external) const;
  std::uint32_t hops_to_forwarding(const Entry &entry, const Address &address);
  RoutingTable finish();

  const Compiled &compiled_;
  Root root_;
  HopSets hops_;
  std::vector<AreaTree> trees_;               // in order of areas, but the backbone is the last
  std::vector<Entry> entries_;                // by number of the prefix
  std::vector<BoundaryPaths> boundaries_;     // as trees_
  std::vector<const BoundaryPath *> chosen_;  // by number of the router, for AS-externals
  std::vector<bool> chosen_class_;            // as chosen_: through the backbone or between areas
  std::vector<AreaId> chosen_area_;           // as chosen_
};

}  // namespace ospf_routes
