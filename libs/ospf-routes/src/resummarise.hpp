// What border routers say of other areas after a change of the databases.
#pragma once

#include "ospf_routes/routes.hpp"

namespace ospf_routes {

// Renews the summaries in `after`, which still are those of `before`. A summary whose metric was
// the cost that its router had follows that cost, and goes with the route. Any other one (an
// aggregate, a default) stays. A prefix that is new to its router is summarised into an area if the
// router said all that it had there, each prefix by itself.
void resummarise(const Database &before, Database &after, Rules rules);

}  // namespace ospf_routes
