// What routers are told to do, as their configurations have it, held against the databases: ranges
// that summarise nothing, virtual links that lead nowhere.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include "ospf_findings/finding.hpp"
#include "ospf_routes/routes.hpp"

namespace ospf_findings {

struct Configuration {
  struct Range {
    ospf_routes::AreaId area = 0;
    ospf_routes::Prefix prefix;
  };
  struct VirtualLink {
    ospf_routes::AreaId transit = 0;
    ospf_routes::RouterId peer = 0;
  };
  ospf_routes::RouterId router = 0;
  std::vector<Range> ranges;
  std::vector<VirtualLink> virtual_links;
};

// Of a configuration of FRR what concerns OSPFv2; other lines are passed over.
Configuration read_frr_configuration(std::istream &in);

std::vector<Finding> findings_of(const std::vector<Configuration> &configurations,
                                 const ospf_routes::Database &database,
                                 const ospf_routes::Calculator &calculator);

}  // namespace ospf_findings
