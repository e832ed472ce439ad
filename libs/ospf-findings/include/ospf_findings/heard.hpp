// What packets show: in what neighbours differ, which LSAs flap, what was torn.
#pragma once

#include <vector>

#include "ospf_events/timeline.hpp"
#include "ospf_findings/finding.hpp"

namespace ospf_findings {

// As things stand at the last packet, but for what happened before: flaps, checksums, storms.
std::vector<Finding> findings_of(const ospf_events::Timeline &timeline,
                                 const std::vector<ospf_events::Event> &events);

}  // namespace ospf_findings
