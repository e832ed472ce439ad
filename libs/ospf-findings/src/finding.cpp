#include "ospf_findings/finding.hpp"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace ospf_findings {

const char *name_of(Severity severity) {
  constexpr const char *names[] = {"notice", "warning", "error"};
  return names[static_cast<std::size_t>(severity)];
}

const char *name_of(Kind kind) {
  constexpr const char *names[] = {"one_way_link",
                                   "interface_mismatch",
                                   "hello_one_way",
                                   "duplicate_router_id",
                                   "duplicate_address",
                                   "databases_differ",
                                   "virtual_link_without_transit",
                                   "split_area",
                                   "area_without_backbone",
                                   "unreachable_forwarding_address",
                                   "equal_externals",
                                   "unused_range",
                                   "overlapping_ranges",
                                   "flapping_lsa",
                                   "sequence_near_end",
                                   "wrong_checksum",
                                   "max_age_storm",
                                   "incomplete_database"};
  static_assert(std::size(names) == kind_count);
  return names[static_cast<std::size_t>(kind)];
}

const char *advice_for(Kind kind) {
  constexpr const char *texts[] = {
      "the adjacency at the end that does not tell of the link, and whether that router still runs",
      "the configuration of both interfaces",
      "whether multicasts arrive at the router that does not hear, and its filters",
      "the router IDs that are configured on the routers named",
      "the addresses that are configured on the routers named",
      "the neighbours of the router that lacks LSAs, and its retransmission lists",
      "the way between the ends of the virtual link within its transit area",
      "the links between the parts; routes between them are lost or cross other areas",
      "a link or a virtual link from the area to the backbone",
      "whether the network of the address is in OSPF, and what ranges hide",
      "whether traffic may leave by either router; else another cost or type for one",
      "whether the range is still wanted: nothing in the area is within it",
      "which of the ranges is meant: one is within the other",
      "the interface or the redistribution that comes and goes at the router named",
      "what makes the router originate the LSA so often; at the last number it is flushed first",
      "the link that the packets came over, and the memory of the router named",
      "what the router named lost at that time",
      "a capture that begins earlier, or more routers' answers"};
  static_assert(std::size(texts) == kind_count);
  return texts[static_cast<std::size_t>(kind)];
}

void sort_findings(std::vector<Finding> &findings) {
  const auto order = [](const Finding &of) {
    return std::tuple(-static_cast<int>(of.severity), of.kind, of.version, of.instance, of.area,
                      of.routers, of.where, of.field, of.what);
  };
  std::sort(findings.begin(), findings.end(),
            [&](const Finding &a, const Finding &b) { return order(a) < order(b); });
}

}  // namespace ospf_findings
