// In what two interfaces differ that face each other, as a finding. What packets and what tables
// show of it is worded here once.
#pragma once

#include <string>

#include "ospf_events/differences.hpp"
#include "ospf_findings/finding.hpp"

namespace ospf_findings {

// An end as findings name it, with what it has where the two differ.
struct MismatchEnd {
  ospf_routes::RouterId router = 0;
  std::string name;
  std::string value;
};

Kind kind_of(ospf_events::Difference difference);

// Of one_way the first end hears the second. Without version, instance and area.
Finding mismatch(ospf_events::Difference difference, const MismatchEnd &a, const MismatchEnd &b);

}  // namespace ospf_findings
