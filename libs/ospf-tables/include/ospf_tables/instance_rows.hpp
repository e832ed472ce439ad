// Fills the tables with routing processes: an instance row with its areas, interfaces and
// neighbours, below the one root row, and the databases that hang from them. Readers of real
// networks are the callers; the tree changes only when everything has been built.
#pragma once

#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "ospf_tables/network.hpp"
#include "ospf_tables/rows.hpp"
#include "ospf_tables/session.hpp"

namespace ospf_tables {

// The databases of an instance, each by the row that refers to it: an area by its ID, an interface
// by its area and name.
struct Databases {
  std::unique_ptr<NewTable<link_scope_lsas_ops>> of_instance;
  std::map<std::uint32_t, std::unique_ptr<NewTable<area_scope_lsas_ops>>> of_areas;
  std::map<std::pair<std::uint32_t, std::string>, std::unique_ptr<NewTable<link_scope_lsas_ops>>>
      of_interfaces;
};

// Rows of an instance that are not in the tree yet; they go again with this object unless
// add_instances takes them.
class NewInstance {
 public:
  // Throws LibraryFailure. What `databases` has for rows that the instance lacks is dropped.
  NewInstance(Session &session, const Instance &instance, const Databases &databases = {});

  tbl_ospf_instance_rev1_record *record() const { return record_.get(); }

 private:
  friend void add_instances(Session &, const std::vector<std::unique_ptr<NewInstance>> &);

  NewRecord<ospf_instance_rev1_ops> record_;
  ToldOfInstance told_;
};

// Puts instances into the tree; each takes the place of one of the same address family and router
// ID. On a failure the tree is as it was.
void add_instances(Session &session, const std::vector<std::unique_ptr<NewInstance>> &instances);

}  // namespace ospf_tables
