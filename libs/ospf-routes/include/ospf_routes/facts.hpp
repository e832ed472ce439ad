// What two databases say differently of the network, beneath the LSAs that say it: which routers
// and networks are adjacent, what links cost, which prefixes are where, and what comes from outside
// the AS.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ospf_routes/database.hpp"

namespace ospf_routes {

struct FactChange {
  enum class Subject { adjacency, cost, prefix, external };
  enum class Change { came, went, changed };

  Subject subject = Subject::adjacency;
  Change change = Change::came;
  std::optional<AreaId> area;  // not of AS-externals
  RouterId router = 0;         // whose link, prefix or external it is
  std::string other;           // of adjacency and cost: a router ID, or "network" and its ID
  std::optional<Prefix> prefix;
  std::string before;  // empty for what came
  std::string after;   // empty for what went
};

const char *name_of(FactChange::Subject subject);
const char *name_of(FactChange::Change change);

// In the order of subjects, areas and routers. An adjacency between two routers is one, of the
// lower router ID, and is there when both tell of it.
std::vector<FactChange> fact_changes(const Database &before, const Database &after);

}  // namespace ospf_routes
