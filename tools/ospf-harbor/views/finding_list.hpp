// Findings for people and as JSON lines.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "ospf_findings/finding.hpp"
#include "views/router_names.hpp"

namespace tool {

// `captures`: by the number of the source that packets name.
std::string json_line(const ospf_findings::Finding &finding,
                      const std::vector<std::string> &captures, const RouterNames &names);

void print_finding(const ospf_findings::Finding &finding, const std::vector<std::string> &captures,
                   const RouterNames &names, std::FILE *out);

}  // namespace tool
